#pragma once

#include <string>
#include <typeinfo>

namespace VnZEL10cmn::platform {

/// The name of a class without its namespaces.
std::string ClassName(const std::type_info& type);

/// An object that stands for one of another language, whose class has a name of its own.
class NamedObject {
 public:
  [[nodiscard]] virtual std::string ClassName() const = 0;

 protected:
  ~NamedObject() = default;
};

/// The name of an object's class without its namespaces.
template <class Object>
std::string ClassNameOf(const Object& object) {
  const auto* const named = dynamic_cast<const NamedObject*>(&object);
  return named != nullptr ? named->ClassName() : ClassName(typeid(object));
}

}  // namespace VnZEL10cmn::platform
