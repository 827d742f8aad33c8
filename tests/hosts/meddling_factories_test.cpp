// Item factories of a host's own that do anything while a list is decoded.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::ByteArray;
using test::clsZelItemCash;
using test::clsZelItemList;
using test::clsZelReport;
using test::clsZelTransAct;
using test::ExpectOutcome;
using test::FromHex;
using test::ItemsOf;
using test::IVnZelItem;
using test::Scripted;
using test::ScriptedFactory;
using test::ScriptedItem;
using test::ZELHashFmt;
using test::ZELSerialType;
using Item = std::shared_ptr<IVnZelItem>;

/// Three items as they would be written: names "a", "b" and "c".
constexpr std::string_view kThree = "A0 01 31 A2 01 61 A0 01 31 A2 01 62 A0 01 31 A2 01 63";

/// A factory of cash items that tells what it made before.
class CashFactory : public VnZEL10cmn::clsZelListItemFact {
 public:
  using Doing = std::function<void(const std::vector<std::shared_ptr<clsZelItemCash>>&)>;
  explicit CashFactory(Doing doing) : doing_(std::move(doing)) {}
  Item CreateNewItem(test::clsVnError*) override {
    doing_(made_);
    made_.push_back(std::make_shared<clsZelItemCash>());
    return made_.back();
  }

 private:
  Doing doing_;
  std::vector<std::shared_ptr<clsZelItemCash>> made_;
};

/// The hash that a booking or report keeps must be that of its items as they are.
template <class Holder>
void ExpectHashOfItems(Holder& holder) {
  const std::string stored = holder.GetItemHash(ZELHashFmt::Base16, true);
  const std::string present = holder.GetItemHash(ZELHashFmt::Base16, false);
  test::ExpectNoError(holder);
  EXPECT_EQ(stored, present);
}

// Items that a factory changes behind the list's back

TEST(FactoryThatRenamesEarlierItems, LeavesABookingTheHashOfItsItemsAsTheyAre) {
  for (const bool usesSha256 : {true, false}) {
    clsZelTransAct booking;
    booking.UseSHA256(usesSha256);
    booking.ItemFactory(std::make_shared<CashFactory>([](const auto& made) {
      if (!made.empty()) {
        made.back()->Name("z");
      }
    }));
    ASSERT_TRUE(test::HandIn(booking, ZELSerialType::ItemList, kThree)) << booking.ErrorObject().ErrorMsg();
    constexpr std::string_view renamed = "A0 01 31 A2 01 7A A0 01 31 A2 01 7A A0 01 31 A2 01 63";
    EXPECT_EQ(booking.ItemHash(), usesSha256 ? test::Sha256Text(renamed) : test::Sha1Text(renamed));
    ExpectHashOfItems(booking);
  }
}

TEST(FactoryThatRenamesEarlierItems, LeavesAReportTheHashOfItsItemsAsTheyAre) {
  clsZelReport report;
  report.ItemFactory(std::make_shared<CashFactory>([](const auto& made) {
    if (!made.empty()) {
      made.back()->Name("z");
    }
  }));
  ASSERT_TRUE(report.BinaryDataSet(ZELSerialType::ItemList, FromHex(kThree), 0));
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64, true),
            test::Sha1Text("A0 01 31 A2 01 7A A0 01 31 A2 01 7A A0 01 31 A2 01 63"));
  ExpectHashOfItems(report);
}

TEST(FactoryThatChangesEarlierItems, InAnyFieldLeavesTheHashOfTheItemsAsTheyAre) {
  const std::vector<std::function<void(clsZelItemCash&)>> changes = {
      [](clsZelItemCash& item) { item.Quantity(7); },
      [](clsZelItemCash& item) { item.Unit("kg"); },
      [](clsZelItemCash& item) { item.DiscSurc(true); },
      [](clsZelItemCash& item) { item.Voucher(true); },
      [](clsZelItemCash& item) { item.ThirdParty(true); },
      [](clsZelItemCash& item) { item.Price(6, 5); },
      [](clsZelItemCash& item) { item.SetItemData(3, "neu"); },
  };
  for (const auto& change : changes) {
    clsZelTransAct booking;
    booking.ItemFactory(std::make_shared<CashFactory>([&change](const auto& made) {
      if (made.size() == 2) {
        change(*made.front());
      }
    }));
    ASSERT_TRUE(test::HandIn(booking, ZELSerialType::ItemList, kThree));
    EXPECT_NE(booking.ItemHash(), test::Sha256Text(kThree));
    ExpectHashOfItems(booking);
  }
}

