// The request of a report: every kind byte by byte, and how building it can fail.

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/report/clsZelReport.h"
#include "tests/report/Support.h"
#include "tests/support/Stamp.h"

namespace VnZEL10cmn {
namespace {

using test::AddLoaves;
using test::BuildRequest;
using test::FromHexAt;
using test::kReportDate;
using test::kReportHash;
using test::SetDate;
using test::ToHex;

const std::string header = "Report: Kodieren der ZEL-Anfrage nicht möglich!\r\n";

/// A request that can't be built, with the whole error; the caller's bytes stay.
void ExpectRequestFailure(clsZelReport& report, ZelReportType type, std::string_view function,
                          std::string_view message, const char* file = __builtin_FILE(),
                          int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure of the request");
  const ZelReportType before = report.ReportType();
  ByteArray data = test::FromHex("01 02");
  EXPECT_FALSE(report.BinaryDataGet(ZELSerialType::Request, data, 0, type));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, function, message, file, line);
  EXPECT_EQ(ToHex(data), "01 02");
  EXPECT_EQ(report.ReportType(), before);
}

/// An item that can never be written.
class BrokenItem : public test::FakeItem {
 public:
  bool BinaryDataGet(ByteArray& /*Data*/, std::int32_t& /*Start*/) override { return false; }
};

// The kinds

TEST(ReportRequest, Signed) {
  clsZelReport report;
  SetDate(report);
  AddLoaves(report);
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Signed)),
            std::string(kReportDate) + " " + std::string(kReportHash));
  test::ExpectNoError(report);
  EXPECT_EQ(report.ReportType(), ZelReportType::Signed);
}

TEST(ReportRequest, SignedWithSha256) {
  clsZelReport report;
  SetDate(report);
  AddLoaves(report);
  report.UseSHA256(true);
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Signed)),
            std::string(kReportDate) +
                " D4 20 DB 83 31 5B C2 05 40 8C 53 6D 18 A7 56 21 B5 68 2C 71 D4 EA CD 2E 83 4E 7C D5 76 63 "
                "53 78 3E 6D");
}

TEST(ReportRequest, SignedWithoutItemsHasNoHash) {
  clsZelReport report;
  SetDate(report);
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Signed)), kReportDate);
  test::ExpectNoError(report);
  EXPECT_EQ(report.ReportType(), ZelReportType::Signed);
}

TEST(ReportRequest, UndefinedIsSigned) {
  clsZelReport report;
  SetDate(report);
  AddLoaves(report);
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Undefined)),
            std::string(kReportDate) + " " + std::string(kReportHash));
  EXPECT_EQ(report.ReportType(), ZelReportType::Signed);
}

TEST(ReportRequest, OmittedKindIsSigned) {
  clsZelReport report;
  SetDate(report);
  ByteArray request;
  EXPECT_TRUE(report.BinaryDataGet(ZELSerialType::Request, request, 0));
  EXPECT_EQ(ToHex(request), kReportDate);
  EXPECT_EQ(report.ReportType(), ZelReportType::Signed);
}

TEST(ReportRequest, Unsigned) {
  clsZelReport report;
  SetDate(report);
  AddLoaves(report);
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Unsigned)), kReportDate);
  EXPECT_EQ(report.ReportType(), ZelReportType::Unsigned);
}

TEST(ReportRequest, Span) {
  clsZelReport report;
  SetDate(report);
  AddLoaves(report);
  report.SpanMonthFrom(Date::FromCivil(2024, 1, 31));
  report.SpanMonthUpTo(Date::FromCivil(2024, 3, 1));
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Span)),
            std::string(kReportDate) + " D0 03 20 24 01 D1 03 20 24 03");
  EXPECT_EQ(report.ReportType(), ZelReportType::Span);
  EXPECT_EQ(report.SpanMonthFrom(), Date::FromCivil(2024, 1, 31));
  EXPECT_EQ(report.SpanMonthUpTo(), Date::FromCivil(2024, 3, 1));
}

TEST(ReportRequest, SpanIsOverAllMonthsAtFirst) {
  clsZelReport report;
  SetDate(report);
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Span)),
            std::string(kReportDate) + " D0 03 20 00 01 D1 03 20 99 12");
}

