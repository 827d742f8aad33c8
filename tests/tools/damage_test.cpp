// Documents that were damaged on their way: each ends in a clear answer, or still says what was signed.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <sstream>

#include "Program.h"

namespace {

using nlohmann::json;

constexpr int kDamages = 10000;
constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return text;
}

/// The bytes of an element, whose name may be written in either case, without what surrounds its Base64 text.
std::string Bytes(const std::string& xml, const std::string& name) {
  const std::string lower = Lower(xml);
  const std::size_t opening = lower.find("<" + Lower(name));
  const std::size_t start = lower.find('>', opening);
  const std::size_t end = lower.find("</" + Lower(name) + ">");
  if (opening == std::string::npos || start == std::string::npos || end == std::string::npos || end < start) {
    return "no element " + name;
  }
  std::string text = xml.substr(start + 1, end - start - 1);
  const auto isDigit = [](char c) { return c == '=' || kDigits.find(c) != std::string_view::npos; };
  text.erase(text.begin(), std::find_if(text.begin(), text.end(), isDigit));
  text.erase(std::find_if(text.rbegin(), text.rend(), isDigit).base(), text.end());
  text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }),
             text.end());
  return test::FromBase64(text);
}

class Damages {
 public:
  explicit Damages(unsigned seed) : random_(seed) {}

  std::string Of(std::string xml, const std::vector<std::string>& elements) {
    for (std::size_t times = 1 + Below(3); times > 0; --times) {
      switch (Below(7)) {
        case 0: FlipBit(xml); break;
        case 1: xml.resize(Below(xml.size() + 1)); break;
        case 2: Cut(xml); break;
        case 3: Swap(xml); break;
        case 4: xml.insert(Below(xml.size() + 1), Noise(1 + Below(12))); break;
        case 5: xml.insert(Below(xml.size() + 1), Part(xml)); break;
        default: xml = InBytes(xml, elements[Below(elements.size())]); break;
      }
      if (xml.empty()) xml = " ";
    }
    return xml;
  }

 private:
  std::size_t Below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
  }

  void FlipBit(std::string& text) {
    char& byte = text[Below(text.size())];
    byte = static_cast<char>(byte ^ (1 << Below(8)));
  }
  void Cut(std::string& text) {
    const std::size_t at = Below(text.size());
    text.erase(at, 1 + Below(std::min<std::size_t>(40, text.size() - at)));
  }
  void Swap(std::string& text) {
    const std::size_t length = 1 + Below(std::min<std::size_t>(20, text.size()));
    const std::size_t first = Below(text.size() - length + 1);
    const std::size_t second = Below(text.size() - length + 1);
    const std::string moved = text.substr(first, length);
    text.replace(first, length, text.substr(second, length));
    text.replace(second, length, moved);
  }
  std::string Part(const std::string& text) {
    const std::size_t at = Below(text.size());
    return text.substr(at, Below(300));
  }
  std::string Noise(std::size_t length) {
    std::string noise;
    for (; length > 0; --length)
      noise.push_back(static_cast<char>(Below(256)));
    return noise;
  }
  /// The same to the bytes that an element holds, if the document still has it.
  std::string InBytes(const std::string& xml, const std::string& element) {
    try {
      return test::WithBytes(xml, element, [this](std::string& bytes) {
        if (bytes.empty()) return;
        switch (Below(4)) {
          case 0: FlipBit(bytes); break;
          case 1: Cut(bytes); break;
          case 2: Swap(bytes); break;
          default: bytes.insert(Below(bytes.size() + 1), Noise(1 + Below(4))); break;
        }
      });
    } catch (const std::exception&) {
      return xml;
    }
  }

  std::mt19937 random_;
};

struct Original {
  std::string xml;
  std::vector<std::string> elements;
};

TEST(Damage, OfTenThousandDocumentsNoneCrashesOrPassesForWhatItIsNot) {
  const test::Desk desk;
  std::vector<Original> originals;
  originals.push_back(
      {desk.SignedDocument(), {"itemListEncoded", "transactionRequest", "transactionResponse"}});
  desk.WriteFile("log.txt", "08:05 Schublade geöffnet\n");
  ASSERT_EQ(desk.Zel({"sign-data", "log.txt", "--device", "till.db", "--out", "log.xml"}).status, 0);
  originals.push_back({desk.ReadFile("log.xml"), {"transactionRequest", "transactionResponse"}});
  ASSERT_EQ(desk.Zel({"report", "--signed", "--device", "till.db", "--out", "closing.xml"}).status, 0);
  originals.push_back({desk.ReadFile("closing.xml"), {"reportRequest", "reportResponse"}});
  desk.WriteFile("till.pem", desk.Zel({"key", "--device", "till.db"}).out);

  constexpr unsigned seed = 20261121;
  SCOPED_TRACE("seed " + std::to_string(seed));
  Damages damages(seed);
  std::vector<std::string> documents;
  std::string lines;
  for (int i = 0; i < kDamages; ++i) {
    const Original& original = originals[static_cast<std::size_t>(i) % originals.size()];
    documents.push_back(damages.Of(original.xml, original.elements));
    desk.WriteFile("d" + std::to_string(i), documents.back());
    lines += R"({"id": )" + std::to_string(i) + R"(, "file": "d)" + std::to_string(i) + "\"}\n";
  }
  const test::Outcome outcome = desk.Zel({"verify", "--lines", "--key", "till.pem"}, {.input = lines});
  EXPECT_EQ(outcome.status, 0) << outcome.err;

  const std::set<std::string> steps = {"document", "items",    "item hash", "request",
                                       "data",     "response", "signature"};
  std::map<std::string, int> ends;
  std::istringstream answers(outcome.out);
  std::string line;
  int answered = 0;
  for (; std::getline(answers, line); ++answered) {
    const json answer = json::parse(line);
    ASSERT_EQ(answer.at("id"), answered);
    const std::string& document = documents[static_cast<std::size_t>(answered)];
    if (answer.contains("error")) {
      EXPECT_NE(answer.at("error"), "") << document;
      ++ends["error"];
    } else if (!answer.at("ok")) {
      EXPECT_EQ(steps.count(answer.at("failed")), 1U) << line;
      EXPECT_NE(answer.at("reason"), "") << line;
      ++ends[answer.at("failed")];
    } else {
      // What was changed means nothing: the signed bytes are all there.
      const Original& original = originals[static_cast<std::size_t>(answered) % originals.size()];
      for (const std::string& element : original.elements) {
        EXPECT_EQ(Bytes(document, element), Bytes(original.xml, element)) << document;
      }
      ++ends["right"];
    }
  }
  EXPECT_EQ(answered, kDamages);
  // Damage is found by every step, and some does no harm.
  for (const std::string step :
       {"document", "items", "item hash", "request", "response", "signature", "right"}) {
    EXPECT_GT(ends[step], 0) << step;
  }
  for (const auto& [end, count] : ends) {
    RecordProperty(end == "item hash" ? "item_hash" : end, count);
  }
}

}  // namespace
