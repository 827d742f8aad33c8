#pragma once

#include <string>
#include <string_view>

#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// SHA-256 of texts.
class VNZEL10CMN_API clsSHA256 {
 public:
  /// The digest of the low bytes of the text's UTF-16 code units, 64 lower-case hexadecimal digits.
  std::string SHA256(std::string_view Message) const;
};

}  // namespace VnZEL10cmn
