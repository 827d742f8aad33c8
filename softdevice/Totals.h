#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "softdevice/BookingRequest.h"
#include "softdevice/Database.h"
#include "softdevice/Digest.h"
#include "softdevice/Records.h"

/// The totals of a device file: by month and container, and by container since the last closing.
namespace softdevice {

/// Stands for the month in the totals since the last closing.
inline constexpr std::int32_t kOpen = 0;

/// The totals of one month, in the order of their containers; or those since the last closing.
using MonthTotals = std::vector<Total>;

/// What a booking adds to the totals of its month, or with `kOpen` to those since the last closing.
MonthTotals Distribute(const BookingRequest& booking, std::int32_t month);

/// Adds to totals of the same month what was booked later.
void Add(MonthTotals& sums, const MonthTotals& later);

/// All totals in the order of month and container, and those of one month alone. Throws `Damage` where a value is
/// none that was written.
std::vector<Total> ReadTotals(const Database& database);
MonthTotals ReadMonth(const Database& database, std::int32_t month);

/// Writes those of `totals` whose containers occur in `changed`.
void WriteTotals(const Database& database, const MonthTotals& totals, const MonthTotals& changed);
/// Begins the totals since the last closing anew.
void ClearOpenTotals(const Database& database);

/// The part of a digest's message that stands for totals.
void AddTotals(DigestMessage& message, std::span<const Total> totals);
/// The digest of the totals of all months but these two.
Digest DigestOfOthers(std::span<const Total> totals, std::int32_t month, std::int32_t otherMonth);

/// Writes all nine containers, each with the sum of its totals.
void AppendContainers(Bytes& out, std::span<const Total> totals);

}  // namespace softdevice
