// The binary exchange by type: item lists, requests and responses, out of the booking and into it.

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
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
using test::FromHexAt;
using test::HandIn;
using test::ToHex;

Currency Scaled(std::int64_t scaled) { return Currency::FromScaled(scaled); }

/// A type that the booking does not read fails with this text, alone or behind a header.
std::string NotSupported(std::string_view type) {
  return "Der Serialisierungstyp wird von dieser\r\nFunktion nicht unterstützt!\r\n    Typ .............: " +
         std::string(type);
}

/// Bytes that the booking refuses, with the whole error.
void ExpectReadFailure(clsZelTransAct& booking, ZELSerialType type, std::string_view hex,
                       ZELErrorCodes number, std::string_view function, std::string_view message,
                       const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure of reading");
  EXPECT_FALSE(HandIn(booking, type, hex));
  test::ExpectError(booking.ErrorObject(), number, true, function, message, file, line);
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

// Types

TEST(TransActBinaryDataGet, TypesThatAreNotSupported) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  for (const auto& [type, text] : {std::pair{ZELSerialType::ObjectData, "0"},
                                   {ZELSerialType{5}, "5"},
                                   {ZELSerialType::BinaryData, "6"},
                                   {ZELSerialType{7}, "7"},
                                   {ZELSerialType{-1}, "-1"}}) {
    ByteArray data = FromHex("01 02");
    std::int32_t length = 77;
    EXPECT_FALSE(booking.BinaryDataGet(type, data, 0, &length));
    test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_SerTypeNotSprt, true, "BinaryDataGet",
                      "Serialisierung der Buchung nicht möglich!\r\n" + NotSupported(text));
    EXPECT_EQ(ToHex(data), "01 02");
  }
  EXPECT_EQ(log.Count(), 5U);
}

TEST(TransActBinaryDataSet, TypesThatAreNotSupported) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  for (const auto& [type, text] : {std::pair{ZELSerialType::ObjectData, "0"},
                                   {ZELSerialType::ItemHash, "4"},
                                   {ZELSerialType{5}, "5"},
                                   {ZELSerialType::BinaryData, "6"},
                                   {ZELSerialType{-1}, "-1"}}) {
    EXPECT_FALSE(booking.BinaryDataSet(type, FromHex("01 02"), 0));
    test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_SerTypeNotSprt, true, "BinaryDataSet",
                      NotSupported(text));
  }
  // The type is looked at first.
  EXPECT_FALSE(booking.BinaryDataSet(ZELSerialType::ItemHash, FromHex("01 02"), 99));
  EXPECT_EQ(booking.ErrorObject().ErrorNr(), 9303);
  EXPECT_EQ(log.Count(), 6U);
}

// The bytes to read

TEST(TransActBinaryDataSet, StartOutsideTheArray) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  EXPECT_FALSE(booking.BinaryDataSet(ZELSerialType::Response, FromHex("01 02"), -1));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                    "Deserialisierung der Buchung nicht möglich!\r\n"
                    "Der Startindex ist außerhalb des gültigen Bereiches.\r\n"
                    "    Start ...........: -1\r\n"
                    "    Min. Startpos. ..: 0");
  EXPECT_FALSE(booking.BinaryDataSet(ZELSerialType::Response, FromHex("01 02"), 2));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                    "Deserialisierung der Buchung nicht möglich!\r\n"
                    "Der Startindex ist außerhalb des gültigen Bereiches.\r\n"
                    "    Start ...........: 2\r\n"
                    "    Max. Startpos. ..: 1");
  EXPECT_FALSE(booking.BinaryDataSet(ZELSerialType::Request, FromHexAt(10, "01 02"), 9));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                    "Deserialisierung der Buchung nicht möglich!\r\n"
                    "Der Startindex ist außerhalb des gültigen Bereiches.\r\n"
                    "    Start ...........: 9\r\n"
                    "    Min. Startpos. ..: 10");
  EXPECT_FALSE(booking.BinaryDataSet(ZELSerialType::ItemList, ByteArray{}, 0));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                    "Deserialisierung der Buchung nicht möglich!\r\n"
                    "Der Startindex ist außerhalb des gültigen Bereiches.\r\n"
                    "    Start ...........: 0\r\n"
                    "    Max. Startpos. ..: -1");
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9103", "9103", "9103", "9103"}));
}

TEST(TransActBinaryDataSet, LengthBeyondTheArray) {
  clsZelTransAct booking;
  const ByteArray data = FromHex("A0 01 31 A2 01 78");
  EXPECT_FALSE(booking.BinaryDataSet(ZELSerialType::ItemList, data, 1, 6));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataSet",
                    "Deserialisierung der Buchung nicht möglich!\r\n"
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Start ..........: 1\r\n"
                    "    Länge ..........: 6\r\n"
                    "    Leseende .......: 6\r\n"
                    "    Obergrenze .....: 5");
  EXPECT_TRUE(booking.BinaryDataSet(ZELSerialType::ItemList, data, 0, 6));
  EXPECT_EQ(booking.ItemCount(), 1);
  EXPECT_FALSE(
      booking.BinaryDataSet(ZELSerialType::ItemList, data, 5, std::numeric_limits<std::int32_t>::max()));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataSet",
                    "Deserialisierung der Buchung nicht möglich!\r\n"
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Start ..........: 5\r\n"
                    "    Länge ..........: 2147483647\r\n"
                    "    Leseende .......: 2147483651\r\n"
                    "    Obergrenze .....: 5");
  EXPECT_EQ(booking.ItemCount(), 1);
}

