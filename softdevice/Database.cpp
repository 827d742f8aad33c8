#include "softdevice/Database.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <functional>
#include <map>
#include <system_error>
#include <utility>

namespace softdevice {

namespace {

struct Finalize {
  void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};

struct Close {
  void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
};

}  // namespace

struct Connection {
  std::unique_ptr<sqlite3, Close> database;
  /// Statements that nobody uses now. Preparing one takes longer than most of them run.
  std::map<std::string, std::unique_ptr<sqlite3_stmt, Finalize>, std::less<>> idle;
  std::chrono::milliseconds busyTimeout{0};
  std::chrono::steady_clock::time_point waitingSince;
  bool hasNoLocks = false;  ///< the last call found that the system has no locks for the file

  void BeginCall() noexcept {
    hasNoLocks = false;
    errno = 0;
  }
};

namespace {

/// SQLite takes a system that has no locks (ENOLCK) for a file that is locked, and would wait in vain. All calls of
/// SQLite begin with a clear `errno`, and only calls that lock leave this one there.
int Wait(void* context, int count) {
  auto& connection = *static_cast<Connection*>(context);
  if (errno == ENOLCK) {
    connection.hasNoLocks = true;
    return 0;
  }
  const auto now = std::chrono::steady_clock::now();
  if (count == 0) {
    connection.waitingSince = now;
  }
  if (now - connection.waitingSince >= connection.busyTimeout) {
    return 0;
  }
  constexpr int kDelays[] = {1, 2, 5, 10, 15, 20, 25, 25, 25, 50};
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(connection.busyTimeout - (now - connection.waitingSince));
  const int delay = kDelays[std::min<std::size_t>(static_cast<std::size_t>(count), std::size(kDelays) - 1)];
  sqlite3_sleep(static_cast<int>(std::min<std::int64_t>(delay, left.count())));
  errno = 0;
  return 1;
}

std::string Describe(Connection& connection) {
  sqlite3* const database = connection.database.get();
  const int code = database == nullptr ? SQLITE_NOMEM : sqlite3_extended_errcode(database);
  switch (code) {
    case SQLITE_READONLY_DBMOVED: return "it was moved or deleted meanwhile";
    case SQLITE_READONLY_DIRECTORY: return "its folder is read-only";
    default: break;
  }
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return connection.hasNoLocks
                 ? "its file system has no locks to give (" + std::generic_category().message(ENOLCK) + ")"
                 : "it is locked by other processes";
    case SQLITE_FULL: return "the disk is full";
    case SQLITE_NOTADB: return "it is no device file";
    case SQLITE_CORRUPT:
    case SQLITE_CONSTRAINT: return std::string("it is damaged (") + sqlite3_errmsg(database) + ")";
    case SQLITE_READONLY: return "it is read-only";
    case SQLITE_CANTOPEN: return "it, or the journal beside it, can't be opened";
    case SQLITE_IOERR:
      return "it can't be read or written (input/output error " + std::to_string(code >> 8) + ")";
    case SQLITE_NOMEM: return "there is no memory left";
    default: return sqlite3_errmsg(database);
  }
}

/// SQLite's own handle of the file.
sqlite3_file* FileOf(sqlite3* database) {
  sqlite3_file* file = nullptr;
  const int result = sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  if (result != SQLITE_OK || file == nullptr || file->pMethods == nullptr) {
    throw std::runtime_error("it can't be opened");
  }
  return file;
}

std::filesystem::path PathOf(const char* name) {
  return std::u8string(reinterpret_cast<const char8_t*>(name));
}

void Undo(const Database& database) noexcept {
  if (database.InTransaction()) {
    try {
      database.Run("ROLLBACK");
    } catch (const std::exception&) {
      // Nothing is lost: a journal that can't be played back now is played back by whoever opens the file
      // next.
    }
  }
}

}  // namespace

DatabaseError::DatabaseError(Connection& connection)
    : std::runtime_error(Describe(connection)),
      busy_(sqlite3_errcode(connection.database.get()) == SQLITE_BUSY && !connection.hasNoLocks) {}

