#include "VnZEL10cmn/types/Currency.h"

#include <cmath>

namespace VnZEL10cmn {

namespace {

[[noreturn]] void ThrowOverflow() { throw std::overflow_error("currency overflow"); }

}  // namespace

Currency::Currency(double value) {
  // Whole numbers and decimals are scaled apart only where the product has no room for both: below that, the
  // product brings decimal ties back to a tie.
  constexpr double exactProducts = 9007199254740992.0;  // 2^53
  const double product = value * 10000.0;
  const double whole = std::abs(product) < exactProducts ? 0.0 : std::trunc(value);
  // 2^63 itself is the first double that no longer fits; the comparison also refuses what is not a number.
  if (!(product >= -9223372036854775808.0 && product < 9223372036854775808.0)) {
    ThrowOverflow();
  }
  *this = FromScaled(static_cast<std::int64_t>(whole) * 10000) +
          FromScaled(static_cast<std::int64_t>(std::nearbyint((value - whole) * 10000.0)));
}

Currency& Currency::operator+=(Currency other) {
  const std::int64_t right = other.scaled_;
  if (right >= 0 ? scaled_ > std::numeric_limits<std::int64_t>::max() - right
                 : scaled_ < std::numeric_limits<std::int64_t>::min() - right) {
    ThrowOverflow();
  }
  scaled_ += right;
  return *this;
}

Currency& Currency::operator-=(Currency other) {
  const std::int64_t right = other.scaled_;
  if (right < 0 ? scaled_ > std::numeric_limits<std::int64_t>::max() + right
                : scaled_ < std::numeric_limits<std::int64_t>::min() + right) {
    ThrowOverflow();
  }
  scaled_ -= right;
  return *this;
}

Currency Currency::operator-() const { return Currency() - *this; }

}  // namespace VnZEL10cmn
