// Reading of the device's response to a booking.

#include <algorithm>

#include "fuzz/Bookings.h"
#include "fuzz/Targets.h"

namespace fuzz {

void BookingResponse(Bytes data) {
  using VnZEL10cmn::ByteArray;
  using VnZEL10cmn::ZelTags;
  Input input(data);
  const std::uint8_t options = input.Byte();
  const Delivery delivery = Delivery::Take(input, VnZEL10cmn::ZELSerialType::Response);
  VnZEL10cmn::clsZelTransAct booking;
  if (Deliver(booking, delivery)) {
    CheckHandOut(delivery.Meant(), [&](ByteArray& buffer, std::int32_t start, std::int32_t* length) {
      return booking.BinaryDataGet(VnZEL10cmn::ZELSerialType::Response, buffer, start, length);
    });
    const std::vector<std::uint8_t> meant = delivery.Meant();
    FUZZ_CHECK(std::equal(booking.ZelRespTpID().begin(), booking.ZelRespTpID().end(), meant.begin() + 2));
    const std::vector<std::uint8_t> signature = FromBase64(booking.ZelRespSignature());
    FUZZ_CHECK(signature.size() >= 48 && signature.size() <= 64);
    FUZZ_CHECK(std::search(meant.begin(), meant.end(), signature.begin(), signature.end()) != meant.end());
    // Its four records, written again, are a response that says the same.
    VnZEL10cmn::clsZelBaseCoding coder;
    ByteArray response = Canary(0, 199);
    std::int32_t end = 0;
    FUZZ_CHECK(coder.SetDataAscii(response, end, ZelTags::Tp_ID, booking.ZelRespTpID()));
    FUZZ_CHECK(coder.SetZelCounter(response, end, ZelTags::Tp_ID_No, booking.ZelRespTpIDNr()));
    FUZZ_CHECK(coder.SetZelCounter(response, end, ZelTags::Seq_Nr_Trans, booking.ZelRespSeqNr()));
    FUZZ_CHECK(coder.SetDataBinary(response, end, ZelTags::Signature,
                                   ByteArray(FromBase64(booking.ZelRespSignature()))));
    FUZZ_CHECK(IsIntactOutside(response, 0, end));
    VnZEL10cmn::clsZelTransAct again;
    FUZZ_CHECK(again.BinaryDataSet(delivery.type, response, 0, end));
    FUZZ_CHECK(AnswerTheSame(booking, again));
  }
  if ((options & 1) != 0) {
    CheckText(booking);
  }
  if ((options & 2) != 0) {
    CheckStillUsable(booking);
  }
}

}  // namespace fuzz
