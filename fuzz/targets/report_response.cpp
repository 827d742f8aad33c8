// Reading of the device's response to a report.

#include "fuzz/Reports.h"
#include "fuzz/Targets.h"

namespace fuzz {

void ReportResponse(Bytes data) {
  using VnZEL10cmn::ByteArray;
  Input input(data);
  const std::uint8_t options = input.Byte();
  const Delivery delivery = Delivery::Take(input, VnZEL10cmn::ZELSerialType::Response);
  VnZEL10cmn::clsZelReport report;
  if (Deliver(report, delivery)) {
    CheckHandOut(delivery.Meant(), [&](ByteArray& buffer, std::int32_t start, std::int32_t* length) {
      return report.BinaryDataGet(VnZEL10cmn::ZELSerialType::Response, buffer, start,
                                  VnZEL10cmn::ZelReportType::Undefined, length);
    });
    const std::vector<std::uint8_t> meant = delivery.Meant();
    FUZZ_CHECK(IsLastText(meant, VnZEL10cmn::ZelTags::Tp_ID, report.TpID()));
    FUZZ_CHECK(FromBase64(report.Signature()) ==
               LastValue(meant, VnZEL10cmn::ZelTags::Signature).value_or(std::vector<std::uint8_t>()));
    VnZEL10cmn::clsZelReport again;
    FUZZ_CHECK(again.BinaryDataSet(delivery.type, ByteArray(delivery.Meant()), 0));
    FUZZ_CHECK(AnswerTheSame(report, again));
  }
  if ((options & 1) != 0) {
    CheckText(report);
  }
  if ((options & 2) != 0) {
    // Whatever it was given, it makes a request like a new one.
    ByteArray request;
    FUZZ_CHECK(report.BinaryDataGet(VnZEL10cmn::ZELSerialType::Request, request, 0,
                                    VnZEL10cmn::ZelReportType::Unsigned));
    FUZZ_CHECK(!report.HasError());
  }
}

}  // namespace fuzz
