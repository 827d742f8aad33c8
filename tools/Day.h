#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <map>
#include <string>

#include "VnZEL10cmn/VnZEL10cmn.h"

namespace zel {

/// The totals of signed bookings, such as those of a day at a till.
class DaySummary {
 public:
  /// Adds a booking that was read from its document.
  void Add(VnZEL10cmn::clsZelTransAct& booking);

  /// Compares the bookings' turnover with that of a closing, container by container: six VAT classes,
  /// third-party business, delivery notes, training. Throws `Failure` (NotRight) that names the first that
  /// differs, or the sequence numbers where they do.
  void ExpectClosing(const VnZEL10cmn::clsZelReport& closing) const;

  /// The table, with a line end after each row.
  [[nodiscard]] std::string ToText() const;

 private:
  struct Row {
    std::int32_t bookings = 0;
    VnZEL10cmn::Currency turnover;
    VnZEL10cmn::Currency vat;

    void Add(VnZEL10cmn::Currency moreTurnover, VnZEL10cmn::Currency moreVat);
  };

  /// Prices with and without the tax, or under different rates, are not added up.
  struct Key {
    std::int32_t vatClass;  ///< 1 to 6
    VnZEL10cmn::Currency rate;
    bool taxExclusive;

    auto operator<=>(const Key&) const = default;
  };

  std::map<Key, Row> classes_;
  /// By container, with or without tax as the bookings have it, which is how a device adds up.
  std::array<VnZEL10cmn::Currency, 9> containers_{};
  Row sales_;  ///< tax included
  Row thirdParty_;
  Row deliveryNotes_;
  Row training_;
  std::int32_t bookings_ = 0;
  VnZEL10cmn::Currency firstNumber_;
  VnZEL10cmn::Currency lastNumber_;
};

}  // namespace zel
