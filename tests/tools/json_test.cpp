// JSON as it is written, piece by piece, and as it is read, of which only what readers look at is kept.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <nlohmann/json.hpp>

#include "tools/ExitStatus.h"
#include "tools/Json.h"
#include "tools/JsonWriter.h"

namespace {

using zel::JsonValue;
using zel::JsonWriter;
using zel::TextSink;

std::string Written(JsonWriter::Layout layout, const std::function<void(JsonWriter&)>& write) {
  TextSink text;
  JsonWriter json(text, layout);
  write(json);
  return text.Text();
}

void WriteAll(JsonWriter& json) {
  json.BeginObject();
  json.Member("text", "a\"\\\b\f\n\r\t\x01/\x7F\u0080\u009F\u00A0ß€😀");
  json.Member("number", -7);
  json.Member("large", std::uint64_t{18446744073709551615U});
  json.Member("yes", true);
  json.Key("none");
  json.Null();
  json.Key("list");
  json.BeginArray();
  json.BeginArray();
  json.EndArray();
  json.BeginObject();
  json.EndObject();
  json.Digits("1.50");
  json.EndArray();
  json.EndObject();
}

TEST(JsonWriter, WritesOnOneLine) {
  EXPECT_EQ(Written(JsonWriter::Layout::Compact, WriteAll),
            R"({"text":"a\"\\\b\f\n\r\t\u0001/\u007f\u0080\u009f)"
            "\u00A0ß€😀"
            R"(","number":-7,"large":18446744073709551615,"yes":true,"none":null,"list":[[],{},1.50]})");
}

TEST(JsonWriter, WritesAValueALine) {
  EXPECT_EQ(Written(JsonWriter::Layout::Indented,
                    [](JsonWriter& json) {
                      json.BeginObject();
                      json.Member("a", 1);
                      json.Key("b");
                      json.BeginArray();
                      json.BeginObject();
                      json.Member("c", "d");
                      json.EndObject();
                      json.String("e");
                      json.EndArray();
                      json.Key("f");
                      json.BeginArray();
                      json.EndArray();
                      json.EndObject();
                    }),
            "{\n  \"a\": 1,\n  \"b\": [\n    {\n      \"c\": \"d\"\n    },\n    \"e\"\n  ],\n  \"f\": []\n}");
}

TEST(JsonWriter, TakesAStringInPieces) {
  EXPECT_EQ(Written(JsonWriter::Layout::Compact,
                    [](JsonWriter& json) {
                      json.BeginArray();
                      json.BeginString();
                      json.AddToString("a\n");
                      json.AddToString("");
                      json.AddToString("ß");
                      json.EndString();
                      json.Number(1);
                      json.EndArray();
                    }),
            R"(["a\nß",1])");
}

TEST(JsonWriter, EndsWhatIsBrokenOffSoThatItIsJsonAllTheSame) {
  const auto brokenOff = [](const std::function<void(JsonWriter&)>& write) {
    return Written(JsonWriter::Layout::Compact, [&write](JsonWriter& json) {
      json.BeginObject();
      json.Member("file", "f");
      write(json);
      json.CloseAll();
      json.Member("error", "e");
      json.EndObject();
    });
  };
  EXPECT_EQ(brokenOff([](JsonWriter&) {}), R"({"file":"f","error":"e"})");
  EXPECT_EQ(brokenOff([](JsonWriter& json) { json.Key("a"); }), R"({"file":"f","a":null,"error":"e"})");
  EXPECT_EQ(brokenOff([](JsonWriter& json) {
              json.Key("a");
              json.BeginArray();
              json.BeginObject();
              json.Key("b");
              json.BeginString();
              json.AddToString("c");
            }),
            R"({"file":"f","a":[{"b":"c"}],"error":"e"})");
}

TEST(JsonWriter, MakesJsonOfAnyBytes) {
  EXPECT_TRUE(rc::check("as another writer does", [](const std::vector<std::uint8_t>& bytes) {
    const std::string text(bytes.begin(), bytes.end());
    const std::string written =
        Written(JsonWriter::Layout::Compact, [&text](JsonWriter& json) { json.String(text); });
    const auto other = nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    RC_ASSERT(nlohmann::json::parse(written) == nlohmann::json::parse(other));
  }));
}

JsonValue Member(const JsonValue& value, std::size_t place) { return value.elements.at(place); }

TEST(ParseJson, KeepsTheMembersOfTheOutermostObject) {
  const JsonValue value = zel::ParseJson(R"({"a": "x", "b": 1.50, "c": [1, [2]], "d": {"e": 1}, "f": null})");
  EXPECT_EQ(value.names, (std::vector<std::string>{"a", "b", "c", "d", "f"}));
  EXPECT_EQ(Member(value, 0).text, "x");
  EXPECT_EQ(Member(value, 1).text, "1.50");
  EXPECT_EQ(Member(value, 2).kind, JsonValue::Kind::Array);
  EXPECT_TRUE(Member(value, 2).elements.empty());
  EXPECT_EQ(Member(value, 3).kind, JsonValue::Kind::Object);
  EXPECT_TRUE(Member(value, 3).names.empty());
  EXPECT_EQ(Member(value, 4).kind, JsonValue::Kind::Null);
}

TEST(ParseJson, HandsTheElementsOfAListOverOneByOne) {
  std::vector<std::size_t> places;
  std::vector<JsonValue> elements;
  const JsonValue value = zel::ParseJson(
      R"({"l": [{"a": 1, "b": {"c": "x", "d": {"e": 1}, "f": [1]}}, 7, [8], {}], "m": [{"a": 1}]})",
      {.name = "l", .take = [&](std::size_t place, JsonValue&& element) {
         places.push_back(place);
         elements.push_back(std::move(element));
       }});
  EXPECT_EQ(places, (std::vector<std::size_t>{0, 1, 2, 3}));
  EXPECT_EQ(elements[0].names, (std::vector<std::string>{"a", "b"}));
  const JsonValue inner = Member(elements[0], 1);
  EXPECT_EQ(inner.names, (std::vector<std::string>{"c", "d", "f"}));
  EXPECT_EQ(Member(inner, 0).text, "x");
  EXPECT_EQ(Member(inner, 1).kind, JsonValue::Kind::Object);
  EXPECT_TRUE(Member(inner, 1).names.empty());
  EXPECT_EQ(Member(inner, 2).kind, JsonValue::Kind::Array);
  EXPECT_EQ(elements[1].text, "7");
  EXPECT_EQ(elements[2].kind, JsonValue::Kind::Array);
  EXPECT_EQ(elements[3].kind, JsonValue::Kind::Object);
  EXPECT_EQ(value.names, (std::vector<std::string>{"l", "m"}));
  EXPECT_EQ(Member(value, 0).kind, JsonValue::Kind::Array);
}

/// Also where nothing of them is kept.
TEST(ParseJson, RefusesMembersThatOccurTwiceAndDeepNesting) {
  EXPECT_THROW(zel::ParseJson(R"({"a": [[{"b": 1, "b": 2}]]})"), zel::Failure);
  EXPECT_THROW(zel::ParseJson(std::string(17, '[') + std::string(17, ']')), zel::Failure);
  EXPECT_NO_THROW(zel::ParseJson(std::string(16, '[') + std::string(16, ']')));
}

}  // namespace
