#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// The software signing device: signs what a till books where no signing hardware is at hand.
/// For development and tests only; it is no certified device. docs/softdevice.md says what is signed.
namespace softdevice {

/// What a device is asked to do with a request.
enum class Command : std::uint8_t {
  SignBooking = 1,       ///< sign the request of a booking
  SignDataOnly = 2,      ///< sign data, without saying who signed it
  SignDataAndTpId = 3,   ///< sign data with the taxpayer ID; the request looks like the one before
  SignDataAndTime = 4,   ///< sign data with its date and time and the taxpayer ID
  ReportSigned = 5,      ///< close: a signed report of all that was signed since the last closing
  ReportUnsigned = 6,    ///< show what has been signed since the last closing; nothing is signed or recorded
  ReportSpan = 7,        ///< show the totals of some months; nothing is signed or recorded
  ReportActivate = 8,    ///< activate the device with its transport PIN
  ReportDeactivate = 9,  ///< close for the last time; the device signs nothing any more
};

/// What a device is in. A new one is `Personalized`.
enum class LifeCycle : std::uint8_t {
  Initialized = 1,   ///< it has a key, but no identity; no device file is seen like this
  Personalized = 2,  ///< it has an identity, and waits for its activation
  Activated = 3,     ///< it signs
  Deactivated = 4    ///< it signs nothing any more
};

/// Why a request was refused.
enum class RefusalCode : std::uint8_t {
  None = 0,              ///< not refused
  UnknownCommand = 1,    ///< the command is none of `Command`
  Framing = 2,           ///< a record is cut off, or its length byte is above 127
  UnexpectedRecord = 3,  ///< a record is unknown here, out of order, or given twice
  MissingRecord = 4,     ///< the request or a container ends before a mandatory record
  Length = 5,            ///< a record's value has a length that its tag doesn't allow
  Value = 6,             ///< a record's value is wrongly coded or out of range, or the time can't be right
  CounterExhausted = 7,  ///< all 4,294,967,295 sequence or report numbers are used up
  Busy = 8,              ///< other processes kept the device file locked beyond `OpenOptions::busyTimeout`
  Storage = 9,     ///< the device file can't be read or written: full disk, damage, lost permissions or locks
  Internal = 10,   ///< the signature couldn't be made, or doesn't verify, or memory ran out
  LifeCycle = 11,  ///< the device isn't activated yet, is activated already, or is deactivated
  WrongPin = 12,   ///< the transport PIN is wrong; an attempt is used up
  PinLocked = 13   ///< the device can't be activated, as too many transport PINs were wrong
};

/// The name of a refusal code as it is written above, such as "MissingRecord".
[[nodiscard]] const char* ToString(RefusalCode code) noexcept;

/// What the device answers.
struct Answer {
  bool accepted = false;                 ///< whether the device did what the request asks for
  RefusalCode code = RefusalCode::None;  ///< why not; `None` when accepted
  std::string reason;                  ///< why not, in one line: position, tag, what was expected; else empty
  std::vector<std::uint8_t> response;  ///< the response's records; empty when refused
  std::uint32_t sequenceNumber = 0;    ///< the sequence or report number that it got; 0 for none
};

/// A device file that can't be opened or made: `what()` is one line that names the file and the reason.
class DeviceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The transport PIN of a device that was made without another.
inline constexpr const char* kDefaultTransportPin = "123456";
/// So many wrong transport PINs lock a device.
inline constexpr int kPinAttempts = 3;

/// How a device file is opened.
struct OpenOptions {
  /// Makes the device, with a new key, where the file doesn't exist or is empty.
  bool create = false;
  /// Taxpayer ID of a new device: 1 to 32 characters, codes 32 to 127. An existing device keeps its own.
  std::string taxpayerId;
  /// Running number of a new device for that taxpayer, at least 1. An existing device keeps its own.
  std::uint32_t runningNumber = 1;
  /// Transport PIN of a new device, six digits. An existing device keeps its own.
  std::string transportPin = kDefaultTransportPin;
  /// Activates a new device at once, so that it can sign. An existing device stays in the state that it is in.
  bool activate = false;
  /// How long one operation waits for other processes that hold the file.
  std::chrono::milliseconds busyTimeout{10'000};
};

/// A request that the device signed, as it was recorded.
struct SignedRequest {
  std::uint32_t sequenceNumber = 0;        ///< the sequence or report number that it got
  Command command = Command::SignBooking;  ///< what the device was asked to do
  std::vector<std::uint8_t> request;       ///< byte by byte as it was given
  std::vector<std::uint8_t> response;      ///< byte by byte as it was answered
};

/// Where a device stands.
struct DeviceState {
  LifeCycle lifeCycle = LifeCycle::Initialized;  ///< what it is in
  int wrongPins = 0;                             ///< how many wrong transport PINs it was given
  std::uint32_t lastSequenceNumber = 0;          ///< of the last booking or data; 0 for none
  std::uint32_t lastReportNumber = 0;    ///< of the last activation, closing or deactivation; 0 for none
  std::uint32_t lastReportedNumber = 0;  ///< the last sequence number that a closing covers; 0 for none

  /// Whether it can't be activated any more.
  [[nodiscard]] bool IsLocked() const noexcept { return wrongPins >= kPinAttempts; }

