// The page about the record format: its examples are what the library writes and reads, byte by byte, and its
// table says of every tag what the library does.

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VnZEL10cmn/booking/clsZelContainer.h"
#include "VnZEL10cmn/booking/clsZelTransAct.h"
#include "VnZEL10cmn/booking/clsZelVatList.h"
#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/datarecord/clsZelTransActData.h"
#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/items/clsZelItemList.h"
#include "VnZEL10cmn/report/clsZelReport.h"
#include "tests/support/Hex.h"
#include "tests/support/TempFile.h"

namespace VnZEL10cmn {
namespace {

using test::ToHex;

// The page

std::vector<std::string> PageLines() {
  std::istringstream page(test::ReadFile(std::string(VNZEL_SOURCE_DIR) + "/docs/record-format.md"));
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(page, line)) {
    lines.push_back(line);
  }
  return lines;
}

// The bytes of a line; a remark follows them after two blanks or more.
std::string BytesOf(const std::string& line) {
  const std::size_t start = line.find_first_not_of(' ');
  if (start == std::string::npos) {
    return {};
  }
  return line.substr(start, line.find("  ", start) - start);
}

// The blocks of bytes by the name behind "hex".
std::map<std::string, ByteArray> Examples() {
  std::map<std::string, ByteArray> examples;
  std::string name;
  std::string bytes;
  for (const std::string& line : PageLines()) {
    if (line.starts_with("```hex ")) {
      name = line.substr(7);
      bytes.clear();
    } else if (line == "```" && !name.empty()) {
      EXPECT_FALSE(examples.contains(name)) << name << " stands twice on the page";
      examples[name] = test::FromHex(bytes);
      name.clear();
    } else if (!name.empty()) {
      bytes += BytesOf(line) + " ";
    }
  }
  EXPECT_EQ(name, "") << "has no end";
  return examples;
}

// The example of that name; a missing one fails the test.
ByteArray Example(const std::string& name) {
  const std::map<std::string, ByteArray> examples = Examples();
  const auto found = examples.find(name);
  if (found == examples.end() || found->second.size() == 0) {
    ADD_FAILURE() << "the page lacks the example " << name;
    return {};
  }
  return found->second;
}

TEST(RecordFormat, HasItsExamplesAndNoOthers) {
  const std::set<std::string> expected = {"binary",
                                          "integer",
                                          "text",
                                          "flag",
                                          "bcd",
                                          "signed-bcd",
                                          "signed-bcd-negative",
                                          "amount-long",
                                          "date",
                                          "month",
                                          "time",
                                          "item",
                                          "item-discount",
                                          "item-list",
                                          "item-hash-sha1",
                                          "item-hash-sha256",
                                          "sha256-80-to-9f",
                                          "container",
                                          "container-response",
                                          "booking-request",
                                          "booking-response",
                                          "report-request",
                                          "report-request-months",
                                          "report-request-activation",
                                          "report-response",
                                          "data-request",
                                          "data-response"};
  std::set<std::string> found;
  for (const auto& [name, bytes] : Examples()) {
    found.insert(name);
  }
  EXPECT_EQ(found, expected);
}

// Codings

template <class Result, class Read>
Result ReadExample(const std::string& name, Read&& read) {
  clsZelBaseCoding coding;
  const ByteArray record = Example(name);
  std::int32_t start = 0;
  Result result{};
  EXPECT_TRUE(read(coding, record, start, result)) << name << ": " << coding.ErrorObject().ErrorMsg();
  EXPECT_EQ(start, static_cast<std::int32_t>(record.size())) << name;
  return result;
}

template <class Write>
void ExpectWritten(const std::string& name, Write&& write) {
  clsZelBaseCoding coding;
  ByteArray buffer = ByteArray::WithBounds(0, 128);
  std::int32_t start = 0;
  EXPECT_TRUE(write(coding, buffer, start)) << name << ": " << coding.ErrorObject().ErrorMsg();
  buffer.RedimPreserve(start - 1);
  EXPECT_EQ(ToHex(buffer), ToHex(Example(name))) << name;
}

TEST(RecordFormat, BinaryExample) {
  EXPECT_EQ(ToHex(ReadExample<ByteArray>(
                "binary", [](auto& c, auto& b, auto& s, auto& r) { return c.GetDataBinary(b, s, r); })),
            "41 42 80 E4");
  EXPECT_EQ(ReadExample<std::string>(
                "binary", [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelSerialNr(b, s, r); }),
            "QUKA5A==");
  ExpectWritten("binary", [](auto& c, auto& b, auto& s) {
    return c.SetDataBinary(b, s, ZelTags::Serial_No, test::FromHex("41 42 80 E4"));
  });
}

TEST(RecordFormat, IntegerExample) {
  EXPECT_EQ(ReadExample<std::int32_t>(
                "integer", [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelCurrencyCode(b, s, r); }),
            978);
  ExpectWritten("integer", [](auto& c, auto& b, auto& s) { return c.SetZelCurrencyCode(b, s, 978); });
}

TEST(RecordFormat, TextExample) {
  EXPECT_EQ(ReadExample<std::string>(
                "text", [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelOperator(b, s, r); }),
            "Kasse 1");
  ExpectWritten("text", [](auto& c, auto& b, auto& s) { return c.SetZelOperator(b, s, "Kasse 1"); });
}

TEST(RecordFormat, FlagExample) {
  ExpectWritten("flag",
                [](auto& c, auto& b, auto& s) { return c.SetDataBool(b, s, ZelTags::Training, true); });
  EXPECT_EQ(ReadExample<ByteArray>(
                "flag", [](auto& c, auto& b, auto& s, auto& r) { return c.GetDataBinary(b, s, r, 0, 0); })
                .size(),
            0U);
}

TEST(RecordFormat, BcdExample) {
  EXPECT_EQ(ReadExample<Currency>(
                "bcd", [](auto& c, auto& b, auto& s, auto& r) { return c.GetZelVatRate(b, s, r); }),
            Currency(19));
  ExpectWritten("bcd", [](auto& c, auto& b, auto& s) { return c.SetZelVatRate(b, s, 19); });
}

TEST(RecordFormat, SignedBcdExamples) {
  EXPECT_EQ(
      ReadExample<Currency>("signed-bcd", [](auto& c, auto& b, auto& s,
                                             auto& r) { return c.GetZelAmounts(b, s, ZelTags::Trnvr, r); }),
      Currency::FromScaled(123400));
  ExpectWritten("signed-bcd", [](auto& c, auto& b, auto& s) {
    return c.SetZelAmounts(b, s, ZelTags::Trnvr, Currency::FromScaled(123400));
  });
  EXPECT_EQ(ReadExample<Currency>("signed-bcd-negative",
                                  [](auto& c, auto& b, auto& s, auto& r) {
                                    return c.GetZelAmounts(b, s, ZelTags::Item_Price1, r);
                                  }),
            Currency::FromScaled(-5000));
  ExpectWritten("signed-bcd-negative", [](auto& c, auto& b, auto& s) {
    return c.SetZelAmounts(b, s, ZelTags::Item_Price1, Currency::FromScaled(-5000));
  });
}

TEST(RecordFormat, LongAmountExample) {
  EXPECT_EQ(ReadExample<Currency>("amount-long",
                                  [](auto& c, auto& b, auto& s, auto& r) {
                                    return c.GetZelAmounts(b, s, ZelTags::Trnvr, r, true);
                                  }),
            Currency(1000000000));
  ExpectWritten("amount-long", [](auto& c, auto& b, auto& s) {
    return c.SetZelAmounts(b, s, ZelTags::Trnvr, 1000000000, true);
  });
}

TEST(RecordFormat, DateAndTimeExamples) {
  EXPECT_EQ(ReadExample<Date>("date", [](auto& c, auto& b, auto& s,
                                         auto& r) { return c.GetZelDates(b, s, ZelTags::tDate, r); }),
            Date::FromCivil(2026, 12, 31));
  ExpectWritten("date", [](auto& c, auto& b, auto& s) {
    return c.SetZelDates(b, s, ZelTags::tDate, Date::FromCivil(2026, 12, 31));
  });
  const Date::Civil end = ReadExample<Date>("month", [](auto& c, auto& b, auto& s, auto& r) {
                            return c.GetZelDates(b, s, ZelTags::Month_End, r);
                          }).ToCivil();
  EXPECT_EQ((std::array{end.year, end.month, end.day, end.hour, end.minute, end.second}),
            (std::array{2026, 2, 28, 23, 59, 59}));
  ExpectWritten("month", [](auto& c, auto& b, auto& s) {
    return c.SetZelDates(b, s, ZelTags::Month_End, Date::FromCivil(2026, 2, 1));
  });
  const Date::Civil time = ReadExample<Date>("time", [](auto& c, auto& b, auto& s, auto& r) {
                             return c.GetZelTimes(b, s, ZelTags::tTime, r);
                           }).ToCivil();
  EXPECT_EQ((std::array{time.hour, time.minute}), (std::array{8, 5}));
  ExpectWritten("time", [](auto& c, auto& b, auto& s) {
    return c.SetZelTimes(b, s, ZelTags::tTime, Date::FromCivil(2026, 12, 31, 8, 5));
  });
}

// Items

std::shared_ptr<clsZelItemCash> Rolls() {
  auto item = std::make_shared<clsZelItemCash>();
  EXPECT_TRUE(item->SetItemData(2, "Brötchen", "Stk", 0, Currency::FromScaled(19800)));
  return item;
}

std::shared_ptr<clsZelItemCash> Lottery() {
  auto item = std::make_shared<clsZelItemCash>();
  EXPECT_TRUE(
      item->SetItemData(1, "Lotto 6aus49", "", 0, 0, Currency::FromScaled(146000), false, false, true));
  return item;
}

std::string WrittenItem(clsZelItemCash& item) {
  ByteArray buffer = ByteArray::WithBounds(0, 127);
  std::int32_t start = 0;
  EXPECT_TRUE(item.BinaryDataGet(buffer, start));
  buffer.RedimPreserve(start - 1);
  return ToHex(buffer);
}

void ReadItem(clsZelItemCash& item, const std::string& name) {
  const ByteArray bytes = Example(name);
  std::int32_t start = 0;
  EXPECT_TRUE(item.BinaryDataSet(bytes, start)) << item.ErrorObject().ErrorMsg();
  EXPECT_EQ(start, static_cast<std::int32_t>(bytes.size()));
}

TEST(RecordFormat, ItemExample) {
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(Currency::FromScaled(3850), "Bergkäse", "kg", 0, Currency::FromScaled(92000)));
  EXPECT_EQ(WrittenItem(item), ToHex(Example("item")));

