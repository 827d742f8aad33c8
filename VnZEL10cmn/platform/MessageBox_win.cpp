#include <windows.h>

#include "VnZEL10cmn/platform/internal/MessageBox.h"
#include "VnZEL10cmn/platform/internal/Utf16_win.h"

namespace VnZEL10cmn::platform {

std::int32_t ShowMessageBox(std::string_view text, std::int32_t style, std::string_view title) {
  return ::MessageBoxW(nullptr, ToWide(text).c_str(), ToWide(title).c_str(), static_cast<UINT>(style));
}

}  // namespace VnZEL10cmn::platform
