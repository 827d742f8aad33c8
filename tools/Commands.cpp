#include "tools/Commands.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "tools/Common.h"
#include "tools/Day.h"
#include "tools/Document.h"
#include "tools/Dump.h"
#include "tools/Sale.h"
#include "tools/Signer.h"
#include "tools/Verify.h"

namespace zel {

using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelTransActData;

namespace {

namespace fs = std::filesystem;

fs::path DocumentPath(const fs::path& sale) { return sale.stem().concat(".xml"); }

/// Writing to the log is nobody's task here: without a log the sale is signed all the same.
void AttachLog(clsZelTransAct& booking, const fs::path& path) {
  // A pipe would wait until somebody reads it.
  std::error_code unknown;
  const bool isNew = !fs::exists(path, unknown);
  const auto log = std::make_shared<VnZEL10cmn::clsVnLogFile>();
  if (!(isNew || fs::is_regular_file(path, unknown)) || !log->FileOpen(path.string())) {
    Say("warning: the log file " + Quoted(path) + " can't be opened; going on without it");
    return;
  }
  booking.LogHandler(log);
}

/// Signs a booking and writes its document. The booking is signed only when the document can be written as
/// far as that can be known; should it fail nevertheless, the device still has everything.
std::uint32_t SignToFile(clsZelTransAct& booking, const VnZEL10cmn::ByteArray& request, OutputFile& target,
                         softdevice::Device& device, const fs::path& sale, const fs::path& devicePath) {
  const std::uint32_t number = SignBooking(booking, request, device);
  try {
    target.Write(ExportDocument(booking));
  } catch (const std::exception& failure) {
    throw Failure(ExitStatus::Trouble,
                  std::string(failure.what()) + "; the sale is signed as booking " + std::to_string(number) +
                      " and kept by the device: write its document with 'zel sign " + OneLine(sale.string()) +
                      " --device " + OneLine(devicePath.string()) + " --resume " + std::to_string(number) +
                      "'");
  }
  return number;
}

/// The sales of a folder, in the order of their names.
std::vector<fs::path> SalesOf(const fs::path& folder) {
  std::vector<fs::path> sales;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    if (entry->path().extension() == ".json") sales.push_back(entry->path());
  }
  if (error) {
    throw Failure(ExitStatus::Trouble, "the folder " + Quoted(folder) + " can't be read: " + error.message());
  }
  if (sales.empty()) {
    throw Failure(ExitStatus::NotRight, "the folder " + Quoted(folder) + " holds no sale (*.json)");
  }
  std::sort(sales.begin(), sales.end());
  return sales;
}

/// Throws where a document isn't right.
void ExpectRight(const std::string& xml, const softdevice::PublicKey& key) {
  const Verification verification = VerifyDocument(xml, key);
  if (!verification.IsRight()) {
    throw Failure(ExitStatus::NotRight,
                  std::string(CheckName(*verification.failed)) + ": " + verification.reason);
  }
}

/// A day's closing covers this day alone.
void ExpectClosed(const softdevice::Device& device, const fs::path& path) {
  const softdevice::DeviceState state = device.State();
  if (state.lastSequenceNumber != state.lastReportedNumber) {
    throw Failure(ExitStatus::Trouble, "the device " + Quoted(path) + " has signed up to number " +
                                           std::to_string(state.lastSequenceNumber) +
                                           ", and no closing covers what follows number " +
                                           std::to_string(state.lastReportedNumber) +
                                           ": close it with 'zel report --signed --device " +
                                           OneLine(path.string()) + "'");
  }
}

/// Ends the day: a signed closing, which is read back from its document and compared with the bookings.
void CloseDay(const DaySummary& summary, softdevice::Device& device, const fs::path& devicePath,
              const fs::path& path, const DayOptions& options) {
  OutputFile target(path, options.force, kSmallDocument);
  clsZelReport closing;
  const Exchange exchange = AnswerReport(closing, VnZEL10cmn::ZelReportType::Signed, device);
  try {
    target.Write(ExportDocument(closing));
  } catch (const std::exception& failure) {
    FailAfter(failure, exchange.number, "report", "report --device " + OneLine(devicePath.string()));
  }

  const std::string xml = ReadFile(path);
  clsZelReport read;
  About(path, [&] {
    ExpectRight(xml, device.PublicKeyPem());
    const Document parts = SplitDocument(xml);
    TakeParts(parts, read);
    Print(ReportText(parts.request, parts.response, read, options.wide));
    summary.ExpectClosing(read);
  });
  Print("\nThe closing in " + OneLine(path.string()) +
        " is verified;\nin all 9 containers its turnover is that of the bookings\n");
}

}  // namespace

