// Tampering with a signed document: the first thing that is wrong is named.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Program.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

class Verify : public testing::Test {
 protected:
  /// What is said of a changed document.
  test::Outcome Of(const std::string& xml, const std::vector<std::string>& more = {}) const {
    desk_.WriteFile("changed.xml", xml);
    std::vector<std::string> arguments{"verify", "changed.xml", "--device", "till.db"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return desk_.Zel(arguments);
  }

  void ExpectWrong(const std::string& xml, const std::string& start) const {
    const test::Outcome outcome = Of(xml);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, StartsWith("zel: 'changed.xml': " + start));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
  }

  std::string Items(const std::function<void(std::string&)>& change) const {
    return test::WithBytes(document_, "itemListEncoded", change);
  }
  std::string Request(const std::function<void(std::string&)>& change) const {
    return test::WithBytes(document_, "transactionRequest", change);
  }
  std::string Response(const std::function<void(std::string&)>& change) const {
    return test::WithBytes(document_, "transactionResponse", change);
  }

  test::Desk desk_;
  std::string document_ = desk_.SignedDocument();
};

TEST_F(Verify, ASignedDocumentIsRight) {
  const test::Outcome outcome = Of(document_);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, "changed.xml: all is right, booking 1 of taxpayer SOFTWARE-DEVICE-TEST, device 1\n");
}

TEST_F(Verify, ThePublicKeyIsEnough) {
  desk_.WriteFile("till.pem", desk_.Zel({"key", "--device", "till.db"}).out);
  std::filesystem::remove(desk_.File("till.db"));
  EXPECT_EQ(desk_.Zel({"verify", "sale.xml", "--key", "till.pem"}).status, 0);
}

TEST_F(Verify, LineEndsAndBlanksAroundTheElementsDontMatter) {
  std::string xml;
  for (const char character : document_) {
    if (character != '\r') xml += character;
  }
  EXPECT_EQ(Of("<?xml version=\"1.0\"?>\n" + xml + "\n").status, 0);
}

TEST_F(Verify, NamesAMissingIncompleteDoubledOrEmptyElement) {
  for (const std::string element :
       {"transactionEncoded", "itemListEncoded", "transactionRequest", "transactionResponse"}) {
    std::string other = document_;
    for (const std::string& text : {"<" + element + ">", "</" + element + ">"}) {
      other.replace(other.find(text), text.size(), "");
      ExpectWrong(other, "document: " + element + ": ");
    }
    std::string doubled = document_;
    ExpectWrong(doubled.insert(doubled.find("</transactionEncoded>"), "<" + element + ">"),
                "document: " + element + ": the element occurs twice\n");
  }
  for (const std::string element : {"itemListEncoded", "transactionRequest", "transactionResponse"}) {
    ExpectWrong(test::WithElement(document_, element, ""), "document: " + element + ": ");
    ExpectWrong(test::WithElement(document_, element, " \r\n"), "document: " + element + ": ");
    ExpectWrong(test::WithElement(document_, element, "QUJD*A=="), "document: " + element + ": ");
  }
}

/// A forged report beside a valid booking would be there for everybody who looks for a report.
TEST_F(Verify, ADocumentHoldsOneThing) {
  ASSERT_EQ(desk_.Zel({"report", "--signed", "--device", "till.db", "--out", "closing.xml"}).status, 0);
  const std::string report = desk_.ReadFile("closing.xml");
  const std::string inner = report.substr(report.find("<reportRequest>"));
  const std::string request = inner.substr(0, inner.find('\n'));
  ExpectWrong(document_ + report, "document: reportEncoded: the document holds a booking\n");
  ExpectWrong(report + document_, "document: reportEncoded: the document holds a booking\n");
  ExpectWrong(document_ + request, "document: reportRequest: the document holds a booking\n");
  ExpectWrong(document_ + "</REPORTRESPONSE>", "document: reportResponse: the document holds a booking\n");
  std::string inside = document_;
  ExpectWrong(inside.insert(inside.find("</transactionEncoded>"), report),
              "document: reportEncoded: the document holds a booking\n");
  // The same where a report is what the document is.
  ExpectWrong(report + "<transactionRequest>" + test::Element(document_, "transactionRequest"),
              "document: transactionRequest: the document holds a report\n");
  ExpectWrong(report + "<TransactionResponse >",
              "document: transactionResponse: the document holds a report\n");
  // And where it is data.
  desk_.WriteFile("log.txt", "hallo");
  ASSERT_EQ(desk_.Zel({"sign-data", "log.txt", "--device", "till.db"}).status, 0);
  const std::string data = desk_.ReadFile("log.txt.xml");
  ExpectWrong(data + report, "document: reportEncoded: the document holds a data record\n");
  ExpectWrong(data + document_, "document: transactionEncoded: the element occurs twice\n");
  EXPECT_EQ(Of(report).status, 0);
  EXPECT_EQ(Of(data).status, 0);
}

