#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/booking/clsZelTransAct.h"
#include "VnZEL10cmn/booking/clsZelVatList.h"
#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/render/clsZelItemPrint.h"
#include "tests/items/HostItem.h"
#include "tests/items/HostLocale.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemPrint;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelVatList;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELSerialType;
using Lines = std::vector<std::string>;

// The lines of a text that are not empty. The text's line ends have to be CR LF throughout.
Lines FilledLines(const std::string& text) {
  Lines lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find("\r\n", start);
    if (end == std::string::npos) {
      end = text.size();
    }
    const std::string line = text.substr(start, end - start);
    EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos) << line;
    if (line.find_first_not_of(' ') != std::string::npos) {
      lines.push_back(line);
    }
    start = end + 2;
  }
  return lines;
}

// How the box ends behind its last line of text is the renderer's own: its frame is checked and taken out.
Lines WithoutTheEndOfTheBox(Lines lines) {
  std::size_t i = 0;
  while (i < lines.size() && lines[i].find("ÜBERPRÜFEN SIE") == std::string::npos) {
    ++i;
  }
  ++i;
  std::string last;
  while (i < lines.size() && (lines[i].starts_with("        |") || lines[i].starts_with("        +"))) {
    last = lines[i];
    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(i));
    // 8 blanks and 56 columns; one of the letters counts twice in UTF-8 where there is one.
    EXPECT_GE(last.size(), 64U) << last;
  }
  EXPECT_EQ(last, "        +------------------------------------------------------+");
  return lines;
}

const Lines title{"      Kassen-Belegausgabe (Basisversion)", "    -====================================-"};

const Lines box{"        +------------------------------------------------------+",
                "        |                                                      |",
                "        |                 -= A C H T U N G =-                  |",
                "        |               =======================                |",
                "        |    DIESER BELEG IST NOCH NICHT SIGNIERT! BITTE       |",
                "        |    ÜBERPRÜFEN SIE DIE BUCHUNGEN UND DEN ABLAUF       |"};

