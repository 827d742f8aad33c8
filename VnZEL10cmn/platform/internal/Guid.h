#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace VnZEL10cmn::platform {

/// What the operating system answers when asked for a new UUID.
struct NewUuid {
  std::int32_t status = 0;               ///< 0 success; `kNoUuid` none; others accepted
  std::array<std::uint8_t, 16> bytes{};  ///< the UUID, its text in byte order
};

/// Bytes of a UUID.
inline constexpr std::size_t kGuidSize = 16;

/// Status of a system that has nothing to make a UUID from: no network address, no random numbers.
inline constexpr std::int32_t kNoUuid = 1739;

/// Asks the operating system for a new UUID.
NewUuid CreateUuid();

/// The 36-character upper-case text of a new UUID; empty when there is none.
std::string GuidText(const NewUuid& uuid);

/// The bytes of a text that `GuidText` made; none of any other text.
std::optional<std::array<std::uint8_t, kGuidSize>> GuidBytes(std::string_view text);

/// A new GUID as text; empty when the system has nothing to make one from.
inline std::string CreateGuid() { return GuidText(CreateUuid()); }

}  // namespace VnZEL10cmn::platform
