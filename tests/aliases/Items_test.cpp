#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "Support.h"
#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/items/clsZelItemList.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"

namespace {

using test::ExpectError;
using test::ExpectNoError;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::clsZelListItemFact;
using VnZEL10cmn::Currency;

/// Longer than strings keep within themselves.
constexpr std::string_view kName = "Holzofenbrot mit Sauerteig";
constexpr std::string_view kUnit = "Laib zu je tausend Gramm";

class CashItem : public testing::Test {
 protected:
  CashItem() { EXPECT_TRUE(item_.SetItemData(2, kName, kUnit, Currency::FromScaled(34500))); }

  clsZelItemCash item_;
};

TEST_F(CashItem, ExchangesItsTexts) {
  EXPECT_TRUE(item_.SetItemData(1, item_.Unit(), item_.Name()));
  EXPECT_EQ(item_.Name(), kUnit);
  EXPECT_EQ(item_.Unit(), kName);
  ExpectNoError(item_);
}

TEST_F(CashItem, TakesPartsOfItsTexts) {
  item_.Name(std::string_view(item_.Name()).substr(12));
  EXPECT_EQ(item_.Name(), "mit Sauerteig");
  item_.Name(std::string_view(item_.Name()).substr(0, 3));
  EXPECT_EQ(item_.Name(), "mit");
  item_.Unit(std::string_view(item_.Unit()).substr(4));
  EXPECT_EQ(item_.Unit(), "zu je tausend Gramm");
  item_.Name(item_.Unit());
  EXPECT_EQ(item_.Name(), "zu je tausend Gramm");
  EXPECT_TRUE(item_.SetItemData(1, std::string_view(item_.Name()).substr(3), std::string_view(item_.Name())));
  EXPECT_EQ(item_.Name(), "je tausend Gramm");
  EXPECT_EQ(item_.Unit(), "zu je tausend Gramm");
}

TEST_F(CashItem, TakesItsErrorTexts) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  EXPECT_FALSE(item_.SetItemData(1, " "));
  EXPECT_TRUE(item_.SetItemData(1, item_.ErrorObject().ErrorFunction(), item_.ErrorObject().ErrorSource()));
  EXPECT_EQ(item_.Name(), "SetItemData");
  EXPECT_EQ(item_.Unit(), "VnZEL10cmn.clsZelItemCash");
  ExpectNoError(item_);
}

// The text has no influence.
TEST_F(CashItem, WritesItselfGivenItsText) {
  auto data = VnZEL10cmn::ByteArray::WithBounds(0, 99);
  std::int32_t start = 0;
  EXPECT_TRUE(item_.BinaryDataGet(data, start, VnZEL10cmn::ZELSerialType::ObjectData, item_.Name(), start));
  data.RedimPreserve(start - 1);
  // Quantity 2, "laibzuje", "holzofenbrotmits", 3.45.
  EXPECT_EQ(test::ToHex(data),
            "A0 01 32 A1 08 6C 61 69 62 7A 75 6A 65 A2 10 68 6F 6C 7A 6F 66 65 6E 62 72 6F 74 6D 69 74 73 "
            "B1 02 34 5C");
}

class ItemList : public testing::Test {
 protected:
  ItemList() {
    for (const char* name : {"Brot", "Wecken", "Brezel"}) {
      auto item = std::make_shared<clsZelItemCash>();
      EXPECT_TRUE(item->SetItemData(1, name));
      EXPECT_TRUE(list_.AddItem(item));
    }
  }

  std::string Names() const {
    std::string names;
    for (const auto& item : list_) {
      names += dynamic_cast<const clsZelItemCash&>(*item).Name() + " ";
    }
    return names;
  }

  clsZelItemList list_;
};

TEST_F(ItemList, RemovesAnItemGivenByItsPlaceInTheList) {
  EXPECT_TRUE(list_.RemoveItem(*++list_.begin()));
  EXPECT_EQ(Names(), "Brot Brezel ");
  EXPECT_TRUE(list_.RemoveItem(*list_.begin()));
  EXPECT_EQ(Names(), "Brezel ");
  EXPECT_TRUE(list_.RemoveItem(nullptr, (*list_.begin())->InstanceID()));
  EXPECT_EQ(list_.ItemCount(), 0);
  ExpectNoError(list_);
}

TEST_F(ItemList, RefusesAnItemGivenByItsPlaceInTheList) {
  EXPECT_FALSE(list_.AddItem(*list_.begin()));
  ExpectError(list_.ErrorObject(), 9306, true, "AddItem",
              "Ein Buchungsposten konnte nicht übernommen werden\r\n"
              "    Instanz-ID ..........: " +
                  (*list_.begin())->InstanceID());
  EXPECT_EQ(Names(), "Brot Wecken Brezel ");
}

TEST_F(ItemList, AddsAnItemOfAnotherPlace) {
  clsZelItemList other;
  for (const auto& item : list_) {
    EXPECT_TRUE(other.AddItem(item));
  }
  EXPECT_EQ(other.ItemCount(), 3);
  EXPECT_EQ(other.ItemI(3), list_.ItemI(3));
}

TEST_F(ItemList, TakesItsTexts) {
  list_.ZelProfile("a profile that is longer than a string keeps");
  list_.ZelProfile(std::string_view(list_.ZelProfile()).substr(2, 7));
  EXPECT_EQ(list_.ZelProfile(), "profile");
  EXPECT_EQ(list_.ItemK(list_.ZelProfile()), nullptr);
  EXPECT_TRUE(list_.RemoveItem(nullptr, list_.ZelProfile()));
  EXPECT_EQ(list_.ItemCount(), 3);
}

TEST_F(ItemList, TakesItsErrorTexts) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  EXPECT_FALSE(list_.AddItem(list_.ItemI(1)));
  EXPECT_TRUE(list_.RemoveItem(nullptr, list_.ErrorObject().ErrorFunction()));
  EXPECT_EQ(list_.ItemCount(), 3);
  EXPECT_FALSE(list_.AddItem(list_.ItemI(1)));
  std::string hash;
  EXPECT_TRUE(list_.GetItemHash(false, true, true, hash, list_.ErrorObject().ErrorFunction()));
  // 32 characters in groups of 5.
  EXPECT_EQ(hash.size(), 32 + 6 * std::string_view("AddItem").size());
  EXPECT_EQ(hash.substr(5, 7), "AddItem");
  list_.ZelProfile(list_.ErrorObject().ErrorSource());
  EXPECT_EQ(list_.ZelProfile(), "VnZEL10cmn.clsZelItemList");
}

TEST_F(ItemList, TakesTheSeparatorOfTheHashFromTheHash) {
  std::string plain;
  ASSERT_TRUE(list_.GetItemHash(false, true, false, plain));
  ASSERT_EQ(plain.size(), 32U);
  std::string hash = "-";
  EXPECT_TRUE(list_.GetItemHash(false, true, true, hash, hash));
  EXPECT_EQ(hash, plain.substr(0, 5) + "-" + plain.substr(5, 5) + "-" + plain.substr(10, 5) + "-" +
                      plain.substr(15, 5) + "-" + plain.substr(20, 5) + "-" + plain.substr(25, 5) + "-" +
                      plain.substr(30));
  hash = "-";
  EXPECT_TRUE(list_.GetItemHash(false, true, false, hash, hash));
  EXPECT_EQ(hash, plain);
}

TEST(ItemFactory, TakesItsOwnErrorObject) {
  clsZelListItemFact factory;
  EXPECT_NE(factory.CreateNewItem(&factory.ErrorObject()), nullptr);
  ExpectNoError(factory);
}

}  // namespace
