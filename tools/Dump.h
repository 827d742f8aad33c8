#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "tools/Document.h"
#include "tools/Records.h"

/// Shows any request, response, item list or XML document as a tree of records.
namespace zel {

/// How the records are written down.
enum class Form : std::uint8_t { Binary, Hexadecimal, Base64, Xml };

/// One run of records.
struct DumpPart {
  std::string element;  ///< of an XML document, else empty
  std::string profile;  ///< of an item list in an XML document, mostly empty
  Run run;
};

struct Dump {
  Form form = Form::Binary;
  DocumentKind document = DocumentKind::Booking;  ///< of an XML document
  std::vector<DumpPart> parts;
  std::vector<Fault> faults;  ///< empty when everything could be read
};

/// Reads everything that can be read. Any content ends in a result.
Dump ReadDump(std::string_view content);

/// The tree for people, and as an object for programs.
std::string DumpToText(const Dump& dump);
nlohmann::ordered_json DumpToJson(const Dump& dump);

}  // namespace zel
