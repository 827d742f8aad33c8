#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/items/IVnZelItem.h"
#include "VnZEL10cmn/items/ZELSerialType.h"
#include "VnZEL10cmn/items/ZELVatClasses.h"
#include "VnZEL10cmn/types/Currency.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

class clsZelItemPrint;

/// A line of a sale: quantity, unit, name, three flags and up to six prices, one per VAT class. A price is
/// that of the whole line. Fields are not written while the item can't be edited, prices are.
class VNZEL10CMN_API clsZelItemCash : public IVnZelItem,
                                      public std::enable_shared_from_this<clsZelItemCash>,
                                      public VnObject {
 public:
  /// Quantity 1, everything else empty.
  clsZelItemCash();
  ~clsZelItemCash() override;

  /// The item's identity, 36 characters; empty for good if the system had nothing to make one from when it
  /// was asked for first.
  std::string InstanceID() override;
  /// The item's own error object.
  clsVnError& ErrorObject() override;
  /// The log file attached, maybe none.
  std::shared_ptr<clsVnLogFile> LogHandler() override;
  /// The same for an item that is not to be changed.
  std::shared_ptr<clsVnLogFile> LogHandler() const override;
  /// Attaches a log file, or none.
  void LogHandler(std::shared_ptr<clsVnLogFile> Value) override;
  /// Whether the error object holds an error.
  bool HasError() override;

  /// Whether the fields can be written.
  bool CanEdit() const noexcept;

  /// The quantity, never 0.
  Currency Quantity() const noexcept;
  /// Sets the quantity; 0 counts as 1.
  void Quantity(Currency Value) noexcept;

  /// The unit.
  const std::string& Unit() const noexcept;
  /// Sets the unit, trimmed.
  void Unit(std::string_view Value);

  /// The name.
  const std::string& Name() const noexcept;
  /// Sets the name, trimmed.
  void Name(std::string_view Value);

  /// Whether the line is a discount or surcharge.
  bool DiscSurc() const noexcept;
  /// Marks a discount or surcharge.
  void DiscSurc(bool Value) noexcept;

  /// Whether the line is a voucher.
  bool Voucher() const noexcept;
  /// Marks a voucher.
  void Voucher(bool Value) noexcept;

  /// Whether the line is third-party business.
  bool ThirdParty() const noexcept;
  /// Marks third-party business.
  void ThirdParty(bool Value) noexcept;

  /// The price number 1 to 6; 0 for other numbers.
  Currency Price(std::int32_t Index) const noexcept;
  /// Sets the price number 1 to 6; other numbers are ignored.
  void Price(std::int32_t Index, Currency Value) noexcept;

  /// The price in a VAT class; throws std::out_of_range for a class outside 0 to 5.
  Currency Price2(ZELVatClasses VatClass) const;
  /// Sets the price in a VAT class; throws std::out_of_range for a class outside 0 to 5.
  void Price2(ZELVatClasses VatClass, Currency Value);

  /// Sets the print engine behind `ToString`; none brings back the default one.
  void PrintEngine(std::shared_ptr<clsZelItemPrint> Value);

  /// Sets all fields. Fails with 9001, changing nothing, when the item can't be edited or the name is empty.
  bool SetItemData(Currency Quantity, std::string_view Name, std::string_view Unit = {}, Currency Price1 = 0,
                   Currency Price2 = 0, Currency Price4 = 0, bool DiscSurch = false, bool Voucher = false,
                   bool ThirdParty = false, Currency Price5 = 0, Currency Price6 = 0, Currency Price3 = 0);

  /// Writes the item's records at `Start` and moves `Start` behind them; `Data` is not enlarged. Fails with
  /// 9302 without a name, 9203 for a quantity of 12 characters or more; a record that can't be written fails
  /// with number 0, user-defined False and the text "Objekt: ..."; `Start` then stands behind the last record
  /// written. Failures are not logged.
  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start) override;
  /// The same; `SerialType`, `DataStr` and `DataLen` have no influence.
  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start, ZELSerialType SerialType,
                     std::string_view DataStr = {}, std::int32_t DataLen = 0);

  /// Resets the item and reads it from the records at `Start`, up to the next quantity record or the end. A single byte
  /// behind the last record is left alone. Fails with 9204 when a record is cut off, 9305 for a tag that has no place in
  /// an item, and for a damaged field with 9202 (negative lower bound), 9206, 9207, 9208 or 9209; run-time faults are 9
  /// for a `Start` outside the array or on its last byte, 13 for a quantity that is no number and 6 for one that is too
  /// large. `Start` is then unchanged and the fields hold what was read.
  bool BinaryDataSet(const ByteArray& Data, std::int32_t& Start) override;

  /// Resets quantity, unit, name, flags and prices. Always True.
  bool Clear() override;

  /// Fills the prices of the VAT classes 0 to 5 and the third-party mark. Fails with 9001 unless `Prices`
  /// has the bounds 0 and 5; `IsThrdPrt` is set all the same.
  bool GetPrices(CurrencyArray& Prices, bool& IsThrdPrt) override;

  /// The item as one line of a receipt, or one line per price.
  std::string ToString() override;

 private:
  friend struct CashItemAccess;

  std::string IdentityForErrors() override;
  bool MakeIdentity();
  bool WriteRecords(ByteArray& data, std::int32_t& start);
  bool ReadRecords(const ByteArray& data, std::int32_t& start);

  bool canEdit_ = true;
  bool discSurc_ = false;
  bool voucher_ = false;
  bool thirdParty_ = false;
  bool hasId_ = false;
  bool isWithoutId_ = false;  ///< it was asked for when the system had none to give
  std::uint32_t lists_ = 0;
  Currency quantity_ = 1;
  std::array<std::uint8_t, 16> id_{};
  std::string unit_;
  std::string name_;
  std::array<Currency, 6> prices_{};
  std::shared_ptr<clsZelItemPrint> printEngine_;
};

}  // namespace VnZEL10cmn
