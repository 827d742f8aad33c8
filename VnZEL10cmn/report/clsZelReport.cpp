#include "VnZEL10cmn/report/clsZelReport.h"

#include <algorithm>
#include <utility>

#include "VnZEL10cmn/booking/clsZelVatItem.h"
#include "VnZEL10cmn/device/internal/Records.h"
#include "VnZEL10cmn/document/internal/DocumentBytes.h"
#include "VnZEL10cmn/document/internal/DocumentDates.h"
#include "VnZEL10cmn/document/internal/DocumentTexts.h"
#include "VnZEL10cmn/document/internal/DocumentXml.h"
#include "VnZEL10cmn/errors/internal/Lent.h"
#include "VnZEL10cmn/items/internal/VatClass.h"
#include "VnZEL10cmn/report/internal/DefaultReportEngine.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kPositionLine;
using internal::Via;

namespace {

constexpr std::int32_t kRequestRoom = 256;
constexpr auto kFailed = ZELErrorCodes::Err_Ser_Failed;

constexpr std::string_view kGetHeader = "Serialisierung des Reports nicht möglich!\r\n";
constexpr std::string_view kSetHeader = "Deserialisierung des Reports nicht möglich!\r\n";
constexpr std::string_view kEncodeRqstHeader = "Report: Kodieren der ZEL-Anfrage nicht möglich!\r\n";
constexpr std::string_view kDecodeRqstHeader = "Report: Dekodieren der Anfrage nicht möglich!\r\n";
constexpr std::string_view kDecodeRespHeader = "Report: Dekodieren der Antwort nicht möglich!\r\n";
constexpr std::string_view kNotInBase64 = "Das Wandeln der Daten in Base64 schlug fehl";

ZelTags TagAt(const ByteArray& data, std::int32_t position) {
  return position <= data.UBound() ? static_cast<ZelTags>(data[position]) : ZelTags{};
}

std::string HexOf(ZelTags tag) { return internal::HexDigits(static_cast<std::uint8_t>(tag)); }

/// A reading failure with the record's place, in the narrower labels that reports use.
std::string ReadFailure(std::string_view header, std::string_view reason, std::int32_t position,
                        ZelTags tag) {
  return Compose(header, reason, "\r\n    Position .......: ", position,
                 "\r\n    Tag ............: ", HexOf(tag));
}

}  // namespace

clsZelReport::clsZelReport()
    : ItemHolder("clsZelReport", false),
      reportDate_(clsZelVatItem::EarliestDate()),
      spanMonthFrom_(clsZelVatItem::EarliestDate()),
      spanMonthUpTo_(clsZelVatItem::LatestDate()) {
  for (std::size_t i = 0; i < containers_.size(); ++i) {
    containers_[i] = std::make_shared<clsZelContainer>();
    containers_[i]->Tag(static_cast<ZelTags>((i + 1) | 224));
    containers_[i]->IsZelResponse(true);
  }
}

clsZelReport::~clsZelReport() = default;

std::shared_ptr<clsZelContainer> clsZelReport::Container(std::int32_t Index) const {
  return containers_[static_cast<std::size_t>(std::clamp(Index, 1, 9) - 1)];
}

std::shared_ptr<clsZelContainer> clsZelReport::Container2(ZELVatClasses VatClass) const {
  return internal::OfClass(containers_, VatClass);
}

std::shared_ptr<clsZelContainer> clsZelReport::ContainerThrdParty() const { return containers_[6]; }

std::shared_ptr<clsZelContainer> clsZelReport::ContainerDelivery() const { return containers_[7]; }

std::shared_ptr<clsZelContainer> clsZelReport::ContainerTraining() const { return containers_[8]; }

void clsZelReport::PrintEngine(std::shared_ptr<clsZelRprtPrint> Value) { printEngine_ = std::move(Value); }

Date clsZelReport::ReportDate() const noexcept { return reportDate_; }

void clsZelReport::ReportDate(Date Value) noexcept { reportDate_ = internal::WithinRange(Value); }

