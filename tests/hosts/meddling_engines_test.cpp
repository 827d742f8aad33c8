// Print engines of a host's own that do anything while they render, and how long what they are given lives.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::clsVnError;
using test::clsZelItemCash;
using test::clsZelItemList;
using test::clsZelReport;
using test::clsZelTransAct;
using test::clsZelTransActData;
using test::ExpectOutcome;
using test::IVnZelItem;
using test::Scripted;
using test::ScriptedEngine;
using test::ScriptedItem;
using test::ScriptedReportEngine;
using VnZEL10cmn::clsZelItemPrint;
using VnZEL10cmn::clsZelRprtPrint;

/// Whether two pointers share the ownership of one object, rather than one of them owning nothing.
template <class One, class Other>
bool HaveTheSameOwner(const std::shared_ptr<One>& one, const std::shared_ptr<Other>& other) {
  return one.use_count() > 0 && !one.owner_before(other) && !other.owner_before(one);
}

// How each kind of object is made, filled and given an engine that does something while it renders.

struct ItemKind {
  using Object = clsZelItemCash;
  static std::shared_ptr<Object> Make() { return test::CashItem("Brot", 2); }
  static void SetEngine(Object& item,
                        std::function<std::string(std::shared_ptr<Object>, clsVnError*)> render) {
    const auto engine = std::make_shared<ScriptedEngine>();
    engine->item = [render = std::move(render)](std::shared_ptr<IVnZelItem> given, clsVnError* errors) {
      return render(std::dynamic_pointer_cast<Object>(std::move(given)), errors);
    };
    item.PrintEngine(engine);
  }
  static std::string Standard(const std::shared_ptr<Object>& item, clsVnError* errors) {
    return clsZelItemPrint().ToStringCI(item, errors);
  }
};

struct BookingKind {
  using Object = clsZelTransAct;
  static std::shared_ptr<Object> Make() {
    auto booking = std::make_shared<clsZelTransAct>();
    test::FillSale(*booking);
    return booking;
  }
  static void SetEngine(Object& booking,
                        std::function<std::string(std::shared_ptr<Object>, clsVnError*)> render) {
    const auto engine = std::make_shared<ScriptedEngine>();
    engine->booking = std::move(render);
    booking.PrintEngine(engine);
  }
  static std::string Standard(const std::shared_ptr<Object>& booking, clsVnError* errors) {
    return clsZelItemPrint().ToStringBI(booking, errors);
  }
};

struct RecordKind {
  using Object = clsZelTransActData;
  static std::shared_ptr<Object> Make() {
    auto record = std::make_shared<clsZelTransActData>();
    EXPECT_TRUE(record->BinaryDataSet(VnZEL10cmn::ZELSerialType::BinaryData, test::FromHex("61"), 0));
    return record;
  }
  static void SetEngine(Object& record,
                        std::function<std::string(std::shared_ptr<Object>, clsVnError*)> render) {
    const auto engine = std::make_shared<ScriptedEngine>();
    engine->record = std::move(render);
    record.PrintEngine(engine);
  }
  static std::string Standard(const std::shared_ptr<Object>& record, clsVnError* errors) {
    return clsZelItemPrint().ToStringTRdata(record, errors);
  }
};

struct ReportKind {
  using Object = clsZelReport;
  static std::shared_ptr<Object> Make() { return std::make_shared<clsZelReport>(); }
  static void SetEngine(Object& report,
                        std::function<std::string(std::shared_ptr<Object>, clsVnError*)> render) {
    const auto engine = std::make_shared<ScriptedReportEngine>();
    engine->report = std::move(render);
    report.PrintEngine(engine);
  }
  static std::string Standard(const std::shared_ptr<Object>& report, clsVnError* errors) {
    return clsZelRprtPrint().ToStringRprt(report, errors);
  }
};

template <class Kind>
class Engine : public testing::Test {};
using Kinds = testing::Types<ItemKind, BookingKind, RecordKind, ReportKind>;
TYPED_TEST_SUITE(Engine, Kinds);

