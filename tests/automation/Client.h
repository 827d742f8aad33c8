#pragma once

#include "Support.h"

// After windows.h.
#include "VnZEL10cmn_automation.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

/// What C++ callers in the tests have in common: checks that are counted, owners of interfaces and texts, and the part
/// of a class of their own that is the same for all.
namespace client {

inline std::atomic<int> checks = 0;
inline std::atomic<int> failures = 0;

inline void Expect(bool holds, const char* what, int line) {
  ++checks;
  if (holds) return;
  ++failures;
  std::printf("line %d: %s\n", line, what);
}
#define EXPECT(condition) Expect((condition), #condition, __LINE__)

/// Owns an interface of an object.
template <class Interface>
class Ptr {
 public:
  Ptr() = default;
  ~Ptr() { Reset(); }
  Ptr(const Ptr&) = delete;
  Ptr& operator=(const Ptr&) = delete;

  Interface* operator->() const { return object_; }
  Interface* Get() const { return object_; }
  Interface** Place() {
    Reset();
    return &object_;
  }
  void** PlaceVoid() { return reinterpret_cast<void**>(Place()); }
  void Reset() {
    if (object_ != nullptr) object_->Release();
    object_ = nullptr;
  }

 private:
  Interface* object_ = nullptr;
};

template <class Interface>
void Create(REFCLSID id, Ptr<Interface>& object) {
  test::Require(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), object.PlaceVoid()),
                "CoCreateInstance");
}

inline bool SameObject(IUnknown* a, IUnknown* b) {
  Ptr<IUnknown> first;
  Ptr<IUnknown> second;
  return a != nullptr && b != nullptr && SUCCEEDED(a->QueryInterface(IID_IUnknown, first.PlaceVoid())) &&
         SUCCEEDED(b->QueryInterface(IID_IUnknown, second.PlaceVoid())) && first.Get() == second.Get();
}

/// A text that the caller frees.
class Text {
 public:
  explicit Text(const wchar_t* text = nullptr) : text_(SysAllocString(text)) {}
  ~Text() { SysFreeString(text_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  operator BSTR() const { return text_; }
  BSTR* Place() {
    SysFreeString(text_);
    text_ = nullptr;
    return &text_;
  }
  [[nodiscard]] std::wstring Value() const { return {text_, SysStringLen(text_)}; }

 private:
  BSTR text_;
};

inline CY Money(std::int64_t scaled) {
  CY value;
  value.int64 = scaled;
  return value;
}

inline SAFEARRAY* Bytes(LONG lower, const std::vector<std::uint8_t>& bytes) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(bytes.size()), lower};
  SAFEARRAY* const array = SafeArrayCreate(VT_UI1, 1, &bound);
  std::memcpy(array->pvData, bytes.data(), bytes.size());
  return array;
}

/// What classes of a host's own have to do for COM; late binding isn't needed here.
template <class Interface>
class HostClass : public Interface {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    const bool is = id == IID_IUnknown || id == IID_IDispatch || id == __uuidof(Interface);
    *result = is ? static_cast<Interface*>(this) : nullptr;
    if (!is) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

  std::atomic<ULONG> references = 1;  ///< lives on the stack: its owner holds one
};

inline HRESULT Give(BSTR* place, const wchar_t* text) {
  *place = SysAllocString(text);
  return S_OK;
}
inline HRESULT Give(VARIANT_BOOL* place, bool value) {
  *place = value ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

template <class Call>
bool Succeeds(Call&& call) {
  VARIANT_BOOL value = VARIANT_FALSE;
  return SUCCEEDED(call(&value)) && value == VARIANT_TRUE;
}

template <class Call>
std::wstring TextOf(Call&& call) {
  Text text;
  return SUCCEEDED(call(text.Place())) ? text.Value() : L"(failed)";
}

/// A run-time number as it is raised.
constexpr HRESULT Raised(int number) {
  return static_cast<HRESULT>(0x800A0000u + static_cast<unsigned>(number));
}

/// What the last failure left behind; empty where there is nothing. It is taken away.
inline std::wstring Description() {
  Ptr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Place()) != S_OK) return {};
  return TextOf([&](BSTR* v) { return info->GetDescription(v); });
}

/// A variant that is cleared at the end; `Ref` is one that refers to it.
class Var {
 public:
  Var() { VariantInit(&value_); }
  Var(LONG number) : Var() {
    value_.vt = VT_I4;
    value_.lVal = number;
  }
  Var(const wchar_t* text) : Var() {
    value_.vt = VT_BSTR;
    value_.bstrVal = SysAllocString(text);
  }
  Var(IDispatch* object) : Var() {
    value_.vt = VT_DISPATCH;
    value_.pdispVal = object;
    if (object != nullptr) object->AddRef();
  }
  ~Var() { VariantClear(&value_); }
  Var(const Var&) = delete;
  Var& operator=(const Var&) = delete;

  VARIANT* operator->() { return &value_; }
  VARIANT* Get() { return &value_; }
  VARIANT Value() { return value_; }
  VARIANT Ref() {
    VARIANT reference;
    VariantInit(&reference);
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &value_;
    return reference;
  }

 private:
  VARIANT value_;
};

/// Calls by name, as scripts do. `arguments` stand in the order in which they are written.
class Late {
 public:
  explicit Late(IDispatch* object) : object_(object) {}

  HRESULT Call(const wchar_t* name, std::vector<VARIANT> arguments, VARIANT* result = nullptr,
               WORD kind = DISPATCH_METHOD) {
    std::reverse(arguments.begin(), arguments.end());
    DISPID put = DISPID_PROPERTYPUT;
    const bool isPut = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS parameters{arguments.data(), isPut ? &put : nullptr, static_cast<UINT>(arguments.size()),
                          isPut ? 1u : 0u};
    EXCEPINFO exception{};
    const HRESULT outcome = object_->Invoke(Id(name), IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                            result, &exception, nullptr);
    number = exception.scode;
    description.assign(exception.bstrDescription, SysStringLen(exception.bstrDescription));
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    return outcome;
  }

  DISPID Id(std::wstring name) {
    LPOLESTR text = name.data();
    DISPID id = DISPID_UNKNOWN;
    object_->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
    return id;
  }

  HRESULT number = S_OK;     ///< of the exception that the last call raised
  std::wstring description;  ///< likewise

 private:
  IDispatch* object_;
};

/// Prints how many checks there were; the program's result.
inline int Summary() {
  std::printf("%d checks, %d failures\n", checks.load(), failures.load());
  return failures == 0 ? 0 : 1;
}

}  // namespace client
