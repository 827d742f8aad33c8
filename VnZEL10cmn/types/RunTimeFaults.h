#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

/// Not for hosts: the public headers need it.
namespace VnZEL10cmn::internal {

/// The numbers under which faults are filed that an operation did not foresee.
enum class RunTimeNumber : std::int32_t {
  InvalidCall = 5,    ///< anything that has no number of its own
  Overflow = 6,       ///< std::overflow_error
  OutOfMemory = 7,    ///< std::bad_alloc
  OutOfRange = 9,     ///< std::out_of_range
  FixedArray = 10,    ///< automation only: an array whose bounds can't be changed
  TypeMismatch = 13,  ///< std::invalid_argument
  ObjectNotSet = 91,  ///< an object is needed and none was given
};

/// The text of a run-time number.
constexpr std::string_view RunTimeText(RunTimeNumber number) noexcept {
  switch (number) {
    case RunTimeNumber::Overflow: return "Überlauf";
    case RunTimeNumber::OutOfMemory: return "Nicht genügend Speicher";
    case RunTimeNumber::OutOfRange: return "Index außerhalb des gültigen Bereichs";
    // GCOVR_EXCL_START: the automation server's, on Windows
    case RunTimeNumber::FixedArray: return "Dieses Datenfeld hat eine feste Größe oder ist zurzeit gesperrt.";
    // GCOVR_EXCL_STOP
    case RunTimeNumber::TypeMismatch: return "Typen unverträglich";
    case RunTimeNumber::ObjectNotSet: return "Objektvariable oder With-Blockvariable nicht festgelegt";
    case RunTimeNumber::InvalidCall: break;
  }
  return "Ungültiger Prozeduraufruf oder ungültiges Argument";
}

/// An object is needed and none was given.
class ObjectNotSet : public std::logic_error {
 public:
  ObjectNotSet() : std::logic_error(std::string(RunTimeText(RunTimeNumber::ObjectNotSet))) {}
};

// The library raises its run-time faults by these functions only, so that the texts are those of the table.

/// Throws std::overflow_error with its text.
[[noreturn]] inline void ThrowOverflow() {
  throw std::overflow_error(std::string(RunTimeText(RunTimeNumber::Overflow)));
}
/// Throws std::out_of_range with its text.
[[noreturn]] inline void ThrowOutOfRange() {
  throw std::out_of_range(std::string(RunTimeText(RunTimeNumber::OutOfRange)));
}
/// Throws std::invalid_argument with its text.
[[noreturn]] inline void ThrowTypeMismatch() {
  throw std::invalid_argument(std::string(RunTimeText(RunTimeNumber::TypeMismatch)));
}
/// Throws ObjectNotSet.
[[noreturn]] inline void ThrowObjectNotSet() { throw ObjectNotSet(); }

}  // namespace VnZEL10cmn::internal
