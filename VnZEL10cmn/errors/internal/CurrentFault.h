#pragma once

#include "VnZEL10cmn/types/RunTimeFaults.h"

namespace VnZEL10cmn::internal {

/// The run-time number of the exception that is being handled. To be called in a catch clause only.
RunTimeNumber CurrentFault() noexcept;

}  // namespace VnZEL10cmn::internal
