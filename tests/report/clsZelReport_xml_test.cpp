// The XML document of a report: byte by byte out, and in with every kind of damage.

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/report/clsZelReport.h"
#include "tests/report/Support.h"

namespace VnZEL10cmn {
namespace {

using test::AddLoaves;
using test::BuildRequest;
using test::HandIn;
using test::SetDate;

const std::string itemsText = "oAEyogRicm90sQMBGQw=";
const std::string requestText = "zQQgJAMVzgIUN9QU1GZUHSrdJ6VfdAc6/W6svhajN/o=";
const std::string responseText = "wAED";  // state "activated"

std::string ItemsElement(std::string_view text = itemsText) {
  return "<itemListEncoded>" + std::string(text) + "</itemListEncoded>";
}
std::string RequestElement(std::string_view text = requestText) {
  return "<reportRequest>" + std::string(text) + "</reportRequest>";
}
std::string ResponseElement(std::string_view text = responseText) {
  return "<reportResponse>" + std::string(text) + "</reportResponse>";
}
std::string Document(std::string_view inner) {
  return "<reportEncoded>" + std::string(inner) + "</reportEncoded>";
}

/// The closing over two loaves, signed.
void Close(clsZelReport& report, ZelReportType type = ZelReportType::Signed) {
  SetDate(report);
  AddLoaves(report);
  (void)BuildRequest(report, type);
  ASSERT_TRUE(HandIn(report, ZELSerialType::Response, test::kState));
}

std::string Export(clsZelReport& report, std::int32_t intent = -1) {
  std::string document = "old content";
  EXPECT_TRUE(report.XmlHandler(document, true, intent)) << report.ErrorObject().ErrorMsg();
  test::ExpectNoError(report);
  return document;
}

// Export

TEST(ReportExport, OneLine) {
  clsZelReport report;
  Close(report);
  const std::string expected =
      "<reportEncoded><itemListEncoded profile=\"kasse\">oAEyogRicm90sQMBGQw=</itemListEncoded>"
      "<reportRequest>zQQgJAMVzgIUN9QU1GZUHSrdJ6VfdAc6/W6svhajN/o=</reportRequest>"
      "<reportResponse>wAED</reportResponse></reportEncoded>";
  EXPECT_EQ(Export(report, -1), expected);
  EXPECT_EQ(Export(report, std::numeric_limits<std::int32_t>::min()), expected);
}

TEST(ReportExport, LinesWithoutBlanks) {
  clsZelReport report;
  Close(report);
  EXPECT_EQ(Export(report, 0),
            "<reportEncoded>\r\n"
            "<itemListEncoded profile=\"kasse\">oAEyogRicm90sQMBGQw=</itemListEncoded>\r\n"
            "<reportRequest>zQQgJAMVzgIUN9QU1GZUHSrdJ6VfdAc6/W6svhajN/o=</reportRequest>\r\n"
            "<reportResponse>wAED</reportResponse>\r\n"
            "</reportEncoded>");
}

TEST(ReportExport, FourAndEightBlanksAreTheDefault) {
  clsZelReport report;
  Close(report);
  const std::string expected =
      "    <reportEncoded>\r\n"
      "        <itemListEncoded profile=\"kasse\">oAEyogRicm90sQMBGQw=</itemListEncoded>\r\n"
      "        <reportRequest>zQQgJAMVzgIUN9QU1GZUHSrdJ6VfdAc6/W6svhajN/o=</reportRequest>\r\n"
      "        <reportResponse>wAED</reportResponse>\r\n"
      "    </reportEncoded>";
  std::string document;
  EXPECT_TRUE(report.XmlHandler(document, true));
  EXPECT_EQ(document, expected);
  EXPECT_EQ(Export(report, 4), expected);
}

TEST(ReportExport, OneBlankAndNoItems) {
  clsZelReport report;
  SetDate(report);
  (void)BuildRequest(report, ZelReportType::Unsigned);
  ASSERT_TRUE(HandIn(report, ZELSerialType::Response, test::kState));
  EXPECT_EQ(Export(report, 1),
            " <reportEncoded>\r\n"
            "  <reportRequest>zQQgJAMVzgIUNw==</reportRequest>\r\n"
            "  <reportResponse>wAED</reportResponse>\r\n"
            " </reportEncoded>");
}

TEST(ReportExport, ProfileIsAnAttribute) {
  clsZelReport report;
  report.ZelProfile("ABC");
  Close(report);
  EXPECT_EQ(Export(report), Document("<itemListEncoded profile=\"ABC\">" + itemsText + "</itemListEncoded>" +
                                     RequestElement() + ResponseElement()));
  report.ZelProfile("");
  EXPECT_EQ(Export(report), Document(ItemsElement() + RequestElement() + ResponseElement()));
}

TEST(ReportExport, UnsignedReportWithoutItemsHasNoItemListAndCannotBeImported) {
  clsZelReport report;
  SetDate(report);
  (void)BuildRequest(report, ZelReportType::Unsigned);
  ASSERT_TRUE(HandIn(report, ZELSerialType::Response, test::kState));
  std::string document = Export(report, 4);
  EXPECT_EQ(document.find("<itemListEncoded"), std::string::npos);
  clsZelReport imported;
  EXPECT_FALSE(imported.XmlHandler(document, false));
  test::ExpectError(imported.ErrorObject(), ZELErrorCodes::Err_Ser_DataMissing, true, "DecodeXML",
                    "Es konnten keine Postendaten gefunden werden!");
}

TEST(ReportExport, ItemsAreThereOnceTheirTextWasMade) {
  // A request that has no hash does not make it.
  clsZelReport unsignedReport;
  Close(unsignedReport, ZelReportType::Unsigned);
  EXPECT_EQ(Export(unsignedReport), Document(RequestElement("zQQgJAMVzgIUNw==") + ResponseElement()));
  // Writing the item list does,
  ByteArray items = ByteArray::WithBounds(0, 99);
  EXPECT_TRUE(unsignedReport.BinaryDataGet(ZELSerialType::ItemList, items, 0));
  const std::string expected =
      Document("<itemListEncoded profile=\"kasse\">" + itemsText + "</itemListEncoded>" +
               RequestElement("zQQgJAMVzgIUNw==") + ResponseElement());
  EXPECT_EQ(Export(unsignedReport), expected);
  // and so does reading one.
  clsZelReport read;
  SetDate(read);
  ASSERT_TRUE(HandIn(read, ZELSerialType::ItemList, test::kSaleItems));
  (void)BuildRequest(read, ZelReportType::Unsigned);
  ASSERT_TRUE(HandIn(read, ZELSerialType::Response, test::kState));
  EXPECT_EQ(Export(read), expected);
}

void ExpectNotEnough(clsZelReport& report, std::string_view request, std::string_view response,
                     const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  std::string document = "old content";
  EXPECT_FALSE(report.XmlHandler(document, true));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "EncodeXML",
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

TEST(ReportExport, NeedsRequestAndResponse) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  ExpectNotEnough(report, "0", "0");
  SetDate(report);
  AddLoaves(report);
  (void)BuildRequest(report, ZelReportType::Signed);
  ExpectNotEnough(report, "44", "0");
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"EncodeXML", "EncodeXML"}));
  clsZelReport answered;
  ASSERT_TRUE(HandIn(answered, ZELSerialType::Response, test::kState));
  ExpectNotEnough(answered, "0", "4");
}

