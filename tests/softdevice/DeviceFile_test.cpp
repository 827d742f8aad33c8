// The device file: making, opening, sharing, and what can be wrong with it.

#include <sys/stat.h>
#include <sys/wait.h>

#include <fstream>
#include <random>
#include <set>

#include "Support.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

class DeviceFile : public DeviceTest {
 protected:
  /// What `Open` says about the file, behind its name; "" when it opens.
  [[nodiscard]] static std::string ErrorOf(const std::filesystem::path& path,
                                           const OpenOptions& options = {}) {
    try {
      static_cast<void>(Device::Open(path, options));
      return "";
    } catch (const DeviceError& error) {
      const std::string start = "device file '" + path.string() + "': ";
      const std::string text = error.what();
      EXPECT_EQ(text.substr(0, start.size()), start);
      return text.substr(std::min(start.size(), text.size()));
    }
  }

  /// Whether an answer is either a refusal or a response.
  [[nodiscard]] static bool IsWhole(const Answer& answer) {
    return answer.accepted == answer.reason.empty() && answer.accepted == !answer.response.empty();
  }

  void Write(const std::string& content) const { std::ofstream(File(), std::ios::binary) << content; }
  [[nodiscard]] std::string Read() const {
    std::ifstream file(File(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

/// Goes on as a user without privileges, whom permissions hold back.
class Unprivileged {
 public:
  Unprivileged() : user_(geteuid()) {
    if (user_ == 0 && seteuid(65534) != 0) {
      throw std::runtime_error("no other user");
    }
  }
  ~Unprivileged() { EXPECT_EQ(seteuid(user_), 0); }
  Unprivileged(const Unprivileged&) = delete;
  Unprivileged& operator=(const Unprivileged&) = delete;

 private:
  uid_t user_;
};

TEST_F(DeviceFile, KeepsEverythingOverReopening) {
  std::string key;
  Bytes response;
  {
    Device device = Open();
    key = device.PublicKeyPem();
    response = device.Execute(Command::SignBooking, Hex(kBooking)).response;
  }
  Device device = Device::Open(File());
  EXPECT_EQ(device.PublicKeyPem(), key);
  EXPECT_EQ(device.TaxpayerId(), "DE123456789");
  EXPECT_EQ(device.RunningNumber(), 1U);
  EXPECT_EQ(device.LastSequenceNumber(), 1U);
  EXPECT_EQ(device.Totals(), (std::vector<Total>{{202612, 225, 11900, 0, 1900, 1900, 1, false, false}}));
  ASSERT_TRUE(device.Find(1).has_value());
  EXPECT_EQ(device.Find(1)->response, response);
  EXPECT_EQ(device.Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 2U);
}

TEST_F(DeviceFile, KeepsTheIdentityThatItWasMadeWith) {
  const std::string key = Open().PublicKeyPem();
  OpenOptions other = kCreate;
  other.taxpayerId = "somebody else";
  other.runningNumber = 2;
  const Device device = Device::Open(File(), other);
  EXPECT_EQ(device.TaxpayerId(), "DE123456789");
  EXPECT_EQ(device.RunningNumber(), 1U);
  EXPECT_EQ(device.PublicKeyPem(), key);
}

TEST_F(DeviceFile, IsForItsOwnerOnly) {
  const mode_t before = umask(0);
  static_cast<void>(Open());
  umask(before);
  struct stat status {};
  ASSERT_EQ(stat(File().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST_F(DeviceFile, IsTheOnlyFileBetweenTwoBookings) {
  Device device = Open();
  ASSERT_TRUE(device.Execute(Command::SignBooking, Hex(kBooking)).accepted);
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    names.push_back(entry.path().filename().string());
  }
  EXPECT_EQ(names, std::vector<std::string>{"till.zel"});
}

TEST_F(DeviceFile, MustExistUnlessItIsToBeMade) {
  EXPECT_EQ(ErrorOf(File()), "there is no such file");
  EXPECT_FALSE(std::filesystem::exists(File()));
  EXPECT_EQ(ErrorOf(""), "there is no such file");
  EXPECT_EQ(ErrorOf(folder_ / "missing" / "till.zel"), "there is no such file");
  EXPECT_EQ(ErrorOf(folder_ / "missing" / "till.zel", kCreate),
            "it can't be created (No such file or directory)");
}

TEST_F(DeviceFile, MustBeARegularFile) {
  EXPECT_EQ(ErrorOf(folder_, kCreate), "it is no regular file");
  EXPECT_EQ(ErrorOf("/dev/null", kCreate), "it is no regular file");
  EXPECT_EQ(ErrorOf("/dev/full"), "it is no regular file");
}

TEST_F(DeviceFile, MayHaveAnyName) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_);
  for (const char* name : {":memory:", "file:till?mode=memory", "Bäckerei Süß.zel"}) {
    ASSERT_EQ(Device::Open(name, kCreate).Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 1U);
    EXPECT_EQ(Device::Open(name).LastSequenceNumber(), 1U) << name;
    EXPECT_TRUE(std::filesystem::is_regular_file(folder_ / name)) << name;
  }
  std::filesystem::current_path(before);
}

TEST_F(DeviceFile, NeedsAValidIdentityWhenMade) {
  const auto errorOf = [this](const std::string& id, std::uint32_t number) {
    OpenOptions options = kCreate;
    options.taxpayerId = id;
    options.runningNumber = number;
    return ErrorOf(File(), options);
  };
  EXPECT_EQ(errorOf("", 1), "a new device needs a taxpayer ID of 1 to 32 characters");
  EXPECT_EQ(errorOf(std::string(33, 'A'), 1), "a new device needs a taxpayer ID of 1 to 32 characters");
  EXPECT_EQ(errorOf("M\xC3\xBCller", 1),
            "the taxpayer ID of a new device has a character outside the codes 32 to 127");
  EXPECT_EQ(errorOf("a\nb", 1),
            "the taxpayer ID of a new device has a character outside the codes 32 to 127");
  EXPECT_EQ(errorOf("DE1", 0), "the running number of a new device must be at least 1");
  EXPECT_FALSE(std::filesystem::exists(File()));
  EXPECT_EQ(errorOf(std::string(31, 'A') + "\x7F", 4'294'967'295U), "");
  EXPECT_EQ(Device::Open(File()).TaxpayerId(), std::string(31, 'A') + "\x7F");
  EXPECT_EQ(Device::Open(File()).RunningNumber(), 4'294'967'295U);
}

TEST_F(DeviceFile, NeedsATransportPinOfSixDigitsWhenMade) {
  for (const char* pin : {"", "12345", "1234567", "12345a", "12345 ", "\xC2\xB9\xC2\xB2\xC2\xB3"}) {
    OpenOptions options = kCreate;
    options.transportPin = pin;
    EXPECT_EQ(ErrorOf(File(), options), "the transport PIN of a new device must be six digits") << pin;
  }
  EXPECT_FALSE(std::filesystem::exists(File()));
}

TEST_F(DeviceFile, MayBeEmptyWhenMade) {
  OpenOptions nameless;
  nameless.create = true;
  Write("");
  EXPECT_EQ(ErrorOf(File()), "it is empty, there is no device in it yet");
  EXPECT_EQ(ErrorOf(File(), nameless), "a new device needs a taxpayer ID of 1 to 32 characters");
  EXPECT_EQ(Read(), "");
  EXPECT_EQ(ErrorOf(File(), kCreate), "");
  EXPECT_EQ(Device::Open(File()).LastSequenceNumber(), 0U);
}

TEST_F(DeviceFile, MustBeADeviceFile) {
  for (const std::string& content :
       {std::string("x"), std::string(511, '\0'), std::string("This is a shopping list, no device file.\n"),
        std::string(5000, '\0')}) {
    Write(content);
    EXPECT_EQ(ErrorOf(File()), "it is no device file");
    EXPECT_EQ(ErrorOf(File(), kCreate), "it is no device file");
    EXPECT_EQ(Read(), content);
  }
}

TEST_F(DeviceFile, LeavesOtherDatabasesAlone) {
  RunSql("CREATE TABLE device (name TEXT); INSERT INTO device VALUES ('printer')");
  const std::string content = Read();
  EXPECT_EQ(ErrorOf(File()), "it is a database, but no device file");
  EXPECT_EQ(ErrorOf(File(), kCreate), "it is a database, but no device file");
  EXPECT_EQ(Read(), content);
}

TEST_F(DeviceFile, MustBeReachable) {
  ASSERT_EQ(chmod(folder_.c_str(), 0700), 0);
  const Unprivileged user;
  if (geteuid() == 65534) {
    EXPECT_EQ(ErrorOf(File(), kCreate), "it can't be reached (Permission denied)");
  }
}

TEST_F(DeviceFile, MustBeOfThisVersion) {
  static_cast<void>(Open());
  for (const char* version : {"0", "4", "-1"}) {
    RunSql(std::string("PRAGMA user_version = ") + version);
    EXPECT_EQ(ErrorOf(File(), kCreate), "it was made by another version of the software signing device");
  }
}

TEST_F(DeviceFile, MustHoldAnIdentityAndAKey) {
  static_cast<void>(Open());
  RunSqlAndSeal("UPDATE device SET private_key = 'lost'");
  EXPECT_EQ(ErrorOf(File()), "it is no private key in PEM form");
  RunSql("DELETE FROM device");
  EXPECT_EQ(ErrorOf(File()), "it is damaged (the device is missing)");
}

TEST_F(DeviceFile, MustHoldKeysThatFit) {
  static_cast<void>(Open());
  static_cast<void>(Device::Open(folder_ / "other.zel", kCreate));
  RunSqlAndSeal("ATTACH '" + (folder_ / "other.zel").string() +
                "' AS other; UPDATE device SET public_key = (SELECT public_key FROM other.device)");
  EXPECT_EQ(ErrorOf(File()), "it is damaged (its private and its public key don't fit)");
}

TEST_F(DeviceFile, MustBeWritable) {
  static_cast<void>(Open());
  ASSERT_EQ(chmod(folder_.c_str(), 0755), 0);
  ASSERT_EQ(chmod(File().c_str(), 0444), 0);
  const Unprivileged user;
  EXPECT_EQ(ErrorOf(File()), "it is read-only");
  EXPECT_EQ(ErrorOf(folder_ / "new.zel", kCreate),
            geteuid() == 65534 ? "it can't be created (Permission denied)" : "");
}

TEST_F(DeviceFile, RefusesBookingsInAFolderThatCanNotBeWritten) {
  static_cast<void>(Open());
  ASSERT_EQ(chmod(File().c_str(), 0666), 0);
  ASSERT_EQ(chmod(folder_.c_str(), 0555), 0);
  {
    const Unprivileged user;
    Device device = Device::Open(File());
    ExpectRefused(device.Execute(Command::SignBooking, Hex(kBooking)), RefusalCode::Storage,
                  "device file '" + File().string() + "': its folder is read-only");
    EXPECT_EQ(device.LastSequenceNumber(), 0U);
  }
  ASSERT_EQ(chmod(folder_.c_str(), 0755), 0);
  EXPECT_EQ(Open().Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 1U);
}

TEST_F(DeviceFile, RefusesBookingsWhenItIsGone) {
  Device device = Open();
  std::filesystem::remove(File());
  ExpectRefused(device.Execute(Command::SignBooking, Hex(kBooking)), RefusalCode::Storage,
                "device file '" + File().string() + "': it was moved or deleted meanwhile");
}

TEST_F(DeviceFile, RefusesBookingsWhileLockedForTooLong) {
  OpenOptions impatient = kCreate;
  impatient.busyTimeout = std::chrono::milliseconds(20);
  Device device = Device::Open(File(), impatient);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(File().c_str(), &other), SQLITE_OK);
  // A writer, and a reader that the commit has to wait for.
  for (const char* lock : {"BEGIN IMMEDIATE", "BEGIN; SELECT * FROM device"}) {
    ASSERT_EQ(sqlite3_exec(other, lock, nullptr, nullptr, nullptr), SQLITE_OK);
    ExpectRefused(device.Execute(Command::SignBooking, Hex(kBooking)), RefusalCode::Busy,
                  "device file '" + File().string() + "': it is locked by other processes");
    ASSERT_EQ(sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr), SQLITE_OK);
  }
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(ErrorOf(File(), impatient), "it is locked by other processes");
  EXPECT_THROW(static_cast<void>(device.LastSequenceNumber()), DeviceError);
  EXPECT_THROW(static_cast<void>(device.Find(1)), DeviceError);
  EXPECT_THROW(static_cast<void>(device.Totals()), DeviceError);
  EXPECT_THROW(static_cast<void>(device.OpenTotals()), DeviceError);
  EXPECT_THROW(static_cast<void>(device.State()), DeviceError);
  EXPECT_THROW(static_cast<void>(device.FindReport(1)), DeviceError);
  sqlite3_close(other);
  EXPECT_EQ(device.Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 1U);
}

TEST_F(DeviceFile, RefusesBookingsWhenItsTablesAreDamaged) {
  Device device = Open();
  ASSERT_TRUE(device.Execute(Command::SignBooking, Hex(kBooking)).accepted);
  const auto expectRefused = [&](const std::string& reason) {
    ExpectRefused(device.Execute(Command::SignBooking, Hex(kBooking)), RefusalCode::Storage,
                  "device file '" + File().string() + "': " + reason);
  };
  RunSql("UPDATE device SET last_sequence_number = 0");
  expectRefused("it is damaged (the device's state is not what was recorded)");
  RunSqlAndSeal("UPDATE device SET last_sequence_number = 0");
  expectRefused("it is an older one by now, without the transaction 1 that was there");
  RunSql("DELETE FROM device");
  expectRefused("it is damaged (the device is missing)");
}

TEST_F(DeviceFile, EndsAnyDamageInAnErrorOrAnAnswer) {
  {
    Device device = Open();
    ASSERT_TRUE(device.Execute(Command::SignBooking, Hex(kBooking)).accepted);
  }
  const std::string good = Read();
  std::mt19937 random(42);
  int opened = 0;
  int notOpened = 0;
  for (int round = 0; round < 300; ++round) {
    std::string damaged = good;
    if (round % 3 == 0) {
      damaged.resize(random() % damaged.size());
    } else {
      for (auto i = random() % 200; i > 0; --i) {
        damaged[random() % damaged.size()] = static_cast<char>(random());
      }
    }
    Write(damaged);
    try {
      Device device = Device::Open(File());
      ++opened;
      const Answer answer = device.Execute(Command::SignBooking, Hex(kBooking));
      EXPECT_EQ(answer.accepted, answer.reason.empty());
      static_cast<void>(device.Find(1));
      static_cast<void>(device.Totals());
      const std::string plain = kDate + kTime;
      const std::string months = "D0 03 20 26 01 D1 03 20 26 12";
      EXPECT_TRUE(IsWhole(device.Execute(Command::ReportSpan, Hex(plain + months))));
      EXPECT_TRUE(IsWhole(device.Execute(Command::ReportUnsigned, Hex(plain))));
      EXPECT_TRUE(IsWhole(device.Execute(Command::ReportSigned, Hex(plain))));
      static_cast<void>(device.FindReport(2));
    } catch (const DeviceError& error) {
      EXPECT_STRNE(error.what(), "");
      ++notOpened;
    }
  }
  EXPECT_GT(opened, 0);
  EXPECT_GT(notOpened, 0);
}

TEST_F(DeviceFile, ServesTwoDevicesInTurn) {
  Device first = Open();
  Device second = Device::Open(File());
  for (std::uint32_t number = 1; number <= 20; ++number) {
    Device& device = number % 3 == 0 ? first : second;
    Device& other = number % 3 == 0 ? second : first;
    const Answer answer = device.Execute(Command::SignBooking, Hex(kBooking));
    ASSERT_EQ(answer.sequenceNumber, number) << answer.reason;
    EXPECT_EQ(other.LastSequenceNumber(), number);
    EXPECT_EQ(other.Find(number)->response, answer.response);
    EXPECT_TRUE(VerifyBooking(Hex(kBooking), answer.response, other.PublicKeyPem()).ok);
  }
  EXPECT_EQ(first.Totals(), second.Totals());
}

TEST_F(DeviceFile, ServesManyProcessesAtOnceEvenWhileItIsMade) {
  constexpr int kProcesses = 4;
  constexpr std::uint32_t kBookings = 25;
  std::vector<pid_t> children;
  for (int i = 0; i < kProcesses; ++i) {
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
      bool good = true;
      try {
        OpenOptions patient = kCreate;
        patient.busyTimeout = std::chrono::minutes(1);
        Device device = Device::Open(File(), patient);
        for (std::uint32_t n = 0; n < kBookings; ++n) {
          good = device.Execute(Command::SignBooking, Hex(kBooking)).accepted && good;
        }
      } catch (const DeviceError&) {
        good = false;
      }
      _exit(good ? 0 : 1);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  Device device = Device::Open(File());
  EXPECT_EQ(device.LastSequenceNumber(), kProcesses * kBookings);
  std::set<std::string> responses;
  for (std::uint32_t number = 1; number <= kProcesses * kBookings; ++number) {
    const std::optional<SignedRequest> found = device.Find(number);
    ASSERT_TRUE(found.has_value()) << number;
    EXPECT_TRUE(VerifyBooking(found->request, found->response, device.PublicKeyPem()).ok);
    responses.emplace(found->response.begin(), found->response.end());
  }
  EXPECT_EQ(responses.size(), kProcesses * kBookings);
}

}  // namespace
}  // namespace softdevice::test