TYPED_TEST(Engine, ThatTakesItselfOffLivesUntilItReturns) {
  const auto object = TypeParam::Make();
  const auto own = std::make_shared<std::string>("eigener Text");
  const std::weak_ptr<std::string> watched = own;
  // What the function holds lives as long as the engine that holds it.
  TypeParam::SetEngine(*object, [&object, own, watched](const auto&, clsVnError*) {
    const std::weak_ptr<std::string> here = watched;
    object->PrintEngine(nullptr);
    EXPECT_GT(here.use_count(), 1) << "it is running";
    return *own;
  });
  EXPECT_EQ(object->ToString(), "eigener Text");
  test::ExpectNoError(*object);
  EXPECT_EQ(watched.use_count(), 1) << "the engine is gone";
  EXPECT_EQ(object->ToString(), TypeParam::Standard(object, nullptr)) << "the default engine again";
}

TYPED_TEST(Engine, ThatPutsAnotherInItsPlaceLivesUntilItReturns) {
  const auto object = TypeParam::Make();
  const auto own = std::make_shared<std::string>("eigener Text");
  TypeParam::SetEngine(*object, [&object, own](const auto&, clsVnError*) {
    const std::weak_ptr<std::string> here = own;
    TypeParam::SetEngine(*object, [](const auto&, clsVnError*) { return std::string("anderer Text"); });
    EXPECT_GT(here.use_count(), 1);
    return *own;
  });
  EXPECT_EQ(object->ToString(), "eigener Text");
  EXPECT_EQ(object->ToString(), "anderer Text");
}

TYPED_TEST(Engine, IsGivenTheVeryPointerThatOwnsTheObject) {
  const auto object = TypeParam::Make();
  std::shared_ptr<typename TypeParam::Object> given;
  TypeParam::SetEngine(*object, [&](const auto& what, clsVnError*) {
    EXPECT_EQ(what, object);
    EXPECT_TRUE(HaveTheSameOwner(what, object));
    EXPECT_GT(what.use_count(), 1);
    return std::string("x");
  });
  EXPECT_EQ(object->ToString(), "x");
}

TYPED_TEST(Engine, MayKeepTheObject) {
  auto object = TypeParam::Make();
  const std::weak_ptr<typename TypeParam::Object> watched = object;
  std::shared_ptr<typename TypeParam::Object> kept;
  TypeParam::SetEngine(*object, [&kept](const auto& what, clsVnError*) {
    kept = what;
    return std::string("x");
  });
  EXPECT_EQ(object->ToString(), "x");
  const std::string text = TypeParam::Standard(object, nullptr);
  object.reset();
  ASSERT_FALSE(watched.expired()) << "the engine kept it";
  EXPECT_EQ(TypeParam::Standard(kept, nullptr), text);
  kept->PrintEngine(nullptr);
  kept.reset();
  EXPECT_TRUE(watched.expired());
}

TYPED_TEST(Engine, ThatLetsTheObjectGoKeepsItUntilItReturns) {
  auto object = TypeParam::Make();
  const std::weak_ptr<typename TypeParam::Object> watched = object;
  TypeParam::SetEngine(*object,
                       [&object, &watched](std::shared_ptr<typename TypeParam::Object> what, clsVnError*) {
                         object.reset();
                         what.reset();
                         EXPECT_FALSE(watched.expired()) << "it is running";
                         return std::string("x");
                       });
  typename TypeParam::Object& running = *object;
  EXPECT_EQ(running.ToString(), "x");
  EXPECT_TRUE(watched.expired());
}

TYPED_TEST(Engine, ThatFailsAndLetsTheObjectGoLogsTheFailure) {
  test::TestLog log;
  auto object = TypeParam::Make();
  object->LogHandler(log.Handler());
  TypeParam::SetEngine(*object,
                       [&object](std::shared_ptr<typename TypeParam::Object> what, clsVnError* errors) {
                         object.reset();
                         what.reset();
                         errors->SetError(4711, "Kein Papier", true, "Drucken");
                         return std::string();
                       });
  typename TypeParam::Object& running = *object;
  EXPECT_EQ(running.ToString(), "");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"Drucken"});
}

TYPED_TEST(Engine, ThatThrowsAndTakesItselfOffIsAFault) {
  const auto object = TypeParam::Make();
  TypeParam::SetEngine(*object, [&object](const auto&, clsVnError*) -> std::string {
    object->PrintEngine(nullptr);
    throw 42;
  });
  EXPECT_EQ(object->ToString(), "");
  test::ExpectRunTimeError(object->ErrorObject(), 5, "ToString");
  EXPECT_NE(object->ToString(), "");
  test::ExpectNoError(*object);
}

