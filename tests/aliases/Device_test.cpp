#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "Support.h"
#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"

namespace {

using test::ArrayOf;
using test::ExpectError;
using test::ExpectNoError;
using test::FromHex;
using test::FromHexAt;
using test::TextIn;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelBaseCoding;
using VnZEL10cmn::ZelTags;
using VnZEL10cmn::ZelXmlTags;

/// The bytes 00 to 2F, as many as the shortest signature has.
constexpr std::string_view kSignature =
    "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 "
    "18 19 1A 1B 1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F";

std::string SignatureRecord() { return "9E 30 " + std::string(kSignature); }

class Coder : public testing::Test {
 protected:
  clsZelBaseCoding coder_;
  std::int32_t start_ = 0;
};

TEST_F(Coder, ReadsAValueIntoItsBuffer) {
  ByteArray buffer = FromHex("C6 03 01 02 03");
  EXPECT_TRUE(coder_.GetDataBinary(buffer, start_, buffer));
  EXPECT_EQ(buffer, FromHex("01 02 03"));
  EXPECT_EQ(start_, 5);
  ExpectNoError(coder_);
}

TEST_F(Coder, ReadsAValueBehindAnotherIntoItsBuffer) {
  ByteArray buffer = FromHex("C6 01 AA C7 02 BB CC C8 00");
  start_ = 3;
  EXPECT_TRUE(coder_.GetDataBinary(buffer, start_, buffer));
  EXPECT_EQ(buffer, FromHex("BB CC"));
  EXPECT_EQ(start_, 7);
}

TEST_F(Coder, ReadsAValueIntoItsBufferWithALowerBoundOfItsOwn) {
  ByteArray buffer = FromHexAt(5, "C6 02 AA BB");
  start_ = 5;
  EXPECT_TRUE(coder_.GetDataBinary(buffer, start_, buffer));
  EXPECT_EQ(buffer, FromHex("AA BB"));
  EXPECT_EQ(start_, 9);
}

TEST_F(Coder, ReadsALengthlessRecordIntoItsBuffer) {
  ByteArray buffer = FromHex("C9 00");
  EXPECT_TRUE(coder_.GetDataBinary(buffer, start_, buffer));
  EXPECT_EQ(buffer, ByteArray());
  EXPECT_EQ(start_, 2);
  ExpectNoError(coder_);
}

TEST_F(Coder, ARefusedRecordLeavesItsBuffer) {
  ByteArray buffer = FromHex("C6 03 01 02 03");
  EXPECT_FALSE(coder_.GetDataBinary(buffer, start_, buffer, 4));
  ExpectError(coder_.ErrorObject(), 9207, true, "GetDataBinary",
              "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Länge ...........: 3\r\n"
              "    Mindestlänge ....: 4");
  EXPECT_EQ(buffer, FromHex("C6 03 01 02 03"));
  EXPECT_EQ(start_, 0);
}

TEST_F(Coder, ReadsTheSignatureIntoItsBuffer) {
  ByteArray buffer = FromHex("C6 01 AA " + SignatureRecord());
  start_ = 3;
  EXPECT_TRUE(coder_.GetZelSignature(buffer, start_, buffer));
  EXPECT_EQ(buffer, FromHex(kSignature));
  EXPECT_EQ(start_, 53);
  ExpectNoError(coder_);
}

TEST_F(Coder, ABufferHasNoRoomForItself) {
  ByteArray buffer = FromHex("01 02 03");
  EXPECT_FALSE(coder_.SetDataBinary(buffer, start_, ZelTags::Operator, buffer));
  ExpectError(coder_.ErrorObject(), 9204, true, "SetDataBinary",
              "Der Datenpuffer ist zu klein.\r\n"
              "    Startposition ...: 0\r\n"
              "    Länge ...........: 3\r\n"
              "    Schreibende .....: 4\r\n"
              "    Obergrenze ......: 2");
  EXPECT_EQ(buffer, FromHex("01 02 03"));
  EXPECT_EQ(start_, 0);
  buffer = ByteArray::WithBounds(0, 19);
  EXPECT_FALSE(coder_.SetZelHash(buffer, start_, true, buffer));
  ExpectError(coder_.ErrorObject(), 9204, true, "SetZelHash",
              "Der Datenpuffer ist zu klein.\r\n"
              "    Startposition ...: 0\r\n"
              "    Länge ...........: 20\r\n"
              "    Schreibende .....: 21\r\n"
              "    Obergrenze ......: 19");
  EXPECT_EQ(buffer, ByteArray::WithBounds(0, 19));
}

TEST_F(Coder, WritesATextThatStandsInItsBuffer) {
  ByteArray buffer = ArrayOf("abcd", 8);
  EXPECT_TRUE(coder_.SetDataAscii(buffer, start_, ZelTags::Operator, TextIn(buffer, 0, 4)));
  EXPECT_EQ(ToHex(buffer), "C6 04 61 62 63 64 00 00");
  EXPECT_EQ(start_, 6);
  buffer = ArrayOf("abcd", 8);
  start_ = 1;
  EXPECT_TRUE(coder_.SetDataAscii(buffer, start_, ZelTags::Operator, TextIn(buffer, 0, 4)));
  EXPECT_EQ(ToHex(buffer), "61 C6 04 61 62 63 64 00");
  buffer = ArrayOf("..abcd", 8);
  start_ = 0;
  EXPECT_TRUE(coder_.SetDataAscii(buffer, start_, ZelTags::Operator, TextIn(buffer, 1, 5)));
  EXPECT_EQ(ToHex(buffer), "C6 05 2E 61 62 63 64 00");
  ExpectNoError(coder_);
}

TEST_F(Coder, TellsWhatIsWrongWithATextThatStandsInItsBuffer) {
  ByteArray buffer = ArrayOf("aüb", 8);
  EXPECT_FALSE(coder_.SetDataAscii(buffer, start_, ZelTags::Operator, TextIn(buffer, 0, 4)));
  ExpectError(coder_.ErrorObject(), 9207, true, "SetDataAscii",
              "Ungültiges Zeichen in der Zeichenfolge\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 3\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"ü\" (0xFC - 252)\r\n"
              "    Zeichenposition .: 2");
  EXPECT_EQ(ToHex(buffer), "C6 03 61 62 00 00 00 00");
  EXPECT_EQ(start_, 0);
}

TEST_F(Coder, WritesDigitsThatStandInItsBuffer) {
  ByteArray buffer = ArrayOf("0012345", 8);
  EXPECT_TRUE(coder_.SetDataBcd(buffer, start_, ZelTags::Trnvr_Counter, TextIn(buffer, 0, 7)));
  EXPECT_EQ(ToHex(buffer), "DC 03 01 23 45 34 35 00");
  EXPECT_EQ(start_, 5);
  buffer = ArrayOf("123456", 8);
  start_ = 0;
  EXPECT_TRUE(coder_.SetDataBcd(buffer, start_, ZelTags::Trnvr_Counter, TextIn(buffer, 0, 6), true));
  EXPECT_EQ(ToHex(buffer), "DC 03 12 34 56 36 00 00");
  buffer = ArrayOf("00123D", 8);
  start_ = 0;
  EXPECT_TRUE(coder_.SetDataBcdSgnd(buffer, start_, ZelTags::Trnvr, TextIn(buffer, 0, 6)));
  EXPECT_EQ(ToHex(buffer), "D8 02 12 3D 33 44 00 00");
  EXPECT_EQ(start_, 4);
}

TEST_F(Coder, WritesFieldsThatStandInItsBuffer) {
  ByteArray buffer = ArrayOf("123456", 10);
  EXPECT_TRUE(coder_.SetZelTranspPin(buffer, start_, TextIn(buffer, 0, 6)));
  EXPECT_EQ(ToHex(buffer), "C3 06 31 32 33 34 35 36 00 00");
  buffer = ArrayOf("kasse1", 10);
  start_ = 1;
  EXPECT_TRUE(coder_.SetZelOperator(buffer, start_, TextIn(buffer, 0, 6)));
  EXPECT_EQ(ToHex(buffer), "6B C6 06 6B 61 73 73 65 31 00");
  EXPECT_EQ(start_, 9);
  buffer = ArrayOf("AAECAwQFBgcICQoLDA0ODxAREhM=");
  start_ = 0;
  EXPECT_TRUE(coder_.SetZelHash2(buffer, start_, true, TextIn(buffer, 0, 28)));
  EXPECT_EQ(ToHex(buffer),
            "C7 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 41 52 45 68 4D 3D");
  EXPECT_EQ(start_, 22);
  ExpectNoError(coder_);
}

TEST_F(Coder, TakesTheSeparatorFromItsResult) {
  std::string text = "-";
  EXPECT_TRUE(coder_.GetZelSingatureString(FromHex("00 01 02 03 04 05"), text, 3, text));
  EXPECT_EQ(text, "AAE-CAw-QF");
  text = ".";
  EXPECT_TRUE(coder_.GetZelSignature2(FromHex(SignatureRecord()), start_, text, 40, text));
  EXPECT_EQ(text, "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwd.Hh8gISIjJCUmJygpKissLS4v");
}

TEST_F(Coder, FindsAnElementOfItsResult) {
  std::string text = "<a><transactionRequest> AQI= </transactionRequest></a>";
  EXPECT_TRUE(coder_.GetXmlTag(text, ZelXmlTags::TransRequest, text));
  EXPECT_EQ(text, "AQI=");
  std::string profile = "<itemListEncoded profile='A1'>AQI=</itemListEncoded>";
  EXPECT_TRUE(coder_.GetXmlTag(profile, ZelXmlTags::ItemList, text, &profile));
  EXPECT_EQ(text, "AQI=");
  EXPECT_EQ(profile, "A1");
}

TEST_F(Coder, TellsWhatIsWrongWithADocumentThatIsItsResult) {
  std::string text = "<transactionRequest>AQI=";
  EXPECT_FALSE(coder_.GetXmlTag(text, ZelXmlTags::TransRequest, text));
  ExpectError(coder_.ErrorObject(), 9211, true, "GetXmlTag",
              "Das angeforderte XML-Tag ist nicht vollständig!\r\n"
              "    XML-Tag ..........: <transactionRequest>");
  EXPECT_EQ(text, "");
}

// The value is what is asked for, wherever the next record begins.
TEST_F(Coder, ReadsANumberIntoItsStart) {
  EXPECT_TRUE(coder_.GetZelCurrencyCode(FromHex("C8 02 03 D2"), start_, start_));
  EXPECT_EQ(start_, 978);
  start_ = 0;
  EXPECT_TRUE(coder_.GetZelCountryCode(FromHex("D5 02 01 14"), start_, start_));
  EXPECT_EQ(start_, 276);
  EXPECT_FALSE(coder_.GetZelCountryCode(FromHex("D5 02 01 14"), start_, start_));
  EXPECT_EQ(start_, 276);
}

TEST_F(Coder, WritesItsErrorTexts) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  ByteArray buffer = ByteArray::WithBounds(0, 15);
  EXPECT_FALSE(coder_.SetDataAscii(buffer, start_, ZelTags::Operator, ""));
  EXPECT_TRUE(coder_.SetDataAscii(buffer, start_, ZelTags::Operator, coder_.ErrorObject().ErrorFunction()));
  EXPECT_EQ(ToHex(buffer), "C6 0C 53 65 74 44 61 74 61 41 73 63 69 69 00 00");
  start_ = 0;
  EXPECT_FALSE(coder_.SetZelOperator(buffer, start_, ""));
  EXPECT_TRUE(coder_.SetZelOperator(buffer, start_, coder_.ErrorObject().ErrorFunction()));
  EXPECT_EQ(ToHex(buffer), "C6 0E 53 65 74 5A 65 6C 4F 70 65 72 61 74 6F 72");
  std::string text;
  start_ = 0;
  EXPECT_FALSE(coder_.SetZelOperator(buffer, start_, ""));
  EXPECT_TRUE(
      coder_.GetZelSingatureString(FromHex("00 01 02"), text, 2, coder_.ErrorObject().ErrorFunction()));
  EXPECT_EQ(text, "AASetZelOperatorEC");
  EXPECT_FALSE(coder_.GetXmlTag("", ZelXmlTags::Report, text));
  EXPECT_FALSE(coder_.GetXmlTag(coder_.ErrorObject().ErrorMsg(), ZelXmlTags::Report, text));
  ExpectError(coder_.ErrorObject(), 9211, true, "GetXmlTag",
              "Das angeforderte XML-Tag ist nicht vollständig!\r\n"
              "    XML-Tag ..........: <reportEncoded>");
}

}  // namespace
