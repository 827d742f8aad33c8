#include "tools/Receipt.h"

#include "tools/Document.h"
#include "tools/Items.h"
#include "tools/Report.h"

namespace zel {

namespace {

/// Of a long booking the document, its items as bytes, and the line of one item are held.
void WriteBooking(std::string& xml, Sink& out) {
  VnZEL10cmn::clsZelTransAct booking;
  const std::shared_ptr<AllItems> items = AllItems::StandIn(booking);
  ImportDocument(xml, booking);
  std::string().swap(xml);
  const std::string text = TextOf(booking);
  const std::string place = "    " + std::string(AllItems::kPlace) + "\n";
  const std::size_t start = text.find(place);
  out.Write(std::string_view(text).substr(0, start));
  if (start == std::string::npos) return;
  items->WriteLines(out);
  out.Write(std::string_view(text).substr(start + place.size()));
}

void WriteData(std::string& xml, Sink& out) {
  VnZEL10cmn::clsZelTransActData record;
  ImportDocument(xml, record);
  out.Write(TextOf(record));
}

void WriteReport(const std::string& xml, bool wide, Sink& out) {
  const Document parts = SplitDocument(xml);
  VnZEL10cmn::clsZelReport report;
  const std::shared_ptr<AllItems> items = AllItems::StandIn(report);
  TakeParts(parts, report);
  out.Write(wide ? TextOf(report) : ReportToText(parts.request, parts.response, report, items->Count()));
}

}  // namespace

void WriteReceipt(std::string& xml, bool wide, Sink& out) {
  const DocumentKind kind = GuessDocumentKind(xml);
  ExpectOneThing(xml, kind);
  switch (kind) {
    case DocumentKind::Booking: return WriteBooking(xml, out);
    case DocumentKind::Data: return WriteData(xml, out);
    case DocumentKind::Report: return WriteReport(xml, wide, out);
  }
}

}  // namespace zel
