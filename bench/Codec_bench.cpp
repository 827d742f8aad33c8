#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Support.h"
#include "VnZEL10cmn/codec/internal/Sha.h"

namespace {

using namespace VnZEL10cmn;

constexpr std::int64_t kMebibyte = 1 << 20;

void Messages(benchmark::internal::Benchmark* benchmark) { benchmark->Arg(64)->Arg(400)->Arg(kMebibyte); }

void Rate(benchmark::State& state) { state.SetBytesProcessed(state.iterations() * state.range(0)); }

ByteArray Data(const benchmark::State& state) {
  return bench::Bytes(static_cast<std::int32_t>(state.range(0)));
}

std::span<const std::uint8_t> BytesOf(const ByteArray& data) { return {data.data(), data.size()}; }

// ---- Hashes: the library's internal digest, and libcrypto's of the same bytes.

void BM_Sha1(benchmark::State& state) {
  const ByteArray data = Data(state);
  for (auto _ : state) {
    auto digest = internal::Sha1(BytesOf(data));
    benchmark::DoNotOptimize(digest);
  }
  Rate(state);
}
BENCHMARK(BM_Sha1)->Apply(Messages);

void BM_Sha256(benchmark::State& state) {
  const ByteArray data = Data(state);
  for (auto _ : state) {
    auto digest = internal::Sha256(BytesOf(data));
    benchmark::DoNotOptimize(digest);
  }
  Rate(state);
}
BENCHMARK(BM_Sha256)->Apply(Messages);

void Libcrypto(benchmark::State& state, const EVP_MD* algorithm) {
  const ByteArray data = Data(state);
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  for (auto _ : state) {
    EVP_Digest(data.data(), data.size(), digest.data(), nullptr, algorithm, nullptr);
    benchmark::DoNotOptimize(digest);
  }
  Rate(state);
}

void BM_Sha1_libcrypto(benchmark::State& state) { Libcrypto(state, EVP_sha1()); }
BENCHMARK(BM_Sha1_libcrypto)->Apply(Messages);

void BM_Sha256_libcrypto(benchmark::State& state) { Libcrypto(state, EVP_sha256()); }
BENCHMARK(BM_Sha256_libcrypto)->Apply(Messages);

// ---- Texts: through clsHelper01; by a plain loop over a table, which reuses its result's memory; by libcrypto.

constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

using Values = std::array<std::uint8_t, 256>;

Values ValuesOf(std::string_view digits) {
  Values values;
  values.fill(255);
  for (std::size_t i = 0; i < digits.size(); ++i) {
    values[static_cast<unsigned char>(digits[i])] = static_cast<std::uint8_t>(i);
  }
  return values;
}

[[gnu::noinline]] void PlainEncodeBase64(std::span<const std::uint8_t> bytes, std::string& text) {
  text.resize((bytes.size() + 2) / 3 * 4);
  char* out = text.data();
  std::size_t i = 0;
  for (; i + 3 <= bytes.size(); i += 3) {
    const unsigned group = static_cast<unsigned>(bytes[i] << 16 | bytes[i + 1] << 8 | bytes[i + 2]);
    *out++ = kBase64Digits[group >> 18];
    *out++ = kBase64Digits[group >> 12 & 63];
    *out++ = kBase64Digits[group >> 6 & 63];
    *out++ = kBase64Digits[group & 63];
  }
  if (i < bytes.size()) {
    const bool two = i + 1 < bytes.size();
    const unsigned group = static_cast<unsigned>(bytes[i] << 16 | (two ? bytes[i + 1] << 8 : 0));
    *out++ = kBase64Digits[group >> 18];
    *out++ = kBase64Digits[group >> 12 & 63];
    *out++ = two ? kBase64Digits[group >> 6 & 63] : '=';
    *out++ = '=';
  }
}

[[gnu::noinline]] bool PlainDecodeBase64(std::string_view text, const Values& values,
                                         std::vector<std::uint8_t>& bytes) {
  const std::size_t pads = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
  bytes.resize(text.size() / 4 * 3 - pads);
  std::uint8_t* out = bytes.data();
  const std::size_t whole = pads == 0 ? text.size() : text.size() - 4;
  const auto value = [&](std::size_t at) { return unsigned{values[static_cast<unsigned char>(text[at])]}; };
  for (std::size_t i = 0; i < whole; i += 4) {
    const unsigned a = value(i);
    const unsigned b = value(i + 1);
    const unsigned c = value(i + 2);
    const unsigned d = value(i + 3);
    if ((a | b | c | d) > 63) return false;
    *out++ = static_cast<std::uint8_t>(a << 2 | b >> 4);
    *out++ = static_cast<std::uint8_t>(b << 4 | c >> 2);
    *out++ = static_cast<std::uint8_t>(c << 6 | d);
  }
  if (pads > 0) {
    *out++ = static_cast<std::uint8_t>(value(whole) << 2 | value(whole + 1) >> 4);
    if (pads == 1) *out = static_cast<std::uint8_t>(value(whole + 1) << 4 | value(whole + 2) >> 2);
  }
  return true;
}

[[gnu::noinline]] void PlainEncodeHex(std::span<const std::uint8_t> bytes, std::string& text) {
  text.resize(bytes.size() * 2);
  char* out = text.data();
  for (const std::uint8_t byte : bytes) {
    *out++ = kHexDigits[byte >> 4];
    *out++ = kHexDigits[byte & 15];
  }
}

[[gnu::noinline]] bool PlainDecodeHex(std::string_view text, const Values& values,
                                      std::vector<std::uint8_t>& bytes) {
  bytes.resize(text.size() / 2);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const unsigned high = values[static_cast<unsigned char>(text[2 * i])];
    const unsigned low = values[static_cast<unsigned char>(text[2 * i + 1])];
    if ((high | low) > 15) return false;
    bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
  }
  return true;
}

