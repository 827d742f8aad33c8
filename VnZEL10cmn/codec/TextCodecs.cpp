#include "VnZEL10cmn/codec/internal/TextCodecs.h"

#include <cstddef>

#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kBase32Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567";
constexpr std::string_view kBase32HexDigits = "0123456789ABCDEFGHIJKLMNOPQRSTUV";

std::string Hex(std::span<const std::uint8_t> bytes, std::string_view digits) {
  std::string text(bytes.size() * 2, '\0');
  char* out = text.data();
  for (const std::uint8_t byte : bytes) {
    *out++ = digits[byte >> 4];
    *out++ = digits[byte & 15];
  }
  return text;
}

}  // namespace

std::string EncodeBase64(std::span<const std::uint8_t> bytes) {
  std::string text((bytes.size() + 2) / 3 * 4, '=');
  char* out = text.data();
  const std::size_t whole = bytes.size() / 3 * 3;
  for (std::size_t i = 0; i < whole; i += 3) {
    const unsigned group = static_cast<unsigned>(bytes[i] << 16 | bytes[i + 1] << 8 | bytes[i + 2]);
    *out++ = kBase64Digits[group >> 18];
    *out++ = kBase64Digits[(group >> 12) & 63];
    *out++ = kBase64Digits[(group >> 6) & 63];
    *out++ = kBase64Digits[group & 63];
  }
  if (bytes.size() > whole) {
    const unsigned second = bytes.size() - whole == 2 ? bytes[whole + 1] : 0U;
    const unsigned group = static_cast<unsigned>(bytes[whole] << 16) | second << 8;
    *out++ = kBase64Digits[group >> 18];
    *out++ = kBase64Digits[(group >> 12) & 63];
    if (bytes.size() - whole == 2) {
      *out++ = kBase64Digits[(group >> 6) & 63];
    }
  }
  return text;
}

std::string EncodeBase32(std::span<const std::uint8_t> bytes, bool hexAlphabet) {
  const std::string_view digits = hexAlphabet ? kBase32HexDigits : kBase32Digits;
  std::string text((bytes.size() + 4) / 5 * 8, '=');
  char* out = text.data();
  unsigned pending = 0;
  int pendingBits = 0;
  for (const std::uint8_t byte : bytes) {
    pending = (pending << 8) | byte;
    pendingBits += 8;
    while (pendingBits >= 5) {
      pendingBits -= 5;
      *out++ = digits[(pending >> pendingBits) & 31];
    }
    pending &= 31;
  }
  if (pendingBits > 0) {
    *out = digits[(pending << (5 - pendingBits)) & 31];
  }
  return text;
}

std::string UpperHex(std::span<const std::uint8_t> bytes) { return Hex(bytes, "0123456789ABCDEF"); }

std::string LowerHex(std::span<const std::uint8_t> bytes) { return Hex(bytes, "0123456789abcdef"); }

int HexValue(char16_t digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

std::string BreakLines(std::string_view text, std::size_t lineLength) {
  std::string broken;
  broken.reserve(text.size() + text.size() / lineLength * 2);
  std::size_t at = 0;
  while (text.size() - at > lineLength + 1) {
    broken.append(text.substr(at, lineLength)).append(kCrLf);
    at += lineLength;
  }
  return broken.append(text.substr(at));
}

}  // namespace VnZEL10cmn::internal
