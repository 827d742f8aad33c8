#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <limits>
#include <locale>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "tests/support/Error.h"
#include "tests/support/LogFile.h"
#include "tests/support/Regional.h"

using test::ExpectFault;
using test::ExpectNoError;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::Currency;

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

std::int64_t Round(std::int64_t scaled, std::int32_t digits = 2) {
  clsHelper01 helper;
  const Currency result = helper.RoundCmrc(Currency::FromScaled(scaled), digits);
  ExpectNoError(helper);
  return result.Scaled();
}

template <class Value>
std::int64_t Round2(Value value, std::int32_t digits = 2) {
  clsHelper01 helper;
  const Currency result = helper.RoundCmrc2(value, digits);
  ExpectNoError(helper);
  return result.Scaled();
}

void ExpectOverflow(std::int64_t scaled, std::int32_t digits) {
  clsHelper01 helper;
  EXPECT_EQ(helper.RoundCmrc(Currency::FromScaled(scaled), digits).Scaled(), 0) << scaled;
  ExpectFault(helper.ErrorObject(), 6, "RoundCmrc");
}

template <class Value>
void ExpectFault2(Value value, std::int32_t number, std::int32_t digits = 2) {
  clsHelper01 helper;
  EXPECT_EQ(helper.RoundCmrc2(value, digits).Scaled(), 0) << value;
  ExpectFault(helper.ErrorObject(), number, "RoundCmrc2");
}

TEST(RoundCmrc, RoundsHalfAwayFromZero) {
  EXPECT_EQ(Round(23450), 23500);
  EXPECT_EQ(Round(-23450), -23500);
  EXPECT_EQ(Round(23449), 23400);
  EXPECT_EQ(Round(-23449), -23400);
  EXPECT_EQ(Round(10050), 10100);
  EXPECT_EQ(Round(0), 0);
  EXPECT_EQ(Round(49), 0);
  EXPECT_EQ(Round(50), 100);
  EXPECT_EQ(Round(-49), 0);
  EXPECT_EQ(Round(-50), -100);
  EXPECT_EQ(Round(12345678901200), 12345678901200);
}

TEST(RoundCmrc, RoundsToTwoDecimalsByDefault) {
  clsHelper01 helper;
  EXPECT_EQ(helper.RoundCmrc(Currency::FromScaled(10050)).Scaled(), 10100);
}

TEST(RoundCmrc, RoundsToZeroToThreeDecimals) {
  EXPECT_EQ(Round(5000, 0), 10000);
  EXPECT_EQ(Round(4999, 0), 0);
  EXPECT_EQ(Round(-5000, 0), -10000);
  EXPECT_EQ(Round(25000, 0), 30000);
  EXPECT_EQ(Round(500, 1), 1000);
  EXPECT_EQ(Round(499, 1), 0);
  EXPECT_EQ(Round(-12500, 1), -13000);
  EXPECT_EQ(Round(10005, 3), 10010);
  EXPECT_EQ(Round(10004, 3), 10000);
  EXPECT_EQ(Round(-5, 3), -10);
}

TEST(RoundCmrc, OtherDigitsCountAsTwo) {
  for (const std::int32_t digits :
       {4, 5, -1, 100, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(Round(10050, digits), 10100) << digits;
    EXPECT_EQ(Round(10049, digits), 10000) << digits;
    EXPECT_EQ(Round2(1.0049, digits), 10000) << digits;
    EXPECT_EQ(Round2(1.005, digits), 10100) << digits;
  }
}

// The amount times 10, 100 or 1000 plus one half has to stay below 922337203685477.5808.
TEST(RoundCmrc, OverflowsOnTheWay) {
  EXPECT_EQ(Round(92233720368547708, 2), 92233720368547700);
  ExpectOverflow(92233720368547709, 2);
  EXPECT_EQ(Round(-92233720368547708, 2), -92233720368547700);
  ExpectOverflow(-92233720368547709, 2);
  EXPECT_EQ(Round(9223372036854770807, 0), 9223372036854770000);
  ExpectOverflow(9223372036854770808, 0);
  EXPECT_EQ(Round(-9223372036854770807, 0), -9223372036854770000);
  ExpectOverflow(-9223372036854770808, 0);
  EXPECT_EQ(Round(922337203685477080, 1), 922337203685477000);
  ExpectOverflow(922337203685477081, 1);
  EXPECT_EQ(Round(9223372036854770, 3), 9223372036854770);
  ExpectOverflow(9223372036854771, 3);
  for (std::int32_t digits = 0; digits < 4; ++digits) {
    ExpectOverflow(largest, digits);
    ExpectOverflow(smallest, digits);
    ExpectOverflow(smallest + 1, digits);
  }
}

TEST(RoundCmrc, ItsFaultsAreLoggedAndGoneAfterTheNextCall) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  helper.RoundCmrc(Currency::FromScaled(largest));
  EXPECT_TRUE(helper.HasError());
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"RoundCmrc"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"6"});
  helper.RoundCmrc(Currency(1));
  ExpectNoError(helper);
  EXPECT_EQ(log.Count(), 1U);
}

