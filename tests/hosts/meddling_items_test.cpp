// Items of a host's own that do anything while they are asked for their records. What comes out is a documented
// failure or the result of the steps as they are written, never foreign memory or another list's hash.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::ByteArray;
using test::clsZelItemList;
using test::clsZelReport;
using test::clsZelTransAct;
using test::ExpectOutcome;
using test::FromHex;
using test::ItemsOf;
using test::IVnZelItem;
using test::Scripted;
using test::ScriptedItem;
using test::ZELHashFmt;
using test::ZELSerialType;
using Item = std::shared_ptr<IVnZelItem>;
using Items = std::vector<Item>;

constexpr std::int32_t kLast = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kFirst = std::numeric_limits<std::int32_t>::min();
constexpr std::string_view kAny = test::kAnyItem;

/// The SHA-256 hash of a list, or none with a documented failure.
std::optional<std::string> HashOf(clsZelItemList& list) {
  std::string hash = "unverändert";
  const bool done = list.GetItemHash(true, false, false, hash);
  ExpectOutcome(list, done);
  if (!done) {
    EXPECT_EQ(hash, "unverändert");
    return std::nullopt;
  }
  return hash;
}

/// A list of one item that writes as it is told, alone and with cash items before and behind it; each is hashed.
/// Where it succeeds, the hash must be that of `expected`, the item's bytes.
void ExpectHash(const std::function<bool(ByteArray&, std::int32_t&)>& write,
                const std::optional<std::string>& expected) {
  clsZelItemList list;
  const auto item = Scripted("A");
  item->write = write;
  ASSERT_TRUE(list.AddItem(item));
  const auto hash = HashOf(list);
  if (hash) {
    ASSERT_TRUE(expected) << "there are no bytes from 0 on to be hashed";
    EXPECT_EQ(*hash, test::Sha256Text(*expected));
  }
  // Whatever becomes of these, it is no fault.
  ASSERT_TRUE(list.AddItem(test::CashItem("y", 1)));
  HashOf(list);
  clsZelTransAct booking;
  test::Prepare(booking);
  ASSERT_TRUE(booking.AddItem(test::CashItem("z", 1)));
  ASSERT_TRUE(booking.AddItem(item));
  ByteArray request;
  ExpectOutcome(booking, booking.BinaryDataGet(ZELSerialType::Request, request, 0));
  ByteArray bytes = ByteArray::WithBounds(0, 9999);
  ExpectOutcome(booking, booking.BinaryDataGet(ZELSerialType::ItemList, bytes, 0));
  ExpectOutcome(booking, booking.BinaryDataGet(ZELSerialType::ItemHash, bytes, 0));
  booking.GetItemHash(ZELHashFmt::Base16);
  clsZelReport report;
  ASSERT_TRUE(report.AddItem(item));
  ExpectOutcome(report, report.BinaryDataGet(ZELSerialType::Request, request, 0));
  ExpectOutcome(report, report.BinaryDataGet(ZELSerialType::ItemList, bytes, 0));
}

TEST(ItemThatMovesTheBounds, FarUpIsNeverHashedFromForeignMemory) {
  for (const std::int32_t end :
       {1, 6, 50, 127, 128, 99'999, 100'000, 100'010, 100'049, 100'050, 100'051, kLast, -1, kFirst}) {
    ExpectHash(
        [end](ByteArray& data, std::int32_t& start) {
          data.Redim(100'000, 100'049);
          start = end;
          return true;
        },
        std::nullopt);
  }
}

TEST(ItemThatMovesTheBounds, FarUpAndWritesNothingHasTheHashOfNothing) {
  ExpectHash(
      [](ByteArray& data, std::int32_t&) {
        data.Redim(100'000, 100'049);
        return true;
      },
      "");
}

TEST(ItemThatMovesTheBounds, ALittleUpIsNeverHashedFromBeforeTheArray) {
  ExpectHash(
      [](ByteArray& data, std::int32_t& start) {
        data.Redim(3, 200);
        start = 10;
        return true;
      },
      std::nullopt);
}

TEST(ItemThatMovesTheBounds, BelowZeroIsHashedFromIndexZero) {
  ExpectHash(
      [](ByteArray& data, std::int32_t& start) {
        data.Redim(-50, 300);
        std::fill(data.begin(), data.end(), std::uint8_t{0xEE});
        start = 0;
        for (const std::uint8_t byte : FromHex(kAny)) {
          data[start++] = byte;
        }
        return true;
      },
      std::string(kAny));
}

TEST(ItemThatMovesTheBounds, ToItsOwnSizeIsHashedWhole) {
  ExpectHash(
      [](ByteArray& data, std::int32_t& start) {
        data = FromHex(kAny);
        start = 6;
        return true;
      },
      std::string(kAny));
}

TEST(ItemThatMovesTheBounds, ToMakeRoomIsHashedWhole) {
  std::string records;
  for (int i = 0; i < 100; ++i) {
    records.append(kAny).append(" ");
  }
  ExpectHash(
      [records](ByteArray& data, std::int32_t& start) {
        data.RedimPreserve(start + 599);
        for (const std::uint8_t byte : FromHex(records)) {
          data[start++] = byte;
        }
        return true;
      },
      records);
}

TEST(ItemThatMovesTheBounds, ToNothingHasTheHashOfNothing) {
  ExpectHash(
      [](ByteArray& data, std::int32_t& start) {
        data.Redim(0, -1);
        start = 0;
        return true;
      },
      "");
}

