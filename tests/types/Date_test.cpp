#include "VnZEL10cmn/types/Date.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <functional>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_set>

#include "tests/support/Regional.h"

using VnZEL10cmn::Date;
using VnZEL10cmn::NoTime;

namespace {

std::string Text(const Date::Civil& parts) {
  std::string text;
  for (const std::int32_t part :
       {parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second}) {
    text += (text.empty() ? "" : " ") + std::to_string(part);
  }
  return text;
}

template <class Exception, class Operation>
void ExpectThrow(std::string_view message, Operation operation) {
  try {
    operation();
    ADD_FAILURE() << "nothing is thrown";
  } catch (const Exception& exception) {
    EXPECT_EQ(exception.what(), message);
  }
}

TEST(Date, StartsAt30December1899) {
  EXPECT_EQ(Date().Value(), 0.0);
  EXPECT_EQ(Date::FromCivil(1899, 12, 30).Value(), 0.0);
  EXPECT_EQ(Text(Date().ToCivil()), "1899 12 30 0 0 0");
}

TEST(Date, NoTimeIsFirstJanuary1900) {
  EXPECT_EQ(NoTime.Value(), 2.0);
  EXPECT_EQ(Date::FromCivil(1900, 1, 1), NoTime);
  EXPECT_EQ(Text(NoTime.ToCivil()), "1900 1 1 0 0 0");
}

TEST(Date, CountsDays) {
  EXPECT_EQ(Date::FromCivil(100, 1, 1).Value(), -657434.0);
  EXPECT_EQ(Date::FromCivil(1899, 12, 29).Value(), -1.0);
  EXPECT_EQ(Date::FromCivil(1900, 2, 28).Value(), 60.0);
  EXPECT_EQ(Date::FromCivil(1900, 3, 1).Value(), 61.0);
  EXPECT_EQ(Date::FromCivil(2000, 1, 1).Value(), 36526.0);
  EXPECT_EQ(Date::FromCivil(2000, 2, 29).Value(), 36585.0);
  EXPECT_EQ(Date::FromCivil(2006, 12, 31).Value(), 39082.0);
  EXPECT_EQ(Date::FromCivil(2026, 12, 31).Value(), 46387.0);
  EXPECT_EQ(Date::FromCivil(2099, 12, 31).Value(), 73050.0);
  EXPECT_EQ(Date::FromCivil(9999, 12, 31).Value(), 2958465.0);
}

TEST(Date, TheFractionIsTheTimeOfDay) {
  EXPECT_EQ(Date::FromCivil(2000, 1, 1, 12).Value(), 36526.5);
  EXPECT_EQ(Date::FromCivil(2000, 1, 1, 18).Value(), 36526.75);
  EXPECT_EQ(Text(Date(46387.25).ToCivil()), "2026 12 31 6 0 0");
  EXPECT_DOUBLE_EQ(Date::FromCivil(2026, 12, 31, 8, 5).Value(), 46387.336805555555);
}

TEST(Date, TheLastSecondOfTheLastYearHasOneValueOnly) {
  EXPECT_EQ(Date::FromCivil(2099, 12, 31, 23, 59, 59), Date(73050.99998842593));
  EXPECT_EQ(Text(Date(73050.99998842593).ToCivil()), "2099 12 31 23 59 59");
}

TEST(Date, PartsAreRoundedToTheSecond) {
  EXPECT_EQ(Text(Date(36526.0 + 0.4 / 86400).ToCivil()), "2000 1 1 0 0 0");
  EXPECT_EQ(Text(Date(36526.0 + 0.6 / 86400).ToCivil()), "2000 1 1 0 0 1");
  EXPECT_EQ(Text(Date(36526.0 + 86399.4 / 86400).ToCivil()), "2000 1 1 23 59 59");
  EXPECT_EQ(Text(Date(36526.0 + 86399.6 / 86400).ToCivil()), "2000 1 2 0 0 0");
}

TEST(Date, MomentsThatDoNotExistAreRefused) {
  const auto make = [](Date::Civil parts) {
    return Date::FromCivil(parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second);
  };
  const Date::Civil wrong[] = {
      {99, 12, 31, 0, 0, 0},   {10000, 1, 1, 0, 0, 0}, {0, 1, 1, 0, 0, 0},     {-2026, 1, 1, 0, 0, 0},
      {2026, 0, 1, 0, 0, 0},   {2026, 13, 1, 0, 0, 0}, {2026, -1, 1, 0, 0, 0}, {2026, 1, 0, 0, 0, 0},
      {2026, 1, 32, 0, 0, 0},  {2026, 2, 29, 0, 0, 0}, {2026, 2, 31, 0, 0, 0}, {2026, 4, 31, 0, 0, 0},
      {1900, 2, 29, 0, 0, 0},  {2100, 2, 29, 0, 0, 0}, {2026, 1, 1, 24, 0, 0}, {2026, 1, 1, -1, 0, 0},
      {2026, 1, 1, 0, 60, 0},  {2026, 1, 1, 0, -1, 0}, {2026, 1, 1, 0, 0, 60}, {2026, 1, 1, 0, 0, -1},
      {2026, 1, 1, 25, 61, 0},
  };
  for (const Date::Civil& parts : wrong) {
    EXPECT_FALSE(Date::Exists(parts)) << Text(parts);
    EXPECT_THROW(make(parts), std::invalid_argument) << Text(parts);
  }
}

TEST(Date, BoundaryMomentsExist) {
  EXPECT_TRUE(Date::Exists({100, 1, 1, 0, 0, 0}));
  EXPECT_TRUE(Date::Exists({9999, 12, 31, 23, 59, 59}));
  EXPECT_TRUE(Date::Exists({2000, 2, 29, 0, 0, 0}));
  EXPECT_TRUE(Date::Exists({2024, 2, 29, 0, 0, 0}));
  EXPECT_TRUE(Date::Exists({2026, 4, 30, 0, 0, 0}));
}

TEST(Date, PartsOutsideTheCalendarOverflow) {
  EXPECT_EQ(Text(Date(-657434.0).ToCivil()), "100 1 1 0 0 0");
  EXPECT_THROW(Date(-657435.0).ToCivil(), std::overflow_error);
  EXPECT_EQ(Text(Date(2958465.0).ToCivil()), "9999 12 31 0 0 0");
  EXPECT_THROW(Date(2958466.0).ToCivil(), std::overflow_error);
  EXPECT_THROW(Date(2958465.0 + 86399.7 / 86400).ToCivil(), std::overflow_error);
  EXPECT_THROW(Date(1e300).ToCivil(), std::overflow_error);
  EXPECT_THROW(Date(-1e300).ToCivil(), std::overflow_error);
  EXPECT_THROW(Date(std::numeric_limits<double>::infinity()).ToCivil(), std::overflow_error);
  EXPECT_THROW(Date(std::numeric_limits<double>::quiet_NaN()).ToCivil(), std::overflow_error);
}

TEST(Date, NowIsTheLocalTimeInWholeSeconds) {
  // std::time may lag behind this clock by a tick and so show the second before.
  const auto clock = [] { return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()); };
  const std::time_t before = clock();
  const Date now = Date::Now();
  const std::time_t after = clock();
  const Date::Civil parts = now.ToCivil();
  EXPECT_EQ(now, Date::FromCivil(parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second));
  bool found = false;
  for (std::time_t moment = before; moment <= after; ++moment) {
    const std::tm local = *std::localtime(&moment);
    found = found || Text(parts) == Text({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                                          local.tm_hour, local.tm_min, local.tm_sec});
  }
  EXPECT_TRUE(found) << Text(parts);
}

