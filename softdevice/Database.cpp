#include "softdevice/Database.h"

#include <algorithm>
#include <limits>

namespace softdevice {

namespace {

std::string Describe(sqlite3* database) {
  const int code = database == nullptr ? SQLITE_NOMEM : sqlite3_extended_errcode(database);
  switch (code) {
    case SQLITE_READONLY_DBMOVED: return "it was moved or deleted meanwhile";
    case SQLITE_READONLY_DIRECTORY: return "its folder is read-only";
    default: break;
  }
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return "it is locked by other processes";
    case SQLITE_FULL: return "the disk is full";
    case SQLITE_NOTADB: return "it is no device file";
    case SQLITE_CORRUPT: return std::string("it is damaged (") + sqlite3_errmsg(database) + ")";
    case SQLITE_READONLY: return "it is read-only";
    case SQLITE_CANTOPEN: return "it, or the journal beside it, can't be opened";
    case SQLITE_IOERR:
      return "it can't be read or written (input/output error " + std::to_string(code >> 8) + ")";
    case SQLITE_NOMEM: return "there is no memory left";
    default: return sqlite3_errmsg(database);
  }
}

}  // namespace

DatabaseError::DatabaseError(sqlite3* database)
    : std::runtime_error(Describe(database)), busy_(sqlite3_errcode(database) == SQLITE_BUSY) {}

Database::Database(const std::filesystem::path& path, std::int64_t busyMilliseconds) {
  // An absolute path, as SQLite takes some other texts (":memory:") for something else than files.
  const std::u8string name = std::filesystem::absolute(path).u8string();
  sqlite3* database = nullptr;
  const int result = sqlite3_open_v2(reinterpret_cast<const char*>(name.c_str()), &database,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  database_.reset(database);
  if (result != SQLITE_OK) {
    throw DatabaseError(database);
  }
  constexpr std::int64_t kMaxTimeout = std::numeric_limits<int>::max();
  sqlite3_busy_timeout(database,
                       static_cast<int>(std::clamp<std::int64_t>(busyMilliseconds, 0, kMaxTimeout)));
}

Statement Database::Prepare(std::string_view sql) const { return {database_.get(), sql}; }

void Database::Run(std::string_view sql) const {
  Statement statement = Prepare(sql);
  while (statement.Step()) {
  }
}

std::int64_t Database::Number(std::string_view sql) const {
  Statement statement = Prepare(sql);
  if (!statement.Step()) {
    throw std::runtime_error("it is damaged (a row is missing)");
  }
  return statement.NumberAt(0);
}

bool Database::IsReadOnly() const noexcept { return sqlite3_db_readonly(database_.get(), "main") == 1; }

bool Database::InTransaction() const noexcept { return sqlite3_get_autocommit(database_.get()) == 0; }

Statement::Statement(sqlite3* database, std::string_view sql) : database_(database) {
  sqlite3_stmt* statement = nullptr;
  const int result =
      sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
  statement_.reset(statement);
  Check(result);
}

Statement& Statement::Bind(std::int64_t number) {
  Check(sqlite3_bind_int64(statement_.get(), ++bound_, number));
  return *this;
}

Statement& Statement::Bind(std::string_view text) {
  Check(sqlite3_bind_text64(statement_.get(), ++bound_, text.data(), text.size(), SQLITE_TRANSIENT,
                            SQLITE_UTF8));
  return *this;
}

Statement& Statement::Bind(std::span<const std::uint8_t> bytes) {
  Check(sqlite3_bind_blob64(statement_.get(), ++bound_, bytes.data(), bytes.size(), SQLITE_TRANSIENT));
  return *this;
}

bool Statement::Step() {
  const int result = sqlite3_step(statement_.get());
  if (result != SQLITE_ROW && result != SQLITE_DONE) {
    throw DatabaseError(database_);
  }
  return result == SQLITE_ROW;
}

std::int64_t Statement::NumberAt(int column) const noexcept {
  return sqlite3_column_int64(statement_.get(), column);
}

std::string Statement::TextAt(int column) const {
  const std::vector<std::uint8_t> bytes = BytesAt(column);
  return {bytes.begin(), bytes.end()};
}

std::vector<std::uint8_t> Statement::BytesAt(int column) const {
  const auto* bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement_.get(), column));
  if (bytes == nullptr) {
    return {};
  }
  return {bytes, bytes + sqlite3_column_bytes(statement_.get(), column)};
}

void Statement::Check(int result) const {
  if (result != SQLITE_OK) {
    throw DatabaseError(database_);
  }
}

Transaction::Transaction(const Database& database) : database_(database) { database_.Run("BEGIN IMMEDIATE"); }

Transaction::~Transaction() { Undo(); }

void Transaction::Commit() {
  try {
    database_.Run("COMMIT");
  } catch (...) {
    Undo();
    throw;
  }
}

void Transaction::Undo() noexcept {
  if (database_.InTransaction()) {
    try {
      database_.Run("ROLLBACK");
    } catch (const std::exception&) {
      // Nothing is lost: a journal that can't be played back now is played back by whoever opens the file
      // next.
    }
  }
}

}  // namespace softdevice
