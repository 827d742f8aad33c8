// From a personalized device to a deactivated one, closed and opened between any two steps.

#include "Support.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

const std::string kPlainReport = kDate + kTime;
const std::string kSpan = kPlainReport + "D0 03 20 26 01 D1 03 20 26 12";
const std::string kRightPin = kPlainReport + "C3 06 32 37 31 38 32 38";  // "271828"
const std::string kWrongPin = kPlainReport + "C3 06 32 37 31 38 32 39";  // "271829"
const std::string kIdentity = "C4 0B 44 45 31 32 33 34 35 36 37 38 39 C5 01 01 ";
const std::string kEmptyContainers = "E1 00 E2 00 E3 00 E4 00 E5 00 E6 00 E7 00 E8 00 E9 00 ";

constexpr const char* kNotYet = "the device is not activated yet";
constexpr const char* kAlready = "the device is activated already";
constexpr const char* kDeactivated = "the device is deactivated";
constexpr const char* kLocked = "the device is locked, as three transport PINs were wrong";

class LifeCycleTest : public DeviceTest {
 protected:
  /// Executes on a device that is opened for it and closed behind it.
  [[nodiscard]] Answer Execute(Command command, const std::string& request) const {
    return Device::Open(File()).Execute(command, Hex(request));
  }
  [[nodiscard]] DeviceState State() const { return Device::Open(File()).State(); }

  /// Whatever needs an active device is refused for this reason and changes nothing.
  void ExpectSignsNothing(const std::string& reason) const {
    const DeviceState before = State();
    const struct {
      Command command;
      std::string request;
    } cases[] = {{Command::SignBooking, kBooking},      {Command::SignDataOnly, kHash},
                 {Command::SignDataAndTpId, kHash},     {Command::SignDataAndTime, kDate + kTime + kHash},
                 {Command::ReportSigned, kPlainReport}, {Command::ReportDeactivate, kPlainReport}};
    for (const auto& [command, request] : cases) {
      ExpectRefused(Execute(command, request), RefusalCode::LifeCycle, reason);
    }
    EXPECT_EQ(State(), before);
    EXPECT_TRUE(Device::Open(File()).Totals().empty() || before.lifeCycle == LifeCycle::Deactivated);
  }

  /// Reports that are not signed are answered in every state.
  void ExpectShows(const std::string& lifeCycle, const std::string& transactions) const {
    const DeviceState before = State();
    const Answer open = Execute(Command::ReportUnsigned, kPlainReport);
    EXPECT_TRUE(open.accepted) << open.reason;
    EXPECT_EQ(open.sequenceNumber, 0U);
    EXPECT_EQ(open.response, Hex(lifeCycle + kIdentity + transactions + kEmptyContainers));
    const Answer span =
        Execute(Command::ReportSpan, "CD 04 20 26 12 31 CE 02 08 05 D0 03 20 25 01 D1 03 20 25 12");
    EXPECT_TRUE(span.accepted) << span.reason;
    EXPECT_EQ(span.sequenceNumber, 0U);
    EXPECT_EQ(span.response, Hex(lifeCycle + kIdentity + kEmptyContainers));
    EXPECT_EQ(State(), before);
  }
};

