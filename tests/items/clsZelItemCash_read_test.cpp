#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "tests/items/HostLocale.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace {

using test::FromHex;
using test::FromHexAt;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::Currency;

Currency Cents(std::int64_t cents) { return Currency::FromScaled(cents * 100); }

// Reads from the start of the bytes, which has to succeed, and tells where `Start` came to stand.
std::int32_t Read(clsZelItemCash& item, std::string_view hex) {
  const ByteArray data = FromHex(hex);
  std::int32_t start = 0;
  EXPECT_TRUE(item.BinaryDataSet(data, start)) << item.ErrorObject().ErrorMsg();
  test::ExpectNoError(item);
  return start;
}

// Reads from `start` on, which has to fail, be logged once and leave `Start`.
void ExpectReadFailure(const ByteArray& data, std::int32_t start, std::int32_t number,
                       std::string_view function, std::string_view message) {
  test::TestLog log;
  clsZelItemCash item;
  item.LogHandler(log.Handler());
  const std::int32_t before = start;
  EXPECT_FALSE(item.BinaryDataSet(data, start));
  test::ExpectError(item.ErrorObject(), number, true, function, message);
  EXPECT_EQ(start, before);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{std::string(function)});
}

// Reading a quantity text that is none: an unforeseen fault, logged, with `Start` restored.
void ExpectQuantityFault(std::string_view hex, std::int32_t number) {
  test::TestLog log;
  clsZelItemCash item;
  item.LogHandler(log.Handler());
  std::int32_t start = 0;
  EXPECT_FALSE(item.BinaryDataSet(FromHex(hex), start)) << hex;
  test::ExpectFault(item.ErrorObject(), number, "BinaryDataSet");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(log.Count(), 1U);
}

TEST(clsZelItemCashRead, EveryRecordFillsItsField) {
  clsZelItemCash item;
  EXPECT_EQ(Read(item,
                 "A0 03 32 2E 35 A1 02 6B 67 A2 04 62 72 6F 74 AA 00 AB 00 AC 00 "
                 "B1 02 19 9C B2 02 02 2D B3 02 33 3C B4 03 04 44 4C B5 03 55 55 5C B6 04 06 66 66 6D"),
            49);
  EXPECT_EQ(item.Quantity(), Currency::FromScaled(25000));
  EXPECT_EQ(item.Unit(), "kg");
  EXPECT_EQ(item.Name(), "brot");
  EXPECT_TRUE(item.DiscSurc());
  EXPECT_TRUE(item.Voucher());
  EXPECT_TRUE(item.ThirdParty());
  EXPECT_EQ(item.Price(1), Cents(199));
  EXPECT_EQ(item.Price(2), Cents(-22));
  EXPECT_EQ(item.Price(3), Cents(333));
  EXPECT_EQ(item.Price(4), Cents(4444));
  EXPECT_EQ(item.Price(5), Cents(55555));
  EXPECT_EQ(item.Price(6), Cents(-666666));
}

TEST(clsZelItemCashRead, WhatIsNotInTheRecordsIsReset) {
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(5, "alt", "Stk", 1, 2, 3, true, true, true, 4, 5, 6));
  const std::string id = item.InstanceID();
  EXPECT_EQ(Read(item, "A2 01 62"), 3);
  EXPECT_EQ(item.Quantity(), Currency(1));
  EXPECT_EQ(item.Unit(), "");
  EXPECT_EQ(item.Name(), "b");
  EXPECT_FALSE(item.DiscSurc() || item.Voucher() || item.ThirdParty());
  for (std::int32_t i = 1; i <= 6; ++i) {
    EXPECT_EQ(item.Price(i), Currency(0)) << i;
  }
  EXPECT_EQ(item.InstanceID(), id);
}

TEST(clsZelItemCashRead, TheOrderOfTheRecordsDoesNotMatter) {
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "B1 01 5C AB 00 A2 01 62 A1 01 6C A0 01 37"), 14);
  EXPECT_EQ(item.Quantity(), Currency(7));
  EXPECT_EQ(item.Unit(), "l");
  EXPECT_EQ(item.Name(), "b");
  EXPECT_FALSE(item.DiscSurc());
  EXPECT_TRUE(item.Voucher());
  EXPECT_EQ(item.Price(1), Cents(5));
}

