// What grows with the number of items, and what doesn't grow with its square.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <functional>
#include <iterator>
#include <locale>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/hosts/Support.h"
#include "tests/support/Regional.h"

namespace {

using test::clsZelItemList;
using test::clsZelVatItem;
using test::clsZelVatList;
using test::Date;
using test::IVnZelItem;
using test::Scripted;
using test::ScriptedItem;
using Hosts = std::vector<std::shared_ptr<ScriptedItem>>;

constexpr int kFew = 3000;
constexpr int kTimes = 16;

/// Processor time of a run on what `prepare` makes.
template <class Prepare, class Run>
double Seconds(Prepare&& prepare, Run&& run) {
  auto prepared = prepare();
  const std::clock_t before = std::clock();
  run(*prepared);
  return static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
}

/// Whether a run over 16 times as many takes less than 100 times as long; 256 times is what quadratic growth takes.
/// The machine may be busy with other things, so that there are some attempts.
template <class Prepare, class Run>
void ExpectNearlyLinear(Prepare&& prepare, Run&& run, int few = kFew) {
  // What takes less than this can't be measured.
  constexpr double least = 0.0003;
  double small = 0;
  double large = 0;
  for (int attempt = 0; attempt < 3; ++attempt) {
    small = Seconds([&] { return prepare(few); }, run);
    large = Seconds([&] { return prepare(kTimes * few); }, run);
    if (large < 100 * std::max(small, least)) {
      return;
    }
  }
  ADD_FAILURE() << few << " take " << small << " s, " << kTimes << " times as many " << large << " s";
}

struct HostsInAList {
  explicit HostsInAList(int count) {
    for (int i = 0; i < count; ++i) {
      items.push_back(Scripted("HOST-" + std::to_string(i)));
      EXPECT_TRUE(list.AddItem(items.back()));
    }
  }

  int IdsAsked() const {
    int asked = 0;
    for (const auto& item : items) {
      asked += item->idsAsked;
    }
    return asked;
  }

