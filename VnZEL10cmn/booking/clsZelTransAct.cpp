#include "VnZEL10cmn/booking/clsZelTransAct.h"

#include <algorithm>
#include <utility>

#include "VnZEL10cmn/booking/internal/ContainerTurnover.h"
#include "VnZEL10cmn/device/internal/Records.h"
#include "VnZEL10cmn/document/internal/DocumentBytes.h"
#include "VnZEL10cmn/document/internal/DocumentDates.h"
#include "VnZEL10cmn/document/internal/DocumentTexts.h"
#include "VnZEL10cmn/document/internal/DocumentXml.h"
#include "VnZEL10cmn/errors/internal/Lent.h"
#include "VnZEL10cmn/items/internal/CashItemAccess.h"
#include "VnZEL10cmn/items/internal/DefaultPrintEngine.h"
#include "VnZEL10cmn/items/internal/ItemListAccess.h"
#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;
using internal::kPositionLine;
using internal::Via;

namespace {

constexpr std::size_t kOperatorLength = 16;
constexpr std::int32_t kRequestRoom = 512;
constexpr std::size_t kClasses = 6;

constexpr std::string_view kRequestHeader = "Buchung: Das Erstellen der Anfrage ist nicht möglich!\r\n";
constexpr std::string_view kGetHeader = "Serialisierung der Buchung nicht möglich!\r\n";
constexpr std::string_view kSetHeader = "Deserialisierung der Buchung nicht möglich!\r\n";

ZelTags ContainerTag(std::size_t index) { return static_cast<ZelTags>((index + 1) | 224); }

}  // namespace

clsZelTransAct::clsZelTransAct()
    : ItemHolder("clsZelTransAct", true), transactionDate_(clsZelVatItem::EarliestDate()) {
  for (std::size_t i = 0; i < kClasses; ++i) {
    containers_[i].Tag(ContainerTag(i));
  }
}

clsZelTransAct::~clsZelTransAct() = default;

void clsZelTransAct::VatList(std::shared_ptr<clsZelVatList> Value) { vatList_ = std::move(Value); }

std::shared_ptr<clsZelVatList> clsZelTransAct::VatList() const { return vatList_; }

Date clsZelTransAct::TransactionDate() const noexcept { return transactionDate_; }

void clsZelTransAct::TransactionDate(Date Value) noexcept { transactionDate_ = internal::WithinRange(Value); }

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

const std::string& clsZelTransAct::ZelRespData() const noexcept { return respData_; }

const std::string& clsZelTransAct::ZelRespTpID() const noexcept { return respTpId_; }

Currency clsZelTransAct::ZelRespTpIDNr() const noexcept { return respTpIdNr_; }

Currency clsZelTransAct::ZelRespSeqNr() const noexcept { return respSeqNr_; }

const std::string& clsZelTransAct::ZelRespSignature() const noexcept { return respSignature_; }

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
      case ZELSerialType::ItemList: produced = EncodeItems(bytes); break;
      case ZELSerialType::Request: produced = EncodeRqst(bytes); break;
      case ZELSerialType::Response: produced = EncodeResp(bytes); break;
      case ZELSerialType::ItemHash: produced = GenItemHash(false, bytes); break;
      default: return Fail(internal::UnsupportedType(kGetHeader, DataType), operation);
    }
    return produced ? HandOut(std::move(bytes), DataType == ZELSerialType::Request, Data, Start, DataLen,
                              kGetHeader)
                    : ProducerFailed(kGetHeader);
  });
}

