#include "VnZEL10cmn/render/Renderer.h"

namespace VnZEL10cmn {

Renderer::Renderer(std::string_view className) : VnObject(className) {}

Renderer::~Renderer() = default;

}  // namespace VnZEL10cmn
