#pragma once

#include <openssl/evp.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "VnZEL10cmn/VnZEL10cmn.h"

namespace bench {

/// Bytes that are no pattern and always the same.
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

inline VnZEL10cmn::ByteArray Data(VnZEL10cmn::clsZelTransAct& booking, VnZEL10cmn::ZELSerialType type,
                                  std::int32_t room = 0) {
  VnZEL10cmn::ByteArray data;
  if (room > 0) {
    data.Redim(0, room - 1);
  }
  std::int32_t length = 0;
  if (!booking.BinaryDataGet(type, data, 0, &length)) {
    throw std::runtime_error(booking.ErrorObject().GetLogEntry());
  }
  data.RedimPreserve(length - 1);
  return data;
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

/// What a booking's request can't do without, by libcrypto: the hash of the item bytes, and the Base64 texts of
/// item list, hash and request.
class Floor {
 public:
  explicit Floor(std::int32_t items) {
    const auto booking = Booking(items, std::make_shared<VnZEL10cmn::clsZelVatList>());
    items_ = Data(*booking, VnZEL10cmn::ZELSerialType::ItemList, items * 128);
    request_ = Request(*booking);
    text_.resize((items_.size() + request_.size()) * 2);
  }

  void Run() {
    unsigned char hash[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_Digest(items_.data(), items_.size(), hash, &length, EVP_sha256(), nullptr);
    EVP_EncodeBlock(text_.data(), items_.data(), static_cast<int>(items_.size()));
    EVP_EncodeBlock(text_.data(), hash, static_cast<int>(length));
    EVP_EncodeBlock(text_.data(), request_.data(), static_cast<int>(request_.size()));
  }

  const unsigned char* Text() const { return text_.data(); }

 private:
  VnZEL10cmn::ByteArray items_;
  VnZEL10cmn::ByteArray request_;
  std::vector<unsigned char> text_;
};

}  // namespace bench
