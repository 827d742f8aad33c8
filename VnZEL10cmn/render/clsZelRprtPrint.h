#pragma once

#include <memory>
#include <string>

#include "VnZEL10cmn/items/IVnZelItem.h"
#include "VnZEL10cmn/render/Renderer.h"
#include "VnZEL10cmn/report/clsZelReport.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// Renders reports as German text with a table of the nine containers, 164 columns wide. A host with a layout
/// of its own derives from it. What `clsZelItemPrint` says of error objects and of keeping what is rendered holds here too.
class VNZEL10CMN_API clsZelRprtPrint : public Renderer {
 public:
  /// The standard layout.
  clsZelRprtPrint();
  ~clsZelRprtPrint() override;

  /// Items are not rendered here: always "Wird hier nicht unterstützt!".
  virtual std::string ToStringItmRpt(std::shared_ptr<IVnZelItem> Item, clsVnError* ErrObj = nullptr);

  /// A report. A signature that can't be decoded is a failure and leaves its lines blank; after other
  /// failures the text is empty.
  virtual std::string ToStringRprt(std::shared_ptr<clsZelReport> RprtItem, clsVnError* ErrObj = nullptr);
  /// The same for a report that the caller keeps.
  std::string ToStringRprt(clsZelReport& RprtItem, clsVnError* ErrObj = nullptr);
};

}  // namespace VnZEL10cmn
