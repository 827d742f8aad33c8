// Many documents at once: by name, by a list of names, and one per line of JSON.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "Program.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

class Many : public testing::Test {
 protected:
  static constexpr int kDocuments = 40;

  Many() {
    const std::string document = desk_.SignedDocument();
    desk_.WriteFile("till.pem", desk_.Zel({"key", "--device", "till.db"}).out);
    const std::string wrong =
        test::WithBytes(document, "transactionRequest", [](std::string& bytes) { bytes.back() ^= 1; });
    for (int i = 0; i < kDocuments; ++i) {
      names_.push_back("d" + std::to_string(100 + i) + ".xml");
      desk_.WriteFile(names_.back(), document);
    }
    desk_.WriteFile("wrong.xml", wrong);
  }

  /// The program with a command and many names behind it.
  test::Outcome Run(std::vector<std::string> arguments, const std::vector<std::string>& names) const {
    arguments.insert(arguments.end(), names.begin(), names.end());
    return desk_.Zel(arguments);
  }

  test::Outcome Lines(const std::string& command, const std::string& lines,
                      std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {command, "--lines"});
    if (command == "verify") more.insert(more.end(), {"--key", "till.pem"});
    return desk_.Zel(more, {.input = lines});
  }

  static std::string Right(const std::string& name) {
    return name + ": all is right, booking 1 of taxpayer SOFTWARE-DEVICE-TEST, device 1\n";
  }

  test::Desk desk_;
  std::vector<std::string> names_;
};

TEST_F(Many, AnswersComeInTheOrderOfTheFilesWhateverTheNumberOfThreads) {
  std::string expected;
  for (const std::string& name : names_) {
    expected += Right(name);
  }
  for (const std::string jobs : {"1", "2", "7", "256"}) {
    const test::Outcome outcome = Run({"verify", "--key", "till.pem", "--jobs", jobs}, names_);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, expected) << jobs;
    EXPECT_EQ(outcome.err, "zel: 40 documents, all right\n");
  }
}

TEST_F(Many, EachFaultIsOneLineAndTheWorstGivesTheStatus) {
  const test::Outcome wrong = Run({"verify", "--key", "till.pem"}, {"d100.xml", "wrong.xml", "d101.xml"});
  EXPECT_EQ(wrong.status, 1);
  EXPECT_EQ(wrong.out, Right("d100.xml") + Right("d101.xml"));
  EXPECT_THAT(LinesOf(wrong.err),
              testing::ElementsAre(StartsWith("zel: 'wrong.xml': "), "zel: 3 documents, 1 not right"));

  const test::Outcome missing = Run({"verify", "--key", "till.pem"}, {"none.xml", "wrong.xml", "d100.xml"});
  EXPECT_EQ(missing.status, 3);
  EXPECT_EQ(missing.out, Right("d100.xml"));
  EXPECT_THAT(LinesOf(missing.err),
              testing::ElementsAre("zel: 'none.xml' can't be read: No such file or directory",
                                   StartsWith("zel: 'wrong.xml': "),
                                   "zel: 3 documents, 1 not right, 1 can't be read"));
}

TEST_F(Many, NamesCanComeFromAFileOrStandardInput) {
  desk_.WriteFile("names", "d101.xml\n\nd102.xml\r\nd103.xml");
  const std::string expected = Right("d100.xml") + Right("d101.xml") + Right("d102.xml") + Right("d103.xml");
  EXPECT_EQ(desk_.Zel({"verify", "--key", "till.pem", "d100.xml", "--files-from", "names"}).out, expected);
  const test::Outcome outcome = desk_.Zel({"verify", "--key", "till.pem", "--files-from", "-"},
                                          {.input = "d100.xml\nd101.xml\nd102.xml\nd103.xml\n"});
  EXPECT_EQ(outcome.out, expected);
  EXPECT_EQ(outcome.err, "zel: 4 documents, all right\n");
  EXPECT_EQ(desk_.Zel({"verify", "--key", "till.pem", "--files-from", "none"}).err,
            "zel: 'none' can't be read: No such file or directory\n");
}

TEST_F(Many, TextsStandUnderTheNamesOfTheirFiles) {
  const std::string receipt = desk_.Zel({"receipt", "d100.xml"}).out;
  EXPECT_EQ(Run({"receipt"}, {"d100.xml", "d101.xml"}).out,
            "==> d100.xml <==\n" + receipt + "\n==> d101.xml <==\n" + receipt);
  const std::string dump = desk_.Zel({"dump", "d100.xml"}).out;
  EXPECT_EQ(Run({"dump"}, {"d100.xml", "d101.xml"}).out,
            "==> d100.xml <==\n" + dump + "\n==> d101.xml <==\n" + dump);
}

