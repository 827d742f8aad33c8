// A device file damaged in thousands of ways: each is told, or it is shown that nothing was lost.

#include <iostream>
#include <map>
#include <random>

#include "DamagedFile.h"
#include "Support.h"

namespace softdevice::test {
namespace {

constexpr std::size_t kPage = 4096;

class DamageTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { file_ = new DamagedFile; }
  static void TearDownTestSuite() { delete file_; }

  std::size_t Below(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
  }

  /// One damage; nothing may be silent.
  Outcome Try(const Files& files, const std::string& what, bool mayBeOlder = false) {
    std::string why;
    const Outcome outcome = file_->Try(files, why);
    EXPECT_NE(outcome, Outcome::Silent) << what << ": " << why;
    EXPECT_TRUE(outcome != Outcome::Older || mayBeOlder) << what;
    ++counts_[outcome];
    return outcome;
  }

  void TearDown() override {
    std::cout << "  ";
    for (const auto& [outcome, count] : counts_) {
      const std::string name = kOutcomeNames[static_cast<std::size_t>(outcome)];
      std::cout << count << " " << name << "; ";
      std::string property = name;
      std::replace(property.begin(), property.end(), ' ', '_');
      RecordProperty(property, count);
    }
    std::cout << "\n";
  }

  [[nodiscard]] int Count(Outcome outcome) { return counts_[outcome]; }

