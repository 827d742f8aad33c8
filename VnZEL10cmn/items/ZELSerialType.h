#pragma once

#include <cstdint>

namespace VnZEL10cmn {

/// What the binary exchange of a booking, a report or a data record carries.
enum class ZELSerialType : std::int32_t {
  ObjectData = 0,  ///< the object itself
  ItemList = 1,    ///< the item list
  Request = 2,     ///< the request to the device
  ItemHash2 = 2,   ///< a second name of `Request`
  Response = 3,    ///< the device's response
  ItemHash = 4,    ///< the item hash
  BinaryData = 6,  ///< free data
};

}  // namespace VnZEL10cmn
