#include "VnZEL10cmn/items/clsZelItemCash.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/render/clsZelItemPrint.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemPrint;
using VnZEL10cmn::Currency;
using VnZEL10cmn::CurrencyArray;
using VnZEL10cmn::IVnZelItem;
using VnZEL10cmn::ZELVatClasses;

constexpr std::string_view missingName =
    "Fehlende Daten!\r\nFür den Parameter \"Name\" muß mindestensein Zeichen eingeben werden!";

Currency Cents(std::int64_t cents) { return Currency::FromScaled(cents * 100); }

void ExpectInitialFields(clsZelItemCash& item) {
  EXPECT_EQ(item.Quantity(), Currency(1));
  EXPECT_EQ(item.Unit(), "");
  EXPECT_EQ(item.Name(), "");
  EXPECT_FALSE(item.DiscSurc());
  EXPECT_FALSE(item.Voucher());
  EXPECT_FALSE(item.ThirdParty());
  for (std::int32_t i = 1; i <= 6; ++i) {
    EXPECT_EQ(item.Price(i), Currency(0)) << i;
  }
}

void Fill(clsZelItemCash& item) {
  item.Quantity(3);
  item.Unit("kg");
  item.Name("Mehl");
  item.DiscSurc(true);
  item.Voucher(true);
  item.ThirdParty(true);
  for (std::int32_t i = 1; i <= 6; ++i) {
    item.Price(i, Cents(100 + i));
  }
}

// An engine of the host that has nothing to say but its own text, and maybe a failure.
class OwnEngine : public clsZelItemPrint {
 public:
  using clsZelItemPrint::ToStringCI;
  std::string ToStringCI(std::shared_ptr<IVnZelItem> Item, clsVnError* ErrObj) override {
    seenId = Item->InstanceID();
    if (fail && ErrObj != nullptr) {
      ErrObj->SetError(4712, "Druck gestört", true, "ToStringCI");
    }
    return "eigene Zeile";
  }

  std::string seenId;
  bool fail = false;
};

TEST(clsZelItemCash, NewItemHasQuantityOneAndEverythingElseEmpty) {
  clsZelItemCash item;
  ExpectInitialFields(item);
  EXPECT_TRUE(item.CanEdit());
  EXPECT_EQ(item.LogHandler(), nullptr);
  EXPECT_FALSE(item.HasError());
}

