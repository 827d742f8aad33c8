#include "VnZEL10cmn/types/internal/Format.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

#include <cstdint>
#include <limits>
#include <locale>
#include <string>

#include "tests/support/Regional.h"

using namespace VnZEL10cmn::internal;  // NOLINT(google-build-using-namespace): the whole header is under test
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;

namespace {

std::string Format(std::int64_t scaled, NumberPattern pattern) {
  return FormatNumber(Currency::FromScaled(scaled), pattern, CurrentRegionalSettings());
}

TEST(FormatNumber, FollowsItsPattern) {
  EXPECT_EQ(Format(12345000, kAmount), "1.234,50");
  EXPECT_EQ(Format(0, kAmount), "0,00");
  EXPECT_EQ(Format(9999900, kAmount), "999,99");
  EXPECT_EQ(Format(10000000, kAmount), "1.000,00");
  EXPECT_EQ(Format(12345678900000, kAmount), "1.234.567.890,00");
  EXPECT_EQ(Format(-12345000, kAmount), "-1.234,50");
  EXPECT_EQ(Format(12345000, kTwoDecimals), "1234,50");
  EXPECT_EQ(Format(195000, kOneDecimal), "19,5");
  EXPECT_EQ(Format(190000, kOneDecimal), "19,0");
  EXPECT_EQ(Format(195000, kWhole), "20");
  EXPECT_EQ(Format(12500, kQuantity), "1,25");
  EXPECT_EQ(Format(12345, kQuantity), "1,2345");
  EXPECT_EQ(Format(10000, kQuantity), "1");
}

TEST(FormatNumber, RoundsHalfAwayFromZero) {
  EXPECT_EQ(Format(50, kTwoDecimals), "0,01");
  EXPECT_EQ(Format(49, kTwoDecimals), "0,00");
  EXPECT_EQ(Format(-50, kTwoDecimals), "-0,01");
  EXPECT_EQ(Format(25000, kWhole), "3");
  EXPECT_EQ(Format(9999950, kAmount), "1.000,00");
  EXPECT_EQ(Format(std::numeric_limits<std::int64_t>::max(), kAmount), "922.337.203.685.477,58");
  EXPECT_EQ(Format(std::numeric_limits<std::int64_t>::min(), kAmount), "-922.337.203.685.477,58");
}

TEST(FormatNumber, TakesTheHostsCharacters) {
  const test::GlobalLocale host(std::locale(std::locale::classic(), new test::NumberCharacters('.', ',')));
  EXPECT_EQ(Format(12345000, kAmount), "1,234.50");
}

TEST(Hundredfold, IsTheMagnitudeInCentsRoundedHalfAwayFromZero) {
  EXPECT_EQ(Hundredfold(Currency::FromScaled(12345)), 123U);
  EXPECT_EQ(Hundredfold(Currency::FromScaled(12350)), 124U);
  EXPECT_EQ(Hundredfold(Currency::FromScaled(-12349)), 123U);
  EXPECT_EQ(Hundredfold(Currency::FromScaled(-12350)), 124U);
  EXPECT_EQ(Hundredfold(Currency::FromScaled(0)), 0U);
  EXPECT_EQ(Hundredfold(Currency::FromScaled(INT64_MIN)), 92233720368547758U);
}

TEST(FormatQuantity, HasAPointBeforeDecimalsOtherThanZeros) {
  std::array<char, 24> buffer{};
  EXPECT_EQ(FormatQuantity(Currency::FromScaled(10000), buffer), "1");
  EXPECT_EQ(FormatQuantity(Currency::FromScaled(3850), buffer), "0.385");
  EXPECT_EQ(FormatQuantity(Currency::FromScaled(-12345), buffer), "-1.2345");
  EXPECT_EQ(FormatQuantity(Currency::FromScaled(100500), buffer), "10.05");
  EXPECT_EQ(FormatQuantity(Currency::FromScaled(INT64_MIN), buffer), "-922337203685477.5808");
}

TEST(FormatDates, FollowTheirPatterns) {
  const Date date = Date::FromCivil(2026, 3, 4, 8, 5, 9);
  EXPECT_EQ(FormatDateTime(date, CurrentRegionalSettings()), "04.03.2026 08:05:09");
  EXPECT_EQ(FormatDateMinutes(date, CurrentRegionalSettings()), "04.03.2026 08:05");
}

TEST(FormatDates, TakeTheHostsCharacters) {
  const Date date = Date::FromCivil(2026, 12, 31, 8, 5);
  const test::GlobalLocale host(std::locale(std::locale::classic(), new test::DateCharacters('-', ';')));
  EXPECT_EQ(FormatDateTime(date, CurrentRegionalSettings()), "31-12-2026 08;05;00");
}

TEST(FormatDates, AnyCharacterThatIsNeitherLetterNorDigitSeparates) {
  const Date date = Date::FromCivil(2026, 12, 31, 8, 5);
  for (const char separator : {' ', '/', ':', '@', '[', '`', '{', '~'}) {
    const test::GlobalLocale host(
        std::locale(std::locale::classic(), new test::DateCharacters(separator, separator)));
    const std::string s(1, separator);
    EXPECT_EQ(FormatDateTime(date, CurrentRegionalSettings()),
              "31" + s + "12" + s + "2026 08" + s + "05" + s + "00");
  }
  for (const char letter : {'0', '9', 'A', 'Z', 'a', 'z', '\x80', '\xFF'}) {
    const test::GlobalLocale host(
        std::locale(std::locale::classic(), new test::DateCharacters(letter, letter)));
    EXPECT_EQ(FormatDateTime(date, CurrentRegionalSettings()), "31.12.2026 08:05:00");
  }
}

TEST(FormatDates, DatesWithoutSeparatorsKeepTheGermanOnes) {
  const Date date = Date::FromCivil(2026, 12, 31, 8, 5);
  const test::GlobalLocale host(std::locale(std::locale::classic(), new test::DateCharacters('y', 'h')));
  EXPECT_EQ(FormatDateTime(date, CurrentRegionalSettings()), "31.12.2026 08:05:00");
}

}  // namespace
