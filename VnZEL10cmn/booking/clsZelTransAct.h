#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/booking/clsZelContainer.h"
#include "VnZEL10cmn/booking/clsZelVatList.h"
#include "VnZEL10cmn/document/ItemHolder.h"
#include "VnZEL10cmn/items/ZELSerialType.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

class clsZelItemPrint;

/// A booking: its items, its date and operator, and what the device answered. Set a VAT list, add items, get
/// the `Request`, hand the device's answer back as `Response`; then the booking can be exported as XML.
///
/// Nothing is locked by a request: whatever is changed after it shows in the next request only.
class VNZEL10CMN_API clsZelTransAct : public ItemHolder {
 public:
  /// A booking without items and VAT list, never dated, in euro (978), hashing with SHA-256.
  clsZelTransAct();
  ~clsZelTransAct();

  /// Sets the VAT list, without which there is no request.
  void VatList(std::shared_ptr<clsZelVatList> Value);
  /// The VAT list, maybe none.
  std::shared_ptr<clsZelVatList> VatList() const;

  /// Date and time of the booking.
  Date TransactionDate() const noexcept;
  /// Sets date and time, kept within 1 January 2000 and 31 December 2099, 23:59:59. A booking at one of
  /// these bounds counts as not dated: its request takes the present time.
  void TransactionDate(Date Value) noexcept;

  /// The operator.
  const std::string& Operator() const noexcept;
  /// Sets the operator: the first 16 characters, trimmed.
  void Operator(std::string_view Value);

  /// The numeric currency code; 978 at first.
  std::int32_t CurrencyCode() const noexcept;
  /// Sets the numeric currency code.
  void CurrencyCode(std::int32_t Value) noexcept;

  /// Whether prices are net amounts.
  bool IsTaxExcl() const noexcept;
  /// Says whether prices are net amounts.
  void IsTaxExcl(bool Value) noexcept;

  /// Whether this is a training booking.
  bool IsTraining() const noexcept;
  /// Marks a training booking.
  void IsTraining(bool Value) noexcept;

  /// Whether this is a delivery note.
  bool IsDeliveryNote() const noexcept;
  /// Marks a delivery note.
  void IsDeliveryNote(bool Value) noexcept;

  /// The last request, Base64; empty before.
  const std::string& ZelRqstData() const noexcept;

  /// The item hash of the last request or import, Base64; empty before.
  const std::string& ItemHash() const noexcept;

  /// Sets the print engine behind `ToString`; none brings back the default one.
  void PrintEngine(std::shared_ptr<clsZelItemPrint> Value);

  /// The last response, Base64; empty before.
  const std::string& ZelRespData() const noexcept;

  /// Taxpayer ID of the last response.
  const std::string& ZelRespTpID() const noexcept;

  /// Running number of the device that responded last.
  Currency ZelRespTpIDNr() const noexcept;

  /// Sequence number of the last response; above 0 the booking counts as signed.
  Currency ZelRespSeqNr() const noexcept;

  /// Signature of the last response, Base64.
  const std::string& ZelRespSignature() const noexcept;

  /// Turnover, VAT and VAT rate of container number 1 to 6; other numbers count as the nearest. Always True.
  bool GetContainerValues(std::int32_t Index, Currency& Turnover, Currency& VatValue, Currency& VATrate);

  /// Exports the booking as an XML document into `XmlData`, or imports it from there. `Intent` blanks stand
  /// before the outer element, twice as many before the inner ones; below 0 everything stands on one line.
  /// Export fails with 9301 unless items, request and response are there; `XmlData` then stays. A failed
  /// import (9301, 9302) leaves what was read before the failure.
  bool XmlHandler(std::string& XmlData, bool Export, std::int32_t Intent = 4);

  /// Hands out the booking's bytes: `ItemList`, `Request`, `Response` or `ItemHash`; others fail with 9303.
  /// A request is built anew and replaces `Data` by an array of exactly its length; the others are copied to
  /// `Start` on and must fit (9204); a `Start` below the array is a run-time fault (9). `DataLen` receives the number of
  /// bytes, also when they don't fit. Other failures: 9301 and 9307 for items or values that can't be written, 9302 for
  /// missing rates or prices, 9000 for the item hash, 6 for sums beyond the range. After a failure `Data` is as it was.
  bool BinaryDataGet(ZELSerialType DataType, ByteArray& Data, std::int32_t Start,
                     std::int32_t* DataLen = nullptr);

  /// Takes in `ItemList`, `Request` or `Response` from the bytes from `Start` on, `DataLen` of them (below 1:
  /// to the end); others fail with 9303. 9103 when `Start` lies outside the array, 9204 when `DataLen`
  /// reaches beyond it. Damaged data is 9301; in a request also 9305 for a tag that has no place there, and 9204, 9205 or
  /// 9207 for a flag that is cut off or has a value. The booking then holds what was read before.
  bool BinaryDataSet(ZELSerialType DataType, const ByteArray& Data, std::int32_t Start,
                     std::int32_t DataLen = 0);

  /// Empties items, containers, operator, hash, texts and signature. Date, flags, currency, taxpayer ID,
  /// device and sequence number stay. Always True.
  bool Clear();

  /// The booking as a receipt.
  std::string ToString();

 private:
  bool EncodeRqst(ByteArray& data);
  bool DecodeRqst(const ByteArray& data);
  bool DecodeResp(const ByteArray& data);
  bool EncodeXML(std::string& xmlData, std::int32_t intent);
  bool DecodeXML(std::string_view xmlData);

  bool FailRqst(ZELErrorCodes number, std::string_view reason, std::string_view callee = {});
  bool FindRates(std::shared_ptr<clsZelVatItem>& rates);
  bool SerialiseItems(ByteArray& hash);
  bool FillContainers(clsZelVatItem& rates);
  bool AddHostItems();
  void AddPrices(const std::array<Currency, 6>& prices, bool isThirdParty);
  bool WriteRequest(ByteArray& data, std::int32_t& position, const ByteArray& hash);
  bool DecodeRqstRecord(const ByteArray& data, std::int32_t& position);
  void ResetContainers();

  std::array<clsZelContainer, 6> containers_;
  std::uint32_t containerResets_ = 0;
  std::shared_ptr<clsZelVatList> vatList_;
  std::shared_ptr<clsZelItemPrint> printEngine_;
  Date transactionDate_;
  std::string operator_;
  std::int32_t currencyCode_ = 978;
  bool isTaxExcl_ = false;
  bool isTraining_ = false;
  bool isDeliveryNote_ = false;
  std::string respTpId_;
  Currency respTpIdNr_;
  Currency respSeqNr_;
  std::string respSignature_;
};

}  // namespace VnZEL10cmn