Lines operator+(Lines left, const Lines& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

Currency Cents(std::int64_t cents) { return Currency::FromScaled(cents * 100); }

std::shared_ptr<clsZelItemCash> Item(Currency quantity, std::string_view name, std::string_view unit) {
  auto item = std::make_shared<clsZelItemCash>();
  item->Quantity(quantity);
  item->Name(name);
  item->Unit(unit);
  return item;
}

// Coffee, bread with a part without VAT, and a sausage in three classes, sold by Anna on New Year's Eve.
class Sale {
 public:
  Sale() {
    booking.VatList(std::make_shared<clsZelVatList>());
    booking.TransactionDate(Date::FromCivil(2026, 12, 31, 8, 5, 59));
    booking.Operator("Anna");
    const auto coffee = Item(2, "Kaffee", "Tasse");
    coffee->Price(1, Cents(11900));
    const auto bread = Item(1, "Brot & Käse", "");
    bread->Price(2, Cents(1070));
    bread->Price(4, Cents(500));
    const auto sausage = Item(1, "Wurst", "");
    sausage->Price(3, Cents(300));
    sausage->Price(5, Cents(1100));
    sausage->Price(6, Cents(1055));
    for (const auto& item : {coffee, bread, sausage}) {
      EXPECT_TRUE(booking.AddItem(item));
    }
  }

  void Sign(std::string_view sequenceNumber = "CB 01 2A") {
    ByteArray request;
    EXPECT_TRUE(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
    Respond(sequenceNumber);
  }

  void Respond(std::string_view sequenceNumber) {
    // DE123456789, device 7, sequence number, 48 bytes of signature
    const std::string response = "C4 0B 44 45 31 32 33 34 35 36 37 38 39 C5 01 07 " +
                                 std::string(sequenceNumber) +
                                 " 9E 30 "
                                 "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F "
                                 "10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F "
                                 "20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F";
    EXPECT_TRUE(booking.BinaryDataSet(ZELSerialType::Response, test::FromHex(response), 0))
        << booking.ErrorObject().ErrorMsg();
  }

  clsZelTransAct booking;
};

const Lines saleHead{"    Belegdatum .............: 31.12.2026 08:05", "    Bediener ...............: Anna"};

const Lines saleItems{"      2,0 Tasse    Kaffee                      119,00 EUR (A)",
                      "      1,0          Brot & Käse                  10,70 EUR (B)",
                      "                                                 5,00 EUR (D)",
                      "      1,0          Wurst                         3,00 EUR (C)",
                      "                                                11,00 EUR (E)",
                      "                                                10,55 EUR (F)",
                      "                                             ------------------",
                      "                                                159,25 EUR"};

const Lines saleVat{"    K     Betrag |      USt. |     Satz",  "    -------------+-----------+----------",
                    "    A:    119,00 |     19,00 |   19,00 %", "    B:     10,70 |      0,70 |    7,00 %",
                    "    C:      3,00 |      0,00 |    0,00 %", "    E:     11,00 |      1,00 |   10,00 %"};

const Lines noVat{"    USt-Auswertungen erst nach Signierung!"};

// SHA-256 of the items' records, where bytes 80 to 9F count as their characters' low bytes (90 stays 90):
// A0 01 32 A1 05 tasse A2 06 kaffee B1 03 11 90 0C, A0 01 31 A2 09 brot#k#se B2 03 01 07 0C B4 02 50 0C,
// A0 01 31 A2 05 wurst B3 02 30 0C B5 03 01 10 0C B6 03 01 05 5C
const Lines saleHash{
    "    Hashwert Posten ........: HV3U2-IJIGW-WXT5L-NCQWG-WKCKT-2ESGY-FWR3Q-EPW7A-JCRJL-P3ABP-2A===-="};

TEST(clsZelItemPrintBooking, AnUnsignedReceipt) {
  Sale sale;
  const std::string text = sale.booking.ToString();
  EXPECT_EQ(WithoutTheEndOfTheBox(FilledLines(text)), title + saleHead + box + saleItems + noVat + saleHash);
  test::ExpectNoError(sale.booking);
}

TEST(clsZelItemPrintBooking, ASignedReceipt) {
  Sale sale;
  sale.Sign();
  const std::string text = sale.booking.ToString();
  EXPECT_EQ(FilledLines(text), title + saleHead + saleItems + saleVat + saleHash);
  test::ExpectNoError(sale.booking);
}

// The whole text, blank lines included: what receipts look like does not change by accident.
TEST(clsZelItemPrintBooking, LayoutOfAnUnsignedReceipt) {
  Sale sale;
  EXPECT_EQ(sale.booking.ToString(),
            "      Kassen-Belegausgabe (Basisversion)\r\n"
            "    -====================================-\r\n"
            "\r\n"
            "    Belegdatum .............: 31.12.2026 08:05\r\n"
            "    Bediener ...............: Anna\r\n"
            "\r\n"
            "        +------------------------------------------------------+\r\n"
            "        |                                                      |\r\n"
            "        |                 -= A C H T U N G =-                  |\r\n"
            "        |               =======================                |\r\n"
            "        |    DIESER BELEG IST NOCH NICHT SIGNIERT! BITTE       |\r\n"
            "        |    ÜBERPRÜFEN SIE DIE BUCHUNGEN UND DEN ABLAUF       |\r\n"
            "        |                                                      |\r\n"
            "        +------------------------------------------------------+\r\n"
            "\r\n"
            "      2,0 Tasse    Kaffee                      119,00 EUR (A)\r\n"
            "      1,0          Brot & Käse                  10,70 EUR (B)\r\n"
            "                                                 5,00 EUR (D)\r\n"
            "      1,0          Wurst                         3,00 EUR (C)\r\n"
            "                                                11,00 EUR (E)\r\n"
            "                                                10,55 EUR (F)\r\n"
            "                                             ------------------\r\n"
            "                                                159,25 EUR\r\n"
            "\r\n"
            "    USt-Auswertungen erst nach Signierung!\r\n"
            "\r\n"
            "    Hashwert Posten ........: "
            "HV3U2-IJIGW-WXT5L-NCQWG-WKCKT-2ESGY-FWR3Q-EPW7A-JCRJL-P3ABP-2A===-=\r\n");
}

TEST(clsZelItemPrintBooking, LayoutOfASignedReceipt) {
  Sale sale;
  sale.Sign();
  EXPECT_EQ(sale.booking.ToString(),
            "      Kassen-Belegausgabe (Basisversion)\r\n"
            "    -====================================-\r\n"
            "\r\n"
            "    Belegdatum .............: 31.12.2026 08:05\r\n"
            "    Bediener ...............: Anna\r\n"
            "\r\n"
            "      2,0 Tasse    Kaffee                      119,00 EUR (A)\r\n"
            "      1,0          Brot & Käse                  10,70 EUR (B)\r\n"
            "                                                 5,00 EUR (D)\r\n"
            "      1,0          Wurst                         3,00 EUR (C)\r\n"
            "                                                11,00 EUR (E)\r\n"
            "                                                10,55 EUR (F)\r\n"
            "                                             ------------------\r\n"
            "                                                159,25 EUR\r\n"
            "\r\n"
            "    K     Betrag |      USt. |     Satz\r\n"
            "    -------------+-----------+----------\r\n"
            "    A:    119,00 |     19,00 |   19,00 %\r\n"
            "    B:     10,70 |      0,70 |    7,00 %\r\n"
            "    C:      3,00 |      0,00 |    0,00 %\r\n"
            "    E:     11,00 |      1,00 |   10,00 %\r\n"
            "\r\n"
            "    Hashwert Posten ........: "
            "HV3U2-IJIGW-WXT5L-NCQWG-WKCKT-2ESGY-FWR3Q-EPW7A-JCRJL-P3ABP-2A===-=\r\n");
}

TEST(clsZelItemPrintBooking, ARequestAloneDoesNotMakeABookingSigned) {
  Sale sale;
  ByteArray request;
  EXPECT_TRUE(sale.booking.BinaryDataGet(ZELSerialType::Request, request, 0));
  EXPECT_EQ(WithoutTheEndOfTheBox(FilledLines(sale.booking.ToString())),
            title + saleHead + box + saleItems + noVat + saleHash);
}

TEST(clsZelItemPrintBooking, SequenceNumberZeroIsNotSigned) {
  Sale sale;
  sale.Sign("CB 01 00");
  EXPECT_NE(sale.booking.ZelRespData(), "");
  EXPECT_EQ(WithoutTheEndOfTheBox(FilledLines(sale.booking.ToString())),
            title + saleHead + box + saleItems + noVat + saleHash);
}

TEST(clsZelItemPrintBooking, TheLargestSequenceNumberIsSigned) {
  Sale sale;
  sale.Sign("CB 04 FF FF FF FF");
  EXPECT_EQ(FilledLines(sale.booking.ToString()), title + saleHead + saleItems + saleVat + saleHash);
}

TEST(clsZelItemPrintBooking, TheHashOfASignedReceiptIsThatOfTheRequest) {
  Sale sale;
  sale.Sign();
  const auto late = Item(1, "Nachtrag", "");
  late->Price(1, Cents(100));
  EXPECT_TRUE(sale.booking.AddItem(late));
  const Lines lines = FilledLines(sale.booking.ToString());
  EXPECT_EQ(lines.back(), saleHash.front());
  // Items and total are those of now, the VAT table is that of the request.
  ASSERT_GT(lines.size(), 12U);
  EXPECT_EQ(lines[10], "      1,0          Nachtrag                      1,00 EUR (A)");
  EXPECT_EQ(lines[12], "                                                160,25 EUR");
  EXPECT_EQ(lines[15], "    A:    119,00 |     19,00 |   19,00 %");
}

TEST(clsZelItemPrintBooking, ASignedReceiptWithoutARequestHasNoHashAndZeroTurnovers) {
  Sale sale;
  sale.Respond("CB 01 2A");
  const Lines lines = FilledLines(sale.booking.ToString());
  const Lines zeroVat{"    K     Betrag |      USt. |     Satz",  "    -------------+-----------+----------",
                      "    A:      0,00 |      0,00 |    0,00 %", "    B:      0,00 |      0,00 |    0,00 %",
                      "    C:      0,00 |      0,00 |    0,00 %", "    E:      0,00 |      0,00 |    0,00 %"};
  EXPECT_EQ(lines, title + saleHead + saleItems + zeroVat + Lines{"    Hashwert Posten ........: "});
}

TEST(clsZelItemPrintBooking, Sha1HashesAreShownTheSameWay) {
  Sale sale;
  sale.booking.UseSHA256(false);
  EXPECT_EQ(FilledLines(sale.booking.ToString()).back(),
            "    Hashwert Posten ........: GH6ZQ-SAOLK-YLLFV-SPEHZ-R3IW6-7WSEE-JH");
}

TEST(clsZelItemPrintBooking, CharactersAreTheHosts) {
  const test::HostLocale locale(test::swissLike);
  Sale sale;
  const auto car = Item(Currency::FromScaled(15000), "Auto", "Stk");
  car->Price(1, Cents(1234550));
  EXPECT_TRUE(sale.booking.AddItem(car));
  sale.Sign();
  const Lines lines = FilledLines(sale.booking.ToString());
  ASSERT_EQ(lines.size(), 20U);
  EXPECT_EQ(lines[2], "    Belegdatum .............: 31-12-2026 08_05");
  EXPECT_EQ(lines[4], "      2.0 Tasse    Kaffee                      119.00 EUR (A)");
  EXPECT_EQ(lines[10], "      1.5 Stk      Auto                     12'345.50 EUR (A)");
  EXPECT_EQ(lines[12], "                                             12'504.75 EUR");
  // 12,464.50 gross at 19 %: 1,990.1302... VAT
  EXPECT_EQ(lines[15], "    A: 12'464.50 |  1'990.13 |   19.00 %");
  EXPECT_EQ(lines[16], "    B:     10.70 |      0.70 |    7.00 %");
}

TEST(clsZelItemPrintBooking, TheVatTableNeverShowsTheFourthAndTheSixthClass) {
  clsZelTransAct booking;
  booking.VatList(std::make_shared<clsZelVatList>());
  booking.TransactionDate(Date::FromCivil(2026, 1, 2, 3, 4));
  booking.Operator("B");
  const auto item = Item(1, "Porto", "");
  item->Price(4, Cents(5000));
  item->Price(6, Cents(6000));
  EXPECT_TRUE(booking.AddItem(item));
  ByteArray request;
  ASSERT_TRUE(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
  ASSERT_TRUE(booking.BinaryDataSet(ZELSerialType::Response,
                                    test::FromHex("C4 01 58 C5 01 01 CB 01 01 9E 30 "
                                                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"),
                                    0));
  const Lines lines = FilledLines(booking.ToString());
  const Lines expected{"    A:      0,00 |      0,00 |   19,00 %", "    B:      0,00 |      0,00 |    7,00 %",
                       "    C:      0,00 |      0,00 |    0,00 %",
                       "    E:      0,00 |      0,00 |   10,00 %"};
  ASSERT_EQ(lines.size(), 15U);
  EXPECT_EQ(Lines(lines.begin() + 10, lines.begin() + 14), expected);
}

TEST(clsZelItemPrintBooking, NegativeTurnoversAndReturns) {
  clsZelTransAct booking;
  booking.VatList(std::make_shared<clsZelVatList>());
  booking.TransactionDate(Date::FromCivil(2026, 1, 2, 3, 4));
  booking.Operator("B");
  const auto item = Item(-1, "Pfand", "");
  item->Price(1, Cents(-11900));
  EXPECT_TRUE(booking.AddItem(item));
  ByteArray request;
  ASSERT_TRUE(booking.BinaryDataGet(ZELSerialType::Request, request, 0)) << booking.ErrorObject().ErrorMsg();
  ASSERT_TRUE(booking.BinaryDataSet(ZELSerialType::Response,
                                    test::FromHex("C4 01 58 C5 01 01 CB 01 01 9E 30 "
                                                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"),
                                    0));
  const Lines lines = FilledLines(booking.ToString());
  ASSERT_GT(lines.size(), 9U);
  EXPECT_EQ(lines[4], "     -1,0          Pfand                      -119,00 EUR (A)");
  EXPECT_EQ(lines[6], "                                               -119,00 EUR");
  EXPECT_EQ(lines[9], "    A:   -119,00 |    -19,00 |   19,00 %");
}

TEST(clsZelItemPrintBooking, AReceiptWithoutItems) {
  clsZelTransAct booking;
  booking.TransactionDate(Date::FromCivil(2026, 1, 2, 3, 4));
  const Lines expected =
      title + Lines{"    Belegdatum .............: 02.01.2026 03:04", "    Bediener ...............: "} +
      box +
      Lines{"                                             ------------------",
            "                                                  0,00 EUR"} +
      noVat + Lines{"    Hashwert Posten ........: "};
  EXPECT_EQ(WithoutTheEndOfTheBox(FilledLines(booking.ToString())), expected);
  test::ExpectNoError(booking);
}

TEST(clsZelItemPrintBooking, AWideTotalIsShownWhole) {
  clsZelTransAct booking;
  const auto item = Item(1, "Haus", "");
  item->Price(1, Cents(50000000));
  item->Price(2, Cents(73456789));
  EXPECT_TRUE(booking.AddItem(item));
  const Lines lines = WithoutTheEndOfTheBox(FilledLines(booking.ToString()));
  ASSERT_EQ(lines.size(), 16U);
  EXPECT_EQ(lines[10], "      1,0          Haus                     500.000,00 EUR (A)");
  EXPECT_EQ(lines[11], "                                            734.567,89 EUR (B)");
  EXPECT_EQ(lines[13], "                                             1.234.567,89 EUR");
}

TEST(clsZelItemPrintBooking, AHostItemShowsItsOwnText) {
  clsZelTransAct booking;
  const auto item = std::make_shared<HostItem>("a");
  item->text = "erste Zeile\r\nzweite Zeile";
  item->price = Cents(1234);
  item->bytes = test::FromHex("A0 01 31");
  EXPECT_TRUE(booking.AddItem(item));
  const Lines lines = WithoutTheEndOfTheBox(FilledLines(booking.ToString()));
  ASSERT_EQ(lines.size(), 16U);
  EXPECT_EQ(lines[10], "    erste Zeile");
  EXPECT_EQ(lines[11], "    zweite Zeile");
  EXPECT_EQ(lines[13], "                                                 12,34 EUR");
  test::ExpectNoError(booking);
}

TEST(clsZelItemPrintBooking, AHostItemMayHaveNothingToShow) {
  clsZelTransAct booking;
  const auto item = std::make_shared<HostItem>("a");
  item->text = "";
  item->price = Cents(1234);
  item->bytes = test::FromHex("A0 01 31");
  EXPECT_TRUE(booking.AddItem(item));
  const std::string text = booking.ToString();
  EXPECT_NE(text.find(" 12,34 EUR\r\n"), std::string::npos) << text;
  test::ExpectNoError(booking);
}

TEST(clsZelItemPrintBooking, AHashThatFailsIsShownAsSuchAndLoggedWithItsReason) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  const auto item = std::make_shared<HostItem>("a");
  item->failGet = true;
  EXPECT_TRUE(booking.AddItem(item));
  EXPECT_EQ(FilledLines(booking.ToString()).back(), "    Hashwert Posten ........: ##FEHLER##");
  test::ExpectError(booking.ErrorObject(), 9000, true, "GetItemHash",
                    "Hashausgabe nicht möglich!\r\nEine interne Funktion meldete einen Fehler");
  std::size_t ofTheBooking = 0;
  for (const std::string& entry : log.Entries()) {
    ofTheBooking +=
        entry.find("Quelle .............: VnZEL10cmn.clsZelTransAct\r\n") == std::string::npos ? 0U : 1U;
  }
  EXPECT_EQ(ofTheBooking, 2U);
  EXPECT_EQ(log.Functions(), (std::vector<std::string>{"BinaryDataGet", "GenItemHash", "GetItemHash"}));
}

TEST(clsZelItemPrintBooking, AnItemWithoutPricesFailsTheReceipt) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  const auto item = std::make_shared<HostItem>("a");
  item->failPrices = true;
  EXPECT_TRUE(booking.AddItem(item));
  EXPECT_EQ(booking.ToString(), "");
  test::ExpectError(booking.ErrorObject(), 4711, true, "ToStringBI.[GetPrices]", "Posten kaputt");
  EXPECT_EQ(log.Functions(), Lines{"ToStringBI.[GetPrices]"});
}

TEST(clsZelItemPrintBooking, RenderingChangesNothing) {
  Sale sale;
  sale.Sign();
  const std::string request = sale.booking.ZelRqstData();
  const std::string hash = sale.booking.ItemHash();
  const std::string first = sale.booking.ToString();
  EXPECT_EQ(sale.booking.ToString(), first);
  EXPECT_EQ(sale.booking.ZelRqstData(), request);
  EXPECT_EQ(sale.booking.ItemHash(), hash);
  EXPECT_EQ(sale.booking.TransactionDate(), Date::FromCivil(2026, 12, 31, 8, 5, 59));
}

TEST(clsZelItemPrintBooking, TheEngineRendersBookingsThatTheCallerKeepsOrShares) {
  clsZelItemPrint engine;
  clsVnError error;
  const auto booking = std::make_shared<clsZelTransAct>();
  booking->TransactionDate(Date::FromCivil(2026, 1, 2, 3, 4));
  const std::string text = booking->ToString();
  EXPECT_NE(text, "");
  EXPECT_EQ(engine.ToStringBI(booking, &error), text);
  EXPECT_EQ(engine.ToStringBI(*booking, &error), text);
  EXPECT_EQ(engine.ToStringBI(booking), text);
  EXPECT_FALSE(error.HasError());
}

TEST(clsZelItemPrintBooking, NoBookingIsAnEmptyTextAndAnError) {
  clsZelItemPrint engine;
  clsVnError error;
  EXPECT_EQ(engine.ToStringBI(std::shared_ptr<clsZelTransAct>(), &error), "");
  EXPECT_TRUE(error.HasError());
  EXPECT_EQ(engine.ToStringBI(std::shared_ptr<clsZelTransAct>()), "");
}

class OwnEngine : public clsZelItemPrint {
 public:
  using clsZelItemPrint::ToStringBI;
  std::string ToStringBI(std::shared_ptr<clsZelTransAct> BookItem, clsVnError* ErrObj) override {
    if (fail && ErrObj != nullptr) {
      ErrObj->SetError(4713, "Papier leer", true, "ToStringBI");
    }
    return "Beleg von " + BookItem->Operator();
  }
  bool fail = false;
};

TEST(clsZelItemPrintBooking, AHostsEngineTakesThePlaceOfTheDefaultOne) {
  test::TestLog log;
  const auto engine = std::make_shared<OwnEngine>();
  Sale sale;
  sale.booking.LogHandler(log.Handler());
  sale.booking.PrintEngine(engine);
  EXPECT_EQ(sale.booking.ToString(), "Beleg von Anna");
  test::ExpectNoError(sale.booking);
  engine->fail = true;
  EXPECT_EQ(sale.booking.ToString(), "Beleg von Anna");
  test::ExpectError(sale.booking.ErrorObject(), 4713, true, "ToStringBI", "Papier leer");
  EXPECT_EQ(log.Functions(), Lines{"ToStringBI"});
  sale.booking.PrintEngine(nullptr);
  EXPECT_EQ(FilledLines(sale.booking.ToString()).front(), title.front());
  test::ExpectNoError(sale.booking);
}

}  // namespace
