#pragma once

#include <ctime>

namespace VnZEL10cmn::platform {

/// The parts of a moment in the host's time zone; all zero when the system cannot tell.
std::tm LocalTime(std::time_t moment);

}  // namespace VnZEL10cmn::platform
