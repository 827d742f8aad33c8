#include "softdevice/Device.h"

#include <ctime>
#include <new>
#include <stdexcept>
#include <utility>

#include "softdevice/Chain.h"
#include "softdevice/Commands.h"
#include "softdevice/Database.h"
#include "softdevice/DeviceFile.h"
#include "softdevice/FileSystem.h"
#include "softdevice/Key.h"
#include "softdevice/Records.h"
#include "softdevice/Request.h"
#include "softdevice/State.h"
#include "softdevice/Totals.h"

namespace softdevice {

namespace {

Answer Refused(RefusalCode code, std::string reason) {
  Answer answer;
  answer.code = code;
  answer.reason = std::move(reason);
  return answer;
}

/// The keys that the state holds, which have to be a pair.
Keys KeysOf(const StoredState& state) {
  Keys keys{Key::FromPrivatePem(state.privateKey), Key::FromPublicPem(state.publicKey)};
  if (keys.signing.PublicPem() != state.publicKey) {
    throw Damage("its private and its public key don't fit");
  }
  return keys;
}

/// Activates a device that is just being made.
void ActivateNew(const Database& database, const std::string& transportPin) {
  const Bytes bytes = MakeActivationRequest(transportPin);
  const Request request = ReadRequest(Command::ReportActivate, bytes);
  try {
    CheckMoment(request);
  } catch (const Refusal& refusal) {
    throw std::runtime_error("it can't be activated (" + refusal.reason + ")");
  }
  StoredState state = ReadState(database);
  static_cast<void>(Perform(database, KeysOf(state), request, state));
}

}  // namespace

struct Device::Impl {
  std::string name;  ///< of the file, as it stands in messages
  Database database;
  Keys keys;
  std::string publicKeyPem;
  std::string taxpayerId;
  std::uint32_t runningNumber;
  // The ends of both chains when they were last seen here.
  Head transactions;
  Head reports;

  Answer Execute(const Request& request);
  void CheckIsContinued(const StoredState& state) const;
  void CheckHolds(const Chain& chain, const Head& now, const Head& seen) const;
  void Commit(Transaction& transaction, Command command, const Answer& answer) const;

  [[nodiscard]] std::string About(const std::exception& error) const {
    return "device file '" + name + "': " + error.what();
  }

