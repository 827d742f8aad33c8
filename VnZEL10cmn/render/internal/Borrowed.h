#pragma once

#include <memory>

namespace VnZEL10cmn::internal {

/// A reference to an object that its caller keeps.
template <class Object>
std::shared_ptr<Object> Borrowed(Object& object) {
  return std::shared_ptr<Object>(std::shared_ptr<void>(), &object);
}

}  // namespace VnZEL10cmn::internal
