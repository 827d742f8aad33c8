#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

#include "VnZEL10cmn/device/ZelLifeCycle.h"
#include "VnZEL10cmn/device/ZelTags.h"
#include "VnZEL10cmn/device/ZelXmlTags.h"

namespace VnZEL10cmn {
namespace {

static_assert(std::is_same_v<std::underlying_type_t<ZelTags>, std::uint8_t>);
static_assert(std::is_same_v<std::underlying_type_t<ZelRqstCounter>, std::int32_t>);
static_assert(std::is_same_v<std::underlying_type_t<ZelRqstAmounts>, std::int32_t>);
static_assert(std::is_same_v<std::underlying_type_t<ZelRqstDates>, std::int32_t>);
static_assert(std::is_same_v<std::underlying_type_t<ZelLifeCycle>, std::int32_t>);
static_assert(std::is_same_v<std::underlying_type_t<ZelXmlTags>, std::int32_t>);

template <class Enumeration>
int Number(Enumeration value) {
  return static_cast<int>(value);
}

TEST(ZelTags, HasThePublishedValues) {
  EXPECT_EQ(Number(ZelTags::Signature), 0x9E);
  EXPECT_EQ(Number(ZelTags::Lifecycle), 0xC0);
  EXPECT_EQ(Number(ZelTags::Serial_No), 0xC1);
  EXPECT_EQ(Number(ZelTags::Version), 0xC2);
  EXPECT_EQ(Number(ZelTags::Transport_Pin), 0xC3);
  EXPECT_EQ(Number(ZelTags::Tp_ID), 0xC4);
  EXPECT_EQ(Number(ZelTags::Tp_ID_No), 0xC5);
  EXPECT_EQ(Number(ZelTags::Operator), 0xC6);
  EXPECT_EQ(Number(ZelTags::Hash_Trans_Items), 0xC7);
  EXPECT_EQ(Number(ZelTags::Currency), 0xC8);
  EXPECT_EQ(Number(ZelTags::Vat_AddOn), 0xC9);
  EXPECT_EQ(Number(ZelTags::Training), 0xCA);
  EXPECT_EQ(Number(ZelTags::Seq_Nr_Trans), 0xCB);
  EXPECT_EQ(Number(ZelTags::Seq_Nr_Reprt), 0xCC);
  EXPECT_EQ(Number(ZelTags::tDate), 0xCD);
  EXPECT_EQ(Number(ZelTags::tTime), 0xCE);
  EXPECT_EQ(Number(ZelTags::tMonth), 0xCF);
  EXPECT_EQ(Number(ZelTags::Month_Start), 0xD0);
  EXPECT_EQ(Number(ZelTags::Month_End), 0xD1);
  EXPECT_EQ(Number(ZelTags::Seq_No_Trans_First), 0xD2);
  EXPECT_EQ(Number(ZelTags::Seq_No_Trans_Last), 0xD3);
  EXPECT_EQ(Number(ZelTags::Hash_Reprt_Items), 0xD4);
  EXPECT_EQ(Number(ZelTags::Country_Code), 0xD5);
  EXPECT_EQ(Number(ZelTags::Trnvr_Thirdparty), 0xD6);
  EXPECT_EQ(Number(ZelTags::Deliverynote), 0xD7);
  EXPECT_EQ(Number(ZelTags::Trnvr), 0xD8);
  EXPECT_EQ(Number(ZelTags::Trnvr_neg), 0xD9);
  EXPECT_EQ(Number(ZelTags::Trnvr_Vat), 0xDA);
  EXPECT_EQ(Number(ZelTags::Trnvr_Vat_Rate), 0xDB);
  EXPECT_EQ(Number(ZelTags::Trnvr_Counter), 0xDC);
  EXPECT_EQ(Number(ZelTags::Trnvr_Overflow), 0xDD);
  EXPECT_EQ(Number(ZelTags::Trnvr_Vat_Changed), 0xDE);
  EXPECT_EQ(Number(ZelTags::Container_Vat_1), 0xE1);
  EXPECT_EQ(Number(ZelTags::Container_Vat_2), 0xE2);
  EXPECT_EQ(Number(ZelTags::Container_Vat_3), 0xE3);
  EXPECT_EQ(Number(ZelTags::Container_Vat_4), 0xE4);
  EXPECT_EQ(Number(ZelTags::Container_Vat_5), 0xE5);
  EXPECT_EQ(Number(ZelTags::Container_Vat_6), 0xE6);
  EXPECT_EQ(Number(ZelTags::Container_ThrdP), 0xE7);
  EXPECT_EQ(Number(ZelTags::Container_DlvNote), 0xE8);
  EXPECT_EQ(Number(ZelTags::Container_Training), 0xE9);
  EXPECT_EQ(Number(ZelTags::Item_Quantity), 0xA0);
  EXPECT_EQ(Number(ZelTags::Item_Unit), 0xA1);
  EXPECT_EQ(Number(ZelTags::Item_Name), 0xA2);
  EXPECT_EQ(Number(ZelTags::Item_DiscSurch), 0xAA);
  EXPECT_EQ(Number(ZelTags::Item_Voucher), 0xAB);
  EXPECT_EQ(Number(ZelTags::Item_Thirdparty), 0xAC);
  EXPECT_EQ(Number(ZelTags::Item_Price1), 0xB1);
  EXPECT_EQ(Number(ZelTags::Item_Price2), 0xB2);
  EXPECT_EQ(Number(ZelTags::Item_Price3), 0xB3);
  EXPECT_EQ(Number(ZelTags::Item_Price4), 0xB4);
  EXPECT_EQ(Number(ZelTags::Item_Price5), 0xB5);
  EXPECT_EQ(Number(ZelTags::Item_Price6), 0xB6);
}

TEST(ZelTags, SelectorsHaveTheValuesOfTheirTags) {
  EXPECT_EQ(Number(ZelRqstCounter::Seq_Nr_Trans), 203);
  EXPECT_EQ(Number(ZelRqstCounter::Seq_Nr_Reprt), 204);
  EXPECT_EQ(Number(ZelRqstCounter::Seq_No_Trans_First), 210);
  EXPECT_EQ(Number(ZelRqstCounter::Seq_No_Trans_Last), 211);
  EXPECT_EQ(Number(ZelRqstCounter::Trnvr_Counter), 220);
  EXPECT_EQ(Number(ZelRqstAmounts::Trnvr_Thirdparty), 214);
  EXPECT_EQ(Number(ZelRqstAmounts::Trnvr), 216);
  EXPECT_EQ(Number(ZelRqstAmounts::Trnvr_neg), 217);
  EXPECT_EQ(Number(ZelRqstAmounts::Trnvr_Vat), 218);
  EXPECT_EQ(Number(ZelRqstAmounts::Item_Price1), 177);
  EXPECT_EQ(Number(ZelRqstAmounts::Item_Price2), 178);
  EXPECT_EQ(Number(ZelRqstAmounts::Item_Price3), 179);
  EXPECT_EQ(Number(ZelRqstAmounts::Item_Price4), 180);
  EXPECT_EQ(Number(ZelRqstAmounts::Item_Price5), 181);
  EXPECT_EQ(Number(ZelRqstAmounts::Item_Price6), 182);
  EXPECT_EQ(Number(ZelRqstDates::tDate), 205);
  EXPECT_EQ(Number(ZelRqstDates::Month_Start), 208);
  EXPECT_EQ(Number(ZelRqstDates::Month_End), 209);
}

TEST(ZelLifeCycle, HasThePublishedValues) {
  EXPECT_EQ(Number(ZelLifeCycle::Undefined), 0);
  EXPECT_EQ(Number(ZelLifeCycle::Initialized), 1);
  EXPECT_EQ(Number(ZelLifeCycle::Personalized), 2);
  EXPECT_EQ(Number(ZelLifeCycle::Activated), 3);
  EXPECT_EQ(Number(ZelLifeCycle::Deactivated), 4);
}

TEST(ZelXmlTags, HasThePublishedValues) {
  EXPECT_EQ(Number(ZelXmlTags::NotSet), 0);
  EXPECT_EQ(Number(ZelXmlTags::Transaction), 1);
  EXPECT_EQ(Number(ZelXmlTags::Report), 2);
  EXPECT_EQ(Number(ZelXmlTags::ItemList), 3);
  EXPECT_EQ(Number(ZelXmlTags::TransRequest), 4);
  EXPECT_EQ(Number(ZelXmlTags::TransResponse), 5);
  EXPECT_EQ(Number(ZelXmlTags::ReportRequest), 6);
  EXPECT_EQ(Number(ZelXmlTags::ReportRespone), 7);
}

}  // namespace
}  // namespace VnZEL10cmn
