#include "softdevice/State.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "softdevice/Key.h"

namespace softdevice {

namespace {

template <typename Value>
Value ValueAt(const Statement& row, int column) {
  const std::int64_t number = row.NumberAt(column);
  if (!std::in_range<Value>(number)) {
    throw Damage("a number of the device is out of range");
  }
  return static_cast<Value>(number);
}

Digest DigestAt(const Statement& row, int column) {
  const Bytes bytes = row.BytesAt(column);
  Digest digest{};
  if (bytes.size() != digest.size()) {
    throw Damage("a digest of the device has another length");
  }
  std::copy(bytes.begin(), bytes.end(), digest.begin());
  return digest;
}

/// Takes another month for the one whose totals are at hand.
void SwitchMonth(const Database& database, StoredState& state, std::int32_t month) {
  const std::vector<Total> totals = ReadAllTotals(database, state);
  state.month = month;
  state.otherTotals = DigestOfOthers(totals, kOpen, month);
  state.ofMonth.clear();
  std::copy_if(totals.begin(), totals.end(), std::back_inserter(state.ofMonth),
               [month](const Total& total) { return total.month == month; });
}

}  // namespace

DigestMessage StoredState::Message() const {
  DigestMessage message;
  message.Add(privateKey)
      .Add(publicKey)
      .Add(taxpayerId)
      .Add(runningNumber)
      .Add(static_cast<std::int64_t>(lifeCycle))
      .Add(transportPin)
      .Add(wrongPins)
      .Add(transactions.number)
      .Add(transactions.digest)
      .Add(reports.number)
      .Add(reports.digest)
      .Add(lastReportedNumber)
      .Add(month)
      .Add(otherTotals);
  AddTotals(message, sinceClosing);
  AddTotals(message, ofMonth);
  return message;
}

DeviceState StoredState::Shown() const {
  return {.lifeCycle = lifeCycle,
          .wrongPins = wrongPins,
          .lastSequenceNumber = transactions.number,
          .lastReportNumber = reports.number,
          .lastReportedNumber = lastReportedNumber};
}

StoredState ReadStateAsItIs(const Database& database, bool& hasDigest) {
  StoredState state;
  Digest digest{};
  {
    Statement row = database.Prepare(
        "SELECT private_key, public_key, taxpayer_id, running_number, life_cycle, transport_pin, wrong_pins,"
        " last_sequence_number, last_sequence_digest, last_report_number, last_report_digest,"
        " last_reported_number, month, other_totals, digest FROM device WHERE id = 1");
    if (!row.Step()) {
      throw Damage("the device is missing");
    }
    state.privateKey = row.TextAt(0);
    state.publicKey = row.TextAt(1);
    state.taxpayerId = row.TextAt(2);
    state.runningNumber = ValueAt<std::uint32_t>(row, 3);
    state.lifeCycle = static_cast<LifeCycle>(ValueAt<std::uint8_t>(row, 4));
    state.transportPin = row.TextAt(5);
    state.wrongPins = ValueAt<std::uint8_t>(row, 6);
    state.transactions = {ValueAt<std::uint32_t>(row, 7), DigestAt(row, 8)};
    state.reports = {ValueAt<std::uint32_t>(row, 9), DigestAt(row, 10)};
    state.lastReportedNumber = ValueAt<std::uint32_t>(row, 11);
    state.month = ValueAt<std::int32_t>(row, 12);
    state.otherTotals = DigestAt(row, 13);
    digest = DigestAt(row, 14);
  }
  state.sinceClosing = ReadMonth(database, kOpen);
  if (state.month != kOpen) {
    state.ofMonth = ReadMonth(database, state.month);
  }
  hasDigest = state.Message().Sha256() == digest;
  return state;
}

StoredState ReadState(const Database& database) {
  bool hasDigest = false;
  StoredState state = ReadStateAsItIs(database, hasDigest);
  if (!hasDigest) {
    throw Damage("the device's state is not what was recorded");
  }
  return state;
}

StoredState ReadOldState(const Database& database, FileVersion version) {
  const bool isFirst = version == FileVersion::BookingsOnly;
  Statement row = database.Prepare(
      std::string("SELECT private_key, taxpayer_id, running_number, life_cycle, last_sequence_number, ") +
      (isFirst ? "'', 0, 0, 0" : "transport_pin, wrong_pins, last_report_number, last_reported_number") +
      " FROM device WHERE id = 1");
  if (!row.Step()) {
    throw Damage("the device is missing");
  }
  StoredState state;
  state.privateKey = row.TextAt(0);
  state.publicKey = Key::FromPrivatePem(state.privateKey).PublicPem();
  state.taxpayerId = row.TextAt(1);
  state.runningNumber = ValueAt<std::uint32_t>(row, 2);
  state.lifeCycle = static_cast<LifeCycle>(ValueAt<std::uint8_t>(row, 3));
  state.transactions.number = ValueAt<std::uint32_t>(row, 4);
  state.transportPin = row.TextAt(5);
  state.wrongPins = ValueAt<std::uint8_t>(row, 6);
  state.reports.number = ValueAt<std::uint32_t>(row, 7);
  state.lastReportedNumber = ValueAt<std::uint32_t>(row, 8);
  return state;
}

void WriteState(const Database& database, const StoredState& state) {
  database
      .Prepare(
          "INSERT INTO device VALUES (1, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"
          " ON CONFLICT (id) DO UPDATE SET life_cycle = excluded.life_cycle, wrong_pins = "
          "excluded.wrong_pins,"
          " last_sequence_number = excluded.last_sequence_number,"
          " last_sequence_digest = excluded.last_sequence_digest,"
          " last_report_number = excluded.last_report_number,"
          " last_report_digest = excluded.last_report_digest,"
          " last_reported_number = excluded.last_reported_number, month = excluded.month,"
          " other_totals = excluded.other_totals, digest = excluded.digest")
      .Bind(state.privateKey)
      .Bind(state.publicKey)
      .Bind(state.taxpayerId)
      .Bind(state.runningNumber)
      .Bind(static_cast<std::int64_t>(state.lifeCycle))
      .Bind(state.transportPin)
      .Bind(state.wrongPins)
      .Bind(state.transactions.number)
      .Bind(state.transactions.digest)
      .Bind(state.reports.number)
      .Bind(state.reports.digest)
      .Bind(state.lastReportedNumber)
      .Bind(state.month)
      .Bind(state.otherTotals)
      .Bind(state.Message().Sha256())
      .Step();
}

std::vector<Total> ReadAllTotals(const Database& database, const StoredState& state) {
  std::vector<Total> totals = ReadTotals(database);
  if (DigestOfOthers(totals, kOpen, state.month) != state.otherTotals) {
    throw Damage("the totals are not what was recorded");
  }
  return totals;
}

void Book(const Database& database, StoredState& state, const BookingRequest& booking) {
  if (booking.Month() != state.month) {
    SwitchMonth(database, state, booking.Month());
  }
  const MonthTotals inMonth = Distribute(booking, state.month);
  Add(state.ofMonth, inMonth);
  WriteTotals(database, state.ofMonth, inMonth);
  const MonthTotals open = Distribute(booking, kOpen);
  Add(state.sinceClosing, open);
  WriteTotals(database, state.sinceClosing, open);
}

}  // namespace softdevice
