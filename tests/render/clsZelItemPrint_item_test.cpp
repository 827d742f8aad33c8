#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/render/clsZelItemPrint.h"
#include "tests/items/HostItem.h"
#include "tests/items/HostLocale.h"
#include "tests/support/Error.h"

namespace {

using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemPrint;
using VnZEL10cmn::Currency;
using VnZEL10cmn::IVnZelItem;

// Columns 1 to 40 of the line of an item: quantity, unit, name "x".
std::string Head(std::int64_t scaledQuantity, std::string_view unit = {}) {
  clsZelItemCash item;
  item.Quantity(Currency::FromScaled(scaledQuantity));
  item.Unit(unit);
  item.Name("x");
  return item.ToString();
}

// What follows column 40 for one price in slot 1.
std::string PriceText(std::int64_t scaled) {
  clsZelItemCash item;
  item.Name("x");
  item.Price(1, Currency::FromScaled(scaled));
  const std::string text = item.ToString();
  EXPECT_EQ(text.substr(0, 40), "  1,0          x                        ");
  return text.size() < 40 ? text : text.substr(40);
}

TEST(clsZelItemPrintItem, ColumnsOfAnItemWithUnit) {
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(Currency::FromScaled(25000), "Äpfel", "kg", Currency::FromScaled(49900)));
  EXPECT_EQ(item.ToString(), "  2,5 kg       Äpfel                         4,99 EUR (A)");
}

TEST(clsZelItemPrintItem, NineBlanksStandForAMissingUnit) {
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(1, "Brot", "", Currency::FromScaled(49900)));
  EXPECT_EQ(item.ToString(), "  1,0          Brot                          4,99 EUR (A)");
}

TEST(clsZelItemPrintItem, PricesInSlotsOneAndThreeGiveTwoLines) {
  clsZelItemCash item;
  item.Name("Menü");
  item.Price(1, Currency::FromScaled(120000));
  item.Price(3, Currency::FromScaled(35000));
  EXPECT_EQ(item.ToString(),
            "  1,0          Menü                         12,00 EUR (A)\r\n"
            "                                             3,50 EUR (C)");
}

TEST(clsZelItemPrintItem, EverySlotHasItsLetter) {
  clsZelItemCash item;
  item.Name("x");
  for (std::int32_t i = 1; i <= 6; ++i) {
    item.Price(i, Currency(i));
  }
  EXPECT_EQ(item.ToString(),
            "  1,0          x                             1,00 EUR (A)\r\n"
            "                                             2,00 EUR (B)\r\n"
            "                                             3,00 EUR (C)\r\n"
            "                                             4,00 EUR (D)\r\n"
            "                                             5,00 EUR (E)\r\n"
            "                                             6,00 EUR (F)");
}

TEST(clsZelItemPrintItem, TheFirstPriceFollowsTheNameWhateverItsSlot) {
  clsZelItemCash item;
  item.Name("x");
  item.Price(6, Currency(6));
  EXPECT_EQ(item.ToString(), "  1,0          x                             6,00 EUR (F)");
}

TEST(clsZelItemPrintItem, WithoutAPriceTheLineEndsWithTheNameColumn) {
  EXPECT_EQ(Head(10000), "  1,0          x                        ");
}

TEST(clsZelItemPrintItem, QuantitiesHaveOneDecimalInFiveColumns) {
  const std::string rest = "          x                        ";
  EXPECT_EQ(Head(20000), "  2,0" + rest);
  EXPECT_EQ(Head(-30000), " -3,0" + rest);
  EXPECT_EQ(Head(1230000), "123,0" + rest);
  EXPECT_EQ(Head(1250), "  0,1" + rest);  // 0.125
  EXPECT_EQ(Head(2500), "  0,3" + rest);  // 0.25, half away from zero
  EXPECT_EQ(Head(-2500), " -0,3" + rest);
  EXPECT_EQ(Head(500), "  0,1" + rest);      // 0.05
  EXPECT_EQ(Head(9999500), "000,0" + rest);  // 999.95, that is 1000,0
}

