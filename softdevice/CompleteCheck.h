#pragma once

#include "softdevice/Check.h"
#include "softdevice/Database.h"
#include "softdevice/Tables.h"

namespace softdevice {

/// The check of `CheckDeviceFile` on an open file of any version.
CheckResult CheckCompletely(const Database& database, FileVersion version, const CheckOptions& options);

}  // namespace softdevice
