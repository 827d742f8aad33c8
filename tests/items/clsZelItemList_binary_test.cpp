#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/items/clsZelItemList.h"
#include "VnZEL10cmn/items/clsZelListItemFact.h"
#include "tests/items/HostItem.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace {

using test::FromHex;
using test::FromHexAt;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::clsZelListItemFact;
using VnZEL10cmn::Currency;
using VnZEL10cmn::IVnZelItem;

constexpr std::string_view bread = "A0 01 31 A2 04 62 72 6F 74 B1 02 19 9C";  // 13 bytes
constexpr std::string_view milk =
    "A0 03 30 2E 35 A1 01 6C A2 05 6D 69 6C 63 68 AC 00 B2 03 01 23 4C";  // 22 bytes
constexpr std::string_view breadAndMilk =
    "A0 01 31 A2 04 62 72 6F 74 B1 02 19 9C A0 03 30 2E 35 A1 01 6C A2 05 6D 69 6C 63 68 AC 00 B2 03 01 23 "
    "4C";

std::shared_ptr<clsZelItemCash> Bread() {
  auto item = std::make_shared<clsZelItemCash>();
  EXPECT_TRUE(item->SetItemData(1, "Brot", "", Currency::FromScaled(19900)));
  return item;
}

std::shared_ptr<clsZelItemCash> Milk() {
  auto item = std::make_shared<clsZelItemCash>();
  EXPECT_TRUE(item->SetItemData(Currency::FromScaled(5000), "Milch", "l", 0, Currency::FromScaled(123400), 0,
                                false, false, true));
  return item;
}

std::shared_ptr<HostItem> Host(std::string id, std::string_view hex) {
  auto item = std::make_shared<HostItem>(std::move(id));
  item->bytes = FromHex(hex);
  return item;
}

std::string FirstBytes(ByteArray data, std::int32_t count) {
  data.RedimPreserve(data.LBound() + count - 1);
  return ToHex(data);
}

clsZelItemCash& CashAt(const clsZelItemList& list, std::int32_t index) {
  return dynamic_cast<clsZelItemCash&>(*list.ItemI(index));
}

// A factory of host items, whose making can go wrong in several ways.
class HostFactory : public clsZelListItemFact {
 public:
  enum class Mode { New, None, Throws, OutOfMemory, SameEachTime, SecondFails };

  explicit HostFactory(Mode mode) : mode_(mode) {}

  std::shared_ptr<IVnZelItem> CreateNewItem(clsVnError* ErrObj) override {
    ++calls;
    sawNoErrorObject = sawNoErrorObject && ErrObj == nullptr;
    switch (mode_) {
      case Mode::None: return nullptr;
      case Mode::Throws: throw std::runtime_error("Fabrik gestört");
      case Mode::OutOfMemory: throw std::bad_alloc();
      case Mode::SameEachTime: return same_;
      case Mode::New:
      case Mode::SecondFails: break;
    }
    auto item = std::make_shared<HostItem>("id" + std::to_string(calls));
    item->failSet = mode_ == Mode::SecondFails && calls == 2;
    return item;
  }

  int calls = 0;
  bool sawNoErrorObject = true;

 private:
  Mode mode_;
  std::shared_ptr<HostItem> same_ = std::make_shared<HostItem>("same");
};

// ---- writing

TEST(clsZelItemListWrite, TheBinaryFormIsTheItemsRecordsOneBehindTheOther) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Bread()));
  EXPECT_TRUE(list.AddItem(Milk()));
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataGet(data, start));
  test::ExpectNoError(list);
  EXPECT_EQ(start, 35);
  EXPECT_EQ(FirstBytes(data, 35), breadAndMilk);
}

TEST(clsZelItemListWrite, DataIsEnlargedToExactly128BytesPerItem) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Bread()));
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataGet(data, start));
  EXPECT_EQ(data.LBound(), 0);
  EXPECT_EQ(data.UBound(), 127);
  EXPECT_TRUE(list.AddItem(Milk()));
  EXPECT_TRUE(list.AddItem(Milk()));
  data = FromHex("11 22 33 44");
  start = 3;
  EXPECT_TRUE(list.BinaryDataGet(data, start));
  EXPECT_EQ(data.UBound(), 3 + 128 * 3 - 1);
  EXPECT_EQ(start, 3 + 13 + 22 + 22);
  EXPECT_EQ(FirstBytes(data, 3), "11 22 33");
}