// Import

void ExpectClosing(clsZelReport& report) {
  test::ExpectNoError(report);
  ASSERT_EQ(report.ItemCount(), 1);
  const auto* item = dynamic_cast<clsZelItemCash*>(report.ItemI(1).get());
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->Name(), "brot");
  EXPECT_EQ(report.ReportDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 0).Value());
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64, true), "1GZUHSrdJ6VfdAc6/W6svhajN/o=");
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Activated);
  EXPECT_EQ(report.ReportType(), ZelReportType::Undefined);
}

TEST(ReportImport, OfEveryFormOfExport) {
  for (const std::int32_t intent : {-1, 0, 1, 4, 40}) {
    clsZelReport report;
    report.ZelProfile("handel");
    Close(report);
    std::string document = Export(report, intent);
    clsZelReport imported;
    EXPECT_TRUE(imported.XmlHandler(document, false, 7)) << imported.ErrorObject().ErrorMsg();
    ExpectClosing(imported);
    EXPECT_EQ(imported.ZelProfile(), "handel");
    EXPECT_EQ(Export(imported, intent), document);
  }
}

TEST(ReportImport, OfADocumentWithinAnother) {
  clsZelReport report;
  std::string document = "<?xml version=\"1.0\"?>\n<archive>\n" +
                         Document("\n\t" + ItemsElement(" \r\n " + itemsText + "\r\n") + "\n\t" +
                                  RequestElement("\t" + requestText + " ") + ResponseElement()) +
                         "\n</archive>";
  EXPECT_TRUE(report.XmlHandler(document, false)) << report.ErrorObject().ErrorMsg();
  ExpectClosing(report);
}

