#pragma once

#include <cstdint>

namespace VnZEL10cmn {

/// The kinds of reports.
enum class ZelReportType : std::int32_t {
  Undefined = 0,      ///< not said; built as `Signed`
  Signed = 1,         ///< signed report, over report items or not
  Unsigned = 2,       ///< report without signature
  Span = 3,           ///< report over a span of months
  ActivateZEL = 4,    ///< activation of the device
  DeactivateZEL = 5,  ///< deactivation of the device
};

}  // namespace VnZEL10cmn
