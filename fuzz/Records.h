#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/Check.h"
#include "fuzz/Input.h"

namespace fuzz {

/// The number with which a reader must refuse the record at `start`, or 0; told a second time here, straight
/// from the contract, so that the library is not its own judge. -1: no limit; tag 0: any.
inline std::int32_t ReadRefusal(const VnZEL10cmn::ByteArray& buffer, std::int32_t start,
                                std::int32_t min = -1, std::int32_t max = -1, std::uint8_t tag = 0) {
  const std::int64_t lower = buffer.LBound();
  const std::int64_t upper = buffer.UBound();
  if (lower < 0) {
    return 9202;
  }
  if (start < lower || start > upper) {
    return 9203;
  }
  if (start == upper) {
    return 9205;
  }
  const std::uint8_t found = buffer.data()[start - lower];
  const std::int32_t length = buffer.data()[start - lower + 1];
  if (std::int64_t{start} + length + 1 > upper) {
    return 9204;
  }
  const bool fits = length < 128 && (min < 0 || length >= min) && (max < 0 || length <= max);
  return !fits || (tag != 0 && found != tag) ? 9207 : 0;
}

/// Whether the record at `start` ends with the last index that there is: no position lies behind it.
inline bool EndsWithLastIndex(const VnZEL10cmn::ByteArray& buffer, std::int32_t start) {
  return std::int64_t{start} + 2 + buffer.data()[start - buffer.LBound() + 1] >
         std::numeric_limits<std::int32_t>::max();
}

/// The value of the last record with this tag in a run of records; none when there is no such record.
inline std::optional<std::vector<std::uint8_t>> LastValue(Bytes records, VnZEL10cmn::ZelTags tag) {
  constexpr std::size_t kHead = 2;
  std::optional<std::vector<std::uint8_t>> value;
  while (records.size() >= kHead && kHead + records[1] <= records.size()) {
    const Bytes content = records.subspan(kHead, records[1]);
    if (records[0] == static_cast<std::uint8_t>(tag)) {
      value.emplace(content.begin(), content.end());
    }
    records = records.subspan(kHead + content.size());
  }
  return value;
}

/// Whether a text is the value of the last record with this tag, or that record is missing.
inline bool IsLastText(Bytes records, VnZEL10cmn::ZelTags tag, const std::string& text) {
  const auto value = LastValue(records, tag);
  return !value || *value == std::vector<std::uint8_t>(text.begin(), text.end());
}

/// Writes a value at position 3 of an array, checks that nothing else was written, and reads it again. `write`
/// and `read` are given the array and a start, and must succeed.
template <class Write, class Read>
void CheckRewritten(Write&& write, Read&& read) {
  constexpr std::int32_t kStart = 3;
  VnZEL10cmn::ByteArray buffer = Canary(0, 199);
  std::int32_t end = kStart;
  FUZZ_CHECK(write(buffer, end));
  FUZZ_CHECK(end >= kStart + 2 && end == kStart + 2 + buffer[kStart + 1]);
  FUZZ_CHECK(IsIntactOutside(buffer, kStart, end));
  std::int32_t start = kStart;
  FUZZ_CHECK(read(buffer, start));
  FUZZ_CHECK(start == end);
}

/// Bytes of an array as a vector, for comparisons.
inline std::vector<std::uint8_t> Content(const VnZEL10cmn::ByteArray& array) {
  return {array.begin(), array.end()};
}

}  // namespace fuzz
