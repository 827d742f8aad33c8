#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "VnZEL10cmn/errors/ZELErrorCodes.h"
#include "VnZEL10cmn/errors/clsVnError.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

class clsVnLogFile;

namespace internal {
struct Refusal;
}

/// What every class of the library has in common: the error object, the log handler, and the course of a
/// public operation. Operations never throw what went wrong inside them: they return False (or an empty
/// text) and leave number, message and function in `ErrorObject`, and in the log file when one is attached.
///
/// Faults that an operation did not foresee have run-time numbers and German texts: 5 "Ungültiger Prozeduraufruf oder
/// ungültiges Argument", 6 "Überlauf", 7 "Nicht genügend Speicher", 9 "Index außerhalb des gültigen Bereichs", 13
/// "Typen unverträglich", 91 "Objektvariable oder With-Blockvariable nicht festgelegt". Out of memory is number 7, or
/// is reported as the failure of a part. Exceptions of a host's own classes are filed the same way. Constructors,
/// properties and functions that just return a value have no failure to report: they throw, and what they would have
/// changed stays as it was.
///
/// Objects have identity: they are neither copied nor moved. One thread at a time uses an object; different
/// objects may be used by different threads at once.
///
/// Hosts derive from published classes, not from this one: what is protected may change.
class VNZEL10CMN_API VnObject {
 public:
  VnObject(const VnObject&) = delete;
  VnObject& operator=(const VnObject&) = delete;

  /// The object's own error object; it lives as long as the object. Made when it is first asked for.
  clsVnError& ErrorObject();

  /// The log file to which failures are written; may be none.
  virtual std::shared_ptr<clsVnLogFile> LogHandler() const;
  /// Attaches a log file, or none, also to the objects that this one owns.
  virtual void LogHandler(std::shared_ptr<clsVnLogFile> Value);

  /// Whether the last operation left an error.
  bool HasError() const noexcept;

 protected:
  /// Whether a failed operation writes its error to the log.
  enum class Logging : std::uint8_t { Failures, Nothing };

  /// `className` is a literal: the class's published name.
  explicit VnObject(const char* className) noexcept;
  virtual ~VnObject();

  /// The instance ID under which the object's errors are filed, asked for once; a new one unless a class
  /// has an identity of its own.
  virtual std::string IdentityForErrors();

  /// Runs a public operation: clears the error, runs the body, files what the body did not foresee under the
  /// operation's name and writes an error to the log. The result is the body's, or False after a fault.
  template <class Body>
  bool Run(std::string_view operation, Body&& body, Logging logging = Logging::Failures) {
    return RunFor<bool>(operation, std::forward<Body>(body), logging);
  }

  /// Run for an operation that returns something else: a text, a currency, an object. The result after a
  /// fault is an empty one.
  template <class Result, class Body>
  Result RunFor(std::string_view operation, Body&& body, Logging logging = Logging::Failures) {
    ClearErr();
    const Logging outer = std::exchange(logging_, logging);
    Result result{};
    try {
      result = std::forward<Body>(body)();
    } catch (...) {
      FileFault(operation);
    }
    LogError();
    logging_ = outer;
    return result;
  }

  /// Files a failure that the library raises itself. Always False. A failure that is filed already is written to the
  /// log before another one takes its place.
  bool Fail(ZELErrorCodes number, std::string_view message, std::string_view function);

  /// The same for a reason that was met further down.
  bool Fail(const internal::Refusal& refusal, std::string_view function);

  /// Files a failure that another object reported: its number and user-defined mark, this message. Always
  /// False.
  bool FailAs(clsVnError& inner, std::string_view message, std::string_view function);

  /// Says that there was no memory to file what happened; takes none itself.
  static void FileOutOfMemory(clsVnError& error) noexcept;

  /// How many failures an error object was told so far: whether there is a new one.
  static std::uint32_t FailureCount(const clsVnError& error) noexcept { return error.failures_; }

  /// Resets the failure part of the error object.
  void ClearErr();

  /// Writes the failure that is filed to the log file, if there is one and it wasn't written yet. What fails there is
  /// nobody's concern here.
  void LogError() noexcept {
    if (logHandler_ && logging_ == Logging::Failures) {
      WriteToLog();
    }
  }

 private:
  void WriteToLog() noexcept;
  void FileFault(std::string_view operation) noexcept;

  const char* className_;
  // Most objects never fail and are never asked for their error object: it is made when first needed.
  std::unique_ptr<clsVnError> error_;
  std::shared_ptr<clsVnLogFile> logHandler_;
  std::uint32_t logged_ = 0;  ///< which of the error object's failures was written to the log last
  Logging logging_ = Logging::Failures;
  bool unfiled_ = false;  ///< there was no memory for the error object in which a fault would have shown
};

}  // namespace VnZEL10cmn
