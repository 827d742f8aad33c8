#include "fuzz/Targets.h"

#include <algorithm>
#include <array>

namespace fuzz {

std::span<const Target> Targets() {
  static constexpr std::array kTargets = {
      Target{"records", Records},
      Target{"record_writers", RecordWriters},
      Target{"item", Item},
      Target{"item_list", ItemList},
      Target{"container", Container},
      Target{"booking_request", BookingRequest},
      Target{"booking_response", BookingResponse},
      Target{"report_request", ReportRequest},
      Target{"report_response", ReportResponse},
      Target{"data_record", DataRecord},
      Target{"xml_tag", XmlTag},
      Target{"booking_xml", BookingXml},
      Target{"report_xml", ReportXml},
      Target{"data_record_xml", DataRecordXml},
      Target{"codecs", Codecs},
      Target{"rounding", Rounding},
      Target{"operations", Operations},
      Target{"aliases", Aliases},
      Target{"hosts", Hosts},
#ifdef FUZZ_SOFTDEVICE
      Target{"device", Device},
      Target{"device_file", DeviceFile},
#endif
  };
  return kTargets;
}

const Target* FindTarget(std::string_view name) {
  const std::span<const Target> targets = Targets();
  const auto found = std::find_if(targets.begin(), targets.end(),
                                  [name](const Target& target) { return target.name == name; });
  return found == targets.end() ? nullptr : &*found;
}

}  // namespace fuzz
