#include "VnZEL10cmn/render/clsZelRprtPrint.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/report/clsZelReport.h"
#include "tests/items/HostLocale.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace {

using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::clsZelRprtPrint;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELSerialType;

void Respond(clsZelReport& report, std::string_view hex) {
  EXPECT_TRUE(report.BinaryDataSet(ZELSerialType::Response, test::FromHex(hex), 0))
      << report.ErrorObject().ErrorMsg();
}

// Taxpayer DE123456789, device 1234567, report 1234 over bookings 1 to 1,000,000, with amounts of every width:
// some wider than their cells, one that just fits, one container that isn't there.
void Close(clsZelReport& report) {
  report.ReportDate(Date::FromCivil(2026, 12, 31, 8, 5, 59));
  Respond(
      report,
      "C0 01 03 C4 0B 44 45 31 32 33 34 35 36 37 38 39 C5 03 12 D6 87 CC 02 04 D2 D2 01 01 D3 03 0F 42 40 "
      "E1 12 D8 08 12 34 56 78 90 12 34 5C D9 02 25 0C DB 02 19 00 "
      "E2 0C D8 04 01 19 00 0C DB 02 07 00 DC 00 "
      "E4 15 D8 07 01 23 45 67 89 01 2D D9 07 01 23 45 67 89 01 2C DB 01 00 "
      "E5 08 D8 02 10 0C DB 02 10 25 "
      "E6 0B D8 03 09 99 9C DB 02 05 50 DE 00 "
      "E7 0B D8 06 12 34 56 78 90 1C DB 01 00 "
      "E8 0A D8 05 99 99 99 99 9C DB 01 00 "
      "E9 0B D8 02 70 1C DB 01 00 DD 00 DE 00 "
      "9E 30 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 "
      "19 1A 1B 1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30");
}

constexpr std::string_view closing =
    "      TAGESABSCHLUSS\r\n"
    "    -================-\r\n"
    "\r\n"
    "    Steuerpflichtiger ..: DE123456789\r\n"
    "    lfd. Zel-Nummer ....: 1234567\r\n"
    "\r\n"
    "    Datum ..............: 31.12.2026 08:05\r\n"
    "    Sequenznr ..........: 1.234\r\n"
    "    Belege von .........: 1\r\n"
    "           bis .........: 1.000.000\r\n"
    "\r\n"
    "\r\n"
    "    Bezeichung             |       Normal |     Ermäßigt |          ./. |         Ohne | "
    "Durchschn. 1 | Durchschn. 2 |      Agentur |   Liefersch. |        Übung | \r\n"
    "    -------------------------------------------------------------------------------------"
    "---------------------------------------------------------------------------\r\n"
    "    Umsatz                 | 7.890.123,45 |     1.190,00 |         0,00 | 4.567.890,12 | "
    "        1,00 |        99,99 | 3.456.789,01 | 9.999.999,99 |         7,01 | \r\n"
    "    Umsatz neg.            |         2,50 |         0,00 |         0,00 | 4.567.890,12 | "
    "        0,00 |         0,00 |         0,00 |         0,00 |         0,00 | \r\n"
    "    Umsatzsteuersatz       |       19,0 % |        7,0 % |        0,0 % |        0,0 % | "
    "      10,3 % |        5,5 % |        0,0 % |        0,0 % |        0,0 % | \r\n"
    "    Überlauf               |          ./. |     Überlauf |          ./. |          ./. | "
    "         ./. |          ./. |          ./. |          ./. |     Überlauf | \r\n"
    "    USt-Änderung           |          ./. |          ./. |          ./. |          ./. | "
    "         ./. |     Geändert |          ./. |          ./. |     Geändert | \r\n"
    "    Buchungszähler         |            0 |            0 |            0 |            0 | "
    "           0 |            0 |            0 |            0 |            0 | \r\n"
    "\r\n"
    "\r\n"
    "\r\n"
    "    Signatur\r\n"
    "    --------\r\n"
    "    Base32 .............: "
    "AEBAGBAFAYDQQCIKBMGA2DQPCAIREEYUCULBOGAZDINRYHI6D4QCCIRDEQSSMJZIFEVCWLBNFYXTA===\r\n"
    "    Base16 .............: "
    "0102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F202122232425262728292A2B2C2D2E2F30";

constexpr std::string_view emptyReport =
    "      TAGESABSCHLUSS\r\n"
    "    -================-\r\n"
    "\r\n"
    "    Steuerpflichtiger ..: \r\n"
    "    lfd. Zel-Nummer ....: 0\r\n"
    "\r\n"
    "    Datum ..............: 01.01.2000 00:00\r\n"
    "    Sequenznr ..........: 0\r\n"
    "    Belege von .........: 0\r\n"
    "           bis .........: 0\r\n"
    "\r\n"
    "\r\n"
    "    Bezeichung             |       Normal |     Ermäßigt |          ./. |         Ohne | "
    "Durchschn. 1 | Durchschn. 2 |      Agentur |   Liefersch. |        Übung | \r\n"
    "    -------------------------------------------------------------------------------------"
    "---------------------------------------------------------------------------\r\n"
    "    Umsatz                 |         0,00 |         0,00 |         0,00 |         0,00 | "
    "        0,00 |         0,00 |         0,00 |         0,00 |         0,00 | \r\n"
    "    Umsatz neg.            |         0,00 |         0,00 |         0,00 |         0,00 | "
    "        0,00 |         0,00 |         0,00 |         0,00 |         0,00 | \r\n"
    "    Umsatzsteuersatz       |        0,0 % |        0,0 % |        0,0 % |        0,0 % | "
    "       0,0 % |        0,0 % |        0,0 % |        0,0 % |        0,0 % | \r\n"
    "    Überlauf               |          ./. |          ./. |          ./. |          ./. | "
    "         ./. |          ./. |          ./. |          ./. |          ./. | \r\n"
    "    USt-Änderung           |          ./. |          ./. |          ./. |          ./. | "
    "         ./. |          ./. |          ./. |          ./. |          ./. | \r\n"
    "    Buchungszähler         |            0 |            0 |            0 |            0 | "
    "           0 |            0 |            0 |            0 |            0 | \r\n"
    "\r\n"
    "\r\n"
    "\r\n"
    "    Signatur\r\n"
    "    --------\r\n"
    "    Base32 .............: \r\n"
    "    Base16 .............: ";

