#include "automation/Scripted.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "automation/Arrays.h"
#include "automation/Convert.h"
#include "automation/Failure.h"
#include "automation/Identity.h"
#include "automation/Module.h"

namespace automation {

namespace {

/// An object as scripts see it: by the interface that shows all of it.
void SetObject(Variant& value, IUnknown* object) {
  value->pdispVal = Query<IDispatch>(object, IID_IDispatch).Detach();
  value->vt = VT_DISPATCH;
}

/// The members of a script's object, by their names.
class Members {
 public:
  explicit Members(IDispatch* object) : object_(object) {}

  [[nodiscard]] IDispatch* Object() const noexcept { return object_.Get(); }

  [[nodiscard]] bool Has(const wchar_t* name) const {
    DISPID id = DISPID_UNKNOWN;
    return SUCCEEDED(Find(name, id));
  }

  /// Calls a method; the arguments are handed over by reference. Throws `ComFailure` with what the script raised.
  Variant Call(const wchar_t* name, std::initializer_list<Variant*> arguments) const {
    std::vector<VARIANT> passed;
    for (Variant* const argument : arguments) {
      VARIANT reference;
      VariantInit(&reference);
      reference.vt = VT_BYREF | VT_VARIANT;
      reference.pvarVal = argument->Get();
      passed.insert(passed.begin(), reference);  // the last one stands first
    }
    return Invoke(name, DISPATCH_METHOD, passed, nullptr);
  }

  Variant Read(const wchar_t* name) const {
    std::vector<VARIANT> none;
    return Invoke(name, DISPATCH_PROPERTYGET, none, nullptr);
  }

  void SetReference(const wchar_t* name, Variant& value) const {
    std::vector<VARIANT> passed{*value.Get()};
    DISPID named = DISPID_PROPERTYPUT;
    try {
      Invoke(name, DISPATCH_PROPERTYPUTREF, passed, &named);
    } catch (const ComFailure&) {
      // Not every language tells setting an object from setting a value.
      Invoke(name, DISPATCH_PROPERTYPUT, passed, &named);
    }
  }

 private:
  HRESULT Find(std::wstring name, DISPID& id) const {
    LPOLESTR text = name.data();
    return object_->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
  }

  Variant Invoke(const wchar_t* name, WORD kind, std::vector<VARIANT>& arguments, DISPID* named) const {
    DISPID id = DISPID_UNKNOWN;
    Require(Find(name, id));
    DISPPARAMS parameters{arguments.data(), named, static_cast<UINT>(arguments.size()),
                          named != nullptr ? 1u : 0u};
    Variant result;
    EXCEPINFO exception{};
    HRESULT outcome = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, result.Get(),
                                      &exception, nullptr);
    if (outcome == DISP_E_EXCEPTION) {
      const Bstr source(exception.bstrSource);
      const Bstr description(exception.bstrDescription);
      const Bstr help(exception.bstrHelpFile);
      if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
      if (FAILED(exception.scode)) outcome = exception.scode;
    }
    Require(outcome);
    return result;
  }

