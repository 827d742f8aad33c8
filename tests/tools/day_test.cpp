// A day at the till: all sales of a folder signed, read back, verified and added up.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "Program.h"
#include "tests/softdevice/Tamper.h"

namespace {

using testing::HasSubstr;

void WriteSale(const test::Desk& desk, const std::string& name, const std::string& members,
               const std::string& items) {
  desk.WriteFile("sales/" + name, "{\"operator\": \"Meier\", " + members + ", \"items\": [" + items + "]}");
}

class Day : public testing::Test {
 protected:
  Day() {
    std::filesystem::create_directory(desk_.File("sales"));
    const std::string date = R"("date": "2026-11-21T08:05")";
    WriteSale(desk_, "1.json", date, R"({"name": "Tee", "price": "119.00", "class": "A"},
                                        {"name": "Brot", "price": "10.70", "class": "B"})");
    WriteSale(desk_, "2.json", date, R"({"name": "Los", "price": "5.00", "class": "D", "thirdParty": true},
                                        {"name": "Pfand", "price": "-1.19", "class": "A"})");
    WriteSale(desk_, "3.json", date + R"(, "taxExclusive": true)",
              R"({"name": "Tee", "price": "100.00", "class": "A"})");
    WriteSale(desk_, "4.json", R"("date": "2006-11-21T08:05")",
              R"({"name": "Tee", "price": "116.00", "class": "A"})");
    WriteSale(desk_, "5.json", date + R"(, "training": true)",
              R"({"name": "Tee", "price": "11.90", "class": "A"})");
    WriteSale(desk_, "6.json", date + R"(, "deliveryNote": true)",
              R"({"name": "Brot", "price": "21.40", "class": "B"})");
    desk_.WriteFile("sales/notes.txt", "no sale");
  }

