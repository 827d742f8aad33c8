#pragma once

#include <compare>
#include <cstdint>
#include <vector>

#include "softdevice/Records.h"

namespace softdevice {

/// What one VAT container of a booking holds, in cents and hundredths of a percent.
struct BookedContainer {
  std::uint8_t tag = 0;
  std::int64_t turnover = 0;
  std::int64_t turnoverNegative = 0;
  std::int64_t vat = 0;
  std::int32_t vatRate = 0;
  bool hasThirdParty = false;
  std::int64_t thirdParty = 0;
};

/// When something is said to have happened.
struct Moment {
  std::int32_t date = 0;  ///< year * 10000 + month * 100 + day; 0 for none
  std::int32_t time = 0;  ///< hour * 100 + minute

  auto operator<=>(const Moment&) const = default;
};

/// What the device wants to know of a booking besides its bytes.
struct BookingRequest {
  Moment moment;
  bool training = false;
  bool deliveryNote = false;
  std::vector<BookedContainer> containers;

  /// Year * 100 + month.
  [[nodiscard]] std::int32_t Month() const noexcept { return moment.date / 100; }
};

/// Checks a booking request from the first byte to the last and throws `Refusal` at the first fault.
BookingRequest ReadBookingRequest(ByteView request);

}  // namespace softdevice
