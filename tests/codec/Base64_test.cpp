#include <gtest/gtest.h>
#include <openssl/evp.h>
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
using test::ExpectFault;
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

ByteArray Ascii(std::string_view text) {
  return ByteArray(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

std::string Encode(const ByteArray& data, std::int32_t start = 0, std::int32_t count = 0,
                   std::int32_t lineLen = 0, std::string_view plus = "+", std::string_view slash = "/") {
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_TRUE(helper.ToBase64String(data, result, start, count, lineLen, plus, slash));
  ExpectNoError(helper);
  return result;
}

/// The bytes of a text as hexadecimal digits.
std::string Decode(std::string_view text, std::string_view plus = "+", std::string_view slash = "/") {
  clsHelper01 helper;
  ByteArray result = FromHexAt(3, "EE");
  EXPECT_TRUE(helper.FromBase64String(text, result, plus, slash)) << helper.ErrorObject().ErrorMsg();
  ExpectNoError(helper);
  EXPECT_EQ(result.LBound(), 0);
  return ToHex(result);
}

/// Lengths of the lines of a text.
std::vector<std::size_t> LineLengths(std::string_view text) {
  std::vector<std::size_t> lengths;
  std::size_t start = 0;
  for (std::size_t end = text.find("\r\n"); end != std::string_view::npos; end = text.find("\r\n", start)) {
    lengths.push_back(end - start);
    start = end + 2;
  }
  lengths.push_back(text.size() - start);
  return lengths;
}

using Lengths = std::vector<std::size_t>;

TEST(ToBase64String, PublishedVectors) {
  EXPECT_EQ(Encode(Ascii("")), "");
  EXPECT_EQ(Encode(Ascii("f")), "Zg==");
  EXPECT_EQ(Encode(Ascii("fo")), "Zm8=");
  EXPECT_EQ(Encode(Ascii("foo")), "Zm9v");
  EXPECT_EQ(Encode(Ascii("foob")), "Zm9vYg==");
  EXPECT_EQ(Encode(Ascii("fooba")), "Zm9vYmE=");
  EXPECT_EQ(Encode(Ascii("foobar")), "Zm9vYmFy");
}

TEST(ToBase64String, TwoBytesGiveOnePad) { EXPECT_EQ(Encode(FromHex("01 02")), "AQI="); }

TEST(ToBase64String, UsesAll64Digits) {
  EXPECT_EQ(Encode(FromHex("00 10 83 10 51 87 20 92 8B 30 D3 8F 41 14 93 51 55 97 61 96 9B 71 D7 9F"
                           "82 18 A3 92 59 A7 A2 9A AB B2 DB AF C3 1C B3 D3 5D B7 E3 9E BB F3 DF BF")),
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST(ToBase64String, AnEmptyArrayGivesAnEmptyText) {
  EXPECT_EQ(Encode(ByteArray()), "");
  EXPECT_EQ(Encode(ByteArray(), 5, 7, 12), "");
}

TEST(ToBase64String, ReplacementCharactersGiveTheUrlSafeAlphabet) {
  EXPECT_EQ(Encode(FromHex("FB FF FE")), "+//+");
  EXPECT_EQ(Encode(FromHex("FB FF FE"), 0, 0, 0, "-", "_"), "-__-");
}

TEST(ToBase64String, ReplacementsAreCleanedUp) {
  const ByteArray bytes = FromHex("FB FF FE");
  EXPECT_EQ(Encode(bytes, 0, 0, 0, "A", "/"), "+//+");
  EXPECT_EQ(Encode(bytes, 0, 0, 0, "z", "_"), "+__+");
  EXPECT_EQ(Encode(bytes, 0, 0, 0, "0", "_"), "+__+");
  EXPECT_EQ(Encode(bytes, 0, 0, 0, "", ""), "+//+");
  EXPECT_EQ(Encode(bytes, 0, 0, 0, "   ", "   "), "+//+");
  EXPECT_EQ(Encode(bytes, 0, 0, 0, " - ", " _ "), "-__-");
  EXPECT_EQ(Encode(bytes, 0, 0, 0, "-abc", "_/"), "-__-");
  EXPECT_EQ(Encode(bytes, 0, 0, 0, "ä", "€"), "ä€€ä");
  // A letter as replacement of "/" becomes "+" too, which then stands in both places unless "+" is replaced.
  EXPECT_EQ(Encode(bytes, 0, 0, 0, "-", "x"), "-++-");
}

TEST(ToBase64String, EqualReplacementsFail) {
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_FALSE(helper.ToBase64String(FromHex("01"), result, 0, 0, 0, "-", "-"));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_B64ReplEqual, true, "ToBase64String",
              "Die übergebenen Ersetungszeichenfolgen sind identisch\r\n"
              "Plusersetzung:    \"-\"\r\n"
              "Schrägstrichers.: \"-\"");
  EXPECT_EQ(result, "before");
  EXPECT_FALSE(helper.ToBase64String(FromHex("01"), result, 0, 0, 0, "/", ""));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_B64ReplEqual, true, "ToBase64String",
              "Die übergebenen Ersetungszeichenfolgen sind identisch\r\n"
              "Plusersetzung:    \"/\"\r\n"
              "Schrägstrichers.: \"/\"");
  EXPECT_FALSE(helper.ToBase64String(FromHex("01"), result, 0, 0, 0, "", "A"));
  EXPECT_EQ(helper.ErrorObject().ErrorNr(), 9101);
  EXPECT_EQ(result, "before");
}

TEST(ToBase64String, EqualReplacementsFailBeforeTheDataIsLookedAt) {
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_FALSE(helper.ToBase64String(FromHexAt(-1, "01"), result, 9, 0, 0, "x", "x"));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_B64ReplEqual, true, "ToBase64String",
              "Die übergebenen Ersetungszeichenfolgen sind identisch\r\n"
              "Plusersetzung:    \"+\"\r\n"
              "Schrägstrichers.: \"+\"");
  EXPECT_FALSE(helper.ToBase64String(ByteArray(), result, 0, 0, 0, "x", "x"));
  EXPECT_EQ(helper.ErrorObject().ErrorNr(), 9101);
  EXPECT_EQ(result, "before");
}

TEST(ToBase64String, ANegativeLowerBoundFails) {
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_FALSE(helper.ToBase64String(FromHexAt(-1, "01 02"), result));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvLBound, true, "ToBase64String",
              "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -1");
  EXPECT_EQ(result, "before");
  EXPECT_FALSE(helper.ToBase64String(FromHexAt(smallest, "01 02"), result, 1));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvLBound, true, "ToBase64String",
              "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -2147483648");
}

