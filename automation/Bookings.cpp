#include "automation/Object.h"

// VAT rates, containers, bookings, signed data and reports.

namespace automation {

namespace {

using VnZEL10cmn::clsZelContainer;
using VnZEL10cmn::clsZelVatItem;

/// A length that callers hand in as a variant.
LONG LengthIn(const VARIANT& given) {
  if (given.vt == VT_ERROR && given.scode == DISP_E_PARAMNOTFOUND) return 0;
  Variant value = CopyOf(given);
  if (const HRESULT result = VariantChangeType(value.Get(), value.Get(), 0, VT_I4); FAILED(result)) {
    throw ComFailure(result == DISP_E_OVERFLOW ? RunTimeNumber::Overflow : RunTimeNumber::TypeMismatch);
  }
  return value->lVal;
}

class ZelVatItem final : public Object<clsZelVatItem, _clsZelVatItem> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  HRESULT STDMETHODCALLTYPE get_VATrate(LONG Index, CY* Value) override {
    return Give(Value, [&] { return It().VATrate(Index); });
  }
  HRESULT STDMETHODCALLTYPE put_VATrate(LONG Index, CY Value) override {
    return Guard([&] { It().VATrate(Index, FromCom(Value)); });
  }
  HRESULT STDMETHODCALLTYPE get_VatRate2(ZELVatClasses VatClass, CY* Value) override {
    return Give(Value, [&] { return It().VatRate2(FromCom(VatClass)); });
  }
  HRESULT STDMETHODCALLTYPE put_VatRate2(ZELVatClasses VatClass, CY Value) override {
    return Guard([&] { It().VatRate2(FromCom(VatClass), FromCom(Value)); });
  }
  AUTOMATION_READ(DATE, ValidFrom)
  AUTOMATION_READ(DATE, ValidUpTo)
  HRESULT STDMETHODCALLTYPE SetDates(DATE From, DATE UpTo, VARIANT_BOOL* Success) override {
    return Give(Success, [&] { return It().SetDates(FromCom(From), FromCom(UpTo)); });
  }
  HRESULT STDMETHODCALLTYPE CalcVat(CY Price, LONG VatIdx, CY* VatValue, CY* PriceNet, CY* PriceGross,
                                    VARIANT_BOOL IsNetto, VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& vat, auto* net, auto* gross) {
          return It().CalcVat(FromCom(Price), VatIdx, vat, net, gross, FromCom(IsNetto));
        },
        VatValue, Optional(PriceNet), Optional(PriceGross));
  }
};

class ZelVatList final : public Object<VnZEL10cmn::clsZelVatList, _clsZelVatList> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown** Value) override {
    return GiveEnumerator(Value, ObjectToVariant<clsZelVatItem>);
  }
  AUTOMATION_READ(LONG, Count)
  HRESULT STDMETHODCALLTYPE get_VatItem(LONG Index, _clsZelVatItem** Value) override {
    return Give(Value, [&] { return It().VatItem(Index); });
  }
  HRESULT STDMETHODCALLTYPE GetItemOfDate(DATE VatDate, _clsZelVatItem** Result) override {
    return Give(Result, [&] { return It().GetItemOfDate(FromCom(VatDate)); });
  }
  HRESULT STDMETHODCALLTYPE Clear() override {
    return Guard([&] { It().Clear(); });
  }
  HRESULT STDMETHODCALLTYPE AddItem(_clsZelVatItem* Item, VARIANT_BOOL* Success) override {
    return Give(Success, [&] { return It().AddItem(FromCom(Item)); });
  }
};

class ZelContainer final : public Object<clsZelContainer, _clsZelContainer> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  AUTOMATION_READ(unsigned char, Tag)
  HRESULT STDMETHODCALLTYPE put_Tag(unsigned char Value) override {
    return Guard([&] { It().Tag(static_cast<VnZEL10cmn::ZelTags>(Value)); });
  }
  AUTOMATION_PROPERTY(VARIANT_BOOL, IsZelResponse)
  AUTOMATION_READ(CY, Turnover)
  AUTOMATION_PROPERTY(CY, TurnoverNeg)
  AUTOMATION_PROPERTY(CY, TurnoverThrd)
  AUTOMATION_PROPERTY(CY, VAT)
  AUTOMATION_PROPERTY(CY, VATrate)
  AUTOMATION_READ(CY, CounterTO)
  AUTOMATION_READ(VARIANT_BOOL, OverflowTO)
  AUTOMATION_READ(VARIANT_BOOL, VATchange)
  HRESULT STDMETHODCALLTYPE BinaryDataGet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& data, auto& start) { return It().BinaryDataGet(data, start); }, Data, Start);
  }
  HRESULT STDMETHODCALLTYPE BinaryDataSet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& start) { return It().BinaryDataSet(Bytes(Data), start); }, Start);
  }
  AUTOMATION_SUCCESS(Clear)
};

