#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/items/clsZelItemList.h"

using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::IVnZelItem;

namespace {

/// An item class of a host: another class for the list, though it is the same otherwise, with an ID that may change.
class HostItem : public clsZelItemCash {
 public:
  explicit HostItem(std::string id) : id_(std::move(id)) {}
  std::string InstanceID() override { return id_; }
  void Rename(std::string id) { id_ = std::move(id); }

 private:
  std::string id_;
};

using Item = std::shared_ptr<IVnZelItem>;

std::vector<Item> Items(const clsZelItemList& list) { return {list.begin(), list.end()}; }

/// A list beside a plain vector that has to hold the same.
struct Pair {
  clsZelItemList list;
  std::vector<Item> expected;

  void Check() const {
    RC_ASSERT(list.ItemCount() == static_cast<std::int32_t>(expected.size()));
    RC_ASSERT(Items(list) == expected);
    for (std::size_t i = 0; i < expected.size(); ++i) {
      RC_ASSERT(list.ItemI(static_cast<std::int32_t>(i) + 1) == expected[i]);
      RC_ASSERT(list.ItemK(expected[i]->InstanceID()) == expected[i]);
    }
    RC_ASSERT(!list.ItemI(0));
    RC_ASSERT(!list.ItemI(static_cast<std::int32_t>(expected.size()) + 1));
  }

  void Add(const Item& item) {
    const std::string id = item->InstanceID();
    const bool isThere = std::any_of(expected.begin(), expected.end(),
                                     [&id](const Item& other) { return other->InstanceID() == id; });
    RC_ASSERT(list.AddItem(item) == !isThere);
    if (!isThere) expected.push_back(item);
  }
};

RC_GTEST_PROP(clsZelItemListAsAVector, HoldsTheSameWhateverIsDone, ()) {
  Pair pairs[2];
  std::vector<Item> items;
  for (int i = 0; i < 12; ++i) {
    items.push_back(std::make_shared<clsZelItemCash>());
    items.push_back(std::make_shared<HostItem>("host " + std::to_string(i)));
  }
  // One that claims to be another.
  items.push_back(std::make_shared<HostItem>(items[0]->InstanceID()));
  const int steps = *rc::gen::inRange(1, 150);
  for (int step = 0; step < steps; ++step) {
    Pair& pair = pairs[*rc::gen::inRange(0, 2)];
    const int size = static_cast<int>(pair.expected.size());
    const Item& item = *rc::gen::elementOf(items);
    const auto found = std::find(pair.expected.begin(), pair.expected.end(), item);
    switch (*rc::gen::inRange(0, 9)) {
      case 0:
      case 1:
      case 2:
      case 3: pair.Add(item); break;
      case 4: pair.Add(std::make_shared<clsZelItemCash>()); break;
      case 5:
        RC_ASSERT(pair.list.RemoveItem(item));
        if (found != pair.expected.end()) pair.expected.erase(found);
        break;
      case 6: {
        const std::string id = item->InstanceID();
        const auto same = std::find_if(pair.expected.begin(), pair.expected.end(),
                                       [&id](const Item& other) { return other->InstanceID() == id; });
        RC_ASSERT(pair.list.RemoveItem(nullptr, id));
        if (same != pair.expected.end()) pair.expected.erase(same);
        break;
      }
      case 7:
        if (size > 0) {
          const int position = *rc::gen::inRange(0, size);
          RC_ASSERT(pair.list.RemoveItem(nullptr, {}, position + 1));
          pair.expected.erase(pair.expected.begin() + position);
        }
        break;
      default:
        if (*rc::gen::inRange(0, 10) == 0) {
          RC_ASSERT(pair.list.Clear());
          pair.expected.clear();
        }
        break;
    }
    pair.Check();
  }
}

TEST(clsZelItemListRemoval, ManyItemsFromEitherEndAndFromTheMiddle) {
  clsZelItemList list;
  std::vector<Item> expected;
  for (int i = 0; i < 1000; ++i) {
    expected.push_back(std::make_shared<clsZelItemCash>());
    ASSERT_TRUE(list.AddItem(expected.back()));
  }
  while (!expected.empty()) {
    const std::size_t position = expected.size() % 3 == 0   ? 0
                                 : expected.size() % 3 == 1 ? expected.size() - 1
                                                            : expected.size() / 2;
    ASSERT_TRUE(list.RemoveItem(nullptr, {}, static_cast<std::int32_t>(position) + 1));
    expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(position));
    if (expected.size() % 97 == 0) {
      expected.push_back(std::make_shared<clsZelItemCash>());
      ASSERT_TRUE(list.AddItem(expected.back()));
      expected.pop_back();
      ASSERT_TRUE(list.RemoveItem(list.ItemI(list.ItemCount())));
    }
    ASSERT_EQ(Items(list), expected);
  }
}

