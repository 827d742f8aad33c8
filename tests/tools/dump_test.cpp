// The tree of records: every form of input, and what is shown of damaged ones.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "Hex.h"
#include "Program.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

std::string Bytes(std::string_view hexadecimal) {
  const std::vector<std::uint8_t> bytes = test::internal::HexBytes(hexadecimal);
  return {bytes.begin(), bytes.end()};
}

test::Outcome Dump(const std::string& content, const std::vector<std::string>& more = {}) {
  const test::Desk desk;
  desk.WriteFile("file", content);
  std::vector<std::string> arguments{"dump", "file"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return desk.Zel(arguments);
}

constexpr std::string_view kRequest =
    "CD 04 20 26 12 31 CE 02 08 05 C6 07 4B 61 73 73 65 20 31"
    "C7 20 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F"
    "C8 02 03 D2 C9 00 CA 00 D7 00 E1 18 D8 03 11 90 0C D9 03 00 50 0C DA 03 01 90 0C DB 02 19 00 D6 03 00 "
    "12 3D";

constexpr std::string_view kRequestTree =
    "       0  CD  tDate                 4  2026-12-31\n"
    "       6  CE  tTime                 2  08:05\n"
    "      10  C6  Operator              7  \"Kasse 1\"\n"
    "      19  C7  Hash_Trans_Items     32  AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8=\n"
    "      53  C8  Currency              2  978\n"
    "      57  C9  Vat_AddOn             0  yes\n"
    "      59  CA  Training              0  yes\n"
    "      61  D7  Deliverynote          0  yes\n"
    "      63  E1  Container_Vat_1      24\n"
    "        65  D8  Trnvr                 3  119.00\n"
    "        70  D9  Trnvr_neg             3  5.00\n"
    "        75  DA  Trnvr_Vat             3  19.00\n"
    "        80  DB  Trnvr_Vat_Rate        2  19.00 %\n"
    "        84  D6  Trnvr_Thirdparty      3  -1.23\n";

TEST(Dump, ShowsEveryRecordOfARequest) {
  const test::Outcome outcome = Dump(Bytes(kRequest));
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, "Booking request (89 bytes, binary)\n" + std::string(kRequestTree));
}

TEST(Dump, RecognisesHexadecimalAndBase64Text) {
  const test::Outcome hexadecimal = Dump(std::string(kRequest) + "\n");
  EXPECT_EQ(hexadecimal.status, 0);
  EXPECT_EQ(hexadecimal.out, "Booking request (89 bytes, hexadecimal)\n" + std::string(kRequestTree));
  const test::Outcome base64 = Dump("\n" + test::ToBase64(Bytes(kRequest)) + "\r\n");
  EXPECT_EQ(base64.status, 0);
  EXPECT_EQ(base64.out, "Booking request (89 bytes, base64)\n" + std::string(kRequestTree));
  EXPECT_EQ(Dump("a0-01-32-a2-03-74-65-65").out,
            "Item list (8 bytes, hexadecimal)\n"
            "  Item 1\n"
            "         0  A0  Item_Quantity         1  \"2\"\n"
            "         3  A2  Item_Name             3  \"tee\"\n");
  // A mark that some editors put in front of a text is no part of it.
  EXPECT_EQ(Dump("\xEF\xBB\xBF"
                 "A0013AA203746565")
                .out.substr(0, 33),
            "Item list (8 bytes, hexadecimal)\n");
}

TEST(Dump, GroupsTheRecordsOfAnItemListByItems) {
  const test::Outcome outcome = Dump(Bytes(
      "A0 05 30 2E 33 38 35 A1 02 6B 67 A2 03 74 65 65 AA 00 AB 00 AC 00 B1 02 01 9C B2 02 02 9D B3 02 03 9C"
      "B4 02 04 9C B5 02 05 9C B6 02 06 9C A0 01 31 A2 01 78"));
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out,
            "Item list (52 bytes, binary)\n"
            "  Item 1\n"
            "         0  A0  Item_Quantity         5  \"0.385\"\n"
            "         7  A1  Item_Unit             2  \"kg\"\n"
            "        11  A2  Item_Name             3  \"tee\"\n"
            "        16  AA  Item_DiscSurch        0  yes\n"
            "        18  AB  Item_Voucher          0  yes\n"
            "        20  AC  Item_Thirdparty       0  yes\n"
            "        22  B1  Item_Price1           2  0.19\n"
            "        26  B2  Item_Price2           2  -0.29\n"
            "        30  B3  Item_Price3           2  0.39\n"
            "        34  B4  Item_Price4           2  0.49\n"
            "        38  B5  Item_Price5           2  0.59\n"
            "        42  B6  Item_Price6           2  0.69\n"
            "  Item 2\n"
            "        46  A0  Item_Quantity         1  \"1\"\n"
            "        49  A2  Item_Name             1  \"x\"\n");
}