// What bookings, signed data and reports have in common.
#define AUTOMATION_DOCUMENT                                                                          \
  HRESULT STDMETHODCALLTYPE XmlHandler(BSTR* XmlData, VARIANT_BOOL Export, LONG Intent,              \
                                       VARIANT_BOOL* Success) override {                             \
    return Call(                                                                                     \
        Success, [&](auto& xml) { return It().XmlHandler(xml, FromCom(Export), Intent); }, XmlData); \
  }                                                                                                  \
  HRESULT STDMETHODCALLTYPE BinaryDataSet(ZELSerialType DataType, SAFEARRAY** Data, LONG* Start,     \
                                          VARIANT DataLen, VARIANT_BOOL* Success) override {         \
    if (Start == nullptr) return Missing();                                                          \
    return Give(Success, [&] {                                                                       \
      return It().BinaryDataSet(FromCom(DataType), Bytes(Data), *Start, LengthIn(DataLen));          \
    });                                                                                              \
  }                                                                                                  \
  AUTOMATION_PROPERTY(VARIANT_BOOL, UseSHA256)                                                       \
  AUTOMATION_TEXT(ToString)
#define AUTOMATION_BINARY_DATA_GET                                                               \
  HRESULT STDMETHODCALLTYPE BinaryDataGet(ZELSerialType DataType, SAFEARRAY** Data, LONG* Start, \
                                          LONG* DataLen, VARIANT_BOOL* Success) override {       \
    if (Start == nullptr) return Missing();                                                      \
    return Call(                                                                                 \
        Success,                                                                                 \
        [&](auto& data, auto* length) {                                                          \
          return It().BinaryDataGet(FromCom(DataType), data, *Start, length);                    \
        },                                                                                       \
        Data, Optional(DataLen));                                                                \
  }
#define AUTOMATION_HASH(name)                                                                           \
  HRESULT STDMETHODCALLTYPE name(ZELHashFmt HashFmt, VARIANT_BOOL FromMem, LONG GroupLen, BSTR* Result) \
      override {                                                                                        \
    return Give(Result, [&] { return It().name(FromCom(HashFmt), FromCom(FromMem), GroupLen); });       \
  }

class ZelTransAct final : public Object<VnZEL10cmn::clsZelTransAct, _clsZelTransAct> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  AUTOMATION_DOCUMENT
  AUTOMATION_BINARY_DATA_GET
  AUTOMATION_HASH(GetItemHash)
  AUTOMATION_ITEMS
  AUTOMATION_REMOVE_ITEM(ClearItems)
  AUTOMATION_OBJECT_READ(_clsZelVatList, VatList)
  AUTOMATION_OBJECT_WRITE(_clsZelVatList, VatList)
  AUTOMATION_PROPERTY(BSTR, ZelProfile)
  AUTOMATION_PROPERTY(DATE, TransactionDate)
  AUTOMATION_PROPERTY(BSTR, Operator)
  AUTOMATION_PROPERTY(LONG, CurrencyCode)
  AUTOMATION_PROPERTY(VARIANT_BOOL, IsTaxExcl)
  AUTOMATION_PROPERTY(VARIANT_BOOL, IsTraining)
  AUTOMATION_PROPERTY(VARIANT_BOOL, IsDeliveryNote)
  AUTOMATION_READ(BSTR, ZelRqstData)
  AUTOMATION_READ(BSTR, ItemHash)
  AUTOMATION_OBJECT_WRITE(_clsZelItemPrint, PrintEngine)
  AUTOMATION_OBJECT_WRITE(_clsZelListItemFact, ItemFactory)
  AUTOMATION_READ(BSTR, ZelRespData)
  AUTOMATION_READ(BSTR, ZelRespTpID)
  AUTOMATION_READ(CY, ZelRespTpIDNr)
  AUTOMATION_READ(CY, ZelRespSeqNr)
  AUTOMATION_READ(BSTR, ZelRespSignature)
  HRESULT STDMETHODCALLTYPE GetContainerValues(LONG Index, CY* Turnover, CY* VatValue, CY* VATrate,
                                               VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& turnover, auto& vat, auto& rate) {
          return It().GetContainerValues(Index, turnover, vat, rate);
        },
        Turnover, VatValue, VATrate);
  }
  AUTOMATION_SUCCESS(Clear)
};

