#include "VnZEL10cmn/codec/internal/TextKernels.h"

#if VNZEL_X86_64

#include <immintrin.h>

#include <algorithm>

#ifdef _MSC_VER
#define VNZEL_SSSE3
#define VNZEL_AVX2
#define VNZEL_INLINE __forceinline
#else
#define VNZEL_SSSE3 __attribute__((target("ssse3")))
#define VNZEL_AVX2 __attribute__((target("avx2")))
#define VNZEL_INLINE __attribute__((always_inline)) inline
#endif

namespace VnZEL10cmn::internal {

namespace {

// Both widths take the same steps; AVX2 does them in two halves of 16 bytes at once.

VNZEL_SSSE3 VNZEL_INLINE __m128i Load(const void* from) {
  return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

VNZEL_SSSE3 VNZEL_INLINE void Store(void* to, __m128i value) {
  _mm_storeu_si128(static_cast<__m128i*>(to), value);
}

VNZEL_AVX2 VNZEL_INLINE __m256i LoadWide(const void* from) {
  return _mm256_loadu_si256(static_cast<const __m256i*>(from));
}

VNZEL_AVX2 VNZEL_INLINE void StoreWide(void* to, __m256i value) {
  _mm256_storeu_si256(static_cast<__m256i*>(to), value);
}

/// 16 bytes for every half.
struct alignas(16) Table {
  signed char bytes[16];
};

VNZEL_AVX2 VNZEL_INLINE __m256i Twice(const Table& table) {
  return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(table.bytes)));
}

// Base64, encoding: each 32 bits receive three bytes, as 1 0 2 1, of which multiplications make four values of six
// bits.
constexpr Table kSpread = {{1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10}};
constexpr int kOuterBits = 0x0FC0FC00;
constexpr int kInnerBits = 0x003F03F0;
constexpr int kOuterShifts = 0x04000040;
constexpr int kInnerShifts = 0x01000010;
// What turns a value into its character: a small letter, ten digits, "+", "/", a capital.
constexpr Table kToCharacter = {{71, -4, -4, -4, -4, -4, -4, -4, -4, -4, -4, -19, -16, 65, 0, 0}};

// Base64, decoding: a character is a digit if its lower half allows the row of characters that its upper half names.
// Characters beyond ASCII find no lower half.
constexpr Table kRowsOfLow = {{0x2A, 0x3E, 0x3E, 0x3E, 0x3E, 0x3E, 0x3E, 0x3E,  //
                               0x3E, 0x3E, 0x3C, 0x15, 0x14, 0x14, 0x14, 0x15}};
constexpr Table kRowOfHigh = {{0, 0, 0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0, 0, 0, 0, 0, 0, 0, 0}};
// What turns a character into its value, by its upper half; that of "/" comes to three too many.
constexpr Table kToValue = {{0, 0, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0}};
constexpr int kMostValue = 63;
constexpr int kJoinPairs = 0x01400140;
constexpr int kJoinQuads = 0x00011000;
constexpr Table kGather = {{2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1}};

// Hexadecimal text, decoding.
constexpr short kJoinDigits = 0x0110;

VNZEL_SSSE3 VNZEL_INLINE __m128i FromTable(const Table& table) {
  return _mm_load_si128(reinterpret_cast<const __m128i*>(table.bytes));
}

}  // namespace

// From the end to the front: who asks this reads the text from the front next, which is then still at hand.

VNZEL_SSSE3 bool AllAboveSsse3(const char* text, std::size_t count, char low, std::size_t& taken) {
  const __m128i limit = _mm_set1_epi8(low);
  __m128i above = _mm_set1_epi8(-1);
  taken = count / 16 * 16;
  for (std::size_t at = taken; at > 0; at -= 16) {
    above = _mm_and_si128(above, _mm_cmpgt_epi8(Load(text + at - 16), limit));
  }
  return _mm_movemask_epi8(above) == 0xFFFF;
}