TEST(TransActBinaryDataSet, TakesTheBytesFromStartOn) {
  clsZelTransAct booking;
  const ByteArray data = FromHexAt(3, "FF A0 01 31 A2 01 78 A0 01 32 A2 01 79");
  EXPECT_TRUE(booking.BinaryDataSet(ZELSerialType::ItemList, data, 4));
  EXPECT_EQ(booking.ItemCount(), 2);
  EXPECT_TRUE(booking.BinaryDataSet(ZELSerialType::ItemList, data, 4, 6));
  EXPECT_EQ(booking.ItemCount(), 1);
  EXPECT_EQ(booking.ItemHash(), test::Base64(test::ItemSha256(FromHex("A0 01 31 A2 01 78"))));
  EXPECT_TRUE(booking.BinaryDataSet(ZELSerialType::ItemList, data, 10, -1));
  EXPECT_EQ(booking.ItemCount(), 1);
  EXPECT_EQ(booking.ItemHash(), test::Base64(test::ItemSha256(FromHex("A0 01 32 A2 01 79"))));
}

// Item lists

TEST(TransActItemList, IsWrittenAndStored) {
  clsZelTransAct booking;
  FillSale(booking);
  ByteArray data = ByteArray::WithBounds(0, 15);
  std::int32_t length = -1;
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::ItemList, data, 2, &length));
  test::ExpectNoError(booking);
  EXPECT_EQ(length, 14);
  EXPECT_EQ(ToHex(data), "00 00 " + std::string(test::kSaleItems));
  EXPECT_EQ(booking.ItemHash(), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
  EXPECT_EQ(booking.ZelRqstData(), "");
}

TEST(TransActItemList, LengthMayBeOmitted) {
  clsZelTransAct booking;
  FillSale(booking);
  ByteArray data = ByteArray::WithBounds(-1, 13);
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::ItemList, data, 0));
  EXPECT_EQ(ToHex(data), "00 " + std::string(test::kSaleItems));
}

TEST(TransActItemList, ThatDoesNotFit) {
  test::TestLog log;
  clsZelTransAct booking;
  FillSale(booking);
  booking.LogHandler(log.Handler());
  ByteArray data = ByteArray::WithBounds(0, 14);
  const ByteArray before = data;
  std::int32_t length = -1;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::ItemList, data, 2, &length));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataGet",
                    "Serialisierung der Buchung nicht möglich!\r\n"
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Start ..........: 2\r\n"
                    "    Länge ..........: 14\r\n"
                    "    Leseende .......: 15\r\n"
                    "    Obergrenze .....: 14");
  EXPECT_EQ(data, before);
  EXPECT_EQ(length, 14);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataGet"});
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::ItemList, data, 1, &length));
  EXPECT_EQ(ToHex(data), "00 " + std::string(test::kSaleItems));
}

TEST(TransActItemList, EndOfTheCopyNeverWraps) {
  clsZelTransAct booking;
  FillSale(booking);
  ByteArray data;
  EXPECT_FALSE(
      booking.BinaryDataGet(ZELSerialType::ItemList, data, std::numeric_limits<std::int32_t>::max()));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataGet",
                    "Serialisierung der Buchung nicht möglich!\r\n"
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Start ..........: 2147483647\r\n"
                    "    Länge ..........: 14\r\n"
                    "    Leseende .......: 2147483660\r\n"
                    "    Obergrenze .....: -1");
}

TEST(TransActItemList, StartBelowTheArray) {
  clsZelTransAct booking;
  FillSale(booking);
  ByteArray data = ByteArray::WithBounds(0, 99);
  const ByteArray before = data;
  for (const std::int32_t start : {-1, -50, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::ItemList, data, start)) << start;
    EXPECT_TRUE(booking.HasError());
    EXPECT_EQ(data, before);
  }
}

TEST(TransActItemList, EmptyListIsNotWritten) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  ByteArray data = FromHex("01");
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::ItemList, data, 0));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "EncodeItems",
                    "Buchung: Kodieren der Postenliste nicht möglich!\r\n"
                    "Es sind keine Posteneinträge vorhanden, Buchungen.\r\n"
                    "ohne Posten sind jedoch nicht zulässig!");
  EXPECT_EQ(ToHex(data), "01");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"EncodeItems"});
}

