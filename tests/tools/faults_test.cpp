// Each call to the operating system by which zel changes a file, made to fail: the user is told, a document is
// there whole or not at all, what was there before stays, and the device loses nothing.

#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <functional>
#include <optional>
#include <ostream>

#include "Program.h"
#include "softdevice/Device.h"
#include "softdevice/Verify.h"

namespace {

namespace fs = std::filesystem;
using softdevice::Command;
using softdevice::Device;
using testing::HasSubstr;
using testing::StartsWith;

using Bytes = std::vector<std::uint8_t>;

constexpr std::string_view kOldDocument = "an old document";

Bytes BytesOf(const std::string& text) { return {text.begin(), text.end()}; }

/// Whether a text is a whole document whose response signs its request.
testing::AssertionResult IsRight(const std::string& xml, const Device& device) {
  try {
    const bool isReport = xml.find("<reportEncoded>") != std::string::npos;
    const bool isBooking = !isReport && xml.find("<itemListEncoded") != std::string::npos;
    const std::string kind = isReport ? "report" : "transaction";
    const auto verify = isReport    ? softdevice::VerifyReport
                        : isBooking ? softdevice::VerifyBooking
                                    : softdevice::VerifyData;
    const std::string response = isReport ? "reportResponse" : "transactionResponse";
    const softdevice::Verdict verdict =
        verify(BytesOf(test::FromBase64(test::Element(xml, kind + "Request"))),
               BytesOf(test::FromBase64(test::Element(xml, response))), device.PublicKeyPem());
    if (!verdict.ok) return testing::AssertionFailure() << verdict.reason << "\n" << xml;
    if (!xml.ends_with("</" + kind + "Encoded>")) return testing::AssertionFailure() << "torn: " << xml;
    return testing::AssertionSuccess();
  } catch (const std::runtime_error& error) {
    return testing::AssertionFailure() << error.what() << "\n" << xml;
  }
}

/// What a user does, and where the document goes.
struct Job {
  const char* name;
  std::vector<std::string> arguments;
  std::string document;
  bool overwrites = false;
  std::vector<std::string> resumedWith{};  ///< what the document is made from, besides what the device has
};

void PrintTo(const Job& job, std::ostream* out) { *out << job.name; }

const Job kJobs[] = {
    {"Sale", {"sign", "sale.json", "--device", "till.db", "--out", "new.xml"}, "new.xml"},
    {"SaleOverAnOldDocument",
     {"sign", "sale.json", "--device", "till.db", "--out", "new.xml", "--force"},
     "new.xml",
     true},
    {"Data", {"sign-data", "goods.txt", "--device", "till.db", "--out", "new.xml"}, "new.xml"},
    {"Closing",
     {"report", "--signed", "--items", "sale.json", "--device", "till.db", "--out", "new.xml"},
     "new.xml",
     false,
     {"--items", "sale.json"}},
    {"Resumed", {"sign", "sale.json", "--device", "till.db", "--resume", "1", "--out", "new.xml"}, "new.xml"},
};

struct Fault {
  const char* name;
  const char* kind;
  int error;
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

const Fault kFaults[] = {
    {"FullDisk", "before", ENOSPC}, {"LateFailure", "late", EIO}, {"WrittenInPart", "short", 0}};

/// A desk with a device that has signed a booking.
class FaultDesk : public test::Desk {
 public:
  FaultDesk() {
    static const test::Desk first;
    if (!first.Exists("till.db")) {
      static_cast<void>(first.SignedDocument());
    }
    fs::copy_file(first.File("till.db"), File("till.db"));
    // A booking without date is signed at another time when it is resumed; this one has a date.
    WriteFile("goods.txt", "three crates of apples");
  }

