#pragma once

#include <string>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tools/ExitStatus.h"
#include "tools/Sink.h"
#include "tools/Text.h"

/// Documents as people read them.
namespace zel {

/// The library's text of a booking, report or data record. Throws `Failure` (NotRight).
template <typename Object>
std::string TextOf(Object& object) {
  std::string text = Lines(UnixLines(object.ToString()));
  if (object.HasError()) throw Failure(ExitStatus::NotRight, Describe(object.ErrorObject()));
  if (!text.ends_with('\n')) text += '\n';
  return text;
}

/// Writes the receipt of a booking's or data record's document, or a report as a table, or (`wide`) as the library's
/// own text. `xml` may be used up. Throws `Failure` (NotRight) before it writes anything.
void WriteReceipt(std::string& xml, bool wide, Sink& out);

}  // namespace zel
