#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/booking/clsZelContainer.h"
#include "VnZEL10cmn/device/ZelLifeCycle.h"
#include "VnZEL10cmn/document/ItemHolder.h"
#include "VnZEL10cmn/items/ZELSerialType.h"
#include "VnZEL10cmn/items/ZELVatClasses.h"
#include "VnZEL10cmn/report/ZelReportType.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

class clsZelRprtPrint;

/// A report (closing) of the device: a request of one of five kinds, and the device's answer with its state,
/// its numbers, its signature and nine turnover containers. Report items are hashed with SHA-1 at first. Make
/// a new object for every report: there is no reset.
class VNZEL10CMN_API clsZelReport : public ItemHolder {
 public:
  /// A report without items, never dated, over all months.
  clsZelReport();
  ~clsZelReport();

  /// Container number 1 to 9: the six VAT classes, third-party business, delivery notes, training. Other
  /// numbers count as the nearest.
  std::shared_ptr<clsZelContainer> Container(std::int32_t Index) const;

  /// The container of a VAT class; throws std::out_of_range outside the nine containers.
  std::shared_ptr<clsZelContainer> Container2(ZELVatClasses VatClass) const;

  /// The container of third-party business.
  std::shared_ptr<clsZelContainer> ContainerThrdParty() const;

  /// The container of delivery notes.
  std::shared_ptr<clsZelContainer> ContainerDelivery() const;

  /// The container of training bookings.
  std::shared_ptr<clsZelContainer> ContainerTraining() const;

  /// Sets the print engine behind `ToString`; none brings back the default one.
  void PrintEngine(std::shared_ptr<clsZelRprtPrint> Value);

  /// Date and time of the report.
  Date ReportDate() const noexcept;
  /// Sets date and time, kept within 1 January 2000 and 31 December 2099, 23:59:59. A report at one of these
  /// bounds counts as not dated: its request takes the present time.
  void ReportDate(Date Value) noexcept;

  /// First month of a `Span` report.
  Date SpanMonthFrom() const noexcept;
  /// Sets the first month, kept within the same bounds.
  void SpanMonthFrom(Date Value) noexcept;

  /// Last month of a `Span` report.
  Date SpanMonthUpTo() const noexcept;
  /// Sets the last month, kept within the same bounds.
  void SpanMonthUpTo(Date Value) noexcept;

  /// The kind of the last request built.
  ZelReportType ReportType() const noexcept;

  /// The transport PIN of an activation.
  const std::string& TransportPIN() const noexcept;
  /// Sets the transport PIN, trimmed; the request wants six digits.
  void TransportPIN(std::string_view Value);

  /// State of the device that responded last.
  ZelLifeCycle ZelStatus() const noexcept;

  /// Taxpayer ID of the last response.
  const std::string& TpID() const noexcept;

  /// Running number of the device that responded last.
  Currency TpIdNbr() const noexcept;

  /// Sequence number of the report.
  Currency SequenceNbr() const noexcept;

  /// First booking that the report covers.
  Currency TransSeqNrFirst() const noexcept;

  /// Last booking that the report covers.
  Currency TransSeqNrLast() const noexcept;

  /// Signature of the last response, Base64; empty when it had none.
  const std::string& Signature() const noexcept;

  /// Exports the report as an XML document into `XmlData`, or imports it from there; layout as for bookings.
  /// Export fails with 9301 unless request and response are there; `XmlData` then stays. Import wants an item
  /// list (9302); a failed one leaves what was read before the failure.
  bool XmlHandler(std::string& XmlData, bool Export, std::int32_t Intent = 4);

  /// Hands out the report's bytes: `ItemList`, `Request` (of the kind given), `Response` or `ItemHash`; others fail with
  /// 9303. Copying and `DataLen` as for `clsZelTransAct::BinaryDataGet` (9204, 9); other failures are 9301, and 9000 for
  /// the item hash. The report date and the first month of a span may move, also before a failure.
  bool BinaryDataGet(ZELSerialType DataType, ByteArray& Data, std::int32_t Start,
                     ZelReportType ReportType = ZelReportType::Undefined, std::int32_t* DataLen = nullptr);

  /// Takes in `ItemList`, `Request` or `Response`; others fail with 9303. `Start` and `DataLen` as for
  /// `clsZelTransAct::BinaryDataSet` (9103, 9204); damaged data is 9301, a tag that has no place 9305. A response may hold
  /// its records in any order; values that it lacks stay, the signature does not. After a failure the report holds what
  /// was read before.
  bool BinaryDataSet(ZELSerialType DataType, const ByteArray& Data, std::int32_t Start,
                     std::int32_t DataLen = 0);

  /// The report as text.
  std::string ToString();

 private:
  bool EncodeRqst(ZelReportType type, ByteArray& data);
  bool WriteHash(ByteArray& data, std::int32_t& position);
  bool FailRqst(std::string_view reason, std::int32_t position, std::string_view callee);
  bool DecodeRqst(const ByteArray& data);
  bool DecodeResp(const ByteArray& data);
  bool DecodeRespRecord(const ByteArray& data, std::int32_t& position);
  bool EncodeXML(std::string& xmlData, std::int32_t intent);
  bool DecodeXML(std::string_view xmlData);

  std::array<std::shared_ptr<clsZelContainer>, 9> containers_;
  std::shared_ptr<clsZelRprtPrint> printEngine_;
  Date reportDate_;
  Date spanMonthFrom_;
  Date spanMonthUpTo_;
  ZelReportType reportType_ = ZelReportType::Undefined;
  std::string transportPin_;
  ZelLifeCycle zelStatus_ = ZelLifeCycle::Undefined;
  std::string tpId_;
  Currency tpIdNbr_;
  Currency sequenceNbr_;
  Currency transSeqNrFirst_;
  Currency transSeqNrLast_;
  std::string signature_;
};

}  // namespace VnZEL10cmn
