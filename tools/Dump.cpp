#include "tools/Dump.h"

#include <algorithm>
#include <utility>

#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kHexDigits = "0123456789ABCDEFabcdef";
constexpr std::string_view kHexSeparators = "- \r\n";
constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool HoldsOnly(std::string_view text, std::string_view some, std::string_view others) {
  return std::all_of(text.begin(), text.end(), [some, others](char character) {
    return some.find(character) != std::string_view::npos || others.find(character) != std::string_view::npos;
  });
}

/// Whether the text begins with a tag in hexadecimal digits.
bool BeginsWithHexTag(std::string_view text) {
  const std::string_view digits = text.substr(0, 2);
  ByteArray tag;
  return digits.size() == 2 && HoldsOnly(digits, kHexDigits, {}) &&
         clsHelper01().GetBytesOfBinStr(digits, tag) && TagName(tag[0]);
}

/// All tags lie in the upper half of the bytes, which no text form begins with. Text that could be
/// hexadecimal or Base64 is told apart by the tag as well: as Base64, two digits that are a tag in
/// hexadecimal begin with a byte that is none. Only the beginning counts, so that damaged text is recognised
/// too.
Form Recognise(std::string_view content) {
  const std::string_view text = Trim(content);
  if (text.empty() || static_cast<unsigned char>(text.front()) >= 0x80U) return Form::Binary;
  if (text.front() == '<' || text.find("Encoded>") != std::string_view::npos) return Form::Xml;
  if (BeginsWithHexTag(text)) return Form::Hexadecimal;
  constexpr std::size_t kGroup = 4;
  if (HoldsOnly(text.substr(0, kGroup), kBase64Digits, "=")) return Form::Base64;
  return HoldsOnly(text, kHexDigits, kHexSeparators) ? Form::Hexadecimal : Form::Binary;
}

/// Tells how many bytes each item of a list takes, by reading one item ahead of those who show it.
class ItemLengths {
 public:
  explicit ItemLengths(ByteSource& bytes) : reader_(bytes, RunKind::ItemList) {}

  std::int32_t Next() {
    if (!hasRecord_) hasRecord_ = reader_.Next(record_);
    const std::int32_t start = record_.position;
    std::int32_t behind = start;
    do {
      behind = reader_.Position();
      hasRecord_ = reader_.Next(record_);
    } while (hasRecord_ && !BeginsItem(record_, 1));
    return behind - start;
  }

 private:
  RunReader reader_;
  Record record_;
  bool hasRecord_ = false;  ///< the first one of the next item
};

/// Shows the records of a run, and returns what is wrong with it.
std::optional<Fault> WriteRecords(ByteSource& bytes, RunKind kind, DumpOutput& output) {
  RunReader reader(bytes, kind);
  RunCheck check(kind);
  ItemLengths lengths(bytes);
  Record record;
  std::size_t items = 0;
  while (reader.Next(record)) {
    check.Take(record, reader.Bytes());
    if (kind == RunKind::ItemList && BeginsItem(record, items)) {
      if (items > 0) output.EndItem();
      output.BeginItem(++items, record.position, output.WantsItemLengths() ? lengths.Next() : 0);
    }
    output.Show(record);
  }
  if (items > 0) output.EndItem();
  return reader.FoundFault() ? reader.FoundFault() : check.Finish();
}

/// Shows a run. A fault in the text that holds it comes before the cut-off record that follows from it.
void WritePart(DumpPart part, ByteSource& bytes, std::optional<RunKind> kind,
               const std::optional<Fault>& textFault, DumpOutput& output, std::vector<Fault>& faults) {
  const bool isRead = bytes.Size() > 0 || !textFault;
  if (isRead) part.kind = kind ? *kind : GuessKind(bytes);
  part.size = bytes.Size();
  output.BeginPart(part);
  std::optional<Fault> fault;
  if (bytes.Size() > 0) {
    fault = WriteRecords(bytes, part.kind, output);
  } else if (isRead) {
    fault = FindFault(bytes, part.kind);
  }
  if (textFault) fault = textFault;
  if (fault) {
    fault->part = part.element;
    faults.push_back(*fault);
  }
  output.EndPart(fault);
}

Fault ForeignElement(const Element& element, DocumentKind kind) {
  Fault fault;
  fault.part = element.name;
  fault.reason = ForeignReason(kind);
  return fault;
}

/// What stands in the elements of a document.
struct Part {
  Element element;
  RunKind kind;
};

std::vector<Part> PartsOf(DocumentKind document, bool hasItems) {
  const DocumentLayout& layout = LayoutOf(document);
  const bool isReport = document == DocumentKind::Report;
  const bool isData = document == DocumentKind::Data;
  const RunKind request = isReport ? RunKind::ReportRequest
                          : isData ? RunKind::DataRequest
                                   : RunKind::Request;
  const RunKind response = isReport ? RunKind::ReportResponse
                           : isData ? RunKind::DataResponse
                                    : RunKind::Response;
  std::vector<Part> parts = {{layout.request, request}, {layout.response, response}};
  // Reports without items are usual, and data records have none.
  if (document == DocumentKind::Booking || hasItems) {
    parts.insert(parts.begin(), {kItemListElement, RunKind::ItemList});
  }
  return parts;
}

void WriteXml(std::string_view xml, DocumentKind document, DumpOutput& output, std::vector<Fault>& faults) {
  if (const Element* const foreign = FindForeignElement(xml, document)) {
    faults.push_back(ForeignElement(*foreign, document));
  }
  Fault fault;
  const std::optional<ElementText> whole = FindElement(xml, LayoutOf(document).whole, fault);
  if (!whole) faults.push_back(fault);
  // Without it the elements inside may be whole.
  const std::string_view content = whole ? whole->content : xml;
  for (const auto& [element, kind] : PartsOf(document, HoldsItems(xml))) {
    const std::optional<ElementText> text = FindElement(content, element, fault);
    if (!text) {
      faults.push_back(fault);
      continue;
    }
    const DumpPart part{.element = element.name, .profile = text->profile};
    if (text->content.empty()) {
      MemoryBytes nothing{std::span<const std::uint8_t>()};
      WritePart(part, nothing, kind, std::nullopt, output, faults);
    } else {
      EncodedBytes bytes(text->content, Encoding::Base64);
      WritePart(part, bytes, kind, bytes.TextFault(), output, faults);
    }
  }
}

}  // namespace

std::vector<Fault> WriteDump(std::string_view content, DumpOutput& output) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  const std::size_t mark = content.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  content.remove_prefix(mark);
  std::vector<Fault> faults;
  const Form form = Recognise(content);
  const DocumentKind document = form == Form::Xml ? GuessDocumentKind(content) : DocumentKind::Booking;
  output.Begin(form, document);
  if (form == Form::Xml) {
    WriteXml(content, document, output, faults);
  } else if (form == Form::Binary) {
    MemoryBytes bytes(BytesOf(content));
    WritePart({}, bytes, std::nullopt, std::nullopt, output, faults);
  } else {
    EncodedBytes bytes(Trim(content), form == Form::Base64 ? Encoding::Base64 : Encoding::Hexadecimal);
    std::optional<Fault> fault = bytes.TextFault();
    if (fault) *fault->position += static_cast<std::int64_t>(mark + content.find_first_not_of(kBlanks));
    WritePart({}, bytes, std::nullopt, fault, output, faults);
  }
  output.End(faults);
  return faults;
}

}  // namespace zel
