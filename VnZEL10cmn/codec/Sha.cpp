#include "VnZEL10cmn/codec/internal/Sha.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

constexpr std::size_t kBlock = 64;

using Bytes = std::span<const std::uint8_t>;

std::uint32_t LoadWord(const std::uint8_t* bytes) {
  return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
         static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

template <std::size_t Words>
using State = std::array<std::uint32_t, Words>;

/// The rounds are written out by the compiler, each with the variables in other places, so that nothing has to be moved
/// between them.
template <std::size_t First, std::size_t Count, class Round>
constexpr void Unrolled(Round&& round) {
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    (round(std::integral_constant<std::size_t, First + I>{}), ...);
  }
  (std::make_index_sequence<Count>{});
}

void Sha1Block(State<5>& state, const std::uint8_t* block) {
  std::array<std::uint32_t, 16> w;
  State<5> v = state;
  // Of the 80 words of the schedule the last 16 are kept.
  const auto round = [&](auto index, std::uint32_t k, auto&& choose) {
    constexpr std::size_t i = index;
    if constexpr (i < 16) {
      w[i] = LoadWord(block + 4 * i);
    } else {
      w[i % 16] = std::rotl(w[(i - 3) % 16] ^ w[(i - 8) % 16] ^ w[(i - 14) % 16] ^ w[i % 16], 1);
    }
    std::uint32_t& a = v[(80 - i) % 5];
    std::uint32_t& b = v[(81 - i) % 5];
    std::uint32_t& c = v[(82 - i) % 5];
    std::uint32_t& d = v[(83 - i) % 5];
    std::uint32_t& e = v[(84 - i) % 5];
    e += std::rotl(a, 5) + choose(b, c, d) + k + w[i % 16];
    b = std::rotl(b, 30);
  };
  const auto select = [](std::uint32_t b, std::uint32_t c, std::uint32_t d) { return d ^ (b & (c ^ d)); };
  const auto parity = [](std::uint32_t b, std::uint32_t c, std::uint32_t d) { return b ^ c ^ d; };
  const auto majority = [](std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    return (b & c) | (d & (b | c));
  };
  Unrolled<0, 20>([&](auto i) { round(i, 0x5A827999, select); });
  Unrolled<20, 20>([&](auto i) { round(i, 0x6ED9EBA1, parity); });
  Unrolled<40, 20>([&](auto i) { round(i, 0x8F1BBCDC, majority); });
  Unrolled<60, 20>([&](auto i) { round(i, 0xCA62C1D6, parity); });
  for (std::size_t i = 0; i < 5; ++i) {
    state[i] += v[i];
  }
}

constexpr std::array<std::uint32_t, 64> kRoundConstants = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

void Sha256Block(State<8>& state, const std::uint8_t* block) {
  std::array<std::uint32_t, 64> w;
  for (std::size_t i = 0; i < 16; ++i) {
    w[i] = LoadWord(block + 4 * i);
  }
  for (std::size_t i = 16; i < 64; ++i) {
    const std::uint32_t s0 = std::rotr(w[i - 15], 7) ^ std::rotr(w[i - 15], 18) ^ (w[i - 15] >> 3);
    const std::uint32_t s1 = std::rotr(w[i - 2], 17) ^ std::rotr(w[i - 2], 19) ^ (w[i - 2] >> 10);
    w[i] = w[i - 16] + s0 + w[i - 7] + s1;
  }
  auto [a, b, c, d, e, f, g, h] = state;
  for (std::size_t i = 0; i < 64; ++i) {
    const std::uint32_t s1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
    const std::uint32_t t1 = h + s1 + ((e & f) ^ (~e & g)) + kRoundConstants[i] + w[i];
    const std::uint32_t s0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
    const std::uint32_t t2 = s0 + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + t1;
    d = c;
    c = b;
    b = a;
    a = t1 + t2;
  }
  const State<8> sums = {a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < 8; ++i) {
    state[i] += sums[i];
  }
}

/// Both digests cut the message into blocks of 64 bytes and close it with 80, zeros and its bit length.
template <std::size_t Words>
std::array<std::uint8_t, 4 * Words> Digest(Bytes message, State<Words> state,
                                           void (*absorb)(State<Words>&, const std::uint8_t*)) {
  const std::size_t whole = message.size() / kBlock * kBlock;
  for (std::size_t at = 0; at < whole; at += kBlock) {
    absorb(state, message.data() + at);
  }
  std::array<std::uint8_t, 2 * kBlock> tail{};
  const std::size_t rest = message.size() - whole;
  std::copy_n(message.data() + whole, rest, tail.data());
  tail[rest] = 0x80;
  const std::size_t tailSize = rest + 9 > kBlock ? 2 * kBlock : kBlock;
  const std::uint64_t bits = static_cast<std::uint64_t>(message.size()) * 8;
  for (std::size_t i = 0; i < 8; ++i) {
    tail[tailSize - 1 - i] = static_cast<std::uint8_t>(bits >> (8 * i));
  }
  for (std::size_t at = 0; at < tailSize; at += kBlock) {
    absorb(state, tail.data() + at);
  }
  std::array<std::uint8_t, 4 * Words> digest;
  for (std::size_t i = 0; i < digest.size(); ++i) {
    digest[i] = static_cast<std::uint8_t>(state[i / 4] >> (24 - 8 * (i % 4)));
  }
  return digest;
}

}  // namespace

Sha1Digest Sha1(Bytes message) {
  return Digest<5>(message, {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0}, Sha1Block);
}

Sha256Digest Sha256(Bytes message) {
  return Digest<8>(
      message,
      {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a, 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19},
      Sha256Block);
}

Sha1Digest Sha1OfText(std::string_view text) {
  const std::string bytes = ToCodePage1252(text);
  return Sha1(Bytes(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
}

Sha256Digest Sha256OfText(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(text.size());
  ForEachUtf16Unit(text,
                   [&bytes](char16_t unit) { bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF)); });
  return Sha256(bytes);
}

Sha256Digest Sha256OfCodePageBytes(Bytes message) {
  std::vector<std::uint8_t> bytes(message.size());
  std::transform(message.begin(), message.end(), bytes.begin(),
                 [](std::uint8_t byte) { return static_cast<std::uint8_t>(FromCodePage1252(byte) & 0xFF); });
  return Sha256(bytes);
}

}  // namespace VnZEL10cmn::internal
