// Loops over the rate sets of a VAT list that changes meanwhile.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::clsZelVatItem;
using test::clsZelVatList;
using test::Date;
using Rates = std::shared_ptr<clsZelVatItem>;
using AllRates = std::vector<Rates>;

constexpr std::size_t kSizes[] = {1, 2, 17, 18, 100, 1000};

/// Rates of the day that lies so many days behind the first one of 2000.
Rates RatesOfDay(std::size_t day) {
  const Date date(36526.0 + static_cast<double>(day));
  auto rates = std::make_shared<clsZelVatItem>();
  EXPECT_TRUE(rates->SetDates(date, date));
  return rates;
}

class IteratingRates : public testing::Test {
 protected:
  void Fill(std::size_t size) {
    all_.clear();
    list_ = std::make_unique<clsZelVatList>();
    list_->Clear();
    for (std::size_t i = 0; i < size; ++i) {
      all_.push_back(RatesOfDay(i));
      ASSERT_TRUE(list_->AddItem(all_.back()));
    }
    next_ = size;
  }

  void Add() { EXPECT_TRUE(list_->AddItem(RatesOfDay(next_++))); }

  template <class Visit>
  AllRates Loop(Visit&& visit) {
    AllRates visited;
    const std::size_t most = 4 * all_.size() + 10;
    for (auto& rates : *list_) {
      visited.push_back(rates);
      if (visited.size() > most) {
        ADD_FAILURE() << "the loop does not end";
        break;
      }
      visit(visited.size() - 1);
    }
    return visited;
  }

  std::unique_ptr<clsZelVatList> list_;
  AllRates all_;
  std::size_t next_ = 0;
};

TEST_F(IteratingRates, VisitsEverySetOnceInTheOrderOfTheList) {
  for (const std::size_t size : kSizes) {
    Fill(size);
    EXPECT_EQ(Loop([](std::size_t) {}), all_) << size;
  }
}

TEST_F(IteratingRates, OfANewListVisitsItsTwoSets) {
  clsZelVatList list;
  AllRates visited;
  for (const auto& rates : list) {
    visited.push_back(rates);
  }
  EXPECT_EQ(visited, (AllRates{list.VatItem(1), list.VatItem(2)}));
}

TEST_F(IteratingRates, AndAddingSetsVisitsThoseFromBeforeOnceAndEnds) {
  for (const std::size_t size : kSizes) {
    Fill(size);
    AllRates visited = Loop([&](std::size_t) {
      Add();
      Add();
    });
    ASSERT_GE(visited.size(), size);
    visited.resize(size);
    EXPECT_EQ(visited, all_) << size;
    EXPECT_GE(list_->Count(), static_cast<std::int32_t>(3 * size));
  }
}

TEST_F(IteratingRates, AndClearingTheListEndsTheLoop) {
  for (const std::size_t size : kSizes) {
    Fill(size);
    const std::size_t middle = size / 2;
    EXPECT_EQ(Loop([&](std::size_t number) {
                if (number == middle) {
                  list_->Clear();
                }
              }),
              AllRates(all_.begin(), all_.begin() + static_cast<std::ptrdiff_t>(middle) + 1))
        << size;
  }
}

TEST_F(IteratingRates, AndReplacingAllSetsEnds) {
  for (const std::size_t size : kSizes) {
    Fill(size);
    const AllRates visited = Loop([&](std::size_t number) {
      if (number == 0) {
        list_->Clear();
        for (std::size_t i = 0; i < size; ++i) {
          Add();
        }
      }
    });
    EXPECT_EQ(visited.front(), all_.front());
    EXPECT_EQ(list_->Count(), static_cast<std::int32_t>(size));
  }
}

TEST_F(IteratingRates, WhileTheListEndsIsLeftInPeace) {
  for (const std::size_t size : kSizes) {
    Fill(size);
    AllRates visited;
    for (auto& rates : *list_) {
      list_.reset();
      visited.push_back(rates);
    }
    EXPECT_EQ(visited, AllRates{all_.front()}) << size;
  }
}

TEST_F(IteratingRates, InLoopsWithinLoopsVisitsAllInEach) {
  Fill(18);
  std::size_t inner = 0;
  EXPECT_EQ(Loop([&](std::size_t number) {
              AllRates visited;
              for (const auto& rates : *list_) {
                visited.push_back(rates);
                if (visited.size() == 5 && number % 4 == 0) {
                  Add();
                }
              }
              EXPECT_TRUE(std::equal(all_.begin(), all_.end(), visited.begin()));
              inner += 1;
            }).size(),
            18U);
  EXPECT_EQ(inner, 18U);
}

TEST_F(IteratingRates, ByAlgorithmsOfTheStandardLibrary) {
  Fill(40);
  const auto begin = list_->begin();
  const auto end = list_->end();
  EXPECT_EQ(std::vector(begin, end), all_);
  EXPECT_EQ(*std::find(begin, end, all_[7]), all_[7]);
  EXPECT_EQ(std::count_if(begin, end, [](const Rates& rates) { return rates->VATrate(1) == 19; }), 40);
  EXPECT_EQ(std::distance(begin, end), 40);
  EXPECT_EQ(*std::next(begin, 39), all_[39]);
}

TEST_F(IteratingRates, ByCopiesOfAnIteratorGoesOnFromWhereEachStands) {
  Fill(3);
  auto first = list_->begin();
  auto second = first++;
  EXPECT_EQ(*first, all_[1]);
  EXPECT_EQ(*second, all_[0]);
  for (int i = 0; i < 100; ++i) {
    Add();
  }
  ++second;
  EXPECT_TRUE(first == second);
  ++second;
  EXPECT_EQ(*second, all_[2]);
  list_->Clear();
  EXPECT_EQ(*second, all_[2]);
  ++first;
  EXPECT_TRUE(first == list_->end());
}

}  // namespace
