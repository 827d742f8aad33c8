#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/types/ByteArray.h"

namespace test {

namespace internal {

inline unsigned HexDigit(char digit) {
  if (digit >= '0' && digit <= '9') {
    return static_cast<unsigned>(digit - '0');
  }
  if (digit >= 'A' && digit <= 'F') {
    return static_cast<unsigned>(digit - 'A') + 10U;
  }
  if (digit >= 'a' && digit <= 'f') {
    return static_cast<unsigned>(digit - 'a') + 10U;
  }
  throw std::invalid_argument("hexadecimal text of a test");
}

inline std::vector<std::uint8_t> HexBytes(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  bool high = true;
  for (const char character : text) {
    if (character == ' ' || character == '\n') {
      continue;
    }
    const unsigned digit = HexDigit(character);
    if (high) {
      bytes.push_back(static_cast<std::uint8_t>(digit << 4U));
    } else {
      bytes.back() = static_cast<std::uint8_t>(bytes.back() | digit);
    }
    high = !high;
  }
  if (!high) {
    throw std::invalid_argument("hexadecimal text of a test");
  }
  return bytes;
}

inline std::string HexText(const std::uint8_t* bytes, std::size_t count) {
  static constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) {
      text += ' ';
    }
    text += digits[bytes[i] >> 4U];
    text += digits[bytes[i] & 15U];
  }
  return text;
}

}  // namespace internal

/// Zero-based array of the bytes written in hexadecimal; blanks and line feeds between digits don't count.
inline VnZEL10cmn::ByteArray FromHex(std::string_view text) {
  const std::vector<std::uint8_t> bytes = internal::HexBytes(text);
  return VnZEL10cmn::ByteArray(std::span<const std::uint8_t>(bytes));
}

/// The same with a lower bound of its own.
inline VnZEL10cmn::ByteArray FromHexAt(std::int32_t lower, std::string_view text) {
  const std::vector<std::uint8_t> bytes = internal::HexBytes(text);
  const auto upper = static_cast<std::int32_t>(lower + static_cast<std::int64_t>(bytes.size()) - 1);
  VnZEL10cmn::ByteArray result = VnZEL10cmn::ByteArray::WithBounds(lower, upper);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    result.data()[i] = bytes[i];
  }
  return result;
}

/// Upper-case hexadecimal digits, bytes separated by one blank: "01 AF".
inline std::string ToHex(const VnZEL10cmn::ByteArray& bytes) {
  return internal::HexText(bytes.data(), bytes.size());
}

/// The same for the bytes of a text.
inline std::string ToHex(std::string_view bytes) {
  return internal::HexText(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace test
