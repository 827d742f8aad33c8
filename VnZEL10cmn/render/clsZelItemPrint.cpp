#include "VnZEL10cmn/render/clsZelItemPrint.h"

#include <typeinfo>
#include <utility>

#include "VnZEL10cmn/datarecord/internal/DataPrintEngine.h"
#include "VnZEL10cmn/errors/internal/Lent.h"
#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/items/internal/DefaultPrintEngine.h"
#include "VnZEL10cmn/platform/internal/ClassName.h"
#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;
using internal::PadLeft;
using internal::PadRight;
using internal::RegionalSettings;

namespace {

constexpr std::string_view kClassLetters = "ABCDEF";
constexpr std::size_t kQuantityWidth = 5;
constexpr std::size_t kUnitWidth = 8;
constexpr std::size_t kNameWidth = 25;
constexpr std::size_t kPriceWidth = 9;
constexpr std::size_t kPriceColumn = 40;
constexpr std::int32_t kHashGroup = 5;

constexpr std::string_view kBoxBorder =
    "        +------------------------------------------------------+\r\n";
constexpr std::string_view kBoxEmpty = "        |                                                      |\r\n";
constexpr std::string_view kBoxTitle =
    "        |                 -= A C H T U N G =-                  |\r\n"
    "        |               =======================                |\r\n";

std::string Amount(Currency value, const RegionalSettings& settings) {
  return PadLeft(internal::FormatNumber(value, internal::kAmount, settings), kPriceWidth);
}

std::string WarningBox(std::string_view lines) {
  return Compose(kBoxBorder, kBoxEmpty, kBoxTitle, lines, kBoxEmpty, kBoxBorder);
}

std::string ItemLines(const clsZelItemCash& item) {
  const RegionalSettings settings = internal::CurrentRegionalSettings();
  const std::string quantity = internal::FormatNumber(item.Quantity(), internal::kOneDecimal, settings);
  std::string text = internal::Utf16Right(PadLeft(quantity, kQuantityWidth), kQuantityWidth);
  text.append(Compose(" ", PadRight(item.Unit(), kUnitWidth), " ", PadRight(item.Name(), kNameWidth)));
  bool isFirst = true;
  for (std::int32_t number = 1; number <= 6; ++number) {
    const Currency price = item.Price(number);
    if (price == Currency()) {
      continue;
    }
    if (!isFirst) {
      text.append(kCrLf).append(kPriceColumn, ' ');
    }
    isFirst = false;
    text.append(Compose(Amount(price, settings), " EUR (",
                        kClassLetters.substr(static_cast<std::size_t>(number - 1), 1), ")"));
  }
  return text;
}

std::string Indented(std::string_view text) {
  std::string result;
  for (const std::string& line : internal::SplitLines(text)) {
    result.append("    ").append(line).append(kCrLf);
  }
  return result;
}

std::string VatTable(clsZelTransAct& booking, const RegionalSettings& settings) {
  std::string text =
      "    K     Betrag |      USt. |     Satz\r\n"
      "    -------------+-----------+----------\r\n";
  for (const std::int32_t number : {1, 2, 3, 5}) {
    Currency turnover;
    Currency vat;
    Currency rate;
    booking.GetContainerValues(number, turnover, vat, rate);
    const std::string percent = internal::FormatNumber(rate, internal::kTwoDecimals, settings) + " %";
    text.append(Compose("    ", kClassLetters.substr(static_cast<std::size_t>(number - 1), 1), ": ",
                        Amount(turnover, settings), " | ", Amount(vat, settings), " | ",
                        PadLeft(percent, kPriceWidth), kCrLf));
  }
  return text;
}

std::string DataReceipt(const clsZelTransActData& record, std::string_view hash,
                        const RegionalSettings& settings) {
  const auto whole = [&settings](Currency value) {
    return internal::FormatNumber(value, internal::kWhole, settings);
  };
  const ZELDataSignTypes type = record.DataSignType();
  const std::string date = internal::FormatDateMinutes(record.TransactionDate(), settings);
  std::string text = Compose("      Kassen-Signaturbeleg (Basisversion)", kCrLf,
                             "    -=====================================-", kCrLf, kCrLf);
  text.append(type == ZELDataSignTypes::DataAndTime ? Compose("    Beleg- / Signaturdatum .: ", date)
                                                    : "    Beleg / Signatur ohne Datum ");
  text.append(kCrLf).append(kCrLf);
  if (record.ZelRespData().empty()) {
    text.append(
        WarningBox("        |    DIESE DATEN SIND NOCH NICHT SIGNIERT! BITTE       |\r\n"
                   "        |    ÜBERPRÜFEN SIE DIE DATEN UND DEN ABLAUF           |\r\n"));
    text.append(kCrLf);
  }
  const std::string_view name = type == ZELDataSignTypes::DataAndTime   ? "Daten mit Zeitstempel"
                                : type == ZELDataSignTypes::DataAndTpID ? "Daten mit ZEL-ID"
                                                                        : "nur Daten";
  text.append(Compose("    Daten signiert als .....: \"", name, "\"", kCrLf));
  if (type == ZELDataSignTypes::DataAndTpID || type == ZELDataSignTypes::DataAndTime) {
    text.append(Compose("        ZEL - ID ...........: ", record.ZelRespTpID(), kCrLf,
                        "        ZEL - Nr ...........: ", whole(record.ZelRespTpIDNr()), kCrLf));
  }
  if (type == ZELDataSignTypes::DataAndTime) {
    text.append(Compose("        Zeitstempel ........: ", date, kCrLf));
  }
  return text.append(Compose("        Sequenznummer ......: ", whole(record.ZelRespSeqNr()), kCrLf,
                             "        Hashkode Daten .....: ", hash, kCrLf));
}

}  // namespace

