#include "VnZEL10cmn/device/internal/Amounts.h"

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "VnZEL10cmn/device/internal/Records.h"
#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

constexpr Limits kPositive{1, 6};
constexpr std::size_t kPositiveDigits = 11;
constexpr std::size_t kAmountDigits = 11;
constexpr std::uint64_t kAmountEnd = 100000000000;  // the first number with more digits

constexpr std::string_view kAmountLengthLine = "\r\n    Länge Betrag .....: ";
constexpr std::string_view kAmountTextLine = "\r\n    kond. Betrag .....: ";

Limits AmountLimits(bool longVal) { return {1, longVal ? 8 : 6}; }

Refusal TooManyDigits(ZELErrorCodes number, std::size_t most, std::string_view text) {
  return {number, Compose("Die Länge der Betragsdastellung überschreitet den max. Wert!", kCrLf,
                          "Es sind max. ", most, " signifikante Stellen zulässig", kAmountLengthLine,
                          text.size(), kAmountTextLine, text)};
}

/// Packs a number's digits into the bytes before `end`, and returns the bytes from its first digit on.
std::span<const std::uint8_t> PackBcd(std::uint64_t number, std::span<std::uint8_t> bytes, std::size_t end) {
  for (; number > 0; number /= 100) {
    const auto pair = static_cast<unsigned>(number % 100);
    bytes[--end] = static_cast<std::uint8_t>(pair + pair / 10 * 6);  // ten counts as sixteen
  }
  return bytes.subspan(end);
}

}  // namespace

MaybeRefusal WriteAmount(ByteArray& buffer, std::int32_t& start, ZelTags tag, Currency amount, bool longVal) {
  constexpr std::int64_t limit = 92233720368547700;  // scaled: 9,223,372,036,854.77
  if (amount.Scaled() < -limit || amount.Scaled() > limit) {
    const std::string shown = FormatNumber(amount, kAmount, CurrentRegionalSettings());
    return Refusal{
        ZELErrorCodes::Err_Zel_CnvInvalidLen,
        Compose("Der Betrag über- oder unterschreitet die", kCrLf, "hier zulässigen Wertegrenzen!",
                "\r\n    Betrag ...........: ", shown, "\r\n    Min. Betrag ......: -9.223.372.036.854,77",
                "\r\n    Max. Betrag ......:  9.223.372.036.854,77")};
  }
  const std::uint64_t cents = Hundredfold(amount);
  const char sign = amount < Currency() ? 'D' : 'C';
  if (!longVal && cents >= kAmountEnd) {
    return TooManyDigits(ZELErrorCodes::Err_Zel_CnvInvalidLen, kAmountDigits, std::to_string(cents) + sign);
  }
  if (cents == 0) {
    // Less than half a cent leaves no digit, which has its own message.
    if (auto refusal = CheckWrite(buffer, start, 1)) {
      return refusal;
    }
    return WriteSignedBcd(buffer, start, tag, std::string("0") + sign);
  }
  std::array<std::uint8_t, 8> bytes{};
  bytes.back() = static_cast<std::uint8_t>(cents % 10 << 4 | (sign == 'D' ? 13U : 12U));
  return WriteBytes(buffer, start, tag, PackBcd(cents / 10, bytes, bytes.size() - 1));
}

MaybeRefusal ReadAmount(const ByteArray& buffer, std::int32_t& start, ZelTags tag, Currency& result,
                        bool longVal) {
  if (!IsRecord(buffer, start, AmountLimits(longVal), tag)) {
    return CheckRead(buffer, start, AmountLimits(longVal), tag);
  }
  const auto cents = SignedNumber(Value(buffer, start));
  if (!cents) {
    std::string digits;
    return ReadSignedBcd(buffer, start, digits);
  }
  Advance(start, buffer[start + 1]);
  result = Currency::FromScaled(*cents * 100);
  return std::nullopt;
}

MaybeRefusal WritePositive(ByteArray& buffer, std::int32_t& start, ZelTags tag, Currency value) {
  constexpr std::int64_t end = 999999999995000;  // scaled: the first value that is rounded to too many digits
  if (value < Currency() || value.Scaled() >= end) {
    const std::string text = FormatNumber(value, kWhole, ",");
    if (text.size() > kPositiveDigits) {
      return TooManyDigits(ZELErrorCodes::Err_Zel_CnvDataSize, kPositiveDigits, text);
    }
    // A sign is refused as a character, but not before there is room for it.
    if (auto refusal = CheckWrite(buffer, start, static_cast<std::int64_t>(text.size() + 1) / 2)) {
      return refusal;
    }
    return WriteBcd(buffer, start, tag, text, false);
  }
  std::array<std::uint8_t, 6> bytes{};
  const auto digits = PackBcd(static_cast<std::uint64_t>(value.Scaled() + 5000) / 10000, bytes, bytes.size());
  return WriteBytes(buffer, start, tag,
                    digits.empty() ? std::span<const std::uint8_t>(bytes).first(1) : digits);
}

MaybeRefusal ReadPositive(const ByteArray& buffer, std::int32_t& start, ZelTags tag, Currency& result) {
  if (!IsRecord(buffer, start, kPositive, tag)) {
    return CheckRead(buffer, start, kPositive, tag);
  }
  const auto number = BcdNumber(Value(buffer, start));
  if (!number) {
    std::string digits;
    return ReadBcd(buffer, start, digits);
  }
  Advance(start, buffer[start + 1]);
  result = *number;
  return std::nullopt;
}

}  // namespace VnZEL10cmn::internal
