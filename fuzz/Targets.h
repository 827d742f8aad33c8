#pragma once

#include <span>
#include <string_view>

#include "fuzz/Input.h"

namespace fuzz {

// What is fuzzed: each function takes any bytes and ends the program when something does not hold.

void Records(Bytes data);
void RecordWriters(Bytes data);
void Item(Bytes data);
void ItemList(Bytes data);
void Container(Bytes data);
void BookingRequest(Bytes data);
void BookingResponse(Bytes data);
void ReportRequest(Bytes data);
void ReportResponse(Bytes data);
void DataRecord(Bytes data);
void XmlTag(Bytes data);
void BookingXml(Bytes data);
void ReportXml(Bytes data);
void DataRecordXml(Bytes data);
void Codecs(Bytes data);
void Rounding(Bytes data);
void Operations(Bytes data);
void Aliases(Bytes data);
void Hosts(Bytes data);
void Device(Bytes data);
void DeviceFile(Bytes data);

struct Target {
  std::string_view name;  ///< also of its program and of its corpus
  void (*run)(Bytes data);
};

/// All targets of this build.
std::span<const Target> Targets();

/// The target of that name, or none.
const Target* FindTarget(std::string_view name);

}  // namespace fuzz
