#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <set>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/codec/internal/Sha.h"
#include "VnZEL10cmn/codec/internal/TextCodecs.h"
#include "VnZEL10cmn/platform/internal/Processor.h"
#include "tests/support/Instructions.h"

using VnZEL10cmn::platform::Instructions;
using VnZEL10cmn::platform::PermitInstructions;
using VnZEL10cmn::platform::Permitted;
using VnZEL10cmn::platform::ProcessorInstructions;
using VnZEL10cmn::platform::UsableInstructions;
namespace internal = VnZEL10cmn::internal;

namespace {

constexpr Instructions kAll{true, true, true};

TEST(PermittedInstructions, AreThoseNamedThatTheProcessorHas) {
  EXPECT_EQ(Permitted(kAll, ""), Instructions{});
  EXPECT_EQ(Permitted(kAll, "ssse3"), (Instructions{true, false, false}));
  EXPECT_EQ(Permitted(kAll, "avx2,ssse3"), (Instructions{true, true, false}));
  EXPECT_EQ(Permitted(kAll, "sha"), (Instructions{false, false, true}));
  EXPECT_EQ(Permitted(kAll, "ssse3,avx2,sha"), kAll);
  EXPECT_EQ(Permitted(Instructions{}, "ssse3,avx2,sha"), Instructions{});
  EXPECT_EQ(Permitted({true, false, false}, "ssse3,avx2"), (Instructions{true, false, false}));
  EXPECT_EQ(Permitted(kAll, "sha,ssse3,sha,avx2"), kAll);
}

TEST(PermittedInstructions, AreTheSameWhenAllAre) {
  EXPECT_NE(kAll, (Instructions{false, true, true}));
  EXPECT_NE(kAll, (Instructions{true, false, true}));
  EXPECT_NE(kAll, (Instructions{true, true, false}));
}

TEST(PermittedInstructions, OtherNamesArePassedOver) {
  EXPECT_EQ(Permitted(kAll, ",SHA,avx512,,sha ,avx2,"), (Instructions{false, true, false}));
}

/// What this program was told to use, or all that the processor has.
Instructions Expected() {
  const auto permitted = test::PermittedInstructions();
  return permitted ? Permitted(ProcessorInstructions(), *permitted) : ProcessorInstructions();
}

TEST(UsableInstructions, AreThoseThatTheProgramWasTold) { EXPECT_EQ(UsableInstructions(), Expected()); }

TEST(UsableInstructions, AreThosePermittedLast) {
  for (const std::string_view list : {"ssse3", "", "ssse3,avx2", "sha", "ssse3,avx2,sha"}) {
    PermitInstructions(list);
    EXPECT_EQ(UsableInstructions(), Permitted(ProcessorInstructions(), list)) << list;
  }
  PermitInstructions(test::PermittedInstructions().value_or("ssse3,avx2,sha"));
  EXPECT_EQ(UsableInstructions(), Expected());
}

#if VNZEL_X86_64

using VnZEL10cmn::platform::CpuidRegisters;
using VnZEL10cmn::platform::InstructionsOf;

/// The bits that count, by their published numbers: of leaf 1 SSSE3, SSE4.1 and OSXSAVE in ECX, of leaf 7 BMI1,
/// AVX2, BMI2 and SHA in EBX.
constexpr std::uint32_t kSsse3 = 0x200;
constexpr std::uint32_t kSse41 = 0x80000;
constexpr std::uint32_t kOsXsave = 0x8000000;
constexpr std::uint32_t kBmi1 = 0x8;
constexpr std::uint32_t kAvx2 = 0x20;
constexpr std::uint32_t kBmi2 = 0x100;
constexpr std::uint32_t kSha = 0x20000000;

template <std::uint32_t Saved>
std::uint32_t Saves() {
  return Saved;
}

/// With these bits, and those that don't count as given.
template <std::uint32_t Saved = 6>
Instructions OfBits(std::uint32_t basic, std::uint32_t extended, std::uint32_t others) {
  const std::uint32_t otherBasic = others & ~(kSsse3 | kSse41 | kOsXsave);
  const std::uint32_t otherExtended = others & ~(kBmi1 | kAvx2 | kBmi2 | kSha);
  return InstructionsOf({others, others, basic | otherBasic, others},
                        {others, extended | otherExtended, others, others}, Saves<Saved>);
}

TEST(InstructionsOfRegisters, AreThereWhenAllBitsThatTheyNeedAre) {
  constexpr std::uint32_t basic = kSsse3 | kSse41 | kOsXsave;
  constexpr std::uint32_t extended = kBmi1 | kAvx2 | kBmi2 | kSha;
  for (const std::uint32_t others : {0U, 0xFFFFFFFFU}) {
    EXPECT_EQ(OfBits(basic, extended, others), kAll);
    EXPECT_EQ(OfBits(basic & ~kSsse3, extended, others), Instructions{});
    EXPECT_EQ(OfBits(basic & ~kSse41, extended, others), (Instructions{true, true, false}));
    EXPECT_EQ(OfBits(basic & ~kOsXsave, extended, others), (Instructions{true, false, true}));
    EXPECT_EQ(OfBits(basic, extended & ~kBmi1, others), (Instructions{true, false, true}));
    EXPECT_EQ(OfBits(basic, extended & ~kAvx2, others), (Instructions{true, false, true}));
    EXPECT_EQ(OfBits(basic, extended & ~kBmi2, others), (Instructions{true, false, true}));
    EXPECT_EQ(OfBits(basic, extended & ~kSha, others), (Instructions{true, true, false}));
    EXPECT_EQ(OfBits(kSsse3, 0, others), (Instructions{true, false, false}));
    EXPECT_EQ(OfBits(0, 0, others), Instructions{});
  }
}

// Bit 1 stands for the lower halves, bit 2 for the upper ones.
TEST(InstructionsOfRegisters, WideOnesNeedBothHalvesOfTheirRegistersKept) {
  constexpr std::uint32_t basic = kSsse3 | kSse41 | kOsXsave;
  constexpr std::uint32_t extended = kBmi1 | kAvx2 | kBmi2 | kSha;
  constexpr Instructions withoutWide{true, false, true};
  EXPECT_EQ(OfBits<0>(basic, extended, 0), withoutWide);
  EXPECT_EQ(OfBits<2>(basic, extended, 0), withoutWide);
  EXPECT_EQ(OfBits<4>(basic, extended, 0), withoutWide);
  EXPECT_EQ(OfBits<7>(basic, extended, 0), kAll);
  EXPECT_EQ(OfBits<0xFFFFFFF9>(basic, extended, 0), withoutWide);
  EXPECT_EQ(OfBits<0xFFFFFFFF>(basic, extended, 0), kAll);
}

TEST(InstructionsOfRegisters, WhatIsKeptIsAskedOnlyWhereItMayBe) {
  static int asked;
  asked = 0;
  const auto savedState = []() -> std::uint32_t {
    ++asked;
    return 6;
  };
  EXPECT_EQ(InstructionsOf({0, 0, kSsse3, 0}, {0, kBmi1 | kAvx2 | kBmi2, 0, 0}, savedState),
            (Instructions{true, false, false}));
  EXPECT_EQ(asked, 0);
  EXPECT_EQ(InstructionsOf({0, 0, kSsse3 | kOsXsave, 0}, {0, kBmi1 | kAvx2 | kBmi2, 0, 0}, savedState),
            (Instructions{true, true, false}));
  EXPECT_EQ(asked, 1);
}

#endif

#if defined(__linux__) && defined(__x86_64__)

// The system leaves out what it doesn't support itself, such as wide registers that it doesn't save.
TEST(ProcessorInstructions, AreThoseThatTheSystemNames) {
  std::ifstream file("/proc/cpuinfo");
  std::set<std::string> flags;
  for (std::string line; flags.empty() && std::getline(file, line);) {
    if (line.starts_with("flags")) {
      std::istringstream words(line.substr(line.find(':') + 1));
      flags.insert(std::istream_iterator<std::string>(words), {});
    }
  }
  if (flags.empty()) {
    GTEST_SKIP() << "the system names none";
  }
  const auto has = [&](const char* name) { return flags.contains(name); };
  const Instructions expected{has("ssse3"), has("ssse3") && has("avx2") && has("bmi1") && has("bmi2"),
                              has("ssse3") && has("sse4_1") && has("sha_ni")};
  EXPECT_EQ(ProcessorInstructions(), expected);
}

#endif

/// Bytes without a pattern.
std::vector<std::uint8_t> Noise(std::size_t count) {
  std::vector<std::uint8_t> bytes(count);
  std::uint32_t state = 2463534242U;
  for (std::uint8_t& byte : bytes) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    byte = static_cast<std::uint8_t>(state);
  }
  return bytes;
}

