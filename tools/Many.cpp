#include "tools/Many.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <thread>
#include <utility>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tools/Common.h"
#include "tools/Json.h"
#include "tools/Lines.h"
#include "tools/Pipeline.h"

namespace zel {

namespace fs = std::filesystem;

namespace {

unsigned Threads(const InputOptions& options) {
  return options.jobs > 0 ? options.jobs : std::max(1U, std::thread::hardware_concurrency());
}

/// JSON lets the control characters from U+007F on stand as they are.
std::string EscapeControls(std::string_view json) {
  std::string text;
  text.reserve(json.size());
  while (!json.empty()) {
    const std::string_view character = json.substr(0, CharacterLength(json));
    if (character.front() == '\n' || !IsControl(character)) {
      text += character;
    } else {
      std::array<char, 8> escaped{};
      std::snprintf(escaped.data(), escaped.size(), "\\u%04x", static_cast<unsigned char>(character.back()));
      text += escaped.data();
    }
    json.remove_prefix(character.size());
  }
  return text;
}

/// The bytes are whatever a document holds; only UTF-8 may stand in JSON.
std::string ToText(const OrderedJson& json, int indent) {
  return EscapeControls(json.dump(indent, ' ', false, OrderedJson::error_handler_t::replace)) + "\n";
}

/// What became of an input.
struct Outcome {
  std::string title;
  std::string text;
  std::string fault;
  ExitStatus status = ExitStatus::Ok;
};

Outcome ReadOne(const fs::path& file, const InputOptions& options, const Reader& reader, bool ofMany) {
  Outcome outcome;
  outcome.title = file.string();
  try {
    const Input input{.name = file.string(), .content = ReadFile(file), .data = reader.data};
    const Answer answer = About(file, [&] { return reader.answer(input, options.json); });
    if (options.json) {
      OrderedJson json = {{"file", file.string()}};
      json.update(answer.json);
      outcome.text = ToText(json, ofMany ? -1 : 2);
    } else {
      outcome.text = answer.text;
    }
    if (!answer.fault.empty()) {
      About(file, [&answer] { throw Failure(ExitStatus::NotRight, answer.fault); });
    }
  } catch (const Failure& failure) {
    outcome.fault = failure.what();
    outcome.status = failure.Status();
  }
  return outcome;
}

/// How many files ended how.
class Tally {
 public:
  void Add(ExitStatus status) {
    ++count_;
    worst_ = std::max(worst_, status);
    if (status == ExitStatus::NotRight) ++notRight_;
    if (status == ExitStatus::Trouble) ++notRead_;
  }

  [[nodiscard]] std::size_t Count() const { return count_; }
  [[nodiscard]] ExitStatus Worst() const { return worst_; }

  [[nodiscard]] std::string ToText() const {
    std::string text = std::to_string(count_) + " documents";
    if (notRight_ + notRead_ == 0) text += ", all right";
    if (notRight_ > 0) text += ", " + std::to_string(notRight_) + " not right";
    if (notRead_ > 0) text += ", " + std::to_string(notRead_) + " can't be read";
    return text;
  }

 private:
  std::size_t count_ = 0;
  std::size_t notRight_ = 0;
  std::size_t notRead_ = 0;
  ExitStatus worst_ = ExitStatus::Ok;
};

/// The files of the command line, then those of the list.
class Files {
 public:
  explicit Files(const InputOptions& options) : options_(options) {
    if (options.filesFrom) list_.emplace(*options.filesFrom);
  }

  std::optional<fs::path> Next() {
    if (next_ < options_.files.size()) return options_.files[next_++];
    while (list_) {
      const std::optional<LineReader::Line> line = list_->Next();
      if (!line) break;
      if (!line->text.empty()) return fs::path(line->text);
    }
    return std::nullopt;
  }

