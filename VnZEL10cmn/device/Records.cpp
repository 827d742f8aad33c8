#include "VnZEL10cmn/device/internal/Records.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "VnZEL10cmn/codec/internal/TextCodecs.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

constexpr std::int64_t kMaxLength = 127;

constexpr std::string_view kTagPositionLine = "\r\n    Position Tag ....: ";
constexpr std::string_view kTagLengthLine = "\r\n    Taglänge ........: ";
constexpr std::string_view kTotalPositionLine = "\r\n    Position total ..: ";
constexpr std::string_view kTextLine = "\r\n    Zeichenfolge ....: ";
constexpr std::string_view kCharacterLine = "\r\n    Zeichen .........: ";
constexpr std::string_view kCharacterPositionLine = "\r\n    Zeichenposition .: ";

std::uint8_t ByteAt(const ByteArray& buffer, std::int64_t index) {
  return buffer[static_cast<std::int32_t>(index)];
}

MaybeRefusal CheckLowerBound(const ByteArray& buffer) {
  if (buffer.LBound() >= 0) {
    return std::nullopt;
  }
  return Refusal{ZELErrorCodes::Err_Zel_CnvLBound, Compose("Die Untergrenze des Datenfeldes ist nicht \"0\"",
                                                           kCrLf, "Untergrenze: ", buffer.LBound())};
}

/// What reading and writing have in common: the array's bounds and a start that leaves room for a length
/// byte.
MaybeRefusal CheckStart(const ByteArray& buffer, std::int32_t start) {
  if (auto refusal = CheckLowerBound(buffer)) {
    return refusal;
  }
  if (start < buffer.LBound() || start > buffer.UBound()) {
    return Refusal{ZELErrorCodes::Err_Zel_CnvRange,
                   Compose("Die Startposition ist ungültig", kStartLine, start, kLowerLine, buffer.LBound(),
                           kUpperLine, buffer.UBound())};
  }
  if (start == buffer.UBound()) {
    return Refusal{ZELErrorCodes::Err_Zel_CnvInvalidStart,
                   Compose("Die Startposition ist ungültig, es kann keine Längenangabe folgen", kStartLine,
                           start, kUpperLine, buffer.UBound())};
  }
  return std::nullopt;
}

Refusal LengthRefusal(std::string_view message, std::int32_t start, std::uint8_t tag, std::int64_t length) {
  return {ZELErrorCodes::Err_Zel_CnvInvalidLen,
          Compose(message, kStartLine, start, kTagLine, HexByte(tag), kLengthLine, length)};
}

Refusal BeyondLengthByte(std::int32_t start, std::uint8_t tag, std::int64_t length) {
  return LengthRefusal(
      Compose("Ungültige Längenangabe.", kCrLf, "Die Länge eines Tags darf 127 Byte nicht überschreiten!"),
      start, tag, length);
}

/// Writes tag and length of the record that begins at an index, for which there is room, and returns where its value
/// belongs.
std::uint8_t* WriteHead(ByteArray& buffer, std::int32_t start, ZelTags tag, std::size_t length) {
  std::uint8_t* const record = buffer.data() + (start - buffer.LBound());
  record[0] = static_cast<std::uint8_t>(tag);
  record[1] = static_cast<std::uint8_t>(length);
  return record + kRecordHead;
}

/// Whether there is room for a record at `start`; why not is told by `CheckWrite`.
bool Fits(const ByteArray& buffer, std::int32_t start, std::int64_t length) {
  return length >= 0 && length <= kMaxLength && buffer.LBound() >= 0 && start >= buffer.LBound() &&
         start + length + 1 <= buffer.UBound();
}

/// Writes a record whose value `fill` puts where it is told to.
template <class Fill>
MaybeRefusal WriteRecord(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::size_t length,
                         Fill&& fill) {
  if (!Fits(buffer, start, static_cast<std::int64_t>(length))) {
    return CheckWrite(buffer, start, static_cast<std::int64_t>(length));
  }
  fill(WriteHead(buffer, start, tag, length));
  Advance(start, length);
  return std::nullopt;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Whether all characters are their own code page 1252 byte, and such that a text record may hold: 20 to 7F.
bool IsPlain(const void* text, std::size_t size) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  const auto* at = static_cast<const unsigned char*>(text);
  std::uint64_t refused = 0;
  for (; size >= sizeof ones; size -= sizeof ones, at += sizeof ones) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    // What is below 20 borrows from the bit that is set above 7F.
    refused |= word | (word - 0x20 * ones);
  }
  for (; size > 0; --size, ++at) {
    refused |= *at | (*at - 0x20U);
  }
  return (refused & 0x80 * ones) == 0;
}

