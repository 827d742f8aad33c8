#include "VnZEL10cmn/errors/clsVnLogFile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/errors/clsVnLogItem.h"
#include "VnZEL10cmn/errors/internal/LogFileAccess.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/TempFile.h"

using test::ExpectError;
using test::ReadFile;
using test::TempDir;
using test::WriteFile;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsVnLogFile;
using VnZEL10cmn::clsVnLogItem;
using VnZEL10cmn::IVnLogItem;
using VnZEL10cmn::LogFileAccess;
using VnZEL10cmn::ZELErrorCodes;

namespace {

/// An entry of a host's own.
class HostItem : public IVnLogItem {
 public:
  explicit HostItem(std::string text) : text_(std::move(text)) {}
  std::string GetLogEntry() override {
    ++asked;
    return text_;
  }

  int asked = 0;

 private:
  std::string text_;
};

class FaultyItem : public IVnLogItem {
 public:
  std::string GetLogEntry() override { throw std::runtime_error("entry failed"); }
};

clsVnError& ErrorOf(clsVnLogFile& file) { return LogFileAccess::ErrorObject(file); }

void ExpectClear(clsVnLogFile& file) {
  EXPECT_FALSE(ErrorOf(file).HasError()) << ErrorOf(file).ErrorMsg();
  EXPECT_EQ(ErrorOf(file).ErrorFunction(), "");
}

/// Gives up the rights of the super user, for whom no folder is read-only, until the end of the scope.
class OrdinaryUser {
 public:
  OrdinaryUser() : before_(geteuid()) { possible_ = before_ != 0 || seteuid(65534) == 0; }
  ~OrdinaryUser() {
    if (before_ == 0 && seteuid(0) != 0) {
      ADD_FAILURE() << "can't become the super user again";
    }
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  bool Possible() const { return possible_; }

 private:
  uid_t before_;
  bool possible_;
};

std::size_t OpenFiles() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    ++count;
  }
  return count;
}

TEST(clsVnLogFile, IsClosedAndWritesErrorsAtFirst) {
  clsVnLogFile file;
  EXPECT_FALSE(file.FileIsOpen());
  EXPECT_EQ(file.FileName(), "");
  EXPECT_TRUE(file.WriteErrors());
  EXPECT_FALSE(file.WriteEntries());
}

TEST(clsVnLogFile, TheSwitchesKeepWhatIsSet) {
  clsVnLogFile file;
  file.WriteErrors(false);
  file.WriteEntries(true);
  EXPECT_FALSE(file.WriteErrors());
  EXPECT_TRUE(file.WriteEntries());
}

TEST(clsVnLogFile, ItsErrorObjectNamesItself) {
  clsVnLogFile file;
  EXPECT_EQ(ErrorOf(file).ErrorSource(), "VnZEL10cmn.clsVnLogFile");
  EXPECT_EQ(ErrorOf(file).ErrorInstanceID().size(), 36U);
  ExpectClear(file);
}

TEST(FileOpen, CreatesTheFile) {
  const TempDir dir;
  clsVnLogFile file;
  EXPECT_TRUE(file.FileOpen(dir.File("new.log")));
  EXPECT_TRUE(file.FileIsOpen());
  EXPECT_EQ(file.FileName(), dir.File("new.log"));
  EXPECT_EQ(ReadFile(dir.File("new.log")), "");
  ExpectClear(file);
}

TEST(FileOpen, TrimsTheName) {
  const TempDir dir;
  clsVnLogFile file;
  EXPECT_TRUE(file.FileOpen("  " + dir.File("trimmed.log") + "  "));
  EXPECT_EQ(file.FileName(), dir.File("trimmed.log"));
  EXPECT_TRUE(std::filesystem::exists(dir.File("trimmed.log")));
}

TEST(FileOpen, TakesNamesInUtf8) {
  const TempDir dir;
  clsVnLogFile file;
  EXPECT_TRUE(file.FileOpen(dir.File("Übersicht Größe €.log")));
  EXPECT_EQ(file.FileName(), dir.File("Übersicht Größe €.log"));
  HostItem item("x");
  EXPECT_TRUE(file.FileWriteEntry(item));
  EXPECT_EQ(ReadFile(dir.File("Übersicht Größe €.log")), "x\r\n");
}

