// What the program says about itself, and what it answers to a wrong command line.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Program.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(CommandLine, HelpOfTheProgramNamesEveryCommandAndTheExitStatuses) {
  const test::Outcome outcome = test::Desk().Zel({"--help"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  for (const char* text : {"sign ", "sign-data ", "report ", "receipt ", "dump ", "verify ", "device ",
                           "key ", "day ", "Examples:", "Exit status: 0 done"}) {
    EXPECT_THAT(outcome.out, HasSubstr(text));
  }
}

TEST(CommandLine, EveryCommandHasHelpWithAnExample) {
  for (const std::string command :
       {"sign", "sign-data", "report", "receipt", "dump", "verify", "device", "key", "day"}) {
    const test::Outcome outcome = test::Desk().Zel({command, "--help"});
    EXPECT_EQ(outcome.status, 0) << command;
    EXPECT_EQ(outcome.err, "") << command;
    EXPECT_THAT(outcome.out, HasSubstr("Example")) << command;
    EXPECT_THAT(outcome.out, HasSubstr("  zel " + command)) << command;
    EXPECT_THAT(outcome.out, HasSubstr("Exit status:")) << command;
  }
}

TEST(CommandLine, VersionIsOneLine) {
  const test::Outcome outcome = test::Desk().Zel({"--version"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, testing::MatchesRegex("zel [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

struct WrongLine {
  std::vector<std::string> arguments;
  std::string message;
};

void PrintTo(const WrongLine& line, std::ostream* out) { *out << line.message; }

class WrongCommandLine : public testing::TestWithParam<WrongLine> {};

TEST_P(WrongCommandLine, EndsWithStatus2AndOneLine) {
  const test::Desk desk;
  const test::Outcome outcome = desk.Zel(GetParam().arguments);
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, GetParam().message);
  EXPECT_EQ(desk.Names(), std::vector<std::string>{"sale.json"});
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, WrongCommandLine,
    testing::ValuesIn(std::vector<WrongLine>{
        WrongLine{{}, "zel: name a command (see zel --help)\n"},
        WrongLine{{"sing", "sale.json"}, "zel: there is no command or option 'sing' (see zel --help)\n"},
        WrongLine{{"sign"}, "zel: SALE is required (see zel sign --help)\n"},
        WrongLine{{"sign", "sale.json", "--loud"},
                  "zel: The following argument was not expected: --loud (see zel sign --help)\n"},
        WrongLine{{"verify", "a.xml", "--key", "k.pem", "--device", "d.db"},
                  "zel: --device excludes --key (see zel verify --help)\n"},
        WrongLine{{"sign", "sale.json", "--resume", "many"},
                  "zel: Could not convert: --resume = many (see zel sign --help)\n"},
        WrongLine{{"day", "."}, "zel: --out is required (see zel day --help)\n"},
        WrongLine{{"device"}, "zel: A subcommand is required (see zel device --help)\n"},
        WrongLine{{"device", "init", "--number", "1", "--pin", "123456"},
                  "zel: --taxpayer is required (see zel device init --help)\n"},
        WrongLine{{"device", "init", "--taxpayer", "Müller", "--number", "1", "--pin", "123456"},
                  "zel: the taxpayer ID must have 1 to 32 characters, only ASCII, no umlauts\n"},
        WrongLine{{"device", "init", "--taxpayer", "DE1", "--number", "0", "--pin", "123456"},
                  "zel: the running number must be at least 1\n"},
        WrongLine{{"device", "init", "--taxpayer", "DE1", "--number", "1", "--pin", "12345a"},
                  "zel: the transport PIN must be six digits\n"},
        WrongLine{
            {"report"},
            "zel: name one of --signed, --unsigned, --span, --activate, --deactivate, --resume (see zel "
            "report --help)\n"},
        WrongLine{
            {"report", "--signed", "--unsigned"},
            "zel: name one of --signed, --unsigned, --span, --activate, --deactivate, --resume (see zel "
            "report --help)\n"},
        WrongLine{{"report", "--unsigned", "--items", "sale.json"},
                  "zel: --items goes with --signed alone\n"},
        WrongLine{
            {"report", "--span", "2026-1..2026-3"},
            "zel: --span: \"2026-1..2026-3\" is no span of months such as 2026-01..2026-03 or 2026-01\n"},
        WrongLine{{"report", "--span", "2026-03..2026-02"},
                  "zel: --span: the last month, 2026-02, lies before the first, 2026-03\n"},
        WrongLine{{"report", "--signed", "--date", "today"},
                  "zel: --date: \"today\" is no date and time such as 2026-11-21T08:05\n"},
        WrongLine{{"sign-data", "sale.json", "--type", "both"},
                  "zel: --type: \"both\" is none of only, id, time\n"},
        WrongLine{{"sign-data", "sale.json", "--date", "2026-11-21T08:05"},
                  "zel: --date goes with --type time alone\n"},
        WrongLine{{"sign-data", "-"},
                  "zel: data from standard input has no name: name the document with --out\n"},
        WrongLine{{"sign", "-"},
                  "zel: a sale from standard input has no name: name the document with --out\n"}}));

}  // namespace
