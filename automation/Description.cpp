#include "automation/Description.h"

#include <array>
#include <cstring>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "automation/Convert.h"
#include "automation/Failure.h"
#include "automation/Module.h"

namespace automation {

namespace {

struct LessId {
  bool operator()(const IID& a, const IID& b) const noexcept { return std::memcmp(&a, &b, sizeof a) < 0; }
};

bool IsObject(VARTYPE type) { return type == VT_DISPATCH || type == VT_UNKNOWN; }

/// The variant that is meant where one stands for another.
VARIANT& Meant(VARIANT& value) { return value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value; }

bool IsLeftOut(VARIANT& argument) {
  const VARIANT& meant = Meant(argument);
  return meant.vt == VT_ERROR && meant.scode == DISP_E_PARAMNOTFOUND;
}

/// A new array of bytes out of an array of variants that hold bytes.
SAFEARRAY* BytesOfVariants(SAFEARRAY* variants, LCID locale) {
  if (SafeArrayGetDim(variants) != 1) throw ComFailure(DISP_E_TYPEMISMATCH);
  LONG lower = 0;
  LONG upper = -1;
  Require(SafeArrayGetLBound(variants, 1, &lower));
  Require(SafeArrayGetUBound(variants, 1, &upper));
  VnZEL10cmn::ByteArray bytes = VnZEL10cmn::ByteArray::WithBounds(lower, upper);
  for (LONG i = lower; i <= upper; ++i) {
    Variant element;
    Require(SafeArrayGetElement(variants, &i, element.Get()));
    Require(VariantChangeTypeEx(element.Get(), element.Get(), locale, 0, VT_UI1));
    bytes[i] = element->bVal;
  }
  SAFEARRAY* result = nullptr;
  ToCom(bytes, &result);
  return result;
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

/// A new array of bytes out of a list object, as some languages have them for arrays: its length and its elements are
/// members.
SAFEARRAY* BytesOfList(IDispatch* list, LCID locale) {
  Variant length;
  ReadMember(list, L"length", length);
  Require(VariantChangeTypeEx(length.Get(), length.Get(), locale, 0, VT_I4));
  VnZEL10cmn::ByteArray bytes = VnZEL10cmn::ByteArray::WithBounds(0, length->lVal - 1);
  for (LONG i = 0; i < length->lVal; ++i) {
    Variant element;
    ReadMember(list, std::to_wstring(i), element);
    Require(VariantChangeTypeEx(element.Get(), element.Get(), locale, 0, VT_UI1));
    bytes[i] = element->bVal;
  }
  SAFEARRAY* result = nullptr;
  ToCom(bytes, &result);
  return result;
}

/// A copy of the array in `argument`, as one of that element type.
SAFEARRAY* CopyArray(const VARIANT& argument, VARTYPE elementType, LCID locale) {
  if (argument.vt == VT_EMPTY || argument.vt == VT_NULL) return nullptr;
  if (argument.vt == VT_DISPATCH && argument.pdispVal == nullptr) return nullptr;
  if (argument.vt == VT_DISPATCH && elementType == VT_UI1) return BytesOfList(argument.pdispVal, locale);
  const bool byReference = (argument.vt & VT_BYREF) != 0;
  if ((argument.vt & VT_ARRAY) == 0) throw ComFailure(DISP_E_TYPEMISMATCH);
  SAFEARRAY* const array = byReference ? *argument.pparray : argument.parray;
  if (array == nullptr) return nullptr;
  const VARTYPE found = argument.vt & VT_TYPEMASK;
  if (found == VT_VARIANT && elementType == VT_UI1) return BytesOfVariants(array, locale);
  if (found != elementType) throw ComFailure(DISP_E_TYPEMISMATCH);
  SAFEARRAY* copy = nullptr;
  Require(SafeArrayCopy(array, &copy));
  return copy;
}

/// `argument`, whatever it is, as a value of the type; `value` is empty before.
void Coerce(VARIANT& argument, VARTYPE type, REFIID interfaceId, LCID locale, VARIANT& value) {
  VARIANT& meant = Meant(argument);
  if ((type & VT_ARRAY) != 0) {
    value.parray = CopyArray(meant, type & VT_TYPEMASK, locale);
    value.vt = type;
  } else if (type == VT_VARIANT) {
    Require(VariantCopyInd(&value, &meant));
  } else if (IsObject(type)) {
    Variant object;
    Require(VariantCopyInd(object.Get(), &meant));
    if (object->vt == VT_EMPTY || object->vt == VT_NULL) {
      value.punkVal = nullptr;
    } else if (!IsObject(object->vt)) {
      throw ComFailure(DISP_E_TYPEMISMATCH);
    } else if (object->punkVal == nullptr) {
      value.punkVal = nullptr;
    } else if (FAILED(
                   object->punkVal->QueryInterface(interfaceId, reinterpret_cast<void**>(&value.punkVal)))) {
      throw ComFailure(DISP_E_TYPEMISMATCH);
    }
    value.vt = type;
  } else {
    Require(VariantChangeTypeEx(&value, &meant, locale, 0, type));
  }
}

/// An object reaches scripts by the interface that shows all of it.
void ShowWhole(VARIANT& value) {
  if (!IsObject(value.vt) || value.punkVal == nullptr) return;
  IDispatch* whole = nullptr;
  if (SUCCEEDED(value.punkVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&whole)))) {
    value.punkVal->Release();
    value.vt = VT_DISPATCH;
    value.pdispVal = whole;
  }
}

/// Copies the elements where the bounds are the same: the caller's array, which may be of a fixed size, stays then.
bool CopyInPlace(SAFEARRAY* source, SAFEARRAY* target) {
  if (source == nullptr || target == nullptr) return source == target;
  LONG bounds[4] = {};
  const bool known = SafeArrayGetDim(target) == 1 && SUCCEEDED(SafeArrayGetLBound(source, 1, &bounds[0])) &&
                     SUCCEEDED(SafeArrayGetLBound(target, 1, &bounds[1])) &&
                     SUCCEEDED(SafeArrayGetUBound(source, 1, &bounds[2])) &&
                     SUCCEEDED(SafeArrayGetUBound(target, 1, &bounds[3]));
  return known && bounds[0] == bounds[1] && bounds[2] == bounds[3] &&
         SUCCEEDED(SafeArrayCopyData(source, target));
}

/// Writes a value back to where the argument came from; by-value arguments have no such place.
void WriteBack(Variant& value, VARIANT& argument, LCID locale) {
  if (argument.vt == (VT_BYREF | VT_VARIANT)) {
    ShowWhole(*value.Get());
    VariantClear(argument.pvarVal);
    *argument.pvarVal = value.Detach();
    return;
  }
  if ((argument.vt & VT_BYREF) == 0) return;
  const VARTYPE type = argument.vt & static_cast<VARTYPE>(~VT_BYREF);
  if (value->vt != type) Require(VariantChangeTypeEx(value.Get(), value.Get(), locale, 0, type));
  if ((type & VT_ARRAY) != 0) {
    if (!CopyInPlace(value->parray, *argument.pparray)) {
      if (*argument.pparray != nullptr) Require(SafeArrayDestroy(*argument.pparray));
      *argument.pparray = value.Detach().parray;
    }
    return;
  }
  switch (type) {
    case VT_BSTR:
      SysFreeString(*argument.pbstrVal);
      *argument.pbstrVal = value.Detach().bstrVal;
      break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      if (*argument.ppunkVal != nullptr) (*argument.ppunkVal)->Release();
      *argument.ppunkVal = value.Detach().punkVal;
      break;
    case VT_I1:
    case VT_UI1: *argument.pbVal = value->bVal; break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL: *argument.piVal = value->iVal; break;
    case VT_I8:
    case VT_UI8:
    case VT_CY:
    case VT_R8:
    case VT_DATE: *argument.pcyVal = value->cyVal; break;
    case VT_DECIMAL:
      *argument.pdecVal = value->decVal;
      argument.pdecVal->wReserved = 0;
      break;
    default: *argument.plVal = value->lVal; break;  // 32 bits, however they are read
  }
}

}  // namespace

