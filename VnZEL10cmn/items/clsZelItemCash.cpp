#include "VnZEL10cmn/items/clsZelItemCash.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "VnZEL10cmn/device/internal/Amounts.h"
#include "VnZEL10cmn/device/internal/Records.h"
#include "VnZEL10cmn/errors/internal/Lent.h"
#include "VnZEL10cmn/items/internal/DefaultPrintEngine.h"
#include "VnZEL10cmn/items/internal/ItemForm.h"
#include "VnZEL10cmn/items/internal/VatClass.h"
#include "VnZEL10cmn/platform/internal/Guid.h"
#include "VnZEL10cmn/types/internal/Decimal.h"
#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;

namespace {

bool IsPriceNumber(std::int32_t index) { return index >= 1 && index <= 6; }

/// Whether a record was read or written; why not is not told.
template <class Operation>
bool Done(Operation&& operation) {
  try {
    return !operation();
  } catch (...) {
    return false;
  }
}

/// A number of digits with at most four decimals behind a point, which reads the same everywhere.
std::optional<Currency> PlainNumber(std::string_view text) {
  constexpr std::size_t mostDigits = 12;
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view decimals = text.substr(std::min(point + 1, text.size()));
  if (point == 0 || point > mostDigits || decimals.size() > 4 || decimals.find('.') != decimals.npos) {
    return std::nullopt;
  }
  std::int64_t scaled = 0;
  for (const char c : text) {
    if (c != '.') {
      if (c < '0' || c > '9') return std::nullopt;
      scaled = scaled * 10 + (c - '0');
    }
  }
  for (std::size_t missing = decimals.size(); missing < 4; ++missing) {
    scaled *= 10;
  }
  return Currency::FromScaled(scaled);
}

/// The device's text has a point; the number is then read as the host reads numbers.
Currency QuantityFromText(std::string_view text) {
  text = internal::Trim(text);
  if (text.empty()) {
    return 1;
  }
  if (const auto plain = PlainNumber(text)) {
    return *plain;
  }
  const std::string decimal = internal::CurrentRegionalSettings().decimal;
  std::string regional;
  for (const char c : text) {
    if (c == '.') {
      regional.append(decimal);
    } else {
      regional.push_back(c);
    }
  }
  return internal::Decimal(regional).RoundedEven();
}

}  // namespace

clsZelItemCash::clsZelItemCash() : VnObject("clsZelItemCash") {}

clsZelItemCash::~clsZelItemCash() = default;

std::string clsZelItemCash::InstanceID() {
  return MakeIdentity() ? platform::GuidText({0, id_}) : std::string();
}

/// False where the system had no identity to give: lists that have asked rely on the answer.
bool clsZelItemCash::MakeIdentity() {
  if (!hasId_ && !isWithoutId_) {
    const platform::NewUuid uuid = platform::CreateUuid();
    isWithoutId_ = uuid.status == platform::kNoUuid;
    hasId_ = !isWithoutId_;
    id_ = uuid.bytes;
  }
  return hasId_;
}

std::string clsZelItemCash::IdentityForErrors() { return InstanceID(); }

clsVnError& clsZelItemCash::ErrorObject() { return VnObject::ErrorObject(); }

std::shared_ptr<clsVnLogFile> clsZelItemCash::LogHandler() { return VnObject::LogHandler(); }

std::shared_ptr<clsVnLogFile> clsZelItemCash::LogHandler() const { return VnObject::LogHandler(); }

void clsZelItemCash::LogHandler(std::shared_ptr<clsVnLogFile> Value) {
  VnObject::LogHandler(std::move(Value));
}

bool clsZelItemCash::HasError() { return VnObject::HasError(); }

bool clsZelItemCash::CanEdit() const noexcept { return canEdit_; }

Currency clsZelItemCash::Quantity() const noexcept { return quantity_; }

void clsZelItemCash::Quantity(Currency Value) noexcept {
  if (canEdit_) {
    quantity_ = Value == Currency() ? Currency(1) : Value;
  }
}

const std::string& clsZelItemCash::Unit() const noexcept { return unit_; }

void clsZelItemCash::Unit(std::string_view Value) {
  if (canEdit_) {
    unit_ = internal::Trim(Value);
  }
}

const std::string& clsZelItemCash::Name() const noexcept { return name_; }

void clsZelItemCash::Name(std::string_view Value) {
  if (canEdit_) {
    name_ = internal::Trim(Value);
  }
}

bool clsZelItemCash::DiscSurc() const noexcept { return discSurc_; }

void clsZelItemCash::DiscSurc(bool Value) noexcept {
  if (canEdit_) {
    discSurc_ = Value;
  }
}

bool clsZelItemCash::Voucher() const noexcept { return voucher_; }

void clsZelItemCash::Voucher(bool Value) noexcept {
  if (canEdit_) {
    voucher_ = Value;
  }
}

bool clsZelItemCash::ThirdParty() const noexcept { return thirdParty_; }

void clsZelItemCash::ThirdParty(bool Value) noexcept {
  if (canEdit_) {
    thirdParty_ = Value;
  }
}

