#pragma once

#include <string>
#include <string_view>

#include "automation/Com.h"

namespace automation {

/// The numbers under which Visual Basic's callers know failures.
enum class RunTimeNumber : unsigned short {
  InvalidCall = 5,
  Overflow = 6,
  OutOfMemory = 7,
  OutOfRange = 9,
  ArrayLocked = 10,
  TypeMismatch = 13,
};

/// The result code of a run-time number.
constexpr HRESULT ToResult(RunTimeNumber number) {
  return static_cast<HRESULT>(0x800A0000u | static_cast<unsigned short>(number));
}

/// A failure of a COM operation, with its result code.
class ComFailure {
 public:
  explicit ComFailure(HRESULT result) : result_(result) {}
  explicit ComFailure(RunTimeNumber number) : result_(ToResult(number)) {}
  [[nodiscard]] HRESULT Result() const noexcept { return result_; }

 private:
  HRESULT result_;
};

/// Throws a `ComFailure` where the result is one.
inline void Require(HRESULT result) {
  if (FAILED(result)) throw ComFailure(result);
}

/// What a host's object answered as an exception that the library knows: out of range, overflow, not a number,
/// out of memory, or whatever its error information says.
void ThrowHostFailure(HRESULT result);

/// To be called in a catch block: the result code of the present exception, whose description becomes the
/// thread's error information. `source` is the class's name.
HRESULT ReportException(std::string_view source) noexcept;

}  // namespace automation