TEST(RoundCmrc2, RoundsCurrenciesWithoutOverflowOnTheWay) {
  EXPECT_EQ(Round2(Currency::FromScaled(23450)), 23500);
  EXPECT_EQ(Round2(Currency::FromScaled(-23450)), -23500);
  EXPECT_EQ(Round2(Currency::FromScaled(23449)), 23400);
  EXPECT_EQ(Round2(Currency::FromScaled(10005), 3), 10010);
  EXPECT_EQ(Round2(Currency::FromScaled(largest)), 9223372036854775800);
  EXPECT_EQ(Round2(Currency::FromScaled(smallest)), -9223372036854775800);
  EXPECT_EQ(Round2(Currency::FromScaled(92233720368547709)), 92233720368547700);
  EXPECT_EQ(Round2(Currency::FromScaled(9223372036854774999), 0), 9223372036854770000);
}

TEST(RoundCmrc2, OverflowsWhereTheResultIsNoCurrency) {
  ExpectFault2(922337203685478.0, 6);
  ExpectFault2(-922337203685478.0, 6);
  clsHelper01 helper;
  EXPECT_EQ(helper.RoundCmrc2(Currency::FromScaled(largest), 0).Scaled(), 0);
  ExpectFault(helper.ErrorObject(), 6, "RoundCmrc2");
  EXPECT_EQ(helper.RoundCmrc2(Currency::FromScaled(largest), 3).Scaled(), 0);
  ExpectFault(helper.ErrorObject(), 6, "RoundCmrc2");
  EXPECT_EQ(helper.RoundCmrc2(Currency::FromScaled(smallest), 0).Scaled(), 0);
  ExpectFault(helper.ErrorObject(), 6, "RoundCmrc2");
}

TEST(RoundCmrc2, RoundsDoubles) {
  EXPECT_EQ(Round2(2.345), 23500);
  EXPECT_EQ(Round2(-2.345), -23500);
  EXPECT_EQ(Round2(2.3449), 23400);
  EXPECT_EQ(Round2(0.0), 0);
  EXPECT_EQ(Round2(-0.0), 0);
  EXPECT_EQ(Round2(0.5, 0), 10000);
  EXPECT_EQ(Round2(0.49999, 0), 0);
  EXPECT_EQ(Round2(2.5, 0), 30000);
  EXPECT_EQ(Round2(-0.0005, 3), -10);
  EXPECT_EQ(Round2(1e-30), 0);
  EXPECT_EQ(Round2(5e-324), 0);
  EXPECT_EQ(Round2(123456789.125), 1234567891300);
}

// 1.005 and 2.675 lie below their written values in binary; their first 15 digits are the written ones.
TEST(RoundCmrc2, Takes15SignificantDigitsOfADouble) {
  EXPECT_EQ(Round2(1.005), 10100);
  EXPECT_EQ(Round2(2.675), 26800);
  EXPECT_EQ(Round2(0.1 + 0.2), 3000);
  EXPECT_EQ(Round2(1.00499999999999), 10000);
  EXPECT_EQ(Round2(1.004999999999999), 10100);
  EXPECT_EQ(Round2(-1.004999999999999), -10100);
  EXPECT_EQ(Round2(0.4999999999999999, 0), 10000);
  EXPECT_EQ(Round2(0.499999999999999, 0), 0);
}

