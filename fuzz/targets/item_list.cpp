// Reading of an item list, and its items by position and by instance ID.

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "VnZEL10cmn/items/internal/ItemForm.h"
#include "fuzz/Objects.h"
#include "fuzz/Targets.h"

namespace fuzz {

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelItemCash;

const clsZelItemCash& CashItem(const VnZEL10cmn::clsZelItemList& list, std::int32_t number) {
  return dynamic_cast<const clsZelItemCash&>(*list.ItemI(number));
}

void CheckPositions(VnZEL10cmn::clsZelItemList& list) {
  std::int32_t number = 0;
  for (const auto& item : list) {
    ++number;
    FUZZ_CHECK(list.ItemI(number) == item && list.ItemK(item->InstanceID()) == item);
  }
  FUZZ_CHECK(number == list.ItemCount());
  FUZZ_CHECK(!list.ItemI(0) && !list.ItemI(number + 1));
}

/// An item of a host's own, with an instance ID of the host's choice.
class NamedItem : public clsZelItemCash {
 public:
  explicit NamedItem(std::string id) : id_(std::move(id)) {}
  std::string InstanceID() override { return id_; }

 private:
  std::string id_;
};

/// Items that come and go, in a list and in a plain array that is searched from its begin.
class Shelf {
 public:
  void Step(Input& input) {
    const std::int32_t operation = input.Between(0, 8);
    const std::size_t choice = input.Number<std::uint16_t>();
    const Entry present = items_.empty() ? Entry{} : items_[choice % items_.size()];
    switch (operation) {
      case 0:
        for (std::size_t count = choice % 64; count > 0 && items_.size() < kMost; --count) {
          Add(std::make_shared<clsZelItemCash>(), true);
        }
        break;
      case 1: Add(std::make_shared<NamedItem>(std::to_string(choice % 16))); break;
      case 2: Add(std::make_shared<NamedItem>(present.id)); break;
      case 3: Add(present.item ? present.item : std::make_shared<clsZelItemCash>()); break;
      case 4: Add(removed_.item ? removed_.item : std::make_shared<clsZelItemCash>()); break;
      case 5: Add(std::make_shared<NamedItem>(removed_.id)); break;
      case 6: Remove(present, nullptr, {}, static_cast<std::int32_t>(choice % (items_.size() + 1))); break;
      case 7: Remove(present, nullptr, present.id, -1); break;
      default: Remove(present, present.item, {}, -1);
    }
    FUZZ_CHECK(list_.ItemCount() == static_cast<std::int32_t>(items_.size()));
    if (!items_.empty()) {
      const std::size_t position = choice / 3 % items_.size();
      FUZZ_CHECK(list_.ItemI(static_cast<std::int32_t>(position) + 1) == items_[position].item);
    }
  }

  void CheckOrder() {
    FUZZ_CHECK(std::equal(list_.begin(), list_.end(), items_.begin(), items_.end(),
                          [](const Item& item, const Entry& entry) { return item == entry.item; }));
    CheckPositions(list_);
  }

 private:
  using Item = std::shared_ptr<VnZEL10cmn::IVnZelItem>;

  /// More would take long, and reach nothing new.
  static constexpr std::size_t kMost = 100;

  /// An item with its instance ID, which takes longer to ask for than all else here.
  struct Entry {
    Item item;
    std::string id = "none";
  };

  void Add(const Item& item) {
    const std::string id = item->InstanceID();
    Add(item,
        std::none_of(items_.begin(), items_.end(), [&id](const Entry& entry) { return entry.id == id; }));
  }

  void Add(const Item& item, bool isNew) {
    const bool done = list_.AddItem(item);
    CheckOutcome(list_, done, "AddItem");
    FUZZ_CHECK(done == isNew);
    if (isNew) {
      items_.push_back({item, item->InstanceID()});
    }
  }

  /// No item stands at a position below 1.
  void Remove(Entry entry, const Item& object, const std::string& id, std::int32_t position) {
    if (!object && id.empty()) {
      entry = position < 1 ? Entry{} : items_[static_cast<std::size_t>(position) - 1];
    }
    FUZZ_CHECK(list_.RemoveItem(object, id, position));
    if (entry.item) {
      items_.erase(std::find_if(items_.begin(), items_.end(),
                                [&entry](const Entry& other) { return other.item == entry.item; }));
      FUZZ_CHECK(!list_.ItemK(entry.id));
      removed_ = entry;
    }
  }

