#include "automation/Object.h"

// The print engines.

namespace automation {

namespace {

// An object to render and where errors go.
#define AUTOMATION_RENDER(name, type)                                                                \
  HRESULT STDMETHODCALLTYPE name(type* Object, _clsVnError** ErrObj, BSTR* Result) override {        \
    return Give(Result, [&] { return It().name(FromCom(Object), FromCom(ErrorIn(ErrObj)).get()); }); \
  }

class ZelItemPrint final : public Object<VnZEL10cmn::clsZelItemPrint, _clsZelItemPrint> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  AUTOMATION_RENDER(ToStringCI, ::IVnZelItem)
  AUTOMATION_RENDER(ToStringBI, _clsZelTransAct)
  AUTOMATION_RENDER(ToStringTRdata, _clsZelTransActData)
};

class ZelRprtPrint final : public Object<VnZEL10cmn::clsZelRprtPrint, _clsZelRprtPrint> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  AUTOMATION_RENDER(ToStringItmRpt, ::IVnZelItem)
  AUTOMATION_RENDER(ToStringRprt, _clsZelReport)
};

}  // namespace

AUTOMATION_MAKE(VnZEL10cmn::clsZelItemPrint, ZelItemPrint)
AUTOMATION_MAKE(VnZEL10cmn::clsZelRprtPrint, ZelRprtPrint)

}  // namespace automation
