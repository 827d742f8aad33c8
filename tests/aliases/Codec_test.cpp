#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "Support.h"
#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/codec/clsSHA256.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"

namespace {

using test::ArrayOf;
using test::ExpectError;
using test::ExpectNoError;
using test::FromHex;
using test::TextIn;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;

constexpr std::string_view kLengthMessage = "Die Länge der Base64-Zeichenfolge ist ungültig!";

/// A helper whose last operation failed: its error's function is "FromBase64String".
class FailedHelper : public testing::Test {
 protected:
  FailedHelper() {
    ByteArray bytes;
    helper_.FromBase64String("A", bytes);
  }

  clsHelper01 helper_;
};

TEST_F(FailedHelper, SplitsItsErrorMessageIntoLines) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  std::vector<std::string> lines;
  EXPECT_TRUE(helper_.GetLinesOfString(helper_.ErrorObject().ErrorMsg(), lines));
  EXPECT_EQ(lines, std::vector<std::string>{std::string(kLengthMessage)});
  ExpectNoError(helper_);
}

TEST_F(FailedHelper, SplitsAnErrorMessageOfManyLines) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  std::string text;
  EXPECT_FALSE(helper_.ToBase64String(FromHex("01 02"), text, 2));
  std::vector<std::string> lines;
  EXPECT_TRUE(helper_.GetLinesOfString(helper_.ErrorObject().ErrorMsg(), lines));
  EXPECT_EQ(lines, (std::vector<std::string>{"Der Startindex liegt außerhalb des gültigen Bereiches",
                                             "Obergrenze: 1", "Startindex: 2"}));
}

TEST_F(FailedHelper, HashesItsErrorTexts) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  std::string text;
  EXPECT_TRUE(helper_.GetSHA1Hash2(helper_.ErrorObject().ErrorFunction(), text));
  EXPECT_EQ(text, "92CD8FA75FC5F59306529C59E33617F2A01089C8");
  ByteArray none;
  helper_.FromBase64String("A", none);
  EXPECT_TRUE(helper_.GetSHA256Hash2(helper_.ErrorObject().ErrorFunction(), text));
  EXPECT_EQ(text, "d2a8a6a5f018dcb4c84b40ff30e9fae9283e28e89fb51d1e5d0f6ecfabb7ca4b");
  helper_.FromBase64String("A", none);
  ByteArray digest;
  EXPECT_TRUE(helper_.GetSHA1Hash(helper_.ErrorObject().ErrorFunction(), digest));
  EXPECT_EQ(ToHex(digest), "92 CD 8F A7 5F C5 F5 93 06 52 9C 59 E3 36 17 F2 A0 10 89 C8");
  helper_.FromBase64String("A", none);
  EXPECT_TRUE(helper_.GetSHA256Hash(helper_.ErrorObject().ErrorFunction(), digest));
  EXPECT_EQ(
      ToHex(digest),
      "D2 A8 A6 A5 F0 18 DC B4 C8 4B 40 FF 30 E9 FA E9 28 3E 28 E8 9F B5 1D 1E 5D 0F 6E CF AB B7 CA 4B");
}

TEST_F(FailedHelper, DecodesItsErrorTexts) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  ByteArray bytes;
  EXPECT_TRUE(helper_.FromBase64String(helper_.ErrorObject().ErrorFunction(), bytes));
  EXPECT_EQ(ToHex(bytes), "16 BA 26 05 AB 1E EB 84 AD AE 29 E0");
  helper_.FromBase64String("A", bytes);
  EXPECT_FALSE(helper_.GetBytesOfBinStr(helper_.ErrorObject().ErrorFunction(), bytes));
  ExpectError(helper_.ErrorObject(), 9106, true, "GetBytesOfBinStr",
              "Es wurde ein ungültiges Zeichen in der hexadezimalen Zeichenfolge entdeckt!\r\n"
              "Zeichenposition: 2\r\n"
              "Zeichen .......: \"R\"");
}

TEST_F(FailedHelper, RoundsNoneOfItsErrorTexts) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  EXPECT_EQ(helper_.RoundCmrc2(helper_.ErrorObject().ErrorFunction()).Scaled(), 0);
  test::ExpectFault(helper_.ErrorObject(), 13, "RoundCmrc2");
}

