#include "VnZEL10cmn/errors/clsVnLogItem.h"

#include "VnZEL10cmn/errors/internal/LogEntry.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::kCrLf;
using internal::LogLine;

clsVnLogItem::clsVnLogItem() = default;

std::string clsVnLogItem::Message() const { return message_; }

void clsVnLogItem::Message(std::string_view Value) {
  message_ = internal::Trim(Value);
  messageTime_ = message_.empty() ? NoTime : Date::Now();
}

std::string clsVnLogItem::Source() const { return source_; }

void clsVnLogItem::Source(std::string_view Value) { source_ = internal::Trim(Value); }

Date clsVnLogItem::MessageTime() const noexcept { return messageTime_; }

std::string clsVnLogItem::InstanceID() const { return instanceId_; }

void clsVnLogItem::InstanceID(std::string_view Value) { instanceId_ = internal::Trim(Value); }

bool clsVnLogItem::SetMessage(std::string_view xMessage, std::string_view xFunction, std::string_view xSource,
                              std::string_view xInstID) {
  Message(xMessage);
  if (!internal::Trim(xSource).empty()) {
    Source(xSource);
  }
  if (!internal::Trim(xInstID).empty()) {
    InstanceID(xInstID);
  }
  function_ = internal::Trim(xFunction);
  return true;
}

std::string clsVnLogItem::GetSource() const { return std::string(internal::kNoSource); }

void clsVnLogItem::Clear() {
  ClearMsg();
  source_.clear();
  instanceId_.clear();
}

void clsVnLogItem::ClearMsg() {
  message_.clear();
  function_.clear();
  messageTime_ = NoTime;
}

std::string clsVnLogItem::GetLogEntry() {
  if (message_.empty()) {
    return {};
  }
  return internal::Compose(internal::LogHeading(messageTime_, "Allg. Meldung:", 14),
                           LogLine("Quelle ", source_), LogLine("Funktion ", internal::NameOrNone(function_)),
                           LogLine("Instanz ", instanceId_),
                           internal::LogMessageLines(message_, "!!FEHLER IM MELDUNGSOBJEKT!!"), kCrLf, kCrLf);
}

}  // namespace VnZEL10cmn
