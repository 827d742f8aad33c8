#pragma once

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "softdevice/Check.h"
#include "softdevice/Device.h"
#include "softdevice/Verify.h"

/// A device file that is damaged in many ways, and what its users notice of that.
namespace softdevice::test {

/// A device file, and the journal beside it, if any.
struct Files {
  std::string device;
  std::optional<std::string> journal;
  std::optional<std::string> writeAheadLog;
};

/// How a damage comes out.
enum class Outcome : std::uint8_t {
  ToldOnOpening,  ///< the device doesn't open
  ToldOnReading,  ///< it opens and signs on, but not all records or totals can be read; the complete check tells
  ToldOnSigning,  ///< it opens, and refuses to sign
  ToldByCheck,    ///< it signs, and the complete check tells
  Harmless,       ///< the complete check finds nothing, and everything is as before
  Undone,         ///< the same, as it was before the last request: as if the process had been killed amid it
  Older,          ///< the same, as it was some requests earlier: as if an old copy had been put there
  Silent          ///< nobody tells, but something is not as before
};

inline constexpr std::array kOutcomeNames = {
    "told on opening", "told on reading", "told on signing", "told by the check",
    "harmless",        "undone",          "older",           "silent"};

class DamageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Makes a small device, and tries damaged copies of its file. In memory, where the system has a folder for that.
class DamagedFile {
 public:
  DamagedFile() {
    const std::filesystem::path memory = "/dev/shm";
    std::string name =
        ((std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path()) /
         "damaged-device.XXXXXX")
            .string();
    if (mkdtemp(name.data()) == nullptr) throw DamageError("no folder");
    folder_ = name;
    try {
      Make();
    } catch (...) {
      Remove();
      throw;
    }
  }
  ~DamagedFile() { Remove(); }
  DamagedFile(const DamagedFile&) = delete;
  DamagedFile& operator=(const DamagedFile&) = delete;

  /// The file after each request, from the activation on.
  [[nodiscard]] const std::vector<std::string>& Versions() const { return versions_; }
  /// The journal that led to each version; that of the first one made the device.
  [[nodiscard]] const std::vector<std::string>& Journals() const { return journals_; }
  [[nodiscard]] const std::string& Last() const { return versions_.back(); }

  /// What comes of these files. `why` is what was told, or what is not as before.
  Outcome Try(const Files& files, std::string& why) const {
    Write(files);
    std::optional<Device> device;
    try {
      device.emplace(Device::Open(File()));
    } catch (const DeviceError& error) {
      why = error.what();
      return Outcome::ToldOnOpening;
    }
    std::size_t version = versions_.size() - 1;
    const std::string unread = Unread(*device, version);
    if (unread.starts_with(kOther)) {
      why = unread;
      return Outcome::Silent;
    }
    const DeviceState before = states_[version];
    for (const Command command : {Command::SignBooking, Command::ReportSigned}) {
      const std::vector<std::uint8_t> request = command == Command::SignBooking ? Booking(11, 9) : Closing();
      const Answer answer = device->Execute(command, request);
      if (!answer.accepted) {
        why = answer.reason;
        return Outcome::ToldOnSigning;
      }
      const bool isReport = command == Command::ReportSigned;
      const Verdict verdict = (isReport ? VerifyReport : VerifyBooking)(request, answer.response, publicKey_);
      if (!verdict.ok ||
          answer.sequenceNumber != (isReport ? before.lastReportNumber : before.lastSequenceNumber) + 1) {
        why = std::string(kOther) + "the answer that was given now";
        return Outcome::Silent;
      }
    }
    CheckResult result;
    try {
      result = CheckDeviceFile(File());
    } catch (const DeviceError& error) {
      result.damages.push_back(error.what());
    }
    if (!result.IsRight()) {
      why = result.damages.front();
      return unread.empty() ? Outcome::ToldByCheck : Outcome::ToldOnReading;
    }
    if (!unread.empty()) {
      why = "the complete check finds nothing, but " + unread;
      return Outcome::Silent;
    }
    if (why = UnreadRecords(*device, version); !why.empty()) return Outcome::Silent;
    return version + 1 == versions_.size()   ? Outcome::Harmless
           : version + 2 == versions_.size() ? Outcome::Undone
                                             : Outcome::Older;
  }

 private:
  static constexpr std::string_view kOther = "it is not as before: ";

  struct Record {
    bool isReport;
    SignedRequest content;
  };

  [[nodiscard]] std::filesystem::path File() const { return folder_ / "till.zel"; }
  [[nodiscard]] std::filesystem::path Beside(const char* end) const { return File().string() + end; }

