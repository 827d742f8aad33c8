#pragma once

#include "softdevice/Database.h"
#include "softdevice/Tables.h"

namespace softdevice {

/// Brings a file of an older version up to date, within a transaction that the caller begins and commits: after a
/// complete check, as what is damaged would get digests that say it isn't. Throws where something is damaged.
void Update(const Database& database, FileVersion version);

}  // namespace softdevice
