#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>

#include "VnZEL10cmn/types/ByteArray.h"
#include "VnZEL10cmn/types/Currency.h"
#include "tests/support/Hex.h"

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::Currency;

TEST(Amount, AddsAndSubtractsItself) {
  Currency amount = Currency::FromScaled(12345);
  const Currency& same = amount;
  amount += same;
  EXPECT_EQ(amount.Scaled(), 24690);
  amount -= same;
  EXPECT_EQ(amount.Scaled(), 0);
  amount = Currency::FromScaled(std::numeric_limits<std::int64_t>::max());
  EXPECT_THROW(amount += same, std::overflow_error);
  EXPECT_EQ(amount.Scaled(), std::numeric_limits<std::int64_t>::max());
}

TEST(Array, BecomesAPartOfItself) {
  ByteArray bytes = test::FromHex("01 02 03 04");
  bytes = ByteArray(std::span<const std::uint8_t>(bytes.data() + 1, 2));
  EXPECT_EQ(bytes, test::FromHex("02 03"));
  const ByteArray& same = bytes;
  bytes = same;
  EXPECT_EQ(bytes, test::FromHex("02 03"));
  bytes = test::FromHexAt(3, "01 02 03");
  bytes.Redim(bytes.LBound(), bytes.UBound());
  EXPECT_EQ(bytes, test::FromHexAt(3, "00 00 00"));
}

}  // namespace
