// A report from its first object to its text, while memory runs out.

#include <memory>
#include <optional>

#include "Exchange.h"
#include "Log.h"
#include "tests/report/Support.h"

namespace {

using test::FromHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELHashFmt;
using VnZEL10cmn::ZelReportType;
using VnZEL10cmn::ZELSerialType;

struct World : test::Exchanged {
  using Exchanged::Shown;
  static std::string Shown(const clsZelReport& report) {
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
      text += "\n" + Shown(dynamic_cast<const clsZelItemCash&>(*item));
    }
    return text;
  }

  std::shared_ptr<clsZelItemCash> item;
  std::optional<clsZelReport> report;
  std::optional<clsZelReport> copy;
};

using Step = test::Step<World>;
using Path = test::Path<World>;
using Report = std::optional<clsZelReport> World::*;
using test::Export;
using test::On;
constexpr auto Made = test::Made<World>;

const ByteArray kResponse =
    FromHex(test::Join(test::kState, test::kTaxpayer, test::kDevice, test::kSequence, test::kFirst,
                       test::kLast, test::kStandard, test::kTraining, test::kSigned));
const ByteArray kUnknownResponse = FromHex("C0 01 03 C4 03 44 45 31 01 01 01");
const ByteArray kDamagedResponse = FromHex("C0 01 03 E1 12 D8 08 12 34 56 78 90 12 34 5C");
const ByteArray kItems = FromHex(test::kSaleItems);
const ByteArray kActivation = FromHex("CD 04 20 24 03 15 CE 02 14 37 C3 06 31 32 33 34 35 36");

Step Get(ZELSerialType type, std::int32_t start, std::int32_t upper,
         ZelReportType reportType = ZelReportType::Undefined) {
  return test::Get(&World::report, type, start, upper, {9000, 9301, 9302, 9307}, reportType);
}

Step Set(Report report, ZELSerialType type, const ByteArray& data, std::int32_t start = 0) {
  return test::Set(report, type, data, start, {9301, 9302, 9305});
}

Step GetHash(ZELHashFmt format, bool fromMem) {
  return test::TextOf(&World::report, "GetItemHash",
                      [=](clsZelReport& report) { return report.GetItemHash(format, fromMem, 5); }, {9000});
}

Step ToText(Report report) { return test::ToText(report, {}); }

Path WholePath() {
  return {
      Made("clsZelItemCash", [](World& world) { world.item = std::make_shared<clsZelItemCash>(); }),
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
      On(&World::item, "SetItemData",
         [](World&, clsZelItemCash& item) {
           return item.SetItemData(2, "Bauernbrot aus Sauerteig", "Stück in Papiertüten", 12);
         }),
      On(&World::report, "AddItem",
         [](World& world, clsZelReport& report) { return report.AddItem(world.item); }),
      Get(ZELSerialType::Request, 0, -1),
      Export(&World::report),
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
      Export(&World::report),
      Made("clsZelReport", [](World& world) { world.copy.emplace(); }),
      test::Import(&World::copy),
      ToText(&World::copy),
      Set(&World::copy, ZELSerialType::ItemList, kItems),
      Set(&World::copy, ZELSerialType::ItemList, kResponse),
      Set(&World::copy, ZELSerialType::Request, kActivation),
      Set(&World::copy, ZELSerialType::Request, kResponse),
      Set(&World::copy, ZELSerialType::Response, kResponse, 999),
      Set(&World::copy, ZELSerialType::Response, kUnknownResponse),
      Set(&World::copy, ZELSerialType::Response, kDamagedResponse)};
}

TEST(ReportWithoutMemory, FailsWithItsNumberAndGoesOnAfterwards) { test::FailEachAllocation(WholePath()); }

TEST(ReportWithoutMemory, IsTheSameWithALog) { test::FailEachAllocationWithLog(WholePath(), {test::kOne}); }

}  // namespace
