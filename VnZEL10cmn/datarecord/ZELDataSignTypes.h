#pragma once

#include <cstdint>

namespace VnZEL10cmn {

/// How the device signs a data record.
enum class ZELDataSignTypes : std::int32_t {
  DataOnly = 1,     ///< the data alone
  DataAndTpID = 2,  ///< the data with taxpayer ID and running device number
  DataAndTime = 3,  ///< the data with these and a time stamp
};

}  // namespace VnZEL10cmn
