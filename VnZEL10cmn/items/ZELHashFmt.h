#pragma once

#include <cstdint>

namespace VnZEL10cmn {

/// How a hash is shown as text.
enum class ZELHashFmt : std::int32_t {
  Base64 = 0,   ///< Base64
  Base32 = 1,   ///< Base32
  Base32H = 2,  ///< shown as Base64
  Base16 = 3,   ///< hexadecimal digits
};

}  // namespace VnZEL10cmn
