#include "VnZEL10cmn/booking/clsZelVatList.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/Error.h"
#include "tests/support/LogFile.h"

namespace VnZEL10cmn {
namespace {

std::shared_ptr<clsZelVatItem> Period(Date from, Date upTo) {
  auto item = std::make_shared<clsZelVatItem>();
  EXPECT_TRUE(item->SetDates(from, upTo));
  return item;
}

TEST(VatList, NewListHoldsTwoRateSets) {
  clsZelVatList list;
  ASSERT_EQ(list.Count(), 2);
  const std::shared_ptr<clsZelVatItem> first = list.VatItem(1);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->ValidFrom().Value(), 36526.0);
  EXPECT_EQ(first->ValidUpTo().Value(), Date::FromCivil(2006, 12, 31, 23, 59, 59).Value());
  const Currency special2 = Currency::FromScaled(55000);
  const std::vector<Currency> firstRates{16, 7, 0, 0, 10, special2};
  const std::shared_ptr<clsZelVatItem> second = list.VatItem(2);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->ValidFrom().Value(), 39083.0);
  EXPECT_EQ(second->ValidUpTo().Value(), 73050.99998842593);
  const std::vector<Currency> secondRates{19, 7, 0, 0, 10, special2};
  for (std::int32_t number = 1; number <= 6; ++number) {
    EXPECT_EQ(first->VATrate(number), firstRates[static_cast<std::size_t>(number - 1)]) << number;
    EXPECT_EQ(second->VATrate(number), secondRates[static_cast<std::size_t>(number - 1)]) << number;
  }
  EXPECT_FALSE(list.HasError());
}

