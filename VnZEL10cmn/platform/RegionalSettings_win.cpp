#include <windows.h>

#include <array>

#include "VnZEL10cmn/platform/internal/RegionalSettings.h"
#include "VnZEL10cmn/platform/internal/Utf16_win.h"

namespace VnZEL10cmn::platform {

namespace {

void Read(LCTYPE type, std::string& value) {
  std::array<wchar_t, 16> text{};
  const int length =
      ::GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, type, text.data(), static_cast<int>(text.size()));
  if (length > 1) {
    value = FromWide(std::wstring_view(text.data(), static_cast<std::size_t>(length - 1)));
  }
}

}  // namespace

RegionalSettings CurrentRegionalSettings() {
  RegionalSettings settings;
  Read(LOCALE_SDECIMAL, settings.decimal);
  Read(LOCALE_STHOUSAND, settings.thousands);
  Read(LOCALE_SDATE, settings.date);
  Read(LOCALE_STIME, settings.time);
  return settings;
}

}  // namespace VnZEL10cmn::platform
