#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "VnZEL10cmn/errors/SharedObject.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// What print engines have in common: a failure goes to the error object handed in, if any, which is clear after a
/// rendering that succeeded. Not for hosts.
class VNZEL10CMN_API Renderer : public SharedObject<Renderer> {
 protected:
  /// `className` is a literal: the class's published name.
  explicit Renderer(const char* className);
  ~Renderer() override;

  /// Runs a rendering and hands its failure, if any, to the error object given.
  template <class Body>
  std::string Render(std::string_view operation, clsVnError* errObj, Body&& body) {
    const std::uint32_t before = errObj == nullptr ? 0 : FailureCount(*errObj);
    std::string text = RunFor<std::string>(operation, std::forward<Body>(body));
    if (errObj != nullptr && HasError()) {
      HandOver(*errObj);
    } else if (errObj != nullptr && FailureCount(*errObj) == before) {
      // What the object that is rendered filed meanwhile stays: it may be its error object.
      errObj->ClearErr();
    }
    return text;
  }

  /// Whether an object that was asked for a text gave one. Nothing at all, and an error, is its failure,
  /// which is filed as a failure of this function.
  bool HasGiven(std::string_view text, VnObject& asked, std::string_view function);

 private:
  void HandOver(clsVnError& errors) noexcept;
};

}  // namespace VnZEL10cmn
