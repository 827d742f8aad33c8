#pragma once

// The processor's own instructions are used on 64-bit x86; everywhere else the portable code is all there is.
#if defined(__x86_64__) || (defined(_M_X64) && !defined(_M_ARM64EC))
#define VNZEL_X86_64 1
#else
#define VNZEL_X86_64 0
#endif

#include <array>
#include <cstdint>
#include <string_view>

namespace VnZEL10cmn::platform {

/// Which instructions beyond the plain ones of its kind may be used.
struct Instructions {
  bool ssse3 = false;  ///< Base64 and hexadecimal text, 16 bytes at a time.
  bool avx2 = false;   ///< The same, 32 bytes at a time; with BMI1 and BMI2 SHA-1 and SHA-256.
  bool sha = false;    ///< SHA-1 and SHA-256 by the instructions made for them.

  friend bool operator==(const Instructions&, const Instructions&) = default;
};

#if VNZEL_X86_64

/// EAX, EBX, ECX and EDX, as a leaf of CPUID leaves them.
using CpuidRegisters = std::array<std::uint32_t, 4>;

/// What the registers of the leaves 1 and 7 say; `savedState` reads the word that tells which registers the
/// operating system keeps, and is called only when the processor lets it be read.
Instructions InstructionsOf(const CpuidRegisters& basic, const CpuidRegisters& extended,
                            std::uint32_t (*savedState)()) noexcept;

#endif

/// What this processor and its operating system have.
Instructions ProcessorInstructions() noexcept;

/// Those of `available` that a list names, as in "ssse3,avx2"; an empty list names none. Other names are passed
/// over.
Instructions Permitted(Instructions available, std::string_view list) noexcept;

/// What the library uses: what the processor has. Found out once.
const Instructions& UsableInstructions() noexcept;

/// Has the whole program use only those that a list names, for tests and measurements of the other forms. No
/// other thread may be in the library meanwhile.
void PermitInstructions(std::string_view list) noexcept;

/// Has the memory at an address brought nearer, where the compiler knows how to; the address need not be valid.
inline void Prefetch([[maybe_unused]] const void* address) noexcept {
#if defined(__GNUC__)
  __builtin_prefetch(address);
#endif
}

}  // namespace VnZEL10cmn::platform