/// Every form of the inner loops that this processor can run, over the same inputs.
class OnEveryPath : public testing::TestWithParam<std::string_view> {
 protected:
  void SetUp() override {
    path_ = Permitted(ProcessorInstructions(), GetParam());
    if (path_ != Permitted(kAll, GetParam())) {
      GTEST_SKIP() << "this processor does not have them";
    }
  }

  Instructions path_;
};

INSTANTIATE_TEST_SUITE_P(, OnEveryPath, testing::Values("", "ssse3", "ssse3,avx2", "sha", "ssse3,avx2,sha"),
                         [](const auto& path) {
                           std::string name = path.param.empty() ? "portable" : std::string(path.param);
                           std::replace(name.begin(), name.end(), ',', '_');
                           return name;
                         });

template <class Digest>
void ExpectReference(const EVP_MD* algorithm, std::span<const std::uint8_t> message, const Digest& digest) {
  Digest expected{};
  ASSERT_EQ(EVP_Digest(message.data(), message.size(), expected.data(), nullptr, algorithm, nullptr), 1);
  EXPECT_EQ(digest, expected) << message.size() << " bytes";
}

TEST_P(OnEveryPath, DigestsAreThoseOfLibcrypto) {
  const std::vector<std::uint8_t> bytes = Noise(70000);
  for (std::size_t size = 0; size <= 300; ++size) {
    const auto message = std::span(bytes).subspan(size % 17, size);
    ExpectReference(EVP_sha1(), message, internal::Sha1(message, path_));
    ExpectReference(EVP_sha256(), message, internal::Sha256(message, path_));
  }
  ExpectReference(EVP_sha1(), bytes, internal::Sha1(bytes, path_));
  ExpectReference(EVP_sha256(), bytes, internal::Sha256(bytes, path_));
}

