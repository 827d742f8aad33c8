#include <benchmark/benchmark.h>

#include "Support.h"

namespace {

using namespace VnZEL10cmn;

void ItemSizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(1)->Arg(10)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);
}

void PerItem(benchmark::State& state) {
  state.counters["per_item"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                                                  benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

/// All objects made anew, then the request.
void BM_RequestNewObjects(benchmark::State& state) {
  const auto rates = std::make_shared<clsZelVatList>();
  for (auto _ : state) {
    const auto booking = bench::Booking(static_cast<std::int32_t>(state.range(0)), rates);
    benchmark::DoNotOptimize(bench::Request(*booking));
  }
  PerItem(state);
}
BENCHMARK(BM_RequestNewObjects)->Apply(ItemSizes);

/// The request alone, of a booking that stays.
void BM_RequestKeptObjects(benchmark::State& state) {
  const auto booking =
      bench::Booking(static_cast<std::int32_t>(state.range(0)), std::make_shared<clsZelVatList>());
  for (auto _ : state) {
    benchmark::DoNotOptimize(bench::Request(*booking));
  }
  PerItem(state);
}
BENCHMARK(BM_RequestKeptObjects)->Apply(ItemSizes);

void BM_DecodeItemList(benchmark::State& state) {
  clsZelItemList list;
  for (std::int32_t i = 0; i < state.range(0); ++i) {
    list.AddItem(bench::Item(i));
  }
  ByteArray data;
  std::int32_t length = 0;
  list.BinaryDataGet(data, length);
  data.RedimPreserve(length - 1);
  clsZelItemList decoded;
  for (auto _ : state) {
    std::int32_t start = 0;
    if (!decoded.BinaryDataSet(data, start)) {
      state.SkipWithError("not decoded");
    }
  }
  PerItem(state);
}
BENCHMARK(BM_DecodeItemList)->Apply(ItemSizes);

void BM_XmlExport(benchmark::State& state) {
  const auto booking =
      bench::Booking(static_cast<std::int32_t>(state.range(0)), std::make_shared<clsZelVatList>());
  bench::Request(*booking);
  booking->BinaryDataSet(ZELSerialType::Response, bench::Response(), 0);
  std::string document;
  for (auto _ : state) {
    if (!booking->XmlHandler(document, true)) {
      state.SkipWithError("not exported");
    }
  }
  PerItem(state);
}
BENCHMARK(BM_XmlExport)->Apply(ItemSizes);

void BM_XmlImport(benchmark::State& state) {
  const auto booking =
      bench::Booking(static_cast<std::int32_t>(state.range(0)), std::make_shared<clsZelVatList>());
  bench::Request(*booking);
  booking->BinaryDataSet(ZELSerialType::Response, bench::Response(), 0);
  std::string document;
  booking->XmlHandler(document, true);
  clsZelTransAct imported;
  for (auto _ : state) {
    if (!imported.XmlHandler(document, false)) {
      state.SkipWithError("not imported");
    }
  }
  PerItem(state);
}
BENCHMARK(BM_XmlImport)->Apply(ItemSizes);

}  // namespace
