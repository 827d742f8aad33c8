// The binary exchange by type: item lists, requests and responses, out of the report and into it.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VnZEL10cmn/report/clsZelReport.h"
#include "tests/report/Support.h"

namespace VnZEL10cmn {
namespace {

using test::AddLoaves;
using test::BuildRequest;
using test::ExpectReadFailure;
using test::FromHex;
using test::FromHexAt;
using test::HandIn;
using test::Join;
using test::kReportDate;
using test::kReportHash;
using test::SetDate;
using test::ToHex;

Currency Scaled(std::int64_t scaled) { return Currency::FromScaled(scaled); }

const std::string respHeader = "Report: Dekodieren der Antwort nicht möglich!\r\n";
const std::string rqstHeader = "Report: Dekodieren der Anfrage nicht möglich!\r\n";

std::string NotSupported(std::string_view type) {
  return "Der Serialisierungstyp wird von dieser\r\nFunktion nicht unterstützt!\r\n    Typ .............: " +
         std::string(type);
}

// Types

TEST(ReportBinaryDataGet, TypesThatAreNotSupported) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  for (const auto& [type, text] : {std::pair{ZELSerialType::ObjectData, "0"},
                                   {ZELSerialType{5}, "5"},
                                   {ZELSerialType::BinaryData, "6"},
                                   {ZELSerialType{7}, "7"},
                                   {ZELSerialType{-1}, "-1"}}) {
    ByteArray data = FromHex("01 02");
    EXPECT_FALSE(report.BinaryDataGet(type, data, 0, ZelReportType::Signed));
    test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Ser_SerTypeNotSprt, true, "BinaryDataGet",
                      "Serialisierung des Reports nicht möglich!\r\n" + NotSupported(text));
    EXPECT_EQ(ToHex(data), "01 02");
  }
  EXPECT_EQ(log.Count(), 5U);
  EXPECT_EQ(report.ReportType(), ZelReportType::Undefined);
}

TEST(ReportBinaryDataSet, TypesThatAreNotSupported) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  for (const auto& [type, text] : {std::pair{ZELSerialType::ObjectData, "0"},
                                   {ZELSerialType::ItemHash, "4"},
                                   {ZELSerialType{5}, "5"},
                                   {ZELSerialType::BinaryData, "6"},
                                   {ZELSerialType{-1}, "-1"}}) {
    ExpectReadFailure(report, type, "01 02", ZELErrorCodes::Err_Ser_SerTypeNotSprt, "BinaryDataSet",
                      NotSupported(text));
  }
  // The type is looked at first.
  EXPECT_FALSE(report.BinaryDataSet(ZELSerialType::ItemHash, FromHex("01 02"), 99));
  EXPECT_EQ(report.ErrorObject().ErrorNr(), 9303);
  EXPECT_EQ(log.Count(), 6U);
}

// The bytes to read

TEST(ReportBinaryDataSet, StartOutsideTheArray) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  const std::string text =
      "Deserialisierung des Reports nicht möglich!\r\n"
      "Der Startindex ist außerhalb des gültigen Bereiches.\r\n";
  EXPECT_FALSE(report.BinaryDataSet(ZELSerialType::Response, FromHex("C0 01 03"), -1));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                    text + "    Start ...........: -1\r\n    Min. Startpos. ..: 0");
  EXPECT_FALSE(report.BinaryDataSet(ZELSerialType::Response, FromHex("C0 01 03"), 3));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                    text + "    Start ...........: 3\r\n    Max. Startpos. ..: 2");
  EXPECT_FALSE(report.BinaryDataSet(ZELSerialType::Request, FromHexAt(10, "C0 01 03"), 9));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                    text + "    Start ...........: 9\r\n    Min. Startpos. ..: 10");
  EXPECT_FALSE(report.BinaryDataSet(ZELSerialType::ItemList, ByteArray{}, 0));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                    text + "    Start ...........: 0\r\n    Max. Startpos. ..: -1");
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Undefined);
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9103", "9103", "9103", "9103"}));
}

TEST(ReportBinaryDataSet, LengthBeyondTheArray) {
  clsZelReport report;
  const ByteArray data = FromHex("C0 01 03 C0 01 02");
  EXPECT_FALSE(report.BinaryDataSet(ZELSerialType::Response, data, 1, 6));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataSet",
                    "Deserialisierung des Reports nicht möglich!\r\n"
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Start ..........: 1\r\n"
                    "    Länge ..........: 6\r\n"
                    "    Leseende .......: 6\r\n"
                    "    Obergrenze .....: 5");
  EXPECT_FALSE(
      report.BinaryDataSet(ZELSerialType::Response, data, 5, std::numeric_limits<std::int32_t>::max()));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataSet",
                    "Deserialisierung des Reports nicht möglich!\r\n"
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Start ..........: 5\r\n"
                    "    Länge ..........: 2147483647\r\n"
                    "    Leseende .......: 2147483651\r\n"
                    "    Obergrenze .....: 5");
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Undefined);
  EXPECT_TRUE(report.BinaryDataSet(ZELSerialType::Response, data, 0, 6));
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Personalized);
}

