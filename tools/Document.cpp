#include "tools/Document.h"

#include <algorithm>

#include "tools/ExitStatus.h"
#include "tools/Records.h"
#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::ZelXmlTags;

namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

[[noreturn]] void Fail(std::string_view element, const std::string& reason) {
  throw Failure(ExitStatus::NotRight, std::string(element) + ": " + reason);
}

char LowerCase(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool BeginsWith(std::string_view text, std::string_view wanted) {
  return text.size() >= wanted.size() &&
         std::equal(wanted.begin(), wanted.end(), text.begin(),
                    [](char left, char right) { return LowerCase(left) == LowerCase(right); });
}

/// Where an element begins or ends for the next time, in any case: "<name" or "</name"; `isEnd` tells which.
std::size_t FindTag(std::string_view xml, std::string_view name, std::size_t from, bool& isEnd) {
  for (std::size_t at = xml.find('<', from); at != kNowhere; at = xml.find('<', at + 1)) {
    isEnd = xml.substr(at + 1, 1) == "/";
    if (BeginsWith(xml.substr(at + (isEnd ? 2 : 1)), name)) return at;
  }
  return kNowhere;
}

void ExpectOnce(std::string_view xml, std::string_view name) {
  int begins = 0;
  int ends = 0;
  bool isEnd = false;
  for (std::size_t at = FindTag(xml, name, 0, isEnd); at != kNowhere;
       at = FindTag(xml, name, at + 1, isEnd)) {
    if (++(isEnd ? ends : begins) > 1) Fail(name, "the element occurs twice");
  }
}

/// Whether an element begins or ends in the text.
bool Mentions(std::string_view xml, const Element& element) {
  bool isEnd = false;
  return FindTag(xml, element.name, 0, isEnd) != kNowhere;
}

/// The first quoted value of the attributes, whichever it belongs to, provided that a profile is among them.
std::string_view ProfileOf(std::string_view attributes) {
  constexpr std::string_view kName = "profile";
  constexpr std::string_view kQuotes = "\"'";
  const bool isNamed = std::search(attributes.begin(), attributes.end(), kName.begin(), kName.end(),
                                   [](char left, char right) {
                                     return LowerCase(left) == LowerCase(right);
                                   }) != attributes.end();
  // Not all bytes are characters, of which there must be more than those of the name.
  std::size_t units = 0;
  for (std::string_view rest = attributes; !rest.empty() && units <= kName.size();) {
    const Character character = FirstCharacter(rest);
    units += character.isWellFormed && character.bytes.size() == 4 ? 2 : 1;
    rest.remove_prefix(character.bytes.size());
  }
  if (!isNamed || units <= kName.size()) return {};
  const std::size_t first = attributes.find_first_of(kQuotes);
  const std::size_t second = first == kNowhere ? kNowhere : attributes.find_first_of(kQuotes, first + 1);
  return second == kNowhere ? std::string_view() : attributes.substr(first + 1, second - first - 1);
}

/// Where an element's texts stand for the first time. But for the item list, which has attributes, they are whole.
struct Places {
  std::size_t opening = kNowhere;
  std::size_t closing = kNowhere;

  Places(std::string_view xml, const Element& element) {
    const std::string name(element.name);
    const std::string opens = element.tag == ZelXmlTags::ItemList ? name : name + ">";
    const std::string closes = name + ">";
    bool isEnd = false;
    for (std::size_t at = FindTag(xml, name, 0, isEnd);
         at != kNowhere && (opening == kNowhere || closing == kNowhere);
         at = FindTag(xml, name, at + 1, isEnd)) {
      std::size_t& place = isEnd ? closing : opening;
      const std::string_view behind = xml.substr(at + (isEnd ? 2 : 1));
      if (place == kNowhere && BeginsWith(behind, isEnd ? closes : opens)) place = at;
    }
  }
};

std::string_view Content(std::string_view xml, const Element& element, std::string* profile = nullptr) {
  Fault fault;
  const std::optional<ElementText> found = FindElement(xml, element, fault);
  if (!found) Fail(element.name, ToText({.number = fault.number, .reason = fault.reason}));
  if (found->content.empty()) Fail(element.name, "the element is empty");
  if (profile != nullptr) *profile = found->profile;
  return found->content;
}

ByteArray Part(std::string_view xml, const Element& element, std::string* profile = nullptr) {
  VnZEL10cmn::clsHelper01 helper;
  ByteArray bytes;
  if (!helper.FromBase64String(Content(xml, element, profile), bytes)) {
    Fail(element.name, Describe(helper.ErrorObject()));
  }
  return bytes;
}

template <typename Imported>
void Import(std::string& xml, Imported& object) {
  if (!object.XmlHandler(xml, false)) {
    throw Failure(ExitStatus::NotRight, Describe(object.ErrorObject()));
  }
}

}  // namespace

const DocumentLayout& LayoutOf(DocumentKind kind) {
  static constexpr DocumentLayout kTransaction = {
      .whole = {ZelXmlTags::Transaction, "transactionEncoded"},
      .request = {ZelXmlTags::TransRequest, "transactionRequest"},
      .response = {ZelXmlTags::TransResponse, "transactionResponse"}};
  static constexpr DocumentLayout kReport = {.whole = {ZelXmlTags::Report, "reportEncoded"},
                                             .request = {ZelXmlTags::ReportRequest, "reportRequest"},
                                             .response = {ZelXmlTags::ReportRespone, "reportResponse"}};
  return kind == DocumentKind::Report ? kReport : kTransaction;
}