TEST_F(FailedHelper, TakesItsErrorTextsAsReplacements) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  std::string text;
  // The first characters are letters, which are not taken: "+" for both.
  EXPECT_FALSE(helper_.ToBase64String(FromHex("FB FF"), text, 0, 0, 0, helper_.ErrorObject().ErrorMsg(),
                                      helper_.ErrorObject().ErrorFunction()));
  ExpectError(helper_.ErrorObject(), 9101, true, "ToBase64String",
              "Die übergebenen Ersetungszeichenfolgen sind identisch\r\n"
              "Plusersetzung:    \"+\"\r\n"
              "Schrägstrichers.: \"+\"");
  EXPECT_TRUE(helper_.GetBinStrOfBytes(FromHex("0A FF"), text, helper_.ErrorObject().ErrorFunction()));
  EXPECT_EQ(text, "0ATFF");
}

TEST_F(FailedHelper, MakesDeviceTextOfItsErrorTexts) {
  EXPECT_EQ(helper_.ZEL_CharReplace(helper_.ErrorObject().ErrorFunction(), 9), "frombase6");
  EXPECT_EQ(VnZEL10cmn::clsSHA256().SHA256(helper_.ErrorObject().ErrorFunction()),
            "d2a8a6a5f018dcb4c84b40ff30e9fae9283e28e89fb51d1e5d0f6ecfabb7ca4b");
}

TEST(Helper, SplitsALineOfTheListThatItFills) {
  clsHelper01 helper;
  std::vector<std::string> lines = {"first\r\nsecond", "third"};
  EXPECT_TRUE(helper.GetLinesOfString(lines[0], lines));
  EXPECT_EQ(lines, (std::vector<std::string>{"first", "second"}));
  EXPECT_TRUE(helper.GetLinesOfString(lines[1], lines));
  EXPECT_EQ(lines, std::vector<std::string>{"second"});
}

