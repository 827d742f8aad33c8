#include "VnZEL10cmn/booking/clsZelTransAct.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "VnZEL10cmn/booking/internal/ContainerTurnover.h"
#include "VnZEL10cmn/device/internal/Records.h"
#include "VnZEL10cmn/device/internal/XmlEnvelope.h"
#include "VnZEL10cmn/items/internal/DefaultPrintEngine.h"
#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;

namespace {

constexpr std::size_t kOperatorLength = 16;
constexpr std::int32_t kRequestRoom = 512;
constexpr std::size_t kClasses = 6;

constexpr std::string_view kRequestHeader = "Buchung: Das Erstellen der Anfrage ist nicht möglich!\r\n";
constexpr std::string_view kGetHeader = "Serialisierung der Buchung nicht möglich!\r\n";
constexpr std::string_view kSetHeader = "Deserialisierung der Buchung nicht möglich!\r\n";
constexpr std::string_view kEncodeItemsHeader = "Buchung: Kodieren der Postenliste nicht möglich!\r\n";
constexpr std::string_view kDecodeItemsHeader = "Buchung: Dekodieren der Postenliste nicht möglich!\r\n";
constexpr std::string_view kEncodeRespHeader = "Buchung: Kodieren der ZEL-Antwort nicht möglich!\r\n";
constexpr std::string_view kHashHeader = "Posten-Hash-Erzeugung nicht möglich!\r\n";
constexpr std::string_view kPositionLine = "\r\n    Position ........: ";
constexpr std::string_view kHashTypeLine = "\r\n    Hash-Typ ........: ";

/// A function name with the callee that failed.
std::string Via(std::string_view function, std::string_view callee) { return Compose(function, ".[", callee, "]"); }

std::string UnsupportedType(ZELSerialType type) {
  return Compose("Der Serialisierungstyp wird von dieser", kCrLf, "Funktion nicht unterstützt!", kCrLf,
                 "    Typ .............: ", static_cast<std::int32_t>(type));
}

std::string TooSmall(std::string_view header, std::int64_t start, std::int64_t length, std::int64_t end,
                     std::int64_t upper) {
  return Compose(header, internal::kBufferTooSmall, "\r\n    Start ..........: ", start,
                 "\r\n    Länge ..........: ", length, "\r\n    Leseende .......: ", end,
                 "\r\n    Obergrenze .....: ", upper);
}

/// The first `length` elements of a zero-based array.
ByteArray FirstBytes(const ByteArray& data, std::int32_t length) {
  return ByteArray(std::span<const std::uint8_t>(data.data(), static_cast<std::size_t>(length)));
}

ZelTags ContainerTag(std::size_t index) { return static_cast<ZelTags>((index + 1) | 224); }

/// The day of one date and the time of day of another.
Date Combine(Date day, Date time) {
  const Date::Civil d = day.ToCivil();
  const Date::Civil t = time.ToCivil();
  return Date::FromCivil(d.year, d.month, d.day, t.hour, t.minute, t.second);
}

}  // namespace

clsZelTransAct::clsZelTransAct() : VnObject("clsZelTransAct"), transactionDate_(clsZelVatItem::EarliestDate()) {
  for (std::size_t i = 0; i < kClasses; ++i) {
    containers_[i].Tag(ContainerTag(i));
  }
}

clsZelTransAct::~clsZelTransAct() = default;

void clsZelTransAct::LogHandler(std::shared_ptr<clsVnLogFile> Value) {
  coder_.LogHandler(Value);
  itemList_.LogHandler(Value);
  helper_.LogHandler(Value);
  VnObject::LogHandler(std::move(Value));
}

void clsZelTransAct::VatList(std::shared_ptr<clsZelVatList> Value) { vatList_ = std::move(Value); }

std::shared_ptr<clsZelVatList> clsZelTransAct::VatList() const { return vatList_; }

const std::string& clsZelTransAct::ZelProfile() const noexcept { return itemList_.ZelProfile(); }

void clsZelTransAct::ZelProfile(std::string_view Value) { itemList_.ZelProfile(Value); }

Date clsZelTransAct::TransactionDate() const noexcept { return transactionDate_; }

void clsZelTransAct::TransactionDate(Date Value) noexcept {
  const Date earliest = clsZelVatItem::EarliestDate();
  const Date latest = clsZelVatItem::LatestDate();
  transactionDate_ = Value > latest ? latest : Value >= earliest ? Value : earliest;
}

