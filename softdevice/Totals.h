#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "softdevice/BookingRequest.h"
#include "softdevice/Database.h"
#include "softdevice/Records.h"

/// The totals of a device file: by month and container, and by container since the last closing.
namespace softdevice {

/// Adds a booking to the totals of its month and to those since the last closing.
void AddToTotals(const Database& database, const BookingRequest& booking);

/// By month and container, of the months from `first` to `last` (year * 100 + month).
std::vector<Total> ReadMonths(const Database& database, std::int64_t first, std::int64_t last);
/// By container, with month 0.
std::vector<Total> ReadOpenTotals(const Database& database);
/// Begins the totals since the last closing anew.
void ClearOpenTotals(const Database& database);

/// Writes all nine containers, each with the sum of its totals.
void AppendContainers(Bytes& out, std::span<const Total> totals);

}  // namespace softdevice
