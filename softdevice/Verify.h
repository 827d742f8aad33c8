#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace softdevice {

/// What a verification found.
struct Verdict {
  bool ok = false;     ///< whether everything belongs together
  std::string reason;  ///< the first thing that is wrong, in one line; empty when `ok`
};

/// Whether `response` is the answer that the device with this public key gave to the booking request
/// `request`. Needs nothing but these three; any bytes end in a verdict. The key is PEM text as
/// `Device::PublicKeyPem` gives it. Nothing else that a device signs passes for a booking.
[[nodiscard]] Verdict VerifyBooking(std::span<const std::uint8_t> request,
                                    std::span<const std::uint8_t> response, std::string_view publicKeyPem);

/// The same for signed data, of all three kinds.
[[nodiscard]] Verdict VerifyData(std::span<const std::uint8_t> request,
                                 std::span<const std::uint8_t> response, std::string_view publicKeyPem);

/// The same for closings, activations and deactivations. Reports that are not signed can't be verified, which is
/// what the verdict on them says.
[[nodiscard]] Verdict VerifyReport(std::span<const std::uint8_t> request,
                                   std::span<const std::uint8_t> response, std::string_view publicKeyPem);

}  // namespace softdevice
