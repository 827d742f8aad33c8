#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

using test::ExpectError;
using test::ExpectNoError;
using test::FromHex;
using test::FromHexAt;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::ZELErrorCodes;

namespace {

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();

std::string Bytes(std::string_view text) {
  clsHelper01 helper;
  ByteArray result = FromHexAt(3, "EE");
  EXPECT_TRUE(helper.GetBytesOfBinStr(text, result)) << helper.ErrorObject().ErrorMsg();
  ExpectNoError(helper);
  EXPECT_EQ(result.LBound(), 0);
  return ToHex(result);
}

std::string Text(const ByteArray& bytes, std::string_view separator = "", std::int32_t groupLen = 0) {
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_TRUE(helper.GetBinStrOfBytes(bytes, result, separator, groupLen));
  ExpectNoError(helper);
  return result;
}

TEST(GetBytesOfBinStr, ReadsDigitsInEitherCase) {
  EXPECT_EQ(Bytes("0a-ff 10"), "0A FF 10");
  EXPECT_EQ(Bytes("0123456789ABCDEF"), "01 23 45 67 89 AB CD EF");
  EXPECT_EQ(Bytes("0123456789abcdef"), "01 23 45 67 89 AB CD EF");
  EXPECT_EQ(Bytes("fF"), "FF");
}

TEST(GetBytesOfBinStr, PassesOverSeparators) {
  EXPECT_EQ(Bytes(" 0 1\r\n-0-2- "), "01 02");
  EXPECT_EQ(Bytes("\n0\r1"), "01");
}

TEST(GetBytesOfBinStr, NothingButSeparatorsIsAnEmptyArray) {
  for (const char* text : {"-", " ", "\r\n", "- - -"}) {
    clsHelper01 helper;
    ByteArray result = FromHexAt(3, "EE");
    EXPECT_TRUE(helper.GetBytesOfBinStr(text, result));
    ExpectNoError(helper);
    EXPECT_EQ(result, ByteArray());
  }
}

TEST(GetBytesOfBinStr, AnEmptyTextFails) {
  clsHelper01 helper;
  ByteArray result = FromHexAt(3, "EE");
  EXPECT_FALSE(helper.GetBytesOfBinStr("", result));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvNoData, true, "GetBytesOfBinStr",
              "Es wurde eine leere Zeichenfolge übergeben!");
  EXPECT_EQ(result, FromHexAt(3, "EE"));
}

TEST(GetBytesOfBinStr, AnOddLengthFails) {
  clsHelper01 helper;
  for (const char* text : {"0AF", "0", "G", "0-A F", "€"}) {
    ByteArray result = FromHexAt(3, "EE");
    EXPECT_FALSE(helper.GetBytesOfBinStr(text, result));
    ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvLength, true, "GetBytesOfBinStr",
                "Die Länge der Base64-Zeichenfolge ist ungültig!");
    EXPECT_EQ(result, FromHexAt(3, "EE"));
  }
}

void ExpectInvalidChar(std::string_view text, std::string_view position, std::string_view character,
                       std::string_view bytes) {
  clsHelper01 helper;
  ByteArray result = FromHexAt(3, "EE");
  EXPECT_FALSE(helper.GetBytesOfBinStr(text, result));
  ExpectError(
      helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvInvalidChar, true, "GetBytesOfBinStr",
      "Es wurde ein ungültiges Zeichen in der hexadezimalen Zeichenfolge entdeckt!\r\nZeichenposition: " +
          std::string(position) + "\r\nZeichen .......: \"" + std::string(character) + "\"");
  EXPECT_EQ(ToHex(result), bytes);
  EXPECT_EQ(result.LBound(), 0);
}

TEST(GetBytesOfBinStr, AnInvalidCharacterFailsWithItsPosition) {
  ExpectInvalidChar("0G", "2", "G", "00");
  ExpectInvalidChar("G0", "1", "G", "00");
  ExpectInvalidChar("0@", "2", "@", "00");
  ExpectInvalidChar("0:", "2", ":", "00");
  ExpectInvalidChar("0/", "2", "/", "00");
  ExpectInvalidChar("\t0", "1", "\t", "00");
}

TEST(GetBytesOfBinStr, PositionsCountInTheCleanedText) {
  ExpectInvalidChar("0A-\r\n F F-0X", "6", "X", "0A FF 00");
  ExpectInvalidChar("0AFF0G10", "6", "G", "0A FF 00 00");
}

TEST(GetBytesOfBinStr, TheCharacterIsShownInUpperCase) {
  ExpectInvalidChar("0g", "2", "G", "00");
  ExpectInvalidChar("0ä", "2", "Ä", "00");
}

