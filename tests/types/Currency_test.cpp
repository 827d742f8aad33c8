#include "VnZEL10cmn/types/Currency.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <functional>
#include <iomanip>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_set>

#include "tests/support/Regional.h"

using VnZEL10cmn::Currency;

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

template <class Exception, class Operation>
void ExpectThrow(std::string_view message, Operation operation) {
  try {
    operation();
    ADD_FAILURE() << "nothing is thrown";
  } catch (const Exception& exception) {
    EXPECT_EQ(exception.what(), message);
  }
}

template <class Operation>
void ExpectOverflow(Operation operation) {
  ExpectThrow<std::overflow_error>("Überlauf", operation);
}

TEST(Currency, IsZeroAtFirst) { EXPECT_EQ(Currency().Scaled(), 0); }

TEST(Currency, HoldsTenThousandths) {
  EXPECT_EQ(Currency::FromScaled(12345).Scaled(), 12345);
  EXPECT_EQ(static_cast<double>(Currency::FromScaled(12345)), 1.2345);
  EXPECT_EQ(static_cast<double>(Currency::FromScaled(-5000)), -0.5);
}

TEST(Currency, TakesWholeNumbersOfAnyType) {
  EXPECT_EQ(Currency(19).Scaled(), 190000);
  EXPECT_EQ(Currency(-7).Scaled(), -70000);
  EXPECT_EQ(Currency(std::uint8_t{200}).Scaled(), 2000000);
  EXPECT_EQ(Currency(4294967295U).Scaled(), 42949672950000);
}

TEST(Currency, WholeNumbersBeyondTheRangeOverflow) {
  EXPECT_EQ(Currency(std::int64_t{922337203685477}).Scaled(), 9223372036854770000);
  EXPECT_THROW(Currency(std::int64_t{922337203685478}), std::overflow_error);
  EXPECT_EQ(Currency(std::int64_t{-922337203685477}).Scaled(), -9223372036854770000);
  EXPECT_THROW(Currency(std::int64_t{-922337203685478}), std::overflow_error);
  EXPECT_THROW(Currency{smallest}, std::overflow_error);
  EXPECT_THROW(Currency{std::numeric_limits<std::uint64_t>::max()}, std::overflow_error);
}

TEST(Currency, RoundsDoublesAtTheFourthDecimal) {
  EXPECT_EQ(Currency(1.2345).Scaled(), 12345);
  EXPECT_EQ(Currency(0.1).Scaled(), 1000);
  EXPECT_EQ(Currency(-2.71828).Scaled(), -27183);
  EXPECT_EQ(Currency(1.23444).Scaled(), 12344);
  EXPECT_EQ(Currency(0.00004).Scaled(), 0);
}

// Thirty-seconds are exact in binary: 1/32 is 0.03125, a true tie at the fourth decimal.
TEST(Currency, RoundsDoubleTiesToEven) {
  EXPECT_EQ(Currency(0.03125).Scaled(), 312);
  EXPECT_EQ(Currency(0.09375).Scaled(), 938);
  EXPECT_EQ(Currency(0.15625).Scaled(), 1562);
  EXPECT_EQ(Currency(-0.03125).Scaled(), -312);
  EXPECT_EQ(Currency(-0.09375).Scaled(), -938);
}

TEST(Currency, DoublesOutsideTheRangeOverflow) {
  EXPECT_EQ(Currency(922337203685477.5).Scaled(), 9223372036854775000);
  EXPECT_THROW(Currency(922337203685478.0), std::overflow_error);
  EXPECT_EQ(Currency(-922337203685477.5).Scaled(), -9223372036854775000);
  EXPECT_THROW(Currency(-922337203685478.0), std::overflow_error);
  EXPECT_THROW(Currency(1e300), std::overflow_error);
  EXPECT_THROW(Currency{std::numeric_limits<double>::infinity()}, std::overflow_error);
  EXPECT_THROW(Currency{-std::numeric_limits<double>::infinity()}, std::overflow_error);
  EXPECT_THROW(Currency{std::numeric_limits<double>::quiet_NaN()}, std::overflow_error);
}

