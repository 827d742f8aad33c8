#pragma once

#include "Support.h"

// After windows.h.
#include "VnZEL10cmn_automation.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "VnZEL10cmn/VnZEL10cmn.h"

/// The automation server's classes, bound early, under the names and with the types of the C++ library.
namespace com {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;

inline void Check(HRESULT result) { test::Require(result, "automation call"); }

/// A text on its way in.
class In {
 public:
  explicit In(std::string_view text) {
    const std::wstring wide = test::Widen(text);
    bstr_ = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  }
  ~In() { SysFreeString(bstr_); }
  In(const In&) = delete;
  In& operator=(const In&) = delete;
  operator BSTR() const { return bstr_; }

 private:
  BSTR bstr_;
};

/// A text by reference.
class InOut {
 public:
  explicit InOut(std::string& text) : text_(text) {
    const std::wstring wide = test::Widen(text);
    bstr_ = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  }
  ~InOut() {
    text_ = test::Narrow(bstr_);
    SysFreeString(bstr_);
  }
  InOut(const InOut&) = delete;
  InOut& operator=(const InOut&) = delete;
  operator BSTR*() { return &bstr_; }

 private:
  std::string& text_;
  BSTR bstr_;
};

inline CY ToCy(Currency value) {
  CY cy;
  cy.int64 = value.Scaled();
  return cy;
}

inline SAFEARRAY* ToArray(const ByteArray& bytes) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(bytes.size()), bytes.LBound()};
  SAFEARRAY* const array = SafeArrayCreate(VT_UI1, 1, &bound);
  void* data = nullptr;
  Check(SafeArrayAccessData(array, &data));
  std::copy(bytes.begin(), bytes.end(), static_cast<std::uint8_t*>(data));
  SafeArrayUnaccessData(array);
  return array;
}

inline ByteArray FromArray(SAFEARRAY* array) {
  LONG lower = 0;
  LONG upper = -1;
  if (array == nullptr) return {};
  Check(SafeArrayGetLBound(array, 1, &lower));
  Check(SafeArrayGetUBound(array, 1, &upper));
  ByteArray bytes = ByteArray::WithBounds(lower, upper);
  void* data = nullptr;
  Check(SafeArrayAccessData(array, &data));
  std::copy_n(static_cast<std::uint8_t*>(data), bytes.size(), bytes.begin());
  SafeArrayUnaccessData(array);
  return bytes;
}

/// An array by reference.
class Array {
 public:
  explicit Array(const ByteArray& bytes) : array_(ToArray(bytes)) {}
  explicit Array(ByteArray& bytes) : array_(ToArray(bytes)), target_(&bytes) {}
  ~Array() {
    if (target_ != nullptr) *target_ = FromArray(array_);
    SafeArrayDestroy(array_);
  }
  Array(const Array&) = delete;
  Array& operator=(const Array&) = delete;
  operator SAFEARRAY**() { return &array_; }

 private:
  SAFEARRAY* array_;
  ByteArray* target_ = nullptr;
};

// Numbers by reference: the library's are of other types of the same size.
class Number {
 public:
  explicit Number(std::int32_t& value) : target_(value), value_(value) {}
  ~Number() { target_ = value_; }
  Number(const Number&) = delete;
  Number& operator=(const Number&) = delete;
  operator LONG*() { return &value_; }

 private:
  std::int32_t& target_;
  LONG value_;
};
class Money {
 public:
  explicit Money(Currency& value) : target_(value), value_(ToCy(value)) {}
  ~Money() { target_ = Currency::FromScaled(value_.int64); }
  Money(const Money&) = delete;
  Money& operator=(const Money&) = delete;
  operator CY*() { return &value_; }

 private:
  Currency& target_;
  CY value_;
};

