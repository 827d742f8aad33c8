#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace zel {

/// Works on many inputs at once and hands the results out in the order of the inputs.
///
/// `next()` gives an optional input, none at the end; `work(input)` makes the result and runs on `threads`
/// threads, the caller's among them; `deliver(result)` takes it. `next` is called by one thread at a time, and so
/// is `deliver`, each as soon as it can be, so that an answer doesn't wait for the following input. However
/// many inputs there are, no more than a few per thread are held. The first exception ends all and is thrown.
template <typename Next, typename Work, typename Deliver>
void RunPipeline(unsigned threads, Next&& next, Work&& work, Deliver&& deliver) {
  using Input = typename decltype(next())::value_type;
  using Result = decltype(work(std::declval<Input&>()));
  constexpr std::size_t kHeldPerThread = 8;
  const std::size_t mostHeld = kHeldPerThread * threads;

  std::mutex inputs;
  std::size_t taken = 0;
  bool atEnd = false;

  std::mutex results;
  std::condition_variable room;
  std::map<std::size_t, Result> waiting;
  std::size_t delivered = 0;
  std::exception_ptr failure;

  const auto takeInput = [&]() -> std::optional<std::pair<std::size_t, Input>> {
    const std::lock_guard inputLock(inputs);
    {
      std::unique_lock resultLock(results);
      room.wait(resultLock, [&] { return taken - delivered < mostHeld || failure; });
      if (failure) return std::nullopt;
    }
    if (atEnd) return std::nullopt;
    std::optional<Input> input = next();
    if (!input) {
      atEnd = true;
      return std::nullopt;
    }
    return std::pair(taken++, std::move(*input));
  };
  const auto takeResult = [&](std::size_t number, Result result) {
    const std::lock_guard lock(results);
    waiting.emplace(number, std::move(result));
    while (!failure && !waiting.empty() && waiting.begin()->first == delivered) {
      deliver(std::move(waiting.extract(waiting.begin()).mapped()));
      ++delivered;
    }
    room.notify_all();
  };
  const auto run = [&] {
    try {
      while (auto input = takeInput()) {
        takeResult(input->first, work(input->second));
      }
    } catch (...) {
      const std::lock_guard lock(results);
      if (!failure) failure = std::current_exception();
      room.notify_all();
    }
  };

  {
    std::vector<std::jthread> others;
    for (unsigned i = 1; i < threads; ++i) {
      others.emplace_back(run);
    }
    run();
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace zel