void BM_Base64Encode(benchmark::State& state) {
  const ByteArray data = Data(state);
  clsHelper01 helper;
  std::string text;
  for (auto _ : state) {
    helper.ToBase64String(data, text);
    benchmark::DoNotOptimize(text.data());
  }
  Rate(state);
}
BENCHMARK(BM_Base64Encode)->Arg(kMebibyte);

void BM_Base64Encode_plain(benchmark::State& state) {
  const ByteArray data = Data(state);
  std::string text;
  for (auto _ : state) {
    PlainEncodeBase64(BytesOf(data), text);
    benchmark::DoNotOptimize(text.data());
  }
  Rate(state);
}
BENCHMARK(BM_Base64Encode_plain)->Arg(kMebibyte);

void BM_Base64Encode_libcrypto(benchmark::State& state) {
  const ByteArray data = Data(state);
  std::vector<unsigned char> text(data.size() * 4 / 3 + 8);
  for (auto _ : state) {
    EVP_EncodeBlock(text.data(), data.data(), static_cast<int>(data.size()));
    benchmark::DoNotOptimize(text.data());
  }
  Rate(state);
}
BENCHMARK(BM_Base64Encode_libcrypto)->Arg(kMebibyte);

void BM_Base64Decode(benchmark::State& state) {
  clsHelper01 helper;
  std::string text;
  helper.ToBase64String(Data(state), text);
  ByteArray data;
  for (auto _ : state) {
    if (!helper.FromBase64String(text, data)) state.SkipWithError("not decoded");
    benchmark::DoNotOptimize(data.data());
  }
  Rate(state);
}
BENCHMARK(BM_Base64Decode)->Arg(kMebibyte);

void BM_Base64Decode_plain(benchmark::State& state) {
  std::string text;
  PlainEncodeBase64(BytesOf(Data(state)), text);
  const Values values = ValuesOf(kBase64Digits);
  std::vector<std::uint8_t> data;
  for (auto _ : state) {
    if (!PlainDecodeBase64(text, values, data)) state.SkipWithError("not decoded");
    benchmark::DoNotOptimize(data.data());
  }
  Rate(state);
}
BENCHMARK(BM_Base64Decode_plain)->Arg(kMebibyte);

void BM_Base64Decode_libcrypto(benchmark::State& state) {
  std::string text;
  PlainEncodeBase64(BytesOf(Data(state)), text);
  std::vector<unsigned char> data(text.size());
  for (auto _ : state) {
    EVP_DecodeBlock(data.data(), reinterpret_cast<const unsigned char*>(text.data()),
                    static_cast<int>(text.size()));
    benchmark::DoNotOptimize(data.data());
  }
  Rate(state);
}
BENCHMARK(BM_Base64Decode_libcrypto)->Arg(kMebibyte);

void BM_HexEncode(benchmark::State& state) {
  const ByteArray data = Data(state);
  clsHelper01 helper;
  std::string text;
  for (auto _ : state) {
    helper.GetBinStrOfBytes(data, text);
    benchmark::DoNotOptimize(text.data());
  }
  Rate(state);
}
BENCHMARK(BM_HexEncode)->Arg(kMebibyte);

void BM_HexEncode_plain(benchmark::State& state) {
  const ByteArray data = Data(state);
  std::string text;
  for (auto _ : state) {
    PlainEncodeHex(BytesOf(data), text);
    benchmark::DoNotOptimize(text.data());
  }
  Rate(state);
}
BENCHMARK(BM_HexEncode_plain)->Arg(kMebibyte);

void BM_HexDecode(benchmark::State& state) {
  clsHelper01 helper;
  std::string text;
  helper.GetBinStrOfBytes(Data(state), text);
  ByteArray data;
  for (auto _ : state) {
    if (!helper.GetBytesOfBinStr(text, data)) state.SkipWithError("not decoded");
    benchmark::DoNotOptimize(data.data());
  }
  Rate(state);
}
BENCHMARK(BM_HexDecode)->Arg(kMebibyte);

void BM_HexDecode_plain(benchmark::State& state) {
  std::string text;
  PlainEncodeHex(BytesOf(Data(state)), text);
  const Values values = ValuesOf(kHexDigits);
  std::vector<std::uint8_t> data;
  for (auto _ : state) {
    if (!PlainDecodeHex(text, values, data)) state.SkipWithError("not decoded");
    benchmark::DoNotOptimize(data.data());
  }
  Rate(state);
}
BENCHMARK(BM_HexDecode_plain)->Arg(kMebibyte);

}  // namespace
