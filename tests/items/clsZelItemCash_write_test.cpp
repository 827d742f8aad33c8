#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "tests/items/HostLocale.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace {

using test::FromHex;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::Currency;
using VnZEL10cmn::ZELSerialType;

Currency Cents(std::int64_t cents) { return Currency::FromScaled(cents * 100); }

// The item's records in hexadecimal, written into a roomy buffer; the operation has to succeed.
std::string Records(clsZelItemCash& item) {
  ByteArray data = ByteArray::WithBounds(0, 255);
  std::int32_t start = 0;
  EXPECT_TRUE(item.BinaryDataGet(data, start)) << item.ErrorObject().ErrorMsg();
  test::ExpectNoError(item);
  EXPECT_EQ(data.UBound(), 255);
  for (std::int32_t i = start; i <= 255; ++i) {
    EXPECT_EQ(data[i], 0) << "behind the records, at " << i;
  }
  data.RedimPreserve(start - 1);
  return ToHex(data);
}

// The quantity record of an item named "a", without the name behind it.
std::string QuantityRecord(std::int64_t scaled) {
  clsZelItemCash item;
  item.Name("a");
  item.Quantity(Currency::FromScaled(scaled));
  const std::string records = Records(item);
  const std::string_view name = " A2 01 61";
  EXPECT_TRUE(records.ends_with(name)) << records;
  return records.substr(0, records.size() - name.size());
}

std::string NameRecord(std::string_view name) {
  clsZelItemCash item;
  item.Name(name);
  const std::string records = Records(item);
  const std::string_view quantity = "A0 01 31 ";
  EXPECT_TRUE(records.starts_with(quantity)) << records;
  return records.substr(quantity.size());
}

// A failing write: number 0, not user-defined, "BinaryDataGet.[]", the label and an empty line; no log entry.
void ExpectObjectFailure(clsZelItemCash& item, std::int32_t upper, std::int32_t startAfter,
                         std::string_view label) {
  test::TestLog log;
  item.LogHandler(log.Handler());
  ByteArray data = ByteArray::WithBounds(0, upper);
  std::int32_t start = 0;
  EXPECT_FALSE(item.BinaryDataGet(data, start));
  test::ExpectError(item.ErrorObject(), 0, false, "BinaryDataGet.[]",
                    "Objekt: \"" + std::string(label) + "\":\r\n");
  EXPECT_EQ(start, startAfter);
  EXPECT_EQ(data.UBound(), upper);
  EXPECT_EQ(log.Count(), 0U);
  item.LogHandler(nullptr);
}

TEST(clsZelItemCashWrite, QuantityNameAndOnePriceWithoutUnit) {
  clsZelItemCash item;
  item.Quantity(Currency::FromScaled(25000));
  item.Name("Kaffee");
  item.Price(1, Cents(199));
  EXPECT_EQ(Records(item), "A0 03 32 2E 35 A2 06 6B 61 66 66 65 65 B1 02 19 9C");
}

TEST(clsZelItemCashWrite, AllRecordsInTheirOrder) {
  clsZelItemCash item;
  EXPECT_TRUE(item.SetItemData(3, "Brot", "kg", Cents(1), Cents(-22), Cents(4444), true, true, true,
                               Cents(55555), Cents(-666666), Cents(333)));
  EXPECT_EQ(Records(item),
            "A0 01 33 "           // 3
            "A1 02 6B 67 "        // kg
            "A2 04 62 72 6F 74 "  // brot
            "AA 00 AB 00 AC 00 "
            "B1 01 1C "          // 0.01
            "B2 02 02 2D "       // -0.22
            "B3 02 33 3C "       // 3.33
            "B4 03 04 44 4C "    // 44.44
            "B5 03 55 55 5C "    // 555.55
            "B6 04 06 66 66 6D"  // -6666.66
  );
}

TEST(clsZelItemCashWrite, EachFlagAlone) {
  clsZelItemCash item;
  item.Name("a");
  item.DiscSurc(true);
  EXPECT_EQ(Records(item), "A0 01 31 A2 01 61 AA 00");
  item.DiscSurc(false);
  item.Voucher(true);
  EXPECT_EQ(Records(item), "A0 01 31 A2 01 61 AB 00");
  item.Voucher(false);
  item.ThirdParty(true);
  EXPECT_EQ(Records(item), "A0 01 31 A2 01 61 AC 00");
}