TEST(ReportImport, ElementsInAnyOrderAndCase) {
  clsZelReport report;
  std::string document =
      "<REPORTENCODED><ReportResponse>" + responseText + "</REPORTRESPONSE><reportrequest>" + requestText +
      "</ReportRequest><ITEMLISTENCODED PROFILE='A1'>" + itemsText + "</itemlistencoded></ReportEncoded>";
  EXPECT_TRUE(report.XmlHandler(document, false)) << report.ErrorObject().ErrorMsg();
  ExpectClosing(report);
  EXPECT_EQ(report.ZelProfile(), "A1");
}

TEST(ReportImport, WithoutProfileKeepsTheOld) {
  clsZelReport report;
  report.ZelProfile("alt");
  std::string document = Document(ItemsElement() + RequestElement() + ResponseElement());
  EXPECT_TRUE(report.XmlHandler(document, false));
  EXPECT_EQ(report.ZelProfile(), "alt");
}

TEST(ReportImport, ReadsSpanAndPin) {
  clsZelReport report;
  std::string document =
      Document(ItemsElement() + RequestElement("zQQgJAMVzgIUN9ADICQB0QMgJAM=") + ResponseElement());
  EXPECT_TRUE(report.XmlHandler(document, false));
  EXPECT_EQ(report.SpanMonthFrom().Value(), Date::FromCivil(2024, 1, 1).Value());
  EXPECT_EQ(report.SpanMonthUpTo().Value(), Date::FromCivil(2024, 3, 31, 23, 59, 59).Value());
  document = Document(ItemsElement() + RequestElement("zQQgJAMVzgIUN8MGMTIzNDU2") + ResponseElement());
  EXPECT_TRUE(report.XmlHandler(document, false));
  EXPECT_EQ(report.TransportPIN(), "123456");
}

/// A document that the report refuses, with the whole error; the document itself stays as it is.
void ExpectImportFailure(clsZelReport& report, const std::string& document, ZELErrorCodes number,
                         std::string_view function, std::string_view message,
                         const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure of the import");
  std::string data = document;
  EXPECT_FALSE(report.XmlHandler(data, false)) << document;
  test::ExpectError(report.ErrorObject(), number, true, function, message, file, line);
  EXPECT_EQ(data, document);
}

/// An element's opening or closing text missing, the two out of order, or nothing between them.
std::vector<std::string> Damaged(const std::string& name, const std::string& content) {
  return {"<" + name + ">" + content, content + "</" + name + ">", "</" + name + "><" + name + ">" + content,
          "<" + name + "></" + name + ">"};
}