TEST(clsZelItemCashRead, ARepeatedFieldOtherThanTheQuantityOverwrites) {
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "A0 01 32 A2 01 62 A2 02 63 64 B1 01 5C B1 01 6C AA 00 AA 00"), 20);
  EXPECT_EQ(item.Name(), "cd");
  EXPECT_EQ(item.Price(1), Cents(6));
  EXPECT_TRUE(item.DiscSurc());
}

TEST(clsZelItemCashRead, TwoItemsStopAtTheSecondQuantity) {
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "A0 01 32 A2 01 62 A0 01 33 A2 01 63"), 6);
  EXPECT_EQ(item.Quantity(), Currency(2));
  EXPECT_EQ(item.Name(), "b");
  std::int32_t start = 6;
  EXPECT_TRUE(item.BinaryDataSet(FromHex("A0 01 32 A2 01 62 A0 01 33 A2 01 63"), start));
  EXPECT_EQ(start, 12);
  EXPECT_EQ(item.Quantity(), Currency(3));
  EXPECT_EQ(item.Name(), "c");
}

TEST(clsZelItemCashRead, AQuantityReadLateStillEndsAtTheNext) {
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "A2 01 62 A0 01 32 A0 01 33"), 6);
  EXPECT_EQ(item.Quantity(), Currency(2));
}

TEST(clsZelItemCashRead, TheSecondQuantityIsNotLookedInto) {
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "A0 01 32 A2 01 62 A0 7F"), 6);
}

TEST(clsZelItemCashRead, ASecondReadMayStartWithAQuantityAgain) {
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "A0 01 32 A2 01 62"), 6);
  EXPECT_EQ(Read(item, "A0 01 33 A2 01 63"), 6);
  EXPECT_EQ(item.Quantity(), Currency(3));
}

TEST(clsZelItemCashRead, ASingleByteBehindTheRecordsIsLeftAlone) {
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "A0 01 32 A2 01 62 C7"), 6);
  EXPECT_EQ(item.Name(), "b");
}

TEST(clsZelItemCashRead, TwoBytesBehindTheRecordsAreARecord) {
  ExpectReadFailure(FromHex("A0 01 32 A2 01 62 00 00"), 0, 9305, "BinaryDataSet",
                    "Unerwartetes TAG\r\nDas gefundenen TAG (s.u.) darf in\r\n"
                    "ZEL-Umsatz-Containern nicht vorkommen!\r\n    Tag gefunden ....: 00");
}

TEST(clsZelItemCashRead, APositiveLowerBoundIsAddressedAbsolutely) {
  clsZelItemCash item;
  std::int32_t start = 100;
  EXPECT_TRUE(item.BinaryDataSet(FromHexAt(100, "A0 01 32 A2 01 62"), start));
  EXPECT_EQ(start, 106);
  EXPECT_EQ(item.Name(), "b");
}

TEST(clsZelItemCashRead, TextsAreNotTrimmed) {
  clsZelItemCash item;
  Read(item, "A1 03 20 6C 20 A2 04 20 62 20 20");
  EXPECT_EQ(item.Unit(), " l ");
  EXPECT_EQ(item.Name(), " b  ");
}

TEST(clsZelItemCashRead, TextsHaveNoLengthLimitsBelow127) {
  clsZelItemCash item;
  std::string hex = "A1 00 A2 7F";
  for (int i = 0; i < 127; ++i) {
    hex += " 7F";
  }
  EXPECT_EQ(Read(item, hex), 131);
  EXPECT_EQ(item.Unit(), "");
  EXPECT_EQ(item.Name(), std::string(127, '\x7F'));
}

