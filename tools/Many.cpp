#include "tools/Many.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <new>
#include <nlohmann/json.hpp>
#include <string_view>
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

constexpr std::string_view kNoMemory = "there is not enough memory";

/// As long as a path can be.
constexpr std::size_t kMostNameBytes = 4096;

/// A document of the largest size has room in a line, whatever of it is escaped.
constexpr std::size_t kMostLineBytes = 2 * kMaxFileSize;

unsigned Threads(const InputOptions& options) {
  return options.jobs > 0 ? options.jobs : std::max(1U, std::thread::hardware_concurrency());
}

/// No more than there are documents.
unsigned ThreadsFor(std::size_t documents, const InputOptions& options) {
  return static_cast<unsigned>(std::min<std::size_t>(Threads(options), std::max<std::size_t>(documents, 1)));
}

std::string Mebibytes(std::size_t bytes) { return std::to_string(bytes / 1024 / 1024) + " MiB"; }

/// A name to be read, as far as it is one.
struct Name {
  std::string text{};
  FileKind kind = FileKind::Any;
  std::string fault{};     ///< why it can't be read, if that is known
  bool endsList = false;   ///< nothing behind it is read, though there may be something
  bool isDocument = true;  ///< otherwise only the fault is to be told
  bool lacksMemory = false;
};

/// What became of an input.
struct Outcome {
  std::string title{};
  std::string fault{};
  ExitStatus status = ExitStatus::Ok;
  bool isDocument = true;
  bool endsList = false;
  bool lacksMemory = false;  ///< even for a fault
};

/// Puts the file's name above the text, if there is one.
class TitledSink final : public Sink {
 public:
  TitledSink(Turn& turn, std::string title) : turn_(turn), title_(std::move(title)) {}

  void Write(std::string_view piece) override {
    if (piece.empty()) return;
    if (!title_.empty()) turn_.Write(title_);
    title_.clear();
    turn_.Write(piece);
  }

 private:
  Turn& turn_;
  std::string title_;
};

/// Fills the outcome of a document that is read.
class FileReading {
 public:
  FileReading(const InputOptions& options, const Reader& reader, bool ofMany)
      : options_(options), reader_(reader), ofMany_(ofMany) {}

  Outcome Read(const Name& name, Turn& turn) const {
    Outcome outcome{.title = name.text, .isDocument = name.isDocument, .endsList = name.endsList};
    try {
      if (!name.fault.empty()) throw Failure(ExitStatus::Trouble, name.fault);
      if (name.lacksMemory) throw std::bad_alloc();
      Answer(name, turn, outcome);
    } catch (const Failure& failure) {
      if (!turn.HasLeft()) turn.Drop();
      outcome.fault = failure.what();
      outcome.status = failure.Status();
    } catch (const std::bad_alloc&) {
      if (!turn.IsAlone() && !turn.HasLeft()) throw;
      if (!turn.HasLeft()) turn.Drop();
      Fail(name, kNoMemory, outcome);
    } catch (const std::exception& failure) {
      if (!turn.HasLeft()) turn.Drop();
      Fail(name, OneLine(failure.what()), outcome);
    }
    return outcome;
  }

 private:
  void Answer(const Name& name, Turn& turn, Outcome& outcome) const {
    const fs::path file(name.text);
    Input input{.name = name.text, .content = ReadFile(file, name.kind), .data = reader_.data};
    std::string fault;
    if (options_.json) {
      fault = About(file, [&] { return AnswerJson(input, turn); });
    } else {
      const bool hasTitle = ofMany_ && reader_.titles;
      TitledSink text(turn, hasTitle ? Title(name.text, turn) : "");
      fault = About(file, [&] { return reader_.answer(input, {.text = &text}); });
    }
    if (fault.empty()) return;
    outcome.fault = InputName(file) + ": " + fault;
    outcome.status = ExitStatus::NotRight;
  }

  static std::string Title(const std::string& name, const Turn& turn) {
    return (turn.Number() > 0 ? "\n==> " : "==> ") + OneLine(name) + " <==\n";
  }

