// Message boxes and log entries of a host's own that do anything while they are shown or written.

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "VnZEL10cmn/errors/IVnLogItem.h"
#include "tests/hosts/Support.h"
#include "tests/support/TempFile.h"

namespace {

using test::clsVnError;
using test::clsVnLogFile;

TEST(MessageBox, ThatTakesItselfOffLivesUntilItReturns) {
  clsVnError error;
  error.SetError(4711, "Waage klemmt");
  auto own = std::make_shared<std::int32_t>(6);
  const std::weak_ptr<std::int32_t> watched = own;
  error.MsgBox([&error, own = std::move(own)](std::string_view, std::int32_t, std::string_view) {
    const std::weak_ptr<std::int32_t> here = own;
    error.MsgBox({});
    EXPECT_FALSE(here.expired()) << "it is running";
    return here.expired() ? 0 : *here.lock();
  });
  EXPECT_EQ(error.ShowMsgBox(), 6);
}

TEST(MessageBox, ThatPutsAnotherInItsPlaceLivesUntilItReturns) {
  clsVnError error;
  error.SetError(4711, "Waage klemmt");
  {
    auto own = std::make_shared<std::int32_t>(6);
    error.MsgBox([&error, own = std::move(own)](std::string_view, std::int32_t, std::string_view) {
      const std::weak_ptr<std::int32_t> here = own;
      error.MsgBox([](std::string_view, std::int32_t, std::string_view) { return 7; });
      EXPECT_FALSE(here.expired()) << "it is running";
      return here.expired() ? 0 : *here.lock();
    });
  }
  EXPECT_EQ(error.ShowMsgBox(), 6);
  EXPECT_EQ(error.ShowMsgBox(), 7);
}

TEST(MessageBox, ThatChangesTheErrorKeepsItsTextAndTitle) {
  clsVnError error;
  error.SetError(4711, "Waage klemmt", true, "Wiegen", "Kasse", "INSTANZ");
  error.MsgBox([&error](std::string_view text, std::int32_t buttons, std::string_view title) {
    error.Clear();
    error.SetError(1, std::string(5000, 'x'), false, std::string(5000, 'y'), std::string(5000, 'z'));
    EXPECT_EQ(text,
              "Nummer: \t\t4711\r\nBenutzerdef.: \tJa\r\nQuelle: \t\tKasse\r\nFunktion: \t\tWiegen\r\n"
              "Instanz: \t\tINSTANZ\r\n\r\nMeldung: \t\tWaage klemmt\r\n");
    EXPECT_EQ(title, "Verarbeitungsfehler [4711]");
    return buttons;
  });
  EXPECT_EQ(error.ShowMsgBox(36), 36);
  EXPECT_EQ(error.ErrorNr(), 1);
}

TEST(MessageBox, ThatShowsItselfAgainEnds) {
  clsVnError error;
  error.SetError(4711, "Waage klemmt");
  int shown = 0;
  error.MsgBox([&](std::string_view, std::int32_t buttons, std::string_view) {
    return ++shown < 5 ? error.ShowMsgBox(buttons + 1) : buttons;
  });
  EXPECT_EQ(error.ShowMsgBox(10), 14);
}

TEST(MessageBox, ThatThrowsCanBeShownAgain) {
  clsVnError error;
  error.SetError(4711, "Waage klemmt");
  bool throws = true;
  error.MsgBox([&throws](std::string_view, std::int32_t buttons, std::string_view) {
    if (throws) {
      throw std::runtime_error("no screen");
    }
    return buttons;
  });
  EXPECT_ANY_THROW(error.ShowMsgBox(2));
  throws = false;
  EXPECT_EQ(error.ShowMsgBox(2), 2);
  EXPECT_EQ(error.ErrorNr(), 4711);
}

// Log entries

/// An entry whose text is made by a function.
class ScriptedEntry : public VnZEL10cmn::IVnLogItem {
 public:
  explicit ScriptedEntry(std::function<std::string()> entry) : entry_(std::move(entry)) {}
  std::string GetLogEntry() override { return entry_(); }

 private:
  std::function<std::string()> entry_;
};

TEST(LogEntry, ThatThrowsIsNotWritten) {
  test::TestLog log;
  ScriptedEntry entry([]() -> std::string { throw 42; });
  EXPECT_FALSE(log.Handler()->FileWriteEntry(entry));
  EXPECT_EQ(log.Text(), "");
}

TEST(LogEntry, ThatClosesTheFileIsNotWritten) {
  test::TestLog log;
  clsVnLogFile& file = *log.Handler();
  ScriptedEntry entry([&file] {
    EXPECT_TRUE(file.FileClose());
    return std::string("zu spät");
  });
  EXPECT_FALSE(file.FileWriteEntry(entry));
  EXPECT_EQ(log.Text(), "");
  ScriptedEntry later([] { return std::string("wieder da"); });
  EXPECT_TRUE(file.FileOpen());
  EXPECT_TRUE(file.FileWriteEntry(later));
  EXPECT_EQ(log.Text(), "wieder da\r\n");
}

TEST(LogEntry, ThatWritesAnotherIsWrittenWholeBehindIt) {
  test::TestLog log;
  clsVnLogFile& file = *log.Handler();
  ScriptedEntry inner([] { return std::string("innen"); });
  ScriptedEntry entry([&] {
    EXPECT_TRUE(file.FileWriteEntry(inner));
    return std::string("außen");
  });
  EXPECT_TRUE(file.FileWriteEntry(entry));
  EXPECT_EQ(log.Text(),
            "innen\r\nau\xDF"
            "en\r\n");
}

TEST(LogEntry, ThatLetsTheLastPointerToItselfGoLivesUntilItReturns) {
  test::TestLog log;
  std::shared_ptr<VnZEL10cmn::IVnLogItem> entry;
  auto own = std::make_shared<std::string>("eigener Text");
  const std::weak_ptr<std::string> watched = own;
  entry = std::make_shared<ScriptedEntry>([&entry, own = std::move(own)] {
    const std::weak_ptr<std::string> here = own;
    entry.reset();
    EXPECT_FALSE(here.expired()) << "it is running";
    return here.expired() ? std::string() : *here.lock();
  });
  EXPECT_TRUE(log.Handler()->FileWriteEntry(entry));
  EXPECT_EQ(log.Text(), "eigener Text\r\n");
}

TEST(LogEntry, ThatLetsTheLogGoKeepsItUntilItReturns) {
  auto file = std::make_shared<clsVnLogFile>();
  const test::TempDir folder;
  ASSERT_TRUE(file->FileOpen(folder.File("a.log")));
  const std::weak_ptr<clsVnLogFile> watched = file;
  ScriptedEntry entry([&file, &watched] {
    file.reset();
    EXPECT_FALSE(watched.expired()) << "it is running";
    return std::string("letzte Worte");
  });
  clsVnLogFile& running = *file;
  EXPECT_TRUE(running.FileWriteEntry(entry));
  EXPECT_TRUE(watched.expired());
  EXPECT_EQ(test::ReadFile(folder.File("a.log")), "letzte Worte\r\n");
}

}  // namespace
