#include "tools/Sale.h"

#include <algorithm>
#include <initializer_list>
#include <memory>

#include "tools/ExitStatus.h"
#include "tools/Json.h"
#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;

namespace {

using Kind = JsonValue::Kind;

constexpr std::string_view kClassLetters = "ABCDEF";
constexpr int kPriceDecimals = 2;
constexpr int kQuantityDecimals = 4;

/// A value together with where it stands, such as items[2].prices.A.
class Member {
 public:
  Member(const JsonValue& value, std::string path) : value_(&value), path_(std::move(path)) {}

  [[noreturn]] void Fail(const std::string& reason) const {
    throw Failure(ExitStatus::NotRight, (path_.empty() ? "the sale" : path_) + ": " + reason);
  }

  [[nodiscard]] const std::string& Path() const noexcept { return path_; }

  const JsonValue& Expect(Kind kind) const {
    if (value_->kind != kind) {
      Fail("must be " + std::string(KindName(kind)) + ", not " + std::string(KindName(value_->kind)));
    }
    return *value_;
  }

  [[nodiscard]] bool Flag() const { return Expect(Kind::Boolean).boolean; }

  /// A text that is shown on one line and is not blank.
  [[nodiscard]] std::string Text() const {
    const std::string& text = Expect(Kind::String).text;
    if (OneLine(text) != text) Fail("holds a control character");
    if (text.find_first_not_of(' ') == std::string::npos) Fail("is empty");
    return text;
  }

  /// A number, or a string that holds one.
  [[nodiscard]] Currency Decimal(int maxDecimals) const {
    const bool isText = value_->kind == Kind::String;
    if (!isText && value_->kind != Kind::Number) {
      Fail("must be a number or a string with one, not " + std::string(KindName(value_->kind)));
    }
    const std::optional<Currency> number = ParseDecimal(value_->text, maxDecimals, !isText);
    if (!number) {
      Fail("\"" + Shown(value_->text) + "\" is no decimal number with at most " +
           std::to_string(maxDecimals) + " decimals behind a point, or too large");
    }
    return *number;
  }

  /// The object's member of that name, or none.
  [[nodiscard]] std::optional<Member> Find(std::string_view name) const {
    const JsonValue& object = Expect(Kind::Object);
    const auto found = std::find(object.names.begin(), object.names.end(), name);
    if (found == object.names.end()) return std::nullopt;
    return Member(object.elements[static_cast<std::size_t>(found - object.names.begin())], PathOf(name));
  }

  /// Refuses an object that has other members than these.
  void ExpectOnly(std::initializer_list<std::string_view> known) const {
    for (const std::string& name : Expect(Kind::Object).names) {
      if (std::find(known.begin(), known.end(), name) == known.end()) {
        Member(*value_, PathOf(name)).Fail("there is no such member in a sale");
      }
    }
  }

  [[nodiscard]] bool FlagOf(std::string_view name) const {
    const std::optional<Member> member = Find(name);
    return member && member->Flag();
  }

  [[nodiscard]] std::string TextOf(std::string_view name) const {
    const std::optional<Member> member = Find(name);
    return member ? member->Text() : std::string();
  }

 private:
  [[nodiscard]] std::string PathOf(std::string_view name) const {
    return (path_.empty() ? "" : path_ + ".") + Shown(name);
  }