  clsZelItemCash read;
  ReadItem(read, "item");
  EXPECT_EQ(read.Quantity(), Currency::FromScaled(3850));
  EXPECT_EQ(read.Unit(), "kg");
  EXPECT_EQ(read.Name(), "bergk#se");
  EXPECT_EQ(read.Price(2), Currency::FromScaled(92000));
  EXPECT_FALSE(read.DiscSurc());
}

TEST(RecordFormat, DiscountExample) {
  clsZelItemCash item;
  ASSERT_TRUE(item.SetItemData(1, "Rabatt", "", Currency::FromScaled(-5000), 0, 0, true));
  EXPECT_EQ(WrittenItem(item), ToHex(Example("item-discount")));

  clsZelItemCash read;
  ReadItem(read, "item-discount");
  EXPECT_EQ(read.Name(), "rabatt");
  EXPECT_TRUE(read.DiscSurc());
  EXPECT_EQ(read.Price(1), Currency::FromScaled(-5000));
}

TEST(RecordFormat, ItemListExample) {
  clsZelItemList list;
  ASSERT_TRUE(list.AddItem(Rolls()));
  ASSERT_TRUE(list.AddItem(Lottery()));
  ByteArray buffer;
  std::int32_t start = 0;
  ASSERT_TRUE(list.BinaryDataGet(buffer, start));
  buffer.RedimPreserve(start - 1);
  EXPECT_EQ(ToHex(buffer), ToHex(Example("item-list")));

  clsZelItemList read;
  start = 0;
  ASSERT_TRUE(read.BinaryDataSet(Example("item-list"), start)) << read.ErrorObject().ErrorMsg();
  ASSERT_EQ(read.ItemCount(), 2);
  const auto second = std::dynamic_pointer_cast<clsZelItemCash>(read.ItemI(2));
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->Name(), "lotto6aus49");
  EXPECT_TRUE(second->ThirdParty());
  EXPECT_EQ(second->Price(4), Currency::FromScaled(146000));
}

