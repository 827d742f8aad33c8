#include "tools/Pipeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using zel::PipelineTasks;
using zel::RunPipeline;
using zel::Turn;

/// Jobs that are numbers; what comes out is put together.
struct Jobs {
  int count = 0;
  int taken = 0;
  std::string out;
  std::vector<int> delivered;
  PipelineTasks<int, int> tasks;

  explicit Jobs(int number) : count(number) {
    tasks.next = [this](bool /*isAlone*/) { return taken < count ? std::optional(taken++) : std::nullopt; };
    tasks.work = [](const int& number, Turn& turn) {
      turn.Write("job " + std::to_string(number) + "\n");
      return number;
    };
    tasks.starve = [](const int& number) { return -number; };
    tasks.emit = [this](std::string_view text) { out += text; };
    tasks.deliver = [this](int result) { delivered.push_back(result); };
  }

  std::string Expected(const std::string& text = "") const {
    std::string expected;
    for (int number = 0; number < count; ++number) {
      expected += "job " + std::to_string(number) + "\n" + text;
    }
    return expected;
  }

  void ExpectAllDelivered() const {
    ASSERT_EQ(delivered.size(), static_cast<std::size_t>(count));
    for (int number = 0; number < count; ++number) {
      EXPECT_EQ(std::abs(delivered[static_cast<std::size_t>(number)]), number);
    }
  }
};

TEST(Pipeline, LetsAnswersAndResultsOutInTheOrderOfTheInputs) {
  for (const unsigned threads : {1U, 2U, 8U}) {
    Jobs jobs(1000);
    RunPipeline(threads, jobs.tasks);
    EXPECT_EQ(jobs.out, jobs.Expected());
    jobs.ExpectAllDelivered();
  }
}

TEST(Pipeline, OfNoInputsEnds) {
  Jobs jobs(0);
  RunPipeline(4, jobs.tasks);
  EXPECT_EQ(jobs.out, "");
}

TEST(Pipeline, LetsAnAnswerOutWhileItIsMade) {
  Jobs jobs(1);
  std::size_t outInBetween = 0;
  jobs.tasks.work = [&](const int& number, Turn& turn) {
    turn.Write(std::string(1'000'000, 'x'));
    outInBetween = jobs.out.size();
    return number;
  };
  RunPipeline(1, jobs.tasks);
  EXPECT_EQ(outInBetween, 1'000'000U);
  EXPECT_EQ(jobs.out.size(), 1'000'000U);
}

TEST(Pipeline, HoldsAFewMegabytesOfAnswersHoweverManyThreads) {
  constexpr std::size_t megabyte = 1'000'000;
  Jobs jobs(32);
  std::atomic<std::size_t> written = 0;
  std::size_t writtenBeforeTheFirst = 0;
  const std::string text(megabyte / 10, 'x');
  jobs.tasks.work = [&](const int& number, Turn& turn) {
    turn.Write("job " + std::to_string(number) + "\n");
    if (number == 0) {
      // All the others go on until they have to wait.
      std::size_t before = 1;
      while (before != written) {
        before = written;
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
      }
      writtenBeforeTheFirst = written;
    }
    for (int piece = 0; piece < 20; ++piece) {
      turn.Write(text);
      written += text.size();
    }
    return number;
  };
  RunPipeline(16, jobs.tasks);
  EXPECT_GT(writtenBeforeTheFirst, 4 * megabyte);
  EXPECT_LT(writtenBeforeTheFirst, 12 * megabyte);
  std::string twenty;
  for (int piece = 0; piece < 20; ++piece) {
    twenty += text;
  }
  EXPECT_TRUE(jobs.out == jobs.Expected(twenty));
  jobs.ExpectAllDelivered();
}

TEST(Pipeline, TriesAJobWithoutMemoryOnceMoreAloneAndTellsWhenThatFailsToo) {
  Jobs jobs(200);
  std::atomic<int> working = 0;
  std::atomic<int> company = 0;
  jobs.tasks.work = [&](const int& number, Turn& turn) {
    ++working;
    turn.Write("job " + std::to_string(number) + "\n");
    if (turn.IsAlone()) company += working - 1;
    std::this_thread::sleep_for(std::chrono::microseconds(200));
    --working;
    if (number % 10 == 7 && !turn.IsAlone()) throw std::bad_alloc();
    if (number % 50 == 7) throw std::bad_alloc();
    return number;
  };
  RunPipeline(8, jobs.tasks);
  EXPECT_EQ(company, 0);
  jobs.ExpectAllDelivered();
  std::string expected;
  for (int number = 0; number < 200; ++number) {
    const bool hasFailed = number % 50 == 7;
    EXPECT_EQ(jobs.delivered[static_cast<std::size_t>(number)], hasFailed ? -number : number);
    if (!hasFailed) expected += "job " + std::to_string(number) + "\n";
  }
  EXPECT_EQ(jobs.out, expected);
}

/// Nobody can take back what is out.
TEST(Pipeline, DoesntTryAJobOnceMoreOfWhichAPartIsOut) {
  Jobs jobs(1);
  int attempts = 0;
  jobs.tasks.work = [&](const int& /*number*/, Turn& turn) -> int {
    ++attempts;
    turn.Write(std::string(100'000, 'x'));
    EXPECT_TRUE(turn.HasLeft());
    turn.Write("the end");
    throw std::bad_alloc();
  };
  RunPipeline(1, jobs.tasks);
  EXPECT_EQ(attempts, 1);
  EXPECT_EQ(jobs.out, std::string(100'000, 'x'));
  EXPECT_EQ(jobs.delivered, std::vector<int>{0});
}

TEST(Pipeline, AsksForAnInputAgainWhenThereIsMemoryForIt) {
  Jobs jobs(100);
  jobs.tasks.next = [&](bool isAlone) -> std::optional<int> {
    if (jobs.taken == jobs.count) return std::nullopt;
    if (jobs.taken % 10 == 3 && !isAlone) throw std::bad_alloc();
    EXPECT_TRUE(!isAlone || jobs.delivered.size() == static_cast<std::size_t>(jobs.taken));
    return jobs.taken++;
  };
  RunPipeline(4, jobs.tasks);
  EXPECT_EQ(jobs.out, jobs.Expected());
  jobs.ExpectAllDelivered();
}

TEST(Pipeline, EndsWithTheFirstFailureOfItsOutput) {
  for (const unsigned threads : {1U, 8U}) {
    Jobs jobs(1000);
    jobs.tasks.emit = [&jobs](std::string_view text) {
      if (jobs.delivered.size() == 10) throw std::runtime_error("the disk is full");
      jobs.out += text;
    };
    EXPECT_THROW(RunPipeline(threads, jobs.tasks), std::runtime_error);
    EXPECT_EQ(jobs.delivered.size(), 10U);
    EXPECT_EQ(std::count(jobs.out.begin(), jobs.out.end(), '\n'), 10);
  }
}

}  // namespace