TEST(Currency, AddsAndSubtractsExactly) {
  Currency sum = Currency::FromScaled(1);
  sum += Currency::FromScaled(99999);
  EXPECT_EQ(sum.Scaled(), 100000);
  sum -= Currency(11);
  EXPECT_EQ(sum.Scaled(), -10000);
  EXPECT_EQ((Currency(2) + Currency(3)).Scaled(), 50000);
  EXPECT_EQ((Currency(2) - Currency(3)).Scaled(), -10000);
  EXPECT_EQ((-Currency(2)).Scaled(), -20000);
}

TEST(Currency, SumsAndDifferencesOverflowAtTheLimits) {
  const Currency step = Currency::FromScaled(1);
  EXPECT_EQ((Currency::FromScaled(largest - 1) + step).Scaled(), largest);
  EXPECT_THROW(Currency::FromScaled(largest) + step, std::overflow_error);
  EXPECT_EQ((Currency::FromScaled(smallest + 1) - step).Scaled(), smallest);
  EXPECT_THROW(Currency::FromScaled(smallest) - step, std::overflow_error);
  EXPECT_THROW(-Currency::FromScaled(smallest), std::overflow_error);
  EXPECT_EQ((-Currency::FromScaled(smallest + 1)).Scaled(), largest);
}

TEST(Currency, AnOverflowingSumLeavesTheValue) {
  Currency sum = Currency::FromScaled(largest);
  EXPECT_THROW(sum += Currency::FromScaled(1), std::overflow_error);
  EXPECT_EQ(sum.Scaled(), largest);
  EXPECT_THROW(sum -= Currency::FromScaled(smallest), std::overflow_error);
  EXPECT_EQ(sum.Scaled(), largest);
}

TEST(Currency, OrdersNumerically) {
  EXPECT_LT(Currency(-1), Currency(0));
  EXPECT_GT(Currency::FromScaled(1), 0);
  EXPECT_EQ(Currency(1), Currency::FromScaled(10000));
  EXPECT_NE(Currency(1), Currency::FromScaled(10001));
}

TEST(Currency, MultipliesByAFactorWithDecimals) {
  Currency price = Currency::FromScaled(124000);  // 12.40 a kilogram
  price *= Currency::FromScaled(12500);           // 1.25 kilograms
  EXPECT_EQ(price.Scaled(), 155000);
  EXPECT_EQ((Currency::FromScaled(-124000) * Currency::FromScaled(12500)).Scaled(), -155000);
  EXPECT_EQ((Currency::FromScaled(-124000) * Currency::FromScaled(-12500)).Scaled(), 155000);
  EXPECT_EQ((Currency::FromScaled(largest) * Currency()).Scaled(), 0);
  EXPECT_EQ((Currency::FromScaled(33333) * Currency::FromScaled(33333)).Scaled(), 111109);  // 11.11088889
}

TEST(Currency, ProductsOfTwoAreRoundedHalfToEvenAtTheFourthDecimal) {
  const Currency half = Currency::FromScaled(5000);
  EXPECT_EQ((Currency::FromScaled(1) * half).Scaled(), 0);
  EXPECT_EQ((Currency::FromScaled(3) * half).Scaled(), 2);
  EXPECT_EQ((Currency::FromScaled(5) * half).Scaled(), 2);
  EXPECT_EQ((Currency::FromScaled(-1) * half).Scaled(), 0);
  EXPECT_EQ((Currency::FromScaled(-3) * half).Scaled(), -2);
  EXPECT_EQ((Currency::FromScaled(-5) * half).Scaled(), -2);
  EXPECT_EQ((Currency::FromScaled(1) * Currency::FromScaled(5001)).Scaled(), 1);
  EXPECT_EQ((Currency::FromScaled(3) * Currency::FromScaled(4999)).Scaled(), 1);
  EXPECT_EQ((Currency::FromScaled(-1) * Currency::FromScaled(5001)).Scaled(), -1);
}