TEST(ItemThatMovesTheBounds, ToNothingButClaimsBytesFails) {
  for (const std::int32_t end : {1, 5, 127, 128, kLast}) {
    ExpectHash(
        [end](ByteArray& data, std::int32_t& start) {
          data.Redim(0, -1);
          start = end;
          return true;
        },
        std::nullopt);
  }
}

TEST(ItemThatMovesTheBounds, BelowWhatOthersWroteFails) {
  for (const bool movesBack : {false, true}) {
    clsZelItemList list;
    ASSERT_TRUE(list.AddItem(Scripted("A")));
    const auto item = Scripted("B");
    item->write = [movesBack](ByteArray& data, std::int32_t& start) {
      data.RedimPreserve(2);
      start = movesBack ? 3 : start;
      return true;
    };
    ASSERT_TRUE(list.AddItem(item));
    EXPECT_EQ(HashOf(list), std::nullopt);
    test::ExpectError(list.ErrorObject(), 9301, true, "BinaryDataGet",
                      std::string("Das Serialisieren von Daten ist fehlgeschlagen.\r\n"
                                  "    Posten-Index ........: 2 (1-basisiert)\r\n"
                                  "    Startpos ............: ") +
                          (movesBack ? "3" : "6") + "\r\n    Instanz-ID ..........: B");
  }
}

