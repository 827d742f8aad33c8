#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

/// Standard output for results, standard error for everything said about them.
namespace zel {

/// Occupies standard streams that the caller closed, so that no file that is opened later takes their place.
void GuardStandardStreams();

/// Writes to standard output. Throws `Failure` (Trouble) when it doesn't take everything.
void Print(std::string_view text);

/// Writes "zel: ", the text on one line, and a line end to standard error.
void Say(std::string_view text);

/// The same for the parts of a text, without any memory of its own.
void SayInPieces(std::initializer_list<std::string_view> parts);

/// The progress of a long job on standard error.
class Progress {
 public:
  enum class Kind : std::uint8_t {
    Steps,  ///< a bar on a terminal, a line per step elsewhere
    Bulk,   ///< a bar on a terminal, unless the results go there as well; nothing elsewhere
  };

  /// `steps` is 0 when nobody knows how many there will be.
  Progress(std::string_view job, std::size_t steps, Kind kind = Kind::Steps);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// One more step is done.
  void Step(std::string_view what);

  /// Takes the bar away, so that a message can take its place; the next step shows it again.
  void Hide();

 private:
  [[nodiscard]] std::string Bar() const;

  std::string_view job_;
  std::size_t steps_;
  std::size_t done_ = 0;
  bool hasBar_;
  bool hasLines_;
  bool isShown_ = false;
  std::chrono::steady_clock::time_point lastShown_{};
};

}  // namespace zel
