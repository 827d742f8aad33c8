// From a sale to a signed booking: compose it, have it signed, print the receipt, keep the document.

#include <VnZEL10cmn/VnZEL10cmn.h>
#include <softdevice/Device.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <span>
#include <string>

using namespace VnZEL10cmn;

namespace {

// An operation that answers False has left number, message and place in its object.
int Failed(VnObject& object) {
  std::cerr << object.ErrorObject().ErrorNr() << ": " << object.ErrorObject().ErrorMsg() << '\n';
  return EXIT_FAILURE;
}

}  // namespace

int main() try {
  // 1. The sale. A price is that of the whole line, in its VAT class.
  clsZelTransAct booking;
  booking.VatList(std::make_shared<clsZelVatList>());
  booking.TransactionDate(Date::Now());
  booking.Operator("Anna");

  const auto coffee = std::make_shared<clsZelItemCash>();
  coffee->SetItemData(1, "Kaffee", "Tasse", Currency::FromText("2.80"));  // the first price: standard rate
  const auto bread = std::make_shared<clsZelItemCash>();
  const Currency loaf = Currency::FromText("3.45");
  bread->SetItemData(2, "Roggenbrot", "Stk.", 0, 2 * loaf);  // the second price: reduced rate
  if (!booking.AddItem(coffee) || !booking.AddItem(bread)) {
    return Failed(booking);
  }

  // 2. The request for the device.
  ByteArray request;
  if (!booking.BinaryDataGet(ZELSerialType::Request, request, 0)) {
    return Failed(booking);
  }

  // 3. The device signs it. The software device is made on first use and lives in one file.
  softdevice::OpenOptions options;
  options.create = true;
  options.taxpayerId = "DE123456789";
  options.activate = true;
  softdevice::Device device = softdevice::Device::Open("till.zel", options);
  const softdevice::Answer answer = device.Execute(softdevice::Command::SignBooking, request);
  if (!answer.accepted) {
    std::cerr << answer.reason << '\n';
    return EXIT_FAILURE;
  }

  // 4. Its response, back into the booking.
  const ByteArray response{std::span<const std::uint8_t>(answer.response)};
  if (!booking.BinaryDataSet(ZELSerialType::Response, response, 0)) {
    return Failed(booking);
  }

  // 5. The receipt for the customer, the document for the archive.
  std::cout << booking.ToString() << '\n';
  std::string document;
  if (!booking.XmlHandler(document, true)) {
    return Failed(booking);
  }
  std::ofstream file("booking.xml", std::ios::binary);
  if (!(file << document).flush()) {
    std::cerr << "can't write booking.xml\n";
    return EXIT_FAILURE;
  }

  // 6. Years later: the document is all that is needed to have the booking again.
  clsZelTransAct archived;
  if (!archived.XmlHandler(document, false)) {
    return Failed(archived);
  }
  std::cout << archived.TransactionDate() << ": signed for " << archived.ZelRespTpID() << ", items "
            << archived.ItemCount() << ", signature " << archived.ZelRespSignature() << '\n';
  return EXIT_SUCCESS;
} catch (const softdevice::DeviceError& error) {
  std::cerr << error.what() << '\n';
  return EXIT_FAILURE;
}