TEST(FactoryThatEmptiesAnEarlierItem, MakesTheHashFail) {
  clsZelTransAct booking;
  booking.ItemFactory(std::make_shared<CashFactory>([](const auto& made) {
    if (made.size() == 2) {
      made.front()->Clear();
    }
  }));
  EXPECT_FALSE(test::HandIn(booking, ZELSerialType::ItemList, kThree));
  test::ExpectError(booking.ErrorObject(), 9301, true, "DecodeItems.[mObjItemList.GetItemHash]",
                    "Der Hashcode der Buchungsposten konnte nicht in\r\n"
                    "das Base64-Format überführt werden.");
}

TEST(FactoryOfUnchangedItems, LeavesTheHashOfTheBytes) {
  clsZelTransAct booking;
  booking.ItemFactory(std::make_shared<CashFactory>([](const auto&) {}));
  ASSERT_TRUE(test::HandIn(booking, ZELSerialType::ItemList, kThree));
  EXPECT_EQ(booking.ItemHash(), test::Sha256Text(kThree));
  booking.ItemFactory(std::make_shared<VnZEL10cmn::clsZelListItemFact>());
  ASSERT_TRUE(test::HandIn(booking, ZELSerialType::ItemList, kThree));
  EXPECT_EQ(booking.ItemHash(), test::Sha256Text(kThree));
  ExpectHashOfItems(booking);
}

// Factories that change the list

TEST(FactoryThatAddsItems, LeavesTheHashOfTheListAsItStands) {
  clsZelTransAct booking;
  booking.ItemFactory(std::make_shared<CashFactory>(
      [&booking](const auto&) { EXPECT_TRUE(booking.AddItem(test::CashItem("neu", 1))); }));
  const bool done = test::HandIn(booking, ZELSerialType::ItemList, kThree);
  ExpectOutcome(booking, done);
  if (done) {
    EXPECT_EQ(booking.ItemCount(), 6);
    ExpectHashOfItems(booking);
  }
}

TEST(FactoryThatRemovesItems, LeavesTheHashOfTheListAsItStands) {
  for (const bool clears : {false, true}) {
    clsZelTransAct booking;
    booking.ItemFactory(std::make_shared<CashFactory>([&booking, clears](const auto& made) {
      if (clears) {
        EXPECT_TRUE(booking.ClearItems());
      } else if (made.size() == 2) {
        EXPECT_TRUE(booking.RemoveItem(made.front()));
      }
    }));
    const bool done = test::HandIn(booking, ZELSerialType::ItemList, kThree);
    ExpectOutcome(booking, done);
    if (done) {
      EXPECT_EQ(booking.ItemCount(), clears ? 1 : 2);
      ExpectHashOfItems(booking);
    }
  }
}

TEST(FactoryThatDecodesOnItsOwn, LeavesTheListWhole) {
  clsZelTransAct booking;
  int depth = 0;
  booking.ItemFactory(std::make_shared<CashFactory>([&](const auto& made) {
    if (made.size() == 1 && depth++ == 0) {
      ExpectOutcome(booking, test::HandIn(booking, ZELSerialType::ItemList, kThree));
    }
  }));
  const bool done = test::HandIn(booking, ZELSerialType::ItemList, kThree);
  ExpectOutcome(booking, done);
  if (done) {
    ExpectHashOfItems(booking);
  }
  EXPECT_EQ(ItemsOf(booking), std::vector<Item>(booking.begin(), booking.end()));
}

