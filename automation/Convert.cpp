#include "automation/Convert.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "VnZEL10cmn/platform/internal/Utf16_win.h"

namespace automation {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::Currency;
using VnZEL10cmn::CurrencyArray;

namespace {

template <class Array>
struct ElementOf;
template <>
struct ElementOf<ByteArray> {
  static constexpr VARTYPE kType = VT_UI1;
  using Type = unsigned char;
  static std::uint8_t From(Type value) { return value; }
  static Type To(std::uint8_t value) { return value; }
};
template <>
struct ElementOf<CurrencyArray> {
  static constexpr VARTYPE kType = VT_CY;
  using Type = CY;
  static Currency From(Type value) { return Currency::FromScaled(value.int64); }
  static Type To(Currency value) {
    CY result;
    result.int64 = value.Scaled();
    return result;
  }
};

/// The elements of an array, locked in their place.
template <class Element>
class Locked {
 public:
  explicit Locked(SAFEARRAY* array) : array_(array) {
    RequireArray(SafeArrayAccessData(array, reinterpret_cast<void**>(&data_)));
  }
  ~Locked() { SafeArrayUnaccessData(array_); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

  Element* Data() const noexcept { return data_; }

 private:
  SAFEARRAY* array_;
  Element* data_ = nullptr;
};

template <class Array>
Array FromSafeArray(SAFEARRAY* array) {
  using Element = ElementOf<Array>;
  if (array == nullptr) return {};
  VARTYPE type = VT_EMPTY;
  // Some clients keep no type in their arrays.
  const bool hasType = SUCCEEDED(SafeArrayGetVartype(array, &type)) && type != VT_EMPTY;
  if (SafeArrayGetDim(array) != 1 || SafeArrayGetElemsize(array) != sizeof(typename Element::Type) ||
      (hasType && type != Element::kType)) {
    throw ComFailure(RunTimeNumber::TypeMismatch);
  }
  LONG lower = 0;
  LONG upper = -1;
  RequireArray(SafeArrayGetLBound(array, 1, &lower));
  RequireArray(SafeArrayGetUBound(array, 1, &upper));
  Array result = Array::WithBounds(lower, upper);
  const Locked<typename Element::Type> locked(array);
  std::transform(locked.Data(), locked.Data() + result.size(), result.begin(), Element::From);
  return result;
}

template <class Array>
void Fill(const Array& value, SAFEARRAY* array) {
  using Element = ElementOf<Array>;
  const Locked<typename Element::Type> locked(array);
  std::transform(value.begin(), value.end(), locked.Data(), Element::To);
}

template <class Array>
SAFEARRAY* ToSafeArray(const Array& value) {
  SAFEARRAYBOUND bound;
  bound.lLbound = value.LBound();
  bound.cElements = static_cast<ULONG>(value.size());
  SafeArray result(SafeArrayCreate(ElementOf<Array>::kType, 1, &bound));
  if (result.Get() == nullptr) throw std::bad_alloc();
  Fill(value, result.Get());
  return result.Detach();
}

}  // namespace

std::string FromCom(BSTR value) { return VnZEL10cmn::platform::FromWide({value, SysStringLen(value)}); }

ByteArray Bytes(SAFEARRAY** array) { return FromSafeArray<ByteArray>(array == nullptr ? nullptr : *array); }

CurrencyArray Currencies(SAFEARRAY** array) {
  return FromSafeArray<CurrencyArray>(array == nullptr ? nullptr : *array);
}

void ToCom(std::string_view value, BSTR* result) {
  const std::wstring wide = VnZEL10cmn::platform::ToWide(value);
  *result = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (*result == nullptr) throw std::bad_alloc();
}

void ToCom(const ByteArray& value, SAFEARRAY** result) { *result = ToSafeArray(value); }

void ToCom(const CurrencyArray& value, SAFEARRAY** result) { *result = ToSafeArray(value); }

bool HasBounds(SAFEARRAY* array, LONG lower, LONG upper) {
  LONG first = 0;
  LONG last = 0;
  return array != nullptr && SafeArrayGetDim(array) == 1 && SUCCEEDED(SafeArrayGetLBound(array, 1, &first)) &&
         SUCCEEDED(SafeArrayGetUBound(array, 1, &last)) && first == lower && last == upper;
}

void RequireReplaceable(const SAFEARRAY* array) {
  constexpr USHORT kFixed = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
  if (array != nullptr && ((array->fFeatures & kFixed) != 0 || array->cLocks != 0)) {
    throw ComFailure(RunTimeNumber::FixedArray);
  }
}

void Reference<BSTR>::Prepare() {
  if (value_ != old_) ToCom(value_, changed_.Put());
}

void Reference<BSTR>::Store() {
  if (changed_.Get() == nullptr) return;
  SysFreeString(*place_);
  *place_ = changed_.Detach();
}

template <class Array>
ArrayReference<Array>::ArrayReference(SAFEARRAY** place)
    : place_(place), value_(FromSafeArray<Array>(*place)), old_(value_) {}

// The array in the caller's variable may be another one by now: a host's object was called perhaps.

template <class Array>
void ArrayReference<Array>::Prepare() {
  if (value_ == old_ || HasBounds(*place_, value_.LBound(), value_.UBound())) return;
  RequireReplaceable(*place_);
  *changed_.Put() = ToSafeArray(value_);
}

template <class Array>
void ArrayReference<Array>::Store() {
  if (value_ == old_) return;
  if (changed_.Get() == nullptr) {
    Fill(value_, *place_);
    return;
  }
  if (*place_ != nullptr) RequireArray(SafeArrayDestroy(*place_));
  *place_ = changed_.Detach();
}

template class ArrayReference<ByteArray>;
template class ArrayReference<CurrencyArray>;

}  // namespace automation
