#pragma once

#include <string>

#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// What a log file can write. A host may implement it for entries of its own.
class VNZEL10CMN_API IVnLogItem {
 public:
  virtual ~IVnLogItem() = default;

  /// The complete entry, its lines separated by CR LF; empty when there is nothing to write.
  virtual std::string GetLogEntry() = 0;
};

}  // namespace VnZEL10cmn
