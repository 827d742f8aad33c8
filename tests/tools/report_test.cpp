// Reports: closings, unsigned reports, months, activation, deactivation, and their documents.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "Program.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr std::string_view kRule =
    "-----------------------------------------------------------------------------\n";

/// The whole of a closing over the sale on the desk, but for the signature's 88 characters.
const std::string kClosing =
    "Closing\n"
    "=======\n"
    "\n"
    "Taxpayer ...........: DE123456789\n"
    "Device .............: 7, activated\n"
    "Date ...............: 2026-11-21T18:30\n"
    "Report number ......: 2\n"
    "Sequence numbers ...: 1 to 1\n"
    "\n"
    "container                  turnover   of it negative              VAT    rate\n" +
    std::string(kRule) +
    "A standard                     1.05             1.75             0.17  19.00%\n"
    "B reduced                     11.00             0.00             0.72   7.00%\n"
    "C second reduced               0.00             0.00             0.00   0.00%\n"
    "D no VAT                       0.00             0.00             0.00   0.00%\n"
    "E special                      0.00             0.00             0.00   0.00%\n"
    "F second special               0.00             0.00             0.00   0.00%\n" +
    std::string(kRule) +
    "Third-party                    0.00             0.00             0.00       -\n"
    "Delivery notes                 0.00             0.00             0.00       -\n"
    "Training                       0.00             0.00             0.00       -\n" +
    std::string(kRule) +
    "Third-party turnover stands in its class as well; delivery notes and training\n"
    "stand in their rows alone.\n"
    "\n"
    "Signature, Base64 ..: ";

class Report : public testing::Test {
 protected:
  Report() {
    const test::Outcome made = desk_.Zel({"device", "init", "--device", "till.db", "--taxpayer",
                                          "DE123456789", "--number", "7", "--pin", "271828"});
    EXPECT_EQ(made.status, 0) << made.err;
  }

  void Activate() const {
    ASSERT_EQ(Run({"--activate", "271828", "--date", "2026-11-21T08:00"}).status, 0);
    ASSERT_EQ(desk_.Zel({"sign", "sale.json", "--device", "till.db"}).status, 0);
  }

  [[nodiscard]] test::Outcome Run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "report");
    arguments.insert(arguments.end(), {"--device", "till.db"});
    return desk_.Zel(arguments);
  }

  /// The document closing.xml, with the sale's items as report items if asked.
  [[nodiscard]] std::string Close(bool withItems) const {
    std::vector<std::string> arguments = {"--signed", "--out", "closing.xml", "--date", "2026-11-21T18:30"};
    if (withItems) arguments.insert(arguments.end(), {"--items", "sale.json"});
    const test::Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return desk_.ReadFile("closing.xml");
  }

  /// With report items, but without the attribute that names their profile.
  [[nodiscard]] std::string CloseWithItems() const {
    std::string document = Close(true);
    const std::string profile = " profile=\"kasse\"";
    return document.erase(test::PositionOf(document, profile), profile.size());
  }

  [[nodiscard]] test::Outcome Verify(const std::string& document) const {
    desk_.WriteFile("changed.xml", document);
    return desk_.Zel({"verify", "changed.xml", "--device", "till.db"});
  }

  void ExpectWrong(const std::string& document, const std::string& start) const {
    const test::Outcome outcome = Verify(document);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, StartsWith("zel: 'changed.xml': " + start));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
  }

  test::Desk desk_;
};

TEST_F(Report, ANewDeviceSignsNothingBeforeItsActivation) {
  const test::Outcome sign = desk_.Zel({"sign", "sale.json", "--device", "till.db"});
  EXPECT_EQ(sign.status, 3);
  EXPECT_EQ(
      sign.err,
      "zel: the device refuses the booking: the device is not activated yet (zel report --activate PIN does "
      "that)\n");
  EXPECT_FALSE(desk_.Exists("sale.xml"));
  EXPECT_EQ(Run({"--signed"}).status, 3);
  EXPECT_EQ(Run({"--unsigned"}).status, 0);
}

