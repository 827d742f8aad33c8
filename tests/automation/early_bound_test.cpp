// A C++ caller bound early, with classes of its own in the place of the server's: items, factory, print engines, log
// entries; and what every COM caller relies on: identity, lifetimes, failures, arrays with bounds of their own.

#include "Client.h"

// After windows.h.
#include <psapi.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace client;

/// An item that costs 2.50 in the second class and writes three records.
class HostItem : public HostClass<IVnZelItem> {
 public:
  HostItem() { Create(CLSID_clsVnError, error_); }

  HRESULT STDMETHODCALLTYPE get_InstanceID(BSTR* Value) override {
    return Give(Value, L"11111111-2222-3333-4444-555555555555");
  }
  HRESULT STDMETHODCALLTYPE get_ErrorObject(_clsVnError** Value) override {
    return error_->QueryInterface(__uuidof(_clsVnError), reinterpret_cast<void**>(Value));
  }
  HRESULT STDMETHODCALLTYPE get_LogHandler(_clsVnLogFile** Value) override {
    *Value = log;
    if (log != nullptr) log->AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE putref_LogHandler(_clsVnLogFile* Value) override {
    if (Value != nullptr) Value->AddRef();
    if (log != nullptr) log->Release();
    log = Value;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE BinaryDataGet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Result) override {
    if (raises != S_OK) return raises;
    constexpr std::uint8_t kRecords[] = {0xA0, 0x01, '1',  0xA2, 0x04, 'h', 'o',
                                         's',  't',  0xB2, 0x02, 0x25, 0x0C};
    std::memcpy(static_cast<std::uint8_t*>((*Data)->pvData) + *Start, kRecords, sizeof kRecords);
    *Start += static_cast<LONG>(sizeof kRecords);
    return Give(Result, true);
  }
  HRESULT STDMETHODCALLTYPE BinaryDataSet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Result) override {
    LONG upper = 0;
    SafeArrayGetUBound(*Data, 1, &upper);
    *Start = upper + 1;
    ++readings;
    return Give(Result, true);
  }
  HRESULT STDMETHODCALLTYPE Clear() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE HasError(VARIANT_BOOL* Result) override { return error_->HasError(Result); }
  HRESULT STDMETHODCALLTYPE GetPrices(SAFEARRAY** Prices, VARIANT_BOOL* IsThrdPrt,
                                      VARIANT_BOOL* Result) override {
    SAFEARRAYBOUND bound{6, 0};
    if (*Prices != nullptr) SafeArrayDestroy(*Prices);
    *Prices = SafeArrayCreate(VT_CY, 1, &bound);
    static_cast<CY*>((*Prices)->pvData)[1] = Money(25000);
    Give(IsThrdPrt, false);
    return Give(Result, true);
  }
  HRESULT STDMETHODCALLTYPE ToString(BSTR* Result) override { return Give(Result, L"host's item"); }

  HRESULT raises = S_OK;
  int readings = 0;
  _clsVnLogFile* log = nullptr;

 private:
  Ptr<_clsVnError> error_;
};

