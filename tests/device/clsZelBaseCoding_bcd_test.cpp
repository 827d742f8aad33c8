// Packed BCD, unsigned and signed.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "tests/device/DeviceTesting.h"

namespace VnZEL10cmn {
namespace {

using test::ExpectError;
using test::ExpectFailure;
using test::ExpectNoError;
using test::Filled;
using test::FromHex;
using test::FromHexAt;
using test::ToHex;

constexpr ZelTags kTag = ZelTags::Trnvr;  // 0xD8

std::string ReadBcd(std::string_view record) {
  clsZelBaseCoding coding;
  const ByteArray buffer = FromHex(record);
  std::int32_t start = 0;
  std::string result = "vorher";
  EXPECT_TRUE(coding.GetDataBcd(buffer, start, result)) << record;
  EXPECT_EQ(start, static_cast<std::int32_t>(buffer.size()));
  ExpectNoError(coding);
  return result;
}

std::string ReadBcdSgnd(std::string_view record) {
  clsZelBaseCoding coding;
  const ByteArray buffer = FromHex(record);
  std::int32_t start = 0;
  std::string result = "vorher";
  EXPECT_TRUE(coding.GetDataBcdSgnd(buffer, start, result)) << record;
  EXPECT_EQ(start, static_cast<std::int32_t>(buffer.size()));
  ExpectNoError(coding);
  return result;
}

// What the writer leaves in a buffer that it must not touch beyond its record; "" after a failure.
std::string WriteBcd(std::string_view digits, bool leadZeroOk = false) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(160, 0xEE);
  std::int32_t start = 0;
  if (!coding.SetDataBcd(buffer, start, kTag, digits, leadZeroOk)) {
    return "";
  }
  EXPECT_EQ(buffer[start], 0xEE);
  buffer.RedimPreserve(start - 1);
  ExpectNoError(coding);
  return ToHex(buffer);
}

std::string WriteBcdSgnd(std::string_view digits) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(160, 0xEE);
  std::int32_t start = 0;
  if (!coding.SetDataBcdSgnd(buffer, start, kTag, digits)) {
    return "";
  }
  EXPECT_EQ(buffer[start], 0xEE);
  buffer.RedimPreserve(start - 1);
  ExpectNoError(coding);
  return ToHex(buffer);
}

// Reading unsigned

TEST(GetDataBcd, ReadsDigitsWithoutLeadingZeros) {
  EXPECT_EQ(ReadBcd("D8 02 01 23"), "123");
  EXPECT_EQ(ReadBcd("D8 02 12 34"), "1234");
  EXPECT_EQ(ReadBcd("D8 01 07"), "7");
  EXPECT_EQ(ReadBcd("D8 03 00 10 00"), "1000");
}

TEST(GetDataBcd, KeepsOneDigitOfZeros) {
  EXPECT_EQ(ReadBcd("D8 02 00 00"), "0");
  EXPECT_EQ(ReadBcd("D8 01 00"), "0");
}

TEST(GetDataBcd, ReadsAnEmptyValueAsNoDigits) { EXPECT_EQ(ReadBcd("D8 00"), ""); }

TEST(GetDataBcd, ReadsFromABufferWithAPositiveLowerBound) {
  clsZelBaseCoding coding;
  std::int32_t start = 9;
  std::string result;
  EXPECT_TRUE(coding.GetDataBcd(FromHexAt(9, "D8 02 12 34"), start, result));
  EXPECT_EQ(result, "1234");
  EXPECT_EQ(start, 13);
}

TEST(GetDataBcd, RefusesANibbleAboveNine) {
  clsZelBaseCoding coding;
  std::int32_t start = 1;
  std::string result;
  EXPECT_FALSE(coding.GetDataBcd(FromHex("00 D8 01 1A"), start, result));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "GetDataBcd",
              "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Taglänge ........: 1\r\n"
              "    Position Tag ....: 1\r\n"
              "    Pos. Zeichenf. ..: 2\r\n"
              "    Zeichenfolge ....: 1A\r\n"
              "    Zeichen .........: A");
  EXPECT_EQ(start, 1);
  EXPECT_EQ(result, "1A");
}

