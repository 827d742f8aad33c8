#pragma once

#include <cstddef>

#include "VnZEL10cmn/items/ZELVatClasses.h"
#include "VnZEL10cmn/types/RunTimeFaults.h"

namespace VnZEL10cmn::internal {

/// The value of a VAT class in an array that begins with those of the classes; throws std::out_of_range outside it.
template <class Array>
auto& OfClass(Array& values, ZELVatClasses vatClass) {
  const auto index = static_cast<std::size_t>(vatClass);
  if (index >= values.size()) {
    ThrowOutOfRange();
  }
  return values[index];
}

}  // namespace VnZEL10cmn::internal
