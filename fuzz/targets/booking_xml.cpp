// Import of a booking's document.

#include "fuzz/Bookings.h"
#include "fuzz/Targets.h"

namespace fuzz {

void BookingXml(Bytes data) {
  Input input(data);
  const std::uint8_t options = input.Byte();
  std::string document;
  if ((options & 1) != 0) {
    document = Input::TextOf(input.Rest());
  } else {
    document = "<transactionEncoded>";
    document += XmlElement(input, "itemListEncoded");
    document += XmlElement(input, "transactionRequest");
    document += XmlElement(input, "transactionResponse");
    document += (options & 2) != 0 ? "" : "</transactionEncoded>";
  }
  VnZEL10cmn::clsZelTransAct booking;
  std::string text = document;
  const bool done = booking.XmlHandler(text, false);
  CheckOutcome(booking, done, "");
  FUZZ_CHECK(text == document);
  if (done) {
    CheckExport(booking, [](VnZEL10cmn::clsZelTransAct& left, VnZEL10cmn::clsZelTransAct& right) {
      return AskForTheSame(left, right) && AnswerTheSame(left, right) &&
             left.ItemCount() == right.ItemCount();
    });
  } else {
    FUZZ_CHECK(!booking.ErrorObject().ErrorFunction().empty());
  }
  if ((options & 4) != 0) {
    CheckText(booking);
    CheckStillUsable(booking);
  }
}

}  // namespace fuzz