TEST(clsZelItemCashRead, QuantityTexts) {
  clsZelItemCash item;
  Read(item, "A0 02 2D 33");
  EXPECT_EQ(item.Quantity().Scaled(), -30000);
  Read(item, "A0 05 30 2E 31 32 35");
  EXPECT_EQ(item.Quantity().Scaled(), 1250);
  Read(item, "A0 06 31 32 33 34 2E 35");
  EXPECT_EQ(item.Quantity().Scaled(), 12345000);
  Read(item, "A0 0B 31 32 33 34 35 36 37 2E 38 39 31");
  EXPECT_EQ(item.Quantity().Scaled(), 12345678910);
}

TEST(clsZelItemCashRead, QuantityTextsOfMoreDecimalsAreRounded) {
  clsZelItemCash item;
  Read(item, "A0 07 31 2E 32 33 34 35 36");  // 1.23456
  EXPECT_EQ(item.Quantity().Scaled(), 12346);
  Read(item, "A0 07 31 2E 32 33 34 34 35");  // 1.23445
  EXPECT_EQ(item.Quantity().Scaled(), 12344);
}

TEST(clsZelItemCashRead, QuantityTextIsTrimmed) {
  clsZelItemCash item;
  Read(item, "A0 05 20 32 2E 35 20");
  EXPECT_EQ(item.Quantity().Scaled(), 25000);
}

TEST(clsZelItemCashRead, EmptyBlankAndZeroQuantitiesAreOne) {
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "A0 00"), 2);
  EXPECT_EQ(item.Quantity(), Currency(1));
  Read(item, "A0 03 20 20 20");
  EXPECT_EQ(item.Quantity(), Currency(1));
  Read(item, "A0 01 30");
  EXPECT_EQ(item.Quantity(), Currency(1));
  Read(item, "A0 03 30 2E 30");
  EXPECT_EQ(item.Quantity(), Currency(1));
}

TEST(clsZelItemCashRead, QuantityIsReadWithTheHostsDecimalCharacter) {
  clsZelItemCash item;
  Read(item, "A0 03 32 2C 35");  // 2,5 where the comma separates decimals
  EXPECT_EQ(item.Quantity().Scaled(), 25000);
  const test::HostLocale locale(test::HostLocale::Characters{'#', '\'', '-', '_'});
  Read(item, "A0 03 32 2E 35");  // 2.5
  EXPECT_EQ(item.Quantity().Scaled(), 25000);
  Read(item, "A0 03 32 23 35");  // 2#5
  EXPECT_EQ(item.Quantity().Scaled(), 25000);
}

TEST(clsZelItemCashRead, AQuantityThatIsNoNumberIsAFault) {
  ExpectQuantityFault("A0 03 61 62 63", 13);        // abc
  ExpectQuantityFault("A0 05 31 2E 32 2E 33", 13);  // 1.2.3
  ExpectQuantityFault("A0 01 2D", 13);              // -
  ExpectQuantityFault("A0 03 31 20 78", 13);        // 1 x
}

TEST(clsZelItemCashRead, AQuantityBeyondTheCurrencyRangeIsAFault) {
  // 922337203685478 is the first whole number that doesn't fit.
  ExpectQuantityFault("A0 0F 39 32 32 33 33 37 32 30 33 36 38 35 34 37 38", 6);
  clsZelItemCash item;
  Read(item, "A0 14 39 32 32 33 33 37 32 30 33 36 38 35 34 37 37 2E 35 38 30 37");
  EXPECT_EQ(item.Quantity().Scaled(), INT64_MAX);
}

TEST(clsZelItemCashRead, Tag199FailsAndStartIsBack) {
  ExpectReadFailure(FromHex("00 00 A0 01 32 A2 01 62 C7 00"), 2, 9305, "BinaryDataSet",
                    "Unerwartetes TAG\r\nDas gefundenen TAG (s.u.) darf in\r\n"
                    "ZEL-Umsatz-Containern nicht vorkommen!\r\n    Tag gefunden ....: C7");
}

