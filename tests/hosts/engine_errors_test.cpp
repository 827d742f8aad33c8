// What an error object that is handed to a print engine holds afterwards.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::clsVnError;
using test::clsZelReport;
using test::clsZelTransAct;
using test::clsZelTransActData;
using VnZEL10cmn::clsZelItemPrint;
using VnZEL10cmn::clsZelRprtPrint;

using Rendering = std::function<std::string(clsVnError*)>;

/// Everything that can be rendered, by the engines themselves.
struct Renderings {
  Renderings() {
    test::FillSale(*booking);
    EXPECT_TRUE(record->BinaryDataSet(VnZEL10cmn::ZELSerialType::BinaryData, test::FromHex("61"), 0));
  }

  clsZelItemPrint engine;
  clsZelRprtPrint reportEngine;
  std::shared_ptr<test::clsZelItemCash> item = test::CashItem("Brot", 2);
  std::shared_ptr<clsZelTransAct> booking = std::make_shared<clsZelTransAct>();
  std::shared_ptr<clsZelTransActData> record = std::make_shared<clsZelTransActData>();
  std::shared_ptr<clsZelReport> report = std::make_shared<clsZelReport>();

  std::vector<std::pair<std::string, Rendering>> All() {
    return {
        {"item", [this](clsVnError* e) { return engine.ToStringCI(item, e); }},
        {"item by reference", [this](clsVnError* e) { return engine.ToStringCI(*item, e); }},
        {"booking", [this](clsVnError* e) { return engine.ToStringBI(booking, e); }},
        {"booking by reference", [this](clsVnError* e) { return engine.ToStringBI(*booking, e); }},
        {"record", [this](clsVnError* e) { return engine.ToStringTRdata(record, e); }},
        {"record by reference", [this](clsVnError* e) { return engine.ToStringTRdata(*record, e); }},
        {"report", [this](clsVnError* e) { return reportEngine.ToStringRprt(report, e); }},
        {"report by reference", [this](clsVnError* e) { return reportEngine.ToStringRprt(*report, e); }},
        {"report's item", [this](clsVnError* e) { return reportEngine.ToStringItmRpt(item, e); }},
    };
  }
};

TEST(ErrorObjectOfARendering, IsClearAfterASuccess) {
  Renderings renderings;
  for (const auto& [what, render] : renderings.All()) {
    clsVnError error("Kasse.Beleg", "INSTANZ");
    error.SetError(4711, "von früher", true, "Drucken");
    EXPECT_NE(render(&error), "") << what;
    EXPECT_FALSE(error.HasError()) << what;
    EXPECT_EQ(error.ErrorNr(), 0) << what;
    EXPECT_EQ(error.ErrorMsg(), "") << what;
    EXPECT_EQ(error.ErrorFunction(), "") << what;
    EXPECT_EQ(error.ErrorTime(), VnZEL10cmn::NoTime) << what;
    EXPECT_EQ(error.ErrorSource(), "Kasse.Beleg") << what;
    EXPECT_EQ(error.ErrorInstanceID(), "INSTANZ") << what;
  }
}

TEST(ErrorObjectOfARendering, HoldsTheFailureAfterAFailure) {
  clsZelItemPrint engine;
  clsVnError error("Kasse.Beleg", "INSTANZ");
  error.SetError(4711, "von früher", true, "Drucken");
  EXPECT_EQ(engine.ToStringCI(test::Scripted("A"), &error), "");
  test::ExpectError(error, 9001, true, "ToStringCI", "Der Typ \"ScriptedItem\" wird nicht unterstützt");
  EXPECT_EQ(error.ErrorSource(), "Kasse.Beleg");
  EXPECT_EQ(error.ErrorInstanceID(), "INSTANZ");
  EXPECT_NE(engine.ToStringCI(test::CashItem("Brot", 2), &error), "");
  EXPECT_FALSE(error.HasError()) << "the next rendering clears it";
}

TEST(ErrorObjectOfARendering, MayBeTheEnginesOwn) {
  Renderings renderings;
  clsZelItemPrint& engine = renderings.engine;
  EXPECT_EQ(engine.ToStringCI(nullptr, &engine.ErrorObject()), "");
  test::ExpectRunTimeError(engine.ErrorObject(), 91, "ToStringCI");
  EXPECT_NE(engine.ToStringCI(renderings.item, &engine.ErrorObject()), "");
  test::ExpectNoError(engine);
}

TEST(ErrorObjectOfARendering, MayBeThatOfWhatIsRendered) {
  Renderings renderings;
  const auto expectClear = [](auto& object, const std::string& text) {
    EXPECT_NE(text, "");
    test::ExpectNoError(object);
  };
  clsVnError& errors = renderings.booking->ErrorObject();
  errors.SetError(4711, "von früher", true, "Drucken");
  expectClear(*renderings.booking, renderings.engine.ToStringBI(renderings.booking, &errors));
  renderings.item->ErrorObject().SetError(4711, "von früher");
  expectClear(*renderings.item,
              renderings.engine.ToStringCI(renderings.item, &renderings.item->ErrorObject()));
  renderings.report->ErrorObject().SetError(4711, "von früher");
  expectClear(*renderings.report,
              renderings.reportEngine.ToStringRprt(renderings.report, &renderings.report->ErrorObject()));
}

TEST(ErrorObjectOfARendering, StaysUntouchedWhereNoneIsGiven) {
  Renderings renderings;
  clsVnError error;
  error.SetError(4711, "von früher");
  for (const auto& [what, render] : renderings.All()) {
    EXPECT_NE(render(nullptr), "") << what;
  }
  EXPECT_EQ(error.ErrorNr(), 4711);
}

}  // namespace
