#pragma once

#include "automation/Com.h"

namespace automation {

/// For whom the classes are registered: for all users of the machine, and where its part of the registry is
/// closed for this user alone; or for this user from the beginning.
enum class For { MachineOrUser, User };

HRESULT Register(For whom) noexcept;

/// Takes away what `Register` wrote, for the machine and for the user.
HRESULT Unregister() noexcept;

}  // namespace automation
