// The XML document of a booking: byte by byte out, and in with every kind of damage.

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/booking/clsZelTransAct.h"
#include "tests/booking/Support.h"

namespace VnZEL10cmn {
namespace {

using test::BuildRequest;
using test::FillSale;
using test::HandIn;

Currency Scaled(std::int64_t scaled) { return Currency::FromScaled(scaled); }

// The three parts of the worked example as Base64 text.
constexpr std::string_view kItemsText = "oAEyogRicm90sQMBGQw=";
std::string RequestText() { return test::Base64(test::SaleRequest()); }
std::string ResponseText() { return test::Base64(test::kSaleResponse); }

void SignSale(clsZelTransAct& booking) {
  FillSale(booking);
  (void)BuildRequest(booking);
  ASSERT_TRUE(HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
}

std::string ItemsElement(std::string_view text = kItemsText) {
  return "<itemListEncoded>" + std::string(text) + "</itemListEncoded>";
}
std::string RequestElement(std::string_view text) {
  return "<transactionRequest>" + std::string(text) + "</transactionRequest>";
}
std::string RequestElement() { return RequestElement(RequestText()); }
std::string ResponseElement(std::string_view text) {
  return "<transactionResponse>" + std::string(text) + "</transactionResponse>";
}
std::string ResponseElement() { return ResponseElement(ResponseText()); }
std::string Document(std::string_view inner) {
  return "<transactionEncoded>" + std::string(inner) + "</transactionEncoded>";
}

/// A document that the booking refuses, with the whole error; the document itself stays as it is.
void ExpectImportFailure(clsZelTransAct& booking, const std::string& document, ZELErrorCodes number,
                         std::string_view function, std::string_view message,
                         const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure of the import");
  std::string data = document;
  EXPECT_FALSE(booking.XmlHandler(data, false));
  test::ExpectError(booking.ErrorObject(), number, true, function, message, file, line);
  EXPECT_EQ(data, document);
}

void ExpectSale(clsZelTransAct& booking) {
  test::ExpectNoError(booking);
  ASSERT_EQ(booking.ItemCount(), 1);
  const auto* item = dynamic_cast<clsZelItemCash*>(booking.ItemI(1).get());
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->Quantity(), Currency(2));
  EXPECT_EQ(item->Name(), "brot");
  EXPECT_EQ(item->Price(1), Scaled(119000));
  EXPECT_EQ(booking.TransactionDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 0).Value());
  EXPECT_EQ(booking.Operator(), "Anna");
  EXPECT_EQ(booking.CurrencyCode(), 978);
  EXPECT_EQ(booking.ItemHash(), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
  EXPECT_EQ(booking.ZelRqstData(), RequestText());
  EXPECT_EQ(booking.ZelRespData(), ResponseText());
  EXPECT_EQ(booking.ZelRespTpID(), "DE1");
  EXPECT_EQ(booking.ZelRespTpIDNr(), Currency(2));
  EXPECT_EQ(booking.ZelRespSeqNr(), Currency(300));
  EXPECT_EQ(booking.ZelRespSignature(), test::kSaleSignature);
  Currency turnover;
  Currency vat;
  Currency rate;
  EXPECT_TRUE(booking.GetContainerValues(1, turnover, vat, rate));
  EXPECT_EQ(turnover, Scaled(119000));
  EXPECT_EQ(vat, Scaled(19000));
  EXPECT_EQ(rate, Currency(19));
}

// Export

TEST(TransActExport, OneLine) {
  clsZelTransAct booking;
  SignSale(booking);
  std::string document = "old content";
  EXPECT_TRUE(booking.XmlHandler(document, true, -1));
  test::ExpectNoError(booking);
  EXPECT_EQ(document,
            "<transactionEncoded><itemListEncoded>oAEyogRicm90sQMBGQw=</itemListEncoded>"
            "<transactionRequest>" +
                RequestText() +
                "</transactionRequest>"
                "<transactionResponse>" +
                ResponseText() + "</transactionResponse></transactionEncoded>");
  std::string other;
  EXPECT_TRUE(booking.XmlHandler(other, true, -2147483647 - 1));
  EXPECT_EQ(other, document);
}

TEST(TransActExport, LinesWithoutBlanks) {
  clsZelTransAct booking;
  SignSale(booking);
  std::string document;
  EXPECT_TRUE(booking.XmlHandler(document, true, 0));
  EXPECT_EQ(document,
            "<transactionEncoded>\r\n"
            "<itemListEncoded>oAEyogRicm90sQMBGQw=</itemListEncoded>\r\n"
            "<transactionRequest>" +
                RequestText() +
                "</transactionRequest>\r\n"
                "<transactionResponse>" +
                ResponseText() +
                "</transactionResponse>\r\n"
                "</transactionEncoded>");
}

TEST(TransActExport, FourAndEightBlanksAreTheDefault) {
  clsZelTransAct booking;
  SignSale(booking);
  const std::string expected =
      "    <transactionEncoded>\r\n"
      "        <itemListEncoded>oAEyogRicm90sQMBGQw=</itemListEncoded>\r\n"
      "        <transactionRequest>" +
      RequestText() +
      "</transactionRequest>\r\n"
      "        <transactionResponse>" +
      ResponseText() +
      "</transactionResponse>\r\n"
      "    </transactionEncoded>";
  std::string document;
  EXPECT_TRUE(booking.XmlHandler(document, true));
  EXPECT_EQ(document, expected);
  EXPECT_TRUE(booking.XmlHandler(document, true, 4));
  EXPECT_EQ(document, expected);
}

TEST(TransActExport, OneBlank) {
  clsZelTransAct booking;
  SignSale(booking);
  std::string document;
  EXPECT_TRUE(booking.XmlHandler(document, true, 1));
  EXPECT_EQ(document,
            " <transactionEncoded>\r\n"
            "  <itemListEncoded>oAEyogRicm90sQMBGQw=</itemListEncoded>\r\n"
            "  <transactionRequest>" +
                RequestText() +
                "</transactionRequest>\r\n"
                "  <transactionResponse>" +
                ResponseText() +
                "</transactionResponse>\r\n"
                " </transactionEncoded>");
}

TEST(TransActExport, ProfileIsNotWritten) {
  clsZelTransAct booking;
  SignSale(booking);
  booking.ZelProfile("handel");
  std::string document;
  EXPECT_TRUE(booking.XmlHandler(document, true, -1));
  EXPECT_EQ(document.find("handel"), std::string::npos);
}

void ExpectNotEnough(clsZelTransAct& booking, int items, int request, int response,
                     const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure of the export");
  std::string document = "kept";
  EXPECT_FALSE(booking.XmlHandler(document, true));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "EncodeXML",
                    "Der XML-Buchungssatz konnte nicht erstellt werden:\r\n"
                    "Es liegen nicht genug Daten vor!\r\n"
                    "    Postenliste .....: " +
                        std::to_string(items) +
                        " Zeichen\r\n"
                        "    ZEL-Anfrage .....: " +
                        std::to_string(request) +
                        " Zeichen\r\n"
                        "    ZEL-Antwort .....: " +
                        std::to_string(response) + " Zeichen",
                    file, line);
  EXPECT_EQ(document, "kept");
}

TEST(TransActExport, NeedsItemsRequestAndResponse) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  ExpectNotEnough(booking, 0, 0, 0);
  FillSale(booking);
  ExpectNotEnough(booking, 0, 0, 0);
  ByteArray items = ByteArray::WithBounds(0, 13);
  ASSERT_TRUE(booking.BinaryDataGet(ZELSerialType::ItemList, items, 0));
  ExpectNotEnough(booking, 20, 0, 0);
  (void)BuildRequest(booking);
  ExpectNotEnough(booking, 20, 92, 0);
  EXPECT_EQ(log.Functions(), std::vector<std::string>(4, "EncodeXML"));

