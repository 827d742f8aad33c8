// Building the request: its bytes, what it leaves in the booking, and every failure on the way.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/booking/clsZelTransAct.h"
#include "tests/booking/Support.h"

namespace VnZEL10cmn {
namespace {

using test::BuildRequest;
using test::FakeItem;
using test::FillSale;
using test::FromHex;
using test::HandIn;
using test::ToHex;

Currency Scaled(std::int64_t scaled) { return Currency::FromScaled(scaled); }

/// A booking that lacks nothing but items.
void Prepare(clsZelTransAct& booking) {
  booking.VatList(std::make_shared<clsZelVatList>());
  booking.TransactionDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
  booking.Operator("Anna");
}

/// Its request with an item list and what follows the currency record.
std::string Request(std::string_view items, std::string_view tail) {
  std::string hex =
      std::string(test::kSaleHead) + " " + ToHex(test::ItemSha256(FromHex(items))) + " C8 02 03 D2";
  if (!tail.empty()) {
    hex += " ";
    hex += tail;
  }
  return hex;
}

void ExpectContainer(clsZelTransAct& booking, std::int32_t number, Currency turnover, Currency vat,
                     Currency rate, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected container");
  Currency actualTurnover;
  Currency actualVat;
  Currency actualRate;
  EXPECT_TRUE(booking.GetContainerValues(number, actualTurnover, actualVat, actualRate));
  EXPECT_EQ(actualTurnover.Scaled(), turnover.Scaled());
  EXPECT_EQ(actualVat.Scaled(), vat.Scaled());
  EXPECT_EQ(actualRate.Scaled(), rate.Scaled());
}

/// A failed request: the whole error, and the caller's array as it was.
void ExpectRequestFailure(clsZelTransAct& booking, ZELErrorCodes number, std::string_view function,
                          std::string_view reason, const char* file = __builtin_FILE(),
                          int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure of the request");
  ByteArray data = FromHex("01 02 03");
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, data, 1));
  test::ExpectError(booking.ErrorObject(), number, true, function,
                    "Buchung: Das Erstellen der Anfrage ist nicht möglich!\r\n" + std::string(reason), file,
                    line);
  EXPECT_EQ(ToHex(data), "01 02 03");
}

TEST(TransActRequest, WholeRequestByteByByte) {
  clsZelTransAct booking;
  FillSale(booking);
  ByteArray data = FromHex("AA BB");
  std::int32_t length = -1;
  ASSERT_TRUE(booking.BinaryDataGet(ZELSerialType::Request, data, 17, &length))
      << booking.ErrorObject().ErrorMsg();
  test::ExpectNoError(booking);
  EXPECT_EQ(length, 69);
  EXPECT_EQ(data.LBound(), 0);
  EXPECT_EQ(data.UBound(), 68);
  EXPECT_EQ(ToHex(data),
            "CD 04 20 24 03 15 "  // 15 March 2024
            "CE 02 14 37 "        // 14:37
            "C6 04 41 6E 6E 61 "  // Anna
            "C7 20 DB 83 31 5B C2 05 40 8C 53 6D 18 A7 56 21 B5 68 "
            "2C 71 D4 EA CD 2E 83 4E 7C D5 76 63 53 78 3E 6D "  // item hash
            "C8 02 03 D2 "                                      // euro
            "E1 0D D8 03 01 19 0C DA 02 19 0C DB 02 19 00");    // 11.90, VAT 1.90 at 19 percent
  EXPECT_EQ(booking.ItemHash(), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
  EXPECT_EQ(booking.ZelRqstData(), test::Base64(data));
}

// Bytes 80 to 9F of the items are hashed as another byte: here the 80 of the amount 8.00 as AC.
TEST(TransActRequest, HashOfItemsWithHighBytes) {
  clsZelTransAct booking;
  Prepare(booking);
  ASSERT_TRUE(booking.AddItem(test::CashItem("Wein", 8)));
  EXPECT_EQ(
      ToHex(BuildRequest(booking)),
      std::string(test::kSaleHead) +
          " 1A ED B8 27 F3 F0 DB 25 96 B8 6F E0 69 F0 DE 13 BB DC 77 B0 09 16 EF 0D 7F CF 29 D0 5E 95 78 44 "
          "C8 02 03 D2 E1 0C D8 02 80 0C DA 02 12 8C DB 02 19 00");
}

TEST(TransActRequest, Sha1Hash) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.UseSHA256(false);
  EXPECT_EQ(ToHex(BuildRequest(booking)),
            "CD 04 20 24 03 15 CE 02 14 37 C6 04 41 6E 6E 61 "
            "C7 14 D4 66 54 1D 2A DD 27 A5 5F 74 07 3A FD 6E AC BE 16 A3 37 FA " +
                std::string(test::kSaleTail));
  EXPECT_EQ(booking.ItemHash(), "1GZUHSrdJ6VfdAc6/W6svhajN/o=");
}

