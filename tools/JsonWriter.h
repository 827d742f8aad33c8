#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/Sink.h"

namespace zel {

/// Writes one JSON value as it comes, without holding it.
///
/// Whatever bytes a text has, it ends up as JSON: what is no well-formed UTF-8 becomes U+FFFD, and control characters,
/// also those from U+007F on, are escaped.
class JsonWriter {
 public:
  enum class Layout : std::uint8_t {
    Compact,   ///< all on one line
    Indented,  ///< a line per value, two blanks per level
  };

  JsonWriter(Sink& sink, Layout layout) : sink_(sink), layout_(layout) {}

  void BeginObject() { Open('{'); }
  void EndObject() { Close('}'); }
  void BeginArray() { Open('['); }
  void EndArray() { Close(']'); }

  /// The name of the member whose value comes next.
  void Key(std::string_view name);

  void String(std::string_view text);
  void Bool(bool value) { Plain(value ? "true" : "false"); }
  void Null() { Plain("null"); }
  template <std::integral Integer>
  void Number(Integer value) {
    Plain(std::to_string(value));
  }
  /// A number whose digits are those of a JSON number.
  void Digits(std::string_view digits) { Plain(digits); }

  // Members of an object in one call.
  void Member(std::string_view name, std::string_view text) {
    Key(name);
    String(text);
  }
  template <std::integral Value>
  void Member(std::string_view name, Value value) {
    Key(name);
    if constexpr (std::same_as<Value, bool>) {
      Bool(value);
    } else {
      Number(value);
    }
  }

  /// A string in pieces, none of which cuts a character in two.
  void BeginString();
  void AddToString(std::string_view piece) { Escape(piece); }
  void EndString();

  /// Ends a string, arrays and objects that are open, but for the outermost object: what has failed half way is JSON
  /// all the same, and can have one more member.
  void CloseAll();

 private:
  struct Level {
    char closing;
    bool isEmpty;
  };

  void Open(char opening);
  void Close(char closing);
  void Plain(std::string_view text);
  /// What stands between the value before and this one.
  void BeginValue();
  void NewLine();
  void Escape(std::string_view text);

  Sink& sink_;
  Layout layout_;
  std::vector<Level> open_;
  bool hasKey_ = false;  ///< the value of a member is next
  bool inString_ = false;
};

}  // namespace zel