TEST(ReportRequest, SpanThatEndsBeforeItsStartIsItsLastMonth) {
  clsZelReport report;
  SetDate(report);
  report.SpanMonthFrom(Date::FromCivil(2004, 5, 1));
  report.SpanMonthUpTo(Date::FromCivil(2004, 3, 1));
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Span)),
            std::string(kReportDate) + " D0 03 20 04 03 D1 03 20 04 03");
  EXPECT_EQ(report.SpanMonthFrom(), Date::FromCivil(2004, 3, 1));
  EXPECT_EQ(report.SpanMonthUpTo(), Date::FromCivil(2004, 3, 1));
  // The start has moved for good.
  report.SpanMonthUpTo(Date::FromCivil(2004, 12, 1));
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Span)),
            std::string(kReportDate) + " D0 03 20 04 03 D1 03 20 04 12");
}

TEST(ReportRequest, SpanOfOneMonth) {
  clsZelReport report;
  SetDate(report);
  report.SpanMonthFrom(Date::FromCivil(2004, 3, 1));
  report.SpanMonthUpTo(Date::FromCivil(2004, 3, 31, 23, 59, 59));
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Span)),
            std::string(kReportDate) + " D0 03 20 04 03 D1 03 20 04 03");
  EXPECT_EQ(report.SpanMonthFrom(), Date::FromCivil(2004, 3, 1));
}

TEST(ReportRequest, OtherKindsLeaveTheSpanAlone) {
  clsZelReport report;
  SetDate(report);
  report.SpanMonthFrom(Date::FromCivil(2004, 5, 1));
  report.SpanMonthUpTo(Date::FromCivil(2004, 3, 1));
  (void)BuildRequest(report, ZelReportType::Unsigned);
  EXPECT_EQ(report.SpanMonthFrom(), Date::FromCivil(2004, 5, 1));
}

TEST(ReportRequest, Activation) {
  clsZelReport report;
  SetDate(report);
  AddLoaves(report);
  report.TransportPIN(" 012345 ");
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::ActivateZEL)),
            std::string(kReportDate) + " C3 06 30 31 32 33 34 35");
  EXPECT_EQ(report.ReportType(), ZelReportType::ActivateZEL);
}

TEST(ReportRequest, Deactivation) {
  clsZelReport report;
  SetDate(report);
  AddLoaves(report);
  report.TransportPIN("123456");
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::DeactivateZEL)), kReportDate);
  EXPECT_EQ(report.ReportType(), ZelReportType::DeactivateZEL);
}

TEST(ReportRequest, OtherKindsHaveDateAndTimeAlone) {
  clsZelReport report;
  SetDate(report);
  AddLoaves(report);
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType{6})), kReportDate);
  EXPECT_EQ(static_cast<int>(report.ReportType()), 6);
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType{-1})), kReportDate);
}

TEST(ReportRequest, ItemHash2IsAnotherNameOfRequest) {
  clsZelReport report;
  SetDate(report);
  ByteArray request;
  EXPECT_TRUE(report.BinaryDataGet(ZELSerialType::ItemHash2, request, 0, ZelReportType::Unsigned));
  EXPECT_EQ(ToHex(request), kReportDate);
}

TEST(ReportRequest, ReplacesTheCallersArray) {
  clsZelReport report;
  SetDate(report);
  for (const std::int32_t start : {0, 99, -5}) {
    ByteArray request = FromHexAt(7, "01 02 03");
    std::int32_t length = -1;
    EXPECT_TRUE(
        report.BinaryDataGet(ZELSerialType::Request, request, start, ZelReportType::Unsigned, &length));
    EXPECT_EQ(request.LBound(), 0);
    EXPECT_EQ(request.UBound(), 9);
    EXPECT_EQ(ToHex(request), kReportDate);
    EXPECT_EQ(length, 10);
  }
}

// The date

TEST(ReportRequest, DateIsWrittenInDaysAndMinutes) {
  clsZelReport report;
  report.ReportDate(Date::FromCivil(2031, 12, 1, 0, 5, 59));
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Unsigned)), "CD 04 20 31 12 01 CE 02 00 05");
  EXPECT_EQ(report.ReportDate(), Date::FromCivil(2031, 12, 1, 0, 5, 59));
}