TEST(RoundCmrc2, DoublesOutsideTheRangeOverflow) {
  EXPECT_EQ(Round2(922337203685477.0), 9223372036854770000);
  ExpectFault2(1e15, 6);
  ExpectFault2(1e20, 6);
  ExpectFault2(-1e20, 6);
  ExpectFault2(1e28, 6);
  ExpectFault2(1e30, 6);
  ExpectFault2(1e300, 6);
  ExpectFault2(std::numeric_limits<double>::max(), 6);
  ExpectFault2(std::numeric_limits<double>::infinity(), 6);
  ExpectFault2(-std::numeric_limits<double>::infinity(), 6);
}

TEST(RoundCmrc2, WhatIsNotANumberIsAFault) {
  clsHelper01 helper;
  EXPECT_EQ(helper.RoundCmrc2(std::numeric_limits<double>::quiet_NaN()).Scaled(), 0);
  EXPECT_TRUE(helper.HasError());
  EXPECT_FALSE(helper.ErrorObject().IsUserDef());
  EXPECT_EQ(helper.ErrorObject().ErrorFunction(), "RoundCmrc2");
}

TEST(RoundCmrc2, TakesIntegers) {
  EXPECT_EQ(Round2(5), 50000);
  EXPECT_EQ(Round2(-5), -50000);
  EXPECT_EQ(Round2(std::int64_t{922337203685477}), 9223372036854770000);
  EXPECT_EQ(Round2(std::int64_t{-922337203685477}), -9223372036854770000);
  ExpectFault2(std::int64_t{922337203685478}, 6);
  ExpectFault2(std::int64_t{-922337203685478}, 6);
  ExpectFault2(largest, 6);
  ExpectFault2(smallest, 6);
}

template <class Integer>
class RoundCmrc2OfIntegers : public testing::Test {};

using IntegerTypes =
    testing::Types<signed char, unsigned char, char, short, unsigned short, int, unsigned, long,
                   unsigned long, long long, unsigned long long, wchar_t, char8_t, char16_t, char32_t>;
TYPED_TEST_SUITE(RoundCmrc2OfIntegers, IntegerTypes);

TYPED_TEST(RoundCmrc2OfIntegers, GivesTheirValue) {
  EXPECT_EQ(Round2(static_cast<TypeParam>(5)), 50000);
  EXPECT_EQ(Round2(static_cast<TypeParam>(0)), 0);
  EXPECT_EQ(Round2(static_cast<TypeParam>(127), 0), 1270000);
  if constexpr (std::is_signed_v<TypeParam>) {
    EXPECT_EQ(Round2(static_cast<TypeParam>(-128)), -1280000);
  } else if constexpr (sizeof(TypeParam) == 1) {
    EXPECT_EQ(Round2(static_cast<TypeParam>(255)), 2550000);
  }
}

TEST(RoundCmrc2, TakesLiteralsOfEveryIntegerType) {
  clsHelper01 helper;
  EXPECT_EQ(helper.RoundCmrc2(5u).Scaled(), 50000);
  EXPECT_EQ(helper.RoundCmrc2(5L).Scaled(), 50000);
  EXPECT_EQ(helper.RoundCmrc2(-5LL).Scaled(), -50000);
  EXPECT_EQ(helper.RoundCmrc2(5ULL, 0).Scaled(), 50000);
  EXPECT_EQ(helper.RoundCmrc2('\x05').Scaled(), 50000);
  EXPECT_EQ(helper.RoundCmrc2(true).Scaled(), 10000);
  EXPECT_EQ(helper.RoundCmrc2(false).Scaled(), 0);
  enum { five = 5 };
  EXPECT_EQ(helper.RoundCmrc2(five).Scaled(), 50000);
}

TEST(RoundCmrc2, IntegersBeyondTheRangeOverflow) {
  EXPECT_EQ(Round2(922337203685477ULL), 9223372036854770000);
  EXPECT_EQ(Round2(4294967295U), 42949672950000);
  ExpectFault2(922337203685478ULL, 6);
  ExpectFault2(9223372036854775807ULL, 6);
  ExpectFault2(9223372036854775808ULL, 6);
  ExpectFault2(18446744073709551615ULL, 6);
  ExpectFault2(18446744073709551615ULL, 6, 0);
}

