#include <gtest/gtest.h>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "VnZEL10cmn/items/internal/CashItemAccess.h"
#include "tests/support/Error.h"

namespace {

using namespace VnZEL10cmn;

class ALockedItem : public testing::Test {
 protected:
  ALockedItem() {
    item_.SetItemData(2, "Brot", "kg", 3);
    CashItemAccess::Lock(item_);
  }

  clsZelItemCash item_;
};

TEST_F(ALockedItem, SaysSo) { EXPECT_FALSE(item_.CanEdit()); }

TEST_F(ALockedItem, IgnoresItsSettersWithoutAnError) {
  item_.Quantity(5);
  item_.Name("Brezel");
  item_.Unit("St");
  item_.DiscSurc(true);
  item_.Voucher(true);
  item_.ThirdParty(true);
  EXPECT_EQ(item_.Quantity(), Currency(2));
  EXPECT_EQ(item_.Name(), "Brot");
  EXPECT_EQ(item_.Unit(), "kg");
  EXPECT_FALSE(item_.DiscSurc());
  EXPECT_FALSE(item_.Voucher());
  EXPECT_FALSE(item_.ThirdParty());
  EXPECT_FALSE(item_.HasError());
}

TEST_F(ALockedItem, TakesPricesAllTheSame) {
  item_.Price(1, 7);
  item_.Price2(ZELVatClasses::Special2, 8);
  EXPECT_EQ(item_.Price(1), Currency(7));
  EXPECT_EQ(item_.Price(6), Currency(8));
}

TEST_F(ALockedItem, RefusesSetItemDataAndChangesNothing) {
  EXPECT_FALSE(item_.SetItemData(1, "Brezel", "St", 9));
  test::ExpectError(item_.ErrorObject(), 9001, true, "SetItemData",
                    "Das Schreiben der Daten ist nicht möglich!\r\n"
                    "Der Buchungsposten kann auf Grund vorangegangener\r\n"
                    "nicht mehr bearbeitet werden.");
  EXPECT_EQ(item_.Name(), "Brot");
  EXPECT_EQ(item_.Price(1), Currency(3));
}

TEST_F(ALockedItem, TellsOfTheMissingNameWhenThatIsWrongToo) {
  EXPECT_FALSE(item_.SetItemData(1, "  "));
  test::ExpectError(item_.ErrorObject(), 9001, true, "SetItemData",
                    "Fehlende Daten!\r\n"
                    "Für den Parameter \"Name\" muß mindestensein Zeichen eingeben werden!");
}

}  // namespace