Currency clsZelItemCash::Price(std::int32_t Index) const noexcept {
  return IsPriceNumber(Index) ? prices_[static_cast<std::size_t>(Index - 1)] : Currency();
}

void clsZelItemCash::Price(std::int32_t Index, Currency Value) noexcept {
  if (IsPriceNumber(Index)) {
    prices_[static_cast<std::size_t>(Index - 1)] = Value;
  }
}

Currency clsZelItemCash::Price2(ZELVatClasses VatClass) const { return internal::OfClass(prices_, VatClass); }

void clsZelItemCash::Price2(ZELVatClasses VatClass, Currency Value) {
  internal::OfClass(prices_, VatClass) = Value;
}

void clsZelItemCash::PrintEngine(std::shared_ptr<clsZelItemPrint> Value) { printEngine_ = std::move(Value); }

bool clsZelItemCash::SetItemData(Currency Quantity, std::string_view Name, std::string_view Unit,
                                 Currency Price1, Currency Price2, Currency Price4, bool DiscSurch,
                                 bool Voucher, bool ThirdParty, Currency Price5, Currency Price6,
                                 Currency Price3) {
  constexpr std::string_view operation = "SetItemData";
  return Run(operation, [&] {
    if (!canEdit_) {
      Fail(ZELErrorCodes::Err_Cmn_InvalidParam,
           Compose("Das Schreiben der Daten ist nicht möglich!", kCrLf,
                   "Der Buchungsposten kann auf Grund vorangegangener", kCrLf,
                   "nicht mehr bearbeitet werden."),
           operation);
    }
    if (internal::Trim(Name).empty()) {
      Fail(ZELErrorCodes::Err_Cmn_InvalidParam,
           Compose("Fehlende Daten!", kCrLf,
                   "Für den Parameter \"Name\" muß mindestensein Zeichen eingeben werden!"),
           operation);
    }
    if (HasError()) {
      return false;
    }
    // The texts given may be the item's own.
    std::string name(internal::Trim(Name));
    std::string unit(internal::Trim(Unit));
    this->Quantity(Quantity);
    name_ = std::move(name);
    unit_ = std::move(unit);
    this->DiscSurc(DiscSurch);
    this->Voucher(Voucher);
    this->ThirdParty(ThirdParty);
    prices_ = {Price1, Price2, Price3, Price4, Price5, Price6};
    return true;
  });
}

bool clsZelItemCash::BinaryDataGet(ByteArray& Data, std::int32_t& Start) {
  return Run(
      "BinaryDataGet", [&] { return WriteRecords(Data, Start); }, Logging::Nothing);
}

bool clsZelItemCash::BinaryDataGet(ByteArray& Data, std::int32_t& Start, ZELSerialType, std::string_view,
                                   std::int32_t) {
  return BinaryDataGet(Data, Start);
}

bool clsZelItemCash::WriteRecords(ByteArray& data, std::int32_t& start) {
  constexpr std::string_view operation = "BinaryDataGet";
  if (name_.empty()) {
    return Fail(ZELErrorCodes::Err_Ser_DataMissing,
                Compose("Für den Posten ist keine", kCrLf, "Bezeichnung angegeben!"), operation);
  }
  std::array<char, 24> digits{};
  const std::string_view quantity = internal::FormatQuantity(quantity_, digits);
  if (quantity.size() >= internal::kQuantityEnd) {
    return Fail(
        ZELErrorCodes::Err_Zel_CnvRange,
        Compose("Die Zeichenfolge für die Menge ist zu lang!", kCrLf, "    Zeichenfolge ......: ", quantity),
        operation);
  }
  // What goes wrong with a record is reported with the state of a helper, which never fails.
  const auto fail = [&](std::string_view label) {
    clsHelper01 helper;
    clsVnError& inner = helper.ErrorObject();
    return FailAs(inner, Compose("Objekt: \"", label, "\":", kCrLf, inner.ErrorMsg()),
                  Compose(operation, ".[", inner.ErrorFunction(), "]"));
  };
  if (!Done([&] { return internal::WriteAscii(data, start, ZelTags::Item_Quantity, quantity); })) {
    return fail("Mengenangabe");
  }
  if (!unit_.empty() && !Done([&] {
        return internal::WriteDeviceText(data, start, ZelTags::Item_Unit, unit_, internal::kUnitLength);
      })) {
    return fail("Mengeneinheit");
  }
  if (!Done([&] {
        return internal::WriteDeviceText(data, start, ZelTags::Item_Name, name_, internal::kNameLength);
      })) {
    return fail("Bezeichnung");
  }
  if (discSurc_ && !Done([&] { return internal::WriteBool(data, start, ZelTags::Item_DiscSurch, true); })) {
    return fail("Agenturgeschäft");
  }
  if (voucher_ && !Done([&] { return internal::WriteBool(data, start, ZelTags::Item_Voucher, true); })) {
    return fail("Gutschein");
  }
  if (thirdParty_ &&
      !Done([&] { return internal::WriteBool(data, start, ZelTags::Item_Thirdparty, true); })) {
    return fail("Agenturgeschäft");
  }
  for (std::size_t slot = 0; slot < prices_.size(); ++slot) {
    const auto tag = static_cast<ZelTags>(static_cast<std::size_t>(ZelTags::Item_Price1) + slot);
    if (prices_[slot] != Currency() &&
        !Done([&] { return internal::WriteAmount(data, start, tag, prices_[slot], false); })) {
      return fail(Compose("Preis ", slot));
    }
  }
  return true;
}

