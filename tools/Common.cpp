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

void SayUncertified(const fs::path& device) {
  Say("the device " + Quoted(device) +
      " is a software device for development and tests, not a certified one");
}

std::string ReportText(const VnZEL10cmn::ByteArray& request, const VnZEL10cmn::ByteArray& response,
                       VnZEL10cmn::clsZelReport& report, bool wide) {
  return wide ? TextOf(report) : ReportToText(request, response, report);
}

}  // namespace zel
