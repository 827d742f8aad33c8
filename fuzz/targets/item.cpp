// Reading of one item.

#include "fuzz/Objects.h"
#include "fuzz/Targets.h"

namespace fuzz {

void Item(Bytes data) {
  using VnZEL10cmn::ByteArray;
  Input input(data);
  const std::uint8_t options = input.Byte();
  const Place place = TakePlace(input);
  VnZEL10cmn::clsZelItemCash item;
  if ((options & 1) != 0) {
    item.SetItemData(VnZEL10cmn::Currency(3), "what stood there before", "kg", 1, 2, 3, true, true, true);
  }
  std::int32_t start = place.start;
  const bool done = item.BinaryDataSet(place.buffer, start);
  CheckOutcome(item, done, "BinaryDataSet");
  FUZZ_CHECK(item.Quantity() != VnZEL10cmn::Currency());
  if (!done) {
    FUZZ_CHECK(start == place.start);
    return;
  }
  FUZZ_CHECK(start >= place.start + 2 && start <= std::int64_t{place.buffer.UBound()} + 1);

  auto prices = VnZEL10cmn::CurrencyArray::WithBounds(0, 5);
  bool isThirdParty = !item.ThirdParty();
  FUZZ_CHECK(item.GetPrices(prices, isThirdParty));
  FUZZ_CHECK(isThirdParty == item.ThirdParty() && prices[5] == item.Price(6));

  // What decodes can be encoded again, unless it has no name or more than the device's form can hold.
  ByteArray records = Canary(0, kItemRoom - 1);
  std::int32_t end = 0;
  if (!item.BinaryDataGet(records, end)) {
    CheckOutcome(item, false, "BinaryDataGet");
    FUZZ_CHECK(IsIntactOutside(records, 0, kItemRoom / 2));
    return;
  }
  FUZZ_CHECK(IsIntactOutside(records, 0, end));
  records.RedimPreserve(end - 1);
  VnZEL10cmn::clsZelItemCash again;
  std::int32_t at = 0;
  FUZZ_CHECK(again.BinaryDataSet(records, at) && at >= end - 1);
  FUZZ_CHECK(HaveSameValues(item, again));
  ByteArray rewritten = ByteArray::WithBounds(0, kItemRoom - 1);
  std::int32_t rewrittenEnd = 0;
  FUZZ_CHECK(again.BinaryDataGet(rewritten, rewrittenEnd));
  rewritten.RedimPreserve(rewrittenEnd - 1);
  FUZZ_CHECK(rewritten == records);
  // An array that lacks one byte is refused, and nothing is written behind it.
  ByteArray tooShort = Canary(0, end - 2);
  std::int32_t stopped = 0;
  FUZZ_CHECK(!item.BinaryDataGet(tooShort, stopped) && stopped <= end - 1);
  CheckOutcome(item, false, "BinaryDataGet");
  if ((options & 2) != 0) {
    CheckText(item);
  }
}

}  // namespace fuzz
