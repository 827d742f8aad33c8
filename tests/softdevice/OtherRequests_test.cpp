// What is refused of requests for data and reports, and in which words.

#include <ostream>
#include <random>

#include "Support.h"

namespace softdevice::test {
namespace {

using enum RefusalCode;

const std::string kPlain = kDate + kTime;
const std::string kReportHash = "D4 14" + std::string(40, '0');

struct Case {
  const char* name;
  std::vector<Command> commands;
  std::string request;
  RefusalCode code;
  std::string reason;
};

void PrintTo(const Case& value, std::ostream* out) { *out << value.request; }

std::string NameOf(const testing::TestParamInfo<Case>& info) { return info.param.name; }

const std::vector<Command> kData = {Command::SignDataOnly, Command::SignDataAndTpId};
const std::vector<Command> kTimedData = {Command::SignDataAndTime};
const std::vector<Command> kSigned = {Command::ReportSigned};
const std::vector<Command> kBare = {Command::ReportUnsigned, Command::ReportDeactivate};
const std::vector<Command> kSpan = {Command::ReportSpan};
const std::vector<Command> kActivate = {Command::ReportActivate};
const std::vector<Command> kDated = {Command::SignDataAndTime, Command::ReportSigned,
                                     Command::ReportUnsigned,  Command::ReportSpan,
                                     Command::ReportActivate,  Command::ReportDeactivate};

class RefusedOther : public DeviceTest, public testing::WithParamInterface<Case> {};

TEST_P(RefusedOther, SaysWhy) {
  // The layout counts first, whatever the device is in.
  for (const bool activate : {false, true}) {
    std::filesystem::remove(File());
    OpenOptions options = kCreate;
    options.activate = activate;
    Device device = Device::Open(File(), options);
    const DeviceState before = device.State();
    for (const Command command : GetParam().commands) {
      ExpectRefused(device.Execute(command, Hex(GetParam().request)), GetParam().code, GetParam().reason);
    }
    EXPECT_EQ(device.State(), before);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Dates, RefusedOther,
    testing::Values(
        Case{"Nothing", kDated, "", MissingRecord,
             "position 0: the request ends here, expected tag 0xCD (date)"},
        Case{"NoTime", kDated, kDate, MissingRecord,
             "position 6: the request ends here, expected tag 0xCE (time)"},
        Case{"TimeFirst", kDated, kTime + kDate, UnexpectedRecord,
             "position 0, tag 0xCE (time): not expected here, expected tag 0xCD (date)"},
        Case{"TagAlone", kDated, kDate + "CE", Framing,
             "position 6, tag 0xCE (time): the request ends here, a length byte must follow"},
        Case{"LongForm", kDated, "CD 80", Framing,
             "position 0, tag 0xCD (date): length 128, expected 0 to 127"},
        Case{"CutOff", kDated, "CD 04 20 26", Framing,
             "position 0, tag 0xCD (date): length 4, but the request ends after 2 bytes of the value"},
        Case{"ShortDate", kDated, "CD 03 20 26 12", Length,
             "position 0, tag 0xCD (date): length 3, expected 4"},
        Case{"NoDate", kDated, "CD 04 20 26 11 31", Value,
             "position 0, tag 0xCD (date): value 20 26 11 31 is no date, expected BCD of year (2 bytes), "
             "month "
             "and day"},
        Case{"NoTimeOfDay", kDated, kDate + "CE 02 24 00", Value,
             "position 6, tag 0xCE (time): value 24 00 is no time of day, expected BCD from 00 00 to 23 59"},
        Case{"Booking", kTimedData, kBooking, UnexpectedRecord,
             "position 10, tag 0xC6 (operator): not expected here, expected tag 0xC7 (item hash)"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Data, RefusedOther,
    testing::Values(
        Case{"Nothing", kData, "", MissingRecord,
             "position 0: the request ends here, expected tag 0xC7 (item hash)"},
        Case{"DataWithTime", kData, kPlain + kHash, UnexpectedRecord,
             "position 0, tag 0xCD (date): not expected here, expected tag 0xC7 (item hash)"},
        Case{"TwoHashes", kData, kHash + kHash, UnexpectedRecord,
             "position 34, tag 0xC7 (item hash): not expected here, expected the end of the request"},
        Case{"Hash31", kData, "C7 1F" + std::string(62, '0'), Length,
             "position 0, tag 0xC7 (item hash): length 31, expected 20 or 32"},
        Case{"ReportHash", kData, kReportHash, UnexpectedRecord,
             "position 0, tag 0xD4 (report item hash): not expected here, expected tag 0xC7 (item hash)"},
        Case{"HashCutOff", kData, "C7 20 00", Framing,
             "position 0, tag 0xC7 (item hash): length 32, but the request ends after 1 bytes of the value"},
        Case{"NoHash", kTimedData, kPlain, MissingRecord,
             "position 10: the request ends here, expected tag 0xC7 (item hash)"},
        Case{"OnlyHash", kTimedData, kHash, UnexpectedRecord,
             "position 0, tag 0xC7 (item hash): not expected here, expected tag 0xCD (date)"},
        Case{"HashTwice", kTimedData, kPlain + kHash + kHash, UnexpectedRecord,
             "position 44, tag 0xC7 (item hash): not expected here, expected the end of the request"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Reports, RefusedOther,
    testing::Values(
        Case{"ItemHash", kSigned, kPlain + kHash, UnexpectedRecord,
             "position 10, tag 0xC7 (item hash): not expected here, expected tag 0xD4 (report item hash) or "
             "the "
             "end of the request"},
        Case{"Hash21", kSigned, kPlain + "D4 15" + std::string(42, '0'), Length,
             "position 10, tag 0xD4 (report item hash): length 21, expected 20 or 32"},
        Case{"HashTwice", kSigned, kPlain + kReportHash + kReportHash, UnexpectedRecord,
             "position 32, tag 0xD4 (report item hash): not expected here, expected the end of the request"},
        Case{"BareWithHash", kBare, kPlain + kReportHash, UnexpectedRecord,
             "position 10, tag 0xD4 (report item hash): not expected here, expected the end of the request"},
        Case{"BareWithPin", kBare, kPlain + "C3 06 31 32 33 34 35 36", UnexpectedRecord,
             "position 10, tag 0xC3 (transport PIN): not expected here, expected the end of the request"},
        Case{"NoMonths", kSpan, kPlain, MissingRecord,
             "position 10: the request ends here, expected tag 0xD0 (first month)"},
        Case{"OneMonth", kSpan, kPlain + "D0 03 20 26 01", MissingRecord,
             "position 15: the request ends here, expected tag 0xD1 (last month)"},
        Case{"LastMonthFirst", kSpan, kPlain + "D1 03 20 26 01 D0 03 20 26 01", UnexpectedRecord,
             "position 10, tag 0xD1 (last month): not expected here, expected tag 0xD0 (first month)"},
        Case{"Backwards", kSpan, kPlain + "D0 03 20 26 02 D1 03 20 26 01", Value,
             "position 15, tag 0xD1 (last month): the last month lies before the first"},
        Case{"MonthWithDay", kSpan, kPlain + "D0 04 20 26 02 01", Length,
             "position 10, tag 0xD0 (first month): length 4, expected 3"},
        Case{
            "Month13", kSpan, kPlain + "D0 03 20 26 13", Value,
            "position 10, tag 0xD0 (first month): value 20 26 13 is no month, expected BCD of year (2 bytes) "
            "and month"},
        Case{"Month0", kSpan, kPlain + "D0 03 20 26 01 D1 03 20 26 00", Value,
             "position 15, tag 0xD1 (last month): value 20 26 00 is no month, expected BCD of year (2 bytes) "
             "and "
             "month"},
        Case{
            "Year0", kSpan, kPlain + "D0 03 00 00 01", Value,
            "position 10, tag 0xD0 (first month): value 00 00 01 is no month, expected BCD of year (2 bytes) "
            "and month"},
        Case{
            "LetterInYear", kSpan, kPlain + "D0 03 2A 26 01", Value,
            "position 10, tag 0xD0 (first month): value 2A 26 01 is no month, expected BCD of year (2 bytes) "
            "and month"},
        Case{
            "LetterInMonth", kSpan, kPlain + "D0 03 20 26 0A", Value,
            "position 10, tag 0xD0 (first month): value 20 26 0A is no month, expected BCD of year (2 bytes) "
            "and month"},
        Case{"SpanWithMore", kSpan, kPlain + "D0 03 20 26 01 D1 03 20 26 01 CF 00", UnexpectedRecord,
             "position 20, tag 0xCF (unknown): not expected here, expected the end of the request"},
        Case{"NoPin", kActivate, kPlain, MissingRecord,
             "position 10: the request ends here, expected tag 0xC3 (transport PIN)"},
        Case{"LongPin", kActivate, kPlain + "C3 07 31 32 33 34 35 36 37", Length,
             "position 10, tag 0xC3 (transport PIN): length 7, expected 6"},
        Case{"LetterInPin", kActivate, kPlain + "C3 06 41 32 33 34 35 36", Value,
             "position 10, tag 0xC3 (transport PIN): character 1 is 0x41, expected 0x30 to 0x39"},
        Case{"SlashInPin", kActivate, kPlain + "C3 06 30 2F 33 34 35 36", Value,
             "position 10, tag 0xC3 (transport PIN): character 2 is 0x2F, expected 0x30 to 0x39"},
        Case{"PinTwice", kActivate, kPlain + "C3 06 31 32 33 34 35 36 C3 06 31 32 33 34 35 36",
             UnexpectedRecord,
             "position 18, tag 0xC3 (transport PIN): not expected here, expected the end of the request"}),
    NameOf);

using OtherRequests = DeviceTest;

TEST_F(OtherRequests, EndEveryDamageInAnAnswer) {
  Device device = Open();
  std::mt19937 random(20261231);
  const std::string goods[] = {kHash, kPlain + kHash, kPlain + kReportHash,
                               kPlain + "D0 03 20 26 01 D1 03 20 26 12"};
  int refused = 0;
  for (int round = 0; round < 3'000; ++round) {
    Bytes request = Hex(goods[random() % 4]);
    for (auto changes = 1 + random() % 3; changes > 0 && !request.empty(); --changes) {
      const std::size_t position = random() % request.size();
      if (random() % 2 == 0) {
        request[position] = static_cast<std::uint8_t>(random());
      } else {
        request.resize(position);
      }
    }
    // All but the deactivation, after which the rest would be refused for that.
    const Answer answer = device.Execute(static_cast<Command>(2 + random() % 7), request);
    ASSERT_EQ(answer.accepted, answer.code == RefusalCode::None);
    ASSERT_EQ(answer.accepted, answer.reason.empty());
    ASSERT_EQ(answer.accepted, !answer.response.empty());
    ASSERT_EQ(answer.reason.find('\n'), std::string::npos);
    refused += answer.accepted ? 0 : 1;
  }
  EXPECT_GT(refused, 1'000);
  EXPECT_LT(refused, 3'000);
}

}  // namespace
}  // namespace softdevice::test