TEST(FileOpen, AppendsToWhatTheFileHolds) {
  const TempDir dir;
  WriteFile(dir.File("a.log"), "before\nwithout end");
  clsVnLogFile file;
  EXPECT_TRUE(file.FileOpen(dir.File("a.log")));
  HostItem item("entry");
  EXPECT_TRUE(file.FileWriteEntry(item));
  EXPECT_EQ(ReadFile(dir.File("a.log")), "before\nwithout endentry\r\n");
}

TEST(FileOpen, OverridingStartsTheFileEmpty) {
  const TempDir dir;
  WriteFile(dir.File("a.log"), "before\r\n");
  clsVnLogFile file;
  EXPECT_TRUE(file.FileOpen(dir.File("a.log"), true));
  EXPECT_EQ(ReadFile(dir.File("a.log")), "");
  HostItem item("entry");
  EXPECT_TRUE(file.FileWriteEntry(item));
  EXPECT_EQ(ReadFile(dir.File("a.log")), "entry\r\n");
}

TEST(FileOpen, OverridingAFileThatIsMissingCreatesIt) {
  const TempDir dir;
  clsVnLogFile file;
  EXPECT_TRUE(file.FileOpen(dir.File("a.log"), true));
  EXPECT_EQ(ReadFile(dir.File("a.log")), "");
}

TEST(FileOpen, WithoutANameReopensTheFileOpenedLastAndAppends) {
  const TempDir dir;
  clsVnLogFile file;
  HostItem first("first");
  HostItem second("second");
  EXPECT_TRUE(file.FileOpen(dir.File("a.log")));
  EXPECT_TRUE(file.FileWriteEntry(first));
  EXPECT_TRUE(file.FileClose());
  EXPECT_EQ(file.FileName(), dir.File("a.log"));
  EXPECT_TRUE(file.FileOpen());
  EXPECT_TRUE(file.FileIsOpen());
  EXPECT_EQ(file.FileName(), dir.File("a.log"));
  EXPECT_TRUE(file.FileWriteEntry(second));
  EXPECT_EQ(ReadFile(dir.File("a.log")), "first\r\nsecond\r\n");
  EXPECT_TRUE(file.FileClose());
  EXPECT_TRUE(file.FileOpen("   "));
  EXPECT_TRUE(file.FileClose());
  EXPECT_TRUE(file.FileOpen("", true));
  EXPECT_EQ(ReadFile(dir.File("a.log")), "");
}

TEST(FileOpen, AnotherNameTakesThePlaceOfTheLast) {
  const TempDir dir;
  clsVnLogFile file;
  EXPECT_TRUE(file.FileOpen(dir.File("a.log")));
  EXPECT_TRUE(file.FileClose());
  EXPECT_TRUE(file.FileOpen(dir.File("b.log")));
  EXPECT_EQ(file.FileName(), dir.File("b.log"));
}

TEST(FileOpen, WithoutAnyNameFails) {
  clsVnLogFile file;
  EXPECT_FALSE(file.FileOpen());
  ExpectError(ErrorOf(file), ZELErrorCodes::Err_Log_NoFileName, true, "FileOpen",
              "Die Protokolldatei kann nicht geöffnet werden\r\nEs ist keine Datei angegeben!");
  EXPECT_FALSE(file.FileIsOpen());
  EXPECT_EQ(file.FileName(), "");
  EXPECT_FALSE(file.FileOpen("    ", true));
  ExpectError(ErrorOf(file), ZELErrorCodes::Err_Log_NoFileName, true, "FileOpen",
              "Die Protokolldatei kann nicht geöffnet werden\r\nEs ist keine Datei angegeben!");
}

TEST(FileOpen, FailsWhileAFileIsOpenAndLeavesThatFile) {
  const TempDir dir;
  clsVnLogFile file;
  EXPECT_TRUE(file.FileOpen(dir.File("a.log")));
  HostItem first("first");
  EXPECT_TRUE(file.FileWriteEntry(first));
  EXPECT_FALSE(file.FileOpen(dir.File("b.log")));
  ExpectError(ErrorOf(file), ZELErrorCodes::Err_Log_FileOpen, true, "FileOpen",
              "Es ist bereits eine Datei geöffnet\r\n\r\nDateiname: \"" + dir.File("a.log") + "\"");
  EXPECT_FALSE(file.FileOpen(dir.File("a.log"), true));
  EXPECT_FALSE(file.FileOpen());
  EXPECT_TRUE(file.FileIsOpen());
  EXPECT_EQ(file.FileName(), dir.File("a.log"));
  EXPECT_FALSE(std::filesystem::exists(dir.File("b.log")));
  HostItem second("second");
  EXPECT_TRUE(file.FileWriteEntry(second));
  ExpectClear(file);
  EXPECT_EQ(ReadFile(dir.File("a.log")), "first\r\nsecond\r\n");
}