const std::string& clsZelTransAct::Operator() const noexcept { return operator_; }

void clsZelTransAct::Operator(std::string_view Value) {
  operator_ = internal::Trim(internal::Utf16Left(Value, kOperatorLength));
}

std::int32_t clsZelTransAct::CurrencyCode() const noexcept { return currencyCode_; }

void clsZelTransAct::CurrencyCode(std::int32_t Value) noexcept { currencyCode_ = Value; }

bool clsZelTransAct::IsTaxExcl() const noexcept { return isTaxExcl_; }

void clsZelTransAct::IsTaxExcl(bool Value) noexcept { isTaxExcl_ = Value; }

bool clsZelTransAct::IsTraining() const noexcept { return isTraining_; }

void clsZelTransAct::IsTraining(bool Value) noexcept { isTraining_ = Value; }

bool clsZelTransAct::IsDeliveryNote() const noexcept { return isDeliveryNote_; }

void clsZelTransAct::IsDeliveryNote(bool Value) noexcept { isDeliveryNote_ = Value; }

const std::string& clsZelTransAct::ZelRqstData() const noexcept { return rqstData_; }

const std::string& clsZelTransAct::ItemHash() const noexcept { return itemHash_; }

void clsZelTransAct::PrintEngine(std::shared_ptr<clsZelItemPrint> Value) { printEngine_ = std::move(Value); }

void clsZelTransAct::ItemFactory(std::shared_ptr<clsZelListItemFact> Value) {
  itemList_.ItemFactory(std::move(Value));
}

bool clsZelTransAct::UseSHA256() const noexcept { return useSha256_; }

void clsZelTransAct::UseSHA256(bool Value) noexcept { useSha256_ = Value; }

std::int32_t clsZelTransAct::ItemCount() const noexcept { return itemList_.ItemCount(); }

std::shared_ptr<IVnZelItem> clsZelTransAct::ItemI(std::int32_t Index) const { return itemList_.ItemI(Index); }

std::shared_ptr<IVnZelItem> clsZelTransAct::ItemK(std::string_view InstanceID) const {
  return itemList_.ItemK(InstanceID);
}

const std::string& clsZelTransAct::ZelRespData() const noexcept { return respData_; }

const std::string& clsZelTransAct::ZelRespTpID() const noexcept { return respTpId_; }

Currency clsZelTransAct::ZelRespTpIDNr() const noexcept { return respTpIdNr_; }

Currency clsZelTransAct::ZelRespSeqNr() const noexcept { return respSeqNr_; }

const std::string& clsZelTransAct::ZelRespSignature() const noexcept { return respSignature_; }

bool clsZelTransAct::AddItem(std::shared_ptr<IVnZelItem> Item) {
  constexpr std::string_view operation = "AddItem";
  return Run(operation, [&] {
    clsVnError& inner = itemList_.ErrorObject();
    return itemList_.AddItem(std::move(Item)) || FailAs(inner, inner.ErrorMsg(), Via(operation, operation));
  });
}

bool clsZelTransAct::RemoveItem(const std::shared_ptr<IVnZelItem>& Item, std::string_view ID, std::int32_t Index) {
  constexpr std::string_view operation = "RemoveItem";
  return Run(operation, [&] {
    clsVnError& inner = itemList_.ErrorObject();
    return itemList_.RemoveItem(Item, ID, Index) || FailAs(inner, inner.ErrorMsg(), Via(operation, operation));
  });
}

bool clsZelTransAct::ClearItems(const std::shared_ptr<IVnZelItem>&, std::string_view, std::int32_t) {
  return Run("ClearItems", [&] { return itemList_.Clear(); });
}

std::string clsZelTransAct::GetItemHash(ZELHashFmt HashFmt, bool FromMem, std::int32_t GroupLen) {
  constexpr std::string_view operation = "GetItemHash";
  return RunFor<std::string>(operation, [&]() -> std::string {
    ByteArray hash;
    std::string text;
    bool done = GenItemHash(FromMem, hash);
    if (done && hash.size() > 0) {
      done = HashFmt == ZELHashFmt::Base16
                 ? helper_.GetBinStrOfBytes(hash, text, "", GroupLen)
                 : coder_.GetZelSingatureString(hash, text, GroupLen, "-", HashFmt == ZELHashFmt::Base32);
    }
    if (!done) {
      Fail(ZELErrorCodes::Err_Cmn_NotSpec,
           Compose("Hashausgabe nicht möglich!", kCrLf, "Eine interne Funktion meldete einen Fehler"), operation);
      return "##FEHLER##";
    }
    return text;
  });
}