TEST(clsZelItemPrintItem, ALongerQuantityKeepsItsLastFiveCharacters) {
  const std::string rest = "          x                        ";
  EXPECT_EQ(Head(12340000), "234,0" + rest);      // 1234,0
  EXPECT_EQ(Head(-1230000), "123,0" + rest);      // -123,0
  EXPECT_EQ(Head(123456000000), "600,0" + rest);  // 12345600,0: no grouping
}

TEST(clsZelItemPrintItem, UnitIsCutOrFilledToEightColumns) {
  const std::string name = " x                        ";
  EXPECT_EQ(Head(10000, "l"), "  1,0 l       " + name);
  EXPECT_EQ(Head(10000, "Päckchen"), "  1,0 Päckchen" + name);
  EXPECT_EQ(Head(10000, "Päckchenweise"), "  1,0 Päckchen" + name);
}

TEST(clsZelItemPrintItem, NameIsCutOrFilledTo25Columns) {
  clsZelItemCash item;
  item.Name("Äääääääääääääääääääääääää");  // 25
  EXPECT_EQ(item.ToString(), "  1,0          Äääääääääääääääääääääääää");
  item.Name("Äääääääääääääääääääääääääüü");  // 27
  EXPECT_EQ(item.ToString(), "  1,0          Äääääääääääääääääääääääää");
  item.Name("ein Name mit Blanks an der");  // the cut leaves no blank away
  EXPECT_EQ(item.ToString(), "  1,0          ein Name mit Blanks an de");
}

TEST(clsZelItemPrintItem, PricesAreGroupedWithTwoDecimalsInNineColumns) {
  EXPECT_EQ(PriceText(100), "     0,01 EUR (A)");
  EXPECT_EQ(PriceText(-100), "    -0,01 EUR (A)");
  EXPECT_EQ(PriceText(9999900), "   999,99 EUR (A)");
  EXPECT_EQ(PriceText(10000000), " 1.000,00 EUR (A)");
  EXPECT_EQ(PriceText(-12345000), "-1.234,50 EUR (A)");
  EXPECT_EQ(PriceText(999999900), "99.999,99 EUR (A)");
  EXPECT_EQ(PriceText(50), "     0,01 EUR (A)");     // 0.005, half away from zero
  EXPECT_EQ(PriceText(19950), "     2,00 EUR (A)");  // 1.995
  EXPECT_EQ(PriceText(-19950), "    -2,00 EUR (A)");
}

TEST(clsZelItemPrintItem, APriceWiderThanItsColumnsIsShownWhole) {
  EXPECT_EQ(PriceText(-123450000), "-12.345,00 EUR (A)");
  EXPECT_EQ(PriceText(1234567800), "123.456,78 EUR (A)");
  EXPECT_EQ(PriceText(12345678900), "1.234.567,89 EUR (A)");
  EXPECT_EQ(PriceText(INT64_MAX), "922.337.203.685.477,58 EUR (A)");
  EXPECT_EQ(PriceText(INT64_MIN), "-922.337.203.685.477,58 EUR (A)");
}

TEST(clsZelItemPrintItem, APriceThatRoundsToNothingIsStillALine) {
  clsZelItemCash item;
  item.Name("x");
  item.Price(2, Currency::FromScaled(49));
  EXPECT_EQ(item.ToString(), "  1,0          x                             0,00 EUR (B)");
}

TEST(clsZelItemPrintItem, FlagsDoNotShow) {
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(1, "x", "", 1, 0, 0, true, true, true));
  EXPECT_EQ(item.ToString(), "  1,0          x                             1,00 EUR (A)");
}

TEST(clsZelItemPrintItem, CharactersOfNumbersAreTheHosts) {
  const test::HostLocale locale(test::swissLike);
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(Currency::FromScaled(25000), "x", "", Currency::FromScaled(12345000)));
  EXPECT_EQ(item.ToString(), "  2.5          x                         1'234.50 EUR (A)");
}

