#include "VnZEL10cmn/document/internal/DocumentXml.h"

#include <algorithm>

#include "VnZEL10cmn/device/internal/XmlEnvelope.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

std::string Element(ZelXmlTags tag, std::string_view content, std::string_view attribute) {
  const std::string_view name = ElementName(tag);
  return Compose("<", name, attribute, ">", content, "</", name, ">");
}

std::string Document(ZelXmlTags tag, const std::vector<std::string>& elements, std::int32_t intent) {
  const std::string_view name = ElementName(tag);
  const std::string_view lineEnd = intent < 0 ? "" : kCrLf;
  const std::string indent(static_cast<std::size_t>(std::max(intent, 0)), ' ');
  std::string document = Compose(indent, "<", name, ">", lineEnd);
  for (const std::string& element : elements) {
    document.append(indent).append(indent).append(element).append(lineEnd);
  }
  return document.append(Compose(indent, "</", name, ">"));
}

Refusal NotEnoughData(std::string_view lines) {
  return {ZELErrorCodes::Err_Ser_Failed, Compose("Der XML-Buchungssatz konnte nicht erstellt werden:", kCrLf,
                                                 "Es liegen nicht genug Daten vor!", lines)};
}

std::string RequestAndResponseLengths(std::size_t request, std::size_t response) {
  return Compose("\r\n    ZEL-Anfrage .....: ", request, " Zeichen", "\r\n    ZEL-Antwort .....: ", response,
                 " Zeichen");
}

}  // namespace VnZEL10cmn::internal