TEST(Currency, ProductsOfTwoOverflowAtTheLimits) {
  const Currency most = Currency::FromScaled(largest);
  const Currency least = Currency::FromScaled(smallest);
  EXPECT_EQ((most * Currency::FromScaled(10000)).Scaled(), largest);
  EXPECT_EQ((most * Currency::FromScaled(-10000)).Scaled(), -largest);
  EXPECT_EQ((least * Currency::FromScaled(10000)).Scaled(), smallest);
  ExpectOverflow([&] { return least * Currency::FromScaled(-10000); });
  ExpectOverflow([&] { return most * Currency::FromScaled(10001); });
  ExpectOverflow([&] { return least * least; });
  // (2^32 - 1)(2^32 + 1) * 5000 is half a unit below the limit, a tie, and 2^63 is even.
  const Currency left = Currency::FromScaled(4294967295);
  const Currency right = Currency::FromScaled(21474836485000);
  ExpectOverflow([&] { return left * right; });
  EXPECT_EQ((-left * right).Scaled(), smallest);
}

TEST(Currency, MultipliesExactlyByIntegersOfAnyType) {
  Currency price = Currency::FromScaled(28001);
  price *= 3;
  EXPECT_EQ(price.Scaled(), 84003);
  EXPECT_EQ((Currency::FromScaled(28001) * -3).Scaled(), -84003);
  EXPECT_EQ((3 * Currency::FromScaled(-28001)).Scaled(), -84003);
  EXPECT_EQ((Currency::FromScaled(-28001) * std::int8_t{-128}).Scaled(), 3584128);
  EXPECT_EQ((Currency::FromScaled(28001) * std::uint8_t{200}).Scaled(), 5600200);
  EXPECT_EQ((Currency::FromScaled(28001) * 0U).Scaled(), 0);
  // More than a currency can hold itself.
  EXPECT_EQ((Currency::FromScaled(1) * largest).Scaled(), largest);
  EXPECT_EQ((Currency::FromScaled(1) * smallest).Scaled(), smallest);
}

TEST(Currency, ProductsWithIntegersOverflowAtTheLimits) {
  EXPECT_EQ((Currency::FromScaled(smallest) * 1).Scaled(), smallest);
  EXPECT_EQ((Currency::FromScaled(largest) * -1).Scaled(), -largest);
  EXPECT_EQ((Currency::FromScaled(-4611686018427387904) * 2).Scaled(), smallest);
  ExpectOverflow([] { return Currency::FromScaled(4611686018427387904) * 2; });
  ExpectOverflow([] { return Currency::FromScaled(smallest) * -1; });
  ExpectOverflow([] { return Currency::FromScaled(-1) * smallest; });
  ExpectOverflow([] { return Currency::FromScaled(1) * std::numeric_limits<std::uint64_t>::max(); });
  ExpectOverflow([] { return Currency::FromScaled(largest) * largest; });
}

TEST(Currency, QuotientsByIntegersAreRoundedHalfToEvenAtTheFourthDecimal) {
  Currency share = Currency(10);
  share /= 3;
  EXPECT_EQ(share.Scaled(), 33333);
  EXPECT_EQ((Currency(20) / 3U).Scaled(), 66667);
  EXPECT_EQ((Currency(-20) / 3).Scaled(), -66667);
  EXPECT_EQ((Currency(20) / -3).Scaled(), -66667);
  EXPECT_EQ((Currency(-20) / -3).Scaled(), 66667);
  EXPECT_EQ((Currency::FromScaled(10001) / 2).Scaled(), 5000);
  EXPECT_EQ((Currency::FromScaled(10003) / 2).Scaled(), 5002);
  EXPECT_EQ((Currency::FromScaled(-10001) / 2).Scaled(), -5000);
  EXPECT_EQ((Currency::FromScaled(-10003) / 2).Scaled(), -5002);
  EXPECT_EQ((Currency::FromScaled(-1) / 2).Scaled(), 0);
  EXPECT_EQ((Currency::FromScaled(-3) / std::int8_t{2}).Scaled(), -2);
}

