// The program of one target, FUZZ_TARGET, for libFuzzer.

#include <cstddef>
#include <cstdint>

#include "fuzz/Check.h"
#include "fuzz/Targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::Target* const kTarget = fuzz::FindTarget(FUZZ_TARGET);
  FUZZ_CHECK(kTarget != nullptr);
  kTarget->run({data, size});
  return 0;
}
