#include "VnZEL10cmn/items/clsZelItemList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/render/clsZelItemPrint.h"
#include "tests/items/HostItem.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace {

using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::clsZelItemPrint;
using VnZEL10cmn::Currency;
using VnZEL10cmn::IVnZelItem;

std::shared_ptr<HostItem> Host(std::string id) { return std::make_shared<HostItem>(std::move(id)); }

std::shared_ptr<clsZelItemCash> Cash(std::string_view name, std::int64_t cents) {
  auto item = std::make_shared<clsZelItemCash>();
  EXPECT_TRUE(item->SetItemData(1, name, "", Currency::FromScaled(cents * 100)));
  return item;
}

// The instance IDs in list order, "a b c".
std::string Ids(const clsZelItemList& list) {
  std::string ids;
  for (const auto& item : list) {
    ids += (ids.empty() ? "" : " ") + item->InstanceID();
  }
  return ids;
}

// A list of host items with the IDs a, b, c, d.
struct FourItems {
  FourItems() {
    for (const auto& item : {a, b, c, d}) {
      EXPECT_TRUE(list.AddItem(item));
    }
  }
  std::shared_ptr<HostItem> a = Host("a");
  std::shared_ptr<HostItem> b = Host("b");
  std::shared_ptr<HostItem> c = Host("c");
  std::shared_ptr<HostItem> d = Host("d");
  clsZelItemList list;
};

class OwnEngine : public clsZelItemPrint {
 public:
  using clsZelItemPrint::ToStringCI;
  std::string ToStringCI(std::shared_ptr<IVnZelItem> Item, clsVnError* ErrObj) override {
    errors.push_back(ErrObj);
    return "<" + Item->InstanceID() + ">";
  }
  std::vector<clsVnError*> errors;
};

TEST(clsZelItemList, NewListIsEmptyWithTheProfileKasse) {
  clsZelItemList list;
  EXPECT_EQ(list.ItemCount(), 0);
  EXPECT_EQ(list.begin(), list.end());
  EXPECT_EQ(list.ZelProfile(), "kasse");
  EXPECT_EQ(list.LogHandler(), nullptr);
  EXPECT_FALSE(list.HasError());
  EXPECT_EQ(list.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelItemList");
  EXPECT_EQ(list.ErrorObject().ErrorInstanceID().size(), 36U);
}

TEST(clsZelItemList, ProfileIsStoredTrimmed) {
  clsZelItemList list;
  list.ZelProfile("  restaurant  ");
  EXPECT_EQ(list.ZelProfile(), "restaurant");
  list.ZelProfile("   ");
  EXPECT_EQ(list.ZelProfile(), "");
}

TEST(clsZelItemList, ItemsAreCountedFromOneInTheOrderOfAdding) {
  FourItems four;
  EXPECT_EQ(four.list.ItemCount(), 4);
  EXPECT_EQ(four.list.ItemI(1), four.a);
  EXPECT_EQ(four.list.ItemI(2), four.b);
  EXPECT_EQ(four.list.ItemI(4), four.d);
  EXPECT_EQ(Ids(four.list), "a b c d");
}

TEST(clsZelItemList, PositionsThatDoNotExistGiveNoneWithoutAnError) {
  FourItems four;
  for (const std::int32_t index : {0, 5, -1, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(four.list.ItemI(index), nullptr) << index;
  }
  EXPECT_FALSE(four.list.HasError());
  EXPECT_EQ(clsZelItemList().ItemI(1), nullptr);
}

TEST(clsZelItemList, ItemKFindsTheExactInstanceIdOnly) {
  FourItems four;
  EXPECT_EQ(four.list.ItemK("c"), four.c);
  EXPECT_EQ(four.list.ItemK("C"), nullptr);
  EXPECT_EQ(four.list.ItemK("c "), nullptr);
  EXPECT_EQ(four.list.ItemK(""), nullptr);
  EXPECT_FALSE(four.list.HasError());
}

TEST(clsZelItemList, ReadersDoNotClearAnError) {
  FourItems four;
  EXPECT_FALSE(four.list.AddItem(four.a));
  static_cast<void>(four.list.ItemI(1));
  static_cast<void>(four.list.ItemK("a"));
  static_cast<void>(four.list.ItemCount());
  EXPECT_TRUE(four.list.HasError());
}

TEST(clsZelItemList, AddItemHandsTheItemTheListsLogHandler) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  const auto item = Host("a");
  EXPECT_TRUE(list.AddItem(item));
  EXPECT_EQ(item->LogHandler(), log.Handler());
  clsZelItemList other;
  EXPECT_TRUE(other.AddItem(item));
  EXPECT_EQ(item->LogHandler(), nullptr);
}

TEST(clsZelItemList, ALaterLogHandlerReachesOnlyLaterItems) {
  test::TestLog log;
  clsZelItemList list;
  const auto before = Host("a");
  const auto after = Host("b");
  EXPECT_TRUE(list.AddItem(before));
  list.LogHandler(log.Handler());
  EXPECT_TRUE(list.AddItem(after));
  EXPECT_EQ(before->LogHandler(), nullptr);
  EXPECT_EQ(after->LogHandler(), log.Handler());
}

TEST(clsZelItemList, AddingTheSameItemTwiceFailsAndKeepsOneCopy) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  const auto item = Cash("Brot", 100);
  EXPECT_TRUE(list.AddItem(item));
  EXPECT_FALSE(list.AddItem(item));
  EXPECT_TRUE(list.HasError());
  EXPECT_EQ(list.ErrorObject().ErrorNr(), 9306);
  EXPECT_TRUE(list.ErrorObject().IsUserDef());
  EXPECT_EQ(list.ErrorObject().ErrorFunction(), "AddItem");
  EXPECT_NE(list.ErrorObject().ErrorMsg(), "");
  EXPECT_EQ(list.ItemCount(), 1);
  EXPECT_EQ(list.ItemI(1), item);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"AddItem"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"9306"});
}