TEST(Date, OrdersByDayCount) {
  EXPECT_LT(Date(1.0), Date(1.5));
  EXPECT_EQ(Date(1.5), Date(1.5));
}

TEST(Date, TextIsTheCalendarDayAndTheTimeOfDay) {
  EXPECT_EQ(Date::FromCivil(2026, 12, 31, 8, 5, 9).ToText(), "2026-12-31T08:05:09");
  EXPECT_EQ(Date::FromCivil(2026, 1, 2).ToText(), "2026-01-02T00:00:00");
  EXPECT_EQ(Date::FromCivil(2024, 2, 29, 23, 59, 59).ToText(), "2024-02-29T23:59:59");
  EXPECT_EQ(Date::FromCivil(100, 1, 1).ToText(), "0100-01-01T00:00:00");
  EXPECT_EQ(Date::FromCivil(9999, 12, 31, 23, 59, 59).ToText(), "9999-12-31T23:59:59");
  EXPECT_EQ(Date().ToText(), "1899-12-30T00:00:00");
  EXPECT_EQ(NoTime.ToText(), "1900-01-01T00:00:00");
}

TEST(Date, BeforeDayZeroTheTimeOfDayCountsAwayFromZero) {
  EXPECT_EQ(Date(-1.25).ToText(), "1899-12-29T06:00:00");
  EXPECT_EQ(Date(-1.75).ToText(), "1899-12-29T18:00:00");
  EXPECT_EQ(Date(-2.0).ToText(), "1899-12-28T00:00:00");
  EXPECT_EQ(Date(-657434.5).ToText(), "0100-01-01T12:00:00");
  EXPECT_EQ(Date::FromText("1899-12-29T06:00:00").Value(), -1.25);
  EXPECT_EQ(Date::FromText("1899-12-29T18:00:00").Value(), -1.75);
  EXPECT_EQ(Date::FromText("0100-01-01T12:00:00").Value(), -657434.5);
  // Day zero itself has both signs; the positive one is the one that is made.
  EXPECT_EQ(Date(-0.25).ToText(), "1899-12-30T06:00:00");
  EXPECT_EQ(Date::FromText("1899-12-30T06:00:00").Value(), 0.25);
}

