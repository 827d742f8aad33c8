#include "VnZEL10cmn/items/internal/ItemForm.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/booking/clsZelTransAct.h"
#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/items/clsZelItemList.h"
#include "tests/support/Hex.h"

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelItemList;

bool AreAsWritten(const ByteArray& records) {
  return VnZEL10cmn::internal::AreAsWritten({records.data(), records.size()});
}

bool AreAsWritten(std::string_view hex) { return AreAsWritten(test::FromHex(hex)); }

/// A record of text.
std::string Text(std::uint8_t tag, std::string_view text) {
  ByteArray record = ByteArray::WithBounds(0, static_cast<std::int32_t>(text.size()) + 1);
  record[0] = tag;
  record[1] = static_cast<std::uint8_t>(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    record[static_cast<std::int32_t>(i) + 2] = static_cast<std::uint8_t>(text[i]);
  }
  return test::ToHex(record);
}

std::string Quantity(std::string_view text) { return Text(0xA0, text) + "A2 01 61"; }
std::string Unit(std::string_view text) { return "A0 01 31" + Text(0xA1, text) + "A2 01 61"; }
std::string Name(std::string_view text) { return "A0 01 31" + Text(0xA2, text); }
std::string Price(std::string_view record) { return "A0 01 31 A2 01 61 B1" + std::string(record); }

/// What a list gives that has read records; nothing where it can't read or write them.
ByteArray WrittenAgain(const ByteArray& records) {
  clsZelItemList list;
  std::int32_t start = 0;
  ByteArray written;
  std::int32_t length = 0;
  if (!list.BinaryDataSet(records, start) || !list.BinaryDataGet(written, length)) {
    return ByteArray();
  }
  written.RedimPreserve(length - 1);
  return written;
}

/// Said to be as written, and written again just so.
void ExpectAsWritten(std::string_view hex) {
  EXPECT_TRUE(AreAsWritten(hex)) << hex;
  EXPECT_EQ(test::ToHex(WrittenAgain(test::FromHex(hex))), test::ToHex(test::FromHex(hex)));
}

TEST(ItemForm, AllThatAnItemCanHoldInItsOrder) {
  ExpectAsWritten("A0 01 31 A2 01 61");
  ExpectAsWritten(
      "A0 03 30 2E 35 A1 02 6B 67 A2 04 6D 65 68 6C AA 00 AB 00 AC 00"
      "B1 01 5C B2 02 01 9D B3 01 1C B4 01 1C B5 01 1C B6 06 99 99 99 99 99 9C");
  ExpectAsWritten("A0 01 31 A2 01 61 A0 01 32 A2 01 62 B1 01 1C A0 01 33 A2 01 63");
}

TEST(ItemForm, NothingIsNoItem) { EXPECT_FALSE(AreAsWritten("")); }

