#include "softdevice/Commands.h"

#include <limits>
#include <string>

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

void CheckActivated(const DeviceState& state) {
  if (state.lifeCycle == LifeCycle::Deactivated) {
    throw Refusal{RefusalCode::LifeCycle, "the device is deactivated"};
  }
  if (state.lifeCycle != LifeCycle::Activated) {
    throw Refusal{RefusalCode::LifeCycle, "the device is not activated yet"};
  }
}

void AppendIdentity(Bytes& out, const Identity& identity) {
  AppendText(out, tag::kTaxpayerId, identity.taxpayerId);
  AppendCounter(out, tag::kDeviceNumber, identity.runningNumber);
}

void AppendReportHead(Bytes& out, LifeCycle lifeCycle, const Identity& identity) {
  AppendCounter(out, tag::kLifeCycle, static_cast<std::uint32_t>(lifeCycle));
  AppendIdentity(out, identity);
}

/// The transactions since the last closing, 0 and 0 when there are none, and their totals.
void AppendOpenTotals(Bytes& out, const Database& database, const DeviceState& state) {
  const bool isEmpty = state.lastReportedNumber == state.lastSequenceNumber;
  AppendCounter(out, tag::kFirstTransaction, isEmpty ? 0 : state.lastReportedNumber + 1);
  AppendCounter(out, tag::kLastTransaction, isEmpty ? 0 : state.lastSequenceNumber);
  AppendContainers(out, ReadOpenTotals(database));
}

/// Signs the request with the records that the answer has so far, and records both.
Answer SignAndRecord(const Database& database, const Identity& identity, const Request& request,
                     std::uint32_t number, Bytes response) {
  Bytes message(request.bytes.begin(), request.bytes.end());
  message.insert(message.end(), response.begin(), response.end());
  AppendRecord(response, tag::kSignature, identity.key.Sign(message));
  RecordSigned(database, {.sequenceNumber = number,
                          .command = request.command,
                          .request = Bytes(request.bytes.begin(), request.bytes.end()),
                          .response = response});
  Answer answer;
  answer.accepted = true;
  answer.response = std::move(response);
  answer.sequenceNumber = number;
  return answer;
}

Answer SignTransaction(const Database& database, const Identity& identity, const Request& request,
                       const DeviceState& state) {
  CheckActivated(state);
  const std::uint32_t number = NextNumber(state.lastSequenceNumber, "all sequence numbers are used up");
  Bytes response;
  if (request.command != Command::SignDataOnly) {
    AppendIdentity(response, identity);
  }
  AppendCounter(response, tag::kSequenceNumber, number);
  database.Prepare("UPDATE device SET last_sequence_number = ?").Bind(number).Step();
  if (request.command == Command::SignBooking) {
    AddToTotals(database, request.booking);
  }
  return SignAndRecord(database, identity, request, number, std::move(response));
}

/// A signed report, and the deactivation, which is the last one.
Answer Close(const Database& database, const Identity& identity, const Request& request,
             const DeviceState& state) {
  CheckActivated(state);
  const std::uint32_t number = NextNumber(state.lastReportNumber, "all report numbers are used up");
  const LifeCycle after =
      request.command == Command::ReportDeactivate ? LifeCycle::Deactivated : LifeCycle::Activated;
  Bytes response;
  AppendReportHead(response, after, identity);
  AppendCounter(response, tag::kReportNumber, number);
  AppendOpenTotals(response, database, state);
  ClearOpenTotals(database);
  database
      .Prepare(
          "UPDATE device SET life_cycle = ?, last_report_number = ?,"
          " last_reported_number = last_sequence_number")
      .Bind(static_cast<std::int64_t>(after))
      .Bind(number)
      .Step();
  return SignAndRecord(database, identity, request, number, std::move(response));
}

/// Counts a wrong PIN, which is the only refusal that changes the device.
Answer RefusePin(const Database& database, int wrongPins) {
  database.Prepare("UPDATE device SET wrong_pins = ?").Bind(wrongPins).Step();
  const int left = kPinAttempts - wrongPins;
  Answer answer;
  answer.code = RefusalCode::WrongPin;
  answer.reason = left == 0   ? "the transport PIN is wrong, the device is locked now"
                  : left == 1 ? "the transport PIN is wrong, 1 attempt is left"
                              : "the transport PIN is wrong, " + std::to_string(left) + " attempts are left";
  return answer;
}

bool IsTransportPin(const Database& database, const std::string& pin) {
  Statement row = database.Prepare("SELECT transport_pin FROM device");
  return row.Step() && row.TextAt(0) == pin;
}

Answer Activate(const Database& database, const Identity& identity, const Request& request,
                const DeviceState& state) {
  if (state.lifeCycle == LifeCycle::Activated) {
    throw Refusal{RefusalCode::LifeCycle, "the device is activated already"};
  }
  if (state.lifeCycle == LifeCycle::Deactivated) {
    throw Refusal{RefusalCode::LifeCycle, "the device is deactivated"};
  }
  if (state.IsLocked()) {
    throw Refusal{RefusalCode::PinLocked, "the device is locked, as three transport PINs were wrong"};
  }
  const std::uint32_t number = NextNumber(state.lastReportNumber, "all report numbers are used up");
  if (!IsTransportPin(database, request.transportPin)) {
    return RefusePin(database, state.wrongPins + 1);
  }
  database.Prepare("UPDATE device SET life_cycle = ?, wrong_pins = 0, last_report_number = ?")
      .Bind(static_cast<std::int64_t>(LifeCycle::Activated))
      .Bind(number)
      .Step();
  Bytes response;
  AppendReportHead(response, LifeCycle::Activated, identity);
  AppendCounter(response, tag::kReportNumber, number);
  return SignAndRecord(database, identity, request, number, std::move(response));
}

/// An unsigned report or one over months: it is answered in every state, and nothing changes.
Answer Show(const Database& database, const Identity& identity, const Request& request,
            const DeviceState& state) {
  Answer answer;
  answer.accepted = true;
  AppendReportHead(answer.response, state.lifeCycle, identity);
  if (request.command == Command::ReportUnsigned) {
    AppendOpenTotals(answer.response, database, state);
  } else {
    AppendContainers(answer.response, ReadMonths(database, request.firstMonth, request.lastMonth));
  }
  return answer;
}

}  // namespace

Answer Perform(const Database& database, const Identity& identity, const Request& request) {
  const DeviceState state = ReadState(database);
  switch (request.command) {
    case Command::ReportSigned:
    case Command::ReportDeactivate: return Close(database, identity, request, state);
    case Command::ReportActivate: return Activate(database, identity, request, state);
    case Command::ReportUnsigned:
    case Command::ReportSpan: return Show(database, identity, request, state);
    default: return SignTransaction(database, identity, request, state);
  }
}

}  // namespace softdevice
