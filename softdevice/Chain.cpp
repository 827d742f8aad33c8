#include "softdevice/Chain.h"

#include <algorithm>
#include <utility>

#include "softdevice/Request.h"

namespace softdevice {

namespace {

std::string Name(const Chain& chain, std::uint32_t number) {
  return std::string(chain.record) + " " + std::to_string(number);
}

[[noreturn]] void ThrowChanged(const Chain& chain, std::uint32_t number) {
  throw Damage(Name(chain, number) + " is not what was recorded");
}

[[noreturn]] void ThrowMissing(const Chain& chain, std::uint32_t number) {
  throw Damage(Name(chain, number) + " is missing");
}

std::string Select(const Chain& chain, std::string_view rest) {
  std::string sql = "SELECT ";
  sql.append(chain.number).append(", command, request, response, digest FROM ").append(chain.table);
  sql.append(" ").append(rest);
  return sql;
}

/// A record whose number, command or digest can't be one has values that fit no digest.
ChainedRecord ReadRow(const Chain& chain, const Statement& row) {
  const std::int64_t number = row.NumberAt(0);
  const std::int64_t command = row.NumberAt(1);
  const Bytes digest = row.BytesAt(4);
  ChainedRecord result{.record = {.sequenceNumber = static_cast<std::uint32_t>(number),
                                  .command = static_cast<Command>(command),
                                  .request = row.BytesAt(2),
                                  .response = row.BytesAt(3)},
                       .digest = {}};
  if (!std::in_range<std::uint32_t>(number) || !std::in_range<std::uint8_t>(command) ||
      digest.size() != result.digest.size()) {
    ThrowChanged(chain, result.record.sequenceNumber);
  }
  std::copy(digest.begin(), digest.end(), result.digest.begin());
  return result;
}

/// The digest of the record before this one.
Digest DigestBefore(const Database& database, const Chain& chain, std::uint32_t number) {
  if (number <= 1) {
    return {};
  }
  const std::optional<ChainedRecord> before = FindAsItIs(database, chain, number - 1);
  if (!before) {
    ThrowMissing(chain, number - 1);
  }
  return before->digest;
}

}  // namespace

const Chain& ChainOf(Command command) { return IsTransaction(command) ? kTransactions : kReports; }

Head& HeadOf(StoredState& state, const Chain& chain) {
  return chain.table == kTransactions.table ? state.transactions : state.reports;
}

Digest DigestOf(const Digest& before, const SignedRequest& record) {
  return DigestMessage()
      .Add(before)
      .Add(record.sequenceNumber)
      .Add(static_cast<std::int64_t>(record.command))
      .Add(record.request)
      .Add(record.response)
      .Sha256();
}

void Append(const Database& database, Head& head, const SignedRequest& record) {
  const Digest digest = DigestOf(head.digest, record);
  std::string sql = "INSERT INTO ";
  sql.append(ChainOf(record.command).table).append(" VALUES (?, ?, ?, ?, ?)");
  database.Prepare(sql)
      .Bind(record.sequenceNumber)
      .Bind(static_cast<std::int64_t>(record.command))
      .Bind(record.request)
      .Bind(record.response)
      .Bind(digest)
      .Step();
  head = {record.sequenceNumber, digest};
}

std::optional<ChainedRecord> FindAsItIs(const Database& database, const Chain& chain, std::uint32_t number) {
  Statement row = database.Prepare(Select(chain, "WHERE " + std::string(chain.number) + " = ?"));
  row.Bind(number);
  if (!row.Step()) {
    return std::nullopt;
  }
  return ReadRow(chain, row);
}

std::optional<SignedRequest> FindWithoutDigest(const Database& database, const Chain& chain,
                                               std::uint32_t number) {
  std::string sql = "SELECT command, request, response FROM ";
  sql.append(chain.table).append(" WHERE ").append(chain.number).append(" = ?");
  Statement row = database.Prepare(sql);
  row.Bind(number);
  if (!row.Step()) {
    return std::nullopt;
  }
  const std::int64_t command = row.NumberAt(0);
  if (!std::in_range<std::uint8_t>(command)) {
    ThrowChanged(chain, number);
  }
  return SignedRequest{.sequenceNumber = number,
                       .command = static_cast<Command>(command),
                       .request = row.BytesAt(1),
                       .response = row.BytesAt(2)};
}

std::optional<SignedRequest> Find(const Database& database, const Chain& chain, std::uint32_t number,
                                  const Head& head) {
  if (number == 0 || number > head.number) {
    return std::nullopt;
  }
  std::optional<ChainedRecord> found = FindAsItIs(database, chain, number);
  if (!found) {
    ThrowMissing(chain, number);
  }
  if (DigestOf(DigestBefore(database, chain, number), found->record) != found->digest ||
      (number == head.number && found->digest != head.digest)) {
    ThrowChanged(chain, number);
  }
  return std::move(found->record);
}

void CheckEnd(const Database& database, const Chain& chain, const Head& head) {
  // The shortest record has 137 bytes of a page's 4,096. Of one record more only the digest is needed.
  constexpr std::size_t kOnOnePage = 30;
  std::vector<ChainedRecord> records;  // the last one first
  Statement rows = database.Prepare(Select(
      chain, "ORDER BY " + std::string(chain.number) + " DESC LIMIT " + std::to_string(kOnOnePage + 1)));
  while (rows.Step()) {
    records.push_back(ReadRow(chain, rows));
  }
  if (!records.empty() && records[0].record.sequenceNumber > head.number) {
    throw Damage(Name(chain, records[0].record.sequenceNumber) + " stands behind the last one, which is " +
                 std::to_string(head.number));
  }
  const std::size_t count = std::min<std::size_t>(head.number, kOnOnePage + 1);
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t number = head.number - static_cast<std::uint32_t>(i);
    if (i == records.size() || records[i].record.sequenceNumber != number) {
      ThrowMissing(chain, number);
    }
  }
  if (count > 0 && records[0].digest != head.digest) {
    ThrowChanged(chain, head.number);
  }
  for (std::size_t i = 0; i < count; ++i) {
    const bool isFirst = records[i].record.sequenceNumber == 1;
    const bool hasBefore = i + 1 < count;
    if ((isFirst || hasBefore) &&
        DigestOf(isFirst ? Digest{} : records[i + 1].digest, records[i].record) != records[i].digest) {
      ThrowChanged(chain, records[i].record.sequenceNumber);
    }
  }
}

}  // namespace softdevice
