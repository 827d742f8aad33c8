#pragma once

#include <memory>
#include <tuple>
#include <utility>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "automation/Classes.h"
#include "automation/Convert.h"
#include "automation/Description.h"
#include "automation/Failure.h"
#include "automation/Identity.h"
#include "automation/Module.h"

/// What all COM objects of this server have in common.
namespace automation {

/// Late binding of an interface.
template <class Interface>
class Dispatching : public Interface {
 public:
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    return Described([&](const Description& it) { return it.GetTypeInfoCount(count); });
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** info) override {
    return Described([&](const Description& it) { return it.GetTypeInfo(index, info); });
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID /*locale*/,
                                          DISPID* ids) override {
    return Described([&](const Description& it) { return it.GetIDsOfNames(reserved, names, count, ids); });
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD kinds,
                                   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrongArgument) override {
    return Described([&](const Description& it) {
      return it.Invoke(static_cast<Interface*>(this), member, reserved, locale, kinds, arguments, result,
                       exception, wrongArgument);
    });
  }

 private:
  template <class Use>
  static HRESULT Described(Use&& use) {
    try {
      return use(Description::Of(__uuidof(Interface)));
    } catch (...) {
      return ReportException("Dispatch");
    }
  }
};

/// A COM object that stands for one of the library's. It shares in owning it, and so do the objects that it hands
/// out in owning what they belong to; nothing of the library knows its COM object, so that no circle of references
/// can arise.
template <class Native, class Interface>
class Object : public Dispatching<Interface>,
               public ISupportErrorInfo,
               public IProvideClassInfo,
               public NativeHolder {
 public:
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    if (result == nullptr) return E_POINTER;
    *result = id == IID_NativeHolder ? static_cast<NativeHolder*>(this) : static_cast<void*>(Find(id));
    if (*result == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = Faces::Release(references_, address_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override {
    return Find(id) != nullptr ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
    if (info == nullptr) return Missing();
    *info = nullptr;
    return Guard([&] { Require(TypeLibrary()->GetTypeInfoOfGuid(ClassOf<Native>::Id(), info)); });
  }

  explicit Object(std::shared_ptr<Native> native)
      : native_(std::move(native)), address_(AddressOf(native_.get())) {
    LockModule();
    Faces::Add(address_, static_cast<Interface*>(this));
  }

  [[nodiscard]] const std::type_info& NativeType() const noexcept final { return typeid(Native); }
  [[nodiscard]] std::shared_ptr<void> NativeObject() const final { return native_; }
  void Forget() final {
    Faces::Remove(std::exchange(address_, nullptr));
    native_.reset();
  }

 protected:
  virtual ~Object() { UnlockModule(); }

  /// A further interface of the object, none by default.
  virtual IUnknown* FindMore(REFIID /*id*/) { return nullptr; }

  /// The library's object. Throws `ComFailure` once it is gone.
  Native& It() const {
    if (!native_) throw ComFailure(RunTimeNumber::ObjectNotSet);
    return *native_;
  }

  /// A part of the library's object, which keeps the whole alive.
  template <class Part>
  std::shared_ptr<Part> PartOf(Part& part) const {
    return std::shared_ptr<Part>(native_, &part);
  }

  /// Runs `body`; what it throws becomes the result, with error information.
  template <class Body>
  HRESULT Guard(Body&& body) {
    return Guarded(ClassOf<Native>::kName, std::forward<Body>(body));
  }

  /// The result where the caller gave no place for a value.
  HRESULT Missing() { return Refuse(E_POINTER, ClassOf<Native>::kName); }

  /// Runs `body` and hands out what it returns.
  template <class Result, class Body>
  HRESULT Give(Result* result, Body&& body) {
    if (result == nullptr) return Missing();
    *result = {};
    return Guard([&] { ToCom(body(), result); });
  }

  /// Hands out what For Each uses.
  template <class ToVariant>
  HRESULT GiveEnumerator(IUnknown** result, ToVariant toVariant);

  /// Runs `body`, which returns a Boolean, on arguments by reference: pointers, or `Optional` for those that may
  /// be missing. What the library changed in them is stored, also when it failed; all of it, or nothing where one
  /// can't be stored.
  template <class Body, class... Arguments>
  HRESULT Call(VARIANT_BOOL* success, Body&& body, Arguments... arguments) {
    if (success == nullptr || (IsMissing(arguments) || ...)) return Missing();
    *success = VARIANT_FALSE;
    return Guard([&] {
      std::tuple references(MakeReference(arguments)...);
      std::apply(
          [&](auto&... reference) {
            const bool succeeded = body(reference.Value()...);
            (reference.Prepare(), ...);
            (reference.Store(), ...);
            ToCom(succeeded, success);
          },
          references);
    });
  }

 private:
  template <class Com>
  static bool IsMissing(Com* place) {
    return place == nullptr;
  }
  template <class Com>
  static bool IsMissing(Optional<Com>) {
    return false;
  }
  template <class Com>
  static Reference<Com> MakeReference(Com* place) {
    return Reference<Com>(place);
  }
  template <class Com>
  static OptionalReference<Com> MakeReference(Optional<Com> argument) {
    return OptionalReference<Com>(argument.place);
  }

  IUnknown* Find(REFIID id) {
    if (id == IID_IUnknown || id == IID_IDispatch || id == __uuidof(Interface)) {
      return static_cast<Interface*>(this);
    }
    if (id == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
    if (id == IID_IProvideClassInfo) return static_cast<IProvideClassInfo*>(this);
    return FindMore(id);
  }

  std::shared_ptr<Native> native_;
  const void* address_;
  LONG references_ = 1;
};

/// A second interface of an object, with late binding of its own.
template <class Interface>
class Facet : public Dispatching<Interface> {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    return whole_.QueryInterface(id, result);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return whole_.AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return whole_.Release(); }

 protected:
  explicit Facet(IUnknown& whole) : whole_(whole) {}
  ~Facet() = default;

 private:
  IUnknown& whole_;
};

/// A new COM object for an object of the library.
template <class Class, class Native>
ComPtr<typename ClassOf<Native>::Interface> MakeFace(std::shared_ptr<Native> native) {
  return ComPtr<typename ClassOf<Native>::Interface>::Adopt(new Class(std::move(native)));
}
#define AUTOMATION_MAKE(native, Class)                                                       \
  ComPtr<ClassOf<native>::Interface> ClassOf<native>::Make(std::shared_ptr<native> object) { \
    return MakeFace<Class>(std::move(object));                                               \
  }

/// What For Each goes through, from one element to the next.
class Sequence {
 public:
  virtual ~Sequence() = default;
  /// Makes the next element, in an empty variant, or says that there is none. Null skips it.
  virtual bool Next(VARIANT* element) = 0;
  /// Begins again.
  virtual void Reset() = 0;
  [[nodiscard]] virtual std::unique_ptr<Sequence> Clone() const = 0;
};

/// The elements of `list` by its own iterators, so that the list may change meanwhile.
template <class List, class ToVariant>
class ListSequence final : public Sequence {
 public:
  ListSequence(std::shared_ptr<List> list, ToVariant toVariant)
      : list_(std::move(list)), toVariant_(std::move(toVariant)), place_(list_->begin()) {}

  bool Next(VARIANT* element) override {
    // Only now, as the element behind may have gone since the last one was visited.
    if (hasBegun_ && place_ != list_->end()) ++place_;
    hasBegun_ = true;
    if (place_ == list_->end()) return false;
    if (element != nullptr) toVariant_(*place_, *element);
    return true;
  }
  void Reset() override {
    place_ = list_->begin();
    hasBegun_ = false;
  }
  [[nodiscard]] std::unique_ptr<Sequence> Clone() const override {
    return std::make_unique<ListSequence>(*this);
  }

 private:
  std::shared_ptr<List> list_;
  ToVariant toVariant_;
  decltype(std::declval<const List&>().begin()) place_;
  bool hasBegun_ = false;
};

ComPtr<IUnknown> MakeEnumerator(std::unique_ptr<Sequence> sequence);

template <class List, class ToVariant>
ComPtr<IUnknown> Enumerate(std::shared_ptr<List> list, ToVariant toVariant) {
  return MakeEnumerator(
      std::make_unique<ListSequence<List, ToVariant>>(std::move(list), std::move(toVariant)));
}

template <class Native, class Interface>
template <class ToVariant>
HRESULT Object<Native, Interface>::GiveEnumerator(IUnknown** result, ToVariant toVariant) {
  if (result == nullptr) return Missing();
  *result = nullptr;
  return Guard([&] { *result = Enumerate(PartOf(It()), std::move(toVariant)).Detach(); });
}

/// An object as a variant, by the interface that shows all of it.
template <class Native>
void ObjectToVariant(const std::shared_ptr<Native>& object, VARIANT& variant) {
  variant.vt = VT_DISPATCH;
  variant.pdispVal = Query<IDispatch>(Wrap(object).Get(), IID_IDispatch).Detach();
}

/// Items by position and by instance, and For Each over them.
#define AUTOMATION_ITEMS                                                                  \
  AUTOMATION_READ(LONG, ItemCount)                                                        \
  HRESULT STDMETHODCALLTYPE get_ItemI(LONG Index, ::IVnZelItem** Value) override {        \
    return this->Give(Value, [&] { return this->It().ItemI(Index); });                    \
  }                                                                                       \
  HRESULT STDMETHODCALLTYPE get_ItemK(BSTR InstanceID, ::IVnZelItem** Value) override {   \
    return this->Give(Value, [&] { return this->It().ItemK(FromCom(InstanceID)); });      \
  }                                                                                       \
  HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown** Value) override {                      \
    return this->GiveEnumerator(Value, ObjectToVariant<VnZEL10cmn::IVnZelItem>);          \
  }                                                                                       \
  HRESULT STDMETHODCALLTYPE AddItem(::IVnZelItem* Item, VARIANT_BOOL* Success) override { \
    return this->Give(Success, [&] { return this->It().AddItem(FromCom(Item)); });        \
  }                                                                                       \
  AUTOMATION_REMOVE_ITEM(RemoveItem)
#define AUTOMATION_REMOVE_ITEM(name)                                                                        \
  HRESULT STDMETHODCALLTYPE name(::IVnZelItem* Item, BSTR ID, LONG Index, VARIANT_BOOL* Success) override { \
    return this->Give(Success, [&] { return this->It().name(FromCom(Item), FromCom(ID), Index); });         \
  }

/// The error object that a caller may hand in by reference.
inline _clsVnError* ErrorIn(_clsVnError** place) { return place == nullptr ? nullptr : *place; }

// A class's members, written as the IDL writes them.

#define AUTOMATION_READ(type, name)                                 \
  HRESULT STDMETHODCALLTYPE get_##name(type* Value) override {      \
    return this->Give(Value, [this] { return this->It().name(); }); \
  }
