#include "automation/Registration.h"

#include <array>
#include <string>
#include <utility>

#include "automation/Failure.h"
#include "automation/Module.h"

// Not in every compiler's headers, though in the system's library.
extern "C" {
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* help);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID id, WORD major, WORD minor, LCID locale, SYSKIND kind);
}

namespace automation {

namespace {

constexpr const wchar_t* kClassesKey = L"Software\\Classes\\";
constexpr const wchar_t* kLibrary = L"VnZEL10cmn.";
constexpr unsigned short kMajor = 1;
constexpr unsigned short kMinor = 0;

void RequireSuccess(LSTATUS status) { Require(HRESULT_FROM_WIN32(static_cast<DWORD>(status))); }

std::wstring Text(REFGUID id) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

void SetValue(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& value) {
  RequireSuccess(RegSetKeyValueW(root, (kClassesKey + key).c_str(), name, REG_SZ, value.c_str(),
                                 static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))));
}

void RemoveTree(HKEY root, const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(root, (kClassesKey + key).c_str());
  if (status != ERROR_FILE_NOT_FOUND) RequireSuccess(status);
}

/// Keys that others share are left when something stands in them.
void RemoveIfEmpty(HKEY root, const std::wstring& key) {
  const std::wstring whole = kClassesKey + key;
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, whole.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return;
  DWORD keys = 1;
  DWORD values = 1;
  RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr,
                   nullptr, nullptr);
  RegCloseKey(opened);
  if (keys == 0 && values == 0) RegDeleteKeyW(root, whole.c_str());
}

void RegisterTypes(bool forUser) {
  std::wstring path = ModulePath();
  const ComPtr<ITypeLib> library = TypeLibrary();
  Require(forUser ? RegisterTypeLibForUser(library.Get(), path.data(), nullptr)
                  : RegisterTypeLib(library.Get(), path.data(), nullptr));
}

void UnregisterTypes() {
#ifdef _WIN64
  constexpr SYSKIND kind = SYS_WIN64;
#else
  constexpr SYSKIND kind = SYS_WIN32;
#endif
  UnRegisterTypeLib(LIBID_VnZEL10cmn, kMajor, kMinor, LOCALE_NEUTRAL, kind);
  UnRegisterTypeLibForUser(LIBID_VnZEL10cmn, kMajor, kMinor, LOCALE_NEUTRAL, kind);
}

void RegisterIn(HKEY root) {
  const std::wstring path = ModulePath();
  for (const PublishedClass& published : Classes()) {
    const std::wstring program = std::wstring(kLibrary) + published.name;
    const std::wstring id = Text(*published.id);
    const std::wstring key = L"CLSID\\" + id;
    SetValue(root, key, nullptr, program);
    SetValue(root, key + L"\\InprocServer32", nullptr, path);
    SetValue(root, key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    SetValue(root, key + L"\\ProgID", nullptr, program);
    SetValue(root, key + L"\\Programmable", nullptr, L"");
    SetValue(root, key + L"\\TypeLib", nullptr, Text(LIBID_VnZEL10cmn));
    SetValue(root, key + L"\\Version", nullptr, std::to_wstring(kMajor) + L"." + std::to_wstring(kMinor));
    SetValue(root, program, nullptr, program);
    SetValue(root, program + L"\\CLSID", nullptr, id);
  }
}

/// Whether the class is registered for programs of the other width: both have the program's name in common, but class
/// identifiers of their own. On a system of one width there is no other view, and nothing in this one any more.
bool OtherWidthHas(HKEY root, const std::wstring& id) {
#ifdef _WIN64
  constexpr REGSAM kOther = KEY_WOW64_32KEY;
#else
  constexpr REGSAM kOther = KEY_WOW64_64KEY;
#endif
  const std::wstring key = std::wstring(kClassesKey) + L"CLSID\\" + id + L"\\InprocServer32";
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ | kOther, &opened) != ERROR_SUCCESS) return false;
  RegCloseKey(opened);
  return true;
}

void UnregisterIn(HKEY root) {
  for (const PublishedClass& published : Classes()) {
    const std::wstring id = Text(*published.id);
    RemoveTree(root, L"CLSID\\" + id);
    if (!OtherWidthHas(root, id)) RemoveTree(root, std::wstring(kLibrary) + published.name);
  }
  for (const wchar_t* const shared : {L"CLSID", L"Interface", L"TypeLib"}) {
    RemoveIfEmpty(root, shared);
  }
}

template <class Body>
HRESULT Result(Body&& body) noexcept {
  return Guarded("Registration", std::forward<Body>(body));
}

}  // namespace

HRESULT Register(For whom) noexcept {
  if (whom == For::MachineOrUser) {
    const HRESULT result = Result([] {
      RegisterIn(HKEY_LOCAL_MACHINE);
      RegisterTypes(false);
    });
    if (result != HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED)) return result;
  }
  return Result([] {
    RegisterIn(HKEY_CURRENT_USER);
    RegisterTypes(true);
  });
}

HRESULT Unregister() noexcept {
  UnregisterTypes();
  const HRESULT user = Result([] { UnregisterIn(HKEY_CURRENT_USER); });
  const HRESULT machine = Result([] { UnregisterIn(HKEY_LOCAL_MACHINE); });
  // Where the machine's part is closed there is nothing of this user's in it.
  return machine == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED) ? user : FAILED(machine) ? machine : user;
}

}  // namespace automation
