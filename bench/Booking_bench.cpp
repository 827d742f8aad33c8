#include <benchmark/benchmark.h>

#include <utility>

#include "Support.h"

namespace {

using namespace VnZEL10cmn;

void ItemSizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(10)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);
}

void PerItem(benchmark::State& state) {
  state.counters["per_item"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                                                  benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

/// What nobody can avoid, by libcrypto: the measure of what follows.
void BM_Floor(benchmark::State& state) {
  bench::Floor floor(static_cast<std::int32_t>(state.range(0)));
  for (auto _ : state) {
    floor.Run();
    benchmark::DoNotOptimize(floor.Text());
    benchmark::ClobberMemory();
  }
  PerItem(state);
}
BENCHMARK(BM_Floor)->Arg(10)->Unit(benchmark::kMicrosecond);

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

/// The items, which stay, put into the emptied booking again, then the request.
void BM_RequestItemsAgain(benchmark::State& state) {
  const auto booking =
      bench::Booking(static_cast<std::int32_t>(state.range(0)), std::make_shared<clsZelVatList>());
  const std::vector<std::shared_ptr<IVnZelItem>> items(booking->begin(), booking->end());
  for (auto _ : state) {
    booking->Clear();
    booking->Operator("kasse 1");
    for (const auto& item : items) {
      booking->AddItem(item);
    }
    benchmark::DoNotOptimize(bench::Request(*booking));
  }
  PerItem(state);
}
BENCHMARK(BM_RequestItemsAgain)->Arg(10)->Unit(benchmark::kMicrosecond);

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

std::string Document(std::int32_t items) {
  const auto booking = bench::Booking(items, std::make_shared<clsZelVatList>());
  bench::Request(*booking);
  booking->BinaryDataSet(ZELSerialType::Response, bench::Response(), 0);
  std::string document;
  if (!booking->XmlHandler(document, true)) {
    throw std::runtime_error(booking->ErrorObject().GetLogEntry());
  }
  return document;
}

void BM_XmlExport(benchmark::State& state) {
  std::string document = Document(static_cast<std::int32_t>(state.range(0)));
  clsZelTransAct booking;
  booking.XmlHandler(document, false);
  for (auto _ : state) {
    if (!booking.XmlHandler(document, true)) {
      state.SkipWithError("not exported");
    }
  }
  PerItem(state);
}
BENCHMARK(BM_XmlExport)->Apply(ItemSizes);

/// A document with its response into a new booking.
void BM_XmlImport(benchmark::State& state) {
  std::string document = Document(static_cast<std::int32_t>(state.range(0)));
  for (auto _ : state) {
    clsZelTransAct imported;
    if (!imported.XmlHandler(document, false)) {
      state.SkipWithError("not imported");
    }
  }
  PerItem(state);
}
BENCHMARK(BM_XmlImport)->Apply(ItemSizes);

/// A list and the IDs of its items, which are asked for last: between the items they would spread these over more
/// memory, and reading the IDs alone would take a fifth of the time.
struct FilledList {
  explicit FilledList(std::int64_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
      list.AddItem(bench::Item(i));
    }
    for (const auto& item : list) {
      ids.push_back(item->InstanceID());
    }
  }
  clsZelItemList list;
  std::vector<std::string> ids;
};

/// Each item once, by its instance ID.
void BM_ItemByID(benchmark::State& state) {
  const FilledList filled(state.range(0));
  for (auto _ : state) {
    for (const std::string& id : filled.ids) {
      if (!filled.list.ItemK(id)) state.SkipWithError("not found");
    }
  }
  PerItem(state);
}
BENCHMARK(BM_ItemByID)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);

/// Each item once, by its instance ID, till none is left.
void BM_RemoveItemByID(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto filled = std::make_unique<FilledList>(state.range(0));
    state.ResumeTiming();
    for (const std::string& id : filled->ids) {
      filled->list.RemoveItem(nullptr, id);
    }
    if (filled->list.ItemCount() != 0) state.SkipWithError("not removed");
    state.PauseTiming();
    filled.reset();
    state.ResumeTiming();
  }
  PerItem(state);
}
BENCHMARK(BM_RemoveItemByID)->Arg(100)->Arg(100000)->Unit(benchmark::kMicrosecond);

}  // namespace