TEST(clsZelItemListWrite, ALargerArrayKeepsItsSize) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Bread()));
  for (const std::int32_t upper : {126, 127, 128}) {
    ByteArray data = ByteArray::WithBounds(0, upper);
    std::int32_t start = 0;
    EXPECT_TRUE(list.BinaryDataGet(data, start));
    EXPECT_EQ(data.UBound(), std::max(upper, 127));
  }
}

TEST(clsZelItemListWrite, APositiveLowerBoundIsKept) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Bread()));
  ByteArray data = FromHexAt(10, "11 22 33 44");
  std::int32_t start = 12;
  EXPECT_TRUE(list.BinaryDataGet(data, start));
  EXPECT_EQ(data.LBound(), 10);
  EXPECT_EQ(data.UBound(), 139);
  EXPECT_EQ(start, 25);
  EXPECT_EQ(FirstBytes(data, 15), "11 22 " + std::string(bread));
}

TEST(clsZelItemListWrite, AnEmptyListWritesNothingAndSucceeds) {
  clsZelItemList list;
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataGet(data, start));
  EXPECT_EQ(start, 0);
  EXPECT_EQ(data.UBound(), -1);
  data = FromHex("11 22");
  start = 7;
  EXPECT_TRUE(list.BinaryDataGet(data, start));
  EXPECT_EQ(start, 7);
  EXPECT_EQ(ToHex(data), "11 22");
  test::ExpectNoError(list);
}

TEST(clsZelItemListWrite, AnEmptyListLeavesANoticeInTheLog) {
  test::TestLog log;
  log.Handler()->WriteEntries(true);
  clsZelItemList list;
  list.LogHandler(log.Handler());
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataGet(data, start));
  EXPECT_FALSE(list.HasError());
  ASSERT_EQ(log.Count(), 1U);
  const std::string text = log.Text();
  const std::string blanks(25, ' ');
  // The entry without its time stamp, and the line end that the log file adds.
  EXPECT_EQ(text.substr(19), "  ->  Allg. Meldung:\r\n" + blanks + "--------------\r\n" + blanks +
                                 "Quelle .............: VnZEL10cmn.clsZelItemList\r\n" + blanks +
                                 "Funktion ...........: BinaryDataGet\r\n" + blanks +
                                 "Instanz ............: " + list.ErrorObject().ErrorInstanceID() + "\r\n" +
                                 blanks + "Meldung ............: Keine Daten zur Ausgabe vorhanden\r\n" +
                                 "\r\n\r\n\r\n");
  // dd.mm.yyyy hh:mm:ss
  EXPECT_EQ(text[2], '.');
  EXPECT_EQ(text[5], '.');
  EXPECT_EQ(text[10], ' ');
  EXPECT_EQ(text[13], ':');
  EXPECT_EQ(text[16], ':');
}

TEST(clsZelItemListWrite, TheNoticeIsSkippedWhereMessagesAreSwitchedOff) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataGet(data, start));
  EXPECT_EQ(log.Text(), "");
}

TEST(clsZelItemListWrite, AFailingItemIsNamedByPositionStartAndInstanceId) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Host("eins", "A0 00")));
  const auto failing = Host("zwei", "A0 01 35");
  failing->failGet = true;
  EXPECT_TRUE(list.AddItem(failing));
  EXPECT_TRUE(list.AddItem(Host("drei", "A0 01 36")));
  ByteArray data;
  std::int32_t start = 10;
  EXPECT_FALSE(list.BinaryDataGet(data, start));
  test::ExpectError(list.ErrorObject(), 9301, true, "BinaryDataGet",
                    "Das Serialisieren von Daten ist fehlgeschlagen.\r\n"
                    "    Posten-Index ........: 2 (1-basisiert)\r\n"
                    "    Startpos ............: 15\r\n"
                    "    Instanz-ID ..........: zwei");
  EXPECT_EQ(start, 15);
  // What was written so far stays; the third item was not asked any more.
  EXPECT_EQ(FirstBytes(data, 16), "00 00 00 00 00 00 00 00 00 00 A0 00 A0 01 35 00");
  test::ExpectError(failing->ErrorObject(), 4711, true, "BinaryDataGet", "Posten kaputt");
}

/// Says that all is well and stands somewhere else.
class WanderingItem : public HostItem {
 public:
  explicit WanderingItem(std::int32_t end) : HostItem("wandernd"), end_(end) {}
  bool BinaryDataGet(ByteArray& /*Data*/, std::int32_t& Start) override {
    Start = end_;
    return true;
  }