class ZelTransActData final : public Object<VnZEL10cmn::clsZelTransActData, _clsZelTransActData> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  AUTOMATION_DOCUMENT
  AUTOMATION_BINARY_DATA_GET
  AUTOMATION_HASH(GetDataHash)
  AUTOMATION_PROPERTY(DATE, TransactionDate)
  AUTOMATION_PROPERTY(ZELDataSignTypes, DataSignType)
  AUTOMATION_OBJECT_WRITE(_clsZelItemPrint, PrintEngine)
  AUTOMATION_READ(BSTR, ZelRqstData)
  AUTOMATION_READ(BSTR, DataToSign)
  AUTOMATION_READ(BSTR, ZelRespData)
  AUTOMATION_READ(BSTR, ZelRespTpID)
  AUTOMATION_READ(CY, ZelRespTpIDNr)
  AUTOMATION_READ(CY, ZelRespSeqNr)
  AUTOMATION_READ(BSTR, ZelRespSignature)
  AUTOMATION_READ(BSTR, DataHash)
  AUTOMATION_SUCCESS(Clear)
};

class ZelReport final : public Object<VnZEL10cmn::clsZelReport, _clsZelReport> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  AUTOMATION_DOCUMENT
  AUTOMATION_HASH(GetItemHash)
  AUTOMATION_ITEMS
  AUTOMATION_REMOVE_ITEM(ClearItems)
  HRESULT STDMETHODCALLTYPE get_Container(LONG Index, _clsZelContainer** Value) override {
    return Give(Value, [&] { return It().Container(Index); });
  }
  HRESULT STDMETHODCALLTYPE get_Container2(ZELVatClasses VatClass, _clsZelContainer** Value) override {
    return Give(Value, [&] { return It().Container2(FromCom(VatClass)); });
  }
  AUTOMATION_OBJECT_READ(_clsZelContainer, ContainerThrdParty)
  AUTOMATION_OBJECT_READ(_clsZelContainer, ContainerDelivery)
  AUTOMATION_OBJECT_READ(_clsZelContainer, ContainerTraining)
  AUTOMATION_PROPERTY(BSTR, ZelProfile)
  AUTOMATION_OBJECT_WRITE(_clsZelListItemFact, ItemFactory)
  AUTOMATION_OBJECT_WRITE(_clsZelRprtPrint, PrintEngine)
  AUTOMATION_PROPERTY(DATE, ReportDate)
  AUTOMATION_PROPERTY(DATE, SpanMonthFrom)
  AUTOMATION_PROPERTY(DATE, SpanMonthUpTo)
  AUTOMATION_READ(ZelReportType, ReportType)
  AUTOMATION_PROPERTY(BSTR, TransportPIN)
  AUTOMATION_READ(ZelLifeCycle, ZelStatus)
  AUTOMATION_READ(BSTR, TpID)
  AUTOMATION_READ(CY, TpIdNbr)
  AUTOMATION_READ(CY, SequenceNbr)
  AUTOMATION_READ(CY, TransSeqNrFirst)
  AUTOMATION_READ(CY, TransSeqNrLast)
  AUTOMATION_READ(BSTR, Signature)
  HRESULT STDMETHODCALLTYPE BinaryDataGet(ZELSerialType DataType, SAFEARRAY** Data, LONG* Start,
                                          ZelReportType ReportType, LONG* DataLen,
                                          VARIANT_BOOL* Success) override {
    if (Start == nullptr) return Missing();
    return Call(
        Success,
        [&](auto& data, auto* length) {
          return It().BinaryDataGet(FromCom(DataType), data, *Start, FromCom(ReportType), length);
        },
        Data, Optional(DataLen));
  }
};

}  // namespace

AUTOMATION_MAKE(clsZelVatItem, ZelVatItem)
AUTOMATION_MAKE(VnZEL10cmn::clsZelVatList, ZelVatList)
AUTOMATION_MAKE(clsZelContainer, ZelContainer)
AUTOMATION_MAKE(VnZEL10cmn::clsZelTransAct, ZelTransAct)
AUTOMATION_MAKE(VnZEL10cmn::clsZelTransActData, ZelTransActData)
AUTOMATION_MAKE(VnZEL10cmn::clsZelReport, ZelReport)

}  // namespace automation
