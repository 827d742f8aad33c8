#pragma once

#include <array>
#include <cstdint>
#include <typeinfo>

#include "VnZEL10cmn/items/clsZelItemCash.h"

namespace VnZEL10cmn {

/// What the library sees of its own items beyond what hosts do.
struct CashItemAccess {
  /// Items can be locked, though nothing in the library does it yet: the tests of the lock reach it through here.
  static void Lock(clsZelItemCash& item) { item.canEdit_ = false; }

  /// The item if it is a cash item and not of a class that a host made of it.
  static clsZelItemCash* Get(IVnZelItem& item) noexcept {
    return typeid(item) == typeid(clsZelItemCash) ? static_cast<clsZelItemCash*>(&item) : nullptr;
  }

  /// The bytes of the instance ID, which is made if there is none yet; none where the system has none to give.
  static const std::array<std::uint8_t, 16>* Id(clsZelItemCash& item) {
    return item.MakeIdentity() ? &item.id_ : nullptr;
  }

  /// The same without making one.
  static const std::array<std::uint8_t, 16>* KnownId(const clsZelItemCash& item) noexcept {
    return item.hasId_ ? &item.id_ : nullptr;
  }

  /// The prices of the VAT classes 0 to 5.
  static const std::array<Currency, 6>& Prices(const clsZelItemCash& item) noexcept { return item.prices_; }

  /// In how many lists it is.
  static std::uint32_t& Lists(clsZelItemCash& item) noexcept { return item.lists_; }
};

}  // namespace VnZEL10cmn