TEST(GetDataBcd, NamesTheFirstBadNibble) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result;
  EXPECT_FALSE(coding.GetDataBcd(FromHex("D8 03 00 F1 BC"), start, result));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "GetDataBcd",
              "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Taglänge ........: 3\r\n"
              "    Position Tag ....: 0\r\n"
              "    Pos. Zeichenf. ..: 3\r\n"
              "    Zeichenfolge ....: 00F1BC\r\n"
              "    Zeichen .........: F");
  EXPECT_EQ(start, 0);
}

TEST(GetDataBcd, EveryNibbleFromTenOnIsRefused) {
  for (const char* record : {"D8 01 A0", "D8 01 B0", "D8 01 C0", "D8 01 D0", "D8 01 E0", "D8 01 F0"}) {
    clsZelBaseCoding coding;
    std::int32_t start = 0;
    std::string result;
    EXPECT_FALSE(coding.GetDataBcd(FromHex(record), start, result)) << record;
    EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9208) << record;
    EXPECT_EQ(start, 0) << record;
  }
}

TEST(GetDataBcd, FilesTheFailureOfTheCheckBeforeLookingAtTheDigits) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result = "vorher";
  EXPECT_FALSE(coding.GetDataBcd(FromHex("D8 02 AA AA"), start, result, 3));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "GetDataBcd",
              "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Länge ...........: 2\r\n"
              "    Mindestlänge ....: 3");
  EXPECT_FALSE(coding.GetDataBcd(FromHex("D8 02 AA AA"), start, result, -1, 1));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "GetDataBcd",
              "Die Maximallänge für dieses TAG wurde überschritten\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Länge ...........: 2\r\n"
              "    Maximallänge ....: 1");
  EXPECT_EQ(start, 0);
}

// Reading signed

TEST(GetDataBcdSgnd, ReadsTheSign) {
  EXPECT_EQ(ReadBcdSgnd("D8 02 12 3D"), "-123");
  EXPECT_EQ(ReadBcdSgnd("D8 02 12 3C"), "123");
  EXPECT_EQ(ReadBcdSgnd("D8 03 12 34 5D"), "-12345");
  EXPECT_EQ(ReadBcdSgnd("D8 02 04 2C"), "42");
}

TEST(GetDataBcdSgnd, RemovesLeadingZeros) {
  EXPECT_EQ(ReadBcdSgnd("D8 03 00 00 5D"), "-5");
  EXPECT_EQ(ReadBcdSgnd("D8 03 00 00 0C"), "0");
  EXPECT_EQ(ReadBcdSgnd("D8 01 0C"), "0");
}

TEST(GetDataBcdSgnd, EverySignNibbleButDMeansPositive) {
  EXPECT_EQ(ReadBcdSgnd("D8 01 1A"), "1");
  EXPECT_EQ(ReadBcdSgnd("D8 01 1F"), "1");
  EXPECT_EQ(ReadBcdSgnd("D8 01 12"), "1");
  EXPECT_EQ(ReadBcdSgnd("D8 02 00 00"), "0");
}

TEST(GetDataBcdSgnd, RefusesANegativeZero) {
  clsZelBaseCoding coding;
  std::int32_t start = 2;
  std::string result;
  EXPECT_FALSE(coding.GetDataBcdSgnd(FromHex("00 00 D8 01 0D"), start, result));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidDtaFmt, true, "GetDataBcdSgnd",
              "Das Datenformat ist ungültig (Nullwert mit \"-\"-Kennzeichen!)\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Taglänge ........: 1\r\n"
              "    Position total ..: 2\r\n"
              "    Dekodierter Wert : & Result");
  EXPECT_EQ(start, 2);
  EXPECT_EQ(result, "0");
  EXPECT_FALSE(coding.GetDataBcdSgnd(FromHex("00 00 D8 03 00 00 0D"), start, result));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9209);
  EXPECT_EQ(start, 2);
}

