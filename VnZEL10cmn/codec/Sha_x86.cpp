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

// ---- Without these instructions: the words of two blocks side by side, made while the rounds of the first are
// under way; those of the second find theirs ready. What the rounds change are single variables throughout, and
// nothing of this is in loops of a few turns: g++ would keep arrays in memory, and the loops' ends are mispredicted.

namespace {

/// Words with their round constants added: of both blocks, four of the one, then four of the other.
template <std::size_t Rounds>
class TwoSchedules {
 public:
  VNZEL_AVX2 VNZEL_INLINE void Put(std::size_t group, __m256i sums) {
    _mm256_store_si256(reinterpret_cast<__m256i*>(sums_ + 8 * group), sums);
  }

  /// Those of the first block; the second block's are four further on. The compiler doesn't see what they point
  /// to: it would take the words out of the vector registers one by one, which is slower than loading them.
  const std::uint32_t* Sums() const { return unseen_; }

 private:
  alignas(32) std::uint32_t sums_[2 * Rounds];
  const std::uint32_t* const volatile unseen_ = sums_;
};

/// Four words of both blocks.
VNZEL_AVX2 VNZEL_INLINE __m256i FirstWords(const std::uint8_t* first, const std::uint8_t* second) {
  const __m256i bigEndian =
      _mm256_broadcastsi128_si256(_mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203));
  const __m128i lower = _mm_loadu_si128(reinterpret_cast<const __m128i*>(first));
  const __m128i upper = _mm_loadu_si128(reinterpret_cast<const __m128i*>(second));
  return _mm256_shuffle_epi8(_mm256_inserti128_si256(_mm256_castsi128_si256(lower), upper, 1), bigEndian);
}

template <int Bits>
VNZEL_AVX2 VNZEL_INLINE __m256i RotatedRight(__m256i value) {
  return _mm256_or_si256(_mm256_srli_epi32(value, Bits), _mm256_slli_epi32(value, 32 - Bits));
}

template <int Bits>
VNZEL_AVX2 VNZEL_INLINE __m256i RotatedLeft(__m256i value) {
  return RotatedRight<32 - Bits>(value);
}

// ---- SHA-1.

using Sha1Schedules = TwoSchedules<80>;

struct Sha1Variables {
  std::uint32_t a, b, c, d, e;

  friend Sha1Variables operator+(const Sha1Variables& v, const Sha1Variables& w) {
    return {v.a + w.a, v.b + w.b, v.c + w.c, v.d + w.d, v.e + w.e};
  }
};

/// The last 32 words of both blocks.
struct Sha1Words {
  __m256i w[8];
};

VNZEL_AVX2 VNZEL_INLINE __m256i Sha1Constant(std::size_t group) {
  constexpr std::uint32_t constants[] = {0x5A827999, 0x6ED9EBA1, 0x8F1BBCDC, 0xCA62C1D6};
  return _mm256_set1_epi32(static_cast<int>(constants[group / 5]));
}

/// The next four words of both blocks.
template <std::size_t Group>
VNZEL_AVX2 VNZEL_INLINE void NextSha1Words(Sha1Words& words, Sha1Schedules& schedules) {
  __m256i* const w = words.w;
  __m256i& now = w[Group % 8];
  if constexpr (Group < 8) {
    const __m256i older = _mm256_xor_si256(_mm256_xor_si256(w[Group - 4], w[Group - 2]),
                                           _mm256_alignr_epi8(w[Group - 3], w[Group - 4], 8));
    const __m256i sum = _mm256_xor_si256(older, _mm256_srli_si256(w[Group - 1], 4));
    // The fourth word needs the first.
    now = _mm256_xor_si256(RotatedLeft<1>(sum), RotatedLeft<2>(_mm256_slli_si256(sum, 12)));
  } else {
    // The rule applied twice reaches twice as far back, where no word needs another of the four.
    const __m256i older = _mm256_xor_si256(_mm256_xor_si256(now, w[(Group + 1) % 8]), w[(Group + 4) % 8]);
    const __m256i sixth = _mm256_alignr_epi8(w[(Group + 7) % 8], w[(Group + 6) % 8], 8);
    now = RotatedLeft<2>(_mm256_xor_si256(older, sixth));
  }
  schedules.Put(Group, _mm256_add_epi32(now, Sha1Constant(Group)));
}

/// One round. What depends on the last round comes in last; terms that never have a bit in common are added.
template <std::size_t Group>
VNZEL_AVX2 VNZEL_INLINE void Sha1Round(std::uint32_t a, std::uint32_t& b, std::uint32_t c, std::uint32_t d,
                                       std::uint32_t& e, std::uint32_t sum) {
  if constexpr (Group < 5) {
    e += sum + (b & c) + (~b & d) + std::rotl(a, 5);
  } else if constexpr (Group >= 10 && Group < 15) {
    e += sum + (c & d) + (b & (c ^ d)) + std::rotl(a, 5);
  } else {
    e += sum + (b ^ c ^ d) + std::rotl(a, 5);
  }
  b = std::rotl(b, 30);
}

