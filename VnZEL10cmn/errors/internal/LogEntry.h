#pragma once

#include <string>
#include <string_view>

#include "VnZEL10cmn/types/Date.h"

namespace VnZEL10cmn::internal {

/// The parts that entries of errors and messages have in common.

/// Time and heading, and the dashes below.
std::string LogHeading(Date time, std::string_view heading, std::size_t dashes);

/// A line with a label padded to its column.
std::string LogLine(std::string_view label, std::string_view value);

/// The lines of a message, those after the first aligned under it.
std::string LogMessageLines(std::string_view message, std::string_view fallback);

/// A name, or "./." for none.
std::string_view NameOrNone(std::string_view name);

/// What `GetSource` answers.
inline constexpr std::string_view kNoSource = "##FEHLER##";

}  // namespace VnZEL10cmn::internal
