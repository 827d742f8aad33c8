// The worked examples of docs/softdevice.md, byte by byte.

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

TEST_F(Document, ShowsAReportWhoseSignatureFits) {
  const std::string request = kDate + "CE 02 18 30 ";
  const std::string head =
      "C0 01 03 C4 0B 44 45 31 32 33 34 35 36 37 38 39 C5 01 01 CC 01 02 D2 01 01 D3 01 01 " + kContainer1 +
      "E2 00 E3 00 E4 00 E5 00 E6 00 E7 00 E8 00 E9 00 ";
  EXPECT_EQ(BytesOf(Block("report-request")), Hex(request));
  EXPECT_EQ(BytesOf(Block("report-message")), Hex(request + head));
  const Bytes response = BytesOf(Block("report-response"));
  ExpectSigned(response, head);
  const Verdict verdict = VerifyReport(Hex(request), response, Block("key"));
  EXPECT_TRUE(verdict.ok) << verdict.reason;
}

TEST_F(Document, ShowsWhatADeviceReportsButForTheSignature) {
  Device device = Open();
  ASSERT_TRUE(device.Execute(Command::SignBooking, BytesOf(Block("request"))).accepted);
  const Answer answer = device.Execute(Command::ReportSigned, BytesOf(Block("report-request")));
  const Bytes response = BytesOf(Block("report-response"));
  ASSERT_EQ(answer.response.size(), response.size());
  EXPECT_TRUE(std::equal(response.begin(), response.end() - 64, answer.response.begin()));
}

TEST_F(Document, NamesTheDefaultTransportPin) {
  std::ifstream file(VNZEL_SOURCE_DIR "/docs/softdevice.md");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(text.find(std::string("**") + kDefaultTransportPin + "** unless"), std::string::npos);
}

}  // namespace
}  // namespace softdevice::test
