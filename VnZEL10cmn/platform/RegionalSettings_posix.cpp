#include <ctime>
#include <iterator>
#include <locale>
#include <sstream>

#include "VnZEL10cmn/platform/internal/RegionalSettings.h"

namespace VnZEL10cmn::platform {

namespace {

/// A separator as UTF-8; characters that no single byte holds in this locale come from its wide form.
std::string Separator(char narrow, wchar_t wide) {
  if (static_cast<unsigned char>(narrow) < 0x80) {
    return {narrow};
  }
  const auto character = static_cast<char32_t>(wide);
  if (character < 0x80) {
    return {static_cast<char>(character)};
  }
  if (character < 0x800) {
    return {static_cast<char>(0xC0 | (character >> 6)), static_cast<char>(0x80 | (character & 0x3F))};
  }
  return {static_cast<char>(0xE0 | (character >> 12)), static_cast<char>(0x80 | ((character >> 6) & 0x3F)),
          static_cast<char>(0x80 | (character & 0x3F))};
}

/// The first character that is neither letter nor digit in what the locale makes of `format`; bytes of longer
/// characters count as letters.
std::string FirstSeparator(const std::locale& locale, char format, const std::string& otherwise) {
  std::ostringstream stream;
  stream.imbue(locale);
  std::tm moment{};
  moment.tm_year = 111;
  moment.tm_mon = 10;
  moment.tm_mday = 22;
  moment.tm_hour = 13;
  std::use_facet<std::time_put<char>>(locale).put(std::ostreambuf_iterator<char>(stream), stream, ' ',
                                                  &moment, format);
  for (const char c : stream.str()) {
    const bool letterOrDigit = static_cast<unsigned char>(c) >= 0x80 || (c >= '0' && c <= '9') ||
                               (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    if (!letterOrDigit) {
      return {c};
    }
  }
  return otherwise;
}

}  // namespace

RegionalSettings CurrentRegionalSettings() {
  RegionalSettings settings;
  const std::locale locale;
  if (locale == std::locale::classic()) {
    return settings;
  }
  const auto& narrow = std::use_facet<std::numpunct<char>>(locale);
  const auto& wide = std::use_facet<std::numpunct<wchar_t>>(locale);
  settings.decimal = Separator(narrow.decimal_point(), wide.decimal_point());
  settings.thousands = Separator(narrow.thousands_sep(), wide.thousands_sep());
  settings.date = FirstSeparator(locale, 'x', settings.date);
  settings.time = FirstSeparator(locale, 'X', settings.time);
  return settings;
}

}  // namespace VnZEL10cmn::platform
