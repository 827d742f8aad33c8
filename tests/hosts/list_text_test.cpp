// The text of a list whose items have nothing to show, or fail.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::clsVnError;
using test::clsZelItemList;
using test::Scripted;
using test::ScriptedItem;

/// An item that shows nothing and whose error object holds an error of earlier on.
std::shared_ptr<ScriptedItem> ItemWithAnOldError(std::string id) {
  auto item = Scripted(std::move(id));
  item->text.clear();
  item->error.SetError(4711, "Waage klemmt", true, "Wiegen");
  return item;
}

TEST(ListText, OfAnItemThatShowsNothingIsNoFailureWhateverItsErrorObjectHolds) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  list.PrintEngine(nullptr);
  const auto item = ItemWithAnOldError("A");
  ASSERT_TRUE(list.AddItem(Scripted("FIRST")));
  ASSERT_TRUE(list.AddItem(item));
  ASSERT_TRUE(list.AddItem(Scripted("LAST")));
  EXPECT_EQ(list.ToString(), "scripted\r\n\r\nscripted");
  test::ExpectNoError(list);
  test::ExpectError(item->error, 4711, true, "Wiegen", "Waage klemmt");
  EXPECT_EQ(log.Count(), 0U);
}

TEST(ListText, OfAnItemThatFailsWhileItIsAskedLeavesTheErrorToTheItem) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  list.PrintEngine(nullptr);
  const auto item = Scripted("A");
  item->text.clear();
  item->onShow = [&item = *item] { item.error.SetError(4711, "Waage klemmt", true, "ToString"); };
  ASSERT_TRUE(list.AddItem(item));
  EXPECT_EQ(list.ToString(), "");
  test::ExpectNoError(list);
  EXPECT_TRUE(item->HasError());
  EXPECT_EQ(log.Count(), 0U);
}

TEST(ListText, OfACashItemThatFailedToBeWrittenIsItsText) {
  clsZelItemList list;
  list.PrintEngine(nullptr);
  const auto item = std::make_shared<test::clsZelItemCash>();
  ASSERT_TRUE(list.AddItem(item));
  test::ByteArray data;
  std::int32_t start = 0;
  ASSERT_FALSE(list.BinaryDataGet(data, start)) << "an item without a name can't be written";
  EXPECT_EQ(list.ToString(), "  1,0                                   ");
  test::ExpectNoError(list);
}

TEST(ListText, OfAnEngineThatFailsShowsInTheList) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  ASSERT_TRUE(list.AddItem(test::CashItem("Brot", 2)));
  ASSERT_TRUE(list.AddItem(Scripted("A")));
  EXPECT_EQ(list.ToString(), "  1,0          Brot                          2,00 EUR (A)\r\n");
  test::ExpectError(list.ErrorObject(), 9001, true, "ToStringCI",
                    "Der Typ \"ScriptedItem\" wird nicht unterstützt");
  EXPECT_EQ(test::LogNames(log), std::vector<std::string>{"clsZelItemList ToStringCI"});
}

TEST(ListText, OfAHostsEngineIsGivenTheListsErrorObject) {
  clsZelItemList list;
  const auto engine = std::make_shared<test::ScriptedEngine>();
  clsVnError* given = nullptr;
  engine->item = [&given](const auto&, clsVnError* errors) {
    given = errors;
    return std::string();
  };
  list.PrintEngine(engine);
  ASSERT_TRUE(list.AddItem(ItemWithAnOldError("A")));
  EXPECT_EQ(list.ToString(), "");
  EXPECT_EQ(given, &list.ErrorObject());
  test::ExpectNoError(list);
}

}  // namespace