TEST(GetDataBcdSgnd, RefusesABadDigit) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result;
  EXPECT_FALSE(coding.GetDataBcdSgnd(FromHex("D8 02 1B 2C"), start, result));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "GetDataBcdSgnd",
              "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Taglänge ........: 2\r\n"
              "    Position Tag ....: 0\r\n"
              "    Pos. Zeichenf. ..: 2\r\n"
              "    Zeichenfolge ....: 1B2C\r\n"
              "    Zeichen .........: B");
  EXPECT_EQ(start, 0);
  EXPECT_FALSE(coding.GetDataBcdSgnd(FromHex("D8 01 DD"), start, result));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "GetDataBcdSgnd",
              "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Taglänge ........: 1\r\n"
              "    Position Tag ....: 0\r\n"
              "    Pos. Zeichenf. ..: 1\r\n"
              "    Zeichenfolge ....: DD\r\n"
              "    Zeichen .........: D");
  EXPECT_EQ(start, 0);
}

TEST(GetDataBcdSgnd, RefusesAnEmptyValue) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result;
  EXPECT_FALSE(coding.GetDataBcdSgnd(FromHex("D8 00"), start, result));
  ExpectFailure(coding.ErrorObject(), 9207, "GetDataBcdSgnd");
  EXPECT_EQ(start, 0);
}

TEST(GetDataBcdSgnd, FilesTheFailureOfTheCheck) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result;
  EXPECT_FALSE(coding.GetDataBcdSgnd(FromHex("D8 05 12"), start, result));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "GetDataBcdSgnd",
              "Der Datenpuffer ist zu klein.\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Länge ...........: 5\r\n"
              "    Leseende ........: 6\r\n"
              "    Obergrenze ......: 2");
  EXPECT_EQ(start, 0);
}

// Writing unsigned

TEST(SetDataBcd, WritesTwoDigitsAByte) {
  EXPECT_EQ(WriteBcd("1234"), "D8 02 12 34");
  EXPECT_EQ(WriteBcd("123"), "D8 02 01 23");
  EXPECT_EQ(WriteBcd("9"), "D8 01 09");
}

TEST(SetDataBcd, DropsLeadingZerosUnlessTheyAreWanted) {
  EXPECT_EQ(WriteBcd("00042"), "D8 01 42");
  EXPECT_EQ(WriteBcd("00042", true), "D8 03 00 00 42");
  EXPECT_EQ(WriteBcd("0905", true), "D8 02 09 05");
}

TEST(SetDataBcd, KeepsOneDigitOfZeros) {
  EXPECT_EQ(WriteBcd("0"), "D8 01 00");
  EXPECT_EQ(WriteBcd("0000"), "D8 01 00");
  EXPECT_EQ(WriteBcd("0000", true), "D8 02 00 00");
}

TEST(SetDataBcd, TrimsBlanks) { EXPECT_EQ(WriteBcd("  12  "), "D8 01 12"); }

TEST(SetDataBcd, RefusesAnEmptyText) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(8, 0xEE);
  std::int32_t start = 2;
  for (const char* text : {"", "   "}) {
    EXPECT_FALSE(coding.SetDataBcd(buffer, start, kTag, text));
    ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataBcd",
                "Leere BCD-Zeichenfolgen sind nicht erlaubt!\r\n"
                "    Tag .............: 0xD8\r\n"
                "    Taglänge ........: 0\r\n"
                "    Position Tag ....: 2");
    EXPECT_EQ(start, 2);
  }
  EXPECT_EQ(buffer, Filled(8, 0xEE));
}