TEST_F(Report, ActivationTakesThePinAndLocksAfterThreeWrongOnes) {
  const test::Outcome wrong = Run({"--activate", "111111"});
  EXPECT_EQ(wrong.status, 1);
  EXPECT_EQ(wrong.err,
            "zel: the device refuses the report: the transport PIN is wrong, 2 attempts are left\n");
  const test::Outcome none = Run({"--activate", "12345"});
  EXPECT_EQ(none.status, 1);
  EXPECT_THAT(none.err, StartsWith("zel: Report: Kodieren der ZEL-Anfrage nicht möglich! Die Transport-PIN "
                                   "konnte nicht geschrieben werden!"));
  EXPECT_EQ(Run({"--activate", "111111"}).status, 1);
  EXPECT_EQ(Run({"--activate", "111111"}).status, 1);
  EXPECT_EQ(Run({"--activate", "271828"}).status, 3);
  EXPECT_THAT(desk_.Zel({"device", "show", "--device", "till.db"}).out,
              HasSubstr("State .....................: personalized, locked after wrong transport PINs\n"));
}

TEST_F(Report, ActivationIsAReportOfItsOwn) {
  const test::Outcome outcome =
      Run({"--activate", "271828", "--date", "2026-11-21T08:00", "--out", "activation.xml"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith("Activation\n==========\n\n"
                                      "Taxpayer ...........: DE123456789\n"
                                      "Device .............: 7, activated\n"
                                      "Date ...............: 2026-11-21T08:00\n"
                                      "Report number ......: 1\n\nSignature, Base64 ..: "));
  EXPECT_EQ(desk_.Zel({"verify", "activation.xml", "--device", "till.db"}).out,
            "activation.xml: all is right, report 1 of taxpayer DE123456789, device 7\n");
  EXPECT_EQ(desk_.Zel({"receipt", "activation.xml"}).out, outcome.out);
}

TEST_F(Report, AClosingIsATableOf80Columns) {
  Activate();
  const test::Outcome outcome = Run({"--signed", "--date", "2026-11-21T18:30"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out.substr(0, kClosing.size()), kClosing);
  std::istringstream lines(outcome.out);
  for (std::string line; std::getline(lines, line);)
    EXPECT_LE(line.size(), 80U) << line;
  EXPECT_EQ(
      outcome.err,
      "zel: the device 'till.db' is a software device for development and tests, not a certified one\n");
}

TEST_F(Report, WideIsTheLibrarysText) {
  Activate();
  const test::Outcome outcome = Run({"--signed", "--wide", "--date", "2026-11-21T18:30"});
  EXPECT_THAT(outcome.out, StartsWith("      TAGESABSCHLUSS\n    -================-\n\n"
                                      "    Steuerpflichtiger ..: DE123456789\n"
                                      "    lfd. Zel-Nummer ....: 7\n\n"
                                      "    Datum ..............: 21.11.2026 18:30\n"
                                      "    Sequenznr ..........: 2\n"));
  EXPECT_THAT(outcome.out, HasSubstr("    Umsatz                 |         1,05 |        11,00 |"));
}

TEST_F(Report, AnUnsignedReportShowsTheSameAndChangesNothing) {
  Activate();
  const test::Outcome outcome = Run({"--unsigned", "--out", "now.xml"});
  EXPECT_THAT(outcome.out, StartsWith("Unsigned report\n"));
  EXPECT_THAT(outcome.out, HasSubstr("Sequence numbers ...: 1 to 1\n"));
  EXPECT_THAT(outcome.out, EndsWith("\n\nNot signed.\n"));
  EXPECT_THAT(outcome.out, HasSubstr(kClosing.substr(kClosing.find("container"), 7 * 78)));
  EXPECT_EQ(Run({"--unsigned"}).status, 0);
  EXPECT_EQ(desk_.Zel({"verify", "now.xml", "--device", "till.db"}).err,
            "zel: 'now.xml': signature: an unsigned report is not signed\n");
  EXPECT_EQ(desk_.Zel({"receipt", "now.xml"}).out, outcome.out);
  EXPECT_THAT(Close(false), HasSubstr("<reportEncoded>"));
}

TEST_F(Report, SpanAddsUpMonths) {
  Activate();
  const test::Outcome outcome = Run({"--span", "2026-11..2026-12", "--out", "span.xml"});
  EXPECT_THAT(outcome.out, StartsWith("Report over months, unsigned\n"));
  EXPECT_THAT(outcome.out, HasSubstr("Months .............: 2026-11 to 2026-12\n"));
  EXPECT_THAT(outcome.out, HasSubstr("B reduced                     11.00 "));
  EXPECT_THAT(Run({"--span", "2026-10"}).out, HasSubstr("B reduced                      0.00 "));
  EXPECT_THAT(Run({"--span", "2000-01..2099-12"}).out,
              HasSubstr("Months .............: 2000-01 to 2099-12\n"));
  EXPECT_EQ(desk_.Zel({"verify", "span.xml", "--device", "till.db"}).err,
            "zel: 'span.xml': signature: a report over months is not signed\n");
}

TEST_F(Report, AfterTheDeactivationNothingIsSigned) {
  Activate();
  EXPECT_THAT(Run({"--deactivate", "--out", "last.xml"}).out, StartsWith("Closing and deactivation\n"));
  EXPECT_EQ(desk_.Zel({"verify", "last.xml", "--device", "till.db"}).status, 0);
  const test::Outcome sign = desk_.Zel({"sign", "sale.json", "--device", "till.db", "--force"});
  EXPECT_EQ(sign.status, 3);
  EXPECT_EQ(sign.err, "zel: the device refuses the booking: the device is deactivated\n");
}

TEST_F(Report, MakesNoDevice) {
  const test::Outcome outcome = desk_.Zel({"report", "--signed", "--device", "none.db"});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err, "zel: device file 'none.db': there is no such file\n");
  EXPECT_FALSE(desk_.Exists("none.db"));
}

TEST_F(Report, TheDocumentIsOverwrittenWithForceAlone) {
  Activate();
  static_cast<void>(Close(false));
  const test::Outcome refused = Run({"--signed", "--out", "closing.xml"});
  EXPECT_EQ(refused.status, 3);
  EXPECT_EQ(refused.err, "zel: 'closing.xml' exists already (--force overwrites it)\n");
  EXPECT_THAT(Run({"--signed", "--out", "closing.xml", "--force"}).out, HasSubstr("number ......: 3\n"));
}

TEST_F(Report, ADocumentWithoutItemsCantBeImportedButReadAndVerified) {
  Activate();
  const test::Outcome outcome = Run({"--signed", "--out", "closing.xml", "--date", "2026-11-21T18:30"});
  EXPECT_THAT(
      outcome.err,
      HasSubstr("zel: wrote 'closing.xml'\n"
                "zel: note: a report without items makes a document that the library doesn't import again "
                "(error 9302); zel receipt, verify and dump read it all the same\n"));
  EXPECT_THAT(desk_.ReadFile("closing.xml"), testing::Not(HasSubstr("itemListEncoded")));
  EXPECT_EQ(desk_.Zel({"receipt", "closing.xml"}).out, outcome.out);
  EXPECT_EQ(desk_.Zel({"verify", "closing.xml", "--device", "till.db"}).out,
            "closing.xml: all is right, report 2 of taxpayer DE123456789, device 7\n");
}

TEST_F(Report, ResumeWritesTheDocumentOnceMore) {
  Activate();
  const std::string plain = Close(false);
  EXPECT_EQ(Run({"--resume", "2", "--out", "again.xml"}).status, 0);
  EXPECT_EQ(desk_.ReadFile("again.xml"), plain);
  const test::Outcome unknown = Run({"--resume", "9"});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.err, "zel: the device has no report 9, its last one is 2\n");
  EXPECT_EQ(Run({"--resume", "2", "--items", "sale.json"}).err,
            "zel: the device signed other report items as report 2\n");
  EXPECT_THAT(Run({"--resume", "1"}).out, StartsWith("Activation\n"));
}

