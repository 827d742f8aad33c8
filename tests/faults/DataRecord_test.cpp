// A signed data record from its first byte to its receipt, while memory runs out.

#include <memory>
#include <optional>

#include "Log.h"
#include "Path.h"
#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tests/support/Hex.h"

namespace {

using test::FromHex;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnLogFile;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::Date;
using VnZEL10cmn::VnObject;
using VnZEL10cmn::ZELDataSignTypes;
using VnZEL10cmn::ZELHashFmt;
using VnZEL10cmn::ZELSerialType;

struct World {
  std::shared_ptr<clsVnLogFile> log;
  std::optional<clsZelTransActData> record;
  std::optional<clsZelTransActData> copy;
  ByteArray data;
  std::int32_t length = 0;
  std::string text;
  std::string document;
};

using Step = test::Step<World>;
using Path = test::Path<World>;
using Record = std::optional<clsZelTransActData> World::*;

const ByteArray kData =
    FromHex("61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70 71 72 73 74 75 76 77 78 79 7A");
const ByteArray kResponse = FromHex(
    "C4 14 41 42 43 44 45 46 47 48 49 4A 41 42 43 44 45 46 47 48 49 4A C5 01 02 CB 02 01 2C 9E 30 "
    "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 "
    "19 1A 1B 1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30");
const ByteArray kUnknown = FromHex("CB 02 01 2C 01 01 01");
const ByteArray kDamaged = FromHex("CB 02 01 2C C5 05 01 01");

std::string Shown(const clsZelTransActData& record) {
  return std::to_string(record.TransactionDate().Value()) + " " +
         std::to_string(static_cast<int>(record.DataSignType())) + "\n" + record.ZelRqstData() + "\n" +
         record.DataToSign() + "\n" + record.DataHash() + "\n" + record.ZelRespData() + "\n" +
         record.ZelRespTpID() + "\n" + std::to_string(record.ZelRespTpIDNr().Scaled()) + " " +
         std::to_string(record.ZelRespSeqNr().Scaled()) + "\n" + record.ZelRespSignature();
}

Step Made(std::string_view what, std::function<void(World&)> make) {
  return {.operation = what, .run = [make = std::move(make)](World& world) {
            make(world);
            return true;
          }};
}

Step On(Record record, std::string_view operation, std::function<bool(World&, clsZelTransActData&)> run,
        std::vector<std::int32_t> numbers = {}) {
  return {.operation = operation,
          .run = [=, run = std::move(run)](World& world) { return run(world, *(world.*record)); },
          .object = [=](World& world) -> VnObject* { return &*(world.*record); },
          .result = [=](World& world) { return Shown(*(world.*record)); },
          .numbers = std::move(numbers)};
}

Step Get(ZELSerialType type, std::int32_t start, std::int32_t upper) {
  Step step = On(&World::record, "BinaryDataGet",
                 [=](World& world, clsZelTransActData& record) {
                   return record.BinaryDataGet(type, world.data, start, &world.length);
                 },
                 {9301});
  step.prepare = [=](World& world) { world.data.Redim(0, upper); };
  step.kept = [](World& world) { return ToHex(world.data); };
  step.result = [](World& world) { return ToHex(world.data) + "\n" + Shown(*world.record); };
  return step;
}

Step Set(Record record, ZELSerialType type, const ByteArray& data, std::int32_t start = 0) {
  return On(record, "BinaryDataSet",
            [=, &data](World&, clsZelTransActData& to) { return to.BinaryDataSet(type, data, start); },
            {9301, 9305});
}

Step GetHash(ZELHashFmt format, bool fromMem) {
  Step step = On(&World::record, "GetDataHash",
                 [=](World& world, clsZelTransActData& record) {
                   world.text = record.GetDataHash(format, fromMem, 5);
                   return !world.text.empty() && !record.HasError();
                 },
                 {9000});
  step.result = [](World& world) { return world.record->HasError() ? "" : world.text; };
  return step;
}

Step ToText(Record record) {
  Step step = On(record, "ToString",
                 [](World& world, clsZelTransActData& of) {
                   world.text = of.ToString();
                   return !world.text.empty() && !of.HasError();
                 },
                 {9000});
  step.result = [](World& world) { return world.text; };
  return step;
}

Step Export() {
  Step step =
      On(&World::record, "XmlHandler",
         [](World& world, clsZelTransActData& record) { return record.XmlHandler(world.document, true); },
         {9301});
  step.prepare = [](World& world) { world.document = "what stood there before"; };
  step.kept = step.result = [](World& world) { return world.document; };
  return step;
}

Step Import(std::function<void(std::string&)> change = [](std::string&) {}) {
  Step step = On(&World::copy, "XmlHandler",
                 [](World& world, clsZelTransActData& copy) { return copy.XmlHandler(world.text, false); },
                 {9301, 9302});
  step.prepare = [change = std::move(change)](World& world) {
    world.text = world.document;
    change(world.text);
  };
  return step;
}

Path WholePath(const std::string& logName = "") {
  return test::Joined(
      {test::OpenLog<World>(logName),
       {Made("clsZelTransActData", [](World& world) { world.record.emplace(); }),
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
        Export(),
        Get(ZELSerialType::BinaryData, 1, 99),
        Get(ZELSerialType::ItemList, 1, 99),
        GetHash(ZELHashFmt::Base64, true),
        GetHash(ZELHashFmt::Base32, false),
        GetHash(ZELHashFmt::Base16, false),
        ToText(&World::record),
        Set(&World::record, ZELSerialType::Response, kResponse),
        Get(ZELSerialType::Response, 1, 199),
        ToText(&World::record),
        Export(),
        Made("clsZelTransActData",
             [](World& world) {
               world.copy.emplace();
               world.copy->TransactionDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
             }),
        Import(),
        ToText(&World::copy),
        Import([](std::string& text) { text.erase(text.find("transactionRequest"), 1); }),
        Import([](std::string& text) { text.clear(); }),
        Import([](std::string& text) { text[text.find("<transactionResponse>") + 22] = '.'; }),
        Set(&World::copy, ZELSerialType::Response, kUnknown),
        Set(&World::copy, ZELSerialType::Response, kDamaged),
        Set(&World::copy, ZELSerialType::Request, kResponse),
        Set(&World::copy, ZELSerialType::Request, kResponse, 999),
        On(&World::copy, "Clear", [](World&, clsZelTransActData& copy) { return copy.Clear(); })}});
}

TEST(DataRecordWithoutMemory, FailsWithItsNumberAndGoesOnAfterwards) {
  test::FailEachAllocation(WholePath());
}

TEST(DataRecordWithoutMemory, IsTheSameWithALog) {
  const test::TempDir folder;
  const std::string name = folder.File("a log with a name of some length.log");
  test::FailEachAllocation(WholePath(name), {test::kOne});
  test::ExpectWholeEntries(name);
}

}  // namespace
