#include <string_view>

#include "VnZEL10cmn/platform/internal/Guid.h"

namespace VnZEL10cmn::platform {

std::string GuidText(const NewUuid& uuid) {
  std::string text;
  if (uuid.status == kNoNetworkAddress) {
    return text;
  }
  constexpr std::string_view digits = "0123456789ABCDEF";
  text.reserve(36);
  for (const std::uint8_t byte : uuid.bytes) {
    if (text.size() == 8 || text.size() == 13 || text.size() == 18 || text.size() == 23) {
      text.push_back('-');
    }
    text.push_back(digits[byte >> 4]);
    text.push_back(digits[byte & 15]);
  }
  return text;
}

}  // namespace VnZEL10cmn::platform