TEST(ReportRequest, DatesJustInsideTheBoundsStay) {
  clsZelReport report;
  report.ReportDate(Date::FromCivil(2000, 1, 1, 0, 0, 1));
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Unsigned)), "CD 04 20 00 01 01 CE 02 00 00");
  report.ReportDate(Date::FromCivil(2099, 12, 31, 23, 59, 58));
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Unsigned)), "CD 04 20 99 12 31 CE 02 23 59");
}

/// The digits of the date and time records: "yyyyMMddHHmm".
std::string Stamp(const ByteArray& request) {
  const std::string digits = test::Digits(request);
  return digits.substr(4, 8) + digits.substr(16, 4);
}

TEST(ReportRequest, UndatedReportTakesThePresentTime) {
  for (const ZelReportType type : {ZelReportType::Undefined, ZelReportType::Signed, ZelReportType::Unsigned,
                                   ZelReportType::Span, ZelReportType::DeactivateZEL}) {
    const test::Moment moment;
    clsZelReport report;
    const ByteArray request = BuildRequest(report, type);
    EXPECT_TRUE(moment.Matches(report.ReportDate()));
    EXPECT_TRUE(moment.Matches(Stamp(request), "%Y%m%d%H%M")) << ToHex(request);
  }
}

TEST(ReportRequest, DatesAtTheBoundsTakeThePresentTime) {
  for (const Date bound : {Date::FromCivil(2000, 1, 1), Date::FromCivil(1980, 1, 1),
                           Date::FromCivil(2099, 12, 31, 23, 59, 59), Date::FromCivil(2150, 1, 1)}) {
    const test::Moment moment;
    clsZelReport report;
    report.ReportDate(bound);
    const ByteArray request = BuildRequest(report, ZelReportType::Unsigned);
    EXPECT_TRUE(moment.Matches(report.ReportDate()));
    EXPECT_TRUE(moment.Matches(Stamp(request), "%Y%m%d%H%M")) << ToHex(request);
  }
}

// Again and again

TEST(ReportRequest, CanBeBuiltAgain) {
  clsZelReport report;
  SetDate(report);
  report.TransportPIN("123456");
  (void)BuildRequest(report, ZelReportType::ActivateZEL);
  AddLoaves(report);
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Signed)),
            std::string(kReportDate) + " " + std::string(kReportHash));
  EXPECT_EQ(report.ReportType(), ZelReportType::Signed);
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Unsigned)), kReportDate);
}

TEST(ReportRequest, ThatWasBuiltLastIsExported) {
  clsZelReport report;
  SetDate(report);
  report.TransportPIN("123456");
  (void)BuildRequest(report, ZelReportType::Unsigned);
  (void)BuildRequest(report, ZelReportType::ActivateZEL);
  report.TransportPIN("1");
  ExpectRequestFailure(
      report, ZelReportType::ActivateZEL, "EncodeRqst.[SetZelTranspPin]",
      header + "Die Transport-PIN konnte nicht geschrieben werden!\r\n    Position ........: 10");
  ASSERT_TRUE(test::HandIn(report, ZELSerialType::Response, test::kState));
  std::string document;
  EXPECT_TRUE(report.XmlHandler(document, true, -1));
  EXPECT_EQ(document,
            "<reportEncoded><reportRequest>zQQgJAMVzgIUN8MGMTIzNDU2</reportRequest>"
            "<reportResponse>wAED</reportResponse></reportEncoded>");
}

// Failures

