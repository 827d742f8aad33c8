#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/datarecord/ZELDataSignTypes.h"
#include "VnZEL10cmn/document/DeviceDocument.h"
#include "VnZEL10cmn/items/ZELHashFmt.h"
#include "VnZEL10cmn/types/Date.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

class clsZelItemPrint;

/// A signed data record: a free block of data that the device signs. Hand the data in as `BinaryData`, get
/// the `Request`, hand the device's answer back as `Response`; then the record can be exported as XML,
/// without the data itself.
class VNZEL10CMN_API clsZelTransActData : public DeviceDocument {
 public:
  /// A record without data, dated now, to be signed as data only, hashing with SHA-256.
  clsZelTransActData();
  ~clsZelTransActData();

  /// Date and time of the record.
  Date TransactionDate() const noexcept;
  /// Sets date and time, kept within 1 January 2000 and 31 December 2099, 23:59:59. At one of these bounds a
  /// request with time stamp takes the present time.
  void TransactionDate(Date Value) noexcept;

  /// How the device is to sign.
  ZELDataSignTypes DataSignType() const noexcept;
  /// Says how the device is to sign.
  void DataSignType(ZELDataSignTypes Value) noexcept;

  /// Whether data is hashed with SHA-256 (True, the default) or SHA-1.
  bool UseSHA256() const noexcept;
  /// Selects the hash of data handed in from now on.
  void UseSHA256(bool Value) noexcept;

  /// Sets the print engine behind `ToString`; none brings back the default one.
  void PrintEngine(std::shared_ptr<clsZelItemPrint> Value);

  /// The last request, Base64; empty before.
  const std::string& ZelRqstData() const noexcept;

  /// The data, Base64; empty before.
  const std::string& DataToSign() const noexcept;

  /// The last response, Base64; empty before.
  const std::string& ZelRespData() const noexcept;

  /// Taxpayer ID of the last response.
  const std::string& ZelRespTpID() const noexcept;

  /// Running number of the device that responded last.
  Currency ZelRespTpIDNr() const noexcept;

  /// Sequence number of the last response.
  Currency ZelRespSeqNr() const noexcept;

  /// Signature of the last response, Base64.
  const std::string& ZelRespSignature() const noexcept;

  /// The hash of the data, Base64; empty before.
  const std::string& DataHash() const noexcept;

  /// The data hash as text: the stored one (`FromMem`), or made anew from the stored data; formats as for
  /// `clsZelTransAct::GetItemHash`. Empty without data; "##FEHLER##" after a failure (9000).
  std::string GetDataHash(ZELHashFmt HashFmt, bool FromMem = false, std::int32_t GroupLen = 0);

  /// Exports request and response as an XML document into `XmlData`, or imports them from there; layout as
  /// for bookings, without items. Export fails with 9301 unless both are there; `XmlData` then stays. A
  /// failed import (9301, 9302) leaves what was read before the failure.
  bool XmlHandler(std::string& XmlData, bool Export, std::int32_t Intent = 4);

  /// Copies the record's bytes into `Data` from `Start` on: `Request` (built anew), `Response` or
  /// `BinaryData`; others fail with 9303. 9204 when they do not fit, 9 for a `Start` below the array, 9301 for other
  /// failures. `DataLen` receives the number of bytes, also when they don't fit. After a failure `Data` is as it was.
  bool BinaryDataGet(ZELSerialType DataType, ByteArray& Data, std::int32_t Start,
                     std::int32_t* DataLen = nullptr);

  /// Takes in `Request`, `Response` or `BinaryData` from the bytes from `Start` on, `DataLen` of them (below
  /// 1: to the end); others fail with 9303. 9103 when `Start` lies outside the array, 9204 when `DataLen`
  /// reaches beyond it, 9301 for damaged data, 9305 for a tag that has no place in a request; the record then holds what
  /// was read before.
  /// A response may hold its records in any order; one with a taxpayer makes a `DataOnly` record a
  /// `DataAndTpID` one, a request with a time makes it a `DataAndTime` one.
  bool BinaryDataSet(ZELSerialType DataType, const ByteArray& Data, std::int32_t Start,
                     std::int32_t DataLen = 0);

  /// Empties data, hash, request and response; the sign type becomes `DataOnly`. Date, hash selection and
  /// print engine stay. Always True.
  bool Clear();

  /// The record as a receipt.
  std::string ToString();

 private:
  bool EncodeRqst(ByteArray& data);
  bool EncodeData(ByteArray& data);
  bool GenDataHash(bool fromMem, ByteArray& hash);
  bool MakeDigest(const ByteArray& data, ByteArray& digest);
  bool DecodeRqst(const ByteArray& data);
  bool DecodeResp(const ByteArray& data);
  bool DecodeRespRecord(const ByteArray& data, std::int32_t& position);
  bool DecodeData(const ByteArray& data);
  bool EncodeXML(std::string& xmlData, std::int32_t intent);
  bool DecodeXML(std::string_view xmlData);

  Date transactionDate_;
  ZELDataSignTypes dataSignType_ = ZELDataSignTypes::DataOnly;
  bool useSha256_ = true;
  std::string dataToSign_;
  std::string dataHash_;
  std::string respTpId_;
  Currency respTpIdNr_;
  Currency respSeqNr_;
  std::string respSignature_;
  std::shared_ptr<clsZelItemPrint> printEngine_;
};

}  // namespace VnZEL10cmn