  clsZelItemList list;
  Hosts items;
};

std::unique_ptr<HostsInAList> HostsIn(int count) { return std::make_unique<HostsInAList>(count); }

// Removing items of a host's own by themselves

TEST(RemovingHostsItems, AsksNoneForItsId) {
  HostsInAList hosts(500);
  const int asked = hosts.IdsAsked();
  for (std::size_t i = 0; i < hosts.items.size(); i += 2) {
    EXPECT_TRUE(hosts.list.RemoveItem(hosts.items[i]));
  }
  EXPECT_TRUE(hosts.list.RemoveItem(hosts.items[0])) << "no longer there";
  EXPECT_TRUE(hosts.list.RemoveItem(nullptr, {}, 7));
  EXPECT_EQ(hosts.IdsAsked(), asked);
  EXPECT_EQ(hosts.list.ItemCount(), 249);
}

TEST(RemovingHostsItems, WhoseIdsChangeAsksNoneEither) {
  HostsInAList hosts(500);
  for (const auto& item : hosts.items) {
    item->onId = [&item = *item] { item.id += "x"; };
  }
  const int asked = hosts.IdsAsked();
  for (const auto& item : hosts.items) {
    EXPECT_TRUE(hosts.list.RemoveItem(item));
  }
  EXPECT_EQ(hosts.IdsAsked(), asked);
  EXPECT_EQ(hosts.list.ItemCount(), 0);
}

TEST(RemovingHostsItems, FromTheFrontIsNearlyLinear) {
  ExpectNearlyLinear(HostsIn, [](HostsInAList& hosts) {
    for (const auto& item : hosts.items) {
      hosts.list.RemoveItem(item);
    }
    EXPECT_EQ(hosts.list.ItemCount(), 0);
  });
}

TEST(RemovingHostsItems, FromTheBackIsNearlyLinear) {
  ExpectNearlyLinear(HostsIn, [](HostsInAList& hosts) {
    for (auto item = hosts.items.rbegin(); item != hosts.items.rend(); ++item) {
      hosts.list.RemoveItem(*item);
    }
    EXPECT_EQ(hosts.list.ItemCount(), 0);
  });
}

TEST(RemovingHostsItems, InAnyOrderWithChangedIdsIsNearlyLinear) {
  ExpectNearlyLinear(
      [](int count) {
        auto hosts = HostsIn(count);
        std::shuffle(hosts->items.begin(), hosts->items.end(), std::mt19937(1));
        for (const auto& item : hosts->items) {
          item->id += " renamed";
        }
        return hosts;
      },
      [](HostsInAList& hosts) {
        for (const auto& item : hosts.items) {
          hosts.list.RemoveItem(item);
        }
        EXPECT_EQ(hosts.list.ItemCount(), 0);
      });
}

TEST(RemovingHostsItems, ThatAreNotThereIsNearlyLinear) {
  const auto stranger = Scripted("STRANGER");
  ExpectNearlyLinear(HostsIn, [&stranger](HostsInAList& hosts) {
    for (std::size_t i = 0; i < hosts.items.size(); ++i) {
      hosts.list.RemoveItem(stranger);
    }
    EXPECT_EQ(hosts.list.ItemCount(), static_cast<std::int32_t>(hosts.items.size()));
  });
}

TEST(RemovingCashItems, ThatAreNotThereIsNearlyLinearAmongHostsItems) {
  const auto stranger = test::CashItem("fremd", 1);
  ExpectNearlyLinear(HostsIn, [&stranger](HostsInAList& hosts) {
    for (std::size_t i = 0; i < hosts.items.size(); ++i) {
      hosts.list.RemoveItem(stranger);
    }
  });
}

TEST(RemovingHostsItems, AndAddingThemAgainIsNearlyLinear) {
  ExpectNearlyLinear(HostsIn, [](HostsInAList& hosts) {
    for (const auto& item : hosts.items) {
      hosts.list.RemoveItem(item);
      hosts.list.AddItem(item);
    }
    EXPECT_EQ(hosts.list.ItemCount(), static_cast<std::int32_t>(hosts.items.size()));
  });
}

// Removing by iterator and by position

std::unique_ptr<clsZelItemList> CashIn(int count) {
  auto list = std::make_unique<clsZelItemList>();
  for (int i = 0; i < count; ++i) {
    EXPECT_TRUE(list->AddItem(std::make_shared<test::clsZelItemCash>()));
  }
  return list;
}

TEST(RemovingByIterator, TheSecondItemIsNearlyLinear) {
  ExpectNearlyLinear(
      CashIn,
      [](clsZelItemList& list) {
        while (list.ItemCount() > 1) {
          list.RemoveItem(*std::next(list.begin()));
        }
      },
      4 * kFew);
}

TEST(RemovingByIterator, TheSecondOfHostsItemsIsNearlyLinear) {
  ExpectNearlyLinear(HostsIn, [](HostsInAList& hosts) {
    while (hosts.list.ItemCount() > 1) {
      hosts.list.RemoveItem(*std::next(hosts.list.begin()));
    }
  });
}

TEST(RemovingByIterator, TheFirstItemIsNearlyLinear) {
  ExpectNearlyLinear(CashIn, [](clsZelItemList& list) {
    while (list.ItemCount() > 0) {
      list.RemoveItem(*list.begin());
    }
  });
}

TEST(RemovingByIterator, EveryItemInALoopIsNearlyLinear) {
  ExpectNearlyLinear(CashIn, [](clsZelItemList& list) {
    for (auto& item : list) {
      list.RemoveItem(item);
    }
    EXPECT_EQ(list.ItemCount(), 0);
  });
}

TEST(RemovingByPosition, TheMiddleIsNearlyLinear) {
  ExpectNearlyLinear(CashIn, [](clsZelItemList& list) {
    while (list.ItemCount() > 0) {
      list.RemoveItem(nullptr, {}, list.ItemCount() / 2 + 1);
    }
  });
}

TEST(Iterators, ThatAreKeptDoNotSlowTheListDown) {
  ExpectNearlyLinear(CashIn, [](clsZelItemList& list) {
    std::vector<decltype(list.begin())> kept;
    for (auto at = list.begin(); at != list.end(); ++at) {
      if (kept.size() < 1000) {
        kept.push_back(at);
      }
    }
    while (list.ItemCount() > 0) {
      list.RemoveItem(nullptr, {}, list.ItemCount());
    }
  });
}

// VAT lists

std::shared_ptr<clsZelVatItem> RatesOfDay(int day) {
  const Date date(36526.0 + day);
  auto rates = std::make_shared<clsZelVatItem>();
  EXPECT_TRUE(rates->SetDates(date, date));
  return rates;
}

struct Days {
  explicit Days(int count, bool shuffled = false) {
    list.Clear();
    for (int day = 0; day < count; ++day) {
      rates.push_back(RatesOfDay(day));
    }
    if (shuffled) {
      std::shuffle(rates.begin(), rates.end(), std::mt19937(1));
    }
  }

  void AddAll() {
    for (const auto& set : rates) {
      EXPECT_TRUE(list.AddItem(set));
    }
    EXPECT_EQ(list.Count(), static_cast<std::int32_t>(rates.size()));
  }

