#include "VnZEL10cmn/platform/internal/Processor.h"

#include <cstddef>

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

/// Zeros for a leaf that the processor doesn't know.
CpuidRegisters Cpuid(std::uint32_t leaf) noexcept {
  CpuidRegisters registers{};
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

/// Which registers the operating system keeps when it changes threads; only to be asked where it says so.
std::uint32_t SavedState() noexcept {
#ifdef _MSC_VER
  return static_cast<std::uint32_t>(_xgetbv(0));
#else
  std::uint32_t saved = 0;
  std::uint32_t upper = 0;
  __asm__("xgetbv" : "=a"(saved), "=d"(upper) : "c"(0));
  return saved;
#endif
}

// This compiler puts 256-bit values on the stack as if Windows kept it aligned for them, which it does not.
#if defined(__MINGW32__) && !defined(__clang__)
constexpr bool kKeepsWideValuesAligned = false;
#else
constexpr bool kKeepsWideValuesAligned = true;
#endif

bool Bit(std::uint32_t value, int bit) noexcept { return (value >> bit & 1) != 0; }

}  // namespace

Instructions InstructionsOf(const CpuidRegisters& basic, const CpuidRegisters& extended,
                            std::uint32_t (*savedState)()) noexcept {
  const bool ssse3 = Bit(basic[2], 9);
  const bool sse41 = Bit(basic[2], 19);
  const bool osXsave = Bit(basic[2], 27);
  const bool bmi = Bit(extended[1], 3) && Bit(extended[1], 8);
  const bool avx2 = Bit(extended[1], 5);
  const bool sha = Bit(extended[1], 29);
  // Both halves of the 256-bit registers are kept.
  const bool wide = kKeepsWideValuesAligned && osXsave && (savedState() & 6) == 6;
  return {ssse3, ssse3 && avx2 && bmi && wide, ssse3 && sse41 && sha};
}

Instructions ProcessorInstructions() noexcept { return InstructionsOf(Cpuid(1), Cpuid(7), SavedState); }

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

namespace {

Instructions& Usable() noexcept {
  static Instructions usable = ProcessorInstructions();
  return usable;
}

}  // namespace

const Instructions& UsableInstructions() noexcept { return Usable(); }

void PermitInstructions(std::string_view list) noexcept {
  Usable() = Permitted(ProcessorInstructions(), list);
}

}  // namespace VnZEL10cmn::platform
