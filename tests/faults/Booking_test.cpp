// A booking from its first object to its last, while memory runs out.

#include <memory>
#include <optional>

#include "Log.h"
#include "Path.h"
#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tests/booking/Support.h"
#include "tests/support/Regional.h"

namespace {

using test::FromHex;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnLogFile;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelVatList;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::VnObject;
using VnZEL10cmn::ZELHashFmt;
using VnZEL10cmn::ZELSerialType;

struct World {
  std::shared_ptr<clsVnLogFile> log;
  std::shared_ptr<clsZelVatList> rates;
  std::shared_ptr<clsZelItemCash> bread;
  std::shared_ptr<clsZelItemCash> deposit;
  std::optional<clsZelTransAct> sale;
  std::optional<clsZelTransAct> copy;
  ByteArray data;
  ByteArray request;
  std::int32_t length = 0;
  std::string text;
  std::string document;
  Currency turnover;
  Currency vat;
  Currency rate;
};

using Step = test::Step<World>;
using Path = test::Path<World>;

const ByteArray kResponse = FromHex(test::kSaleResponse);
const ByteArray kCutResponse = FromHex("C4 03 44 45 31 C5 01 02 CB 02 01");
const ByteArray kItems = FromHex(test::kSaleItems);
const ByteArray kDamagedItems = FromHex("A0 01 32 A2 04 62 72 6F 74 B1 03 01 1A 0C");

std::string Shown(const clsZelItemCash& item) {
  std::string text = std::to_string(item.Quantity().Scaled()) + " " + item.Unit() + " " + item.Name();
  for (std::int32_t number = 1; number <= 6; ++number) {
    text += " " + std::to_string(item.Price(number).Scaled());
  }
  return text + "\n";
}

std::string Shown(clsZelTransAct& booking) {
  std::string text = booking.Operator() + "\n" + booking.ZelProfile() + "\n" +
                     std::to_string(booking.TransactionDate().Value()) + "\n" + booking.ZelRqstData() + "\n" +
                     booking.ItemHash() + "\n" + booking.ZelRespData() + "\n" + booking.ZelRespTpID() + "\n" +
                     std::to_string(booking.ZelRespTpIDNr().Scaled()) + "\n" +
                     std::to_string(booking.ZelRespSeqNr().Scaled()) + "\n" + booking.ZelRespSignature() +
                     "\n";
  for (const auto& item : booking) {
    text += Shown(dynamic_cast<const clsZelItemCash&>(*item));
  }
  return text;
}

VnObject* Sale(World& world) { return &*world.sale; }
VnObject* Copy(World& world) { return &*world.copy; }
VnObject* Bread(World& world) { return world.bread.get(); }
VnObject* Deposit(World& world) { return world.deposit.get(); }

std::string ShownSale(World& world) { return Shown(*world.sale); }
std::string ShownCopy(World& world) { return Shown(*world.copy); }
std::string ShownText(World& world) { return world.text; }
std::string ShownDocument(World& world) { return world.document; }
std::string ShownData(World& world) { return std::to_string(world.data.LBound()) + ": " + ToHex(world.data); }

/// A text that an operation returns is its result when it isn't empty and no error stands beside it.
bool Take(World& world, std::string text, clsZelTransAct& booking) {
  world.text = std::move(text);
  return !world.text.empty() && !booking.HasError();
}

Path MakeObjects() {
  return {
      Step{.operation = "clsZelVatList",
           .run =
               [](World& world) {
                 world.rates = std::make_shared<clsZelVatList>();
                 return true;
               },
           .result = [](World& world) { return std::to_string(world.rates->Count()); }},
      Step{.operation = "clsZelItemCash",
           .run =
               [](World& world) {
                 world.bread = std::make_shared<clsZelItemCash>();
                 return true;
               }},
      Step{.operation = "clsZelItemCash",
           .run =
               [](World& world) {
                 world.deposit = std::make_shared<clsZelItemCash>();
                 return true;
               }},
      Step{.operation = "clsZelTransAct",
           .run =
               [](World& world) {
                 world.sale.emplace();
                 return true;
               }},
      Step{.operation = "properties",
           .run =
               [](World& world) {
                 world.sale->LogHandler(world.log);
                 world.sale->VatList(world.rates);
                 world.sale->TransactionDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
                 return true;
               }},
      Step{.operation = "Operator",
           .run =
               [](World& world) {
                 world.sale->Operator("Anna Lena Meier-Schulze");
                 return true;
               },
           .result = ShownSale,
           .kept = ShownSale},
      Step{.operation = "ZelProfile",
           .run =
               [](World& world) {
                 world.sale->ZelProfile("die Kasse im Erdgeschoss links");
                 return true;
               },
           .result = ShownSale,
           .kept = ShownSale},
  };
}

Path AddItems() {
  return {
      Step{.operation = "SetItemData",
           .run =
               [](World& world) {
                 return world.bread->SetItemData(2, "Bauernbrot aus Sauerteig, geschnitten",
                                                 "Stück in Papiertüten", Currency::FromScaled(119000), 5, 0,
                                                 false, false, true);
               },
           .object = Bread,
           .result = [](World& world) { return Shown(*world.bread); },
           .kept = [](World& world) { return Shown(*world.bread); }},
      Step{.operation = "Unit",
           .run =
               [](World& world) {
                 world.deposit->Unit("Flaschen je 0,5 Liter");
                 return true;
               },
           .kept = [](World& world) { return Shown(*world.deposit); }},
      Step{.operation = "Name",
           .run =
               [](World& world) {
                 world.deposit->Name("Pfandrückgabe Mehrweg");
                 return true;
               },
           .result = [](World& world) { return Shown(*world.deposit); },
           .kept = [](World& world) { return Shown(*world.deposit); }},
      Step{.operation = "SetItemData",
           .run = [](World& world) { return world.deposit->SetItemData(1, " "); },
           .object = Deposit,
           .result = [](World& world) { return Shown(*world.deposit); },
           .kept = [](World& world) { return Shown(*world.deposit); },
           .numbers = {9001}},
      Step{.operation = "AddItem",
           .run =
               [](World& world) {
                 world.deposit->Price(1, -3);
                 return world.sale->AddItem(world.bread);
               },
           .object = Sale,
           .result = ShownSale,
           .kept = ShownSale},
      Step{.operation = "AddItem",
           .run = [](World& world) { return world.sale->AddItem(world.deposit); },
           .object = Sale,
           .result = ShownSale,
           .kept = ShownSale},
      Step{.operation = "AddItem",
           .run = [](World& world) { return world.sale->AddItem(world.bread); },
           .object = Sale,
           .result = ShownSale,
           .kept = ShownSale,
           .numbers = {9306}},
      Step{.operation = "ItemK",
           .run =
               [](World& world) { return world.sale->ItemK(world.deposit->InstanceID()) == world.deposit; }},
  };
}

Step GetHash(ZELHashFmt format, bool fromMem, std::int32_t groupLen) {
  return {.operation = "GetItemHash",
          .run =
              [=](World& world) {
                return Take(world, world.sale->GetItemHash(format, fromMem, groupLen), *world.sale);
              },
          .object = Sale,
          .result = [](World& world) { return world.sale->HasError() ? "" : world.text; },
          .numbers = {9000}};
}

Step Get(ZELSerialType type, std::int32_t start, std::int32_t upper) {
  return {
      .operation = "BinaryDataGet",
      .run = [=](World& world) { return world.sale->BinaryDataGet(type, world.data, start, &world.length); },
      .object = Sale,
      .prepare = [=](World& world) { world.data.Redim(0, upper); },
      .result =
          [](World& world) {
            return ShownData(world) + "\n" + (world.sale->HasError() ? "" : std::to_string(world.length)) +
                   ShownSale(world);
          },
      .kept = ShownData,
      .numbers = {9000, 9301, 9302, 9307}};
}

Step ToText(std::optional<clsZelTransAct> World::*booking) {
  return {.operation = "ToString",
          .run = [=](World& world) { return Take(world, (world.*booking)->ToString(), *(world.*booking)); },
          .object = [=](World& world) { return &*(world.*booking); },
          .result = ShownText,
          .numbers = {9000}};
}

Path Sell() {
  Path path = {
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
      Step{.operation = "XmlHandler",
           .run = [](World& world) { return world.sale->XmlHandler(world.document, true); },
           .object = Sale,
           .prepare = [](World& world) { world.document = "what stood there before"; },
           .result = ShownDocument,
           .kept = ShownDocument,
           .numbers = {9301}},
      Step{.operation = "BinaryDataSet",
           .run =
               [](World& world) { return world.sale->BinaryDataSet(ZELSerialType::Response, kResponse, 0); },
           .object = Sale,
           .result = ShownSale,
           .numbers = {9301, 9305}},
      Get(ZELSerialType::Response, 0, 99),
      ToText(&World::sale),
      Step{.operation = "XmlHandler",
           .run = [](World& world) { return world.sale->XmlHandler(world.document, true); },
           .object = Sale,
           .prepare = [](World& world) { world.document = "what stood there before"; },
           .result = ShownDocument,
           .kept = ShownDocument,
           .numbers = {9301}},
  };
  return path;
}

Step Import(std::string_view operation, std::function<bool(World&)> run) {
  return {.operation = operation,
          .run = std::move(run),
          .object = Copy,
          .result = ShownCopy,
          .numbers = {9301, 9302, 9305}};
}

Path ReadBack() {
  return {
      Step{.operation = "GetContainerValues",
           .run =
               [](World& world) {
                 return world.sale->GetContainerValues(1, world.turnover, world.vat, world.rate);
               },
           .object = Sale,
           .result =
               [](World& world) {
                 return std::to_string(world.turnover.Scaled()) + " " + std::to_string(world.vat.Scaled()) +
                        " " + std::to_string(world.rate.Scaled());
               }},
      Step{.operation = "clsZelTransAct",
           .run =
               [](World& world) {
                 world.copy.emplace();
                 return true;
               }},
      Import("XmlHandler", [](World& world) { return world.copy->XmlHandler(world.document, false); }),
      ToText(&World::copy),
      Import(
          "BinaryDataSet",
          [](World& world) { return world.copy->BinaryDataSet(ZELSerialType::Response, kCutResponse, 0); }),
      Import("BinaryDataSet",
             [](World& world) { return world.copy->BinaryDataSet(ZELSerialType::Response, kResponse, 99); }),
      Import("BinaryDataSet",
             [](World& world) { return world.copy->BinaryDataSet(ZELSerialType::ItemHash, kResponse, 0); }),
      Import(
          "BinaryDataSet",
          [](World& world) { return world.copy->BinaryDataSet(ZELSerialType::ItemList, kDamagedItems, 0); }),
      Import("BinaryDataSet",
             [](World& world) { return world.copy->BinaryDataSet(ZELSerialType::ItemList, kItems, 0); }),
      Step{.operation = "BinaryDataGet",
           .run =
               [](World& world) {
                 return world.sale->BinaryDataGet(ZELSerialType::Request, world.request, 0);
               },
           .object = Sale,
           .numbers = {9000, 9301, 9302, 9307}},
      Import(
          "BinaryDataSet",
          [](World& world) { return world.copy->BinaryDataSet(ZELSerialType::Request, world.request, 0); }),
      Import("XmlHandler", [](World& world) { return world.copy->XmlHandler(world.document, false); }),
      Step{.operation = "XmlHandler",
           .run = [](World& world) { return world.copy->XmlHandler(world.text, false); },
           .object = Copy,
           .prepare =
               [](World& world) {
                 world.text = world.document;
                 world.text.erase(world.text.find("transactionRequest"), 1);
               },
           .result = ShownCopy,
           .numbers = {9301, 9302}},
  };
}

Path EmptyIt() {
  return {
      Step{.operation = "RemoveItem",
           .run = [](World& world) { return world.sale->RemoveItem(world.bread); },
           .object = Sale,
           .result = ShownSale,
           .kept = ShownSale},
      Step{.operation = "RemoveItem",
           .run = [](World& world) { return world.sale->RemoveItem(nullptr, {}, 1); },
           .object = Sale,
           .result = ShownSale,
           .kept = ShownSale},
      Step{.operation = "RemoveItem",
           .run = [](World& world) { return world.copy->RemoveItem(nullptr, {}, 9); },
           .object = Copy,
           .result = ShownCopy,
           .kept = ShownCopy,
           .numbers = {9}},
      Get(ZELSerialType::ItemHash, 0, 31),  // of no items there is none
      Get(ZELSerialType::Request, 0, 31),   // nor a request
      Step{.operation = "ClearItems",
           .run = [](World& world) { return world.copy->ClearItems(); },
           .object = Copy,
           .result = ShownCopy},
      Step{.operation = "Clear",
           .run = [](World& world) { return world.copy->Clear(); },
           .object = Copy,
           .result = ShownCopy},
      ToText(&World::copy),
  };
}

Path WholePath(const std::string& logName = "") {
  return test::Joined(
      {test::OpenLog<World>(logName), MakeObjects(), AddItems(), Sell(), ReadBack(), EmptyIt()});
}

TEST(BookingWithoutMemory, FailsWithItsNumberAndGoesOnAfterwards) { test::FailEachAllocation(WholePath()); }

TEST(BookingWithoutMemory, IsTheSameWithALog) {
  const test::TempDir folder;
  const std::string name = folder.File("a log with a name of some length.log");
  test::FailEachAllocation(WholePath(name), {test::kOne, test::kAll});
  test::ExpectWholeEntries(name);
}

TEST(BookingWithoutMemory, IsTheSameWithAHostsRegionalSettings) {
  const test::GlobalLocale host(std::locale(std::locale(std::locale(), new test::NumberCharacters('.', '\'')),
                                            new test::DateCharacters('-', '.')));
  test::FailEachAllocation(WholePath(), {test::kOne});
}

}  // namespace