TEST(ItemThatMovesStart, AnywhereIsNeverHashedBeyondTheArray) {
  for (const std::int32_t end : {kFirst, -7, -1, 129, 200, 100'000, kLast - 1, kLast}) {
    ExpectHash(
        [end](ByteArray&, std::int32_t& start) {
          start = end;
          return true;
        },
        std::nullopt);
  }
}

TEST(ItemThatMovesStart, OutOfTheArrayIsNamedWithWhereItStands) {
  for (const std::int32_t end : {-7, 400, kLast}) {
    clsZelItemList list;
    ASSERT_TRUE(list.AddItem(Scripted("A")));
    const auto item = Scripted("B");
    item->write = [end](ByteArray&, std::int32_t& start) {
      start = end;
      return true;
    };
    ASSERT_TRUE(list.AddItem(item));
    ASSERT_TRUE(list.AddItem(Scripted("C")));
    ByteArray data;
    std::int32_t start = 0;
    EXPECT_FALSE(list.BinaryDataGet(data, start));
    EXPECT_EQ(start, end);
    test::ExpectError(list.ErrorObject(), 9301, true, "BinaryDataGet",
                      "Das Serialisieren von Daten ist fehlgeschlagen.\r\n"
                      "    Posten-Index ........: 2 (1-basisiert)\r\n"
                      "    Startpos ............: " +
                          std::to_string(end) + "\r\n    Instanz-ID ..........: B");
  }
}

TEST(ItemThatChangesTheBytesOfOthers, IsHashedAsTheBytesStand) {
  clsZelItemList list;
  ASSERT_TRUE(list.AddItem(Scripted("A")));
  const auto item = Scripted("B");
  item->write = [&item = *item](ByteArray& data, std::int32_t& start) {
    data[2] = 0x39;
    return item.Write(data, start);
  };
  ASSERT_TRUE(list.AddItem(item));
  EXPECT_EQ(HashOf(list), test::Sha256Text("A0 01 39 A2 01 78 A0 01 31 A2 01 78"));
}

// Items that answer differently each time

TEST(ItemThatAnswersDifferently, HasTheTextOfTheFirstAnswerAndTheHashOfTheSecond) {
  clsZelTransAct booking;
  test::Prepare(booking);
  const auto item = Scripted("A");
  item->onWrite = [&item = *item] {
    item.bytes = FromHex(item.writes % 2 == 1 ? "A0 01 31 A2 01 78" : "A0 01 32 A2 02 79 79");
  };
  ASSERT_TRUE(booking.AddItem(item));
  (void)test::BuildRequest(booking);
  EXPECT_EQ(booking.ItemHash(), test::Sha256Text("A0 01 32 A2 02 79 79"));
  ASSERT_TRUE(test::HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  std::string document;
  ASSERT_TRUE(booking.XmlHandler(document, true));
  EXPECT_NE(document.find("<itemListEncoded>oAExogF4</itemListEncoded>"), std::string::npos) << document;
}

TEST(ItemThatAnswersDifferently, MayGiveOtherPricesThanItWrites) {
  clsZelTransAct booking;
  test::Prepare(booking);
  const auto item = Scripted("A");
  item->onPrices = [&item = *item] { item.prices[0] += test::Currency(1); };
  ASSERT_TRUE(booking.AddItem(item));
  for (int times = 1; times <= 3; ++times) {
    (void)test::BuildRequest(booking);
    test::Currency turnover;
    test::Currency vat;
    test::Currency rate;
    ASSERT_TRUE(booking.GetContainerValues(1, turnover, vat, rate));
    EXPECT_EQ(turnover, test::Currency(times));
  }
}

// Items that change their list while they are asked for their records or prices

enum class Change { Clear, RemoveItself, RemoveFirst, RemoveLast, Add, Replace };
constexpr Change kChanges[] = {Change::Clear,      Change::RemoveItself, Change::RemoveFirst,
                               Change::RemoveLast, Change::Add,          Change::Replace};

void Empty(clsZelItemList& list) { EXPECT_TRUE(list.Clear()); }
template <class Holder>
void Empty(Holder& holder) {
  EXPECT_TRUE(holder.ClearItems());
}

template <class Holder>
void Apply(Change change, Holder& holder, const Item& item) {
  switch (change) {
    case Change::Clear: Empty(holder); break;
    case Change::RemoveItself: EXPECT_TRUE(holder.RemoveItem(item)); break;
    case Change::RemoveFirst: EXPECT_TRUE(holder.RemoveItem(nullptr, {}, 1)); break;
    case Change::RemoveLast: EXPECT_TRUE(holder.RemoveItem(nullptr, {}, holder.ItemCount())); break;
    case Change::Add: EXPECT_TRUE(holder.AddItem(test::CashItem("neu", 1))); break;
    default:
      EXPECT_TRUE(holder.RemoveItem(nullptr, {}, 1));
      EXPECT_TRUE(holder.AddItem(test::CashItem("neu", 1)));
  }
}

/// Three items of which one changes what holds them, once, whenever `hook` of it is called.
template <class Holder>
std::shared_ptr<ScriptedItem> AddMeddler(Holder& holder, int position, Change change,
                                         std::function<void()> ScriptedItem::*hook) {
  std::shared_ptr<ScriptedItem> meddler;
  for (int i = 1; i <= 3; ++i) {
    const auto item = Scripted(std::string(1, static_cast<char>('@' + i)));
    EXPECT_TRUE(holder.AddItem(item));
    if (i == position) {
      meddler = item;
    }
  }
  (*meddler).*hook = [&holder, change, hook, weak = std::weak_ptr<ScriptedItem>(meddler)] {
    const auto self = weak.lock();
    (*self).*hook = nullptr;
    Apply(change, holder, self);
  };
  return meddler;
}

std::string NotSerialised(int position) {
  return "Das Serialisieren von Daten ist fehlgeschlagen.\r\n    Posten-Index ........: " +
         std::to_string(position) +
         " (1-basisiert)\r\n    Startpos ............: " + std::to_string(6 * position) +
         "\r\n    Instanz-ID ..........: " + std::string(1, static_cast<char>('@' + position));
}

TEST(ItemThatChangesItsList, FailsTheListThatIsWritten) {
  for (const Change change : kChanges) {
    for (int position = 1; position <= 3; ++position) {
      clsZelItemList list;
      AddMeddler(list, position, change, &ScriptedItem::onWrite);
      ByteArray data;
      std::int32_t start = 0;
      EXPECT_FALSE(list.BinaryDataGet(data, start)) << static_cast<int>(change) << " at " << position;
      test::ExpectError(list.ErrorObject(), 9301, true, "BinaryDataGet", NotSerialised(position));
      // The next time nothing changes.
      start = 0;
      EXPECT_TRUE(list.BinaryDataGet(data, start));
    }
  }
}

TEST(ItemThatChangesItsList, FailsItsHash) {
  for (const Change change : kChanges) {
    for (int position = 1; position <= 3; ++position) {
      clsZelItemList list;
      AddMeddler(list, position, change, &ScriptedItem::onWrite);
      EXPECT_EQ(HashOf(list), std::nullopt) << static_cast<int>(change) << " at " << position;
      test::ExpectError(list.ErrorObject(), 9301, true, "BinaryDataGet", NotSerialised(position));
      EXPECT_NE(HashOf(list), std::nullopt);
    }
  }
}

TEST(ItemThatChangesItsList, FailsTheRequestOfABookingThatWritesIt) {
  for (const Change change : kChanges) {
    for (int position = 1; position <= 3; ++position) {
      clsZelTransAct booking;
      test::Prepare(booking);
      AddMeddler(booking, position, change, &ScriptedItem::onWrite);
      ByteArray request;
      EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
      test::ExpectError(booking.ErrorObject(), 9301, true, "EncodeRqst",
                        "Buchung: Das Erstellen der Anfrage ist nicht möglich!\r\n"
                        "Die Daten der Buchungsposten konnten nicht\r\ngelesen werden.");
      EXPECT_EQ(booking.ZelRqstData(), "");
    }
  }
}

TEST(ItemThatChangesItsList, FailsTheRequestOfABookingThatHashesIt) {
  for (const Change change : kChanges) {
    clsZelTransAct booking;
    test::Prepare(booking);
    const auto item = AddMeddler(booking, 2, change, &ScriptedItem::onWrite);
    const std::function<void()> meddle = item->onWrite;
    item->onWrite = [&item = *item, meddle] {
      if (item.writes == 2) {
        meddle();
      }
    };
    ByteArray request;
    EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
    test::ExpectError(booking.ErrorObject(), 9301, true, "EncodeRqst.[GetZelOperator]",
                      "Buchung: Das Erstellen der Anfrage ist nicht möglich!\r\n"
                      "Der Hashkode über die Buchungspositionen konnte nicht erstellt werden!\r\n"
                      "    Hash-Typ ........: SHA256\r\n    Position ........: 0");
  }
}

TEST(ItemThatChangesItsList, FailsTheRequestOfABookingThatAsksForItsPrices) {
  for (const Change change : kChanges) {
    for (int position = 1; position <= 3; ++position) {
      clsZelTransAct booking;
      test::Prepare(booking);
      AddMeddler(booking, position, change, &ScriptedItem::onPrices);
      ByteArray request;
      EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, request, 0))
          << static_cast<int>(change) << " at " << position;
      test::ExpectError(booking.ErrorObject(), 9302, true, "EncodeRqst",
                        "Buchung: Das Erstellen der Anfrage ist nicht möglich!\r\n"
                        "Die Preisbestandteile für einen Buchungsposten\r\nkonnten nicht gelesen werden!");
      EXPECT_EQ(booking.ZelRqstData(), "");
    }
  }
}

