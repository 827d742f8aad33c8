// Signing of data: what each kind answers and signs, and that nothing passes for anything else.

#include "Support.h"
#include "VnZEL10cmn/VnZEL10cmn.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

const std::string kTimedData = kDate + kTime + kHash;
const std::string kIdentity = "C4 0B 44 45 31 32 33 34 35 36 37 38 39 C5 01 01 ";
constexpr const char* kNoFit = "the signature doesn't belong to this request, response and public key";

using Data = DeviceTest;

TEST_F(Data, IsAnsweredByKind) {
  Device device = Open();
  ExpectSigned(Accepted(device, Command::SignDataOnly, kHash), "CB 01 01 ");
  ExpectSigned(Accepted(device, Command::SignDataAndTpId, kHash), kIdentity + "CB 01 02 ");
  ExpectSigned(Accepted(device, Command::SignDataAndTime, kTimedData), kIdentity + "CB 01 03 ");
  EXPECT_EQ(device.LastSequenceNumber(), 3U);
  EXPECT_TRUE(device.Totals().empty());
  EXPECT_TRUE(device.OpenTotals().empty());
}

TEST_F(Data, SharesItsSequenceWithBookings) {
  Device device = Open();
  EXPECT_EQ(device.Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 1U);
  const Answer data = device.Execute(Command::SignDataOnly, Hex(kHash));
  EXPECT_EQ(data.sequenceNumber, 2U);
  EXPECT_EQ(device.Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 3U);
  const std::optional<SignedRequest> found = device.Find(2);
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->sequenceNumber, 2U);
  EXPECT_EQ(found->command, Command::SignDataOnly);
  EXPECT_EQ(found->request, Hex(kHash));
  EXPECT_EQ(found->response, data.response);
}

TEST_F(Data, TakesBothHashes) {
  Device device = Open();
  const std::string sha1 = "C7 14 " + std::string(40, 'A');
  EXPECT_EQ(device.Execute(Command::SignDataOnly, Hex(sha1)).sequenceNumber, 1U);
  EXPECT_EQ(device.Execute(Command::SignDataAndTpId, Hex(sha1)).sequenceNumber, 2U);
  EXPECT_EQ(device.Execute(Command::SignDataAndTime, Hex(kDate + kTime + sha1)).sequenceNumber, 3U);
}

TEST_F(Data, IsVerified) {
  Device device = Open();
  const std::string key = device.PublicKeyPem();
  const struct {
    Command command;
    std::string request;
  } cases[] = {{Command::SignDataOnly, kHash},
               {Command::SignDataAndTpId, kHash},
               {Command::SignDataAndTime, kTimedData}};
  for (const auto& [command, request] : cases) {
    const Bytes response = Accepted(device, command, request);
    const Verdict verdict = VerifyData(Hex(request), response, key);
    EXPECT_TRUE(verdict.ok) << verdict.reason;
    EXPECT_EQ(verdict.reason, "");
    // Any byte changed, one bit of it and all of them.
    for (const std::uint8_t change : {0x01, 0x80, 0xFF}) {
      for (std::size_t i = 0; i < Hex(request).size(); ++i) {
        Bytes changed = Hex(request);
        changed[i] = static_cast<std::uint8_t>(changed[i] ^ change);
        EXPECT_FALSE(VerifyData(changed, response, key).ok) << i;
      }
      for (std::size_t i = 0; i < response.size(); ++i) {
        Bytes changed = response;
        changed[i] = static_cast<std::uint8_t>(changed[i] ^ change);
        EXPECT_FALSE(VerifyData(Hex(request), changed, key).ok) << i;
      }
    }
  }
}