TEST(FileOpen, WithBothSwitchesOffOpensNothing) {
  const TempDir dir;
  clsVnLogFile file;
  file.WriteErrors(false);
  EXPECT_TRUE(file.FileOpen(dir.File("a.log")));
  EXPECT_FALSE(file.FileIsOpen());
  EXPECT_EQ(file.FileName(), "");
  EXPECT_FALSE(std::filesystem::exists(dir.File("a.log")));
  EXPECT_TRUE(file.FileOpen());
  ExpectClear(file);
}

TEST(FileOpen, WithBothSwitchesOffAnOpenFileIsNoObstacle) {
  const TempDir dir;
  clsVnLogFile file;
  EXPECT_TRUE(file.FileOpen(dir.File("a.log")));
  file.WriteErrors(false);
  EXPECT_TRUE(file.FileOpen(dir.File("b.log"), true));
  EXPECT_TRUE(file.FileIsOpen());
  EXPECT_EQ(file.FileName(), dir.File("a.log"));
  EXPECT_FALSE(std::filesystem::exists(dir.File("b.log")));
}

TEST(FileOpen, WithMessagesOnlyOpensTheFile) {
  const TempDir dir;
  clsVnLogFile file;
  file.WriteErrors(false);
  file.WriteEntries(true);
  EXPECT_TRUE(file.FileOpen(dir.File("a.log")));
  EXPECT_TRUE(file.FileIsOpen());
}

/// What the file system refuses: number, mark, function, first line, and the name somewhere behind it.
void ExpectRefused(clsVnLogFile& file, const std::string& name) {
  EXPECT_EQ(ErrorOf(file).ErrorNr(), 10001);
  EXPECT_TRUE(ErrorOf(file).IsUserDef());
  EXPECT_EQ(ErrorOf(file).ErrorFunction(), "FileOpen");
  const std::string& message = ErrorOf(file).ErrorMsg();
  EXPECT_EQ(message.substr(0, message.find('\r')), "Die Protokolldatei kann nicht geöffnet werden");
  EXPECT_NE(message.find(name), std::string::npos) << message;
  EXPECT_FALSE(file.FileIsOpen());
}

TEST(FileOpen, FailsInAMissingFolder) {
  const TempDir dir;
  clsVnLogFile file;
  EXPECT_FALSE(file.FileOpen(dir.File("missing/a.log")));
  ExpectRefused(file, dir.File("missing/a.log"));
  EXPECT_EQ(file.FileName(), "");
  EXPECT_FALSE(file.FileOpen(dir.File("missing/a.log"), true));
  ExpectRefused(file, dir.File("missing/a.log"));
}

TEST(FileOpen, AFailureKeepsTheNameOfTheFileOpenedLast) {
  const TempDir dir;
  clsVnLogFile file;
  EXPECT_TRUE(file.FileOpen(dir.File("a.log")));
  EXPECT_TRUE(file.FileClose());
  EXPECT_FALSE(file.FileOpen(dir.File("missing/b.log")));
  ExpectRefused(file, dir.File("missing/b.log"));
  EXPECT_EQ(file.FileName(), dir.File("a.log"));
  EXPECT_TRUE(file.FileOpen());
  EXPECT_EQ(file.FileName(), dir.File("a.log"));
  ExpectClear(file);
}

TEST(FileOpen, FailsBehindAFileThatIsNoFolder) {
  const TempDir dir;
  WriteFile(dir.File("file"), "");
  clsVnLogFile file;
  EXPECT_FALSE(file.FileOpen(dir.File("file/a.log")));
  ExpectRefused(file, dir.File("file/a.log"));
}

TEST(FileOpen, FailsForAFolderAndNeverDeletesIt) {
  const TempDir dir;
  std::filesystem::create_directory(dir.File("folder"));
  clsVnLogFile file;
  EXPECT_FALSE(file.FileOpen(dir.File("folder")));
  ExpectRefused(file, dir.File("folder"));
  EXPECT_FALSE(file.FileOpen(dir.File("folder"), true));
  ExpectRefused(file, dir.File("folder"));
  EXPECT_TRUE(std::filesystem::is_directory(dir.File("folder")));
  EXPECT_EQ(file.FileName(), "");
}

