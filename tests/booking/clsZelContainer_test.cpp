#include "VnZEL10cmn/booking/clsZelContainer.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/booking/internal/ContainerTurnover.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace VnZEL10cmn {
namespace {

using test::FromHex;
using test::FromHexAt;
using test::ToHex;

Currency Scaled(std::int64_t scaled) { return Currency::FromScaled(scaled); }

/// The bytes that the container writes from position 0 on.
std::string Written(clsZelContainer& container) {
  ByteArray data = ByteArray::WithBounds(0, 99);
  std::int32_t start = 0;
  EXPECT_TRUE(container.BinaryDataGet(data, start));
  test::ExpectNoError(container);
  for (std::int32_t i = start; i <= data.UBound(); ++i) {
    EXPECT_EQ(data[i], 0) << i;
  }
  if (start == 0) {
    return {};
  }
  data.RedimPreserve(start - 1);
  return ToHex(data);
}

void SetTurnover(clsZelContainer& container, Currency value) { ContainerTurnover::Set(container, value); }

/// A failed reading: the whole error, and `Start` where it was.
void ExpectReadFailure(clsZelContainer& container, std::string_view hex, ZELErrorCodes number,
                       std::string_view function, std::string_view message,
                       const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure of reading");
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataSet(FromHex(hex), start));
  test::ExpectError(container.ErrorObject(), number, true, function, message, file, line);
  EXPECT_EQ(start, 0);
}

TEST(Container, NewContainerIsEmpty) {
  clsZelContainer container;
  EXPECT_EQ(container.Tag(), ZelTags{});
  EXPECT_FALSE(container.IsZelResponse());
  EXPECT_EQ(container.Turnover(), Currency(0));
  EXPECT_EQ(container.TurnoverNeg(), Currency(0));
  EXPECT_EQ(container.TurnoverThrd(), Currency(0));
  EXPECT_EQ(container.VAT(), Currency(0));
  EXPECT_EQ(container.VATrate(), Currency(0));
  EXPECT_EQ(container.CounterTO(), Currency(0));
  EXPECT_FALSE(container.OverflowTO());
  EXPECT_FALSE(container.VATchange());
  EXPECT_EQ(container.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelContainer");
  EXPECT_EQ(container.ErrorObject().ErrorInstanceID().size(), 36U);
  EXPECT_FALSE(container.HasError());
}

TEST(Container, SettersStoreWhatIsGiven) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Training);
  container.IsZelResponse(true);
  SetTurnover(container, Scaled(-5));
  container.TurnoverNeg(Scaled(6));
  container.TurnoverThrd(Scaled(-7));
  container.VAT(Scaled(8));
  container.VATrate(Scaled(-9));
  EXPECT_EQ(container.Tag(), ZelTags::Container_Training);
  EXPECT_TRUE(container.IsZelResponse());
  EXPECT_EQ(container.Turnover(), Scaled(-5));
  EXPECT_EQ(container.TurnoverNeg(), Scaled(6));
  EXPECT_EQ(container.TurnoverThrd(), Scaled(-7));
  EXPECT_EQ(container.VAT(), Scaled(8));
  EXPECT_EQ(container.VATrate(), Scaled(-9));
}

TEST(Container, ClearKeepsTagAndForm) {
  clsZelContainer container;
  container.IsZelResponse(true);
  std::int32_t start = 0;
  ASSERT_TRUE(container.BinaryDataSet(
      FromHex("E3 1A D8 03 10 00 0C D9 02 05 0C DA 03 01 59 7C DB 02 19 00 D6 02 02 0C DC 00 DE 00"), start))
      << container.ErrorObject().ErrorMsg();
  EXPECT_TRUE(container.Clear());
  test::ExpectNoError(container);
  EXPECT_EQ(container.Tag(), ZelTags::Container_Vat_3);
  EXPECT_TRUE(container.IsZelResponse());
  EXPECT_EQ(container.Turnover(), Currency(0));
  EXPECT_EQ(container.TurnoverNeg(), Currency(0));
  EXPECT_EQ(container.TurnoverThrd(), Currency(0));
  EXPECT_EQ(container.VAT(), Currency(0));
  EXPECT_EQ(container.VATrate(), Currency(0));
  EXPECT_FALSE(container.OverflowTO());
  EXPECT_FALSE(container.VATchange());
}

// Writing

