#pragma once

#include <cstdint>
#include <string>

#include "softdevice/BookingRequest.h"
#include "softdevice/Records.h"

namespace softdevice {

/// A request that has been checked, with what the device wants to know of it besides its bytes.
struct Request {
  Command command = Command::SignBooking;
  ByteView bytes;
  BookingRequest booking;       ///< of `SignBooking`
  std::int32_t firstMonth = 0;  ///< of `ReportSpan`: year * 100 + month
  std::int32_t lastMonth = 0;   ///< of `ReportSpan`, not before the first
  std::string transportPin;     ///< of `ReportActivate`: six digits, right or wrong
};

/// Checks a request from the first byte to the last and throws `Refusal` at the first fault.
Request ReadRequest(Command command, ByteView bytes);

/// Whether it signs a booking or data, and takes the next sequence number.
constexpr bool IsTransaction(Command command) {
  return command >= Command::SignBooking && command <= Command::SignDataAndTime;
}

}  // namespace softdevice
