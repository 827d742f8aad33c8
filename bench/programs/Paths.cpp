// Runs one path of a 10-item booking so many times, for tools that count instructions:
//   vnzel_paths request-new|request-kept|import TIMES

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "bench/Support.h"

int main(int count, char** arguments) {
  using namespace VnZEL10cmn;
  if (count != 3) {
    std::fputs("usage: vnzel_paths request-new|request-kept|import TIMES\n", stderr);
    return 2;
  }
  const std::string_view path = arguments[1];
  const int times = std::atoi(arguments[2]);
  const auto rates = std::make_shared<clsZelVatList>();
  const auto booking = bench::Booking(10, rates);
  bench::Request(*booking);
  booking->BinaryDataSet(ZELSerialType::Response, bench::Response(), 0);
  std::string document;
  if (!booking->XmlHandler(document, true)) {
    return 1;
  }
  for (int i = 0; i < times; ++i) {
    if (path == "request-new") {
      bench::Request(*bench::Booking(10, rates));
    } else if (path == "request-kept") {
      bench::Request(*booking);
    } else if (path == "import") {
      clsZelTransAct imported;
      if (!imported.XmlHandler(document, false)) return 1;
    } else {
      return 2;
    }
  }
  return 0;
}
