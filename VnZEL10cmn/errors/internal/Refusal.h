#pragma once

#include <optional>
#include <string>

#include "VnZEL10cmn/errors/ZELErrorCodes.h"

namespace VnZEL10cmn::internal {

/// Why something is refused: the public operation that met it files it under its own name.
struct Refusal {
  ZELErrorCodes number;
  std::string message;
};

/// A refusal, or none when all went well.
using MaybeRefusal = std::optional<Refusal>;

}  // namespace VnZEL10cmn::internal
