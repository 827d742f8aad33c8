#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/TempFile.h"

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

TEST(GettingStarted, LinksLeadSomewhere) {
  const std::string page = Page();
  int links = 0;
  std::size_t start = 0;
  while ((start = page.find("](", start)) != std::string::npos) {
    start += 2;
    const std::string target = page.substr(start, page.find_first_of(")#", start) - start);
    if (target.find("://") == std::string::npos) {
      EXPECT_TRUE(std::filesystem::exists(kSource + "/docs/" + target)) << target;
      ++links;
    }
  }
  EXPECT_GT(links, 0);
}

TEST(GettingStarted, UsesThePublishedTargets) {
  const std::string page = Page();
  EXPECT_NE(page.find("find_package(VnZEL10cmn CONFIG REQUIRED)"), std::string::npos);
  EXPECT_NE(page.find("VnZEL10cmn::VnZEL10cmn"), std::string::npos);
  EXPECT_NE(page.find("VnZEL10cmn::softdevice"), std::string::npos);
}

}  // namespace
