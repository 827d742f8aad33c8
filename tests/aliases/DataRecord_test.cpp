#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Support.h"
#include "VnZEL10cmn/datarecord/clsZelTransActData.h"
#include "tests/booking/Support.h"

namespace {

using test::ByteArray;
using test::ZELSerialType;
using VnZEL10cmn::clsZelTransActData;

constexpr std::string_view kAbcSha256 =
    "BA 78 16 BF 8F 01 CF EA 41 41 40 DE 5D AE 22 23 B0 03 61 A3 96 17 7A 9C B4 10 FF 61 F2 00 15 AD";

/// The signed record of "abc".
class DataRecord : public testing::Test {
 protected:
  DataRecord() {
    EXPECT_TRUE(record_.BinaryDataSet(ZELSerialType::BinaryData, test::FromHex("61 62 63"), 0));
    ByteArray request = ByteArray::WithBounds(0, 99);
    EXPECT_TRUE(record_.BinaryDataGet(ZELSerialType::Request, request, 0));
    EXPECT_TRUE(record_.BinaryDataSet(ZELSerialType::Response, test::FromHex(test::kSaleResponse), 0));
  }

  clsZelTransActData record_;
};

TEST_F(DataRecord, ImportsTheDocumentThatItExportsInto) {
  std::string document = "what was there before";
  ASSERT_TRUE(record_.XmlHandler(document, true));
  const std::string exported = document;
  ASSERT_TRUE(record_.XmlHandler(document, false)) << record_.ErrorObject().ErrorMsg();
  EXPECT_EQ(document, exported);
  ASSERT_TRUE(record_.XmlHandler(document, true));
  EXPECT_EQ(document, exported);
}

TEST_F(DataRecord, TakesInTheArrayThatItHandsOutInto) {
  ByteArray data = ByteArray::WithBounds(0, 99);
  std::int32_t length = 0;
  ASSERT_TRUE(record_.BinaryDataGet(ZELSerialType::Request, data, length, &length));
  EXPECT_EQ(length, 34);
  ASSERT_TRUE(record_.BinaryDataSet(ZELSerialType::Request, data, 0, length));
  data.RedimPreserve(33);
  EXPECT_EQ(test::ToHex(data), "C7 20 " + std::string(kAbcSha256));
  // Its own request becomes its data.
  ASSERT_TRUE(record_.BinaryDataSet(ZELSerialType::BinaryData, data, 31));
  EXPECT_EQ(record_.DataToSign(), "ABWt");
}

}  // namespace