TEST_F(Report, ResumeWritesItemsToo) {
  Activate();
  const std::string document = Close(true);
  ASSERT_EQ(Run({"--resume", "2", "--items", "sale.json", "--out", "again.xml"}).status, 0);
  EXPECT_EQ(desk_.ReadFile("again.xml"), document);
}

TEST_F(Report, ItemsAreInTheDocumentAndTheirHashIsSigned) {
  Activate();
  const std::string document = Close(true);
  EXPECT_THAT(document, StartsWith("    <reportEncoded>\r\n        <itemListEncoded profile=\"kasse\">"));
  EXPECT_EQ(Verify(document).status, 0);
  EXPECT_THAT(desk_.Zel({"receipt", "changed.xml"}).out, HasSubstr("Report items .......: 4\n"));
  EXPECT_THAT(desk_.Zel({"dump", "changed.xml"}).out, HasSubstr("D4  Hash_Reprt_Items     32  "));
}

TEST_F(Report, VerifyNamesWhatIsWrong) {
  Activate();
  const std::string plain = Close(false);
  const auto changed = [&plain](const std::string& element, std::size_t position, char byte) {
    return test::WithBytes(plain, element, [=](std::string& bytes) { bytes[position] = byte; });
  };
  ExpectWrong(test::WithElement(plain, "reportRequest", ""),
              "document: reportRequest: Die XML-Tags sind nicht");
  ExpectWrong(plain + plain, "document: reportEncoded: the element occurs twice");
  ExpectWrong(changed("reportRequest", 8, '\x25'), "request: byte 6: ");
  ExpectWrong(changed("reportRequest", 9, '\x31'), "signature: ");
  ExpectWrong(changed("reportResponse", 0, '\x9F'), "response: byte 0: 0x9F is no tag [9305]");
  ExpectWrong(changed("reportResponse", 2, '\x02'), "signature: ");
  ExpectWrong(test::WithBytes(plain, "reportResponse", [](std::string& bytes) { bytes += "\xE9\x02\xDE"; }),
              "response: byte ");
  ExpectWrong(test::WithBytes(plain, "reportResponse",
                              [](std::string& bytes) { bytes += std::string("\xE9\x00", 2); }),
              "response: byte ");
  ExpectWrong(test::WithBytes(plain, "reportRequest",
                              [](std::string& bytes) { bytes += "\xD4\x14" + std::string(20, 'x'); }),
              "item hash: the request holds eHh4eHh4eHh4eHh4eHh4eHh4eHg=, but the document has no items");
  ExpectWrong(test::WithBytes(plain, "reportRequest",
                              [](std::string& bytes) {
                                bytes = std::string("\xCD\x04\x20\x00\x01\x01\xCE\x02\x00\x00", 10);
                              }),
              "request: the report isn't dated");
}