TEST(Currency, QuotientsOfTheExtremesAreRight) {
  EXPECT_EQ((Currency::FromScaled(smallest) / 1).Scaled(), smallest);
  EXPECT_EQ((Currency::FromScaled(largest) / -1).Scaled(), -largest);
  ExpectOverflow([] { return Currency::FromScaled(smallest) / -1; });
  EXPECT_EQ((Currency::FromScaled(smallest) / smallest).Scaled(), 1);
  EXPECT_EQ((Currency::FromScaled(largest) / smallest).Scaled(), -1);
  EXPECT_EQ((Currency::FromScaled(smallest) / largest).Scaled(), -1);
  // 2^63 - 1 and 2^63 by 2^64 - 1: just below and just above a half.
  EXPECT_EQ((Currency::FromScaled(largest) / std::numeric_limits<std::uint64_t>::max()).Scaled(), 0);
  EXPECT_EQ((Currency::FromScaled(smallest) / std::numeric_limits<std::uint64_t>::max()).Scaled(), -1);
}

TEST(Currency, DivisionByZeroOverflows) {
  ExpectOverflow([] { return Currency(1) / 0; });
  ExpectOverflow([] { return Currency() / 0U; });
}

TEST(Currency, AFailingProductOrQuotientLeavesTheValue) {
  Currency value = Currency::FromScaled(largest);
  ExpectOverflow([&] { value *= 2; });
  ExpectOverflow([&] { value *= Currency::FromScaled(10001); });
  ExpectOverflow([&] { value /= 0; });
  EXPECT_EQ(value.Scaled(), largest);
}

TEST(Currency, ANumberTimesItselfIsItsSquare) {
  Currency value = Currency::FromScaled(15000);
  value *= value;
  EXPECT_EQ(value.Scaled(), 22500);
}

template <class Factor>
concept CanMultiply = requires(Currency value, Factor factor) {
  value* factor;
};

TEST(Currency, DoublesAreNoFactorsUnlessConverted) {
  static_assert(CanMultiply<int> && CanMultiply<std::uint64_t> && CanMultiply<Currency>);
  static_assert(!CanMultiply<double> && !CanMultiply<float>);
}

TEST(Currency, TextHasTwoToFourDecimals) {
  EXPECT_EQ(Currency().ToText(), "0.00");
  EXPECT_EQ(Currency::FromScaled(69000).ToText(), "6.90");
  EXPECT_EQ(Currency::FromScaled(1250).ToText(), "0.125");
  EXPECT_EQ(Currency::FromScaled(12345).ToText(), "1.2345");
  EXPECT_EQ(Currency(1234567).ToText(), "1234567.00");
  EXPECT_EQ(Currency::FromScaled(-69000).ToText(), "-6.90");
  EXPECT_EQ(Currency::FromScaled(1).ToText(), "0.0001");
  EXPECT_EQ(Currency::FromScaled(-1).ToText(), "-0.0001");
  EXPECT_EQ(Currency::FromScaled(100).ToText(), "0.01");
  EXPECT_EQ(Currency::FromScaled(10).ToText(), "0.001");
  EXPECT_EQ(Currency::FromScaled(largest).ToText(), "922337203685477.5807");
  EXPECT_EQ(Currency::FromScaled(smallest).ToText(), "-922337203685477.5808");
}

TEST(Currency, ReadsText) {
  EXPECT_EQ(Currency::FromText("6.90").Scaled(), 69000);
  EXPECT_EQ(Currency::FromText("6.9").Scaled(), 69000);
  EXPECT_EQ(Currency::FromText("6").Scaled(), 60000);
  EXPECT_EQ(Currency::FromText("-6.90").Scaled(), -69000);
  EXPECT_EQ(Currency::FromText("0.0001").Scaled(), 1);
  EXPECT_EQ(Currency::FromText("-0.0001").Scaled(), -1);
  EXPECT_EQ(Currency::FromText("922337203685477.5807").Scaled(), largest);
  EXPECT_EQ(Currency::FromText("-922337203685477.5808").Scaled(), smallest);
  EXPECT_EQ(Currency::FromText("1234567").Scaled(), 12345670000);
}

