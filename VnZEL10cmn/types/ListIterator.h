#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>

namespace VnZEL10cmn {

/// Goes through a list in its order, also while the list changes: an element that is in the list throughout is
/// visited exactly once, one that is removed before its turn is not visited, and one that is added after `begin()`
/// is not visited either, so that every loop ends. The list itself may go: the loop ends then.
///
/// An iterator holds its element, which therefore lives as long as the iterator stays there, in the list or not.
/// It is an input iterator: `*it` is a reference into the iterator itself, and a copy of the pointer when the
/// iterator is a temporary one (`*list.begin()`).
template <class Element>
class ListIterator {
 public:
  /// @{ What the standard library asks of an iterator.
  using iterator_category = std::input_iterator_tag;
  using value_type = std::shared_ptr<Element>;
  using difference_type = std::ptrdiff_t;
  using pointer = const value_type*;
  using reference = const value_type&;
  /// @}

  /// A place in a list. Not for hosts.
  struct Place {
    std::uint64_t ticket =
        0;                 ///< the running number of the element there; every element of a list has its own
    std::size_t slot = 0;  ///< where it was found
    std::uint64_t version = 0;  ///< tells whether elements have been moved since
  };

  /// What a list shares with its iterators. Not for hosts.
  class Source {
   public:
    virtual ~Source() = default;
    /// The first element whose ticket is not below that of `place` but below `end`, or none. `place` receives where
    /// it is.
    virtual value_type Next(Place& place, std::uint64_t end) const = 0;
  };

  /// The end of any list.
  ListIterator() = default;
  /// The beginning of a list that gives its next element the ticket `end`. Not for hosts.
  ListIterator(std::shared_ptr<const Source> source, std::uint64_t end)
      : source_(std::move(source)), end_(end) {
    Find();
  }

  /// The element.
  reference operator*() const& noexcept { return element_; }
  /// The element of a temporary iterator, as a copy that the caller keeps.
  value_type operator*() && noexcept { return std::move(element_); }
  /// The element.
  pointer operator->() const noexcept { return &element_; }
  /// Goes to the next element that is still there.
  ListIterator& operator++() {
    ++place_.ticket;
    ++place_.slot;
    Find();
    return *this;
  }
  /// The same; returns where it was.
  ListIterator operator++(int) {
    ListIterator before = *this;
    ++*this;
    return before;
  }
  /// Iterators are equal at the same element, and at the end.
  friend bool operator==(const ListIterator& left, const ListIterator& right) noexcept {
    return left.element_ == right.element_ && (!left.element_ || left.place_.ticket == right.place_.ticket);
  }

 private:
  void Find() {
    if (source_) {
      element_ = source_->Next(place_, end_);
      if (!element_) source_.reset();
    }
  }

  std::shared_ptr<const Source> source_;
  Place place_;
  std::uint64_t end_ = 0;
  value_type element_;
};

}  // namespace VnZEL10cmn
