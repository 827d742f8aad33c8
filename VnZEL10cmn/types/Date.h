#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// A calendar date-time without a time zone: days since 30 December 1899 as a double, the fraction being the time
/// of day. Before that day the day count is negative, and the time of day counts away from zero: -1.25 is
/// 29 December 1899, 06:00. Streams, hash tables and, where the standard library has it, std::format take a Date as
/// it is.
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

  /// Reads ISO 8601 text: "2026-12-31", "2026-12-31T08:05" or "2026-12-31T08:05:09". Separators and numbers of
  /// digits are as shown; a day alone is its midnight. Throws std::invalid_argument for any other text, such as one
  /// with blanks, a time zone or fractions of a second, and for moments that do not exist: 30 February, 24:00,
  /// years before 100.
  static Date FromText(std::string_view text);

  /// Writes the moment as "2026-12-31T08:05:09", rounded to the second. FromText gives it back. Throws
  /// std::overflow_error outside the years 100 to 9999.
  std::string ToText() const;

  /// The present local date and time, in whole seconds.
  static Date Now();

  /// The parts, rounded to the second; throws std::overflow_error outside the years 100 to 9999.
  Civil ToCivil() const;

  /// Whether such a date and time exist within the years 100 to 9999.
  static bool Exists(const Civil& parts) noexcept;

  /// Order of the day counts.
  friend constexpr auto operator<=>(Date left, Date right) noexcept = default;

  /// Writes ToText(), and throws as that does; width, fill and alignment of the stream apply as to any text.
  template <class Traits>
  friend std::basic_ostream<char, Traits>& operator<<(std::basic_ostream<char, Traits>& out, Date value) {
    return out << value.ToText();
  }

 private:
  double value_ = 0.0;
};

/// The time that error and message objects hold when none is set: 1 January 1900, midnight.
inline constexpr Date NoTime{2.0};

}  // namespace VnZEL10cmn

namespace std {

/// Equal day counts have the same hash.
template <>
struct hash<VnZEL10cmn::Date> {
  /// The hash of the day count.
  std::size_t operator()(VnZEL10cmn::Date value) const noexcept { return std::hash<double>{}(value.Value()); }
};

}  // namespace std
