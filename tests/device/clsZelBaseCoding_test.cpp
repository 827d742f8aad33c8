// The frame of clsZelBaseCoding, the two checks that guard every record, and the codings binary, text and
// flag. BCD, the typed accessors and the XML elements have files of their own.

#include "VnZEL10cmn/device/clsZelBaseCoding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/device/DeviceTesting.h"

namespace VnZEL10cmn {
namespace {

using test::ExpectError;
using test::ExpectFault;
using test::ExpectNoError;
using test::Filled;
using test::FromHex;
using test::FromHexAt;
using test::kInt32Max;
using test::Record;
using test::ToHex;

constexpr ZelTags kOperator = ZelTags::Operator;

// Frame

TEST(clsZelBaseCodingFrame, NewObjectHoldsNoErrorAndItsIdentity) {
  clsZelBaseCoding coding;
  EXPECT_FALSE(coding.HasError());
  EXPECT_EQ(coding.LogHandler(), nullptr);
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 0);
  EXPECT_EQ(coding.ErrorObject().ErrorMsg(), "");
  EXPECT_EQ(coding.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelBaseCoding");
  const std::string id = coding.ErrorObject().ErrorInstanceID();
  EXPECT_EQ(id.size(), 36U);
  EXPECT_TRUE(std::all_of(id.begin(), id.end(), [](char character) {
    return std::string_view("0123456789ABCDEF-").find(character) != std::string_view::npos;
  })) << id;
}

TEST(clsZelBaseCodingFrame, TwoObjectsHaveDifferentInstanceIds) {
  clsZelBaseCoding one;
  clsZelBaseCoding other;
  EXPECT_NE(one.ErrorObject().ErrorInstanceID(), other.ErrorObject().ErrorInstanceID());
}

TEST(clsZelBaseCodingFrame, FailureKeepsSourceAndInstance) {
  clsZelBaseCoding coding;
  const std::string id = coding.ErrorObject().ErrorInstanceID();
  ByteArray buffer = Filled(4);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, ""));
  EXPECT_TRUE(coding.HasError());
  EXPECT_EQ(coding.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelBaseCoding");
  EXPECT_EQ(coding.ErrorObject().ErrorInstanceID(), id);
  EXPECT_NE(coding.ErrorObject().ErrorTime(), NoTime);
}

TEST(clsZelBaseCodingFrame, SuccessClearsTheErrorOfTheCallBefore) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(4);
  std::int32_t start = 0;
  ASSERT_FALSE(coding.SetDataAscii(buffer, start, kOperator, ""));
  ASSERT_TRUE(coding.SetDataAscii(buffer, start, kOperator, "A"));
  ExpectNoError(coding);
  EXPECT_EQ(coding.ErrorObject().ErrorTime(), NoTime);
  EXPECT_EQ(coding.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelBaseCoding");
}

TEST(clsZelBaseCodingFrame, ChecksLeaveTheErrorObjectAlone) {
  clsZelBaseCoding coding;
  test::TestLog log;
  coding.LogHandler(log.Handler());
  std::string message;
  ZELErrorCodes number{};
  EXPECT_FALSE(coding.DataReadBaseCheck(Filled(0), 0, message, number));
  EXPECT_FALSE(coding.DataWriteBaseCheck(Filled(0), 0, 0, message, number));
  EXPECT_FALSE(coding.HasError());
  EXPECT_EQ(log.Count(), 0U);

  ByteArray buffer = Filled(4);
  std::int32_t start = 0;
  ASSERT_FALSE(coding.SetDataAscii(buffer, start, kOperator, ""));
  EXPECT_TRUE(coding.DataReadBaseCheck(FromHex("C6 00"), 0, message, number));
  EXPECT_TRUE(coding.DataWriteBaseCheck(buffer, 0, 1, message, number));
  EXPECT_TRUE(coding.HasError());
  EXPECT_EQ(coding.ErrorObject().ErrorFunction(), "SetDataAscii");
}

TEST(clsZelBaseCodingFrame, EachFailureIsLoggedOnceAndNoSuccess) {
  clsZelBaseCoding coding;
  test::TestLog log;
  coding.LogHandler(log.Handler());
  EXPECT_EQ(coding.LogHandler(), log.Handler());
  ByteArray buffer = Filled(8);
  std::int32_t start = 0;
  EXPECT_TRUE(coding.SetDataAscii(buffer, start, kOperator, "A"));
  EXPECT_EQ(log.Count(), 0U);

  std::string text;
  ByteArray bytes;
  start = 0;
  EXPECT_FALSE(coding.GetDataBinary(buffer, start, bytes, 2));
  EXPECT_FALSE(coding.GetDataAscii(buffer, start, text, 2));
  EXPECT_FALSE(coding.GetDataBcd(buffer, start, text, 2));
  EXPECT_FALSE(coding.GetDataBcdSgnd(buffer, start, text, 2));
  EXPECT_FALSE(coding.SetDataBinary(buffer, start, kOperator, Filled(7)));
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, "1234567"));
  start = 7;
  EXPECT_FALSE(coding.SetDataBool(buffer, start, kOperator, true));
  start = 0;
  EXPECT_FALSE(coding.SetDataBcd(buffer, start, kOperator, "12345678901234"));
  EXPECT_FALSE(coding.SetDataBcdSgnd(buffer, start, kOperator, "1234567890123C"));
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"GetDataBinary", "GetDataAscii", "GetDataBcd",
                                                       "GetDataBcdSgnd", "SetDataBinary", "SetDataAscii",
                                                       "SetDataBool", "SetDataBcd", "SetDataBcdSgnd"}));
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9207", "9207", "9207", "9207", "9204", "9204", "9205",
                                                     "9204", "9204"}));
}

