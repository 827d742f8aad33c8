#pragma once

#include "fuzz/Objects.h"

namespace fuzz {

/// Whether two bookings hold the same request.
inline bool AskForTheSame(VnZEL10cmn::clsZelTransAct& left, VnZEL10cmn::clsZelTransAct& right) {
  bool same = left.TransactionDate() == right.TransactionDate() && left.Operator() == right.Operator() &&
              left.ItemHash() == right.ItemHash() && left.CurrencyCode() == right.CurrencyCode() &&
              left.IsTaxExcl() == right.IsTaxExcl() && left.IsTraining() == right.IsTraining() &&
              left.IsDeliveryNote() == right.IsDeliveryNote() && left.ZelRqstData() == right.ZelRqstData();
  for (std::int32_t number = 1; number <= 6; ++number) {
    VnZEL10cmn::Currency leftTurnover;
    VnZEL10cmn::Currency leftVat;
    VnZEL10cmn::Currency leftRate;
    VnZEL10cmn::Currency rightTurnover;
    VnZEL10cmn::Currency rightVat;
    VnZEL10cmn::Currency rightRate;
    FUZZ_CHECK(left.GetContainerValues(number, leftTurnover, leftVat, leftRate));
    FUZZ_CHECK(right.GetContainerValues(number, rightTurnover, rightVat, rightRate));
    same = same && leftTurnover == rightTurnover && leftVat == rightVat && leftRate == rightRate;
  }
  return same;
}

/// Whether two bookings hold the same response.
inline bool AnswerTheSame(const VnZEL10cmn::clsZelTransAct& left, const VnZEL10cmn::clsZelTransAct& right) {
  return left.ZelRespTpID() == right.ZelRespTpID() && left.ZelRespTpIDNr() == right.ZelRespTpIDNr() &&
         left.ZelRespSeqNr() == right.ZelRespSeqNr() && left.ZelRespSignature() == right.ZelRespSignature();
}

/// Whatever a booking was given: cleared, it makes a request like a new one.
inline void CheckStillUsable(VnZEL10cmn::clsZelTransAct& booking) {
  FUZZ_CHECK(booking.Clear() && !booking.HasError());
  const auto item = std::make_shared<VnZEL10cmn::clsZelItemCash>();
  FUZZ_CHECK(item->SetItemData(1, "Brot", "", VnZEL10cmn::Currency::FromScaled(19'900)));
  FUZZ_CHECK(booking.AddItem(item));
  booking.VatList(std::make_shared<VnZEL10cmn::clsZelVatList>());
  booking.Operator("Kasse 1");
  booking.TransactionDate(VnZEL10cmn::Date::FromCivil(2026, 12, 31, 8, 5));
  VnZEL10cmn::ByteArray request;
  FUZZ_CHECK(booking.BinaryDataGet(VnZEL10cmn::ZELSerialType::Request, request, 0));
  FUZZ_CHECK(!booking.HasError() && request[0] == static_cast<std::uint8_t>(VnZEL10cmn::ZelTags::tDate));
}

}  // namespace fuzz