TEST(TransActRequest, FlagsStandBetweenCurrencyAndContainers) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.IsTaxExcl(true);
  booking.IsTraining(true);
  booking.IsDeliveryNote(true);
  // VAT on top of 11.90: 2.26.
  EXPECT_EQ(ToHex(BuildRequest(booking)),
            Request(test::kSaleItems, "C9 00 CA 00 D7 00 E1 0D D8 03 01 19 0C DA 02 22 6C DB 02 19 00"));
}

TEST(TransActRequest, EachFlagAlone) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.IsTraining(true);
  EXPECT_EQ(ToHex(BuildRequest(booking)),
            Request(test::kSaleItems, "CA 00 E1 0D D8 03 01 19 0C DA 02 19 0C DB 02 19 00"));
  booking.IsTraining(false);
  booking.IsDeliveryNote(true);
  EXPECT_EQ(ToHex(BuildRequest(booking)),
            Request(test::kSaleItems, "D7 00 E1 0D D8 03 01 19 0C DA 02 19 0C DB 02 19 00"));
  booking.IsDeliveryNote(false);
  booking.IsTaxExcl(true);
  EXPECT_EQ(ToHex(BuildRequest(booking)),
            Request(test::kSaleItems, "C9 00 E1 0D D8 03 01 19 0C DA 02 22 6C DB 02 19 00"));
}

TEST(TransActRequest, SixContainersInOrder) {
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<clsZelItemCash>();
  ASSERT_TRUE(item->SetItemData(1, "x", {}, 119, 107, 4, false, false, false, 110, Scaled(1055000), 3));
  ASSERT_TRUE(booking.AddItem(item));
  EXPECT_EQ(ToHex(BuildRequest(booking)),
            Request("A0 01 31 A2 01 78 B1 03 11 90 0C B2 03 10 70 0C B3 02 30 0C B4 02 40 0C B5 03 11 00 0C "
                    "B6 03 10 55 0C",
                    "E1 0E D8 03 11 90 0C DA 03 01 90 0C DB 02 19 00 "
                    "E2 0D D8 03 10 70 0C DA 02 70 0C DB 02 07 00 "
                    "E3 07 D8 02 30 0C DB 01 00 "
                    "E4 07 D8 02 40 0C DB 01 00 "
                    "E5 0E D8 03 11 00 0C DA 03 01 00 0C DB 02 10 00 "
                    "E6 0D D8 03 10 55 0C DA 02 55 0C DB 02 05 50"));
}

TEST(TransActRequest, NegativePricesLowerTheTurnoverAndAreCountedApart) {
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<clsZelItemCash>();
  ASSERT_TRUE(item->SetItemData(1, "x", {}, 10, Scaled(-25000)));
  ASSERT_TRUE(booking.AddItem(item));
  EXPECT_EQ(ToHex(BuildRequest(booking)), Request("A0 01 31 A2 01 78 B1 03 01 00 0C B2 02 25 0D",
                                                  "E1 0D D8 03 01 00 0C DA 02 16 0C DB 02 19 00 "
                                                  "E2 10 D8 02 25 0D D9 02 25 0C DA 02 01 6D DB 02 07 00"));
  ExpectContainer(booking, 1, 10, Scaled(16000), 19);
  ExpectContainer(booking, 2, Scaled(-25000), Scaled(-1600), 7);
}

