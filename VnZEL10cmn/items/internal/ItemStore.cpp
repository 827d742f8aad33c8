#include "VnZEL10cmn/items/internal/ItemStore.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

#include "VnZEL10cmn/items/internal/CashItemAccess.h"
#include "VnZEL10cmn/platform/internal/Guid.h"
#include "VnZEL10cmn/platform/internal/Processor.h"

namespace VnZEL10cmn::internal {

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

std::uint64_t ItemStore::TicketOf(std::size_t slot) const noexcept {
  return tickets_.empty() ? nextTicket_ - slots_.size() + slot : tickets_[slot];
}

/// The first slot whose ticket is not below this one.
std::size_t ItemStore::SlotFrom(std::uint64_t ticket) const noexcept {
  if (tickets_.empty()) {
    const std::uint64_t lowest = TicketOf(0);
    return ticket <= lowest
               ? 0
               : static_cast<std::size_t>(std::min<std::uint64_t>(ticket - lowest, slots_.size()));
  }
  return static_cast<std::size_t>(std::lower_bound(tickets_.begin(), tickets_.end(), ticket) -
                                  tickets_.begin());
}

/// The first slot from this one on that is not empty.
std::size_t ItemStore::FilledSlotFrom(std::size_t slot) const noexcept {
  if (slot >= slots_.size() || slots_[slot]) {
    return std::min(slot, slots_.size());
  }
  const std::size_t position = ItemsBefore(slot);
  return position < Count() ? SlotAt(position) : slots_.size();
}

ItemStore::Item ItemStore::Next(Place& place, std::uint64_t end) const {
  const std::size_t slot = FilledSlotFrom(place.version == version_ ? place.slot : SlotFrom(place.ticket));
  if (slot == slots_.size() || TicketOf(slot) >= end) {
    return nullptr;
  }
  place = {TicketOf(slot), slot, version_};
  return slots_[slot];
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

/// Makes room for one more item, so that nothing is half added when there is no memory.
void ItemStore::Reserve() {
  const auto grow = [](auto& vector, std::size_t least) {
    if (vector.size() == vector.capacity()) {
      vector.reserve(std::max(least, 2 * vector.size()));
    }
  };
  grow(slots_, kFirstSlots);
  if (empty_ > 0) grow(counts_, 0);
  if (!tickets_.empty()) grow(tickets_, 0);
  if (!addedIds_.empty()) grow(addedIds_, 0);
}

bool ItemStore::Append(const Item& item) {
  if (clsZelItemCash* const cash = CashItemAccess::Get(*item)) {
    // An item that is in no list can't be in this one, and only a host's item can have the ID of another.
    if (CashItemAccess::Lists(*cash) > 0 && FindSlotOf(item) != kNowhere) {
      return false;
    }
    if (!byAddedId_.empty() && byAddedId_.contains(cash->InstanceID())) {
      return false;
    }
    Reserve();
    ++CashItemAccess::Lists(*cash);
    if (!addedIds_.empty()) addedIds_.push_back(nullptr);
  } else {
    std::string id = item->InstanceID();
    if (byAddedId_.contains(id) || FindCashItem(id) != kNowhere) {
      return false;
    }
    Reserve();
    EnterHostItem(item, std::move(id));
  }
  slots_.push_back(item);
  if (!tickets_.empty()) tickets_.push_back(nextTicket_);
  ++nextTicket_;
  ++changes_;
  if (empty_ > 0) {
    const std::size_t place = slots_.size();
    counts_.push_back(1 + ItemsBefore(place - 1) - ItemsBefore(place - LowestBit(place)));
  }
  return true;
}

/// Enters the host's item that will have the next slot.
void ItemStore::EnterHostItem(const Item& item, std::string id) {
  addedIds_.reserve(slots_.capacity());
  const auto byId = byAddedId_.emplace(std::move(id), slots_.size()).first;
  try {
    byObject_.emplace(item.get(), slots_.size());
  } catch (...) {
    byAddedId_.erase(byId);
    throw;
  }
  addedIds_.resize(slots_.size());
  addedIds_.push_back(&byId->first);
}

void ItemStore::LeaveHostItem(std::size_t slot) noexcept {
  byAddedId_.erase(byAddedId_.find(*addedIds_[slot]));
  addedIds_[slot] = nullptr;
  const auto [first, last] = byObject_.equal_range(slots_[slot].get());
  byObject_.erase(std::find_if(first, last, [slot](const auto& entry) { return entry.second == slot; }));
}

ItemStore::Item ItemStore::Find(std::string_view id) const {
  if (byObject_.empty()) {
    const std::size_t slot = FindCashItem(id);
    return slot == kNowhere ? nullptr : slots_[slot];
  }
  const auto alive = shared_from_this();
  Place place;
  return FindAmongHostItems(id, place);
}

/// The first item whose ID is this one now, and where it is.
ItemStore::Item ItemStore::FindAmongHostItems(std::string_view id, Place& place) const {
  // A host's item may change the text that is looked for, and the list.
  const std::string wanted(id);
  const std::size_t before = FindCashItem(wanted);
  if (Item item = FindHostItem(wanted, before == kNowhere ? nextTicket_ : TicketOf(before), place)) {
    return item;
  }
  const std::size_t slot = FindCashItem(wanted);
  if (slot == kNowhere) {
    return nullptr;
  }
  place = {TicketOf(slot), slot, version_};
  return slots_[slot];
}

/// The first of a host's items before a ticket whose ID is this one now.
ItemStore::Item ItemStore::FindHostItem(std::string_view id, std::uint64_t end, Place& place) const {
  for (place = {};; ++place.ticket, ++place.slot) {
    Item item = Next(place, end);
    if (!item || (IsHostItem(place.slot) && item->InstanceID() == id)) {
      return item;
    }
  }
}

std::size_t ItemStore::FindCashItem(std::string_view id) const {
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
  if (next_ >= slots_.size() || !slots_[next_] || IsHostItem(next_)) {
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
  if (slot + far < slots_.size() && slots_[slot + far]) {
    // Where the count of those who hold it and its type are, and where its ID is.
    const auto* const item = reinterpret_cast<const char*>(slots_[slot + far].get());
    platform::Prefetch(item);
    platform::Prefetch(item + cacheLine);
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
    if (CashItemAccess::Lists(*cash) == 0) {
      return kNowhere;
    }
    if (const auto* const id = CashItemAccess::Id(*cash)) {
      return FindCashItem(*id);
    }
    const auto found = std::find(slots_.begin(), slots_.end(), item);
    return found == slots_.end() ? kNowhere : static_cast<std::size_t>(found - slots_.begin());
  }
  // A host's item whose ID changes can be here more than once.
  const auto [first, last] = byObject_.equal_range(item.get());
  const auto found = std::min_element(
      first, last, [](const auto& left, const auto& right) { return left.second < right.second; });
  return found == last ? kNowhere : found->second;
}

void ItemStore::Remove(const Item& item) {
  const std::size_t slot = FindSlotOf(item);
  if (slot != kNowhere) {
    RemoveSlot(slot);
  }
}

void ItemStore::Remove(std::string_view id) {
  if (byObject_.empty()) {
    const std::size_t slot = FindCashItem(id);
    if (slot != kNowhere) {
      RemoveSlot(slot);
    }
    return;
  }
  const auto alive = shared_from_this();
  Place place;
  const Item found = FindAmongHostItems(id, place);
  // A host's item may have moved or removed what was found when it was asked for its ID.
  if (found && Next(place, place.ticket + 1) == found) {
    RemoveSlot(place.slot);
  }
}

void ItemStore::RemoveSlot(std::size_t slot) {
  if (empty_ == 0) {
    CountItems();
  }
  if (IsHostItem(slot)) {
    LeaveHostItem(slot);
  }
  // The item goes last: its destructor may be a host's.
  const Item item = std::move(slots_[slot]);
  ++empty_;
  ++changes_;
  for (std::size_t place = slot + 1; place < counts_.size(); place += LowestBit(place)) {
    --counts_[place];
  }
  if (empty_ > kFewGaps && empty_ > slots_.size() / 2) {
    CloseGaps();
  }
  Release(item);
}

/// Has every slot's ticket written down, for those who have a place in the list now. False without memory for it.
bool ItemStore::KeepTickets() noexcept {
  if (weak_from_this().use_count() == 1) {
    tickets_.clear();
    return true;
  }
  if (!tickets_.empty()) {
    return true;
  }
  try {
    std::vector<std::uint64_t> tickets(slots_.size());
    for (std::size_t slot = 0; slot < tickets.size(); ++slot) {
      tickets[slot] = TicketOf(slot);
    }
    tickets_ = std::move(tickets);
    return true;
  } catch (...) {
    return false;
  }
}

void ItemStore::CloseGaps() noexcept {
  // Without memory the gaps stay until the next item is removed.
  if (!KeepTickets()) {
    return;
  }
  for (auto& entry : byAddedId_) {
    entry.second = ItemsBefore(entry.second);
  }
  for (auto& entry : byObject_) {
    entry.second = ItemsBefore(entry.second);
  }
  std::size_t filled = 0;
  for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
    if (slots_[slot]) {
      if (slot != filled) slots_[filled] = std::move(slots_[slot]);
      if (!addedIds_.empty()) addedIds_[filled] = addedIds_[slot];
      if (!tickets_.empty()) tickets_[filled] = tickets_[slot];
      ++filled;
    }
  }
  slots_.resize(filled);
  if (!addedIds_.empty()) addedIds_.resize(filled);
  if (!tickets_.empty()) tickets_.resize(filled);
  counts_.clear();
  table_.clear();
  empty_ = entered_ = next_ = 0;
  ++version_;
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
  tickets_.clear();
  table_.clear();
  byAddedId_.clear();
  byObject_.clear();
  addedIds_.clear();
  empty_ = entered_ = next_ = 0;
  ++version_;
  ++changes_;
  items.clear();
  // The next items of a short list find their room again.
  if (slots_.empty() && items.capacity() <= kShortList) {
    slots_.swap(items);
  }
}

}  // namespace VnZEL10cmn::internal
