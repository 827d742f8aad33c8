// The typed accessors: what all of them share by table, then each field's own conversions and limits.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <locale>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "tests/device/DeviceTesting.h"

namespace VnZEL10cmn {
namespace {

using test::DateText;
using test::ExpectError;
using test::ExpectFailure;
using test::ExpectFault;
using test::ExpectNoError;
using test::Filled;
using test::FromHex;
using test::FromHexAt;
using test::kInt32Max;
using test::Record;
using test::ToHex;

using Read = std::function<bool(clsZelBaseCoding&, const ByteArray&, std::int32_t&)>;
using Write = std::function<bool(clsZelBaseCoding&, ByteArray&, std::int32_t&)>;

// 48 bytes, the shortest signature.
constexpr const char* kSignature =
    "9E 30 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17"
    "18 19 1A 1B 1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F";
constexpr const char* kSignatureBase64 = "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8gISIjJCUmJygpKissLS4v";
constexpr const char* kSignatureBase32 =
    "AAAQEAYEAUDAOCAJBIFQYDIOB4IBCEQTCQKRMFYYDENBWHA5DYPSAIJCEMSCKJRHFAUSUKZMFUXC6===";

struct Reader {
  const char* test;      // name of the test case
  const char* function;  // name under which failures are filed
  const char* record;
  const char* tag;  // as the message about an unexpected tag shows it
  int minLen;       // -1: none
  int maxLen;       // -1: none
  Read read;
};

std::vector<Reader> Readers() {
  static std::string text;
  static ByteArray bytes;
  static ZelLifeCycle state;
  static Currency currency;
  static std::int32_t number;
  static Date date;
  using C = clsZelBaseCoding;
  using B = const ByteArray;
  using S = std::int32_t;
  return {
      {"Signature", "GetZelSignature", kSignature, "0x9E // 158", 48, 64,
       [](C& c, B& b, S& s) { return c.GetZelSignature(b, s, bytes); }},
      {"Signature2", "GetZelSignature2", kSignature, "0x9E // 158", 48, 64,
       [](C& c, B& b, S& s) { return c.GetZelSignature2(b, s, text); }},
      {"LifeCycle", "GetZelLifeCycle", "C0 01 03", "0xC0 // 192", -1, -1,
       [](C& c, B& b, S& s) { return c.GetZelLifeCycle(b, s, state); }},
      {"SerialNr", "GetZelSerialNr", "C1 04 41 42 80 E4", "0xC1 // 193", -1, -1,
       [](C& c, B& b, S& s) { return c.GetZelSerialNr(b, s, text); }},
      {"Version", "GetZelVersion", "C2 07 31 2E 30 2E 30 2E 31", "0xC2 // 194", 7, 10,
       [](C& c, B& b, S& s) { return c.GetZelVersion(b, s, text); }},
      {"TranspPin", "GetZelTranspPin", "C3 06 31 32 33 34 35 36", "0xC3 // 195", 6, 6,
       [](C& c, B& b, S& s) { return c.GetZelTranspPin(b, s, text); }},
      {"TpID", "GetZelTpID", "C4 04 44 45 31 32", "0xC4 // 196", 1, 32,
       [](C& c, B& b, S& s) { return c.GetZelTpID(b, s, text); }},
      {"TpIDNr", "GetZelTpIDNr", "C5 02 01 00", "0xC5 // 197", 1, 4,
       [](C& c, B& b, S& s) { return c.GetZelTpIDNr(b, s, currency); }},
      {"Operator", "GetZelOperator", "C6 04 41 6E 6E 61", "0xC6 // 198", 1, 16,
       [](C& c, B& b, S& s) { return c.GetZelOperator(b, s, text); }},
      {"HashTrans", "GetZelHash", "C7 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13",
       "0xC7 // 199", 20, 32, [](C& c, B& b, S& s) { return c.GetZelHash(b, s, true, text); }},
      {"HashReport", "GetZelHash", "D4 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13",
       "0xD4 // 212", 20, 32, [](C& c, B& b, S& s) { return c.GetZelHash(b, s, false, text); }},
      {"CurrencyCode", "GetZelCurrencyCode", "C8 02 03 D2", "0xC8 // 200", -1, -1,
       [](C& c, B& b, S& s) { return c.GetZelCurrencyCode(b, s, number); }},
      {"CountryCode", "GetZelCountryCode", "D5 02 01 14", "0xD5 // 213", -1, -1,
       [](C& c, B& b, S& s) { return c.GetZelCountryCode(b, s, number); }},
      {"Counter", "GetZelCounter", "CB 01 07", "0xCB // 203", -1, -1,
       [](C& c, B& b, S& s) { return c.GetZelCounter(b, s, ZelTags::Seq_Nr_Trans, currency); }},
      {"CounterSpc01", "GetZelCounterSpc01", "DC 01 07", "0xDC // 220", -1, -1,
       [](C& c, B& b, S& s) { return c.GetZelCounterSpc01(b, s, ZelRqstCounter::Trnvr_Counter, currency); }},
      {"Amounts", "GetZelAmounts", "D8 03 01 23 4C", "0xD8 // 216", 1, 6,
       [](C& c, B& b, S& s) { return c.GetZelAmounts(b, s, ZelTags::Trnvr, currency); }},
      {"AmountsLong", "GetZelAmounts", "D8 08 12 34 56 78 90 12 34 5D", "0xD8 // 216", 1, 8,
       [](C& c, B& b, S& s) { return c.GetZelAmounts(b, s, ZelTags::Trnvr, currency, true); }},
      {"AmountsSpc01", "GetZelAmountsSpc01", "B1 02 19 9C", "0xB1 // 177", 1, 6,
       [](C& c, B& b, S& s) { return c.GetZelAmountsSpc01(b, s, ZelRqstAmounts::Item_Price1, currency); }},
      {"AmountsSpc01Long", "GetZelAmountsSpc01", "D9 02 19 9C", "0xD9 // 217", 1, 8,
       [](C& c, B& b, S& s) {
         return c.GetZelAmountsSpc01(b, s, ZelRqstAmounts::Trnvr_neg, currency, true);
       }},
      {"Dates", "GetZelDates", "CD 04 20 26 12 31", "0xCD // 205", 4, -1,
       [](C& c, B& b, S& s) { return c.GetZelDates(b, s, ZelTags::tDate, date); }},
      {"DatesMonthStart", "GetZelDates", "D0 03 20 26 12", "0xD0 // 208", 3, -1,
       [](C& c, B& b, S& s) { return c.GetZelDates(b, s, ZelTags::Month_Start, date); }},
      {"DatesMonthEnd", "GetZelDates", "D1 03 20 26 12", "0xD1 // 209", 3, -1,
       [](C& c, B& b, S& s) { return c.GetZelDates(b, s, ZelTags::Month_End, date); }},
      {"DatesSpc01", "GetZelDatesSpc01", "CD 04 20 26 12 31", "0xCD // 205", 4, -1,
       [](C& c, B& b, S& s) { return c.GetZelDatesSpc01(b, s, ZelRqstDates::tDate, date); }},
      {"Times", "GetZelTimes", "CE 02 09 05", "0xCE // 206", 1, 2,
       [](C& c, B& b, S& s) { return c.GetZelTimes(b, s, ZelTags::tTime, date); }},
      {"ValsPos", "GetZelValsPos", "DC 02 01 23", "0xDC // 220", 1, 6,
       [](C& c, B& b, S& s) { return c.GetZelValsPos(b, s, ZelTags::Trnvr_Counter, currency); }},
      {"VatRate", "GetZelVatRate", "DB 02 19 00", "0xDB // 219", 1, 6,
       [](C& c, B& b, S& s) { return c.GetZelVatRate(b, s, currency); }},
  };
}

class EveryReader : public testing::TestWithParam<Reader> {
 protected:
  EveryReader() { coding_.LogHandler(log_.Handler()); }

  void ExpectRefused(const ByteArray& buffer, std::int32_t start, int number, const std::string& message) {
    const std::int32_t before = start;
    const std::size_t logged = log_.Count();
    EXPECT_FALSE(GetParam().read(coding_, buffer, start));
    ExpectError(coding_.ErrorObject(), number, true, GetParam().function, message);
    EXPECT_EQ(start, before);
    const std::vector<std::string> functions = log_.Functions();
    ASSERT_EQ(functions.size(), logged + 1) << "a failure is logged once";
    EXPECT_EQ(functions.back(), GetParam().function);
  }

  std::string TagHex() const { return std::string(GetParam().tag).substr(0, 4); }