 private:
  std::int32_t end_;
};

TEST(clsZelItemListWrite, AnItemThatMovesStartBackOrOutOfTheArrayHasFailed) {
  for (const std::int32_t end : {-7, 1, 257, 2'000'000'000}) {
    clsZelItemList list;
    EXPECT_TRUE(list.AddItem(Host("eins", "A0 00")));
    EXPECT_TRUE(list.AddItem(std::make_shared<WanderingItem>(end)));
    ByteArray data;
    std::int32_t start = 0;
    EXPECT_FALSE(list.BinaryDataGet(data, start));
    test::ExpectError(list.ErrorObject(), 9301, true, "BinaryDataGet",
                      "Das Serialisieren von Daten ist fehlgeschlagen.\r\n"
                      "    Posten-Index ........: 2 (1-basisiert)\r\n"
                      "    Startpos ............: " +
                          std::to_string(end) +
                          "\r\n"
                          "    Instanz-ID ..........: wandernd");
    EXPECT_EQ(data.UBound(), 255);
    std::string hash = "vorher";
    EXPECT_FALSE(list.GetItemHash(true, false, false, hash));
    EXPECT_EQ(hash, "vorher");
  }
}

TEST(clsZelItemListWrite, AnItemMayEndWhereTheArrayEnds) {
  for (const std::int32_t end : {2, 256}) {
    clsZelItemList list;
    EXPECT_TRUE(list.AddItem(Host("eins", "A0 00")));
    EXPECT_TRUE(list.AddItem(std::make_shared<WanderingItem>(end)));
    ByteArray data;
    std::int32_t start = 0;
    EXPECT_TRUE(list.BinaryDataGet(data, start));
    EXPECT_EQ(start, end);
  }
}

TEST(clsZelItemListWrite, ACashItemThatFailsStopsStartWhereItsRecordsEnd) {
  clsZelItemList list;
  const auto item = Bread();
  item->Price(3, Currency::FromScaled(1));  // rounds to no cent at all
  EXPECT_TRUE(list.AddItem(item));
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataGet(data, start));
  test::ExpectError(list.ErrorObject(), 9301, true, "BinaryDataGet",
                    "Das Serialisieren von Daten ist fehlgeschlagen.\r\n"
                    "    Posten-Index ........: 1 (1-basisiert)\r\n"
                    "    Startpos ............: 13\r\n"
                    "    Instanz-ID ..........: " +
                        item->InstanceID());
  EXPECT_EQ(start, 13);
  test::ExpectError(item->ErrorObject(), 0, false, "BinaryDataGet.[]", "Objekt: \"Preis 2\":\r\n");
}

TEST(clsZelItemListWrite, AnItemWithoutANameMakesTheListFail) {
  clsZelItemList list;
  const auto item = std::make_shared<clsZelItemCash>();
  EXPECT_TRUE(list.AddItem(item));
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataGet(data, start));
  EXPECT_EQ(list.ErrorObject().ErrorNr(), 9301);
  EXPECT_EQ(item->ErrorObject().ErrorNr(), 9302);
  EXPECT_EQ(start, 0);
}

TEST(clsZelItemListWrite, AStartThatCanHaveNoRoomFails) {
  for (const std::int32_t outside : {-1, -1000, INT32_MIN, INT32_MAX, INT32_MAX - 100}) {
    clsZelItemList list;
    EXPECT_TRUE(list.AddItem(Bread()));
    ByteArray data;
    std::int32_t start = outside;
    EXPECT_FALSE(list.BinaryDataGet(data, start)) << outside;
    EXPECT_TRUE(list.HasError());
    EXPECT_EQ(start, outside);
  }
}

// ---- reading

