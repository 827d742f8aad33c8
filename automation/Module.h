#pragma once

#include <string>

#include "automation/Com.h"

/// What belongs to the DLL as a whole.
namespace automation {

/// Counts what keeps the DLL loaded.
void LockModule() noexcept;
void UnlockModule() noexcept;
bool IsModuleLocked() noexcept;

/// Where the DLL stands.
std::wstring ModulePath();

/// The type library inside the DLL. Throws `ComFailure`.
ComPtr<ITypeLib> TypeLibrary();

/// An object of a class, as `IUnknown`; empty where there is no such class.
ComPtr<IUnknown> CreateObject(REFCLSID classId);

/// The creatable classes.
struct PublishedClass {
  const CLSID* id;
  const wchar_t* name;
  ComPtr<IUnknown> (*create)();
};
struct PublishedClasses {
  const PublishedClass* first;
  const PublishedClass* last;
  const PublishedClass* begin() const noexcept { return first; }
  const PublishedClass* end() const noexcept { return last; }
};
PublishedClasses Classes() noexcept;

}  // namespace automation
