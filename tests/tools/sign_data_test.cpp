// Signed data records.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Program.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class SignData : public testing::Test {
 protected:
  SignData() { desk_.WriteFile("log.txt", std::string("abc\0\x80\xFF", 6)); }

  [[nodiscard]] test::Outcome Sign(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"sign-data", "log.txt", "--device", "till.db"});
    return desk_.Zel(arguments);
  }

  [[nodiscard]] test::Outcome Verify(const std::string& document, const std::string& data = "log.txt") const {
    desk_.WriteFile("changed.xml", document);
    return desk_.Zel({"verify", "changed.xml", "--device", "till.db", "--data", data});
  }

  void ExpectWrong(const std::string& document, const std::string& start) const {
    const test::Outcome outcome = Verify(document);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, StartsWith("zel: 'changed.xml': " + start));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
  }

  test::Desk desk_;
};

TEST_F(SignData, PrintsTheReceiptAndWritesTheDocument) {
  const test::Outcome outcome = Sign({});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith("      Kassen-Signaturbeleg (Basisversion)\n"));
  EXPECT_THAT(outcome.out, HasSubstr("        ZEL - ID ...........: SOFTWARE-DEVICE-TEST\n"
                                     "        ZEL - Nr ...........: 1\n"
                                     "        Sequenznummer ......: 1\n"));
  EXPECT_THAT(outcome.err,
              HasSubstr("zel: signed as data record 1, wrote 'log.txt.xml'; the document doesn't "
                        "hold the data\n"));
  EXPECT_THAT(outcome.err, HasSubstr("zel: made and activated the software signing device 'till.db'"));
  const std::string document = desk_.ReadFile("log.txt.xml");
  EXPECT_THAT(document, StartsWith("    <transactionEncoded>\r\n        <transactionRequest>"));
  EXPECT_EQ(test::FromBase64(test::Element(document, "transactionRequest")).substr(0, 2), "\xC7\x20");
  EXPECT_EQ(desk_.Zel({"receipt", "log.txt.xml"}).out, outcome.out);
}

TEST_F(SignData, SignsTheDataAloneOrWithMore) {
  ASSERT_EQ(Sign({"--type", "only", "--out", "only.xml"}).status, 0);
  ASSERT_EQ(Sign({"--type", "id", "--out", "id.xml"}).status, 0);
  ASSERT_EQ(Sign({"--type", "time", "--date", "2026-11-21T08:05", "--out", "time.xml"}).status, 0);
  const std::string only = test::FromBase64(test::Element(desk_.ReadFile("only.xml"), "transactionResponse"));
  EXPECT_EQ(only.substr(0, 3), "\xCB\x01\x01");
  EXPECT_EQ(only.size(), 69U);
  const std::string time = test::FromBase64(test::Element(desk_.ReadFile("time.xml"), "transactionRequest"));
  EXPECT_EQ(time.substr(0, 10), "\xCD\x04\x20\x26\x11\x21\xCE\x02\x08\x05");
  const auto right = [this](const std::string& name) {
    return desk_.Zel({"verify", name, "--device", "till.db", "--data", "log.txt"}).out;
  };
  EXPECT_EQ(right("only.xml"), "only.xml: all is right, data record 1\n");
  EXPECT_EQ(right("id.xml"),
            "id.xml: all is right, data record 2 of taxpayer SOFTWARE-DEVICE-TEST, device 1\n");
  EXPECT_EQ(right("time.xml"),
            "time.xml: all is right, data record 3 of taxpayer SOFTWARE-DEVICE-TEST, device 1\n");
}

TEST_F(SignData, VerifyNamesOtherDataAndDoesWithoutAny) {
  ASSERT_EQ(Sign({}).status, 0);
  const std::string document = desk_.ReadFile("log.txt.xml");
  desk_.WriteFile("other.txt", "abd");
  const test::Outcome other = Verify(document, "other.txt");
  EXPECT_EQ(other.status, 1);
  EXPECT_THAT(other.err, StartsWith("zel: 'changed.xml': data: the request holds "));
  EXPECT_EQ(Verify(document, "none.txt").status, 3);
  EXPECT_EQ(desk_.Zel({"verify", "changed.xml", "--device", "till.db"}).status, 0);
}