  ComPtr<IDispatch> object_;
};

constexpr std::string_view kSource = "Script";

/// What all such objects have in common.
template <class Interface>
class Scripted : public Interface {
 public:
  explicit Scripted(IDispatch* object) : members_(object) { LockModule(); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    if (result == nullptr) return E_POINTER;
    if (id != __uuidof(Interface)) return members_.Object()->QueryInterface(id, result);
    *result = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    return members_.Object()->GetTypeInfoCount(count);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
    return members_.Object()->GetTypeInfo(index, locale, info);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override {
    return members_.Object()->GetIDsOfNames(reserved, names, count, locale, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD kinds,
                                   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrongArgument) override {
    return members_.Object()->Invoke(member, reserved, locale, kinds, arguments, result, exception,
                                     wrongArgument);
  }

 protected:
  virtual ~Scripted() { UnlockModule(); }

  template <class Body>
  static HRESULT Guard(Body&& body) {
    return Guarded(kSource, std::forward<Body>(body));
  }

  /// What a method or property gives, as a text.
  static void GiveText(Variant value, BSTR* result) {
    Require(VariantChangeType(value.Get(), value.Get(), VARIANT_NOVALUEPROP, VT_BSTR));
    *result = value.Detach().bstrVal;
  }
  static void GiveBoolean(Variant value, VARIANT_BOOL* result) {
    Require(VariantChangeType(value.Get(), value.Get(), 0, VT_BOOL));
    *result = value->boolVal;
  }
  template <class Object>
  static void GiveObject(Variant value, Object** result) {
    if (value->vt == VT_EMPTY || value->vt == VT_NULL) return;
    if (value->vt != VT_DISPATCH && value->vt != VT_UNKNOWN) throw ComFailure(RunTimeNumber::TypeMismatch);
    if (value->punkVal == nullptr) return;
    auto object = Query<Object>(value->punkVal, __uuidof(Object));
    if (!object) {
      const auto scripted = AsHostObject(value->punkVal, __uuidof(Object));
      object = Query<Object>(scripted.Get(), __uuidof(Object));
    }
    if (!object) throw ComFailure(RunTimeNumber::TypeMismatch);
    *result = object.Detach();
  }

  const Members members_;

 private:
  LONG references_ = 1;
};

/// The frame of the server's classes; a script's object may have it.
template <class Interface>
class Framed : public Scripted<Interface> {
 public:
  using Scripted<Interface>::Scripted;

  HRESULT STDMETHODCALLTYPE get_ErrorObject(_clsVnError** Value) override {
    *Value = nullptr;
    return this->Guard([&] {
      if (this->members_.Has(L"ErrorObject")) this->GiveObject(this->members_.Read(L"ErrorObject"), Value);
    });
  }
  HRESULT STDMETHODCALLTYPE get_LogHandler(_clsVnLogFile** Value) override {
    *Value = nullptr;
    return this->Guard([&] {
      if (this->members_.Has(L"LogHandler")) this->GiveObject(this->members_.Read(L"LogHandler"), Value);
    });
  }
  HRESULT STDMETHODCALLTYPE putref_LogHandler(_clsVnLogFile* Value) override {
    return this->Guard([&] {
      if (!this->members_.Has(L"LogHandler")) return;
      Variant value;
      SetObject(value, Value);
      this->members_.SetReference(L"LogHandler", value);
    });
  }
  HRESULT STDMETHODCALLTYPE HasError(VARIANT_BOOL* Result) override {
    *Result = VARIANT_FALSE;
    return this->Guard([&] {
      if (this->members_.Has(L"HasError")) this->GiveBoolean(this->members_.Call(L"HasError", {}), Result);
    });
  }
};

class LogItem final : public Scripted<::IVnLogItem> {
 public:
  using Scripted::Scripted;

  HRESULT STDMETHODCALLTYPE GetLogEntry(BSTR* Result) override {
    *Result = nullptr;
    return Guard([&] { GiveText(members_.Call(L"GetLogEntry", {}), Result); });
  }
};

class Factory final : public Framed<_clsZelListItemFact> {
 public:
  using Framed::Framed;

  HRESULT STDMETHODCALLTYPE CreateNewItem(_clsVnError** ErrObj, ::IVnZelItem** Result) override {
    *Result = nullptr;
    return Guard([&] {
      Variant errors;
      SetObject(errors, *ErrObj);
      GiveObject(members_.Call(L"CreateNewItem", {&errors}), Result);
    });
  }
};

/// What the print engines have in common.
template <class Interface>
class Printing : public Framed<Interface> {
 public:
  using Framed<Interface>::Framed;

 protected:
  HRESULT Print(const wchar_t* name, IUnknown* object, _clsVnError** errObj, BSTR* result) {
    *result = nullptr;
    return this->Guard([&] {
      Variant shown;
      Variant errors;
      SetObject(shown, object);
      SetObject(errors, *errObj);
      this->GiveText(this->members_.Call(name, {&shown, &errors}), result);
    });
  }
};

class ItemPrint final : public Printing<_clsZelItemPrint> {
 public:
  using Printing::Printing;

  HRESULT STDMETHODCALLTYPE ToStringCI(::IVnZelItem* Item, _clsVnError** ErrObj, BSTR* Result) override {
    return Print(L"ToStringCI", Item, ErrObj, Result);
  }
  HRESULT STDMETHODCALLTYPE ToStringBI(_clsZelTransAct* BookItem, _clsVnError** ErrObj,
                                       BSTR* Result) override {
    return Print(L"ToStringBI", BookItem, ErrObj, Result);
  }
  HRESULT STDMETHODCALLTYPE ToStringTRdata(_clsZelTransActData* BookItem, _clsVnError** ErrObj,
                                           BSTR* Result) override {
    return Print(L"ToStringTRdata", BookItem, ErrObj, Result);
  }
};

class ReportPrint final : public Printing<_clsZelRprtPrint> {
 public:
  using Printing::Printing;

  HRESULT STDMETHODCALLTYPE ToStringItmRpt(::IVnZelItem* Item, _clsVnError** ErrObj, BSTR* Result) override {
    return Print(L"ToStringItmRpt", Item, ErrObj, Result);
  }
  HRESULT STDMETHODCALLTYPE ToStringRprt(_clsZelReport* RprtItem, _clsVnError** ErrObj,
                                         BSTR* Result) override {
    return Print(L"ToStringRprt", RprtItem, ErrObj, Result);
  }
};

class Item final : public Framed<::IVnZelItem> {
 public:
  using Framed::Framed;

  HRESULT STDMETHODCALLTYPE get_InstanceID(BSTR* Value) override {
    *Value = nullptr;
    return Guard([&] { GiveText(members_.Read(L"InstanceID"), Value); });
  }

  HRESULT STDMETHODCALLTYPE BinaryDataGet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Result) override {
    *Result = VARIANT_FALSE;
    return Guard([&] {
      Variant data = Variants(*Data, VT_UI1);
      Variant start = Number(*Start);
      Variant result = members_.Call(L"BinaryDataGet", {&data, &start});
      if (!IsList(result)) {
        Replace(Data, data, VT_UI1);
        *Start = NumberIn(std::move(start));
        GiveBoolean(std::move(result), Result);
        return;
      }
      SafeArray records(CopyArray(*result.Get(), VT_UI1, LOCALE_USER_DEFAULT));
      Insert(Bytes(records.Put()), Data, Start);
      *Result = VARIANT_TRUE;
    });
  }

  HRESULT STDMETHODCALLTYPE BinaryDataSet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Result) override {
    *Result = VARIANT_FALSE;
    return Guard([&] {
      Variant data = Variants(*Data, VT_UI1);
      Variant start = Number(*Start);
      Variant result = members_.Call(L"BinaryDataSet", {&data, &start});
      if (result->vt == VT_BOOL || result->vt == VT_EMPTY) {
        *Start = NumberIn(std::move(start));
        GiveBoolean(std::move(result), Result);
        return;
      }
      *Start = NumberIn(std::move(result));
      *Result = VARIANT_TRUE;
    });
  }

