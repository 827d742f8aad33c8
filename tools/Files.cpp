#include "tools/Files.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <system_error>
#include <thread>

#include "tools/ExitStatus.h"
#include "tools/Text.h"

namespace zel {

namespace {

std::string Reason(int error) { return std::generic_category().message(error); }

/// Whether a pipe has a name in a folder; others are made together with their writers.
bool IsNamed(int pipe) {
  struct statfs system {};
  return fstatfs(pipe, &system) != 0 || system.f_type != PIPEFS_MAGIC;
}

/// Brings a folder's entries to the disk as far as its file system can do that.
void SyncFolder(const std::filesystem::path& folder) {
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor != -1) {
    fsync(descriptor);
    close(descriptor);
  }
}

}  // namespace

InputFile::InputFile(const std::filesystem::path& path, FileKind kind) : name_(InputName(path)) {
  if (path == kStandardInput) {
    descriptor_ = STDIN_FILENO;
    return;
  }
  // The system would open the file that is named by what stands before the NUL.
  if (path.native().find('\0') != std::string::npos) Fail("the name holds a NUL byte");
  // Opened like this, a pipe doesn't wait until somebody writes to it.
  descriptor_ = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor_ == -1) Fail(Reason(errno));
  isOpened_ = true;
  try {
    Check(kind);
  } catch (...) {
    close(descriptor_);
    throw;
  }
}

InputFile::~InputFile() {
  if (isOpened_) close(descriptor_);
}

void InputFile::Check(FileKind kind) {
  struct stat status {};
  if (fstat(descriptor_, &status) != 0) Fail(Reason(errno));
  if (S_ISDIR(status.st_mode)) Fail(Reason(EISDIR));
  if (S_ISREG(status.st_mode)) {
    expectedSize_ = static_cast<std::size_t>(status.st_size);
    return;
  }
  if (kind == FileKind::Regular) throw Failure(ExitStatus::Trouble, name_ + " is no regular file");
  // A pipe without a name, such as that of a process substitution, has had a writer.
  if (S_ISFIFO(status.st_mode) && IsNamed(descriptor_)) WaitForWriter();
  const int flags = fcntl(descriptor_, F_GETFL);
  if (flags == -1 || fcntl(descriptor_, F_SETFL, flags & ~O_NONBLOCK) == -1) Fail(Reason(errno));
}

void InputFile::WaitForWriter() {
  constexpr int kAttempts = 100;
  constexpr int kPauseMilliseconds = 10;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    // Where nobody has opened the pipe for writing, it is at its end at once; otherwise there is a byte, or none yet.
    char byte = 0;
    const ssize_t count = read(descriptor_, &byte, 1);
    if (count == 1) first_ = byte;
    if (count != 0) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(kPauseMilliseconds));
  }
  Fail("nobody writes to this pipe");
}

void InputFile::Fail(const std::string& reason) const {
  throw Failure(ExitStatus::Trouble, name_ + " can't be read: " + reason);
}

std::size_t InputFile::ReadSome(char* buffer, std::size_t size) {
  if (first_) {
    *buffer = *first_;
    first_.reset();
    return 1;
  }
  // Not by fread, which waits until all of the buffer is full.
  for (;;) {
    const ssize_t count = read(descriptor_, buffer, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) Fail(Reason(errno));
  }
}

std::string InputName(const std::filesystem::path& path) {
  return path == kStandardInput ? "standard input" : Quoted(path);
}

std::string ReadFile(const std::filesystem::path& path, FileKind kind) {
  const std::string name = InputName(path);
  InputFile file(path, kind);
  constexpr std::size_t kBlock = 65536;
  std::string content;
  const auto tooLarge = [&name] {
    return Failure(ExitStatus::NotRight,
                   name + " is larger than " + std::to_string(kMaxFileSize / 1024 / 1024) + " MiB");
  };
  if (file.ExpectedSize() > kMaxFileSize) throw tooLarge();
  // No byte more than the file has, and one block to see that it has no more.
  content.reserve(file.ExpectedSize() + kBlock);
  for (std::size_t count = 1; count > 0;) {
    const std::size_t size = content.size();
    content.resize(size + kBlock);
    count = file.ReadSome(content.data() + size, kBlock);
    content.resize(size + count);
    if (content.size() > kMaxFileSize) throw tooLarge();
  }
  if (content.empty()) {
    throw Failure(ExitStatus::NotRight, name + " is empty");
  }
  return content;
}

OutputFile::OutputFile(std::filesystem::path target, bool overwrite, std::size_t expectedSize)
    : target_(std::move(target)), overwrite_(overwrite) {
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::symlink_status(target_, ignored);
  if (std::filesystem::exists(status)) {
    if (!overwrite_) {
      throw Failure(ExitStatus::Trouble, Quoted(target_) + " exists already (--force overwrites it)");
    }
    if (!std::filesystem::is_regular_file(std::filesystem::status(target_, ignored))) {
      throw Failure(ExitStatus::Trouble, Quoted(target_) + " is no regular file");
    }
  }
  if (!target_.has_filename()) {
    throw Failure(ExitStatus::Trouble, Quoted(target_) + " names no file");
  }
  if (const std::size_t length = target_.filename().native().size(); length > NAME_MAX) {
    Fail(ENAMETOOLONG);
  }

  const std::string stem = ".zel-" + std::to_string(getpid()) + "-";
  for (int attempt = 0; descriptor_ == -1; ++attempt) {
    neighbour_ = target_.parent_path() / (stem + std::to_string(attempt) + ".tmp");
    descriptor_ = open(neighbour_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    constexpr int kAttempts = 1000;
    if (descriptor_ == -1 && (errno != EEXIST || attempt == kAttempts)) Fail(errno);
  }
  if (const int error =
          posix_fallocate(descriptor_, 0, static_cast<off_t>(std::max<std::size_t>(expectedSize, 1)));
      error != 0 && error != EINVAL && error != EOPNOTSUPP) {
    Discard();
    Fail(error);
  }
}

OutputFile::~OutputFile() { Discard(); }

void OutputFile::Write(std::string_view content) {
  std::string_view rest = content;
  while (!rest.empty()) {
    const ssize_t count = write(descriptor_, rest.data(), rest.size());
    if (count == -1 && errno != EINTR) Fail(errno);
    if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
  }
  if (ftruncate(descriptor_, static_cast<off_t>(content.size())) != 0 || fsync(descriptor_) != 0) Fail(errno);
  TakeName();
  const std::filesystem::path folder = target_.parent_path();
  SyncFolder(folder.empty() ? "." : folder);
}

void OutputFile::TakeName() {
  if (overwrite_) {
    if (rename(neighbour_.c_str(), target_.c_str()) != 0) Fail(errno);
  } else if (link(neighbour_.c_str(), target_.c_str()) == 0) {
    unlink(neighbour_.c_str());
  } else {
    int error = errno;
#ifdef RENAME_NOREPLACE
    // Some file systems know no second name of a file.
    if (error != EEXIST) {
      error = renameat2(AT_FDCWD, neighbour_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) == 0
                  ? 0
                  : errno;
    }
#endif
    if (error != 0) Fail(error);
  }
  neighbour_.clear();
}

void OutputFile::Fail(int error) const {
  throw Failure(ExitStatus::Trouble, Quoted(target_) + " can't be written: " + Reason(error));
}

void OutputFile::Discard() noexcept {
  if (descriptor_ != -1) {
    close(descriptor_);
    descriptor_ = -1;
    if (!neighbour_.empty()) unlink(neighbour_.c_str());
  }
}

}  // namespace zel