TEST(ReportImportFailure, NoReport) {
  clsZelReport report;
  for (const std::string document :
       {"", " ", "text", "<transactionEncoded>x</transactionEncoded>", "<reportEncoded"}) {
    ExpectImportFailure(report, document, ZELErrorCodes::Err_Ser_Failed, "DecodeXML",
                        "Es konnte kein Reportdatensatz gefunden werden.");
  }
}

TEST(ReportImportFailure, ReportIncompleteOrOutOfOrder) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  const std::string inner = ItemsElement() + RequestElement() + ResponseElement();
  for (const std::string& document : Damaged("reportEncoded", inner)) {
    ExpectImportFailure(report, document, ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[GetXmlTag]",
                        "Das Ermitteln des Reports schlug fehl!");
  }
  EXPECT_EQ(
      test::LogSources(log),
      (std::vector<std::string>{"clsZelBaseCoding", "clsZelReport", "clsZelBaseCoding", "clsZelReport",
                                "clsZelBaseCoding", "clsZelReport", "clsZelBaseCoding", "clsZelReport"}));
}

TEST(ReportImportFailure, NoItemList) {
  clsZelReport report;
  AddLoaves(report);
  const std::string rest = RequestElement() + ResponseElement();
  for (const std::string& inner :
       {rest, "<itemListEncoded> \r\n </itemListEncoded>" + rest, std::string(" ")}) {
    ExpectImportFailure(report, Document(inner), ZELErrorCodes::Err_Ser_DataMissing, "DecodeXML",
                        "Es konnten keine Postendaten gefunden werden!");
  }
  EXPECT_EQ(report.ItemCount(), 1);
}

TEST(ReportImportFailure, ItemListIncompleteOrOutOfOrder) {
  clsZelReport report;
  for (const std::string& items : Damaged("itemListEncoded", itemsText)) {
    ExpectImportFailure(report, Document(items + RequestElement() + ResponseElement()),
                        ZELErrorCodes::Err_Ser_DataMissing, "DecodeXML",
                        "Es konnten keine Postendaten gefunden werden!");
  }
}

TEST(ReportImportFailure, ItemListIsNoBase64) {
  clsZelReport report;
  for (const std::string_view text : {"oAEyogRicm90sQMBGQw", "oAEy*gRicm90sQMBGQw=", "ABC"}) {
    ExpectImportFailure(report, Document(ItemsElement(text) + RequestElement() + ResponseElement()),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[FromBase64String]",
                        "Base64-Konvertierung der Report-Postendaten fehlgeschlagen!");
  }
}

TEST(ReportImportFailure, ItemListThatCannotBeDecoded) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  ExpectImportFailure(
      report,
      Document(ItemsElement(test::Base64("A0 01 31 C7 00 A2 01 78")) + RequestElement() + ResponseElement()),
      ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[BinaryDataSet]",
      "Schreiben der Report-Postendaten fehlgeschlagen!");
  // The reason comes first, what the caller sees last.
  EXPECT_EQ(test::LogSources(log),
            (std::vector<std::string>{"clsZelItemCash", "clsZelItemList", "clsZelReport", "clsZelReport"}));
}

TEST(ReportImportFailure, NoRequest) {
  clsZelReport report;
  for (const std::string request : {"", "<reportRequest> </reportRequest>"}) {
    ExpectImportFailure(report, Document(ItemsElement() + request + ResponseElement()),
                        ZELErrorCodes::Err_Ser_DataMissing, "DecodeXML",
                        "Es konnten keine Anfragedaten gefunden werden!");
    EXPECT_EQ(report.ItemCount(), 1);
    EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Undefined);
  }
}

TEST(ReportImportFailure, RequestIncompleteOrOutOfOrder) {
  clsZelReport report;
  for (const std::string& request : Damaged("reportRequest", requestText)) {
    ExpectImportFailure(report, Document(ItemsElement() + request + ResponseElement()),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[GetXmlTag]",
                        "Das Ermitteln der ZEL-Anfrage (Abschluß) schlug fehl!");
  }
}

