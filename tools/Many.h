#pragma once

#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "tools/ExitStatus.h"

/// What the commands that read have in common: they take a document, many, or one in each line of JSON.
namespace zel {

using OrderedJson = nlohmann::ordered_json;

struct InputOptions {
  std::vector<std::filesystem::path> files;        ///< documents, or (`lines`) files of lines
  std::optional<std::filesystem::path> filesFrom;  ///< a file with the documents' names, one per line
  bool lines = false;  ///< a JSON object per line in, of `files` or standard input, and one per line out
  bool json = false;
  unsigned jobs = 0;  ///< threads; 0 for one per processor
};

/// What is to be read.
struct Input {
  std::string name{};  ///< of its file; empty when it stood in a line
  std::string content{};
  std::optional<std::string> data{};  ///< the bytes that were signed as a data record
};

/// What a command makes of it.
struct Answer {
  std::string text{};   ///< for people
  OrderedJson json{};   ///< an object for programs, which takes the text's place where asked for
  std::string fault{};  ///< what is not right, one line; empty when all is
};

struct Reader {
  /// Runs on any thread. Throws `Failure` where there is no answer.
  std::function<Answer(const Input& input, bool json)> answer;
  std::optional<std::string> data{};  ///< comes with each file
  bool takesData = false;             ///< whether a line may hold data
  bool titles = false;                ///< whether each of many texts stands under its file's name
};

/// Reads everything, with memory for a few inputs only, and prints the answers in the inputs' order. What is
/// wrong with a file is said in one line, and the worst status returned; what is wrong with a line stands in its
/// answer, and doesn't count.
ExitStatus ReadAll(const InputOptions& options, const Reader& reader);

}  // namespace zel