TEST_F(Verify, WhatStandsBesideADocumentIsSeenByTheOtherCommandsToo) {
  ASSERT_EQ(desk_.Zel({"report", "--signed", "--device", "till.db", "--out", "closing.xml"}).status, 0);
  const std::string report = desk_.ReadFile("closing.xml");
  desk_.WriteFile("both.xml", document_ + report);
  const std::string said = "zel: 'both.xml': reportEncoded: the document holds a booking\n";
  const test::Outcome receipt = desk_.Zel({"receipt", "both.xml"});
  EXPECT_EQ(receipt.status, 1);
  EXPECT_EQ(receipt.out, "");
  EXPECT_EQ(receipt.err, said);
  desk_.WriteFile("two.xml", document_ + "\n" + document_);
  const test::Outcome two = desk_.Zel({"receipt", "two.xml"});
  EXPECT_EQ(two.status, 1);
  EXPECT_EQ(two.err, "zel: 'two.xml': transactionEncoded: the element occurs twice\n");
  const test::Outcome dump = desk_.Zel({"dump", "both.xml"});
  EXPECT_EQ(dump.status, 1);
  EXPECT_EQ(dump.err, said);
  EXPECT_THAT(dump.out, StartsWith("Booking document (XML)\n  Item list (80 bytes)\n"));
  const json root = json::parse(desk_.Zel({"dump", "both.xml", "--json"}).out);
  EXPECT_EQ(root["faults"], json::parse(R"([{"part": "reportEncoded",
                                              "reason": "the document holds a booking"}])"));
}

TEST_F(Verify, NamesAnItemListThatCantBeRead) {
  ExpectWrong(Items([](std::string& bytes) { bytes.pop_back(); }), "items: byte 76: ");
  ExpectWrong(Items([](std::string& bytes) { bytes += '\xA0'; }), "items: byte 80: ");
  ExpectWrong(Items([](std::string& bytes) { bytes[0] = '\xC6'; }),
              "items: byte 0: tag 0xC6 (Operator) can't stand in an item list [9305]\n");
}

TEST_F(Verify, NamesAnItemListThatNoTillWrites) {
  ExpectWrong(Items([](std::string& bytes) { bytes[test::PositionOf(bytes, "kaffee")] = 'K'; }),
              "items: the list is not as a till writes it: Item 3: Item_Name (0xA2) is \"Kaffee\", expected "
              "\"kaffee\"\n");
  // The same price with a leading zero.
  ExpectWrong(Items([](std::string& bytes) {
                bytes.replace(test::PositionOf(bytes, "\xB1\x02\x28\x0C"), 4,
                              std::string("\xB1\x03\x00\x28\x0C", 5));
              }),
              "items: the list is not as a till writes it: Item 3: Item_Price1 (0xB1) is 0x00280C, expected "
              "0x280C\n");
}

TEST_F(Verify, NamesTheItemHashForEveryChangedItem) {
  const auto replaced = [this](std::string_view old, std::string_view by) {
    return Items(
        [old, by](std::string& bytes) { bytes.replace(test::PositionOf(bytes, old), old.size(), by); });
  };
  ExpectWrong(replaced("\xA0\x01"
                       "4",
                       "\xA0\x01"
                       "5"),
              "item hash: the request holds ");
  ExpectWrong(replaced("stk", "stx"), "item hash: the request holds ");
  ExpectWrong(replaced("br#tchen", "br#dchen"), "item hash: the request holds ");
  ExpectWrong(replaced("\xB2\x02\x92\x0C", "\xB2\x02\x92\x0D"), "item hash: the request holds ");
  ExpectWrong(replaced("\xB1\x02\x28\x0C", "\xB1\x02\x29\x0C"), "item hash: the request holds ");
  ExpectWrong(replaced("\xB1\x02\x28\x0C", "\xB2\x02\x28\x0C"), "item hash: the request holds ");
  ExpectWrong(replaced("\xA2\x06kaffee", std::string("\xA2\x06kaffee\xAC\x00", 10)),
              "item hash: the request holds ");
  ExpectWrong(Items([](std::string& bytes) {
                bytes.resize(test::PositionOf(bytes,
                                              "\xA0\x01"
                                              "7"));
              }),
              "item hash: the request holds ");
  ExpectWrong(Request([](std::string& bytes) { bytes[20] = static_cast<char>(bytes[20] ^ 1); }),
              "item hash: the request holds ");
}