TEST(TransActItemList, ItemThatCannotBeWritten) {
  clsZelTransAct booking;
  const auto item = std::make_shared<FakeItem>();
  item->failAtWrite = 1;
  ASSERT_TRUE(booking.AddItem(item));
  ByteArray data = ByteArray::WithBounds(0, 99);
  const ByteArray before = data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::ItemList, data, 0));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "EncodeItems.[BinaryDataSet]",
                    "Buchung: Kodieren der Postenliste nicht möglich!\r\n"
                    "Die Daten konnten nicht aus dem Listenobjekt gelesen werden.");
  EXPECT_EQ(data, before);
  EXPECT_EQ(booking.ItemHash(), "");
}

TEST(TransActItemList, ItemThatCannotBeWrittenForTheHash) {
  clsZelTransAct booking;
  const auto item = std::make_shared<FakeItem>();
  item->failAtWrite = 2;
  ASSERT_TRUE(booking.AddItem(item));
  ByteArray data = ByteArray::WithBounds(0, 99);
  const ByteArray before = data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::ItemList, data, 0));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true,
                    "EncodeItems.[mObjItemList.GetItemHash]",
                    "Buchung: Kodieren der Postenliste nicht möglich!\r\n"
                    "Der Hashcode der Buchungsposten konnte nicht in\r\n"
                    "das Base64-Format überführt werden.");
  EXPECT_EQ(data, before);
}

TEST(TransActItemList, HostItemsThatWriteNothing) {
  clsZelTransAct booking;
  ASSERT_TRUE(booking.AddItem(std::make_shared<FakeItem>("FAKE-1", "")));
  ByteArray data = FromHex("01 02");
  std::int32_t length = -1;
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::ItemList, data, 99, &length));
  test::ExpectNoError(booking);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(ToHex(data), "01 02");
}

TEST(TransActItemList, IsReadInPlaceOfTheOldItems) {
  clsZelTransAct booking;
  ASSERT_TRUE(booking.AddItem(test::CashItem("alt", 1)));
  EXPECT_TRUE(HandIn(booking, ZELSerialType::ItemList,
                     std::string(test::kSaleItems) + " A0 03 32 2E 35 A2 01 78 AB 00"));
  test::ExpectNoError(booking);
  ASSERT_EQ(booking.ItemCount(), 2);
  const auto* first = dynamic_cast<clsZelItemCash*>(booking.ItemI(1).get());
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->Quantity(), Currency(2));
  EXPECT_EQ(first->Name(), "brot");
  EXPECT_EQ(first->Price(1), Scaled(119000));
  const auto* second = dynamic_cast<clsZelItemCash*>(booking.ItemI(2).get());
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->Quantity(), Scaled(25000));
  EXPECT_TRUE(second->Voucher());
  EXPECT_EQ(booking.ItemHash(), test::Base64(test::ItemSha256(FromHex(std::string(test::kSaleItems) +
                                                                      " A0 03 32 2E 35 A2 01 78 AB 00"))));
}

TEST(TransActItemList, ReadingTakesTheHashThatIsSelected) {
  clsZelTransAct booking;
  booking.UseSHA256(false);
  EXPECT_TRUE(HandIn(booking, ZELSerialType::ItemList, test::kSaleItems));
  EXPECT_EQ(booking.ItemHash(), "1GZUHSrdJ6VfdAc6/W6svhajN/o=");
}

TEST(TransActItemList, DamagedItem) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  ExpectReadFailure(
      booking, ZELSerialType::ItemList, "A0 01 31 A2 01 78 A0 01 32 C7 00 A2 01 79",
      ZELErrorCodes::Err_Ser_Failed, "DecodeItems.[mObjItemList.BinaryDataSet]",
      "Buchung: Dekodieren der Postenliste nicht möglich!\r\nDas Listenobjekt meldete einen Fehler");
  // What was read before the damage stays; item, list and booking have logged, from the inside out.
  EXPECT_EQ(booking.ItemCount(), 1);
  EXPECT_EQ(booking.ItemHash(), "");
  EXPECT_EQ(test::LogSources(log),
            (std::vector<std::string>{"clsZelItemCash", "clsZelItemList", "clsZelTransAct"}));
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9305", "9307", "9301"}));
}

TEST(TransActItemList, ItemsThatAreReadButCannotBeHashed) {
  clsZelTransAct booking;
  booking.ItemFactory(std::make_shared<test::FakeFactory>([] {
    auto item = std::make_shared<FakeItem>();
    item->failAtWrite = 1;
    return item;
  }));
  ExpectReadFailure(booking, ZELSerialType::ItemList, "A0 01 31", ZELErrorCodes::Err_Ser_Failed,
                    "DecodeItems.[mObjItemList.GetItemHash]",
                    "Der Hashcode der Buchungsposten konnte nicht in\r\ndas Base64-Format überführt werden.");
  EXPECT_EQ(booking.ItemCount(), 1);
}

TEST(TransActItemList, HostItemsThatRefuseTheirBytes) {
  clsZelTransAct booking;
  booking.ItemFactory(std::make_shared<test::FakeFactory>([] {
    auto item = std::make_shared<FakeItem>();
    item->failReading = true;
    return item;
  }));
  ExpectReadFailure(
      booking, ZELSerialType::ItemList, "A0 01 31", ZELErrorCodes::Err_Ser_Failed,
      "DecodeItems.[mObjItemList.BinaryDataSet]",
      "Buchung: Dekodieren der Postenliste nicht möglich!\r\nDas Listenobjekt meldete einen Fehler");
  EXPECT_EQ(booking.ItemCount(), 0);
}

