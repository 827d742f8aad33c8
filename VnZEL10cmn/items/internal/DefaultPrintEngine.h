#pragma once

#include <memory>
#include <string>

#include "VnZEL10cmn/items/IVnZelItem.h"

namespace VnZEL10cmn {

class clsZelItemPrint;
class clsZelTransAct;

namespace internal {

// Items and bookings own a print engine that stands above them. They reach it through these functions, which
// are defined beside the engine.

/// A new standard engine.
std::shared_ptr<clsZelItemPrint> CreateDefaultPrintEngine();

/// The engine's text of an item.
std::string RenderItem(clsZelItemPrint& engine, const std::shared_ptr<IVnZelItem>& item, clsVnError* errors);

/// The engine's text of a booking.
std::string RenderBooking(clsZelItemPrint& engine, const std::shared_ptr<clsZelTransAct>& booking,
                          clsVnError* errors);

}  // namespace internal
}  // namespace VnZEL10cmn
