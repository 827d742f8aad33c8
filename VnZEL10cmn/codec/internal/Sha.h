#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "VnZEL10cmn/platform/internal/Processor.h"

namespace VnZEL10cmn::internal {

using platform::Instructions;
using platform::UsableInstructions;

using Sha1Digest = std::array<std::uint8_t, 20>;
using Sha256Digest = std::array<std::uint8_t, 32>;

/// SHA-1 of bytes.
Sha1Digest Sha1(std::span<const std::uint8_t> message, Instructions usable = UsableInstructions());

/// SHA-256 of bytes.
Sha256Digest Sha256(std::span<const std::uint8_t> message, Instructions usable = UsableInstructions());

/// SHA-1 of a text in code page 1252.
Sha1Digest Sha1OfText(std::string_view text);

/// SHA-256 of the low bytes of a text's UTF-16 code units.
Sha256Digest Sha256OfText(std::string_view text);

/// SHA-256 of bytes that count as code page 1252 characters: of the low bytes of their UTF-16 code units.
Sha256Digest Sha256OfCodePageBytes(std::span<const std::uint8_t> message);

}  // namespace VnZEL10cmn::internal
