#pragma once

#include <compare>
#include <concepts>
#include <cstdint>

namespace VnZEL10cmn::internal {

/// An unsigned integer of 128 bits, for compilers that have none; it wraps around like those that they have.
class PortableUint128 {
 public:
  constexpr PortableUint128() noexcept = default;
  /// A negative value fills the upper half with ones.
  template <std::integral Integer>
  constexpr PortableUint128(Integer value) noexcept
      : high_(value < Integer{} ? ~std::uint64_t{0} : 0), low_(static_cast<std::uint64_t>(value)) {}

  template <std::integral Integer>
  constexpr explicit operator Integer() const noexcept {
    return static_cast<Integer>(low_);
  }

  friend constexpr bool operator==(const PortableUint128&, const PortableUint128&) noexcept = default;
  friend constexpr std::strong_ordering operator<=>(const PortableUint128&,
                                                    const PortableUint128&) noexcept = default;

  friend constexpr PortableUint128 operator+(PortableUint128 a, PortableUint128 b) noexcept {
    PortableUint128 sum;
    sum.low_ = a.low_ + b.low_;
    sum.high_ = a.high_ + b.high_ + (sum.low_ < a.low_ ? 1 : 0);
    return sum;
  }
  friend constexpr PortableUint128 operator-(PortableUint128 a, PortableUint128 b) noexcept {
    PortableUint128 difference;
    difference.low_ = a.low_ - b.low_;
    difference.high_ = a.high_ - b.high_ - (a.low_ < b.low_ ? 1 : 0);
    return difference;
  }
  friend constexpr PortableUint128 operator*(PortableUint128 a, PortableUint128 b) noexcept {
    // The lower halves by their own halves, so that nothing gets lost; of the rest only the lower part counts.
    constexpr std::uint64_t kHalf = 0xFFFFFFFF;
    const std::uint64_t low = (a.low_ & kHalf) * (b.low_ & kHalf);
    const std::uint64_t middle = (a.low_ >> 32) * (b.low_ & kHalf) + (low >> 32);
    const std::uint64_t other = (a.low_ & kHalf) * (b.low_ >> 32) + (middle & kHalf);
    PortableUint128 product;
    product.low_ = other << 32 | (low & kHalf);
    product.high_ = (a.low_ >> 32) * (b.low_ >> 32) + (middle >> 32) + (other >> 32) + a.high_ * b.low_ +
                    a.low_ * b.high_;
    return product;
  }
  /// Shifts by 0 to 127 bits.
  friend constexpr PortableUint128 operator<<(PortableUint128 value, int bits) noexcept {
    PortableUint128 shifted;
    if (bits == 0) return value;
    shifted.high_ = bits < 64 ? value.high_ << bits | value.low_ >> (64 - bits) : value.low_ << (bits - 64);
    shifted.low_ = bits < 64 ? value.low_ << bits : 0;
    return shifted;
  }
  /// The divisor is not 0.
  friend constexpr PortableUint128 operator/(PortableUint128 a, PortableUint128 b) noexcept {
    PortableUint128 quotient;
    PortableUint128 rest;
    for (int bit = 127; bit >= 0; --bit) {
      // Nothing is shifted out: the rest is no more than the bits that were taken.
      rest = rest << 1;
      rest.low_ |= (bit < 64 ? a.low_ >> bit : a.high_ >> (bit - 64)) & 1;
      quotient = quotient << 1;
      if (rest >= b) {
        rest = rest - b;
        quotient.low_ |= 1;
      }
    }
    return quotient;
  }
  friend constexpr PortableUint128 operator%(PortableUint128 a, PortableUint128 b) noexcept {
    return a - a / b * b;
  }

  constexpr PortableUint128& operator*=(PortableUint128 other) noexcept { return *this = *this * other; }
  constexpr PortableUint128& operator++() noexcept { return *this = *this + 1; }

 private:
  std::uint64_t high_ = 0;
  std::uint64_t low_ = 0;
};

#ifdef __SIZEOF_INT128__
__extension__ using Uint128 = unsigned __int128;
#else
using Uint128 = PortableUint128;
#endif

}  // namespace VnZEL10cmn::internal