TEST(ToBase64String, AStartAboveTheUpperBoundFails) {
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_FALSE(helper.ToBase64String(FromHex("01 02 03"), result, 3));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "ToBase64String",
              "Der Startindex liegt außerhalb des gültigen Bereiches\r\nObergrenze: 2\r\nStartindex: 3");
  EXPECT_EQ(result, "before");
  EXPECT_FALSE(helper.ToBase64String(FromHex("01 02 03"), result, largest, largest));
  ExpectError(
      helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "ToBase64String",
      "Der Startindex liegt außerhalb des gültigen Bereiches\r\nObergrenze: 2\r\nStartindex: 2147483647");
  EXPECT_FALSE(helper.ToBase64String(FromHex("01"), result, 1));
  EXPECT_EQ(helper.ErrorObject().ErrorNr(), 9103);
}

TEST(ToBase64String, StartAndCountSelectBytes) {
  const ByteArray bytes = Ascii("xfoobar");
  EXPECT_EQ(Encode(bytes, 1), "Zm9vYmFy");
  EXPECT_EQ(Encode(bytes, 1, 3), "Zm9v");
  EXPECT_EQ(Encode(bytes, 6, 1), "cg==");
  EXPECT_EQ(Encode(bytes, 6), "cg==");
  EXPECT_EQ(Encode(Ascii("foobar"), -5, 2), "Zm8=");
  EXPECT_EQ(Encode(Ascii("foobar"), smallest, smallest), "Zm9vYmFy");
  EXPECT_EQ(Encode(Ascii("foobar"), 0, -1), "Zm9vYmFy");
}

