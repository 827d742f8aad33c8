#include "VnZEL10cmn/booking/clsZelVatItem.h"

#include <utility>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/document/internal/DocumentDates.h"
#include "VnZEL10cmn/items/internal/VatClass.h"
#include "VnZEL10cmn/types/internal/Decimal.h"

namespace VnZEL10cmn {

namespace {

bool IsRateNumber(std::int32_t index) { return index >= 1 && index <= 6; }

/// The VAT contained in a gross price: the price less the price divided by 1 + rate, rounded commercially to
/// two decimals. The quotient is kept as a fraction, so nothing is rounded before the end.
Currency VatOfGross(Currency price, Currency rate) {
  const Currency divisor = Currency(1) + Currency(static_cast<double>(rate) / 100.0);
  const bool negative = price < Currency();
  const std::uint64_t bits = static_cast<std::uint64_t>(price.Scaled());
  const internal::Uint128 magnitude = negative ? ~bits + 1 : bits;
  const auto whole = static_cast<std::uint64_t>(divisor.Scaled());
  const auto fraction = whole - 10000;
  // In units of a cent: magnitude * fraction / (100 * whole), half up.
  constexpr std::uint64_t small = std::uint64_t{1} << 31;
  if (magnitude < small && whole < small) {
    const auto part = static_cast<std::uint64_t>(magnitude) * fraction;
    const std::uint64_t cents = (2 * part + 100 * whole) / (200 * whole);
    return internal::CurrencyFromMagnitude(negative, internal::Uint128{cents} * 100);
  }
  const internal::Uint128 cents =
      (2 * magnitude * fraction + internal::Uint128{100} * whole) / (internal::Uint128{200} * whole);
  return internal::CurrencyFromMagnitude(negative, cents * 100);
}

/// The VAT that comes on top of a net price, from double precision to four decimals to two.
Currency VatOfNet(Currency price, Currency rate) {
  const double factor = static_cast<double>(rate) / 100.0;
  const Currency raw(static_cast<double>(price) * factor);
  clsHelper01 helper;
  const Currency vat = helper.RoundCmrc(raw, 2);
  if (helper.HasError()) {
    internal::ThrowOverflow();
  }
  return vat;
}

}  // namespace

Date clsZelVatItem::EarliestDate() { return internal::EarliestDate(); }

Date clsZelVatItem::LatestDate() { return internal::LatestDate(); }

clsZelVatItem::clsZelVatItem()
    : VnObject("clsZelVatItem"),
      rates_{Currency(19), Currency(7), Currency(0), Currency(0), Currency(10), Currency::FromScaled(55000)},
      validFrom_(Date::FromCivil(2007, 1, 1)),
      validUpTo_(LatestDate()) {}

clsZelVatItem::~clsZelVatItem() = default;

Currency clsZelVatItem::VATrate(std::int32_t Index) const noexcept {
  return IsRateNumber(Index) ? rates_[static_cast<std::size_t>(Index - 1)] : Currency();
}

void clsZelVatItem::VATrate(std::int32_t Index, Currency Value) noexcept {
  if (IsRateNumber(Index) && Value >= Currency()) {
    rates_[static_cast<std::size_t>(Index - 1)] = Value;
  }
}

Currency clsZelVatItem::VatRate2(ZELVatClasses VatClass) const { return internal::OfClass(rates_, VatClass); }

void clsZelVatItem::VatRate2(ZELVatClasses VatClass, Currency Value) {
  Currency& rate = internal::OfClass(rates_, VatClass);
  if (Value >= Currency()) {
    rate = Value;
  }
}

Date clsZelVatItem::ValidFrom() const noexcept { return validFrom_; }

Date clsZelVatItem::ValidUpTo() const noexcept { return validUpTo_; }

bool clsZelVatItem::SetDates(Date From, Date UpTo) {
  return Run("SetDates", [&] {
    const Date earliest = EarliestDate();
    const Date latest = LatestDate();
    if (From < earliest) {
      From = earliest;
    } else if (From > latest) {
      From = latest;
    }
    // A late end is judged by the start, which by now is never late: it stays as it is.
    if (UpTo < earliest) {
      UpTo = earliest;
    }
    if (From > UpTo) {
      std::swap(From, UpTo);
    }
    const Date::Civil first = From.ToCivil();
    const Date::Civil last = UpTo.ToCivil();
    validFrom_ = Date::FromCivil(first.year, first.month, first.day);
    validUpTo_ = Date::FromCivil(last.year, last.month, last.day, 23, 59, 59);
    return true;
  });
}

bool clsZelVatItem::CalcVat(Currency Price, std::int32_t VatIdx, Currency& VatValue, Currency* PriceNet,
                            Currency* PriceGross, bool IsNetto) {
  return Run("CalcVat", [&] {
    const Currency rate = VATrate(VatIdx);
    const Currency vat = Price == Currency() ? Price
                         : IsNetto           ? VatOfNet(Price, rate)
                                             : VatOfGross(Price, rate);
    const Currency net = IsNetto ? Price : Price - vat;
    const Currency gross = IsNetto ? Price + vat : Price;
    VatValue = vat;
    if (PriceNet != nullptr) {
      *PriceNet = net;
    }
    if (PriceGross != nullptr) {
      *PriceGross = gross;
    }
    return true;
  });
}

}  // namespace VnZEL10cmn