TEST(GetBytesOfBinStr, PositionsCountUtf16CodeUnits) {
  ExpectInvalidChar("ä00G", "1", "Ä", "00 00");
  ExpectInvalidChar("0A€0", "3", "€", "0A 00");
  clsHelper01 helper;
  ByteArray result;
  EXPECT_FALSE(helper.GetBytesOfBinStr("0A😀", result));
  EXPECT_EQ(helper.ErrorObject().ErrorNr(), 9106);
  EXPECT_NE(helper.ErrorObject().ErrorMsg().find("\r\nZeichenposition: 3\r\n"), std::string::npos);
}

TEST(GetBytesOfBinStr, UpperCaseNeverChangesTheLength) {
  // "ß" has no upper-case letter of its own and stays one character.
  ExpectInvalidChar("0ß", "2", "ß", "00");
  ExpectInvalidChar("ß000", "1", "ß", "00 00");
}

TEST(GetBytesOfBinStr, FailuresAreLoggedOnce) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  ByteArray result;
  helper.GetBytesOfBinStr("", result);
  helper.GetBytesOfBinStr("0", result);
  helper.GetBytesOfBinStr("0G", result);
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9105", "9104", "9106"}));
}

TEST(GetBytesOfBinStr, FindsAnInvalidCharacterAtEveryPosition) {
  const std::string text(300, 'A');
  for (std::size_t position = 0; position < text.size(); ++position) {
    for (const char wrong : {'G', '`', 'g', '@', '/', ':', '\0', '\x7F', '_'}) {
      std::string damaged = text;
      damaged[position] = wrong;
      clsHelper01 helper;
      ByteArray result;
      ASSERT_FALSE(helper.GetBytesOfBinStr(damaged, result)) << position;
      ASSERT_EQ(helper.ErrorObject().ErrorNr(), 9106) << position;
      ASSERT_NE(helper.ErrorObject().ErrorMsg().find("\r\nZeichenposition: " + std::to_string(position + 1) +
                                                     "\r\n"),
                std::string::npos)
          << helper.ErrorObject().ErrorMsg();
    }
  }
}

TEST(GetBinStrOfBytes, TwoUpperCaseDigitsPerByte) {
  EXPECT_EQ(Text(FromHex("0A FF 10")), "0AFF10");
  EXPECT_EQ(Text(FromHex("00")), "00");
  EXPECT_EQ(Text(ByteArray()), "");
}

TEST(GetBinStrOfBytes, SeparatesBytes) {
  EXPECT_EQ(Text(FromHex("0A FF 10"), "-"), "0A-FF-10");
  EXPECT_EQ(Text(FromHex("0A FF 10"), ":"), "0A:FF:10");
  EXPECT_EQ(Text(FromHex("0A FF 10"), " "), "0A FF 10");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "ä"), "0AäFFä10");
  EXPECT_EQ(Text(FromHex("0A"), "-"), "0A");
}

TEST(GetBinStrOfBytes, TakesTheSeparatorsFirstCharacterUnlessItIsADigit) {
  EXPECT_EQ(Text(FromHex("0A FF 10"), "A"), "0AFF10");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "0"), "0AFF10");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "F-"), "0AFF10");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "-xyz"), "0A-FF-10");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "a"), "0AaFFa10");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "G"), "0AGFFG10");
}

TEST(GetBinStrOfBytes, GroupsOfDigitsLeaveOutTheLastOne) {
  EXPECT_EQ(Text(FromHex("0A FF 10"), "-", 2), "0A-FF");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "", 2), "0A-FF");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "A", 2), "0A-FF");
  EXPECT_EQ(Text(FromHex("0A FF 10"), ":", 2), "0A:FF");
  EXPECT_EQ(Text(FromHex("0A FF 10"), " ", 2), "0A FF");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "-", 1), "0-A-F-F-1");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "-", 3), "0AF");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "-", 4), "0AFF");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "-", 5), "0AFF1");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "-", 6), "");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "-", largest), "");
}

TEST(GetBinStrOfBytes, TwentyBytesInGroupsOfEightGiveFourGroups) {
  EXPECT_EQ(Text(FromHex("A9 99 3E 36 47 06 81 6A BA 3E 25 71 78 50 C2 6C 9C D0 D8 9D"), "", 8),
            "A9993E36-4706816A-BA3E2571-7850C26C");
}

