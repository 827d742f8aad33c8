#include "softdevice/Request.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

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

std::string Digits(std::int32_t number, std::size_t count) {
  const std::string digits = std::to_string(number);
  return std::string(count - std::min(count, digits.size()), '0') + digits;
}

}  // namespace

Request ReadRequest(Command command, ByteView bytes) {
  Request request;
  request.command = command;
  request.bytes = bytes;
  if (command == Command::SignBooking) {
    request.booking = ReadBookingRequest(bytes);
    request.moment = request.booking.moment;
    return request;
  }
  RecordReader reader(bytes, "the request");
  ReadInOrder(reader, FieldsOf(command), [&request](const Record& record) {
    switch (record.tag) {
      case tag::kDate: request.moment.date = ReadDate(record); break;
      case tag::kTime: request.moment.time = ReadTime(record); break;
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

void CheckMoment(const Request& request) {
  constexpr Moment kNone{};
  constexpr Moment kUndated{2000'01'01, 0};
  constexpr Moment kLast{2099'12'31, 23'59};
  const Moment& moment = request.moment;
  if (moment == kNone || (moment > kUndated && moment <= kLast)) return;
  const std::string text = Digits(moment.date / 10000, 4) + "-" + Digits(moment.date / 100 % 100, 2) + "-" +
                           Digits(moment.date % 100, 2) + " " + Digits(moment.time / 100, 2) + ":" +
                           Digits(moment.time % 100, 2);
  throw Refusal{RefusalCode::Value,
                "position 0, " + DescribeTag(tag::kDate) + ": " + text +
                    " can't be right, expected a time after 2000-01-01 00:00 and not after 2099-12-31 23:59"};
}

}  // namespace softdevice