Date clsZelReport::SpanMonthFrom() const noexcept { return spanMonthFrom_; }

void clsZelReport::SpanMonthFrom(Date Value) noexcept { spanMonthFrom_ = internal::WithinRange(Value); }

Date clsZelReport::SpanMonthUpTo() const noexcept { return spanMonthUpTo_; }

void clsZelReport::SpanMonthUpTo(Date Value) noexcept { spanMonthUpTo_ = internal::WithinRange(Value); }

ZelReportType clsZelReport::ReportType() const noexcept { return reportType_; }

const std::string& clsZelReport::TransportPIN() const noexcept { return transportPin_; }

void clsZelReport::TransportPIN(std::string_view Value) { transportPin_ = internal::Trim(Value); }

ZelLifeCycle clsZelReport::ZelStatus() const noexcept { return zelStatus_; }

const std::string& clsZelReport::TpID() const noexcept { return tpId_; }

Currency clsZelReport::TpIdNbr() const noexcept { return tpIdNbr_; }

Currency clsZelReport::SequenceNbr() const noexcept { return sequenceNbr_; }

Currency clsZelReport::TransSeqNrFirst() const noexcept { return transSeqNrFirst_; }

Currency clsZelReport::TransSeqNrLast() const noexcept { return transSeqNrLast_; }

const std::string& clsZelReport::Signature() const noexcept { return signature_; }

bool clsZelReport::XmlHandler(std::string& XmlData, bool Export, std::int32_t Intent) {
  return Run("XmlHandler", [&] { return Export ? EncodeXML(XmlData, Intent) : DecodeXML(XmlData); });
}

bool clsZelReport::BinaryDataGet(ZELSerialType DataType, ByteArray& Data, std::int32_t Start,
                                 ZelReportType ReportType, std::int32_t* DataLen) {
  constexpr std::string_view operation = "BinaryDataGet";
  return Run(operation, [&] {
    ByteArray bytes;
    bool produced = false;
    switch (DataType) {
      case ZELSerialType::ItemList: produced = EncodeItems(bytes); break;
      case ZELSerialType::Request: produced = EncodeRqst(ReportType, bytes); break;
      case ZELSerialType::Response: produced = EncodeResp(bytes); break;
      case ZELSerialType::ItemHash: produced = GenItemHash(false, bytes); break;
      default: return Fail(internal::UnsupportedType(kGetHeader, DataType), operation);
    }
    return produced ? HandOut(std::move(bytes), DataType == ZELSerialType::Request, Data, Start, DataLen,
                              kGetHeader)
                    : ProducerFailed(kGetHeader);
  });
}

bool clsZelReport::FailRqst(std::string_view reason, std::int32_t position, std::string_view callee) {
  return Fail(kFailed, Compose(kEncodeRqstHeader, reason, kPositionLine, position),
              Via("EncodeRqst", callee));
}

