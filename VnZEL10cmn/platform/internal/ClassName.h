#pragma once

#include <string>
#include <typeinfo>

namespace VnZEL10cmn::platform {

/// The name of a class without its namespaces.
std::string ClassName(const std::type_info& type);

}  // namespace VnZEL10cmn::platform
