#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "softdevice/Chain.h"
#include "softdevice/Database.h"
#include "softdevice/State.h"
#include "softdevice/Totals.h"

/// Brings a device into a state that would take too long to reach: what is changed gets the digests that it would have
/// had, so that it passes for what was recorded.
namespace softdevice::test {

inline void RunSql(const std::filesystem::path& file, const std::string& sql) {
  sqlite3* database = nullptr;
  const bool done = sqlite3_open(file.c_str(), &database) == SQLITE_OK &&
                    sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
  const std::string error = sqlite3_errmsg(database);
  sqlite3_close(database);
  if (!done) {
    throw std::runtime_error(error);
  }
}

inline void Seal(const std::filesystem::path& file) {
  const Database database(file, 1000);
  bool hasDigest = false;
  StoredState state = ReadStateAsItIs(database, hasDigest);
  state.otherTotals = DigestOfOthers(ReadTotals(database), kOpen, state.month);
  WriteState(database, state);
}

inline void RunSqlAndSeal(const std::filesystem::path& file, const std::string& sql) {
  RunSql(file, sql);
  Seal(file);
}

/// Has the last record of the chain be this one. Only so many records are there before it as are looked at.
inline void MoveTo(const std::filesystem::path& file, const Chain& chain, std::uint32_t number) {
  constexpr std::uint32_t kLookedAt = 31;
  const Database database(file, 1000);
  StoredState state = ReadState(database);
  Head& head = HeadOf(state, chain);
  database.Run("DELETE FROM " + std::string(chain.table));
  const Command command = chain.table == kReports.table ? Command::ReportSigned : Command::SignDataOnly;
  for (std::uint32_t i = std::min(number, kLookedAt); i > 0; --i) {
    Append(database, head,
           {.sequenceNumber = number - i + 1, .command = command, .request = {}, .response = {}});
  }
  WriteState(database, state);
}

}  // namespace softdevice::test