// Digests

std::string Digest(const EVP_MD* algorithm, const ByteArray& bytes) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned int length = 0;
  EXPECT_EQ(EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, algorithm, nullptr), 1);
  return ToHex(ByteArray(std::span<const std::uint8_t>(digest.data(), length)));
}

// The bytes as the page says that SHA-256 takes them.
ByteArray AsHashed(ByteArray bytes) {
  const ByteArray table = Example("sha256-80-to-9f");
  EXPECT_EQ(table.size(), 32U);
  for (std::uint8_t& byte : bytes) {
    if (byte >= 0x80 && byte <= 0x9F && table.size() == 32) {
      byte = table[byte - 0x80];
    }
  }
  return bytes;
}

std::string ItemHash(bool bit256) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Rolls()));
  EXPECT_TRUE(list.AddItem(Lottery()));
  std::string text;
  EXPECT_TRUE(list.GetItemHash(bit256, false, false, text));
  ByteArray bytes;
  EXPECT_TRUE(clsHelper01().FromBase64String(text, bytes));
  return ToHex(bytes);
}

TEST(RecordFormat, ItemHashExamples) {
  const ByteArray list = Example("item-list");
  EXPECT_EQ(ToHex(Example("item-hash-sha1")), ItemHash(false));
  EXPECT_EQ(ToHex(Example("item-hash-sha1")), Digest(EVP_sha1(), list));
  EXPECT_EQ(ToHex(Example("item-hash-sha256")), ItemHash(true));
  EXPECT_EQ(ToHex(Example("item-hash-sha256")), Digest(EVP_sha256(), AsHashed(list)));
  EXPECT_NE(ToHex(Example("item-hash-sha256")), Digest(EVP_sha256(), list));
}

TEST(RecordFormat, TableOfHashedBytesIsTheLibrarys) {
  for (int byte = 0; byte <= 255; ++byte) {
    const ByteArray single = {static_cast<std::uint8_t>(byte)};
    ByteArray digest;
    ASSERT_TRUE(clsHelper01().GetSHA256Hash1(single, digest));
    EXPECT_EQ(ToHex(digest), Digest(EVP_sha256(), AsHashed(single))) << byte;
  }
}

// Containers

TEST(RecordFormat, ContainerExample) {
  const ByteArray bytes = Example("container");
  clsZelContainer container;
  std::int32_t start = 0;
  ASSERT_TRUE(container.BinaryDataSet(bytes, start)) << container.ErrorObject().ErrorMsg();
  EXPECT_EQ(start, static_cast<std::int32_t>(bytes.size()));
  EXPECT_EQ(container.Tag(), ZelTags::Container_Vat_1);
  EXPECT_EQ(container.Turnover(), Currency(100));
  EXPECT_EQ(container.VAT(), Currency::FromScaled(159700));
  EXPECT_EQ(container.VATrate(), Currency(19));

  ByteArray buffer = ByteArray::WithBounds(0, 63);
  start = 0;
  ASSERT_TRUE(container.BinaryDataGet(buffer, start));
  buffer.RedimPreserve(start - 1);
  EXPECT_EQ(ToHex(buffer), ToHex(bytes));
}

TEST(RecordFormat, ResponseContainerExample) {
  const ByteArray bytes = Example("container-response");
  clsZelContainer container;
  std::int32_t start = 0;
  EXPECT_FALSE(container.BinaryDataSet(bytes, start)) << "an amount of 7 bytes in a request";
  container.IsZelResponse(true);
  start = 0;
  ASSERT_TRUE(container.BinaryDataSet(bytes, start)) << container.ErrorObject().ErrorMsg();
  EXPECT_EQ(start, static_cast<std::int32_t>(bytes.size()));
  EXPECT_EQ(container.Turnover(), Currency::FromScaled(12345678901200));
  EXPECT_TRUE(container.OverflowTO());
  EXPECT_FALSE(container.VATchange());
}

// Bookings

TEST(RecordFormat, BookingRequestExample) {
  clsZelTransAct booking;
  booking.VatList(std::make_shared<clsZelVatList>());
  booking.TransactionDate(Date::FromCivil(2026, 12, 31, 8, 5));
  booking.Operator("Kasse 1");
  booking.IsTraining(true);
  ASSERT_TRUE(booking.AddItem(Rolls()));
  ASSERT_TRUE(booking.AddItem(Lottery()));
  ByteArray request;
  std::int32_t length = 0;
  ASSERT_TRUE(booking.BinaryDataGet(ZELSerialType::Request, request, 0, &length))
      << booking.ErrorObject().ErrorMsg();
  EXPECT_EQ(ToHex(request), ToHex(Example("booking-request")));
  EXPECT_EQ(length, static_cast<std::int32_t>(Example("booking-request").size()));
}

