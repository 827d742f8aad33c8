// The end of the day: a signed closing over what was booked, and a file's bytes signed as a data record.

#include <VnZEL10cmn/VnZEL10cmn.h>
#include <softdevice/Device.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <span>
#include <string>
#include <string_view>

using namespace VnZEL10cmn;

namespace {

int Failed(VnObject& object) {
  std::cerr << object.ErrorObject().ErrorNr() << ": " << object.ErrorObject().ErrorMsg() << '\n';
  return EXIT_FAILURE;
}

// Has the device answer a request, and hands the response to the object that made the request.
template <class Object>
bool Answered(softdevice::Device& device, softdevice::Command command, const ByteArray& request,
              Object& object) {
  const softdevice::Answer answer = device.Execute(command, request);
  if (!answer.accepted) {
    std::cerr << answer.reason << '\n';
    return false;
  }
  const ByteArray response{std::span<const std::uint8_t>(answer.response)};
  if (!object.BinaryDataSet(ZELSerialType::Response, response, 0)) {
    Failed(object);
    return false;
  }
  return true;
}

}  // namespace

int main() try {
  softdevice::OpenOptions options;
  options.create = true;
  options.taxpayerId = "DE123456789";
  options.activate = true;
  softdevice::Device device = softdevice::Device::Open("till.zel", options);

  // 1. Data that is to be kept with a signature: here the day's log. The device gets its hash only.
  constexpr std::string_view kLog = "08:05 Kasse auf\n18:30 Kasse zu\n";
  clsZelTransActData record;
  record.DataSignType(ZELDataSignTypes::DataAndTime);
  ByteArray request = ByteArray::WithBounds(0, 255);
  std::int32_t length = 0;
  if (!record.BinaryDataSet(
          ZELSerialType::BinaryData,
          ByteArray(std::span(reinterpret_cast<const std::uint8_t*>(kLog.data()), kLog.size())), 0) ||
      !record.BinaryDataGet(ZELSerialType::Request, request, 0, &length)) {
    return Failed(record);
  }
  request.RedimPreserve(length - 1);
  if (!Answered(device, softdevice::Command::SignDataAndTime, request, record)) {
    return EXIT_FAILURE;
  }
  std::cout << record.ToString() << '\n';

  // 2. The closing: a signed report of all that was booked since the last one.
  clsZelReport closing;
  closing.ReportDate(Date::Now());
  if (!closing.BinaryDataGet(ZELSerialType::Request, request, 0, ZelReportType::Signed)) {
    return Failed(closing);
  }
  if (!Answered(device, softdevice::Command::ReportSigned, request, closing)) {
    return EXIT_FAILURE;
  }
  std::cout << closing.ToString() << '\n';
  std::cout << "standard rate: " << closing.Container(1)->Turnover() << " EUR\n";

  // 3. Both documents, for the archive. That of the data record doesn't hold the data: keep it as well.
  std::string recordXml;
  std::string closingXml;
  if (!record.XmlHandler(recordXml, true)) {
    return Failed(record);
  }
  if (!closing.XmlHandler(closingXml, true)) {
    return Failed(closing);
  }
  std::ofstream recordFile("log.xml", std::ios::binary);
  std::ofstream closingFile("closing.xml", std::ios::binary);
  if (!(recordFile << recordXml).flush() || !(closingFile << closingXml).flush()) {
    std::cerr << "can't write the documents\n";
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
} catch (const softdevice::DeviceError& error) {
  std::cerr << error.what() << '\n';
  return EXIT_FAILURE;
}
