#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "softdevice/Database.h"
#include "softdevice/Device.h"

/// A device file as a whole: making, opening, and bringing up to date.
namespace softdevice {

/// Opens a device file, makes it if `options` say so, brings one of an older version up to date, and looks whether it
/// is what was recorded as far as that doesn't take longer the more records there are. `finish` is called with a
/// device that has just been made, before anybody else can see it.
Database OpenDeviceFile(const std::filesystem::path& path, const OpenOptions& options,
                        const std::function<void(const Database&)>& finish);

/// Opens a device file of any version as it is, to be read only.
Database OpenToCheck(const std::filesystem::path& path, std::chrono::milliseconds busyTimeout);

/// Runs `work(name)`, and puts the file's name in front of whatever goes wrong: `DeviceError`.
template <typename Work>
auto WithName(const std::filesystem::path& path, Work&& work) {
  const std::u8string utf8Name = path.u8string();
  const std::string name(utf8Name.begin(), utf8Name.end());
  try {
    return work(name);
  } catch (const std::filesystem::filesystem_error& error) {
    throw DeviceError("device file '" + name + "': it can't be reached (" + error.code().message() + ")");
  } catch (const std::exception& error) {
    throw DeviceError("device file '" + name + "': " + error.what());
  }
}

}  // namespace softdevice
