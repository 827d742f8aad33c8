#include "automation/Hosts.h"

#include <map>
#include <mutex>

#include "VnZEL10cmn/platform/internal/ClassName.h"
#include "automation/Classes.h"
#include "automation/Convert.h"
#include "automation/Failure.h"
#include "automation/Identity.h"

// Objects of the hosts' own classes, as the library sees them. What such an object raises reaches the library as an
// exception, which the operation under way files as a run-time fault.

namespace automation {

namespace native = VnZEL10cmn;

// One by one: the interfaces' header has classes of the same names.
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::CurrencyArray;

namespace {

/// Which object of the library stands for a host's object, so that it is the same one each time.
template <class Native>
class Stands {
 public:
  template <class Make>
  static std::shared_ptr<Native> For(IUnknown* object, Make&& make) {
    const auto identity = Query<IUnknown>(object, IID_IUnknown);
    const std::lock_guard lock(mutex());
    std::weak_ptr<Native>& place = places()[identity.Get()];
    std::shared_ptr<Native> stand = place.lock();
    if (!stand) {
      stand = std::shared_ptr<Native>(make(), [key = identity.Get()](auto* old) {
        {
          const std::lock_guard deleterLock(mutex());
          const auto found = places().find(key);
          if (found != places().end() && found->second.expired()) places().erase(found);
        }
        delete old;
      });
      place = stand;
    }
    return stand;
  }

 private:
  static std::mutex& mutex() {
    static std::mutex instance;
    return instance;
  }
  static std::map<IUnknown*, std::weak_ptr<Native>>& places() {
    static std::map<IUnknown*, std::weak_ptr<Native>> instance;
    return instance;
  }
};

/// A text that a host's object returns.
template <class Read>
std::string TextFrom(Read&& read) {
  Bstr text;
  ThrowHostFailure(read(text.Put()));
  return FromCom(text.Get());
}

template <class Read>
bool BooleanFrom(Read&& read) {
  VARIANT_BOOL value = VARIANT_FALSE;
  ThrowHostFailure(read(&value));
  return FromCom(value);
}

/// The COM object of something that a host's object sees during a call only, unless it has one of its own.
template <class Native>
class Lent {
 public:
  explicit Lent(const std::shared_ptr<Native>& native) {
    if (!native) return;
    isOwn_ = !Faces::Find(AddressOf(native.get()));
    face_ = Wrap(native);
  }
  ~Lent() {
    // The library keeps it for the length of the call; a host that keeps its face longer has a shell of it.
    if (NativeHolder* const holder = isOwn_ ? HolderIn(face_.Get()) : nullptr) holder->Forget();
  }
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;

  auto* Get() const noexcept { return face_.Get(); }

 private:
  bool isOwn_ = false;
  decltype(Wrap(std::declval<const std::shared_ptr<Native>&>())) face_;
};

/// The error object that a caller handed in, during a call.
class LentError {
 public:
  explicit LentError(native::clsVnError* object)
      : lent_(object == nullptr ? nullptr
                                : std::shared_ptr<native::clsVnError>(object, [](native::clsVnError*) {})),
        pointer_(lent_.Get()) {
    if (pointer_ != nullptr) pointer_->AddRef();
  }
  ~LentError() {
    if (pointer_ != nullptr) pointer_->Release();
  }
  LentError(const LentError&) = delete;
  LentError& operator=(const LentError&) = delete;

  /// By reference, as a host may put another in its place. Where there is none it is a variable that holds none: without
  /// a variable no call reaches another apartment.
  _clsVnError** Place() { return &pointer_; }

 private:
  Lent<native::clsVnError> lent_;
  _clsVnError* pointer_;
};

/// A class's name as its users write it: the interface that belongs to a class has that name with "_" in front.
std::string NameIn(ITypeInfo* info) {
  Bstr name;
  if (FAILED(info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr))) return {};
  std::string text = FromCom(name.Get());
  if (text.starts_with('_')) text.erase(0, 1);
  return text;
}

/// What an object without type information says of itself: its default member, as a text. Scripts' objects have
/// "[object Name]" there.
std::string DefaultText(IDispatch* object) {
  DISPPARAMS none{};
  Variant value;
  if (FAILED(object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                            value.Get(), nullptr, nullptr)) ||
      value->vt != VT_BSTR) {
    return {};
  }
  std::string text = FromCom(value->bstrVal);
  constexpr std::string_view kBefore = "[object ";
  if (text.starts_with(kBefore) && text.ends_with(']')) {
    text = text.substr(kBefore.size(), text.size() - kBefore.size() - 1);
  }
  return text;
}

