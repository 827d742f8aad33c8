#pragma once

#include <array>
#include <cstdint>

#include "VnZEL10cmn/errors/VnObject.h"
#include "VnZEL10cmn/items/ZELVatClasses.h"
#include "VnZEL10cmn/types/Currency.h"
#include "VnZEL10cmn/types/Date.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// The six VAT rates, in percent, of one period of validity. New: 19, 7, 0, 0, 10, 5.5 from 1 January 2007 to
/// 31 December 2099.
class VNZEL10CMN_API clsZelVatItem : public VnObject {
 public:
  /// The first day for which rates can be valid, its first second.
  static Date EarliestDate();
  /// The last day for which rates can be valid, its last second.
  static Date LatestDate();

  /// The rates named above.
  clsZelVatItem();
  ~clsZelVatItem();

  /// The rate number 1 to 6; 0 for other numbers.
  Currency VATrate(std::int32_t Index) const noexcept;
  /// Sets the rate number 1 to 6; other numbers and negative rates are ignored.
  void VATrate(std::int32_t Index, Currency Value) noexcept;

  /// The rate of a VAT class; throws std::out_of_range for a class outside 0 to 5.
  Currency VatRate2(ZELVatClasses VatClass) const;
  /// Sets the rate of a VAT class, ignoring negative rates; throws std::out_of_range for a class outside 0 to
  /// 5.
  void VatRate2(ZELVatClasses VatClass, Currency Value);

  /// First moment of validity.
  Date ValidFrom() const noexcept;

  /// Last moment of validity.
  Date ValidUpTo() const noexcept;

  /// Sets the period of validity, whole days, in either order. `From` is kept within 2000 to 2099; `UpTo`
  /// before 2000 becomes 1 January 2000. A date beyond the year 9999 is a
  /// run-time fault (6); the period then stays.
  bool SetDates(Date From = EarliestDate(), Date UpTo = LatestDate());

  /// The VAT of a price at the rate number `VatIdx` (other numbers: rate 0), rounded commercially to two
  /// decimals. `IsNetto`: the price is a net amount and the VAT comes on top, otherwise it is contained.
  /// An overflow is a run-time fault (6); the results then keep their values.
  bool CalcVat(Currency Price, std::int32_t VatIdx, Currency& VatValue, Currency* PriceNet = nullptr,
               Currency* PriceGross = nullptr, bool IsNetto = false);

 private:
  std::array<Currency, 6> rates_;
  Date validFrom_;
  Date validUpTo_;
};

}  // namespace VnZEL10cmn