// Requests

constexpr std::string_view kHash =
    "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F";

/// Date, time, operator and hash: 50 bytes.
std::string Head() { return std::string(test::kSaleHead) + " " + std::string(kHash) + " "; }

TEST(TransActReadRequest, RestoresWhatItSays) {
  clsZelTransAct booking;
  const std::string request = Head() +
                              "C8 02 02 F4 C9 00 CA 00 D7 00 E1 0D D8 03 01 19 0C DA 02 22 6C DB 02 19 00 "
                              "E6 12 D8 03 10 55 0C DA 02 55 0C DB 02 05 50 D6 03 10 55 0C";
  EXPECT_TRUE(HandIn(booking, ZELSerialType::Request, request)) << booking.ErrorObject().ErrorMsg();
  test::ExpectNoError(booking);
  EXPECT_EQ(booking.TransactionDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 0).Value());
  EXPECT_EQ(booking.Operator(), "Anna");
  EXPECT_EQ(booking.ItemHash(), "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8=");
  EXPECT_EQ(booking.CurrencyCode(), 756);
  EXPECT_TRUE(booking.IsTaxExcl());
  EXPECT_TRUE(booking.IsTraining());
  EXPECT_TRUE(booking.IsDeliveryNote());
  ExpectContainer(booking, 1, Scaled(119000), Scaled(22600), 19);
  ExpectContainer(booking, 2, 0, 0, 0);
  ExpectContainer(booking, 6, Scaled(1055000), Scaled(55000), Scaled(55000));
  EXPECT_EQ(booking.ZelRqstData(), test::Base64(request));
}

TEST(TransActReadRequest, ItemHash2IsAnotherNameOfRequest) {
  clsZelTransAct booking;
  EXPECT_TRUE(HandIn(booking, ZELSerialType::ItemHash2, Head() + "C8 02 03 D2"));
  EXPECT_EQ(booking.Operator(), "Anna");
}

TEST(TransActReadRequest, Sha1Hash) {
  clsZelTransAct booking;
  EXPECT_TRUE(HandIn(booking, ZELSerialType::Request,
                     "CD 04 20 24 03 15 CE 02 14 37 C6 01 41 "
                     "C7 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13"));
  EXPECT_EQ(booking.ItemHash(), "AAECAwQFBgcICQoLDA0ODxAREhM=");
  EXPECT_EQ(booking.CurrencyCode(), 978);
}

TEST(TransActReadRequest, FlagsAreNeverTakenBack) {
  clsZelTransAct booking;
  booking.IsTaxExcl(true);
  booking.IsTraining(true);
  booking.IsDeliveryNote(true);
  booking.CurrencyCode(756);
  EXPECT_TRUE(HandIn(booking, ZELSerialType::Request, Head()));
  EXPECT_TRUE(booking.IsTaxExcl());
  EXPECT_TRUE(booking.IsTraining());
  EXPECT_TRUE(booking.IsDeliveryNote());
  EXPECT_EQ(booking.CurrencyCode(), 756);
}

TEST(TransActReadRequest, EachFlagAlone) {
  clsZelTransAct taxExcl;
  EXPECT_TRUE(HandIn(taxExcl, ZELSerialType::Request, Head() + "C9 00"));
  EXPECT_TRUE(taxExcl.IsTaxExcl());
  EXPECT_FALSE(taxExcl.IsTraining());
  EXPECT_FALSE(taxExcl.IsDeliveryNote());
  clsZelTransAct training;
  EXPECT_TRUE(HandIn(training, ZELSerialType::Request, Head() + "CA 00"));
  EXPECT_FALSE(training.IsTaxExcl());
  EXPECT_TRUE(training.IsTraining());
  EXPECT_FALSE(training.IsDeliveryNote());
  clsZelTransAct deliveryNote;
  EXPECT_TRUE(HandIn(deliveryNote, ZELSerialType::Request, Head() + "D7 00"));
  EXPECT_FALSE(deliveryNote.IsTaxExcl());
  EXPECT_FALSE(deliveryNote.IsTraining());
  EXPECT_TRUE(deliveryNote.IsDeliveryNote());
}

TEST(TransActReadRequest, OldContainersAreReset) {
  clsZelTransAct booking;
  FillSale(booking);
  (void)BuildRequest(booking);
  ExpectContainer(booking, 1, Scaled(119000), Scaled(19000), 19);
  EXPECT_TRUE(HandIn(booking, ZELSerialType::Request, Head() + "C8 02 03 D2 E2 07 D8 02 10 0C DB 01 07"));
  ExpectContainer(booking, 1, 0, 0, 0);
  ExpectContainer(booking, 2, 1, 0, Scaled(700));
  EXPECT_EQ(booking.ItemCount(), 1);
}