TEST(ToBase64String, ACountBeyondTheEndIsCapped) {
  const ByteArray bytes = Ascii("foobar");
  EXPECT_EQ(Encode(bytes, 0, 6), "Zm9vYmFy");
  EXPECT_EQ(Encode(bytes, 0, 7), "Zm9vYmFy");
  EXPECT_EQ(Encode(bytes, 3, 4), "YmFy");
  EXPECT_EQ(Encode(bytes, 3, largest), "YmFy");
  EXPECT_EQ(Encode(bytes, 5, largest), "cg==");
}

TEST(ToBase64String, APositiveLowerBoundNeedsAStartInsideTheBounds) {
  const ByteArray bytes = FromHexAt(5, "66 6F 6F");
  EXPECT_EQ(Encode(bytes, 5), "Zm9v");
  EXPECT_EQ(Encode(bytes, 6, 9), "b28=");
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_FALSE(helper.ToBase64String(bytes, result));
  ExpectFault(helper.ErrorObject(), 9, "ToBase64String");
  EXPECT_FALSE(helper.ToBase64String(bytes, result, 4));
  ExpectFault(helper.ErrorObject(), 9, "ToBase64String");
  EXPECT_FALSE(helper.ToBase64String(bytes, result, 1, 1));
  ExpectFault(helper.ErrorObject(), 9, "ToBase64String");
  EXPECT_FALSE(helper.ToBase64String(bytes, result, 8));
  EXPECT_EQ(helper.ErrorObject().ErrorNr(), 9103);
  EXPECT_EQ(result, "before");
}

TEST(ToBase64String, IndexesReachTheEndOfTheirRange) {
  EXPECT_EQ(Encode(FromHexAt(largest - 2, "66 6F 6F"), largest - 2, largest), "Zm9v");
  EXPECT_EQ(Encode(FromHexAt(largest - 2, "66 6F 6F"), largest, 1), "bw==");
}

TEST(ToBase64String, FailuresAreLoggedOnce) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  std::string result;
  helper.ToBase64String(FromHex("01"), result, 0, 0, 0, "-", "-");
  helper.ToBase64String(FromHexAt(-1, "01"), result);
  helper.ToBase64String(FromHex("01"), result, 1);
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9101", "9102", "9103"}));
}

TEST(ToBase64String, LinesBreakFromLength12On) {
  const ByteArray bytes = Ascii("abcdefghijklmnopqr");
  EXPECT_EQ(Encode(bytes), "YWJjZGVmZ2hpamtsbW5vcHFy");
  EXPECT_EQ(Encode(bytes, 0, 0, 11), "YWJjZGVmZ2hpamtsbW5vcHFy");
  EXPECT_EQ(Encode(bytes, 0, 0, 12), "YWJjZGVmZ2hp\r\namtsbW5vcHFy");
  EXPECT_EQ(Encode(bytes, 0, 0, 1), "YWJjZGVmZ2hpamtsbW5vcHFy");
  EXPECT_EQ(Encode(bytes, 0, 0, -12), "YWJjZGVmZ2hpamtsbW5vcHFy");
  EXPECT_EQ(Encode(bytes, 0, 0, smallest), "YWJjZGVmZ2hpamtsbW5vcHFy");
}

TEST(ToBase64String, TheLastLineMayHoldOneCharacterMore) {
  const auto lengths = [](std::int32_t bytes, std::int32_t lineLen) {
    return LineLengths(Encode(ByteArray::WithBounds(0, bytes - 1), 0, 0, lineLen));
  };
  EXPECT_EQ(lengths(9, 12), (Lengths{12}));
  EXPECT_EQ(lengths(12, 12), (Lengths{12, 4}));
  EXPECT_EQ(lengths(18, 12), (Lengths{12, 12}));
  EXPECT_EQ(lengths(21, 12), (Lengths{12, 12, 4}));
  EXPECT_EQ(lengths(12, 15), (Lengths{16}));
  EXPECT_EQ(lengths(12, 14), (Lengths{14, 2}));
  EXPECT_EQ(lengths(12, 16), (Lengths{16}));
  EXPECT_EQ(lengths(30, 13), (Lengths{13, 13, 14}));
  EXPECT_EQ(lengths(21, 13), (Lengths{13, 13, 2}));
  EXPECT_EQ(lengths(21, 27), (Lengths{28}));
  EXPECT_EQ(lengths(42, 27), (Lengths{27, 27, 2}));
  EXPECT_EQ(lengths(57, 76), (Lengths{76}));
  EXPECT_EQ(lengths(58, 76), (Lengths{76, 4}));
  EXPECT_EQ(lengths(58, largest), (Lengths{80}));
  EXPECT_EQ(lengths(58, largest - 1), (Lengths{80}));
}

