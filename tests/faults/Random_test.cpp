// Objects that need an identity while the system has no random numbers to give.

#include <gtest/gtest.h>

#if defined(__linux__)

#include <sys/random.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tests/support/Error.h"

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

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;

TEST(WithoutRandomNumbers, ANewIdentityIsEmpty) {
  const Exhausted exhausted;
  clsHelper01 helper;
  EXPECT_EQ(helper.CreateGUID(), "");
  EXPECT_FALSE(helper.HasError());
  EXPECT_EQ(clsZelItemCash().InstanceID(), "");
}

TEST(WithoutRandomNumbers, AnIdentityThatWasHandedOutStays) {
  clsZelItemCash item;
  clsHelper01 helper;
  const std::string itemId = item.InstanceID();
  const std::string helperId = helper.ErrorObject().ErrorInstanceID();
  ASSERT_EQ(itemId.size(), 36U);
  ASSERT_EQ(helperId.size(), 36U);
  const Exhausted exhausted;
  EXPECT_EQ(item.InstanceID(), itemId);
  EXPECT_EQ(item.ErrorObject().ErrorInstanceID(), itemId);
  EXPECT_EQ(helper.ErrorObject().ErrorInstanceID(), helperId);
}

TEST(WithoutRandomNumbers, AFailureIsFiledWithoutAnIdentity) {
  clsHelper01 helper;
  {
    const Exhausted exhausted;
    ByteArray bytes;
    EXPECT_FALSE(helper.FromBase64String("A", bytes));
    test::ExpectError(helper.ErrorObject(), 9104, true, "FromBase64String",
                      "Die Länge der Base64-Zeichenfolge ist ungültig!");
  }
  EXPECT_EQ(helper.ErrorObject().ErrorNr(), 9104);
  EXPECT_EQ(helper.ErrorObject().ErrorSource(), "VnZEL10cmn.clsHelper01");
  EXPECT_EQ(helper.ErrorObject().ErrorInstanceID(), "");
}

TEST(WithoutRandomNumbers, AnItemThatWasAskedStaysWithoutAnIdentity) {
  clsZelItemList list;
  const auto first = std::make_shared<clsZelItemCash>();
  const auto second = std::make_shared<clsZelItemCash>();
  ASSERT_TRUE(list.AddItem(first));
  ASSERT_TRUE(list.AddItem(second));
  {
    const Exhausted exhausted;
    EXPECT_EQ(list.ItemK("00112233-4455-6677-8899-AABBCCDDEEFF"), nullptr);
  }
  EXPECT_EQ(first->InstanceID(), "");
  EXPECT_EQ(second->InstanceID(), "");
  EXPECT_FALSE(list.AddItem(second));
  EXPECT_TRUE(list.RemoveItem(second));
  EXPECT_EQ(list.ItemCount(), 1);
  EXPECT_EQ(list.ItemI(1), first);
}

TEST(WithoutRandomNumbers, ItemsAreAddedAndRemovedByThemselves) {
  clsZelItemList list;
  const auto first = std::make_shared<clsZelItemCash>();
  const auto second = std::make_shared<clsZelItemCash>();
  const Exhausted exhausted;
  EXPECT_TRUE(list.AddItem(first));
  EXPECT_TRUE(list.AddItem(second));
  EXPECT_FALSE(list.AddItem(first));
  EXPECT_EQ(list.ErrorObject().ErrorNr(), 9306);
  EXPECT_EQ(list.ItemCount(), 2);
  EXPECT_EQ(list.ItemK(""), nullptr);
  EXPECT_TRUE(list.RemoveItem(first));
  EXPECT_EQ(list.ItemCount(), 1);
  EXPECT_EQ(list.ItemI(1), second);
}

}  // namespace

#endif
