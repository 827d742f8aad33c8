// What names are given and what stands behind them: NUL bytes, standard input twice, pipes that nobody writes to, and
// texts without an end. Nothing of it reads another file, loses a name, or waits for ever.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "Program.h"

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::StartsWith;
using namespace std::string_literals;  // NOLINT(google-build-using-namespace): texts with NUL bytes

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

class Names : public testing::Test {
 protected:
  Names() {
    desk_.WriteFile("good.xml", desk_.SignedDocument());
    desk_.WriteFile("till.pem", desk_.Zel({"key", "--device", "till.db"}).out);
  }

  /// Runs the program, which is ended when it takes too long.
  test::Outcome Zel(const std::vector<std::string>& arguments, const std::string& input = "") const {
    return desk_.Zel(arguments, {.input = input, .inChild = [] { alarm(30); }});
  }

  test::Outcome Verify(std::vector<std::string> arguments, const std::string& input = "") const {
    arguments.insert(arguments.begin(), {"verify", "--key", "till.pem"});
    return Zel(arguments, input);
  }

  void MakePipe(const std::string& name) const { ASSERT_EQ(mkfifo(desk_.File(name).c_str(), 0600), 0); }

  static std::string Right(const std::string& name) {
    return name + ": all is right, booking 1 of taxpayer SOFTWARE-DEVICE-TEST, device 1\n";
  }

  test::Desk desk_;
};

TEST_F(Names, WithANulByteNameNoOtherFile) {
  const test::Outcome outcome = Verify({"--files-from", "-"}, "good.xml\ngood.xml\0evil\n\0\ngood.xml\n"s);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.out, Right("good.xml") + Right("good.xml"));
  EXPECT_THAT(
      LinesOf(outcome.err),
      ElementsAre("zel: 'good.xml?evil' can't be read: the name holds a NUL byte",
                  "zel: '?' can't be read: the name holds a NUL byte", "zel: 4 documents, 2 can't be read"));
  const std::vector<std::string> answers =
      LinesOf(Verify({"--lines"}, "{\"file\": \"good.xml\\u0000.evil\"}\n{\"file\": \"good.xml\"}\n").out);
  ASSERT_EQ(answers.size(), 2U);
  EXPECT_EQ(answers[0], R"({"line":1,"file":"good.xml\u0000.evil",)"
                        R"("error":"'good.xml?.evil' can't be read: the name holds a NUL byte"})");
  EXPECT_EQ(json::parse(answers[1]).at("ok"), true);
}

TEST_F(Names, TextBehindANulByteIsNotPassedOver) {
  const std::string sale(test::Desk::kSale);
  for (const std::string& text :
       {sale + std::string("\0{}", 3), sale + std::string("\0", 1), std::string("\0", 1) + sale}) {
    desk_.WriteFile("odd.json", text);
    const test::Outcome outcome = Zel({"sign", "odd.json", "--device", "till.db"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err,
              "zel: 'odd.json': no valid JSON: byte " + std::to_string(text.find('\0')) + " is NUL\n");
    EXPECT_FALSE(desk_.Exists("odd.xml"));
  }
  const test::Outcome lines = Zel({"dump", "--lines"}, "{\"document\": \"A0 01 32\"}\0{}\n"s);
  EXPECT_EQ(lines.out, "{\"line\":1,\"error\":\"no valid JSON: byte 24 is NUL\"}\n");
}

TEST_F(Names, FromStandardInputDontNameStandardInput) {
  const test::Outcome outcome = Verify({"--files-from", "-"}, "good.xml\n-\ngood.xml\ngood.xml\n");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.out, Right("good.xml") + Right("good.xml") + Right("good.xml"));
  EXPECT_THAT(LinesOf(outcome.err), ElementsAre("zel: a list from standard input can't name standard input",
                                                "zel: 4 documents, 1 can't be read"));
  // From a file they may.
  desk_.WriteFile("names", "good.xml\n-\ngood.xml\n");
  EXPECT_EQ(Verify({"--files-from", "names"}, desk_.ReadFile("good.xml")).out,
            Right("good.xml") + Right("-") + Right("good.xml"));
}

TEST_F(Names, StandardInputCanBeNamedOnce) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"-", "--files-from", "-"}, {"-", "good.xml", "-"}, {"--lines", "-", "-"}}) {
    const test::Outcome outcome = Verify(arguments, "good.xml\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "zel: standard input can be read once only\n");
  }
}

TEST_F(Names, ThatAreTooLongAreCutInTheirMessageAndTheNextOneIsRead) {
  const std::string most = std::string(4096, 'n');
  const test::Outcome outcome =
      Verify({"--files-from", "-"}, "good.xml\n" + most + "\n" + most + "n\n" + most + most + "\ngood.xml\n");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.out, Right("good.xml") + Right("good.xml"));
  const std::string shown = "'" + std::string(200, 'n') + "..." + std::string(800, 'n') + "' can't be read: ";
  EXPECT_THAT(LinesOf(outcome.err),
              ElementsAre("zel: " + shown + "File name too long",
                          "zel: " + shown + "the name in standard input is longer than 4096 bytes",
                          "zel: " + shown + "the name in standard input is longer than 4096 bytes",
                          "zel: 5 documents, 3 can't be read"));
}

