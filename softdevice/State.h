#pragma once

#include <cstdint>
#include <string>

#include "softdevice/Database.h"
#include "softdevice/Device.h"
#include "softdevice/Digest.h"
#include "softdevice/Tables.h"
#include "softdevice/Totals.h"

/// Where a device stands: the one row of its table `device`, whose digest covers all that is not recorded for good.
namespace softdevice {

/// The end of a chain of records.
struct Head {
  std::uint32_t number = 0;  ///< of the last record; 0 for none
  Digest digest{};           ///< of the last record; zero bytes for none

  bool operator==(const Head&) const = default;
};

struct StoredState {
  std::string privateKey;  ///< as PEM
  std::string publicKey;   ///< as PEM
  std::string taxpayerId;
  std::uint32_t runningNumber = 0;
  LifeCycle lifeCycle = LifeCycle::Initialized;
  std::string transportPin;
  std::uint8_t wrongPins = 0;
  Head transactions;
  Head reports;
  std::uint32_t lastReportedNumber = 0;  ///< the last transaction that a closing covers; 0 for none
  /// The month that was booked last; 0 for none. Its totals are part of the digest of this row; those of the other
  /// months have their own, as they are many and seldom change.
  std::int32_t month = 0;
  Digest otherTotals{};
  MonthTotals ofMonth;       ///< not in the row, but covered by its digest: the totals of `month`
  MonthTotals sinceClosing;  ///< the same: the totals since the last closing

  /// What the digest of the row covers.
  [[nodiscard]] DigestMessage Message() const;
  /// What the outside sees of it.
  [[nodiscard]] DeviceState Shown() const;
};

/// Reads it from within a transaction or snapshot, and throws `Damage` unless it has its digest.
StoredState ReadState(const Database& database);
/// The same whatever its digest is; `hasDigest` says whether it has.
StoredState ReadStateAsItIs(const Database& database, bool& hasDigest);
/// What a file of an older version knows of it: no digests, no totals.
StoredState ReadOldState(const Database& database, FileVersion version);
/// Writes the row, with its digest. The totals are written where they change.
void WriteState(const Database& database, const StoredState& state);

/// All totals, when they have their digest; else `Damage` is thrown.
std::vector<Total> ReadAllTotals(const Database& database, const StoredState& state);

/// Adds a booking to the totals of its month and to those since the last closing.
void Book(const Database& database, StoredState& state, const BookingRequest& booking);

}  // namespace softdevice
