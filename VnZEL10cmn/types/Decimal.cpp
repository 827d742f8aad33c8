#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "VnZEL10cmn/types/RunTimeFaults.h"
#include "VnZEL10cmn/types/internal/Decimal.h"
#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Integers.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

constexpr int kMaxDigits = 28;
constexpr int kMaxScale = 28;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool TakePrefix(std::string_view& text, std::string_view prefix) {
  if (prefix.empty() || !text.starts_with(prefix)) {
    return false;
  }
  text.remove_prefix(prefix.size());
  return true;
}

bool TakeSign(std::string_view& text) {
  if (TakePrefix(text, "-")) {
    return true;
  }
  TakePrefix(text, "+");
  return false;
}

/// The number behind "E"; beyond any meaning it stays at the limit.
std::int64_t TakeExponent(std::string_view& text) {
  const bool negative = TakeSign(text);
  if (text.empty() || !IsDigit(text[0])) {
    ThrowTypeMismatch();
  }
  constexpr std::int64_t limit = 1000000;
  std::int64_t exponent = 0;
  for (; !text.empty() && IsDigit(text[0]); text.remove_prefix(1)) {
    exponent = std::min(limit, exponent * 10 + (text[0] - '0'));
  }
  return negative ? -exponent : exponent;
}

}  // namespace

Uint128 PowerOfTen(int exponent) noexcept {
  Uint128 power = 1;
  for (int i = 0; i < exponent; ++i) {
    power *= 10;
  }
  return power;
}

Currency CurrencyFromMagnitude(bool negative, Uint128 scaled) {
  const Uint128 limit = static_cast<Uint128>(std::numeric_limits<std::int64_t>::max()) + (negative ? 1 : 0);
  if (scaled > limit) {
    ThrowOverflow();
  }
  const auto bits = static_cast<std::uint64_t>(scaled);
  return Currency::FromScaled(static_cast<std::int64_t>(negative ? ~bits + 1 : bits));
}

Decimal::Decimal(Currency value) noexcept
    : negative_(value.Scaled() < 0), scale_(4), magnitude_(Magnitude(value.Scaled())) {}

Decimal::Decimal(std::int64_t value) noexcept : negative_(value < 0), magnitude_(Magnitude(value)) {}

Decimal::Decimal(std::uint64_t value) noexcept : magnitude_(value) {}

Decimal::Decimal(double value) : Decimal(value, 15) {}

Decimal::Decimal(float value) : Decimal(static_cast<double>(value), 7) {}

Decimal::Decimal(double value, int significantDigits) {
  if (!std::isfinite(value)) {
    ThrowOverflow();
  }
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                                 std::chars_format::scientific, significantDigits - 1)
                       .ptr;
  const std::string_view text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  // d.dddddddddddddde+xx
  const auto decimals = static_cast<std::size_t>(significantDigits - 1);
  std::string digits(text.substr(0, 1));
  digits.append(text.substr(2, decimals));
  std::string_view rest = text.substr(2 + decimals + 1);
  negative_ = value < 0;
  Assign(digits, TakeExponent(rest) - (significantDigits - 1));
}

Decimal::Decimal(std::string_view text) {
  const RegionalSettings settings = CurrentRegionalSettings();
  std::string_view rest = Trim(text);
  negative_ = TakeSign(rest);
  std::string digits;
  std::int64_t exponent = 0;
  bool inDecimals = false;
  while (!rest.empty()) {
    if (IsDigit(rest[0])) {
      digits.push_back(rest[0]);
      exponent -= inDecimals ? 1 : 0;
      rest.remove_prefix(1);
    } else if (!inDecimals && TakePrefix(rest, settings.decimal)) {
      inDecimals = true;
    } else if (inDecimals || digits.empty() || !TakePrefix(rest, settings.thousands)) {
      break;
    }
  }
  if (digits.empty()) {
    ThrowTypeMismatch();
  }
  if (TakePrefix(rest, "E") || TakePrefix(rest, "e")) {
    exponent += TakeExponent(rest);
  }
  if (!rest.empty()) {
    ThrowTypeMismatch();
  }
  Assign(digits, exponent);
}

void Decimal::Assign(std::string_view digits, std::int64_t exponent) {
  const std::size_t first = digits.find_first_not_of('0');
  if (first == std::string_view::npos) {
    return;
  }
  digits.remove_prefix(first);
  // Digits that are kept: at most 28, and none behind the 28th decimal.
  const auto count = static_cast<std::int64_t>(digits.size());
  const std::int64_t kept = std::min({count, std::int64_t{kMaxDigits}, count + exponent + kMaxScale});
  if (kept < 0) {
    return;
  }
  for (const char digit : digits.substr(0, static_cast<std::size_t>(kept))) {
    magnitude_ = magnitude_ * 10 + static_cast<unsigned>(digit - '0');
  }
  if (kept < count && digits[static_cast<std::size_t>(kept)] >= '5') {
    ++magnitude_;
  }
  exponent += count - kept;
  if (exponent > 0) {
    if (kept + exponent > kMaxDigits) {
      ThrowOverflow();
    }
    magnitude_ *= PowerOfTen(static_cast<int>(exponent));
    exponent = 0;
  }
  scale_ = static_cast<int>(-exponent);
}

Currency Decimal::RoundedAway(int decimals) const {
  // Rounding to `decimals` places, then written with four.
  const Uint128 unit = PowerOfTen(scale_);
  const Uint128 shifted = magnitude_ * PowerOfTen(decimals);
  const Uint128 rounded = shifted / unit + (shifted % unit * 2 >= unit ? 1 : 0);
  constexpr Uint128 limit = static_cast<Uint128>(1) << 96;
  if (rounded > limit) {
    ThrowOverflow();
  }
  return CurrencyFromMagnitude(negative_, rounded * PowerOfTen(4 - decimals));
}

Currency Decimal::RoundedEven() const {
  if (scale_ <= 4) {
    return CurrencyFromMagnitude(negative_, magnitude_ * PowerOfTen(4 - scale_));
  }
  return CurrencyFromMagnitude(negative_, QuotientHalfToEven(magnitude_, PowerOfTen(scale_ - 4)));
}

}  // namespace VnZEL10cmn::internal
