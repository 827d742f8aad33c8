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

/// A failure of SQLite; `what()` says what it means for the device file.
class DatabaseError : public std::runtime_error {
 public:
  explicit DatabaseError(sqlite3* database);

  /// Whether other processes kept the file locked for too long.
  [[nodiscard]] bool IsBusy() const noexcept { return busy_; }

 private:
  bool busy_;
};

class Statement;

/// A connection to one SQLite file.
class Database {
 public:
  /// Opens an existing file for reading and writing.
  Database(const std::filesystem::path& path, std::int64_t busyMilliseconds);

  [[nodiscard]] Statement Prepare(std::string_view sql) const;
  void Run(std::string_view sql) const;
  /// The first column of the first row, which must exist.
  [[nodiscard]] std::int64_t Number(std::string_view sql) const;

  [[nodiscard]] bool IsReadOnly() const noexcept;
  [[nodiscard]] bool InTransaction() const noexcept;

 private:
  struct Close {
    void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
  };

  std::unique_ptr<sqlite3, Close> database_;
};

/// A prepared statement. Its rows hold a lock on the file until it is destroyed.
class Statement {
 public:
  Statement(sqlite3* database, std::string_view sql);

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
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
  };

  void Check(int result) const;

  sqlite3* database_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
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
  void Undo() noexcept;

  const Database& database_;
};

}  // namespace softdevice