void ExpectTheExample(const ByteArray& request) {
  clsZelTransAct booking;
  ASSERT_TRUE(booking.BinaryDataSet(ZELSerialType::Request, request, 0)) << booking.ErrorObject().ErrorMsg();
  EXPECT_EQ(booking.TransactionDate(), Date::FromCivil(2026, 12, 31, 8, 5));
  EXPECT_EQ(booking.Operator(), "Kasse 1");
  EXPECT_EQ(booking.ItemHash(), "YEylsjs5i6mB5AjRWlwYpw9K+JUR8TZ7ULrA783DH5Y=");
  EXPECT_EQ(booking.CurrencyCode(), 978);
  EXPECT_TRUE(booking.IsTraining());
  EXPECT_FALSE(booking.IsTaxExcl());
  EXPECT_FALSE(booking.IsDeliveryNote());
  Currency turnover;
  Currency vat;
  Currency rate;
  EXPECT_TRUE(booking.GetContainerValues(2, turnover, vat, rate));
  EXPECT_EQ(turnover, Currency::FromScaled(19800));
  EXPECT_EQ(vat, Currency::FromScaled(1300));
  EXPECT_EQ(rate, Currency(7));
  EXPECT_TRUE(booking.GetContainerValues(4, turnover, vat, rate));
  EXPECT_EQ(turnover, Currency::FromScaled(146000));
  EXPECT_EQ(vat, Currency(0));
  EXPECT_EQ(rate, Currency(0));
}

struct Part {
  std::uint8_t tag;
  std::string bytes;  // the whole record
};

std::vector<Part> Parts(const ByteArray& bytes) {
  std::vector<Part> parts;
  std::int32_t at = 0;
  while (at < bytes.UBound()) {
    const std::int32_t size = 2 + bytes[at + 1];
    if (at + size > bytes.UBound() + 1) {
      ADD_FAILURE() << "a record runs past the end";
      break;
    }
    parts.push_back({bytes[at], ToHex(ByteArray(std::span<const std::uint8_t>(bytes.data() + at, size)))});
    at += size;
  }
  EXPECT_EQ(at, bytes.UBound() + 1);
  return parts;
}

std::string Joined(const std::vector<Part>& parts) {
  std::string joined;
  for (const Part& part : parts) {
    joined += part.bytes + " ";
  }
  return joined;
}

TEST(RecordFormat, BookingRequestExampleIsReadInEitherOrderBehindTheHash) {
  const ByteArray request = Example("booking-request");
  ExpectTheExample(request);
  std::vector<Part> parts = Parts(request);
  ASSERT_EQ(parts.size(), 8U);
  std::reverse(parts.begin() + 4, parts.end());
  ExpectTheExample(test::FromHex(Joined(parts)));

  std::swap(parts[0], parts[1]);
  clsZelTransAct booking;
  EXPECT_FALSE(booking.BinaryDataSet(ZELSerialType::Request, test::FromHex(Joined(parts)), 0));
}

TEST(RecordFormat, BookingResponseExample) {
  const ByteArray response = Example("booking-response");
  const std::string signature =
      "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8gISIjJCUmJygpKissLS4vMDEyMzQ1Njc4OTo7PD0+Pw==";
  ByteArray followed = response;
  followed.RedimPreserve(response.UBound() + 3);
  for (const ByteArray& bytes : {response, followed}) {
    clsZelTransAct booking;
    ASSERT_TRUE(booking.BinaryDataSet(ZELSerialType::Response, bytes, 0)) << booking.ErrorObject().ErrorMsg();
    EXPECT_EQ(booking.ZelRespTpID(), "DE123456789");
    EXPECT_EQ(booking.ZelRespTpIDNr(), Currency(1));
    EXPECT_EQ(booking.ZelRespSeqNr(), Currency(256));
    EXPECT_EQ(booking.ZelRespSignature(), signature);
  }
  clsZelTransAct booking;
  ASSERT_TRUE(booking.BinaryDataSet(ZELSerialType::Response, response, 0));
  ByteArray kept = ByteArray::WithBounds(0, response.UBound());
  ASSERT_TRUE(booking.BinaryDataGet(ZELSerialType::Response, kept, 0));
  EXPECT_EQ(ToHex(kept), ToHex(response));
}

// Reports

// The request as the library writes it.
std::string ReportRequest(clsZelReport& report, ZelReportType type) {
  ByteArray request;
  EXPECT_TRUE(report.BinaryDataGet(ZELSerialType::Request, request, 0, type))
      << report.ErrorObject().ErrorMsg();
  return ToHex(request);
}

TEST(RecordFormat, ReportRequestExamples) {
  clsZelReport closing;
  closing.ReportDate(Date::FromCivil(2026, 12, 31, 18, 30));
  ASSERT_TRUE(closing.AddItem(Rolls()));
  ASSERT_TRUE(closing.AddItem(Lottery()));
  EXPECT_EQ(ReportRequest(closing, ZelReportType::Signed), ToHex(Example("report-request")));

  clsZelReport months;
  months.ReportDate(Date::FromCivil(2026, 12, 31, 18, 30));
  months.SpanMonthFrom(Date::FromCivil(2026, 10, 15));
  months.SpanMonthUpTo(Date::FromCivil(2026, 12, 1));
  EXPECT_EQ(ReportRequest(months, ZelReportType::Span), ToHex(Example("report-request-months")));

  clsZelReport activation;
  activation.ReportDate(Date::FromCivil(2026, 12, 31, 8, 0));
  activation.TransportPIN("271828");
  EXPECT_EQ(ReportRequest(activation, ZelReportType::ActivateZEL),
            ToHex(Example("report-request-activation")));
}

