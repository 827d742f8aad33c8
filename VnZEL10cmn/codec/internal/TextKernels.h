#pragma once

#include <cstddef>
#include <cstdint>

#include "VnZEL10cmn/platform/internal/Processor.h"

/// The inner loops of Base64 and hexadecimal text in wide registers. Each takes as much from the front of its input
/// as fills whole registers and returns how many bytes or characters that were, which may be none: the plain loops
/// do the rest. Decoders stop before the first register that holds anything else than digits.
namespace VnZEL10cmn::internal {

#if VNZEL_X86_64

/// Whether all characters of the whole registers are ASCII characters above `low`; `taken` receives how many these
/// are.
bool AllAboveSsse3(const char* text, std::size_t count, char low, std::size_t& taken);
bool AllAboveAvx2(const char* text, std::size_t count, char low, std::size_t& taken);

/// Three bytes give four characters.
std::size_t EncodeBase64Ssse3(const std::uint8_t* bytes, std::size_t count, char* out);
std::size_t EncodeBase64Avx2(const std::uint8_t* bytes, std::size_t count, char* out);

/// Four characters give three bytes; `room` is how many there may be at `out`.
std::size_t DecodeBase64Ssse3(const char* text, std::size_t count, std::uint8_t* out, std::size_t room);
std::size_t DecodeBase64Avx2(const char* text, std::size_t count, std::uint8_t* out, std::size_t room);

/// A byte gives two of these 16 digits.
std::size_t EncodeHexSsse3(const std::uint8_t* bytes, std::size_t count, const char* digits, char* out);
std::size_t EncodeHexAvx2(const std::uint8_t* bytes, std::size_t count, const char* digits, char* out);

/// Two digits, in either case, give a byte.
std::size_t DecodeHexSsse3(const char* text, std::size_t count, std::uint8_t* out);
std::size_t DecodeHexAvx2(const char* text, std::size_t count, std::uint8_t* out);

#endif

}  // namespace VnZEL10cmn::internal