TEST(TransActReadRequest, RecordsBehindTheHashComeInAnyOrder) {
  clsZelTransAct booking;
  EXPECT_TRUE(HandIn(booking, ZELSerialType::Request, Head() + "E3 04 D8 02 10 0C D7 00 C8 02 02 F4"));
  EXPECT_EQ(booking.CurrencyCode(), 756);
  EXPECT_TRUE(booking.IsDeliveryNote());
  ExpectContainer(booking, 3, 1, 0, 0);
}

TEST(TransActReadRequest, NoDate) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  ExpectReadFailure(booking, ZELSerialType::Request, "CE 02 14 37", ZELErrorCodes::Err_Ser_Failed,
                    "DecodeRqst.[GetZelDates]",
                    "Das Buchungsdatum konnte nicht gelesen werden!\r\n    Position ........: 0");
  EXPECT_EQ(test::LogSources(log), (std::vector<std::string>{"clsZelBaseCoding", "clsZelTransAct"}));
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"GetZelDates", "DecodeRqst.[GetZelDates]"}));
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9207", "9301"}));
}

TEST(TransActReadRequest, DateThatDoesNotExist) {
  clsZelTransAct booking;
  booking.TransactionDate(Date::FromCivil(2020, 5, 5));
  ExpectReadFailure(booking, ZELSerialType::Request, "CD 04 20 24 02 30 CE 02 14 37",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[GetZelDates]",
                    "Das Buchungsdatum konnte nicht gelesen werden!\r\n    Position ........: 0");
  EXPECT_EQ(booking.TransactionDate().Value(), Date::FromCivil(2020, 5, 5).Value());
}

TEST(TransActReadRequest, NoTime) {
  clsZelTransAct booking;
  ExpectReadFailure(booking, ZELSerialType::Request, "CD 04 20 24 03 15 C6 01 41",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[GetZelTimes]",
                    "Die Buchungszeit konnte nicht gelesen werden!\r\n    Position ........: 6");
  ExpectReadFailure(booking, ZELSerialType::Request, "CD 04 20 24 03 15 CE 02 25 61",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[GetZelTimes]",
                    "Die Buchungszeit konnte nicht gelesen werden!\r\n    Position ........: 6");
  ExpectReadFailure(booking, ZELSerialType::Request, "CD 04 20 24 03 15", ZELErrorCodes::Err_Ser_Failed,
                    "DecodeRqst.[GetZelTimes]",
                    "Die Buchungszeit konnte nicht gelesen werden!\r\n    Position ........: 6");
}

TEST(TransActReadRequest, NoOperator) {
  clsZelTransAct booking;
  ExpectReadFailure(booking, ZELSerialType::Request, "CD 04 20 24 03 15 CE 02 14 37 C7 00",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[GetZelOperator]",
                    "Der Bediener konnte nicht gelesen werden!\r\n    Position ........: 10");
  // What was read before stays.
  EXPECT_EQ(booking.TransactionDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 0).Value());
}

TEST(TransActReadRequest, OperatorOfOneTo16Characters) {
  clsZelTransAct booking;
  ExpectReadFailure(booking, ZELSerialType::Request, "CD 04 20 24 03 15 CE 02 14 37 C6 00 C7 00",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[GetZelOperator]",
                    "Der Bediener konnte nicht gelesen werden!\r\n    Position ........: 10");
  ExpectReadFailure(booking, ZELSerialType::Request,
                    "CD 04 20 24 03 15 CE 02 14 37 C6 11 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[GetZelOperator]",
                    "Der Bediener konnte nicht gelesen werden!\r\n    Position ........: 10");
  EXPECT_EQ(booking.Operator(), "");
  ExpectReadFailure(booking, ZELSerialType::Request,
                    "CD 04 20 24 03 15 CE 02 14 37 C6 10 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[GetZelHash]",
                    "Der Posten-Hash konnte nicht gelesen werden!\r\n    Position ........: 28");
  EXPECT_EQ(booking.Operator(), "AAAAAAAAAAAAAAAA");
}

