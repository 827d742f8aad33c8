#pragma once

#include <memory>
#include <string>

#include "VnZEL10cmn/booking/clsZelTransAct.h"
#include "VnZEL10cmn/datarecord/clsZelTransActData.h"
#include "VnZEL10cmn/items/IVnZelItem.h"
#include "VnZEL10cmn/render/Renderer.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// Renders items, bookings and data records as plain text receipts: German, fixed columns, CR LF, numbers and
/// dates with the host's regional characters. A host with a layout of its own derives from it.
///
/// A failure goes to the error object handed in, if any; the result is then empty. After a success that error object is
/// clear, unless the rendered object filed something in it meanwhile. No object at all is 91.
///
/// An engine is given the std::shared_ptr that owns the object where there is one, and may keep it. For an object without
/// one (on the stack, or a part of another) it is given a pointer that owns nothing: that one is valid for the call only,
/// and an engine that keeps it ends the program in debug builds.
class VNZEL10CMN_API clsZelItemPrint : public Renderer {
 public:
  /// The standard layout.
  clsZelItemPrint();
  ~clsZelItemPrint() override;

  /// A booking item, one line per price. Fails with 9001 for an item that is no cash item.
  virtual std::string ToStringCI(std::shared_ptr<IVnZelItem> Item, clsVnError* ErrObj = nullptr);
  /// The same for an item that the caller keeps.
  std::string ToStringCI(IVnZelItem& Item, clsVnError* ErrObj = nullptr);

  /// A booking receipt.
  virtual std::string ToStringBI(std::shared_ptr<clsZelTransAct> BookItem, clsVnError* ErrObj = nullptr);
  /// The same for a booking that the caller keeps.
  std::string ToStringBI(clsZelTransAct& BookItem, clsVnError* ErrObj = nullptr);

  /// A signed data record's receipt.
  virtual std::string ToStringTRdata(std::shared_ptr<clsZelTransActData> BookItem,
                                     clsVnError* ErrObj = nullptr);
  /// The same for a data record that the caller keeps.
  std::string ToStringTRdata(clsZelTransActData& BookItem, clsVnError* ErrObj = nullptr);
};

}  // namespace VnZEL10cmn
