#include "softdevice/DeviceFile.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>
#include <system_error>

#ifdef _WIN32
#include <fstream>
#else
#include <sys/stat.h>

#include <cerrno>
#endif

#include "softdevice/Request.h"
#include "softdevice/Totals.h"

namespace softdevice {

namespace {

constexpr std::int64_t kApplicationId = 0x5A454C31;  // "ZEL1": tells device files from other databases
constexpr std::int64_t kVersion = 2;
/// Files of this version knew bookings only, and no life cycle: all devices were active.
constexpr std::int64_t kBookingsOnly = 1;

constexpr std::string_view kDeviceTable =
    // `life_cycle` as in `LifeCycle`. `last_reported_number`: the last transaction that a closing covers.
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

constexpr std::string_view kTransactionTable =
    R"(CREATE TABLE signed_request (
         sequence_number INTEGER PRIMARY KEY CHECK (sequence_number BETWEEN 1 AND 4294967295),
         command INTEGER NOT NULL,
         request BLOB NOT NULL,
         response BLOB NOT NULL
       ) STRICT)";

constexpr std::string_view kReportTable =
    R"(CREATE TABLE signed_report (
         report_number INTEGER PRIMARY KEY CHECK (report_number BETWEEN 1 AND 4294967295),
         command INTEGER NOT NULL,
         request BLOB NOT NULL,
         response BLOB NOT NULL
       ) STRICT)";

constexpr std::string_view kTotalTable =
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

void CheckIdentity(const OpenOptions& options) {
  const std::string& id = options.taxpayerId;
  if (id.empty() || id.size() > kMaxTaxpayerIdLength) {
    throw std::runtime_error("a new device needs a taxpayer ID of 1 to 32 characters");
  }
  for (const unsigned char character : id) {
    if (character < 32 || character > 127) {
      throw std::runtime_error("the taxpayer ID of a new device has a character outside the codes 32 to 127");
    }
  }
  if (options.runningNumber == 0) {
    throw std::runtime_error("the running number of a new device must be at least 1");
  }
  const std::string& pin = options.transportPin;
  if (pin.size() != 6 || !std::all_of(pin.begin(), pin.end(), [](char c) { return c >= '0' && c <= '9'; })) {
    throw std::runtime_error("the transport PIN of a new device must be six digits");
  }
}

/// Makes an empty file that only its owner can read, as it will hold the private key. Does nothing when there
/// is one already.
void MakeEmptyFile(const std::filesystem::path& path) {
#ifdef _WIN32
  const std::ofstream file(path, std::ios::app);
#else
  // Not open() and close(): closing any descriptor of a file drops all locks that this process holds on it,
  // also those of another device that has just opened the file.
  if (mknod(path.c_str(), S_IFREG | S_IRUSR | S_IWUSR, 0) != 0 && errno != EEXIST) {
    throw std::runtime_error("it can't be created (" + std::generic_category().message(errno) + ")");
  }
#endif
}

/// SQLite takes a file below its smallest page for an empty one and would write over it.
void CheckIsNoStub(const std::filesystem::path& path) {
  constexpr std::uintmax_t kSmallestPage = 512;
  const std::uintmax_t size = std::filesystem::file_size(path);
  if (size > 0 && size < kSmallestPage) {
    throw std::runtime_error("it is no device file");
  }
}

/// Whether nobody has written anything into the file yet.
bool IsEmpty(const Database& database) {
  return database.Number("PRAGMA application_id") == 0 && database.Number("PRAGMA user_version") == 0 &&
         database.Number("SELECT count(*) FROM sqlite_schema") == 0;
}

void SetVersion(const Database& database) {
  database.Run("PRAGMA user_version = " + std::to_string(kVersion));
}

/// A device is initialized by getting its key, and personalized by getting its identity.
void Initialize(const Database& database, const OpenOptions& options) {
  for (const std::string_view table : {kDeviceTable, kTransactionTable, kReportTable, kTotalTable}) {
    database.Run(table);
  }
  database.Run("PRAGMA application_id = " + std::to_string(kApplicationId));
  SetVersion(database);
  database.Prepare("INSERT INTO device VALUES (1, '', 0, ?, ?, 0, ?, 0, 0, 0)")
      .Bind(static_cast<std::int64_t>(LifeCycle::Initialized))
      .Bind(Key::Generate().PrivatePem())
      .Bind(options.transportPin)
      .Step();
  database.Prepare("UPDATE device SET taxpayer_id = ?, running_number = ?, life_cycle = ?")
      .Bind(options.taxpayerId)
      .Bind(options.runningNumber)
      .Bind(static_cast<std::int64_t>(LifeCycle::Personalized))
      .Step();
}

/// The totals are made anew from the bookings, as the old ones lack some of what the new ones hold.
void UpdateFromBookingsOnly(const Database& database) {
  for (const std::string_view column :
       {"transport_pin TEXT NOT NULL DEFAULT ''", "wrong_pins INTEGER NOT NULL DEFAULT 0",
        "last_report_number INTEGER NOT NULL DEFAULT 0", "last_reported_number INTEGER NOT NULL DEFAULT 0"}) {
    database.Run("ALTER TABLE device ADD COLUMN " + std::string(column));
  }
  database.Run("DROP TABLE total");
  database.Run(kReportTable);
  database.Run(kTotalTable);
  Statement row = database.Prepare("SELECT request FROM signed_request ORDER BY sequence_number");
  while (row.Step()) {
    const Bytes request = row.BytesAt(0);
    try {
      AddToTotals(database, ReadBookingRequest(request));
    } catch (const Refusal& refusal) {
      throw std::runtime_error("it is damaged (a recorded booking: " + refusal.reason + ")");
    }
  }
  SetVersion(database);
}

