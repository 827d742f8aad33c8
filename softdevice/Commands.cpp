#include "softdevice/Commands.h"

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "softdevice/Chain.h"
#include "softdevice/Totals.h"

namespace softdevice {

namespace {

constexpr std::uint32_t kMaxNumber = std::numeric_limits<std::uint32_t>::max();

std::uint32_t NextNumber(std::uint32_t last, const char* allUsed) {
  if (last == kMaxNumber) {
    throw Refusal{RefusalCode::CounterExhausted, allUsed};
  }
  return last + 1;
}

void CheckActivated(const StoredState& state) {
  if (state.lifeCycle == LifeCycle::Deactivated) {
    throw Refusal{RefusalCode::LifeCycle, "the device is deactivated"};
  }
  if (state.lifeCycle != LifeCycle::Activated) {
    throw Refusal{RefusalCode::LifeCycle, "the device is not activated yet"};
  }
}

void AppendIdentity(Bytes& out, const StoredState& state) {
  AppendText(out, tag::kTaxpayerId, state.taxpayerId);
  AppendCounter(out, tag::kDeviceNumber, state.runningNumber);
}

void AppendReportHead(Bytes& out, LifeCycle lifeCycle, const StoredState& state) {
  AppendCounter(out, tag::kLifeCycle, static_cast<std::uint32_t>(lifeCycle));
  AppendIdentity(out, state);
}

/// The transactions since the last closing, 0 and 0 when there are none, and their totals.
void AppendOpenTotals(Bytes& out, const StoredState& state) {
  const bool isEmpty = state.lastReportedNumber == state.transactions.number;
  AppendCounter(out, tag::kFirstTransaction, isEmpty ? 0 : state.lastReportedNumber + 1);
  AppendCounter(out, tag::kLastTransaction, isEmpty ? 0 : state.transactions.number);
  AppendContainers(out, state.sinceClosing);
}

/// A signature that doesn't verify must not leave the device.
Signature Sign(const Keys& keys, const Bytes& message) {
  const Signature signature = keys.signing.Sign(message);
  if (!keys.verifying.Verify(message, signature)) {
    throw KeyError("the signature that was made doesn't verify, nothing is recorded");
  }
  return signature;
}

/// Writes the state, and reads what was written: a page that was damaged before may take it badly.
void Write(const Database& database, const StoredState& state) {
  WriteState(database, state);
  static_cast<void>(ReadState(database));
}

/// Signs the request with the records that the answer has so far, and records both. The rest of the state has to be
/// as it shall be.
Answer SignAndRecord(const Database& database, const Keys& keys, const Request& request, StoredState& state,
                     std::uint32_t number, Bytes response) {
  Bytes message(request.bytes.begin(), request.bytes.end());
  message.insert(message.end(), response.begin(), response.end());
  AppendRecord(response, tag::kSignature, Sign(keys, message));
  const Chain& chain = ChainOf(request.command);
  Head& head = HeadOf(state, chain);
  Append(database, head,
         {.sequenceNumber = number,
          .command = request.command,
          .request = Bytes(request.bytes.begin(), request.bytes.end()),
          .response = response});
  Write(database, state);
  CheckEnd(database, chain, head);
  Answer answer;
  answer.accepted = true;
  answer.response = std::move(response);
  answer.sequenceNumber = number;
  return answer;
}

Answer SignTransaction(const Database& database, const Keys& keys, const Request& request,
                       StoredState& state) {
  CheckActivated(state);
  const std::uint32_t number = NextNumber(state.transactions.number, "all sequence numbers are used up");
  if (request.command == Command::SignBooking) {
    Book(database, state, request.booking);
  }
  return SignAndRecord(database, keys, request, state, number, BeginResponse(state, request.command, number));
}

/// A signed report, and the deactivation, which is the last one.
Answer Close(const Database& database, const Keys& keys, const Request& request, StoredState& state) {
  CheckActivated(state);
  const std::uint32_t number = NextNumber(state.reports.number, "all report numbers are used up");
  Bytes response = BeginResponse(state, request.command, number);
  AppendOpenTotals(response, state);
  ClearOpenTotals(database);
  state.sinceClosing.clear();
  state.lastReportedNumber = state.transactions.number;
  if (request.command == Command::ReportDeactivate) {
    state.lifeCycle = LifeCycle::Deactivated;
  }
  return SignAndRecord(database, keys, request, state, number, std::move(response));
}

/// Counts a wrong PIN, which is the only refusal that changes the device.
Answer RefusePin(const Database& database, StoredState& state) {
  ++state.wrongPins;
  Write(database, state);
  const int left = kPinAttempts - state.wrongPins;
  Answer answer;
  answer.code = RefusalCode::WrongPin;
  answer.reason = left == 0   ? "the transport PIN is wrong, the device is locked now"
                  : left == 1 ? "the transport PIN is wrong, 1 attempt is left"
                              : "the transport PIN is wrong, " + std::to_string(left) + " attempts are left";
  return answer;
}

Answer Activate(const Database& database, const Keys& keys, const Request& request, StoredState& state) {
  if (state.lifeCycle == LifeCycle::Activated) {
    throw Refusal{RefusalCode::LifeCycle, "the device is activated already"};
  }
  if (state.lifeCycle == LifeCycle::Deactivated) {
    throw Refusal{RefusalCode::LifeCycle, "the device is deactivated"};
  }
  if (state.wrongPins >= kPinAttempts) {
    throw Refusal{RefusalCode::PinLocked, "the device is locked, as three transport PINs were wrong"};
  }
  const std::uint32_t number = NextNumber(state.reports.number, "all report numbers are used up");
  if (state.transportPin != request.transportPin) {
    return RefusePin(database, state);
  }
  state.lifeCycle = LifeCycle::Activated;
  state.wrongPins = 0;
  return SignAndRecord(database, keys, request, state, number, BeginResponse(state, request.command, number));
}

/// An unsigned report or one over months: it is answered in every state, and nothing changes.
Answer Show(const Database& database, const Request& request, const StoredState& state) {
  Answer answer;
  answer.accepted = true;
  AppendReportHead(answer.response, state.lifeCycle, state);
  if (request.command == Command::ReportUnsigned) {
    AppendOpenTotals(answer.response, state);
    return answer;
  }
  std::vector<Total> totals = ReadAllTotals(database, state);
  std::erase_if(totals, [&request](const Total& total) {
    return total.month < request.firstMonth || total.month > request.lastMonth;
  });
  AppendContainers(answer.response, totals);
  return answer;
}

}  // namespace

Bytes BeginResponse(const StoredState& state, Command command, std::uint32_t number) {
  Bytes response;
  if (IsTransaction(command)) {
    if (command != Command::SignDataOnly) {
      AppendIdentity(response, state);
    }
    AppendCounter(response, tag::kSequenceNumber, number);
  } else {
    const bool isLast = command == Command::ReportDeactivate;
    AppendReportHead(response, isLast ? LifeCycle::Deactivated : LifeCycle::Activated, state);
    AppendCounter(response, tag::kReportNumber, number);
  }
  return response;
}

Answer Perform(const Database& database, const Keys& keys, const Request& request, StoredState& state) {
  switch (request.command) {
    case Command::ReportSigned:
    case Command::ReportDeactivate: return Close(database, keys, request, state);
    case Command::ReportActivate: return Activate(database, keys, request, state);
    case Command::ReportUnsigned:
    case Command::ReportSpan: return Show(database, request, state);
    default: return SignTransaction(database, keys, request, state);
  }
}

}  // namespace softdevice