  clsZelBaseCoding coding_;
  test::TestLog log_;
};

class LimitedReader : public EveryReader {};

TEST_P(EveryReader, ReadsItsRecordAndStandsBehindIt) {
  const ByteArray record = FromHex(GetParam().record);
  const auto size = static_cast<std::int32_t>(record.size());
  std::int32_t start = 0;
  EXPECT_TRUE(GetParam().read(coding_, record, start));
  EXPECT_EQ(start, size);
  ExpectNoError(coding_);

  const ByteArray amid = FromHexAt(100, "00 00 00 " + ToHex(record) + " 00");
  start = 103;
  EXPECT_TRUE(GetParam().read(coding_, amid, start));
  EXPECT_EQ(start, 103 + size);
  ExpectNoError(coding_);
  EXPECT_EQ(log_.Count(), 0U);
}

TEST_P(EveryReader, RefusesAnotherTag) {
  ByteArray record = FromHex(GetParam().record);
  record[0] = 0x0F;
  ExpectRefused(record, 0, 9207,
                std::string("Es wurde nicht das erwartete Tag gefunden\r\n"
                            "    Startposition ...: 0\r\n"
                            "    Tag erwartet ....: ") +
                    GetParam().tag +
                    "\r\n"
                    "    Tag gefunden ....: 0x0F // 15");
}

TEST_P(LimitedReader, KeepsItsMinimumLength) {
  const auto tag = FromHex(GetParam().record)[0];
  ExpectRefused(Record(tag, GetParam().minLen - 1), 0, 9207,
                "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: " +
                    TagHex() +
                    "\r\n"
                    "    Länge ...........: " +
                    std::to_string(GetParam().minLen - 1) +
                    "\r\n"
                    "    Mindestlänge ....: " +
                    std::to_string(GetParam().minLen));
}

TEST_P(LimitedReader, KeepsItsMaximumLength) {
  const auto tag = FromHex(GetParam().record)[0];
  ExpectRefused(Record(tag, GetParam().maxLen + 1), 0, 9207,
                "Die Maximallänge für dieses TAG wurde überschritten\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: " +
                    TagHex() +
                    "\r\n"
                    "    Länge ...........: " +
                    std::to_string(GetParam().maxLen + 1) +
                    "\r\n"
                    "    Maximallänge ....: " +
                    std::to_string(GetParam().maxLen));
}

TEST_P(LimitedReader, LengthIsCheckedBeforeTheTag) {
  ExpectRefused(Record(0x0F, GetParam().maxLen + 1), 0, 9207,
                "Die Maximallänge für dieses TAG wurde überschritten\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: 0x0F\r\n"
                "    Länge ...........: " +
                    std::to_string(GetParam().maxLen + 1) +
                    "\r\n"
                    "    Maximallänge ....: " +
                    std::to_string(GetParam().maxLen));
}

TEST_P(EveryReader, RefusesARecordThatIsCutOff) {
  const ByteArray record = FromHex(GetParam().record);
  const int length = record[1];
  ByteArray cut = record;
  cut.RedimPreserve(record.UBound() - 1);
  ExpectRefused(cut, 0, 9204,
                "Der Datenpuffer ist zu klein.\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: " +
                    TagHex() +
                    "\r\n"
                    "    Länge ...........: " +
                    std::to_string(length) +
                    "\r\n"
                    "    Leseende ........: " +
                    std::to_string(length + 1) +
                    "\r\n"
                    "    Obergrenze ......: " +
                    std::to_string(length));
}

TEST_P(EveryReader, RefusesALengthByteOf128) {
  ByteArray buffer = Filled(200, 0x31);
  buffer[0] = FromHex(GetParam().record)[0];
  buffer[1] = 128;
  ExpectRefused(buffer, 0, 9207,
                "Ungültige Längenangabe.\r\n"
                "Die Länge eines Tags darf 127 Byte nicht überschreiten!\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: " +
                    TagHex() +
                    "\r\n"
                    "    Länge ...........: 128");
  // In a buffer that ends before, the end counts.
  buffer.RedimPreserve(100);
  ExpectRefused(buffer, 0, 9204,
                "Der Datenpuffer ist zu klein.\r\n"
                "    Startposition ...: 0\r\n"
                "    Tag .............: " +
                    TagHex() +
                    "\r\n"
                    "    Länge ...........: 128\r\n"
                    "    Leseende ........: 129\r\n"
                    "    Obergrenze ......: 100");
}

TEST_P(EveryReader, RefusesBadBoundsAndPositions) {
  const std::string record = GetParam().record;
  ExpectRefused(FromHexAt(-7, record), 0, 9202,
                "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -7");
  ExpectRefused(ByteArray(), 0, 9203,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 0\r\n"
                "    Untergrenze .....: 0\r\n"
                "    Obergrenze ......: -1");
  ExpectRefused(FromHexAt(4, "00 00"), 3, 9203,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 3\r\n"
                "    Untergrenze .....: 4\r\n"
                "    Obergrenze ......: 5");
  ExpectRefused(FromHexAt(4, "00 00"), kInt32Max, 9203,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 2147483647\r\n"
                "    Untergrenze .....: 4\r\n"
                "    Obergrenze ......: 5");
  ExpectRefused(FromHexAt(4, "00 00"), 5, 9205,
                "Die Startposition ist ungültig, es kann keine Längenangabe folgen\r\n"
                "    Startposition ...: 5\r\n"
                "    Obergrenze ......: 5");
}

TEST_P(EveryReader, ReadsAnewAfterAFailure) {
  const ByteArray record = FromHex(GetParam().record);
  std::int32_t start = record.UBound() + 1;
  EXPECT_FALSE(GetParam().read(coding_, record, start));
  EXPECT_TRUE(coding_.HasError());
  start = 0;
  EXPECT_TRUE(GetParam().read(coding_, record, start));
  ExpectNoError(coding_);
}

// Those with limits on both sides.
std::vector<Reader> LimitedReaders() {
  std::vector<Reader> readers = Readers();
  std::erase_if(readers, [](const Reader& reader) { return reader.minLen < 0 || reader.maxLen < 0; });
  return readers;
}

const auto kReaderName = [](const auto& tested) { return std::string(tested.param.test); };
INSTANTIATE_TEST_SUITE_P(Fields, EveryReader, testing::ValuesIn(Readers()), kReaderName);
INSTANTIATE_TEST_SUITE_P(Fields, LimitedReader, testing::ValuesIn(LimitedReaders()), kReaderName);

struct Writer {
  const char* test;
  const char* function;
  const char* record;
  Write write;
};

std::vector<Writer> Writers() {
  using C = clsZelBaseCoding;
  using B = ByteArray;
  using S = std::int32_t;
  return {
      {"TranspPin", "SetZelTranspPin", "C3 06 31 32 33 34 35 36",
       [](C& c, B& b, S& s) { return c.SetZelTranspPin(b, s, "123456"); }},
      {"Operator", "SetZelOperator", "C6 04 41 6E 6E 61",
       [](C& c, B& b, S& s) { return c.SetZelOperator(b, s, "Anna"); }},
      {"HashTrans", "SetZelHash", "C7 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13",
       [](C& c, B& b, S& s) {
         return c.SetZelHash(b, s, true,
                             FromHex("00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13"));
       }},
      {"HashReport", "SetZelHash", "D4 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13",
       [](C& c, B& b, S& s) {
         return c.SetZelHash(b, s, false,
                             FromHex("00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13"));
       }},
      {"Hash2", "SetZelHash2", "C7 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13",
       [](C& c, B& b, S& s) { return c.SetZelHash2(b, s, true, "AAECAwQFBgcICQoLDA0ODxAREhM="); }},
      {"Hash2Report", "SetZelHash2", "D4 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13",
       [](C& c, B& b, S& s) { return c.SetZelHash2(b, s, false, "AAECAwQFBgcICQoLDA0ODxAREhM="); }},
      {"CurrencyCode", "SetZelCurrencyCode", "C8 02 03 D2",
       [](C& c, B& b, S& s) { return c.SetZelCurrencyCode(b, s, 978); }},
      {"Counter", "SetZelCounter", "CB 03 01 00 00",
       [](C& c, B& b, S& s) { return c.SetZelCounter(b, s, ZelTags::Seq_Nr_Trans, 65536); }},
      {"Amounts", "SetZelAmounts", "D8 03 01 23 4C",
       [](C& c, B& b, S& s) { return c.SetZelAmounts(b, s, ZelTags::Trnvr, Currency::FromScaled(123400)); }},
      {"AmountsSpc01", "SetZelAmountsSpc01", "B6 02 05 0D",
       [](C& c, B& b, S& s) {
         return c.SetZelAmountsSpc01(b, s, ZelRqstAmounts::Item_Price6, Currency::FromScaled(-5000));
       }},
      {"Dates", "SetZelDates", "CD 04 20 26 12 31",
       [](C& c, B& b, S& s) {
         return c.SetZelDates(b, s, ZelTags::tDate, Date::FromCivil(2026, 12, 31, 8, 5));
       }},
      {"DatesMonth", "SetZelDates", "D1 03 20 26 12",
       [](C& c, B& b, S& s) {
         return c.SetZelDates(b, s, ZelTags::Month_End, Date::FromCivil(2026, 12, 31));
       }},
      {"DatesSpc01", "SetZelDatesSpc01", "D0 03 20 26 12",
       [](C& c, B& b, S& s) {
         return c.SetZelDatesSpc01(b, s, ZelRqstDates::Month_Start, Date::FromCivil(2026, 12, 31));
       }},
      {"Times", "SetZelTimes", "CE 02 09 05",
       [](C& c, B& b, S& s) {
         return c.SetZelTimes(b, s, ZelTags::tTime, Date::FromCivil(2026, 12, 31, 9, 5));
       }},
      {"ValsPos", "SetZelValsPos", "DC 02 01 23",
       [](C& c, B& b, S& s) { return c.SetZelValsPos(b, s, ZelTags::Trnvr_Counter, 123); }},
      {"VatRate", "SetZelVatRate", "DB 02 19 00", [](C& c, B& b, S& s) { return c.SetZelVatRate(b, s, 19); }},
  };
}

class EveryWriter : public testing::TestWithParam<Writer> {
 protected:
  EveryWriter() { coding_.LogHandler(log_.Handler()); }

  void ExpectRefused(ByteArray buffer, std::int32_t start, int number, const std::string& message) {
    const ByteArray untouched = buffer;
    const std::int32_t before = start;
    const std::size_t logged = log_.Count();
    EXPECT_FALSE(GetParam().write(coding_, buffer, start));
    ExpectError(coding_.ErrorObject(), number, true, GetParam().function, message);
    EXPECT_EQ(start, before);
    EXPECT_EQ(buffer, untouched);
    const std::vector<std::string> functions = log_.Functions();
    ASSERT_EQ(functions.size(), logged + 1) << "a failure is logged once";
    EXPECT_EQ(functions.back(), GetParam().function);
  }

  clsZelBaseCoding coding_;
  test::TestLog log_;
};

TEST_P(EveryWriter, WritesItsRecordAndStandsBehindIt) {
  const ByteArray record = FromHex(GetParam().record);
  const auto size = static_cast<std::int32_t>(record.size());
  ByteArray exact = Filled(size, 0xEE);
  std::int32_t start = 0;
  EXPECT_TRUE(GetParam().write(coding_, exact, start));
  EXPECT_EQ(ToHex(exact), ToHex(record));
  EXPECT_EQ(start, size);
  ExpectNoError(coding_);

  ByteArray amid = ByteArray::WithBounds(50, 50 + size + 3);
  start = 52;
  EXPECT_TRUE(GetParam().write(coding_, amid, start));
  EXPECT_EQ(ToHex(amid), "00 00 " + ToHex(record) + " 00 00");
  EXPECT_EQ(start, 52 + size);
  EXPECT_EQ(log_.Count(), 0U);
}

TEST_P(EveryWriter, RefusesABufferThatIsOneByteTooSmall) {
  const ByteArray record = FromHex(GetParam().record);
  const int length = record[1];
  ExpectRefused(Filled(length + 1, 0xEE), 0, 9204,
                "Der Datenpuffer ist zu klein.\r\n"
                "    Startposition ...: 0\r\n"
                "    Länge ...........: " +
                    std::to_string(length) +
                    "\r\n"
                    "    Schreibende .....: " +
                    std::to_string(length + 1) +
                    "\r\n"
                    "    Obergrenze ......: " +
                    std::to_string(length));
}

TEST_P(EveryWriter, RefusesBadBoundsAndPositions) {
  ExpectRefused(ByteArray::WithBounds(-7, 100), 0, 9202,
                "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\nUntergrenze: -7");
  ExpectRefused(ByteArray(), 0, 9203,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 0\r\n"
                "    Untergrenze .....: 0\r\n"
                "    Obergrenze ......: -1");
  ExpectRefused(ByteArray::WithBounds(4, 100), 3, 9203,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 3\r\n"
                "    Untergrenze .....: 4\r\n"
                "    Obergrenze ......: 100");
  ExpectRefused(ByteArray::WithBounds(4, 100), kInt32Max, 9203,
                "Die Startposition ist ungültig\r\n"
                "    Startposition ...: 2147483647\r\n"
                "    Untergrenze .....: 4\r\n"
                "    Obergrenze ......: 100");
  ExpectRefused(ByteArray::WithBounds(4, 100), 100, 9205,
                "Die Startposition ist ungültig, es kann keine Längenangabe folgen\r\n"
                "    Startposition ...: 100\r\n"
                "    Obergrenze ......: 100");
}

INSTANTIATE_TEST_SUITE_P(Fields, EveryWriter, testing::ValuesIn(Writers()),
                         [](const auto& tested) { return std::string(tested.param.test); });

// A reader's or writer's outcome on one record.

template <class Result, class Call>
Result ReadValue(std::string_view record, Call&& call, int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(__FILE__, line, "reading " + std::string(record));
  clsZelBaseCoding coding;
  const ByteArray buffer = FromHex(record);
  std::int32_t start = 0;
  Result result{};
  EXPECT_TRUE(call(coding, buffer, start, result)) << coding.ErrorObject().ErrorMsg();
  EXPECT_EQ(start, static_cast<std::int32_t>(buffer.size()));
  return result;
}

template <class Call>
std::string Written(Call&& call, int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(__FILE__, line, "writing");
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(140, 0xEE);
  std::int32_t start = 0;
  if (!call(coding, buffer, start)) {
    EXPECT_EQ(start, 0);
    return "failed with " + std::to_string(coding.ErrorObject().ErrorNr());
  }
  EXPECT_FALSE(coding.HasError());
  EXPECT_EQ(buffer[start], 0xEE);
  buffer.RedimPreserve(start - 1);
  return ToHex(buffer);
}

// Signature

TEST(GetZelSignature, ReadsTheBytesAsTheyAre) {
  const auto bytes = ReadValue<ByteArray>(
      kSignature, [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelSignature(b, s, r); });
  EXPECT_EQ(ToHex(bytes),
            "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 "
            "18 19 1A 1B 1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F");
}

TEST(GetZelSignature, Takes48To64Bytes) {
  for (const int length : {48, 49, 63, 64}) {
    clsZelBaseCoding coding;
    std::int32_t start = 0;
    ByteArray result;
    EXPECT_TRUE(coding.GetZelSignature(Record(0x9E, length, 0xAB), start, result));
    EXPECT_EQ(result, Filled(length, 0xAB));
  }
}

TEST(GetZelSignature2, RendersTheSignature) {
  const auto base64 = ReadValue<std::string>(
      kSignature, [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelSignature2(b, s, r); });
  EXPECT_EQ(base64, kSignatureBase64);
  const auto base32 = ReadValue<std::string>(kSignature, [](auto& c, auto& b, auto& s, auto& r) {
    return c.GetZelSignature2(b, s, r, 0, " ", true);
  });
  EXPECT_EQ(base32, kSignatureBase32);
  const auto grouped = ReadValue<std::string>(
      kSignature, [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelSignature2(b, s, r, 16, "-"); });
  EXPECT_EQ(grouped, "AAECAwQFBgcICQoL-DA0ODxAREhMUFRYX-GBkaGxwdHh8gISIj-JCUmJygpKissLS4v");
}

TEST(GetZelSignature2, TheFailureIsItsOwn) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result = "vorher";
  EXPECT_FALSE(coding.GetZelSignature2(Record(0x9E, 47), start, result));
  ExpectError(coding.ErrorObject(), 9207, true, "GetZelSignature2",
              "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0x9E\r\n"
              "    Länge ...........: 47\r\n"
              "    Mindestlänge ....: 48");
  EXPECT_EQ(start, 0);
}

TEST(GetZelSingatureString, RendersTheWholeBuffer) {
  clsZelBaseCoding coding;
  std::string result = "vorher";
  EXPECT_TRUE(coding.GetZelSingatureString(FromHex("41 42 43 44 45 46 47 48 49 4A"), result));
  EXPECT_EQ(result, "QUJDREVGR0hJSg==");
  EXPECT_TRUE(coding.GetZelSingatureString(FromHex("66 6F 6F 62 61"), result, 0, " ", true));
  EXPECT_EQ(result, "MZXW6YTB");
  EXPECT_TRUE(coding.GetZelSingatureString(FromHex("FB FF FE"), result));
  EXPECT_EQ(result, "+//+");
  ExpectNoError(coding);
}

TEST(GetZelSingatureString, CutsTheTextIntoGroups) {
  clsZelBaseCoding coding;
  const ByteArray bytes = FromHex("41 42 43 44 45 46 47 48 49 4A");
  std::string result;
  EXPECT_TRUE(coding.GetZelSingatureString(bytes, result, 5));
  EXPECT_EQ(result, "QUJDR EVGR0 hJSg= =");
  EXPECT_TRUE(coding.GetZelSingatureString(bytes, result, 4, "-"));
  EXPECT_EQ(result, "QUJD-REVG-R0hJ-Sg==");
  EXPECT_TRUE(coding.GetZelSingatureString(bytes, result, 8, "::"));
  EXPECT_EQ(result, "QUJDREVG::R0hJSg==");
  EXPECT_TRUE(coding.GetZelSingatureString(bytes, result, 15, "-"));
  EXPECT_EQ(result, "QUJDREVGR0hJSg=-=");
  EXPECT_TRUE(coding.GetZelSingatureString(bytes, result, 16, "-"));
  EXPECT_EQ(result, "QUJDREVGR0hJSg==");
  EXPECT_TRUE(coding.GetZelSingatureString(bytes, result, kInt32Max, "-"));
  EXPECT_EQ(result, "QUJDREVGR0hJSg==");
  EXPECT_TRUE(coding.GetZelSingatureString(bytes, result, 1, "-"));
  EXPECT_EQ(result, "Q-U-J-D-R-E-V-G-R-0-h-J-S-g-=-=");
  EXPECT_TRUE(coding.GetZelSingatureString(FromHex("66 6F 6F 62 61"), result, 3, "-", true));
  EXPECT_EQ(result, "MZX-W6Y-TB");
}

TEST(GetZelSingatureString, AnEmptySeparatorCountsAsABlank) {
  clsZelBaseCoding coding;
  std::string result;
  EXPECT_TRUE(coding.GetZelSingatureString(FromHex("41 42 43 44 45 46"), result, 4, ""));
  EXPECT_EQ(result, "QUJD REVG");
}

TEST(GetZelSingatureString, GroupsBelowOneAreNone) {
  clsZelBaseCoding coding;
  std::string result;
  EXPECT_TRUE(coding.GetZelSingatureString(FromHex("41 42 43 44 45 46"), result, -1, "-"));
  EXPECT_EQ(result, "QUJDREVG");
  EXPECT_TRUE(coding.GetZelSingatureString(FromHex("41 42 43 44 45 46"), result,
                                           std::numeric_limits<std::int32_t>::min(), "-"));
  EXPECT_EQ(result, "QUJDREVG");
}

TEST(GetZelSingatureString, AnEmptyBufferGivesAnEmptyText) {
  clsZelBaseCoding coding;
  for (const bool asBase32 : {false, true}) {
    std::string result = "vorher";
    EXPECT_TRUE(coding.GetZelSingatureString(ByteArray(), result, 5, "-", asBase32));
    EXPECT_EQ(result, "");
  }
}

TEST(GetZelSingatureString, FailsForOtherLowerBoundsThanZero) {
  clsZelBaseCoding coding;
  test::TestLog log;
  coding.LogHandler(log.Handler());
  for (const bool asBase32 : {false, true}) {
    std::string result;
    EXPECT_FALSE(coding.GetZelSingatureString(FromHexAt(-1, "41 42 43"), result, 0, " ", asBase32));
    EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9102);
    EXPECT_TRUE(coding.ErrorObject().IsUserDef());
    EXPECT_EQ(coding.ErrorObject().ErrorFunction().substr(0, 21), "GetZelSingatureString");
    EXPECT_NE(coding.ErrorObject().ErrorMsg().find("Die Untergrenze des Datenfeldes ist nicht \"0\"\r\n"
                                                   "Untergrenze: -1"),
              std::string::npos);
    EXPECT_FALSE(coding.GetZelSingatureString(FromHexAt(1, "41 42 43"), result, 0, " ", asBase32));
    EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9);
    EXPECT_FALSE(coding.ErrorObject().IsUserDef());
    EXPECT_EQ(coding.ErrorObject().ErrorFunction().substr(0, 21), "GetZelSingatureString");
  }
  EXPECT_GE(log.Count(), 4U);
}