bool clsZelTransAct::GenItemHash(bool fromMem, ByteArray& data) {
  constexpr std::string_view function = "GenItemHash";
  const auto fail = [&](std::string_view reason) {
    return Fail(ZELErrorCodes::Err_Cmn_NotSpec, Compose(kHashHeader, reason), function);
  };
  data = {};
  if (fromMem) {
    return itemHash_.empty() || helper_.FromBase64String(itemHash_, data) ||
           fail("Die gespeicherten Daten konnten nicht in das\r\nbinäre Datenfeld geschrieben werden.");
  }
  if (ItemCount() == 0) {
    return true;
  }
  std::string hash;
  if (!itemList_.GetItemHash(useSha256_, false, false, hash)) {
    return fail("Der Hashwert konnte nicht aus den\r\nEinzelposten ermittelt werden.");
  }
  return helper_.FromBase64String(hash, data) ||
         fail("Die erzeugten Daten konnten nicht in das\r\nbinäre Datenfeld geschrieben werden.");
}

bool clsZelTransAct::GetContainerValues(std::int32_t Index, Currency& Turnover, Currency& VatValue,
                                        Currency& VATrate) {
  return Run("GetContainerValues", [&] {
    const clsZelContainer& container = containers_[static_cast<std::size_t>(std::clamp(Index, 1, 6) - 1)];
    Turnover = container.Turnover();
    VatValue = container.VAT();
    VATrate = container.VATrate();
    return true;
  });
}

bool clsZelTransAct::XmlHandler(std::string& XmlData, bool Export, std::int32_t Intent) {
  return Run("XmlHandler", [&] { return Export ? EncodeXML(XmlData, Intent) : DecodeXML(XmlData); });
}

bool clsZelTransAct::BinaryDataGet(ZELSerialType DataType, ByteArray& Data, std::int32_t Start,
                                   std::int32_t* DataLen) {
  constexpr std::string_view operation = "BinaryDataGet";
  return Run(operation, [&] {
    ByteArray bytes;
    bool produced = false;
    switch (DataType) {
      case ZELSerialType::ItemList:
        produced = EncodeItems(bytes);
        break;
      case ZELSerialType::Request:
        produced = EncodeRqst(bytes);
        break;
      case ZELSerialType::Response:
        produced = EncodeResp(bytes);
        break;
      case ZELSerialType::ItemHash:
        produced = GenItemHash(false, bytes);
        break;
      default:
        return Fail(ZELErrorCodes::Err_Ser_SerTypeNotSprt, Compose(kGetHeader, UnsupportedType(DataType)), operation);
    }
    if (!produced) {
      // A producer that told its own reason is not spoken over.
      return HasError() ? false
                        : Fail(ZELErrorCodes::Err_Ser_Failed,
                               Compose(kGetHeader, "Die zugrunde liegende Serialisierungsfunktion", kCrLf,
                                       "meldete einen Fehler!"),
                               operation);
    }
    const auto length = static_cast<std::int32_t>(bytes.size());
    if (DataLen != nullptr) {
      *DataLen = length;
    }
    if (DataType == ZELSerialType::Request) {
      Data = std::move(bytes);
      return true;
    }
    if (length < 1) {
      return true;
    }
    const std::int64_t end = std::int64_t{Start} + length - 1;
    if (end > Data.UBound()) {
      return Fail(ZELErrorCodes::Err_Zel_CnvDataSize, TooSmall(kGetHeader, Start, length, end, Data.UBound()),
                  operation);
    }
    std::memcpy(&Data[Start], bytes.data(), bytes.size());
    return true;
  });
}

bool clsZelTransAct::EncodeItems(ByteArray& data) {
  constexpr std::string_view function = "EncodeItems";
  const auto fail = [&](std::string_view reason, std::string_view where) {
    return Fail(ZELErrorCodes::Err_Ser_Failed, Compose(kEncodeItemsHeader, reason), where);
  };
  if (ItemCount() == 0) {
    return fail("Es sind keine Posteneinträge vorhanden, Buchungen.\r\nohne Posten sind jedoch nicht zulässig!",
                function);
  }
  std::int32_t length = 0;
  if (!itemList_.BinaryDataGet(data, length)) {
    return fail("Die Daten konnten nicht aus dem Listenobjekt gelesen werden.", Via(function, "BinaryDataSet"));
  }
  data = FirstBytes(data, length);
  if (!helper_.ToBase64String(data, itemListText_)) {
    return fail("Die Daten konnten nicht in das Base64-Format\r\nüberführt werden.", Via(function, "ToBase64String"));
  }
  return RefreshItemHash(function, kEncodeItemsHeader);
}

