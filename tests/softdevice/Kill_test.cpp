// Whatever moment a process is killed at, the next one finds a consistent device file.

#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <map>
#include <random>
#include <thread>

#include "Support.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

constexpr std::size_t kResponseLimit = 128;

/// What a child reports of each answer; one write of it into a pipe is never torn.
struct Report {
  std::uint32_t sequenceNumber = 0;
  std::uint32_t length = 0;
  std::uint8_t response[kResponseLimit] = {};
};

class Kill : public DeviceTest {
 protected:
  /// Starts a process that makes the device if need be, signs until it is killed, and reports each answer.
  pid_t StartSigning(int pipe) const {
    const pid_t child = fork();
    if (child != 0) {
      return child;
    }
    try {
      OpenOptions patient = kCreate;
      patient.busyTimeout = std::chrono::minutes(1);
      Device device = Device::Open(File(), patient);
      const Bytes request = Hex(kBooking);
      for (;;) {
        const Answer answer = device.Execute(Command::SignBooking, request);
        if (!answer.accepted || answer.response.size() > kResponseLimit) {
          _exit(2);
        }
        Report report{answer.sequenceNumber, static_cast<std::uint32_t>(answer.response.size()), {}};
        std::copy(answer.response.begin(), answer.response.end(), report.response);
        if (write(pipe, &report, sizeof report) != static_cast<ssize_t>(sizeof report)) {
          _exit(3);
        }
      }
    } catch (const std::exception&) {
      _exit(4);
    }
  }

  /// Lets processes sign until they gave this many answers in all, kills each some random time later, and
  /// collects what they reported.
  void SignAndKill(int processes, int answers, std::chrono::microseconds longest) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::vector<pid_t> children;
    for (int i = 0; i < processes; ++i) {
      children.push_back(StartSigning(ends[1]));
      ASSERT_NE(children.back(), -1);
    }
    close(ends[1]);
    while (answers > 0 && TakeReport(ends[0])) {
      --answers;
    }
    for (const pid_t child : children) {
      std::this_thread::sleep_for(longest * static_cast<int>(random_() % 1000) / 1000);
      ASSERT_EQ(kill(child, SIGKILL), 0);
      int status = 0;
      ASSERT_EQ(waitpid(child, &status, 0), child);
      ASSERT_TRUE(WIFSIGNALED(status)) << "it ended by itself with " << WEXITSTATUS(status);
    }
    while (TakeReport(ends[0])) {
    }
    close(ends[0]);
  }

  /// Waits for the next report; false when there will be none any more.
  bool TakeReport(int pipe) {
    Report report;
    if (read(pipe, &report, sizeof report) != static_cast<ssize_t>(sizeof report)) {
      return false;
    }
    const Bytes response(report.response, report.response + report.length);
    EXPECT_TRUE(answered_.emplace(report.sequenceNumber, response).second)
        << "number " << report.sequenceNumber << " was given twice";
    return true;
  }

  /// Checks that the numbers from 1 to the last are recorded, and every answer as it was given.
  void ExpectConsistent() const {
    Device device = Device::Open(File());
    const std::uint32_t last = device.LastSequenceNumber();
    std::uint32_t recordedAnswers = 0;
    for (std::uint32_t number = 1; number <= last; ++number) {
      const std::optional<SignedRequest> found = device.Find(number);
      ASSERT_TRUE(found.has_value()) << "number " << number << " is missing";
      EXPECT_TRUE(VerifyBooking(found->request, found->response, device.PublicKeyPem()).ok);
      if (const auto answer = answered_.find(number); answer != answered_.end()) {
        EXPECT_EQ(found->response, answer->second);
        ++recordedAnswers;
      }
    }
    EXPECT_EQ(recordedAnswers, answered_.size());
    EXPECT_FALSE(device.Find(last + 1).has_value());
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(File().c_str(), &database), SQLITE_OK);
    const std::string check =
        "SELECT 1 / ((SELECT count(*) FROM signed_request) = " + std::to_string(last) + ")";
    EXPECT_EQ(
        sqlite3_exec(
            database, check.c_str(),
            [](void*, int, char** value, char**) { return value[0] == nullptr ? 1 : 0; }, nullptr, nullptr),
        SQLITE_OK);
    sqlite3_close(database);
    if (last > 0) {
      const std::vector<Total> totals = device.Totals();
      ASSERT_EQ(totals.size(), 1U);
      EXPECT_EQ(totals[0].bookings, last);
      EXPECT_EQ(totals[0].turnover, last * std::int64_t{11900});
      EXPECT_EQ(totals[0].vat, last * std::int64_t{1900});
    }
  }

  std::mt19937 random_{20270101};
  std::map<std::uint32_t, Bytes> answered_;
};

TEST_F(Kill, LosesNoBookingAndGivesNoNumberTwice) {
  static_cast<void>(Open());
  int interrupted = 0;
  for (int round = 0; round < 100; ++round) {
    SignAndKill(1, 2, std::chrono::milliseconds(20));
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
    interrupted += std::filesystem::exists(File().string() + "-journal") ? 1 : 0;
  }
  EXPECT_GT(interrupted, 0) << "no process was killed amid a booking";
  ExpectConsistent();
}

TEST_F(Kill, DoesNotDisturbOtherProcesses) {
  static_cast<void>(Open());
  for (int round = 0; round < 15; ++round) {
    SignAndKill(3, 6, std::chrono::milliseconds(20));
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
  }
  ExpectConsistent();
}

TEST_F(Kill, LeavesAWholeDeviceOrNoneWhileItIsMade) {
  for (int round = 0; round < 50; ++round) {
    std::filesystem::remove(File());
    answered_.clear();
    SignAndKill(1, 0, std::chrono::milliseconds(20));
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
    static_cast<void>(Open());  // goes on from whatever the killed process left
    ExpectConsistent();
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
  }
}

}  // namespace
}  // namespace softdevice::test
