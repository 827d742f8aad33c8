#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

/// Reading whole files and writing them whole or not at all.
namespace zel {

/// Stands for standard input where a file is read.
inline constexpr std::string_view kStandardInput = "-";

/// Larger files are refused: no sale, request or document comes near.
inline constexpr std::size_t kMaxFileSize = std::size_t{32} * 1024 * 1024;

struct CloseFile {
  void operator()(std::FILE* file) const noexcept;
};
using OpenedFile = std::unique_ptr<std::FILE, CloseFile>;

/// Opens a file, or standard input. Throws `Failure` (Trouble) when it can't be read.
OpenedFile OpenForReading(const std::filesystem::path& path);

/// Reads what is there, at least a byte and at most `size`; 0 at the end. `name` is for messages. Throws `Failure`
/// (Trouble) when it can't be read.
std::size_t ReadSome(std::FILE* file, const std::string& name, char* buffer, std::size_t size);

/// "standard input", or the file's name between quotation marks.
std::string InputName(const std::filesystem::path& path);

/// The content of a file, or of standard input. Throws `Failure`: Trouble when it can't be read, NotRight
/// when it is empty or larger than `kMaxFileSize`.
std::string ReadFile(const std::filesystem::path& path);

/// A file that comes into being whole and on the disk, or not at all.
///
/// The bytes go to a hidden neighbour (.zel-*.tmp) that takes the name at the end. Without `overwrite` that
/// fails when another file has taken the name in the meantime. Operations throw `Failure` (Trouble).
class OutputFile {
 public:
  /// Finds out all that can be known before: whether the name is free, the folder can be written, and the
  /// disk has room for `expectedSize` bytes.
  OutputFile(std::filesystem::path target, bool overwrite, std::size_t expectedSize);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void Write(std::string_view content);

 private:
  [[noreturn]] void Fail(int error) const;
  void TakeName();
  void Discard() noexcept;

  std::filesystem::path target_;
  std::filesystem::path neighbour_;
  bool overwrite_;
  int descriptor_ = -1;
};

}  // namespace zel
