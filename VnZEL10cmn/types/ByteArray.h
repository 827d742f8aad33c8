#pragma once

#include <cstdint>

#include "VnZEL10cmn/types/BoundedArray.h"
#include "VnZEL10cmn/types/Currency.h"

namespace VnZEL10cmn {

/// A byte buffer: requests, responses, digests.
using ByteArray = BoundedArray<std::uint8_t>;

/// Prices per VAT class.
using CurrencyArray = BoundedArray<Currency>;

}  // namespace VnZEL10cmn