bool clsZelReport::EncodeRqst(ZelReportType type, ByteArray& data) {
  if (type == ZelReportType::Undefined) {
    type = ZelReportType::Signed;
  }
  if (internal::IsUndated(reportDate_)) {
    reportDate_ = Date::Now();
  }
  data.Redim(0, kRequestRoom - 1);
  std::int32_t position = 0;
  if (!coder_.SetZelDates(data, position, ZelTags::tDate, reportDate_)) {
    return FailRqst("Das Abschlußdatum konnte nicht geschrieben werden!", position, "SetZelDates");
  }
  if (!coder_.SetZelTimes(data, position, ZelTags::tTime, reportDate_)) {
    // GCOVR_EXCL_START: what has a date has a time
    return FailRqst("Die Zeit des Abschlußdatums konnte nicht geschrieben werden!", position, "SetZelTimes");
    // GCOVR_EXCL_STOP
  }
  if (type == ZelReportType::Signed && ItemCount() > 0 && !WriteHash(data, position)) {
    return false;
  }
  if (type == ZelReportType::Span) {
    spanMonthFrom_ = std::min(spanMonthFrom_, spanMonthUpTo_);
    if (!coder_.SetZelDatesSpc01(data, position, ZelRqstDates::Month_Start, spanMonthFrom_)) {
      return FailRqst("Der Beginn des Abfragezeitraums konnte nicht geschrieben werden!", position,
                      "SetZelDatesSpc01");
    }
    if (!coder_.SetZelDatesSpc01(data, position, ZelRqstDates::Month_End, spanMonthUpTo_)) {
      return FailRqst("Das Ende des Abfragezeitraums konnte nicht geschrieben werden!", position,
                      "SetZelDatesSpc01");
    }
  }
  if (type == ZelReportType::ActivateZEL && !coder_.SetZelTranspPin(data, position, transportPin_)) {
    return FailRqst("Die Transport-PIN konnte nicht geschrieben werden!", position, "SetZelTranspPin");
  }
  const std::int32_t upperBound = data.UBound();
  data.RedimPreserve(position - 1);
  if (!helper_.ToBase64String(data, rqstData_)) {
    return Fail(kFailed,
                Compose(kEncodeRqstHeader, "Die ermittelten Daten konnten nicht in Base64 überführt werden!",
                        "\r\n    Start ...........: ", 0, "\r\n    Anzahl Daten ....: ", position,
                        "\r\n    Obergrenze Feld .: ", upperBound),
                Via("EncodeRqst", "ToBase64String"));
  }
  reportType_ = type;
  return true;
}

bool clsZelReport::WriteHash(ByteArray& data, std::int32_t& position) {
  ByteArray items;
  std::int32_t length = 0;
  const auto keepText = [&] {
    items.RedimPreserve(length - 1);  // the rest is reserve
    return helper_.ToBase64String(items, itemListText_);
  };
  if (!itemList_.GetItemHash(UseSHA256(), false, false, itemHash_) ||
      !itemList_.BinaryDataGet(items, length) || !keepText()) {
    return Fail(kFailed,
                Compose(kEncodeRqstHeader,
                        "Der Hashcode konnte nicht aus den Abschlußposten ermittelt werden werden!",
                        kPositionLine, position, internal::kHashTypeLine, internal::HashType(UseSHA256())),
                Via("EncodeRqst", "GetItemHash"));
  }
  return coder_.SetZelHash2(data, position, false, itemHash_) ||
         FailRqst("Der Hashcode der Abschlußposten konnte nicht geschrieben werden!", position,
                  "SetZelHash2");
}

bool clsZelReport::BinaryDataSet(ZELSerialType DataType, const ByteArray& Data, std::int32_t Start,
                                 std::int32_t DataLen) {
  return Run("BinaryDataSet", [&] {
    ByteArray bytes;
    if (!TakeIn(DataType, Data, Start, DataLen, kSetHeader, bytes)) {
      return false;
    }
    switch (DataType) {
      case ZELSerialType::ItemList: return DecodeItems(bytes);
      case ZELSerialType::Request: return DecodeRqst(bytes);
      default: return DecodeResp(bytes);
    }
  });
}