  /// Runs zel while call number `call` fails, and tells whether it came to that.
  bool ZelWithFault(const std::vector<std::string>& arguments, const Fault& fault, int call,
                    test::Outcome& outcome) const {
    const std::string mark = File(".mark");
    fs::remove(mark);
    test::Setting setting;
    setting.inChild = [&] {
      setenv("LD_PRELOAD", FAULTY_SYSTEM, 1);
      setenv("FAULTY_CALL", std::to_string(call).c_str(), 1);
      setenv("FAULTY_KIND", fault.kind, 1);
      setenv("FAULTY_ERROR", std::to_string(fault.error).c_str(), 1);
      setenv("FAULTY_MARK", mark.c_str(), 1);
      // A sanitizer would rather be loaded first.
      const char* const options = getenv("ASAN_OPTIONS");
      setenv("ASAN_OPTIONS",
             ((options == nullptr ? std::string() : options + std::string(":")) + "verify_asan_link_order=0")
                 .c_str(),
             1);
    };
    outcome = Zel(arguments, setting);
    return fs::exists(mark);
  }

  /// The call that failed.
  [[nodiscard]] std::string FailedCall() const { return Exists(".mark") ? ReadFile(".mark") : ""; }

  /// The device's sequence numbers from 1 on, none missing; signs another booking.
  void ExpectSoundDevice() const {
    Device device = Device::Open(File("till.db"));
    const std::uint32_t last = device.LastSequenceNumber();
    ASSERT_GE(last, 1U);
    for (std::uint32_t number = 1; number <= last; ++number) {
      ASSERT_TRUE(device.Find(number).has_value()) << number;
    }
    const softdevice::Answer next = device.Execute(Command::SignBooking, device.Find(1)->request);
    ASSERT_TRUE(next.accepted) << next.reason;
    ASSERT_EQ(next.sequenceNumber, last + 1);
  }

