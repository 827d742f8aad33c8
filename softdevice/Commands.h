#pragma once

#include "softdevice/Database.h"
#include "softdevice/Device.h"
#include "softdevice/DeviceFile.h"
#include "softdevice/Request.h"

namespace softdevice {

/// Does what the request asks for, within a transaction that the caller begins and commits: also when the
/// answer is a refusal, as a wrong PIN is recorded. Throws `Refusal` where there is nothing to commit.
Answer Perform(const Database& database, const Identity& identity, const Request& request);

}  // namespace softdevice
