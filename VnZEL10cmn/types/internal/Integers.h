#pragma once

#include <cstdint>

namespace VnZEL10cmn::internal {

/// The number without its sign.
constexpr std::uint64_t Magnitude(std::int64_t value) noexcept {
  return value < 0 ? ~static_cast<std::uint64_t>(value) + 1 : static_cast<std::uint64_t>(value);
}

/// The quotient of two unsigned integers, rounded half to even. The divisor is not 0.
template <class Unsigned>
constexpr Unsigned QuotientHalfToEven(Unsigned dividend, Unsigned divisor) noexcept {
  const Unsigned whole = dividend / divisor;
  const Unsigned rest = dividend % divisor;
  // Compared with what is missing, as twice the rest may have no room.
  const Unsigned missing = divisor - rest;
  const bool up = rest > missing || (rest == missing && whole % 2 == 1);
  return whole + (up ? 1 : 0);
}

}  // namespace VnZEL10cmn::internal
