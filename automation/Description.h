#pragma once

#include <string>
#include <vector>

#include "automation/Com.h"

namespace automation {

/// An interface as the type library describes it, and the one place where late-bound calls become calls of its
/// members: arguments by name, by position and left out; variables of scripts, which are variants, converted to
/// the parameter's type on the way in and written back on the way out.
class Description {
 public:
  /// Of an interface of the type library. Throws `ComFailure`.
  static const Description& Of(REFIID id);

  // The members of IDispatch. Failures leave error information behind.

  HRESULT GetTypeInfoCount(UINT* count) const;
  HRESULT GetTypeInfo(UINT index, ITypeInfo** info) const;
  HRESULT GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids) const;

  /// Calls a member of `instance`, which is a pointer to the interface.
  HRESULT Invoke(void* instance, DISPID member, REFIID reserved, LCID locale, WORD kinds,
                 DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) const;

 private:
  /// How a value is passed. `type` is that of the value itself, whether by reference or not.
  struct Parameter {
    VARTYPE type = VT_EMPTY;
    IID interfaceId{};  ///< of objects
    bool byReference = false;
    bool isResult = false;
    bool isOptional = false;
    bool hasDefault = false;
    VARIANT defaultValue{};
  };
  struct Member {
    DISPID id = 0;
    INVOKEKIND kind = INVOKE_FUNC;
    ULONG_PTR vtableOffset = 0;
    std::vector<Parameter> parameters;
  };
  class Call;

  explicit Description(REFIID id);
  static Parameter ReadParameter(ITypeInfo* info, const ELEMDESC& element);
  const Member* Find(DISPID id, WORD kinds, const DISPPARAMS& arguments) const;

  std::string className_;
  ComPtr<ITypeInfo> dispatchInfo_;
  std::vector<Member> members_;
};

}  // namespace automation