TEST(clsZelItemListRead, TwoItemsComeBackInOrderWithNewInstanceIds) {
  clsZelItemList source;
  EXPECT_TRUE(source.AddItem(Bread()));
  EXPECT_TRUE(source.AddItem(Milk()));
  ByteArray data;
  std::int32_t length = 0;
  ASSERT_TRUE(source.BinaryDataGet(data, length));
  data.RedimPreserve(length - 1);

  clsZelItemList list;
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataSet(data, start));
  test::ExpectNoError(list);
  EXPECT_EQ(start, 35);
  ASSERT_EQ(list.ItemCount(), 2);
  EXPECT_EQ(CashAt(list, 1).Quantity(), Currency(1));
  EXPECT_EQ(CashAt(list, 1).Name(), "brot");
  EXPECT_EQ(CashAt(list, 1).Unit(), "");
  EXPECT_EQ(CashAt(list, 1).Price(1), Currency::FromScaled(19900));
  EXPECT_FALSE(CashAt(list, 1).ThirdParty());
  EXPECT_EQ(CashAt(list, 2).Quantity(), Currency::FromScaled(5000));
  EXPECT_EQ(CashAt(list, 2).Name(), "milch");
  EXPECT_EQ(CashAt(list, 2).Unit(), "l");
  EXPECT_EQ(CashAt(list, 2).Price(2), Currency::FromScaled(123400));
  EXPECT_TRUE(CashAt(list, 2).ThirdParty());
  EXPECT_NE(list.ItemI(1)->InstanceID(), source.ItemI(1)->InstanceID());
  EXPECT_NE(list.ItemI(1)->InstanceID(), list.ItemI(2)->InstanceID());
  EXPECT_EQ(list.ItemK(list.ItemI(2)->InstanceID()), list.ItemI(2));
}

TEST(clsZelItemListRead, DecodedItemsReplaceTheOldOnesAndGetTheLogHandler) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  const auto old = Bread();
  EXPECT_TRUE(list.AddItem(old));
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataSet(FromHex(milk), start));
  ASSERT_EQ(list.ItemCount(), 1);
  EXPECT_EQ(list.ItemK(old->InstanceID()), nullptr);
  EXPECT_EQ(list.ItemI(1)->LogHandler(), log.Handler());
  EXPECT_EQ(log.Count(), 0U);
}

TEST(clsZelItemListRead, ReadingGoesOnFromStart) {
  clsZelItemList list;
  std::int32_t start = 13;
  EXPECT_TRUE(list.BinaryDataSet(FromHex(breadAndMilk), start));
  EXPECT_EQ(start, 35);
  ASSERT_EQ(list.ItemCount(), 1);
  EXPECT_EQ(CashAt(list, 1).Name(), "milch");
}

TEST(clsZelItemListRead, APositiveLowerBoundIsAddressedAbsolutely) {
  clsZelItemList list;
  std::int32_t start = 7;
  EXPECT_TRUE(list.BinaryDataSet(FromHexAt(7, breadAndMilk), start));
  EXPECT_EQ(start, 42);
  EXPECT_EQ(list.ItemCount(), 2);
}

TEST(clsZelItemListRead, NothingToReadLeavesAnEmptyList) {
  clsZelItemList list;
  for (const auto& data : {ByteArray(), FromHex("A0"), FromHex("C7")}) {
    EXPECT_TRUE(list.AddItem(Bread()));
    std::int32_t start = 0;
    EXPECT_TRUE(list.BinaryDataSet(data, start));
    EXPECT_EQ(start, 0);
    EXPECT_EQ(list.ItemCount(), 0);
    test::ExpectNoError(list);
  }
  EXPECT_TRUE(list.AddItem(Bread()));
  std::int32_t start = 1000;
  EXPECT_TRUE(list.BinaryDataSet(FromHex(bread), start));
  EXPECT_EQ(start, 1000);
  EXPECT_EQ(list.ItemCount(), 0);
}

TEST(clsZelItemListRead, DataLenEndsTheReadingBetweenItems) {
  struct Case {
    std::int32_t length;
    std::int32_t items;
    std::int32_t startAfter;
  };
  // The end is looked at before each item only: an item reads on to its own end.
  for (const Case& each : {Case{1, 0, 0}, Case{2, 1, 13}, Case{13, 1, 13}, Case{14, 1, 13}, Case{15, 2, 35},
                           Case{34, 2, 35}, Case{35, 2, 35}, Case{0, 2, 35}, Case{-5, 2, 35}}) {
    clsZelItemList list;
    std::int32_t start = 0;
    EXPECT_TRUE(list.BinaryDataSet(FromHex(breadAndMilk), start, each.length)) << each.length;
    EXPECT_EQ(list.ItemCount(), each.items) << each.length;
    EXPECT_EQ(start, each.startAfter) << each.length;
  }
}

TEST(clsZelItemListRead, DataLenBeyondTheDataFailsAndLeavesTheItems) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  const auto old = Milk();
  EXPECT_TRUE(list.AddItem(old));
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(bread), start, 14));
  test::ExpectError(list.ErrorObject(), 9207, true, "BinaryDataSet",
                    "Die Anzahl der zu lesenden Daten\r\n"
                    "Überschreitet die Pufferlänge\r\n"
                    "    Start ...........: 0\r\n"
                    "    Länge ...........: 14\r\n"
                    "    Endindex ........: 13\r\n"
                    "    Max. Index Daten : 12");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(list.ItemCount(), 1);
  EXPECT_EQ(list.ItemI(1), old);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataSet"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"9207"});
}