TEST(ContainerWrite, TurnoverVatAndRateInThisOrder) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_1);
  SetTurnover(container, 100);
  container.VAT(Scaled(159700));
  container.VATrate(19);
  EXPECT_EQ(Written(container), "E1 0E D8 03 10 00 0C DA 03 01 59 7C DB 02 19 00");
}

TEST(ContainerWrite, AllRecordsInTheirOrder) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_6);
  SetTurnover(container, Scaled(75000));
  container.TurnoverNeg(Scaled(25000));
  container.VAT(Scaled(-3900));
  container.VATrate(Scaled(55000));
  container.TurnoverThrd(Scaled(-50000));
  EXPECT_EQ(Written(container), "E6 14 D8 02 75 0C D9 02 25 0C DA 02 03 9D DB 02 05 50 D6 02 50 0D");
}

TEST(ContainerWrite, WithoutTurnoverNothingIsWritten) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_1);
  container.VAT(19);
  container.VATrate(19);
  container.TurnoverThrd(5);
  ByteArray data = FromHex("11 22 33");
  std::int32_t start = 1;
  EXPECT_TRUE(container.BinaryDataGet(data, start));
  EXPECT_EQ(start, 1);
  EXPECT_EQ(ToHex(data), "11 22 33");
  test::ExpectNoError(container);
}

TEST(ContainerWrite, WithoutTurnoverNeitherTagNorBufferMatter) {
  clsZelContainer container;
  ByteArray data;
  std::int32_t start = 12345;
  EXPECT_TRUE(container.BinaryDataGet(data, start));
  EXPECT_EQ(start, 12345);
  test::ExpectNoError(container);
}

TEST(ContainerWrite, NegativeTurnoverAloneIsWritten) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_2);
  container.TurnoverNeg(Scaled(25000));
  EXPECT_EQ(Written(container), "E2 07 D9 02 25 0C DB 01 00");
}

TEST(ContainerWrite, RateIsAlwaysWritten) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_4);
  SetTurnover(container, 1);
  EXPECT_EQ(Written(container), "E4 07 D8 02 10 0C DB 01 00");
}

TEST(ContainerWrite, ResponseFlagDoesNotChangeTheForm) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_1);
  container.IsZelResponse(true);
  SetTurnover(container, Scaled(9999999999900));
  EXPECT_EQ(Written(container), "E1 0B D8 06 99 99 99 99 99 9C DB 01 00");
  SetTurnover(container, 1000000000);
  ByteArray data = ByteArray::WithBounds(0, 99);
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  EXPECT_EQ(container.ErrorObject().ErrorNr(), 9207);
}

TEST(ContainerWrite, StartsAtAnyPosition) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_4);
  SetTurnover(container, 1);
  ByteArray data = ByteArray::WithBounds(0, 40);
  std::int32_t start = 5;
  EXPECT_TRUE(container.BinaryDataGet(data, start));
  EXPECT_EQ(start, 14);
  data.RedimPreserve(13);
  EXPECT_EQ(ToHex(data), "00 00 00 00 00 E4 07 D8 02 10 0C DB 01 00");
}

TEST(ContainerWrite, PositiveLowerBoundIsAllowed) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_4);
  SetTurnover(container, 1);
  ByteArray data = ByteArray::WithBounds(100, 130);
  std::int32_t start = 101;
  EXPECT_TRUE(container.BinaryDataGet(data, start));
  EXPECT_EQ(start, 110);
  EXPECT_EQ(data[101], 0xE4);
  EXPECT_EQ(data[109], 0x00);
  EXPECT_EQ(data[100], 0x00);
}

TEST(ContainerWrite, WithoutTagItFails) {
  test::TestLog log;
  clsZelContainer container;
  container.LogHandler(log.Handler());
  SetTurnover(container, 1);
  ByteArray data = ByteArray::WithBounds(0, 99);
  const ByteArray before = data;
  std::int32_t start = 3;
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Ser_DataMismatch, true, "BinaryDataGet",
                    "Fehler in der Datenzusammensetzung!\r\nEs ist kein gültiges TAG angegeben!");
  EXPECT_EQ(start, 3);
  EXPECT_EQ(data, before);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataGet"});
}

