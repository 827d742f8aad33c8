#include "tools/Files.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <system_error>

#include "tools/ExitStatus.h"
#include "tools/Text.h"

namespace zel {

namespace {

std::string Reason(int error) { return std::generic_category().message(error); }

/// Brings a folder's entries to the disk as far as its file system can do that.
void SyncFolder(const std::filesystem::path& folder) {
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor != -1) {
    fsync(descriptor);
    close(descriptor);
  }
}

}  // namespace

void CloseFile::operator()(std::FILE* file) const noexcept {
  if (file != stdin) std::fclose(file);
}

OpenedFile OpenForReading(const std::filesystem::path& path) {
  OpenedFile file(path == kStandardInput ? stdin : std::fopen(path.c_str(), "rb"));
  if (!file) throw Failure(ExitStatus::Trouble, InputName(path) + " can't be read: " + Reason(errno));
  return file;
}

std::size_t ReadSome(std::FILE* file, const std::string& name, char* buffer, std::size_t size) {
  // Not by fread, which waits until all of the buffer is full.
  for (;;) {
    const ssize_t count = read(fileno(file), buffer, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) throw Failure(ExitStatus::Trouble, name + " can't be read: " + Reason(errno));
  }
}

std::string InputName(const std::filesystem::path& path) {
  return path == kStandardInput ? "standard input" : Quoted(path);
}

std::string ReadFile(const std::filesystem::path& path) {
  const std::string name = InputName(path);
  const OpenedFile file = OpenForReading(path);
  constexpr std::size_t kBlock = 65536;
  std::string content;
  for (std::size_t count = 1; count > 0;) {
    const std::size_t size = content.size();
    content.resize(size + kBlock);
    count = ReadSome(file.get(), name, content.data() + size, kBlock);
    content.resize(size + count);
    if (content.size() > kMaxFileSize) {
      throw Failure(ExitStatus::NotRight,
                    name + " is larger than " + std::to_string(kMaxFileSize / 1024 / 1024) + " MiB");
    }
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
