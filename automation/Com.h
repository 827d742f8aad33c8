#pragma once

// The system's header first, then the interfaces, which the IDL compiler makes out of VnZEL10cmn.idl.
#include <windows.h>
// After windows.h: they don't stand alone.
#include <ocidl.h>
#include <oleauto.h>

#include "VnZEL10cmn_automation.h"

#include <utility>

namespace automation {

/// Owns a reference to a COM object.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  /// Adds a reference.
  explicit ComPtr(Interface* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  /// Takes a reference over.
  static ComPtr Adopt(Interface* object) {
    ComPtr result;
    result.object_ = object;
    return result;
  }
  ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() {
    if (object_ != nullptr) object_->Release();
  }

  [[nodiscard]] Interface* Get() const noexcept { return object_; }
  Interface* operator->() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

  /// Where an operation puts a new reference; the old one is given up.
  Interface** Put() {
    *this = ComPtr();
    return &object_;
  }
  void** PutVoid() { return reinterpret_cast<void**>(Put()); }

  /// Hands the reference over.
  [[nodiscard]] Interface* Detach() noexcept { return std::exchange(object_, nullptr); }

 private:
  Interface* object_ = nullptr;
};

/// The object as another interface; empty where it has none.
template <class Interface>
ComPtr<Interface> Query(IUnknown* object, REFIID id) {
  ComPtr<Interface> result;
  if (object != nullptr) object->QueryInterface(id, result.PutVoid());
  return result;
}

/// Owns a text.
class Bstr {
 public:
  explicit Bstr(BSTR text = nullptr) noexcept : text_(text) {}
  Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(text_); }

  [[nodiscard]] BSTR Get() const noexcept { return text_; }
  BSTR* Put() noexcept { return &text_; }
  [[nodiscard]] BSTR Detach() noexcept { return std::exchange(text_, nullptr); }

 private:
  BSTR text_;
};

/// Owns an array.
class SafeArray {
 public:
  explicit SafeArray(SAFEARRAY* array = nullptr) noexcept : array_(array) {}
  SafeArray(SafeArray&& other) noexcept : array_(std::exchange(other.array_, nullptr)) {}
  SafeArray(const SafeArray&) = delete;
  SafeArray& operator=(const SafeArray&) = delete;
  ~SafeArray() {
    if (array_ != nullptr) SafeArrayDestroy(array_);
  }

  [[nodiscard]] SAFEARRAY* Get() const noexcept { return array_; }
  SAFEARRAY** Put() noexcept { return &array_; }
  [[nodiscard]] SAFEARRAY* Detach() noexcept { return std::exchange(array_, nullptr); }

 private:
  SAFEARRAY* array_;
};

/// Owns a variant.
class Variant {
 public:
  Variant() noexcept { VariantInit(&value_); }
  Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(&value_); }

  VARIANT* operator->() noexcept { return &value_; }
  VARIANT* Get() noexcept { return &value_; }
  [[nodiscard]] VARIANT Detach() noexcept {
    const VARIANT value = value_;
    VariantInit(&value_);
    return value;
  }

 private:
  VARIANT value_;
};

/// What a variant holds, or what it refers to. Empty when there is no memory for that.
inline Variant CopyOf(const VARIANT& value) {
  Variant copy;
  VariantCopyInd(copy.Get(), const_cast<VARIANT*>(&value));
  return copy;
}

}  // namespace automation