TEST(ItemForm, EveryItemHasItsQuantityFirstAndAName) {
  EXPECT_FALSE(AreAsWritten("A2 01 61"));
  EXPECT_FALSE(AreAsWritten("A0 01 31"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 AA 00"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 A0 01 31 A2 01 61"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 01 61 A0 01 31"));
  EXPECT_FALSE(AreAsWritten("A2 01 61 A0 01 31"));
}

TEST(ItemForm, NoRecordStandsTwiceOrBeforeALowerOne) {
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 01 61 A2 01 61"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 01 61 A1 01 61"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 01 61 AB 00 AA 00"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 01 61 B2 01 1C B1 01 1C"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 01 61 B1 01 1C B1 01 1C"));
}

TEST(ItemForm, OtherTagsAndCutRecords) {
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 01 61 B0 01 1C"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 01 61 B7 01 1C"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 01 61 C8 00"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 01 61 A0"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 02 61"));
  EXPECT_FALSE(AreAsWritten("A0 01 31 A2 01 61 AA 01 00"));
}

TEST(ItemForm, Quantities) {
  for (const char* text : {"1", "10", "0.5", "0.0001", "12.3456", "99999999999", "123456.7891"}) {
    ExpectAsWritten(Quantity(text));
  }
  for (const char* text : {"", "0", "01", "00.5", ".5", "5.", "1.50", "1.0", "1.23456", "-1", "+1", " 1",
                           "1 ", "1,5", "1.2.3", "1a", "a", "123456789012", "1234567.8901"}) {
    EXPECT_FALSE(AreAsWritten(Quantity(text))) << text;
  }
}

TEST(ItemForm, UnitsAndNames) {
  for (const char* text : {"a", "z", "0", "9", "#", "kg#1az09"}) {
    ExpectAsWritten(Unit(text));
    ExpectAsWritten(Name(text));
  }
  for (const char* text : {"", "A", "a b", " a", "a ", "a-b", "\x7F", "`", "{", "/", ":"}) {
    EXPECT_FALSE(AreAsWritten(Unit(text))) << text;
    EXPECT_FALSE(AreAsWritten(Name(text))) << text;
  }
  EXPECT_FALSE(AreAsWritten(Unit("123456789")));
  ExpectAsWritten(Name("1234567890123456"));
  EXPECT_FALSE(AreAsWritten(Name("12345678901234567")));
}

TEST(ItemForm, Prices) {
  for (const char* record : {"01 1C", "01 9D", "02 01 0C", "02 99 9D", "06 01 00 00 00 00 0C"}) {
    ExpectAsWritten(Price(record));
  }
  for (const char* record : {"00", "01 0C", "01 0D", "01 AC", "01 1E", "01 1A", "01 11", "02 00 1C",
                             "02 0A 1C", "02 A0 1C", "07 01 00 00 00 00 00 0C"}) {
    EXPECT_FALSE(AreAsWritten(Price(record))) << record;
  }
}

/// Records that are in the form of items but for what a few changes make of them.
RC_GTEST_PROP(ItemForm, WhatIsAsWrittenIsWrittenAgainJustSo, ()) {
  const auto text = [](std::string_view characters, int most) {
    return *rc::gen::container<std::string>(static_cast<std::size_t>(*rc::gen::inRange(1, most)),
                                            rc::gen::elementOf(std::string(characters)));
  };
  std::string hex;
  for (int items = *rc::gen::inRange(1, 4); items > 0; --items) {
    hex +=
        Text(0xA0, *rc::gen::element<std::string>("1", "0.5", "12.25", "100", "1.5", "7", "0", "1.50", "-1"));
    if (*rc::gen::arbitrary<bool>()) hex += Text(0xA1, text("abkz019#", 9));
    hex += Text(0xA2, text("abkz019#", 17));
    for (const char* flag : {"AA 00", "AB 00", "AC 00"}) {
      if (*rc::gen::inRange(0, 4) == 0) hex += flag;
    }
    for (std::uint8_t tag = 0xB1; tag <= 0xB6; ++tag) {
      if (*rc::gen::arbitrary<bool>()) continue;
      std::string value;
      for (int more = *rc::gen::inRange(0, 6); more > 0; --more) {
        value += static_cast<char>(*rc::gen::inRange(0, 10) << 4 | *rc::gen::inRange(0, 10));
      }
      value +=
          static_cast<char>(*rc::gen::inRange(1, 10) << 4 | *rc::gen::element(12, 13, 12, 13, 12, 13, 14));
      hex += Text(tag, value);
    }
  }
  ByteArray records = test::FromHex(hex);
  if (*rc::gen::inRange(0, 4) == 0) {
    records[*rc::gen::inRange(0, records.UBound() + 1)] = *rc::gen::arbitrary<std::uint8_t>();
  }
  RC_CLASSIFY(AreAsWritten(records), "as written");
  if (AreAsWritten(records)) {
    RC_ASSERT(WrittenAgain(records) == records);
  }
}

/// What items write is in their form, unless a quantity is negative.
RC_GTEST_PROP(ItemForm, WhatIsWrittenIsAsWritten, ()) {
  using VnZEL10cmn::Currency;
  clsZelItemList list;
  for (int items = *rc::gen::inRange(1, 4); items > 0; --items) {
    const auto item = std::make_shared<VnZEL10cmn::clsZelItemCash>();
    item->Quantity(Currency::FromScaled(*rc::gen::inRange<std::int64_t>(0, 1000000000)));
    item->Name("n" + *rc::gen::arbitrary<std::string>());
    item->Unit(*rc::gen::container<std::string>(rc::gen::elementOf(std::string("kKg 1-"))));
    item->Voucher(*rc::gen::arbitrary<bool>());
    item->DiscSurc(*rc::gen::arbitrary<bool>());
    for (std::int32_t i = 1; i <= 6; ++i) {
      item->Price(i, Currency::FromScaled(*rc::gen::inRange<std::int64_t>(-1000000, 1000000) * 100));
    }
    list.AddItem(item);
  }
  ByteArray records;
  std::int32_t length = 0;
  RC_PRE(list.BinaryDataGet(records, length));
  records.RedimPreserve(length - 1);
  RC_ASSERT(AreAsWritten(records));
  RC_ASSERT(WrittenAgain(records) == records);
}

/// A booking that reads records has the hash of those that it would write.
TEST(ItemForm, TheHashIsThatOfWhatWasUnderstood) {
  struct Case {
    std::string_view read, written;
  };
  for (const auto& [read, written] :
       {Case{"A0 01 31 A2 01 61", "A0 01 31 A2 01 61"}, Case{"A0 03 31 2E 30 A2 01 41", "A0 01 31 A2 01 61"},
        Case{"A2 01 61 A0 01 30", "A0 01 31 A2 01 61"},
        Case{"A0 01 31 A2 01 61 B1 02 00 5C", "A0 01 31 A2 01 61 B1 01 5C"}}) {
    for (const bool sha256 : {true, false}) {
      VnZEL10cmn::clsZelTransAct booking;
      booking.UseSHA256(sha256);
      ASSERT_TRUE(booking.BinaryDataSet(VnZEL10cmn::ZELSerialType::ItemList, test::FromHex(read), 0));
      VnZEL10cmn::clsHelper01 helper;
      ByteArray digest;
      std::string expected;
      ASSERT_TRUE(sha256 ? helper.GetSHA256Hash1(test::FromHex(written), digest)
                         : helper.GetSHA1Hash1(test::FromHex(written), digest));
      ASSERT_TRUE(helper.ToBase64String(digest, expected));
      EXPECT_EQ(booking.ItemHash(), expected) << read;
    }
  }
}

}  // namespace
