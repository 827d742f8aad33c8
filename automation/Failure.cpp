#include "automation/Failure.h"

#include <new>
#include <stdexcept>
#include <string>

#include "VnZEL10cmn/errors/internal/CurrentFault.h"
#include "VnZEL10cmn/platform/internal/Utf16_win.h"

namespace automation {

namespace {

using VnZEL10cmn::platform::ToWide;

void Report(std::string_view source, std::string_view description) {
  ComPtr<ICreateErrorInfo> info;
  if (FAILED(CreateErrorInfo(info.Put()))) return;
  info->SetSource(ToWide("VnZEL10cmn." + std::string(source)).data());
  info->SetDescription(ToWide(description).data());
  if (const auto error = Query<IErrorInfo>(info.Get(), IID_IErrorInfo)) SetErrorInfo(0, error.Get());
}

}  // namespace

void ThrowHostFailure(HRESULT result) {
  if (SUCCEEDED(result)) return;
  ComPtr<IErrorInfo> taken;
  GetErrorInfo(0, taken.Put());
  using namespace VnZEL10cmn::internal;
  if (result == ToResult(RunTimeNumber::OutOfRange) || result == DISP_E_BADINDEX) ThrowOutOfRange();
  if (result == ToResult(RunTimeNumber::Overflow) || result == DISP_E_OVERFLOW) ThrowOverflow();
  if (result == ToResult(RunTimeNumber::TypeMismatch) || result == DISP_E_TYPEMISMATCH) ThrowTypeMismatch();
  if (result == ToResult(RunTimeNumber::OutOfMemory) || result == E_OUTOFMEMORY) throw std::bad_alloc();
  if (result == ToResult(RunTimeNumber::ObjectNotSet)) ThrowObjectNotSet();
  throw std::runtime_error(std::string(RunTimeText(RunTimeNumber::InvalidCall)));
}

HRESULT ReportException(std::string_view source) noexcept {
  std::optional<RunTimeNumber> number;
  HRESULT result = S_OK;
  try {
    throw;
  } catch (const ComFailure& failure) {
    number = failure.Number();
    result = failure.Result();
  } catch (...) {
    number = VnZEL10cmn::internal::CurrentFault();
    result = ToResult(*number);
  }
  try {
    if (number) Report(source, RunTimeText(*number));
  } catch (...) {
    // Without a description then.
  }
  return result;
}

}  // namespace automation
