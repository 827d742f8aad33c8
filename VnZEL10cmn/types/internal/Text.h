#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace VnZEL10cmn::internal {

inline constexpr std::string_view kCrLf = "\r\n";

/// The same for a text that begins with a byte beyond ASCII.
char32_t NextCharacterBeyondAscii(std::string_view& rest);

/// Takes the next character off the front of a UTF-8 text; an ill-formed sequence counts as one U+FFFD.
inline char32_t NextCharacter(std::string_view& rest) {
  const auto first = static_cast<unsigned char>(rest[0]);
  if (first >= 0x80) return NextCharacterBeyondAscii(rest);
  rest.remove_prefix(1);
  return first;
}

/// Appends a character as UTF-8; half of a surrogate pair as U+FFFD.
void AppendUtf8(std::string& text, char32_t character);

/// Whether all characters are below 80.
bool IsAscii(std::string_view text);

/// Calls `visit` with every UTF-16 code unit of a UTF-8 text.
template <class Visit>
void ForEachUtf16Unit(std::string_view text, Visit&& visit) {
  while (!text.empty()) {
    const char32_t character = NextCharacter(text);
    if (character < 0x10000) {
      visit(static_cast<char16_t>(character));
    } else {
      visit(static_cast<char16_t>(0xD7C0 + (character >> 10)));
      visit(static_cast<char16_t>(0xDC00 + (character & 0x3FF)));
    }
  }
}

/// Number of UTF-16 code units.
std::size_t Utf16Length(std::string_view text);

/// The first `units` UTF-16 code units.
std::string Utf16Left(std::string_view text, std::size_t units);

/// The last `units` UTF-16 code units.
std::string Utf16Right(std::string_view text, std::size_t units);

/// Cut or filled with blanks on the right to exactly `units` UTF-16 code units.
std::string PadRight(std::string_view text, std::size_t units);

/// Filled with blanks on the left to at least `units` UTF-16 code units.
std::string PadLeft(std::string_view text, std::size_t units);

/// Without leading and trailing blanks (U+0020 only).
std::string_view Trim(std::string_view text);

/// The letters of code page 1252 in upper case, everything else as it is; the number of UTF-16 code units
/// never changes.
std::string Upper(std::string_view text);

/// Lines separated by CR LF, CR, LF or NUL; trailing NULs are dropped first. At least one line.
std::vector<std::string> SplitLines(std::string_view text);

/// The code page 1252 byte of a UTF-16 code unit, "?" when it has none.
std::uint8_t ToCodePage1252(char16_t unit);

/// The character of a code page 1252 byte.
char16_t FromCodePage1252(std::uint8_t byte);

/// A UTF-8 text in code page 1252, one byte per UTF-16 code unit.
std::string ToCodePage1252(std::string_view text);

/// A byte as two upper-case hexadecimal digits.
std::string HexDigits(std::uint8_t byte);

namespace detail {

template <std::integral Integer>
std::string TextOf(Integer value) {
  return std::to_string(value);
}
inline std::string_view TextOf(std::string_view text) { return text; }

}  // namespace detail

/// Joins texts and whole numbers (in decimal).
template <class... Pieces>
std::string Compose(const Pieces&... pieces) {
  std::string result;
  (result.append(detail::TextOf(pieces)), ...);
  return result;
}

}  // namespace VnZEL10cmn::internal
