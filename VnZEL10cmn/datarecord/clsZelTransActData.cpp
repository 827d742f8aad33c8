#include "VnZEL10cmn/datarecord/clsZelTransActData.h"

#include <utility>

#include "VnZEL10cmn/datarecord/internal/DataPrintEngine.h"
#include "VnZEL10cmn/device/internal/Records.h"
#include "VnZEL10cmn/document/internal/DocumentBytes.h"
#include "VnZEL10cmn/document/internal/DocumentDates.h"
#include "VnZEL10cmn/document/internal/DocumentTexts.h"
#include "VnZEL10cmn/document/internal/DocumentXml.h"
#include "VnZEL10cmn/errors/internal/Lent.h"
#include "VnZEL10cmn/items/internal/DefaultPrintEngine.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;
using internal::kPositionLine;
using internal::Via;

namespace {

constexpr auto kFailed = ZELErrorCodes::Err_Ser_Failed;
constexpr std::int32_t kRequestRoom = 256;

constexpr std::string_view kGetHeader = "Serialisierung der Buchung nicht möglich!\r\n";
constexpr std::string_view kSetHeader = "Deserialisierung der Buchung nicht möglich!\r\n";
constexpr std::string_view kRequestHeader =
    "Buchung (Daten): Das Erstellen der Anfrage ist nicht möglich!\r\n";

}  // namespace

clsZelTransActData::clsZelTransActData()
    : DeviceDocument("clsZelTransActData"), transactionDate_(internal::WithinRange(Date::Now())) {}

clsZelTransActData::~clsZelTransActData() = default;

Date clsZelTransActData::TransactionDate() const noexcept { return transactionDate_; }

void clsZelTransActData::TransactionDate(Date Value) noexcept {
  transactionDate_ = internal::WithinRange(Value);
}

ZELDataSignTypes clsZelTransActData::DataSignType() const noexcept { return dataSignType_; }

void clsZelTransActData::DataSignType(ZELDataSignTypes Value) noexcept { dataSignType_ = Value; }

bool clsZelTransActData::UseSHA256() const noexcept { return useSha256_; }

void clsZelTransActData::UseSHA256(bool Value) noexcept { useSha256_ = Value; }

void clsZelTransActData::PrintEngine(std::shared_ptr<clsZelItemPrint> Value) {
  printEngine_ = std::move(Value);
}

const std::string& clsZelTransActData::ZelRqstData() const noexcept { return rqstData_; }

const std::string& clsZelTransActData::DataToSign() const noexcept { return dataToSign_; }

const std::string& clsZelTransActData::ZelRespData() const noexcept { return respData_; }

const std::string& clsZelTransActData::ZelRespTpID() const noexcept { return respTpId_; }

Currency clsZelTransActData::ZelRespTpIDNr() const noexcept { return respTpIdNr_; }

Currency clsZelTransActData::ZelRespSeqNr() const noexcept { return respSeqNr_; }

const std::string& clsZelTransActData::ZelRespSignature() const noexcept { return respSignature_; }

const std::string& clsZelTransActData::DataHash() const noexcept { return dataHash_; }

std::string clsZelTransActData::GetDataHash(ZELHashFmt HashFmt, bool FromMem, std::int32_t GroupLen) {
  return RunFor<std::string>("GetDataHash", [&] {
    ByteArray hash;
    std::string text;
    if (!GenDataHash(FromMem, hash) || !internal::HashText(helper_, coder_, hash, HashFmt, GroupLen, text)) {
      // The name is the booking's; hosts know it so.
      Fail(internal::HashOutputFailed(), "GetItemHash");
      text = internal::kHashFailed;
    }
    return text;
  });
}

bool clsZelTransActData::GenDataHash(bool fromMem, ByteArray& hash) {
  hash = {};
  const std::string& stored = fromMem ? dataHash_ : dataToSign_;
  if (stored.empty()) {
    return true;
  }
  ByteArray bytes;
  const bool done =
      helper_.FromBase64String(stored, fromMem ? hash : bytes) && (fromMem || MakeDigest(bytes, hash));
  return done || Fail(internal::HashNotMade(internal::kStoredHashUnreadable), "GenDataHash");
}