constexpr std::string_view kResponse =
    "C4 0B 44 45 31 32 33 34 35 36 37 38 39 C5 01 01 CB 02 01 00 9E 40"
    "10 72 CE 06 69 57 98 87 7B C9 9A 9B 1A A3 71 CE 8D CF A4 CD 06 E6 03 6B D0 7B 30 73 E3 2D 01 C5"
    "3D 93 EC 3F 36 54 EF 14 71 B4 22 15 C2 DD 00 7F A0 D2 9F 6C 07 7E CB 72 13 44 63 89 10 02 9F 40";

TEST(Dump, ShowsAResponse) {
  const test::Outcome outcome = Dump(Bytes(kResponse));
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(
      outcome.out,
      "Booking response (86 bytes, binary)\n"
      "       0  C4  Tp_ID                11  \"DE123456789\"\n"
      "      13  C5  Tp_ID_No              1  1\n"
      "      16  CB  Seq_Nr_Trans          2  256\n"
      "      20  9E  Signature            64  EHLOBmlXmId7yZqbGqNxzo3PpM0G5gNr0Hswc+MtAcU9k+w/NlTvFHG0IhXC3QB"
      "/oNKfbAd+y3ITRGOJEAKfQA==\n");
}

TEST(Dump, ShowsRecordsOfAnyOtherRun) {
  const test::Outcome outcome = Dump(
      "C0 01 03 C1 02 41 42 C2 07 31 2E 30 2E 30 2E 30 C3 06 31 32 33 34 35 36 CC 01 07 CF 03 20 26 11"
      "D0 03 20 26 01 D1 03 20 26 02 D5 02 01 14 D2 01 01 D3 01 09 E9 02 DE 00");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out,
            "Records (56 bytes, hexadecimal)\n"
            "       0  C0  Lifecycle             1  3 Aktiviert\n"
            "       3  C1  Serial_No             2  QUI=\n"
            "       7  C2  Version               7  \"1.0.0.0\"\n"
            "      16  C3  Transport_Pin         6  \"123456\"\n"
            "      24  CC  Seq_Nr_Reprt          1  7\n"
            "      27  CF  tMonth                3  2026-11\n"
            "      32  D0  Month_Start           3  2026-01\n"
            "      37  D1  Month_End             3  2026-02\n"
            "      42  D5  Country_Code          2  276\n"
            "      46  D2  Seq_No_Trans_First    1  1\n"
            "      49  D3  Seq_No_Trans_Last     1  9\n"
            "      52  E9  Container_Training    2\n"
            "        54  DE  Trnvr_Vat_Changed     0  yes\n");
}

TEST(Dump, ShowsADocumentAndReadsStandardInput) {
  const test::Desk desk;
  test::Setting setting;
  setting.input = desk.SignedDocument();
  const test::Outcome outcome = desk.Zel({"dump", "-"}, setting);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, testing::StartsWith("Booking document (XML)\n"
                                               "  Item list (80 bytes)\n"
                                               "    Item 1\n"
                                               "           0  A0  Item_Quantity         1  \"4\"\n"
                                               "           3  A1  Item_Unit             3  \"stk\"\n"
                                               "           8  A2  Item_Name             8  \"br#tchen\"\n"));
  EXPECT_THAT(outcome.out, HasSubstr("  Booking request (88 bytes)\n"
                                     "         0  CD  tDate                 4  2026-11-21\n"));
  EXPECT_THAT(outcome.out, HasSubstr("  Booking response (94 bytes)\n"
                                     "         0  C4  Tp_ID                20  \"SOFTWARE-DEVICE-TEST\"\n"));
}