clsZelItemPrint::clsZelItemPrint() : Renderer("clsZelItemPrint") {}

clsZelItemPrint::~clsZelItemPrint() = default;

std::string clsZelItemPrint::ToStringCI(std::shared_ptr<IVnZelItem> Item, clsVnError* ErrObj) {
  constexpr std::string_view operation = "ToStringCI";
  return Render(operation, ErrObj, [&]() -> std::string {
    if (!Item) {
      internal::ThrowObjectNotSet();
    }
    const auto* const cashItem = dynamic_cast<const clsZelItemCash*>(Item.get());
    if (cashItem == nullptr) {
      Fail(ZELErrorCodes::Err_Cmn_InvalidParam,
           Compose("Der Typ \"", platform::ClassNameOf(*Item), "\" wird nicht unterstützt"), operation);
      return {};
    }
    return ItemLines(*cashItem);
  });
}

std::string clsZelItemPrint::ToStringCI(IVnZelItem& Item, clsVnError* ErrObj) {
  auto* const cash = dynamic_cast<clsZelItemCash*>(&Item);
  const internal::Lent<IVnZelItem> lent(Item, cash == nullptr ? nullptr : internal::OwnerOf(*cash));
  return ToStringCI(lent.Get(), ErrObj);
}

std::string clsZelItemPrint::ToStringBI(std::shared_ptr<clsZelTransAct> BookItem, clsVnError* ErrObj) {
  constexpr std::string_view operation = "ToStringBI";
  return Render(operation, ErrObj, [&]() -> std::string {
    if (!BookItem) {
      internal::ThrowObjectNotSet();
    }
    clsZelTransAct& booking = *BookItem;
    const RegionalSettings settings = internal::CurrentRegionalSettings();
    const bool isSigned = booking.ZelRespSeqNr() > Currency();
    std::string text = Compose(
        "      Kassen-Belegausgabe (Basisversion)", kCrLf, "    -====================================-",
        kCrLf, kCrLf,
        "    Belegdatum .............: ", internal::FormatDateMinutes(booking.TransactionDate(), settings),
        kCrLf, "    Bediener ...............: ", booking.Operator(), kCrLf, kCrLf);
    if (!isSigned) {
      text.append(
          WarningBox("        |    DIESER BELEG IST NOCH NICHT SIGNIERT! BITTE       |\r\n"
                     "        |    ÜBERPRÜFEN SIE DIE BUCHUNGEN UND DEN ABLAUF       |\r\n"));
      text.append(kCrLf);
    }
    Currency total;
    for (const std::shared_ptr<IVnZelItem>& item : booking) {
      CurrencyArray prices = CurrencyArray::WithBounds(0, 5);
      // The item may render itself with this very engine, which clears the error: nothing is filed before.
      const std::string line = item->ToString();
      text.append(Indented(line));
      bool isThirdParty = false;
      const bool isRendered = !line.empty() || !item->HasError();
      if (!isRendered || !item->GetPrices(prices, isThirdParty)) {
        clsVnError& inner = item->ErrorObject();
        FailAs(inner, inner.ErrorMsg(), Compose(operation, isRendered ? ".[GetPrices]" : ".[ToString]"));
        return {};
      }
      // Those of the classes, whatever the item made of the array.
      for (std::int32_t i = 0; i < 6; ++i) {
        total += prices[i];
      }
    }
    text.append(Compose(std::string(45, ' '), std::string(18, '-'), kCrLf, std::string(45, ' '),
                        Amount(total, settings), " EUR", kCrLf, kCrLf));
    text.append(isSigned ? VatTable(booking, settings)
                         : Compose("    USt-Auswertungen erst nach Signierung!", kCrLf));
    const std::string hash = booking.GetItemHash(ZELHashFmt::Base32, isSigned, kHashGroup);
    if (!HasGiven(hash, booking, "ToStringBI.[GetItemHash]")) {
      return {};
    }
    text.append(Compose(kCrLf, "    Hashwert Posten ........: ", hash, kCrLf));
    return text;
  });
}