TEST(clsZelRprtPrint, AClosing) {
  clsZelReport report;
  Close(report);
  clsZelRprtPrint print;
  clsVnError error;
  EXPECT_EQ(print.ToStringRprt(report, &error), closing);
  EXPECT_FALSE(error.HasError());
  test::ExpectNoError(print);
}

TEST(clsZelRprtPrint, AReportWithoutResponse) {
  clsZelReport report;
  clsZelRprtPrint print;
  EXPECT_EQ(print.ToStringRprt(report), emptyReport);
  test::ExpectNoError(print);
}

TEST(clsZelRprtPrint, ReportsByReferenceAndShared) {
  const auto report = std::make_shared<clsZelReport>();
  Close(*report);
  clsZelRprtPrint print;
  EXPECT_EQ(print.ToStringRprt(report), closing);
  EXPECT_EQ(report->ToString(), closing);
  test::ExpectNoError(*report);
}

TEST(clsZelRprtPrint, AnUnsignedReportHasBlankSignatureLines) {
  clsZelReport report;
  Close(report);
  Respond(report, "C0 01 03");
  clsZelRprtPrint print;
  clsVnError error;
  const std::string text = print.ToStringRprt(report, &error);
  EXPECT_TRUE(text.ends_with("\r\n    Base32 .............: \r\n    Base16 .............: ")) << text;
  EXPECT_TRUE(text.starts_with(closing.substr(0, 500)));
  EXPECT_FALSE(error.HasError());
  EXPECT_FALSE(print.HasError());
}

TEST(clsZelRprtPrint, TheHostsCharacters) {
  const test::HostLocale locale(test::swissLike);
  clsZelReport report;
  Close(report);
  const std::string text = clsZelRprtPrint().ToStringRprt(report);
  EXPECT_NE(text.find("\r\n    Datum ..............: 31-12-2026 08_05\r\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\r\n    Sequenznr ..........: 1'234\r\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\r\n    lfd. Zel-Nummer ....: 1234567\r\n"), std::string::npos) << text;
  EXPECT_NE(
      text.find(
          "\r\n    Umsatz                 | 7'890'123.45 |     1'190.00 |         0.00 | 4'567'890.12 |"),
      std::string::npos)
      << text;
  EXPECT_NE(text.find("\r\n    Umsatzsteuersatz       |       19.0 % |        7.0 % |"), std::string::npos)
      << text;
}

TEST(clsZelRprtPrint, RatesAreRoundedToOneDecimal) {
  clsZelReport report;
  Respond(report, "E1 04 DB 02 99 99 E2 04 DB 02 10 24 E3 04 DB 02 10 25 E4 03 DB 01 04 E5 03 DB 01 05");
  EXPECT_NE(clsZelRprtPrint().ToStringRprt(report).find(
                "\r\n    Umsatzsteuersatz       |      100,0 % |       10,2 % |       10,3 % |        0,0 % "
                "|        0,1 % |"
                "        0,0 % |        0,0 % |        0,0 % |        0,0 % | \r\n"),
            std::string::npos);
}

TEST(clsZelRprtPrint, NoReport) {
  test::TestLog log;
  clsZelRprtPrint print;
  print.LogHandler(log.Handler());
  clsVnError error;
  EXPECT_EQ(print.ToStringRprt(std::shared_ptr<clsZelReport>(), &error), "");
  for (const clsVnError* filed : {&error, &print.ErrorObject()}) {
    EXPECT_TRUE(filed->HasError());
    EXPECT_FALSE(filed->IsUserDef());
    EXPECT_EQ(filed->ErrorFunction(), "ToStringRprt");
  }
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"ToStringRprt"});
  // The error object is optional, and the next success clears the engine's own one.
  EXPECT_EQ(print.ToStringRprt(std::shared_ptr<clsZelReport>()), "");
  clsZelReport report;
  EXPECT_EQ(print.ToStringRprt(report), emptyReport);
  test::ExpectNoError(print);
}

TEST(clsZelRprtPrint, ItemsAreNotRendered) {
  clsZelRprtPrint print;
  EXPECT_EQ(print.ToStringRprt(std::shared_ptr<clsZelReport>()), "");
  clsVnError error;
  EXPECT_EQ(print.ToStringItmRpt(std::make_shared<clsZelItemCash>(), &error), "Wird hier nicht unterstützt!");
  test::ExpectNoError(print);
  EXPECT_FALSE(error.HasError());
  EXPECT_EQ(print.ToStringItmRpt(nullptr), "Wird hier nicht unterstützt!");
  EXPECT_EQ(print.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelRprtPrint");
}

}  // namespace
