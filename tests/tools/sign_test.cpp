// Signing a sale: the receipt, the document, the device file, and that nothing is overwritten or lost.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <stdexcept>

#include "Program.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

TEST(Sign, PrintsTheReceiptAndWritesTheDocument) {
  const test::Desk desk;
  const test::Outcome outcome = desk.Zel({"sign", "sale.json", "--device", "till.db"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(
      outcome.err,
      "zel: made and activated the software signing device 'till.db' for taxpayer SOFTWARE-DEVICE-TEST\n"
      "zel: signed as booking 1, wrote 'sale.xml'\n"
      "zel: the device 'till.db' is a software device for development and tests, not a certified one\n");
  EXPECT_EQ(outcome.out.find('\r'), std::string::npos);
  EXPECT_THAT(outcome.out, HasSubstr("    Belegdatum .............: 21.11.2026 08:05\n"));
  EXPECT_THAT(outcome.out, HasSubstr("    Bediener ...............: Meier\n"));
  EXPECT_THAT(outcome.out, HasSubstr("      4,0 Stk      Brötchen                      1,80 EUR (B)\n"));
  EXPECT_THAT(outcome.out, HasSubstr("    A:      1,05 |      0,17 |   19,00 %\n"));
  EXPECT_THAT(outcome.out, HasSubstr("    B:     11,00 |      0,72 |    7,00 %\n"));
  EXPECT_THAT(outcome.out, testing::Not(HasSubstr("A C H T U N G")));
  EXPECT_TRUE(desk.ReadFile("sale.xml").starts_with("    <transactionEncoded>\r\n        <itemListEncoded>"));
  EXPECT_THAT(desk.Names(), UnorderedElementsAre("sale.json", "sale.xml", "till.db"));
}

TEST(Sign, MakesTheDeviceInTheHomeFolderOnFirstUseAndSaysSo) {
  const test::Desk desk;
  const test::Outcome first = desk.Zel({"sign", "sale.json"});
  EXPECT_EQ(first.status, 0);
  EXPECT_THAT(first.err, HasSubstr("zel: made and activated the software signing device '" +
                                   desk.File(".local/share/zel/device.db")));
  const test::Outcome second = desk.Zel({"sign", "sale.json", "--out", "second.xml"});
  EXPECT_EQ(second.status, 0);
  EXPECT_THAT(second.err, testing::StartsWith("zel: signed as booking 2, wrote 'second.xml'\n"));
}

TEST(Sign, UsesTheDataFolderThatTheEnvironmentNames) {
  const test::Desk desk;
  test::Setting setting;
  const std::string folder = desk.File("data");
  setting.inChild = [&folder] { setenv("XDG_DATA_HOME", folder.c_str(), 1); };
  EXPECT_EQ(desk.Zel({"sign", "sale.json"}, setting).status, 0);
  EXPECT_TRUE(desk.Exists("data/zel/device.db"));
}

TEST(Sign, WithoutAHomeFolderAsksForADevice) {
  const test::Desk desk;
  test::Setting setting;
  setting.inChild = [] { unsetenv("HOME"); };
  const test::Outcome outcome = desk.Zel({"sign", "sale.json"}, setting);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err,
            "zel: there is no home folder for the device file; name a device file with --device\n");
}

TEST(Sign, ReadsStandardInput) {
  const test::Desk desk;
  test::Setting setting;
  setting.input = test::Desk::kSale;
  EXPECT_EQ(desk.Zel({"sign", "-", "--out", "piped.xml"}, setting).status, 0);
  EXPECT_EQ(desk.Zel({"verify", "piped.xml"}).status, 0);
}

TEST(Sign, DoesNotOverwriteWithoutForce) {
  const test::Desk desk;
  desk.WriteFile("sale.xml", "precious");
  const test::Outcome refused = desk.Zel({"sign", "sale.json"});
  EXPECT_EQ(refused.status, 3);
  EXPECT_EQ(refused.err, "zel: 'sale.xml' exists already (--force overwrites it)\n");
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(desk.ReadFile("sale.xml"), "precious");
  EXPECT_FALSE(desk.Exists(".local/share/zel/device.db"));

  EXPECT_EQ(desk.Zel({"sign", "sale.json", "--force"}).status, 0);
  EXPECT_EQ(desk.Zel({"verify", "sale.xml"}).status, 0);
}

TEST(Sign, DoesNotOverwriteALinkThatLeadsNowhere) {
  const test::Desk desk;
  std::filesystem::create_symlink("elsewhere.xml", desk.File("sale.xml"));
  EXPECT_EQ(desk.Zel({"sign", "sale.json"}).status, 3);
  EXPECT_FALSE(desk.Exists("elsewhere.xml"));
}

TEST(Sign, NeverOverwritesTheSaleTheDeviceOrADeviceNode) {
  const test::Desk desk;
  EXPECT_EQ(desk.Zel({"sign", "sale.json", "--out", "sale.json", "--force"}).err,
            "zel: the document would overwrite 'sale.json'\n");
  EXPECT_EQ(desk.ReadFile("sale.json"), test::Desk::kSale);
  static_cast<void>(desk.SignedDocument());
  EXPECT_EQ(desk.Zel({"sign", "sale.json", "--device", "till.db", "--out", "till.db", "--force"}).err,
            "zel: the document would overwrite 'till.db'\n");
  const test::Outcome node =
      desk.Zel({"sign", "sale.json", "--device", "till.db", "--out", "/dev/full", "--force"});
  EXPECT_EQ(node.status, 3);
  EXPECT_EQ(node.err, "zel: '/dev/full' is no regular file\n");
}

TEST(Sign, SignsNothingWhenTheDocumentHasNoPlace) {
  const test::Desk desk;
  static_cast<void>(desk.SignedDocument());
  struct Case {
    std::string out;
    std::string message;
  };
  std::filesystem::create_directory(desk.File("folder"));
  for (const Case& wrong :
       {Case{"nowhere/sale.xml", "zel: 'nowhere/sale.xml' can't be written: No such file or directory\n"},
        Case{"sale.json/sale.xml", "zel: 'sale.json/sale.xml' can't be written: Not a directory\n"},
        Case{"folder", "zel: 'folder' exists already (--force overwrites it)\n"},
        Case{std::string(300, 'x'),
             "zel: '" + std::string(300, 'x') + "' can't be written: File name too long\n"}}) {
    const test::Outcome outcome = desk.Zel({"sign", "sale.json", "--device", "till.db", "--out", wrong.out});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.err, wrong.message);
  }
  // The next number is the next one: nothing was signed in vain.
  EXPECT_THAT(desk.Zel({"sign", "sale.json", "--device", "till.db", "--out", "next.xml"}).err,
              HasSubstr("signed as booking 2,"));
}