// 1.005 and 2.675 lie below their written values in binary; their first 7 digits are the written ones.
TEST(RoundCmrc2, Takes7SignificantDigitsOfASingle) {
  EXPECT_EQ(Round2(1.005F), 10100);
  EXPECT_EQ(Round2(-1.005F), -10100);
  EXPECT_EQ(Round2(2.675F), 26800);
  EXPECT_EQ(Round2(2.345F), 23500);
  EXPECT_EQ(Round2(0.1F + 0.2F), 3000);
  EXPECT_EQ(Round2(0.0F), 0);
  EXPECT_EQ(Round2(-0.0F), 0);
  EXPECT_EQ(Round2(0.5F, 0), 10000);
  EXPECT_EQ(Round2(1.0004999F, 3), 10010);
  EXPECT_EQ(Round2(1.000499F, 3), 10000);
  EXPECT_EQ(Round2(123456.789F), 1234568000);
  EXPECT_EQ(Round2(16777216.0F), 167772200000);
  EXPECT_EQ(Round2(1e-30F), 0);
  EXPECT_EQ(Round2(std::numeric_limits<float>::denorm_min()), 0);
  EXPECT_EQ(Round2(9.223372e14F), 9223372000000000000);
}

TEST(RoundCmrc2, SinglesOutsideTheRangeOverflow) {
  ExpectFault2(9.3e14F, 6);
  ExpectFault2(-9.3e14F, 6);
  ExpectFault2(1e20F, 6);
  ExpectFault2(std::numeric_limits<float>::max(), 6);
  ExpectFault2(std::numeric_limits<float>::infinity(), 6);
  ExpectFault2(-std::numeric_limits<float>::infinity(), 6);
  ExpectFault2(std::numeric_limits<float>::quiet_NaN(), 6);
}

TEST(RoundCmrc2, TakesTextsInTheRegionalForm) {
  EXPECT_EQ(Round2("1.234,5"), 12345000);
  EXPECT_EQ(Round2(std::string_view("1234,5")), 12345000);
  EXPECT_EQ(Round2("2,345"), 23500);
  EXPECT_EQ(Round2("-2,345"), -23500);
  EXPECT_EQ(Round2("2,3449"), 23400);
  EXPECT_EQ(Round2("7"), 70000);
  EXPECT_EQ(Round2("1.234.567,895"), 12345679000);
  EXPECT_EQ(Round2("0,0005", 3), 10);
  EXPECT_EQ(Round2("922337203685477,5807"), 9223372036854775800);
}

TEST(RoundCmrc2, TextsAreNotRoundedEarly) {
  EXPECT_EQ(Round2("1,00499999999999999999999"), 10000);
  EXPECT_EQ(Round2("1,00500000000000000000000"), 10100);
  EXPECT_EQ(Round2("0,4999999999999999999999999999", 0), 0);
  EXPECT_EQ(Round2("0,1234567890123456789012345678901234567890"), 1200);
}

TEST(RoundCmrc2, TextsBeyondTheRangeOverflow) {
  ExpectFault2("922337203685478", 6);
  ExpectFault2("-922337203685478", 6);
  ExpectFault2("99999999999999999999999999999999999999", 6);
  ExpectFault2(std::string(100000, '9').c_str(), 6);
}

TEST(RoundCmrc2, TextsThatAreNoNumberAreAFault) {
  for (const char* text :
       {"", " ", "abc", "1,2,3", "12x", "x12", "-", ",", ".", "--1", "1-2", "1 2", "€", "1/2"}) {
    ExpectFault2(text, 13);
  }
}

TEST(RoundCmrc2, ItsFaultsAreLoggedAndGoneAfterTheNextCall) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  helper.RoundCmrc2("abc");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"RoundCmrc2"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"13"});
  EXPECT_EQ(helper.RoundCmrc2("1").Scaled(), 10000);
  ExpectNoError(helper);
}

TEST(RoundCmrc2, TextsFollowTheHostsNumberCharacters) {
  {
    const test::GlobalLocale host(std::locale(std::locale::classic(), new test::NumberCharacters('.', ',')));
    EXPECT_EQ(Round2("1,234.5"), 12345000);
    EXPECT_EQ(Round2("2.345"), 23500);
    EXPECT_EQ(Round2("-0.005"), -100);
    ExpectFault2("1.2.3", 13);
    EXPECT_EQ(Round2(1.005), 10100);
  }
  {
    const test::GlobalLocale host(std::locale(std::locale::classic(), new test::NumberCharacters(',', '\'')));
    EXPECT_EQ(Round2("1'234,5"), 12345000);
  }
  EXPECT_EQ(Round2("1.234,5"), 12345000);
}

