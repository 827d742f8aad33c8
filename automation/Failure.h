#pragma once

#include <string_view>

#include "VnZEL10cmn/types/RunTimeFaults.h"
#include "automation/Com.h"

namespace automation {

/// The numbers under which Visual Basic's callers know failures.
using VnZEL10cmn::internal::RunTimeNumber;
using VnZEL10cmn::internal::RunTimeText;

/// The result code of a run-time number.
constexpr HRESULT ToResult(RunTimeNumber number) {
  return static_cast<HRESULT>(0x800A0000u | static_cast<unsigned short>(number));
}

/// The run-time number that says the same as a result code; InvalidCall for those that have none.
RunTimeNumber NumberOf(HRESULT result) noexcept;

/// A failure of a COM operation, with its result code and its description, which is that of the run-time number unless
/// there is a better one.
class ComFailure {
 public:
  explicit ComFailure(HRESULT result) : result_(result), description_(RunTimeText(NumberOf(result))) {}
  explicit ComFailure(RunTimeNumber number) : ComFailure(number, RunTimeText(number)) {}
  /// `description` is a literal.
  ComFailure(RunTimeNumber number, std::string_view description)
      : result_(ToResult(number)), description_(description), isRaised_(true) {}

  [[nodiscard]] HRESULT Result() const noexcept { return result_; }
  [[nodiscard]] std::string_view Description() const noexcept { return description_; }
  /// Whether late-bound callers get it as an exception, with its description. What is wrong with the call itself they
  /// get as the result code of the call.
  [[nodiscard]] bool IsRaised() const noexcept { return isRaised_; }

 private:
  HRESULT result_;
  std::string_view description_;
  bool isRaised_ = false;
};

/// Throws a `ComFailure` where the result is one.
inline void Require(HRESULT result) {
  if (FAILED(result)) throw ComFailure(result);
}

/// The same for what the system's array functions return: callers know such failures by their run-time numbers.
inline void RequireArray(HRESULT result) {
  if (FAILED(result)) throw ComFailure(NumberOf(result));
}

/// What a host's object answered as an exception that the library knows: out of range, overflow, not a number, out of
/// memory, no object, or an invalid call for anything else. Its error information is taken away.
void ThrowHostFailure(HRESULT result);

/// To be called in a catch block: the result code of the present exception, whose description becomes the
/// thread's error information. `source` is the class's name.
HRESULT ReportException(std::string_view source) noexcept;

/// The same for a result code: makes the error information and returns `result`.
HRESULT Refuse(HRESULT result, std::string_view source) noexcept;

/// Runs `body`; what it throws becomes the result, with error information. Success leaves no error information, which
/// could be taken for that of this call.
template <class Body>
HRESULT Guarded(std::string_view source, Body&& body) noexcept {
  try {
    body();
    SetErrorInfo(0, nullptr);
    return S_OK;
  } catch (...) {
    return ReportException(source);
  }
}

}  // namespace automation