  const JsonValue* value_;
  std::string path_;
};

Date ReadDate(const Member& member) {
  const std::string& text = member.Expect(Kind::String).text;
  try {
    return ParseDateTime(text);
  } catch (const Failure& failure) {
    member.Fail(failure.what());
  }
}

/// The library would cut a longer name silently.
std::string ReadOperator(const Member& member) {
  constexpr std::size_t kMaxLength = 16;
  std::string text = member.Text();
  if (text.size() > kMaxLength) member.Fail("\"" + Shown(text) + "\" has more than 16 characters");
  const auto outside = [](char character) { return static_cast<unsigned char>(character) > 126; };
  if (std::any_of(text.begin(), text.end(), outside)) {
    member.Fail("\"" + text + "\" has a character that the device doesn't take (only ASCII, no umlauts)");
  }
  return text;
}

std::int32_t ReadCurrencyCode(const Member& member) {
  constexpr int kMaxCode = 999;
  if (member.Expect(Kind::Number);
      member.Decimal(0) < Currency(1) || member.Decimal(0) > Currency(kMaxCode)) {
    member.Fail("must be a numeric currency code such as 978");
  }
  return static_cast<std::int32_t>(member.Decimal(0).Scaled() / Currency(1).Scaled());
}

/// What is too large for its record, or would be rounded in it, could not be verified afterwards.
Currency ReadPrice(const Member& member) {
  const Currency limit = Currency::FromScaled(9'999'999'999'900);
  const Currency price = member.Decimal(kPriceDecimals);
  if (price > limit || price < -limit) member.Fail("must lie between -999999999.99 and 999999999.99");
  return price;
}

Currency ReadQuantity(const Member& member) {
  constexpr std::size_t kMaxLength = 11;
  const Currency quantity = member.Decimal(kQuantityDecimals);
  if (quantity == Currency()) member.Fail("must not be 0");
  if (FormatDecimal(quantity, 0).size() > kMaxLength) member.Fail("has more than 11 characters");
  return quantity;
}

std::size_t ReadClass(std::string_view letter, const Member& member) {
  const std::size_t index = kClassLetters.find(letter);
  if (letter.size() != 1 || index == std::string_view::npos)
    member.Fail("a VAT class is one of A, B, C, D, E, F");
  return index;
}

void ReadPrices(const Member& item, SaleItem& result) {
  const std::optional<Member> prices = item.Find("prices");
  const std::optional<Member> price = item.Find("price");
  const std::optional<Member> vatClass = item.Find("class");
  if (prices && (price || vatClass)) prices->Fail("stands beside a single price; give one of them");
  if (price.has_value() != vatClass.has_value()) item.Fail("\"price\" and \"class\" belong together");
  if (price) {
    result.prices[ReadClass(vatClass->Text(), *vatClass)] = ReadPrice(*price);
    return;
  }
  if (!prices) item.Fail("has no price: \"price\" and \"class\", or \"prices\"");
  const std::vector<std::string>& letters = prices->Expect(Kind::Object).names;
  if (letters.empty()) prices->Fail("holds no price");
  for (const std::string& letter : letters) {
    const Member member = *prices->Find(letter);
    result.prices[ReadClass(letter, member)] = ReadPrice(member);
  }
}

SaleItem ReadItem(const Member& item) {
  item.ExpectOnly({"quantity", "unit", "name", "price", "class", "prices", "discount", "surcharge", "voucher",
                   "thirdParty"});
  SaleItem result;
  if (const std::optional<Member> quantity = item.Find("quantity")) result.quantity = ReadQuantity(*quantity);
  result.unit = item.TextOf("unit");
  const std::optional<Member> name = item.Find("name");
  if (!name) item.Fail("has no \"name\"");
  result.name = name->Text();
  result.discountOrSurcharge = item.FlagOf("discount");
  result.discountOrSurcharge = item.FlagOf("surcharge") || result.discountOrSurcharge;
  result.voucher = item.FlagOf("voucher");
  result.thirdParty = item.FlagOf("thirdParty");
  ReadPrices(item, result);
  return result;
}

template <typename Holder>
void AddItems(const Sale& sale, Holder& holder) {
  if (!sale.profile.empty()) holder.ZelProfile(sale.profile);
  for (const SaleItem& line : sale.items) {
    const auto item = std::make_shared<VnZEL10cmn::clsZelItemCash>();
    const std::array<Currency, 6>& price = line.prices;
    if (!item->SetItemData(line.quantity, line.name, line.unit, price[0], price[1], price[3],
                           line.discountOrSurcharge, line.voucher, line.thirdParty, price[4], price[5],
                           price[2])) {
      throw Failure(ExitStatus::NotRight, Describe(item->ErrorObject()));
    }
    if (!holder.AddItem(item)) {
      throw Failure(ExitStatus::NotRight, Describe(holder.ErrorObject()));
    }
  }
}

}  // namespace

