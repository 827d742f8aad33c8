// What holds for all values: what is written reads back, and no bytes make a reader crash, move its start
// after a failure or beyond the buffer.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "tests/device/DeviceTesting.h"

namespace VnZEL10cmn {
namespace {

using test::DateText;
using test::Filled;

using Read = std::function<bool(clsZelBaseCoding&, const ByteArray&, std::int32_t&)>;

struct Reader {
  const char* name;
  std::uint8_t tag;
  Read read;
};

const std::vector<Reader>& Readers() {
  static std::string text;
  static std::string other;
  static ByteArray bytes;
  static ZelLifeCycle state;
  static Currency currency;
  static std::int32_t number;
  static Date date;
  using C = clsZelBaseCoding;
  using B = const ByteArray;
  using S = std::int32_t;
  static const std::vector<Reader> readers = {
      {"GetDataBinary", 0xC7, [](C& c, B& b, S& s) { return c.GetDataBinary(b, s, bytes); }},
      {"GetDataAscii", 0xC6, [](C& c, B& b, S& s) { return c.GetDataAscii(b, s, text); }},
      {"GetDataBcd", 0xDC, [](C& c, B& b, S& s) { return c.GetDataBcd(b, s, text); }},
      {"GetDataBcdSgnd", 0xD8, [](C& c, B& b, S& s) { return c.GetDataBcdSgnd(b, s, text); }},
      {"GetZelSignature", 0x9E, [](C& c, B& b, S& s) { return c.GetZelSignature(b, s, bytes); }},
      {"GetZelSignature2", 0x9E, [](C& c, B& b, S& s) { return c.GetZelSignature2(b, s, text, 5); }},
      {"GetZelLifeCycle", 0xC0, [](C& c, B& b, S& s) { return c.GetZelLifeCycle(b, s, state); }},
      {"GetZelSerialNr", 0xC1, [](C& c, B& b, S& s) { return c.GetZelSerialNr(b, s, text, &other, true); }},
      {"GetZelVersion", 0xC2, [](C& c, B& b, S& s) { return c.GetZelVersion(b, s, text); }},
      {"GetZelTranspPin", 0xC3, [](C& c, B& b, S& s) { return c.GetZelTranspPin(b, s, text); }},
      {"GetZelTpID", 0xC4, [](C& c, B& b, S& s) { return c.GetZelTpID(b, s, text); }},
      {"GetZelTpIDNr", 0xC5, [](C& c, B& b, S& s) { return c.GetZelTpIDNr(b, s, currency); }},
      {"GetZelOperator", 0xC6, [](C& c, B& b, S& s) { return c.GetZelOperator(b, s, text); }},
      {"GetZelHash", 0xC7, [](C& c, B& b, S& s) { return c.GetZelHash(b, s, true, text); }},
      {"GetZelHash", 0xD4, [](C& c, B& b, S& s) { return c.GetZelHash(b, s, false, text); }},
      {"GetZelCurrencyCode", 0xC8, [](C& c, B& b, S& s) { return c.GetZelCurrencyCode(b, s, number); }},
      {"GetZelCountryCode", 0xD5, [](C& c, B& b, S& s) { return c.GetZelCountryCode(b, s, number); }},
      {"GetZelCounter", 0xCB,
       [](C& c, B& b, S& s) { return c.GetZelCounter(b, s, ZelTags::Seq_Nr_Trans, currency); }},
      {"GetZelCounterSpc01", 0xDC,
       [](C& c, B& b, S& s) { return c.GetZelCounterSpc01(b, s, ZelRqstCounter::Trnvr_Counter, currency); }},
      {"GetZelAmounts", 0xD8,
       [](C& c, B& b, S& s) { return c.GetZelAmounts(b, s, ZelTags::Trnvr, currency); }},
      {"GetZelAmounts", 0xD8,
       [](C& c, B& b, S& s) { return c.GetZelAmounts(b, s, ZelTags::Trnvr, currency, true); }},
      {"GetZelAmountsSpc01", 0xB1,
       [](C& c, B& b, S& s) { return c.GetZelAmountsSpc01(b, s, ZelRqstAmounts::Item_Price1, currency); }},
      {"GetZelDates", 0xCD, [](C& c, B& b, S& s) { return c.GetZelDates(b, s, ZelTags::tDate, date); }},
      {"GetZelDates", 0xCD, [](C& c, B& b, S& s) { return c.GetZelDates(b, s, ZelTags::tDate, date, 1); }},
      {"GetZelDates", 0xCD, [](C& c, B& b, S& s) { return c.GetZelDates(b, s, ZelTags::tDate, date, 3); }},
      {"GetZelDates", 0xD1,
       [](C& c, B& b, S& s) { return c.GetZelDates(b, s, ZelTags::Month_End, date, 1); }},
      {"GetZelDatesSpc01", 0xD0,
       [](C& c, B& b, S& s) { return c.GetZelDatesSpc01(b, s, ZelRqstDates::Month_Start, date); }},
      {"GetZelTimes", 0xCE, [](C& c, B& b, S& s) { return c.GetZelTimes(b, s, ZelTags::tTime, date); }},
      {"GetZelValsPos", 0xDC,
       [](C& c, B& b, S& s) { return c.GetZelValsPos(b, s, ZelTags::Trnvr_Counter, currency); }},
      {"GetZelVatRate", 0xDB, [](C& c, B& b, S& s) { return c.GetZelVatRate(b, s, currency); }},
  };
  return readers;
}

std::int32_t Between(std::int32_t low, std::int32_t high) { return *rc::gen::inRange(low, high + 1); }

// What every reader promises, for one buffer and start.
void CheckReader(const Reader& reader, const ByteArray& buffer, std::int32_t start) {
  clsZelBaseCoding coding;
  const std::int32_t before = start;
  const bool read = reader.read(coding, buffer, start);
  RC_ASSERT(coding.HasError() == !read);
  if (read) {
    RC_ASSERT(start == before + 2 + buffer[before + 1]);
    RC_ASSERT(start <= buffer.UBound() + 1);
  } else {
    RC_ASSERT(start == before);
    RC_ASSERT(coding.ErrorObject().ErrorFunction() == reader.name);
  }
}

TEST(ReaderProperties, AnyBytesAtAnyStartEndInABoolean) {
  EXPECT_TRUE(rc::check("any bytes", [] {
    const auto bytes = *rc::gen::container<std::vector<std::uint8_t>>(rc::gen::arbitrary<std::uint8_t>());
    const std::int32_t lower = *rc::gen::element(0, 0, 0, -1, 3, 1000000);
    ByteArray buffer = ByteArray::WithBounds(lower, lower + static_cast<std::int32_t>(bytes.size()) - 1);
    std::copy(bytes.begin(), bytes.end(), buffer.begin());
    const std::int32_t start = Between(buffer.LBound() - 2, buffer.UBound() + 3);
    for (const Reader& reader : Readers()) {
      CheckReader(reader, buffer, start);
    }
  }));
}

TEST(ReaderProperties, RecordsOfTheRightTagEndInABoolean) {
  EXPECT_TRUE(rc::check("records of the right tag", [] {
    // Nibbles that are mostly digits and bytes that are mostly printable, so that readers get far.
    const bool digits = *rc::gen::arbitrary<bool>();
    const std::int32_t length = *rc::gen::weightedOneOf<std::int32_t>(
        {{8, rc::gen::inRange(0, 10)}, {2, rc::gen::inRange(0, 128)}, {1, rc::gen::inRange(128, 256)}});
    const std::int32_t missing = *rc::gen::weightedElement<std::int32_t>({{8, 0}, {1, 1}, {1, length}});
    ByteArray buffer = Filled(std::max(2, 2 + length - missing + Between(0, 3)));
    for (std::uint8_t& byte : buffer) {
      byte = digits ? static_cast<std::uint8_t>(16 * Between(0, 9) + Between(0, 9))
                    : static_cast<std::uint8_t>(Between(31, 128));
    }
    if (length > 0 && digits && *rc::gen::arbitrary<bool>()) {
      const std::int32_t last = std::min(length + 1, buffer.UBound());
      buffer[last] = static_cast<std::uint8_t>((buffer[last] & 0xF0) | *rc::gen::element(0xC, 0xD, 0xA, 0xF));
    }
    buffer[1] = static_cast<std::uint8_t>(length);
    for (const Reader& reader : Readers()) {
      buffer[0] = reader.tag;
      CheckReader(reader, buffer, 0);
    }
  }));
}

// Round trips: written into a buffer that just fits, and read again.

template <class Write>
ByteArray Written(Write&& write) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(160, 0xEE);
  std::int32_t start = 10;
  RC_ASSERT(write(coding, buffer, start));
  RC_ASSERT(!coding.HasError());
  RC_ASSERT(start == 12 + buffer[11]);
  for (std::int32_t i = 0; i < 160; ++i) {
    RC_ASSERT((i >= 10 && i < start) || buffer[i] == 0xEE);
  }
  ByteArray record = Filled(start - 10);
  std::copy(buffer.data() + 10, buffer.data() + start, record.data());