TEST(Date, TextIsRoundedToTheSecond) {
  EXPECT_EQ(Date(36526.0 + 0.4 / 86400).ToText(), "2000-01-01T00:00:00");
  EXPECT_EQ(Date(36526.0 + 86399.6 / 86400).ToText(), "2000-01-02T00:00:00");
  EXPECT_EQ(Date(-1.0 - 86399.6 / 86400).ToText(), "1899-12-30T00:00:00");
}

TEST(Date, ReadsDaysWithAndWithoutTheTime) {
  EXPECT_EQ(Date::FromText("2026-12-31T08:05:09"), Date::FromCivil(2026, 12, 31, 8, 5, 9));
  EXPECT_EQ(Date::FromText("2026-12-31T08:05"), Date::FromCivil(2026, 12, 31, 8, 5));
  EXPECT_EQ(Date::FromText("2026-12-31"), Date::FromCivil(2026, 12, 31));
  EXPECT_EQ(Date::FromText("2000-01-01T12:00:00").Value(), 36526.5);
  EXPECT_EQ(Date::FromText("2099-12-31T23:59:59").Value(), 73050.99998842593);
  EXPECT_EQ(Date::FromText("0100-01-01").Value(), -657434.0);
  EXPECT_EQ(Date::FromText("9999-12-31").Value(), 2958465.0);
  EXPECT_EQ(Date::FromText("2000-02-29").Value(), 36585.0);
}

TEST(Date, TextOfNoMomentIsRefused) {
  using namespace std::string_view_literals;
  for (const std::string_view text :
       {"2026-02-29"sv, "1900-02-29"sv, "2100-02-29"sv, "2026-04-31"sv, "2026-00-10"sv, "2026-13-10"sv,
        "2026-01-00"sv, "2026-01-32"sv, "0099-12-31"sv, "0000-01-01"sv, "2026-12-31T24:00:00"sv,
        "2026-12-31T24:00"sv, "2026-12-31T08:60:00"sv, "2026-12-31T08:05:60"sv}) {
    SCOPED_TRACE(text);
    ExpectThrow<std::invalid_argument>("Typen unverträglich", [&] { Date::FromText(text); });
  }
  ExpectThrow<std::invalid_argument>("Typen unverträglich", [] { Date::FromCivil(2026, 2, 29); });
}

TEST(Date, TextOfAnotherFormIsRefused) {
  using namespace std::string_view_literals;
  for (const std::string_view text : {""sv,
                                      "2026"sv,
                                      "2026-12"sv,
                                      "2026-12-"sv,
                                      "20261231"sv,
                                      "31.12.2026"sv,
                                      "12/31/2026"sv,
                                      "2026-1-2"sv,
                                      "26-12-31"sv,
                                      "02026-12-31"sv,
                                      "+2026-12-31"sv,
                                      "-2026-12-31"sv,
                                      "10000-01-01"sv,
                                      "2026-W53-4"sv,
                                      "2026-365"sv,
                                      "2026-12-31T"sv,
                                      "2026-12-31T08"sv,
                                      "2026-12-31T08:"sv,
                                      "2026-12-31T08:05:"sv,
                                      "2026-12-31T8:05"sv,
                                      "2026-12-31T080509"sv,
                                      "2026-12-31 08:05:09"sv,
                                      "2026-12-31t08:05:09"sv,
                                      "2026-12-31T08:05:09Z"sv,
                                      "2026-12-31T08:05:09+01:00"sv,
                                      "2026-12-31T08:05:09.5"sv,
                                      "2026-12-31T08:05:09,5"sv,
                                      " 2026-12-31"sv,
                                      "2026-12-31 "sv,
                                      "2026-12-31\0"sv,
                                      "2026-12-31T-8:05"sv,
                                      "2026--1-31"sv,
                                      "2026-+1-31"sv,
                                      "2026- 1-31"sv,
                                      "2026-12-3\u0661"sv,
                                      "T08:05:09"sv}) {
    SCOPED_TRACE(text);
    ExpectThrow<std::invalid_argument>("Typen unverträglich", [&] { Date::FromText(text); });
  }
}

TEST(Date, DatesOutsideTheCalendarHaveNoText) {
  ExpectThrow<std::overflow_error>("Überlauf", [] { Date(2958466.0).ToText(); });
  ExpectThrow<std::overflow_error>("Überlauf", [] { Date(-657435.0).ToText(); });
  ExpectThrow<std::overflow_error>("Überlauf", [] { Date(2958465.0 + 86399.7 / 86400).ToText(); });
  ExpectThrow<std::overflow_error>("Überlauf",
                                   [] { Date(std::numeric_limits<double>::quiet_NaN()).ToText(); });
}

