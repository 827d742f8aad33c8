#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "softdevice/Database.h"
#include "softdevice/Device.h"
#include "softdevice/Digest.h"
#include "softdevice/State.h"

/// The two chains of records, transactions and reports: each record's digest covers the digest of the one before,
/// and the device's state knows the last one.
namespace softdevice {

/// The table of one chain.
struct Chain {
  std::string_view table;
  std::string_view number;  ///< the column of the record's number
  std::string_view record;  ///< what a record is called
};

inline constexpr Chain kTransactions = {"signed_request", "sequence_number", "transaction"};
inline constexpr Chain kReports = {"signed_report", "report_number", "report"};

/// The chain that records what the command signs.
const Chain& ChainOf(Command command);
/// Its end.
Head& HeadOf(StoredState& state, const Chain& chain);

/// A record, and what the file says its digest is.
struct ChainedRecord {
  SignedRequest record;
  Digest digest;
};

/// The digest of a record that follows the one with the digest `before`.
Digest DigestOf(const Digest& before, const SignedRequest& record);

/// Writes a record behind the last one and moves the head.
void Append(const Database& database, Head& head, const SignedRequest& record);

/// The record as it stands in the file, if any.
std::optional<ChainedRecord> FindAsItIs(const Database& database, const Chain& chain, std::uint32_t number);
/// The same in a file that has no digests.
std::optional<SignedRequest> FindWithoutDigest(const Database& database, const Chain& chain,
                                               std::uint32_t number);
/// The record under this number, none beyond the last. Throws `Damage` unless it has its digest.
std::optional<SignedRequest> Find(const Database& database, const Chain& chain, std::uint32_t number,
                                  const Head& head);

/// Throws `Damage` unless the chain ends where it should. So many records from the end on are looked at as may stand
/// on one page of the file with the last one.
void CheckEnd(const Database& database, const Chain& chain, const Head& head);

}  // namespace softdevice