TEST(ReportBinaryDataSet, TakesTheBytesFromStartOn) {
  clsZelReport report;
  const ByteArray data = FromHexAt(3, "FF C0 01 03 C0 01 02");
  EXPECT_TRUE(report.BinaryDataSet(ZELSerialType::Response, data, 4, 3));
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Activated);
  EXPECT_TRUE(report.BinaryDataSet(ZELSerialType::Response, data, 4));
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Personalized);
  EXPECT_TRUE(report.BinaryDataSet(ZELSerialType::Response, data, 4, -7));
  ByteArray stored = ByteArray::WithBounds(0, 5);
  EXPECT_TRUE(report.BinaryDataGet(ZELSerialType::Response, stored, 0));
  EXPECT_EQ(ToHex(stored), "C0 01 03 C0 01 02");
}

// Item lists

TEST(ReportItemList, IsWrittenAndStored) {
  clsZelReport report;
  SetDate(report);
  AddLoaves(report);
  ByteArray data = ByteArray::WithBounds(0, 15);
  std::int32_t length = -1;
  EXPECT_TRUE(report.BinaryDataGet(ZELSerialType::ItemList, data, 2, ZelReportType::Undefined, &length));
  test::ExpectNoError(report);
  EXPECT_EQ(length, 14);
  EXPECT_EQ(ToHex(data), "00 00 " + std::string(test::kSaleItems));
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64, true), "1GZUHSrdJ6VfdAc6/W6svhajN/o=");
  EXPECT_EQ(report.ReportType(), ZelReportType::Undefined);
}

TEST(ReportItemList, ThatDoesNotFit) {
  test::TestLog log;
  clsZelReport report;
  AddLoaves(report);
  report.LogHandler(log.Handler());
  ByteArray data = ByteArray::WithBounds(0, 14);
  const ByteArray before = data;
  EXPECT_FALSE(report.BinaryDataGet(ZELSerialType::ItemList, data, 2));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataGet",
                    "Serialisierung des Reports nicht möglich!\r\n"
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Start ..........: 2\r\n"
                    "    Länge ..........: 14\r\n"
                    "    Leseende .......: 15\r\n"
                    "    Obergrenze .....: 14");
  EXPECT_EQ(data, before);
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"BinaryDataGet"});
  EXPECT_TRUE(report.BinaryDataGet(ZELSerialType::ItemList, data, 1));
  EXPECT_EQ(ToHex(data), "00 " + std::string(test::kSaleItems));
}

TEST(ReportItemList, EmptyListIsNotWritten) {
  clsZelReport report;
  ByteArray data = FromHex("01");
  EXPECT_FALSE(report.BinaryDataGet(ZELSerialType::ItemList, data, 0));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "EncodeItems",
                    "Buchung: Kodieren der Postenliste nicht möglich!\r\n"
                    "Es sind keine Posteneinträge vorhanden, Buchungen.\r\n"
                    "ohne Posten sind jedoch nicht zulässig!");
  EXPECT_EQ(ToHex(data), "01");
}

TEST(ReportItemList, ItemThatCannotBeWritten) {
  clsZelReport report;
  const auto item = std::make_shared<test::FakeItem>();
  item->failAtWrite = 1;
  ASSERT_TRUE(report.AddItem(item));
  ByteArray data = ByteArray::WithBounds(0, 99);
  EXPECT_FALSE(report.BinaryDataGet(ZELSerialType::ItemList, data, 0));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "EncodeItems.[BinaryDataSet]",
                    "Buchung: Kodieren der Postenliste nicht möglich!\r\n"
                    "Die Daten konnten nicht aus dem Listenobjekt gelesen werden.");
}

TEST(ReportItemList, IsReadInPlaceOfTheOldItems) {
  clsZelReport report;
  ASSERT_TRUE(report.AddItem(test::CashItem("alt", 1)));
  EXPECT_TRUE(HandIn(report, ZELSerialType::ItemList, test::kSaleItems));
  test::ExpectNoError(report);
  ASSERT_EQ(report.ItemCount(), 1);
  const auto* item = dynamic_cast<clsZelItemCash*>(report.ItemI(1).get());
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->Quantity(), Currency(2));
  EXPECT_EQ(item->Name(), "brot");
  EXPECT_EQ(item->Price(1), Scaled(119000));
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64, true), "1GZUHSrdJ6VfdAc6/W6svhajN/o=");
}

TEST(ReportItemList, DamagedItem) {
  clsZelReport report;
  ExpectReadFailure(
      report, ZELSerialType::ItemList, "A0 01 31 A2 01 78 A0 01 32 C7 00 A2 01 79",
      ZELErrorCodes::Err_Ser_Failed, "DecodeItems.[mObjItemList.BinaryDataSet]",
      "Buchung: Dekodieren der Postenliste nicht möglich!\r\nDas Listenobjekt meldete einen Fehler");
  EXPECT_EQ(report.ItemCount(), 1);
}

TEST(ReportItemList, ItemsThatAreReadButCannotBeHashed) {
  clsZelReport report;
  report.ItemFactory(std::make_shared<test::FakeFactory>([] {
    auto item = std::make_shared<test::FakeItem>();
    item->failAtWrite = 1;
    return item;
  }));
  ExpectReadFailure(report, ZELSerialType::ItemList, "A0 01 31", ZELErrorCodes::Err_Ser_Failed,
                    "DecodeItems.[mObjItemList.GetItemHash]",
                    "Der Hashcode der Buchungsposten konnte nicht in\r\ndas Base64-Format überführt werden.");
}