TEST(Date, GoesToAStreamAsText) {
  const test::GlobalLocale german(std::locale(std::locale::classic(), new test::NumberCharacters(',', '.')));
  std::ostringstream out;
  out << Date::FromCivil(2026, 12, 31, 8, 5, 9) << '|' << std::setw(21) << std::setfill('.') << Date();
  EXPECT_EQ(out.str(), "2026-12-31T08:05:09|..1899-12-30T00:00:00");
}

TEST(Date, CanBeTheKeyOfAHashTable) {
  const std::unordered_set<Date> days{Date(1.0), Date(1.5), Date::FromText("1899-12-31"), Date(0.0),
                                      Date(-0.0)};
  EXPECT_EQ(days.size(), 3U);
  EXPECT_TRUE(days.contains(Date(1.5)));
  EXPECT_FALSE(days.contains(Date(2.5)));
  EXPECT_NE(std::hash<Date>{}(Date(1.0)), std::hash<Date>{}(Date(1.5)));
}

TEST(DateProperties, PartsComeBackFromTheDayCount) {
  EXPECT_TRUE(rc::check("FromCivil then ToCivil", [] {
    const Date::Civil parts{*rc::gen::inRange(100, 10000), *rc::gen::inRange(1, 13),
                            *rc::gen::inRange(1, 29),      *rc::gen::inRange(0, 24),
                            *rc::gen::inRange(0, 60),      *rc::gen::inRange(0, 60)};
    const Date date =
        Date::FromCivil(parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second);
    RC_ASSERT(Text(date.ToCivil()) == Text(parts));
  }));
}

TEST(DateProperties, DaysFollowEachOther) {
  std::int32_t day = 1;
  std::int32_t month = 1;
  std::int32_t year = 1896;
  static constexpr std::int32_t lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  double expected = Date::FromCivil(year, month, day).Value();
  while (year < 2105) {
    ASSERT_EQ(Date::FromCivil(year, month, day).Value(), expected) << Text({year, month, day, 0, 0, 0});
    ASSERT_EQ(Text(Date(expected).ToCivil()), Text({year, month, day, 0, 0, 0}));
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    const std::int32_t length = month == 2 && leap ? 29 : lengths[month - 1];
    expected += 1.0;
    if (++day > length) {
      day = 1;
      if (++month > 12) {
        month = 1;
        ++year;
      }
    }
  }
}

/// The number with so many digits.
std::string Digits(std::int32_t value, std::size_t count) {
  const std::string digits = std::to_string(value);
  return std::string(count - digits.size(), '0') + digits;
}

/// Days from 1 January 1 to 1 January of the year.
std::int64_t DaysBefore(std::int32_t year) {
  const std::int64_t years = year - 1;
  return 365 * years + years / 4 - years / 100 + years / 400;
}

TEST(DateProperties, TextHoldsTheMomentThatItNames) {
  EXPECT_TRUE(rc::check("FromText and ToText", [] {
    static constexpr std::int32_t before[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
    const auto year = *rc::gen::inRange(100, 10000);
    const auto month = *rc::gen::inRange(1, 13);
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    const std::int32_t length = before[month] - before[month - 1] + (leap && month == 2 ? 1 : 0);
    const auto day = *rc::gen::inRange(1, length + 1);
    const auto second = *rc::gen::inRange(0, 86400);
    const std::string text = Digits(year, 4) + "-" + Digits(month, 2) + "-" + Digits(day, 2) + "T" +
                             Digits(second / 3600, 2) + ":" + Digits(second / 60 % 60, 2) + ":" +
                             Digits(second % 60, 2);
    const std::int64_t days = DaysBefore(year) + before[month - 1] + (leap && month > 2 ? 1 : 0) + day - 1 -
                              (DaysBefore(1899) + 363);
    // Seconds away from day zero, the time of day always away from it.
    const std::int64_t seconds = days < 0 ? days * 86400 - second : days * 86400 + second;
    const Date date = Date::FromText(text);
    RC_ASSERT(std::llround(date.Value() * 86400.0) == seconds);
    RC_ASSERT(date.ToText() == text);
    RC_ASSERT(Date::FromText(date.ToText()) == date);
  }));
}

TEST(DateProperties, AnyTextIsReadOrRefused) {
  EXPECT_TRUE(rc::check("a text changed in one place", [] {
    std::string text = "2026-12-31T08:05:09";
    const auto at = static_cast<std::size_t>(*rc::gen::inRange(0, 19));
    text[at] = *rc::gen::arbitrary<char>();
    try {
      RC_ASSERT(Date::FromText(text).ToText() == text);
    } catch (const std::invalid_argument&) {
    }
  }));
}

}  // namespace