TEST(TransActRequest, PricesOfOneClassThatCancelOut) {
  clsZelTransAct booking;
  Prepare(booking);
  ASSERT_TRUE(booking.AddItem(test::CashItem("x", Scaled(25000))));
  ASSERT_TRUE(booking.AddItem(test::CashItem("x", Scaled(-25000))));
  EXPECT_EQ(ToHex(BuildRequest(booking)),
            Request("A0 01 31 A2 01 78 B1 02 25 0C A0 01 31 A2 01 78 B1 02 25 0D",
                    "E1 08 D9 02 25 0C DB 02 19 00"));
  ExpectContainer(booking, 1, 0, 0, 19);
}

TEST(TransActRequest, ThirdPartyPricesCountTwice) {
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<clsZelItemCash>();
  ASSERT_TRUE(item->SetItemData(1, "x", {}, 5, 0, 0, false, false, true));
  ASSERT_TRUE(booking.AddItem(item));
  EXPECT_EQ(ToHex(BuildRequest(booking)), Request("A0 01 31 A2 01 78 AC 00 B1 02 50 0C",
                                                  "E1 10 D8 02 50 0C DA 02 08 0C DB 02 19 00 D6 02 50 0C"));
  ExpectContainer(booking, 1, 5, Scaled(8000), 19);
}

TEST(TransActRequest, NegativeThirdPartyPricesKeepTheirSign) {
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<clsZelItemCash>();
  ASSERT_TRUE(item->SetItemData(1, "x", {}, 0, 0, -5, false, false, true));
  ASSERT_TRUE(booking.AddItem(item));
  EXPECT_EQ(ToHex(BuildRequest(booking)), Request("A0 01 31 A2 01 78 AC 00 B4 02 50 0D",
                                                  "E4 0F D8 02 50 0D D9 02 50 0C DB 01 00 D6 02 50 0D"));
}

TEST(TransActRequest, WithoutTurnoverTheCurrencyIsStillWritten) {
  clsZelTransAct booking;
  Prepare(booking);
  ASSERT_TRUE(booking.AddItem(test::CashItem("x", 0)));
  EXPECT_EQ(ToHex(BuildRequest(booking)), Request("A0 01 31 A2 01 78", ""));
  ExpectContainer(booking, 1, 0, 0, 19);
  ExpectContainer(booking, 2, 0, 0, 7);
}

TEST(TransActRequest, PricesAreSummedExactly) {
  clsZelTransAct booking;
  Prepare(booking);
  // 0.0050 three times: each alone is written as 1 cent in the item list, the sum 0.0150 as 2 cents.
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(booking.AddItem(test::CashItem("x", Scaled(50))));
  }
  const std::string item = "A0 01 31 A2 01 78 B1 01 1C";
  EXPECT_EQ(ToHex(BuildRequest(booking)),
            Request(item + " " + item + " " + item, "E1 07 D8 01 2C DB 02 19 00"));
  ExpectContainer(booking, 1, Scaled(150), 0, 19);
}

TEST(TransActRequest, HostItemsCountByTheirPricesOnly) {
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<FakeItem>();
  item->prices = {0, 0, 0, 0, 0, Scaled(1055000)};
  item->thirdParty = true;
  ASSERT_TRUE(booking.AddItem(item));
  EXPECT_EQ(ToHex(BuildRequest(booking)),
            Request("A0 01 31 A2 01 78", "E6 12 D8 03 10 55 0C DA 02 55 0C DB 02 05 50 D6 03 10 55 0C"));
}

TEST(TransActRequest, CurrencyCodeWithoutLeadingZeroBytes) {
  const auto currencyRecord = [](std::int32_t code) {
    clsZelTransAct booking;
    FillSale(booking);
    booking.CurrencyCode(code);
    const std::string request = ToHex(BuildRequest(booking));
    return request.substr(50 * 3, request.find(" E1 0D") - 50 * 3);
  };
  EXPECT_EQ(currencyRecord(756), "C8 02 02 F4");
  EXPECT_EQ(currencyRecord(36), "C8 01 24");
  EXPECT_EQ(currencyRecord(0), "C8 01 00");
  EXPECT_EQ(currencyRecord(65536), "C8 03 01 00 00");
  EXPECT_EQ(currencyRecord(2147483647), "C8 04 7F FF FF FF");
}