TEST(ContainerWrite, FewerThan28BytesBehindStartFailBeforeAnythingIsWritten) {
  test::TestLog log;
  clsZelContainer container;
  container.LogHandler(log.Handler());
  container.Tag(ZelTags::Container_Vat_1);
  SetTurnover(container, 1);
  ByteArray data = ByteArray::WithBounds(0, 27);
  const ByteArray before = data;
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataGet",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 0\r\n"
                    "    Tag .............: 0xE1\r\n"
                    "    Länge (max.) ....: 28\r\n"
                    "    Leseende ........: 28\r\n"
                    "    Obergrenze ......: 27");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(data, before);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataGet"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"9204"});

  data.Redim(0, 28);
  EXPECT_TRUE(container.BinaryDataGet(data, start));
  EXPECT_EQ(start, 9);
  start = 1;
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  EXPECT_EQ(start, 1);
}

TEST(ContainerWrite, EndOfTheCheckNeverWraps) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Training);
  SetTurnover(container, 1);
  ByteArray data = ByteArray::WithBounds(0, 99);
  std::int32_t start = std::numeric_limits<std::int32_t>::max();
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataGet",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 2147483647\r\n"
                    "    Tag .............: 0xE9\r\n"
                    "    Länge (max.) ....: 28\r\n"
                    "    Leseende ........: 2147483675\r\n"
                    "    Obergrenze ......: 99");
  EXPECT_EQ(start, std::numeric_limits<std::int32_t>::max());
}

TEST(ContainerWrite, StartBelowTheBufferFails) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_1);
  SetTurnover(container, 1);
  ByteArray data = ByteArray::WithBounds(0, 99);
  for (const std::int32_t position : {-1, -2, -100, std::numeric_limits<std::int32_t>::min()}) {
    std::int32_t start = position;
    EXPECT_FALSE(container.BinaryDataGet(data, start)) << position;
    EXPECT_TRUE(container.HasError());
    EXPECT_EQ(start, position);
  }
}

TEST(ContainerWrite, EmptyBufferFails) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_1);
  SetTurnover(container, 1);
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataGet",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 0\r\n"
                    "    Tag .............: 0xE1\r\n"
                    "    Länge (max.) ....: 28\r\n"
                    "    Leseende ........: 28\r\n"
                    "    Obergrenze ......: -1");
}

TEST(ContainerWrite, NegativeLowerBoundIsRefusedByTheInnerRecord) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_1);
  SetTurnover(container, 1);
  ByteArray data = ByteArray::WithBounds(-1, 99);
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvLBound, true,
                    "BinaryDataGet.[SetZelAmountsScp01]",
                    "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -1");
  EXPECT_EQ(start, 0);
}

// 28 is only what the check wants: a container with the longest amounts has 38 bytes.
TEST(ContainerWrite, LongestRecord) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_1);
  SetTurnover(container, Scaled(-9999999999900));
  container.TurnoverNeg(Scaled(9999999999900));
  container.VAT(Scaled(-1234567890100));
  container.VATrate(Scaled(999900));
  container.TurnoverThrd(Scaled(9876543210900));
  EXPECT_EQ(Written(container),
            "E1 24 D8 06 99 99 99 99 99 9D D9 06 99 99 99 99 99 9C DA 06 12 34 56 78 90 1D DB 02 99 99 "
            "D6 06 98 76 54 32 10 9C");
}

TEST(ContainerWrite, RateThatNoLongerFits) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_1);
  SetTurnover(container, Scaled(9999999999900));
  container.TurnoverNeg(Scaled(9999999999900));
  container.VAT(Scaled(9999999999900));
  container.VATrate(19);
  ByteArray data = ByteArray::WithBounds(0, 28);
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true,
                    "BinaryDataGet.[SetZelVatRate]",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 26\r\n"
                    "    Länge ...........: 2\r\n"
                    "    Schreibende .....: 29\r\n"
                    "    Obergrenze ......: 28");
  EXPECT_EQ(start, 0);
}

TEST(ContainerWrite, ThirdPartyTurnoverThatNoLongerFits) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_1);
  SetTurnover(container, Scaled(9999999999900));
  container.TurnoverNeg(Scaled(9999999999900));
  container.VAT(Scaled(9999999999900));
  container.VATrate(19);
  container.TurnoverThrd(Scaled(9999999999900));
  ByteArray data = ByteArray::WithBounds(0, 36);
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true,
                    "BinaryDataGet.[SetZelAmountsScp01]",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 30\r\n"
                    "    Länge ...........: 6\r\n"
                    "    Schreibende .....: 37\r\n"
                    "    Obergrenze ......: 36");
  EXPECT_EQ(start, 0);
  data.Redim(0, 37);
  EXPECT_TRUE(container.BinaryDataGet(data, start));
  EXPECT_EQ(start, 38);
}

