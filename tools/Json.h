#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zel {

/// A JSON value as it was written: numbers are kept as text, so that no digit gets lost in a double.
struct JsonValue {
  enum class Kind : std::uint8_t { Null, Boolean, Number, String, Array, Object };

  Kind kind = Kind::Null;
  bool boolean = false;
  std::string text{};                 ///< of a string, or the digits of a number
  std::vector<std::string> names{};   ///< of an object's members
  std::vector<JsonValue> elements{};  ///< the values of an object's members
};

/// Gets the elements of a list one by one, of which nobody keeps all.
struct JsonList {
  std::string_view name;                                             ///< of the outermost object's member
  std::function<void(std::size_t index, JsonValue&& value)> take{};  ///< index from 0
};

/// Reads one JSON value, of which only what its readers look at is kept: the members of the outermost object, and, of
/// the elements of `list`, their members and the members of these. Of other lists and objects only the kind is kept, so
/// that no text takes much more memory than it is long.
///
/// Throws `Failure` (NotRight) for everything but one JSON value in UTF-8, for a member that occurs twice, and for
/// nesting that no sale has.
JsonValue ParseJson(std::string_view text, const JsonList& list = {});

/// What a value is called in messages: "a string", "an object" and so on.
std::string_view KindName(JsonValue::Kind kind);

}  // namespace zel
