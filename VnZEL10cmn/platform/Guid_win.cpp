#include <windows.h>
// windows.h first: rpc.h does not stand alone.
#include <rpc.h>

#include "VnZEL10cmn/platform/internal/Guid.h"

namespace VnZEL10cmn::platform {

NewUuid CreateUuid() {
  UUID uuid{};
  NewUuid result;
  result.status = static_cast<std::int32_t>(::UuidCreate(&uuid));
  const auto put = [&result](std::size_t at, std::uint32_t value, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      result.bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * (count - 1 - i)));
    }
  };
  put(0, uuid.Data1, 4);
  put(4, uuid.Data2, 2);
  put(6, uuid.Data3, 2);
  for (std::size_t i = 0; i < 8; ++i) {
    result.bytes[8 + i] = uuid.Data4[i];
  }
  return result;
}

}  // namespace VnZEL10cmn::platform