TEST(Sign, LeavesNothingBehindWhenTheDiskIsFull) {
  const test::Desk desk;
  static_cast<void>(desk.SignedDocument());
  test::Setting setting;
  setting.inChild = [] {
    const rlimit limit{1024, 1024};  // bytes per file
    setrlimit(RLIMIT_FSIZE, &limit);
  };
  const test::Outcome outcome =
      desk.Zel({"sign", "sale.json", "--device", "till.db", "--out", "full.xml"}, setting);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err, "zel: 'full.xml' can't be written: File too large\n");
  EXPECT_THAT(desk.Names(), UnorderedElementsAre("sale.json", "sale.xml", "till.db"));
}

TEST(Sign, ReportsAFullStandardOutput) {
  const test::Desk desk;
  test::Setting setting;
  setting.standardOutput = "/dev/full";
  const test::Outcome outcome = desk.Zel({"sign", "sale.json"}, setting);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("zel: signed as booking 1, wrote 'sale.xml'\n"));
  EXPECT_THAT(outcome.err,
              testing::EndsWith("zel: standard output can't be written: No space left on device\n"));
  EXPECT_EQ(desk.Zel({"verify", "sale.xml"}).status, 0);
}

TEST(Sign, ReportsAClosedStandardOutputAndTouchesNoOtherFileInItsPlace) {
  const test::Desk desk;
  test::Setting setting;
  setting.inChild = [] {
    close(STDIN_FILENO);
    close(STDOUT_FILENO);
  };
  const test::Outcome outcome = desk.Zel({"sign", "sale.json"}, setting);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(outcome.err, testing::EndsWith("zel: standard output can't be written: Bad file descriptor\n"));
  EXPECT_EQ(desk.Zel({"verify", "sale.xml"}).status, 0);
}