TEST(clsZelItemCashRead, EveryTagThatIsNoItemTagFails) {
  for (int tag = 0; tag < 256; ++tag) {
    const bool known = (tag >= 160 && tag <= 162) || (tag >= 170 && tag <= 172) || (tag >= 177 && tag <= 182);
    if (known) {
      continue;
    }
    ByteArray data = FromHex("00 00");
    data[0] = static_cast<std::uint8_t>(tag);
    clsZelItemCash item;
    std::int32_t start = 0;
    EXPECT_FALSE(item.BinaryDataSet(data, start)) << tag;
    const std::string twoDigits = test::ToHex(data).substr(0, 2);
    test::ExpectError(item.ErrorObject(), 9305, true, "BinaryDataSet",
                      "Unerwartetes TAG\r\nDas gefundenen TAG (s.u.) darf in\r\n"
                      "ZEL-Umsatz-Containern nicht vorkommen!\r\n    Tag gefunden ....: " +
                          twoDigits);
    EXPECT_EQ(start, 0);
  }
}

TEST(clsZelItemCashRead, WhatWasReadBeforeAFailureStays) {
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(5, "alt", "Stk", 1));
  std::int32_t start = 0;
  EXPECT_FALSE(item.BinaryDataSet(FromHex("A0 01 32 A2 01 62 AB 00 C7 00 B2 01 5C"), start));
  EXPECT_EQ(start, 0);
  EXPECT_EQ(item.Quantity(), Currency(2));
  EXPECT_EQ(item.Name(), "b");
  EXPECT_EQ(item.Unit(), "");
  EXPECT_TRUE(item.Voucher());
  EXPECT_EQ(item.Price(1), Currency(0));
  EXPECT_EQ(item.Price(2), Currency(0));
}

TEST(clsZelItemCashRead, TheFirstRecordCutOffFails) {
  ExpectReadFailure(FromHex("A0 05 31"), 0, 9204, "BinaryDataSet",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 0\r\n"
                    "    Tag .............: 0xA0\r\n"
                    "    Länge ...........: 5\r\n"
                    "    Leseende ........: 6\r\n"
                    "    Obergrenze ......: 2");
}

TEST(clsZelItemCashRead, TheFirstRecordCutOffBehindAStart) {
  ExpectReadFailure(FromHexAt(10, "00 00 07 FF 01"), 12, 9204, "BinaryDataSet",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 12\r\n"
                    "    Tag .............: 0x07\r\n"
                    "    Länge ...........: 255\r\n"
                    "    Leseende ........: 268\r\n"
                    "    Obergrenze ......: 14");
}

TEST(clsZelItemCashRead, TheFirstRecordMayReachTheUpperBoundExactly) {
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "A2 02 62 63"), 4);
  ExpectReadFailure(FromHex("A2 03 62 63"), 0, 9204, "BinaryDataSet",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 0\r\n"
                    "    Tag .............: 0xA2\r\n"
                    "    Länge ...........: 3\r\n"
                    "    Leseende ........: 4\r\n"
                    "    Obergrenze ......: 3");
}

TEST(clsZelItemCashRead, ACutOffFirstRecordStillResetsTheItem) {
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(5, "alt", "Stk", 1, 2, 3, true, true, true));
  std::int32_t start = 0;
  EXPECT_FALSE(item.BinaryDataSet(FromHex("A0 05 31"), start));
  EXPECT_EQ(item.Quantity(), Currency(1));
  EXPECT_EQ(item.Name(), "");
  EXPECT_EQ(item.Unit(), "");
  EXPECT_FALSE(item.DiscSurc() || item.Voucher() || item.ThirdParty());
  EXPECT_EQ(item.Price(1), Currency(0));
}

TEST(clsZelItemCashRead, ALaterTextCutOffIsTheCodersFailure) {
  ExpectReadFailure(FromHex("A0 01 32 A2 05 62"), 0, 9204, "BinaryDataSet.[GetDataAscii]",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 3\r\n"
                    "    Tag .............: 0xA2\r\n"
                    "    Länge ...........: 5\r\n"
                    "    Leseende ........: 9\r\n"
                    "    Obergrenze ......: 5");
}