bool clsZelTransAct::EncodeRqst(ByteArray& data) {
  if (internal::IsUndated(transactionDate_)) {
    transactionDate_ = Date::Now();
  }
  std::shared_ptr<clsZelVatItem> rates;
  ByteArray hash;
  std::int32_t position = 0;
  data.Redim(0, kRequestRoom - 1);
  if (!FindRates(rates) || !SerialiseItems(hash) || !FillContainers(*rates) ||
      !WriteRequest(data, position, hash)) {
    return false;
  }
  data.RedimPreserve(position - 1);
  return helper_.ToBase64String(data, rqstData_) ||
         FailRqst(ZELErrorCodes::Err_Ser_Failed, internal::kRequestNotEncoded, "BinaryDataGet");
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
  items.RedimPreserve(length - 1);  // the rest is reserve
  if (!helper_.ToBase64String(items, itemListText_)) {
    return FailRqst(ZELErrorCodes::Err_Ser_CodingError,
                    "Die Daten der Buchungsposten konnten nicht\r\nin das Base64-Format überführt werden");
  }
  if (HasError()) {
    return false;
  }
  if (HashBytes({items.data(), items.size()}, hash)) {
    return true;
  }
  const std::string_view hashType = internal::HashType(UseSHA256());
  if (!itemList_.GetItemHash(UseSHA256(), false, false, itemHash_)) {
    return FailRqst(failed,
                    Compose("Der Hashkode über die Buchungspositionen konnte nicht erstellt werden!",
                            internal::kHashTypeLine, hashType, kPositionLine, 0),
                    "GetZelOperator");
  }
  return helper_.FromBase64String(itemHash_, hash) ||
         FailRqst(failed, Compose(internal::kHashNotDecoded, internal::kHashTypeLine, hashType),
                  "GetZelOperator");
}

