#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "tools/Files.h"

namespace zel {

/// Reads a file, or standard input, line by line, with memory for one line only.
class LineReader {
 public:
  /// Lines may have so many bytes. Throws `Failure` (Trouble) when the file can't be read.
  LineReader(const std::filesystem::path& path, std::size_t mostBytes);

  struct Line {
    enum class Kind : std::uint8_t {
      Whole,
      TooLong,      ///< the text is only how it begins
      NoMemory,     ///< there is none for it, so that it has no text
      Endless,      ///< longer still, so that its end isn't looked for; no line follows
      Interrupted,  ///< no line: reading failed, which the text tells; no line follows
    };
    Kind kind = Kind::Whole;
    std::string text{};  ///< without its end
  };

  /// The next line, none at the end. Where there is no memory for it, throws std::bad_alloc, and goes on where it
  /// stopped when it is called again, or (`givesUp`) passes over the line and says so.
  std::optional<Line> Next(bool givesUp);

 private:
  bool Fill();
  bool FindEnd(bool givesUp);
  void Append(std::string_view piece, bool givesUp);

  std::string name_;
  InputFile file_;
  std::size_t mostBytes_;
  std::string block_;  ///< read, and used up to `position_`
  std::size_t position_ = 0;
  Line line_;  ///< as far as it is read
  std::size_t length_ = 0;
  bool isOver_ = false;
};

}  // namespace zel
