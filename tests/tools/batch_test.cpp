// One document never ends a batch: where memory or threads run out, every other document has its answer, in order, and
// the one that can't have another one is named.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "Program.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

constexpr std::size_t kMebibyte = std::size_t{1024} * 1024;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

class Batch : public testing::Test {
 protected:
  static constexpr int kDocuments = 301;
  static constexpr int kLarge = 150;  ///< the number, from 0, of the one that there is no memory for

  void SetUp() override {
    if (test::kIsInstrumented) GTEST_SKIP() << "the build's own checks take memory";
  }

  Batch() {
    document_ = desk_.SignedDocument();
    desk_.WriteFile("till.pem", desk_.Zel({"key", "--device", "till.db"}).out);
    for (int i = 0; i < kDocuments; ++i) {
      names_.push_back("d" + std::to_string(1000 + i));
      desk_.WriteFile(names_.back(), document_);
    }
  }

  /// A document of so many mebibytes.
  void MakeLarge(const std::string& name, std::size_t mebibytes) const {
    std::string items;
    const std::string item =
        "\xA0\x01"
        "1\xA2\x01"
        "a\xB1\x01\x1C";
    while (items.size() < mebibytes * kMebibyte * 3 / 4) {
      items += item;
    }
    desk_.WriteFile(name, test::WithElement(document_, "itemListEncoded", test::ToBase64(items)));
  }

  test::Outcome Run(const std::vector<std::string>& command, const std::string& jobs,
                    std::size_t addressSpace, const std::string& input = "") const {
    std::vector<std::string> arguments = command;
    if (input.empty()) arguments.insert(arguments.end(), names_.begin(), names_.end());
    arguments.insert(arguments.end(), {"--jobs", jobs});
    test::Setting setting;
    setting.input = input;
    setting.inChild = [addressSpace] {
      alarm(60);
      if (addressSpace == 0) return;
      const rlimit limit{addressSpace, addressSpace};
      setrlimit(RLIMIT_AS, &limit);
    };
    return desk_.Zel(arguments, setting);
  }

  /// The smallest address space, in mebibytes, in which the small documents are answered.
  std::size_t LeastAddressSpace(const std::vector<std::string>& command, const std::string& jobs) const {
    const test::Outcome usual = Run(command, jobs, 0);
    std::size_t tooLittle = 0;
    std::size_t enough = 512;
    while (enough - tooLittle > 1) {
      const std::size_t middle = (tooLittle + enough) / 2;
      const test::Outcome outcome = Run(command, jobs, middle * kMebibyte);
      (outcome.out == usual.out && outcome.err == usual.err ? enough : tooLittle) = middle;
    }
    return enough;
  }

  test::Desk desk_;
  std::string document_;
  std::vector<std::string> names_;
};

struct Command {
  const char* name;
  std::vector<std::string> arguments;
};

class BatchOf : public Batch, public testing::WithParamInterface<std::tuple<Command, std::string>> {};

TEST_P(BatchOf, ManyDocumentsNamesTheOneThereIsNoMemoryFor) {
  const auto& [command, jobs] = GetParam();
  const std::size_t least = LeastAddressSpace(command.arguments, jobs);
  const test::Outcome usual = Run(command.arguments, jobs, 0);
  MakeLarge(names_[kLarge], 20);
  const test::Outcome outcome = Run(command.arguments, jobs, (least + 8) * kMebibyte);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err, "zel: '" + names_[kLarge] +
                             "': there is not enough memory\nzel: 301 documents, 1 can't be read\n");
  // All the others have the very answers that they usually have, a line each.
  std::vector<std::string> expected = LinesOf(usual.out);
  ASSERT_EQ(expected.size(), static_cast<std::size_t>(kDocuments));
  expected.erase(expected.begin() + kLarge);
  EXPECT_EQ(LinesOf(outcome.out), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Jobs, BatchOf,
    testing::Combine(testing::Values(Command{"Verify", {"verify", "--key", "till.pem"}},
                                     Command{"VerifyJson", {"verify", "--json", "--key", "till.pem"}},
                                     Command{"ReceiptJson", {"receipt", "--json"}}),
                     testing::Values("1", "4")),
    [](const testing::TestParamInfo<std::tuple<Command, std::string>>& info) {
      return std::string(std::get<0>(info.param).name) + "With" + std::get<1>(info.param);
    });