TEST(FromBase64String, PublishedVectors) {
  EXPECT_EQ(Decode("Zg=="), "66");
  EXPECT_EQ(Decode("Zm8="), "66 6F");
  EXPECT_EQ(Decode("Zm9v"), "66 6F 6F");
  EXPECT_EQ(Decode("Zm9vYg=="), "66 6F 6F 62");
  EXPECT_EQ(Decode("Zm9vYmE="), "66 6F 6F 62 61");
  EXPECT_EQ(Decode("Zm9vYmFy"), "66 6F 6F 62 61 72");
}

TEST(FromBase64String, KnowsAll64Digits) {
  EXPECT_EQ(Decode("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"),
            "00 10 83 10 51 87 20 92 8B 30 D3 8F 41 14 93 51 55 97 61 96 9B 71 D7 9F "
            "82 18 A3 92 59 A7 A2 9A AB B2 DB AF C3 1C B3 D3 5D B7 E3 9E BB F3 DF BF");
}

TEST(FromBase64String, ReplacementCharactersStandForPlusAndSlash) {
  EXPECT_EQ(Decode("-__-", "-", "_"), "FB FF FE");
  EXPECT_EQ(Decode("+//+", "A", ""), "FB FF FE");
  EXPECT_EQ(Decode("ä€€ä", "ä", "€"), "FB FF FE");
  EXPECT_EQ(Decode("-++-", "-", "x"), "FB FF FE");
  clsHelper01 helper;
  ByteArray result;
  EXPECT_FALSE(helper.FromBase64String("-__-", result));
  EXPECT_EQ(helper.ErrorObject().ErrorNr(), 9106);
  EXPECT_FALSE(helper.FromBase64String("+//+", result, "-", "_"));
  EXPECT_EQ(helper.ErrorObject().ErrorNr(), 9106);
}

TEST(FromBase64String, PassesOverLineEndsAndOuterBlanks) {
  EXPECT_EQ(Decode("  Zm9v\r\nYmFy  "), "66 6F 6F 62 61 72");
  EXPECT_EQ(Decode("Z\rm\n9\n\nv"), "66 6F 6F");
  EXPECT_EQ(Decode("\r\n \r\n QQ== \r\n \r\n"), "41");
}

TEST(FromBase64String, OnePaddedGroup) { EXPECT_EQ(Decode("QQ=="), "41"); }

TEST(FromBase64String, LeftOverBitsDoNotCount) {
  EXPECT_EQ(Decode("QR=="), "41");
  EXPECT_EQ(Decode("QUJ="), "41 42");
}

TEST(FromBase64String, ALengthThatIsNotAMultipleOfFourFails) {
  clsHelper01 helper;
  for (const char* text : {"QQ", "Q", "QQQ", "QQ=", "QQ== QQ==", "QQ===", "QQQQQ"}) {
    ByteArray result = FromHexAt(2, "EE");
    EXPECT_FALSE(helper.FromBase64String(text, result));
    ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvLength, true, "FromBase64String",
                "Die Länge der Base64-Zeichenfolge ist ungültig!");
    EXPECT_EQ(result, FromHexAt(2, "EE"));
  }
}

TEST(FromBase64String, AnEmptyTextFails) {
  clsHelper01 helper;
  for (const char* text : {"", "   ", "\r\n", " \r\n \n\r "}) {
    ByteArray result = FromHexAt(2, "EE");
    EXPECT_FALSE(helper.FromBase64String(text, result));
    ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvNoData, true, "FromBase64String",
                "Die Base64-Zeichenfolge enthält keine Daten!");
    EXPECT_EQ(result, FromHexAt(2, "EE"));
  }
}