bool clsZelTransActData::MakeDigest(const ByteArray& data, ByteArray& digest) {
  return useSha256_ ? helper_.GetSHA256Hash1(data, digest) : helper_.GetSHA1Hash1(data, digest);
}

bool clsZelTransActData::XmlHandler(std::string& XmlData, bool Export, std::int32_t Intent) {
  return Run("XmlHandler", [&] { return Export ? EncodeXML(XmlData, Intent) : DecodeXML(XmlData); });
}

bool clsZelTransActData::BinaryDataGet(ZELSerialType DataType, ByteArray& Data, std::int32_t Start,
                                       std::int32_t* DataLen) {
  constexpr std::string_view operation = "BinaryDataGet";
  return Run(operation, [&] {
    ByteArray bytes;
    bool produced = false;
    switch (DataType) {
      case ZELSerialType::Request: produced = EncodeRqst(bytes); break;
      case ZELSerialType::Response:
        produced = EncodeResp("Buchung (Daten): Kodieren der ZEL-Antwort nicht möglich!\r\n", bytes);
        break;
      case ZELSerialType::BinaryData: produced = EncodeData(bytes); break;
      default: return Fail(internal::UnsupportedType(kGetHeader, DataType), operation);
    }
    return produced ? HandOut(std::move(bytes), false, Data, Start, DataLen, kGetHeader)
                    : ProducerFailed(kGetHeader);
  });
}

bool clsZelTransActData::EncodeRqst(ByteArray& data) {
  constexpr std::string_view function = "EncodeRqst";
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return Fail(kFailed, Compose(kRequestHeader, reason), Via(function, callee));
  };
  ByteArray hash;
  if (!helper_.FromBase64String(dataHash_, hash)) {
    return fail(Compose(internal::kHashNotDecoded, internal::kHashTypeLine, internal::HashType(useSha256_)),
                "GetZelOperator");
  }
  data.Redim(0, kRequestRoom - 1);
  std::int32_t position = 0;
  const auto failAt = [&](std::string_view reason, std::string_view callee) {
    return fail(Compose(reason, kPositionLine, position), callee);
  };
  if (dataSignType_ == ZELDataSignTypes::DataAndTime) {
    if (internal::IsUndated(transactionDate_)) {
      transactionDate_ = Date::Now();
    }
    if (!coder_.SetZelDates(data, position, ZelTags::tDate, transactionDate_)) {
      return failAt(internal::kDateNotWritten, "SetZelDates");
    }
    if (!coder_.SetZelTimes(data, position, ZelTags::tTime, transactionDate_)) {
      return failAt(internal::kTimeNotWritten, "SetZelTimes");  // GCOVR_EXCL_LINE: what has a date has a time
    }
  }
  if (!coder_.SetZelHash(data, position, true, hash)) {
    return failAt(internal::kHashNotWritten, "SetZelHash");  // GCOVR_EXCL_LINE: no other length is kept
  }
  data.RedimPreserve(position - 1);
  return helper_.ToBase64String(data, rqstData_) || fail(internal::kRequestNotEncoded, "BinaryDataGet");
}

bool clsZelTransActData::EncodeData(ByteArray& data) {
  return helper_.FromBase64String(dataToSign_, data) ||
         Fail(kFailed,
              Compose("Buchung (Data): Das Verarbeiten der Binärdaten ist nicht möglich!", kCrLf,
                      "Die Daten konnen nicht aus dem Base64-Format gelesen werden."),
              Via("EncodeData", "GetZelOperator"));
}