VNZEL_AVX2 bool AllAboveAvx2(const char* text, std::size_t count, char low, std::size_t& taken) {
  taken = count / 64 * 64;
  if (taken == 0) {
    return true;
  }
  __m256i least = _mm256_set1_epi8(127);
  __m256i leastToo = least;
  for (std::size_t at = taken; at > 0; at -= 64) {
    least = _mm256_min_epi8(least, LoadWide(text + at - 32));
    leastToo = _mm256_min_epi8(leastToo, LoadWide(text + at - 64));
  }
  const __m256i above = _mm256_cmpgt_epi8(_mm256_min_epi8(least, leastToo), _mm256_set1_epi8(low));
  return _mm256_movemask_epi8(above) == -1;
}

VNZEL_SSSE3 std::size_t EncodeBase64Ssse3(const std::uint8_t* bytes, std::size_t count, char* out) {
  std::size_t taken = 0;
  for (; count - taken >= 16; taken += 12, out += 16) {
    const __m128i spread = _mm_shuffle_epi8(Load(bytes + taken), FromTable(kSpread));
    const __m128i outer =
        _mm_mulhi_epu16(_mm_and_si128(spread, _mm_set1_epi32(kOuterBits)), _mm_set1_epi32(kOuterShifts));
    const __m128i inner =
        _mm_mullo_epi16(_mm_and_si128(spread, _mm_set1_epi32(kInnerBits)), _mm_set1_epi32(kInnerShifts));
    const __m128i values = _mm_or_si128(outer, inner);
    const __m128i capitals = _mm_cmpgt_epi8(_mm_set1_epi8(26), values);
    const __m128i kinds =
        _mm_or_si128(_mm_subs_epu8(values, _mm_set1_epi8(51)), _mm_and_si128(capitals, _mm_set1_epi8(13)));
    Store(out, _mm_add_epi8(values, _mm_shuffle_epi8(FromTable(kToCharacter), kinds)));
  }
  return taken;
}

VNZEL_AVX2 std::size_t EncodeBase64Avx2(const std::uint8_t* bytes, std::size_t count, char* out) {
  std::size_t taken = 0;
  for (; count - taken >= 28; taken += 24, out += 32) {
    const __m256i groups = _mm256_inserti128_si256(
        _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + taken))),
        _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + taken + 12)), 1);
    const __m256i spread = _mm256_shuffle_epi8(groups, Twice(kSpread));
    const __m256i outer = _mm256_mulhi_epu16(_mm256_and_si256(spread, _mm256_set1_epi32(kOuterBits)),
                                             _mm256_set1_epi32(kOuterShifts));
    const __m256i inner = _mm256_mullo_epi16(_mm256_and_si256(spread, _mm256_set1_epi32(kInnerBits)),
                                             _mm256_set1_epi32(kInnerShifts));
    const __m256i values = _mm256_or_si256(outer, inner);
    const __m256i capitals = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), values);
    const __m256i kinds = _mm256_or_si256(_mm256_subs_epu8(values, _mm256_set1_epi8(51)),
                                          _mm256_and_si256(capitals, _mm256_set1_epi8(13)));
    StoreWide(out, _mm256_add_epi8(values, _mm256_shuffle_epi8(Twice(kToCharacter), kinds)));
  }
  return taken;
}

VNZEL_SSSE3 std::size_t DecodeBase64Ssse3(const char* text, std::size_t count, std::uint8_t* out,
                                          std::size_t room) {
  std::size_t taken = 0;
  for (std::size_t written = 0; count - taken >= 16 && room - written >= 16; taken += 16, written += 12) {
    const __m128i characters = Load(text + taken);
    const __m128i high = _mm_and_si128(_mm_srli_epi32(characters, 4), _mm_set1_epi8(0x0F));
    const __m128i rows = _mm_and_si128(_mm_shuffle_epi8(FromTable(kRowsOfLow), characters),
                                       _mm_shuffle_epi8(FromTable(kRowOfHigh), high));
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(rows, _mm_setzero_si128())) != 0) break;
    const __m128i sums = _mm_add_epi8(characters, _mm_shuffle_epi8(FromTable(kToValue), high));
    const __m128i values = _mm_min_epu8(sums, _mm_set1_epi8(kMostValue));
    const __m128i pairs = _mm_maddubs_epi16(values, _mm_set1_epi32(kJoinPairs));
    const __m128i quads = _mm_madd_epi16(pairs, _mm_set1_epi32(kJoinQuads));
    Store(out + written, _mm_shuffle_epi8(quads, FromTable(kGather)));
  }
  return taken;
}

