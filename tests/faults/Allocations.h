#pragma once

#include <cstddef>

namespace test {

/// The program's allocations, of which some can be made to fail. They replace the global operators new and
/// delete of this program; what fails is what a thread asks for inside a `Counted` scope.
class Allocations {
 public:
  /// How many there are that nobody gave back.
  static std::size_t Live() noexcept;

  /// Of those counted from now on, number `first` (from 1) fails, and `count` - 1 after it.
  static void Fail(std::size_t first, std::size_t count) noexcept;

  /// No more of them fail.
  static void Recover() noexcept;

  /// Whether any failed since `Fail`.
  static bool HaveFailed() noexcept;

  /// Allocations are counted, and fail when they are due, until the end of the scope.
  class Counted {
   public:
    Counted() noexcept;
    ~Counted();
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
  };
};

}  // namespace test