bool clsZelTransAct::RefreshItemHash(std::string_view function, std::string_view header) {
  return itemList_.GetItemHash(useSha256_, false, false, itemHash_) ||
         Fail(ZELErrorCodes::Err_Ser_Failed,
              Compose(header, "Der Hashcode der Buchungsposten konnte nicht in", kCrLf,
                      "das Base64-Format überführt werden."),
              Via(function, "mObjItemList.GetItemHash"));
}

bool clsZelTransAct::EncodeRqst(ByteArray& data) {
  if (transactionDate_ <= clsZelVatItem::EarliestDate() || transactionDate_ >= clsZelVatItem::LatestDate()) {
    transactionDate_ = Date::Now();
  }
  std::shared_ptr<clsZelVatItem> rates;
  ByteArray hash;
  std::int32_t position = 0;
  data.Redim(0, kRequestRoom - 1);
  if (!FindRates(rates) || !SerialiseItems(hash) || !FillContainers(*rates) || !WriteRequest(data, position, hash)) {
    return false;
  }
  data.RedimPreserve(position - 1);
  return helper_.ToBase64String(data, rqstData_) ||
         FailRqst(ZELErrorCodes::Err_Ser_Failed,
                  "Die Binärdaten der Anfrage konnten nicht in\r\nin das Base64-Format überführt werden",
                  "BinaryDataGet");
}

bool clsZelTransAct::FailRqst(ZELErrorCodes number, std::string_view reason, std::string_view callee) {
  constexpr std::string_view function = "EncodeRqst";
  return Fail(number, Compose(kRequestHeader, reason),
              callee.empty() ? std::string(function) : Via(function, callee));
}

bool clsZelTransAct::FindRates(std::shared_ptr<clsZelVatItem>& rates) {
  constexpr auto missing = ZELErrorCodes::Err_Ser_DataMissing;
  if (!vatList_) {
    return FailRqst(missing, "Es liegen keine Mwst-Sätze vor (Objekt nicht vorhanden)");
  }
  if (vatList_->Count() == 0) {
    return FailRqst(missing, "Es liegen keine Mwst-Sätze vor (Anzahl = 0)");
  }
  rates = vatList_->GetItemOfDate(transactionDate_);
  if (!rates) {
    const std::string date = internal::FormatDateTime(transactionDate_, internal::CurrentRegionalSettings());
    return FailRqst(missing, Compose("Für das Buchungsdatum konnte kein USt-Eintrag gefunden werden", kCrLf,
                                     "    Buch.dat. .......: ", date));
  }
  return true;
}

bool clsZelTransAct::SerialiseItems(ByteArray& hash) {
  constexpr auto failed = ZELErrorCodes::Err_Ser_Failed;
  if (ItemCount() == 0) {
    return FailRqst(failed, "Es liegen keine Buchungsposten vor!", "GetZelDates");
  }
  ByteArray items;
  std::int32_t length = 0;
  if (!itemList_.BinaryDataGet(items, length)) {
    return FailRqst(failed, "Die Daten der Buchungsposten konnten nicht\r\ngelesen werden.");
  }
  if (!helper_.ToBase64String(items, itemListText_, 0, length)) {
    return FailRqst(ZELErrorCodes::Err_Ser_CodingError,
                    "Die Daten der Buchungsposten konnten nicht\r\nin das Base64-Format überführt werden");
  }
  const std::string_view hashType = useSha256_ ? "SHA256" : "SHA1";
  if (!itemList_.GetItemHash(useSha256_, false, false, itemHash_)) {
    return FailRqst(failed,
                    Compose("Der Hashkode über die Buchungspositionen konnte nicht erstellt werden!", kHashTypeLine,
                            hashType, kPositionLine, 0),
                    "GetZelOperator");
  }
  return helper_.FromBase64String(itemHash_, hash) ||
         FailRqst(failed,
                  Compose("Der Hashkode über die Buchungspositionen konnte nicht", kCrLf,
                          "aus dem Base64- in das Binärformat überführt werden!", kHashTypeLine, hashType),
                  "GetZelOperator");
}

