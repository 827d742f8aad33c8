#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/items/clsZelItemList.h"

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::Currency;

// One character of a text as the user types it, and what the device gets of it ("" for a blank).
struct Character {
  std::string_view typed;
  std::string_view safe;
};

constexpr std::array<Character, 20> characters{
    {{"a", "a"}, {"Z", "z"}, {"m", "m"},  {"0", "0"}, {"9", "9"}, {"#", "#"}, {" ", ""},
     {"ä", "#"}, {"Ö", "#"}, {"ß", "#"},  {"-", "#"}, {".", "#"}, {"&", "#"}, {"\"", "#"},
     {"€", "#"}, {"~", "#"}, {"\t", "#"}, {"_", "#"}, {"x", "x"}, {"Q", "q"}}};

struct Text {
  std::string typed;
  std::string safe;
};

Text AnyText(std::size_t minimum, std::size_t kept) {
  Text text;
  std::size_t count = 0;
  for (const int choice : *rc::gen::container<std::vector<int>>(rc::gen::inRange<int>(0, 20))) {
    const Character& character = characters[static_cast<std::size_t>(choice)];
    text.typed += character.typed;
    if (!character.safe.empty() && count < kept) {
      text.safe += character.safe;
      ++count;
    }
  }
  if (count < minimum) {
    text.typed += 'x';
    text.safe += 'x';
  }
  return text;
}

// Length of the quantity's text: sign, whole part, and up to four decimals without trailing zeros.
std::size_t QuantityTextLength(std::int64_t scaled) {
  const std::uint64_t size =
      scaled < 0 ? 0 - static_cast<std::uint64_t>(scaled) : static_cast<std::uint64_t>(scaled);
  std::size_t length = scaled < 0 ? 1 : 0;
  length += std::to_string(size / 10000).size();
  std::uint64_t fraction = size % 10000;
  if (fraction != 0) {
    std::size_t decimals = 4;
    for (; fraction % 10 == 0; fraction /= 10) {
      --decimals;
    }
    length += 1 + decimals;
  }
  return length;
}

struct Sale {
  std::int64_t quantity = 10000;
  Text unit;
  Text name;
  bool discount = false;
  bool voucher = false;
  bool thirdParty = false;
  std::array<std::int64_t, 6> cents{};

  // Quantities are short enough for the device, or of any size.
  static Sale Any(bool fits = true) {
    Sale sale;
    const std::int64_t limit = fits ? 99'999'999 : 99'999'999'999;
    sale.quantity = *rc::gen::inRange<std::int64_t>(-limit / 10, limit);
    if (sale.quantity == 0) {
      sale.quantity = 10000;
    }
    sale.unit = AnyText(0, 8);
    if (sale.unit.safe.empty()) {
      sale.unit.typed.clear();
    }
    sale.name = AnyText(1, 16);
    sale.discount = *rc::gen::arbitrary<bool>();
    sale.voucher = *rc::gen::arbitrary<bool>();
    sale.thirdParty = *rc::gen::arbitrary<bool>();
    for (std::int64_t& price : sale.cents) {
      price = *rc::gen::oneOf(rc::gen::just<std::int64_t>(0), rc::gen::inRange<std::int64_t>(-100000, 100000),
                              rc::gen::inRange<std::int64_t>(-99'999'999'999LL, 100'000'000'000LL));
    }
    return sale;
  }

  std::shared_ptr<clsZelItemCash> Item() const {
    auto item = std::make_shared<clsZelItemCash>();
    item->Quantity(Currency::FromScaled(quantity));
    item->Unit(unit.typed);
    item->Name(name.typed);
    item->DiscSurc(discount);
    item->Voucher(voucher);
    item->ThirdParty(thirdParty);
    for (std::size_t i = 0; i < cents.size(); ++i) {
      item->Price(static_cast<std::int32_t>(i) + 1, Currency::FromScaled(cents[i] * 100));
    }
    return item;
  }

  void ExpectIn(clsZelItemCash& item) const {
    RC_ASSERT(item.Quantity().Scaled() == quantity);
    RC_ASSERT(item.Unit() == unit.safe);
    RC_ASSERT(item.Name() == name.safe);
    RC_ASSERT(item.DiscSurc() == discount);
    RC_ASSERT(item.Voucher() == voucher);
    RC_ASSERT(item.ThirdParty() == thirdParty);
    for (std::size_t i = 0; i < cents.size(); ++i) {
      RC_ASSERT(item.Price(static_cast<std::int32_t>(i) + 1).Scaled() == cents[i] * 100);
    }
  }
};

