#include "VnZEL10cmn/booking/clsZelVatList.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

namespace {

constexpr std::string_view kNewFrom = "\r\n    Neu von ...........: ";
constexpr std::string_view kNewUpTo = "\r\n    Neu bis ...........: ";
constexpr std::string_view kPresentFrom = "\r\n    vorhanden von .....: ";
constexpr std::string_view kPresentUpTo = "\r\n    vorhanden bis .....: ";

bool Within(Date date, const clsZelVatItem& set) {
  return set.ValidFrom() <= date && date <= set.ValidUpTo();
}

/// Why a new set can't stand beside a present one; empty when it can. A period never ends before it begins,
/// so what starts inside the other and what reaches into it from before are all the overlaps that there are.
std::string Overlap(const clsZelVatItem& added, const clsZelVatItem& present) {
  const auto settings = internal::CurrentRegionalSettings();
  const auto shown = [&settings](Date date) { return internal::FormatDateTime(date, settings); };
  constexpr std::string_view title = "Zeitraumüberschneidung gefunden!";
  if (Within(added.ValidFrom(), present)) {
    return internal::Compose(title, kNewFrom, shown(added.ValidFrom()), kPresentFrom,
                             shown(present.ValidFrom()), kPresentUpTo, shown(present.ValidUpTo()));
  }
  if (added.ValidUpTo() >= present.ValidFrom() && added.ValidFrom() <= present.ValidUpTo()) {
    return internal::Compose(title, kNewUpTo, shown(added.ValidUpTo()), kPresentFrom,
                             shown(present.ValidFrom()), kPresentUpTo, shown(present.ValidUpTo()));
  }
  return {};
}

}  // namespace

clsZelVatList::clsZelVatList() : VnObject("clsZelVatList") {
  auto before2007 = std::make_shared<clsZelVatItem>();
  before2007->SetDates(Date::FromCivil(2000, 1, 1), Date::FromCivil(2006, 12, 31));
  before2007->VatRate2(ZELVatClasses::Standard, 16);
  // Not by AddItem, which keeps to itself what it meets: a list without one of them is none.
  items_ = {std::move(before2007), std::make_shared<clsZelVatItem>()};
}

clsZelVatList::~clsZelVatList() = default;

std::int32_t clsZelVatList::Count() const noexcept { return static_cast<std::int32_t>(items_.size()); }

std::shared_ptr<clsZelVatItem> clsZelVatList::VatItem(std::int32_t Index) const {
  if (Index < 0 || Index > Count()) {
    return nullptr;
  }
  return items_.at(static_cast<std::size_t>(Index) - 1);
}

std::shared_ptr<clsZelVatItem> clsZelVatList::GetItemOfDate(Date VatDate) {
  return RunFor<std::shared_ptr<clsZelVatItem>>("GetItemOfDate", [&]() -> std::shared_ptr<clsZelVatItem> {
    const Date date = std::clamp(VatDate, clsZelVatItem::EarliestDate(), clsZelVatItem::LatestDate());
    const auto found =
        std::find_if(items_.begin(), items_.end(), [date](const auto& set) { return Within(date, *set); });
    return found == items_.end() ? nullptr : *found;
  });
}

void clsZelVatList::Clear() {
  ClearErr();
  items_.clear();
}

bool clsZelVatList::AddItem(std::shared_ptr<clsZelVatItem> Item) {
  constexpr std::string_view operation = "AddItem";
  return Run(operation, [&] {
    if (!Item) {
      throw std::logic_error("no rate set");
    }
    for (const std::shared_ptr<clsZelVatItem>& present : items_) {
      const std::string overlap = Overlap(*Item, *present);
      if (!overlap.empty()) {
        return Fail(ZELErrorCodes::Err_Cmn_NotSpec, overlap, operation);
      }
    }
    items_.push_back(std::move(Item));
    return true;
  });
}

}  // namespace VnZEL10cmn