TEST(RecordFormat, ReportsThatAreDateAndTimeAlone) {
  const std::string dateAndTime = ToHex(Example("report-request")).substr(0, 29);
  for (const ZelReportType type :
       {ZelReportType::Signed, ZelReportType::Unsigned, ZelReportType::DeactivateZEL}) {
    clsZelReport report;
    report.ReportDate(Date::FromCivil(2026, 12, 31, 18, 30));
    EXPECT_EQ(ReportRequest(report, type), dateAndTime);
  }
}

TEST(RecordFormat, ReportRequestExamplesAreRead) {
  clsZelReport closing;
  ASSERT_TRUE(closing.BinaryDataSet(ZELSerialType::Request, Example("report-request"), 0))
      << closing.ErrorObject().ErrorMsg();
  EXPECT_EQ(closing.ReportDate(), Date::FromCivil(2026, 12, 31, 18, 30));
  clsZelReport months;
  ASSERT_TRUE(months.BinaryDataSet(ZELSerialType::Request, Example("report-request-months"), 0));
  EXPECT_EQ(months.SpanMonthFrom(), Date::FromCivil(2026, 10, 1));
  EXPECT_EQ(months.SpanMonthUpTo(), Date::FromCivil(2026, 12, 31, 23, 59, 59));
  clsZelReport activation;
  ASSERT_TRUE(activation.BinaryDataSet(ZELSerialType::Request, Example("report-request-activation"), 0));
  EXPECT_EQ(activation.TransportPIN(), "271828");
}

const std::string kExampleSignature =
    "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8gISIjJCUmJygpKissLS4vMDEyMzQ1Njc4OTo7PD0+Pw==";

TEST(RecordFormat, ReportResponseExampleIsReadInEitherOrder) {
  const ByteArray response = Example("report-response");
  std::vector<Part> parts = Parts(response);
  ASSERT_EQ(parts.size(), 10U);
  std::reverse(parts.begin(), parts.end());
  for (const ByteArray& bytes : {response, test::FromHex(Joined(parts))}) {
    clsZelReport report;
    ASSERT_TRUE(report.BinaryDataSet(ZELSerialType::Response, bytes, 0)) << report.ErrorObject().ErrorMsg();
    EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Activated);
    EXPECT_EQ(report.TpID(), "DE123456789");
    EXPECT_EQ(report.TpIdNbr(), Currency(1));
    EXPECT_EQ(report.SequenceNbr(), Currency(2));
    EXPECT_EQ(report.TransSeqNrFirst(), Currency(1));
    EXPECT_EQ(report.TransSeqNrLast(), Currency(256));
    EXPECT_EQ(report.Container(1)->Turnover(), Currency(100));
    EXPECT_EQ(report.Container(1)->VAT(), Currency::FromScaled(159700));
    EXPECT_EQ(report.Container(1)->VATrate(), Currency(19));
    EXPECT_TRUE(report.Container(1)->VATchange());
    EXPECT_FALSE(report.Container(1)->OverflowTO());
    EXPECT_EQ(report.ContainerThrdParty()->Turnover(), Currency(5));
    EXPECT_EQ(report.ContainerDelivery()->Turnover(), Currency(0));
    EXPECT_EQ(report.Signature(), kExampleSignature);
  }
}

TEST(RecordFormat, ReportResponseKeepsWhatItLacksAndRefusesOtherTags) {
  clsZelReport report;
  ASSERT_TRUE(report.BinaryDataSet(ZELSerialType::Response, Example("report-response"), 0));
  ASSERT_TRUE(report.BinaryDataSet(ZELSerialType::Response, test::FromHex("C0 01 04"), 0));
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Deactivated);
  EXPECT_EQ(report.TpID(), "DE123456789");
  EXPECT_EQ(report.Signature(), "");
  EXPECT_FALSE(report.BinaryDataSet(ZELSerialType::Response, test::FromHex("CB 01 01"), 0));
  EXPECT_EQ(report.ErrorObject().ErrorNr(), 9305);
}

// Data records

// A record of the data 41 42 80 E4, dated like the example.
void FillRecord(clsZelTransActData& record) {
  record.TransactionDate(Date::FromCivil(2026, 12, 31, 8, 5));
  ASSERT_TRUE(record.BinaryDataSet(ZELSerialType::BinaryData, test::FromHex("41 42 80 E4"), 0));
}

std::string DataRequest(clsZelTransActData& record) {
  ByteArray request = ByteArray::WithBounds(0, 127);
  std::int32_t length = 0;
  EXPECT_TRUE(record.BinaryDataGet(ZELSerialType::Request, request, 0, &length))
      << record.ErrorObject().ErrorMsg();
  request.RedimPreserve(length - 1);
  return ToHex(request);
}

TEST(RecordFormat, DataRequestExample) {
  const std::string example = ToHex(Example("data-request"));
  clsZelTransActData record;
  FillRecord(record);
  record.DataSignType(ZELDataSignTypes::DataAndTime);
  EXPECT_EQ(DataRequest(record), example);
  EXPECT_EQ(example.substr(36), Digest(EVP_sha256(), AsHashed(test::FromHex("41 42 80 E4"))));
  for (const ZELDataSignTypes type : {ZELDataSignTypes::DataOnly, ZELDataSignTypes::DataAndTpID}) {
    record.DataSignType(type);
    EXPECT_EQ(DataRequest(record), example.substr(30));
  }
  clsZelTransActData sha1;
  sha1.UseSHA256(false);
  FillRecord(sha1);
  EXPECT_EQ(DataRequest(sha1), "C7 14 " + Digest(EVP_sha1(), test::FromHex("41 42 80 E4")));
}