TEST(FileOpen, FailsForANameThatTheSystemCannotHold) {
  const TempDir dir;
  const std::string name = dir.File(std::string(5000, 'x'));
  clsVnLogFile file;
  EXPECT_FALSE(file.FileOpen(name));
  ExpectRefused(file, name);
  EXPECT_FALSE(file.FileOpen(name, true));
  ExpectRefused(file, name);
}

TEST(FileOpen, FailsInAReadOnlyFolder) {
  const TempDir dir;
  ASSERT_EQ(chmod(dir.Path().c_str(), 0555), 0);
  clsVnLogFile file;
  {
    const OrdinaryUser user;
    if (!user.Possible()) {
      GTEST_SKIP() << "the super user's rights can't be given up here";
    }
    EXPECT_FALSE(file.FileOpen(dir.File("a.log")));
  }
  ASSERT_EQ(chmod(dir.Path().c_str(), 0755), 0);
  ExpectRefused(file, dir.File("a.log"));
  EXPECT_EQ(file.FileName(), "");
}

TEST(FileOpen, FailsWhenTheFileToOverrideCannotBeDeleted) {
  const TempDir dir;
  WriteFile(dir.File("a.log"), "kept");
  ASSERT_EQ(chmod(dir.File("a.log").c_str(), 0666), 0);
  ASSERT_EQ(chmod(dir.Path().c_str(), 0555), 0);
  clsVnLogFile file;
  {
    const OrdinaryUser user;
    if (!user.Possible()) {
      ASSERT_EQ(chmod(dir.Path().c_str(), 0755), 0);
      GTEST_SKIP() << "the super user's rights can't be given up here";
    }
    EXPECT_FALSE(file.FileOpen(dir.File("a.log"), true));
  }
  ASSERT_EQ(chmod(dir.Path().c_str(), 0755), 0);
  ExpectRefused(file, dir.File("a.log"));
  EXPECT_EQ(ReadFile(dir.File("a.log")), "kept");
}

TEST(FileClose, IsAlwaysTrue) {
  const TempDir dir;
  clsVnLogFile file;
  EXPECT_TRUE(file.FileClose());
  EXPECT_TRUE(file.FileOpen(dir.File("a.log")));
  EXPECT_TRUE(file.FileClose());
  EXPECT_FALSE(file.FileIsOpen());
  EXPECT_EQ(file.FileName(), dir.File("a.log"));
  EXPECT_TRUE(file.FileClose());
}

TEST(FileClose, ClearsTheError) {
  clsVnLogFile file;
  EXPECT_FALSE(file.FileOpen());
  EXPECT_TRUE(ErrorOf(file).HasError());
  EXPECT_TRUE(file.FileClose());
  ExpectClear(file);
  EXPECT_EQ(ErrorOf(file).ErrorSource(), "VnZEL10cmn.clsVnLogFile");
}

TEST(clsVnLogFile, TheEndOfTheObjectClosesTheFile) {
  const TempDir dir;
  const std::size_t before = OpenFiles();
  {
    clsVnLogFile file;
    EXPECT_TRUE(file.FileOpen(dir.File("a.log")));
    HostItem item("entry");
    EXPECT_TRUE(file.FileWriteEntry(item));
    EXPECT_EQ(OpenFiles(), before + 1);
  }
  EXPECT_EQ(OpenFiles(), before);
  EXPECT_EQ(ReadFile(dir.File("a.log")), "entry\r\n");
}

/// An open log file in a folder of its own.
class FileWriteEntry : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(file_.FileOpen(dir_.File("a.log"))); }
  std::string Text() const { return ReadFile(dir_.File("a.log")); }

  TempDir dir_;
  clsVnLogFile file_;
};

TEST_F(FileWriteEntry, AppendsTheEntryAndALineEnd) {
  HostItem first("first");
  HostItem second("second\r\nline\r\n");
  EXPECT_TRUE(file_.FileWriteEntry(first));
  ExpectClear(file_);
  EXPECT_EQ(Text(), "first\r\n");
  EXPECT_TRUE(file_.FileWriteEntry(second));
  EXPECT_EQ(Text(), "first\r\nsecond\r\nline\r\n\r\n");
}

