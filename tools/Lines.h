#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

#include "tools/Files.h"

namespace zel {

/// Reads a file, or standard input, line by line, with memory for one line only.
class LineReader {
 public:
  /// Throws `Failure` (Trouble) when the file can't be read.
  explicit LineReader(const std::filesystem::path& path);

  struct Line {
    std::string text;      ///< without its end
    bool tooLong = false;  ///< longer than `kMaxLine`: the text is only how it begins
  };

  /// A document of the largest size has room in it, whatever of it is escaped.
  static constexpr std::size_t kMaxLine = 2 * kMaxFileSize;

  /// The next line, none at the end. Throws `Failure` (Trouble) when the file can't be read.
  std::optional<Line> Next();

 private:
  bool Fill();

  std::string name_;
  OpenedFile file_;
  std::string block_;  ///< read, and used up to `position_`
  std::size_t position_ = 0;
};

}  // namespace zel
