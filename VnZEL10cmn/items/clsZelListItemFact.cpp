#include "VnZEL10cmn/items/clsZelListItemFact.h"

#include "VnZEL10cmn/items/clsZelItemCash.h"

namespace VnZEL10cmn {

clsZelListItemFact::clsZelListItemFact() : VnObject("clsZelListItemFact") {}

clsZelListItemFact::~clsZelListItemFact() = default;

std::shared_ptr<IVnZelItem> clsZelListItemFact::CreateNewItem(clsVnError*) {
  return RunFor<std::shared_ptr<IVnZelItem>>("CreateNewItem",
                                             [] { return std::make_shared<clsZelItemCash>(); });
}

}  // namespace VnZEL10cmn
