// Objects that need an identity while the system has no random numbers to give.

#include <gtest/gtest.h>

#if defined(__linux__)

#include <sys/random.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <system_error>

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

using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;

TEST(WithoutRandomNumbers, AnIdentityThatIsAskedForIsRaised) {
  clsZelItemCash item;
  {
    const Exhausted exhausted;
    EXPECT_THROW(item.InstanceID(), std::system_error);
    EXPECT_THROW(clsHelper01().CreateGUID(), std::system_error);
  }
  EXPECT_EQ(item.InstanceID().size(), 36U);
}

TEST(WithoutRandomNumbers, AFailureThatWouldNameTheIdentityIsAFault) {
  clsZelItemList list;
  const auto item = std::make_shared<clsZelItemCash>();
  ASSERT_TRUE(list.AddItem(item));
  EXPECT_FALSE(list.ErrorObject().HasError());
  {
    const Exhausted exhausted;
    EXPECT_FALSE(list.AddItem(item));
    test::ExpectFault(list.ErrorObject(), 5, "AddItem");
  }
  EXPECT_EQ(list.ItemCount(), 1);
  EXPECT_FALSE(list.AddItem(item));
  EXPECT_EQ(list.ErrorObject().ErrorNr(), 9306);
}

// The error object needs an identity of its own: the failure shows in it when it can be made.
TEST(WithoutRandomNumbers, AFailureShowsWithoutAnErrorObject) {
  clsHelper01 helper;
  {
    const Exhausted exhausted;
    VnZEL10cmn::ByteArray bytes;
    EXPECT_FALSE(helper.FromBase64String("A", bytes));
    EXPECT_TRUE(helper.HasError());
    EXPECT_THROW(helper.ErrorObject(), std::system_error);
  }
  EXPECT_TRUE(helper.HasError());
  EXPECT_TRUE(helper.ErrorObject().HasError());
}

}  // namespace

#endif
