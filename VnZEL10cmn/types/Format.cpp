#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Integers.h"

namespace VnZEL10cmn::internal {

namespace {

constexpr std::array<std::uint64_t, 5> kPowers = {1, 10, 100, 1000, 10000};

/// value / 10^places, half up.
std::uint64_t DropDecimals(std::uint64_t value, int places) {
  const std::uint64_t unit = kPowers[static_cast<std::size_t>(places)];
  return value / unit + (value % unit * 2 >= unit ? 1 : 0);
}

void AppendPadded(std::string& text, std::int32_t value, std::size_t digits) {
  std::array<char, 12> buffer{};
  const auto* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  const auto length = static_cast<std::size_t>(end - buffer.data());
  text.append(length < digits ? digits - length : 0, '0').append(buffer.data(), length);
}

/// The decimals of a number below 10^`places`, but not the zeros behind the first `least` ones.
std::string_view Decimals(std::uint32_t value, int places, int least, std::array<char, 4>& buffer) {
  for (int place = places; place > 0; --place, value /= 10) {
    buffer[static_cast<std::size_t>(place - 1)] = static_cast<char>('0' + value % 10);
  }
  while (places > least && buffer[static_cast<std::size_t>(places - 1)] == '0') {
    --places;
  }
  return {buffer.data(), static_cast<std::size_t>(places)};
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
  std::array<char, 20> digits{};
  const auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), rounded / unit).ptr;
  const std::string_view whole(digits.data(), static_cast<std::size_t>(end - digits.data()));
  std::string text;
  if (value.Scaled() < 0 && rounded != 0) {
    text.push_back('-');
  }
  std::size_t at = pattern.grouped ? (whole.size() - 1) % 3 + 1 : whole.size();
  text.append(whole.substr(0, at));
  for (; at < whole.size(); at += 3) {
    text.append(thousandsSeparator).append(whole.substr(at, 3));
  }
  std::array<char, 4> buffer{};
  const std::string_view decimals =
      Decimals(static_cast<std::uint32_t>(rounded % unit), pattern.maxDecimals, pattern.minDecimals, buffer);
  if (!decimals.empty()) {
    text.append(decimalSeparator).append(decimals);
  }
  return text;
}

std::string FormatNumber(Currency value, NumberPattern pattern, const RegionalSettings& settings) {
  return FormatNumber(value, pattern, settings.decimal, settings.thousands);
}

std::string_view FormatQuantity(Currency value, std::array<char, 24>& buffer) {
  const std::uint64_t magnitude = Magnitude(value.Scaled());
  char* end = buffer.data();
  if (value < Currency()) {
    *end++ = '-';
  }
  end = std::to_chars(end, buffer.data() + buffer.size(), magnitude / 10000).ptr;
  std::array<char, 4> places{};
  const std::string_view decimals = Decimals(static_cast<std::uint32_t>(magnitude % 10000), 4, 0, places);
  if (!decimals.empty()) {
    *end++ = '.';
    end = std::copy(decimals.begin(), decimals.end(), end);
  }
  return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

std::uint64_t Hundredfold(Currency value) {
  const std::uint64_t magnitude = Magnitude(value.Scaled());
  return magnitude / 100 + (magnitude % 100 >= 50 ? 1 : 0);
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

std::string FormatIso(Date value) {
  const Date::Civil parts = value.ToCivil();
  std::string text;
  AppendPadded(text, parts.year, 4);
  for (const auto& [separator, part] :
       {std::pair{'-', parts.month}, std::pair{'-', parts.day}, std::pair{'T', parts.hour},
        std::pair{':', parts.minute}, std::pair{':', parts.second}}) {
    text.push_back(separator);
    AppendPadded(text, part, 2);
  }
  return text;
}

}  // namespace VnZEL10cmn::internal