TEST(TransActReadRequest, NoHash) {
  clsZelTransAct booking;
  FillSale(booking);
  (void)BuildRequest(booking);
  const std::string request = booking.ZelRqstData();
  ExpectReadFailure(booking, ZELSerialType::Request,
                    "CD 04 20 24 03 15 CE 02 14 37 C6 04 41 6E 6E 61 C8 02 03 D2",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[GetZelHash]",
                    "Der Posten-Hash konnte nicht gelesen werden!\r\n    Position ........: 16");
  EXPECT_EQ(booking.ItemHash(), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
  EXPECT_EQ(booking.ZelRqstData(), request);
}

TEST(TransActReadRequest, HashOfAReport) {
  clsZelTransAct booking;
  ExpectReadFailure(booking, ZELSerialType::Request,
                    "CD 04 20 24 03 15 CE 02 14 37 C6 01 41 D4 20 " + std::string(kHash),
                    ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[GetZelHash]",
                    "Der Posten-Hash konnte nicht gelesen werden!\r\n    Position ........: 13");
}

TEST(TransActReadRequest, DamagedCurrency) {
  clsZelTransAct booking;
  ExpectReadFailure(booking, ZELSerialType::Request, Head() + "C8 05 03 D2", ZELErrorCodes::Err_Ser_Failed,
                    "DecodeRqst.[GetZelCurrencyCode]",
                    "Der Währungskode konnte nicht gelesen werden!\r\n"
                    "    Position ........: 50\r\n"
                    "    Tag .............: C8");
  EXPECT_EQ(booking.CurrencyCode(), 978);
  EXPECT_EQ(booking.ZelRqstData(), "");
  ExpectReadFailure(booking, ZELSerialType::Request, Head() + "CA 00 C8 00", ZELErrorCodes::Err_Ser_Failed,
                    "DecodeRqst.[GetZelCurrencyCode]",
                    "Der Währungskode konnte nicht gelesen werden!\r\n"
                    "    Position ........: 52\r\n"
                    "    Tag .............: C8");
  EXPECT_TRUE(booking.IsTraining());
}

TEST(TransActReadRequest, DamagedContainer) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  ExpectReadFailure(booking, ZELSerialType::Request,
                    Head() + "C8 02 03 D2 E1 04 D8 02 10 0C E2 04 D8 02 1A 0C", ZELErrorCodes::Err_Ser_Failed,
                    "DecodeRqst.[clsZelContainer.BinaryDataSet]",
                    "Ein Umsatzcontainer konnte nicht gelesen werden!\r\n"
                    "    Position ........: 60\r\n"
                    "    Tag .............: E2\r\n"
                    "    Containernr. ....: 2");
  ExpectContainer(booking, 1, 1, 0, 0);
  EXPECT_EQ(booking.ZelRqstData(), "");
  // Containers have no log file.
  EXPECT_EQ(test::LogSources(log), std::vector<std::string>{"clsZelTransAct"});
}

TEST(TransActReadRequest, DamagedContainersByNumber) {
  clsZelTransAct booking;
  for (int number = 1; number <= 6; ++number) {
    const std::string digit = std::to_string(number);
    ExpectReadFailure(booking, ZELSerialType::Request, Head() + "E" + digit + " 7F",
                      ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[clsZelContainer.BinaryDataSet]",
                      "Ein Umsatzcontainer konnte nicht gelesen werden!\r\n"
                      "    Position ........: 50\r\n"
                      "    Tag .............: E" +
                          digit +
                          "\r\n"
                          "    Containernr. ....: " +
                          digit);
  }
}

TEST(TransActReadRequest, ContainersOfRequestsHaveShortAmounts) {
  clsZelTransAct booking;
  ExpectReadFailure(booking, ZELSerialType::Request, Head() + "E1 0A D8 08 12 34 56 78 90 12 34 5C",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[clsZelContainer.BinaryDataSet]",
                    "Ein Umsatzcontainer konnte nicht gelesen werden!\r\n"
                    "    Position ........: 50\r\n"
                    "    Tag .............: E1\r\n"
                    "    Containernr. ....: 1");
}

TEST(TransActReadRequest, FlagWithoutItsLengthIsNone) {
  for (const std::string tag : {"C9", "CA", "D7"}) {
    clsZelTransAct booking;
    EXPECT_FALSE(HandIn(booking, ZELSerialType::Request, Head() + "C8 02 03 D2 " + tag));
    EXPECT_TRUE(booking.HasError());
    EXPECT_FALSE(booking.IsTaxExcl() || booking.IsTraining() || booking.IsDeliveryNote());
    EXPECT_EQ(booking.ZelRqstData(), "");
  }
}

TEST(TransActReadRequest, RecordsThatHaveNoPlaceInARequest) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  for (const std::string tag : {"CB", "00", "CD", "C6", "E0", "E7", "E8", "E9", "FF", "D8"}) {
    ExpectReadFailure(booking, ZELSerialType::Request, Head() + "C8 02 02 F4 " + tag + " 00",
                      ZELErrorCodes::Err_Ser_TagUnexpected, "DecodeRqst",
                      "Unerwartetes TAG\r\n"
                      "Das gefundenen TAG (s.u.) darf in\r\n"
                      "ZEL-Umsatz-Containern nicht vorkommen!\r\n"
                      "    Tag gefunden ....: " +
                          tag);
    EXPECT_EQ(booking.CurrencyCode(), 756);
    EXPECT_EQ(booking.ZelRqstData(), "");
  }
  EXPECT_EQ(log.Count(), 10U);
}

// Responses