TEST(clsZelBaseCodingFrame, LogHandlerCanBeTakenAway) {
  clsZelBaseCoding coding;
  test::TestLog log;
  coding.LogHandler(log.Handler());
  coding.LogHandler(nullptr);
  EXPECT_EQ(coding.LogHandler(), nullptr);
  ByteArray buffer = Filled(4);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, ""));
  EXPECT_EQ(log.Count(), 0U);
}

TEST(clsZelBaseCodingFrame, ClosedLogFileDoesNotDisturbTheOperation) {
  clsZelBaseCoding coding;
  coding.LogHandler(std::make_shared<clsVnLogFile>());
  ByteArray buffer = Filled(4);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, ""));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9207);
  EXPECT_TRUE(coding.SetDataAscii(buffer, start, kOperator, "AB"));
  EXPECT_FALSE(coding.HasError());
}

// Checks

struct Checked {
  bool passed;
  std::string message = "vorher";
  ZELErrorCodes number = ZELErrorCodes::Err_Log_NoObject;
};

Checked ReadCheck(const ByteArray& buffer, std::int32_t start, std::int32_t minLen = -1,
                  std::int32_t maxLen = -1, ZelTags tag = ZelTags{}) {
  clsZelBaseCoding coding;
  Checked result{};
  result.passed = coding.DataReadBaseCheck(buffer, start, result.message, result.number, minLen, maxLen, tag);
  EXPECT_FALSE(coding.HasError());
  return result;
}

Checked WriteCheck(const ByteArray& buffer, std::int32_t start, std::int32_t length) {
  clsZelBaseCoding coding;
  Checked result{};
  result.passed = coding.DataWriteBaseCheck(buffer, start, length, result.message, result.number);
  EXPECT_FALSE(coding.HasError());
  return result;
}

void ExpectPassed(const Checked& checked, int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(__FILE__, line, "expected to pass");
  EXPECT_TRUE(checked.passed);
  EXPECT_EQ(checked.message, "");
  EXPECT_EQ(checked.number, ZELErrorCodes::Err_Log_NoObject) << "written without a failure";
}

void ExpectRefused(const Checked& checked, ZELErrorCodes number, std::string_view message,
                   int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(__FILE__, line, "expected to be refused");
  EXPECT_FALSE(checked.passed);
  EXPECT_EQ(checked.number, number);
  EXPECT_EQ(checked.message, message);
}

TEST(DataReadBaseCheck, PassesARecordOfTwoBytesInABufferOfTwo) {
  ExpectPassed(ReadCheck(FromHex("C6 00"), 0));
}

TEST(DataReadBaseCheck, PassesARecordThatEndsWithTheBuffer) {
  ExpectPassed(ReadCheck(FromHex("00 00 C6 03 41 42 43"), 2));
}

TEST(DataReadBaseCheck, PassesWithAPositiveLowerBound) {
  ExpectPassed(ReadCheck(FromHexAt(5, "C6 01 41 C1 00"), 5));
  ExpectPassed(ReadCheck(FromHexAt(5, "C6 01 41 C1 00"), 8));
}

TEST(DataReadBaseCheck, RefusesANegativeLowerBound) {
  ExpectRefused(ReadCheck(FromHexAt(-1, "C6 01 41"), 0), ZELErrorCodes::Err_Zel_CnvLBound,
                "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -1");
  ExpectRefused(ReadCheck(FromHexAt(-200, "C6 01 41"), -200), ZELErrorCodes::Err_Zel_CnvLBound,
                "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -200");
}

TEST(DataReadBaseCheck, RefusesAStartOutsideTheBounds) {
  ExpectRefused(ReadCheck(FromHex("C6 01 41"), -1), ZELErrorCodes::Err_Zel_CnvRange,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: -1\r\n"
                "    Untergrenze .....: 0\r\n"
                "    Obergrenze ......: 2");
  ExpectRefused(ReadCheck(FromHex("C6 01 41"), 3), ZELErrorCodes::Err_Zel_CnvRange,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 3\r\n"
                "    Untergrenze .....: 0\r\n"
                "    Obergrenze ......: 2");
  ExpectRefused(ReadCheck(FromHexAt(5, "C6 01 41"), 4), ZELErrorCodes::Err_Zel_CnvRange,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 4\r\n"
                "    Untergrenze .....: 5\r\n"
                "    Obergrenze ......: 7");
}

TEST(DataReadBaseCheck, RefusesAnEmptyBuffer) {
  ExpectRefused(ReadCheck(ByteArray(), 0), ZELErrorCodes::Err_Zel_CnvRange,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 0\r\n"
                "    Untergrenze .....: 0\r\n"
                "    Obergrenze ......: -1");
}

TEST(DataReadBaseCheck, RefusesTheLastByte) {
  ExpectRefused(ReadCheck(FromHex("C6 01 41"), 2), ZELErrorCodes::Err_Zel_CnvInvalidStart,
                "Die Startposition ist ungültig, es kann keine Längenangabe folgen\r\n"
                "    Startposition ...: 2\r\n"
                "    Obergrenze ......: 2");
}

