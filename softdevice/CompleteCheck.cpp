#include "softdevice/CompleteCheck.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>

#include "softdevice/Chain.h"
#include "softdevice/Commands.h"
#include "softdevice/DeviceFile.h"
#include "softdevice/FileSystem.h"
#include "softdevice/Key.h"
#include "softdevice/Records.h"
#include "softdevice/Request.h"
#include "softdevice/State.h"
#include "softdevice/Totals.h"
#include "softdevice/Verify.h"

namespace softdevice {

namespace {

/// Collects what is damaged, records that follow each other and are damaged alike as one line.
class Findings {
 public:
  void Add(std::string text) {
    Flush();
    lines_.push_back(std::move(text));
  }

  void Add(const Chain& chain, std::uint32_t number, const std::string& text) {
    if (first_ != 0 && chain_->table == chain.table && text_ == text && number == last_ + 1) {
      last_ = number;
      return;
    }
    Flush();
    chain_ = &chain;
    first_ = last_ = number;
    text_ = text;
  }

  std::vector<std::string> Take() {
    Flush();
    return std::move(lines_);
  }

 private:
  void Flush() {
    if (first_ == 0) return;
    const std::string record(chain_->record);
    lines_.push_back(first_ == last_ ? record + " " + std::to_string(first_) + ": " + text_
                                     : record + "s " + std::to_string(first_) + " to " +
                                           std::to_string(last_) + ": " + text_);
    first_ = 0;
  }

  std::vector<std::string> lines_;
  const Chain* chain_ = nullptr;
  std::uint32_t first_ = 0;  ///< 0 when no record waits to become a line
  std::uint32_t last_ = 0;
  std::string text_;
};

/// Follows the digests of a chain from record to record.
class Links {
 public:
  /// Whether the record follows the one before. A record whose predecessor is unknown does.
  bool Follows(const ChainedRecord& found) {
    bool follows = !isKnown_;
    // Where only the digest of the one before is damaged, this one follows what that digest should be.
    for (const Digest& before : {stored_, computed_}) {
      follows = follows || DigestOf(before, found.record) == found.digest;
    }
    computed_ = DigestOf(stored_, found.record);
    stored_ = found.digest;
    isKnown_ = true;
    return follows;
  }

  void Lose() { isKnown_ = false; }

  /// Whether the chain ends with this digest.
  [[nodiscard]] bool EndsWith(const Digest& digest) const {
    return !isKnown_ || stored_ == digest || computed_ == digest;
  }

 private:
  bool isKnown_ = true;
  Digest stored_{};
  Digest computed_{};
};

std::uint32_t NumberIn(ByteView response, std::uint8_t wanted) {
  RecordReader reader(response, "the response");
  while (!reader.AtEnd()) {
    if (const Record record = reader.Next(); record.tag == wanted) {
      return ReadCounter(record);
    }
  }
  throw Refusal{RefusalCode::MissingRecord, "it lacks " + DescribeTag(wanted)};
}

bool IsRecorded(const Chain& chain, Command command) {
  switch (command) {
    case Command::ReportSigned:
    case Command::ReportActivate:
    case Command::ReportDeactivate: return chain.table == kReports.table;
    default: return chain.table == kTransactions.table && IsTransaction(command);
  }
}

Verdict VerifySignature(const SignedRequest& record, const PublicKey& key) {
  if (!IsTransaction(record.command)) return VerifyReport(record.request, record.response, key);
  if (record.command == Command::SignBooking) return VerifyBooking(record.request, record.response, key);
  return VerifyData(record.request, record.response, key);
}

class Checker {
 public:
  Checker(const Database& database, FileVersion version, const CheckOptions& options)
      : database_(database), version_(version), options_(options) {}

  CheckResult Run() {
    {
      const Snapshot snapshot(database_);
      Try([this] { CheckLength(database_); });
      Try([this] { CheckWholeStructure(); });
      Try([this] { CheckTables(database_, version_); });
      Try([this] { TakeState(); });
      Try([this] { CheckKeys(); });
      CountRecords();
      CheckContents(kTransactions, result_.transactions);
      CheckContents(kReports, result_.reports);
      Try([this] { CheckClosings(); });
      Try([this] { CheckSums(); });
    }
    CheckSignatures(kTransactions, result_.transactions);
    CheckSignatures(kReports, result_.reports);
    result_.damages = findings_.Take();
    return std::move(result_);
  }

 private:
  /// One look at the file, whatever SQLite thinks of it.
  template <typename Look>
  void Try(Look&& look) {
    try {
      look();
    } catch (const DatabaseError& error) {
      if (error.IsBusy()) throw;
      findings_.Add(error.what());
    } catch (const Damage& damage) {
      findings_.Add(damage.What());
    } catch (const std::runtime_error& error) {
      findings_.Add(error.what());
    }
  }

