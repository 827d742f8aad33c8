// The key that verify is given: where it can't be used, that is what is wrong, not the documents.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <ostream>

#include "Hex.h"
#include "Program.h"
#include "softdevice/Key.h"
#include "softdevice/Verify.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

using KeyPtr = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;

std::string PemOf(EVP_PKEY* key) {
  BIO* const bio = BIO_new(BIO_s_mem());
  if (key == nullptr || PEM_write_bio_PUBKEY(bio, key) != 1) throw std::runtime_error("no key");
  char* text = nullptr;
  const long length = BIO_get_mem_data(bio, &text);
  std::string pem(text, static_cast<std::size_t>(length));
  BIO_free(bio);
  return pem;
}

std::string PemOfCurve(const char* curve) {
  const KeyPtr key(EVP_EC_gen(curve), EVP_PKEY_free);
  return PemOf(key.get());
}

std::string PemOfKind(const char* kind) {
  const KeyPtr key(EVP_PKEY_Q_keygen(nullptr, nullptr, kind), EVP_PKEY_free);
  return PemOf(key.get());
}

/// A public key whose structure is given in hexadecimal.
std::string PemOfBytes(const std::string& hexadecimal) {
  const std::vector<std::uint8_t> bytes = test::internal::HexBytes(hexadecimal);
  return "-----BEGIN PUBLIC KEY-----\n" + test::ToBase64({bytes.begin(), bytes.end()}) +
         "\n-----END PUBLIC KEY-----\n";
}

std::string Hex(std::string_view bytes) {
  return test::internal::HexText(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

/// What names the curve P-256 in a public key, behind the header and before the point.
const std::string kNamedP256 = "30 13 06 07 2A 86 48 CE 3D 02 01 06 08 2A 86 48 CE 3D 03 01 07 ";

class Keys : public testing::Test {
 protected:
  Keys() {
    static_cast<void>(desk_.SignedDocument());
    pem_ = desk_.Zel({"key", "--device", "till.db"}).out;
  }

  test::Outcome Verify(const std::string& pem) const {
    desk_.WriteFile("till.pem", pem);
    return desk_.Zel({"verify", "sale.xml", "sale.xml", "sale.xml", "--key", "till.pem"});
  }

  /// The key's point, uncompressed: its last 65 bytes.
  std::string Point() const {
    std::string base64;
    for (std::size_t at = pem_.find('\n') + 1; pem_[at] != '-'; at = pem_.find('\n', at) + 1) {
      base64 += pem_.substr(at, pem_.find('\n', at) - at);
    }
    const std::string bytes = test::FromBase64(base64);
    return bytes.substr(bytes.size() - 65);
  }

  void ExpectRight(const std::string& pem) const {
    const test::Outcome outcome = Verify(pem);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "zel: 3 documents, all right\n");
  }

  test::Desk desk_;
  std::string pem_;
};

struct WrongKey {
  const char* name;
  std::function<std::string()> pem;
  std::string message;
};

void PrintTo(const WrongKey& key, std::ostream* out) { *out << key.name; }

class WrongKeys : public Keys, public testing::WithParamInterface<WrongKey> {};

TEST_P(WrongKeys, AreSaidOnceAndNoDocumentIsBlamed) {
  const test::Outcome outcome = Verify(GetParam().pem());
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, StartsWith("zel: 'till.pem'" + GetParam().message));
  EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
  // Nor is any line, of which none is answered.
  const test::Outcome lines = desk_.Zel({"verify", "--lines", "--json", "--key", "till.pem"},
                                        {.input = "{\"file\": \"sale.xml\"}\n{\"file\": \"sale.xml\"}\n"});
  EXPECT_EQ(lines.status, 3);
  EXPECT_EQ(lines.out, "");
  EXPECT_EQ(lines.err, outcome.err);
}

