#include "VnZEL10cmn/types/Currency.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include "VnZEL10cmn/types/RunTimeFaults.h"
#include "VnZEL10cmn/types/internal/Decimal.h"
#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Integers.h"

namespace VnZEL10cmn {

namespace {

constexpr std::size_t kDecimals = 4;

/// Takes the digits at the front of `text` away; there has to be one.
std::string_view TakeDigits(std::string_view& text) {
  const std::string_view digits = text.substr(0, text.find_first_not_of("0123456789"));
  if (digits.empty()) {
    internal::ThrowTypeMismatch();
  }
  text.remove_prefix(digits.size());
  return digits;
}

}  // namespace

Currency::Currency(double value) {
  // Whole numbers and decimals are scaled apart only where the product has no room for both: below that, the
  // product brings decimal ties back to a tie.
  constexpr double exactProducts = 9007199254740992.0;  // 2^53
  const double product = value * 10000.0;
  const double whole = std::abs(product) < exactProducts ? 0.0 : std::trunc(value);
  // 2^63 itself is the first double that no longer fits; the comparison also refuses what is not a number.
  if (!(product >= -9223372036854775808.0 && product < 9223372036854775808.0)) {
    internal::ThrowOverflow();
  }
  *this = FromScaled(static_cast<std::int64_t>(whole) * 10000) +
          FromScaled(static_cast<std::int64_t>(std::nearbyint((value - whole) * 10000.0)));
}

Currency& Currency::operator+=(Currency other) {
  const std::int64_t right = other.scaled_;
  if (right >= 0 ? scaled_ > std::numeric_limits<std::int64_t>::max() - right
                 : scaled_ < std::numeric_limits<std::int64_t>::min() - right) {
    internal::ThrowOverflow();
  }
  scaled_ += right;
  return *this;
}

Currency& Currency::operator-=(Currency other) {
  const std::int64_t right = other.scaled_;
  if (right < 0 ? scaled_ > std::numeric_limits<std::int64_t>::max() + right
                : scaled_ < std::numeric_limits<std::int64_t>::min() + right) {
    internal::ThrowOverflow();
  }
  scaled_ -= right;
  return *this;
}

Currency Currency::operator-() const { return Currency() - *this; }

Currency& Currency::operator*=(Currency factor) {
  const bool negative = (scaled_ < 0) != (factor.scaled_ < 0);
  const internal::Uint128 product =
      internal::Uint128{internal::Magnitude(scaled_)} * internal::Magnitude(factor.scaled_);
  const auto rounded = internal::QuotientHalfToEven<internal::Uint128>(product, 10000);
  return *this = internal::CurrencyFromMagnitude(negative, rounded);
}

Currency Currency::TimesInteger(bool negative, std::uint64_t magnitude) const {
  const internal::Uint128 product = internal::Uint128{internal::Magnitude(scaled_)} * magnitude;
  return internal::CurrencyFromMagnitude((scaled_ < 0) != negative, product);
}

Currency Currency::ByInteger(bool negative, std::uint64_t magnitude) const {
  if (magnitude == 0) {
    internal::ThrowOverflow();
  }
  const std::uint64_t rounded = internal::QuotientHalfToEven(internal::Magnitude(scaled_), magnitude);
  return internal::CurrencyFromMagnitude((scaled_ < 0) != negative, rounded);
}

Currency Currency::FromText(std::string_view text) {
  std::string digits;
  if (text.starts_with('-')) {
    digits.push_back('-');
    text.remove_prefix(1);
  }
  digits.append(TakeDigits(text));
  std::string_view decimals;
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    decimals = TakeDigits(text);
  }
  if (!text.empty() || decimals.find_first_not_of('0', kDecimals) != std::string_view::npos) {
    internal::ThrowTypeMismatch();
  }
  decimals = decimals.substr(0, kDecimals);
  digits.append(decimals).append(kDecimals - decimals.size(), '0');
  std::int64_t scaled = 0;
  if (std::from_chars(digits.data(), digits.data() + digits.size(), scaled).ec != std::errc{}) {
    internal::ThrowOverflow();
  }
  return FromScaled(scaled);
}

std::string Currency::ToText() const {
  constexpr internal::NumberPattern twoToFourDecimals{2, kDecimals, false};
  return internal::FormatNumber(*this, twoToFourDecimals, ".");
}

}  // namespace VnZEL10cmn