TEST_F(Verify, NamesARequestThatCantBeRead) {
  ExpectWrong(Request([](std::string& bytes) { bytes.pop_back(); }), "request: byte 73: ");
  ExpectWrong(Request([](std::string& bytes) {
                bytes[2] = '\x99';
                bytes[4] = '\x13';
              }),
              "request: byte 0: ");
  ExpectWrong(Request([](std::string& bytes) { bytes.erase(0, 6); }), "request: Das Buchungsdatum");
}

TEST_F(Verify, NamesTheRecordOfTheRequestThatTheItemsDontGive) {
  const auto replaced = [this](std::string_view old, std::string_view by) {
    return Request(
        [old, by](std::string& bytes) { bytes.replace(test::PositionOf(bytes, old), old.size(), by); });
  };
  // Class A: 2.80 - 1.75 = 1.05, of which 1.75 negative, VAT 0.17; class B: 11.00, VAT 0.72.
  ExpectWrong(replaced("\xD8\x02\x10\x5C", "\xD8\x02\x10\x4C"),
              "request: Container_Vat_1 (0xE1): Trnvr (0xD8) is 1.04, expected 1.05\n");
  ExpectWrong(replaced("\xD9\x02\x17\x5C", "\xD9\x02\x17\x6C"),
              "request: Container_Vat_1 (0xE1): Trnvr_neg (0xD9) is 1.76, expected 1.75\n");
  ExpectWrong(replaced("\xDA\x02\x01\x7C", "\xDA\x02\x01\x6C"),
              "request: Container_Vat_1 (0xE1): Trnvr_Vat (0xDA) is 0.16, expected 0.17\n");
  ExpectWrong(replaced(std::string("\xDB\x02\x07\x00", 4), std::string("\xDB\x02\x06\x00", 4)),
              "request: Container_Vat_2 (0xE2): Trnvr_Vat_Rate (0xDB) is 6.00 %, expected 7.00 %\n");
  ExpectWrong(replaced("\xE2", "\xE3"),
              "request: Container_Vat_3 (0xE3) stands where Container_Vat_2 (0xE2) belongs\n");
  ExpectWrong(Request([](std::string& bytes) { bytes.resize(test::PositionOf(bytes, "\xE2")); }),
              "request: Container_Vat_2 (0xE2) is missing\n");
  ExpectWrong(Request([](std::string& bytes) { bytes += bytes.substr(test::PositionOf(bytes, "\xE2")); }),
              "request: Container_Vat_2 (0xE2) doesn't belong there\n");
  // With prices that exclude the tax, the tax would be another one.
  ExpectWrong(Request([](std::string& bytes) {
                bytes.insert(test::PositionOf(bytes, "\xE1"), std::string("\xC9\x00", 2));
              }),
              "request: Container_Vat_1 (0xE1): Trnvr_Vat (0xDA) is 0.17, expected 0.20\n");
  // In 2006 the rate was another one.
  ExpectWrong(replaced("\xCD\x04\x20\x26", "\xCD\x04\x20\x06"),
              "request: Container_Vat_1 (0xE1): Trnvr_Vat (0xDA) is 0.17, expected 0.14\n");
  ExpectWrong(replaced("\xCD\x04\x20\x26\x11\x21\xCE\x02\x08\x05",
                       std::string("\xCD\x04\x20\x00\x01\x01\xCE\x02\x00\x00", 10)),
              "request: the booking isn't dated\n");
}

TEST_F(Verify, NamesAResponseThatCantBeRead) {
  ExpectWrong(Response([](std::string& bytes) { bytes.pop_back(); }), "response: byte 28: ");
  ExpectWrong(Response([](std::string& bytes) { bytes.erase(0, 22); }), "response: Die Steuerpfl.-ID");
  ExpectWrong(Response([](std::string& bytes) { bytes += std::string("\xCB\x01\x01", 3); }),
              "response: byte 94: Seq_Nr_Trans doesn't belong behind the signature\n");
  ExpectWrong(Response([](std::string& bytes) { bytes[27] = 0; }), "response: the sequence number is 0\n");
}