Date ParseDateTime(const std::string& text) {
  constexpr std::string_view kPattern = "0000-00-00T00:00";
  const auto fail = [&text](const std::string& reason) {
    throw Failure(ExitStatus::NotRight, "\"" + Shown(text) + "\" " + reason);
  };
  const auto matches = [](char character, char pattern) {
    return pattern == '0' ? character >= '0' && character <= '9' : character == pattern;
  };
  const auto number = [&text](std::size_t start, std::size_t length) {
    return std::stoi(text.substr(start, length));
  };
  if (text.size() != kPattern.size() || !std::equal(text.begin(), text.end(), kPattern.begin(), matches)) {
    fail("is no date and time such as 2026-11-21T08:05");
  }
  const Date::Civil parts{number(0, 4), number(5, 2), number(8, 2), number(11, 2), number(14, 2), 0};
  if (!Date::Exists(parts)) fail("doesn't exist");
  const Date date = Date::FromCivil(parts.year, parts.month, parts.day, parts.hour, parts.minute);
  // At the bounds and beyond, the library would take the present time instead.
  if (date <= VnZEL10cmn::clsZelVatItem::EarliestDate() || date >= VnZEL10cmn::clsZelVatItem::LatestDate()) {
    fail("must lie after 2000-01-01T00:00 and not after 2099-12-31T23:59");
  }
  return date;
}

Sale ReadSale(std::string_view json) {
  Sale result;
  // Items are read while the text is parsed, so that the text of one at a time is held. What is wrong with the sale
  // itself, or with the text behind an item, comes before what is wrong with the item.
  std::optional<Failure> wrongItem;
  const JsonValue root =
      ParseJson(json, {.name = "items", .take = [&](std::size_t index, const JsonValue& value) {
                         if (wrongItem) return;
                         try {
                           const Member item(value, "items[" + std::to_string(index) + "]");
                           result.items.push_back(ReadItem(item));
                         } catch (const Failure& failure) {
                           wrongItem = failure;
                           result.items = {};
                         }
                       }});
  const Member sale(root, "");
  sale.ExpectOnly(
      {"date", "operator", "currency", "taxExclusive", "training", "deliveryNote", "profile", "items"});
  if (const std::optional<Member> date = sale.Find("date")) result.date = ReadDate(*date);
  const std::optional<Member> operatorName = sale.Find("operator");
  if (!operatorName) sale.Fail("has no \"operator\"");
  result.operatorName = ReadOperator(*operatorName);
  if (const std::optional<Member> currency = sale.Find("currency"))
    result.currency = ReadCurrencyCode(*currency);
  result.taxExclusive = sale.FlagOf("taxExclusive");
  result.training = sale.FlagOf("training");
  result.deliveryNote = sale.FlagOf("deliveryNote");
  result.profile = sale.TextOf("profile");
  const std::optional<Member> items = sale.Find("items");
  if (!items) sale.Fail("has no \"items\"");
  items->Expect(Kind::Array);
  if (wrongItem) throw Failure(*wrongItem);
  if (result.items.empty()) items->Fail("holds no item");
  return result;
}

void FillBooking(const Sale& sale, VnZEL10cmn::clsZelTransAct& booking) {
  booking.VatList(std::make_shared<VnZEL10cmn::clsZelVatList>());
  if (sale.date) booking.TransactionDate(*sale.date);
  booking.Operator(sale.operatorName);
  booking.CurrencyCode(sale.currency);
  booking.IsTaxExcl(sale.taxExclusive);
  booking.IsTraining(sale.training);
  booking.IsDeliveryNote(sale.deliveryNote);
  AddItems(sale, booking);
}

void FillReport(const Sale& sale, VnZEL10cmn::clsZelReport& report) { AddItems(sale, report); }

}  // namespace zel