#define AUTOMATION_WRITE(type, name)                              \
  HRESULT STDMETHODCALLTYPE put_##name(type Value) override {     \
    return this->Guard([&] { this->It().name(FromCom(Value)); }); \
  }
#define AUTOMATION_PROPERTY(type, name) AUTOMATION_READ(type, name) AUTOMATION_WRITE(type, name)
#define AUTOMATION_TEXT(name)                                        \
  HRESULT STDMETHODCALLTYPE name(BSTR* Result) override {            \
    return this->Give(Result, [this] { return this->It().name(); }); \
  }
#define AUTOMATION_SUCCESS(name)                                      \
  HRESULT STDMETHODCALLTYPE name(VARIANT_BOOL* Success) override {    \
    return this->Give(Success, [this] { return this->It().name(); }); \
  }
#define AUTOMATION_OBJECT_READ(type, name)                          \
  HRESULT STDMETHODCALLTYPE get_##name(type** Value) override {     \
    return this->Give(Value, [this] { return this->It().name(); }); \
  }
#define AUTOMATION_OBJECT_WRITE(type, name)                       \
  HRESULT STDMETHODCALLTYPE putref_##name(type* Value) override { \
    return this->Guard([&] { this->It().name(FromCom(Value)); }); \
  }
#define AUTOMATION_FRAME                                                                 \
  HRESULT STDMETHODCALLTYPE get_ErrorObject(_clsVnError** Value) override {              \
    return this->Give(Value, [this] { return this->PartOf(this->It().ErrorObject()); }); \
  }                                                                                      \
  AUTOMATION_OBJECT_READ(_clsVnLogFile, LogHandler)                                      \
  AUTOMATION_OBJECT_WRITE(_clsVnLogFile, LogHandler)                                     \
  AUTOMATION_SUCCESS(HasError)

}  // namespace automation