TEST(ReportImportFailure, RequestIsNoBase64) {
  clsZelReport report;
  for (const std::string_view text : {"AAA", "AA?A", "AAAA AAAA"}) {
    ExpectImportFailure(report, Document(ItemsElement() + RequestElement(text) + ResponseElement()),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML",
                        "Base64-Konvertierung der Anfragedaten fehlgeschlagen!");
  }
}

TEST(ReportImportFailure, RequestThatCannotBeDecoded) {
  clsZelReport report;
  for (const std::string_view hex : {"CD 04 20 24 03 15", "CD 04 20 24 03 15 CE 02 14 37 C6 01 41"}) {
    ExpectImportFailure(report,
                        Document(ItemsElement() + RequestElement(test::Base64(hex)) + ResponseElement()),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[DecodeRqst]",
                        "Dekodieren der Anfragedaten fehlgeschlagen!");
  }
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Undefined);
}

TEST(ReportImportFailure, NoResponse) {
  for (const std::string response : {"", "<reportResponse>\r\n</reportResponse>"}) {
    clsZelReport report;
    ExpectImportFailure(report, Document(ItemsElement() + RequestElement() + response),
                        ZELErrorCodes::Err_Ser_DataMissing, "DecodeXML",
                        "Es konnten keine Antwortdaten gefunden werden!");
    // Items and request are restored.
    EXPECT_EQ(report.ItemCount(), 1);
    EXPECT_EQ(report.ReportDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 0).Value());
  }
}

TEST(ReportImportFailure, ResponseIncompleteOrOutOfOrder) {
  clsZelReport report;
  for (const std::string& response : Damaged("reportResponse", responseText)) {
    ExpectImportFailure(report, Document(ItemsElement() + RequestElement() + response),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML",
                        "Das Ermitteln der ZEL-Antwort (Buchung) schlug fehl!");
  }
}

TEST(ReportImportFailure, ResponseIsNoBase64) {
  clsZelReport report;
  for (const std::string_view text : {"AAAAA", "AA?A"}) {
    ExpectImportFailure(report, Document(ItemsElement() + RequestElement() + ResponseElement(text)),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[FromBase64String]",
                        "Base64-Konvertierung der Antwortdaten fehlgeschlagen!");
  }
}

TEST(ReportImportFailure, ResponseThatCannotBeDecoded) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  ExpectImportFailure(
      report, Document(ItemsElement() + RequestElement() + ResponseElement(test::Base64("CC 01 07 C4 00"))),
      ZELErrorCodes::Err_Ser_Failed, "DecodeXML.DecodeResp", "Dekodieren der Antwortdaten fehlgeschlagen!");
  EXPECT_EQ(report.SequenceNbr(), Currency(7));
  EXPECT_EQ(log.Functions(),
            (std::vector<std::string>{"GetZelTpID", "DecodeResp.[GetZelTpID]", "DecodeXML.DecodeResp"}));
  // Also where the response holds a record that has no place there.
  ExpectImportFailure(
      report, Document(ItemsElement() + RequestElement() + ResponseElement(test::Base64("C6 01 41"))),
      ZELErrorCodes::Err_Ser_Failed, "DecodeXML.DecodeResp", "Dekodieren der Antwortdaten fehlgeschlagen!");
}

TEST(ReportImportFailure, SuccessAfterwardsClearsTheError) {
  clsZelReport report;
  std::string document = "x";
  EXPECT_FALSE(report.XmlHandler(document, false));
  document = Document(ItemsElement() + RequestElement() + ResponseElement());
  EXPECT_TRUE(report.XmlHandler(document, false));
  ExpectClosing(report);
}

}  // namespace
}  // namespace VnZEL10cmn
