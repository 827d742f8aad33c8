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
using test::ExpectFault;
using test::ExpectNoError;
using test::FromHex;
using test::FromHexAt;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::ZELErrorCodes;

namespace {

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();

ByteArray Ascii(std::string_view text) {
  return ByteArray(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

std::string Encode(const ByteArray& data, bool hex = false, std::int32_t start = 0, std::int32_t count = 0,
                   std::int32_t lineLen = 0) {
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_TRUE(helper.ToBase32String(data, result, start, count, lineLen, hex));
  ExpectNoError(helper);
  return result;
}

using Lengths = std::vector<std::size_t>;

Lengths LineLengths(std::string_view text) {
  Lengths lengths;
  std::size_t start = 0;
  for (std::size_t end = text.find("\r\n"); end != std::string_view::npos; end = text.find("\r\n", start)) {
    lengths.push_back(end - start);
    start = end + 2;
  }
  lengths.push_back(text.size() - start);
  return lengths;
}

TEST(ToBase32String, PublishedVectors) {
  EXPECT_EQ(Encode(Ascii("")), "");
  EXPECT_EQ(Encode(Ascii("f")), "MY======");
  EXPECT_EQ(Encode(Ascii("fo")), "MZXQ====");
  EXPECT_EQ(Encode(Ascii("foo")), "MZXW6===");
  EXPECT_EQ(Encode(Ascii("foob")), "MZXW6YQ=");
  EXPECT_EQ(Encode(Ascii("fooba")), "MZXW6YTB");
  EXPECT_EQ(Encode(Ascii("foobar")), "MZXW6YTBOI======");
}

TEST(ToBase32String, PublishedVectorsOfTheHexAlphabet) {
  EXPECT_EQ(Encode(Ascii(""), true), "");
  EXPECT_EQ(Encode(Ascii("f"), true), "CO======");
  EXPECT_EQ(Encode(Ascii("fo"), true), "CPNG====");
  EXPECT_EQ(Encode(Ascii("foo"), true), "CPNMU===");
  EXPECT_EQ(Encode(Ascii("foob"), true), "CPNMUOG=");
  EXPECT_EQ(Encode(Ascii("fooba"), true), "CPNMUOJ1");
  EXPECT_EQ(Encode(Ascii("foobar"), true), "CPNMUOJ1E8======");
}

TEST(ToBase32String, Byte66InBothAlphabets) {
  EXPECT_EQ(Encode(FromHex("66")), "MY======");
  EXPECT_EQ(Encode(FromHex("66"), true), "CO======");
}

TEST(ToBase32String, UsesAll32Digits) {
  const ByteArray bytes = FromHex("00 44 32 14 C7 42 54 B6 35 CF 84 65 3A 56 D7 C6 75 BE 77 DF");
  EXPECT_EQ(Encode(bytes), "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567");
  EXPECT_EQ(Encode(bytes, true), "0123456789ABCDEFGHIJKLMNOPQRSTUV");
}

TEST(ToBase32String, ANegativeLowerBoundFails) {
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_FALSE(helper.ToBase32String(FromHexAt(-7, "01 02"), result));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvLBound, true, "ToBase32String",
              "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -7");
  EXPECT_EQ(result, "before");
}

TEST(ToBase32String, AStartAboveTheUpperBoundFails) {
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_FALSE(helper.ToBase32String(FromHex("01 02 03"), result, 3));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "ToBase32String",
              "Der Startindex liegt außerhalb des gültigen Bereiches\r\nObergrenze: 2\r\nStartindex: 3");
  EXPECT_EQ(result, "before");
}

TEST(ToBase32String, StartAndCountSelectBytes) {
  EXPECT_EQ(Encode(Ascii("xfoobar"), false, 1), "MZXW6YTBOI======");
  EXPECT_EQ(Encode(Ascii("xfoobar"), false, 1, 5), "MZXW6YTB");
  EXPECT_EQ(Encode(Ascii("xfoo"), false, 3, largest), "N4======");
  EXPECT_EQ(Encode(Ascii("foo"), false, -1, -1), "MZXW6===");
  EXPECT_EQ(Encode(Ascii("foo"), false, 0, 9), "MZXW6===");
  EXPECT_EQ(Encode(ByteArray(), false, 3, 3, 16), "");
}

TEST(ToBase32String, APositiveLowerBoundNeedsAStartInsideTheBounds) {
  const ByteArray bytes = FromHexAt(5, "66 6F 6F");
  EXPECT_EQ(Encode(bytes, false, 5), "MZXW6===");
  EXPECT_EQ(Encode(FromHexAt(largest - 2, "66 6F 6F"), false, largest - 2, largest), "MZXW6===");
  clsHelper01 helper;
  std::string result = "before";
  EXPECT_FALSE(helper.ToBase32String(bytes, result));
  ExpectFault(helper.ErrorObject(), 9, "ToBase32String");
  EXPECT_FALSE(helper.ToBase32String(bytes, result, 4, 2));
  ExpectFault(helper.ErrorObject(), 9, "ToBase32String");
  EXPECT_EQ(result, "before");
}

TEST(ToBase32String, FailuresAreLoggedOnce) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  std::string result;
  helper.ToBase32String(FromHexAt(-1, "01"), result);
  helper.ToBase32String(FromHex("01"), result, 1);
  helper.ToBase32String(FromHexAt(1, "01"), result);
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9102", "9103", "9"}));
}