TEST(RecordFormat, DataRequestExampleIsReadInEitherOrder) {
  const ByteArray request = Example("data-request");
  std::vector<Part> parts = Parts(request);
  ASSERT_EQ(parts.size(), 3U);
  std::reverse(parts.begin(), parts.end());
  for (const ByteArray& bytes : {request, test::FromHex(Joined(parts))}) {
    clsZelTransActData record;
    ASSERT_TRUE(record.BinaryDataSet(ZELSerialType::Request, bytes, 0)) << record.ErrorObject().ErrorMsg();
    EXPECT_EQ(record.TransactionDate(), Date::FromCivil(2026, 12, 31, 8, 5));
    EXPECT_EQ(record.DataSignType(), ZELDataSignTypes::DataAndTime);
  }
}

TEST(RecordFormat, DataResponseExample) {
  clsZelTransActData alone;
  ASSERT_TRUE(alone.BinaryDataSet(ZELSerialType::Response, Example("data-response"), 0))
      << alone.ErrorObject().ErrorMsg();
  EXPECT_EQ(alone.ZelRespSeqNr(), Currency(257));
  EXPECT_EQ(alone.ZelRespSignature(), kExampleSignature);
  EXPECT_EQ(alone.DataSignType(), ZELDataSignTypes::DataOnly);

  clsZelTransActData withTaxpayer;
  ASSERT_TRUE(withTaxpayer.BinaryDataSet(ZELSerialType::Response,
                                         test::FromHex(ToHex(Example("data-response")) + " C4 02 44 45"), 0));
  EXPECT_EQ(withTaxpayer.DataSignType(), ZELDataSignTypes::DataAndTpID);
}

// The table of tags

struct Row {
  std::string hex;
  std::string decimal;
  std::string coding;
  std::string read;
  std::string written;
};

std::string Trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(' ');
  return start == std::string_view::npos
             ? std::string()
             : std::string(text.substr(start, text.find_last_not_of(' ') - start + 1));
}

// The rows by the tag's name.
std::map<std::string, Row> Table() {
  std::map<std::string, Row> rows;
  for (const std::string& line : PageLines()) {
    std::vector<std::string> cells;
    std::istringstream text(line);
    std::string cell;
    while (std::getline(text, cell, '|')) {
      cells.push_back(Trimmed(cell));
    }
    if (line.starts_with("| ") && cells.size() == 8 && cells[3].starts_with('`')) {
      const std::string name = cells[3].substr(1, cells[3].size() - 2);
      EXPECT_FALSE(rows.contains(name)) << name;
      EXPECT_NE(cells[4], "") << name << " has no meaning";
      rows[name] = {cells[1], cells[2], cells[5], cells[6], cells[7]};
    }
  }
  return rows;
}

const std::vector<std::pair<std::string, ZelTags>>& AllTags() {
  static const std::vector<std::pair<std::string, ZelTags>> tags = {
      {"Signature", ZelTags::Signature},
      {"Lifecycle", ZelTags::Lifecycle},
      {"Serial_No", ZelTags::Serial_No},
      {"Version", ZelTags::Version},
      {"Transport_Pin", ZelTags::Transport_Pin},
      {"Tp_ID", ZelTags::Tp_ID},
      {"Tp_ID_No", ZelTags::Tp_ID_No},
      {"Operator", ZelTags::Operator},
      {"Hash_Trans_Items", ZelTags::Hash_Trans_Items},
      {"Currency", ZelTags::Currency},
      {"Vat_AddOn", ZelTags::Vat_AddOn},
      {"Training", ZelTags::Training},
      {"Seq_Nr_Trans", ZelTags::Seq_Nr_Trans},
      {"Seq_Nr_Reprt", ZelTags::Seq_Nr_Reprt},
      {"tDate", ZelTags::tDate},
      {"tTime", ZelTags::tTime},
      {"tMonth", ZelTags::tMonth},
      {"Month_Start", ZelTags::Month_Start},
      {"Month_End", ZelTags::Month_End},
      {"Seq_No_Trans_First", ZelTags::Seq_No_Trans_First},
      {"Seq_No_Trans_Last", ZelTags::Seq_No_Trans_Last},
      {"Hash_Reprt_Items", ZelTags::Hash_Reprt_Items},
      {"Country_Code", ZelTags::Country_Code},
      {"Trnvr_Thirdparty", ZelTags::Trnvr_Thirdparty},
      {"Deliverynote", ZelTags::Deliverynote},
      {"Trnvr", ZelTags::Trnvr},
      {"Trnvr_neg", ZelTags::Trnvr_neg},
      {"Trnvr_Vat", ZelTags::Trnvr_Vat},
      {"Trnvr_Vat_Rate", ZelTags::Trnvr_Vat_Rate},
      {"Trnvr_Counter", ZelTags::Trnvr_Counter},
      {"Trnvr_Overflow", ZelTags::Trnvr_Overflow},
      {"Trnvr_Vat_Changed", ZelTags::Trnvr_Vat_Changed},
      {"Container_Vat_1", ZelTags::Container_Vat_1},
      {"Container_Vat_2", ZelTags::Container_Vat_2},
      {"Container_Vat_3", ZelTags::Container_Vat_3},
      {"Container_Vat_4", ZelTags::Container_Vat_4},
      {"Container_Vat_5", ZelTags::Container_Vat_5},
      {"Container_Vat_6", ZelTags::Container_Vat_6},
      {"Container_ThrdP", ZelTags::Container_ThrdP},
      {"Container_DlvNote", ZelTags::Container_DlvNote},
      {"Container_Training", ZelTags::Container_Training},
      {"Item_Quantity", ZelTags::Item_Quantity},
      {"Item_Unit", ZelTags::Item_Unit},
      {"Item_Name", ZelTags::Item_Name},
      {"Item_DiscSurch", ZelTags::Item_DiscSurch},
      {"Item_Voucher", ZelTags::Item_Voucher},
      {"Item_Thirdparty", ZelTags::Item_Thirdparty},
      {"Item_Price1", ZelTags::Item_Price1},
      {"Item_Price2", ZelTags::Item_Price2},
      {"Item_Price3", ZelTags::Item_Price3},
      {"Item_Price4", ZelTags::Item_Price4},
      {"Item_Price5", ZelTags::Item_Price5},
      {"Item_Price6", ZelTags::Item_Price6},
  };
  return tags;
}

