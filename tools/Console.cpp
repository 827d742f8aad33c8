#include "tools/Console.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

#include "tools/ExitStatus.h"
#include "tools/Text.h"

namespace zel {

void GuardStandardStreams() {
  // Opened the wrong way round: reading from a closed standard input and writing to a closed standard output
  // fail.
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
      // The lowest free number is given, which is this one.
      if (open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY) != descriptor) {
        throw Failure(ExitStatus::Trouble, "the standard streams can't be set up");
      }
    }
  }
}

void Print(std::string_view text) {
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    throw Failure(ExitStatus::Trouble,
                  "standard output can't be written: " + std::generic_category().message(errno));
  }
}

void Say(std::string_view text) {
  const std::string line = "zel: " + OneLine(text) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

void SayInPieces(std::initializer_list<std::string_view> parts) {
  std::fputs("zel: ", stderr);
  for (std::string_view part : parts) {
    while (!part.empty()) {
      const auto [bytes, isWellFormed] = FirstCharacter(part);
      const std::string_view shown = isWellFormed && !IsControl(bytes) ? bytes : "?";
      std::fwrite(shown.data(), 1, shown.size(), stderr);
      part.remove_prefix(bytes.size());
    }
  }
  std::fputs("\n", stderr);
}

Progress::Progress(std::string_view job, std::size_t steps, Kind kind)
    : job_(job),
      steps_(steps),
      hasBar_(isatty(STDERR_FILENO) == 1 && (kind == Kind::Steps || isatty(STDOUT_FILENO) == 0)),
      hasLines_(!hasBar_ && kind == Kind::Steps) {}

Progress::~Progress() { Hide(); }

void Progress::Hide() {
  if (isShown_) std::fputs("\r\033[K", stderr);
  isShown_ = false;
}

std::string Progress::Bar() const {
  const std::string job = std::string(job_) + " ";
  if (steps_ == 0) return job + std::to_string(done_);
  constexpr std::size_t kWidth = 30;
  const std::size_t filled = kWidth * done_ / steps_;
  return job + "[" + std::string(filled, '#') + std::string(kWidth - filled, '.') + "] " +
         std::to_string(done_) + "/" + std::to_string(steps_);
}

void Progress::Step(std::string_view what) {
  ++done_;
  std::string line;
  if (hasBar_) {
    // A terminal takes longer for a line than many a step does.
    constexpr auto kPause = std::chrono::milliseconds(50);
    const auto now = std::chrono::steady_clock::now();
    if (now - lastShown_ < kPause && done_ != steps_) return;
    lastShown_ = now;
    isShown_ = true;
    line = "\r\033[K" + Bar();
  } else if (hasLines_) {
    line = std::string(job_) + " " + std::to_string(done_) + "/" + std::to_string(steps_) + " " +
           OneLine(what) + "\n";
  }
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace zel