TEST(TransActRequest, RatesOfTheBookingDate) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.TransactionDate(Date::FromCivil(2006, 12, 31, 23, 59, 0));
  const std::string request = ToHex(BuildRequest(booking));
  EXPECT_EQ(request.substr(0, 29), "CD 04 20 06 12 31 CE 02 23 59");
  EXPECT_EQ(request.substr(54 * 3), "E1 0D D8 03 01 19 0C DA 02 16 4C DB 02 16 00");
  ExpectContainer(booking, 1, Scaled(119000), Scaled(16400), 16);
}

TEST(TransActRequest, TimesKeepTheirLeadingZeros) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.TransactionDate(Date::FromCivil(2024, 1, 2, 0, 5, 59));
  EXPECT_EQ(ToHex(BuildRequest(booking)).substr(0, 29), "CD 04 20 24 01 02 CE 02 00 05");
  booking.TransactionDate(Date::FromCivil(2024, 1, 2));
  EXPECT_EQ(ToHex(BuildRequest(booking)).substr(0, 29), "CD 04 20 24 01 02 CE 02 00 00");
}

TEST(TransActRequest, LongestOperator) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.Operator("0123456789ABCDEF");
  const std::string request = ToHex(BuildRequest(booking));
  EXPECT_EQ(request.substr(30, 53), "C6 10 30 31 32 33 34 35 36 37 38 39 41 42 43 44 45 46");
}

// The date

void ExpectStampedWithNow(const std::function<void(clsZelTransAct&)>& date) {
  clsZelTransAct booking;
  FillSale(booking);
  date(booking);
  const Date before = Date::Now();
  (void)BuildRequest(booking);
  const Date after = Date::Now();
  EXPECT_GE(booking.TransactionDate(), before);
  EXPECT_LE(booking.TransactionDate(), after);
}

TEST(TransActRequestDate, BookingThatWasNeverDatedIsStamped) {
  clsZelTransAct booking;
  booking.VatList(std::make_shared<clsZelVatList>());
  booking.Operator("Anna");
  ASSERT_TRUE(booking.AddItem(test::CashItem("x", 1)));
  const Date before = Date::Now();
  const ByteArray request = BuildRequest(booking);
  const Date after = Date::Now();
  EXPECT_GE(booking.TransactionDate(), before);
  EXPECT_LE(booking.TransactionDate(), after);
  const Date::Civil now = booking.TransactionDate().ToCivil();
  const auto bcd = [](std::int32_t value) { return value / 10 * 16 + value % 10; };
  EXPECT_EQ(request[2], bcd(now.year / 100));
  EXPECT_EQ(request[3], bcd(now.year % 100));
  EXPECT_EQ(request[4], bcd(now.month));
  EXPECT_EQ(request[5], bcd(now.day));
  EXPECT_EQ(request[8], bcd(now.hour));
  EXPECT_EQ(request[9], bcd(now.minute));
}

TEST(TransActRequestDate, BothBoundsCountAsNotDated) {
  ExpectStampedWithNow([](clsZelTransAct& booking) { booking.TransactionDate(Date::FromCivil(2000, 1, 1)); });
  ExpectStampedWithNow([](clsZelTransAct& booking) { booking.TransactionDate(Date::FromCivil(1999, 5, 1)); });
  ExpectStampedWithNow(
      [](clsZelTransAct& booking) { booking.TransactionDate(Date::FromCivil(2099, 12, 31, 23, 59, 59)); });
  ExpectStampedWithNow([](clsZelTransAct& booking) { booking.TransactionDate(Date::FromCivil(2150, 1, 1)); });
}

TEST(TransActRequestDate, OneSecondInsideTheBoundsStays) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.TransactionDate(Date::FromCivil(2000, 1, 1, 0, 0, 1));
  EXPECT_EQ(ToHex(BuildRequest(booking)).substr(0, 29), "CD 04 20 00 01 01 CE 02 00 00");
  EXPECT_EQ(booking.TransactionDate().Value(), Date::FromCivil(2000, 1, 1, 0, 0, 1).Value());
  booking.TransactionDate(Date::FromCivil(2099, 12, 31, 23, 59, 58));
  EXPECT_EQ(ToHex(BuildRequest(booking)).substr(0, 29), "CD 04 20 99 12 31 CE 02 23 59");
}