  /// No file with half a document stays behind.
  [[nodiscard]] bool HasLeftover() const {
    const std::vector<std::string> names = Names();
    return std::any_of(names.begin(), names.end(), [](const std::string& name) {
      return name.starts_with(".zel-") || name.find("-journal") != std::string::npos;
    });
  }
};

class AnyCall : public testing::TestWithParam<std::tuple<Job, Fault>> {};

/// Runs the command that a message offers, between quotation marks, for a document that could not be written.
test::Outcome Resume(const FaultDesk& desk, const std::string& message,
                     const std::vector<std::string>& more = {}) {
  const std::size_t start = message.rfind("'zel ") + 5;
  std::vector<std::string> words;
  std::string word;
  for (const char character : message.substr(start, message.rfind('\'') - start)) {
    if (character == ' ') {
      words.push_back(word);
      word.clear();
    } else {
      word += character;
    }
  }
  words.push_back(word);
  words.insert(words.end(), {"--out", "resumed.xml"});
  words.insert(words.end(), more.begin(), more.end());
  return desk.Zel(words);
}

TEST_P(AnyCall, LeavesADocumentWholeOrNotAtAll) {
  const auto& [job, fault] = GetParam();
  int failures = 0;
  int resumed = 0;
  for (int call = 1;; ++call) {
    const FaultDesk desk;
    if (job.overwrites) desk.WriteFile(job.document, kOldDocument);
    test::Outcome outcome;
    if (!desk.ZelWithFault(job.arguments, fault, call, outcome)) {
      EXPECT_EQ(outcome.status, 0) << outcome.err;
      EXPECT_GT(call, 5);
      break;
    }
    const std::string what = desk.FailedCall() + ", call " + std::to_string(call) + ": " + outcome.err;
    const Device device = Device::Open(desk.File("till.db"));
    if (outcome.status == 0) {
      ASSERT_TRUE(IsRight(desk.ReadFile(job.document), device)) << what;
      ASSERT_THAT(outcome.err, HasSubstr("wrote '" + job.document + "'"));
    } else {
      ++failures;
      ASSERT_EQ(outcome.status, 3) << what;
      ASSERT_THAT(outcome.err, StartsWith("zel: ")) << what;
      ASSERT_EQ(outcome.out, "") << what;
      if (job.overwrites) {
        ASSERT_TRUE(desk.Exists(job.document)) << what;
      }
      if (desk.Exists(job.document) && desk.ReadFile(job.document) != kOldDocument) {
        ASSERT_TRUE(IsRight(desk.ReadFile(job.document), device)) << what;
      }
    }
    // What can't be removed stays, of course.
    if (desk.FailedCall() != "unlink") {
      ASSERT_FALSE(desk.HasLeftover()) << what;
    }
    if (outcome.err.find(" --resume ") != std::string::npos) {
      ++resumed;
      const test::Outcome again = Resume(desk, outcome.err, job.resumedWith);
      ASSERT_EQ(again.status, 0) << what << again.err;
      ASSERT_TRUE(IsRight(desk.ReadFile("resumed.xml"), device)) << what;
    }
    ASSERT_NO_FATAL_FAILURE(desk.ExpectSoundDevice()) << what;
  }
  if (fault.kind == std::string_view("short")) {
    EXPECT_EQ(failures, 0);
  } else {
    EXPECT_GT(failures, 3);
    EXPECT_EQ(resumed > 0, job.name != std::string_view("Resumed"));
  }
}

INSTANTIATE_TEST_SUITE_P(ThatFails, AnyCall,
                         testing::Combine(testing::ValuesIn(kJobs), testing::ValuesIn(kFaults)),
                         [](const testing::TestParamInfo<AnyCall::ParamType>& info) {
                           return std::string(std::get<Job>(info.param).name) +
                                  std::get<Fault>(info.param).name;
                         });

/// What a fault leaves of a job with one document.
void ExpectWholeOrNotAtAll(const FaultDesk& desk, const Job& job, const test::Outcome& outcome) {
  const Device device = Device::Open(desk.File("till.db"));
  if (outcome.status == 0) {
    ASSERT_TRUE(IsRight(desk.ReadFile(job.document), device));
  } else {
    ASSERT_EQ(outcome.status, 3);
    ASSERT_THAT(outcome.err, StartsWith("zel: "));
  }
  if (job.overwrites) {
    ASSERT_TRUE(desk.Exists(job.document));
  }
  if (desk.Exists(job.document) && desk.ReadFile(job.document) != kOldDocument) {
    ASSERT_TRUE(IsRight(desk.ReadFile(job.document), device));
  }
  ASSERT_NO_FATAL_FAILURE(desk.ExpectSoundDevice());
}

class NewDevice : public testing::TestWithParam<Fault> {};

TEST_P(NewDevice, IsMadeOrNot) {
  const std::vector<std::string> arguments = {"device",   "init", "--device", "new.db", "--taxpayer", "DE1",
                                              "--number", "1",    "--pin",    "123456", "--activate"};
  int failures = 0;
  for (int call = 1;; ++call) {
    const FaultDesk desk;
    test::Outcome outcome;
    const bool hasFailed = desk.ZelWithFault(arguments, GetParam(), call, outcome);
    const std::string what = desk.FailedCall() + ", call " + std::to_string(call) + ": " + outcome.err;
    if (outcome.status != 0) {
      ++failures;
      ASSERT_EQ(outcome.status, 3) << what;
      ASSERT_THAT(outcome.err, StartsWith("zel: ")) << what;
      // The same command goes on, unless the device is made already or its journal could not be removed; then
      // the file is in order when it is opened next.
      const test::Outcome again = desk.Zel(arguments);
      if (again.status != 0) {
        ASSERT_EQ(again.err, "zel: 'new.db' exists already\n") << what;
      }
    }
    const softdevice::OpenOptions options = {
        .create = desk.FailedCall() == "unlink", .taxpayerId = "DE1", .activate = true};
    Device device = Device::Open(desk.File("new.db"), options);
    ASSERT_EQ(device.TaxpayerId(), "DE1") << what;
    ASSERT_EQ(device.State().lifeCycle, softdevice::LifeCycle::Activated) << what;
    if (!hasFailed) {
      EXPECT_EQ(outcome.status, 0) << what;
      break;
    }
  }
  EXPECT_EQ(failures > 3, GetParam().kind != std::string_view("short"));
}

INSTANTIATE_TEST_SUITE_P(AnyCallThatFails, NewDevice, testing::ValuesIn(kFaults),
                         [](const testing::TestParamInfo<Fault>& info) { return info.param.name; });

class WholeDay : public testing::TestWithParam<Fault> {};

TEST_P(WholeDay, LosesNothing) {
  const std::vector<std::string> day = {"day", "sales", "--out", "out", "--device", "fresh.db"};
  int failures = 0;
  int resumed = 0;
  for (int call = 1;; ++call) {
    const FaultDesk desk;
    fs::create_directory(desk.File("sales"));
    fs::copy_file(desk.File("sale.json"), desk.File("sales/one.json"));
    test::Outcome outcome;
    const bool hasFailed = desk.ZelWithFault({"day", "sales", "--out", "out", "--device", "fresh.db"},
                                             GetParam(), call, outcome);
    const std::string what = desk.FailedCall() + ", call " + std::to_string(call) + ": " + outcome.err;
    if (outcome.status != 0) {
      ++failures;
      ASSERT_EQ(outcome.status, 3) << what;
      ASSERT_THAT(outcome.err, HasSubstr("zel: ")) << what;
    } else {
      ASSERT_TRUE(desk.Exists("out/one.xml") && desk.Exists("out/closing.xml")) << what;
    }
    for (const char* document : {"out/one.xml", "out/closing.xml"}) {
      if (desk.Exists(document)) {
        ASSERT_TRUE(IsRight(desk.ReadFile(document), Device::Open(desk.File("fresh.db")))) << what;
      }
    }
    // A document that the device has signed for is there, or can be written with the command that is named.
    if (outcome.err.find("made and activated the software signing device") == std::string::npos) {
      ASSERT_EQ(desk.Zel(day).status, 0) << what;
    } else {
      const softdevice::DeviceState state = Device::Open(desk.File("fresh.db")).State();
      const bool isSaid = outcome.err.find(" --resume ") != std::string::npos;
      const bool isUnknown = outcome.err.find("the device refuses") != std::string::npos;
      ASSERT_TRUE(state.lastSequenceNumber == 0 || desk.Exists("out/one.xml") || isSaid || isUnknown) << what;
      ASSERT_TRUE(state.lastReportNumber <= 1 || desk.Exists("out/closing.xml") || isSaid || isUnknown)
          << what;
      if (isSaid) {
        ++resumed;
        const test::Outcome again = Resume(desk, outcome.err);
        ASSERT_EQ(again.status, 0) << what << again.err;
      }
    }
    if (!hasFailed) {
      EXPECT_EQ(outcome.status, 0) << what;
      break;
    }
  }
  if (GetParam().kind == std::string_view("short")) {
    EXPECT_EQ(failures, 0);
  } else {
    EXPECT_GT(failures, 10);
    EXPECT_GT(resumed, 0);
  }
}

INSTANTIATE_TEST_SUITE_P(AnyCallThatFails, WholeDay, testing::ValuesIn(kFaults),
                         [](const testing::TestParamInfo<Fault>& info) { return info.param.name; });

class Quota : public testing::TestWithParam<Job> {};

TEST_P(Quota, LeavesADocumentWholeOrNotAtAll) {
  const Job& job = GetParam();
  int failures = 0;
  // From no byte per file to more than the device file has.
  for (const rlim_t bytes :
       {0, 1, 511, 512, 600, 1000, 2000, 4096, 5000, 8192, 12288, 20000, 32768, 100000}) {
    const FaultDesk desk;
    if (job.overwrites) desk.WriteFile(job.document, kOldDocument);
    // Messages are beyond the quota, as a terminal is.
    int messages[2];
    ASSERT_EQ(pipe(messages), 0);
    test::Setting setting;
    setting.inChild = [&] {
      dup2(messages[1], STDOUT_FILENO);
      dup2(messages[1], STDERR_FILENO);
      const rlimit limit{bytes, bytes};
      setrlimit(RLIMIT_FSIZE, &limit);
    };
    test::Outcome outcome = desk.Zel(job.arguments, setting);
    close(messages[1]);
    std::string text(100'000, '\0');
    std::size_t size = 0;
    for (ssize_t count = 1; count > 0 && size < text.size(); size += static_cast<std::size_t>(count)) {
      count = std::max<ssize_t>(read(messages[0], text.data() + size, text.size() - size), 0);
    }
    close(messages[0]);
    outcome.err = text.substr(0, size);
    SCOPED_TRACE(std::to_string(bytes) + " bytes: " + outcome.err);
    ASSERT_NO_FATAL_FAILURE(ExpectWholeOrNotAtAll(desk, job, outcome));
    ASSERT_FALSE(desk.HasLeftover());
    failures += outcome.status == 0 ? 0 : 1;
    if (bytes == 100000) {
      EXPECT_EQ(outcome.status, 0);
    }
  }
  EXPECT_GT(failures, 3);
}

INSTANTIATE_TEST_SUITE_P(OfADisk, Quota, testing::ValuesIn(kJobs),
                         [](const testing::TestParamInfo<Job>& info) { return info.param.name; });

/// Gives up the rights of the super user, for whom no folder is read-only. Nobody else can use `desk`'s folder,
/// which is its owner's.
test::Setting OrdinaryUser() {
  test::Setting setting;
  setting.inChild = [] {
    if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(65534) != 0 || setuid(65534) != 0))
      _exit(126);
  };
  return setting;
}

/// Whether an ordinary user can start the program at all.
bool CanBeStarted() {
  const test::Desk desk;
  return desk.Zel({"--version"}, OrdinaryUser()).status == 0;
}

TEST(FolderWithoutPermission, IsNamedBeforeAnythingIsSigned) {
  if (!CanBeStarted()) GTEST_SKIP() << "the program's folder is closed to ordinary users";
  for (const Job& job : kJobs) {
    const FaultDesk desk;
    if (job.overwrites) desk.WriteFile(job.document, kOldDocument);
    const std::uint32_t last = Device::Open(desk.File("till.db")).LastSequenceNumber();
    fs::create_directory(desk.File("closed"));
    ASSERT_EQ(chmod(desk.File("closed").c_str(), 0555), 0);
    std::vector<std::string> arguments = job.arguments;
    *std::find(arguments.begin(), arguments.end(), job.document) = "closed/new.xml";
    const test::Outcome outcome = desk.Zel(arguments, OrdinaryUser());
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.err, "zel: 'closed/new.xml' can't be written: Permission denied\n");
    EXPECT_EQ(Device::Open(desk.File("till.db")).LastSequenceNumber(), last);
    EXPECT_TRUE(fs::is_empty(desk.File("closed")));
  }
}

