// Loops over items whose list changes meanwhile.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::clsZelItemCash;
using test::clsZelItemList;
using test::clsZelReport;
using test::clsZelTransAct;
using test::ItemsOf;
using test::IVnZelItem;
using test::Scripted;
using Item = std::shared_ptr<IVnZelItem>;
using Items = std::vector<Item>;

constexpr std::size_t kSizes[] = {1, 2, 17, 18, 100, 1000};

/// Every third item is a host's own.
Item AnyItem(std::size_t number) {
  if (number % 3 == 2) {
    return Scripted("HOST-" + std::to_string(number));
  }
  return std::make_shared<clsZelItemCash>();
}

void Empty(clsZelItemList& list) { EXPECT_TRUE(list.Clear()); }
template <class Holder>
void Empty(Holder& holder) {
  EXPECT_TRUE(holder.ClearItems());
}

/// What has items, and its items as they were at first.
template <class Holder>
class Iterating : public testing::Test {
 protected:
  /// A new holder of so many new items.
  void Fill(std::size_t size) {
    all_.clear();
    holder_ = std::make_unique<Holder>();
    for (std::size_t i = 0; i < size; ++i) {
      all_.push_back(AnyItem(i));
      ASSERT_TRUE(holder_->AddItem(all_.back()));
    }
    next_ = size;
  }

  /// Items that no list has yet.
  Item New() { return AnyItem(next_++); }

  /// Goes through the items, telling each visit's number; a loop that does not end is ended here.
  template <class Visit>
  Items Loop(Visit&& visit) {
    Items visited;
    const std::size_t most = 4 * all_.size() + 10;
    for (auto& item : *holder_) {
      visited.push_back(item);
      if (visited.size() > most) {
        ADD_FAILURE() << "the loop does not end";
        break;
      }
      visit(item, visited.size() - 1);
    }
    return visited;
  }

  Item At(std::size_t position) { return holder_->ItemI(static_cast<std::int32_t>(position) + 1); }

  /// Where an item is in its list, counted from 0.
  std::size_t PositionOf(const Item& item) {
    const Items items = ItemsOf(*holder_);
    return static_cast<std::size_t>(std::find(items.begin(), items.end(), item) - items.begin());
  }

  std::unique_ptr<Holder> holder_;
  Items all_;

 private:
  std::size_t next_ = 0;
};

using Holders = testing::Types<clsZelItemList, clsZelTransAct, clsZelReport>;
TYPED_TEST_SUITE(Iterating, Holders);

TYPED_TEST(Iterating, VisitsEveryItemOnceInTheOrderOfTheList) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    EXPECT_EQ(this->Loop([](const Item&, std::size_t) {}), this->all_) << size;
  }
}

TYPED_TEST(Iterating, ThroughNoItemsVisitsNothing) {
  this->Fill(0);
  EXPECT_EQ(this->Loop([](const Item&, std::size_t) {}), Items());
  EXPECT_TRUE(this->holder_->begin() == this->holder_->end());
}

TYPED_TEST(Iterating, AndRemovingTheItemThatIsVisitedVisitsAll) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    EXPECT_EQ(this->Loop([&](auto& item, std::size_t) { EXPECT_TRUE(this->holder_->RemoveItem(item)); }),
              this->all_)
        << size;
    EXPECT_EQ(this->holder_->ItemCount(), 0);
  }
}

TYPED_TEST(Iterating, AndRemovingTheItemThatIsVisitedLeavesItInTheLoopsHand) {
  this->Fill(30);
  std::size_t number = 0;
  for (auto& item : *this->holder_) {
    EXPECT_TRUE(this->holder_->RemoveItem(item));
    EXPECT_EQ(item, this->all_[number]);
    this->all_[number++].reset();
    EXPECT_FALSE(item->InstanceID().empty()) << "nobody else holds it any more";
  }
  EXPECT_EQ(number, 30U);
}

TYPED_TEST(Iterating, AndRemovingEverySecondItemVisitsAll) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    EXPECT_EQ(this->Loop([&](auto& item, std::size_t number) {
      if (number % 2 == 1) {
        EXPECT_TRUE(this->holder_->RemoveItem(item));
      }
    }),
              this->all_)
        << size;
    EXPECT_EQ(this->holder_->ItemCount(), static_cast<std::int32_t>((size + 1) / 2));
  }
}