TEST(clsZelItemCashRead, ALaterPriceCutOffIsTheCodersFailure) {
  ExpectReadFailure(FromHex("A0 01 32 B6 03 01"), 0, 9204, "BinaryDataSet.[GetZelAmountsSpec01]",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 3\r\n"
                    "    Tag .............: 0xB6\r\n"
                    "    Länge ...........: 3\r\n"
                    "    Leseende ........: 7\r\n"
                    "    Obergrenze ......: 5");
}

TEST(clsZelItemCashRead, ATextOfMoreThan127BytesFails) {
  std::string hex = "A2 80";
  for (int i = 0; i < 128; ++i) {
    hex += " 61";
  }
  ExpectReadFailure(FromHex(hex), 0, 9207, "BinaryDataSet.[GetDataAscii]",
                    "Ungültige Längenangabe.\r\nDie Länge eines Tags darf 127 Byte nicht überschreiten!\r\n"
                    "    Startposition ...: 0\r\n"
                    "    Tag .............: 0xA2\r\n"
                    "    Länge ...........: 128");
}

TEST(clsZelItemCashRead, AnUnprintableByteInANameFails) {
  ExpectReadFailure(FromHex("A0 01 32 A2 03 61 62 E4"), 0, 9206, "BinaryDataSet.[GetDataAscii]",
                    "Es wurde ein ungültiger Zeichenwert gefunden!\r\n"
                    "    Tag .............: 0xA2\r\n"
                    "    Taglänge ........: 3\r\n"
                    "    Position total ..: 7\r\n"
                    "    Position Tag ....: 2\r\n"
                    "    Zeichenwert .....: 228 // 0xE4");
}

TEST(clsZelItemCashRead, AnUnprintableByteInAUnitFails) {
  ExpectReadFailure(FromHex("A1 01 1F"), 0, 9206, "BinaryDataSet.[GetDataAscii]",
                    "Es wurde ein ungültiger Zeichenwert gefunden!\r\n"
                    "    Tag .............: 0xA1\r\n"
                    "    Taglänge ........: 1\r\n"
                    "    Position total ..: 2\r\n"
                    "    Position Tag ....: 0\r\n"
                    "    Zeichenwert .....: 31 // 0x1F");
}

TEST(clsZelItemCashRead, AnUnprintableByteInAQuantityFails) {
  ExpectReadFailure(FromHex("A0 02 31 0A"), 0, 9206, "BinaryDataSet.[GetDataAscii]",
                    "Es wurde ein ungültiger Zeichenwert gefunden!\r\n"
                    "    Tag .............: 0xA0\r\n"
                    "    Taglänge ........: 2\r\n"
                    "    Position total ..: 3\r\n"
                    "    Position Tag ....: 1\r\n"
                    "    Zeichenwert .....: 10 // 0x0A");
}

TEST(clsZelItemCashRead, APriceWithALetterFails) {
  ExpectReadFailure(FromHex("A0 01 32 B1 02 1A 9C"), 0, 9208, "BinaryDataSet.[GetZelAmountsSpec01]",
                    "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
                    "    Tag .............: 0xB1\r\n"
                    "    Taglänge ........: 2\r\n"
                    "    Position Tag ....: 3\r\n"
                    "    Pos. Zeichenf. ..: 2\r\n"
                    "    Zeichenfolge ....: 1A9C\r\n"
                    "    Zeichen .........: A");
}

TEST(clsZelItemCashRead, ANegativeZeroPriceFails) {
  ExpectReadFailure(FromHex("A0 01 32 B3 01 0D"), 0, 9209, "BinaryDataSet.[GetZelAmountsSpec01]",
                    "Das Datenformat ist ungültig (Nullwert mit \"-\"-Kennzeichen!)\r\n"
                    "    Tag .............: 0xB3\r\n"
                    "    Taglänge ........: 1\r\n"
                    "    Position total ..: 3\r\n"
                    "    Dekodierter Wert : & Result");
}

