#include "softdevice/Totals.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace softdevice {

namespace {

constexpr std::size_t kContainers = tag::kContainerTraining - tag::kContainerVat1 + 1;

/// A column's value as the type that it was written from.
template <typename Value>
Value ValueAt(const Statement& row, int column) {
  const std::int64_t number = row.NumberAt(column);
  if (!std::in_range<Value>(number)) {
    throw Damage("a total is out of range");
  }
  return static_cast<Value>(number);
}

bool FlagAt(const Statement& row, int column) {
  const std::int64_t number = row.NumberAt(column);
  if (number != 0 && number != 1) {
    throw Damage("a total is out of range");
  }
  return number == 1;
}

Total ReadTotal(const Statement& row) {
  return {.month = ValueAt<std::int32_t>(row, 0),
          .container = ValueAt<std::uint8_t>(row, 1),
          .turnover = row.NumberAt(2),
          .turnoverNegative = row.NumberAt(3),
          .vat = row.NumberAt(4),
          .vatRate = ValueAt<std::int32_t>(row, 5),
          .bookings = ValueAt<std::uint32_t>(row, 6),
          .overflow = FlagAt(row, 7),
          .vatChanged = FlagAt(row, 8),
          .thirdParty = row.NumberAt(9)};
}

std::vector<Total> ReadRows(Statement rows) {
  std::vector<Total> totals;
  while (rows.Step()) {
    totals.push_back(ReadTotal(rows));
  }
  return totals;
}

/// A sum has at most 15 digits, the most that the long form of an amount takes.
void AddAmount(std::int64_t& sum, std::int64_t amount, bool& overflow) {
  constexpr std::int64_t kLimit = 1'000'000'000'000'000;
  const std::int64_t exact = sum % kLimit + amount % kLimit;
  overflow = overflow || sum / kLimit != 0 || amount / kLimit != 0 || exact / kLimit != 0;
  sum = exact % kLimit;
}

/// Adds what was booked later to what was booked before.
void Add(Total& sum, const Total& later) {
  sum.overflow = sum.overflow || later.overflow;
  sum.vatChanged = sum.vatChanged || later.vatChanged || (sum.bookings > 0 && sum.vatRate != later.vatRate);
  AddAmount(sum.turnover, later.turnover, sum.overflow);
  AddAmount(sum.turnoverNegative, later.turnoverNegative, sum.overflow);
  AddAmount(sum.vat, later.vat, sum.overflow);
  AddAmount(sum.thirdParty, later.thirdParty, sum.overflow);
  sum.vatRate = later.vatRate;
  sum.bookings += later.bookings;
}

void WriteTotal(const Database& database, const Total& total) {
  // The row stays where it is. Replacing it would take it out first, and might free a page of the file.
  database
      .Prepare(
          "INSERT INTO total VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"
          " ON CONFLICT (month, container) DO UPDATE SET turnover = excluded.turnover,"
          " turnover_negative = excluded.turnover_negative, vat = excluded.vat,"
          " vat_rate = excluded.vat_rate, bookings = excluded.bookings, overflow = excluded.overflow,"
          " vat_changed = excluded.vat_changed, third_party = excluded.third_party")
      .Bind(total.month)
      .Bind(total.container)
      .Bind(total.turnover)
      .Bind(total.turnoverNegative)
      .Bind(total.vat)
      .Bind(total.vatRate)
      .Bind(total.bookings)
      .Bind(total.overflow)
      .Bind(total.vatChanged)
      .Bind(total.thirdParty)
      .Step();
}

bool IsBefore(const Total& left, const Total& right) { return left.container < right.container; }

/// A training booking counts in the training container alone, a delivery note in the delivery note container
/// alone. Any other booking counts in its VAT containers, its third-party turnover in that container as well.
MonthTotals DistributeOverContainers(const BookingRequest& booking) {
  MonthTotals totals;
  Total whole{.bookings = 1};
  Total thirdParty{.container = tag::kContainerThirdParty, .bookings = 1};
  bool hasThirdParty = false;
  for (const BookedContainer& container : booking.containers) {
    whole.turnover += container.turnover;
    whole.turnoverNegative += container.turnoverNegative;
    whole.vat += container.vat;
    whole.thirdParty += container.thirdParty;
    hasThirdParty = hasThirdParty || container.hasThirdParty;
    thirdParty.turnover += container.thirdParty;
    thirdParty.turnoverNegative += container.thirdParty < 0 ? -container.thirdParty : 0;
    totals.push_back({.container = container.tag,
                      .turnover = container.turnover,
                      .turnoverNegative = container.turnoverNegative,
                      .vat = container.vat,
                      .vatRate = container.vatRate,
                      .bookings = 1,
                      .thirdParty = container.thirdParty});
  }
  if (booking.training || booking.deliveryNote) {
    whole.container = booking.training ? tag::kContainerTraining : tag::kContainerDeliveryNote;
    return {whole};
  }
  if (hasThirdParty) {
    totals.push_back(thirdParty);
  }
  return totals;
}

void AppendFlag(Bytes& out, std::uint8_t tag, bool present) {
  if (present) {
    AppendRecord(out, tag, {});
  }
}

void AppendUnlessZero(Bytes& out, std::uint8_t tag, std::int64_t amount) {
  if (amount != 0) {
    AppendAmount(out, tag, amount);
  }
}

/// Values that are 0 are left out. The number of bookings is, too: readers take its record for the overflow mark.
void AppendContainer(Bytes& out, const Total& total) {
  Bytes value;
  AppendUnlessZero(value, tag::kTurnover, total.turnover);
  AppendUnlessZero(value, tag::kTurnoverNegative, total.turnoverNegative);
  AppendUnlessZero(value, tag::kVat, total.vat);
  if (total.vatRate != 0) {
    AppendBcd(value, tag::kVatRate, static_cast<std::uint32_t>(total.vatRate));
  }
  AppendUnlessZero(value, tag::kThirdParty, total.thirdParty);
  AppendFlag(value, tag::kOverflow, total.overflow);
  AppendFlag(value, tag::kVatChanged, total.vatChanged);
  AppendRecord(out, total.container, value);
}

}  // namespace