TEST(DataReadBaseCheck, RefusesARecordThatRunsPastTheEnd) {
  ExpectRefused(ReadCheck(FromHex("C6 02 41"), 0), ZELErrorCodes::Err_Zel_CnvDataSize,
                "Der Datenpuffer ist zu klein.\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: 0xC6\r\n"
                "    Länge ...........: 2\r\n"
                "    Leseende ........: 3\r\n"
                "    Obergrenze ......: 2");
}

TEST(DataReadBaseCheck, ShowsSmallTagsWithTwoDigits) {
  ExpectRefused(ReadCheck(FromHex("0A 02 41"), 0), ZELErrorCodes::Err_Zel_CnvDataSize,
                "Der Datenpuffer ist zu klein.\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: 0x0A\r\n"
                "    Länge ...........: 2\r\n"
                "    Leseende ........: 3\r\n"
                "    Obergrenze ......: 2");
}

TEST(DataReadBaseCheck, RefusesALengthByteOf200) {
  ByteArray buffer = Filled(300);
  buffer[0] = 0xC6;
  buffer[1] = 200;
  ExpectRefused(ReadCheck(buffer, 0), ZELErrorCodes::Err_Zel_CnvInvalidLen,
                "Ungültige Längenangabe.\r\n"
                "Die Länge eines Tags darf 127 Byte nicht überschreiten!\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: 0xC6\r\n"
                "    Länge ...........: 200");
}

TEST(DataReadBaseCheck, ReportsALengthByteOf200InAShortBufferAsTooSmall) {
  ExpectRefused(ReadCheck(FromHex("C6 C8 41"), 0), ZELErrorCodes::Err_Zel_CnvDataSize,
                "Der Datenpuffer ist zu klein.\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: 0xC6\r\n"
                "    Länge ...........: 200\r\n"
                "    Leseende ........: 201\r\n"
                "    Obergrenze ......: 2");
}

TEST(DataReadBaseCheck, Takes127BytesAndRefuses128) {
  ByteArray buffer = Filled(200);
  buffer[1] = 127;
  ExpectPassed(ReadCheck(buffer, 0));
  buffer[1] = 128;
  ExpectRefused(ReadCheck(buffer, 0), ZELErrorCodes::Err_Zel_CnvInvalidLen,
                "Ungültige Längenangabe.\r\n"
                "Die Länge eines Tags darf 127 Byte nicht überschreiten!\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: 0x00\r\n"
                "    Länge ...........: 128");
}

TEST(DataReadBaseCheck, KeepsTheMinimumLength) {
  const ByteArray buffer = FromHex("C6 03 41 42 43");
  ExpectPassed(ReadCheck(buffer, 0, 0));
  ExpectPassed(ReadCheck(buffer, 0, 3));
  ExpectRefused(ReadCheck(buffer, 0, 4), ZELErrorCodes::Err_Zel_CnvInvalidLen,
                "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: 0xC6\r\n"
                "    Länge ...........: 3\r\n"
                "    Mindestlänge ....: 4");
}

TEST(DataReadBaseCheck, KeepsTheMaximumLength) {
  const ByteArray buffer = FromHex("00 C6 03 41 42 43");
  ExpectPassed(ReadCheck(buffer, 1, -1, 3));
  ExpectRefused(ReadCheck(buffer, 1, -1, 2), ZELErrorCodes::Err_Zel_CnvInvalidLen,
                "Die Maximallänge für dieses TAG wurde überschritten\r\n"
                "    Startposition ...: 1\r\n"
                "    Tag .............: 0xC6\r\n"
                "    Länge ...........: 3\r\n"
                "    Maximallänge ....: 2");
  ExpectRefused(ReadCheck(buffer, 1, -1, 0), ZELErrorCodes::Err_Zel_CnvInvalidLen,
                "Die Maximallänge für dieses TAG wurde überschritten\r\n"
                "    Startposition ...: 1\r\n"
                "    Tag .............: 0xC6\r\n"
                "    Länge ...........: 3\r\n"
                "    Maximallänge ....: 0");
}

TEST(DataReadBaseCheck, NegativeLimitsAreNone) {
  ExpectPassed(ReadCheck(FromHex("C6 00"), 0, -1, -1));
  ExpectPassed(ReadCheck(FromHex("C6 01 41"), 0, -5, -5));
}

TEST(DataReadBaseCheck, RefusesAnotherTagThanExpected) {
  ExpectPassed(ReadCheck(FromHex("C6 01 41"), 0, -1, -1, ZelTags::Operator));
  ExpectRefused(ReadCheck(FromHex("C6 01 41"), 0, -1, -1, ZelTags::Serial_No),
                ZELErrorCodes::Err_Zel_CnvInvalidLen,
                "Es wurde nicht das erwartete Tag gefunden\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag erwartet ....: 0xC1 // 193\r\n"
                "    Tag gefunden ....: 0xC6 // 198");
  ExpectRefused(ReadCheck(FromHex("05 01 41"), 0, -1, -1, ZelTags::Serial_No),
                ZELErrorCodes::Err_Zel_CnvInvalidLen,
                "Es wurde nicht das erwartete Tag gefunden\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag erwartet ....: 0xC1 // 193\r\n"
                "    Tag gefunden ....: 0x05 // 5");
}