  std::string AnswerJson(Input& input, Turn& turn) const {
    JsonWriter json(turn, ofMany_ ? JsonWriter::Layout::Compact : JsonWriter::Layout::Indented);
    json.BeginObject();
    json.Member("file", input.name);
    try {
      std::string fault = reader_.answer(input, {.json = &json});
      json.EndObject();
      turn.Write("\n");
      return fault;
    } catch (const std::exception& failure) {
      if (turn.HasLeft()) EndBrokenOff(json, turn, failure);
      throw;
    }
  }

 public:
  /// A part of the answer is out: its end says that there is no more of it.
  static void EndBrokenOff(JsonWriter& json, Turn& turn, const std::exception& failure) {
    const bool lacksMemory = dynamic_cast<const std::bad_alloc*>(&failure) != nullptr;
    json.CloseAll();
    json.Member("error", lacksMemory ? kNoMemory : std::string_view(failure.what()));
    json.EndObject();
    turn.Write("\n");
  }

 private:
  static void Fail(const Name& name, std::string_view reason, Outcome& outcome) {
    outcome.fault = InputName(name.text) + ": " + std::string(reason);
    outcome.status = ExitStatus::Trouble;
  }

  const InputOptions& options_;
  const Reader& reader_;
  bool ofMany_;
};

/// How many files ended how.
class Tally {
 public:
  void Add(const Outcome& outcome) {
    worst_ = std::max(worst_, outcome.status);
    isWhole_ = isWhole_ && !outcome.endsList;
    if (!outcome.isDocument) return;
    ++count_;
    if (outcome.status == ExitStatus::NotRight) ++notRight_;
    if (outcome.status == ExitStatus::Trouble) ++notRead_;
  }

  [[nodiscard]] ExitStatus Worst() const { return worst_; }

  [[nodiscard]] std::string ToText() const {
    std::string text = std::to_string(count_) + " documents";
    if (notRight_ + notRead_ == 0) text += ", all right";
    if (notRight_ > 0) text += ", " + std::to_string(notRight_) + " not right";
    if (notRead_ > 0) text += ", " + std::to_string(notRead_) + " can't be read";
    if (!isWhole_) text += "; the list of names isn't read to its end";
    return text;
  }

 private:
  std::size_t count_ = 0;
  std::size_t notRight_ = 0;
  std::size_t notRead_ = 0;
  bool isWhole_ = true;
  ExitStatus worst_ = ExitStatus::Ok;
};

/// The files of the command line, then those of the list.
class Files {
 public:
  explicit Files(const InputOptions& options) : options_(options) {
    if (options.filesFrom) list_.emplace(*options.filesFrom, kMostNameBytes);
  }

  std::optional<Name> Next(bool givesUp) {
    if (next_ < options_.files.size()) {
      Name name{.text = options_.files[next_].string()};
      ++next_;
      return name;
    }
    while (list_) {
      std::optional<LineReader::Line> line = list_->Next(givesUp);
      if (!line) break;
      if (line->kind != LineReader::Line::Kind::Whole || !line->text.empty())
        return FromList(std::move(*line));
    }
    return std::nullopt;
  }

 private:
  [[nodiscard]] Name FromList(LineReader::Line line) const {
    using Kind = LineReader::Line::Kind;
    const fs::path& list = *options_.filesFrom;
    Name name{.text = std::move(line.text), .kind = FileKind::Regular};
    switch (line.kind) {
      case Kind::Whole:
        // Whoever reads the list from standard input would lose the names that follow.
        if (name.text == kStandardInput) {
          name.kind = FileKind::Any;
          if (list == kStandardInput) name.fault = "a list from standard input can't name standard input";
        }
        break;
      case Kind::TooLong:
      case Kind::Endless:
        name.fault = Quoted(name.text) + " can't be read: the name in " + InputName(list) +
                     " is longer than " + std::to_string(kMostNameBytes) + " bytes";
        name.endsList = line.kind == Kind::Endless;
        break;
      case Kind::NoMemory: name.lacksMemory = true; break;
      case Kind::Interrupted:
        name = {.text = "", .fault = std::exchange(name.text, {}), .endsList = true, .isDocument = false};
        break;
    }
    return name;
  }

  const InputOptions& options_;
  std::size_t next_ = 0;
  std::optional<LineReader> list_;
};