bool clsZelTransAct::FillContainers(clsZelVatItem& rates) {
  ResetContainers();
  for (std::size_t i = 0; i < kClasses; ++i) {
    containers_[i].VATrate(rates.VATrate(static_cast<std::int32_t>(i) + 1));
  }
  CurrencyArray prices = CurrencyArray::WithBounds(0, 5);
  for (const std::shared_ptr<IVnZelItem>& item : itemList_) {
    bool isThirdParty = false;
    if (!item->GetPrices(prices, isThirdParty)) {
      return FailRqst(ZELErrorCodes::Err_Ser_DataMissing,
                      "Die Preisbestandteile für einen Buchungsposten\r\nkonnten nicht gelesen werden!");
    }
    for (std::size_t i = 0; i < kClasses; ++i) {
      const Currency price = prices[static_cast<std::int32_t>(i)];
      clsZelContainer& container = containers_[i];
      ContainerTurnover::Set(container, container.Turnover() + price);
      if (isThirdParty) {
        container.TurnoverThrd(container.TurnoverThrd() + price);
      }
      if (price < Currency()) {
        container.TurnoverNeg(container.TurnoverNeg() - price);
      }
    }
  }
  for (std::size_t i = 0; i < kClasses; ++i) {
    Currency vat;
    if (!rates.CalcVat(containers_[i].Turnover(), static_cast<std::int32_t>(i) + 1, vat, nullptr, nullptr,
                       isTaxExcl_)) {
      return FailRqst(ZELErrorCodes::Err_Ser_DataMissing,
                      Compose("Die USt-Berechung für den Satz \"", i + 1, "\" schlug fehl"));
    }
    containers_[i].VAT(vat);
  }
  return true;
}

bool clsZelTransAct::WriteRequest(ByteArray& data, std::int32_t& position, const ByteArray& hash) {
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return FailRqst(ZELErrorCodes::Err_Ser_Failed, Compose(reason, kPositionLine, position), callee);
  };
  if (!coder_.SetZelDates(data, position, ZelTags::tDate, transactionDate_)) {
    return fail("Das Buchungsdatum konnte nicht geschrieben werden!", "SetZelDates");
  }
  if (!coder_.SetZelTimes(data, position, ZelTags::tTime, transactionDate_)) {
    return fail("Die Buchungszeit konnte nicht geschrieben werden!", "SetZelTimes");
  }
  if (!coder_.SetZelOperator(data, position, operator_)) {
    return fail("Der Bediener konnte nicht geschrieben werden!", "SetZelOperator");
  }
  if (!coder_.SetZelHash(data, position, true, hash)) {
    return fail("Der Posten-Hash konnte nicht geschrieben werden!", "SetZelHash");
  }
  if (!coder_.SetZelCurrencyCode(data, position, currencyCode_)) {
    return fail("Der Währungskode konnte nicht geschrieben werden!", "SetZelCurrencyCode");
  }
  const auto writeFlag = [&](ZelTags tag, bool flag) {
    if (flag) {
      data[position] = static_cast<std::uint8_t>(tag);
      data[position + 1] = 0;
      internal::Advance(position, 0);
    }
  };
  writeFlag(ZelTags::Vat_AddOn, isTaxExcl_);
  writeFlag(ZelTags::Training, isTraining_);
  writeFlag(ZelTags::Deliverynote, isDeliveryNote_);
  for (std::size_t i = 0; i < kClasses; ++i) {
    if (!containers_[i].BinaryDataGet(data, position)) {
      return fail(Compose("Die Binärdaten aus Container \"", i + 1, "\" konnten nicht abgerufen werden!"),
                  "BinaryDataGet");
    }
  }
  return true;
}

bool clsZelTransAct::EncodeResp(ByteArray& data) {
  constexpr std::string_view function = "EncodeResp";
  if (respData_.empty()) {
    return Fail(ZELErrorCodes::Err_Ser_Failed,
                Compose(kEncodeRespHeader, "Es sind keine Daten einer ZEL-Antwort vorhanden.!"), function);
  }
  return helper_.FromBase64String(respData_, data) ||
         Fail(ZELErrorCodes::Err_Ser_Failed,
              Compose(kEncodeRespHeader, "Die vorhandenen Daten konnten nicht aus dem", kCrLf,
                      "Base64-Format gelesen werden!"),
              Via(function, "FromBase64String"));
}