TEST(clsZelItemCash, InstanceIdIsAnUpperCaseGuidThatAlsoMarksErrors) {
  clsZelItemCash item;
  const std::string id = item.InstanceID();
  ASSERT_EQ(id.size(), 36U);
  for (std::size_t i = 0; i < id.size(); ++i) {
    if (i == 8 || i == 13 || i == 18 || i == 23) {
      EXPECT_EQ(id[i], '-') << id;
    } else {
      EXPECT_NE(std::string_view("0123456789ABCDEF").find(id[i]), std::string_view::npos) << id;
    }
  }
  EXPECT_EQ(item.InstanceID(), id);
  EXPECT_EQ(item.ErrorObject().ErrorInstanceID(), id);
  EXPECT_EQ(item.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelItemCash");
  EXPECT_EQ(item.InstanceID(), id);
}

TEST(clsZelItemCash, ErrorObjectSeenFirstCarriesTheSameInstanceId) {
  clsZelItemCash item;
  const std::string id = item.ErrorObject().ErrorInstanceID();
  EXPECT_EQ(id.size(), 36U);
  EXPECT_EQ(item.InstanceID(), id);
}

TEST(clsZelItemCash, EveryItemHasAnInstanceIdOfItsOwn) {
  clsZelItemCash one;
  clsZelItemCash other;
  EXPECT_NE(one.InstanceID(), other.InstanceID());
}

TEST(clsZelItemCash, InterfaceAndClassShareErrorObjectAndLogHandler) {
  test::TestLog log;
  clsZelItemCash item;
  IVnZelItem& face = item;
  face.LogHandler(log.Handler());
  EXPECT_EQ(item.LogHandler(), log.Handler());
  EXPECT_EQ(&face.ErrorObject(), &item.ErrorObject());
  EXPECT_FALSE(item.SetItemData(1, ""));
  EXPECT_TRUE(face.HasError());
  face.LogHandler(nullptr);
  EXPECT_EQ(item.LogHandler(), nullptr);
}

TEST(clsZelItemCash, QuantityZeroIsStoredAsOne) {
  clsZelItemCash item;
  item.Quantity(5);
  EXPECT_EQ(item.Quantity(), Currency(5));
  item.Quantity(0);
  EXPECT_EQ(item.Quantity(), Currency(1));
}

TEST(clsZelItemCash, QuantityKeepsFourDecimalsAndTheSign) {
  clsZelItemCash item;
  item.Quantity(Currency::FromScaled(1));
  EXPECT_EQ(item.Quantity().Scaled(), 1);
  item.Quantity(Currency::FromScaled(-30000));
  EXPECT_EQ(item.Quantity().Scaled(), -30000);
}

TEST(clsZelItemCash, NameAndUnitAreStoredTrimmedOfBlanksOnly) {
  clsZelItemCash item;
  item.Name("  Käse am Stück ");
  item.Unit("   kg  ");
  EXPECT_EQ(item.Name(), "Käse am Stück");
  EXPECT_EQ(item.Unit(), "kg");
  item.Name(" \tTab\t ");
  EXPECT_EQ(item.Name(), "\tTab\t");
  item.Name("    ");
  EXPECT_EQ(item.Name(), "");
}

TEST(clsZelItemCash, FlagsAreStored) {
  clsZelItemCash item;
  item.DiscSurc(true);
  EXPECT_TRUE(item.DiscSurc());
  EXPECT_FALSE(item.Voucher());
  item.Voucher(true);
  EXPECT_TRUE(item.Voucher());
  EXPECT_FALSE(item.ThirdParty());
  item.ThirdParty(true);
  EXPECT_TRUE(item.ThirdParty());
  item.DiscSurc(false);
  item.Voucher(false);
  item.ThirdParty(false);
  EXPECT_FALSE(item.DiscSurc() || item.Voucher() || item.ThirdParty());
}

TEST(clsZelItemCash, PriceNumberAndVatClassNameTheSameSlot) {
  clsZelItemCash item;
  for (std::int32_t i = 1; i <= 6; ++i) {
    item.Price(i, Cents(i));
  }
  EXPECT_EQ(item.Price2(ZELVatClasses::Standard), Cents(1));
  EXPECT_EQ(item.Price2(ZELVatClasses::Reduced1), Cents(2));
  EXPECT_EQ(item.Price2(ZELVatClasses::Reduced2), Cents(3));
  EXPECT_EQ(item.Price2(ZELVatClasses::NoVat), Cents(4));
  EXPECT_EQ(item.Price2(ZELVatClasses::Special1), Cents(5));
  EXPECT_EQ(item.Price2(ZELVatClasses::Special2), Cents(6));
  item.Price2(ZELVatClasses::NoVat, Cents(-44));
  EXPECT_EQ(item.Price(4), Cents(-44));
  EXPECT_EQ(item.Price(3), Cents(3));
  EXPECT_EQ(item.Price(5), Cents(5));
}

TEST(clsZelItemCash, PriceOutsideOneToSixReadsZeroAndIsNotWritten) {
  clsZelItemCash item;
  Fill(item);
  for (const std::int32_t index : {0, 7, -1, 100, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(item.Price(index), Currency(0)) << index;
    item.Price(index, Cents(999));
    EXPECT_EQ(item.Price(index), Currency(0)) << index;
  }
  for (std::int32_t i = 1; i <= 6; ++i) {
    EXPECT_EQ(item.Price(i), Cents(100 + i));
  }
  EXPECT_FALSE(item.HasError());
}

TEST(clsZelItemCash, Price2OutsideTheClassesIsRaisedToTheCallerAndNotFiled) {
  clsZelItemCash item;
  Fill(item);
  for (const std::int32_t value : {6, -1, 100, INT32_MIN, INT32_MAX}) {
    const auto vatClass = static_cast<ZELVatClasses>(value);
    EXPECT_THROW(static_cast<void>(item.Price2(vatClass)), std::out_of_range) << value;
    EXPECT_THROW(item.Price2(vatClass, Cents(1)), std::out_of_range) << value;
  }
  EXPECT_FALSE(item.HasError());
  for (std::int32_t i = 1; i <= 6; ++i) {
    EXPECT_EQ(item.Price(i), Cents(100 + i));
  }
}

TEST(clsZelItemCash, SetItemDataTakesPrice4BeforeTheFlagsAndPrice3Last) {
  clsZelItemCash item;
  EXPECT_TRUE(item.SetItemData(2, "Name", "Unit", Cents(11), Cents(22), Cents(44), true, false, true,
                               Cents(55), Cents(66), Cents(33)));
  EXPECT_EQ(item.Quantity(), Currency(2));
  EXPECT_EQ(item.Name(), "Name");
  EXPECT_EQ(item.Unit(), "Unit");
  EXPECT_EQ(item.Price(1), Cents(11));
  EXPECT_EQ(item.Price(2), Cents(22));
  EXPECT_EQ(item.Price(3), Cents(33));
  EXPECT_EQ(item.Price(4), Cents(44));
  EXPECT_EQ(item.Price(5), Cents(55));
  EXPECT_EQ(item.Price(6), Cents(66));
  EXPECT_TRUE(item.DiscSurc());
  EXPECT_FALSE(item.Voucher());
  EXPECT_TRUE(item.ThirdParty());
  test::ExpectNoError(item);
}

TEST(clsZelItemCash, SetItemDataTakesTheVoucherFlagInTheMiddle) {
  clsZelItemCash item;
  EXPECT_TRUE(item.SetItemData(1, "Gutschein", "", 0, 0, 0, false, true, false));
  EXPECT_FALSE(item.DiscSurc());
  EXPECT_TRUE(item.Voucher());
  EXPECT_FALSE(item.ThirdParty());
}

TEST(clsZelItemCash, SetItemDataDefaultsResetWhatIsNotGiven) {
  clsZelItemCash item;
  Fill(item);
  EXPECT_TRUE(item.SetItemData(7, "Neu"));
  EXPECT_EQ(item.Quantity(), Currency(7));
  EXPECT_EQ(item.Name(), "Neu");
  EXPECT_EQ(item.Unit(), "");
  EXPECT_FALSE(item.DiscSurc());
  EXPECT_FALSE(item.Voucher());
  EXPECT_FALSE(item.ThirdParty());
  for (std::int32_t i = 1; i <= 6; ++i) {
    EXPECT_EQ(item.Price(i), Currency(0)) << i;
  }
}

TEST(clsZelItemCash, SetItemDataTrimsAndTakesQuantityZeroAsOne) {
  clsZelItemCash item;
  EXPECT_TRUE(item.SetItemData(0, "  Wurst ", "  Stk "));
  EXPECT_EQ(item.Quantity(), Currency(1));
  EXPECT_EQ(item.Name(), "Wurst");
  EXPECT_EQ(item.Unit(), "Stk");
}

TEST(clsZelItemCash, SetItemDataWithBlankNameFailsAndChangesNothing) {
  test::TestLog log;
  clsZelItemCash item;
  Fill(item);
  item.LogHandler(log.Handler());
  EXPECT_FALSE(item.SetItemData(1, "   ", "x", Cents(1), Cents(1), Cents(1), false, false, false, Cents(1),
                                Cents(1), Cents(1)));
  test::ExpectError(item.ErrorObject(), 9001, true, "SetItemData", missingName);
  EXPECT_EQ(item.Quantity(), Currency(3));
  EXPECT_EQ(item.Unit(), "kg");
  EXPECT_EQ(item.Name(), "Mehl");
  EXPECT_TRUE(item.DiscSurc() && item.Voucher() && item.ThirdParty());
  for (std::int32_t i = 1; i <= 6; ++i) {
    EXPECT_EQ(item.Price(i), Cents(100 + i)) << i;
  }
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"SetItemData"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"9001"});
  EXPECT_NE(log.Text().find("F\xFCr den Parameter \"Name\" mu\xDF mindestensein Zeichen"), std::string::npos);
}

