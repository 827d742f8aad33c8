// The software device's file: damaged in any way, then opened, read, signed on and checked.

#include <cstdio>
#include <string>

#include "fuzz/Check.h"
#include "fuzz/Targets.h"
#include "tests/softdevice/DamagedFile.h"

namespace fuzz {

namespace {

using softdevice::test::DamagedFile;
using softdevice::test::Files;
using softdevice::test::Outcome;

constexpr std::size_t kPage = 4096;

std::size_t Below(Input& input, std::size_t limit) {
  return limit == 0 ? 0 : input.Number<std::uint32_t>() % limit;
}

void ChangeByte(std::string& content, std::size_t position, std::uint8_t change) {
  if (position < content.size()) {
    content[position] = static_cast<char>(static_cast<std::uint8_t>(content[position]) ^ change);
  }
}

void Zero(std::string& content, std::size_t position, std::size_t size) {
  for (; size > 0 && position < content.size(); --size) {
    content[position++] = '\0';
  }
}

/// Takes over a page of another file, if both have it.
void TakePage(std::string& content, const std::string& from, std::size_t page, std::size_t place) {
  if ((page + 1) * kPage <= from.size() && (place + 1) * kPage <= content.size()) {
    content.replace(place * kPage, kPage, from, page * kPage, kPage);
  }
}

/// One damage. True when it may make the file an older one as a whole.
bool Damage(Input& input, const DamagedFile& file, Files& files) {
  enum {
    kByte,
    kPageHeader,
    kZeros,
    kCut,
    kMovePage,
    kOlderPage,
    kOlder,
    kJournal,
    kJournalByte,
    kJournalCut,
    kLog,
    kKinds
  };
  std::string& content = files.device;
  const auto older = [&]() -> const std::string& {
    return file.Versions()[Below(input, file.Versions().size())];
  };
  switch (input.Byte() % kKinds) {
    case kByte: {
      const std::size_t position = Below(input, content.size());
      ChangeByte(content, position, input.Byte());
      return false;
    }
    case kPageHeader: {
      const std::size_t page = input.Byte();
      const std::size_t position = page * kPage + (page == 0 ? 100 : 0) + input.Byte() % 64;
      ChangeByte(content, position, input.Byte());
      return false;
    }
    case kZeros: {
      const std::size_t position = Below(input, content.size());
      Zero(content, position, input.Number<std::uint16_t>());
      return false;
    }
    case kCut: content.resize(Below(input, content.size())); return false;
    case kMovePage: {
      const std::size_t page = input.Byte();
      const std::string copy = content;
      TakePage(content, copy, page, input.Byte());
      return false;
    }
    case kOlderPage: {
      const std::string& from = older();
      const std::size_t page = input.Byte();
      TakePage(content, from, page, page);
      return true;
    }
    case kOlder: content = older(); return true;
    case kJournal: files.journal = file.Journals()[Below(input, file.Journals().size())]; return true;
    case kJournalByte:
      if (files.journal) {
        const std::size_t position = Below(input, files.journal->size());
        ChangeByte(*files.journal, position, input.Byte());
      }
      return false;
    case kJournalCut:
      if (files.journal) files.journal->resize(Below(input, files.journal->size()));
      return false;
    default: files.writeAheadLog = input.Text(); return false;
  }
}

}  // namespace

void DeviceFile(Bytes data) {
  static const DamagedFile file;
  constexpr int kMostDamages = 8;
  Input input(data);
  Files files{file.Last(), {}, {}};
  bool mayBeOlder = false;
  for (int count = 0; count < kMostDamages && !input.AtEnd(); ++count) {
    mayBeOlder = Damage(input, file, files) || mayBeOlder;
  }
  std::string why;
  const Outcome outcome = file.Try(files, why);
  if (outcome == Outcome::Silent) {
    static_cast<void>(std::fprintf(stderr, "%s\n", why.c_str()));
  }
  FUZZ_CHECK(outcome != Outcome::Silent);
  FUZZ_CHECK(outcome != Outcome::Older || mayBeOlder);
}

}  // namespace fuzz