TEST(Helper, HashesIntoItsInput) {
  clsHelper01 helper;
  ByteArray bytes = FromHex("61 62 63");
  EXPECT_TRUE(helper.GetSHA1Hash1(bytes, bytes));
  EXPECT_EQ(ToHex(bytes), "A9 99 3E 36 47 06 81 6A BA 3E 25 71 78 50 C2 6C 9C D0 D8 9D");
  bytes = FromHex("61 62 63");
  EXPECT_TRUE(helper.GetSHA256Hash1(bytes, bytes));
  EXPECT_EQ(
      ToHex(bytes),
      "BA 78 16 BF 8F 01 CF EA 41 41 40 DE 5D AE 22 23 B0 03 61 A3 96 17 7A 9C B4 10 FF 61 F2 00 15 AD");
  std::string text = "abc";
  EXPECT_TRUE(helper.GetSHA1Hash2(text, text));
  EXPECT_EQ(text, "A9993E364706816ABA3E25717850C26C9CD0D89D");
  text = "abc";
  EXPECT_TRUE(helper.GetSHA256Hash2(text, text));
  EXPECT_EQ(text, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(Helper, HashesTheTextThatStandsInItsResult) {
  clsHelper01 helper;
  ByteArray bytes = ArrayOf("abc");
  EXPECT_TRUE(helper.GetSHA1Hash(TextIn(bytes, 0, 3), bytes));
  EXPECT_EQ(ToHex(bytes), "A9 99 3E 36 47 06 81 6A BA 3E 25 71 78 50 C2 6C 9C D0 D8 9D");
  bytes = ArrayOf("abc");
  EXPECT_TRUE(helper.GetSHA256Hash(TextIn(bytes, 0, 3), bytes));
  EXPECT_EQ(
      ToHex(bytes),
      "BA 78 16 BF 8F 01 CF EA 41 41 40 DE 5D AE 22 23 B0 03 61 A3 96 17 7A 9C B4 10 FF 61 F2 00 15 AD");
}

TEST(Helper, FailsToHashIntoItsInputWithoutChangingIt) {
  clsHelper01 helper;
  ByteArray bytes = test::FromHexAt(-1, "61 62 63");
  EXPECT_FALSE(helper.GetSHA256Hash1(bytes, bytes));
  EXPECT_EQ(bytes, test::FromHexAt(-1, "61 62 63"));
  ExpectError(helper.ErrorObject(), 9102, true, "GetSHA256Hash1",
              "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -1");
}

TEST(Helper, TakesReplacementsAndSeparatorsFromItsResult) {
  clsHelper01 helper;
  std::string text = "-";
  EXPECT_TRUE(helper.ToBase64String(FromHex("FB FF"), text, 0, 0, 0, text, "_"));
  EXPECT_EQ(text, "-_8=");
  text = "_";
  EXPECT_TRUE(helper.ToBase64String(FromHex("FB FF"), text, 0, 0, 12, "-", text));
  EXPECT_EQ(text, "-_8=");
  text = "-";
  EXPECT_FALSE(helper.ToBase64String(FromHex("FB FF"), text, 0, 0, 0, text, text));
  EXPECT_EQ(text, "-");
  text = ":";
  EXPECT_TRUE(helper.GetBinStrOfBytes(FromHex("0A FF 10"), text, text));
  EXPECT_EQ(text, "0A:FF:10");
  text = ":";
  EXPECT_TRUE(helper.GetBinStrOfBytes(FromHex("0A FF 10"), text, text, 2));
  EXPECT_EQ(text, "0A:FF");
}

// Received bytes that are a text are decoded where they stand.
TEST(Helper, DecodesBase64TextThatStandsInItsResult) {
  clsHelper01 helper;
  ByteArray bytes = ArrayOf("AAECAwQFBgcICQoLDA0ODxAREhM=");
  EXPECT_TRUE(helper.FromBase64String(TextIn(bytes, 0, 28), bytes));
  EXPECT_EQ(ToHex(bytes), "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13");
  ExpectNoError(helper);
  bytes = ArrayOf("xQUJDREVGxx");
  EXPECT_TRUE(helper.FromBase64String(TextIn(bytes, 1, 8), bytes));
  EXPECT_EQ(ToHex(bytes), "41 42 43 44 45 46");
  bytes = ArrayOf(" AQ\r\nI= ");
  EXPECT_TRUE(helper.FromBase64String(TextIn(bytes, 0, 8), bytes));
  EXPECT_EQ(ToHex(bytes), "01 02");
  bytes = ArrayOf("-_8=");
  EXPECT_TRUE(helper.FromBase64String(TextIn(bytes, 0, 4), bytes, TextIn(bytes, 0, 1), TextIn(bytes, 1, 1)));
  EXPECT_EQ(ToHex(bytes), "FB FF");
}

TEST(Helper, TellsWhatIsWrongWithBase64TextThatStandsInItsResult) {
  clsHelper01 helper;
  ByteArray bytes = ArrayOf("QUJDREV#");
  EXPECT_FALSE(helper.FromBase64String(TextIn(bytes, 0, 8), bytes));
  ExpectError(helper.ErrorObject(), 9106, true, "FromBase64String",
              "Es wurde ein ungültiges Zeichen in der Base64-Zeichenfolge entdeckt!\r\n"
              "Zeichenposition: 8\r\n"
              "Zeichen .......: \"#\"");
  EXPECT_EQ(ToHex(bytes), "41 42 43 00 00 00");
  bytes = ArrayOf("QUJ");
  EXPECT_FALSE(helper.FromBase64String(TextIn(bytes, 0, 3), bytes));
  ExpectError(helper.ErrorObject(), 9104, true, "FromBase64String", kLengthMessage);
  EXPECT_EQ(ToHex(bytes), "51 55 4A");
}

TEST(Helper, DecodesHexadecimalTextThatStandsInItsResult) {
  clsHelper01 helper;
  ByteArray bytes = ArrayOf("0aff10");
  EXPECT_TRUE(helper.GetBytesOfBinStr(TextIn(bytes, 0, 6), bytes));
  EXPECT_EQ(ToHex(bytes), "0A FF 10");
  bytes = ArrayOf("xx0A-FF-10");
  EXPECT_TRUE(helper.GetBytesOfBinStr(TextIn(bytes, 2, 8), bytes));
  EXPECT_EQ(ToHex(bytes), "0A FF 10");
  bytes = ArrayOf("0A1G");
  EXPECT_FALSE(helper.GetBytesOfBinStr(TextIn(bytes, 0, 4), bytes));
  ExpectError(helper.ErrorObject(), 9106, true, "GetBytesOfBinStr",
              "Es wurde ein ungültiges Zeichen in der hexadezimalen Zeichenfolge entdeckt!\r\n"
              "Zeichenposition: 4\r\n"
              "Zeichen .......: \"G\"");
  EXPECT_EQ(ToHex(bytes), "0A 00");
}

TEST(Helper, DecodesIntoAnArrayWithAnotherLowerBound) {
  clsHelper01 helper;
  ByteArray bytes = test::FromHexAt(3, "51 55 4A 44");
  EXPECT_TRUE(helper.FromBase64String(TextIn(bytes, 0, 4), bytes));
  EXPECT_EQ(bytes, FromHex("41 42 43"));
  bytes = test::FromHexAt(3, "34 31");
  EXPECT_TRUE(helper.GetBytesOfBinStr(TextIn(bytes, 0, 2), bytes));
  EXPECT_EQ(bytes, FromHex("41"));
}

}  // namespace
