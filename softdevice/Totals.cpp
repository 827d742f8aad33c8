#include "softdevice/Totals.h"

#include <utility>

namespace softdevice {

namespace {

/// Stands for the month in the totals since the last closing.
constexpr std::int32_t kOpen = 0;

constexpr std::size_t kContainers = tag::kContainerTraining - tag::kContainerVat1 + 1;

Total ReadTotal(const Statement& row) {
  return {.month = static_cast<std::int32_t>(row.NumberAt(0)),
          .container = static_cast<std::uint8_t>(row.NumberAt(1)),
          .turnover = row.NumberAt(2),
          .turnoverNegative = row.NumberAt(3),
          .vat = row.NumberAt(4),
          .vatRate = static_cast<std::int32_t>(row.NumberAt(5)),
          .bookings = static_cast<std::uint32_t>(row.NumberAt(6)),
          .overflow = row.NumberAt(7) != 0,
          .vatChanged = row.NumberAt(8) != 0,
          .thirdParty = row.NumberAt(9)};
}

std::vector<Total> ReadTotals(Statement rows) {
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

void AddToTotal(const Database& database, const Total& booked) {
  Total total{.month = booked.month, .container = booked.container};
  {
    Statement row = database.Prepare("SELECT * FROM total WHERE month = ? AND container = ?");
    row.Bind(booked.month).Bind(booked.container);
    if (row.Step()) {
      total = ReadTotal(row);
    }
  }
  Add(total, booked);
  database.Prepare("INSERT OR REPLACE INTO total VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
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

/// A training booking counts in the training container alone, a delivery note in the delivery note container
/// alone. Any other booking counts in its VAT containers, its third-party turnover in that container as well.
std::vector<Total> Distribute(const BookingRequest& booking) {
  std::vector<Total> totals;
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

void AddToTotals(const Database& database, const BookingRequest& booking) {
  for (Total& total : Distribute(booking)) {
    for (const std::int32_t month : {booking.Month(), kOpen}) {
      total.month = month;
      AddToTotal(database, total);
    }
  }
}

std::vector<Total> ReadMonths(const Database& database, std::int64_t first, std::int64_t last) {
  Statement rows =
      database.Prepare("SELECT * FROM total WHERE month BETWEEN ? AND ? ORDER BY month, container");
  rows.Bind(first).Bind(last);
  return ReadTotals(std::move(rows));
}

std::vector<Total> ReadOpenTotals(const Database& database) { return ReadMonths(database, kOpen, kOpen); }

void ClearOpenTotals(const Database& database) {
  database.Prepare("DELETE FROM total WHERE month = ?").Bind(kOpen).Step();
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