TEST(SetDataBcd, RefusesOtherCharactersThanDigits) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(8, 0xEE);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBcd(buffer, start, kTag, " 12a4"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "SetDataBcd",
              "Ungültiges Zeichen in der BCD-Zeichenfolge\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"A\" (0x41 - 65)\r\n"
              "    Zeichenposition .: 3");
  EXPECT_FALSE(coding.SetDataBcd(buffer, start, kTag, "-1"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "SetDataBcd",
              "Ungültiges Zeichen in der BCD-Zeichenfolge\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"-\" (0x2D - 45)\r\n"
              "    Zeichenposition .: 1");
  EXPECT_FALSE(coding.SetDataBcd(buffer, start, kTag, "1/"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "SetDataBcd",
              "Ungültiges Zeichen in der BCD-Zeichenfolge\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"/\" (0x2F - 47)\r\n"
              "    Zeichenposition .: 2");
  EXPECT_FALSE(coding.SetDataBcd(buffer, start, kTag, "1:"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "SetDataBcd",
              "Ungültiges Zeichen in der BCD-Zeichenfolge\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \":\" (0x3A - 58)\r\n"
              "    Zeichenposition .: 2");
  EXPECT_FALSE(coding.SetDataBcd(buffer, start, kTag, "1€"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "SetDataBcd",
              "Ungültiges Zeichen in der BCD-Zeichenfolge\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"€\" (0x80 - 128)\r\n"
              "    Zeichenposition .: 2");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(buffer, Filled(8, 0xEE));
}

TEST(SetDataBcd, TheDigitsAreCheckedBeforeTheBuffer) {
  clsZelBaseCoding coding;
  ByteArray buffer;
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBcd(buffer, start, kTag, "1A"));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9208);
  EXPECT_FALSE(coding.SetDataBcd(buffer, start, kTag, "1"));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9203);
}

TEST(SetDataBcd, NeedsRoomForItsBytes) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(3, 0xEE);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBcd(buffer, start, kTag, "123"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "SetDataBcd",
              "Der Datenpuffer ist zu klein.\r\n"
              "    Startposition ...: 0\r\n"
              "    Länge ...........: 2\r\n"
              "    Schreibende .....: 3\r\n"
              "    Obergrenze ......: 2");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(buffer, Filled(3, 0xEE));
  EXPECT_TRUE(coding.SetDataBcd(buffer, start, kTag, "12"));
  EXPECT_EQ(ToHex(buffer), "D8 01 12");
}

TEST(SetDataBcd, Takes254DigitsAndRefuses255) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(160);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBcd(buffer, start, kTag, std::string(255, '9')));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataBcd",
              "Ungültige Längenangabe.\r\n"
              "Die Länge eines Tags darf 127 Byte nicht überschreiten!\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0x00\r\n"
              "    Länge ...........: 128");
  EXPECT_TRUE(coding.SetDataBcd(buffer, start, kTag, std::string(254, '9')));
  EXPECT_EQ(start, 129);
  EXPECT_EQ(buffer[1], 127);
  EXPECT_EQ(buffer[128], 0x99);
}

// Writing signed

TEST(SetDataBcdSgnd, WritesDigitsAndSign) {
  EXPECT_EQ(WriteBcdSgnd("123D"), "D8 02 12 3D");
  EXPECT_EQ(WriteBcdSgnd("12345D"), "D8 03 12 34 5D");
  EXPECT_EQ(WriteBcdSgnd("42C"), "D8 02 04 2C");
  EXPECT_EQ(WriteBcdSgnd("1C"), "D8 01 1C");
}

TEST(SetDataBcdSgnd, AlwaysDropsLeadingZeros) { EXPECT_EQ(WriteBcdSgnd("000123D"), "D8 02 12 3D"); }

TEST(SetDataBcdSgnd, TrimsBlanksAndTakesSmallLetters) {
  EXPECT_EQ(WriteBcdSgnd("  12d "), "D8 02 01 2D");
  EXPECT_EQ(WriteBcdSgnd("3c"), "D8 01 3C");
}