TEST(clsZelItemListSearch, FindsItemsInTheirOrderAgainstItAndAcrossGaps) {
  clsZelItemList list;
  std::vector<Item> items;
  for (int i = 0; i < 40; ++i) {
    items.push_back(std::make_shared<clsZelItemCash>());
    ASSERT_TRUE(list.AddItem(items.back()));
  }
  const auto find = [&](std::size_t at) { return list.ItemK(items[at]->InstanceID()); };
  for (std::size_t i = 0; i < items.size(); ++i)
    EXPECT_EQ(find(i), items[i]) << i;
  for (std::size_t i = items.size(); i-- > 0;)
    EXPECT_EQ(find(i), items[i]) << i;
  // The one behind the item found last is gone, is another one, or was never there.
  EXPECT_EQ(find(3), items[3]);
  ASSERT_TRUE(list.RemoveItem(items[4]));
  EXPECT_EQ(find(4), nullptr);
  EXPECT_EQ(find(5), items[5]);
  EXPECT_EQ(find(7), items[7]);
  EXPECT_EQ(find(39), items[39]);
  EXPECT_EQ(list.ItemK("{00000000-0000-0000-0000-000000000000}"), nullptr);
  ASSERT_TRUE(list.Clear());
  EXPECT_EQ(find(0), nullptr);
}

TEST(clsZelItemListRemoval, AnItemWhoseIDHasChangedIsFoundByItself) {
  clsZelItemList list;
  const auto first = std::make_shared<HostItem>("first");
  const auto second = std::make_shared<HostItem>("second");
  ASSERT_TRUE(list.AddItem(first));
  ASSERT_TRUE(list.AddItem(second));
  first->Rename("second");
  EXPECT_EQ(list.ItemK("first"), nullptr);
  EXPECT_EQ(list.ItemK("second"), first);
  EXPECT_TRUE(list.RemoveItem(first));
  EXPECT_EQ(list.ItemCount(), 1);
  EXPECT_EQ(list.ItemK("first"), nullptr);
  EXPECT_EQ(list.ItemK("second"), second);
}

TEST(clsZelItemListRemoval, AnItemThatIsThereTwiceIsRemovedWhereItIsFirst) {
  clsZelItemList list;
  const auto twice = std::make_shared<HostItem>("first");
  const auto other = std::make_shared<HostItem>("other");
  ASSERT_TRUE(list.AddItem(twice));
  ASSERT_TRUE(list.AddItem(other));
  twice->Rename("second");
  ASSERT_TRUE(list.AddItem(twice));
  EXPECT_TRUE(list.RemoveItem(twice));
  EXPECT_EQ(Items(list), (std::vector<Item>{other, twice}));
}

TEST(clsZelItemListRemoval, AnItemOutlivesTheListAndCanBeAddedToAnother) {
  const auto item = std::make_shared<clsZelItemCash>();
  {
    clsZelItemList list;
    ASSERT_TRUE(list.AddItem(item));
    EXPECT_FALSE(list.AddItem(item));
  }
  clsZelItemList other;
  EXPECT_TRUE(other.AddItem(item));
  EXPECT_FALSE(other.AddItem(item));
  EXPECT_TRUE(other.Clear());
  EXPECT_TRUE(other.AddItem(item));
}

TEST(clsZelItemListRemoval, TextsThatAreNoInstanceIDFindNothing) {
  clsZelItemList list;
  const auto item = std::make_shared<clsZelItemCash>();
  ASSERT_TRUE(list.AddItem(item));
  const std::string id = item->InstanceID();
  EXPECT_EQ(list.ItemK(id), item);
  std::string small = id;
  std::transform(small.begin(), small.end(), small.begin(),
                 [](char c) { return c >= 'A' && c <= 'F' ? char(c + 32) : c; });
  if (small != id) {
    EXPECT_EQ(list.ItemK(small), nullptr);
  }
  for (const std::size_t at : {std::size_t{0}, std::size_t{8}, std::size_t{35}}) {
    std::string other = id;
    other[at] = 'G';
    EXPECT_EQ(list.ItemK(other), nullptr);
  }
  EXPECT_EQ(list.ItemK(id.substr(1)), nullptr);
  EXPECT_EQ(list.ItemK(id + "0"), nullptr);
  EXPECT_EQ(list.ItemK(""), nullptr);
}

}  // namespace
