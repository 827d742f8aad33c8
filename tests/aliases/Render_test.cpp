#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Support.h"
#include "VnZEL10cmn/render/clsZelItemPrint.h"
#include "VnZEL10cmn/render/clsZelRprtPrint.h"
#include "tests/booking/Support.h"

namespace {

using test::ExpectError;
using test::ExpectNoError;
using test::FakeItem;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemPrint;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::clsZelRprtPrint;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::Currency;

constexpr std::string_view kUnsupported = "Der Typ \"FakeItem\" wird nicht unterstützt";

TEST(ItemEngine, HandsItsFailureToItself) {
  clsZelItemPrint engine;
  EXPECT_EQ(engine.ToStringCI(std::make_shared<FakeItem>(), &engine.ErrorObject()), "");
  ExpectError(engine.ErrorObject(), 9001, true, "ToStringCI", kUnsupported);
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(1, "Brot", "", Currency::FromScaled(49900)));
  EXPECT_EQ(engine.ToStringCI(item, &engine.ErrorObject()),
            "  1,0          Brot                          4,99 EUR (A)");
  ExpectNoError(engine);
}

TEST(ItemEngine, HandsItsFailureToTheItem) {
  clsZelItemPrint engine;
  const auto item = std::make_shared<FakeItem>();
  EXPECT_EQ(engine.ToStringCI(item, &item->ErrorObject()), "");
  ExpectError(item->ErrorObject(), 9001, true, "ToStringCI", kUnsupported);
  clsZelItemCash cash;
  ASSERT_TRUE(cash.SetItemData(1, "Brot", "", Currency::FromScaled(49900)));
  EXPECT_EQ(engine.ToStringCI(cash, &cash.ErrorObject()),
            "  1,0          Brot                          4,99 EUR (A)");
  ExpectNoError(cash);
}

TEST(ItemEngine, HandsItsFailureToTheBooking) {
  clsZelItemPrint engine;
  clsZelTransAct booking;
  const auto item = std::make_shared<FakeItem>();
  item->failPrices = true;
  ASSERT_TRUE(booking.AddItem(item));
  item->ErrorObject().SetError(17, "no prices", true, "GetPrices");
  EXPECT_EQ(engine.ToStringBI(booking, &booking.ErrorObject()), "");
  ExpectError(booking.ErrorObject(), 17, true, "ToStringBI.[GetPrices]", "no prices");
  EXPECT_EQ(engine.ToStringBI(booking, &engine.ErrorObject()), "");
  ExpectError(engine.ErrorObject(), 17, true, "ToStringBI.[GetPrices]", "no prices");
  EXPECT_EQ(engine.ToStringBI(booking, &item->ErrorObject()), "");
  ExpectError(item->ErrorObject(), 17, true, "ToStringBI.[GetPrices]", "no prices");
}

TEST(ItemEngine, RendersADataRecordThatGivesItsErrorObject) {
  clsZelItemPrint engine;
  clsZelTransActData record;
  const std::string expected = engine.ToStringTRdata(record);
  EXPECT_FALSE(expected.empty());
  EXPECT_EQ(engine.ToStringTRdata(record, &record.ErrorObject()), expected);
  EXPECT_EQ(engine.ToStringTRdata(record, &engine.ErrorObject()), expected);
  EXPECT_FALSE(record.HasError());
  EXPECT_FALSE(engine.HasError());
}

TEST(ReportEngine, RendersAReportThatGivesItsErrorObject) {
  clsZelRprtPrint engine;
  clsZelReport report;
  const std::string expected = engine.ToStringRprt(report);
  EXPECT_FALSE(expected.empty());
  EXPECT_EQ(engine.ToStringRprt(report, &report.ErrorObject()), expected);
  EXPECT_EQ(engine.ToStringRprt(report, &engine.ErrorObject()), expected);
  EXPECT_EQ(engine.ToStringItmRpt(nullptr, &engine.ErrorObject()), "Wird hier nicht unterstützt!");
  EXPECT_FALSE(report.HasError());
  EXPECT_FALSE(engine.HasError());
}

}  // namespace