bool clsZelItemCash::BinaryDataSet(const ByteArray& Data, std::int32_t& Start) {
  const std::int32_t before = Start;
  const bool done = Run("BinaryDataSet", [&] { return ReadRecords(Data, Start); });
  if (!done) {
    Start = before;
  }
  return done;
}

bool clsZelItemCash::ReadRecords(const ByteArray& data, std::int32_t& start) {
  constexpr std::string_view operation = "BinaryDataSet";
  Clear();
  if (const auto refusal = internal::CheckRecordEnd(data, start)) {
    return Fail(*refusal, operation);
  }
  // What is wrong with a record is told by a coder.
  const auto fail = [&](clsZelBaseCoding& coder, std::string_view accessor) {
    clsVnError& inner = coder.ErrorObject();
    return FailAs(inner, inner.ErrorMsg(), Compose(operation, ".[", accessor, "]"));
  };
  const auto readText = [&](std::string& text) {
    if (Done([&] { return internal::ReadAscii(data, start, text); })) {
      return true;
    }
    clsZelBaseCoding coder;
    return coder.GetDataAscii(data, start, text) || fail(coder, "GetDataAscii");
  };
  const auto readPrice = [&](ZelTags tag, Currency& price) {
    if (Done([&] { return internal::ReadAmount(data, start, tag, price, false); })) {
      return true;
    }
    clsZelBaseCoding coder;
    return coder.GetZelAmounts(data, start, tag, price, false) || fail(coder, "GetZelAmountsSpec01");
  };
  const auto readFlag = [&](bool& flag) {
    flag = true;
    internal::Advance(start, 0);
    return true;
  };
  bool hasQuantity = false;
  bool done = true;
  do {
    const auto tag = static_cast<ZelTags>(data[start]);
    switch (tag) {
      case ZelTags::Item_Quantity: {
        if (hasQuantity) {
          return true;
        }
        hasQuantity = true;
        if (const auto text = internal::PlainText(data, start)) {
          internal::Advance(start, text->size());
          Quantity(QuantityFromText(*text));
        } else {
          std::string refused;
          done = readText(refused);
        }
        break;
      }
      case ZelTags::Item_Unit: done = readText(unit_); break;
      case ZelTags::Item_Name: done = readText(name_); break;
      case ZelTags::Item_DiscSurch: done = readFlag(discSurc_); break;
      case ZelTags::Item_Voucher: done = readFlag(voucher_); break;
      case ZelTags::Item_Thirdparty: done = readFlag(thirdParty_); break;
      case ZelTags::Item_Price1:
      case ZelTags::Item_Price2:
      case ZelTags::Item_Price3:
      case ZelTags::Item_Price4:
      case ZelTags::Item_Price5:
      case ZelTags::Item_Price6: {
        Currency price;
        done = readPrice(tag, price);
        if (done) {
          Price(static_cast<std::int32_t>(tag) - 176, price);
        }
        break;
      }
      default: done = Fail(internal::UnexpectedTag(static_cast<std::uint8_t>(tag)), operation); break;
    }
  } while (done && start < data.UBound());
  return done;
}

bool clsZelItemCash::Clear() {
  ClearErr();
  quantity_ = 1;
  unit_.clear();
  name_.clear();
  discSurc_ = false;
  voucher_ = false;
  thirdParty_ = false;
  prices_.fill(Currency());
  return true;
}

bool clsZelItemCash::GetPrices(CurrencyArray& Prices, bool& IsThrdPrt) {
  constexpr std::string_view operation = "IVnZelItem.GetPrices";
  return Run(operation, [&] {
    IsThrdPrt = thirdParty_;
    if (Prices.LBound() != 0 || Prices.UBound() != 5) {
      return Fail(ZELErrorCodes::Err_Cmn_InvalidParam,
                  Compose("Die Feldgrenzen des Preisfeldes sind ungültig!", internal::kLowerLine,
                          Prices.LBound(), internal::kUpperLine, Prices.UBound()),
                  operation);
    }
    std::copy(prices_.begin(), prices_.end(), Prices.begin());
    return true;
  });
}

std::string clsZelItemCash::ToString() {
  // The engine may let go of the item and of itself.
  const internal::Lent self(*this);
  return RunFor<std::string>("ToString", [&] {
    if (!printEngine_) {
      printEngine_ = internal::CreateDefaultPrintEngine();
    }
    const std::shared_ptr<clsZelItemPrint> engine = printEngine_;
    return internal::RenderItem(*engine, self.Get(), &ErrorObject());
  });
}

}  // namespace VnZEL10cmn
