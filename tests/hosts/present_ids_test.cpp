// Items of a host's own are found by the instance ID that they have when somebody looks for it.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::clsZelItemList;
using test::clsZelReport;
using test::clsZelTransAct;
using test::ItemsOf;
using test::IVnZelItem;
using test::Scripted;
using Items = std::vector<std::shared_ptr<IVnZelItem>>;

TEST(PresentId, FindsAnItemThatWasRenamed) {
  clsZelItemList list;
  const auto item = Scripted("OLD");
  ASSERT_TRUE(list.AddItem(item));
  item->id = "NEW";
  EXPECT_EQ(list.ItemK("NEW"), item);
  EXPECT_EQ(list.ItemK("OLD"), nullptr);
}

TEST(PresentId, RemovesAnItemThatWasRenamed) {
  clsZelItemList list;
  const auto item = Scripted("OLD");
  ASSERT_TRUE(list.AddItem(item));
  item->id = "NEW";
  EXPECT_TRUE(list.RemoveItem(nullptr, "OLD"));
  EXPECT_EQ(list.ItemCount(), 1);
  EXPECT_TRUE(list.RemoveItem(nullptr, "NEW"));
  EXPECT_EQ(list.ItemCount(), 0);
  test::ExpectNoError(list);
}

TEST(PresentId, OfSeveralItemsFindsTheFirstInTheOrderOfTheList) {
  clsZelItemList list;
  const auto first = Scripted("A");
  const auto second = Scripted("B");
  const auto third = Scripted("C");
  for (const auto& item : {first, second, third}) {
    ASSERT_TRUE(list.AddItem(item));
  }
  first->id = second->id = third->id = "SAME";
  EXPECT_EQ(list.ItemK("SAME"), first);
  EXPECT_TRUE(list.RemoveItem(nullptr, "SAME"));
  EXPECT_EQ(list.ItemK("SAME"), second);
  EXPECT_TRUE(list.RemoveItem(nullptr, "SAME"));
  EXPECT_EQ(ItemsOf(list), Items{third});
}

TEST(PresentId, OfAHostsItemStandsBesideThatOfACashItem) {
  for (const bool hostIsFirst : {true, false}) {
    clsZelItemList list;
    const auto cash = test::CashItem("Brot", 2);
    const auto host = Scripted("HOST");
    if (hostIsFirst) {
      ASSERT_TRUE(list.AddItem(host));
    }
    ASSERT_TRUE(list.AddItem(test::CashItem("Salz", 1)));
    ASSERT_TRUE(list.AddItem(cash));
    if (!hostIsFirst) {
      ASSERT_TRUE(list.AddItem(host));
    }
    const std::string id = cash->InstanceID();
    EXPECT_EQ(list.ItemK(id), cash);
    EXPECT_EQ(list.ItemK("HOST"), host);
    host->id = id;
    const std::shared_ptr<IVnZelItem> expected = hostIsFirst ? std::shared_ptr<IVnZelItem>(host) : cash;
    EXPECT_EQ(list.ItemK(id), expected);
    EXPECT_EQ(list.ItemK("HOST"), nullptr);
    EXPECT_TRUE(list.RemoveItem(nullptr, id));
    EXPECT_EQ(list.ItemCount(), 2);
    EXPECT_NE(list.ItemK(id), nullptr) << "the other one";
    EXPECT_NE(list.ItemK(id), expected);
  }
}

TEST(PresentId, FindsItemsAcrossGapsAndInAnyOrder) {
  clsZelItemList list;
  std::vector<std::shared_ptr<test::ScriptedItem>> hosts;
  std::vector<std::shared_ptr<test::clsZelItemCash>> cash;
  for (int i = 0; i < 60; ++i) {
    hosts.push_back(Scripted("H" + std::to_string(i)));
    cash.push_back(test::CashItem("x", 1));
    ASSERT_TRUE(list.AddItem(hosts.back()));
    ASSERT_TRUE(list.AddItem(cash.back()));
  }
  for (std::size_t i = 0; i < 60; i += 3) {
    EXPECT_TRUE(list.RemoveItem(hosts[i]));
    EXPECT_TRUE(list.RemoveItem(cash[i]));
  }
  for (std::size_t i = 60; i-- > 0;) {
    hosts[i]->id = "N" + std::to_string(i);
    const bool isRemoved = i % 3 == 0;
    EXPECT_EQ(list.ItemK("N" + std::to_string(i)), isRemoved ? nullptr : hosts[i]) << i;
    EXPECT_EQ(list.ItemK(cash[i]->InstanceID()), isRemoved ? nullptr : cash[i]) << i;
    EXPECT_EQ(list.ItemK("H" + std::to_string(i)), nullptr) << i;
  }
}