/// The frame of the server's classes, of which nothing is needed here.
template <class Interface>
class HostFramed : public HostClass<Interface> {
 public:
  HRESULT STDMETHODCALLTYPE get_ErrorObject(_clsVnError**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LogHandler(_clsVnLogFile**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE putref_LogHandler(_clsVnLogFile*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE HasError(VARIANT_BOOL* Result) override { return Give(Result, false); }
};

class HostFactory : public HostFramed<_clsZelListItemFact> {
 public:
  HRESULT STDMETHODCALLTYPE CreateNewItem(_clsVnError**, IVnZelItem** Result) override {
    item.AddRef();
    *Result = &item;
    return S_OK;
  }

  HostItem item;
};

class HostPrint : public HostFramed<_clsZelItemPrint> {
 public:
  HRESULT STDMETHODCALLTYPE ToStringCI(IVnZelItem* Item, _clsVnError**, BSTR* Result) override {
    // Kept longer than allowed, as hosts may do by mistake.
    Item->QueryInterface(__uuidof(IVnZelItem), kept.PlaceVoid());
    return Give(Result, L"host's text of an item");
  }
  HRESULT STDMETHODCALLTYPE ToStringBI(_clsZelTransAct* BookItem, _clsVnError** ErrObj,
                                       BSTR* Result) override {
    isRight = SameObject(BookItem, expected);
    if (ErrObj != nullptr && *ErrObj != nullptr) {
      VARIANT_BOOL ignored = VARIANT_FALSE;
      (*ErrObj)->SetError(42, Text(L"host's error"), VARIANT_TRUE, nullptr, nullptr, nullptr, &ignored);
    }
    return Give(Result, L"host's receipt");
  }
  HRESULT STDMETHODCALLTYPE ToStringTRdata(_clsZelTransActData*, _clsVnError**, BSTR* Result) override {
    return Give(Result, L"host's data");
  }

  IUnknown* expected = nullptr;
  bool isRight = false;
  Ptr<IVnZelItem> kept;
};

class HostReportPrint : public HostFramed<_clsZelRprtPrint> {
 public:
  HRESULT STDMETHODCALLTYPE ToStringItmRpt(IVnZelItem*, _clsVnError**, BSTR* Result) override {
    return Give(Result, L"");
  }
  HRESULT STDMETHODCALLTYPE ToStringRprt(_clsZelReport* RprtItem, _clsVnError**, BSTR* Result) override {
    isRight = SameObject(RprtItem, expected);
    return Give(Result, L"host's report");
  }

  IUnknown* expected = nullptr;
  bool isRight = false;
};

class HostLogItem : public HostClass<IVnLogItem> {
 public:
  HRESULT STDMETHODCALLTYPE GetLogEntry(BSTR* Result) override { return Give(Result, L"host's entry\r\n"); }
};

std::wstring ErrorText(_clsZelTransAct* booking) {
  Ptr<_clsVnError> error;
  booking->get_ErrorObject(error.Place());
  return TextOf([&](BSTR* v) { return error->get_ErrorMsg(v); });
}

void Identity() {
  Ptr<_clsZelTransAct> booking;
  Create(CLSID_clsZelTransAct, booking);
  Ptr<_clsVnError> first;
  Ptr<_clsVnError> second;
  booking->get_ErrorObject(first.Place());
  booking->get_ErrorObject(second.Place());
  EXPECT(first.Get() == second.Get());

  Ptr<_clsZelItemCash> item;
  Create(CLSID_clsZelItemCash, item);
  EXPECT(Succeeds([&](auto* v) {
    return item->SetItemData(Money(10000), Text(L"kaffee"), nullptr, Money(28000), {}, {}, 0, 0, 0, {}, {},
                             {}, v);
  }));
  Ptr<IVnZelItem> asItem;
  EXPECT(SUCCEEDED(item->QueryInterface(__uuidof(IVnZelItem), asItem.PlaceVoid())));
  EXPECT(SameObject(item.Get(), asItem.Get()));
  EXPECT(Succeeds([&](auto* v) { return booking->AddItem(asItem.Get(), v); }));
  Ptr<IVnZelItem> found;
  EXPECT(SUCCEEDED(booking->get_ItemI(1, found.Place())) && SameObject(found.Get(), item.Get()));
  Text id;
  asItem->get_InstanceID(id.Place());
  EXPECT(id.Value().size() == 36);
  EXPECT(SUCCEEDED(booking->get_ItemK(id, found.Place())) && SameObject(found.Get(), item.Get()));
  EXPECT(SUCCEEDED(booking->get_ItemI(2, found.Place())) && found.Get() == nullptr);

  // An item lives on in the booking, and the error object keeps what it belongs to.
  asItem.Reset();
  item.Reset();
  found.Reset();
  EXPECT(SUCCEEDED(booking->get_ItemI(1, found.Place())));
  EXPECT(SUCCEEDED(found->QueryInterface(__uuidof(_clsZelItemCash), item.PlaceVoid())));
  EXPECT(TextOf([&](BSTR* v) { return item->get_Name(v); }) == L"kaffee");
  booking.Reset();
  EXPECT(TextOf([&](BSTR* v) { return first->get_ErrorSource(v); }) == L"VnZEL10cmn.clsZelTransAct");

  Ptr<_clsZelVatList> rates;
  Ptr<_clsZelVatList> again;
  Create(CLSID_clsZelVatList, rates);
  Create(CLSID_clsZelTransAct, booking);
  EXPECT(SUCCEEDED(booking->get_VatList(again.Place())) && again.Get() == nullptr);
  EXPECT(SUCCEEDED(booking->putref_VatList(rates.Get())));
  EXPECT(SUCCEEDED(booking->get_VatList(again.Place())) && again.Get() == rates.Get());
  EXPECT(SUCCEEDED(booking->putref_VatList(nullptr)));
  EXPECT(SUCCEEDED(booking->get_VatList(again.Place())) && again.Get() == nullptr);
}

void Enumeration() {
  Ptr<_clsZelVatList> rates;
  Create(CLSID_clsZelVatList, rates);
  LONG count = 0;
  EXPECT(SUCCEEDED(rates->get_Count(&count)) && count == 2);
  Ptr<IUnknown> unknown;
  Ptr<IEnumVARIANT> elements;
  EXPECT(SUCCEEDED(rates->get_NewEnum(unknown.Place())));
  EXPECT(SUCCEEDED(unknown->QueryInterface(IID_IEnumVARIANT, elements.PlaceVoid())));
  VARIANT found[3];
  ULONG fetched = 0;
  EXPECT(elements->Next(3, found, &fetched) == S_FALSE && fetched == 2);
  Ptr<_clsZelVatItem> second;
  EXPECT(SUCCEEDED(rates->get_VatItem(2, second.Place())));
  EXPECT(found[1].vt == VT_DISPATCH && SameObject(found[1].pdispVal, second.Get()));
  VariantClear(&found[0]);
  VariantClear(&found[1]);
  EXPECT(elements->Next(1, found, nullptr) == S_FALSE);
  EXPECT(elements->Reset() == S_OK && elements->Skip(1) == S_OK && elements->Skip(2) == S_FALSE);
  Ptr<IEnumVARIANT> copy;
  elements->Reset();
  EXPECT(SUCCEEDED(elements->Clone(copy.Place())) && copy->Next(1, found, nullptr) == S_OK);
  VariantClear(&found[0]);
}

void ExpectRaised(HRESULT result, int number, const wchar_t* source, int line) {
  Expect(result == static_cast<HRESULT>(0x800A0000u + static_cast<unsigned>(number)), "run-time number",
         line);
  Ptr<IErrorInfo> info;
  Expect(GetErrorInfo(0, info.Place()) == S_OK, "error information", line);
  if (info.Get() == nullptr) return;
  Expect(TextOf([&](BSTR* v) { return info->GetSource(v); }) == source, "source", line);
  Expect(!TextOf([&](BSTR* v) { return info->GetDescription(v); }).empty(), "description", line);
}

void RaisedFailures() {
  Ptr<_clsZelItemCash> item;
  Create(CLSID_clsZelItemCash, item);
  CY price;
  ExpectRaised(item->get_Price2(static_cast<ZELVatClasses>(6), &price), 9, L"VnZEL10cmn.clsZelItemCash",
               __LINE__);
  ExpectRaised(item->put_Price2(static_cast<ZELVatClasses>(-1), Money(1)), 9, L"VnZEL10cmn.clsZelItemCash",
               __LINE__);
  Ptr<_clsZelVatList> rates;
  Create(CLSID_clsZelVatList, rates);
  Ptr<_clsZelVatItem> rate;
  ExpectRaised(rates->get_VatItem(0, rate.Place()), 9, L"VnZEL10cmn.clsZelVatList", __LINE__);
  Ptr<_clsZelReport> report;
  Create(CLSID_clsZelReport, report);
  Ptr<_clsZelContainer> container;
  ExpectRaised(report->get_Container2(static_cast<ZELVatClasses>(9), container.Place()), 9,
               L"VnZEL10cmn.clsZelReport", __LINE__);
  Ptr<_clsHelper01> helper;
  Create(CLSID_clsHelper01, helper);
  LONG number = 0;
  ExpectRaised(helper->CurrencyToLong(Money(90000000000000), &number), 6, L"VnZEL10cmn.clsHelper01",
               __LINE__);
  SAFEARRAY* array = Bytes(0, {1, 2});
  ExpectRaised(helper->BytesToLong(&array, 5, 1, VARIANT_FALSE, &number), 9, L"VnZEL10cmn.clsHelper01",
               __LINE__);
  SafeArrayDestroy(array);
  Ptr<_clsZelTransAct> booking;
  Create(CLSID_clsZelTransAct, booking);
  array = Bytes(0, {1, 2});
  LONG start = 0;
  VARIANT_BOOL success = VARIANT_FALSE;
  VARIANT length;
  VariantInit(&length);
  length.vt = VT_BSTR;
  length.bstrVal = SysAllocString(L"no number");
  EXPECT(booking->BinaryDataSet(ZELSerialType_Response, &array, &start, length, &success) ==
         static_cast<HRESULT>(0x800A000Du));
  VariantClear(&length);
  SafeArrayDestroy(array);
  Ptr<ISupportErrorInfo> support;
  EXPECT(SUCCEEDED(item->QueryInterface(IID_ISupportErrorInfo, support.PlaceVoid())));
  EXPECT(support->InterfaceSupportsErrorInfo(__uuidof(_clsZelItemCash)) == S_OK);
  EXPECT(support->InterfaceSupportsErrorInfo(__uuidof(IVnZelItem)) == S_OK);
  EXPECT(support->InterfaceSupportsErrorInfo(__uuidof(_clsZelReport)) == S_FALSE);
  EXPECT(item->get_Quantity(nullptr) == E_POINTER);
}

void Numbers() {
  Ptr<_clsHelper01> helper;
  Create(CLSID_clsHelper01, helper);
  const auto rounded = [&](VARIANT value) {
    CY result{};
    EXPECT(SUCCEEDED(helper->RoundCmrc2(value, 2, &result)));
    VariantClear(&value);
    return result.int64;
  };
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_R8;
  value.dblVal = 2.345;
  EXPECT(rounded(value) == 23500);
  value.vt = VT_I4;
  value.lVal = -7;
  EXPECT(rounded(value) == -70000);
  value.vt = VT_CY;
  value.cyVal = Money(12345);
  EXPECT(rounded(value) == 12300);
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(L"1,005");
  EXPECT(rounded(value) == 10100);
  VariantInit(&value);
  value.vt = VT_DECIMAL;
  value.decVal.Lo64 = 10049999999999999999ULL;
  value.decVal.scale = 19;
  EXPECT(rounded(value) == 10000);
  value.decVal.Lo64 = 10050000000000000000ULL;
  EXPECT(rounded(value) == 10100);
}

void DecimalNumbers() {
  Ptr<_clsHelper01> helper;
  Create(CLSID_clsHelper01, helper);
  const auto rounded = [&](VARIANT value) {
    CY result{};
    result.int64 = -1;
    EXPECT(SUCCEEDED(helper->RoundCmrc2(value, 2, &result)));
    return result.int64;
  };
  VARIANT value;
  VariantInit(&value);
  const auto error = [&] {
    Ptr<_clsVnError> object;
    LONG number = -1;
    helper->get_ErrorObject(object.Place());
    object->get_ErrorNr(&number);
    return number;
  };
  value.vt = VT_R4;
  value.fltVal = 1.005F;
  EXPECT(rounded(value) == 10100);
  value.fltVal = 2.675F;
  EXPECT(rounded(value) == 26800);
  value.vt = VT_UI8;
  value.ullVal = 9223372036854775808ULL;
  EXPECT(rounded(value) == 0 && error() == 6);
  value.ullVal = 922337203685477ULL;
  EXPECT(rounded(value) == 9223372036854770000LL && error() == 0);
  value.vt = VT_UI4;
  value.ulVal = 4294967295UL;
  EXPECT(rounded(value) == 42949672950000LL);
  value.vt = VT_I1;
  value.cVal = -3;
  EXPECT(rounded(value) == -30000);
  value.vt = VT_BOOL;
  value.boolVal = VARIANT_TRUE;
  EXPECT(rounded(value) == -10000);
  value.vt = VT_DATE;
  value.date = 1.005;
  EXPECT(rounded(value) == 10100);
  value.vt = VT_EMPTY;
  EXPECT(rounded(value) == 0 && error() == 0);
  // What is no number is a failure of the operation, as "abc" is.
  value.vt = VT_NULL;
  EXPECT(rounded(value) == 0 && error() == 13);
  value.vt = VT_ERROR;
  value.scode = DISP_E_PARAMNOTFOUND;
  EXPECT(rounded(value) == 0 && error() == 13);
  value.vt = VT_DISPATCH;
  value.pdispVal = nullptr;
  EXPECT(rounded(value) == 0 && error() == 13);
  SAFEARRAY* const array = Bytes(0, {1});
  value.vt = VT_ARRAY | VT_UI1;
  value.parray = array;
  EXPECT(rounded(value) == 0 && error() == 13);
  SafeArrayDestroy(array);
  Text text(L"abc");
  value.vt = VT_BSTR;
  value.bstrVal = text;
  EXPECT(rounded(value) == 0 && error() == 13);
}

void ErrorInformation() {
  Ptr<_clsHelper01> helper;
  Create(CLSID_clsHelper01, helper);
  LONG number = 0;
  // Every failure has its own.
  SAFEARRAYBOUND bound{2, 0};
  SAFEARRAY* array = SafeArrayCreate(VT_I2, 1, &bound);
  EXPECT(helper->BytesToLong(&array, 0, 1, VARIANT_FALSE, &number) == Raised(13));
  EXPECT(Description() == L"Typen unverträglich");
  SafeArrayDestroy(array);
  EXPECT(helper->CurrencyToLong(Money(1), nullptr) == E_POINTER);
  EXPECT(Description() == L"Ungültiger Prozeduraufruf oder ungültiges Argument");
  EXPECT(helper->CurrencyToLong(Money(90000000000000), &number) == Raised(6));
  EXPECT(Description() == L"Überlauf");
  Ptr<IUnknown> elements;
  Ptr<_clsZelItemList> list;
  Create(CLSID_clsZelItemList, list);
  EXPECT(list->get_NewEnum(nullptr) == E_POINTER && !Description().empty());
  Ptr<_clsZelTransAct> booking;
  Create(CLSID_clsZelTransAct, booking);
  VARIANT_BOOL success = VARIANT_FALSE;
  VARIANT length;
  VariantInit(&length);
  EXPECT(booking->BinaryDataSet(ZELSerialType_Response, &array, nullptr, length, &success) == E_POINTER &&
         !Description().empty());

  // A call that succeeds leaves none of an earlier one.
  EXPECT(helper->CurrencyToLong(Money(90000000000000), &number) == Raised(6));
  EXPECT(SUCCEEDED(helper->CurrencyToLong(Money(10000), &number)));
  EXPECT(Description().empty());
  // Nor does a failure without a place for error information come with that of an earlier call.
  EXPECT(helper->CurrencyToLong(Money(90000000000000), &number) == Raised(6));
  DISPPARAMS none{};
  EXPECT(helper->Invoke(9999, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr) ==
         DISP_E_MEMBERNOTFOUND);
  EXPECT(Description() == L"Ungültiger Prozeduraufruf oder ungültiges Argument");
}

void Lines() {
  Ptr<_clsHelper01> helper;
  Create(CLSID_clsHelper01, helper);
  Ptr<_clsVnStringList> lines;
  VARIANT_BOOL success = VARIANT_FALSE;
  EXPECT(SUCCEEDED(helper->GetLinesOfString(Text(L"a\r\nb"), lines.Place(), &success)) &&
         success == VARIANT_TRUE);
  Ptr<_clsVnStringList> old;
  lines->QueryInterface(__uuidof(_clsVnStringList), old.PlaceVoid());
  // Place() would give the list in the variable up.
  _clsVnStringList* variable = lines.Get();
  variable->AddRef();
  EXPECT(SUCCEEDED(helper->GetLinesOfString(Text(L"c"), &variable, &success)));
  LONG count = 0;
  EXPECT(SUCCEEDED(variable->get_Count(&count)) && count == 1);
  EXPECT(SUCCEEDED(old->get_Count(&count)) && count == 2);
  EXPECT(TextOf([&](BSTR* v) { return old->get_Item(2, v); }) == L"b");
  EXPECT(variable != old.Get());
  variable->Release();
}

void AddCashItem(_clsZelItemList* list, const wchar_t* name) {
  Ptr<_clsZelItemCash> item;
  Create(CLSID_clsZelItemCash, item);
  item->put_Name(Text(name));
  Ptr<IVnZelItem> asItem;
  item->QueryInterface(__uuidof(IVnZelItem), asItem.PlaceVoid());
  EXPECT(Succeeds([&](auto* v) { return list->AddItem(asItem.Get(), v); }));
}

/// Visits the list's items; `change` is called after each with its name.
template <class Change>
std::wstring Visited(_clsZelItemList* list, Change&& change) {
  std::wstring visited;
  Ptr<IUnknown> unknown;
  Ptr<IEnumVARIANT> elements;
  EXPECT(SUCCEEDED(list->get_NewEnum(unknown.Place())));
  EXPECT(SUCCEEDED(unknown->QueryInterface(IID_IEnumVARIANT, elements.PlaceVoid())));
  VARIANT found;
  VariantInit(&found);
  while (elements->Next(1, &found, nullptr) == S_OK) {
    Ptr<_clsZelItemCash> item;
    found.pdispVal->QueryInterface(__uuidof(_clsZelItemCash), item.PlaceVoid());
    const std::wstring name = TextOf([&](BSTR* v) { return item->get_Name(v); });
    visited += name;
    VariantClear(&found);
    change(name);
  }
  return visited;
}

void EnumerationOfAChangingList() {
  Ptr<_clsZelItemList> list;
  Create(CLSID_clsZelItemList, list);
  for (const wchar_t* name : {L"a", L"b", L"c", L"d"}) {
    AddCashItem(list.Get(), name);
  }
  VARIANT_BOOL success = VARIANT_FALSE;
  EXPECT(Visited(list.Get(), [](const std::wstring&) {}) == L"abcd");
  // At "b" the items "a" and "c" go and another one comes: "d" is visited once, "c" isn't.
  EXPECT(Visited(list.Get(), [&](const std::wstring& name) {
           if (name != L"b") return;
           list->RemoveItem(nullptr, nullptr, 1, &success);
           list->RemoveItem(nullptr, nullptr, 2, &success);
           AddCashItem(list.Get(), L"e");
         }) == L"abd");
  EXPECT(Visited(list.Get(), [&](const std::wstring&) { list->RemoveItem(nullptr, nullptr, 1, &success); }) ==
         L"bde");
  EXPECT(Visited(list.Get(), [](const std::wstring&) {}).empty());
}

void Bounds() {
  Ptr<_clsZelBaseCoding> coder;
  Create(CLSID_clsZelBaseCoding, coder);
  SAFEARRAY* array = Bytes(-3, {0xC6, 0x01, 'x', 0, 0, 0});
  LONG start = 0;
  Text name(L"before");
  VARIANT_BOOL success = VARIANT_TRUE;
  EXPECT(SUCCEEDED(coder->GetZelOperator(&array, &start, name.Place(), &success)) &&
         success == VARIANT_FALSE);
  Ptr<_clsVnError> error;
  coder->get_ErrorObject(error.Place());
  LONG number = 0;
  error->get_ErrorNr(&number);
  EXPECT(number == 9202);
  EXPECT(start == 0);
  SafeArrayDestroy(array);

  // An array of the caller's own stays where it is.
  array = Bytes(5, std::vector<std::uint8_t>(10));
  void* const place = array->pvData;
  start = 6;
  EXPECT(Succeeds([&](auto* v) { return coder->SetZelOperator(&array, &start, Text(L"Meier"), v); }));
  EXPECT(start == 13 && array->pvData == place);
  EXPECT(std::memcmp(place, "\0\xC6\x05Meier\0\0", 10) == 0);
  SafeArrayDestroy(array);

  // A missing array is an empty one.
  array = nullptr;
  start = 0;
  EXPECT(SUCCEEDED(coder->SetZelOperator(&array, &start, Text(L"x"), &success)) && success == VARIANT_FALSE);
  EXPECT(array == nullptr);
  Ptr<_clsHelper01> helper;
  Create(CLSID_clsHelper01, helper);
  EXPECT(Succeeds(
      [&](auto* v) { return helper->FromBase64String(Text(L"QUJD"), &array, Text(L"+"), Text(L"/"), v); }));
  EXPECT(array != nullptr && array->rgsabound[0].cElements == 3 && std::memcmp(array->pvData, "ABC", 3) == 0);
  SafeArrayDestroy(array);

  SAFEARRAYBOUND bound{2, 0};
  array = SafeArrayCreate(VT_I2, 1, &bound);
  start = 0;
  EXPECT(coder->GetZelOperator(&array, &start, name.Place(), &success) == static_cast<HRESULT>(0x800A000Du));
  SafeArrayDestroy(array);
}

/// What languages with named arguments do.
void NamedArguments() {
  Ptr<_clsZelItemCash> item;
  Create(CLSID_clsZelItemCash, item);
  wchar_t member[] = L"SetItemData";
  wchar_t price[] = L"price2";
  wchar_t flag[] = L"ThirdParty";
  LPOLESTR names[] = {member, price, flag};
  DISPID ids[3] = {};
  EXPECT(SUCCEEDED(item->GetIDsOfNames(IID_NULL, names, 3, LOCALE_NEUTRAL, ids)));
  // The named ones stand in front, the others behind them, the last one first.
  VARIANT arguments[4];
  for (VARIANT& argument : arguments) {
    VariantInit(&argument);
  }
  arguments[0].vt = VT_R8;
  arguments[0].dblVal = 1.8;
  arguments[1].vt = VT_BOOL;
  arguments[1].boolVal = VARIANT_TRUE;
  arguments[2].vt = VT_BSTR;
  arguments[2].bstrVal = SysAllocString(L"fahrkarte");
  arguments[3].vt = VT_I2;
  arguments[3].iVal = 3;
  DISPPARAMS parameters{arguments, &ids[1], 4, 2};
  VARIANT result;
  VariantInit(&result);
  EXPECT(SUCCEEDED(item->Invoke(ids[0], IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, &result,
                                nullptr, nullptr)));
  EXPECT(result.vt == VT_BOOL && result.boolVal == VARIANT_TRUE);
  CY value{};
  EXPECT(SUCCEEDED(item->get_Quantity(&value)) && value.int64 == 30000);
  EXPECT(SUCCEEDED(item->get_Price(2, &value)) && value.int64 == 18000);
  EXPECT(SUCCEEDED(item->get_Price(1, &value)) && value.int64 == 0);
  VARIANT_BOOL isThirdParty = VARIANT_FALSE;
  EXPECT(SUCCEEDED(item->get_ThirdParty(&isThirdParty)) && isThirdParty == VARIANT_TRUE);
  EXPECT(TextOf([&](BSTR* v) { return item->get_Name(v); }) == L"fahrkarte");

  // The same argument twice, one too few, and one that is no number.
  DISPID twice[] = {0, 0};
  parameters.rgdispidNamedArgs = twice;
  EXPECT(item->Invoke(ids[0], IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, &result, nullptr,
                      nullptr) == DISP_E_BADPARAMCOUNT);
  parameters = {arguments + 3, nullptr, 1, 0};
  EXPECT(item->Invoke(ids[0], IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, &result, nullptr,
                      nullptr) == DISP_E_PARAMNOTOPTIONAL);
  parameters = {arguments + 2, nullptr, 2, 0};
  VARIANT swapped[] = {arguments[3], arguments[2]};
  parameters.rgvarg = swapped;
  UINT wrong = 99;
  EXPECT(item->Invoke(ids[0], IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, &result, nullptr,
                      &wrong) == DISP_E_TYPEMISMATCH);
  EXPECT(wrong == 1);
  EXPECT(item->Invoke(9999, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, &result, nullptr,
                      nullptr) == DISP_E_MEMBERNOTFOUND);
  VariantClear(&arguments[2]);
}

/// A caller's own array by reference stays where it is, also by late binding.
void LateBoundArrays() {
  Ptr<_clsZelBaseCoding> coder;
  Create(CLSID_clsZelBaseCoding, coder);
  wchar_t member[] = L"SetZelOperator";
  LPOLESTR name = member;
  DISPID id = 0;
  EXPECT(SUCCEEDED(coder->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_NEUTRAL, &id)));
  SAFEARRAY* array = Bytes(2, std::vector<std::uint8_t>(9));
  SAFEARRAY* const place = array;
  void* const elements = array->pvData;
  LONG start = 3;
  VARIANT arguments[3];
  for (VARIANT& argument : arguments) {
    VariantInit(&argument);
  }
  arguments[0].vt = VT_BSTR;
  arguments[0].bstrVal = SysAllocString(L"Meier");
  arguments[1].vt = VT_BYREF | VT_I4;
  arguments[1].plVal = &start;
  arguments[2].vt = VT_BYREF | VT_ARRAY | VT_UI1;
  arguments[2].pparray = &array;
  DISPPARAMS parameters{arguments, nullptr, 3, 0};
  VARIANT result;
  VariantInit(&result);
  EXPECT(SUCCEEDED(
      coder->Invoke(id, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr)));
  EXPECT(result.boolVal == VARIANT_TRUE && start == 10);
  EXPECT(array == place && array->pvData == elements);
  EXPECT(std::memcmp(elements, "\0\xC6\x05Meier\0", 9) == 0);
  SafeArrayDestroy(array);
  VariantClear(&arguments[0]);
}

void HostItems() {
  HostItem item;
  {
    Ptr<_clsZelTransAct> booking;
    Create(CLSID_clsZelTransAct, booking);
    Ptr<_clsZelVatList> rates;
    Create(CLSID_clsZelVatList, rates);
    booking->putref_VatList(rates.Get());
    EXPECT(Succeeds([&](auto* v) { return booking->AddItem(&item, v); }));
    Ptr<IVnZelItem> found;
    EXPECT(SUCCEEDED(booking->get_ItemI(1, found.Place())) && found.Get() == &item);
    EXPECT(SUCCEEDED(booking->get_ItemK(Text(L"11111111-2222-3333-4444-555555555555"), found.Place())) &&
           found.Get() == &item);
    booking->put_Operator(Text(L"Meier"));
    SAFEARRAY* data = Bytes(0, std::vector<std::uint8_t>(13));
    LONG start = 0;
    EXPECT(Succeeds(
        [&](auto* v) { return booking->BinaryDataGet(ZELSerialType_ItemList, &data, &start, nullptr, v); }));
    EXPECT(data != nullptr && data->rgsabound[0].cElements == 13 &&
           std::memcmp(data->pvData,
                       "\xA0\x01"
                       "1"
                       "\xA2\x04host\xB2\x02\x25\x0C",
                       13) == 0);
    SafeArrayDestroy(data);
    data = nullptr;
    EXPECT(Succeeds(
        [&](auto* v) { return booking->BinaryDataGet(ZELSerialType_Request, &data, &start, nullptr, v); }));
    SafeArrayDestroy(data);
    CY turnover{};
    CY vat{};
    CY rate{};
    EXPECT(Succeeds([&](auto* v) { return booking->GetContainerValues(2, &turnover, &vat, &rate, v); }));
    EXPECT(turnover.int64 == 25000);

    // What the host's object raises is a run-time fault of the operation.
    item.raises = static_cast<HRESULT>(0x800A0006u);
    data = nullptr;
    VARIANT_BOOL success = VARIANT_TRUE;
    EXPECT(SUCCEEDED(booking->BinaryDataGet(ZELSerialType_Request, &data, &start, nullptr, &success)) &&
           success == VARIANT_FALSE);
    if (data != nullptr) SafeArrayDestroy(data);
    EXPECT(!ErrorText(booking.Get()).empty());
    item.raises = S_OK;
    EXPECT(Succeeds([&](auto* v) { return booking->RemoveItem(&item, nullptr, -1, v); }));
    EXPECT(SUCCEEDED(booking->get_ItemI(1, found.Place())) && found.Get() == nullptr);
  }
  item.putref_LogHandler(nullptr);
  EXPECT(item.references == 1);

  HostFactory factory;
  {
    Ptr<_clsZelItemList> list;
    Create(CLSID_clsZelItemList, list);
    EXPECT(SUCCEEDED(list->putref_ItemFactory(&factory)));
    SAFEARRAY* data = Bytes(0, {0xA0, 0x01, '1', 0xA2, 0x01, 'x'});
    LONG start = 0;
    EXPECT(Succeeds([&](auto* v) { return list->BinaryDataSet(&data, &start, 0, v); }));
    SafeArrayDestroy(data);
    EXPECT(factory.item.readings == 1);
    Ptr<IVnZelItem> found;
    EXPECT(SUCCEEDED(list->get_ItemI(1, found.Place())) && found.Get() == &factory.item);
  }
  factory.item.putref_LogHandler(nullptr);
  EXPECT(factory.item.references == 1);
  EXPECT(factory.references == 1);
}

void HostTexts() {
  HostPrint print;
  HostReportPrint reportPrint;
  {
    Ptr<_clsZelTransAct> booking;
    Create(CLSID_clsZelTransAct, booking);
    booking->putref_PrintEngine(&print);
    print.expected = booking.Get();
    EXPECT(TextOf([&](BSTR* v) { return booking->ToString(v); }) == L"host's receipt");
    EXPECT(print.isRight);
    EXPECT(ErrorText(booking.Get()) == L"host's error");
    Ptr<_clsZelReport> report;
    Create(CLSID_clsZelReport, report);
    report->putref_PrintEngine(&reportPrint);
    reportPrint.expected = report.Get();
    EXPECT(TextOf([&](BSTR* v) { return report->ToString(v); }) == L"host's report");
    EXPECT(reportPrint.isRight);
    Ptr<_clsZelTransActData> data;
    Create(CLSID_clsZelTransActData, data);
    data->putref_PrintEngine(&print);
    EXPECT(TextOf([&](BSTR* v) { return data->ToString(v); }) == L"host's data");

    Ptr<_clsZelItemCash> item;
    Create(CLSID_clsZelItemCash, item);
    item->putref_PrintEngine(&print);
    EXPECT(TextOf([&](BSTR* v) { return item->ToString(v); }) == L"host's text of an item");
    EXPECT(SameObject(print.kept.Get(), item.Get()));
    print.kept.Reset();

    // An item of which nobody has a face but the print engine: its face is a shell after the call.
    Ptr<_clsZelItemList> list;
    Create(CLSID_clsZelItemList, list);
    list->putref_PrintEngine(&print);
    SAFEARRAY* bytes = Bytes(0, {0xA0, 0x01, '1', 0xA2, 0x01, 'x', 0xB1, 0x02, 0x25, 0x0C});
    LONG start = 0;
    EXPECT(Succeeds([&](auto* v) { return list->BinaryDataSet(&bytes, &start, 0, v); }));
    SafeArrayDestroy(bytes);
    TextOf([&](BSTR* v) { return list->ToString(v); });
    if (print.kept.Get() != nullptr) {
      Text text;
      EXPECT(print.kept->ToString(text.Place()) == Raised(91));
      EXPECT(Description() == L"Objektvariable oder With-Blockvariable nicht festgelegt");
    }
    print.kept.Reset();
  }
  EXPECT(print.references == 1);
  EXPECT(reportPrint.references == 1);
}

void LogFile(const wchar_t* path) {
  HostLogItem entry;
  Ptr<_clsVnLogFile> log;
  Create(CLSID_clsVnLogFile, log);
  log->put_WriteEntries(VARIANT_TRUE);
  EXPECT(Succeeds([&](auto* v) { return log->FileOpen(Text(path), VARIANT_TRUE, v); }));
  EXPECT(Succeeds([&](auto* v) { return log->FileWriteEntry(&entry, v); }));
  Ptr<_clsVnLogItem> message;
  Create(CLSID_clsVnLogItem, message);
  EXPECT(
      Succeeds([&](auto* v) { return message->SetMessage(Text(L"hallo"), nullptr, nullptr, nullptr, v); }));
  Ptr<IVnLogItem> asEntry;
  EXPECT(SUCCEEDED(message->QueryInterface(__uuidof(IVnLogItem), asEntry.PlaceVoid())));
  EXPECT(Succeeds([&](auto* v) { return log->FileWriteEntry(asEntry.Get(), v); }));
  EXPECT(Succeeds([&](auto* v) { return log->FileClose(v); }));
  std::FILE* const file = _wfopen(path, L"rb");
  EXPECT(file != nullptr);
  std::string content(4096, '\0');
  content.resize(std::fread(content.data(), 1, content.size(), file));
  std::fclose(file);
  EXPECT(content.find("host's entry") != std::string::npos);
  EXPECT(content.find("Allg. Meldung:") != std::string::npos && content.find("hallo") != std::string::npos);
  EXPECT(entry.references == 1);
}

/// What the process has taken from the system, and what of it is in memory: whatever grows shows in one of them.
SIZE_T CommittedBytes() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PagefileUsage + counters.WorkingSetSize;
}

/// Makes objects of a class without a look into the registry each time.
class Factory {
 public:
  explicit Factory(REFCLSID id) {
    test::Require(
        CoGetClassObject(id, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory_.PlaceVoid()),
        "CoGetClassObject");
  }
  template <class Interface>
  void Create(Ptr<Interface>& object) const {
    test::Require(factory_->CreateInstance(nullptr, __uuidof(Interface), object.PlaceVoid()),
                  "CreateInstance");
  }