  HRESULT STDMETHODCALLTYPE Clear() override {
    return Guard([&] {
      if (members_.Has(L"Clear")) members_.Call(L"Clear", {});
    });
  }

  HRESULT STDMETHODCALLTYPE GetPrices(SAFEARRAY** Prices, VARIANT_BOOL* IsThrdPrt,
                                      VARIANT_BOOL* Result) override {
    *Result = VARIANT_FALSE;
    return Guard([&] {
      Variant prices = Variants(*Prices, VT_CY);
      Variant isThirdParty;
      isThirdParty->vt = VT_BOOL;
      isThirdParty->boolVal = *IsThrdPrt;
      Variant result = members_.Call(L"GetPrices", {&prices, &isThirdParty});
      if (!IsList(result)) {
        Replace(Prices, prices, VT_CY);
        GiveBoolean(std::move(isThirdParty), IsThrdPrt);
        GiveBoolean(std::move(result), Result);
        return;
      }
      Replace(Prices, result, VT_CY);
      *IsThrdPrt = VARIANT_FALSE;
      if (members_.Has(L"IsThrdPrt")) GiveBoolean(members_.Read(L"IsThrdPrt"), IsThrdPrt);
      *Result = VARIANT_TRUE;
    });
  }

  HRESULT STDMETHODCALLTYPE ToString(BSTR* Result) override {
    *Result = nullptr;
    return Guard([&] { GiveText(members_.Call(L"ToString", {}), Result); });
  }

