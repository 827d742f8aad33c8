// Sale files: what is taken, and that everything else is refused with the member's path.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Program.h"

namespace {

using testing::HasSubstr;

/// A sale with one item in which these members are added or put in the place of the usual ones.
std::string SaleWith(const std::string& members) { return R"({"operator": "Meier", )" + members + "}"; }

std::string ItemWith(const std::string& members) {
  return SaleWith(R"("date": "2026-11-21T08:05", "items": [{"name": "Tee", )" + members + "}]");
}

struct WrongSale {
  std::string json;
  std::string message;
};

void PrintTo(const WrongSale& sale, std::ostream* out) { *out << sale.message; }

class RefusedSale : public testing::TestWithParam<WrongSale> {};

TEST_P(RefusedSale, IsNamedByItsPathAndNothingIsSigned) {
  const test::Desk desk;
  desk.WriteFile("wrong.json", GetParam().json);
  const test::Outcome outcome = desk.Zel({"sign", "wrong.json"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "zel: 'wrong.json': " + GetParam().message + "\n");
  EXPECT_THAT(desk.Names(), testing::UnorderedElementsAre("sale.json", "wrong.json"));
}

constexpr const char* kItems = R"("items": [{"name": "Tee", "price": "2.50", "class": "A"}])";

INSTANTIATE_TEST_SUITE_P(
    Sale, RefusedSale,
    testing::ValuesIn(std::vector<WrongSale>{
        WrongSale{"[]", "the sale: must be an object, not a list"},
        WrongSale{"{",
                  "no valid JSON: parse error at line 1, column 2: syntax error while parsing object key - "
                  "unexpected end of input; expected string literal"},
        WrongSale{"{} x",
                  "no valid JSON: parse error at line 1, column 4: syntax error while parsing value - "
                  "invalid literal"},
        WrongSale{"{\"operator\": \"M\xFFller\"}",
                  "no valid JSON: parse error at line 1, column 16: syntax error while parsing value - "
                  "invalid string: ill-formed UTF-8 byte"},
        WrongSale{std::string(100, '['), "the values are nested too deeply"},
        WrongSale{"{}", "the sale: has no \"operator\""},
        WrongSale{R"({"operator": "Meier"})", "the sale: has no \"items\""},
        WrongSale{SaleWith(R"("items": [])"), "items: holds no item"},
        WrongSale{SaleWith(R"("items": {})"), "items: must be a list, not an object"},
        WrongSale{SaleWith(R"("items": [3])"), "items[0]: must be an object, not a number"},
        WrongSale{R"({"operator": 7})", "operator: must be a string, not a number"},
        WrongSale{R"({"operator": "  "})", "operator: is empty"},
        WrongSale{R"({"operator": "Hildegard Schmidt"})",
                  "operator: \"Hildegard Schmidt\" has more than 16 characters"},
        WrongSale{
            R"({"operator": "Jürgen"})",
            "operator: \"Jürgen\" has a character that the device doesn't take (only ASCII, no umlauts)"},
        WrongSale{R"({"operator": "A\nB"})", "operator: holds a control character"},
        WrongSale{R"({"operator": "A", "operator": "B"})",
                  "the member \"operator\" occurs twice in one object"},
        WrongSale{SaleWith(R"("kassierer": "A", )" + std::string(kItems)),
                  "kassierer: there is no such member in a sale"},
        WrongSale{SaleWith(R"("date": 20261121, )" + std::string(kItems)),
                  "date: must be a string, not a number"},
        WrongSale{SaleWith(R"("date": "21.11.2026", )" + std::string(kItems)),
                  "date: \"21.11.2026\" is no date and time such as 2026-11-21T08:05"},
        WrongSale{SaleWith(R"("date": "2026-02-29T08:05", )" + std::string(kItems)),
                  "date: \"2026-02-29T08:05\" doesn't exist"},
        WrongSale{SaleWith(R"("date": "2026-11-21T24:00", )" + std::string(kItems)),
                  "date: \"2026-11-21T24:00\" doesn't exist"},
        WrongSale{
            SaleWith(R"("date": "2000-01-01T00:00", )" + std::string(kItems)),
            "date: \"2000-01-01T00:00\" must lie after 2000-01-01T00:00 and not after 2099-12-31T23:59"},
        WrongSale{
            SaleWith(R"("date": "2100-01-01T00:00", )" + std::string(kItems)),
            "date: \"2100-01-01T00:00\" must lie after 2000-01-01T00:00 and not after 2099-12-31T23:59"},
        WrongSale{SaleWith(R"("currency": "978", )" + std::string(kItems)),
                  "currency: must be a number, not a string"},
        WrongSale{SaleWith(R"("currency": 1000, )" + std::string(kItems)),
                  "currency: must be a numeric currency code such as 978"},
        WrongSale{SaleWith(R"("currency": 0, )" + std::string(kItems)),
                  "currency: must be a numeric currency code such as 978"},
        WrongSale{SaleWith(R"("training": 1, )" + std::string(kItems)),
                  "training: must be true or false, not a number"},
        WrongSale{SaleWith(R"("taxExclusive": "yes", )" + std::string(kItems)),
                  "taxExclusive: must be true or false, not a string"},
        WrongSale{SaleWith(R"("deliveryNote": null, )" + std::string(kItems)),
                  "deliveryNote: must be true or false, not null"},
        WrongSale{SaleWith(R"("profile": {}, )" + std::string(kItems)),
                  "profile: must be a string, not an object"}}));

INSTANTIATE_TEST_SUITE_P(
    Item, RefusedSale,
    testing::ValuesIn(std::vector<WrongSale>{
        WrongSale{SaleWith(R"("items": [{"price": "1", "class": "A"}])"), "items[0]: has no \"name\""},
        WrongSale{SaleWith(R"("items": [{"name": " ", "price": "1", "class": "A"}])"),
                  "items[0].name: is empty"},
        WrongSale{ItemWith(R"("unit": "kg")"),
                  "items[0]: has no price: \"price\" and \"class\", or \"prices\""},
        WrongSale{ItemWith(R"("price": "1")"), "items[0]: \"price\" and \"class\" belong together"},
        WrongSale{ItemWith(R"("class": "A")"), "items[0]: \"price\" and \"class\" belong together"},
        WrongSale{ItemWith(R"("price": "1", "class": "G")"),
                  "items[0].class: a VAT class is one of A, B, C, D, E, F"},
        WrongSale{ItemWith(R"("price": "1", "class": "AB")"),
                  "items[0].class: a VAT class is one of A, B, C, D, E, F"},
        WrongSale{ItemWith(R"("price": "1", "class": "A", "prices": {"A": "1"})"),
                  "items[0].prices: stands beside a single price; give one of them"},
        WrongSale{ItemWith(R"("prices": {})"), "items[0].prices: holds no price"},
        WrongSale{ItemWith(R"("prices": {"a": "1"})"),
                  "items[0].prices.a: a VAT class is one of A, B, C, D, E, F"},
        WrongSale{ItemWith(R"("prices": {"A": true})"),
                  "items[0].prices.A: must be a number or a string with one, not true or false"},
        WrongSale{ItemWith(R"("prices": {"A": "1,99"})"),
                  "items[0].prices.A: \"1,99\" is no decimal number with at most 2 decimals behind a point, "
                  "or too large"},
        WrongSale{ItemWith(R"("price": "1.999", "class": "A")"),
                  "items[0].price: \"1.999\" is no decimal number with at most 2 decimals behind a point, or "
                  "too large"},
        WrongSale{ItemWith(R"("price": 0.30000000000000004, "class": "A")"),
                  "items[0].price: \"0.30000000000000004\" is no decimal number with at most 2 decimals "
                  "behind a point, "
                  "or too large"},
        WrongSale{ItemWith(R"("price": "1e2", "class": "A")"),
                  "items[0].price: \"1e2\" is no decimal number with at most 2 decimals behind a point, or "
                  "too large"},
        WrongSale{ItemWith(R"("price": 1e-3, "class": "A")"),
                  "items[0].price: \"1e-3\" is no decimal number with at most 2 decimals behind a point, or "
                  "too large"},
        WrongSale{ItemWith(R"("price": "1000000000", "class": "A")"),
                  "items[0].price: must lie between -999999999.99 and 999999999.99"},
        WrongSale{ItemWith(R"("price": 99999999999999999999999, "class": "A")"),
                  "items[0].price: \"99999999999999999999999\" is no decimal number with at most 2 decimals "
                  "behind a "
                  "point, or too large"},
        WrongSale{ItemWith(R"("price": "1", "class": "A", "quantity": "0")"),
                  "items[0].quantity: must not be 0"},
        WrongSale{ItemWith(R"("price": "1", "class": "A", "quantity": "0.00001")"),
                  "items[0].quantity: \"0.00001\" is no decimal number with at most 4 decimals behind a "
                  "point, or too "
                  "large"},
        WrongSale{ItemWith(R"("price": "1", "class": "A", "quantity": "1234567.8901")"),
                  "items[0].quantity: has more than 11 characters"},
        WrongSale{ItemWith(R"("price": "1", "class": "A", "voucher": "no")"),
                  "items[0].voucher: must be true or false, not a string"},
        WrongSale{ItemWith(R"("price": "1", "class": "A", "vat": "19")"),
                  "items[0].vat: there is no such member in a sale"}}));

/// The item's quantity and price as they stand in the signed item list.
std::string SignedItem(const std::string& members) {
  const test::Desk desk;
  desk.WriteFile("sale.json", ItemWith(members));
  const test::Outcome outcome = desk.Zel({"sign", "sale.json"});
  if (outcome.status != 0) return outcome.err;
  return test::FromBase64(test::Element(desk.ReadFile("sale.xml"), "itemListEncoded"));
}

// Quantity 1, name "tee", and the price under its tag.
const std::string kTea(
    "\xA0\x01"
    "1"
    "\xA2\x03"
    "tee",
    8);

TEST(Sale, NumbersAreReadDigitByDigit) {
  EXPECT_EQ(SignedItem(R"("price": "0.29", "class": "A")"), kTea + "\xB1\x02\x02\x9C");
  EXPECT_EQ(SignedItem(R"("price": 0.29, "class": "A")"), kTea + "\xB1\x02\x02\x9C");
  EXPECT_EQ(SignedItem(R"("price": 29e-2, "class": "A")"), kTea + "\xB1\x02\x02\x9C");
  EXPECT_EQ(SignedItem(R"("price": 0.2900000, "class": "A")"), kTea + "\xB1\x02\x02\x9C");
  EXPECT_EQ(SignedItem(R"("price": "-999999999.99", "class": "F")"),
            kTea + "\xB6\x06\x99\x99\x99\x99\x99\x9D");
  EXPECT_EQ(SignedItem(R"("price": "7", "class": "C", "quantity": 0.1)"), std::string("\xA0\x03"
                                                                                      "0.1"
                                                                                      "\xA2\x03"
                                                                                      "tee"
                                                                                      "\xB3\x02\x70\x0C",
                                                                                      14));
}

TEST(Sale, FlagsAndUnitGetTheirRecords) {
  EXPECT_EQ(SignedItem(R"("price": "1", "class": "D", "unit": "Paar", "discount": true, "voucher": true,
                          "thirdParty": true)"),
            std::string("\xA0\x01"
                        "1"
                        "\xA1\x04"
                        "paar"
                        "\xA2\x03"
                        "tee"
                        "\xAA\x00\xAB\x00\xAC\x00\xB4\x02\x10\x0C",
                        24));
  EXPECT_EQ(SignedItem(R"("price": "1", "class": "A", "surcharge": true)"),
            kTea + std::string("\xAA\x00\xB1\x02\x10\x0C", 6));
}

TEST(Sale, BookingMembersReachTheRequest) {
  const test::Desk desk;
  desk.WriteFile("sale.json", SaleWith(R"("date": "2099-12-31T23:59", "currency": 756, "taxExclusive": true,
      "training": true, "deliveryNote": true, "profile": "kasse", "items": [
        {"name": "Tee", "prices": {"A": "100.00", "B": "50.00"}}])"));
  ASSERT_EQ(desk.Zel({"sign", "sale.json"}).status, 0);
  const std::string request =
      test::FromBase64(test::Element(desk.ReadFile("sale.xml"), "transactionRequest"));
  EXPECT_TRUE(request.starts_with("\xCD\x04\x20\x99\x12\x31\xCE\x02\x23\x59\xC6\x05Meier\xC7\x20"));
  const std::string end(
      "\xC8\x02\x02\xF4\xC9\x00\xCA\x00\xD7\x00"
      "\xE1\x0E\xD8\x03\x10\x00\x0C\xDA\x03\x01\x90\x0C\xDB\x02\x19\x00"
      "\xE2\x0D\xD8\x03\x05\x00\x0C\xDA\x02\x35\x0C\xDB\x02\x07\x00",
      41);
  EXPECT_TRUE(request.ends_with(end));
}

TEST(Sale, WithoutADateIsSignedAtThePresentTime) {
  const test::Desk desk;
  desk.WriteFile("sale.json", SaleWith(kItems));
  ASSERT_EQ(desk.Zel({"sign", "sale.json"}).status, 0);
  const test::Outcome dump = desk.Zel({"dump", "sale.xml"});
  const std::time_t now = std::time(nullptr);
  char today[16];
  char yesterday[16];
  const std::time_t before = now - 120;
  std::strftime(today, sizeof today, "%Y-%m-%d", std::localtime(&now));
  std::strftime(yesterday, sizeof yesterday, "%Y-%m-%d", std::localtime(&before));
  EXPECT_THAT(dump.out, testing::AnyOf(HasSubstr(today), HasSubstr(yesterday)));
}

}  // namespace
