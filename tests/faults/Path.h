#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Allocations.h"
#include "VnZEL10cmn/errors/VnObject.h"

namespace test {

/// One call of the library on a path that a host takes with the objects of a `World`.
template <class World>
struct Step {
  std::string_view operation;       ///< its published name
  std::string_view inner{};         ///< an operation that it runs and whose failure it leaves as it is
  std::function<bool(World&)> run;  ///< the call; False when it failed
  /// The object that the call is made on, in which its failures show. A constructor, a property or a function
  /// that just returns its value has none: it raises what it meets.
  std::function<VnZEL10cmn::VnObject*(World&)> object{};
  /// The error object that tells its failures instead, if it is another one.
  std::function<VnZEL10cmn::clsVnError*(World&)> errors{};
  std::function<void(World&)> prepare{};        ///< sets the arguments before the call
  std::function<std::string(World&)> result{};  ///< what the call gave, without another call of the object
  std::function<std::string(World&)> kept{};    ///< what is as it was when the call failed
  /// The numbers under which the call says that a part of it failed, besides out of memory.
  std::vector<std::int32_t> numbers{};
};

template <class World>
using Path = std::vector<Step<World>>;

/// A step without an object in which its failure shows, such as a constructor.
template <class World>
Step<World> Made(std::string_view what, std::function<void(World&)> make) {
  return {.operation = what, .run = [make = std::move(make)](World& world) {
            make(world);
            return true;
          }};
}

/// One path after the other.
template <class World>
Path<World> Joined(std::initializer_list<Path<World>> parts) {
  Path<World> path;
  for (const Path<World>& part : parts) {
    path.insert(path.end(), part.begin(), part.end());
  }
  return path;
}

/// Text in which every GUID is the same.
inline std::string WithoutGuids(std::string text) {
  static constexpr std::string_view form = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";
  const auto fits = [](char wanted, char found) {
    return wanted == '-' ? found == '-' : std::isxdigit(static_cast<unsigned char>(found)) != 0;
  };
  for (std::size_t at = 0; at + form.size() <= text.size(); ++at) {
    if (std::equal(form.begin(), form.end(), text.begin() + static_cast<std::ptrdiff_t>(at), fits)) {
      text.replace(at, form.size(), form);
    }
  }
  return text;
}

/// How many allocations fail one after the other.
inline constexpr std::size_t kOne = 1;
inline constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

namespace internal {

inline constexpr std::int32_t kOutOfMemory = 7;

/// Where the failures of a step show; none for one that raises them.
template <class World>
VnZEL10cmn::clsVnError* ErrorsOf(const Step<World>& step, World& world) {
  return step.errors ? step.errors(world) : step.object ? &step.object(world)->ErrorObject() : nullptr;
}

/// What the caller of a step sees of it.
template <class World>
std::string Seen(const Step<World>& step, World& world, bool done) {
  std::string text = done ? "done" : "failed";
  const VnZEL10cmn::clsVnError* const error = ErrorsOf(step, world);
  if (error != nullptr && error->HasError()) {
    text += " " + std::to_string(error->ErrorNr()) + (error->IsUserDef() ? " own " : " foreign ") +
            error->ErrorFunction() + ": " + error->ErrorMsg();
  }
  return WithoutGuids(text + "\n" + (step.result ? step.result(world) : ""));
}

/// Makes the call, some of whose allocations may fail; false for a failure, also one that is raised.
template <class World>
bool Call(const Step<World>& step, World& world, bool& raised) {
  const Allocations::Counted counted;
  try {
    return step.run(world);
  } catch (const std::bad_alloc&) {
    raised = true;
    return false;
  }
}

template <class World>
std::string CallUndisturbed(const Step<World>& step, World& world) {
  if (step.prepare) {
    step.prepare(world);
  }
  const bool done = step.run(world);
  return Seen(step, world, done);
}

/// Whether a call in which an allocation failed told its caller so, in the way that it promises.
template <class World>
void ExpectToldFailure(const Step<World>& step, World& world, bool done, bool raised,
                       const std::string& keptBefore) {
  EXPECT_FALSE(done) << Seen(step, world, done);
  if (step.kept) {
    EXPECT_EQ(step.kept(world), keptBefore);
  }
  const bool raises = !step.object && !step.errors;
  EXPECT_EQ(raised, raises) << "raised to the caller or not";
  if (raises) {
    return;
  }
  if (step.object) {
    EXPECT_TRUE(step.object(world)->HasError());
  }
  const VnZEL10cmn::clsVnError* const error = ErrorsOf(step, world);
  EXPECT_TRUE(error->HasError());
  if (std::find(step.numbers.begin(), step.numbers.end(), error->ErrorNr()) != step.numbers.end()) {
    return;
  }
  EXPECT_EQ(error->ErrorNr(), kOutOfMemory) << Seen(step, world, done);
  EXPECT_FALSE(error->IsUserDef());
  // With no memory at all there may be none for a longer name.
  const std::string function = error->ErrorFunction();
  EXPECT_TRUE(function.starts_with(step.operation) || (!step.inner.empty() && function == step.inner) ||
              function.empty())
      << function;
}

/// Takes the path while allocation number `first`, and `count` - 1 after it in the same step, fail. False when
/// the path has fewer.
template <class World>
bool TakeDisturbed(const Path<World>& path, const std::vector<std::string>& expected, std::size_t first,
                   std::size_t count) {
  World world;
  Allocations::Fail(first, count);
  bool disturbed = false;
  for (std::size_t i = 0; i < path.size() && !testing::Test::HasFailure(); ++i) {
    const Step<World>& step = path[i];
    SCOPED_TRACE("step " + std::to_string(i + 1) + ", " + std::string(step.operation) + ", allocation " +
                 std::to_string(first) + ", failing " + std::to_string(count));
    if (step.prepare) {
      step.prepare(world);
    }
    const std::string keptBefore = step.kept ? step.kept(world) : "";
    bool raised = false;
    const bool done = Call(step, world, raised);
    if (disturbed || !Allocations::HaveFailed()) {
      EXPECT_FALSE(raised);
      EXPECT_EQ(Seen(step, world, done), expected[i]);
      continue;
    }
    disturbed = true;
    Allocations::Recover();
    // What failed may have been of no account for the result, such as an entry in the log.
    if (raised || Seen(step, world, done) != expected[i]) {
      ExpectToldFailure(step, world, done, raised, keptBefore);
      EXPECT_EQ(CallUndisturbed(step, world), expected[i]) << "when called again";
    }
  }
  return disturbed;
}

}  // namespace internal

/// Takes a path again and again, each time with one allocation more that succeeds before some fail: one, a
/// few, or all until the call returns. The call in which that happens has to say so, leave nothing behind,
/// and give when it is called again what it gives on a path without failures.
template <class World>
void FailEachAllocation(const Path<World>& path,
                        const std::vector<std::size_t>& counts = {kOne, 2, 3, kAll}) {
  std::vector<std::string> expected;
  {
    World world;
    for (const Step<World>& step : path) {
      expected.push_back(internal::CallUndisturbed(step, world));
    }
  }
  // What is made once and for all is made by the end of the second time, which gives the same.
  ASSERT_FALSE(internal::TakeDisturbed(path, expected, kAll, 1));
  for (const std::size_t count : counts) {
    std::size_t first = 1;
    for (bool disturbed = true; disturbed; ++first) {
      const std::size_t live = Allocations::Live();
      disturbed = internal::TakeDisturbed(path, expected, first, count);
      ASSERT_FALSE(testing::Test::HasFailure());
      ASSERT_EQ(Allocations::Live(), live) << "after allocation " << first << " failed";
    }
    EXPECT_GT(first, 10U);
    testing::Test::RecordProperty("allocations", std::to_string(first - 2));
  }
}

}  // namespace test