  static inline DamagedFile* file_ = nullptr;
  std::mt19937 random_{20261231};
  std::map<Outcome, int> counts_;
};

TEST_F(DamageTest, TheFileItselfIsHarmless) {
  EXPECT_EQ(Try({file_->Last(), {}, {}}, "nothing"), Outcome::Harmless);
  EXPECT_GE(file_->Last().size() / kPage, 6U) << "the tables should have several pages";
}

TEST_F(DamageTest, OfOneByteIsToldOrHarmless) {
  for (int i = 0; i < 1000; ++i) {
    std::string content = file_->Last();
    const std::size_t position = Below(content.size());
    const auto change = static_cast<char>(1 + Below(255));
    content[position] = static_cast<char>(content[position] ^ change);
    Try({content, {}, {}}, "byte " + std::to_string(position) + " xor " + std::to_string(change));
  }
  EXPECT_GT(Count(Outcome::Harmless), 0);
  EXPECT_GT(Count(Outcome::ToldOnOpening), 0);
}

TEST_F(DamageTest, OfTheFileHeaderIsToldOrHarmless) {
  for (std::size_t position = 0; position < 112; ++position) {
    for (const int change : {0x01, 0x80, 0xFF}) {
      std::string content = file_->Last();
      content[position] = static_cast<char>(content[position] ^ change);
      Try({content, {}, {}}, "byte " + std::to_string(position) + " xor " + std::to_string(change));
    }
  }
}

TEST_F(DamageTest, OfThePagesHeadersIsToldOrHarmless) {
  const std::size_t pages = file_->Last().size() / kPage;
  for (std::size_t page = 1; page < pages; ++page) {
    for (std::size_t i = 0; i < 40; ++i) {
      std::string content = file_->Last();
      char& byte = content[page * kPage + i];
      byte = static_cast<char>(byte ^ static_cast<char>(1 + Below(255)));
      Try({content, {}, {}}, "byte " + std::to_string(i) + " of page " + std::to_string(page + 1));
    }
  }
}

TEST_F(DamageTest, ThatCutsTheFileOffIsTold) {
  for (int i = 0; i < 400; ++i) {
    std::string content = file_->Last();
    content.resize(i < 50 ? content.size() / kPage * kPage / 50 * static_cast<std::size_t>(i)
                          : Below(content.size()));
    EXPECT_NE(Try({content, {}, {}}, "cut off at " + std::to_string(content.size())), Outcome::Harmless)
        << content.size();
  }
}

TEST_F(DamageTest, ThatMakesTheFileLongerIsTold) {
  for (const std::size_t more : {1U, 100U, 4096U, 8192U}) {
    EXPECT_EQ(Try({file_->Last() + std::string(more, '\0'), {}, {}}, "longer"), Outcome::ToldOnOpening);
  }
}

TEST_F(DamageTest, OfABlockOfZerosIsToldOrHarmless) {
  for (int i = 0; i < 400; ++i) {
    std::string content = file_->Last();
    const std::size_t size = std::size_t{16} << Below(9);
    const std::size_t position = Below(content.size()) / (i % 2 == 0 ? size : 1) * (i % 2 == 0 ? size : 1);
    std::fill_n(content.begin() + static_cast<std::ptrdiff_t>(position),
                std::min(size, content.size() - position), '\0');
    Try({content, {}, {}}, std::to_string(size) + " zeros at " + std::to_string(position));
  }
}

TEST_F(DamageTest, ThatPutsAPageInThePlaceOfAnotherIsToldOrHarmless) {
  const std::size_t pages = file_->Last().size() / kPage;
  for (std::size_t from = 0; from < pages; ++from) {
    for (std::size_t to = 0; to < pages; ++to) {
      std::string content = file_->Last();
      content.replace(to * kPage, kPage, file_->Last(), from * kPage, kPage);
      Try({content, {}, {}}, "page " + std::to_string(from + 1) + " as " + std::to_string(to + 1));
    }
  }
}

/// The pages of an older version in part: a write that never reached the disk, or a journal that was deleted.
TEST_F(DamageTest, OfPagesThatAreOlderIsToldOrHarmless) {
  for (int i = 0; i < 600; ++i) {
    const std::size_t back = i % 3 == 0 ? 1 : 1 + Below(file_->Versions().size() - 1);
    const std::string& older = file_->Versions()[file_->Versions().size() - 1 - back];
    std::string content = file_->Last();
    for (std::size_t page = 0; page < older.size() / kPage; ++page) {
      if (Below(2) == 0) content.replace(page * kPage, kPage, older, page * kPage, kPage);
    }
    if (Below(2) == 0) content.resize(older.size());
    // Page 1 holds nothing that is recorded.
    const bool isOlder = std::string_view(content).substr(kPage) == std::string_view(older).substr(kPage);
    Try({content, {}, {}}, "pages of " + std::to_string(back) + " requests before", isOlder);
  }
}

/// The limit: such a file is right in itself. A device that is open notices.
TEST_F(DamageTest, ThatPutsAWholeOldFileThereIsNotSeenInTheFile) {
  EXPECT_EQ(Try({file_->Versions()[5], {}, {}}, "an old copy", true), Outcome::Older);
}

TEST_F(DamageTest, OfAJournalThatIsNotItsOwnIsTold) {
  // One request back is what a killed process leaves.
  const std::size_t last = file_->Journals().size() - 1;
  EXPECT_EQ(Try({file_->Last(), file_->Journals()[last], {}}, "the last journal"), Outcome::Undone);
  for (std::size_t i = 0; i < last; ++i) {
    EXPECT_EQ(Try({file_->Last(), file_->Journals()[i], {}}, "journal " + std::to_string(i)),
              Outcome::ToldOnOpening);
  }
}

TEST_F(DamageTest, OfAJournalAmidARequestIsToldOrTheRequestIsUndone) {
  const std::string& older = file_->Versions()[file_->Versions().size() - 2];
  for (int i = 0; i < 500; ++i) {
    // Some of the pages have been written when the process is killed.
    std::string content = file_->Last();
    for (std::size_t page = 0; page < older.size() / kPage; ++page) {
      if (Below(2) == 0) content.replace(page * kPage, kPage, older, page * kPage, kPage);
    }
    std::string journal = file_->Journals().back();
    switch (i % 5) {
      case 0: break;
      case 1: journal.resize(Below(journal.size())); break;
      case 2: journal[Below(journal.size())] ^= static_cast<char>(1 + Below(255)); break;
      case 3: journal[Below(28)] ^= static_cast<char>(1 + Below(255)); break;
      default: std::fill_n(journal.begin(), Below(journal.size()), '\0');
    }
    const Outcome outcome = Try({content, journal, {}}, "journal " + std::to_string(i));
    if (i % 5 == 0) {
      EXPECT_EQ(outcome, Outcome::Undone);
    }
  }
  EXPECT_GT(Count(Outcome::ToldOnOpening), 0);
}

TEST_F(DamageTest, OfAWriteAheadLogIsTold) {
  EXPECT_EQ(Try({file_->Last(), {}, std::string(100, 'x')}, "a log beside it"), Outcome::ToldOnOpening);
  EXPECT_EQ(Try({file_->Last(), {}, ""}, "an empty log beside it"), Outcome::ToldOnOpening);
}

}  // namespace
}  // namespace softdevice::test
