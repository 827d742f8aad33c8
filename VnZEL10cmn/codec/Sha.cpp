#include "VnZEL10cmn/codec/internal/Sha.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "VnZEL10cmn/codec/internal/ShaBlocks.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

using Bytes = std::span<const std::uint8_t>;

std::uint32_t LoadWord(const std::uint8_t* bytes) {
  return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
         static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

void StoreWord(std::uint8_t* bytes, std::uint32_t word) {
  if constexpr (std::endian::native == std::endian::little) {
    word = word >> 24 | (word >> 8 & 0xFF00) | (word << 8 & 0xFF0000) | word << 24;
  }
  std::memcpy(bytes, &word, sizeof word);
}

/// The rounds are written out by the compiler, each with the variables in other places, so that nothing has to be moved
/// between them.
template <std::size_t First, std::size_t Count, class Round>
constexpr void Unrolled(Round&& round) {
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    (round(std::integral_constant<std::size_t, First + I>{}), ...);
  }
  (std::make_index_sequence<Count>{});
}

void Sha1Block(Sha1State& state, const std::uint8_t* block) {
  std::array<std::uint32_t, 16> w;
  Sha1State v = state;
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

void Sha256Block(Sha256State& state, const std::uint8_t* block) {
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
    const std::uint32_t t1 = h + s1 + ((e & f) ^ (~e & g)) + kSha256Constants[i] + w[i];
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
  const Sha256State sums = {a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < 8; ++i) {
    state[i] += sums[i];
  }
}

template <class State>
std::array<std::uint8_t, 4 * std::tuple_size_v<State>> Digest(Bytes bytes, State state,
                                                              void (*absorb)(State&, ShaMessage&)) {
  ShaMessage message(bytes);
  absorb(state, message);
  std::array<std::uint8_t, 4 * std::tuple_size_v<State>> digest;
  for (std::size_t i = 0; i < state.size(); ++i) {
    StoreWord(&digest[4 * i], state[i]);
  }
  return digest;
}

}  // namespace

ShaMessage::ShaMessage(Bytes message) : next(message.data()), blocks(message.size() / kShaBlock) {
  const Bytes rest = message.subspan(blocks * kShaBlock);
  tailBlocks = rest.size() + 9 > kShaBlock ? 2 : 1;
  std::copy(rest.begin(), rest.end(), tail.begin());
  tail[rest.size()] = 0x80;
  const std::uint64_t bits = static_cast<std::uint64_t>(message.size()) * 8;
  StoreWord(&tail[tailBlocks * kShaBlock - 8], static_cast<std::uint32_t>(bits >> 32));
  StoreWord(&tail[tailBlocks * kShaBlock - 4], static_cast<std::uint32_t>(bits));
}

void AbsorbSha1(Sha1State& state, ShaMessage& message) {
  while (const std::uint8_t* const block = message.Next()) {
    Sha1Block(state, block);
  }
}

void AbsorbSha256(Sha256State& state, ShaMessage& message) {
  while (const std::uint8_t* const block = message.Next()) {
    Sha256Block(state, block);
  }
}

Sha1Digest Sha1(Bytes message, [[maybe_unused]] Instructions usable) {
#if VNZEL_X86_64
  if (usable.sha) return Digest(message, kSha1Start, AbsorbSha1BySha);
  if (usable.avx2) return Digest(message, kSha1Start, AbsorbSha1ByAvx2);
#endif
  return Digest(message, kSha1Start, AbsorbSha1);
}

Sha256Digest Sha256(Bytes message, [[maybe_unused]] Instructions usable) {
#if VNZEL_X86_64
  if (usable.sha) return Digest(message, kSha256Start, AbsorbSha256BySha);
  if (usable.avx2) return Digest(message, kSha256Start, AbsorbSha256ByAvx2);
#endif
  return Digest(message, kSha256Start, AbsorbSha256);
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
  // The items of most bookings need no memory for this.
  std::array<std::uint8_t, 1024> few;
  std::vector<std::uint8_t> many(message.size() > few.size() ? message.size() : 0);
  const std::span<std::uint8_t> bytes =
      many.empty() ? std::span<std::uint8_t>(few).first(message.size()) : std::span<std::uint8_t>(many);
  std::ranges::copy(message, bytes.begin());
  const auto toLowByte = [](std::uint8_t byte) {
    return static_cast<std::uint8_t>(FromCodePage1252(byte) & 0xFF);
  };
  // Only the bytes 80 to 9F change: eight at a time are looked at whether one of them is there.
  constexpr std::uint64_t ones = 0x0101010101010101;
  std::size_t at = 0;
  for (; bytes.size() - at >= sizeof ones; at += sizeof ones) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + at, sizeof word);
    const std::uint64_t differs = (word & 0xE0 * ones) ^ 0x80 * ones;
    if (((differs - ones) & ~differs & 0x80 * ones) != 0) {
      std::transform(bytes.data() + at, bytes.data() + at + sizeof ones, bytes.data() + at, toLowByte);
    }
  }
  std::ranges::transform(bytes.subspan(at), bytes.subspan(at).begin(), toLowByte);
  return Sha256(bytes);
}

}  // namespace VnZEL10cmn::internal
