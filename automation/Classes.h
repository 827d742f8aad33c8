#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "automation/Com.h"
#include "automation/Identity.h"

/// The published classes, and the ways between objects of the library and COM objects.
namespace automation {

/// What `GetLinesOfString` fills.
struct StringList {
  std::vector<std::string> texts;
  auto begin() const noexcept { return texts.begin(); }
  auto end() const noexcept { return texts.end(); }
};

/// Of a class of the library: its interface, name and identifier, and `Make`, a new COM object for an object.
template <class Native>
struct ClassOf;

#define AUTOMATION_CLASS(native, name)                           \
  template <>                                                    \
  struct ClassOf<native> {                                       \
    using Interface = _##name;                                   \
    static constexpr std::string_view kName = #name;             \
    static REFCLSID Id() { return CLSID_##name; }                \
    static ComPtr<_##name> Make(std::shared_ptr<native> object); \
  };
AUTOMATION_CLASS(VnZEL10cmn::clsVnError, clsVnError)
AUTOMATION_CLASS(VnZEL10cmn::clsVnLogItem, clsVnLogItem)
AUTOMATION_CLASS(VnZEL10cmn::clsVnLogFile, clsVnLogFile)
AUTOMATION_CLASS(StringList, clsVnStringList)
AUTOMATION_CLASS(VnZEL10cmn::clsHelper01, clsHelper01)
AUTOMATION_CLASS(VnZEL10cmn::clsSHA256, clsSHA256)
AUTOMATION_CLASS(VnZEL10cmn::clsZelBaseCoding, clsZelBaseCoding)
AUTOMATION_CLASS(VnZEL10cmn::clsZelItemCash, clsZelItemCash)
AUTOMATION_CLASS(VnZEL10cmn::clsZelItemList, clsZelItemList)
AUTOMATION_CLASS(VnZEL10cmn::clsZelListItemFact, clsZelListItemFact)
AUTOMATION_CLASS(VnZEL10cmn::clsZelVatItem, clsZelVatItem)
AUTOMATION_CLASS(VnZEL10cmn::clsZelVatList, clsZelVatList)
AUTOMATION_CLASS(VnZEL10cmn::clsZelContainer, clsZelContainer)
AUTOMATION_CLASS(VnZEL10cmn::clsZelTransAct, clsZelTransAct)
AUTOMATION_CLASS(VnZEL10cmn::clsZelReport, clsZelReport)
AUTOMATION_CLASS(VnZEL10cmn::clsZelTransActData, clsZelTransActData)
AUTOMATION_CLASS(VnZEL10cmn::clsZelItemPrint, clsZelItemPrint)
AUTOMATION_CLASS(VnZEL10cmn::clsZelRprtPrint, clsZelRprtPrint)
#undef AUTOMATION_CLASS

/// The COM object of an object of the library: the one that there is, else a new one; none for none.
template <class Native>
ComPtr<typename ClassOf<Native>::Interface> Wrap(const std::shared_ptr<Native>& object) {
  using Interface = typename ClassOf<Native>::Interface;
  if (!object) return {};
  if (const ComPtr<IUnknown> face = Faces::Find(AddressOf(object.get()))) {
    return Query<Interface>(face.Get(), __uuidof(Interface));
  }
  return ClassOf<Native>::Make(object);
}

/// An item, which may be a host's own.
ComPtr<::IVnZelItem> Wrap(const std::shared_ptr<VnZEL10cmn::IVnZelItem>& item);

/// A COM object as the result of a member.
template <class Native>
void ToCom(const std::shared_ptr<Native>& object, typename ClassOf<Native>::Interface** result) {
  *result = Wrap(object).Detach();
}
inline void ToCom(const std::shared_ptr<VnZEL10cmn::IVnZelItem>& item, ::IVnZelItem** result) {
  *result = Wrap(item).Detach();
}

// The other way: none for none. Where a host may have classes of its own, its object is put behind one of the
// library's kind; others throw `ComFailure` (TypeMismatch).

std::shared_ptr<VnZEL10cmn::clsVnError> FromCom(_clsVnError* object);
std::shared_ptr<VnZEL10cmn::clsVnLogFile> FromCom(_clsVnLogFile* object);
std::shared_ptr<VnZEL10cmn::clsZelVatItem> FromCom(_clsZelVatItem* object);
std::shared_ptr<VnZEL10cmn::clsZelVatList> FromCom(_clsZelVatList* object);
std::shared_ptr<VnZEL10cmn::clsZelTransAct> FromCom(_clsZelTransAct* object);
std::shared_ptr<VnZEL10cmn::clsZelReport> FromCom(_clsZelReport* object);
std::shared_ptr<VnZEL10cmn::clsZelTransActData> FromCom(_clsZelTransActData* object);
std::shared_ptr<VnZEL10cmn::IVnLogItem> FromCom(::IVnLogItem* object);
std::shared_ptr<VnZEL10cmn::IVnZelItem> FromCom(::IVnZelItem* object);
std::shared_ptr<VnZEL10cmn::clsZelListItemFact> FromCom(_clsZelListItemFact* object);
std::shared_ptr<VnZEL10cmn::clsZelItemPrint> FromCom(_clsZelItemPrint* object);
std::shared_ptr<VnZEL10cmn::clsZelRprtPrint> FromCom(_clsZelRprtPrint* object);

}  // namespace automation
