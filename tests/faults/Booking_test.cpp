// A booking from its first object to its last, while memory runs out.

#include <memory>
#include <optional>

#include "Exchange.h"
#include "Log.h"
#include "tests/booking/Support.h"
#include "tests/support/Regional.h"

namespace {

using test::FromHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelVatList;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELHashFmt;
using VnZEL10cmn::ZELSerialType;

struct World : test::Exchanged {
  using Exchanged::Shown;

  static std::string Shown(clsZelTransAct& booking) {
    std::string shown = booking.Operator() + "\n" + booking.ZelProfile() + "\n" +
                        std::to_string(booking.TransactionDate().Value()) + "\n" + booking.ZelRqstData() +
                        "\n" + booking.ItemHash() + "\n" + booking.ZelRespData() + "\n" +
                        booking.ZelRespTpID() + "\n" + std::to_string(booking.ZelRespTpIDNr().Scaled()) +
                        "\n" + std::to_string(booking.ZelRespSeqNr().Scaled()) + "\n" +
                        booking.ZelRespSignature() + "\n";
    for (const auto& item : booking) {
      const auto* const cashItem = dynamic_cast<const clsZelItemCash*>(item.get());
      shown += cashItem != nullptr ? Shown(*cashItem) : item->ToString();
    }
    return shown;
  }

