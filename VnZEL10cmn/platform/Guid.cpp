#include <array>
#include <string_view>

#include "VnZEL10cmn/platform/internal/Guid.h"

namespace VnZEL10cmn::platform {

namespace {

constexpr std::size_t kTextSize = 36;

bool IsDash(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

constexpr std::uint8_t kNoDigit = 16;

/// The values of the upper-case hexadecimal digits. A table, as nothing can foresee which digit comes next.
constexpr std::array<std::uint8_t, 256> kDigitValues = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(kNoDigit);
  std::uint8_t value = 0;
  for (const char digit : std::string_view("0123456789ABCDEF")) {
    values[static_cast<unsigned char>(digit)] = value++;
  }
  return values;
}();

unsigned DigitValue(char digit) { return kDigitValues[static_cast<unsigned char>(digit)]; }

}  // namespace

std::optional<std::array<std::uint8_t, kGuidSize>> GuidBytes(std::string_view text) {
  if (text.size() != kTextSize) {
    return std::nullopt;
  }
  std::array<std::uint8_t, kGuidSize> bytes{};
  std::size_t at = 0;
  unsigned all = 0;
  for (std::uint8_t& byte : bytes) {
    if (IsDash(at) && text[at++] != '-') {
      return std::nullopt;
    }
    const unsigned high = DigitValue(text[at]);
    const unsigned low = DigitValue(text[at + 1]);
    all |= high | low;
    byte = static_cast<std::uint8_t>(high << 4 | low);
    at += 2;
  }
  if (all >= kNoDigit) {
    return std::nullopt;
  }
  return bytes;
}

std::string GuidText(const NewUuid& uuid) {
  std::string text;
  if (uuid.status == kNoUuid) {
    return text;
  }
  constexpr std::string_view digits = "0123456789ABCDEF";
  text.reserve(kTextSize);
  for (const std::uint8_t byte : uuid.bytes) {
    if (IsDash(text.size())) {
      text.push_back('-');
    }
    text.push_back(digits[byte >> 4]);
    text.push_back(digits[byte & 15]);
  }
  return text;
}

}  // namespace VnZEL10cmn::platform
