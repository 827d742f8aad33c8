#pragma once

#include <cstdint>

namespace VnZEL10cmn {

/// The device's state. A device may tell others.
enum class ZelLifeCycle : std::int32_t {
  Undefined = 0,     ///< not set
  Initialized = 1,   ///< initialized
  Personalized = 2,  ///< personalized
  Activated = 3,     ///< activated
  Deactivated = 4,   ///< deactivated
};

}  // namespace VnZEL10cmn
