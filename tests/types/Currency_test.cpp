#include "VnZEL10cmn/types/Currency.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <limits>
#include <stdexcept>

using VnZEL10cmn::Currency;

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

TEST(Currency, IsZeroAtFirst) { EXPECT_EQ(Currency().Scaled(), 0); }

TEST(Currency, HoldsTenThousandths) {
  EXPECT_EQ(Currency::FromScaled(12345).Scaled(), 12345);
  EXPECT_EQ(static_cast<double>(Currency::FromScaled(12345)), 1.2345);
  EXPECT_EQ(static_cast<double>(Currency::FromScaled(-5000)), -0.5);
}

TEST(Currency, TakesWholeNumbersOfAnyType) {
  EXPECT_EQ(Currency(19).Scaled(), 190000);
  EXPECT_EQ(Currency(-7).Scaled(), -70000);
  EXPECT_EQ(Currency(std::uint8_t{200}).Scaled(), 2000000);
  EXPECT_EQ(Currency(4294967295U).Scaled(), 42949672950000);
}

TEST(Currency, WholeNumbersBeyondTheRangeOverflow) {
  EXPECT_EQ(Currency(std::int64_t{922337203685477}).Scaled(), 9223372036854770000);
  EXPECT_THROW(Currency(std::int64_t{922337203685478}), std::overflow_error);
  EXPECT_EQ(Currency(std::int64_t{-922337203685477}).Scaled(), -9223372036854770000);
  EXPECT_THROW(Currency(std::int64_t{-922337203685478}), std::overflow_error);
  EXPECT_THROW(Currency{smallest}, std::overflow_error);
  EXPECT_THROW(Currency{std::numeric_limits<std::uint64_t>::max()}, std::overflow_error);
}

TEST(Currency, RoundsDoublesAtTheFourthDecimal) {
  EXPECT_EQ(Currency(1.2345).Scaled(), 12345);
  EXPECT_EQ(Currency(0.1).Scaled(), 1000);
  EXPECT_EQ(Currency(-2.71828).Scaled(), -27183);
  EXPECT_EQ(Currency(1.23444).Scaled(), 12344);
  EXPECT_EQ(Currency(0.00004).Scaled(), 0);
}

// Thirty-seconds are exact in binary: 1/32 is 0.03125, a true tie at the fourth decimal.
TEST(Currency, RoundsDoubleTiesToEven) {
  EXPECT_EQ(Currency(0.03125).Scaled(), 312);
  EXPECT_EQ(Currency(0.09375).Scaled(), 938);
  EXPECT_EQ(Currency(0.15625).Scaled(), 1562);
  EXPECT_EQ(Currency(-0.03125).Scaled(), -312);
  EXPECT_EQ(Currency(-0.09375).Scaled(), -938);
}

TEST(Currency, DoublesOutsideTheRangeOverflow) {
  EXPECT_EQ(Currency(922337203685477.5).Scaled(), 9223372036854775000);
  EXPECT_THROW(Currency(922337203685478.0), std::overflow_error);
  EXPECT_EQ(Currency(-922337203685477.5).Scaled(), -9223372036854775000);
  EXPECT_THROW(Currency(-922337203685478.0), std::overflow_error);
  EXPECT_THROW(Currency(1e300), std::overflow_error);
  EXPECT_THROW(Currency{std::numeric_limits<double>::infinity()}, std::overflow_error);
  EXPECT_THROW(Currency{-std::numeric_limits<double>::infinity()}, std::overflow_error);
  EXPECT_THROW(Currency{std::numeric_limits<double>::quiet_NaN()}, std::overflow_error);
}

TEST(Currency, AddsAndSubtractsExactly) {
  Currency sum = Currency::FromScaled(1);
  sum += Currency::FromScaled(99999);
  EXPECT_EQ(sum.Scaled(), 100000);
  sum -= Currency(11);
  EXPECT_EQ(sum.Scaled(), -10000);
  EXPECT_EQ((Currency(2) + Currency(3)).Scaled(), 50000);
  EXPECT_EQ((Currency(2) - Currency(3)).Scaled(), -10000);
  EXPECT_EQ((-Currency(2)).Scaled(), -20000);
}

TEST(Currency, SumsAndDifferencesOverflowAtTheLimits) {
  const Currency step = Currency::FromScaled(1);
  EXPECT_EQ((Currency::FromScaled(largest - 1) + step).Scaled(), largest);
  EXPECT_THROW(Currency::FromScaled(largest) + step, std::overflow_error);
  EXPECT_EQ((Currency::FromScaled(smallest + 1) - step).Scaled(), smallest);
  EXPECT_THROW(Currency::FromScaled(smallest) - step, std::overflow_error);
  EXPECT_THROW(-Currency::FromScaled(smallest), std::overflow_error);
  EXPECT_EQ((-Currency::FromScaled(smallest + 1)).Scaled(), largest);
}

TEST(Currency, AnOverflowingSumLeavesTheValue) {
  Currency sum = Currency::FromScaled(largest);
  EXPECT_THROW(sum += Currency::FromScaled(1), std::overflow_error);
  EXPECT_EQ(sum.Scaled(), largest);
  EXPECT_THROW(sum -= Currency::FromScaled(smallest), std::overflow_error);
  EXPECT_EQ(sum.Scaled(), largest);
}

TEST(Currency, OrdersNumerically) {
  EXPECT_LT(Currency(-1), Currency(0));
  EXPECT_GT(Currency::FromScaled(1), 0);
  EXPECT_EQ(Currency(1), Currency::FromScaled(10000));
  EXPECT_NE(Currency(1), Currency::FromScaled(10001));
}

TEST(CurrencyProperties, SubtractingWhatWasAddedGivesTheValueBack) {
  EXPECT_TRUE(rc::check("a + b - b is a", [](std::int32_t a, std::int32_t b) {
    const Currency left = Currency::FromScaled(a);
    const Currency right = Currency::FromScaled(b);
    RC_ASSERT((left + right).Scaled() == std::int64_t{a} + b);
    RC_ASSERT(left + right - right == left);
  }));
}

TEST(CurrencyProperties, ADoubleOfUpTo15DigitsComesBack) {
  EXPECT_TRUE(rc::check("through double and back", [] {
    const auto scaled = *rc::gen::inRange<std::int64_t>(-100000000000000, 100000000000000);
    const Currency value = Currency::FromScaled(scaled);
    RC_ASSERT(Currency(static_cast<double>(value)) == value);
  }));
}

}  // namespace
