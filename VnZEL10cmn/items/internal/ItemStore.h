#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "VnZEL10cmn/items/IVnZelItem.h"
#include "VnZEL10cmn/types/ListIterator.h"

namespace VnZEL10cmn::internal {

/// The items of a list: in their order, by position and by instance ID. Nothing takes longer the more items there
/// are, but for the steps of a search by position once items have been removed, and for a search by ID among a host's
/// items, which are asked for the ID that they have now.
///
/// Items are kept in slots; a removed one leaves its slot empty until half of them are (`CloseGaps`). Every item has a
/// ticket, a running number that grows with the slots, by which iterators find their place again.
///
/// Invariants:
/// 1. `empty_` is the number of empty slots.
/// 2. While `empty_` > 0, `counts_` is a Fenwick tree over the slots: `counts_[i]` is the number of items in the
///    lowest-bit-of-i slots up to slot i - 1. Otherwise its content is meaningless.
/// 3. `tickets_` is empty, and the ticket of slot s is `nextTicket_` - number of slots + s; or it has one for each slot.
/// 4. `table_` has an entry for each cash item in the slots before `entered_`, and maybe for items that are gone.
/// 5. Each host's item is in `byAddedId_` (under the ID that it had when it was added) and in `byObject_`, both with
///    its slot, and `addedIds_` points from the slot to the key in `byAddedId_`. `addedIds_` is empty, or as long as
///    `slots_`.
/// 6. A host's code is called where no invariant is broken, and what was found before is looked at again after it.
class ItemStore : public ListIterator<IVnZelItem>::Source, public std::enable_shared_from_this<ItemStore> {
 public:
  using Item = std::shared_ptr<IVnZelItem>;
  using Iterator = ListIterator<IVnZelItem>;
  using Place = Iterator::Place;

  ItemStore() = default;
  ~ItemStore() override;
  ItemStore(const ItemStore&) = delete;
  ItemStore& operator=(const ItemStore&) = delete;

  Iterator begin() const { return {shared_from_this(), nextTicket_}; }
  static Iterator end() noexcept { return {}; }
  Item Next(Place& place, std::uint64_t end) const override;

  /// Number of items.
  std::size_t Count() const noexcept { return slots_.size() - empty_; }

  /// The items in their order, with empty slots between them. Only for those who call none of a host's code.
  std::span<const Item> Slots() const noexcept { return slots_; }

  /// The item at a position that exists, counted from 0.
  const Item& At(std::size_t position) const noexcept { return slots_[SlotAt(position)]; }

  /// Whether no item is of a host's own class.
  bool HasCashItemsOnly() const noexcept { return byObject_.empty(); }

  /// Grows with every change of the list.
  std::uint64_t Changes() const noexcept { return changes_; }

  /// Appends an item, unless one was added with its instance ID.
  bool Append(const Item& item);

  /// The first item whose instance ID is this one now, or none.
  Item Find(std::string_view id) const;

  /// Removes the item at a position that exists, counted from 0.
  void RemoveAt(std::size_t position) { RemoveSlot(SlotAt(position)); }

  /// Removes an item, or the first with an instance ID, if it is here.
  void Remove(const Item& item);
  void Remove(std::string_view id);

  /// Removes all items.
  void Clear() noexcept;

 private:
  /// Where an item is whose instance ID begins with these 32 bits.
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
  std::uint64_t TicketOf(std::size_t slot) const noexcept;
  std::size_t SlotFrom(std::uint64_t ticket) const noexcept;
  std::size_t FilledSlotFrom(std::size_t slot) const noexcept;
  bool IsHostItem(std::size_t slot) const noexcept {
    return !addedIds_.empty() && addedIds_[slot] != nullptr;
  }
  Item FindAmongHostItems(std::string_view id, Place& place) const;
  Item FindHostItem(std::string_view id, std::uint64_t end, Place& place) const;
  std::size_t FindCashItem(std::string_view id) const;
  std::size_t FindCashItem(const std::array<std::uint8_t, 16>& id) const;
  std::size_t FindSlotOf(const Item& item) const;
  void IndexNewSlots() const;
  bool IsNext(const std::array<std::uint8_t, 16>& id) const noexcept;
  void LookAhead(std::size_t slot) const noexcept;
  void Enter(Entry entry) const noexcept;
  void Reserve();
  void EnterHostItem(const Item& item, std::string id);
  void LeaveHostItem(std::size_t slot) noexcept;
  void RemoveSlot(std::size_t slot);
  void CountItems();
  std::uint32_t ItemsBefore(std::size_t slot) const noexcept;
  bool KeepTickets() noexcept;
  void CloseGaps() noexcept;
  static void Release(const Item& item) noexcept;

  std::vector<Item> slots_;
  std::size_t empty_ = 0;
  std::vector<std::uint32_t> counts_;
  std::vector<std::uint64_t> tickets_;
  std::uint64_t nextTicket_ = 0;  ///< the ticket of the next item
  std::uint64_t version_ = 0;     ///< grows whenever items are moved to other slots
  std::uint64_t changes_ = 0;
  /// Cash items by ID, an open hash table. Most lists are never asked for an ID, which then isn't made either: items
  /// are entered when one is looked for that is not behind the item found last.
  mutable std::vector<Entry> table_;
  mutable std::size_t entered_ = 0;
  mutable std::size_t next_ = 0;  ///< the slot behind that of the item found last
  std::unordered_map<std::string, std::size_t, IdHash, std::equal_to<>> byAddedId_;
  std::unordered_multimap<const IVnZelItem*, std::size_t> byObject_;
  std::vector<const std::string*> addedIds_;
};

}  // namespace VnZEL10cmn::internal