  clsZelTransAct answered;
  ASSERT_TRUE(HandIn(answered, ZELSerialType::Response, test::kSaleResponse));
  ExpectNotEnough(answered, 0, 0, 84);

  clsZelTransAct withoutItems;
  ASSERT_TRUE(HandIn(withoutItems, ZELSerialType::Request, test::SaleRequest()));
  ASSERT_TRUE(HandIn(withoutItems, ZELSerialType::Response, test::kSaleResponse));
  ExpectNotEnough(withoutItems, 0, 92, 84);
}

// Import

TEST(TransActImport, OfEveryFormOfExport) {
  for (const std::int32_t intent : {-1, 0, 1, 4, 40}) {
    clsZelTransAct booking;
    SignSale(booking);
    std::string document;
    ASSERT_TRUE(booking.XmlHandler(document, true, intent));
    clsZelTransAct imported;
    EXPECT_TRUE(imported.XmlHandler(document, false)) << imported.ErrorObject().ErrorMsg();
    ExpectSale(imported);
    std::string again;
    EXPECT_TRUE(imported.XmlHandler(again, true, intent));
    EXPECT_EQ(again, document);
  }
}

TEST(TransActImport, OfADocumentWithinAnother) {
  clsZelTransAct booking;
  std::string document = "<?xml version=\"1.0\"?>\n<archive>\n" +
                         Document("\n\t" + ItemsElement(" \r\n " + std::string(kItemsText) + "\r\n") +
                                  "\n\t" + RequestElement("\t" + RequestText() + " ") + ResponseElement()) +
                         "\n</archive>";
  EXPECT_TRUE(booking.XmlHandler(document, false)) << booking.ErrorObject().ErrorMsg();
  ExpectSale(booking);
}