// Lifecycle

ZelLifeCycle StateOf(std::string_view record) {
  return ReadValue<ZelLifeCycle>(
      record, [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelLifeCycle(b, s, r); });
}

TEST(GetZelLifeCycle, ReadsTheState) {
  EXPECT_EQ(StateOf("C0 01 00"), ZelLifeCycle::Undefined);
  EXPECT_EQ(StateOf("C0 01 01"), ZelLifeCycle::Initialized);
  EXPECT_EQ(StateOf("C0 01 02"), ZelLifeCycle::Personalized);
  EXPECT_EQ(StateOf("C0 01 03"), ZelLifeCycle::Activated);
  EXPECT_EQ(StateOf("C0 01 04"), ZelLifeCycle::Deactivated);
  EXPECT_EQ(StateOf("C0 01 63"), ZelLifeCycle{99});
}

TEST(GetZelLifeCycle, ReadsLongerValuesAsBigEndianIntegers) {
  EXPECT_EQ(StateOf("C0 02 00 03"), ZelLifeCycle::Activated);
  EXPECT_EQ(StateOf("C0 04 00 00 01 02"), ZelLifeCycle{258});
}

TEST(GetZelLifeCycle, AnEmptyValueDoesNoHarm) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  ZelLifeCycle result = ZelLifeCycle::Activated;
  if (!coding.GetZelLifeCycle(FromHex("C0 00"), start, result)) {
    EXPECT_EQ(start, 0);
    EXPECT_TRUE(coding.HasError());
  }
}

TEST(ToStringZelState, NamesEveryState) {
  clsZelBaseCoding coding;
  EXPECT_EQ(coding.ToStringZelState(ZelLifeCycle::Undefined), "nicht gesetzt");
  EXPECT_EQ(coding.ToStringZelState(ZelLifeCycle::Initialized), "Initialisiert");
  EXPECT_EQ(coding.ToStringZelState(ZelLifeCycle::Personalized), "Personalisiert");
  EXPECT_EQ(coding.ToStringZelState(ZelLifeCycle::Activated), "Aktiviert");
  EXPECT_EQ(coding.ToStringZelState(ZelLifeCycle::Deactivated), "Deaktiviert");
  EXPECT_EQ(coding.ToStringZelState(ZelLifeCycle{5}), "Unbekannt");
  EXPECT_EQ(coding.ToStringZelState(ZelLifeCycle{-1}), "Unbekannt");
}

// Serial number

TEST(GetZelSerialNr, GivesBase64AndPrintableText) {
  clsZelBaseCoding coding;
  const ByteArray record = FromHex("C1 04 41 42 80 E4");
  std::int32_t start = 0;
  std::string base64;
  std::string printable;
  EXPECT_TRUE(coding.GetZelSerialNr(record, start, base64, &printable));
  EXPECT_EQ(base64, "QUKA5A==");
  EXPECT_EQ(printable, "AB??");
  start = 0;
  EXPECT_TRUE(coding.GetZelSerialNr(record, start, base64, &printable, true));
  EXPECT_EQ(base64, "QUKA5A==");
  EXPECT_EQ(printable, "AB?ä");
  EXPECT_EQ(start, 6);
}

TEST(GetZelSerialNr, UsesTheStandardAlphabet) {
  EXPECT_EQ(ReadValue<std::string>("C1 03 FB FF FE", [](auto& c, auto& b, auto& s,
                                                        auto& r) { return c.GetZelSerialNr(b, s, r); }),
            "+//+");
}

TEST(GetZelSerialNr, TakesAnyLength) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string base64 = "vorher";
  std::string printable = "vorher";
  EXPECT_TRUE(coding.GetZelSerialNr(FromHex("C1 00"), start, base64, &printable));
  EXPECT_EQ(base64, "");
  EXPECT_EQ(printable, "");
  EXPECT_EQ(start, 2);
  start = 0;
  EXPECT_TRUE(coding.GetZelSerialNr(Record(0xC1, 127, 0x41), start, base64, &printable));
  EXPECT_EQ(printable, std::string(127, 'A'));
  EXPECT_EQ(base64.size(), 172U);
  EXPECT_EQ(base64.find('\r'), std::string::npos);
}

// Texts

TEST(GetZelTexts, GiveTheText) {
  EXPECT_EQ(
      ReadValue<std::string>("C2 07 31 2E 30 2E 30 2E 31",
                             [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelVersion(b, s, r); }),
      "1.0.0.1");
  EXPECT_EQ(
      ReadValue<std::string>("C2 0A 31 2E 30 2E 30 2E 31 32 33 34",
                             [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelVersion(b, s, r); }),
      "1.0.0.1234");
  EXPECT_EQ(
      ReadValue<std::string>("C3 06 30 30 34 35 36 41",
                             [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelTranspPin(b, s, r); }),
      "00456A");
  EXPECT_EQ(ReadValue<std::string>("C4 01 58",
                                   [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelTpID(b, s, r); }),
            "X");
  EXPECT_EQ(
      ReadValue<std::string>("C6 10 20 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 20",
                             [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelOperator(b, s, r); }),
      " abcdefghijklmn ");
}

TEST(GetZelTexts, TakeTheirLongestText) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result;
  EXPECT_TRUE(coding.GetZelTpID(Record(0xC4, 32, 'T'), start, result));
  EXPECT_EQ(result, std::string(32, 'T'));
}

TEST(GetZelTexts, RefuseOtherBytesThanPrintableOnes) {
  clsZelBaseCoding coding;
  test::TestLog log;
  coding.LogHandler(log.Handler());
  std::int32_t start = 0;
  std::string result;
  EXPECT_FALSE(coding.GetZelOperator(FromHex("C6 03 41 FC 42"), start, result));
  ExpectError(coding.ErrorObject(), 9206, true, "GetZelOperator",
              "Es wurde ein ungültiger Zeichenwert gefunden!\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 3\r\n"
              "    Position total ..: 3\r\n"
              "    Position Tag ....: 1\r\n"
              "    Zeichenwert .....: 252 // 0xFC");
  EXPECT_EQ(start, 0);
  EXPECT_FALSE(coding.GetZelVersion(FromHex("C2 07 31 2E 30 2E 30 2E 0A"), start, result));
  ExpectError(coding.ErrorObject(), 9206, true, "GetZelVersion",
              "Es wurde ein ungültiger Zeichenwert gefunden!\r\n"
              "    Tag .............: 0xC2\r\n"
              "    Taglänge ........: 7\r\n"
              "    Position total ..: 8\r\n"
              "    Position Tag ....: 6\r\n"
              "    Zeichenwert .....: 10 // 0x0A");
  EXPECT_FALSE(coding.GetZelTpID(FromHex("C4 01 80"), start, result));
  EXPECT_EQ(coding.ErrorObject().ErrorFunction(), "GetZelTpID");
  EXPECT_FALSE(coding.GetZelTranspPin(FromHex("C3 06 31 32 33 34 35 00"), start, result));
  EXPECT_EQ(coding.ErrorObject().ErrorFunction(), "GetZelTranspPin");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(log.Functions(),
            (std::vector<std::string>{"GetZelOperator", "GetZelVersion", "GetZelTpID", "GetZelTranspPin"}));
}

TEST(SetZelTranspPin, WantsSixCharacters) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  for (const char* pin : {"", "1", "12345", "1234567", "12a"}) {
    EXPECT_FALSE(coding.SetZelTranspPin(buffer, start, pin));
    ExpectFailure(coding.ErrorObject(), 9207, "SetZelTranspPin");
    EXPECT_EQ(start, 0);
  }
  EXPECT_EQ(buffer, Filled(20));
}

