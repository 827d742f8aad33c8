#include "tools/Lines.h"

#include <new>
#include <string_view>
#include <utility>

#include "tools/ExitStatus.h"

namespace zel {

namespace {

constexpr std::size_t kBlock = 65536;

/// The end of a line that is too long is looked for in so many times the bytes that it may have.
constexpr std::size_t kPatience = 16;

}  // namespace

LineReader::LineReader(const std::filesystem::path& path, std::size_t mostBytes)
    : name_(InputName(path)), file_(path, FileKind::Any), mostBytes_(mostBytes) {
  block_.reserve(kBlock);
}

bool LineReader::Fill() {
  block_.resize(kBlock);
  position_ = 0;
  block_.resize(file_.ReadSome(block_.data(), kBlock));
  return !block_.empty();
}

void LineReader::Append(std::string_view piece, bool givesUp) {
  if (line_.kind == Line::Kind::NoMemory) return;
  const std::size_t room = mostBytes_ - line_.text.size();
  try {
    line_.text.append(piece.substr(0, room));
  } catch (const std::bad_alloc&) {
    if (!givesUp) throw;
    line_.kind = Line::Kind::NoMemory;
    std::string().swap(line_.text);
    return;
  }
  if (piece.size() > room) line_.kind = Line::Kind::TooLong;
}

/// Reads on to the end of the line. False when there is no line any more.
bool LineReader::FindEnd(bool givesUp) {
  for (;;) {
    if (position_ == block_.size() && !Fill()) {
      isOver_ = true;
      return length_ > 0;
    }
    const std::size_t end = block_.find('\n', position_);
    const std::string_view piece = std::string_view(block_).substr(position_, end - position_);
    Append(piece, givesUp);
    position_ += piece.size();
    length_ += piece.size();
    if (end != std::string::npos) {
      ++position_;
      if (line_.text.ends_with('\r')) line_.text.pop_back();
      return true;
    }
    if (length_ > kPatience * mostBytes_) {
      isOver_ = true;
      line_.kind = Line::Kind::Endless;
      return true;
    }
  }
}

std::optional<LineReader::Line> LineReader::Next(bool givesUp) {
  if (isOver_ && length_ == 0) return std::nullopt;
  try {
    if (!isOver_ && !FindEnd(givesUp)) return std::nullopt;
  } catch (const Failure& failure) {
    isOver_ = true;
    length_ = 0;
    return Line{Line::Kind::Interrupted, failure.what()};
  }
  Line line = std::move(line_);
  line_ = {};
  length_ = 0;
  return line;
}

}  // namespace zel
