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

/// Position of a text of two characters or more that is to be found in any case; nowhere for an empty one.
std::size_t Find(std::string_view text, std::string_view wanted) {
  if (wanted.empty()) {
    return kNowhere;
  }
  const auto isHere = [text, wanted](std::size_t at) {
    return std::equal(wanted.begin(), wanted.end(), text.begin() + at,
                      [](char left, char right) { return LowerAscii(left) == LowerAscii(right); });
  };
  // Elements begin with a character that stands in few places.
  const bool isElement = wanted[0] == '<';
  for (std::size_t at = 0; at + wanted.size() <= text.size(); ++at) {
    if (isElement) {
      at = text.find('<', at);
      if (at == kNowhere || at + wanted.size() > text.size()) {
        return kNowhere;
      }
    }
    if (LowerAscii(text[at + 1]) == LowerAscii(wanted[1]) && isHere(at)) {
      return at;
    }
  }
  return kNowhere;
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
  if (Utf16Length(attributes) <= name.size() || Find(attributes, name) == kNowhere) {
    return {};
  }
  const std::size_t first = attributes.find_first_of(quotes);
  const std::size_t second = first == kNowhere ? kNowhere : attributes.find_first_of(quotes, first + 1);
  return second == kNowhere ? std::string_view() : attributes.substr(first + 1, second - first - 1);
}

}  // namespace

bool HasElement(std::string_view document, ZelXmlTags tag) {
  const Element& element = ElementOf(tag);
  return Find(document, element.opening) != kNowhere || Find(document, element.closing) != kNowhere;
}

MaybeRefusal FindElement(std::string_view document, ZelXmlTags tag, std::string_view& content,
                         std::string_view& profile) {
  const Element& element = ElementOf(tag);
  const std::size_t opening = Find(document, element.opening);
  const std::size_t end = Find(document, element.closing);
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
