#pragma once

#include <cassert>
#include <memory>
#include <new>
#include <utility>

namespace VnZEL10cmn::internal {

/// The std::shared_ptr that owns an object, or none.
template <class Object>
std::shared_ptr<Object> OwnerOf(Object& object) {
  return std::static_pointer_cast<Object>(object.weak_from_this().lock());
}

/// An object that a host's print engine is given for the time of one call: by the std::shared_ptr that owns it, or,
/// where there is none, by one that owns nothing and must not be kept. In debug builds one that is kept all the same
/// ends the program.
template <class Object>
class Lent {
 public:
  Lent(Object& object, std::shared_ptr<Object> owner)
      : isOwned_(owner != nullptr), object_(std::move(owner)) {
    if (!isOwned_) {
      object_ = std::shared_ptr<Object>(Token(), &object);
    }
  }
  explicit Lent(Object& object) : Lent(object, OwnerOf(object)) {}
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;
  ~Lent() {
    assert((isOwned_ || object_.use_count() <= 1) && "a print engine kept an object that it may not keep");
  }

  const std::shared_ptr<Object>& Get() const noexcept { return object_; }

 private:
  /// What counts those who keep the pointer; nothing in release builds, and nothing where there is no memory for it.
  static std::shared_ptr<void> Token() noexcept {
#ifndef NDEBUG
    try {
      return std::make_shared<char>();
    } catch (const std::bad_alloc&) {
      // Then it isn't found out.
    }
#endif
    return nullptr;
  }

  bool isOwned_;
  std::shared_ptr<Object> object_;
};

}  // namespace VnZEL10cmn::internal
