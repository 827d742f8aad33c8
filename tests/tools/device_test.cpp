// Making a device, and showing one.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Program.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

test::Outcome Make(const test::Desk& desk, std::vector<std::string> more = {"--device", "till.db"}) {
  more.insert(more.begin(),
              {"device", "init", "--taxpayer", "DE123456789", "--number", "7", "--pin", "271828"});
  return desk.Zel(more);
}

TEST(DeviceInit, MakesADeviceThatWaitsForItsActivation) {
  const test::Desk desk;
  const test::Outcome outcome = Make(desk);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(
      outcome.err,
      "zel: made the software signing device 'till.db' for taxpayer DE123456789, number 7, personalized: "
      "'zel report --activate PIN' activates it\n"
      "zel: the device 'till.db' is a software device for development and tests, not a certified one\n");
}

TEST(DeviceInit, ActivatesItAtOnceIfAsked) {
  const test::Desk desk;
  ASSERT_EQ(Make(desk, {"--device", "till.db", "--activate"}).status, 0);
  EXPECT_EQ(desk.Zel({"sign", "sale.json", "--device", "till.db"}).status, 0);
}

TEST(DeviceInit, MakesTheDefaultDeviceWithItsFolder) {
  const test::Desk desk;
  ASSERT_EQ(Make(desk, {"--activate"}).status, 0);
  EXPECT_TRUE(desk.Exists(".local/share/zel/device.db"));
  EXPECT_THAT(desk.Zel({"sign", "sale.json"}).err, testing::Not(HasSubstr("made and activated")));
  EXPECT_THAT(desk.Zel({"device", "show"}).out, HasSubstr("Taxpayer ..................: DE123456789\n"));
}

TEST(DeviceInit, NeverReplacesAFile) {
  const test::Desk desk;
  desk.WriteFile("till.db", "precious");
  const test::Outcome outcome = Make(desk);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err, "zel: 'till.db' exists already\n");
  EXPECT_EQ(desk.ReadFile("till.db"), "precious");
}

TEST(DeviceShow, ShowsWhereItStands) {
  const test::Desk desk;
  ASSERT_EQ(Make(desk).status, 0);
  EXPECT_THAT(desk.Zel({"device", "show", "--device", "till.db"}).out,
              StartsWith("Device file ...............: till.db\n"
                         "Taxpayer ..................: DE123456789\n"
                         "Running number ............: 7\n"
                         "State .....................: personalized\n"
                         "Wrong transport PINs ......: 0\n"
                         "Last sequence number ......: none\n"
                         "Last report number ........: none\n"
                         "Closed up to number .......: none\n"
                         "\nSince the last closing:\n\ncontainer "));
  ASSERT_EQ(desk.Zel({"report", "--activate", "271828", "--device", "till.db"}).status, 0);
  ASSERT_EQ(desk.Zel({"sign", "sale.json", "--device", "till.db"}).status, 0);
  EXPECT_THAT(
      desk.Zel({"device", "show", "--device", "till.db"}).out,
      AllOf(HasSubstr("State .....................: activated\n"
                      "Last sequence number ......: 1\n"
                      "Last report number ........: 1\n"
                      "Closed up to number .......: none\n"),
            HasSubstr("A standard                     1.05             1.75             0.17  19.00%\n"
                      "B reduced                     11.00             0.00             0.72   7.00%\n")));
  ASSERT_EQ(desk.Zel({"report", "--signed", "--device", "till.db"}).status, 0);
  EXPECT_THAT(
      desk.Zel({"device", "show", "--device", "till.db"}).out,
      AllOf(HasSubstr("Closed up to number .......: 1\n"), HasSubstr("A standard                     0.00")));
}

TEST(DeviceShow, JsonHoldsTheSame) {
  const test::Desk desk;
  ASSERT_EQ(Make(desk, {"--device", "till.db", "--activate"}).status, 0);
  ASSERT_EQ(desk.Zel({"sign", "sale.json", "--device", "till.db"}).status, 0);
  const json root = json::parse(desk.Zel({"device", "show", "--json", "--device", "till.db"}).out);
  EXPECT_EQ(root, json::parse(R"({"file": "till.db", "taxpayerId": "DE123456789", "runningNumber": 7,
    "state": "activated", "wrongPins": 0, "locked": false, "lastSequenceNumber": 1, "lastReportNumber": 1,
    "closedUpToNumber": 0, "openTotals": [
      {"container": 225, "name": "A standard", "turnoverCents": 105, "negativeCents": 175, "vatCents": 17,
       "rateHundredths": 1900, "bookings": 1, "overflow": false, "rateChanged": false},
      {"container": 226, "name": "B reduced", "turnoverCents": 1100, "negativeCents": 0, "vatCents": 72,
       "rateHundredths": 700, "bookings": 1, "overflow": false, "rateChanged": false}]})"));
}

TEST(DeviceShow, MakesNoDevice) {
  const test::Desk desk;
  const test::Outcome outcome = desk.Zel({"device", "show", "--device", "none.db"});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err, "zel: device file 'none.db': there is no such file\n");
  EXPECT_FALSE(desk.Exists("none.db"));
}

}  // namespace