TEST(Sign, NamesWhatCantBeRead) {
  const test::Desk desk;
  EXPECT_EQ(desk.Zel({"sign", "missing.json"}).err,
            "zel: 'missing.json' can't be read: No such file or directory\n");
  std::filesystem::create_directory(desk.File("folder.json"));
  const test::Outcome folder = desk.Zel({"sign", "folder.json"});
  EXPECT_EQ(folder.status, 3);
  EXPECT_EQ(folder.err, "zel: 'folder.json' can't be read: Is a directory\n");
  desk.WriteFile("empty.json", "");
  const test::Outcome empty = desk.Zel({"sign", "empty.json"});
  EXPECT_EQ(empty.status, 1);
  EXPECT_EQ(empty.err, "zel: 'empty.json' is empty\n");
  desk.WriteFile("huge.json", "");
  ASSERT_EQ(truncate(desk.File("huge.json").c_str(), 10'000'000'000), 0);
  const test::Outcome huge = desk.Zel({"sign", "huge.json"});
  EXPECT_EQ(huge.status, 1);
  EXPECT_EQ(huge.err, "zel: 'huge.json' is larger than 32 MiB\n");
}

TEST(Sign, AFileNameCantSteerTheTerminal) {
  EXPECT_EQ(test::Desk().Zel({"sign", "a\nzel: all right\x1B[2J.json"}).err,
            "zel: 'a?zel: all right?[2J.json' can't be read: No such file or directory\n");
}

TEST(Sign, NamesADeviceFileThatIsNone) {
  const test::Desk desk;
  desk.WriteFile("till.db", "no database at all, but long enough to be looked at by anybody who likes to");
  const test::Outcome outcome = desk.Zel({"sign", "sale.json", "--device", "till.db"});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(outcome.err, testing::StartsWith("zel: device file 'till.db': "));
  EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
  EXPECT_FALSE(desk.Exists("sale.xml"));
}

// Two prices that fit, and a sum that doesn't.
constexpr std::string_view kTooRich = R"({"operator": "Meier", "items": [
    {"name": "Gold", "price": "999999999.99", "class": "A"},
    {"name": "Gold", "price": "999999999.99", "class": "A"}]})";

