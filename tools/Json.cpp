#include "tools/Json.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "tools/ExitStatus.h"
#include "tools/Text.h"

namespace zel {

namespace {

using Kind = JsonValue::Kind;

constexpr std::size_t kMaxDepth = 16;
constexpr std::size_t kMaxMembers = 64;

[[noreturn]] void Fail(const std::string& reason) { throw Failure(ExitStatus::NotRight, reason); }

/// Builds the value from what the parser finds.
class Builder : public nlohmann::json_sax<nlohmann::json> {
 public:
  explicit Builder(const JsonList& list) : list_(list) {}

  JsonValue TakeRoot() { return std::move(root_); }

  bool null() override { return Add({}); }
  bool boolean(bool value) override { return Add({.kind = Kind::Boolean, .boolean = value}); }
  bool number_integer(number_integer_t value) override { return AddNumber(std::to_string(value)); }
  bool number_unsigned(number_unsigned_t value) override { return AddNumber(std::to_string(value)); }
  bool number_float(number_float_t /*value*/, const string_t& digits) override { return AddNumber(digits); }
  bool string(string_t& value) override { return Add({.kind = Kind::String, .text = std::move(value)}); }
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*size*/) override { return Open(Kind::Object); }
  bool end_object() override { return Shut(); }
  bool start_array(std::size_t /*size*/) override { return Open(Kind::Array); }
  bool end_array() override { return Shut(); }

  bool key(string_t& name) override {
    Level& level = open_.back();
    if (std::find(level.names.begin(), level.names.end(), name) != level.names.end()) {
      Fail("the member \"" + Shown(name) + "\" occurs twice in one object");
    }
    if (level.names.size() == kMaxMembers)
      Fail("an object has more than " + std::to_string(kMaxMembers) + " members");
    if (level.value != nullptr) level.value->names.push_back(name);
    level.names.push_back(std::move(name));
    return true;
  }

  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const nlohmann::json::exception& error) override {
    // Without the parser's own number in front, and without the bytes read last, which may be anything.
    std::string text = error.what();
    if (const std::size_t bracket = text.find("] "); bracket != std::string::npos) text.erase(0, bracket + 2);
    Fail("no valid JSON: " + Shown(std::string_view(text).substr(0, text.find("; last read:"))));
  }

 private:
  /// An object or array that is open.
  struct Level {
    JsonValue* value = nullptr;  ///< whose members are kept, if they are
    int depth = 0;               ///< how many levels of members of members are kept, too
    bool isList = false;         ///< its elements are handed over
    bool isElement = false;      ///< it is one of them
    std::size_t count = 0;       ///< elements so far
    std::vector<std::string> names{};
  };

  /// What is kept of the members of an element's members.
  static constexpr int kElementDepth = 1;

  bool AddNumber(const std::string& digits) { return Add({.kind = Kind::Number, .text = digits}); }

  /// Where the next value belongs; none where it isn't kept.
  JsonValue* Place() {
    if (open_.empty()) return &root_;
    Level& level = open_.back();
    if (level.isList) return &element_;
    return level.value == nullptr ? nullptr : &level.value->elements.emplace_back();
  }

  bool Add(JsonValue value) {
    JsonValue* const place = Place();
    if (place != nullptr) *place = std::move(value);
    if (!open_.empty() && open_.back().isList) HandOver(open_.back());
    return true;
  }

  bool Open(Kind kind) {
    if (open_.size() == kMaxDepth) Fail("the values are nested too deeply");
    Level level;
    JsonValue* const place = Place();
    if (place != nullptr) place->kind = kind;
    if (kind == Kind::Object) {
      // What is kept stays where it is: what holds it grows again only after it is shut.
      level.isElement = !open_.empty() && open_.back().isList;
      level.depth = level.isElement ? kElementDepth : open_.empty() ? 0 : open_.back().depth - 1;
      if (level.depth >= 0) level.value = place;
    } else {
      level.depth = -1;
      level.isList = open_.size() == 1 && list_.take && !open_.back().names.empty() &&
                     open_.back().names.back() == list_.name;
      level.isElement = !open_.empty() && open_.back().isList;
    }
    open_.push_back(std::move(level));
    return true;
  }

  bool Shut() {
    const bool isElement = open_.back().isElement;
    open_.pop_back();
    if (isElement) HandOver(open_.back());
    return true;
  }

  void HandOver(Level& list) { list_.take(list.count++, std::exchange(element_, {})); }

  const JsonList& list_;
  JsonValue root_;
  JsonValue element_;
  std::vector<Level> open_;
};

}  // namespace

JsonValue ParseJson(std::string_view text, const JsonList& list) {
  // The parser would take it for the end.
  if (const std::size_t nul = text.find('\0'); nul != std::string_view::npos) {
    Fail("no valid JSON: byte " + std::to_string(nul) + " is NUL");
  }
  Builder builder(list);
  nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
  return builder.TakeRoot();
}

std::string_view KindName(Kind kind) {
  switch (kind) {
    case Kind::Null: return "null";
    case Kind::Boolean: return "true or false";
    case Kind::Number: return "a number";
    case Kind::String: return "a string";
    case Kind::Array: return "a list";
    case Kind::Object: return "an object";
  }
  return "nothing";
}

}  // namespace zel