TEST(ContainerWrite, AmountOfMoreThan11Digits) {
  test::TestLog log;
  clsZelContainer container;
  container.LogHandler(log.Handler());
  container.Tag(ZelTags::Container_Vat_1);
  const std::string message =
      "Die Länge der Betragsdastellung überschreitet den max. Wert!\r\n"
      "Es sind max. 11 signifikante Stellen zulässig\r\n"
      "    Länge Betrag .....: 13\r\n"
      "    kond. Betrag .....: 100000000000C";
  ByteArray data = ByteArray::WithBounds(0, 99);
  std::int32_t start = 0;

  SetTurnover(container, 1000000000);
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true,
                    "BinaryDataGet.[SetZelAmountsScp01]", message);
  EXPECT_EQ(start, 0);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataGet.[SetZelAmountsScp01]"});

  SetTurnover(container, 1);
  container.TurnoverNeg(1000000000);
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true,
                    "BinaryDataGet.[SetZelAmountsScp01]", message);

  container.TurnoverNeg(0);
  container.VAT(1000000000);
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true,
                    "BinaryDataGet.[SetZelAmountsScp01]", message);

  container.VAT(0);
  container.TurnoverThrd(1000000000);
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true,
                    "BinaryDataGet.[SetZelAmountsScp01]", message);
  EXPECT_EQ(start, 0);
  EXPECT_EQ(log.Count(), 4U);
}

TEST(ContainerWrite, AmountThatRoundsToZeroCents) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_1);
  SetTurnover(container, Scaled(49));
  ByteArray data = ByteArray::WithBounds(0, 99);
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvInvalidLen, true,
                    "BinaryDataGet.[SetZelAmountsScp01]",
                    "Ungültiges BCD-Zeichenfolgenformat\r\n"
                    "Die Konditionierung liefert eine\r\n"
                    "Zeichenfolge ohne signifikate Daten\r\n"
                    "    Zeichenfolge ....: \"C\"");
  SetTurnover(container, Scaled(50));
  EXPECT_EQ(Written(container), "E1 06 D8 01 1C DB 01 00");
}

TEST(ContainerWrite, RateOf100IsRefused) {
  test::TestLog log;
  clsZelContainer container;
  container.LogHandler(log.Handler());
  container.Tag(ZelTags::Container_Vat_1);
  SetTurnover(container, 1);
  container.VATrate(100);
  ByteArray data = ByteArray::WithBounds(0, 99);
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  test::ExpectError(container.ErrorObject(), ZELErrorCodes::Err_Zel_CnvRange, true,
                    "BinaryDataGet.[SetZelVatRate]",
                    "Die Wert außerhalb des gültigen Bereiches!\r\n"
                    "    Aktueller Wert ...: 100,00\r\n"
                    "    kleinster Wert ...: 0,00\r\n"
                    "    größter Wert .....: 99,99");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataGet.[SetZelVatRate]"});
  container.VATrate(Scaled(-1));
  EXPECT_FALSE(container.BinaryDataGet(data, start));
  EXPECT_EQ(container.ErrorObject().ErrorNr(), 9203);
  container.VATrate(Scaled(999900));
  EXPECT_EQ(Written(container), "E1 08 D8 02 10 0C DB 02 99 99");
}

// Reading

TEST(ContainerRead, RequestForm) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_6);
  std::int32_t start = 0;
  ASSERT_TRUE(container.BinaryDataSet(
      FromHex("E6 14 D8 02 75 0C D9 02 25 0C DA 02 03 9D DB 02 05 50 D6 02 50 0D"), start));
  EXPECT_EQ(start, 22);
  EXPECT_EQ(container.Turnover(), Scaled(75000));
  EXPECT_EQ(container.TurnoverNeg(), Scaled(25000));
  EXPECT_EQ(container.VAT(), Scaled(-3900));
  EXPECT_EQ(container.VATrate(), Scaled(55000));
  EXPECT_EQ(container.TurnoverThrd(), Scaled(-50000));
  EXPECT_FALSE(container.OverflowTO());
  EXPECT_FALSE(container.VATchange());
  test::ExpectNoError(container);
}