TEST(ItemThatChangesItsList, FailsTheRequestOfAReport) {
  for (const Change change : kChanges) {
    for (int position = 1; position <= 3; ++position) {
      clsZelReport report;
      report.ReportDate(test::Date::FromCivil(2024, 3, 15));
      AddMeddler(report, position, change, &ScriptedItem::onWrite);
      ByteArray request;
      EXPECT_FALSE(report.BinaryDataGet(ZELSerialType::Request, request, 0));
      test::ExpectError(report.ErrorObject(), 9301, true, "EncodeRqst.[GetItemHash]",
                        "Report: Kodieren der ZEL-Anfrage nicht möglich!\r\n"
                        "Der Hashcode konnte nicht aus den Abschlußposten ermittelt werden werden!\r\n"
                        "    Position ........: 10\r\n    Hash-Typ ........: SHA1");
    }
  }
}

TEST(ItemThatChangesItsList, FailsTheItemListAndTheHashThatABookingHandsOut) {
  for (const Change change : kChanges) {
    clsZelTransAct booking;
    AddMeddler(booking, 2, change, &ScriptedItem::onWrite);
    ByteArray data = ByteArray::WithBounds(0, 999);
    EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::ItemList, data, 0));
    test::ExpectError(booking.ErrorObject(), 9301, true, "EncodeItems.[BinaryDataSet]",
                      "Buchung: Kodieren der Postenliste nicht möglich!\r\n"
                      "Die Daten konnten nicht aus dem Listenobjekt gelesen werden.");
    clsZelTransAct hashed;
    AddMeddler(hashed, 2, change, &ScriptedItem::onWrite);
    EXPECT_EQ(hashed.GetItemHash(ZELHashFmt::Base64), "##FEHLER##");
    test::ExpectError(hashed.ErrorObject(), 9000, true, "GetItemHash",
                      "Hashausgabe nicht möglich!\r\nEine interne Funktion meldete einen Fehler");
  }
}

TEST(ItemThatChangesItsList, WhileItsTextIsMadeDoesNoHarm) {
  for (const Change change : kChanges) {
    for (int position = 1; position <= 3; ++position) {
      clsZelItemList list;
      list.PrintEngine(nullptr);
      AddMeddler(list, position, change, &ScriptedItem::onShow);
      EXPECT_NE(list.ToString(), "");
      ExpectOutcome(list, !list.HasError());
      clsZelTransAct booking;
      AddMeddler(booking, position, change, &ScriptedItem::onShow);
      booking.ToString();
      ExpectOutcome(booking, !booking.HasError());
      clsZelTransAct priced;
      AddMeddler(priced, position, change, &ScriptedItem::onPrices);
      priced.ToString();
      ExpectOutcome(priced, !priced.HasError());
    }
  }
}

/// An item that adds one like itself every time that it is shown or asked.
std::shared_ptr<ScriptedItem> Breeder(const std::function<void(const Item&)>& add, int& count) {
  auto item = Scripted("BREEDER-" + std::to_string(++count));
  item->onShow = item->onWrite = item->onPrices = [add, &count] {
    if (count < 2000) {
      add(Breeder(add, count));
    }
  };
  return item;
}

TEST(ItemThatAddsAnotherWheneverItIsAsked, DoesNotKeepTheListForEver) {
  int count = 0;
  clsZelItemList list;
  list.PrintEngine(nullptr);
  const auto add = [&list](const Item& item) { EXPECT_TRUE(list.AddItem(item)); };
  add(Breeder(add, count));
  list.ToString();
  EXPECT_LT(count, 100);
  std::string hash;
  EXPECT_FALSE(list.GetItemHash(true, false, false, hash));
  EXPECT_LT(count, 100);
}

TEST(ItemThatAddsAnotherWheneverItIsAsked, DoesNotKeepABookingForEver) {
  int count = 0;
  clsZelTransAct booking;
  test::Prepare(booking);
  const auto add = [&booking](const Item& item) { EXPECT_TRUE(booking.AddItem(item)); };
  add(Breeder(add, count));
  booking.ToString();
  EXPECT_LT(count, 100);
  ByteArray request;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
  EXPECT_LT(count, 100);
}

// Items that are let go while they run

TEST(ItemThatRemovesItself, LivesUntilItReturns) {
  for (const auto hook : {&ScriptedItem::onWrite, &ScriptedItem::onPrices, &ScriptedItem::onShow}) {
    clsZelTransAct booking;
    test::Prepare(booking);
    std::weak_ptr<ScriptedItem> watched;
    {
      const auto item = Scripted("A");
      watched = item;
      (*item).*hook = [&booking, watched] {
        booking.RemoveItem(watched.lock());
        EXPECT_FALSE(watched.expired()) << "it is running";
      };
      ASSERT_TRUE(booking.AddItem(item));
    }
    ASSERT_TRUE(booking.AddItem(Scripted("B")));
    ByteArray request;
    booking.BinaryDataGet(ZELSerialType::Request, request, 0);
    booking.ToString();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(booking.ItemCount(), 1);
  }
}

