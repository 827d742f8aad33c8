// The XML document of a data record: byte by byte out, and in with every kind of damage.

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/datarecord/clsZelTransActData.h"
#include "tests/datarecord/Support.h"

namespace VnZEL10cmn {
namespace {

using test::BytesOf;
using test::FillAbc;
using test::HandIn;

const std::string requestText = "xyC6eBa/jwHP6kFBQN5driIjsANho5YXepy0EP9h8gAVrQ==";
const std::string responseText = "ywIBLA==";  // sequence number 300

std::string RequestElement(std::string_view text = requestText) {
  return "<transactionRequest>" + std::string(text) + "</transactionRequest>";
}
std::string ResponseElement(std::string_view text = responseText) {
  return "<transactionResponse>" + std::string(text) + "</transactionResponse>";
}
std::string Document(std::string_view inner) {
  return "<transactionEncoded>" + std::string(inner) + "</transactionEncoded>";
}

void Sign(clsZelTransActData& record) {
  FillAbc(record);
  (void)BytesOf(record, ZELSerialType::Request);
  ASSERT_TRUE(HandIn(record, ZELSerialType::Response, test::kSequence));
}

std::string Export(clsZelTransActData& record, std::int32_t intent) {
  std::string document = "old content";
  EXPECT_TRUE(record.XmlHandler(document, true, intent)) << record.ErrorObject().ErrorMsg();
  test::ExpectNoError(record);
  return document;
}

// Export

TEST(DataRecordExport, OneLine) {
  clsZelTransActData record;
  Sign(record);
  const std::string expected =
      "<transactionEncoded>"
      "<transactionRequest>xyC6eBa/jwHP6kFBQN5driIjsANho5YXepy0EP9h8gAVrQ==</transactionRequest>"
      "<transactionResponse>ywIBLA==</transactionResponse></transactionEncoded>";
  EXPECT_EQ(Export(record, -1), expected);
  EXPECT_EQ(Export(record, std::numeric_limits<std::int32_t>::min()), expected);
}

TEST(DataRecordExport, Lines) {
  clsZelTransActData record;
  Sign(record);
  EXPECT_EQ(Export(record, 0),
            "<transactionEncoded>\r\n"
            "<transactionRequest>xyC6eBa/jwHP6kFBQN5driIjsANho5YXepy0EP9h8gAVrQ==</transactionRequest>\r\n"
            "<transactionResponse>ywIBLA==</transactionResponse>\r\n"
            "</transactionEncoded>");
  EXPECT_EQ(Export(record, 1),
            " <transactionEncoded>\r\n"
            "  <transactionRequest>xyC6eBa/jwHP6kFBQN5driIjsANho5YXepy0EP9h8gAVrQ==</transactionRequest>\r\n"
            "  <transactionResponse>ywIBLA==</transactionResponse>\r\n"
            " </transactionEncoded>");
}

TEST(DataRecordExport, FourAndEightBlanksAreTheDefault) {
  clsZelTransActData record;
  Sign(record);
  const std::string expected =
      "    <transactionEncoded>\r\n"
      "        <transactionRequest>xyC6eBa/jwHP6kFBQN5driIjsANho5YXepy0EP9h8gAVrQ==</transactionRequest>\r\n"
      "        <transactionResponse>ywIBLA==</transactionResponse>\r\n"
      "    </transactionEncoded>";
  EXPECT_EQ(Export(record, 4), expected);
  std::string document;
  EXPECT_TRUE(record.XmlHandler(document, true));
  EXPECT_EQ(document, expected);
}

void ExpectNotEnough(clsZelTransActData& record, std::string_view request, std::string_view response,
                     const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  std::string document = "old content";
  EXPECT_FALSE(record.XmlHandler(document, true));
  test::ExpectError(record.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "EncodeXML",
                    "Der XML-Buchungssatz konnte nicht erstellt werden:\r\n"
                    "Es liegen nicht genug Daten vor!\r\n"
                    "    ZEL-Anfrage .....: " +
                        std::string(request) +
                        " Zeichen\r\n"
                        "    ZEL-Antwort .....: " +
                        std::string(response) + " Zeichen",
                    file, line);
  EXPECT_EQ(document, "old content");
}

TEST(DataRecordExport, NeedsRequestAndResponse) {
  test::TestLog log;
  clsZelTransActData record;
  record.LogHandler(log.Handler());
  ExpectNotEnough(record, "0", "0");
  FillAbc(record);
  ExpectNotEnough(record, "0", "0");
  (void)BytesOf(record, ZELSerialType::Request);
  ExpectNotEnough(record, "48", "0");
  EXPECT_EQ(log.Functions(), std::vector<std::string>(3, "EncodeXML"));
  clsZelTransActData answered;
  ASSERT_TRUE(HandIn(answered, ZELSerialType::Response, test::kSequence));
  ExpectNotEnough(answered, "0", "8");
}

// Import

TEST(DataRecordImport, OfEveryFormOfExport) {
  for (const std::int32_t intent : {-1, 0, 1, 4, 40}) {
    clsZelTransActData record;
    Sign(record);
    std::string document = Export(record, intent);
    clsZelTransActData imported;
    EXPECT_TRUE(imported.XmlHandler(document, false)) << imported.ErrorObject().ErrorMsg();
    test::ExpectNoError(imported);
    EXPECT_EQ(imported.DataHash(), test::kAbcSha256Base64);
    EXPECT_EQ(imported.ZelRespSeqNr(), Currency(300));
    EXPECT_EQ(imported.ZelRespData(), responseText);
    EXPECT_EQ(imported.DataSignType(), ZELDataSignTypes::DataOnly);
    EXPECT_EQ(Export(imported, intent), document);
  }
}

TEST(DataRecordImport, OfARecordWithTimeStamp) {
  clsZelTransActData record;
  record.DataSignType(ZELDataSignTypes::DataAndTime);
  Sign(record);
  ASSERT_TRUE(
      HandIn(record, ZELSerialType::Response, test::Join(test::kTaxpayer, test::kDevice, test::kSigned)));
  std::string document = Export(record, 4);
  clsZelTransActData imported;
  EXPECT_TRUE(imported.XmlHandler(document, false)) << imported.ErrorObject().ErrorMsg();
  EXPECT_EQ(imported.DataSignType(), ZELDataSignTypes::DataAndTime);
  EXPECT_EQ(imported.TransactionDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 0).Value());
  EXPECT_EQ(imported.ZelRespTpID(), "DE1");
  EXPECT_EQ(imported.ZelRespTpIDNr(), Currency(2));
  EXPECT_EQ(imported.ZelRespSignature(), test::kSaleSignature);
}

TEST(DataRecordImport, OfABookingsDocumentWithBlanksAndCase) {
  clsZelTransActData record;
  std::string document =
      "<a>\n<TRANSACTIONENCODED>\n <itemListEncoded>AA</itemListEncoded><TransactionResponse>\t" +
      responseText + "\r\n</transactionresponse>" + RequestElement(" " + requestText + "\n") +
      "</transactionEncoded></a>";
  EXPECT_TRUE(record.XmlHandler(document, false)) << record.ErrorObject().ErrorMsg();
  EXPECT_EQ(record.DataHash(), test::kAbcSha256Base64);
  EXPECT_EQ(record.ZelRespSeqNr(), Currency(300));
}

/// A document that the record refuses; the document itself stays as it is.
void ExpectImportFailure(clsZelTransActData& record, const std::string& document, ZELErrorCodes number,
                         std::string_view function, std::string_view message,
                         const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure of the import");
  std::string data = document;
  EXPECT_FALSE(record.XmlHandler(data, false)) << document;
  test::ExpectError(record.ErrorObject(), number, true, function, message, file, line);
  EXPECT_EQ(data, document);
}

/// An element's opening or closing text missing, the two out of order, or nothing between them.
std::vector<std::string> Damaged(const std::string& name, const std::string& content) {
  return {"<" + name + ">" + content, content + "</" + name + ">", "</" + name + "><" + name + ">" + content,
          "<" + name + "></" + name + ">"};
}

TEST(DataRecordImportFailure, NoTransaction) {
  clsZelTransActData record;
  for (const std::string document :
       {"", " ", "text", "<reportEncoded>x</reportEncoded>", "<transactionEncoded"}) {
    ExpectImportFailure(record, document, ZELErrorCodes::Err_Ser_Failed, "DecodeXML",
                        "Es konnte kein Transaktionsdatensatz gefunden werden");
  }
}

TEST(DataRecordImportFailure, TransactionIncompleteOrOutOfOrder) {
  test::TestLog log;
  clsZelTransActData record;
  record.LogHandler(log.Handler());
  for (const std::string& document : Damaged("transactionEncoded", RequestElement() + ResponseElement())) {
    ExpectImportFailure(record, document, ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[GetXmlTag]",
                        "Das Ermitteln der Transaktion schlug fehl!");
  }
  const std::vector<std::string> sources = test::LogSources(log);
  ASSERT_FALSE(sources.empty());
  EXPECT_EQ(sources.back(), "clsZelTransActData");
}

TEST(DataRecordImportFailure, NoRequest) {
  clsZelTransActData record;
  for (const std::string request : {"", "<transactionRequest> </transactionRequest>"}) {
    ExpectImportFailure(record, Document(" " + request + ResponseElement()),
                        ZELErrorCodes::Err_Ser_DataMissing, "DecodeXML",
                        "Es konnten keine Anfragedaten gefunden werden!");
  }
  EXPECT_EQ(record.ZelRespData(), "");
}

TEST(DataRecordImportFailure, RequestIncompleteOrOutOfOrder) {
  clsZelTransActData record;
  for (const std::string& request : Damaged("transactionRequest", requestText)) {
    ExpectImportFailure(record, Document(request + ResponseElement()), ZELErrorCodes::Err_Ser_Failed,
                        "DecodeXML.[GetXmlTag]", "Das Ermitteln der ZEL-Anfrage (Buchung) schlug fehl!");
  }
}

TEST(DataRecordImportFailure, RequestIsNoBase64) {
  test::TestLog log;
  clsZelTransActData record;
  record.LogHandler(log.Handler());
  for (const std::string_view text : {"AAA", "AA?A", "AAAA AAAA"}) {
    ExpectImportFailure(record, Document(RequestElement(text) + ResponseElement()),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[FromBase64String]",
                        "Base64-Konvertierung der Anfragedaten fehlgeschlagen!");
  }
  EXPECT_EQ(test::LogSources(log)[0], "clsHelper01");
  EXPECT_EQ(test::LogSources(log)[1], "clsZelTransActData");
}

TEST(DataRecordImportFailure, RequestThatCannotBeDecoded) {
  clsZelTransActData record;
  for (const std::string_view hex : {"C7 02 01 02", "C6 01 41", "CE 02 25 00"}) {
    ExpectImportFailure(record, Document(RequestElement(test::Base64(hex)) + ResponseElement()),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[DecodeRqst]",
                        "Dekodieren der Anfragedaten fehlgeschlagen!");
  }
  EXPECT_EQ(record.ZelRespData(), "");
}

TEST(DataRecordImportFailure, NoResponse) {
  for (const std::string response : {"", "<transactionResponse>\r\n</transactionResponse>"}) {
    clsZelTransActData record;
    ExpectImportFailure(record, Document(RequestElement() + response), ZELErrorCodes::Err_Ser_DataMissing,
                        "DecodeXML", "Es konnten keine Antwortdaten gefunden werden!");
    // The request is restored.
    EXPECT_EQ(record.DataHash(), test::kAbcSha256Base64);
  }
}

TEST(DataRecordImportFailure, ResponseIncompleteOrOutOfOrder) {
  clsZelTransActData record;
  for (const std::string& response : Damaged("transactionResponse", responseText)) {
    ExpectImportFailure(record, Document(RequestElement() + response), ZELErrorCodes::Err_Ser_Failed,
                        "DecodeXML.[GetXmlTag]", "Das Ermitteln der ZEL-Antwort (Buchung) schlug fehl!");
  }
}

TEST(DataRecordImportFailure, ResponseIsNoBase64) {
  clsZelTransActData record;
  for (const std::string_view text : {"AAAAA", "AA?A"}) {
    ExpectImportFailure(record, Document(RequestElement() + ResponseElement(text)),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[FromBase64String]",
                        "Base64-Konvertierung der Antwortdaten fehlgeschlagen!");
  }
}

TEST(DataRecordImportFailure, ResponseThatCannotBeDecoded) {
  test::TestLog log;
  clsZelTransActData record;
  record.LogHandler(log.Handler());
  for (const std::string_view hex : {"CB 01 07 C4 00", "CB 01 07 C6 01 41"}) {
    ExpectImportFailure(record, Document(RequestElement() + ResponseElement(test::Base64(hex))),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML.DecodeResp",
                        "Dekodieren der Antwortdaten fehlgeschlagen!");
    EXPECT_EQ(record.ZelRespSeqNr(), Currency(7));
  }
  // For each import the reason comes first, then what its caller sees.
  EXPECT_EQ(log.Functions(),
            (std::vector<std::string>{"DecodeResp.[GetZelTpID]", "DecodeXML.DecodeResp",
                                      "DecodeResp.[GetZelSignature2]", "DecodeXML.DecodeResp"}));
}

TEST(DataRecordImportFailure, SuccessAfterwardsClearsTheError) {
  clsZelTransActData record;
  std::string document = "x";
  EXPECT_FALSE(record.XmlHandler(document, false));
  document = Document(RequestElement() + ResponseElement());
  EXPECT_TRUE(record.XmlHandler(document, false));
  test::ExpectNoError(record);
}

}  // namespace
}  // namespace VnZEL10cmn