TEST(clsZelItemList, AnotherItemWithAKnownInstanceIdIsNotAdded) {
  FourItems four;
  EXPECT_FALSE(four.list.AddItem(Host("b")));
  EXPECT_EQ(four.list.ErrorObject().ErrorNr(), 9306);
  EXPECT_EQ(Ids(four.list), "a b c d");
  EXPECT_EQ(four.list.ItemK("b"), four.b);
  EXPECT_TRUE(four.list.AddItem(Host("e")));
  test::ExpectNoError(four.list);
}

TEST(clsZelItemList, AddingNoItemFails) {
  clsZelItemList list;
  EXPECT_FALSE(list.AddItem(nullptr));
  EXPECT_TRUE(list.HasError());
  EXPECT_EQ(list.ItemCount(), 0);
}

TEST(clsZelItemList, ItemsAreSharedBetweenLists) {
  clsZelItemList one;
  clsZelItemList other;
  const auto item = Cash("Brot", 100);
  EXPECT_TRUE(one.AddItem(item));
  EXPECT_TRUE(other.AddItem(item));
  item->Name("Kuchen");
  EXPECT_EQ(one.ItemI(1), other.ItemI(1));
  EXPECT_TRUE(one.Clear());
  EXPECT_EQ(other.ItemI(1), item);
}

TEST(clsZelItemList, RemoveItemWithoutArgumentsRemovesNothing) {
  FourItems four;
  EXPECT_TRUE(four.list.RemoveItem());
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "", 0));
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "", -7));
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "", INT32_MIN));
  EXPECT_EQ(Ids(four.list), "a b c d");
  test::ExpectNoError(four.list);
}

TEST(clsZelItemList, RemoveItemFromAnEmptyListIsTrueWhateverIsGiven) {
  clsZelItemList list;
  EXPECT_TRUE(list.RemoveItem());
  EXPECT_TRUE(list.RemoveItem(Host("a"), "b", 5));
  EXPECT_TRUE(list.RemoveItem(nullptr, "", 5));
  test::ExpectNoError(list);
}

TEST(clsZelItemList, RemoveItemByPosition) {
  FourItems four;
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "", 2));
  EXPECT_EQ(Ids(four.list), "a c d");
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "", 3));
  EXPECT_EQ(Ids(four.list), "a c");
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "", 1));
  EXPECT_EQ(Ids(four.list), "c");
  EXPECT_EQ(four.list.ItemI(1), four.c);
  EXPECT_EQ(four.list.ItemI(2), nullptr);
  EXPECT_EQ(four.list.ItemK("a"), nullptr);
}

