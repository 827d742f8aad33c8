#include "softdevice/Tables.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>

namespace softdevice {

namespace {

constexpr std::int64_t kApplicationId = 0x5A454C31;  // "ZEL1": tells device files from other databases

// The names of `signed_request` and its column `sequence_number` are those of the first version, which knew no other
// requests and no other numbers.

constexpr std::string_view kDevice =
    // `life_cycle` as in `LifeCycle`. `last_reported_number`: the last transaction that a closing covers.
    R"(CREATE TABLE device (
         id INTEGER PRIMARY KEY CHECK (id = 1),
         private_key TEXT NOT NULL,
         public_key TEXT NOT NULL,
         taxpayer_id TEXT NOT NULL,
         running_number INTEGER NOT NULL,
         life_cycle INTEGER NOT NULL,
         transport_pin TEXT NOT NULL,
         wrong_pins INTEGER NOT NULL,
         last_sequence_number INTEGER NOT NULL,
         last_sequence_digest BLOB NOT NULL,
         last_report_number INTEGER NOT NULL,
         last_report_digest BLOB NOT NULL,
         last_reported_number INTEGER NOT NULL,
         month INTEGER NOT NULL,
         other_totals BLOB NOT NULL,
         digest BLOB NOT NULL
       ) STRICT)";

constexpr std::string_view kTransaction =
    R"(CREATE TABLE signed_request (
         sequence_number INTEGER PRIMARY KEY CHECK (sequence_number BETWEEN 1 AND 4294967295),
         command INTEGER NOT NULL,
         request BLOB NOT NULL,
         response BLOB NOT NULL,
         digest BLOB NOT NULL DEFAULT x''
       ) STRICT)";

constexpr std::string_view kReport =
    R"(CREATE TABLE signed_report (
         report_number INTEGER PRIMARY KEY CHECK (report_number BETWEEN 1 AND 4294967295),
         command INTEGER NOT NULL,
         request BLOB NOT NULL,
         response BLOB NOT NULL,
         digest BLOB NOT NULL DEFAULT x''
       ) STRICT)";

constexpr std::string_view kTotal =
    // `month` 0: since the last closing.
    R"(CREATE TABLE total (
         month INTEGER NOT NULL,
         container INTEGER NOT NULL,
         turnover INTEGER NOT NULL,
         turnover_negative INTEGER NOT NULL,
         vat INTEGER NOT NULL,
         vat_rate INTEGER NOT NULL,
         bookings INTEGER NOT NULL,
         overflow INTEGER NOT NULL,
         vat_changed INTEGER NOT NULL,
         third_party INTEGER NOT NULL,
         PRIMARY KEY (month, container)
       ) STRICT, WITHOUT ROWID)";

// Of the versions before. What they have that isn't here is the same.

constexpr std::string_view kDeviceWithoutDigests =
    R"(CREATE TABLE device (
         id INTEGER PRIMARY KEY CHECK (id = 1),
         taxpayer_id TEXT NOT NULL,
         running_number INTEGER NOT NULL,
         life_cycle INTEGER NOT NULL,
         private_key TEXT NOT NULL,
         last_sequence_number INTEGER NOT NULL,
         transport_pin TEXT NOT NULL DEFAULT '',
         wrong_pins INTEGER NOT NULL DEFAULT 0,
         last_report_number INTEGER NOT NULL DEFAULT 0,
         last_reported_number INTEGER NOT NULL DEFAULT 0
       ) STRICT)";

constexpr std::string_view kTransactionWithoutDigests =
    R"(CREATE TABLE signed_request (
         sequence_number INTEGER PRIMARY KEY CHECK (sequence_number BETWEEN 1 AND 4294967295),
         command INTEGER NOT NULL,
         request BLOB NOT NULL,
         response BLOB NOT NULL
       ) STRICT)";

constexpr std::string_view kReportWithoutDigests =
    R"(CREATE TABLE signed_report (
         report_number INTEGER PRIMARY KEY CHECK (report_number BETWEEN 1 AND 4294967295),
         command INTEGER NOT NULL,
         request BLOB NOT NULL,
         response BLOB NOT NULL
       ) STRICT)";

constexpr std::string_view kDeviceOfBookingsOnly =
    R"(CREATE TABLE device (
         id INTEGER PRIMARY KEY CHECK (id = 1),
         taxpayer_id TEXT NOT NULL,
         running_number INTEGER NOT NULL,
         life_cycle INTEGER NOT NULL,
         private_key TEXT NOT NULL,
         last_sequence_number INTEGER NOT NULL
       ) STRICT)";

constexpr std::string_view kTotalOfBookingsOnly =
    R"(CREATE TABLE total (
         month INTEGER NOT NULL,
         container INTEGER NOT NULL,
         turnover INTEGER NOT NULL,
         turnover_negative INTEGER NOT NULL,
         vat INTEGER NOT NULL,
         vat_rate INTEGER NOT NULL,
         bookings INTEGER NOT NULL,
         overflow INTEGER NOT NULL,
         vat_changed INTEGER NOT NULL,
         PRIMARY KEY (month, container)
       ) STRICT, WITHOUT ROWID)";

/// White space apart, which SQLite puts where it likes when it adds a column.
std::string WithoutSpace(std::string_view sql) {
  std::string text;
  std::copy_if(sql.begin(), sql.end(), std::back_inserter(text),
               [](unsigned char character) { return std::isspace(character) == 0; });
  return text;
}

}  // namespace

std::vector<std::pair<std::string_view, std::string_view>> TablesOf(FileVersion version) {
  switch (version) {
    case FileVersion::BookingsOnly:
      return {{"device", kDeviceOfBookingsOnly},
              {"signed_request", kTransactionWithoutDigests},
              {"total", kTotalOfBookingsOnly}};
    case FileVersion::WithoutDigests:
      return {{"device", kDeviceWithoutDigests},
              {"signed_request", kTransactionWithoutDigests},
              {"signed_report", kReportWithoutDigests},
              {"total", kTotal}};
    case FileVersion::Present: break;
  }
  return {
      {"device", kDevice}, {"signed_request", kTransaction}, {"signed_report", kReport}, {"total", kTotal}};
}

void MakeTables(const Database& database) {
  for (const auto& [name, sql] : TablesOf(FileVersion::Present)) {
    database.Run(sql);
  }
  database.Run("PRAGMA application_id = " + std::to_string(kApplicationId));
  SetVersion(database, FileVersion::Present);
}

FileVersion VersionOf(const Database& database) {
  if (database.Number("PRAGMA application_id") != kApplicationId) {
    throw std::runtime_error("it is a database, but no device file");
  }
  const std::int64_t version = database.Number("PRAGMA user_version");
  if (version < static_cast<int>(FileVersion::BookingsOnly) ||
      version > static_cast<int>(FileVersion::Present)) {
    throw std::runtime_error("it was made by another version of the software signing device");
  }
  return static_cast<FileVersion>(version);
}

void SetVersion(const Database& database, FileVersion version) {
  database.Run("PRAGMA user_version = " + std::to_string(static_cast<int>(version)));
}

void CheckTables(const Database& database, FileVersion version) {
  std::map<std::string, std::string> expected;
  for (const auto& [name, sql] : TablesOf(version)) {
    expected.emplace(name, WithoutSpace(sql));
  }
  std::map<std::string, std::string> found;
  Statement rows = database.Prepare("SELECT name, sql FROM sqlite_schema");
  while (rows.Step()) {
    found.emplace(rows.TextAt(0), WithoutSpace(rows.TextAt(1)));
  }
  if (found != expected) {
    throw Damage("its tables are not those of a device");
  }
}

}  // namespace softdevice