TEST(FactoryThatChangesTheBooking, LeavesItUsable) {
  const std::vector<std::function<void(clsZelTransAct&)>> changes = {
      [](clsZelTransAct& booking) { booking.Clear(); },
      [](clsZelTransAct& booking) { booking.UseSHA256(false); },
      [](clsZelTransAct& booking) { booking.LogHandler(nullptr); },
      [](clsZelTransAct& booking) { booking.ToString(); },
      [](clsZelTransAct& booking) { booking.GetItemHash(ZELHashFmt::Base16); },
      [](clsZelTransAct& booking) { booking.ItemFactory(nullptr); },
      [](clsZelTransAct& booking) {
        ByteArray request;
        booking.BinaryDataGet(ZELSerialType::Request, request, 0);
      },
  };
  for (const auto& change : changes) {
    clsZelTransAct booking;
    test::Prepare(booking);
    booking.ItemFactory(std::make_shared<CashFactory>([&](const auto&) { change(booking); }));
    const bool done = test::HandIn(booking, ZELSerialType::ItemList, kThree);
    ExpectOutcome(booking, done);
    if (done) {
      ExpectHashOfItems(booking);
    }
  }
}

TEST(FactoryThatChangesTheDocument, DoesNotChangeWhatIsImported) {
  clsZelTransAct booking;
  test::FillSale(booking);
  (void)test::BuildRequest(booking);
  ASSERT_TRUE(test::HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  std::string document;
  ASSERT_TRUE(booking.XmlHandler(document, true));
  clsZelTransAct imported;
  imported.ItemFactory(std::make_shared<CashFactory>([&document](const auto&) {
    document.clear();
    document.shrink_to_fit();
  }));
  EXPECT_TRUE(imported.XmlHandler(document, false)) << imported.ErrorObject().ErrorMsg();
  EXPECT_EQ(imported.ZelRespSignature(), test::kSaleSignature);
}

// What factories return

TEST(FactoryThatReturnsOneItemTwice, FailsAtTheSecond) {
  clsZelItemList list;
  const auto only = std::make_shared<clsZelItemCash>();
  list.ItemFactory(std::make_shared<ScriptedFactory>([only] { return only; }));
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(kThree), start));
  test::ExpectError(list.ErrorObject(), 9306, true, "BinaryDataSet",
                    "Ein Buchungsposten konnte nicht übernommen werden\r\n"
                    "    Start ...........: 0\r\n    Tag .............: 01\r\n"
                    "    lfd. Postennr. ..: 2");
  EXPECT_EQ(ItemsOf(list), std::vector<Item>{only});
  EXPECT_EQ(start, 12);
}

TEST(FactoryThatReturnsAnItemOfTheList, EndsInADocumentedOutcome) {
  clsZelItemList list;
  const auto held = test::CashItem("Brot", 1);
  list.ItemFactory(std::make_shared<ScriptedFactory>([&list, held] {
    EXPECT_TRUE(list.AddItem(held));
    return held;
  }));
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(kThree), start));
  EXPECT_EQ(list.ErrorObject().ErrorNr(), 9306);
  EXPECT_EQ(ItemsOf(list), std::vector<Item>{held});
}

TEST(FactoryThatReturnsNone, IsTheRunTimeErrorOfAMissingObjectThroughABooking) {
  clsZelTransAct booking;
  test::TestLog log;
  booking.LogHandler(log.Handler());
  booking.ItemFactory(std::make_shared<ScriptedFactory>([] { return nullptr; }));
  EXPECT_FALSE(test::HandIn(booking, ZELSerialType::ItemList, kThree));
  test::ExpectError(
      booking.ErrorObject(), 9301, true, "DecodeItems.[mObjItemList.BinaryDataSet]",
      "Buchung: Dekodieren der Postenliste nicht möglich!\r\nDas Listenobjekt meldete einen Fehler");
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"91", "9301"}));
}

