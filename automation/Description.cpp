#include "automation/Description.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "automation/Arrays.h"
#include "automation/Convert.h"
#include "automation/Failure.h"
#include "automation/Module.h"
#include "automation/Scripted.h"

namespace automation {

namespace {

struct LessId {
  bool operator()(const IID& a, const IID& b) const noexcept { return std::memcmp(&a, &b, sizeof a) < 0; }
};

bool IsObject(VARTYPE type) { return type == VT_DISPATCH || type == VT_UNKNOWN; }

bool IsObjectOrNone(VARTYPE type) {
  return IsObject(type & static_cast<VARTYPE>(~VT_BYREF)) || type == VT_EMPTY || type == VT_NULL;
}

/// The variant that is meant where one stands for another.
VARIANT& Meant(VARIANT& value) {
  VARIANT* meant = &value;
  while (meant->vt == (VT_BYREF | VT_VARIANT)) {
    meant = meant->pvarVal;
  }
  return *meant;
}

bool IsLeftOut(VARIANT& argument) {
  const VARIANT& meant = Meant(argument);
  return meant.vt == VT_ERROR && meant.scode == DISP_E_PARAMNOTFOUND;
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
    } else if (auto wanted = Query<IUnknown>(object->punkVal, interfaceId)) {
      value.punkVal = wanted.Detach();
    } else if (auto scripted = AsHostObject(object->punkVal, interfaceId)) {
      value.punkVal = scripted.Detach();
    } else {
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

bool SameElements(SAFEARRAY* a, SAFEARRAY* b) {
  if (a == nullptr || b == nullptr) return a == b;
  const Bounds bounds(a);
  return HasBounds(b, bounds.lower, bounds.upper) &&
         (bounds.Count() == 0 ||
          std::memcmp(a->pvData, b->pvData, std::size_t{bounds.Count()} * a->cbElements) == 0);
}

/// Whether the values are the same, `b` having been made as a copy of `a`.
bool SameValue(VARIANT& a, VARIANT& b) {
  if (a.vt != b.vt) return false;
  if ((a.vt & VT_ARRAY) != 0) return SameElements(a.parray, b.parray);
  if (a.vt == VT_BSTR) {
    const UINT size = SysStringByteLen(a.bstrVal);
    return size == SysStringByteLen(b.bstrVal) && (size == 0 || std::memcmp(a.bstrVal, b.bstrVal, size) == 0);
  }
  return std::memcmp(&a.llVal, &b.llVal, sizeof a.llVal) == 0;
}

/// What a variable gets back: made ready first, which can fail, and stored when all are ready.
class Change {
 public:
  Change(VARIANT& variable, Variant value, LCID locale) : variable_(variable), value_(std::move(value)) {
    if ((value_->vt & VT_ARRAY) != 0) {
      PrepareArray();
    } else if ((variable.vt & VT_BYREF) != 0) {
      const VARTYPE type = variable.vt & static_cast<VARTYPE>(~VT_BYREF);
      if (value_->vt != type) Require(VariantChangeTypeEx(value_.Get(), value_.Get(), locale, 0, type));
    } else {
      ShowWhole(*value_.Get());
    }
  }

  void Store() {
    if ((value_->vt & VT_ARRAY) != 0) {
      StoreArray();
    } else if ((variable_.vt & VT_BYREF) != 0) {
      StoreTyped();
    } else {
      StoreVariant();
    }
  }

 private:
  [[nodiscard]] bool HoldsArray() const { return (variable_.vt & VT_ARRAY) != 0; }

  void PrepareArray() {
    if (value_->parray == nullptr || !HoldsArray()) return;
    const VARTYPE elementType = value_->vt & VT_TYPEMASK;
    if ((variable_.vt & VT_TYPEMASK) == VT_VARIANT) {
      SafeArray variants = ToVariants(value_->parray, elementType);
      VariantClear(value_.Get());
      value_->vt = VT_ARRAY | VT_VARIANT;
      value_->parray = variants.Detach();
    }
    const Bounds bounds(value_->parray);
    SAFEARRAY* const old = *ArrayPlace(variable_);
    staysInPlace_ = HasBounds(old, bounds.lower, bounds.upper);
    if (!staysInPlace_) RequireReplaceable(old);
  }

  void StoreArray() {
    if (value_->parray == nullptr) return;  // the operation gave none back
    if (!HoldsArray()) {
      // A variable of another type can't hold one.
      if ((variable_.vt & VT_BYREF) == 0) StoreVariant();
      return;
    }
    SAFEARRAY** const place = ArrayPlace(variable_);
    if (staysInPlace_) {
      CopyElements(value_->parray, *place);
      return;
    }
    if (*place != nullptr) RequireArray(SafeArrayDestroy(*place));
    *place = value_.Detach().parray;
  }

  void StoreVariant() {
    VariantClear(&variable_);
    variable_ = value_.Detach();
  }

  void StoreTyped() {
    switch (value_->vt) {
      case VT_BSTR:
        SysFreeString(*variable_.pbstrVal);
        *variable_.pbstrVal = value_.Detach().bstrVal;
        break;
      case VT_DISPATCH:
      case VT_UNKNOWN:
        if (*variable_.ppunkVal != nullptr) (*variable_.ppunkVal)->Release();
        *variable_.ppunkVal = value_.Detach().punkVal;
        break;
      case VT_I1:
      case VT_UI1: *variable_.pbVal = value_->bVal; break;
      case VT_I2:
      case VT_UI2:
      case VT_BOOL: *variable_.piVal = value_->iVal; break;
      case VT_I8:
      case VT_UI8:
      case VT_CY:
      case VT_R8:
      case VT_DATE: *variable_.pcyVal = value_->cyVal; break;
      case VT_DECIMAL:
        *variable_.pdecVal = value_->decVal;
        variable_.pdecVal->wReserved = 0;
        break;
      default: *variable_.plVal = value_->lVal; break;  // 32 bits, however they are read
    }
  }

  VARIANT& variable_;
  Variant value_;
  bool staysInPlace_ = false;
};

/// What a failure tells late-bound callers: an exception, whose source and description are the error information.
HRESULT Raise(HRESULT outcome, EXCEPINFO* exception) {
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
  Bstr name;
  Require(dispatchInfo_->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr));
  // A class's own interface has its name with "_" in front.
  className_ = FromCom(name.Get());
  if (className_.starts_with('_')) className_.erase(0, 1);
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

HRESULT Description::GetTypeInfoCount(UINT* count) const {
  if (count == nullptr) return Refuse(E_POINTER, className_);
  *count = 1;
  return S_OK;
}

HRESULT Description::GetTypeInfo(UINT index, ITypeInfo** info) const {
  if (info == nullptr) return Refuse(E_POINTER, className_);
  *info = nullptr;
  if (index != 0) return Refuse(DISP_E_BADINDEX, className_);
  *info = ComPtr<ITypeInfo>(dispatchInfo_).Detach();
  return S_OK;
}

HRESULT Description::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids) const {
  if (reserved != IID_NULL) return Refuse(DISP_E_UNKNOWNINTERFACE, className_);
  if (names == nullptr || ids == nullptr) return Refuse(E_POINTER, className_);
  const HRESULT result = DispGetIDsOfNames(dispatchInfo_.Get(), names, count, ids);
  return FAILED(result) ? Refuse(result, className_) : result;
}

const Description::Member* Description::Find(DISPID id, WORD kinds, const DISPPARAMS& arguments) const {
  // Few languages tell reading a property from calling a method.
  constexpr WORD kReading = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  if ((kinds & kReading) != 0) kinds |= kReading;
  const Member* found = nullptr;
  for (const Member& member : members_) {
    if (member.id != id) continue;
    if ((member.kind & kinds) != 0) return &member;
    // Some languages set objects the way they set values, and none as a value of its own.
    if (member.kind == INVOKE_PROPERTYPUTREF && (kinds & DISPATCH_PROPERTYPUT) != 0 && arguments.cArgs > 0 &&
        IsObjectOrNone(Meant(arguments.rgvarg[0]).vt)) {
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
        } else if (name >= 0 && static_cast<std::size_t>(name) < count &&
                   !member_.parameters[name].isResult) {
          position = static_cast<std::size_t>(name);
        } else {
          if (wrongArgument != nullptr) *wrongArgument = i;
          throw ComFailure(DISP_E_PARAMNOTFOUND);
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
        before_.emplace_back();
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
      if (isMissing) {
        passed[i].byref = nullptr;
      } else if (isHandedOn_[i]) {
        passed[i].pparray = Meant(*given_[i]).pparray;
      } else {
        passed[i].byref =
            parameter.type == VT_VARIANT ? static_cast<void*>(values_[i].Get()) : &values_[i]->byref;
      }
    }
    Variant result;
    const HRESULT outcome =
        DispCallFunc(instance, member_.vtableOffset, CC_STDCALL, VT_ERROR, static_cast<UINT>(count),
                     types.data(), pointers.data(), result.Get());
    return FAILED(outcome) ? outcome : result->scode;
  }

  void HandBack(VARIANT* result) {
    const bool hasFailed = HasFailed();
    std::deque<Change> changes;
    for (std::size_t i = 0; i < member_.parameters.size(); ++i) {
      if (!IsVariable(i) || isHandedOn_[i]) continue;
      // After a failure a variable that the operation left alone isn't even converted.
      if (hasFailed && SameValue(*values_[i].Get(), *before_[i].Get())) continue;
      changes.emplace_back(Meant(*given_[i]), std::move(values_[i]), locale_);
    }
    for (Change& change : changes) {
      change.Store();
    }
    if (result == nullptr) return;
    for (std::size_t i = 0; i < member_.parameters.size(); ++i) {
      if (!member_.parameters[i].isResult) continue;
      ShowWhole(*values_[i].Get());
      *result = values_[i].Detach();
    }
  }

 private:
  /// Whether the argument is a variable that gets back what the operation leaves in the parameter.
  [[nodiscard]] bool IsVariable(std::size_t i) const {
    const Parameter& parameter = member_.parameters[i];
    return parameter.byReference && !parameter.isResult && given_[i] != nullptr &&
           (given_[i]->vt & VT_BYREF) != 0;
  }

  /// Whether the operation says that it failed.
  [[nodiscard]] bool HasFailed() {
    for (std::size_t i = 0; i < member_.parameters.size(); ++i) {
      if (member_.parameters[i].isResult) {
        return member_.parameters[i].type == VT_BOOL && values_[i]->boolVal == VARIANT_FALSE;
      }
    }
    return false;
  }

  void Fill(std::size_t i) {
    const Parameter& parameter = member_.parameters[i];
    VARIANT& value = *values_[i].Get();
    if (given_[i] != nullptr && IsLeftOut(*given_[i]) && (parameter.isOptional || parameter.hasDefault)) {
      given_[i] = nullptr;
    }
    // The member gets a caller's own array, as by an early-bound call.
    isHandedOn_.push_back((parameter.type & VT_ARRAY) != 0 && IsVariable(i) &&
                          Meant(*given_[i]).vt == (VT_BYREF | parameter.type));
    if (isHandedOn_[i]) return;
    if (given_[i] != nullptr) {
      Coerce(*given_[i], parameter.type, parameter.interfaceId, locale_, value);
      if (IsVariable(i)) Require(VariantCopy(before_[i].Get(), &value));
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
  std::vector<bool> isHandedOn_;  ///< the caller's own array takes the place of the value
  std::deque<Variant> values_;
  std::deque<Variant> before_;  ///< what the variables held, by reference
};

HRESULT Description::Invoke(void* instance, DISPID id, REFIID reserved, LCID locale, WORD kinds,
                            DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                            UINT* wrongArgument) const {
  if (reserved != IID_NULL) return Refuse(DISP_E_UNKNOWNINTERFACE, className_);
  if (arguments == nullptr) return Refuse(E_INVALIDARG, className_);
  try {
    const Member* const member = Find(id, kinds, *arguments);
    if (member == nullptr) return Refuse(DISP_E_MEMBERNOTFOUND, className_);
    Call call(*member, locale);
    call.Place(*arguments, wrongArgument);
    const HRESULT outcome = call.Run(instance);
    if (FAILED(outcome)) return Raise(outcome, exception);
    call.HandBack(result);
    return S_OK;
  } catch (const ComFailure& failure) {
    const HRESULT outcome = ReportException(className_);
    return failure.IsRaised() ? Raise(outcome, exception) : outcome;
  } catch (...) {
    return Raise(ReportException(className_), exception);
  }
}

}  // namespace automation