TEST_F(FileWriteEntry, WritesAnErrorByteForByte) {
  clsVnError error("VnZEL10cmn.clsTest", "0F0E0D0C-0B0A-0908-0706-050403020100");
  error.ErrorFunction("Prüfen");
  error.ErrorMsg("Größe überschritten\r\n    Betrag ..........: 5 €");
  error.ErrorNr(0);
  EXPECT_TRUE(file_.FileWriteEntry(error));
  EXPECT_EQ(Text(),
            "01.01.1900 00:00:00  ->  FEHLER:\r\n"
            "                         -------\r\n"
            "                         Nummer .............: 0 - Hex: 0000 0000\r\n"
            "                         Benutzerdef. .......: Nein\r\n"
            "                         Quelle .............: VnZEL10cmn.clsTest\r\n"
            "                         Funktion ...........: Pr\xFC"
            "fen\r\n"
            "                         Instanz ............: 0F0E0D0C-0B0A-0908-0706-050403020100\r\n"
            "                         Meldung ............: Gr\xF6\xDF"
            "e \xFC"
            "berschritten\r\n"
            "                                                   Betrag ..........: 5 \x80\r\n"
            "\r\n"
            "\r\n"
            "\r\n");
}

TEST_F(FileWriteEntry, WritesCodePage1252) {
  HostItem item("ÄÖÜäöüß €‚ƒ„…†‡ˆ‰Š‹ŒŽ ‘’“”•–—˜™š›œžŸ ÿ");
  EXPECT_TRUE(file_.FileWriteEntry(item));
  EXPECT_EQ(test::ToHex(std::string_view(Text())),
            "C4 D6 DC E4 F6 FC DF 20 80 82 83 84 85 86 87 88 89 8A 8B 8C 8E 20 "
            "91 92 93 94 95 96 97 98 99 9A 9B 9C 9E 9F 20 FF 0D 0A");
}

TEST_F(FileWriteEntry, CharactersThatTheCodePageLacksBecomeQuestionMarks) {
  HostItem item("ŁódźΩĀ\u2212 a\xFFz");
  EXPECT_TRUE(file_.FileWriteEntry(item));
  EXPECT_EQ(Text(),
            "?\xF3"
            "d???? a?z\r\n");
}

TEST_F(FileWriteEntry, LeavesLineEndsWithinTheEntryAsTheyAre) {
  HostItem item("a\nb\rc\r\nd");
  EXPECT_TRUE(file_.FileWriteEntry(item));
  EXPECT_EQ(Text(), "a\nb\rc\r\nd\r\n");
}

TEST_F(FileWriteEntry, WritesLongEntriesWhole) {
  HostItem item(std::string(3000000, 'x'));
  EXPECT_TRUE(file_.FileWriteEntry(item));
  EXPECT_TRUE(Text() == std::string(3000000, 'x') + "\r\n");
}

TEST_F(FileWriteEntry, TwoLogFilesMayAppendToTheSameFile) {
  clsVnLogFile other;
  ASSERT_TRUE(other.FileOpen(dir_.File("a.log")));
  HostItem first("first");
  HostItem second("second");
  EXPECT_TRUE(file_.FileWriteEntry(first));
  EXPECT_TRUE(other.FileWriteEntry(second));
  EXPECT_TRUE(file_.FileWriteEntry(first));
  EXPECT_EQ(Text(), "first\r\nsecond\r\nfirst\r\n");
}

TEST_F(FileWriteEntry, TakesSharedItems) {
  EXPECT_TRUE(file_.FileWriteEntry(std::make_shared<HostItem>("shared")));
  EXPECT_EQ(Text(), "shared\r\n");
}

TEST_F(FileWriteEntry, WithoutAnItemFails) {
  EXPECT_FALSE(file_.FileWriteEntry(std::shared_ptr<IVnLogItem>()));
  ExpectError(ErrorOf(file_), ZELErrorCodes::Err_Log_NoObject, true, "FileWriteEntry",
              "Schreiben der Daten nicht möglich!\r\nUrsache: Es wurde kein gültiges Objekt übergeben.");
  EXPECT_EQ(Text(), "");
}