TEST(ToBase32String, LinesBreakFromLength16On) {
  const ByteArray bytes = FromHex("00 44 32 14 C7 42 54 B6 35 CF 84 65 3A 56 D7 C6 75 BE 77 DF");
  EXPECT_EQ(Encode(bytes, false, 0, 0, 15), "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567");
  EXPECT_EQ(Encode(bytes, false, 0, 0, 16), "ABCDEFGHIJKLMNOP\r\nQRSTUVWXYZ234567");
  EXPECT_EQ(Encode(bytes, true, 0, 0, 16), "0123456789ABCDEF\r\nGHIJKLMNOPQRSTUV");
  EXPECT_EQ(Encode(bytes, false, 0, 0, smallest), "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567");
}

TEST(ToBase32String, TheLastLineMayHoldOneCharacterMore) {
  const auto lengths = [](std::int32_t bytes, std::int32_t lineLen) {
    return LineLengths(Encode(ByteArray::WithBounds(0, bytes - 1), false, 0, 0, lineLen));
  };
  EXPECT_EQ(lengths(10, 16), (Lengths{16}));
  EXPECT_EQ(lengths(15, 16), (Lengths{16, 8}));
  EXPECT_EQ(lengths(15, 23), (Lengths{24}));
  EXPECT_EQ(lengths(15, 22), (Lengths{22, 2}));
  EXPECT_EQ(lengths(40, 21), (Lengths{21, 21, 22}));
  EXPECT_EQ(lengths(20, 17), (Lengths{17, 15}));
  EXPECT_EQ(lengths(20, largest), (Lengths{32}));
}

/// Five bits at a time, most significant first.
std::string Reference(const std::vector<std::uint8_t>& data, std::string_view alphabet) {
  std::string text;
  for (std::size_t bit = 0; bit < data.size() * 8; bit += 5) {
    unsigned digit = 0;
    for (std::size_t i = bit; i < bit + 5; ++i) {
      digit *= 2;
      if (i / 8 < data.size()) {
        digit += (data[i / 8] >> (7 - i % 8)) & 1U;
      }
    }
    text += alphabet[digit];
  }
  while (text.size() % 8 != 0) {
    text += '=';
  }
  return text;
}

TEST(Base32Properties, HoldsTheBitsFiveAtATime) {
  EXPECT_TRUE(rc::check("both alphabets", [](const std::vector<std::uint8_t>& data) {
    const ByteArray bytes{std::span<const std::uint8_t>(data)};
    clsHelper01 helper;
    std::string text;
    RC_ASSERT(helper.ToBase32String(bytes, text));
    RC_ASSERT(text == Reference(data, "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567"));
    RC_ASSERT(helper.ToBase32String(bytes, text, 0, 0, 0, true));
    RC_ASSERT(text == Reference(data, "0123456789ABCDEFGHIJKLMNOPQRSTUV"));
  }));
}

TEST(Base32Properties, AnyArgumentsEndInABoolean) {
  EXPECT_TRUE(rc::check("ToBase32String", [](const std::vector<std::uint8_t>& data, bool hex) {
    const auto index =
        rc::gen::oneOf(rc::gen::inRange(-20, 40), rc::gen::element(smallest, largest, largest - 1));
    const auto lower = *rc::gen::element(-3, 0, 0, 0, 1, 7, largest - 200);
    ByteArray bytes = ByteArray::WithBounds(lower, lower + static_cast<std::int32_t>(data.size()) - 1);
    std::copy(data.begin(), data.end(), bytes.begin());
    clsHelper01 helper;
    std::string result = "before";
    const bool done = helper.ToBase32String(bytes, result, *index, *index, *index, hex);
    RC_ASSERT(done == !helper.HasError());
    if (!done) {
      RC_ASSERT(result == "before");
    }
  }));
}

}  // namespace
