// The worked example of docs/softdevice.md, byte by byte.

#include <fstream>
#include <sstream>

#include "Support.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

/// The block of the document that starts with three backticks and this name.
std::string Block(const std::string& name) {
  std::ifstream file(VNZEL_SOURCE_DIR "/docs/softdevice.md");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const std::string opening = "\n```" + name + "\n";
  const std::size_t start = text.find(opening);
  if (start == std::string::npos) {
    throw std::runtime_error("the document has no block " + name);
  }
  const std::size_t content = start + opening.size();
  return text.substr(content, text.find("```", content) - content);
}

/// The bytes of a block whose lines are bytes, and an explanation behind at least two blanks.
Bytes BytesOf(const std::string& block) {
  Bytes bytes;
  std::istringstream lines(block);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t first = line.find_first_not_of(' ');
    bytes = Joined(bytes, Hex(line.substr(first, line.find("  ", first) - first)));
  }
  return bytes;
}

using Document = DeviceTest;

TEST_F(Document, ShowsTheRequestAndTheMessageOfTheExample) {
  EXPECT_EQ(BytesOf(Block("request")), Hex(kBooking));
  EXPECT_EQ(BytesOf(Block("message")), Hex(kBooking + kResponseHead));
}

TEST_F(Document, ShowsAResponseWhoseSignatureFits) {
  const Bytes response = BytesOf(Block("response"));
  ASSERT_EQ(response.size(), 85U);
  EXPECT_EQ(Bytes(response.begin(), response.begin() + 21), Hex(kResponseHead + "9E 40"));
  const Verdict verdict = VerifyBooking(Hex(kBooking), response, Block("key"));
  EXPECT_TRUE(verdict.ok) << verdict.reason;
}

TEST_F(Document, ShowsWhatADeviceAnswersButForTheSignature) {
  Device device = Open();
  const Answer answer = device.Execute(Command::SignBooking, BytesOf(Block("request")));
  const Bytes response = BytesOf(Block("response"));
  ASSERT_EQ(answer.response.size(), response.size());
  EXPECT_TRUE(std::equal(response.begin(), response.begin() + 21, answer.response.begin()));
}

}  // namespace
}  // namespace softdevice::test
