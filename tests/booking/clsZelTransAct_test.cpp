// The booking's members: defaults, properties, items, Clear.

#include "VnZEL10cmn/booking/clsZelTransAct.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "VnZEL10cmn/render/clsZelItemPrint.h"
#include "tests/booking/Support.h"

namespace VnZEL10cmn {
namespace {

using test::BuildRequest;
using test::FillSale;
using test::HandIn;

struct ContainerValues {
  Currency turnover = 999;
  Currency vat = 999;
  Currency rate = 999;
  friend bool operator==(const ContainerValues&, const ContainerValues&) = default;
};

ContainerValues ValuesOf(clsZelTransAct& booking, std::int32_t index) {
  ContainerValues values;
  EXPECT_TRUE(booking.GetContainerValues(index, values.turnover, values.vat, values.rate));
  test::ExpectNoError(booking);
  return values;
}

TEST(TransAct, NewBooking) {
  clsZelTransAct booking;
  EXPECT_EQ(booking.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelTransAct");
  EXPECT_EQ(booking.ErrorObject().ErrorInstanceID().size(), 36U);
  EXPECT_FALSE(booking.HasError());
  EXPECT_EQ(booking.LogHandler(), nullptr);
  EXPECT_EQ(booking.VatList(), nullptr);
  EXPECT_EQ(booking.ZelProfile(), "kasse");
  EXPECT_EQ(booking.TransactionDate().Value(), 36526.0);
  EXPECT_EQ(booking.Operator(), "");
  EXPECT_EQ(booking.CurrencyCode(), 978);
  EXPECT_FALSE(booking.IsTaxExcl());
  EXPECT_FALSE(booking.IsTraining());
  EXPECT_FALSE(booking.IsDeliveryNote());
  EXPECT_TRUE(booking.UseSHA256());
  EXPECT_EQ(booking.ZelRqstData(), "");
  EXPECT_EQ(booking.ItemHash(), "");
  EXPECT_EQ(booking.ItemCount(), 0);
  EXPECT_EQ(booking.begin(), booking.end());
  EXPECT_EQ(booking.ZelRespData(), "");
  EXPECT_EQ(booking.ZelRespTpID(), "");
  EXPECT_EQ(booking.ZelRespTpIDNr(), Currency(0));
  EXPECT_EQ(booking.ZelRespSeqNr(), Currency(0));
  EXPECT_EQ(booking.ZelRespSignature(), "");
  for (std::int32_t number = 1; number <= 6; ++number) {
    EXPECT_EQ(ValuesOf(booking, number), (ContainerValues{0, 0, 0})) << number;
  }
}

TEST(TransAct, DatesAreKeptWithin2000To2099) {
  clsZelTransAct booking;
  booking.TransactionDate(Date::FromCivil(1999, 5, 1));
  EXPECT_EQ(booking.TransactionDate().Value(), 36526.0);
  booking.TransactionDate(Date(36525.999));
  EXPECT_EQ(booking.TransactionDate().Value(), 36526.0);
  booking.TransactionDate(Date(36526.0));
  EXPECT_EQ(booking.TransactionDate().Value(), 36526.0);
  booking.TransactionDate(Date(36526.001));
  EXPECT_EQ(booking.TransactionDate().Value(), 36526.001);
  booking.TransactionDate(Date::FromCivil(2150, 1, 1));
  EXPECT_EQ(booking.TransactionDate().Value(), 73050.99998842593);
  booking.TransactionDate(Date(73050.999995));
  EXPECT_EQ(booking.TransactionDate().Value(), 73050.99998842593);
  booking.TransactionDate(Date::FromCivil(2099, 12, 31, 23, 59, 58));
  EXPECT_EQ(booking.TransactionDate().Value(), Date::FromCivil(2099, 12, 31, 23, 59, 58).Value());
  booking.TransactionDate(Date(-1e300));
  EXPECT_EQ(booking.TransactionDate().Value(), 36526.0);
  EXPECT_FALSE(booking.HasError());
}

TEST(TransAct, OperatorIsCutTo16CharactersAndThenTrimmed) {
  clsZelTransAct booking;
  booking.Operator("  abcdefghijklmnopqrstuvwxyz1234");
  EXPECT_EQ(booking.Operator(), "abcdefghijklmn");
  booking.Operator("1234567890123456");
  EXPECT_EQ(booking.Operator(), "1234567890123456");
  booking.Operator("12345678901234567");
  EXPECT_EQ(booking.Operator(), "1234567890123456");
  booking.Operator(" Anna B. ");
  EXPECT_EQ(booking.Operator(), "Anna B.");
  booking.Operator("123456789012345 7");
  EXPECT_EQ(booking.Operator(), "123456789012345");
  booking.Operator("                 x");
  EXPECT_EQ(booking.Operator(), "");
  booking.Operator("Anna");
  booking.Operator("");
  EXPECT_EQ(booking.Operator(), "");
  EXPECT_FALSE(booking.HasError());
}

TEST(TransAct, OperatorIsCountedInCharactersNotBytes) {
  clsZelTransAct booking;
  booking.Operator("ÄÖÜäöüßÄÖÜäöüßÄÖÜ");
  EXPECT_EQ(booking.Operator(), "ÄÖÜäöüßÄÖÜäöüßÄÖ");
}

TEST(TransAct, PlainPropertiesStoreWhatIsGiven) {
  clsZelTransAct booking;
  booking.CurrencyCode(756);
  booking.IsTaxExcl(true);
  booking.IsTraining(true);
  booking.IsDeliveryNote(true);
  booking.UseSHA256(false);
  const auto list = std::make_shared<clsZelVatList>();
  booking.VatList(list);
  EXPECT_EQ(booking.CurrencyCode(), 756);
  EXPECT_TRUE(booking.IsTaxExcl());
  EXPECT_TRUE(booking.IsTraining());
  EXPECT_TRUE(booking.IsDeliveryNote());
  EXPECT_FALSE(booking.UseSHA256());
  EXPECT_EQ(booking.VatList(), list);
  booking.VatList(nullptr);
  EXPECT_EQ(booking.VatList(), nullptr);
}

TEST(TransAct, ProfileIsStoredTrimmed) {
  clsZelTransAct booking;
  booking.ZelProfile("  handel ");
  EXPECT_EQ(booking.ZelProfile(), "handel");
}

TEST(TransAct, ReadingPropertiesKeepsTheError) {
  clsZelTransAct booking;
  booking.ErrorObject().SetError(9000, "x");
  (void)booking.ZelProfile();
  (void)booking.ItemI(1);
  (void)booking.ItemK("x");
  (void)booking.ItemCount();
  EXPECT_TRUE(booking.HasError());
  EXPECT_EQ(booking.ErrorObject().ErrorNr(), 9000);
}

// Items

TEST(TransActItems, AreForwardedToTheList) {
  clsZelTransAct booking;
  const auto first = test::CashItem("Brot", 1);
  const auto second = test::CashItem("Wein", 2);
  EXPECT_TRUE(booking.AddItem(first));
  EXPECT_TRUE(booking.AddItem(second));
  test::ExpectNoError(booking);
  EXPECT_EQ(booking.ItemCount(), 2);
  EXPECT_EQ(booking.ItemI(1), first);
  EXPECT_EQ(booking.ItemI(2), second);
  EXPECT_EQ(booking.ItemI(0), nullptr);
  EXPECT_EQ(booking.ItemI(3), nullptr);
  EXPECT_EQ(booking.ItemK(second->InstanceID()), second);
  EXPECT_EQ(booking.ItemK("nobody"), nullptr);
  std::vector<std::shared_ptr<IVnZelItem>> items;
  for (const auto& item : booking) {
    items.push_back(item);
  }
  EXPECT_EQ(items, (std::vector<std::shared_ptr<IVnZelItem>>{first, second}));
}

TEST(TransActItems, TheSameItemTwiceIsRefused) {
  clsZelTransAct booking;
  const auto item = test::CashItem("Brot", 1);
  EXPECT_TRUE(booking.AddItem(item));
  EXPECT_FALSE(booking.AddItem(item));
  EXPECT_EQ(booking.ErrorObject().ErrorNr(), 9306);
  EXPECT_TRUE(booking.ErrorObject().IsUserDef());
  EXPECT_EQ(booking.ItemCount(), 1);
  EXPECT_TRUE(booking.AddItem(test::CashItem("Brot", 1)));
  test::ExpectNoError(booking);
}

TEST(TransActItems, AreRemovedByItemIdOrPosition) {
  clsZelTransAct booking;
  const auto first = test::CashItem("a", 1);
  const auto second = test::CashItem("b", 1);
  const auto third = test::CashItem("c", 1);
  const auto fourth = test::CashItem("d", 1);
  for (const auto& item : {first, second, third, fourth}) {
    ASSERT_TRUE(booking.AddItem(item));
  }
  EXPECT_TRUE(booking.RemoveItem(second));
  EXPECT_EQ(booking.ItemI(2), third);
  EXPECT_TRUE(booking.RemoveItem(nullptr, third->InstanceID()));
  EXPECT_EQ(booking.ItemI(2), fourth);
  EXPECT_TRUE(booking.RemoveItem(nullptr, {}, 1));
  EXPECT_EQ(booking.ItemCount(), 1);
  EXPECT_EQ(booking.ItemI(1), fourth);
  EXPECT_TRUE(booking.RemoveItem());
  EXPECT_TRUE(booking.RemoveItem(first));
  EXPECT_TRUE(booking.RemoveItem(nullptr, "nobody"));
  test::ExpectNoError(booking);
  EXPECT_EQ(booking.ItemCount(), 1);
}

TEST(TransActItems, PositionBeyondTheListIsAFault) {
  clsZelTransAct booking;
  ASSERT_TRUE(booking.AddItem(test::CashItem("a", 1)));
  EXPECT_FALSE(booking.RemoveItem(nullptr, {}, 2));
  EXPECT_EQ(booking.ErrorObject().ErrorNr(), 9);
  EXPECT_FALSE(booking.ErrorObject().IsUserDef());
  EXPECT_EQ(booking.ItemCount(), 1);
}

TEST(TransActItems, ClearItemsIgnoresItsArguments) {
  clsZelTransAct booking;
  FillSale(booking);
  const std::shared_ptr<IVnZelItem> other = test::CashItem("a", 1);
  ASSERT_TRUE(booking.AddItem(other));
  EXPECT_TRUE(booking.ClearItems(other, "nobody", 1));
  EXPECT_EQ(booking.ItemCount(), 0);
  EXPECT_EQ(booking.Operator(), "Anna");
  ASSERT_TRUE(booking.AddItem(other));
  EXPECT_TRUE(booking.ClearItems());
  EXPECT_EQ(booking.ItemCount(), 0);
  test::ExpectNoError(booking);
}

TEST(TransActItems, GetTheBookingsLogFile) {
  test::TestLog log;
  clsZelTransAct booking;
  const auto before = test::CashItem("a", 1);
  ASSERT_TRUE(booking.AddItem(before));
  booking.LogHandler(log.Handler());
  EXPECT_EQ(booking.LogHandler(), log.Handler());
  const auto after = test::CashItem("b", 1);
  ASSERT_TRUE(booking.AddItem(after));
  EXPECT_EQ(before->LogHandler(), nullptr);
  EXPECT_EQ(after->LogHandler(), log.Handler());
}

TEST(TransActItems, FactoryMakesTheItemsThatAreRead) {
  clsZelTransAct booking;
  int made = 0;
  booking.ItemFactory(std::make_shared<test::FakeFactory>([&made] {
    ++made;
    return std::make_shared<test::FakeItem>();
  }));
  EXPECT_TRUE(HandIn(booking, ZELSerialType::ItemList, "A0 01 31 A2 01 78"));
  EXPECT_EQ(made, 1);
  ASSERT_EQ(booking.ItemCount(), 1);
  EXPECT_NE(dynamic_cast<test::FakeItem*>(booking.ItemI(1).get()), nullptr);
  booking.ItemFactory(nullptr);
  EXPECT_TRUE(HandIn(booking, ZELSerialType::ItemList, "A0 01 31 A2 01 78"));
  EXPECT_NE(dynamic_cast<clsZelItemCash*>(booking.ItemI(1).get()), nullptr);
}

// Containers

TEST(TransActContainers, NumbersOutsideOneToSixCountAsTheNearest) {
  clsZelTransAct booking;
  booking.VatList(std::make_shared<clsZelVatList>());
  booking.TransactionDate(Date::FromCivil(2024, 3, 15));
  booking.Operator("Anna");
  const auto item = std::make_shared<clsZelItemCash>();
  ASSERT_TRUE(
      item->SetItemData(1, "x", {}, 119, 107, 4, false, false, false, 110, Currency::FromScaled(1055000), 3));
  ASSERT_TRUE(booking.AddItem(item));
  (void)BuildRequest(booking);
  const ContainerValues first{119, 19, 19};
  const ContainerValues sixth{Currency::FromScaled(1055000), Currency::FromScaled(55000),
                              Currency::FromScaled(55000)};
  EXPECT_EQ(ValuesOf(booking, 1), first);
  EXPECT_EQ(ValuesOf(booking, 2), (ContainerValues{107, 7, 7}));
  EXPECT_EQ(ValuesOf(booking, 3), (ContainerValues{3, 0, 0}));
  EXPECT_EQ(ValuesOf(booking, 4), (ContainerValues{4, 0, 0}));
  EXPECT_EQ(ValuesOf(booking, 5), (ContainerValues{110, 10, 10}));
  EXPECT_EQ(ValuesOf(booking, 6), sixth);
  EXPECT_EQ(ValuesOf(booking, 0), first);
  EXPECT_EQ(ValuesOf(booking, -5), first);
  EXPECT_EQ(ValuesOf(booking, std::numeric_limits<std::int32_t>::min()), first);
  EXPECT_EQ(ValuesOf(booking, 7), sixth);
  EXPECT_EQ(ValuesOf(booking, 9), sixth);
  EXPECT_EQ(ValuesOf(booking, std::numeric_limits<std::int32_t>::max()), sixth);
}

// Clear

TEST(TransActClear, EmptiesItemsTextsAndContainersOnly) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.ZelProfile("handel");
  booking.CurrencyCode(756);
  booking.IsTaxExcl(true);
  booking.IsTraining(true);
  booking.IsDeliveryNote(true);
  booking.UseSHA256(false);
  const std::shared_ptr<clsZelVatList> vatList = booking.VatList();
  (void)BuildRequest(booking);
  ASSERT_TRUE(HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  ASSERT_NE(booking.ItemHash(), "");

  EXPECT_TRUE(booking.Clear());
  test::ExpectNoError(booking);
  EXPECT_EQ(booking.ItemCount(), 0);
  EXPECT_EQ(booking.Operator(), "");
  EXPECT_EQ(booking.ItemHash(), "");
  EXPECT_EQ(booking.ZelRqstData(), "");
  EXPECT_EQ(booking.ZelRespData(), "");
  EXPECT_EQ(booking.ZelRespSignature(), "");
  for (std::int32_t number = 1; number <= 6; ++number) {
    EXPECT_EQ(ValuesOf(booking, number), (ContainerValues{0, 0, 0})) << number;
  }
  EXPECT_EQ(booking.TransactionDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 25).Value());
  EXPECT_EQ(booking.CurrencyCode(), 756);
  EXPECT_TRUE(booking.IsTaxExcl());
  EXPECT_TRUE(booking.IsTraining());
  EXPECT_TRUE(booking.IsDeliveryNote());
  EXPECT_FALSE(booking.UseSHA256());
  EXPECT_EQ(booking.VatList(), vatList);
  EXPECT_EQ(booking.ZelProfile(), "handel");
  EXPECT_EQ(booking.ZelRespTpID(), "DE1");
  EXPECT_EQ(booking.ZelRespTpIDNr(), Currency(2));
  EXPECT_EQ(booking.ZelRespSeqNr(), Currency(300));
}

TEST(TransActClear, TheItemListTextIsGoneToo) {
  clsZelTransAct booking;
  FillSale(booking);
  (void)BuildRequest(booking);
  EXPECT_TRUE(booking.Clear());
  std::string document = "kept";
  EXPECT_FALSE(booking.XmlHandler(document, true));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "EncodeXML",
                    "Der XML-Buchungssatz konnte nicht erstellt werden:\r\n"
                    "Es liegen nicht genug Daten vor!\r\n"
                    "    Postenliste .....: 0 Zeichen\r\n"
                    "    ZEL-Anfrage .....: 0 Zeichen\r\n"
                    "    ZEL-Antwort .....: 0 Zeichen");
  EXPECT_EQ(document, "kept");
}

TEST(TransActClear, TheBookingCanBeUsedAgain) {
  clsZelTransAct booking;
  FillSale(booking);
  (void)BuildRequest(booking);
  EXPECT_TRUE(booking.Clear());
  FillSale(booking);
  EXPECT_EQ(test::ToHex(BuildRequest(booking)), test::SaleRequest());
}

// Text

class Engine : public clsZelItemPrint {
 public:
  using clsZelItemPrint::ToStringBI;
  std::string ToStringBI(std::shared_ptr<clsZelTransAct> BookItem, clsVnError* ErrObj) override {
    booking = BookItem.get();
    errorObject = ErrObj;
    if (fails) {
      ErrObj->SetError(9001, "kein Papier", true, "ToStringBI");
    }
    return "Beleg";
  }

