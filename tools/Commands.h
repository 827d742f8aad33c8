#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

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

/// Prints the receipt of a document.
void RunReceipt(const std::filesystem::path& document);

/// Shows the records of a file.
void RunDump(const std::filesystem::path& file, bool json);

struct VerifyOptions {
  std::filesystem::path document;
  std::optional<std::filesystem::path> device;
  std::optional<std::filesystem::path> key;
  bool json = false;
};

/// Verifies a document.
void RunVerify(const VerifyOptions& options);

/// Prints a device's public key.
void RunKey(const std::optional<std::filesystem::path>& device);

struct DayOptions {
  std::filesystem::path sales;
  std::filesystem::path out;
  std::optional<std::filesystem::path> device;
  bool force = false;
};

/// Signs all sales of a folder, verifies their documents and prints the totals.
void RunDay(const DayOptions& options);

}  // namespace zel
