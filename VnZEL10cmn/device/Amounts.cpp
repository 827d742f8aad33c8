#include "VnZEL10cmn/device/internal/Amounts.h"

#include <array>
#include <charconv>
#include <string>
#include <string_view>

#include "VnZEL10cmn/device/internal/Records.h"
#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn::internal {

namespace {

constexpr Limits kPositive{1, 6};
constexpr std::size_t kPositiveDigits = 11;

constexpr std::string_view kAmountLengthLine = "\r\n    Länge Betrag .....: ";
constexpr std::string_view kAmountTextLine = "\r\n    kond. Betrag .....: ";

Limits AmountLimits(bool longVal) { return {1, longVal ? 8 : 6}; }

Refusal TooManyDigits(ZELErrorCodes number, std::size_t most, std::string_view text) {
  return {number, Compose("Die Länge der Betragsdastellung überschreitet den max. Wert!", kCrLf,
                          "Es sind max. ", most, " signifikante Stellen zulässig", kAmountLengthLine,
                          text.size(), kAmountTextLine, text)};
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
  std::array<char, 21> buffered{};
  char* end = std::to_chars(buffered.data(), buffered.data() + buffered.size(), cents).ptr;
  *end++ = amount < Currency() ? 'D' : 'C';
  const std::string_view text(buffered.data(), static_cast<std::size_t>(end - buffered.data()));
  const std::size_t most = longVal ? 21 : 11;
  if (text.size() > most + 1) {
    return TooManyDigits(ZELErrorCodes::Err_Zel_CnvInvalidLen, most, text);
  }
  if (auto refusal = CheckWrite(buffer, start, static_cast<std::int64_t>((text.size() + 1) / 2))) {
    return refusal;
  }
  // Less than half a cent leaves no digit, which has its own message.
  return cents == 0 ? WriteSignedBcd(buffer, start, tag, text) : WriteDigits(buffer, start, tag, text);
}

MaybeRefusal ReadAmount(const ByteArray& buffer, std::int32_t& start, ZelTags tag, Currency& result,
                        bool longVal) {
  if (auto refusal = CheckRead(buffer, start, AmountLimits(longVal), tag)) {
    return refusal;
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
  const std::string text = FormatNumber(value, kWhole, ",");
  if (text.size() > kPositiveDigits) {
    return TooManyDigits(ZELErrorCodes::Err_Zel_CnvDataSize, kPositiveDigits, text);
  }
  if (auto refusal = CheckWrite(buffer, start, static_cast<std::int64_t>((text.size() + 1) / 2))) {
    return refusal;
  }
  return WriteBcd(buffer, start, tag, text, false);
}

MaybeRefusal ReadPositive(const ByteArray& buffer, std::int32_t& start, ZelTags tag, Currency& result) {
  if (auto refusal = CheckRead(buffer, start, kPositive, tag)) {
    return refusal;
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
