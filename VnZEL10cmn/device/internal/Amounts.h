#pragma once

#include <cstdint>

#include "VnZEL10cmn/device/ZelTags.h"
#include "VnZEL10cmn/errors/internal/Refusal.h"
#include "VnZEL10cmn/types/ByteArray.h"
#include "VnZEL10cmn/types/Currency.h"

namespace VnZEL10cmn::internal {

// Readers and writers of money, which move `start` behind the record at it. A reader wants its tag.

/// An amount in cents with its sign, in up to 6 bytes, or 8 in the long form.
MaybeRefusal WriteAmount(ByteArray& buffer, std::int32_t& start, ZelTags tag, Currency amount, bool longVal);
MaybeRefusal ReadAmount(const ByteArray& buffer, std::int32_t& start, ZelTags tag, Currency& result,
                        bool longVal);

/// A whole number without a sign, in up to 6 bytes.
MaybeRefusal WritePositive(ByteArray& buffer, std::int32_t& start, ZelTags tag, Currency value);
MaybeRefusal ReadPositive(const ByteArray& buffer, std::int32_t& start, ZelTags tag, Currency& result);

}  // namespace VnZEL10cmn::internal