TEST(TransActRequestDate, IsStampedEvenWhenTheRequestFails) {
  clsZelTransAct booking;
  const Date before = Date::Now();
  ByteArray data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, data, 0));
  EXPECT_GE(booking.TransactionDate(), before);
  EXPECT_LE(booking.TransactionDate(), Date::Now());
}

// Building again

TEST(TransActRequest, ItemHash2IsAnotherNameOfRequest) {
  clsZelTransAct booking;
  FillSale(booking);
  ByteArray data;
  std::int32_t length = 0;
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::ItemHash2, data, 0, &length));
  EXPECT_EQ(ToHex(data), test::SaleRequest());
  EXPECT_EQ(length, 69);
}

TEST(TransActRequest, BuildingAgainRecomputesEverything) {
  clsZelTransAct booking;
  FillSale(booking);
  EXPECT_EQ(ToHex(BuildRequest(booking)), test::SaleRequest());
  EXPECT_EQ(ToHex(BuildRequest(booking)), test::SaleRequest());
  ExpectContainer(booking, 1, Scaled(119000), Scaled(19000), 19);
  const std::string hash = booking.ItemHash();
  const std::string text = booking.ZelRqstData();

  ASSERT_TRUE(booking.AddItem(test::CashItem("x", 1)));
  booking.Operator("Bert");
  // Nothing changes until the request is built again.
  EXPECT_EQ(booking.ItemHash(), hash);
  EXPECT_EQ(booking.ZelRqstData(), text);
  ExpectContainer(booking, 1, Scaled(119000), Scaled(19000), 19);

  const std::string items = std::string(test::kSaleItems) + " A0 01 31 A2 01 78 B1 02 10 0C";
  const std::string expected = "CD 04 20 24 03 15 CE 02 14 37 C6 04 42 65 72 74 C7 20 " +
                               ToHex(test::ItemSha256(FromHex(items))) +
                               " C8 02 03 D2 E1 0D D8 03 01 29 0C DA 02 20 6C DB 02 19 00";
  EXPECT_EQ(ToHex(BuildRequest(booking)), expected);
  EXPECT_EQ(booking.ItemHash(), test::Base64(test::ItemSha256(FromHex(items))));
  EXPECT_EQ(booking.ZelRqstData(), test::Base64(expected));
}

TEST(TransActRequest, BuildingAgainLeavesTheOldResponse) {
  clsZelTransAct booking;
  FillSale(booking);
  (void)BuildRequest(booking);
  ASSERT_TRUE(HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  (void)BuildRequest(booking);
  EXPECT_EQ(booking.ZelRespData(), test::Base64(test::kSaleResponse));
  EXPECT_EQ(booking.ZelRespSeqNr(), Currency(300));
}

TEST(TransActRequest, SuccessLogsNothing) {
  test::TestLog log;
  log.Handler()->WriteEntries(true);
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  FillSale(booking);
  (void)BuildRequest(booking);
  EXPECT_EQ(log.Count(), 0U);
}

// Failures

TEST(TransActRequestFailure, NoVatList) {
  test::TestLog log;
  clsZelTransAct booking;
  FillSale(booking);
  booking.LogHandler(log.Handler());
  booking.VatList(nullptr);
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_DataMissing, "EncodeRqst",
                       "Es liegen keine Mwst-Sätze vor (Objekt nicht vorhanden)");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"EncodeRqst"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"9302"});
  EXPECT_EQ(test::LogSources(log), std::vector<std::string>{"clsZelTransAct"});
  EXPECT_EQ(booking.ZelRqstData(), "");
  EXPECT_EQ(booking.ItemHash(), "");
}

TEST(TransActRequestFailure, EmptyVatList) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.VatList()->Clear();
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_DataMissing, "EncodeRqst",
                       "Es liegen keine Mwst-Sätze vor (Anzahl = 0)");
}

TEST(TransActRequestFailure, NoRatesForTheDate) {
  test::TestLog log;
  clsZelTransAct booking;
  FillSale(booking);
  booking.LogHandler(log.Handler());
  booking.VatList()->Clear();
  const auto rates = std::make_shared<clsZelVatItem>();
  ASSERT_TRUE(rates->SetDates(Date::FromCivil(2024, 3, 16), Date::FromCivil(2025, 1, 1)));
  ASSERT_TRUE(booking.VatList()->AddItem(rates));
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_DataMissing, "EncodeRqst",
                       "Für das Buchungsdatum konnte kein USt-Eintrag gefunden werden\r\n"
                       "    Buch.dat. .......: 15.03.2024 14:37:25");
  EXPECT_EQ(log.Count(), 1U);
}

