// The binary exchange by type: data, requests and responses, out of the record and into it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VnZEL10cmn/datarecord/clsZelTransActData.h"
#include "tests/datarecord/Support.h"
#include "tests/support/Stamp.h"

namespace VnZEL10cmn {
namespace {

using test::BytesOf;
using test::ExpectReadFailure;
using test::ExpectWriteFailure;
using test::FillAbc;
using test::FromHex;
using test::FromHexAt;
using test::HandIn;
using test::Join;
using test::kDay;
using test::kMinute;
using test::ToHex;

const std::string getHeader = "Serialisierung der Buchung nicht möglich!\r\n";
const std::string setHeader = "Deserialisierung der Buchung nicht möglich!\r\n";
const std::string rqstHeader = "Buchung (Daten): Das Erstellen der Anfrage ist nicht möglich!\r\n";

std::string HashRecord() { return "C7 20 " + std::string(test::kAbcSha256); }

std::string NotSupported(std::string_view type) {
  return "Der Serialisierungstyp wird von dieser\r\nFunktion nicht unterstützt!\r\n    Typ .............: " +
         std::string(type);
}

// Types

TEST(DataRecordBinaryDataGet, TypesThatAreNotSupported) {
  test::TestLog log;
  clsZelTransActData record;
  FillAbc(record);
  record.LogHandler(log.Handler());
  for (const auto& [type, text] : {std::pair{ZELSerialType::ObjectData, "0"},
                                   {ZELSerialType::ItemList, "1"},
                                   {ZELSerialType::ItemHash, "4"},
                                   {ZELSerialType{5}, "5"},
                                   {ZELSerialType{7}, "7"},
                                   {ZELSerialType{-1}, "-1"}}) {
    ExpectWriteFailure(record, type, ZELErrorCodes::Err_Ser_SerTypeNotSprt, "BinaryDataGet",
                       getHeader + NotSupported(text));
  }
  EXPECT_EQ(log.Count(), 6U);
}

TEST(DataRecordBinaryDataSet, TypesThatAreNotSupported) {
  test::TestLog log;
  clsZelTransActData record;
  record.LogHandler(log.Handler());
  for (const auto& [type, text] : {std::pair{ZELSerialType::ObjectData, "0"},
                                   {ZELSerialType::ItemList, "1"},
                                   {ZELSerialType::ItemHash, "4"},
                                   {ZELSerialType{5}, "5"},
                                   {ZELSerialType{7}, "7"},
                                   {ZELSerialType{-1}, "-1"}}) {
    ExpectReadFailure(record, type, "01 02", ZELErrorCodes::Err_Ser_SerTypeNotSprt, "BinaryDataSet",
                      setHeader + NotSupported(text));
  }
  EXPECT_EQ(log.Count(), 6U);
  EXPECT_EQ(record.DataToSign(), "");
}

// The bytes to read

TEST(DataRecordBinaryDataSet, StartOutsideTheArray) {
  test::TestLog log;
  clsZelTransActData record;
  record.LogHandler(log.Handler());
  const std::string text = setHeader + "Der Startindex ist außerhalb des gültigen Bereiches.\r\n";
  for (const ZELSerialType type :
       {ZELSerialType::BinaryData, ZELSerialType::Request, ZELSerialType::Response}) {
    EXPECT_FALSE(record.BinaryDataSet(type, FromHex("01 02 03"), -1));
    test::ExpectError(record.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                      text + "    Start ...........: -1\r\n    Min. Startpos. ..: 0");
    EXPECT_FALSE(record.BinaryDataSet(type, FromHex("01 02 03"), 3));
    test::ExpectError(record.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                      text + "    Start ...........: 3\r\n    Max. Startpos. ..: 2");
    EXPECT_FALSE(record.BinaryDataSet(type, FromHexAt(10, "01 02 03"), 9));
    test::ExpectError(record.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                      text + "    Start ...........: 9\r\n    Min. Startpos. ..: 10");
    EXPECT_FALSE(record.BinaryDataSet(type, ByteArray{}, 0));
    test::ExpectError(record.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvRange, true, "BinaryDataSet",
                      text + "    Start ...........: 0\r\n    Max. Startpos. ..: -1");
  }
  EXPECT_EQ(record.DataToSign(), "");
  EXPECT_EQ(log.Count(), 12U);
}

TEST(DataRecordBinaryDataSet, LengthBeyondTheArray) {
  clsZelTransActData record;
  const ByteArray data = FromHex("61 62 63");
  EXPECT_FALSE(record.BinaryDataSet(ZELSerialType::BinaryData, data, 1, 3));
  test::ExpectError(record.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataSet",
                    setHeader +
                        "Der Datenpuffer ist zu klein.\r\n"
                        "    Start ..........: 1\r\n"
                        "    Länge ..........: 3\r\n"
                        "    Leseende .......: 3\r\n"
                        "    Obergrenze .....: 2");
  EXPECT_FALSE(
      record.BinaryDataSet(ZELSerialType::BinaryData, data, 2, std::numeric_limits<std::int32_t>::max()));
  test::ExpectError(record.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataSet",
                    setHeader +
                        "Der Datenpuffer ist zu klein.\r\n"
                        "    Start ..........: 2\r\n"
                        "    Länge ..........: 2147483647\r\n"
                        "    Leseende .......: 2147483648\r\n"
                        "    Obergrenze .....: 2");
  EXPECT_EQ(record.DataToSign(), "");
  EXPECT_TRUE(record.BinaryDataSet(ZELSerialType::BinaryData, data, 1, 2));
  EXPECT_EQ(record.DataToSign(), "YmM=");
}

TEST(DataRecordBinaryDataSet, TakesTheBytesFromStartOn) {
  clsZelTransActData record;
  const ByteArray data = FromHexAt(3, "00 61 62 63 00");
  EXPECT_TRUE(record.BinaryDataSet(ZELSerialType::BinaryData, data, 4, 3));
  EXPECT_EQ(record.DataToSign(), "YWJj");
  EXPECT_EQ(record.DataHash(), test::kAbcSha256Base64);
  EXPECT_TRUE(record.BinaryDataSet(ZELSerialType::BinaryData, data, 4));
  EXPECT_EQ(record.DataToSign(), "YWJjAA==");
  EXPECT_TRUE(record.BinaryDataSet(ZELSerialType::BinaryData, data, 7, -1));
  EXPECT_EQ(record.DataToSign(), "AA==");
}

// The bytes to write

TEST(DataRecordBinaryDataGet, CopiesToStart) {
  clsZelTransActData record;
  FillAbc(record);
  ASSERT_TRUE(HandIn(record, ZELSerialType::Response, test::kSequence));
  for (const auto& [type, bytes] : {std::pair{ZELSerialType::BinaryData, std::string(test::kAbc)},
                                    {ZELSerialType::Request, HashRecord()},
                                    {ZELSerialType::ItemHash2, HashRecord()},
                                    {ZELSerialType::Response, std::string(test::kSequence)}}) {
    const auto size = static_cast<std::int32_t>((bytes.size() + 1) / 3);
    ByteArray data = ByteArray::WithBounds(5, 5 + size + 2);
    std::int32_t length = -1;
    EXPECT_TRUE(record.BinaryDataGet(type, data, 7, &length));
    test::ExpectNoError(record);
    EXPECT_EQ(length, size);
    EXPECT_EQ(data.LBound(), 5);
    EXPECT_EQ(ToHex(data), "00 00 " + bytes + " 00");
    data = ByteArray::WithBounds(0, size - 1);
    EXPECT_TRUE(record.BinaryDataGet(type, data, 0));
    EXPECT_EQ(ToHex(data), bytes);
  }
}

TEST(DataRecordBinaryDataGet, ThatDoesNotFit) {
  test::TestLog log;
  clsZelTransActData record;
  FillAbc(record);
  ASSERT_TRUE(HandIn(record, ZELSerialType::Response, test::kSequence));
  record.LogHandler(log.Handler());
  const auto expectFailure = [&record](ZELSerialType type, ByteArray data, std::int32_t start,
                                       std::string_view length, std::string_view end,
                                       std::string_view upper) {
    const ByteArray before = data;
    EXPECT_FALSE(record.BinaryDataGet(type, data, start));
    test::ExpectError(record.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataGet",
                      getHeader + "Der Datenpuffer ist zu klein.\r\n    Start ..........: " +
                          std::to_string(start) + "\r\n    Länge ..........: " + std::string(length) +
                          "\r\n    Leseende .......: " + std::string(end) +
                          "\r\n    Obergrenze .....: " + std::string(upper));
    EXPECT_EQ(data, before);
  };
  expectFailure(ZELSerialType::BinaryData, ByteArray::WithBounds(0, 1), 0, "3", "2", "1");
  expectFailure(ZELSerialType::BinaryData, ByteArray::WithBounds(0, 3), 2, "3", "4", "3");
  expectFailure(ZELSerialType::BinaryData, ByteArray{}, 0, "3", "2", "-1");
  expectFailure(ZELSerialType::BinaryData, ByteArray{}, std::numeric_limits<std::int32_t>::max(), "3",
                "2147483649", "-1");
  expectFailure(ZELSerialType::Request, ByteArray::WithBounds(0, 32), 0, "34", "33", "32");
  expectFailure(ZELSerialType::Response, ByteArray::WithBounds(0, 2), 0, "4", "3", "2");
  EXPECT_EQ(log.Numbers(), std::vector<std::string>(6, "9204"));
  // The request is built all the same.
  EXPECT_EQ(record.ZelRqstData(), "xyC6eBa/jwHP6kFBQN5driIjsANho5YXepy0EP9h8gAVrQ==");
}

TEST(DataRecordBinaryDataGet, StartBelowTheArray) {
  clsZelTransActData record;
  FillAbc(record);
  ByteArray data = ByteArray::WithBounds(2, 99);
  const ByteArray before = data;
  for (const std::int32_t start : {1, -1, -3, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_FALSE(record.BinaryDataGet(ZELSerialType::BinaryData, data, start)) << start;
    EXPECT_TRUE(record.HasError());
    EXPECT_EQ(data, before);
  }
}

// The request

TEST(DataRecordRequest, OfDataOnlyIsTheHashAlone) {
  clsZelTransActData record;
  FillAbc(record);
  EXPECT_EQ(BytesOf(record, ZELSerialType::Request), HashRecord());
  EXPECT_EQ(record.ZelRqstData(), "xyC6eBa/jwHP6kFBQN5driIjsANho5YXepy0EP9h8gAVrQ==");
  EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataOnly);
}

TEST(DataRecordRequest, Sha1) {
  clsZelTransActData record;
  record.UseSHA256(false);
  FillAbc(record);
  EXPECT_EQ(BytesOf(record, ZELSerialType::Request), "C7 14 " + std::string(test::kAbcSha1));
}

TEST(DataRecordRequest, OfDataAndTpIdIsTheSame) {
  clsZelTransActData record;
  FillAbc(record);
  record.DataSignType(ZELDataSignTypes::DataAndTpID);
  EXPECT_EQ(BytesOf(record, ZELSerialType::Request), HashRecord());
  EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataAndTpID);
}

TEST(DataRecordRequest, OfDataAndTimeBeginsWithDateAndTime) {
  clsZelTransActData record;
  FillAbc(record);
  record.DataSignType(ZELDataSignTypes::DataAndTime);
  EXPECT_EQ(BytesOf(record, ZELSerialType::Request), "CD 04 20 24 03 15 CE 02 14 37 " + HashRecord());
  EXPECT_EQ(record.ZelRqstData(), "zQQgJAMVzgIUN8cgungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
  EXPECT_EQ(record.TransactionDate(), Date::FromCivil(2024, 3, 15, 14, 37, 25));
}

TEST(DataRecordRequest, TimeAtMidnight) {
  clsZelTransActData record;
  FillAbc(record);
  record.DataSignType(ZELDataSignTypes::DataAndTime);
  record.TransactionDate(Date::FromCivil(2024, 3, 15));
  EXPECT_EQ(BytesOf(record, ZELSerialType::Request), "CD 04 20 24 03 15 CE 02 00 00 " + HashRecord());
}

TEST(DataRecordRequest, DatesAtTheBoundsTakeThePresentTime) {
  for (const Date bound : {Date::FromCivil(2000, 1, 1), Date::FromCivil(1980, 1, 1),
                           Date::FromCivil(2099, 12, 31, 23, 59, 59), Date::FromCivil(2150, 1, 1)}) {
    clsZelTransActData record;
    FillAbc(record);
    record.DataSignType(ZELDataSignTypes::DataAndTime);
    record.TransactionDate(bound);
    const test::Moment moment;
    ByteArray request = ByteArray::WithBounds(0, 43);
    EXPECT_TRUE(record.BinaryDataGet(ZELSerialType::Request, request, 0));
    EXPECT_TRUE(moment.Matches(record.TransactionDate()));
    const std::string digits = test::Digits(request);
    EXPECT_TRUE(moment.Matches(digits.substr(4, 8) + digits.substr(16, 4), "%Y%m%d%H%M")) << digits;
  }
}

TEST(DataRecordRequest, DatesJustInsideTheBoundsStay) {
  clsZelTransActData record;
  FillAbc(record);
  record.DataSignType(ZELDataSignTypes::DataAndTime);
  record.TransactionDate(Date::FromCivil(2000, 1, 1, 0, 0, 1));
  EXPECT_EQ(BytesOf(record, ZELSerialType::Request), "CD 04 20 00 01 01 CE 02 00 00 " + HashRecord());
  record.TransactionDate(Date::FromCivil(2099, 12, 31, 23, 59, 58));
  EXPECT_EQ(BytesOf(record, ZELSerialType::Request), "CD 04 20 99 12 31 CE 02 23 59 " + HashRecord());
}

TEST(DataRecordRequest, WithoutTimeLeavesTheDateAlone) {
  clsZelTransActData record;
  FillAbc(record);
  record.TransactionDate(Date::FromCivil(2000, 1, 1));
  EXPECT_EQ(BytesOf(record, ZELSerialType::Request), HashRecord());
  EXPECT_EQ(record.TransactionDate(), Date::FromCivil(2000, 1, 1));
}

TEST(DataRecordRequest, IsBuiltAnewEachTime) {
  clsZelTransActData record;
  FillAbc(record);
  EXPECT_EQ(BytesOf(record, ZELSerialType::Request), HashRecord());
  record.UseSHA256(false);
  ASSERT_TRUE(HandIn(record, ZELSerialType::BinaryData, test::kAbc));
  EXPECT_EQ(BytesOf(record, ZELSerialType::Request), "C7 14 " + std::string(test::kAbcSha1));
}

TEST(DataRecordRequestFailure, NoData) {
  test::TestLog log;
  clsZelTransActData record;
  record.LogHandler(log.Handler());
  for (const ZELDataSignTypes type :
       {ZELDataSignTypes::DataOnly, ZELDataSignTypes::DataAndTpID, ZELDataSignTypes::DataAndTime}) {
    record.DataSignType(type);
    ExpectWriteFailure(record, ZELSerialType::Request, ZELErrorCodes::Err_Ser_Failed,
                       "EncodeRqst.[GetZelOperator]",
                       rqstHeader +
                           "Der Hashkode über die Buchungspositionen konnte nicht\r\n"
                           "aus dem Base64- in das Binärformat überführt werden!\r\n"
                           "    Hash-Typ ........: SHA256");
  }
  record.UseSHA256(false);
  ExpectWriteFailure(record, ZELSerialType::Request, ZELErrorCodes::Err_Ser_Failed,
                     "EncodeRqst.[GetZelOperator]",
                     rqstHeader +
                         "Der Hashkode über die Buchungspositionen konnte nicht\r\n"
                         "aus dem Base64- in das Binärformat überführt werden!\r\n"
                         "    Hash-Typ ........: SHA1");
  EXPECT_EQ(record.ZelRqstData(), "");
  const std::vector<std::string> sources = test::LogSources(log);
  EXPECT_EQ(std::count(sources.begin(), sources.end(), "clsZelTransActData"), 4);
  EXPECT_EQ(sources.back(), "clsZelTransActData");
  EXPECT_EQ(log.Functions().back(), "EncodeRqst.[GetZelOperator]");
}

TEST(DataRecordRequestFailure, DateThatIsNone) {
  clsZelTransActData record;
  FillAbc(record);
  record.TransactionDate(Date(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(BytesOf(record, ZELSerialType::Request), HashRecord());
  record.DataSignType(ZELDataSignTypes::DataAndTime);
  ExpectWriteFailure(
      record, ZELSerialType::Request, ZELErrorCodes::Err_Ser_Failed, "EncodeRqst.[SetZelDates]",
      rqstHeader + "Das Buchungsdatum konnte nicht geschrieben werden!\r\n    Position ........: 0");
}

// Requests that are read

TEST(DataRecordReadRequest, HashAlone) {
  clsZelTransActData record;
  const Date before = record.TransactionDate();
  EXPECT_TRUE(HandIn(record, ZELSerialType::Request, HashRecord())) << record.ErrorObject().ErrorMsg();
  test::ExpectNoError(record);
  EXPECT_EQ(record.DataHash(), test::kAbcSha256Base64);
  EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataOnly);
  EXPECT_EQ(record.TransactionDate(), before);
  EXPECT_EQ(record.DataToSign(), "");
}

TEST(DataRecordReadRequest, ATimeMakesItOneWithTimeStamp) {
  const std::string hash = HashRecord();
  for (const std::string& request :
       {Join(kDay, kMinute, hash), Join(kDay, hash, kMinute), Join(kMinute, kDay, hash),
        Join(kMinute, hash, kDay), Join(hash, kDay, kMinute), Join(hash, kMinute, kDay)}) {
    clsZelTransActData record;
    EXPECT_TRUE(HandIn(record, ZELSerialType::Request, request)) << record.ErrorObject().ErrorMsg();
    EXPECT_EQ(record.DataHash(), test::kAbcSha256Base64) << request;
    EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataAndTime) << request;
    EXPECT_EQ(record.TransactionDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 0).Value()) << request;
  }
}

TEST(DataRecordReadRequest, IsTheOneThatIsExported) {
  clsZelTransActData record;
  EXPECT_TRUE(HandIn(record, ZELSerialType::ItemHash2, HashRecord()));
  EXPECT_EQ(record.ZelRqstData(), "xyC6eBa/jwHP6kFBQN5driIjsANho5YXepy0EP9h8gAVrQ==");
}

std::string Position(std::string_view text, std::string_view position) {
  return std::string(text) + "\r\n    Position ........: " + std::string(position);
}

TEST(DataRecordReadRequestFailure, Hash) {
  for (const std::string_view hex :
       {"C7 02 01 02", "C7 14 00", "C7 00",
        "C7 15 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"}) {
    clsZelTransActData record;
    ExpectReadFailure(record, ZELSerialType::Request, hex, ZELErrorCodes::Err_Ser_Failed,
                      "DecodeRqst.[GetZelDates]",
                      Position("Der Hashwert der Daten konnte nicht gelesen werden!", "0"));
    EXPECT_EQ(record.DataHash(), "");
    EXPECT_EQ(record.ZelRqstData(), "");
  }
}

TEST(DataRecordReadRequestFailure, DateAndTime) {
  test::TestLog log;
  clsZelTransActData record;
  record.LogHandler(log.Handler());
  for (const std::string_view hex : {"CD 04 20 24 13 15", "CD 04 20", "CD 00"}) {
    ExpectReadFailure(record, ZELSerialType::Request, hex, ZELErrorCodes::Err_Ser_Failed,
                      "DecodeRqst.[GetZelDates]",
                      Position("Die Buchungszeit konnte nicht gelesen werden!", "0"));
  }
  for (const std::string_view hex : {"CE 02 24 00", "CE 03 14 37 00", "CE 02 14", "CE 00"}) {
    ExpectReadFailure(record, ZELSerialType::Request, Join(kDay, hex), ZELErrorCodes::Err_Ser_Failed,
                      "DecodeRqst.[GetZelTimes]",
                      Position("Die Buchungszeit konnte nicht gelesen werden!", "6"));
  }
  EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataOnly);
  EXPECT_EQ(log.Functions().back(), "DecodeRqst.[GetZelTimes]");
}