std::string_view DocumentName(DocumentKind kind) {
  switch (kind) {
    case DocumentKind::Booking: return "booking";
    case DocumentKind::Report: return "report";
    case DocumentKind::Data: return "data record";
  }
  return {};
}

const Element* FindForeignElement(std::string_view xml, DocumentKind kind) {
  const DocumentLayout& foreign =
      LayoutOf(kind == DocumentKind::Report ? DocumentKind::Booking : DocumentKind::Report);
  for (const Element* element : {&foreign.whole, &foreign.request, &foreign.response}) {
    if (Mentions(xml, *element)) return element;
  }
  return nullptr;
}

std::string ForeignReason(DocumentKind kind) {
  return "the document holds a " + std::string(DocumentName(kind));
}

void ExpectOneThing(std::string_view xml, DocumentKind kind) {
  if (const Element* const foreign = FindForeignElement(xml, kind)) Fail(foreign->name, ForeignReason(kind));
  const DocumentLayout& layout = LayoutOf(kind);
  for (const Element& element : {layout.whole, kItemListElement, layout.request, layout.response}) {
    ExpectOnce(xml, element.name);
  }
}

bool HoldsItems(std::string_view xml) { return Mentions(xml, kItemListElement); }

std::optional<ElementText> FindElement(std::string_view xml, const Element& element, Fault& fault) {
  const auto [opening, closing] = Places(xml, element);
  const std::size_t bracket = opening == kNowhere ? kNowhere : xml.find('>', opening);
  if (closing == kNowhere || bracket == kNowhere || bracket + 1 >= closing) {
    // The library says why; of a document that it refuses it makes no copy.
    VnZEL10cmn::clsZelBaseCoding coder;
    std::string none;
    static_cast<void>(coder.GetXmlTag(xml, element.tag, none));
    fault.part = element.name;
    fault.number = coder.ErrorObject().ErrorNr();
    fault.reason = LibraryMessage(coder.ErrorObject().ErrorMsg());
    return std::nullopt;
  }
  ElementText text{.content = xml.substr(bracket + 1, closing - bracket - 1)};
  if (element.tag != ZelXmlTags::Transaction && element.tag != ZelXmlTags::Report) {
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/_-=";
    const std::size_t first = text.content.find_first_of(kDigits);
    text.content = first == kNowhere
                       ? std::string_view()
                       : text.content.substr(first, text.content.find_last_of(kDigits) + 1 - first);
  }
  if (element.tag == ZelXmlTags::ItemList) {
    const std::size_t attributes = opening + 1 + element.name.size();
    text.profile = ProfileOf(xml.substr(attributes, bracket + 1 - attributes));
  }
  return text;
}

DocumentKind GuessDocumentKind(std::string_view xml) {
  const DocumentLayout& transaction = LayoutOf(DocumentKind::Booking);
  const DocumentLayout& report = LayoutOf(DocumentKind::Report);
  if (!Mentions(xml, transaction.whole) &&
      (Mentions(xml, report.whole) || Mentions(xml, report.request) || Mentions(xml, report.response))) {
    return DocumentKind::Report;
  }
  if (HoldsItems(xml)) return DocumentKind::Booking;
  Fault fault;
  const std::optional<ElementText> request = FindElement(xml, transaction.request, fault);
  if (!request || request->content.empty()) return DocumentKind::Booking;
  EncodedBytes bytes(request->content, Encoding::Base64);
  const bool isData = !bytes.TextFault() && GuessKind(bytes) == RunKind::DataRequest;
  return isData ? DocumentKind::Data : DocumentKind::Booking;
}

Document SplitDocument(std::string_view xml) {
  Document document;
  document.kind = GuessDocumentKind(xml);
  ExpectOneThing(xml, document.kind);
  const DocumentLayout& layout = LayoutOf(document.kind);
  const std::string_view content = Content(xml, layout.whole);
  if (document.kind == DocumentKind::Booking || HoldsItems(content)) {
    document.items = Part(content, kItemListElement, &document.profile);
  }
  document.request = Part(content, layout.request);
  document.response = Part(content, layout.response);
  return document;
}

void ImportDocument(std::string& xml, VnZEL10cmn::clsZelTransAct& booking) { Import(xml, booking); }

void ImportDocument(std::string& xml, VnZEL10cmn::clsZelTransActData& record) { Import(xml, record); }

void TakeParts(const Document& document, VnZEL10cmn::clsZelReport& report) {
  using VnZEL10cmn::ZELSerialType;
  const auto take = [&report](const Element& element, ZELSerialType type, const ByteArray& bytes) {
    if (!report.BinaryDataSet(type, bytes, 0)) Fail(element.name, Describe(report.ErrorObject()));
  };
  const DocumentLayout& layout = LayoutOf(DocumentKind::Report);
  if (document.items) {
    if (!document.profile.empty()) report.ZelProfile(document.profile);
    take(kItemListElement, ZELSerialType::ItemList, *document.items);
  }
  take(layout.request, ZELSerialType::Request, document.request);
  take(layout.response, ZELSerialType::Response, document.response);
}

}  // namespace zel
