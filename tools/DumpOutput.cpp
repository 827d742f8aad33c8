#include "tools/Dump.h"
#include "tools/Text.h"

namespace zel {

namespace {

std::string_view FormName(Form form) {
  switch (form) {
    case Form::Binary: return "binary";
    case Form::Hexadecimal: return "hexadecimal";
    case Form::Base64: return "base64";
    case Form::Xml: return "xml";
  }
  return {};
}

std::string_view KindTitle(RunKind kind) {
  switch (kind) {
    case RunKind::ItemList: return "Item list";
    case RunKind::Request: return "Booking request";
    case RunKind::Response: return "Booking response";
    case RunKind::ReportRequest: return "Report request";
    case RunKind::ReportResponse: return "Report response";
    case RunKind::DataRequest: return "Data request";
    case RunKind::DataResponse: return "Data response";
    case RunKind::Any: return "Records";
  }
  return {};
}

std::string_view DocumentTitle(DocumentKind kind) {
  switch (kind) {
    case DocumentKind::Booking: return "Booking document (XML)\n";
    case DocumentKind::Report: return "Report document (XML)\n";
    case DocumentKind::Data: return "Data record document (XML)\n";
  }
  return {};
}

std::string_view KindName(RunKind kind) {
  switch (kind) {
    case RunKind::ItemList: return "itemList";
    case RunKind::Request: return "request";
    case RunKind::Response: return "response";
    case RunKind::ReportRequest: return "reportRequest";
    case RunKind::ReportResponse: return "reportResponse";
    case RunKind::DataRequest: return "dataRequest";
    case RunKind::DataResponse: return "dataResponse";
    case RunKind::Any: return "records";
  }
  return {};
}

/// However long the text is.
void WriteOnOneLine(std::string_view text, Sink& out) {
  constexpr std::size_t kPiece = 4096;
  while (!text.empty()) {
    std::string_view piece = Beginning(text, kPiece);
    if (piece.empty()) piece = text.substr(0, kPiece);  // no character at all
    out.Write(OneLine(piece));
    text.remove_prefix(piece.size());
  }
}

void WriteFault(const Fault& fault, JsonWriter& json) {
  json.BeginObject();
  if (!fault.part.empty()) json.Member("part", fault.part);
  if (fault.position) {
    json.Member("position", *fault.position);
    json.Member("unit", fault.unit);
  }
  if (fault.number != 0) json.Member("number", fault.number);
  json.Member("reason", fault.reason);
  json.EndObject();
}

}  // namespace

void TextDump::Begin(Form form, DocumentKind document) {
  form_ = form;
  if (form == Form::Xml) out_.Write(DocumentTitle(document));
}

void TextDump::BeginPart(const DumpPart& part) {
  depth_ = form_ == Form::Xml ? 1 : 0;
  std::string line(depth_ * 2, ' ');
  line += std::string(KindTitle(part.kind)) + " (" + std::to_string(part.size) + " bytes";
  if (form_ != Form::Xml) line += ", " + std::string(FormName(form_));
  out_.Write(line);
  if (!part.profile.empty()) {
    out_.Write(", profile \"");
    WriteOnOneLine(part.profile, out_);
    out_.Write("\"");
  }
  out_.Write(")\n");
  ++depth_;
}

void TextDump::BeginItem(std::size_t number, std::int32_t /*position*/, std::int32_t /*length*/) {
  out_.Write(std::string(depth_ * 2, ' ') + "Item " + std::to_string(number) + "\n");
  ++depth_;
}

void TextDump::Show(const Record& record) {
  lines_.clear();
  AppendLine(record, depth_);
  for (const Record& inner : record.inner) {
    AppendLine(inner, depth_ + 1);
  }
  out_.Write(lines_);
}

/// Position, tag, name, length, value.
void TextDump::AppendLine(const Record& record, std::size_t depth) {
  constexpr std::size_t kNameWidth = 20;
  constexpr std::size_t kPositionWidth = 6;
  constexpr std::size_t kLengthWidth = 3;
  const auto tag = static_cast<std::uint8_t>(record.tag);
  lines_.append(depth * 2, ' ');
  lines_ += PadLeft(std::to_string(record.position), kPositionWidth) + "  " + Hex({&tag, 1}) + "  " +
            PadRight(std::string(record.name), kNameWidth) +
            PadLeft(std::to_string(record.length), kLengthWidth);
  const std::string value = OneLine(record.value);
  if (!value.empty() || record.isText) lines_ += "  " + (record.isText ? "\"" + value + "\"" : value);
  lines_ += "\n";
}

void TextDump::EndPart(const std::optional<Fault>& fault) {
  if (fault) out_.Write(std::string(depth_ * 2, ' ') + "! " + OneLine(ToText(*fault)) + "\n");
}

void TextDump::End(const std::vector<Fault>& /*faults*/) {}

void JsonDump::Begin(Form form, DocumentKind /*document*/) {
  json_.Member("form", FormName(form));
  json_.Key("parts");
  json_.BeginArray();
}

void JsonDump::BeginPart(const DumpPart& part) {
  json_.BeginObject();
  json_.Member("kind", KindName(part.kind));
  if (!part.element.empty()) json_.Member("element", part.element);
  if (!part.profile.empty()) json_.Member("profile", part.profile);
  json_.Member("length", part.size);
  json_.Key("records");
  json_.BeginArray();
}

void JsonDump::BeginItem(std::size_t number, std::int32_t position, std::int32_t length) {
  json_.BeginObject();
  json_.Member("name", "Item " + std::to_string(number));
  json_.Member("position", position);
  json_.Member("length", length);
  json_.Key("records");
  json_.BeginArray();
}

void JsonDump::EndItem() {
  json_.EndArray();
  json_.EndObject();
}

void JsonDump::Show(const Record& record) {
  json_.BeginObject();
  json_.Member("name", record.name);
  json_.Member("position", record.position);
  json_.Member("length", record.length);
  json_.Member("tag", static_cast<int>(record.tag));
  json_.Member("hex", record.hex);
  if (!record.value.empty() || record.isText) json_.Member("value", record.value);
  if (!record.inner.empty()) {
    json_.Key("records");
    json_.BeginArray();
    for (const Record& inner : record.inner) {
      Show(inner);
    }
    json_.EndArray();
  }
  json_.EndObject();
}

void JsonDump::EndPart(const std::optional<Fault>& /*fault*/) {
  json_.EndArray();
  json_.EndObject();
}

void JsonDump::End(const std::vector<Fault>& faults) {
  json_.EndArray();
  json_.Key("faults");
  json_.BeginArray();
  for (const Fault& fault : faults) {
    WriteFault(fault, json_);
  }
  json_.EndArray();
}

}  // namespace zel
