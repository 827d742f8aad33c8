#include "tools/Report.h"

#include <array>

#include "tools/Records.h"
#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::Currency;
using VnZEL10cmn::ZelTags;

namespace {

constexpr std::uint8_t kFirstContainer = 225;
constexpr std::array<std::string_view, 9> kTitles = {"A standard",  "B reduced",      "C second reduced",
                                                     "D no VAT",    "E special",      "F second special",
                                                     "Third-party", "Delivery notes", "Training"};
constexpr std::size_t kVatClasses = 6;

/// What a row of the table shows.
struct Row {
  Currency turnover;
  Currency negative;
  Currency vat;
  Currency rate;
  bool overflow = false;
  bool rateChanged = false;
};

using Rows = std::array<Row, kTitles.size()>;

std::string TableToText(const Rows& rows) {
  constexpr std::size_t kTitleWidth = 18;
  constexpr std::size_t kAmountWidth = 17;
  constexpr std::size_t kRateWidth = 8;
  std::string text = PadRight("container", kTitleWidth) + PadLeft("turnover", kAmountWidth) +
                     PadLeft("of it negative", kAmountWidth) + PadLeft("VAT", kAmountWidth) +
                     PadLeft("rate", kRateWidth) + "\n";
  const std::string rule(kTitleWidth + 3 * kAmountWidth + kRateWidth, '-');
  text += rule + "\n";
  bool overflow = false;
  bool rateChanged = false;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i == kVatClasses) text += rule + "\n";
    const Row& row = rows[i];
    text += PadRight(std::string(kTitles[i]), kTitleWidth) +
            PadLeft(FormatDecimal(row.turnover, 2), kAmountWidth) +
            PadLeft(FormatDecimal(row.negative, 2), kAmountWidth) +
            PadLeft(FormatDecimal(row.vat, 2), kAmountWidth) +
            PadLeft(i < kVatClasses ? FormatDecimal(row.rate, 2) + "%" : "-", kRateWidth) +
            (row.rateChanged ? "!" : "") + (row.overflow ? "*" : "") + "\n";
    overflow = overflow || row.overflow;
    rateChanged = rateChanged || row.rateChanged;
  }
  text += rule + "\n";
  text +=
      "Third-party turnover stands in its class as well; delivery notes and training\n"
      "stand in their rows alone.\n";
  if (rateChanged) text += "! the VAT rate changed, the last one is shown\n";
  if (overflow) text += "* an amount overflowed, its last digits are shown\n";
  return text;
}

bool Has(const ByteArray& data, RunKind kind, ZelTags tag) {
  MemoryBytes bytes(data);
  return FindRecord(bytes, kind, tag).has_value();
}

std::string Line(std::string_view name, const std::string& value) {
  constexpr std::size_t kNameWidth = 20;
  std::string line(name);
  line += ' ';
  line.resize(kNameWidth, '.');
  return line + ": " + OneLine(value) + "\n";
}

}  // namespace

std::string_view ContainerTitle(std::uint8_t container) {
  return kTitles.at(static_cast<std::size_t>(container - kFirstContainer));
}

std::string_view ReportTitle(const ByteArray& request, const clsZelReport& report) {
  if (Has(request, RunKind::ReportRequest, ZelTags::Transport_Pin)) return "Activation";
  if (Has(request, RunKind::ReportRequest, ZelTags::Month_Start)) return "Report over months, unsigned";
  if (report.Signature().empty()) return "Unsigned report";
  return report.ZelStatus() == VnZEL10cmn::ZelLifeCycle::Deactivated ? "Closing and deactivation" : "Closing";
}

std::string ReportToText(const ByteArray& request, const ByteArray& response, const clsZelReport& report,
                         std::size_t itemCount) {
  const auto has = [&response](ZelTags tag) { return Has(response, RunKind::ReportResponse, tag); };
  const std::string title(ReportTitle(request, report));
  std::string text = title + "\n" + std::string(title.size(), '=') + "\n\n";
  text += Line("Taxpayer", report.TpID());
  if (has(ZelTags::Lifecycle)) {
    text += Line("Device", FormatDecimal(report.TpIdNbr(), 0) + ", " + LifeCycleName(report.ZelStatus()));
  }
  text += Line("Date", FormatDateTime(report.ReportDate()));
  if (Has(request, RunKind::ReportRequest, ZelTags::Month_Start)) {
    constexpr std::size_t kYearAndMonth = 7;
    text += Line("Months", FormatDate(report.SpanMonthFrom()).substr(0, kYearAndMonth) + " to " +
                               FormatDate(report.SpanMonthUpTo()).substr(0, kYearAndMonth));
  }
  if (has(ZelTags::Seq_Nr_Reprt)) text += Line("Report number", FormatDecimal(report.SequenceNbr(), 0));
  if (has(ZelTags::Seq_No_Trans_Last)) {
    const bool isEmpty = report.TransSeqNrLast() == Currency();
    text += Line("Sequence numbers", isEmpty ? "none"
                                             : FormatDecimal(report.TransSeqNrFirst(), 0) + " to " +
                                                   FormatDecimal(report.TransSeqNrLast(), 0));
  }
  if (itemCount > 0) text += Line("Report items", std::to_string(itemCount));
  if (has(ZelTags::Container_Vat_1)) {
    Rows rows;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const auto container = report.Container(static_cast<std::int32_t>(i) + 1);
      rows[i] = {.turnover = container->Turnover(),
                 .negative = container->TurnoverNeg(),
                 .vat = container->VAT(),
                 .rate = container->VATrate(),
                 .overflow = container->OverflowTO(),
                 .rateChanged = container->VATchange()};
    }
    text += "\n" + TableToText(rows);
  }
  text += "\n";
  if (report.Signature().empty()) return text + "Not signed.\n";
  constexpr std::size_t kSignatureWidth = 44;
  for (std::size_t start = 0; start < report.Signature().size(); start += kSignatureWidth) {
    text += (start == 0 ? "Signature, Base64 ..: " : std::string(22, ' ')) +
            report.Signature().substr(start, kSignatureWidth) + "\n";
  }
  return text;
}

std::string TotalsToText(const std::vector<softdevice::Total>& totals) {
  const auto cents = [](std::int64_t amount) {
    constexpr std::int64_t kScaledPerCent = 100;
    return Currency::FromScaled(amount * kScaledPerCent);
  };
  Rows rows;
  for (const softdevice::Total& total : totals) {
    rows.at(static_cast<std::size_t>(total.container - kFirstContainer)) = {
        .turnover = cents(total.turnover),
        .negative = cents(total.turnoverNegative),
        .vat = cents(total.vat),
        .rate = cents(total.vatRate),
        .overflow = total.overflow,
        .rateChanged = total.vatChanged};
  }
  return TableToText(rows);
}

}  // namespace zel
