#include "automation/Failure.h"

#include <new>
#include <stdexcept>

#include "VnZEL10cmn/platform/internal/Utf16_win.h"

namespace automation {

namespace {

using VnZEL10cmn::platform::FromWide;
using VnZEL10cmn::platform::ToWide;

void Report(std::string_view source, std::string_view description) {
  ComPtr<ICreateErrorInfo> info;
  if (FAILED(CreateErrorInfo(info.Put()))) return;
  info->SetSource(ToWide("VnZEL10cmn." + std::string(source)).data());
  info->SetDescription(ToWide(description).data());
  if (const auto error = Query<IErrorInfo>(info.Get(), IID_IErrorInfo)) SetErrorInfo(0, error.Get());
}

std::string DescriptionOf(HRESULT result) {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) == S_OK) {
    Bstr text;
    if (SUCCEEDED(info->GetDescription(text.Put())) && SysStringLen(text.Get()) > 0) {
      return FromWide({text.Get(), SysStringLen(text.Get())});
    }
  }
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string hex;
  for (int shift = 28; shift >= 0; shift -= 4) {
    hex += digits[(static_cast<unsigned long>(result) >> shift) & 15];
  }
  return "automation error 0x" + hex;
}

}  // namespace

void ThrowHostFailure(HRESULT result) {
  if (SUCCEEDED(result)) return;
  const std::string description = DescriptionOf(result);
  if (result == ToResult(RunTimeNumber::OutOfRange) || result == DISP_E_BADINDEX) {
    throw std::out_of_range(description);
  }
  if (result == ToResult(RunTimeNumber::Overflow) || result == DISP_E_OVERFLOW) {
    throw std::overflow_error(description);
  }
  if (result == ToResult(RunTimeNumber::TypeMismatch) || result == DISP_E_TYPEMISMATCH) {
    throw std::invalid_argument(description);
  }
  if (result == ToResult(RunTimeNumber::OutOfMemory) || result == E_OUTOFMEMORY) throw std::bad_alloc();
  throw std::runtime_error(description);
}

HRESULT ReportException(std::string_view source) noexcept {
  RunTimeNumber number = RunTimeNumber::InvalidCall;
  try {
    try {
      throw;
    } catch (const ComFailure& failure) {
      return failure.Result();
    } catch (const std::out_of_range& failure) {
      number = RunTimeNumber::OutOfRange;
      Report(source, failure.what());
    } catch (const std::overflow_error& failure) {
      number = RunTimeNumber::Overflow;
      Report(source, failure.what());
    } catch (const std::invalid_argument& failure) {
      number = RunTimeNumber::TypeMismatch;
      Report(source, failure.what());
    } catch (const std::bad_alloc&) {
      number = RunTimeNumber::OutOfMemory;
      Report(source, "out of memory");
    } catch (const std::exception& failure) {
      Report(source, failure.what());
    }
  } catch (...) {
    // Without a description then.
  }
  return ToResult(number);
}

}  // namespace automation
