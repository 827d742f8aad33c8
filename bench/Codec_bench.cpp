#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <array>
#include <vector>

#include "Support.h"

namespace {

using namespace VnZEL10cmn;

void DataSizes(benchmark::internal::Benchmark* benchmark) { benchmark->Arg(64)->Arg(1024)->Arg(1 << 20); }

void Rate(benchmark::State& state) { state.SetBytesProcessed(state.iterations() * state.range(0)); }

ByteArray Data(const benchmark::State& state) {
  return bench::Bytes(static_cast<std::int32_t>(state.range(0)));
}

void BM_Sha1(benchmark::State& state) {
  const ByteArray data = Data(state);
  clsHelper01 helper;
  ByteArray digest;
  for (auto _ : state) {
    helper.GetSHA1Hash1(data, digest);
    benchmark::DoNotOptimize(digest.data());
  }
  Rate(state);
}
BENCHMARK(BM_Sha1)->Apply(DataSizes);

void BM_Sha256(benchmark::State& state) {
  const ByteArray data = Data(state);
  clsHelper01 helper;
  ByteArray digest;
  for (auto _ : state) {
    helper.GetSHA256Hash1(data, digest);
    benchmark::DoNotOptimize(digest.data());
  }
  Rate(state);
}
BENCHMARK(BM_Sha256)->Apply(DataSizes);

void Libcrypto(benchmark::State& state, const EVP_MD* algorithm) {
  const ByteArray data = Data(state);
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  for (auto _ : state) {
    EVP_Digest(data.data(), data.size(), digest.data(), nullptr, algorithm, nullptr);
    benchmark::DoNotOptimize(digest.data());
  }
  Rate(state);
}

void BM_Sha1_libcrypto(benchmark::State& state) { Libcrypto(state, EVP_sha1()); }
BENCHMARK(BM_Sha1_libcrypto)->Apply(DataSizes);

void BM_Sha256_libcrypto(benchmark::State& state) { Libcrypto(state, EVP_sha256()); }
BENCHMARK(BM_Sha256_libcrypto)->Apply(DataSizes);

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
BENCHMARK(BM_Base64Encode)->Apply(DataSizes);

void BM_Base64Encode_libcrypto(benchmark::State& state) {
  const ByteArray data = Data(state);
  std::vector<unsigned char> text(data.size() * 4 / 3 + 8);
  for (auto _ : state) {
    EVP_EncodeBlock(text.data(), data.data(), static_cast<int>(data.size()));
    benchmark::DoNotOptimize(text.data());
  }
  Rate(state);
}
BENCHMARK(BM_Base64Encode_libcrypto)->Apply(DataSizes);

void BM_Base64Decode(benchmark::State& state) {
  clsHelper01 helper;
  std::string text;
  helper.ToBase64String(Data(state), text);
  ByteArray data;
  for (auto _ : state) {
    helper.FromBase64String(text, data);
    benchmark::DoNotOptimize(data.data());
  }
  Rate(state);
}
BENCHMARK(BM_Base64Decode)->Apply(DataSizes);

void BM_Base64Decode_libcrypto(benchmark::State& state) {
  clsHelper01 helper;
  std::string text;
  helper.ToBase64String(Data(state), text);
  std::vector<unsigned char> data(text.size());
  for (auto _ : state) {
    EVP_DecodeBlock(data.data(), reinterpret_cast<const unsigned char*>(text.data()),
                    static_cast<int>(text.size()));
    benchmark::DoNotOptimize(data.data());
  }
  Rate(state);
}
BENCHMARK(BM_Base64Decode_libcrypto)->Apply(DataSizes);

}  // namespace
