#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tools/Console.h"
#include "tools/ExitStatus.h"
#include "tools/Files.h"
#include "tools/Receipt.h"
#include "tools/Text.h"

/// What several commands have in common.
namespace zel {

/// Runs `body` and puts the file's name in front of what is wrong with its content.
template <typename Body>
auto About(const std::filesystem::path& file, Body&& body) {
  try {
    return body();
  } catch (const Failure& failure) {
    if (failure.Status() != ExitStatus::NotRight) throw;
    throw Failure(failure.Status(), InputName(file) + ": " + failure.what());
  }
}

void MakeFolder(const std::filesystem::path& folder);

/// Even --force must not replace what the document is made from.
void ExpectOtherFile(const std::filesystem::path& out, const std::filesystem::path& input);

/// Says of a document that can't be written what the device has recorded, and the command that writes it then; the
/// number is 0 when that is nothing.
[[noreturn]] void FailAfter(const std::exception& failure, std::uint32_t number, const std::string& what,
                            const std::string& command);

void SayUncertified(const std::filesystem::path& device);

/// A report as a table, or (`wide`) as the library's own text. Throws `Failure` (NotRight).
std::string ReportText(const VnZEL10cmn::ByteArray& request, const VnZEL10cmn::ByteArray& response,
                       VnZEL10cmn::clsZelReport& report, bool wide);

/// At least as many bytes as the document of a report without items or of a data record takes.
inline constexpr std::size_t kSmallDocument = 4096;

}  // namespace zel