TEST_F(Report, VerifyNamesItemsThatWereNotSigned) {
  Activate();
  const std::string document = CloseWithItems();
  const auto changeItem = [](std::string& bytes) { bytes[test::PositionOf(bytes, "kaffee")] = 'g'; };
  ExpectWrong(test::WithBytes(document, "itemListEncoded", changeItem), "item hash: the request holds ");
  ExpectWrong(test::WithBytes(document, "itemListEncoded", [](std::string& bytes) { bytes.pop_back(); }),
              "items: byte ");
  ExpectWrong(test::WithBytes(document, "reportRequest", [](std::string& bytes) { bytes.resize(10); }),
              "item hash: the document has items, but the request holds no hash of them");
  std::string without = document;
  const std::size_t start = without.find("<itemListEncoded>");
  without.erase(start, without.find("<reportRequest>") - start);
  ExpectWrong(without, "item hash: the request holds ");
}

TEST_F(Report, NoChangedBitPassesForRight) {
  Activate();
  const std::string document = CloseWithItems();
  for (const std::string element : {"itemListEncoded", "reportRequest", "reportResponse"}) {
    const std::size_t size = test::FromBase64(test::Element(document, element)).size();
    for (std::size_t position = 0; position < size; position += 3) {
      const test::Outcome outcome = Verify(test::WithBytes(document, element, [=](std::string& bytes) {
        bytes[position] = static_cast<char>(static_cast<unsigned char>(bytes[position]) ^ 1U);
      }));
      EXPECT_EQ(outcome.status, 1) << element << position;
    }
  }
}

