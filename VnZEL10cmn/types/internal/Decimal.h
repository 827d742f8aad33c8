#pragma once

#include <cstdint>
#include <string_view>

#include "VnZEL10cmn/types/Currency.h"
#include "VnZEL10cmn/types/internal/Uint128.h"

namespace VnZEL10cmn::internal {

/// A decimal number of up to 28 digits: a magnitude below 2^96 divided by a power of ten.
class Decimal {
 public:
  explicit Decimal(Currency value) noexcept;
  explicit Decimal(std::int64_t value) noexcept;
  explicit Decimal(std::uint64_t value) noexcept;
  /// 15 significant digits of it; throws std::overflow_error beyond 28 digits before the point and for what
  /// is not a number.
  explicit Decimal(double value);
  /// The same with 7 significant digits.
  explicit Decimal(float value);
  /// A number in the host's regional form: blanks around it, a sign before it, grouping, an exponent. Throws
  /// std::invalid_argument for what is no number, std::overflow_error for what is too large.
  explicit Decimal(std::string_view text);

  /// Rounded half away from zero to so many decimals (0 to 3); throws std::overflow_error.
  Currency RoundedAway(int decimals) const;

  /// Rounded half to even to four decimals; throws std::overflow_error.
  Currency RoundedEven() const;

 private:
  Decimal(double value, int significantDigits);

  /// Digits (dropping those beyond the 28th significant one, rounded) with a decimal exponent.
  void Assign(std::string_view digits, std::int64_t exponent);

  bool negative_ = false;
  int scale_ = 0;  // 0 to 28
  Uint128 magnitude_ = 0;
};

/// 10 to the power 0 to 28.
Uint128 PowerOfTen(int exponent) noexcept;

/// The currency whose scaled magnitude is given; throws std::overflow_error.
Currency CurrencyFromMagnitude(bool negative, Uint128 scaled);

}  // namespace VnZEL10cmn::internal