const Description& Description::Of(REFIID id) {
  static std::mutex mutex;
  static std::map<IID, std::unique_ptr<const Description>, LessId> descriptions;
  const std::lock_guard lock(mutex);
  auto& description = descriptions[id];
  if (!description) description.reset(new Description(id));
  return *description;
}

Description::Description(REFIID id) {
  Require(TypeLibrary()->GetTypeInfoOfGuid(id, dispatchInfo_.Put()));
  // Behind the description of a dual interface as one for late binding stands that of its virtual functions.
  HREFTYPE reference = 0;
  ComPtr<ITypeInfo> info;
  Require(dispatchInfo_->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
  Require(dispatchInfo_->GetRefTypeInfo(reference, info.Put()));
  TYPEATTR* attributes = nullptr;
  Require(info->GetTypeAttr(&attributes));
  const UINT count = attributes->cFuncs;
  info->ReleaseTypeAttr(attributes);
  for (UINT i = 0; i < count; ++i) {
    FUNCDESC* function = nullptr;
    Require(info->GetFuncDesc(i, &function));
    Member member;
    member.id = function->memid;
    member.kind = function->invkind;
    member.vtableOffset = static_cast<ULONG_PTR>(function->oVft);
    for (SHORT j = 0; j < function->cParams; ++j) {
      member.parameters.push_back(ReadParameter(info.Get(), function->lprgelemdescParam[j]));
    }
    info->ReleaseFuncDesc(function);
    members_.push_back(std::move(member));
  }
}

Description::Parameter Description::ReadParameter(ITypeInfo* info, const ELEMDESC& element) {
  Parameter parameter;
  const USHORT flags = element.paramdesc.wParamFlags;
  parameter.isResult = (flags & PARAMFLAG_FRETVAL) != 0;
  parameter.isOptional = (flags & PARAMFLAG_FOPT) != 0;
  parameter.hasDefault = (flags & PARAMFLAG_FHASDEFAULT) != 0;
  if (parameter.hasDefault) {
    VariantInit(&parameter.defaultValue);
    Require(VariantCopy(&parameter.defaultValue, &element.paramdesc.pparamdescex->varDefaultValue));
  }
  // What is passed by reference is a pointer to its type; an object is a pointer already.
  const TYPEDESC* type = &element.tdesc;
  const auto isInterface = [info](const TYPEDESC& description, IID* id) {
    if (description.vt != VT_USERDEFINED) return false;
    ComPtr<ITypeInfo> referred;
    Require(info->GetRefTypeInfo(description.hreftype, referred.Put()));
    TYPEATTR* attributes = nullptr;
    Require(referred->GetTypeAttr(&attributes));
    const bool is = attributes->typekind == TKIND_INTERFACE || attributes->typekind == TKIND_DISPATCH;
    *id = attributes->guid;
    referred->ReleaseTypeAttr(attributes);
    return is;
  };
  const auto isObject = [&](const TYPEDESC& description) {
    return description.vt == VT_DISPATCH || description.vt == VT_UNKNOWN ||
           (description.vt == VT_PTR && isInterface(*description.lptdesc, &parameter.interfaceId));
  };
  if (type->vt == VT_PTR && !isObject(*type)) {
    parameter.byReference = true;
    type = type->lptdesc;
  }
  if (type->vt == VT_UNKNOWN) {
    parameter.type = VT_UNKNOWN;
    parameter.interfaceId = IID_IUnknown;
  } else if (isObject(*type)) {
    parameter.type = VT_DISPATCH;
  } else if (type->vt == VT_SAFEARRAY) {
    parameter.type = VT_ARRAY | type->lptdesc->vt;
  } else if (type->vt == VT_USERDEFINED) {
    parameter.type = VT_I4;  // an enumeration
  } else {
    parameter.type = type->vt;
  }
  return parameter;
}

HRESULT Description::GetTypeInfo(UINT index, ITypeInfo** info) const {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  *info = ComPtr<ITypeInfo>(dispatchInfo_).Detach();
  return S_OK;
}

HRESULT Description::GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const {
  return DispGetIDsOfNames(dispatchInfo_.Get(), names, count, ids);
}

const Description::Member* Description::Find(DISPID id, WORD kinds, const DISPPARAMS& arguments) const {
  // Few languages tell reading a property from calling a method.
  constexpr WORD kReading = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  if ((kinds & kReading) != 0) kinds |= kReading;
  const Member* found = nullptr;
  for (const Member& member : members_) {
    if (member.id != id) continue;
    if ((member.kind & kinds) != 0) return &member;
    // Some languages set objects the way they set values.
    if (member.kind == INVOKE_PROPERTYPUTREF && (kinds & DISPATCH_PROPERTYPUT) != 0 && arguments.cArgs > 0 &&
        IsObject(Meant(arguments.rgvarg[0]).vt)) {
      found = &member;
    }
  }
  return found;
}

/// One call: its arguments as the member takes them.
class Description::Call {
 public:
  Call(const Member& member, LCID locale) : member_(member), locale_(locale) {}

  void Place(DISPPARAMS& arguments, UINT* wrongArgument) {
    const std::size_t count = member_.parameters.size();
    given_.assign(count, nullptr);
    const UINT named = arguments.cNamedArgs;
    const bool isPut = member_.kind == INVOKE_PROPERTYPUT || member_.kind == INVOKE_PROPERTYPUTREF;
    for (UINT i = 0; i < arguments.cArgs; ++i) {
      // The last argument stands first, in front of it those with names.
      std::size_t position = arguments.cArgs - 1 - i;
      if (i < named) {
        const DISPID name = arguments.rgdispidNamedArgs[i];
        if (name == DISPID_PROPERTYPUT && isPut) {
          position = count - 1;
        } else if (name >= 0) {
          position = static_cast<std::size_t>(name);
        } else {
          throw ComFailure(DISP_E_UNKNOWNNAME);
        }
      }
      if (position >= count || member_.parameters[position].isResult || given_[position] != nullptr) {
        throw ComFailure(DISP_E_BADPARAMCOUNT);
      }
      given_[position] = &arguments.rgvarg[i];
    }
    for (std::size_t i = 0; i < count; ++i) {
      try {
        values_.emplace_back();
        Fill(i);
      } catch (const ComFailure&) {
        if (wrongArgument != nullptr && given_[i] != nullptr) {
          *wrongArgument = static_cast<UINT>(given_[i] - arguments.rgvarg);
        }
        throw;
      }
    }
  }

  HRESULT Run(void* instance) {
    const std::size_t count = member_.parameters.size();
    std::vector<VARTYPE> types(count);
    std::vector<VARIANTARG*> pointers(count);
    std::vector<VARIANTARG> passed(count);
    for (std::size_t i = 0; i < count; ++i) {
      const Parameter& parameter = member_.parameters[i];
      pointers[i] = &passed[i];
      if (!parameter.byReference) {
        types[i] = parameter.type;
        passed[i] = *values_[i].Get();
        continue;
      }
      types[i] = VT_BYREF | parameter.type;
      passed[i].vt = types[i];
      const bool isMissing = parameter.isOptional && !parameter.hasDefault && given_[i] == nullptr;
      void* const place =
          parameter.type == VT_VARIANT ? static_cast<void*>(values_[i].Get()) : &values_[i]->byref;
      passed[i].byref = isMissing ? nullptr : place;
    }
    Variant result;
    const HRESULT outcome =
        DispCallFunc(instance, member_.vtableOffset, CC_STDCALL, VT_ERROR, static_cast<UINT>(count),
                     types.data(), pointers.data(), result.Get());
    return FAILED(outcome) ? outcome : result->scode;
  }

  void HandBack(VARIANT* result) {
    for (std::size_t i = 0; i < member_.parameters.size(); ++i) {
      const Parameter& parameter = member_.parameters[i];
      if (parameter.isResult) {
        if (result == nullptr) continue;
        ShowWhole(*values_[i].Get());
        *result = values_[i].Detach();
      } else if (parameter.byReference && given_[i] != nullptr) {
        WriteBack(values_[i], *given_[i], locale_);
      }
    }
  }

 private:
  void Fill(std::size_t i) {
    const Parameter& parameter = member_.parameters[i];
    VARIANT& value = *values_[i].Get();
    if (given_[i] != nullptr && IsLeftOut(*given_[i]) && (parameter.isOptional || parameter.hasDefault)) {
      given_[i] = nullptr;
    }
    if (given_[i] != nullptr) {
      Coerce(*given_[i], parameter.type, parameter.interfaceId, locale_, value);
    } else if (parameter.hasDefault) {
      VARIANT copy = parameter.defaultValue;
      Coerce(copy, parameter.type, parameter.interfaceId, locale_, value);
    } else if (parameter.isResult || parameter.isOptional) {
      // Nothing: a zero, an empty text, no object.
      if (parameter.type != VT_VARIANT) value.vt = parameter.type;
    } else {
      throw ComFailure(DISP_E_PARAMNOTOPTIONAL);
    }
  }

  const Member& member_;
  LCID locale_;
  std::vector<VARIANT*> given_;
  std::deque<Variant> values_;
};

HRESULT Description::Invoke(void* instance, DISPID id, LCID locale, WORD kinds, DISPPARAMS* arguments,
                            VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) const {
  if (arguments == nullptr) return E_INVALIDARG;
  try {
    const Member* const member = Find(id, kinds, *arguments);
    if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
    Call call(*member, locale);
    call.Place(*arguments, wrongArgument);
    const HRESULT outcome = call.Run(instance);
    if (FAILED(outcome)) {
      if (exception == nullptr) return outcome;
      *exception = {};
      exception->scode = outcome;
      ComPtr<IErrorInfo> info;
      if (GetErrorInfo(0, info.Put()) == S_OK) {
        info->GetSource(&exception->bstrSource);
        info->GetDescription(&exception->bstrDescription);
      }
      return DISP_E_EXCEPTION;
    }
    call.HandBack(result);
    return S_OK;
  } catch (const ComFailure& failure) {
    return failure.Result();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (const std::exception&) {
    return E_UNEXPECTED;
  }
}

}  // namespace automation
