// Reading of an item list.

#include "fuzz/Objects.h"
#include "fuzz/Targets.h"

namespace fuzz {

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelItemCash;

const clsZelItemCash& CashItem(const VnZEL10cmn::clsZelItemList& list, std::int32_t number) {
  return dynamic_cast<const clsZelItemCash&>(*list.ItemI(number));
}

void CheckPositions(VnZEL10cmn::clsZelItemList& list) {
  std::int32_t number = 0;
  for (const auto& item : list) {
    ++number;
    FUZZ_CHECK(list.ItemI(number) == item && list.ItemK(item->InstanceID()) == item);
  }
  FUZZ_CHECK(number == list.ItemCount());
  FUZZ_CHECK(!list.ItemI(0) && !list.ItemI(number + 1));
}

}  // namespace

void ItemList(Bytes data) {
  Input input(data);
  const std::uint8_t options = input.Byte();
  const Delivery delivery = Delivery::Take(input, VnZEL10cmn::ZELSerialType::ItemList);
  const ByteArray& buffer = delivery.place.buffer;
  VnZEL10cmn::clsZelItemList list;
  FUZZ_CHECK(list.AddItem(std::make_shared<clsZelItemCash>()));
  std::int32_t start = delivery.place.start;
  const bool done = list.BinaryDataSet(buffer, start, delivery.length);
  CheckOutcome(list, done, "BinaryDataSet");
  CheckPositions(list);
  const bool began = delivery.place.start >= buffer.LBound() && delivery.place.start <= buffer.UBound();
  FUZZ_CHECK(start >= delivery.place.start);
  FUZZ_CHECK(began ? start <= std::int64_t{buffer.UBound()} + 1 : start == delivery.place.start);
  if (!done) {
    // Too long a length is found before anything is done.
    const bool tooLong = list.ErrorObject().ErrorNr() == 9207;
    FUZZ_CHECK(!tooLong || (start == delivery.place.start && list.ItemCount() == 1));
    return;
  }
  ByteArray records;
  std::int32_t end = 0;
  if (!list.BinaryDataGet(records, end)) {
    CheckOutcome(list, false, "BinaryDataGet");
    return;
  }
  FUZZ_CHECK(end >= 0 && end <= records.UBound() + 1);
  records.RedimPreserve(end - 1);
  VnZEL10cmn::clsZelItemList again;
  std::int32_t at = 0;
  FUZZ_CHECK(again.BinaryDataSet(records, at));
  FUZZ_CHECK(again.ItemCount() == list.ItemCount());
  for (std::int32_t number = 1; number <= list.ItemCount(); ++number) {
    FUZZ_CHECK(HaveSameValues(CashItem(list, number), CashItem(again, number)));
  }
  ByteArray rewritten;
  std::int32_t rewrittenEnd = 0;
  FUZZ_CHECK(again.BinaryDataGet(rewritten, rewrittenEnd));
  rewritten.RedimPreserve(rewrittenEnd - 1);
  FUZZ_CHECK(rewritten == records);
  // The hash is that of these bytes.
  const bool bit256 = (options & 1) != 0;
  std::string hash;
  ByteArray digest;
  VnZEL10cmn::clsHelper01 helper;
  FUZZ_CHECK(list.GetItemHash(bit256, false, false, hash));
  FUZZ_CHECK(bit256 ? helper.GetSHA256Hash1(records, digest) : helper.GetSHA1Hash1(records, digest));
  FUZZ_CHECK(FromBase64(hash) == Content(digest));
  if ((options & 2) != 0) {
    CheckText(list);
  }
  if ((options & 4) != 0) {
    FUZZ_CHECK(list.RemoveItem(nullptr, {}, 1));
    FUZZ_CHECK(list.Clear() && list.ItemCount() == 0);
  }
}

}  // namespace fuzz