TEST(ContainerRead, RecordsInAnyOrderUpToTheEndOfTheContainer) {
  clsZelContainer container;
  std::int32_t start = 2;
  ASSERT_TRUE(container.BinaryDataSet(FromHex("FF FF E1 0A DB 02 19 00 DE 00 D8 02 10 0C E2 00"), start));
  EXPECT_EQ(start, 14);
  EXPECT_EQ(container.Tag(), ZelTags::Container_Vat_1);
  EXPECT_EQ(container.Turnover(), Currency(1));
  EXPECT_EQ(container.VATrate(), Currency(19));
  EXPECT_TRUE(container.VATchange());
  EXPECT_FALSE(container.OverflowTO());
}

TEST(ContainerRead, EmptyContainer) {
  clsZelContainer container;
  container.VAT(5);
  container.Tag(ZelTags::Container_Vat_1);
  std::int32_t start = 0;
  EXPECT_TRUE(container.BinaryDataSet(FromHex("E1 00"), start));
  EXPECT_EQ(start, 2);
  EXPECT_EQ(container.VAT(), Currency(0));
  test::ExpectNoError(container);
}

TEST(ContainerRead, OldContentIsGone) {
  clsZelContainer container;
  container.TurnoverNeg(3);
  container.TurnoverThrd(4);
  container.VATrate(5);
  std::int32_t start = 0;
  EXPECT_TRUE(container.BinaryDataSet(FromHex("E1 02 DE 00"), start));
  start = 0;
  EXPECT_TRUE(container.BinaryDataSet(FromHex("E1 04 D8 02 10 0C"), start));
  EXPECT_EQ(container.TurnoverNeg(), Currency(0));
  EXPECT_EQ(container.TurnoverThrd(), Currency(0));
  EXPECT_EQ(container.VATrate(), Currency(0));
  EXPECT_FALSE(container.VATchange());
  EXPECT_EQ(container.Turnover(), Currency(1));
}

TEST(ContainerRead, PositiveLowerBound) {
  clsZelContainer container;
  std::int32_t start = 7;
  EXPECT_TRUE(container.BinaryDataSet(FromHexAt(7, "E1 04 D8 02 10 0C"), start));
  EXPECT_EQ(start, 13);
  EXPECT_EQ(container.Turnover(), Currency(1));
}

TEST(ContainerRead, OverflowCounterAndVatChanged) {
  clsZelContainer container;
  container.IsZelResponse(true);
  std::int32_t start = 0;
  EXPECT_TRUE(container.BinaryDataSet(FromHex("E1 02 DC 00"), start));
  EXPECT_TRUE(container.OverflowTO());
  EXPECT_FALSE(container.VATchange());
  EXPECT_EQ(container.CounterTO(), Currency(0));
  EXPECT_EQ(start, 4);
  start = 0;
  EXPECT_TRUE(container.BinaryDataSet(FromHex("E1 02 DD 00"), start));
  EXPECT_TRUE(container.OverflowTO());
  EXPECT_FALSE(container.VATchange());
  start = 0;
  EXPECT_TRUE(container.BinaryDataSet(FromHex("E1 02 DE 00"), start));
  EXPECT_FALSE(container.OverflowTO());
  EXPECT_TRUE(container.VATchange());
}

// The counter's value isn't read, so its first byte stands where a tag is expected.
TEST(ContainerRead, CounterWithAValueEndsAtItsValue) {
  clsZelContainer container;
  container.IsZelResponse(true);
  ExpectReadFailure(container, "E1 03 DC 01 05", ZELErrorCodes::Err_Ser_TagUnexpected, "BinaryDataSet",
                    "Unerwartetes TAG\r\n"
                    "Das gefundenen TAG (s.u.) darf in\r\n"
                    "ZEL-Umsatz-Containern nicht vorkommen!\r\n"
                    "    Tag gefunden ....: 05");
  EXPECT_EQ(container.CounterTO(), Currency(0));
}