bool clsZelTransAct::BinaryDataSet(ZELSerialType DataType, const ByteArray& Data, std::int32_t Start,
                                   std::int32_t DataLen) {
  constexpr std::string_view operation = "BinaryDataSet";
  constexpr std::string_view outside = "Der Startindex ist außerhalb des gültigen Bereiches.";
  constexpr std::string_view startLine = "\r\n    Start ...........: ";
  return Run(operation, [&] {
    if (DataType != ZELSerialType::ItemList && DataType != ZELSerialType::Request &&
        DataType != ZELSerialType::Response) {
      return Fail(ZELErrorCodes::Err_Ser_SerTypeNotSprt, UnsupportedType(DataType), operation);
    }
    if (Start < Data.LBound()) {
      return Fail(ZELErrorCodes::Err_Hlp_CnvRange,
                  Compose(kSetHeader, outside, startLine, Start, "\r\n    Min. Startpos. ..: ", Data.LBound()),
                  operation);
    }
    if (Start > Data.UBound()) {
      return Fail(ZELErrorCodes::Err_Hlp_CnvRange,
                  Compose(kSetHeader, outside, startLine, Start, "\r\n    Max. Startpos. ..: ", Data.UBound()),
                  operation);
    }
    const std::int64_t end = DataLen < 1 ? std::int64_t{Data.UBound()} : std::int64_t{Start} + DataLen - 1;
    if (end > Data.UBound()) {
      return Fail(ZELErrorCodes::Err_Zel_CnvDataSize, TooSmall(kSetHeader, Start, DataLen, end, Data.UBound()),
                  operation);
    }
    const ByteArray bytes(
        std::span<const std::uint8_t>(&Data[Start], static_cast<std::size_t>(end - Start + 1)));
    switch (DataType) {
      case ZELSerialType::ItemList:
        return DecodeItems(bytes);
      case ZELSerialType::Request:
        return DecodeRqst(bytes);
      default:
        return DecodeResp(bytes);
    }
  });
}

bool clsZelTransAct::DecodeItems(const ByteArray& data) {
  constexpr std::string_view function = "DecodeItems";
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return Fail(ZELErrorCodes::Err_Ser_Failed, Compose(kDecodeItemsHeader, reason), Via(function, callee));
  };
  itemList_.Clear();
  std::int32_t start = 0;
  if (!itemList_.BinaryDataSet(data, start)) {
    return fail("Das Listenobjekt meldete einen Fehler", "mObjItemList.BinaryDataSet");
  }
  if (!helper_.ToBase64String(data, itemListText_)) {
    return fail("Das Wandeln der Daten in Base64 schlug fehl", "ToBase64String");
  }
  return RefreshItemHash(function, kDecodeItemsHeader);
}

bool clsZelTransAct::DecodeRqst(const ByteArray& data) {
  constexpr std::string_view function = "DecodeRqst";
  std::int32_t position = 0;
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return Fail(ZELErrorCodes::Err_Ser_Failed, Compose(reason, kPositionLine, position), Via(function, callee));
  };
  Date day;
  if (!coder_.GetZelDates(data, position, ZelTags::tDate, day)) {
    return fail("Das Buchungsdatum konnte nicht gelesen werden!", "GetZelDates");
  }
  Date time;
  if (!coder_.GetZelTimes(data, position, ZelTags::tTime, time)) {
    return fail("Die Buchungszeit konnte nicht gelesen werden!", "GetZelTimes");
  }
  TransactionDate(Combine(day, time));
  if (!coder_.GetZelOperator(data, position, operator_)) {
    return fail("Der Bediener konnte nicht gelesen werden!", "GetZelOperator");
  }
  if (!coder_.GetZelHash(data, position, true, itemHash_)) {
    return fail("Der Posten-Hash konnte nicht gelesen werden!", "GetZelHash");
  }
  ResetContainers();
  while (position <= data.UBound()) {
    if (!DecodeRqstRecord(data, position)) {
      return false;
    }
  }
  return helper_.ToBase64String(data, rqstData_) ||
         Fail(ZELErrorCodes::Err_Ser_Failed,
              Compose("Die ZEL-Anfrage der Buchung konnte nicht", kCrLf, "in das Base64-Format überführt werden!"),
              Via(function, "ToBase64String"));
}

