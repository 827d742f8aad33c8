#include "softdevice/Key.h"

#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/pem.h>

#include <limits>

namespace softdevice {

namespace {

constexpr int kNumberLength = 32;
constexpr const char* kCurve = "prime256v1";

template <auto function>
struct FreeWith {
  template <typename T>
  void operator()(T* object) const noexcept {
    function(object);
  }
};

using BioPtr = std::unique_ptr<BIO, FreeWith<BIO_free>>;
using BignumPtr = std::unique_ptr<BIGNUM, FreeWith<BN_free>>;
using ContextPtr = std::unique_ptr<EVP_MD_CTX, FreeWith<EVP_MD_CTX_free>>;
using EcdsaPtr = std::unique_ptr<ECDSA_SIG, FreeWith<ECDSA_SIG_free>>;

/// Leaves libcrypto's list of errors, which the whole thread shares, as it was.
class ErrorMark {
 public:
  ErrorMark() { ERR_set_mark(); }
  ~ErrorMark() { ERR_pop_to_mark(); }
  ErrorMark(const ErrorMark&) = delete;
  ErrorMark& operator=(const ErrorMark&) = delete;
};

void Require(bool done, const char* what) {
  if (!done) {
    throw KeyError(what);
  }
}

BioPtr OpenText(std::string_view text) {
  Require(text.size() <= static_cast<std::size_t>(std::numeric_limits<int>::max()),
          "the key's text is too long");
  BioPtr bio(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
  Require(bio != nullptr, "no memory for a key");
  return bio;
}

std::string TextOf(const BioPtr& bio) {
  char* data = nullptr;
  const long length = BIO_get_mem_data(bio.get(), &data);
  Require(length > 0, "the key can't be written");
  return {data, static_cast<std::size_t>(length)};
}

/// Without it libcrypto would ask for the password of an encrypted key on the terminal.
int NoPassword(char* /*buffer*/, int /*size*/, int /*forWriting*/, void* /*data*/) { return -1; }

}  // namespace

Key::Key(EVP_PKEY* key) : key_(key) {
  Require(key != nullptr, "it is no key in PEM form");
  char curve[32] = {};
  Require(
      EVP_PKEY_get_group_name(key, curve, sizeof curve, nullptr) == 1 && std::string_view(curve) == kCurve,
      "it is no key on the curve P-256");
}

Key Key::Generate() {
  const ErrorMark mark;
  EVP_PKEY* key = EVP_EC_gen(kCurve);
  Require(key != nullptr, "no key can be generated");
  return Key(key);
}

Key Key::FromPrivatePem(std::string_view pem) {
  const ErrorMark mark;
  return Key(PEM_read_bio_PrivateKey(OpenText(pem).get(), nullptr, NoPassword, nullptr));
}

Key Key::FromPublicPem(std::string_view pem) {
  const ErrorMark mark;
  return Key(PEM_read_bio_PUBKEY(OpenText(pem).get(), nullptr, NoPassword, nullptr));
}

std::string Key::PrivatePem() const {
  const ErrorMark mark;
  const BioPtr bio(BIO_new(BIO_s_mem()));
  Require(bio != nullptr && PEM_write_bio_PKCS8PrivateKey(bio.get(), key_.get(), nullptr, nullptr, 0, nullptr,
                                                          nullptr) == 1,
          "the key can't be written");
  return TextOf(bio);
}

std::string Key::PublicPem() const {
  const ErrorMark mark;
  const BioPtr bio(BIO_new(BIO_s_mem()));
  Require(bio != nullptr && PEM_write_bio_PUBKEY(bio.get(), key_.get()) == 1, "the key can't be written");
  return TextOf(bio);
}

Signature Key::Sign(std::span<const std::uint8_t> message) const {
  const ErrorMark mark;
  constexpr const char* kFailed = "the signature can't be made";
  const ContextPtr context(EVP_MD_CTX_new());
  std::uint8_t der[80];  // at most 72 bytes: two numbers of 33 bytes with their headers
  std::size_t length = sizeof der;
  Require(context != nullptr &&
              EVP_DigestSignInit(context.get(), nullptr, EVP_sha256(), nullptr, key_.get()) == 1 &&
              EVP_DigestSign(context.get(), der, &length, message.data(), message.size()) == 1,
          kFailed);
  const std::uint8_t* position = der;
  const EcdsaPtr numbers(d2i_ECDSA_SIG(nullptr, &position, static_cast<long>(length)));
  Require(numbers != nullptr, kFailed);
  Signature signature{};
  Require(BN_bn2binpad(ECDSA_SIG_get0_r(numbers.get()), signature.data(), kNumberLength) == kNumberLength &&
              BN_bn2binpad(ECDSA_SIG_get0_s(numbers.get()), signature.data() + kNumberLength,
                           kNumberLength) == kNumberLength,
          kFailed);
  return signature;
}

bool Key::Verify(std::span<const std::uint8_t> message, std::span<const std::uint8_t, 64> signature) const {
  const ErrorMark mark;
  constexpr const char* kFailed = "the signature can't be checked";
  BignumPtr r(BN_bin2bn(signature.data(), kNumberLength, nullptr));
  BignumPtr s(BN_bin2bn(signature.data() + kNumberLength, kNumberLength, nullptr));
  const EcdsaPtr numbers(ECDSA_SIG_new());
  Require(r != nullptr && s != nullptr && numbers != nullptr &&
              ECDSA_SIG_set0(numbers.get(), r.get(), s.get()) == 1,
          kFailed);
  static_cast<void>(r.release());  // `numbers` owns both now
  static_cast<void>(s.release());
  std::uint8_t der[80];
  std::uint8_t* position = der;
  const int length = i2d_ECDSA_SIG(numbers.get(), &position);
  const ContextPtr context(EVP_MD_CTX_new());
  Require(length > 0 && context != nullptr &&
              EVP_DigestVerifyInit(context.get(), nullptr, EVP_sha256(), nullptr, key_.get()) == 1,
          kFailed);
  return EVP_DigestVerify(context.get(), der, static_cast<std::size_t>(length), message.data(),
                          message.size()) == 1;
}

}  // namespace softdevice