TEST(DataReadBaseCheck, ChecksInItsOrder) {
  // Each case breaks everything from its own check on; the first check decides.
  const auto number = [](const ByteArray& buffer, std::int32_t start) {
    return static_cast<int>(ReadCheck(buffer, start, 250, 0, ZelTags::Serial_No).number);
  };
  EXPECT_EQ(number(FromHexAt(-3, "C6 FF 00"), 9), 9202);
  EXPECT_EQ(number(FromHex("C6 FF 00"), 3), 9203);
  EXPECT_EQ(number(FromHex("C6 FF 00"), 2), 9205);
  EXPECT_EQ(number(FromHex("C6 FF 00"), 0), 9204);

  ByteArray buffer = Filled(300);
  buffer[1] = 0xFF;
  const auto message = [&](std::int32_t minLen, std::int32_t maxLen) {
    return ReadCheck(buffer, 0, minLen, maxLen, ZelTags::Serial_No).message;
  };
  EXPECT_TRUE(message(256, 0).starts_with("Ungültige Längenangabe."));
  buffer[1] = 5;
  EXPECT_TRUE(message(6, 4).starts_with("Die Mindestlänge"));
  EXPECT_TRUE(message(5, 4).starts_with("Die Maximallänge"));
  EXPECT_TRUE(message(5, 5).starts_with("Es wurde nicht das erwartete Tag gefunden"));
}

TEST(DataReadBaseCheck, SumsNeverWrapNearTheLargestIndex) {
  ExpectRefused(ReadCheck(FromHex("C6 01 41"), kInt32Max), ZELErrorCodes::Err_Zel_CnvRange,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 2147483647\r\n"
                "    Untergrenze .....: 0\r\n"
                "    Obergrenze ......: 2");
  const ByteArray top = FromHexAt(kInt32Max - 3, "C6 02 41 42");
  ExpectPassed(ReadCheck(top, kInt32Max - 3));
  ExpectRefused(ReadCheck(top, kInt32Max), ZELErrorCodes::Err_Zel_CnvInvalidStart,
                "Die Startposition ist ungültig, es kann keine Längenangabe folgen\r\n"
                "    Startposition ...: 2147483647\r\n"
                "    Obergrenze ......: 2147483647");
  ExpectRefused(ReadCheck(FromHexAt(kInt32Max - 3, "C6 7F 41 42"), kInt32Max - 3),
                ZELErrorCodes::Err_Zel_CnvDataSize,
                "Der Datenpuffer ist zu klein.\r\n"
                "    Startposition ...: 2147483644\r\n"
                "    Tag .............: 0xC6\r\n"
                "    Länge ...........: 127\r\n"
                "    Leseende ........: 2147483772\r\n"
                "    Obergrenze ......: 2147483647");
  EXPECT_EQ(ReadCheck(FromHex("C6 00"), std::numeric_limits<std::int32_t>::min()).number,
            ZELErrorCodes::Err_Zel_CnvRange);
}

TEST(DataWriteBaseCheck, PassesARecordThatJustFits) {
  ExpectPassed(WriteCheck(Filled(2), 0, 0));
  ExpectPassed(WriteCheck(Filled(5), 0, 3));
  ExpectPassed(WriteCheck(ByteArray::WithBounds(5, 9), 5, 3));
}

TEST(DataWriteBaseCheck, RefusesANegativeLengthBeforeEverythingElse) {
  ExpectRefused(WriteCheck(Filled(5), 0, -1), ZELErrorCodes::Err_Cmn_InvalidParam,
                "Der Parameter \"Length\" weist einen ungültigen Wert auf\r\nLength: -1");
  ExpectRefused(WriteCheck(ByteArray::WithBounds(-1, 5), 77, -12), ZELErrorCodes::Err_Cmn_InvalidParam,
                "Der Parameter \"Length\" weist einen ungültigen Wert auf\r\nLength: -12");
}

TEST(DataWriteBaseCheck, RefusesANegativeLowerBound) {
  ExpectRefused(WriteCheck(ByteArray::WithBounds(-2, 5), 0, 1), ZELErrorCodes::Err_Zel_CnvLBound,
                "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -2");
}

TEST(DataWriteBaseCheck, RefusesAStartOutsideTheBounds) {
  ExpectRefused(WriteCheck(Filled(3), -1, 0), ZELErrorCodes::Err_Zel_CnvRange,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: -1\r\n"
                "    Untergrenze .....: 0\r\n"
                "    Obergrenze ......: 2");
  ExpectRefused(WriteCheck(Filled(3), 3, 0), ZELErrorCodes::Err_Zel_CnvRange,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 3\r\n"
                "    Untergrenze .....: 0\r\n"
                "    Obergrenze ......: 2");
  ExpectRefused(WriteCheck(ByteArray(), 0, 0), ZELErrorCodes::Err_Zel_CnvRange,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 0\r\n"
                "    Untergrenze .....: 0\r\n"
                "    Obergrenze ......: -1");
}

TEST(DataWriteBaseCheck, RefusesTheLastByte) {
  ExpectRefused(WriteCheck(Filled(3), 2, 0), ZELErrorCodes::Err_Zel_CnvInvalidStart,
                "Die Startposition ist ungültig, es kann keine Längenangabe folgen\r\n"
                "    Startposition ...: 2\r\n"
                "    Obergrenze ......: 2");
}

TEST(DataWriteBaseCheck, RefusesARecordThatDoesNotFit) {
  ExpectRefused(WriteCheck(Filled(5), 0, 4), ZELErrorCodes::Err_Zel_CnvDataSize,
                "Der Datenpuffer ist zu klein.\r\n"
                "    Startposition ...: 0\r\n"
                "    Länge ...........: 4\r\n"
                "    Schreibende .....: 5\r\n"
                "    Obergrenze ......: 4");
}

