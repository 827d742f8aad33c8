#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "softdevice/Device.h"
#include "tools/Bytes.h"
#include "tools/ExitStatus.h"
#include "tools/Sale.h"
#include "tools/Text.h"

/// What the command line does with the software signing device.
namespace zel {

/// $XDG_DATA_HOME/zel/device.db, or ~/.local/share/zel/device.db. Throws `Failure` (Trouble) where there is
/// neither folder.
std::filesystem::path DefaultDevicePath();

/// Opens a device, the default one where no path is given. Throws `Failure` (Trouble).
softdevice::Device OpenDevice(const std::optional<std::filesystem::path>& path);

/// Makes a device. Throws `Failure` (Trouble).
softdevice::Device MakeDevice(const std::filesystem::path& path, const softdevice::OpenOptions& options);

/// Opens a device for signing. Where there is none, one is made and activated, which is said on standard
/// error.
softdevice::Device OpenOrCreateDevice(const std::filesystem::path& path);

/// Builds the booking's request. Throws `Failure` (NotRight) with the library's reason.
VnZEL10cmn::ByteArray BuildRequest(VnZEL10cmn::clsZelTransAct& booking);

/// The XML document of a booking, report or data record. Throws `Failure` (NotRight).
template <typename Object>
std::string ExportDocument(Object& object) {
  std::string document;
  if (!object.XmlHandler(document, true)) {
    throw Failure(ExitStatus::NotRight, Describe(object.ErrorObject()));
  }
  return document;
}

/// At least as many bytes as the document of a sale with so many items takes.
std::size_t DocumentSizeBound(std::size_t itemCount);

/// Has the request signed, hands the response to the booking, and returns the sequence number. Throws
/// `Failure`: NotRight when the device refuses the request, Trouble when it can't record it.
std::uint32_t SignBooking(VnZEL10cmn::clsZelTransAct& booking, const VnZEL10cmn::ByteArray& request,
                          softdevice::Device& device);

/// The same for a data record, which the device signs as its sign type says.
std::uint32_t SignData(VnZEL10cmn::clsZelTransActData& record, softdevice::Device& device);

/// What went to the device and came back.
struct Exchange {
  VnZEL10cmn::ByteArray request;
  VnZEL10cmn::ByteArray response;
  std::uint32_t number = 0;  ///< of a report; 0 for one that isn't signed
};

/// Builds the request of a report of that kind, has it answered, and hands the response to the report. Throws
/// `Failure`: NotRight when the device refuses the request or the transport PIN, Trouble when it is in no state
/// to answer.
Exchange AnswerReport(VnZEL10cmn::clsZelReport& report, VnZEL10cmn::ZelReportType type,
                      softdevice::Device& device);

/// Takes request and response of a number that the device gave before into the booking of the same sale.
/// Throws `Failure` (NotRight) when the device signed something else under that number, or nothing.
void ResumeBooking(const Sale& sale, VnZEL10cmn::clsZelTransAct& booking, std::uint32_t sequenceNumber,
                   const softdevice::Device& device);

/// The same for the record of the same data, which takes over date and sign type.
void ResumeData(VnZEL10cmn::clsZelTransActData& record, std::uint32_t sequenceNumber,
                const softdevice::Device& device);

/// The same for a report number. Report items are those that the report holds already.
Exchange ResumeReport(VnZEL10cmn::clsZelReport& report, std::uint32_t reportNumber,
                      const softdevice::Device& device);

}  // namespace zel
