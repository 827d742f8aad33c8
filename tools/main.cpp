#include <sys/resource.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <functional>
#include <new>
#include <string>
#include <utility>

#include "tools/Commands.h"
#include "tools/Console.h"
#include "tools/ExitStatus.h"
#include "tools/Text.h"

namespace {

using zel::ExitStatus;

constexpr const char* kStatuses =
    "Exit status: 0 done; 1 the sale, document or data is not right; 2 the command line is not right;\n"
    "3 a file, the device, the output or memory can't be had. What is wrong stands on standard error, in one "
    "line.\n";

constexpr const char* kDeviceFile =
    "The device file is $XDG_DATA_HOME/zel/device.db or ~/.local/share/zel/device.db unless --device names "
    "another.\n";

/// Adds an option whose value is none unless given.
template <typename Value>
CLI::Option* AddOptional(CLI::App& command, const std::string& name, std::optional<Value>& value,
                         const std::string& description, const std::string& typeName) {
  return command
      .add_option_function<std::string>(
          name, [&value](const std::string& text) { value = text; }, description)
      ->type_name(typeName);
}

/// The commands chosen, each with a blank behind it.
std::string CommandLine(const CLI::App& app) {
  std::string line;
  for (const CLI::App* chosen : app.get_subcommands())
    line += chosen->get_name() + " " + CommandLine(*chosen);
  return line;
}

void AddSign(CLI::App& app, zel::SignOptions& options) {
  CLI::App* const command = app.add_subcommand(
      "sign",
      "Signs a sale with the software signing device, writes its XML document and prints its receipt");
  command
      ->add_option("SALE", options.sale,
                   "The sale, a JSON file (see docs/sale-format.md), or - for standard input")
      ->required()
      ->type_name("");
  AddOptional(*command, "--device", options.device, "The device file; made on first use", "FILE");
  AddOptional(*command, "--out,-o", options.out,
              "The document; default: the sale's name with .xml, in this folder", "FILE");
  command->add_flag("--force,-f", options.force, "Overwrite the document if it exists");
  AddOptional(*command, "--log", options.log, "Append the library's errors to this log file", "FILE");
  command
      ->add_option_function<std::uint32_t>(
          "--resume", [&options](std::uint32_t number) { options.resume = number; },
          "Sign nothing: write the document of this sale, which the device signed before as booking NUMBER")
      ->type_name("NUMBER");
  command->footer(
      std::string("\nExamples:\n"
                  "  zel sign sale.json                       writes sale.xml, prints the receipt\n"
                  "  zel sign sale.json --out day/0001.xml --device till1.db\n"
                  "  zel sign sale.json --resume 17           the document of booking 17 once more\n\n") +
      kDeviceFile + kStatuses);
  command->callback([&options] { zel::RunSign(options); });
}

/// Adds what says which documents are to be read. The command then ends with the status that `run` returns.
void AddInputs(CLI::App& command, const std::string& name, const std::string& what,
               zel::InputOptions& options, std::function<ExitStatus()> run, ExitStatus& status) {
  command.add_option(name, options.files, what + ", or - for standard input; as many as you like")
      ->type_name("");
  CLI::Option* const from =
      AddOptional(command, "--files-from", options.filesFrom,
                  "Read those files too that FILE names, one per line (- for standard input)", "FILE");
  command.add_flag("--json", options.json, "Write JSON for programs; of many, an object per line");
  command
      .add_flag("--lines", options.lines,
                "Read standard input, or the files given, line by line, each of them a JSON object; answer "
                "each with one")
      ->excludes(from);
  command.add_option("--jobs,-j", options.jobs, "How many to work on at a time; default: one per processor")
      ->type_name("N")
      ->check(CLI::Range(1, 256));
  command.callback([&options, &status, name, run = std::move(run)] {
    if (options.files.empty() && !options.filesFrom && !options.lines) throw CLI::RequiredError(name);
    status = run();
  });
}

constexpr const char* kLines =
    "With --lines each line holds a \"document\" (its text) or a \"file\" (its name), and an \"id\" that "
    "comes back\n"
    "if you like. What is wrong stands in the answer, as \"error\" where there is nothing else to say; the "
    "exit\n"
    "status is 0 when every line was answered.\n\n";

void AddReceipt(CLI::App& app, zel::InputOptions& inputs, bool& wide, ExitStatus& status) {
  CLI::App* const command = app.add_subcommand(
      "receipt", "Prints the receipt of a booking's or data record's XML document, or a report as a table");
  AddInputs(
      *command, "DOCUMENT", "The XML document", inputs,
      [&inputs, &wide] { return zel::RunReceipt(inputs, wide); }, status);
  command->add_flag("--wide", wide, "A report as the library writes it, 164 columns wide");
  command->footer(std::string("\nExamples:\n"
                              "  zel receipt sale.xml\n"
                              "  zel receipt closing.xml --wide\n"
                              "  zel receipt --lines < documents.jsonl > receipts.jsonl\n\n") +
                  kLines + kStatuses);
}

void AddDump(CLI::App& app, zel::InputOptions& inputs, ExitStatus& status) {
  CLI::App* const command = app.add_subcommand(
      "dump",
      "Shows a request, response, item list (binary, Base64 or hexadecimal text) or XML document as a tree");
  AddInputs(
      *command, "FILE", "The file, whose form is recognised", inputs,
      [&inputs] { return zel::RunDump(inputs); }, status);
  command->footer(
      std::string("\nEach line: position, tag, name, length, value. Of damaged data everything before the "
                  "damage is shown,\nthen position and reason.\n\n"
                  "Examples:\n"
                  "  zel dump sale.xml\n"
                  "  echo 'A0 01 32 A2 03 74 65 65' | zel dump -\n"
                  "  zel dump request.bin --json\n"
                  "  echo '{\"id\": 7, \"document\": \"A0 01 32\"}' | zel dump --lines\n\n") +
      kLines + kStatuses);
}

void AddVerify(CLI::App& app, zel::VerifyOptions& options, ExitStatus& status) {
  CLI::App* const command = app.add_subcommand(
      "verify",
      "Checks that all that a booking's, report's or data record's document holds belongs together");
  AddInputs(
      *command, "DOCUMENT", "The XML document", options.inputs,
      [&options] {
        const zel::InputOptions& inputs = options.inputs;
        if (options.data && (inputs.files.size() != 1 || inputs.filesFrom || inputs.lines)) {
          throw CLI::ArgumentMismatch("--data goes with one document");
        }
        return zel::RunVerify(options);
      },
      status);
  CLI::Option* const device =
      AddOptional(*command, "--device", options.device, "The device that signed it", "FILE");
  AddOptional(*command, "--key", options.key, "Its public key, as zel key prints it", "PEM")
      ->excludes(device);
  AddOptional(*command, "--data", options.data, "Of a data record: check that this file is what was signed",
              "FILE");
  command->footer(
      std::string("\nThe first thing that is not right is named: document, items, item hash, request, "
                  "data, response\nor signature. Unsigned reports have no signature that could be right.\n\n"
                  "Examples:\n"
                  "  zel verify sale.xml\n"
                  "  zel verify sale.xml --key till1.pem --json\n"
                  "  zel verify log.txt.xml --data log.txt\n"
                  "  find archive -name '*.xml' | zel verify --files-from - --key till1.pem > verified.txt\n"
                  "  zel verify --lines --key till1.pem < documents.jsonl > answers.jsonl\n\n") +
      kLines +
      "Here a line may hold \"data\" too: the bytes that were signed as a data record, in Base64.\n\n" +
      kDeviceFile + kStatuses);
}

void AddKey(CLI::App& app, std::optional<std::filesystem::path>& device) {
  CLI::App* const command = app.add_subcommand("key", "Prints the public key of a device (PEM)");
  AddOptional(*command, "--device", device, "The device file", "FILE");
  command->footer(std::string("\nExample:\n  zel key --device till1.db > till1.pem\n\n") + kDeviceFile +
                  kStatuses);
  command->callback([&device] { zel::RunKey(device); });
}

void AddDay(CLI::App& app, zel::DayOptions& options) {
  CLI::App* const command = app.add_subcommand(
      "day", "Signs all sales of a folder, verifies the documents, prints the totals and closes the day");
  command
      ->add_option("FOLDER", options.sales, "The folder; its *.json are signed in the order of their names")
      ->required()
      ->type_name("");
  command->add_option("--out,-o", options.out, "The folder for the documents; made if need be")
      ->required()
      ->type_name("FOLDER");
  AddOptional(*command, "--device", options.device,
              "The device file; default: device.db in the documents' folder", "FILE");
  command->add_flag("--force,-f", options.force, "Overwrite documents that exist");
  command->add_flag("--wide", options.wide, "The closing as the library writes it, 164 columns wide");
  command->footer(
      std::string("\nThe day ends with a signed closing, closing.xml, whose turnover has to be that of the "
                  "bookings.\n\n"
                  "Example:\n  zel day examples/day --out build/demo\n\n") +
      kStatuses);
  command->callback([&options] { zel::RunDay(options); });
}

void AddDevice(CLI::App& app, zel::DeviceInitOptions& init, std::optional<std::filesystem::path>& device,
               bool& json, ExitStatus& status) {
  CLI::App* const command =
      app.add_subcommand("device", "Makes a software signing device, shows one, or checks its file");
  command->require_subcommand(1);
  constexpr const char* kExamples =
      "\nExamples:\n"
      "  zel device init --taxpayer DE123456789 --number 1 --pin 271828 --device till1.db\n"
      "  zel report --activate 271828 --device till1.db\n"
      "  zel device show --device till1.db\n"
      "  zel device check --device till1.db\n\n";
  command->footer(std::string(kExamples) + kDeviceFile + kStatuses);

  CLI::App* const make = command->add_subcommand("init", "Makes a software signing device");
  AddOptional(*make, "--device", init.device, "The device file, which must not exist yet", "FILE");
  make->add_option("--taxpayer", init.taxpayer, "The taxpayer ID, 1 to 32 characters")
      ->required()
      ->type_name("ID");
  make->add_option("--number", init.number, "The device's running number for that taxpayer")
      ->required()
      ->type_name("N");
  make->add_option("--pin", init.pin, "The transport PIN that will activate it, six digits")
      ->required()
      ->type_name("PIN");
  make->add_flag("--activate", init.activate, "Activate it at once");
  make->footer(std::string(kExamples) + kDeviceFile + kStatuses);
  make->callback([&init] { zel::RunDeviceInit(init); });

  CLI::App* const show =
      command->add_subcommand("show", "Shows identity, state, last numbers and what no closing covers yet");
  AddOptional(*show, "--device", device, "The device file", "FILE");
  show->add_flag("--json", json, "Write JSON for programs");
  show->footer(std::string(kExamples) + kDeviceFile + kStatuses);
  show->callback([&device, &json] { zel::RunDeviceShow(device, json); });

  CLI::App* const check = command->add_subcommand(
      "check", "Checks all that a device file holds: structure, state, totals, every record and signature");
  AddOptional(*check, "--device", device, "The device file", "FILE");
  check->add_flag("--json", json, "Write JSON for programs");
  check->footer(
      std::string("\nWhat is damaged is named, a line for each, records with their numbers; status 1 "
                  "then. Nothing is changed.\nOther processes may sign meanwhile.\n") +
      kExamples + kDeviceFile + kStatuses);
  check->callback([&device, &json, &status] { status = zel::RunDeviceCheck(device, json); });
}

void AddReport(CLI::App& app, zel::ReportOptions& options) {
  CLI::App* const command =
      app.add_subcommand("report", "Has the device answer a report (closing) and prints it as a table");
  command->add_flag("--signed", options.signedReport, "Close: what was signed since the last closing");
  command->add_flag("--unsigned", options.unsignedReport, "Show what a closing would cover now");
  AddOptional(*command, "--span", options.span, "Add up whole months, by the date of the bookings",
              "MONTH..MONTH");
  AddOptional(*command, "--activate", options.pin, "Activate a new device with its transport PIN", "PIN");
  command->add_flag("--deactivate", options.deactivate,
                    "Close for the last time; nothing can be signed then");
  command
      ->add_option_function<std::uint32_t>(
          "--resume", [&options](std::uint32_t number) { options.resume = number; },
          "Close nothing: show (and write) what the device signed before as report NUMBER")
      ->type_name("NUMBER");
  AddOptional(*command, "--device", options.device, "The device file", "FILE");
  AddOptional(*command, "--date", options.date, "Date and time of the report; default: now", "TIME");
  AddOptional(*command, "--items", options.items, "Report items: those of this sale, with --signed", "SALE");
  AddOptional(*command, "--out,-o", options.out, "Write the XML document too", "FILE");
  command->add_flag("--force,-f", options.force, "Overwrite the document if it exists");
  command->add_flag("--wide", options.wide, "The report as the library writes it, 164 columns wide");
  command->footer(
      std::string(
          "\nThe library doesn't import the document of a report without items again (error 9302); zel "
          "receipt,\nverify and dump read it all the same.\n\n"
          "Examples:\n"
          "  zel report --signed --out closing.xml\n"
          "  zel report --unsigned --wide\n"
          "  zel report --span 2026-01..2026-03\n"
          "  zel report --activate 271828 --device till1.db --date 2026-11-21T08:05\n\n") +
      kDeviceFile + kStatuses);
  command->callback([&options] { zel::RunReport(options); });
}

void AddSignData(CLI::App& app, zel::SignDataOptions& options) {
  CLI::App* const command = app.add_subcommand(
      "sign-data", "Signs a file's bytes, whatever they are, writes the XML document and prints the receipt");
  command->add_option("FILE", options.file, "The data, or - for standard input")->required()->type_name("");
  command
      ->add_option(
          "--type", options.type,
          "only: the data alone; id (default): with the taxpayer ID; time: with date and time as well")
      ->type_name("TYPE");
  AddOptional(*command, "--date", options.date, "Date and time, with --type time; default: now", "TIME");
  AddOptional(*command, "--device", options.device, "The device file; made on first use", "FILE");
  AddOptional(*command, "--out,-o", options.out,
              "The document; default: the data's name with .xml behind it, in this folder", "FILE");
  command->add_flag("--force,-f", options.force, "Overwrite the document if it exists");
  command
      ->add_option_function<std::uint32_t>(
          "--resume", [&options](std::uint32_t number) { options.resume = number; },
          "Sign nothing: write the document of this data, which the device signed before under NUMBER")
      ->type_name("NUMBER");
  command->footer(
      std::string("\nThe document holds the data's hash, not the data: keep both.\n\n"
                  "Examples:\n"
                  "  zel sign-data log.txt                    writes log.txt.xml, prints the receipt\n"
                  "  zel sign-data log.txt --type time --out signed/log.xml\n"
                  "  zel verify log.txt.xml --data log.txt\n\n") +
      kDeviceFile + kStatuses);
  command->callback([&options] { zel::RunSignData(options); });
}

/// A document's memory goes back to the system when the document is answered; and where the address space is limited,
/// no thread keeps a part of it for itself.
void ShareMemory() {
#ifdef __GLIBC__
  constexpr int kLarge = 1024 * 1024;
  mallopt(M_MMAP_THRESHOLD, kLarge);
  rlimit limit{};
  if (getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY) mallopt(M_ARENA_MAX, 1);
#endif
}

int Run(int argc, char** argv) {
  CLI::App app("Signs sales, closings and data with a software signing device, and shows and verifies them",
               "zel");
  app.set_version_flag("--version", "zel " ZEL_VERSION);
  app.require_subcommand(1);
  app.footer(std::string("\nExamples:\n"
                         "  zel sign sale.json\n"
                         "  zel verify sale.xml\n"
                         "  zel report --signed\n"
                         "  zel dump --help\n\n") +
             kStatuses);

  zel::SignOptions sign;
  zel::VerifyOptions verify;
  zel::DayOptions day;
  zel::DeviceInitOptions init;
  zel::ReportOptions report;
  zel::SignDataOptions signData;
  zel::InputOptions receipt;
  zel::InputOptions dump;
  bool wide = false;
  ExitStatus status = ExitStatus::Ok;
  bool showJson = false;
  std::optional<std::filesystem::path> device;
  std::optional<std::filesystem::path> shownDevice;
  AddSign(app, sign);
  AddSignData(app, signData);
  AddReport(app, report);
  AddReceipt(app, receipt, wide, status);
  AddDump(app, dump, status);
  AddVerify(app, verify, status);
  AddDevice(app, init, shownDevice, showJson, status);
  AddKey(app, device);
  AddDay(app, day);

  try {
    app.parse(argc, argv);
    return static_cast<int>(status);
  } catch (const CLI::CallForHelp&) {
    zel::Print(app.help());
  } catch (const CLI::CallForVersion& version) {
    zel::Print(std::string(version.what()) + "\n");
  } catch (const CLI::ParseError& error) {
    const auto chosen = app.get_subcommands();
    std::string reason = zel::Shown(error.what());
    if (chosen.empty()) {
      const std::string word = argc > 1 ? argv[1] : "";
      reason = word.empty() ? "name a command" : "there is no command or option '" + zel::Shown(word) + "'";
    }
    zel::Say(reason + " (see zel " + CommandLine(app) + "--help)");
    return static_cast<int>(ExitStatus::Usage);
  }
  return static_cast<int>(ExitStatus::Ok);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    // A file that may not grow is reported like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    zel::GuardStandardStreams();
    ShareMemory();
    return Run(argc, argv);
  } catch (const zel::Failure& failure) {
    zel::Say(failure.what());
    return static_cast<int>(failure.Status());
  } catch (const std::bad_alloc&) {
    zel::Say("there is not enough memory");
  } catch (const std::exception& failure) {
    zel::Say(failure.what());
  }
  return static_cast<int>(ExitStatus::Trouble);
}
