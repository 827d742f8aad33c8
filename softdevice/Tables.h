#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "softdevice/Database.h"

/// The versions of device files and their tables.
namespace softdevice {

enum class FileVersion : std::uint8_t {
  BookingsOnly = 1,    ///< knew no life cycle: all devices were active
  WithoutDigests = 2,  ///< believed whatever the file held
  Present = 3
};

/// Names and definitions of the tables.
std::vector<std::pair<std::string_view, std::string_view>> TablesOf(FileVersion version);

/// Makes an empty file one of the present version.
void MakeTables(const Database& database);

/// Throws where it is no device file, or one of a version that is unknown.
FileVersion VersionOf(const Database& database);
void SetVersion(const Database& database, FileVersion version);

/// Throws `Damage` where the tables are not those that a file of this version has.
void CheckTables(const Database& database, FileVersion version);

}  // namespace softdevice
