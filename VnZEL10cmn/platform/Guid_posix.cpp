#include <unistd.h>
#ifdef __APPLE__
#include <sys/random.h>
#endif

#include "VnZEL10cmn/platform/internal/Guid.h"

namespace VnZEL10cmn::platform {

NewUuid CreateUuid() {
  NewUuid uuid;
  if (getentropy(uuid.bytes.data(), uuid.bytes.size()) != 0) {
    uuid.status = kNoUuid;
    return uuid;
  }
  // A random UUID says so: version 4, variant 1.
  uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0F) | 0x40);
  uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3F) | 0x80);
  return uuid;
}

}  // namespace VnZEL10cmn::platform
