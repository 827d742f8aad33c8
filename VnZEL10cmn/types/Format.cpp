#include <array>

#include "VnZEL10cmn/types/internal/Format.h"

namespace VnZEL10cmn::internal {

namespace {

constexpr std::array<std::uint64_t, 5> kPowers = {1, 10, 100, 1000, 10000};

std::uint64_t Magnitude(std::int64_t value) {
  return value < 0 ? ~static_cast<std::uint64_t>(value) + 1 : static_cast<std::uint64_t>(value);
}

/// value / 10^places, half up.
std::uint64_t DropDecimals(std::uint64_t value, int places) {
  const std::uint64_t unit = kPowers[static_cast<std::size_t>(places)];
  return value / unit + (value % unit * 2 >= unit && unit > 1 ? 1 : 0);
}

void AppendPadded(std::string& text, std::int32_t value, std::size_t digits) {
  const std::string plain = std::to_string(value);
  text.append(plain.size() < digits ? digits - plain.size() : 0, '0').append(plain);
}

std::string DateAndTime(const Date::Civil& parts, const RegionalSettings& settings) {
  std::string text;
  AppendPadded(text, parts.day, 2);
  text.append(settings.date);
  AppendPadded(text, parts.month, 2);
  text.append(settings.date);
  AppendPadded(text, parts.year, 4);
  text.push_back(' ');
  AppendPadded(text, parts.hour, 2);
  text.append(settings.time);
  AppendPadded(text, parts.minute, 2);
  return text;
}

}  // namespace

std::string FormatNumber(Currency value, NumberPattern pattern, std::string_view decimalSeparator,
                         std::string_view thousandsSeparator) {
  const std::uint64_t rounded = DropDecimals(Magnitude(value.Scaled()), 4 - pattern.maxDecimals);
  const std::uint64_t unit = kPowers[static_cast<std::size_t>(pattern.maxDecimals)];
  const std::string whole = std::to_string(rounded / unit);
  std::string decimals = std::to_string(rounded % unit + unit).substr(1);
  while (decimals.size() > static_cast<std::size_t>(pattern.minDecimals) && decimals.back() == '0') {
    decimals.pop_back();
  }
  std::string text = value.Scaled() < 0 && rounded != 0 ? "-" : "";
  for (std::size_t i = 0; i < whole.size(); ++i) {
    if (pattern.grouped && i > 0 && (whole.size() - i) % 3 == 0) {
      text.append(thousandsSeparator);
    }
    text.push_back(whole[i]);
  }
  if (!decimals.empty()) {
    text.append(decimalSeparator).append(decimals);
  }
  return text;
}

std::string FormatNumber(Currency value, NumberPattern pattern, const RegionalSettings& settings) {
  return FormatNumber(value, pattern, settings.decimal, settings.thousands);
}

std::string FormatHundredfold(Currency value) {
  const std::uint64_t rounded = DropDecimals(Magnitude(value.Scaled()), 2);
  std::string text = value.Scaled() < 0 && rounded != 0 ? "-" : "";
  return text.append(std::to_string(rounded));
}

std::string FormatDateTime(Date value, const RegionalSettings& settings) {
  const Date::Civil parts = value.ToCivil();
  std::string text = DateAndTime(parts, settings);
  text.append(settings.time);
  AppendPadded(text, parts.second, 2);
  return text;
}

std::string FormatDateMinutes(Date value, const RegionalSettings& settings) {
  return DateAndTime(value.ToCivil(), settings);
}

std::string FormatDigitsDate(const Date::Civil& parts) {
  std::string text = FormatDigitsMonth(parts);
  AppendPadded(text, parts.day, 2);
  return text;
}

std::string FormatDigitsMonth(const Date::Civil& parts) {
  std::string text;
  AppendPadded(text, parts.year, 4);
  AppendPadded(text, parts.month, 2);
  return text;
}

std::string FormatDigitsTime(const Date::Civil& parts) {
  std::string text;
  AppendPadded(text, parts.hour, 2);
  AppendPadded(text, parts.minute, 2);
  return text;
}

}  // namespace VnZEL10cmn::internal