TEST(clsZelItemCash, SetItemDataWithEmptyNameFails) {
  clsZelItemCash item;
  EXPECT_FALSE(item.SetItemData(1, ""));
  test::ExpectError(item.ErrorObject(), 9001, true, "SetItemData", missingName);
  ExpectInitialFields(item);
}

TEST(clsZelItemCash, SetItemDataClearsAnOldError) {
  clsZelItemCash item;
  EXPECT_FALSE(item.SetItemData(1, ""));
  EXPECT_TRUE(item.SetItemData(1, "x"));
  test::ExpectNoError(item);
}

TEST(clsZelItemCash, SetItemDataTakesTheItemsOwnTexts) {
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(1, "Bezeichnung des Postens", "Einheit der Menge"));
  EXPECT_TRUE(item.SetItemData(1, item.Unit(), item.Name()));
  EXPECT_EQ(item.Name(), "Einheit der Menge");
  EXPECT_EQ(item.Unit(), "Bezeichnung des Postens");
}

TEST(clsZelItemCash, PropertiesDoNotClearAnError) {
  clsZelItemCash item;
  EXPECT_FALSE(item.SetItemData(1, ""));
  item.Quantity(2);
  item.Name("x");
  item.Price(1, 1);
  static_cast<void>(item.Price(7));
  static_cast<void>(item.InstanceID());
  EXPECT_TRUE(item.HasError());
  EXPECT_TRUE(item.HasError());
  test::ExpectError(item.ErrorObject(), 9001, true, "SetItemData", missingName);
}

