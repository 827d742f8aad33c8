#include "automation/Object.h"

// Errors and logging.

namespace automation {

namespace {

/// The face that a log file writes.
template <class Whole>
class LogItemFacet final : public Facet<::IVnLogItem> {
 public:
  explicit LogItemFacet(Whole& whole)
      : Facet(*static_cast<typename Whole::Published*>(&whole)), whole_(whole) {}

  HRESULT STDMETHODCALLTYPE GetLogEntry(BSTR* Result) override { return whole_.GetLogEntry(Result); }

 private:
  Whole& whole_;
};

class VnError final : public Object<VnZEL10cmn::clsVnError, _clsVnError> {
 public:
  using Published = _clsVnError;
  using Object::Object;

  AUTOMATION_PROPERTY(LONG, ErrorNr)
  AUTOMATION_PROPERTY(BSTR, ErrorMsg)
  AUTOMATION_PROPERTY(BSTR, ErrorSource)
  AUTOMATION_PROPERTY(BSTR, ErrorFunction)
  AUTOMATION_PROPERTY(BSTR, ErrorInstanceID)
  AUTOMATION_PROPERTY(VARIANT_BOOL, IsUserDef)
  AUTOMATION_READ(DATE, ErrorTime)
  AUTOMATION_SUCCESS(HasError)
  HRESULT STDMETHODCALLTYPE SetError(LONG ErrNr, BSTR ErrMsg, VARIANT_BOOL ErrUserDef, BSTR ErrFct,
                                     BSTR ErrSrc, BSTR ErrInstID, VARIANT_BOOL* Result) override {
    return Give(Result, [&] {
      return It().SetError(ErrNr, FromCom(ErrMsg), FromCom(ErrUserDef), FromCom(ErrFct), FromCom(ErrSrc),
                           FromCom(ErrInstID));
    });
  }
  AUTOMATION_TEXT(GetSource)
  HRESULT STDMETHODCALLTYPE Clear() override {
    return Guard([&] { It().Clear(); });
  }
  HRESULT STDMETHODCALLTYPE ClearErr() override {
    return Guard([&] { It().ClearErr(); });
  }
  AUTOMATION_TEXT(GetLogEntry)
  HRESULT STDMETHODCALLTYPE ShowMsgBox(LONG Buttons, LONG* Result) override {
    return Give(Result, [&] { return It().ShowMsgBox(Buttons); });
  }

 private:
  IUnknown* FindMore(REFIID id) override { return id == IID_IVnLogItem ? &logItem_ : nullptr; }

  LogItemFacet<VnError> logItem_{*this};
};

class VnLogItem final : public Object<VnZEL10cmn::clsVnLogItem, _clsVnLogItem> {
 public:
  using Published = _clsVnLogItem;
  using Object::Object;

  AUTOMATION_PROPERTY(BSTR, Message)
  AUTOMATION_PROPERTY(BSTR, Source)
  AUTOMATION_PROPERTY(BSTR, InstanceID)
  AUTOMATION_READ(DATE, MessageTime)
  HRESULT STDMETHODCALLTYPE SetMessage(BSTR xMessage, BSTR xFunction, BSTR xSource, BSTR xInstID,
                                       VARIANT_BOOL* Result) override {
    return Give(Result, [&] {
      return It().SetMessage(FromCom(xMessage), FromCom(xFunction), FromCom(xSource), FromCom(xInstID));
    });
  }
  AUTOMATION_TEXT(GetSource)
  HRESULT STDMETHODCALLTYPE Clear() override {
    return Guard([&] { It().Clear(); });
  }
  HRESULT STDMETHODCALLTYPE ClearMsg() override {
    return Guard([&] { It().ClearMsg(); });
  }
  AUTOMATION_TEXT(GetLogEntry)

 private:
  IUnknown* FindMore(REFIID id) override { return id == IID_IVnLogItem ? &logItem_ : nullptr; }

  LogItemFacet<VnLogItem> logItem_{*this};
};

class VnLogFile final : public Object<VnZEL10cmn::clsVnLogFile, _clsVnLogFile> {
 public:
  using Object::Object;

  AUTOMATION_READ(VARIANT_BOOL, FileIsOpen)
  AUTOMATION_READ(BSTR, FileName)
  AUTOMATION_PROPERTY(VARIANT_BOOL, WriteErrors)
  AUTOMATION_PROPERTY(VARIANT_BOOL, WriteEntries)
  HRESULT STDMETHODCALLTYPE FileOpen(BSTR xFileName, VARIANT_BOOL xOverRide, VARIANT_BOOL* Result) override {
    return Give(Result, [&] { return It().FileOpen(FromCom(xFileName), FromCom(xOverRide)); });
  }
  AUTOMATION_SUCCESS(FileClose)
  HRESULT STDMETHODCALLTYPE FileWriteEntry(::IVnLogItem* Item, VARIANT_BOOL* Result) override {
    return Give(Result, [&] { return It().FileWriteEntry(FromCom(Item)); });
  }
};

}  // namespace

AUTOMATION_MAKE(VnZEL10cmn::clsVnError, VnError)
AUTOMATION_MAKE(VnZEL10cmn::clsVnLogItem, VnLogItem)
AUTOMATION_MAKE(VnZEL10cmn::clsVnLogFile, VnLogFile)

}  // namespace automation
