#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "Support.h"
#include "VnZEL10cmn/booking/clsZelTransAct.h"
#include "VnZEL10cmn/booking/clsZelVatItem.h"
#include "VnZEL10cmn/booking/clsZelVatList.h"
#include "tests/booking/Support.h"

namespace {

using test::ByteArray;
using test::Currency;
using test::ExpectError;
using test::ExpectNoError;
using test::ZELSerialType;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelVatItem;
using VnZEL10cmn::clsZelVatList;
using VnZEL10cmn::ZELHashFmt;

/// A signed sale.
class Booking : public testing::Test {
 protected:
  Booking() {
    test::FillSale(booking_);
    test::BuildRequest(booking_);
    EXPECT_TRUE(test::HandIn(booking_, ZELSerialType::Response, test::kSaleResponse));
  }

  clsZelTransAct booking_;
};

TEST_F(Booking, TakesItsTextsAsOperatorAndProfile) {
  booking_.Operator("Anna Maria Huber");
  booking_.Operator(std::string_view(booking_.Operator()).substr(5));
  EXPECT_EQ(booking_.Operator(), "Maria Huber");
  booking_.ZelProfile(booking_.Operator());
  EXPECT_EQ(booking_.ZelProfile(), "Maria Huber");
  booking_.Operator(booking_.ZelProfile());
  EXPECT_EQ(booking_.Operator(), "Maria Huber");
  booking_.Operator(booking_.ZelRespSignature());
  EXPECT_EQ(booking_.Operator(), "AQIDBAUGBwgJCgsM");
  booking_.ZelProfile(booking_.ZelRespTpID());
  EXPECT_EQ(booking_.ZelProfile(), "DE1");
}

TEST_F(Booking, LooksForItsTexts) {
  EXPECT_EQ(booking_.ItemK(booking_.ItemHash()), nullptr);
  EXPECT_TRUE(booking_.RemoveItem(nullptr, booking_.ZelRqstData()));
  EXPECT_TRUE(booking_.RemoveItem(nullptr, booking_.Operator()));
  EXPECT_EQ(booking_.ItemCount(), 1);
}

TEST_F(Booking, TakesItsErrorTexts) {
  NEEDS_ERROR_TEXTS_AS_VALUES();
  EXPECT_FALSE(booking_.AddItem(booking_.ItemI(1)));
  EXPECT_TRUE(booking_.RemoveItem(nullptr, booking_.ErrorObject().ErrorMsg()));
  EXPECT_EQ(booking_.ItemCount(), 1);
  EXPECT_FALSE(booking_.AddItem(booking_.ItemI(1)));
  booking_.Operator(booking_.ErrorObject().ErrorFunction());
  EXPECT_EQ(booking_.Operator(), "AddItem.[AddItem");
  EXPECT_FALSE(booking_.AddItem(booking_.ItemI(1)));
  EXPECT_TRUE(booking_.ClearItems(nullptr, booking_.ErrorObject().ErrorMsg()));
  EXPECT_EQ(booking_.ItemCount(), 0);
}

TEST_F(Booking, RefusesAndRemovesAnItemGivenByItsPlace) {
  EXPECT_FALSE(booking_.AddItem(*booking_.begin()));
  ExpectError(booking_.ErrorObject(), 9306, true, "AddItem.[AddItem]",
              "Ein Buchungsposten konnte nicht übernommen werden\r\n"
              "    Instanz-ID ..........: " +
                  booking_.ItemI(1)->InstanceID());
  EXPECT_TRUE(booking_.RemoveItem(*booking_.begin()));
  EXPECT_EQ(booking_.ItemCount(), 0);
  ExpectNoError(booking_);
}

TEST_F(Booking, ClearsItsItemsGivenByTheirPlace) {
  EXPECT_TRUE(booking_.ClearItems(*booking_.begin(), booking_.ZelProfile()));
  EXPECT_EQ(booking_.ItemCount(), 0);
}

TEST_F(Booking, ImportsTheDocumentThatItExportsInto) {
  std::string document = "what was there before";
  ASSERT_TRUE(booking_.XmlHandler(document, true));
  const std::string exported = document;
  ASSERT_TRUE(booking_.XmlHandler(document, false));
  EXPECT_EQ(document, exported);
  ASSERT_TRUE(booking_.XmlHandler(document, true));
  EXPECT_EQ(document, exported);
}

TEST_F(Booking, TakesInTheArrayThatItHandsOutInto) {
  ByteArray data = ByteArray::WithBounds(0, 99);
  std::int32_t length = 0;
  // The length is given as the start as well.
  ASSERT_TRUE(booking_.BinaryDataGet(ZELSerialType::Response, data, length, &length));
  EXPECT_EQ(length, 62);
  ASSERT_TRUE(booking_.BinaryDataSet(ZELSerialType::Response, data, 0, length));
  EXPECT_EQ(booking_.ZelRespSignature(), test::kSaleSignature);
  ASSERT_TRUE(booking_.BinaryDataGet(ZELSerialType::Request, data, 0, &length));
  EXPECT_EQ(test::ToHex(data), test::SaleRequest());
  ASSERT_TRUE(booking_.BinaryDataSet(ZELSerialType::Request, data, 0, length));
}

TEST_F(Booking, GivesAllValuesOfAContainerIntoOne) {
  Currency value;
  EXPECT_TRUE(booking_.GetContainerValues(1, value, value, value));
  EXPECT_EQ(value, Currency(19)) << "the rate is the last";
}

TEST(VatItem, TakesThePriceFromItsResults) {
  clsZelVatItem rates;
  Currency vat = 119;
  EXPECT_TRUE(rates.CalcVat(vat, 1, vat));
  EXPECT_EQ(vat, Currency(19));
  Currency price = 119;
  EXPECT_TRUE(rates.CalcVat(price, 1, vat, &price));
  EXPECT_EQ(vat, Currency(19));
  EXPECT_EQ(price, Currency(100));
  EXPECT_TRUE(rates.CalcVat(price, 1, vat, nullptr, &price, true));
  EXPECT_EQ(vat, Currency(19));
  EXPECT_EQ(price, Currency(119));
  rates.VATrate(2, rates.VATrate(1));
  EXPECT_EQ(rates.VATrate(2), Currency(19));
  EXPECT_TRUE(rates.SetDates(rates.ValidUpTo(), rates.ValidFrom()));
  EXPECT_EQ(rates.ValidFrom(), test::Date::FromCivil(2007, 1, 1));
}

TEST(VatList, RefusesASetGivenByItsPlace) {
  clsZelVatList list;
  EXPECT_FALSE(list.AddItem(*list.begin()));
  ExpectError(list.ErrorObject(), 9000, true, "AddItem",
              "Zeitraumüberschneidung gefunden!\r\n"
              "    Neu von ...........: 01.01.2000 00:00:00\r\n"
              "    vorhanden von .....: 01.01.2000 00:00:00\r\n"
              "    vorhanden bis .....: 31.12.2006 23:59:59");
  EXPECT_EQ(list.Count(), 2);
  const auto first = *list.begin();
  list.Clear();
  EXPECT_TRUE(list.AddItem(first));
  EXPECT_EQ(list.Count(), 1);
}

TEST(Container, ReadsTheArrayThatItWritesInto) {
  VnZEL10cmn::clsZelContainer container;
  ByteArray data = test::FromHex("E1 0D D8 03 01 19 0C DA 02 19 0C DB 02 19 00");
  data.RedimPreserve(40);
  std::int32_t start = 0;
  ASSERT_TRUE(container.BinaryDataSet(data, start));
  EXPECT_EQ(start, 15);
  start = 0;
  ASSERT_TRUE(container.BinaryDataGet(data, start));
  EXPECT_EQ(start, 15);
  data.RedimPreserve(14);
  EXPECT_EQ(test::ToHex(data), "E1 0D D8 03 01 19 0C DA 02 19 0C DB 02 19 00");
}

}  // namespace