TEST(ContainerRead, LongAmountsInResponsesOnly) {
  const std::string_view longAmount = "E1 0A D8 08 12 34 56 78 90 12 34 5C";
  clsZelContainer container;
  container.IsZelResponse(true);
  std::int32_t start = 0;
  EXPECT_TRUE(container.BinaryDataSet(FromHex(longAmount), start));
  EXPECT_EQ(container.Turnover(), Scaled(12345678901234500));
  EXPECT_EQ(start, 12);
  container.IsZelResponse(false);
  ExpectReadFailure(container, longAmount, ZELErrorCodes::Err_Zel_CnvInvalidLen,
                    "BinaryDataSet.[GetZelAmountsSpec01]",
                    "Die Maximallänge für dieses TAG wurde überschritten\r\n"
                    "    Startposition ...: 2\r\n"
                    "    Tag .............: 0xD8\r\n"
                    "    Länge ...........: 8\r\n"
                    "    Maximallänge ....: 6");
  EXPECT_EQ(container.Turnover(), Currency(0));
}

TEST(ContainerRead, NineByteAmountsAreNeverRead) {
  clsZelContainer container;
  container.IsZelResponse(true);
  for (const std::string_view hex :
       {"E1 0B D8 09 00 00 00 00 00 00 00 01 0C", "E1 0B D9 09 00 00 00 00 00 00 00 01 0C",
        "E1 0B DA 09 00 00 00 00 00 00 00 01 0C", "E1 0B D6 09 00 00 00 00 00 00 00 01 0C"}) {
    ExpectReadFailure(container, hex, ZELErrorCodes::Err_Zel_CnvInvalidLen,
                      "BinaryDataSet.[GetZelAmountsSpec01]",
                      "Die Maximallänge für dieses TAG wurde überschritten\r\n"
                      "    Startposition ...: 2\r\n"
                      "    Tag .............: 0x" +
                          std::string(hex.substr(6, 2)) +
                          "\r\n"
                          "    Länge ...........: 9\r\n"
                          "    Maximallänge ....: 8");
  }
}

TEST(ContainerRead, AmountThatIsNotDecimal) {
  clsZelContainer container;
  ExpectReadFailure(container, "E1 04 D9 02 1A 0C", ZELErrorCodes::Err_Zel_CnvInvalidBCD,
                    "BinaryDataSet.[GetZelAmountsSpec01]",
                    "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
                    "    Tag .............: 0xD9\r\n"
                    "    Taglänge ........: 2\r\n"
                    "    Position Tag ....: 2\r\n"
                    "    Pos. Zeichenf. ..: 2\r\n"
                    "    Zeichenfolge ....: 1A0C\r\n"
                    "    Zeichen .........: A");
}

TEST(ContainerRead, NegativeZeroAmount) {
  clsZelContainer container;
  ExpectReadFailure(container, "E1 03 DA 01 0D", ZELErrorCodes::Err_Zel_CnvInvalidDtaFmt,
                    "BinaryDataSet.[GetZelAmountsSpec01]",
                    "Das Datenformat ist ungültig (Nullwert mit \"-\"-Kennzeichen!)\r\n"
                    "    Tag .............: 0xDA\r\n"
                    "    Taglänge ........: 1\r\n"
                    "    Position total ..: 2\r\n"
                    "    Dekodierter Wert : & Result");
}

TEST(ContainerRead, DamagedRate) {
  clsZelContainer container;
  ExpectReadFailure(container, "E1 02 DB 00", ZELErrorCodes::Err_Zel_CnvInvalidLen,
                    "BinaryDataSet.[GetZelVatRate]",
                    "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
                    "    Startposition ...: 2\r\n"
                    "    Tag .............: 0xDB\r\n"
                    "    Länge ...........: 0\r\n"
                    "    Mindestlänge ....: 1");
  ExpectReadFailure(container, "E1 03 DB 01 1A", ZELErrorCodes::Err_Zel_CnvInvalidBCD,
                    "BinaryDataSet.[GetZelVatRate]",
                    "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
                    "    Tag .............: 0xDB\r\n"
                    "    Taglänge ........: 1\r\n"
                    "    Position Tag ....: 2\r\n"
                    "    Pos. Zeichenf. ..: 2\r\n"
                    "    Zeichenfolge ....: 1A\r\n"
                    "    Zeichen .........: A");
}

