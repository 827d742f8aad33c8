// Whatever a report asks comes back from its request and its document; whatever is handed in ends in a Boolean.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/report/clsZelReport.h"
#include "tests/report/Support.h"

namespace VnZEL10cmn {
namespace {

using test::FromHex;
using test::Join;

ByteArray Bytes(const std::vector<std::uint8_t>& bytes) {
  return ByteArray{std::span<const std::uint8_t>(bytes)};
}

std::vector<std::uint8_t> Vector(std::string_view hex) {
  const ByteArray bytes = FromHex(hex);
  return {bytes.begin(), bytes.end()};
}

/// A date that a request keeps, in whole minutes.
Date AnyDate() {
  return Date::FromCivil(*rc::gen::inRange(2001, 2099), *rc::gen::inRange(1, 13), *rc::gen::inRange(1, 29),
                         *rc::gen::inRange(0, 24), *rc::gen::inRange(0, 60));
}

ZelReportType FillAnyReport(clsZelReport& report) {
  report.ReportDate(AnyDate());
  report.SpanMonthFrom(AnyDate());
  report.SpanMonthUpTo(AnyDate());
  report.TransportPIN(*rc::gen::container<std::string>(6, rc::gen::inRange<char>('0', '9' + 1)));
  report.UseSHA256(*rc::gen::arbitrary<bool>());
  const auto count = *rc::gen::inRange(0, 4);
  for (int i = 0; i < count; ++i) {
    RC_ASSERT(report.AddItem(test::CashItem("posten" + std::to_string(i), *rc::gen::inRange(-1000, 1000))));
  }
  return ZelReportType{*rc::gen::inRange(0, 6)};
}

bool SameMinute(Date left, Date right) {
  const Date::Civil a = left.ToCivil();
  const Date::Civil b = right.ToCivil();
  return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour && a.minute == b.minute;
}

bool SameMonth(Date left, Date right) {
  return left.ToCivil().year == right.ToCivil().year && left.ToCivil().month == right.ToCivil().month;
}

void AssertSameRequest(const clsZelReport& left, const clsZelReport& right) {
  RC_ASSERT(SameMinute(left.ReportDate(), right.ReportDate()));
  if (left.ReportType() == ZelReportType::Span) {
    RC_ASSERT(SameMonth(left.SpanMonthFrom(), right.SpanMonthFrom()));
    RC_ASSERT(SameMonth(left.SpanMonthUpTo(), right.SpanMonthUpTo()));
  }
  if (left.ReportType() == ZelReportType::ActivateZEL) {
    RC_ASSERT(left.TransportPIN() == right.TransportPIN());
  }
}

TEST(ReportProperty, RequestsAreReadBack) {
  EXPECT_TRUE(rc::check("build a request and read it", [] {
    clsZelReport report;
    const ZelReportType type = FillAnyReport(report);
    ByteArray request;
    std::int32_t length = -1;
    RC_ASSERT(report.BinaryDataGet(ZELSerialType::Request, request, 0, type, &length));
    RC_ASSERT(request.LBound() == 0);
    RC_ASSERT(request.UBound() + 1 == length);
    clsZelReport read;
    RC_ASSERT(read.BinaryDataSet(ZELSerialType::Request, request, 0));
    AssertSameRequest(report, read);
    if (report.ReportType() == ZelReportType::Signed) {
      RC_ASSERT(read.GetItemHash(ZELHashFmt::Base16, true) == report.GetItemHash(ZELHashFmt::Base16));
    }
  }));
}

std::vector<std::uint8_t> AnyResponse() {
  const std::vector<std::string_view> records{test::kState,    test::kTaxpayer, test::kDevice,
                                              test::kSequence, test::kFirst,    test::kLast,
                                              test::kStandard, test::kTraining, test::kSigned};
  std::string response;
  const auto count = *rc::gen::inRange(1, 10);
  for (int i = 0; i < count; ++i) {
    response.append(*rc::gen::elementOf(records)).append(" ");
  }
  return Vector(response);
}

TEST(ReportProperty, DocumentsAreReadBack) {
  EXPECT_TRUE(rc::check("export and import", [] {
    clsZelReport report;
    const ZelReportType type = FillAnyReport(report);
    RC_ASSERT(report.AddItem(test::CashItem("letzter", 1)));
    ByteArray bytes;
    RC_ASSERT(report.BinaryDataGet(ZELSerialType::Request, bytes, 0, type));
    RC_ASSERT(report.BinaryDataSet(ZELSerialType::Response, Bytes(AnyResponse()), 0));
    bytes = ByteArray::WithBounds(0, 2000);
    RC_ASSERT(report.BinaryDataGet(ZELSerialType::ItemList, bytes, 0));
    const auto intent = *rc::gen::inRange<std::int32_t>(-2, 10);
    std::string document;
    RC_ASSERT(report.XmlHandler(document, true, intent));
    clsZelReport read;
    read.UseSHA256(report.UseSHA256());
    RC_ASSERT(read.XmlHandler(document, false));
    AssertSameRequest(report, read);
    RC_ASSERT(read.ItemCount() == report.ItemCount());
    RC_ASSERT(read.ZelStatus() == report.ZelStatus());
    RC_ASSERT(read.TpID() == report.TpID());
    RC_ASSERT(read.TpIdNbr() == report.TpIdNbr());
    RC_ASSERT(read.SequenceNbr() == report.SequenceNbr());
    RC_ASSERT(read.TransSeqNrFirst() == report.TransSeqNrFirst());
    RC_ASSERT(read.TransSeqNrLast() == report.TransSeqNrLast());
    RC_ASSERT(read.Signature() == report.Signature());
    RC_ASSERT(read.Container(1)->Turnover() == report.Container(1)->Turnover());
    RC_ASSERT(read.Container(9)->VATchange() == report.Container(9)->VATchange());
    std::string again;
    RC_ASSERT(read.XmlHandler(again, true, intent));
    RC_ASSERT(again == document);
  }));
}

/// Takes good bytes and damages a few of them, or cuts them off.
std::vector<std::uint8_t> Damaged(std::vector<std::uint8_t> bytes) {
  const auto changes = *rc::gen::inRange(0, 4);
  for (int i = 0; i < changes && !bytes.empty(); ++i) {
    const auto position = *rc::gen::inRange<std::size_t>(0, bytes.size());
    bytes[position] = *rc::gen::arbitrary<std::uint8_t>();
  }
  bytes.resize(*rc::gen::inRange<std::size_t>(0, bytes.size() + 1));
  return bytes;
}

std::vector<std::uint8_t> AnyRequest() {
  return Vector(*rc::gen::elementOf(std::vector<std::string>{
      Join(test::kReportDate, test::kReportHash), Join(test::kReportDate, "D0 03 20 24 01 D1 03 20 24 03"),
      Join(test::kReportDate, "C3 06 31 32 33 34 35 36"), std::string(test::kReportDate)}));
}

TEST(ReportProperty, AnyBytesEndInABoolean) {
  EXPECT_TRUE(rc::check("hand in any bytes", [] {
    const auto type = ZELSerialType{*rc::gen::inRange(0, 8)};
    const std::vector<std::uint8_t> bytes =
        *rc::gen::inRange(0, 3) == 0      ? *rc::gen::arbitrary<std::vector<std::uint8_t>>()
        : type == ZELSerialType::Request  ? Damaged(AnyRequest())
        : type == ZELSerialType::Response ? Damaged(AnyResponse())
                                          : Damaged(Vector(test::kSaleItems));
    clsZelReport report;
    const auto start = *rc::gen::inRange<std::int32_t>(-1, static_cast<std::int32_t>(bytes.size()) + 2);
    const auto length = *rc::gen::inRange<std::int32_t>(-1, static_cast<std::int32_t>(bytes.size()) + 2);
    const bool done =
        report.BinaryDataSet(type, Bytes(bytes), start, *rc::gen::arbitrary<bool>() ? length : 0);
    RC_ASSERT(done == !report.HasError());
    // The report can be used afterwards.
    (void)report.GetItemHash(ZELHashFmt::Base32, true);
    ByteArray data;
    RC_ASSERT(report.BinaryDataGet(ZELSerialType::Request, data, 0, ZelReportType::Unsigned));
    RC_ASSERT(!report.ToString().empty());
  }));
}

TEST(ReportProperty, DamagedDocumentsEndInABoolean) {
  clsZelReport closing;
  test::SetDate(closing);
  test::AddLoaves(closing);
  (void)test::BuildRequest(closing, ZelReportType::Signed);
  ASSERT_TRUE(test::HandIn(closing, ZELSerialType::Response, test::SmallResponse()));
  std::string document;
  ASSERT_TRUE(closing.XmlHandler(document, true, 1));
  EXPECT_TRUE(rc::check("import a damaged document", [&document] {
    std::string damaged = document;
    const auto changes = *rc::gen::inRange(0, 4);
    for (int i = 0; i < changes; ++i) {
      const auto position = *rc::gen::inRange<std::size_t>(0, damaged.size());
      const auto length = *rc::gen::inRange<std::size_t>(0, 30);
      damaged.replace(position, length, *rc::gen::arbitrary<std::string>());
    }
    std::string data = damaged;
    clsZelReport report;
    const bool done = report.XmlHandler(data, false);
    RC_ASSERT(done == !report.HasError());
    RC_ASSERT(data == damaged);
  }));
}

TEST(ReportProperty, AnyTextEndsInABoolean) {
  EXPECT_TRUE(rc::check("import any text", [] {
    std::string data = *rc::gen::arbitrary<std::string>();
    clsZelReport report;
    RC_ASSERT(!report.XmlHandler(data, false));
    RC_ASSERT(report.HasError());
  }));
}

}  // namespace
}  // namespace VnZEL10cmn