TEST(Dump, ShowsTheProfileOfAnItemList) {
  const test::Outcome outcome =
      Dump("<transactionEncoded><itemListEncoded profile='imbiss'>" +
           test::ToBase64(Bytes("A0 01 31 A2 01 78")) + "</itemListEncoded><transactionRequest>" +
           test::ToBase64(Bytes(kRequest)) + "</transactionRequest><transactionResponse>" +
           test::ToBase64(Bytes(kResponse)) + "</transactionResponse></transactionEncoded>");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, HasSubstr("  Item list (6 bytes, profile \"imbiss\")\n"));
}

TEST(Dump, JsonHoldsTheSameTree) {
  const test::Outcome outcome = Dump(Bytes(kRequest), {"--json"});
  EXPECT_EQ(outcome.status, 0);
  const json root = json::parse(outcome.out);
  EXPECT_EQ(root["file"], "file");
  EXPECT_EQ(root["form"], "binary");
  EXPECT_EQ(root["faults"], json::array());
  ASSERT_EQ(root["parts"].size(), 1U);
  const json& part = root["parts"][0];
  EXPECT_EQ(part["kind"], "request");
  EXPECT_EQ(part["length"], 89);
  EXPECT_EQ(part["records"][2], json::parse(R"({"name": "Operator", "position": 10, "length": 7, "tag": 198,
                                                "hex": "4B617373652031", "value": "Kasse 1"})"));
  EXPECT_EQ(part["records"][8]["records"][4],
            json::parse(R"({"name": "Trnvr_Thirdparty", "position": 84, "length": 3,
                                                              "tag": 214, "hex": "00123D", "value": "-1.23"})"));
}

TEST(Dump, JsonNamesTheFault) {
  const test::Outcome outcome = Dump("CD 04 20 26 12 31 CE 02 25 05", {"--json"});
  EXPECT_EQ(outcome.status, 1);
  const json root = json::parse(outcome.out);
  EXPECT_EQ(root["parts"][0]["records"].size(), 1U);
  ASSERT_EQ(root["faults"].size(), 1U);
  EXPECT_EQ(root["faults"][0]["position"], 6);
  EXPECT_EQ(root["faults"][0]["unit"], "byte");
  EXPECT_EQ(root["faults"][0]["number"], 9203);
}

struct Damage {
  std::string content;
  std::string shown;   ///< behind the title line
  std::string reason;  ///< on standard error, behind the file's name
};

void PrintTo(const Damage& damage, std::ostream* out) { *out << damage.reason; }

class DamagedInput : public testing::TestWithParam<Damage> {};

TEST_P(DamagedInput, IsShownUpToTheDamage) {
  const test::Outcome outcome = Dump(GetParam().content);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "zel: 'file': " + GetParam().reason + "\n");
  const std::string body = outcome.out.substr(outcome.out.find('\n') + 1);
  EXPECT_EQ(body, GetParam().shown + "  ! " + GetParam().reason + "\n");
}

const std::string kDateLine = "       0  CD  tDate                 4  2026-12-31\n";