TEST(FolderWithoutPermission, OfTheDeviceIsNamed) {
  if (!CanBeStarted()) GTEST_SKIP() << "the program's folder is closed to ordinary users";
  const FaultDesk desk;
  fs::create_directory(desk.File("closed"));
  fs::copy_file(desk.File("till.db"), desk.File("closed/till.db"));
  ASSERT_EQ(chmod(desk.File("closed/till.db").c_str(), 0444), 0);
  fs::create_directory(desk.File("open"));
  ASSERT_EQ(chmod(desk.File("open").c_str(), 0777), 0);
  ASSERT_EQ(chmod(desk.File("closed").c_str(), 0555), 0);
  const std::uint32_t last = Device::Open(desk.File("till.db")).LastSequenceNumber();
  const test::Outcome outcome =
      desk.Zel({"sign", "sale.json", "--device", "closed/till.db", "--out", "open/new.xml"}, OrdinaryUser());
  EXPECT_EQ(outcome.status, 3) << outcome.err;
  EXPECT_THAT(outcome.err, StartsWith("zel: ")) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr("closed/till.db")) << outcome.err;
  EXPECT_TRUE(fs::is_empty(desk.File("open")));
  ASSERT_EQ(chmod(desk.File("closed").c_str(), 0755), 0);
  ASSERT_EQ(chmod(desk.File("closed/till.db").c_str(), 0644), 0);
  EXPECT_EQ(Device::Open(desk.File("closed/till.db")).LastSequenceNumber(), last);
  const test::Outcome made = desk.Zel({"device", "init", "--device", "closed/new.db", "--taxpayer", "DE1",
                                       "--number", "1", "--pin", "123456"},
                                      OrdinaryUser());
  EXPECT_EQ(made.status, 3) << made.err;
  EXPECT_FALSE(desk.Exists("closed/new.db"));
}

