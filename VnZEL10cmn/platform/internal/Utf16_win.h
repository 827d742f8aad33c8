#pragma once

#include <string>
#include <string_view>

namespace VnZEL10cmn::platform {

/// A UTF-8 text as Windows takes it; ill-formed sequences become U+FFFD.
std::wstring ToWide(std::string_view text);

/// A Windows text as UTF-8.
std::string FromWide(std::wstring_view text);

}  // namespace VnZEL10cmn::platform
