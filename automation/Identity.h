#pragma once

#include <memory>
#include <type_traits>
#include <typeinfo>

#include "automation/Com.h"

/// Which COM object stands for which object of the library, so that each has one face only.
namespace automation {

/// What an object of this server gives to the others. Callers have no use for it, but COM asks every object for
/// interfaces and counts references on what it gets.
class NativeHolder : public IUnknown {
 public:
  [[nodiscard]] virtual const std::type_info& NativeType() const noexcept = 0;
  /// The library's object; empty once it is gone.
  [[nodiscard]] virtual std::shared_ptr<void> NativeObject() const = 0;
  /// The library's object goes now: whoever keeps the COM object has an empty shell from here on.
  virtual void Forget() = 0;

 protected:
  ~NativeHolder() = default;
};

/// Asks an object of this server for its `NativeHolder`.
extern const IID IID_NativeHolder;

/// The holder in a COM object of this server; none in others. The caller keeps the object alive.
inline NativeHolder* HolderIn(IUnknown* object) {
  void* found = nullptr;
  if (object == nullptr || FAILED(object->QueryInterface(IID_NativeHolder, &found))) return nullptr;
  object->Release();
  return static_cast<NativeHolder*>(found);
}

/// The library's object behind a COM object; empty where that is none of this server's or another type's.
template <class T>
std::shared_ptr<T> NativeOf(IUnknown* object) {
  const NativeHolder* const holder = HolderIn(object);
  return holder != nullptr && holder->NativeType() == typeid(T)
             ? std::static_pointer_cast<T>(holder->NativeObject())
             : nullptr;
}

/// The address that an object has whatever its type is called.
template <class T>
const void* AddressOf(const T* object) {
  if constexpr (std::is_polymorphic_v<T>) {
    return dynamic_cast<const void*>(object);
  } else {
    return object;
  }
}

/// The live COM objects by the addresses of what they stand for.
class Faces {
 public:
  /// A new reference to the face, where there is one.
  static ComPtr<IUnknown> Find(const void* native);
  static void Add(const void* native, IUnknown* face);

  static void Remove(const void* native);

  /// Gives one reference up; what is left of them. With the last one the face is removed.
  static LONG Release(LONG& references, const void* native);
};

}  // namespace automation