/// The name of the class of a host's object.
std::string ClassNameOf(IUnknown* object) {
  ComPtr<ITypeInfo> info;
  std::string name;
  const auto provider = Query<IProvideClassInfo>(object, IID_IProvideClassInfo);
  if (provider && SUCCEEDED(provider->GetClassInfo(info.Put())) && info) name = NameIn(info.Get());
  const auto dispatch = Query<IDispatch>(object, IID_IDispatch);
  if (name.empty() && dispatch && SUCCEEDED(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put())) &&
      info) {
    name = NameIn(info.Get());
  }
  if (name.empty() && dispatch) name = DefaultText(dispatch.Get());
  SetErrorInfo(0, nullptr);
  return name.empty() ? "Object" : name;
}

/// Whether the object belongs to another apartment: what is here is a proxy then.
bool IsElsewhere(IUnknown* object) { return static_cast<bool>(Query<IMultiQI>(object, IID_IMultiQI)); }

class HostLogItem final : public native::IVnLogItem, public HostObject {
 public:
  explicit HostLogItem(::IVnLogItem* host) : host_(host) {}
  IUnknown* Host() const noexcept override { return host_.Get(); }

  std::string GetLogEntry() override {
    return TextFrom([this](BSTR* text) { return host_->GetLogEntry(text); });
  }

 private:
  ComPtr<::IVnLogItem> host_;
};

class HostItem final : public native::IVnZelItem, public native::platform::NamedObject, public HostObject {
 public:
  explicit HostItem(::IVnZelItem* host) : host_(host) {}
  IUnknown* Host() const noexcept override { return host_.Get(); }
  [[nodiscard]] std::string ClassName() const override { return ClassNameOf(host_.Get()); }

  std::string InstanceID() override {
    return TextFrom([this](BSTR* text) { return host_->get_InstanceID(text); });
  }

  native::clsVnError& ErrorObject() override {
    ComPtr<_clsVnError> object;
    ThrowHostFailure(host_->get_ErrorObject(object.Put()));
    error_ = NativeOf<native::clsVnError>(object.Get());
    if (!error_) error_ = CopyOf(object.Get());
    return *error_;
  }

  std::shared_ptr<native::clsVnLogFile> LogHandler() override {
    ComPtr<_clsVnLogFile> object;
    ThrowHostFailure(host_->get_LogHandler(object.Put()));
    return NativeOf<native::clsVnLogFile>(object.Get());
  }
  void LogHandler(std::shared_ptr<native::clsVnLogFile> Value) override {
    ThrowHostFailure(host_->putref_LogHandler(Wrap(Value).Get()));
  }

  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start) override {
    return Exchange(&::IVnZelItem::BinaryDataGet, Data, Data, Start);
  }
  bool BinaryDataSet(const ByteArray& Data, std::int32_t& Start) override {
    ByteArray ignored;
    return Exchange(&::IVnZelItem::BinaryDataSet, Data, ignored, Start);
  }

  bool Clear() override {
    ThrowHostFailure(host_->Clear());
    return true;
  }
  bool HasError() override {
    return BooleanFrom([this](VARIANT_BOOL* value) { return host_->HasError(value); });
  }

  bool GetPrices(CurrencyArray& Prices, bool& IsThrdPrt) override {
    SafeArray array;
    ToCom(Prices, array.Put());
    VARIANT_BOOL isThirdParty = VARIANT_FALSE;
    ToCom(IsThrdPrt, &isThirdParty);
    const bool succeeded =
        BooleanFrom([&](VARIANT_BOOL* value) { return host_->GetPrices(array.Put(), &isThirdParty, value); });
    Prices = Currencies(array.Put());
    IsThrdPrt = FromCom(isThirdParty);
    return succeeded;
  }

  std::string ToString() override {
    return TextFrom([this](BSTR* text) { return host_->ToString(text); });
  }

 private:
  /// A host's item may have no error object, one of its own making, or one in another apartment.
  static std::shared_ptr<native::clsVnError> CopyOf(_clsVnError* host) {
    auto copy = std::make_shared<native::clsVnError>();
    if (host == nullptr || !BooleanFrom([host](VARIANT_BOOL* value) { return host->HasError(value); })) {
      return copy;
    }
    LONG number = 0;
    ThrowHostFailure(host->get_ErrorNr(&number));
    copy->SetError(number, TextFrom([host](BSTR* text) { return host->get_ErrorMsg(text); }),
                   BooleanFrom([host](VARIANT_BOOL* value) { return host->get_IsUserDef(value); }),
                   TextFrom([host](BSTR* text) { return host->get_ErrorFunction(text); }),
                   TextFrom([host](BSTR* text) { return host->get_ErrorSource(text); }),
                   TextFrom([host](BSTR* text) { return host->get_ErrorInstanceID(text); }));
    return copy;
  }

  using Operation = HRESULT (STDMETHODCALLTYPE ::IVnZelItem::*)(SAFEARRAY**, LONG*, VARIANT_BOOL*);

  bool Exchange(Operation operation, const ByteArray& in, ByteArray& out, std::int32_t& start) {
    SafeArray array;
    ToCom(in, array.Put());
    LONG position = start;
    const bool succeeded = BooleanFrom(
        [&](VARIANT_BOOL* value) { return (host_.Get()->*operation)(array.Put(), &position, value); });
    out = Bytes(array.Put());
    start = FromCom(position);
    return succeeded;
  }

  ComPtr<::IVnZelItem> host_;
  std::shared_ptr<native::clsVnError> error_;
};

