#include "automation/Failure.h"

#include <new>
#include <stdexcept>
#include <string>

#include "VnZEL10cmn/errors/internal/CurrentFault.h"
#include "VnZEL10cmn/platform/internal/Utf16_win.h"

namespace automation {

namespace {

using VnZEL10cmn::platform::ToWide;

/// Without memory there is no description.
void Report(std::string_view source, std::string_view description) noexcept {
  SetErrorInfo(0, nullptr);
  try {
    ComPtr<ICreateErrorInfo> info;
    if (FAILED(CreateErrorInfo(info.Put()))) return;
    info->SetSource(ToWide("VnZEL10cmn." + std::string(source)).data());
    info->SetDescription(ToWide(description).data());
    if (const auto error = Query<IErrorInfo>(info.Get(), IID_IErrorInfo)) SetErrorInfo(0, error.Get());
  } catch (const std::bad_alloc&) {
  }
}

}  // namespace

RunTimeNumber NumberOf(HRESULT result) noexcept {
  for (const RunTimeNumber number :
       {RunTimeNumber::Overflow, RunTimeNumber::OutOfMemory, RunTimeNumber::OutOfRange,
        RunTimeNumber::FixedArray, RunTimeNumber::TypeMismatch, RunTimeNumber::ObjectNotSet}) {
    if (result == ToResult(number)) return number;
  }
  switch (result) {
    case DISP_E_OVERFLOW: return RunTimeNumber::Overflow;
    case E_OUTOFMEMORY: return RunTimeNumber::OutOfMemory;
    case DISP_E_BADINDEX: return RunTimeNumber::OutOfRange;
    case DISP_E_ARRAYISLOCKED: return RunTimeNumber::FixedArray;
    case DISP_E_TYPEMISMATCH: return RunTimeNumber::TypeMismatch;
    case CO_E_OBJNOTCONNECTED: return RunTimeNumber::ObjectNotSet;
    default: return RunTimeNumber::InvalidCall;
  }
}

void ThrowHostFailure(HRESULT result) {
  if (SUCCEEDED(result)) return;
  SetErrorInfo(0, nullptr);
  using namespace VnZEL10cmn::internal;
  switch (NumberOf(result)) {
    case RunTimeNumber::Overflow: ThrowOverflow();
    case RunTimeNumber::OutOfMemory: throw std::bad_alloc();
    case RunTimeNumber::OutOfRange: ThrowOutOfRange();
    case RunTimeNumber::TypeMismatch: ThrowTypeMismatch();
    case RunTimeNumber::ObjectNotSet: ThrowObjectNotSet();
    default: throw std::runtime_error(std::string(RunTimeText(RunTimeNumber::InvalidCall)));
  }
}

HRESULT ReportException(std::string_view source) noexcept {
  try {
    throw;
  } catch (const ComFailure& failure) {
    Report(source, failure.Description());
    return failure.Result();
  } catch (...) {
    const RunTimeNumber number = VnZEL10cmn::internal::CurrentFault();
    Report(source, RunTimeText(number));
    return ToResult(number);
  }
}

HRESULT Refuse(HRESULT result, std::string_view source) noexcept {
  Report(source, RunTimeText(NumberOf(result)));
  return result;
}

}  // namespace automation
