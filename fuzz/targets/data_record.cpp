// Reading of a signed data record: its data, its request, the device's response.

#include "fuzz/Objects.h"
#include "fuzz/Targets.h"

namespace fuzz {

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::ZELDataSignTypes;
using VnZEL10cmn::ZELHashFmt;
using VnZEL10cmn::ZELSerialType;

void CheckStored(clsZelTransActData& record, ZELSerialType type, const std::vector<std::uint8_t>& expected) {
  CheckHandOut(expected, [&](ByteArray& buffer, std::int32_t start, std::int32_t* length) {
    return record.BinaryDataGet(type, buffer, start, length);
  });
}

void CheckData(clsZelTransActData& record, const Delivery& delivery) {
  CheckStored(record, ZELSerialType::BinaryData, delivery.Meant());
  FUZZ_CHECK(FromBase64(record.DataHash()).size() == (record.UseSHA256() ? 32 : 20));
  for (const ZELHashFmt format : {ZELHashFmt::Base64, ZELHashFmt::Base32, ZELHashFmt::Base16}) {
    FUZZ_CHECK(record.GetDataHash(format, true) == record.GetDataHash(format, false));
  }
  FUZZ_CHECK(record.GetDataHash(ZELHashFmt::Base64, true) == record.DataHash());
}

/// A request that has the hash can be made again of what was read, and reads the same.
void CheckRequest(clsZelTransActData& record, const Delivery& delivery) {
  const std::vector<std::uint8_t> meant = delivery.Meant();
  FUZZ_CHECK(FromBase64(record.ZelRqstData()) == meant);
  FUZZ_CHECK(FromBase64(record.DataHash()) ==
             LastValue(meant, VnZEL10cmn::ZelTags::Hash_Trans_Items).value_or(std::vector<std::uint8_t>()));
  FUZZ_CHECK((record.DataSignType() == ZELDataSignTypes::DataAndTime) ==
             LastValue(meant, VnZEL10cmn::ZelTags::tTime).has_value());
  if (record.DataHash().empty()) {
    return;
  }
  ByteArray request = Canary(0, 99);
  std::int32_t length = 0;
  FUZZ_CHECK(record.BinaryDataGet(ZELSerialType::Request, request, 0, &length));
  FUZZ_CHECK(IsIntactOutside(request, 0, length));
  clsZelTransActData again;
  FUZZ_CHECK(again.BinaryDataSet(ZELSerialType::Request, request, 0, length));
  FUZZ_CHECK(again.DataHash() == record.DataHash() && again.DataSignType() == record.DataSignType());
  FUZZ_CHECK(record.DataSignType() != ZELDataSignTypes::DataAndTime ||
             again.TransactionDate().ToCivil().minute == record.TransactionDate().ToCivil().minute);
}

}  // namespace

void DataRecord(Bytes data) {
  constexpr ZELSerialType kTypes[] = {ZELSerialType::BinaryData, ZELSerialType::Request,
                                      ZELSerialType::Response};
  Input input(data);
  const std::uint8_t options = input.Byte();
  const Delivery delivery = Delivery::Take(input, kTypes[options % 3]);
  clsZelTransActData record;
  record.UseSHA256((options & 64) != 0);
  if (Deliver(record, delivery)) {
    switch (delivery.type) {
      case ZELSerialType::BinaryData: CheckData(record, delivery); break;
      case ZELSerialType::Request: CheckRequest(record, delivery); break;
      default:
        CheckStored(record, ZELSerialType::Response, delivery.Meant());
        FUZZ_CHECK(IsLastText(delivery.Meant(), VnZEL10cmn::ZelTags::Tp_ID, record.ZelRespTpID()));
        FUZZ_CHECK(FromBase64(record.ZelRespSignature()) ==
                   LastValue(delivery.Meant(), VnZEL10cmn::ZelTags::Signature)
                       .value_or(std::vector<std::uint8_t>()));
    }
  }
  if ((options & 128) != 0) {
    CheckText(record);
    FUZZ_CHECK(record.Clear() && !record.HasError() && record.DataSignType() == ZELDataSignTypes::DataOnly);
    FUZZ_CHECK(record.GetDataHash(ZELHashFmt::Base64).empty());
  }
}

}  // namespace fuzz
