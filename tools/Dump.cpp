#include "tools/Dump.h"

#include <algorithm>
#include <utility>

#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::clsZelBaseCoding;

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

/// The position in `text` of the character that ends its sound beginning, and how many digits stand before
/// it.
std::pair<std::size_t, std::size_t> SoundBeginning(std::string_view text, std::string_view digits,
                                                   std::string_view passedOver) {
  std::size_t count = 0;
  std::size_t position = 0;
  for (; position < text.size(); ++position) {
    if (digits.find(text[position]) != std::string_view::npos) {
      ++count;
    } else if (passedOver.find(text[position]) == std::string_view::npos) {
      break;
    }
  }
  return {position, count};
}

/// Decodes a text form; of a damaged text the bytes before the damage are decoded as well.
ByteArray Decode(std::string_view text, Form form, std::optional<Fault>& fault) {
  clsHelper01 helper;
  const bool isHex = form == Form::Hexadecimal;
  const auto decode = [&helper, isHex](std::string_view part, ByteArray& bytes) {
    return isHex ? helper.GetBytesOfBinStr(part, bytes) : helper.FromBase64String(part, bytes);
  };
  ByteArray bytes;
  if (decode(text, bytes)) return bytes;
  fault.emplace();
  fault->unit = "character";
  fault->number = helper.ErrorObject().ErrorNr();
  fault->reason = LibraryMessage(helper.ErrorObject().ErrorMsg());

  const std::string_view passedOver = isHex ? kHexSeparators : std::string_view("\r\n");
  const auto [end, count] = SoundBeginning(text, isHex ? kHexDigits : kBase64Digits, passedOver);
  fault->position = static_cast<std::int64_t>(end);
  std::string sound(text.substr(0, end));
  std::erase_if(
      sound, [passedOver](char character) { return passedOver.find(character) != std::string_view::npos; });
  sound.resize(count - count % (isHex ? 2 : 4));
  bytes = {};
  if (!sound.empty()) decode(sound, bytes);
  return bytes;
}

/// Reads the run that a text holds. A fault in the text comes before the cut-off record that follows from it.
void AddPart(Dump& dump, std::string_view element, const ByteArray& bytes, std::optional<RunKind> kind,
             std::optional<Fault> textFault) {
  DumpPart part;
  part.element = element;
  if (bytes.size() > 0 || !textFault) {
    part.run = ReadRun(bytes, kind ? *kind : GuessKind(bytes));
  }
  if (textFault) part.run.fault = std::move(textFault);
  if (part.run.fault) {
    part.run.fault->part = element;
    dump.faults.push_back(*part.run.fault);
  }
  dump.parts.push_back(std::move(part));
}

Fault MissingElement(std::string_view element, const VnZEL10cmn::clsVnError& error) {
  Fault fault;
  fault.part = element;
  fault.number = error.ErrorNr();
  fault.reason = LibraryMessage(error.ErrorMsg());
  return fault;
}

void ReadXml(std::string_view xml, Dump& dump) {
  dump.document = GuessDocumentKind(xml);
  const DocumentLayout& layout = LayoutOf(dump.document);
  if (const Element* const foreign = FindForeignElement(xml, dump.document)) {
    Fault fault;
    fault.part = foreign->name;
    fault.reason = ForeignReason(dump.document);
    dump.faults.push_back(std::move(fault));
  }
  clsZelBaseCoding coder;
  std::string content;
  if (!coder.GetXmlTag(xml, layout.whole.tag, content)) {
    dump.faults.push_back(MissingElement(layout.whole.name, coder.ErrorObject()));
    content = xml;  // the elements inside may be whole
  }
  const bool isReport = dump.document == DocumentKind::Report;
  const bool isData = dump.document == DocumentKind::Data;
  const RunKind request = isReport ? RunKind::ReportRequest
                          : isData ? RunKind::DataRequest
                                   : RunKind::Request;
  const RunKind response = isReport ? RunKind::ReportResponse
                           : isData ? RunKind::DataResponse
                                    : RunKind::Response;
  struct Part {
    Element element;
    RunKind kind;
  };
  std::vector<Part> parts = {{layout.request, request}, {layout.response, response}};
  // Reports without items are usual, and data records have none.
  if (dump.document == DocumentKind::Booking || HoldsItems(xml)) {
    parts.insert(parts.begin(), {kItemListElement, RunKind::ItemList});
  }
  for (const auto& [element, kind] : parts) {
    std::string text;
    std::string profile;
    if (!coder.GetXmlTag(content, element.tag, text, &profile)) {
      dump.faults.push_back(MissingElement(element.name, coder.ErrorObject()));
      continue;
    }
    std::optional<Fault> fault;
    const ByteArray bytes = text.empty() ? ByteArray() : Decode(text, Form::Base64, fault);
    AddPart(dump, element.name, bytes, kind, std::move(fault));
    dump.parts.back().profile = std::move(profile);
  }
}

}  // namespace

Dump ReadDump(std::string_view content) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  const std::size_t mark = content.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  content.remove_prefix(mark);
  Dump dump;
  dump.form = Recognise(content);
  if (dump.form == Form::Xml) {
    ReadXml(content, dump);
    return dump;
  }
  std::optional<Fault> fault;
  ByteArray bytes;
  if (dump.form == Form::Binary) {
    bytes = ByteArray(std::span(reinterpret_cast<const std::uint8_t*>(content.data()), content.size()));
  } else {
    const std::size_t skipped = mark + content.find_first_not_of(kBlanks);
    bytes = Decode(Trim(content), dump.form, fault);
    if (fault) *fault->position += static_cast<std::int64_t>(skipped);
  }
  AddPart(dump, {}, bytes, std::nullopt, std::move(fault));
  return dump;
}

}  // namespace zel