TEST(TransActImport, ElementsInAnyOrderAndCase) {
  clsZelTransAct booking;
  std::string document = "<TRANSACTIONENCODED><TransactionResponse>" + ResponseText() +
                         "</TRANSACTIONRESPONSE><transactionrequest>" + RequestText() +
                         "</TransactionRequest><ITEMLISTENCODED>" + std::string(kItemsText) +
                         "</itemlistencoded></TransactionEncoded>";
  EXPECT_TRUE(booking.XmlHandler(document, false)) << booking.ErrorObject().ErrorMsg();
  ExpectSale(booking);
}

TEST(TransActImport, LineBreaksWithinTheText) {
  clsZelTransAct booking;
  std::string document =
      Document(ItemsElement("oAEyogRi\r\ncm90sQMB\nGQw=") + RequestElement() + ResponseElement());
  EXPECT_TRUE(booking.XmlHandler(document, false)) << booking.ErrorObject().ErrorMsg();
  ExpectSale(booking);
}

TEST(TransActImport, ProfileOfTheItemList) {
  clsZelTransAct booking;
  std::string document = Document("<itemListEncoded profile='handel'>" + std::string(kItemsText) +
                                  "</itemListEncoded>" + RequestElement() + ResponseElement());
  EXPECT_TRUE(booking.XmlHandler(document, false));
  EXPECT_EQ(booking.ZelProfile(), "handel");
  ExpectSale(booking);
  document = Document(ItemsElement() + RequestElement() + ResponseElement());
  EXPECT_TRUE(booking.XmlHandler(document, false));
  EXPECT_EQ(booking.ZelProfile(), "handel");
  document = Document("<itemListEncoded profile=\"kasse 2\" version=\"1\">" + std::string(kItemsText) +
                      "</itemListEncoded>" + RequestElement() + ResponseElement());
  EXPECT_TRUE(booking.XmlHandler(document, false));
  EXPECT_EQ(booking.ZelProfile(), "kasse 2");
}

TEST(TransActImport, ReplacesWhatTheBookingHeld) {
  clsZelTransAct booking;
  SignSale(booking);
  ASSERT_TRUE(booking.AddItem(test::CashItem("x", 1)));
  booking.Operator("Bert");
  booking.CurrencyCode(756);
  std::string document = Document(ItemsElement() + RequestElement() + ResponseElement());
  EXPECT_TRUE(booking.XmlHandler(document, false));
  ExpectSale(booking);
}

TEST(TransActImport, TheRequestsHashStandsForTheItems) {
  clsZelTransAct booking;
  std::string document =
      Document(ItemsElement(test::Base64("A0 01 31 A2 01 78")) + RequestElement() + ResponseElement());
  EXPECT_TRUE(booking.XmlHandler(document, false));
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base64, true), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base64),
            test::Base64(test::ItemSha256(test::FromHex("A0 01 31 A2 01 78"))));
}

// Damage: the outer element

TEST(TransActImportFailure, NoTransaction) {
  clsZelTransAct booking;
  for (const std::string document :
       {"", " ", "text", "<reportEncoded>x</reportEncoded>", "<transactionEncoded"}) {
    ExpectImportFailure(booking, document, ZELErrorCodes::Err_Ser_Failed, "DecodeXML",
                        "Es konnte kein Transaktionsdatensatz gefunden werden");
  }
}

TEST(TransActImportFailure, TransactionIncompleteOrOutOfOrder) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  const std::string inner = ItemsElement() + RequestElement() + ResponseElement();
  for (const std::string& document : {"<transactionEncoded>" + inner, inner + "</transactionEncoded>",
                                      "</transactionEncoded>" + inner + "<transactionEncoded>",
                                      std::string("<transactionEncoded></transactionEncoded>")}) {
    ExpectImportFailure(booking, document, ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[GetXmlTag]",
                        "Das Ermitteln der Transaktion schlug fehl!");
  }
  const std::vector<std::string> sources = test::LogSources(log);
  ASSERT_EQ(sources.size(), 8U);
  for (std::size_t i = 0; i < sources.size(); i += 2) {
    EXPECT_EQ(sources[i], "clsZelBaseCoding");
    EXPECT_EQ(sources[i + 1], "clsZelTransAct");
  }
}

