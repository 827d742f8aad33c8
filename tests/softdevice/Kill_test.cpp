// Whatever moment a process is killed at, the next one finds a consistent device file.

#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <iostream>
#include <map>
#include <random>
#include <thread>

#include "Support.h"
#include "VnZEL10cmn/VnZEL10cmn.h"
#include "softdevice/Check.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::Currency;
using VnZEL10cmn::ZELSerialType;

constexpr std::size_t kResponseLimit = 512;

/// What the processes do in turn, each from another place on.
struct Work {
  Command command;
  Bytes request;
};

std::vector<Work> AllWork() {
  return {{Command::SignBooking, Hex(kBooking)},
          {Command::SignDataOnly, Hex(kHash)},
          {Command::SignBooking, Hex(kBooking)},
          {Command::ReportSigned, Hex(kDate + kTime)},
          {Command::SignDataAndTime, Hex(kDate + kTime + kHash)}};
}

bool IsReport(Command command) { return command >= Command::ReportSigned; }

/// What a child reports of each answer; one write of it into a pipe is never torn.
struct Report {
  Command command = Command::SignBooking;
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
      const std::vector<Work> all = AllWork();
      for (std::size_t next = static_cast<std::size_t>(getpid());; ++next) {
        const auto& [command, request] = all[next % all.size()];
        const Answer answer = device.Execute(command, request);
        if (!answer.accepted || answer.response.size() > kResponseLimit) {
          _exit(2);
        }
        Report report{command, answer.sequenceNumber, static_cast<std::uint32_t>(answer.response.size()), {}};
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
    EXPECT_TRUE(
        answered_.emplace(std::pair(IsReport(report.command), report.sequenceNumber), response).second)
        << "number " << report.sequenceNumber << " was given twice";
    return true;
  }

  /// How many bookings and data records were answered, each under a sequence number of its own.
  std::ptrdiff_t Signings() const {
    return std::count_if(answered_.begin(), answered_.end(),
                         [](const auto& answer) { return !answer.first.first; });
  }

  /// Whether what was recorded is what was answered, if the answer got out.
  void ExpectAnswered(const SignedRequest& recorded, std::size_t& answers) const {
    const auto answer = answered_.find({IsReport(recorded.command), recorded.sequenceNumber});
    if (answer != answered_.end()) {
      EXPECT_EQ(recorded.response, answer->second);
      ++answers;
    }
  }

