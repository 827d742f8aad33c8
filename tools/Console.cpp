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

Progress::Progress(std::string_view job, std::size_t steps)
    : job_(job), steps_(steps), onTerminal_(isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
  if (onTerminal_ && done_ > 0) std::fputs("\r\033[K", stderr);
}

void Progress::Step(std::string_view what) {
  ++done_;
  const std::string count = std::to_string(done_) + "/" + std::to_string(steps_);
  std::string line;
  if (onTerminal_) {
    constexpr std::size_t kWidth = 30;
    const std::size_t filled = kWidth * done_ / steps_;
    line = "\r\033[K" + std::string(job_) + " [" + std::string(filled, '#') +
           std::string(kWidth - filled, '.') + "] " + count;
  } else {
    line = std::string(job_) + " " + count + " " + OneLine(what) + "\n";
  }
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace zel
