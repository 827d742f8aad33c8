#include "tools/Document.h"

#include <algorithm>
#include <cctype>

#include "tools/ExitStatus.h"
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

std::string Content(std::string_view xml, ZelXmlTags tag, std::string_view element) {
  VnZEL10cmn::clsZelBaseCoding coder;
  std::string content;
  if (!coder.GetXmlTag(xml, tag, content)) Fail(element, Describe(coder.ErrorObject()));
  if (content.empty()) Fail(element, "the element is empty");
  return content;
}

ByteArray Part(std::string_view xml, ZelXmlTags tag, std::string_view element) {
  VnZEL10cmn::clsHelper01 helper;
  ByteArray bytes;
  if (!helper.FromBase64String(Content(xml, tag, element), bytes))
    Fail(element, Describe(helper.ErrorObject()));
  return bytes;
}

}  // namespace

Document SplitDocument(std::string_view xml) {
  const std::string lowerXml = LowerCase(xml);
  for (const std::string_view element :
       {"transactionEncoded", "itemListEncoded", "transactionRequest", "transactionResponse"}) {
    ExpectOnce(lowerXml, element);
  }
  const std::string content = Content(xml, ZelXmlTags::Transaction, "transactionEncoded");
  return {.items = Part(content, ZelXmlTags::ItemList, "itemListEncoded"),
          .request = Part(content, ZelXmlTags::TransRequest, "transactionRequest"),
          .response = Part(content, ZelXmlTags::TransResponse, "transactionResponse")};
}

void ImportDocument(const std::string& xml, VnZEL10cmn::clsZelTransAct& booking) {
  std::string data = xml;
  if (!booking.XmlHandler(data, false)) {
    throw Failure(ExitStatus::NotRight, Describe(booking.ErrorObject()));
  }
}

}  // namespace zel