TEST_F(SignData, VerifyNamesWhatIsWrong) {
  ASSERT_EQ(Sign({}).status, 0);
  const std::string document = desk_.ReadFile("log.txt.xml");
  const auto changed = [&document](const std::string& element, std::function<void(std::string&)> change) {
    return test::WithBytes(document, element, std::move(change));
  };
  ExpectWrong(test::WithElement(document, "transactionResponse", ""),
              "document: transactionResponse: Die XML-Tags sind nicht");
  ExpectWrong(changed("transactionRequest", [](std::string& bytes) { bytes += bytes; }),
              "request: byte 34: Hash_Trans_Items occurs twice");
  ExpectWrong(changed("transactionRequest", [](std::string& bytes) { bytes += "\xCE\x02\x08\x05"; }),
              "request: byte 34: tTime doesn't belong there");
  ExpectWrong(changed("transactionRequest", [](std::string& bytes) { bytes += "\xCD\x04\x20\x26\x12\x31"; }),
              "request: tDate is missing");
  ExpectWrong(changed("transactionRequest", [](std::string& bytes) { bytes[5] ^= 1; }), "data: ");
  ExpectWrong(changed("transactionResponse", [](std::string& bytes) { bytes.resize(bytes.size() - 66); }),
              "response: Signature is missing");
  ExpectWrong(changed("transactionResponse", [](std::string& bytes) { bytes += "\xCB\x01\x01"; }),
              "response: byte ");
  ExpectWrong(changed("transactionResponse", [](std::string& bytes) { bytes[bytes.size() - 67] = 0; }),
              "response: the sequence number is 0");
  ExpectWrong(changed("transactionResponse", [](std::string& bytes) { bytes.back() ^= 1; }),
              "signature: the signature doesn't belong to this request, response and public key");
}

TEST_F(SignData, OnlyDataRecordsHaveData) {
  ASSERT_EQ(desk_.Zel({"sign", "sale.json", "--device", "till.db"}).status, 0);
  ExpectWrong(desk_.ReadFile("sale.xml"), "data: the document is that of a booking, which has no data");
  ASSERT_EQ(desk_.Zel({"report", "--signed", "--device", "till.db", "--out", "c.xml"}).status, 0);
  ExpectWrong(desk_.ReadFile("c.xml"), "data: the document is that of a report, which has no data");
}

TEST_F(SignData, TheDocumentIsOverwrittenWithForceAlone) {
  ASSERT_EQ(Sign({}).status, 0);
  const test::Outcome refused = Sign({});
  EXPECT_EQ(refused.status, 3);
  EXPECT_EQ(refused.err, "zel: 'log.txt.xml' exists already (--force overwrites it)\n");
  EXPECT_THAT(Sign({"--force"}).err, HasSubstr("signed as data record 2,"));
  EXPECT_EQ(Sign({"--force", "--out", "log.txt"}).err, "zel: the document would overwrite 'log.txt'\n");
}

TEST_F(SignData, ResumeWritesTheDocumentOnceMore) {
  ASSERT_EQ(Sign({"--type", "time", "--date", "2026-11-21T08:05"}).status, 0);
  const std::string document = desk_.ReadFile("log.txt.xml");
  ASSERT_EQ(Sign({"--resume", "1", "--out", "again.xml"}).status, 0);
  EXPECT_EQ(desk_.ReadFile("again.xml"), document);
  EXPECT_EQ(Sign({"--resume", "2", "--force"}).err,
            "zel: the device has no data record 2, its last one is 1\n");
  desk_.WriteFile("log.txt", "other");
  EXPECT_EQ(Sign({"--resume", "1", "--force"}).err,
            "zel: the device signed something else as data record 1\n");
}

TEST_F(SignData, AFileThatCantBeReadOrIsEmptyIsNamed) {
  EXPECT_EQ(desk_.Zel({"sign-data", "none.txt"}).status, 3);
  desk_.WriteFile("log.txt", "");
  EXPECT_EQ(Sign({}).err, "zel: 'log.txt' is empty\n");
  EXPECT_FALSE(desk_.Exists("till.db"));
}

TEST_F(SignData, DumpRecognisesDocumentRequestAndResponse) {
  ASSERT_EQ(Sign({"--type", "only"}).status, 0);
  EXPECT_THAT(desk_.Zel({"dump", "log.txt.xml"}).out,
              AllOf(StartsWith("Data record document (XML)\n  Data request (34 bytes)\n"),
                    HasSubstr("  Data response (69 bytes)\n         0  CB  Seq_Nr_Trans          1  1\n")));
  desk_.WriteFile("request", "CD 04 20 26 12 31 CE 02 18 30 C7 14" + std::string(40, '0'));
  EXPECT_THAT(desk_.Zel({"dump", "request"}).out, StartsWith("Data request (32 bytes, hexadecimal)\n"));
  desk_.WriteFile("response", "CB 01 07");
  EXPECT_THAT(desk_.Zel({"dump", "response"}).out, StartsWith("Data response (3 bytes, hexadecimal)\n"));
}

}  // namespace