bool clsZelTransAct::FillContainers(clsZelVatItem& rates) {
  ResetContainers();
  for (std::size_t i = 0; i < kClasses; ++i) {
    containers_[i].VATrate(rates.VATrate(static_cast<std::int32_t>(i) + 1));
  }
  if (!ItemListAccess::IsConstant(itemList_)) {
    if (!AddHostItems()) {
      return false;
    }
  } else {
    for (const std::shared_ptr<IVnZelItem>& item : ItemListAccess::Items(itemList_).Slots()) {
      if (item) {
        const auto& cash = static_cast<const clsZelItemCash&>(*item);
        AddPrices(CashItemAccess::Prices(cash), cash.ThirdParty());
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

bool clsZelTransAct::AddHostItems() {
  const internal::ItemStore& items = ItemListAccess::Items(itemList_);
  const std::uint64_t changes = items.Changes();
  const std::uint32_t resets = containerResets_;
  for (const std::shared_ptr<IVnZelItem>& item : itemList_) {
    CurrencyArray prices = CurrencyArray::WithBounds(0, 5);
    bool isThirdParty = false;
    // The hash is that of the list as it was before, and the sums are in the containers: an item that changes the list
    // now, or has the booking fill its containers with something else, has failed.
    if (!item->GetPrices(prices, isThirdParty) || items.Changes() != changes || containerResets_ != resets) {
      return FailRqst(ZELErrorCodes::Err_Ser_DataMissing,
                      "Die Preisbestandteile für einen Buchungsposten\r\nkonnten nicht gelesen werden!");
    }
    std::array<Currency, kClasses> perClass;
    for (std::size_t i = 0; i < kClasses; ++i) {
      perClass[i] = prices[static_cast<std::int32_t>(i)];
    }
    AddPrices(perClass, isThirdParty);
    // A host's item may have filed an error in the booking.
    if (HasError()) {
      return false;
    }
  }
  return true;
}

void clsZelTransAct::AddPrices(const std::array<Currency, 6>& prices, bool isThirdParty) {
  for (std::size_t i = 0; i < kClasses; ++i) {
    const Currency price = prices[i];
    if (price == Currency()) {
      continue;
    }
    // An overflow ends this half-way: the order of the sums shows in the containers then.
    clsZelContainer& container = containers_[i];
    if (isThirdParty) {
      container.TurnoverThrd(container.TurnoverThrd() + price);
    }
    if (price < Currency()) {
      const Currency magnitude = -price;
      ContainerTurnover::Set(container, container.Turnover() - magnitude);
      container.TurnoverNeg(container.TurnoverNeg() + magnitude);
    } else {
      ContainerTurnover::Set(container, container.Turnover() + price);
    }
  }
}

bool clsZelTransAct::WriteRequest(ByteArray& data, std::int32_t& position, const ByteArray& hash) {
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return FailRqst(ZELErrorCodes::Err_Ser_Failed, Compose(reason, kPositionLine, position), callee);
  };
  if (!coder_.SetZelDates(data, position, ZelTags::tDate, transactionDate_)) {
    return fail(internal::kDateNotWritten, "SetZelDates");  // GCOVR_EXCL_LINE: there are rates for the date
  }
  if (!coder_.SetZelTimes(data, position, ZelTags::tTime, transactionDate_)) {
    return fail(internal::kTimeNotWritten, "SetZelTimes");  // GCOVR_EXCL_LINE: what has a date has a time
  }
  if (!coder_.SetZelOperator(data, position, operator_)) {
    return fail("Der Bediener konnte nicht geschrieben werden!", "SetZelOperator");
  }
  if (!coder_.SetZelHash(data, position, true, hash)) {
    return fail(internal::kHashNotWritten, "SetZelHash");  // GCOVR_EXCL_LINE: the hash is made just before
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

bool clsZelTransAct::BinaryDataSet(ZELSerialType DataType, const ByteArray& Data, std::int32_t Start,
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

bool clsZelTransAct::DecodeRqst(const ByteArray& data) {
  constexpr std::string_view function = "DecodeRqst";
  std::int32_t position = 0;
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return Fail(ZELErrorCodes::Err_Ser_Failed, Compose(reason, kPositionLine, position),
                Via(function, callee));
  };
  Date day;
  if (!coder_.GetZelDates(data, position, ZelTags::tDate, day)) {
    return fail("Das Buchungsdatum konnte nicht gelesen werden!", "GetZelDates");
  }
  Date time;
  if (!coder_.GetZelTimes(data, position, ZelTags::tTime, time)) {
    return fail(internal::kTimeNotRead, "GetZelTimes");
  }
  TransactionDate(internal::Combine(day, time));
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
         Fail(ZELErrorCodes::Err_Ser_Failed, internal::kRequestNotStored, Via(function, "ToBase64String"));
}

bool clsZelTransAct::DecodeRqstRecord(const ByteArray& data, std::int32_t& position) {
  constexpr std::string_view function = "DecodeRqst";
  const std::uint8_t tag = data[position];
  const auto where = [&] {
    return Compose(kPositionLine, position, internal::kTagLine, internal::HexDigits(tag));
  };
  const auto readFlag = [&](bool& flag) {
    // A flag is its record; what is cut off or carries a value is none.
    const auto refusal = internal::CheckRead(data, position, {0, 0});
    if (refusal) {
      return Fail(*refusal, function);
    }
    flag = true;
    internal::Advance(position, 0);
    return true;
  };
  switch (static_cast<ZelTags>(tag)) {
    case ZelTags::Currency:
      return coder_.GetZelCurrencyCode(data, position, currencyCode_) ||
             Fail(ZELErrorCodes::Err_Ser_Failed,
                  Compose("Der Währungskode konnte nicht gelesen werden!", where()),
                  Via(function, "GetZelCurrencyCode"));
    case ZelTags::Vat_AddOn: return readFlag(isTaxExcl_);
    case ZelTags::Training: return readFlag(isTraining_);
    case ZelTags::Deliverynote: return readFlag(isDeliveryNote_);
    case ZelTags::Container_Vat_1:
    case ZelTags::Container_Vat_2:
    case ZelTags::Container_Vat_3:
    case ZelTags::Container_Vat_4:
    case ZelTags::Container_Vat_5:
    case ZelTags::Container_Vat_6: {
      const std::size_t number = tag & 15U;
      return containers_[number - 1].BinaryDataSet(data, position) ||
             Fail(ZELErrorCodes::Err_Ser_Failed,
                  Compose(internal::kContainerUnreadable, where(), internal::kContainerNumberLine, number),
                  Via(function, "clsZelContainer.BinaryDataSet"));
    }
    default: return Fail(internal::UnexpectedTag(tag), function);
  }
}

bool clsZelTransAct::DecodeResp(const ByteArray& data) {
  constexpr std::string_view function = "DecodeResp";
  std::int32_t position = 0;
  const auto fail = [&](std::string_view reason, std::string_view callee) {
    return Fail(ZELErrorCodes::Err_Ser_Failed, Compose(reason, kPositionLine, position),
                Via(function, callee));
  };
  if (!coder_.GetZelTpID(data, position, respTpId_)) {
    return fail(internal::kTaxpayerNotRead, "GetZelTpID");
  }
  if (!coder_.GetZelTpIDNr(data, position, respTpIdNr_)) {
    return fail(internal::kDeviceNotRead, "GetZelTpIDNr");
  }
  if (!coder_.GetZelCounter(data, position, ZelTags::Seq_Nr_Trans, respSeqNr_)) {
    return fail(internal::kSequenceNotRead, "GetZelCounter");
  }
  if (!coder_.GetZelSignature2(data, position, respSignature_)) {
    return fail(internal::kSignatureNotRead, "GetZelSignature2");
  }
  return helper_.ToBase64String(data, respData_) ||
         Fail(ZELErrorCodes::Err_Ser_Failed, internal::kResponseNotStored, Via(function, "ToBase64String"));
}

bool clsZelTransAct::EncodeXML(std::string& xmlData, std::int32_t intent) {
  if (itemListText_.empty() || rqstData_.empty() || respData_.empty()) {
    return Fail(internal::NotEnoughData(
                    Compose("\r\n    Postenliste .....: ", itemListText_.size(), " Zeichen",
                            internal::RequestAndResponseLengths(rqstData_.size(), respData_.size()))),
                "EncodeXML");
  }
  xmlData = internal::Document(ZelXmlTags::Transaction,
                               {internal::Element(ZelXmlTags::ItemList, itemListText_),
                                internal::Element(ZelXmlTags::TransRequest, rqstData_),
                                internal::Element(ZelXmlTags::TransResponse, respData_)},
                               intent);
  return true;
}

bool clsZelTransAct::DecodeXML(std::string_view xmlData) {
  constexpr std::string_view function = "DecodeXML";
  constexpr auto failed = ZELErrorCodes::Err_Ser_Failed;
  constexpr auto missing = ZELErrorCodes::Err_Ser_DataMissing;
  // A host's item factory may change the text that it was given.
  const std::string kept(xmlData);
  std::string_view document;
  std::string profile;
  ByteArray bytes;

  if (!ReadXmlElement(kept,
                      {ZelXmlTags::Transaction, internal::kTransactionNotFound, ".[GetXmlTag]",
                       internal::kNoTransaction, failed},
                      document)) {
    return false;
  }
  if (!ReadXmlBytes(document,
                    {ZelXmlTags::ItemList, "Das Ermitteln der Postenliste schlug fehl!", "",
                     internal::kNoItems, missing},
                    "Base64-Konvertierung der Postendaten fehlgeschlagen!", ".[FromBase64String]", bytes,
                    &profile)) {
    return false;
  }
  if (!profile.empty()) {
    ZelProfile(profile);
  }
  if (!DecodeItems(bytes)) {
    return Fail(failed, "Schreiben der Postendaten fehlgeschlagen!", Via(function, "BinaryDataSet"));
  }
  if (!ReadXmlBytes(document,
                    {ZelXmlTags::TransRequest, internal::kRequestNotFound, "", internal::kNoRequest, missing},
                    internal::kRequestNotBase64, "", bytes)) {
    return false;
  }
  if (!DecodeRqst(bytes)) {
    return Fail(failed, internal::kRequestNotDecoded, Via(function, "DecodeRqst"));
  }
  if (!ReadXmlBytes(
          document,
          {ZelXmlTags::TransResponse, internal::kResponseNotFound, "", internal::kNoResponse, missing},
          internal::kResponseNotBase64, "", bytes)) {
    return false;
  }
  return DecodeResp(bytes) || Fail(failed, internal::kResponseNotDecoded, Compose(function, ".DecodeResp"));
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
  ++containerResets_;
  for (clsZelContainer& container : containers_) {
    container.Clear();
  }
}

std::string clsZelTransAct::ToString() {
  // The engine may let go of the booking and of itself.
  const internal::Lent self(*this);
  return RunFor<std::string>("ToString", [&] {
    if (!printEngine_) {
      printEngine_ = internal::CreateDefaultPrintEngine();
    }
    const std::shared_ptr<clsZelItemPrint> engine = printEngine_;
    return internal::RenderBooking(*engine, self.Get(), &ErrorObject());
  });
}

}  // namespace VnZEL10cmn
