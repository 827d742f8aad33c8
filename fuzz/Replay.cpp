// Runs files through targets, as the fuzzer would: fuzz_replay TARGET FILE|FOLDER...
// Ends with status 0 when everything held for all of them.

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "fuzz/Targets.h"

namespace {

std::string currentFile;

/// Says which input it was before the program ends the way that it would have ended without this.
extern "C" void OnFault(int number) {
  std::fprintf(stderr, "input: %s\n", currentFile.c_str());
  static_cast<void>(std::signal(number, SIG_DFL));
  static_cast<void>(std::raise(number));
}

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) {
    return {path};
  }
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
    if (entry.is_regular_file()) {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::uint8_t> ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<std::uint8_t> content{std::istreambuf_iterator<char>(file), {}};
  if (!file) {
    throw std::runtime_error("can't be read: " + path.string());
  }
  return content;
}

int Replay(const fuzz::Target& target, const std::vector<std::string>& paths) {
  std::size_t count = 0;
  for (const std::string& path : paths) {
    for (const std::filesystem::path& file : FilesIn(path)) {
      const std::vector<std::uint8_t> content = ContentOf(file);
      currentFile = file.string();
      target.run(content);
      ++count;
    }
  }
  std::printf("%s: %zu inputs\n", std::string(target.name).c_str(), count);
  if (count == 0) {
    throw std::runtime_error("no inputs");
  }
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const fuzz::Target* const target = argc < 3 ? nullptr : fuzz::FindTarget(argv[1]);
    if (target == nullptr) {
      throw std::runtime_error("usage: fuzz_replay TARGET FILE|FOLDER...");
    }
    for (const int number : {SIGABRT, SIGSEGV, SIGFPE, SIGILL}) {
      static_cast<void>(std::signal(number, OnFault));
    }
    return Replay(*target, {argv + 2, argv + argc});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "fuzz_replay: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