  ByteArray exact = Filled(start - 10);
  std::int32_t exactStart = 0;
  RC_ASSERT(write(coding, exact, exactStart));
  RC_ASSERT(exact == record);
  ByteArray small = Filled(start - 11);
  std::int32_t smallStart = 0;
  RC_ASSERT(!write(coding, small, smallStart));
  RC_ASSERT(smallStart == 0);
  RC_ASSERT(small == Filled(start - 11));
  return record;
}

template <class Result, class ReadCall>
Result ReadBack(const ByteArray& record, ReadCall&& read) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  Result result{};
  RC_ASSERT(read(coding, record, start, result));
  RC_ASSERT(start == static_cast<std::int32_t>(record.size()));
  return result;
}

TEST(RoundTrips, Binary) {
  EXPECT_TRUE(rc::check("binary", [] {
    ByteArray value = Filled(Between(0, 127));
    for (std::uint8_t& byte : value) {
      byte = *rc::gen::arbitrary<std::uint8_t>();
    }
    const ZelTags tag{*rc::gen::arbitrary<std::uint8_t>()};
    const ByteArray record =
        Written([&](auto& c, auto& b, auto& s) { return c.SetDataBinary(b, s, tag, value); });
    RC_ASSERT(record[0] == static_cast<std::uint8_t>(tag));
    RC_ASSERT(ReadBack<ByteArray>(record, [](auto& c, auto& b, auto& s, auto& r) {
                return c.GetDataBinary(b, s, r);
              }) == value);
  }));
}

