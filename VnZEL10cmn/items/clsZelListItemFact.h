#pragma once

#include <memory>

#include "VnZEL10cmn/items/IVnZelItem.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// Makes the items that a list decodes. A host with item classes of its own derives from it.
class VNZEL10CMN_API clsZelListItemFact : public VnObject {
 public:
  /// A factory of cash items.
  clsZelListItemFact();
  ~clsZelListItemFact() override;

  /// A new, empty item; here a `clsZelItemCash`. `ErrObj` is not used. A factory that returns none makes reading fail, with
  /// its own error if it filed one, otherwise with 91.
  virtual std::shared_ptr<IVnZelItem> CreateNewItem(clsVnError* ErrObj = nullptr);
};

}  // namespace VnZEL10cmn