void RunSign(const SignOptions& options) {
  if (options.sale == kStandardInput && !options.out) {
    throw Failure(ExitStatus::Usage, "a sale from standard input has no name: name the document with --out");
  }
  const std::string json = ReadFile(options.sale);
  clsZelTransAct booking;
  if (options.log) AttachLog(booking, *options.log);
  const Sale sale = About(options.sale, [&json] { return ReadSale(json); });
  const auto request = About(options.sale, [&sale, &booking] {
    FillBooking(sale, booking);
    return BuildRequest(booking);
  });

  const fs::path out = options.out ? *options.out : DocumentPath(options.sale);
  const fs::path devicePath = options.device ? *options.device : DefaultDevicePath();
  ExpectOtherFile(out, options.sale);
  ExpectOtherFile(out, devicePath);
  OutputFile target(out, options.force, DocumentSizeBound(sale.items.size()));

  if (options.resume) {
    const softdevice::Device device = OpenDevice(devicePath);
    ResumeBooking(sale, booking, *options.resume, device);
    target.Write(ExportDocument(booking));
    Say("booking " + std::to_string(*options.resume) + " was signed before; wrote " + Quoted(out));
  } else {
    if (!options.device) MakeFolder(devicePath.parent_path());
    softdevice::Device device = OpenOrCreateDevice(devicePath);
    const std::uint32_t number = SignToFile(booking, request, target, device, options.sale, devicePath);
    Say("signed as booking " + std::to_string(number) + ", wrote " + Quoted(out));
  }
  SayUncertified(devicePath);
  Print(TextOf(booking));
}

void RunKey(const std::optional<fs::path>& device) { Print(OpenDevice(device).PublicKeyPem()); }

void RunDay(const DayOptions& options) {
  const std::vector<fs::path> sales = SalesOf(options.sales);
  // Nothing is signed before all sales are read.
  for (const fs::path& sale : sales) {
    const std::string json = ReadFile(sale, FileKind::Regular);
    About(sale, [&json] { ReadSale(json); });
  }
  const fs::path closingPath = options.out / "closing.xml";
  if (std::find_if(sales.begin(), sales.end(),
                   [](const fs::path& sale) { return sale.stem() == "closing"; }) != sales.end()) {
    throw Failure(ExitStatus::Usage, "a sale 'closing.json' and the day's closing would share a document");
  }
  MakeFolder(options.out);
  const fs::path devicePath = options.device ? *options.device : options.out / "device.db";
  softdevice::Device device = OpenOrCreateDevice(devicePath);
  ExpectClosed(device, devicePath);
  SayUncertified(devicePath);

  std::vector<fs::path> documents;
  {
    Progress progress("signing", sales.size());
    for (const fs::path& file : sales) {
      clsZelTransAct booking;
      const auto request = About(file, [&file, &booking] {
        FillBooking(ReadSale(ReadFile(file, FileKind::Regular)), booking);
        return BuildRequest(booking);
      });
      documents.push_back(options.out / DocumentPath(file));
      OutputFile target(documents.back(), options.force,
                        DocumentSizeBound(static_cast<std::size_t>(booking.ItemCount())));
      const std::uint32_t number = SignToFile(booking, request, target, device, file, devicePath);
      progress.Step(documents.back().filename().string() + ", booking " + std::to_string(number));
    }
  }

  DaySummary summary;
  std::unique_ptr<clsZelTransAct> last;
  {
    const softdevice::PublicKey key = device.PublicKeyPem();
    Progress progress("verifying", documents.size());
    for (const fs::path& document : documents) {
      std::string xml = ReadFile(document);
      About(document, [&] {
        ExpectRight(xml, key);
        last = std::make_unique<clsZelTransAct>();
        ImportDocument(xml, *last);
        summary.Add(*last);
      });
      progress.Step(document.filename().string() + ", all is right");
    }
  }
  Print("The last receipt, read back from " + OneLine(documents.back().string()) + ":\n\n");
  Print(TextOf(*last));
  Print("\n" + std::to_string(documents.size()) + " documents written to " + OneLine(options.out.string()) +
        ", read back and verified\n\n" + summary.ToText() + "\n");
  CloseDay(summary, device, devicePath, closingPath, options);
}

}  // namespace zel
