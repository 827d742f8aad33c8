#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "softdevice/Device.h"

/// Reading and writing of records: tag byte, length byte (0 to 127), value.
namespace softdevice {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

namespace tag {
inline constexpr std::uint8_t kSignature = 158;
inline constexpr std::uint8_t kLifeCycle = 192;
inline constexpr std::uint8_t kTransportPin = 195;
inline constexpr std::uint8_t kTaxpayerId = 196;
inline constexpr std::uint8_t kDeviceNumber = 197;
inline constexpr std::uint8_t kOperator = 198;
inline constexpr std::uint8_t kItemHash = 199;
inline constexpr std::uint8_t kCurrency = 200;
inline constexpr std::uint8_t kTaxExclusive = 201;
inline constexpr std::uint8_t kTraining = 202;
inline constexpr std::uint8_t kSequenceNumber = 203;
inline constexpr std::uint8_t kReportNumber = 204;
inline constexpr std::uint8_t kDate = 205;
inline constexpr std::uint8_t kTime = 206;
inline constexpr std::uint8_t kFirstMonth = 208;
inline constexpr std::uint8_t kLastMonth = 209;
inline constexpr std::uint8_t kFirstTransaction = 210;
inline constexpr std::uint8_t kLastTransaction = 211;
inline constexpr std::uint8_t kReportHash = 212;
inline constexpr std::uint8_t kThirdParty = 214;
inline constexpr std::uint8_t kDeliveryNote = 215;
inline constexpr std::uint8_t kTurnover = 216;
inline constexpr std::uint8_t kTurnoverNegative = 217;
inline constexpr std::uint8_t kVat = 218;
inline constexpr std::uint8_t kVatRate = 219;
inline constexpr std::uint8_t kOverflow = 221;
inline constexpr std::uint8_t kVatChanged = 222;
inline constexpr std::uint8_t kContainerVat1 = 225;
inline constexpr std::uint8_t kContainerVat6 = 230;
inline constexpr std::uint8_t kContainerThirdParty = 231;
inline constexpr std::uint8_t kContainerDeliveryNote = 232;
inline constexpr std::uint8_t kContainerTraining = 233;
}  // namespace tag

/// The longest taxpayer ID.
inline constexpr std::size_t kMaxTaxpayerIdLength = 32;

/// Thrown by everything that checks records.
struct Refusal {
  RefusalCode code;
  std::string reason;
};

struct Record {
  std::size_t position;  ///< of the tag byte, counted from the start of the request or response
  std::uint8_t tag;
  ByteView value;
};

/// Takes the records out of a run of them, one by one.
class RecordReader {
 public:
  /// `whole` names the run in refusals ("the request"); `position` is that of its first byte.
  RecordReader(ByteView data, std::string whole, std::size_t position = 0);

  [[nodiscard]] bool AtEnd() const noexcept { return data_.empty(); }
  [[nodiscard]] std::size_t Position() const noexcept { return position_; }
  [[nodiscard]] const std::string& Whole() const noexcept { return whole_; }

  /// Refuses what is not a complete record.
  Record Next();

 private:
  ByteView data_;
  std::string whole_;
  std::size_t position_;
};

/// One place in a fixed order of records.
struct Field {
  std::uint8_t tag;
  bool mandatory;
};

/// Takes the next record, refuses it unless it is one that may follow, and returns its place in `fields`;
/// returns `fields.size()` at the end and refuses it where a mandatory record is missing. `next` is the first
/// place that may follow and moves behind the record found.
std::size_t NextInOrder(RecordReader& reader, std::span<const Field> fields, std::size_t& next,
                        Record& record);

/// Reads all records in the order of `fields`, and calls `take(record)` for each.
template <typename Take>
void ReadInOrder(RecordReader& reader, std::span<const Field> fields, Take&& take) {
  Record record{};
  std::size_t next = 0;
  while (NextInOrder(reader, fields, next, record) < fields.size()) {
    take(record);
  }
}

// What a record's value means; each refuses any other length or coding.

void CheckFlag(const Record& record);
void CheckHash(const Record& record);
/// Hour * 100 + minute.
std::int32_t ReadTime(const Record& record);
/// Year * 10000 + month * 100 + day.
std::int32_t ReadDate(const Record& record);
/// Year * 100 + month.
std::int32_t ReadMonth(const Record& record);
std::string ReadText(const Record& record, std::size_t maxLength);
/// Six digits.
std::string ReadTransportPin(const Record& record);
/// A big-endian number of 1 to 4 bytes.
std::uint32_t ReadCounter(const Record& record);
/// How many bytes an amount may have: requests have the short form, responses the long one.
inline constexpr std::size_t kShortAmount = 6;
inline constexpr std::size_t kLongAmount = 8;
/// Signed BCD of 1 to `maxLength` bytes, in cents.
std::int64_t ReadAmount(const Record& record, std::size_t maxLength = kShortAmount);
/// BCD of 1 to 6 bytes, in hundredths of a percent, at most 99.99 %.
std::int32_t ReadVatRate(const Record& record);
/// The 64 bytes of a signature.
std::span<const std::uint8_t, 64> ReadSignature(const Record& record);

/// "tag 0xC6 (operator)".
std::string DescribeTag(std::uint8_t tag);
/// Refuses the record for its value: position, tag, and why.
[[noreturn]] void RefuseValue(const Record& record, const std::string& why);

void AppendRecord(Bytes& out, std::uint8_t tag, ByteView value);
void AppendText(Bytes& out, std::uint8_t tag, std::string_view text);
/// Writes the number big-endian without leading zero bytes.
void AppendCounter(Bytes& out, std::uint8_t tag, std::uint32_t number);
/// Writes cents as signed BCD without leading zero bytes.
void AppendAmount(Bytes& out, std::uint8_t tag, std::int64_t amount);
/// Writes a number as BCD of at least so many bytes.
void AppendBcd(Bytes& out, std::uint8_t tag, std::uint32_t number, std::size_t minLength = 1);

}  // namespace softdevice