TEST(ContainerRead, OtherTagThanExpected) {
  test::TestLog log;
  clsZelContainer container;
  container.LogHandler(log.Handler());
  container.Tag(ZelTags::Container_Vat_1);
  container.VAT(7);
  ExpectReadFailure(container, "E2 04 D8 02 10 0C", ZELErrorCodes::Err_Zel_CnvDataSize, "BinaryDataSet",
                    "Das TAG an der Startposition entspricht.\r\n"
                    "nicht dem erwarteten TAG!\r\n"
                    "    Startposition ...: 0\r\n"
                    "    Tag .............: 0xE2\r\n"
                    "    Tag erwartet ....: 0xE1");
  EXPECT_EQ(container.Tag(), ZelTags::Container_Vat_1);
  EXPECT_EQ(container.VAT(), Currency(0));
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataSet"});

  clsZelContainer withoutTag;
  std::int32_t start = 0;
  EXPECT_TRUE(withoutTag.BinaryDataSet(FromHex("E2 04 D8 02 10 0C"), start));
  EXPECT_EQ(withoutTag.Tag(), ZelTags::Container_Vat_2);
  EXPECT_EQ(withoutTag.Turnover(), Currency(1));
}

TEST(ContainerRead, TheOtherTagIsFoundBeforeTheLengthIsLookedAt) {
  clsZelContainer container;
  container.Tag(ZelTags::Container_Vat_1);
  ExpectReadFailure(container, "E2 7F", ZELErrorCodes::Err_Zel_CnvDataSize, "BinaryDataSet",
                    "Das TAG an der Startposition entspricht.\r\n"
                    "nicht dem erwarteten TAG!\r\n"
                    "    Startposition ...: 0\r\n"
                    "    Tag .............: 0xE2\r\n"
                    "    Tag erwartet ....: 0xE1");
}

TEST(ContainerRead, CutOffContainer) {
  test::TestLog log;
  clsZelContainer container;
  container.LogHandler(log.Handler());
  ExpectReadFailure(container, "E1 05 D8 02 10 0C", ZELErrorCodes::Err_Zel_CnvDataSize, "BinaryDataSet",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 0\r\n"
                    "    Tag .............: 0xE1\r\n"
                    "    Länge ...........: 5\r\n"
                    "    Leseende ........: 6\r\n"
                    "    Obergrenze ......: 5");
  EXPECT_EQ(container.Tag(), ZelTags{});
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataSet"});
}

TEST(ContainerRead, InnerRecordBeyondTheBuffer) {
  test::TestLog log;
  clsZelContainer container;
  container.LogHandler(log.Handler());
  ExpectReadFailure(container, "E1 04 D8 03 10 0C", ZELErrorCodes::Err_Zel_CnvDataSize,
                    "BinaryDataSet.[GetZelAmountsSpec01]",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 2\r\n"
                    "    Tag .............: 0xD8\r\n"
                    "    Länge ...........: 3\r\n"
                    "    Leseende ........: 6\r\n"
                    "    Obergrenze ......: 5");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataSet.[GetZelAmountsSpec01]"});
}

TEST(ContainerRead, InnerRecordBeyondTheContainer) {
  test::TestLog log;
  clsZelContainer container;
  container.LogHandler(log.Handler());
  ExpectReadFailure(container, "E1 04 D8 03 10 00 0C DB 01 00", ZELErrorCodes::Err_Zel_CnvDataSize,
                    "BinaryDataSet",
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Startposition ...: 0\r\n"
                    "    Tag .............: 0xE1\r\n"
                    "    Länge ...........: 4\r\n"
                    "    Leseende ........: 6\r\n"
                    "    Obergrenze ......: 5");
  EXPECT_EQ(container.Tag(), ZelTags{});
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataSet"});
}

TEST(ContainerRead, RecordsThatHaveNoPlaceInAContainer) {
  test::TestLog log;
  clsZelContainer container;
  container.LogHandler(log.Handler());
  ExpectReadFailure(container, "E1 06 D8 02 10 0C C7 00", ZELErrorCodes::Err_Ser_TagUnexpected,
                    "BinaryDataSet",
                    "Unerwartetes TAG\r\n"
                    "Das gefundenen TAG (s.u.) darf in\r\n"
                    "ZEL-Umsatz-Containern nicht vorkommen!\r\n"
                    "    Tag gefunden ....: C7");
  EXPECT_EQ(container.Tag(), ZelTags{});
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataSet"});
  for (const std::string tag : {"00", "0A", "D7", "DF", "E0", "E1", "B1", "FF"}) {
    ExpectReadFailure(container, "E1 02 " + tag + " 00", ZELErrorCodes::Err_Ser_TagUnexpected,
                      "BinaryDataSet",
                      "Unerwartetes TAG\r\n"
                      "Das gefundenen TAG (s.u.) darf in\r\n"
                      "ZEL-Umsatz-Containern nicht vorkommen!\r\n"
                      "    Tag gefunden ....: " +
                          tag);
  }
}

