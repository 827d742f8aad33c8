#pragma once

#include <cstdint>
#include <string_view>

#include "VnZEL10cmn/VnZEL10cmn.h"

namespace fuzz {

/// Reports what does not hold, with the place that says so, and ends the program.
[[noreturn]] void Broken(const char* file, int line, const char* expectation);

/// What must hold whatever the input is.
#define FUZZ_CHECK(expectation) \
  (static_cast<bool>(expectation) ? static_cast<void>(0) : ::fuzz::Broken(__FILE__, __LINE__, #expectation))

bool IsUtf8(std::string_view text);

/// What an error object must hold after an operation: nothing after a success; number, text, function, time,
/// source and instance after a failure.
void CheckError(const VnZEL10cmn::clsVnError& error, bool succeeded, std::string_view operation);

/// The same for the object that carried the operation out. Its error object is asked for only after a failure,
/// as most objects make it then.
template <class Object>
void CheckOutcome(Object& object, bool succeeded, std::string_view operation) {
  FUZZ_CHECK(object.HasError() == !succeeded);
  if (!succeeded) {
    CheckError(object.ErrorObject(), succeeded, operation);
  }
}

/// An array full of a pattern, in which a change shows.
VnZEL10cmn::ByteArray Canary(std::int32_t lower, std::int32_t upper);

/// Whether bytes below `first` and from `behind` on are still those of the pattern.
bool IsIntactOutside(const VnZEL10cmn::ByteArray& canary, std::int64_t first, std::int64_t behind);

}  // namespace fuzz