  void Remove() const {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  static std::string Read(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  static void Put(const std::filesystem::path& path, const std::optional<std::string>& content) {
    std::filesystem::remove(path);
    if (content) {
      std::ofstream(path, std::ios::binary) << *content;
    }
  }

  void Write(const Files& files) const {
    Put(File(), files.device);
    Put(Beside("-journal"), files.journal);
    Put(Beside("-wal"), files.writeAheadLog);
    Put(Beside("-shm"), std::nullopt);
  }

  static std::uint8_t Bcd(unsigned number) {
    return static_cast<std::uint8_t>(number / 10 * 16 + number % 10);
  }

  /// A booking of 2026 with so many cents on the first two classes.
  static std::vector<std::uint8_t> Booking(unsigned month, unsigned cents) {
    std::vector<std::uint8_t> request = {0xCD, 4, 0x20, 0x26, Bcd(month), 0x15, 0xCE, 2,    0x08, 0x05,
                                         0xC6, 5, 'K',  'a',  's',        's',  'e',  0xC7, 20};
    request.insert(request.end(), 20, static_cast<std::uint8_t>(cents));
    for (const std::uint8_t byte :
         {0xC8, 2,    0x03, 0xD2, 0xE1, 9, 0xD8, 3,    0x00, 0x00, 0x0C, 0xDB, 2,
          0x19, 0x00, 0xE2, 9,    0xD8, 3, 0x00, 0x00, 0x0C, 0xDB, 2,    0x07, 0x00}) {
      request.push_back(byte);
    }
    request[request.size() - 17] = Bcd(cents);
    request[request.size() - 6] = Bcd(cents);
    return request;
  }

  static std::vector<std::uint8_t> Closing() {
    return {0xCD, 4, 0x20, 0x26, 0x12, 0x31, 0xCE, 2, 0x18, 0x30};
  }

  static std::vector<std::uint8_t> Data(std::uint8_t byte) {
    std::vector<std::uint8_t> request = {0xC7, 32};
    request.insert(request.end(), 32, byte);
    return request;
  }

  /// SQLite's own file system, that shows each journal before it is deleted.
  class JournalKeeper {
   public:
    explicit JournalKeeper(std::string& last) {
      last_ = &last;
      real_ = sqlite3_vfs_find(nullptr);
      vfs_ = *real_;
      vfs_.zName = "journal-keeper";
      vfs_.pNext = nullptr;
      vfs_.xDelete = [](sqlite3_vfs*, const char* name, int syncFolder) {
        if (std::string_view(name).ends_with("-journal")) *last_ = Read(name);
        return real_->xDelete(real_, name, syncFolder);
      };
      sqlite3_vfs_register(&vfs_, 1);
    }
    ~JournalKeeper() {
      sqlite3_vfs_unregister(&vfs_);
      sqlite3_vfs_register(real_, 1);
    }
    JournalKeeper(const JournalKeeper&) = delete;
    JournalKeeper& operator=(const JournalKeeper&) = delete;

   private:
    static inline std::string* last_ = nullptr;
    static inline sqlite3_vfs* real_ = nullptr;
    sqlite3_vfs vfs_{};
  };

  void Make() {
    std::string journal;
    const JournalKeeper keeper(journal);
    OpenOptions options;
    options.create = true;
    options.activate = true;
    options.taxpayerId = "DE123456789";
    options.runningNumber = 7;
    Device device = Device::Open(File(), options);
    publicKey_ = device.PublicKeyPem();
    const auto keep = [&] {
      versions_.push_back(Read(File()));
      journals_.push_back(journal);
      states_.push_back(device.State());
      totals_.push_back(device.Totals());
      openTotals_.push_back(device.OpenTotals());
    };
    keep();
    records_.push_back({true, *device.FindReport(1)});
    const auto execute = [&](Command command, const std::vector<std::uint8_t>& request) {
      const Answer answer = device.Execute(command, request);
      if (!answer.accepted) throw DamageError(answer.reason);
      const bool isReport = command == Command::ReportSigned;
      records_.push_back({isReport, isReport ? *device.FindReport(answer.sequenceNumber)
                                             : *device.Find(answer.sequenceNumber)});
      keep();
    };
    for (unsigned i = 0; i < 36; ++i) {
      execute(Command::SignBooking, Booking(9 + i / 12, i));
      if (i % 6 == 5) execute(Command::SignDataOnly, Data(static_cast<std::uint8_t>(i)));
      if (i % 12 == 9) execute(Command::ReportSigned, Closing());
    }
  }

  /// What can't be read, or (`kOther`) is not as before; empty when all is. `version` is the one that it is.
  std::string Unread(const Device& device, std::size_t& version) const {
    const std::string other = Reading([&]() -> std::string {
      if (device.PublicKeyPem() != publicKey_ || device.TaxpayerId() != "DE123456789" ||
          device.RunningNumber() != 7) {
        return "identity";
      }
      const auto found = std::find(states_.begin(), states_.end(), device.State());
      if (found == states_.end()) return "state";
      version = static_cast<std::size_t>(found - states_.begin());
      if (device.OpenTotals() != openTotals_[version]) return "totals since closing";
      return "";
    });
    if (!other.empty()) return other;
    const std::string totals =
        Reading([&] { return device.Totals() == totals_[version] ? "" : std::string("totals"); });
    if (totals.starts_with(kOther)) return totals;
    const std::string records = UnreadRecords(device, version);
    return records.empty() ? totals : records;
  }

  /// The same for the records up to a version.
  std::string UnreadRecords(const Device& device, std::size_t version) const {
    std::string unread;
    for (std::size_t i = 0; i <= version; ++i) {
      const bool isReport = records_[i].isReport;
      const SignedRequest& content = records_[i].content;
      const std::uint32_t number = content.sequenceNumber;
      const std::string result = Reading([&]() -> std::string {
        const std::optional<SignedRequest> found = isReport ? device.FindReport(number) : device.Find(number);
        const bool isSame = found && found->command == content.command && found->request == content.request &&
                            found->response == content.response;
        return isSame ? "" : (isReport ? "report " : "transaction ") + std::to_string(number);
      });
      if (result.starts_with(kOther)) return result;
      if (!result.empty()) unread = result;
    }
    return unread;
  }

  /// What `read` says is other than before, behind `kOther`, or why it can't be read.
  template <typename Read>
  static std::string Reading(Read&& read) {
    try {
      const std::string other = read();
      return other.empty() ? "" : std::string(kOther) + other;
    } catch (const DeviceError& error) {
      return error.what();
    }
  }

  std::filesystem::path folder_;
  std::string publicKey_;
  std::vector<std::string> versions_;
  std::vector<std::string> journals_;
  std::vector<DeviceState> states_;
  std::vector<std::vector<Total>> totals_;
  std::vector<std::vector<Total>> openTotals_;
  std::vector<Record> records_;
};

}  // namespace softdevice::test