TEST(ItemThatRemovesItself, WhenItIsAskedForItsIdLivesUntilItReturns) {
  for (const bool byList : {true, false}) {
    clsZelItemList list;
    std::weak_ptr<ScriptedItem> watched;
    {
      const auto item = Scripted("A");
      watched = item;
      ASSERT_TRUE(list.AddItem(Scripted("B")));
      ASSERT_TRUE(list.AddItem(item));
      item->onId = [&list, watched] {
        list.RemoveItem(watched.lock());
        EXPECT_FALSE(watched.expired()) << "it is running";
      };
    }
    if (byList) {
      list.ItemK("nobody");
    } else {
      EXPECT_TRUE(list.RemoveItem(nullptr, "nobody"));
    }
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(list.ItemCount(), 1);
  }
}

/// An item that does something when it ends.
class Farewell : public ScriptedItem {
 public:
  Farewell(std::string id, std::function<void()> last)
      : ScriptedItem(std::move(id)), last_(std::move(last)) {}
  ~Farewell() override {
    if (last_) {
      last_();
    }
  }

 private:
  std::function<void()> last_;
};

TEST(ItemThatChangesItsListWhenItEnds, LeavesTheListWhole) {
  for (const Change change : {Change::Clear, Change::RemoveFirst, Change::RemoveLast, Change::Add}) {
    for (const int kind : {0, 1, 2, 3}) {
      clsZelItemList list;
      for (int i = 0; i < 40; ++i) {
        ASSERT_TRUE(list.AddItem(Scripted("B" + std::to_string(i))));
        if (i % 2 == 0) {
          ASSERT_TRUE(list.AddItem(std::make_shared<Farewell>("F" + std::to_string(i), [&list, change] {
            if (list.ItemCount() > 0) {
              Apply(change, list, nullptr);
            }
          })));
        }
      }
      switch (kind) {
        case 0: EXPECT_TRUE(list.RemoveItem(nullptr, "F20")); break;
        case 1: EXPECT_TRUE(list.RemoveItem(nullptr, {}, 2)); break;
        case 2: EXPECT_TRUE(list.Clear()); break;
        default:
          while (list.ItemCount() > 0 && list.ItemK("B39")) {
            EXPECT_TRUE(list.RemoveItem(list.ItemI(1)));
          }
      }
      const Items items = ItemsOf(list);
      EXPECT_EQ(items, Items(list.begin(), list.end()));
      for (const Item& item : items) {
        ASSERT_NE(item, nullptr);
        EXPECT_EQ(list.ItemK(item->InstanceID()), item);
      }
      list.Clear();
      list.Clear();
    }
  }
}

// Items that change the list while they are added, searched or removed

void ExpectWhole(clsZelItemList& list) {
  const Items items = ItemsOf(list);
  EXPECT_EQ(items, Items(list.begin(), list.end()));
  for (const Item& item : items) {
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(list.ItemK(item->InstanceID()), item);
    EXPECT_FALSE(list.AddItem(item));
  }
  EXPECT_EQ(ItemsOf(list), items);
}

/// A list of so many items, of which a half was removed again so that there are gaps.
void FillWithGaps(clsZelItemList& list, int size) {
  for (int i = 0; i < size; ++i) {
    ASSERT_TRUE(list.AddItem(i % 3 == 0 ? Item(test::CashItem("x", 1)) : Scripted("O" + std::to_string(i))));
  }
  for (int i = 0; i < size / 2; ++i) {
    ASSERT_TRUE(list.RemoveItem(nullptr, {}, 1 + i));
  }
}

TEST(ItemThatChangesTheListWhileItIsAdded, LeavesItWhole) {
  for (const auto hook : {&ScriptedItem::onId, &ScriptedItem::onLog}) {
    for (const int size : {0, 1, 16, 34, 40}) {
      for (const Change change : {Change::Clear, Change::RemoveFirst, Change::RemoveLast, Change::Add}) {
        clsZelItemList list;
        FillWithGaps(list, size);
        const auto item = Scripted("A");
        (*item).*hook = [&list, change, hook, &item = *item] {
          item.*hook = nullptr;
          if (list.ItemCount() > 0 || change == Change::Add) {
            Apply(change, list, nullptr);
          }
        };
        EXPECT_TRUE(list.AddItem(item));
        EXPECT_EQ(list.ItemK("A"), item);
        EXPECT_EQ(list.ItemI(list.ItemCount()), item);
        ExpectWhole(list);
      }
    }
  }
}

TEST(ItemThatAddsItselfWhileItIsAdded, IsThereOnce) {
  for (const auto hook : {&ScriptedItem::onId, &ScriptedItem::onLog}) {
    clsZelItemList list;
    ASSERT_TRUE(list.AddItem(Scripted("B")));
    const auto item = Scripted("A");
    (*item).*hook = [&list, hook, weak = std::weak_ptr<ScriptedItem>(item)] {
      const auto self = weak.lock();
      (*self).*hook = nullptr;
      EXPECT_TRUE(list.AddItem(self));
    };
    EXPECT_FALSE(list.AddItem(item));
    test::ExpectError(list.ErrorObject(), 9306, true, "AddItem",
                      "Ein Buchungsposten konnte nicht übernommen werden\r\n"
                      "    Instanz-ID ..........: A");
    EXPECT_EQ(list.ItemCount(), 2);
    ExpectWhole(list);
  }
}

