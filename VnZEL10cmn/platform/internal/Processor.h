#pragma once

// The processor's own instructions are used on 64-bit x86; everywhere else the portable code is all there is.
#if defined(__x86_64__) || (defined(_M_X64) && !defined(_M_ARM64EC))
#define VNZEL_X86_64 1
#else
#define VNZEL_X86_64 0
#endif

#include <string_view>

namespace VnZEL10cmn::platform {

/// Which instructions beyond the plain ones of its kind may be used.
struct Instructions {
  bool ssse3 = false;  ///< Base64 and hexadecimal text, 16 bytes at a time.
  bool avx2 = false;   ///< The same, 32 bytes at a time, and SHA-256 with BMI1 and BMI2.
  bool sha = false;    ///< SHA-1 and SHA-256 by the instructions made for them.

  friend bool operator==(const Instructions&, const Instructions&) = default;
};

/// What this processor and its operating system have.
Instructions ProcessorInstructions() noexcept;

/// Those of `available` that a list names, as in "ssse3,avx2"; an empty list names none. Other names are passed
/// over.
Instructions Permitted(Instructions available, std::string_view list) noexcept;

/// What the library uses: what the processor has, and if the environment holds VNZEL_INSTRUCTIONS, of that only
/// what is named there. Found out once.
const Instructions& UsableInstructions() noexcept;

/// Has the memory at an address brought nearer, where the compiler knows how to; the address need not be valid.
inline void Prefetch([[maybe_unused]] const void* address) noexcept {
#if defined(__GNUC__)
  __builtin_prefetch(address);
#endif
}

}  // namespace VnZEL10cmn::platform
