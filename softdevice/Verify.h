#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace softdevice {

/// What a verification found.
struct Verdict {
  bool ok = false;     ///< whether everything belongs together
  std::string reason;  ///< the first thing that is wrong, in one line; empty when `ok`
  /// Whether it is the public key that is wrong: then nothing is said about request and response.
  bool badKey = false;
};

class Key;

/// The public key of a device, as PEM text (`Device::PublicKeyPem`) or read from it once for many verifications;
/// several threads may use it at a time. Text that is no such key makes every verdict say so.
///
/// The text is one SubjectPublicKeyInfo ("-----BEGIN PUBLIC KEY-----") that names the curve P-256, and whose point
/// is in the uncompressed or in the compressed form; text before and behind it doesn't matter. Not taken are
/// other curves and other kinds of keys, curves whose parameters are spelled out, the hybrid form, the point at
/// infinity, points beside the curve, private keys, certificates, and a second key behind the first.
class PublicKey {
 public:
  template <std::convertible_to<std::string_view> Pem>
  PublicKey(const Pem& pem) : PublicKey(std::string_view(pem)) {}
  PublicKey(std::string_view pem);

  /// Why the text is no such key, in one line; empty when it is one. All verdicts with a bad key say it behind
  /// "the public key can't be used: ".
  [[nodiscard]] const std::string& Error() const noexcept { return error_; }

  /// The key. Throws `KeyError` when the text is none.
  [[nodiscard]] const Key& Value() const;

 private:
  std::shared_ptr<const Key> key_;
  std::string error_;
};

/// Whether `response` is the answer that the device with this public key gave to the booking request
/// `request`. Needs nothing but these three; any bytes end in a verdict. Nothing else that a
/// device signs passes for a booking.
[[nodiscard]] Verdict VerifyBooking(std::span<const std::uint8_t> request,
                                    std::span<const std::uint8_t> response, const PublicKey& publicKey);

/// The same for signed data, of all three kinds.
[[nodiscard]] Verdict VerifyData(std::span<const std::uint8_t> request,
                                 std::span<const std::uint8_t> response, const PublicKey& publicKey);

/// The same for closings, activations and deactivations. Reports that are not signed can't be verified, which is
/// what the verdict on them says.
[[nodiscard]] Verdict VerifyReport(std::span<const std::uint8_t> request,
                                   std::span<const std::uint8_t> response, const PublicKey& publicKey);

}  // namespace softdevice