/// A UTF-16 code unit as a message shows it: `"ü" (0xFC - 252)`, with its code page 1252 code.
std::string Shown(char16_t unit) {
  const std::uint8_t code = ToCodePage1252(unit);
  std::string character;
  AppendUtf8(character, unit);
  return Compose("\"", character, "\" (", HexByte(code), " - ", code, ")");
}

/// Visits the UTF-16 code units of a text, with their position from 1, up to the first one refused.
template <class Accepts>
bool FindRefused(std::string_view text, Accepts&& accepts, char16_t& refused, std::size_t& position) {
  std::size_t at = 0;
  position = 0;
  ForEachUtf16Unit(text, [&](char16_t unit) {
    ++at;
    if (position == 0 && !accepts(unit)) {
      position = at;
      refused = unit;
    }
  });
  return position != 0;
}

MaybeRefusal CheckBcdDigits(const ByteArray& buffer, std::int32_t start, std::string_view text,
                            std::size_t count) {
  const auto* const invalid = std::find_if_not(text.begin(), text.begin() + count, IsDigit);
  if (invalid == text.begin() + count) {
    return std::nullopt;
  }
  return Refusal{ZELErrorCodes::Err_Zel_CnvInvalidBCD,
                 Compose("Es wurde ein ungültiger BCD-wert gefunden!", kTagLine, HexByte(buffer[start]),
                         kTagLengthLine, buffer[start + 1], kTagPositionLine, start,
                         "\r\n    Pos. Zeichenf. ..: ", invalid - text.begin() + 1, kTextLine, text,
                         kCharacterLine, std::string_view(invalid, 1))};
}

/// Drops leading zeros while at least `least` characters stay.
void DropLeadingZeros(std::string& text, std::size_t least) {
  const std::size_t most = text.size() > least ? text.size() - least : 0;
  text.erase(0, std::min(text.find_first_not_of('0'), most));
}

MaybeRefusal CheckNotEmpty(std::string_view text, std::string_view message, ZelTags tag, std::int32_t start) {
  if (!text.empty()) {
    return std::nullopt;
  }
  return Refusal{ZELErrorCodes::Err_Zel_CnvInvalidLen,
                 Compose(message, kTagLine, HexByte(tag), kTagLengthLine, 0, kTagPositionLine, start)};
}

constexpr std::string_view kEmptyBcd = "Leere BCD-Zeichenfolgen sind nicht erlaubt!";

Refusal InvalidBcdCharacter(std::string_view message, ZelTags tag, std::int32_t start,
                            std::string_view character, std::size_t position) {
  return {ZELErrorCodes::Err_Zel_CnvInvalidBCD,
          Compose(message, kTagLine, HexByte(tag), kTagPositionLine, start, kCharacterLine, character,
                  kCharacterPositionLine, position)};
}

}  // namespace

std::string HexByte(std::uint8_t byte) { return "0x" + HexDigits(byte); }

Refusal TooShort(std::int32_t start, std::uint8_t tag, std::int64_t length, std::int32_t min) {
  Refusal refusal = LengthRefusal("Die Mindestlänge für dieses TAG wurde unterschritten", start, tag, length);
  refusal.message.append(Compose("\r\n    Mindestlänge ....: ", min));
  return refusal;
}

Refusal TooLong(std::int32_t start, std::uint8_t tag, std::int64_t length, std::int32_t max) {
  Refusal refusal = LengthRefusal("Die Maximallänge für dieses TAG wurde überschritten", start, tag, length);
  refusal.message.append(Compose("\r\n    Maximallänge ....: ", max));
  return refusal;
}

Refusal InvalidTextByte(std::int32_t start, std::uint8_t tag, std::size_t length, std::size_t offset,
                        std::uint8_t byte) {
  return {
      ZELErrorCodes::Err_Zel_CnvInvalidChar,
      Compose("Es wurde ein ungültiger Zeichenwert gefunden!", kTagLine, HexByte(tag), kTagLengthLine, length,
              kTotalPositionLine, std::int64_t{start} + kRecordHead + static_cast<std::int64_t>(offset),
              kTagPositionLine, offset, "\r\n    Zeichenwert .....: ", byte, " // ", HexByte(byte))};
}

Refusal UnexpectedTag(std::uint8_t tag) {
  return {ZELErrorCodes::Err_Ser_TagUnexpected, Compose(kUnexpectedTag, kTagFoundLine, HexDigits(tag))};
}

