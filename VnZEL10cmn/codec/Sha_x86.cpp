#include "VnZEL10cmn/codec/internal/ShaBlocks.h"

#if VNZEL_X86_64

#include <immintrin.h>

#include <bit>
#include <utility>

#ifdef _MSC_VER
#define VNZEL_SHA
#define VNZEL_AVX2
#define VNZEL_INLINE __forceinline
#else
#define VNZEL_SHA __attribute__((target("sha,sse4.1")))
#define VNZEL_AVX2 __attribute__((target("avx2,bmi,bmi2")))
#define VNZEL_INLINE __attribute__((always_inline)) inline
#endif

namespace VnZEL10cmn::internal {

namespace {

VNZEL_SHA VNZEL_INLINE __m128i Load(const void* bytes) {
  return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

VNZEL_SHA VNZEL_INLINE void Store(void* bytes, __m128i value) {
  _mm_storeu_si128(static_cast<__m128i*>(bytes), value);
}

/// The last 16 words of a block's schedule, four in a register.
struct Words {
  __m128i w[4];
};

/// Four rounds of SHA-1. `e` holds what E is made from: A to D before the previous four rounds, at first E itself.
template <std::size_t Group>
VNZEL_SHA VNZEL_INLINE void Sha1Rounds(__m128i& abcd, __m128i& e, Words& words) {
  __m128i* const w = words.w;
  constexpr std::size_t now = Group % 4;
  if constexpr (Group >= 4) {
    const __m128i older = _mm_xor_si128(_mm_sha1msg1_epu32(w[now], w[(now + 1) % 4]), w[(now + 2) % 4]);
    w[now] = _mm_sha1msg2_epu32(older, w[(now + 3) % 4]);
  }
  const __m128i input = Group == 0 ? _mm_add_epi32(e, w[now]) : _mm_sha1nexte_epu32(e, w[now]);
  e = abcd;
  abcd = _mm_sha1rnds4_epu32(abcd, input, Group / 5);
}

template <std::size_t... Group>
VNZEL_SHA VNZEL_INLINE void Sha1Block(__m128i& abcd, __m128i& e, Words& words,
                                      std::index_sequence<Group...>) {
  (Sha1Rounds<Group>(abcd, e, words), ...);
}

/// Four rounds of SHA-256. The instruction takes two, from the register's lower half.
template <std::size_t Group>
VNZEL_SHA VNZEL_INLINE void Sha256Rounds(__m128i& abef, __m128i& cdgh, Words& words) {
  __m128i* const w = words.w;
  constexpr std::size_t now = Group % 4;
  if constexpr (Group >= 4) {
    const __m128i seventh = _mm_alignr_epi8(w[(now + 3) % 4], w[(now + 2) % 4], 4);
    const __m128i older = _mm_add_epi32(_mm_sha256msg1_epu32(w[now], w[(now + 1) % 4]), seventh);
    w[now] = _mm_sha256msg2_epu32(older, w[(now + 3) % 4]);
  }
  const __m128i input = _mm_add_epi32(w[now], Load(kSha256Constants.data() + 4 * Group));
  cdgh = _mm_sha256rnds2_epu32(cdgh, abef, input);
  abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(input, 0x0E));
}

template <std::size_t... Group>
VNZEL_SHA VNZEL_INLINE void Sha256Block(__m128i& abef, __m128i& cdgh, Words& words,
                                        std::index_sequence<Group...>) {
  (Sha256Rounds<Group>(abef, cdgh, words), ...);
}

}  // namespace

VNZEL_SHA void AbsorbSha1BySha(Sha1State& state, ShaMessage& message) {
  const __m128i bigEndian = _mm_set_epi64x(0x0001020304050607, 0x08090a0b0c0d0e0f);
  __m128i abcd = _mm_shuffle_epi32(Load(state.data()), 0x1B);
  __m128i e = _mm_set_epi32(static_cast<int>(state[4]), 0, 0, 0);
  while (const std::uint8_t* const block = message.Next()) {
    const __m128i abcdBefore = abcd;
    const __m128i eBefore = e;
    Words words;
    for (std::size_t i = 0; i < 4; ++i) {
      words.w[i] = _mm_shuffle_epi8(Load(block + 16 * i), bigEndian);
    }
    Sha1Block(abcd, e, words, std::make_index_sequence<20>());
    e = _mm_sha1nexte_epu32(e, eBefore);
    abcd = _mm_add_epi32(abcd, abcdBefore);
  }
  Store(state.data(), _mm_shuffle_epi32(abcd, 0x1B));
  state[4] = static_cast<std::uint32_t>(_mm_extract_epi32(e, 3));
}

VNZEL_SHA void AbsorbSha256BySha(Sha256State& state, ShaMessage& message) {
  const __m128i bigEndian = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
  const __m128i badc = _mm_shuffle_epi32(Load(state.data()), 0xB1);
  const __m128i hgfe = _mm_shuffle_epi32(Load(state.data() + 4), 0x1B);
  __m128i abef = _mm_alignr_epi8(badc, hgfe, 8);
  __m128i cdgh = _mm_blend_epi16(hgfe, badc, 0xF0);
  while (const std::uint8_t* const block = message.Next()) {
    const __m128i abefBefore = abef;
    const __m128i cdghBefore = cdgh;
    Words words;
    for (std::size_t i = 0; i < 4; ++i) {
      words.w[i] = _mm_shuffle_epi8(Load(block + 16 * i), bigEndian);
    }
    Sha256Block(abef, cdgh, words, std::make_index_sequence<16>());
    abef = _mm_add_epi32(abef, abefBefore);
    cdgh = _mm_add_epi32(cdgh, cdghBefore);
  }
  const __m128i feba = _mm_shuffle_epi32(abef, 0x1B);
  const __m128i dchg = _mm_shuffle_epi32(cdgh, 0xB1);
  Store(state.data(), _mm_blend_epi16(feba, dchg, 0xF0));
  Store(state.data() + 4, _mm_alignr_epi8(dchg, feba, 8));
}

// ---- Without these instructions: the words of two blocks side by side, the rounds one block after the other.

namespace {

/// Words with their round constants added: of both blocks, four of the one, then four of the other.
struct TwoSchedules {
  alignas(32) std::uint32_t sums[2 * 64];
};

template <int Bits>
VNZEL_AVX2 VNZEL_INLINE __m256i RotatedRight(__m256i value) {
  return _mm256_or_si256(_mm256_srli_epi32(value, Bits), _mm256_slli_epi32(value, 32 - Bits));
}

/// The second sum of the schedule, of two words that stand twice each; it is the lower half of each pair.
VNZEL_AVX2 VNZEL_INLINE __m256i SumOfPairs(__m256i pairs) {
  return _mm256_xor_si256(_mm256_srli_epi32(pairs, 10),
                          _mm256_xor_si256(_mm256_srli_epi64(pairs, 17), _mm256_srli_epi64(pairs, 19)));
}

/// The next four words of both blocks, from the last 16.
VNZEL_AVX2 VNZEL_INLINE __m256i NextWords(__m256i w0, __m256i w1, __m256i w2, __m256i w3) {
  const __m256i toLower = _mm256_set_epi64x(-1, 0x0b0a090803020100, -1, 0x0b0a090803020100);
  const __m256i toUpper = _mm256_set_epi64x(0x0b0a090803020100, -1, 0x0b0a090803020100, -1);
  const __m256i fifteenth = _mm256_alignr_epi8(w1, w0, 4);
  const __m256i first =
      _mm256_xor_si256(_mm256_srli_epi32(fifteenth, 3),
                       _mm256_xor_si256(RotatedRight<7>(fifteenth), RotatedRight<18>(fifteenth)));
  __m256i sum = _mm256_add_epi32(_mm256_add_epi32(w0, first), _mm256_alignr_epi8(w3, w2, 4));
  // Two words need the two before them, the other two need these.
  const __m256i lower = _mm256_shuffle_epi8(SumOfPairs(_mm256_shuffle_epi32(w3, 0xFA)), toLower);
  sum = _mm256_add_epi32(sum, lower);
  const __m256i upper = _mm256_shuffle_epi8(SumOfPairs(_mm256_shuffle_epi32(sum, 0x50)), toUpper);
  return _mm256_add_epi32(sum, upper);
}

VNZEL_AVX2 VNZEL_INLINE __m256i Constants(std::size_t group) {
  return _mm256_broadcastsi128_si256(
      _mm_load_si128(reinterpret_cast<const __m128i*>(kSha256Constants.data() + 4 * group)));
}

VNZEL_AVX2 VNZEL_INLINE void Schedule(TwoSchedules& schedules, const std::uint8_t* first,
                                      const std::uint8_t* second) {
  const __m256i bigEndian =
      _mm256_broadcastsi128_si256(_mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203));
  __m256i w[4];
  auto* const out = reinterpret_cast<__m256i*>(schedules.sums);
  for (std::size_t i = 0; i < 4; ++i) {
    const __m128i lower = _mm_loadu_si128(reinterpret_cast<const __m128i*>(first + 16 * i));
    const __m128i upper = _mm_loadu_si128(reinterpret_cast<const __m128i*>(second + 16 * i));
    w[i] = _mm256_shuffle_epi8(_mm256_inserti128_si256(_mm256_castsi128_si256(lower), upper, 1), bigEndian);
    _mm256_store_si256(out + i, _mm256_add_epi32(w[i], Constants(i)));
  }
  for (std::size_t group = 4; group < 16; group += 4) {
    w[0] = NextWords(w[0], w[1], w[2], w[3]);
    _mm256_store_si256(out + group, _mm256_add_epi32(w[0], Constants(group)));
    w[1] = NextWords(w[1], w[2], w[3], w[0]);
    _mm256_store_si256(out + group + 1, _mm256_add_epi32(w[1], Constants(group + 1)));
    w[2] = NextWords(w[2], w[3], w[0], w[1]);
    _mm256_store_si256(out + group + 2, _mm256_add_epi32(w[2], Constants(group + 2)));
    w[3] = NextWords(w[3], w[0], w[1], w[2]);
    _mm256_store_si256(out + group + 3, _mm256_add_epi32(w[3], Constants(group + 3)));
  }
}

/// One round, with the variables in other places each time, so that nothing has to be moved between them.
template <std::size_t Round>
VNZEL_AVX2 VNZEL_INLINE void Sha256Round(std::uint32_t* v, const std::uint32_t* sums) {
  const std::uint32_t a = v[(64 - Round) % 8];
  const std::uint32_t b = v[(65 - Round) % 8];
  const std::uint32_t c = v[(66 - Round) % 8];
  std::uint32_t& d = v[(67 - Round) % 8];
  const std::uint32_t e = v[(68 - Round) % 8];
  const std::uint32_t f = v[(69 - Round) % 8];
  const std::uint32_t g = v[(70 - Round) % 8];
  std::uint32_t& h = v[(71 - Round) % 8];
  h += sums[Round / 4 * 8 + Round % 4] + ((e & f) + (~e & g)) +
       (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25));
  d += h;
  h += (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + (b ^ ((a ^ b) & (b ^ c)));
}

template <std::size_t... Round>
VNZEL_AVX2 VNZEL_INLINE void Sha256RoundsOf(Sha256State& state, const std::uint32_t* sums,
                                            std::index_sequence<Round...>) {
  std::uint32_t v[8];
  for (std::size_t i = 0; i < 8; ++i) {
    v[i] = state[i];
  }
  (Sha256Round<Round>(v, sums), ...);
  for (std::size_t i = 0; i < 8; ++i) {
    state[i] += v[i];
  }
}

}  // namespace

VNZEL_AVX2 void AbsorbSha256ByAvx2(Sha256State& state, ShaMessage& message) {
  TwoSchedules schedules;
  while (const std::uint8_t* const first = message.Next()) {
    const std::uint8_t* const second = message.Next();
    Schedule(schedules, first, second == nullptr ? first : second);
    Sha256RoundsOf(state, schedules.sums, std::make_index_sequence<64>());
    if (second != nullptr) {
      Sha256RoundsOf(state, schedules.sums + 4, std::make_index_sequence<64>());
    }
  }
}

}  // namespace VnZEL10cmn::internal

#endif
