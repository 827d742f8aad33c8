#include <unistd.h>

#include <algorithm>
#include <system_error>

#include "softdevice/Check.h"
#include "tools/Commands.h"
#include "tools/Common.h"
#include "tools/JsonWriter.h"
#include "tools/Report.h"
#include "tools/Signer.h"

namespace zel {

namespace {

namespace fs = std::filesystem;

std::string StateName(const softdevice::DeviceState& state) {
  return LifeCycleName(VnZEL10cmn::ZelLifeCycle{static_cast<std::int32_t>(state.lifeCycle)});
}

void CheckIdentity(const DeviceInitOptions& options) {
  constexpr std::size_t kMaxTaxpayer = 32;
  constexpr std::size_t kPinLength = 6;
  const auto isShown = [](char character) { return character >= ' ' && character <= '~'; };
  const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
  const std::string& taxpayer = options.taxpayer;
  if (taxpayer.empty() || taxpayer.size() > kMaxTaxpayer ||
      !std::all_of(taxpayer.begin(), taxpayer.end(), isShown)) {
    throw Failure(ExitStatus::Usage, "the taxpayer ID must have 1 to 32 characters, only ASCII, no umlauts");
  }
  if (options.number == 0) throw Failure(ExitStatus::Usage, "the running number must be at least 1");
  if (options.pin.size() != kPinLength || !std::all_of(options.pin.begin(), options.pin.end(), isDigit)) {
    throw Failure(ExitStatus::Usage, "the transport PIN must be six digits");
  }
}

void WriteTotal(const softdevice::Total& total, JsonWriter& json) {
  json.BeginObject();
  json.Member("container", total.container);
  json.Member("name", ContainerTitle(total.container));
  // In cents, as a double has no cents.
  json.Member("turnoverCents", total.turnover);
  json.Member("negativeCents", total.turnoverNegative);
  json.Member("vatCents", total.vat);
  json.Member("rateHundredths", total.vatRate);
  json.Member("bookings", total.bookings);
  json.Member("overflow", total.overflow);
  json.Member("rateChanged", total.vatChanged);
  json.EndObject();
}

std::string ToText(const softdevice::Device& device, const softdevice::DeviceState& state,
                   const fs::path& path) {
  constexpr std::size_t kNameWidth = 27;
  std::string text;
  const auto line = [&text](std::string name, const std::string& value) {
    name += ' ';
    name.resize(kNameWidth, '.');
    text += name + ": " + OneLine(value) + "\n";
  };
  const auto number = [](std::uint32_t last) { return last == 0 ? "none" : std::to_string(last); };
  line("Device file", path.string());
  line("Taxpayer", device.TaxpayerId());
  line("Running number", std::to_string(device.RunningNumber()));
  line("State", StateName(state) + (state.IsLocked() ? ", locked after wrong transport PINs" : ""));
  if (state.lifeCycle == softdevice::LifeCycle::Personalized) {
    line("Wrong transport PINs", std::to_string(state.wrongPins));
  }
  line("Last sequence number", number(state.lastSequenceNumber));
  line("Last report number", number(state.lastReportNumber));
  line("Closed up to number", number(state.lastReportedNumber));
  return text + "\nSince the last closing:\n\n" + TotalsToText(device.OpenTotals());
}

std::string ToJson(const softdevice::Device& device, const softdevice::DeviceState& state,
                   const fs::path& path) {
  TextSink text;
  JsonWriter json(text, JsonWriter::Layout::Indented);
  json.BeginObject();
  json.Member("file", path.string());
  json.Member("taxpayerId", device.TaxpayerId());
  json.Member("runningNumber", device.RunningNumber());
  json.Member("state", StateName(state));
  json.Member("wrongPins", state.wrongPins);
  json.Member("locked", state.IsLocked());
  json.Member("lastSequenceNumber", state.lastSequenceNumber);
  json.Member("lastReportNumber", state.lastReportNumber);
  json.Member("closedUpToNumber", state.lastReportedNumber);
  json.Key("openTotals");
  json.BeginArray();
  for (const softdevice::Total& total : device.OpenTotals()) {
    WriteTotal(total, json);
  }
  json.EndArray();
  json.EndObject();
  return text.Text() + "\n";
}

/// The complete check, with its progress on a terminal.
softdevice::CheckResult Check(const fs::path& path) {
  std::optional<Progress> progress;
  std::uint64_t shown = 0;
  softdevice::CheckOptions options;
  options.progress = [&](std::uint64_t done, std::uint64_t all) {
    if (isatty(STDERR_FILENO) == 0) return;
    if (!progress) progress.emplace("checking", static_cast<std::size_t>(all));
    for (; shown < done; ++shown)
      progress->Step({});
  };
  try {
    return softdevice::CheckDeviceFile(path, options);
  } catch (const softdevice::DeviceError& error) {
    throw Failure(ExitStatus::Trouble, OneLine(error.what()));
  }
}

std::string Counted(std::uint32_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string ToText(const softdevice::CheckResult& result) {
  std::string text;
  for (const std::string& damage : result.damages)
    text += OneLine(damage) + "\n";
  return text;
}

std::string ToJson(const softdevice::CheckResult& result, const fs::path& path) {
  TextSink text;
  JsonWriter json(text, JsonWriter::Layout::Indented);
  json.BeginObject();
  json.Member("file", path.string());
  json.Member("ok", result.IsRight());
  json.Member("transactions", result.transactions);
  json.Member("reports", result.reports);
  json.Key("damages");
  json.BeginArray();
  for (const std::string& damage : result.damages)
    json.String(damage);
  json.EndArray();
  json.EndObject();
  return text.Text() + "\n";
}

}  // namespace

void RunDeviceInit(const DeviceInitOptions& options) {
  CheckIdentity(options);
  const fs::path path = options.device ? *options.device : DefaultDevicePath();
  // An empty file is what is left of a device that couldn't be made.
  std::error_code ignored;
  if (fs::exists(path, ignored) && fs::file_size(path, ignored) != 0) {
    throw Failure(ExitStatus::Trouble, Quoted(path) + " exists already");
  }
  if (!options.device) MakeFolder(path.parent_path());
  const softdevice::Device device = MakeDevice(path, {.create = true,
                                                      .taxpayerId = options.taxpayer,
                                                      .runningNumber = options.number,
                                                      .transportPin = options.pin,
                                                      .activate = options.activate});
  Say("made the software signing device " + Quoted(path) + " for taxpayer " + device.TaxpayerId() +
      ", number " + std::to_string(device.RunningNumber()) + ", " + StateName(device.State()) +
      (options.activate ? "" : ": 'zel report --activate PIN' activates it"));
  SayUncertified(path);
}

void RunDeviceShow(const std::optional<fs::path>& device, bool json) {
  const fs::path path = device ? *device : DefaultDevicePath();
  const softdevice::Device opened = OpenDevice(path);
  const softdevice::DeviceState state = opened.State();
  Print(json ? ToJson(opened, state, path) : ToText(opened, state, path));
}

ExitStatus RunDeviceCheck(const std::optional<fs::path>& device, bool json) {
  const fs::path path = device ? *device : DefaultDevicePath();
  const softdevice::CheckResult result = Check(path);
  Print(json ? ToJson(result, path) : ToText(result));
  Say("the device " + Quoted(path) + (result.IsRight() ? " is as it was recorded: " : " is damaged: ") +
      Counted(result.transactions, "transaction") + " and " + Counted(result.reports, "report") + " checked");
  return result.IsRight() ? ExitStatus::Ok : ExitStatus::NotRight;
}

}  // namespace zel
