// Extraction of an element from a document.

#include <string>
#include <string_view>

#include "fuzz/Check.h"
#include "fuzz/Targets.h"

namespace fuzz {

namespace {

constexpr std::string_view kOpenings[] = {"",
                                          "<TRANSACTIONENCODED>",
                                          "<REPORTENCODED>",
                                          "<ITEMLISTENCODED",
                                          "<TRANSACTIONREQUEST>",
                                          "<TRANSACTIONRESPONSE>",
                                          "<REPORTREQUEST>",
                                          "<REPORTRESPONSE>"};
constexpr std::string_view kClosings[] = {"",
                                          "</TRANSACTIONENCODED>",
                                          "</REPORTENCODED>",
                                          "</ITEMLISTENCODED>",
                                          "</TRANSACTIONREQUEST>",
                                          "</TRANSACTIONRESPONSE>",
                                          "</REPORTREQUEST>",
                                          "</REPORTRESPONSE>"};
constexpr std::size_t kNowhere = std::string::npos;

std::string UpperCase(std::string text) {
  for (char& c : text) {
    c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  return text;
}

bool IsBase64(char c) {
  return std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/_-=").find(c) !=
         kNowhere;
}

/// The extraction told a second time, step by step.
bool Extract(const std::string& document, std::size_t tag, std::string& content, std::string& profile) {
  content.clear();
  profile.clear();
  if (tag < 1 || tag > 7) {
    return false;
  }
  const std::string upper = UpperCase(document);
  const std::size_t opening = upper.find(kOpenings[tag]);
  const std::size_t end = upper.find(kClosings[tag]);
  if (opening == kNowhere || end == kNowhere) {
    return false;
  }
  const std::size_t bracket = document.find('>', opening);
  if (bracket == kNowhere || bracket + 1 >= end) {
    return false;
  }
  content = document.substr(bracket + 1, end - bracket - 1);
  if (tag > 2) {
    while (!content.empty() && !IsBase64(content.front())) {
      content.erase(0, 1);
    }
    while (!content.empty() && !IsBase64(content.back())) {
      content.pop_back();
    }
  }
  if (tag == 3) {
    const std::size_t first = opening + kOpenings[tag].size();
    std::string attributes = document.substr(first, bracket + 1 - first);
    for (char& c : attributes) {
      c = c == '\'' ? '"' : c;
    }
    // Only ASCII texts are sure to have as many characters as bytes.
    if (attributes.size() > 7 && UpperCase(attributes).find("PROFILE") != kNowhere) {
      const std::size_t quote = attributes.find('"');
      const std::size_t second = quote == kNowhere ? kNowhere : attributes.find('"', quote + 1);
      profile = second == kNowhere ? "" : attributes.substr(quote + 1, second - quote - 1);
    }
  }
  return true;
}

}  // namespace

void XmlTag(Bytes data) {
  Input input(data);
  const std::uint8_t selector = input.Byte();
  const auto tag = static_cast<VnZEL10cmn::ZelXmlTags>(selector == 255 ? -1 : selector % 10);
  const std::string document = Input::TextOf(input.Rest());
  VnZEL10cmn::clsZelBaseCoding coder;
  std::string content = "before";
  std::string profile = "before";
  const bool done = coder.GetXmlTag(document, tag, content, &profile);
  CheckOutcome(coder, done, "GetXmlTag");
  std::string expected;
  std::string expectedProfile;
  FUZZ_CHECK(done == Extract(document, static_cast<std::size_t>(static_cast<std::int32_t>(tag)), expected,
                             expectedProfile));
  FUZZ_CHECK(content == expected && profile == expectedProfile);
  FUZZ_CHECK(done || coder.ErrorObject().ErrorNr() == 9211);
  // The result may be the document itself, and nobody needs to ask for the profile.
  std::string own = document;
  FUZZ_CHECK(coder.GetXmlTag(own, tag, own) == done && own == expected);
}

}  // namespace fuzz