TEST(DataWriteBaseCheck, Takes127BytesAndRefuses128) {
  ByteArray buffer = Filled(200);
  buffer[0] = 0x5A;
  ExpectPassed(WriteCheck(buffer, 0, 127));
  ExpectRefused(WriteCheck(buffer, 0, 128), ZELErrorCodes::Err_Zel_CnvInvalidLen,
                "Ungültige Längenangabe.\r\n"
                "Die Länge eines Tags darf 127 Byte nicht überschreiten!\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: 0x5A\r\n"
                "    Länge ...........: 128");
  EXPECT_EQ(WriteCheck(Filled(129), 0, 128).number, ZELErrorCodes::Err_Zel_CnvDataSize);
  EXPECT_EQ(WriteCheck(Filled(130), 0, 128).number, ZELErrorCodes::Err_Zel_CnvInvalidLen);
}

TEST(DataWriteBaseCheck, SumsNeverWrapNearTheLargestIndex) {
  ExpectRefused(WriteCheck(Filled(5), 1, kInt32Max), ZELErrorCodes::Err_Zel_CnvDataSize,
                "Der Datenpuffer ist zu klein.\r\n"
                "    Startposition ...: 1\r\n"
                "    Länge ...........: 2147483647\r\n"
                "    Schreibende .....: 2147483649\r\n"
                "    Obergrenze ......: 4");
  EXPECT_EQ(WriteCheck(Filled(5), kInt32Max, kInt32Max).number, ZELErrorCodes::Err_Zel_CnvRange);
  ExpectPassed(WriteCheck(ByteArray::WithBounds(kInt32Max - 3, kInt32Max), kInt32Max - 3, 2));
  EXPECT_EQ(WriteCheck(ByteArray::WithBounds(kInt32Max - 3, kInt32Max), kInt32Max - 3, 3).number,
            ZELErrorCodes::Err_Zel_CnvDataSize);
}

// Binary

TEST(GetDataBinary, ReadsTheValueAndAdvances) {
  clsZelBaseCoding coding;
  const ByteArray buffer = FromHex("00 C7 03 0A 0B 0C FF");
  std::int32_t start = 1;
  ByteArray result = FromHex("77");
  EXPECT_TRUE(coding.GetDataBinary(buffer, start, result));
  EXPECT_EQ(start, 6);
  EXPECT_EQ(result, FromHex("0A 0B 0C"));
  ExpectNoError(coding);
}

TEST(GetDataBinary, ReadsAnEmptyValue) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  ByteArray result = FromHex("77");
  EXPECT_TRUE(coding.GetDataBinary(FromHex("C7 00"), start, result));
  EXPECT_EQ(start, 2);
  EXPECT_EQ(result.size(), 0U);
  EXPECT_EQ(result.LBound(), 0);
  EXPECT_EQ(result.UBound(), -1);
}

TEST(GetDataBinary, ResultIsZeroBasedWhateverTheBounds) {
  clsZelBaseCoding coding;
  std::int32_t start = 10;
  ByteArray result = ByteArray::WithBounds(4, 9);
  EXPECT_TRUE(coding.GetDataBinary(FromHexAt(10, "C7 02 AA BB"), start, result));
  EXPECT_EQ(start, 14);
  EXPECT_EQ(result, FromHex("AA BB"));
}

TEST(GetDataBinary, Reads127Bytes) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  ByteArray result;
  EXPECT_TRUE(coding.GetDataBinary(Record(0xC7, 127, 0xEE), start, result, 127, 127));
  EXPECT_EQ(start, 129);
  EXPECT_EQ(result, Filled(127, 0xEE));
}

TEST(GetDataBinary, TakesAnyTag) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  ByteArray result;
  EXPECT_TRUE(coding.GetDataBinary(FromHex("00 01 AA"), start, result));
  EXPECT_EQ(start, 3);
}

TEST(GetDataBinary, FilesTheFailureOfTheCheck) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  ByteArray result = FromHex("77");
  EXPECT_FALSE(coding.GetDataBinary(FromHex("C7 02 AA BB"), start, result, 3));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "GetDataBinary",
              "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0xC7\r\n"
              "    Länge ...........: 2\r\n"
              "    Mindestlänge ....: 3");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(result, FromHex("77"));

  EXPECT_FALSE(coding.GetDataBinary(FromHex("C7 02 AA BB"), start, result, -1, 1));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "GetDataBinary",
              "Die Maximallänge für dieses TAG wurde überschritten\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0xC7\r\n"
              "    Länge ...........: 2\r\n"
              "    Maximallänge ....: 1");
  EXPECT_FALSE(coding.GetDataBinary(FromHexAt(-1, "C7 00"), start, result));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvLBound, true, "GetDataBinary",
              "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -1");
  EXPECT_EQ(start, 0);
}

TEST(GetDataBinary, StartMayBecomeTheLargestIndex) {
  clsZelBaseCoding coding;
  std::int32_t start = kInt32Max - 4;
  ByteArray result;
  EXPECT_TRUE(coding.GetDataBinary(FromHexAt(kInt32Max - 4, "C7 02 AA BB"), start, result));
  EXPECT_EQ(start, kInt32Max);
}

