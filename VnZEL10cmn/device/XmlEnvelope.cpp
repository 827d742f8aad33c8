#include "VnZEL10cmn/device/internal/XmlEnvelope.h"

#include <algorithm>
#include <array>

#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

struct Element {
  std::string_view opening;
  std::string_view closing;
  bool isBase64;
};

// The item list's opening text lacks its ">": attributes follow there.
constexpr std::array<Element, 8> kElements = {{
    {"", "", false},
    {"<transactionEncoded>", "</transactionEncoded>", false},
    {"<reportEncoded>", "</reportEncoded>", false},
    {"<itemListEncoded", "</itemListEncoded>", true},
    {"<transactionRequest>", "</transactionRequest>", true},
    {"<transactionResponse>", "</transactionResponse>", true},
    {"<reportRequest>", "</reportRequest>", true},
    {"<reportResponse>", "</reportResponse>", true},
}};

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::string_view kBase64Characters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/_-=";
constexpr std::string_view kTagLine = "\r\n    XML-Tag ..........: ";

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsSame(char left, char right) { return left == right || LowerAscii(left) == LowerAscii(right); }

/// Whether a text begins with another one, in any case; most are written as they are wanted.
bool BeginsWith(std::string_view text, std::string_view wanted) {
  text = text.substr(0, wanted.size());
  return text == wanted || std::equal(text.begin(), text.end(), wanted.begin(), wanted.end(), IsSame);
}

/// Where an element's texts stand for the first time, in any case.
struct Places {
  std::size_t opening = kNowhere;
  std::size_t closing = kNowhere;
};

Places PlacesOf(const Element& element, std::string_view document) {
  Places places;
  if (element.opening.empty()) {
    return places;
  }
  for (std::size_t at = document.find('<'); at != kNowhere; at = document.find('<', at + 1)) {
    const std::string_view here = document.substr(at);
    const bool isClosing = here.substr(1, 1) == "/";
    std::size_t& place = isClosing ? places.closing : places.opening;
    if (place == kNowhere && BeginsWith(here, isClosing ? element.closing : element.opening)) {
      place = at;
      if (places.opening != kNowhere && places.closing != kNowhere) break;
    }
  }
  return places;
}

const Element& ElementOf(ZelXmlTags tag) {
  const auto index = static_cast<std::size_t>(tag);
  return kElements[index < kElements.size() ? index : 0];
}

Refusal Missing(std::string_view message, std::string_view opening) {
  return {ZELErrorCodes::Err_Zel_CnvXmlTagMiss, Compose(message, kTagLine, opening)};
}

/// Position counted from 1 in UTF-16 code units.
std::size_t Position(std::string_view text, std::size_t at) { return Utf16Length(text.substr(0, at)) + 1; }

/// The first quoted value of the attributes, whichever it belongs to, provided that a profile is among them.
std::string_view ProfileOf(std::string_view attributes) {
  constexpr std::string_view name = "profile";
  constexpr std::string_view quotes = "\"'";
  const bool isNamed =
      std::search(attributes.begin(), attributes.end(), name.begin(), name.end(), IsSame) != attributes.end();
  if (Utf16Length(attributes) <= name.size() || !isNamed) {
    return {};
  }
  const std::size_t first = attributes.find_first_of(quotes);
  const std::size_t second = first == kNowhere ? kNowhere : attributes.find_first_of(quotes, first + 1);
  return second == kNowhere ? std::string_view() : attributes.substr(first + 1, second - first - 1);
}

}  // namespace

std::string_view ElementName(ZelXmlTags tag) {
  constexpr std::size_t brackets = 3;  // of "</name>"
  const std::string_view closing = ElementOf(tag).closing;
  return closing.empty() ? closing : closing.substr(2, closing.size() - brackets);
}

bool HasElement(std::string_view document, ZelXmlTags tag) {
  const Places places = PlacesOf(ElementOf(tag), document);
  return places.opening != kNowhere || places.closing != kNowhere;
}

MaybeRefusal FindElement(std::string_view document, ZelXmlTags tag, std::string_view& content,
                         std::string_view& profile) {
  const Element& element = ElementOf(tag);
  const auto [opening, end] = PlacesOf(element, document);
  if (opening == kNowhere && end == kNowhere) {
    return Missing("Das angeforderte XML-Tag konnte nicht gefunden werden!", element.opening);
  }
  if (opening == kNowhere || end == kNowhere) {
    return Missing("Das angeforderte XML-Tag ist nicht vollständig!", element.opening);
  }
  const std::size_t bracket = document.find('>', opening);
  const std::size_t start = bracket == kNowhere ? document.size() : bracket + 1;
  if (start >= end) {
    Refusal refusal = Missing(
        Compose("Die XML-Tags sind nicht in der richtigen Reihenfolge", kCrLf, "oder anderweitig korrupt!"),
        element.opening);
    refusal.message.append(Compose("\r\n    Startpos. Tag ....: ", Position(document, start),
                                   "\r\n    Endpos. Tag ......: ", Position(document, end), kCrLf));
    return refusal;
  }
  content = document.substr(start, end - start);
  if (element.isBase64) {
    const std::size_t first = content.find_first_of(kBase64Characters);
    const std::size_t last = content.find_last_of(kBase64Characters);
    content = first == kNowhere ? std::string_view() : content.substr(first, last - first + 1);
  }
  if (tag == ZelXmlTags::ItemList) {
    const std::size_t attributes = opening + element.opening.size();
    profile = ProfileOf(document.substr(attributes, start - attributes));
  }
  return std::nullopt;
}

}  // namespace VnZEL10cmn::internal
