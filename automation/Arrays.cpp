#include "automation/Arrays.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

#include "automation/Failure.h"

namespace automation {

Bounds::Bounds(SAFEARRAY* array) {
  if (SafeArrayGetDim(array) != 1) throw ComFailure(DISP_E_TYPEMISMATCH);
  RequireArray(SafeArrayGetLBound(array, 1, &lower));
  RequireArray(SafeArrayGetUBound(array, 1, &upper));
}

namespace {

/// Puts a value into an array, as one of its element type.
void PutElement(SAFEARRAY* array, LONG index, Variant& value, VARTYPE elementType, LCID locale) {
  Require(VariantChangeTypeEx(value.Get(), value.Get(), locale, 0, elementType));
  RequireArray(SafeArrayPutElement(array, &index, &value->bVal));
}

/// A new array of that element type out of an array of variants.
SAFEARRAY* OfVariants(SAFEARRAY* variants, VARTYPE elementType, LCID locale) {
  const Bounds bounds(variants);
  SafeArray result = MakeArray(elementType, bounds.lower, bounds.Count());
  for (LONG i = bounds.lower; i <= bounds.upper; ++i) {
    Variant element;
    RequireArray(SafeArrayGetElement(variants, &i, element.Get()));
    PutElement(result.Get(), i, element, elementType, locale);
  }
  return result.Detach();
}

/// Reads a member of an object by its name.
void ReadMember(IDispatch* object, std::wstring name, Variant& value) {
  LPOLESTR text = name.data();
  DISPID id = 0;
  DISPPARAMS none{};
  Require(object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_NEUTRAL, &id));
  Require(object->Invoke(id, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET, &none, value.Get(), nullptr,
                         nullptr));
}

/// A new array of that element type out of a list object, as some languages have them for arrays: its length and its
/// elements are members.
SAFEARRAY* OfList(IDispatch* list, VARTYPE elementType, LCID locale) {
  Variant length;
  ReadMember(list, L"length", length);
  Require(VariantChangeTypeEx(length.Get(), length.Get(), locale, 0, VT_I4));
  SafeArray result = MakeArray(elementType, 0, static_cast<ULONG>(std::max(length->lVal, LONG{0})));
  for (LONG i = 0; i < length->lVal; ++i) {
    Variant element;
    ReadMember(list, std::to_wstring(i), element);
    PutElement(result.Get(), i, element, elementType, locale);
  }
  return result.Detach();
}

}  // namespace

SafeArray MakeArray(VARTYPE elementType, LONG lower, ULONG count) {
  SAFEARRAYBOUND bound;
  bound.lLbound = lower;
  bound.cElements = count;
  SafeArray array(SafeArrayCreate(elementType, 1, &bound));
  if (array.Get() == nullptr) throw std::bad_alloc();
  return array;
}

void CopyElements(SAFEARRAY* source, SAFEARRAY* target) {
  const Bounds bounds(source);
  if (source->cbElements == sizeof(VARIANT)) {
    for (LONG i = bounds.lower; i <= bounds.upper; ++i) {
      Variant element;
      RequireArray(SafeArrayGetElement(source, &i, element.Get()));
      RequireArray(SafeArrayPutElement(target, &i, element.Get()));
    }
    return;
  }
  void* from = nullptr;
  void* to = nullptr;
  RequireArray(SafeArrayAccessData(source, &from));
  if (const HRESULT result = SafeArrayAccessData(target, &to); FAILED(result)) {
    SafeArrayUnaccessData(source);
    RequireArray(result);
  }
  if (bounds.Count() > 0) std::memcpy(to, from, std::size_t{bounds.Count()} * source->cbElements);
  SafeArrayUnaccessData(target);
  SafeArrayUnaccessData(source);
}

SafeArray ToVariants(SAFEARRAY* array, VARTYPE elementType) {
  const Bounds bounds(array);
  SafeArray result = MakeArray(VT_VARIANT, bounds.lower, bounds.Count());
  for (LONG i = bounds.lower; i <= bounds.upper; ++i) {
    Variant element;
    RequireArray(SafeArrayGetElement(array, &i, &element->bVal));
    element->vt = elementType;
    RequireArray(SafeArrayPutElement(result.Get(), &i, element.Get()));
  }
  return result;
}

SAFEARRAY** ArrayPlace(VARIANT& value) { return (value.vt & VT_BYREF) != 0 ? value.pparray : &value.parray; }

SAFEARRAY* CopyArray(VARIANT& argument, VARTYPE elementType, LCID locale) {
  if (argument.vt == VT_EMPTY || argument.vt == VT_NULL) return nullptr;
  if (argument.vt == VT_DISPATCH && argument.pdispVal == nullptr) return nullptr;
  if (argument.vt == VT_DISPATCH) return OfList(argument.pdispVal, elementType, locale);
  if ((argument.vt & VT_ARRAY) == 0) throw ComFailure(DISP_E_TYPEMISMATCH);
  SAFEARRAY* const array = *ArrayPlace(argument);
  if (array == nullptr) return nullptr;
  const VARTYPE found = argument.vt & VT_TYPEMASK;
  if (found == VT_VARIANT) return OfVariants(array, elementType, locale);
  if (found != elementType) throw ComFailure(DISP_E_TYPEMISMATCH);
  // Only the elements: a copy by the system may take over that the array is a fixed one.
  const Bounds bounds(array);
  SafeArray copy = MakeArray(elementType, bounds.lower, bounds.Count());
  CopyElements(array, copy.Get());
  return copy.Detach();
}

}  // namespace automation
