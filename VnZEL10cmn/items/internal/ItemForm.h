#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// The form in which cash items are written.
namespace VnZEL10cmn::internal {

inline constexpr std::size_t kUnitLength = 8;    ///< characters at most
inline constexpr std::size_t kNameLength = 16;   ///< characters at most
inline constexpr std::size_t kQuantityEnd = 12;  ///< the first number of characters that is too many

/// Whether the cash items that are read from these records would be written as the very same bytes, so that nobody has
/// to write them to have their hash. False where that isn't certain, and for no records.
bool AreAsWritten(std::span<const std::uint8_t> records) noexcept;

}  // namespace VnZEL10cmn::internal