TEST(FromBase64String, EqualReplacementsFailBeforeTheDataIsLookedAt) {
  clsHelper01 helper;
  for (const char* text : {"", "QQ==", "#"}) {
    ByteArray result = FromHexAt(2, "EE");
    EXPECT_FALSE(helper.FromBase64String(text, result, "x", "x"));
    ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_B64ReplEqual, true, "FromBase64String",
                "Die übergebenen Ersetungszeichenfolgen sind identisch\r\n"
                "Plusersetzung:    \"+\"\r\n"
                "Schrägstrichers.: \"+\"");
    EXPECT_EQ(result, FromHexAt(2, "EE"));
  }
}

void ExpectInvalidChar(std::string_view text, std::string_view position, std::string_view character,
                       std::string_view bytes) {
  clsHelper01 helper;
  ByteArray result = FromHexAt(2, "EE");
  EXPECT_FALSE(helper.FromBase64String(text, result)) << text;
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvInvalidChar, true, "FromBase64String",
              "Es wurde ein ungültiges Zeichen in der Base64-Zeichenfolge entdeckt!\r\nZeichenposition: " +
                  std::string(position) + "\r\nZeichen .......: \"" + std::string(character) + "\"");
  EXPECT_EQ(ToHex(result), bytes);
  EXPECT_EQ(result.LBound(), 0);
}

TEST(FromBase64String, AnInvalidCharacterFailsWithItsPosition) {
  ExpectInvalidChar("QQ=#", "4", "#", "00 00 00");
  ExpectInvalidChar("#QQQ", "1", "#", "00 00 00");
  ExpectInvalidChar("Q#QQ", "2", "#", "00 00 00");
  ExpectInvalidChar("QQ#Q", "3", "#", "00 00 00");
  ExpectInvalidChar("Q Q=", "2", " ", "00 00");
  ExpectInvalidChar("\tQQ=", "1", "\t", "00 00");
}

TEST(FromBase64String, PositionsCountInTheCleanedText) {
  ExpectInvalidChar("  QU\r\nFB\r\nQ#== ", "6", "#", "41 41 41 00");
}

TEST(FromBase64String, PositionsCountUtf16CodeUnits) {
  ExpectInvalidChar("QQä=", "3", "ä", "00 00");
  ExpectInvalidChar("€QQQ", "1", "€", "00 00 00");
  clsHelper01 helper;
  ByteArray result;
  EXPECT_FALSE(helper.FromBase64String("QQ😀", result));
  EXPECT_EQ(helper.ErrorObject().ErrorNr(), 9106);
  EXPECT_NE(helper.ErrorObject().ErrorMsg().find("\r\nZeichenposition: 3\r\n"), std::string::npos);
}

TEST(FromBase64String, WhatWasDecodedBeforeAnInvalidCharacterStays) {
  ExpectInvalidChar("QUFB#UFB", "5", "#", "41 41 41 00 00 00");
  ExpectInvalidChar("QUFBQUF#", "8", "#", "41 41 41 00 00 00");
}

TEST(FromBase64String, APadInsideTheTextWritesFewerBytes) {
  EXPECT_EQ(Decode("QQ==QUFB"), "41 41 41 41 00 00");
  EXPECT_EQ(Decode("QUE=QUFB"), "41 41 41 41 41 00");
  EXPECT_EQ(Decode("QQ==QQ=="), "41 41 00 00");
  EXPECT_EQ(Decode("QQ=Q"), "41 10 00");
  EXPECT_EQ(Decode("Q=QQ"), "40 04 10");
  EXPECT_EQ(Decode("Q=Q="), "40 04");
  EXPECT_EQ(Decode("Q==="), "40");
}

TEST(FromBase64String, APadAtTheStartOfAGroupIsAFault) {
  clsHelper01 helper;
  for (const char* text : {"=QQQ", "====", "==QQ", "QUFB====", "QUFB=QQQ"}) {
    ByteArray result;
    EXPECT_FALSE(helper.FromBase64String(text, result)) << text;
    ExpectFault(helper.ErrorObject(), 6, "FromBase64String");
  }
}