namespace {

/// The values of 32 characters, a byte each; `rows` receives something for every one that is a digit.
VNZEL_AVX2 VNZEL_INLINE __m256i Base64Values(__m256i characters, __m256i& rows) {
  const __m256i high = _mm256_and_si256(_mm256_srli_epi32(characters, 4), _mm256_set1_epi8(0x0F));
  rows = _mm256_and_si256(_mm256_shuffle_epi8(Twice(kRowsOfLow), characters),
                          _mm256_shuffle_epi8(Twice(kRowOfHigh), high));
  const __m256i sums = _mm256_add_epi8(characters, _mm256_shuffle_epi8(Twice(kToValue), high));
  return _mm256_min_epu8(sums, _mm256_set1_epi8(kMostValue));
}

/// Their 24 bytes, with eight zeros behind them.
VNZEL_AVX2 VNZEL_INLINE __m256i Base64Bytes(__m256i values) {
  const __m256i pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi32(kJoinPairs));
  const __m256i quads = _mm256_madd_epi16(pairs, _mm256_set1_epi32(kJoinQuads));
  const __m256i gathered = _mm256_shuffle_epi8(quads, Twice(kGather));
  return _mm256_permutevar8x32_epi32(gathered, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
}

}  // namespace

VNZEL_AVX2 std::size_t DecodeBase64Avx2(const char* text, std::size_t count, std::uint8_t* out,
                                        std::size_t room) {
  // The last store needs the eight bytes more that it fills with zeros.
  const std::size_t steps = std::min(count / 64, room < 8 ? 0 : (room - 8) / 48);
  std::size_t step = 0;
  for (; step < steps; ++step, text += 64, out += 48) {
    __m256i rows;
    __m256i rowsToo;
    const __m256i first = Base64Values(LoadWide(text), rows);
    const __m256i second = Base64Values(LoadWide(text + 32), rowsToo);
    const __m256i least = _mm256_min_epu8(rows, rowsToo);
    if (_mm256_movemask_epi8(_mm256_cmpeq_epi8(least, _mm256_setzero_si256())) != 0) break;
    StoreWide(out, Base64Bytes(first));
    StoreWide(out + 24, Base64Bytes(second));
  }
  return step * 64;
}

VNZEL_SSSE3 std::size_t EncodeHexSsse3(const std::uint8_t* bytes, std::size_t count, const char* digits,
                                       char* out) {
  const __m128i half = _mm_set1_epi8(0x0F);
  const __m128i table = Load(digits);
  std::size_t taken = 0;
  for (; count - taken >= 16; taken += 16, out += 32) {
    const __m128i values = Load(bytes + taken);
    const __m128i high = _mm_shuffle_epi8(table, _mm_and_si128(_mm_srli_epi16(values, 4), half));
    const __m128i low = _mm_shuffle_epi8(table, _mm_and_si128(values, half));
    Store(out, _mm_unpacklo_epi8(high, low));
    Store(out + 16, _mm_unpackhi_epi8(high, low));
  }
  return taken;
}

VNZEL_AVX2 std::size_t EncodeHexAvx2(const std::uint8_t* bytes, std::size_t count, const char* digits,
                                     char* out) {
  const __m256i half = _mm256_set1_epi8(0x0F);
  const __m256i table =
      _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(digits)));
  std::size_t taken = 0;
  for (; count - taken >= 32; taken += 32, out += 64) {
    const __m256i values = LoadWide(bytes + taken);
    const __m256i high = _mm256_shuffle_epi8(table, _mm256_and_si256(_mm256_srli_epi16(values, 4), half));
    const __m256i low = _mm256_shuffle_epi8(table, _mm256_and_si256(values, half));
    const __m256i first = _mm256_unpacklo_epi8(high, low);
    const __m256i second = _mm256_unpackhi_epi8(high, low);
    StoreWide(out, _mm256_permute2x128_si256(first, second, 0x20));
    StoreWide(out + 32, _mm256_permute2x128_si256(first, second, 0x31));
  }
  return taken;
}

