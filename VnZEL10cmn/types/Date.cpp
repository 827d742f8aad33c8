#include "VnZEL10cmn/types/Date.h"

#include <chrono>
#include <cmath>
#include <ctime>
#include <stdexcept>

#include "VnZEL10cmn/platform/internal/LocalTime.h"

namespace VnZEL10cmn {

namespace {

using std::chrono::sys_days;

constexpr sys_days kDayZero{std::chrono::year{1899} / 12 / 30};
constexpr double kFirstDay = -657434.0;  // 1 January 100
constexpr double kEndDay = 2958466.0;    // 1 January 10000
constexpr std::int32_t kSecondsPerDay = 86400;

std::chrono::year_month_day CalendarDay(const Date::Civil& parts) {
  return std::chrono::year{parts.year} / std::chrono::month{static_cast<unsigned>(parts.month)} /
         std::chrono::day{static_cast<unsigned>(parts.day)};
}

}  // namespace

bool Date::Exists(const Civil& parts) noexcept {
  return parts.year >= 100 && parts.year <= 9999 && parts.month >= 1 && parts.month <= 12 && parts.day >= 1 &&
         parts.day <= 31 && parts.hour >= 0 && parts.hour <= 23 && parts.minute >= 0 && parts.minute <= 59 &&
         parts.second >= 0 && parts.second <= 59 && CalendarDay(parts).ok();
}

Date Date::FromCivil(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t hour,
                     std::int32_t minute, std::int32_t second) {
  const Civil parts{year, month, day, hour, minute, second};
  if (!Exists(parts)) {
    throw std::invalid_argument("no such date");
  }
  const double days = static_cast<double>((sys_days{CalendarDay(parts)} - kDayZero).count());
  const double time = static_cast<double>(hour * 3600 + minute * 60 + second) / kSecondsPerDay;
  // Before the day zero the day count is negative and the time of day still counts away from zero.
  return Date(days < 0 ? days - time : days + time);
}

Date Date::Now() {
  const std::tm local =
      platform::LocalTime(std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()));
  // A leap second is shown as the second before it.
  return FromCivil(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                   local.tm_sec > 59 ? 59 : local.tm_sec);
}

Date::Civil Date::ToCivil() const {
  const auto throwOverflow = [] { throw std::overflow_error("date overflow"); };
  if (!(value_ > kFirstDay - 1.0 && value_ < kEndDay)) {
    throwOverflow();
  }
  double days = std::trunc(value_);
  auto seconds = static_cast<std::int32_t>(std::lround(std::abs(value_ - days) * kSecondsPerDay));
  if (seconds == kSecondsPerDay) {
    seconds = 0;
    days += 1.0;
    if (days >= kEndDay) {
      throwOverflow();
    }
  }
  const std::chrono::year_month_day day{kDayZero + std::chrono::days{static_cast<std::int32_t>(days)}};
  return Civil{static_cast<std::int32_t>(day.year()),
               static_cast<std::int32_t>(static_cast<unsigned>(day.month())),
               static_cast<std::int32_t>(static_cast<unsigned>(day.day())),
               seconds / 3600,
               seconds / 60 % 60,
               seconds % 60};
}

}  // namespace VnZEL10cmn