/// With a full disk for standard output, and without any.
TEST(StandardOutputThatCantBeWritten, IsSaidByEveryCommand) {
  const FaultDesk desk;
  ASSERT_EQ(desk.Zel({"sign", "sale.json", "--device", "till.db", "--out", "sale.xml"}).status, 0);
  fs::create_directory(desk.File("sales"));
  fs::copy_file(desk.File("sale.json"), desk.File("sales/one.json"));
  const std::vector<std::vector<std::string>> commands = {
      {"sign", "sale.json", "--device", "till.db", "--out", "new.xml", "--force"},
      {"sign-data", "goods.txt", "--device", "till.db", "--out", "new.xml", "--force"},
      {"report", "--unsigned", "--device", "till.db"},
      {"report", "--signed", "--device", "till.db", "--out", "new.xml", "--force"},
      {"receipt", "sale.xml"},
      {"dump", "sale.xml"},
      {"dump", "sale.xml", "--json"},
      {"verify", "sale.xml", "--device", "till.db", "--json"},
      {"key", "--device", "till.db"},
      {"device", "show", "--device", "till.db"},
      {"day", "sales", "--out", "out", "--force"},
      {"--help"},
      {"--version"},
  };
  for (const std::vector<std::string>& command : commands) {
    SCOPED_TRACE(testing::PrintToString(command));
    const auto zel = [&](const test::Setting& setting) {
      fs::remove_all(desk.File("out"));  // where each day begins anew
      return desk.Zel(command, setting);
    };
    ASSERT_EQ(zel({}).status, 0);
    test::Setting full;
    full.standardOutput = "/dev/full";
    const test::Outcome outcome = zel(full);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err,
                testing::EndsWith("zel: standard output can't be written: No space left on device\n"));
    test::Setting closed;
    closed.inChild = [] { close(STDOUT_FILENO); };
    const test::Outcome without = zel(closed);
    EXPECT_EQ(without.status, 3);
    EXPECT_THAT(without.err,
                testing::EndsWith("zel: standard output can't be written: Bad file descriptor\n"));
    // What takes the place of the closed descriptor is no file of the user's.
    test::Setting none;
    none.inChild = [] {
      for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        close(descriptor);
      }
    };
    EXPECT_EQ(zel(none).status, 3);
    EXPECT_TRUE(IsRight(desk.ReadFile("sale.xml"), Device::Open(desk.File("till.db"))));
    EXPECT_EQ(desk.ReadFile("sale.json"), test::Desk::kSale);
  }
  ASSERT_NO_FATAL_FAILURE(desk.ExpectSoundDevice());
  EXPECT_TRUE(IsRight(desk.ReadFile("new.xml"), Device::Open(desk.File("till.db"))));
}

