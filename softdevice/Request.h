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
  Moment moment;                ///< none where the request has none
  BookingRequest booking;       ///< of `SignBooking`
  std::int32_t firstMonth = 0;  ///< of `ReportSpan`: year * 100 + month
  std::int32_t lastMonth = 0;   ///< of `ReportSpan`, not before the first
  std::string transportPin;     ///< of `ReportActivate`: six digits, right or wrong
};

/// Checks a request from the first byte to the last and throws `Refusal` at the first fault.
Request ReadRequest(Command command, ByteView bytes);

/// Refuses a time that readers take for none, or that lies beyond what they can hold: at or before 1 January 2000,
/// 00:00, or after 2099. A clock that was never set, or a battery that ran out, shows such times.
void CheckMoment(const Request& request);

/// Whether it signs a booking or data, and takes the next sequence number.
constexpr bool IsTransaction(Command command) {
  return command >= Command::SignBooking && command <= Command::SignDataAndTime;
}

}  // namespace softdevice
