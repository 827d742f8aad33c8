#include "tools/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace zel {

using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;

namespace {

constexpr int kCurrencyDecimals = 4;

std::string_view Trimmed(std::string_view text, std::string_view characters) {
  const std::size_t first = text.find_first_not_of(characters);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

/// Takes the digits at the front of `text` away.
std::string_view TakeDigits(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
  const std::string_view digits = text.substr(0, end);
  text.remove_prefix(end);
  return digits;
}

bool TakeOne(std::string_view& text, char character) {
  if (text.empty() || text.front() != character) return false;
  text.remove_prefix(1);
  return true;
}

/// The exponent at the front of `text`; far more than a currency can take counts as just that.
std::optional<int> TakeExponent(std::string_view& text) {
  constexpr std::size_t kManyDigits = 4;
  constexpr int kFarAway = 9999;
  if (!TakeOne(text, 'e') && !TakeOne(text, 'E')) return 0;
  const bool negative = TakeOne(text, '-');
  if (!negative) TakeOne(text, '+');
  std::string_view digits = TakeDigits(text);
  if (digits.empty()) return std::nullopt;
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  int exponent = 0;
  if (digits.size() > kManyDigits) {
    exponent = kFarAway;
  } else {
    std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
  }
  return negative ? -exponent : exponent;
}

std::string FormatCivil(Date date, const char* format) {
  const Date::Civil parts = date.ToCivil();
  std::array<char, 80> text{};
  const int length = std::snprintf(text.data(), text.size(), format, parts.year, parts.month, parts.day,
                                   parts.hour, parts.minute);
  return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace

Character FirstCharacter(std::string_view text) {
  const auto at = [text](std::size_t place) {
    return place < text.size() ? static_cast<unsigned char>(text[place]) : 0U;
  };
  const unsigned first = at(0);
  if (first < 0x80) return {text.substr(0, 1), true};
  if (first < 0xC2 || first > 0xF4) return {text.substr(0, 1), false};
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  // The second byte tells overlong forms, halves of surrogate pairs, and what lies beyond the last character.
  const unsigned least = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
  const unsigned most = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
  std::size_t fitting = 1;
  while (fitting < length && at(fitting) >= (fitting == 1 ? least : 0x80) &&
         at(fitting) <= (fitting == 1 ? most : 0xBF)) {
    ++fitting;
  }
  return {text.substr(0, fitting), fitting == length};
}

std::string_view Beginning(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0U) == 0x80) {
    --most;
  }
  return text.substr(0, most);
}

bool IsControl(std::string_view character) {
  const auto first = static_cast<unsigned char>(character.front());
  return character.size() == 1 ? first < 0x20 || first == 0x7F
                               : first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
}

std::string OneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  while (!text.empty()) {
    const auto [bytes, isWellFormed] = FirstCharacter(text);
    line += isWellFormed && !IsControl(bytes) ? bytes : "?";
    text.remove_prefix(bytes.size());
  }
  return line;
}

std::string Lines(std::string_view text) {
  std::string lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines += OneLine(text.substr(0, end));
    text.remove_prefix(end);
    if (!text.empty()) {
      lines += '\n';
      text.remove_prefix(1);
    }
  }
  return lines;
}

std::string Shown(std::string_view value) {
  constexpr std::size_t kMost = 200;
  return value.size() <= kMost ? OneLine(value) : OneLine(Beginning(value, kMost)) + "...";
}

std::string Quoted(const std::filesystem::path& path) {
  constexpr std::size_t kMost = 1024;
  constexpr std::size_t kBeginning = 200;
  constexpr std::size_t kEnd = 800;
  const std::string& name = path.native();
  if (name.size() <= kMost) return "'" + OneLine(name) + "'";
  const std::size_t end = Beginning(name, name.size() - kEnd).size();
  return "'" + OneLine(Beginning(name, kBeginning)) + "..." + OneLine(std::string_view(name).substr(end)) +
         "'";
}

