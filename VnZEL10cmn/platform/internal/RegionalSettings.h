#pragma once

#include <string>

namespace VnZEL10cmn::platform {

/// The characters (UTF-8) in which the host shows numbers and dates; German where it has no settings.
struct RegionalSettings {
  std::string decimal = ",";
  std::string thousands = ".";
  std::string date = ".";
  std::string time = ":";
};

/// The host's settings as they are now.
RegionalSettings CurrentRegionalSettings();

}  // namespace VnZEL10cmn::platform