TEST(TransActRequestFailure, WithoutRatesForTheDateTheItemsAreNotAsked) {
  clsZelTransAct booking;
  Prepare(booking);
  booking.VatList()->Clear();
  const auto rates = std::make_shared<clsZelVatItem>();
  ASSERT_TRUE(rates->SetDates(Date::FromCivil(2024, 3, 16), Date::FromCivil(2025, 1, 1)));
  ASSERT_TRUE(booking.VatList()->AddItem(rates));
  const auto item = std::make_shared<FakeItem>();
  ASSERT_TRUE(booking.AddItem(item));
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_DataMissing, "EncodeRqst",
                       "Für das Buchungsdatum konnte kein USt-Eintrag gefunden werden\r\n"
                       "    Buch.dat. .......: 15.03.2024 14:37:25");
  EXPECT_EQ(item->writes, 0);
}

TEST(TransActRequestFailure, NoItems) {
  test::TestLog log;
  clsZelTransAct booking;
  Prepare(booking);
  booking.LogHandler(log.Handler());
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_Failed, "EncodeRqst.[GetZelDates]",
                       "Es liegen keine Buchungsposten vor!");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"EncodeRqst.[GetZelDates]"});
}

TEST(TransActRequestFailure, ItemThatCannotBeWritten) {
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<FakeItem>();
  item->failAtWrite = 1;
  ASSERT_TRUE(booking.AddItem(item));
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_Failed, "EncodeRqst",
                       "Die Daten der Buchungsposten konnten nicht\r\ngelesen werden.");
  EXPECT_EQ(booking.ItemHash(), "");
}

TEST(TransActRequestFailure, CashItemWithoutName) {
  clsZelTransAct booking;
  Prepare(booking);
  ASSERT_TRUE(booking.AddItem(std::make_shared<clsZelItemCash>()));
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_Failed, "EncodeRqst",
                       "Die Daten der Buchungsposten konnten nicht\r\ngelesen werden.");
}

// The items are written twice: for the item list's text and for their hash.
TEST(TransActRequestFailure, ItemThatCannotBeWrittenForTheHash) {
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<FakeItem>();
  ASSERT_TRUE(booking.AddItem(item));
  item->failAtWrite = 2;
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_Failed, "EncodeRqst.[GetZelOperator]",
                       "Der Hashkode über die Buchungspositionen konnte nicht erstellt werden!\r\n"
                       "    Hash-Typ ........: SHA256\r\n"
                       "    Position ........: 0");
  EXPECT_EQ(booking.ItemHash(), "");
  item->writes = 0;
  booking.UseSHA256(false);
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_Failed, "EncodeRqst.[GetZelOperator]",
                       "Der Hashkode über die Buchungspositionen konnte nicht erstellt werden!\r\n"
                       "    Hash-Typ ........: SHA1\r\n"
                       "    Position ........: 0");
  // The item list's text was made before; it has the 8 characters of 6 bytes.
  std::string document;
  EXPECT_FALSE(booking.XmlHandler(document, true));
  EXPECT_NE(booking.ErrorObject().ErrorMsg().find("    Postenliste .....: 8 Zeichen\r\n"), std::string::npos);
}

TEST(TransActRequestFailure, PricesThatCannotBeRead) {
  test::TestLog log;
  clsZelTransAct booking;
  Prepare(booking);
  ASSERT_TRUE(booking.AddItem(test::CashItem("x", 7)));
  const auto item = std::make_shared<FakeItem>();
  item->failPrices = true;
  ASSERT_TRUE(booking.AddItem(item));
  const auto last = std::make_shared<FakeItem>("FAKE-2");
  int asked = 0;
  last->onGetPrices = [&asked] { ++asked; };
  ASSERT_TRUE(booking.AddItem(last));
  booking.LogHandler(log.Handler());
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_DataMissing, "EncodeRqst",
                       "Die Preisbestandteile für einen Buchungsposten\r\nkonnten nicht gelesen werden!");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"EncodeRqst"});
  EXPECT_EQ(asked, 0);
  // The containers are half summed, without VAT; hash and item list are those of this attempt.
  ExpectContainer(booking, 1, 7, 0, 19);
  EXPECT_NE(booking.ItemHash(), "");
  EXPECT_EQ(booking.ZelRqstData(), "");
}

