#include "softdevice/Device.h"

#include <array>
#include <limits>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>

#ifdef _WIN32
#include <fstream>
#else
#include <sys/stat.h>

#include <cerrno>
#endif

#include "softdevice/BookingRequest.h"
#include "softdevice/Database.h"
#include "softdevice/Key.h"
#include "softdevice/Records.h"

namespace softdevice {

namespace {

constexpr std::int64_t kApplicationId = 0x5A454C31;  // "ZEL1": tells device files from other databases
constexpr std::int64_t kFormatVersion = 1;
constexpr std::int64_t kActivated = 3;
constexpr std::size_t kMaxTaxpayerIdLength = 32;
constexpr std::uint32_t kMaxSequenceNumber = std::numeric_limits<std::uint32_t>::max();

constexpr std::array<std::string_view, 3> kSchema = {
    // `life_cycle`: 1 initialized, 2 personalized, 3 activated, 4 deactivated.
    R"(CREATE TABLE device (
         id INTEGER PRIMARY KEY CHECK (id = 1),
         taxpayer_id TEXT NOT NULL,
         running_number INTEGER NOT NULL,
         life_cycle INTEGER NOT NULL,
         private_key TEXT NOT NULL,
         last_sequence_number INTEGER NOT NULL
       ) STRICT)",
    R"(CREATE TABLE signed_request (
         sequence_number INTEGER PRIMARY KEY CHECK (sequence_number BETWEEN 1 AND 4294967295),
         command INTEGER NOT NULL,
         request BLOB NOT NULL,
         response BLOB NOT NULL
       ) STRICT)",
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
       ) STRICT, WITHOUT ROWID)",
};

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

void Initialize(const Database& database, const OpenOptions& options) {
  for (const std::string_view table : kSchema) {
    database.Run(table);
  }
  database.Run("PRAGMA application_id = " + std::to_string(kApplicationId));
  database.Run("PRAGMA user_version = " + std::to_string(kFormatVersion));
  database.Prepare("INSERT INTO device VALUES (1, ?, ?, ?, ?, 0)")
      .Bind(options.taxpayerId)
      .Bind(options.runningNumber)
      .Bind(kActivated)
      .Bind(Key::Generate().PrivatePem())
      .Step();
}

void CheckIsDeviceFile(const Database& database) {
  if (database.Number("PRAGMA application_id") != kApplicationId) {
    throw std::runtime_error("it is a database, but no device file");
  }
  if (database.Number("PRAGMA user_version") != kFormatVersion) {
    throw std::runtime_error("it was made by another version of the software signing device");
  }
}

Total ReadTotal(const Statement& row) {
  return {.month = static_cast<std::int32_t>(row.NumberAt(0)),
          .container = static_cast<std::uint8_t>(row.NumberAt(1)),
          .turnover = row.NumberAt(2),
          .turnoverNegative = row.NumberAt(3),
          .vat = row.NumberAt(4),
          .vatRate = static_cast<std::int32_t>(row.NumberAt(5)),
          .bookings = static_cast<std::uint32_t>(row.NumberAt(6)),
          .overflow = row.NumberAt(7) != 0,
          .vatChanged = row.NumberAt(8) != 0};
}

/// A sum has at most 15 digits, the most that a total takes in a report.
void AddAmount(std::int64_t& sum, std::int64_t amount, bool& overflow) {
  constexpr std::int64_t kLimit = 1'000'000'000'000'000;
  const std::int64_t exact = sum % kLimit + amount;
  sum = exact % kLimit;
  overflow = overflow || sum != exact;
}

void AddToTotal(const Database& database, const Total& booked) {
  Total total{.month = booked.month, .container = booked.container};
  {
    Statement row = database.Prepare("SELECT * FROM total WHERE month = ? AND container = ?");
    row.Bind(booked.month).Bind(booked.container);
    if (row.Step()) {
      total = ReadTotal(row);
      total.vatChanged = total.vatChanged || total.vatRate != booked.vatRate;
    }
  }
  AddAmount(total.turnover, booked.turnover, total.overflow);
  AddAmount(total.turnoverNegative, booked.turnoverNegative, total.overflow);
  AddAmount(total.vat, booked.vat, total.overflow);
  total.vatRate = booked.vatRate;
  ++total.bookings;
  database.Prepare("INSERT OR REPLACE INTO total VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)")
      .Bind(total.month)
      .Bind(total.container)
      .Bind(total.turnover)
      .Bind(total.turnoverNegative)
      .Bind(total.vat)
      .Bind(total.vatRate)
      .Bind(total.bookings)
      .Bind(total.overflow)
      .Bind(total.vatChanged)
      .Step();
}

