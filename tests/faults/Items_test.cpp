// Items, item lists, VAT rates and turnover containers while memory runs out.

#include <memory>
#include <optional>

#include "Exchange.h"
#include "Log.h"
#include "Path.h"
#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tests/support/Hex.h"

namespace {

using test::FromHex;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnLogFile;
using VnZEL10cmn::clsZelContainer;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::clsZelListItemFact;
using VnZEL10cmn::clsZelVatItem;
using VnZEL10cmn::clsZelVatList;
using VnZEL10cmn::Currency;
using VnZEL10cmn::CurrencyArray;
using VnZEL10cmn::Date;
using VnZEL10cmn::VnObject;
using VnZEL10cmn::ZelTags;

struct World {
  std::shared_ptr<clsVnLogFile> log;
  std::shared_ptr<clsZelItemCash> item;
  std::shared_ptr<clsZelItemCash> nameless;
  std::optional<clsZelItemList> list;
  std::shared_ptr<clsZelVatList> rates;
  std::shared_ptr<clsZelVatItem> rateSet;
  std::optional<clsZelContainer> container;
  ByteArray data;
  CurrencyArray prices;
  std::int32_t start = 0;
  std::string text;
  Currency value;
};

using Step = test::Step<World>;
using Path = test::Path<World>;
constexpr auto Made = test::Made<World>;

/// Two items, of which the second has every field.
const ByteArray kItems = FromHex(
    "A0 01 32 A2 04 62 72 6F 74 B1 03 01 19 0C "
    "A0 07 2D 31 32 2E 33 34 35 A1 10 73 74 75 65 63 6B 73 74 75 65 63 6B 73 74 75 "
    "A2 10 62 72 6F 74 62 72 6F 74 62 72 6F 74 62 72 6F 74 AA 00 AB 00 AC 00 B1 03 12 34 5C B6 03 12 34 5D");
const ByteArray kDamagedItems = FromHex("A0 01 32 A2 04 62 72 6F 74 B1 03 01 1A 0C");
const ByteArray kUnknownItems = FromHex("A0 01 32 A2 04 62 72 6F 74 01 03 01 19 0C");
const ByteArray kCutItem = FromHex("A0 05 32 A2 04");
const ByteArray kContainer = FromHex("E1 12 D8 08 12 34 56 78 90 12 34 5C D9 02 25 0C DB 02 19 00");
const ByteArray kOtherContainer = FromHex("E2 12 D8 08 12 34 56 78 90 12 34 5C D9 02 25 0C DB 02 19 00");
const ByteArray kCutContainer = FromHex("E1 12 D8 08 12 34 56");
const ByteArray kDamagedContainer = FromHex("E1 04 D8 02 1A 0C");
const ByteArray kUnknownContainer = FromHex("E1 04 01 02 1A 0C");

VnObject* Item(World& world) { return world.item.get(); }
VnObject* List(World& world) { return &*world.list; }
VnObject* Container(World& world) { return &*world.container; }

std::string ShownItem(World& world) { return test::Exchanged::Shown(*world.item); }

std::string ShownBytes(World& world) { return std::to_string(world.start) + ": " + ToHex(world.data); }

std::string ShownList(World& world) {
  std::string text = ShownBytes(world) + "\n" + world.list->ZelProfile();
  for (const auto& item : *world.list) {
    text += "\n" + dynamic_cast<const clsZelItemCash&>(*item).Name();
  }
  return text;
}

std::string ShownContainer(World& world) {
  const clsZelContainer& container = *world.container;
  return ShownBytes(world) + "\n" + std::to_string(container.Turnover().Scaled()) + " " +
         std::to_string(container.TurnoverNeg().Scaled()) + " " +
         std::to_string(container.VATrate().Scaled());
}

/// A step with room for that many bytes.
Step With(Step step, std::int32_t room) {
  step.prepare = [=](World& world) {
    world.data.Redim(0, room - 1);
    world.start = 0;
  };
  return step;
}

/// A step whose bytes are read from the start.
Step FromStart(Step step) {
  step.prepare = [](World& world) { world.start = 0; };
  return step;
}

Step WriteItem(std::shared_ptr<clsZelItemCash> World::*item, std::int32_t room) {
  // A record that can't be written fails with the number 0.
  return With({.operation = "BinaryDataGet",
               .run = [=](World& world) { return (world.*item)->BinaryDataGet(world.data, world.start); },
               .object = [=](World& world) -> VnObject* { return (world.*item).get(); },
               .result = ShownBytes,
               .numbers = {0}},
              room);
}

Step ReadItem(const ByteArray& data) {
  return FromStart({.operation = "BinaryDataSet",
                    .run = [&data](World& world) { return world.item->BinaryDataSet(data, world.start); },
                    .object = Item,
                    .result = ShownItem,
                    .kept = [](World& world) { return std::to_string(world.start); }});
}

Path Items() {
  const auto getPrices = [](std::int32_t upper) {
    return Step{.operation = "IVnZelItem.GetPrices",
                .run =
                    [](World& world) {
                      bool isThirdParty = false;
                      return world.item->GetPrices(world.prices, isThirdParty);
                    },
                .object = Item,
                .prepare = [=](World& world) { world.prices.Redim(0, upper); },
                .result = [](World& world) { return std::to_string(world.prices[0].Scaled()); }};
  };
  const auto toText = Step{.operation = "ToString",
                           .run =
                               [](World& world) {
                                 world.text = world.item->ToString();
                                 return !world.text.empty();
                               },
                           .object = Item,
                           .result = [](World& world) { return world.text; }};
  return {
      Made("clsZelItemCash", [](World& world) { world.item = std::make_shared<clsZelItemCash>(); }),
      Made("clsZelItemCash", [](World& world) { world.nameless = std::make_shared<clsZelItemCash>(); }),
      Made("InstanceID", [](World& world) { world.text = world.item->InstanceID(); }),
      ReadItem(kDamagedItems),
      ReadItem(kUnknownItems),
      ReadItem(kCutItem),
      ReadItem(kItems),
      WriteItem(&World::item, 128),
      WriteItem(&World::item, 12),
      WriteItem(&World::nameless, 128),
      Made("Quantity", [](World& world) { world.item->Quantity(Currency::FromScaled(-12'345'678'901'234)); }),
      WriteItem(&World::item, 128),
      Made("Quantity", [](World& world) { world.item->Quantity(2); }),
      getPrices(5),
      getPrices(3),
      toText};
}

Step ReadList(const ByteArray& data, std::int32_t count = 0) {
  return FromStart(
      {.operation = "BinaryDataSet",
       .run = [=, &data](World& world) { return world.list->BinaryDataSet(data, world.start, count); },
       .object = List,
       .result = ShownList,
       .numbers = {9306, 9307}});
}

Step WriteList() {
  return With({.operation = "BinaryDataGet",
               .run = [](World& world) { return world.list->BinaryDataGet(world.data, world.start); },
               .object = List,
               .result = ShownList,
               .numbers = {9301}},
              0);
}

Step HashList(bool bit256, bool asBase32) {
  return {
      .operation = "GetItemHash",
      .inner = "BinaryDataGet",
      .run = [=](World& world) { return world.list->GetItemHash(bit256, asBase32, true, world.text, "--"); },
      .object = List,
      .prepare = [](World& world) { world.text = "what was there before"; },
      .result = [](World& world) { return world.text; },
      .kept = [](World& world) { return world.text; },
      .numbers = {9301}};
}

Step TextOfList() {
  return {.operation = "ToString",
          .run =
              [](World& world) {
                world.text = world.list->ToString();
                return !world.list->HasError();
              },
          .object = List,
          .result = [](World& world) { return world.text; }};
}

/// The item of the list that failed, or the list.
VnObject* FailedItem(World& world) {
  for (const auto& item : *world.list) {
    if (item->HasError()) {
      return dynamic_cast<VnObject*>(item.get());
    }
  }
  return &*world.list;
}

/// Without a print engine each item gives its own text, and a failure stays its own.
Step TextOfItems() {
  Step step = TextOfList();
  step.run = [](World& world) {
    world.text = world.list->ToString();
    return !FailedItem(world)->HasError();
  };
  step.object = FailedItem;
  return step;
}

Step AddToList(std::shared_ptr<clsZelItemCash> World::*item) {
  return {.operation = "AddItem",
          .run = [=](World& world) { return world.list->AddItem(world.*item); },
          .object = List,
          .result = ShownList,
          .kept = ShownList};
}

Path Lists() {
  return {Made("clsZelItemList",
               [](World& world) {
                 world.list.emplace().LogHandler(world.log);
                 if (world.log) {
                   world.log->WriteEntries(true);
                 }
               }),
          Made("ZelProfile", [](World& world) { world.list->ZelProfile("die Kasse im Erdgeschoss links"); }),
          WriteList(),
          HashList(true, false),
          TextOfList(),
          Made("ItemFactory",
               [](World& world) { world.list->ItemFactory(std::make_shared<clsZelListItemFact>()); }),
          ReadList(kDamagedItems),
          ReadList(kUnknownItems),
          ReadList(kCutItem),
          ReadList(kItems, 999),
          ReadList(kItems),
          WriteList(),
          HashList(true, false),
          HashList(false, true),
          TextOfList(),
          AddToList(&World::item),
          AddToList(&World::item),
          AddToList(&World::nameless),
          WriteList(),
          HashList(true, true),
          Step{.operation = "RemoveItem",
               .run = [](World& world) { return world.list->RemoveItem(world.nameless); },
               .object = List,
               .result = ShownList,
               .kept = ShownList},
          Step{.operation = "RemoveItem",
               .run = [](World& world) { return world.list->RemoveItem(nullptr, world.text); },
               .object = List,
               .prepare = [](World& world) { world.text = world.item->InstanceID(); },
               .result = ShownList,
               .kept = ShownList},
          Step{.operation = "RemoveItem",
               .run = [](World& world) { return world.list->RemoveItem(nullptr, {}, 99); },
               .object = List,
               .result = ShownList,
               .kept = ShownList,
               .numbers = {9}},
          WriteList(),
          Made("PrintEngine", [](World& world) { world.list->PrintEngine(nullptr); }),
          TextOfItems(),
          Step{.operation = "Clear", .run = [](World& world) { return world.list->Clear(); }, .object = List},
          WriteList()};
}

Path Rates() {
  const auto add = Step{.operation = "AddItem",
                        .run = [](World& world) { return world.rates->AddItem(world.rateSet); },
                        .object = [](World& world) -> VnObject* { return world.rates.get(); },
                        .result = [](World& world) { return std::to_string(world.rates->Count()); },
                        .kept = [](World& world) { return std::to_string(world.rates->Count()); }};
  const auto shownVat = [](World& world) { return std::to_string(world.value.Scaled()); };
  const auto calculate = [&](Currency price, bool isNet) {
    return Step{
        .operation = "CalcVat",
        .run = [=](World& w) { return w.rateSet->CalcVat(price, 1, w.value, nullptr, nullptr, isNet); },
        .object = [](World& world) -> VnObject* { return world.rateSet.get(); },
        .prepare = [](World& world) { world.value = -1; },
        .result = shownVat,
        .kept = shownVat,
        .numbers = {6}};
  };
  return {Made("clsZelVatList", [](World& world) { world.rates = std::make_shared<clsZelVatList>(); }),
          Made("clsZelVatItem", [](World& world) { world.rateSet = std::make_shared<clsZelVatItem>(); }),
          add,
          Made("SetDates",
               [](World& world) {
                 world.rateSet->SetDates(Date::FromCivil(2000, 1, 1), Date::FromCivil(2000, 1, 2));
               }),
          add,
          Made("Clear", [](World& world) { world.rates->Clear(); }),
          add,
          calculate(119, false),
          calculate(100, true),
          calculate(Currency::FromScaled(9'223'372'036'854'775'807), true)};
}

Path Containers() {
  const auto write = [](std::int32_t room) {
    return With({.operation = "BinaryDataGet",
                 .run = [](World& world) { return world.container->BinaryDataGet(world.data, world.start); },
                 .object = Container,
                 .result = ShownContainer,
                 .kept = [](World& world) { return std::to_string(world.start); }},
                room);
  };
  const auto read = [](const ByteArray& data) {
    return FromStart({.operation = "BinaryDataSet",
                      .run = [&data](World& w) { return w.container->BinaryDataSet(data, w.start); },
                      .object = Container,
                      .result = ShownContainer,
                      .kept = [](World& world) { return std::to_string(world.start); }});
  };
  return {Made("clsZelContainer", [](World& world) { world.container.emplace().IsZelResponse(true); }),
          Made("TurnoverNeg", [](World& world) { world.container->TurnoverNeg(7); }),
          write(28),
          read(kContainer),
          read(kOtherContainer),
          read(kCutContainer),
          read(kDamagedContainer),
          read(kUnknownContainer),
          read(kContainer),
          write(28),
          Made("TurnoverNeg", [](World& world) { world.container->TurnoverNeg(7); }),
          write(29),
          write(3),
          Made("VATrate", [](World& world) { world.container->VATrate(100); }),
          write(29)};
}

TEST(ItemsWithoutMemory, FailWithTheirNumberAndGoOnAfterwards) {
  test::FailEachAllocation(test::Joined({Items(), Lists(), Rates(), Containers()}));
}

TEST(ItemsWithoutMemory, AnEmptyListIsASuccessAlsoWhenThatCannotBeLogged) {
  const test::TempDir folder;
  const std::string name = folder.File("a.log");
  const auto log = std::make_shared<clsVnLogFile>();
  log->WriteEntries(true);
  ASSERT_TRUE(log->FileOpen(name));
  for (const std::size_t count : {test::kOne, std::size_t{2}, test::kAll}) {
    std::size_t first = 1;
    for (bool hasFailed = true; hasFailed; ++first) {
      clsZelItemList list;
      list.LogHandler(log);
      ByteArray data;
      std::int32_t start = 0;
      test::Allocations::Fail(first, count);
      bool done = false;
      {
        const test::Allocations::Counted counted;
        done = list.BinaryDataGet(data, start);
      }
      hasFailed = test::Allocations::HaveFailed();
      test::Allocations::Recover();
      ASSERT_TRUE(done) << "allocation " << first << " failed";
      ASSERT_FALSE(list.HasError());
    }
    EXPECT_GT(first, 5U);
  }
  test::ExpectWholeEntries(name);
}

TEST(ItemsWithoutMemory, AreTheSameWithALog) {
  test::FailEachAllocationWithLog(test::Joined({Items(), Lists()}), {test::kOne, test::kAll});
}

/// An item of a host's own class.
class HostItem : public clsZelItemCash {
 public:
  std::string InstanceID() override { return "an identity that takes memory of its own"; }
};

TEST(HostItemsWithoutMemory, AreAddedWholeOrNotAtAll) {
  bool disturbed = true;
  for (std::size_t first = 1; disturbed; ++first) {
    clsZelItemList list;
    const auto item = std::make_shared<HostItem>();
    test::Allocations::Fail(first, test::kOne);
    bool done = false;
    {
      const test::Allocations::Counted counted;
      done = list.AddItem(item);
    }
    disturbed = test::Allocations::HaveFailed();
    test::Allocations::Recover();
    ASSERT_EQ(done, !disturbed) << first;
    ASSERT_EQ(list.ItemCount(), done ? 1 : 0) << first;
    ASSERT_EQ(list.AddItem(item), !done) << first;
    ASSERT_EQ(list.ItemCount(), 1) << first;
    ASSERT_TRUE(list.RemoveItem(item)) << first;
    ASSERT_EQ(list.ItemCount(), 0) << first;
  }
}

TEST(ListsWithoutMemory, KeepTheirGapsWhileSomeoneIterates) {
  clsZelItemList list;
  for (int i = 0; i < 60; ++i) {
    ASSERT_TRUE(list.AddItem(std::make_shared<clsZelItemCash>()));
  }
  const auto last = list.ItemI(60);
  auto place = list.begin();
  ASSERT_TRUE(list.RemoveItem(nullptr, {}, 1));
  test::Allocations::Fail(1, test::kAll);
  {
    const test::Allocations::Counted counted;
    for (int i = 0; i < 40; ++i) {
      ASSERT_TRUE(list.RemoveItem(nullptr, {}, 1));
    }
  }
  EXPECT_TRUE(test::Allocations::HaveFailed());
  test::Allocations::Recover();
  EXPECT_EQ(list.ItemCount(), 19);
  EXPECT_EQ(list.ItemI(19), last);
  int visited = 0;
  for (++place; place != list.end(); ++place) {
    ++visited;
  }
  EXPECT_EQ(visited, 19);
}

}  // namespace
