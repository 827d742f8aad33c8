#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tools/Fault.h"

namespace zel {

/// What an XML document holds.
enum class DocumentKind : std::uint8_t { Booking, Report, Data };

/// "booking" and so on.
std::string_view DocumentName(DocumentKind kind);

/// An element of a document, and how the library names it.
struct Element {
  VnZEL10cmn::ZelXmlTags tag;
  std::string_view name;
};

/// The elements of a document of that kind.
struct DocumentLayout {
  Element whole;
  Element request;
  Element response;
};
const DocumentLayout& LayoutOf(DocumentKind kind);

/// The element that holds the items of a booking or a report.
inline constexpr Element kItemListElement = {VnZEL10cmn::ZelXmlTags::ItemList, "itemListEncoded"};

/// What stands in an element: parts of the document. Base64 content is without what surrounds it.
struct ElementText {
  std::string_view content{};
  std::string_view profile{};  ///< of an item list, mostly empty
};

/// Finds an element as the library does, without a copy. None where the library refuses the document, which `fault`
/// then tells.
std::optional<ElementText> FindElement(std::string_view xml, const Element& element, Fault& fault);

/// What the document is, as far as that can be told: a report has elements of its own, and a data record has no
/// item list and a request in which nothing but its hash, date and time stands.
DocumentKind GuessDocumentKind(std::string_view xml);

/// The first element of a report beside a booking or data record, or the other way round; none when there is none. A
/// document holds one thing: readers that look for the other one would find it.
const Element* FindForeignElement(std::string_view xml, DocumentKind kind);

/// What is wrong with such an element.
std::string ForeignReason(DocumentKind kind);

/// Throws `Failure` (NotRight) where there is one, or where an element occurs twice, since another reader might take the
/// other one.
void ExpectOneThing(std::string_view xml, DocumentKind kind);

/// Whether an item list begins or ends in the document.
bool HoldsItems(std::string_view xml);

/// The parts of an XML document.
struct Document {
  DocumentKind kind = DocumentKind::Booking;
  std::optional<VnZEL10cmn::ByteArray> items;  ///< always there in a booking, never in a data record
  std::string profile;                         ///< of the items, mostly empty
  VnZEL10cmn::ByteArray request;
  VnZEL10cmn::ByteArray response;
};

/// Splits a document that holds one thing by the library's own means. Throws `Failure` (NotRight) that names the
/// element at fault.
Document SplitDocument(std::string_view xml);

/// Reads a booking's document into an empty booking. `xml` stays as it is. Throws `Failure` (NotRight).
void ImportDocument(std::string& xml, VnZEL10cmn::clsZelTransAct& booking);

/// Reads a data record's document into an empty one. Throws `Failure` (NotRight).
void ImportDocument(std::string& xml, VnZEL10cmn::clsZelTransActData& record);

/// Reads the parts of a report's document into an empty report. The library's own import refuses documents
/// without items, which most reports are; so the parts are handed over one by one. Throws `Failure` (NotRight).
void TakeParts(const Document& document, VnZEL10cmn::clsZelReport& report);

}  // namespace zel
