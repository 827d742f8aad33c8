#pragma once

#include <openssl/evp.h>

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace softdevice {

class KeyError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A signature as r and s, 32 bytes each, big-endian.
using Signature = std::array<std::uint8_t, 64>;

/// A key on the curve P-256 that signs and verifies with ECDSA and SHA-256. Operations throw `KeyError`.
class Key {
 public:
  static Key Generate();
  static Key FromPrivatePem(std::string_view pem);
  static Key FromPublicPem(std::string_view pem);

  [[nodiscard]] std::string PrivatePem() const;
  [[nodiscard]] std::string PublicPem() const;

  [[nodiscard]] Signature Sign(std::span<const std::uint8_t> message) const;
  [[nodiscard]] bool Verify(std::span<const std::uint8_t> message,
                            std::span<const std::uint8_t, 64> signature) const;

 private:
  struct Free {
    void operator()(EVP_PKEY* key) const noexcept { EVP_PKEY_free(key); }
  };

  explicit Key(EVP_PKEY* key);

  std::unique_ptr<EVP_PKEY, Free> key_;
};

}  // namespace softdevice
