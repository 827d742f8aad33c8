// The order in which a booking adds the prices of its items, seen where a sum is beyond the range of currency.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

#include "tests/hosts/Support.h"

namespace {

using test::ByteArray;
using test::clsZelTransAct;
using test::Currency;
using test::Scripted;
using test::ZELSerialType;

constexpr std::int64_t kLarge = 900'000'000'000'000;

std::shared_ptr<test::ScriptedItem> Priced(std::string id, std::array<Currency, 6> prices, bool thirdParty) {
  auto item = Scripted(std::move(id));
  item->prices = prices;
  item->thirdParty = thirdParty;
  return item;
}

Currency TurnoverOf(clsZelTransAct& booking, std::int32_t number) {
  Currency turnover;
  Currency vat;
  Currency rate;
  EXPECT_TRUE(booking.GetContainerValues(number, turnover, vat, rate));
  return turnover;
}

void ExpectOverflow(clsZelTransAct& booking) {
  ByteArray request;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
  test::ExpectRunTimeError(booking.ErrorObject(), 6, "BinaryDataGet");
}

TEST(AddingUp, TakesTheThirdPartyTurnoverBeforeTheTurnover) {
  clsZelTransAct booking;
  test::Prepare(booking);
  ASSERT_TRUE(booking.AddItem(Priced("A", {0, kLarge}, true)));
  ASSERT_TRUE(booking.AddItem(Priced("B", {0, -kLarge}, false)));
  ASSERT_TRUE(booking.AddItem(Priced("C", {5, kLarge, 7}, true)));
  ExpectOverflow(booking);
  EXPECT_EQ(TurnoverOf(booking, 1), Currency(5)) << "the class before was done";
  EXPECT_EQ(TurnoverOf(booking, 2), Currency(0)) << "the third-party turnover stopped it first";
  EXPECT_EQ(TurnoverOf(booking, 3), Currency(0)) << "the class behind was not reached";
}

TEST(AddingUp, TakesANegativeThirdPartyPriceBeforeTheTurnoverToo) {
  clsZelTransAct booking;
  test::Prepare(booking);
  ASSERT_TRUE(booking.AddItem(Priced("A", {-kLarge}, true)));
  ASSERT_TRUE(booking.AddItem(Priced("B", {kLarge}, false)));
  ASSERT_TRUE(booking.AddItem(Priced("C", {-kLarge}, true)));
  ExpectOverflow(booking);
  EXPECT_EQ(TurnoverOf(booking, 1), Currency(0));
}

TEST(AddingUp, OfAPriceWithoutAnOppositeLeavesTheTurnover) {
  clsZelTransAct booking;
  test::Prepare(booking);
  const Currency least = Currency::FromScaled(std::numeric_limits<std::int64_t>::min());
  ASSERT_TRUE(booking.AddItem(Priced("A", {3}, false)));
  ASSERT_TRUE(booking.AddItem(Priced("B", {least}, false)));
  ExpectOverflow(booking);
  EXPECT_EQ(TurnoverOf(booking, 1), Currency(3));
}

TEST(AddingUp, BeyondTheRangeOfTheTurnoverKeepsWhatWasThere) {
  clsZelTransAct booking;
  test::Prepare(booking);
  ASSERT_TRUE(booking.AddItem(Priced("A", {kLarge, 1}, false)));
  ASSERT_TRUE(booking.AddItem(Priced("B", {kLarge, 1}, false)));
  ExpectOverflow(booking);
  EXPECT_EQ(TurnoverOf(booking, 1), Currency(kLarge));
  EXPECT_EQ(TurnoverOf(booking, 2), Currency(1));
}

TEST(AddingUp, WithinTheRangeGivesBothTurnovers) {
  clsZelTransAct booking;
  test::Prepare(booking);
  ASSERT_TRUE(booking.AddItem(Priced("A", {100, -3}, true)));
  ASSERT_TRUE(booking.AddItem(Priced("B", {19}, false)));
  const ByteArray request = test::BuildRequest(booking);
  EXPECT_EQ(TurnoverOf(booking, 1), Currency(119));
  EXPECT_EQ(TurnoverOf(booking, 2), Currency(-3));
  // Turnover 119, VAT 19, rate 19 %, third-party turnover 100; turnover -3, all of it negative, VAT -0.20.
  const std::string records = test::ToHex(request);
  EXPECT_NE(records.find("E1 13 D8 03 11 90 0C DA 03 01 90 0C DB 02 19 00 D6 03 10 00 0C"), std::string::npos)
      << records;
  EXPECT_NE(records.find("E2 14 D8 02 30 0D D9 02 30 0C DA 02 02 0D DB 02 07 00 D6 02 30 0D"),
            std::string::npos)
      << records;
}

}  // namespace
