#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/VnZEL10cmn.h"

/// A sale as a JSON file describes it; docs/sale-format.md is written for those who make such files.
namespace zel {

struct SaleItem {
  VnZEL10cmn::Currency quantity = 1;
  std::string unit;
  std::string name;
  bool discountOrSurcharge = false;
  bool voucher = false;
  bool thirdParty = false;
  std::array<VnZEL10cmn::Currency, 6> prices{};  ///< of the whole line, per VAT class
};

struct Sale {
  std::optional<VnZEL10cmn::Date> date;  ///< none: the moment of signing
  std::string operatorName;
  std::string profile;
  std::int32_t currency = 978;
  bool taxExclusive = false;
  bool training = false;
  bool deliveryNote = false;
  std::vector<SaleItem> items;
};

/// A date and time such as 2026-11-21T08:05, after 2000-01-01T00:00 and not after 2099-12-31T23:59. Throws
/// `Failure` (NotRight) that says what is wrong with the text.
VnZEL10cmn::Date ParseDateTime(const std::string& text);

/// Throws `Failure` (NotRight) that names the member at fault.
Sale ReadSale(std::string_view json);

/// Makes an empty booking the booking of this sale, with the library's own VAT list. Throws `Failure`
/// (NotRight) where the library refuses an item.
void FillBooking(const Sale& sale, VnZEL10cmn::clsZelTransAct& booking);

/// Makes the sale's items those of a report. Throws `Failure` (NotRight) where the library refuses an item.
void FillReport(const Sale& sale, VnZEL10cmn::clsZelReport& report);

}  // namespace zel
