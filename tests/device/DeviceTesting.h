#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>

#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace test {

inline constexpr std::int32_t kInt32Max = std::numeric_limits<std::int32_t>::max();

/// A failure whose text is the library's own choice: number, function and that there is a text.
inline void ExpectFailure(const VnZEL10cmn::clsVnError& error, std::int32_t number, std::string_view function,
                          const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected failure");
  EXPECT_TRUE(error.HasError());
  EXPECT_EQ(error.ErrorNr(), number);
  EXPECT_TRUE(error.IsUserDef());
  EXPECT_EQ(error.ErrorFunction(), function);
  EXPECT_FALSE(error.ErrorMsg().empty());
}

/// A zero-based array of so many equal bytes.
inline VnZEL10cmn::ByteArray Filled(std::int32_t count, std::uint8_t value = 0) {
  VnZEL10cmn::ByteArray result = VnZEL10cmn::ByteArray::WithBounds(0, count - 1);
  for (std::uint8_t& byte : result) {
    byte = value;
  }
  return result;
}

/// A record of that tag with so many equal value bytes.
inline VnZEL10cmn::ByteArray Record(std::uint8_t tag, std::int32_t length, std::uint8_t value = 0x31) {
  VnZEL10cmn::ByteArray result = Filled(length + 2, value);
  result[0] = tag;
  result[1] = static_cast<std::uint8_t>(length);
  return result;
}

/// The calendar and clock parts of a date as text: "2026-12-31 08:05:00".
inline std::string DateText(VnZEL10cmn::Date date) {
  const VnZEL10cmn::Date::Civil parts = date.ToCivil();
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", parts.year, parts.month, parts.day,
                parts.hour, parts.minute, parts.second);
  return text;
}

}  // namespace test