TEST(TransActRequestFailure, FailureKeepsTheLastRequest) {
  clsZelTransAct booking;
  FillSale(booking);
  (void)BuildRequest(booking);
  const std::string text = booking.ZelRqstData();
  booking.Operator("");
  ByteArray data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, data, 0));
  EXPECT_EQ(booking.ZelRqstData(), text);
}

TEST(TransActRequestFailure, ErrorThatAnItemFilesInTheBookingStopsIt) {
  test::TestLog log;
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<FakeItem>();
  item->onGetPrices = [&booking] { booking.ErrorObject().SetError(4711, "Waage klemmt", true, "Wiegen"); };
  ASSERT_TRUE(booking.AddItem(item));
  booking.LogHandler(log.Handler());
  ByteArray data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, data, 0));
  test::ExpectError(booking.ErrorObject(), 4711, true, "Wiegen", "Waage klemmt");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"Wiegen"});
}

TEST(TransActRequestFailure, ErrorThatAnItemFilesWhileItIsWrittenStopsItToo) {
  struct Scales : FakeItem {
    bool BinaryDataGet(ByteArray& Data, std::int32_t& Start) override {
      booking->ErrorObject().SetError(4711, "Waage klemmt", true, "Wiegen");
      return FakeItem::BinaryDataGet(Data, Start);
    }
    clsZelTransAct* booking = nullptr;
  };
  test::TestLog log;
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<Scales>();
  item->booking = &booking;
  ASSERT_TRUE(booking.AddItem(item));
  booking.LogHandler(log.Handler());
  ByteArray data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, data, 0));
  test::ExpectError(booking.ErrorObject(), 4711, true, "Wiegen", "Waage klemmt");
  EXPECT_EQ(item->writes, 1) << "the hash is not made";
  EXPECT_EQ(booking.ZelRqstData(), "");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"Wiegen"});
}

TEST(TransActRequestFailure, ItemThatThrowsWhatIsNoExceptionIsAFault) {
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<FakeItem>();
  item->onGetPrices = [] { throw 42; };
  ASSERT_TRUE(booking.AddItem(item));
  ByteArray data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, data, 0));
  test::ExpectFault(booking.ErrorObject(), 5, "BinaryDataGet");
}

TEST(TransActRequestFailure, ItemThatEmptiesTheListWhileItIsAskedHasFailed) {
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<FakeItem>();
  item->onGetPrices = [&booking] { booking.ClearItems(); };
  ASSERT_TRUE(booking.AddItem(item));
  ASSERT_TRUE(booking.AddItem(std::make_shared<FakeItem>("FAKE-2")));
  ByteArray data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, data, 0));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_DataMissing, true, "EncodeRqst",
                    "Buchung: Das Erstellen der Anfrage ist nicht möglich!\r\n"
                    "Die Preisbestandteile für einen Buchungsposten\r\n"
                    "konnten nicht gelesen werden!");
  EXPECT_EQ(booking.ItemCount(), 0);
}

TEST(TransActRequestFailure, ItemThatThrowsIsAFault) {
  test::TestLog log;
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<FakeItem>();
  item->onGetPrices = [] { throw std::runtime_error("scale is jammed"); };
  ASSERT_TRUE(booking.AddItem(item));
  booking.LogHandler(log.Handler());
  ByteArray data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, data, 0));
  test::ExpectFault(booking.ErrorObject(), 5, "BinaryDataGet");
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"5"});
}

TEST(TransActRequestFailure, SumBeyondTheRangeIsAFault) {
  clsZelTransAct booking;
  Prepare(booking);
  for (const char* id : {"FAKE-1", "FAKE-2"}) {
    const auto item = std::make_shared<FakeItem>(id);
    item->prices = {900000000000000, 0, 0, 0, 0, 0};
    ASSERT_TRUE(booking.AddItem(item));
  }
  ByteArray data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, data, 0));
  test::ExpectFault(booking.ErrorObject(), 6, "BinaryDataGet");
}

