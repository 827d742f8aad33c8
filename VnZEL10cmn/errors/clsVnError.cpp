#include "VnZEL10cmn/errors/clsVnError.h"

#include <utility>
#include <vector>

#include "VnZEL10cmn/errors/internal/LogEntry.h"
#include "VnZEL10cmn/platform/internal/MessageBox.h"
#include "VnZEL10cmn/types/RunTimeFaults.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;
using internal::LogLine;
using internal::NameOrNone;

namespace {

constexpr std::string_view kSplitFailed = "!!FEHLER IM FEHLEROBJEKT!!";
constexpr std::int32_t kIgnoreButton = 5;

std::string_view YesNo(bool value) { return value ? "Ja" : "Nein"; }

/// Two groups of four hexadecimal digits.
std::string HexOf(std::int32_t number) {
  const auto bits = static_cast<std::uint32_t>(number);
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    text.append(shift == 8 ? " " : "").append(internal::HexDigits(static_cast<std::uint8_t>(bits >> shift)));
  }
  return text;
}

}  // namespace

clsVnError::clsVnError() = default;

clsVnError::clsVnError(std::string source, std::string instanceId)
    : errorSource_(std::move(source)), errorInstanceId_(std::move(instanceId)) {}

clsVnError::~clsVnError() = default;

std::int32_t clsVnError::ErrorNr() const noexcept { return errorNr_; }

void clsVnError::ErrorNr(std::int32_t Value) {
  errorNr_ = Value;
  StampTime(Value != 0);
}

std::string clsVnError::ErrorMsg() const { return std::string(Message()); }

void clsVnError::ErrorMsg(std::string_view Value) {
  errorMsg_ = internal::Trim(Value);
  isOutOfMemory_ = false;
  StampTime(!errorMsg_.empty());
}

std::string_view clsVnError::Message() const noexcept {
  return isOutOfMemory_ ? internal::RunTimeText(internal::RunTimeNumber::OutOfMemory)
                        : std::string_view(errorMsg_);
}

std::string clsVnError::ErrorSource() const { return errorSource_; }

void clsVnError::ErrorSource(std::string_view Value) { errorSource_ = internal::Trim(Value); }

std::string clsVnError::ErrorFunction() const { return errorFunction_; }

void clsVnError::ErrorFunction(std::string_view Value) { errorFunction_ = internal::Trim(Value); }

std::string clsVnError::ErrorInstanceID() const { return errorInstanceId_; }

void clsVnError::ErrorInstanceID(std::string_view Value) { errorInstanceId_ = internal::Trim(Value); }

bool clsVnError::IsUserDef() const noexcept { return isUserDef_; }

void clsVnError::IsUserDef(bool Value) noexcept { isUserDef_ = Value; }

Date clsVnError::ErrorTime() const noexcept { return errorTime_; }

bool clsVnError::HasError() const noexcept { return !Message().empty() || errorNr_ != 0; }

bool clsVnError::SetError(std::int32_t ErrNr, std::string_view ErrMsg, bool ErrUserDef,
                          std::string_view ErrFct, std::string_view ErrSrc, std::string_view ErrInstID) {
  ErrorNr(ErrNr);
  ErrorMsg(ErrMsg);
  IsUserDef(ErrUserDef);
  if (!internal::Trim(ErrSrc).empty()) {
    ErrorSource(ErrSrc);
  }
  if (!internal::Trim(ErrInstID).empty()) {
    ErrorInstanceID(ErrInstID);
  }
  ErrorFunction(ErrFct);
  return true;
}

void clsVnError::FileOutOfMemory() noexcept {
  ClearErr();
  errorNr_ = static_cast<std::int32_t>(internal::RunTimeNumber::OutOfMemory);
  isOutOfMemory_ = true;
  isUserDef_ = false;
  StampTime(true);
}

std::string clsVnError::GetSource() const { return std::string(internal::kNoSource); }

void clsVnError::Clear() {
  ClearErr();
  errorSource_.clear();
  errorInstanceId_.clear();
  isUserDef_ = false;
}

void clsVnError::ClearErr() {
  errorNr_ = 0;
  errorMsg_.clear();
  isOutOfMemory_ = false;
  errorFunction_.clear();
  errorTime_ = NoTime;
}

std::string clsVnError::GetLogEntry() {
  if (!HasError()) {
    return {};
  }
  return Compose(internal::LogHeading(errorTime_, "FEHLER:", 7),
                 LogLine("Nummer ", Compose(errorNr_, " - Hex: ", HexOf(errorNr_))),
                 LogLine("Benutzerdef. ", YesNo(isUserDef_)), LogLine("Quelle ", errorSource_),
                 LogLine("Funktion ", NameOrNone(errorFunction_)), LogLine("Instanz ", errorInstanceId_),
                 internal::LogMessageLines(Message(), kSplitFailed), kCrLf, kCrLf);
}

std::int32_t clsVnError::ShowMsgBox(std::int32_t Buttons) {
  if (!HasError()) {
    return kIgnoreButton;
  }
  const std::string text = BoxText();
  const std::string title = Compose("Verarbeitungsfehler [", errorNr_, "]");
  // The host's box may put another one in its place while it is shown.
  const std::shared_ptr<MsgBoxFunction> box = msgBox_;
  return box ? (*box)(text, Buttons, title) : platform::ShowMessageBox(text, Buttons, title);
}

void clsVnError::MsgBox(MsgBoxFunction Box) {
  msgBox_ = Box ? std::make_shared<MsgBoxFunction>(std::move(Box)) : nullptr;
}

void clsVnError::StampTime(bool set) {
  failures_ += set ? 1 : 0;
  errorTime_ = set ? Date::Now() : NoTime;
}

std::string clsVnError::BoxText() const {
  std::string text =
      Compose("Nummer: \t\t", errorNr_, kCrLf, "Benutzerdef.: \t", YesNo(isUserDef_), kCrLf, "Quelle: \t\t",
              errorSource_, kCrLf, "Funktion: \t\t", NameOrNone(errorFunction_), kCrLf, "Instanz: \t\t",
              errorInstanceId_, kCrLf, kCrLf, "Meldung: \t\t");
  std::vector<std::string> lines;
  try {
    lines = internal::SplitLines(Message());
  } catch (...) {
    return text.append(kSplitFailed).append(kCrLf);
  }
  text.append(lines.front()).append(kCrLf);
  for (std::size_t i = 1; i < lines.size(); ++i) {
    text.append("\t\t").append(lines[i]).append(kCrLf);
  }
  return text;
}

}  // namespace VnZEL10cmn