TEST(clsZelItemCashWrite, StartStandsBehindTheLastRecordAndBytesBeforeItStay) {
  clsZelItemCash item;
  item.Name("a");
  ByteArray data = FromHex("11 22 33 44 55 66 77 88 99 AA");
  std::int32_t start = 2;
  EXPECT_TRUE(item.BinaryDataGet(data, start));
  EXPECT_EQ(start, 8);
  EXPECT_EQ(ToHex(data), "11 22 A0 01 31 A2 01 61 99 AA");
}

TEST(clsZelItemCashWrite, ABufferOfExactlyTheRecordsLengthIsEnough) {
  clsZelItemCash item;
  item.Name("a");
  item.ThirdParty(true);
  item.Price(6, Cents(100));
  ByteArray data = ByteArray::WithBounds(0, 11);
  std::int32_t start = 0;
  EXPECT_TRUE(item.BinaryDataGet(data, start));
  EXPECT_EQ(start, 12);
  EXPECT_EQ(ToHex(data), "A0 01 31 A2 01 61 AC 00 B6 02 10 0C");
}

TEST(clsZelItemCashWrite, APositiveLowerBoundIsAddressedAbsolutely) {
  clsZelItemCash item;
  item.Name("a");
  ByteArray data = ByteArray::WithBounds(5, 12);
  std::int32_t start = 6;
  EXPECT_TRUE(item.BinaryDataGet(data, start));
  EXPECT_EQ(start, 12);
  EXPECT_EQ(ToHex(data), "00 A0 01 31 A2 01 61 00");
  EXPECT_EQ(data.LBound(), 5);
}

TEST(clsZelItemCashWrite, SerialTypeTextAndLengthHaveNoInfluence) {
  clsZelItemCash item;
  item.Name("a");
  for (const ZELSerialType type :
       {ZELSerialType::ObjectData, ZELSerialType::ItemList, ZELSerialType::Request, ZELSerialType::Response,
        ZELSerialType::BinaryData, static_cast<ZELSerialType>(99)}) {
    ByteArray data = ByteArray::WithBounds(0, 15);
    std::int32_t start = 0;
    EXPECT_TRUE(item.BinaryDataGet(data, start, type, "text", 1));
    EXPECT_EQ(start, 6);
    EXPECT_EQ(ToHex(data), "A0 01 31 A2 01 61 00 00 00 00 00 00 00 00 00 00");
  }
}

TEST(clsZelItemCashWrite, QuantityTexts) {
  EXPECT_EQ(QuantityRecord(10000), "A0 01 31");                          // 1
  EXPECT_EQ(QuantityRecord(25000), "A0 03 32 2E 35");                    // 2.5
  EXPECT_EQ(QuantityRecord(1250), "A0 05 30 2E 31 32 35");               // 0.125
  EXPECT_EQ(QuantityRecord(-30000), "A0 02 2D 33");                      // -3
  EXPECT_EQ(QuantityRecord(1), "A0 06 30 2E 30 30 30 31");               // 0.0001
  EXPECT_EQ(QuantityRecord(-5000), "A0 04 2D 30 2E 35");                 // -0.5
  EXPECT_EQ(QuantityRecord(100000), "A0 02 31 30");                      // 10
  EXPECT_EQ(QuantityRecord(12345600), "A0 07 31 32 33 34 2E 35 36");     // 1234.56
  EXPECT_EQ(QuantityRecord(10000000000), "A0 07 31 30 30 30 30 30 30");  // 1000000, no separators
}

TEST(clsZelItemCashWrite, QuantityIsWrittenWithAPointWhateverTheHostsCharacters) {
  const test::HostLocale locale(test::HostLocale::Characters{'#', '\'', '-', '_'});
  EXPECT_EQ(QuantityRecord(25000), "A0 03 32 2E 35");
  EXPECT_EQ(QuantityRecord(12345678), "A0 09 31 32 33 34 2E 35 36 37 38");
  EXPECT_EQ(QuantityRecord(10000), "A0 01 31");
}

TEST(clsZelItemCashWrite, QuantityTextOfElevenCharactersIsWritten) {
  EXPECT_EQ(QuantityRecord(12345678910), "A0 0B 31 32 33 34 35 36 37 2E 38 39 31");      // 1234567.891
  EXPECT_EQ(QuantityRecord(-1234567890), "A0 0B 2D 31 32 33 34 35 36 2E 37 38 39");      // -123456.789
  EXPECT_EQ(QuantityRecord(123456789010000), "A0 0B 31 32 33 34 35 36 37 38 39 30 31");  // 12345678901
}

