// What stands in files and names reaches a terminal: nothing of it can steer the terminal, and a long value
// doesn't fill the screen.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Program.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

/// Whether a text holds a control character other than the line feed, of one byte or, in UTF-8, of two; or a byte
/// that a terminal may take for one.
testing::AssertionResult IsHarmless(const std::string& text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const auto before = static_cast<unsigned char>(i == 0 ? 0 : text[i - 1]);
    const bool isControl = (byte < 0x20 && byte != '\n') || byte == 0x7F;
    const bool isC1 = byte >= 0x80 && byte < 0xA0 && (before < 0x80 || before == 0xC2);
    if (isControl || isC1) return testing::AssertionFailure() << "byte " << i << " of " << text;
  }
  return testing::AssertionSuccess();
}

TEST(ControlCharacters, InANameAreQuestionMarks) {
  const test::Desk desk;
  const auto said = [&desk](const std::string& name) { return desk.Zel({"dump", name}).err; };
  const std::string end = "' can't be read: No such file or directory\n";
  EXPECT_EQ(said("a\x1B[2Jb"), "zel: 'a?[2Jb" + end);
  EXPECT_EQ(said("a\xC2\x9B"
                 "2Jb"),
            "zel: 'a?2Jb" + end);
  EXPECT_EQ(said("a\xC2\x80\xC2\x9F"
                 "b\x7F"),
            "zel: 'a??b?" + end);
  // As a byte of its own, and in an overlong form of two and three bytes.
  EXPECT_EQ(said("a\x9B"
                 "2Jb"),
            "zel: 'a?2Jb" + end);
  EXPECT_EQ(said("a\xC0\x9B"
                 "b\xE0\x82\x9B"
                 "c"),
            "zel: 'a??b???c" + end);
  EXPECT_EQ(said("\xE2\x82\xF0\x9F\x98\xED\xA0\x80\xF4\x90\x80\x80\xFF"), "zel: '??????????" + end);
}

TEST(ControlCharacters, AreNotSeenInOtherCharactersThatHaveTheirBytes) {
  const test::Desk desk;
  const std::string name = "Größe ÀÜß € \u0100\u07FF\u0800\uFFFD 😀\U0010FFFF";
  EXPECT_EQ(desk.Zel({"dump", name}).err, "zel: '" + name + "' can't be read: No such file or directory\n");
}

TEST(ControlCharacters, AreRefusedInASale) {
  const test::Desk desk;
  for (const std::string text : {"A\xC2\x9B"
                                 "B",
                                 "A\\u009bB", "A\\u007fB", "A\\u001bB"}) {
    desk.WriteFile("wrong.json", R"({"operator": "Meier", "items": [{"name": ")" + text +
                                     R"(", "price": "1", "class": "A"}]})");
    const test::Outcome outcome = desk.Zel({"sign", "wrong.json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "zel: 'wrong.json': items[0].name: holds a control character\n");
  }
}

TEST(ControlCharacters, OfADocumentReachNoTerminal) {
  const test::Desk desk;
  std::string xml = desk.SignedDocument();
  xml.replace(xml.find("<itemListEncoded>"), 17,
              "<itemListEncoded profile=\"a\xC2\x9B"
              "2J\x9B\x7F"
              "ß\">");
  // The last character that a record can hold is a control character.
  xml = test::WithBytes(xml, "transactionRequest",
                        [](std::string& bytes) { bytes[test::PositionOf(bytes, "Meier")] = '\x7F'; });
  desk.WriteFile("odd.xml", xml);
  const test::Outcome dump = desk.Zel({"dump", "odd.xml"});
  EXPECT_EQ(dump.status, 0);
  EXPECT_THAT(dump.out, HasSubstr("profile \"a?2J??ß\""));
  EXPECT_TRUE(IsHarmless(dump.out));
  EXPECT_THAT(desk.Zel({"receipt", "odd.xml"}).out, HasSubstr("Bediener ...............: ?eier\n"));
  for (const std::string command : {"dump", "receipt", "verify"}) {
    std::vector<std::string> arguments{command, "odd.xml"};
    if (command == "verify") arguments.insert(arguments.end(), {"--device", "till.db"});
    const test::Outcome text = desk.Zel(arguments);
    EXPECT_TRUE(IsHarmless(text.out)) << command;
    EXPECT_TRUE(IsHarmless(text.err)) << command;
    arguments.emplace_back("--json");
    EXPECT_TRUE(IsHarmless(desk.Zel(arguments).out)) << command;
  }
  // A program gets the very characters; only a byte that is none can't stand in JSON.
  const json root = json::parse(desk.Zel({"dump", "odd.xml", "--json"}).out);
  EXPECT_EQ(root["parts"][0]["profile"], "a\u009B2J\uFFFD\u007Fß");
}