  std::shared_ptr<clsZelVatList> rates;
  std::shared_ptr<clsZelItemCash> bread;
  std::shared_ptr<clsZelItemCash> deposit;
  std::optional<clsZelTransAct> sale;
  std::optional<clsZelTransAct> copy;
  ByteArray request;
  Currency turnover;
  Currency vat;
  Currency rate;
};

using Step = test::Step<World>;
using Path = test::Path<World>;
using Booking = std::optional<clsZelTransAct> World::*;
using Item = std::shared_ptr<clsZelItemCash> World::*;
using test::Export;
using test::Import;
using test::Keeping;
using test::On;
constexpr auto Made = test::Made<World>;

const ByteArray kResponse = FromHex(test::kSaleResponse);
const ByteArray kCutResponse = FromHex("C4 03 44 45 31 C5 01 02 CB 02 01");
const ByteArray kItems = FromHex(test::kSaleItems);
const ByteArray kDamagedItems = FromHex("A0 01 32 A2 04 62 72 6F 74 B1 03 01 1A 0C");

/// A property of a text, which keeps what it was when the new one can't be held.
template <class Holder>
Step Property(Holder World::*place, std::string_view name, std::function<void(World&)> set) {
  Step step = Made(name, std::move(set));
  step.result = [=](World& world) { return World::Shown(*(world.*place)); };
  return Keeping(std::move(step));
}

Path MakeObjects() {
  return {
      Made("clsZelVatList", [](World& world) { world.rates = std::make_shared<clsZelVatList>(); }),
      Made("clsZelItemCash", [](World& world) { world.bread = std::make_shared<clsZelItemCash>(); }),
      Made("clsZelItemCash", [](World& world) { world.deposit = std::make_shared<clsZelItemCash>(); }),
      Made("clsZelTransAct", [](World& world) { world.sale.emplace(); }),
      Made("properties",
           [](World& world) {
             world.sale->LogHandler(world.log);
             world.sale->VatList(world.rates);
             world.sale->TransactionDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
           }),
      Property(&World::sale, "Operator",
               [](World& world) { world.sale->Operator("Anna Lena Meier-Schulze"); }),
      Property(&World::sale, "ZelProfile",
               [](World& world) { world.sale->ZelProfile("die Kasse im Erdgeschoss links"); }),
  };
}

Step Add(Item item, test::Numbers numbers = {}) {
  return Keeping(On(
      &World::sale, "AddItem", [=](World& world, clsZelTransAct& sale) { return sale.AddItem(world.*item); },
      std::move(numbers)));
}

Path AddItems() {
  return {
      Keeping(On(&World::bread, "SetItemData",
                 [](World&, clsZelItemCash& bread) {
                   return bread.SetItemData(2, "Bauernbrot aus Sauerteig, geschnitten",
                                            "Stück in Papiertüten", Currency::FromScaled(119000), 5, 0, false,
                                            false, true);
                 })),
      Property(&World::deposit, "Unit", [](World& world) { world.deposit->Unit("Flaschen je 0,5 Liter"); }),
      Property(&World::deposit, "Name", [](World& world) { world.deposit->Name("Pfandrückgabe Mehrweg"); }),
      Keeping(On(&World::deposit, "SetItemData",
                 [](World&, clsZelItemCash& deposit) { return deposit.SetItemData(1, " "); }, {9001})),
      Made("Price", [](World& world) { world.deposit->Price(1, -3); }),
      Add(&World::bread),
      Add(&World::deposit),
      Add(&World::bread, {9306}),
      Step{.operation = "ItemK",
           .run =
               [](World& world) { return world.sale->ItemK(world.deposit->InstanceID()) == world.deposit; }},
  };
}

Step GetHash(ZELHashFmt format, bool fromMem, std::int32_t groupLen) {
  return test::TextOf(&World::sale, "GetItemHash",
                      [=](clsZelTransAct& sale) { return sale.GetItemHash(format, fromMem, groupLen); },
                      {9000});
}

Step Get(ZELSerialType type, std::int32_t start, std::int32_t upper) {
  return test::Get(&World::sale, type, start, upper, {9000, 9301, 9302, 9307});
}

Step Set(Booking booking, ZELSerialType type, const ByteArray& data, std::int32_t start = 0) {
  return test::Set(booking, type, data, start, {9301, 9302, 9305});
}

Step ToText(Booking booking) { return test::ToText(booking, {9000}); }

Path Sell() {
  return {
      GetHash(ZELHashFmt::Base64, true, 0),
      Get(ZELSerialType::Response, 0, 99),  // there is none yet
      Get(ZELSerialType::Request, 0, -1),
      GetHash(ZELHashFmt::Base64, true, 0),
      GetHash(ZELHashFmt::Base32, false, 5),
      GetHash(ZELHashFmt::Base32H, true, 4),
      GetHash(ZELHashFmt::Base16, false, 8),
      Get(ZELSerialType::ItemList, 3, 299),
      Get(ZELSerialType::ItemList, 3, 20),  // too small
      Get(ZELSerialType::ItemHash, 0, 31),
      Get(ZELSerialType::BinaryData, 0, 31),  // not supported
      ToText(&World::sale),
      Export(&World::sale),
      Set(&World::sale, ZELSerialType::Response, kResponse),
      Get(ZELSerialType::Response, 0, 99),
      ToText(&World::sale),
      Export(&World::sale),
  };
}

Path ReadBack() {
  Step getValues = On(&World::sale, "GetContainerValues", [](World& world, clsZelTransAct& sale) {
    return sale.GetContainerValues(1, world.turnover, world.vat, world.rate);
  });
  getValues.result = [](World& world) {
    return std::to_string(world.turnover.Scaled()) + " " + std::to_string(world.vat.Scaled()) + " " +
           std::to_string(world.rate.Scaled());
  };
  return {
      getValues,
      Made("clsZelTransAct", [](World& world) { world.copy.emplace(); }),
      Import(&World::copy),
      ToText(&World::copy),
      Set(&World::copy, ZELSerialType::Response, kCutResponse),
      Set(&World::copy, ZELSerialType::Response, kResponse, 99),
      Set(&World::copy, ZELSerialType::ItemHash, kResponse),
      Set(&World::copy, ZELSerialType::ItemList, kDamagedItems),
      Set(&World::copy, ZELSerialType::ItemList, kItems),
      On(&World::sale, "BinaryDataGet",
         [](World& world, clsZelTransAct& sale) {
           return sale.BinaryDataGet(ZELSerialType::Request, world.request, 0);
         },
         {9000, 9301, 9302, 9307}),
      On(&World::copy, "BinaryDataSet",
         [](World& world, clsZelTransAct& copy) {
           return copy.BinaryDataSet(ZELSerialType::Request, world.request, 0);
         },
         {9301, 9302, 9305}),
      Import(&World::copy),
      Import(&World::copy,
             [](std::string& document) { document.erase(document.find("transactionRequest"), 1); }),
  };
}

Path EmptyIt() {
  return {
      Keeping(On(&World::sale, "RemoveItem",
                 [](World& world, clsZelTransAct& sale) { return sale.RemoveItem(world.bread); })),
      Keeping(On(&World::sale, "RemoveItem",
                 [](World&, clsZelTransAct& sale) { return sale.RemoveItem(nullptr, {}, 1); })),
      Keeping(On(&World::copy, "RemoveItem",
                 [](World&, clsZelTransAct& copy) { return copy.RemoveItem(nullptr, {}, 9); }, {9})),
      Get(ZELSerialType::ItemHash, 0, 31),  // of no items there is none
      Get(ZELSerialType::Request, 0, 31),   // nor a request
      On(&World::copy, "ClearItems", [](World&, clsZelTransAct& copy) { return copy.ClearItems(); }),
      On(&World::copy, "Clear", [](World&, clsZelTransAct& copy) { return copy.Clear(); }),
      ToText(&World::copy),
  };
}

Path WholePath() { return test::Joined({MakeObjects(), AddItems(), Sell(), ReadBack(), EmptyIt()}); }

TEST(BookingWithoutMemory, FailsWithItsNumberAndGoesOnAfterwards) { test::FailEachAllocation(WholePath()); }

TEST(BookingWithoutMemory, IsTheSameWithALog) {
  test::FailEachAllocationWithLog(WholePath(), {test::kOne, test::kAll});
}

TEST(BookingWithoutMemory, IsTheSameWithAHostsRegionalSettings) {
  const test::GlobalLocale host(std::locale(std::locale(std::locale(), new test::NumberCharacters('.', '\'')),
                                            new test::DateCharacters('-', '.')));
  test::FailEachAllocation(WholePath(), {test::kOne});
}

// Items of a host's own are asked anew for the hash, and an item list on its own is the first to need its text.
TEST(BookingWithoutMemory, IsTheSameWithItemsOfTheHost) {
  const auto fake = std::make_shared<test::FakeItem>("FAKE-1", test::kSaleItems);
  fake->prices[0] = 3;
  test::FailEachAllocation(Path{
      Made("clsZelVatList", [](World& world) { world.rates = std::make_shared<clsZelVatList>(); }),
      Made("clsZelTransAct", [](World& world) { world.sale.emplace(); }),
      Made("properties",
           [](World& world) {
             world.sale->VatList(world.rates);
             world.sale->TransactionDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
             world.sale->Operator("Anna");
           }),
      On(&World::sale, "AddItem", [=](World&, clsZelTransAct& sale) { return sale.AddItem(fake); }),
      Get(ZELSerialType::ItemList, 0, 99),
      Get(ZELSerialType::Request, 0, 99),
      Get(ZELSerialType::ItemHash, 0, 99),
  });
}

}  // namespace