TEST(RoundTrips, Text) {
  EXPECT_TRUE(rc::check("text", [] {
    const auto length = static_cast<std::size_t>(Between(1, 127));
    const std::string value =
        *rc::gen::container<std::string>(length, rc::gen::cast<char>(rc::gen::inRange(32, 128)));
    const ByteArray record =
        Written([&](auto& c, auto& b, auto& s) { return c.SetDataAscii(b, s, ZelTags::Operator, value); });
    RC_ASSERT(ReadBack<std::string>(record, [](auto& c, auto& b, auto& s, auto& r) {
                return c.GetDataAscii(b, s, r);
              }) == value);
  }));
}

std::string Digits(std::int32_t least, std::int32_t most) {
  const auto length = static_cast<std::size_t>(Between(least, most));
  return *rc::gen::container<std::string>(length, rc::gen::cast<char>(rc::gen::inRange<int>('0', '9' + 1)));
}

std::string WithoutLeadingZeros(std::string digits) {
  while (digits.size() > 1 && digits.front() == '0') {
    digits.erase(0, 1);
  }
  return digits;
}

TEST(RoundTrips, Bcd) {
  EXPECT_TRUE(rc::check("BCD", [] {
    const std::string value = Digits(1, 254);
    const bool leadZeroOk = *rc::gen::arbitrary<bool>();
    const ByteArray record = Written([&](auto& c, auto& b, auto& s) {
      return c.SetDataBcd(b, s, ZelTags::Trnvr_Counter, value, leadZeroOk);
    });
    const std::string written = leadZeroOk ? value : WithoutLeadingZeros(value);
    RC_ASSERT(record[1] == (written.size() + 1) / 2);
    RC_ASSERT(ReadBack<std::string>(record, [](auto& c, auto& b, auto& s, auto& r) {
                return c.GetDataBcd(b, s, r);
              }) == WithoutLeadingZeros(value));
  }));
}

TEST(RoundTrips, SignedBcd) {
  EXPECT_TRUE(rc::check("signed BCD", [] {
    const std::string value = "1" + Digits(0, 252);
    const bool negative = *rc::gen::arbitrary<bool>();
    const ByteArray record = Written([&](auto& c, auto& b, auto& s) {
      return c.SetDataBcdSgnd(b, s, ZelTags::Trnvr, value + (negative ? "D" : "C"));
    });
    RC_ASSERT(ReadBack<std::string>(record, [](auto& c, auto& b, auto& s, auto& r) {
                return c.GetDataBcdSgnd(b, s, r);
              }) == (negative ? "-" + value : value));
  }));
}

TEST(RoundTrips, Counters) {
  EXPECT_TRUE(rc::check("counters", [] {
    const Currency value = *rc::gen::arbitrary<std::uint32_t>() >> Between(0, 31);
    const ByteArray record = Written(
        [&](auto& c, auto& b, auto& s) { return c.SetZelCounter(b, s, ZelTags::Seq_Nr_Trans, value); });
    RC_ASSERT(ReadBack<Currency>(record, [](auto& c, auto& b, auto& s, auto& r) {
                return c.GetZelCounter(b, s, ZelTags::Seq_Nr_Trans, r);
              }) == value);
  }));
}

