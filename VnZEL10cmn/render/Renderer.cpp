#include "VnZEL10cmn/render/Renderer.h"

namespace VnZEL10cmn {

Renderer::Renderer(const char* className) : SharedObject(className) {}

Renderer::~Renderer() = default;

bool Renderer::HasGiven(std::string_view text, VnObject& asked, std::string_view function) {
  return !text.empty() || !asked.HasError() ||
         FailAs(asked.ErrorObject(), asked.ErrorObject().ErrorMsg(), function);
}

void Renderer::HandOver(clsVnError& errors) noexcept {
  try {
    const clsVnError& own = ErrorObject();
    errors.SetError(own.ErrorNr(), own.ErrorMsg(), own.IsUserDef(), own.ErrorFunction());
  } catch (...) {
    FileOutOfMemory(errors);
  }
}

}  // namespace VnZEL10cmn
