// A system that has no random numbers to give: objects go without an identity of their own.

#include <gtest/gtest.h>

#if defined(__linux__)

#include <sys/random.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>

#include "tests/hosts/Support.h"

namespace {

thread_local bool isExhausted = false;

/// The system has no random numbers until the end of the scope.
class Exhausted {
 public:
  Exhausted() { isExhausted = true; }
  ~Exhausted() { isExhausted = false; }
  Exhausted(const Exhausted&) = delete;
  Exhausted& operator=(const Exhausted&) = delete;
};

}  // namespace

// In place of the system's, for the whole program.
extern "C" int getentropy(void* buffer, std::size_t length) {
  if (isExhausted) {
    errno = ENOSYS;
    return -1;
  }
  return getrandom(buffer, length, 0) == static_cast<ssize_t>(length) ? 0 : -1;
}

namespace {

using test::clsZelItemCash;
using test::clsZelItemList;
using test::clsZelTransAct;
using test::ZELSerialType;
using VnZEL10cmn::clsHelper01;

TEST(WithoutRandomness, AGuidIsAnEmptyText) {
  clsHelper01 helper;
  {
    const Exhausted exhausted;
    EXPECT_EQ(helper.CreateGUID(), "");
    EXPECT_FALSE(helper.HasError());
  }
  EXPECT_EQ(helper.CreateGUID().size(), 36U);
}

TEST(WithoutRandomness, AnErrorObjectHasNoInstanceId) {
  const Exhausted exhausted;
  clsHelper01 helper;
  EXPECT_EQ(helper.ErrorObject().ErrorInstanceID(), "");
  EXPECT_EQ(helper.ErrorObject().ErrorSource(), "VnZEL10cmn.clsHelper01");
  clsZelTransAct booking;
  EXPECT_EQ(booking.ErrorObject().ErrorInstanceID(), "");
}

TEST(WithoutRandomness, AFailureIsFiledAsEver) {
  const Exhausted exhausted;
  clsHelper01 helper;
  VnZEL10cmn::ByteArray bytes;
  EXPECT_FALSE(helper.FromBase64String("A", bytes));
  EXPECT_TRUE(helper.HasError());
  test::ExpectError(helper.ErrorObject(), 9104, true, "FromBase64String",
                    "Die Länge der Base64-Zeichenfolge ist ungültig!");
}

TEST(WithoutRandomness, AFailureIsLoggedAsEver) {
  test::TestLog log;
  const Exhausted exhausted;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  EXPECT_FALSE(booking.BinaryDataSet(ZELSerialType::ItemHash, test::FromHex("00"), 0));
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"9303"});
}

TEST(WithoutRandomness, AnItemKeepsTheEmptyInstanceIdThatItGaveOut) {
  clsZelItemCash item;
  {
    const Exhausted exhausted;
    EXPECT_EQ(item.InstanceID(), "");
  }
  EXPECT_EQ(item.InstanceID(), "");
  EXPECT_EQ(clsZelItemCash().InstanceID().size(), 36U);
}

TEST(WithoutRandomness, AKnownItemIsRefusedAsEver) {
  clsZelItemList list;
  const auto item = std::make_shared<clsZelItemCash>();
  ASSERT_TRUE(list.AddItem(item));
  const Exhausted exhausted;
  EXPECT_FALSE(list.AddItem(item));
  test::ExpectError(list.ErrorObject(), 9306, true, "AddItem",
                    "Ein Buchungsposten konnte nicht übernommen werden\r\n    Instanz-ID ..........:");
  EXPECT_EQ(list.ItemCount(), 1);
}

TEST(WithoutRandomness, AnItemIsRemovedByItself) {
  clsZelItemList list;
  std::vector<std::shared_ptr<clsZelItemCash>> items;
  for (int i = 0; i < 5; ++i) {
    items.push_back(std::make_shared<clsZelItemCash>());
    ASSERT_TRUE(list.AddItem(items.back()));
  }
  {
    const Exhausted exhausted;
    EXPECT_TRUE(list.RemoveItem(items[2]));
    EXPECT_TRUE(list.RemoveItem(items[2]));
    test::ExpectNoError(list);
  }
  EXPECT_EQ(test::ItemsOf(list),
            (std::vector<std::shared_ptr<VnZEL10cmn::IVnZelItem>>{items[0], items[1], items[3], items[4]}));
}

TEST(WithoutRandomness, ABookingIsMadeAndRead) {
  const Exhausted exhausted;
  clsZelTransAct booking;
  test::FillSale(booking);
  EXPECT_EQ(test::ToHex(test::BuildRequest(booking)), test::SaleRequest());
  EXPECT_TRUE(test::HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  std::string document;
  EXPECT_TRUE(booking.XmlHandler(document, true));
  clsZelTransAct imported;
  EXPECT_TRUE(imported.XmlHandler(document, false)) << imported.ErrorObject().ErrorMsg();
  EXPECT_EQ(imported.ItemCount(), 1);
  EXPECT_NE(imported.ToString(), "");
}

}  // namespace

#endif