  bool operator==(const DeviceState&) const = default;  ///< whether all members are equal
};

/// What was booked in one month, or since the last closing, on one container. Amounts are in cents.
struct Total {
  std::int32_t month = 0;      ///< year * 100 + month, such as 202612, of the booking date; 0 for all months
  std::uint8_t container = 0;  ///< 225..230 VAT classes, 231 third party, 232 delivery notes, 233 training
  std::int64_t turnover = 0;   ///< sum of the turnovers, negative prices subtracted
  std::int64_t turnoverNegative = 0;  ///< sum of the negative turnovers, without sign
  std::int64_t vat = 0;               ///< sum of the VAT amounts
  std::int32_t vatRate = 0;           ///< last rate in hundredths of a percent; 0 for 231..233
  std::uint32_t bookings = 0;         ///< number of bookings that counted here
  bool overflow = false;              ///< a sum went beyond 15 digits and goes on with its last 15 digits
  bool vatChanged = false;            ///< the rate differed between two bookings
  std::int64_t thirdParty = 0;        ///< how much of the turnover was third-party turnover; 0 for 231

  bool operator==(const Total&) const = default;  ///< whether all members are equal
};

/// A software signing device on one file, which holds its key, identity, state, counters, totals and all that
/// it signed.
///
/// Several devices, in any number of processes, may stand on the same file at once; each request gets its own
/// sequence number. One object belongs to one thread at a time. Don't carry an object across `fork()`.
class Device {
 public:
  /// Opens the device file at `path`, or makes it (`OpenOptions::create`) readable and writable for its owner
  /// only. Throws `DeviceError` when there is no such file, it is no device file, it or its folder can't be
  /// used, locks don't work there, a new device's identity is not valid, or the clock by which it would be
  /// activated can't be right; nothing is changed or left behind then but possibly an empty file.
  ///
  /// Whether the file holds what was recorded is looked at as far as that doesn't take longer the more records
  /// there are (`CheckDeviceFile` looks at everything); where it doesn't, `DeviceError` is thrown. A file of an
  /// older version is checked completely and brought up to date.
  [[nodiscard]] static Device Open(const std::filesystem::path& path, const OpenOptions& options = {});

  Device(Device&&) noexcept;             ///< the source may only be destroyed or assigned to
  Device& operator=(Device&&) noexcept;  ///< the source may only be destroyed or assigned to
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;
  ~Device();

  /// Checks the request and its time, does what it asks for, and records what was signed under the next number,
  /// once the signature verifies and the file holds what was built on and what was written. Any bytes
  /// end in an answer. When it is accepted it is on the disk already; when it is refused nothing is recorded
  /// but a wrong PIN, and no number is used (only where the storage fails so that even this can't be found
  /// out, the reason says so).
  [[nodiscard]] Answer Execute(Command command, std::span<const std::uint8_t> request);

  /// Activates the device: `ReportActivate` with the request of `MakeActivationRequest`.
  [[nodiscard]] Answer Activate(std::string_view transportPin = kDefaultTransportPin);

  /// The booking or data recorded under this sequence number, if any.
  /// Throws `DeviceError` when the file can't be read, or doesn't hold what was recorded.
  [[nodiscard]] std::optional<SignedRequest> Find(std::uint32_t sequenceNumber) const;

  /// The activation, closing or deactivation recorded under this report number, if any.
  /// Throws `DeviceError` when the file can't be read, or doesn't hold what was recorded.
  [[nodiscard]] std::optional<SignedRequest> FindReport(std::uint32_t reportNumber) const;

  /// Life cycle and counters as they stand now. Throws `DeviceError` when the file can't be read, or doesn't hold
  /// what was recorded; so do all below.
  [[nodiscard]] DeviceState State() const;

  /// The last sequence number given, 0 when there is none yet.
  /// Throws `DeviceError` when the file can't be read.
  [[nodiscard]] std::uint32_t LastSequenceNumber() const;

  /// All totals by month and container. Throws `DeviceError` when the file can't be read.
  [[nodiscard]] std::vector<Total> Totals() const;

  /// The totals since the last closing, by container. Throws `DeviceError` when the file can't be read.
  [[nodiscard]] std::vector<Total> OpenTotals() const;

  /// The taxpayer ID that the device was made with.
  [[nodiscard]] const std::string& TaxpayerId() const noexcept;

  /// The running number that the device was made with.
  [[nodiscard]] std::uint32_t RunningNumber() const noexcept;

  /// The public key with which anybody can verify what this device signed ("-----BEGIN PUBLIC KEY-----" ...).
  [[nodiscard]] const std::string& PublicKeyPem() const noexcept;

 private:
  struct Impl;
  explicit Device(std::unique_ptr<Impl> impl) noexcept;
  std::unique_ptr<Impl> impl_;
};

/// The present time where the device stands, to the second.
[[nodiscard]] std::chrono::local_seconds LocalNow();

/// The request of an activation at a time of the years 1 to 9999. Whether the PIN is one is for the device to
/// say; only its first 127 characters are taken.
[[nodiscard]] std::vector<std::uint8_t> MakeActivationRequest(std::string_view transportPin,
                                                              std::chrono::local_seconds time = LocalNow());

}  // namespace softdevice
