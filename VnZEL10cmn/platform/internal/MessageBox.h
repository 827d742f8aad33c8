#pragma once

#include <cstdint>
#include <string_view>

namespace VnZEL10cmn::platform {

/// Shows a modal message box with the style flags of the Windows one; the result is the code of the button
/// pressed, 1 OK to 7 No.
std::int32_t ShowMessageBox(std::string_view text, std::int32_t style, std::string_view title);

}  // namespace VnZEL10cmn::platform