MaybeRefusal CheckRecordEnd(const ByteArray& buffer, std::int32_t start) {
  const std::uint8_t length = ByteAt(buffer, std::int64_t{start} + 1);
  const std::int64_t end = std::int64_t{start} + length + 1;
  if (end <= buffer.UBound()) {
    return std::nullopt;
  }
  return Refusal{ZELErrorCodes::Err_Zel_CnvDataSize,
                 Compose(kBufferTooSmall, kStartLine, start, kTagLine, HexByte(buffer[start]), kLengthLine,
                         length, kReadEndLine, end, kUpperLine, buffer.UBound())};
}

MaybeRefusal CheckRead(const ByteArray& buffer, std::int32_t start, Limits limits, ZelTags tag) {
  if (IsRecord(buffer, start, limits, tag)) {
    return std::nullopt;
  }
  if (auto refusal = CheckStart(buffer, start)) {
    return refusal;
  }
  if (auto refusal = CheckRecordEnd(buffer, start)) {
    return refusal;
  }
  const std::uint8_t found = buffer[start];
  const std::uint8_t length = buffer[start + 1];
  if (length > kMaxLength) {
    return BeyondLengthByte(start, found, length);
  }
  if (limits.min >= 0 && length < limits.min) {
    return TooShort(start, found, length, limits.min);
  }
  if (limits.max >= 0 && length > limits.max) {
    return TooLong(start, found, length, limits.max);
  }
  const auto expected = static_cast<std::uint8_t>(tag);
  return Refusal{ZELErrorCodes::Err_Zel_CnvInvalidLen,
                 Compose("Es wurde nicht das erwartete Tag gefunden", kStartLine, start,
                         "\r\n    Tag erwartet ....: ", HexByte(expected), " // ", expected, kTagFoundLine,
                         HexByte(found), " // ", found)};
}

MaybeRefusal CheckWrite(const ByteArray& buffer, std::int32_t start, std::int64_t length) {
  if (Fits(buffer, start, length)) {
    return std::nullopt;
  }
  if (length < 0) {
    return Refusal{
        ZELErrorCodes::Err_Cmn_InvalidParam,
        Compose("Der Parameter \"Length\" weist einen ungültigen Wert auf", kCrLf, "Length: ", length)};
  }
  if (auto refusal = CheckStart(buffer, start)) {
    return refusal;
  }
  const std::int64_t end = start + length + 1;
  if (end > buffer.UBound()) {
    return Refusal{ZELErrorCodes::Err_Zel_CnvDataSize,
                   Compose(kBufferTooSmall, kStartLine, start, kLengthLine, length,
                           "\r\n    Schreibende .....: ", end, kUpperLine, buffer.UBound())};
  }
  return BeyondLengthByte(start, buffer[start], length);
}

MaybeRefusal ReadBinary(const ByteArray& buffer, std::int32_t& start, ByteArray& result, Limits limits,
                        ZelTags tag) {
  if (auto refusal = CheckRead(buffer, start, limits, tag)) {
    return refusal;
  }
  // The result may be the buffer itself.
  ByteArray value(Value(buffer, start));
  Advance(start, value.size());
  result = std::move(value);
  return std::nullopt;
}

std::optional<std::string_view> PlainText(const ByteArray& buffer, std::int32_t start, Limits limits,
                                          ZelTags tag) {
  if (!IsRecord(buffer, start, limits, tag)) {
    return std::nullopt;
  }
  const std::span<const std::uint8_t> value = Value(buffer, start);
  if (!IsPlain(value.data(), value.size())) {
    return std::nullopt;
  }
  return std::string_view(reinterpret_cast<const char*>(value.data()), value.size());
}

MaybeRefusal ReadAscii(const ByteArray& buffer, std::int32_t& start, std::string& result, Limits limits,
                       ZelTags tag) {
  if (const auto text = PlainText(buffer, start, limits, tag)) {
    result = std::string(*text);  // takes fewer steps than an assignment of the text
    Advance(start, text->size());
    return std::nullopt;
  }
  if (auto refusal = CheckRead(buffer, start, limits, tag)) {
    return refusal;
  }
  // What stands before the byte that is refused is read.
  const std::span<const std::uint8_t> value = Value(buffer, start);
  const auto refused =
      std::ranges::find_if(value, [](std::uint8_t byte) { return byte < 0x20 || byte > 0x7F; });
  result.assign(value.size(), ' ');
  std::copy(value.begin(), refused, result.begin());
  return InvalidTextByte(start, buffer[start], value.size(),
                         static_cast<std::size_t>(refused - value.begin()), *refused);
}

