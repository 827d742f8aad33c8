#pragma once

#include "automation/Com.h"

namespace automation {

/// Stands in the library for an object of a host's own class.
class HostObject {
 public:
  /// The host's object.
  [[nodiscard]] virtual IUnknown* Host() const noexcept = 0;

 protected:
  ~HostObject() = default;
};

}  // namespace automation