TEST(ReportItemHashBytes, AreCopiedToStart) {
  clsZelReport report;
  AddLoaves(report);
  ByteArray data = ByteArray::WithBounds(0, 21);
  std::int32_t length = -1;
  EXPECT_TRUE(report.BinaryDataGet(ZELSerialType::ItemHash, data, 1, ZelReportType::Undefined, &length));
  EXPECT_EQ(length, 20);
  EXPECT_EQ(ToHex(data), "00 D4 66 54 1D 2A DD 27 A5 5F 74 07 3A FD 6E AC BE 16 A3 37 FA 00");
  clsZelReport empty;
  data = FromHex("01 02");
  EXPECT_TRUE(empty.BinaryDataGet(ZELSerialType::ItemHash, data, 0, ZelReportType::Undefined, &length));
  EXPECT_EQ(length, 0);
  EXPECT_EQ(ToHex(data), "01 02");
}

// Responses

void ExpectSmallResponse(const clsZelReport& report) {
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Activated);
  EXPECT_EQ(report.TpID(), "DE1");
  EXPECT_EQ(report.TpIdNbr(), Currency(2));
  EXPECT_EQ(report.SequenceNbr(), Currency(300));
  EXPECT_EQ(report.TransSeqNrFirst(), Currency(5));
  EXPECT_EQ(report.TransSeqNrLast(), Currency(1000));
  EXPECT_EQ(report.Signature(), test::kSaleSignature);
}

TEST(ReportResponse, FillsTheProperties) {
  clsZelReport report;
  EXPECT_TRUE(HandIn(report, ZELSerialType::Response, test::SmallResponse()));
  test::ExpectNoError(report);
  ExpectSmallResponse(report);
  EXPECT_EQ(report.ReportType(), ZelReportType::Undefined);
  EXPECT_EQ(report.ReportDate(), Date::FromCivil(2000, 1, 1));
}

TEST(ReportResponse, ReverseOrderFillsTheSameProperties) {
  clsZelReport report;
  EXPECT_TRUE(HandIn(report, ZELSerialType::Response,
                     Join(test::kSigned, test::kLast, test::kFirst, test::kSequence, test::kDevice,
                          test::kTaxpayer, test::kState)));
  ExpectSmallResponse(report);
}

struct Expected {
  ZelLifeCycle state = ZelLifeCycle::Undefined;
  std::string taxpayer;
  std::int32_t device = 0;
  std::int32_t sequence = 0;
  std::int32_t first = 0;
  std::int32_t last = 0;
  std::string signature;
  std::int64_t turnover1 = 0;
  std::int64_t turnover9 = 0;
  bool operator==(const Expected&) const = default;
};

Expected ValuesOf(const clsZelReport& report) {
  return {report.ZelStatus(),
          report.TpID(),
          static_cast<std::int32_t>(report.TpIdNbr().Scaled() / 10000),
          static_cast<std::int32_t>(report.SequenceNbr().Scaled() / 10000),
          static_cast<std::int32_t>(report.TransSeqNrFirst().Scaled() / 10000),
          static_cast<std::int32_t>(report.TransSeqNrLast().Scaled() / 10000),
          report.Signature(),
          report.Container(1)->Turnover().Scaled(),
          report.Container(9)->Turnover().Scaled()};
}

/// Every order of the records fills the properties as said.
void ExpectAllOrders(const std::vector<std::string_view>& records, const Expected& expected) {
  std::vector<std::size_t> order(records.size());
  std::iota(order.begin(), order.end(), 0);
  do {
    std::string response;
    for (const std::size_t i : order) {
      response.append(records[i]).append(" ");
    }
    clsZelReport report;
    ASSERT_TRUE(HandIn(report, ZELSerialType::Response, response)) << response;
    ASSERT_EQ(ValuesOf(report), expected) << response;
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST(ReportResponse, RecordsComeInAnyOrder) {
  Expected expected;
  std::vector<std::string_view> records{test::kState};
  expected.state = ZelLifeCycle::Activated;
  ExpectAllOrders(records, expected);
  records.push_back(test::kTaxpayer);
  expected.taxpayer = "DE1";
  ExpectAllOrders(records, expected);
  records.push_back(test::kDevice);
  expected.device = 2;
  ExpectAllOrders(records, expected);
  records.push_back(test::kSequence);
  expected.sequence = 300;
  ExpectAllOrders(records, expected);
  records.push_back(test::kFirst);
  expected.first = 5;
  ExpectAllOrders(records, expected);
  records.push_back(test::kLast);
  expected.last = 1000;
  ExpectAllOrders(records, expected);
}

TEST(ReportResponse, ContainersAndSignatureComeInAnyOrder) {
  Expected expected;
  expected.state = ZelLifeCycle::Activated;
  expected.device = 2;
  expected.last = 1000;
  expected.signature = test::kSaleSignature;
  expected.turnover1 = 12345678901234500;
  expected.turnover9 = 70100;
  ExpectAllOrders({test::kSigned, test::kStandard, test::kState, test::kTraining, test::kDevice, test::kLast},
                  expected);
}

TEST(ReportResponse, TheLaterOfTwoRecordsCounts) {
  clsZelReport report;
  EXPECT_TRUE(HandIn(report, ZELSerialType::Response, "CC 01 05 C0 01 01 CC 01 06 C0 01 04"));
  EXPECT_EQ(report.SequenceNbr(), Currency(6));
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Deactivated);
}

TEST(ReportResponse, ValuesThatAreNotThereStayButTheSignature) {
  clsZelReport report;
  ASSERT_TRUE(
      HandIn(report, ZELSerialType::Response, Join(test::SmallResponse(), test::kStandard, test::kTraining)));
  EXPECT_TRUE(HandIn(report, ZELSerialType::Response, "C0 01 04"));
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Deactivated);
  EXPECT_EQ(report.TpID(), "DE1");
  EXPECT_EQ(report.TpIdNbr(), Currency(2));
  EXPECT_EQ(report.SequenceNbr(), Currency(300));
  EXPECT_EQ(report.TransSeqNrFirst(), Currency(5));
  EXPECT_EQ(report.TransSeqNrLast(), Currency(1000));
  EXPECT_EQ(report.Container(1)->Turnover(), Scaled(12345678901234500));
  EXPECT_TRUE(report.ContainerTraining()->OverflowTO());
  EXPECT_EQ(report.Signature(), "");
}