TEST(DataRecordReadRequestFailure, WhatStoodBeforeIsRead) {
  clsZelTransActData record;
  EXPECT_FALSE(HandIn(record, ZELSerialType::Request, Join(HashRecord(), kDay, kMinute, "C6 01 41")));
  EXPECT_EQ(record.DataHash(), test::kAbcSha256Base64);
  EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataAndTime);
  EXPECT_EQ(record.TransactionDate().Value(), Date::FromCivil(2024, 3, 15, 14, 37, 0).Value());
}

TEST(DataRecordReadRequestFailure, OtherRecords) {
  clsZelTransActData record;
  for (int tag = 0; tag < 256; ++tag) {
    if (tag == 199 || tag == 205 || tag == 206) {
      continue;
    }
    ByteArray request = FromHex(HashRecord() + " 00 00");
    request[34] = static_cast<std::uint8_t>(tag);
    EXPECT_FALSE(record.BinaryDataSet(ZELSerialType::Request, request, 0)) << tag;
    test::ExpectError(record.ErrorObject(), ZELErrorCodes::Err_Ser_TagUnexpected, true, "DecodeRqst",
                      "Unerwartetes TAG\r\n"
                      "Das gefundenen TAG (s.u.) darf in\r\n"
                      "ZEL-Umsatz-Containern nicht vorkommen!\r\n"
                      "    Tag gefunden ....: " +
                          ToHex(request).substr(102, 2));
    // What stands before is read, but the request as a whole is not kept.
    EXPECT_EQ(record.DataHash(), test::kAbcSha256Base64);
    EXPECT_EQ(record.ZelRqstData(), "");
  }
}