bool clsZelTransActData::BinaryDataSet(ZELSerialType DataType, const ByteArray& Data, std::int32_t Start,
                                       std::int32_t DataLen) {
  constexpr std::string_view operation = "BinaryDataSet";
  return Run(operation, [&] {
    if (DataType != ZELSerialType::Request && DataType != ZELSerialType::Response &&
        DataType != ZELSerialType::BinaryData) {
      return Fail(internal::UnsupportedType(kSetHeader, DataType), operation);
    }
    ByteArray bytes;
    if (const auto refusal = internal::CopyIn(Data, Start, DataLen, kSetHeader, bytes)) {
      return Fail(*refusal, operation);
    }
    switch (DataType) {
      case ZELSerialType::Request: return DecodeRqst(bytes);
      case ZELSerialType::Response: return DecodeResp(bytes);
      default: return DecodeData(bytes);
    }
  });
}

bool clsZelTransActData::DecodeData(const ByteArray& data) {
  constexpr std::string_view function = "DecodeData";
  if (!helper_.ToBase64String(data, dataToSign_)) {
    return Fail(kFailed,
                Compose("Die Binärdaten konnten nicht in das", kCrLf, "Base64-Format überführt werden!"),
                Via(function, "B64OfData"));
  }
  ByteArray digest;
  if (!MakeDigest(data, digest)) {
    return Fail(kFailed,
                Compose("Der Hashcode der Binärdaten konnte nicht erstellt werden!", internal::kHashTypeLine,
                        internal::HashType(useSha256_)),
                function);
  }
  return helper_.ToBase64String(digest, dataHash_) ||
         Fail(kFailed,
              Compose("Der Hashcode der Binärdaten konnte nicht in das", kCrLf,
                      "Base64-Format überführt werden!"),
              Via(function, "B64OfHash"));
}

bool clsZelTransActData::DecodeRqst(const ByteArray& data) {
  constexpr std::string_view function = "DecodeRqst";
  std::int32_t position = 0;
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return Fail(kFailed, Compose(reason, kPositionLine, position), Via(function, callee));
  };
  Date day = transactionDate_;
  Date time;
  bool hasTime = false;
  // Date and time may come in either order; a date alone says nothing.
  const auto takeTime = [&] {
    if (hasTime) {
      dataSignType_ = ZELDataSignTypes::DataAndTime;
      TransactionDate(internal::Combine(day, time));
    }
  };
  while (position <= data.UBound()) {
    switch (static_cast<ZelTags>(data[position])) {
      case ZelTags::Hash_Trans_Items:
        if (!coder_.GetZelHash(data, position, true, dataHash_)) {
          return fail("Der Hashwert der Daten konnte nicht gelesen werden!", "GetZelDates");
        }
        break;
      case ZelTags::tDate:
        if (!coder_.GetZelDates(data, position, ZelTags::tDate, day)) {
          return fail(internal::kTimeNotRead, "GetZelDates");
        }
        takeTime();
        break;
      case ZelTags::tTime:
        if (!coder_.GetZelTimes(data, position, ZelTags::tTime, time)) {
          return fail(internal::kTimeNotRead, "GetZelTimes");
        }
        hasTime = true;
        takeTime();
        break;
      default: return Fail(internal::UnexpectedTag(data[position]), function);
    }
  }
  return helper_.ToBase64String(data, rqstData_) ||
         Fail(kFailed, internal::kRequestNotStored, Via(function, "ToBase64String"));
}

bool clsZelTransActData::DecodeResp(const ByteArray& data) {
  std::int32_t position = 0;
  while (position <= data.UBound()) {
    if (!DecodeRespRecord(data, position)) {
      return false;
    }
  }
  return helper_.ToBase64String(data, respData_) ||
         Fail(kFailed, internal::kResponseNotStored, Via("DecodeResp", "ToBase64String"));
}