 private:
  static Variant Variants(SAFEARRAY* array, VARTYPE elementType) {
    Variant value;
    SafeArray variants = array != nullptr ? ToVariants(array, elementType) : MakeArray(VT_VARIANT, 0, 0);
    value->vt = VT_ARRAY | VT_VARIANT;
    value->parray = variants.Detach();
    return value;
  }
  static Variant Number(LONG number) {
    Variant value;
    value->vt = VT_I4;
    value->lVal = number;
    return value;
  }
  static LONG NumberIn(Variant value) {
    Require(VariantChangeType(value.Get(), value.Get(), 0, VT_I4));
    return value->lVal;
  }
  static bool IsList(Variant& value) {
    return (value->vt & VT_ARRAY) != 0 || (value->vt == VT_DISPATCH && value->pdispVal != nullptr);
  }
  static void Replace(SAFEARRAY** place, Variant& list, VARTYPE elementType) {
    SafeArray fresh(CopyArray(*list.Get(), elementType, LOCALE_USER_DEFAULT));
    const SafeArray old(std::exchange(*place, fresh.Detach()));
  }
  /// Writes records at `start`, where the array may have to grow.
  static void Insert(const VnZEL10cmn::ByteArray& records, SAFEARRAY** data, LONG* start) {
    VnZEL10cmn::ByteArray bytes = Bytes(data);
    if (*start < bytes.LBound()) throw ComFailure(RunTimeNumber::OutOfRange);
    const auto count = static_cast<LONG>(records.size());
    if (count == 0) return;
    if (*start > MAXLONG - count) throw ComFailure(RunTimeNumber::Overflow);
    if (*start + count - 1 > bytes.UBound()) bytes.RedimPreserve(*start + count - 1);
    std::copy(records.begin(), records.end(), bytes.begin() + (*start - bytes.LBound()));
    SAFEARRAY* fresh = nullptr;
    ToCom(bytes, &fresh);
    const SafeArray old(std::exchange(*data, fresh));
    *start += count;
  }
};

template <class Class>
ComPtr<IUnknown> Stand(IDispatch* object) {
  return ComPtr<IUnknown>::Adopt(new Class(object));
}

/// Which members an object must have for an interface; the others may be missing.
struct Kind {
  const IID& id;
  const wchar_t* member;
  ComPtr<IUnknown> (*make)(IDispatch*);
};

const Kind kKinds[] = {
    {IID_IVnZelItem, L"BinaryDataGet", Stand<Item>},
    {IID_IVnLogItem, L"GetLogEntry", Stand<LogItem>},
    {IID__clsZelListItemFact, L"CreateNewItem", Stand<Factory>},
    {IID__clsZelItemPrint, L"ToStringCI", Stand<ItemPrint>},
    {IID__clsZelItemPrint, L"ToStringBI", Stand<ItemPrint>},
    {IID__clsZelItemPrint, L"ToStringTRdata", Stand<ItemPrint>},
    {IID__clsZelRprtPrint, L"ToStringRprt", Stand<ReportPrint>},
};

}  // namespace

ComPtr<IUnknown> AsHostObject(IUnknown* object, REFIID id) {
  // The server's own objects have the interfaces that they have.
  if (HolderIn(object) != nullptr) return {};
  const auto dispatch = Query<IDispatch>(object, IID_IDispatch);
  if (!dispatch) return {};
  const Members members(dispatch.Get());
  for (const Kind& kind : kKinds) {
    if (kind.id == id && members.Has(kind.member)) return kind.make(dispatch.Get());
  }
  return {};
}

}  // namespace automation