TEST(RoundTrips, CurrencyCodes) {
  EXPECT_TRUE(rc::check("currency codes", [] {
    const std::int32_t value = *rc::gen::arbitrary<std::int32_t>();
    const ByteArray record =
        Written([&](auto& c, auto& b, auto& s) { return c.SetZelCurrencyCode(b, s, value); });
    RC_ASSERT(ReadBack<std::int32_t>(record, [](auto& c, auto& b, auto& s, auto& r) {
                return c.GetZelCurrencyCode(b, s, r);
              }) == value);
  }));
}

TEST(RoundTrips, Amounts) {
  EXPECT_TRUE(rc::check("amounts", [] {
    const bool longVal = *rc::gen::arbitrary<bool>();
    const std::int64_t largest = longVal ? 922337203685477 : 99999999999;
    const std::int64_t cents = *rc::gen::distinctFrom(
        rc::gen::oneOf(rc::gen::inRange<std::int64_t>(-largest, largest + 1),
                       rc::gen::inRange<std::int64_t>(-100000, 100000),
                       rc::gen::elementOf(std::vector<std::int64_t>{largest, -largest, largest - 1})),
        std::int64_t{0});
    const Currency value = Currency::FromScaled(cents * 100);
    const ByteArray record = Written(
        [&](auto& c, auto& b, auto& s) { return c.SetZelAmounts(b, s, ZelTags::Trnvr, value, longVal); });
    RC_ASSERT(ReadBack<Currency>(record, [&](auto& c, auto& b, auto& s, auto& r) {
                return c.GetZelAmounts(b, s, ZelTags::Trnvr, r, longVal);
              }) == value);
  }));
}

TEST(RoundTrips, AmountsAreRoundedToCentsHalfAwayFromZero) {
  EXPECT_TRUE(rc::check("rounded amounts", [] {
    const std::int64_t scaled = *rc::gen::inRange<std::int64_t>(-9999999999949, 9999999999950);
    RC_PRE(scaled >= 50 || scaled <= -50);
    const ByteArray record = Written([&](auto& c, auto& b, auto& s) {
      return c.SetZelAmounts(b, s, ZelTags::Trnvr, Currency::FromScaled(scaled));
    });
    const std::int64_t magnitude = ((scaled < 0 ? -scaled : scaled) + 50) / 100 * 100;
    RC_ASSERT(ReadBack<Currency>(record, [](auto& c, auto& b, auto& s, auto& r) {
                return c.GetZelAmounts(b, s, ZelTags::Trnvr, r);
              }).Scaled() == (scaled < 0 ? -magnitude : magnitude));
  }));
}

TEST(RoundTrips, WholeNumbers) {
  EXPECT_TRUE(rc::check("whole numbers", [] {
    const Currency value = *rc::gen::inRange<std::int64_t>(0, 100000000000);
    const ByteArray record = Written(
        [&](auto& c, auto& b, auto& s) { return c.SetZelValsPos(b, s, ZelTags::Trnvr_Counter, value); });
    RC_ASSERT(ReadBack<Currency>(record, [](auto& c, auto& b, auto& s, auto& r) {
                return c.GetZelValsPos(b, s, ZelTags::Trnvr_Counter, r);
              }) == value);
  }));
}

TEST(RoundTrips, VatRates) {
  for (std::int64_t hundredths = 0; hundredths <= 9999; ++hundredths) {
    clsZelBaseCoding coding;
    ByteArray buffer = Filled(4);
    std::int32_t start = 0;
    Currency result;
    ASSERT_TRUE(coding.SetZelVatRate(buffer, start, Currency::FromScaled(hundredths * 100)));
    start = 0;
    ASSERT_TRUE(coding.GetZelVatRate(buffer, start, result));
    ASSERT_EQ(result.Scaled(), hundredths * 100);
  }
}