bool clsZelReport::DecodeRqst(const ByteArray& data) {
  constexpr std::string_view function = "DecodeRqst";
  std::int32_t position = 0;
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return Fail(kFailed, ReadFailure(kDecodeRqstHeader, reason, position, TagAt(data, position)),
                Via(function, callee));
  };
  Date day;
  if (!coder_.GetZelDates(data, position, ZelTags::tDate, day)) {
    return fail("Fehler beim Lesen des Datums", "GetZelDates");
  }
  Date time;
  if (!coder_.GetZelTimes(data, position, ZelTags::tTime, time)) {
    return fail("Fehler beim Lesen der Zeitangabe", "GetZelTimes");
  }
  ReportDate(internal::Combine(day, time));
  // What may follow tells the kind of the request.
  switch (TagAt(data, position)) {
    case ZelTags::Hash_Reprt_Items:
      if (!coder_.GetZelHash(data, position, false, itemHash_)) {
        return fail("Fehler beim Lesen des Postenhashcodes", "GetZelHash");
      }
      break;
    case ZelTags::Month_Start:
      if (!coder_.GetZelDatesSpc01(data, position, ZelRqstDates::Month_Start, spanMonthFrom_)) {
        return fail("Fehler beim Lesen des Zeitraumbeginns", "GetZelDatesSpc01");
      }
      if (!coder_.GetZelDatesSpc01(data, position, ZelRqstDates::Month_End, spanMonthUpTo_)) {
        return fail("Fehler beim Lesen des Zeitraumendes", "GetZelDatesSpc01");
      }
      break;
    case ZelTags::Transport_Pin:
      if (!coder_.GetZelTranspPin(data, position, transportPin_)) {
        return fail("Fehler beim Lesen der Transport-PIN", "GetZelTranspPin");
      }
      break;
    default: break;
  }
  if (position <= data.UBound()) {
    return Fail(internal::UnexpectedTag(data[position]), function);
  }
  return helper_.ToBase64String(data, rqstData_) ||
         Fail(kFailed, Compose(kDecodeRqstHeader, kNotInBase64), Via(function, "ToBase64String"));
}

bool clsZelReport::DecodeResp(const ByteArray& data) {
  signature_.clear();
  std::int32_t position = 0;
  while (position < data.UBound()) {
    if (!DecodeRespRecord(data, position)) {
      return false;
    }
  }
  return helper_.ToBase64String(data, respData_) ||
         Fail(kFailed, Compose(kDecodeRespHeader, kNotInBase64), Via("DecodeResp", "BinaryDataSet"));
}

bool clsZelReport::DecodeRespRecord(const ByteArray& data, std::int32_t& position) {
  constexpr std::string_view function = "DecodeResp";
  const ZelTags tag = TagAt(data, position);
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return Fail(kFailed, ReadFailure(kDecodeRespHeader, reason, position, tag), Via(function, callee));
  };
  const auto readCounter = [&](ZelRqstCounter counter, Currency& value, std::string_view reason) {
    return coder_.GetZelCounterSpc01(data, position, counter, value) || fail(reason, "GetZelCounterSpc01");
  };
  switch (tag) {
    case ZelTags::Lifecycle:
      return coder_.GetZelLifeCycle(data, position, zelStatus_) ||
             fail("Fehler beim Lesen des ZEL-Status", "GetZelLifeCycle");
    case ZelTags::Tp_ID:
      return coder_.GetZelTpID(data, position, tpId_) ||
             fail("Fehler beim Lesen der Steuerpflichtigen-ID", "GetZelTpID");
    case ZelTags::Tp_ID_No:
      return coder_.GetZelTpIDNr(data, position, tpIdNbr_) ||
             fail("Fehler beim Lesen der laufenden ZEL-Nr", "GetZelTpIDNr");
    case ZelTags::Seq_Nr_Reprt:
      return readCounter(ZelRqstCounter::Seq_Nr_Reprt, sequenceNbr_,
                         "Fehler beim Lesen der Report-Sequenznummer");
    case ZelTags::Seq_No_Trans_First:
      return readCounter(ZelRqstCounter::Seq_No_Trans_First, transSeqNrFirst_,
                         "Fehler beim Lesen der Buchungnummer (Start)");
    case ZelTags::Seq_No_Trans_Last:
      return readCounter(ZelRqstCounter::Seq_No_Trans_Last, transSeqNrLast_,
                         "Fehler beim Lesen der Buchungnummer (Ende)");
    case ZelTags::Signature:
      return coder_.GetZelSignature2(data, position, signature_) ||
             fail("Fehler beim Lesen der Signatur", "GetZelSignature2");
    default: break;
  }
  if (tag < ZelTags::Container_Vat_1 || tag > ZelTags::Container_Training) {
    return Fail(internal::UnexpectedTag(data[position]), function);
  }
  const std::size_t number =
      static_cast<std::size_t>(tag) - static_cast<std::size_t>(ZelTags::Container_Vat_1);
  return containers_[number]->BinaryDataSet(data, position) ||
         Fail(kFailed,
              Compose(kDecodeRespHeader, internal::kContainerUnreadable, kPositionLine, position,
                      internal::kTagLine, HexOf(tag), internal::kContainerNumberLine, number),
              Via(function, "BinaryDataSet"));
}

