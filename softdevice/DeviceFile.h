#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "softdevice/Database.h"
#include "softdevice/Device.h"
#include "softdevice/Key.h"
#include "softdevice/Records.h"

/// What stands in a device file, but for the totals.
namespace softdevice {

/// Opens a device file, makes it if `options` say so, and brings one of an older version up to date. `finish`
/// is called with a device that has just been made, before anybody else can see it.
Database OpenDeviceFile(const std::filesystem::path& path, const OpenOptions& options,
                        const std::function<void(const Database&)>& finish);

/// Who signs.
struct Identity {
  Key key;
  std::string taxpayerId;
  std::uint32_t runningNumber;
};

Identity ReadIdentity(const Database& database);
DeviceState ReadState(const Database& database);

/// Records what was signed under the number that it got.
void RecordSigned(const Database& database, const SignedRequest& signedRequest);
/// The transaction (`Command::SignBooking` and so on) or report under this number, if any.
std::optional<SignedRequest> FindTransaction(const Database& database, std::uint32_t number);
std::optional<SignedRequest> FindReport(const Database& database, std::uint32_t number);

}  // namespace softdevice
