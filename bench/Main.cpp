// The main program of Google Benchmark with one more option, --instructions=LIST, which keeps the library to the
// processor's instructions that the list names ("ssse3,avx2"; an empty list names none).

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string_view>

#include "VnZEL10cmn/platform/internal/Processor.h"

int main(int count, char** arguments) {
  constexpr std::string_view option = "--instructions=";
  char** const end = std::remove_if(arguments + 1, arguments + count, [option](std::string_view argument) {
    const bool isMeant = argument.starts_with(option);
    if (isMeant) {
      VnZEL10cmn::platform::PermitInstructions(argument.substr(option.size()));
    }
    return isMeant;
  });
  count = static_cast<int>(end - arguments);
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) {
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
