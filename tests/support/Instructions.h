#pragma once

#include <optional>
#include <string_view>

namespace test {

/// The instructions that the program was told to do with, as in `--instructions=ssse3,avx2`; none when it uses all that
/// the processor has.
std::optional<std::string_view> PermittedInstructions();

}  // namespace test
