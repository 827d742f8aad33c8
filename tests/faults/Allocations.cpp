#include "Allocations.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

namespace test {
namespace {

std::atomic<std::size_t> live{0};

struct Plan {
  bool isCounting = false;
  bool hasFailed = false;
  std::size_t before = 0;   ///< so many still succeed
  std::size_t failing = 0;  ///< so many fail after them
};

thread_local Plan plan;

bool IsDueToFail() noexcept {
  if (!plan.isCounting || plan.failing == 0) {
    return false;
  }
  if (plan.before > 0) {
    --plan.before;
    return false;
  }
  --plan.failing;
  plan.hasFailed = true;
  return true;
}

void* AllocateOrNone(std::size_t size, std::size_t alignment) noexcept {
  if (IsDueToFail()) {
    return nullptr;
  }
  const std::size_t rounded = (std::max<std::size_t>(size, 1) + alignment - 1) / alignment * alignment;
  void* const memory = alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__ ? std::malloc(rounded)
                                                                     : std::aligned_alloc(alignment, rounded);
  if (memory != nullptr) {
    ++live;
  }
  return memory;
}

void* Allocate(std::size_t size, std::size_t alignment = 1) {
  void* const memory = AllocateOrNone(size, alignment);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

void Release(void* memory) noexcept {
  if (memory != nullptr) {
    --live;
    std::free(memory);
  }
}

}  // namespace

std::size_t Allocations::Live() noexcept { return live; }

void Allocations::Fail(std::size_t first, std::size_t count) noexcept {
  plan = {.isCounting = plan.isCounting, .hasFailed = false, .before = first - 1, .failing = count};
}

void Allocations::Recover() noexcept { plan.failing = 0; }

bool Allocations::HaveFailed() noexcept { return plan.hasFailed; }

Allocations::Counted::Counted() noexcept { plan.isCounting = true; }

Allocations::Counted::~Counted() { plan.isCounting = false; }

}  // namespace test

// Every form, as a sanitizer brings its own of each.
void* operator new(std::size_t size) { return test::Allocate(size); }
void* operator new[](std::size_t size) { return test::Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return test::AllocateOrNone(size, 1); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return test::AllocateOrNone(size, 1);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return test::Allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return test::Allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return test::AllocateOrNone(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return test::AllocateOrNone(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept { test::Release(memory); }
void operator delete[](void* memory) noexcept { test::Release(memory); }
void operator delete(void* memory, std::size_t) noexcept { test::Release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { test::Release(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { test::Release(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { test::Release(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { test::Release(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { test::Release(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { test::Release(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { test::Release(memory); }
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
  test::Release(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
  test::Release(memory);
}