TEST(SetDataBcdSgnd, ToleratesTheSignLettersInside) { EXPECT_EQ(WriteBcdSgnd("12D3C"), "D8 03 01 2D 3C"); }

TEST(SetDataBcdSgnd, RefusesAnEmptyText) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(8);
  std::int32_t start = 1;
  EXPECT_FALSE(coding.SetDataBcdSgnd(buffer, start, kTag, "  "));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataBcdSgnd",
              "Leere BCD-Zeichenfolgen sind nicht erlaubt!\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Taglänge ........: 0\r\n"
              "    Position Tag ....: 1");
  EXPECT_EQ(start, 1);
}

TEST(SetDataBcdSgnd, RefusesATextWithoutSign) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(8, 0xEE);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBcdSgnd(buffer, start, kTag, "123"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "SetDataBcdSgnd",
              "Ungültiges Endzeichen in der einer\r\n"
              "vorzeichenbehafteten BCD-Zeichenfolge.\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"3\", erlaubt sind \"C\" oder \"D\"\r\n"
              "    Zeichenposition .: 3");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(buffer, Filled(8, 0xEE));
}

TEST(SetDataBcdSgnd, RefusesOtherCharacters) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(8, 0xEE);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBcdSgnd(buffer, start, kTag, "1x2C"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "SetDataBcdSgnd",
              "Ungültiges Zeichen in der BCD-Zeichenfolge (vorzeichenbehaftet)\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"X\" (0x58 - 88)\r\n"
              "    Zeichenposition .: 2");
  EXPECT_FALSE(coding.SetDataBcdSgnd(buffer, start, kTag, "-5D"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidBCD, true, "SetDataBcdSgnd",
              "Ungültiges Zeichen in der BCD-Zeichenfolge (vorzeichenbehaftet)\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"-\" (0x2D - 45)\r\n"
              "    Zeichenposition .: 1");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(buffer, Filled(8, 0xEE));
}

TEST(SetDataBcdSgnd, WantsADigitOtherThanLeadingZeros) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(8, 0xEE);
  std::int32_t start = 0;
  for (const char* text : {"C", "0C", "0000C"}) {
    EXPECT_FALSE(coding.SetDataBcdSgnd(buffer, start, kTag, text));
    ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataBcdSgnd",
                "Ungültiges BCD-Zeichenfolgenformat\r\n"
                "Die Konditionierung liefert eine\r\n"
                "Zeichenfolge ohne signifikate Daten\r\n"
                "    Zeichenfolge ....: \"C\"");
  }
  EXPECT_FALSE(coding.SetDataBcdSgnd(buffer, start, kTag, "00D"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true, "SetDataBcdSgnd",
              "Ungültiges BCD-Zeichenfolgenformat\r\n"
              "Die Konditionierung liefert eine\r\n"
              "Zeichenfolge ohne signifikate Daten\r\n"
              "    Zeichenfolge ....: \"D\"");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(buffer, Filled(8, 0xEE));
}

TEST(SetDataBcdSgnd, NeedsRoomForItsBytes) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(3, 0xEE);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBcdSgnd(buffer, start, kTag, "12C"));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "SetDataBcdSgnd",
              "Der Datenpuffer ist zu klein.\r\n"
              "    Startposition ...: 0\r\n"
              "    Länge ...........: 2\r\n"
              "    Schreibende .....: 3\r\n"
              "    Obergrenze ......: 2");
  EXPECT_EQ(buffer, Filled(3, 0xEE));
}

TEST(SetDataBcdSgnd, Takes253DigitsAndRefuses254) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(160);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetDataBcdSgnd(buffer, start, kTag, std::string(254, '9') + "C"));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9207);
  EXPECT_TRUE(coding.SetDataBcdSgnd(buffer, start, kTag, std::string(253, '9') + "C"));
  EXPECT_EQ(start, 129);
  EXPECT_EQ(buffer[128], 0x9C);
}

}  // namespace
}  // namespace VnZEL10cmn
