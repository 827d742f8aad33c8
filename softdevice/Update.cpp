#include "softdevice/Update.h"

#include <map>
#include <optional>
#include <stdexcept>
#include <string>

#include "softdevice/Chain.h"
#include "softdevice/CompleteCheck.h"
#include "softdevice/State.h"
#include "softdevice/Tables.h"
#include "softdevice/Totals.h"

namespace softdevice {

namespace {

/// How a table of the present version is made.
std::string_view SqlOf(std::string_view table) {
  for (const auto& [name, sql] : TablesOf(FileVersion::Present)) {
    if (name == table) return sql;
  }
  throw std::logic_error("no such table");
}

/// Gives the records of a chain their digests, and returns its end.
Head AddDigests(const Database& database, const Chain& chain, std::uint32_t last) {
  std::string add = "ALTER TABLE ";
  add.append(chain.table).append(" ADD COLUMN digest BLOB NOT NULL DEFAULT x''");
  database.Run(add);
  std::string set = "UPDATE ";
  set.append(chain.table).append(" SET digest = ? WHERE ").append(chain.number).append(" = ?");
  Head head;
  while (head.number < last) {
    const std::optional<SignedRequest> record = FindWithoutDigest(database, chain, head.number + 1);
    if (!record) {
      throw Damage("a record is missing");
    }
    head = {record->sequenceNumber, DigestOf(head.digest, *record)};
    database.Prepare(set).Bind(head.digest).Bind(head.number).Step();
  }
  return head;
}

/// The totals of the first version lack some of what those of the present one hold.
void MakeTotals(const Database& database, std::uint32_t last) {
  database.Run("DROP TABLE total");
  database.Run(SqlOf("total"));
  std::map<std::int32_t, MonthTotals> months;
  for (std::uint32_t number = 1; number <= last; ++number) {
    const std::optional<SignedRequest> record = FindWithoutDigest(database, kTransactions, number);
    const BookingRequest booking = ReadBookingRequest(record->request);
    for (const std::int32_t month : {booking.Month(), kOpen}) {
      Add(months[month], Distribute(booking, month));
    }
  }
  for (const auto& [month, totals] : months) {
    WriteTotals(database, totals, totals);
  }
}

}  // namespace

void Update(const Database& database, FileVersion version) {
  if (const CheckResult result = CheckCompletely(database, version, {}); !result.IsRight()) {
    const std::size_t more = result.damages.size() - 1;
    throw std::runtime_error("it is damaged, and not brought up to date (" + result.damages[0] +
                             (more == 0 ? "" : ", and " + std::to_string(more) + " more") + ")");
  }
  StoredState state = ReadOldState(database, version);
  if (version == FileVersion::BookingsOnly) {
    MakeTotals(database, state.transactions.number);
    database.Run(SqlOf("signed_report"));
  } else {
    state.reports = AddDigests(database, kReports, state.reports.number);
  }
  state.transactions = AddDigests(database, kTransactions, state.transactions.number);
  state.sinceClosing = ReadMonth(database, kOpen);
  state.otherTotals = DigestOfOthers(ReadTotals(database), kOpen, kOpen);
  database.Run("DROP TABLE device");
  database.Run(SqlOf("device"));
  WriteState(database, state);
  SetVersion(database, FileVersion::Present);
}

}  // namespace softdevice