// Responses

void ExpectAnswer(const clsZelTransActData& record) {
  EXPECT_EQ(record.ZelRespSeqNr(), Currency(300));
  EXPECT_EQ(record.ZelRespTpID(), "DE1");
  EXPECT_EQ(record.ZelRespTpIDNr(), Currency(2));
  EXPECT_EQ(record.ZelRespSignature(), test::kSaleSignature);
}

TEST(DataRecordResponse, RecordsComeInAnyOrder) {
  std::vector<std::string_view> records{test::kSigned, test::kTaxpayer, test::kDevice, test::kSequence};
  std::sort(records.begin(), records.end());
  int orders = 0;
  do {
    clsZelTransActData record;
    const std::string response = Join(records[0], records[1], records[2], records[3]);
    EXPECT_TRUE(HandIn(record, ZELSerialType::Response, response)) << record.ErrorObject().ErrorMsg();
    test::ExpectNoError(record);
    ExpectAnswer(record);
    EXPECT_EQ(record.ZelRespData(), test::Base64(response));
    EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataAndTpID);
    ++orders;
  } while (std::next_permutation(records.begin(), records.end()));
  EXPECT_EQ(orders, 24);
}

TEST(DataRecordResponse, EachRecordAlone) {
  clsZelTransActData record;
  EXPECT_TRUE(HandIn(record, ZELSerialType::Response, test::kSequence));
  EXPECT_EQ(record.ZelRespSeqNr(), Currency(300));
  EXPECT_EQ(record.ZelRespTpID(), "");
  EXPECT_EQ(record.ZelRespData(), "ywIBLA==");
  EXPECT_TRUE(HandIn(record, ZELSerialType::Response, test::kSigned));
  EXPECT_EQ(record.ZelRespSignature(), test::kSaleSignature);
  EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataOnly);
  EXPECT_TRUE(HandIn(record, ZELSerialType::Response, test::kDevice));
  EXPECT_EQ(record.ZelRespTpIDNr(), Currency(2));
  EXPECT_TRUE(HandIn(record, ZELSerialType::Response, test::kTaxpayer));
  EXPECT_EQ(record.ZelRespTpID(), "DE1");
  EXPECT_EQ(record.ZelRespSeqNr(), Currency(300));
}

