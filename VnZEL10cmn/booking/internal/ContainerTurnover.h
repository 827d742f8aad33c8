#pragma once

#include "VnZEL10cmn/booking/clsZelContainer.h"

namespace VnZEL10cmn {

/// Hosts only read a container's turnover; bookings and reports set it through here.
struct ContainerTurnover {
  static void Set(clsZelContainer& container, Currency value) { container.turnover_ = value; }
};

}  // namespace VnZEL10cmn