/// What a member returns.
template <class Call>
bool Boolean(Call&& call) {
  VARIANT_BOOL value = 7;
  Check(call(&value));
  return value == VARIANT_TRUE;
}
template <class Call>
std::string Text(Call&& call) {
  BSTR value = nullptr;
  Check(call(&value));
  const std::string text = test::Narrow(value);
  SysFreeString(value);
  return text;
}
template <class Result, class Value, class Call>
Result Scalar(Call&& call) {
  Value value{};
  Check(call(&value));
  if constexpr (std::is_same_v<Result, Currency>) {
    return Currency::FromScaled(value.int64);
  } else {
    return static_cast<Result>(value);
  }
}
inline VARIANT_BOOL Flag(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

/// Owns an object of the server.
template <class Interface>
class Holder {
 public:
  Holder() = default;
  explicit Holder(REFCLSID id) {
    Check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), Put()));
  }
  ~Holder() {
    if (object_ != nullptr) object_->Release();
  }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

  Interface* operator->() const { return object_; }
  Interface* Get() const { return object_; }
  void** Put() { return reinterpret_cast<void**>(&object_); }
  Interface** Place() { return &object_; }

 private:
  Interface* object_ = nullptr;
};

class clsVnError {
 public:
  Holder<_clsVnError> it;

  std::int32_t ErrorNr() {
    return Scalar<std::int32_t, LONG>([&](auto* v) { return it->get_ErrorNr(v); });
  }
  std::string ErrorMsg() {
    return Text([&](BSTR* v) { return it->get_ErrorMsg(v); });
  }
  std::string ErrorFunction() {
    return Text([&](BSTR* v) { return it->get_ErrorFunction(v); });
  }
  std::string ErrorSource() {
    return Text([&](BSTR* v) { return it->get_ErrorSource(v); });
  }
  bool IsUserDef() {
    return Boolean([&](VARIANT_BOOL* v) { return it->get_IsUserDef(v); });
  }
};

/// The frame of the classes.
template <class Interface>
class Framed {
 public:
  explicit Framed(REFCLSID id) : it(id) { Check(it->get_ErrorObject(error_.it.Place())); }

  bool HasError() {
    return Boolean([&](VARIANT_BOOL* v) { return it->HasError(v); });
  }
  clsVnError& ErrorObject() { return error_; }

  Holder<Interface> it;

 private:
  clsVnError error_;
};

