// The item hash, as text and as bytes.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "VnZEL10cmn/booking/clsZelTransAct.h"
#include "tests/booking/Support.h"

namespace VnZEL10cmn {
namespace {

using test::BuildRequest;
using test::FakeItem;
using test::FillSale;
using test::FromHex;
using test::HandIn;
using test::ToHex;

constexpr const char* kDigest =
    "DB 83 31 5B C2 05 40 8C 53 6D 18 A7 56 21 B5 68 2C 71 D4 EA CD 2E 83 4E 7C D5 76 63 53 78 3E 6D";

TEST(TransActItemHash, OfThePresentItems) {
  clsZelTransAct booking;
  FillSale(booking);
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base64), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base32H), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base32),
            "3OBTCW6CAVAIYU3NDCTVMINVNAWHDVHKZUXIGTT42V3GGU3YHZWQ====");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base16),
            "DB83315BC205408C536D18A75621B5682C71D4EACD2E834E7CD5766353783E6D");
  test::ExpectNoError(booking);
  // The stored hash is that of the last request.
  EXPECT_EQ(booking.ItemHash(), "");
}

TEST(TransActItemHash, InGroups) {
  clsZelTransAct booking;
  FillSale(booking);
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base64, false, 5),
            "24MxW-8IFQI-xTbRi-nViG1-aCxx1-OrNLo-NOfNV-2Y1N4-Pm0=");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base32H, false, 5),
            "24MxW-8IFQI-xTbRi-nViG1-aCxx1-OrNLo-NOfNV-2Y1N4-Pm0=");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base32, false, 8),
            "3OBTCW6C-AVAIYU3N-DCTVMINV-NAWHDVHK-ZUXIGTT4-2V3GGU3Y-HZWQ====");
  // Grouped hexadecimal text leaves out its last group.
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base16, false, 8),
            "DB83315B-C205408C-536D18A7-5621B568-2C71D4EA-CD2E834E-7CD57663");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base64, false, -3),
            "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
}

TEST(TransActItemHash, OtherFormatsAreShownAsBase64) {
  clsZelTransAct booking;
  FillSale(booking);
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt{4}), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt{-1}), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
}

TEST(TransActItemHash, Sha1) {
  clsZelTransAct booking;
  FillSale(booking);
  booking.UseSHA256(false);
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base64), "1GZUHSrdJ6VfdAc6/W6svhajN/o=");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base32), "2RTFIHJK3UT2KX3UA45P23VMXYLKGN72");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base16), "D466541D2ADD27A55F74073AFD6EACBE16A337FA");
}

TEST(TransActItemHash, FromMemoryIsThatOfTheLastRequest) {
  clsZelTransAct booking;
  FillSale(booking);
  (void)BuildRequest(booking);
  ASSERT_TRUE(booking.AddItem(test::CashItem("x", 1)));
  const std::string changed = booking.GetItemHash(ZELHashFmt::Base64);
  EXPECT_EQ(changed, test::Base64(test::ItemSha256(
                         FromHex(std::string(test::kSaleItems) + " A0 01 31 A2 01 78 B1 02 10 0C"))));
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base64, true), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base32, true, 8),
            "3OBTCW6C-AVAIYU3N-DCTVMINV-NAWHDVHK-ZUXIGTT4-2V3GGU3Y-HZWQ====");
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base16, true),
            "DB83315BC205408C536D18A75621B5682C71D4EACD2E834E7CD5766353783E6D");
  EXPECT_EQ(booking.ItemHash(), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
}

TEST(TransActItemHash, NothingToHashGivesAnEmptyText) {
  clsZelTransAct booking;
  for (const ZELHashFmt format :
       {ZELHashFmt::Base64, ZELHashFmt::Base32, ZELHashFmt::Base32H, ZELHashFmt::Base16}) {
    EXPECT_EQ(booking.GetItemHash(format), "");
    EXPECT_EQ(booking.GetItemHash(format, true), "");
    EXPECT_EQ(booking.GetItemHash(format, false, 5), "");
    test::ExpectNoError(booking);
  }
  FillSale(booking);
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base64, true), "");
  EXPECT_NE(booking.GetItemHash(ZELHashFmt::Base64), "");
}

