#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "VnZEL10cmn/errors/SharedObject.h"
#include "VnZEL10cmn/items/ZELSerialType.h"
#include "VnZEL10cmn/types/ByteArray.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// What bookings, reports and data records have in common: a request to the device, its response, and the XML
/// document that keeps both. Not for hosts.
class VNZEL10CMN_API DeviceDocument : public SharedObject<DeviceDocument> {
 public:
  using VnObject::LogHandler;
  /// Attaches a log file, or none, also to the object's helper.
  void LogHandler(std::shared_ptr<clsVnLogFile> Value) override;

 protected:
  /// How reading an element of the document can fail: the messages, and what follows the function's name.
  struct ElementTexts {
    ZelXmlTags tag;                                               ///< the element
    std::string_view damaged;                                     ///< it is incomplete or out of order
    std::string_view damagedIn;                                   ///< the callee named then
    std::string_view empty;                                       ///< it is empty or not there at all
    ZELErrorCodes emptyNumber;                                    ///< the number then
    ZELErrorCodes damagedNumber = ZELErrorCodes::Err_Ser_Failed;  ///< the number of an incomplete one
  };

  /// `className` is a literal: the class's published name.
  explicit DeviceDocument(const char* className);
  ~DeviceDocument() override;

  /// The stored response's bytes; failures are filed with the header.
  bool EncodeResp(std::string_view header, ByteArray& data);

  /// Hands produced bytes to the caller: a request may replace his array, other forms are copied into it.
  bool HandOut(ByteArray bytes, bool replaces, ByteArray& data, std::int32_t start, std::int32_t* dataLen,
               std::string_view header);

  /// Says that producing bytes failed, unless the producer told its own reason. Always False.
  bool ProducerFailed(std::string_view header);

  /// The content of an element, a part of the document; one that is not there at all counts as empty.
  bool ReadXmlElement(std::string_view document, const ElementTexts& texts, std::string_view& content,
                      std::string* profile = nullptr);

  /// The same for Base64 content; a failure to decode it has its message and the callee named then.
  bool ReadXmlBytes(std::string_view document, const ElementTexts& texts, std::string_view undecodable,
                    std::string_view undecodableIn, ByteArray& bytes, std::string* profile = nullptr);

  clsZelBaseCoding coder_;  ///< reads and writes requests and responses
  clsHelper01 helper_;      ///< turns bytes into text and back
  std::string rqstData_;    ///< the last request, Base64
  std::string respData_;    ///< the last response, Base64
};

}  // namespace VnZEL10cmn