TEST(GetDataBinary, StartBeyondTheLargestIndexIsAFault) {
  clsZelBaseCoding coding;
  std::int32_t start = kInt32Max - 3;
  ByteArray result;
  EXPECT_FALSE(coding.GetDataBinary(FromHexAt(kInt32Max - 3, "C7 02 AA BB"), start, result));
  EXPECT_EQ(start, kInt32Max - 3);
  ExpectFault(coding.ErrorObject(), 6, "GetDataBinary");
}

// A record may end at the last index that there is, but no position lies behind it.
TEST(SetDataAscii, ARecordThatEndsAtTheLastIndexIsAFault) {
  clsZelBaseCoding coding;
  ByteArray buffer = ByteArray::WithBounds(kInt32Max - 3, kInt32Max);
  std::int32_t start = kInt32Max - 3;
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, ZelTags::Operator, "AB"));
  ExpectFault(coding.ErrorObject(), 6, "SetDataAscii");
  EXPECT_EQ(start, kInt32Max - 3);
  EXPECT_EQ(buffer, FromHexAt(kInt32Max - 3, "C6 02 41 42"));
}

TEST(SetDataBcd, ARecordThatEndsAtTheLastIndexIsAFault) {
  clsZelBaseCoding coding;
  ByteArray buffer = ByteArray::WithBounds(kInt32Max - 3, kInt32Max);
  std::int32_t start = kInt32Max - 3;
  EXPECT_FALSE(coding.SetDataBcd(buffer, start, ZelTags::Trnvr_Counter, "1234"));
  ExpectFault(coding.ErrorObject(), 6, "SetDataBcd");
  EXPECT_EQ(start, kInt32Max - 3);
  EXPECT_EQ(buffer, FromHexAt(kInt32Max - 3, "DC 02 12 34"));
}

TEST(SetDataBinary, WritesTagLengthAndValue) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(7, 0xEE);
  std::int32_t start = 1;
  EXPECT_TRUE(coding.SetDataBinary(buffer, start, ZelTags::Hash_Trans_Items, FromHex("0A 0B 0C")));
  EXPECT_EQ(ToHex(buffer), "EE C7 03 0A 0B 0C EE");
  EXPECT_EQ(start, 6);
  ExpectNoError(coding);
}

TEST(SetDataBinary, WritesAnEmptyValue) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(2, 0xEE);
  std::int32_t start = 0;
  EXPECT_TRUE(coding.SetDataBinary(buffer, start, ZelTags{0x01}, ByteArray()));
  EXPECT_EQ(ToHex(buffer), "01 00");
  EXPECT_EQ(start, 2);
}

TEST(SetDataBinary, WritesIntoABufferWithAPositiveLowerBound) {
  clsZelBaseCoding coding;
  ByteArray buffer = ByteArray::WithBounds(20, 23);
  std::int32_t start = 20;
  EXPECT_TRUE(coding.SetDataBinary(buffer, start, ZelTags{0xC7}, FromHex("AA BB")));
  EXPECT_EQ(ToHex(buffer), "C7 02 AA BB");
  EXPECT_EQ(buffer.LBound(), 20);
  EXPECT_EQ(start, 24);
}

TEST(SetDataBinary, Takes127BytesAndRefuses128) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(140, 0x5A);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBinary(buffer, start, ZelTags{0xC7}, Filled(128)));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataBinary",
              "Ungültige Längenangabe.\r\n"
              "Die Länge eines Tags darf 127 Byte nicht überschreiten!\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0x5A\r\n"
              "    Länge ...........: 128");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(buffer, Filled(140, 0x5A));

  EXPECT_TRUE(coding.SetDataBinary(buffer, start, ZelTags{0xC7}, Filled(127, 0x11)));
  EXPECT_EQ(start, 129);
  EXPECT_EQ(buffer[1], 127);
  EXPECT_EQ(buffer[128], 0x11);
  EXPECT_EQ(buffer[129], 0x5A);
}

TEST(SetDataBinary, Reports128BytesInAShortBufferAsTooSmall) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(129);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBinary(buffer, start, ZelTags{0xC7}, Filled(128)));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "SetDataBinary",
              "Der Datenpuffer ist zu klein.\r\n"
              "    Startposition ...: 0\r\n"
              "    Länge ...........: 128\r\n"
              "    Schreibende .....: 129\r\n"
              "    Obergrenze ......: 128");
}

TEST(SetDataBinary, NeverGrowsTheBuffer) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(4, 0xEE);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBinary(buffer, start, ZelTags{0xC7}, Filled(3)));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9204);
  EXPECT_EQ(buffer, Filled(4, 0xEE));
  EXPECT_EQ(start, 0);
}

TEST(SetDataBinary, RefusesDataWithANegativeLowerBoundBeforeLookingAtTheBuffer) {
  clsZelBaseCoding coding;
  ByteArray buffer;
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBinary(buffer, start, ZelTags{0xC7}, ByteArray::WithBounds(-4, 4)));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvLBound, true, "SetDataBinary",
              "Die Untergrenze des Datenpuffers ist nicht \"0\"\r\nUntergrenze: -4");
}

TEST(SetDataBinary, RefusesABufferWithANegativeLowerBound) {
  clsZelBaseCoding coding;
  ByteArray buffer = ByteArray::WithBounds(-4, 40);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBinary(buffer, start, ZelTags{0xC7}, FromHex("01")));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvLBound, true, "SetDataBinary",
              "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -4");
  EXPECT_EQ(start, 0);
}

