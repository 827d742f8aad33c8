#include <cxxabi.h>

#include <cstdlib>
#include <memory>

#include "VnZEL10cmn/platform/internal/ClassName.h"

namespace VnZEL10cmn::platform {

std::string ClassName(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> readable(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
  const std::string name = status == 0 ? readable.get() : type.name();
  // Colons inside template arguments or parameter lists are not the class's own.
  std::size_t start = 0;
  int depth = 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    depth += c == '<' || c == '(' ? 1 : c == '>' || c == ')' ? -1 : 0;
    if (depth == 0 && c == ':') {
      start = i + 1;
    }
  }
  return name.substr(start);
}

}  // namespace VnZEL10cmn::platform
