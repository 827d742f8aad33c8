// The software device: any commands with any requests.

#include "softdevice/Device.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/Bookings.h"
#include "fuzz/Reports.h"
#include "fuzz/Targets.h"
#include "softdevice/Verify.h"

namespace fuzz {

namespace {

using softdevice::Command;
using softdevice::RefusalCode;

/// Two devices, one still to be activated, that every input finds as they were made. They live in memory where
/// the system has a folder for that.
class Bench {
 public:
  Bench() {
    const std::filesystem::path memory = "/dev/shm";
    std::string name =
        ((std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path()) /
         "fuzz-device.XXXXXX")
            .string();
    FUZZ_CHECK(mkdtemp(name.data()) != nullptr);
    folder_ = name;
    for (const bool isActive : {false, true}) {
      Make(isActive);
    }
  }
  ~Bench() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  /// The device, as new.
  softdevice::Device& Fresh(bool isActive) {
    Slot& slot = slots_[isActive ? 1 : 0];
    if (slot.isChanged) {
      slot.device.reset();
      std::filesystem::copy_file(Original(isActive), File(isActive),
                                 std::filesystem::copy_options::overwrite_existing);
      slot.device = std::make_unique<softdevice::Device>(softdevice::Device::Open(File(isActive)));
      if (!slot.key) {
        slot.key.emplace(slot.device->PublicKeyPem());
      }
      slot.isChanged = false;
    }
    return *slot.device;
  }

  /// What anybody verifies its signatures with.
  [[nodiscard]] const softdevice::PublicKey& Key(bool isActive) const {
    return *slots_[isActive ? 1 : 0].key;
  }

  void MarkChanged(bool isActive) { slots_[isActive ? 1 : 0].isChanged = true; }

 private:
  struct Slot {
    std::unique_ptr<softdevice::Device> device;
    std::optional<softdevice::PublicKey> key;
    bool isChanged = true;
  };

  [[nodiscard]] std::filesystem::path File(bool isActive) const {
    return folder_ / (isActive ? "active" : "new");
  }
  [[nodiscard]] std::filesystem::path Original(bool isActive) const {
    return folder_ / (isActive ? "active.original" : "new.original");
  }

  void Make(bool isActive) const {
    softdevice::OpenOptions options;
    options.create = true;
    options.taxpayerId = "DE123456789";
    options.runningNumber = 7;
    options.activate = isActive;
    static_cast<void>(softdevice::Device::Open(Original(isActive), options));
  }