TEST(SetDataBinary, DataWithAPositiveLowerBoundIsAFault) {
  clsZelBaseCoding coding;
  test::TestLog log;
  coding.LogHandler(log.Handler());
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBinary(buffer, start, ZelTags{0xC7}, FromHexAt(1, "AA BB CC")));
  ExpectFault(coding.ErrorObject(), 9, "SetDataBinary");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"SetDataBinary"});
  // The length that counts is the upper bound + 1.
  ByteArray small = Filled(5);
  EXPECT_FALSE(coding.SetDataBinary(small, start, ZelTags{0xC7}, FromHexAt(1, "AA BB CC")));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9204);
}

TEST(SetDataBinary, DataThatEndsAtTheLargestIndexIsRefused) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBinary(buffer, start, ZelTags{0xC7}, FromHexAt(kInt32Max - 1, "AA BB")));
  EXPECT_TRUE(coding.HasError());
  EXPECT_EQ(start, 0);
  EXPECT_EQ(buffer, Filled(20));
}

// Text

TEST(GetDataAscii, ReadsTheTextAndAdvances) {
  clsZelBaseCoding coding;
  std::int32_t start = 1;
  std::string result = "vorher";
  EXPECT_TRUE(coding.GetDataAscii(FromHex("00 C6 05 41 42 20 7A 39"), start, result));
  EXPECT_EQ(result, "AB z9");
  EXPECT_EQ(start, 8);
  ExpectNoError(coding);
}

TEST(GetDataAscii, ReadsAnEmptyText) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result = "vorher";
  EXPECT_TRUE(coding.GetDataAscii(FromHex("C6 00"), start, result));
  EXPECT_EQ(result, "");
  EXPECT_EQ(start, 2);
}

TEST(GetDataAscii, TakesTheCharacters32To127) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result;
  EXPECT_TRUE(coding.GetDataAscii(FromHex("C6 03 20 7E 7F"), start, result));
  EXPECT_EQ(result, " ~\x7F");
  EXPECT_EQ(start, 5);
}

TEST(GetDataAscii, RefusesTheCharacter31) {
  clsZelBaseCoding coding;
  std::int32_t start = 2;
  std::string result;
  EXPECT_FALSE(coding.GetDataAscii(FromHex("00 00 C6 05 41 42 1F 43 44"), start, result));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidChar, true, "GetDataAscii",
              "Es wurde ein ungültiger Zeichenwert gefunden!\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 5\r\n"
              "    Position total ..: 6\r\n"
              "    Position Tag ....: 2\r\n"
              "    Zeichenwert .....: 31 // 0x1F");
  EXPECT_EQ(start, 2);
  EXPECT_EQ(result, "AB   ");
}

TEST(GetDataAscii, RefusesTheCharacters128AndZero) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result;
  EXPECT_FALSE(coding.GetDataAscii(FromHex("C6 01 80"), start, result));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidChar, true, "GetDataAscii",
              "Es wurde ein ungültiger Zeichenwert gefunden!\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 1\r\n"
              "    Position total ..: 2\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichenwert .....: 128 // 0x80");
  EXPECT_EQ(result, " ");
  EXPECT_FALSE(coding.GetDataAscii(FromHex("C6 01 00"), start, result));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidChar, true, "GetDataAscii",
              "Es wurde ein ungültiger Zeichenwert gefunden!\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 1\r\n"
              "    Position total ..: 2\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichenwert .....: 0 // 0x00");
  EXPECT_EQ(start, 0);
}

TEST(GetDataAscii, FilesTheFailureOfTheCheck) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result = "vorher";
  EXPECT_FALSE(coding.GetDataAscii(FromHex("C6 02 41 42"), start, result, -1, 1));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "GetDataAscii",
              "Die Maximallänge für dieses TAG wurde überschritten\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Länge ...........: 2\r\n"
              "    Maximallänge ....: 1");
  EXPECT_EQ(start, 0);
}

TEST(SetDataAscii, WritesTagLengthAndText) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(8, 0xEE);
  std::int32_t start = 1;
  EXPECT_TRUE(coding.SetDataAscii(buffer, start, kOperator, "AB~ "));
  EXPECT_EQ(ToHex(buffer), "EE C6 04 41 42 7E 20 EE");
  EXPECT_EQ(start, 7);
  ExpectNoError(coding);
}

TEST(SetDataAscii, WritesTheCharacters32And127) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(4);
  std::int32_t start = 0;
  EXPECT_TRUE(coding.SetDataAscii(buffer, start, kOperator, " \x7F"));
  EXPECT_EQ(ToHex(buffer), "C6 02 20 7F");
}

TEST(SetDataAscii, RefusesAnEmptyText) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(8);
  std::int32_t start = 3;
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, ""));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataAscii",
              "Leere Zeichenfolgen sind nicht erlaubt!\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 0\r\n"
              "    Position Tag ....: 3");
  EXPECT_EQ(start, 3);
  EXPECT_EQ(buffer, Filled(8));
}

TEST(SetDataAscii, EmptyTextIsFoundBeforeABadBuffer) {
  clsZelBaseCoding coding;
  ByteArray buffer;
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, ""));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9207);
}