TEST(Sign, ALibraryRefusalIsOneLine) {
  const test::Desk desk;
  desk.WriteFile("rich.json", kTooRich);
  const test::Outcome outcome = desk.Zel({"sign", "rich.json"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "zel: 'rich.json': Buchung: Das Erstellen der Anfrage ist nicht möglich! Die Binärdaten aus "
            "Container \"1\" "
            "konnten nicht abgerufen werden! (Position: 55) [9301]\n");
  EXPECT_THAT(desk.Names(), UnorderedElementsAre("sale.json", "rich.json"));
}

TEST(Sign, WritesTheLibrarysErrorsToALogFile) {
  const test::Desk desk;
  desk.WriteFile("rich.json", kTooRich);
  EXPECT_EQ(desk.Zel({"sign", "rich.json", "--log", "till.log"}).status, 1);
  EXPECT_THAT(desk.ReadFile("till.log"), HasSubstr("FEHLER:"));
}

TEST(Sign, GoesOnWithoutALogFileThatCantBeOpened) {
  const test::Desk desk;
  const test::Outcome outcome = desk.Zel({"sign", "sale.json", "--log", "nowhere/till.log"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.err,
              testing::StartsWith("zel: warning: the log file 'nowhere/till.log' can't be opened; going on "
                                  "without it\n"));
}

/// Keeps the device file locked, as another process would that is just signing.
class LockedDevice {
 public:
  explicit LockedDevice(const std::string& file) : descriptor_(open(file.c_str(), O_RDWR)) { Set(F_WRLCK); }
  ~LockedDevice() { close(descriptor_); }
  LockedDevice(const LockedDevice&) = delete;
  LockedDevice& operator=(const LockedDevice&) = delete;

  void Release() const { Set(F_UNLCK); }

 private:
  void Set(short type) const {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = 0x40000000;  // the bytes that the database locks
    lock.l_len = 512;
    if (fcntl(descriptor_, F_SETLK, &lock) != 0) throw std::runtime_error("lock");
  }

  int descriptor_;
};

TEST(Resume, IsOfferedWhenTheNameIsTakenWhileTheSaleIsSigned) {
  const test::Desk desk;
  static_cast<void>(desk.SignedDocument());
  const LockedDevice lock(desk.File("till.db"));
  std::future<test::Outcome> run = std::async(std::launch::async, [&desk] {
    return desk.Zel({"sign", "sale.json", "--device", "till.db", "--out", "second.xml"});
  });
  const auto isReserved = [&desk] {
    const std::vector<std::string> names = desk.Names();
    return std::any_of(names.begin(), names.end(),
                       [](const std::string& name) { return name.starts_with(".zel-"); });
  };
  while (!isReserved() && run.wait_for(std::chrono::milliseconds(5)) == std::future_status::timeout) {
  }
  desk.WriteFile("second.xml", "precious");
  lock.Release();
  const test::Outcome outcome = run.get();
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "zel: 'second.xml' can't be written: File exists; the sale is signed as booking 2 and kept by "
            "the device: "
            "write its document with 'zel sign sale.json --device till.db --resume 2'\n");
  EXPECT_EQ(desk.ReadFile("second.xml"), "precious");
  EXPECT_THAT(desk.Names(), UnorderedElementsAre("sale.json", "sale.xml", "second.xml", "till.db"));

  EXPECT_EQ(
      desk.Zel({"sign", "sale.json", "--device", "till.db", "--resume", "2", "--out", "third.xml"}).status,
      0);
  EXPECT_EQ(desk.Zel({"verify", "third.xml", "--device", "till.db"}).status, 0);
}

TEST(Resume, WritesTheDocumentOfABookingThatTheDeviceSignedBefore) {
  const test::Desk desk;
  const std::string document = desk.SignedDocument();
  std::filesystem::remove(desk.File("sale.xml"));
  const test::Outcome outcome = desk.Zel({"sign", "sale.json", "--device", "till.db", "--resume", "1"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.err, testing::StartsWith("zel: booking 1 was signed before; wrote 'sale.xml'\n"));
  EXPECT_EQ(desk.ReadFile("sale.xml"), document);
  EXPECT_THAT(outcome.out, HasSubstr("    Belegdatum .............: 21.11.2026 08:05\n"));
  EXPECT_THAT(desk.Zel({"sign", "sale.json", "--device", "till.db", "--out", "b.xml"}).err,
              HasSubstr("signed as booking 2,"));
}

TEST(Resume, TakesTheDateOfAnUndatedSaleFromTheDevice) {
  const test::Desk desk;
  desk.WriteFile("now.json",
                 R"({"operator": "Meier", "items": [{"name": "Tee", "price": "2.50", "class": "A"}]})");
  ASSERT_EQ(desk.Zel({"sign", "now.json", "--device", "till.db"}).status, 0);
  ASSERT_EQ(
      desk.Zel({"sign", "now.json", "--device", "till.db", "--resume", "1", "--out", "again.xml"}).status, 0);
  EXPECT_EQ(desk.ReadFile("again.xml"), desk.ReadFile("now.xml"));
}

TEST(Resume, RefusesAnotherSaleAndNumbersThatWereNeverGiven) {
  const test::Desk desk;
  static_cast<void>(desk.SignedDocument());
  desk.WriteFile("other.json", R"({"date": "2026-11-21T08:05", "operator": "Meier", "items": [
    {"name": "Tee", "price": "2.50", "class": "A"}]})");
  const test::Outcome other = desk.Zel({"sign", "other.json", "--device", "till.db", "--resume", "1"});
  EXPECT_EQ(other.status, 1);
  EXPECT_EQ(other.err, "zel: the device signed another sale as booking 1\n");
  const test::Outcome none = desk.Zel({"sign", "other.json", "--device", "till.db", "--resume", "2"});
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.err, "zel: the device has no booking 2, its last one is 1\n");
  EXPECT_FALSE(desk.Exists("other.xml"));
}

TEST(Receipt, IsReadBackFromTheDocument) {
  const test::Desk desk;
  static_cast<void>(desk.SignedDocument());
  const test::Outcome outcome = desk.Zel({"receipt", "sale.xml"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, HasSubstr("    Belegdatum .............: 21.11.2026 08:05\n"));
  EXPECT_THAT(outcome.out, HasSubstr("      4,0 stk      br#tchen                      1,80 EUR (B)\n"));
  EXPECT_THAT(outcome.out, HasSubstr("    A:      1,05 |      0,17 |   19,00 %\n"));
}

TEST(Receipt, OfSomethingElseIsRefused) {
  const test::Desk desk;
  const test::Outcome outcome = desk.Zel({"receipt", "sale.json"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, testing::StartsWith("zel: 'sale.json': "));
  EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
}

TEST(Key, IsPrintedAsPem) {
  const test::Desk desk;
  static_cast<void>(desk.SignedDocument());
  const test::Outcome outcome = desk.Zel({"key", "--device", "till.db"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_TRUE(outcome.out.starts_with("-----BEGIN PUBLIC KEY-----\n"));
  EXPECT_TRUE(outcome.out.ends_with("-----END PUBLIC KEY-----\n"));
}

TEST(Key, MakesNoDevice) {
  const test::Desk desk;
  const test::Outcome outcome = desk.Zel({"key", "--device", "none.db"});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err, "zel: device file 'none.db': there is no such file\n");
  EXPECT_FALSE(desk.Exists("none.db"));
}

}  // namespace
