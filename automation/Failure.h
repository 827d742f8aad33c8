#pragma once

#include <optional>
#include <string_view>

#include "VnZEL10cmn/types/RunTimeFaults.h"
#include "automation/Com.h"

namespace automation {

/// The numbers under which Visual Basic's callers know failures.
using VnZEL10cmn::internal::RunTimeNumber;

/// The result code of a run-time number.
constexpr HRESULT ToResult(RunTimeNumber number) {
  return static_cast<HRESULT>(0x800A0000u | static_cast<unsigned short>(number));
}

/// A failure of a COM operation, with its result code.
class ComFailure {
 public:
  explicit ComFailure(HRESULT result) : result_(result) {}
  explicit ComFailure(RunTimeNumber number) : result_(ToResult(number)), number_(number) {}
  [[nodiscard]] HRESULT Result() const noexcept { return result_; }
  /// The run-time number, for a failure of the server's own.
  [[nodiscard]] std::optional<RunTimeNumber> Number() const noexcept { return number_; }

 private:
  HRESULT result_;
  std::optional<RunTimeNumber> number_;
};

/// Throws a `ComFailure` where the result is one.
inline void Require(HRESULT result) {
  if (FAILED(result)) throw ComFailure(result);
}

/// What a host's object answered as an exception that the library knows: out of range, overflow, not a number, out of
/// memory, no object, or an invalid call for anything else. Its error information is taken away.
void ThrowHostFailure(HRESULT result);

/// To be called in a catch block: the result code of the present exception, whose description becomes the
/// thread's error information. `source` is the class's name.
HRESULT ReportException(std::string_view source) noexcept;

}  // namespace automation