TEST(ItemThatAddsAnotherOfItsNameWhileItIsAdded, IsRefused) {
  clsZelItemList list;
  const auto item = Scripted("A");
  const auto other = Scripted("A");
  item->onId = [&list, &item = *item, other] {
    item.onId = nullptr;
    EXPECT_TRUE(list.AddItem(other));
  };
  EXPECT_FALSE(list.AddItem(item));
  EXPECT_EQ(list.ErrorObject().ErrorNr(), 9306);
  EXPECT_EQ(ItemsOf(list), Items{other});
}

TEST(ItemThatChangesTheListWhileOneIsSearched, LeavesItWhole) {
  for (const int size : {1, 16, 34, 40}) {
    for (const Change change : {Change::Clear, Change::RemoveFirst, Change::RemoveLast, Change::Add}) {
      for (const std::string wanted : {"A", "LAST", "nobody"}) {
        clsZelItemList list;
        FillWithGaps(list, size);
        const auto item = Scripted("A");
        ASSERT_TRUE(list.AddItem(item));
        const auto last = Scripted("LAST");
        ASSERT_TRUE(list.AddItem(last));
        item->onId = [&list, change, &item = *item] {
          item.onId = nullptr;
          if (list.ItemCount() > 0) {
            Apply(change, list, nullptr);
          }
        };
        const Item found = list.ItemK(wanted);
        EXPECT_TRUE(!found || found->InstanceID() == wanted);
        EXPECT_TRUE(found || wanted == "nobody" || change == Change::Clear || change == Change::RemoveFirst ||
                    change == Change::RemoveLast)
            << "nothing was removed";
        ExpectWhole(list);
      }
    }
  }
}

TEST(ItemThatChangesTheListWhileOneIsRemovedByItsId, LosesNoOther) {
  for (const int size : {0, 1, 16, 34, 40}) {
    for (const Change change : {Change::Clear, Change::RemoveFirst, Change::RemoveLast, Change::Add}) {
      for (const std::string wanted : {"A", "WANTED", "nobody"}) {
        clsZelItemList list;
        FillWithGaps(list, size);
        const auto first = Scripted("FIRST");
        ASSERT_TRUE(list.AddItem(first));
        const auto item = Scripted("A");
        ASSERT_TRUE(list.AddItem(item));
        ASSERT_TRUE(list.AddItem(Scripted("WANTED")));
        ASSERT_TRUE(list.AddItem(Scripted("C")));
        const auto last = Scripted("LAST");
        ASSERT_TRUE(list.AddItem(last));
        Items expected = ItemsOf(list);
        item->onId = [&list, change, &item = *item, &expected] {
          item.onId = nullptr;
          Apply(change, list, nullptr);
          expected = ItemsOf(list);
        };
        const bool done = list.RemoveItem(nullptr, wanted);
        ExpectOutcome(list, done);
        // Nothing but the item that was meant is gone beside what the meddler did.
        Items without = expected;
        std::erase_if(without, [&wanted](const Item& each) { return each->InstanceID() == wanted; });
        const Items present = ItemsOf(list);
        EXPECT_TRUE(present == expected || present == without)
            << wanted << ", " << static_cast<int>(change) << ", " << size;
        ExpectWhole(list);
      }
    }
  }
}

TEST(ItemThatIsRemovedByItself, IsNotAskedForItsId) {
  clsZelItemList list;
  const auto item = Scripted("A");
  const auto other = Scripted("B");
  ASSERT_TRUE(list.AddItem(other));
  ASSERT_TRUE(list.AddItem(item));
  item->onId = other->onId = [] { throw std::runtime_error("no ID"); };
  EXPECT_TRUE(list.RemoveItem(item));
  test::ExpectNoError(list);
  EXPECT_EQ(ItemsOf(list), Items{other});
  EXPECT_TRUE(list.RemoveItem(item)) << "it is no longer there";
  EXPECT_TRUE(list.RemoveItem(nullptr, {}, 1));
  EXPECT_EQ(list.ItemCount(), 0);
}

// Items that throw

TEST(ItemThatThrows, WhileItIsAddedIsNotAdded) {
  for (const auto hook : {&ScriptedItem::onId, &ScriptedItem::onLog}) {
    clsZelItemList list;
    ASSERT_TRUE(list.AddItem(Scripted("B")));
    const auto item = Scripted("A");
    (*item).*hook = [] { throw 42; };
    EXPECT_FALSE(list.AddItem(item));
    test::ExpectRunTimeError(list.ErrorObject(), 5, "AddItem");
    EXPECT_EQ(list.ItemCount(), 1);
    (*item).*hook = nullptr;
    EXPECT_TRUE(list.AddItem(item));
    ExpectWhole(list);
  }
}

TEST(ItemThatThrows, WhileOneIsRemovedByItsIdLeavesTheList) {
  clsZelItemList list;
  const auto item = Scripted("A");
  ASSERT_TRUE(list.AddItem(item));
  ASSERT_TRUE(list.AddItem(Scripted("B")));
  item->onId = [] { throw 42; };
  EXPECT_FALSE(list.RemoveItem(nullptr, "B"));
  test::ExpectRunTimeError(list.ErrorObject(), 5, "RemoveItem");
  EXPECT_EQ(list.ItemCount(), 2);
  item->onId = nullptr;
  EXPECT_TRUE(list.RemoveItem(nullptr, "B"));
  EXPECT_EQ(ItemsOf(list), Items{item});
}

