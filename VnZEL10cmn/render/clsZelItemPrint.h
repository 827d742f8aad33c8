#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/booking/clsZelTransAct.h"
#include "VnZEL10cmn/errors/VnObject.h"
#include "VnZEL10cmn/items/IVnZelItem.h"

namespace VnZEL10cmn {

/// Renders items and bookings as plain text receipts: German, fixed columns, CR LF, numbers and dates with the
/// host's regional characters. A host with a layout of its own derives from it.
///
/// A failure goes to the error object handed in, if any; the result is then empty.
class clsZelItemPrint : public VnObject {
 public:
  /// The standard layout.
  clsZelItemPrint();
  virtual ~clsZelItemPrint();

  /// A booking item, one line per price. Fails with 9001 for an item that is no cash item.
  virtual std::string ToStringCI(std::shared_ptr<IVnZelItem> Item, clsVnError* ErrObj = nullptr);
  /// The same for an item that the caller keeps.
  std::string ToStringCI(IVnZelItem& Item, clsVnError* ErrObj = nullptr);

  /// A booking receipt.
  virtual std::string ToStringBI(std::shared_ptr<clsZelTransAct> BookItem, clsVnError* ErrObj = nullptr);
  /// The same for a booking that the caller keeps.
  std::string ToStringBI(clsZelTransAct& BookItem, clsVnError* ErrObj = nullptr);

 private:
  /// Runs a rendering and hands its failure, if any, to the error object given.
  template <class Body>
  std::string Render(std::string_view operation, clsVnError* errObj, Body&& body);
};

}  // namespace VnZEL10cmn
