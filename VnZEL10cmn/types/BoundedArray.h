#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <span>
#include <vector>

#include "VnZEL10cmn/types/RunTimeFaults.h"

namespace VnZEL10cmn {

/// An array with a lower and an upper bound, addressed by absolute index. The usual lower bound is 0; a host
/// may hand in others, negative ones included, and the operations check them. An empty array has the bounds
/// 0 and -1.
template <class Element>
class BoundedArray {
 public:
  /// Empty: bounds 0 and -1.
  BoundedArray() = default;

  /// Zero-based, holding the elements given.
  BoundedArray(std::initializer_list<Element> elements) : elements_(elements) {}

  /// Zero-based, holding a copy of the elements given.
  explicit BoundedArray(std::span<const Element> elements) : elements_(elements.begin(), elements.end()) {}

  /// Elements `lower` to `upper`, all zero; `upper` = `lower` - 1 makes an empty array. Throws
  /// std::out_of_range when `upper` is lower still.
  static BoundedArray WithBounds(std::int32_t lower, std::int32_t upper) {
    BoundedArray result;
    result.Redim(lower, upper);
    return result;
  }

  /// Index of the first element.
  std::int32_t LBound() const noexcept { return lower_; }

  /// Index of the last element; -1 when empty.
  std::int32_t UBound() const noexcept {
    return static_cast<std::int32_t>(lower_ + static_cast<std::int64_t>(elements_.size()) - 1);
  }

  /// The element at an absolute index; throws std::out_of_range outside the bounds.
  Element& operator[](std::int32_t index) { return elements_[Offset(index)]; }
  /// The element at an absolute index; throws std::out_of_range outside the bounds.
  const Element& operator[](std::int32_t index) const { return elements_[Offset(index)]; }

  /// New bounds; all elements become zero.
  void Redim(std::int32_t lower, std::int32_t upper) {
    const std::size_t count = Count(lower, upper);
    elements_.assign(count, Element{});
    lower_ = count == 0 ? 0 : lower;
  }

  /// A new upper bound; elements that stay keep their values, new ones are zero.
  void RedimPreserve(std::int32_t upper) {
    elements_.resize(Count(lower_, upper));
    if (elements_.empty()) {
      lower_ = 0;
    }
  }

  /// The elements in index order.
  Element* data() noexcept { return elements_.data(); }
  /// The elements in index order.
  const Element* data() const noexcept { return elements_.data(); }
  /// Number of elements.
  std::size_t size() const noexcept { return elements_.size(); }

  /// Iteration in index order.
  auto begin() noexcept { return elements_.begin(); }
  /// Iteration in index order.
  auto begin() const noexcept { return elements_.begin(); }
  /// Iteration in index order.
  auto end() noexcept { return elements_.end(); }
  /// Iteration in index order.
  auto end() const noexcept { return elements_.end(); }

  /// Same bounds, same elements.
  friend bool operator==(const BoundedArray&, const BoundedArray&) = default;

 private:
  static std::size_t Count(std::int32_t lower, std::int32_t upper) {
    const std::int64_t count = static_cast<std::int64_t>(upper) - lower + 1;
    if (count < 0 || count > std::numeric_limits<std::int32_t>::max()) {
      internal::ThrowOutOfRange();
    }
    return static_cast<std::size_t>(count);
  }

  std::size_t Offset(std::int32_t index) const {
    const std::int64_t offset = static_cast<std::int64_t>(index) - lower_;
    if (offset < 0 || offset >= static_cast<std::int64_t>(elements_.size())) {
      internal::ThrowOutOfRange();
    }
    return static_cast<std::size_t>(offset);
  }

  std::vector<Element> elements_;
  std::int32_t lower_ = 0;
};

}  // namespace VnZEL10cmn
