#pragma once

#include <cstdint>
#include <memory>

#include "VnZEL10cmn/booking/clsZelVatItem.h"
#include "VnZEL10cmn/errors/VnObject.h"
#include "VnZEL10cmn/types/Date.h"
#include "VnZEL10cmn/types/Export.h"
#include "VnZEL10cmn/types/ListIterator.h"

namespace VnZEL10cmn {

namespace internal {
class RateSets;
}

/// The rate sets of all periods, which do not overlap. New: 16 and 7 percent for 2000 to 2006, 19 and 7
/// percent from 2007 on.
class VNZEL10CMN_API clsZelVatList : public VnObject {
 public:
  /// The two rate sets named above.
  clsZelVatList();
  ~clsZelVatList() override;

  /// Rate sets in list order; the list may change meanwhile, see `ListIterator`.
  ListIterator<clsZelVatItem> begin() const;
  /// The end of every list.
  ListIterator<clsZelVatItem> end() const noexcept { return {}; }

  /// Number of rate sets.
  std::int32_t Count() const noexcept;

  /// The rate set at a position counted from 1; none below 0 and above `Count`; throws std::out_of_range for
  /// 0.
  std::shared_ptr<clsZelVatItem> VatItem(std::int32_t Index) const;

  /// The rate set valid at a moment (kept within 2000 to 2099), or none.
  std::shared_ptr<clsZelVatItem> GetItemOfDate(Date VatDate);

  /// Removes all rate sets.
  void Clear();

  /// Appends a rate set. Fails with 9000 when its period overlaps that of another, 91 without a set.
  bool AddItem(std::shared_ptr<clsZelVatItem> Item);

 private:
  std::shared_ptr<internal::RateSets> sets_;
};

}  // namespace VnZEL10cmn
