#pragma once

#include <fcntl.h>
#include <openssl/evp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "TempFile.h"

/// Runs the real program and shows what a user sees of it.
namespace test {

/// Whether this build watches its own memory, or its threads, for which it takes memory itself.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kIsInstrumented = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool kIsInstrumented = true;
#else
inline constexpr bool kIsInstrumented = false;
#endif
#else
inline constexpr bool kIsInstrumented = false;
#endif

struct Outcome {
  int status = -1;  ///< 256 + signal when it was killed
  std::string out;
  std::string err;
};

/// How a run differs from the usual one.
struct Setting {
  std::string input{};                    ///< on standard input
  std::string standardOutput{};           ///< a file instead of the one that ends up in `Outcome::out`
  std::function<void()> inChild = [] {};  ///< last thing before the program starts
};

/// A folder in which the program runs; it is its home folder as well.
class Desk {
 public:
  Desk() { WriteFile("sale.json", kSale); }

  static constexpr std::string_view kSale = R"({
    "date": "2026-11-21T08:05",
    "operator": "Meier",
    "items": [
      { "quantity": "4", "unit": "Stk", "name": "Brötchen", "price": "1.80", "class": "B" },
      { "quantity": "0.385", "unit": "kg", "name": "Käse", "price": "9.20", "class": "B" },
      { "name": "Kaffee", "price": "2.80", "class": "A" },
      { "quantity": 7, "name": "Pfandrückgabe", "price": -1.75, "class": "A" }
    ]
  })";

  Outcome Zel(const std::vector<std::string>& arguments, const Setting& setting = {}) const {
    const std::string in = folder_.File(".stdin");
    const std::string out = setting.standardOutput.empty() ? folder_.File(".stdout") : setting.standardOutput;
    const std::string err = folder_.File(".stderr");
    test::WriteFile(in, setting.input);
    const pid_t child = fork();
    if (child == -1) throw std::runtime_error("fork");
    if (child == 0) {
      std::vector<char*> argv{const_cast<char*>("zel")};
      for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
      argv.push_back(nullptr);
      const bool ready = chdir(folder_.Path().c_str()) == 0 &&
                         setenv("HOME", folder_.Path().c_str(), 1) == 0 && unsetenv("XDG_DATA_HOME") == 0 &&
                         dup2(open(in.c_str(), O_RDONLY), STDIN_FILENO) != -1 &&
                         dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO) != -1 &&
                         dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO) != -1;
      if (!ready) _exit(127);
      setting.inChild();
      execv(ZEL_PROGRAM, argv.data());
      _exit(127);
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child) throw std::runtime_error("waitpid");
    Outcome outcome;
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 256 + WTERMSIG(status);
    outcome.out = setting.standardOutput.empty() ? test::ReadFile(out) : "";
    outcome.err = WithoutCounters(test::ReadFile(err));
    return outcome;
  }

  void WriteFile(std::string_view name, std::string_view content) const {
    test::WriteFile(folder_.File(name), content);
  }
  [[nodiscard]] std::string ReadFile(std::string_view name) const {
    return test::ReadFile(folder_.File(name));
  }
  [[nodiscard]] bool Exists(std::string_view name) const {
    return std::filesystem::exists(folder_.File(name));
  }
  [[nodiscard]] std::string File(std::string_view name) const { return folder_.File(name); }

  /// The names in the folder, but for those that this class makes itself.
  [[nodiscard]] std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
      const std::string name = entry.path().filename().string();
      if (name != ".stdin" && name != ".stdout" && name != ".stderr") names.push_back(name);
    }
    return names;
  }

  /// The document sale.xml, signed by the device till.db.
  [[nodiscard]] std::string SignedDocument() const {
    const Outcome outcome = Zel({"sign", "sale.json", "--device", "till.db", "--out", "sale.xml"});
    if (outcome.status != 0) throw std::runtime_error("not signed: " + outcome.err);
    return ReadFile("sale.xml");
  }

 private:
  /// What a build with coverage counters says when it can't write them, to a full disk or as another user, isn't
  /// the program's.
  static std::string WithoutCounters(std::string text) {
    for (const std::string_view start : {"libgcov profiling error:", "profiling:"}) {
      for (std::size_t at = text.find(start); at != std::string::npos; at = text.find(start)) {
        const std::size_t end = text.find('\n', at);
        text.erase(at, end == std::string::npos ? end : end + 1 - at);
      }
    }
    return text;
  }

  TempDir folder_;
};

/// The content of the only element of that name.
inline std::string Element(const std::string& xml, const std::string& name) {
  const std::string opening = "<" + name + ">";
  const std::size_t start = xml.find(opening);
  const std::size_t end = xml.find("</" + name + ">");
  if (start == std::string::npos || end == std::string::npos) throw std::runtime_error("no element " + name);
  return xml.substr(start + opening.size(), end - start - opening.size());
}

/// The document with other content of an element.
inline std::string WithElement(std::string xml, const std::string& name, const std::string& content) {
  const std::string old = Element(xml, name);
  const std::size_t start = xml.find("<" + name + ">") + name.size() + 2;
  return xml.replace(start, old.size(), content);
}

inline std::string FromBase64(const std::string& text) {
  std::vector<unsigned char> bytes(text.size() / 4 * 3 + 1);
  const int length = EVP_DecodeBlock(bytes.data(), reinterpret_cast<const unsigned char*>(text.data()),
                                     static_cast<int>(text.size()));
  if (length < 0) throw std::runtime_error("no Base64");
  const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with("=") ? 1 : 0;
  return {bytes.begin(), bytes.begin() + length - static_cast<std::ptrdiff_t>(padding)};
}

inline std::string ToBase64(const std::string& bytes) {
  std::vector<unsigned char> text(bytes.size() / 3 * 4 + 5);
  const int length = EVP_EncodeBlock(text.data(), reinterpret_cast<const unsigned char*>(bytes.data()),
                                     static_cast<int>(bytes.size()));
  return {text.begin(), text.begin() + length};
}

/// The document in which the decoded content of an element is changed.
inline std::string WithBytes(const std::string& xml, const std::string& name,
                             const std::function<void(std::string&)>& change) {
  std::string bytes = FromBase64(Element(xml, name));
  change(bytes);
  return WithElement(xml, name, ToBase64(bytes));
}

/// Where a piece of bytes stands, which must be there.
inline std::size_t PositionOf(const std::string& bytes, std::string_view piece) {
  const std::size_t position = bytes.find(piece);
  if (position == std::string::npos) throw std::runtime_error("the bytes aren't there");
  return position;
}

}  // namespace test
