#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "VnZEL10cmn/platform/internal/Processor.h"

namespace VnZEL10cmn::internal {

using platform::Instructions;
using platform::UsableInstructions;

/// Writes bytes as unbroken Base64 text with "+", "/" and "=" into `text`, which they must not be part of.
void EncodeBase64(std::span<const std::uint8_t> bytes, std::string& text,
                  Instructions usable = UsableInstructions());

/// The same as a new text.
inline std::string EncodeBase64(std::span<const std::uint8_t> bytes) {
  std::string text;
  EncodeBase64(bytes, text);
  return text;
}

/// Decodes whole groups of four Base64 digits ("+", "/", no "=") from the front of a text into `out`, which has room
/// for them, up to the first group that holds anything else. Returns how many characters that were.
std::size_t DecodeBase64Digits(std::string_view text, std::span<std::uint8_t> out,
                               Instructions usable = UsableInstructions());

/// Whether a text consists of ASCII characters above `low` only.
bool AllAbove(std::string_view text, char low, Instructions usable = UsableInstructions());

/// Bytes as unbroken Base32 text; `hexAlphabet` selects base32hex.
std::string EncodeBase32(std::span<const std::uint8_t> bytes, bool hexAlphabet);

/// Writes bytes as upper-case hexadecimal digits into `text`.
void EncodeUpperHex(std::span<const std::uint8_t> bytes, std::string& text,
                    Instructions usable = UsableInstructions());

/// Decodes pairs of hexadecimal digits, in either case, from the front of a text into `out`, which has room for
/// them, up to the first pair that holds anything else. Returns how many characters that were.
std::size_t DecodeHexDigits(std::string_view text, std::span<std::uint8_t> out,
                            Instructions usable = UsableInstructions());

/// Bytes as upper-case hexadecimal digits.
std::string UpperHex(std::span<const std::uint8_t> bytes);

/// Bytes as lower-case hexadecimal digits.
std::string LowerHex(std::span<const std::uint8_t> bytes);

/// The value of an upper-case hexadecimal digit, or -1.
constexpr int HexValue(char16_t digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

/// Writes the first characters of a text into `out`, as many as it holds, in the form that the device takes: without
/// blanks, in small letters, "#" for what is neither letter nor digit; a character of two UTF-16 code units is two.
/// Returns how many they were.
std::size_t DeviceText(std::string_view text, std::span<char> out);

/// Breaks a text of ASCII characters with CR LF after `lineLength` characters each, as long as more than that
/// and one character remain.
std::string BreakLines(std::string_view text, std::size_t lineLength);

}  // namespace VnZEL10cmn::internal
