// Reading of a booking's request.

#include "fuzz/Bookings.h"
#include "fuzz/Targets.h"

namespace fuzz {

void BookingRequest(Bytes data) {
  Input input(data);
  const std::uint8_t options = input.Byte();
  const Delivery delivery = Delivery::Take(input, VnZEL10cmn::ZELSerialType::Request);
  VnZEL10cmn::clsZelTransAct booking;
  if (Deliver(booking, delivery)) {
    FUZZ_CHECK(FromBase64(booking.ZelRqstData()) == delivery.Meant());
    FUZZ_CHECK(!booking.Operator().empty() && booking.Operator().size() <= 16);
    const std::size_t hash = FromBase64(booking.ItemHash()).size();
    FUZZ_CHECK(hash == 20 || hash == 32);
    const std::vector<std::uint8_t> meant = delivery.Meant();
    FUZZ_CHECK(booking.IsTraining() == LastValue(meant, VnZEL10cmn::ZelTags::Training).has_value());
    FUZZ_CHECK(booking.IsTaxExcl() == LastValue(meant, VnZEL10cmn::ZelTags::Vat_AddOn).has_value());
    FUZZ_CHECK(booking.IsDeliveryNote() == LastValue(meant, VnZEL10cmn::ZelTags::Deliverynote).has_value());
    FUZZ_CHECK(IsLastText(meant, VnZEL10cmn::ZelTags::Operator, booking.Operator()));
    VnZEL10cmn::clsZelTransAct again;
    FUZZ_CHECK(again.BinaryDataSet(delivery.type, VnZEL10cmn::ByteArray(delivery.Meant()), 0));
    FUZZ_CHECK(AskForTheSame(booking, again));
  }
  if ((options & 1) != 0) {
    CheckText(booking);
  }
  if ((options & 2) != 0) {
    CheckStillUsable(booking);
  }
}

}  // namespace fuzz
