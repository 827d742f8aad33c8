// What an imported report says of its item list.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::clsZelReport;
using test::clsZelTransAct;
using test::Entry;
using test::LogEntry;
using test::ZELErrorCodes;

constexpr std::string_view kNoItems = "Es konnten keine Postendaten gefunden werden!";

// Date and time; state "activated".
const std::string kRest =
    "<reportRequest>zQQgJAMVzgIUNw==</reportRequest><reportResponse>wAED</reportResponse>";

std::string Document(const std::string& items) {
  return "<reportEncoded>" + items + kRest + "</reportEncoded>";
}

void ExpectNoItems(const std::string& items) {
  clsZelReport report;
  ASSERT_TRUE(report.AddItem(test::CashItem("Brot", 2)));
  std::string document = Document(items);
  EXPECT_FALSE(report.XmlHandler(document, false)) << items;
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Ser_DataMissing, true, "DecodeXML", kNoItems);
  EXPECT_EQ(report.ItemCount(), 1) << "the items are still those from before";
}

TEST(ImportedReport, WithoutAnItemListElementIsMissingItsItems) {
  ExpectNoItems("");
  ExpectNoItems("<itemList>oAExogF4</itemList>");
}

TEST(ImportedReport, WithAnEmptyItemListElementIsMissingItsItems) {
  ExpectNoItems("<itemListEncoded></itemListEncoded>");
  ExpectNoItems("<itemListEncoded profile=\"kasse\"></itemListEncoded>");
  ExpectNoItems("<itemListEncoded> \r\n </itemListEncoded>");
  ExpectNoItems("<itemListEncoded>***</itemListEncoded>");
}

TEST(ImportedReport, WithoutTheOpeningTextOfItsItemListIsMissingItsItems) {
  ExpectNoItems("oAExogF4</itemListEncoded>");
}

TEST(ImportedReport, WithoutTheClosingTextOfItsItemListIsMissingItsItems) {
  ExpectNoItems("<itemListEncoded>oAExogF4");
  ExpectNoItems("<itemListEncoded");
}

TEST(ImportedReport, WithItsItemListOutOfOrderIsMissingItsItems) {
  ExpectNoItems("</itemListEncoded>oAExogF4<itemListEncoded>");
}

TEST(ImportedReport, LeavesTheReasonOfTheMissingItemsInTheLog) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  for (const std::string items : {"", "<itemListEncoded>oAExogF4"}) {
    std::string document = Document(items);
    EXPECT_FALSE(report.XmlHandler(document, false));
  }
  EXPECT_EQ(test::LogEntries(log),
            (std::vector<LogEntry>{Entry("clsZelBaseCoding", "GetXmlTag", 9211,
                                         "Das angeforderte XML-Tag konnte nicht gefunden werden!\r\n"
                                         "    XML-Tag ..........: <itemListEncoded"),
                                   Entry("clsZelReport", "DecodeXML", 9302, kNoItems),
                                   Entry("clsZelBaseCoding", "GetXmlTag", 9211,
                                         "Das angeforderte XML-Tag ist nicht vollständig!\r\n"
                                         "    XML-Tag ..........: <itemListEncoded"),
                                   Entry("clsZelReport", "DecodeXML", 9302, kNoItems)}));
}

TEST(ImportedReport, WithAnItemListThatIsNoBase64SaysSo) {
  clsZelReport report;
  std::string document = Document("<itemListEncoded>oAEx.gF4</itemListEncoded>");
  EXPECT_FALSE(report.XmlHandler(document, false));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "DecodeXML.[FromBase64String]",
                    "Base64-Konvertierung der Report-Postendaten fehlgeschlagen!");
}

TEST(ImportedBooking, TellsADamagedItemListFromAMissingOne) {
  clsZelTransAct booking;
  std::string damaged = "<transactionEncoded><itemListEncoded>oAExogF4</transactionEncoded>";
  EXPECT_FALSE(booking.XmlHandler(damaged, false));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "DecodeXML",
                    "Das Ermitteln der Postenliste schlug fehl!");
  std::string missing = "<transactionEncoded> </transactionEncoded>";
  EXPECT_FALSE(booking.XmlHandler(missing, false));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_DataMissing, true, "DecodeXML", kNoItems);
}

}  // namespace
