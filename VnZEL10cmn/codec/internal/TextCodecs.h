#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace VnZEL10cmn::internal {

/// Bytes as unbroken Base64 text with "+", "/" and "=".
std::string EncodeBase64(std::span<const std::uint8_t> bytes);

/// Bytes as unbroken Base32 text; `hexAlphabet` selects base32hex.
std::string EncodeBase32(std::span<const std::uint8_t> bytes, bool hexAlphabet);

/// Bytes as upper-case hexadecimal digits.
std::string UpperHex(std::span<const std::uint8_t> bytes);

/// Bytes as lower-case hexadecimal digits.
std::string LowerHex(std::span<const std::uint8_t> bytes);

/// The value of an upper-case hexadecimal digit, or -1.
int HexValue(char16_t digit);

/// Breaks a text of ASCII characters with CR LF after `lineLength` characters each, as long as more than that
/// and one character remain.
std::string BreakLines(std::string_view text, std::size_t lineLength);

}  // namespace VnZEL10cmn::internal
