#include "VnZEL10cmn/errors/VnObject.h"

#include "VnZEL10cmn/errors/clsVnLogFile.h"
#include "VnZEL10cmn/errors/internal/CurrentFault.h"
#include "VnZEL10cmn/errors/internal/Refusal.h"
#include "VnZEL10cmn/platform/internal/Guid.h"

namespace VnZEL10cmn {

VnObject::VnObject(const char* className) noexcept : className_(className) {}

VnObject::~VnObject() = default;

clsVnError& VnObject::ErrorObject() {
  if (!error_) {
    std::string source = "VnZEL10cmn.";
    source.append(className_);
    error_ = std::make_unique<clsVnError>(std::move(source), IdentityForErrors());
    if (unfiled_) {
      unfiled_ = false;
      FileOutOfMemory(*error_);
    }
  }
  return *error_;
}

std::shared_ptr<clsVnLogFile> VnObject::LogHandler() const { return logHandler_; }

void VnObject::LogHandler(std::shared_ptr<clsVnLogFile> Value) { logHandler_ = std::move(Value); }

bool VnObject::HasError() const noexcept { return error_ ? error_->HasError() : unfiled_; }

std::string VnObject::IdentityForErrors() { return platform::CreateGuid(); }

bool VnObject::Fail(ZELErrorCodes number, std::string_view message, std::string_view function) {
  LogError();
  ErrorObject().SetError(static_cast<std::int32_t>(number), message, true, function);
  return false;
}

bool VnObject::Fail(const internal::Refusal& refusal, std::string_view function) {
  return Fail(refusal.number, refusal.message, function);
}

bool VnObject::FailAs(clsVnError& inner, std::string_view message, std::string_view function) {
  LogError();
  ErrorObject().SetError(inner.ErrorNr(), message, inner.IsUserDef(), function);
  return false;
}

void VnObject::FileOutOfMemory(clsVnError& error) noexcept { error.FileOutOfMemory(); }

void VnObject::ClearErr() {
  unfiled_ = false;
  if (error_) {
    error_->ClearErr();
  }
}

void VnObject::WriteToLog() noexcept {
  if (!HasError()) {
    return;
  }
  try {
    clsVnError& error = ErrorObject();
    if (logged_ != error.failures_) {
      logged_ = error.failures_;
      logHandler_->FileWriteEntry(error);
    }
  } catch (...) {
    // A log that can't be written never disturbs the operation that wanted to log.
  }
}

void VnObject::FileFault(std::string_view operation) noexcept {
  const internal::RunTimeNumber number = internal::CurrentFault();
  LogError();
  try {
    if (number != internal::RunTimeNumber::OutOfMemory) {
      ErrorObject().SetError(static_cast<std::int32_t>(number), internal::RunTimeText(number), false,
                             operation);
      return;
    }
    ErrorObject().FileOutOfMemory();
    error_->ErrorFunction(operation);
  } catch (...) {
    // No memory even for the error object: the error shows in it when there is some again.
    if (error_) {
      error_->FileOutOfMemory();
    } else {
      unfiled_ = true;
    }
  }
}

}  // namespace VnZEL10cmn