TYPED_TEST(Engine, ThatAsksTheObjectForItsTextAgainEnds) {
  const auto object = TypeParam::Make();
  int depth = 0;
  TypeParam::SetEngine(*object, [&](const auto& what, clsVnError*) {
    return ++depth < 5 ? "(" + what->ToString() + ")" : std::string("x");
  });
  EXPECT_EQ(object->ToString(), "((((x))))");
  test::ExpectNoError(*object);
}

TYPED_TEST(Engine, ThatFilesAnErrorIsHeard) {
  const auto object = TypeParam::Make();
  TypeParam::SetEngine(*object, [](const auto&, clsVnError* errors) {
    errors->SetError(4711, "Kein Papier", true, "Drucken");
    return std::string("x");
  });
  EXPECT_EQ(object->ToString(), "x");
  test::ExpectError(object->ErrorObject(), 4711, true, "Drucken", "Kein Papier");
}

TYPED_TEST(Engine, OfAnObjectOnTheStackIsGivenIt) {
  typename TypeParam::Object object;
  const typename TypeParam::Object* given = nullptr;
  TypeParam::SetEngine(object, [&given](const auto& what, clsVnError*) {
    given = what.get();
    return std::string("x");
  });
  EXPECT_EQ(object.ToString(), "x");
  EXPECT_EQ(given, &object);
}

// Engines that are handed an object by reference

TEST(EngineThatIsHandedAReference, IsGivenTheVeryPointerThatOwnsTheObject) {
  ScriptedEngine engine;
  const auto item = ItemKind::Make();
  const auto booking = BookingKind::Make();
  const auto record = RecordKind::Make();
  int calls = 0;
  engine.item = [&](const std::shared_ptr<IVnZelItem>& what, clsVnError*) {
    EXPECT_TRUE(HaveTheSameOwner(what, item));
    ++calls;
    return std::string();
  };
  engine.booking = [&](const std::shared_ptr<clsZelTransAct>& what, clsVnError*) {
    EXPECT_TRUE(HaveTheSameOwner(what, booking));
    ++calls;
    return std::string();
  };
  engine.record = [&](const std::shared_ptr<clsZelTransActData>& what, clsVnError*) {
    EXPECT_TRUE(HaveTheSameOwner(what, record));
    ++calls;
    return std::string();
  };
  engine.ToStringCI(*item);
  engine.ToStringBI(*booking);
  engine.ToStringTRdata(*record);
  ScriptedReportEngine reportEngine;
  const auto report = ReportKind::Make();
  reportEngine.report = [&](const std::shared_ptr<clsZelReport>& what, clsVnError*) {
    EXPECT_TRUE(HaveTheSameOwner(what, report));
    ++calls;
    return std::string();
  };
  reportEngine.ToStringRprt(*report);
  EXPECT_EQ(calls, 4);
}

// The engine of a list

TEST(EngineOfAList, IsGivenTheVeryPointersOfTheItems) {
  clsZelItemList list;
  const auto engine = std::make_shared<ScriptedEngine>();
  std::vector<std::shared_ptr<IVnZelItem>> given;
  engine->item = [&given](std::shared_ptr<IVnZelItem> item, clsVnError*) {
    given.push_back(std::move(item));
    return std::string("x");
  };
  list.PrintEngine(engine);
  const std::vector<std::shared_ptr<IVnZelItem>> items = {test::CashItem("Brot", 2), Scripted("A")};
  for (const auto& item : items) {
    ASSERT_TRUE(list.AddItem(item));
  }
  EXPECT_EQ(list.ToString(), "x\r\nx");
  EXPECT_EQ(given, items);
  for (std::size_t i = 0; i < items.size(); ++i) {
    EXPECT_TRUE(HaveTheSameOwner(given[i], items[i])) << i;
  }
}

TEST(EngineOfAList, MayKeepTheItems) {
  clsZelItemList list;
  const auto engine = std::make_shared<ScriptedEngine>();
  std::shared_ptr<IVnZelItem> kept;
  engine->item = [&kept](std::shared_ptr<IVnZelItem> item, clsVnError*) {
    kept = std::move(item);
    return std::string("x");
  };
  list.PrintEngine(engine);
  ASSERT_TRUE(list.AddItem(Scripted("A")));
  EXPECT_EQ(list.ToString(), "x");
  EXPECT_TRUE(list.Clear());
  ASSERT_EQ(kept.use_count(), 1);
  EXPECT_EQ(kept->InstanceID(), "A");
}