class HostFactory final : public native::clsZelListItemFact, public HostObject {
 public:
  explicit HostFactory(_clsZelListItemFact* host) : host_(host) {}
  IUnknown* Host() const noexcept override { return host_.Get(); }

  std::shared_ptr<native::IVnZelItem> CreateNewItem(native::clsVnError* ErrObj) override {
    LentError errors(ErrObj);
    ComPtr<::IVnZelItem> item;
    ThrowHostFailure(host_->CreateNewItem(errors.Place(), item.Put()));
    return FromCom(item.Get());
  }

 private:
  ComPtr<_clsZelListItemFact> host_;
};

class HostItemPrint final : public native::clsZelItemPrint, public HostObject {
 public:
  explicit HostItemPrint(_clsZelItemPrint* host) : host_(host) {}
  IUnknown* Host() const noexcept override { return host_.Get(); }

  std::string ToStringCI(std::shared_ptr<native::IVnZelItem> Item, native::clsVnError* ErrObj) override {
    return Print(&_clsZelItemPrint::ToStringCI, Item, ErrObj);
  }
  std::string ToStringBI(std::shared_ptr<native::clsZelTransAct> BookItem,
                         native::clsVnError* ErrObj) override {
    return Print(&_clsZelItemPrint::ToStringBI, BookItem, ErrObj);
  }
  std::string ToStringTRdata(std::shared_ptr<native::clsZelTransActData> BookItem,
                             native::clsVnError* ErrObj) override {
    return Print(&_clsZelItemPrint::ToStringTRdata, BookItem, ErrObj);
  }

 private:
  template <class Operation, class Native>
  std::string Print(Operation operation, const std::shared_ptr<Native>& native, native::clsVnError* errObj) {
    LentError errors(errObj);
    const Lent<Native> object(native);
    return TextFrom(
        [&](BSTR* text) { return (host_.Get()->*operation)(object.Get(), errors.Place(), text); });
  }

  ComPtr<_clsZelItemPrint> host_;
};

class HostReportPrint final : public native::clsZelRprtPrint, public HostObject {
 public:
  explicit HostReportPrint(_clsZelRprtPrint* host) : host_(host) {}
  IUnknown* Host() const noexcept override { return host_.Get(); }

  std::string ToStringItmRpt(std::shared_ptr<native::IVnZelItem> Item, native::clsVnError* ErrObj) override {
    LentError errors(ErrObj);
    const Lent<native::IVnZelItem> item(Item);
    return TextFrom([&](BSTR* text) { return host_->ToStringItmRpt(item.Get(), errors.Place(), text); });
  }
  std::string ToStringRprt(std::shared_ptr<native::clsZelReport> RprtItem,
                           native::clsVnError* ErrObj) override {
    LentError errors(ErrObj);
    const Lent<native::clsZelReport> report(RprtItem);
    return TextFrom([&](BSTR* text) { return host_->ToStringRprt(report.Get(), errors.Place(), text); });
  }