std::string LibraryMessage(std::string_view message) {
  std::string text;
  std::string details;
  while (!message.empty()) {
    const std::size_t end = std::min(message.find_first_of("\r\n"), message.size());
    std::string_view line = Trimmed(message.substr(0, end), " ");
    message.remove_prefix(std::min(end + 1, message.size()));
    if (line.empty()) continue;
    const std::size_t dots = line.find(" .");
    const std::size_t colon = dots == std::string_view::npos ? dots : line.find(':', dots);
    if (colon == std::string_view::npos) {
      text += (text.empty() ? "" : " ") + std::string(line);
      continue;
    }
    details += (details.empty() ? "" : ", ") + std::string(line.substr(0, dots)) + ": " +
               std::string(Trimmed(line.substr(colon + 1), " "));
  }
  if (!details.empty()) {
    text += (text.empty() ? "(" : " (") + details + ")";
  }
  return OneLine(text);
}

std::string Describe(const VnZEL10cmn::clsVnError& error) {
  return LibraryMessage(error.ErrorMsg()) + " [" + std::to_string(error.ErrorNr()) + "]";
}

std::optional<Currency> ParseDecimal(std::string_view text, int maxDecimals, bool exponent) {
  const bool negative = TakeOne(text, '-');
  std::string digits(TakeDigits(text));
  if (digits.empty()) return std::nullopt;
  int decimals = 0;
  if (TakeOne(text, '.')) {
    const std::string_view fraction = TakeDigits(text);
    constexpr std::size_t kTooLong = 1000;
    if (fraction.empty() || fraction.size() > kTooLong) return std::nullopt;
    digits += fraction;
    decimals = static_cast<int>(fraction.size());
  }
  if (exponent) {
    const std::optional<int> shift = TakeExponent(text);
    if (!shift) return std::nullopt;
    decimals -= *shift;
  }
  if (!text.empty()) return std::nullopt;

  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
  if (digits.empty()) return Currency{};
  while (digits.back() == '0') {
    digits.pop_back();
    --decimals;
  }
  constexpr std::size_t kMaxDigits = 19;
  const int zeros = kCurrencyDecimals - decimals;
  if (decimals > maxDecimals || zeros > static_cast<int>(kMaxDigits)) return std::nullopt;
  digits.append(static_cast<std::size_t>(zeros), '0');
  if (negative) digits.insert(digits.begin(), '-');
  std::int64_t scaled = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), scaled);
  if (error != std::errc{} || end != digits.data() + digits.size()) return std::nullopt;
  return Currency::FromScaled(scaled);
}

std::string FormatDecimal(Currency value, int minDecimals) {
  std::string digits = std::to_string(value.Scaled());
  const bool negative = digits.front() == '-';
  if (negative) digits.erase(0, 1);
  if (digits.size() <= kCurrencyDecimals) {
    digits.insert(0, kCurrencyDecimals + 1 - digits.size(), '0');
  }
  int decimals = kCurrencyDecimals;
  while (decimals > minDecimals && digits.back() == '0') {
    digits.pop_back();
    --decimals;
  }
  if (decimals > 0) {
    digits.insert(digits.size() - static_cast<std::size_t>(decimals), ".");
  }
  return (negative ? "-" : "") + digits;
}

std::string FormatDate(Date date) { return FormatCivil(date, "%04d-%02d-%02d"); }

std::string FormatDateTime(Date date) { return FormatCivil(date, "%04d-%02d-%02dT%02d:%02d"); }

std::string Hex(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const std::uint8_t byte : bytes) {
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0xFU];
  }
  return text;
}

std::string PadLeft(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string PadRight(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

std::string LifeCycleName(VnZEL10cmn::ZelLifeCycle state) {
  using VnZEL10cmn::ZelLifeCycle;
  switch (state) {
    case ZelLifeCycle::Initialized: return "initialized";
    case ZelLifeCycle::Personalized: return "personalized";
    case ZelLifeCycle::Activated: return "activated";
    case ZelLifeCycle::Deactivated: return "deactivated";
    default: return "undefined";
  }
}

std::string UnixLines(std::string_view text) {
  std::string lines;
  lines.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n') lines += text[i];
  }
  return lines;
}

}  // namespace zel