TEST_F(LifeCycleTest, GoesFromPersonalizedOverActivatedToDeactivated) {
  const std::string key = OpenInactive().PublicKeyPem();
  EXPECT_EQ(State(), (DeviceState{LifeCycle::Personalized, 0, 0, 0, 0}));
  ExpectSignsNothing(kNotYet);
  ExpectShows("C0 01 02 ", "D2 01 00 D3 01 00 ");

  const Answer activation = Execute(Command::ReportActivate, kRightPin);
  EXPECT_TRUE(activation.accepted) << activation.reason;
  EXPECT_EQ(activation.sequenceNumber, 1U);
  ExpectSigned(activation.response, "C0 01 03 " + kIdentity + "CC 01 01 ");
  EXPECT_TRUE(VerifyReport(Hex(kRightPin), activation.response, key).ok);
  EXPECT_EQ(State(), (DeviceState{LifeCycle::Activated, 0, 0, 1, 0}));
  ExpectShows("C0 01 03 ", "D2 01 00 D3 01 00 ");
  ExpectRefused(Execute(Command::ReportActivate, kRightPin), RefusalCode::LifeCycle, kAlready);
  ExpectRefused(Execute(Command::ReportActivate, kWrongPin), RefusalCode::LifeCycle, kAlready);
  EXPECT_EQ(State(), (DeviceState{LifeCycle::Activated, 0, 0, 1, 0}));

  EXPECT_EQ(Execute(Command::SignBooking, kBooking).sequenceNumber, 1U);
  EXPECT_EQ(Execute(Command::SignDataOnly, kHash).sequenceNumber, 2U);
  EXPECT_EQ(State(), (DeviceState{LifeCycle::Activated, 0, 2, 1, 0}));
  const Answer closing = Execute(Command::ReportSigned, kPlainReport);
  EXPECT_EQ(closing.sequenceNumber, 2U);
  EXPECT_EQ(State(), (DeviceState{LifeCycle::Activated, 0, 2, 2, 2}));
  ExpectShows("C0 01 03 ", "D2 01 00 D3 01 00 ");
  EXPECT_EQ(Execute(Command::SignDataAndTpId, kHash).sequenceNumber, 3U);
  EXPECT_EQ(Execute(Command::SignDataAndTime, kDate + kTime + kHash).sequenceNumber, 4U);

  const Answer deactivation = Execute(Command::ReportDeactivate, kPlainReport);
  EXPECT_TRUE(deactivation.accepted) << deactivation.reason;
  EXPECT_EQ(deactivation.sequenceNumber, 3U);
  ExpectSigned(deactivation.response,
               "C0 01 04 " + kIdentity + "CC 01 03 D2 01 03 D3 01 04 " + kEmptyContainers);
  EXPECT_TRUE(VerifyReport(Hex(kPlainReport), deactivation.response, key).ok);
  EXPECT_EQ(State(), (DeviceState{LifeCycle::Deactivated, 0, 4, 3, 4}));
  ExpectSignsNothing(kDeactivated);
  ExpectShows("C0 01 04 ", "D2 01 00 D3 01 00 ");
  ExpectRefused(Execute(Command::ReportActivate, kRightPin), RefusalCode::LifeCycle, kDeactivated);

  const Device device = Device::Open(File());
  for (const auto& [number, command, response] :
       {std::tuple{1U, Command::ReportActivate, activation.response},
        std::tuple{2U, Command::ReportSigned, closing.response},
        std::tuple{3U, Command::ReportDeactivate, deactivation.response}}) {
    const std::optional<SignedRequest> found = device.FindReport(number);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->sequenceNumber, number);
    EXPECT_EQ(found->command, command);
    EXPECT_EQ(found->request, Hex(command == Command::ReportActivate ? kRightPin : kPlainReport));
    EXPECT_EQ(found->response, response);
  }
  EXPECT_FALSE(device.FindReport(0).has_value());
  EXPECT_FALSE(device.FindReport(4).has_value());
  EXPECT_EQ(device.Find(3)->command, Command::SignDataAndTpId);
}

TEST_F(LifeCycleTest, DeactivationClosesWhatIsOpen) {
  Device device = Open();
  Accepted(device, Command::SignBooking, kBooking);
  const Bytes response = Accepted(device, Command::ReportDeactivate, kPlainReport);
  ExpectSigned(response, "C0 01 04 " + kIdentity +
                             "CC 01 02 D2 01 01 D3 01 01 E1 0E D8 03 11 90 0C DA 03 01 90 0C DB 02 19 00 "
                             "E2 00 E3 00 E4 00 E5 00 E6 00 E7 00 E8 00 E9 00 ");
  EXPECT_TRUE(device.OpenTotals().empty());
  EXPECT_EQ(device.Totals().size(), 1U);
}

TEST_F(LifeCycleTest, ThreeWrongPinsLockTheDevice) {
  static_cast<void>(OpenInactive());
  ExpectRefused(Execute(Command::ReportActivate, kWrongPin), RefusalCode::WrongPin,
                "the transport PIN is wrong, 2 attempts are left");
  EXPECT_EQ(State(), (DeviceState{LifeCycle::Personalized, 1, 0, 0, 0}));
  ExpectRefused(Execute(Command::ReportActivate, kWrongPin), RefusalCode::WrongPin,
                "the transport PIN is wrong, 1 attempt is left");
  EXPECT_EQ(State(), (DeviceState{LifeCycle::Personalized, 2, 0, 0, 0}));
  EXPECT_FALSE(State().IsLocked());
  ExpectRefused(Execute(Command::ReportActivate, kWrongPin), RefusalCode::WrongPin,
                "the transport PIN is wrong, the device is locked now");
  EXPECT_EQ(State(), (DeviceState{LifeCycle::Personalized, 3, 0, 0, 0}));
  EXPECT_TRUE(State().IsLocked());
  for (const std::string& request : {kWrongPin, kRightPin}) {
    ExpectRefused(Execute(Command::ReportActivate, request), RefusalCode::PinLocked, kLocked);
  }
  EXPECT_EQ(State(), (DeviceState{LifeCycle::Personalized, 3, 0, 0, 0}));
  ExpectSignsNothing(kNotYet);
  ExpectShows("C0 01 02 ", "D2 01 00 D3 01 00 ");
}

