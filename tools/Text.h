#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "VnZEL10cmn/VnZEL10cmn.h"

/// Small conversions between values and what people read and write.
namespace zel {

/// What stands at the front of a UTF-8 text: a character, or as many bytes as could have begun one.
struct Character {
  std::string_view bytes;
  bool isWellFormed;
};
Character FirstCharacter(std::string_view text);

/// As many of the first bytes, at most so many, as hold whole characters.
std::string_view Beginning(std::string_view text, std::size_t most);

/// Whether a well-formed character is a control character: U+0000 to U+001F, or U+007F to U+009F.
bool IsControl(std::string_view character);

/// The text with every control character, and all that is no well-formed UTF-8, as "?", so that it stays on one
/// line and can't steer a terminal.
std::string OneLine(std::string_view text);

/// The same for each line of a text.
std::string Lines(std::string_view text);

/// A value from outside as a message shows it: on one line, and only how it begins where it is long.
std::string Shown(std::string_view value);

/// A file's name between quotation marks, fit for a message; only how it begins and ends where it is long.
std::string Quoted(const std::filesystem::path& path);

/// A message of the library as one line: its detail lines go into brackets at the end.
std::string LibraryMessage(std::string_view message);

/// The error that an object of the library holds, as one line with its number.
std::string Describe(const VnZEL10cmn::clsVnError& error);

/// A decimal number with a point, exactly; with at most `maxDecimals` (0 to 4) decimals. An exponent is taken
/// only where `exponent` says so. None for everything else and for what is too large.
std::optional<VnZEL10cmn::Currency> ParseDecimal(std::string_view text, int maxDecimals, bool exponent);

/// "-1234.5": a point, no grouping, at least `minDecimals` decimals and as many more as the value has.
std::string FormatDecimal(VnZEL10cmn::Currency value, int minDecimals);

/// "2026-11-21", or with the time of day "2026-11-21T08:05".
std::string FormatDate(VnZEL10cmn::Date date);
std::string FormatDateTime(VnZEL10cmn::Date date);

/// Upper-case hexadecimal digits, two per byte.
std::string Hex(std::span<const std::uint8_t> bytes);

/// The text with blanks around it up to that many characters, of which each is a byte.
std::string PadLeft(const std::string& text, std::size_t width);
std::string PadRight(std::string text, std::size_t width);

/// "activated" and so on.
std::string LifeCycleName(VnZEL10cmn::ZelLifeCycle state);

/// The text with every CR LF as LF.
std::string UnixLines(std::string_view text);

}  // namespace zel
