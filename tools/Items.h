#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tools/Sink.h"

/// Item lists of any length, of which one item at a time takes memory.
namespace zel {

/// Reads the items of a list one after the other, as the library's list does.
class ItemReader {
 public:
  /// `list` has to stay.
  explicit ItemReader(const VnZEL10cmn::ByteArray& list) : list_(list) {}

  /// Reads the next item. False at the end, and where one can't be read.
  bool Next();

  /// Whether the item that came last couldn't be read.
  [[nodiscard]] bool HasFailed() const noexcept { return hasFailed_; }

  /// The item that was read last.
  [[nodiscard]] VnZEL10cmn::clsZelItemCash& Item() noexcept { return item_; }
  [[nodiscard]] std::size_t Number() const noexcept { return number_; }  ///< from 1
  /// The bytes of which it was read.
  [[nodiscard]] std::span<const std::uint8_t> Bytes() const noexcept;

 private:
  const VnZEL10cmn::ByteArray& list_;
  VnZEL10cmn::clsZelItemCash item_;
  std::size_t number_ = 0;
  std::int32_t start_ = 0;   ///< of the item that was read last
  std::int32_t behind_ = 0;  ///< it
  bool hasFailed_ = false;
};

/// Takes the place of all items of a list in a booking or report that the library reads: it has their sums, and it is
/// written as they are.
class AllItems final : public VnZEL10cmn::clsZelItemCash {
 public:
  /// What `ToString` gives instead of the items' lines.
  static constexpr std::string_view kPlace = "the lines of all items stand here";

  /// Makes a booking or report read into this object, which is then its only item.
  static std::shared_ptr<AllItems> StandIn(VnZEL10cmn::clsZelTransAct& booking);
  static std::shared_ptr<AllItems> StandIn(VnZEL10cmn::clsZelReport& report);

  [[nodiscard]] std::size_t Count() const noexcept { return count_; }

  /// Writes the lines of a receipt, indented as the library indents them.
  void WriteLines(Sink& out) const;

  bool BinaryDataSet(const VnZEL10cmn::ByteArray& Data, std::int32_t& Start) override;
  bool BinaryDataGet(VnZEL10cmn::ByteArray& Data, std::int32_t& Start) override;
  bool GetPrices(VnZEL10cmn::CurrencyArray& Prices, bool& IsThrdPrt) override;
  std::string ToString() override { return std::string(kPlace); }

 private:
  VnZEL10cmn::ByteArray list_;
  std::size_t count_ = 0;
  std::int32_t writtenSize_ = 0;
};

/// Has the prices of many items. What it writes of itself is some item's.
class SumItem final : public VnZEL10cmn::clsZelItemCash {
 public:
  bool BinaryDataGet(VnZEL10cmn::ByteArray& Data, std::int32_t& Start) override;
};

/// Items that add up to what all items of a list, of which each can be read, add up to: one each for the prices of
/// third-party business and of other items, positive and negative. Throws std::overflow_error.
std::vector<std::shared_ptr<SumItem>> SumItems(const VnZEL10cmn::ByteArray& list);

}  // namespace zel