TEST(SetDataAscii, RefusesUmlautsNamingThePosition) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(10, 0xEE);
  std::int32_t start = 1;
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, "Müller"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataAscii",
              "Ungültiges Zeichen in der Zeichenfolge\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 6\r\n"
              "    Position Tag ....: 1\r\n"
              "    Zeichen .........: \"ü\" (0xFC - 252)\r\n"
              "    Zeichenposition .: 2");
  EXPECT_EQ(start, 1);
  // Tag, length and the characters before the bad one are in the buffer by then.
  EXPECT_EQ(ToHex(buffer), "EE C6 06 4D EE EE EE EE EE EE");
}

TEST(SetDataAscii, RefusesControlCharactersAndTheEuroSign) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(10);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, "ABC\x1F"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataAscii",
              "Ungültiges Zeichen in der Zeichenfolge\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 4\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"\x1F\" (0x1F - 31)\r\n"
              "    Zeichenposition .: 4");
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, "\t"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataAscii",
              "Ungültiges Zeichen in der Zeichenfolge\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 1\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"\t\" (0x09 - 9)\r\n"
              "    Zeichenposition .: 1");
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, "5€"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataAscii",
              "Ungültiges Zeichen in der Zeichenfolge\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 2\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"€\" (0x80 - 128)\r\n"
              "    Zeichenposition .: 2");
}

TEST(SetDataAscii, CharactersThatTheCodePageLacksBecomeQuestionMarks) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(4);
  std::int32_t start = 0;
  EXPECT_TRUE(coding.SetDataAscii(buffer, start, kOperator, "AΩ"));
  EXPECT_EQ(ToHex(buffer), "C6 02 41 3F");
  EXPECT_EQ(start, 4);
}

TEST(SetDataAscii, CountsCharactersInUtf16Units) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  // A character beyond U+FFFF counts as two; each gives one question mark.
  EXPECT_TRUE(coding.SetDataAscii(buffer, start, kOperator, "😀a"));
  EXPECT_EQ(start, 5);
  EXPECT_EQ(buffer[1], 3);
  EXPECT_EQ(buffer[4], 'a');
  start = 0;
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, "😀ü"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataAscii",
              "Ungültiges Zeichen in der Zeichenfolge\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 3\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"ü\" (0xFC - 252)\r\n"
              "    Zeichenposition .: 3");
}

TEST(SetDataAscii, Takes127CharactersAndRefuses128) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(140);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, std::string(128, 'x')));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataAscii",
              "Ungültige Längenangabe.\r\n"
              "Die Länge eines Tags darf 127 Byte nicht überschreiten!\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0x00\r\n"
              "    Länge ...........: 128");
  EXPECT_TRUE(coding.SetDataAscii(buffer, start, kOperator, std::string(127, 'x')));
  EXPECT_EQ(start, 129);
}

TEST(SetDataAscii, TheBufferIsCheckedBeforeTheCharacters) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(5, 0xEE);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataAscii(buffer, start, kOperator, "üüüü"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "SetDataAscii",
              "Der Datenpuffer ist zu klein.\r\n"
              "    Startposition ...: 0\r\n"
              "    Länge ...........: 4\r\n"
              "    Schreibende .....: 5\r\n"
              "    Obergrenze ......: 4");
  EXPECT_EQ(buffer, Filled(5, 0xEE));
}

// Flags

TEST(SetDataBool, WritesTrueAsAnEmptyRecordOfTwoBytes) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(2, 0xEE);
  std::int32_t start = 0;
  EXPECT_TRUE(coding.SetDataBool(buffer, start, ZelTags::Training, true));
  EXPECT_EQ(ToHex(buffer), "CA 00");
  EXPECT_EQ(start, 2);
  ExpectNoError(coding);
}

TEST(SetDataBool, WritesNothingForFalse) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(2, 0xEE);
  std::int32_t start = 0;
  EXPECT_TRUE(coding.SetDataBool(buffer, start, ZelTags::Training, false));
  EXPECT_EQ(ToHex(buffer), "EE EE");
  EXPECT_EQ(start, 0);
}

TEST(SetDataBool, FalseNeedsNoBufferAtAll) {
  clsZelBaseCoding coding;
  ByteArray empty;
  std::int32_t start = 0;
  EXPECT_TRUE(coding.SetDataBool(empty, start, ZelTags::Training, false));
  EXPECT_EQ(start, 0);
  EXPECT_EQ(empty.size(), 0U);
  ByteArray negative = ByteArray::WithBounds(-3, 3);
  start = 500;
  EXPECT_TRUE(coding.SetDataBool(negative, start, ZelTags::Training, false));
  EXPECT_EQ(start, 500);
  ExpectNoError(coding);
}

TEST(SetDataBool, FilesTheFailureOfTheCheck) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(2, 0xEE);
  std::int32_t start = 1;
  EXPECT_FALSE(coding.SetDataBool(buffer, start, ZelTags::Training, true));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidStart, true, "SetDataBool",
              "Die Startposition ist ungültig, es kann keine Längenangabe folgen\r\n"
              "    Startposition ...: 1\r\n"
              "    Obergrenze ......: 1");
  start = 2;
  EXPECT_FALSE(coding.SetDataBool(buffer, start, ZelTags::Training, true));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvRange, true, "SetDataBool",
              "Die Startposition ist ungültig\r\n"
              "    Startposition ...: 2\r\n"
              "    Untergrenze .....: 0\r\n"
              "    Obergrenze ......: 1");
  EXPECT_EQ(start, 2);
  EXPECT_EQ(ToHex(buffer), "EE EE");
}

}  // namespace
}  // namespace VnZEL10cmn