ByteArray AnyBytes(std::vector<std::uint8_t> bytes) {
  return ByteArray(std::span<const std::uint8_t>(bytes));
}

// Bytes that look like records often enough to get past the first check.
std::vector<std::uint8_t> AnyRecords() {
  static constexpr std::array<std::uint8_t, 14> tags{0xA0, 0xA1, 0xA2, 0xAA, 0xAB, 0xAC, 0xB1,
                                                     0xB2, 0xB3, 0xB4, 0xB5, 0xB6, 0xC7, 0xA0};
  std::vector<std::uint8_t> bytes;
  const int records = *rc::gen::inRange(0, 12);
  for (int i = 0; i < records; ++i) {
    bytes.push_back(tags[*rc::gen::inRange<std::size_t>(0, tags.size())]);
    const bool flag = bytes.back() >= 0xAA && bytes.back() <= 0xAC;
    const bool price = bytes.back() >= 0xB1 && bytes.back() <= 0xB6;
    const auto length = flag ? std::size_t{0} : *rc::gen::inRange<std::size_t>(0, 8);
    bytes.push_back(static_cast<std::uint8_t>(length));
    for (std::size_t k = 0; k < length; ++k) {
      bytes.push_back(price ? *rc::gen::element<std::uint8_t>(0x00, 0x12, 0x99, 0x1C, 0x0D, 0x5C)
                            : *rc::gen::inRange<std::uint8_t>(0x20, 0x7F));
    }
  }
  const auto kept = *rc::gen::inRange<std::size_t>(0, bytes.size() + 1);
  if (*rc::gen::inRange(0, 3) == 0) {
    bytes.resize(kept);
  }
  return bytes;
}

TEST(ItemProperties, WhatIsWrittenIsReadBack) {
  EXPECT_TRUE(rc::check("an item comes back with the device-safe form of its texts", [] {
    const Sale sale = Sale::Any(*rc::gen::arbitrary<bool>());
    const auto item = sale.Item();
    ByteArray data = ByteArray::WithBounds(0, 127);
    std::int32_t length = 0;
    const bool written = item->BinaryDataGet(data, length);
    RC_ASSERT(written == (QuantityTextLength(sale.quantity) < 12));
    if (!written) {
      RC_ASSERT(item->ErrorObject().ErrorNr() == 9203);
      RC_ASSERT(length == 0);
      return;
    }
    data.RedimPreserve(length - 1);
    clsZelItemCash read;
    std::int32_t start = 0;
    RC_ASSERT(read.BinaryDataSet(data, start));
    RC_ASSERT(start == length);
    sale.ExpectIn(read);
    // A second round changes nothing: the safe form is safe.
    ByteArray again = ByteArray::WithBounds(0, 127);
    std::int32_t lengthAgain = 0;
    RC_ASSERT(read.BinaryDataGet(again, lengthAgain));
    RC_ASSERT(lengthAgain == length);
    again.RedimPreserve(length - 1);
    RC_ASSERT(again == data);
  }));
}

TEST(ItemProperties, ListsComeBackInOrder) {
  EXPECT_TRUE(rc::check("a list comes back item by item", [] {
    clsZelItemList list;
    std::vector<Sale> sales;
    const int count = *rc::gen::inRange(1, 8);
    for (int i = 0; i < count; ++i) {
      Sale sale = Sale::Any();
      RC_ASSERT(list.AddItem(sale.Item()));
      sales.push_back(std::move(sale));
    }
    const auto first = *rc::gen::inRange<std::int32_t>(0, 40);
    ByteArray data;
    std::int32_t end = first;
    RC_ASSERT(list.BinaryDataGet(data, end));
    RC_ASSERT(data.UBound() == first + 128 * count - 1);
    data.RedimPreserve(end - 1);
    clsZelItemList read;
    std::int32_t start = first;
    RC_ASSERT(read.BinaryDataSet(data, start));
    RC_ASSERT(start == end);
    RC_ASSERT(read.ItemCount() == count);
    for (std::int32_t i = 1; i <= count; ++i) {
      sales[static_cast<std::size_t>(i) - 1].ExpectIn(dynamic_cast<clsZelItemCash&>(*read.ItemI(i)));
    }
    for (const bool bit256 : {false, true}) {
      std::string hash;
      std::string hashAgain;
      RC_ASSERT(read.GetItemHash(bit256, false, false, hash));
      RC_ASSERT(list.GetItemHash(bit256, false, false, hashAgain));
      RC_ASSERT(hash == hashAgain);
    }
  }));
}

