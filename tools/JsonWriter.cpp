#include "tools/JsonWriter.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "tools/Text.h"

namespace zel {

namespace {

bool IsPlain(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte >= 0x20 && byte < 0x7F && character != '"' && character != '\\';
}

std::string Escaped(char character) {
  switch (character) {
    case '"': return "\\\"";
    case '\\': return "\\\\";
    case '\b': return "\\b";
    case '\f': return "\\f";
    case '\n': return "\\n";
    case '\r': return "\\r";
    case '\t': return "\\t";
    default: break;
  }
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "\\u%04x",
                static_cast<unsigned>(static_cast<unsigned char>(character)));
  return text.data();
}

}  // namespace

void JsonWriter::Key(std::string_view name) {
  String(name);
  sink_.Write(layout_ == Layout::Compact ? ":" : ": ");
  hasKey_ = true;
}

void JsonWriter::String(std::string_view text) {
  BeginString();
  AddToString(text);
  EndString();
}

void JsonWriter::BeginString() {
  BeginValue();
  sink_.Write("\"");
  inString_ = true;
}

void JsonWriter::EndString() {
  sink_.Write("\"");
  inString_ = false;
}

void JsonWriter::CloseAll() {
  if (inString_) EndString();
  if (hasKey_) Null();
  while (open_.size() > 1) {
    Close(open_.back().closing);
  }
}

void JsonWriter::Open(char opening) {
  BeginValue();
  sink_.Write({&opening, 1});
  open_.push_back({opening == '{' ? '}' : ']', true});
}

void JsonWriter::Close(char closing) {
  const bool isEmpty = open_.back().isEmpty;
  open_.pop_back();
  if (!isEmpty) NewLine();
  sink_.Write({&closing, 1});
}

void JsonWriter::Plain(std::string_view text) {
  BeginValue();
  sink_.Write(text);
}

void JsonWriter::BeginValue() {
  if (hasKey_) {
    hasKey_ = false;
  } else if (!open_.empty()) {
    if (!open_.back().isEmpty) sink_.Write(",");
    open_.back().isEmpty = false;
    NewLine();
  }
}

void JsonWriter::NewLine() {
  // No value is nested deeper than that.
  constexpr std::string_view kBlanks = "                                                                ";
  if (layout_ == Layout::Compact) return;
  sink_.Write("\n");
  sink_.Write(kBlanks.substr(0, std::min(2 * open_.size(), kBlanks.size())));
}

void JsonWriter::Escape(std::string_view text) {
  while (!text.empty()) {
    const auto* const end = std::find_if_not(text.begin(), text.end(), IsPlain);
    sink_.Write({text.begin(), static_cast<std::size_t>(end - text.begin())});
    text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
    if (text.empty()) return;
    const auto [bytes, isWellFormed] = FirstCharacter(text);
    if (!isWellFormed) {
      sink_.Write("\xEF\xBF\xBD");
    } else if (bytes.size() == 1 || IsControl(bytes)) {
      sink_.Write(Escaped(bytes.back()));
    } else {
      sink_.Write(bytes);
    }
    text.remove_prefix(bytes.size());
  }
}

}  // namespace zel
