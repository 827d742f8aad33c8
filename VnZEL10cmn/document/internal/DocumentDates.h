#pragma once

#include "VnZEL10cmn/types/Date.h"

/// The dates that documents may have.
namespace VnZEL10cmn::internal {

/// 1 January 2000, 0:00:00.
Date EarliestDate();

/// 31 December 2099, 23:59:59.
Date LatestDate();

/// A date kept within these bounds.
Date WithinRange(Date date);

/// Whether a date is one of the bounds: such a request takes the present time.
bool IsUndated(Date date);

/// The day of one date and the time of day of another.
Date Combine(Date day, Date time);

}  // namespace VnZEL10cmn::internal
