// Errors, messages and the log file while memory runs out.

#include <memory>
#include <optional>

#include "Log.h"
#include "Path.h"
#include "VnZEL10cmn/VnZEL10cmn.h"

namespace {

using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsVnLogFile;
using VnZEL10cmn::clsVnLogItem;
using VnZEL10cmn::LogFileAccess;
using VnZEL10cmn::VnObject;

struct World {
  std::shared_ptr<clsVnLogFile> log;
  std::optional<clsVnError> error;
  std::optional<clsVnLogItem> message;
  std::string text;
};

using Step = test::Step<World>;
using Path = test::Path<World>;
constexpr auto Made = test::Made<World>;

std::string ShownLog(World& world) {
  return world.log->FileName() + (world.log->FileIsOpen() ? " is open" : " is closed");
}

Step OnLog(std::string_view operation, std::function<bool(World&)> run) {
  return {.operation = operation,
          .run = std::move(run),
          .object = [](World& world) { return &LogFileAccess::Object(*world.log); },
          .result = ShownLog,
          .kept = ShownLog};
}

std::string FileText(const std::string& name) {
  return std::filesystem::exists(name) ? test::ReadFile(name) : "";
}

/// An entry that can't be written leaves the file as it was.
Step Write(const std::string& name, std::function<bool(World&)> run) {
  Step step = OnLog("FileWriteEntry", std::move(run));
  step.kept = [=](World&) { return FileText(name); };
  return step;
}

TEST(LogFileWithoutMemory, WritesAnEntryWholeOrNotAtAll) {
  const test::TempDir folder;
  const std::string name = folder.File("a log with a name of some length.log");
  const std::string other = folder.File("another log with a name of some length.log");
  const std::string nowhere = folder.File("a folder that does not exist/a log.log");
  const Path path = {
      Made("clsVnLogFile", [](World& world) { world.log = std::make_shared<clsVnLogFile>(); }),
      Made("clsVnError", [](World& world) { world.error.emplace(); }),
      Made("clsVnLogItem", [](World& world) { world.message.emplace(); }),
      Step{.operation = "SetError",
           .run =
               [](World& world) {
                 return world.error->SetError(9204, "the first line of a message\r\nand the second one of it",
                                              true, "a function with some name", "a source with some name",
                                              "an instance with some name");
               },
           .result =
               [](World& world) {
                 return world.error->ErrorMsg() + world.error->ErrorFunction() + world.error->ErrorSource();
               }},
      Step{.operation = "SetMessage",
           .run =
               [](World& world) {
                 return world.message->SetMessage("the first line of a message\nand the second one of it",
                                                  "a function with some name", "a source with some name",
                                                  "an instance with some name");
               },
           .result = [](World& world) { return world.message->Message() + world.message->Source(); }},
      OnLog("FileOpen", [](World& world) { return world.log->FileOpen(); }),
      OnLog("FileOpen", [=](World& world) { return world.log->FileOpen(nowhere); }),
      Write(name, [](World& world) { return world.log->FileWriteEntry(*world.error); }),
      OnLog("FileOpen", [=](World& world) { return world.log->FileOpen(name, true); }),
      OnLog("FileOpen", [=](World& world) { return world.log->FileOpen(other); }),
      Write(name, [](World& world) { return world.log->FileWriteEntry(*world.error); }),
      Write(name, [](World& world) { return world.log->FileWriteEntry(nullptr); }),
      Write(name, [](World& world) { return world.log->FileWriteEntry(*world.message); }),
      Made("WriteEntries", [](World& world) { world.log->WriteEntries(true); }),
      Write(name, [](World& world) { return world.log->FileWriteEntry(*world.message); }),
      OnLog("FileClose", [](World& world) { return world.log->FileClose(); }),
      OnLog("FileOpen", [](World& world) { return world.log->FileOpen(); }),
      Write(name, [](World& world) { return world.log->FileWriteEntry(*world.error); }),
  };
  test::FailEachAllocation(path);
  test::ExpectWholeEntries(name);
}

TEST(MessageBoxWithoutMemory, SaysThatTheMessageCannotBeShownOrFails) {
  clsVnError error;
  error.SetError(9204, "the first line of a message\r\nand the second one of it, which is longer");
  std::string whole;
  std::string shown;
  shown.reserve(1000);
  error.MsgBox([&shown](std::string_view text, std::int32_t, std::string_view) {
    shown.assign(text);
    return 1;
  });
  EXPECT_EQ(error.ShowMsgBox(), 1);
  whole = shown;
  const std::string without =
      whole.substr(0, whole.find("Meldung: \t\t")) + "Meldung: \t\t!!FEHLER IM FEHLEROBJEKT!!\r\n";
  int raised = 0;
  int unsplit = 0;
  std::size_t first = 1;
  for (bool hasFailed = true; hasFailed; ++first) {
    shown.clear();
    std::int32_t button = 0;
    test::Allocations::Fail(first, test::kOne);
    try {
      const test::Allocations::Counted counted;
      button = error.ShowMsgBox();
    } catch (const std::bad_alloc&) {
      ++raised;
    }
    hasFailed = test::Allocations::HaveFailed();
    test::Allocations::Recover();
    EXPECT_EQ(button, shown.empty() ? 0 : 1);
    unsplit += shown == without ? 1 : 0;
    EXPECT_TRUE(shown.empty() || shown == without || shown == whole) << shown;
  }
  EXPECT_EQ(shown, whole);
  EXPECT_GT(raised, 0);
  EXPECT_GT(unsplit, 0);
}

}  // namespace
