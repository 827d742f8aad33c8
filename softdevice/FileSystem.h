#pragma once

#include <filesystem>
#include <string_view>

#include "softdevice/Database.h"

/// What the device needs of the file system around its file. Each check throws where it doesn't get it.
namespace softdevice {

/// Whether locks hold others off, in the file's folder: where they do nothing, or can't be had, two processes would
/// give one number twice. Nothing is found out where no file can be made in the folder; nothing can be recorded
/// there either.
void CheckLocks(const std::filesystem::path& file);

/// Whether a journal beside the file belongs to it as it is now, so that it may be played back, and whether there is
/// no write-ahead log, which a device never has. To be called before anything is read.
void CheckJournals(const Database& database);

/// Whether the file is as long as it says, within a transaction or snapshot. New pages would be written over others
/// if it were not.
void CheckLength(const Database& database);

/// Whether SQLite finds the pages of a table, or of the whole file, in order. That takes longer the more there are.
void CheckStructure(const Database& database, std::string_view table = {});

/// Whether SQLite's list of free pages is in order, as new pages are taken from it, and a wrong list would have
/// others written over. It is nearly always empty; when it isn't, the whole file has to be looked at.
void CheckFreePages(const Database& database);

}  // namespace softdevice
