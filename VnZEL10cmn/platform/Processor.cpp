#include "VnZEL10cmn/platform/internal/Processor.h"

#include <array>
#include <cstdint>
#include <cstdlib>

#if VNZEL_X86_64
#ifdef _MSC_VER
#include <immintrin.h>
#include <intrin.h>
#else
#include <cpuid.h>
#endif
#endif

namespace VnZEL10cmn::platform {

#if VNZEL_X86_64

namespace {

/// EAX, EBX, ECX, EDX; zeros for a leaf that the processor doesn't know.
using Registers = std::array<std::uint32_t, 4>;

Registers Cpuid(std::uint32_t leaf) noexcept {
  Registers registers{};
#ifdef _MSC_VER
  std::array<int, 4> values{};
  __cpuid(values.data(), 0);
  if (static_cast<std::uint32_t>(values[0]) >= leaf) {
    __cpuidex(values.data(), static_cast<int>(leaf), 0);
    for (std::size_t i = 0; i < registers.size(); ++i) {
      registers[i] = static_cast<std::uint32_t>(values[i]);
    }
  }
#else
  __get_cpuid_count(leaf, 0, &registers[0], &registers[1], &registers[2], &registers[3]);
#endif
  return registers;
}

/// Whether the operating system keeps the 256-bit registers when it changes threads.
bool SavesWideRegisters() noexcept {
#ifdef _MSC_VER
  const auto saved = static_cast<std::uint32_t>(_xgetbv(0));
#else
  std::uint32_t saved = 0;
  std::uint32_t upper = 0;
  __asm__("xgetbv" : "=a"(saved), "=d"(upper) : "c"(0));
#endif
  return (saved & 6) == 6;
}

// This compiler puts 256-bit values on the stack as if Windows kept it aligned for them, which it does not.
#if defined(__MINGW32__) && !defined(__clang__)
constexpr bool kKeepsWideValuesAligned = false;
#else
constexpr bool kKeepsWideValuesAligned = true;
#endif

bool Bit(std::uint32_t value, int bit) noexcept { return (value >> bit & 1) != 0; }

}  // namespace

Instructions ProcessorInstructions() noexcept {
  const Registers basic = Cpuid(1);
  const Registers extended = Cpuid(7);
  const bool ssse3 = Bit(basic[2], 9);
  const bool sse41 = Bit(basic[2], 19);
  const bool osXsave = Bit(basic[2], 27);
  const bool bmi = Bit(extended[1], 3) && Bit(extended[1], 8);
  const bool avx2 = Bit(extended[1], 5);
  const bool sha = Bit(extended[1], 29);
  const bool wide = kKeepsWideValuesAligned && osXsave && SavesWideRegisters();
  return {ssse3, ssse3 && avx2 && bmi && wide, ssse3 && sse41 && sha};
}

#else

Instructions ProcessorInstructions() noexcept { return {}; }

#endif

Instructions Permitted(Instructions available, std::string_view list) noexcept {
  Instructions named;
  while (!list.empty()) {
    const std::string_view name = list.substr(0, list.find(','));
    named.ssse3 = named.ssse3 || name == "ssse3";
    named.avx2 = named.avx2 || name == "avx2";
    named.sha = named.sha || name == "sha";
    list.remove_prefix(name.size() == list.size() ? name.size() : name.size() + 1);
  }
  return {available.ssse3 && named.ssse3, available.avx2 && named.avx2, available.sha && named.sha};
}

const Instructions& UsableInstructions() noexcept {
  static const Instructions usable = [] {
    const char* const list = std::getenv("VNZEL_INSTRUCTIONS");
    const Instructions available = ProcessorInstructions();
    return list == nullptr ? available : Permitted(available, list);
  }();
  return usable;
}

}  // namespace VnZEL10cmn::platform
