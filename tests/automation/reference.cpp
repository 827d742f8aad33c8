// reference FOLDER: runs the scenario by the C++ library and a software device of its own, and writes the device's
// answers (answers.bin) and what is seen (expected.txt).

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <span>

#include "Scenario.h"
#include "softdevice/Device.h"

namespace {

class DeviceAnswers final : public scenario::Answers {
 public:
  explicit DeviceAnswers(const std::filesystem::path& folder)
      : device_(Make(folder / "device.db")), file_(folder / "answers.bin", std::ios::binary) {}

  VnZEL10cmn::ByteArray Next(const VnZEL10cmn::ByteArray& request, int command) override {
    const softdevice::Answer answer = device_.Execute(static_cast<softdevice::Command>(command),
                                                      std::span(request.data(), request.size()));
    const auto size = static_cast<std::uint16_t>(answer.response.size());
    file_.write(reinterpret_cast<const char*>(&size), sizeof size);
    file_.write(reinterpret_cast<const char*>(answer.response.data()), size);
    return VnZEL10cmn::ByteArray(std::span<const std::uint8_t>(answer.response));
  }

  bool Close() {
    file_.close();
    return static_cast<bool>(file_);
  }

 private:
  static softdevice::Device Make(const std::filesystem::path& path) {
    softdevice::OpenOptions options;
    options.create = true;
    options.taxpayerId = "DE123456789";
    options.activate = true;
    return softdevice::Device::Open(path, options);
  }

  softdevice::Device device_;
  std::ofstream file_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    const std::filesystem::path folder = argv[1];
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    DeviceAnswers answers(folder);
    std::ofstream out(folder / "expected.txt", std::ios::binary);
    scenario::Run(out, answers);
    out.close();
    return out && answers.Close() ? 0 : 1;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