  clsZelVatList list;
  std::vector<std::shared_ptr<clsZelVatItem>> rates;
};

// Each present set is looked at, as its dates may have changed; that must be cheap, also with regional settings.
TEST(AddingRates, ByTheThousandTakesNoTime) {
  const test::GlobalLocale locale(std::locale(std::locale::classic(), new test::DateCharacters('/', ':')));
  for (const bool shuffled : {false, true}) {
    const double seconds = Seconds([shuffled] { return std::make_unique<Days>(4000, shuffled); },
                                   [](Days& days) { days.AddAll(); });
    EXPECT_LT(seconds, 1);
  }
}

// A rate set doesn't know the lists that hold it: its dates may change when it is in one.

TEST(AddingRates, IsComparedWithTheDatesThatThePresentSetsHaveNow) {
  clsZelVatList list;
  list.Clear();
  const auto moved = RatesOfDay(10);
  ASSERT_TRUE(list.AddItem(RatesOfDay(5)));
  ASSERT_TRUE(list.AddItem(moved));
  ASSERT_TRUE(list.AddItem(RatesOfDay(20)));
  ASSERT_TRUE(moved->SetDates(Date(36526.0 + 100), Date(36526.0 + 110)));
  EXPECT_TRUE(list.AddItem(RatesOfDay(10))) << "the day is free now";
  EXPECT_FALSE(list.AddItem(RatesOfDay(105)));
  test::ExpectError(list.ErrorObject(), 9000, true, "AddItem",
                    "Zeitraumüberschneidung gefunden!\r\n"
                    "    Neu von ...........: 15.04.2000 00:00:00\r\n"
                    "    vorhanden von .....: 10.04.2000 00:00:00\r\n"
                    "    vorhanden bis .....: 20.04.2000 23:59:59");
  EXPECT_EQ(list.Count(), 4);
}

TEST(AddingRates, OfSeveralOverlapsTellsOfTheFirstInTheOrderOfTheList) {
  clsZelVatList list;
  list.Clear();
  for (const int day : {30, 10, 20}) {
    ASSERT_TRUE(list.AddItem(RatesOfDay(day)));
  }
  auto wide = std::make_shared<clsZelVatItem>();
  ASSERT_TRUE(wide->SetDates(Date(36526.0 + 5), Date(36526.0 + 40)));
  EXPECT_FALSE(list.AddItem(wide));
  test::ExpectError(list.ErrorObject(), 9000, true, "AddItem",
                    "Zeitraumüberschneidung gefunden!\r\n"
                    "    Neu bis ...........: 10.02.2000 23:59:59\r\n"
                    "    vorhanden von .....: 31.01.2000 00:00:00\r\n"
                    "    vorhanden bis .....: 31.01.2000 23:59:59");
}

TEST(AddingRates, ThatOverlapEachOtherByNowIsStillComparedInTheOrderOfTheList) {
  clsZelVatList list;
  list.Clear();
  const auto first = RatesOfDay(1);
  const auto second = RatesOfDay(2);
  ASSERT_TRUE(list.AddItem(first));
  ASSERT_TRUE(list.AddItem(second));
  ASSERT_TRUE(second->SetDates(Date(36526.0), Date(36526.0 + 50)));
  ASSERT_TRUE(first->SetDates(Date(36526.0 + 40), Date(36526.0 + 60)));
  EXPECT_EQ(list.GetItemOfDate(Date(36526.0 + 45)), first);
  EXPECT_EQ(list.GetItemOfDate(Date(36526.0 + 5)), second);
  EXPECT_FALSE(list.AddItem(RatesOfDay(45)));
  EXPECT_NE(list.ErrorObject().ErrorMsg().find("    vorhanden von .....: 10.02.2000 00:00:00"),
            std::string::npos)
      << list.ErrorObject().ErrorMsg();
  EXPECT_FALSE(list.AddItem(RatesOfDay(5)));
  EXPECT_NE(list.ErrorObject().ErrorMsg().find("    vorhanden von .....: 01.01.2000 00:00:00"),
            std::string::npos);
}

TEST(AddingRates, OfTheSameSetTwiceOverlapsItself) {
  clsZelVatList list;
  list.Clear();
  const auto rates = RatesOfDay(1);
  ASSERT_TRUE(list.AddItem(rates));
  EXPECT_FALSE(list.AddItem(rates));
  ASSERT_TRUE(rates->SetDates(Date(36526.0 + 7), Date(36526.0 + 8)));
  EXPECT_FALSE(list.AddItem(rates));
  EXPECT_EQ(list.Count(), 1);
}

}  // namespace