TEST(Currency, ZerosAtEitherEndOfATextCountNothing) {
  EXPECT_EQ(Currency::FromText("0000006.90000000000000000000").Scaled(), 69000);
  EXPECT_EQ(Currency::FromText("-000").Scaled(), 0);
  EXPECT_EQ(Currency::FromText("-0").Scaled(), 0);
  EXPECT_EQ(Currency::FromText("-0.00").Scaled(), 0);
  EXPECT_EQ(Currency::FromText("0000000000000000000000000000000001").Scaled(), 10000);
}

TEST(Currency, AFifthDecimalIsRefusedAndNeverRounded) {
  for (const char* text :
       {"0.00001", "0.12345", "1.00009", "-0.00001", "0.00000000000000000001", "6.900001"}) {
    SCOPED_TRACE(text);
    ExpectThrow<std::invalid_argument>("Typen unverträglich", [&] { return Currency::FromText(text); });
  }
}

TEST(Currency, TextThatIsNoNumberIsRefused) {
  using namespace std::string_view_literals;
  for (const std::string_view text : {""sv,          "-"sv,      "."sv,
                                      "-."sv,        "1."sv,     ".5"sv,
                                      "-.5"sv,       "+1"sv,     "--1"sv,
                                      "1-"sv,        " 1"sv,     "1 "sv,
                                      "- 1"sv,       "\t1"sv,    "1\n"sv,
                                      "6,90"sv,      "1,000"sv,  "1'000"sv,
                                      "1.000.000"sv, "1..0"sv,   "1e3"sv,
                                      "1E3"sv,       "0x10"sv,   "1.5-"sv,
                                      "1.-5"sv,      "inf"sv,    "nan"sv,
                                      "6.90 EUR"sv,  "\u0661"sv, "1\0"sv,
                                      "1.5\0"sv,     "\0001"sv,  "99999999999999999999x"sv}) {
    SCOPED_TRACE(text);
    ExpectThrow<std::invalid_argument>("Typen unverträglich", [&] { return Currency::FromText(text); });
  }
}

TEST(Currency, TextBeyondTheRangeOverflows) {
  for (const char* text :
       {"922337203685477.5808", "-922337203685477.5809", "922337203685478", "-922337203685478",
        "9999999999999999999999999999999999999999", "18446744073709551616.0000"}) {
    SCOPED_TRACE(text);
    ExpectOverflow([&] { return Currency::FromText(text); });
  }
}

TEST(Currency, TextKnowsNoRegionalSettings) {
  const test::GlobalLocale german(std::locale(std::locale::classic(), new test::NumberCharacters(',', '.')));
  EXPECT_EQ(Currency(1234567).ToText(), "1234567.00");
  EXPECT_EQ(Currency::FromText("1234.5").Scaled(), 12345000);
  EXPECT_THROW(Currency::FromText("1234,5"), std::invalid_argument);
  std::ostringstream out;
  out << Currency(1234567);
  EXPECT_EQ(out.str(), "1234567.00");
}

TEST(Currency, GoesToAStreamAsText) {
  std::ostringstream out;
  out << Currency::FromScaled(-69000) << '|' << std::setw(8) << std::setfill('.') << Currency(2) << '|'
      << std::left << std::setw(6) << Currency(3) << '|' << std::setprecision(1) << std::showpos
      << Currency::FromScaled(12345);
  EXPECT_EQ(out.str(), "-6.90|....2.00|3.00..|1.2345");
}