TEST(ContainerRead, StartWithoutARecordFails) {
  clsZelContainer container;
  for (const std::int32_t position :
       {-1, 1, 2, 100, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
    std::int32_t start = position;
    EXPECT_FALSE(container.BinaryDataSet(FromHex("E1 00"), start)) << position;
    EXPECT_TRUE(container.HasError()) << position;
    EXPECT_EQ(start, position);
  }
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataSet(ByteArray{}, start));
  EXPECT_TRUE(container.HasError());
  EXPECT_EQ(start, 0);
  EXPECT_FALSE(container.BinaryDataSet(ByteArray{0xE1}, start));
  EXPECT_TRUE(container.HasError());
  EXPECT_EQ(start, 0);
}

TEST(ContainerRead, SuccessClearsTheErrorBefore) {
  clsZelContainer container;
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataSet(FromHex("E1 02 C7 00"), start));
  EXPECT_TRUE(container.BinaryDataSet(FromHex("E1 00"), start));
  test::ExpectNoError(container);
  EXPECT_EQ(container.Tag(), ZelTags::Container_Vat_1);
}

// Properties

TEST(ContainerProperty, WhatIsWrittenIsReadBack) {
  EXPECT_TRUE(rc::check("write and read a container", [] {
    const auto amount = [] {
      return Scaled(100 * *rc::gen::inRange<std::int64_t>(-99999999999, 100000000000));
    };
    clsZelContainer container;
    container.Tag(ZelTags{static_cast<std::uint8_t>(*rc::gen::inRange(225, 234))});
    SetTurnover(container, amount());
    container.TurnoverNeg(Scaled(100 * *rc::gen::inRange<std::int64_t>(0, 100000000000)));
    container.VAT(amount());
    container.VATrate(Scaled(100 * *rc::gen::inRange<std::int64_t>(0, 10000)));
    container.TurnoverThrd(amount());
    RC_PRE(container.Turnover() != Currency(0) || container.TurnoverNeg() != Currency(0));
    const auto position = *rc::gen::inRange(0, 20);
    ByteArray data = ByteArray::WithBounds(0, 99);
    std::int32_t start = position;
    RC_ASSERT(container.BinaryDataGet(data, start));
    const std::int32_t end = start;
    RC_ASSERT(data[position + 1] == end - position - 2);

    clsZelContainer back;
    back.IsZelResponse(*rc::gen::arbitrary<bool>());
    start = position;
    RC_ASSERT(back.BinaryDataSet(data, start));
    RC_ASSERT(start == end);
    RC_ASSERT(back.Tag() == container.Tag());
    RC_ASSERT(back.Turnover() == container.Turnover());
    RC_ASSERT(back.TurnoverNeg() == container.TurnoverNeg());
    RC_ASSERT(back.TurnoverThrd() == container.TurnoverThrd());
    RC_ASSERT(back.VAT() == container.VAT());
    RC_ASSERT(back.VATrate() == container.VATrate());
  }));
}

TEST(ContainerProperty, AnyBytesEndInABoolean) {
  EXPECT_TRUE(rc::check("read any bytes", [] {
    // Bytes that often make sense: tags of containers, short lengths.
    const auto byte = rc::gen::oneOf(rc::gen::arbitrary<std::uint8_t>(), rc::gen::inRange<std::uint8_t>(0, 9),
                                     rc::gen::inRange<std::uint8_t>(214, 235));
    const auto bytes = *rc::gen::container<std::vector<std::uint8_t>>(byte);
    const ByteArray data{std::span<const std::uint8_t>(bytes)};
    const auto position = *rc::gen::inRange<std::int32_t>(-2, static_cast<std::int32_t>(bytes.size()) + 2);
    clsZelContainer container;
    container.IsZelResponse(*rc::gen::arbitrary<bool>());
    std::int32_t start = position;
    const bool done = container.BinaryDataSet(data, start);
    RC_ASSERT(done == !container.HasError());
    if (done) {
      RC_ASSERT(start > position + 1);
      RC_ASSERT(start <= data.UBound() + 1);
    } else {
      RC_ASSERT(start == position);
    }
  }));
}

}  // namespace
}  // namespace VnZEL10cmn