TEST(RecordFormat, TableHasEveryTagWithItsNumber) {
  const std::map<std::string, Row> table = Table();
  EXPECT_EQ(table.size(), AllTags().size());
  for (const auto& [name, tag] : AllTags()) {
    ASSERT_TRUE(table.contains(name)) << name;
    const Row& row = table.at(name);
    EXPECT_EQ(row.hex, ToHex(ByteArray{static_cast<std::uint8_t>(tag)})) << name;
    EXPECT_EQ(row.decimal, std::to_string(static_cast<int>(tag))) << name;
  }
}

using Lengths = std::set<int>;

// "6", "20 or 32", "1 to 16".
Lengths LengthsOf(const std::string& text) {
  Lengths lengths;
  std::istringstream words(text);
  int first = 0;
  int last = 0;
  std::string word;
  if (!(words >> first)) {
    return lengths;
  }
  if (!(words >> word)) {
    return {first};
  }
  words >> last;
  if (word == "or") {
    return {first, last};
  }
  for (int length = first; length <= last; ++length) {
    lengths.insert(length);
  }
  return lengths;
}

using Reader = std::function<bool(clsZelBaseCoding&, const ByteArray&, std::int32_t&)>;

// The lengths of a value that a reader takes.
Lengths Taken(ZelTags tag, bool isText, const Reader& read) {
  Lengths lengths;
  for (int length = 0; length <= 127; ++length) {
    // "1" as text; in BCD 11, which is a day, a month, an hour and a minute.
    ByteArray record = ByteArray::WithBounds(0, length + 1);
    std::fill(record.begin(), record.end(), static_cast<std::uint8_t>(isText ? 0x31 : 0x11));
    record[0] = static_cast<std::uint8_t>(tag);
    record[1] = static_cast<std::uint8_t>(length);
    clsZelBaseCoding coding;
    std::int32_t start = 0;
    if (read(coding, record, start)) {
      lengths.insert(length);
    }
  }
  return lengths;
}

Reader ReaderOf(ZelTags tag, const std::string& coding, bool isResponse) {
  static std::string text;
  static ByteArray bytes;
  static Currency currency;
  static std::int32_t number;
  static Date date;
  static ZelLifeCycle state;
  using C = clsZelBaseCoding;
  using B = const ByteArray;
  using S = std::int32_t;
  switch (tag) {
    case ZelTags::Signature: return [](C& c, B& b, S& s) { return c.GetZelSignature(b, s, bytes); };
    case ZelTags::Lifecycle: return [](C& c, B& b, S& s) { return c.GetZelLifeCycle(b, s, state); };
    case ZelTags::Serial_No: return [](C& c, B& b, S& s) { return c.GetZelSerialNr(b, s, text); };
    case ZelTags::Version: return [](C& c, B& b, S& s) { return c.GetZelVersion(b, s, text); };
    case ZelTags::Transport_Pin: return [](C& c, B& b, S& s) { return c.GetZelTranspPin(b, s, text); };
    case ZelTags::Tp_ID: return [](C& c, B& b, S& s) { return c.GetZelTpID(b, s, text); };
    case ZelTags::Tp_ID_No: return [](C& c, B& b, S& s) { return c.GetZelTpIDNr(b, s, currency); };
    case ZelTags::Operator: return [](C& c, B& b, S& s) { return c.GetZelOperator(b, s, text); };
    case ZelTags::Hash_Trans_Items: return [](C& c, B& b, S& s) { return c.GetZelHash(b, s, true, text); };
    case ZelTags::Hash_Reprt_Items: return [](C& c, B& b, S& s) { return c.GetZelHash(b, s, false, text); };
    case ZelTags::Currency: return [](C& c, B& b, S& s) { return c.GetZelCurrencyCode(b, s, number); };
    case ZelTags::Country_Code: return [](C& c, B& b, S& s) { return c.GetZelCountryCode(b, s, number); };
    case ZelTags::Trnvr_Vat_Rate: return [](C& c, B& b, S& s) { return c.GetZelVatRate(b, s, currency); };
    default: break;
  }
  if (coding == "integer") {
    return [tag](C& c, B& b, S& s) { return c.GetZelCounter(b, s, tag, currency); };
  }
  if (coding == "amount") {
    return [=](C& c, B& b, S& s) { return c.GetZelAmounts(b, s, tag, currency, isResponse); };
  }
  if (coding == "date" || coding == "month") {
    return [tag](C& c, B& b, S& s) { return c.GetZelDates(b, s, tag, date); };
  }
  if (coding == "time") {
    return [tag](C& c, B& b, S& s) { return c.GetZelTimes(b, s, tag, date); };
  }
  return {};
}

TEST(RecordFormat, TableSaysWhichLengthsAreRead) {
  for (const auto& [name, tag] : AllTags()) {
    const testing::ScopedTrace trace(__FILE__, __LINE__, name);
    const Row row = Table()[name];
    const Reader read = ReaderOf(tag, row.coding, false);
    if (!read) {
      EXPECT_EQ(row.read, "");
      continue;
    }
    const std::size_t comma = row.read.find(", response ");
    EXPECT_EQ(LengthsOf(row.read.substr(0, comma)), Taken(tag, row.coding == "text", read));
    if (comma != std::string::npos) {
      EXPECT_EQ(LengthsOf(row.read.substr(comma + 11)), Taken(tag, false, ReaderOf(tag, row.coding, true)));
    }
  }
}