bool clsZelReport::EncodeXML(std::string& xmlData, std::int32_t intent) {
  if (rqstData_.empty() || respData_.empty()) {
    return Fail(
        internal::NotEnoughData(internal::RequestAndResponseLengths(rqstData_.size(), respData_.size())),
        "EncodeXML");
  }
  std::vector<std::string> elements;
  if (!itemListText_.empty()) {
    const std::string profile = ZelProfile().empty() ? "" : Compose(" profile=\"", ZelProfile(), "\"");
    elements.push_back(internal::Element(ZelXmlTags::ItemList, itemListText_, profile));
  }
  elements.push_back(internal::Element(ZelXmlTags::ReportRequest, rqstData_));
  elements.push_back(internal::Element(ZelXmlTags::ReportRespone, respData_));
  xmlData = internal::Document(ZelXmlTags::Report, elements, intent);
  return true;
}

bool clsZelReport::DecodeXML(std::string_view xmlData) {
  constexpr std::string_view function = "DecodeXML";
  // A host's item factory may change the text that it was given.
  const std::string kept(xmlData);
  std::string_view document;
  std::string profile;
  ByteArray bytes;

  if (!ReadXmlElement(kept,
                      {ZelXmlTags::Report, "Das Ermitteln des Reports schlug fehl!", ".[GetXmlTag]",
                       "Es konnte kein Reportdatensatz gefunden werden.", kFailed},
                      document)) {
    return false;
  }
  if (!ReadXmlBytes(document,
                    {ZelXmlTags::ItemList, internal::kNoItems, "", internal::kNoItems,
                     ZELErrorCodes::Err_Ser_DataMissing, ZELErrorCodes::Err_Ser_DataMissing},
                    "Base64-Konvertierung der Report-Postendaten fehlgeschlagen!", ".[FromBase64String]",
                    bytes, &profile)) {
    return false;
  }
  if (!profile.empty()) {
    ZelProfile(profile);
  }
  if (!DecodeItems(bytes)) {
    return Fail(kFailed, "Schreiben der Report-Postendaten fehlgeschlagen!", Via(function, "BinaryDataSet"));
  }
  if (!ReadXmlBytes(document,
                    {ZelXmlTags::ReportRequest, "Das Ermitteln der ZEL-Anfrage (Abschluß) schlug fehl!",
                     ".[GetXmlTag]", internal::kNoRequest, ZELErrorCodes::Err_Ser_DataMissing},
                    internal::kRequestNotBase64, "", bytes)) {
    return false;
  }
  if (!DecodeRqst(bytes)) {
    return Fail(kFailed, internal::kRequestNotDecoded, Via(function, "DecodeRqst"));
  }
  if (!ReadXmlBytes(document,
                    {ZelXmlTags::ReportRespone, internal::kResponseNotFound, "", internal::kNoResponse,
                     ZELErrorCodes::Err_Ser_DataMissing},
                    internal::kResponseNotBase64, ".[FromBase64String]", bytes)) {
    return false;
  }
  return DecodeResp(bytes) || Fail(kFailed, internal::kResponseNotDecoded, Compose(function, ".DecodeResp"));
}

std::string clsZelReport::ToString() {
  // The engine may let go of the report and of itself.
  const internal::Lent self(*this);
  return RunFor<std::string>("ToString", [&] {
    if (!printEngine_) {
      printEngine_ = internal::CreateDefaultReportEngine();
    }
    const std::shared_ptr<clsZelRprtPrint> engine = printEngine_;
    return internal::RenderReport(*engine, self.Get(), &ErrorObject());
  });
}

}  // namespace VnZEL10cmn
