#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/ExitStatus.h"
#include "tools/JsonWriter.h"
#include "tools/Sink.h"

/// What the commands that read have in common: they take a document, many, or one in each line of JSON.
namespace zel {

struct InputOptions {
  std::vector<std::filesystem::path> files;        ///< documents, or (`lines`) files of lines
  std::optional<std::filesystem::path> filesFrom;  ///< a file with the documents' names, one per line
  bool lines = false;  ///< a JSON object per line in, of `files` or standard input, and one per line out
  bool json = false;
  unsigned jobs = 0;  ///< threads; 0 for one per processor
};

/// What is to be read.
struct Input {
  std::string name{};                 ///< of its file; empty when it stood in a line
  std::string content{};              ///< may be used up
  std::optional<std::string> data{};  ///< the bytes that were signed as a data record
};

/// Where the answer goes: one of the two.
struct Output {
  Sink* text = nullptr;        ///< for people
  JsonWriter* json = nullptr;  ///< for programs: members of an object that is open
};

struct Reader {
  /// Answers, and returns what is not right, one line; empty when all is. Runs on any thread. Throws `Failure` where
  /// there is no answer, before it writes anything.
  std::function<std::string(Input& input, const Output& output)> answer;
  std::optional<std::string> data{};  ///< comes with each file
  bool takesData = false;             ///< whether a line may hold data
  bool titles = false;                ///< whether each of many texts stands under its file's name
};

/// Reads everything, with memory for a few inputs only, and prints the answers in the inputs' order. Each input has
/// its answer whatever becomes of the others, be it that there isn't enough memory. What is wrong with a file is said
/// in one line, and the worst status returned; what is wrong with a line stands in its answer, and doesn't count.
ExitStatus ReadAll(const InputOptions& options, const Reader& reader);

}  // namespace zel