/// Room between two pages that nobody may touch.
class FencedRoom {
 public:
  FencedRoom()
      : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
        pages_(static_cast<std::uint8_t*>(
            mmap(nullptr, 3 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {
    if (pages_ == MAP_FAILED || mprotect(pages_ + page_, page_, PROT_READ | PROT_WRITE) != 0) {
      throw std::runtime_error("no memory");
    }
  }
  ~FencedRoom() { munmap(pages_, 3 * page_); }
  FencedRoom(const FencedRoom&) = delete;
  FencedRoom& operator=(const FencedRoom&) = delete;

  std::span<std::uint8_t> First(std::size_t count) const { return {pages_ + page_, count}; }
  std::span<std::uint8_t> Last(std::size_t count) const { return {pages_ + 2 * page_ - count, count}; }

 private:
  std::size_t page_;
  std::uint8_t* pages_;
};

TEST_P(OnEveryPath, NothingIsReadOrWrittenBesideTheInput) {
  const std::vector<std::uint8_t> bytes = Noise(300);
  const FencedRoom inputs;
  const FencedRoom outputs;
  for (std::size_t size = 0; size <= 300; ++size) {
    const auto original = std::span(bytes).first(size);
    std::string base64;
    std::string hexadecimal;
    internal::EncodeBase64(original, base64, path_);
    internal::EncodeUpperHex(original, hexadecimal, path_);
    for (const bool atEnd : {false, true}) {
      const auto place = [atEnd](const FencedRoom& room, std::size_t count) {
        return atEnd ? room.Last(count) : room.First(count);
      };
      const auto characters = [&](std::string_view text) {
        const auto room = place(inputs, text.size());
        std::copy(text.begin(), text.end(), room.begin());
        return std::string_view(reinterpret_cast<const char*>(room.data()), text.size());
      };
      const auto message = place(inputs, size);
      std::copy(original.begin(), original.end(), message.begin());
      ASSERT_EQ(internal::Sha1(message, path_), internal::Sha1(original, path_));
      ASSERT_EQ(internal::Sha256(message, path_), internal::Sha256(original, path_));
      std::string text;
      internal::EncodeBase64(message, text, path_);
      ASSERT_EQ(text, base64);
      internal::EncodeUpperHex(message, text, path_);
      ASSERT_EQ(text, hexadecimal);
      ASSERT_EQ(internal::AllAbove(characters(hexadecimal), ' ', path_), true);

      const auto decoded = place(outputs, size);
      ASSERT_EQ(internal::DecodeHexDigits(characters(hexadecimal), decoded, path_), hexadecimal.size());
      ASSERT_TRUE(std::equal(decoded.begin(), decoded.end(), original.begin(), original.end()));
      std::fill(decoded.begin(), decoded.end(), std::uint8_t{0});
      const std::size_t front = internal::DecodeBase64Digits(characters(base64), decoded, path_) / 4 * 3;
      ASSERT_LE(front, size);
      ASSERT_TRUE(std::equal(decoded.begin(), decoded.begin() + static_cast<std::ptrdiff_t>(front),
                             original.begin()));
    }
  }
}

TEST_P(OnEveryPath, Base64IsThatOfLibcrypto) {
  const std::vector<std::uint8_t> bytes = Noise(400);
  for (std::size_t size = 0; size <= 300; ++size) {
    const auto message = std::span(bytes).subspan(size % 17, size);
    std::string expected((size + 2) / 3 * 4 + 1, '\0');
    const int length = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(expected.data()), message.data(),
                                       static_cast<int>(size));
    expected.resize(static_cast<std::size_t>(length));
    std::string text = "what was there before";
    internal::EncodeBase64(message, text, path_);
    EXPECT_EQ(text, expected) << size << " bytes";
  }
}

TEST_P(OnEveryPath, Base64ReadsBackAndTouchesNothingElse) {
  const std::vector<std::uint8_t> bytes = Noise(400);
  for (std::size_t size = 0; size <= 300; size += 3) {
    const std::span<const std::uint8_t> message = std::span(bytes).first(size);
    std::string text;
    internal::EncodeBase64(message, text, path_);
    std::vector<std::uint8_t> room(size + 64, 0xEE);
    EXPECT_EQ(internal::DecodeBase64Digits(text, std::span(room).subspan(32, size), path_), text.size());
    EXPECT_TRUE(std::ranges::equal(std::span(room).subspan(32, size), message)) << size << " bytes";
    EXPECT_EQ(std::ranges::count(room, 0xEE) - std::ranges::count(message, 0xEE), 64) << size << " bytes";
  }
}

TEST_P(OnEveryPath, Base64StopsAtTheGroupThatIsNone) {
  constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::string valid(200, 'w');
  for (int value = 0; value < 256; ++value) {
    const char character = static_cast<char>(value);
    for (std::size_t at = 0; at < valid.size(); at += at < 70 ? 1 : 29) {
      std::string text = valid;
      text[at] = character;
      std::vector<std::uint8_t> out(150, 0xEE);
      const std::size_t expected =
          (digits.find(character) != std::string_view::npos) ? text.size() : at / 4 * 4;
      ASSERT_EQ(internal::DecodeBase64Digits(text, out, path_), expected) << value << " at " << at;
    }
  }
}

TEST_P(OnEveryPath, EveryBase64DigitHasItsValue) {
  constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (std::size_t value = 0; value < digits.size(); ++value) {
    for (std::size_t at = 0; at < 64; ++at) {
      std::string text(96, 'A');
      text[at] = digits[value];
      std::vector<std::uint8_t> out(72);
      ASSERT_EQ(internal::DecodeBase64Digits(text, out, path_), text.size());
      std::vector<std::uint8_t> expected(72);
      const std::size_t bit = 6 * at;
      const unsigned shifted = static_cast<unsigned>(value) << (10 - bit % 8);
      expected[bit / 8] = static_cast<std::uint8_t>(shifted >> 8);
      expected[bit / 8 + 1] = static_cast<std::uint8_t>(shifted);
      ASSERT_EQ(out, expected) << digits[value] << " at " << at;
    }
  }
}

TEST_P(OnEveryPath, HexadecimalTextIsTwoDigitsPerByte) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const std::vector<std::uint8_t> bytes = Noise(400);
  for (std::size_t size = 0; size <= 300; ++size) {
    const auto message = std::span(bytes).subspan(size % 17, size);
    std::string expected;
    for (const std::uint8_t byte : message) {
      expected.push_back(digits[byte / 16]);
      expected.push_back(digits[byte % 16]);
    }
    std::string text = "what was there before";
    internal::EncodeUpperHex(message, text, path_);
    EXPECT_EQ(text, expected);
    // Small letters here and there.
    for (std::size_t i = 0; i < text.size(); i += 1 + i % 3) {
      if (text[i] >= 'A') text[i] = static_cast<char>(text[i] + 32);
    }
    std::vector<std::uint8_t> room(size + 64, 0xEE);
    EXPECT_EQ(internal::DecodeHexDigits(text, std::span(room).subspan(32, size), path_), text.size());
    EXPECT_TRUE(std::ranges::equal(std::span(room).subspan(32, size), message)) << size << " bytes";
    EXPECT_EQ(std::ranges::count(room, 0xEE) - std::ranges::count(message, 0xEE), 64) << size << " bytes";
  }
}

TEST_P(OnEveryPath, HexadecimalTextStopsAtThePairThatIsNone) {
  constexpr std::string_view digits = "0123456789ABCDEFabcdef";
  const std::string valid(200, 'b');
  for (int value = 0; value < 256; ++value) {
    const char character = static_cast<char>(value);
    for (std::size_t at = 0; at < valid.size(); at += at < 70 ? 1 : 29) {
      std::string text = valid;
      text[at] = character;
      std::vector<std::uint8_t> out(100, 0xEE);
      const std::size_t expected =
          (digits.find(character) != std::string_view::npos) ? text.size() : at / 2 * 2;
      ASSERT_EQ(internal::DecodeHexDigits(text, out, path_), expected) << value << " at " << at;
    }
  }
}

TEST_P(OnEveryPath, CharactersAboveALimitAreAsciiToo) {
  for (std::size_t size = 0; size <= 140; ++size) {
    EXPECT_TRUE(internal::AllAbove(std::string(size, '!'), ' ', path_));
    for (std::size_t at = 0; at < size; ++at) {
      std::string text(size, '\x7F');
      for (const char refused : {' ', '\r', '\0', '\x80', '\xFF'}) {
        text[at] = refused;
        ASSERT_FALSE(internal::AllAbove(text, ' ', path_)) << at << " of " << size;
      }
    }
  }
}

}  // namespace