TEST(GetBinStrOfBytes, ASingleByteInGroups) {
  EXPECT_EQ(Text(FromHex("0A"), "", 1), "0");
  EXPECT_EQ(Text(FromHex("0A"), "", 2), "");
  EXPECT_EQ(Text(FromHex("0A"), "", 3), "");
  EXPECT_EQ(Text(ByteArray(), "", 1), "");
}

TEST(GetBinStrOfBytes, AGroupLengthBelowOneMeansUngrouped) {
  EXPECT_EQ(Text(FromHex("0A FF 10"), "-", -1), "0A-FF-10");
  EXPECT_EQ(Text(FromHex("0A FF 10"), "-", smallest), "0A-FF-10");
}

TEST(GetBinStrOfBytes, ShowsAllBytesOfAnArrayWithAPositiveLowerBound) {
  EXPECT_EQ(Text(FromHexAt(5, "0A FF"), "-"), "0A-FF");
  EXPECT_EQ(Text(FromHexAt(largest - 1, "0A FF")), "0AFF");
}

TEST(GetBinStrOfBytes, ANegativeLowerBoundFails) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  std::string result = "before";
  EXPECT_FALSE(helper.GetBinStrOfBytes(FromHexAt(-1, "0A FF"), result));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvLBound, true, "GetBinStrOfBytes",
              "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -1");
  EXPECT_EQ(result, "before");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"GetBinStrOfBytes"});
}

TEST(HexTextProperties, WhatIsWrittenReadsAsTheSame) {
  EXPECT_TRUE(
      rc::check("with the separators that the reader passes over", [](const std::vector<std::uint8_t>& data) {
        RC_PRE(!data.empty());
        const ByteArray bytes{std::span<const std::uint8_t>(data)};
        const auto separator = *rc::gen::element<std::string>("", "-", " ", "\r", "\n", "A", "- ");
        clsHelper01 helper;
        std::string text;
        RC_ASSERT(helper.GetBinStrOfBytes(bytes, text, separator));
        ByteArray back;
        RC_ASSERT(helper.GetBytesOfBinStr(text, back));
        RC_ASSERT(back == bytes);
      }));
}

TEST(HexTextProperties, DigitsAreThoseOfTheBytes) {
  EXPECT_TRUE(rc::check("ungrouped", [](const std::vector<std::uint8_t>& data) {
    const ByteArray bytes{std::span<const std::uint8_t>(data)};
    std::string expected = ToHex(bytes);
    expected.erase(std::remove(expected.begin(), expected.end(), ' '), expected.end());
    clsHelper01 helper;
    std::string text;
    RC_ASSERT(helper.GetBinStrOfBytes(bytes, text));
    RC_ASSERT(text == expected);
  }));
}

TEST(HexTextProperties, GroupsHoldTheirDigits) {
  EXPECT_TRUE(rc::check("grouped", [](const std::vector<std::uint8_t>& data) {
    RC_PRE(!data.empty());
    const ByteArray bytes{std::span<const std::uint8_t>(data)};
    const auto groupLen = *rc::gen::inRange<std::size_t>(1, 20);
    std::string digits = ToHex(bytes);
    digits.erase(std::remove(digits.begin(), digits.end(), ' '), digits.end());
    std::string expected;
    for (std::size_t group = 0; group < (digits.size() - 1) / groupLen; ++group) {
      expected += (group == 0 ? "" : "-") + digits.substr(group * groupLen, groupLen);
    }
    clsHelper01 helper;
    std::string text;
    RC_ASSERT(helper.GetBinStrOfBytes(bytes, text, "", static_cast<std::int32_t>(groupLen)));
    RC_ASSERT(text == expected);
  }));
}

TEST(HexTextProperties, AnyTextEndsInABoolean) {
  EXPECT_TRUE(rc::check("GetBytesOfBinStr of any text", [](const std::string& text) {
    clsHelper01 helper;
    ByteArray result;
    const bool done = helper.GetBytesOfBinStr(text, result);
    RC_ASSERT(done == !helper.HasError());
  }));
  EXPECT_TRUE(rc::check("GetBinStrOfBytes with any separator", [](const std::vector<std::uint8_t>& data,
                                                                  const std::string& separator) {
    const ByteArray bytes{std::span<const std::uint8_t>(data)};
    const auto groupLen = *rc::gen::oneOf(rc::gen::inRange(-2, 20), rc::gen::element(smallest, largest));
    clsHelper01 helper;
    std::string result;
    const bool done = helper.GetBinStrOfBytes(bytes, result, separator, groupLen);
    RC_ASSERT(done == !helper.HasError());
  }));
}

}  // namespace
