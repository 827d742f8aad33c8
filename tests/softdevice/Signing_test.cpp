// Responses, signatures, totals, and their verification.

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>

#include <memory>

#include "Support.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

using Signing = DeviceTest;

/// Writes a number of a signature as DER has it.
Bytes DerNumber(std::span<const std::uint8_t> number) {
  while (number.size() > 1 && number[0] == 0) {
    number = number.subspan(1);
  }
  Bytes value(number.begin(), number.end());
  if (value[0] >= 0x80) {
    value.insert(value.begin(), 0);
  }
  return Joined({0x02, static_cast<std::uint8_t>(value.size())}, value);
}

/// A check that shares nothing with the device's: digest and signature apart, DER written here.
bool SignatureFits(const Bytes& message, std::span<const std::uint8_t> signature, const std::string& pem) {
  Bytes numbers = Joined(DerNumber(signature.first(32)), DerNumber(signature.subspan(32)));
  const Bytes der = Joined({0x30, static_cast<std::uint8_t>(numbers.size())}, numbers);
  const std::unique_ptr<BIO, int (*)(BIO*)> bio(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())),
                                                BIO_free);
  const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key(
      PEM_read_bio_PUBKEY(bio.get(), nullptr, nullptr, nullptr), EVP_PKEY_free);
  std::uint8_t digest[32];
  unsigned length = 0;
  if (EVP_Digest(message.data(), message.size(), digest, &length, EVP_sha256(), nullptr) != 1) {
    return false;
  }
  const std::unique_ptr<EVP_PKEY_CTX, void (*)(EVP_PKEY_CTX*)> context(EVP_PKEY_CTX_new(key.get(), nullptr),
                                                                       EVP_PKEY_CTX_free);
  return EVP_PKEY_verify_init(context.get()) == 1 &&
         EVP_PKEY_verify(context.get(), der.data(), der.size(), digest, length) == 1;
}

TEST_F(Signing, AnswersWithTheFourRecordsInOrder) {
  Device device = Open();
  const Answer answer = device.Execute(Command::SignBooking, Hex(kBooking));
  ASSERT_TRUE(answer.accepted) << answer.reason;
  EXPECT_EQ(answer.code, RefusalCode::None);
  EXPECT_EQ(answer.sequenceNumber, 1U);
  ASSERT_EQ(answer.response.size(), 19U + 2U + 64U);
  EXPECT_EQ(Bytes(answer.response.begin(), answer.response.begin() + 21), Hex(kResponseHead + "9E 40"));
}

TEST_F(Signing, SignsRequestAndResponseHead) {
  Device device = Open();
  const Answer answer = device.Execute(Command::SignBooking, Hex(kBooking));
  ASSERT_EQ(answer.response.size(), 85U);
  const std::span signature = std::span(answer.response).subspan(21);
  EXPECT_TRUE(SignatureFits(Hex(kBooking + kResponseHead), signature, device.PublicKeyPem()));
  EXPECT_FALSE(SignatureFits(Hex(kBooking), signature, device.PublicKeyPem()));
}

TEST_F(Signing, CountsFromOneWithoutGapsOverRefusals) {
  Device device = Open();
  EXPECT_EQ(device.LastSequenceNumber(), 0U);
  EXPECT_EQ(device.Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 1U);
  EXPECT_FALSE(device.Execute(Command::SignBooking, Hex(kDate)).accepted);
  EXPECT_EQ(device.Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 2U);
  EXPECT_EQ(device.LastSequenceNumber(), 2U);
}