TEST(clsZelItemListRead, TheEndIndexNeverWraps) {
  clsZelItemList list;
  std::int32_t start = 10;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(bread), start, INT32_MAX));
  test::ExpectError(list.ErrorObject(), 9207, true, "BinaryDataSet",
                    "Die Anzahl der zu lesenden Daten\r\n"
                    "Überschreitet die Pufferlänge\r\n"
                    "    Start ...........: 10\r\n"
                    "    Länge ...........: 2147483647\r\n"
                    "    Endindex ........: 2147483656\r\n"
                    "    Max. Index Daten : 12");
  EXPECT_EQ(start, 10);
  start = INT32_MAX;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(bread), start, INT32_MAX));
  EXPECT_EQ(list.ErrorObject().ErrorNr(), 9207);
}

TEST(clsZelItemListRead, DataLenOfAnEmptyArrayFails) {
  clsZelItemList list;
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(ByteArray(), start, 1));
  test::ExpectError(list.ErrorObject(), 9207, true, "BinaryDataSet",
                    "Die Anzahl der zu lesenden Daten\r\n"
                    "Überschreitet die Pufferlänge\r\n"
                    "    Start ...........: 0\r\n"
                    "    Länge ...........: 1\r\n"
                    "    Endindex ........: 0\r\n"
                    "    Max. Index Daten : -1");
}

TEST(clsZelItemListRead, ADamagedItemFailsNamingTheByteBehindItsTag) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  std::int32_t start = 2;
  // Two good items, and a third whose second record has a tag of its own.
  EXPECT_FALSE(list.BinaryDataSet(
      FromHex("FF FF A0 01 31 A2 01 61 A0 02 31 32 A2 01 62 A0 03 31 2E 35 C7 00"), start));
  test::ExpectError(list.ErrorObject(), 9307, true, "BinaryDataSet",
                    "Ein Buchungsposten konnte nicht dekodiert werden\r\n"
                    "    Start ...........: 2\r\n"
                    "    Tag .............: 03\r\n"
                    "    lfd. Postennr. ..: 3");
  // Start stands at the item that could not be decoded; the items before it stay.
  EXPECT_EQ(start, 15);
  ASSERT_EQ(list.ItemCount(), 2);
  EXPECT_EQ(CashAt(list, 1).Name(), "a");
  EXPECT_EQ(CashAt(list, 2).Quantity(), Currency(12));
  // First the item itself, then the list.
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"BinaryDataSet", "BinaryDataSet"}));
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9305", "9307"}));
}

TEST(clsZelItemListRead, ADamagedFirstItemLeavesAnEmptyList) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Bread()));
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex("A0 FF 31"), start));
  test::ExpectError(list.ErrorObject(), 9307, true, "BinaryDataSet",
                    "Ein Buchungsposten konnte nicht dekodiert werden\r\n"
                    "    Start ...........: 0\r\n"
                    "    Tag .............: FF\r\n"
                    "    lfd. Postennr. ..: 1");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(list.ItemCount(), 0);
}

TEST(clsZelItemListRead, AStartBelowTheArrayIsAFailureNotACrash) {
  for (const std::int32_t below : {-1, -2, INT32_MIN}) {
    clsZelItemList list;
    std::int32_t start = below;
    EXPECT_FALSE(list.BinaryDataSet(FromHex(bread), start)) << below;
    EXPECT_TRUE(list.HasError());
    EXPECT_EQ(start, below);
    EXPECT_EQ(list.ItemCount(), 0);
  }
}

TEST(clsZelItemListRead, TheHostsFactoryMakesTheItems) {
  const auto factory = std::make_shared<HostFactory>(HostFactory::Mode::New);
  clsZelItemList list;
  list.ItemFactory(factory);
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataSet(FromHex(breadAndMilk), start));
  EXPECT_EQ(factory->calls, 2);
  EXPECT_TRUE(factory->sawNoErrorObject);
  ASSERT_EQ(list.ItemCount(), 2);
  EXPECT_EQ(ToHex(dynamic_cast<HostItem&>(*list.ItemI(1)).bytes), bread);
  EXPECT_EQ(ToHex(dynamic_cast<HostItem&>(*list.ItemI(2)).bytes), milk);
  EXPECT_EQ(list.ItemK("id2"), list.ItemI(2));
}