TEST(clsZelItemCashWrite, QuantityTextOfTwelveCharactersFails) {
  struct Case {
    std::int64_t scaled;
    std::string_view text;
  };
  for (const Case& each : {Case{12345678912, "1234567.8912"}, Case{-1234567891, "-123456.7891"},
                           Case{1234567890120000, "123456789012"}, Case{INT64_MAX, "922337203685477.5807"},
                           Case{INT64_MIN, "-922337203685477.5808"}}) {
    test::TestLog log;
    clsZelItemCash item;
    item.LogHandler(log.Handler());
    item.Name("a");
    item.Quantity(Currency::FromScaled(each.scaled));
    ByteArray data = ByteArray::WithBounds(0, 63);
    std::int32_t start = 3;
    EXPECT_FALSE(item.BinaryDataGet(data, start));
    test::ExpectError(
        item.ErrorObject(), 9203, true, "BinaryDataGet",
        "Die Zeichenfolge für die Menge ist zu lang!\r\n    Zeichenfolge ......: " + std::string(each.text));
    EXPECT_EQ(start, 3);
    EXPECT_EQ(data, ByteArray::WithBounds(0, 63));
    EXPECT_EQ(log.Count(), 0U);
  }
}

TEST(clsZelItemCashWrite, MissingNameFailsBeforeAnythingIsWrittenAndIsNotLogged) {
  test::TestLog log;
  clsZelItemCash item;
  item.LogHandler(log.Handler());
  ByteArray data = ByteArray::WithBounds(0, 63);
  std::int32_t start = 1;
  EXPECT_FALSE(item.BinaryDataGet(data, start));
  test::ExpectError(item.ErrorObject(), 9302, true, "BinaryDataGet",
                    "Für den Posten ist keine\r\nBezeichnung angegeben!");
  EXPECT_EQ(start, 1);
  EXPECT_EQ(data, ByteArray::WithBounds(0, 63));
  EXPECT_EQ(log.Count(), 0U);
}

TEST(clsZelItemCashWrite, MissingNameIsFoundBeforeATooLongQuantity) {
  clsZelItemCash item;
  item.Quantity(Currency::FromScaled(INT64_MAX));
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_FALSE(item.BinaryDataGet(data, start));
  EXPECT_EQ(item.ErrorObject().ErrorNr(), 9302);
}

TEST(clsZelItemCashWrite, TheFormWithSerialTypeFailsTheSameWay) {
  clsZelItemCash item;
  ByteArray data = ByteArray::WithBounds(0, 63);
  std::int32_t start = 0;
  EXPECT_FALSE(item.BinaryDataGet(data, start, ZELSerialType::ObjectData));
  test::ExpectError(item.ErrorObject(), 9302, true, "BinaryDataGet",
                    "Für den Posten ist keine\r\nBezeichnung angegeben!");
}

TEST(clsZelItemCashWrite, NameBecomesDeviceSafe) {
  EXPECT_EQ(NameRecord("Kaffee"), "A2 06 6B 61 66 66 65 65");
  // Brot & Käse -> brot#k#se
  EXPECT_EQ(NameRecord("Brot & Käse"), "A2 09 62 72 6F 74 23 6B 23 73 65");
  // Ä -> #, # stays, digits stay
  EXPECT_EQ(NameRecord("Ä#9z"), "A2 04 23 23 39 7A");
}

TEST(clsZelItemCashWrite, NameIsCutToSixteenCharactersAfterItsBlanksAreGone) {
  EXPECT_EQ(NameRecord("a b c d e f g h i j k l m n o p q r"),
            "A2 10 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70");
  EXPECT_EQ(NameRecord("abcdefghijklmnop"), "A2 10 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70");
  // Käse-Brötchen groß! -> k#se#br#tchengro
  EXPECT_EQ(NameRecord("Käse-Brötchen groß!"), "A2 10 6B 23 73 65 23 62 72 23 74 63 68 65 6E 67 72 6F");
}

TEST(clsZelItemCashWrite, UnitBecomesDeviceSafeAndIsCutToEightCharacters) {
  clsZelItemCash item;
  item.Name("a");
  item.Unit("Stück");
  EXPECT_EQ(Records(item), "A0 01 31 A1 05 73 74 23 63 6B A2 01 61");
  item.Unit("Müller GmbH & Co.");
  EXPECT_EQ(Records(item), "A0 01 31 A1 08 6D 23 6C 6C 65 72 67 6D A2 01 61");
}

