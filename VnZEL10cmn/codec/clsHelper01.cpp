#include "VnZEL10cmn/codec/clsHelper01.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <span>
#include <type_traits>

#include "VnZEL10cmn/codec/internal/KeptText.h"
#include "VnZEL10cmn/codec/internal/Sha.h"
#include "VnZEL10cmn/codec/internal/TextCodecs.h"
#include "VnZEL10cmn/errors/internal/Refusal.h"
#include "VnZEL10cmn/platform/internal/Guid.h"
#include "VnZEL10cmn/types/internal/Decimal.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;

namespace {

using Bytes = std::span<const std::uint8_t>;

using internal::Refusal;

int DecimalsOf(std::int32_t digits) { return digits < 0 || digits > 3 ? 2 : static_cast<int>(digits); }

std::optional<Refusal> CheckLowerBound(const ByteArray& data) {
  if (data.LBound() >= 0) {
    return std::nullopt;
  }
  return Refusal{ZELErrorCodes::Err_Hlp_CnvLBound, Compose("Die Untergrenze des Datenfeldes ist nicht \"0\"",
                                                           kCrLf, "Untergrenze: ", data.LBound())};
}

Refusal InvalidLength() {
  return {ZELErrorCodes::Err_Hlp_CnvLength, "Die Länge der Base64-Zeichenfolge ist ungültig!"};
}

/// The elements `first` to the upper bound of an array that is counted from an absolute index.
Bytes From(const ByteArray& data, std::int32_t first) {
  if (data.size() == 0) {
    return {};
  }
  static_cast<void>(data[first]);
  return Bytes(data.data(), data.size()).subspan(static_cast<std::size_t>(first - data.LBound()));
}

/// The bytes that the encoders turn into text, or why not. An empty array is no range at all: its text is
/// empty.
std::optional<Refusal> SelectRange(const ByteArray& data, std::int32_t start, std::int32_t count,
                                   Bytes& range) {
  range = {};
  if (data.size() == 0) {
    return std::nullopt;
  }
  if (auto refusal = CheckLowerBound(data)) {
    return refusal;
  }
  if (start >= 1 && start > data.UBound()) {
    return Refusal{ZELErrorCodes::Err_Hlp_CnvRange,
                   Compose("Der Startindex liegt außerhalb des gültigen Bereiches", kCrLf,
                           "Obergrenze: ", data.UBound(), kCrLf, "Startindex: ", start)};
  }
  range = From(data, std::max(start, 0));
  if (count >= 1 && static_cast<std::size_t>(count) < range.size()) {
    range = range.first(static_cast<std::size_t>(count));
  }
  return std::nullopt;
}

/// The characters that stand for "+" and "/".
struct Replacements {
  char32_t plus;
  char32_t slash;
};

/// The first character; letters and digits, of which the code already consists, give way to "+".
char32_t CleanReplacement(std::string_view text, char32_t otherwise) {
  text = internal::Trim(text);
  if (text.empty()) {
    return otherwise;
  }
  const std::string first = internal::Utf16Left(text, 1);
  std::string_view rest = first;
  const char32_t character = internal::NextCharacter(rest);
  const bool letterOrDigit = (character >= 'A' && character <= 'Z') ||
                             (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
  return letterOrDigit ? U'+' : character;
}

std::string TextOf(char32_t character) {
  std::string text;
  internal::AppendUtf8(text, character);
  return text;
}

std::optional<Refusal> CleanReplacements(std::string_view plus, std::string_view slash,
                                         Replacements& result) {
  if (plus == "+" && slash == "/") {
    result = {U'+', U'/'};
    return std::nullopt;
  }
  result = {CleanReplacement(plus, U'+'), CleanReplacement(slash, U'/')};
  if (result.plus != result.slash) {
    return std::nullopt;
  }
  return Refusal{
      ZELErrorCodes::Err_Hlp_B64ReplEqual,
      Compose("Die übergebenen Ersetungszeichenfolgen sind identisch", kCrLf, "Plusersetzung:    \"",
              TextOf(result.plus), "\"", kCrLf, "Schrägstrichers.: \"", TextOf(result.slash), "\"")};
}

/// The text with "+" and "/" replaced.
std::string Replace(std::string_view text, const Replacements& replacements) {
  std::string replaced;
  replaced.reserve(text.size());
  for (const char c : text) {
    internal::AppendUtf8(replaced, c == '+'   ? replacements.plus
                                   : c == '/' ? replacements.slash
                                              : static_cast<char32_t>(c));
  }
  return replaced;
}

constexpr std::uint8_t kPad = 64;
constexpr std::uint8_t kNoDigit = 255;

/// The values of the characters below 80, and of the two replacements.
class Base64Values {
 public:
  explicit constexpr Base64Values(const Replacements& replacements) : replacements_(replacements) {
    values_.fill(kNoDigit);
    values_['='] = kPad;
    std::uint8_t value = 0;
    for (const char digit :
         std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789")) {
      values_[static_cast<unsigned char>(digit)] = value++;
    }
    SetReplacement(replacements.slash, 63);
    SetReplacement(replacements.plus, 62);
  }

  std::uint8_t Of(char16_t unit) const {
    if (unit < values_.size()) {
      return values_[unit];
    }
    return unit == replacements_.plus    ? std::uint8_t{62}
           : unit == replacements_.slash ? std::uint8_t{63}
                                         : kNoDigit;
  }
  std::uint8_t Of(char c) const { return Of(static_cast<char16_t>(static_cast<unsigned char>(c))); }

 private:
  constexpr void SetReplacement(char32_t character, std::uint8_t value) {
    if (character < values_.size()) {
      values_[character] = value;
    }
  }

  std::array<std::uint8_t, 128> values_{};
  Replacements replacements_;
};

std::u16string ToUtf16(std::string_view text) {
  std::u16string units;
  units.reserve(text.size());
  internal::ForEachUtf16Unit(text, [&units](char16_t unit) { units.push_back(unit); });
  return units;
}

Refusal InvalidCharacter(std::string_view kind, std::size_t position, char16_t unit) {
  return {ZELErrorCodes::Err_Hlp_CnvInvalidChar,
          Compose("Es wurde ein ungültiges Zeichen in der ", kind, " entdeckt!", kCrLf,
                  "Zeichenposition: ", position, kCrLf, "Zeichen .......: \"", TextOf(unit), "\"")};
}

/// Makes a result of `length` bytes, which are to be written; none is made anew where the array is long enough.
std::span<std::uint8_t> MakeResult(ByteArray& result, std::size_t length) {
  if (length > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    internal::ThrowOverflow();  // GCOVR_EXCL_LINE: takes almost 3 GB of text
  }
  const std::int32_t last = static_cast<std::int32_t>(length) - 1;
  if (result.LBound() == 0) {
    result.RedimPreserve(last);
  } else {
    result.Redim(0, last);
  }
  return {result.data(), result.size()};
}

char16_t UnitOf(char c) { return static_cast<unsigned char>(c); }
char16_t UnitOf(char16_t unit) { return unit; }

bool IsStandard(const Replacements& replacements) {
  return replacements.plus == '+' && replacements.slash == '/';
}

/// Decodes the front of a text as far as it is standard Base64 without pads, and clears what is left of the result.
template <class Units>
std::size_t DecodeBase64Front(const Units& text, const Replacements& replacements,
                              std::span<std::uint8_t> bytes) {
  std::size_t front = 0;
  if constexpr (std::is_same_v<Units, std::string_view>) {
    if (IsStandard(replacements)) {
      front = internal::DecodeBase64Digits(text, bytes);
    }
  }
  std::ranges::fill(bytes.subspan(front / 4 * 3), std::uint8_t{0});
  return front;
}

/// Decodes groups of four characters, given as ASCII characters or UTF-16 code units.
template <class Units>
std::optional<Refusal> DecodeBase64(const Units& text, const Replacements& replacements, ByteArray& result) {
  if (text.empty()) {
    return Refusal{ZELErrorCodes::Err_Hlp_CnvNoData, "Die Base64-Zeichenfolge enthält keine Daten!"};
  }
  if (text.size() % 4 != 0) {
    return InvalidLength();
  }
  const std::size_t pads = text[text.size() - 1] != '=' ? 0U : text[text.size() - 2] != '=' ? 1U : 2U;
  const std::span<std::uint8_t> bytes = MakeResult(result, text.size() / 4 * 3 - pads);
  const std::size_t front = DecodeBase64Front(text, replacements, bytes);
  static constexpr Base64Values standard({U'+', U'/'});
  const Base64Values& values = IsStandard(replacements) ? standard : Base64Values(replacements);
  std::uint8_t* out = bytes.data() + front / 4 * 3;
  std::uint8_t* const end = bytes.data() + bytes.size();
  const auto put = [&out, end](unsigned value) {
    if (value > 255) {
      internal::ThrowOverflow();
    }
    if (out == end) {
      internal::ThrowOutOfRange();
    }
    *out++ = static_cast<std::uint8_t>(value);
  };
  for (std::size_t at = front; at < text.size(); at += 4) {
    std::array<unsigned, 4> group{};
    for (std::size_t i = 0; i < 4; ++i) {
      group[i] = values.Of(text[at + i]);
      if (group[i] == kNoDigit) {
        return InvalidCharacter("Base64-Zeichenfolge", at + i + 1, UnitOf(text[at + i]));
      }
    }
    const auto [a, b, c, d] = group;
    put(a * 4 + ((b >> 4) & 3));
    if (c < kPad) {
      put((b & 15) * 16 + ((c >> 2) & 15));
    }
    if (d < kPad) {
      put((c & 3) * 64 + d);
    }
  }
  return std::nullopt;
}

/// Decodes pairs of digits in either case; `length` is the text's in UTF-16 code units.
std::optional<Refusal> DecodeHex(std::string_view text, std::size_t length, ByteArray& result) {
  if (length % 2 != 0) {
    return InvalidLength();
  }
  const std::span<std::uint8_t> bytes = MakeResult(result, length / 2);
  const std::size_t taken = internal::DecodeHexDigits(text, bytes);
  if (taken == text.size()) {
    return std::nullopt;
  }
  std::ranges::fill(bytes.subspan(taken / 2), std::uint8_t{0});
  const std::u16string rest = ToUtf16(internal::Upper(text.substr(taken)));
  const std::size_t invalid = internal::HexValue(rest[0]) < 0 ? 0 : 1;
  return InvalidCharacter("hexadezimalen Zeichenfolge", taken + invalid + 1, rest[invalid]);
}

std::string Without(std::string_view text, std::string_view unwanted) {
  std::array<bool, 256> isUnwanted{};
  for (const char c : unwanted) {
    isUnwanted[static_cast<unsigned char>(c)] = true;
  }
  std::string result;
  result.reserve(text.size());
  std::copy_if(text.begin(), text.end(), std::back_inserter(result),
               [&isUnwanted](char c) { return !isUnwanted[static_cast<unsigned char>(c)]; });
  return result;
}

void RemoveTrailing(std::string& text, std::string_view unwanted) {
  text.erase(text.find_last_not_of(unwanted) + 1);
}

ByteArray ArrayOf(Bytes bytes) { return ByteArray(bytes); }

}  // namespace

clsHelper01::clsHelper01() : VnObject("clsHelper01") {}

clsHelper01::~clsHelper01() = default;

std::string clsHelper01::CreateGUID() { return platform::CreateGuid(); }

std::string clsHelper01::ZEL_CharReplace(std::string_view Data, std::int32_t Length) {
  // No character has more UTF-16 code units than bytes.
  std::string result(std::min(Data.size(), static_cast<std::size_t>(std::max(Length, 0))), '\0');
  result.resize(internal::DeviceText(Data, result));
  return result;
}

bool clsHelper01::GetLinesOfString(std::string_view Data, std::vector<std::string>& LineList) {
  return Run("GetLinesOfString", [&] {
    LineList = internal::SplitLines(Data);
    return true;
  });
}

std::uint8_t clsHelper01::ByteMirror(std::uint8_t Value) {
  unsigned result = 0;
  for (unsigned bit = 0; bit < 8; ++bit) {
    result = result << 1 | ((Value >> bit) & 1U);
  }
  return static_cast<std::uint8_t>(result);
}

std::int32_t clsHelper01::BytesToLong(const ByteArray& Value, std::int32_t Start, std::int32_t Count,
                                      bool BigEndian) {
  const std::int32_t count = Count < 1 || Count > 4 ? 4 : Count;
  std::uint32_t result = 0;
  for (std::int32_t i = 0; i < count; ++i) {
    if (Start > std::numeric_limits<std::int32_t>::max() - i) {
      internal::ThrowOutOfRange();
    }
    const std::uint32_t byte = Value[Start + i];
    result = BigEndian ? result << 8 | byte : result >> 8 | byte << 24;
  }
  return static_cast<std::int32_t>(result);
}

ByteArray clsHelper01::LongToBytes(std::int32_t Value, bool BigEndian, bool NoZeroBytes) {
  const auto bits = static_cast<std::uint32_t>(Value);
  std::array<std::uint8_t, 4> bytes{};
  for (std::size_t i = 0; i < 4; ++i) {
    bytes[BigEndian ? 3 - i : i] = static_cast<std::uint8_t>(bits >> (8 * i));
  }
  std::size_t dropped = 0;
  while (NoZeroBytes && dropped < 3 && bytes[dropped] == 0) {
    ++dropped;
  }
  return ArrayOf(Bytes(bytes).subspan(dropped));
}

std::string clsHelper01::BytesToPString(const ByteArray& Value, std::int32_t Start, std::int32_t Count,
                                        bool Asc126Plus) {
  const std::int64_t last = Count > 0 ? static_cast<std::int64_t>(Start) + Count - 1 : Value.UBound();
  std::string text;
  for (std::int64_t index = Start; index <= last; ++index) {
    if (index > std::numeric_limits<std::int32_t>::max()) {
      internal::ThrowOutOfRange();
    }
    const std::uint8_t byte = Value[static_cast<std::int32_t>(index)];
    if (byte >= 32 && byte <= 126) {
      text.push_back(static_cast<char>(byte));
    } else if (Asc126Plus && (byte == 145 || byte == 146 || byte >= 161)) {
      internal::AppendUtf8(text, internal::FromCodePage1252(byte));
    } else {
      text.push_back('?');
    }
  }
  return text;
}

Currency clsHelper01::LongToCurrency(std::int32_t Value) { return static_cast<std::uint32_t>(Value); }

std::int32_t clsHelper01::CurrencyToLong(Currency Value) {
  const Currency adjusted =
      Value > Currency(std::numeric_limits<std::int32_t>::max()) ? Value - Currency(4294967296) : Value;
  std::int64_t whole = adjusted.Scaled() / 10000;
  const std::int64_t rest = std::abs(adjusted.Scaled() % 10000);
  if (rest > 5000 || (rest == 5000 && whole % 2 != 0)) {
    whole += adjusted.Scaled() < 0 ? -1 : 1;
  }
  if (whole < std::numeric_limits<std::int32_t>::min() || whole > std::numeric_limits<std::int32_t>::max()) {
    internal::ThrowOverflow();
  }
  return static_cast<std::int32_t>(whole);
}

Currency clsHelper01::RoundCmrc(Currency Value, std::int32_t Digits) {
  return RunFor<Currency>("RoundCmrc", [&] {
    // In currency arithmetic, whose range bounds the steps on the way as well.
    const bool negative = Value < Currency();
    const std::int64_t magnitude = (negative ? -Value : Value).Scaled();
    const auto factor = static_cast<std::int64_t>(internal::PowerOfTen(DecimalsOf(Digits)));
    if (magnitude > std::numeric_limits<std::int64_t>::max() / factor) {
      internal::ThrowOverflow();
    }
    const Currency sum = Currency::FromScaled(magnitude * factor) + Currency::FromScaled(5000);
    const Currency result = Currency::FromScaled(sum.Scaled() / 10000 * (10000 / factor));
    return negative ? -result : result;
  });
}

template <class Value>
Currency clsHelper01::RoundDecimal(Value value, std::int32_t digits) {
  return RunFor<Currency>("RoundCmrc2",
                          [&] { return internal::Decimal(value).RoundedAway(DecimalsOf(digits)); });
}

Currency clsHelper01::RoundCmrc2(Currency Value, std::int32_t Digits) { return RoundDecimal(Value, Digits); }

Currency clsHelper01::RoundCmrc2(double Value, std::int32_t Digits) { return RoundDecimal(Value, Digits); }

Currency clsHelper01::RoundCmrc2(float Value, std::int32_t Digits) { return RoundDecimal(Value, Digits); }

Currency clsHelper01::RoundCmrc2(std::int64_t Value, std::int32_t Digits) {
  return RoundDecimal(Value, Digits);
}

Currency clsHelper01::RoundCmrc2(std::uint64_t Value, std::int32_t Digits) {
  return RoundDecimal(Value, Digits);
}

Currency clsHelper01::RoundCmrc2(std::string_view Value, std::int32_t Digits) {
  return RoundDecimal(Value, Digits);
}

bool clsHelper01::ToBase64String(const ByteArray& Data, std::string& Result, std::int32_t Start,
                                 std::int32_t Count, std::int32_t LineLen, std::string_view ReplPlus,
                                 std::string_view ReplSlsh) {
  constexpr std::string_view operation = "ToBase64String";
  return Run(operation, [&] {
    Replacements replacements{};
    Bytes range;
    auto refusal = CleanReplacements(ReplPlus, ReplSlsh, replacements);
    if (!refusal) {
      refusal = SelectRange(Data, Start, Count, range);
    }
    if (refusal) {
      return Fail(*refusal, operation);
    }
    const bool inLines = LineLen >= 12;
    if (!inLines && IsStandard(replacements)) {
      internal::EncodeBase64(range, Result);
      return true;
    }
    std::string text = internal::EncodeBase64(range);
    if (inLines) {
      text = internal::BreakLines(text, static_cast<std::size_t>(LineLen));
    }
    text = Replace(text, replacements);
    if (inLines) {
      RemoveTrailing(text, " \r\n");
    }
    Result = std::move(text);
    return true;
  });
}

bool clsHelper01::FromBase64String(std::string_view Data, ByteArray& Result, std::string_view ReplPlus,
                                   std::string_view ReplSlsh) {
  constexpr std::string_view operation = "FromBase64String";
  return Run(operation, [&] {
    Replacements replacements{};
    auto refusal = CleanReplacements(ReplPlus, ReplSlsh, replacements);
    if (!refusal) {
      // Most texts have neither line breaks nor outer blanks and need no copy.
      std::string unbroken;
      const bool isPlain = internal::AllAbove(Data, ' ');
      if (!isPlain) {
        unbroken = Without(Data, kCrLf);
        Data = internal::Trim(unbroken);
      }
      const internal::KeptText text(Data, Result);
      refusal = isPlain || internal::IsAscii(text)
                    ? DecodeBase64(std::string_view(text), replacements, Result)
                    : DecodeBase64(ToUtf16(text), replacements, Result);
    }
    return refusal ? Fail(*refusal, operation) : true;
  });
}

bool clsHelper01::ToBase32String(const ByteArray& Data, std::string& Result, std::int32_t Start,
                                 std::int32_t Count, std::int32_t LineLen, bool HexEnc) {
  constexpr std::string_view operation = "ToBase32String";
  return Run(operation, [&] {
    Bytes range;
    if (const auto refusal = SelectRange(Data, Start, Count, range)) {
      return Fail(*refusal, operation);
    }
    std::string text = internal::EncodeBase32(range, HexEnc);
    Result = LineLen >= 16 ? internal::BreakLines(text, static_cast<std::size_t>(LineLen)) : std::move(text);
    return true;
  });
}

bool clsHelper01::GetBytesOfBinStr(std::string_view Data, ByteArray& Result) {
  constexpr std::string_view operation = "GetBytesOfBinStr";
  return Run(operation, [&] {
    if (Data.empty()) {
      return Fail(ZELErrorCodes::Err_Hlp_CnvNoData, "Es wurde eine leere Zeichenfolge übergeben!", operation);
    }
    // All that is passed over stands before the digits.
    std::string cleaned;
    const bool isPlain = internal::AllAbove(Data, '-');
    if (!isPlain) {
      cleaned = Without(Data, "- \r\n");
      Data = cleaned;
    }
    const internal::KeptText text(Data, Result);
    const auto refusal = DecodeHex(text, isPlain ? Data.size() : internal::Utf16Length(Data), Result);
    return refusal ? Fail(*refusal, operation) : true;
  });
}

bool clsHelper01::GetBinStrOfBytes(const ByteArray& Data, std::string& Result, std::string_view SepStr,
                                   std::int32_t GroupLen) {
  constexpr std::string_view operation = "GetBinStrOfBytes";
  return Run(operation, [&] {
    if (const auto refusal = CheckLowerBound(Data)) {
      return Fail(*refusal, operation);
    }
    const std::string given = internal::Utf16Left(SepStr, 1);
    std::string_view separator = given;
    if (given.size() == 1 && internal::HexValue(UnitOf(given[0])) >= 0) {
      separator = {};
    }
    if (separator.empty() && GroupLen >= 1) {
      separator = "-";
    }
    const Bytes bytes(Data.data(), Data.size());
    if (separator.empty()) {
      internal::EncodeUpperHex(bytes, Result);
      return true;
    }
    const std::string digits = internal::UpperHex(bytes);
    // Without groups every byte is one; with groups the last one appears only when more digits follow it.
    const std::size_t group = GroupLen < 1 ? 2 : static_cast<std::size_t>(GroupLen);
    const std::size_t spare = GroupLen < 1 ? 0 : 1;
    std::string text;
    for (std::size_t at = 0; digits.size() - at >= group + spare; at += group) {
      if (at > 0) {
        text.append(separator);
      }
      text.append(digits, at, group);
    }
    Result = std::move(text);
    return true;
  });
}

bool clsHelper01::GetSHA1Hash(std::string_view Data, ByteArray& Result) {
  return Run("GetSHA1Hash", [&] {
    Result = ArrayOf(internal::Sha1OfText(Data));
    return true;
  });
}

bool clsHelper01::GetSHA1Hash1(const ByteArray& Data, ByteArray& Result) {
  constexpr std::string_view operation = "GetSHA1Hash1";
  return Run(operation, [&] {
    if (const auto refusal = CheckLowerBound(Data)) {
      return Fail(*refusal, operation);
    }
    Result = ArrayOf(internal::Sha1(From(Data, 0)));
    return true;
  });
}

bool clsHelper01::GetSHA1Hash2(std::string_view Data, std::string& Result) {
  return Run("GetSHA1Hash2", [&] {
    Result = internal::UpperHex(internal::Sha1OfText(Data));
    return true;
  });
}

bool clsHelper01::GetSHA256Hash(std::string_view Data, ByteArray& Result) {
  return Run("GetSHA256Hash", [&] {
    Result = ArrayOf(internal::Sha256OfText(Data));
    return true;
  });
}

bool clsHelper01::GetSHA256Hash1(const ByteArray& Data, ByteArray& Result) {
  constexpr std::string_view operation = "GetSHA256Hash1";
  return Run(operation, [&] {
    if (const auto refusal = CheckLowerBound(Data)) {
      return Fail(*refusal, operation);
    }
    Result = ArrayOf(internal::Sha256OfCodePageBytes(From(Data, 0)));
    return true;
  });
}

bool clsHelper01::GetSHA256Hash2(std::string_view Data, std::string& Result) {
  return Run("GetSHA256Hash2", [&] {
    Result = internal::LowerHex(internal::Sha256OfText(Data));
    return true;
  });
}

}  // namespace VnZEL10cmn
