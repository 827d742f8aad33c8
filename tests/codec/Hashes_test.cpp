#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <rapidcheck.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/codec/clsSHA256.h"
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
using VnZEL10cmn::clsSHA256;
using VnZEL10cmn::ZELErrorCodes;

namespace {

/// Digests by libcrypto, as blank-separated hexadecimal digits.
std::string Reference(const EVP_MD* algorithm, const void* data, std::size_t size) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned length = 0;
  EXPECT_EQ(EVP_Digest(data, size, digest, &length, algorithm, nullptr), 1);
  return ToHex(std::string_view(reinterpret_cast<const char*>(digest), length));
}
std::string ReferenceSha1(const ByteArray& bytes) {
  return Reference(EVP_sha1(), bytes.data(), bytes.size());
}
std::string ReferenceSha256(const ByteArray& bytes) {
  return Reference(EVP_sha256(), bytes.data(), bytes.size());
}

template <class Data>
std::string Bytes(bool (clsHelper01::*hash)(Data, ByteArray&), Data data) {
  clsHelper01 helper;
  ByteArray result = FromHexAt(7, "EE");
  EXPECT_TRUE((helper.*hash)(data, result));
  ExpectNoError(helper);
  EXPECT_EQ(result.LBound(), 0);
  return ToHex(result);
}

std::string Sha1(std::string_view text) { return Bytes<std::string_view>(&clsHelper01::GetSHA1Hash, text); }
std::string Sha1(const ByteArray& bytes) {
  return Bytes<const ByteArray&>(&clsHelper01::GetSHA1Hash1, bytes);
}
std::string Sha256(std::string_view text) {
  return Bytes<std::string_view>(&clsHelper01::GetSHA256Hash, text);
}
std::string Sha256(const ByteArray& bytes) {
  return Bytes<const ByteArray&>(&clsHelper01::GetSHA256Hash1, bytes);
}

std::string Sha1Text(std::string_view text) {
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_TRUE(helper.GetSHA1Hash2(text, result));
  ExpectNoError(helper);
  return result;
}

std::string Sha256Text(std::string_view text) {
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_TRUE(helper.GetSHA256Hash2(text, result));
  ExpectNoError(helper);
  return result;
}

/// Message `index` of a length, of bytes below `limit`.
std::vector<std::uint8_t> Message(std::size_t length, unsigned limit) {
  std::vector<std::uint8_t> bytes(length);
  std::uint32_t seed = static_cast<std::uint32_t>(length) + limit;
  for (std::uint8_t& byte : bytes) {
    seed = seed * 1664525U + 1013904223U;
    byte = static_cast<std::uint8_t>((seed >> 16U) % limit);
  }
  return bytes;
}

ByteArray Array(const std::vector<std::uint8_t>& bytes) {
  return ByteArray(std::span<const std::uint8_t>(bytes));
}

