#include <random>

#include "VnZEL10cmn/platform/internal/Guid.h"

namespace VnZEL10cmn::platform {

NewUuid CreateUuid() {
  std::random_device random;
  NewUuid uuid;
  for (std::size_t i = 0; i < uuid.bytes.size(); i += 4) {
    const std::uint32_t word = random();
    for (std::size_t j = 0; j < 4; ++j) {
      uuid.bytes[i + j] = static_cast<std::uint8_t>(word >> (8 * j));
    }
  }
  // A random UUID says so: version 4, variant 1.
  uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0F) | 0x40);
  uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3F) | 0x80);
  return uuid;
}

}  // namespace VnZEL10cmn::platform