TEST(ReportResponse, StateAloneLeavesTheRestAsItWas) {
  clsZelReport report;
  EXPECT_TRUE(HandIn(report, ZELSerialType::Response, test::kState));
  Expected expected;
  expected.state = ZelLifeCycle::Activated;
  EXPECT_EQ(ValuesOf(report), expected);
}

TEST(ReportResponse, EveryState) {
  clsZelReport report;
  for (int state = 0; state <= 9; ++state) {
    EXPECT_TRUE(HandIn(report, ZELSerialType::Response, "C0 01 0" + std::to_string(state)));
    EXPECT_EQ(static_cast<int>(report.ZelStatus()), state);
  }
}

TEST(ReportResponse, LastByteAloneIsNotRead) {
  clsZelReport report;
  EXPECT_TRUE(HandIn(report, ZELSerialType::Response, "C0 01 03 FF"));
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Activated);
  ByteArray stored = ByteArray::WithBounds(0, 3);
  EXPECT_TRUE(report.BinaryDataGet(ZELSerialType::Response, stored, 0));
  EXPECT_EQ(ToHex(stored), "C0 01 03 FF");
  EXPECT_TRUE(HandIn(report, ZELSerialType::Response, "C4"));
  test::ExpectNoError(report);
}

TEST(ReportResponse, ContainersAreInTheLongForm) {
  clsZelReport report;
  // 999,999,999,999.99 at 19 %; -99,999,999,999.99, all of it negative, at 0.07 %, 0.05 of it third-party.
  EXPECT_TRUE(HandIn(report, ZELSerialType::Response,
                     "E1 11 D8 08 09 99 99 99 99 99 99 9C D9 01 0C DB 02 19 00 "
                     "E2 18 D8 07 99 99 99 99 99 99 9D D9 07 99 99 99 99 99 99 9C DB 01 07 D6 01 5C"))
      << report.ErrorObject().ErrorMsg();
  EXPECT_EQ(report.Container(1)->Turnover(), Scaled(9999999999999900));
  EXPECT_EQ(report.Container(1)->VATrate(), Currency(19));
  EXPECT_EQ(report.Container(2)->Turnover(), Scaled(-999999999999900));
  EXPECT_EQ(report.Container(2)->TurnoverNeg(), Scaled(999999999999900));
  EXPECT_EQ(report.Container(2)->TurnoverThrd(), Scaled(500));
  EXPECT_EQ(report.Container(2)->VATrate(), Scaled(700));
}

TEST(ReportResponse, AllNineContainers) {
  clsZelReport report;
  std::string response;
  for (int number = 1; number <= 9; ++number) {
    // Turnover number.00, VAT 0.0number, rate number %.
    const std::string digit = std::to_string(number);
    response += "E" + digit + " 0B D8 02 " + digit + "0 0C DA 01 " + digit + "C DB 02 0" + digit + " 00 ";
  }
  EXPECT_TRUE(HandIn(report, ZELSerialType::Response, response)) << report.ErrorObject().ErrorMsg();
  for (std::int32_t number = 1; number <= 9; ++number) {
    EXPECT_EQ(report.Container(number)->Turnover(), Currency(number));
    EXPECT_EQ(report.Container(number)->VAT(), Scaled(100 * number));
    EXPECT_EQ(report.Container(number)->VATrate(), Currency(number));
    EXPECT_FALSE(report.Container(number)->OverflowTO());
    EXPECT_FALSE(report.Container(number)->VATchange());
    EXPECT_EQ(static_cast<int>(report.Container(number)->Tag()), 224 + number);
  }
}

