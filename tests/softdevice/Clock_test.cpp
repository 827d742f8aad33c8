// Times that no document can hold are refused before a number is given, whoever says them.

#include "Support.h"

namespace softdevice::test {
namespace {

using namespace std::chrono;

const std::string kRest = kOperator + kHash + kCurrency + kContainer1;
const std::string kPin = "C3 06 31 32 33 34 35 36 ";
const std::string kMonths = "D0 03 20 26 01 D1 03 20 26 12 ";

struct Dated {
  Command command;
  std::string rest;
};

/// All requests that hold a time, without it.
std::vector<Dated> AllDated() {
  return {{Command::SignBooking, kRest},  {Command::SignDataAndTime, kHash}, {Command::ReportSigned, ""},
          {Command::ReportUnsigned, ""},  {Command::ReportSpan, kMonths},    {Command::ReportActivate, kPin},
          {Command::ReportDeactivate, ""}};
}

using Clock = DeviceTest;

TEST_F(Clock, IsNotBelievedOutsideOfTheYears2000To2099) {
  const struct {
    const char* records;
    const char* text;
  } times[] = {{"CD 04 19 70 01 01 CE 02 00 00 ", "1970-01-01 00:00"},
               {"CD 04 19 99 12 31 CE 02 23 59 ", "1999-12-31 23:59"},
               {"CD 04 20 00 01 01 CE 02 00 00 ", "2000-01-01 00:00"},
               {"CD 04 21 00 01 01 CE 02 00 00 ", "2100-01-01 00:00"},
               {"CD 04 99 99 12 31 CE 02 23 59 ", "9999-12-31 23:59"},
               {"CD 04 00 01 01 01 CE 02 12 34 ", "0001-01-01 12:34"}};
  Device device = OpenInactive();
  for (const auto& [records, text] : times) {
    for (const auto& [command, rest] : AllDated()) {
      ExpectRefused(
          device.Execute(command, Hex(records + rest)), RefusalCode::Value,
          std::string("position 0, tag 0xCD (date): ") + text +
              " can't be right, expected a time after 2000-01-01 00:00 and not after 2099-12-31 23:59");
    }
  }
  EXPECT_EQ(device.State(), (DeviceState{LifeCycle::Personalized, 0, 0, 0, 0}));
}

TEST_F(Clock, GivesNoNumberToAnActivatedDeviceEither) {
  Device device = Open();
  for (const auto& [command, rest] : AllDated()) {
    EXPECT_EQ(CodeOf(device, command, "CD 04 20 00 01 01 CE 02 00 00 " + rest), RefusalCode::Value);
  }
  EXPECT_EQ(device.State(), (DeviceState{LifeCycle::Activated, 0, 0, 1, 0}));
  EXPECT_FALSE(device.Find(1).has_value());
}

TEST_F(Clock, IsBelievedFromTheFirstMinuteToTheLast) {
  for (const char* records : {"CD 04 20 00 01 01 CE 02 00 01 ", "CD 04 20 99 12 31 CE 02 23 59 "}) {
    std::filesystem::remove(File());
    OpenOptions options = kCreate;
    options.activate = false;
    Device device = Device::Open(File(), options);
    Accepted(device, Command::ReportActivate, records + kPin);
    for (const auto& [command, rest] : AllDated()) {
      if (command != Command::ReportActivate) {
        Accepted(device, command, records + rest);
      }
    }
  }
}

TEST_F(Clock, DoesNotMatterWhereNoTimeIsSigned) {
  Device device = Open();
  Accepted(device, Command::SignDataOnly, kHash);
  Accepted(device, Command::SignDataAndTpId, kHash);
}

TEST_F(Clock, IsLookedAtAfterTheFormAndBeforeTheState) {
  Device device = OpenInactive();
  EXPECT_EQ(device.Execute(Command::ReportSigned, Hex("CD 04 19 70 01 01 CE 02 00 00 D4 01 00")).code,
            RefusalCode::Length);
  EXPECT_EQ(CodeOf(device, Command::ReportSigned, "CD 04 19 70 01 01 CE 02 00 00"), RefusalCode::Value);
  EXPECT_EQ(CodeOf(device, Command::ReportSigned, kDate + kTime), RefusalCode::LifeCycle);
  const Answer answer = device.Execute(Command::ReportActivate,
                                       MakeActivationRequest("000000", local_days(year(1970) / 1 / 1)));
  EXPECT_EQ(answer.code, RefusalCode::Value) << "a wrong PIN would be counted";
}

}  // namespace
}  // namespace softdevice::test