  VnZEL10cmn::clsZelItemList list_;
  std::vector<Entry> items_;
  Entry removed_;
};

void ComeAndGo(Input& input) {
  constexpr int kMostSteps = 100;
  Shelf shelf;
  for (int count = 0; count < kMostSteps && !input.AtEnd(); ++count) {
    shelf.Step(input);
  }
  shelf.CheckOrder();
}

}  // namespace

void ItemList(Bytes data) {
  Input input(data);
  const std::uint8_t options = input.Byte();
  if ((options & 8) != 0) {
    ComeAndGo(input);
    return;
  }
  const Delivery delivery = Delivery::Take(input, VnZEL10cmn::ZELSerialType::ItemList);
  const ByteArray& buffer = delivery.place.buffer;
  VnZEL10cmn::clsZelItemList list;
  FUZZ_CHECK(list.AddItem(std::make_shared<clsZelItemCash>()));
  std::int32_t start = delivery.place.start;
  const bool done = list.BinaryDataSet(buffer, start, delivery.length);
  CheckOutcome(list, done, "BinaryDataSet");
  CheckPositions(list);
  const bool began = delivery.place.start >= buffer.LBound() && delivery.place.start <= buffer.UBound();
  FUZZ_CHECK(start >= delivery.place.start);
  FUZZ_CHECK(began ? start <= std::int64_t{buffer.UBound()} + 1 : start == delivery.place.start);
  if (!done) {
    // Too long a length is found before anything is done.
    const bool tooLong = list.ErrorObject().ErrorNr() == 9207;
    FUZZ_CHECK(!tooLong || (start == delivery.place.start && list.ItemCount() == 1));
    return;
  }
  ByteArray records;
  std::int32_t end = 0;
  if (!list.BinaryDataGet(records, end)) {
    CheckOutcome(list, false, "BinaryDataGet");
    return;
  }
  FUZZ_CHECK(end >= 0 && end <= records.UBound() + 1);
  records.RedimPreserve(end - 1);
  // Records in the form in which items are written are written again just so.
  if (buffer.LBound() == 0 && delivery.place.start >= 0 && delivery.place.start <= buffer.UBound()) {
    const auto behind =
        std::span(buffer.data(), buffer.size()).subspan(static_cast<std::size_t>(delivery.place.start));
    const auto source =
        delivery.length >= 1 ? behind.first(static_cast<std::size_t>(delivery.length)) : behind;
    FUZZ_CHECK(!VnZEL10cmn::internal::AreAsWritten(source) || std::ranges::equal(source, records));
  }
  VnZEL10cmn::clsZelItemList again;
  std::int32_t at = 0;
  FUZZ_CHECK(again.BinaryDataSet(records, at));
  FUZZ_CHECK(again.ItemCount() == list.ItemCount());
  for (std::int32_t number = 1; number <= list.ItemCount(); ++number) {
    FUZZ_CHECK(HaveSameValues(CashItem(list, number), CashItem(again, number)));
  }
  ByteArray rewritten;
  std::int32_t rewrittenEnd = 0;
  FUZZ_CHECK(again.BinaryDataGet(rewritten, rewrittenEnd));
  rewritten.RedimPreserve(rewrittenEnd - 1);
  FUZZ_CHECK(rewritten == records);
  // The hash is that of these bytes.
  const bool bit256 = (options & 1) != 0;
  std::string hash;
  ByteArray digest;
  VnZEL10cmn::clsHelper01 helper;
  FUZZ_CHECK(list.GetItemHash(bit256, false, false, hash));
  FUZZ_CHECK(bit256 ? helper.GetSHA256Hash1(records, digest) : helper.GetSHA1Hash1(records, digest));
  FUZZ_CHECK(FromBase64(hash) == Content(digest));
  if ((options & 2) != 0) {
    CheckText(list);
  }
  if ((options & 4) != 0) {
    FUZZ_CHECK(list.RemoveItem(nullptr, {}, 1));
    FUZZ_CHECK(list.Clear() && list.ItemCount() == 0);
  }
}

}  // namespace fuzz