TEST(ReportResponse, OverflowAndVatChangeMarks) {
  clsZelReport report;
  EXPECT_TRUE(
      HandIn(report, ZELSerialType::Response, "E1 02 DC 00 E2 02 DD 00 E3 02 DE 00 E4 06 DE 00 DC 00 DD 00"));
  EXPECT_TRUE(report.Container(1)->OverflowTO());
  EXPECT_FALSE(report.Container(1)->VATchange());
  EXPECT_TRUE(report.Container(2)->OverflowTO());
  EXPECT_FALSE(report.Container(2)->VATchange());
  EXPECT_FALSE(report.Container(3)->OverflowTO());
  EXPECT_TRUE(report.Container(3)->VATchange());
  EXPECT_TRUE(report.Container(4)->OverflowTO());
  EXPECT_TRUE(report.Container(4)->VATchange());
  EXPECT_EQ(report.Container(1)->CounterTO(), Currency(0));
  // Reading a container anew forgets its marks.
  EXPECT_TRUE(HandIn(report, ZELSerialType::Response, "E4 04 D8 02 10 0C"));
  EXPECT_FALSE(report.Container(4)->OverflowTO());
  EXPECT_FALSE(report.Container(4)->VATchange());
}

TEST(ReportResponse, CounterAndOverflowAreTwoBytesWhateverTheirLength) {
  clsZelReport report;
  for (const std::string tag : {"DC", "DD"}) {
    for (const std::string length : {"00", "01", "05", "7F", "80", "FF"}) {
      clsZelReport read;
      EXPECT_TRUE(
          HandIn(read, ZELSerialType::Response, "E1 06 " + tag + " " + length + " D8 02 10 0C CC 01 05"))
          << tag << length << read.ErrorObject().ErrorMsg();
      EXPECT_TRUE(read.Container(1)->OverflowTO());
      EXPECT_EQ(read.Container(1)->Turnover(), Currency(1));
      EXPECT_EQ(read.Container(1)->CounterTO(), Currency(0));
      EXPECT_EQ(read.SequenceNbr(), Currency(5));
    }
    // So a value is taken for the next record.
    ExpectReadFailure(report, ZELSerialType::Response, "E1 04 " + tag + " 02 12 34",
                      ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[BinaryDataSet]",
                      respHeader +
                          "Ein Umsatzcontainer konnte nicht gelesen werden!\r\n"
                          "    Position ........: 0\r\n"
                          "    Tag .............: E1\r\n"
                          "    Containernr. ....: 0");
  }
}

TEST(ReportResponse, IsStoredAndHandedOut) {
  clsZelReport report;
  ASSERT_TRUE(HandIn(report, ZELSerialType::Response, "C0 01 03 CC 01 05"));
  ByteArray data = ByteArray::WithBounds(5, 14);
  std::int32_t length = -1;
  EXPECT_TRUE(report.BinaryDataGet(ZELSerialType::Response, data, 7, ZelReportType::Undefined, &length));
  EXPECT_EQ(length, 6);
  EXPECT_EQ(ToHex(data), "00 00 C0 01 03 CC 01 05 00 00");
  ByteArray small = ByteArray::WithBounds(0, 4);
  EXPECT_FALSE(report.BinaryDataGet(ZELSerialType::Response, small, 0));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataGet",
                    "Serialisierung des Reports nicht möglich!\r\n"
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Start ..........: 0\r\n"
                    "    Länge ..........: 6\r\n"
                    "    Leseende .......: 5\r\n"
                    "    Obergrenze .....: 4");
  for (const std::int32_t start : {-1, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_FALSE(report.BinaryDataGet(ZELSerialType::Response, data, start));
    EXPECT_TRUE(report.HasError());
  }
}

TEST(ReportResponse, ThatNeverCame) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  ByteArray data = FromHex("01");
  EXPECT_FALSE(report.BinaryDataGet(ZELSerialType::Response, data, 0));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "EncodeResp",
                    "Buchung: Kodieren der ZEL-Antwort nicht möglich!\r\n"
                    "Es sind keine Daten einer ZEL-Antwort vorhanden.!");
  EXPECT_EQ(ToHex(data), "01");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"EncodeResp"});
}

// Damaged responses

