#include "softdevice/FileSystem.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#ifndef _WIN32
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace softdevice {

namespace {

#ifdef F_OFD_SETLK

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ != -1) {
      close(number_);
    }
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] bool IsOpen() const noexcept { return number_ != -1; }
  /// 0, or the number of the error.
  [[nodiscard]] int Lock(int command) const noexcept {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_len = 1;
    return fcntl(number_, command, &lock) == 0 ? 0 : errno;
  }

 private:
  int number_;
};

#endif

constexpr std::size_t kDatabaseHeader = 100;
constexpr std::size_t kFormats = 18;  ///< in the database's header: for writing and for reading
constexpr std::size_t kChangeCounter = 24;

std::uint32_t NumberIn(const char* bytes) {
  std::uint32_t number = 0;
  for (int i = 0; i < 4; ++i) {
    number = number << 8 | static_cast<std::uint8_t>(bytes[i]);
  }
  return number;
}

/// The change counter that the database had when the journal was begun; none where the journal doesn't hold it.
std::optional<std::uint32_t> CounterInJournal(const std::filesystem::path& path) {
  constexpr std::size_t kHeader = 28;
  constexpr std::array<char, 8> kMagic = {'\xD9', '\xD5', '\x05', '\xF9', '\x20', '\xA1', '\x63', '\xD7'};
  constexpr std::uint32_t kLargest = 65536;
  std::ifstream file(path, std::ios::binary);
  std::array<char, kHeader> header{};
  if (!file.read(header.data(), kHeader) || !std::equal(kMagic.begin(), kMagic.end(), header.begin())) {
    return std::nullopt;
  }
  const std::uint32_t sectorSize = NumberIn(header.data() + 20);
  const std::uint32_t pageSize = NumberIn(header.data() + 24);
  if (sectorSize < kHeader || sectorSize > kLargest || pageSize < kDatabaseHeader || pageSize > kLargest) {
    return std::nullopt;
  }
  // Behind the header, which fills a sector, come records: a page's number, the page, a checksum.
  constexpr std::uint32_t kFrame = 8;
  std::array<char, 4 + kDatabaseHeader> start{};
  for (std::uint64_t position = sectorSize;
       file.seekg(static_cast<std::streamoff>(position)) &&
       file.read(start.data(), static_cast<std::streamsize>(start.size()));
       position += pageSize + kFrame) {
    if (NumberIn(start.data()) == 1) {
      return NumberIn(start.data() + 4 + kChangeCounter);
    }
  }
  return std::nullopt;
}

}  // namespace

void CheckLocks(const std::filesystem::path& file) {
#ifdef F_OFD_SETLK
  // A file beside the device file, as closing a descriptor of that one would drop the locks that other devices of
  // this process hold. The first lock is of the kind that SQLite takes. The second is one that belongs to the
  // descriptor and not to the process, and therefore has to fail even here.
  std::string name = file.string() + "-locks.XXXXXX";
  const Descriptor first(mkostemp(name.data(), O_CLOEXEC));
  if (!first.IsOpen()) {
    return;
  }
  const Descriptor second(open(name.c_str(), O_RDWR | O_CLOEXEC));
  unlink(name.c_str());
  if (!second.IsOpen()) {
    return;
  }
  if (const int error = first.Lock(F_SETLK); error != 0) {
    throw std::runtime_error("its file system has no locks to give (" +
                             std::generic_category().message(error) + ")");
  }
  if (second.Lock(F_OFD_SETLK) == 0) {
    throw std::runtime_error(
        "locks do nothing on its file system, two processes could give one number twice");
  }
#else
  static_cast<void>(file);
#endif
}

void CheckJournals(const Database& database) {
  const std::vector<std::uint8_t> bytes = database.FileStart(kDatabaseHeader);
  if (bytes.size() < kDatabaseHeader) {
    return;
  }
  const std::string header(bytes.begin(), bytes.end());
  if (!header.starts_with("SQLite format 3")) {
    return;  // SQLite says what it thinks of that
  }
  std::error_code ignored;
  if (header[kFormats] == 2 || header[kFormats + 1] == 2 ||
      std::filesystem::exists(database.WriteAheadLog(), ignored)) {
    throw std::runtime_error("it has a write-ahead log, which a device file never has");
  }
  // A transaction adds 1 to the counter. A journal whose counter lies further back has been put here from elsewhere,
  // and would take back what was recorded since.
  const std::optional<std::uint32_t> counter = CounterInJournal(database.Journal());
  if (counter && static_cast<std::int32_t>(NumberIn(header.data() + kChangeCounter) - *counter) > 1) {
    throw std::runtime_error("the journal beside it is not its own, but an earlier one");
  }
}

void CheckLength(const Database& database) {
  if (database.Number("PRAGMA page_count") * database.Number("PRAGMA page_size") != database.FileSize()) {
    throw Damage("its length is not the one that it says");
  }
}

void CheckStructure(const Database& database, std::string_view table) {
  Statement rows = database.Prepare(table.empty() ? "PRAGMA quick_check(1)"
                                                  : "PRAGMA quick_check(" + std::string(table) + ")");
  if (!rows.Step()) {
    throw Damage("its structure can't be checked");
  }
  if (const std::string finding = rows.TextAt(0); finding != "ok") {
    throw Damage(finding.substr(0, finding.find('\n')));
  }
}

void CheckFreePages(const Database& database) {
  if (database.Number("PRAGMA freelist_count") != 0) {
    CheckStructure(database);
  }
}

}  // namespace softdevice
