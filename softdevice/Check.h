#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace softdevice {

/// How a device file is checked.
struct CheckOptions {
  /// How long one operation waits for other processes that hold the file.
  std::chrono::milliseconds busyTimeout{10'000};
  /// Called now and then: the signatures of so many records of so many are checked, which is what takes the time.
  std::function<void(std::uint64_t done, std::uint64_t all)> progress;
};

/// What a complete check of a device file found.
struct CheckResult {
  std::uint32_t transactions = 0;  ///< how many transactions the device has numbered
  std::uint32_t reports = 0;       ///< how many reports it has numbered
  /// What is damaged, a line for each, records with their numbers; empty when all is as it was recorded.
  std::vector<std::string> damages;

  /// Whether nothing is damaged.
  [[nodiscard]] bool IsRight() const noexcept { return damages.empty(); }
};

/// Checks all that a device file holds: SQLite's structure, the digests of state, totals and records, each record's
/// request, response and signature, the order of the closings, and the totals, which are added up anew. Nothing is
/// changed; a file of an older version, which has no digests, is checked without them. Other processes may sign
/// meanwhile; they wait while the file is read, which takes a quarter of a second for 100,000 records.
///
/// Throws `DeviceError` when the file can't be opened or is no device file; `what()` is one line that names the file
/// and the reason.
[[nodiscard]] CheckResult CheckDeviceFile(const std::filesystem::path& path,
                                          const CheckOptions& options = {});

}  // namespace softdevice