TEST(ReportResponseFailure, EachRecord) {
  struct Case {
    std::string_view hex, tag, text, accessor;
  };
  std::string longTaxpayer = "C4 21";
  for (int i = 0; i < 33; ++i) {
    longTaxpayer += " 41";
  }
  std::string longSignature = "9E 41";
  for (int i = 0; i < 65; ++i) {
    longSignature += " 00";
  }
  std::string shortSignature = "9E 2F";
  for (int i = 0; i < 47; ++i) {
    shortSignature += " 00";
  }
  const std::vector<Case> cases{
      {"C0 02 03", "C0", "Fehler beim Lesen des ZEL-Status", "GetZelLifeCycle"},
      {"C0 80 03", "C0", "Fehler beim Lesen des ZEL-Status", "GetZelLifeCycle"},
      {"C4 00", "C4", "Fehler beim Lesen der Steuerpflichtigen-ID", "GetZelTpID"},
      {"C4 01 1F", "C4", "Fehler beim Lesen der Steuerpflichtigen-ID", "GetZelTpID"},
      {longTaxpayer, "C4", "Fehler beim Lesen der Steuerpflichtigen-ID", "GetZelTpID"},
      {"C5 00", "C5", "Fehler beim Lesen der laufenden ZEL-Nr", "GetZelTpIDNr"},
      {"C5 05 00 00 00 00 01", "C5", "Fehler beim Lesen der laufenden ZEL-Nr", "GetZelTpIDNr"},
      {"CC 02 01", "CC", "Fehler beim Lesen der Report-Sequenznummer", "GetZelCounterSpc01"},
      {"CC 00", "CC", "Fehler beim Lesen der Report-Sequenznummer", "GetZelCounterSpc01"},
      {"D2 02 01", "D2", "Fehler beim Lesen der Buchungnummer (Start)", "GetZelCounterSpc01"},
      {"D3 02 01", "D3", "Fehler beim Lesen der Buchungnummer (Ende)", "GetZelCounterSpc01"},
      {"9E 02 01", "9E", "Fehler beim Lesen der Signatur", "GetZelSignature2"},
      {shortSignature, "9E", "Fehler beim Lesen der Signatur", "GetZelSignature2"},
      {longSignature, "9E", "Fehler beim Lesen der Signatur", "GetZelSignature2"},
  };
  for (const Case& damage : cases) {
    clsZelReport report;
    for (const auto& [before, position] : {std::pair{std::string(), "0"},
                                           {std::string("C0 01 02 "), "3"},
                                           {Join(test::kSequence, "C0 01 02"), "7"}}) {
      ExpectReadFailure(report, ZELSerialType::Response, before + std::string(damage.hex),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[" + std::string(damage.accessor) + "]",
                        respHeader + std::string(damage.text) + "\r\n    Position .......: " + position +
                            "\r\n    Tag ............: " + std::string(damage.tag));
    }
    // What stands before the damage is read.
    EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Personalized);
    EXPECT_EQ(report.SequenceNbr(), Currency(300));
  }
}

TEST(ReportResponseFailure, EachContainer) {
  test::TestLog log;
  for (int number = 1; number <= 9; ++number) {
    clsZelReport report;
    report.LogHandler(log.Handler());
    const std::string tag = "E" + std::to_string(number);
    ExpectReadFailure(report, ZELSerialType::Response, "C0 01 03 " + tag + " 04 D8 02 1A 0C",
                      ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[BinaryDataSet]",
                      respHeader +
                          "Ein Umsatzcontainer konnte nicht gelesen werden!\r\n"
                          "    Position ........: 3\r\n"
                          "    Tag .............: " +
                          tag +
                          "\r\n"
                          "    Containernr. ....: " +
                          std::to_string(number - 1));
    EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Activated);
  }
  // Containers have no log file.
  EXPECT_EQ(log.Count(), 9U);
  EXPECT_EQ(test::LogSources(log)[0], "clsZelReport");
}

TEST(ReportResponseFailure, ContainersWithForeignRecordsOrCutOff) {
  clsZelReport report;
  for (const std::string_view hex :
       {"E2 02 C0 00", "E2 05 D8 02 10 0C", "E2 80", "E2 0C D8 0A 00 00 00 00 00 00 00 00 01 0C",
        "E2 0B D8 09 00 00 00 00 00 00 00 01 0C", "E2 03 D8 01 0D"}) {
    ExpectReadFailure(report, ZELSerialType::Response, hex, ZELErrorCodes::Err_Ser_Failed,
                      "DecodeResp.[BinaryDataSet]",
                      respHeader +
                          "Ein Umsatzcontainer konnte nicht gelesen werden!\r\n"
                          "    Position ........: 0\r\n"
                          "    Tag .............: E2\r\n"
                          "    Containernr. ....: 1");
  }
}

TEST(ReportResponseFailure, RecordsThatHaveNoPlaceInAResponse) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  int refused = 0;
  for (int tag = 0; tag < 256; ++tag) {
    const bool expected = tag == 158 || tag == 192 || tag == 196 || tag == 197 || tag == 204 || tag == 210 ||
                          tag == 211 || (tag >= 225 && tag <= 233);
    ByteArray response = FromHex("CC 01 07 00 00");
    response[3] = static_cast<std::uint8_t>(tag);
    const bool read = report.BinaryDataSet(ZELSerialType::Response, response, 0);
    if (expected) {
      EXPECT_NE(report.ErrorObject().ErrorNr(), 9305) << tag;
      continue;
    }
    ++refused;
    EXPECT_FALSE(read) << tag;
    const std::string hex = ToHex(response).substr(9, 2);
    test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Ser_TagUnexpected, true, "DecodeResp",
                      "Unerwartetes TAG\r\n"
                      "Das gefundenen TAG (s.u.) darf in\r\n"
                      "ZEL-Umsatz-Containern nicht vorkommen!\r\n"
                      "    Tag gefunden ....: " +
                          hex);
    EXPECT_EQ(report.SequenceNbr(), Currency(7));
  }
  EXPECT_EQ(refused, 240);
}

