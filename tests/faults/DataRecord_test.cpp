// A signed data record from its first byte to its receipt, while memory runs out.

#include <optional>

#include "Exchange.h"
#include "Log.h"

namespace {

using test::FromHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELDataSignTypes;
using VnZEL10cmn::ZELHashFmt;
using VnZEL10cmn::ZELSerialType;

struct World : test::Exchanged {
  static std::string Shown(const clsZelTransActData& record) {
    return std::to_string(record.TransactionDate().Value()) + " " +
           std::to_string(static_cast<int>(record.DataSignType())) + "\n" + record.ZelRqstData() + "\n" +
           record.DataToSign() + "\n" + record.DataHash() + "\n" + record.ZelRespData() + "\n" +
           record.ZelRespTpID() + "\n" + std::to_string(record.ZelRespTpIDNr().Scaled()) + " " +
           std::to_string(record.ZelRespSeqNr().Scaled()) + "\n" + record.ZelRespSignature();
  }

  std::optional<clsZelTransActData> record;
  std::optional<clsZelTransActData> copy;
};

using Step = test::Step<World>;
using Path = test::Path<World>;
using Record = std::optional<clsZelTransActData> World::*;
using test::Export;
using test::Import;
using test::On;
constexpr auto Made = test::Made<World>;

const ByteArray kData =
    FromHex("61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70 71 72 73 74 75 76 77 78 79 7A");
const ByteArray kResponse = FromHex(
    "C4 14 41 42 43 44 45 46 47 48 49 4A 41 42 43 44 45 46 47 48 49 4A C5 01 02 CB 02 01 2C 9E 30 "
    "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 "
    "19 1A 1B 1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30");
const ByteArray kUnknown = FromHex("CB 02 01 2C 01 01 01");
const ByteArray kDamaged = FromHex("CB 02 01 2C C5 05 01 01");

Step Get(ZELSerialType type, std::int32_t start, std::int32_t upper) {
  return test::Get(&World::record, type, start, upper, {9301});
}

Step Set(Record record, ZELSerialType type, const ByteArray& data, std::int32_t start = 0) {
  return test::Set(record, type, data, start, {9301, 9305});
}

Step GetHash(ZELHashFmt format, bool fromMem) {
  return test::TextOf(&World::record, "GetDataHash",
                      [=](clsZelTransActData& record) { return record.GetDataHash(format, fromMem, 5); },
                      {9000});
}

Step ToText(Record record) { return test::ToText(record, {9000}); }

Path WholePath() {
  return {
      Made("clsZelTransActData", [](World& world) { world.record.emplace(); }),
      Made("properties",
           [](World& world) {
             world.record->LogHandler(world.log);
             world.record->TransactionDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
           }),
      Get(ZELSerialType::Request, 0, 99),
      GetHash(ZELHashFmt::Base64, false),
      ToText(&World::record),
      Set(&World::record, ZELSerialType::BinaryData, kData),
      Get(ZELSerialType::Request, 0, 99),
      Get(ZELSerialType::Request, 90, 99),
      Made("DataSignType", [](World& world) { world.record->DataSignType(ZELDataSignTypes::DataAndTime); }),
      Get(ZELSerialType::Request, 1, 99),
      Get(ZELSerialType::Response, 1, 99),
      Export(&World::record),
      Get(ZELSerialType::BinaryData, 1, 99),
      Get(ZELSerialType::ItemList, 1, 99),
      GetHash(ZELHashFmt::Base64, true),
      GetHash(ZELHashFmt::Base32, false),
      GetHash(ZELHashFmt::Base16, false),
      ToText(&World::record),
      Set(&World::record, ZELSerialType::Response, kResponse),
      Get(ZELSerialType::Response, 1, 199),
      ToText(&World::record),
      Export(&World::record),
      Made("clsZelTransActData",
           [](World& world) {
             world.copy.emplace();
             world.copy->TransactionDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
           }),
      Import(&World::copy),
      ToText(&World::copy),
      Import(&World::copy, [](std::string& text) { text.erase(text.find("transactionRequest"), 1); }),
      Import(&World::copy, [](std::string& text) { text.clear(); }),
      Import(&World::copy, [](std::string& text) { text[text.find("<transactionResponse>") + 22] = '.'; }),
      Set(&World::copy, ZELSerialType::Response, kUnknown),
      Set(&World::copy, ZELSerialType::Response, kDamaged),
      Set(&World::copy, ZELSerialType::Request, kResponse),
      Set(&World::copy, ZELSerialType::Request, kResponse, 999),
      On(&World::copy, "Clear", [](World&, clsZelTransActData& copy) { return copy.Clear(); })};
}

TEST(DataRecordWithoutMemory, FailsWithItsNumberAndGoesOnAfterwards) {
  test::FailEachAllocation(WholePath());
}

TEST(DataRecordWithoutMemory, IsTheSameWithALog) {
  test::FailEachAllocationWithLog(WholePath(), {test::kOne});
}

}  // namespace
