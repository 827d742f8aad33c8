#pragma once

#include <stdexcept>
#include <string>

namespace zel {

/// What the program ends with.
enum class ExitStatus : int {
  Ok = 0,        ///< done
  NotRight = 1,  ///< the sale, document or data is not right
  Usage = 2,     ///< the command line is not right
  Trouble = 3,   ///< a file, the device, an output or memory can't be had
};

/// Ends a command; `what()` is one line for the user.
class Failure : public std::runtime_error {
 public:
  Failure(ExitStatus status, const std::string& text) : std::runtime_error(text), status_(status) {}

  [[nodiscard]] ExitStatus Status() const noexcept { return status_; }

 private:
  ExitStatus status_;
};

}  // namespace zel
