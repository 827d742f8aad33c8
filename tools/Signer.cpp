#include "tools/Signer.h"

#include <cstdlib>
#include <system_error>

#include "tools/Console.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::ZELDataSignTypes;
using VnZEL10cmn::ZelReportType;
using VnZEL10cmn::ZELSerialType;

namespace {

constexpr const char* kTaxpayerId = "SOFTWARE-DEVICE-TEST";

std::filesystem::path AbsoluteFrom(const char* variable) {
  const char* const value = std::getenv(variable);
  const std::filesystem::path path = value == nullptr ? "" : value;
  return path.is_absolute() ? path : std::filesystem::path();
}

softdevice::Device Open(const std::filesystem::path& path, const softdevice::OpenOptions& options) {
  try {
    return softdevice::Device::Open(path, options);
  } catch (const softdevice::DeviceError& error) {
    throw Failure(ExitStatus::Trouble, OneLine(error.what()));
  }
}

/// Whether another request might have been accepted.
bool IsRefusalOfRequest(softdevice::RefusalCode code) {
  using enum softdevice::RefusalCode;
  return code == Framing || code == UnexpectedRecord || code == MissingRecord || code == Length ||
         code == Value || code == WrongPin;
}

template <typename Object>
void TakeResponse(Object& object, std::span<const std::uint8_t> response) {
  if (!object.BinaryDataSet(ZELSerialType::Response, ByteArray(response), 0)) {
    throw Failure(ExitStatus::NotRight,
                  "the device's response can't be read: " + Describe(object.ErrorObject()));
  }
}

/// Has a request answered. `what` is said in a refusal.
softdevice::Answer Execute(softdevice::Device& device, softdevice::Command command, const ByteArray& request,
                           const std::string& what) {
  softdevice::Answer answer = device.Execute(command, View(request));
  if (!answer.accepted) {
    const bool inactive = answer.code == softdevice::RefusalCode::LifeCycle &&
                          command != softdevice::Command::ReportActivate &&
                          device.State().lifeCycle == softdevice::LifeCycle::Personalized;
    throw Failure(IsRefusalOfRequest(answer.code) ? ExitStatus::NotRight : ExitStatus::Trouble,
                  "the device refuses the " + what + ": " + OneLine(answer.reason) +
                      (inactive ? " (zel report --activate PIN does that)" : ""));
  }
  return answer;
}

/// What the device recorded under a number.
softdevice::SignedRequest Recorded(const std::string& what, std::uint32_t last,
                                   const std::optional<softdevice::SignedRequest>& recorded) {
  if (!recorded) {
    throw Failure(ExitStatus::NotRight,
                  "the device has no " + what + ", its last one is " + std::to_string(last));
  }
  return *recorded;
}

/// Runs a reader of the device file.
template <typename Read>
auto FromDevice(Read&& read) {
  try {
    return read();
  } catch (const softdevice::DeviceError& error) {
    throw Failure(ExitStatus::Trouble, OneLine(error.what()));
  }
}

/// The record's request, built anew.
ByteArray BuildDataRequest(clsZelTransActData& record) {
  constexpr std::int32_t kMost = 255;
  ByteArray request = ByteArray::WithBounds(0, kMost);
  std::int32_t length = 0;
  if (!record.BinaryDataGet(ZELSerialType::Request, request, 0, &length)) {
    throw Failure(ExitStatus::NotRight, Describe(record.ErrorObject()));
  }
  request.RedimPreserve(length - 1);
  return request;
}

softdevice::Command CommandOf(ZELDataSignTypes type) {
  switch (type) {
    case ZELDataSignTypes::DataAndTpID: return softdevice::Command::SignDataAndTpId;
    case ZELDataSignTypes::DataAndTime: return softdevice::Command::SignDataAndTime;
    default: return softdevice::Command::SignDataOnly;
  }
}

ZELDataSignTypes SignTypeOf(softdevice::Command command) {
  switch (command) {
    case softdevice::Command::SignDataAndTpId: return ZELDataSignTypes::DataAndTpID;
    case softdevice::Command::SignDataAndTime: return ZELDataSignTypes::DataAndTime;
    default: return ZELDataSignTypes::DataOnly;
  }
}

softdevice::Command CommandOf(ZelReportType type) {
  switch (type) {
    case ZelReportType::Unsigned: return softdevice::Command::ReportUnsigned;
    case ZelReportType::Span: return softdevice::Command::ReportSpan;
    case ZelReportType::ActivateZEL: return softdevice::Command::ReportActivate;
    case ZelReportType::DeactivateZEL: return softdevice::Command::ReportDeactivate;
    default: return softdevice::Command::ReportSigned;
  }
}

ZelReportType ReportTypeOf(softdevice::Command command) {
  switch (command) {
    case softdevice::Command::ReportActivate: return ZelReportType::ActivateZEL;
    case softdevice::Command::ReportDeactivate: return ZelReportType::DeactivateZEL;
    default: return ZelReportType::Signed;
  }
}

ByteArray BuildReportRequest(clsZelReport& report, ZelReportType type) {
  ByteArray request;
  if (!report.BinaryDataGet(ZELSerialType::Request, request, 0, type)) {
    throw Failure(ExitStatus::NotRight, Describe(report.ErrorObject()));
  }
  return request;
}

/// The items keep their own errors.
std::string DescribeItemError(const clsZelTransAct& booking) {
  int number = 0;
  for (const auto& item : booking) {
    ++number;
    if (item->HasError()) return "; item " + std::to_string(number) + ": " + Describe(item->ErrorObject());
  }
  return {};
}

}  // namespace