Database::Database(const std::filesystem::path& path, std::int64_t busyMilliseconds)
    : connection_(std::make_unique<Connection>()) {
  // An absolute path, as SQLite takes some other texts (":memory:") for something else than files.
  const std::u8string name = std::filesystem::absolute(path).u8string();
  sqlite3* database = nullptr;
  const int result = sqlite3_open_v2(reinterpret_cast<const char*>(name.c_str()), &database,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  connection_->database.reset(database);
  if (result != SQLITE_OK) {
    throw DatabaseError(*connection_);
  }
  connection_->busyTimeout = std::chrono::milliseconds(std::max<std::int64_t>(busyMilliseconds, 0));
  sqlite3_busy_handler(database, Wait, connection_.get());
}

Database::Database(Database&&) noexcept = default;
Database& Database::operator=(Database&&) noexcept = default;
Database::~Database() = default;

Statement Database::Prepare(std::string_view sql) const { return {*connection_, sql}; }

void Database::Run(std::string_view sql) const {
  Statement statement = Prepare(sql);
  while (statement.Step()) {
  }
}

std::int64_t Database::Number(std::string_view sql) const {
  Statement statement = Prepare(sql);
  if (!statement.Step()) {
    throw Damage("a row is missing");
  }
  return statement.NumberAt(0);
}

bool Database::IsReadOnly() const noexcept {
  return sqlite3_db_readonly(connection_->database.get(), "main") == 1;
}

bool Database::InTransaction() const noexcept {
  return sqlite3_get_autocommit(connection_->database.get()) == 0;
}

std::vector<std::uint8_t> Database::FileStart(std::size_t size) const {
  sqlite3_file* const file = FileOf(connection_->database.get());
  std::vector<std::uint8_t> bytes(
      static_cast<std::size_t>(std::min<std::int64_t>(static_cast<std::int64_t>(size), FileSize())));
  if (!bytes.empty() &&
      file->pMethods->xRead(file, bytes.data(), static_cast<int>(bytes.size()), 0) != SQLITE_OK) {
    throw std::runtime_error("it can't be read");
  }
  return bytes;
}

std::int64_t Database::FileSize() const {
  sqlite3_file* const file = FileOf(connection_->database.get());
  sqlite3_int64 size = 0;
  if (file->pMethods->xFileSize(file, &size) != SQLITE_OK) {
    throw std::runtime_error("it can't be read");
  }
  return size;
}

std::filesystem::path Database::Journal() const {
  return PathOf(sqlite3_filename_journal(sqlite3_db_filename(connection_->database.get(), "main")));
}

std::filesystem::path Database::WriteAheadLog() const {
  return PathOf(sqlite3_filename_wal(sqlite3_db_filename(connection_->database.get(), "main")));
}

void Statement::Release::operator()(sqlite3_stmt* statement) const noexcept {
  std::unique_ptr<sqlite3_stmt, Finalize> owner(statement);
  sqlite3_reset(statement);
  sqlite3_clear_bindings(statement);
  try {
    connection->idle.try_emplace(sqlite3_sql(statement), std::move(owner));
  } catch (const std::bad_alloc&) {
    // It is prepared anew then.
  }
}

Statement::Statement(Connection& connection, std::string_view sql)
    : connection_(connection), statement_(nullptr, Release{&connection}) {
  if (const auto found = connection.idle.find(sql); found != connection.idle.end()) {
    statement_.reset(found->second.release());
    connection.idle.erase(found);
    return;
  }
  sqlite3_stmt* statement = nullptr;
  connection.BeginCall();
  const int result = sqlite3_prepare_v2(connection.database.get(), sql.data(), static_cast<int>(sql.size()),
                                        &statement, nullptr);
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
  // Without a pointer SQLite would take the empty ones for NULL.
  static constexpr std::uint8_t kEmpty = 0;
  Check(sqlite3_bind_blob64(statement_.get(), ++bound_, bytes.empty() ? &kEmpty : bytes.data(), bytes.size(),
                            SQLITE_TRANSIENT));
  return *this;
}

bool Statement::Step() {
  connection_.BeginCall();
  const int result = sqlite3_step(statement_.get());
  if (result != SQLITE_ROW && result != SQLITE_DONE) {
    throw DatabaseError(connection_);
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
    throw DatabaseError(connection_);
  }
}

Transaction::Transaction(const Database& database) : database_(database) { database_.Run("BEGIN IMMEDIATE"); }

Transaction::~Transaction() { Undo(database_); }

void Transaction::Commit() {
  try {
    database_.Run("COMMIT");
  } catch (...) {
    Undo(database_);
    throw;
  }
}

Snapshot::Snapshot(const Database& database) : database_(database), isOwn_(!database.InTransaction()) {
  if (isOwn_) {
    database_.Run("BEGIN");
  }
}

Snapshot::~Snapshot() {
  if (isOwn_) {
    Undo(database_);
  }
}

}  // namespace softdevice
