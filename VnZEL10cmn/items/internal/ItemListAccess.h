#pragma once

#include "VnZEL10cmn/items/clsZelItemList.h"
#include "VnZEL10cmn/items/internal/ItemStore.h"

namespace VnZEL10cmn {

/// What bookings and reports see of their item list beyond what hosts do.
struct ItemListAccess {
  /// The items, for those who call none of a host's code.
  static const internal::ItemStore& Items(const clsZelItemList& list) noexcept { return *list.items_; }

  /// Whether asking the items once more would give the same: a host's own may answer as it likes.
  static bool IsConstant(const clsZelItemList& list) noexcept { return list.items_->HasCashItemsOnly(); }

  /// Whether the items are made by the host, which may change them while the next ones are read.
  static bool HasHostFactory(const clsZelItemList& list) noexcept { return list.itemFactory_ != nullptr; }
};

}  // namespace VnZEL10cmn