/// Half away from zero by integers alone.
std::int64_t Expected(std::int64_t scaled, std::int32_t digits) {
  static constexpr std::uint64_t units[] = {10000, 1000, 100, 10};
  const std::uint64_t unit = units[digits];
  const std::uint64_t size =
      scaled < 0 ? 0U - static_cast<std::uint64_t>(scaled) : static_cast<std::uint64_t>(scaled);
  const std::uint64_t rounded = (size / unit + (size % unit * 2 >= unit ? 1U : 0U)) * unit;
  return scaled < 0 ? -static_cast<std::int64_t>(rounded) : static_cast<std::int64_t>(rounded);
}

TEST(RoundingProperties, CurrenciesRoundAsIntegersDo) {
  EXPECT_TRUE(rc::check("RoundCmrc and RoundCmrc2", [] {
    const auto scaled = *rc::gen::inRange<std::int64_t>(-9000000000000000, 9000000000000000);
    const auto digits = *rc::gen::inRange(0, 4);
    const std::int64_t expected = Expected(scaled, digits);
    clsHelper01 helper;
    RC_ASSERT(helper.RoundCmrc(Currency::FromScaled(scaled), digits).Scaled() == expected);
    RC_ASSERT(helper.RoundCmrc2(Currency::FromScaled(scaled), digits).Scaled() == expected);
    RC_ASSERT(!helper.HasError());
  }));
}

TEST(RoundingProperties, RoundCmrc2RoundsEveryCurrency) {
  EXPECT_TRUE(rc::check("RoundCmrc2 over the whole range", [] {
    const auto scaled = *rc::gen::inRange<std::int64_t>(-9223372036854760000, 9223372036854760000);
    const auto digits = *rc::gen::inRange(0, 4);
    clsHelper01 helper;
    RC_ASSERT(helper.RoundCmrc2(Currency::FromScaled(scaled), digits).Scaled() == Expected(scaled, digits));
  }));
}

TEST(RoundingProperties, DoublesAndTextsOfAnAmountRoundLikeTheAmount) {
  EXPECT_TRUE(rc::check("RoundCmrc2 of a double and of a text", [] {
    const auto scaled = *rc::gen::inRange<std::int64_t>(-99999999999999, 99999999999999);
    const auto digits = *rc::gen::inRange(0, 4);
    const std::uint64_t size = static_cast<std::uint64_t>(scaled < 0 ? -scaled : scaled);
    std::string fraction = std::to_string(size % 10000);
    fraction.insert(0, 4 - fraction.size(), '0');
    const std::string text = (scaled < 0 ? "-" : "") + std::to_string(size / 10000) + "," + fraction;
    clsHelper01 helper;
    RC_ASSERT(helper.RoundCmrc2(static_cast<double>(scaled) / 10000.0, digits).Scaled() ==
              Expected(scaled, digits));
    RC_ASSERT(helper.RoundCmrc2(text, digits).Scaled() == Expected(scaled, digits));
  }));
}

TEST(RoundingProperties, SinglesOfSevenDigitsRoundLikeTheAmount) {
  EXPECT_TRUE(rc::check("RoundCmrc2 of a single", [] {
    const auto scaled = *rc::gen::inRange<std::int64_t>(-9999999, 9999999);
    const auto digits = *rc::gen::inRange(0, 4);
    clsHelper01 helper;
    RC_ASSERT(helper.RoundCmrc2(static_cast<float>(static_cast<double>(scaled) / 10000.0), digits).Scaled() ==
              Expected(scaled, digits));
  }));
}

TEST(RoundingProperties, AnyTextEndsInANumberOrAFault) {
  EXPECT_TRUE(rc::check("RoundCmrc2 of any text", [](const std::string& text) {
    clsHelper01 helper;
    helper.RoundCmrc2(text);
    const std::int32_t number = helper.ErrorObject().ErrorNr();
    RC_ASSERT(number == 0 || number == 6 || number == 13);
  }));
}

}  // namespace