TEST_F(Names, WithoutAnEndEndTheListAndTheTallyAppears) {
  const auto start = std::chrono::steady_clock::now();
  const test::Outcome zeros = Verify({"good.xml", "--files-from", "/dev/zero"});
  EXPECT_EQ(zeros.status, 3);
  EXPECT_EQ(zeros.out, Right("good.xml"));
  EXPECT_EQ(LinesOf(zeros.err).back(),
            "zel: 2 documents, 1 can't be read; the list of names isn't read to its end");
  EXPECT_LT(zeros.err.size(), 2000U);
  const test::Outcome lines = Zel({"dump", "--lines", "/dev/zero"});
  EXPECT_EQ(lines.status, 3);
  EXPECT_EQ(lines.out, "{\"line\":1,\"error\":\"the line is longer than 64 MiB\"}\n");
  EXPECT_EQ(lines.err, "zel: '/dev/zero' isn't read to its end: line 1 has none\n");
  const test::Outcome document = Zel({"dump", "/dev/zero"});
  EXPECT_EQ(document.status, 1);
  EXPECT_EQ(document.err, "zel: '/dev/zero' is larger than 32 MiB\n");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

TEST_F(Names, InAListThatCantBeReadOnAreThoseBefore) {
  const test::Outcome folder = Verify({"good.xml", "--files-from", "."});
  EXPECT_EQ(folder.status, 3);
  EXPECT_EQ(folder.err, "zel: '.' can't be read: Is a directory\n");
}

TEST_F(Names, OfPipesAreNoneOfFiles) {
  MakePipe("pipe.json");
  std::filesystem::create_directory(desk_.File("sales"));
  ASSERT_EQ(mkfifo(desk_.File("sales/pipe.json").c_str(), 0600), 0);

  const test::Outcome list = Verify({"--files-from", "-"}, "good.xml\npipe.json\n.\n/dev/null\ngood.xml\n");
  EXPECT_EQ(list.status, 3);
  EXPECT_EQ(list.out, Right("good.xml") + Right("good.xml"));
  EXPECT_THAT(LinesOf(list.err),
              ElementsAre("zel: 'pipe.json' is no regular file", "zel: '.' can't be read: Is a directory",
                          "zel: '/dev/null' is no regular file", "zel: 5 documents, 3 can't be read"));
  EXPECT_EQ(Zel({"dump", "--lines"}, "{\"file\": \"pipe.json\"}\n").out,
            "{\"line\":1,\"file\":\"pipe.json\",\"error\":\"'pipe.json' is no regular file\"}\n");

  const test::Outcome day = Zel({"day", "sales", "--out", "out"});
  EXPECT_EQ(day.status, 3);
  EXPECT_EQ(day.err, "zel: 'sales/pipe.json' is no regular file\n");
  EXPECT_FALSE(desk_.Exists("out"));

  const test::Outcome log =
      Zel({"sign", "sale.json", "--device", "till.db", "--out", "new.xml", "--log", "pipe.json"});
  EXPECT_EQ(log.status, 0);
  EXPECT_THAT(log.err,
              StartsWith("zel: warning: the log file 'pipe.json' can't be opened; going on without it\n"));
}

TEST_F(Names, OfPipesThatNobodyWritesToEndInAMessage) {
  MakePipe("pipe");
  const std::string said = "zel: 'pipe' can't be read: nobody writes to this pipe\n";
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"verify", "pipe", "--key", "till.pem"},
        {"verify", "good.xml", "--key", "pipe"},
        {"verify", "--files-from", "pipe", "--key", "till.pem"},
        {"sign", "pipe", "--device", "till.db", "--out", "new.xml"},
        {"report", "--signed", "--items", "pipe", "--device", "till.db"}}) {
    const test::Outcome outcome = Zel(arguments);
    EXPECT_EQ(outcome.status, 3) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.err, said) << testing::PrintToString(arguments);
  }
  // A device isn't to be had from a pipe either.
  EXPECT_EQ(Zel({"verify", "good.xml", "--device", "pipe"}).status, 3);
  EXPECT_EQ(Zel({"sign", "sale.json", "--device", "pipe", "--out", "new.xml"}).status, 3);
}

/// What a shell makes of <(...), and a pipe with a name that somebody opens a moment later.
TEST_F(Names, OfPipesWithAWriterAreRead) {
  const std::string document = desk_.ReadFile("good.xml");
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  std::thread writer([&ends, &document] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    for (const std::string& part : {document.substr(0, 100), document.substr(100)}) {
      EXPECT_EQ(write(ends[1], part.data(), part.size()), static_cast<ssize_t>(part.size()));
    }
    close(ends[1]);
  });
  const test::Outcome substituted =
      desk_.Zel({"verify", "--key", "till.pem", "/dev/fd/" + std::to_string(ends[0])}, {.inChild = [&ends] {
                  close(ends[1]);
                  alarm(30);
                }});
  writer.join();
  close(ends[0]);
  EXPECT_EQ(substituted.status, 0) << substituted.err;

  MakePipe("pipe");
  std::thread later([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    const int pipe = open(desk_.File("pipe").c_str(), O_WRONLY);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(write(pipe, "good.xml\n", 9), 9);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(write(pipe, "good.xml\n", 9), 9);
    close(pipe);
  });
  const test::Outcome listed = Verify({"--files-from", "pipe"});
  later.join();
  EXPECT_EQ(listed.status, 0) << listed.err;
  EXPECT_EQ(listed.out, Right("good.xml") + Right("good.xml"));
}

}  // namespace
