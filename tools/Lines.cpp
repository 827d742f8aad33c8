#include "tools/Lines.h"

#include <algorithm>
#include <string_view>

namespace zel {

LineReader::LineReader(const std::filesystem::path& path)
    : name_(InputName(path)), file_(OpenForReading(path)) {}

bool LineReader::Fill() {
  constexpr std::size_t kBlock = 65536;
  block_.resize(kBlock);
  position_ = 0;
  block_.resize(ReadSome(file_.get(), name_, block_.data(), kBlock));
  return !block_.empty();
}

std::optional<LineReader::Line> LineReader::Next() {
  Line line;
  for (bool begun = false;; begun = true) {
    if (position_ == block_.size() && !Fill()) {
      return begun ? std::optional(std::move(line)) : std::nullopt;
    }
    const std::size_t end = block_.find('\n', position_);
    const std::string_view piece = std::string_view(block_).substr(position_, end - position_);
    const std::size_t room = kMaxLine - line.text.size();
    line.tooLong = line.tooLong || piece.size() > room;
    line.text.append(piece.substr(0, room));
    position_ += piece.size();
    if (end != std::string::npos) {
      ++position_;
      if (line.text.ends_with('\r')) line.text.pop_back();
      return line;
    }
  }
}

}  // namespace zel