TEST(SetZelTranspPin, TooLongAPinHasTheTextOfTheMaximumLength) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 1;
  EXPECT_FALSE(coding.SetZelTranspPin(buffer, start, "1234567"));
  ExpectError(coding.ErrorObject(), 9207, true, "SetZelTranspPin",
              "Die Maximallänge für dieses TAG wurde überschritten\r\n"
              "    Startposition ...: 1\r\n"
              "    Tag .............: 0xC3\r\n"
              "    Länge ...........: 7\r\n"
              "    Maximallänge ....: 6");
}

// The PIN is checked before the array: its place in a record at the last index lies beyond all indices.
TEST(SetZelTranspPin, APlaceBeyondTheLastIndexIsToldAsItIs) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = kInt32Max;
  EXPECT_FALSE(coding.SetZelTranspPin(buffer, start, "1x3456"));
  ExpectError(coding.ErrorObject(), 9206, true, "SetZelTranspPin",
              "Es wurde ein ungültiger Zeichenwert gefunden!\r\n"
              "    Tag .............: 0xC3\r\n"
              "    Taglänge ........: 6\r\n"
              "    Position total ..: 2147483650\r\n"
              "    Position Tag ....: 1\r\n"
              "    Zeichenwert .....: 120 // 0x78");
  EXPECT_EQ(start, kInt32Max);
  EXPECT_EQ(buffer, Filled(20));
}

TEST(SetZelTranspPin, WantsDigits) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  using namespace std::string_view_literals;
  for (const std::string_view pin :
       {"12345a"sv, "a12345"sv, "12 456"sv, "-12345"sv, "12345ü"sv, "12345\0"sv}) {
    EXPECT_FALSE(coding.SetZelTranspPin(buffer, start, pin)) << pin;
    ExpectFailure(coding.ErrorObject(), 9206, "SetZelTranspPin");
    EXPECT_EQ(start, 0);
  }
}

TEST(SetZelTranspPin, KeepsLeadingZeros) {
  EXPECT_EQ(Written([](auto& c, auto& b, auto& s) { return c.SetZelTranspPin(b, s, "000000"); }),
            "C3 06 30 30 30 30 30 30");
}

TEST(SetZelOperator, WritesOneToSixteenCharacters) {
  EXPECT_EQ(Written([](auto& c, auto& b, auto& s) { return c.SetZelOperator(b, s, "A"); }), "C6 01 41");
  EXPECT_EQ(Written([](auto& c, auto& b, auto& s) { return c.SetZelOperator(b, s, "abcdefghijklmnop"); }),
            "C6 10 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70");
}

TEST(SetZelOperator, RefusesALongerText) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(40);
  std::int32_t start = 2;
  EXPECT_FALSE(coding.SetZelOperator(buffer, start, "abcdefghijklmnopq"));
  ExpectError(coding.ErrorObject(), 9207, true, "SetZelOperator",
              "Die Maximallänge für dieses TAG wurde überschritten\r\n"
              "    Startposition ...: 2\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Länge ...........: 17\r\n"
              "    Maximallänge ....: 16");
  EXPECT_EQ(start, 2);
  EXPECT_EQ(buffer, Filled(40));
}

TEST(SetZelOperator, RefusesAnEmptyText) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(40);
  std::int32_t start = 2;
  EXPECT_FALSE(coding.SetZelOperator(buffer, start, ""));
  ExpectError(coding.ErrorObject(), 9207, true, "SetZelOperator",
              "Leere Zeichenfolgen sind nicht erlaubt!\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 0\r\n"
              "    Position Tag ....: 2");
  EXPECT_EQ(start, 2);
}

TEST(SetZelOperator, RefusesUmlauts) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(40);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelOperator(buffer, start, "Jürgen"));
  ExpectError(coding.ErrorObject(), 9207, true, "SetZelOperator",
              "Ungültiges Zeichen in der Zeichenfolge\r\n"
              "    Tag .............: 0xC6\r\n"
              "    Taglänge ........: 6\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"ü\" (0xFC - 252)\r\n"
              "    Zeichenposition .: 2");
  EXPECT_EQ(start, 0);
}

// Hashes

TEST(GetZelHash, Gives20And32BytesAsBase64) {
  const auto sha1 =
      ReadValue<std::string>("C7 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13",
                             [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelHash(b, s, true, r); });
  EXPECT_EQ(sha1, "AAECAwQFBgcICQoLDA0ODxAREhM=");
  const auto sha256 = ReadValue<std::string>(
      "D4 20 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F",
      [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelHash(b, s, false, r); });
  EXPECT_EQ(sha256, "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8=");
}

TEST(GetZelHash, RefusesLengthsBetween20And32) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result;
  EXPECT_FALSE(coding.GetZelHash(Record(0xC7, 21), start, true, result));
  ExpectError(coding.ErrorObject(), 9207, true, "GetZelHash",
              "Die Länge der Hash-Daten stimmt nicht!\r\n"
              "Der Hash muß eine Länge von 20 oder 32 Byte aufweisen!\r\n"
              "    Länge Hash .......: 21");
  EXPECT_EQ(start, 0);
  EXPECT_FALSE(coding.GetZelHash(Record(0xC7, 31), start, true, result));
  ExpectError(coding.ErrorObject(), 9207, true, "GetZelHash",
              "Die Länge der Hash-Daten stimmt nicht!\r\n"
              "Der Hash muß eine Länge von 20 oder 32 Byte aufweisen!\r\n"
              "    Länge Hash .......: 31");
  EXPECT_EQ(start, 0);
}

TEST(GetZelHash, TheOtherHashIsAnotherTag) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  std::string result;
  EXPECT_FALSE(coding.GetZelHash(Record(0xC7, 20), start, false, result));
  ExpectError(coding.ErrorObject(), 9207, true, "GetZelHash",
              "Es wurde nicht das erwartete Tag gefunden\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag erwartet ....: 0xD4 // 212\r\n"
              "    Tag gefunden ....: 0xC7 // 199");
}

TEST(SetZelHash, Writes32Bytes) {
  EXPECT_EQ(Written([](auto& c, auto& b, auto& s) { return c.SetZelHash(b, s, true, Filled(32, 0xAB)); }),
            "C7 20 AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB "
            "AB AB");
}

TEST(SetZelHash, RefusesOtherLengths) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(200);
  std::int32_t start = 0;
  for (const int length : {0, 1, 19, 21, 31, 33, 64}) {
    EXPECT_FALSE(coding.SetZelHash(buffer, start, true, Filled(length)));
    ExpectError(coding.ErrorObject(), 9207, true, "SetZelHash",
                "Die Länge der Hash-Daten stimmt nicht!\r\n"
                "Der Hash muß eine Länge von 20 oder 32 Byte aufweisen!\r\n"
                "    Länge Hash .......: " +
                    std::to_string(length));
    EXPECT_EQ(start, 0);
  }
  EXPECT_EQ(buffer, Filled(200));
}

TEST(SetZelHash, OtherLowerBoundsThanZeroAreRefused) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(200);
  std::int32_t start = 0;
  // Up to index 19 the value has 20 bytes, of which the first is missing.
  EXPECT_FALSE(coding.SetZelHash(buffer, start, true, ByteArray::WithBounds(1, 19)));
  EXPECT_TRUE(coding.HasError());
  EXPECT_FALSE(coding.SetZelHash(buffer, start, true, ByteArray::WithBounds(1, 20)));
  EXPECT_TRUE(coding.HasError());
  EXPECT_FALSE(coding.SetZelHash(buffer, start, true, ByteArray::WithBounds(-1, 18)));
  EXPECT_TRUE(coding.HasError());
  EXPECT_FALSE(coding.SetZelHash(buffer, start, true, ByteArray::WithBounds(-1, 19)));
  EXPECT_TRUE(coding.HasError());
  EXPECT_EQ(start, 0);
}

TEST(SetZelHash2, RefusesWhatIsNotBase64) {
  clsZelBaseCoding coding;
  test::TestLog log;
  coding.LogHandler(log.Handler());
  ByteArray buffer = Filled(200);
  std::int32_t start = 0;
  const std::vector<const char*> texts = {"", "AAE", "????", "AAECAwQFBgcICQoLDA0ODxAREh-="};
  for (const char* text : texts) {
    EXPECT_FALSE(coding.SetZelHash2(buffer, start, true, text)) << text;
    ExpectError(coding.ErrorObject(), 9000, true, "SetZelHash2",
                "Der übergebene Zeichenfolge konnte nicht als Hash\r\n"
                "geschreiben werden da eine Konvertierung aus Base64\r\n"
                "fehlschlug!");
    EXPECT_EQ(start, 0);
  }
  EXPECT_EQ(buffer, Filled(200));
  const std::vector<std::string> functions = log.Functions();
  EXPECT_EQ(std::count(functions.begin(), functions.end(), "SetZelHash2"), 4);
}

TEST(SetZelHash2, TheHelperThatFailsLogsToTheSameFile) {
  clsZelBaseCoding coding;
  test::TestLog log;
  coding.LogHandler(log.Handler());
  ByteArray buffer = Filled(200);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelHash2(buffer, start, true, "AAE"));
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"FromBase64String", "SetZelHash2"}));
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9104", "9000"}));
}

TEST(SetZelHash2, RefusesOtherLengthsUnderItsOwnName) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(200);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelHash2(buffer, start, true, "AAEC"));
  ExpectError(coding.ErrorObject(), 9207, true, "SetZelHash2",
              "Die Länge der Hash-Daten stimmt nicht!\r\n"
              "Der Hash muß eine Länge von 20 oder 32 Byte aufweisen!\r\n"
              "    Länge Hash .......: 3");
}

// Currency and country codes

std::int32_t CurrencyCodeOf(std::string_view record) {
  return ReadValue<std::int32_t>(
      record, [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelCurrencyCode(b, s, r); });
}

TEST(ZelCurrencyCode, IsABigEndianInteger) {
  EXPECT_EQ(CurrencyCodeOf("C8 02 03 D2"), 978);
  EXPECT_EQ(CurrencyCodeOf("C8 01 08"), 8);
  EXPECT_EQ(CurrencyCodeOf("C8 04 00 00 03 D2"), 978);
  EXPECT_EQ(CurrencyCodeOf("C8 04 7F FF FF FF"), 2147483647);
}

TEST(ZelCurrencyCode, OfMoreThanFourBytesTheFirstFourCount) {
  EXPECT_EQ(CurrencyCodeOf("C8 06 00 00 03 D2 AA BB"), 978);
}

TEST(ZelCurrencyCode, IsWrittenAsACounter) {
  EXPECT_EQ(Written([](auto& c, auto& b, auto& s) { return c.SetZelCurrencyCode(b, s, 0); }), "C8 01 00");
  EXPECT_EQ(Written([](auto& c, auto& b, auto& s) { return c.SetZelCurrencyCode(b, s, 255); }), "C8 01 FF");
  EXPECT_EQ(Written([](auto& c, auto& b, auto& s) { return c.SetZelCurrencyCode(b, s, 756); }),
            "C8 02 02 F4");
  EXPECT_EQ(Written([](auto& c, auto& b, auto& s) { return c.SetZelCurrencyCode(b, s, kInt32Max); }),
            "C8 04 7F FF FF FF");
}

TEST(ZelCountryCode, IsABigEndianInteger) {
  const auto codeOf = [](std::string_view record) {
    return ReadValue<std::int32_t>(
        record, [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelCountryCode(b, s, r); });
  };
  EXPECT_EQ(codeOf("D5 02 01 14"), 276);
  EXPECT_EQ(codeOf("D5 01 28"), 40);
  EXPECT_EQ(codeOf("D5 05 00 00 01 14 FF"), 276);
}

TEST(ZelCodes, AnEmptyValueIsAFault) {
  clsZelBaseCoding coding;
  test::TestLog log;
  coding.LogHandler(log.Handler());
  std::int32_t start = 0;
  std::int32_t result = 77;
  EXPECT_FALSE(coding.GetZelCurrencyCode(FromHex("C8 00"), start, result));
  ExpectFault(coding.ErrorObject(), 9, "GetZelCurrencyCode");
  EXPECT_EQ(start, 0);
  EXPECT_FALSE(coding.GetZelCountryCode(FromHex("D5 00"), start, result));
  ExpectFault(coding.ErrorObject(), 9, "GetZelCountryCode");
  EXPECT_EQ(start, 0);
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"GetZelCurrencyCode", "GetZelCountryCode"}));
}

// Counters

Currency CounterOf(std::string_view record) {
  return ReadValue<Currency>(record, [](auto& c, auto& b, auto& s, auto& r) {
    return c.GetZelCounter(b, s, ZelTags::Seq_Nr_Trans, r);
  });
}

