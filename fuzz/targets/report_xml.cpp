// Import of a report's document.

#include "fuzz/Reports.h"
#include "fuzz/Targets.h"

namespace fuzz {

void ReportXml(Bytes data) {
  Input input(data);
  const std::uint8_t options = input.Byte();
  std::string document;
  if ((options & 1) != 0) {
    document = Input::TextOf(input.Rest());
  } else {
    const std::string attribute = input.Text();
    document = "<reportEncoded>";
    document += XmlElement(input, "itemListEncoded", attribute);
    document += XmlElement(input, "reportRequest");
    document += XmlElement(input, "reportResponse");
    document += (options & 2) != 0 ? "" : "</reportEncoded>";
  }
  VnZEL10cmn::clsZelReport report;
  std::string text = document;
  const bool done = report.XmlHandler(text, false);
  CheckOutcome(report, done, "");
  FUZZ_CHECK(text == document);
  if (done) {
    CheckExport(report, [](VnZEL10cmn::clsZelReport& left, VnZEL10cmn::clsZelReport& right) {
      // A document without a profile leaves the usual one.
      const bool sameProfile = left.ZelProfile() == right.ZelProfile() || left.ZelProfile().empty();
      if (left.ZelProfile().empty()) {
        right.ZelProfile("");
      }
      return AnswerTheSame(left, right) && left.ItemCount() == right.ItemCount() && sameProfile &&
             left.ReportDate() == right.ReportDate() && left.SpanMonthFrom() == right.SpanMonthFrom() &&
             left.SpanMonthUpTo() == right.SpanMonthUpTo() && left.TransportPIN() == right.TransportPIN();
    });
  } else {
    FUZZ_CHECK(!report.ErrorObject().ErrorFunction().empty());
  }
  if ((options & 4) != 0) {
    CheckText(report);
  }
}

}  // namespace fuzz