TEST(clsZelItemListRead, NoFactoryMeansTheDefaultOne) {
  clsZelItemList list;
  list.ItemFactory(std::make_shared<HostFactory>(HostFactory::Mode::New));
  list.ItemFactory(nullptr);
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataSet(FromHex(bread), start));
  ASSERT_EQ(list.ItemCount(), 1);
  EXPECT_EQ(CashAt(list, 1).Name(), "brot");
}

TEST(clsZelItemListRead, TheFactorySurvivesClear) {
  const auto factory = std::make_shared<HostFactory>(HostFactory::Mode::New);
  clsZelItemList list;
  list.ItemFactory(factory);
  EXPECT_TRUE(list.Clear());
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataSet(FromHex(bread), start));
  EXPECT_EQ(factory->calls, 1);
}

TEST(clsZelItemListRead, AFactoryThatReturnsNoneIsAFault) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  list.ItemFactory(std::make_shared<HostFactory>(HostFactory::Mode::None));
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(bread), start));
  EXPECT_TRUE(list.HasError());
  EXPECT_FALSE(list.ErrorObject().IsUserDef());
  EXPECT_EQ(list.ErrorObject().ErrorFunction(), "BinaryDataSet");
  EXPECT_EQ(list.ItemCount(), 0);
  EXPECT_EQ(start, 0);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataSet"});
}

TEST(clsZelItemListRead, AFactoryThatThrowsIsAFault) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  list.ItemFactory(std::make_shared<HostFactory>(HostFactory::Mode::Throws));
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(bread), start));
  test::ExpectFault(list.ErrorObject(), 5, "BinaryDataSet");
  EXPECT_EQ(list.ItemCount(), 0);
  EXPECT_EQ(start, 0);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataSet"});
}

TEST(clsZelItemListRead, AFactoryOutOfMemoryIsAFault) {
  clsZelItemList list;
  list.ItemFactory(std::make_shared<HostFactory>(HostFactory::Mode::OutOfMemory));
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(bread), start));
  test::ExpectFault(list.ErrorObject(), 7, "BinaryDataSet");
}

TEST(clsZelItemListRead, AFactoryThatReturnsTheSameItemTwiceFailsAtTheSecond) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  list.ItemFactory(std::make_shared<HostFactory>(HostFactory::Mode::SameEachTime));
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(breadAndMilk), start));
  test::ExpectError(list.ErrorObject(), 9306, true, "BinaryDataSet",
                    "Ein Buchungsposten konnte nicht übernommen werden\r\n"
                    "    Start ...........: 0\r\n"
                    "    Tag .............: 03\r\n"
                    "    lfd. Postennr. ..: 2");
  EXPECT_EQ(list.ItemCount(), 1);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataSet"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"9306"});
}

TEST(clsZelItemListRead, AHostItemThatFailsKeepsItsOwnError) {
  const auto factory = std::make_shared<HostFactory>(HostFactory::Mode::SecondFails);
  clsZelItemList list;
  list.ItemFactory(factory);
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(breadAndMilk), start));
  test::ExpectError(list.ErrorObject(), 9307, true, "BinaryDataSet",
                    "Ein Buchungsposten konnte nicht dekodiert werden\r\n"
                    "    Start ...........: 0\r\n"
                    "    Tag .............: 03\r\n"
                    "    lfd. Postennr. ..: 2");
  EXPECT_EQ(start, 13);
  EXPECT_EQ(list.ItemCount(), 1);
}

TEST(clsZelItemListRead, SuccessClearsAnOldError) {
  clsZelItemList list;
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(bread), start, 99));
  EXPECT_TRUE(list.BinaryDataSet(FromHex(bread), start));
  test::ExpectNoError(list);
}

TEST(clsZelItemListRead, TenThousandItemsComeBack) {
  clsZelItemList source;
  for (int i = 0; i < 10000; ++i) {
    EXPECT_TRUE(source.AddItem(Bread()));
  }
  ByteArray data;
  std::int32_t length = 0;
  ASSERT_TRUE(source.BinaryDataGet(data, length));
  EXPECT_EQ(length, 130000);
  EXPECT_EQ(data.UBound(), 1279999);
  data.RedimPreserve(length - 1);
  clsZelItemList list;
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataSet(data, start, length));
  EXPECT_EQ(list.ItemCount(), 10000);
  EXPECT_EQ(start, 130000);
}

}  // namespace
