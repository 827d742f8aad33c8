#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace test {

/// A folder of a test's own, removed with everything in it at the end of its scope.
class TempDir {
 public:
  TempDir() {
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
      path_ = std::filesystem::temp_directory_path() / ("vnzel_test_" + std::to_string(random()));
      if (std::filesystem::create_directory(path_)) {
        return;
      }
    }
    throw std::runtime_error("no temporary folder");
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& Path() const { return path_; }

  /// Path of a file in the folder; nothing is created.
  std::string File(std::string_view name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

/// The bytes of a file; a missing file fails the test by an exception.
inline std::string ReadFile(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  if (!file) {
    throw std::runtime_error("can't read " + name);
  }
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteFile(const std::string& name, std::string_view bytes) {
  std::ofstream file(name, std::ios::binary | std::ios::trunc);
  file << bytes;
  file.close();
  if (!file) {
    throw std::runtime_error("can't write " + name);
  }
}

}  // namespace test
