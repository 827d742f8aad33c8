// The worked examples of docs/softdevice.md, byte by byte.

#include <openssl/evp.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "Support.h"
#include "softdevice/Key.h"
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

/// Of a message as it stands in the document.
Bytes Sha256(const Bytes& message) {
  Bytes digest(EVP_MAX_MD_SIZE);
  std::size_t length = 0;
  if (EVP_Q_digest(nullptr, "SHA2-256", nullptr, message.data(), message.size(), digest.data(), &length) !=
      1) {
    throw std::runtime_error("no digest");
  }
  digest.resize(length);
  return digest;
}

Bytes BytesOf(const Digest& digest) { return {digest.begin(), digest.end()}; }

TEST_F(Document, ShowsTheDigestOfARecord) {
  const SignedRequest record{1, Command::SignBooking, BytesOf(Block("request")), BytesOf(Block("response"))};
  const Bytes message = BytesOf(Block("record-message"));
  const Bytes digest = BytesOf(Block("record-digest"));
  EXPECT_EQ(message,
            Joined(Joined(Hex("00 00 00 00 00 00 00 20" + std::string(64, '0') +
                              "00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 49"),
                          record.request),
                   Joined(Hex("00 00 00 00 00 00 00 55"), record.response)));
  EXPECT_EQ(Sha256(message), digest);
  EXPECT_EQ(BytesOf(DigestOf({}, record)), digest);
}

TEST_F(Document, ShowsTheDigestOfTheState) {
  const std::string privateKey = Block("private-key");
  const std::string publicKey = Block("key");
  const Bytes rest = BytesOf(Block("state-message"));
  Bytes message = Hex("00 00 00 00 00 00 00 F1");
  message.insert(message.end(), privateKey.begin(), privateKey.end());
  message = Joined(message, Hex("00 00 00 00 00 00 00 B2"));
  message.insert(message.end(), publicKey.begin(), publicKey.end());
  message = Joined(message, rest);
  const Bytes digest = BytesOf(Block("state-digest"));
  EXPECT_EQ(Sha256(message), digest);

  StoredState state;
  state.privateKey = privateKey;
  state.publicKey = publicKey;
  state.taxpayerId = "DE123456789";
  state.runningNumber = 1;
  state.lifeCycle = LifeCycle::Activated;
  state.transportPin = "123456";
  state.transactions.number = 1;
  const Bytes record = BytesOf(Block("record-digest"));
  std::copy(record.begin(), record.end(), state.transactions.digest.begin());
  state.reports.number = 1;
  // Behind taxpayer ID, four numbers, the PIN, the transactions' end and the reports' number.
  constexpr std::ptrdiff_t kActivation = 8 + 11 + 8 + 8 + 8 + 6 + 8 + 8 + 8 + 32 + 8 + 8;
  std::copy_n(rest.begin() + kActivation, 32, state.reports.digest.begin());
  state.month = 202612;
  state.otherTotals = DigestOfOthers({}, 0, 0);
  state.sinceClosing = {{0, 225, 11900, 0, 1900, 1900, 1, false, false, 0}};
  state.ofMonth = {{202612, 225, 11900, 0, 1900, 1900, 1, false, false, 0}};
  EXPECT_EQ(BytesOf(state.Message().Sha256()), digest);
}

TEST_F(Document, ShowsAPrivateKeyThatFits) {
  EXPECT_EQ(Key::FromPrivatePem(Block("private-key")).PublicPem(), Block("key"));
}

TEST_F(Document, ShowsSignaturesWithTheLowS) {
  const Bytes half = BytesOf(Block("half-order"));
  for (const char* block : {"response", "report-response"}) {
    const Bytes response = BytesOf(Block(block));
    EXPECT_TRUE(std::lexicographical_compare(response.end() - 32, response.end(), half.begin(), half.end()))
        << block;
  }
}

TEST_F(Document, NamesTheDefaultTransportPin) {
  std::ifstream file(VNZEL_SOURCE_DIR "/docs/softdevice.md");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(text.find(std::string("**") + kDefaultTransportPin + "** unless"), std::string::npos);
}

}  // namespace
}  // namespace softdevice::test