  std::filesystem::path folder_;
  Slot slots_[2];
};

bool IsData(Command command) {
  return command >= Command::SignDataOnly && command <= Command::SignDataAndTime;
}

bool IsShown(Command command) { return command == Command::ReportUnsigned || command == Command::ReportSpan; }

/// Whether a month lies before the year 1000. The device takes it for one that exists; the library reads numbers
/// without their leading zeros, and such a year for none.
bool HasEarlyMonth(Bytes request) {
  constexpr std::size_t kHead = 2;
  while (request.size() > kHead) {
    if ((request[0] == 208 || request[0] == 209) && request[kHead] < 0x10) {
      return true;
    }
    request = request.subspan(std::min(request.size(), kHead + request[1]));
  }
  return false;
}

/// What the device signed can be verified by anybody, and a document of the library takes both.
void CheckDocument(const softdevice::Device& device, const softdevice::PublicKey& key, Command command,
                   Bytes request, const std::vector<std::uint8_t>& response) {
  constexpr auto kRequest = VnZEL10cmn::ZELSerialType::Request;
  constexpr auto kResponse = VnZEL10cmn::ZELSerialType::Response;
  const VnZEL10cmn::ByteArray requestArray(request);
  const VnZEL10cmn::ByteArray responseArray(response);
  const bool isReadable = !HasEarlyMonth(request);
  if (command == Command::SignBooking) {
    FUZZ_CHECK(softdevice::VerifyBooking(request, response, key).ok);
    VnZEL10cmn::clsZelTransAct booking;
    FUZZ_CHECK(booking.BinaryDataSet(kRequest, requestArray, 0) == isReadable);
    FUZZ_CHECK(booking.BinaryDataSet(kResponse, responseArray, 0));
    FUZZ_CHECK(booking.ZelRespTpID() == device.TaxpayerId() &&
               booking.ZelRespSeqNr() == VnZEL10cmn::Currency(device.LastSequenceNumber()));
  } else if (IsData(command)) {
    FUZZ_CHECK(softdevice::VerifyData(request, response, key).ok);
    VnZEL10cmn::clsZelTransActData record;
    FUZZ_CHECK(record.BinaryDataSet(kRequest, requestArray, 0) == isReadable);
    FUZZ_CHECK(record.BinaryDataSet(kResponse, responseArray, 0));
    FUZZ_CHECK(record.ZelRespSeqNr() == VnZEL10cmn::Currency(device.LastSequenceNumber()));
  } else {
    FUZZ_CHECK(softdevice::VerifyReport(request, response, key).ok == !IsShown(command));
    VnZEL10cmn::clsZelReport report;
    FUZZ_CHECK(report.BinaryDataSet(kRequest, requestArray, 0) == isReadable);
    FUZZ_CHECK(report.BinaryDataSet(kResponse, responseArray, 0));
    FUZZ_CHECK(report.TpID() == device.TaxpayerId());
    FUZZ_CHECK(static_cast<int>(report.ZelStatus()) == static_cast<int>(device.State().lifeCycle));
  }
}

/// Carries out one command. True when it may have changed the device.
bool Execute(softdevice::Device& device, const softdevice::PublicKey& key, Command command, Bytes request) {
  const softdevice::DeviceState before = device.State();
  const softdevice::Answer answer = device.Execute(command, request);
  const softdevice::DeviceState after = device.State();
  FUZZ_CHECK(answer.accepted == (answer.code == RefusalCode::None));
  FUZZ_CHECK(answer.accepted == answer.reason.empty());
  FUZZ_CHECK(answer.accepted == !answer.response.empty());
  if (!answer.accepted) {
    FUZZ_CHECK(IsUtf8(answer.reason) && answer.reason.find('\n') == std::string::npos);
    FUZZ_CHECK(answer.code != RefusalCode::Storage && answer.code != RefusalCode::Internal &&
               answer.code != RefusalCode::Busy);
    FUZZ_CHECK(answer.sequenceNumber == 0);
    softdevice::DeviceState expected = before;
    expected.wrongPins += answer.code == RefusalCode::WrongPin ? 1 : 0;
    FUZZ_CHECK(after == expected);
    return answer.code == RefusalCode::WrongPin;
  }
  if (IsShown(command)) {
    FUZZ_CHECK(after == before && answer.sequenceNumber == 0);
  } else {
    const bool isReport = command >= Command::ReportSigned;
    const auto recorded =
        isReport ? device.FindReport(answer.sequenceNumber) : device.Find(answer.sequenceNumber);
    FUZZ_CHECK(answer.sequenceNumber == (isReport ? after.lastReportNumber : after.lastSequenceNumber));
    FUZZ_CHECK(answer.sequenceNumber == (isReport ? before.lastReportNumber : before.lastSequenceNumber) + 1);
    FUZZ_CHECK(recorded && recorded->command == command && recorded->response == answer.response);
    FUZZ_CHECK(std::vector<std::uint8_t>(request.begin(), request.end()) == recorded->request);
  }
  CheckDocument(device, key, command, request, answer.response);
  return !IsShown(command);
}

}  // namespace

void Device(Bytes data) {
  static Bench bench;
  constexpr int kMostCommands = 4;
  Input input(data);
  const bool isActive = !input.Flag();
  softdevice::Device& device = bench.Fresh(isActive);
  for (int count = 0; count < kMostCommands && !input.AtEnd(); ++count) {
    const auto command = static_cast<Command>(input.Byte());
    if (Execute(device, bench.Key(isActive), command, input.Piece())) {
      bench.MarkChanged(isActive);
    }
  }
}

}  // namespace fuzz