namespace {

/// The values of 16 characters, a byte each; `valid` keeps its bits where they are digits.
VNZEL_SSSE3 VNZEL_INLINE __m128i HexValues(__m128i characters, __m128i& valid) {
  const __m128i digit = _mm_sub_epi8(characters, _mm_set1_epi8('0'));
  const __m128i letter = _mm_sub_epi8(_mm_or_si128(characters, _mm_set1_epi8(0x20)), _mm_set1_epi8('a'));
  const __m128i isDigit = _mm_cmpeq_epi8(_mm_min_epu8(digit, _mm_set1_epi8(9)), digit);
  const __m128i isLetter = _mm_cmpeq_epi8(_mm_min_epu8(letter, _mm_set1_epi8(5)), letter);
  valid = _mm_and_si128(valid, _mm_or_si128(isDigit, isLetter));
  return _mm_or_si128(_mm_and_si128(isDigit, digit),
                      _mm_andnot_si128(isDigit, _mm_add_epi8(letter, _mm_set1_epi8(10))));
}

VNZEL_AVX2 VNZEL_INLINE __m256i HexValuesWide(__m256i characters, __m256i& valid) {
  const __m256i digit = _mm256_sub_epi8(characters, _mm256_set1_epi8('0'));
  const __m256i letter =
      _mm256_sub_epi8(_mm256_or_si256(characters, _mm256_set1_epi8(0x20)), _mm256_set1_epi8('a'));
  const __m256i isDigit = _mm256_cmpeq_epi8(_mm256_min_epu8(digit, _mm256_set1_epi8(9)), digit);
  const __m256i isLetter = _mm256_cmpeq_epi8(_mm256_min_epu8(letter, _mm256_set1_epi8(5)), letter);
  valid = _mm256_and_si256(valid, _mm256_or_si256(isDigit, isLetter));
  return _mm256_blendv_epi8(_mm256_add_epi8(letter, _mm256_set1_epi8(10)), digit, isDigit);
}

}  // namespace

VNZEL_SSSE3 std::size_t DecodeHexSsse3(const char* text, std::size_t count, std::uint8_t* out) {
  const __m128i join = _mm_set1_epi16(kJoinDigits);
  std::size_t taken = 0;
  for (; count - taken >= 32; taken += 32, out += 16) {
    __m128i valid = _mm_set1_epi8(-1);
    const __m128i first = _mm_maddubs_epi16(HexValues(Load(text + taken), valid), join);
    const __m128i second = _mm_maddubs_epi16(HexValues(Load(text + taken + 16), valid), join);
    if (_mm_movemask_epi8(valid) != 0xFFFF) break;
    Store(out, _mm_packus_epi16(first, second));
  }
  return taken;
}

VNZEL_AVX2 std::size_t DecodeHexAvx2(const char* text, std::size_t count, std::uint8_t* out) {
  const __m256i join = _mm256_set1_epi16(kJoinDigits);
  std::size_t taken = 0;
  for (; count - taken >= 64; taken += 64, out += 32) {
    __m256i valid = _mm256_set1_epi8(-1);
    const __m256i first = _mm256_maddubs_epi16(HexValuesWide(LoadWide(text + taken), valid), join);
    const __m256i second = _mm256_maddubs_epi16(HexValuesWide(LoadWide(text + taken + 32), valid), join);
    if (_mm256_movemask_epi8(valid) != -1) break;
    StoreWide(out, _mm256_permute4x64_epi64(_mm256_packus_epi16(first, second), 0xD8));
  }
  return taken;
}

}  // namespace VnZEL10cmn::internal

#endif
