// The 128-bit integer for compilers that have none, against the compiler's own where it has one.

#include "VnZEL10cmn/types/internal/Uint128.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <limits>

using VnZEL10cmn::internal::PortableUint128;

namespace {

constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();

TEST(PortableUint128, CarriesAcrossItsHalves) {
  const PortableUint128 beyond = PortableUint128(kMax) + 1;
  EXPECT_EQ(static_cast<std::uint64_t>(beyond), 0U);
  EXPECT_EQ(beyond, PortableUint128(1) << 64);
  EXPECT_EQ(beyond - 1, kMax);
  EXPECT_GT(beyond, kMax);
  EXPECT_EQ(PortableUint128(kMax) * kMax, (PortableUint128(kMax - 1) << 64) + 1);
  EXPECT_EQ(PortableUint128(kMax) * kMax / kMax, kMax);
  EXPECT_EQ(PortableUint128(kMax) * kMax % kMax, 0);
}

TEST(PortableUint128, WrapsAround) {
  EXPECT_EQ(PortableUint128(0) - 1, PortableUint128(-1));
  EXPECT_EQ(PortableUint128(-1) + 1, 0);
  PortableUint128 last = -1;
  EXPECT_EQ(++last, 0);
}

TEST(PortableUint128, DividesByNumbersOfAllBits) {
  EXPECT_EQ(PortableUint128(-1) / PortableUint128(-1), 1);
  EXPECT_EQ(PortableUint128(-1) % (PortableUint128(-1) - 4), 4);
  EXPECT_EQ((PortableUint128(-1) - 1) / PortableUint128(-1), 0);
}

#ifdef __SIZEOF_INT128__

using VnZEL10cmn::internal::Uint128;

PortableUint128 Portable(std::uint64_t high, std::uint64_t low) {
  return (PortableUint128(high) << 64) + low;
}
Uint128 Native(std::uint64_t high, std::uint64_t low) { return (static_cast<Uint128>(high) << 64) + low; }

bool Same(PortableUint128 a, Uint128 b) {
  return a == Portable(static_cast<std::uint64_t>(b >> 64), static_cast<std::uint64_t>(b));
}

TEST(PortableUint128Properties, CalculatesLikeTheCompilersOwn) {
  EXPECT_TRUE(
      rc::check("all operations", [](std::uint64_t a1, std::uint64_t a0, std::uint64_t b1, std::uint64_t b0) {
        // Small numbers as well as large ones.
        a1 >>= *rc::gen::inRange(0, 64);
        b1 >>= *rc::gen::inRange(0, 64);
        const PortableUint128 a = Portable(a1, a0);
        const PortableUint128 b = Portable(b1, b0);
        const Uint128 nativeA = Native(a1, a0);
        const Uint128 nativeB = Native(b1, b0);
        RC_ASSERT(Same(a + b, nativeA + nativeB));
        RC_ASSERT(Same(a - b, nativeA - nativeB));
        RC_ASSERT(Same(a * b, nativeA * nativeB));
        const int bits = *rc::gen::inRange(0, 128);
        RC_ASSERT(Same(a << bits, nativeA << bits));
        RC_ASSERT((a < b) == (nativeA < nativeB));
        RC_ASSERT((a == b) == (nativeA == nativeB));
        RC_PRE(nativeB != 0);
        RC_ASSERT(Same(a / b, nativeA / nativeB));
        RC_ASSERT(Same(a % b, nativeA % nativeB));
      }));
}

#endif

}  // namespace