TEST_F(Many, JsonOfManyIsAnObjectPerLine) {
  for (const std::string command : {"verify", "dump", "receipt"}) {
    std::vector<std::string> arguments{command, "--json"};
    if (command == "verify") arguments.insert(arguments.end(), {"--key", "till.pem"});
    json one = json::parse(Run(arguments, {"d100.xml"}).out);
    const std::vector<std::string> lines = LinesOf(Run(arguments, {"d101.xml", "d102.xml"}).out);
    ASSERT_EQ(lines.size(), 2U);
    one["file"] = "d101.xml";
    EXPECT_EQ(json::parse(lines[0]), one);
    one["file"] = "d102.xml";
    EXPECT_EQ(json::parse(lines[1]), one);
  }
  EXPECT_EQ(json::parse(desk_.Zel({"receipt", "--json", "d100.xml"}).out).at("receipt"),
            desk_.Zel({"receipt", "d100.xml"}).out);
}

TEST_F(Many, LinesAreAnsweredOneByOneInTheirOrder) {
  std::string lines;
  for (int i = 0; i < kDocuments; ++i) {
    const json line = i % 2 == 0 ? json{{"id", i}, {"file", names_[static_cast<std::size_t>(i)]}}
                                 : json{{"id", std::to_string(i)}, {"document", desk_.ReadFile("wrong.xml")}};
    lines += line.dump() + "\n";
  }
  const test::Outcome outcome = Lines("verify", lines, {"--jobs", "5"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  const std::vector<std::string> answers = LinesOf(outcome.out);
  ASSERT_EQ(answers.size(), static_cast<std::size_t>(kDocuments));
  for (int i = 0; i < kDocuments; ++i) {
    const json answer = json::parse(answers[static_cast<std::size_t>(i)]);
    if (i % 2 == 0) {
      EXPECT_EQ(answer.at("id"), i);
      EXPECT_EQ(answer.at("file"), names_[static_cast<std::size_t>(i)]);
      EXPECT_EQ(answer.at("ok"), true);
      EXPECT_EQ(answer.at("sequenceNumber"), 1);
    } else {
      EXPECT_EQ(answer.at("id"), std::to_string(i));
      EXPECT_FALSE(answer.contains("file"));
      EXPECT_EQ(answer.at("ok"), false);
      EXPECT_THAT(answer.at("reason").get<std::string>(), testing::Not(""));
    }
  }
}

TEST_F(Many, LinesOfFilesAndLinesWithoutMark) {
  desk_.WriteFile("a.jsonl", "{\"file\": \"d100.xml\"}\r\n{\"document\": \"A0 01 32 A2 03 74 65 65\"}");
  const std::vector<std::string> answers = LinesOf(desk_.Zel({"dump", "--lines", "a.jsonl", "a.jsonl"}).out);
  ASSERT_EQ(answers.size(), 4U);
  EXPECT_EQ(answers[0], answers[2]);
  EXPECT_EQ(answers[1], answers[3]);
  EXPECT_THAT(answers[0], StartsWith("{\"line\":1,\"file\":\"d100.xml\",\"form\":\"xml\""));
  EXPECT_THAT(answers[1], StartsWith("{\"line\":2,\"form\":\"hexadecimal\""));
  EXPECT_EQ(json::parse(LinesOf(desk_.Zel({"receipt", "--lines", "a.jsonl"}).out)[0]).at("receipt"),
            desk_.Zel({"receipt", "d100.xml"}).out);
}

TEST_F(Many, ALineMayHoldTheDataOfARecord) {
  desk_.WriteFile("log.txt", "hallo");
  ASSERT_EQ(desk_.Zel({"sign-data", "log.txt", "--device", "till.db"}).status, 0);
  const std::vector<std::string> answers =
      LinesOf(Lines("verify",
                    "{\"file\": \"log.txt.xml\", \"data\": \"aGFsbG8=\"}\n"
                    "{\"file\": \"log.txt.xml\", \"data\": \"aGFsbG8h\"}\n"
                    "{\"file\": \"log.txt.xml\", \"data\": \"\"}\n"
                    "{\"file\": \"log.txt.xml\", \"data\": \"*\"}\n")
                  .out);
  ASSERT_EQ(answers.size(), 4U);
  EXPECT_EQ(json::parse(answers[0]).at("ok"), true);
  EXPECT_EQ(json::parse(answers[1]).at("failed"), "data");
  EXPECT_EQ(json::parse(answers[2]).at("failed"), "data");
  EXPECT_THAT(json::parse(answers[3]).at("error").get<std::string>(), StartsWith("\"data\": "));
}

struct WrongLine {
  std::string line;
  std::string answer;
};

void PrintTo(const WrongLine& line, std::ostream* out) { *out << line.line; }

class WrongLines : public testing::TestWithParam<WrongLine> {};

TEST_P(WrongLines, GetAnErrorForAnAnswerAndTheNextOneIsRead) {
  const test::Desk desk;
  const test::Outcome outcome = desk.Zel(
      {"dump", "--lines"}, {.input = GetParam().line + "\n{\"id\": 2, \"document\": \"A0 01 32\"}\n"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  const std::vector<std::string> lines = LinesOf(outcome.out);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0], GetParam().answer);
  EXPECT_THAT(lines[1], StartsWith("{\"id\":2,\"form\":\"hexadecimal\","));
}

INSTANTIATE_TEST_SUITE_P(
    Line, WrongLines,
    testing::ValuesIn(std::vector<WrongLine>{
        {"7", R"({"line":1,"error":"the line is a number"})"},
        {"{}", R"({"line":1,"error":"a line has either a \"document\" or a \"file\""})"},
        {R"({"id": "a", "file": "a", "document": "b"})",
         R"({"id":"a","error":"a line has either a \"document\" or a \"file\""})"},
        {R"({"id": 7.10, "document": "b"})",
         R"({"line":1,"error":"\"id\" can't be kept exactly: write it as a text"})"},
        {R"({"id": [], "document": "b"})", R"({"line":1,"error":"\"id\" is a list, not a text or number"})"},
        {R"({"id": 123456789012345678901, "document": "b"})",
         R"({"line":1,"error":"\"id\" can't be kept exactly: write it as a text"})"},
        {R"({"document": 5})", R"({"line":1,"error":"\"document\" is a number, not a text"})"},
        {R"({"document": "b", "data": "QQ=="})",
         R"({"line":1,"error":"there is no member \"data\" in a line"})"},
        {R"({"file": "-"})", R"({"line":1,"file":"-","error":"a line can't name standard input"})"},
        {R"({"id": 18446744073709551615, "file": "no"})",
         R"({"id":18446744073709551615,"file":"no","error":"'no' can't be read: No such file or directory"})"},
    }));

