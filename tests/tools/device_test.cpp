// Making a device, and showing one.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Program.h"
#include "tests/softdevice/Tamper.h"

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

/// A device with three bookings and the activation.
void MakeUsedDevice(const test::Desk& desk) {
  ASSERT_EQ(Make(desk, {"--device", "till.db", "--activate"}).status, 0);
  for (const char* document : {"a.xml", "b.xml", "c.xml"}) {
    ASSERT_EQ(desk.Zel({"sign", "sale.json", "--device", "till.db", "--out", document}).status, 0);
  }
}

TEST(DeviceCheck, SaysThatAllIsAsItWasRecorded) {
  const test::Desk desk;
  MakeUsedDevice(desk);
  const test::Outcome outcome = desk.Zel({"device", "check", "--device", "till.db"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "zel: the device 'till.db' is as it was recorded: 3 transactions and 1 report checked\n");
}

TEST(DeviceCheck, NamesEveryDamagedRecord) {
  const test::Desk desk;
  MakeUsedDevice(desk);
  softdevice::test::RunSql(desk.File("till.db"),
                           "UPDATE signed_request SET command = 2 WHERE sequence_number = 1;"
                           "DELETE FROM signed_request WHERE sequence_number = 3");
  const test::Outcome outcome = desk.Zel({"device", "check", "--device", "till.db"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out,
            "transaction 1: it is not what was recorded\n"
            "transaction 3: it is missing\n");
  EXPECT_EQ(outcome.err, "zel: the device 'till.db' is damaged: 3 transactions and 1 report checked\n");
  const json root = json::parse(desk.Zel({"device", "check", "--json", "--device", "till.db"}).out);
  EXPECT_EQ(root, json::parse(R"({"file": "till.db", "ok": false, "transactions": 3, "reports": 1, "damages":
    ["transaction 1: it is not what was recorded", "transaction 3: it is missing"]})"));
  EXPECT_EQ(desk.Zel({"sign", "sale.json", "--device", "till.db"}).err,
            "zel: device file 'till.db': it is damaged (transaction 3 is missing)\n");
}

TEST(DeviceCheck, NeedsADevice) {
  const test::Desk desk;
  const test::Outcome outcome = desk.Zel({"device", "check", "--device", "none.db"});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err, "zel: device file 'none.db': there is no such file\n");
  EXPECT_FALSE(desk.Exists("none.db"));
  EXPECT_EQ(desk.Zel({"device", "check", "--device", "sale.json"}).status, 3);
}

}  // namespace