bool clsZelTransAct::DecodeRqstRecord(const ByteArray& data, std::int32_t& position) {
  constexpr std::string_view function = "DecodeRqst";
  const std::uint8_t tag = data[position];
  const std::string where = Compose(kPositionLine, position, internal::kTagLine, internal::HexDigits(tag));
  const auto readFlag = [&](bool& flag) {
    // A flag is its record; what is cut off or carries a value is none.
    const auto refusal = internal::CheckRead(data, position, {0, 0});
    if (refusal) {
      return Fail(refusal->number, refusal->message, function);
    }
    flag = true;
    internal::Advance(position, 0);
    return true;
  };
  switch (static_cast<ZelTags>(tag)) {
    case ZelTags::Currency:
      return coder_.GetZelCurrencyCode(data, position, currencyCode_) ||
             Fail(ZELErrorCodes::Err_Ser_Failed, Compose("Der Währungskode konnte nicht gelesen werden!", where),
                  Via(function, "GetZelCurrencyCode"));
    case ZelTags::Vat_AddOn:
      return readFlag(isTaxExcl_);
    case ZelTags::Training:
      return readFlag(isTraining_);
    case ZelTags::Deliverynote:
      return readFlag(isDeliveryNote_);
    case ZelTags::Container_Vat_1:
    case ZelTags::Container_Vat_2:
    case ZelTags::Container_Vat_3:
    case ZelTags::Container_Vat_4:
    case ZelTags::Container_Vat_5:
    case ZelTags::Container_Vat_6: {
      const std::size_t number = tag & 15U;
      return containers_[number - 1].BinaryDataSet(data, position) ||
             Fail(ZELErrorCodes::Err_Ser_Failed,
                  Compose("Ein Umsatzcontainer konnte nicht gelesen werden!", where,
                          "\r\n    Containernr. ....: ", number),
                  Via(function, "clsZelContainer.BinaryDataSet"));
    }
    default: {
      const internal::Refusal refusal = internal::UnexpectedTag(tag);
      return Fail(refusal.number, refusal.message, function);
    }
  }
}

bool clsZelTransAct::DecodeResp(const ByteArray& data) {
  constexpr std::string_view function = "DecodeResp";
  std::int32_t position = 0;
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return Fail(ZELErrorCodes::Err_Ser_Failed, Compose(reason, kPositionLine, position), Via(function, callee));
  };
  if (!coder_.GetZelTpID(data, position, respTpId_)) {
    return fail("Die Steuerpfl.-ID konnte nicht gelesen werden!", "GetZelTpID");
  }
  if (!coder_.GetZelTpIDNr(data, position, respTpIdNr_)) {
    return fail("Die laufende ZEL-Nr konnte nicht gelesen werden!", "GetZelTpIDNr");
  }
  if (!coder_.GetZelCounter(data, position, ZelTags::Seq_Nr_Trans, respSeqNr_)) {
    return fail("Die Sequenznummer konnte nicht gelesen werden!", "GetZelCounter");
  }
  if (!coder_.GetZelSignature2(data, position, respSignature_)) {
    return fail("Die Signatur der Buchung konnte nicht gelesen werden!", "GetZelSignature2");
  }
  return helper_.ToBase64String(data, respData_) ||
         Fail(ZELErrorCodes::Err_Ser_Failed,
              Compose("Die ZEL-Antwort der Buchung konnte nicht", kCrLf, "in das Base64-Format überführt werden!"),
              Via(function, "ToBase64String"));
}

bool clsZelTransAct::EncodeXML(std::string& xmlData, std::int32_t intent) {
  if (itemListText_.empty() || rqstData_.empty() || respData_.empty()) {
    return Fail(ZELErrorCodes::Err_Ser_Failed,
                Compose("Der XML-Buchungssatz konnte nicht erstellt werden:", kCrLf,
                        "Es liegen nicht genug Daten vor!", "\r\n    Postenliste .....: ", itemListText_.size(),
                        " Zeichen", "\r\n    ZEL-Anfrage .....: ", rqstData_.size(), " Zeichen",
                        "\r\n    ZEL-Antwort .....: ", respData_.size(), " Zeichen"),
                "EncodeXML");
  }
  const std::string_view lineEnd = intent < 0 ? "" : kCrLf;
  const std::string outer(static_cast<std::size_t>(std::max(intent, 0)), ' ');
  const std::string inner = outer + outer;
  xmlData = Compose(outer, "<transactionEncoded>", lineEnd,                                             //
                    inner, "<itemListEncoded>", itemListText_, "</itemListEncoded>", lineEnd,           //
                    inner, "<transactionRequest>", rqstData_, "</transactionRequest>", lineEnd,         //
                    inner, "<transactionResponse>", respData_, "</transactionResponse>", lineEnd,       //
                    outer, "</transactionEncoded>");
  return true;
}