TEST(VatList, ErrorObjectNamesTheClass) {
  clsZelVatList list;
  EXPECT_EQ(list.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelVatList");
  EXPECT_EQ(list.ErrorObject().ErrorInstanceID().size(), 36U);
}

TEST(VatList, EnumeratesInListOrder) {
  const clsZelVatList list;
  std::vector<std::shared_ptr<clsZelVatItem>> items;
  for (const auto& item : list) {
    items.push_back(item);
  }
  EXPECT_EQ(items, (std::vector<std::shared_ptr<clsZelVatItem>>{list.VatItem(1), list.VatItem(2)}));
}

TEST(VatList, PositionsOutsideTheListGiveNone) {
  const clsZelVatList list;
  EXPECT_EQ(list.VatItem(3), nullptr);
  EXPECT_EQ(list.VatItem(-1), nullptr);
  EXPECT_EQ(list.VatItem(std::numeric_limits<std::int32_t>::max()), nullptr);
  EXPECT_EQ(list.VatItem(std::numeric_limits<std::int32_t>::min()), nullptr);
}

TEST(VatList, PositionZeroIsRaisedToTheCaller) {
  clsZelVatList list;
  EXPECT_THROW(list.VatItem(0), std::out_of_range);
  list.Clear();
  EXPECT_THROW(list.VatItem(0), std::out_of_range);
  EXPECT_EQ(list.VatItem(1), nullptr);
}

TEST(VatListGetItemOfDate, TurnOfTheYear2006) {
  clsZelVatList list;
  const auto standardAt = [&list](Date date) {
    const std::shared_ptr<clsZelVatItem> item = list.GetItemOfDate(date);
    return item == nullptr ? Currency(-1) : item->VATrate(1);
  };
  EXPECT_EQ(standardAt(Date::FromCivil(2006, 12, 31, 23, 0, 0)), Currency(16));
  EXPECT_EQ(standardAt(Date::FromCivil(2006, 12, 31, 23, 59, 59)), Currency(16));
  EXPECT_EQ(standardAt(Date::FromCivil(2007, 1, 1)), Currency(19));
  test::ExpectNoError(list);
}

TEST(VatListGetItemOfDate, BetweenTheLastSecondAndMidnightThereIsNone) {
  clsZelVatList list;
  EXPECT_EQ(list.GetItemOfDate(Date(39082.0 + 86399.5 / 86400.0)), nullptr);
  test::ExpectNoError(list);
}

TEST(VatListGetItemOfDate, DatesAreKeptWithin2000To2099) {
  clsZelVatList list;
  EXPECT_EQ(list.GetItemOfDate(Date::FromCivil(1985, 1, 1)), list.VatItem(1));
  EXPECT_EQ(list.GetItemOfDate(Date(-1e9)), list.VatItem(1));
  EXPECT_EQ(list.GetItemOfDate(Date(36526.0)), list.VatItem(1));
  EXPECT_EQ(list.GetItemOfDate(Date(73050.99998842593)), list.VatItem(2));
  EXPECT_EQ(list.GetItemOfDate(Date(73050.999995)), list.VatItem(2));
  EXPECT_EQ(list.GetItemOfDate(Date::FromCivil(2150, 1, 1)), list.VatItem(2));
  EXPECT_EQ(list.GetItemOfDate(Date(1e9)), list.VatItem(2));
}

TEST(VatListGetItemOfDate, FirstInListOrderWins) {
  clsZelVatList list;
  const std::shared_ptr<clsZelVatItem> second = list.VatItem(2);
  // Dates that change after adding are not checked again.
  ASSERT_TRUE(list.VatItem(1)->SetDates());
  EXPECT_EQ(list.GetItemOfDate(Date::FromCivil(2020, 1, 1)), list.VatItem(1));
  ASSERT_TRUE(list.VatItem(1)->SetDates(Date::FromCivil(2021, 1, 1)));
  EXPECT_EQ(list.GetItemOfDate(Date::FromCivil(2020, 1, 1)), second);
  EXPECT_EQ(list.GetItemOfDate(Date::FromCivil(2006, 1, 1)), nullptr);
}

TEST(VatListGetItemOfDate, ClearsTheErrorBefore) {
  clsZelVatList list;
  list.ErrorObject().SetError(9000, "x");
  EXPECT_NE(list.GetItemOfDate(Date::FromCivil(2020, 1, 1)), nullptr);
  test::ExpectNoError(list);
}

TEST(VatListClear, AfterwardsNoDateHasRatesAndAnySetCanBeAdded) {
  clsZelVatList list;
  list.Clear();
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(list.begin(), list.end());
  EXPECT_EQ(list.GetItemOfDate(Date::FromCivil(2006, 1, 1)), nullptr);
  EXPECT_EQ(list.GetItemOfDate(Date::FromCivil(2020, 1, 1)), nullptr);
  EXPECT_EQ(list.GetItemOfDate(Date::FromCivil(1900, 1, 1)), nullptr);
  test::ExpectNoError(list);
  const std::shared_ptr<clsZelVatItem> item =
      Period(Date::FromCivil(2000, 1, 1), Date::FromCivil(2099, 12, 31));
  EXPECT_TRUE(list.AddItem(item));
  test::ExpectNoError(list);
  EXPECT_EQ(list.Count(), 1);
  EXPECT_EQ(list.VatItem(1), item);
}

// Overlaps

TEST(VatListAddItem, StartInsideAnExistingPeriod) {
  clsZelVatList list;
  const auto item = Period(Date::FromCivil(2007, 1, 1), Date::FromCivil(2007, 12, 31));
  EXPECT_FALSE(list.AddItem(item));
  test::ExpectError(list.ErrorObject(), ZELErrorCodes::Err_Cmn_NotSpec, true, "AddItem",
                    "Zeitraumüberschneidung gefunden!\r\n"
                    "    Neu von ...........: 01.01.2007 00:00:00\r\n"
                    "    vorhanden von .....: 01.01.2007 00:00:00\r\n"
                    "    vorhanden bis .....: 31.12.2099 23:59:59");
  EXPECT_EQ(list.Count(), 2);
}

TEST(VatListAddItem, StartOnTheLastDayOfAnExistingPeriod) {
  clsZelVatList list;
  EXPECT_FALSE(list.AddItem(Period(Date::FromCivil(2006, 12, 31), Date::FromCivil(2006, 12, 31))));
  test::ExpectError(list.ErrorObject(), ZELErrorCodes::Err_Cmn_NotSpec, true, "AddItem",
                    "Zeitraumüberschneidung gefunden!\r\n"
                    "    Neu von ...........: 31.12.2006 00:00:00\r\n"
                    "    vorhanden von .....: 01.01.2000 00:00:00\r\n"
                    "    vorhanden bis .....: 31.12.2006 23:59:59");
}

TEST(VatListAddItem, StartBeforeAndEndInsideAnExistingPeriod) {
  clsZelVatList list;
  list.Clear();
  ASSERT_TRUE(list.AddItem(Period(Date::FromCivil(2010, 1, 1), Date::FromCivil(2010, 12, 31))));
  EXPECT_FALSE(list.AddItem(Period(Date::FromCivil(2009, 6, 1), Date::FromCivil(2010, 1, 1))));
  test::ExpectError(list.ErrorObject(), ZELErrorCodes::Err_Cmn_NotSpec, true, "AddItem",
                    "Zeitraumüberschneidung gefunden!\r\n"
                    "    Neu bis ...........: 01.01.2010 23:59:59\r\n"
                    "    vorhanden von .....: 01.01.2010 00:00:00\r\n"
                    "    vorhanden bis .....: 31.12.2010 23:59:59");
  EXPECT_EQ(list.Count(), 1);
}

// A period that encloses an existing one is found by its end, which comes before the tests that look from
// the existing period's side; since every period's start lies before its end, those never come first.
TEST(VatListAddItem, EnclosingAnExistingPeriod) {
  clsZelVatList list;
  list.Clear();
  ASSERT_TRUE(list.AddItem(Period(Date::FromCivil(2010, 3, 1), Date::FromCivil(2010, 3, 31))));
  EXPECT_FALSE(list.AddItem(Period(Date::FromCivil(2010, 1, 1), Date::FromCivil(2010, 12, 31))));
  test::ExpectError(list.ErrorObject(), ZELErrorCodes::Err_Cmn_NotSpec, true, "AddItem",
                    "Zeitraumüberschneidung gefunden!\r\n"
                    "    Neu bis ...........: 31.12.2010 23:59:59\r\n"
                    "    vorhanden von .....: 01.03.2010 00:00:00\r\n"
                    "    vorhanden bis .....: 31.03.2010 23:59:59");
}

TEST(VatListAddItem, EndBeyond2099StillOverlaps) {
  clsZelVatList list;
  list.Clear();
  ASSERT_TRUE(list.AddItem(Period(Date::FromCivil(2050, 1, 1), Date::FromCivil(2150, 6, 15))));
  EXPECT_FALSE(list.AddItem(Period(Date::FromCivil(2020, 1, 1), Date::FromCivil(2120, 1, 1))));
  test::ExpectError(list.ErrorObject(), ZELErrorCodes::Err_Cmn_NotSpec, true, "AddItem",
                    "Zeitraumüberschneidung gefunden!\r\n"
                    "    Neu bis ...........: 01.01.2120 23:59:59\r\n"
                    "    vorhanden von .....: 01.01.2050 00:00:00\r\n"
                    "    vorhanden bis .....: 15.06.2150 23:59:59");
}

TEST(VatListAddItem, FirstOverlappingSetInListOrderIsReported) {
  clsZelVatList list;
  list.Clear();
  ASSERT_TRUE(list.AddItem(Period(Date::FromCivil(2012, 1, 1), Date::FromCivil(2012, 12, 31))));
  ASSERT_TRUE(list.AddItem(Period(Date::FromCivil(2010, 1, 1), Date::FromCivil(2010, 12, 31))));
  // It starts inside the second set and ends inside the first one, which is looked at first.
  EXPECT_FALSE(list.AddItem(Period(Date::FromCivil(2010, 6, 1), Date::FromCivil(2012, 6, 1))));
  test::ExpectError(list.ErrorObject(), ZELErrorCodes::Err_Cmn_NotSpec, true, "AddItem",
                    "Zeitraumüberschneidung gefunden!\r\n"
                    "    Neu bis ...........: 01.06.2012 23:59:59\r\n"
                    "    vorhanden von .....: 01.01.2012 00:00:00\r\n"
                    "    vorhanden bis .....: 31.12.2012 23:59:59");
}

TEST(VatListAddItem, NeighbouringDaysDoNotOverlap) {
  clsZelVatList list;
  list.Clear();
  const auto middle = Period(Date::FromCivil(2010, 6, 15), Date::FromCivil(2010, 6, 15));
  const auto before = Period(Date::FromCivil(2000, 1, 1), Date::FromCivil(2010, 6, 14));
  const auto after = Period(Date::FromCivil(2010, 6, 16), Date::FromCivil(2099, 12, 31));
  EXPECT_TRUE(list.AddItem(middle));
  EXPECT_TRUE(list.AddItem(before));
  EXPECT_TRUE(list.AddItem(after));
  EXPECT_EQ(list.Count(), 3);
  EXPECT_EQ(list.VatItem(1), middle);
  EXPECT_EQ(list.VatItem(2), before);
  EXPECT_EQ(list.VatItem(3), after);
  test::ExpectNoError(list);
}

TEST(VatListAddItem, TheSameSetTwiceOverlapsItself) {
  clsZelVatList list;
  EXPECT_FALSE(list.AddItem(list.VatItem(1)));
  test::ExpectError(list.ErrorObject(), ZELErrorCodes::Err_Cmn_NotSpec, true, "AddItem",
                    "Zeitraumüberschneidung gefunden!\r\n"
                    "    Neu von ...........: 01.01.2000 00:00:00\r\n"
                    "    vorhanden von .....: 01.01.2000 00:00:00\r\n"
                    "    vorhanden bis .....: 31.12.2006 23:59:59");
  EXPECT_EQ(list.Count(), 2);
}

TEST(VatListAddItem, NoSetAtAllIsAFault) {
  clsZelVatList list;
  EXPECT_FALSE(list.AddItem(nullptr));
  EXPECT_TRUE(list.HasError());
  EXPECT_FALSE(list.ErrorObject().IsUserDef());
  EXPECT_EQ(list.ErrorObject().ErrorFunction(), "AddItem");
  EXPECT_EQ(list.Count(), 2);
  list.Clear();
  EXPECT_FALSE(list.AddItem(nullptr));
  EXPECT_EQ(list.Count(), 0);
}

TEST(VatListAddItem, FailureIsLoggedOnceSuccessIsNot) {
  test::TestLog log;
  clsZelVatList list;
  list.LogHandler(log.Handler());
  EXPECT_EQ(list.LogHandler(), log.Handler());
  EXPECT_FALSE(list.AddItem(Period(Date::FromCivil(2020, 1, 1), Date::FromCivil(2020, 12, 31))));
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"AddItem"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"9000"});
  list.Clear();
  EXPECT_TRUE(list.AddItem(Period(Date::FromCivil(2020, 1, 1), Date::FromCivil(2020, 12, 31))));
  EXPECT_EQ(log.Count(), 1U);
}