/// A training booking counts in the training container alone, a delivery note in the delivery note container
/// alone. Any other booking counts in its VAT containers, its third-party turnover in that container as well.
void AddToTotals(const Database& database, const BookingRequest& booking) {
  Total whole{.month = booking.month};
  Total thirdParty{.month = booking.month, .container = tag::kContainerThirdParty};
  bool hasThirdParty = false;
  const bool isSale = !booking.training && !booking.deliveryNote;
  for (const BookedContainer& container : booking.containers) {
    whole.turnover += container.turnover;
    whole.turnoverNegative += container.turnoverNegative;
    whole.vat += container.vat;
    hasThirdParty = hasThirdParty || container.hasThirdParty;
    thirdParty.turnover += container.thirdParty;
    thirdParty.turnoverNegative += container.thirdParty < 0 ? -container.thirdParty : 0;
    if (isSale) {
      AddToTotal(database, {.month = booking.month,
                            .container = container.tag,
                            .turnover = container.turnover,
                            .turnoverNegative = container.turnoverNegative,
                            .vat = container.vat,
                            .vatRate = container.vatRate});
    }
  }
  if (!isSale) {
    whole.container = booking.training ? tag::kContainerTraining : tag::kContainerDeliveryNote;
    AddToTotal(database, whole);
  } else if (hasThirdParty) {
    AddToTotal(database, thirdParty);
  }
}

std::optional<SignedRequest> FindSigned(const Database& database, std::uint32_t sequenceNumber) {
  Statement row =
      database.Prepare("SELECT command, request, response FROM signed_request WHERE sequence_number = ?");
  row.Bind(sequenceNumber);
  if (!row.Step()) {
    return std::nullopt;
  }
  return SignedRequest{.sequenceNumber = sequenceNumber,
                       .command = static_cast<Command>(row.NumberAt(0)),
                       .request = row.BytesAt(1),
                       .response = row.BytesAt(2)};
}

Answer Refused(RefusalCode code, std::string reason) {
  Answer answer;
  answer.code = code;
  answer.reason = std::move(reason);
  return answer;
}

}  // namespace

struct Device::State {
  std::string name;  ///< of the file, as it stands in messages
  Database database;
  Key key;
  std::string publicKeyPem;
  std::string taxpayerId;
  std::uint32_t runningNumber;

  Answer SignAndRecord(Command command, ByteView request, const BookingRequest& booking) const;
  void Commit(Transaction& transaction, const Answer& answer) const;

  [[nodiscard]] std::string About(const std::exception& error) const {
    return "device file '" + name + "': " + error.what();
  }
};

Answer Device::State::SignAndRecord(Command command, ByteView request, const BookingRequest& booking) const {
  Transaction transaction(database);
  const std::int64_t last = database.Number("SELECT last_sequence_number FROM device");
  if (last >= kMaxSequenceNumber) {
    throw Refusal{RefusalCode::CounterExhausted, "all sequence numbers are used up"};
  }

  Answer answer;
  answer.accepted = true;
  answer.sequenceNumber = static_cast<std::uint32_t>(last + 1);
  AppendText(answer.response, tag::kTaxpayerId, taxpayerId);
  AppendCounter(answer.response, tag::kDeviceNumber, runningNumber);
  AppendCounter(answer.response, tag::kSequenceNumber, answer.sequenceNumber);
  Bytes message(request.begin(), request.end());
  message.insert(message.end(), answer.response.begin(), answer.response.end());
  AppendRecord(answer.response, tag::kSignature, key.Sign(message));

  database.Prepare("UPDATE device SET last_sequence_number = ?").Bind(answer.sequenceNumber).Step();
  database.Prepare("INSERT INTO signed_request VALUES (?, ?, ?, ?)")
      .Bind(answer.sequenceNumber)
      .Bind(static_cast<std::int64_t>(command))
      .Bind(request)
      .Bind(answer.response)
      .Step();
  AddToTotals(database, booking);
  Commit(transaction, answer);
  return answer;
}

/// A commit can fail behind the point of no return, when the journal is gone but its folder can't be brought
/// to the disk. What the file says then counts: no two signatures are alike, so that a response that is found
/// is this one.
void Device::State::Commit(Transaction& transaction, const Answer& answer) const {
  try {
    transaction.Commit();
  } catch (const DatabaseError& failure) {
    std::optional<SignedRequest> recorded;
    try {
      recorded = FindSigned(database, answer.sequenceNumber);
    } catch (const DatabaseError&) {
      throw std::runtime_error(std::string(failure.what()) + "; whether booking " +
                               std::to_string(answer.sequenceNumber) + " is recorded can't be said");
    }
    if (!recorded || recorded->response != answer.response) {
      throw;
    }
  }
}