TEST(clsZelItemCashRead, APriceOfSevenBytesFailsOneOfSixIsRead) {
  ExpectReadFailure(FromHex("B1 07 01 23 45 67 89 01 2C"), 0, 9207, "BinaryDataSet.[GetZelAmountsSpec01]",
                    "Die Maximallänge für dieses TAG wurde überschritten\r\n"
                    "    Startposition ...: 0\r\n"
                    "    Tag .............: 0xB1\r\n"
                    "    Länge ...........: 7\r\n"
                    "    Maximallänge ....: 6");
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "B1 06 99 99 99 99 99 9D"), 8);
  EXPECT_EQ(item.Price(1), Cents(-99999999999));
}

TEST(clsZelItemCashRead, APriceOfNoBytesFails) {
  ExpectReadFailure(FromHex("B6 00"), 0, 9207, "BinaryDataSet.[GetZelAmountsSpec01]",
                    "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
                    "    Startposition ...: 0\r\n"
                    "    Tag .............: 0xB6\r\n"
                    "    Länge ...........: 0\r\n"
                    "    Mindestlänge ....: 1");
}

TEST(clsZelItemCashRead, APositiveZeroPriceIsRead) {
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "A2 01 62 B1 01 0C"), 6);
  EXPECT_EQ(item.Price(1), Currency(0));
}

// A flag counts two bytes whatever its length byte says: the value behind it is taken for the next record.
TEST(clsZelItemCashRead, AFlagIsTakenAsTwoBytes) {
  ExpectReadFailure(FromHex("AA 02 05 00"), 0, 9305, "BinaryDataSet",
                    "Unerwartetes TAG\r\nDas gefundenen TAG (s.u.) darf in\r\n"
                    "ZEL-Umsatz-Containern nicht vorkommen!\r\n    Tag gefunden ....: 05");
  clsZelItemCash item;
  EXPECT_EQ(Read(item, "AC 03 A2 01 62"), 5);
  EXPECT_TRUE(item.ThirdParty());
  EXPECT_EQ(item.Name(), "b");
}

TEST(clsZelItemCashRead, ANegativeLowerBoundIsTheCodersFailure) {
  ExpectReadFailure(FromHexAt(-2, "A0 01 31 A2 01 62"), -2, 9202, "BinaryDataSet.[GetDataAscii]",
                    "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -2");
}

TEST(clsZelItemCashRead, NoRecordAtAllFailsAndLeavesStart) {
  struct Case {
    std::string_view hex;
    std::int32_t start;
  };
  for (const Case& each : {Case{"", 0}, Case{"", -1}, Case{"A0", 0}, Case{"A0 01 31", 2}, Case{"A0 01 31", 3},
                           Case{"A0 01 31", -1}, Case{"A0 01 31", -2}, Case{"A0 01 31", INT32_MAX},
                           Case{"A0 01 31", INT32_MIN}}) {
    test::TestLog log;
    clsZelItemCash item;
    item.LogHandler(log.Handler());
    std::int32_t start = each.start;
    EXPECT_FALSE(item.BinaryDataSet(FromHex(each.hex), start)) << each.hex << " / " << each.start;
    EXPECT_TRUE(item.HasError());
    EXPECT_EQ(start, each.start);
    EXPECT_EQ(log.Count(), 1U);
  }
}

TEST(clsZelItemCashRead, AStartInTheMiddleOfTheBufferIsKeptAfterAFailure) {
  ExpectReadFailure(FromHex("A0 01 31 A2 01 62 A0 01 31 A2 01 19"), 6, 9206, "BinaryDataSet.[GetDataAscii]",
                    "Es wurde ein ungültiger Zeichenwert gefunden!\r\n"
                    "    Tag .............: 0xA2\r\n"
                    "    Taglänge ........: 1\r\n"
                    "    Position total ..: 11\r\n"
                    "    Position Tag ....: 0\r\n"
                    "    Zeichenwert .....: 25 // 0x19");
}

TEST(clsZelItemCashRead, SuccessClearsAnOldError) {
  clsZelItemCash item;
  EXPECT_FALSE(item.SetItemData(1, ""));
  EXPECT_EQ(Read(item, "A2 01 62"), 3);
}

}  // namespace
