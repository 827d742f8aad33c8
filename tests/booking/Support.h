#pragma once

#include <openssl/evp.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VnZEL10cmn/booking/clsZelTransAct.h"
#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace test {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::Currency;
using VnZEL10cmn::CurrencyArray;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELErrorCodes;
using VnZEL10cmn::ZELSerialType;

/// A host's own item, which writes the bytes and prices that it is told, and fails when it is told.
class FakeItem : public VnZEL10cmn::IVnZelItem {
 public:
  explicit FakeItem(std::string instanceId = "FAKE-1", std::string_view hex = "A0 01 31 A2 01 78")
      : bytes(FromHex(hex)), instanceId_(std::move(instanceId)) {}

  std::string InstanceID() override { return instanceId_; }
  VnZEL10cmn::clsVnError& ErrorObject() override { return error_; }
  std::shared_ptr<VnZEL10cmn::clsVnLogFile> LogHandler() override { return logHandler_; }
  void LogHandler(std::shared_ptr<VnZEL10cmn::clsVnLogFile> Value) override {
    logHandler_ = std::move(Value);
  }

  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start) override {
    if (++writes == failAtWrite) {
      return false;
    }
    if (Start + static_cast<std::int32_t>(bytes.size()) - 1 > Data.UBound()) {
      throw std::out_of_range("buffer of a test");
    }
    for (const std::uint8_t byte : bytes) {
      Data[Start++] = byte;
    }
    return true;
  }

  bool BinaryDataSet(const ByteArray& Data, std::int32_t& Start) override {
    if (failReading) {
      return false;
    }
    Start = Data.UBound() + 1;
    return true;
  }

  bool Clear() override { return true; }
  bool HasError() override { return error_.HasError(); }

  bool GetPrices(CurrencyArray& Prices, bool& IsThrdPrt) override {
    if (onGetPrices) {
      onGetPrices();
    }
    for (std::int32_t i = 0; i < 6; ++i) {
      Prices[i] = prices[static_cast<std::size_t>(i)];
    }
    IsThrdPrt = thirdParty;
    return !failPrices;
  }

  std::string ToString() override { return "fake"; }

  ByteArray bytes;
  std::array<Currency, 6> prices{};
  bool thirdParty = false;
  bool failPrices = false;
  bool failReading = false;
  int failAtWrite = 0;  ///< the call of `BinaryDataGet` that fails, from 1; 0 for none
  int writes = 0;       ///< calls of `BinaryDataGet` so far
  std::function<void()> onGetPrices;

 private:
  std::string instanceId_;
  VnZEL10cmn::clsVnError error_;
  std::shared_ptr<VnZEL10cmn::clsVnLogFile> logHandler_;
};

/// Makes items by a function.
class FakeFactory : public VnZEL10cmn::clsZelListItemFact {
 public:
  explicit FakeFactory(std::function<std::shared_ptr<VnZEL10cmn::IVnZelItem>()> make)
      : make_(std::move(make)) {}
  std::shared_ptr<VnZEL10cmn::IVnZelItem> CreateNewItem(VnZEL10cmn::clsVnError*) override { return make_(); }

 private:
  std::function<std::shared_ptr<VnZEL10cmn::IVnZelItem>()> make_;
};

/// The digest by libcrypto.
inline ByteArray Digest(const ByteArray& data, const EVP_MD* type) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned size = 0;
  if (EVP_Digest(data.data(), data.size(), digest.data(), &size, type, nullptr) != 1) {
    throw std::runtime_error("digest");
  }
  return ByteArray(std::span<const std::uint8_t>(digest.data(), size));
}

/// The SHA-256 item hash: each byte is hashed as the low byte of its code page 1252 character.
inline ByteArray ItemSha256(ByteArray data) {
  static constexpr std::array<std::uint8_t, 32> low{
      0xAC, 0x81, 0x1A, 0x92, 0x1E, 0x26, 0x20, 0x21, 0xC6, 0x30, 0x60, 0x39, 0x52, 0x8D, 0x7D, 0x8F,
      0x90, 0x18, 0x19, 0x1C, 0x1D, 0x22, 0x13, 0x14, 0xDC, 0x22, 0x61, 0x3A, 0x53, 0x9D, 0x7E, 0x78};
  for (std::uint8_t& byte : data) {
    if (byte >= 0x80 && byte <= 0x9F) {
      byte = low[byte - 0x80U];
    }
  }
  return Digest(data, EVP_sha256());
}

