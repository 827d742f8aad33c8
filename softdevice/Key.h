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
  /// A key that can sign, whose private and public part fit together.
  static Key FromPrivatePem(std::string_view pem);
  /// A key that can only verify: one SubjectPublicKeyInfo that names the curve, and whose point is uncompressed
  /// or compressed. Text around it doesn't matter; a second key or anything else in PEM form does.
  static Key FromPublicPem(std::string_view pem);

  [[nodiscard]] std::string PrivatePem() const;
  [[nodiscard]] std::string PublicPem() const;

  /// Of the two values of s that fit, the signature has the lower one.
  [[nodiscard]] Signature Sign(std::span<const std::uint8_t> message) const;
  /// Both values of s verify.
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
