#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "VnZEL10cmn/VnZEL10cmn.h"

namespace bench {

/// A text of bytes that are no pattern and always the same.
inline VnZEL10cmn::ByteArray Bytes(std::int32_t count) {
  VnZEL10cmn::ByteArray data = VnZEL10cmn::ByteArray::WithBounds(0, count - 1);
  std::uint32_t state = 2463534242U;
  for (std::uint8_t& byte : data) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    byte = static_cast<std::uint8_t>(state);
  }
  return data;
}

inline std::shared_ptr<VnZEL10cmn::clsZelItemCash> Item(std::int32_t number) {
  using VnZEL10cmn::Currency;
  auto item = std::make_shared<VnZEL10cmn::clsZelItemCash>();
  item->SetItemData(Currency::FromScaled(5000 + number % 7 * 2500), "Bauernbrot mit Saat", "kg",
                    number % 3 == 0 ? Currency::FromScaled(19900 + number % 50 * 100) : Currency(),
                    Currency::FromScaled(38500 + number % 90 * 100));
  return item;
}

/// A booking with so many items, ready for its request.
inline std::unique_ptr<VnZEL10cmn::clsZelTransAct> Booking(
    std::int32_t items, const std::shared_ptr<VnZEL10cmn::clsZelVatList>& rates) {
  auto booking = std::make_unique<VnZEL10cmn::clsZelTransAct>();
  booking->VatList(rates);
  booking->TransactionDate(VnZEL10cmn::Date::FromCivil(2026, 11, 21, 8, 5));
  booking->Operator("kasse 1");
  for (std::int32_t i = 0; i < items; ++i) {
    booking->AddItem(Item(i));
  }
  return booking;
}

inline VnZEL10cmn::ByteArray Request(VnZEL10cmn::clsZelTransAct& booking) {
  VnZEL10cmn::ByteArray request;
  if (!booking.BinaryDataGet(VnZEL10cmn::ZELSerialType::Request, request, 0)) {
    throw std::runtime_error(booking.ErrorObject().GetLogEntry());
  }
  return request;
}

/// A response in the form that a booking reads: taxpayer, device, sequence number, a signature of 64 bytes.
inline VnZEL10cmn::ByteArray Response() {
  VnZEL10cmn::ByteArray response = VnZEL10cmn::ByteArray::WithBounds(0, 81);
  std::int32_t start = 0;
  VnZEL10cmn::clsZelBaseCoding coder;
  const bool written = coder.SetDataAscii(response, start, VnZEL10cmn::ZelTags::Tp_ID, "DE123456") &&
                       coder.SetZelCounter(response, start, VnZEL10cmn::ZelTags::Tp_ID_No, 1) &&
                       coder.SetZelCounter(response, start, VnZEL10cmn::ZelTags::Seq_Nr_Trans, 7) &&
                       coder.SetDataBinary(response, start, VnZEL10cmn::ZelTags::Signature, Bytes(64));
  if (!written || start != 82) {
    throw std::runtime_error(coder.ErrorObject().GetLogEntry());
  }
  return response;
}

}  // namespace bench
