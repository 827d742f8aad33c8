#pragma once

#include <compare>
#include <cstdint>

#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// A calendar date-time: days since 30 December 1899 as a double, the fraction being the time of day.
class VNZEL10CMN_API Date {
 public:
  /// The parts of a date-time as a calendar and a clock show them.
  struct Civil {
    std::int32_t year;    ///< 100 to 9999
    std::int32_t month;   ///< 1 to 12
    std::int32_t day;     ///< 1 to 31
    std::int32_t hour;    ///< 0 to 23
    std::int32_t minute;  ///< 0 to 59
    std::int32_t second;  ///< 0 to 59
  };

  /// 30 December 1899, midnight.
  constexpr Date() noexcept = default;

  /// The date with that day count.
  constexpr explicit Date(double value) noexcept : value_(value) {}

  /// The day count.
  constexpr double Value() const noexcept { return value_; }

  /// The date-time with these parts; throws std::invalid_argument when it does not exist (month 13,
  /// 31 February, 24:00) or lies outside the years 100 to 9999.
  static Date FromCivil(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t hour = 0,
                        std::int32_t minute = 0, std::int32_t second = 0);

  /// The present local date and time, in whole seconds.
  static Date Now();

  /// The parts, rounded to the second; throws std::overflow_error outside the years 100 to 9999.
  Civil ToCivil() const;

  /// Whether such a date and time exist within the years 100 to 9999.
  static bool Exists(const Civil& parts) noexcept;

  /// Order of the day counts.
  friend constexpr auto operator<=>(Date left, Date right) noexcept = default;

 private:
  double value_ = 0.0;
};

/// The time that error and message objects hold when none is set: 1 January 1900, midnight.
inline constexpr Date NoTime{2.0};

}  // namespace VnZEL10cmn