TEST(ControlCharacters, ThatComeBackInAnAnswerAreEscaped) {
  const test::Desk desk;
  const test::Outcome outcome =
      desk.Zel({"dump", "--lines"}, {.input = "{\"id\": \"a\xC2\x9B"
                                              "b\\u007f\", \"document\": \"A0 01 32\"}\n"});
  EXPECT_THAT(outcome.out, testing::StartsWith(R"({"id":"a\u009bb\u007f","form":)"));
  EXPECT_TRUE(IsHarmless(outcome.out));
}

class LongValues : public testing::TestWithParam<std::string> {};

TEST_P(LongValues, OfASaleAreCutInTheMessage) {
  const test::Desk desk;
  std::string sale = GetParam();
  const std::string value(1'000'000, '7');
  for (std::size_t at = sale.find("LONG"); at != std::string::npos; at = sale.find("LONG")) {
    sale.replace(at, 4, value);
  }
  desk.WriteFile("wrong.json", sale);
  const test::Outcome outcome = desk.Zel({"sign", "wrong.json"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_LT(outcome.err.size(), 500U);
  const std::string beginning = outcome.err.substr(0, 500);
  EXPECT_THAT(beginning, HasSubstr("777..."));
  EXPECT_THAT(beginning, Not(HasSubstr(std::string(201, '7'))));
}

INSTANTIATE_TEST_SUITE_P(
    Member, LongValues,
    testing::Values(R"({"operator": "LONG"})", R"({"LONG": 1})", R"({"LONG": 1, "LONG": 2})",
                    R"({"operator": "A", "date": "LONG"})",
                    R"({"operator": "A", "items": [{"name": "A", "price": "LONG", "class": "A"}]})",
                    R"({"operator": "A", "items": [{"name": "A", "price": LONG, "class": "A"}]})",
                    R"({"operator": "A", "items": [{"name": "A", "prices": {"LONG": "1"}}]})",
                    R"({"operator": "A", "items": [{"name": "A", "LONG": "1"}]})"));

TEST(LongValues, OfALineAreCutInTheMessage) {
  const test::Desk desk;
  const std::string value(100'000, 'x');
  for (const std::string& line : {"{\"" + value + "\": 1}", "{\"file\": \"" + value + "\"}"}) {
    const test::Outcome outcome = desk.Zel({"dump", "--lines"}, {.input = line});
    const std::string error = json::parse(outcome.out).at("error");
    EXPECT_LT(error.size(), 2000U);
    EXPECT_THAT(error.substr(0, 2000), HasSubstr("x..."));
  }
}

TEST(LongValues, OfTheCommandLineAreCutInTheMessage) {
  const test::Desk desk;
  const std::string value = std::string(199, 'x') + "ß" + std::string(20'000, 'y');
  const std::vector<std::vector<std::string>> lines = {{value},
                                                       {"sign", "sale.json", "--" + value},
                                                       {"sign-data", "sale.json", "--type", value},
                                                       {"report", "--span", value},
                                                       {"report", "--signed", "--date", value},
                                                       {"sign", "sale.json", "--resume", value}};
  for (const std::vector<std::string>& line : lines) {
    const test::Outcome outcome = desk.Zel(line);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("..."));
    EXPECT_LT(outcome.err.size(), 500U);
    EXPECT_THAT(outcome.err, testing::EndsWith("\n"));
  }
  // No character is cut in two.
  EXPECT_THAT(desk.Zel({value}).err, HasSubstr(std::string(199, 'x') + "..."));
}

TEST(LongValues, ALongNameOfAFileKeepsItsEnd) {
  const test::Desk desk;
  std::string name;
  for (int i = 0; i < 40; ++i) {
    name += std::string(99, static_cast<char>('a' + i % 26)) + "/";
  }
  const std::string end = "the-end.xml";
  EXPECT_EQ(desk.Zel({"dump", name + end}).err, "zel: '" + name.substr(0, 200) + "..." +
                                                    (name + end).substr(name.size() + end.size() - 800) +
                                                    "' can't be read: No such file or directory\n");
  // The command that writes a lost document has to name the file in full.
  const std::string folder = "f/" + std::string(200, 'f') + "/" + std::string(200, 'g');
  std::filesystem::create_directories(desk.File(folder));
  EXPECT_EQ(desk.Zel({"dump", folder + "/" + end}).err,
            "zel: '" + folder + "/" + end + "' can't be read: No such file or directory\n");
}

}  // namespace
