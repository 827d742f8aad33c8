#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>

#include "VnZEL10cmn/types/ByteArray.h"

namespace fuzz {

using Bytes = std::span<const std::uint8_t>;

/// Takes an input apart, from its first byte to its last. What is no longer there reads as zero, so that every
/// input is a valid one.
class Input {
 public:
  explicit Input(Bytes data) noexcept : data_(data) {}

  [[nodiscard]] bool AtEnd() const noexcept { return data_.empty(); }

  std::uint8_t Byte() {
    const Bytes byte = Take(1);
    return byte.empty() ? std::uint8_t{0} : byte.front();
  }

  bool Flag() { return (Byte() & 1) != 0; }

  /// Little endian.
  template <std::integral Integer>
  Integer Number() {
    std::uint64_t value = 0;
    int shift = 0;
    for (const std::uint8_t byte : Take(sizeof(Integer))) {
      value |= std::uint64_t{byte} << shift;
      shift += 8;
    }
    return static_cast<Integer>(value);
  }

  /// One byte, folded into the range.
  std::int32_t Between(std::int32_t least, std::int32_t most) { return least + Byte() % (most - least + 1); }

  /// The next bytes, or as many as there are.
  Bytes Take(std::size_t count) {
    const Bytes taken = data_.first(std::min(count, data_.size()));
    data_ = data_.subspan(taken.size());
    return taken;
  }

  Bytes Rest() { return Take(data_.size()); }

  /// A length byte, then so many bytes.
  Bytes Piece() { return Take(Byte()); }

  std::string Text() { return TextOf(Piece()); }

  static std::string TextOf(Bytes bytes) { return {bytes.begin(), bytes.end()}; }

 private:
  Bytes data_;
};

/// An array with bounds, and a position in it or anywhere else.
struct Place {
  VnZEL10cmn::ByteArray buffer;
  std::int32_t start = 0;
};

/// Bytes as an array from a lower bound on. Its memory ends with its last element.
inline VnZEL10cmn::ByteArray ArrayFrom(std::int64_t lower, Bytes bytes) {
  if (bytes.empty()) {
    return {};
  }
  const auto first = static_cast<std::int32_t>(lower);
  auto array = VnZEL10cmn::ByteArray::WithBounds(
      first, static_cast<std::int32_t>(lower + static_cast<std::int64_t>(bytes.size()) - 1));
  std::copy(bytes.begin(), bytes.end(), array.begin());
  return array;
}

/// Bounds from one byte: mostly zero-based, sometimes up to the last index that there is, or below zero.
inline std::int32_t LowerBound(std::uint8_t selector, std::size_t size) {
  constexpr std::int64_t kLast = std::numeric_limits<std::int32_t>::max();
  constexpr std::int64_t kFirst = std::numeric_limits<std::int32_t>::min();
  const std::array<std::int64_t, 8> bounds = {
      0, 1, 17, 100'000, kLast - static_cast<std::int64_t>(size) + 1, -1, -100, kFirst};
  return static_cast<std::int32_t>(bounds[selector < bounds.size() ? selector : 0]);
}

/// A start from one byte: mostly so many bytes behind the lower bound, sometimes at or beyond an end.
inline std::int32_t StartAt(std::uint8_t selector, const VnZEL10cmn::ByteArray& buffer) {
  constexpr std::int64_t kLast = std::numeric_limits<std::int32_t>::max();
  constexpr std::int64_t kFirst = std::numeric_limits<std::int32_t>::min();
  const std::int64_t lower = buffer.LBound();
  const std::int64_t upper = buffer.UBound();
  const std::array<std::int64_t, 8> others = {lower - 1, upper - 1, upper, upper + 1, -1, 0, kFirst, kLast};
  const std::size_t other = selector - (256 - others.size());
  const std::int64_t start = selector < 256 - others.size() ? lower + selector : others[other];
  return static_cast<std::int32_t>(std::clamp(start, kFirst, kLast));
}

/// Two bytes for bounds and start; all that is left is the array.
inline Place TakePlace(Input& input) {
  const std::uint8_t bounds = input.Byte();
  const std::uint8_t start = input.Byte();
  const Bytes bytes = input.Rest();
  Place place;
  place.buffer = ArrayFrom(LowerBound(bounds, bytes.size()), bytes);
  place.start = StartAt(start, place.buffer);
  return place;
}

}  // namespace fuzz