void CheckIsDeviceFile(const Database& database) {
  if (database.Number("PRAGMA application_id") != kApplicationId) {
    throw std::runtime_error("it is a database, but no device file");
  }
  if (database.Number("PRAGMA user_version") == kBookingsOnly) {
    Transaction transaction(database);
    if (database.Number("PRAGMA user_version") == kBookingsOnly) {  // still
      UpdateFromBookingsOnly(database);
    }
    transaction.Commit();
  }
  if (database.Number("PRAGMA user_version") != kVersion) {
    throw std::runtime_error("it was made by another version of the software signing device");
  }
}

struct Table {
  std::string_view name;
  std::string_view number;
};

constexpr Table kTransactions = {"signed_request", "sequence_number"};
constexpr Table kReports = {"signed_report", "report_number"};

std::optional<SignedRequest> Find(const Database& database, const Table& table, std::uint32_t number) {
  std::string sql = "SELECT command, request, response FROM ";
  sql.append(table.name).append(" WHERE ").append(table.number).append(" = ?");
  Statement row = database.Prepare(sql);
  row.Bind(number);
  if (!row.Step()) {
    return std::nullopt;
  }
  return SignedRequest{.sequenceNumber = number,
                       .command = static_cast<Command>(row.NumberAt(0)),
                       .request = row.BytesAt(1),
                       .response = row.BytesAt(2)};
}

/// Goes to the one row that there must be.
void StepToRow(Statement& row) {
  if (!row.Step()) {
    throw std::runtime_error("it is damaged (a row is missing)");
  }
}

}  // namespace

Database OpenDeviceFile(const std::filesystem::path& path, const OpenOptions& options,
                        const std::function<void(const Database&)>& finish) {
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(path, ignored);
  if (status.type() == std::filesystem::file_type::not_found) {
    if (!options.create) {
      throw std::runtime_error("there is no such file");
    }
    CheckIdentity(options);
    MakeEmptyFile(path);
  } else if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw std::runtime_error("it is no regular file");
  }
  CheckIsNoStub(path);

  Database database(path, options.busyTimeout.count());
  if (database.IsReadOnly()) {
    throw std::runtime_error("it is read-only");
  }
  // EXTRA is FULL that also brings the deletion of a journal to the disk before the commit returns, so that not
  // even a power failure takes an answered request back.
  database.Run("PRAGMA synchronous = EXTRA");
  database.Run("PRAGMA trusted_schema = OFF");
  if (IsEmpty(database)) {
    if (!options.create) {
      throw std::runtime_error("it is empty, there is no device in it yet");
    }
    CheckIdentity(options);
    Transaction transaction(database);
    if (IsEmpty(database)) {  // still, now that no other process can come first
      Initialize(database, options);
      finish(database);
    }
    transaction.Commit();
  }
  CheckIsDeviceFile(database);
  // With a rollback journal that is deleted at each commit there is one file between two requests, complete in
  // itself.
  database.Run("PRAGMA journal_mode = DELETE");
  return database;
}

Identity ReadIdentity(const Database& database) {
  Statement row = database.Prepare("SELECT private_key, taxpayer_id, running_number FROM device");
  StepToRow(row);
  return {.key = Key::FromPrivatePem(row.TextAt(0)),
          .taxpayerId = row.TextAt(1),
          .runningNumber = static_cast<std::uint32_t>(row.NumberAt(2))};
}

DeviceState ReadState(const Database& database) {
  Statement row = database.Prepare(
      "SELECT life_cycle, wrong_pins, last_sequence_number, last_report_number, last_reported_number FROM "
      "device");
  StepToRow(row);
  return {.lifeCycle = static_cast<LifeCycle>(row.NumberAt(0)),
          .wrongPins = static_cast<int>(row.NumberAt(1)),
          .lastSequenceNumber = static_cast<std::uint32_t>(row.NumberAt(2)),
          .lastReportNumber = static_cast<std::uint32_t>(row.NumberAt(3)),
          .lastReportedNumber = static_cast<std::uint32_t>(row.NumberAt(4))};
}

void RecordSigned(const Database& database, const SignedRequest& signedRequest) {
  const Table& table = IsTransaction(signedRequest.command) ? kTransactions : kReports;
  std::string sql = "INSERT INTO ";
  sql.append(table.name).append(" VALUES (?, ?, ?, ?)");
  database.Prepare(sql)
      .Bind(signedRequest.sequenceNumber)
      .Bind(static_cast<std::int64_t>(signedRequest.command))
      .Bind(signedRequest.request)
      .Bind(signedRequest.response)
      .Step();
}

std::optional<SignedRequest> FindTransaction(const Database& database, std::uint32_t number) {
  return Find(database, kTransactions, number);
}

std::optional<SignedRequest> FindReport(const Database& database, std::uint32_t number) {
  return Find(database, kReports, number);
}

}  // namespace softdevice