// Damage: the item list

TEST(TransActImportFailure, NoItemList) {
  clsZelTransAct booking;
  SignSale(booking);
  const std::string rest = RequestElement() + ResponseElement();
  for (const std::string& inner : {rest, " " + rest, "<itemListEncoded> \r\n </itemListEncoded>" + rest,
                                   std::string(" "), "<itemListEncoded>!</itemListEncoded>" + rest}) {
    ExpectImportFailure(booking, Document(inner), ZELErrorCodes::Err_Ser_DataMissing, "DecodeXML",
                        "Es konnten keine Postendaten gefunden werden!");
  }
  EXPECT_EQ(booking.ItemCount(), 1);
}

TEST(TransActImportFailure, ItemListOutsideTheTransaction) {
  clsZelTransAct booking;
  ExpectImportFailure(booking, ItemsElement() + Document(RequestElement() + ResponseElement()),
                      ZELErrorCodes::Err_Ser_DataMissing, "DecodeXML",
                      "Es konnten keine Postendaten gefunden werden!");
}

TEST(TransActImportFailure, ItemListIncompleteOrOutOfOrder) {
  clsZelTransAct booking;
  const std::string rest = RequestElement() + ResponseElement();
  for (const std::string& inner : {"<itemListEncoded>" + std::string(kItemsText) + rest,
                                   std::string(kItemsText) + "</itemListEncoded>" + rest,
                                   "</itemListEncoded><itemListEncoded>" + std::string(kItemsText) + rest,
                                   "<itemListEncoded></itemListEncoded>" + rest}) {
    ExpectImportFailure(booking, Document(inner), ZELErrorCodes::Err_Ser_Failed, "DecodeXML",
                        "Das Ermitteln der Postenliste schlug fehl!");
  }
}

TEST(TransActImportFailure, ItemListIsNoBase64) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  const std::string rest = RequestElement() + ResponseElement();
  for (const std::string text : {"oAEyogRicm90sQMBGQw", "oAEy*gRicm90sQMBGQw=", "oAEyogRicm90sQMBG Qw", "ABC",
                                 "oAEy-gRi", "====", "oAEyogRi\tcm90sQMBGQw="}) {
    ExpectImportFailure(booking, Document(ItemsElement(text) + rest), ZELErrorCodes::Err_Ser_Failed,
                        "DecodeXML.[FromBase64String]",
                        "Base64-Konvertierung der Postendaten fehlgeschlagen!");
  }
  const std::vector<std::string> sources = test::LogSources(log);
  ASSERT_GE(sources.size(), 2U);
  EXPECT_EQ(sources[0], "clsHelper01");
  EXPECT_EQ(sources[1], "clsZelTransAct");
}

TEST(TransActImportFailure, ItemListThatCannotBeDecoded) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  ExpectImportFailure(
      booking,
      Document(ItemsElement(test::Base64("A0 01 31 C7 00 A2 01 78")) + RequestElement() + ResponseElement()),
      ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[BinaryDataSet]",
      "Schreiben der Postendaten fehlgeschlagen!");
  EXPECT_EQ(booking.ItemCount(), 0);
  EXPECT_EQ(booking.ZelRqstData(), "");
  // The reason comes first, what the caller sees last.
  EXPECT_EQ(test::LogSources(log), (std::vector<std::string>{"clsZelItemCash", "clsZelItemList",
                                                             "clsZelTransAct", "clsZelTransAct"}));
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"BinaryDataSet", "BinaryDataSet",
                                                       "DecodeItems.[mObjItemList.BinaryDataSet]",
                                                       "DecodeXML.[BinaryDataSet]"}));
}

// Damage: the request

TEST(TransActImportFailure, NoRequest) {
  clsZelTransAct booking;
  for (const std::string& request :
       {std::string(), std::string("<transactionRequest> </transactionRequest>")}) {
    ExpectImportFailure(booking, Document(ItemsElement() + request + ResponseElement()),
                        ZELErrorCodes::Err_Ser_DataMissing, "DecodeXML",
                        "Es konnten keine Anfragedaten gefunden werden!");
    EXPECT_EQ(booking.ItemCount(), 1);
    EXPECT_EQ(booking.ZelRqstData(), "");
  }
}

TEST(TransActImportFailure, RequestIncompleteOrOutOfOrder) {
  clsZelTransAct booking;
  for (const std::string& request :
       {"<transactionRequest>" + RequestText(), RequestText() + "</transactionRequest>",
        "</transactionRequest><transactionRequest>" + RequestText(),
        std::string("<transactionRequest></transactionRequest>")}) {
    ExpectImportFailure(booking, Document(ItemsElement() + request + ResponseElement()),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML",
                        "Das Ermitteln der ZEL-Anfrage (Buchung) schlug fehl!");
  }
}

