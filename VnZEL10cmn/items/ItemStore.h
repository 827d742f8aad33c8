#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "VnZEL10cmn/items/IVnZelItem.h"

namespace VnZEL10cmn {

/// The items of a list: in their order, by position and by instance ID. Nothing takes longer the more items there
/// are, but for the steps of a search by position once items have been removed.
///
/// Items stand in slots; a removed one leaves its slot empty until half of them are.
class ItemStore {
 public:
  /// What the store holds.
  using Item = std::shared_ptr<IVnZelItem>;

  /// Goes through the items in their order.
  class Iterator {
   public:
    /// A forward iterator, as the standard library describes one.
    /// @{
    using iterator_category = std::forward_iterator_tag;
    using value_type = Item;
    using difference_type = std::ptrdiff_t;
    using pointer = const Item*;
    using reference = const Item&;
    Iterator() = default;
    reference operator*() const noexcept { return *at_; }
    pointer operator->() const noexcept { return at_; }
    Iterator& operator++() noexcept {
      ++at_;
      SkipEmpty();
      return *this;
    }
    Iterator operator++(int) noexcept {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    /// @}

    /// Whether both are at the same item.
    friend bool operator==(const Iterator& left, const Iterator& right) noexcept {
      return left.at_ == right.at_;
    }

   private:
    friend class ItemStore;
    Iterator(pointer at, pointer end) noexcept : at_(at), end_(end) { SkipEmpty(); }
    void SkipEmpty() noexcept {
      while (at_ != end_ && !*at_)
        ++at_;
    }

    pointer at_ = nullptr;
    pointer end_ = nullptr;
  };

  ItemStore() = default;
  ~ItemStore();
  ItemStore(const ItemStore&) = delete;
  ItemStore& operator=(const ItemStore&) = delete;

  /// At the first item.
  Iterator begin() const noexcept { return {slots_.data() + first_, slots_.data() + slots_.size()}; }
  /// Behind the last item.
  Iterator end() const noexcept { return {slots_.data() + slots_.size(), slots_.data() + slots_.size()}; }

  /// Number of items.
  std::size_t Count() const noexcept { return slots_.size() - empty_; }

  /// The item at a position that exists, counted from 0.
  const Item& At(std::size_t position) const noexcept { return slots_[SlotAt(position)]; }

  /// Whether no item is of a host's own class.
  bool HasCashItemsOnly() const noexcept { return foreign_.empty(); }

  /// Appends an item, unless there is one with its instance ID.
  bool Append(const Item& item);

  /// The item with an instance ID, or none.
  Item Find(std::string_view id) const;

  /// Removes the item at a position that exists, counted from 0.
  void RemoveAt(std::size_t position) { RemoveSlot(SlotAt(position)); }

  /// Removes an item if it is here.
  void Remove(const Item& item) { RemoveFound(FindSlotOf(item)); }
  /// Removes the item with an instance ID if there is one.
  void Remove(std::string_view id) { RemoveFound(FindSlot(id)); }

  /// Removes all items.
  void Clear() noexcept;

 private:
  /// Where an item stands whose instance ID begins with these 32 bits.
  struct Entry {
    std::uint32_t idStart;
    std::uint32_t slot;
  };

  /// Hashes and compares IDs without making strings of them.
  struct IdHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view id) const noexcept { return std::hash<std::string_view>()(id); }
  };

  std::size_t SlotAt(std::size_t position) const noexcept;
  std::size_t FindSlot(std::string_view id) const;
  std::size_t FindCashItem(const std::array<std::uint8_t, 16>& id) const;
  std::size_t FindSlotOf(const Item& item) const;
  void IndexNewSlots() const;
  bool IsNext(const std::array<std::uint8_t, 16>& id) const noexcept;
  void LookAhead(std::size_t slot) const noexcept;
  void Enter(Entry entry) const noexcept;
  void RemoveFound(std::size_t slot);
  void RemoveSlot(std::size_t slot);
  void CountItems();
  std::uint32_t ItemsBefore(std::size_t slot) const noexcept;
  void CloseGaps() noexcept;
  static void Release(const Item& item) noexcept;

  std::vector<Item> slots_;
  std::size_t empty_ = 0;  ///< number of empty slots
  std::size_t first_ = 0;  ///< a slot before which all are empty
  /// While slots are empty: at every place i, counted from 1, the items in as many slots up to it as the lowest bit
  /// of i says, so that the items before any slot are the sum of a few of them.
  std::vector<std::uint32_t> counts_;
  /// Cash items by ID, an open hash table. Most lists are never asked for an ID, which then isn't made either: items
  /// are entered when one is looked for that does not stand behind the item found last.
  mutable std::vector<Entry> table_;
  mutable std::size_t entered_ = 0;  ///< slots that are in the table
  mutable std::size_t next_ = 0;     ///< the slot behind that of the item found last
  /// Items of a host's classes by the ID that they had when they were added.
  std::unordered_map<std::string, std::size_t, IdHash, std::equal_to<>> foreign_;
};

}  // namespace VnZEL10cmn