INSTANTIATE_TEST_SUITE_P(
    Dump, DamagedInput,
    testing::ValuesIn(std::vector<Damage>{
        Damage{"CD 04 20 26 12 31 CE", kDateLine,
               "byte 6: Die Startposition ist ungültig, es kann keine Längenangabe folgen (Startposition: 6, "
               "Obergrenze: 6) [9205]"},
        Damage{"CD 04 20 26 12 31 CE 02 08", kDateLine,
               "byte 6: Der Datenpuffer ist zu klein. (Startposition: 6, Tag: 0xCE, Länge: 2, Leseende: 9, "
               "Obergrenze: 8) [9204]"},
        Damage{"CD 04 20 26 12 31 CE 01 08 C6 03 41 1F 42",
               kDateLine + "       6  CE  tTime                 1  00:08\n",
               "byte 9: Es wurde ein ungültiger Zeichenwert gefunden! (Tag: 0xC6, Taglänge: 3, Position "
               "total: 12, "
               "Position Tag: 1, Zeichenwert: 31 // 0x1F) [9206]"},
        Damage{"CD 04 20 26 12 3A", "",
               "byte 0: Es wurde ein ungültiger BCD-wert gefunden! (Tag: 0xCD, Taglänge: 4, Position Tag: 0, "
               "Pos. Zeichenf.: 8, Zeichenfolge: 2026123A, Zeichen: A) [9208]"},
        Damage{"CD 04 20 26 12 31 41 00", kDateLine, "byte 6: 0x41 is no tag [9305]"},
        Damage{"CD 04 20 26 12 31 A0 01 31", kDateLine,
               "byte 6: tag 0xA0 (Item_Quantity) can't stand in a booking request [9305]"},
        Damage{"CD 04 20 26 12 31 E1 04 CD 02 08 05", kDateLine,
               "byte 8: tag 0xCD (tDate) can't stand in a container [9305]"},
        Damage{"CD 04 20 26 12 31 C9 01 00", kDateLine,
               "byte 6: Die Maximallänge für dieses TAG wurde überschritten (Startposition: 6, Tag: 0xC9, "
               "Länge: 1, "
               "Maximallänge: 0) [9207]"},
        Damage{
            "CD 04 20 26 12 31 E1 08 D8 02 10 0C D8 05 10 0C",
            kDateLine + "       6  E1  Container_Vat_1       8\n"
                        "         8  D8  Trnvr                 2  1.00\n",
            "byte 12: Der Datenpuffer ist zu klein. (Startposition: 12, Tag: 0xD8, Länge: 5, Leseende: 18, "
            "Obergrenze: 15) [9204]"},
        // Every record is sound, but a mandatory one is missing.
        Damage{"CD 04 20 26 12 31 C8 02 03 D2", kDateLine + "       6  C8  Currency              2  978\n",
               "Die Buchungszeit konnte nicht gelesen werden! (Position: 6) [9301]"},
        // Damaged text: what stands before the damage is decoded.
        Damage{"CD 04 20 26 12 31 CE 02 0x 05", kDateLine,
               "character 25: Es wurde ein ungültiges Zeichen in der hexadezimalen Zeichenfolge entdeckt! "
               "Zeichenposition: 18 (Zeichen: \"X\") [9106]"},
        Damage{"\n zQQgJhIxzgII!Q==", kDateLine,
               "character 14: Es wurde ein ungültiges Zeichen in der Base64-Zeichenfolge entdeckt! "
               "Zeichenposition: 13 (Zeichen: \"!\") [9106]"}}));

INSTANTIATE_TEST_SUITE_P(Empty, DamagedInput,
                         testing::Values(Damage{" \n", "", "byte 0: 0x20 is no tag [9305]"}));

TEST(Dump, ShowsTheSoundPartsOfADamagedDocument) {
  const test::Desk desk;
  std::string xml = desk.SignedDocument();
  xml.replace(xml.find("transactionRequest>"), 1, "T");
  xml = test::WithBytes(xml, "itemListEncoded", [](std::string& bytes) { bytes[3] = 'A'; });
  xml.replace(xml.find("</transactionResponse>"), 22, "");
  desk.WriteFile("sale.xml", xml);
  const test::Outcome outcome = desk.Zel({"dump", "sale.xml"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err,
              testing::StartsWith("zel: 'sale.xml': itemListEncoded, byte 3: 0x41 is no tag [9305]\n"));
  EXPECT_THAT(outcome.out, HasSubstr("           0  A0  Item_Quantity         1  \"4\"\n"
                                     "    ! itemListEncoded, byte 3: 0x41 is no tag [9305]\n"));
  EXPECT_THAT(outcome.out, HasSubstr("         6  CE  tTime                 2  08:05\n"));
}

TEST(Dump, AnyBytesEndInATreeAndOneLine) {
  const test::Desk desk;
  const std::string whole = Bytes(kRequest);
  unsigned random = 20261121;
  for (int round = 0; round < 150; ++round) {
    std::string bytes = whole;
    for (int change = 0; change < 3; ++change) {
      random = random * 1664525U + 1013904223U;
      bytes[(random >> 8U) % bytes.size()] = static_cast<char>(random >> 24U);
    }
    bytes.resize(1 + (random >> 4U) % bytes.size());
    desk.WriteFile("file", bytes);
    const test::Outcome outcome = desk.Zel({"dump", "file"});
    EXPECT_THAT(outcome.status, testing::AnyOf(0, 1)) << test::ToHex(bytes);
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), outcome.status) << outcome.err;
  }
}

}  // namespace
