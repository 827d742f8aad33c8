#pragma once

#include "VnZEL10cmn/items/clsZelItemCash.h"

namespace VnZEL10cmn {

/// Items can be locked, though nothing in the library does it yet: the tests of the lock reach it through
/// here.
struct CashItemAccess {
  static void Lock(clsZelItemCash& item) { item.canEdit_ = false; }
};

}  // namespace VnZEL10cmn
