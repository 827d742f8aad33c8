#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tools/Bytes.h"
#include "tools/Fault.h"

/// Reads runs of device records one by one, so that what stands before a fault can be shown, and never holds more
/// than one of them.
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

struct Record {
  VnZEL10cmn::ZelTags tag{};
  std::string_view name;      ///< of the tag
  std::int32_t position = 0;  ///< of the first byte
  std::int32_t length = 0;    ///< of the value
  std::string hex;            ///< the value's bytes
  std::string value;          ///< what they mean; empty for records that hold records
  bool isText = false;        ///< the value is shown between quotation marks
  std::vector<Record> inner;  ///< the records of a container
};

/// The name of a tag; none for a byte that is no tag.
std::optional<std::string_view> TagName(std::uint8_t tag);

/// The name of a tag that is one.
std::string NameOf(VnZEL10cmn::ZelTags tag);

/// Reads the records of a run one after the other, up to the first fault. Any bytes end in a result.
class RunReader {
 public:
  /// `bytes` has to stay.
  RunReader(ByteSource& bytes, RunKind kind, std::int32_t start = 0)
      : bytes_(bytes), kind_(kind), position_(start) {}

  /// Reads the next record. False at the end, and at a fault. Of a container with a fault inside, the records before
  /// the fault are read; it is then the last record.
  bool Next(Record& record);

  /// Why reading ended before the end.
  [[nodiscard]] const std::optional<Fault>& FoundFault() const noexcept { return fault_; }

  /// Behind the record that was read last.
  [[nodiscard]] std::int32_t Position() const noexcept { return position_; }

  /// The bytes of the record that was read last, until the next one is read.
  [[nodiscard]] std::span<const std::uint8_t> Bytes() const noexcept;

 private:
  void FillWindow();
  bool ReadRecord(const VnZEL10cmn::ByteArray& data, std::int32_t position, bool inContainer, Record& record);
  bool ReadContainer(const VnZEL10cmn::ByteArray& data, Record& container);
  bool ReadValue(const VnZEL10cmn::ByteArray& data, std::int32_t start, Record& record);
  bool ReadText(bool isRead, Record& record);
  bool ReadLifeCycle(const VnZEL10cmn::ByteArray& data, std::int32_t start, std::string& value);
  bool ReadCode(const VnZEL10cmn::ByteArray& data, std::int32_t start, Record& record);
  bool ReadCounter(const VnZEL10cmn::ByteArray& data, std::int32_t start, Record& record);
  bool ReadDate(const VnZEL10cmn::ByteArray& data, std::int32_t start, Record& record);
  bool ReadTime(const VnZEL10cmn::ByteArray& data, std::int32_t start, std::string& value);
  bool ReadAmount(const VnZEL10cmn::ByteArray& data, std::int32_t start, bool longForm, Record& record);
  bool ReadRate(const VnZEL10cmn::ByteArray& data, std::int32_t start, std::string& value);
  bool ReadFlag(const VnZEL10cmn::ByteArray& data, std::int32_t start, std::string& value);
  bool SetFault(std::int32_t position, std::int32_t number, std::string reason);

  ByteSource& bytes_;
  RunKind kind_;
  std::int32_t position_;
  std::int32_t last_ = 0;           ///< where the record that was read last begins
  VnZEL10cmn::ByteArray window_;    ///< the part of the bytes that is at hand, under their positions
  VnZEL10cmn::ByteArray contents_;  ///< of the container that is read
  VnZEL10cmn::clsZelBaseCoding coder_;
  std::optional<Fault> fault_;
};

/// Whether the record of an item list begins an item, when there are so many items before it.
inline bool BeginsItem(const Record& record, std::size_t items) {
  return items == 0 || record.tag == VnZEL10cmn::ZelTags::Item_Quantity;
}

/// Records can all be sound and yet not be what the library reads: in another order, or with one missing. It is asked
/// with those of the records that make a difference to it, of which there are few however many records there are.
class RunCheck {
 public:
  explicit RunCheck(RunKind kind) : kind_(kind) {}

  /// Takes the next record, which is sound, with its bytes.
  void Take(const Record& record, std::span<const std::uint8_t> bytes);

  /// What is wrong with the run as a whole.
  [[nodiscard]] std::optional<Fault> Finish();

 private:
  void TakeItemRecord(const Record& record, std::span<const std::uint8_t> bytes);

  RunKind kind_;
  std::size_t count_ = 0;
  std::vector<std::uint8_t> kept_;
  std::bitset<256> isKept_;
  // Of an item list.
  std::size_t items_ = 0;
  bool hasQuantity_ = false;
  std::uint8_t second_ = 0;  ///< byte of the item, which the library shows
  VnZEL10cmn::clsZelItemCash item_;
  std::optional<Fault> fault_;
};

/// What the tags give away. The response to a data record that names the taxpayer counts as one to a booking,
/// which looks the same.
RunKind GuessKind(ByteSource& bytes);

/// Reads a run to its end; what is wrong with it, if anything.
std::optional<Fault> FindFault(ByteSource& bytes, RunKind kind);

/// The first record of that tag, if any.
std::optional<Record> FindRecord(ByteSource& bytes, RunKind kind, VnZEL10cmn::ZelTags tag);

/// The fault of an item list that can't be decoded, in the library's words; `number` is the item's, from 1, and `second`
/// its second byte.
Fault UndecodableItem(std::size_t number, std::uint8_t second);

/// "Container_Vat_1 (0xE1)".
std::string Describe(const Record& record);

/// "Container_Vat_1 (0xE1): Trnvr (0xD8) is 12.34, expected 11.34": the first place where two runs differ;
/// empty when they don't.
std::string FirstDifference(ByteSource& found, ByteSource& expected, RunKind kind);

/// The same for the records of two containers.
std::string FirstDifference(const std::vector<Record>& found, const std::vector<Record>& expected);

}  // namespace zel