TEST(ItemThatThrows, WhileItsFailureIsToldIsADocumentedFailure) {
  clsZelItemList list;
  const auto item = Scripted("A");
  ASSERT_TRUE(list.AddItem(item));
  item->write = [](ByteArray&, std::int32_t&) { return false; };
  item->onId = [] { throw 42; };
  ByteArray data;
  std::int32_t start = 0;
  const bool done = list.BinaryDataGet(data, start);
  EXPECT_FALSE(done);
  ExpectOutcome(list, done);
}

TEST(ItemThatChangesTheList, WhileItsFailureIsToldDoesNoHarm) {
  clsZelItemList list;
  std::weak_ptr<ScriptedItem> watched;
  {
    const auto item = Scripted("A");
    watched = item;
    ASSERT_TRUE(list.AddItem(item));
    item->write = [](ByteArray&, std::int32_t&) { return false; };
    item->onId = [&list, watched] {
      list.Clear();
      EXPECT_FALSE(watched.expired());
    };
  }
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataGet(data, start));
  ExpectOutcome(list, false);
}

TEST(ItemThatThrows, WhileItIsShownFailsTheText) {
  clsZelItemList list;
  list.PrintEngine(nullptr);
  const auto item = Scripted("A");
  ASSERT_TRUE(list.AddItem(item));
  item->onShow = [] { throw 42; };
  EXPECT_EQ(list.ToString(), "");
  test::ExpectRunTimeError(list.ErrorObject(), 5, "ToString");
  clsZelTransAct booking;
  ASSERT_TRUE(booking.AddItem(item));
  EXPECT_EQ(booking.ToString(), "");
  test::ExpectRunTimeError(booking.ErrorObject(), 5, "ToStringBI");
}

// Prices

test::Currency TurnoverOf(clsZelTransAct& booking, std::int32_t number = 1) {
  test::Currency turnover;
  test::Currency vat;
  test::Currency rate;
  EXPECT_TRUE(booking.GetContainerValues(number, turnover, vat, rate));
  return turnover;
}

TEST(ItemThatLeavesThePricesUnwritten, HasNoPrices) {
  clsZelTransAct booking;
  test::Prepare(booking);
  ASSERT_TRUE(booking.AddItem(test::CashItem("Brot", 10)));
  const auto priced = Scripted("A");
  priced->prices = {20};
  priced->thirdParty = true;
  ASSERT_TRUE(booking.AddItem(priced));
  const auto item = Scripted("B");
  item->givePrices = [](test::CurrencyArray& prices, bool& isThirdParty) {
    EXPECT_EQ(prices, test::CurrencyArray::WithBounds(0, 5));
    EXPECT_FALSE(isThirdParty);
    return true;
  };
  ASSERT_TRUE(booking.AddItem(item));
  (void)test::BuildRequest(booking);
  EXPECT_EQ(TurnoverOf(booking), test::Currency(30));
  EXPECT_NE(booking.ToString().find("    30,00 EUR\r\n"), std::string::npos) << booking.ToString();
}

TEST(ItemThatMovesTheBoundsOfThePrices, FailsUnlessAllSixAreThere) {
  struct Bounds {
    std::int32_t lower;
    std::int32_t upper;
  };
  for (const Bounds bounds :
       {Bounds{3, 4}, Bounds{1, 6}, Bounds{0, 4}, Bounds{0, -1}, Bounds{100'000, 100'005}}) {
    clsZelTransAct booking;
    test::Prepare(booking);
    const auto item = Scripted("A");
    item->givePrices = [bounds](test::CurrencyArray& prices, bool&) {
      prices.Redim(bounds.lower, bounds.upper);
      return true;
    };
    ASSERT_TRUE(booking.AddItem(item));
    ByteArray request;
    EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, request, 0)) << bounds.lower;
    ExpectOutcome(booking, false);
    booking.ToString();
    ExpectOutcome(booking, !booking.HasError());
  }
}

TEST(ItemThatMovesTheBoundsOfThePrices, UpwardsHasItsSixPricesOrFails) {
  clsZelTransAct booking;
  test::Prepare(booking);
  const auto item = Scripted("A");
  item->givePrices = [](test::CurrencyArray& prices, bool&) {
    prices.Redim(0, 9);
    prices[0] = 5;
    prices[9] = 1000;
    return true;
  };
  ASSERT_TRUE(booking.AddItem(item));
  ASSERT_TRUE(booking.AddItem(test::CashItem("Brot", 10)));
  ByteArray request;
  const bool done = booking.BinaryDataGet(ZELSerialType::Request, request, 0);
  ExpectOutcome(booking, done);
  if (done) {
    EXPECT_EQ(TurnoverOf(booking), test::Currency(15));
  }
  // The receipt never shows another sum than the one that is signed.
  const std::string text = booking.ToString();
  ExpectOutcome(booking, !booking.HasError());
  EXPECT_TRUE(text.empty() || text.find("    15,00 EUR\r\n") != std::string::npos) << text;
}

TEST(ItemThatMovesTheBoundsOfThePrices, FailsTheReceiptWhereItFailsTheRequest) {
  for (const std::int32_t upper : {-1, 0, 4}) {
    clsZelTransAct booking;
    test::Prepare(booking);
    const auto item = Scripted("A");
    item->givePrices = [upper](test::CurrencyArray& prices, bool&) {
      prices.Redim(0, upper);
      return true;
    };
    ASSERT_TRUE(booking.AddItem(item));
    EXPECT_EQ(booking.ToString(), "") << upper;
    ExpectOutcome(booking, false);
  }
}

