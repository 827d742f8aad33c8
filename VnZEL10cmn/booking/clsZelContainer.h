#pragma once

#include <cstdint>

#include "VnZEL10cmn/device/ZelTags.h"
#include "VnZEL10cmn/errors/VnObject.h"
#include "VnZEL10cmn/types/ByteArray.h"
#include "VnZEL10cmn/types/Currency.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// The turnover of one VAT class, of third-party business, of delivery notes or of training bookings, in a
/// request or a response: one device record whose value is a run of records.
class VNZEL10CMN_API clsZelContainer : public VnObject {
 public:
  /// An empty container without a tag.
  clsZelContainer();
  ~clsZelContainer();

  /// The container's tag, `Container_Vat_1` to `Container_Training`, or none.
  ZelTags Tag() const noexcept;
  /// Sets the tag.
  void Tag(ZelTags Value) noexcept;

  /// Whether amounts are read in the long form of responses.
  bool IsZelResponse() const noexcept;
  /// Selects the form of amounts.
  void IsZelResponse(bool Value) noexcept;

  /// The turnover.
  Currency Turnover() const noexcept;

  /// The part of negative prices, as a positive amount.
  Currency TurnoverNeg() const noexcept;
  /// Sets the negative turnover.
  void TurnoverNeg(Currency Value) noexcept;

  /// The turnover of third-party business.
  Currency TurnoverThrd() const noexcept;
  /// Sets the third-party turnover.
  void TurnoverThrd(Currency Value) noexcept;

  /// The VAT.
  Currency VAT() const noexcept;
  /// Sets the VAT.
  void VAT(Currency Value) noexcept;

  /// The VAT rate in percent.
  Currency VATrate() const noexcept;
  /// Sets the VAT rate.
  void VATrate(Currency Value) noexcept;

  /// The turnover counter; always 0.
  Currency CounterTO() const noexcept;

  /// Whether a response says that the turnover overflowed.
  bool OverflowTO() const noexcept;

  /// Whether a response says that the VAT rate changed.
  bool VATchange() const noexcept;

  /// Writes the container's record at `Start` and moves `Start` behind it; nothing at all when turnover and
  /// negative turnover are 0. `Data` is not enlarged and must reach to `Start` + 28. Fails with 9304 without a tag, 9204 for
  /// a short buffer, 9202 for a negative lower bound, 9207 for an amount of more than 11 digits or one that rounds to 0
  /// cents, 9203 for a VAT rate outside 0 to 99.99; 9 for a `Start` below the array. `Start` is then unchanged, and
  /// `Data` may hold a part of the record.
  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start);

  /// Resets the container and reads it from the record at `Start`; without a tag it takes that of the record.
  /// Fails with 9204 for another tag and for a record that is cut off or reaches beyond the container, 9305 for a
  /// record that has no place in a container, 9202 for a negative lower bound, 9205 for a record without length byte,
  /// 9207, 9208 or 9209 for a damaged value; 9 for a `Start` outside the array or on its last byte. `Start` is then
  /// unchanged, and the container holds what was read before.
  bool BinaryDataSet(const ByteArray& Data, std::int32_t& Start);

  /// Resets amounts and flags; tag and form stay. Always True.
  bool Clear();

 private:
  friend struct ContainerTurnover;

  bool WriteRecord(ByteArray& data, std::int32_t& start);
  bool ReadRecord(const ByteArray& data, std::int32_t& start);

  ZelTags tag_{};
  bool isZelResponse_ = false;
  bool overflow_ = false;
  bool vatChange_ = false;
  Currency turnoverThrd_;
  Currency turnover_;
  Currency turnoverNeg_;
  Currency vat_;
  Currency vatRate_;
  Currency counter_;
};

}  // namespace VnZEL10cmn