TEST(clsZelItemPrintItem, GroupsAreOfThreeWhateverTheHost) {
  const test::HostLocale locale(test::HostLocale::Characters{',', ' ', '.', ':'});
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(1, "x", "", Currency::FromScaled(12345678900)));
  EXPECT_EQ(item.ToString(), "  1,0          x                        1 234 567,89 EUR (A)");
}

TEST(clsZelItemPrintItem, TheEngineRendersItemsThatTheCallerKeepsOrShares) {
  clsZelItemPrint engine;
  const auto item = std::make_shared<clsZelItemCash>();
  ASSERT_TRUE(item->SetItemData(1, "x"));
  const std::string expected = "  1,0          x                        ";
  clsVnError error;
  EXPECT_EQ(engine.ToStringCI(item, &error), expected);
  EXPECT_EQ(engine.ToStringCI(*item, &error), expected);
  EXPECT_EQ(engine.ToStringCI(item), expected);
  EXPECT_FALSE(error.HasError());
}

TEST(clsZelItemPrintItem, AnotherItemClassFailsWithItsName) {
  clsZelItemPrint engine;
  const auto item = std::make_shared<HostItem>("a");
  clsVnError error;
  EXPECT_EQ(engine.ToStringCI(item, &error), "");
  test::ExpectError(error, 9001, true, "ToStringCI", "Der Typ \"HostItem\" wird nicht unterstützt");
  clsVnError other;
  EXPECT_EQ(engine.ToStringCI(*item, &other), "");
  test::ExpectError(other, 9001, true, "ToStringCI", "Der Typ \"HostItem\" wird nicht unterstützt");
}

namespace shop {
struct Bakery {};
}  // namespace shop

template <class Kind>
struct Shelf {
  class Item : public HostItem {
   public:
    using HostItem::HostItem;
  };
};

TEST(clsZelItemPrintItem, TheNameOfAnItemClassIsItsOwnAlone) {
  clsZelItemPrint engine;
  clsVnError error;
  EXPECT_EQ(engine.ToStringCI(std::make_shared<Shelf<shop::Bakery>::Item>("a"), &error), "");
  test::ExpectError(error, 9001, true, "ToStringCI", "Der Typ \"Item\" wird nicht unterstützt");

  class Loaf : public HostItem {
   public:
    using HostItem::HostItem;
  };
  EXPECT_EQ(engine.ToStringCI(std::make_shared<Loaf>("a"), &error), "");
  test::ExpectError(error, 9001, true, "ToStringCI", "Der Typ \"Loaf\" wird nicht unterstützt");
}

TEST(clsZelItemPrintItem, AFailureKeepsSourceAndInstanceOfTheErrorObject) {
  clsZelItemPrint engine;
  clsVnError error("VnZEL10cmn.Jemand", "ID");
  EXPECT_EQ(engine.ToStringCI(std::make_shared<HostItem>("a"), &error), "");
  EXPECT_EQ(error.ErrorSource(), "VnZEL10cmn.Jemand");
  EXPECT_EQ(error.ErrorInstanceID(), "ID");
}

TEST(clsZelItemPrintItem, WithoutAnErrorObjectAFailureIsAnEmptyText) {
  clsZelItemPrint engine;
  EXPECT_EQ(engine.ToStringCI(std::make_shared<HostItem>("a")), "");
}

TEST(clsZelItemPrintItem, NoItemIsAnEmptyTextAndAnError) {
  clsZelItemPrint engine;
  clsVnError error;
  EXPECT_EQ(engine.ToStringCI(std::shared_ptr<IVnZelItem>(), &error), "");
  EXPECT_TRUE(error.HasError());
  EXPECT_EQ(engine.ToStringCI(std::shared_ptr<IVnZelItem>()), "");
}

TEST(clsZelItemPrintItem, HasTheFrameOfEveryClass) {
  clsZelItemPrint engine;
  EXPECT_EQ(engine.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelItemPrint");
  EXPECT_EQ(engine.ErrorObject().ErrorInstanceID().size(), 36U);
  EXPECT_FALSE(engine.HasError());
}

}  // namespace