/// Standard input is either the list or a document.
void ExpectOneUseOfStandardInput(const InputOptions& options) {
  const auto names = std::count(options.files.begin(), options.files.end(), fs::path(kStandardInput));
  if (names + (options.filesFrom == fs::path(kStandardInput) ? 1 : 0) > 1) {
    throw Failure(ExitStatus::Usage, "standard input can be read once only");
  }
}

ExitStatus ReadFiles(const InputOptions& options, const Reader& reader) {
  const bool ofMany = options.files.size() > 1 || options.filesFrom;
  const FileReading reading(options, reader, ofMany);
  Files files(options);
  Tally tally;
  Progress progress("Reading", options.filesFrom ? 0 : options.files.size(), Progress::Kind::Bulk);
  PipelineTasks<Name, Outcome> tasks;
  tasks.next = [&files](bool isAlone) { return files.Next(isAlone); };
  tasks.work = [&reading](const Name& name, Turn& turn) { return reading.Read(name, turn); };
  tasks.starve = [](Name& name) {
    return Outcome{
        .title = std::move(name.text), .fault = {}, .status = ExitStatus::Trouble, .lacksMemory = true};
  };
  tasks.emit = Print;
  tasks.deliver = [&](const Outcome& outcome) {
    if (outcome.lacksMemory || !outcome.fault.empty()) progress.Hide();
    if (outcome.lacksMemory) {
      SayInPieces({"'", outcome.title, "': ", kNoMemory});
    } else if (!outcome.fault.empty()) {
      Say(outcome.fault);
    }
    tally.Add(outcome);
    progress.Step(outcome.title);
  };
  RunPipeline(options.filesFrom ? Threads(options) : ThreadsFor(options.files.size(), options), tasks);
  progress.Hide();
  if (ofMany) Say(tally.ToText());
  return tally.Worst();
}

[[noreturn]] void Refuse(const std::string& reason) { throw Failure(ExitStatus::NotRight, reason); }

/// What stands in a line.
struct LineContent {
  std::optional<JsonValue> mark{};  ///< the caller's own, a text or a number that comes back as it was
  std::optional<std::string> file{};
  std::optional<std::string> document{};
  std::optional<std::string> data{};
  std::string fault{};  ///< why the rest of the line wasn't taken
};

JsonValue TakeMark(JsonValue& value) {
  if (value.kind == JsonValue::Kind::String) return std::move(value);
  if (value.kind != JsonValue::Kind::Number) {
    Refuse("\"id\" is " + std::string(KindName(value.kind)) + ", not a text or number");
  }
  if (nlohmann::json::parse(value.text).dump() != value.text) {
    Refuse("\"id\" can't be kept exactly: write it as a text");
  }
  return std::move(value);
}

std::string TakeText(JsonValue& value, const std::string& name) {
  if (value.kind != JsonValue::Kind::String) {
    Refuse("\"" + name + "\" is " + std::string(KindName(value.kind)) + ", not a text");
  }
  return std::move(value.text);
}

