#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace softdevice {

struct Connection;

/// A failure of SQLite; `what()` says what it means for the device file.
class DatabaseError : public std::runtime_error {
 public:
  explicit DatabaseError(Connection& connection);

  /// Whether other processes kept the file locked for too long.
  [[nodiscard]] bool IsBusy() const noexcept { return busy_; }

 private:
  bool busy_;
};

/// Something in the file is not as it was recorded: `what()` is "it is damaged (" `what` ")".
class Damage : public std::runtime_error {
 public:
  explicit Damage(const std::string& what)
      : std::runtime_error("it is damaged (" + what + ")"), what_(what) {}

  [[nodiscard]] const std::string& What() const noexcept { return what_; }

 private:
  std::string what_;
};

class Statement;

/// A connection to one SQLite file.
class Database {
 public:
  /// Opens an existing file for reading and writing. Nothing is read yet but the file's header.
  Database(const std::filesystem::path& path, std::int64_t busyMilliseconds);
  Database(Database&&) noexcept;
  Database& operator=(Database&&) noexcept;
  ~Database();

  [[nodiscard]] Statement Prepare(std::string_view sql) const;
  void Run(std::string_view sql) const;
  /// The first column of the first row, which must exist.
  [[nodiscard]] std::int64_t Number(std::string_view sql) const;

  [[nodiscard]] bool IsReadOnly() const noexcept;
  [[nodiscard]] bool InTransaction() const noexcept;

  // The file itself, past SQLite's pages and locks. No other descriptor may be opened for it: closing one drops all
  // locks that this process holds.

  /// So many bytes from its start on, or as many as there are.
  [[nodiscard]] std::vector<std::uint8_t> FileStart(std::size_t size) const;
  [[nodiscard]] std::int64_t FileSize() const;
  /// Where SQLite keeps the pages that a transaction changes, and where it would keep a write-ahead log.
  [[nodiscard]] std::filesystem::path Journal() const;
  [[nodiscard]] std::filesystem::path WriteAheadLog() const;

 private:
  std::unique_ptr<Connection> connection_;
};

/// A prepared statement. Its rows hold a lock on the file until it is destroyed.
class Statement {
 public:
  Statement(Connection& connection, std::string_view sql);

  /// Values for the question marks, from left to right.
  Statement& Bind(std::int64_t number);
  Statement& Bind(std::string_view text);
  Statement& Bind(std::span<const std::uint8_t> bytes);

  /// Goes to the next row; false at the end.
  bool Step();

  [[nodiscard]] std::int64_t NumberAt(int column) const noexcept;
  [[nodiscard]] std::string TextAt(int column) const;
  [[nodiscard]] std::vector<std::uint8_t> BytesAt(int column) const;

 private:
  /// Hands the statement back to the connection, for the next time.
  struct Release {
    Connection* connection;
    void operator()(sqlite3_stmt* statement) const noexcept;
  };

  void Check(int result) const;

  Connection& connection_;
  std::unique_ptr<sqlite3_stmt, Release> statement_;
  int bound_ = 0;
};

/// A transaction that holds the file's write lock from its first moment; undone unless committed.
class Transaction {
 public:
  explicit Transaction(const Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  /// After a failure the transaction is undone as far as the file could be reached.
  void Commit();

 private:
  const Database& database_;
};

/// Sees the file in one state, whatever other processes do meanwhile. Within a transaction that is there already it
/// does nothing.
class Snapshot {
 public:
  explicit Snapshot(const Database& database);
  ~Snapshot();
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;

 private:
  const Database& database_;
  bool isOwn_;
};

}  // namespace softdevice
