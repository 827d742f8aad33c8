#include "VnZEL10cmn/errors/VnObject.h"

#include <new>
#include <stdexcept>

#include "VnZEL10cmn/errors/clsVnLogFile.h"
#include "VnZEL10cmn/errors/internal/Refusal.h"
#include "VnZEL10cmn/platform/internal/Guid.h"

namespace VnZEL10cmn {

namespace {

constexpr std::int32_t kOutOfMemory = 7;

}  // namespace

VnObject::VnObject(std::string_view className) noexcept : className_(className) {}

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
  ErrorObject().SetError(static_cast<std::int32_t>(number), message, true, function);
  return false;
}

bool VnObject::Fail(const internal::Refusal& refusal, std::string_view function) {
  return Fail(refusal.number, refusal.message, function);
}

bool VnObject::FailAs(clsVnError& inner, std::string_view message, std::string_view function) {
  ErrorObject().SetError(inner.ErrorNr(), message, inner.IsUserDef(), function);
  return false;
}

void VnObject::FileOutOfMemory(clsVnError& error) noexcept {
  // Short enough to stand in the text itself.
  error.SetError(kOutOfMemory, std::bad_alloc().what());
}

void VnObject::ClearErr() {
  unfiled_ = false;
  if (error_) {
    error_->ClearErr();
  }
}

void VnObject::LogError() noexcept {
  if (!HasError()) {
    return;
  }
  try {
    logHandler_->FileWriteEntry(ErrorObject());
  } catch (...) {
    // A log that can't be written never disturbs the operation that wanted to log.
  }
}

void VnObject::FileFault(std::string_view operation, const std::exception_ptr& fault) noexcept {
  const auto file = [this, operation](std::int32_t number, std::string_view message) {
    ErrorObject().SetError(number, message, false, operation);
  };
  try {
    try {
      std::rethrow_exception(fault);
    } catch (const std::overflow_error& e) {
      file(6, e.what());
    } catch (const std::bad_alloc& e) {
      file(kOutOfMemory, e.what());
    } catch (const std::out_of_range& e) {
      file(9, e.what());
    } catch (const std::invalid_argument& e) {
      file(13, e.what());
    } catch (const std::exception& e) {
      file(5, e.what());
    } catch (...) {
      file(5, "unknown fault");
    }
  } catch (...) {
    // No memory even for the error object: the error shows in it when there is some again.
    if (error_) {
      FileOutOfMemory(*error_);
    } else {
      unfiled_ = true;
    }
  }
}

}  // namespace VnZEL10cmn
