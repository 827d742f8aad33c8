// Loops over items while anything is done to their list, drawn at random, against a plain list.

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::clsZelItemCash;
using test::clsZelItemList;
using test::ItemsOf;
using test::IVnZelItem;
using test::Scripted;
using Item = std::shared_ptr<IVnZelItem>;
using Items = std::vector<Item>;

/// A list, a plain one that must hold the same, and what went out of it or came into it since a loop began.
class World {
 public:
  World() {
    for (int count = *rc::gen::inRange(0, 70); count > 0; --count) {
      Add();
    }
  }

  void Loop(int depth) {
    const Items before = plain_;
    // The changes of loops within this one count as well.
    const std::size_t since = removed_.size();
    Items visited;
    std::size_t steps = 0;
    for (auto& item : list_) {
      RC_ASSERT(++steps <= 2000U);
      RC_ASSERT(Holds(item));
      visited.push_back(item);
      for (int actions = *rc::gen::weightedElement<int>({{6, 0}, {5, 1}, {2, 3}, {1, 20}}); actions > 0;
           --actions) {
        Act(item, depth);
      }
    }
    Items expected = before;
    std::erase_if(expected, [&](const Item& item) {
      return std::find(removed_.begin() + static_cast<std::ptrdiff_t>(since), removed_.end(), item) !=
             removed_.end();
    });
    // Of those that were there throughout each is visited once, in order.
    Items throughout;
    std::copy_if(visited.begin(), visited.end(), std::back_inserter(throughout), [&](const Item& item) {
      return std::find(expected.begin(), expected.end(), item) != expected.end();
    });
    RC_ASSERT(throughout == expected);
    RC_ASSERT(ItemsOf(list_) == plain_);
  }

 private:
  enum class Action {
    Add,
    AddAgain,
    RemoveThis,
    RemoveBehind,
    RemoveBefore,
    RemoveAny,
    RemoveAll,
    Clear,
    Loop
  };

  bool Holds(const Item& item) const { return std::find(plain_.begin(), plain_.end(), item) != plain_.end(); }

  void Add() {
    const bool isHosts = *rc::gen::arbitrary<bool>();
    Put(isHosts ? Item(Scripted("HOST-" + std::to_string(++number_))) : std::make_shared<clsZelItemCash>());
  }

  void Put(const Item& item) {
    RC_ASSERT(list_.AddItem(item));
    plain_.push_back(item);
  }

  void Remove(std::size_t position) {
    if (position >= plain_.size()) {
      return;
    }
    const Item item = plain_[position];
    const auto index = static_cast<std::int32_t>(position) + 1;
    switch (*rc::gen::inRange(0, 3)) {
      case 0: RC_ASSERT(list_.RemoveItem(item)); break;
      case 1: RC_ASSERT(list_.RemoveItem(nullptr, item->InstanceID())); break;
      default: RC_ASSERT(list_.RemoveItem(nullptr, {}, index)); break;
    }
    plain_.erase(plain_.begin() + static_cast<std::ptrdiff_t>(position));
    removed_.push_back(item);
  }

  void Act(const Item& item, int depth) {
    const auto here =
        static_cast<std::size_t>(std::find(plain_.begin(), plain_.end(), item) - plain_.begin());
    switch (*rc::gen::weightedElement<Action>({{6, Action::Add},
                                               {3, Action::AddAgain},
                                               {6, Action::RemoveThis},
                                               {4, Action::RemoveBehind},
                                               {4, Action::RemoveBefore},
                                               {6, Action::RemoveAny},
                                               {1, Action::RemoveAll},
                                               {1, Action::Clear},
                                               {2, Action::Loop}})) {
      case Action::Add:
        if (number_ < 3000) {
          Add();
        }
        break;
      case Action::AddAgain:
        if (!removed_.empty()) {
          const Item again = removed_[static_cast<std::size_t>(*rc::gen::inRange(0, 100)) % removed_.size()];
          if (!Holds(again)) {
            Put(again);
          }
        }
        break;
      case Action::RemoveThis: Remove(here); break;
      case Action::RemoveBehind: Remove(here + 1); break;
      case Action::RemoveBefore: Remove(here - 1); break;
      case Action::RemoveAny:
        Remove(plain_.empty() ? 0 : static_cast<std::size_t>(*rc::gen::inRange(0, 1000)) % plain_.size());
        break;
      case Action::RemoveAll:
        while (!plain_.empty()) {
          Remove(plain_.size() / 2);
        }
        break;
      case Action::Clear:
        RC_ASSERT(list_.Clear());
        removed_.insert(removed_.end(), plain_.begin(), plain_.end());
        plain_.clear();
        break;
      case Action::Loop:
        if (depth > 0) {
          Loop(depth - 1);
        }
        break;
    }
  }

  clsZelItemList list_;
  Items plain_;
  Items removed_;
  int number_ = 0;
};

RC_GTEST_PROP(IteratingProperties, AnItemThatIsThereThroughoutIsVisitedExactlyOnce, ()) { World().Loop(1); }

}  // namespace
