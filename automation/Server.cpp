#include <memory>
#include <mutex>
#include <new>

#include "automation/Classes.h"
#include "automation/Failure.h"
#include "automation/Module.h"
#include "automation/Registration.h"

// The DLL: what keeps it loaded, its classes, and what it exports.

namespace automation {

namespace {

HMODULE module = nullptr;
LONG locks = 0;

template <class Native>
ComPtr<IUnknown> Create() {
  return Query<IUnknown>(Wrap(std::make_shared<Native>()).Get(), IID_IUnknown);
}

const PublishedClass kClasses[] = {
    {&CLSID_clsVnError, L"clsVnError", Create<VnZEL10cmn::clsVnError>},
    {&CLSID_clsVnLogItem, L"clsVnLogItem", Create<VnZEL10cmn::clsVnLogItem>},
    {&CLSID_clsVnLogFile, L"clsVnLogFile", Create<VnZEL10cmn::clsVnLogFile>},
    {&CLSID_clsVnStringList, L"clsVnStringList", Create<StringList>},
    {&CLSID_clsHelper01, L"clsHelper01", Create<VnZEL10cmn::clsHelper01>},
    {&CLSID_clsSHA256, L"clsSHA256", Create<VnZEL10cmn::clsSHA256>},
    {&CLSID_clsZelBaseCoding, L"clsZelBaseCoding", Create<VnZEL10cmn::clsZelBaseCoding>},
    {&CLSID_clsZelItemCash, L"clsZelItemCash", Create<VnZEL10cmn::clsZelItemCash>},
    {&CLSID_clsZelItemList, L"clsZelItemList", Create<VnZEL10cmn::clsZelItemList>},
    {&CLSID_clsZelListItemFact, L"clsZelListItemFact", Create<VnZEL10cmn::clsZelListItemFact>},
    {&CLSID_clsZelVatItem, L"clsZelVatItem", Create<VnZEL10cmn::clsZelVatItem>},
    {&CLSID_clsZelVatList, L"clsZelVatList", Create<VnZEL10cmn::clsZelVatList>},
    {&CLSID_clsZelContainer, L"clsZelContainer", Create<VnZEL10cmn::clsZelContainer>},
    {&CLSID_clsZelTransAct, L"clsZelTransAct", Create<VnZEL10cmn::clsZelTransAct>},
    {&CLSID_clsZelReport, L"clsZelReport", Create<VnZEL10cmn::clsZelReport>},
    {&CLSID_clsZelTransActData, L"clsZelTransActData", Create<VnZEL10cmn::clsZelTransActData>},
    {&CLSID_clsZelItemPrint, L"clsZelItemPrint", Create<VnZEL10cmn::clsZelItemPrint>},
    {&CLSID_clsZelRprtPrint, L"clsZelRprtPrint", Create<VnZEL10cmn::clsZelRprtPrint>},
};

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const PublishedClass& published) : published_(published) { LockModule(); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    if (result == nullptr) return E_POINTER;
    *result = id == IID_IUnknown || id == IID_IClassFactory ? this : nullptr;
    if (*result == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** result) override {
    constexpr std::string_view kSource = "ClassFactory";
    if (result == nullptr) return Refuse(E_POINTER, kSource);
    *result = nullptr;
    if (outer != nullptr) return Refuse(CLASS_E_NOAGGREGATION, kSource);
    return Guarded(kSource, [&] { Require(published_.create()->QueryInterface(id, result)); });
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    lock ? LockModule() : UnlockModule();
    return S_OK;
  }

 private:
  virtual ~ClassFactory() { UnlockModule(); }

  const PublishedClass& published_;
  LONG references_ = 1;
};

}  // namespace

void LockModule() noexcept { InterlockedIncrement(&locks); }
void UnlockModule() noexcept { InterlockedDecrement(&locks); }
bool IsModuleLocked() noexcept { return locks != 0; }

std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) throw ComFailure(HRESULT_FROM_WIN32(GetLastError()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

ComPtr<ITypeLib> TypeLibrary() {
  static std::mutex mutex;
  static ComPtr<ITypeLib> library;
  const std::lock_guard lock(mutex);
  if (!library) Require(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library.Put()));
  return library;
}

PublishedClasses Classes() noexcept { return {std::begin(kClasses), std::end(kClasses)}; }

}  // namespace automation

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) automation::module = instance;
  return TRUE;
}

HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID id, LPVOID* result) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  for (const automation::PublishedClass& published : automation::Classes()) {
    if (*published.id != classId) continue;
    const auto factory =
        automation::ComPtr<IClassFactory>::Adopt(new (std::nothrow) automation::ClassFactory(published));
    return factory ? factory->QueryInterface(id, result) : E_OUTOFMEMORY;
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT WINAPI DllCanUnloadNow() { return automation::IsModuleLocked() ? S_FALSE : S_OK; }

HRESULT WINAPI DllRegisterServer() { return automation::Register(automation::For::MachineOrUser); }

HRESULT WINAPI DllUnregisterServer() { return automation::Unregister(); }

/// regsvr32 /n /i:user registers for the user alone.
HRESULT WINAPI DllInstall(BOOL install, LPCWSTR commandLine) {
  if (!install) return automation::Unregister();
  const bool forUser = commandLine != nullptr && std::wstring_view(commandLine) == L"user";
  return automation::Register(forUser ? automation::For::User : automation::For::MachineOrUser);
}

}  // extern "C"
