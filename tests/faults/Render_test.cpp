// Print engines that a host calls itself, with an error object of its own, while memory runs out.

#include <memory>

#include "Path.h"
#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tests/booking/Support.h"

namespace {

using test::FromHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemPrint;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::clsZelRprtPrint;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELSerialType;

/// Taxpayer, device and signature.
const ByteArray kReportResponse = FromHex(
    "C4 03 44 45 31 C5 01 02 9E 30 "
    "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 "
    "19 1A 1B 1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30");

struct World {
  std::shared_ptr<clsZelItemPrint> engine;
  std::shared_ptr<clsZelRprtPrint> reportEngine;
  std::shared_ptr<clsZelItemCash> item;
  std::shared_ptr<test::FakeItem> foreign;
  std::shared_ptr<clsZelTransAct> booking;
  std::shared_ptr<clsZelTransActData> record;
  std::shared_ptr<clsZelReport> report;
  std::string text;
  clsVnError errors;
};

using Step = test::Step<World>;
using Path = test::Path<World>;
constexpr auto Made = test::Made<World>;

/// The error object may hold an older error.
Step Rendered(std::string_view operation, std::function<std::string(World&)> render) {
  return {.operation = operation,
          .run =
              [render = std::move(render)](World& world) {
                world.text = render(world);
                return !world.errors.HasError();
              },
          .errors = [](World& world) { return &world.errors; },
          .prepare = [](World& world) { world.errors.Clear(); },
          .result = [](World& world) { return world.text; }};
}

/// A hash that can't be made shows in the text and in the object's own error; without the hash there is none.
Step RenderedWithHash(std::string_view operation, std::function<std::string(World&)> render,
                      std::function<bool(World&)> hashFailed) {
  Step step = Rendered(operation, std::move(render));
  step.run = [run = std::move(step.run), hashFailed = std::move(hashFailed)](World& world) {
    if (!run(world)) {
      return false;
    }
    const bool failed = hashFailed(world);
    EXPECT_EQ(failed, world.text.find("##FEHLER##") != std::string::npos);
    if (failed) {
      world.errors.ErrorNr(9000);
    }
    return !failed;
  };
  step.numbers = {9000};
  return step;
}

Path WholePath() {
  Path path = {
      Made("clsZelItemPrint", [](World& world) { world.engine = std::make_shared<clsZelItemPrint>(); }),
      Made("clsZelRprtPrint", [](World& world) { world.reportEngine = std::make_shared<clsZelRprtPrint>(); }),
      // What is rendered isn't made here: that fails elsewhere.
      Step{.operation = "objects",
           .run = [](World&) { return true; },
           .prepare =
               [](World& world) {
                 world.item = std::make_shared<clsZelItemCash>();
                 EXPECT_TRUE(world.item->SetItemData(2, "Bauernbrot aus Sauerteig", "Stück in Tüten", 12, 7));
                 world.foreign = std::make_shared<test::FakeItem>();
                 world.booking = std::make_shared<clsZelTransAct>();
                 test::FillSale(*world.booking);
                 EXPECT_TRUE(world.booking->AddItem(world.item));
                 world.record = std::make_shared<clsZelTransActData>();
                 world.record->TransactionDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
                 EXPECT_TRUE(world.record->BinaryDataSet(ZELSerialType::BinaryData, FromHex("61 62 63"), 0));
                 world.report = std::make_shared<clsZelReport>();
                 world.report->ReportDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
                 EXPECT_TRUE(world.report->BinaryDataSet(ZELSerialType::Response, kReportResponse, 0));
               }},
      Rendered("ToStringCI", [](World& w) { return w.engine->ToStringCI(w.item, &w.errors); }),
      Rendered("ToStringCI", [](World& w) { return w.engine->ToStringCI(*w.item, &w.errors); }),
      Rendered("ToStringCI", [](World& w) { return w.engine->ToStringCI(w.foreign, &w.errors); }),
      Rendered("ToStringCI", [](World& w) { return w.engine->ToStringCI(nullptr, &w.errors); }),
      RenderedWithHash(
          "ToStringBI", [](World& w) { return w.engine->ToStringBI(w.booking, &w.errors); },
          [](World& w) { return w.booking->HasError(); }),
      RenderedWithHash(
          "ToStringTRdata", [](World& w) { return w.engine->ToStringTRdata(w.record, &w.errors); },
          [](World& w) { return w.record->HasError(); }),
      Rendered("ToStringItmRpt", [](World& w) { return w.reportEngine->ToStringItmRpt(w.item, &w.errors); }),
      Rendered("ToStringRprt", [](World& w) { return w.reportEngine->ToStringRprt(w.report, &w.errors); }),
      Made("AddItem",
           [](World& w) {
             w.foreign->failPrices = true;
             w.foreign->ErrorObject().SetError(4711, "the prices of this item are nowhere to be found");
           }),
      Step{.operation = "objects",
           .run = [](World&) { return true; },
           .prepare = [](World& world) { EXPECT_TRUE(world.booking->AddItem(world.foreign)); }},
      Rendered("ToStringBI", [](World& w) { return w.engine->ToStringBI(w.booking, &w.errors); }),
  };
  return path;
}

TEST(PrintEngineWithoutMemory, HandsItsFailureOver) { test::FailEachAllocation(WholePath()); }

}  // namespace