// Items that change the booking that asks them

TEST(ItemThatBuildsTheRequestItself, IsNeverAddedUpTwice) {
  clsZelTransAct booking;
  test::Prepare(booking);
  const auto item = Scripted("A");
  item->prices = {10};
  item->onPrices = [&booking, &item = *item] {
    item.onPrices = nullptr;
    ByteArray inner;
    ExpectOutcome(booking, booking.BinaryDataGet(ZELSerialType::Request, inner, 0));
  };
  ASSERT_TRUE(booking.AddItem(test::CashItem("Brot", 100)));
  ASSERT_TRUE(booking.AddItem(item));
  ASSERT_TRUE(booking.AddItem(test::CashItem("Salz", 1)));
  ByteArray request;
  const bool done = booking.BinaryDataGet(ZELSerialType::Request, request, 0);
  ExpectOutcome(booking, done);
  if (done) {
    EXPECT_EQ(TurnoverOf(booking), test::Currency(111));
  }
}

TEST(ItemThatChangesTheBooking, LeavesItUsable) {
  const std::vector<std::function<void(clsZelTransAct&)>> changes = {
      [](clsZelTransAct& booking) { booking.VatList(nullptr); },
      [](clsZelTransAct& booking) { booking.VatList()->Clear(); },
      [](clsZelTransAct& booking) { booking.Clear(); },
      [](clsZelTransAct& booking) { booking.LogHandler(nullptr); },
      [](clsZelTransAct& booking) { booking.ErrorObject().SetError(4711, "Waage klemmt", true, "Wiegen"); },
      [](clsZelTransAct& booking) { test::HandIn(booking, ZELSerialType::ItemList, test::kAnyItem); },
      [](clsZelTransAct& booking) { test::HandIn(booking, ZELSerialType::Request, "CD 01 00"); },
      [](clsZelTransAct& booking) { booking.ToString(); },
      [](clsZelTransAct& booking) { booking.UseSHA256(false); },
      [](clsZelTransAct& booking) { booking.GetItemHash(ZELHashFmt::Base16); },
      [](clsZelTransAct& booking) { booking.PrintEngine(nullptr); },
      [](clsZelTransAct& booking) { booking.ItemFactory(nullptr); },
      [](clsZelTransAct& booking) { booking.Operator("Berta"); },
  };
  for (const auto& change : changes) {
    for (const auto hook : {&ScriptedItem::onWrite, &ScriptedItem::onPrices, &ScriptedItem::onShow}) {
      test::TestLog log;
      clsZelTransAct booking;
      test::Prepare(booking);
      booking.LogHandler(log.Handler());
      const auto item = Scripted("A");
      item->prices = {1};
      ASSERT_TRUE(booking.AddItem(item));
      ASSERT_TRUE(booking.AddItem(Scripted("B")));
      (*item).*hook = [&booking, hook, change, &item = *item] {
        item.*hook = nullptr;
        change(booking);
      };
      ByteArray request;
      const bool done = booking.BinaryDataGet(ZELSerialType::Request, request, 0);
      EXPECT_EQ(booking.HasError(), !done);
      booking.ToString();
      (*item).*hook = nullptr;
      // Set up anew it works as ever.
      test::Prepare(booking);
      booking.UseSHA256(true);
      booking.ClearItems();
      ASSERT_TRUE(booking.AddItem(item));
      (void)test::BuildRequest(booking);
      EXPECT_EQ(booking.ItemHash(), test::Sha256Text(kAny));
      EXPECT_EQ(TurnoverOf(booking), test::Currency(1));
    }
  }
}

TEST(ItemThatLetsTheBookingGo, KeepsItUntilItReturns) {
  for (const auto hook : {&ScriptedItem::onWrite, &ScriptedItem::onPrices, &ScriptedItem::onShow}) {
    auto booking = std::make_shared<clsZelTransAct>();
    const std::weak_ptr<clsZelTransAct> watched = booking;
    test::Prepare(*booking);
    const auto item = Scripted("A");
    ASSERT_TRUE(booking->AddItem(item));
    (*item).*hook = [&booking, &watched] {
      booking.reset();
      EXPECT_FALSE(watched.expired()) << "it is running";
    };
    clsZelTransAct& kept = *booking;
    if (hook == &ScriptedItem::onShow) {
      EXPECT_NE(kept.ToString(), "");
    } else {
      ByteArray request;
      EXPECT_TRUE(kept.BinaryDataGet(ZELSerialType::Request, request, 0));
      EXPECT_GT(request.size(), 50U);
    }
    EXPECT_TRUE(watched.expired());
  }
}

TEST(ItemThatLetsTheListGo, KeepsItUntilItReturns) {
  auto list = std::make_shared<clsZelItemList>();
  const std::weak_ptr<clsZelItemList> watched = list;
  const auto item = Scripted("A");
  ASSERT_TRUE(list->AddItem(item));
  item->onWrite = [&list, &watched] {
    list.reset();
    EXPECT_FALSE(watched.expired()) << "it is running";
  };
  std::string hash;
  clsZelItemList& kept = *list;
  EXPECT_TRUE(kept.GetItemHash(true, false, false, hash));
  EXPECT_EQ(hash, test::Sha256Text(kAny));
  EXPECT_TRUE(watched.expired());
}

}  // namespace
