#include "VnZEL10cmn/types/Date.h"

#include <chrono>
#include <cmath>
#include <ctime>

#include "VnZEL10cmn/platform/internal/LocalTime.h"
#include "VnZEL10cmn/types/RunTimeFaults.h"
#include "VnZEL10cmn/types/internal/Format.h"

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

/// Takes a number of so many digits off the front of `text`.
std::int32_t TakeNumber(std::string_view& text, std::size_t digits) {
  std::int32_t number = 0;
  for (const char digit : text.substr(0, digits)) {
    if (digit < '0' || digit > '9') {
      internal::ThrowTypeMismatch();
    }
    number = number * 10 + (digit - '0');
  }
  if (text.size() < digits) {
    internal::ThrowTypeMismatch();
  }
  text.remove_prefix(digits);
  return number;
}

/// Takes the separator off the front of `text`, and the number of two digits behind it.
std::int32_t TakePart(std::string_view& text, char separator) {
  if (!text.starts_with(separator)) {
    internal::ThrowTypeMismatch();
  }
  text.remove_prefix(1);
  return TakeNumber(text, 2);
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
    internal::ThrowTypeMismatch();
  }
  const double days = static_cast<double>((sys_days{CalendarDay(parts)} - kDayZero).count());
  const double time = static_cast<double>(hour * 3600 + minute * 60 + second) / kSecondsPerDay;
  // Before the day zero the day count is negative and the time of day still counts away from zero.
  return Date(days < 0 ? days - time : days + time);
}

Date Date::FromText(std::string_view text) {
  const std::int32_t year = TakeNumber(text, 4);
  const std::int32_t month = TakePart(text, '-');
  const std::int32_t day = TakePart(text, '-');
  if (text.empty()) {
    return FromCivil(year, month, day);
  }
  const std::int32_t hour = TakePart(text, 'T');
  const std::int32_t minute = TakePart(text, ':');
  const std::int32_t second = text.empty() ? 0 : TakePart(text, ':');
  if (!text.empty()) {
    internal::ThrowTypeMismatch();
  }
  return FromCivil(year, month, day, hour, minute, second);
}

std::string Date::ToText() const { return internal::FormatIso(*this); }

Date Date::Now() {
  const std::tm local =
      platform::LocalTime(std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()));
  // A leap second is shown as the second before it.
  return FromCivil(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                   local.tm_sec > 59 ? 59 : local.tm_sec);
}

Date::Civil Date::ToCivil() const {
  if (!(value_ > kFirstDay - 1.0 && value_ < kEndDay)) {
    internal::ThrowOverflow();
  }
  double days = std::trunc(value_);
  auto seconds = static_cast<std::int32_t>(std::lround(std::abs(value_ - days) * kSecondsPerDay));
  if (seconds == kSecondsPerDay) {
    seconds = 0;
    days += 1.0;
    if (days >= kEndDay) {
      internal::ThrowOverflow();
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