TEST(RoundTrips, DatesAndTimes) {
  EXPECT_TRUE(rc::check("dates and times", [] {
    const std::int32_t year = Between(1000, 9998);
    const std::int32_t month = Between(1, 12);
    const std::int32_t day = Between(1, 28);
    const std::int32_t hour = Between(0, 23);
    const std::int32_t minute = Between(0, 59);
    const Date value = Date::FromCivil(year, month, day, hour, minute, Between(0, 59));
    const auto readDate = [](ZelTags tag) {
      return [tag](auto& c, auto& b, auto& s, auto& r) { return c.GetZelDates(b, s, tag, r); };
    };
    const auto written = [&](ZelTags tag) {
      return Written([&](auto& c, auto& b, auto& s) { return c.SetZelDates(b, s, tag, value); });
    };
    RC_ASSERT(ReadBack<Date>(written(ZelTags::tDate), readDate(ZelTags::tDate)) ==
              Date::FromCivil(year, month, day));
    RC_ASSERT(ReadBack<Date>(written(ZelTags::Month_Start), readDate(ZelTags::Month_Start)) ==
              Date::FromCivil(year, month, 1));
    const Date end = ReadBack<Date>(written(ZelTags::Month_End), readDate(ZelTags::Month_End));
    RC_ASSERT(DateText(end).substr(0, 7) == DateText(value).substr(0, 7));
    RC_ASSERT(DateText(end).substr(8, 2) >= "28");
    RC_ASSERT(DateText(end).substr(11) == "23:59:59");
    const ByteArray time =
        Written([&](auto& c, auto& b, auto& s) { return c.SetZelTimes(b, s, ZelTags::tTime, value); });
    RC_ASSERT(DateText(ReadBack<Date>(time, [](auto& c, auto& b, auto& s, auto& r) {
                return c.GetZelTimes(b, s, ZelTags::tTime, r);
              })).substr(11, 5) == DateText(value).substr(11, 5));
  }));
}

TEST(RoundTrips, HashesThroughTheirBase64Text) {
  EXPECT_TRUE(rc::check("hashes", [] {
    ByteArray value = Filled(*rc::gen::element(20, 32));
    for (std::uint8_t& byte : value) {
      byte = *rc::gen::arbitrary<std::uint8_t>();
    }
    const bool isTrans = *rc::gen::arbitrary<bool>();
    const ByteArray record =
        Written([&](auto& c, auto& b, auto& s) { return c.SetZelHash(b, s, isTrans, value); });
    const auto text = ReadBack<std::string>(
        record, [&](auto& c, auto& b, auto& s, auto& r) { return c.GetZelHash(b, s, isTrans, r); });
    RC_ASSERT(Written([&](auto& c, auto& b, auto& s) { return c.SetZelHash2(b, s, isTrans, text); }) ==
              record);
  }));
}

// XML

TEST(GetXmlTagProperties, AnyTextEndsInABoolean) {
  EXPECT_TRUE(rc::check("any text", [] {
    // Ill-formed text among the pieces must do no harm; what of it comes back is not looked at.
    const bool illFormed = *rc::gen::arbitrary<bool>();
    const auto known = rc::gen::element<std::string>(
        "<transactionEncoded>", "</transactionEncoded>", "<reportEncoded>", "</REPORTENCODED>",
        "<itemListEncoded", "</itemListEncoded>", "<transactionRequest>", "</transactionRequest>",
        "<reportResponse>", "</reportResponse>", " profile='", "'", "\"", ">", "<", "ß", "😀", "QUJD");
    const auto pieces = *rc::gen::container<std::vector<std::string>>(
        illFormed ? rc::gen::oneOf(known, rc::gen::arbitrary<std::string>()) : known);
    std::string document;
    for (const std::string& piece : pieces) {
      document += piece;
    }
    const ZelXmlTags tag{Between(-1, 9)};
    clsZelBaseCoding coding;
    std::string result = "vorher";
    std::string profile = "vorher";
    const bool found = coding.GetXmlTag(document, tag, result, &profile);
    RC_ASSERT(coding.HasError() == !found);
    if (found) {
      RC_ASSERT(illFormed || document.find(result) != std::string::npos);
      RC_ASSERT(profile.empty() || tag == ZelXmlTags::ItemList);
    } else {
      RC_ASSERT(coding.ErrorObject().ErrorNr() == 9211);
      RC_ASSERT(result.empty());
      RC_ASSERT(profile.empty());
    }
  }));
}

TEST(GetXmlTagProperties, BareContentComesBack) {
  EXPECT_TRUE(rc::check("bare content", [] {
    const auto length = static_cast<std::size_t>(Between(1, 100));
    const std::string content =
        *rc::gen::container<std::string>(length, rc::gen::elementOf(std::string("ABCZabcz0189+/_-=")));
    const std::string before = *rc::gen::element<std::string>("", " ", "\r\n\t", "ä", "😀 ");
    const std::string after = *rc::gen::element<std::string>("", " ", "\r\n\t", "ä", "😀 ");
    clsZelBaseCoding coding;
    std::string result;
    RC_ASSERT(coding.GetXmlTag("<transactionRequest>" + before + content + after + "</transactionRequest>",
                               ZelXmlTags::TransRequest, result));
    RC_ASSERT(result == content);
  }));
}

}  // namespace
}  // namespace VnZEL10cmn
