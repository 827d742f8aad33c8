#include "VnZEL10cmn/items/ItemStore.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <optional>

#include "VnZEL10cmn/items/internal/CashItemAccess.h"
#include "VnZEL10cmn/platform/internal/Guid.h"
#include "VnZEL10cmn/platform/internal/Processor.h"

namespace VnZEL10cmn {

namespace {

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
constexpr std::uint32_t kFree = static_cast<std::uint32_t>(-1);
constexpr std::size_t kSmallestTable = 16;
constexpr std::size_t kFewGaps = 16;
constexpr std::size_t kFirstSlots = 8;
constexpr std::size_t kShortList = 256;

/// Instance IDs are random: any bits of them are as good as a hash.
std::uint32_t StartOf(const std::array<std::uint8_t, 16>& id) {
  std::uint32_t start = 0;
  std::memcpy(&start, id.data(), sizeof start);
  return start;
}

constexpr std::size_t LowestBit(std::size_t value) { return value & (~value + 1); }

}  // namespace

ItemStore::~ItemStore() { Clear(); }

std::size_t ItemStore::SlotAt(std::size_t position) const noexcept {
  if (empty_ == 0) {
    return position;
  }
  std::size_t slot = 0;
  for (std::size_t step = std::bit_floor(slots_.size()); step > 0; step /= 2) {
    if (slot + step <= slots_.size() && counts_[slot + step] <= position) {
      slot += step;
      position -= counts_[slot];
    }
  }
  return slot;
}

std::uint32_t ItemStore::ItemsBefore(std::size_t slot) const noexcept {
  std::uint32_t items = 0;
  for (; slot > 0; slot -= LowestBit(slot)) {
    items += counts_[slot];
  }
  return items;
}

void ItemStore::CountItems() {
  counts_.assign(slots_.size() + 1, 0);
  for (std::size_t i = 1; i < counts_.size(); ++i) {
    counts_[i] += slots_[i - 1] ? 1 : 0;
    const std::size_t wider = i + LowestBit(i);
    if (wider < counts_.size()) {
      counts_[wider] += counts_[i];
    }
  }
}

bool ItemStore::Append(const Item& item) {
  // Whatever needs memory comes first: nothing is half added when there is none.
  if (slots_.size() == slots_.capacity()) {
    slots_.reserve(std::max(kFirstSlots, 2 * slots_.size()));
  }
  if (empty_ > 0 && counts_.size() == counts_.capacity()) {
    counts_.reserve(2 * counts_.size());
  }
  if (clsZelItemCash* const cash = CashItemAccess::Get(*item)) {
    // An item that is in no list can't be in this one, and only a host's item can have the ID of another.
    if (CashItemAccess::Lists(*cash) > 0 && FindSlotOf(item) != kNowhere) {
      return false;
    }
    if (!foreign_.empty() && foreign_.contains(cash->InstanceID())) {
      return false;
    }
    ++CashItemAccess::Lists(*cash);
  } else {
    const std::string id = item->InstanceID();
    if (FindSlot(id) != kNowhere) {
      return false;
    }
    foreign_.emplace(id, slots_.size());
  }
  slots_.push_back(item);
  if (empty_ > 0) {
    const std::size_t place = slots_.size();
    counts_.push_back(1 + ItemsBefore(place - 1) - ItemsBefore(place - LowestBit(place)));
  }
  return true;
}

ItemStore::Item ItemStore::Find(std::string_view id) const {
  const std::size_t slot = FindSlot(id);
  return slot == kNowhere ? nullptr : slots_[slot];
}

std::size_t ItemStore::FindSlot(std::string_view id) const {
  if (!foreign_.empty()) {
    const auto found = foreign_.find(id);
    if (found != foreign_.end()) {
      return found->second;
    }
  }
  const auto bytes = platform::GuidBytes(id);
  return bytes ? FindCashItem(*bytes) : kNowhere;
}

std::size_t ItemStore::FindCashItem(const std::array<std::uint8_t, 16>& id) const {
  if (IsNext(id)) {
    LookAhead(next_);
    return next_++;
  }
  IndexNewSlots();
  const std::size_t mask = table_.size() - 1;
  const std::uint32_t start = StartOf(id);
  for (std::size_t at = start; !table_.empty(); ++at) {
    const Entry& entry = table_[at & mask];
    if (entry.slot == kFree) {
      break;
    }
    // Only cash items are in the table.
    if (entry.idStart == start && slots_[entry.slot] &&
        *CashItemAccess::Id(static_cast<clsZelItemCash&>(*slots_[entry.slot])) == id) {
      next_ = entry.slot + 1;
      return entry.slot;
    }
  }
  return kNowhere;
}

/// Whether the item behind the one found last is the one with this ID: who asks for one after the other mostly asks in
/// the order of the items.
bool ItemStore::IsNext(const std::array<std::uint8_t, 16>& id) const noexcept {
  if (!foreign_.empty() || next_ >= slots_.size() || !slots_[next_]) {
    return false;
  }
  const auto* const known = CashItemAccess::KnownId(static_cast<const clsZelItemCash&>(*slots_[next_]));
  return known != nullptr && *known == id;
}

/// Has an item brought nearer that will be asked for soon, so that a long list waits for its memory while it has
/// something else to do.
void ItemStore::LookAhead(std::size_t slot) const noexcept {
  constexpr std::size_t far = 16;
  constexpr std::size_t cacheLine = 64;
  if (slot + far < slots_.size()) {
    // The item's own part, and before it the count of those who hold it.
    const auto item = reinterpret_cast<std::uintptr_t>(slots_[slot + far].get());
    platform::Prefetch(reinterpret_cast<const void*>(item + cacheLine / 2));
    platform::Prefetch(reinterpret_cast<const void*>(item - cacheLine));
  }
}

void ItemStore::IndexNewSlots() const {
  // Never more than half full.
  const std::size_t needed = std::max(kSmallestTable, std::bit_ceil(2 * slots_.size()));
  if (entered_ < slots_.size() && table_.size() < needed) {
    std::vector<Entry> old(needed, Entry{0, kFree});
    old.swap(table_);
    for (const Entry& entry : old) {
      if (entry.slot != kFree) Enter(entry);
    }
  }
  for (; entered_ < slots_.size(); ++entered_) {
    const Item& item = slots_[entered_];
    clsZelItemCash* const cash = item ? CashItemAccess::Get(*item) : nullptr;
    const auto* const id = cash == nullptr ? nullptr : CashItemAccess::Id(*cash);
    if (id != nullptr) {
      Enter({StartOf(*id), static_cast<std::uint32_t>(entered_)});
    }
  }
}

void ItemStore::Enter(Entry entry) const noexcept {
  std::size_t at = entry.idStart;
  while (table_[at & (table_.size() - 1)].slot != kFree) {
    ++at;
  }
  table_[at & (table_.size() - 1)] = entry;
}

std::size_t ItemStore::FindSlotOf(const Item& item) const {
  if (clsZelItemCash* const cash = CashItemAccess::Get(*item)) {
    const auto* const id = CashItemAccess::Id(*cash);
    if (id != nullptr) {
      return FindCashItem(*id);
    }
  } else {
    const auto found = foreign_.find(item->InstanceID());
    if (found != foreign_.end() && slots_[found->second] == item) {
      return found->second;
    }
  }
  // An item whose class changes its ID stands under the one that it had when it was added.
  const auto found = std::find(slots_.begin(), slots_.end(), item);
  return found == slots_.end() ? kNowhere : static_cast<std::size_t>(found - slots_.begin());
}

void ItemStore::RemoveFound(std::size_t slot) {
  if (slot != kNowhere) {
    RemoveSlot(slot);
  }
}

void ItemStore::RemoveSlot(std::size_t slot) {
  if (empty_ == 0) {
    CountItems();
  }
  if (CashItemAccess::Get(*slots_[slot]) == nullptr) {
    const auto found = foreign_.find(slots_[slot]->InstanceID());
    if (found != foreign_.end() && found->second == slot) {
      foreign_.erase(found);
    } else {
      std::erase_if(foreign_, [slot](const auto& entry) { return entry.second == slot; });
    }
  }
  // The item goes last: its destructor may be a host's.
  const Item item = std::move(slots_[slot]);
  ++empty_;
  for (std::size_t place = slot + 1; place < counts_.size(); place += LowestBit(place)) {
    --counts_[place];
  }
  while (first_ < slots_.size() && !slots_[first_]) {
    ++first_;
  }
  if (empty_ > kFewGaps && empty_ > slots_.size() / 2) {
    CloseGaps();
  }
  Release(item);
}

void ItemStore::CloseGaps() noexcept {
  for (auto& entry : foreign_) {
    entry.second = ItemsBefore(entry.second);
  }
  std::erase(slots_, nullptr);
  counts_.clear();
  table_.clear();
  empty_ = first_ = entered_ = next_ = 0;
}

void ItemStore::Release(const Item& item) noexcept {
  if (clsZelItemCash* const cash = item ? CashItemAccess::Get(*item) : nullptr) {
    --CashItemAccess::Lists(*cash);
  }
}

void ItemStore::Clear() noexcept {
  std::for_each(slots_.begin(), slots_.end(), Release);
  // The items go last: their destructors may be a host's.
  std::vector<Item> items = std::move(slots_);
  slots_.clear();
  counts_.clear();
  table_.clear();
  foreign_.clear();
  empty_ = first_ = entered_ = next_ = 0;
  items.clear();
  // The next items of a short list find their room again.
  if (slots_.empty() && items.capacity() <= kShortList) {
    slots_.swap(items);
  }
}

}  // namespace VnZEL10cmn
