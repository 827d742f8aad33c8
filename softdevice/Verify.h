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
/// `Device::PublicKeyPem` gives it.
[[nodiscard]] Verdict VerifyBooking(std::span<const std::uint8_t> request,
                                    std::span<const std::uint8_t> response, std::string_view publicKeyPem);

}  // namespace softdevice