INSTANTIATE_TEST_SUITE_P(
    Key, WrongKeys,
    testing::ValuesIn(std::vector<WrongKey>{
        {"OfTheCurveP384", [] { return PemOfCurve("P-384"); }, ": the public key can't be used: "},
        {"OfTheCurveSecp256k1", [] { return PemOfCurve("secp256k1"); }, ": the public key can't be used: "},
        {"OfRsa",
         [] {
           const KeyPtr key(EVP_RSA_gen(1024), EVP_PKEY_free);
           return PemOf(key.get());
         },
         ": the public key can't be used: "},
        {"OfTheKindEd25519", [] { return PemOfKind("ED25519"); }, ": the public key can't be used: "},
        {"BesideTheCurve",
         [] {
           std::string point = "04";
           for (int i = 0; i < 64; ++i) {
             point += " 01";
           }
           return PemOfBytes("30 59 " + kNamedP256 + "03 42 00 " + point);
         },
         ": the public key can't be used: "},
        {"WithoutAPoint", [] { return PemOfBytes("30 18 " + kNamedP256 + "03 01 00"); },
         ": the public key can't be used: "},
        {"Damaged",
         [] { return std::string("-----BEGIN PUBLIC KEY-----\nAAAA\n-----END PUBLIC KEY-----\n"); },
         ": the public key can't be used: "},
        {"ThatIsNone", [] { return std::string("a letter\n"); }, " holds no public key (PEM)\n"},
        {"Empty", [] { return std::string(); }, " is empty\n"},
    }),
    [](const testing::TestParamInfo<WrongKey>& info) { return info.param.name; });

TEST_F(Keys, OfTheDeviceCanBeCompressed) {
  ExpectRight(pem_);
  const std::string point = Point();
  const bool isOdd = (static_cast<unsigned char>(point.back()) & 1U) != 0;
  ExpectRight(
      PemOfBytes("30 39 " + kNamedP256 + "03 22 00 " + (isOdd ? "03 " : "02 ") + Hex(point.substr(1, 32))));
  ExpectRight("The key of till 1:\r\n" + pem_);
}

/// Which forms of a key are taken is the device library's to say. What it refuses is refused here in its words.
TEST_F(Keys, AreTakenInTheFormsThatTheDeviceLibraryTakes) {
  const std::string point = Point();
  const std::string numbers = Hex(point.substr(1));
  const bool isOdd = (static_cast<unsigned char>(point.back()) & 1U) != 0;
  const std::string spelledOut =
      "30 82 01 4B 30 82 01 03 06 07 2A 86 48 CE 3D 02 01 30 81 F7 02 01 01 30 2C 06 07 2A 86 48 CE 3D 01 01 "
      "02 21 00 FF FF FF FF 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 FF FF FF FF FF FF FF FF FF FF FF "
      "FF 30 5B 04 20 FF FF FF FF 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 FF FF FF FF FF FF FF FF FF "
      "FF FF FC 04 20 5A C6 35 D8 AA 3A 93 E7 B3 EB BD 55 76 98 86 BC 65 1D 06 B0 CC 53 B0 F6 3B CE 3C 3E 27 "
      "D2 60 4B 03 15 00 C4 9D 36 08 86 E7 04 93 6A 66 78 E1 13 9D 26 B7 81 9F 7E 90 04 41 04 6B 17 D1 F2 E1 "
      "2C 42 47 F8 BC E6 E5 63 A4 40 F2 77 03 7D 81 2D EB 33 A0 F4 A1 39 45 D8 98 C2 96 4F E3 42 E2 FE 1A 7F "
      "9B 8E E7 EB 4A 7C 0F 9E 16 2B CE 33 57 6B 31 5E CE CB B6 40 68 37 BF 51 F5 02 21 00 FF FF FF FF 00 00 "
      "00 00 FF FF FF FF FF FF FF FF BC E6 FA AD A7 17 9E 84 F3 B9 CA C2 FC 63 25 51 02 01 01 03 42 00 04 ";
  const std::string hybrid = "30 59 " + kNamedP256 + "03 42 00 " + (isOdd ? "07 " : "06 ") + numbers;
  for (const std::string& pem : {PemOfBytes("30 19 " + kNamedP256 + "03 02 00 00"),  // the point at infinity
                                 PemOfBytes(spelledOut + numbers), PemOfBytes(hybrid), pem_ + pem_}) {
    SCOPED_TRACE(pem);
    std::string reason;
    try {
      static_cast<void>(softdevice::PublicKey(pem).Value());
    } catch (const softdevice::KeyError& error) {
      reason = error.what();
    }
    const test::Outcome outcome = Verify(pem);
    if (reason.empty()) {
      EXPECT_THAT(outcome.status, testing::AnyOf(0, 1));
      EXPECT_THAT(outcome.err, HasSubstr("zel: 3 documents"));
    } else {
      EXPECT_EQ(outcome.status, 3);
      EXPECT_EQ(outcome.err, "zel: 'till.pem': the public key can't be used: " + reason + "\n");
    }
  }
}

}  // namespace
