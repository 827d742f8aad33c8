#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/errors/VnObject.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// A log file, in code page 1252 with CR LF. A host opens it and attaches it as `LogHandler` to any number of
/// objects, whose failures are then appended, each entry whole and in the order of the calls. Its own
/// failures show in the Boolean results only.
class VNZEL10CMN_API clsVnLogFile : private VnObject, public std::enable_shared_from_this<clsVnLogFile> {
 public:
  /// A closed log file that will write errors, not messages.
  clsVnLogFile();
  /// Closes an open file.
  ~clsVnLogFile();

  /// True while a file is open.
  bool FileIsOpen() const noexcept;

  /// Name of the file opened last (UTF-8), kept after closing.
  const std::string& FileName() const noexcept;

  /// Whether entries of error objects are written; True at first.
  bool WriteErrors() const noexcept;
  /// Switches entries of error objects on or off.
  void WriteErrors(bool Value) noexcept;

  /// Whether entries of message objects are written; False at first.
  bool WriteEntries() const noexcept;
  /// Switches entries of message objects on or off.
  void WriteEntries(bool Value) noexcept;

  /// Opens a file (UTF-8 name) for appending, and makes it if there is none; an empty name reopens the file opened
  /// last. `xOverRide` deletes a regular file of that name first; anything else of that name (a pipe, a device) is
  /// opened as it is. With both switches off nothing is opened and the result is True. Fails when a file is open
  /// already, no name is known, or the system refuses; `FileName` changes only on success.
  bool FileOpen(std::string_view xFileName = {}, bool xOverRide = false);

  /// Closes an open file. Always True.
  bool FileClose();

  /// Appends the item's entry and a line end. An item whose kind is switched off is skipped (True); with both switches
  /// off nothing is looked at, a missing item or file included (True). Otherwise fails without an item, without an open
  /// file, for an empty entry, and when the entry can't be written wholly.
  bool FileWriteEntry(const std::shared_ptr<IVnLogItem>& Item);
  /// The same for an item that the caller keeps.
  bool FileWriteEntry(IVnLogItem& Item);

 private:
  friend struct LogFileAccess;

  bool Open(const std::filesystem::path& path);
  bool Write(IVnLogItem* item);

  bool writeErrors_ = true;
  bool writeEntries_ = false;
  std::string fileName_;
  std::filebuf file_;
};

}  // namespace VnZEL10cmn
