#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "VnZEL10cmn/errors/VnObject.h"

namespace VnZEL10cmn {

/// What print engines have in common: a failure goes to the error object handed in, if any.
class Renderer : public VnObject {
 protected:
  /// `className` is a literal: the class's published name.
  explicit Renderer(std::string_view className);
  ~Renderer() override;

  /// Runs a rendering and hands its failure, if any, to the error object given.
  template <class Body>
  std::string Render(std::string_view operation, clsVnError* errObj, Body&& body) {
    std::string text = RunFor<std::string>(operation, std::forward<Body>(body));
    if (errObj != nullptr && HasError()) {
      const clsVnError& own = ErrorObject();
      errObj->SetError(own.ErrorNr(), own.ErrorMsg(), own.IsUserDef(), own.ErrorFunction());
    }
    return text;
  }
};

}  // namespace VnZEL10cmn
