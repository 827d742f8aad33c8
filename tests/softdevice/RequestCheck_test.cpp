// What the device accepts and refuses, and in which words.

#include <ostream>
#include <random>

#include "Support.h"

namespace softdevice::test {
namespace {

struct Case {
  const char* name;
  std::string request;
  RefusalCode code;
  std::string reason;
};

void PrintTo(const Case& value, std::ostream* out) { *out << value.request; }

std::string NameOf(const testing::TestParamInfo<Case>& info) { return info.param.name; }

class RefusedRequest : public DeviceTest, public testing::WithParamInterface<Case> {};

TEST_P(RefusedRequest, SaysWhy) {
  Device device = Open();
  ExpectRefused(device.Execute(Command::SignBooking, Hex(GetParam().request)), GetParam().code,
                GetParam().reason);
  EXPECT_EQ(device.LastSequenceNumber(), 0U);
  EXPECT_TRUE(device.Totals().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Framing, RefusedRequest,
    testing::Values(
        Case{"TagAlone", kDate + "CE", RefusalCode::Framing,
             "position 6, tag 0xCE (time): the request ends here, a length byte must follow"},
        Case{"ValueCutOff", kDate + kTime + "C6 07 4B 61 73", RefusalCode::Framing,
             "position 10, tag 0xC6 (operator): length 7, but the request ends after 3 bytes of the value"},
        Case{"ValueMissing", "CD 04", RefusalCode::Framing,
             "position 0, tag 0xCD (date): length 4, but the request ends after 0 bytes of the value"},
        Case{"LengthOf128", "CD 80" + std::string(256, '0'), RefusalCode::Framing,
             "position 0, tag 0xCD (date): length 128, expected 0 to 127"},
        Case{"LengthOf255CutOff", "CD FF", RefusalCode::Framing,
             "position 0, tag 0xCD (date): length 255, expected 0 to 127"},
        Case{"TagAloneInContainer", kHead + "E1 01 DB", RefusalCode::Framing,
             "position 59, tag 0xDB (VAT rate): tag 0xE1 (container 1) ends here, a length byte must follow"},
        Case{"ValueCutOffInContainer", kHead + "E1 03 DB 02 19 00", RefusalCode::Framing,
             "position 59, tag 0xDB (VAT rate): length 2, but tag 0xE1 (container 1) ends after 1 bytes of "
             "the "
             "value"}),
    NameOf);

const std::string kContainers =
    "tag 0xE1 (container 1), tag 0xE2 (container 2), tag 0xE3 (container 3), tag 0xE4 (container 4), "
    "tag 0xE5 (container 5), tag 0xE6 (container 6) or the end of the request";

INSTANTIATE_TEST_SUITE_P(
    OrderAndPresence, RefusedRequest,
    testing::Values(
        Case{"Empty", "", RefusalCode::MissingRecord,
             "position 0: the request ends here, expected tag 0xCD (date)"},
        Case{"NoTime", kDate, RefusalCode::MissingRecord,
             "position 6: the request ends here, expected tag 0xCE (time)"},
        Case{"NoOperator", kDate + kTime, RefusalCode::MissingRecord,
             "position 10: the request ends here, expected tag 0xC6 (operator)"},
        Case{"NoHash", kDate + kTime + kOperator, RefusalCode::MissingRecord,
             "position 19: the request ends here, expected tag 0xC7 (item hash)"},
        Case{"NoCurrency", kDate + kTime + kOperator + kHash, RefusalCode::MissingRecord,
             "position 53: the request ends here, expected tag 0xC8 (currency)"},
        Case{"TimeBeforeDate", kTime + kDate, RefusalCode::UnexpectedRecord,
             "position 0, tag 0xCE (time): not expected here, expected tag 0xCD (date)"},
        Case{"OperatorLeftOut", kDate + kTime + kHash + kCurrency, RefusalCode::UnexpectedRecord,
             "position 10, tag 0xC7 (item hash): not expected here, expected tag 0xC6 (operator)"},
        Case{"DateTwice", kDate + kDate, RefusalCode::UnexpectedRecord,
             "position 6, tag 0xCD (date): not expected here, expected tag 0xCE (time)"},
        Case{"TrainingTwice", kHead + "CA 00 CA 00", RefusalCode::UnexpectedRecord,
             "position 59, tag 0xCA (training): not expected here, expected tag 0xD7 (delivery note), " +
                 kContainers},
        Case{"TaxExclusiveAfterDeliveryNote", kHead + "D7 00 C9 00", RefusalCode::UnexpectedRecord,
             "position 59, tag 0xC9 (tax-exclusive): not expected here, expected " + kContainers},
        Case{"TrainingAfterContainer", kHead + "E5 04 DB 02 19 00 CA 00", RefusalCode::UnexpectedRecord,
             "position 63, tag 0xCA (training): not expected here, expected tag 0xE6 (container 6) or the "
             "end of "
             "the request"},
        Case{"ContainerTwice", kHead + "E6 04 DB 02 19 00 E6 04 DB 02 19 00", RefusalCode::UnexpectedRecord,
             "position 63, tag 0xE6 (container 6): not expected here, expected the end of the request"},
        Case{"ContainersDescending", kHead + "E6 04 DB 02 19 00 E5 04 DB 02 19 00",
             RefusalCode::UnexpectedRecord,
             "position 63, tag 0xE5 (container 5): not expected here, expected the end of the request"},
        Case{"ContainerOfReportsOnly", kHead + "E7 04 DB 02 19 00", RefusalCode::UnexpectedRecord,
             "position 57, tag 0xE7 (third-party container): not expected here, expected tag 0xC9 "
             "(tax-exclusive), "
             "tag 0xCA (training), tag 0xD7 (delivery note), " +
                 kContainers},
        Case{"RecordBehindTheLast", kHead + "E6 04 DB 02 19 00 00 00", RefusalCode::UnexpectedRecord,
             "position 63, tag 0x00 (unknown): not expected here, expected the end of the request"},
        Case{"EmptyContainer", kHead + "E1 00", RefusalCode::MissingRecord,
             "position 59: tag 0xE1 (container 1) ends here, expected tag 0xD8 (turnover), "
             "tag 0xD9 (negative turnover), tag 0xDA (VAT) or tag 0xDB (VAT rate)"},
        Case{"ContainerWithoutRate", kHead + "E1 05 D8 03 11 90 0C", RefusalCode::MissingRecord,
             "position 64: tag 0xE1 (container 1) ends here, expected tag 0xD9 (negative turnover), "
             "tag 0xDA (VAT) or tag 0xDB (VAT rate)"},
        Case{"RateBeforeTurnover", kHead + "E1 09 DB 02 19 00 D8 03 11 90 0C", RefusalCode::UnexpectedRecord,
             "position 63, tag 0xD8 (turnover): not expected here, expected tag 0xD6 (third-party turnover) "
             "or "
             "the end of tag 0xE1 (container 1)"},
        Case{"ThirdPartyBeforeRate", kHead + "E1 0B D6 02 00 1C DB 02 19 00", RefusalCode::Framing,
             "position 57, tag 0xE1 (container 1): length 11, but the request ends after 8 bytes of the "
             "value"},
        Case{"ThirdPartyInFront", kHead + "E1 08 D6 02 00 1C DB 02 19 00", RefusalCode::UnexpectedRecord,
             "position 59, tag 0xD6 (third-party turnover): not expected here, expected tag 0xD8 (turnover), "
             "tag 0xD9 (negative turnover), tag 0xDA (VAT) or tag 0xDB (VAT rate)"},
        Case{"DateInContainer", kHead + "E1 06 CD 04 20 26 12 31", RefusalCode::UnexpectedRecord,
             "position 59, tag 0xCD (date): not expected here, expected tag 0xD8 (turnover), "
             "tag 0xD9 (negative turnover), tag 0xDA (VAT) or tag 0xDB (VAT rate)"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Lengths, RefusedRequest,
    testing::Values(
        Case{"DateShort", "CD 03 20 26 12", RefusalCode::Length,
             "position 0, tag 0xCD (date): length 3, expected 4"},
        Case{"DateLong", "CD 05 00 20 26 12 31", RefusalCode::Length,
             "position 0, tag 0xCD (date): length 5, expected 4"},
        Case{"TimeShort", kDate + "CE 01 05", RefusalCode::Length,
             "position 6, tag 0xCE (time): length 1, expected 2"},
        Case{"OperatorEmpty", kDate + kTime + "C6 00", RefusalCode::Length,
             "position 10, tag 0xC6 (operator): length 0, expected 1 to 16"},
        Case{"OperatorLong", kDate + kTime + "C6 11 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41",
             RefusalCode::Length, "position 10, tag 0xC6 (operator): length 17, expected 1 to 16"},
        Case{"HashOf21", kDate + kTime + kOperator + "C7 15" + std::string(42, '0'), RefusalCode::Length,
             "position 19, tag 0xC7 (item hash): length 21, expected 20 or 32"},
        Case{"CurrencyEmpty", kDate + kTime + kOperator + kHash + "C8 00", RefusalCode::Length,
             "position 53, tag 0xC8 (currency): length 0, expected 1 to 4"},
        Case{"CurrencyLong", kDate + kTime + kOperator + kHash + "C8 05 00 00 00 03 D2", RefusalCode::Length,
             "position 53, tag 0xC8 (currency): length 5, expected 1 to 4"},
        Case{"TaxExclusiveWithValue", kHead + "C9 01 01", RefusalCode::Length,
             "position 57, tag 0xC9 (tax-exclusive): length 1, expected 0"},
        Case{"TrainingWithValue", kHead + "CA 01 01", RefusalCode::Length,
             "position 57, tag 0xCA (training): length 1, expected 0"},
        Case{"DeliveryNoteWithValue", kHead + "D7 02 00 00", RefusalCode::Length,
             "position 57, tag 0xD7 (delivery note): length 2, expected 0"},
        Case{"TurnoverEmpty", kHead + "E1 06 D8 00 DB 02 19 00", RefusalCode::Length,
             "position 59, tag 0xD8 (turnover): length 0, expected 1 to 6"},
        Case{"TurnoverOf7", kHead + "E1 0D D8 07 00 00 00 00 00 00 1C DB 02 19 00", RefusalCode::Length,
             "position 59, tag 0xD8 (turnover): length 7, expected 1 to 6"},
        Case{"RateEmpty", kHead + "E1 02 DB 00", RefusalCode::Length,
             "position 59, tag 0xDB (VAT rate): length 0, expected 1 to 6"},
        Case{"RateOf7", kHead + "E1 09 DB 07 00 00 00 00 00 19 00", RefusalCode::Length,
             "position 59, tag 0xDB (VAT rate): length 7, expected 1 to 6"}),
    NameOf);

Case NoDate(const char* name, const std::string& value) {
  return {name, "CD 04 " + value, RefusalCode::Value,
          "position 0, tag 0xCD (date): value " + value +
              " is no date, expected BCD of year (2 bytes), month and day"};
}

Case NoTimeOfDay(const char* name, const std::string& value) {
  return {
      name, kDate + "CE 02 " + value, RefusalCode::Value,
      "position 6, tag 0xCE (time): value " + value + " is no time of day, expected BCD from 00 00 to 23 59"};
}

INSTANTIATE_TEST_SUITE_P(
    Codings, RefusedRequest,
    testing::Values(
        NoDate("Month13", "20 26 13 01"), NoDate("Month0", "20 26 00 01"), NoDate("Day0", "20 26 12 00"),
        NoDate("June31", "20 26 06 31"), NoDate("February29", "20 26 02 29"),
        NoDate("February30", "20 24 02 30"), NoDate("February29Of1900", "19 00 02 29"),
        NoDate("Year0", "00 00 01 01"), NoDate("LetterInYear", "2A 26 12 31"),
        NoDate("LetterInCentury", "20 F6 12 31"), NoDate("LetterInMonth", "20 26 0A 31"),
        NoDate("LetterInDay", "20 26 12 A0"), NoTimeOfDay("Hour24", "24 00"),
        NoTimeOfDay("Minute60", "23 60"), NoTimeOfDay("LetterInHour", "0A 00"),
        NoTimeOfDay("LetterInMinute", "00 F0"),
        Case{"OperatorWithUmlaut", kDate + kTime + "C6 06 4D FC 6C 6C 65 72", RefusalCode::Value,
             "position 10, tag 0xC6 (operator): character 2 is 0xFC, expected 0x20 to 0x7F"},
        Case{"OperatorWithControl", kDate + kTime + "C6 03 41 42 1F", RefusalCode::Value,
             "position 10, tag 0xC6 (operator): character 3 is 0x1F, expected 0x20 to 0x7F"},
        Case{"AmountWithLetter", kHead + "E1 09 D8 03 1A 90 0C DB 02 19 00", RefusalCode::Value,
             "position 59, tag 0xD8 (turnover): value 1A 90 0C is no signed BCD, byte 1A is no pair of "
             "digits"},
        Case{"AmountWithoutSign", kHead + "E1 09 D9 03 11 90 00 DB 02 19 00", RefusalCode::Value,
             "position 59, tag 0xD9 (negative turnover): value 11 90 00 is no signed BCD, last byte 00 is no "
             "digit with sign C or D"},
        Case{"AmountWithOtherSign", kHead + "E1 09 DA 03 11 90 0E DB 02 19 00", RefusalCode::Value,
             "position 59, tag 0xDA (VAT): value 11 90 0E is no signed BCD, last byte 0E is no digit with "
             "sign "
             "C or D"},
        Case{"AmountWithLetterBeforeSign", kHead + "E1 08 DB 02 19 00 D6 02 11 BC", RefusalCode::Value,
             "position 63, tag 0xD6 (third-party turnover): value 11 BC is no signed BCD, last byte BC is no "
             "digit with sign C or D"},
        Case{"NegativeZero", kHead + "E1 07 D8 01 0D DB 02 19 00", RefusalCode::Value,
             "position 59, tag 0xD8 (turnover): value 0D is zero with a negative sign"},
        Case{"RateWithLetter", kHead + "E1 04 DB 02 19 0C", RefusalCode::Value,
             "position 59, tag 0xDB (VAT rate): value 19 0C is no BCD, byte 0C is no pair of digits"},
        Case{"RateOf100Percent", kHead + "E1 05 DB 03 01 00 00", RefusalCode::Value,
             "position 59, tag 0xDB (VAT rate): value 01 00 00 is above 99.99 %"}),
    NameOf);

struct GoodCase {
  const char* name;
  std::string request;
};

void PrintTo(const GoodCase& value, std::ostream* out) { *out << value.request; }

class AcceptedRequest : public DeviceTest, public testing::WithParamInterface<GoodCase> {};

TEST_P(AcceptedRequest, GetsItsNumber) {
  Device device = Open();
  const Answer answer = device.Execute(Command::SignBooking, Hex(GetParam().request));
  EXPECT_TRUE(answer.accepted) << answer.reason;
  EXPECT_EQ(answer.reason, "");
  EXPECT_EQ(answer.sequenceNumber, 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Requests, AcceptedRequest,
    testing::Values(
        GoodCase{"OneContainer", kBooking}, GoodCase{"NoContainer", kHead},
        GoodCase{"AllFlagsAndContainers",
                 kHead + "C9 00 CA 00 D7 00 " + kContainer1 +
                     "E2 09 D8 03 10 70 0C DB 02 07 00 E3 07 D8 01 1C DB 02 00 00 E4 06 D8 01 1C DB 01 00 "
                     "E5 07 D8 01 1C DB 02 10 00 E6 07 D8 01 1C DB 02 05 50"},
        GoodCase{
            "AllInnerRecords",
            kHead + "E1 1A D8 06 99 99 99 99 99 9C D9 02 00 5C DA 02 00 1D DB 02 99 99 D6 04 00 12 34 5D"},
        GoodCase{"Sha1Hash", kDate + kTime + kOperator + "C7 14" + std::string(40, 'F') + kCurrency},
        GoodCase{"LeapDay", "CD 04 20 24 02 29 " + kTime + kOperator + kHash + kCurrency},
        GoodCase{"LeapDayOf2000", "CD 04 20 00 02 29 " + kTime + kOperator + kHash + kCurrency},
        GoodCase{"Midnight", kDate + "CE 02 00 00 " + kOperator + kHash + kCurrency},
        GoodCase{"LastMinute", kDate + "CE 02 23 59 " + kOperator + kHash + kCurrency},
        GoodCase{"OperatorOf16WithBounds",
                 kDate + kTime + "C6 10 20 7F 41 41 41 41 41 41 41 41 41 41 41 41 41 41" + kHash + kCurrency},
        GoodCase{"CurrencyOf4", kDate + kTime + kOperator + kHash + "C8 04 FF FF FF FF"}),
    [](const testing::TestParamInfo<GoodCase>& info) { return info.param.name; });

using RequestCheck = DeviceTest;

TEST_F(RequestCheck, RefusesUnknownCommands) {
  Device device = Open();
  ExpectRefused(device.Execute(Command{0}, Hex(kBooking)), RefusalCode::UnknownCommand,
                "command 0 is unknown, expected 1 to 9");
  ExpectRefused(device.Execute(Command{10}, Hex(kBooking)), RefusalCode::UnknownCommand,
                "command 10 is unknown, expected 1 to 9");
  ExpectRefused(device.Execute(Command{255}, Hex(kBooking)), RefusalCode::UnknownCommand,
                "command 255 is unknown, expected 1 to 9");
}

TEST_F(RequestCheck, RefusesEveryPrefixButTheOneBeforeTheContainer) {
  Device device = Open();
  const Bytes request = Hex(kBooking);
  ASSERT_EQ(request.size(), 73U);
  for (std::size_t length = 0; length < request.size(); ++length) {
    const Answer answer = device.Execute(Command::SignBooking, std::span(request).first(length));
    EXPECT_EQ(answer.accepted, length == 57) << "length " << length;
  }
  EXPECT_EQ(device.LastSequenceNumber(), 1U);
}

TEST_F(RequestCheck, EndsEveryDamagedRequestInAnAnswer) {
  Device device = Open();
  std::mt19937 random(20261231);
  std::uint32_t accepted = 0;
  const Bytes good = Hex(kHead + "C9 00 CA 00 D7 00 " + kContainer1 + "E6 08 DB 02 19 00 D6 02 00 5D");
  for (int round = 0; round < 4'000; ++round) {
    Bytes request = good;
    for (auto changes = random() % 4; changes > 0; --changes) {
      const std::size_t position = random() % request.size();
      switch (random() % 3) {
        case 0: request[position] = static_cast<std::uint8_t>(random()); break;
        case 1: request.erase(request.begin() + static_cast<std::ptrdiff_t>(position)); break;
        default: request.insert(request.begin() + static_cast<std::ptrdiff_t>(position), 0xE1);
      }
    }
    if (request == good) {
      continue;  // nothing damaged; it would only cost time
    }
    const Answer answer = device.Execute(Command::SignBooking, request);
    accepted += answer.accepted ? 1 : 0;
    ASSERT_EQ(answer.accepted, answer.code == RefusalCode::None);
    ASSERT_EQ(answer.accepted, answer.reason.empty());
    ASSERT_EQ(answer.accepted, !answer.response.empty());
    ASSERT_EQ(answer.reason.find('\n'), std::string::npos);
    ASSERT_EQ(answer.sequenceNumber, answer.accepted ? accepted : 0);
  }
  EXPECT_EQ(device.LastSequenceNumber(), accepted);
  EXPECT_GT(accepted, 0U);
}

TEST_F(RequestCheck, EndsRandomBytesInAnAnswer) {
  Device device = Open();
  std::mt19937 random(7);
  for (int round = 0; round < 20'000; ++round) {
    Bytes request(random() % 300);
    for (std::uint8_t& byte : request) {
      byte = static_cast<std::uint8_t>(random());
    }
    ASSERT_FALSE(device.Execute(Command::SignBooking, request).accepted);
  }
}

TEST_F(RequestCheck, NamesItsRefusalCodes) {
  EXPECT_STREQ(ToString(RefusalCode::None), "None");
  EXPECT_STREQ(ToString(RefusalCode::UnknownCommand), "UnknownCommand");
  EXPECT_STREQ(ToString(RefusalCode::Framing), "Framing");
  EXPECT_STREQ(ToString(RefusalCode::UnexpectedRecord), "UnexpectedRecord");
  EXPECT_STREQ(ToString(RefusalCode::MissingRecord), "MissingRecord");
  EXPECT_STREQ(ToString(RefusalCode::Length), "Length");
  EXPECT_STREQ(ToString(RefusalCode::Value), "Value");
  EXPECT_STREQ(ToString(RefusalCode::CounterExhausted), "CounterExhausted");
  EXPECT_STREQ(ToString(RefusalCode::Busy), "Busy");
  EXPECT_STREQ(ToString(RefusalCode::Storage), "Storage");
  EXPECT_STREQ(ToString(RefusalCode::Internal), "Internal");
  EXPECT_STREQ(ToString(RefusalCode::LifeCycle), "LifeCycle");
  EXPECT_STREQ(ToString(RefusalCode::WrongPin), "WrongPin");
  EXPECT_STREQ(ToString(RefusalCode::PinLocked), "PinLocked");
  EXPECT_STREQ(ToString(RefusalCode{99}), "unknown");
}

}  // namespace
}  // namespace softdevice::test