std::string WrittenCounter(Currency value) {
  return Written(
      [&](auto& c, auto& b, auto& s) { return c.SetZelCounter(b, s, ZelTags::Seq_Nr_Trans, value); });
}

TEST(ZelCounter, ReadsBigEndianAndUnsigned) {
  EXPECT_EQ(CounterOf("CB 01 00"), Currency(0));
  EXPECT_EQ(CounterOf("CB 01 FF"), Currency(255));
  EXPECT_EQ(CounterOf("CB 02 01 00"), Currency(256));
  EXPECT_EQ(CounterOf("CB 03 01 00 00"), Currency(65536));
  EXPECT_EQ(CounterOf("CB 04 7F FF FF FF"), Currency(2147483647));
  EXPECT_EQ(CounterOf("CB 04 80 00 00 00"), Currency(2147483648));
  EXPECT_EQ(CounterOf("CB 04 FF FF FF FF"), Currency(4294967295));
}

TEST(ZelCounter, WritesWhatCurrencyToLongMakesOfIt) {
  EXPECT_EQ(WrittenCounter(Currency::FromScaled(25000)), "CB 01 02");
  EXPECT_EQ(WrittenCounter(Currency::FromScaled(35000)), "CB 01 04");
  EXPECT_EQ(WrittenCounter(Currency(4294967296)), "CB 01 00");
  EXPECT_EQ(WrittenCounter(Currency(6442450943)), "CB 04 7F FF FF FF");
}

TEST(ZelCounter, OfMoreThanFourBytesTheFirstFourCount) {
  EXPECT_EQ(CounterOf("CB 05 01 02 03 04 05"), Currency(16909060));
  EXPECT_EQ(CounterOf("CB 08 00 00 00 01 FF FF FF FF"), Currency(1));
}

TEST(ZelCounter, AnEmptyValueIsAFault) {
  clsZelBaseCoding coding;
  test::TestLog log;
  coding.LogHandler(log.Handler());
  std::int32_t start = 0;
  Currency result = 77;
  EXPECT_FALSE(coding.GetZelCounter(FromHex("CB 00"), start, ZelTags::Seq_Nr_Trans, result));
  ExpectFault(coding.ErrorObject(), 9, "GetZelCounter");
  EXPECT_EQ(start, 0);
  // Bytes of the next record are no part of it.
  EXPECT_FALSE(coding.GetZelCounter(FromHex("CB 00 CB 01 07"), start, ZelTags::Seq_Nr_Trans, result));
  ExpectFault(coding.ErrorObject(), 9, "GetZelCounter");
  EXPECT_EQ(start, 0);
  EXPECT_FALSE(coding.GetZelCounterSpc01(FromHex("CC 00"), start, ZelRqstCounter::Seq_Nr_Reprt, result));
  ExpectFault(coding.ErrorObject(), 9, "GetZelCounterSpc01");
  EXPECT_EQ(log.Functions(),
            (std::vector<std::string>{"GetZelCounter", "GetZelCounter", "GetZelCounterSpc01"}));
}

TEST(ZelCounter, WritesBigEndianWithoutLeadingZeroBytes) {
  EXPECT_EQ(WrittenCounter(0), "CB 01 00");
  EXPECT_EQ(WrittenCounter(1), "CB 01 01");
  EXPECT_EQ(WrittenCounter(255), "CB 01 FF");
  EXPECT_EQ(WrittenCounter(256), "CB 02 01 00");
  EXPECT_EQ(WrittenCounter(65535), "CB 02 FF FF");
  EXPECT_EQ(WrittenCounter(16777216), "CB 04 01 00 00 00");
  EXPECT_EQ(WrittenCounter(2147483647), "CB 04 7F FF FF FF");
  EXPECT_EQ(WrittenCounter(2147483648), "CB 04 80 00 00 00");
  EXPECT_EQ(WrittenCounter(4294967295), "CB 04 FF FF FF FF");
}

TEST(ZelCounter, RoundsFractionsHalfToEven) {
  EXPECT_EQ(WrittenCounter(Currency::FromScaled(25000)), "CB 01 02");
  EXPECT_EQ(WrittenCounter(Currency::FromScaled(35000)), "CB 01 04");
  EXPECT_EQ(WrittenCounter(Currency::FromScaled(24999)), "CB 01 02");
  EXPECT_EQ(WrittenCounter(Currency::FromScaled(25001)), "CB 01 03");
}

TEST(ZelCounter, NegativeValuesAreTheirTwosComplement) {
  EXPECT_EQ(WrittenCounter(-1), "CB 04 FF FF FF FF");
  EXPECT_EQ(WrittenCounter(std::numeric_limits<std::int32_t>::min()), "CB 04 80 00 00 00");
}

TEST(ZelCounter, ValuesOutsideTheRangeAreAFault) {
  for (const std::int64_t value : {std::int64_t{6442450944}, std::int64_t{-2147483649},
                                   std::int64_t{900000000000000}, std::int64_t{-900000000000000}}) {
    clsZelBaseCoding coding;
    ByteArray buffer = Filled(20);
    std::int32_t start = 0;
    EXPECT_FALSE(coding.SetZelCounter(buffer, start, ZelTags::Seq_Nr_Trans, value)) << value;
    ExpectFault(coding.ErrorObject(), 6, "SetZelCounter");
    EXPECT_EQ(start, 0);
    EXPECT_EQ(buffer, Filled(20));
  }
}

TEST(ZelCounter, TakesAnyTag) {
  EXPECT_EQ(Written([](auto& c, auto& b, auto& s) { return c.SetZelCounter(b, s, ZelTags{0x01}, 5); }),
            "01 01 05");
  EXPECT_EQ(ReadValue<Currency>("FF 01 05", [](auto& c, auto& b, auto& s,
                                               auto& r) { return c.GetZelCounter(b, s, ZelTags{0xFF}, r); }),
            Currency(5));
}

TEST(GetZelCounterSpc01, ReadsEveryCounterTag) {
  const auto counterOf = [](std::string_view record, ZelRqstCounter tag) {
    return ReadValue<Currency>(
        record, [tag](auto& c, auto& b, auto& s, auto& r) { return c.GetZelCounterSpc01(b, s, tag, r); });
  };
  EXPECT_EQ(counterOf("CB 01 01", ZelRqstCounter::Seq_Nr_Trans), Currency(1));
  EXPECT_EQ(counterOf("CC 01 02", ZelRqstCounter::Seq_Nr_Reprt), Currency(2));
  EXPECT_EQ(counterOf("D2 01 03", ZelRqstCounter::Seq_No_Trans_First), Currency(3));
  EXPECT_EQ(counterOf("D3 01 04", ZelRqstCounter::Seq_No_Trans_Last), Currency(4));
  EXPECT_EQ(counterOf("DC 01 05", ZelRqstCounter::Trnvr_Counter), Currency(5));
}

TEST(GetZelTpIDNr, ReadsOneToFourBytes) {
  const auto numberOf = [](std::string_view record) {
    return ReadValue<Currency>(record,
                               [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelTpIDNr(b, s, r); });
  };
  EXPECT_EQ(numberOf("C5 01 07"), Currency(7));
  EXPECT_EQ(numberOf("C5 04 FF FF FF FF"), Currency(4294967295));
}

// Amounts

Currency AmountOf(std::string_view record, bool longVal = false) {
  return ReadValue<Currency>(record, [longVal](auto& c, auto& b, auto& s, auto& r) {
    return c.GetZelAmounts(b, s, ZelTags::Trnvr, r, longVal);
  });
}

std::string WrittenAmount(std::int64_t scaled, bool longVal = false) {
  return Written([&](auto& c, auto& b, auto& s) {
    return c.SetZelAmounts(b, s, ZelTags::Trnvr, Currency::FromScaled(scaled), longVal);
  });
}

TEST(ZelAmounts, WritesCentsWithSign) {
  EXPECT_EQ(WrittenAmount(123400), "D8 03 01 23 4C");
  EXPECT_EQ(WrittenAmount(-5000), "D8 02 05 0D");
  EXPECT_EQ(WrittenAmount(100), "D8 01 1C");
  EXPECT_EQ(WrittenAmount(-100), "D8 01 1D");
  EXPECT_EQ(WrittenAmount(1000000), "D8 03 10 00 0C");
}

TEST(ZelAmounts, ReadsThemBack) {
  EXPECT_EQ(AmountOf("D8 03 01 23 4C"), Currency::FromScaled(123400));
  EXPECT_EQ(AmountOf("D8 02 05 0D"), Currency::FromScaled(-5000));
  EXPECT_EQ(AmountOf("D8 01 1C"), Currency::FromScaled(100));
  EXPECT_EQ(AmountOf("D8 01 0C"), Currency(0));
  EXPECT_EQ(AmountOf("D8 06 00 00 00 00 01 2D"), Currency::FromScaled(-1200));
}

TEST(ZelAmounts, RoundsFractionsOfCentsHalfAwayFromZero) {
  EXPECT_EQ(WrittenAmount(50), "D8 01 1C");
  EXPECT_EQ(WrittenAmount(-50), "D8 01 1D");
  EXPECT_EQ(WrittenAmount(149), "D8 01 1C");
  EXPECT_EQ(WrittenAmount(150), "D8 01 2C");
  EXPECT_EQ(WrittenAmount(250), "D8 01 3C");
  EXPECT_EQ(WrittenAmount(-250), "D8 01 3D");
  EXPECT_EQ(WrittenAmount(123450), "D8 03 01 23 5C");
  EXPECT_EQ(WrittenAmount(123449), "D8 03 01 23 4C");
  EXPECT_EQ(WrittenAmount(10050), "D8 02 10 1C");
}

TEST(ZelAmounts, AmountsOfNoCentsFail) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  for (const std::int64_t scaled : {0, 1, 49}) {
    EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr, Currency::FromScaled(scaled)));
    ExpectError(coding.ErrorObject(), 9207, true, "SetZelAmounts",
                "Ungültiges BCD-Zeichenfolgenformat\r\n"
                "Die Konditionierung liefert eine\r\n"
                "Zeichenfolge ohne signifikate Daten\r\n"
                "    Zeichenfolge ....: \"C\"");
    EXPECT_EQ(start, 0);
  }
  for (const std::int64_t scaled : {-1, -49}) {
    EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr, Currency::FromScaled(scaled)));
    ExpectError(coding.ErrorObject(), 9207, true, "SetZelAmounts",
                "Ungültiges BCD-Zeichenfolgenformat\r\n"
                "Die Konditionierung liefert eine\r\n"
                "Zeichenfolge ohne signifikate Daten\r\n"
                "    Zeichenfolge ....: \"D\"");
    EXPECT_EQ(start, 0);
  }
  EXPECT_EQ(buffer, Filled(20));
}

TEST(ZelAmounts, TheBufferIsCheckedBeforeTheDigits) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(2);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr, 0));
  ExpectError(coding.ErrorObject(), 9204, true, "SetZelAmounts",
              "Der Datenpuffer ist zu klein.\r\n"
              "    Startposition ...: 0\r\n"
              "    Länge ...........: 1\r\n"
              "    Schreibende .....: 2\r\n"
              "    Obergrenze ......: 1");
}

TEST(ZelAmounts, TakesElevenDigits) {
  EXPECT_EQ(WrittenAmount(9999999999900), "D8 06 99 99 99 99 99 9C");
  EXPECT_EQ(WrittenAmount(-9999999999900), "D8 06 99 99 99 99 99 9D");
  EXPECT_EQ(WrittenAmount(9999999999949), "D8 06 99 99 99 99 99 9C");
  EXPECT_EQ(AmountOf("D8 06 99 99 99 99 99 9D"), Currency::FromScaled(-9999999999900));
}

TEST(ZelAmounts, RefusesTwelveDigitsUnlessLong) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  const Currency billion = 1000000000;
  EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr, billion));
  ExpectError(coding.ErrorObject(), 9207, true, "SetZelAmounts",
              "Die Länge der Betragsdastellung überschreitet den max. Wert!\r\n"
              "Es sind max. 11 signifikante Stellen zulässig\r\n"
              "    Länge Betrag .....: 13\r\n"
              "    kond. Betrag .....: 100000000000C");
  EXPECT_EQ(start, 0);
  EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr, -billion));
  ExpectError(coding.ErrorObject(), 9207, true, "SetZelAmounts",
              "Die Länge der Betragsdastellung überschreitet den max. Wert!\r\n"
              "Es sind max. 11 signifikante Stellen zulässig\r\n"
              "    Länge Betrag .....: 13\r\n"
              "    kond. Betrag .....: 100000000000D");
  // 999,999,999.995 has twelve digits once it is rounded.
  EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr, Currency::FromScaled(9999999999950)));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9207);
  EXPECT_EQ(buffer, Filled(20));

  EXPECT_EQ(WrittenAmount(10000000000000, true), "D8 07 01 00 00 00 00 00 0C");
  EXPECT_EQ(AmountOf("D8 07 01 00 00 00 00 00 0C", true), billion);
}