TEST(DataRecordResponse, ATaxpayerPromotesDataOnly) {
  for (const std::string_view response : {test::kTaxpayer, test::kDevice}) {
    clsZelTransActData record;
    EXPECT_TRUE(HandIn(record, ZELSerialType::Response, response));
    EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataAndTpID);
    record.DataSignType(ZELDataSignTypes::DataAndTime);
    EXPECT_TRUE(HandIn(record, ZELSerialType::Response, response));
    EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataAndTime);
    record.DataSignType(ZELDataSignTypes::DataAndTpID);
    EXPECT_TRUE(HandIn(record, ZELSerialType::Response, response));
    EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataAndTpID);
  }
  for (const std::string_view response : {test::kSequence, test::kSigned}) {
    clsZelTransActData record;
    EXPECT_TRUE(HandIn(record, ZELSerialType::Response, response));
    EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataOnly);
  }
}

TEST(DataRecordResponse, IsHandedOut) {
  clsZelTransActData record;
  ASSERT_TRUE(HandIn(record, ZELSerialType::Response, Join(test::kSequence, test::kDevice)));
  EXPECT_EQ(BytesOf(record, ZELSerialType::Response), "CB 02 01 2C C5 01 02");
}

TEST(DataRecordResponse, ThatNeverCame) {
  test::TestLog log;
  clsZelTransActData record;
  FillAbc(record);
  record.LogHandler(log.Handler());
  ExpectWriteFailure(record, ZELSerialType::Response, ZELErrorCodes::Err_Ser_Failed, "EncodeResp",
                     "Buchung (Daten): Kodieren der ZEL-Antwort nicht möglich!\r\n"
                     "Es sind keine Daten einer ZEL-Antwort vorhanden.!");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"EncodeResp"});
}