TEST_F(Signing, WritesNumbersWithoutLeadingZeroBytes) {
  OpenOptions options = kCreate;
  options.runningNumber = 0x01020304;
  static_cast<void>(Device::Open(File(), options));
  const struct {
    std::uint32_t last;
    const char* record;
  } cases[] = {{254, "CB 01 FF"},
               {255, "CB 02 01 00"},
               {65'535, "CB 03 01 00 00"},
               {16'777'215, "CB 04 01 00 00 00"},
               {4'294'967'294U, "CB 04 FF FF FF FF"}};
  for (const auto& [last, record] : cases) {
    MoveTo(File(), kTransactions, last);
    Device device = Device::Open(File());
    const Answer answer = device.Execute(Command::SignBooking, Hex(kBooking));
    ASSERT_TRUE(answer.accepted) << answer.reason;
    const Bytes start =
        Hex(std::string("C4 0B 44 45 31 32 33 34 35 36 37 38 39 C5 04 01 02 03 04 ") + record);
    ASSERT_EQ(answer.response.size(), start.size() + 66);
    EXPECT_TRUE(std::equal(start.begin(), start.end(), answer.response.begin())) << last;
    EXPECT_TRUE(VerifyBooking(Hex(kBooking), answer.response, device.PublicKeyPem()).ok);
  }
  Device device = Device::Open(File());
  ExpectRefused(device.Execute(Command::SignBooking, Hex(kBooking)), RefusalCode::CounterExhausted,
                "all sequence numbers are used up");
  EXPECT_EQ(device.LastSequenceNumber(), 4'294'967'295U);
}

TEST_F(Signing, FindsWhatItSigned) {
  Device device = Open();
  const Answer first = device.Execute(Command::SignBooking, Hex(kBooking));
  const Answer second = device.Execute(Command::SignBooking, Hex(kHead));
  const std::optional<SignedRequest> found = device.Find(2);
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->sequenceNumber, 2U);
  EXPECT_EQ(found->command, Command::SignBooking);
  EXPECT_EQ(found->request, Hex(kHead));
  EXPECT_EQ(found->response, second.response);
  ASSERT_TRUE(device.Find(1).has_value());
  EXPECT_EQ(device.Find(1)->response, first.response);
  EXPECT_FALSE(device.Find(0).has_value());
  EXPECT_FALSE(device.Find(3).has_value());
}

TEST_F(Signing, AddsUpTheContainersOfEachMonth) {
  Device device = Open();
  const std::string rest = kTime + kOperator + kHash + kCurrency;
  // Class 1: 119.00, VAT 19.00. Class 2: -2.50 in all, of which 3.00 negative, VAT -0.16, third party -1.00.
  const std::string both =
      rest + kContainer1 + "E2 14 D8 02 25 0D D9 02 30 0C DA 02 01 6D DB 02 07 00 D6 02 10 0D";
  const std::string december = kDate + both;
  const std::string january = "CD 04 20 27 01 01 " + rest + kContainer1;
  for (const std::string& request : {december, december, january}) {
    ASSERT_TRUE(device.Execute(Command::SignBooking, Hex(request)).accepted);
  }
  const std::vector<Total> expected = {
      {202612, 225, 23800, 0, 3800, 1900, 2, false, false},
      {202612, 226, -500, 600, -32, 700, 2, false, false, -200},
      {202612, 231, -200, 200, 0, 0, 2, false, false},
      {202701, 225, 11900, 0, 1900, 1900, 1, false, false},
  };
  EXPECT_EQ(device.Totals(), expected);
}

TEST_F(Signing, CountsTrainingAndDeliveryNotesApart) {
  Device device = Open();
  const std::string containers = kContainer1 + "E2 0C D8 02 10 7C DB 02 07 00 D6 02 05 0C";
  for (const char* flags : {"CA 00", "D7 00", "CA 00 D7 00"}) {
    const Bytes request = Joined(Joined(Hex(kHead), Hex(flags)), Hex(containers));
    ASSERT_TRUE(device.Execute(Command::SignBooking, request).accepted);
  }
  const std::vector<Total> expected = {
      {202612, 232, 12007, 0, 1900, 0, 1, false, false, 50},
      {202612, 233, 24014, 0, 3800, 0, 2, false, false, 100},
  };
  EXPECT_EQ(device.Totals(), expected);
}

TEST_F(Signing, MarksChangedRates) {
  Device device = Open();
  for (const char* rate : {"DB 02 19 00", "DB 02 16 00", "DB 02 16 00"}) {
    ASSERT_TRUE(device.Execute(Command::SignBooking, Hex(kHead + "E1 07 D8 01 1C " + rate)).accepted);
  }
  const std::vector<Total> expected = {{202612, 225, 3, 0, 0, 1600, 3, false, true}};
  EXPECT_EQ(device.Totals(), expected);
}

TEST_F(Signing, MarksOverflowBeyondFifteenDigits) {
  Device device = Open();
  const std::string oneCent = kHead + "E1 07 D8 01 1C DB 02 19 00";
  ASSERT_TRUE(device.Execute(Command::SignBooking, Hex(oneCent)).accepted);
  RunSqlAndSeal("UPDATE total SET turnover = 999999999999998");
  ASSERT_TRUE(device.Execute(Command::SignBooking, Hex(oneCent)).accepted);
  EXPECT_EQ(device.Totals().at(0), (Total{202612, 225, 999'999'999'999'999, 0, 0, 1900, 2, false, false}));
  ASSERT_TRUE(device.Execute(Command::SignBooking, Hex(oneCent)).accepted);
  EXPECT_EQ(device.Totals().at(0), (Total{202612, 225, 0, 0, 0, 1900, 3, true, false}));
  ASSERT_TRUE(device.Execute(Command::SignBooking, Hex(oneCent)).accepted);
  EXPECT_EQ(device.Totals().at(0), (Total{202612, 225, 1, 0, 0, 1900, 4, true, false}));
  RunSqlAndSeal("UPDATE total SET turnover = 9223372036854775807");
  ASSERT_TRUE(device.Execute(Command::SignBooking, Hex(oneCent)).accepted);
  EXPECT_EQ(device.Totals().at(0), (Total{202612, 225, 372'036'854'775'808, 0, 0, 1900, 5, true, false}));
}

using Verification = DeviceTest;

TEST_F(Verification, AcceptsWhatTheDeviceSigned) {
  Device device = Open();
  for (const std::string& request : {kBooking, kHead, kBooking}) {
    const Answer answer = device.Execute(Command::SignBooking, Hex(request));
    const Verdict verdict = VerifyBooking(Hex(request), answer.response, device.PublicKeyPem());
    EXPECT_TRUE(verdict.ok) << verdict.reason;
    EXPECT_EQ(verdict.reason, "");
  }
}

TEST_F(Verification, NoticesEveryChangeOfOneByte) {
  Device device = Open();
  const Bytes request = Hex(kBooking);
  const Bytes response = device.Execute(Command::SignBooking, request).response;
  ASSERT_FALSE(response.empty());
  // The device takes any item hash and any signature, so that each of these changes costs a verification:
  // there, each bit and all bits of a byte have to do. All other bytes are changed in every way.
  const auto isWorthTrying = [](unsigned change, bool free) {
    return !free || (change & (change - 1)) == 0 || change == 0xFF;
  };
  std::size_t badSignatures = 0;
  const auto expectNoticed = [&](const Bytes& otherRequest, const Bytes& otherResponse,
                                 std::size_t position) {
    const Verdict verdict = VerifyBooking(otherRequest, otherResponse, device.PublicKeyPem());
    ASSERT_FALSE(verdict.ok) << position;
    ASSERT_FALSE(verdict.reason.empty()) << position;
    badSignatures +=
        verdict.reason == "the signature doesn't belong to this request, response and public key" ? 1 : 0;
  };
  for (unsigned change = 1; change < 256; ++change) {
    for (std::size_t i = 0; i < request.size(); ++i) {
      if (!isWorthTrying(change, i >= 21 && i < 53)) {
        continue;
      }
      Bytes changed = request;
      changed[i] = static_cast<std::uint8_t>(changed[i] ^ change);
      expectNoticed(changed, response, i);
    }
    for (std::size_t i = 0; i < response.size(); ++i) {
      if (!isWorthTrying(change, i >= 21)) {
        continue;
      }
      Bytes changed = response;
      changed[i] = static_cast<std::uint8_t>(changed[i] ^ change);
      expectNoticed(request, changed, i);
    }
  }
  // At least these changes left request and response well formed.
  EXPECT_GE(badSignatures, 9U * (32 + 64));
}

TEST_F(Verification, NamesTheFirstThingThatIsWrong) {
  Device device = Open();
  const Bytes request = Hex(kBooking);
  const Bytes response = device.Execute(Command::SignBooking, request).response;
  const std::string key = device.PublicKeyPem();
  EXPECT_EQ(VerifyBooking(Hex(kDate), response, key).reason,
            "the request is no booking: position 6: the request ends here, expected tag 0xCE (time)");
  EXPECT_EQ(VerifyBooking(request, {}, key).reason,
            "the response is no answer to a booking: position 0: the response ends here, expected tag 0xC4 "
            "(taxpayer ID)");
  EXPECT_EQ(VerifyBooking(request, Hex(kResponseHead), key).reason,
            "the response is no answer to a booking: position 19: the response ends here, expected tag 0x9E "
            "(signature)");
  EXPECT_EQ(
      VerifyBooking(request, Hex(kResponseHead + "9E 30" + std::string(96, '1')), key).reason,
      "the response is no answer to a booking: position 19, tag 0x9E (signature): length 48, expected 64");
  EXPECT_EQ(
      VerifyBooking(request, Joined(response, Hex("C5 01 01")), key).reason,
      "the response is no answer to a booking: position 85, tag 0xC5 (running device number): not expected "
      "here, expected the end of the response");
  EXPECT_EQ(VerifyBooking(request, Hex(kResponseHead + "9E 40" + std::string(128, '0')), key).reason,
            "the signature doesn't belong to this request, response and public key");
  EXPECT_EQ(VerifyBooking(request, Hex(kResponseHead + "9E 40" + std::string(128, 'F')), key).reason,
            "the signature doesn't belong to this request, response and public key");
  EXPECT_EQ(VerifyBooking(request, response, "").reason,
            "the public key can't be used: it is no key in PEM form");
  EXPECT_EQ(VerifyBooking(request, response, key.substr(0, 60)).reason,
            "the public key can't be used: it is no key in PEM form");
}

TEST_F(Verification, RefusesOtherKeys) {
  Device device = Open();
  const Bytes response = device.Execute(Command::SignBooking, Hex(kBooking)).response;
  Device other = Device::Open(folder_ / "other.zel", kCreate);
  EXPECT_EQ(VerifyBooking(Hex(kBooking), response, other.PublicKeyPem()).reason,
            "the signature doesn't belong to this request, response and public key");
}

}  // namespace
}  // namespace softdevice::test
