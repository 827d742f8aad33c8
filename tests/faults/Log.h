#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Path.h"
#include "VnZEL10cmn/errors/clsVnLogFile.h"
#include "VnZEL10cmn/errors/internal/LogFileAccess.h"
#include "tests/support/TempFile.h"

namespace test {

/// The first steps of a path whose world has a `log`: it is made, and opened under that name.
template <class World>
Path<World> OpenLog(const std::string& name) {
  return {
      Step<World>{.operation = "clsVnLogFile",
                  .run =
                      [](World& world) {
                        world.log = std::make_shared<VnZEL10cmn::clsVnLogFile>();
                        return true;
                      }},
      Step<World>{.operation = "FileOpen",
                  .run = [name](World& world) { return world.log->FileOpen(name); },
                  .object = [](World& world) { return &VnZEL10cmn::LogFileAccess::Object(*world.log); },
                  .result =
                      [](World& world) {
                        return world.log->FileName() + (world.log->FileIsOpen() ? " is open" : " is closed");
                      },
                  .kept =
                      [](World& world) {
                        return world.log->FileName() + (world.log->FileIsOpen() ? " is open" : " is closed");
                      }},
  };
}

/// Whether a log holds entries, and nothing else.
inline void ExpectWholeEntries(const std::string& name) {
  const std::string text = ReadFile(name);
  EXPECT_FALSE(text.empty());
  static constexpr std::string_view ending = "\r\n\r\n\r\n\r\n";
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = text.find(ending, start);
    ASSERT_NE(end, std::string::npos) << text.substr(start);
    const std::string entry = text.substr(start, end - start);
    for (const std::string_view part : {"  ->  ", "\r\n                         -------", "Meldung ....."}) {
      const std::size_t found = entry.find(part);
      ASSERT_NE(found, std::string::npos) << entry;
      ASSERT_EQ(entry.find(part, found + part.size()), std::string::npos) << entry;
    }
    start = end + ending.size();
  }
}

/// As `FailEachAllocation`, of a path whose world has a log, which ends with whole entries.
template <class World>
void FailEachAllocationWithLog(const Path<World>& path, const std::vector<std::size_t>& counts) {
  const TempDir folder;
  const std::string name = folder.File("a log with a name of some length.log");
  FailEachAllocation(Joined({OpenLog<World>(name), path}), counts);
  ExpectWholeEntries(name);
}

}  // namespace test