TYPED_TEST(Iterating, AndRemovingTheItemBehindSkipsIt) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    Items expected;
    for (std::size_t i = 0; i < size; i += 2) {
      expected.push_back(this->all_[i]);
    }
    EXPECT_EQ(this->Loop([&](const Item& item, std::size_t) {
      if (const Item behind = this->At(this->PositionOf(item) + 1)) {
        EXPECT_TRUE(this->holder_->RemoveItem(behind));
      }
    }),
              expected)
        << size;
    EXPECT_EQ(ItemsOf(*this->holder_), expected) << size;
  }
}

TYPED_TEST(Iterating, AndRemovingTheItemBeforeVisitsAll) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    EXPECT_EQ(this->Loop([&](const Item&, std::size_t number) {
      if (number > 0) {
        EXPECT_TRUE(this->holder_->RemoveItem(this->all_[number - 1]));
      }
    }),
              this->all_)
        << size;
    EXPECT_EQ(ItemsOf(*this->holder_), Items{this->all_.back()}) << size;
  }
}

TYPED_TEST(Iterating, AndRemovingAllItemsVisitsNoOther) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    EXPECT_EQ(this->Loop([&](const Item&, std::size_t) {
      while (this->holder_->ItemCount() > 0) {
        EXPECT_TRUE(this->holder_->RemoveItem(nullptr, {}, this->holder_->ItemCount()));
      }
    }),
              Items{this->all_.front()})
        << size;
  }
}

TYPED_TEST(Iterating, AndRemovingAllButTheLastVisitsTheLast) {
  this->Fill(100);
  EXPECT_EQ(this->Loop([&](const Item&, std::size_t number) {
    for (std::size_t i = 0; number == 0 && i < 99; ++i) {
      EXPECT_TRUE(this->holder_->RemoveItem(this->all_[i]));
    }
  }),
            (Items{this->all_.front(), this->all_.back()}));
}

TYPED_TEST(Iterating, AndClearingTheListEndsTheLoop) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    const std::size_t middle = size / 2;
    EXPECT_EQ(this->Loop([&](const Item&, std::size_t number) {
      if (number == middle) {
        Empty(*this->holder_);
      }
    }),
              Items(this->all_.begin(), this->all_.begin() + static_cast<std::ptrdiff_t>(middle) + 1))
        << size;
  }
}

TYPED_TEST(Iterating, AndAddingItemsVisitsThoseFromBeforeOnceAndEnds) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    Items visited = this->Loop([&](const Item&, std::size_t) {
      EXPECT_TRUE(this->holder_->AddItem(this->New()));
      EXPECT_TRUE(this->holder_->AddItem(this->New()));
    });
    ASSERT_GE(visited.size(), size);
    visited.resize(size);
    EXPECT_EQ(visited, this->all_) << size;
    EXPECT_GE(this->holder_->ItemCount(), static_cast<std::int32_t>(3 * size));
  }
}

TYPED_TEST(Iterating, AndMovingEveryItemToTheEndEnds) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    const Items visited = this->Loop([&](auto& item, std::size_t) {
      const Item kept = item;
      EXPECT_TRUE(this->holder_->RemoveItem(kept));
      EXPECT_TRUE(this->holder_->AddItem(kept));
    });
    ASSERT_GE(visited.size(), size);
    EXPECT_EQ(Items(visited.begin(), visited.begin() + static_cast<std::ptrdiff_t>(size)), this->all_)
        << size;
    EXPECT_EQ(this->holder_->ItemCount(), static_cast<std::int32_t>(size));
  }
}

TYPED_TEST(Iterating, AndReplacingAllItemsEnds) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    const Items visited = this->Loop([&](const Item&, std::size_t number) {
      if (number == 0) {
        Empty(*this->holder_);
        for (std::size_t i = 0; i < size; ++i) {
          EXPECT_TRUE(this->holder_->AddItem(this->New()));
        }
      }
    });
    EXPECT_EQ(visited.front(), this->all_.front());
    EXPECT_EQ(this->holder_->ItemCount(), static_cast<std::int32_t>(size));
  }
}