TEST(EngineOfAList, ThatTakesItselfOffLivesUntilItReturns) {
  clsZelItemList list;
  ASSERT_TRUE(list.AddItem(test::CashItem("Brot", 2)));
  ASSERT_TRUE(list.AddItem(test::CashItem("Salz", 1)));
  std::weak_ptr<ScriptedEngine> watched;
  {
    const auto engine = std::make_shared<ScriptedEngine>();
    watched = engine;
    engine->item = [&list, watched](const auto&, clsVnError*) {
      const auto own = watched;
      list.PrintEngine(nullptr);
      EXPECT_FALSE(own.expired()) << "it is running";
      return std::string("x");
    };
    list.PrintEngine(engine);
  }
  EXPECT_TRUE(list.ToString().starts_with("x\r\n"));
  test::ExpectNoError(list);
  EXPECT_TRUE(watched.expired());
}

TEST(EngineOfAList, ThatChangesTheListDoesNoHarm) {
  for (int change = 0; change < 4; ++change) {
    clsZelItemList list;
    const auto engine = std::make_shared<ScriptedEngine>();
    int calls = 0;
    engine->item = [&](const std::shared_ptr<IVnZelItem>& item, clsVnError*) {
      switch (change) {
        case 0: EXPECT_TRUE(list.Clear()); break;
        case 1: EXPECT_TRUE(list.RemoveItem(item)); break;
        case 2: EXPECT_TRUE(list.RemoveItem(nullptr, {}, 1)); break;
        default:
          if (calls < 1000) {
            EXPECT_TRUE(list.AddItem(Scripted("N" + std::to_string(calls))));
          }
      }
      ++calls;
      return item->InstanceID();
    };
    list.PrintEngine(engine);
    for (int i = 0; i < 40; ++i) {
      ASSERT_TRUE(list.AddItem(Scripted("A" + std::to_string(i))));
    }
    EXPECT_TRUE(list.ToString().starts_with("A0"));
    ExpectOutcome(list, !list.HasError());
    EXPECT_LT(calls, 200);
  }
}

TEST(EngineOfAList, ThatLetsTheListGoKeepsItUntilItReturns) {
  auto list = std::make_shared<clsZelItemList>();
  const std::weak_ptr<clsZelItemList> watched = list;
  ASSERT_TRUE(list->AddItem(test::CashItem("Brot", 2)));
  const auto engine = std::make_shared<ScriptedEngine>();
  engine->item = [&](const auto&, clsVnError*) {
    list.reset();
    EXPECT_FALSE(watched.expired()) << "it is running";
    return std::string("x");
  };
  list->PrintEngine(engine);
  clsZelItemList& running = *list;
  EXPECT_EQ(running.ToString(), "x");
  EXPECT_TRUE(watched.expired());
}

// Receipts of a booking whose items and engines change it

TEST(EngineOfABooking, ThatChangesItBeforeItRendersItShowsWhatIsThere) {
  clsZelTransAct booking;
  test::FillSale(booking);
  const auto engine = std::make_shared<ScriptedEngine>();
  engine->booking = [](const std::shared_ptr<clsZelTransAct>& what, clsVnError* errors) {
    EXPECT_TRUE(what->ClearItems());
    EXPECT_TRUE(what->AddItem(test::CashItem("Salz", 1)));
    what->Operator("Berta");
    return clsZelItemPrint().ToStringBI(what, errors);
  };
  booking.PrintEngine(engine);
  const std::string text = booking.ToString();
  EXPECT_NE(text.find("Salz"), std::string::npos);
  EXPECT_NE(text.find("Berta"), std::string::npos);
  EXPECT_EQ(text.find("Brot"), std::string::npos);
  test::ExpectNoError(booking);
}