Device::Device(std::unique_ptr<State> state) noexcept : state_(std::move(state)) {}
Device::Device(Device&&) noexcept = default;
Device& Device::operator=(Device&&) noexcept = default;
Device::~Device() = default;

Device Device::Open(const std::filesystem::path& path, const OpenOptions& options) {
  const std::u8string utf8Name = path.u8string();
  const std::string name(utf8Name.begin(), utf8Name.end());
  try {
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
      }
      transaction.Commit();
    }
    CheckIsDeviceFile(database);
    // With a rollback journal that is deleted at each commit there is one file between two bookings, complete
    // in itself. EXTRA is FULL that also brings the journal's deletion to the disk before the commit returns,
    // so that not even a power failure takes an answered booking back.
    database.Run("PRAGMA journal_mode = DELETE");

    Statement row = database.Prepare("SELECT private_key, taxpayer_id, running_number FROM device");
    if (!row.Step()) {
      throw std::runtime_error("it is damaged (a row is missing)");
    }
    Key key = Key::FromPrivatePem(row.TextAt(0));
    std::string publicKeyPem = key.PublicPem();
    return Device(
        std::make_unique<State>(State{.name = name,
                                      .database = std::move(database),
                                      .key = std::move(key),
                                      .publicKeyPem = std::move(publicKeyPem),
                                      .taxpayerId = row.TextAt(1),
                                      .runningNumber = static_cast<std::uint32_t>(row.NumberAt(2))}));
  } catch (const std::filesystem::filesystem_error& error) {
    throw DeviceError("device file '" + name + "': it can't be reached (" + error.code().message() + ")");
  } catch (const std::exception& error) {
    throw DeviceError("device file '" + name + "': " + error.what());
  }
}

Answer Device::Execute(Command command, std::span<const std::uint8_t> request) {
  try {
    if (command != Command::SignBooking) {
      return Refused(RefusalCode::UnknownCommand, "command " + std::to_string(static_cast<int>(command)) +
                                                      " is unknown, expected 1 (sign a booking)");
    }
    return state_->SignAndRecord(command, request, ReadBookingRequest(request));
  } catch (const Refusal& refusal) {
    return Refused(refusal.code, refusal.reason);
  } catch (const DatabaseError& error) {
    return Refused(error.IsBusy() ? RefusalCode::Busy : RefusalCode::Storage, state_->About(error));
  } catch (const KeyError& error) {
    return Refused(RefusalCode::Internal, error.what());
  } catch (const std::bad_alloc&) {
    return Refused(RefusalCode::Internal, "there is no memory left");
  } catch (const std::exception& error) {
    return Refused(RefusalCode::Storage, state_->About(error));
  }
}

std::optional<SignedRequest> Device::Find(std::uint32_t sequenceNumber) const {
  try {
    return FindSigned(state_->database, sequenceNumber);
  } catch (const std::exception& error) {
    throw DeviceError(state_->About(error));
  }
}

std::uint32_t Device::LastSequenceNumber() const {
  try {
    return static_cast<std::uint32_t>(state_->database.Number("SELECT last_sequence_number FROM device"));
  } catch (const std::exception& error) {
    throw DeviceError(state_->About(error));
  }
}

std::vector<Total> Device::Totals() const {
  try {
    std::vector<Total> totals;
    Statement row = state_->database.Prepare("SELECT * FROM total ORDER BY month, container");
    while (row.Step()) {
      totals.push_back(ReadTotal(row));
    }
    return totals;
  } catch (const std::exception& error) {
    throw DeviceError(state_->About(error));
  }
}

const std::string& Device::TaxpayerId() const noexcept { return state_->taxpayerId; }
std::uint32_t Device::RunningNumber() const noexcept { return state_->runningNumber; }
const std::string& Device::PublicKeyPem() const noexcept { return state_->publicKeyPem; }

const char* ToString(RefusalCode code) noexcept {
  switch (code) {
    case RefusalCode::None: return "None";
    case RefusalCode::UnknownCommand: return "UnknownCommand";
    case RefusalCode::Framing: return "Framing";
    case RefusalCode::UnexpectedRecord: return "UnexpectedRecord";
    case RefusalCode::MissingRecord: return "MissingRecord";
    case RefusalCode::Length: return "Length";
    case RefusalCode::Value: return "Value";
    case RefusalCode::CounterExhausted: return "CounterExhausted";
    case RefusalCode::Busy: return "Busy";
    case RefusalCode::Storage: return "Storage";
    case RefusalCode::Internal: return "Internal";
  }
  return "unknown";
}

}  // namespace softdevice