TEST(TransActImportFailure, RequestIsNoBase64) {
  clsZelTransAct booking;
  for (const std::string text : {"AAA", "AA?A", "AAAA AAAA"}) {
    ExpectImportFailure(booking, Document(ItemsElement() + RequestElement(text) + ResponseElement()),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML",
                        "Base64-Konvertierung der Anfragedaten fehlgeschlagen!");
  }
}

TEST(TransActImportFailure, RequestThatCannotBeDecoded) {
  clsZelTransAct booking;
  ExpectImportFailure(
      booking,
      Document(ItemsElement() + RequestElement(test::Base64("CD 04 20 24 03 15 CE 02 14 37")) +
               ResponseElement()),
      ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[DecodeRqst]", "Dekodieren der Anfragedaten fehlgeschlagen!");
  EXPECT_EQ(booking.TransactionDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 0).Value());
  EXPECT_EQ(booking.ZelRespData(), "");
  // Also where the request holds a record that has no place there.
  ExpectImportFailure(booking,
                      Document(ItemsElement() + RequestElement(test::Base64(test::SaleRequest() + " E7 00")) +
                               ResponseElement()),
                      ZELErrorCodes::Err_Ser_Failed, "DecodeXML.[DecodeRqst]",
                      "Dekodieren der Anfragedaten fehlgeschlagen!");
}

// Damage: the response

TEST(TransActImportFailure, NoResponse) {
  for (const std::string& response :
       {std::string(), std::string("<transactionResponse>\r\n</transactionResponse>")}) {
    clsZelTransAct booking;
    ExpectImportFailure(booking, Document(ItemsElement() + RequestElement() + response),
                        ZELErrorCodes::Err_Ser_DataMissing, "DecodeXML",
                        "Es konnten keine Antwortdaten gefunden werden!");
    // Items and request are restored.
    EXPECT_EQ(booking.ItemCount(), 1);
    EXPECT_EQ(booking.Operator(), "Anna");
    EXPECT_EQ(booking.ZelRqstData(), RequestText());
    EXPECT_EQ(booking.ZelRespData(), "");
    EXPECT_EQ(booking.ZelRespSeqNr(), Currency(0));
  }
}

TEST(TransActImportFailure, ResponseIncompleteOrOutOfOrder) {
  clsZelTransAct booking;
  for (const std::string& response :
       {"<transactionResponse>" + ResponseText(), ResponseText() + "</transactionResponse>",
        "</transactionResponse><transactionResponse>" + ResponseText(),
        std::string("<transactionResponse></transactionResponse>")}) {
    ExpectImportFailure(booking, Document(ItemsElement() + RequestElement() + response),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML",
                        "Das Ermitteln der ZEL-Antwort (Buchung) schlug fehl!");
  }
}

TEST(TransActImportFailure, ResponseIsNoBase64) {
  clsZelTransAct booking;
  for (const std::string text : {"AAAAA", "AA?A"}) {
    ExpectImportFailure(booking, Document(ItemsElement() + RequestElement() + ResponseElement(text)),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeXML",
                        "Base64-Konvertierung der Antwortdaten fehlgeschlagen!");
  }
}

TEST(TransActImportFailure, ResponseThatCannotBeDecoded) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  ExpectImportFailure(
      booking,
      Document(ItemsElement() + RequestElement() + ResponseElement(test::Base64("C4 01 58 C5 01 09"))),
      ZELErrorCodes::Err_Ser_Failed, "DecodeXML.DecodeResp", "Dekodieren der Antwortdaten fehlgeschlagen!");
  EXPECT_EQ(booking.ZelRespTpID(), "X");
  EXPECT_EQ(booking.ZelRespTpIDNr(), Currency(9));
  EXPECT_EQ(booking.ZelRespData(), "");
  EXPECT_EQ(test::LogSources(log),
            (std::vector<std::string>{"clsZelBaseCoding", "clsZelTransAct", "clsZelTransAct"}));
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"GetZelCounter", "DecodeResp.[GetZelCounter]",
                                                       "DecodeXML.DecodeResp"}));
}

TEST(TransActImportFailure, SuccessAfterwardsClearsTheError) {
  clsZelTransAct booking;
  std::string document = "x";
  EXPECT_FALSE(booking.XmlHandler(document, false));
  document = Document(ItemsElement() + RequestElement() + ResponseElement());
  EXPECT_TRUE(booking.XmlHandler(document, false));
  ExpectSale(booking);
}

}  // namespace
}  // namespace VnZEL10cmn