  void CheckWholeStructure() {
    Statement rows = database_.Prepare("PRAGMA integrity_check");
    while (rows.Step()) {
      if (const std::string text = rows.TextAt(0); text != "ok") {
        findings_.Add("structure: " + text.substr(0, text.find('\n')));
      }
    }
  }

  void TakeState() {
    if (version_ != FileVersion::Present) {
      state_ = ReadOldState(database_, version_);
      isStateRight_ = true;
      return;
    }
    state_ = ReadStateAsItIs(database_, isStateRight_);
    if (!isStateRight_) {
      findings_.Add("device: its state is not what was recorded");
    }
    static_cast<void>(ReadAllTotals(database_, *state_));
  }

  void CheckKeys() {
    if (!state_) return;
    key_.emplace(state_->publicKey);
    if (!key_->Error().empty()) {
      findings_.Add("device: its public key can't be used (" + key_->Error() + ")");
    }
    if (Key::FromPrivatePem(state_->privateKey).PublicPem() != state_->publicKey) {
      findings_.Add("device: its private and its public key don't fit");
    }
  }

  /// How many numbers were given is what the state says. Where that isn't to be trusted, the records say it.
  void CountRecords() {
    for (const Chain& chain : Chains()) {
      std::uint32_t& count = chain.table == kTransactions.table ? result_.transactions : result_.reports;
      if (state_ && isStateRight_) {
        count = HeadOf(*state_, chain).number;
      }
      Try([&] {
        const std::string from = std::string(" FROM ").append(chain.table);
        const std::int64_t rows = database_.Number("SELECT count(*)" + from);
        if (!state_ || !isStateRight_) {
          count = static_cast<std::uint32_t>(rows);
        }
        std::string beyond = "SELECT ";
        beyond.append(chain.number).append(from).append(" WHERE ").append(chain.number);
        beyond += " NOT BETWEEN 1 AND " + std::to_string(count) + " LIMIT 1";
        if (Statement row = database_.Prepare(beyond); row.Step()) {
          findings_.Add(std::string(chain.record) + " " + std::to_string(row.NumberAt(0)) +
                        ": stands beyond the last one, which is " + std::to_string(count));
        }
      });
    }
    steps_ = std::uint64_t{result_.transactions} + result_.reports;
  }

  [[nodiscard]] std::vector<Chain> Chains() const {
    if (version_ == FileVersion::BookingsOnly) return {kTransactions};
    return {kTransactions, kReports};
  }

  /// A signature more is checked, which is what takes time.
  void Step() {
    constexpr std::uint64_t kSteps = 64;
    ++done_;
    if (options_.progress && (done_ % kSteps == 0 || done_ == steps_)) {
      options_.progress(done_, steps_);
    }
  }

  /// The record as it stands there; where there is none that can be read, this is a finding.
  std::optional<ChainedRecord> Read(const Chain& chain, std::uint32_t number) {
    try {
      if (version_ == FileVersion::Present) {
        if (auto found = FindAsItIs(database_, chain, number)) return found;
      } else if (auto found = FindWithoutDigest(database_, chain, number)) {
        return ChainedRecord{std::move(*found), {}};
      }
      findings_.Add(chain, number, "it is missing");
    } catch (const DatabaseError& error) {
      if (error.IsBusy()) throw;
      findings_.Add(chain, number, error.what());
    } catch (const Damage&) {
      findings_.Add(chain, number, "it is not what was recorded");
    }
    return std::nullopt;
  }

  /// All that the records say of themselves and of each other, but for the signatures, which take longer.
  void CheckContents(const Chain& chain, std::uint32_t count) {
    Links links;
    for (std::uint32_t number = 1; number <= count; ++number) {
      const std::optional<ChainedRecord> found = Read(chain, number);
      if (!found) {
        links.Lose();
      } else if (version_ == FileVersion::Present && !links.Follows(*found)) {
        findings_.Add(chain, number, "it is not what was recorded");
      } else if (CheckContent(chain, found->record)) {
        continue;
      }
      damaged_.emplace(chain.table, number);
    }
    if (state_ && isStateRight_ && version_ == FileVersion::Present &&
        !links.EndsWith(HeadOf(*state_, chain).digest)) {
      findings_.Add("device: its last " + std::string(chain.record) + " is not the one that was recorded");
    }
  }

