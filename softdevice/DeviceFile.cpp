#include "softdevice/DeviceFile.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <system_error>

#ifdef _WIN32
#include <fstream>
#else
#include <sys/stat.h>

#include <cerrno>
#endif

#include "softdevice/Chain.h"
#include "softdevice/FileSystem.h"
#include "softdevice/Key.h"
#include "softdevice/State.h"
#include "softdevice/Tables.h"
#include "softdevice/Update.h"

namespace softdevice {

namespace {

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

/// A device is initialized by getting its key, and personalized by getting its identity.
void Initialize(const Database& database, const OpenOptions& options) {
  MakeTables(database);
  const Key key = Key::Generate();
  StoredState state;
  state.privateKey = key.PrivatePem();
  state.publicKey = key.PublicPem();
  state.transportPin = options.transportPin;
  state.lifeCycle = LifeCycle::Initialized;
  state.taxpayerId = options.taxpayerId;
  state.runningNumber = options.runningNumber;
  state.lifeCycle = LifeCycle::Personalized;
  state.otherTotals = DigestOfOthers({}, kOpen, kOpen);
  WriteState(database, state);
}

void UpdateIfOld(const Database& database) {
  if (VersionOf(database) == FileVersion::Present) {
    return;
  }
  Transaction transaction(database);
  if (const FileVersion version = VersionOf(database); version != FileVersion::Present) {  // still
    Update(database, version);
  }
  transaction.Commit();
}

/// What can be looked at in no more time for many records than for few.
void CheckQuickly(const Database& database) {
  const Snapshot snapshot(database);
  CheckLength(database);
  CheckTables(database, FileVersion::Present);
  CheckStructure(database, "device");
  CheckStructure(database, "total");
  const StoredState state = ReadState(database);
  static_cast<void>(ReadAllTotals(database, state));
  CheckEnd(database, kTransactions, state.transactions);
  CheckEnd(database, kReports, state.reports);
}

/// Opens a file that is there.
Database OpenFile(const std::filesystem::path& path, std::chrono::milliseconds busyTimeout) {
  CheckIsNoStub(path);
  Database database(path, busyTimeout.count());
  CheckJournals(database);
  CheckLocks(path);
  database.Run("PRAGMA cell_size_check = ON");
  return database;
}

void ExpectRegularFile(const std::filesystem::file_status& status) {
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw std::runtime_error("it is no regular file");
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
  }
  ExpectRegularFile(status);
  Database database = OpenFile(path, options.busyTimeout);
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
  UpdateIfOld(database);
  // With a rollback journal that is deleted at each commit there is one file between two requests, complete in
  // itself.
  database.Run("PRAGMA journal_mode = DELETE");
  CheckQuickly(database);
  return database;
}

Database OpenToCheck(const std::filesystem::path& path, std::chrono::milliseconds busyTimeout) {
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(path, ignored);
  if (status.type() == std::filesystem::file_type::not_found) {
    throw std::runtime_error("there is no such file");
  }
  ExpectRegularFile(status);
  Database database = OpenFile(path, busyTimeout);
  database.Run("PRAGMA trusted_schema = OFF");
  if (IsEmpty(database)) {
    throw std::runtime_error("it is empty, there is no device in it yet");
  }
  return database;
}

}  // namespace softdevice