TEST(TransActRequestFailure, VatBeyondTheRange) {
  clsZelTransAct booking;
  Prepare(booking);
  const auto item = std::make_shared<FakeItem>();
  item->prices = {1, 1, 922337203685477, 1, 1, 1};
  ASSERT_TRUE(booking.AddItem(item));
  booking.VatList()->Clear();
  const auto rates = std::make_shared<clsZelVatItem>();
  rates->VATrate(3, Scaled(5000));
  ASSERT_TRUE(booking.VatList()->AddItem(rates));
  booking.IsTaxExcl(true);
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_DataMissing, "EncodeRqst",
                       "Die USt-Berechung für den Satz \"3\" schlug fehl");
  ExpectContainer(booking, 2, 1, Scaled(700), 7);
  ExpectContainer(booking, 3, 922337203685477, 0, Scaled(5000));
  ExpectContainer(booking, 4, 1, 0, 0);
}

TEST(TransActRequestFailure, OperatorThatIsMissing) {
  test::TestLog log;
  clsZelTransAct booking;
  FillSale(booking);
  booking.Operator("   ");
  booking.LogHandler(log.Handler());
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_Failed, "EncodeRqst.[SetZelOperator]",
                       "Der Bediener konnte nicht geschrieben werden!\r\n    Position ........: 10");
  // The coder logs its own failure first.
  EXPECT_EQ(test::LogSources(log), (std::vector<std::string>{"clsZelBaseCoding", "clsZelTransAct"}));
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"SetZelOperator", "EncodeRqst.[SetZelOperator]"}));
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9207", "9301"}));
}

TEST(TransActRequestFailure, OperatorWithUmlauts) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.Operator("Jürgen");
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_Failed, "EncodeRqst.[SetZelOperator]",
                       "Der Bediener konnte nicht geschrieben werden!\r\n    Position ........: 10");
}

TEST(TransActRequestFailure, FirstContainerThatCannotBeWritten) {
  test::TestLog log;
  clsZelTransAct booking;
  Prepare(booking);
  ASSERT_TRUE(booking.AddItem(test::CashItem("x", 600000000)));
  ASSERT_TRUE(booking.AddItem(test::CashItem("x", 400000000)));
  booking.LogHandler(log.Handler());
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_Failed, "EncodeRqst.[BinaryDataGet]",
                       "Die Binärdaten aus Container \"1\" konnten nicht abgerufen werden!\r\n"
                       "    Position ........: 54");
  EXPECT_EQ(test::LogSources(log), std::vector<std::string>{"clsZelTransAct"});
  ExpectContainer(booking, 1, 1000000000, Scaled(1596638655500), 19);
}

TEST(TransActRequestFailure, LaterContainerThatCannotBeWritten) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.IsTraining(true);
  // 0.0010 in class 5 is not nothing, but no cent either.
  const auto fake = std::make_shared<FakeItem>();
  fake->prices = {0, 0, 0, 0, Scaled(10), 0};
  ASSERT_TRUE(booking.AddItem(fake));
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_Failed, "EncodeRqst.[BinaryDataGet]",
                       "Die Binärdaten aus Container \"5\" konnten nicht abgerufen werden!\r\n"
                       "    Position ........: 71");
}

TEST(TransActRequestFailure, RateThatTheDeviceDoesNotTake) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.VatList()->VatItem(2)->VATrate(1, 100);
  ExpectRequestFailure(booking, ZELErrorCodes::Err_Ser_Failed, "EncodeRqst.[BinaryDataGet]",
                       "Die Binärdaten aus Container \"1\" konnten nicht abgerufen werden!\r\n"
                       "    Position ........: 54");
  // Without turnover the rate isn't written.
  booking.ClearItems();
  ASSERT_TRUE(booking.AddItem(test::CashItem("x", 0)));
  EXPECT_EQ(ToHex(BuildRequest(booking)), Request("A0 01 31 A2 01 78", ""));
}

TEST(TransActRequestFailure, SuccessAfterwardsClearsTheError) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.Operator("");
  ByteArray data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, data, 0));
  booking.Operator("Anna");
  EXPECT_EQ(ToHex(BuildRequest(booking)), test::SaleRequest());
  test::ExpectNoError(booking);
}

}  // namespace
}  // namespace VnZEL10cmn