#define COM_TEXT(name)                                       \
  std::string name() {                                       \
    return Text([&](BSTR* v) { return it->get_##name(v); }); \
  }
#define COM_TEXT_WRITE(name) \
  void name(std::string_view value) { Check(it->put_##name(In(value))); }
#define COM_FLAG(name)                                                  \
  bool name() {                                                         \
    return Boolean([&](VARIANT_BOOL* v) { return it->get_##name(v); }); \
  }                                                                     \
  void name(bool value) { Check(it->put_##name(Flag(value))); }
#define COM_DATE(name)                                                     \
  Date name() {                                                            \
    return Scalar<Date, DATE>([&](auto* v) { return it->get_##name(v); }); \
  }                                                                        \
  void name(Date value) { Check(it->put_##name(value.Value())); }
#define COM_MONEY(name)                                                      \
  Currency name() {                                                          \
    return Scalar<Currency, CY>([&](auto* v) { return it->get_##name(v); }); \
  }

class clsZelItemCash : public Framed<_clsZelItemCash> {
 public:
  clsZelItemCash() : Framed(CLSID_clsZelItemCash) {}

  bool SetItemData(Currency Quantity, std::string_view Name, std::string_view Unit, Currency Price1,
                   Currency Price2, Currency Price4, bool DiscSurch, bool Voucher, bool ThirdParty,
                   Currency Price5, Currency Price6, Currency Price3) {
    return Boolean([&](VARIANT_BOOL* v) {
      return it->SetItemData(ToCy(Quantity), In(Name), In(Unit), ToCy(Price1), ToCy(Price2), ToCy(Price4),
                             Flag(DiscSurch), Flag(Voucher), Flag(ThirdParty), ToCy(Price5), ToCy(Price6),
                             ToCy(Price3), v);
    });
  }
  void Price(std::int32_t Index, Currency Value) { Check(it->put_Price(Index, ToCy(Value))); }
  std::string ToString() {
    return Text([&](BSTR* v) { return it->ToString(v); });
  }
};

class clsZelVatList : public Framed<_clsZelVatList> {
 public:
  clsZelVatList() : Framed(CLSID_clsZelVatList) {}
};

class clsZelContainer {
 public:
  Holder<_clsZelContainer> it;

  COM_MONEY(Turnover)
  COM_MONEY(TurnoverNeg)
  COM_MONEY(TurnoverThrd)
  COM_MONEY(VAT)
  COM_MONEY(VATrate)
  bool OverflowTO() {
    return Boolean([&](VARIANT_BOOL* v) { return it->get_OverflowTO(v); });
  }
  bool VATchange() {
    return Boolean([&](VARIANT_BOOL* v) { return it->get_VATchange(v); });
  }
};

/// What bookings, reports and data records have in common.
template <class Interface>
class Document : public Framed<Interface> {
 public:
  using Framed<Interface>::Framed;
  using Framed<Interface>::it;

  bool BinaryDataSet(VnZEL10cmn::ZELSerialType DataType, const ByteArray& Data, std::int32_t Start,
                     std::int32_t DataLen = 0) {
    Array data(Data);
    LONG start = Start;
    VARIANT length;
    VariantInit(&length);
    length.vt = VT_I4;
    length.lVal = DataLen;
    return Boolean([&](VARIANT_BOOL* v) {
      return it->BinaryDataSet(static_cast<ZELSerialType>(DataType), data, &start, length, v);
    });
  }
  bool XmlHandler(std::string& XmlData, bool Export, std::int32_t Intent = 4) {
    InOut xml(XmlData);
    return Boolean([&](VARIANT_BOOL* v) { return it->XmlHandler(xml, Flag(Export), Intent, v); });
  }
  COM_FLAG(UseSHA256)
  std::string ToString() {
    return Text([&](BSTR* v) { return it->ToString(v); });
  }
};

/// What bookings and reports have in common.
template <class Interface>
class ItemDocument : public Document<Interface> {
 public:
  using Document<Interface>::Document;
  using Document<Interface>::it;

  COM_TEXT_WRITE(ZelProfile)
  std::int32_t ItemCount() {
    return Scalar<std::int32_t, LONG>([&](auto* v) { return it->get_ItemCount(v); });
  }
  bool AddItem(const std::shared_ptr<clsZelItemCash>& Item) {
    Holder<IVnZelItem> item;
    Check(Item->it->QueryInterface(__uuidof(IVnZelItem), item.Put()));
    return Boolean([&](VARIANT_BOOL* v) { return it->AddItem(item.Get(), v); });
  }
  bool RemoveItem(std::nullptr_t, std::string_view ID, std::int32_t Index) {
    return Boolean([&](VARIANT_BOOL* v) { return it->RemoveItem(nullptr, In(ID), Index, v); });
  }
  std::string GetItemHash(VnZEL10cmn::ZELHashFmt HashFmt, bool FromMem, std::int32_t GroupLen) {
    return Text([&](BSTR* v) {
      return it->GetItemHash(static_cast<ZELHashFmt>(HashFmt), Flag(FromMem), GroupLen, v);
    });
  }
};

class clsZelTransAct : public ItemDocument<_clsZelTransAct> {
 public:
  clsZelTransAct() : ItemDocument(CLSID_clsZelTransAct) {}

  void VatList(const std::shared_ptr<clsZelVatList>& Value) { Check(it->putref_VatList(Value->it.Get())); }
  COM_DATE(TransactionDate)
  COM_TEXT(Operator)
  COM_TEXT_WRITE(Operator)
  std::int32_t CurrencyCode() {
    return Scalar<std::int32_t, LONG>([&](auto* v) { return it->get_CurrencyCode(v); });
  }
  void CurrencyCode(std::int32_t value) { Check(it->put_CurrencyCode(value)); }
  COM_FLAG(IsTaxExcl)
  COM_FLAG(IsTraining)
  COM_FLAG(IsDeliveryNote)
  COM_TEXT(ZelRqstData)
  COM_TEXT(ItemHash)
  COM_TEXT(ZelRespData)
  COM_TEXT(ZelRespTpID)
  COM_MONEY(ZelRespTpIDNr)
  COM_MONEY(ZelRespSeqNr)
  COM_TEXT(ZelRespSignature)
  bool GetContainerValues(std::int32_t Index, Currency& Turnover, Currency& VatValue, Currency& VATrate) {
    Money turnover(Turnover);
    Money vat(VatValue);
    Money rate(VATrate);
    return Boolean([&](VARIANT_BOOL* v) { return it->GetContainerValues(Index, turnover, vat, rate, v); });
  }
  bool BinaryDataGet(VnZEL10cmn::ZELSerialType DataType, ByteArray& Data, std::int32_t Start,
                     std::int32_t* DataLen) {
    Array data(Data);
    LONG start = Start;
    Number length(*DataLen);
    return Boolean([&](VARIANT_BOOL* v) {
      return it->BinaryDataGet(static_cast<ZELSerialType>(DataType), data, &start, length, v);
    });
  }
  bool Clear() {
    return Boolean([&](VARIANT_BOOL* v) { return it->Clear(v); });
  }
};

class clsZelReport : public ItemDocument<_clsZelReport> {
 public:
  clsZelReport() : ItemDocument(CLSID_clsZelReport) {}

  COM_DATE(ReportDate)
  COM_DATE(SpanMonthFrom)
  COM_DATE(SpanMonthUpTo)
  VnZEL10cmn::ZelReportType ReportType() {
    return Scalar<VnZEL10cmn::ZelReportType, ZelReportType>([&](auto* v) { return it->get_ReportType(v); });
  }
  COM_TEXT(TransportPIN)
  COM_TEXT_WRITE(TransportPIN)
  VnZEL10cmn::ZelLifeCycle ZelStatus() {
    return Scalar<VnZEL10cmn::ZelLifeCycle, ZelLifeCycle>([&](auto* v) { return it->get_ZelStatus(v); });
  }
  COM_TEXT(TpID)
  COM_MONEY(TpIdNbr)
  COM_MONEY(SequenceNbr)
  COM_MONEY(TransSeqNrFirst)
  COM_MONEY(TransSeqNrLast)
  COM_TEXT(Signature)
  std::shared_ptr<clsZelContainer> Container(std::int32_t Index) {
    auto container = std::make_shared<clsZelContainer>();
    Check(it->get_Container(Index, container->it.Place()));
    return container;
  }
  bool BinaryDataGet(VnZEL10cmn::ZELSerialType DataType, ByteArray& Data, std::int32_t Start,
                     VnZEL10cmn::ZelReportType ReportType, std::int32_t* DataLen) {
    Array data(Data);
    LONG start = Start;
    Number length(*DataLen);
    return Boolean([&](VARIANT_BOOL* v) {
      return it->BinaryDataGet(static_cast<ZELSerialType>(DataType), data, &start,
                               static_cast<ZelReportType>(ReportType), length, v);
    });
  }
};

class clsZelTransActData : public Document<_clsZelTransActData> {
 public:
  clsZelTransActData() : Document(CLSID_clsZelTransActData) {}

  COM_DATE(TransactionDate)
  VnZEL10cmn::ZELDataSignTypes DataSignType() {
    return Scalar<VnZEL10cmn::ZELDataSignTypes, ZELDataSignTypes>(
        [&](auto* v) { return it->get_DataSignType(v); });
  }
  void DataSignType(VnZEL10cmn::ZELDataSignTypes value) {
    Check(it->put_DataSignType(static_cast<ZELDataSignTypes>(value)));
  }
  COM_TEXT(ZelRqstData)
  COM_TEXT(DataToSign)
  COM_TEXT(ZelRespData)
  COM_TEXT(ZelRespTpID)
  COM_MONEY(ZelRespTpIDNr)
  COM_MONEY(ZelRespSeqNr)
  COM_TEXT(ZelRespSignature)
  COM_TEXT(DataHash)
  std::string GetDataHash(VnZEL10cmn::ZELHashFmt HashFmt, bool FromMem, std::int32_t GroupLen) {
    return Text([&](BSTR* v) {
      return it->GetDataHash(static_cast<ZELHashFmt>(HashFmt), Flag(FromMem), GroupLen, v);
    });
  }
  bool BinaryDataGet(VnZEL10cmn::ZELSerialType DataType, ByteArray& Data, std::int32_t Start,
                     std::int32_t* DataLen) {
    Array data(Data);
    LONG start = Start;
    Number length(*DataLen);
    return Boolean([&](VARIANT_BOOL* v) {
      return it->BinaryDataGet(static_cast<ZELSerialType>(DataType), data, &start, length, v);
    });
  }
};

class clsZelBaseCoding : public Framed<_clsZelBaseCoding> {
 public:
  clsZelBaseCoding() : Framed(CLSID_clsZelBaseCoding) {}

  bool SetZelAmounts(ByteArray& Buffer, std::int32_t& Start, VnZEL10cmn::ZelTags Tag, Currency Amount,
                     bool LongVal) {
    Array buffer(Buffer);
    Number start(Start);
    return Boolean([&](VARIANT_BOOL* v) {
      return it->SetZelAmounts(buffer, start, static_cast<unsigned char>(Tag), ToCy(Amount), Flag(LongVal),
                               v);
    });
  }
  bool GetZelAmounts(const ByteArray& Buffer, std::int32_t& Start, VnZEL10cmn::ZelTags Tag, Currency& Result,
                     bool LongVal) {
    Array buffer(Buffer);
    Number start(Start);
    Money result(Result);
    return Boolean([&](VARIANT_BOOL* v) {
      return it->GetZelAmounts(buffer, start, static_cast<unsigned char>(Tag), result, Flag(LongVal), v);
    });
  }
  bool SetZelOperator(ByteArray& Buffer, std::int32_t& Start, std::string_view Operator) {
    Array buffer(Buffer);
    Number start(Start);
    return Boolean([&](VARIANT_BOOL* v) { return it->SetZelOperator(buffer, start, In(Operator), v); });
  }
  bool GetZelOperator(const ByteArray& Buffer, std::int32_t& Start, std::string& Result) {
    Array buffer(Buffer);
    Number start(Start);
    InOut result(Result);
    return Boolean([&](VARIANT_BOOL* v) { return it->GetZelOperator(buffer, start, result, v); });
  }
};

class clsHelper01 : public Framed<_clsHelper01> {
 public:
  clsHelper01() : Framed(CLSID_clsHelper01) {}

  bool ToBase64String(const ByteArray& Data, std::string& Result, std::int32_t Start, std::int32_t Count,
                      std::int32_t LineLen) {
    Array data(Data);
    InOut result(Result);
    return Boolean([&](VARIANT_BOOL* v) {
      return it->ToBase64String(data, result, Start, Count, LineLen, In("+"), In("/"), v);
    });
  }
  bool FromBase64String(std::string_view Data, ByteArray& Result) {
    Array result(Result);
    return Boolean(
        [&](VARIANT_BOOL* v) { return it->FromBase64String(In(Data), result, In("+"), In("/"), v); });
  }
  Currency RoundCmrc2(Currency Value, std::int32_t Digits) {
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_CY;
    value.cyVal = ToCy(Value);
    return Scalar<Currency, CY>([&](auto* v) { return it->RoundCmrc2(value, Digits, v); });
  }
  std::string ZEL_CharReplace(std::string_view Data, std::int32_t Length) {
    return Text([&](BSTR* v) { return it->ZEL_CharReplace(In(Data), Length, v); });
  }
  bool GetLinesOfString(std::string_view Data, std::vector<std::string>& LineList) {
    Holder<_clsVnStringList> lines;
    const bool succeeded =
        Boolean([&](VARIANT_BOOL* v) { return it->GetLinesOfString(In(Data), lines.Place(), v); });
    const auto count = Scalar<std::int32_t, LONG>([&](auto* v) { return lines->get_Count(v); });
    LineList.clear();
    for (LONG i = 1; i <= count; ++i) {
      LineList.push_back(Text([&](BSTR* v) { return lines->get_Item(i, v); }));
    }
    return succeeded;
  }
};

#undef COM_TEXT
#undef COM_TEXT_WRITE
#undef COM_FLAG
#undef COM_DATE
#undef COM_MONEY

}  // namespace com