  bool CheckContent(const Chain& chain, const SignedRequest& record) {
    try {
      if (!IsRecorded(chain, record.command)) {
        throw Refusal{RefusalCode::UnknownCommand,
                      "command " + std::to_string(static_cast<int>(record.command)) + " doesn't belong here"};
      }
      const Request request = ReadRequest(record.command, record.request);
      if (state_ &&
          !HasStart(record.response, BeginResponse(*state_, record.command, record.sequenceNumber))) {
        throw Refusal{RefusalCode::Value, "the response is not that of this device and number"};
      }
      if (record.command == Command::SignBooking) {
        Book(request.booking, record.sequenceNumber);
      } else if (record.command == Command::ReportSigned || record.command == Command::ReportDeactivate) {
        TakeClosing(record);
      }
      return true;
    } catch (const Refusal& refusal) {
      findings_.Add(chain, record.sequenceNumber, refusal.reason);
      return false;
    }
  }

  static bool HasStart(ByteView bytes, const Bytes& start) {
    return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
  }

  void Book(const BookingRequest& booking, std::uint32_t number) {
    Add(sums_[booking.Month()], Distribute(booking, booking.Month()));
    if (state_ && number > state_->lastReportedNumber) {
      Add(sums_[kOpen], Distribute(booking, kOpen));
    }
  }

  /// A closing covers what follows the one before.
  void TakeClosing(const SignedRequest& record) {
    const std::uint32_t first = NumberIn(record.response, tag::kFirstTransaction);
    const std::uint32_t last = NumberIn(record.response, tag::kLastTransaction);
    if (first == 0 && last == 0) return;
    if (first != covered_ + 1 || last < first) {
      findings_.Add(kReports, record.sequenceNumber,
                    "it covers " + std::to_string(first) + " to " + std::to_string(last) +
                        ", expected from " + std::to_string(covered_ + 1) + " on");
    }
    covered_ = last;
  }

  void CheckClosings() {
    if (state_ && isStateRight_ && !HasDamaged(kReports) && covered_ != state_->lastReportedNumber) {
      throw std::runtime_error("device: the last closing covers number " + std::to_string(covered_) +
                               ", expected " + std::to_string(state_->lastReportedNumber));
    }
  }

  [[nodiscard]] bool HasDamaged(const Chain& chain) const {
    return std::any_of(damaged_.begin(), damaged_.end(),
                       [&chain](const auto& record) { return record.first == chain.table; });
  }

  /// Adds up the totals anew, which can't be done where bookings are damaged. Those of the first version lack some.
  void CheckSums() {
    if (!state_ || !isStateRight_ || HasDamaged(kTransactions) || version_ == FileVersion::BookingsOnly) {
      return;
    }
    std::vector<Total> expected;
    for (const auto& [month, totals] : sums_) {
      expected.insert(expected.end(), totals.begin(), totals.end());
    }
    const std::vector<Total> found = ReadTotals(database_);
    const auto [differing, other] =
        std::mismatch(found.begin(), found.end(), expected.begin(), expected.end());
    if (differing == found.end() && other == expected.end()) return;
    std::int32_t first = std::numeric_limits<std::int32_t>::max();
    if (differing != found.end()) first = differing->month;
    if (other != expected.end()) first = std::min(first, other->month);
    const std::string month = std::to_string(first);
    throw std::runtime_error(
        "totals: those " +
        (first == kOpen ? "since the last closing" : "of " + month.substr(0, 4) + "-" + month.substr(4)) +
        " are not what the bookings add up to");
  }

  void CheckSignatures(const Chain& chain, std::uint32_t count) {
    if (!key_ || !key_->Error().empty()) return;
    for (std::uint32_t number = 1; number <= count; ++number) {
      Step();
      if (damaged_.contains({chain.table, number})) continue;  // said already
      const std::optional<ChainedRecord> found = Read(chain, number);
      if (!found) continue;
      if (const Verdict verdict = VerifySignature(found->record, *key_); !verdict.ok) {
        findings_.Add(chain, number, verdict.reason);
      }
    }
  }

  const Database& database_;
  const FileVersion version_;
  const CheckOptions& options_;
  CheckResult result_;
  Findings findings_;
  std::optional<StoredState> state_;
  bool isStateRight_ = false;
  std::optional<PublicKey> key_;
  std::uint64_t done_ = 0;
  std::uint64_t steps_ = 0;
  std::set<std::pair<std::string_view, std::uint32_t>> damaged_;
  std::uint32_t covered_ = 0;
  std::map<std::int32_t, MonthTotals> sums_;
};

}  // namespace

CheckResult CheckCompletely(const Database& database, FileVersion version, const CheckOptions& options) {
  return Checker(database, version, options).Run();
}

CheckResult CheckDeviceFile(const std::filesystem::path& path, const CheckOptions& options) {
  return WithName(path, [&](const std::string&) {
    const Database database = OpenToCheck(path, options.busyTimeout);
    return CheckCompletely(database, VersionOf(database), options);
  });
}

}  // namespace softdevice