  /// What `read` reads from the file and its state.
  template <typename Read>
  auto Get(Read&& read) const {
    try {
      const Snapshot snapshot(database);
      return read(database, ReadState(database));
    } catch (const std::exception& error) {
      throw DeviceError(About(error));
    }
  }
};

Answer Device::Impl::Execute(const Request& request) {
  Transaction transaction(database);
  CheckLength(database);
  CheckFreePages(database);
  StoredState state = ReadState(database);
  CheckIsContinued(state);
  Answer answer = Perform(database, keys, request, state);
  Commit(transaction, request.command, answer);
  transactions = state.transactions;
  reports = state.reports;
  return answer;
}

/// The file may have been replaced by another one, or by an older copy of itself, since this device saw it last.
void Device::Impl::CheckIsContinued(const StoredState& state) const {
  if (state.publicKey != publicKeyPem || state.taxpayerId != taxpayerId ||
      state.runningNumber != runningNumber) {
    throw std::runtime_error("it holds another device by now");
  }
  CheckHolds(kTransactions, state.transactions, transactions);
  CheckHolds(kReports, state.reports, reports);
}

void Device::Impl::CheckHolds(const Chain& chain, const Head& now, const Head& seen) const {
  if (now == seen || seen.number == 0) return;
  const std::optional<ChainedRecord> found =
      now.number < seen.number ? std::nullopt : FindAsItIs(database, chain, seen.number);
  if (!found || found->digest != seen.digest) {
    throw std::runtime_error("it is an older one by now, without the " + std::string(chain.record) + " " +
                             std::to_string(seen.number) + " that was there");
  }
}

/// A commit can fail behind the point of no return, when the journal is gone but its folder can't be brought
/// to the disk. What the file says then counts: no two signatures are alike, so that a response that is found
/// is this one.
void Device::Impl::Commit(Transaction& transaction, Command command, const Answer& answer) const {
  try {
    transaction.Commit();
  } catch (const DatabaseError& failure) {
    if (answer.sequenceNumber == 0) {
      throw;
    }
    const Chain& chain = ChainOf(command);
    std::optional<ChainedRecord> recorded;
    try {
      recorded = FindAsItIs(database, chain, answer.sequenceNumber);
    } catch (const DatabaseError&) {
      throw std::runtime_error(std::string(failure.what()) + "; whether " + std::string(chain.record) + " " +
                               std::to_string(answer.sequenceNumber) + " is recorded can't be said");
    }
    if (!recorded || recorded->record.response != answer.response) {
      throw;
    }
  }
}

Device::Device(std::unique_ptr<Impl> impl) noexcept : impl_(std::move(impl)) {}
Device::Device(Device&&) noexcept = default;
Device& Device::operator=(Device&&) noexcept = default;
Device::~Device() = default;

Device Device::Open(const std::filesystem::path& path, const OpenOptions& options) {
  return WithName(path, [&](const std::string& name) {
    Database database = OpenDeviceFile(path, options, [&options](const Database& made) {
      if (options.activate) {
        ActivateNew(made, options.transportPin);
      }
    });
    const auto state = [&database] {
      const Snapshot snapshot(database);
      return ReadState(database);
    }();
    Keys keys = KeysOf(state);
    return Device(std::make_unique<Impl>(Impl{.name = name,
                                              .database = std::move(database),
                                              .keys = std::move(keys),
                                              .publicKeyPem = state.publicKey,
                                              .taxpayerId = state.taxpayerId,
                                              .runningNumber = state.runningNumber,
                                              .transactions = state.transactions,
                                              .reports = state.reports}));
  });
}

Answer Device::Execute(Command command, std::span<const std::uint8_t> request) {
  try {
    const Request checked = ReadRequest(command, request);
    CheckMoment(checked);
    return impl_->Execute(checked);
  } catch (const Refusal& refusal) {
    return Refused(refusal.code, refusal.reason);
  } catch (const DatabaseError& error) {
    return Refused(error.IsBusy() ? RefusalCode::Busy : RefusalCode::Storage, impl_->About(error));
  } catch (const KeyError& error) {
    return Refused(RefusalCode::Internal, error.what());
  } catch (const std::bad_alloc&) {
    return Refused(RefusalCode::Internal, "there is no memory left");
  } catch (const std::exception& error) {
    return Refused(RefusalCode::Storage, impl_->About(error));
  }
}

Answer Device::Activate(std::string_view transportPin) {
  return Execute(Command::ReportActivate, MakeActivationRequest(transportPin));
}

std::optional<SignedRequest> Device::Find(std::uint32_t sequenceNumber) const {
  return impl_->Get([=](const Database& database, const StoredState& state) {
    return softdevice::Find(database, kTransactions, sequenceNumber, state.transactions);
  });
}

std::optional<SignedRequest> Device::FindReport(std::uint32_t reportNumber) const {
  return impl_->Get([=](const Database& database, const StoredState& state) {
    return softdevice::Find(database, kReports, reportNumber, state.reports);
  });
}

DeviceState Device::State() const {
  return impl_->Get([](const Database&, const StoredState& state) { return state.Shown(); });
}

std::uint32_t Device::LastSequenceNumber() const { return State().lastSequenceNumber; }

std::vector<Total> Device::Totals() const {
  return impl_->Get([](const Database& database, const StoredState& state) {
    std::vector<Total> totals = ReadAllTotals(database, state);
    std::erase_if(totals, [](const Total& total) { return total.month == kOpen; });
    return totals;
  });
}

std::vector<Total> Device::OpenTotals() const {
  return impl_->Get([](const Database&, const StoredState& state) { return state.sinceClosing; });
}

const std::string& Device::TaxpayerId() const noexcept { return impl_->taxpayerId; }
std::uint32_t Device::RunningNumber() const noexcept { return impl_->runningNumber; }
const std::string& Device::PublicKeyPem() const noexcept { return impl_->publicKeyPem; }

std::chrono::local_seconds LocalNow() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  using namespace std::chrono;
  const year_month_day date(year(local.tm_year + 1900), month(static_cast<unsigned>(local.tm_mon + 1)),
                            day(static_cast<unsigned>(local.tm_mday)));
  return local_days(date) + hours(local.tm_hour) + minutes(local.tm_min) + seconds(local.tm_sec);
}

std::vector<std::uint8_t> MakeActivationRequest(std::string_view transportPin,
                                                std::chrono::local_seconds time) {
  const auto midnight = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(midnight);
  const std::chrono::hh_mm_ss clock(time - midnight);
  const auto yearNumber = static_cast<std::uint32_t>(static_cast<int>(date.year()));
  Bytes request;
  AppendBcd(
      request, tag::kDate,
      yearNumber * 10000 + static_cast<unsigned>(date.month()) * 100 + static_cast<unsigned>(date.day()), 4);
  AppendBcd(request, tag::kTime,
            static_cast<std::uint32_t>(clock.hours().count() * 100 + clock.minutes().count()), 2);
  AppendText(request, tag::kTransportPin, transportPin.substr(0, 127));
  return request;
}

const char* ToString(RefusalCode code) noexcept {
  switch (code) {
    case RefusalCode::None: return "None";
    case RefusalCode::UnknownCommand: return "UnknownCommand";
    case RefusalCode::Framing: return "Framing";
    case RefusalCode::UnexpectedRecord: return "UnexpectedRecord";
    case RefusalCode::MissingRecord: return "MissingRecord";
    case RefusalCode::Length: return "Length";
    case RefusalCode::Value: return "Value";
    case RefusalCode::CounterExhausted: return "CounterExhausted";
    case RefusalCode::Busy: return "Busy";
    case RefusalCode::Storage: return "Storage";
    case RefusalCode::Internal: return "Internal";
    case RefusalCode::LifeCycle: return "LifeCycle";
    case RefusalCode::WrongPin: return "WrongPin";
    case RefusalCode::PinLocked: return "PinLocked";
  }
  return "unknown";
}

}  // namespace softdevice
