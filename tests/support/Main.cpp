// The main program of all tests: that of GoogleTest with one more option, --instructions=LIST, which keeps the library
// to the processor's instructions that the list names ("ssse3,avx2"; an empty list names none).

#include <gtest/gtest.h>

#include <optional>
#include <string_view>

#include "VnZEL10cmn/platform/internal/Processor.h"
#include "tests/support/Instructions.h"

namespace {

std::optional<std::string_view> permitted;

}  // namespace

std::optional<std::string_view> test::PermittedInstructions() { return permitted; }

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  constexpr std::string_view option = "--instructions=";
  for (int i = 1; i < count; ++i) {
    const std::string_view argument = arguments[i];
    if (argument.starts_with(option)) {
      permitted = argument.substr(option.size());
      VnZEL10cmn::platform::PermitInstructions(*permitted);
    }
  }
  return RUN_ALL_TESTS();
}
