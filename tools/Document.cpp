#include "tools/Document.h"

#include <algorithm>
#include <cctype>

#include "tools/ExitStatus.h"
#include "tools/Records.h"
#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::ZelXmlTags;

namespace {

[[noreturn]] void Fail(std::string_view element, const std::string& reason) {
  throw Failure(ExitStatus::NotRight, std::string(element) + ": " + reason);
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
  });
  return lower;
}

void ExpectOnce(const std::string& lowerXml, std::string_view element) {
  const std::string opening = "<" + LowerCase(element);
  const std::string closing = "</" + LowerCase(element);
  for (const std::string& text : {opening, closing}) {
    if (lowerXml.find(text) != lowerXml.rfind(text)) Fail(element, "the element occurs twice");
  }
}

std::string Content(std::string_view xml, const Element& element, std::string* profile = nullptr) {
  VnZEL10cmn::clsZelBaseCoding coder;
  std::string content;
  if (!coder.GetXmlTag(xml, element.tag, content, profile)) {
    Fail(element.name, Describe(coder.ErrorObject()));
  }
  if (content.empty()) Fail(element.name, "the element is empty");
  return content;
}

ByteArray Part(std::string_view xml, const Element& element, std::string* profile = nullptr) {
  VnZEL10cmn::clsHelper01 helper;
  ByteArray bytes;
  if (!helper.FromBase64String(Content(xml, element, profile), bytes)) {
    Fail(element.name, Describe(helper.ErrorObject()));
  }
  return bytes;
}

/// Whether an element begins or ends in the text.
bool Mentions(const std::string& lowerXml, const Element& element) {
  const std::string name = LowerCase(element.name);
  return lowerXml.find("<" + name) != std::string::npos || lowerXml.find("</" + name) != std::string::npos;
}

template <typename Imported>
void Import(const std::string& xml, Imported& object) {
  std::string data = xml;
  if (!object.XmlHandler(data, false)) {
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
  const std::string lowerXml = LowerCase(xml);
  const DocumentLayout& foreign =
      LayoutOf(kind == DocumentKind::Report ? DocumentKind::Booking : DocumentKind::Report);
  for (const Element* element : {&foreign.whole, &foreign.request, &foreign.response}) {
    if (Mentions(lowerXml, *element)) return element;
  }
  return nullptr;
}

std::string ForeignReason(DocumentKind kind) {
  return "the document holds a " + std::string(DocumentName(kind));
}

void ExpectOneThing(std::string_view xml, DocumentKind kind) {
  if (const Element* const foreign = FindForeignElement(xml, kind)) Fail(foreign->name, ForeignReason(kind));
  const std::string lowerXml = LowerCase(xml);
  const DocumentLayout& layout = LayoutOf(kind);
  for (const Element& element : {layout.whole, kItemListElement, layout.request, layout.response}) {
    ExpectOnce(lowerXml, element.name);
  }
}

bool HoldsItems(std::string_view xml) { return Mentions(LowerCase(xml), kItemListElement); }

DocumentKind GuessDocumentKind(std::string_view xml) {
  const std::string lowerXml = LowerCase(xml);
  const DocumentLayout& transaction = LayoutOf(DocumentKind::Booking);
  const DocumentLayout& report = LayoutOf(DocumentKind::Report);
  if (!Mentions(lowerXml, transaction.whole) &&
      (Mentions(lowerXml, report.whole) || Mentions(lowerXml, report.request) ||
       Mentions(lowerXml, report.response))) {
    return DocumentKind::Report;
  }
  if (Mentions(lowerXml, kItemListElement)) return DocumentKind::Booking;
  try {
    const bool isData = GuessKind(Part(xml, transaction.request)) == RunKind::DataRequest;
    return isData ? DocumentKind::Data : DocumentKind::Booking;
  } catch (const Failure&) {
    return DocumentKind::Booking;
  }
}

Document SplitDocument(std::string_view xml) {
  Document document;
  document.kind = GuessDocumentKind(xml);
  ExpectOneThing(xml, document.kind);
  const DocumentLayout& layout = LayoutOf(document.kind);
  const std::string content = Content(xml, layout.whole);
  if (document.kind == DocumentKind::Booking || HoldsItems(content)) {
    document.items = Part(content, kItemListElement, &document.profile);
  }
  document.request = Part(content, layout.request);
  document.response = Part(content, layout.response);
  return document;
}

void ImportDocument(const std::string& xml, VnZEL10cmn::clsZelTransAct& booking) { Import(xml, booking); }

void ImportDocument(const std::string& xml, VnZEL10cmn::clsZelTransActData& record) { Import(xml, record); }

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