TEST_F(Report, JsonOfAVerificationHasTheReportNumber) {
  Activate();
  static_cast<void>(Close(false));
  const test::Outcome outcome = desk_.Zel({"verify", "closing.xml", "--device", "till.db", "--json"});
  EXPECT_THAT(outcome.out, HasSubstr("\"reportNumber\": 2\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\"ok\": true,"));
}

TEST_F(Report, ABookingIsNoReport) {
  Activate();
  std::string document = desk_.ReadFile("sale.xml");
  for (const auto& [from, to] :
       {std::pair{"transactionEncoded", "reportEncoded"}, std::pair{"transactionRequest", "reportRequest"},
        std::pair{"transactionResponse", "reportResponse"}}) {
    for (std::size_t at = 0; (at = document.find(from)) != std::string::npos;)
      document.replace(at, std::string_view(from).size(), to);
  }
  ExpectWrong(document, "request: byte 10: tag 0xC6 (Operator) can't stand in a report request [9305]");
}

TEST_F(Report, ReceiptNamesAnElementThatIsMissing) {
  Activate();
  std::string document = Close(false);
  document.erase(document.find("<reportResponse>"),
                 document.find("</reportEncoded>") - document.find("<reportResponse>"));
  desk_.WriteFile("changed.xml", document);
  const test::Outcome outcome = desk_.Zel({"receipt", "changed.xml"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, StartsWith("zel: 'changed.xml': reportResponse: "));
}

test::Outcome Dump(const std::string& content) {
  const test::Desk desk;
  desk.WriteFile("file", content);
  return desk.Zel({"dump", "file"});
}

TEST(DumpOfReport, RecognisesRequestsAndResponses) {
  EXPECT_THAT(Dump("CD 04 20 26 12 31 CE 02 18 30").out,
              StartsWith("Report request (10 bytes, hexadecimal)\n"));
  EXPECT_THAT(Dump("CD 04 20 26 12 31 CE 02 18 30 D0 03 20 26 01 D1 03 20 26 03").out,
              AllOf(StartsWith("Report request ("), HasSubstr("D0  Month_Start           3  2026-01\n")));
  EXPECT_THAT(Dump("CD 04 20 26 12 31 CE 02 18 30 C3 06 32 37 31 38 32 38").out,
              HasSubstr("C3  Transport_Pin         6  \"271828\"\n"));
  EXPECT_THAT(Dump("C0 01 03 C4 02 44 45 C5 01 01 E7 05 D8 03 01 23 4C").out,
              StartsWith("Report response (17 bytes, hexadecimal)\n"));
}

TEST(DumpOfReport, ShowsWhatStandsBeforeTheDamage) {
  const test::Outcome outcome = Dump("C0 01 03 C4 02 44 45 CB 01 01");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.out, HasSubstr("C4  Tp_ID                 2  \"DE\"\n"));
  EXPECT_EQ(outcome.err,
            "zel: 'file': byte 7: tag 0xCB (Seq_Nr_Trans) can't stand in the response to a report [9305]\n");
}

TEST_F(Report, DumpShowsTheDocumentAsATree) {
  Activate();
  desk_.WriteFile("closing.xml", Close(false));
  const test::Outcome outcome = desk_.Zel({"dump", "closing.xml"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith("Report document (XML)\n"
                                      "  Report request (10 bytes)\n"
                                      "         0  CD  tDate                 4  2026-11-21\n"
                                      "         6  CE  tTime                 2  18:30\n"
                                      "  Report response ("));
  EXPECT_THAT(outcome.out, HasSubstr("  E9  Container_Training    0\n"));
  EXPECT_THAT(desk_.Zel({"dump", "closing.xml", "--json"}).out, HasSubstr("\"kind\": \"reportResponse\""));
}

}  // namespace
