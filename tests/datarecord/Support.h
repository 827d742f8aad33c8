#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "VnZEL10cmn/datarecord/clsZelTransActData.h"
#include "tests/booking/Support.h"

namespace test {

using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::ZELDataSignTypes;

/// The data "abc" with its digests.
inline constexpr std::string_view kAbc = "61 62 63";
inline constexpr std::string_view kAbcSha256 =
    "BA 78 16 BF 8F 01 CF EA 41 41 40 DE 5D AE 22 23 B0 03 61 A3 96 17 7A 9C B4 10 FF 61 F2 00 15 AD";
inline constexpr std::string_view kAbcSha256Base64 = "ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=";
inline constexpr std::string_view kAbcSha1 = "A9 99 3E 36 47 06 81 6A BA 3E 25 71 78 50 C2 6C 9C D0 D8 9D";
inline constexpr std::string_view kAbcSha1Base64 = "qZk+NkcGgWq6PiVxeFDCbJzQ2J0=";

/// Date and time records of 15 March 2024, 14:37.
inline constexpr std::string_view kDay = "CD 04 20 24 03 15";
inline constexpr std::string_view kMinute = "CE 02 14 37";

/// The records of a response: sequence number 300, taxpayer "DE1", device 2, 48 bytes 01 to 30 as signature.
inline constexpr std::string_view kSequence = "CB 02 01 2C";
inline constexpr std::string_view kTaxpayer = "C4 03 44 45 31";
inline constexpr std::string_view kDevice = "C5 01 02";
inline constexpr std::string_view kSigned =
    "9E 30 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 "
    "19 1A 1B 1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30";

/// The records one after the other.
template <class... Records>
std::string Join(const Records&... records) {
  std::string all;
  (all.append(records).append(" "), ...);
  return all;
}

/// Hands in data, a request or a response.
inline bool HandIn(clsZelTransActData& record, ZELSerialType type, std::string_view hex) {
  return record.BinaryDataSet(type, FromHex(hex), 0);
}

/// Hands in "abc", to be signed on 15 March 2024, 14:37:25.
inline void FillAbc(clsZelTransActData& record) {
  record.TransactionDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
  EXPECT_TRUE(HandIn(record, ZELSerialType::BinaryData, kAbc)) << record.ErrorObject().ErrorMsg();
}

/// What `BinaryDataGet` writes, in hexadecimal; a failure fails the test.
inline std::string BytesOf(clsZelTransActData& record, ZELSerialType type,
                           const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "bytes of a record");
  ByteArray data = ByteArray::WithBounds(0, 999);
  std::int32_t length = -1;
  EXPECT_TRUE(record.BinaryDataGet(type, data, 0, &length)) << record.ErrorObject().ErrorMsg();
  data.RedimPreserve(length - 1);
  return ToHex(data);
}

/// Bytes that the record refuses, with the whole error.
inline void ExpectReadFailure(clsZelTransActData& record, ZELSerialType type, std::string_view hex,
                              ZELErrorCodes number, std::string_view function, std::string_view message,
                              const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure of reading");
  EXPECT_FALSE(HandIn(record, type, hex)) << hex;
  ExpectError(record.ErrorObject(), number, true, function, message, file, line);
}

/// Bytes that the record can't produce, with the whole error; the caller's bytes stay.
inline void ExpectWriteFailure(clsZelTransActData& record, ZELSerialType type, ZELErrorCodes number,
                               std::string_view function, std::string_view message,
                               const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure of writing");
  ByteArray data = ByteArray::WithBounds(0, 99);
  const ByteArray before = data;
  EXPECT_FALSE(record.BinaryDataGet(type, data, 0));
  ExpectError(record.ErrorObject(), number, true, function, message, file, line);
  EXPECT_EQ(data, before);
}

}  // namespace test