TEST_F(Data, PassesForNothingElse) {
  Device device = Open();
  const std::string key = device.PublicKeyPem();
  const Bytes only = Accepted(device, Command::SignDataOnly, kHash);
  const Bytes withId = Accepted(device, Command::SignDataAndTpId, kHash);
  const Bytes timed = Accepted(device, Command::SignDataAndTime, kTimedData);
  const Bytes booking = Accepted(device, Command::SignBooking, kBooking);
  const Bytes report = Accepted(device, Command::ReportSigned, kDate + kTime);
  // A response without its taxpayer, or with one put in front, is another kind whose signature doesn't fit.
  EXPECT_EQ(VerifyData(Hex(kHash), Bytes(withId.begin() + 16, withId.end()), key).reason, kNoFit);
  EXPECT_EQ(VerifyData(Hex(kHash), Joined(Hex(kIdentity), only), key).reason, kNoFit);
  EXPECT_EQ(VerifyData(Hex(kHash), timed, key).reason, kNoFit);
  EXPECT_EQ(VerifyData(Hex(kTimedData), withId, key).reason, kNoFit);
  EXPECT_EQ(VerifyData(Hex(kTimedData), booking, key).reason, kNoFit);
  EXPECT_EQ(
      VerifyData(Hex(kTimedData), only, key).reason,
      "the response is no answer to a data record: position 0, tag 0xCB (sequence number): not expected "
      "here, expected tag 0xC4 (taxpayer ID)");
  EXPECT_EQ(
      VerifyData(Hex(kBooking), booking, key).reason,
      "the request is no data record: position 10, tag 0xC6 (operator): not expected here, expected tag "
      "0xC7 (item hash)");
  EXPECT_EQ(
      VerifyData(Hex(kDate + kTime), report, key).reason,
      "the request is no data record: position 10: the request ends here, expected tag 0xC7 (item hash)");
  EXPECT_EQ(
      VerifyBooking(Hex(kHash), withId, key).reason,
      "the request is no booking: position 0, tag 0xC7 (item hash): not expected here, expected tag 0xCD "
      "(date)");
  EXPECT_EQ(VerifyBooking(Hex(kBooking), timed, key).reason, kNoFit);
  EXPECT_EQ(
      VerifyReport(Hex(kTimedData), timed, key).reason,
      "the request is no signed report: position 10, tag 0xC7 (item hash): not expected here, expected tag "
      "0xD4 (report item hash) or the end of the request");
  EXPECT_EQ(VerifyReport(Hex(kDate + kTime), timed, key).reason,
            "the response is no answer to a signed report: position 0, tag 0xC4 (taxpayer ID): not expected "
            "here, expected tag 0xC0 (state)");
}

TEST_F(Data, VerificationNamesTheFirstThingThatIsWrong) {
  Device device = Open();
  const std::string key = device.PublicKeyPem();
  const Bytes response = Accepted(device, Command::SignDataOnly, kHash);
  EXPECT_EQ(
      VerifyData({}, response, key).reason,
      "the request is no data record: position 0: the request ends here, expected tag 0xC7 (item hash)");
  EXPECT_EQ(
      VerifyData(Hex(kHash), {}, key).reason,
      "the response is no answer to a data record: position 0: the response ends here, expected tag 0xCB "
      "(sequence number)");
  EXPECT_EQ(
      VerifyData(Hex(kHash), Hex("CB 01"), key).reason,
      "the response is no answer to a data record: position 0, tag 0xCB (sequence number): length 1, but "
      "the response ends after 0 bytes of the value");
  EXPECT_EQ(
      VerifyData(Hex(kHash), Joined(response, Hex("CB 01 01")), key).reason,
      "the response is no answer to a data record: position 69, tag 0xCB (sequence number): not expected "
      "here, expected the end of the response");
  EXPECT_EQ(VerifyData(Hex(kHash), response, "").reason,
            "the public key can't be used: it is no key in PEM form");
  Device other = Device::Open(folder_ / "other.zel", kCreate);
  EXPECT_EQ(VerifyData(Hex(kHash), response, other.PublicKeyPem()).reason, kNoFit);
}

TEST_F(Data, IsWhatTheLibraryBuildsAndReads) {
  using VnZEL10cmn::ByteArray;
  using VnZEL10cmn::clsZelTransActData;
  using VnZEL10cmn::Currency;
  using VnZEL10cmn::ZELDataSignTypes;
  using VnZEL10cmn::ZELSerialType;
  Device device = Open();
  const struct {
    ZELDataSignTypes type;
    Command command;
    const char* taxpayer;
  } cases[] = {{ZELDataSignTypes::DataOnly, Command::SignDataOnly, ""},
               {ZELDataSignTypes::DataAndTpID, Command::SignDataAndTpId, "DE123456789"},
               {ZELDataSignTypes::DataAndTime, Command::SignDataAndTime, "DE123456789"}};
  std::uint32_t number = 0;
  for (const auto& [type, command, taxpayer] : cases) {
    clsZelTransActData record;
    ASSERT_TRUE(record.BinaryDataSet(ZELSerialType::BinaryData, ByteArray{0x01, 0x02, 0x03}, 0));
    record.DataSignType(type);
    ByteArray request = ByteArray::WithBounds(0, 255);
    std::int32_t length = 0;
    ASSERT_TRUE(record.BinaryDataGet(ZELSerialType::Request, request, 0, &length));
    const Bytes bytes(request.data(), request.data() + length);
    const Answer answer = device.Execute(command, bytes);
    ASSERT_TRUE(answer.accepted) << answer.reason;
    ASSERT_TRUE(record.BinaryDataSet(ZELSerialType::Response, ByteArray(answer.response), 0))
        << record.ErrorObject().ErrorMsg();
    EXPECT_EQ(record.ZelRespTpID(), taxpayer);
    EXPECT_EQ(record.ZelRespSeqNr(), Currency(static_cast<int>(++number)));
    EXPECT_EQ(record.ZelRespSignature().size(), 88U);
    EXPECT_EQ(record.DataSignType(), type);
    EXPECT_TRUE(VerifyData(bytes, answer.response, device.PublicKeyPem()).ok);
  }
}

}  // namespace
}  // namespace softdevice::test
