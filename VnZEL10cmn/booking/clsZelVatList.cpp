#include "VnZEL10cmn/booking/clsZelVatList.h"

#include <algorithm>
#include <string>
#include <utility>

#include "VnZEL10cmn/booking/internal/RateSets.h"
#include "VnZEL10cmn/types/RunTimeFaults.h"
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

/// Whether two sets have a day in common. A period never ends before it begins.
bool Overlap(const clsZelVatItem& added, const clsZelVatItem& present) {
  return added.ValidUpTo() >= present.ValidFrom() && added.ValidFrom() <= present.ValidUpTo();
}

/// Why a new set can't be added beside one that it overlaps. What starts inside the other and what reaches into it from
/// before are all the overlaps that there are.
std::string OverlapMessage(const clsZelVatItem& added, const clsZelVatItem& present) {
  const auto settings = internal::CurrentRegionalSettings();
  const auto shown = [&settings](Date date) { return internal::FormatDateTime(date, settings); };
  const bool startsInside = Within(added.ValidFrom(), present);
  return internal::Compose("Zeitraumüberschneidung gefunden!", startsInside ? kNewFrom : kNewUpTo,
                           shown(startsInside ? added.ValidFrom() : added.ValidUpTo()), kPresentFrom,
                           shown(present.ValidFrom()), kPresentUpTo, shown(present.ValidUpTo()));
}

}  // namespace

clsZelVatList::clsZelVatList() : VnObject("clsZelVatList"), sets_(std::make_shared<internal::RateSets>()) {
  auto before2007 = std::make_shared<clsZelVatItem>();
  before2007->SetDates(Date::FromCivil(2000, 1, 1), Date::FromCivil(2006, 12, 31));
  before2007->VatRate2(ZELVatClasses::Standard, 16);
  // Not through AddItem: it swallows exceptions, and the list would lack a period.
  sets_->Add(std::move(before2007));
  sets_->Add(std::make_shared<clsZelVatItem>());
}

clsZelVatList::~clsZelVatList() {
  // An iterator that is still there comes to its end.
  sets_->Clear();
}

ListIterator<clsZelVatItem> clsZelVatList::begin() const { return sets_->begin(); }

std::int32_t clsZelVatList::Count() const noexcept { return static_cast<std::int32_t>(sets_->Sets().size()); }

std::shared_ptr<clsZelVatItem> clsZelVatList::VatItem(std::int32_t Index) const {
  if (Index < 0 || Index > Count()) {
    return nullptr;
  }
  if (Index == 0) {
    internal::ThrowOutOfRange();
  }
  return sets_->Sets()[static_cast<std::size_t>(Index) - 1];
}

std::shared_ptr<clsZelVatItem> clsZelVatList::GetItemOfDate(Date VatDate) {
  return RunFor<std::shared_ptr<clsZelVatItem>>("GetItemOfDate", [&]() -> std::shared_ptr<clsZelVatItem> {
    const Date date = std::clamp(VatDate, clsZelVatItem::EarliestDate(), clsZelVatItem::LatestDate());
    const auto& sets = sets_->Sets();
    const auto found =
        std::find_if(sets.begin(), sets.end(), [date](const auto& set) { return Within(date, *set); });
    return found == sets.end() ? nullptr : *found;
  });
}

void clsZelVatList::Clear() {
  ClearErr();
  sets_->Clear();
}

bool clsZelVatList::AddItem(std::shared_ptr<clsZelVatItem> Item) {
  constexpr std::string_view operation = "AddItem";
  return Run(operation, [&] {
    if (!Item) {
      internal::ThrowObjectNotSet();
    }
    for (const std::shared_ptr<clsZelVatItem>& present : sets_->Sets()) {
      if (Overlap(*Item, *present)) {
        return Fail(ZELErrorCodes::Err_Cmn_NotSpec, OverlapMessage(*Item, *present), operation);
      }
    }
    sets_->Add(std::move(Item));
    return true;
  });
}

}  // namespace VnZEL10cmn