TEST(clsZelItemCashWrite, EachPriceSlotHasItsTag) {
  for (std::int32_t i = 1; i <= 6; ++i) {
    clsZelItemCash item;
    item.Name("a");
    item.Price(i, Cents(1234));
    ByteArray expected = FromHex("A0 01 31 A2 01 61 B0 03 01 23 4C");
    expected[6] = static_cast<std::uint8_t>(expected[6] + i);
    EXPECT_EQ(Records(item), ToHex(expected));
  }
}

TEST(clsZelItemCashWrite, PricesAreRoundedToCentsHalfAwayFromZero) {
  struct Case {
    std::int64_t scaled;
    std::string_view record;
  };
  for (const Case& each : {Case{10050, "B1 02 10 1C"},   // 1.005 -> 1.01
                           Case{-10050, "B1 02 10 1D"},  // -1.005 -> -1.01
                           Case{10049, "B1 02 10 0C"},   // 1.0049 -> 1.00
                           Case{10150, "B1 02 10 2C"},   // 1.015 -> 1.02
                           Case{50, "B1 01 1C"},         // 0.005 -> 0.01
                           Case{-50, "B1 01 1D"}}) {     // -0.005 -> -0.01
    clsZelItemCash item;
    item.Name("a");
    item.Price(1, Currency::FromScaled(each.scaled));
    EXPECT_EQ(Records(item), "A0 01 31 A2 01 61 " + std::string(each.record));
  }
}

TEST(clsZelItemCashWrite, ThePriceOfElevenDigitsIsTheLargest) {
  clsZelItemCash item;
  item.Name("a");
  item.Price(1, Cents(99999999999));
  item.Price(2, Cents(-99999999999));
  EXPECT_EQ(Records(item), "A0 01 31 A2 01 61 B1 06 99 99 99 99 99 9C B2 06 99 99 99 99 99 9D");
}

TEST(clsZelItemCashWrite, APriceOfTwelveDigitsFailsAsPriceZero) {
  clsZelItemCash item;
  item.Name("a");
  item.Price(1, Cents(100000000000));
  ExpectObjectFailure(item, 63, 6, "Preis 0");
  item.Price(1, Cents(-100000000000));
  ExpectObjectFailure(item, 63, 6, "Preis 0");
  item.Price(1, Currency::FromScaled(INT64_MAX));
  ExpectObjectFailure(item, 63, 6, "Preis 0");
  item.Price(1, Currency::FromScaled(INT64_MIN));
  ExpectObjectFailure(item, 63, 6, "Preis 0");
}

TEST(clsZelItemCashWrite, PricesAreNumberedFromZeroInTheMessage) {
  for (std::int32_t i = 1; i <= 6; ++i) {
    clsZelItemCash item;
    item.Name("a");
    item.Price(i, Cents(100000000000));
    ExpectObjectFailure(item, 63, 6, "Preis " + std::to_string(i - 1));
  }
}

TEST(clsZelItemCashWrite, APriceThatRoundsToZeroFails) {
  for (const std::int64_t scaled : {1, 49, -1, -49}) {
    clsZelItemCash item;
    item.Name("a");
    item.Price(1, Cents(100));
    item.Price(3, Currency::FromScaled(scaled));
    ExpectObjectFailure(item, 63, 10, "Preis 2");
  }
}

TEST(clsZelItemCashWrite, NoRoomForTheQuantity) {
  clsZelItemCash item;
  item.Name("a");
  for (const std::int32_t upper : {-1, 0, 1}) {
    ExpectObjectFailure(item, upper, 0, "Mengenangabe");
  }
}

TEST(clsZelItemCashWrite, NoRoomForTheUnit) {
  clsZelItemCash item;
  item.Name("a");
  item.Unit("kg");
  for (const std::int32_t upper : {2, 3, 5}) {
    ExpectObjectFailure(item, upper, 3, "Mengeneinheit");
  }
}

TEST(clsZelItemCashWrite, NoRoomForTheName) {
  clsZelItemCash item;
  item.Name("a");
  for (const std::int32_t upper : {2, 3, 4}) {
    ExpectObjectFailure(item, upper, 3, "Bezeichnung");
  }
}