  /// Checks that the numbers from 1 to the last are recorded, every answer as it was given, and that the
  /// closings cover each number once, with the turnover that was booked under these numbers.
  void ExpectConsistent() const {
    Device device = Device::Open(File());
    const std::string key = device.PublicKeyPem();
    const DeviceState state = device.State();
    std::size_t answers = 0;
    std::vector<std::int64_t> bookingsUpTo = {0};
    for (std::uint32_t number = 1; number <= state.lastSequenceNumber; ++number) {
      const std::optional<SignedRequest> found = device.Find(number);
      ASSERT_TRUE(found.has_value()) << "number " << number << " is missing";
      const bool isBooking = found->command == Command::SignBooking;
      EXPECT_TRUE((isBooking ? VerifyBooking : VerifyData)(found->request, found->response, key).ok);
      bookingsUpTo.push_back(bookingsUpTo.back() + (isBooking ? 1 : 0));
      ExpectAnswered(*found, answers);
    }
    std::uint32_t covered = 0;
    for (std::uint32_t number = 1; number <= state.lastReportNumber; ++number) {
      const std::optional<SignedRequest> found = device.FindReport(number);
      ASSERT_TRUE(found.has_value()) << "report " << number << " is missing";
      EXPECT_TRUE(VerifyReport(found->request, found->response, key).ok);
      ExpectAnswered(*found, answers);
      ASSERT_EQ(found->command, number == 1 ? Command::ReportActivate : Command::ReportSigned);
      clsZelReport report;
      ASSERT_TRUE(report.BinaryDataSet(ZELSerialType::Response, ByteArray(found->response), 0));
      const auto last = static_cast<std::uint32_t>(report.TransSeqNrLast().Scaled() / 10'000);
      if (last == 0) {
        EXPECT_EQ(report.Container(1)->Turnover(), Currency(0));
        continue;
      }
      ASSERT_EQ(report.TransSeqNrFirst(), Currency(static_cast<int>(covered + 1)));
      ASSERT_LT(last, bookingsUpTo.size());
      EXPECT_EQ(report.Container(1)->Turnover().Scaled(),
                (bookingsUpTo[last] - bookingsUpTo[covered]) * 119 * 10'000);
      covered = last;
    }
    EXPECT_EQ(covered, state.lastReportedNumber);
    EXPECT_EQ(answers, answered_.size());
    EXPECT_FALSE(device.Find(state.lastSequenceNumber + 1).has_value());
    EXPECT_FALSE(device.FindReport(state.lastReportNumber + 1).has_value());
    ExpectTotal(device.Totals(), bookingsUpTo.back());
    ExpectTotal(device.OpenTotals(), bookingsUpTo.back() - bookingsUpTo[covered]);
    EXPECT_EQ(CheckDeviceFile(File()).damages, std::vector<std::string>{});
  }

  /// Whether the totals are those of so many bookings.
  static void ExpectTotal(const std::vector<Total>& totals, std::int64_t bookings) {
    ASSERT_EQ(totals.size(), bookings > 0 ? 1U : 0U);
    if (bookings > 0) {
      EXPECT_EQ(totals[0].bookings, bookings);
      EXPECT_EQ(totals[0].turnover, bookings * 11900);
      EXPECT_EQ(totals[0].vat, bookings * 1900);
    }
  }

  std::mt19937 random_{20270101};
  /// By number, those of reports apart.
  std::map<std::pair<bool, std::uint32_t>, Bytes> answered_;
};

TEST_F(Kill, LosesNothingOfAThousandSignings) {
  const unsigned seed = std::random_device()();
  std::cout << "seed " << seed << "\n";
  random_.seed(seed);
  static_cast<void>(Open());
  int kills = 0;
  int interrupted = 0;
  for (; Signings() < 1000; ++kills) {
    SignAndKill(1, static_cast<int>(random_() % 20), std::chrono::milliseconds(20));
    ASSERT_FALSE(HasFatalFailure()) << "kill " << kills << ", seed " << seed;
    interrupted += std::filesystem::exists(File().string() + "-journal") ? 1 : 0;
  }
  EXPECT_GT(kills, 30);
  EXPECT_GT(interrupted, 0) << "no process was killed amid a request, seed " << seed;
  RecordProperty("kills", kills);
  RecordProperty("interrupted", interrupted);
  ExpectConsistent();
  EXPECT_FALSE(HasFailure()) << "seed " << seed;
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

TEST_F(Kill, ForgetsNoWrongPin) {
  const Bytes wrong = MakeActivationRequest("000000");
  for (int round = 0; round < 40; ++round) {
    std::filesystem::remove(File());
    static_cast<void>(OpenInactive());
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
      try {
        Device device = Device::Open(File());
        for (char attempt = 1;; ++attempt) {
          const RefusalCode code = device.Execute(Command::ReportActivate, wrong).code;
          if (code != (attempt <= 3 ? RefusalCode::WrongPin : RefusalCode::PinLocked) ||
              write(ends[1], &attempt, 1) != 1) {
            _exit(2);
          }
          attempt = std::min<char>(attempt, 9);
        }
      } catch (const std::exception&) {
        _exit(4);
      }
    }
    close(ends[1]);
    char known = 0;
    for (auto attempts = random_() % 4; attempts > 0 && read(ends[0], &known, 1) == 1; --attempts) {
    }
    std::this_thread::sleep_for(std::chrono::microseconds(random_() % 5'000));
    ASSERT_EQ(kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "it ended by itself with " << WEXITSTATUS(status);
    while (read(ends[0], &known, 1) == 1) {
    }
    close(ends[0]);
    const int counted = Device::Open(File()).State().wrongPins;
    EXPECT_GE(counted, std::min<int>(known, 3));
    EXPECT_LE(counted, std::min<int>(known + 1, 3));
  }
}

}  // namespace
}  // namespace softdevice::test
