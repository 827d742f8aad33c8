#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "VnZEL10cmn/types/Export.h"
#include "VnZEL10cmn/types/RunTimeFaults.h"

namespace VnZEL10cmn {

/// A signed fixed-point number with four decimal places, held as the value times 10,000 in 64 bits.
/// It carries amounts, quantities, VAT rates (in percent) and counters, from -922337203685477.5808 to
/// 922337203685477.5807. Sums, differences and products with an integer are exact; products of two and
/// quotients are rounded half to even at the fourth decimal. What leaves the range throws
/// std::overflow_error, and the value stays as it was. Streams, hash tables and, where the standard library has
/// it, std::format take a Currency as it is.
///
///     const Currency price = Currency::FromText("12.40");       // a kilogram
///     const Currency sum = price * Currency::FromText("1.25");  // 15.50
///     std::cout << sum + 2 * price / 3;                         // 23.7667
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

  /// Reads a number such as "6.90", "-12" or "0.125": exactly, and whatever the regional settings. The text is an
  /// optional minus sign, digits, and optionally a point with digits behind it; zeros in front and at the end count
  /// nothing, and "-0" is 0. Throws std::invalid_argument for any other text: empty, with blanks, a plus sign, a
  /// comma, groups of digits or an exponent, without a digit on either side of the point, or with a fifth decimal
  /// other than zero, as nothing is rounded. Throws std::overflow_error for a number outside the range.
  static Currency FromText(std::string_view text);

  /// Writes the value with two to four decimals: "6.90", "0.125", "-1234567.00". There are as many as the value has,
  /// but at least two, and no groups of digits, whatever the regional settings. FromText gives the value back.
  std::string ToText() const;

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
  /// The product, rounded half to even at the fourth decimal; throws std::overflow_error.
  Currency& operator*=(Currency factor);
  /// Exact product with an integer; throws std::overflow_error.
  template <std::integral Integer>
  Currency& operator*=(Integer factor) {
    return *this = TimesInteger(std::cmp_less(factor, 0), Magnitude(factor));
  }
  /// The quotient by an integer, rounded half to even at the fourth decimal; throws std::overflow_error, also
  /// for a division by zero.
  template <std::integral Integer>
  Currency& operator/=(Integer divisor) {
    return *this = ByInteger(std::cmp_less(divisor, 0), Magnitude(divisor));
  }

  /// Exact sum; throws std::overflow_error.
  friend Currency operator+(Currency left, Currency right) { return left += right; }
  /// Exact difference; throws std::overflow_error.
  friend Currency operator-(Currency left, Currency right) { return left -= right; }
  /// The product, rounded half to even at the fourth decimal; throws std::overflow_error.
  friend Currency operator*(Currency left, Currency right) { return left *= right; }
  /// Exact product with an integer; throws std::overflow_error.
  template <std::integral Integer>
  friend Currency operator*(Currency left, Integer right) {
    return left *= right;
  }
  /// Exact product with an integer; throws std::overflow_error.
  template <std::integral Integer>
  friend Currency operator*(Integer left, Currency right) {
    return right *= left;
  }
  /// The quotient by an integer, rounded half to even at the fourth decimal; throws std::overflow_error, also
  /// for a division by zero.
  template <std::integral Integer>
  friend Currency operator/(Currency left, Integer right) {
    return left /= right;
  }

  /// Numeric order.
  friend constexpr auto operator<=>(Currency left, Currency right) noexcept = default;

  /// Writes ToText(); width, fill and alignment of the stream apply as to any text.
  template <class Traits>
  friend std::basic_ostream<char, Traits>& operator<<(std::basic_ostream<char, Traits>& out, Currency value) {
    return out << value.ToText();
  }

 private:
  template <std::integral Integer>
  static constexpr std::int64_t ScaledFrom(Integer value) {
    constexpr std::int64_t limit = std::numeric_limits<std::int64_t>::max() / 10000;
    if (std::cmp_greater(value, limit) || std::cmp_less(value, -limit)) {
      internal::ThrowOverflow();
    }
    return static_cast<std::int64_t>(value) * 10000;
  }

  template <std::integral Integer>
  static constexpr std::uint64_t Magnitude(Integer value) noexcept {
    static_assert(sizeof(Integer) <= sizeof(std::uint64_t));
    const auto bits = static_cast<std::uint64_t>(value);
    return std::cmp_less(value, 0) ? ~bits + 1 : bits;
  }

  Currency TimesInteger(bool negative, std::uint64_t magnitude) const;
  Currency ByInteger(bool negative, std::uint64_t magnitude) const;

  std::int64_t scaled_ = 0;
};

}  // namespace VnZEL10cmn

namespace std {

/// Equal values have the same hash.
template <>
struct hash<VnZEL10cmn::Currency> {
  /// The hash of the value.
  std::size_t operator()(VnZEL10cmn::Currency value) const noexcept {
    return std::hash<std::int64_t>{}(value.Scaled());
  }
};

}  // namespace std
