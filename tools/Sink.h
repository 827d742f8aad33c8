#pragma once

#include <string>
#include <string_view>

namespace zel {

/// Takes a text piece by piece, so that nobody has to hold all of it.
class Sink {
 public:
  Sink() = default;
  virtual ~Sink() = default;
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;

  virtual void Write(std::string_view piece) = 0;
};

/// Keeps the text.
class TextSink final : public Sink {
 public:
  void Write(std::string_view piece) override { text_ += piece; }
  [[nodiscard]] const std::string& Text() const noexcept { return text_; }

 private:
  std::string text_;
};

}  // namespace zel