TEST(ReportResponseFailure, KeepsTheLastResponsesDataButNotItsSignature) {
  clsZelReport report;
  ASSERT_TRUE(HandIn(report, ZELSerialType::Response, test::SmallResponse()));
  EXPECT_FALSE(HandIn(report, ZELSerialType::Response, "CC 01 08 C6 01 41 C0 01 01"));
  EXPECT_EQ(report.SequenceNbr(), Currency(8));
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Activated);
  EXPECT_EQ(report.Signature(), "");
  ByteArray stored = ByteArray::WithBounds(0, 71);
  std::int32_t length = -1;
  EXPECT_TRUE(report.BinaryDataGet(ZELSerialType::Response, stored, 0, ZelReportType::Undefined, &length));
  EXPECT_EQ(length, 72);
  EXPECT_EQ(stored, FromHex(test::SmallResponse()));
}

TEST(ReportResponseFailure, PositionsCountFromStart) {
  clsZelReport report;
  EXPECT_FALSE(report.BinaryDataSet(ZELSerialType::Response, FromHexAt(20, "FF FF C0 01 03 C4 00"), 22));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "DecodeResp.[GetZelTpID]",
                    respHeader +
                        "Fehler beim Lesen der Steuerpflichtigen-ID\r\n"
                        "    Position .......: 3\r\n"
                        "    Tag ............: C4");
}

// Requests

TEST(ReportReadRequest, DateAndTime) {
  clsZelReport report;
  EXPECT_TRUE(HandIn(report, ZELSerialType::Request, kReportDate));
  test::ExpectNoError(report);
  EXPECT_EQ(report.ReportDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 0).Value());
  EXPECT_EQ(report.ReportType(), ZelReportType::Undefined);
  EXPECT_TRUE(HandIn(report, ZELSerialType::ItemHash2, "CD 04 20 24 03 16 CE 01 05"));
  EXPECT_EQ(report.ReportDate().Value(), Date::FromCivil(2024, 3, 16, 0, 5, 0).Value());
}

TEST(ReportReadRequest, Hash) {
  clsZelReport report;
  EXPECT_TRUE(HandIn(report, ZELSerialType::Request, Join(kReportDate, kReportHash)));
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64, true), "1GZUHSrdJ6VfdAc6/W6svhajN/o=");
  EXPECT_TRUE(HandIn(report, ZELSerialType::Request,
                     Join(kReportDate,
                          "D4 20 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F "
                          "10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F")));
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64, true), "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8=");
  EXPECT_EQ(report.ReportType(), ZelReportType::Undefined);
}

TEST(ReportReadRequest, Span) {
  clsZelReport report;
  EXPECT_TRUE(HandIn(report, ZELSerialType::Request, Join(kReportDate, "D0 03 20 01 02 D1 03 20 24 02")));
  EXPECT_EQ(report.SpanMonthFrom().Value(), Date::FromCivil(2001, 2, 1).Value());
  EXPECT_EQ(report.SpanMonthUpTo().Value(), Date::FromCivil(2024, 2, 29, 23, 59, 59).Value());
  EXPECT_EQ(report.ReportType(), ZelReportType::Undefined);
}

TEST(ReportReadRequest, TransportPin) {
  clsZelReport report;
  EXPECT_TRUE(HandIn(report, ZELSerialType::Request, Join(kReportDate, "C3 06 30 31 32 33 34 35")));
  EXPECT_EQ(report.TransportPIN(), "012345");
}

TEST(ReportReadRequest, LeavesTheKindOfTheLastRequestAlone) {
  clsZelReport report;
  SetDate(report);
  (void)BuildRequest(report, ZelReportType::Unsigned);
  EXPECT_TRUE(HandIn(report, ZELSerialType::Request, Join(kReportDate, "C3 06 30 31 32 33 34 35")));
  EXPECT_EQ(report.ReportType(), ZelReportType::Unsigned);
}

TEST(ReportReadRequest, IsTheOneThatIsExported) {
  clsZelReport report;
  EXPECT_TRUE(HandIn(report, ZELSerialType::Request, Join(kReportDate, "D0 03 20 24 01 D1 03 20 24 03")));
  EXPECT_TRUE(HandIn(report, ZELSerialType::Response, test::kState));
  std::string document;
  EXPECT_TRUE(report.XmlHandler(document, true, -1));
  EXPECT_EQ(document,
            "<reportEncoded><reportRequest>zQQgJAMVzgIUN9ADICQB0QMgJAM=</reportRequest>"
            "<reportResponse>wAED</reportResponse></reportEncoded>");
}

std::string RequestMessage(std::string_view text, std::string_view position, std::string_view tag) {
  return rqstHeader + std::string(text) + "\r\n    Position .......: " + std::string(position) +
         "\r\n    Tag ............: " + std::string(tag);
}

TEST(ReportReadRequestFailure, Date) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  for (const std::string_view hex : {"CD 04 20 24 13 15 CE 02 14 37", "CD 04 20 24 02 30 CE 02 14 37",
                                     "CD 04 20", "CD 03 20 24 03", "CD 04 20 2A 03 15"}) {
    ExpectReadFailure(report, ZELSerialType::Request, hex, ZELErrorCodes::Err_Ser_Failed,
                      "DecodeRqst.[GetZelDates]", RequestMessage("Fehler beim Lesen des Datums", "0", "CD"));
  }
  EXPECT_EQ(report.ReportDate(), Date::FromCivil(2000, 1, 1));
  EXPECT_EQ(test::LogSources(log)[0], "clsZelBaseCoding");
  EXPECT_EQ(test::LogSources(log)[1], "clsZelReport");
  EXPECT_EQ(log.Functions()[1], "DecodeRqst.[GetZelDates]");
}

