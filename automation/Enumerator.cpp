#include <algorithm>

#include "automation/Object.h"

namespace automation {

namespace {

class Enumerator final : public IEnumVARIANT {
 public:
  using Item = std::function<void(std::size_t, VARIANT&)>;

  Enumerator(std::size_t count, Item item, std::size_t position = 0)
      : count_(count), item_(std::move(item)), position_(position) {
    LockModule();
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    if (result == nullptr) return E_POINTER;
    *result = id == IID_IUnknown || id == IID_IEnumVARIANT ? this : nullptr;
    if (*result == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

  HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* elements, ULONG* fetched) override {
    if (elements == nullptr || (fetched == nullptr && wanted != 1)) return E_POINTER;
    ULONG done = 0;
    try {
      for (; done < wanted && position_ < count_; ++done, ++position_) {
        VariantInit(&elements[done]);
        item_(position_, elements[done]);
      }
    } catch (...) {
      std::for_each(elements, elements + done, [](VARIANT& element) { VariantClear(&element); });
      if (fetched != nullptr) *fetched = 0;
      return ReportException("NewEnum");
    }
    if (fetched != nullptr) *fetched = done;
    return done == wanted ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t left = count_ - position_;
    position_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    position_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
    if (copy == nullptr) return E_POINTER;
    *copy = nullptr;
    try {
      *copy = new Enumerator(count_, item_, position_);
      return S_OK;
    } catch (...) {
      return ReportException("NewEnum");
    }
  }

 private:
  virtual ~Enumerator() { UnlockModule(); }

  std::size_t count_;
  Item item_;
  std::size_t position_;
  LONG references_ = 1;
};

}  // namespace

ComPtr<IUnknown> MakeEnumerator(std::size_t count, std::function<void(std::size_t, VARIANT&)> item) {
  return ComPtr<IUnknown>::Adopt(new Enumerator(count, std::move(item)));
}

}  // namespace automation