TEST(DataRecordResponse, SignatureOf48To64Bytes) {
  const auto response = [](std::size_t length) {
    ByteArray bytes = ByteArray::WithBounds(0, static_cast<std::int32_t>(length) + 1);
    bytes[0] = 0x9E;
    bytes[1] = static_cast<std::uint8_t>(length);
    return bytes;
  };
  clsZelTransActData record;
  EXPECT_FALSE(record.BinaryDataSet(ZELSerialType::Response, response(47), 0));
  EXPECT_EQ(record.ErrorObject().ErrorFunction(), "DecodeResp.[GetZelSignature2]");
  EXPECT_FALSE(record.BinaryDataSet(ZELSerialType::Response, response(65), 0));
  EXPECT_EQ(record.ErrorObject().ErrorFunction(), "DecodeResp.[GetZelSignature2]");
  EXPECT_TRUE(record.BinaryDataSet(ZELSerialType::Response, response(48), 0));
  EXPECT_EQ(record.ZelRespSignature(), std::string(64, 'A'));
  EXPECT_TRUE(record.BinaryDataSet(ZELSerialType::Response, response(64), 0));
  EXPECT_EQ(record.ZelRespSignature(), std::string(86, 'A') + "==");
}

TEST(DataRecordResponseFailure, EachRecord) {
  struct Case {
    std::string_view hex, text, accessor;
  };
  for (const Case& damage : std::vector<Case>{
           {"CB 02 01", "Die Sequenznummer konnte nicht gelesen werden!", "GetZelCounter"},
           {"CB 00", "Die Sequenznummer konnte nicht gelesen werden!", "GetZelCounter"},
           {"C4 00", "Die Steuerpfl.-ID konnte nicht gelesen werden!", "GetZelTpID"},
           {"C4 01 1F", "Die Steuerpfl.-ID konnte nicht gelesen werden!", "GetZelTpID"},
           {"C5 00", "Die laufende ZEL-Nr konnte nicht gelesen werden!", "GetZelTpIDNr"},
           {"C5 05 00 00 00 00 01", "Die laufende ZEL-Nr konnte nicht gelesen werden!", "GetZelTpIDNr"},
           {"9E 02 01 02", "Die Signatur der Buchung konnte nicht gelesen werden!", "GetZelSignature2"}}) {
    for (const auto& [before, position] : {std::pair{std::string(), "0"},
                                           {Join(test::kSequence), "4"},
                                           {Join(test::kSequence, test::kDevice), "7"}}) {
      test::TestLog log;
      clsZelTransActData record;
      record.LogHandler(log.Handler());
      ExpectReadFailure(record, ZELSerialType::Response, before + std::string(damage.hex),
                        ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[" + std::string(damage.accessor) + "]",
                        Position(damage.text, position));
      // What stands before the damage is read.
      EXPECT_EQ(record.ZelRespSeqNr(), Currency(before.empty() ? 0 : 300));
      EXPECT_EQ(record.ZelRespData(), "");
      EXPECT_EQ(test::LogSources(log).back(), "clsZelTransActData");
    }
  }
}

