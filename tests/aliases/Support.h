#pragma once

// What these tests hand to an operation is a text or an array of the same object, of its error object, or the
// operation's own result. The outcome is always that of a copy.

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "VnZEL10cmn/errors/clsVnError.h"
#include "VnZEL10cmn/types/ByteArray.h"

namespace test {

/// Whether the texts of error objects are handed out as values: those that are references end with the error that the
/// operation clears.
inline constexpr bool kErrorTextsAreValues =
    !std::is_reference_v<decltype(std::declval<const VnZEL10cmn::clsVnError&>().ErrorMsg())>;

/// The characters that stand in an array, from an offset on.
inline std::string_view TextIn(const VnZEL10cmn::ByteArray& array, std::size_t offset, std::size_t length) {
  return std::string_view(reinterpret_cast<const char*>(array.data()), array.size()).substr(offset, length);
}

/// An array of the characters of a text, and zeros behind them up to a length.
inline VnZEL10cmn::ByteArray ArrayOf(std::string_view text, std::size_t length = 0) {
  auto array = VnZEL10cmn::ByteArray::WithBounds(
      0, static_cast<std::int32_t>(text.size() < length ? length : text.size()) - 1);
  for (std::size_t i = 0; i < text.size(); ++i) {
    array.data()[i] = static_cast<std::uint8_t>(text[i]);
  }
  return array;
}

}  // namespace test

/// Passes over a test of error texts where they are references.
#define NEEDS_ERROR_TEXTS_AS_VALUES()                      \
  if constexpr (!test::kErrorTextsAreValues) {             \
    GTEST_SKIP() << "the texts of error objects are lent"; \
  } else                                                   \
    static_cast<void>(0)
