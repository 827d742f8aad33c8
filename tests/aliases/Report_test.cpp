#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Support.h"
#include "VnZEL10cmn/report/clsZelReport.h"
#include "tests/booking/Support.h"

namespace {

using test::ByteArray;
using test::ExpectError;
using test::ExpectNoError;
using test::FromHex;
using test::ZELSerialType;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::ZelReportType;

/// State "activated", taxpayer "DE1", device 2, report 300, bookings 5 to 1000, 48 bytes 01 to 30 as signature.
constexpr std::string_view kReportResponse =
    "C0 01 03 C4 03 44 45 31 C5 01 02 CC 02 01 2C D2 01 05 D3 02 03 E8 9E 30 "
    "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 "
    "19 1A 1B 1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30";

/// A signed report over one item.
class Report : public testing::Test {
 protected:
  Report() {
    report_.ReportDate(test::Date::FromCivil(2024, 3, 15, 14, 37, 25));
    EXPECT_TRUE(report_.AddItem(test::CashItem("Brot", 1)));
    ByteArray request;
    EXPECT_TRUE(report_.BinaryDataGet(ZELSerialType::Request, request, 0, ZelReportType::Signed));
    EXPECT_TRUE(report_.BinaryDataSet(ZELSerialType::Response, FromHex(kReportResponse), 0));
  }

  clsZelReport report_;
};

TEST_F(Report, TakesItsTexts) {
  report_.TransportPIN("a PIN that is longer than a string keeps");
  report_.TransportPIN(std::string_view(report_.TransportPIN()).substr(2, 3));
  EXPECT_EQ(report_.TransportPIN(), "PIN");
  report_.ZelProfile(report_.Signature());
  EXPECT_EQ(report_.ZelProfile(), test::kSaleSignature);
  report_.TransportPIN(report_.ZelProfile());
  EXPECT_EQ(report_.TransportPIN(), test::kSaleSignature);
  report_.ZelProfile(report_.TpID());
  EXPECT_EQ(report_.ZelProfile(), "DE1");
  EXPECT_EQ(report_.ItemK(report_.TpID()), nullptr);
  EXPECT_TRUE(report_.RemoveItem(nullptr, report_.TpID()));
  EXPECT_EQ(report_.ItemCount(), 1);
}

TEST_F(Report, TakesItsErrorTexts) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  EXPECT_FALSE(report_.AddItem(report_.ItemI(1)));
  EXPECT_TRUE(report_.RemoveItem(nullptr, report_.ErrorObject().ErrorInstanceID()));
  EXPECT_EQ(report_.ItemCount(), 1);
  EXPECT_FALSE(report_.AddItem(report_.ItemI(1)));
  report_.TransportPIN(report_.ErrorObject().ErrorFunction());
  EXPECT_EQ(report_.TransportPIN(), "AddItem.[AddItem]");
}

TEST_F(Report, RefusesAndRemovesAnItemGivenByItsPlace) {
  EXPECT_FALSE(report_.AddItem(*report_.begin()));
  ExpectError(report_.ErrorObject(), 9306, true, "AddItem.[AddItem]",
              "Ein Buchungsposten konnte nicht übernommen werden\r\n"
              "    Instanz-ID ..........: " +
                  report_.ItemI(1)->InstanceID());
  EXPECT_TRUE(report_.RemoveItem(*report_.begin()));
  EXPECT_EQ(report_.ItemCount(), 0);
  ExpectNoError(report_);
}

TEST_F(Report, ImportsTheDocumentThatItExportsInto) {
  std::string document = "what was there before";
  ASSERT_TRUE(report_.XmlHandler(document, true));
  const std::string exported = document;
  ASSERT_TRUE(report_.XmlHandler(document, false)) << report_.ErrorObject().ErrorMsg();
  EXPECT_EQ(document, exported);
  ASSERT_TRUE(report_.XmlHandler(document, true));
  EXPECT_EQ(document, exported);
}

TEST_F(Report, TakesInTheArrayThatItHandsOutInto) {
  ByteArray data = ByteArray::WithBounds(0, 99);
  std::int32_t length = 0;
  ASSERT_TRUE(
      report_.BinaryDataGet(ZELSerialType::Response, data, length, ZelReportType::Undefined, &length));
  EXPECT_EQ(length, 72);
  ASSERT_TRUE(report_.BinaryDataSet(ZELSerialType::Response, data, 0, length));
  EXPECT_EQ(report_.Signature(), test::kSaleSignature);
  data.RedimPreserve(71);
  EXPECT_EQ(data, FromHex(kReportResponse));
  ASSERT_TRUE(report_.BinaryDataGet(ZELSerialType::Request, data, 0, ZelReportType::Unsigned, &length));
  EXPECT_EQ(test::ToHex(data), "CD 04 20 24 03 15 CE 02 14 37");
  ASSERT_TRUE(report_.BinaryDataSet(ZELSerialType::Request, data, 0, length));
}

TEST_F(Report, TakesItsDates) {
  report_.SpanMonthFrom(report_.ReportDate());
  report_.SpanMonthUpTo(report_.SpanMonthFrom());
  EXPECT_EQ(report_.SpanMonthUpTo(), test::Date::FromCivil(2024, 3, 15, 14, 37, 25));
}

}  // namespace