TYPED_TEST(Iterating, WhileTheListEndsIsLeftInPeace) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    Items visited;
    for (auto& item : *this->holder_) {
      this->holder_.reset();
      visited.push_back(item);
    }
    EXPECT_EQ(visited, Items{this->all_.front()}) << size;
  }
}

TYPED_TEST(Iterating, AnIteratorThatOutlivesTheListKeepsItsItem) {
  this->Fill(20);
  auto at = std::next(this->holder_->begin(), 5);
  auto copy = at;
  const Item expected = this->all_[5];
  this->all_.clear();
  this->holder_.reset();
  EXPECT_EQ(*at, expected);
  EXPECT_EQ((*copy)->InstanceID(), "HOST-5");
  ++at;
  at = copy;
  EXPECT_EQ(*at, expected);
}

TYPED_TEST(Iterating, InLoopsWithinLoopsVisitsAllInEach) {
  for (const std::size_t size : {std::size_t{2}, std::size_t{17}, std::size_t{40}}) {
    this->Fill(size);
    std::size_t inner = 0;
    const Items outer = this->Loop([&](auto& item, std::size_t number) {
      const Items present = ItemsOf(*this->holder_);
      Items visited;
      for (const auto& other : *this->holder_) {
        visited.push_back(other);
      }
      EXPECT_EQ(visited, present) << number;
      inner += visited.size();
      // The inner loop removes what the outer one stands at, and goes on.
      visited.clear();
      for (const auto& other : *this->holder_) {
        if (other == item) {
          EXPECT_TRUE(this->holder_->RemoveItem(other));
        }
        visited.push_back(other);
      }
      EXPECT_EQ(visited, present) << number;
    });
    EXPECT_EQ(outer, this->all_);
    EXPECT_EQ(inner, size * (size + 1) / 2);
    EXPECT_EQ(this->holder_->ItemCount(), 0);
  }
}

TYPED_TEST(Iterating, InEveryFormOfALoopIsTheSame) {
  this->Fill(25);
  const auto remove = [this](const Item& item) { EXPECT_TRUE(this->holder_->RemoveItem(item)); };
  Items visited;
  for (auto& item : *this->holder_) {
    visited.push_back(item);
  }
  for (const auto& item : *this->holder_) {
    visited.push_back(item);
  }
  for (auto&& item : *this->holder_) {
    visited.push_back(item);
  }
  for (auto item : *this->holder_) {
    visited.push_back(item);
  }
  for (const auto& item : std::as_const(*this->holder_)) {
    visited.push_back(item);
    remove(item);
  }
  Items expected;
  for (int i = 0; i < 5; ++i) {
    expected.insert(expected.end(), this->all_.begin(), this->all_.end());
  }
  EXPECT_EQ(visited, expected);
  EXPECT_EQ(this->holder_->ItemCount(), 0);
}

TYPED_TEST(Iterating, ByHandWithOneIteratorIsTheSame) {
  this->Fill(25);
  Items visited;
  for (auto at = this->holder_->begin(); at != this->holder_->end();) {
    auto here = at++;
    visited.push_back(*here);
    EXPECT_TRUE(this->holder_->RemoveItem(*here));
    EXPECT_NE((*here)->InstanceID(), "");
    EXPECT_NE(here->get()->InstanceID(), "");
  }
  EXPECT_EQ(visited, this->all_);
}

TYPED_TEST(Iterating, ByAlgorithmsOfTheStandardLibrary) {
  this->Fill(40);
  const auto isHost = [](const Item& item) { return item->InstanceID().starts_with("HOST"); };
  const auto begin = this->holder_->begin();
  const auto end = this->holder_->end();
  EXPECT_EQ(std::vector(begin, end), this->all_);
  EXPECT_EQ(std::count_if(begin, end, isHost), 13);
  EXPECT_EQ(*std::find_if(begin, end, isHost), this->all_[2]);
  EXPECT_TRUE(std::find_if(begin, end, [](const Item& item) { return !item; }) == end);
  EXPECT_EQ(std::distance(begin, end), 40);
  EXPECT_EQ(*std::next(begin, 7), this->all_[7]);
  EXPECT_TRUE(std::equal(begin, end, this->all_.begin(), this->all_.end()));
  Items hosts;
  std::copy_if(begin, end, std::back_inserter(hosts), isHost);
  EXPECT_EQ(hosts.size(), 13U);
  std::for_each(begin, end, [&](const Item& item) {
    if (isHost(item)) {
      EXPECT_TRUE(this->holder_->RemoveItem(item));
    }
  });
  EXPECT_EQ(this->holder_->ItemCount(), 27);
  EXPECT_TRUE(std::none_of(this->holder_->begin(), this->holder_->end(), isHost));
}