TEST(SHA1, PublishedVectors) {
  EXPECT_EQ(Sha1Text("abc"), "A9993E364706816ABA3E25717850C26C9CD0D89D");
  EXPECT_EQ(Sha1Text(""), "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709");
  EXPECT_EQ(Sha1Text("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
            "84983E441C3BD26EBAAE4AA1F95129E5E54670F1");
}

TEST(SHA256, PublishedVectors) {
  EXPECT_EQ(Sha256Text("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(Sha256Text(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(Sha256Text("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
            "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
}

TEST(SHA1, TextsAndArraysGiveTheSameBytes) {
  constexpr std::string_view expected = "A9 99 3E 36 47 06 81 6A BA 3E 25 71 78 50 C2 6C 9C D0 D8 9D";
  EXPECT_EQ(Sha1("abc"), expected);
  EXPECT_EQ(Sha1(FromHex("61 62 63")), expected);
}

TEST(SHA256, TextsAndArraysGiveTheSameBytes) {
  constexpr std::string_view expected =
      "BA 78 16 BF 8F 01 CF EA 41 41 40 DE 5D AE 22 23 B0 03 61 A3 96 17 7A 9C B4 10 FF 61 F2 00 15 AD";
  EXPECT_EQ(Sha256("abc"), expected);
  EXPECT_EQ(Sha256(FromHex("61 62 63")), expected);
}

TEST(SHA1, NothingIsTheEmptyMessage) {
  constexpr std::string_view expected = "DA 39 A3 EE 5E 6B 4B 0D 32 55 BF EF 95 60 18 90 AF D8 07 09";
  EXPECT_EQ(Sha1(""), expected);
  EXPECT_EQ(Sha1(ByteArray()), expected);
}

TEST(SHA256, NothingIsTheEmptyMessage) {
  constexpr std::string_view expected =
      "E3 B0 C4 42 98 FC 1C 14 9A FB F4 C8 99 6F B9 24 27 AE 41 E4 64 9B 93 4C A4 95 99 1B 78 52 B8 55";
  EXPECT_EQ(Sha256(""), expected);
  EXPECT_EQ(Sha256(ByteArray()), expected);
}

TEST(SHA1, AMillionTimesA) {
  const std::string text(1000000, 'a');
  EXPECT_EQ(Sha1Text(text), "34AA973CD4C4DAA4F61EEB2BDBAD27316534016F");
  EXPECT_EQ(Sha1(Array(std::vector<std::uint8_t>(text.begin(), text.end()))),
            "34 AA 97 3C D4 C4 DA A4 F6 1E EB 2B DB AD 27 31 65 34 01 6F");
}

TEST(SHA256, AMillionTimesA) {
  const std::string text(1000000, 'a');
  EXPECT_EQ(Sha256Text(text), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
  EXPECT_EQ(
      Sha256(Array(std::vector<std::uint8_t>(text.begin(), text.end()))),
      "CD C7 6E 5C 99 14 FB 92 81 A1 C7 E2 84 D7 3E 67 F1 80 9A 48 A4 97 20 0E 04 6D 39 CC C7 11 2C D0");
}

TEST(SHA1, AgreesWithLibcryptoAtEveryLength) {
  for (std::size_t length = 0; length <= 300; ++length) {
    const ByteArray bytes = Array(Message(length, 256));
    ASSERT_EQ(Sha1(bytes), ReferenceSha1(bytes)) << length;
  }
}

TEST(SHA256, AgreesWithLibcryptoAtEveryLength) {
  for (std::size_t length = 0; length <= 300; ++length) {
    const ByteArray bytes = Array(Message(length, 0x80));
    ASSERT_EQ(Sha256(bytes), ReferenceSha256(bytes)) << length;
  }
}

TEST(Hashes, OfTextsAgreeWithLibcryptoAtEveryLength) {
  for (std::size_t length = 0; length <= 300; ++length) {
    const std::vector<std::uint8_t> bytes = Message(length, 0x80);
    const std::string text(bytes.begin(), bytes.end());
    ASSERT_EQ(Sha1(text), ReferenceSha1(Array(bytes))) << length;
    ASSERT_EQ(Sha256(text), ReferenceSha256(Array(bytes))) << length;
  }
}

TEST(Hashes, OfAllBytesFromA0OnAreTheOrdinaryOnes) {
  for (unsigned value = 0xA0; value < 0x100; ++value) {
    const ByteArray bytes{static_cast<std::uint8_t>(value), 0x41};
    EXPECT_EQ(Sha1(bytes), ReferenceSha1(bytes)) << value;
    EXPECT_EQ(Sha256(bytes), ReferenceSha256(bytes)) << value;
  }
}

// The low byte of each byte's character in code page 1252: 80 is the euro sign, U+20AC.
constexpr std::uint8_t lowBytes[] = {0xAC, 0x81, 0x1A, 0x92, 0x1E, 0x26, 0x20, 0x21, 0xC6, 0x30, 0x60,
                                     0x39, 0x52, 0x8D, 0x7D, 0x8F, 0x90, 0x18, 0x19, 0x1C, 0x1D, 0x22,
                                     0x13, 0x14, 0xDC, 0x22, 0x61, 0x3A, 0x53, 0x9D, 0x7E, 0x78};
static_assert(sizeof lowBytes == 0x20);

TEST(SHA256, Bytes80To9FPassThroughTheirCharacters) {
  for (unsigned value = 0x80; value < 0xA0; ++value) {
    const ByteArray bytes{0x12, static_cast<std::uint8_t>(value), 0x34};
    const ByteArray hashed{0x12, lowBytes[value - 0x80], 0x34};
    EXPECT_EQ(Sha256(bytes), ReferenceSha256(hashed)) << value;
  }
  EXPECT_EQ(Sha256(FromHex("80")), ReferenceSha256(FromHex("AC")));
  EXPECT_EQ(Sha256(FromHex("82")), ReferenceSha256(FromHex("1A")));
  EXPECT_EQ(Sha256(FromHex("99")), ReferenceSha256(FromHex("22")));
  for (const std::uint8_t same : {0x81, 0x8D, 0x8F, 0x90, 0x9D}) {
    EXPECT_EQ(Sha256(ByteArray{same}), ReferenceSha256(ByteArray{same})) << int{same};
  }
}

TEST(SHA256, Bytes80To9FPassThroughTheirCharactersAnywhereInAMessage) {
  for (std::size_t length = 1; length <= 300; ++length) {
    const std::vector<std::uint8_t> bytes = Message(length, 256);
    std::vector<std::uint8_t> hashed = bytes;
    for (std::uint8_t& byte : hashed) {
      if (byte >= 0x80 && byte < 0xA0) {
        byte = lowBytes[byte - 0x80];
      }
    }
    ASSERT_EQ(Sha256(Array(bytes)), ReferenceSha256(Array(hashed))) << length;
  }
}

TEST(SHA1, Bytes80To9FGiveTheOrdinaryDigest) {
  for (unsigned value = 0x80; value < 0xA0; ++value) {
    const ByteArray bytes{0x12, static_cast<std::uint8_t>(value), 0x34};
    EXPECT_EQ(Sha1(bytes), ReferenceSha1(bytes)) << value;
  }
}

TEST(Hashes, OfAnUmlautAreThoseOfItsLatin1Byte) {
  EXPECT_EQ(Sha1("ä"), ReferenceSha1(FromHex("E4")));
  EXPECT_EQ(Sha256("ä"), ReferenceSha256(FromHex("E4")));
  EXPECT_EQ(Sha1("Bäckerei Größe\u00A0ÿ"),
            ReferenceSha1(FromHex("42 E4 63 6B 65 72 65 69 20 47 72 F6 DF 65 A0 FF")));
  EXPECT_EQ(Sha256("Bäckerei Größe\u00A0ÿ"),
            ReferenceSha256(FromHex("42 E4 63 6B 65 72 65 69 20 47 72 F6 DF 65 A0 FF")));
}

TEST(Hashes, OfTheEuroSignDiffer) {
  EXPECT_EQ(Sha1("5 €"), ReferenceSha1(FromHex("35 20 80")));
  EXPECT_EQ(Sha256("5 €"), ReferenceSha256(FromHex("35 20 AC")));
}

TEST(Hashes, OfCharactersBeyondTheCodePage) {
  EXPECT_EQ(Sha1("Łz"), ReferenceSha1(FromHex("3F 7A")));
  EXPECT_EQ(Sha256("Łz"), ReferenceSha256(FromHex("41 7A")));
  EXPECT_EQ(Sha256("😀"), ReferenceSha256(FromHex("3D 00")));
  EXPECT_EQ(Sha1("Ā"), ReferenceSha1(FromHex("3F")));
  EXPECT_EQ(Sha256("Ā"), ReferenceSha256(FromHex("00")));
}

TEST(Hashes, TakeTextsWithNuls) {
  EXPECT_EQ(Sha1(std::string_view("a\0b", 3)), ReferenceSha1(FromHex("61 00 62")));
  EXPECT_EQ(Sha256(std::string_view("a\0b", 3)), ReferenceSha256(FromHex("61 00 62")));
}

TEST(Hashes, TakeIllFormedTextAsTheReplacementCharacter) {
  EXPECT_EQ(Sha1("a\xFF"), ReferenceSha1(FromHex("61 3F")));
  EXPECT_EQ(Sha256("a\xFF"), ReferenceSha256(FromHex("61 FD")));
}

TEST(Hashes, OfTextsTakeTheTextsOfTheSameMessage) {
  EXPECT_EQ(Sha1Text("ä€"), "84BA73F5C4BDC0B3828F938B9C983070136E93FA");
  EXPECT_EQ(Sha256Text("ä€"), "40e5389a2d9ef7fceb0bc2e38b4a44b84b354626cf34903f0898515467d7e6f8");
}

TEST(Hashes, OfArraysWithANegativeLowerBoundFail) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  ByteArray result = FromHexAt(7, "EE");
  EXPECT_FALSE(helper.GetSHA1Hash1(FromHexAt(-1, "61 62 63"), result));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvLBound, true, "GetSHA1Hash1",
              "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -1");
  EXPECT_EQ(result, FromHexAt(7, "EE"));
  EXPECT_FALSE(helper.GetSHA256Hash1(FromHexAt(-12, "61 62 63"), result));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvLBound, true, "GetSHA256Hash1",
              "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -12");
  EXPECT_EQ(result, FromHexAt(7, "EE"));
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"GetSHA1Hash1", "GetSHA256Hash1"}));
}

