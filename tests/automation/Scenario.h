#pragma once

#include <iosfwd>

#include "VnZEL10cmn/types/ByteArray.h"

/// What is done in the same way by the C++ library and through the automation server, with everything that is seen
/// written down: both have to write the same text, byte for byte.
namespace scenario {

// The device's commands.
inline constexpr int kSignBooking = 1;
inline constexpr int kSignDataOnly = 2;
inline constexpr int kSignDataAndTpId = 3;
inline constexpr int kSignDataAndTime = 4;
inline constexpr int kReportSigned = 5;
inline constexpr int kReportUnsigned = 6;
inline constexpr int kReportSpan = 7;

/// Where the device's answers come from.
class Answers {
 public:
  /// The answer to a request; empty when the device refuses it.
  virtual VnZEL10cmn::ByteArray Next(const VnZEL10cmn::ByteArray& request, int command) = 0;

 protected:
  ~Answers() = default;
};

void Run(std::ostream& out, Answers& answers);

}  // namespace scenario