  const clsZelTransAct* booking = nullptr;
  const clsVnError* errorObject = nullptr;
  bool fails = false;
};

TEST(TransActToString, AsksThePrintEngineThatIsSet) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  const auto engine = std::make_shared<Engine>();
  booking.PrintEngine(engine);
  EXPECT_EQ(booking.ToString(), "Beleg");
  EXPECT_EQ(engine->booking, &booking);
  EXPECT_EQ(engine->errorObject, &booking.ErrorObject());
  test::ExpectNoError(booking);
  EXPECT_EQ(log.Count(), 0U);

  engine->fails = true;
  EXPECT_EQ(booking.ToString(), "Beleg");
  test::ExpectError(booking.ErrorObject(), 9001, true, "ToStringBI", "kein Papier");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"ToStringBI"});
}

TEST(TransActToString, DefaultEngineStandsInForNone) {
  clsZelTransAct booking;
  FillSale(booking);
  const std::string text = booking.ToString();
  EXPECT_TRUE(text.starts_with("      Kassen-Belegausgabe (Basisversion)\r\n")) << text;
  booking.PrintEngine(std::make_shared<Engine>());
  EXPECT_EQ(booking.ToString(), "Beleg");
  booking.PrintEngine(nullptr);
  EXPECT_EQ(booking.ToString(), text);
}

}  // namespace
}  // namespace VnZEL10cmn
