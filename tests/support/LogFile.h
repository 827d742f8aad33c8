#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/errors/clsVnLogFile.h"
#include "tests/support/TempFile.h"

namespace test {

/// An open log file in a temporary folder, for attaching as `LogHandler`:
///
///     test::TestLog log;
///     object.LogHandler(log.Handler());
///     ... the failing call ...
///     EXPECT_EQ(log.Functions(), (std::vector<std::string>{"ItsName"}));
class TestLog {
 public:
  TestLog() : handler_(std::make_shared<VnZEL10cmn::clsVnLogFile>()) {
    EXPECT_TRUE(handler_->FileOpen(dir_.File("test.log")));
  }

  const std::shared_ptr<VnZEL10cmn::clsVnLogFile>& Handler() const { return handler_; }

  /// All bytes written so far (code page 1252, CR LF).
  std::string Text() const { return ReadFile(dir_.File("test.log")); }

  /// The entries written so far, each from its time stamp to its last line that isn't empty.
  std::vector<std::string> Entries() const {
    static constexpr std::string_view separator = "\r\n\r\n\r\n\r\n";
    std::vector<std::string> entries;
    const std::string text = Text();
    std::size_t start = 0;
    while (start < text.size()) {
      std::size_t end = text.find(separator, start);
      if (end == std::string::npos) {
        end = text.size();
      }
      entries.push_back(text.substr(start, end - start));
      start = end + separator.size();
    }
    return entries;
  }

  /// Number of entries written so far.
  std::size_t Count() const { return Entries().size(); }

  /// The function names of the entries ("Funktion" lines), in order.
  std::vector<std::string> Functions() const { return Values("Funktion ...........: "); }

  /// The error numbers of the entries in decimal, in order.
  std::vector<std::string> Numbers() const {
    std::vector<std::string> numbers = Values("Nummer .............: ");
    for (std::string& number : numbers) {
      number.resize(number.find(' '));
    }
    return numbers;
  }

 private:
  std::vector<std::string> Values(std::string_view label) const {
    std::vector<std::string> values;
    for (const std::string& entry : Entries()) {
      const std::size_t found = entry.find(label);
      if (found == std::string::npos) {
        values.emplace_back("?");
        continue;
      }
      const std::size_t start = found + label.size();
      values.push_back(entry.substr(start, entry.find("\r\n", start) - start));
    }
    return values;
  }

  TempDir dir_;
  std::shared_ptr<VnZEL10cmn::clsVnLogFile> handler_;
};

}  // namespace test