TYPED_TEST(Iterating, ByCopiesOfAnIteratorGoesOnFromWhereEachStands) {
  this->Fill(6);
  auto first = this->holder_->begin();
  auto second = first;
  ++second;
  EXPECT_FALSE(first == second);
  auto copy = second;
  EXPECT_TRUE(copy == second);
  EXPECT_TRUE(this->holder_->RemoveItem(this->all_[1]));
  EXPECT_TRUE(this->holder_->RemoveItem(this->all_[2]));
  ++copy;
  EXPECT_EQ(*copy, this->all_[3]);
  EXPECT_EQ(*second, this->all_[1]) << "what it stands at is still in its hand";
  ++second;
  EXPECT_EQ(*second, this->all_[3]);
  EXPECT_TRUE(copy == second);
  ++first;
  EXPECT_EQ(*first, this->all_[3]);
  EXPECT_TRUE(this->holder_->RemoveItem(this->all_[0]));
  first = copy;
  ++first;
  EXPECT_EQ(*first, this->all_[4]);
  EXPECT_TRUE(this->holder_->RemoveItem(this->all_[5]));
  ++first;
  EXPECT_TRUE(first == this->holder_->end());
}

TYPED_TEST(Iterating, FromTheLastItemThatWasRemovedIsTheEnd) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    auto at = std::next(this->holder_->begin(), static_cast<std::ptrdiff_t>(size) - 1);
    EXPECT_TRUE(this->holder_->RemoveItem(*at));
    ++at;
    EXPECT_TRUE(at == this->holder_->end()) << size;
  }
}

TYPED_TEST(Iterating, FromAnItemOfAListThatWasEmptiedEnds) {
  for (const std::size_t size : kSizes) {
    this->Fill(size);
    auto at = this->holder_->begin();
    Empty(*this->holder_);
    EXPECT_EQ(*at, this->all_.front());
    ++at;
    EXPECT_TRUE(at == this->holder_->end()) << size;
  }
}

TYPED_TEST(Iterating, FromAnItemOfAListThatWasEmptiedAndFilledAgainEnds) {
  this->Fill(20);
  auto at = std::next(this->holder_->begin(), 10);
  Empty(*this->holder_);
  Items later;
  for (int i = 0; i < 30; ++i) {
    later.push_back(this->New());
    ASSERT_TRUE(this->holder_->AddItem(later.back()));
  }
  int steps = 0;
  for (++at; at != this->holder_->end() && steps < 100; ++at) {
    EXPECT_NE(std::find(later.begin(), later.end(), *at), later.end());
    ++steps;
  }
  EXPECT_LE(steps, 30);
}

TYPED_TEST(Iterating, ManyTimesWhileTheListGrowsAndShrinksMissesNothing) {
  this->Fill(50);
  // One iterator goes on by one item every time that the list before and behind it has changed a lot.
  auto at = this->holder_->begin();
  for (std::size_t step = 0; step < 50; ++step) {
    ASSERT_TRUE(at != this->holder_->end());
    EXPECT_EQ(*at, this->all_[step]);
    Items added;
    for (int i = 0; i < 40; ++i) {
      added.push_back(this->New());
      ASSERT_TRUE(this->holder_->AddItem(added.back()));
    }
    for (const Item& item : added) {
      ASSERT_TRUE(this->holder_->RemoveItem(item));
    }
    if (step >= 3 && step % 2 == 1) {
      ASSERT_TRUE(this->holder_->RemoveItem(this->all_[step - 3]));
    }
    ++at;
  }
  EXPECT_TRUE(at == this->holder_->end());
}

}  // namespace