TEST(FromBase64String, AFaultLeavesWhatWasDecodedBefore) {
  clsHelper01 helper;
  ByteArray result = FromHex("EE EE EE EE EE EE EE");
  EXPECT_FALSE(helper.FromBase64String("====", result));
  EXPECT_EQ(result, FromHex("00"));
  EXPECT_FALSE(helper.FromBase64String("QUFB=QQQ", result));
  EXPECT_EQ(result, FromHex("41 41 41 00 00 00"));
  EXPECT_FALSE(helper.FromBase64String("QUFBQUE=", result, "="));
  ExpectFault(helper.ErrorObject(), 9, "FromBase64String");
  EXPECT_EQ(result, FromHex("41 41 41 41 41"));
}

// The digit then counts as a pad too when the length is found.
TEST(FromBase64String, APadSignThatStandsForADigitCanBeAFault) {
  EXPECT_EQ(Decode("=AAA", "="), "F8 00 00");
  for (const char* text : {"AAA=", "AA==", "QUFBAAA="}) {
    clsHelper01 helper;
    ByteArray result;
    EXPECT_FALSE(helper.FromBase64String(text, result, "=")) << text;
    ExpectFault(helper.ErrorObject(), 9, "FromBase64String");
    EXPECT_FALSE(helper.FromBase64String(text, result, "+", "=")) << text;
    ExpectFault(helper.ErrorObject(), 9, "FromBase64String");
  }
}

TEST(FromBase64String, FailuresAreLoggedOnce) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  ByteArray result;
  helper.FromBase64String("QQ==", result, "-", "-");
  helper.FromBase64String("", result);
  helper.FromBase64String("Q", result);
  helper.FromBase64String("QQ=#", result);
  helper.FromBase64String("====", result);
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9101", "9105", "9104", "9106", "6"}));
}

/// libcrypto's text of the same bytes.
std::string Reference(const ByteArray& bytes) {
  std::vector<unsigned char> text(bytes.size() / 3 * 4 + 5);
  const int length = EVP_EncodeBlock(text.data(), bytes.data(), static_cast<int>(bytes.size()));
  return {text.begin(), text.begin() + length};
}

ByteArray RandomBytes(std::size_t count, std::uint32_t seed) {
  ByteArray bytes = ByteArray::WithBounds(0, static_cast<std::int32_t>(count) - 1);
  for (std::uint8_t& byte : bytes) {
    seed = seed * 1664525U + 1013904223U;
    byte = static_cast<std::uint8_t>(seed >> 24U);
  }
  return bytes;
}

TEST(Base64, AgreesWithLibcryptoAtEveryLength) {
  for (std::size_t length = 0; length <= 300; ++length) {
    const ByteArray bytes = RandomBytes(length, static_cast<std::uint32_t>(length));
    const std::string expected = Reference(bytes);
    ASSERT_EQ(Encode(bytes), expected) << length;
    if (length > 0) {
      ASSERT_EQ(Decode(expected), ToHex(bytes)) << length;
    }
  }
  const ByteArray bytes = RandomBytes(1000001, 7);
  EXPECT_TRUE(Encode(bytes) == Reference(bytes));
  EXPECT_TRUE(Decode(Reference(bytes)) == ToHex(bytes));
}

TEST(Base64, FindsAnInvalidCharacterAtEveryPosition) {
  const ByteArray bytes = RandomBytes(150, 99);
  const std::string text = Reference(bytes);
  for (std::size_t position = 0; position < text.size(); ++position) {
    for (const char wrong : {'#', '\0', ' ', '-', '_', '@', '[', '`', '{', ':', ',', '.', '\x7F'}) {
      if (wrong == ' ' && (position == 0 || position + 1 == text.size())) {
        continue;  // outer blanks are trimmed
      }
      std::string damaged = text;
      damaged[position] = wrong;
      clsHelper01 helper;
      ByteArray result;
      ASSERT_FALSE(helper.FromBase64String(damaged, result)) << position;
      ASSERT_EQ(helper.ErrorObject().ErrorNr(), 9106) << position;
      ASSERT_NE(helper.ErrorObject().ErrorMsg().find("\r\nZeichenposition: " + std::to_string(position + 1) +
                                                     "\r\n"),
                std::string::npos)
          << helper.ErrorObject().ErrorMsg();
      const std::size_t whole = position / 4 * 3;
      for (std::size_t i = 0; i < result.size(); ++i) {
        ASSERT_EQ(result.data()[i], i < whole ? bytes.data()[i] : 0) << position << " " << i;
      }
    }
  }
}