TEST(ReportReadRequestFailure, Time) {
  clsZelReport report;
  for (const std::string_view hex : {"CE 02 24 00", "CE 02 14 60", "CE 03 14 37 00", "CE 02 14", "CE 00"}) {
    ExpectReadFailure(report, ZELSerialType::Request, Join("CD 04 20 24 03 15", hex),
                      ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[GetZelTimes]",
                      RequestMessage("Fehler beim Lesen der Zeitangabe", "6", "CE"));
  }
}

TEST(ReportReadRequestFailure, Hash) {
  clsZelReport report;
  for (const std::string_view hex :
       {"D4 02 01 02", "D4 14 00", "D4 00",
        "D4 15 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"}) {
    ExpectReadFailure(report, ZELSerialType::Request, Join(kReportDate, hex), ZELErrorCodes::Err_Ser_Failed,
                      "DecodeRqst.[GetZelHash]",
                      RequestMessage("Fehler beim Lesen des Postenhashcodes", "10", "D4"));
  }
  // Date and time are read.
  EXPECT_EQ(report.ReportDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 0).Value());
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64, true), "");
}

TEST(ReportReadRequestFailure, SpanStart) {
  clsZelReport report;
  for (const std::string_view hex : {"D0 03 20 24 13", "D0 02 20 24", "D0 03 20 24", "D0 00"}) {
    ExpectReadFailure(report, ZELSerialType::Request, Join(kReportDate, hex), ZELErrorCodes::Err_Ser_Failed,
                      "DecodeRqst.[GetZelDatesSpc01]",
                      RequestMessage("Fehler beim Lesen des Zeitraumbeginns", "10", "D0"));
  }
}

TEST(ReportReadRequestFailure, SpanEnd) {
  clsZelReport report;
  for (const std::string_view hex : {"D1 03 20 24 00", "D1 02 20 24", "D1 03 20 24", "D1 00"}) {
    ExpectReadFailure(report, ZELSerialType::Request, Join(kReportDate, "D0 03 20 24 01", hex),
                      ZELErrorCodes::Err_Ser_Failed, "DecodeRqst.[GetZelDatesSpc01]",
                      RequestMessage("Fehler beim Lesen des Zeitraumendes", "15", "D1"));
  }
  EXPECT_EQ(report.SpanMonthFrom().Value(), Date::FromCivil(2024, 1, 1).Value());
  EXPECT_EQ(report.SpanMonthUpTo(), Date::FromCivil(2099, 12, 31, 23, 59, 59));
}

TEST(ReportReadRequestFailure, TransportPin) {
  clsZelReport report;
  for (const std::string_view hex : {"C3 05 31 32 33 34 35", "C3 07 31 32 33 34 35 36 37",
                                     "C3 06 31 32 33 34 35 1F", "C3 06 31", "C3 00"}) {
    ExpectReadFailure(report, ZELSerialType::Request, Join(kReportDate, hex), ZELErrorCodes::Err_Ser_Failed,
                      "DecodeRqst.[GetZelTranspPin]",
                      RequestMessage("Fehler beim Lesen der Transport-PIN", "10", "C3"));
  }
}

TEST(ReportReadRequestFailure, OtherLayouts) {
  clsZelReport report;
  // Each names the record that was expected, or the tag that has no place there.
  for (const std::string& hex :
       {std::string("CE 02 14 37"), std::string("CE 02 14 37 CD 04 20 24 03 15"),
        std::string("CD 04 20 24 03 15"), Join("CD 04 20 24 03 15", kReportHash),
        Join(kReportHash, kReportDate), Join(kReportDate, "C6 01 41"),
        Join(kReportDate, "C7 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13"),
        Join(kReportDate, "D1 03 20 24 03"), Join(kReportDate, "D0 03 20 24 03"),
        Join(kReportDate, "D1 03 20 24 03 D0 03 20 24 01"), Join(kReportDate, kReportHash, "D0 03 20 24 01"),
        Join(kReportDate, kReportHash, kReportHash),
        Join(kReportDate, "C3 06 31 32 33 34 35 36", kReportHash),
        Join(kReportDate, "D0 03 20 24 01 D1 03 20 24 03 C3 06 31 32 33 34 35 36"),
        Join(kReportDate, kReportDate)}) {
    EXPECT_FALSE(HandIn(report, ZELSerialType::Request, hex)) << hex;
    EXPECT_TRUE(report.ErrorObject().ErrorNr() == 9301 || report.ErrorObject().ErrorNr() == 9305) << hex;
    EXPECT_TRUE(report.ErrorObject().IsUserDef());
    EXPECT_EQ(report.ErrorObject().ErrorFunction().substr(0, 10), "DecodeRqst") << hex;
    // Nothing of it is kept as the request.
    std::string document;
    ASSERT_TRUE(HandIn(report, ZELSerialType::Response, test::kState));
    EXPECT_FALSE(report.XmlHandler(document, true));
  }
}

}  // namespace
}  // namespace VnZEL10cmn
