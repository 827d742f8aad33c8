#pragma once

#include <cstdint>

#include "softdevice/Database.h"
#include "softdevice/Device.h"
#include "softdevice/Key.h"
#include "softdevice/Records.h"
#include "softdevice/Request.h"
#include "softdevice/State.h"

namespace softdevice {

/// The keys of a device. What the one signs has to verify with the other.
struct Keys {
  Key signing;
  Key verifying;
};

/// What the response to such a request begins with: all that doesn't depend on the totals.
Bytes BeginResponse(const StoredState& state, Command command, std::uint32_t number);

/// Does what the request asks for, within a transaction that the caller begins and commits: also when the
/// answer is a refusal, as a wrong PIN is recorded. `state` is the one that was read, and becomes the one that was
/// written. What was written has been read again and compared before this returns. Throws `Refusal` where there is
/// nothing to commit.
Answer Perform(const Database& database, const Keys& keys, const Request& request, StoredState& state);

}  // namespace softdevice