LineContent TakeLine(const std::string& line, const Reader& reader) {
  LineContent content;
  try {
    JsonValue value = ParseJson(line);
    if (value.kind != JsonValue::Kind::Object) Refuse("the line is " + std::string(KindName(value.kind)));
    for (std::size_t i = 0; i < value.names.size(); ++i) {
      const std::string& name = value.names[i];
      JsonValue& element = value.elements[i];
      if (name == "id") {
        content.mark = TakeMark(element);
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
    if (content.file.has_value() == content.document.has_value()) {
      Refuse("a line has either a \"document\" or a \"file\"");
    }
  } catch (const Failure& failure) {
    content.file.reset();
    content.fault = failure.what();
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

/// A line and its number from 1.
struct NumberedLine {
  std::size_t number = 0;
  LineReader::Line line;
};

class LineReading {
 public:
  explicit LineReading(const Reader& reader) : reader_(reader) {}

  void Answer(const NumberedLine& line, Turn& turn) const {
    LineContent content = Take(line.line);
    JsonWriter json(turn, JsonWriter::Layout::Compact);
    json.BeginObject();
    WriteMark(line, content, json);
    if (content.file) json.Member("file", *content.file);
    try {
      AnswerContent(content, json);
    } catch (const Failure& failure) {
      json.Member("error", failure.what());
    } catch (const std::exception& failure) {
      const bool lacksMemory = dynamic_cast<const std::bad_alloc*>(&failure) != nullptr;
      if (lacksMemory && !turn.IsAlone() && !turn.HasLeft()) throw;
      FileReading::EndBrokenOff(json, turn, failure);
      return;
    }
    json.EndObject();
    turn.Write("\n");
  }

 private:
  [[nodiscard]] LineContent Take(const LineReader::Line& line) const {
    using Kind = LineReader::Line::Kind;
    switch (line.kind) {
      case Kind::Whole: return TakeLine(line.text, reader_);
      case Kind::TooLong:
      case Kind::Endless: return {.fault = "the line is longer than " + Mebibytes(kMostLineBytes)};
      case Kind::NoMemory: return {.fault = std::string(kNoMemory)};
      case Kind::Interrupted: break;
    }
    return {.fault = line.text};
  }

  static void WriteMark(const NumberedLine& line, const LineContent& content, JsonWriter& json) {
    if (!content.mark) {
      json.Member("line", line.number);
      return;
    }
    json.Key("id");
    if (content.mark->kind == JsonValue::Kind::String) {
      json.String(content.mark->text);
    } else {
      json.Digits(content.mark->text);
    }
  }

  void AnswerContent(LineContent& content, JsonWriter& json) const {
    if (!content.fault.empty()) Refuse(content.fault);
    Input input;
    if (content.data) input.data = FromBase64(*content.data);
    if (content.file) {
      if (*content.file == kStandardInput) Refuse("a line can't name standard input");
      input.name = *content.file;
      input.content = ReadFile(*content.file, FileKind::Regular);
    } else {
      input.content = std::move(*content.document);
    }
    static_cast<void>(reader_.answer(input, {.json = &json}));
  }

  const Reader& reader_;
};

/// Answers the lines of a file. False when reading ended before the file's end, which is said.
bool ReadLines(const fs::path& file, unsigned threads, const Reader& reader) {
  LineReader lines(file, kMostLineBytes);
  const LineReading reading(reader);
  std::size_t count = 0;
  std::string interruption;
  Progress progress("Reading", 0, Progress::Kind::Bulk);
  PipelineTasks<NumberedLine, std::size_t> tasks;
  tasks.next = [&](bool isAlone) -> std::optional<NumberedLine> {
    std::optional<LineReader::Line> line = lines.Next(isAlone);
    if (!line) return std::nullopt;
    if (line->kind == LineReader::Line::Kind::Interrupted) {
      interruption = std::move(line->text);
      return std::nullopt;
    }
    if (line->kind == LineReader::Line::Kind::Endless) {
      interruption =
          InputName(file) + " isn't read to its end: line " + std::to_string(count + 1) + " has none";
    }
    return NumberedLine{++count, std::move(*line)};
  };
  tasks.work = [&reading](const NumberedLine& line, Turn& turn) {
    reading.Answer(line, turn);
    return std::size_t{0};
  };
  tasks.starve = [](const NumberedLine& line) { return line.number; };
  tasks.emit = Print;
  tasks.deliver = [&progress](std::size_t starved) {
    if (starved > 0) {
      std::array<char, 80> answer{};
      const int length = std::snprintf(answer.data(), answer.size(), "{\"line\":%zu,\"error\":\"%s\"}\n",
                                       starved, kNoMemory.data());
      Print({answer.data(), static_cast<std::size_t>(length)});
    }
    progress.Step({});
  };
  RunPipeline(threads, tasks);
  progress.Hide();
  if (!interruption.empty()) Say(interruption);
  return interruption.empty();
}

ExitStatus ReadLines(const InputOptions& options, const Reader& reader) {
  const std::vector<fs::path> standardInput = {kStandardInput};
  ExitStatus status = ExitStatus::Ok;
  for (const fs::path& file : options.files.empty() ? standardInput : options.files) {
    if (!ReadLines(file, Threads(options), reader)) status = ExitStatus::Trouble;
  }
  return status;
}

}  // namespace

ExitStatus ReadAll(const InputOptions& options, const Reader& reader) {
  ExpectOneUseOfStandardInput(options);
  return options.lines ? ReadLines(options, reader) : ReadFiles(options, reader);
}

}  // namespace zel
