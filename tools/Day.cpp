#include "tools/Day.h"

#include <algorithm>

#include "tools/ExitStatus.h"
#include "tools/Report.h"
#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::Currency;

namespace {

constexpr std::int32_t kClassCount = 6;

// The places of the containers that hold no VAT class.
constexpr std::size_t kThirdParty = 6;
constexpr std::size_t kDeliveryNotes = 7;
constexpr std::size_t kTraining = 8;

/// What the booking's third-party items cost, and whether it has any.
std::pair<Currency, bool> ThirdPartyTurnover(const clsZelTransAct& booking) {
  Currency sum;
  bool any = false;
  for (const auto& item : booking) {
    VnZEL10cmn::CurrencyArray prices = VnZEL10cmn::CurrencyArray::WithBounds(0, kClassCount - 1);
    bool isThirdParty = false;
    if (item->GetPrices(prices, isThirdParty) && isThirdParty) {
      any = true;
      for (const Currency price : prices)
        sum += price;
    }
  }
  return {sum, any};
}

}  // namespace

void DaySummary::Row::Add(Currency moreTurnover, Currency moreVat) {
  ++bookings;
  turnover += moreTurnover;
  vat += moreVat;
}

void DaySummary::Add(clsZelTransAct& booking) {
  const bool isSale = !booking.IsTraining() && !booking.IsDeliveryNote();
  Currency whole;
  Currency wholeVat;
  for (std::int32_t vatClass = 1; vatClass <= kClassCount; ++vatClass) {
    Currency turnover;
    Currency vat;
    Currency rate;
    booking.GetContainerValues(vatClass, turnover, vat, rate);
    const auto place = static_cast<std::size_t>(vatClass - 1);
    containers_[isSale ? place : booking.IsTraining() ? kTraining : kDeliveryNotes] += turnover;
    whole += booking.IsTaxExcl() ? turnover + vat : turnover;
    wholeVat += vat;
    if (isSale && (turnover != Currency() || rate != Currency())) {
      classes_[{vatClass, rate, booking.IsTaxExcl()}].Add(turnover, vat);
    }
  }
  if (isSale) {
    sales_.Add(whole, wholeVat);
    if (const auto [turnover, any] = ThirdPartyTurnover(booking); any) {
      thirdParty_.Add(turnover, Currency());
      containers_[kThirdParty] += turnover;
    }
  } else {
    (booking.IsTraining() ? training_ : deliveryNotes_).Add(whole, wholeVat);
  }
  const Currency number = booking.ZelRespSeqNr();
  firstNumber_ = bookings_ == 0 ? number : std::min(firstNumber_, number);
  lastNumber_ = std::max(lastNumber_, number);
  ++bookings_;
}

void DaySummary::ExpectClosing(const VnZEL10cmn::clsZelReport& closing) const {
  const auto expect = [](std::string_view what, Currency found, Currency expected, int decimals) {
    if (found != expected) {
      throw Failure(ExitStatus::NotRight, "the closing's " + std::string(what) + " is " +
                                              FormatDecimal(found, decimals) + ", the bookings have " +
                                              FormatDecimal(expected, decimals));
    }
  };
  expect("first sequence number", closing.TransSeqNrFirst(), firstNumber_, 0);
  expect("last sequence number", closing.TransSeqNrLast(), lastNumber_, 0);
  for (std::size_t i = 0; i < containers_.size(); ++i) {
    const auto container = closing.Container(static_cast<std::int32_t>(i) + 1);
    const auto tag = static_cast<std::uint8_t>(container->Tag());
    expect("turnover in '" + std::string(ContainerTitle(tag)) + "'", container->Turnover(), containers_[i],
           2);
  }
}

std::string DaySummary::ToText() const {
  constexpr std::size_t kTitleWidth = 36;
  constexpr std::size_t kCountWidth = 8;
  constexpr std::size_t kAmountWidth = 14;
  const std::string rule(kTitleWidth + kCountWidth + 2 * kAmountWidth, '-');
  const auto line = [](const std::string& title, const std::string& count, const std::string& turnover,
                       const std::string& vat) {
    return PadRight(title, kTitleWidth) + PadLeft(count, kCountWidth) + PadLeft(turnover, kAmountWidth) +
           PadLeft(vat, kAmountWidth) + "\n";
  };
  const auto row = [&line](const std::string& title, const Row& values) {
    return line(title, std::to_string(values.bookings), FormatDecimal(values.turnover, 2),
                FormatDecimal(values.vat, 2));
  };

  std::string text = line("VAT class, rate, prices", "bookings", "turnover", "VAT") + rule + "\n";
  for (const auto& [key, values] : classes_) {
    const char letter = "ABCDEF"[key.vatClass - 1];
    text += row(std::string(1, letter) + PadLeft(FormatDecimal(key.rate, 2), 8) + " %  " +
                    (key.taxExclusive ? "without tax" : "with tax"),
                values);
  }
  text += rule + "\n";
  text += row("Sales, with tax", sales_);
  // Their tax is that of the whole booking.
  text += line("  of these third-party business", std::to_string(thirdParty_.bookings),
               FormatDecimal(thirdParty_.turnover, 2), "-");
  text += row("Delivery notes (not in the above)", deliveryNotes_);
  text += row("Training (not in the above)", training_);
  text += rule + "\n";
  text += PadRight("All bookings", kTitleWidth) + PadLeft(std::to_string(bookings_), kCountWidth) +
          "   sequence numbers " + FormatDecimal(firstNumber_, 0) + " to " + FormatDecimal(lastNumber_, 0) +
          "\n";
  return text;
}

}  // namespace zel
