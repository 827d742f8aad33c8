#include "tools/Json.h"

#include <algorithm>
#include <nlohmann/json.hpp>

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
  JsonValue TakeRoot() { return std::move(root_); }

  bool null() override { return Add({}); }
  bool boolean(bool value) override { return Add({.kind = Kind::Boolean, .boolean = value}); }
  bool number_integer(number_integer_t value) override { return AddNumber(std::to_string(value)); }
  bool number_unsigned(number_unsigned_t value) override { return AddNumber(std::to_string(value)); }
  bool number_float(number_float_t /*value*/, const string_t& digits) override { return AddNumber(digits); }
  bool string(string_t& value) override { return Add({.kind = Kind::String, .text = value}); }
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*size*/) override { return Open(Kind::Object); }
  bool end_object() override { return Shut(); }
  bool start_array(std::size_t /*size*/) override { return Open(Kind::Array); }
  bool end_array() override { return Shut(); }

  bool key(string_t& name) override {
    std::vector<std::string>& names = open_.back()->names;
    if (std::find(names.begin(), names.end(), name) != names.end()) {
      Fail("the member \"" + Shown(name) + "\" occurs twice in one object");
    }
    if (names.size() == kMaxMembers)
      Fail("an object has more than " + std::to_string(kMaxMembers) + " members");
    names.push_back(name);
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
  bool AddNumber(const std::string& digits) { return Add({.kind = Kind::Number, .text = digits}); }

  bool Add(JsonValue value) {
    Place() = std::move(value);
    return true;
  }

  bool Open(Kind kind) {
    if (open_.size() == kMaxDepth) Fail("the values are nested too deeply");
    JsonValue& place = Place();
    place.kind = kind;
    open_.push_back(&place);  // stays where it is: what holds it grows again only after it is shut
    return true;
  }

  bool Shut() {
    open_.pop_back();
    return true;
  }

  JsonValue& Place() { return open_.empty() ? root_ : open_.back()->elements.emplace_back(); }

  JsonValue root_;
  std::vector<JsonValue*> open_;
};

}  // namespace

JsonValue ParseJson(std::string_view text) {
  Builder builder;
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
