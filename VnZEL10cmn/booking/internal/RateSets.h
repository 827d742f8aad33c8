#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "VnZEL10cmn/booking/clsZelVatItem.h"
#include "VnZEL10cmn/types/ListIterator.h"

namespace VnZEL10cmn::internal {

/// The rate sets of a VAT list, which are only ever added or removed all at once: their tickets are consecutive.
class RateSets : public ListIterator<clsZelVatItem>::Source, public std::enable_shared_from_this<RateSets> {
 public:
  using Set = std::shared_ptr<clsZelVatItem>;
  using Iterator = ListIterator<clsZelVatItem>;

  Iterator begin() const { return {shared_from_this(), nextTicket_}; }
  const std::vector<Set>& Sets() const noexcept { return sets_; }

  void Add(Set set) {
    sets_.push_back(std::move(set));
    ++nextTicket_;
  }

  void Clear() noexcept {
    // The sets go last: their destructors may be a host's.
    const std::vector<Set> sets = std::move(sets_);
    sets_.clear();
  }

  Set Next(Iterator::Place& place, std::uint64_t end) const override {
    const std::uint64_t first = nextTicket_ - sets_.size();
    place.ticket = std::max(place.ticket, first);
    return place.ticket < std::min(end, nextTicket_) ? sets_[static_cast<std::size_t>(place.ticket - first)]
                                                     : nullptr;
  }

 private:
  std::vector<Set> sets_;
  std::uint64_t nextTicket_ = 0;
};

}  // namespace VnZEL10cmn::internal
