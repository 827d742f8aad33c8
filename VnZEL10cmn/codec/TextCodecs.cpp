#include "VnZEL10cmn/codec/internal/TextCodecs.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "VnZEL10cmn/codec/internal/TextKernels.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kBase32Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567";
constexpr std::string_view kBase32HexDigits = "0123456789ABCDEFGHIJKLMNOPQRSTUV";

constexpr std::string_view kUpperDigits = "0123456789ABCDEF";
constexpr std::string_view kLowerDigits = "0123456789abcdef";

constexpr std::uint8_t kNoDigit = 255;

/// The values of all characters, `kNoDigit` for most.
using Values = std::array<std::uint8_t, 256>;

constexpr Values ValuesOf(std::string_view digits) {
  Values values{};
  values.fill(kNoDigit);
  for (std::size_t value = 0; value < digits.size(); ++value) {
    values[static_cast<unsigned char>(digits[value])] = static_cast<std::uint8_t>(value);
  }
  return values;
}

constexpr Values kBase64Values = ValuesOf(kBase64Digits);

constexpr Values kHexValues = [] {
  Values values = ValuesOf(kUpperDigits);
  for (std::size_t value = 10; value < kLowerDigits.size(); ++value) {
    values[static_cast<unsigned char>(kLowerDigits[value])] = static_cast<std::uint8_t>(value);
  }
  return values;
}();

/// What the device takes for the ASCII characters.
constexpr std::array<char, 128> kDeviceCharacters = [] {
  std::array<char, 128> characters{};
  for (std::size_t c = 0; c < characters.size(); ++c) {
    const bool capital = c >= 'A' && c <= 'Z';
    const bool kept = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    characters[c] = capital ? static_cast<char>(c + ('a' - 'A')) : kept ? static_cast<char>(c) : '#';
  }
  return characters;
}();

std::uint8_t ValueOf(const Values& values, char character) {
  return values[static_cast<unsigned char>(character)];
}

void Hex(Bytes bytes, std::string_view digits, std::string& text, [[maybe_unused]] Instructions usable) {
  text.resize(bytes.size() * 2);
  std::size_t done = 0;
#if VNZEL_X86_64
  if (usable.avx2) {
    done = EncodeHexAvx2(bytes.data(), bytes.size(), digits.data(), text.data());
  } else if (usable.ssse3) {
    done = EncodeHexSsse3(bytes.data(), bytes.size(), digits.data(), text.data());
  }
#endif
  char* out = text.data() + 2 * done;
  for (const std::uint8_t byte : bytes.subspan(done)) {
    *out++ = digits[byte >> 4];
    *out++ = digits[byte & 15];
  }
}

}  // namespace

bool AllAbove(std::string_view text, char low, [[maybe_unused]] Instructions usable) {
  std::size_t done = 0;
#if VNZEL_X86_64
  if (usable.avx2 || usable.ssse3) {
    const auto all = usable.avx2 ? AllAboveAvx2 : AllAboveSsse3;
    if (!all(text.data(), text.size(), low, done)) return false;
  }
#endif
  return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(done), text.end(),
                     [low](char c) { return static_cast<signed char>(c) > low; });
}

void EncodeBase64(Bytes bytes, std::string& text, [[maybe_unused]] Instructions usable) {
  text.resize((bytes.size() + 2) / 3 * 4);
  std::size_t done = 0;
#if VNZEL_X86_64
  if (usable.avx2) {
    done = EncodeBase64Avx2(bytes.data(), bytes.size(), text.data());
  }
  if (usable.ssse3) {
    done += EncodeBase64Ssse3(bytes.data() + done, bytes.size() - done, text.data() + done / 3 * 4);
  }
#endif
  char* out = text.data() + done / 3 * 4;
  const std::size_t whole = bytes.size() / 3 * 3;
  for (std::size_t i = done; i < whole; i += 3) {
    const unsigned group = static_cast<unsigned>(bytes[i] << 16 | bytes[i + 1] << 8 | bytes[i + 2]);
    *out++ = kBase64Digits[group >> 18];
    *out++ = kBase64Digits[(group >> 12) & 63];
    *out++ = kBase64Digits[(group >> 6) & 63];
    *out++ = kBase64Digits[group & 63];
  }
  if (bytes.size() > whole) {
    const bool two = bytes.size() - whole == 2;
    const unsigned group = static_cast<unsigned>(bytes[whole] << 16 | (two ? bytes[whole + 1] << 8 : 0));
    *out++ = kBase64Digits[group >> 18];
    *out++ = kBase64Digits[(group >> 12) & 63];
    *out++ = two ? kBase64Digits[(group >> 6) & 63] : '=';
    *out++ = '=';
  }
}

