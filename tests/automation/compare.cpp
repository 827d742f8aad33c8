// compare ANSWERS OUT: runs the scenario through the automation server with the answers that the device gave before, and
// writes what is seen.

#include <fstream>

#include "Scenario.h"
#include "Support.h"

namespace {

class RecordedAnswers final : public scenario::Answers {
 public:
  explicit RecordedAnswers(const char* path) : file_(path, std::ios::binary) {}

  VnZEL10cmn::ByteArray Next(const VnZEL10cmn::ByteArray& /*request*/, int /*command*/) override {
    std::uint16_t size = 0;
    if (!file_.read(reinterpret_cast<char*>(&size), sizeof size)) throw std::runtime_error("no more answers");
    if (size == 0) return {};
    auto answer = VnZEL10cmn::ByteArray::WithBounds(0, size - 1);
    file_.read(reinterpret_cast<char*>(answer.data()), size);
    return answer;
  }

 private:
  std::ifstream file_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  try {
    test::Require(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
    RecordedAnswers answers(argv[1]);
    std::ofstream out(argv[2], std::ios::binary);
    scenario::Run(out, answers);
    out.close();
    if (!out) throw std::runtime_error("the file can't be written");
    CoUninitialize();
    return 0;
  } catch (const std::exception& failure) {
    std::printf("%s\n", failure.what());
    return 1;
  }
}
