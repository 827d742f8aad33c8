#include "softdevice/Key.h"

#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

namespace softdevice {

namespace {

constexpr int kNumberLength = 32;
constexpr const char* kCurve = "prime256v1";
/// The order of the curve's group.
constexpr std::uint8_t kOrder[kNumberLength] = {
    0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
    0xBC, 0xE6, 0xFA, 0xAD, 0xA7, 0x17, 0x9E, 0x84, 0xF3, 0xB9, 0xCA, 0xC2, 0xFC, 0x63, 0x25, 0x51};

// What the only two forms of a public key that are taken begin with: a SubjectPublicKeyInfo with the names of
// the algorithm (1.2.840.10045.2.1) and of the curve (1.2.840.10045.3.1.7), and a point's first byte.
constexpr std::size_t kUncompressedLength = 91;
constexpr std::uint8_t kUncompressed[] = {0x30, 0x59, 0x30, 0x13, 0x06, 0x07, 0x2A, 0x86, 0x48,
                                          0xCE, 0x3D, 0x02, 0x01, 0x06, 0x08, 0x2A, 0x86, 0x48,
                                          0xCE, 0x3D, 0x03, 0x01, 0x07, 0x03, 0x42, 0x00, 0x04};
constexpr std::size_t kCompressedLength = 59;
constexpr std::uint8_t kCompressed[] = {0x30, 0x39, 0x30, 0x13, 0x06, 0x07, 0x2A, 0x86, 0x48,
                                        0xCE, 0x3D, 0x02, 0x01, 0x06, 0x08, 0x2A, 0x86, 0x48,
                                        0xCE, 0x3D, 0x03, 0x01, 0x07, 0x03, 0x22, 0x00};

template <auto function>
struct FreeWith {
  template <typename T>
  void operator()(T* object) const noexcept {
    function(object);
  }
};

using BioPtr = std::unique_ptr<BIO, FreeWith<BIO_free>>;
using BignumPtr = std::unique_ptr<BIGNUM, FreeWith<BN_free>>;
using KeyPtr = std::unique_ptr<EVP_PKEY, FreeWith<EVP_PKEY_free>>;
using KeyContextPtr = std::unique_ptr<EVP_PKEY_CTX, FreeWith<EVP_PKEY_CTX_free>>;
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

using Bytes = std::vector<std::uint8_t>;

/// What stands between two lines "-----BEGIN name-----" and "-----END name-----".
struct Block {
  std::string name;
  bool isEncrypted;
  Bytes content;
};

/// The next block of the text; none when there is none that can be read.
std::optional<Block> NextBlock(BIO* text) {
  struct Free {
    void operator()(void* memory) const noexcept { OPENSSL_free(memory); }
  };
  char* name = nullptr;
  char* header = nullptr;
  unsigned char* content = nullptr;
  long length = 0;
  if (PEM_read_bio(text, &name, &header, &content, &length) != 1) {
    return std::nullopt;
  }
  const std::unique_ptr<char, Free> nameOwner(name);
  const std::unique_ptr<char, Free> headerOwner(header);
  const std::unique_ptr<unsigned char, Free> contentOwner(content);
  return Block{name, *header != '\0', Bytes(content, content + length)};
}

bool IsPrivate(const std::string& name) { return name.find("PRIVATE KEY") != std::string::npos; }

template <std::size_t size>
bool BeginsWith(const Bytes& content, const std::uint8_t (&start)[size]) {
  return content.size() >= size && std::equal(start, start + size, content.begin());
}

bool IsUncompressed(const Bytes& content) {
  return content.size() == kUncompressedLength && BeginsWith(content, kUncompressed);
}

bool IsCompressed(const Bytes& content) {
  return content.size() == kCompressedLength && BeginsWith(content, kCompressed);
}

bool HasExplicitParameters(const EVP_PKEY* key) {
  int isExplicit = 0;
  return EVP_PKEY_get_int_param(key, OSSL_PKEY_PARAM_EC_DECODED_FROM_EXPLICIT_PARAMS, &isExplicit) == 1 &&
         isExplicit != 0;
}

/// Whether the key is on the curve and names it.
void CheckCurve(const EVP_PKEY* key) {
  const std::string other = "it is no key on the curve P-256, but ";
  if (EVP_PKEY_get_base_id(key) != EVP_PKEY_EC) {
    const char* const kind = EVP_PKEY_get0_type_name(key);
    throw KeyError(other + "one of the kind " + (kind == nullptr ? "unknown" : kind));
  }
  Require(!HasExplicitParameters(key),
          "it spells out the curve's parameters instead of naming the curve P-256");
  char curve[64] = {};
  Require(EVP_PKEY_get_group_name(key, curve, sizeof curve, nullptr) == 1, "it names no curve that is known");
  if (std::string_view(curve) != kCurve) {
    throw KeyError(other + "on the curve " + curve);
  }
}

/// Says why the content of a block is none of the two forms that are taken.
[[noreturn]] void RefusePublic(const Bytes& content) {
  const unsigned char* position = content.data();
  const KeyPtr key(d2i_PUBKEY(nullptr, &position, static_cast<long>(content.size())));
  Require(key != nullptr, "it is no key that can be read");
  CheckCurve(key.get());
  std::size_t length = 0;
  const bool hasPoint =
      EVP_PKEY_get_octet_string_param(key.get(), OSSL_PKEY_PARAM_PUB_KEY, nullptr, 0, &length) == 1 &&
      length > 1;
  throw KeyError(hasPoint ? "its point is neither in the uncompressed nor in the compressed form"
                          : "its point is the point at infinity");
}

/// Whether private and public part belong together.
bool Fits(EVP_PKEY* key) {
  const KeyContextPtr context(EVP_PKEY_CTX_new_from_pkey(nullptr, key, nullptr));
  return context != nullptr && EVP_PKEY_public_check(context.get()) == 1 &&
         EVP_PKEY_private_check(context.get()) == 1 && EVP_PKEY_pairwise_check(context.get()) == 1;
}

/// s or the order less s, whichever is lower.
BignumPtr LowerS(const BIGNUM* s) {
  const BignumPtr order(BN_bin2bn(kOrder, kNumberLength, nullptr));
  BignumPtr other(BN_new());
  if (order == nullptr || other == nullptr || BN_sub(other.get(), order.get(), s) != 1) {
    return nullptr;
  }
  return BignumPtr(BN_cmp(s, other.get()) > 0 ? other.release() : BN_dup(s));
}

}  // namespace

Key::Key(EVP_PKEY* key) : key_(key) {}

Key Key::Generate() {
  const ErrorMark mark;
  EVP_PKEY* key = EVP_EC_gen(kCurve);
  Require(key != nullptr, "no key can be generated");
  return Key(key);
}

Key Key::FromPrivatePem(std::string_view pem) {
  const ErrorMark mark;
  Key key(PEM_read_bio_PrivateKey(OpenText(pem).get(), nullptr, NoPassword, nullptr));
  Require(key.key_ != nullptr, "it is no private key in PEM form");
  CheckCurve(key.key_.get());
  Require(Fits(key.key_.get()), "its private and its public part don't fit");
  return key;
}

Key Key::FromPublicPem(std::string_view pem) {
  const ErrorMark mark;
  const BioPtr text = OpenText(pem);
  const std::optional<Block> block = NextBlock(text.get());
  Require(block && !block->isEncrypted, "it is no key in PEM form");
  Require(!IsPrivate(block->name), "it is a private key, a public one is wanted");
  Require(block->name == PEM_STRING_PUBLIC, "it is no public key, but something else in PEM form");
  Require(!NextBlock(text.get()), "it is more than one key");
  const Bytes& content = block->content;
  if (!IsUncompressed(content) && !IsCompressed(content)) {
    RefusePublic(content);
  }
  const unsigned char* position = content.data();
  Key key(d2i_PUBKEY(nullptr, &position, static_cast<long>(content.size())));
  Require(key.key_ != nullptr, "its point doesn't lie on the curve P-256");
  return key;
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
  const BignumPtr s = LowerS(ECDSA_SIG_get0_s(numbers.get()));
  Signature signature{};
  Require(
      s != nullptr &&
          BN_bn2binpad(ECDSA_SIG_get0_r(numbers.get()), signature.data(), kNumberLength) == kNumberLength &&
          BN_bn2binpad(s.get(), signature.data() + kNumberLength, kNumberLength) == kNumberLength,
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
