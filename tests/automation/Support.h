#pragma once

#include <windows.h>

// After windows.h.
#include <oleauto.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

/// What the test programs of the automation server have in common.
namespace test {

inline std::wstring Widen(std::string_view text) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0)),
                    L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

inline std::string Narrow(std::wstring_view text) {
  const int size = static_cast<int>(text.size());
  std::string narrow(static_cast<std::size_t>(
                         WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr)),
                     '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), size, narrow.data(), static_cast<int>(narrow.size()), nullptr,
                      nullptr);
  return narrow;
}

inline std::string Narrow(BSTR text) { return Narrow(std::wstring_view(text, SysStringLen(text))); }

inline void Require(HRESULT result, const std::string& what) {
  if (SUCCEEDED(result)) return;
  char code[16];
  std::snprintf(code, sizeof code, "0x%08lX", static_cast<unsigned long>(result));
  throw std::runtime_error(what + ": " + code);
}

}  // namespace test
