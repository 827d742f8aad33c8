#include "VnZEL10cmn/document/DeviceDocument.h"

#include <utility>

#include "VnZEL10cmn/device/internal/XmlEnvelope.h"
#include "VnZEL10cmn/document/internal/DocumentBytes.h"
#include "VnZEL10cmn/document/internal/DocumentTexts.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;
using internal::Via;

DeviceDocument::DeviceDocument(const char* className) : SharedObject(className) {}

DeviceDocument::~DeviceDocument() = default;

void DeviceDocument::LogHandler(std::shared_ptr<clsVnLogFile> Value) {
  helper_.LogHandler(Value);
  VnObject::LogHandler(std::move(Value));
}

bool DeviceDocument::EncodeResp(std::string_view header, ByteArray& data) {
  constexpr std::string_view function = "EncodeResp";
  if (respData_.empty()) {
    return Fail(ZELErrorCodes::Err_Ser_Failed,
                Compose(header, "Es sind keine Daten einer ZEL-Antwort vorhanden.!"), function);
  }
  return helper_.FromBase64String(respData_, data) ||
         Fail(ZELErrorCodes::Err_Ser_Failed,
              Compose(header, "Die vorhandenen Daten konnten nicht aus dem", kCrLf,
                      "Base64-Format gelesen werden!"),
              Via(function, "FromBase64String"));
}

bool DeviceDocument::HandOut(ByteArray bytes, bool replaces, ByteArray& data, std::int32_t start,
                             std::int32_t* dataLen, std::string_view header) {
  if (dataLen != nullptr) {
    *dataLen = static_cast<std::int32_t>(bytes.size());
  }
  if (replaces) {
    data = std::move(bytes);
    return true;
  }
  const auto refusal = internal::CopyOut(bytes, data, start, header);
  return refusal ? Fail(*refusal, "BinaryDataGet") : true;
}

bool DeviceDocument::ProducerFailed(std::string_view header) {
  if (HasError()) {
    return false;
  }
  // GCOVR_EXCL_START: the producers there are all say what stopped them
  return Fail(
      ZELErrorCodes::Err_Ser_Failed,
      Compose(header, "Die zugrunde liegende Serialisierungsfunktion", kCrLf, "meldete einen Fehler!"),
      "BinaryDataGet");
  // GCOVR_EXCL_STOP
}

bool DeviceDocument::ReadXmlElement(std::string_view document, const ElementTexts& texts,
                                    std::string_view& content, std::string* profile) {
  constexpr std::string_view function = "DecodeXML";
  std::string_view found;
  std::string_view foundProfile;
  if (internal::FindElement(document, texts.tag, found, foundProfile)) {
    // The coder tells the log what is wrong.
    std::string none;
    coder_.GetXmlTag(document, texts.tag, none);
    if (internal::HasElement(document, texts.tag)) {
      return Fail(texts.damagedNumber, texts.damaged, Compose(function, texts.damagedIn));
    }
  }
  content = found;
  if (profile != nullptr) {
    *profile = foundProfile;
  }
  return content.empty() ? Fail(texts.emptyNumber, texts.empty, function) : true;
}

bool DeviceDocument::ReadXmlBytes(std::string_view document, const ElementTexts& texts,
                                  std::string_view undecodable, std::string_view undecodableIn,
                                  ByteArray& bytes, std::string* profile) {
  std::string_view content;
  return ReadXmlElement(document, texts, content, profile) &&
         (helper_.FromBase64String(content, bytes) ||
          Fail(ZELErrorCodes::Err_Ser_Failed, undecodable, Compose("DecodeXML", undecodableIn)));
}

}  // namespace VnZEL10cmn
