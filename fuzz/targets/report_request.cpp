// Reading of a report's request.

#include "fuzz/Objects.h"
#include "fuzz/Targets.h"

namespace fuzz {

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZelReportType;
using VnZEL10cmn::ZELSerialType;
using VnZEL10cmn::ZelTags;

/// The kind of report that a request is, told by the record behind date and time.
ZelReportType KindOf(const std::vector<std::uint8_t>& request) {
  std::size_t at = 0;
  for (int record = 0; record < 2 && at + 1 < request.size(); ++record) {
    at += 2 + request[at + 1];
  }
  const auto tag = at < request.size() ? static_cast<ZelTags>(request[at]) : ZelTags{};
  return tag == ZelTags::Month_Start     ? ZelReportType::Span
         : tag == ZelTags::Transport_Pin ? ZelReportType::ActivateZEL
                                         : ZelReportType::Unsigned;
}

bool IsSettable(Date date) {
  return date > Date::FromCivil(2000, 1, 1) && date < Date::FromCivil(2099, 12, 31);
}

}  // namespace

void ReportRequest(Bytes data) {
  Input input(data);
  const std::uint8_t options = input.Byte();
  const Delivery delivery = Delivery::Take(input, ZELSerialType::Request);
  clsZelReport report;
  if (Deliver(report, delivery)) {
    const ZelReportType kind = KindOf(delivery.Meant());
    const Date from = report.SpanMonthFrom();
    const Date upTo = report.SpanMonthUpTo();
    clsZelReport same;
    FUZZ_CHECK(same.BinaryDataSet(delivery.type, ByteArray(delivery.Meant()), 0));
    FUZZ_CHECK(same.ReportDate() == report.ReportDate() && same.SpanMonthFrom() == from &&
               same.SpanMonthUpTo() == upTo && same.TransportPIN() == report.TransportPIN());
    // The same request, made of what was read. A date at the bounds would be replaced by the present one.
    ByteArray request;
    if (IsSettable(report.ReportDate()) && report.BinaryDataGet(ZELSerialType::Request, request, 0, kind)) {
      FUZZ_CHECK(report.ReportType() == kind);
      clsZelReport again;
      FUZZ_CHECK(again.BinaryDataSet(ZELSerialType::Request, request, 0));
      FUZZ_CHECK(again.ReportDate() == report.ReportDate() && again.TransportPIN() == report.TransportPIN());
      FUZZ_CHECK(
          kind != ZelReportType::Span ||
          (again.SpanMonthFrom() <= from && again.SpanMonthUpTo().ToCivil().month == upTo.ToCivil().month));
    }
  }
  if ((options & 1) != 0) {
    CheckText(report);
  }
}

}  // namespace fuzz