std::filesystem::path DefaultDevicePath() {
  std::filesystem::path folder = AbsoluteFrom("XDG_DATA_HOME");
  if (folder.empty()) {
    folder = AbsoluteFrom("HOME");
    if (folder.empty()) {
      throw Failure(ExitStatus::Trouble,
                    "there is no home folder for the device file; name a device file with --device");
    }
    folder = folder / ".local" / "share";
  }
  return folder / "zel" / "device.db";
}

softdevice::Device OpenDevice(const std::optional<std::filesystem::path>& path) {
  return Open(path ? *path : DefaultDevicePath(), {});
}

softdevice::Device MakeDevice(const std::filesystem::path& path, const softdevice::OpenOptions& options) {
  return Open(path, options);
}

softdevice::Device OpenOrCreateDevice(const std::filesystem::path& path) {
  std::error_code ignored;
  const bool isNew =
      std::filesystem::file_size(path, ignored) == 0 || !std::filesystem::exists(path, ignored);
  softdevice::OpenOptions options;
  options.create = true;
  options.taxpayerId = kTaxpayerId;
  options.activate = true;
  softdevice::Device device = Open(path, options);
  if (isNew) {
    Say("made and activated the software signing device " + Quoted(path) + " for taxpayer " +
        device.TaxpayerId());
  }
  return device;
}

ByteArray BuildRequest(clsZelTransAct& booking) {
  ByteArray request;
  if (!booking.BinaryDataGet(ZELSerialType::Request, request, 0)) {
    const std::string reason = Describe(booking.ErrorObject());
    throw Failure(ExitStatus::NotRight, reason + DescribeItemError(booking));
  }
  return request;
}

std::size_t DocumentSizeBound(std::size_t itemCount) {
  constexpr std::size_t kBase64OfItem = 172;  // of 128 bytes
  constexpr std::size_t kRequestAndResponse = 4096;
  return kRequestAndResponse + itemCount * kBase64OfItem;
}

std::uint32_t SignBooking(clsZelTransAct& booking, const ByteArray& request, softdevice::Device& device) {
  const softdevice::Answer answer = Execute(device, softdevice::Command::SignBooking, request, "booking");
  TakeResponse(booking, answer.response);
  return answer.sequenceNumber;
}

std::uint32_t SignData(clsZelTransActData& record, softdevice::Device& device) {
  const ByteArray request = BuildDataRequest(record);
  const softdevice::Answer answer = Execute(device, CommandOf(record.DataSignType()), request, "data record");
  TakeResponse(record, answer.response);
  return answer.sequenceNumber;
}

Exchange AnswerReport(clsZelReport& report, ZelReportType type, softdevice::Device& device) {
  Exchange exchange;
  exchange.request = BuildReportRequest(report, type);
  const softdevice::Answer answer = Execute(device, CommandOf(type), exchange.request, "report");
  exchange.response = ByteArray(std::span<const std::uint8_t>(answer.response));
  exchange.number = answer.sequenceNumber;
  TakeResponse(report, answer.response);
  return exchange;
}

void ResumeBooking(const Sale& sale, clsZelTransAct& booking, std::uint32_t sequenceNumber,
                   const softdevice::Device& device) {
  const std::string which = "booking " + std::to_string(sequenceNumber);
  const softdevice::SignedRequest recorded =
      FromDevice([&] { return Recorded(which, device.LastSequenceNumber(), device.Find(sequenceNumber)); });
  if (!sale.date) {
    clsZelTransAct dated;
    if (dated.BinaryDataSet(ZELSerialType::Request, ByteArray(recorded.request), 0)) {
      booking.TransactionDate(dated.TransactionDate());
    }
  }
  if (BuildRequest(booking) != ByteArray(recorded.request)) {
    throw Failure(ExitStatus::NotRight, "the device signed another sale as " + which);
  }
  TakeResponse(booking, recorded.response);
}

void ResumeData(clsZelTransActData& record, std::uint32_t sequenceNumber, const softdevice::Device& device) {
  const std::string which = "data record " + std::to_string(sequenceNumber);
  const softdevice::SignedRequest recorded =
      FromDevice([&] { return Recorded(which, device.LastSequenceNumber(), device.Find(sequenceNumber)); });
  record.DataSignType(SignTypeOf(recorded.command));
  clsZelTransActData dated;
  if (dated.BinaryDataSet(ZELSerialType::Request, ByteArray(recorded.request), 0)) {
    record.TransactionDate(dated.TransactionDate());
  }
  if (BuildDataRequest(record) != ByteArray(recorded.request)) {
    throw Failure(ExitStatus::NotRight, "the device signed something else as " + which);
  }
  TakeResponse(record, recorded.response);
}

Exchange ResumeReport(clsZelReport& report, std::uint32_t reportNumber, const softdevice::Device& device) {
  const std::string which = "report " + std::to_string(reportNumber);
  const softdevice::SignedRequest recorded = FromDevice(
      [&] { return Recorded(which, device.State().lastReportNumber, device.FindReport(reportNumber)); });
  Exchange exchange{.request = ByteArray(recorded.request),
                    .response = ByteArray(recorded.response),
                    .number = reportNumber};
  clsZelReport read;
  if (!read.BinaryDataSet(ZELSerialType::Request, exchange.request, 0)) {
    throw Failure(ExitStatus::NotRight, "the device's record can't be read: " + Describe(read.ErrorObject()));
  }
  report.ReportDate(read.ReportDate());
  report.TransportPIN(read.TransportPIN());
  if (BuildReportRequest(report, ReportTypeOf(recorded.command)) != exchange.request) {
    throw Failure(ExitStatus::NotRight, "the device signed other report items as " + which);
  }
  TakeResponse(report, recorded.response);
  return exchange;
}

}  // namespace zel