TEST(Currency, CanBeTheKeyOfAHashTable) {
  std::unordered_set<Currency> rates{Currency(19), Currency(7), Currency::FromText("19.00")};
  EXPECT_EQ(rates.size(), 2U);
  EXPECT_TRUE(rates.contains(Currency::FromScaled(70000)));
  EXPECT_FALSE(rates.contains(Currency::FromScaled(70001)));
  EXPECT_NE(std::hash<Currency>{}(Currency(19)), std::hash<Currency>{}(Currency(7)));
}

TEST(CurrencyProperties, SubtractingWhatWasAddedGivesTheValueBack) {
  EXPECT_TRUE(rc::check("a + b - b is a", [](std::int32_t a, std::int32_t b) {
    const Currency left = Currency::FromScaled(a);
    const Currency right = Currency::FromScaled(b);
    RC_ASSERT((left + right).Scaled() == std::int64_t{a} + b);
    RC_ASSERT(left + right - right == left);
  }));
}

TEST(CurrencyProperties, ADoubleOfUpTo15DigitsComesBack) {
  EXPECT_TRUE(rc::check("through double and back", [] {
    const auto scaled = *rc::gen::inRange<std::int64_t>(-100000000000000, 100000000000000);
    const Currency value = Currency::FromScaled(scaled);
    RC_ASSERT(Currency(static_cast<double>(value)) == value);
  }));
}

#ifdef __SIZEOF_INT128__

__extension__ using Int128 = __int128;

/// The quotient rounded half to even, when a currency can hold it.
std::optional<std::int64_t> Rounded(Int128 numerator, Int128 denominator) {
  if (denominator < 0) {
    numerator = -numerator;
    denominator = -denominator;
  }
  // Rounded down at first.
  Int128 quotient = numerator / denominator;
  Int128 rest = numerator % denominator;
  if (rest < 0) {
    quotient -= 1;
    rest += denominator;
  }
  if (2 * rest > denominator || (2 * rest == denominator && quotient % 2 != 0)) {
    quotient += 1;
  }
  if (quotient < smallest || quotient > largest) {
    return std::nullopt;
  }
  return static_cast<std::int64_t>(quotient);
}

template <class Operation>
std::optional<std::int64_t> Result(Operation operation) {
  try {
    return operation().Scaled();
  } catch (const std::overflow_error&) {
    return std::nullopt;
  }
}

/// Integers of all lengths, many of them with many divisors, so that there are ties.
template <class Integer>
rc::Gen<Integer> Integers() {
  return rc::gen::apply(
      [](Integer bits, int shift, Integer unit) {
        return static_cast<Integer>(static_cast<Integer>(bits >> shift) / unit * unit);
      },
      rc::gen::resize(100, rc::gen::arbitrary<Integer>()),
      rc::gen::inRange(0, std::numeric_limits<std::make_unsigned_t<Integer>>::digits),
      rc::gen::element<Integer>(1, 1, 2, 5, 25, 50, 100));
}

TEST(CurrencyProperties, ProductsOfTwoAreThoseOf128Bits) {
  EXPECT_TRUE(rc::check("a * b", [] {
    const auto a = *Integers<std::int64_t>();
    const auto b = *Integers<std::int64_t>();
    RC_ASSERT(Result([&] { return Currency::FromScaled(a) * Currency::FromScaled(b); }) ==
              Rounded(Int128{a} * b, 10000));
  }));
}

TEST(CurrencyProperties, ProductsNearTheLimitsAreThoseOf128Bits) {
  EXPECT_TRUE(rc::check("a * b near 2^63", [] {
    const auto a = *rc::gen::suchThat(Integers<std::int64_t>(),
                                      [](std::int64_t value) { return value > 10000 || value < -10000; });
    const Int128 limit = Int128{largest} * 10000 / a;
    const auto b = static_cast<std::int64_t>(limit + *rc::gen::inRange(-2, 3));
    RC_ASSERT(Result([&] { return Currency::FromScaled(a) * Currency::FromScaled(b); }) ==
              Rounded(Int128{a} * b, 10000));
  }));
}

