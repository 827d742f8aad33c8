#include "VnZEL10cmn/document/internal/DocumentBytes.h"

#include <cstring>
#include <span>

#include "VnZEL10cmn/device/internal/Records.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

Refusal TooSmall(std::string_view header, std::int64_t start, std::int64_t length, std::int64_t end,
                 std::int64_t upper) {
  return {ZELErrorCodes::Err_Zel_CnvDataSize,
          Compose(header, kBufferTooSmall, "\r\n    Start ..........: ", start, "\r\n    Länge ..........: ",
                  length, "\r\n    Leseende .......: ", end, "\r\n    Obergrenze .....: ", upper)};
}

Refusal StartOutside(std::string_view header, std::int32_t start, std::string_view boundLine,
                     std::int32_t bound) {
  return {ZELErrorCodes::Err_Hlp_CnvRange,
          Compose(header, "Der Startindex ist außerhalb des gültigen Bereiches.",
                  "\r\n    Start ...........: ", start, boundLine, bound)};
}

}  // namespace

Refusal UnsupportedType(std::string_view header, ZELSerialType type) {
  return {ZELErrorCodes::Err_Ser_SerTypeNotSprt,
          Compose(header, "Der Serialisierungstyp wird von dieser", kCrLf, "Funktion nicht unterstützt!",
                  kCrLf, "    Typ .............: ", static_cast<std::int32_t>(type))};
}

MaybeRefusal CopyOut(const ByteArray& bytes, ByteArray& data, std::int32_t start, std::string_view header) {
  if (bytes.size() == 0) {
    return std::nullopt;
  }
  const auto length = static_cast<std::int64_t>(bytes.size());
  const std::int64_t end = start + length - 1;
  if (end > data.UBound()) {
    return TooSmall(header, start, length, end, data.UBound());
  }
  std::memcpy(&data[start], bytes.data(), bytes.size());
  return std::nullopt;
}

MaybeRefusal CopyIn(const ByteArray& data, std::int32_t start, std::int32_t dataLen, std::string_view header,
                    ByteArray& bytes) {
  if (start < data.LBound()) {
    return StartOutside(header, start, "\r\n    Min. Startpos. ..: ", data.LBound());
  }
  if (start > data.UBound()) {
    return StartOutside(header, start, "\r\n    Max. Startpos. ..: ", data.UBound());
  }
  const std::int64_t end = dataLen < 1 ? std::int64_t{data.UBound()} : std::int64_t{start} + dataLen - 1;
  if (end > data.UBound()) {
    return TooSmall(header, start, dataLen, end, data.UBound());
  }
  bytes = ByteArray(std::span<const std::uint8_t>(&data[start], static_cast<std::size_t>(end - start + 1)));
  return std::nullopt;
}

bool HashText(clsHelper01& helper, clsZelBaseCoding& coder, const ByteArray& hash, ZELHashFmt format,
              std::int32_t groupLen, std::string& text) {
  if (hash.size() == 0) {
    text.clear();
    return true;
  }
  return format == ZELHashFmt::Base16
             ? helper.GetBinStrOfBytes(hash, text, "", groupLen)
             : coder.GetZelSingatureString(hash, text, groupLen, "-", format == ZELHashFmt::Base32);
}

}  // namespace VnZEL10cmn::internal