TEST(ZelAmounts, LengthIsCheckedBeforeTheBuffer) {
  clsZelBaseCoding coding;
  ByteArray buffer;
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr, 1000000000));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9207);
}

TEST(ZelAmounts, TakesAmountsUpToTheirLimits) {
  EXPECT_EQ(WrittenAmount(92233720368547700, true), "D8 08 92 23 37 20 36 85 47 7C");
  EXPECT_EQ(WrittenAmount(-92233720368547700, true), "D8 08 92 23 37 20 36 85 47 7D");
  EXPECT_EQ(AmountOf("D8 08 92 23 37 20 36 85 47 7D", true), Currency::FromScaled(-92233720368547700));
  EXPECT_EQ(AmountOf("D8 08 99 99 99 99 99 99 99 9C", true), Currency::FromScaled(99999999999999900));

  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr, Currency::FromScaled(92233720368547700)));
  ExpectError(coding.ErrorObject(), 9207, true, "SetZelAmounts",
              "Die Länge der Betragsdastellung überschreitet den max. Wert!\r\n"
              "Es sind max. 11 signifikante Stellen zulässig\r\n"
              "    Länge Betrag .....: 16\r\n"
              "    kond. Betrag .....: 922337203685477C");
}

TEST(ZelAmounts, RefusesAmountsBeyondTheirLimits) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  for (const bool longVal : {false, true}) {
    EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr, Currency::FromScaled(92233720368547701),
                                      longVal));
    ExpectError(coding.ErrorObject(), 9207, true, "SetZelAmounts",
                "Der Betrag über- oder unterschreitet die\r\n"
                "hier zulässigen Wertegrenzen!\r\n"
                "    Betrag ...........: 9.223.372.036.854,77\r\n"
                "    Min. Betrag ......: -9.223.372.036.854,77\r\n"
                "    Max. Betrag ......:  9.223.372.036.854,77");
    EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr, Currency::FromScaled(-92233720368547750),
                                      longVal));
    ExpectError(coding.ErrorObject(), 9207, true, "SetZelAmounts",
                "Der Betrag über- oder unterschreitet die\r\n"
                "hier zulässigen Wertegrenzen!\r\n"
                "    Betrag ...........: -9.223.372.036.854,78\r\n"
                "    Min. Betrag ......: -9.223.372.036.854,77\r\n"
                "    Max. Betrag ......:  9.223.372.036.854,77");
    EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr,
                                      Currency::FromScaled(std::numeric_limits<std::int64_t>::min()),
                                      longVal));
    ExpectError(coding.ErrorObject(), 9207, true, "SetZelAmounts",
                "Der Betrag über- oder unterschreitet die\r\n"
                "hier zulässigen Wertegrenzen!\r\n"
                "    Betrag ...........: -922.337.203.685.477,58\r\n"
                "    Min. Betrag ......: -9.223.372.036.854,77\r\n"
                "    Max. Betrag ......:  9.223.372.036.854,77");
    EXPECT_EQ(start, 0);
  }
}

TEST(ZelAmounts, LimitsAreCheckedBeforeTheBuffer) {
  clsZelBaseCoding coding;
  ByteArray buffer;
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelAmountsSpc01(buffer, start, ZelRqstAmounts::Trnvr,
                                         Currency::FromScaled(92233720368547701), true));
  ExpectError(coding.ErrorObject(), 9207, true, "SetZelAmountsSpc01",
              "Der Betrag über- oder unterschreitet die\r\n"
              "hier zulässigen Wertegrenzen!\r\n"
              "    Betrag ...........: 9.223.372.036.854,77\r\n"
              "    Min. Betrag ......: -9.223.372.036.854,77\r\n"
              "    Max. Betrag ......:  9.223.372.036.854,77");
}

// Decimal point and thousands comma of a host that set its own locale.
class EnglishNumbers : public std::numpunct<char> {
 protected:
  char do_decimal_point() const override { return '.'; }
  char do_thousands_sep() const override { return ','; }
};

TEST(ZelAmounts, TheMessageShowsTheAmountInTheHostsCharacters) {
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new EnglishNumbers));
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelAmounts(buffer, start, ZelTags::Trnvr, Currency::FromScaled(92233720368547801)));
  const std::string message = coding.ErrorObject().ErrorMsg();
  EXPECT_FALSE(coding.SetZelVatRate(buffer, start, 100));
  const std::string rateMessage = coding.ErrorObject().ErrorMsg();
  std::locale::global(before);
  EXPECT_EQ(message,
            "Der Betrag über- oder unterschreitet die\r\n"
            "hier zulässigen Wertegrenzen!\r\n"
            "    Betrag ...........: 9,223,372,036,854.78\r\n"
            "    Min. Betrag ......: -9.223.372.036.854,77\r\n"
            "    Max. Betrag ......:  9.223.372.036.854,77");
  EXPECT_EQ(rateMessage,
            "Die Wert außerhalb des gültigen Bereiches!\r\n"
            "    Aktueller Wert ...: 100.00\r\n"
            "    kleinster Wert ...: 0.00\r\n"
            "    größter Wert .....: 99.99");
}

TEST(ZelAmounts, RefusesBadDigits) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  Currency result;
  EXPECT_FALSE(coding.GetZelAmounts(FromHex("D8 02 1A 2C"), start, ZelTags::Trnvr, result));
  ExpectError(coding.ErrorObject(), 9208, true, "GetZelAmounts",
              "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Taglänge ........: 2\r\n"
              "    Position Tag ....: 0\r\n"
              "    Pos. Zeichenf. ..: 2\r\n"
              "    Zeichenfolge ....: 1A2C\r\n"
              "    Zeichen .........: A");
  EXPECT_EQ(start, 0);
  EXPECT_FALSE(coding.GetZelAmountsSpc01(FromHex("D8 01 0D"), start, ZelRqstAmounts::Trnvr, result));
  ExpectError(coding.ErrorObject(), 9209, true, "GetZelAmountsSpc01",
              "Das Datenformat ist ungültig (Nullwert mit \"-\"-Kennzeichen!)\r\n"
              "    Tag .............: 0xD8\r\n"
              "    Taglänge ........: 1\r\n"
              "    Position total ..: 0\r\n"
              "    Dekodierter Wert : & Result");
  EXPECT_EQ(start, 0);
}

TEST(ZelAmounts, TheTagIsCheckedBeforeTheDigits) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  Currency result;
  EXPECT_FALSE(coding.GetZelAmounts(FromHex("D9 02 1A 2C"), start, ZelTags::Trnvr, result));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9207);
}

TEST(ZelAmountsSpc01, WorksForEveryAmountTag) {
  const std::vector<std::pair<ZelRqstAmounts, std::string>> tags = {
      {ZelRqstAmounts::Trnvr_Thirdparty, "D6 02 19 9C"}, {ZelRqstAmounts::Trnvr, "D8 02 19 9C"},
      {ZelRqstAmounts::Trnvr_neg, "D9 02 19 9C"},        {ZelRqstAmounts::Trnvr_Vat, "DA 02 19 9C"},
      {ZelRqstAmounts::Item_Price1, "B1 02 19 9C"},      {ZelRqstAmounts::Item_Price2, "B2 02 19 9C"},
      {ZelRqstAmounts::Item_Price3, "B3 02 19 9C"},      {ZelRqstAmounts::Item_Price4, "B4 02 19 9C"},
      {ZelRqstAmounts::Item_Price5, "B5 02 19 9C"},      {ZelRqstAmounts::Item_Price6, "B6 02 19 9C"}};
  for (const auto& [tag, record] : tags) {
    const ZelRqstAmounts selector = tag;
    EXPECT_EQ(Written([selector](auto& c, auto& b, auto& s) {
                return c.SetZelAmountsSpc01(b, s, selector, Currency::FromScaled(19900));
              }),
              record);
    EXPECT_EQ(
        ReadValue<Currency>(record, [selector](auto& c, auto& b, auto& s,
                                               auto& r) { return c.GetZelAmountsSpc01(b, s, selector, r); }),
        Currency::FromScaled(19900));
  }
  EXPECT_EQ(Written([](auto& c, auto& b, auto& s) {
              return c.SetZelAmountsSpc01(b, s, ZelRqstAmounts::Trnvr, 1000000000, true);
            }),
            "D8 07 01 00 00 00 00 00 0C");
}

TEST(ZelAmountsSpc01, FailuresAreItsOwn) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelAmountsSpc01(buffer, start, ZelRqstAmounts::Trnvr, 1000000000));
  ExpectError(coding.ErrorObject(), 9207, true, "SetZelAmountsSpc01",
              "Die Länge der Betragsdastellung überschreitet den max. Wert!\r\n"
              "Es sind max. 11 signifikante Stellen zulässig\r\n"
              "    Länge Betrag .....: 13\r\n"
              "    kond. Betrag .....: 100000000000C");
}

// Dates

std::string DateOf(std::string_view record, ZelTags tag, std::int32_t minLen = 0) {
  return DateText(ReadValue<Date>(
      record, [=](auto& c, auto& b, auto& s, auto& r) { return c.GetZelDates(b, s, tag, r, minLen); }));
}

TEST(GetZelDates, ReadsADay) {
  EXPECT_EQ(DateOf("CD 04 20 26 12 31", ZelTags::tDate), "2026-12-31 00:00:00");
  EXPECT_EQ(DateOf("CD 04 20 24 02 29", ZelTags::tDate), "2024-02-29 00:00:00");
  EXPECT_EQ(DateOf("CD 04 19 99 01 01", ZelTags::tDate), "1999-01-01 00:00:00");
}

TEST(GetZelDates, CountsDaysFromItsEpoch) {
  // 1 January 2000 is day 36526.
  const auto date = ReadValue<Date>("CD 04 20 00 01 01", [](auto& c, auto& b, auto& s, auto& r) {
    return c.GetZelDates(b, s, ZelTags::tDate, r);
  });
  EXPECT_EQ(date.Value(), 36526.0);
}

TEST(GetZelDates, ReadsTheFirstMomentOfAMonth) {
  EXPECT_EQ(DateOf("D0 03 20 01 02", ZelTags::Month_Start), "2001-02-01 00:00:00");
  EXPECT_EQ(DateOf("D0 03 20 26 12", ZelTags::Month_Start), "2026-12-01 00:00:00");
}

TEST(GetZelDates, ReadsTheLastSecondOfAMonth) {
  EXPECT_EQ(DateOf("D1 03 20 01 02", ZelTags::Month_End), "2001-02-28 23:59:59");
  EXPECT_EQ(DateOf("D1 03 20 24 02", ZelTags::Month_End), "2024-02-29 23:59:59");
  EXPECT_EQ(DateOf("D1 03 20 26 12", ZelTags::Month_End), "2026-12-31 23:59:59");
  EXPECT_EQ(DateOf("D1 03 20 26 04", ZelTags::Month_End), "2026-04-30 23:59:59");
  const auto date = ReadValue<Date>("D1 03 20 01 02", [](auto& c, auto& b, auto& s, auto& r) {
    return c.GetZelDates(b, s, ZelTags::Month_End, r);
  });
  EXPECT_NEAR(date.Value(), 36950.0 + 86399.0 / 86400.0, 1e-9);
}

TEST(GetZelDates, MinLen3ReadsAMonthUnderOtherTags) {
  EXPECT_EQ(DateOf("CF 03 20 26 11", ZelTags::tMonth, 3), "2026-11-01 00:00:00");
  EXPECT_EQ(DateOf("CD 04 20 26 11 30", ZelTags::tDate, 3), "2026-11-01 00:00:00");
}

TEST(GetZelDates, TheDayOfAMonthHasNoInfluence) {
  EXPECT_EQ(DateOf("D0 04 20 26 11 31", ZelTags::Month_Start), "2026-11-01 00:00:00");
  EXPECT_EQ(DateOf("D1 04 20 26 11 31", ZelTags::Month_End), "2026-11-30 23:59:59");
}

TEST(GetZelDates, AMinimumLengthAboveFourIsTheGreatestToo) {
  EXPECT_EQ(DateOf("CD 05 20 26 11 30 99", ZelTags::tDate, 5), "2026-11-30 00:00:00");
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  Date result;
  EXPECT_FALSE(coding.GetZelDates(FromHex("CD 06 20 26 11 30 99 99"), start, ZelTags::tDate, result, 5));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9207);
}

