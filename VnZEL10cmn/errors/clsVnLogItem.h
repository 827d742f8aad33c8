#pragma once

#include <string>
#include <string_view>

#include "VnZEL10cmn/errors/IVnLogItem.h"
#include "VnZEL10cmn/types/Date.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// A message, not an error, for the log file. Texts are stored trimmed of leading and trailing blanks.
class VNZEL10CMN_API clsVnLogItem final : public IVnLogItem {
 public:
  /// An empty message.
  clsVnLogItem();
  clsVnLogItem(const clsVnLogItem&) = delete;
  clsVnLogItem& operator=(const clsVnLogItem&) = delete;

  /// The text.
  std::string Message() const;
  /// Sets the text; `MessageTime` becomes the present time, or NoTime for an empty text.
  void Message(std::string_view Value);

  /// The object that the message comes from.
  std::string Source() const;
  /// Sets the source.
  void Source(std::string_view Value);

  /// When the text was set; NoTime (1 January 1900) when there is none.
  Date MessageTime() const noexcept;

  /// Instance ID of the object that the message comes from.
  std::string InstanceID() const;
  /// Sets the instance ID.
  void InstanceID(std::string_view Value);

  /// Sets text and function name; an empty `xSource` or `xInstID` keeps what is set already. Always True.
  bool SetMessage(std::string_view xMessage, std::string_view xFunction = {}, std::string_view xSource = {},
                  std::string_view xInstID = {});

  /// Always "##FEHLER##".
  std::string GetSource() const;

  /// Empties everything.
  void Clear();

  /// Empties text, function name and time; source and instance ID stay.
  void ClearMsg();

  /// The log entry, headed "Allg. Meldung:"; empty when there is no text.
  std::string GetLogEntry() override;

 private:
  std::string message_;
  std::string source_;
  std::string function_;
  std::string instanceId_;
  Date messageTime_ = NoTime;
};

}  // namespace VnZEL10cmn
