#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/TempFile.h"

namespace {

namespace fs = std::filesystem;

/// The repository's pages: those at its root and in the folders that have some.
std::vector<fs::path> Pages() {
  const fs::path root = VNZEL_SOURCE_DIR;
  std::vector<fs::path> pages;
  for (const fs::path& folder : {root, root / "docs", root / "fuzz", root / "examples/automation"}) {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
      if (entry.path().extension() == ".md") {
        pages.push_back(entry.path());
      }
    }
  }
  return pages;
}

/// What a page links to, less the place in it.
std::vector<std::string> Links(const std::string& page) {
  std::vector<std::string> links;
  for (std::size_t at = page.find("]("); at != std::string::npos; at = page.find("](", at)) {
    at += 2;
    links.push_back(page.substr(at, page.find_first_of(")#", at) - at));
  }
  return links;
}

TEST(Pages, LinksLeadToFiles) {
  int count = 0;
  for (const fs::path& page : Pages()) {
    for (const std::string& link : Links(test::ReadFile(page.string()))) {
      if (link.empty() || link.find("://") != std::string::npos) continue;
      EXPECT_TRUE(fs::is_regular_file(page.parent_path() / link)) << page << ": " << link;
      ++count;
    }
  }
  EXPECT_GT(count, 10);
}

}  // namespace
