#include <gtest/gtest.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/types/Currency.h"
#include "VnZEL10cmn/types/Date.h"
#include "tests/support/TempFile.h"

using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;

namespace {

const std::string kSource = VNZEL_SOURCE_DIR;

std::string Page() { return test::ReadFile(kSource + "/docs/getting-started.md"); }

/// The page's code blocks of a language.
std::vector<std::string> Blocks(const std::string& page, std::string_view language) {
  const std::string opening = "\n```" + std::string(language) + "\n";
  std::vector<std::string> blocks;
  std::size_t start = 0;
  while ((start = page.find(opening, start)) != std::string::npos) {
    start += opening.size();
    const std::size_t end = page.find("```", start);
    if (end == std::string::npos) {
      ADD_FAILURE() << "a block has no end";
      break;
    }
    blocks.push_back(page.substr(start, end - start));
    start = end;
  }
  return blocks;
}

// The examples are built and run by tests of their own, so that what a reader copies from the page works.
TEST(GettingStarted, CodeIsTheExamples) {
  const std::vector<std::string> blocks = Blocks(Page(), "cpp");
  ASSERT_EQ(blocks.size(), 2U);
  EXPECT_EQ(blocks[0], test::ReadFile(kSource + "/examples/first_booking.cpp"));
  EXPECT_EQ(blocks[1], test::ReadFile(kSource + "/examples/first_closing.cpp"));
}

// A row of the page's table: the expression as it stands here, and what it gives.
#define EXPECT_ROW(expression, output)                                                                  \
  do {                                                                                                  \
    std::ostringstream out;                                                                             \
    out << (expression);                                                                                \
    EXPECT_EQ(out.str(), output);                                                                       \
    EXPECT_NE(Page().find("\n| `" #expression "` | " output " |\n"), std::string::npos) << #expression; \
  } while (false)

TEST(GettingStarted, AmountsAndDatesAreWhatTheTableSays) {
  EXPECT_ROW(Currency::FromText("6.90"), "6.90");
  EXPECT_ROW(Currency::FromText("19"), "19.00");
  EXPECT_ROW(2 * Currency::FromText("3.45") - 1, "5.90");
  EXPECT_ROW(Currency::FromText("12.40") * Currency::FromText("1.255"), "15.562");
  EXPECT_ROW(Currency::FromText("10") / 3, "3.3333");
  EXPECT_ROW(Date::FromText("2026-12-31T08:05"), "2026-12-31T08:05:00");
  EXPECT_ROW(Date::FromCivil(2026, 12, 31, 8, 5, 9), "2026-12-31T08:05:09");
}

TEST(GettingStarted, UsesThePublishedTargets) {
  const std::string page = Page();
  EXPECT_NE(page.find("find_package(VnZEL10cmn CONFIG REQUIRED)"), std::string::npos);
  EXPECT_NE(page.find("VnZEL10cmn::VnZEL10cmn"), std::string::npos);
  EXPECT_NE(page.find("VnZEL10cmn::softdevice"), std::string::npos);
}

}  // namespace