bool clsZelTransAct::DecodeXML(std::string_view xmlData) {
  constexpr std::string_view function = "DecodeXML";
  constexpr auto failed = ZELErrorCodes::Err_Ser_Failed;
  constexpr auto missing = ZELErrorCodes::Err_Ser_DataMissing;
  std::string document;
  std::string content;
  std::string profile;
  ByteArray bytes;

  // An element that is not there at all counts as an empty one.
  const auto isDamaged = [&](std::string_view text, ZelXmlTags tag, std::string& result) {
    return !coder_.GetXmlTag(text, tag, result, &profile) && internal::HasElement(text, tag);
  };

  if (isDamaged(xmlData, ZelXmlTags::Transaction, document)) {
    return Fail(failed, "Das Ermitteln der Transaktion schlug fehl!", Via(function, "GetXmlTag"));
  }
  if (document.empty()) {
    return Fail(failed, "Es konnte kein Transaktionsdatensatz gefunden werden", function);
  }

  if (isDamaged(document, ZelXmlTags::ItemList, content)) {
    return Fail(failed, "Das Ermitteln der Postenliste schlug fehl!", function);
  }
  if (content.empty()) {
    return Fail(missing, "Es konnten keine Postendaten gefunden werden!", function);
  }
  if (!profile.empty()) {
    ZelProfile(profile);
  }
  if (!helper_.FromBase64String(content, bytes)) {
    return Fail(failed, "Base64-Konvertierung der Postendaten fehlgeschlagen!", Via(function, "FromBase64String"));
  }
  if (!DecodeItems(bytes)) {
    return Fail(failed, "Schreiben der Postendaten fehlgeschlagen!", Via(function, "BinaryDataSet"));
  }

  if (isDamaged(document, ZelXmlTags::TransRequest, content)) {
    return Fail(failed, "Das Ermitteln der ZEL-Anfrage (Buchung) schlug fehl!", function);
  }
  if (content.empty()) {
    return Fail(missing, "Es konnten keine Anfragedaten gefunden werden!", function);
  }
  if (!helper_.FromBase64String(content, bytes)) {
    return Fail(failed, "Base64-Konvertierung der Anfragedaten fehlgeschlagen!", function);
  }
  if (!DecodeRqst(bytes)) {
    return Fail(failed, "Dekodieren der Anfragedaten fehlgeschlagen!", Via(function, "DecodeRqst"));
  }

  if (isDamaged(document, ZelXmlTags::TransResponse, content)) {
    return Fail(failed, "Das Ermitteln der ZEL-Antwort (Buchung) schlug fehl!", function);
  }
  if (content.empty()) {
    return Fail(missing, "Es konnten keine Antwortdaten gefunden werden!", function);
  }
  if (!helper_.FromBase64String(content, bytes)) {
    return Fail(failed, "Base64-Konvertierung der Antwortdaten fehlgeschlagen!", function);
  }
  return DecodeResp(bytes) ||
         Fail(failed, "Dekodieren der Antwortdaten fehlgeschlagen!", Compose(function, ".DecodeResp"));
}

bool clsZelTransAct::Clear() {
  return Run("Clear", [&] {
    for (std::size_t i = 0; i < kClasses; ++i) {
      containers_[i].Clear();
      containers_[i].Tag(ContainerTag(i));
      containers_[i].IsZelResponse(false);
    }
    operator_.clear();
    itemHash_.clear();
    itemListText_.clear();
    rqstData_.clear();
    respData_.clear();
    respSignature_.clear();
    return itemList_.Clear();
  });
}

void clsZelTransAct::ResetContainers() {
  for (clsZelContainer& container : containers_) {
    container.Clear();
  }
}

std::string clsZelTransAct::ToString() {
  return RunFor<std::string>("ToString", [&] {
    if (!printEngine_) {
      printEngine_ = internal::CreateDefaultPrintEngine();
    }
    return internal::RenderBooking(*printEngine_, *this, &ErrorObject());
  });
}

}  // namespace VnZEL10cmn