TEST(GetZelDates, ADateOfTooFewBytesOrBeforeTheYear1000IsRefused) {
  clsZelBaseCoding coding;
  for (const char* record : {"CD 03 20 26 11", "CD 01 00", "CD 04 09 99 12 31"}) {
    std::int32_t start = 0;
    Date result(7.5);
    EXPECT_FALSE(coding.GetZelDates(FromHex(record), start, ZelTags::tDate, result, 1)) << record;
    test::ExpectFailure(coding.ErrorObject(), 9203, "GetZelDates");
    EXPECT_EQ(start, 0);
    EXPECT_EQ(result, Date(7.5));
  }
}

TEST(GetZelDates, AGivenMinimumLengthReplacesTheUsualOne) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  Date result;
  EXPECT_FALSE(coding.GetZelDates(FromHex("D0 03 20 26 11"), start, ZelTags::Month_Start, result, 4));
  ExpectError(coding.ErrorObject(), 9207, true, "GetZelDates",
              "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0xD0\r\n"
              "    Länge ...........: 3\r\n"
              "    Mindestlänge ....: 4");
  EXPECT_FALSE(coding.GetZelDates(FromHex("CD 02 20 26"), start, ZelTags::tDate, result, 3));
  ExpectError(coding.ErrorObject(), 9207, true, "GetZelDates",
              "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0xCD\r\n"
              "    Länge ...........: 2\r\n"
              "    Mindestlänge ....: 3");
  EXPECT_FALSE(coding.GetZelDates(FromHex("CD 03 20 26 11"), start, ZelTags::tDate, result, -1));
  ExpectError(coding.ErrorObject(), 9207, true, "GetZelDates",
              "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
              "    Startposition ...: 0\r\n"
              "    Tag .............: 0xCD\r\n"
              "    Länge ...........: 3\r\n"
              "    Mindestlänge ....: 4");
  EXPECT_EQ(start, 0);
}

TEST(GetZelDates, RefusesDatesThatDoNotExist) {
  const std::vector<std::pair<std::string, ZelTags>> records = {
      {"CD 04 20 26 13 01", ZelTags::tDate},    {"CD 04 20 26 00 01", ZelTags::tDate},
      {"CD 04 20 26 02 31", ZelTags::tDate},    {"CD 04 20 23 02 29", ZelTags::tDate},
      {"CD 04 21 00 02 29", ZelTags::tDate},    {"CD 04 20 26 04 31", ZelTags::tDate},
      {"CD 04 20 26 01 00", ZelTags::tDate},    {"CD 04 20 26 01 32", ZelTags::tDate},
      {"CD 04 99 99 99 99", ZelTags::tDate},    {"CD 04 00 00 00 00", ZelTags::tDate},
      {"CD 04 00 00 01 01", ZelTags::tDate},    {"D0 03 20 26 13", ZelTags::Month_Start},
      {"D0 03 20 26 00", ZelTags::Month_Start}, {"D0 03 00 00 00", ZelTags::Month_Start},
      {"D1 03 20 26 13", ZelTags::Month_End},   {"D1 03 20 26 00", ZelTags::Month_End},
      {"D1 03 00 00 00", ZelTags::Month_End},   {"D1 03 99 99 99", ZelTags::Month_End}};
  for (const auto& [record, tag] : records) {
    const testing::ScopedTrace trace(__FILE__, __LINE__, record);
    clsZelBaseCoding coding;
    test::TestLog log;
    coding.LogHandler(log.Handler());
    std::int32_t start = 0;
    Date result(77.0);
    EXPECT_FALSE(coding.GetZelDates(FromHex(record), start, tag, result));
    ExpectFailure(coding.ErrorObject(), 9203, "GetZelDates");
    EXPECT_EQ(start, 0);
    EXPECT_EQ(log.Functions(), std::vector<std::string>{"GetZelDates"});
  }
}

TEST(GetZelDates, TheLastMonthOfAllEndsOrIsRefused) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  Date result;
  if (coding.GetZelDates(FromHex("D1 03 99 99 12"), start, ZelTags::Month_End, result)) {
    EXPECT_EQ(DateText(result), "9999-12-31 23:59:59");
    EXPECT_EQ(start, 5);
  } else {
    EXPECT_EQ(start, 0);
    EXPECT_TRUE(coding.HasError());
  }
}

TEST(GetZelDates, RefusesBadDigits) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  Date result;
  EXPECT_FALSE(coding.GetZelDates(FromHex("CD 04 20 26 1A 01"), start, ZelTags::tDate, result));
  ExpectError(coding.ErrorObject(), 9208, true, "GetZelDates",
              "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
              "    Tag .............: 0xCD\r\n"
              "    Taglänge ........: 4\r\n"
              "    Position Tag ....: 0\r\n"
              "    Pos. Zeichenf. ..: 6\r\n"
              "    Zeichenfolge ....: 20261A01\r\n"
              "    Zeichen .........: A");
  EXPECT_EQ(start, 0);
}

std::string WrittenDate(ZelTags tag, Date date) {
  return Written([&](auto& c, auto& b, auto& s) { return c.SetZelDates(b, s, tag, date); });
}

TEST(SetZelDates, WritesDaysAndMonths) {
  // Day 46387 is 31 December 2026.
  EXPECT_EQ(WrittenDate(ZelTags::tDate, Date(46387.0)), "CD 04 20 26 12 31");
  EXPECT_EQ(WrittenDate(ZelTags::tDate, Date(46387.999)), "CD 04 20 26 12 31");
  EXPECT_EQ(WrittenDate(ZelTags::tMonth, Date(46387.0)), "CF 04 20 26 12 31");
  EXPECT_EQ(WrittenDate(ZelTags::Month_Start, Date(46387.0)), "D0 03 20 26 12");
  EXPECT_EQ(WrittenDate(ZelTags::Month_End, Date(46387.0)), "D1 03 20 26 12");
  EXPECT_EQ(WrittenDate(ZelTags::tDate, Date(36526.0)), "CD 04 20 00 01 01");
}

TEST(SetZelDates, RoundsToSeconds) {
  // Less than half a second before midnight.
  EXPECT_EQ(WrittenDate(ZelTags::tDate, Date(46387.999999)), "CD 04 20 27 01 01");
  EXPECT_EQ(WrittenDate(ZelTags::Month_End, Date(46387.999999)), "D1 03 20 27 01");
}

TEST(SetZelDates, WritesYearsOfThreeDigitsWithAZero) {
  EXPECT_EQ(WrittenDate(ZelTags::tDate, Date::FromCivil(999, 3, 15)), "CD 04 09 99 03 15");
  EXPECT_EQ(WrittenDate(ZelTags::tDate, Date::FromCivil(100, 1, 1)), "CD 04 01 00 01 01");
  EXPECT_EQ(WrittenDate(ZelTags::Month_Start, Date::FromCivil(999, 12, 31)), "D0 03 09 99 12");
  EXPECT_EQ(WrittenDate(ZelTags::Month_End, Date::FromCivil(100, 1, 31)), "D1 03 01 00 01");
}

TEST(SetZelDates, ADateOutsideTheCalendarIsAFault) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  for (const double value :
       {1e9, -1e9, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_FALSE(coding.SetZelDates(buffer, start, ZelTags::tDate, Date(value)));
    EXPECT_TRUE(coding.HasError());
    EXPECT_EQ(coding.ErrorObject().ErrorFunction(), "SetZelDates");
    EXPECT_FALSE(coding.ErrorObject().IsUserDef());
    EXPECT_FALSE(coding.SetZelTimes(buffer, start, ZelTags::tTime, Date(value)));
    EXPECT_TRUE(coding.HasError());
    EXPECT_EQ(start, 0);
  }
}

TEST(ZelDatesSpc01, WorksForEveryDateTag) {
  const auto dateOf = [](std::string_view record, ZelRqstDates tag, std::int32_t minLen = 0) {
    return DateText(ReadValue<Date>(record, [=](auto& c, auto& b, auto& s, auto& r) {
      return c.GetZelDatesSpc01(b, s, tag, r, minLen);
    }));
  };
  EXPECT_EQ(dateOf("CD 04 20 26 12 31", ZelRqstDates::tDate), "2026-12-31 00:00:00");
  EXPECT_EQ(dateOf("CD 03 20 26 12", ZelRqstDates::tDate, 3), "2026-12-01 00:00:00");
  EXPECT_EQ(dateOf("D0 03 20 26 12", ZelRqstDates::Month_Start), "2026-12-01 00:00:00");
  EXPECT_EQ(dateOf("D1 03 20 26 12", ZelRqstDates::Month_End), "2026-12-31 23:59:59");
  const auto written = [](ZelRqstDates tag) {
    return Written([tag](auto& c, auto& b, auto& s) { return c.SetZelDatesSpc01(b, s, tag, Date(46387.0)); });
  };
  EXPECT_EQ(written(ZelRqstDates::tDate), "CD 04 20 26 12 31");
  EXPECT_EQ(written(ZelRqstDates::Month_Start), "D0 03 20 26 12");
  EXPECT_EQ(written(ZelRqstDates::Month_End), "D1 03 20 26 12");
}

TEST(ZelDatesSpc01, FailuresAreItsOwn) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  Date result;
  EXPECT_FALSE(coding.GetZelDatesSpc01(FromHex("CD 04 20 26 13 01"), start, ZelRqstDates::tDate, result));
  ExpectFailure(coding.ErrorObject(), 9203, "GetZelDatesSpc01");
  EXPECT_EQ(start, 0);
}

// Times

std::string TimeOf(std::string_view record) {
  const auto time = ReadValue<Date>(
      record, [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelTimes(b, s, ZelTags::tTime, r); });
  EXPECT_GE(time.Value(), 0.0) << "a time of day without a date";
  EXPECT_LT(time.Value(), 1.0) << "a time of day without a date";
  return DateText(time).substr(11);
}

TEST(ZelTimes, ReadsHourAndMinute) {
  EXPECT_EQ(TimeOf("CE 02 09 05"), "09:05:00");
  EXPECT_EQ(TimeOf("CE 02 23 59"), "23:59:00");
  EXPECT_EQ(TimeOf("CE 02 00 00"), "00:00:00");
  EXPECT_EQ(TimeOf("CE 02 12 34"), "12:34:00");
  EXPECT_EQ(TimeOf("CE 02 00 07"), "00:07:00");
}

TEST(ZelTimes, ReadsASingleByteAsMinutes) {
  EXPECT_EQ(TimeOf("CE 01 05"), "00:05:00");
  EXPECT_EQ(TimeOf("CE 01 59"), "00:59:00");
  EXPECT_EQ(TimeOf("CE 01 00"), "00:00:00");
}

TEST(ZelTimes, IsAFractionOfADay) {
  const auto time = ReadValue<Date>("CE 02 18 00", [](auto& c, auto& b, auto& s, auto& r) {
    return c.GetZelTimes(b, s, ZelTags::tTime, r);
  });
  EXPECT_EQ(time.Value(), 0.75);
}

TEST(ZelTimes, RefusesTimesThatDoNotExist) {
  for (const char* record : {"CE 02 25 61", "CE 02 24 00", "CE 02 23 60", "CE 01 60", "CE 02 99 99"}) {
    const testing::ScopedTrace trace(__FILE__, __LINE__, record);
    clsZelBaseCoding coding;
    std::int32_t start = 0;
    Date result;
    EXPECT_FALSE(coding.GetZelTimes(FromHex(record), start, ZelTags::tTime, result));
    ExpectFailure(coding.ErrorObject(), 9203, "GetZelTimes");
    EXPECT_EQ(start, 0);
  }
}

TEST(ZelTimes, RefusesBadDigits) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  Date result;
  EXPECT_FALSE(coding.GetZelTimes(FromHex("CE 02 0B 05"), start, ZelTags::tTime, result));
  ExpectError(coding.ErrorObject(), 9208, true, "GetZelTimes",
              "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
              "    Tag .............: 0xCE\r\n"
              "    Taglänge ........: 2\r\n"
              "    Position Tag ....: 0\r\n"
              "    Pos. Zeichenf. ..: 2\r\n"
              "    Zeichenfolge ....: 0B05\r\n"
              "    Zeichen .........: B");
}

TEST(ZelTimes, WritesTwoBytesAlways) {
  const auto written = [](Date date) {
    return Written([date](auto& c, auto& b, auto& s) { return c.SetZelTimes(b, s, ZelTags::tTime, date); });
  };
  EXPECT_EQ(written(Date(46387.0)), "CE 02 00 00");
  EXPECT_EQ(written(Date(0.75)), "CE 02 18 00");
  EXPECT_EQ(written(Date::FromCivil(2026, 12, 31, 0, 7)), "CE 02 00 07");
  EXPECT_EQ(written(Date::FromCivil(2026, 12, 31, 23, 59, 59)), "CE 02 23 59");
}