TEST_F(FileWriteEntry, AMissingItemIsNoticedBeforeAMissingFile) {
  EXPECT_TRUE(file_.FileClose());
  EXPECT_FALSE(file_.FileWriteEntry(std::shared_ptr<IVnLogItem>()));
  EXPECT_EQ(ErrorOf(file_).ErrorNr(), 10011);
}

TEST_F(FileWriteEntry, WithoutAnOpenFileFails) {
  EXPECT_TRUE(file_.FileClose());
  HostItem item("entry");
  EXPECT_FALSE(file_.FileWriteEntry(item));
  ExpectError(ErrorOf(file_), ZELErrorCodes::Err_Log_FileNotOpen, true, "FileWriteEntry",
              "Schreiben der Daten nicht möglich!\r\nUrsache: Es ist keine Datei geöffnet.");
  EXPECT_EQ(item.asked, 0);
  EXPECT_EQ(Text(), "");
}

TEST_F(FileWriteEntry, AnErrorObjectWithoutAnErrorHasNoData) {
  clsVnError error;
  EXPECT_FALSE(file_.FileWriteEntry(error));
  ExpectError(ErrorOf(file_), ZELErrorCodes::Err_Log_NoObjData, true, "FileWriteEntry",
              "Schreiben der Daten nicht möglich!\r\nUrsache: Das Eintragsobjekt lieferte keine Daten.");
  EXPECT_EQ(Text(), "");
}

TEST_F(FileWriteEntry, AnEmptyEntryOfAHostHasNoData) {
  HostItem item("");
  EXPECT_FALSE(file_.FileWriteEntry(item));
  EXPECT_EQ(ErrorOf(file_).ErrorNr(), 10012);
  EXPECT_EQ(Text(), "");
}

TEST_F(FileWriteEntry, MessagesAreSkippedUntilTheyAreSwitchedOn) {
  clsVnLogItem message;
  message.SetMessage("Tagesabschluss");
  EXPECT_TRUE(file_.FileWriteEntry(message));
  ExpectClear(file_);
  EXPECT_EQ(Text(), "");
  file_.WriteEntries(true);
  EXPECT_TRUE(file_.FileWriteEntry(message));
  EXPECT_EQ(Text().substr(19),
            "  ->  Allg. Meldung:\r\n"
            "                         --------------\r\n"
            "                         Quelle .............: \r\n"
            "                         Funktion ...........: ./.\r\n"
            "                         Instanz ............: \r\n"
            "                         Meldung ............: Tagesabschluss\r\n"
            "\r\n"
            "\r\n"
            "\r\n");
}

TEST_F(FileWriteEntry, ErrorsAreSkippedWhenTheyAreSwitchedOff) {
  file_.WriteErrors(false);
  file_.WriteEntries(true);
  clsVnError error;
  error.SetError(9204, "x");
  EXPECT_TRUE(file_.FileWriteEntry(error));
  ExpectClear(file_);
  EXPECT_EQ(Text(), "");
  clsVnError empty;
  EXPECT_TRUE(file_.FileWriteEntry(empty));
}

TEST_F(FileWriteEntry, SkippingNeedsNoOpenFile) {
  EXPECT_TRUE(file_.FileClose());
  clsVnLogItem message;
  message.SetMessage("x");
  EXPECT_TRUE(file_.FileWriteEntry(message));
  ExpectClear(file_);
  clsVnError error;
  error.SetError(9204, "x");
  EXPECT_FALSE(file_.FileWriteEntry(error));
  EXPECT_EQ(ErrorOf(file_).ErrorNr(), 10010);
}

TEST_F(FileWriteEntry, OtherItemsAreWrittenWhenOneSwitchIsOn) {
  HostItem item("entry");
  EXPECT_TRUE(file_.FileWriteEntry(item));
  file_.WriteErrors(false);
  file_.WriteEntries(true);
  EXPECT_TRUE(file_.FileWriteEntry(item));
  EXPECT_EQ(Text(), "entry\r\nentry\r\n");
}

TEST_F(FileWriteEntry, WithBothSwitchesOffNothingIsWrittenOrChecked) {
  file_.WriteErrors(false);
  HostItem item("entry");
  EXPECT_TRUE(file_.FileWriteEntry(item));
  EXPECT_TRUE(file_.FileWriteEntry(std::shared_ptr<IVnLogItem>()));
  EXPECT_TRUE(file_.FileClose());
  EXPECT_TRUE(file_.FileWriteEntry(item));
  ExpectClear(file_);
  EXPECT_EQ(item.asked, 0);
  EXPECT_EQ(Text(), "");
}

