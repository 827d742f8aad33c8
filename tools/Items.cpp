#include "tools/Items.h"

#include <algorithm>
#include <utility>

#include "tools/Bytes.h"
#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::Currency;
using VnZEL10cmn::CurrencyArray;
using VnZEL10cmn::IVnZelItem;

namespace {

/// No item is written longer.
constexpr std::int32_t kMostPerItem = 128;

/// A factory that has one item to give.
class OneItem final : public VnZEL10cmn::clsZelListItemFact {
 public:
  explicit OneItem(std::shared_ptr<IVnZelItem> item) : item_(std::move(item)) {}

  std::shared_ptr<IVnZelItem> CreateNewItem(VnZEL10cmn::clsVnError* /*ErrObj*/) override {
    return std::exchange(item_, nullptr);
  }

 private:
  std::shared_ptr<IVnZelItem> item_;
};

template <typename Holder>
std::shared_ptr<AllItems> PutInto(Holder& holder) {
  auto items = std::make_shared<AllItems>();
  holder.ItemFactory(std::make_shared<OneItem>(items));
  return items;
}

}  // namespace

bool ItemReader::Next() {
  // A last byte alone is no item, and the library passes over it.
  if (hasFailed_ || behind_ >= list_.UBound()) return false;
  start_ = behind_;
  ++number_;
  hasFailed_ = !item_.BinaryDataSet(list_, behind_) || behind_ <= start_;
  return !hasFailed_;
}

std::span<const std::uint8_t> ItemReader::Bytes() const noexcept {
  const auto first = static_cast<std::size_t>(start_);
  return View(list_).subspan(first, std::min(static_cast<std::size_t>(behind_), list_.size()) - first);
}

std::shared_ptr<AllItems> AllItems::StandIn(VnZEL10cmn::clsZelTransAct& booking) { return PutInto(booking); }

std::shared_ptr<AllItems> AllItems::StandIn(VnZEL10cmn::clsZelReport& report) { return PutInto(report); }

bool AllItems::BinaryDataSet(const ByteArray& Data, std::int32_t& Start) {
  list_ = ByteArray(View(Data).subspan(static_cast<std::size_t>(Start - Data.LBound())));
  ItemReader reader(list_);
  ByteArray written = ByteArray::WithBounds(0, kMostPerItem - 1);
  count_ = 0;
  writtenSize_ = 0;
  while (reader.Next()) {
    ++count_;
    std::int32_t length = 0;
    static_cast<void>(reader.Item().BinaryDataGet(written, length));
    writtenSize_ += length;
  }
  if (reader.HasFailed()) return false;
  Start = Data.UBound() + 1;
  return true;
}

bool AllItems::BinaryDataGet(ByteArray& Data, std::int32_t& Start) {
  // Enlarged once, the array is never held twice.
  Data.RedimPreserve(std::max(Data.UBound(), Start + writtenSize_ + kMostPerItem));
  ItemReader reader(list_);
  while (reader.Next()) {
    if (!reader.Item().BinaryDataGet(Data, Start)) return false;
  }
  return !reader.HasFailed();
}

bool AllItems::GetPrices(CurrencyArray& Prices, bool& IsThrdPrt) {
  std::fill(Prices.begin(), Prices.end(), Currency());
  IsThrdPrt = false;
  ItemReader reader(list_);
  while (reader.Next()) {
    for (std::int32_t vatClass = 0; vatClass <= Prices.UBound(); ++vatClass) {
      Prices[vatClass] += reader.Item().Price(vatClass + 1);
    }
  }
  return true;
}

bool SumItem::BinaryDataGet(ByteArray& Data, std::int32_t& Start) {
  VnZEL10cmn::clsZelItemCash item;
  item.Name("x");
  return item.BinaryDataGet(Data, Start);
}

std::vector<std::shared_ptr<SumItem>> SumItems(const ByteArray& list) {
  std::vector<std::shared_ptr<SumItem>> sums;
  for (const bool isThirdParty : {false, true, false, true}) {
    sums.push_back(std::make_shared<SumItem>());
    sums.back()->ThirdParty(isThirdParty);
  }
  ItemReader reader(list);
  while (reader.Next()) {
    for (std::int32_t number = 1; number <= 6; ++number) {
      const Currency price = reader.Item().Price(number);
      const std::size_t sign = price < Currency() ? 2 : 0;
      SumItem& sum = *sums[sign + (reader.Item().ThirdParty() ? 1 : 0)];
      sum.Price(number, sum.Price(number) + price);
    }
  }
  return sums;
}

void AllItems::WriteLines(Sink& out) const {
  ItemReader reader(list_);
  while (reader.Next()) {
    std::string text = UnixLines(reader.Item().ToString()) + "\n";
    for (std::string_view rest = text; !rest.empty();) {
      const std::size_t end = rest.find('\n');
      out.Write("    " + OneLine(rest.substr(0, end)) + "\n");
      rest.remove_prefix(end + 1);
    }
  }
}

}  // namespace zel
