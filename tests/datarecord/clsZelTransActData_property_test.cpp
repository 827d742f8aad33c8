// Whatever data is handed in comes out again; whatever is handed in ends in a Boolean.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/datarecord/clsZelTransActData.h"
#include "tests/datarecord/Support.h"

namespace VnZEL10cmn {
namespace {

using test::FromHex;
using test::Join;

ByteArray Bytes(const std::vector<std::uint8_t>& bytes) {
  return ByteArray{std::span<const std::uint8_t>(bytes)};
}

std::vector<std::uint8_t> Vector(std::string_view hex) {
  const ByteArray bytes = FromHex(hex);
  return {bytes.begin(), bytes.end()};
}

ByteArray SomeData() { return Bytes(*rc::gen::nonEmpty<std::vector<std::uint8_t>>()); }

TEST(DataRecordProperty, DataComesOutAgain) {
  EXPECT_TRUE(rc::check("hand in data and fetch it", [] {
    const ByteArray data = SomeData();
    clsZelTransActData record;
    record.UseSHA256(*rc::gen::arbitrary<bool>());
    RC_ASSERT(record.BinaryDataSet(ZELSerialType::BinaryData, data, 0));
    RC_ASSERT(record.DataToSign() == test::Base64(data));
    RC_ASSERT(record.DataHash() ==
              test::Base64(record.UseSHA256() ? test::ItemSha256(data) : test::ItemSha1(data)));
    RC_ASSERT(record.GetDataHash(ZELHashFmt::Base16) == record.GetDataHash(ZELHashFmt::Base16, true));
    ByteArray read = ByteArray::WithBounds(0, data.UBound());
    RC_ASSERT(record.BinaryDataGet(ZELSerialType::BinaryData, read, 0));
    RC_ASSERT(read == data);
  }));
}

TEST(DataRecordProperty, RequestsAndDocumentsAreReadBack) {
  EXPECT_TRUE(rc::check("build a request, export and import", [] {
    clsZelTransActData record;
    record.UseSHA256(*rc::gen::arbitrary<bool>());
    record.DataSignType(ZELDataSignTypes{*rc::gen::inRange(1, 4)});
    const Date date =
        Date::FromCivil(*rc::gen::inRange(2001, 2099), *rc::gen::inRange(1, 13), *rc::gen::inRange(1, 29),
                        *rc::gen::inRange(0, 24), *rc::gen::inRange(0, 60));
    record.TransactionDate(date);
    RC_ASSERT(record.BinaryDataSet(ZELSerialType::BinaryData, SomeData(), 0));
    ByteArray request = ByteArray::WithBounds(0, 99);
    std::int32_t length = 0;
    RC_ASSERT(record.BinaryDataGet(ZELSerialType::Request, request, 0, &length));
    RC_ASSERT(
        record.BinaryDataSet(ZELSerialType::Response, FromHex(Join(test::kSequence, test::kSigned)), 0));

    const bool timed = record.DataSignType() == ZELDataSignTypes::DataAndTime;
    const auto assertSame = [&record, timed, date](const clsZelTransActData& read) {
      RC_ASSERT(read.DataHash() == record.DataHash());
      RC_ASSERT((read.DataSignType() == ZELDataSignTypes::DataAndTime) == timed);
      if (timed) {
        RC_ASSERT(read.TransactionDate().ToCivil().day == date.ToCivil().day);
        RC_ASSERT(read.TransactionDate().ToCivil().minute == date.ToCivil().minute);
      }
    };
    clsZelTransActData read;
    RC_ASSERT(read.BinaryDataSet(ZELSerialType::Request, request, 0, length));
    assertSame(read);

    std::string document;
    const auto intent = *rc::gen::inRange<std::int32_t>(-2, 10);
    RC_ASSERT(record.XmlHandler(document, true, intent));
    clsZelTransActData imported;
    RC_ASSERT(imported.XmlHandler(document, false));
    assertSame(imported);
    std::string again;
    RC_ASSERT(imported.XmlHandler(again, true, intent));
    RC_ASSERT(again == document);
  }));
}

/// Takes good bytes and damages a few of them, or cuts them off.
std::vector<std::uint8_t> Damaged(std::vector<std::uint8_t> bytes) {
  const auto changes = *rc::gen::inRange(0, 4);
  for (int i = 0; i < changes && !bytes.empty(); ++i) {
    const auto position = *rc::gen::inRange<std::size_t>(0, bytes.size());
    bytes[position] = *rc::gen::arbitrary<std::uint8_t>();
  }
  bytes.resize(*rc::gen::inRange<std::size_t>(0, bytes.size() + 1));
  return bytes;
}

TEST(DataRecordProperty, AnyBytesEndInABoolean) {
  EXPECT_TRUE(rc::check("hand in any bytes", [] {
    const auto type = ZELSerialType{*rc::gen::inRange(0, 8)};
    const std::vector<std::uint8_t> bytes =
        *rc::gen::inRange(0, 3) == 0 ? *rc::gen::arbitrary<std::vector<std::uint8_t>>()
        : type == ZELSerialType::Request
            ? Damaged(Vector(Join(test::kDay, test::kMinute, "C7 20", test::kAbcSha256)))
            : Damaged(Vector(Join(test::kSequence, test::kTaxpayer, test::kDevice, test::kSigned)));
    clsZelTransActData record;
    const auto start = *rc::gen::inRange<std::int32_t>(-1, static_cast<std::int32_t>(bytes.size()) + 2);
    const auto length = *rc::gen::inRange<std::int32_t>(-1, static_cast<std::int32_t>(bytes.size()) + 2);
    const bool done =
        record.BinaryDataSet(type, Bytes(bytes), start, *rc::gen::arbitrary<bool>() ? length : 0);
    RC_ASSERT(done == !record.HasError());
    // The record can be used afterwards.
    RC_ASSERT(!record.ToString().empty());
    ByteArray data = ByteArray::WithBounds(0, *rc::gen::inRange(0, 100));
    const bool written =
        record.BinaryDataGet(ZELSerialType{*rc::gen::inRange(0, 8)}, data, *rc::gen::inRange(-2, 50));
    RC_ASSERT(written == !record.HasError());
    RC_ASSERT(record.Clear());
  }));
}

TEST(DataRecordProperty, DamagedDocumentsEndInABoolean) {
  clsZelTransActData signedRecord;
  signedRecord.DataSignType(ZELDataSignTypes::DataAndTime);
  test::FillAbc(signedRecord);
  (void)test::BytesOf(signedRecord, ZELSerialType::Request);
  ASSERT_TRUE(test::HandIn(signedRecord, ZELSerialType::Response,
                           Join(test::kSequence, test::kTaxpayer, test::kDevice, test::kSigned)));
  std::string document;
  ASSERT_TRUE(signedRecord.XmlHandler(document, true, 1));
  EXPECT_TRUE(rc::check("import a damaged document", [&document] {
    std::string damaged = document;
    const auto changes = *rc::gen::inRange(0, 4);
    for (int i = 0; i < changes; ++i) {
      const auto position = *rc::gen::inRange<std::size_t>(0, damaged.size());
      const auto length = *rc::gen::inRange<std::size_t>(0, 30);
      damaged.replace(position, length, *rc::gen::arbitrary<std::string>());
    }
    std::string data = damaged;
    clsZelTransActData record;
    const bool done = record.XmlHandler(data, false);
    RC_ASSERT(done == !record.HasError());
    RC_ASSERT(data == damaged);
  }));
}

}  // namespace
}  // namespace VnZEL10cmn