TEST(clsZelItemCash, ClearResetsTheFieldsAndKeepsIdentityLogAndEngine) {
  test::TestLog log;
  const auto engine = std::make_shared<OwnEngine>();
  clsZelItemCash item;
  const std::string id = item.InstanceID();
  Fill(item);
  item.LogHandler(log.Handler());
  item.PrintEngine(engine);
  EXPECT_TRUE(item.Clear());
  ExpectInitialFields(item);
  EXPECT_EQ(item.InstanceID(), id);
  EXPECT_EQ(item.LogHandler(), log.Handler());
  EXPECT_TRUE(item.CanEdit());
  EXPECT_EQ(item.ToString(), "eigene Zeile");
  EXPECT_EQ(log.Count(), 0U);
}

TEST(clsZelItemCash, ClearThroughTheInterfaceIsTheSame) {
  clsZelItemCash item;
  Fill(item);
  EXPECT_FALSE(item.SetItemData(1, ""));
  IVnZelItem& face = item;
  EXPECT_TRUE(face.Clear());
  ExpectInitialFields(item);
  test::ExpectNoError(item);
}

TEST(clsZelItemCash, GetPricesFillsAllSixAndTheThirdPartyFlag) {
  clsZelItemCash item;
  Fill(item);
  CurrencyArray prices = CurrencyArray::WithBounds(0, 5);
  bool thirdParty = false;
  EXPECT_TRUE(item.GetPrices(prices, thirdParty));
  EXPECT_EQ(prices, (CurrencyArray{Cents(101), Cents(102), Cents(103), Cents(104), Cents(105), Cents(106)}));
  EXPECT_TRUE(thirdParty);
  test::ExpectNoError(item);
  item.ThirdParty(false);
  EXPECT_TRUE(item.GetPrices(prices, thirdParty));
  EXPECT_FALSE(thirdParty);
}

TEST(clsZelItemCash, GetPricesWithBoundsOneToSixFailsButTellsThirdParty) {
  test::TestLog log;
  clsZelItemCash item;
  Fill(item);
  item.LogHandler(log.Handler());
  CurrencyArray prices = CurrencyArray::WithBounds(1, 6);
  bool thirdParty = false;
  EXPECT_FALSE(item.GetPrices(prices, thirdParty));
  test::ExpectError(item.ErrorObject(), 9001, true, "IVnZelItem.GetPrices",
                    "Die Feldgrenzen des Preisfeldes sind ungültig!\r\n"
                    "    Untergrenze .....: 1\r\n"
                    "    Obergrenze ......: 6");
  EXPECT_TRUE(thirdParty);
  EXPECT_EQ(prices, CurrencyArray::WithBounds(1, 6));
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"IVnZelItem.GetPrices"});
}

TEST(clsZelItemCash, GetPricesWithOtherUpperBoundsFails) {
  clsZelItemCash item;
  bool thirdParty = true;
  for (const std::int32_t upper : {-1, 4, 6}) {
    CurrencyArray prices = CurrencyArray::WithBounds(0, upper);
    thirdParty = true;
    EXPECT_FALSE(item.GetPrices(prices, thirdParty));
    test::ExpectError(item.ErrorObject(), 9001, true, "IVnZelItem.GetPrices",
                      "Die Feldgrenzen des Preisfeldes sind ungültig!\r\n"
                      "    Untergrenze .....: 0\r\n"
                      "    Obergrenze ......: " +
                          std::to_string(upper));
    EXPECT_FALSE(thirdParty);
    EXPECT_EQ(prices, CurrencyArray::WithBounds(0, upper));
  }
}

