#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "tools/Sink.h"

/// Many jobs at once whose answers come out in order, in bounded memory.
namespace zel {

/// Where all jobs stand: which number's turn it is to put its answer out, how much is held of those whose turn it
/// isn't, and who is at work.
class JobQueue {
 public:
  /// Ends a job's thread after another one has failed.
  struct Stopped {};

  explicit JobQueue(std::size_t mostJobs) : mostJobs_(mostJobs) {}

  /// Waits until there is room for one more job. Throws `Stopped`.
  void WaitForRoom();
  std::size_t TakeNumber();

  [[nodiscard]] bool IsTurnOf(std::size_t number) const;
  /// Waits for a number's turn. Throws `Stopped`.
  void WaitForTurn(std::size_t number);
  void EndTurn();
  /// Waits until all answers are out. Throws `Stopped`.
  void WaitForAll();

  /// Holds more bytes of answers; false when too many are held already.
  bool Hold(std::size_t bytes);
  void Release(std::size_t bytes);

  /// A job that works takes memory. One that has run out of it works alone, when it is its turn and nobody else's
  /// work is going on.
  void BeginWork();
  void EndWork();
  void BeginAlone();
  void EndAlone();

  /// The first failure ends everything.
  void Fail(std::exception_ptr failure);
  void RethrowFailure();

 private:
  template <typename Condition>
  void Wait(std::unique_lock<std::mutex>& lock, Condition&& condition);

  const std::size_t mostJobs_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t taken_ = 0;
  std::size_t turn_ = 0;
  std::size_t held_ = 0;
  std::size_t working_ = 0;
  bool isAlone_ = false;
  std::exception_ptr failure_;
};

/// Where a job puts its answer. What is written comes out at once when it is the job's turn, and is held until then
/// otherwise; a job that would hold too much waits for its turn.
class Turn final : public Sink {
 public:
  using Emit = std::function<void(std::string_view text)>;

  /// `emit` puts the text out.
  Turn(JobQueue& queue, std::size_t number, const Emit& emit);
  ~Turn() override;

  void Write(std::string_view piece) override;

  /// Lets out, or holds, what is written so far.
  void Settle();

  /// Takes back what was written and hasn't come out.
  void Drop();

  /// Whether a part of the answer has come out, which can't be taken back.
  [[nodiscard]] bool HasLeft() const noexcept { return hasLeft_; }

  /// Whether the job works alone, so that there will not be more memory.
  [[nodiscard]] bool IsAlone() const noexcept { return isAlone_; }
  void WorkAlone() { isAlone_ = true; }

  /// Which job it is, from 0.
  [[nodiscard]] std::size_t Number() const noexcept { return number_; }

  /// Puts everything out, when it is the job's turn.
  void EmitAll();

 private:
  JobQueue& queue_;
  std::size_t number_;
  const Emit& emit_;
  std::vector<std::string> held_;
  std::string text_;
  bool hasLeft_ = false;
  bool isAlone_ = false;
};

/// What `RunPipeline` needs to know.
template <typename Input, typename Result>
struct PipelineTasks {
  /// The next input, none at the end. Called by one thread at a time. Where it throws std::bad_alloc it is called once
  /// more (`isAlone`) when all inputs before are delivered, and ends everything if it throws again.
  std::function<std::optional<Input>(bool isAlone)> next;
  /// Makes the result and writes the answer; on any thread. What it throws ends everything, but for std::bad_alloc:
  /// then it is called once more, alone.
  std::function<Result(Input& input, Turn& turn)> work;
  /// The result where there isn't enough memory for `work` even so. Hardly needs any.
  std::function<Result(Input& input)> starve;
  /// Puts a part of an answer out.
  Turn::Emit emit;
  /// Takes the result when the answer is out. `emit` and `deliver` are called by one thread at a time.
  std::function<void(Result result)> deliver;
};

/// Works on many inputs at once, on so many threads, the caller's among them, or as many as can be made. Answers and
/// results come out in the order of the inputs, each as soon as it can, so that an answer doesn't wait for the
/// following input. However many inputs there are, and however long the answers, a few inputs per thread and some
/// megabytes of answers are held.
template <typename Input, typename Result>
void RunPipeline(unsigned threads, const PipelineTasks<Input, Result>& tasks) {
  struct Job {
    std::size_t number = 0;
    std::optional<Input> input;
    std::optional<Turn> turn;
    std::optional<Result> result;
  };
  constexpr std::size_t kJobsPerThread = 8;
  // A job has the place of its number, modulo their count: none is made when memory has run out.
  std::vector<Job> jobs(kJobsPerThread * threads);
  JobQueue queue(jobs.size());
  std::mutex inputs;
  bool atEnd = false;
  std::mutex delivery;
  std::vector<bool> isFinished(jobs.size());
  std::size_t next = 0;
  bool isDelivering = false;

  const auto takeJob = [&]() -> Job* {
    const std::lock_guard lock(inputs);
    queue.WaitForRoom();
    if (atEnd) return nullptr;
    std::optional<Input> input;
    try {
      input = tasks.next(false);
    } catch (const std::bad_alloc&) {
      queue.WaitForAll();
      input = tasks.next(true);
    }
    atEnd = !input;
    if (atEnd) return nullptr;
    const std::size_t number = queue.TakeNumber();
    Job& job = jobs[number % jobs.size()];
    job.number = number;
    job.input = std::move(input);
    job.turn.emplace(queue, number, tasks.emit);
    job.result.reset();
    return &job;
  };
  const auto attempt = [&](Job& job) {
    try {
      job.result.emplace(tasks.work(*job.input, *job.turn));
      job.turn->Settle();
    } catch (const std::bad_alloc&) {
      job.result.reset();
      job.turn->Drop();
    }
  };
  const auto workOn = [&](Job& job) {
    queue.BeginWork();
    attempt(job);
    queue.EndWork();
    if (!job.result && !job.turn->HasLeft()) {
      queue.WaitForTurn(job.number);
      queue.BeginAlone();
      job.turn->WorkAlone();
      attempt(job);
      queue.EndAlone();
    }
    if (!job.result) job.result.emplace(tasks.starve(*job.input));
    job.input.reset();
  };
  const auto finish = [&](const Job& done) {
    std::unique_lock lock(delivery);
    isFinished[done.number % jobs.size()] = true;
    if (isDelivering) return;
    isDelivering = true;
    while (isFinished[next % jobs.size()]) {
      isFinished[next % jobs.size()] = false;
      Job& job = jobs[next++ % jobs.size()];
      lock.unlock();
      job.turn->EmitAll();
      tasks.deliver(std::move(*job.result));
      queue.EndTurn();
      lock.lock();
    }
    isDelivering = false;
  };
  const auto run = [&] {
    try {
      while (Job* const job = takeJob()) {
        workOn(*job);
        finish(*job);
      }
    } catch (...) {
      queue.Fail(std::current_exception());
    }
  };

  {
    std::vector<std::jthread> others;
    try {
      others.reserve(threads);
      while (others.size() + 1 < threads) {
        others.emplace_back(run);
      }
    } catch (const std::system_error&) {
      // The system gives no more threads: those there are do the work.
    } catch (const std::bad_alloc&) {
      // Nor is there memory for one.
    }
    run();
  }
  queue.RethrowFailure();
}

}  // namespace zel