 private:
  Ptr<IClassFactory> factory_;
};

struct Factories {
  Factory bookings{CLSID_clsZelTransAct};
  Factory rates{CLSID_clsZelVatList};
  Factory items{CLSID_clsZelItemCash};
};

void UseABooking(const Factories& factories) {
  Ptr<_clsZelTransAct> booking;
  factories.bookings.Create(booking);
  Ptr<_clsZelVatList> rates;
  factories.rates.Create(rates);
  booking->putref_VatList(rates.Get());
  booking->put_Operator(Text(L"Meier"));
  Ptr<_clsZelItemCash> item;
  factories.items.Create(item);
  VARIANT_BOOL success = VARIANT_FALSE;
  item->SetItemData(Money(10000), Text(L"kaffee"), Text(L"stk"), Money(28000), {}, {}, 0, 0, 0, {}, {}, {},
                    &success);
  Ptr<IVnZelItem> asItem;
  item->QueryInterface(__uuidof(IVnZelItem), asItem.PlaceVoid());
  booking->AddItem(asItem.Get(), &success);
  SAFEARRAY* data = nullptr;
  LONG start = 0;
  booking->BinaryDataGet(ZELSerialType_Request, &data, &start, nullptr, &success);
  EXPECT(success == VARIANT_TRUE);
  SafeArrayDestroy(data);
  data = nullptr;
  Ptr<_clsVnError> error;
  booking->get_ErrorObject(error.Place());
  booking->BinaryDataGet(ZELSerialType_BinaryData, &data, &start, nullptr, &success);
  Text text;
  booking->ToString(text.Place());
}

void Growth() {
  const Factories factories;
  // The first ones fill the caches of the system and of the compiler's run-time.
  for (int i = 0; i < 5000; ++i) {
    UseABooking(factories);
  }
  const SIZE_T before = CommittedBytes();
  constexpr int kBookings = 100000;
  for (int i = 0; i < kBookings; ++i) {
    UseABooking(factories);
  }
  const SIZE_T after = CommittedBytes();
  const auto growth = static_cast<long long>(after) - static_cast<long long>(before);
  std::printf("%d bookings created, used and released: %lld bytes more\n", kBookings, growth);
  const std::vector<char> block(std::size_t{8} * 1024 * 1024, 'x');
  EXPECT(CommittedBytes() >= after + block.size());
  EXPECT(growth < 5 * 1024 * 1024);
}

void Unloading() {
  // Nothing of all this is left.
  CoFreeUnusedLibrariesEx(0, 0);
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT(GetModuleHandleW(L"VnZEL10cmn.dll") == nullptr);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  // Seen at once, should something hang.
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  try {
    test::Require(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
    Identity();
    Enumeration();
    RaisedFailures();
    Numbers();
    DecimalNumbers();
    ErrorInformation();
    Lines();
    EnumerationOfAChangingList();
    Bounds();
    NamedArguments();
    LateBoundArrays();
    HostItems();
    HostTexts();
    LogFile(test::Widen(argv[1]).c_str());
    Growth();
    Unloading();
    CoUninitialize();
  } catch (const std::exception& failure) {
    std::printf("%s\n", failure.what());
    return 1;
  }
  return Summary();
}
