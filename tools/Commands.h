#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "tools/Many.h"

/// The commands of the program. Each throws `Failure` when it doesn't reach its end.
namespace zel {

struct SignOptions {
  std::filesystem::path sale;
  std::optional<std::filesystem::path> device;
  std::optional<std::filesystem::path> out;
  std::optional<std::filesystem::path> log;
  std::optional<std::uint32_t> resume;
  bool force = false;
};

/// Signs a sale, writes its document and prints its receipt.
void RunSign(const SignOptions& options);

/// Prints receipts; reports as tables, or (`wide`) as the library's own text.
ExitStatus RunReceipt(const InputOptions& inputs, bool wide);

/// Shows the records of files.
ExitStatus RunDump(const InputOptions& inputs);

struct VerifyOptions {
  InputOptions inputs;
  std::optional<std::filesystem::path> device;
  std::optional<std::filesystem::path> key;
  std::optional<std::filesystem::path> data;  ///< the file whose bytes were signed as a data record
};

/// Verifies documents.
ExitStatus RunVerify(const VerifyOptions& options);

/// Prints a device's public key.
void RunKey(const std::optional<std::filesystem::path>& device);

struct DayOptions {
  std::filesystem::path sales;
  std::filesystem::path out;
  std::optional<std::filesystem::path> device;
  bool force = false;
  bool wide = false;
};

/// Signs all sales of a folder, verifies their documents, prints the totals, and ends with a closing, which has
/// to show the same turnover.
void RunDay(const DayOptions& options);

struct DeviceInitOptions {
  std::optional<std::filesystem::path> device;
  std::string taxpayer;
  std::uint32_t number = 1;
  std::string pin;
  bool activate = false;
};

/// Makes a device.
void RunDeviceInit(const DeviceInitOptions& options);

/// Prints where a device stands.
void RunDeviceShow(const std::optional<std::filesystem::path>& device, bool json);

/// Checks all that a device file holds and prints what is damaged; `NotRight` when something is.
ExitStatus RunDeviceCheck(const std::optional<std::filesystem::path>& device, bool json);

struct ReportOptions {
  bool signedReport = false;
  bool unsignedReport = false;
  bool deactivate = false;
  std::optional<std::string> span;  ///< 2026-01..2026-03
  std::optional<std::string> pin;   ///< of an activation
  std::optional<std::uint32_t> resume;
  std::optional<std::filesystem::path> device;
  std::optional<std::string> date;
  std::optional<std::filesystem::path> items;
  std::optional<std::filesystem::path> out;
  bool force = false;
  bool wide = false;
};

/// Has the device answer a report and prints it.
void RunReport(const ReportOptions& options);

struct SignDataOptions {
  std::filesystem::path file;
  std::string type = "id";
  std::optional<std::string> date;
  std::optional<std::filesystem::path> device;
  std::optional<std::filesystem::path> out;
  std::optional<std::uint32_t> resume;
  bool force = false;
};

/// Signs a file's bytes as a data record, writes its document and prints its receipt.
void RunSignData(const SignDataOptions& options);

}  // namespace zel
