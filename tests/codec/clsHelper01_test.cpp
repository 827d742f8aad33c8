#include "VnZEL10cmn/codec/clsHelper01.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/platform/internal/Guid.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"

using test::ExpectNoError;
using test::FromHex;
using test::FromHexAt;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::Currency;

namespace {

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();

using Lines = std::vector<std::string>;

Lines Split(std::string_view text) {
  clsHelper01 helper;
  Lines lines{"before"};
  EXPECT_TRUE(helper.GetLinesOfString(text, lines));
  ExpectNoError(helper);
  return lines;
}

/// Leaves an error in the object, to see whether a call touches it.
void Fail(clsHelper01& helper) {
  ByteArray result;
  EXPECT_FALSE(helper.FromBase64String("QQ", result));
}

TEST(CreateGUID, GivesUpperCaseWithoutBraces) {
  clsHelper01 helper;
  for (int round = 0; round < 100; ++round) {
    const std::string guid = helper.CreateGUID();
    ASSERT_EQ(guid.size(), 36U);
    for (std::size_t i = 0; i < guid.size(); ++i) {
      const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
      const std::string_view allowed = dash ? "-" : "0123456789ABCDEF";
      ASSERT_NE(allowed.find(guid[i]), std::string_view::npos) << guid;
    }
  }
}

TEST(CreateGUID, GivesANewOneEachTime) {
  clsHelper01 helper;
  std::set<std::string> seen;
  for (int round = 0; round < 2000; ++round) {
    seen.insert(helper.CreateGUID());
  }
  EXPECT_EQ(seen.size(), 2000U);
}

TEST(CreateGUID, IsEmptyOnASystemWithoutANetworkAddress) {
  VnZEL10cmn::platform::NewUuid uuid;
  uuid.bytes = {0x0F, 0x0E, 0x0D, 0x0C, 0x0B, 0x0A, 0x09, 0x08,
                0xF7, 0xE6, 0xD5, 0xC4, 0xB3, 0xA2, 0x91, 0x80};
  EXPECT_EQ(VnZEL10cmn::platform::GuidText(uuid), "0F0E0D0C-0B0A-0908-F7E6-D5C4B3A29180");
  uuid.status = 1739;
  EXPECT_EQ(VnZEL10cmn::platform::GuidText(uuid), "");
  uuid.status = 1824;  // unique on this machine only
  EXPECT_EQ(VnZEL10cmn::platform::GuidText(uuid), "0F0E0D0C-0B0A-0908-F7E6-D5C4B3A29180");
}

TEST(ZEL_CharReplace, MakesATextSafeForTheDevice) {
  clsHelper01 helper;
  EXPECT_EQ(helper.ZEL_CharReplace("Müller GmbH & Co.", 8), "m#llergm");
  EXPECT_EQ(helper.ZEL_CharReplace("Müller GmbH & Co.", 100), "m#llergmbh#co#");
}

TEST(ZEL_CharReplace, IsEmptyWithoutTextOrLength) {
  clsHelper01 helper;
  EXPECT_EQ(helper.ZEL_CharReplace("", 8), "");
  EXPECT_EQ(helper.ZEL_CharReplace("Müller", 0), "");
  EXPECT_EQ(helper.ZEL_CharReplace("Müller", -1), "");
  EXPECT_EQ(helper.ZEL_CharReplace("Müller", smallest), "");
  EXPECT_EQ(helper.ZEL_CharReplace("    ", 8), "");
}

TEST(ZEL_CharReplace, KeepsLettersDigitsAndTheNumberSign) {
  clsHelper01 helper;
  EXPECT_EQ(helper.ZEL_CharReplace("abcdefghijklmnopqrstuvwxyz0123456789#", 37),
            "abcdefghijklmnopqrstuvwxyz0123456789#");
  EXPECT_EQ(helper.ZEL_CharReplace("ABCDEFGHIJKLMNOPQRSTUVWXYZ", 26), "abcdefghijklmnopqrstuvwxyz");
}

TEST(ZEL_CharReplace, EveryOtherCharacterIsANumberSign) {
  clsHelper01 helper;
  EXPECT_EQ(helper.ZEL_CharReplace("äÖß€-_.,:;@[]{}\t\r\n\x7F", 100), "###################");
  EXPECT_EQ(helper.ZEL_CharReplace("a\u00A0b", 8), "a#b");
  EXPECT_EQ(helper.ZEL_CharReplace(std::string_view("a\0b", 3), 8), "a#b");
}

TEST(ZEL_CharReplace, CutsBeforeItMaps) {
  clsHelper01 helper;
  EXPECT_EQ(helper.ZEL_CharReplace("ÄÖÜ123", 4), "###1");
  EXPECT_EQ(helper.ZEL_CharReplace("a b c d", 2), "ab");
  EXPECT_EQ(helper.ZEL_CharReplace("abc", 3), "abc");
  EXPECT_EQ(helper.ZEL_CharReplace("abcd", 3), "abc");
  EXPECT_EQ(helper.ZEL_CharReplace("abc", largest), "abc");
}

TEST(ZEL_CharReplace, CountsUtf16CodeUnits) {
  clsHelper01 helper;
  EXPECT_EQ(helper.ZEL_CharReplace("😀ab", 4), "##ab");
  EXPECT_EQ(helper.ZEL_CharReplace("😀ab", 3), "##a");
  EXPECT_EQ(helper.ZEL_CharReplace("😀ab", 1), "#");
}

TEST(ZEL_CharReplace, IllFormedTextCountsAsOneCharacterEach) {
  clsHelper01 helper;
  EXPECT_EQ(helper.ZEL_CharReplace("a\xFF"
                                   "b",
                                   8),
            "a#b");
  EXPECT_EQ(helper.ZEL_CharReplace("a\xC3", 8), "a#");
}

TEST(GetLinesOfString, SplitsAtEveryKindOfLineEnd) {
  EXPECT_EQ(Split("a\r\nb\rc\nd"), (Lines{"a", "b", "c", "d"}));
  EXPECT_EQ(Split("a"), (Lines{"a"}));
  EXPECT_EQ(Split(" ä \n ö "), (Lines{" ä ", " ö "}));
}

TEST(GetLinesOfString, AnEmptyTextIsOneEmptyLine) { EXPECT_EQ(Split(""), (Lines{""})); }

TEST(GetLinesOfString, ATrailingLineEndGivesAnEmptyLine) {
  EXPECT_EQ(Split("a\n"), (Lines{"a", ""}));
  EXPECT_EQ(Split("a\r\n"), (Lines{"a", ""}));
  EXPECT_EQ(Split("\r\n"), (Lines{"", ""}));
}

TEST(GetLinesOfString, OnlyCrLfInThatOrderIsOneLineEnd) {
  EXPECT_EQ(Split("a\n\rb"), (Lines{"a", "", "b"}));
  EXPECT_EQ(Split("a\r\r\nb"), (Lines{"a", "", "b"}));
  EXPECT_EQ(Split("a\n\nb"), (Lines{"a", "", "b"}));
}

TEST(GetLinesOfString, LosesTrailingNulsFirst) {
  EXPECT_EQ(Split(std::string_view("a\nb\0\0", 5)), (Lines{"a", "b"}));
  EXPECT_EQ(Split(std::string_view("a\r\n\0", 4)), (Lines{"a", ""}));
  EXPECT_EQ(Split(std::string_view("\0\0\0", 3)), (Lines{""}));
}

TEST(GetLinesOfString, TakesOtherNulsAsLineEnds) {
  EXPECT_EQ(Split(std::string_view("a\0b", 3)), (Lines{"a", "b"}));
  EXPECT_EQ(Split(std::string_view("\0a", 2)), (Lines{"", "a"}));
  // NULs become line feeds before CR LF is looked for.
  EXPECT_EQ(Split(std::string_view("a\r\0b", 4)), (Lines{"a", "b"}));
}

TEST(GetLinesOfString, ReplacesTheListAndClearsTheError) {
  clsHelper01 helper;
  Fail(helper);
  Lines lines{"x", "y", "z"};
  EXPECT_TRUE(helper.GetLinesOfString("a", lines));
  EXPECT_EQ(lines, Lines{"a"});
  ExpectNoError(helper);
}

TEST(GetLinesOfString, MaySplitALineOfItsOwnList) {
  clsHelper01 helper;
  Lines lines{"a long enough first line, on the heap\nsecond"};
  EXPECT_TRUE(helper.GetLinesOfString(lines[0], lines));
  EXPECT_EQ(lines, (Lines{"a long enough first line, on the heap", "second"}));
}

TEST(ByteMirror, ReversesTheBits) {
  clsHelper01 helper;
  EXPECT_EQ(helper.ByteMirror(1), 128);
  EXPECT_EQ(helper.ByteMirror(0xF0), 0x0F);
  EXPECT_EQ(helper.ByteMirror(0), 0);
  EXPECT_EQ(helper.ByteMirror(255), 255);
  EXPECT_EQ(helper.ByteMirror(0x12), 0x48);
  EXPECT_EQ(helper.ByteMirror(0xC5), 0xA3);
}

TEST(ByteMirror, MovesEveryBitOfEveryByte) {
  clsHelper01 helper;
  for (unsigned value = 0; value < 256; ++value) {
    const unsigned mirrored = helper.ByteMirror(static_cast<std::uint8_t>(value));
    for (unsigned bit = 0; bit < 8; ++bit) {
      ASSERT_EQ((value >> bit) & 1U, (mirrored >> (7U - bit)) & 1U) << value;
    }
  }
}

TEST(BytesToLong, LittleEndian) {
  clsHelper01 helper;
  EXPECT_EQ(helper.BytesToLong(FromHex("78 56 34 12"), 0), 0x12345678);
  EXPECT_EQ(helper.BytesToLong(FromHex("FE FF FF FF"), 0, 4), -2);
  EXPECT_EQ(helper.BytesToLong(FromHex("00 00 00 80"), 0, 4), smallest);
}

TEST(BytesToLong, AShortLittleEndianReadIsLeftAligned) {
  clsHelper01 helper;
  EXPECT_EQ(helper.BytesToLong(FromHex("34 12"), 0, 2), 0x12340000);
  EXPECT_EQ(helper.BytesToLong(FromHex("56 34 12"), 0, 3), 0x12345600);
  EXPECT_EQ(helper.BytesToLong(FromHex("7F"), 0, 1), 0x7F000000);
}

TEST(BytesToLong, BigEndian) {
  clsHelper01 helper;
  EXPECT_EQ(helper.BytesToLong(FromHex("12 34"), 0, 2, true), 0x1234);
  EXPECT_EQ(helper.BytesToLong(FromHex("12 34 56"), 0, 3, true), 0x123456);
  EXPECT_EQ(helper.BytesToLong(FromHex("F0"), 0, 1, true), 0xF0);
  EXPECT_EQ(helper.BytesToLong(FromHex("12 34 56 78"), 0, 4, true), 0x12345678);
  EXPECT_EQ(helper.BytesToLong(FromHex("FF FF FF FE"), 0, 4, true), -2);
}

TEST(BytesToLong, ACountOutsideOneToFourReadsFour) {
  clsHelper01 helper;
  const ByteArray bytes = FromHex("12 34 56 78 9A 9B 9C");
  for (const std::int32_t count : {0, 5, 7, -1, smallest, largest}) {
    EXPECT_EQ(helper.BytesToLong(bytes, 0, count), 0x78563412) << count;
    EXPECT_EQ(helper.BytesToLong(bytes, 0, count, true), 0x12345678) << count;
  }
  EXPECT_EQ(helper.BytesToLong(bytes, 0), 0x78563412);
}

TEST(BytesToLong, StartsAtTheAbsoluteIndex) {
  clsHelper01 helper;
  EXPECT_EQ(helper.BytesToLong(FromHex("00 00 12 34 56 78"), 2, 4, true), 0x12345678);
  EXPECT_EQ(helper.BytesToLong(FromHexAt(5, "12 34"), 5, 2, true), 0x1234);
  EXPECT_EQ(helper.BytesToLong(FromHexAt(-2, "12 34"), -2, 2, true), 0x1234);
}

TEST(BytesToLong, AnIndexOutsideTheArrayIsRaised) {
  clsHelper01 helper;
  const ByteArray bytes = FromHex("01 02 03 04");
  EXPECT_THROW(helper.BytesToLong(bytes, 1, 4), std::out_of_range);
  EXPECT_THROW(helper.BytesToLong(bytes, 1, 4, true), std::out_of_range);
  EXPECT_THROW(helper.BytesToLong(bytes, 4, 1), std::out_of_range);
  EXPECT_THROW(helper.BytesToLong(bytes, -1, 1), std::out_of_range);
  EXPECT_THROW(helper.BytesToLong(bytes, -4, 4), std::out_of_range);
  EXPECT_THROW(helper.BytesToLong(bytes, largest, 4), std::out_of_range);
  EXPECT_THROW(helper.BytesToLong(FromHexAt(largest - 1, "01 02"), largest - 1, 4), std::out_of_range);
  EXPECT_THROW(helper.BytesToLong(bytes, smallest, 4, true), std::out_of_range);
  EXPECT_THROW(helper.BytesToLong(ByteArray(), 0, 1), std::out_of_range);
  EXPECT_THROW(helper.BytesToLong(FromHex("34 12"), 0), std::out_of_range);
  EXPECT_THROW(helper.BytesToLong(FromHexAt(5, "12 34"), 0, 2), std::out_of_range);
}

TEST(LongToBytes, FourBytes) {
  clsHelper01 helper;
  EXPECT_EQ(ToHex(helper.LongToBytes(0x12345678)), "78 56 34 12");
  EXPECT_EQ(ToHex(helper.LongToBytes(0x12345678, true)), "12 34 56 78");
  EXPECT_EQ(ToHex(helper.LongToBytes(-2)), "FE FF FF FF");
  EXPECT_EQ(ToHex(helper.LongToBytes(-2, true)), "FF FF FF FE");
  EXPECT_EQ(ToHex(helper.LongToBytes(0)), "00 00 00 00");
  EXPECT_EQ(ToHex(helper.LongToBytes(smallest, true)), "80 00 00 00");
  EXPECT_EQ(helper.LongToBytes(1).LBound(), 0);
  EXPECT_EQ(helper.LongToBytes(1).UBound(), 3);
}

TEST(LongToBytes, BigEndianWithoutZeroBytes) {
  clsHelper01 helper;
  EXPECT_EQ(ToHex(helper.LongToBytes(0, true, true)), "00");
  EXPECT_EQ(ToHex(helper.LongToBytes(0x12, true, true)), "12");
  EXPECT_EQ(ToHex(helper.LongToBytes(0x1234, true, true)), "12 34");
  EXPECT_EQ(ToHex(helper.LongToBytes(0xFF0000, true, true)), "FF 00 00");
  EXPECT_EQ(ToHex(helper.LongToBytes(0x01000000, true, true)), "01 00 00 00");
  EXPECT_EQ(ToHex(helper.LongToBytes(-1, true, true)), "FF FF FF FF");
  EXPECT_EQ(helper.LongToBytes(0, true, true).UBound(), 0);
}

TEST(LongToBytes, LittleEndianWithoutZeroBytesShortensTheFrontOnly) {
  clsHelper01 helper;
  EXPECT_EQ(ToHex(helper.LongToBytes(0x1234, false, true)), "34 12 00 00");
  EXPECT_EQ(ToHex(helper.LongToBytes(1, false, true)), "01 00 00 00");
  EXPECT_EQ(ToHex(helper.LongToBytes(0x12340000, false, true)), "34 12");
  EXPECT_EQ(ToHex(helper.LongToBytes(0x00123400, false, true)), "34 12 00");
  EXPECT_EQ(ToHex(helper.LongToBytes(smallest, false, true)), "80");
  EXPECT_EQ(ToHex(helper.LongToBytes(0, false, true)), "00");
}

TEST(BytesToPString, ShowsPrintableBytesAsTheyAre) {
  clsHelper01 helper;
  EXPECT_EQ(helper.BytesToPString(FromHex("41 62 20 7E"), 0), "Ab ~");
  EXPECT_EQ(helper.BytesToPString(FromHex("1F 20 7E 7F"), 0), "? ~?");
}

TEST(BytesToPString, ByteE4NeedsAsc126Plus) {
  clsHelper01 helper;
  EXPECT_EQ(helper.BytesToPString(FromHex("E4"), 0), "?");
  EXPECT_EQ(helper.BytesToPString(FromHex("E4"), 0, -1, false), "?");
  EXPECT_EQ(helper.BytesToPString(FromHex("E4"), 0, -1, true), "ä");
}

TEST(BytesToPString, Byte80IsAlwaysAQuestionMark) {
  clsHelper01 helper;
  EXPECT_EQ(helper.BytesToPString(FromHex("80"), 0, -1, false), "?");
  EXPECT_EQ(helper.BytesToPString(FromHex("80"), 0, -1, true), "?");
}

TEST(BytesToPString, ShowsEveryByteAsItsRangeSays) {
  clsHelper01 helper;
  for (unsigned value = 0; value < 256; ++value) {
    const ByteArray bytes{static_cast<std::uint8_t>(value)};
    std::string plain = "?";
    std::string extended = "?";
    if (value >= 32 && value <= 126) {
      plain = static_cast<char>(value);
      extended = plain;
    } else if (value == 145) {
      extended = "\u2018";
    } else if (value == 146) {
      extended = "\u2019";
    } else if (value >= 161) {
      // Two bytes in UTF-8: the Latin-1 characters from U+00A1 on.
      extended = {static_cast<char>(0xC0U | (value >> 6U)), static_cast<char>(0x80U | (value & 0x3FU))};
    }
    EXPECT_EQ(helper.BytesToPString(bytes, 0, 1, false), plain) << value;
    EXPECT_EQ(helper.BytesToPString(bytes, 0, 1, true), extended) << value;
  }
}

TEST(BytesToPString, AStartBehindTheEndGivesNothing) {
  clsHelper01 helper;
  EXPECT_EQ(helper.BytesToPString(FromHex("41"), 1), "");
  EXPECT_EQ(helper.BytesToPString(FromHex("41"), 7), "");
  EXPECT_EQ(helper.BytesToPString({}, 0), "");
}

TEST(BytesToPString, StartAndCountSelectBytes) {
  clsHelper01 helper;
  const ByteArray bytes = FromHex("41 42 43 44");
  EXPECT_EQ(helper.BytesToPString(bytes, 1), "BCD");
  EXPECT_EQ(helper.BytesToPString(bytes, 1, 2), "BC");
  EXPECT_EQ(helper.BytesToPString(bytes, 1, 0), "BCD");
  EXPECT_EQ(helper.BytesToPString(bytes, 1, -7), "BCD");
  EXPECT_EQ(helper.BytesToPString(bytes, 1, 3), "BCD");
  EXPECT_EQ(helper.BytesToPString(bytes, 3, 1), "D");
  EXPECT_EQ(helper.BytesToPString(bytes, 4), "");
  EXPECT_EQ(helper.BytesToPString(ByteArray(), 0), "");
  EXPECT_EQ(helper.BytesToPString(FromHexAt(7, "41 42"), 8), "B");
  EXPECT_EQ(helper.BytesToPString(FromHexAt(-1, "41 42"), -1), "AB");
}

TEST(BytesToPString, AnIndexOutsideTheArrayIsRaised) {
  clsHelper01 helper;
  const ByteArray bytes = FromHex("41 42 43 44");
  EXPECT_THROW(helper.BytesToPString(bytes, 1, 4), std::out_of_range);
  EXPECT_THROW(helper.BytesToPString(bytes, 1, largest), std::out_of_range);
  EXPECT_THROW(helper.BytesToPString(bytes, -1), std::out_of_range);
  EXPECT_THROW(helper.BytesToPString(bytes, -1, 2), std::out_of_range);
  EXPECT_THROW(helper.BytesToPString(bytes, 4, 1), std::out_of_range);
  EXPECT_THROW(helper.BytesToPString(bytes, largest, largest), std::out_of_range);
  EXPECT_THROW(helper.BytesToPString(FromHexAt(7, "41 42"), 0), std::out_of_range);
  EXPECT_THROW(helper.BytesToPString(FromHexAt(largest, "41"), largest, 2), std::out_of_range);
}

TEST(BytesToPString, ReadsUpToTheLastIndexThatThereIs) {
  clsHelper01 helper;
  EXPECT_EQ(helper.BytesToPString(FromHexAt(largest - 1, "41 42"), largest - 1), "AB");
  EXPECT_EQ(helper.BytesToPString(FromHexAt(largest, "41"), largest, 1), "A");
}

TEST(LongToCurrency, ReadsTheIntegerAsUnsigned) {
  clsHelper01 helper;
  EXPECT_EQ(helper.LongToCurrency(0), Currency(0));
  EXPECT_EQ(helper.LongToCurrency(1), Currency(1));
  EXPECT_EQ(helper.LongToCurrency(largest), Currency(2147483647));
  EXPECT_EQ(helper.LongToCurrency(-1), Currency(4294967295U));
  EXPECT_EQ(helper.LongToCurrency(smallest), Currency(2147483648U));
}

TEST(CurrencyToLong, IsTheInverse) {
  clsHelper01 helper;
  EXPECT_EQ(helper.CurrencyToLong(Currency(0)), 0);
  EXPECT_EQ(helper.CurrencyToLong(Currency(4294967295U)), -1);
  EXPECT_EQ(helper.CurrencyToLong(Currency(2147483647)), largest);
  EXPECT_EQ(helper.CurrencyToLong(Currency(2147483648U)), smallest);
  EXPECT_EQ(helper.CurrencyToLong(Currency(-1)), -1);
  EXPECT_EQ(helper.CurrencyToLong(Currency(smallest)), smallest);
  EXPECT_EQ(helper.CurrencyToLong(Currency(std::int64_t{4294967296})), 0);
  EXPECT_EQ(helper.CurrencyToLong(Currency(std::int64_t{6442450943})), largest);
}

TEST(CurrencyToLong, RoundsFractionsHalfToEven) {
  clsHelper01 helper;
  const auto convert = [&helper](std::int64_t scaled) {
    return helper.CurrencyToLong(Currency::FromScaled(scaled));
  };
  EXPECT_EQ(convert(5000), 0);
  EXPECT_EQ(convert(5001), 1);
  EXPECT_EQ(convert(15000), 2);
  EXPECT_EQ(convert(25000), 2);
  EXPECT_EQ(convert(24999), 2);
  EXPECT_EQ(convert(25001), 3);
  EXPECT_EQ(convert(-5000), 0);
  EXPECT_EQ(convert(-5001), -1);
  EXPECT_EQ(convert(-15000), -2);
  EXPECT_EQ(convert(-25000), -2);
  EXPECT_EQ(convert(-25001), -3);
}

TEST(CurrencyToLong, WhatLeavesThe32BitsIsRaised) {
  clsHelper01 helper;
  const auto convert = [&helper](std::int64_t scaled) {
    return helper.CurrencyToLong(Currency::FromScaled(scaled));
  };
  EXPECT_THROW(convert(64424509440000), std::overflow_error);   // 6442450944
  EXPECT_THROW(convert(64424509435000), std::overflow_error);   // 6442450943.5 rounds up
  EXPECT_EQ(convert(64424509434999), largest);                  // 6442450943.4999
  EXPECT_THROW(convert(-21474836490000), std::overflow_error);  // -2147483649
  EXPECT_EQ(convert(-21474836485000), smallest);                // -2147483648.5 rounds to even
  EXPECT_THROW(convert(-21474836485001), std::overflow_error);  // -2147483648.5001
  // Above 2147483647 the value is taken as unsigned before it is rounded.
  EXPECT_THROW(convert(21474836474000), std::overflow_error);  // 2147483647.4 is -2147483648.6
  EXPECT_EQ(convert(21474836475000), smallest);                // 2147483647.5 is -2147483648.5
  EXPECT_EQ(convert(42949672955000), 0);                       // 4294967295.5 is -0.5
  EXPECT_THROW(convert(std::numeric_limits<std::int64_t>::max()), std::overflow_error);
  EXPECT_THROW(convert(std::numeric_limits<std::int64_t>::min()), std::overflow_error);
}

TEST(NumericHelpers, LeaveTheErrorObjectAlone) {
  clsHelper01 helper;
  Fail(helper);
  helper.ByteMirror(1);
  helper.BytesToLong(FromHex("01 02 03 04"), 0);
  helper.LongToBytes(1);
  helper.BytesToPString(FromHex("41"), 0);
  helper.LongToCurrency(1);
  helper.CurrencyToLong(Currency(1));
  EXPECT_THROW(helper.CurrencyToLong(Currency(-2147483649)), std::overflow_error);
  EXPECT_THROW(helper.BytesToLong(ByteArray(), 0), std::out_of_range);
  EXPECT_THROW(helper.BytesToPString(ByteArray(), 0, 1), std::out_of_range);
  EXPECT_EQ(helper.ErrorObject().ErrorNr(), 9104);
  EXPECT_EQ(helper.ErrorObject().ErrorFunction(), "FromBase64String");
}

}  // namespace
