#include "automation/Identity.h"

#include <mutex>
#include <unordered_map>

namespace automation {

const IID IID_NativeHolder = {0x5b0f3e1c, 0x8a55, 0x4c0e, {0x9d, 0x0a, 0x6f, 0x3d, 0x52, 0x9b, 0x1e, 0x77}};

namespace {

std::mutex mutex;
std::unordered_map<const void*, IUnknown*> faces;

}  // namespace

ComPtr<IUnknown> Faces::Find(const void* native) {
  const std::lock_guard lock(mutex);
  const auto found = faces.find(native);
  return found == faces.end() ? ComPtr<IUnknown>() : ComPtr<IUnknown>(found->second);
}

void Faces::Add(const void* native, IUnknown* face) {
  const std::lock_guard lock(mutex);
  faces[native] = face;
}

void Faces::Remove(const void* native) {
  const std::lock_guard lock(mutex);
  faces.erase(native);
}

LONG Faces::Release(LONG& references, const void* native) {
  // Under the lock, so that nobody finds a face that is about to go.
  const std::lock_guard lock(mutex);
  const LONG left = InterlockedDecrement(&references);
  if (left == 0 && native != nullptr) faces.erase(native);
  return left;
}

}  // namespace automation
