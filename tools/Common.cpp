#include "tools/Common.h"

#include <system_error>

#include "tools/Report.h"
#include "tools/Signer.h"

namespace zel {

namespace fs = std::filesystem;

void MakeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) {
    throw Failure(ExitStatus::Trouble, "the folder " + Quoted(folder) + " can't be made: " + error.message());
  }
}

void ExpectOtherFile(const fs::path& out, const fs::path& input) {
  std::error_code ignored;
  if (fs::equivalent(out, input, ignored)) {
    throw Failure(ExitStatus::Usage, "the document would overwrite " + Quoted(input));
  }
}

void FailAfter(const std::exception& failure, std::uint32_t number, const std::string& what,
               const std::string& command) {
  throw Failure(ExitStatus::Trouble,
                std::string(failure.what()) +
                    (number == 0 ? ""
                                 : "; the device has signed it as " + what + " " + std::to_string(number) +
                                       " and keeps it: write its document with 'zel " + command +
                                       " --resume " + std::to_string(number) + "'"));
}

void SayUncertified(const fs::path& device) {
  Say("the device " + Quoted(device) +
      " is a software device for development and tests, not a certified one");
}

std::string ReportText(const VnZEL10cmn::ByteArray& request, const VnZEL10cmn::ByteArray& response,
                       VnZEL10cmn::clsZelReport& report, bool wide) {
  return wide ? TextOf(report)
              : ReportToText(request, response, report, static_cast<std::size_t>(report.ItemCount()));
}

}  // namespace zel