TEST_F(Batch, OfLinesAnswersTheLineThereIsNoMemoryFor) {
  std::string lines;
  for (int i = 0; i < kDocuments; ++i) {
    lines += json{{"id", i}, {"file", names_[static_cast<std::size_t>(i)]}}.dump() + "\n";
  }
  const std::vector<std::string> verify = {"verify", "--lines", "--key", "till.pem"};
  const std::size_t least = LeastAddressSpace({"verify", "--key", "till.pem"}, "4");
  MakeLarge(names_[kLarge], 20);
  const test::Outcome outcome = Run(verify, "4", (least + 8) * kMebibyte, lines);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  const std::vector<std::string> answers = LinesOf(outcome.out);
  ASSERT_EQ(answers.size(), static_cast<std::size_t>(kDocuments));
  for (int i = 0; i < kDocuments; ++i) {
    const json answer = json::parse(answers[static_cast<std::size_t>(i)]);
    EXPECT_EQ(answer.at("id"), i);
    EXPECT_EQ(answer.at("file"), names_[static_cast<std::size_t>(i)]);
    if (i == kLarge) {
      EXPECT_EQ(answer.at("error"), "there is not enough memory");
    } else {
      EXPECT_EQ(answer.at("ok"), true);
    }
  }
}

/// A long line that there is no memory for is answered as well, and so are those behind it.
TEST_F(Batch, OfLinesAnswersALineThatIsTooLongForTheMemory) {
  const std::string line = "{\"id\": 1, \"document\": \"A0 01 32\"}\n";
  const std::string longLine = "{\"id\": 2, \"document\": \"" + std::string(40 * kMebibyte, 'A') + "\"}\n";
  const std::size_t least = LeastAddressSpace({"verify", "--key", "till.pem"}, "4");
  const test::Outcome outcome =
      Run({"dump", "--lines"}, "4", (least + 16) * kMebibyte, line + longLine + line + line);
  const std::vector<std::string> answers = LinesOf(outcome.out);
  ASSERT_EQ(answers.size(), 4U);
  EXPECT_THAT(answers[0], HasSubstr("\"id\":1,\"form\":\"hexadecimal\""));
  EXPECT_EQ(answers[1], "{\"line\":2,\"error\":\"there is not enough memory\"}");
  EXPECT_EQ(answers[2], answers[0]);
  EXPECT_EQ(answers[3], answers[0]);
}

/// Two large documents fit one after the other, and not beside each other.
TEST_F(Batch, DocumentsThatRunOutOfMemoryTogetherAreReadAlone) {
  const std::vector<std::string> verify = {"verify", "--key", "till.pem"};
  const std::size_t least = LeastAddressSpace(verify, "4");
  for (const int large : {10, 11, 12, 13, 200, 201}) {
    MakeLarge(names_[static_cast<std::size_t>(large)], 12);
  }
  const test::Outcome outcome = Run(verify, "4", (least + 40) * kMebibyte);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, testing::Not(HasSubstr("memory")));
  EXPECT_EQ(LinesOf(outcome.err).back(), "zel: 301 documents, 6 not right");
}

/// The answer to a large document is many times the document; the others don't wait in memory.
TEST_F(Batch, AnswersAreNotHeldHoweverLong) {
  const std::vector<std::string> dump = {"dump"};
  const std::size_t least = LeastAddressSpace(dump, "4");
  for (const int large : {10, 11, 12, 13}) {
    MakeLarge(names_[static_cast<std::size_t>(large)], 3);
  }
  const test::Outcome usual = Run(dump, "4", 0);
  ASSERT_GT(usual.out.size(), 100 * kMebibyte);
  const test::Outcome outcome = Run(dump, "4", (least + 4 * 4 + 24) * kMebibyte);
  EXPECT_EQ(outcome.status, usual.status);
  EXPECT_EQ(outcome.err, usual.err);
  EXPECT_TRUE(outcome.out == usual.out);
}

class BatchWithThreads : public Batch, public testing::WithParamInterface<std::string> {};

TEST_P(BatchWithThreads, OfWhichOnlySomeCanBeMadeIsRead) {
  std::vector<std::string> arguments = {"verify", "--key", "till.pem", "--jobs", "8"};
  arguments.insert(arguments.end(), names_.begin(), names_.end());
  const test::Outcome usual = desk_.Zel(arguments);
  test::Setting setting;
  setting.inChild = [] {
    alarm(60);
    setenv("LD_PRELOAD", FAULTY_SYSTEM, 1);
    setenv("FAULTY_THREADS", GetParam().c_str(), 1);
  };
  const test::Outcome outcome = desk_.Zel(arguments, setting);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, usual.out);
  EXPECT_EQ(outcome.err, "zel: 301 documents, all right\n");
}

INSTANTIATE_TEST_SUITE_P(Threads, BatchWithThreads, testing::Values("0", "1", "3"));

}  // namespace