TEST(clsZelItemList, RemoveItemBeyondTheListIsAFaultAndChangesNothing) {
  test::TestLog log;
  FourItems four;
  four.list.LogHandler(log.Handler());
  for (const std::int32_t index : {5, INT32_MAX}) {
    EXPECT_FALSE(four.list.RemoveItem(nullptr, "", index));
    test::ExpectFault(four.list.ErrorObject(), 9, "RemoveItem");
    EXPECT_EQ(Ids(four.list), "a b c d");
  }
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"RemoveItem", "RemoveItem"}));
}

TEST(clsZelItemList, RemoveItemByInstanceId) {
  FourItems four;
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "c"));
  EXPECT_EQ(Ids(four.list), "a b d");
}

TEST(clsZelItemList, RemoveItemByAnUnknownInstanceIdRemovesNothing) {
  FourItems four;
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "x"));
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "C"));
  EXPECT_EQ(Ids(four.list), "a b c d");
  test::ExpectNoError(four.list);
}

TEST(clsZelItemList, RemoveItemTakesTheIdBeforeThePosition) {
  FourItems four;
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "c", 1));
  EXPECT_EQ(Ids(four.list), "a b d");
  // An ID that isn't found does not fall back to the position, not even to one beyond the list.
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "x", 1));
  EXPECT_TRUE(four.list.RemoveItem(nullptr, "x", 99));
  EXPECT_EQ(Ids(four.list), "a b d");
  test::ExpectNoError(four.list);
}

TEST(clsZelItemList, RemoveItemTakesTheObjectBeforeIdAndPosition) {
  FourItems four;
  EXPECT_TRUE(four.list.RemoveItem(four.b, "c", 1));
  EXPECT_EQ(Ids(four.list), "a c d");
}

TEST(clsZelItemList, RemoveItemGoesByIdentityNotById) {
  FourItems four;
  // Another object with the same ID is not the item, and there is no falling back to ID or position.
  EXPECT_TRUE(four.list.RemoveItem(Host("b")));
  EXPECT_TRUE(four.list.RemoveItem(Host("b"), "c", 1));
  EXPECT_TRUE(four.list.RemoveItem(Host("b"), "", 99));
  EXPECT_EQ(Ids(four.list), "a b c d");
  test::ExpectNoError(four.list);
}

TEST(clsZelItemList, ARemovedItemCanBeAddedAgainAtTheEnd) {
  FourItems four;
  EXPECT_TRUE(four.list.RemoveItem(four.a));
  EXPECT_TRUE(four.list.AddItem(four.a));
  EXPECT_EQ(Ids(four.list), "b c d a");
  EXPECT_EQ(four.list.ItemI(1), four.b);
  EXPECT_EQ(four.list.ItemI(3), four.d);
  EXPECT_EQ(four.list.ItemI(4), four.a);
  EXPECT_EQ(four.list.ItemI(5), nullptr);
}

TEST(clsZelItemList, AnyNumberOfItemsIsRemovedAndAddedInBetween) {
  clsZelItemList list;
  std::vector<std::shared_ptr<IVnZelItem>> expected;
  int made = 0;
  std::uint32_t state = 2463534242U;
  // Grows, shrinks nearly to nothing and grows again.
  for (int step = 0; step < 600; ++step) {
    state = state * 1664525U + 1013904223U;
    const std::uint32_t random = state >> 16;
    if (expected.empty() || random % 10 < (step / 200 == 1 ? 2U : 7U)) {
      std::shared_ptr<IVnZelItem> item;
      if (random % 4 == 0) {
        item = Host("host " + std::to_string(made));
      } else {
        item = Cash("x", made);
      }
      ++made;
      ASSERT_TRUE(list.AddItem(item));
      expected.push_back(item);
    } else {
      const std::size_t at = random / 16 % expected.size();
      ASSERT_TRUE(list.RemoveItem(nullptr, {}, static_cast<std::int32_t>(at) + 1));
      EXPECT_EQ(list.ItemK(expected[at]->InstanceID()), nullptr);
      expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(at));
    }
    const auto count = static_cast<std::int32_t>(expected.size());
    ASSERT_EQ(list.ItemCount(), count);
    ASSERT_TRUE(std::equal(list.begin(), list.end(), expected.begin(), expected.end())) << "step " << step;
    for (std::int32_t i = 0; i < count; ++i) {
      const auto& item = expected[static_cast<std::size_t>(i)];
      ASSERT_EQ(list.ItemI(i + 1), item) << "step " << step;
      ASSERT_EQ(list.ItemK(item->InstanceID()), item) << "step " << step;
    }
    ASSERT_EQ(list.ItemI(count + 1), nullptr);
  }
}