std::string clsZelItemPrint::ToStringBI(clsZelTransAct& BookItem, clsVnError* ErrObj) {
  const internal::Lent lent(BookItem);
  return ToStringBI(lent.Get(), ErrObj);
}

std::string clsZelItemPrint::ToStringTRdata(std::shared_ptr<clsZelTransActData> BookItem,
                                            clsVnError* ErrObj) {
  return Render("ToStringTRdata", ErrObj, [&]() -> std::string {
    if (!BookItem) {
      internal::ThrowObjectNotSet();
    }
    const bool isAnswered = !BookItem->ZelRespData().empty();
    const std::string hash = BookItem->GetDataHash(ZELHashFmt::Base32, isAnswered, kHashGroup);
    if (!HasGiven(hash, *BookItem, "ToStringTRdata.[GetDataHash]")) {
      return {};
    }
    return DataReceipt(*BookItem, hash, internal::CurrentRegionalSettings());
  });
}

std::string clsZelItemPrint::ToStringTRdata(clsZelTransActData& BookItem, clsVnError* ErrObj) {
  const internal::Lent lent(BookItem);
  return ToStringTRdata(lent.Get(), ErrObj);
}

namespace internal {

std::shared_ptr<clsZelItemPrint> CreateDefaultPrintEngine() { return std::make_shared<clsZelItemPrint>(); }

std::string RenderItem(clsZelItemPrint& engine, const std::shared_ptr<IVnZelItem>& item, clsVnError* errors) {
  return engine.ToStringCI(item, errors);
}

std::string RenderBooking(clsZelItemPrint& engine, const std::shared_ptr<clsZelTransAct>& booking,
                          clsVnError* errors) {
  return engine.ToStringBI(booking, errors);
}

std::string RenderDataRecord(clsZelItemPrint& engine, const std::shared_ptr<clsZelTransActData>& record,
                             clsVnError* errors) {
  return engine.ToStringTRdata(record, errors);
}

}  // namespace internal

}  // namespace VnZEL10cmn
