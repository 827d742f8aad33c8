#pragma once

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

/// What the device wants to know of a booking besides its bytes.
struct BookingRequest {
  std::int32_t month = 0;  ///< year * 100 + month
  bool training = false;
  bool deliveryNote = false;
  std::vector<BookedContainer> containers;
};

/// Checks a booking request from the first byte to the last and throws `Refusal` at the first fault.
BookingRequest ReadBookingRequest(ByteView request);

}  // namespace softdevice
