#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "VnZEL10cmn/device/ZelTags.h"
#include "VnZEL10cmn/errors/internal/Refusal.h"
#include "VnZEL10cmn/types/ByteArray.h"

namespace VnZEL10cmn::internal {

/// The bytes before a record's value: tag and length.
inline constexpr std::int32_t kRecordHead = 2;

/// Length limits of a value in bytes; -1 for none.
struct Limits {
  std::int32_t min = -1;
  std::int32_t max = -1;
};

// Detail lines that many messages share. A label carries its line break.
inline constexpr std::string_view kStartLine = "\r\n    Startposition ...: ";
inline constexpr std::string_view kLowerLine = "\r\n    Untergrenze .....: ";
inline constexpr std::string_view kUpperLine = "\r\n    Obergrenze ......: ";
inline constexpr std::string_view kTagLine = "\r\n    Tag .............: ";
inline constexpr std::string_view kLengthLine = "\r\n    Länge ...........: ";
inline constexpr std::string_view kReadEndLine = "\r\n    Leseende ........: ";
inline constexpr std::string_view kTagFoundLine = "\r\n    Tag gefunden ....: ";
inline constexpr std::string_view kBufferTooSmall = "Der Datenpuffer ist zu klein.";
inline constexpr std::string_view kUnexpectedTag =
    "Unerwartetes TAG\r\n"
    "Das gefundenen TAG (s.u.) darf in\r\n"
    "ZEL-Umsatz-Containern nicht vorkommen!";

/// "0x" and two upper-case hexadecimal digits.
std::string HexByte(std::uint8_t byte);
/// The same for a tag.
inline std::string HexByte(ZelTags tag) { return HexByte(static_cast<std::uint8_t>(tag)); }

/// Whether a complete record stands at `start`.
MaybeRefusal CheckRead(const ByteArray& buffer, std::int32_t start, Limits limits = {}, ZelTags tag = {});

/// The same without the reason: nearly every record is as it should be.
inline bool IsRecord(const ByteArray& buffer, std::int32_t start, Limits limits = {}, ZelTags tag = {}) {
  constexpr std::uint8_t longest = 127;
  const std::int32_t first = buffer.LBound();
  if (first < 0 || start < first || start >= buffer.UBound()) {
    return false;
  }
  const std::uint8_t* const record = buffer.data() + (start - first);
  return std::int64_t{start} + record[1] + 1 <= buffer.UBound() && record[1] <= longest &&
         record[1] >= limits.min && (limits.max < 0 || record[1] <= limits.max) &&
         (tag == ZelTags{} || static_cast<ZelTags>(record[0]) == tag);
}

/// Whether the record at `start` ends within the buffer: the one check that item and container readers make
/// before they dispatch on tags.
MaybeRefusal CheckRecordEnd(const ByteArray& buffer, std::int32_t start);

/// Whether a record with a value of `length` bytes fits at `start`.
MaybeRefusal CheckWrite(const ByteArray& buffer, std::int32_t start, std::int64_t length);

/// Moves `start` behind a record with a value of `length` bytes; throws std::overflow_error where no index
/// follows.
inline void Advance(std::int32_t& start, std::size_t length) {
  const std::int64_t behind = start + std::int64_t{kRecordHead} + static_cast<std::int64_t>(length);
  if (behind > std::numeric_limits<std::int32_t>::max()) ThrowOverflow();
  start = static_cast<std::int32_t>(behind);
}

/// A tag that has no place where it was found.
Refusal UnexpectedTag(std::uint8_t tag);

// Readers and writers of the record at `start`, which they move behind it. A reader takes any tag unless it is told
// which. After a refusal `start` may have moved; the public operations put it back.

/// The value of a record that is checked already.
inline std::span<const std::uint8_t> Value(const ByteArray& buffer, std::int32_t start) {
  const std::uint8_t* const record = buffer.data() + (start - buffer.LBound());
  return {record + kRecordHead, record[1]};
}

/// The value of a text record where it stands in the buffer, if it is one that `ReadAscii` takes.
std::optional<std::string_view> PlainText(const ByteArray& buffer, std::int32_t start, Limits limits = {},
                                          ZelTags tag = {});

MaybeRefusal ReadBinary(const ByteArray& buffer, std::int32_t& start, ByteArray& result, Limits limits = {},
                        ZelTags tag = {});
MaybeRefusal ReadAscii(const ByteArray& buffer, std::int32_t& start, std::string& result, Limits limits = {},
                       ZelTags tag = {});
MaybeRefusal ReadBcd(const ByteArray& buffer, std::int32_t& start, std::string& result, Limits limits = {},
                     ZelTags tag = {});
MaybeRefusal ReadSignedBcd(const ByteArray& buffer, std::int32_t& start, std::string& result,
                           Limits limits = {});

/// The numbers of one to nine bytes of BCD, without and with a sign; none of a value that the readers refuse.
std::optional<std::int64_t> BcdNumber(std::span<const std::uint8_t> value);
std::optional<std::int64_t> SignedNumber(std::span<const std::uint8_t> value);

MaybeRefusal WriteBinary(ByteArray& buffer, std::int32_t& start, ZelTags tag, const ByteArray& data);
MaybeRefusal WriteBytes(ByteArray& buffer, std::int32_t& start, ZelTags tag,
                        std::span<const std::uint8_t> value);
MaybeRefusal WriteAscii(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::string_view data);
/// Text in the form that the device takes, up to `most` characters of it.
MaybeRefusal WriteDeviceText(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::string_view text,
                             std::size_t most);
MaybeRefusal WriteBool(ByteArray& buffer, std::int32_t& start, ZelTags tag, bool data);
MaybeRefusal WriteBcd(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::string_view data,
                      bool leadZeroOk);
MaybeRefusal WriteSignedBcd(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::string_view data);

/// Writes digits of BCD, which are known to be 0 to 9 and A to F; an odd count is led by 0.
MaybeRefusal WriteDigits(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::string_view digits);

/// A value shorter or longer than its field allows.
Refusal TooShort(std::int32_t start, std::uint8_t tag, std::int64_t length, std::int32_t min);
Refusal TooLong(std::int32_t start, std::uint8_t tag, std::int64_t length, std::int32_t max);

/// A byte of a text value that is none of its characters; `offset` counts from the value's first byte.
Refusal InvalidTextByte(std::int32_t start, std::uint8_t tag, std::size_t length, std::size_t offset,
                        std::uint8_t byte);

}  // namespace VnZEL10cmn::internal
