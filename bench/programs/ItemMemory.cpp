// What a cash item with a name of 20 characters takes: the blocks that it owns, and how much the heap grows for each
// of many.

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "VnZEL10cmn/VnZEL10cmn.h"

namespace {

bool counts = false;
std::size_t usable = 0;

}  // namespace

void* operator new(std::size_t size) {
  void* const block = std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  if (counts) usable += malloc_usable_size(block);
  return block;
}
void operator delete(void* block) noexcept {
  if (counts && block != nullptr) usable -= malloc_usable_size(block);
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

namespace {

std::shared_ptr<VnZEL10cmn::clsZelItemCash> Item() {
  using VnZEL10cmn::Currency;
  auto item = std::make_shared<VnZEL10cmn::clsZelItemCash>();
  item->SetItemData(1, "Bauernbrot mit Saat.", "kg", Currency::FromScaled(38500));
  return item;
}

}  // namespace

int main() {
  constexpr std::size_t many = 100000;
  counts = true;
  const auto item = Item();
  const std::size_t fresh = usable;
  item->InstanceID();
  const std::size_t asked = usable;
  counts = false;
  std::vector<std::shared_ptr<VnZEL10cmn::clsZelItemCash>> items(many);
  const std::size_t before = mallinfo2().uordblks;
  for (auto& each : items) {
    each = Item();
  }
  const std::size_t after = mallinfo2().uordblks;
  std::printf("usable %zu, asked for its instance ID %zu, heap per item of %zu %.1f\n", fresh, asked, many,
              static_cast<double>(after - before) / many);
}