TEST(TransActResponse, FillsTheResponseProperties) {
  clsZelTransAct booking;
  EXPECT_TRUE(HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  test::ExpectNoError(booking);
  EXPECT_EQ(booking.ZelRespTpID(), "DE1");
  EXPECT_EQ(booking.ZelRespTpIDNr(), Currency(2));
  EXPECT_EQ(booking.ZelRespSeqNr(), Currency(300));
  EXPECT_EQ(booking.ZelRespSignature(), test::kSaleSignature);
  EXPECT_EQ(booking.ZelRespData(), test::Base64(test::kSaleResponse));
}

TEST(TransActResponse, LargestNumbersAndLongestTexts) {
  std::string hex = "C4 20";
  for (int i = 0; i < 32; ++i) {
    hex += " 7E";
  }
  hex += " C5 04 FF FF FF FF CB 04 FF FF FF FF 9E 40";
  for (int i = 0; i < 64; ++i) {
    hex += " FF";
  }
  clsZelTransAct booking;
  EXPECT_TRUE(HandIn(booking, ZELSerialType::Response, hex));
  EXPECT_EQ(booking.ZelRespTpID(), std::string(32, '~'));
  EXPECT_EQ(booking.ZelRespTpIDNr(), Currency(4294967295));
  EXPECT_EQ(booking.ZelRespSeqNr(), Currency(4294967295));
  EXPECT_EQ(booking.ZelRespSignature(), std::string(85, '/') + "w==");
}

TEST(TransActResponse, WhatFollowsTheSignatureIsKeptButNotRead) {
  clsZelTransAct booking;
  const std::string hex = std::string(test::kSaleResponse) + " CB 01 07 FF FF FF";
  EXPECT_TRUE(HandIn(booking, ZELSerialType::Response, hex));
  EXPECT_EQ(booking.ZelRespSeqNr(), Currency(300));
  EXPECT_EQ(booking.ZelRespData(), test::Base64(hex));
}

TEST(TransActResponse, IsHandedOutAsItCame) {
  clsZelTransAct booking;
  ASSERT_TRUE(HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  ByteArray data = ByteArray::WithBounds(5, 70);
  std::int32_t length = -1;
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::Response, data, 7, &length));
  test::ExpectNoError(booking);
  EXPECT_EQ(length, 62);
  EXPECT_EQ(ToHex(data), "00 00 " + std::string(test::kSaleResponse) + " 00 00");
}

TEST(TransActResponse, ThatDoesNotFit) {
  clsZelTransAct booking;
  ASSERT_TRUE(HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  ByteArray data = ByteArray::WithBounds(0, 60);
  const ByteArray before = data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Response, data, 0));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataGet",
                    "Serialisierung der Buchung nicht möglich!\r\n"
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Start ..........: 0\r\n"
                    "    Länge ..........: 62\r\n"
                    "    Leseende .......: 61\r\n"
                    "    Obergrenze .....: 60");
  EXPECT_EQ(data, before);
  data.Redim(0, 61);
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::Response, data, 0));
  EXPECT_EQ(ToHex(data), test::kSaleResponse);
}

TEST(TransActResponse, ThatNeverCame) {
  test::TestLog log;
  clsZelTransAct booking;
  FillSale(booking);
  (void)BuildRequest(booking);
  booking.LogHandler(log.Handler());
  ByteArray data = FromHex("01");
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Response, data, 0));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "EncodeResp",
                    "Buchung: Kodieren der ZEL-Antwort nicht möglich!\r\n"
                    "Es sind keine Daten einer ZEL-Antwort vorhanden.!");
  EXPECT_EQ(ToHex(data), "01");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"EncodeResp"});
}

TEST(TransActResponse, NoTaxpayerId) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  ExpectReadFailure(booking, ZELSerialType::Response, "C5 01 02 C4 03 44 45 31",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[GetZelTpID]",
                    "Die Steuerpfl.-ID konnte nicht gelesen werden!\r\n    Position ........: 0");
  EXPECT_EQ(test::LogSources(log), (std::vector<std::string>{"clsZelBaseCoding", "clsZelTransAct"}));
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"GetZelTpID", "DecodeResp.[GetZelTpID]"}));
  ExpectReadFailure(booking, ZELSerialType::Response, "C4 00 C5 01 02", ZELErrorCodes::Err_Ser_Failed,
                    "DecodeResp.[GetZelTpID]",
                    "Die Steuerpfl.-ID konnte nicht gelesen werden!\r\n    Position ........: 0");
  std::string tooLong = "C4 21";
  for (int i = 0; i < 33; ++i) {
    tooLong += " 41";
  }
  ExpectReadFailure(booking, ZELSerialType::Response, tooLong, ZELErrorCodes::Err_Ser_Failed,
                    "DecodeResp.[GetZelTpID]",
                    "Die Steuerpfl.-ID konnte nicht gelesen werden!\r\n    Position ........: 0");
  EXPECT_EQ(booking.ZelRespTpID(), "");
}

TEST(TransActResponse, NoDeviceNumber) {
  clsZelTransAct booking;
  ExpectReadFailure(booking, ZELSerialType::Response, "C4 03 44 45 31 CB 02 01 2C",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[GetZelTpIDNr]",
                    "Die laufende ZEL-Nr konnte nicht gelesen werden!\r\n    Position ........: 5");
  EXPECT_EQ(booking.ZelRespTpID(), "DE1");
  ExpectReadFailure(booking, ZELSerialType::Response, "C4 03 44 45 31 C5 05 00 00 00 00 01",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[GetZelTpIDNr]",
                    "Die laufende ZEL-Nr konnte nicht gelesen werden!\r\n    Position ........: 5");
  ExpectReadFailure(booking, ZELSerialType::Response, "C4 03 44 45 31 C5 00", ZELErrorCodes::Err_Ser_Failed,
                    "DecodeResp.[GetZelTpIDNr]",
                    "Die laufende ZEL-Nr konnte nicht gelesen werden!\r\n    Position ........: 5");
}