TEST(FactoryThatThrows, IsTheRunTimeErrorOfWhatItThrew) {
  clsZelItemList list;
  std::int32_t start = 0;
  list.ItemFactory(std::make_shared<ScriptedFactory>([]() -> Item { throw 42; }));
  EXPECT_FALSE(list.BinaryDataSet(FromHex(kThree), start));
  test::ExpectRunTimeError(list.ErrorObject(), 5, "BinaryDataSet");
  list.ItemFactory(std::make_shared<ScriptedFactory>([]() -> Item { throw std::bad_alloc(); }));
  EXPECT_FALSE(list.BinaryDataSet(FromHex(kThree), start));
  test::ExpectRunTimeError(list.ErrorObject(), 7, "BinaryDataSet");
}

TEST(FactoryThatFilesAFailureAndReturnsNone, IsQuoted) {
  class Failing : public VnZEL10cmn::clsZelListItemFact {
   public:
    Item CreateNewItem(test::clsVnError*) override {
      ErrorObject().SetError(4711, "Keine Posten mehr", true, "CreateNewItem");
      return nullptr;
    }
  };
  clsZelItemList list;
  std::int32_t start = 0;
  list.ItemFactory(std::make_shared<Failing>());
  EXPECT_FALSE(list.BinaryDataSet(FromHex(kThree), start));
  test::ExpectError(list.ErrorObject(), 4711, true, "BinaryDataSet.[CreateNewItem]", "Keine Posten mehr");
}

// Items that are read wrongly

TEST(FactoryOfItemsThatReadWrongly, EndsInADocumentedOutcome) {
  for (const std::int32_t end : {INT32_MIN, -5, 0, 3, 6, 17, 18, 19, 1000, INT32_MAX}) {
    clsZelTransAct booking;
    int number = 0;
    booking.ItemFactory(std::make_shared<ScriptedFactory>([end, &number] {
      auto item = Scripted("I" + std::to_string(++number));
      item->read = [end](const ByteArray&, std::int32_t& start) {
        start = end;
        return true;
      };
      return item;
    }));
    const bool done = test::HandIn(booking, ZELSerialType::ItemList, kThree);
    ExpectOutcome(booking, done);
    // The last byte ends the reading, also from before it; what lies beyond may be refused.
    EXPECT_TRUE(done || end < 17 || end > 18) << end;
    EXPECT_TRUE(!done || end >= 17) << end;
    if (done) {
      ExpectHashOfItems(booking);
    }
    EXPECT_LE(number, 4);
  }
}

TEST(FactoryOfItemsThatEmptyTheArrayTheyAreReadFrom, EndsInADocumentedOutcome) {
  clsZelItemList list;
  ByteArray data = FromHex(kThree);
  list.ItemFactory(std::make_shared<ScriptedFactory>([&data] {
    auto item = Scripted("A");
    item->read = [&data](const ByteArray&, std::int32_t& start) {
      data.Redim(0, -1);
      start += 1;
      return start > 1;
    };
    return item;
  }));
  std::int32_t start = 0;
  const bool done = list.BinaryDataSet(data, start);
  ExpectOutcome(list, done);
}

TEST(FactoryOfItemsThatClearTheListWhileTheyAreRead, LeavesTheHashOfTheListAsItStands) {
  clsZelTransAct booking;
  int number = 0;
  booking.ItemFactory(std::make_shared<ScriptedFactory>([&] {
    auto item = Scripted("I" + std::to_string(++number));
    item->onRead = [&booking] { booking.ClearItems(); };
    return item;
  }));
  const bool done = test::HandIn(booking, ZELSerialType::ItemList, kThree);
  ExpectOutcome(booking, done);
  if (done) {
    EXPECT_EQ(booking.ItemCount(), 1);
    ExpectHashOfItems(booking);
  }
}

TEST(FactoryOfItemsThatThrowWhileTheyAreRead, FailsWithTheirNumber) {
  clsZelItemList list;
  list.ItemFactory(std::make_shared<ScriptedFactory>([] {
    auto item = Scripted("A");
    item->onRead = [] { throw 42; };
    return item;
  }));
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(kThree), start));
  test::ExpectRunTimeError(list.ErrorObject(), 5, "BinaryDataSet");
}