TEST_F(Verify, NamesTheSignatureForEverythingThatOnlyItKeeps) {
  const std::string wrong =
      "signature: the signature doesn't belong to this request, response and public key\n";
  ExpectWrong(Request([](std::string& bytes) { bytes[5] = '\x22'; }), wrong);  // date
  ExpectWrong(Request([](std::string& bytes) { bytes[9] = '\x06'; }), wrong);  // time
  ExpectWrong(Request([](std::string& bytes) { bytes[test::PositionOf(bytes, "Meier")] = 'B'; }),
              wrong);  // operator
  ExpectWrong(Request([](std::string& bytes) { bytes[test::PositionOf(bytes, "\xC8\x02") + 3] = '\xD1'; }),
              wrong);
  ExpectWrong(Request([](std::string& bytes) {
                bytes.insert(test::PositionOf(bytes, "\xE1"), std::string("\xCA\x00", 2));  // training
              }),
              wrong);
  ExpectWrong(Response([](std::string& bytes) { bytes[test::PositionOf(bytes, "TEST")] = 'B'; }), wrong);
  ExpectWrong(Response([](std::string& bytes) { bytes[24] = 2; }), wrong);  // device
  ExpectWrong(Response([](std::string& bytes) { bytes[27] = 2; }), wrong);  // number
  ExpectWrong(Response([](std::string& bytes) { bytes[60] = static_cast<char>(bytes[60] ^ 1); }), wrong);
  // All parts are sound, but the response is that of another booking.
  ASSERT_EQ(desk_.Zel({"sign", "sale.json", "--device", "till.db", "--out", "second.xml"}).status, 0);
  desk_.WriteFile("third.json",
                  R"({"operator": "Meier", "items": [{"name": "Tee", "price": "2.50", "class": "A"}]})");
  ASSERT_EQ(desk_.Zel({"sign", "third.json", "--device", "till.db"}).status, 0);
  ExpectWrong(test::WithElement(document_, "transactionResponse",
                                test::Element(desk_.ReadFile("third.xml"), "transactionResponse")),
              wrong);
}

TEST_F(Verify, NamesTheSignatureWhenAnotherDeviceIsAsked) {
  ASSERT_EQ(desk_.Zel({"sign", "sale.json", "--device", "other.db", "--out", "other.xml"}).status, 0);
  const test::Outcome outcome = desk_.Zel({"verify", "sale.xml", "--device", "other.db"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(
      outcome.err,
      "zel: 'sale.xml': signature: the signature doesn't belong to this request, response and public key\n");
}

TEST_F(Verify, JsonTellsWhatPassedAndWhatFailed) {
  const json right = json::parse(Of(document_, {"--json"}).out);
  EXPECT_EQ(right, json::parse(R"({"file": "changed.xml", "ok": true, "failed": null, "reason": null,
      "passed": ["document", "items", "item hash", "request", "response", "signature"],
      "taxpayerId": "SOFTWARE-DEVICE-TEST", "runningNumber": 1, "sequenceNumber": 1})"));
  const test::Outcome outcome = Of(Request([](std::string& bytes) { bytes[5] = '\x22'; }), {"--json"});
  EXPECT_EQ(outcome.status, 1);
  const json wrong = json::parse(outcome.out);
  EXPECT_EQ(wrong["ok"], false);
  EXPECT_EQ(wrong["failed"], "signature");
  EXPECT_EQ(wrong["passed"].size(), 5U);
}

TEST_F(Verify, ADocumentHashedWithSha1IsRightAsFarAsItGoes) {
  // The same document as a till makes it that hashes with SHA-1; nobody signed it.
  std::string items = test::FromBase64(test::Element(document_, "itemListEncoded"));
  std::string digest(20, '\0');
  unsigned length = 0;
  ASSERT_EQ(EVP_Digest(items.data(), items.size(), reinterpret_cast<unsigned char*>(digest.data()), &length,
                       EVP_sha1(), nullptr),
            1);
  ExpectWrong(Request([&digest](std::string& bytes) {
                const std::size_t start = test::PositionOf(bytes, "\xC7\x20");
                bytes.replace(start, 34, "\xC7\x14" + digest);
              }),
              "signature: ");
}

TEST_F(Verify, MakesNoDevice) {
  const test::Outcome outcome = desk_.Zel({"verify", "sale.xml"});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err,
            "zel: device file '" + desk_.File(".local/share/zel/device.db") + "': there is no such file\n");
}

/// Every byte of a document counts, or means the same as before.
TEST_F(Verify, NoChangedBitPassesForRight) {
  unsigned random = 7;
  for (const std::string element : {"itemListEncoded", "transactionRequest", "transactionResponse"}) {
    for (int round = 0; round < 60; ++round) {
      random = random * 1664525U + 1013904223U;
      const std::string changed = test::WithBytes(document_, element, [random](std::string& bytes) {
        char& byte = bytes[(random >> 8U) % bytes.size()];
        byte = static_cast<char>(byte ^ (1U << (random >> 29U)));
      });
      const test::Outcome outcome = Of(changed);
      EXPECT_EQ(outcome.status, 1) << changed;
      EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
  }
}

}  // namespace