TEST(ManyLines, AreHeldOneAtATimeHoweverLong) {
  const test::Desk desk;
  const std::string endless(std::size_t{65} * 1024 * 1024, ' ');
  const test::Outcome outcome =
      desk.Zel({"dump", "--lines"}, {.input = endless + "\n{\"document\": \"A0 01 32\"}"});
  const std::vector<std::string> lines = LinesOf(outcome.out);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0], R"({"line":1,"error":"the line is longer than 64 MiB"})");
  EXPECT_THAT(lines[1], StartsWith("{\"line\":2,\"form\":\"hexadecimal\","));
}

TEST(ManyLines, AFullDiskEndsTheRun) {
  const test::Desk desk;
  std::string input;
  for (int i = 0; i < 2000; ++i) {
    input += "{\"document\": \"A0 01 32\"}\n";
  }
  const test::Outcome outcome =
      desk.Zel({"dump", "--lines"}, {.input = input, .standardOutput = "/dev/full"});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err, "zel: standard output can't be written: No space left on device\n");
}

TEST_F(Many, ProgressIsABarOnATerminalThatIsGoneAtTheEnd) {
  int terminal = -1;
  int side = -1;
  ASSERT_EQ(openpty(&terminal, &side, nullptr, nullptr, nullptr), 0);
  std::vector<std::string> arguments{"verify", "--key", "till.pem"};
  arguments.insert(arguments.end(), names_.begin(), names_.end());
  const test::Outcome outcome = desk_.Zel(arguments, {.inChild = [side] { dup2(side, STDERR_FILENO); }});
  EXPECT_EQ(outcome.status, 0);
  std::string shown(65536, '\0');
  shown.resize(static_cast<std::size_t>(read(terminal, shown.data(), shown.size())));
  close(side);
  close(terminal);
  EXPECT_THAT(shown, AllOf(HasSubstr("\r\033[KReading ["), HasSubstr("] 40/40"),
                           EndsWith("\r\033[Kzel: 40 documents, all right\r\n")));
}

}  // namespace
