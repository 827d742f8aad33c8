#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Tamper.h"
#include "softdevice/Device.h"

namespace softdevice::test {

using Bytes = std::vector<std::uint8_t>;

/// The bytes of a text such as "CD 04 20 26"; white space is skipped.
inline Bytes Hex(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  Bytes bytes;
  bool half = false;
  for (const char character : text) {
    if (character == ' ' || character == '\n') {
      continue;
    }
    const std::size_t digit = kDigits.find(character);
    if (digit == std::string_view::npos) {
      throw std::invalid_argument("no hexadecimal digit");
    }
    if (half) {
      bytes.back() = static_cast<std::uint8_t>(bytes.back() << 4 | digit);
    } else {
      bytes.push_back(static_cast<std::uint8_t>(digit));
    }
    half = !half;
  }
  return bytes;
}

inline Bytes Joined(Bytes first, const Bytes& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

// The records of a booking, each as a request has it.
inline const std::string kDate = "CD 04 20 26 12 31 ";
inline const std::string kTime = "CE 02 08 05 ";
inline const std::string kOperator = "C6 07 4B 61 73 73 65 20 31 ";  // "Kasse 1"
inline const std::string kHash =
    "C7 20 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F ";
inline const std::string kCurrency = "C8 02 03 D2 ";
/// 57 bytes, which end where flags or containers may follow.
inline const std::string kHead = kDate + kTime + kOperator + kHash + kCurrency;
/// Turnover 119.00, VAT 19.00, 19 %.
inline const std::string kContainer1 = "E1 0E D8 03 11 90 0C DA 03 01 90 0C DB 02 19 00 ";
inline const std::string kBooking = kHead + kContainer1;

inline const OpenOptions kCreate{.create = true,
                                 .taxpayerId = "DE123456789",
                                 .runningNumber = 1,
                                 .activate = true,
                                 .busyTimeout = std::chrono::seconds(10)};
/// What the response to the first booking of that device begins with.
inline const std::string kResponseHead = "C4 0B 44 45 31 32 33 34 35 36 37 38 39 C5 01 01 CB 01 01 ";

/// A folder of its own for each test, removed at its end.
class DeviceTest : public testing::Test {
 protected:
  DeviceTest() {
    std::string name = (std::filesystem::temp_directory_path() / "softdevice.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
      throw std::runtime_error("no folder for the test");
    }
    folder_ = name;
  }
  ~DeviceTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  [[nodiscard]] std::filesystem::path File() const { return folder_ / "till.zel"; }
  [[nodiscard]] Device Open() const { return Device::Open(File(), kCreate); }
  /// A device that is not activated, with the transport PIN 271828.
  [[nodiscard]] Device OpenInactive() const {
    OpenOptions options = kCreate;
    options.activate = false;
    options.transportPin = "271828";
    return Device::Open(File(), options);
  }

  /// Runs SQL on the device file from outside, which the device takes for damage.
  void RunSql(const std::string& sql) const { test::RunSql(File(), sql); }
  /// The same, but so that the device doesn't notice.
  void RunSqlAndSeal(const std::string& sql) const { test::RunSqlAndSeal(File(), sql); }

  std::filesystem::path folder_;
};

/// Executes a request that has to be accepted, and returns the response.
inline Bytes Accepted(Device& device, Command command, const std::string& request) {
  const Answer answer = device.Execute(command, Hex(request));
  EXPECT_TRUE(answer.accepted) << answer.reason;
  EXPECT_EQ(answer.code, RefusalCode::None);
  EXPECT_EQ(answer.reason, "");
  return answer.response;
}

/// Whether `bytes` are `start` and a signature record of 64 bytes.
inline void ExpectSigned(const Bytes& bytes, const std::string& start) {
  const Bytes expected = Hex(start + "9E 40");
  ASSERT_EQ(bytes.size(), expected.size() + 64);
  EXPECT_EQ(Bytes(bytes.begin(), bytes.end() - 64), expected);
}

/// What `command` answers: only the refusal's code counts.
inline RefusalCode CodeOf(Device& device, Command command, const std::string& request) {
  return device.Execute(command, Hex(request)).code;
}

inline void ExpectRefused(const Answer& answer, RefusalCode code, const std::string& reason) {
  EXPECT_FALSE(answer.accepted);
  EXPECT_EQ(answer.code, code) << ToString(answer.code);
  EXPECT_EQ(answer.reason, reason);
  EXPECT_TRUE(answer.response.empty());
  EXPECT_EQ(answer.sequenceNumber, 0U);
}

}  // namespace softdevice::test
