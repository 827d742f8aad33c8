#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/errors/IVnLogItem.h"
#include "VnZEL10cmn/types/Date.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// The error object: number, message, function, source and instance of the last failure of its owner. Every
/// object of the library owns one for life and hands it out as `ErrorObject`. Texts are stored trimmed of
/// leading and trailing blanks.
class VNZEL10CMN_API clsVnError final : public IVnLogItem {
 public:
  /// Shows a message box: text, style flags, title; returns the code of the button pressed.
  using MsgBoxFunction =
      std::function<std::int32_t(std::string_view Text, std::int32_t Buttons, std::string_view Title)>;

  /// A cleared error object.
  clsVnError();
  /// The error object of a library object.
  clsVnError(std::string source, std::string instanceId);
  ~clsVnError() override;
  clsVnError(const clsVnError&) = delete;
  clsVnError& operator=(const clsVnError&) = delete;

  /// The error number, 0 for none: one of `ZELErrorCodes` or a run-time number.
  std::int32_t ErrorNr() const noexcept;
  /// Sets the number; `ErrorTime` becomes the present time, or NoTime for 0.
  void ErrorNr(std::int32_t Value);

  /// The message; its lines are separated by CR LF.
  std::string ErrorMsg() const;
  /// Sets the message; `ErrorTime` becomes the present time, or NoTime for an empty text.
  void ErrorMsg(std::string_view Value);

  /// The owner: library name, ".", class name.
  std::string ErrorSource() const;
  /// Sets the owner's name.
  void ErrorSource(std::string_view Value);

  /// The operation that failed, as its owner names it.
  std::string ErrorFunction() const;
  /// Sets the operation's name.
  void ErrorFunction(std::string_view Value);

  /// The owner's instance ID, 36 characters.
  std::string ErrorInstanceID() const;
  /// Sets the instance ID.
  void ErrorInstanceID(std::string_view Value);

  /// True when the library itself raised the error, False for a fault of the run-time system.
  bool IsUserDef() const noexcept;
  /// Sets who raised the error.
  void IsUserDef(bool Value) noexcept;

  /// When number or message were set last; NoTime (1 January 1900) when there is no error.
  Date ErrorTime() const noexcept;

  /// True when there is a message or a number other than 0.
  bool HasError() const noexcept;

  /// Files a failure. An empty `ErrSrc` or `ErrInstID` keeps what is set already; `ErrFct` is always taken
  /// over, also when it is empty. Always True.
  bool SetError(std::int32_t ErrNr, std::string_view ErrMsg, bool ErrUserDef = false,
                std::string_view ErrFct = {}, std::string_view ErrSrc = {}, std::string_view ErrInstID = {});

  /// Always "##FEHLER##"; compose a qualified source from `ErrorSource` and `ErrorFunction`.
  std::string GetSource() const;

  /// Empties everything, source and instance ID included.
  void Clear();

  /// Empties number, message, function and time; source, instance ID and `IsUserDef` stay.
  void ClearErr();

  /// The log entry, headed "FEHLER:"; empty when there is no error.
  std::string GetLogEntry() override;

  /// Shows the error in a modal message box. `Buttons` holds the style flags (16: stop sign, OK button); the
  /// result is the button's code: 1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No. Without an error
  /// nothing is shown and the result is 5. Outside Windows the box stands on the terminal: buttons are
  /// chosen by their letter when standard input is a terminal, otherwise the style's default button is taken.
  std::int32_t ShowMsgBox(std::int32_t Buttons = 16);

  /// Puts the host's own box in the place of the system's; an empty function takes it away again.
  void MsgBox(MsgBoxFunction Box);

 private:
  friend class VnObject;

  /// Files number 7 without taking any memory.
  void FileOutOfMemory() noexcept;
  std::string_view Message() const noexcept;
  void StampTime(bool set);
  std::string BoxText() const;

  std::int32_t errorNr_ = 0;
  std::uint32_t failures_ = 0;  ///< counts what was filed, so that nothing is logged twice
  bool isUserDef_ = false;
  bool isOutOfMemory_ = false;  ///< the message is that of number 7, for which there may be no memory
  Date errorTime_ = NoTime;
  std::string errorMsg_;
  std::string errorSource_;
  std::string errorFunction_;
  std::string errorInstanceId_;
  std::shared_ptr<MsgBoxFunction> msgBox_;
};

}  // namespace VnZEL10cmn