TEST_F(LifeCycleTest, TheThirdPinMayBeRight) {
  static_cast<void>(OpenInactive());
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Execute(Command::ReportActivate, kWrongPin).code, RefusalCode::WrongPin);
  }
  EXPECT_TRUE(Execute(Command::ReportActivate, kRightPin).accepted);
  EXPECT_EQ(State(), (DeviceState{LifeCycle::Activated, 0, 0, 1, 0}));
}

TEST_F(LifeCycleTest, APinThatIsNoneUsesUpNoAttempt) {
  static_cast<void>(OpenInactive());
  ExpectRefused(Execute(Command::ReportActivate, kPlainReport + "C3 05 32 37 31 38 32"), RefusalCode::Length,
                "position 10, tag 0xC3 (transport PIN): length 5, expected 6");
  ExpectRefused(Execute(Command::ReportActivate, kPlainReport + "C3 06 32 37 31 38 32 3A"),
                RefusalCode::Value,
                "position 10, tag 0xC3 (transport PIN): character 6 is 0x3A, expected 0x30 to 0x39");
  EXPECT_EQ(State().wrongPins, 0);
}

TEST_F(LifeCycleTest, ANewDeviceCanBeActivatedAtOnce) {
  Device device = Open();
  EXPECT_EQ(device.State(), (DeviceState{LifeCycle::Activated, 0, 0, 1, 0}));
  const std::optional<SignedRequest> activation = device.FindReport(1);
  ASSERT_TRUE(activation.has_value());
  EXPECT_EQ(activation->command, Command::ReportActivate);
  EXPECT_TRUE(VerifyReport(activation->request, activation->response, device.PublicKeyPem()).ok);
  ASSERT_EQ(activation->request.size(), 18U);
  EXPECT_EQ(Bytes(activation->request.begin() + 10, activation->request.end()),
            Hex("C3 06 31 32 33 34 35 36"));  // the default, "123456"
}

TEST_F(LifeCycleTest, AnExistingDeviceIsNotActivatedByOpeningIt) {
  static_cast<void>(OpenInactive());
  EXPECT_EQ(Open().State(), (DeviceState{LifeCycle::Personalized, 0, 0, 0, 0}));
}

TEST_F(LifeCycleTest, ActivateTakesThePin) {
  Device device = OpenInactive();
  ExpectRefused(device.Activate(), RefusalCode::WrongPin, "the transport PIN is wrong, 2 attempts are left");
  ExpectRefused(device.Activate(""), RefusalCode::Length,
                "position 10, tag 0xC3 (transport PIN): length 0, expected 6");
  ExpectRefused(device.Activate(std::string(200, '1')), RefusalCode::Length,
                "position 10, tag 0xC3 (transport PIN): length 127, expected 6");
  const Answer answer = device.Activate("271828");
  EXPECT_TRUE(answer.accepted) << answer.reason;
  EXPECT_EQ(device.State().lifeCycle, LifeCycle::Activated);
}

TEST_F(LifeCycleTest, MakesActivationRequests) {
  using namespace std::chrono;
  const local_days newYearsEve = local_days(year(2026) / 12 / 31);
  EXPECT_EQ(MakeActivationRequest("271828", newYearsEve + hours(8) + minutes(5) + seconds(59)),
            Hex(kRightPin));
  EXPECT_EQ(MakeActivationRequest("000000", local_days(year(1) / 1 / 1)),
            Hex("CD 04 00 01 01 01 CE 02 00 00 C3 06 30 30 30 30 30 30"));
  EXPECT_EQ(MakeActivationRequest("000000", local_days(year(9999) / 2 / 28) + hours(23) + minutes(59)),
            Hex("CD 04 99 99 02 28 CE 02 23 59 C3 06 30 30 30 30 30 30"));
}

TEST_F(LifeCycleTest, CountersEnd) {
  static_cast<void>(Open());
  MoveTo(File(), kReports, 4'294'967'294U);
  Device device = Open();
  ExpectSigned(Accepted(device, Command::ReportSigned, kPlainReport),
               "C0 01 03 " + kIdentity + "CC 04 FF FF FF FF D2 01 00 D3 01 00 " + kEmptyContainers);
  for (const Command command : {Command::ReportSigned, Command::ReportDeactivate}) {
    ExpectRefused(device.Execute(command, Hex(kPlainReport)), RefusalCode::CounterExhausted,
                  "all report numbers are used up");
  }
  RunSqlAndSeal("UPDATE device SET life_cycle = 2");
  ExpectRefused(device.Activate(), RefusalCode::CounterExhausted, "all report numbers are used up");
  RunSqlAndSeal("UPDATE device SET life_cycle = 3");
  MoveTo(File(), kTransactions, 4'294'967'295U);
  device = Open();
  for (const Command command : {Command::SignDataOnly, Command::SignDataAndTpId}) {
    ExpectRefused(device.Execute(command, Hex(kHash)), RefusalCode::CounterExhausted,
                  "all sequence numbers are used up");
  }
}

}  // namespace
}  // namespace softdevice::test
