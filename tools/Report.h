#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "softdevice/Device.h"

/// Reports as tables of 80 columns.
namespace zel {

/// What the report is, as its request and response tell: "Closing" and so on. A closing that ends the device's
/// life is one of a deactivated device.
std::string_view ReportTitle(const VnZEL10cmn::ByteArray& request, const VnZEL10cmn::clsZelReport& report);

/// A report that was read from request and response, with a line end after each row: who, when, what it covers,
/// how many items it has, the nine containers where the response has any, and the signature.
std::string ReportToText(const VnZEL10cmn::ByteArray& request, const VnZEL10cmn::ByteArray& response,
                         const VnZEL10cmn::clsZelReport& report, std::size_t itemCount);

/// A device's totals as the same table.
std::string TotalsToText(const std::vector<softdevice::Total>& totals);

/// What a container is called: 225 "A standard" to 233 "Training".
std::string_view ContainerTitle(std::uint8_t container);

}  // namespace zel