template <class Integer>
void CheckIntegers() {
  EXPECT_TRUE(rc::check("a * n and a / n", [] {
    const auto a = *Integers<std::int64_t>();
    const auto n = *Integers<Integer>();
    const Currency value = Currency::FromScaled(a);
    RC_ASSERT(Result([&] { return value * n; }) == Rounded(Int128{a} * n, 1));
    RC_ASSERT(Result([&] { return n * value; }) == Rounded(Int128{a} * n, 1));
    RC_PRE(n != 0);
    RC_ASSERT(Result([&] { return value / n; }) == Rounded(a, n));
  }));
}

TEST(CurrencyProperties, ProductsAndQuotientsWithIntegersAreThoseOf128Bits) {
  CheckIntegers<std::int64_t>();
  CheckIntegers<std::uint64_t>();
  CheckIntegers<std::int32_t>();
  CheckIntegers<std::uint32_t>();
  CheckIntegers<std::int16_t>();
  CheckIntegers<std::uint8_t>();
}

TEST(CurrencyProperties, TextIsReadAsIn128Bits) {
  EXPECT_TRUE(rc::check("sign, digits, decimals", [] {
    const auto whole = *rc::gen::resize(17, rc::gen::nonEmpty(rc::gen::string<std::string>()));
    std::string text(*rc::gen::arbitrary<bool>() ? "-" : "");
    const bool negative = !text.empty();
    Int128 scaled = 0;
    for (const char c : whole) {
      const int digit = static_cast<unsigned char>(c) % 10;
      text += static_cast<char>('0' + digit);
      scaled = scaled * 10 + digit;
    }
    const int decimals = *rc::gen::inRange(0, 7);
    bool exact = true;
    for (int place = 1; place <= decimals; ++place) {
      const int digit = *rc::gen::weightedElement<int>({{place > 4 ? 20 : 1, 0}, {1, 1}, {1, 5}, {1, 9}});
      text += place == 1 ? "." : "";
      text += static_cast<char>('0' + digit);
      scaled = place > 4 ? scaled : scaled * 10 + digit;
      exact = exact && (place <= 4 || digit == 0);
    }
    for (int place = decimals; place < 4; ++place) {
      scaled *= 10;
    }
    if (!exact) {
      RC_ASSERT_THROWS_AS(Currency::FromText(text), std::invalid_argument);
    } else {
      RC_ASSERT(Result([&] { return Currency::FromText(text); }) == Rounded(negative ? -scaled : scaled, 1));
    }
  }));
}

TEST(CurrencyProperties, TextHasTheDigitsOf128Bits) {
  EXPECT_TRUE(rc::check("ToText", [] {
    const auto scaled = *Integers<std::int64_t>();
    const Int128 magnitude = scaled < 0 ? -Int128{scaled} : Int128{scaled};
    std::string expected =
        std::to_string(static_cast<std::uint64_t>(magnitude + 10000));  // four decimals at least
    expected = std::to_string(static_cast<std::uint64_t>(magnitude / 10000)) + "." +
               expected.substr(expected.size() - 4);
    for (int dropped = 0; dropped < 2 && expected.back() == '0'; ++dropped) {
      expected.pop_back();
    }
    RC_ASSERT(Currency::FromScaled(scaled).ToText() == (scaled < 0 ? "-" : "") + expected);
  }));
}

#endif

TEST(CurrencyProperties, AValueComesBackFromItsText) {
  EXPECT_TRUE(rc::check("through text and back", [](std::int64_t scaled) {
    const Currency value = Currency::FromScaled(scaled);
    RC_ASSERT(Currency::FromText(value.ToText()) == value);
  }));
}

TEST(CurrencyProperties, AnyTextIsReadOrRefused) {
  EXPECT_TRUE(rc::check("any text", [](const std::string& text) {
    try {
      const Currency value = Currency::FromText(text);
      RC_ASSERT(Currency::FromText(value.ToText()) == value);
    } catch (const std::invalid_argument&) {
    } catch (const std::overflow_error&) {
    }
  }));
}

}  // namespace
