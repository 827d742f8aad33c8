// Commercial rounding of texts and numbers.

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>
#include <locale>
#include <optional>
#include <string>

#include "fuzz/Check.h"
#include "fuzz/Targets.h"

namespace fuzz {

namespace {

using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::Currency;

int DecimalsOf(std::int32_t digits) { return digits < 0 || digits > 3 ? 2 : digits; }

std::int64_t StepOf(std::int32_t digits) {
  constexpr std::int64_t kSteps[] = {10'000, 1'000, 100, 10};
  return kSteps[DecimalsOf(digits)];
}

/// What holds for any rounded value.
void CheckRounded(clsHelper01& helper, Currency result, std::int32_t digits, bool done,
                  std::string_view name) {
  CheckOutcome(helper, done, name);
  if (!done) {
    const std::int32_t number = helper.ErrorObject().ErrorNr();
    FUZZ_CHECK(!helper.ErrorObject().IsUserDef() && (number == 6 || number == 13));
    FUZZ_CHECK(result == Currency());
    return;
  }
  FUZZ_CHECK(result.Scaled() % StepOf(digits) == 0);
  FUZZ_CHECK(helper.RoundCmrc2(result, digits) == result && !helper.HasError());
}

/// The value of a plain number (digits, maybe a sign before and a decimal separator within), rounded as at
/// school; none for any other text, and for those that no 64-bit number holds digit by digit.
std::optional<std::int64_t> PlainRounded(const std::string& text, std::int32_t digits, char separator) {
  constexpr std::size_t kMostDigits = 14;
  const bool negative = text.starts_with("-");
  const std::string number = text.substr(negative ? 1 : 0);
  const std::size_t comma = number.find(separator);
  const std::string whole = number.substr(0, comma);
  std::string decimals = comma == std::string::npos ? "" : number.substr(comma + 1);
  constexpr const char* kDigits = "0123456789";
  if (whole.empty() || whole.size() > kMostDigits || whole.find_first_not_of(kDigits) != std::string::npos ||
      decimals.size() > kMostDigits || decimals.find_first_not_of(kDigits) != std::string::npos) {
    return std::nullopt;
  }
  const auto kept = static_cast<std::size_t>(DecimalsOf(digits));
  decimals.resize(std::max(decimals.size(), kept + 1), '0');
  const bool up = decimals[kept] >= '5';
  const std::int64_t rounded = std::stoll(whole + decimals.substr(0, kept)) + (up ? 1 : 0);
  return (negative ? -rounded : rounded) * StepOf(digits);
}

void RoundText(Input& input, char separator) {
  clsHelper01 helper;
  const auto digits = input.Number<std::int8_t>();
  const std::string text = Input::TextOf(input.Rest());
  const Currency result = helper.RoundCmrc2(text, digits);
  CheckRounded(helper, result, digits, !helper.HasError(), "RoundCmrc2");
  if (const std::optional<std::int64_t> plain = PlainRounded(text, digits, separator)) {
    const Currency again = helper.RoundCmrc2(text, digits);
    FUZZ_CHECK(!helper.HasError() && again == result && result.Scaled() == *plain);
  }
}

/// Separators of a host's locale. Those that are no single byte in UTF-8 have another narrow form.
struct Separators {
  char narrowDecimal;
  wchar_t decimal;
  char narrowThousands;
  wchar_t thousands;
};

template <class Character>
class Numbers : public std::numpunct<Character> {
 public:
  Numbers(Character decimal, Character thousands) : decimal_(decimal), thousands_(thousands) {}

 private:
  Character do_decimal_point() const override { return decimal_; }
  Character do_thousands_sep() const override { return thousands_; }

