#include <algorithm>
#include <array>
#include <cstring>

#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// The characters of the bytes 80 to 9F; the rest of the code page is Latin-1. The five bytes without a
// character keep their own code.
constexpr std::array<char16_t, 32> kHighCharacters = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// Number of bytes of the UTF-8 sequence that a lead byte beyond ASCII opens, 0 for a byte that opens none.
std::size_t SequenceLength(unsigned char lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

/// The range of the second byte, narrower after some lead bytes (no overlong forms, surrogates, or characters
/// beyond the last one).
bool IsSecondByte(unsigned char lead, unsigned char second) {
  const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  return second >= low && second <= high;
}

}  // namespace

char32_t NextCharacterBeyondAscii(std::string_view& rest) {
  const auto byteAt = [&rest](std::size_t index) { return static_cast<unsigned char>(rest[index]); };
  const unsigned char lead = byteAt(0);
  const std::size_t length = SequenceLength(lead);
  std::size_t read = 1;
  char32_t character = length == 0 ? kReplacement : lead & (0x7FU >> length);
  while (read < length && read < rest.size() &&
         (read == 1 ? IsSecondByte(lead, byteAt(1)) : (byteAt(read) & 0xC0) == 0x80)) {
    character = (character << 6) | (byteAt(read) & 0x3F);
    ++read;
  }
  rest.remove_prefix(read);
  return read == length ? character : kReplacement;
}

void AppendUtf8(std::string& text, char32_t character) {
  if (character >= 0xD800 && character <= 0xDFFF) {
    character = kReplacement;
  }
  const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0 | (character >> 6));
    append(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    append(0xE0 | (character >> 12));
    append(0x80 | ((character >> 6) & 0x3F));
    append(0x80 | (character & 0x3F));
  } else {
    append(0xF0 | (character >> 18));
    append(0x80 | ((character >> 12) & 0x3F));
    append(0x80 | ((character >> 6) & 0x3F));
    append(0x80 | (character & 0x3F));
  }
}

bool IsAscii(std::string_view text) {
  constexpr std::uint64_t beyondAscii = 0x8080808080808080;
  std::uint64_t all = 0;
  while (text.size() >= sizeof all) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data(), sizeof word);
    all |= word;
    text.remove_prefix(sizeof word);
  }
  for (const char c : text) {
    all |= static_cast<unsigned char>(c);
  }
  return (all & beyondAscii) == 0;
}

std::size_t Utf16Length(std::string_view text) {
  std::size_t length = 0;
  ForEachUtf16Unit(text, [&length](char16_t) { ++length; });
  return length;
}

std::string Utf16Left(std::string_view text, std::size_t units) {
  std::string result;
  while (units > 0 && !text.empty()) {
    const char32_t character = NextCharacter(text);
    if (character >= 0x10000 && units == 1) {
      AppendUtf8(result, kReplacement);
      break;
    }
    AppendUtf8(result, character);
    units -= character >= 0x10000 ? 2 : 1;
  }
  return result;
}

std::string Utf16Right(std::string_view text, std::size_t units) {
  const std::size_t length = Utf16Length(text);
  std::size_t skip = length > units ? length - units : 0;
  std::string result;
  while (!text.empty()) {
    const char32_t character = NextCharacter(text);
    const std::size_t size = character >= 0x10000 ? 2 : 1;
    if (skip >= size) {
      skip -= size;
    } else {
      AppendUtf8(result, skip == 0 ? character : kReplacement);
      skip = 0;
    }
  }
  return result;
}

std::string PadRight(std::string_view text, std::size_t units) {
  std::string result = Utf16Left(text, units);
  result.append(units - Utf16Length(result), ' ');
  return result;
}

std::string PadLeft(std::string_view text, std::size_t units) {
  const std::size_t length = Utf16Length(text);
  std::string result(length < units ? units - length : 0, ' ');
  result.append(text);
  return result;
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string Upper(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const char32_t c = NextCharacter(text);
    const bool latin = (c >= 'a' && c <= 'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7);
    const bool extended = c == 0x153 || c == 0x161 || c == 0x17E;
    AppendUtf8(result, latin ? c - 0x20 : extended ? c - 1 : c == 0xFF ? char32_t{0x178} : c);
  }
  return result;
}

std::vector<std::string> SplitLines(std::string_view text) {
  text = text.substr(0, text.find_last_not_of('\0') + 1);
  // A NUL counts as a line feed, also behind a carriage return.
  const auto isFeed = [text](std::size_t at) {
    return at < text.size() && (text[at] == '\n' || text[at] == '\0');
  };
  const auto isEnd = [&](std::size_t at) { return isFeed(at) || (text[at] == '\r' && !isFeed(at + 1)); };
  std::size_t ends = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    ends += isEnd(at) ? 1 : 0;
  }
  std::vector<std::string> lines;
  lines.reserve(ends + 1);
  std::size_t start = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (isEnd(at)) {
      const bool isPair = isFeed(at) && at > start && text[at - 1] == '\r';
      lines.emplace_back(text.substr(start, at - start - (isPair ? 1 : 0)));
      start = at + 1;
    }
  }
  lines.emplace_back(text.substr(start));
  return lines;
}

std::uint8_t ToCodePage1252(char16_t unit) {
  if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) {
    return static_cast<std::uint8_t>(unit);
  }
  const auto* found = std::find(kHighCharacters.begin(), kHighCharacters.end(), unit);
  return found == kHighCharacters.end() ? static_cast<std::uint8_t>('?')
                                        : static_cast<std::uint8_t>(0x80 + (found - kHighCharacters.begin()));
}

char16_t FromCodePage1252(std::uint8_t byte) {
  return byte >= 0x80 && byte <= 0x9F ? kHighCharacters[byte - 0x80U] : static_cast<char16_t>(byte);
}

std::string ToCodePage1252(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  ForEachUtf16Unit(text,
                   [&result](char16_t unit) { result.push_back(static_cast<char>(ToCodePage1252(unit))); });
  return result;
}

std::string HexDigits(std::uint8_t byte) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  return {digits[byte >> 4], digits[byte & 15]};
}

}  // namespace VnZEL10cmn::internal
