#pragma once

#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <utility>

#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// A signed fixed-point number with four decimal places, held as the value times 10,000 in 64 bits.
/// It carries amounts, quantities, VAT rates (in percent) and counters. Sums and differences are exact;
/// what leaves the 64-bit range throws std::overflow_error.
class VNZEL10CMN_API Currency {
 public:
  /// Zero.
  constexpr Currency() noexcept = default;

  /// A whole number. Throws std::overflow_error beyond about 922 trillion.
  template <std::integral Integer>
  constexpr Currency(Integer value) : scaled_(ScaledFrom(value)) {}  // NOLINT(google-explicit-constructor)

  /// The nearest value with four decimals, half to even. Throws std::overflow_error outside the range and
  /// for what is not a number.
  explicit Currency(double value);

  /// The value whose ten-thousandfold is given: FromScaled(12345) is 1.2345.
  static constexpr Currency FromScaled(std::int64_t scaled) noexcept {
    Currency result;
    result.scaled_ = scaled;
    return result;
  }

  /// The value times 10,000.
  constexpr std::int64_t Scaled() const noexcept { return scaled_; }

  /// The value as a binary floating-point number, rounded to the nearest.
  explicit constexpr operator double() const noexcept { return static_cast<double>(scaled_) / 10000.0; }

  /// Exact sum; throws std::overflow_error.
  Currency& operator+=(Currency other);
  /// Exact difference; throws std::overflow_error.
  Currency& operator-=(Currency other);
  /// The value with the other sign; throws std::overflow_error for the smallest value.
  Currency operator-() const;

  /// Exact sum; throws std::overflow_error.
  friend Currency operator+(Currency left, Currency right) { return left += right; }
  /// Exact difference; throws std::overflow_error.
  friend Currency operator-(Currency left, Currency right) { return left -= right; }
  /// Numeric order.
  friend constexpr auto operator<=>(Currency left, Currency right) noexcept = default;

 private:
  template <std::integral Integer>
  static constexpr std::int64_t ScaledFrom(Integer value) {
    constexpr std::int64_t limit = std::numeric_limits<std::int64_t>::max() / 10000;
    if (std::cmp_greater(value, limit) || std::cmp_less(value, -limit)) {
      throw std::overflow_error("currency overflow");
    }
    return static_cast<std::int64_t>(value) * 10000;
  }

  std::int64_t scaled_ = 0;
};

}  // namespace VnZEL10cmn
