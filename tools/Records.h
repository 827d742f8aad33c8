#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/VnZEL10cmn.h"

/// Reads runs of device records one by one, so that what stands before a fault can be shown.
namespace zel {

/// What a run of records is, which decides the tags that may stand in it.
enum class RunKind : std::uint8_t {
  ItemList,        ///< the items of a booking or report
  Request,         ///< a booking request
  Response,        ///< the response to a booking
  ReportRequest,   ///< a report request
  ReportResponse,  ///< the response to a report
  DataRequest,     ///< the request of a signed data record
  DataResponse,    ///< the response to it
  Any,             ///< records of any tag
};

/// A record, or an item that groups its records.
struct Node {
  std::optional<std::uint8_t> tag;  ///< none for an item
  std::string name;                 ///< of the tag, or "Item 1"
  std::int32_t position = 0;        ///< of the first byte
  std::int32_t length = 0;          ///< of a record's value, or of an item's records together
  std::string hex;                  ///< the value's bytes
  std::string value;                ///< what they mean; empty for records that hold records
  bool isText = false;              ///< the value is shown between quotation marks
  std::vector<Node> inner;
};

/// Where and why reading ended early.
struct Fault {
  std::string part;                      ///< of an XML document, else empty
  std::optional<std::int64_t> position;  ///< none where the reason says it
  std::string unit = "byte";             ///< what the position counts, from 0
  std::int32_t number = 0;               ///< the library's error number
  std::string reason;                    ///< one line
};

/// "transactionRequest, byte 15: reason".
std::string ToText(const Fault& fault);

struct Run {
  RunKind kind = RunKind::Any;
  std::size_t size = 0;
  std::vector<Node> nodes;
  std::optional<Fault> fault;
};

/// The name of a tag; none for a byte that is no tag.
std::optional<std::string_view> TagName(std::uint8_t tag);

/// What the tags give away. The response to a data record that names the taxpayer counts as one to a booking,
/// which looks the same.
RunKind GuessKind(const VnZEL10cmn::ByteArray& data);

/// Reads all records up to the first fault. Any bytes end in a result.
Run ReadRun(const VnZEL10cmn::ByteArray& data, RunKind kind);

/// The record of that tag among the outer ones, if any.
const Node* FindRecord(const std::vector<Node>& nodes, VnZEL10cmn::ZelTags tag);

/// "Container_Vat_1 (0xE1): Trnvr (0xD8) is 12.34, expected 11.34": the first place where two runs differ;
/// empty when they don't.
std::string FirstDifference(const std::vector<Node>& found, const std::vector<Node>& expected);

}  // namespace zel
