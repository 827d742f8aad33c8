#include <algorithm>
#include <exception>

#include "tools/Commands.h"
#include "tools/Common.h"
#include "tools/Sale.h"
#include "tools/Signer.h"

namespace zel {

using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELDataSignTypes;
using VnZEL10cmn::ZelReportType;
using VnZEL10cmn::ZELSerialType;

namespace {

namespace fs = std::filesystem;

[[noreturn]] void FailUsage(const std::string& reason) { throw Failure(ExitStatus::Usage, reason); }

/// A value of the command line.
Date DateOf(const std::string& text) {
  try {
    return ParseDateTime(text);
  } catch (const Failure& failure) {
    FailUsage(std::string("--date: ") + failure.what());
  }
}

Date MonthOf(const std::string& text, const std::string& span) {
  try {
    return ParseDateTime(text + "-02T00:00");  // the first of January 2000 is no date that the library takes
  } catch (const Failure&) {
    FailUsage("--span: \"" + Shown(span) + "\" is no span of months such as 2026-01..2026-03 or 2026-01");
  }
}

void SetSpan(const std::string& span, clsZelReport& report) {
  const std::size_t dots = span.find("..");
  const std::string first = span.substr(0, dots);
  const std::string last = dots == std::string::npos ? first : span.substr(dots + 2);
  report.SpanMonthFrom(MonthOf(first, span));
  report.SpanMonthUpTo(MonthOf(last, span));
  if (report.SpanMonthUpTo() < report.SpanMonthFrom()) {
    FailUsage("--span: the last month, " + Shown(last) + ", lies before the first, " + Shown(first));
  }
}

ZelReportType TypeOf(const ReportOptions& options) {
  const int chosen = options.signedReport + options.unsignedReport + options.deactivate +
                     options.span.has_value() + options.pin.has_value() + options.resume.has_value();
  if (chosen != 1) {
    FailUsage(
        "name one of --signed, --unsigned, --span, --activate, --deactivate, --resume (see zel report "
        "--help)");
  }
  if (options.items && !options.signedReport && !options.resume)
    FailUsage("--items goes with --signed alone");
  if (options.date && options.resume) FailUsage("--date doesn't go with --resume");
  return options.span             ? ZelReportType::Span
         : options.pin            ? ZelReportType::ActivateZEL
         : options.deactivate     ? ZelReportType::DeactivateZEL
         : options.unsignedReport ? ZelReportType::Unsigned
                                  : ZelReportType::Signed;
}

ZELDataSignTypes SignTypeOf(const std::string& type) {
  if (type == "only") return ZELDataSignTypes::DataOnly;
  if (type == "id") return ZELDataSignTypes::DataAndTpID;
  if (type == "time") return ZELDataSignTypes::DataAndTime;
  FailUsage("--type: \"" + Shown(type) + "\" is none of only, id, time");
}

}  // namespace

void RunReport(const ReportOptions& options) {
  const ZelReportType type = TypeOf(options);
  clsZelReport report;
  report.UseSHA256(true);
  if (options.date) report.ReportDate(DateOf(*options.date));
  if (options.span) SetSpan(*options.span, report);
  if (options.pin) report.TransportPIN(*options.pin);
  if (options.items) {
    const std::string json = ReadFile(*options.items);
    About(*options.items, [&json, &report] { FillReport(ReadSale(json), report); });
  }

  const fs::path devicePath = options.device ? *options.device : DefaultDevicePath();
  std::optional<OutputFile> target;
  if (options.out) {
    ExpectOtherFile(*options.out, devicePath);
    if (options.items) ExpectOtherFile(*options.out, *options.items);
    target.emplace(*options.out, options.force,
                   DocumentSizeBound(static_cast<std::size_t>(report.ItemCount())));
  }
  softdevice::Device device = OpenDevice(devicePath);
  const Exchange exchange =
      options.resume ? ResumeReport(report, *options.resume, device) : AnswerReport(report, type, device);
  if (target) {
    try {
      target->Write(ExportDocument(report));
    } catch (const std::exception& failure) {
      FailAfter(failure, exchange.number, "report", "report --device " + OneLine(devicePath.string()));
    }
    Say("wrote " + Quoted(*options.out));
    if (report.ItemCount() == 0) {
      Say("note: a report without items makes a document that the library doesn't import again (error 9302); "
          "zel receipt, verify and dump read it all the same");
    }
  }
  SayUncertified(devicePath);
  Print(ReportText(exchange.request, exchange.response, report, options.wide));
}

void RunSignData(const SignDataOptions& options) {
  if (options.file == kStandardInput && !options.out) {
    FailUsage("data from standard input has no name: name the document with --out");
  }
  clsZelTransActData record;
  record.DataSignType(SignTypeOf(options.type));
  if (options.date) {
    if (options.type != "time") FailUsage("--date goes with --type time alone");
    record.TransactionDate(DateOf(*options.date));
  }
  const std::string content = ReadFile(options.file);
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(content.data());
  About(options.file, [&] {
    const VnZEL10cmn::ByteArray data(std::span(bytes, content.size()));
    if (!record.BinaryDataSet(ZELSerialType::BinaryData, data, 0)) {
      throw Failure(ExitStatus::NotRight, Describe(record.ErrorObject()));
    }
  });

  const fs::path out = options.out ? *options.out : options.file.filename().concat(".xml");
  const fs::path devicePath = options.device ? *options.device : DefaultDevicePath();
  ExpectOtherFile(out, options.file);
  ExpectOtherFile(out, devicePath);
  OutputFile target(out, options.force, kSmallDocument);
  if (options.resume) {
    ResumeData(record, *options.resume, OpenDevice(devicePath));
    target.Write(ExportDocument(record));
    Say("data record " + std::to_string(*options.resume) + " was signed before; wrote " + Quoted(out));
  } else {
    if (!options.device) MakeFolder(devicePath.parent_path());
    softdevice::Device device = OpenOrCreateDevice(devicePath);
    const std::uint32_t number = SignData(record, device);
    try {
      target.Write(ExportDocument(record));
    } catch (const std::exception& failure) {
      FailAfter(failure, number, "data record",
                "sign-data " + OneLine(options.file.string()) + " --device " + OneLine(devicePath.string()));
    }
    Say("signed as data record " + std::to_string(number) + ", wrote " + Quoted(out) +
        "; the document doesn't hold the data");
  }
  SayUncertified(devicePath);
  Print(TextOf(record));
}

}  // namespace zel
