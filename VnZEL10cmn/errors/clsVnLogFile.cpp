#include "VnZEL10cmn/errors/clsVnLogFile.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "VnZEL10cmn/errors/clsVnLogItem.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;

namespace {

std::filesystem::path PathOf(std::string_view name) {
  return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

}  // namespace

clsVnLogFile::clsVnLogFile() : VnObject("clsVnLogFile") {
  // Without a buffer an entry goes to the system in one piece, and at once.
  file_.pubsetbuf(nullptr, 0);
}

clsVnLogFile::~clsVnLogFile() { FileClose(); }

bool clsVnLogFile::FileIsOpen() const noexcept { return file_.is_open(); }

const std::string& clsVnLogFile::FileName() const noexcept { return fileName_; }

bool clsVnLogFile::WriteErrors() const noexcept { return writeErrors_; }

void clsVnLogFile::WriteErrors(bool Value) noexcept { writeErrors_ = Value; }

bool clsVnLogFile::WriteEntries() const noexcept { return writeEntries_; }

void clsVnLogFile::WriteEntries(bool Value) noexcept { writeEntries_ = Value; }

bool clsVnLogFile::FileOpen(std::string_view xFileName, bool xOverRide) {
  constexpr std::string_view operation = "FileOpen";
  return Run(operation, [&] {
    if (!writeErrors_ && !writeEntries_) {
      return true;
    }
    if (FileIsOpen()) {
      return Fail(
          ZELErrorCodes::Err_Log_FileOpen,
          Compose("Es ist bereits eine Datei geöffnet", kCrLf, kCrLf, "Dateiname: \"", fileName_, "\""),
          operation);
    }
    std::string name(internal::Trim(xFileName).empty() ? std::string_view(fileName_)
                                                       : internal::Trim(xFileName));
    if (name.empty()) {
      return Fail(
          ZELErrorCodes::Err_Log_NoFileName,
          Compose("Die Protokolldatei kann nicht geöffnet werden", kCrLf, "Es ist keine Datei angegeben!"),
          operation);
    }
    const std::filesystem::path path = PathOf(name);
    // The system would open the file named by what stands before a NUL.
    std::error_code refused = name.find('\0') == std::string::npos
                                  ? std::error_code()
                                  : std::make_error_code(std::errc::invalid_argument);
    if (std::error_code unknown; !refused && xOverRide && std::filesystem::is_regular_file(path, unknown)) {
      std::filesystem::remove(path, refused);
    }
    if (refused || !Open(path)) {
      return Fail(
          ZELErrorCodes::Err_Log_FileOpen,
          Compose("Die Protokolldatei kann nicht geöffnet werden", kCrLf, "Dateiname: \"", name, "\""),
          operation);
    }
    fileName_ = std::move(name);
    return true;
  });
}

bool clsVnLogFile::Open(const std::filesystem::path& path) {
  try {
    return file_.open(path, std::ios::out | std::ios::app | std::ios::binary) != nullptr;
  } catch (...) {
    // It may be open by now, without the memory that it takes to write.
    file_.close();
    throw;
  }
}

bool clsVnLogFile::FileClose() {
  return Run("FileClose", [&] {
    if (FileIsOpen()) {
      file_.close();
    }
    return true;
  });
}

bool clsVnLogFile::FileWriteEntry(const std::shared_ptr<IVnLogItem>& Item) {
  // The item may take itself out of the variable that is handed in here.
  const std::shared_ptr<IVnLogItem> kept = Item;
  return Write(kept.get());
}

bool clsVnLogFile::FileWriteEntry(IVnLogItem& Item) { return Write(&Item); }

bool clsVnLogFile::Write(IVnLogItem* item) {
  constexpr std::string_view operation = "FileWriteEntry";
  const auto fail = [&](ZELErrorCodes number, std::string_view cause) {
    return Fail(number, Compose("Schreiben der Daten nicht möglich!", kCrLf, "Ursache: ", cause), operation);
  };
  // A host's item may let go of the log.
  const std::shared_ptr<clsVnLogFile> alive = weak_from_this().lock();
  return Run(operation, [&] {
    if (!writeErrors_ && !writeEntries_) {
      return true;
    }
    if (item == nullptr) {
      return fail(ZELErrorCodes::Err_Log_NoObject, "Es wurde kein gültiges Objekt übergeben.");
    }
    if ((!writeErrors_ && dynamic_cast<clsVnError*>(item) != nullptr) ||
        (!writeEntries_ && dynamic_cast<clsVnLogItem*>(item) != nullptr)) {
      return true;
    }
    const auto failClosed = [&] {
      return fail(ZELErrorCodes::Err_Log_FileNotOpen, "Es ist keine Datei geöffnet.");
    };
    if (!FileIsOpen()) {
      return failClosed();
    }
    const std::string entry = item->GetLogEntry();
    if (entry.empty()) {
      return fail(ZELErrorCodes::Err_Log_NoObjData, "Das Eintragsobjekt lieferte keine Daten.");
    }
    // A host's item may have closed the file meanwhile.
    if (!FileIsOpen()) {
      return failClosed();
    }
    const std::string bytes = internal::ToCodePage1252(entry).append(kCrLf);
    const auto size = static_cast<std::streamsize>(bytes.size());
    if (file_.sputn(bytes.data(), size) != size) {
      return fail(ZELErrorCodes::Err_Log_FileOpen, "Die Datei konnte nicht geschrieben werden.");
    }
    return true;
  });
}

}  // namespace VnZEL10cmn
