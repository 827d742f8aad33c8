#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/items/clsZelItemList.h"
#include "tests/items/HostItem.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace {

using test::FromHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::Currency;

// The Base64 text of a digest, computed by libcrypto.
std::string DigestText(const EVP_MD* algorithm, std::string_view hex) {
  const ByteArray bytes = FromHex(hex);
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned int length = 0;
  EXPECT_EQ(EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, algorithm, nullptr), 1);
  std::array<unsigned char, 2 * EVP_MAX_MD_SIZE> text{};
  const int count = EVP_EncodeBlock(text.data(), digest.data(), static_cast<int>(length));
  return {text.begin(), text.begin() + count};
}

std::string Sha1Text(std::string_view hex) { return DigestText(EVP_sha1(), hex); }
std::string Sha256Text(std::string_view hex) { return DigestText(EVP_sha256(), hex); }

std::string Hash(clsZelItemList& list, bool bit256, bool asBase32 = false, bool grouped = false,
                 std::string_view separator = {}) {
  std::string text = "unverändert";
  EXPECT_TRUE(list.GetItemHash(bit256, asBase32, grouped, text, separator));
  test::ExpectNoError(list);
  return text;
}

std::shared_ptr<clsZelItemCash> Bread(std::int64_t cents) {
  auto item = std::make_shared<clsZelItemCash>();
  EXPECT_TRUE(item->SetItemData(1, "Brot", "", Currency::FromScaled(cents * 100)));
  return item;
}

TEST(clsZelItemListHash, Sha1IsTheOrdinaryDigestOfTheBinaryForm) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Bread(199)));
  EXPECT_EQ(Hash(list, false), Sha1Text("A0 01 31 A2 04 62 72 6F 74 B1 02 19 9C"));
  EXPECT_EQ(Hash(list, false), "+/Sb4FAnSOURRdFJZlPGGU8+6O4=");
}

TEST(clsZelItemListHash, Sha256HashesByte9CAsItsCharactersLowByte53) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Bread(199)));
  EXPECT_EQ(Hash(list, true), Sha256Text("A0 01 31 A2 04 62 72 6F 74 B1 02 19 53"));
  EXPECT_EQ(Hash(list, true), "b+GUz8hil6cSggSsiL8fNn66MDKgyHnfwlGSIivryAw=");
}

TEST(clsZelItemListHash, Sha256OfPricesWithBytes80To99) {
  struct Case {
    std::int64_t cents;
    std::string_view hashed;
  };
  for (const Case& each : {Case{1808, "01 AC 52"},      // 01 80 8C
                           Case{1828, "01 1A 52"},      // 01 82 8C
                           Case{1999, "01 22 53"},      // 01 99 9C
                           Case{1997, "01 22 7C"},      // 01 99 7C
                           Case{8680, "08 68 0C"},      // 08 68 0C, none of these bytes
                           Case{-1999, "01 22 9D"}}) {  // 01 99 9D
    clsZelItemList list;
    EXPECT_TRUE(list.AddItem(Bread(each.cents)));
    EXPECT_EQ(Hash(list, true), Sha256Text("A0 01 31 A2 04 62 72 6F 74 B1 03 " + std::string(each.hashed)))
        << each.cents;
  }
}

TEST(clsZelItemListHash, EveryByteFrom80To9FHashesAsItsCharacter) {
  clsZelItemList list;
  const auto item = std::make_shared<HostItem>("a");
  item->bytes = FromHex(
      "80 81 82 83 84 85 86 87 88 89 8A 8B 8C 8D 8E 8F 90 91 92 93 94 95 96 97 98 99 9A 9B 9C 9D 9E 9F");
  EXPECT_TRUE(list.AddItem(item));
  EXPECT_EQ(Hash(list, true), Sha256Text("AC 81 1A 92 1E 26 20 21 C6 30 60 39 52 8D 7D 8F "
                                         "90 18 19 1C 1D 22 13 14 DC 22 61 3A 53 9D 7E 78"));
  EXPECT_EQ(Hash(list, false), Sha1Text("80 81 82 83 84 85 86 87 88 89 8A 8B 8C 8D 8E 8F "
                                        "90 91 92 93 94 95 96 97 98 99 9A 9B 9C 9D 9E 9F"));
}

TEST(clsZelItemListHash, OtherBytesHashAsTheyAre) {
  clsZelItemList list;
  const auto item = std::make_shared<HostItem>("a");
  item->bytes = FromHex("00 01 1F 20 7E 7F A0 A1 AC C7 E4 FE FF 00");
  EXPECT_TRUE(list.AddItem(item));
  EXPECT_EQ(Hash(list, true), Sha256Text("00 01 1F 20 7E 7F A0 A1 AC C7 E4 FE FF 00"));
  EXPECT_EQ(Hash(list, false), Sha1Text("00 01 1F 20 7E 7F A0 A1 AC C7 E4 FE FF 00"));
}

