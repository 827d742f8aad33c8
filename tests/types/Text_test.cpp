#include "VnZEL10cmn/types/internal/Text.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using namespace VnZEL10cmn::internal;  // NOLINT(google-build-using-namespace): the whole header is under test

namespace {

std::u16string Units(std::string_view text) {
  std::u16string units;
  ForEachUtf16Unit(text, [&units](char16_t unit) { units.push_back(unit); });
  return units;
}

TEST(Utf8, IsReadAsUtf16) {
  EXPECT_EQ(Units(""), u"");
  EXPECT_EQ(Units("aä€"), u"aä€");
  EXPECT_EQ(Units("😀"), (std::u16string{0xD83D, 0xDE00}));
  EXPECT_EQ(Units("\U00010000\U0010FFFF"), (std::u16string{0xD800, 0xDC00, 0xDBFF, 0xDFFF}));
  EXPECT_EQ(Units("\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF"),
            (std::u16string{0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xE000, 0xFFFF}));
  EXPECT_EQ(Units(std::string_view("a\0b", 3)), (std::u16string{'a', 0, 'b'}));
}

TEST(Utf8, EveryIllFormedSequenceIsOneReplacementCharacter) {
  const std::u16string bad(1, 0xFFFD);
  EXPECT_EQ(Units("\x80"), bad);
  EXPECT_EQ(Units("\xFF"), bad);
  EXPECT_EQ(Units("\xC3"), bad);
  EXPECT_EQ(Units("\xE2\x82"), bad);
  EXPECT_EQ(Units("\xF0\x9F\x98"), bad);
  EXPECT_EQ(Units("\xC3z"), bad + u"z");
  EXPECT_EQ(Units("\xE2\x82z"), bad + u"z");
  EXPECT_EQ(Units("\xE2z"), bad + u"z");
  EXPECT_EQ(Units("\xFFz"), bad + u"z");
  EXPECT_EQ(Units("\xC3\xC3\xA4"), bad + u"ä");
}

TEST(Utf8, OverlongFormsSurrogatesAndValuesBeyondTheLastCharacterAreIllFormed) {
  for (const char* text :
       {"\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
        "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"}) {
    const std::u16string units = Units(text);
    EXPECT_FALSE(units.empty());
    for (const char16_t unit : units) {
      EXPECT_EQ(unit, 0xFFFD) << text;
    }
  }
}

TEST(Utf8, LengthsAndCutsCountUtf16CodeUnits) {
  EXPECT_EQ(Utf16Length("aä€😀"), 5U);
  EXPECT_EQ(Utf16Left("aä€b", 3), "aä€");
  EXPECT_EQ(Utf16Left("aä", 9), "aä");
  EXPECT_EQ(Utf16Left("aä", 0), "");
  EXPECT_EQ(Utf16Left("😀b", 2), "😀");
  EXPECT_EQ(Utf16Left("a😀b", 2), "a\uFFFD");
  EXPECT_EQ(Utf16Right("aä€b", 2), "€b");
  EXPECT_EQ(Utf16Right("aä", 9), "aä");
  EXPECT_EQ(Utf16Right("a😀", 2), "😀");
  EXPECT_EQ(Utf16Right("😀b", 2), "\uFFFDb");
}

TEST(Padding, FillsAndCutsToUtf16CodeUnits) {
  EXPECT_EQ(PadRight("äb", 4), "äb  ");
  EXPECT_EQ(PadRight("äbcde", 4), "äbcd");
  EXPECT_EQ(PadRight("", 2), "  ");
  EXPECT_EQ(PadLeft("ä", 3), "  ä");
  EXPECT_EQ(PadLeft("äbcd", 3), "äbcd");
}

TEST(Trim, TakesBlanksOnly) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Trim(""), "");
  EXPECT_EQ(Trim(" \ta\r\n "), "\ta\r\n");
}

TEST(Upper, NeverChangesTheLength) {
  EXPECT_EQ(Upper("azäöüéÿœšž"), "AZÄÖÜÉŸŒŠŽ");
  EXPECT_EQ(Upper("AZ09ß÷µ×€[`{"), "AZ09ß÷µ×€[`{");
}

TEST(CodePage1252, KnowsEveryByte) {
  EXPECT_EQ(ToCodePage1252("€"), "\x80");
  EXPECT_EQ(ToCodePage1252("™"), "\x99");
  EXPECT_EQ(ToCodePage1252("äÿ\u00A0"), "\xE4\xFF\xA0");
  EXPECT_EQ(ToCodePage1252("Ł\u2212"), "??");
  for (unsigned byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(ToCodePage1252(FromCodePage1252(static_cast<std::uint8_t>(byte))), byte);
  }
  EXPECT_EQ(FromCodePage1252(0x80), 0x20AC);
  EXPECT_EQ(FromCodePage1252(0x9F), 0x0178);
  EXPECT_EQ(FromCodePage1252(0xA0), 0x00A0);
}

TEST(Compose, JoinsTextsAndNumbers) {
  EXPECT_EQ(Compose("a", std::string("b"), 7, -1, std::uint8_t{200}, kCrLf), "ab7-1200\r\n");
  EXPECT_EQ(HexDigits(0x0A), "0A");
  EXPECT_EQ(HexDigits(0xFF), "FF");
}

TEST(TextProperties, Utf16IsWrittenBackAsTheSameUtf8) {
  EXPECT_TRUE(rc::check("characters come back", [] {
    const auto characters = *rc::gen::container<std::vector<std::uint32_t>>(rc::gen::oneOf(
        rc::gen::inRange<std::uint32_t>(0, 0xD800), rc::gen::inRange<std::uint32_t>(0xE000, 0x110000)));
    std::string text;
    for (const std::uint32_t character : characters) {
      AppendUtf8(text, character);
    }
    std::string_view rest = text;
    for (const std::uint32_t character : characters) {
      RC_ASSERT(NextCharacter(rest) == character);
    }
    RC_ASSERT(rest.empty());
  }));
}

TEST(SplitLines, TakesNoMoreMemoryThanTheLinesThemselves) {
  const std::vector<std::string> lines =
      SplitLines(std::string(1000, '\n') + std::string(100, 'a') + "\r\nb\rc");
  ASSERT_EQ(lines.size(), 1003U);
  EXPECT_EQ(lines.capacity(), lines.size());
  EXPECT_EQ(lines[1000], std::string(100, 'a'));
  EXPECT_EQ(lines[1000].capacity(), 100U);
}

TEST(TextProperties, AnyBytesAreReadToTheirEnd) {
  EXPECT_TRUE(rc::check("random bytes", [](const std::vector<std::uint8_t>& bytes, std::size_t units) {
    const std::string text(bytes.begin(), bytes.end());
    const std::size_t length = Utf16Length(text);
    RC_ASSERT(length <= text.size());
    RC_ASSERT(Units(text).size() == length);
    const std::size_t cut = units % (length + 2);
    const std::size_t expected = cut < length ? cut : length;
    RC_ASSERT(Utf16Length(Utf16Left(text, cut)) == expected);
    RC_ASSERT(Utf16Length(Utf16Right(text, cut)) == expected);
    RC_ASSERT(Utf16Length(PadRight(text, cut)) == cut);
    RC_ASSERT(Utf16Length(Upper(text)) == length);
    RC_ASSERT(ToCodePage1252(text).size() == length);
  }));
}

}  // namespace