 private:
  ComPtr<_clsZelRprtPrint> host_;
};

/// The library's object in a COM object of this server, which nobody else can replace. An object of another apartment is
/// refused: the library would use it from this thread while its own one may be using it.
template <class Native, class Interface>
std::shared_ptr<Native> OwnOnly(Interface* object) {
  if (object == nullptr) return nullptr;
  if (std::shared_ptr<Native> native = NativeOf<Native>(object)) return native;
  if (IsElsewhere(object)) {
    throw ComFailure(RunTimeNumber::TypeMismatch,
                     "Das Objekt gehört zu einem anderen Apartment. Es kann nur mit Objekten des Apartments "
                     "verwendet werden, in dem es angelegt wurde.");
  }
  throw ComFailure(HolderIn(object) != nullptr ? RunTimeNumber::ObjectNotSet : RunTimeNumber::TypeMismatch);
}

/// The library's object, or one that stands for the host's own.
template <class Native, class Stand, class Interface>
std::shared_ptr<Native> OwnOrHost(Interface* object) {
  if (object == nullptr) return nullptr;
  if (std::shared_ptr<Native> native = NativeOf<Native>(object)) return native;
  return Stands<Native>::For(object, [object] { return new Stand(object); });
}

}  // namespace

std::shared_ptr<native::clsVnError> FromCom(_clsVnError* object) {
  return OwnOnly<native::clsVnError>(object);
}
std::shared_ptr<native::clsVnLogFile> FromCom(_clsVnLogFile* object) {
  return OwnOnly<native::clsVnLogFile>(object);
}
std::shared_ptr<native::clsZelVatItem> FromCom(_clsZelVatItem* object) {
  return OwnOnly<native::clsZelVatItem>(object);
}
std::shared_ptr<native::clsZelVatList> FromCom(_clsZelVatList* object) {
  return OwnOnly<native::clsZelVatList>(object);
}
std::shared_ptr<native::clsZelTransAct> FromCom(_clsZelTransAct* object) {
  return OwnOnly<native::clsZelTransAct>(object);
}
std::shared_ptr<native::clsZelReport> FromCom(_clsZelReport* object) {
  return OwnOnly<native::clsZelReport>(object);
}
std::shared_ptr<native::clsZelTransActData> FromCom(_clsZelTransActData* object) {
  return OwnOnly<native::clsZelTransActData>(object);
}

std::shared_ptr<native::IVnLogItem> FromCom(::IVnLogItem* object) {
  if (object == nullptr) return nullptr;
  if (auto error = NativeOf<native::clsVnError>(object)) return error;
  if (auto message = NativeOf<native::clsVnLogItem>(object)) return message;
  return Stands<native::IVnLogItem>::For(object, [object] { return new HostLogItem(object); });
}

std::shared_ptr<native::IVnZelItem> FromCom(::IVnZelItem* object) {
  if (object == nullptr) return nullptr;
  if (auto item = NativeOf<native::clsZelItemCash>(object)) return item;
  return Stands<native::IVnZelItem>::For(object, [object] { return new HostItem(object); });
}

std::shared_ptr<native::clsZelListItemFact> FromCom(_clsZelListItemFact* object) {
  return OwnOrHost<native::clsZelListItemFact, HostFactory>(object);
}
std::shared_ptr<native::clsZelItemPrint> FromCom(_clsZelItemPrint* object) {
  return OwnOrHost<native::clsZelItemPrint, HostItemPrint>(object);
}
std::shared_ptr<native::clsZelRprtPrint> FromCom(_clsZelRprtPrint* object) {
  return OwnOrHost<native::clsZelRprtPrint, HostReportPrint>(object);
}

ComPtr<::IVnZelItem> Wrap(const std::shared_ptr<native::IVnZelItem>& item) {
  if (!item) return {};
  if (const auto* const host = dynamic_cast<const HostObject*>(item.get())) {
    return Query<::IVnZelItem>(host->Host(), IID_IVnZelItem);
  }
  return Query<::IVnZelItem>(Wrap(std::dynamic_pointer_cast<native::clsZelItemCash>(item)).Get(),
                             IID_IVnZelItem);
}

}  // namespace automation
