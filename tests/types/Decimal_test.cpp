#include "VnZEL10cmn/types/internal/Decimal.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <locale>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "tests/support/Regional.h"

using VnZEL10cmn::Currency;
using VnZEL10cmn::internal::Decimal;

namespace {

std::int64_t Even(std::string_view text) { return Decimal(text).RoundedEven().Scaled(); }
std::int64_t Away(std::string_view text, int decimals) {
  return Decimal(text).RoundedAway(decimals).Scaled();
}

TEST(Decimal, RoundsHalfToEvenToFourDecimals) {
  EXPECT_EQ(Even("1,00005"), 10000);
  EXPECT_EQ(Even("1,00015"), 10002);
  EXPECT_EQ(Even("1,00025"), 10002);
  EXPECT_EQ(Even("-1,00015"), -10002);
  EXPECT_EQ(Even("1,000150000000000000000000001"), 10002);
  EXPECT_EQ(Even("1,000050000000000000000000001"), 10001);
  EXPECT_EQ(Even("1,00004999"), 10000);
  EXPECT_EQ(Even("1234,5"), 12345000);
  EXPECT_EQ(Even("7"), 70000);
}

// A digit behind the 28th decimal rounds the one before it, which may make a tie of what was none.
TEST(Decimal, KeepsTwentyEightDecimals) {
  EXPECT_EQ(Even("0,0000500000000000000000000000"), 0);
  EXPECT_EQ(Even("0,0000500000000000000000000001"), 1);
  EXPECT_EQ(Even("0,00005000000000000000000000004"), 0);
  EXPECT_EQ(Even("0,00005000000000000000000000005"), 1);
}

TEST(Decimal, RoundsHalfAwayFromZero) {
  EXPECT_EQ(Away("1,005", 2), 10100);
  EXPECT_EQ(Away("-1,005", 2), -10100);
  EXPECT_EQ(Away("1,0049", 2), 10000);
  EXPECT_EQ(Away("2,5", 0), 30000);
  EXPECT_EQ(Away("2,0005", 3), 20010);
}

TEST(Decimal, CurrencyLimitsBoundTheResult) {
  EXPECT_EQ(Even("922337203685477,5807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(Even("-922337203685477,5808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_THROW(Even("922337203685477,5808"), std::overflow_error);
  EXPECT_THROW(Even("-922337203685477,5809"), std::overflow_error);
  EXPECT_THROW(Even("9999999999999999999999999999"), std::overflow_error);
  EXPECT_THROW(Away("9999999999999999999999999999", 3), std::overflow_error);
  EXPECT_THROW(Away("9999999999999999999999999999", 0), std::overflow_error);
  EXPECT_THROW(Even("99999999999999999999999999999"), std::overflow_error);
}

TEST(Decimal, ReadsBlanksSignsGroupsAndExponents) {
  EXPECT_EQ(Even("  12  "), 120000);
  EXPECT_EQ(Even("+12"), 120000);
  EXPECT_EQ(Even(",5"), 5000);
  EXPECT_EQ(Even("5,"), 50000);
  EXPECT_EQ(Even("1.234.567"), 12345670000);
  EXPECT_EQ(Even("1,5E3"), 15000000);
  EXPECT_EQ(Even("15e-1"), 15000);
  EXPECT_EQ(Even("15e+1"), 1500000);
  EXPECT_EQ(Even("1e-1000000000000"), 0);
  EXPECT_EQ(Even("0e1000000000000"), 0);
  EXPECT_EQ(Even("00000000000000000000000000000000000000000001"), 10000);
  EXPECT_THROW(Even("1e1000000000000"), std::overflow_error);
  for (const char* text : {"", "+", "1e", "1e+", "1ex", "1e5x", "e5", ".5.", "1,5.0", "0x10"}) {
    EXPECT_THROW(Even(text), std::invalid_argument) << text;
  }
}

class WideCharacters : public std::numpunct<wchar_t> {
 public:
  explicit WideCharacters(wchar_t thousands) : thousands_(thousands) {}

 protected:
  wchar_t do_decimal_point() const override { return L','; }
  wchar_t do_thousands_sep() const override { return thousands_; }

 private:
  wchar_t thousands_;
};

// A narrow character above 7F says only that the wide one has to be asked.
TEST(Decimal, TakesSeparatorsThatAreLongerThanAByte) {
  for (const auto& [separator, text] : {std::pair{L'\u202F', "1\u202F234,5"},
                                        std::pair{L'\u00A0', "1\u00A0234,5"}, std::pair{L'\'', "1'234,5"}}) {
    const std::locale narrow(std::locale::classic(), new test::NumberCharacters(',', '\xE2'));
    const test::GlobalLocale host(std::locale(narrow, new WideCharacters(separator)));
    EXPECT_EQ(Even(text), 12345000) << text;
  }
}

}  // namespace
