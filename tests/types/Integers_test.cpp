#include "VnZEL10cmn/types/internal/Integers.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <limits>

#include "VnZEL10cmn/types/internal/Uint128.h"

using VnZEL10cmn::internal::Magnitude;
using VnZEL10cmn::internal::PortableUint128;
using VnZEL10cmn::internal::QuotientHalfToEven;

namespace {

constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();

TEST(Integers, MagnitudeIsTheNumberWithoutItsSign) {
  EXPECT_EQ(Magnitude(0), 0U);
  EXPECT_EQ(Magnitude(-1), 1U);
  EXPECT_EQ(Magnitude(std::numeric_limits<std::int64_t>::max()), 9223372036854775807U);
  EXPECT_EQ(Magnitude(std::numeric_limits<std::int64_t>::min()), 9223372036854775808U);
}

TEST(Integers, QuotientsAreRoundedHalfToEven) {
  EXPECT_EQ(QuotientHalfToEven<std::uint64_t>(0, 7), 0U);
  EXPECT_EQ(QuotientHalfToEven<std::uint64_t>(1, 2), 0U);
  EXPECT_EQ(QuotientHalfToEven<std::uint64_t>(3, 2), 2U);
  EXPECT_EQ(QuotientHalfToEven<std::uint64_t>(5, 2), 2U);
  EXPECT_EQ(QuotientHalfToEven<std::uint64_t>(4, 3), 1U);
  EXPECT_EQ(QuotientHalfToEven<std::uint64_t>(5, 3), 2U);
  EXPECT_EQ(QuotientHalfToEven<std::uint64_t>(14999, 10000), 1U);
  EXPECT_EQ(QuotientHalfToEven<std::uint64_t>(15000, 10000), 2U);
  EXPECT_EQ(QuotientHalfToEven<std::uint64_t>(15001, 10000), 2U);
}

TEST(Integers, QuotientsByTheLargestNumbersHaveRoomForTheRest) {
  EXPECT_EQ(QuotientHalfToEven(kMax / 2, kMax), 0U);
  EXPECT_EQ(QuotientHalfToEven(kMax / 2 + 1, kMax), 1U);
  EXPECT_EQ(QuotientHalfToEven(kMax / 2, kMax - 1), 0U);
  EXPECT_EQ(QuotientHalfToEven(kMax, kMax), 1U);
  const PortableUint128 most = -1;
  EXPECT_EQ(QuotientHalfToEven(most - 1, most), 1);
}

#ifdef __SIZEOF_INT128__

TEST(IntegersProperties, QuotientsAreTheSameWithoutIntegersOf128Bits) {
  using VnZEL10cmn::internal::Uint128;
  EXPECT_TRUE(rc::check("native and portable", [](std::uint64_t a, std::uint64_t b) {
    const auto divisor = *rc::gen::element<std::uint64_t>(1, 2, 3, 10000, 4294967296, kMax);
    const Uint128 native = QuotientHalfToEven<Uint128>(Uint128{a} * b, divisor);
    const PortableUint128 portable = QuotientHalfToEven<PortableUint128>(PortableUint128{a} * b, divisor);
    RC_ASSERT(portable == (PortableUint128(static_cast<std::uint64_t>(native >> 64)) << 64) +
                              static_cast<std::uint64_t>(native));
  }));
}

#endif

}  // namespace