TEST(clsZelItemCash, GetPricesWithANegativeLowerBoundFails) {
  clsZelItemCash item;
  CurrencyArray prices = CurrencyArray::WithBounds(-1, 5);
  bool thirdParty = true;
  EXPECT_FALSE(item.GetPrices(prices, thirdParty));
  test::ExpectError(item.ErrorObject(), 9001, true, "IVnZelItem.GetPrices",
                    "Die Feldgrenzen des Preisfeldes sind ungültig!\r\n"
                    "    Untergrenze .....: -1\r\n"
                    "    Obergrenze ......: 5");
}

TEST(clsZelItemCash, ToStringUsesTheDefaultEngine) {
  clsZelItemCash item;
  EXPECT_TRUE(item.SetItemData(2, "Kaffee", "Tasse", Cents(560)));
  EXPECT_EQ(item.ToString(), "  2,0 Tasse    Kaffee                        5,60 EUR (A)");
  test::ExpectNoError(item);
}

TEST(clsZelItemCash, ToStringUsesTheHostsEngine) {
  const auto engine = std::make_shared<OwnEngine>();
  clsZelItemCash item;
  item.PrintEngine(engine);
  EXPECT_EQ(item.ToString(), "eigene Zeile");
  EXPECT_EQ(engine->seenId, item.InstanceID());
  EXPECT_EQ(static_cast<IVnZelItem&>(item).ToString(), "eigene Zeile");
  test::ExpectNoError(item);
}

TEST(clsZelItemCash, ToStringWithoutAnEngineMakesTheDefaultOne) {
  clsZelItemCash item;
  EXPECT_TRUE(item.SetItemData(1, "x"));
  item.PrintEngine(std::make_shared<OwnEngine>());
  item.PrintEngine(nullptr);
  EXPECT_EQ(item.ToString(), "  1,0          x                        ");
}

TEST(clsZelItemCash, ToStringLogsWhatTheEngineReportsAndStillReturnsTheText) {
  test::TestLog log;
  const auto engine = std::make_shared<OwnEngine>();
  engine->fail = true;
  clsZelItemCash item;
  item.PrintEngine(engine);
  item.LogHandler(log.Handler());
  EXPECT_EQ(item.ToString(), "eigene Zeile");
  test::ExpectError(item.ErrorObject(), 4712, true, "ToStringCI", "Druck gestört");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"ToStringCI"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"4712"});
  engine->fail = false;
  EXPECT_EQ(item.ToString(), "eigene Zeile");
  test::ExpectNoError(item);
  EXPECT_EQ(log.Count(), 1U);
}

TEST(clsZelItemCash, LogEntryOfAFailureNamesTheItem) {
  test::TestLog log;
  clsZelItemCash item;
  item.LogHandler(log.Handler());
  EXPECT_FALSE(item.SetItemData(1, ""));
  ASSERT_EQ(log.Count(), 1U);
  const std::string blanks(25, ' ');
  const std::string entry = log.Entries()[0];
  const std::string expected =
      "FEHLER:\r\n" + blanks + "-------\r\n" + blanks + "Nummer .............: 9001 - Hex: 0000 2329\r\n" +
      blanks + "Benutzerdef. .......: Ja\r\n" + blanks +
      "Quelle .............: VnZEL10cmn.clsZelItemCash\r\n" + blanks +
      "Funktion ...........: SetItemData\r\n" + blanks + "Instanz ............: " + item.InstanceID() +
      "\r\n" + blanks + "Meldung ............: Fehlende Daten!\r\n" + std::string(47, ' ') +
      "F\xFCr den Parameter \"Name\" mu\xDF mindestensein Zeichen eingeben werden!";
  ASSERT_GT(entry.size(), expected.size());
  EXPECT_EQ(entry.substr(entry.size() - expected.size()), expected);
  // "dd.mm.yyyy hh:mm:ss  ->  "
  EXPECT_EQ(entry.size() - expected.size(), 25U);
}

}  // namespace
