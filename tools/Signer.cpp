#include "tools/Signer.h"

#include <cstdlib>
#include <system_error>

#include "tools/Console.h"
#include "tools/ExitStatus.h"
#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelTransAct;
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

/// Whether another sale might have been accepted.
bool IsRefusalOfRequest(softdevice::RefusalCode code) {
  using enum softdevice::RefusalCode;
  return code == Framing || code == UnexpectedRecord || code == MissingRecord || code == Length ||
         code == Value;
}

void TakeResponse(clsZelTransAct& booking, std::span<const std::uint8_t> response) {
  if (!booking.BinaryDataSet(ZELSerialType::Response, ByteArray(response), 0)) {
    throw Failure(ExitStatus::NotRight,
                  "the device's response can't be read: " + Describe(booking.ErrorObject()));
  }
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

std::span<const std::uint8_t> View(const ByteArray& bytes) { return {bytes.data(), bytes.size()}; }

ByteArray BuildRequest(clsZelTransAct& booking) {
  ByteArray request;
  if (!booking.BinaryDataGet(ZELSerialType::Request, request, 0)) {
    const std::string reason = Describe(booking.ErrorObject());
    throw Failure(ExitStatus::NotRight, reason + DescribeItemError(booking));
  }
  return request;
}

std::string ExportDocument(clsZelTransAct& booking) {
  std::string document;
  if (!booking.XmlHandler(document, true)) {
    throw Failure(ExitStatus::NotRight, Describe(booking.ErrorObject()));
  }
  return document;
}

std::size_t DocumentSizeBound(std::size_t itemCount) {
  constexpr std::size_t kBase64OfItem = 172;  // of 128 bytes
  constexpr std::size_t kRequestAndResponse = 4096;
  return kRequestAndResponse + itemCount * kBase64OfItem;
}

std::uint32_t SignBooking(clsZelTransAct& booking, const ByteArray& request, softdevice::Device& device) {
  const softdevice::Answer answer = device.Execute(softdevice::Command::SignBooking, View(request));
  if (!answer.accepted) {
    throw Failure(IsRefusalOfRequest(answer.code) ? ExitStatus::NotRight : ExitStatus::Trouble,
                  "the device refuses the booking: " + OneLine(answer.reason));
  }
  TakeResponse(booking, answer.response);
  return answer.sequenceNumber;
}

void ResumeBooking(const Sale& sale, clsZelTransAct& booking, std::uint32_t sequenceNumber,
                   const softdevice::Device& device) {
  const std::string which = "booking " + std::to_string(sequenceNumber);
  std::optional<softdevice::SignedRequest> recorded;
  try {
    recorded = device.Find(sequenceNumber);
    if (!recorded) {
      throw Failure(ExitStatus::NotRight, "the device has no " + which + ", its last one is " +
                                              std::to_string(device.LastSequenceNumber()));
    }
  } catch (const softdevice::DeviceError& error) {
    throw Failure(ExitStatus::Trouble, OneLine(error.what()));
  }
  if (!sale.date) {
    clsZelTransAct dated;
    if (dated.BinaryDataSet(ZELSerialType::Request, ByteArray(recorded->request), 0)) {
      booking.TransactionDate(dated.TransactionDate());
    }
  }
  if (BuildRequest(booking) != ByteArray(recorded->request)) {
    throw Failure(ExitStatus::NotRight, "the device signed another sale as " + which);
  }
  TakeResponse(booking, recorded->response);
}

}  // namespace zel