// Factories that are let go while they run

/// A factory that takes itself off what decodes, and looks at what it holds of its own afterwards.
class Leaving : public VnZEL10cmn::clsZelListItemFact {
 public:
  Leaving(std::function<void()> leave, bool returnsNone)
      : leave_(std::move(leave)), returnsNone_(returnsNone), alive_(std::make_shared<int>(1)) {}
  Item CreateNewItem(test::clsVnError*) override {
    const std::weak_ptr<int> watched = alive_;
    const auto leave = leave_;
    leave();
    EXPECT_FALSE(watched.expired()) << "it is running";
    return watched.expired() || returnsNone_ ? nullptr : Item(std::make_shared<clsZelItemCash>());
  }

 private:
  std::function<void()> leave_;
  bool returnsNone_;
  std::shared_ptr<int> alive_;
};

TEST(FactoryThatTakesItselfOff, ReturningItemsLivesUntilItReturns) {
  clsZelItemList list;
  list.ItemFactory(std::make_shared<Leaving>([&list] { list.ItemFactory(nullptr); }, false));
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataSet(FromHex(kThree), start)) << list.ErrorObject().ErrorMsg();
  EXPECT_EQ(list.ItemCount(), 3);
  clsZelTransAct booking;
  booking.ItemFactory(std::make_shared<Leaving>([&booking] { booking.ItemFactory(nullptr); }, false));
  EXPECT_TRUE(test::HandIn(booking, ZELSerialType::ItemList, kThree));
  EXPECT_EQ(booking.ItemHash(), test::Sha256Text(kThree));
}

TEST(FactoryThatTakesItselfOff, ReturningNoneIsTheRunTimeErrorOfAMissingObject) {
  clsZelItemList list;
  list.ItemFactory(std::make_shared<Leaving>([&list] { list.ItemFactory(nullptr); }, true));
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(kThree), start));
  test::ExpectRunTimeError(list.ErrorObject(), 91, "BinaryDataSet");
}

TEST(FactoryThatPutsAnotherInItsPlace, LivesUntilItReturns) {
  clsZelReport report;
  report.ItemFactory(std::make_shared<Leaving>(
      [&report] { report.ItemFactory(std::make_shared<VnZEL10cmn::clsZelListItemFact>()); }, false));
  EXPECT_TRUE(report.BinaryDataSet(ZELSerialType::ItemList, FromHex(kThree), 0));
  EXPECT_EQ(report.ItemCount(), 3);
  ExpectHashOfItems(report);
}

TEST(FactoryThatLetsTheBookingGo, KeepsItUntilItReturns) {
  auto booking = std::make_shared<clsZelTransAct>();
  const std::weak_ptr<clsZelTransAct> watched = booking;
  booking->ItemFactory(std::make_shared<Leaving>(
      [&] {
        booking.reset();
        EXPECT_FALSE(watched.expired()) << "it is running";
      },
      false));
  clsZelTransAct& kept = *booking;
  EXPECT_TRUE(kept.BinaryDataSet(ZELSerialType::ItemList, FromHex(kThree), 0));
  EXPECT_TRUE(watched.expired());
}

TEST(FactoryThatLetsTheListGo, KeepsItUntilItReturns) {
  auto list = std::make_shared<clsZelItemList>();
  const std::weak_ptr<clsZelItemList> watched = list;
  list->ItemFactory(std::make_shared<Leaving>(
      [&] {
        list.reset();
        EXPECT_FALSE(watched.expired()) << "it is running";
      },
      false));
  std::int32_t start = 0;
  clsZelItemList& kept = *list;
  EXPECT_TRUE(kept.BinaryDataSet(FromHex(kThree), start));
  EXPECT_EQ(start, 18);
  EXPECT_TRUE(watched.expired());
}

}  // namespace