TEST(ReportRequestFailure, TransportPinIsNotSixDigits) {
  test::TestLog log;
  clsZelReport report;
  SetDate(report);
  report.LogHandler(log.Handler());
  for (const std::string_view pin : {"", "12345", "1234567", "12345A", "12 456", "12345ü"}) {
    report.TransportPIN(pin);
    ExpectRequestFailure(
        report, ZelReportType::ActivateZEL, "EncodeRqst.[SetZelTranspPin]",
        header + "Die Transport-PIN konnte nicht geschrieben werden!\r\n    Position ........: 10");
  }
  // The coder logs its own failure first.
  ASSERT_EQ(log.Count(), 12U);
  EXPECT_EQ(test::LogSources(log)[0], "clsZelBaseCoding");
  EXPECT_EQ(test::LogSources(log)[1], "clsZelReport");
  EXPECT_EQ(log.Functions()[0], "SetZelTranspPin");
  EXPECT_EQ(log.Functions()[1], "EncodeRqst.[SetZelTranspPin]");
  EXPECT_EQ(log.Numbers()[1], "9301");
  // A later success clears the error.
  report.TransportPIN("123456");
  (void)BuildRequest(report, ZelReportType::ActivateZEL);
  test::ExpectNoError(report);
}

TEST(ReportRequestFailure, KeepsThePresentTime) {
  const test::Moment moment;
  clsZelReport report;
  ExpectRequestFailure(
      report, ZelReportType::ActivateZEL, "EncodeRqst.[SetZelTranspPin]",
      header + "Die Transport-PIN konnte nicht geschrieben werden!\r\n    Position ........: 10");
  EXPECT_TRUE(moment.Matches(report.ReportDate()));
}

TEST(ReportRequestFailure, ItemsThatCannotBeHashed) {
  test::TestLog log;
  clsZelReport report;
  SetDate(report);
  ASSERT_TRUE(report.AddItem(std::make_shared<BrokenItem>()));
  report.LogHandler(log.Handler());
  ExpectRequestFailure(report, ZelReportType::Signed, "EncodeRqst.[GetItemHash]",
                       header +
                           "Der Hashcode konnte nicht aus den Abschlußposten ermittelt werden werden!\r\n"
                           "    Position ........: 10\r\n"
                           "    Hash-Typ ........: SHA1");
  EXPECT_EQ(log.Functions().back(), "EncodeRqst.[GetItemHash]");
  EXPECT_EQ(test::LogSources(log).back(), "clsZelReport");
  report.UseSHA256(true);
  ExpectRequestFailure(report, ZelReportType::Undefined, "EncodeRqst.[GetItemHash]",
                       header +
                           "Der Hashcode konnte nicht aus den Abschlußposten ermittelt werden werden!\r\n"
                           "    Position ........: 10\r\n"
                           "    Hash-Typ ........: SHA256");
  // Other kinds don't look at the items.
  EXPECT_EQ(ToHex(BuildRequest(report, ZelReportType::Unsigned)), kReportDate);
}

TEST(ReportRequestFailure, ItemsThatCannotBeWrittenAgain) {
  clsZelReport report;
  SetDate(report);
  const auto item = std::make_shared<test::FakeItem>();
  item->failAtWrite = 2;
  ASSERT_TRUE(report.AddItem(item));
  ByteArray data = test::FromHex("01 02");
  EXPECT_FALSE(report.BinaryDataGet(ZELSerialType::Request, data, 0, ZelReportType::Signed));
  EXPECT_EQ(report.ErrorObject().ErrorNr(), 9301);
  EXPECT_EQ(ToHex(data), "01 02");
}

TEST(ReportRequestFailure, DatesThatAreNone) {
  const Date none(std::numeric_limits<double>::quiet_NaN());
  clsZelReport report;
  report.ReportDate(none);
  ExpectRequestFailure(
      report, ZelReportType::Unsigned, "EncodeRqst.[SetZelDates]",
      header + "Das Abschlußdatum konnte nicht geschrieben werden!\r\n    Position ........: 0");
  SetDate(report);
  report.SpanMonthFrom(none);
  ExpectRequestFailure(report, ZelReportType::Span, "EncodeRqst.[SetZelDatesSpc01]",
                       header +
                           "Der Beginn des Abfragezeitraums konnte nicht geschrieben werden!\r\n"
                           "    Position ........: 10");
  report.SpanMonthFrom(Date::FromCivil(2024, 1, 1));
  report.SpanMonthUpTo(none);
  ExpectRequestFailure(report, ZelReportType::Span, "EncodeRqst.[SetZelDatesSpc01]",
                       header +
                           "Das Ende des Abfragezeitraums konnte nicht geschrieben werden!\r\n"
                           "    Position ........: 15");
}

}  // namespace
}  // namespace VnZEL10cmn
