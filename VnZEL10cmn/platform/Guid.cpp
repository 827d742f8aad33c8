#include <string_view>

#include "VnZEL10cmn/platform/internal/Guid.h"

namespace VnZEL10cmn::platform {

namespace {

constexpr std::size_t kTextSize = 36;

bool IsDash(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

/// The value of an upper-case hexadecimal digit; 16 for any other character.
unsigned DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
  if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A') + 10;
  return 16;
}

}  // namespace

std::optional<std::array<std::uint8_t, kGuidSize>> GuidBytes(std::string_view text) {
  if (text.size() != kTextSize) {
    return std::nullopt;
  }
  std::array<std::uint8_t, kGuidSize> bytes{};
  std::size_t at = 0;
  for (std::uint8_t& byte : bytes) {
    if (IsDash(at) && text[at++] != '-') {
      return std::nullopt;
    }
    const unsigned high = DigitValue(text[at]);
    const unsigned low = DigitValue(text[at + 1]);
    if (high > 15 || low > 15) {
      return std::nullopt;
    }
    byte = static_cast<std::uint8_t>(high << 4 | low);
    at += 2;
  }
  return bytes;
}

std::string GuidText(const NewUuid& uuid) {
  std::string text;
  if (uuid.status == kNoNetworkAddress) {
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
