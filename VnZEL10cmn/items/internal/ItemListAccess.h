#pragma once

#include "VnZEL10cmn/items/clsZelItemList.h"

namespace VnZEL10cmn {

/// What bookings and reports see of their item list beyond what hosts do.
struct ItemListAccess {
  /// Whether asking the items once more would give the same: a host's own may answer as it likes.
  static bool IsConstant(const clsZelItemList& list) noexcept { return list.items_.HasCashItemsOnly(); }
};

}  // namespace VnZEL10cmn
