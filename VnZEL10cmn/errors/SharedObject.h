#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "VnZEL10cmn/errors/VnObject.h"

namespace VnZEL10cmn {

/// An object whose operations call a host's classes. Where a std::shared_ptr owns the object, it stays alive until its
/// operation is over, whatever the host lets go of meanwhile. A class that a host derives needs no
/// std::enable_shared_from_this of its own, and can't have a second one. Not for hosts.
template <class Class>
class SharedObject : public VnObject, public std::enable_shared_from_this<Class> {
 protected:
  using VnObject::VnObject;

  /// `VnObject::Run` of an object that stays.
  template <class Body>
  bool Run(std::string_view operation, Body&& body, Logging logging = Logging::Failures) {
    return RunFor<bool>(operation, std::forward<Body>(body), logging);
  }

  /// `VnObject::RunFor` of an object that stays.
  template <class Result, class Body>
  Result RunFor(std::string_view operation, Body&& body, Logging logging = Logging::Failures) {
    const std::shared_ptr<Class> alive = this->weak_from_this().lock();
    return VnObject::RunFor<Result>(operation, std::forward<Body>(body), logging);
  }
};

}  // namespace VnZEL10cmn
