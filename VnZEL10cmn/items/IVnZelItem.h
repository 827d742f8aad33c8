#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "VnZEL10cmn/errors/VnObject.h"
#include "VnZEL10cmn/types/ByteArray.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// A booking item as lists, bookings, reports and print engines see it. A host may bring its own classes. They may throw
/// what they like: the operation that called them fails, with 5 or the run-time number of a standard exception. While they
/// are asked for their records or prices they must not change the list that asks; that operation then fails.
class VNZEL10CMN_API IVnZelItem {
 public:
  virtual ~IVnZelItem() = default;

  /// The item's identity, unique among all items.
  virtual std::string InstanceID() = 0;

  /// The item's own error object.
  virtual clsVnError& ErrorObject() = 0;

  /// The log file attached, maybe none.
  virtual std::shared_ptr<clsVnLogFile> LogHandler() = 0;
  /// Attaches a log file, or none.
  virtual void LogHandler(std::shared_ptr<clsVnLogFile> Value) = 0;

  /// Writes the item's records at `Start`, the quantity first, and moves `Start` behind them.
  virtual bool BinaryDataGet(ByteArray& Data, std::int32_t& Start) = 0;

  /// Reads the item from the records at `Start`, up to the next item's quantity record or the end, and moves
  /// `Start` there.
  virtual bool BinaryDataSet(const ByteArray& Data, std::int32_t& Start) = 0;

  /// Resets the item. Always True.
  virtual bool Clear() = 0;

  /// Whether the item's error object holds an error.
  virtual bool HasError() = 0;

  /// Fills the prices of the VAT classes 0 to 5 into an array with these bounds, and whether the item is
  /// third-party business.
  virtual bool GetPrices(CurrencyArray& Prices, bool& IsThrdPrt) = 0;

  /// The item as a line of a receipt.
  virtual std::string ToString() = 0;
};

}  // namespace VnZEL10cmn