TEST(TransActItemHash, FailureOfAnItem) {
  test::TestLog log;
  clsZelTransAct booking;
  const auto item = std::make_shared<FakeItem>();
  item->failAtWrite = 1;
  ASSERT_TRUE(booking.AddItem(item));
  for (const ZELHashFmt format :
       {ZELHashFmt::Base64, ZELHashFmt::Base32, ZELHashFmt::Base32H, ZELHashFmt::Base16}) {
    item->writes = 0;
    EXPECT_EQ(booking.GetItemHash(format), "##FEHLER##");
    test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Cmn_NotSpec, true, "GetItemHash",
                      "Hashausgabe nicht möglich!\r\nEine interne Funktion meldete einen Fehler");
  }
  // A stored hash needs no items.
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base64, true), "");
  test::ExpectNoError(booking);
}

TEST(TransActItemHash, FailureIsLoggedWithItsReasonByTheBooking) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  ASSERT_TRUE(booking.AddItem(std::make_shared<clsZelItemCash>()));
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base64), "##FEHLER##");
  const std::vector<std::string> sources = test::LogSources(log);
  ASSERT_FALSE(sources.empty());
  EXPECT_EQ(sources.back(), "clsZelTransAct");
  EXPECT_EQ(std::count(sources.begin(), sources.end(), "clsZelTransAct"), 2);
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"BinaryDataGet", "GenItemHash", "GetItemHash"}));
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9301", "9000", "9000"}));
}

// As bytes

TEST(TransActItemHashBytes, AreCopiedToStart) {
  clsZelTransAct booking;
  FillSale(booking);
  ByteArray data = ByteArray::WithBounds(0, 33);
  std::int32_t length = -1;
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::ItemHash, data, 1, &length));
  test::ExpectNoError(booking);
  EXPECT_EQ(length, 32);
  EXPECT_EQ(ToHex(data), "00 " + std::string(kDigest) + " 00");
  booking.UseSHA256(false);
  data.Redim(0, 19);
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::ItemHash, data, 0, &length));
  EXPECT_EQ(length, 20);
  EXPECT_EQ(ToHex(data), "D4 66 54 1D 2A DD 27 A5 5F 74 07 3A FD 6E AC BE 16 A3 37 FA");
}

TEST(TransActItemHashBytes, NothingToHashCopiesNothing) {
  clsZelTransAct booking;
  ByteArray data = FromHex("01 02");
  std::int32_t length = -1;
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::ItemHash, data, 0, &length));
  test::ExpectNoError(booking);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(ToHex(data), "01 02");
}

TEST(TransActItemHashBytes, FailureOfAnItemKeepsItsOwnText) {
  clsZelTransAct booking;
  const auto item = std::make_shared<FakeItem>();
  item->failAtWrite = 1;
  ASSERT_TRUE(booking.AddItem(item));
  ByteArray data = ByteArray::WithBounds(0, 99);
  const ByteArray before = data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::ItemHash, data, 0));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Cmn_NotSpec, true, "GenItemHash",
                    "Posten-Hash-Erzeugung nicht möglich!\r\n"
                    "Der Hashwert konnte nicht aus den\r\n"
                    "Einzelposten ermittelt werden.");
  EXPECT_EQ(data, before);
}

TEST(TransActItemHashBytes, TooSmallABuffer) {
  clsZelTransAct booking;
  FillSale(booking);
  ByteArray data = ByteArray::WithBounds(0, 31);
  const ByteArray before = data;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::ItemHash, data, 1));
  test::ExpectError(booking.ErrorObject(), ZELErrorCodes::Err_Zel_CnvDataSize, true, "BinaryDataGet",
                    "Serialisierung der Buchung nicht möglich!\r\n"
                    "Der Datenpuffer ist zu klein.\r\n"
                    "    Start ..........: 1\r\n"
                    "    Länge ..........: 32\r\n"
                    "    Leseende .......: 32\r\n"
                    "    Obergrenze .....: 31");
  EXPECT_EQ(data, before);
  EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::ItemHash, data, 0));
  EXPECT_EQ(ToHex(data), kDigest);
}

}  // namespace
}  // namespace VnZEL10cmn
