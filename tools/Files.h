#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// Reading whole files and writing them whole or not at all.
namespace zel {

/// Stands for standard input where a file is read.
inline constexpr std::string_view kStandardInput = "-";

/// Larger files are refused: no sale, request or document comes near.
inline constexpr std::size_t kMaxFileSize = std::size_t{32} * 1024 * 1024;

/// What may stand behind a name.
enum class FileKind : std::uint8_t {
  Any,      ///< also a pipe that somebody writes to, or a device: the caller has named it
  Regular,  ///< a file: its name comes from a list or a folder
};

/// A file, or standard input, that is read.
class InputFile {
 public:
  /// Throws `Failure` (Trouble) when it can't be read: it isn't there, it is of another kind, its name holds a NUL
  /// byte, or it is a pipe with a name that nobody writes to within a second.
  InputFile(const std::filesystem::path& path, FileKind kind);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  /// Reads what is there, at least a byte and at most `size`; 0 at the end. Throws `Failure` (Trouble) when it can't be
  /// read.
  std::size_t ReadSome(char* buffer, std::size_t size);

  /// How many bytes there are, as far as that can be told before they are read.
  [[nodiscard]] std::size_t ExpectedSize() const noexcept { return expectedSize_; }

 private:
  void Check(FileKind kind);
  void WaitForWriter();
  [[noreturn]] void Fail(const std::string& reason) const;

  std::string name_;  ///< for messages
  int descriptor_ = 0;
  bool isOpened_ = false;  ///< which standard input isn't
  std::size_t expectedSize_ = 0;
  std::optional<char> first_;  ///< read already
};

/// "standard input", or the file's name between quotation marks.
std::string InputName(const std::filesystem::path& path);

/// The content of a file, or of standard input. Throws `Failure`: Trouble when it can't be read, NotRight
/// when it is empty or larger than `kMaxFileSize`.
std::string ReadFile(const std::filesystem::path& path, FileKind kind = FileKind::Any);

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
