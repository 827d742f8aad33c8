#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/Dump.h"
#include "tools/Text.h"

namespace zel {

namespace {

using Json = nlohmann::ordered_json;

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

/// One line per record: position, tag, name, length, value.
void AppendLines(std::string& out, const std::vector<Node>& nodes, std::size_t depth) {
  constexpr std::size_t kNameWidth = 20;
  constexpr std::size_t kPositionWidth = 6;
  constexpr std::size_t kLengthWidth = 3;
  for (const Node& node : nodes) {
    out.append(depth * 2, ' ');
    if (!node.tag) {
      out += node.name + "\n";
    } else {
      out += PadLeft(std::to_string(node.position), kPositionWidth) + "  " + Hex({&*node.tag, 1}) + "  " +
             PadRight(node.name, kNameWidth) + PadLeft(std::to_string(node.length), kLengthWidth);
      const std::string value = OneLine(node.value);
      if (!value.empty() || node.isText) out += "  " + (node.isText ? "\"" + value + "\"" : value);
      out += "\n";
    }
    AppendLines(out, node.inner, depth + 1);
  }
}

Json ToJson(const std::vector<Node>& nodes) {
  Json list = Json::array();
  for (const Node& node : nodes) {
    Json entry = {{"name", node.name}, {"position", node.position}, {"length", node.length}};
    if (node.tag) {
      entry["tag"] = *node.tag;
      entry["hex"] = node.hex;
    }
    if (!node.value.empty() || node.isText) entry["value"] = node.value;
    if (!node.inner.empty()) entry["records"] = ToJson(node.inner);
    list.push_back(std::move(entry));
  }
  return list;
}

Json ToJson(const Fault& fault) {
  Json entry = Json::object();
  if (!fault.part.empty()) entry["part"] = fault.part;
  if (fault.position) {
    entry["position"] = *fault.position;
    entry["unit"] = fault.unit;
  }
  if (fault.number != 0) entry["number"] = fault.number;
  entry["reason"] = fault.reason;
  return entry;
}

}  // namespace

std::string DumpToText(const Dump& dump) {
  std::string out;
  if (dump.form == Form::Xml) out += DocumentTitle(dump.document);
  const std::size_t depth = dump.form == Form::Xml ? 1 : 0;
  for (const DumpPart& part : dump.parts) {
    out.append(depth * 2, ' ');
    out += std::string(KindTitle(part.run.kind)) + " (" + std::to_string(part.run.size) + " bytes";
    if (dump.form != Form::Xml) out += ", " + std::string(FormName(dump.form));
    if (!part.profile.empty()) out += ", profile \"" + OneLine(part.profile) + "\"";
    out += ")\n";
    AppendLines(out, part.run.nodes, depth + 1);
    if (part.run.fault) out += std::string((depth + 1) * 2, ' ') + "! " + ToText(*part.run.fault) + "\n";
  }
  return out;
}

Json DumpToJson(const Dump& dump) {
  Json root = {{"form", FormName(dump.form)}};
  Json& parts = root["parts"] = Json::array();
  for (const DumpPart& part : dump.parts) {
    Json entry = {{"kind", KindName(part.run.kind)}};
    if (!part.element.empty()) entry["element"] = part.element;
    if (!part.profile.empty()) entry["profile"] = part.profile;
    entry["length"] = part.run.size;
    entry["records"] = ToJson(part.run.nodes);
    parts.push_back(std::move(entry));
  }
  Json& faults = root["faults"] = Json::array();
  for (const Fault& fault : dump.faults)
    faults.push_back(ToJson(fault));
  return root;
}

}  // namespace zel