 private:
  const InputOptions& options_;
  std::size_t next_ = 0;
  std::optional<LineReader> list_;
};

ExitStatus ReadFiles(const InputOptions& options, const Reader& reader) {
  const bool ofMany = options.files.size() > 1 || options.filesFrom;
  const unsigned threads = ofMany ? Threads(options) : 1;
  Files files(options);
  Tally tally;
  Progress progress("Reading", options.filesFrom ? 0 : options.files.size(), Progress::Kind::Bulk);
  RunPipeline(
      threads, [&files] { return files.Next(); },
      [&](const fs::path& file) { return ReadOne(file, options, reader, ofMany); },
      [&](const Outcome& outcome) {
        if (!outcome.text.empty()) {
          const bool hasTitle = ofMany && reader.titles && !options.json;
          const std::string gap = tally.Count() > 0 ? "\n" : "";
          Print((hasTitle ? gap + "==> " + OneLine(outcome.title) + " <==\n" : "") + outcome.text);
        }
        if (!outcome.fault.empty()) {
          progress.Hide();
          Say(outcome.fault);
        }
        tally.Add(outcome.status);
        progress.Step(outcome.title);
      });
  progress.Hide();
  if (ofMany) Say(tally.ToText());
  return tally.Worst();
}

[[noreturn]] void Refuse(const std::string& reason) { throw Failure(ExitStatus::NotRight, reason); }

/// What stands in a line.
struct LineContent {
  std::optional<std::string> file;
  std::optional<std::string> document;
  std::optional<std::string> data;
};

/// A mark of the caller's own: a text or a number that comes back as it was.
OrderedJson TakeMark(const JsonValue& value) {
  if (value.kind == JsonValue::Kind::String) return value.text;
  if (value.kind != JsonValue::Kind::Number) {
    Refuse("\"id\" is " + std::string(KindName(value.kind)) + ", not a text or number");
  }
  OrderedJson number = OrderedJson::parse(value.text);
  if (number.dump() != value.text) Refuse("\"id\" can't be kept exactly: write it as a text");
  return number;
}

std::string TakeText(const JsonValue& value, const std::string& name) {
  if (value.kind != JsonValue::Kind::String) {
    Refuse("\"" + name + "\" is " + std::string(KindName(value.kind)) + ", not a text");
  }
  return value.text;
}

/// Fills the content and writes the mark to the answer, where there is one.
LineContent TakeLine(const std::string& line, const Reader& reader, OrderedJson& answer) {
  const JsonValue value = ParseJson(line);
  if (value.kind != JsonValue::Kind::Object) Refuse("the line is " + std::string(KindName(value.kind)));
  LineContent content;
  for (std::size_t i = 0; i < value.names.size(); ++i) {
    const std::string& name = value.names[i];
    const JsonValue& element = value.elements[i];
    if (name == "id") {
      answer = {{"id", TakeMark(element)}};
    } else if (name == "file") {
      content.file = TakeText(element, name);
    } else if (name == "document") {
      content.document = TakeText(element, name);
    } else if (name == "data" && reader.takesData) {
      content.data = TakeText(element, name);
    } else {
      Refuse("there is no member \"" + Shown(name) + "\" in a line");
    }
  }
  return content;
}

std::string FromBase64(const std::string& text) {
  if (text.empty()) return {};
  VnZEL10cmn::clsHelper01 helper;
  VnZEL10cmn::ByteArray bytes;
  if (!helper.FromBase64String(text, bytes)) Refuse("\"data\": " + Describe(helper.ErrorObject()));
  return {bytes.begin(), bytes.end()};
}

std::string AnswerLine(std::size_t number, const LineReader::Line& line, const Reader& reader) {
  OrderedJson json = {{"line", number}};
  try {
    if (line.tooLong) {
      Refuse("the line is longer than " + std::to_string(LineReader::kMaxLine / 1024 / 1024) + " MiB");
    }
    const LineContent content = TakeLine(line.text, reader, json);
    if (content.file.has_value() == content.document.has_value()) {
      Refuse("a line has either a \"document\" or a \"file\"");
    }
    Input input;
    if (content.data) input.data = FromBase64(*content.data);
    if (content.file) {
      json["file"] = *content.file;
      if (*content.file == kStandardInput) Refuse("a line can't name standard input");
      input.name = *content.file;
      input.content = ReadFile(*content.file);
    } else {
      input.content = *content.document;
    }
    json.update(reader.answer(input, true).json);
  } catch (const Failure& failure) {
    json["error"] = failure.what();
  }
  return ToText(json, -1);
}

ExitStatus ReadLines(const InputOptions& options, const Reader& reader) {
  const std::vector<fs::path> standardInput = {kStandardInput};
  for (const fs::path& file : options.files.empty() ? standardInput : options.files) {
    LineReader lines(file);
    std::size_t count = 0;
    Progress progress("Reading", 0, Progress::Kind::Bulk);
    RunPipeline(
        Threads(options),
        [&]() -> std::optional<std::pair<std::size_t, LineReader::Line>> {
          std::optional<LineReader::Line> line = lines.Next();
          if (!line) return std::nullopt;
          return std::pair(++count, std::move(*line));
        },
        [&reader](const auto& line) { return AnswerLine(line.first, line.second, reader); },
        [&progress](const std::string& answer) {
          Print(answer);
          progress.Step({});
        });
  }
  return ExitStatus::Ok;
}

}  // namespace

ExitStatus ReadAll(const InputOptions& options, const Reader& reader) {
  return options.lines ? ReadLines(options, reader) : ReadFiles(options, reader);
}

}  // namespace zel
