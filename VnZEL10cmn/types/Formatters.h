#pragma once

#include <version>

// libc++ has std::format from version 17 on, and says so by the macro much later; version 16 has it on request.
#if defined(__cpp_lib_format) || \
    (defined(_LIBCPP_VERSION) && _LIBCPP_VERSION >= 160000 && !defined(_LIBCPP_HAS_NO_INCOMPLETE_FORMAT))

#include <cstddef>
#include <format>
#include <string_view>

#include "VnZEL10cmn/types/Currency.h"
#include "VnZEL10cmn/types/Date.h"

namespace VnZEL10cmn {

/// Formats a value as what its ToText() gives. The format is that of a text: fill, alignment and width
/// ("{:>12}" for a column of amounts). A precision would cut digits off and is refused by std::format_error.
template <class Value>
class TextFormatter : public std::formatter<std::string_view> {
 public:
  /// Reads the format; throws std::format_error for one that is not that of a text, and for a precision.
  template <class ParseContext>
  constexpr typename ParseContext::iterator parse(ParseContext& context) {
    const auto begin = context.begin();
    const auto end = std::formatter<std::string_view>::parse(context);
    // A point in front of the alignment is a fill character.
    const std::string_view format(begin, end);
    const std::size_t alignment = format.find_last_of("<>^");
    if (format.find('.', alignment == std::string_view::npos ? 0 : alignment) != std::string_view::npos) {
      throw std::format_error("no precision for this type");
    }
    return end;
  }

  /// Writes the value.
  template <class FormatContext>
  typename FormatContext::iterator format(Value value, FormatContext& context) const {
    return std::formatter<std::string_view>::format(value.ToText(), context);
  }
};

}  // namespace VnZEL10cmn

namespace std {

/// std::format of an amount: "6.90".
template <>
struct formatter<VnZEL10cmn::Currency> : VnZEL10cmn::TextFormatter<VnZEL10cmn::Currency> {};

/// std::format of a moment: "2026-12-31T08:05:09".
template <>
struct formatter<VnZEL10cmn::Date> : VnZEL10cmn::TextFormatter<VnZEL10cmn::Date> {};

}  // namespace std

#endif