  test::Desk desk_;
};

TEST_F(Day, EndsWithTheLastReceiptAndTheTotals) {
  const test::Outcome outcome = desk_.Zel({"day", "sales", "--out", "out"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("    Belegdatum .............: 21.11.2026 08:05\n"));
  EXPECT_THAT(outcome.out,
              HasSubstr("\n6 documents written to out, read back and verified\n\n"
                        "VAT class, rate, prices             bookings      turnover           VAT\n"
                        "------------------------------------------------------------------------\n"
                        "A   16.00 %  with tax                      1        116.00         16.00\n"
                        "A   19.00 %  with tax                      2        117.81         18.81\n"
                        "A   19.00 %  without tax                   1        100.00         19.00\n"
                        "B    7.00 %  with tax                      1         10.70          0.70\n"
                        "D    0.00 %  with tax                      1          5.00          0.00\n"
                        "------------------------------------------------------------------------\n"
                        "Sales, with tax                            4        368.51         54.51\n"
                        "  of these third-party business            1          5.00             -\n"
                        "Delivery notes (not in the above)          1         21.40          1.40\n"
                        "Training (not in the above)                1         11.90          1.90\n"
                        "------------------------------------------------------------------------\n"
                        "All bookings                               6   sequence numbers 1 to 6\n"));
  EXPECT_THAT(outcome.out,
              HasSubstr("Report number ......: 2\n"
                        "Sequence numbers ...: 1 to 6\n"
                        "\n"
                        "container                  turnover   of it negative              VAT    rate\n"
                        "-----------------------------------------------------------------------------\n"
                        "A standard                   333.81             1.19            53.81  16.00%!\n"
                        "B reduced                     10.70             0.00             0.70   7.00%\n"
                        "C second reduced               0.00             0.00             0.00   0.00%\n"
                        "D no VAT                       5.00             0.00             0.00   0.00%\n"
                        "E special                      0.00             0.00             0.00   0.00%\n"
                        "F second special               0.00             0.00             0.00   0.00%\n"
                        "-----------------------------------------------------------------------------\n"
                        "Third-party                    5.00             0.00             0.00       -\n"
                        "Delivery notes                21.40             0.00             1.40       -\n"
                        "Training                      11.90             0.00             1.90       -\n"));
  EXPECT_THAT(outcome.out, testing::EndsWith("\nThe closing in out/closing.xml is verified;\n"
                                             "in all 9 containers its turnover is that of the bookings\n"));
  for (const char* name : {"out/1.xml", "out/6.xml", "out/closing.xml", "out/device.db"})
    EXPECT_TRUE(desk_.Exists(name));
  EXPECT_EQ(desk_.Zel({"verify", "out/4.xml", "--device", "out/device.db"}).status, 0);
  EXPECT_EQ(desk_.Zel({"verify", "out/closing.xml", "--device", "out/device.db"}).out,
            "out/closing.xml: all is right, report 2 of taxpayer SOFTWARE-DEVICE-TEST, device 1\n");
}

TEST_F(Day, ShowsALinePerStepWhereThereIsNoTerminal) {
  const test::Outcome outcome = desk_.Zel({"day", "sales", "--out", "out"});
  EXPECT_THAT(outcome.err, HasSubstr("signing 1/6 1.xml, booking 1\n"));
  EXPECT_THAT(outcome.err, HasSubstr("verifying 6/6 6.xml, all is right\n"));
}

TEST_F(Day, SignsNothingBeforeAllSalesAreRead) {
  desk_.WriteFile("sales/9.json", "{}");
  const test::Outcome outcome = desk_.Zel({"day", "sales", "--out", "out"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "zel: 'sales/9.json': the sale: has no \"operator\"\n");
  EXPECT_FALSE(desk_.Exists("out"));
}

TEST_F(Day, DoesNotOverwriteWithoutForceAndGoesOnCounting) {
  ASSERT_EQ(desk_.Zel({"day", "sales", "--out", "out"}).status, 0);
  const test::Outcome refused = desk_.Zel({"day", "sales", "--out", "out"});
  EXPECT_EQ(refused.status, 3);
  EXPECT_THAT(refused.err, testing::EndsWith("zel: 'out/1.xml' exists already (--force overwrites it)\n"));
  const test::Outcome forced = desk_.Zel({"day", "sales", "--out", "out", "--force"});
  EXPECT_EQ(forced.status, 0);
  EXPECT_THAT(forced.out, HasSubstr("sequence numbers 7 to 12\n"));
}

TEST_F(Day, NoLineOfTheClosingIsWiderThan80ColumnsUnlessAsked) {
  const test::Outcome outcome = desk_.Zel({"day", "sales", "--out", "out"});
  std::istringstream closing(outcome.out.substr(outcome.out.find("\nClosing\n")));
  for (std::string line; std::getline(closing, line);)
    EXPECT_LE(line.size(), 80U) << line;
  const test::Outcome wide = desk_.Zel({"day", "sales", "--out", "wide", "--wide"});
  EXPECT_THAT(wide.out, HasSubstr("\n      TAGESABSCHLUSS\n    -================-\n"));
  EXPECT_THAT(wide.out,
              HasSubstr("    Umsatz                 |       333,81 |        10,70 |         0,00 |"));
}

TEST_F(Day, BeginsOnlyWhenEverythingBeforeIsClosed) {
  ASSERT_EQ(desk_.Zel({"sign", "sale.json", "--device", "till.db"}).status, 0);
  const test::Outcome refused = desk_.Zel({"day", "sales", "--out", "out", "--device", "till.db"});
  EXPECT_EQ(refused.status, 3);
  EXPECT_THAT(
      refused.err,
      testing::EndsWith("zel: the device 'till.db' has signed up to number 1, and no closing covers "
                        "what follows number 0: close it with 'zel report --signed --device till.db'\n"));
  ASSERT_EQ(desk_.Zel({"report", "--signed", "--device", "till.db"}).status, 0);
  EXPECT_EQ(desk_.Zel({"day", "sales", "--out", "out", "--device", "till.db"}).status, 0);
}

TEST_F(Day, ASaleCantTakeTheNameOfTheClosing) {
  WriteSale(desk_, "closing.json", R"("date": "2026-11-21T08:05")",
            R"({"name": "Tee", "price": "1", "class": "A"})");
  const test::Outcome outcome = desk_.Zel({"day", "sales", "--out", "out"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "zel: a sale 'closing.json' and the day's closing would share a document\n");
  EXPECT_FALSE(desk_.Exists("out"));
}

// The device lost a cent before.
TEST_F(Day, FailsLoudlyWhenTheClosingIsNotTheDay) {
  ASSERT_EQ(desk_
                .Zel({"device", "init", "--device", "till.db", "--taxpayer", "DE1", "--number", "1", "--pin",
                      "271828", "--activate"})
                .status,
            0);
  softdevice::test::RunSqlAndSeal(desk_.File("till.db"),
                                  "INSERT INTO total VALUES (0, 225, -1, 0, 0, 1900, 0, 0, 0, 0)");
  const test::Outcome outcome = desk_.Zel({"day", "sales", "--out", "out", "--device", "till.db"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err,
              testing::EndsWith("zel: 'out/closing.xml': the closing's turnover in 'A standard' is "
                                "333.80, the bookings have 333.81\n"));
  EXPECT_THAT(outcome.out, HasSubstr("A standard                   333.80"));
}

TEST_F(Day, NeedsAFolderWithSales) {
  std::filesystem::create_directory(desk_.File("empty"));
  const test::Outcome empty = desk_.Zel({"day", "empty", "--out", "out"});
  EXPECT_EQ(empty.status, 1);
  EXPECT_EQ(empty.err, "zel: the folder 'empty' holds no sale (*.json)\n");
  const test::Outcome missing = desk_.Zel({"day", "missing", "--out", "out"});
  EXPECT_EQ(missing.status, 3);
  EXPECT_EQ(missing.err, "zel: the folder 'missing' can't be read: No such file or directory\n");
}

TEST(ExampleDay, HoldsAtLeastSixtySalesThatAreAllSignedAndVerified) {
  const test::Desk desk;
  const test::Outcome outcome = desk.Zel({"day", VNZEL_SOURCE_DIR "/examples/day", "--out", "out"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, testing::EndsWith("in all 9 containers its turnover is that of the bookings\n"));
  EXPECT_THAT(outcome.out, HasSubstr("69 documents written to out, read back and verified\n"));
  // Added up from the sale files by other means.
  EXPECT_THAT(outcome.out,
              HasSubstr("A   16.00 %  with tax                      1          3.60          0.50\n"
                        "A   19.00 %  with tax                     34        298.47         47.65\n"
                        "A   19.00 %  without tax                   2         76.04         14.45\n"
                        "B    7.00 %  with tax                     48        639.72         41.85\n"
                        "B    7.00 %  without tax                   2        121.70          8.52\n"
                        "D    0.00 %  with tax                     16        228.62          0.00\n"
                        "------------------------------------------------------------------------\n"
                        "Sales, with tax                           65       1391.12        112.97\n"
                        "  of these third-party business           14        228.62             -\n"
                        "Delivery notes (not in the above)          2        146.70          9.59\n"
                        "Training (not in the above)                2         14.49          0.76\n"
                        "------------------------------------------------------------------------\n"
                        "All bookings                              69   sequence numbers 1 to 69\n"));
}

}  // namespace