TEST(ReceiptWhoseItemTakesTheEngineOff, IsRenderedToItsEnd) {
  clsZelTransAct booking;
  test::FillSale(booking);
  std::weak_ptr<clsZelItemPrint> watched;
  {
    const auto engine = std::make_shared<clsZelItemPrint>();
    watched = engine;
    booking.PrintEngine(engine);
  }
  const auto item = Scripted("A");
  item->onShow = [&booking, &watched] {
    booking.PrintEngine(nullptr);
    EXPECT_FALSE(watched.expired()) << "it is running";
  };
  ASSERT_TRUE(booking.AddItem(item));
  const std::string text = booking.ToString();
  EXPECT_NE(text.find("Brot"), std::string::npos);
  EXPECT_NE(text.find("scripted"), std::string::npos);
  EXPECT_NE(text.find("    Hashwert Posten ........: "), std::string::npos);
  test::ExpectNoError(booking);
  EXPECT_TRUE(watched.expired());
}

TEST(ReceiptWhoseItemTakesTheDefaultEngineOff, IsRenderedToItsEnd) {
  clsZelTransAct booking;
  const auto item = Scripted("A");
  item->onShow = [&booking] { booking.PrintEngine(nullptr); };
  ASSERT_TRUE(booking.AddItem(item));
  EXPECT_NE(booking.ToString().find("    Hashwert Posten ........: "), std::string::npos);
  test::ExpectNoError(booking);
}

TEST(ReceiptWhoseItemsEngineRemovesTheItem, IsRenderedToItsEnd) {
  clsZelTransAct booking;
  std::weak_ptr<clsZelItemCash> watched;
  {
    const auto item = ItemKind::Make();
    watched = item;
    ItemKind::SetEngine(*item, [&booking, watched](std::shared_ptr<clsZelItemCash> what, clsVnError*) {
      EXPECT_TRUE(booking.RemoveItem(what));
      what->PrintEngine(nullptr);
      what.reset();
      EXPECT_FALSE(watched.expired()) << "it is running";
      return std::string("weg");
    });
    ASSERT_TRUE(booking.AddItem(item));
  }
  const std::string text = booking.ToString();
  EXPECT_NE(text.find("    weg\r\n"), std::string::npos) << text;
  ExpectOutcome(booking, !booking.HasError());
  EXPECT_TRUE(watched.expired());
}

TEST(ReceiptWhoseItemLetsTheBookingGo, IsRenderedToItsEnd) {
  auto booking = std::make_shared<clsZelTransAct>();
  const std::weak_ptr<clsZelTransAct> watched = booking;
  const auto item = Scripted("A");
  item->onShow = [&] {
    booking.reset();
    EXPECT_FALSE(watched.expired()) << "it is running";
  };
  ASSERT_TRUE(booking->AddItem(item));
  clsZelTransAct& running = *booking;
  EXPECT_NE(running.ToString().find("scripted"), std::string::npos);
  EXPECT_TRUE(watched.expired());
}

TEST(EngineOfAnItem, ThatTakesItselfOffWhileAReceiptIsMadeLivesUntilItReturns) {
  clsZelTransAct booking;
  const auto item = ItemKind::Make();
  const auto own = std::make_shared<std::string>("eigener Text");
  ItemKind::SetEngine(*item, [&item, own](const auto&, clsVnError*) {
    const std::weak_ptr<std::string> here = own;
    item->PrintEngine(nullptr);
    EXPECT_GT(here.use_count(), 1);
    return *own;
  });
  ASSERT_TRUE(booking.AddItem(item));
  EXPECT_NE(booking.ToString().find("    eigener Text\r\n"), std::string::npos);
}

TEST(EngineThatAHostCallsItself, IsKeptUntilItReturnsAlthoughAnItemLetsItGo) {
  auto engine = std::make_shared<clsZelItemPrint>();
  const std::weak_ptr<clsZelItemPrint> watched = engine;
  const auto booking = std::make_shared<clsZelTransAct>();
  const auto item = Scripted("A");
  item->onShow = [&] {
    engine.reset();
    EXPECT_FALSE(watched.expired()) << "it is running";
  };
  ASSERT_TRUE(booking->AddItem(item));
  clsZelItemPrint& running = *engine;
  EXPECT_NE(running.ToStringBI(booking), "");
  EXPECT_TRUE(watched.expired());
}

#ifndef NDEBUG
TEST(EngineDeathTest, OfAnObjectOnTheStackThatIsKeptEndsADebugBuild) {
  EXPECT_DEATH(
      {
        clsZelItemCash item;
        std::shared_ptr<clsZelItemCash> kept;
        ItemKind::SetEngine(item, [&kept](const auto& what, clsVnError*) {
          kept = what;
          return std::string();
        });
        item.ToString();
      },
      "kept");
}
#endif

}  // namespace