// A reader either succeeds and stands within the data (or just behind it), or fails and stands where it was.
template <class Reader>
void ReadAnything(const ByteArray& data, std::int32_t start) {
  Reader reader;
  const std::int32_t before = start;
  const bool read = reader.BinaryDataSet(data, start);
  RC_ASSERT(read == !reader.HasError());
  RC_ASSERT(start >= before);
  RC_ASSERT(start == before || start <= data.UBound() + 1);
  if (std::is_same_v<Reader, clsZelItemCash> && !read) {
    RC_ASSERT(start == before);
  }
}

TEST(ItemProperties, AnyBytesCanBeReadAsAnItem) {
  EXPECT_TRUE(rc::check("random bytes", [](const std::vector<std::uint8_t>& bytes) {
    ReadAnything<clsZelItemCash>(AnyBytes(bytes), *rc::gen::inRange<std::int32_t>(-2, 40));
  }));
  EXPECT_TRUE(rc::check("likely records", [] {
    ReadAnything<clsZelItemCash>(AnyBytes(AnyRecords()), *rc::gen::element<std::int32_t>(0, 0, 0, 2, 3));
  }));
}

TEST(ItemProperties, AnyBytesCanBeReadAsAList) {
  EXPECT_TRUE(rc::check("random bytes", [](const std::vector<std::uint8_t>& bytes) {
    ReadAnything<clsZelItemList>(AnyBytes(bytes), *rc::gen::inRange<std::int32_t>(-2, 40));
  }));
  EXPECT_TRUE(rc::check("likely records", [] {
    ReadAnything<clsZelItemList>(AnyBytes(AnyRecords()), *rc::gen::element<std::int32_t>(0, 0, 0, 2, 3));
  }));
}

TEST(ItemProperties, EveryBoundAndLengthEndsInABoolean) {
  EXPECT_TRUE(rc::check("bounds, start and length of any kind", [](const std::vector<std::uint8_t>& bytes) {
    const auto lower = *rc::gen::inRange<std::int32_t>(-3, 6);
    ByteArray data = ByteArray::WithBounds(lower, lower + static_cast<std::int32_t>(bytes.size()) - 1);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      data.data()[i] = bytes[i];
    }
    const auto before =
        *rc::gen::oneOf(rc::gen::inRange<std::int32_t>(-5, 30), rc::gen::arbitrary<std::int32_t>());
    const auto length =
        *rc::gen::oneOf(rc::gen::inRange<std::int32_t>(-5, 30), rc::gen::arbitrary<std::int32_t>());
    clsZelItemList list;
    std::int32_t start = before;
    const bool read = list.BinaryDataSet(data, start, length);
    RC_ASSERT(read == !list.HasError());
    RC_ASSERT(start >= before);
    RC_ASSERT(start == before || start <= data.UBound() + 1);
  }));
}

TEST(ItemProperties, AWriterNeverLeavesItsBuffer) {
  EXPECT_TRUE(rc::check("buffers of every size", [] {
    const Sale sale = Sale::Any();
    const auto item = sale.Item();
    ByteArray roomy = ByteArray::WithBounds(0, 127);
    std::int32_t length = 0;
    RC_ASSERT(item->BinaryDataGet(roomy, length));
    const auto size = *rc::gen::inRange<std::int32_t>(0, 120);
    ByteArray data = ByteArray::WithBounds(0, size - 1);
    std::int32_t start = 0;
    RC_ASSERT(item->BinaryDataGet(data, start) == (size >= length));
    RC_ASSERT(start <= length);
    RC_ASSERT(data.UBound() == size - 1);
    for (std::int32_t i = 0; i < start; ++i) {
      RC_ASSERT(data[i] == roomy[i]);
    }
  }));
}

}  // namespace