TEST_F(FileWriteEntry, ASuccessClearsTheErrorBefore) {
  EXPECT_FALSE(file_.FileWriteEntry(std::shared_ptr<IVnLogItem>()));
  HostItem item("entry");
  EXPECT_TRUE(file_.FileWriteEntry(item));
  ExpectClear(file_);
}

TEST_F(FileWriteEntry, AnItemThatFailsIsReportedAsAFault) {
  FaultyItem item;
  EXPECT_FALSE(file_.FileWriteEntry(item));
  test::ExpectFault(ErrorOf(file_), 5, "FileWriteEntry");
  EXPECT_EQ(Text(), "");
}

TEST_F(FileWriteEntry, ItsOwnFailuresAreNeverWritten) {
  clsVnError error;
  EXPECT_FALSE(file_.FileWriteEntry(error));
  EXPECT_FALSE(file_.FileWriteEntry(std::shared_ptr<IVnLogItem>()));
  EXPECT_FALSE(file_.FileOpen(dir_.File("b.log")));
  EXPECT_EQ(Text(), "");
}

TEST_F(FileWriteEntry, ItWritesItsOwnErrorObjectWhenAsked) {
  EXPECT_FALSE(file_.FileOpen(dir_.File("b.log")));
  // Writing clears its own error first, so that the entry is empty by then.
  EXPECT_FALSE(file_.FileWriteEntry(ErrorOf(file_)));
  EXPECT_EQ(ErrorOf(file_).ErrorNr(), 10012);
}

/// The text with every run of "x" shown as one.
std::string Unrepeated(std::string text) {
  text.erase(std::unique(text.begin(), text.end(), [](char a, char b) { return a == 'x' && b == 'x'; }),
             text.end());
  return text;
}

TEST(FullDisk, AnEntryThatCannotBeWrittenFails) {
  if (!std::filesystem::exists("/dev/full")) {
    GTEST_SKIP() << "no full device here";
  }
  clsVnLogFile file;
  ASSERT_TRUE(file.FileOpen("/dev/full"));
  for (int round = 0; round < 2; ++round) {
    HostItem item("entry");
    EXPECT_FALSE(file.FileWriteEntry(item));
    EXPECT_TRUE(ErrorOf(file).HasError());
    EXPECT_EQ(ErrorOf(file).ErrorFunction(), "FileWriteEntry");
  }
  HostItem longItem(std::string(100000, 'x'));
  EXPECT_FALSE(file.FileWriteEntry(longItem));
  EXPECT_TRUE(file.FileClose());
  EXPECT_FALSE(file.FileIsOpen());
}

TEST(FullDisk, TheFileIsUsableElsewhereAfterwards) {
  if (!std::filesystem::exists("/dev/full")) {
    GTEST_SKIP() << "no full device here";
  }
  const TempDir dir;
  clsVnLogFile file;
  ASSERT_TRUE(file.FileOpen("/dev/full"));
  HostItem lost("lost");
  EXPECT_FALSE(file.FileWriteEntry(lost));
  EXPECT_TRUE(file.FileClose());
  EXPECT_TRUE(file.FileOpen(dir.File("a.log")));
  HostItem kept("kept");
  EXPECT_TRUE(file.FileWriteEntry(kept));
  EXPECT_EQ(ReadFile(dir.File("a.log")), "kept\r\n");
}

/// No file may grow beyond a size until the end of the scope, as on a disk that is nearly full.
class SizeLimit {
 public:
  explicit SizeLimit(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    set_ = setrlimit(RLIMIT_FSIZE, &limit) == 0;
  }
  ~SizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, signal_);
  }
  SizeLimit(const SizeLimit&) = delete;
  SizeLimit& operator=(const SizeLimit&) = delete;

  bool Set() const { return set_; }

 private:
  rlimit before_{};
  void (*signal_)(int);
  bool set_ = false;
};

