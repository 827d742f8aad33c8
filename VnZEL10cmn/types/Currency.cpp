#include "VnZEL10cmn/types/Currency.h"

#include <cmath>

namespace VnZEL10cmn {

namespace {

[[noreturn]] void ThrowOverflow() { throw std::overflow_error("currency overflow"); }

}  // namespace

Currency::Currency(double value) {
  const double scaled = std::nearbyint(value * 10000.0);
  // 2^63 itself is the first double that no longer fits; the comparison also refuses what is not a number.
  if (!(scaled >= -9223372036854775808.0 && scaled < 9223372036854775808.0)) {
    ThrowOverflow();
  }
  scaled_ = static_cast<std::int64_t>(scaled);
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
