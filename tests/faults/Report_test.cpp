// A report from its first object to its text, while memory runs out.

#include <memory>
#include <optional>

#include "Log.h"
#include "Path.h"
#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tests/report/Support.h"

namespace {

using test::FromHex;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnLogFile;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::VnObject;
using VnZEL10cmn::ZELHashFmt;
using VnZEL10cmn::ZelReportType;
using VnZEL10cmn::ZELSerialType;

struct World {
  std::shared_ptr<clsVnLogFile> log;
  std::shared_ptr<clsZelItemCash> item;
  std::optional<clsZelReport> report;
  std::optional<clsZelReport> copy;
  ByteArray data;
  std::int32_t length = 0;
  std::string text;
  std::string document;
};

using Step = test::Step<World>;
using Path = test::Path<World>;
using Report = std::optional<clsZelReport> World::*;

const ByteArray kResponse =
    FromHex(test::Join(test::kState, test::kTaxpayer, test::kDevice, test::kSequence, test::kFirst,
                       test::kLast, test::kStandard, test::kTraining, test::kSigned));
const ByteArray kUnknownResponse = FromHex("C0 01 03 C4 03 44 45 31 01 01 01");
const ByteArray kDamagedResponse = FromHex("C0 01 03 E1 12 D8 08 12 34 56 78 90 12 34 5C");
const ByteArray kItems = FromHex(test::kSaleItems);
const ByteArray kActivation = FromHex("CD 04 20 24 03 15 CE 02 14 37 C3 06 31 32 33 34 35 36");

std::string Shown(const clsZelReport& report) {
  std::string text = std::to_string(report.ReportDate().Value()) + " " +
                     std::to_string(report.SpanMonthFrom().Value()) + " " +
                     std::to_string(report.SpanMonthUpTo().Value()) + " " +
                     std::to_string(static_cast<int>(report.ReportType())) + " " +
                     std::to_string(static_cast<int>(report.ZelStatus())) + "\n" + report.ZelProfile() +
                     "\n" + report.TransportPIN() + "\n" + report.TpID() + "\n" + report.Signature() + "\n";
  for (const Currency number :
       {report.TpIdNbr(), report.SequenceNbr(), report.TransSeqNrFirst(), report.TransSeqNrLast()}) {
    text += std::to_string(number.Scaled()) + " ";
  }
  for (std::int32_t number = 1; number <= 9; ++number) {
    text += "\n" + std::to_string(report.Container(number)->Turnover().Scaled());
  }
  for (const auto& item : report) {
    text += "\n" + dynamic_cast<const clsZelItemCash&>(*item).Name();
  }
  return text;
}

Step Made(std::string_view what, std::function<void(World&)> make) {
  return {.operation = what, .run = [make = std::move(make)](World& world) {
            make(world);
            return true;
          }};
}

Step On(Report report, std::string_view operation, std::function<bool(World&, clsZelReport&)> run,
        std::vector<std::int32_t> numbers = {}) {
  return {.operation = operation,
          .run = [=, run = std::move(run)](World& world) { return run(world, *(world.*report)); },
          .object = [=](World& world) -> VnObject* { return &*(world.*report); },
          .result = [=](World& world) { return Shown(*(world.*report)); },
          .numbers = std::move(numbers)};
}

Step Get(ZELSerialType type, std::int32_t start, std::int32_t upper,
         ZelReportType reportType = ZelReportType::Undefined) {
  Step step = On(&World::report, "BinaryDataGet",
                 [=](World& world, clsZelReport& report) {
                   return report.BinaryDataGet(type, world.data, start, reportType, &world.length);
                 },
                 {9000, 9301, 9302, 9307});
  step.prepare = [=](World& world) { world.data.Redim(0, upper); };
  step.kept = [](World& world) { return ToHex(world.data); };
  step.result = [](World& world) { return ToHex(world.data) + "\n" + Shown(*world.report); };
  return step;
}

Step Set(Report report, ZELSerialType type, const ByteArray& data, std::int32_t start = 0) {
  return On(report, "BinaryDataSet",
            [=, &data](World&, clsZelReport& to) { return to.BinaryDataSet(type, data, start); },
            {9301, 9302, 9305});
}

Step GetHash(ZELHashFmt format, bool fromMem) {
  Step step = On(&World::report, "GetItemHash",
                 [=](World& world, clsZelReport& report) {
                   world.text = report.GetItemHash(format, fromMem, 5);
                   return !world.text.empty() && !report.HasError();
                 },
                 {9000});
  step.result = [](World& world) { return world.report->HasError() ? "" : world.text; };
  return step;
}

Step ToText(Report report) {
  Step step = On(report, "ToString", [](World& world, clsZelReport& of) {
    world.text = of.ToString();
    return !world.text.empty() && !of.HasError();
  });
  step.result = [](World& world) { return world.text; };
  return step;
}

Step Export() {
  Step step =
      On(&World::report, "XmlHandler",
         [](World& world, clsZelReport& report) { return report.XmlHandler(world.document, true); }, {9301});
  step.prepare = [](World& world) { world.document = "what stood there before"; };
  step.kept = step.result = [](World& world) { return world.document; };
  return step;
}

Path WholePath(const std::string& logName = "") {
  return test::Joined(
      {test::OpenLog<World>(logName),
       {Made("clsZelItemCash", [](World& world) { world.item = std::make_shared<clsZelItemCash>(); }),
        Made("clsZelReport", [](World& world) { world.report.emplace(); }),
        Made("properties",
             [](World& world) {
               world.report->LogHandler(world.log);
               world.report->ReportDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
               world.report->SpanMonthFrom(Date::FromCivil(2024, 1, 15));
               world.report->SpanMonthUpTo(Date::FromCivil(2024, 3, 15));
             }),
        Made("ZelProfile", [](World& world) { world.report->ZelProfile("die Kasse im Erdgeschoss links"); }),
        Made("TransportPIN", [](World& world) { world.report->TransportPIN("a PIN that is no PIN at all"); }),
        Get(ZELSerialType::Request, 0, -1, ZelReportType::ActivateZEL),
        Made("TransportPIN", [](World& world) { world.report->TransportPIN("123456"); }),
        Get(ZELSerialType::Request, 0, -1, ZelReportType::ActivateZEL),
        Get(ZELSerialType::Request, 0, -1, ZelReportType::Span),
        Get(ZELSerialType::Request, 0, -1, ZelReportType::Unsigned),
        Step{.operation = "SetItemData",
             .run =
                 [](World& world) {
                   return world.item->SetItemData(2, "Bauernbrot aus Sauerteig", "Stück in Papiertüten", 12);
                 },
             .object = [](World& world) -> VnObject* { return world.item.get(); }},
        On(&World::report, "AddItem",
           [](World& world, clsZelReport& report) { return report.AddItem(world.item); }),
        Get(ZELSerialType::Request, 0, -1),
        Export(),
        GetHash(ZELHashFmt::Base16, false),
        GetHash(ZELHashFmt::Base32, true),
        Get(ZELSerialType::ItemList, 2, 199),
        Get(ZELSerialType::ItemHash, 2, 199),
        Get(ZELSerialType::Response, 2, 199),
        Get(ZELSerialType::BinaryData, 2, 199),
        Set(&World::report, ZELSerialType::Response, kResponse),
        Get(ZELSerialType::Response, 2, 299),
        Get(ZELSerialType::Response, 2, 99),
        ToText(&World::report),
        Export(),
        Made("clsZelReport", [](World& world) { world.copy.emplace(); }),
        On(&World::copy, "XmlHandler",
           [](World& world, clsZelReport& copy) { return copy.XmlHandler(world.document, false); },
           {9301, 9302}),
        ToText(&World::copy),
        Set(&World::copy, ZELSerialType::ItemList, kItems),
        Set(&World::copy, ZELSerialType::ItemList, kResponse),
        Set(&World::copy, ZELSerialType::Request, kActivation),
        Set(&World::copy, ZELSerialType::Request, kResponse),
        Set(&World::copy, ZELSerialType::Response, kResponse, 999),
        Set(&World::copy, ZELSerialType::Response, kUnknownResponse),
        Set(&World::copy, ZELSerialType::Response, kDamagedResponse)}});
}

TEST(ReportWithoutMemory, FailsWithItsNumberAndGoesOnAfterwards) { test::FailEachAllocation(WholePath()); }

TEST(ReportWithoutMemory, IsTheSameWithALog) {
  const test::TempDir folder;
  const std::string name = folder.File("a log with a name of some length.log");
  test::FailEachAllocation(WholePath(name), {test::kOne});
  test::ExpectWholeEntries(name);
}

}  // namespace