TEST(LogThatCantBeWritten, ChangesNothingForTheUser) {
  const FaultDesk desk;
  desk.WriteFile("rich.json",
                 R"({"date": "2026-11-21T08:05", "operator": "Meier", "items": [
                    {"name": "Gold", "price": "999999999.99", "class": "A"},
                    {"name": "Gold", "price": "999999999.99", "class": "A"}]})");
  const std::vector<std::string> arguments = {"sign",    "rich.json", "--device",
                                              "till.db", "--log",     "till.log"};
  const test::Outcome usual = desk.Zel(arguments);
  ASSERT_EQ(usual.status, 1);
  const std::string entries = desk.ReadFile("till.log");
  ASSERT_THAT(entries, HasSubstr("FEHLER:"));
  for (const Fault& fault : kFaults) {
    int inLog = 0;
    test::Outcome outcome;
    for (int call = 1; desk.ZelWithFault(arguments, fault, call, outcome); ++call) {
      if (outcome.status == 3) {
        continue;  // it was the document's file
      }
      ++inLog;
      EXPECT_EQ(outcome.status, 1);
      EXPECT_THAT(outcome.err, testing::EndsWith(usual.err));
    }
    EXPECT_EQ(outcome.err, usual.err);
    EXPECT_GT(inLog, 0);
  }
}

}  // namespace