MonthTotals Distribute(const BookingRequest& booking, std::int32_t month) {
  MonthTotals totals = DistributeOverContainers(booking);
  for (Total& total : totals) {
    total.month = month;
  }
  return totals;
}

void Add(MonthTotals& sums, const MonthTotals& later) {
  for (const Total& total : later) {
    auto place = std::lower_bound(sums.begin(), sums.end(), total, IsBefore);
    if (place == sums.end() || place->container != total.container) {
      place = sums.insert(place, {.month = total.month, .container = total.container});
    }
    Add(*place, total);
  }
}

std::vector<Total> ReadTotals(const Database& database) {
  return ReadRows(database.Prepare("SELECT * FROM total ORDER BY month, container"));
}

MonthTotals ReadMonth(const Database& database, std::int32_t month) {
  Statement rows = database.Prepare("SELECT * FROM total WHERE month = ? ORDER BY container");
  rows.Bind(month);
  return ReadRows(std::move(rows));
}

void WriteTotals(const Database& database, const MonthTotals& totals, const MonthTotals& changed) {
  for (const Total& total : totals) {
    if (std::any_of(changed.begin(), changed.end(),
                    [&total](const Total& other) { return other.container == total.container; })) {
      WriteTotal(database, total);
    }
  }
}

void ClearOpenTotals(const Database& database) {
  database.Prepare("DELETE FROM total WHERE month = ?").Bind(kOpen).Step();
}

void AddTotals(DigestMessage& message, std::span<const Total> totals) {
  for (const Total& total : totals) {
    message.Add(total.month)
        .Add(total.container)
        .Add(total.turnover)
        .Add(total.turnoverNegative)
        .Add(total.vat)
        .Add(total.vatRate)
        .Add(total.bookings)
        .Add(total.overflow)
        .Add(total.vatChanged)
        .Add(total.thirdParty);
  }
}

Digest DigestOfOthers(std::span<const Total> totals, std::int32_t month, std::int32_t otherMonth) {
  std::vector<Total> others;
  std::copy_if(totals.begin(), totals.end(), std::back_inserter(others),
               [=](const Total& total) { return total.month != month && total.month != otherMonth; });
  DigestMessage message;
  AddTotals(message, others);
  return message.Sha256();
}

void AppendContainers(Bytes& out, std::span<const Total> totals) {
  for (std::size_t i = 0; i < kContainers; ++i) {
    Total sum{.container = static_cast<std::uint8_t>(tag::kContainerVat1 + i)};
    for (const Total& total : totals) {
      if (total.container == sum.container) {
        Add(sum, total);
      }
    }
    AppendContainer(out, sum);
  }
}

}  // namespace softdevice