TEST(clsZelItemListHash, AllItemsAreHashedInOrderAndNothingElse) {
  const auto one = std::make_shared<HostItem>("a");
  one->bytes = FromHex("A0 01 31 A2 01 61");
  const auto two = std::make_shared<HostItem>("b");
  two->bytes = FromHex("A0 01 32 A2 01 62");
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(one));
  EXPECT_TRUE(list.AddItem(two));
  const std::string expected = Sha1Text("A0 01 31 A2 01 61 A0 01 32 A2 01 62");
  EXPECT_EQ(Hash(list, false), expected);
  list.ZelProfile("anderes Profil");
  EXPECT_EQ(Hash(list, false), expected);
  clsZelItemList swapped;
  EXPECT_TRUE(swapped.AddItem(two));
  EXPECT_TRUE(swapped.AddItem(one));
  EXPECT_EQ(Hash(swapped, false), Sha1Text("A0 01 32 A2 01 62 A0 01 31 A2 01 61"));
}

TEST(clsZelItemListHash, AnEmptyListHashesTheEmptyMessage) {
  clsZelItemList list;
  EXPECT_EQ(Hash(list, false), "2jmj7l5rSw0yVb/vlWAYkK/YBwk=");
  EXPECT_EQ(Hash(list, true), "47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=");
}

TEST(clsZelItemListHash, Base32Texts) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Bread(199)));
  EXPECT_EQ(Hash(list, false, true), "7P2JXYCQE5EOKEKF2FEWMU6GDFHT52HO");
  EXPECT_EQ(Hash(list, true, true), "N7QZJT6IMKL2OEUCASWIRPY7GZ7LUMBSUDEHTX6CKGJCEK7LZAGA====");
}

TEST(clsZelItemListHash, GroupsOfFiveAreJoinedByTheSeparator) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Bread(199)));
  EXPECT_EQ(Hash(list, false, false, true, "-"), "+/Sb4-FAnSO-URRdF-JZlPG-GU8+6-O4=");
  EXPECT_EQ(Hash(list, false, true, true, "-"), "7P2JX-YCQE5-EOKEK-F2FEW-MU6GD-FHT52-HO");
  EXPECT_EQ(Hash(list, true, true, true, ".."),
            "N7QZJ..T6IMK..L2OEU..CASWI..RPY7G..Z7LUM..BSUDE..HTX6C..KGJCE..K7LZA..GA===..=");
}

TEST(clsZelItemListHash, AnOmittedSeparatorIsABlank) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Bread(199)));
  EXPECT_EQ(Hash(list, true, false, true), "b+GUz 8hil6 cSggS siL8f Nn66M DKgyH nfwlG SIivr yAw=");
}

TEST(clsZelItemListHash, WithoutGroupingTheSeparatorIsIgnored) {
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(Bread(199)));
  EXPECT_EQ(Hash(list, false, false, false, "-"), "+/Sb4FAnSOURRdFJZlPGGU8+6O4=");
}

TEST(clsZelItemListHash, ChangingAnyFieldChangesTheHash) {
  const auto item = Bread(199);
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(item));
  std::vector<std::string> seen{Hash(list, false)};
  const auto expectNew = [&](const char* what) {
    const std::string hash = Hash(list, false);
    for (const std::string& earlier : seen) {
      EXPECT_NE(hash, earlier) << what;
    }
    seen.push_back(hash);
  };
  item->Quantity(2);
  expectNew("quantity");
  item->Unit("kg");
  expectNew("unit");
  item->Name("Brote");
  expectNew("name");
  item->DiscSurc(true);
  expectNew("discount");
  item->Voucher(true);
  expectNew("voucher");
  item->ThirdParty(true);
  expectNew("third party");
  for (std::int32_t i = 1; i <= 6; ++i) {
    item->Price(i, 100 + i);
    expectNew("price");
  }
}

TEST(clsZelItemListHash, AFailingItemFailsTheHashAndKeepsTheText) {
  test::TestLog log;
  clsZelItemList list;
  list.LogHandler(log.Handler());
  const auto item = std::make_shared<HostItem>("a");
  item->failGet = true;
  EXPECT_TRUE(list.AddItem(item));
  std::string text = "unverändert";
  EXPECT_FALSE(list.GetItemHash(true, false, false, text));
  EXPECT_TRUE(list.HasError());
  EXPECT_EQ(text, "unverändert");
  item->failGet = false;
  EXPECT_TRUE(list.GetItemHash(true, false, false, text));
  test::ExpectNoError(list);
}

TEST(clsZelItemListHash, ItemsAreNotChangedByHashing) {
  const auto item = Bread(199);
  clsZelItemList list;
  EXPECT_TRUE(list.AddItem(item));
  Hash(list, true);
  EXPECT_EQ(item->Name(), "Brot");
  EXPECT_EQ(list.ItemCount(), 1);
}

}  // namespace