TEST(DataRecordResponseFailure, RecordsThatHaveNoPlaceInAResponse) {
  clsZelTransActData record;
  for (const auto& [hex, decimal] : {std::pair{"C6", "198"},
                                     {"00", "0"},
                                     {"C7", "199"},
                                     {"CC", "204"},
                                     {"E1", "225"},
                                     {"0A", "10"},
                                     {"FF", "255"}}) {
    ExpectReadFailure(
        record, ZELSerialType::Response, "CB 01 07 " + std::string(hex) + " 00",
        ZELErrorCodes::Err_Ser_Failed, "DecodeResp.[GetZelSignature2]",
        Position("Unerwartetes ZEL-Tag!\r\n    Tag .............: 0x" + std::string(hex) + " // " + decimal,
                 "3"));
    EXPECT_EQ(record.ZelRespSeqNr(), Currency(7));
    EXPECT_EQ(record.ZelRespData(), "");
  }
}

TEST(DataRecordResponseFailure, AllForeignTagsEndTheReading) {
  clsZelTransActData record;
  for (int tag = 0; tag < 256; ++tag) {
    if (tag == 158 || tag == 196 || tag == 197 || tag == 203) {
      continue;
    }
    ByteArray response = FromHex("CB 01 07 00 00");
    response[3] = static_cast<std::uint8_t>(tag);
    EXPECT_FALSE(record.BinaryDataSet(ZELSerialType::Response, response, 0)) << tag;
    EXPECT_EQ(record.ErrorObject().ErrorFunction(), "DecodeResp.[GetZelSignature2]") << tag;
  }
}

TEST(DataRecordResponseFailure, KeepsTheLastResponsesData) {
  clsZelTransActData record;
  ASSERT_TRUE(HandIn(record, ZELSerialType::Response, test::kSequence));
  EXPECT_FALSE(HandIn(record, ZELSerialType::Response, "CB 01 08 C6 01 41"));
  EXPECT_EQ(record.ZelRespSeqNr(), Currency(8));
  EXPECT_EQ(record.ZelRespData(), "ywIBLA==");
}

}  // namespace
}  // namespace VnZEL10cmn
