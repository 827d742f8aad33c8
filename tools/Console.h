#pragma once

#include <cstddef>
#include <string_view>

/// Standard output for results, standard error for everything said about them.
namespace zel {

/// Occupies standard streams that the caller closed, so that no file that is opened later takes their place.
void GuardStandardStreams();

/// Writes to standard output. Throws `Failure` (Trouble) when it doesn't take everything.
void Print(std::string_view text);

/// Writes "zel: ", the text on one line, and a line end to standard error.
void Say(std::string_view text);

/// The progress of a long job on standard error: a bar on a terminal, a line per step elsewhere.
class Progress {
 public:
  Progress(std::string_view job, std::size_t steps);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// One more step is done.
  void Step(std::string_view what);

 private:
  std::string_view job_;
  std::size_t steps_;
  std::size_t done_ = 0;
  bool onTerminal_;
};

}  // namespace zel