TEST(Base64Properties, WhatIsEncodedDecodesToTheSame) {
  EXPECT_TRUE(
      rc::check("with any line length and usable replacements", [](const std::vector<std::uint8_t>& data) {
        RC_PRE(!data.empty());
        const ByteArray bytes{std::span<const std::uint8_t>(data)};
        const auto lineLen = *rc::gen::inRange(-1, 100);
        const auto plus = *rc::gen::element<std::string>("+", "-", "~", "ä", "");
        const auto slash = *rc::gen::element<std::string>("/", "_", ".", "€", "");
        clsHelper01 helper;
        std::string text;
        RC_ASSERT(helper.ToBase64String(bytes, text, 0, 0, lineLen, plus, slash));
        ByteArray back;
        RC_ASSERT(helper.FromBase64String(text, back, plus, slash));
        RC_ASSERT(back == bytes);
      }));
}

TEST(Base64Properties, LinesHoldTheUnbrokenText) {
  EXPECT_TRUE(rc::check("line lengths", [](const std::vector<std::uint8_t>& data) {
    const ByteArray bytes{std::span<const std::uint8_t>(data)};
    const auto lineLen = *rc::gen::inRange(12, 40);
    clsHelper01 helper;
    std::string whole;
    std::string text;
    RC_ASSERT(helper.ToBase64String(bytes, whole));
    RC_ASSERT(helper.ToBase64String(bytes, text, 0, 0, lineLen));
    const Lengths lengths = LineLengths(text);
    Lengths expected;
    std::size_t remaining = whole.size();
    while (remaining > static_cast<std::size_t>(lineLen) + 1) {
      expected.push_back(static_cast<std::size_t>(lineLen));
      remaining -= static_cast<std::size_t>(lineLen);
    }
    expected.push_back(remaining);
    RC_ASSERT(lengths == expected);
    text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }),
               text.end());
    RC_ASSERT(text == whole);
  }));
}

TEST(Base64Properties, AnyArgumentsEndInABoolean) {
  EXPECT_TRUE(rc::check("ToBase64String", [](const std::vector<std::uint8_t>& data, const std::string& plus,
                                             const std::string& slash) {
    const auto index =
        rc::gen::oneOf(rc::gen::inRange(-20, 40), rc::gen::element(smallest, largest, largest - 1));
    const auto lower = *rc::gen::element(-3, 0, 0, 0, 1, 7, largest - 200);
    ByteArray bytes = ByteArray::WithBounds(lower, lower + static_cast<std::int32_t>(data.size()) - 1);
    std::copy(data.begin(), data.end(), bytes.begin());
    clsHelper01 helper;
    std::string result = "before";
    const bool done = helper.ToBase64String(bytes, result, *index, *index, *index, plus, slash);
    RC_ASSERT(done == !helper.HasError());
    if (!done) {
      RC_ASSERT(result == "before");
    }
  }));
}

TEST(Base64Properties, AnyTextEndsInABoolean) {
  EXPECT_TRUE(rc::check("FromBase64String of any text", [](const std::string& text, const std::string& plus) {
    clsHelper01 helper;
    ByteArray result;
    const bool done = helper.FromBase64String(text, result, plus, "/");
    RC_ASSERT(done == !helper.HasError());
  }));
  EXPECT_TRUE(rc::check("FromBase64String of Base64 characters", [] {
    const auto text = *rc::gen::container<std::string>(
        rc::gen::element('A', 'Q', 'z', '9', '+', '/', '=', '=', '=', ' ', '\r', '\n'));
    clsHelper01 helper;
    ByteArray result;
    const bool done = helper.FromBase64String(text, result);
    RC_ASSERT(done == !helper.HasError());
    RC_ASSERT(result.LBound() == 0);
  }));
}

}  // namespace
