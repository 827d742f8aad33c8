#include "VnZEL10cmn/render/clsZelRprtPrint.h"

#include <array>
#include <string_view>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/errors/internal/Lent.h"
#include "VnZEL10cmn/report/internal/DefaultReportEngine.h"
#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;
using internal::RegionalSettings;

namespace {

constexpr std::int32_t kContainers = 9;
constexpr std::size_t kLabelWidth = 22;
constexpr std::size_t kCellWidth = 12;
constexpr std::string_view kIndent = "    ";
constexpr std::string_view kColumnEnd = " | ";

constexpr std::array<std::string_view, kContainers> kHeads = {
    "Normal", "Ermäßigt", "./.", "Ohne", "Durchschn. 1", "Durchschn. 2", "Agentur", "Liefersch.", "Übung"};

/// A row of the table; `cell` gives the text of container number 1 to 9.
template <class Cell>
std::string Row(std::string_view label, Cell&& cell) {
  std::string row = Compose(kIndent, internal::PadRight(label, kLabelWidth), kColumnEnd);
  for (std::int32_t number = 1; number <= kContainers; ++number) {
    row.append(internal::Utf16Right(internal::PadLeft(cell(number), kCellWidth), kCellWidth))
        .append(kColumnEnd);
  }
  return row.append(kCrLf);
}

std::string Table(const clsZelReport& report, const RegionalSettings& settings) {
  const auto number = [&settings](Currency value, internal::NumberPattern pattern) {
    return internal::FormatNumber(value, pattern, settings);
  };
  const auto container = [&report](std::int32_t index) { return report.Container(index); };
  const std::string header =
      Row("Bezeichung", [](std::int32_t i) { return kHeads[static_cast<std::size_t>(i - 1)]; });
  const std::size_t columns = internal::Utf16Length(header) - kCrLf.size();
  return Compose(
      header, kIndent, std::string(columns - kIndent.size(), '-'), kCrLf,
      Row("Umsatz", [&](std::int32_t i) { return number(container(i)->Turnover(), internal::kAmount); }),
      Row("Umsatz neg.",
          [&](std::int32_t i) { return number(container(i)->TurnoverNeg(), internal::kAmount); }),
      Row("Umsatzsteuersatz",
          [&](std::int32_t i) {
            return number(container(i)->VATrate(), internal::kGroupedOneDecimal) + " %";
          }),
      Row("Überlauf",
          [&](std::int32_t i) { return std::string(container(i)->OverflowTO() ? "Überlauf" : "./."); }),
      Row("USt-Änderung",
          [&](std::int32_t i) { return std::string(container(i)->VATchange() ? "Geändert" : "./."); }),
      Row("Buchungszähler",
          [&](std::int32_t i) { return number(container(i)->CounterTO(), internal::kGroupedWhole); }));
}

}  // namespace

clsZelRprtPrint::clsZelRprtPrint() : Renderer("clsZelRprtPrint") {}

clsZelRprtPrint::~clsZelRprtPrint() = default;

// Hosts override it as it is published.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
std::string clsZelRprtPrint::ToStringItmRpt(std::shared_ptr<IVnZelItem>, clsVnError* ErrObj) {
  return Render("ToStringItmRpt", ErrObj, [] { return std::string("Wird hier nicht unterstützt!"); });
}

std::string clsZelRprtPrint::ToStringRprt(std::shared_ptr<clsZelReport> RprtItem, clsVnError* ErrObj) {
  constexpr std::string_view operation = "ToStringRprt";
  return Render(operation, ErrObj, [&] {
    if (!RprtItem) {
      internal::ThrowObjectNotSet();
    }
    const clsZelReport& report = *RprtItem;
    const RegionalSettings settings = internal::CurrentRegionalSettings();
    const auto whole = [&settings](Currency value) {
      return internal::FormatNumber(value, internal::kGroupedWhole, settings);
    };
    std::string base32;
    std::string base16;
    if (!report.Signature().empty()) {
      clsHelper01 helper;
      ByteArray signature;
      if (!helper.FromBase64String(report.Signature(), signature) ||
          !helper.ToBase32String(signature, base32) || !helper.GetBinStrOfBytes(signature, base16)) {
        FailAs(helper.ErrorObject(), helper.ErrorObject().ErrorMsg(),
               Compose(operation, ".[", helper.ErrorObject().ErrorFunction(), "]"));
      }
    }
    return Compose("      TAGESABSCHLUSS", kCrLf, "    -================-", kCrLf, kCrLf,
                   "    Steuerpflichtiger ..: ", report.TpID(), kCrLf, "    lfd. Zel-Nummer ....: ",
                   internal::FormatNumber(report.TpIdNbr(), internal::kWhole, settings), kCrLf, kCrLf,
                   "    Datum ..............: ", internal::FormatDateMinutes(report.ReportDate(), settings),
                   kCrLf, "    Sequenznr ..........: ", whole(report.SequenceNbr()), kCrLf,
                   "    Belege von .........: ", whole(report.TransSeqNrFirst()), kCrLf,
                   "           bis .........: ", whole(report.TransSeqNrLast()), kCrLf, kCrLf, kCrLf,
                   Table(report, settings), kCrLf, kCrLf, kCrLf, "    Signatur", kCrLf, "    --------", kCrLf,
                   "    Base32 .............: ", base32, kCrLf, "    Base16 .............: ", base16);
  });
}

std::string clsZelRprtPrint::ToStringRprt(clsZelReport& RprtItem, clsVnError* ErrObj) {
  const internal::Lent lent(RprtItem);
  return ToStringRprt(lent.Get(), ErrObj);
}

namespace internal {

std::shared_ptr<clsZelRprtPrint> CreateDefaultReportEngine() { return std::make_shared<clsZelRprtPrint>(); }

std::string RenderReport(clsZelRprtPrint& engine, const std::shared_ptr<clsZelReport>& report,
                         clsVnError* errors) {
  return engine.ToStringRprt(report, errors);
}

}  // namespace internal

}  // namespace VnZEL10cmn