/// Four rounds, each with the variables in other places, so that nothing has to be moved between them.
template <std::size_t Group>
VNZEL_AVX2 VNZEL_INLINE void FourSha1Rounds(Sha1Variables& v, const std::uint32_t* sums) {
  Sha1Round<Group>(v.a, v.b, v.c, v.d, v.e, sums[8 * Group]);
  Sha1Round<Group>(v.e, v.a, v.b, v.c, v.d, sums[8 * Group + 1]);
  Sha1Round<Group>(v.d, v.e, v.a, v.b, v.c, sums[8 * Group + 2]);
  Sha1Round<Group>(v.c, v.d, v.e, v.a, v.b, sums[8 * Group + 3]);
  v = {v.b, v.c, v.d, v.e, v.a};
}

template <std::size_t Group>
VNZEL_AVX2 VNZEL_INLINE void FirstSha1Rounds(Sha1Variables& v, Sha1Words& words, Sha1Schedules& schedules,
                                             const std::uint32_t* sums) {
  if constexpr (Group < 16) NextSha1Words<Group + 4>(words, schedules);
  FourSha1Rounds<Group>(v, sums);
}

template <std::size_t... Group>
VNZEL_AVX2 VNZEL_INLINE void FirstSha1Block(Sha1Variables& v, const std::uint8_t* first,
                                            const std::uint8_t* second, Sha1Schedules& schedules,
                                            const std::uint32_t* sums, std::index_sequence<Group...>) {
  Sha1Words words;
  words.w[0] = FirstWords(first, second);
  words.w[1] = FirstWords(first + 16, second + 16);
  words.w[2] = FirstWords(first + 32, second + 32);
  words.w[3] = FirstWords(first + 48, second + 48);
  schedules.Put(0, _mm256_add_epi32(words.w[0], Sha1Constant(0)));
  schedules.Put(1, _mm256_add_epi32(words.w[1], Sha1Constant(1)));
  schedules.Put(2, _mm256_add_epi32(words.w[2], Sha1Constant(2)));
  schedules.Put(3, _mm256_add_epi32(words.w[3], Sha1Constant(3)));
  const Sha1Variables before = v;
  (FirstSha1Rounds<Group>(v, words, schedules, sums), ...);
  v = v + before;
}

template <std::size_t... Group>
VNZEL_AVX2 VNZEL_INLINE void SecondSha1Block(Sha1Variables& v, const std::uint32_t* sums,
                                             std::index_sequence<Group...>) {
  const Sha1Variables before = v;
  (FourSha1Rounds<Group>(v, sums), ...);
  v = v + before;
}

// ---- SHA-256.

using Sha256Schedules = TwoSchedules<64>;

struct Sha256Variables {
  std::uint32_t a, b, c, d, e, f, g, h;

  friend Sha256Variables operator+(const Sha256Variables& v, const Sha256Variables& w) {
    return {v.a + w.a, v.b + w.b, v.c + w.c, v.d + w.d, v.e + w.e, v.f + w.f, v.g + w.g, v.h + w.h};
  }
};

VNZEL_AVX2 VNZEL_INLINE __m256i Sha256Constants(std::size_t group) {
  return _mm256_broadcastsi128_si256(
      _mm_load_si128(reinterpret_cast<const __m128i*>(kSha256Constants.data() + 4 * group)));
}

/// The second sum of the schedule, of two words that stand twice each; it is the lower half of each pair.
VNZEL_AVX2 VNZEL_INLINE __m256i SumOfPairs(__m256i pairs) {
  return _mm256_xor_si256(_mm256_srli_epi32(pairs, 10),
                          _mm256_xor_si256(_mm256_srli_epi64(pairs, 17), _mm256_srli_epi64(pairs, 19)));
}

/// The next four words of both blocks, from the last 16; `w0` is replaced.
VNZEL_AVX2 VNZEL_INLINE void NextSha256Words(__m256i& w0, __m256i w1, __m256i w2, __m256i w3,
                                             Sha256Schedules& schedules, std::size_t group) {
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
  w0 = _mm256_add_epi32(sum, upper);
  schedules.Put(group, _mm256_add_epi32(w0, Sha256Constants(group)));
}

/// One round. `bc` is b ^ c, which the round before had as its a ^ b. The new e is summed up with d from the start
/// and d is taken off again for the new a: that is an instruction more, but one less for the next round to wait
/// for. The compilers keep more or less to this order; with the new a before the new e it is up to a tenth slower.
VNZEL_AVX2 VNZEL_INLINE void Sha256Round(std::uint32_t a, std::uint32_t b, std::uint32_t& d, std::uint32_t e,
                                         std::uint32_t f, std::uint32_t g, std::uint32_t& h,
                                         std::uint32_t& bc, std::uint32_t sum) {
  const std::uint32_t s1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
  const std::uint32_t newE = d + (h + sum) + (e & f) + (~e & g) + s1;
  const std::uint32_t s0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
  const std::uint32_t ab = a ^ b;
  const std::uint32_t rest = (b ^ (ab & bc)) - d + s0;
  bc = ab;
  d = newE;
  h = newE + rest;
}