bool clsZelTransActData::DecodeRespRecord(const ByteArray& data, std::int32_t& position) {
  const std::uint8_t tag = data[position];
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return Fail(kFailed, Compose(reason, kPositionLine, position), Via("DecodeResp", callee));
  };
  const auto promote = [&](bool done) {
    if (done && dataSignType_ == ZELDataSignTypes::DataOnly) {
      dataSignType_ = ZELDataSignTypes::DataAndTpID;
    }
    return done;
  };
  switch (static_cast<ZelTags>(tag)) {
    case ZelTags::Seq_Nr_Trans:
      return coder_.GetZelCounter(data, position, ZelTags::Seq_Nr_Trans, respSeqNr_) ||
             fail(internal::kSequenceNotRead, "GetZelCounter");
    case ZelTags::Tp_ID:
      return promote(coder_.GetZelTpID(data, position, respTpId_)) ||
             fail(internal::kTaxpayerNotRead, "GetZelTpID");
    case ZelTags::Tp_ID_No:
      return promote(coder_.GetZelTpIDNr(data, position, respTpIdNr_)) ||
             fail(internal::kDeviceNotRead, "GetZelTpIDNr");
    case ZelTags::Signature:
      return coder_.GetZelSignature2(data, position, respSignature_) ||
             fail(internal::kSignatureNotRead, "GetZelSignature2");
    default:
      return fail(Compose("Unerwartetes ZEL-Tag!", internal::kTagLine, internal::HexByte(tag), " // ", tag),
                  "GetZelSignature2");
  }
}

bool clsZelTransActData::EncodeXML(std::string& xmlData, std::int32_t intent) {
  if (rqstData_.empty() || respData_.empty()) {
    return Fail(
        internal::NotEnoughData(internal::RequestAndResponseLengths(rqstData_.size(), respData_.size())),
        "EncodeXML");
  }
  xmlData = internal::Document(ZelXmlTags::Transaction,
                               {internal::Element(ZelXmlTags::TransRequest, rqstData_),
                                internal::Element(ZelXmlTags::TransResponse, respData_)},
                               intent);
  return true;
}

bool clsZelTransActData::DecodeXML(std::string_view xmlData) {
  constexpr std::string_view function = "DecodeXML";
  constexpr auto missing = ZELErrorCodes::Err_Ser_DataMissing;
  constexpr std::string_view notFoundIn = ".[GetXmlTag]";
  constexpr std::string_view notBase64In = ".[FromBase64String]";
  std::string_view document;
  ByteArray bytes;
  if (!ReadXmlElement(xmlData,
                      {ZelXmlTags::Transaction, internal::kTransactionNotFound, notFoundIn,
                       internal::kNoTransaction, kFailed},
                      document)) {
    return false;
  }
  if (!ReadXmlBytes(
          document,
          {ZelXmlTags::TransRequest, internal::kRequestNotFound, notFoundIn, internal::kNoRequest, missing},
          internal::kRequestNotBase64, notBase64In, bytes)) {
    return false;
  }
  if (!DecodeRqst(bytes)) {
    return Fail(kFailed, internal::kRequestNotDecoded, Via(function, "DecodeRqst"));
  }
  if (!ReadXmlBytes(document,
                    {ZelXmlTags::TransResponse, internal::kResponseNotFound, notFoundIn,
                     internal::kNoResponse, missing},
                    internal::kResponseNotBase64, notBase64In, bytes)) {
    return false;
  }
  return DecodeResp(bytes) || Fail(kFailed, internal::kResponseNotDecoded, Compose(function, ".DecodeResp"));
}

bool clsZelTransActData::Clear() {
  return Run("Clear", [&] {
    dataSignType_ = ZELDataSignTypes::DataOnly;
    for (std::string* text :
         {&dataToSign_, &dataHash_, &rqstData_, &respData_, &respTpId_, &respSignature_}) {
      text->clear();
    }
    respTpIdNr_ = respSeqNr_ = Currency();
    return true;
  });
}

std::string clsZelTransActData::ToString() {
  // The engine may let go of the record and of itself.
  const internal::Lent self(*this);
  return RunFor<std::string>("ToString", [&] {
    if (!printEngine_) {
      printEngine_ = internal::CreateDefaultPrintEngine();
    }
    const std::shared_ptr<clsZelItemPrint> engine = printEngine_;
    return internal::RenderDataRecord(*engine, self.Get(), &ErrorObject());
  });
}

}  // namespace VnZEL10cmn