  Character decimal_;
  Character thousands_;
};

/// With a host that set a locale of its own.
void RoundTextOfHost(Input& input) {
  constexpr Separators kSeparators[] = {{'.', L'.', ',', L','},
                                        {',', L',', '\xA0', L'\u00A0'},
                                        {',', L',', '\xFF', L'\u202F'},
                                        {'.', L'.', '\xB4', L'\''}};
  const Separators& chosen = kSeparators[input.Byte() % std::size(kSeparators)];
  const std::locale narrow(std::locale::classic(),
                           new Numbers<char>(chosen.narrowDecimal, chosen.narrowThousands));
  const std::locale before =
      std::locale::global(std::locale(narrow, new Numbers<wchar_t>(chosen.decimal, chosen.thousands)));
  RoundText(input, chosen.narrowDecimal);
  VnZEL10cmn::clsZelItemCash item;
  item.SetItemData(1, "Brot", "", Currency::FromScaled(12'345'600));
  FUZZ_CHECK(IsUtf8(item.ToString()) && !item.HasError());
  std::locale::global(before);
}

void RoundDouble(Input& input) {
  clsHelper01 helper;
  const auto digits = input.Number<std::int8_t>();
  const auto value = std::bit_cast<double>(input.Number<std::uint64_t>());
  const Currency result = helper.RoundCmrc2(value, digits);
  const bool done = !helper.HasError();
  FUZZ_CHECK(done || !(std::abs(value) < 9.2e14));
  if (done) {
    const double step = static_cast<double>(StepOf(digits)) / 10'000.0;
    FUZZ_CHECK(std::abs(static_cast<double>(result) - value) <= step * 0.5 + std::abs(value) * 1e-13);
  }
  CheckRounded(helper, result, digits, done, "RoundCmrc2");
}

void RoundCurrency(Input& input) {
  clsHelper01 helper;
  const auto digits = input.Number<std::int8_t>();
  const Currency value = Currency::FromScaled(input.Number<std::int64_t>());
  const Currency result = helper.RoundCmrc2(value, digits);
  const bool done = !helper.HasError();
  CheckRounded(helper, result, digits, done, "RoundCmrc2");
  const Currency other = helper.RoundCmrc(value, digits);
  // The narrower arithmetic of the one fails sooner, and gives the same where it doesn't.
  FUZZ_CHECK(helper.HasError() || (done && other == result));
  CheckRounded(helper, other, digits, !helper.HasError(), "RoundCmrc");
  if (done) {
    const std::int64_t step = StepOf(digits);
    const std::uint64_t off =
        static_cast<std::uint64_t>(result.Scaled()) - static_cast<std::uint64_t>(value.Scaled());
    const auto distance = static_cast<std::int64_t>(off);
    FUZZ_CHECK(distance <= step / 2 && distance >= -(step / 2));
  }
}

void RoundInteger(Input& input) {
  clsHelper01 helper;
  const auto digits = input.Number<std::int8_t>();
  const auto value = input.Number<std::int64_t>();
  const Currency result = helper.RoundCmrc2(value, digits);
  const bool done = !helper.HasError();
  const bool fits = value >= std::numeric_limits<std::int64_t>::min() / 10'000 &&
                    value <= std::numeric_limits<std::int64_t>::max() / 10'000;
  FUZZ_CHECK(done == fits && (!done || result.Scaled() == value * 10'000));
  CheckRounded(helper, result, digits, done, "RoundCmrc2");
}

void CalculateVat(Input& input) {
  VnZEL10cmn::clsZelVatItem rates;
  const auto number = input.Between(0, 7);
  rates.VATrate(number, Currency::FromScaled(input.Number<std::int64_t>()));
  const bool isNet = input.Flag();
  const Currency price = Currency::FromScaled(input.Number<std::int64_t>());
  const Currency untouched = Currency::FromScaled(123'456'789);
  Currency vat = untouched;
  Currency net = untouched;
  Currency gross = untouched;
  const bool done = rates.CalcVat(price, number, vat, &net, &gross, isNet);
  CheckOutcome(rates, done, "CalcVat");
  if (!done) {
    FUZZ_CHECK(vat == untouched && net == untouched && gross == untouched);
    FUZZ_CHECK(rates.ErrorObject().ErrorNr() == 6);
    return;
  }
  FUZZ_CHECK(net + vat == gross && vat.Scaled() % 100 == 0);
  FUZZ_CHECK((isNet ? net : gross) == price);
  FUZZ_CHECK(vat == Currency() || (vat < Currency()) == (price < Currency()));
  // Half a cent off at most, where doubles are exact enough to tell.
  constexpr Currency kMostPrice(100'000'000);
  const Currency rate = rates.VATrate(number);
  if (price > -kMostPrice && price < kMostPrice && rate <= Currency(1'000) && rate.Scaled() % 100 == 0) {
    const double factor = static_cast<double>(rate) / 100.0;
    const double exact = static_cast<double>(price) * factor / (isNet ? 1.0 : 1.0 + factor);
    FUZZ_CHECK(std::abs(static_cast<double>(vat) - exact) <= (isNet ? 0.00506 : 0.00501));
  }
}

}  // namespace

void Rounding(Bytes data) {
  Input input(data);
  switch (input.Between(0, 7)) {
    case 3: RoundTextOfHost(input); break;
    case 4: RoundDouble(input); break;
    case 5: RoundCurrency(input); break;
    case 6: RoundInteger(input); break;
    case 7: CalculateVat(input); break;
    default: RoundText(input, ','); break;
  }
}

}  // namespace fuzz