// Whole numbers

Currency ValueOf(std::string_view record) {
  return ReadValue<Currency>(record, [](auto& c, auto& b, auto& s, auto& r) {
    return c.GetZelValsPos(b, s, ZelTags::Trnvr_Counter, r);
  });
}

std::string WrittenValue(std::int64_t scaled) {
  return Written([&](auto& c, auto& b, auto& s) {
    return c.SetZelValsPos(b, s, ZelTags::Trnvr_Counter, Currency::FromScaled(scaled));
  });
}

TEST(SetZelHash, AnArrayThatDoesNotBeginWithIndex0IsRefusedOnceThereIsRoom) {
  constexpr std::string_view hash = "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13";
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  const auto refuse = [&](std::int32_t lower, std::int32_t room, int number, bool isUserDefined) {
    ByteArray buffer = Filled(room);
    EXPECT_FALSE(coding.SetZelHash(buffer, start, true, test::FromHexAt(lower, hash)));
    EXPECT_EQ(coding.ErrorObject().ErrorNr(), number);
    EXPECT_EQ(coding.ErrorObject().IsUserDef(), isUserDefined);
    EXPECT_EQ(coding.ErrorObject().ErrorFunction(), "SetZelHash");
    EXPECT_EQ(buffer, Filled(room));
    EXPECT_EQ(start, 0);
  };
  refuse(-3, 21, 9204, true);
  refuse(-3, 22, 9202, true);
  refuse(3, 24, 9204, true);
  refuse(3, 25, 9, false);
}

TEST(ZelValsPos, ReadsDigits) {
  EXPECT_EQ(ValueOf("DC 02 01 23"), Currency(123));
  EXPECT_EQ(ValueOf("DC 01 00"), Currency(0));
  EXPECT_EQ(ValueOf("DC 06 09 99 99 99 99 99"), Currency(99999999999));
  EXPECT_EQ(ValueOf("DC 06 00 00 00 00 00 01"), Currency(1));
}

TEST(ZelValsPos, RefusesBadDigits) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  Currency result;
  EXPECT_FALSE(coding.GetZelValsPos(FromHex("DC 01 1C"), start, ZelTags::Trnvr_Counter, result));
  ExpectError(coding.ErrorObject(), 9208, true, "GetZelValsPos",
              "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
              "    Tag .............: 0xDC\r\n"
              "    Taglänge ........: 1\r\n"
              "    Position Tag ....: 0\r\n"
              "    Pos. Zeichenf. ..: 2\r\n"
              "    Zeichenfolge ....: 1C\r\n"
              "    Zeichen .........: C");
  EXPECT_EQ(start, 0);
}

TEST(ZelValsPos, WritesWholeNumbersRoundedHalfAwayFromZero) {
  EXPECT_EQ(WrittenValue(1230000), "DC 02 01 23");
  EXPECT_EQ(WrittenValue(0), "DC 01 00");
  EXPECT_EQ(WrittenValue(4999), "DC 01 00");
  EXPECT_EQ(WrittenValue(5000), "DC 01 01");
  EXPECT_EQ(WrittenValue(25000), "DC 01 03");
  EXPECT_EQ(WrittenValue(99 * 10000), "DC 01 99");
  EXPECT_EQ(WrittenValue(100 * 10000), "DC 02 01 00");
}

TEST(ZelValsPos, TakesElevenDigitsAndRefusesTwelve) {
  EXPECT_EQ(WrittenValue(999999999990000), "DC 06 09 99 99 99 99 99");
  EXPECT_EQ(WrittenValue(999999999994999), "DC 06 09 99 99 99 99 99");
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  for (const std::int64_t scaled : {1000000000000000, 999999999995000}) {
    EXPECT_FALSE(coding.SetZelValsPos(buffer, start, ZelTags::Trnvr_Counter, Currency::FromScaled(scaled)));
    ExpectError(coding.ErrorObject(), 9204, true, "SetZelValsPos",
                "Die Länge der Betragsdastellung überschreitet den max. Wert!\r\n"
                "Es sind max. 11 signifikante Stellen zulässig\r\n"
                "    Länge Betrag .....: 12\r\n"
                "    kond. Betrag .....: 100000000000");
    EXPECT_EQ(start, 0);
  }
  EXPECT_EQ(buffer, Filled(20));
}

TEST(ZelValsPos, LengthIsCheckedBeforeTheBuffer) {
  clsZelBaseCoding coding;
  ByteArray buffer = ByteArray::WithBounds(-1, 1);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelValsPos(buffer, start, ZelTags::Trnvr_Counter, 100000000000));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9204);
}

TEST(ZelValsPos, RefusesNegativeNumbersAsDigits) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelValsPos(buffer, start, ZelTags::Trnvr_Counter, -5));
  ExpectError(coding.ErrorObject(), 9208, true, "SetZelValsPos",
              "Ungültiges Zeichen in der BCD-Zeichenfolge\r\n"
              "    Tag .............: 0xDC\r\n"
              "    Position Tag ....: 0\r\n"
              "    Zeichen .........: \"-\" (0x2D - 45)\r\n"
              "    Zeichenposition .: 1");
  EXPECT_EQ(start, 0);
}

TEST(ZelValsPos, RoomIsCheckedBeforeTheDigits) {
  clsZelBaseCoding coding;
  const auto refuse = [&coding](ByteArray buffer, std::int32_t at, std::int64_t value, int number,
                                std::string_view message) {
    const ByteArray before = buffer;
    std::int32_t start = at;
    EXPECT_FALSE(coding.SetZelValsPos(buffer, start, ZelTags::Trnvr_Counter, value));
    ExpectError(coding.ErrorObject(), number, true, "SetZelValsPos", message);
    EXPECT_EQ(start, at);
    EXPECT_EQ(buffer, before);
  };
  refuse({}, 0, -5, 9203,
         "Die Startposition ist ungültig\r\n"
         "    Startposition ...: 0\r\n"
         "    Untergrenze .....: 0\r\n"
         "    Obergrenze ......: -1");
  refuse(ByteArray::WithBounds(-1, 2), 0, -5, 9202,
         "Die Untergrenze des Datenfeldes ist nicht \"0\"\r\n"
         "Untergrenze: -1");
  refuse(Filled(4), 3, -5, 9205,
         "Die Startposition ist ungültig, es kann keine Längenangabe folgen\r\n"
         "    Startposition ...: 3\r\n"
         "    Obergrenze ......: 3");
  refuse(Filled(2), 0, -5, 9204,
         "Der Datenpuffer ist zu klein.\r\n"
         "    Startposition ...: 0\r\n"
         "    Länge ...........: 1\r\n"
         "    Schreibende .....: 2\r\n"
         "    Obergrenze ......: 1");
  // The sign takes the place of a digit: three characters need two bytes.
  refuse(Filled(3), 0, -12, 9204,
         "Der Datenpuffer ist zu klein.\r\n"
         "    Startposition ...: 0\r\n"
         "    Länge ...........: 2\r\n"
         "    Schreibende .....: 3\r\n"
         "    Obergrenze ......: 2");
  refuse(Filled(3), 0, -5, 9208,
         "Ungültiges Zeichen in der BCD-Zeichenfolge\r\n"
         "    Tag .............: 0xDC\r\n"
         "    Position Tag ....: 0\r\n"
         "    Zeichen .........: \"-\" (0x2D - 45)\r\n"
         "    Zeichenposition .: 1");
  refuse({}, 0, -12345678901, 9204,
         "Die Länge der Betragsdastellung überschreitet den max. Wert!\r\n"
         "Es sind max. 11 signifikante Stellen zulässig\r\n"
         "    Länge Betrag .....: 12\r\n"
         "    kond. Betrag .....: -12345678901");
}

// VAT rates

std::string WrittenRate(std::int64_t scaled) {
  return Written(
      [&](auto& c, auto& b, auto& s) { return c.SetZelVatRate(b, s, Currency::FromScaled(scaled)); });
}

TEST(ZelVatRate, IsWrittenInHundredthsOfAPercent) {
  EXPECT_EQ(WrittenRate(190000), "DB 02 19 00");
  EXPECT_EQ(WrittenRate(70000), "DB 02 07 00");
  EXPECT_EQ(WrittenRate(55000), "DB 02 05 50");
  EXPECT_EQ(WrittenRate(0), "DB 01 00");
  EXPECT_EQ(WrittenRate(100), "DB 01 01");
  EXPECT_EQ(WrittenRate(999900), "DB 02 99 99");
  EXPECT_EQ(WrittenRate(75550), "DB 02 07 56");
  EXPECT_EQ(WrittenRate(75549), "DB 02 07 55");
}

TEST(ZelVatRate, IsReadInPercent) {
  const auto rateOf = [](std::string_view record) {
    return ReadValue<Currency>(record,
                               [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelVatRate(b, s, r); });
  };
  EXPECT_EQ(rateOf("DB 02 19 00"), Currency(19));
  EXPECT_EQ(rateOf("DB 02 05 50"), Currency::FromScaled(55000));
  EXPECT_EQ(rateOf("DB 01 00"), Currency(0));
  EXPECT_EQ(rateOf("DB 01 05"), Currency::FromScaled(500));
  EXPECT_EQ(rateOf("DB 06 00 00 00 00 07 00"), Currency(7));
}

TEST(ZelVatRate, RefusesRatesOutsideItsRange) {
  clsZelBaseCoding coding;
  ByteArray buffer = Filled(20);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelVatRate(buffer, start, 100));
  ExpectError(coding.ErrorObject(), 9203, true, "SetZelVatRate",
              "Die Wert außerhalb des gültigen Bereiches!\r\n"
              "    Aktueller Wert ...: 100,00\r\n"
              "    kleinster Wert ...: 0,00\r\n"
              "    größter Wert .....: 99,99");
  EXPECT_FALSE(coding.SetZelVatRate(buffer, start, Currency::FromScaled(999901)));
  ExpectError(coding.ErrorObject(), 9203, true, "SetZelVatRate",
              "Die Wert außerhalb des gültigen Bereiches!\r\n"
              "    Aktueller Wert ...: 99,99\r\n"
              "    kleinster Wert ...: 0,00\r\n"
              "    größter Wert .....: 99,99");
  EXPECT_FALSE(coding.SetZelVatRate(buffer, start, -1));
  ExpectError(coding.ErrorObject(), 9203, true, "SetZelVatRate",
              "Die Wert außerhalb des gültigen Bereiches!\r\n"
              "    Aktueller Wert ...: -1,00\r\n"
              "    kleinster Wert ...: 0,00\r\n"
              "    größter Wert .....: 99,99");
  EXPECT_FALSE(coding.SetZelVatRate(buffer, start, Currency::FromScaled(-1)));
  EXPECT_EQ(coding.ErrorObject().ErrorNr(), 9203);
  EXPECT_EQ(start, 0);
  EXPECT_EQ(buffer, Filled(20));
}

TEST(ZelVatRate, TheRangeIsCheckedBeforeTheBuffer) {
  clsZelBaseCoding coding;
  ByteArray buffer = ByteArray::WithBounds(-1, 1);
  std::int32_t start = 0;
  EXPECT_FALSE(coding.SetZelVatRate(buffer, start, 1000));
  ExpectError(coding.ErrorObject(), 9203, true, "SetZelVatRate",
              "Die Wert außerhalb des gültigen Bereiches!\r\n"
              "    Aktueller Wert ...: 1000,00\r\n"
              "    kleinster Wert ...: 0,00\r\n"
              "    größter Wert .....: 99,99");
}

TEST(ZelVatRate, RefusesBadDigitsUnderItsOwnName) {
  clsZelBaseCoding coding;
  std::int32_t start = 0;
  Currency result;
  EXPECT_FALSE(coding.GetZelVatRate(FromHex("DB 02 19 0A"), start, result));
  ExpectError(coding.ErrorObject(), 9208, true, "GetZelVatRate",
              "Es wurde ein ungültiger BCD-wert gefunden!\r\n"
              "    Tag .............: 0xDB\r\n"
              "    Taglänge ........: 2\r\n"
              "    Position Tag ....: 0\r\n"
              "    Pos. Zeichenf. ..: 4\r\n"
              "    Zeichenfolge ....: 190A\r\n"
              "    Zeichen .........: A");
  EXPECT_EQ(start, 0);
}

}  // namespace
}  // namespace VnZEL10cmn