TEST(PresentId, OfOtherCaseOrLengthFindsNothing) {
  clsZelItemList list;
  const auto item = Scripted("Waage");
  ASSERT_TRUE(list.AddItem(item));
  for (const std::string id : {"waage", "Waage ", "Waag", "", "WAAGE"}) {
    EXPECT_EQ(list.ItemK(id), nullptr) << id;
  }
  item->id = "";
  EXPECT_EQ(list.ItemK(""), item) << "the first item whose ID equals the text";
}

TEST(PresentId, IsWhatBookingsAndReportsLookForToo) {
  clsZelTransAct booking;
  clsZelReport report;
  const auto item = Scripted("OLD");
  ASSERT_TRUE(booking.AddItem(item));
  ASSERT_TRUE(report.AddItem(item));
  item->id = "NEW";
  EXPECT_EQ(booking.ItemK("NEW"), item);
  EXPECT_EQ(report.ItemK("NEW"), item);
  EXPECT_TRUE(booking.RemoveItem(nullptr, "NEW"));
  EXPECT_TRUE(report.RemoveItem(nullptr, "OLD"));
  EXPECT_EQ(booking.ItemCount(), 0);
  EXPECT_EQ(report.ItemCount(), 1);
}

TEST(IdAtTheTimeOfAdding, IsTakenUntilItsItemIsRemoved) {
  clsZelItemList list;
  const auto item = Scripted("OLD");
  ASSERT_TRUE(list.AddItem(item));
  item->id = "NEW";
  const auto other = Scripted("OLD");
  EXPECT_FALSE(list.AddItem(other));
  test::ExpectError(list.ErrorObject(), 9306, true, "AddItem",
                    "Ein Buchungsposten konnte nicht übernommen werden\r\n"
                    "    Instanz-ID ..........: OLD");
  EXPECT_EQ(list.ItemCount(), 1);
  EXPECT_TRUE(list.AddItem(Scripted("NEW"))) << "an ID that nobody had when he was added";
  EXPECT_TRUE(list.RemoveItem(item));
  EXPECT_TRUE(list.AddItem(other));
  EXPECT_EQ(list.ItemCount(), 2);
}

TEST(IdAtTheTimeOfAdding, IsFreeAgainHoweverItsItemWasRemoved) {
  clsZelItemList list;
  const auto add = [&list] {
    auto item = Scripted("OLD");
    EXPECT_TRUE(list.AddItem(item));
    item->id = "NEW";
    return item;
  };
  EXPECT_TRUE(list.RemoveItem(add()));
  add();
  EXPECT_TRUE(list.RemoveItem(nullptr, "NEW"));
  add();
  EXPECT_TRUE(list.RemoveItem(nullptr, {}, 1));
  add();
  EXPECT_TRUE(list.Clear());
  add();
  EXPECT_EQ(list.ItemCount(), 1);
}

TEST(IdAtTheTimeOfAdding, OfACashItemKeepsAHostsItemOut) {
  clsZelItemList list;
  const auto cash = test::CashItem("Brot", 2);
  ASSERT_TRUE(list.AddItem(cash));
  EXPECT_FALSE(list.AddItem(Scripted(cash->InstanceID())));
  const auto host = Scripted("HOST");
  ASSERT_TRUE(list.AddItem(host));
  host->id = cash->InstanceID();
  EXPECT_TRUE(list.RemoveItem(cash));
  EXPECT_TRUE(list.AddItem(cash)) << "the host's item came under another name";
}

}  // namespace
