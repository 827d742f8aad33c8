#include "VnZEL10cmn/types/Formatters.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

#include "VnZEL10cmn/types/Currency.h"
#include "VnZEL10cmn/types/Date.h"

using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;

// Where the standard library says that it has std::format, the header must have formatters. Where it has it without
// saying so, these tests are asked for by the macro.
#if defined(__cpp_lib_format) && !defined(VNZEL_FORMAT_EXPECTED)
#define VNZEL_FORMAT_EXPECTED
#endif

#ifdef VNZEL_FORMAT_EXPECTED

namespace {

const Currency kPrice = Currency::FromScaled(69000);
const Date kMoment = Date::FromCivil(2026, 12, 31, 8, 5, 9);

TEST(Formatters, WriteTheText) {
  EXPECT_EQ(std::format("{} EUR", kPrice), "6.90 EUR");
  EXPECT_EQ(std::format("{:}", Currency::FromScaled(-1)), "-0.0001");
  EXPECT_EQ(std::format("{}", kMoment), "2026-12-31T08:05:09");
}

TEST(Formatters, TakeFillAlignmentAndWidth) {
  EXPECT_EQ(std::format("{:>8}|{:<8}|{:^8}|{:8}", kPrice, kPrice, kPrice, kPrice),
            "    6.90|6.90    |  6.90  |6.90    ");
  EXPECT_EQ(std::format("{:.>8}", kPrice), "....6.90");
  EXPECT_EQ(std::format("{:<>8}", kPrice), "<<<<6.90");
  EXPECT_EQ(std::format("{:>{}}", kPrice, 6), "  6.90");
  EXPECT_EQ(std::format("{1:*>{0}}", 21, kMoment), "**2026-12-31T08:05:09");
}

template <class Value>
void ExpectRefused(std::string_view format, Value value) {
  EXPECT_THROW(static_cast<void>(std::vformat(format, std::make_format_args(value))), std::format_error)
      << format;
}

TEST(Formatters, RefuseWhatWouldCutDigitsOff) {
  for (const std::string_view format :
       {"{:.2}", "{:>8.2}", "{:.>8.2}", "{:<>.2}", "{:8.1s}", "{:d}", "{:+}", "{:08}"}) {
    ExpectRefused(format, kPrice);
    ExpectRefused(format, kMoment);
  }
}

TEST(Formatters, ThrowWhatTheTextThrows) {
  EXPECT_THROW(static_cast<void>(std::format("{}", Date(2958466.0))), std::overflow_error);
}

}  // namespace

#endif