TEST(clsZelItemList, RemoveItemClearsAnOldError) {
  FourItems four;
  EXPECT_FALSE(four.list.AddItem(four.a));
  EXPECT_TRUE(four.list.RemoveItem());
  test::ExpectNoError(four.list);
}

TEST(clsZelItemList, ClearDropsTheItemsOnly) {
  test::TestLog log;
  FourItems four;
  four.list.LogHandler(log.Handler());
  four.list.ZelProfile("markt");
  EXPECT_TRUE(four.list.Clear());
  EXPECT_EQ(four.list.ItemCount(), 0);
  EXPECT_EQ(four.list.ItemI(1), nullptr);
  EXPECT_EQ(four.list.ItemK("a"), nullptr);
  EXPECT_EQ(four.list.ZelProfile(), "markt");
  EXPECT_EQ(four.list.LogHandler(), log.Handler());
  EXPECT_TRUE(four.list.AddItem(four.c));
  EXPECT_EQ(Ids(four.list), "c");
}

TEST(clsZelItemList, ItemsLiveAsLongAsTheListOrTheCallerHoldsThem) {
  std::weak_ptr<IVnZelItem> watched;
  {
    clsZelItemList list;
    {
      const auto item = Host("a");
      watched = item;
      EXPECT_TRUE(list.AddItem(item));
    }
    EXPECT_FALSE(watched.expired());
    EXPECT_TRUE(list.Clear());
    EXPECT_TRUE(watched.expired());
  }
}

TEST(clsZelItemList, ToStringOfAnEmptyListIsEmpty) {
  clsZelItemList list;
  EXPECT_EQ(list.ToString(), "");
  test::ExpectNoError(list);
}

TEST(clsZelItemList, ToStringJoinsTheItemsWithTheDefaultEngine) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Cash("Brot", 250)));
  EXPECT_TRUE(list.AddItem(Cash("Käse", 99)));
  EXPECT_EQ(list.ToString(),
            "  1,0          Brot                          2,50 EUR (A)\r\n"
            "  1,0          Käse                          0,99 EUR (A)");
  test::ExpectNoError(list);
}

TEST(clsZelItemList, ToStringGivesTheHostsEngineItemsAndErrorObject) {
  FourItems four;
  const auto engine = std::make_shared<OwnEngine>();
  four.list.PrintEngine(engine);
  EXPECT_EQ(four.list.ToString(), "<a>\r\n<b>\r\n<c>\r\n<d>");
  EXPECT_EQ(engine->errors, std::vector<clsVnError*>(4, &four.list.ErrorObject()));
}

TEST(clsZelItemList, ToStringWithoutAnEngineAsksTheItems) {
  FourItems four;
  four.a->text = "eins\r\nzwei";
  four.b->text = "";
  four.c->text = "drei\r\n";
  four.d->text = "vier\r\n";
  four.list.PrintEngine(nullptr);
  // Each text is followed by a line break, of which only the very last one is dropped.
  EXPECT_EQ(four.list.ToString(), "eins\r\nzwei\r\n\r\ndrei\r\n\r\nvier\r\n");
  test::ExpectNoError(four.list);
}

TEST(clsZelItemList, ToStringOfOneEmptyTextIsEmpty) {
  clsZelItemList list;
  const auto item = Host("a");
  item->text = "";
  EXPECT_TRUE(list.AddItem(item));
  list.PrintEngine(nullptr);
  EXPECT_EQ(list.ToString(), "");
}

TEST(clsZelItemList, ToStringOfAHostItemWithTheDefaultEngineReportsItInTheList) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Host("a")));
  static_cast<void>(list.ToString());
  test::ExpectError(list.ErrorObject(), 9001, true, "ToStringCI",
                    "Der Typ \"HostItem\" wird nicht unterstützt");
}

}  // namespace