std::size_t DecodeBase64Digits(std::string_view text, std::span<std::uint8_t> out,
                               [[maybe_unused]] Instructions usable) {
  std::size_t done = 0;
#if VNZEL_X86_64
  if (usable.avx2) {
    done = DecodeBase64Avx2(text.data(), text.size(), out.data(), out.size());
  }
  if (usable.ssse3) {
    const std::size_t written = done / 4 * 3;
    done +=
        DecodeBase64Ssse3(text.data() + done, text.size() - done, out.data() + written, out.size() - written);
  }
#endif
  std::uint8_t* to = out.data() + done / 4 * 3;
  for (; text.size() - done >= 4; done += 4) {
    const unsigned a = ValueOf(kBase64Values, text[done]);
    const unsigned b = ValueOf(kBase64Values, text[done + 1]);
    const unsigned c = ValueOf(kBase64Values, text[done + 2]);
    const unsigned d = ValueOf(kBase64Values, text[done + 3]);
    if ((a | b | c | d) == kNoDigit) break;
    *to++ = static_cast<std::uint8_t>(a << 2 | b >> 4);
    *to++ = static_cast<std::uint8_t>((b & 15) << 4 | c >> 2);
    *to++ = static_cast<std::uint8_t>((c & 3) << 6 | d);
  }
  return done;
}

std::string EncodeBase32(Bytes bytes, bool hexAlphabet) {
  const std::string_view digits = hexAlphabet ? kBase32HexDigits : kBase32Digits;
  std::string text((bytes.size() + 4) / 5 * 8, '=');
  char* out = text.data();
  unsigned pending = 0;
  int pendingBits = 0;
  for (const std::uint8_t byte : bytes) {
    pending = (pending << 8) | byte;
    pendingBits += 8;
    while (pendingBits >= 5) {
      pendingBits -= 5;
      *out++ = digits[(pending >> pendingBits) & 31];
    }
    pending &= 31;
  }
  if (pendingBits > 0) {
    *out = digits[(pending << (5 - pendingBits)) & 31];
  }
  return text;
}

void EncodeUpperHex(Bytes bytes, std::string& text, Instructions usable) {
  Hex(bytes, kUpperDigits, text, usable);
}

std::string UpperHex(Bytes bytes) {
  std::string text;
  Hex(bytes, kUpperDigits, text, UsableInstructions());
  return text;
}

std::string LowerHex(Bytes bytes) {
  std::string text;
  Hex(bytes, kLowerDigits, text, UsableInstructions());
  return text;
}

std::size_t DecodeHexDigits(std::string_view text, std::span<std::uint8_t> out,
                            [[maybe_unused]] Instructions usable) {
  std::size_t done = 0;
#if VNZEL_X86_64
  if (usable.avx2) {
    done = DecodeHexAvx2(text.data(), text.size(), out.data());
  } else if (usable.ssse3) {
    done = DecodeHexSsse3(text.data(), text.size(), out.data());
  }
#endif
  for (; text.size() - done >= 2; done += 2) {
    const unsigned high = ValueOf(kHexValues, text[done]);
    const unsigned low = ValueOf(kHexValues, text[done + 1]);
    if ((high | low) == kNoDigit) break;
    out[done / 2] = static_cast<std::uint8_t>(high << 4 | low);
  }
  return done;
}

std::size_t DeviceText(std::string_view text, std::span<char> out) {
  char* to = out.data();
  char* const full = to + out.size();
  while (!text.empty() && to != full) {
    // No character gives more than one.
    const std::string_view fitting = text.substr(0, static_cast<std::size_t>(full - to));
    auto at = fitting.begin();
    for (; at != fitting.end() && static_cast<unsigned char>(*at) < kDeviceCharacters.size(); ++at) {
      if (*at != ' ') {
        *to++ = kDeviceCharacters[static_cast<unsigned char>(*at)];
      }
    }
    text.remove_prefix(static_cast<std::size_t>(at - fitting.begin()));
    if (at == fitting.end()) continue;
    const char32_t character = NextCharacter(text);
    *to++ = '#';
    if (character >= 0x10000 && to != full) {
      *to++ = '#';
    }
  }
  return static_cast<std::size_t>(to - out.data());
}

std::string BreakLines(std::string_view text, std::size_t lineLength) {
  std::string broken;
  broken.reserve(text.size() + text.size() / lineLength * 2);
  std::size_t at = 0;
  while (text.size() - at > lineLength + 1) {
    broken.append(text.substr(at, lineLength)).append(kCrLf);
    at += lineLength;
  }
  return broken.append(text.substr(at));
}

}  // namespace VnZEL10cmn::internal
