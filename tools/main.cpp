#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <new>
#include <string>

#include "tools/Commands.h"
#include "tools/Console.h"
#include "tools/ExitStatus.h"

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

void AddReceipt(CLI::App& app, std::string& document) {
  CLI::App* const command = app.add_subcommand("receipt", "Prints the receipt of a booking's XML document");
  command->add_option("DOCUMENT", document, "The XML document, or - for standard input")
      ->required()
      ->type_name("");
  command->footer(std::string("\nExample:\n  zel receipt sale.xml\n\n") + kStatuses);
  command->callback([&document] { zel::RunReceipt(document); });
}

void AddDump(CLI::App& app, std::string& file, bool& json) {
  CLI::App* const command = app.add_subcommand(
      "dump",
      "Shows a request, response, item list (binary, Base64 or hexadecimal text) or XML document as a tree");
  command->add_option("FILE", file, "The file, or - for standard input; its form is recognised")
      ->required()
      ->type_name("");
  command->add_flag("--json", json, "Write JSON for programs");
  command->footer(
      std::string("\nEach line: position, tag, name, length, value. Of damaged data everything before the "
                  "damage is shown,\nthen position and reason.\n\n"
                  "Examples:\n"
                  "  zel dump sale.xml\n"
                  "  echo 'A0 01 32 A2 03 74 65 65' | zel dump -\n"
                  "  zel dump request.bin --json\n\n") +
      kStatuses);
  command->callback([&file, &json] { zel::RunDump(file, json); });
}

void AddVerify(CLI::App& app, zel::VerifyOptions& options) {
  CLI::App* const command = app.add_subcommand(
      "verify",
      "Checks that items, item hash, request, response and signature of a document belong together");
  command->add_option("DOCUMENT", options.document, "The XML document, or - for standard input")
      ->required()
      ->type_name("");
  CLI::Option* const device =
      AddOptional(*command, "--device", options.device, "The device that signed it", "FILE");
  AddOptional(*command, "--key", options.key, "Its public key, as zel key prints it", "PEM")
      ->excludes(device);
  command->add_flag("--json", options.json, "Write JSON for programs");
  command->footer(
      std::string("\nThe first thing that is not right is named: document, items, item hash, request, "
                  "response or signature.\n\n"
                  "Examples:\n"
                  "  zel verify sale.xml\n"
                  "  zel verify sale.xml --key till1.pem --json\n\n") +
      kDeviceFile + kStatuses);
  command->callback([&options] { zel::RunVerify(options); });
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
      "day", "Signs all sales of a folder, reads the documents back, verifies them and prints the totals");
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
  command->footer(std::string("\nExample:\n  zel day examples/day --out build/demo\n\n") + kStatuses);
  command->callback([&options] { zel::RunDay(options); });
}

int Run(int argc, char** argv) {
  CLI::App app("Signs sales with a software signing device and reads, shows and verifies what was signed",
               "zel");
  app.set_version_flag("--version", "zel " ZEL_VERSION);
  app.require_subcommand(1);
  app.footer(std::string("\nExamples:\n"
                         "  zel sign sale.json\n"
                         "  zel verify sale.xml\n"
                         "  zel dump --help\n\n") +
             kStatuses);

  zel::SignOptions sign;
  zel::VerifyOptions verify;
  zel::DayOptions day;
  std::string document;
  std::string file;
  bool json = false;
  std::optional<std::filesystem::path> device;
  AddSign(app, sign);
  AddReceipt(app, document);
  AddDump(app, file, json);
  AddVerify(app, verify);
  AddKey(app, device);
  AddDay(app, day);

  try {
    app.parse(argc, argv);
    return static_cast<int>(ExitStatus::Ok);
  } catch (const CLI::CallForHelp&) {
    zel::Print(app.help());
  } catch (const CLI::CallForVersion& version) {
    zel::Print(std::string(version.what()) + "\n");
  } catch (const CLI::ParseError& error) {
    const auto chosen = app.get_subcommands();
    std::string reason = error.what();
    if (chosen.empty()) {
      const std::string word = argc > 1 ? argv[1] : "";
      reason = word.empty() ? "name a command" : "there is no command or option '" + word + "'";
    }
    zel::Say(reason + " (see zel " + (chosen.empty() ? "" : chosen.front()->get_name() + " ") + "--help)");
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
