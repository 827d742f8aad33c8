// Items of a host's own that write nothing at all.

#include <gtest/gtest.h>

#include <string>

#include "tests/hosts/Support.h"

namespace {

using test::ByteArray;
using test::clsZelItemList;
using test::clsZelReport;
using test::clsZelTransAct;
using test::Scripted;
using test::ZELSerialType;

/// SHA-256 and SHA-1 of no bytes.
constexpr std::string_view kSha256OfNothing = "47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=";
constexpr std::string_view kSha1OfNothing = "2jmj7l5rSw0yVb/vlWAYkK/YBwk=";

TEST(ItemsThatWriteNothing, MakeAListOfNoBytes) {
  clsZelItemList list;
  ASSERT_TRUE(list.AddItem(Scripted("A", "")));
  ASSERT_TRUE(list.AddItem(Scripted("B", "")));
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_TRUE(list.BinaryDataGet(data, start));
  EXPECT_EQ(start, 0);
  EXPECT_EQ(data.UBound(), 255) << "the reserve that every item has";
  std::string hash;
  EXPECT_TRUE(list.GetItemHash(true, false, false, hash));
  EXPECT_EQ(hash, kSha256OfNothing);
}

TEST(BookingOfItemsThatWriteNothing, HasAnEmptyItemListTextAndCannotBeExported) {
  clsZelTransAct booking;
  test::Prepare(booking);
  ASSERT_TRUE(booking.AddItem(Scripted("A", "")));
  (void)test::BuildRequest(booking);
  EXPECT_EQ(booking.ItemHash(), kSha256OfNothing);
  ASSERT_TRUE(test::HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  std::string document = "unverändert";
  EXPECT_FALSE(booking.XmlHandler(document, true));
  // The request has 54 bytes: date, time, operator, hash and currency; the response has 62.
  test::ExpectError(booking.ErrorObject(), 9301, true, "EncodeXML",
                    "Der XML-Buchungssatz konnte nicht erstellt werden:\r\n"
                    "Es liegen nicht genug Daten vor!\r\n"
                    "    Postenliste .....: 0 Zeichen\r\n"
                    "    ZEL-Anfrage .....: 72 Zeichen\r\n"
                    "    ZEL-Antwort .....: 84 Zeichen");
  EXPECT_EQ(document, "unverändert");
}

TEST(BookingOfItemsThatWriteNothing, ReplacesTheTextOfEarlierItems) {
  clsZelTransAct booking;
  test::FillSale(booking);
  (void)test::BuildRequest(booking);
  ASSERT_TRUE(booking.ClearItems());
  ASSERT_TRUE(booking.AddItem(Scripted("A", "")));
  (void)test::BuildRequest(booking);
  ASSERT_TRUE(test::HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  std::string document;
  EXPECT_FALSE(booking.XmlHandler(document, true));
  EXPECT_NE(booking.ErrorObject().ErrorMsg().find("    Postenliste .....: 0 Zeichen"), std::string::npos);
}

TEST(BookingOfItemsThatWriteNothing, HandsOutNoBytes) {
  clsZelTransAct booking;
  test::Prepare(booking);
  ASSERT_TRUE(booking.AddItem(Scripted("A", "")));
  ByteArray data = test::FromHex("01 02 03");
  std::int32_t length = -1;
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::ItemList, data, 7, &length));
  EXPECT_EQ(length, 0);
  EXPECT_EQ(test::ToHex(data), "01 02 03");
  EXPECT_EQ(booking.ItemHash(), kSha256OfNothing);
}

TEST(BookingOfItemsOfWhichOneWritesNothing, HoldsTheRecordsOfTheOther) {
  clsZelTransAct booking;
  test::Prepare(booking);
  ASSERT_TRUE(booking.AddItem(Scripted("A", "")));
  ASSERT_TRUE(booking.AddItem(Scripted("B")));
  ASSERT_TRUE(booking.AddItem(Scripted("C", "")));
  (void)test::BuildRequest(booking);
  EXPECT_EQ(booking.ItemHash(), test::Sha256Text(test::kAnyItem));
  ASSERT_TRUE(test::HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  std::string document;
  EXPECT_TRUE(booking.XmlHandler(document, true));
  EXPECT_NE(document.find("<itemListEncoded>oAExogF4</itemListEncoded>"), std::string::npos) << document;
}

TEST(ReportOfItemsThatWriteNothing, IsExportedWithoutAnItemList) {
  clsZelReport report;
  report.ReportDate(test::Date::FromCivil(2024, 3, 15, 14, 37, 25));
  ASSERT_TRUE(report.AddItem(Scripted("A", "")));
  ByteArray request;
  ASSERT_TRUE(report.BinaryDataGet(ZELSerialType::Request, request, 0));
  EXPECT_EQ(report.GetItemHash(test::ZELHashFmt::Base64, true), kSha1OfNothing);
  ASSERT_TRUE(report.BinaryDataSet(ZELSerialType::Response, test::FromHex("C0 01 03"), 0));
  std::string document;
  EXPECT_TRUE(report.XmlHandler(document, true, -1));
  EXPECT_EQ(document,
            "<reportEncoded><reportRequest>zQQgJAMVzgIUN9QU2jmj7l5rSw0yVb/vlWAYkK/YBwk=</reportRequest>"
            "<reportResponse>wAED</reportResponse></reportEncoded>");
}

}  // namespace
