#include "softdevice/Digest.h"

#include <openssl/evp.h>

#include <memory>
#include <stdexcept>

namespace softdevice {

namespace {

struct Free {
  void operator()(EVP_MD* algorithm) const noexcept { EVP_MD_free(algorithm); }
};

/// Looked up once, which takes longer than a short digest.
const EVP_MD* Algorithm() {
  static const std::unique_ptr<EVP_MD, Free> algorithm(EVP_MD_fetch(nullptr, "SHA256", nullptr));
  return algorithm.get();
}

}  // namespace

DigestMessage& DigestMessage::Add(std::int64_t number) {
  for (int shift = 56; shift >= 0; shift -= 8) {
    bytes_.push_back(static_cast<std::uint8_t>(static_cast<std::uint64_t>(number) >> shift));
  }
  return *this;
}

DigestMessage& DigestMessage::Add(ByteView bytes) {
  Add(static_cast<std::int64_t>(bytes.size()));
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  return *this;
}

DigestMessage& DigestMessage::Add(std::string_view text) {
  Add(static_cast<std::int64_t>(text.size()));
  bytes_.insert(bytes_.end(), text.begin(), text.end());
  return *this;
}

Digest DigestMessage::Sha256() const {
  Digest digest{};
  const EVP_MD* const algorithm = Algorithm();
  if (algorithm == nullptr ||
      EVP_Digest(bytes_.data(), bytes_.size(), digest.data(), nullptr, algorithm, nullptr) != 1) {
    throw std::runtime_error("its digests can't be made");
  }
  return digest;
}

}  // namespace softdevice