// The lengths of a value that a writer gives to some of its values.
template <class Values, class Write>
Lengths Given(const Values& values, Write&& write) {
  Lengths lengths;
  for (const auto& value : values) {
    clsZelBaseCoding coding;
    ByteArray buffer = ByteArray::WithBounds(0, 129);
    std::int32_t start = 0;
    if (write(coding, buffer, start, value)) {
      EXPECT_EQ(start, 2 + buffer[1]);
      lengths.insert(buffer[1]);
    }
  }
  return lengths;
}

// The lengths that a record has in items with some of its values.
template <class Values, class Set>
Lengths GivenByItems(ZelTags tag, const Values& values, Set&& set) {
  Lengths lengths;
  for (const auto& value : values) {
    clsZelItemCash item;
    item.Name("x");
    set(item, value);
    ByteArray buffer = ByteArray::WithBounds(0, 200);
    std::int32_t start = 0;
    if (!item.BinaryDataGet(buffer, start)) {
      continue;
    }
    buffer.RedimPreserve(start - 1);
    for (const Part& part : Parts(buffer)) {
      if (part.tag == static_cast<std::uint8_t>(tag)) {
        lengths.insert(static_cast<int>((part.bytes.size() + 1) / 3) - 2);
      }
    }
  }
  return lengths;
}

std::vector<std::string> Texts() {
  std::vector<std::string> texts;
  for (std::size_t length = 0; length <= 127; ++length) {
    texts.emplace_back(length, '1');
  }
  return texts;
}

// 9, 99, 999 and so on, in hundredths, and 0.
std::vector<Currency> Numbers() {
  std::vector<Currency> numbers = {Currency(0)};
  for (std::int64_t hundredths = 9; hundredths < 10000000000000000; hundredths = hundredths * 10 + 9) {
    numbers.push_back(Currency::FromScaled(hundredths * 100));
  }
  return numbers;
}

Lengths GivenFor(ZelTags tag, const std::string& coding) {
  const Date date = Date::FromCivil(2026, 12, 31, 23, 59);
  const std::vector<Currency> integers = {0, 255, 256, 65536, 16777216, 4294967295};
  const std::vector<std::int32_t> codes = {0, 255, 256, 65536, 16777216, 2147483647};
  const bool once[] = {true};
  switch (tag) {
    case ZelTags::Transport_Pin:
      return Given(Texts(),
                   [](auto& c, auto& b, auto& s, const auto& v) { return c.SetZelTranspPin(b, s, v); });
    case ZelTags::Operator:
      return Given(Texts(),
                   [](auto& c, auto& b, auto& s, const auto& v) { return c.SetZelOperator(b, s, v); });
    case ZelTags::Hash_Trans_Items:
    case ZelTags::Hash_Reprt_Items:
      return Given(Texts(), [tag](auto& c, auto& b, auto& s, const auto& v) {
        return c.SetZelHash(b, s, tag == ZelTags::Hash_Trans_Items,
                            ByteArray::WithBounds(0, static_cast<std::int32_t>(v.size()) - 1));
      });
    case ZelTags::Currency:
      return Given(codes, [](auto& c, auto& b, auto& s, auto v) { return c.SetZelCurrencyCode(b, s, v); });
    case ZelTags::Trnvr_Vat_Rate:
      return Given(Numbers(), [](auto& c, auto& b, auto& s, auto v) { return c.SetZelVatRate(b, s, v); });
    case ZelTags::Item_Quantity:
      return GivenByItems(tag, Numbers(), [](auto& item, auto v) { item.Quantity(v); });
    case ZelTags::Item_Unit:
      return GivenByItems(tag, Texts(), [](auto& item, const auto& v) { item.Unit(v); });
    case ZelTags::Item_Name:
      return GivenByItems(tag, Texts(), [](auto& item, const auto& v) { item.Name(v); });
    default: break;
  }
  if (coding == "integer") {
    return Given(integers,
                 [tag](auto& c, auto& b, auto& s, auto v) { return c.SetZelCounter(b, s, tag, v); });
  }
  if (coding == "amount") {
    return Given(Numbers(),
                 [tag](auto& c, auto& b, auto& s, auto v) { return c.SetZelAmounts(b, s, tag, v); });
  }
  if (coding == "date" || coding == "month") {
    return Given(once, [=](auto& c, auto& b, auto& s, bool) { return c.SetZelDates(b, s, tag, date); });
  }
  if (coding == "time") {
    return Given(once, [=](auto& c, auto& b, auto& s, bool) { return c.SetZelTimes(b, s, tag, date); });
  }
  if (coding == "flag") {
    return Given(once, [=](auto& c, auto& b, auto& s, bool v) { return c.SetDataBool(b, s, tag, v); });
  }
  return {};
}

TEST(RecordFormat, TableSaysWhichLengthsAreWritten) {
  int written = 0;
  for (const auto& [name, tag] : AllTags()) {
    const testing::ScopedTrace trace(__FILE__, __LINE__, name);
    const Row row = Table()[name];
    if (row.written == "–" || row.coding == "records") {
      continue;
    }
    ++written;
    Lengths lengths = GivenFor(tag, row.coding);
    if (tag == ZelTags::Item_Quantity && !lengths.empty()) {
      // Not every length stands among the quantities tried: 9.99 follows 0.99 and 0.09.
      EXPECT_EQ(*lengths.begin(), 1);
      EXPECT_EQ(*lengths.rbegin(), 11);
      EXPECT_EQ(row.written, "1 to 11");
      continue;
    }
    EXPECT_EQ(LengthsOf(row.written), lengths);
  }
  EXPECT_EQ(written, 35);
}

}  // namespace
}  // namespace VnZEL10cmn