MaybeRefusal ReadBcd(const ByteArray& buffer, std::int32_t& start, std::string& result, Limits limits,
                     ZelTags tag) {
  if (auto refusal = CheckRead(buffer, start, limits, tag)) {
    return refusal;
  }
  result = UpperHex(Value(buffer, start));
  if (auto refusal = CheckBcdDigits(buffer, start, result, result.size())) {
    return refusal;
  }
  DropLeadingZeros(result, 1);
  Advance(start, buffer[start + 1]);
  return std::nullopt;
}

MaybeRefusal ReadSignedBcd(const ByteArray& buffer, std::int32_t& start, std::string& result, Limits limits) {
  // Without a byte there is no sign.
  limits.min = std::max(limits.min, 1);
  if (auto refusal = CheckRead(buffer, start, limits)) {
    return refusal;
  }
  result = UpperHex(Value(buffer, start));
  if (auto refusal = CheckBcdDigits(buffer, start, result, result.size() - 1)) {
    return refusal;
  }
  DropLeadingZeros(result, 2);
  const bool negative = result.back() == 'D';
  result.pop_back();
  if (negative && result == "0") {
    return Refusal{ZELErrorCodes::Err_Zel_CnvInvalidDtaFmt,
                   Compose("Das Datenformat ist ungültig (Nullwert mit \"-\"-Kennzeichen!)", kTagLine,
                           HexByte(buffer[start]), kTagLengthLine, buffer[start + 1], kTotalPositionLine,
                           start, "\r\n    Dekodierter Wert : & Result")};
  }
  if (negative) {
    result.insert(result.begin(), '-');
  }
  Advance(start, buffer[start + 1]);
  return std::nullopt;
}

std::optional<std::int64_t> SignedNumber(std::span<const std::uint8_t> value) {
  const std::uint8_t last = value.back();
  const auto digits = BcdNumber(value.first(value.size() - 1));
  const bool negative = (last & 15) == 13;
  if (!digits || last >> 4 > 9) {
    return std::nullopt;
  }
  const std::int64_t number = *digits * 10 + (last >> 4);
  if (negative && number == 0) {
    return std::nullopt;
  }
  return negative ? -number : number;
}

std::optional<std::int64_t> BcdNumber(std::span<const std::uint8_t> value) {
  std::int64_t number = 0;
  for (const std::uint8_t byte : value) {
    if (byte >> 4 > 9 || (byte & 15) > 9) {
      return std::nullopt;
    }
    number = number * 100 + std::int64_t{(byte >> 4) * 10 + (byte & 15)};
  }
  return number;
}

MaybeRefusal WriteBinary(ByteArray& buffer, std::int32_t& start, ZelTags tag, const ByteArray& data) {
  if (data.LBound() < 0) {
    return Refusal{
        ZELErrorCodes::Err_Zel_CnvLBound,
        Compose("Die Untergrenze des Datenpuffers ist nicht \"0\"", kCrLf, "Untergrenze: ", data.LBound())};
  }
  const std::int64_t length = std::int64_t{data.UBound()} + 1;
  if (auto refusal = CheckWrite(buffer, start, length)) {
    return refusal;
  }
  // From index 0 on, which an array that begins later does not have.
  return WriteBytes(
      buffer, start, tag,
      length == 0 ? std::span<const std::uint8_t>() : std::span(&data[0], static_cast<std::size_t>(length)));
}

MaybeRefusal WriteBytes(ByteArray& buffer, std::int32_t& start, ZelTags tag,
                        std::span<const std::uint8_t> value) {
  return WriteRecord(buffer, start, tag, value.size(),
                     [value](std::uint8_t* out) { std::ranges::copy(value, out); });
}

MaybeRefusal WriteAscii(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::string_view data) {
  if (data.empty()) {
    return CheckNotEmpty(data, "Leere Zeichenfolgen sind nicht erlaubt!", tag, start);
  }
  if (IsPlain(data.data(), data.size())) {
    return WriteRecord(buffer, start, tag, data.size(),
                       [data](std::uint8_t* out) { std::copy(data.begin(), data.end(), out); });
  }
  const std::size_t length = Utf16Length(data);
  if (auto refusal = CheckWrite(buffer, start, static_cast<std::int64_t>(length))) {
    return refusal;
  }
  WriteHead(buffer, start, tag, length);
  std::int64_t at = std::int64_t{start} + kRecordHead;  // behind the last byte there may be no index
  char16_t refused = 0;
  std::size_t position = 0;
  const auto write = [&](char16_t unit) {
    const std::uint8_t code = ToCodePage1252(unit);
    const bool printable = code >= 32 && code <= 127;
    if (printable) {
      buffer[static_cast<std::int32_t>(at++)] = code;
    }
    return printable;
  };
  if (FindRefused(data, write, refused, position)) {
    return Refusal{
        ZELErrorCodes::Err_Zel_CnvInvalidLen,
        Compose("Ungültiges Zeichen in der Zeichenfolge", kTagLine, HexByte(tag), kTagLengthLine, length,
                kTagPositionLine, start, kCharacterLine, Shown(refused), kCharacterPositionLine, position)};
  }
  Advance(start, length);
  return std::nullopt;
}

