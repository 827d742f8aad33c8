#include "softdevice/Request.h"

#include <array>
#include <span>

namespace softdevice {

namespace {

constexpr std::array kData = {Field{tag::kItemHash, true}};
constexpr std::array kDataAndTime = {Field{tag::kDate, true}, Field{tag::kTime, true},
                                     Field{tag::kItemHash, true}};
constexpr std::array kSignedReport = {Field{tag::kDate, true}, Field{tag::kTime, true},
                                      Field{tag::kReportHash, false}};
constexpr std::array kPlainReport = {Field{tag::kDate, true}, Field{tag::kTime, true}};
constexpr std::array kSpan = {Field{tag::kDate, true}, Field{tag::kTime, true}, Field{tag::kFirstMonth, true},
                              Field{tag::kLastMonth, true}};
constexpr std::array kActivation = {Field{tag::kDate, true}, Field{tag::kTime, true},
                                    Field{tag::kTransportPin, true}};

/// The records of all requests but bookings.
std::span<const Field> FieldsOf(Command command) {
  switch (command) {
    case Command::SignDataOnly:
    case Command::SignDataAndTpId: return kData;
    case Command::SignDataAndTime: return kDataAndTime;
    case Command::ReportSigned: return kSignedReport;
    case Command::ReportUnsigned:
    case Command::ReportDeactivate: return kPlainReport;
    case Command::ReportSpan: return kSpan;
    case Command::ReportActivate: return kActivation;
    case Command::SignBooking: break;
  }
  throw Refusal{RefusalCode::UnknownCommand,
                "command " + std::to_string(static_cast<int>(command)) + " is unknown, expected 1 to 9"};
}

}  // namespace

Request ReadRequest(Command command, ByteView bytes) {
  Request request;
  request.command = command;
  request.bytes = bytes;
  if (command == Command::SignBooking) {
    request.booking = ReadBookingRequest(bytes);
    return request;
  }
  RecordReader reader(bytes, "the request");
  ReadInOrder(reader, FieldsOf(command), [&request](const Record& record) {
    switch (record.tag) {
      case tag::kDate: ReadMonthOfDate(record); break;
      case tag::kTime: CheckTime(record); break;
      case tag::kFirstMonth: request.firstMonth = ReadMonth(record); break;
      case tag::kLastMonth:
        request.lastMonth = ReadMonth(record);
        if (request.lastMonth < request.firstMonth) {
          RefuseValue(record, "the last month lies before the first");
        }
        break;
      case tag::kTransportPin: request.transportPin = ReadTransportPin(record); break;
      default: CheckHash(record);
    }
  });
  return request;
}

}  // namespace softdevice