TEST(Hashes, OfArraysWithAPositiveLowerBoundAreAFault) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  ByteArray result = FromHexAt(7, "EE");
  EXPECT_FALSE(helper.GetSHA1Hash1(FromHexAt(1, "61 62 63"), result));
  ExpectFault(helper.ErrorObject(), 9, "GetSHA1Hash1");
  EXPECT_FALSE(helper.GetSHA256Hash1(FromHexAt(5, "61 62 63"), result));
  ExpectFault(helper.ErrorObject(), 9, "GetSHA256Hash1");
  EXPECT_FALSE(helper.GetSHA256Hash1(FromHexAt(std::numeric_limits<std::int32_t>::max(), "61"), result));
  ExpectFault(helper.ErrorObject(), 9, "GetSHA256Hash1");
  EXPECT_EQ(result, FromHexAt(7, "EE"));
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"GetSHA1Hash1", "GetSHA256Hash1", "GetSHA256Hash1"}));
}

TEST(Hashes, ClearTheErrorBefore) {
  clsHelper01 helper;
  ByteArray result;
  std::string text;
  const auto fail = [&helper] {
    ByteArray unused;
    EXPECT_FALSE(helper.FromBase64String("Q", unused));
  };
  fail();
  EXPECT_TRUE(helper.GetSHA1Hash("abc", result));
  ExpectNoError(helper);
  fail();
  EXPECT_TRUE(helper.GetSHA1Hash1(FromHex("61"), result));
  ExpectNoError(helper);
  fail();
  EXPECT_TRUE(helper.GetSHA1Hash2("abc", text));
  ExpectNoError(helper);
  fail();
  EXPECT_TRUE(helper.GetSHA256Hash("abc", result));
  ExpectNoError(helper);
  fail();
  EXPECT_TRUE(helper.GetSHA256Hash1(FromHex("61"), result));
  ExpectNoError(helper);
  fail();
  EXPECT_TRUE(helper.GetSHA256Hash2("abc", text));
  ExpectNoError(helper);
}

TEST(Hashes, MayTakeTheArrayThatReceivesTheResult) {
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

TEST(clsSHA256Class, GivesTheDigestText) {
  const clsSHA256 hash;
  EXPECT_EQ(hash.SHA256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(hash.SHA256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(hash.SHA256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(hash.SHA256("€"), hash.SHA256("¬"));  // U+20AC and U+00AC
}

TEST(HashProperties, AgreeWithLibcrypto) {
  EXPECT_TRUE(rc::check("SHA-1 of any bytes, SHA-256 of ASCII", [](const std::vector<std::uint8_t>& data) {
    clsHelper01 helper;
    ByteArray result;
    const ByteArray bytes = Array(data);
    RC_ASSERT(helper.GetSHA1Hash1(bytes, result));
    RC_ASSERT(ToHex(result) == ReferenceSha1(bytes));
    std::vector<std::uint8_t> ascii = data;
    for (std::uint8_t& byte : ascii) {
      byte &= 0x7FU;
    }
    RC_ASSERT(helper.GetSHA256Hash(std::string(ascii.begin(), ascii.end()), result));
    RC_ASSERT(ToHex(result) == ReferenceSha256(Array(ascii)));
  }));
}

}  // namespace
