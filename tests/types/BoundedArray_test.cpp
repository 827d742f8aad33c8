#include "VnZEL10cmn/types/BoundedArray.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>

#include "VnZEL10cmn/types/ByteArray.h"
#include "tests/support/Hex.h"

using test::FromHex;
using test::FromHexAt;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::Currency;
using VnZEL10cmn::CurrencyArray;

namespace {

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();

void ExpectBounds(const ByteArray& array, std::int32_t lower, std::int32_t upper, std::size_t size) {
  EXPECT_EQ(array.LBound(), lower);
  EXPECT_EQ(array.UBound(), upper);
  EXPECT_EQ(array.size(), size);
}

TEST(BoundedArray, IsEmptyAtFirst) {
  const ByteArray array;
  ExpectBounds(array, 0, -1, 0);
  EXPECT_EQ(array.begin(), array.end());
  EXPECT_THROW(array[0], std::out_of_range);
  EXPECT_THROW(array[-1], std::out_of_range);
}

TEST(BoundedArray, IsZeroBasedWhenMadeOfElements) {
  const ByteArray array{0x01, 0x02, 0xFF};
  ExpectBounds(array, 0, 2, 3);
  EXPECT_EQ(array[0], 0x01);
  EXPECT_EQ(array[2], 0xFF);
  EXPECT_THROW(array[3], std::out_of_range);
  EXPECT_THROW(array[-1], std::out_of_range);
}

TEST(BoundedArray, CopiesTheElementsOfASpan) {
  const std::uint8_t bytes[] = {7, 8};
  const ByteArray array{std::span<const std::uint8_t>(bytes)};
  ExpectBounds(array, 0, 1, 2);
  EXPECT_EQ(ToHex(array), "07 08");
}

TEST(BoundedArray, AddressesElementsByAbsoluteIndex) {
  ByteArray array = ByteArray::WithBounds(5, 7);
  ExpectBounds(array, 5, 7, 3);
  array[5] = 0x55;
  array[7] = 0x77;
  EXPECT_EQ(ToHex(array), "55 00 77");
  EXPECT_EQ(array.data()[0], 0x55);
  EXPECT_THROW(array[4], std::out_of_range);
  EXPECT_THROW(array[8], std::out_of_range);
  EXPECT_THROW(array[0], std::out_of_range);
}

TEST(BoundedArray, TakesNegativeLowerBounds) {
  ByteArray array = ByteArray::WithBounds(-2, 0);
  ExpectBounds(array, -2, 0, 3);
  array[-2] = 1;
  array[0] = 3;
  EXPECT_EQ(ToHex(array), "01 00 03");
  EXPECT_THROW(array[-3], std::out_of_range);
  EXPECT_THROW(array[1], std::out_of_range);
}

TEST(BoundedArray, WithoutElementsTheBoundsAreZeroAndMinusOne) {
  ExpectBounds(ByteArray::WithBounds(5, 4), 0, -1, 0);
  ExpectBounds(ByteArray::WithBounds(-3, -4), 0, -1, 0);
}

TEST(BoundedArray, BoundsThatCannotBeAreRefused) {
  EXPECT_THROW(ByteArray::WithBounds(5, 3), std::out_of_range);
  EXPECT_THROW(ByteArray::WithBounds(0, -2), std::out_of_range);
  EXPECT_THROW(ByteArray::WithBounds(0, largest), std::out_of_range);
  EXPECT_THROW(ByteArray::WithBounds(smallest, largest), std::out_of_range);
  EXPECT_THROW(ByteArray::WithBounds(largest, smallest), std::out_of_range);
}

TEST(BoundedArray, ReachesTheEndsOfTheIndexRange) {
  ByteArray high = ByteArray::WithBounds(largest - 1, largest);
  ExpectBounds(high, largest - 1, largest, 2);
  high[largest] = 9;
  EXPECT_EQ(ToHex(high), "00 09");
  EXPECT_THROW(high[smallest], std::out_of_range);
  ByteArray low = ByteArray::WithBounds(smallest, smallest + 1);
  ExpectBounds(low, smallest, smallest + 1, 2);
  low[smallest] = 8;
  EXPECT_EQ(ToHex(low), "08 00");
  EXPECT_THROW(low[largest], std::out_of_range);
}

TEST(BoundedArray, RedimGivesNewBoundsAndZeros) {
  ByteArray array = FromHex("01 02 03");
  array.Redim(1, 2);
  ExpectBounds(array, 1, 2, 2);
  EXPECT_EQ(ToHex(array), "00 00");
  array.Redim(3, 2);
  ExpectBounds(array, 0, -1, 0);
}

TEST(BoundedArray, RedimPreserveKeepsWhatStays) {
  ByteArray array = FromHexAt(4, "01 02 03");
  array.RedimPreserve(8);
  ExpectBounds(array, 4, 8, 5);
  EXPECT_EQ(ToHex(array), "01 02 03 00 00");
  array.RedimPreserve(5);
  ExpectBounds(array, 4, 5, 2);
  EXPECT_EQ(ToHex(array), "01 02");
  array.RedimPreserve(3);
  ExpectBounds(array, 0, -1, 0);
  array.RedimPreserve(0);
  ExpectBounds(array, 0, 0, 1);
}

TEST(BoundedArray, ARefusedRedimLeavesTheArray) {
  ByteArray array = FromHexAt(4, "01 02 03");
  EXPECT_THROW(array.Redim(4, 2), std::out_of_range);
  EXPECT_THROW(array.RedimPreserve(2), std::out_of_range);
  EXPECT_THROW(array.RedimPreserve(smallest), std::out_of_range);
  ExpectBounds(array, 4, 6, 3);
  EXPECT_EQ(ToHex(array), "01 02 03");
}

TEST(BoundedArray, EqualMeansSameBoundsAndSameElements) {
  EXPECT_EQ(FromHex("01 02"), FromHex("0102"));
  EXPECT_NE(FromHex("01 02"), FromHex("01 03"));
  EXPECT_NE(FromHex("01 02"), FromHexAt(1, "01 02"));
  EXPECT_EQ(ByteArray(), ByteArray::WithBounds(9, 8));
}

TEST(BoundedArray, HoldsCurrencies) {
  CurrencyArray prices = CurrencyArray::WithBounds(1, 6);
  prices[6] = Currency(3);
  EXPECT_EQ(prices[1].Scaled(), 0);
  EXPECT_EQ(prices[6].Scaled(), 30000);
  EXPECT_THROW(prices[0], std::out_of_range);
}

}  // namespace