inline ByteArray ItemSha1(const ByteArray& data) { return Digest(data, EVP_sha1()); }

/// Base64 by libcrypto.
inline std::string Base64(const ByteArray& data) {
  std::string text((data.size() + 2) / 3 * 4 + 1, '\0');
  const int size = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), data.data(),
                                   static_cast<int>(data.size()));
  text.resize(static_cast<std::size_t>(size));
  return text;
}

inline std::string Base64(std::string_view hex) { return Base64(FromHex(hex)); }

/// Hexadecimal digits without blanks.
inline std::string Digits(const ByteArray& data) {
  std::string text = ToHex(data);
  std::erase(text, ' ');
  return text;
}

inline std::shared_ptr<VnZEL10cmn::clsZelItemCash> CashItem(std::string_view name, Currency price1) {
  auto item = std::make_shared<VnZEL10cmn::clsZelItemCash>();
  EXPECT_TRUE(item->SetItemData(1, name, {}, price1));
  return item;
}

/// The sale of the worked example: two loaves for 11.90 at the standard rate, on 15 March 2024 at 14:37.
inline void FillSale(VnZEL10cmn::clsZelTransAct& booking) {
  booking.VatList(std::make_shared<VnZEL10cmn::clsZelVatList>());
  booking.TransactionDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
  booking.Operator("Anna");
  auto item = std::make_shared<VnZEL10cmn::clsZelItemCash>();
  EXPECT_TRUE(item->SetItemData(2, "Brot", {}, Currency::FromScaled(119000)));
  EXPECT_TRUE(booking.AddItem(item));
}

/// Its item list: quantity "2", name "brot", price 11.90.
inline constexpr std::string_view kSaleItems = "A0 01 32 A2 04 62 72 6F 74 B1 03 01 19 0C";

/// Its request up to the hash, and behind it; 69 bytes with the 32 bytes of the hash.
inline constexpr std::string_view kSaleHead = "CD 04 20 24 03 15 CE 02 14 37 C6 04 41 6E 6E 61 C7 20";
inline constexpr std::string_view kSaleTail = "C8 02 03 D2 E1 0D D8 03 01 19 0C DA 02 19 0C DB 02 19 00";

inline std::string SaleRequest() {
  return std::string(kSaleHead) + " " + ToHex(ItemSha256(FromHex(kSaleItems))) + " " + std::string(kSaleTail);
}

/// A device's answer: taxpayer "DE1", device 2, sequence number 300, 48 bytes 01 to 30 as signature.
inline constexpr std::string_view kSaleResponse =
    "C4 03 44 45 31 C5 01 02 CB 02 01 2C 9E 30 "
    "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 "
    "19 1A 1B 1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30";
inline constexpr std::string_view kSaleSignature =
    "AQIDBAUGBwgJCgsMDQ4PEBESExQVFhcYGRobHB0eHyAhIiMkJSYnKCkqKywtLi8w";

/// Builds the request; a failure fails the test.
inline ByteArray BuildRequest(VnZEL10cmn::clsZelTransAct& booking) {
  ByteArray request;
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::Request, request, 0)) << booking.ErrorObject().ErrorMsg();
  return request;
}

/// Hands in the bytes of a response, a request or an item list.
inline bool HandIn(VnZEL10cmn::clsZelTransAct& booking, ZELSerialType type, std::string_view hex) {
  return booking.BinaryDataSet(type, FromHex(hex), 0);
}

/// The sources of all log entries ("Quelle" lines) without the library's name.
inline std::vector<std::string> LogSources(const TestLog& log) {
  static constexpr std::string_view label = "Quelle .............: VnZEL10cmn.";
  std::vector<std::string> sources;
  for (const std::string& entry : log.Entries()) {
    const std::size_t found = entry.find(label);
    if (found == std::string::npos) {
      sources.emplace_back("?");
      continue;
    }
    const std::size_t start = found + label.size();
    sources.push_back(entry.substr(start, entry.find("\r\n", start) - start));
  }
  return sources;
}

}  // namespace test