TEST(TransActResponse, NoSequenceNumber) {
  clsZelTransAct booking;
  ExpectReadFailure(booking, ZELSerialType::Response, "C4 03 44 45 31 C5 01 02 CC 02 01 2C",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[GetZelCounter]",
                    "Die Sequenznummer konnte nicht gelesen werden!\r\n    Position ........: 8");
  EXPECT_EQ(booking.ZelRespTpIDNr(), Currency(2));
  ExpectReadFailure(booking, ZELSerialType::Response, "C4 03 44 45 31 C5 01 02 CB 00 9E 00",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[GetZelCounter]",
                    "Die Sequenznummer konnte nicht gelesen werden!\r\n    Position ........: 8");
  EXPECT_EQ(booking.ZelRespSeqNr(), Currency(0));
}

TEST(TransActResponse, NoSignature) {
  clsZelTransAct booking;
  ExpectReadFailure(booking, ZELSerialType::Response, "C4 03 44 45 31 C5 01 02 CB 02 01 2C",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[GetZelSignature2]",
                    "Die Signatur der Buchung konnte nicht gelesen werden!\r\n    Position ........: 12");
  EXPECT_EQ(booking.ZelRespSeqNr(), Currency(300));
  EXPECT_EQ(booking.ZelRespSignature(), "");
  EXPECT_EQ(booking.ZelRespData(), "");
}

TEST(TransActResponse, SignatureOf48To64Bytes) {
  const auto response = [](int length) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string hex = "C4 01 44 C5 01 02 CB 01 01 9E ";
    hex += digits[static_cast<std::size_t>(length / 16)];
    hex += digits[static_cast<std::size_t>(length % 16)];
    for (int i = 0; i < length; ++i) {
      hex += " 00";
    }
    return hex;
  };
  clsZelTransAct booking;
  for (const int length : {47, 65, 127}) {
    ExpectReadFailure(booking, ZELSerialType::Response, response(length), ZELErrorCodes::Err_Ser_Failed,
                      "DecodeResp.[GetZelSignature2]",
                      "Die Signatur der Buchung konnte nicht gelesen werden!\r\n    Position ........: 9");
  }
  EXPECT_TRUE(HandIn(booking, ZELSerialType::Response, response(48)));
  EXPECT_EQ(booking.ZelRespSignature(), std::string(64, 'A'));
  EXPECT_TRUE(HandIn(booking, ZELSerialType::Response, response(64)));
  EXPECT_EQ(booking.ZelRespSignature(), std::string(86, 'A') + "==");
}

TEST(TransActResponse, OtherOrdersEndAtTheFirstMismatch) {
  clsZelTransAct booking;
  ExpectReadFailure(booking, ZELSerialType::Response, "C4 03 44 45 31 CB 02 01 2C C5 01 02",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[GetZelTpIDNr]",
                    "Die laufende ZEL-Nr konnte nicht gelesen werden!\r\n    Position ........: 5");
  ExpectReadFailure(booking, ZELSerialType::Response, "CB 02 01 2C C4 03 44 45 31 C5 01 02",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[GetZelTpID]",
                    "Die Steuerpfl.-ID konnte nicht gelesen werden!\r\n    Position ........: 0");
  ExpectReadFailure(booking, ZELSerialType::Response, "C4 03 44 45 31 C5 01 02 9E 00 CB 02 01 2C",
                    ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[GetZelCounter]",
                    "Die Sequenznummer konnte nicht gelesen werden!\r\n    Position ........: 8");
}

TEST(TransActResponse, PositionsCountFromStart) {
  clsZelTransAct booking;
  EXPECT_FALSE(
      booking.BinaryDataSet(ZELSerialType::Response, FromHexAt(20, "FF FF C4 03 44 45 31 CB 01 01"), 22));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "DecodeResp.[GetZelTpIDNr]",
                    "Die laufende ZEL-Nr konnte nicht gelesen werden!\r\n    Position ........: 5");
}

TEST(TransActResponse, FailureKeepsTheLastResponsesData) {
  clsZelTransAct booking;
  ASSERT_TRUE(HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  EXPECT_FALSE(HandIn(booking, ZELSerialType::Response, "C4 01 58 C5 01 09 CB 01 08"));
  EXPECT_EQ(booking.ZelRespTpID(), "X");
  EXPECT_EQ(booking.ZelRespTpIDNr(), Currency(9));
  EXPECT_EQ(booking.ZelRespSeqNr(), Currency(8));
  EXPECT_EQ(booking.ZelRespSignature(), test::kSaleSignature);
  EXPECT_EQ(booking.ZelRespData(), test::Base64(test::kSaleResponse));
}

}  // namespace
}  // namespace VnZEL10cmn