TEST(clsZelItemCashWrite, NoRoomForTheDiscountFlagIsReportedAsThirdParty) {
  clsZelItemCash item;
  item.Name("a");
  item.DiscSurc(true);
  for (const std::int32_t upper : {5, 6}) {
    ExpectObjectFailure(item, upper, 6, "Agenturgeschäft");
  }
}

TEST(clsZelItemCashWrite, NoRoomForTheVoucherFlag) {
  clsZelItemCash item;
  item.Name("a");
  item.Voucher(true);
  ExpectObjectFailure(item, 5, 6, "Gutschein");
  item.DiscSurc(true);
  ExpectObjectFailure(item, 8, 8, "Gutschein");
}

TEST(clsZelItemCashWrite, NoRoomForTheThirdPartyFlag) {
  clsZelItemCash item;
  item.Name("a");
  item.ThirdParty(true);
  for (const std::int32_t upper : {5, 6}) {
    ExpectObjectFailure(item, upper, 6, "Agenturgeschäft");
  }
}

TEST(clsZelItemCashWrite, NoRoomForAPrice) {
  clsZelItemCash item;
  item.Name("a");
  item.Price(2, Cents(100));
  for (const std::int32_t upper : {5, 6, 8}) {
    ExpectObjectFailure(item, upper, 6, "Preis 1");
  }
}

TEST(clsZelItemCashWrite, AStartOutsideTheBufferIsAFailureOfTheQuantity) {
  clsZelItemCash item;
  item.Name("a");
  for (const std::int32_t outside : {-1, 64, INT32_MIN, INT32_MAX}) {
    ByteArray data = ByteArray::WithBounds(0, 63);
    std::int32_t start = outside;
    EXPECT_FALSE(item.BinaryDataGet(data, start));
    test::ExpectError(item.ErrorObject(), 0, false, "BinaryDataGet.[]", "Objekt: \"Mengenangabe\":\r\n");
    EXPECT_EQ(start, outside);
    EXPECT_EQ(data, ByteArray::WithBounds(0, 63));
  }
}

TEST(clsZelItemCashWrite, ANegativeLowerBoundIsAFailureOfTheQuantity) {
  clsZelItemCash item;
  item.Name("a");
  ByteArray data = ByteArray::WithBounds(-1, 63);
  std::int32_t start = 0;
  EXPECT_FALSE(item.BinaryDataGet(data, start));
  test::ExpectError(item.ErrorObject(), 0, false, "BinaryDataGet.[]", "Objekt: \"Mengenangabe\":\r\n");
  EXPECT_EQ(start, 0);
}

// A name or unit of blanks alone can't be set, but a device record can hold one.
TEST(clsZelItemCashWrite, ANameOfBlanksAloneIsAFailureOfTheName) {
  clsZelItemCash item;
  std::int32_t start = 0;
  ASSERT_TRUE(item.BinaryDataSet(FromHex("A0 01 31 A2 02 20 20"), start));
  ExpectObjectFailure(item, 63, 3, "Bezeichnung");
}

TEST(clsZelItemCashWrite, AUnitOfBlanksAloneIsAFailureOfTheUnit) {
  clsZelItemCash item;
  std::int32_t start = 0;
  ASSERT_TRUE(item.BinaryDataSet(FromHex("A0 01 31 A1 01 20 A2 01 61"), start));
  ExpectObjectFailure(item, 63, 3, "Mengeneinheit");
}

TEST(clsZelItemCashWrite, BlanksAtTheEndOfAReadNameLeaveWhatStandsBehindTheRecords) {
  clsZelItemCash item;
  std::int32_t start = 0;
  ASSERT_TRUE(item.BinaryDataSet(FromHex("A0 01 31 A1 02 6B 20 A2 03 61 20 20"), start));
  EXPECT_EQ(Records(item), "A0 01 31 A1 01 6B A2 01 61");
}

TEST(clsZelItemCashWrite, SuccessClearsAnOldErrorAndItsOrigin) {
  clsZelItemCash item;
  EXPECT_FALSE(item.SetItemData(1, ""));
  item.Name("a");
  EXPECT_EQ(Records(item), "A0 01 31 A2 01 61");
}

TEST(clsZelItemCashWrite, UserDefinedMarkDoesNotSurviveFromAnEarlierFailure) {
  clsZelItemCash item;
  EXPECT_FALSE(item.SetItemData(1, ""));
  EXPECT_TRUE(item.ErrorObject().IsUserDef());
  item.Name("a");
  ExpectObjectFailure(item, 2, 3, "Bezeichnung");
}

}  // namespace
