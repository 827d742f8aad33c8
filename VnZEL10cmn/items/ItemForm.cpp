#include "VnZEL10cmn/items/internal/ItemForm.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "VnZEL10cmn/device/ZelTags.h"
#include "VnZEL10cmn/device/internal/Records.h"

namespace VnZEL10cmn::internal {

namespace {

using Bytes = std::span<const std::uint8_t>;

bool IsDigit(std::uint8_t c) { return c >= '0' && c <= '9'; }

bool AreBcd(Bytes bytes) {
  return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte >> 4 <= 9 && (byte & 15) <= 9; });
}

/// Digits without leading zeros, up to four decimals without trailing ones; not zero, which is read as one.
bool IsQuantity(Bytes text) {
  const auto point = std::ranges::find(text, '.');
  const Bytes whole(text.begin(), point);
  const Bytes decimals(point == text.end() ? point : point + 1, text.end());
  if (whole.empty() || text.size() >= kQuantityEnd || !std::ranges::all_of(whole, IsDigit) ||
      !std::ranges::all_of(decimals, IsDigit) || (whole[0] == '0' && whole.size() > 1)) {
    return false;
  }
  return point == text.end() ? whole[0] != '0'
                             : !decimals.empty() && decimals.size() <= 4 && decimals.back() != '0';
}

constexpr std::array<bool, 256> kDeviceCharacters = [] {
  std::array<bool, 256> characters{};
  for (const char c : std::string_view("abcdefghijklmnopqrstuvwxyz0123456789#")) {
    characters[static_cast<unsigned char>(c)] = true;
  }
  return characters;
}();

/// What the device's form of a text leaves as it is.
bool IsDeviceText(Bytes text, std::size_t most) {
  bool isKept = !text.empty() && text.size() <= most;
  for (const std::uint8_t c : text) {
    isKept &= kDeviceCharacters[c];
  }
  return isKept;
}

/// Cents with their sign, without leading zeros; not zero, which is not written.
bool IsPrice(Bytes value) {
  constexpr std::size_t most = 6;
  if (value.empty() || value.size() > most) {
    return false;
  }
  const unsigned digit = value.back() >> 4;
  const unsigned sign = value.back() & 15;
  const Bytes front = value.first(value.size() - 1);
  return digit <= 9 && (sign == 12 || sign == 13) && AreBcd(front) &&
         (front.empty() ? digit != 0 : front[0] != 0);
}

bool IsAsWritten(ZelTags tag, Bytes value) {
  switch (tag) {
    case ZelTags::Item_Quantity: return IsQuantity(value);
    case ZelTags::Item_Unit: return IsDeviceText(value, kUnitLength);
    case ZelTags::Item_Name: return IsDeviceText(value, kNameLength);
    case ZelTags::Item_DiscSurch:
    case ZelTags::Item_Voucher:
    case ZelTags::Item_Thirdparty: return value.empty();
    case ZelTags::Item_Price1:
    case ZelTags::Item_Price2:
    case ZelTags::Item_Price3:
    case ZelTags::Item_Price4:
    case ZelTags::Item_Price5:
    case ZelTags::Item_Price6: return IsPrice(value);
    default: return false;
  }
}

}  // namespace

bool AreAsWritten(Bytes records) noexcept {
  // Every item begins with its quantity and has a name; its tags ascend.
  bool isNamed = !records.empty();
  std::uint8_t before = 255;
  while (!records.empty()) {
    if (records.size() < kRecordHead || records.size() - kRecordHead < records[1]) {
      return false;
    }
    const auto tag = static_cast<ZelTags>(records[0]);
    const Bytes value = records.subspan(kRecordHead, records[1]);
    const bool isInOrder = tag == ZelTags::Item_Quantity ? isNamed : records[0] > before;
    if (!isInOrder || !IsAsWritten(tag, value)) {
      return false;
    }
    isNamed = tag == ZelTags::Item_Name || (isNamed && tag != ZelTags::Item_Quantity);
    before = records[0];
    records = records.subspan(kRecordHead + value.size());
  }
  return isNamed;
}

}  // namespace VnZEL10cmn::internal
