#include "VnZEL10cmn/booking/clsZelVatItem.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>

#include "tests/support/Error.h"
#include "tests/support/LogFile.h"

namespace VnZEL10cmn {
namespace {

Currency Scaled(std::int64_t scaled) { return Currency::FromScaled(scaled); }

/// What `CalcVat` of one price gives; results start with values that no calculation here produces.
struct Vat {
  Currency vat = 999;
  Currency net = 999;
  Currency gross = 999;
};

Vat Calc(clsZelVatItem& item, Currency price, std::int32_t vatIdx, bool isNetto) {
  Vat result;
  EXPECT_TRUE(item.CalcVat(price, vatIdx, result.vat, &result.net, &result.gross, isNetto));
  test::ExpectNoError(item);
  return result;
}

/// Amounts in ten-thousandths.
void ExpectVat(const Vat& actual, std::int64_t vat, std::int64_t net, std::int64_t gross,
               const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected VAT");
  EXPECT_EQ(actual.vat.Scaled(), vat);
  EXPECT_EQ(actual.net.Scaled(), net);
  EXPECT_EQ(actual.gross.Scaled(), gross);
}

void ExpectPeriod(const clsZelVatItem& item, Date from, Date upTo, const char* file = __builtin_FILE(),
                  int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected period");
  EXPECT_EQ(item.ValidFrom().Value(), from.Value());
  EXPECT_EQ(item.ValidUpTo().Value(), upTo.Value());
}

TEST(VatItem, NewSetHoldsTheInitialRatesAndPeriod) {
  const clsZelVatItem item;
  EXPECT_EQ(item.VATrate(1), Currency(19));
  EXPECT_EQ(item.VATrate(2), Currency(7));
  EXPECT_EQ(item.VATrate(3), Currency(0));
  EXPECT_EQ(item.VATrate(4), Currency(0));
  EXPECT_EQ(item.VATrate(5), Currency(10));
  EXPECT_EQ(item.VATrate(6), Scaled(55000));
  ExpectPeriod(item, Date(39083.0), Date(73050.99998842593));
  EXPECT_FALSE(item.HasError());
}

TEST(VatItem, ErrorObjectNamesTheClass) {
  clsZelVatItem item;
  EXPECT_EQ(item.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelVatItem");
  EXPECT_EQ(item.ErrorObject().ErrorInstanceID().size(), 36U);
  EXPECT_EQ(item.LogHandler(), nullptr);
}

TEST(VatItem, BoundsOfDates) {
  EXPECT_EQ(clsZelVatItem::EarliestDate().Value(), 36526.0);
  EXPECT_EQ(clsZelVatItem::LatestDate().Value(), 73050.99998842593);
}

TEST(VatItem, RateByNumberIsTheRateOfTheClassBelow) {
  clsZelVatItem item;
  for (std::int32_t number = 1; number <= 6; ++number) {
    item.VATrate(number, Currency(number * 3));
  }
  for (std::int32_t vatClass = 0; vatClass <= 5; ++vatClass) {
    EXPECT_EQ(item.VatRate2(ZELVatClasses{vatClass}), Currency((vatClass + 1) * 3));
    item.VatRate2(ZELVatClasses{vatClass}, Currency(50 + vatClass));
    EXPECT_EQ(item.VATrate(vatClass + 1), Currency(50 + vatClass));
  }
}

TEST(VatItem, RateNumbersOutsideOneToSixReadZeroAndAreNotWritten) {
  clsZelVatItem item;
  for (const std::int32_t number :
       {std::numeric_limits<std::int32_t>::min(), -1, 0, 7, 8, std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_EQ(item.VATrate(number), Currency(0)) << number;
    item.VATrate(number, Currency(42));
    EXPECT_EQ(item.VATrate(number), Currency(0)) << number;
    EXPECT_FALSE(item.HasError());
  }
  EXPECT_EQ(item.VATrate(1), Currency(19));
  EXPECT_EQ(item.VATrate(6), Scaled(55000));
}

TEST(VatItem, NegativeRatesAreIgnored) {
  clsZelVatItem item;
  item.VATrate(1, Scaled(-1));
  item.VatRate2(ZELVatClasses::Reduced1, Currency(-7));
  EXPECT_EQ(item.VATrate(1), Currency(19));
  EXPECT_EQ(item.VATrate(2), Currency(7));
  EXPECT_FALSE(item.HasError());
}

TEST(VatItem, ZeroRateIsStored) {
  clsZelVatItem item;
  item.VATrate(1, Currency(0));
  EXPECT_EQ(item.VATrate(1), Currency(0));
}

TEST(VatItem, ClassesOutsideZeroToFiveAreRaisedToTheCaller) {
  clsZelVatItem item;
  EXPECT_THROW(item.VatRate2(ZELVatClasses{6}), std::out_of_range);
  EXPECT_THROW(item.VatRate2(ZELVatClasses{-1}), std::out_of_range);
  EXPECT_THROW(item.VatRate2(ZELVatClasses{6}, Currency(1)), std::out_of_range);
  EXPECT_THROW(item.VatRate2(ZELVatClasses{-1}, Currency(1)), std::out_of_range);
  EXPECT_FALSE(item.HasError());
}

// Periods

TEST(VatItemSetDates, StoresWholeDays) {
  clsZelVatItem item;
  EXPECT_TRUE(item.SetDates(Date::FromCivil(2008, 2, 29, 14, 30, 1), Date::FromCivil(2009, 12, 31, 6, 7, 8)));
  ExpectPeriod(item, Date::FromCivil(2008, 2, 29), Date::FromCivil(2009, 12, 31, 23, 59, 59));
  test::ExpectNoError(item);
}

TEST(VatItemSetDates, ReversedDatesAreExchanged) {
  clsZelVatItem item;
  EXPECT_TRUE(item.SetDates(Date::FromCivil(2010, 5, 1, 12, 0, 0), Date::FromCivil(2009, 1, 1)));
  ExpectPeriod(item, Date::FromCivil(2009, 1, 1), Date::FromCivil(2010, 5, 1, 23, 59, 59));
}

TEST(VatItemSetDates, OneDayInReverseOrderIsThatDay) {
  clsZelVatItem item;
  EXPECT_TRUE(item.SetDates(Date::FromCivil(2010, 5, 1, 20, 0, 0), Date::FromCivil(2010, 5, 1, 3, 0, 0)));
  ExpectPeriod(item, Date::FromCivil(2010, 5, 1), Date::FromCivil(2010, 5, 1, 23, 59, 59));
}

TEST(VatItemSetDates, OmittedDatesAreTheBounds) {
  clsZelVatItem item;
  EXPECT_TRUE(item.SetDates());
  ExpectPeriod(item, Date(36526.0), Date(73050.99998842593));
  EXPECT_TRUE(item.SetDates(Date::FromCivil(2020, 7, 1)));
  ExpectPeriod(item, Date::FromCivil(2020, 7, 1), Date(73050.99998842593));
}

TEST(VatItemSetDates, FromBefore2000Becomes2000) {
  clsZelVatItem item;
  EXPECT_TRUE(item.SetDates(Date::FromCivil(1999, 12, 31, 23, 59, 59), Date::FromCivil(2001, 1, 1)));
  ExpectPeriod(item, Date(36526.0), Date::FromCivil(2001, 1, 1, 23, 59, 59));
  EXPECT_TRUE(item.SetDates(Date(-100000.0), Date::FromCivil(2001, 1, 1)));
  ExpectPeriod(item, Date(36526.0), Date::FromCivil(2001, 1, 1, 23, 59, 59));
}

TEST(VatItemSetDates, UpToBefore2000Becomes2000AndIsThenExchanged) {
  clsZelVatItem item;
  EXPECT_TRUE(item.SetDates(Date::FromCivil(2003, 3, 3), Date::FromCivil(1950, 1, 1)));
  ExpectPeriod(item, Date(36526.0), Date::FromCivil(2003, 3, 3, 23, 59, 59));
}

TEST(VatItemSetDates, BothBefore2000AreTheFirstDay) {
  clsZelVatItem item;
  EXPECT_TRUE(item.SetDates(Date::FromCivil(1950, 1, 1), Date::FromCivil(1960, 1, 1)));
  ExpectPeriod(item, Date(36526.0), Date::FromCivil(2000, 1, 1, 23, 59, 59));
}

TEST(VatItemSetDates, UpToBeyond2099PassesUnchanged) {
  clsZelVatItem item;
  EXPECT_TRUE(item.SetDates(Date::FromCivil(2010, 1, 1), Date::FromCivil(2150, 6, 15, 3, 0, 0)));
  ExpectPeriod(item, Date::FromCivil(2010, 1, 1), Date::FromCivil(2150, 6, 15, 23, 59, 59));
}

TEST(VatItemSetDates, FromBeyond2099BecomesTheLastDayAndUpToStillPasses) {
  clsZelVatItem item;
  EXPECT_TRUE(item.SetDates(Date::FromCivil(2120, 1, 1), Date::FromCivil(2150, 6, 15)));
  ExpectPeriod(item, Date::FromCivil(2099, 12, 31), Date::FromCivil(2150, 6, 15, 23, 59, 59));
  EXPECT_TRUE(item.SetDates(Date::FromCivil(2120, 1, 1), Date::FromCivil(2010, 6, 15)));
  ExpectPeriod(item, Date::FromCivil(2010, 6, 15), Date(73050.99998842593));
}

TEST(VatItemSetDates, NoDateAtAllIsAFault) {
  clsZelVatItem item;
  const Date none(std::nan(""));
  EXPECT_FALSE(item.SetDates(none, Date::FromCivil(2010, 1, 1)));
  EXPECT_TRUE(item.HasError());
  EXPECT_FALSE(item.ErrorObject().IsUserDef());
  EXPECT_EQ(item.ErrorObject().ErrorFunction(), "SetDates");
  ExpectPeriod(item, Date(39083.0), Date(73050.99998842593));
}

TEST(VatItemSetDates, ClearsTheErrorBefore) {
  clsZelVatItem item;
  item.ErrorObject().SetError(9000, "x");
  EXPECT_TRUE(item.SetDates());
  test::ExpectNoError(item);
}

// Gross prices

TEST(VatItemCalcVat, GrossExamples) {
  clsZelVatItem item;
  ExpectVat(Calc(item, 119, 1, false), 190000, 1000000, 1190000);
  ExpectVat(Calc(item, Scaled(99900), 2, false), 6500, 93400, 99900);
}

TEST(VatItemCalcVat, GrossTiesAreRoundedAwayFromZero) {
  clsZelVatItem item;
  // 10 percent of 0.055 contained: exactly 0.005.
  ExpectVat(Calc(item, Scaled(550), 5, false), 100, 450, 550);
  ExpectVat(Calc(item, Scaled(-550), 5, false), -100, -450, -550);
  item.VATrate(1, 25);
  // 25 percent of 0.125 contained: exactly 0.025.
  ExpectVat(Calc(item, Scaled(1250), 1, false), 300, 950, 1250);
  ExpectVat(Calc(item, Scaled(-1250), 1, false), -300, -950, -1250);
}

TEST(VatItemCalcVat, GrossIsNotRoundedToFourDecimalsFirst) {
  clsZelVatItem item;
  item.VATrate(1, 25);
  // 0.0249 / 1.25 = 0.01992, VAT 0.00498: four decimals first would make 0.0050 and then 0.01 of it.
  ExpectVat(Calc(item, Scaled(249), 1, false), 0, 249, 249);
  ExpectVat(Calc(item, Scaled(-249), 1, false), 0, -249, -249);
}

TEST(VatItemCalcVat, GrossTakesTheFactorWithFourDecimals) {
  clsZelVatItem item;
  item.VATrate(1, Scaled(55555));  // 5.5555 percent, the factor is 1.0556
  ExpectVat(Calc(item, Scaled(10556000), 1, false), 556000, 10000000, 10556000);
  item.VATrate(1, Scaled(50050));  // 5.005 percent: 0.05005 lies halfway and goes to the even 0.0500
  ExpectVat(Calc(item, 1050, 1, false), 500000, 10000000, 10500000);
  item.VATrate(1, Scaled(50150));  // 5.015 percent: 0.05015 goes to the even 0.0502
  ExpectVat(Calc(item, Scaled(10502000), 1, false), 502000, 10000000, 10502000);
}

TEST(VatItemCalcVat, GrossWithARateThatLeavesNothing) {
  clsZelVatItem item;
  item.VATrate(1, 30000000);  // the factor is 300001
  ExpectVat(Calc(item, 1, 1, false), 10000, 0, 10000);
  ExpectVat(Calc(item, -3000, 1, false), -29999900, -100, -30000000);
}

TEST(VatItemCalcVat, GrossNegativePrice) {
  clsZelVatItem item;
  ExpectVat(Calc(item, -119, 1, false), -190000, -1000000, -1190000);
  ExpectVat(Calc(item, Scaled(-99900), 2, false), -6500, -93400, -99900);
}

TEST(VatItemCalcVat, GrossLargestAndSmallestPrice) {
  clsZelVatItem item;
  const Currency largest = Scaled(std::numeric_limits<std::int64_t>::max());
  // 922337203685477.5807 x 19 / 119 = 147263923277513.227...
  ExpectVat(Calc(item, largest, 1, false), 1472639232775132300, 7750732804079643507,
            std::numeric_limits<std::int64_t>::max());
  ExpectVat(Calc(item, Scaled(std::numeric_limits<std::int64_t>::min()), 1, false), -1472639232775132300,
            -7750732804079643508, std::numeric_limits<std::int64_t>::min());
}

TEST(VatItemCalcVat, ZeroPrice) {
  clsZelVatItem item;
  ExpectVat(Calc(item, 0, 1, false), 0, 0, 0);
  ExpectVat(Calc(item, 0, 1, true), 0, 0, 0);
}

// Net prices

TEST(VatItemCalcVat, NetExample) {
  clsZelVatItem item;
  ExpectVat(Calc(item, 100, 1, true), 190000, 1000000, 1190000);
}

TEST(VatItemCalcVat, NetIsRoundedToFourDecimalsFirst) {
  clsZelVatItem item;
  // 0.004959 becomes 0.0050 and then 0.01.
  ExpectVat(Calc(item, Scaled(261), 1, true), 100, 261, 361);
  ExpectVat(Calc(item, Scaled(-261), 1, true), -100, -261, -361);
  // 0.004940 becomes 0.0049 and then 0.00.
  ExpectVat(Calc(item, Scaled(260), 1, true), 0, 260, 260);
}

TEST(VatItemCalcVat, NetTiesAreRoundedAwayFromZero) {
  clsZelVatItem item;
  // 0.095
  ExpectVat(Calc(item, Scaled(5000), 1, true), 1000, 5000, 6000);
  ExpectVat(Calc(item, Scaled(-5000), 1, true), -1000, -5000, -6000);
  // 0.175 at 7 percent
  ExpectVat(Calc(item, Scaled(25000), 2, true), 1800, 25000, 26800);
  ExpectVat(Calc(item, Scaled(-25000), 2, true), -1800, -25000, -26800);
}

TEST(VatItemCalcVat, NetTakesTheRateUnrounded) {
  clsZelVatItem item;
  item.VATrate(1, Scaled(55555));  // 1000 at 5.5555 percent is 55.555, a rounded factor would give 55.60
  ExpectVat(Calc(item, 1000, 1, true), 555600, 10000000, 10555600);
}

TEST(VatItemCalcVat, NetLargePrice) {
  clsZelVatItem item;
  // 40 billions (10^12) x 19 percent.
  ExpectVat(Calc(item, 40000000000000, 1, true), 76000000000000000, 400000000000000000, 476000000000000000);
}

TEST(VatItemCalcVat, GrossAmountBeyondTheRangeIsAFault) {
  clsZelVatItem item;
  item.VATrate(1, Scaled(5000));
  Vat result;
  EXPECT_FALSE(item.CalcVat(922337203685477, 1, result.vat, &result.net, &result.gross, true));
  test::ExpectFault(item.ErrorObject(), 6, "CalcVat");
  ExpectVat(result, 9990000, 9990000, 9990000);
}

TEST(VatItemCalcVat, NetVatTooLargeToBeRoundedIsAFault) {
  clsZelVatItem item;
  // Rounding to cents works in currency, in which 1.9 x 10^13 x 100 has no room.
  Vat result;
  EXPECT_FALSE(item.CalcVat(100000000000000, 1, result.vat, &result.net, &result.gross, true));
  test::ExpectFault(item.ErrorObject(), 6, "CalcVat");
  ExpectVat(result, 9990000, 9990000, 9990000);
}

TEST(VatItemCalcVat, FaultIsLoggedOnce) {
  test::TestLog log;
  clsZelVatItem item;
  item.LogHandler(log.Handler());
  item.VATrate(1, Scaled(5000));
  Currency vat;
  EXPECT_FALSE(item.CalcVat(922337203685477, 1, vat, nullptr, nullptr, true));
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"CalcVat"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"6"});
  EXPECT_TRUE(item.CalcVat(1, 1, vat, nullptr, nullptr, true));
  EXPECT_EQ(log.Count(), 1U);
}

TEST(VatItemCalcVat, OtherRateNumbersCountAsRateZero) {
  clsZelVatItem item;
  for (const std::int32_t number : {0, 7, -1, 1000}) {
    ExpectVat(Calc(item, Scaled(1234567), number, false), 0, 1234567, 1234567);
    ExpectVat(Calc(item, Scaled(1234567), number, true), 0, 1234567, 1234567);
  }
}

TEST(VatItemCalcVat, EachNumberTakesItsOwnRate) {
  clsZelVatItem item;
  ExpectVat(Calc(item, 100, 2, true), 70000, 1000000, 1070000);
  ExpectVat(Calc(item, 100, 3, true), 0, 1000000, 1000000);
  ExpectVat(Calc(item, 100, 4, true), 0, 1000000, 1000000);
  ExpectVat(Calc(item, 100, 5, true), 100000, 1000000, 1100000);
  ExpectVat(Calc(item, 100, 6, true), 55000, 1000000, 1055000);
}

TEST(VatItemCalcVat, NetAndGrossMayBeOmitted) {
  clsZelVatItem item;
  Currency vat;
  EXPECT_TRUE(item.CalcVat(119, 1, vat));
  EXPECT_EQ(vat, Currency(19));
  Currency gross;
  EXPECT_TRUE(item.CalcVat(100, 1, vat, nullptr, &gross, true));
  EXPECT_EQ(gross, Currency(119));
}

TEST(VatItemCalcVat, ClearsTheErrorBefore) {
  clsZelVatItem item;
  item.ErrorObject().SetError(9000, "x");
  Currency vat;
  EXPECT_TRUE(item.CalcVat(119, 1, vat));
  test::ExpectNoError(item);
}

TEST(VatItemProperty, NetAndVatAddUpToGross) {
  EXPECT_TRUE(rc::check("net + VAT = gross, VAT in whole cents, within half a cent of the exact VAT", [] {
    clsZelVatItem item;
    const auto rate = *rc::gen::inRange<std::int64_t>(0, 1000000);
    const auto price = *rc::gen::inRange<std::int64_t>(-100000000000, 100000000000);
    item.VATrate(1, Scaled(rate));
    for (const bool isNetto : {false, true}) {
      Currency vat;
      Currency net;
      Currency gross;
      RC_ASSERT(item.CalcVat(Scaled(price), 1, vat, &net, &gross, isNetto));
      RC_ASSERT(net.Scaled() + vat.Scaled() == gross.Scaled());
      RC_ASSERT((isNetto ? net : gross).Scaled() == price);
      RC_ASSERT(vat.Scaled() % 100 == 0);
      // The factor of gross prices has four decimals, so rates with whole hundredths only.
      if (rate % 100 == 0) {
        const long double factor = static_cast<long double>(rate) / 1000000.0L;
        const long double exact = isNetto ? price * factor : price - price / (1 + factor);
        RC_ASSERT(std::fabs(static_cast<double>(static_cast<long double>(vat.Scaled()) - exact)) <= 50.6);
      }
    }
  }));
}

TEST(VatItemProperty, PeriodsAreWholeDaysInOrder) {
  EXPECT_TRUE(rc::check("from <= up to, from midnight to the last second", [] {
    clsZelVatItem item;
    const auto from = *rc::gen::inRange<std::int64_t>(-50000LL * 86400, 150000LL * 86400);
    const auto upTo = *rc::gen::inRange<std::int64_t>(-50000LL * 86400, 150000LL * 86400);
    RC_ASSERT(
        item.SetDates(Date(static_cast<double>(from) / 86400.0), Date(static_cast<double>(upTo) / 86400.0)));
    const Date::Civil first = item.ValidFrom().ToCivil();
    const Date::Civil last = item.ValidUpTo().ToCivil();
    RC_ASSERT(item.ValidFrom() < item.ValidUpTo());
    RC_ASSERT(first.hour == 0 && first.minute == 0 && first.second == 0);
    RC_ASSERT(last.hour == 23 && last.minute == 59 && last.second == 59);
    RC_ASSERT(first.year >= 2000 && first.year <= 2099);
    RC_ASSERT(last.year >= 2000);
  }));
}

}  // namespace
}  // namespace VnZEL10cmn
