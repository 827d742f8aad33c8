// Whatever is booked comes back from its request and its document; whatever is handed in ends in a Boolean.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/booking/clsZelTransAct.h"
#include "tests/booking/Support.h"

namespace VnZEL10cmn {
namespace {

using test::FromHex;

Currency Scaled(std::int64_t scaled) { return Currency::FromScaled(scaled); }

ByteArray Bytes(const std::vector<std::uint8_t>& bytes) {
  return ByteArray{std::span<const std::uint8_t>(bytes)};
}

std::string TextOf(const rc::Gen<char>& character, int shortest, int longest) {
  return *rc::gen::container<std::string>(*rc::gen::inRange(shortest, longest + 1), character);
}

/// Any booking that a device would take; amounts in whole cents.
void FillAnySale(clsZelTransAct& booking) {
  booking.VatList(std::make_shared<clsZelVatList>());
  const auto day = *rc::gen::inRange(36527, 73050);
  const auto minute = *rc::gen::inRange(0, 1440);
  booking.TransactionDate(Date(day + minute / 1440.0));
  booking.Operator(TextOf(rc::gen::inRange<char>(33, 127), 1, 16));
  booking.CurrencyCode(*rc::gen::arbitrary<std::int32_t>());
  booking.IsTaxExcl(*rc::gen::arbitrary<bool>());
  booking.IsTraining(*rc::gen::arbitrary<bool>());
  booking.IsDeliveryNote(*rc::gen::arbitrary<bool>());
  booking.UseSHA256(*rc::gen::arbitrary<bool>());
  const auto count = *rc::gen::inRange(1, 8);
  for (int i = 0; i < count; ++i) {
    const auto item = std::make_shared<clsZelItemCash>();
    RC_ASSERT(item->SetItemData(Scaled(*rc::gen::inRange<std::int64_t>(-100000000, 100000000)),
                                TextOf(rc::gen::inRange<char>('a', 'z' + 1), 1, 20)));
    item->Unit(TextOf(rc::gen::inRange<char>('a', 'z' + 1), 0, 9));
    item->DiscSurc(*rc::gen::arbitrary<bool>());
    item->Voucher(*rc::gen::arbitrary<bool>());
    item->ThirdParty(*rc::gen::arbitrary<bool>());
    for (std::int32_t number = 1; number <= 6; ++number) {
      if (*rc::gen::inRange(0, 3) == 0) {
        item->Price(number, Scaled(100 * *rc::gen::inRange<std::int64_t>(-10000000, 10000000)));
      }
    }
    RC_ASSERT(booking.AddItem(item));
  }
}

void AssertSameContainers(clsZelTransAct& left, clsZelTransAct& right) {
  for (std::int32_t number = 1; number <= 6; ++number) {
    Currency leftValues[3];
    Currency rightValues[3];
    RC_ASSERT(left.GetContainerValues(number, leftValues[0], leftValues[1], leftValues[2]));
    RC_ASSERT(right.GetContainerValues(number, rightValues[0], rightValues[1], rightValues[2]));
    RC_ASSERT(leftValues[0] == rightValues[0]);
    RC_ASSERT(leftValues[1] == rightValues[1]);
    // A container that isn't written has no rate to read.
    RC_ASSERT(leftValues[2] == rightValues[2] ||
              (leftValues[0] == Currency(0) && rightValues[2] == Currency(0)));
  }
}

void AssertSameBooking(clsZelTransAct& left, clsZelTransAct& right) {
  RC_ASSERT(right.TransactionDate().ToCivil().day == left.TransactionDate().ToCivil().day);
  RC_ASSERT(right.TransactionDate().ToCivil().hour == left.TransactionDate().ToCivil().hour);
  RC_ASSERT(right.TransactionDate().ToCivil().minute == left.TransactionDate().ToCivil().minute);
  RC_ASSERT(right.Operator() == left.Operator());
  RC_ASSERT(right.CurrencyCode() == left.CurrencyCode());
  RC_ASSERT(right.IsTaxExcl() == left.IsTaxExcl());
  RC_ASSERT(right.IsTraining() == left.IsTraining());
  RC_ASSERT(right.IsDeliveryNote() == left.IsDeliveryNote());
  RC_ASSERT(right.ItemHash() == left.ItemHash());
  RC_ASSERT(right.ZelRqstData() == left.ZelRqstData());
  AssertSameContainers(left, right);
}

TEST(TransActProperty, RequestsAreReadBack) {
  EXPECT_TRUE(rc::check("build a request and read it", [] {
    clsZelTransAct booking;
    FillAnySale(booking);
    ByteArray request;
    std::int32_t length = -1;
    RC_ASSERT(booking.BinaryDataGet(ZELSerialType::Request, request, 0, &length));
    RC_ASSERT(request.LBound() == 0);
    RC_ASSERT(request.UBound() + 1 == length);
    RC_ASSERT(length <= 512);
    clsZelTransAct read;
    RC_ASSERT(read.BinaryDataSet(ZELSerialType::Request, request, 0));
    AssertSameBooking(booking, read);
  }));
}

TEST(TransActProperty, DocumentsAreReadBack) {
  EXPECT_TRUE(rc::check("export and import", [] {
    clsZelTransAct booking;
    FillAnySale(booking);
    ByteArray request;
    RC_ASSERT(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
    RC_ASSERT(booking.BinaryDataSet(ZELSerialType::Response, FromHex(test::kSaleResponse), 0));
    const auto intent = *rc::gen::inRange<std::int32_t>(-2, 10);
    std::string document;
    RC_ASSERT(booking.XmlHandler(document, true, intent));
    clsZelTransAct read;
    read.UseSHA256(booking.UseSHA256());
    RC_ASSERT(read.XmlHandler(document, false));
    AssertSameBooking(booking, read);
    RC_ASSERT(read.ItemCount() == booking.ItemCount());
    RC_ASSERT(read.GetItemHash(ZELHashFmt::Base64) == booking.ItemHash());
    RC_ASSERT(read.ZelRespData() == booking.ZelRespData());
    std::string again;
    RC_ASSERT(read.XmlHandler(again, true, intent));
    RC_ASSERT(again == document);
  }));
}

TEST(TransActProperty, ReadItemsGiveTheSameRequest) {
  EXPECT_TRUE(rc::check("items that were written and read sum up to the same request", [] {
    clsZelTransAct booking;
    FillAnySale(booking);
    ByteArray request;
    RC_ASSERT(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
    ByteArray items = ByteArray::WithBounds(0, 2000);
    std::int32_t length = 0;
    RC_ASSERT(booking.BinaryDataGet(ZELSerialType::ItemList, items, 0, &length));

    clsZelTransAct read;
    RC_ASSERT(read.BinaryDataSet(ZELSerialType::Request, request, 0));
    RC_ASSERT(read.BinaryDataSet(ZELSerialType::ItemList, items, 0, length));
    read.VatList(booking.VatList());
    read.UseSHA256(booking.UseSHA256());
    ByteArray again;
    RC_ASSERT(read.BinaryDataGet(ZELSerialType::Request, again, 0));
    RC_ASSERT(again == request);
  }));
}

/// Takes bytes that a booking wrote and damages a few of them, or cuts them off.
std::vector<std::uint8_t> Damaged(std::vector<std::uint8_t> bytes) {
  const auto changes = *rc::gen::inRange(0, 4);
  for (int i = 0; i < changes && !bytes.empty(); ++i) {
    const auto position = *rc::gen::inRange<std::size_t>(0, bytes.size());
    bytes[position] = *rc::gen::arbitrary<std::uint8_t>();
  }
  bytes.resize(*rc::gen::inRange<std::size_t>(0, bytes.size() + 1));
  return bytes;
}

std::vector<std::uint8_t> Vector(std::string_view hex) {
  const ByteArray bytes = FromHex(hex);
  return {bytes.begin(), bytes.end()};
}

TEST(TransActProperty, AnyBytesEndInABoolean) {
  const std::string request =
      std::string(test::kSaleHead) +
      " 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 19 1A 1B 1C "
      "1D 1E 1F C8 02 03 D2 C9 00 CA 00 D7 00 E1 0D D8 03 01 19 0C DA 02 19 0C DB 02 19 00 "
      "E2 10 D8 02 25 0D D9 02 25 0C DA 02 01 6D DB 02 07 00";
  EXPECT_TRUE(rc::check("hand in any bytes", [&request] {
    const auto type = ZELSerialType{*rc::gen::inRange(0, 8)};
    const std::vector<std::uint8_t> bytes =
        *rc::gen::inRange(0, 3) == 0      ? *rc::gen::arbitrary<std::vector<std::uint8_t>>()
        : type == ZELSerialType::Request  ? Damaged(Vector(request))
        : type == ZELSerialType::Response ? Damaged(Vector(test::kSaleResponse))
                                          : Damaged(Vector("A0 01 32 A1 02 6B 67 A2 04 62 72 6F 74 AA 00 AB "
                                                           "00 AC 00 B1 03 01 19 0C A0 01 31 A2 01 78"));
    clsZelTransAct booking;
    const auto start = *rc::gen::inRange<std::int32_t>(-1, static_cast<std::int32_t>(bytes.size()) + 2);
    const auto length = *rc::gen::inRange<std::int32_t>(-1, static_cast<std::int32_t>(bytes.size()) + 2);
    const bool done =
        booking.BinaryDataSet(type, Bytes(bytes), start, *rc::gen::arbitrary<bool>() ? length : 0);
    RC_ASSERT(done == !booking.HasError());
    // The booking can be used afterwards.
    (void)booking.GetItemHash(ZELHashFmt::Base32);
    ByteArray data;
    (void)booking.BinaryDataGet(ZELSerialType::Request, data, 0);
    RC_ASSERT(booking.Clear());
  }));
}

TEST(TransActProperty, DamagedDocumentsEndInABoolean) {
  clsZelTransAct sale;
  test::FillSale(sale);
  (void)test::BuildRequest(sale);
  ASSERT_TRUE(test::HandIn(sale, ZELSerialType::Response, test::kSaleResponse));
  std::string document;
  ASSERT_TRUE(sale.XmlHandler(document, true, 1));
  EXPECT_TRUE(rc::check("import a damaged document", [&document] {
    std::string damaged = document;
    const auto changes = *rc::gen::inRange(0, 4);
    for (int i = 0; i < changes; ++i) {
      const auto position = *rc::gen::inRange<std::size_t>(0, damaged.size());
      const auto length = *rc::gen::inRange<std::size_t>(0, 30);
      damaged.replace(position, length, *rc::gen::arbitrary<std::string>());
    }
    std::string data = damaged;
    clsZelTransAct booking;
    const bool done = booking.XmlHandler(data, false);
    RC_ASSERT(done == !booking.HasError());
    RC_ASSERT(data == damaged);
  }));
}

TEST(TransActProperty, AnyTextEndsInABoolean) {
  EXPECT_TRUE(rc::check("import any text", [] {
    std::string data = *rc::gen::arbitrary<std::string>();
    clsZelTransAct booking;
    const bool done = booking.XmlHandler(data, false);
    RC_ASSERT(!done);
    RC_ASSERT(booking.HasError());
  }));
}

}  // namespace
}  // namespace VnZEL10cmn