TEST(FullDisk, AnEntryWrittenInPartFailsAndTheNextOneFollowsWhenThereIsRoom) {
  const TempDir dir;
  clsVnLogFile file;
  ASSERT_TRUE(file.FileOpen(dir.File("a.log")));
  HostItem first("first");
  HostItem cut(std::string(20000, 'x'));
  HostItem none("none");
  bool written[3];
  {
    const SizeLimit limit(10000);
    ASSERT_TRUE(limit.Set());
    written[0] = file.FileWriteEntry(first);
    written[1] = file.FileWriteEntry(cut);
    written[2] = file.FileWriteEntry(none);
  }
  EXPECT_TRUE(written[0]);
  EXPECT_FALSE(written[1]);
  EXPECT_FALSE(written[2]);
  HostItem next("next");
  EXPECT_TRUE(file.FileWriteEntry(next));
  ExpectClear(file);
  EXPECT_EQ(Unrepeated(ReadFile(dir.File("a.log"))), "first\r\nxnext\r\n");
}

TEST(FullDisk, WhereverItEndsAnEntryIsWholeOrFails) {
  HostItem first("the first entry");
  HostItem second("the second entry");
  const std::string whole = "the first entry\r\nthe second entry\r\n";
  const std::size_t firstSize = std::string("the first entry\r\n").size();
  for (rlim_t room = 0; room <= whole.size(); ++room) {
    const TempDir dir;
    clsVnLogFile file;
    ASSERT_TRUE(file.FileOpen(dir.File("a.log")));
    bool written[2];
    {
      const SizeLimit limit(room);
      ASSERT_TRUE(limit.Set());
      written[0] = file.FileWriteEntry(first);
      written[1] = file.FileWriteEntry(second);
    }
    EXPECT_EQ(written[0], room >= firstSize) << room;
    EXPECT_EQ(written[1], room >= whole.size()) << room;
    EXPECT_EQ(ReadFile(dir.File("a.log")).substr(0, firstSize),
              whole.substr(0, std::min<rlim_t>(room, firstSize)));
  }
}

/// A failing operation with such a log file answers as it does without one.
void ExpectUndisturbed(const std::shared_ptr<clsVnLogFile>& log) {
  clsHelper01 helper;
  helper.LogHandler(log);
  ByteArray result = test::FromHex("AA");
  EXPECT_FALSE(helper.FromBase64String("QQ", result));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvLength, true, "FromBase64String",
              "Die Länge der Base64-Zeichenfolge ist ungültig!");
  EXPECT_EQ(test::ToHex(result), "AA");
  EXPECT_TRUE(helper.FromBase64String("QQ==", result));
  EXPECT_FALSE(helper.HasError());
  EXPECT_EQ(test::ToHex(result), "41");
}

TEST(LoggingFailures, NeverDisturbTheOperationThatWantedToLog) {
  const TempDir dir;
  const auto closed = std::make_shared<clsVnLogFile>();
  ExpectUndisturbed(closed);
  EXPECT_EQ(ErrorOf(*closed).ErrorNr(), 10010);

  const auto refused = std::make_shared<clsVnLogFile>();
  EXPECT_FALSE(refused->FileOpen(dir.File("missing/a.log")));
  ExpectUndisturbed(refused);

  if (std::filesystem::exists("/dev/full")) {
    const auto full = std::make_shared<clsVnLogFile>();
    ASSERT_TRUE(full->FileOpen("/dev/full"));
    ExpectUndisturbed(full);
    EXPECT_TRUE(ErrorOf(*full).HasError());
  }
}

/// Closes the descriptor under which this process has a file open, as a host does that closes one too many.
bool CloseDescriptorOf(const std::string& name) {
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (std::filesystem::read_symlink(entry.path(), gone) == name) {
      return close(std::stoi(entry.path().filename().string())) == 0;
    }
  }
  return false;
}

TEST(LoggingFailures, AClosedDescriptorIsOneAndTheFileCanBeOpenedAgain) {
  const TempDir dir;
  const std::string name = std::filesystem::canonical(dir.Path()).string() + "/a.log";
  const auto log = std::make_shared<clsVnLogFile>();
  ASSERT_TRUE(log->FileOpen(name));
  if (!CloseDescriptorOf(name)) {
    GTEST_SKIP() << "no list of descriptors here";
  }
  ExpectUndisturbed(log);
  EXPECT_TRUE(ErrorOf(*log).HasError());
  HostItem item("entry");
  EXPECT_FALSE(log->FileWriteEntry(item));
  EXPECT_TRUE(log->FileClose());
  EXPECT_TRUE(log->FileOpen());
  EXPECT_TRUE(log->FileWriteEntry(item));
  EXPECT_EQ(ReadFile(name), "entry\r\n");
}

}  // namespace
