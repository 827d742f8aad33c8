#include <algorithm>

#include "automation/Object.h"

namespace automation {

namespace {

class Enumerator final : public IEnumVARIANT {
 public:
  explicit Enumerator(std::unique_ptr<Sequence> sequence) : sequence_(std::move(sequence)) { LockModule(); }

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
    if (elements == nullptr || (fetched == nullptr && wanted != 1)) return Refuse(E_POINTER, kSource);
    ULONG done = 0;
    const HRESULT result = Guarded(kSource, [&] {
      for (; done < wanted; ++done) {
        VariantInit(&elements[done]);
        if (!sequence_->Next(&elements[done])) break;
      }
    });
    if (FAILED(result)) {
      std::for_each(elements, elements + done, [](VARIANT& element) { VariantClear(&element); });
      done = 0;
    }
    if (fetched != nullptr) *fetched = done;
    return FAILED(result) || done == wanted ? result : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    bool isThere = true;
    const HRESULT result = Guarded(kSource, [&] {
      for (; count > 0 && isThere; --count) {
        isThere = sequence_->Next(nullptr);
      }
    });
    return FAILED(result) || isThere ? result : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    return Guarded(kSource, [&] { sequence_->Reset(); });
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
    if (copy == nullptr) return Refuse(E_POINTER, kSource);
    *copy = nullptr;
    return Guarded(kSource, [&] { *copy = new Enumerator(sequence_->Clone()); });
  }

 private:
  virtual ~Enumerator() { UnlockModule(); }

  static constexpr std::string_view kSource = "NewEnum";

  std::unique_ptr<Sequence> sequence_;
  LONG references_ = 1;
};

}  // namespace

ComPtr<IUnknown> MakeEnumerator(std::unique_ptr<Sequence> sequence) {
  return ComPtr<IUnknown>::Adopt(new Enumerator(std::move(sequence)));
}

}  // namespace automation