/// Four rounds, each with the variables in other places, so that nothing has to be moved between them.
VNZEL_AVX2 VNZEL_INLINE void FourSha256Rounds(Sha256Variables& v, std::uint32_t& bc,
                                              const std::uint32_t* sums) {
  Sha256Round(v.a, v.b, v.d, v.e, v.f, v.g, v.h, bc, sums[0]);
  Sha256Round(v.h, v.a, v.c, v.d, v.e, v.f, v.g, bc, sums[1]);
  Sha256Round(v.g, v.h, v.b, v.c, v.d, v.e, v.f, bc, sums[2]);
  Sha256Round(v.f, v.g, v.a, v.b, v.c, v.d, v.e, bc, sums[3]);
  v = {v.e, v.f, v.g, v.h, v.a, v.b, v.c, v.d};
}

VNZEL_AVX2 VNZEL_INLINE void FirstSha256Block(Sha256Variables& v, const std::uint8_t* first,
                                              const std::uint8_t* second, Sha256Schedules& schedules,
                                              const std::uint32_t* sums) {
  __m256i w0 = FirstWords(first, second);
  __m256i w1 = FirstWords(first + 16, second + 16);
  __m256i w2 = FirstWords(first + 32, second + 32);
  __m256i w3 = FirstWords(first + 48, second + 48);
  schedules.Put(0, _mm256_add_epi32(w0, Sha256Constants(0)));
  schedules.Put(1, _mm256_add_epi32(w1, Sha256Constants(1)));
  schedules.Put(2, _mm256_add_epi32(w2, Sha256Constants(2)));
  schedules.Put(3, _mm256_add_epi32(w3, Sha256Constants(3)));
  const Sha256Variables before = v;
  std::uint32_t bc = v.b ^ v.c;
  for (std::size_t group = 4; group < 16; group += 4, sums += 32) {
    NextSha256Words(w0, w1, w2, w3, schedules, group);
    FourSha256Rounds(v, bc, sums);
    NextSha256Words(w1, w2, w3, w0, schedules, group + 1);
    FourSha256Rounds(v, bc, sums + 8);
    NextSha256Words(w2, w3, w0, w1, schedules, group + 2);
    FourSha256Rounds(v, bc, sums + 16);
    NextSha256Words(w3, w0, w1, w2, schedules, group + 3);
    FourSha256Rounds(v, bc, sums + 24);
  }
  FourSha256Rounds(v, bc, sums);
  FourSha256Rounds(v, bc, sums + 8);
  FourSha256Rounds(v, bc, sums + 16);
  FourSha256Rounds(v, bc, sums + 24);
  v = v + before;
}

template <std::size_t... Group>
VNZEL_AVX2 VNZEL_INLINE void SecondSha256Block(Sha256Variables& v, const std::uint32_t* sums,
                                               std::index_sequence<Group...>) {
  const Sha256Variables before = v;
  std::uint32_t bc = v.b ^ v.c;
  (FourSha256Rounds(v, bc, sums + 8 * Group), ...);
  v = v + before;
}

}  // namespace

VNZEL_AVX2 void AbsorbSha1ByAvx2(Sha1State& state, ShaMessage& message) {
  Sha1Schedules schedules;
  const std::uint32_t* const sums = schedules.Sums();
  Sha1Variables v = {state[0], state[1], state[2], state[3], state[4]};
  while (const std::uint8_t* const first = message.Next()) {
    const std::uint8_t* const second = message.Next();
    FirstSha1Block(v, first, second == nullptr ? first : second, schedules, sums,
                   std::make_index_sequence<20>());
    if (second != nullptr) SecondSha1Block(v, sums + 4, std::make_index_sequence<20>());
  }
  state = {v.a, v.b, v.c, v.d, v.e};
}

VNZEL_AVX2 void AbsorbSha256ByAvx2(Sha256State& state, ShaMessage& message) {
  Sha256Schedules schedules;
  const std::uint32_t* const sums = schedules.Sums();
  Sha256Variables v = {state[0], state[1], state[2], state[3], state[4], state[5], state[6], state[7]};
  while (const std::uint8_t* const first = message.Next()) {
    const std::uint8_t* const second = message.Next();
    FirstSha256Block(v, first, second == nullptr ? first : second, schedules, sums);
    if (second != nullptr) SecondSha256Block(v, sums + 4, std::make_index_sequence<16>());
  }
  state = {v.a, v.b, v.c, v.d, v.e, v.f, v.g, v.h};
}

}  // namespace VnZEL10cmn::internal

#endif
