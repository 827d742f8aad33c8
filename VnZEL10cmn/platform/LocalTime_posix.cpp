#include <time.h>  // NOLINT(modernize-deprecated-headers): localtime_r is of this header

#include "VnZEL10cmn/platform/internal/LocalTime.h"

namespace VnZEL10cmn::platform {

std::tm LocalTime(std::time_t moment) {
  std::tm parts{};
  localtime_r(&moment, &parts);
  return parts;
}

}  // namespace VnZEL10cmn::platform