TEST(VatListProperty, AddedSetsNeverOverlapAndRefusalsNameAnOverlap) {
  EXPECT_TRUE(rc::check("a set is refused exactly when a day is taken", [] {
    clsZelVatList list;
    list.Clear();
    std::vector<bool> taken(200, false);
    const auto count = *rc::gen::inRange(1, 20);
    for (int i = 0; i < count; ++i) {
      const auto first = *rc::gen::inRange(0, 180);
      const auto length = *rc::gen::inRange(0, 20);
      const auto item = Period(Date(40000.0 + first), Date(40000.0 + first + length));
      bool overlaps = false;
      for (int day = first; day <= first + length; ++day) {
        overlaps = overlaps || taken[static_cast<std::size_t>(day)];
      }
      const std::int32_t before = list.Count();
      RC_ASSERT(list.AddItem(item) == !overlaps);
      RC_ASSERT(list.HasError() == overlaps);
      RC_ASSERT(list.Count() == before + (overlaps ? 0 : 1));
      if (overlaps) {
        const std::string& message = list.ErrorObject().ErrorMsg();
        RC_ASSERT(message.starts_with("Zeitraumüberschneidung gefunden!\r\n    Neu von ...........: ") ||
                  message.starts_with("Zeitraumüberschneidung gefunden!\r\n    Neu bis ...........: "));
        continue;
      }
      for (int day = first; day <= first + length; ++day) {
        taken[static_cast<std::size_t>(day)] = true;
      }
    }
    for (int day = 0; day < 200; ++day) {
      RC_ASSERT((list.GetItemOfDate(Date(40000.25 + day)) != nullptr) ==
                taken[static_cast<std::size_t>(day)]);
    }
  }));
}

}  // namespace
}  // namespace VnZEL10cmn
