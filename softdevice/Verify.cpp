#include "softdevice/Verify.h"

#include <algorithm>
#include <optional>

#include "softdevice/BookingRequest.h"
#include "softdevice/Key.h"
#include "softdevice/Records.h"

namespace softdevice {

namespace {

constexpr Field kResponseFields[] = {{tag::kTaxpayerId, true},
                                     {tag::kDeviceNumber, true},
                                     {tag::kSequenceNumber, true},
                                     {tag::kSignature, true}};

constexpr std::size_t kMaxTaxpayerIdLength = 32;

/// Checks the response's records and returns that of the signature.
Record ReadBookingResponse(ByteView response) {
  Record signature{};
  RecordReader reader(response, "the response");
  ReadInOrder(reader, kResponseFields, [&signature](const Record& record) {
    switch (record.tag) {
      case tag::kTaxpayerId: ReadText(record, kMaxTaxpayerIdLength); break;
      case tag::kDeviceNumber:
      case tag::kSequenceNumber: ReadCounter(record); break;
      default: ReadSignature(record); signature = record;
    }
  });
  return signature;
}

}  // namespace

Verdict VerifyBooking(std::span<const std::uint8_t> request, std::span<const std::uint8_t> response,
                      std::string_view publicKeyPem) {
  // A request that the device would have refused can't have been signed as a booking, so that nothing else
  // that a device ever signs passes for one.
  try {
    ReadBookingRequest(request);
  } catch (const Refusal& refusal) {
    return {false, "the request is no booking: " + refusal.reason};
  }
  try {
    const Record signature = ReadBookingResponse(response);
    Bytes message(request.begin(), request.end());
    const ByteView signedPart = response.first(signature.position);
    message.insert(message.end(), signedPart.begin(), signedPart.end());
    if (!Key::FromPublicPem(publicKeyPem).Verify(message, ReadSignature(signature))) {
      return {false, "the signature doesn't belong to this request, response and public key"};
    }
    return {true, {}};
  } catch (const Refusal& refusal) {
    return {false, "the response is no answer to a booking: " + refusal.reason};
  } catch (const KeyError& error) {
    return {false, std::string("the public key can't be used: ") + error.what()};
  }
}

}  // namespace softdevice
