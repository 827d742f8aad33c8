#include "VnZEL10cmn/types/Date.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <chrono>
#include <cstdint>
#include <ctime>
#include <limits>
#include <stdexcept>
#include <string>

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

}  // namespace
