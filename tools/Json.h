#pragma once

#include <cstdint>
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
  std::vector<JsonValue> elements{};  ///< of an array, or the values of an object's members
};

/// Throws `Failure` (NotRight) for everything but one JSON value in UTF-8, for a member that occurs twice,
/// and for nesting that no sale has.
JsonValue ParseJson(std::string_view text);

/// What a value is called in messages: "a string", "an object" and so on.
std::string_view KindName(JsonValue::Kind kind);

}  // namespace zel
