#include "VnZEL10cmn/errors/internal/LogEntry.h"

#include <vector>

#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

constexpr std::size_t kIndent = 25;
constexpr std::size_t kLabelWidth = 20;
constexpr std::size_t kValueColumn = kIndent + kLabelWidth + 2;

}  // namespace

std::string LogHeading(Date time, std::string_view heading, std::size_t dashes) {
  return Compose(FormatDateTime(time, CurrentRegionalSettings()), "  ->  ", heading, kCrLf,
                 std::string(kIndent, ' '), std::string(dashes, '-'), kCrLf);
}

std::string LogLine(std::string_view label, std::string_view value) {
  return Compose(std::string(kIndent, ' '), label, std::string(kLabelWidth - label.size(), '.'), ": ", value,
                 kCrLf);
}

std::string LogMessageLines(std::string_view message, std::string_view fallback) {
  std::vector<std::string> lines;
  try {
    lines = SplitLines(message);
  } catch (...) {
    return LogLine("Meldung ", fallback);
  }
  std::string text = LogLine("Meldung ", lines.front());
  for (std::size_t i = 1; i < lines.size(); ++i) {
    text.append(kValueColumn, ' ').append(lines[i]).append(kCrLf);
  }
  return text;
}

std::string_view NameOrNone(std::string_view name) { return name.empty() ? "./." : name; }

}  // namespace VnZEL10cmn::internal
