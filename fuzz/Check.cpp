#include "fuzz/Check.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace fuzz {

namespace {

constexpr std::uint8_t kPattern = 0xA5;

bool IsLibraryNumber(std::int32_t number) {
  return number == 9000 || number == 9001 || (number >= 9101 && number <= 9106) ||
         (number >= 9202 && number <= 9211) || (number >= 9301 && number <= 9307);
}

/// Memory doesn't run out and nothing unknown is thrown by itself: neither 7 nor 5.
bool IsRunTimeFault(std::int32_t number, std::string_view text) {
  switch (number) {
    case 6: return text == "Überlauf";
    case 9: return text == "Index außerhalb des gültigen Bereichs";
    case 13: return text == "Typen unverträglich";
    case 91: return text == "Objektvariable oder With-Blockvariable nicht festgelegt";
    default: return false;
  }
}

}  // namespace

void Broken(const char* file, int line, const char* expectation) {
  std::fprintf(stderr, "%s:%d: this does not hold: %s\n", file, line, expectation);
  std::abort();
}

bool IsUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const auto byte = [&text](std::size_t index) {
      return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
    };
    const unsigned first = byte(at);
    const std::size_t length = first < 0x80                     ? 1
                               : first >= 0xC2 && first <= 0xDF ? 2
                               : first >= 0xE0 && first <= 0xEF ? 3
                               : first >= 0xF0 && first <= 0xF4 ? 4
                                                                : 0;
    if (length == 0) {
      return false;
    }
    for (std::size_t i = 1; i < length; ++i) {
      if ((byte(at + i) & 0xC0U) != 0x80) {
        return false;
      }
    }
    const unsigned second = byte(at + 1);
    if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
        (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F)) {
      return false;
    }
    at += length;
  }
  return true;
}

void CheckError(const VnZEL10cmn::clsVnError& error, bool succeeded, std::string_view operation) {
  FUZZ_CHECK(error.HasError() == !succeeded);
  FUZZ_CHECK(succeeded == error.ErrorMsg().empty());
  FUZZ_CHECK(succeeded == (error.ErrorTime() == VnZEL10cmn::NoTime));
  if (succeeded) {
    FUZZ_CHECK(error.ErrorNr() == 0);
    FUZZ_CHECK(error.ErrorFunction().empty());
    return;
  }
  // An item that can't write a record has no number of its own.
  const bool isItem = error.ErrorSource() == "VnZEL10cmn.clsZelItemCash" && error.ErrorNr() == 0;
  FUZZ_CHECK(isItem || (error.IsUserDef() ? IsLibraryNumber(error.ErrorNr())
                                          : IsRunTimeFault(error.ErrorNr(), error.ErrorMsg())));
  FUZZ_CHECK(!isItem || !error.IsUserDef());
  FUZZ_CHECK(error.ErrorFunction().starts_with(operation));
  FUZZ_CHECK(error.ErrorSource().starts_with("VnZEL10cmn.cls"));
  FUZZ_CHECK(error.ErrorInstanceID().size() == 36);
  FUZZ_CHECK(IsUtf8(error.ErrorMsg()));
}

VnZEL10cmn::ByteArray Canary(std::int32_t lower, std::int32_t upper) {
  auto array = VnZEL10cmn::ByteArray::WithBounds(lower, upper);
  std::fill(array.begin(), array.end(), kPattern);
  return array;
}

bool IsIntactOutside(const VnZEL10cmn::ByteArray& canary, std::int64_t first, std::int64_t behind) {
  std::int64_t index = canary.LBound();
  return std::all_of(canary.begin(), canary.end(), [&](std::uint8_t byte) {
    const bool inside = index >= first && index < behind;
    ++index;
    return inside || byte == kPattern;
  });
}

}  // namespace fuzz
