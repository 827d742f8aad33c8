#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/report/clsZelReport.h"
#include "tests/booking/Support.h"

namespace test {

using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::ZelReportType;

/// Date and time records of 15 March 2024, 14:37.
inline constexpr std::string_view kReportDate = "CD 04 20 24 03 15 CE 02 14 37";
/// The SHA-1 hash record of the sale's item list.
inline constexpr std::string_view kReportHash =
    "D4 14 D4 66 54 1D 2A DD 27 A5 5F 74 07 3A FD 6E AC BE 16 A3 37 FA";

/// The records of a response: state "activated", taxpayer "DE1", device 2, report 300, bookings 5 to 1000.
inline constexpr std::string_view kState = "C0 01 03";
inline constexpr std::string_view kTaxpayer = "C4 03 44 45 31";
inline constexpr std::string_view kDevice = "C5 01 02";
inline constexpr std::string_view kSequence = "CC 02 01 2C";
inline constexpr std::string_view kFirst = "D2 01 05";
inline constexpr std::string_view kLast = "D3 02 03 E8";
/// 1,234,567,890,123.45 at 19 %, of which 2.50 were negative.
inline constexpr std::string_view kStandard = "E1 12 D8 08 12 34 56 78 90 12 34 5C D9 02 25 0C DB 02 19 00";
/// Training: 7.01 at 0 %, overflow and a changed rate.
inline constexpr std::string_view kTraining = "E9 0B D8 02 70 1C DB 01 00 DC 00 DE 00";
/// 48 bytes, 01 to 30.
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

inline std::string SmallResponse() {
  return Join(kState, kTaxpayer, kDevice, kSequence, kFirst, kLast, kSigned);
}

/// 15 March 2024, 14:37:25.
inline void SetDate(clsZelReport& report) { report.ReportDate(Date::FromCivil(2024, 3, 15, 14, 37, 25)); }

/// Two loaves for 11.90, the items of the sale.
inline void AddLoaves(clsZelReport& report) {
  auto item = std::make_shared<VnZEL10cmn::clsZelItemCash>();
  EXPECT_TRUE(item->SetItemData(2, "Brot", {}, Currency::FromScaled(119000)));
  EXPECT_TRUE(report.AddItem(item));
}

/// Builds a request; a failure fails the test.
inline ByteArray BuildRequest(clsZelReport& report, ZelReportType type) {
  ByteArray request;
  EXPECT_TRUE(report.BinaryDataGet(ZELSerialType::Request, request, 0, type))
      << report.ErrorObject().ErrorMsg();
  return request;
}

/// Hands in the bytes of a response, a request or an item list.
inline bool HandIn(clsZelReport& report, ZELSerialType type, std::string_view hex) {
  return report.BinaryDataSet(type, FromHex(hex), 0);
}

/// Bytes that the report refuses, with the whole error.
inline void ExpectReadFailure(clsZelReport& report, ZELSerialType type, std::string_view hex,
                              ZELErrorCodes number, std::string_view function, std::string_view message,
                              const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure of reading");
  EXPECT_FALSE(HandIn(report, type, hex)) << hex;
  ExpectError(report.ErrorObject(), number, true, function, message, file, line);
}

}  // namespace test
