#pragma once

// What bookings, reports and data records exchange with their host, as steps of a path.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Path.h"
#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tests/support/Hex.h"

namespace test {

using Numbers = std::vector<std::int32_t>;

/// What the steps hand over; the rest of a world is the objects, each in a place that holds one or none.
struct Exchanged {
  std::shared_ptr<VnZEL10cmn::clsVnLogFile> log;
  VnZEL10cmn::ByteArray data;
  std::int32_t length = 0;
  std::string text;
  std::string document;

  static std::string Shown(const VnZEL10cmn::clsZelItemCash& item) {
    std::string shown = std::to_string(item.Quantity().Scaled()) + " " + item.Unit() + " " + item.Name();
    for (std::int32_t number = 1; number <= 6; ++number) {
      shown += " " + std::to_string(item.Price(number).Scaled());
    }
    return shown + "\n";
  }
};

/// A call on the object in a place, which `World::Shown` shows.
template <class World, class Holder, class Run>
Step<World> On(Holder World::*place, std::string_view operation, Run run, Numbers numbers = {}) {
  return {.operation = operation,
          .run = [=](World& world) { return run(world, *(world.*place)); },
          .object = [=](World& world) -> VnZEL10cmn::VnObject* { return &*(world.*place); },
          .result = [=](World& world) { return World::Shown(*(world.*place)); },
          .numbers = std::move(numbers)};
}

/// A step that changes nothing of its result when it fails.
template <class World>
Step<World> Keeping(Step<World> step) {
  step.kept = step.result;
  return step;
}

/// A text that a call returns is its result when it isn't empty and no error stands beside it.
template <class World, class Holder, class Text>
Step<World> TextOf(Holder World::*place, std::string_view operation, Text text, Numbers numbers) {
  Step<World> step = On(
      place, operation,
      [=](World& world, auto& object) {
        world.text = text(object);
        return !world.text.empty() && !object.HasError();
      },
      std::move(numbers));
  step.result = [](World& world) { return world.text; };
  return step;
}

template <class World, class Holder>
Step<World> ToText(Holder World::*place, Numbers numbers) {
  return TextOf(
      place, "ToString", [](auto& object) { return object.ToString(); }, std::move(numbers));
}

/// Bytes into an array whose last index is `upper`; the arguments stand before the length.
template <class World, class Holder, class... Arguments>
Step<World> Get(Holder World::*place, VnZEL10cmn::ZELSerialType type, std::int32_t start, std::int32_t upper,
                Numbers numbers, Arguments... arguments) {
  Step<World> step = On(
      place, "BinaryDataGet",
      [=](World& world, auto& object) {
        return object.BinaryDataGet(type, world.data, start, arguments..., &world.length);
      },
      std::move(numbers));
  step.prepare = [=](World& world) { world.data.Redim(0, upper); };
  step.kept = [](World& world) { return std::to_string(world.data.LBound()) + ": " + ToHex(world.data); };
  step.result = [=, kept = step.kept](World& world) {
    auto& object = *(world.*place);
    return kept(world) + "\n" + (object.HasError() ? "" : std::to_string(world.length)) +
           World::Shown(object);
  };
  return step;
}

template <class World, class Holder>
Step<World> Set(Holder World::*place, VnZEL10cmn::ZELSerialType type, const VnZEL10cmn::ByteArray& data,
                std::int32_t start, Numbers numbers) {
  return On(
      place, "BinaryDataSet", [=](World&, auto& object) { return object.BinaryDataSet(type, data, start); },
      std::move(numbers));
}

/// The object as a document.
template <class World, class Holder>
Step<World> Export(Holder World::*place) {
  Step<World> step =
      On(place, "XmlHandler",
         [](World& world, auto& object) { return object.XmlHandler(world.document, true); }, {9301});
  step.prepare = [](World& world) { world.document = "what stood there before"; };
  step.result = [](World& world) { return world.document; };
  return Keeping(std::move(step));
}

/// The document that was exported last, with a change.
template <class World, class Holder>
Step<World> Import(
    Holder World::*place, std::function<void(std::string&)> change = [](std::string&) {}) {
  Step<World> step =
      On(place, "XmlHandler", [](World& world, auto& object) { return object.XmlHandler(world.text, false); },
         {9301, 9302});
  step.prepare = [change = std::move(change)](World& world) {
    world.text = world.document;
    change(world.text);
  };
  return step;
}

}  // namespace test
