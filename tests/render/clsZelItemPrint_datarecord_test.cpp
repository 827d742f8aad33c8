#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/datarecord/clsZelTransActData.h"
#include "VnZEL10cmn/render/clsZelItemPrint.h"
#include "tests/items/HostLocale.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsZelItemPrint;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELDataSignTypes;
using VnZEL10cmn::ZELSerialType;
using Lines = std::vector<std::string>;

// The lines of a text that are not empty. The text's line ends have to be CR LF throughout. How the box ends
// behind its last line of text is the renderer's own: these lines are left out.
Lines FixedLines(const std::string& text) {
  Lines lines;
  bool behindTheBox = false;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find("\r\n", start);
    if (end == std::string::npos) {
      end = text.size();
    }
    const std::string line = text.substr(start, end - start);
    EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos) << line;
    const bool isFrame = line.starts_with("        |") || line.starts_with("        +");
    behindTheBox = behindTheBox && isFrame;
    if (!line.empty() && !behindTheBox) {
      lines.push_back(line);
    }
    behindTheBox = behindTheBox || line.starts_with("        |    ÜBERPRÜFEN");
    start = end + 2;
  }
  return lines;
}

Lines operator+(Lines left, const Lines& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

const Lines title{"      Kassen-Signaturbeleg (Basisversion)", "    -=====================================-"};
const Lines undated{"    Beleg / Signatur ohne Datum "};
const Lines dated{"    Beleg- / Signaturdatum .: 31.12.2026 08:05"};
const Lines box{"        +------------------------------------------------------+",
                "        |                                                      |",
                "        |                 -= A C H T U N G =-                  |",
                "        |               =======================                |",
                "        |    DIESE DATEN SIND NOCH NICHT SIGNIERT! BITTE       |",
                "        |    ÜBERPRÜFEN SIE DIE DATEN UND DEN ABLAUF           |"};
const Lines dataOnly{"    Daten signiert als .....: \"nur Daten\""};
const Lines withId{"    Daten signiert als .....: \"Daten mit ZEL-ID\""};
const Lines withTime{"    Daten signiert als .....: \"Daten mit Zeitstempel\""};
const Lines noIds{"        ZEL - ID ...........: ", "        ZEL - Nr ...........: 0"};
const Lines ids{"        ZEL - ID ...........: DE123456789", "        ZEL - Nr ...........: 1234567"};
const Lines stamp{"        Zeitstempel ........: 31.12.2026 08:05"};
const Lines noNumber{"        Sequenznummer ......: 0"};
const Lines number{"        Sequenznummer ......: 1234"};
// SHA-256 of "abc".
const Lines hash{
    "        Hashkode Daten .....: XJ4BN-P4PAH-H6UQK-BIDPF-3LRCE-OYAGY-NDSYL-XVHFU-CD7WD-4QACW-WQ===-="};

// "abc", on New Year's Eve.
class Record {
 public:
  explicit Record(ZELDataSignTypes type) {
    data.TransactionDate(Date::FromCivil(2026, 12, 31, 8, 5, 59));
    data.DataSignType(type);
    EXPECT_TRUE(data.BinaryDataSet(ZELSerialType::BinaryData, test::FromHex("61 62 63"), 0));
  }

  void Respond(std::string_view hex) {
    EXPECT_TRUE(data.BinaryDataSet(ZELSerialType::Response, test::FromHex(hex), 0))
        << data.ErrorObject().ErrorMsg();
  }

  clsZelTransActData data;
};

// Sequence number 1234, without and with taxpayer DE123456789 and device 1234567.
constexpr std::string_view plainResponse = "CB 02 04 D2";
constexpr std::string_view response = "CB 02 04 D2 C4 0B 44 45 31 32 33 34 35 36 37 38 39 C5 03 12 D6 87";

TEST(clsZelItemPrintDataRecord, DataOnly) {
  Record record(ZELDataSignTypes::DataOnly);
  EXPECT_EQ(FixedLines(record.data.ToString()), title + undated + box + dataOnly + noNumber + hash);
  record.Respond(plainResponse);
  EXPECT_EQ(FixedLines(record.data.ToString()), title + undated + dataOnly + number + hash);
  test::ExpectNoError(record.data);
}

TEST(clsZelItemPrintDataRecord, DataAndTpID) {
  Record record(ZELDataSignTypes::DataAndTpID);
  EXPECT_EQ(FixedLines(record.data.ToString()), title + undated + box + withId + noIds + noNumber + hash);
  record.Respond(response);
  EXPECT_EQ(FixedLines(record.data.ToString()), title + undated + withId + ids + number + hash);
  test::ExpectNoError(record.data);
}

TEST(clsZelItemPrintDataRecord, DataAndTime) {
  Record record(ZELDataSignTypes::DataAndTime);
  EXPECT_EQ(FixedLines(record.data.ToString()),
            title + dated + box + withTime + noIds + stamp + noNumber + hash);
  record.Respond(response);
  EXPECT_EQ(FixedLines(record.data.ToString()), title + dated + withTime + ids + stamp + number + hash);
  test::ExpectNoError(record.data);
}

TEST(clsZelItemPrintDataRecord, AResponseWithTaxpayerMakesDataOnlyOneWithId) {
  Record record(ZELDataSignTypes::DataOnly);
  record.Respond(response);
  EXPECT_EQ(FixedLines(record.data.ToString()), title + undated + withId + ids + number + hash);
}

// The whole texts, blank lines included: what receipts look like does not change by accident.
TEST(clsZelItemPrintDataRecord, LayoutOfAnUnansweredReceipt) {
  Record record(ZELDataSignTypes::DataOnly);
  EXPECT_EQ(record.data.ToString(),
            "      Kassen-Signaturbeleg (Basisversion)\r\n"
            "    -=====================================-\r\n"
            "\r\n"
            "    Beleg / Signatur ohne Datum \r\n"
            "\r\n"
            "        +------------------------------------------------------+\r\n"
            "        |                                                      |\r\n"
            "        |                 -= A C H T U N G =-                  |\r\n"
            "        |               =======================                |\r\n"
            "        |    DIESE DATEN SIND NOCH NICHT SIGNIERT! BITTE       |\r\n"
            "        |    ÜBERPRÜFEN SIE DIE DATEN UND DEN ABLAUF           |\r\n"
            "        |                                                      |\r\n"
            "        +------------------------------------------------------+\r\n"
            "\r\n"
            "    Daten signiert als .....: \"nur Daten\"\r\n"
            "        Sequenznummer ......: 0\r\n"
            "        Hashkode Daten .....: "
            "XJ4BN-P4PAH-H6UQK-BIDPF-3LRCE-OYAGY-NDSYL-XVHFU-CD7WD-4QACW-WQ===-=\r\n");
}

TEST(clsZelItemPrintDataRecord, LayoutOfAnAnsweredReceipt) {
  Record record(ZELDataSignTypes::DataAndTime);
  record.Respond(response);
  EXPECT_EQ(record.data.ToString(),
            "      Kassen-Signaturbeleg (Basisversion)\r\n"
            "    -=====================================-\r\n"
            "\r\n"
            "    Beleg- / Signaturdatum .: 31.12.2026 08:05\r\n"
            "\r\n"
            "    Daten signiert als .....: \"Daten mit Zeitstempel\"\r\n"
            "        ZEL - ID ...........: DE123456789\r\n"
            "        ZEL - Nr ...........: 1234567\r\n"
            "        Zeitstempel ........: 31.12.2026 08:05\r\n"
            "        Sequenznummer ......: 1234\r\n"
            "        Hashkode Daten .....: "
            "XJ4BN-P4PAH-H6UQK-BIDPF-3LRCE-OYAGY-NDSYL-XVHFU-CD7WD-4QACW-WQ===-=\r\n");
}

TEST(clsZelItemPrintDataRecord, AnyResponseIsAnAnswer) {
  Record record(ZELDataSignTypes::DataOnly);
  record.Respond("CB 01 00");
  EXPECT_EQ(FixedLines(record.data.ToString()), title + undated + dataOnly + noNumber + hash);
}

TEST(clsZelItemPrintDataRecord, ARequestAloneIsNoAnswer) {
  Record record(ZELDataSignTypes::DataOnly);
  ByteArray request = ByteArray::WithBounds(0, 33);
  EXPECT_TRUE(record.data.BinaryDataGet(ZELSerialType::Request, request, 0));
  EXPECT_EQ(FixedLines(record.data.ToString()), title + undated + box + dataOnly + noNumber + hash);
}

TEST(clsZelItemPrintDataRecord, TheHashIsMadeAnewUntilThereIsAnAnswer) {
  Record record(ZELDataSignTypes::DataOnly);
  record.data.UseSHA256(false);
  const Lines sha1{"        Hashkode Daten .....: VGMT4-NSHA2-AWVOR-6EVYX-QUGCN-SONBW-E5"};
  EXPECT_EQ(FixedLines(record.data.ToString()), title + undated + box + dataOnly + noNumber + sha1);
  record.Respond(plainResponse);
  EXPECT_EQ(FixedLines(record.data.ToString()), title + undated + dataOnly + number + hash);
}

TEST(clsZelItemPrintDataRecord, AnImportedRecordHasItsHashButNoData) {
  Record record(ZELDataSignTypes::DataOnly);
  ByteArray request = ByteArray::WithBounds(0, 33);
  EXPECT_TRUE(record.data.BinaryDataGet(ZELSerialType::Request, request, 0));
  record.Respond(plainResponse);
  std::string document;
  EXPECT_TRUE(record.data.XmlHandler(document, true));
  clsZelTransActData imported;
  EXPECT_TRUE(imported.XmlHandler(document, false));
  EXPECT_EQ(FixedLines(imported.ToString()), title + undated + dataOnly + number + hash);
}

TEST(clsZelItemPrintDataRecord, ARecordWithoutDataHasNoHash) {
  clsZelTransActData record;
  EXPECT_EQ(FixedLines(record.ToString()),
            title + undated + box + dataOnly + noNumber + Lines{"        Hashkode Daten .....: "});
  test::ExpectNoError(record);
}

TEST(clsZelItemPrintDataRecord, TheHostsCharacters) {
  const test::HostLocale locale(test::swissLike);
  Record record(ZELDataSignTypes::DataAndTime);
  record.Respond(response);
  const Lines lines = FixedLines(record.data.ToString());
  ASSERT_EQ(lines.size(), 9U);
  EXPECT_EQ(lines[2], "    Beleg- / Signaturdatum .: 31-12-2026 08_05");
  EXPECT_EQ(lines[5], "        ZEL - Nr ...........: 1234567");
  EXPECT_EQ(lines[6], "        Zeitstempel ........: 31-12-2026 08_05");
  EXPECT_EQ(lines[7], "        Sequenznummer ......: 1234");
}

TEST(clsZelItemPrintDataRecord, RecordsByReferenceAndShared) {
  const auto record = std::make_shared<clsZelTransActData>();
  clsZelItemPrint print;
  clsVnError error;
  const std::string text = print.ToStringTRdata(record, &error);
  EXPECT_EQ(text, print.ToStringTRdata(*record));
  EXPECT_EQ(text, record->ToString());
  EXPECT_FALSE(error.HasError());
  test::ExpectNoError(print);
}

TEST(clsZelItemPrintDataRecord, NoRecord) {
  test::TestLog log;
  clsZelItemPrint print;
  print.LogHandler(log.Handler());
  clsVnError error;
  EXPECT_EQ(print.ToStringTRdata(std::shared_ptr<clsZelTransActData>(), &error), "");
  EXPECT_TRUE(error.HasError());
  EXPECT_FALSE(error.IsUserDef());
  EXPECT_EQ(error.ErrorFunction(), "ToStringTRdata");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"ToStringTRdata"});
  EXPECT_EQ(print.ToStringTRdata(std::shared_ptr<clsZelTransActData>()), "");
}

}  // namespace
