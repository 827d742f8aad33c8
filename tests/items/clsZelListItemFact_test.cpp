#include "VnZEL10cmn/items/clsZelListItemFact.h"

#include <gtest/gtest.h>

#include <memory>

#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "tests/support/Error.h"

namespace {

using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelListItemFact;

TEST(clsZelListItemFact, MakesANewEmptyCashItemEachTime) {
  clsZelListItemFact factory;
  const auto one = factory.CreateNewItem();
  const auto other = factory.CreateNewItem();
  const auto cash = std::dynamic_pointer_cast<clsZelItemCash>(one);
  ASSERT_NE(cash, nullptr);
  EXPECT_EQ(cash->Quantity(), VnZEL10cmn::Currency(1));
  EXPECT_EQ(cash->Name(), "");
  EXPECT_NE(one, other);
  EXPECT_NE(one->InstanceID(), other->InstanceID());
  test::ExpectNoError(factory);
}

TEST(clsZelListItemFact, TheErrorObjectGivenIsNotUsed) {
  clsZelListItemFact factory;
  clsVnError error;
  error.SetError(5, "bleibt", true, "Vorher", "Quelle", "Instanz");
  EXPECT_NE(factory.CreateNewItem(&error), nullptr);
  test::ExpectError(error, 5, true, "Vorher", "bleibt");
  EXPECT_EQ(error.ErrorSource(), "Quelle");
  EXPECT_EQ(error.ErrorInstanceID(), "Instanz");
}

TEST(clsZelListItemFact, HasTheFrameOfEveryClass) {
  clsZelListItemFact factory;
  EXPECT_EQ(factory.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelListItemFact");
  EXPECT_EQ(factory.ErrorObject().ErrorInstanceID().size(), 36U);
  EXPECT_FALSE(factory.HasError());
  EXPECT_EQ(factory.LogHandler(), nullptr);
}

}  // namespace