MaybeRefusal WriteDeviceText(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::string_view text,
                             std::size_t most) {
  if (!Fits(buffer, start, static_cast<std::int64_t>(most))) {
    std::string shortened(most, '\0');
    shortened.resize(DeviceText(text, shortened));
    return WriteAscii(buffer, start, tag, shortened);
  }
  std::uint8_t* const record = buffer.data() + (start - buffer.LBound());
  const std::size_t length = DeviceText(text, {reinterpret_cast<char*>(record) + kRecordHead, most});
  if (length == 0) {
    return WriteAscii(buffer, start, tag, {});
  }
  WriteHead(buffer, start, tag, length);
  Advance(start, length);
  return std::nullopt;
}

MaybeRefusal WriteBool(ByteArray& buffer, std::int32_t& start, ZelTags tag, bool data) {
  return data ? WriteBytes(buffer, start, tag, {}) : std::nullopt;
}

MaybeRefusal WriteDigits(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::string_view digits) {
  return WriteRecord(buffer, start, tag, (digits.size() + 1) / 2, [digits](std::uint8_t* out) {
    std::size_t nibble = digits.size() % 2;
    unsigned byte = 0;
    for (const char digit : digits) {
      byte = byte << 4 | static_cast<unsigned>(HexValue(static_cast<char16_t>(digit)));
      if (++nibble % 2 == 0) {
        *out++ = static_cast<std::uint8_t>(byte & 0xFF);
      }
    }
  });
}

MaybeRefusal WriteBcd(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::string_view data,
                      bool leadZeroOk) {
  const std::string_view digits = Trim(data);
  if (!digits.empty() && std::all_of(digits.begin(), digits.end(), IsDigit)) {
    const std::size_t zeros = leadZeroOk ? 0 : std::min(digits.find_first_not_of('0'), digits.size() - 1);
    return WriteDigits(buffer, start, tag, digits.substr(zeros));
  }
  if (auto refusal = CheckNotEmpty(digits, kEmptyBcd, tag, start)) {
    return refusal;
  }
  char16_t refused = 0;
  std::size_t position = 0;
  FindRefused(
      Upper(digits), [](char16_t unit) { return unit >= '0' && unit <= '9'; }, refused, position);
  return InvalidBcdCharacter("Ungültiges Zeichen in der BCD-Zeichenfolge", tag, start, Shown(refused),
                             position);
}

MaybeRefusal WriteSignedBcd(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::string_view data) {
  std::string text = Upper(Trim(data));
  if (auto refusal = CheckNotEmpty(text, kEmptyBcd, tag, start)) {
    return refusal;
  }
  if (text.back() != 'C' && text.back() != 'D') {
    return InvalidBcdCharacter(
        Compose("Ungültiges Endzeichen in der einer", kCrLf, "vorzeichenbehafteten BCD-Zeichenfolge."), tag,
        start, Compose("\"", Utf16Right(text, 1), "\", erlaubt sind \"C\" oder \"D\""), Utf16Length(text));
  }
  char16_t refused = 0;
  std::size_t position = 0;
  const auto accepts = [](char16_t unit) {
    return (unit >= '0' && unit <= '9') || unit == 'C' || unit == 'D';
  };
  if (FindRefused(text, accepts, refused, position)) {
    return InvalidBcdCharacter("Ungültiges Zeichen in der BCD-Zeichenfolge (vorzeichenbehaftet)", tag, start,
                               Shown(refused), position);
  }
  DropLeadingZeros(text, 1);
  if (std::none_of(text.begin(), text.end() - 1, IsDigit)) {
    return Refusal{ZELErrorCodes::Err_Zel_CnvInvalidLen,
                   Compose("Ungültiges BCD-Zeichenfolgenformat", kCrLf, "Die Konditionierung liefert eine",
                           kCrLf, "Zeichenfolge ohne signifikate Daten", kTextLine, "\"", text, "\"")};
  }
  return WriteDigits(buffer, start, tag, text);
}

}  // namespace VnZEL10cmn::internal
