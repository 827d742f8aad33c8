#include "VnZEL10cmn/device/clsZelBaseCoding.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <new>
#include <span>
#include <utility>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/codec/internal/KeptText.h"
#include "VnZEL10cmn/codec/internal/TextCodecs.h"
#include "VnZEL10cmn/device/internal/Amounts.h"
#include "VnZEL10cmn/device/internal/Records.h"
#include "VnZEL10cmn/device/internal/XmlEnvelope.h"
#include "VnZEL10cmn/types/internal/Format.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::CheckRead;
using internal::CheckWrite;
using internal::Compose;
using internal::kCrLf;
using internal::KeptText;
using internal::Limits;
using internal::MaybeRefusal;
using internal::ReadAmount;
using internal::ReadPositive;
using internal::Refusal;
using internal::WriteAmount;
using internal::WritePositive;

namespace {

constexpr Limits kSignature{48, 64};
constexpr Limits kVersion{7, 10};
constexpr Limits kPin{6, 6};
constexpr Limits kTaxpayerId{1, 32};
constexpr Limits kDeviceNumber{1, 4};
constexpr Limits kOperator{1, 16};
constexpr Limits kHash{20, 32};
constexpr Limits kTime{1, 2};
constexpr std::int32_t kDateBytes = 4;
constexpr std::int32_t kMonthBytes = 3;

ZelTags HashTag(bool isTrans) { return isTrans ? ZelTags::Hash_Trans_Items : ZelTags::Hash_Reprt_Items; }

bool IsMonth(ZelTags tag) { return tag == ZelTags::Month_Start || tag == ZelTags::Month_End; }

/// A number of up to four bytes, big endian; of more the first four count.
MaybeRefusal ReadInteger(const ByteArray& buffer, std::int32_t& start, std::int32_t& result, Limits limits,
                         ZelTags tag) {
  if (auto refusal = CheckRead(buffer, start, limits, tag)) {
    return refusal;
  }
  const auto value = internal::Value(buffer, start);
  if (value.empty()) {
    internal::ThrowOutOfRange();
  }
  std::uint32_t number = 0;
  for (const std::uint8_t byte : value.first(std::min<std::size_t>(value.size(), 4))) {
    number = number << 8 | byte;
  }
  internal::Advance(start, value.size());
  result = static_cast<std::int32_t>(number);
  return std::nullopt;
}

MaybeRefusal ReadCounter(const ByteArray& buffer, std::int32_t& start, Currency& result, Limits limits,
                         ZelTags tag) {
  std::int32_t value = 0;
  if (auto refusal = ReadInteger(buffer, start, value, limits, tag)) {
    return refusal;
  }
  result = clsHelper01().LongToCurrency(value);
  return std::nullopt;
}

MaybeRefusal WriteInteger(ByteArray& buffer, std::int32_t& start, ZelTags tag, std::int32_t value) {
  const ByteArray bytes = clsHelper01().LongToBytes(value, true, true);
  if (auto refusal = CheckWrite(buffer, start, static_cast<std::int64_t>(bytes.size()))) {
    return refusal;
  }
  return internal::WriteBinary(buffer, start, tag, bytes);
}

Refusal InvalidHashLength(std::size_t length) {
  return {ZELErrorCodes::Err_Zel_CnvInvalidLen,
          Compose("Die Länge der Hash-Daten stimmt nicht!", kCrLf,
                  "Der Hash muß eine Länge von 20 oder 32 Byte aufweisen!",
                  "\r\n    Länge Hash .......: ", length)};
}

bool IsHashLength(std::size_t length) { return length == 20 || length == 32; }

MaybeRefusal WriteHash(ByteArray& buffer, std::int32_t& start, bool isTrans, const ByteArray& hash) {
  if (!IsHashLength(hash.size())) {
    return InvalidHashLength(hash.size());
  }
  if (auto refusal = CheckWrite(buffer, start, static_cast<std::int64_t>(hash.size()))) {
    return refusal;
  }
  return internal::WriteBinary(buffer, start, HashTag(isTrans), hash);
}

Refusal OutsideRange(std::string_view current, std::string_view smallest, std::string_view largest) {
  return {ZELErrorCodes::Err_Zel_CnvRange,
          Compose("Die Wert außerhalb des gültigen Bereiches!", "\r\n    Aktueller Wert ...: ", current,
                  "\r\n    kleinster Wert ...: ", smallest, "\r\n    größter Wert .....: ", largest)};
}

/// A number below 100 as BCD.
std::uint8_t TwoDigits(std::int32_t number) {
  return static_cast<std::uint8_t>(number / 10 << 4 | number % 10);
}

MaybeRefusal WriteDate(ByteArray& buffer, std::int32_t& start, ZelTags tag, Date date) {
  const Date::Civil parts = date.ToCivil();
  const bool isMonth = IsMonth(tag);
  if (auto refusal = CheckWrite(buffer, start, isMonth ? kMonthBytes : kDateBytes)) {
    return refusal;
  }
  const std::array<std::uint8_t, 4> bytes = {TwoDigits(parts.year / 100), TwoDigits(parts.year % 100),
                                             TwoDigits(parts.month), TwoDigits(parts.day)};
  return internal::WriteBytes(buffer, start, tag, std::span(bytes).first(isMonth ? 3 : 4));
}

/// The number of some digits that a reader has checked.
std::int32_t NumberOf(std::string_view digits, std::size_t at, std::size_t count) {
  std::int32_t number = 0;
  for (const char digit : digits.substr(at, count)) {
    number = number * 10 + (digit - '0');
  }
  return number;
}

/// The last day of a month that exists.
std::int32_t LastDay(std::int32_t year, std::int32_t month) {
  const auto last =
      std::chrono::year{year} / std::chrono::month{static_cast<unsigned>(month)} / std::chrono::last;
  return static_cast<std::int32_t>(static_cast<unsigned>(last.day()));
}

MaybeRefusal ReadDate(const ByteArray& buffer, std::int32_t& start, ZelTags tag, Date& result,
                      std::int32_t minLen) {
  if (minLen < 1) {
    minLen = IsMonth(tag) ? kMonthBytes : kDateBytes;
  }
  std::string digits;
  const Limits limits{minLen, std::max(minLen, kDateBytes)};
  if (auto refusal = internal::ReadBcd(buffer, start, digits, limits, tag)) {
    return refusal;
  }
  const bool isMonth = IsMonth(tag) || minLen == kMonthBytes;
  Date::Civil parts{};
  if (digits.size() >= (isMonth ? 6U : 8U)) {
    parts = {NumberOf(digits, 0, 4), NumberOf(digits, 4, 2), isMonth ? 1 : NumberOf(digits, 6, 2), 0, 0, 0};
  }
  if (!Date::Exists(parts)) {
    return OutsideRange(digits, "01000101", "99991231");
  }
  if (tag == ZelTags::Month_End) {
    result = Date::FromCivil(parts.year, parts.month, LastDay(parts.year, parts.month), 23, 59, 59);
  } else {
    result = Date::FromCivil(parts.year, parts.month, parts.day);
  }
  return std::nullopt;
}

MaybeRefusal ReadTime(const ByteArray& buffer, std::int32_t& start, ZelTags tag, Date& result) {
  std::string digits;
  if (auto refusal = internal::ReadBcd(buffer, start, digits, kTime, tag)) {
    return refusal;
  }
  digits.insert(0, 4 - digits.size(), '0');
  const Date::Civil parts{1899, 12, 30, NumberOf(digits, 0, 2), NumberOf(digits, 2, 2), 0};
  if (!Date::Exists(parts)) {
    return OutsideRange(digits, "0000", "2359");
  }
  result = Date::FromCivil(parts.year, parts.month, parts.day, parts.hour, parts.minute);
  return std::nullopt;
}

/// ASCII text in groups.
std::string Grouped(std::string text, std::int32_t groupLen, std::string_view separator) {
  if (groupLen < 1) {
    return text;
  }
  const auto group = static_cast<std::size_t>(groupLen);
  std::string grouped;
  for (std::size_t at = 0; at < text.size(); at += group) {
    grouped.append(at == 0 ? "" : separator.empty() ? " " : separator).append(text, at, group);
  }
  return grouped;
}

}  // namespace

template <class Body>
bool clsZelBaseCoding::Code(std::string_view operation, Body&& body) {
  return Run(operation, [&] {
    const MaybeRefusal refusal = body();
    return refusal ? Fail(*refusal, operation) : true;
  });
}

template <class Body>
bool clsZelBaseCoding::Code(std::string_view operation, std::int32_t& start, Body&& body) {
  const std::int32_t before = start;
  const bool done = Code(operation, std::forward<Body>(body));
  if (!done) {
    start = before;
  }
  return done;
}

template <class Check>
bool clsZelBaseCoding::Test(Check&& check, std::string& message, ZELErrorCodes& number) {
  try {
    MaybeRefusal refusal = check();
    if (!refusal) {
      message.clear();
      return true;
    }
    message = std::move(refusal->message);
    number = refusal->number;
  } catch (const std::bad_alloc&) {
    constexpr auto outOfMemory = internal::RunTimeNumber::OutOfMemory;
    number = static_cast<ZELErrorCodes>(outOfMemory);
    message.clear();
    try {
      message = internal::RunTimeText(outOfMemory);
    } catch (const std::bad_alloc&) {
      // The number alone must do.
    }
  }
  return false;
}

clsZelBaseCoding::clsZelBaseCoding() : VnObject("clsZelBaseCoding") {}

clsZelBaseCoding::~clsZelBaseCoding() = default;

void clsZelBaseCoding::LogHandler(std::shared_ptr<clsVnLogFile> Value) {
  helper_.LogHandler(Value);
  VnObject::LogHandler(std::move(Value));
}

bool clsZelBaseCoding::DataReadBaseCheck(const ByteArray& Buffer, std::int32_t Start, std::string& Message,
                                         ZELErrorCodes& VnErrNr, std::int32_t MinLen, std::int32_t MaxLen,
                                         ZelTags Tag) {
  return Test([&] { return CheckRead(Buffer, Start, {MinLen, MaxLen}, Tag); }, Message, VnErrNr);
}

bool clsZelBaseCoding::DataWriteBaseCheck(const ByteArray& Buffer, std::int32_t Start, std::int32_t Length,
                                          std::string& Message, ZELErrorCodes& VnErrNr) {
  return Test([&] { return CheckWrite(Buffer, Start, Length); }, Message, VnErrNr);
}

bool clsZelBaseCoding::GetDataBinary(const ByteArray& Buffer, std::int32_t& Start, ByteArray& Result,
                                     std::int32_t MinLen, std::int32_t MaxLen) {
  return Code("GetDataBinary", Start, [&] {
    return internal::ReadBinary(Buffer, Start, Result, {MinLen, MaxLen});
  });
}

bool clsZelBaseCoding::GetDataAscii(const ByteArray& Buffer, std::int32_t& Start, std::string& Result,
                                    std::int32_t MinLen, std::int32_t MaxLen) {
  return Code("GetDataAscii", Start, [&] {
    return internal::ReadAscii(Buffer, Start, Result, {MinLen, MaxLen});
  });
}

bool clsZelBaseCoding::SetDataBinary(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag,
                                     const ByteArray& Data) {
  return Code("SetDataBinary", Start, [&] { return internal::WriteBinary(Buffer, Start, Tag, Data); });
}

bool clsZelBaseCoding::SetDataAscii(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag,
                                    std::string_view Data) {
  return Code("SetDataAscii", Start,
              [&] { return internal::WriteAscii(Buffer, Start, Tag, KeptText(Data, Buffer)); });
}

bool clsZelBaseCoding::SetDataBool(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, bool Data) {
  return Code("SetDataBool", Start, [&] { return internal::WriteBool(Buffer, Start, Tag, Data); });
}

bool clsZelBaseCoding::GetDataBcd(const ByteArray& Buffer, std::int32_t& Start, std::string& Result,
                                  std::int32_t MinLen, std::int32_t MaxLen) {
  return Code("GetDataBcd", Start, [&] {
    return internal::ReadBcd(Buffer, Start, Result, {MinLen, MaxLen});
  });
}

bool clsZelBaseCoding::GetDataBcdSgnd(const ByteArray& Buffer, std::int32_t& Start, std::string& Result,
                                      std::int32_t MinLen, std::int32_t MaxLen) {
  return Code("GetDataBcdSgnd", Start, [&] {
    return internal::ReadSignedBcd(Buffer, Start, Result, {MinLen, MaxLen});
  });
}

bool clsZelBaseCoding::SetDataBcd(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, std::string_view Data,
                                  bool LeadZeroOk) {
  return Code("SetDataBcd", Start,
              [&] { return internal::WriteBcd(Buffer, Start, Tag, KeptText(Data, Buffer), LeadZeroOk); });
}

bool clsZelBaseCoding::SetDataBcdSgnd(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag,
                                      std::string_view Data) {
  return Code("SetDataBcdSgnd", Start, [&] { return internal::WriteSignedBcd(Buffer, Start, Tag, Data); });
}

bool clsZelBaseCoding::GetZelSignature(const ByteArray& Buffer, std::int32_t& Start, ByteArray& ResultBin) {
  return Code("GetZelSignature", Start,
              [&] { return internal::ReadBinary(Buffer, Start, ResultBin, kSignature, ZelTags::Signature); });
}

bool clsZelBaseCoding::GetZelLifeCycle(const ByteArray& Buffer, std::int32_t& Start, ZelLifeCycle& Result) {
  return Code("GetZelLifeCycle", Start, [&] {
    std::int32_t value = 0;
    auto refusal = ReadInteger(Buffer, Start, value, {}, ZelTags::Lifecycle);
    if (!refusal) {
      Result = static_cast<ZelLifeCycle>(value);
    }
    return refusal;
  });
}

bool clsZelBaseCoding::GetZelSerialNr(const ByteArray& Buffer, std::int32_t& Start, std::string& Result,
                                      std::string* ResultAsc, bool Asc126Plus) {
  return Code("GetZelSerialNr", Start, [&] {
    ByteArray value;
    auto refusal = internal::ReadBinary(Buffer, Start, value, {}, ZelTags::Serial_No);
    if (!refusal) {
      Result = internal::EncodeBase64({value.data(), value.size()});
      if (ResultAsc != nullptr) {
        *ResultAsc = clsHelper01().BytesToPString(value, 0, -1, Asc126Plus);
      }
    }
    return refusal;
  });
}

bool clsZelBaseCoding::GetZelVersion(const ByteArray& Buffer, std::int32_t& Start, std::string& Result) {
  return Code("GetZelVersion", Start,
              [&] { return internal::ReadAscii(Buffer, Start, Result, kVersion, ZelTags::Version); });
}

bool clsZelBaseCoding::GetZelTranspPin(const ByteArray& Buffer, std::int32_t& Start, std::string& Result) {
  return Code("GetZelTranspPin", Start,
              [&] { return internal::ReadAscii(Buffer, Start, Result, kPin, ZelTags::Transport_Pin); });
}

bool clsZelBaseCoding::SetZelTranspPin(ByteArray& Buffer, std::int32_t& Start, std::string_view Pin) {
  return Code("SetZelTranspPin", Start, [&]() -> MaybeRefusal {
    constexpr auto tag = static_cast<std::uint8_t>(ZelTags::Transport_Pin);
    const std::string code = internal::ToCodePage1252(Pin);
    const auto length = static_cast<std::int64_t>(code.size());
    if (length < kPin.min) {
      return internal::TooShort(Start, tag, length, kPin.min);
    }
    if (length > kPin.max) {
      return internal::TooLong(Start, tag, length, kPin.max);
    }
    if (const std::size_t at = code.find_first_not_of("0123456789"); at != std::string::npos) {
      return internal::InvalidTextByte(Start, tag, code.size(), at, static_cast<std::uint8_t>(code[at]));
    }
    if (auto refusal = CheckWrite(Buffer, Start, length)) {
      return refusal;
    }
    return internal::WriteAscii(Buffer, Start, ZelTags::Transport_Pin, KeptText(Pin, Buffer));
  });
}

bool clsZelBaseCoding::GetZelTpID(const ByteArray& Buffer, std::int32_t& Start, std::string& Result) {
  return Code("GetZelTpID", Start,
              [&] { return internal::ReadAscii(Buffer, Start, Result, kTaxpayerId, ZelTags::Tp_ID); });
}

bool clsZelBaseCoding::GetZelTpIDNr(const ByteArray& Buffer, std::int32_t& Start, Currency& Result) {
  return Code("GetZelTpIDNr", Start,
              [&] { return ReadCounter(Buffer, Start, Result, kDeviceNumber, ZelTags::Tp_ID_No); });
}

bool clsZelBaseCoding::GetZelOperator(const ByteArray& Buffer, std::int32_t& Start, std::string& Result) {
  return Code("GetZelOperator", Start,
              [&] { return internal::ReadAscii(Buffer, Start, Result, kOperator, ZelTags::Operator); });
}

bool clsZelBaseCoding::SetZelOperator(ByteArray& Buffer, std::int32_t& Start, std::string_view Operator) {
  return Code("SetZelOperator", Start, [&]() -> MaybeRefusal {
    const auto length = static_cast<std::int64_t>(internal::Utf16Length(Operator));
    if (length > kOperator.max) {
      return internal::TooLong(Start, static_cast<std::uint8_t>(ZelTags::Operator), length, kOperator.max);
    }
    if (auto refusal = CheckWrite(Buffer, Start, length)) {
      return refusal;
    }
    return internal::WriteAscii(Buffer, Start, ZelTags::Operator, KeptText(Operator, Buffer));
  });
}

bool clsZelBaseCoding::GetZelHash(const ByteArray& Buffer, std::int32_t& Start, bool IsTrans,
                                  std::string& Result) {
  return Code("GetZelHash", Start, [&]() -> MaybeRefusal {
    ByteArray hash;
    if (auto refusal = internal::ReadBinary(Buffer, Start, hash, kHash, HashTag(IsTrans))) {
      return refusal;
    }
    if (!IsHashLength(hash.size())) {
      return InvalidHashLength(hash.size());
    }
    Result = internal::EncodeBase64({hash.data(), hash.size()});
    return std::nullopt;
  });
}

bool clsZelBaseCoding::SetZelHash(ByteArray& Buffer, std::int32_t& Start, bool IsTrans,
                                  const ByteArray& HASH) {
  return Code("SetZelHash", Start, [&] { return WriteHash(Buffer, Start, IsTrans, HASH); });
}

bool clsZelBaseCoding::SetZelHash2(ByteArray& Buffer, std::int32_t& Start, bool IsTrans,
                                   std::string_view HASH) {
  return Code("SetZelHash2", Start, [&]() -> MaybeRefusal {
    ByteArray hash;
    if (!helper_.FromBase64String(HASH, hash)) {
      return Refusal{ZELErrorCodes::Err_Cmn_NotSpec,
                     Compose("Der übergebene Zeichenfolge konnte nicht als Hash", kCrLf,
                             "geschreiben werden da eine Konvertierung aus Base64", kCrLf, "fehlschlug!")};
    }
    return WriteHash(Buffer, Start, IsTrans, hash);
  });
}

bool clsZelBaseCoding::GetZelCurrencyCode(const ByteArray& Buffer, std::int32_t& Start,
                                          std::int32_t& Result) {
  return Code("GetZelCurrencyCode", Start,
              [&] { return ReadInteger(Buffer, Start, Result, {}, ZelTags::Currency); });
}

bool clsZelBaseCoding::SetZelCurrencyCode(ByteArray& Buffer, std::int32_t& Start, std::int32_t CrncyCode) {
  return Code("SetZelCurrencyCode", Start,
              [&] { return WriteInteger(Buffer, Start, ZelTags::Currency, CrncyCode); });
}

bool clsZelBaseCoding::GetZelCountryCode(const ByteArray& Buffer, std::int32_t& Start, std::int32_t& Result) {
  return Code("GetZelCountryCode", Start,
              [&] { return ReadInteger(Buffer, Start, Result, {}, ZelTags::Country_Code); });
}

bool clsZelBaseCoding::GetZelCounter(const ByteArray& Buffer, std::int32_t& Start, ZelTags Tag,
                                     Currency& Result) {
  return Code("GetZelCounter", Start, [&] { return ReadCounter(Buffer, Start, Result, {}, Tag); });
}

bool clsZelBaseCoding::SetZelCounter(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Currency Data) {
  return Code("SetZelCounter", Start,
              [&] { return WriteInteger(Buffer, Start, Tag, clsHelper01().CurrencyToLong(Data)); });
}

bool clsZelBaseCoding::GetZelAmounts(const ByteArray& Buffer, std::int32_t& Start, ZelTags Tag,
                                     Currency& Result, bool LongVal) {
  return Code("GetZelAmounts", Start, [&] { return ReadAmount(Buffer, Start, Tag, Result, LongVal); });
}

bool clsZelBaseCoding::SetZelAmounts(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Currency Amount,
                                     bool LongVal) {
  return Code("SetZelAmounts", Start, [&] { return WriteAmount(Buffer, Start, Tag, Amount, LongVal); });
}

bool clsZelBaseCoding::GetZelDates(const ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Date& Result,
                                   std::int32_t MinLen) {
  return Code("GetZelDates", Start, [&] { return ReadDate(Buffer, Start, Tag, Result, MinLen); });
}

bool clsZelBaseCoding::SetZelDates(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Date xDate) {
  return Code("SetZelDates", Start, [&] { return WriteDate(Buffer, Start, Tag, xDate); });
}

bool clsZelBaseCoding::GetZelTimes(const ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Date& Result) {
  return Code("GetZelTimes", Start, [&] { return ReadTime(Buffer, Start, Tag, Result); });
}

bool clsZelBaseCoding::SetZelTimes(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Date xDate) {
  return Code("SetZelTimes", Start, [&]() -> MaybeRefusal {
    const Date::Civil parts = xDate.ToCivil();
    const std::array<std::uint8_t, 2> bytes = {TwoDigits(parts.hour), TwoDigits(parts.minute)};
    return internal::WriteBytes(Buffer, Start, Tag, bytes);
  });
}

bool clsZelBaseCoding::GetZelValsPos(const ByteArray& Buffer, std::int32_t& Start, ZelTags Tag,
                                     Currency& Result) {
  return Code("GetZelValsPos", Start, [&] { return ReadPositive(Buffer, Start, Tag, Result); });
}

bool clsZelBaseCoding::SetZelValsPos(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Currency Value) {
  return Code("SetZelValsPos", Start, [&] { return WritePositive(Buffer, Start, Tag, Value); });
}

bool clsZelBaseCoding::GetZelVatRate(const ByteArray& Buffer, std::int32_t& Start, Currency& Result) {
  return Code("GetZelVatRate", Start, [&] {
    Currency hundredths;
    auto refusal = ReadPositive(Buffer, Start, ZelTags::Trnvr_Vat_Rate, hundredths);
    if (!refusal) {
      Result = Currency::FromScaled(hundredths.Scaled() / 100);
    }
    return refusal;
  });
}

bool clsZelBaseCoding::SetZelVatRate(ByteArray& Buffer, std::int32_t& Start, Currency VATrate) {
  return Code("SetZelVatRate", Start, [&]() -> MaybeRefusal {
    constexpr Currency smallest;
    constexpr Currency largest = Currency::FromScaled(999900);
    if (VATrate < smallest || VATrate > largest) {
      const auto settings = internal::CurrentRegionalSettings();
      const auto shown = [&settings](Currency rate) {
        return internal::FormatNumber(rate, internal::kTwoDecimals, settings);
      };
      return OutsideRange(shown(VATrate), shown(smallest), shown(largest));
    }
    return WritePositive(Buffer, Start, ZelTags::Trnvr_Vat_Rate,
                         Currency::FromScaled(VATrate.Scaled() * 100));
  });
}

bool clsZelBaseCoding::GetZelCounterSpc01(const ByteArray& Buffer, std::int32_t& Start, ZelRqstCounter Tag,
                                          Currency& Result) {
  return Code("GetZelCounterSpc01", Start,
              [&] { return ReadCounter(Buffer, Start, Result, {}, static_cast<ZelTags>(Tag)); });
}

bool clsZelBaseCoding::GetZelAmountsSpc01(const ByteArray& Buffer, std::int32_t& Start, ZelRqstAmounts Tag,
                                          Currency& Result, bool LongVal) {
  return Code("GetZelAmountsSpc01", Start,
              [&] { return ReadAmount(Buffer, Start, static_cast<ZelTags>(Tag), Result, LongVal); });
}

bool clsZelBaseCoding::SetZelAmountsSpc01(ByteArray& Buffer, std::int32_t& Start, ZelRqstAmounts Tag,
                                          Currency Amount, bool LongVal) {
  return Code("SetZelAmountsSpc01", Start,
              [&] { return WriteAmount(Buffer, Start, static_cast<ZelTags>(Tag), Amount, LongVal); });
}

bool clsZelBaseCoding::GetZelDatesSpc01(const ByteArray& Buffer, std::int32_t& Start, ZelRqstDates Tag,
                                        Date& Result, std::int32_t MinLen) {
  return Code("GetZelDatesSpc01", Start,
              [&] { return ReadDate(Buffer, Start, static_cast<ZelTags>(Tag), Result, MinLen); });
}

bool clsZelBaseCoding::SetZelDatesSpc01(ByteArray& Buffer, std::int32_t& Start, ZelRqstDates Tag,
                                        Date xDate) {
  return Code("SetZelDatesSpc01", Start,
              [&] { return WriteDate(Buffer, Start, static_cast<ZelTags>(Tag), xDate); });
}

std::string clsZelBaseCoding::ToStringZelState(ZelLifeCycle State) {
  return RunFor<std::string>("ToStringZelState", [&]() -> std::string {
    switch (State) {
      case ZelLifeCycle::Undefined: return "nicht gesetzt";
      case ZelLifeCycle::Initialized: return "Initialisiert";
      case ZelLifeCycle::Personalized: return "Personalisiert";
      case ZelLifeCycle::Activated: return "Aktiviert";
      case ZelLifeCycle::Deactivated: return "Deaktiviert";
    }
    return "Unbekannt";
  });
}

bool clsZelBaseCoding::GetZelSingatureString(const ByteArray& Buffer, std::string& Result,
                                             std::int32_t GroupLen, std::string_view GroupSep,
                                             bool AsBase32) {
  return Run("GetZelSingatureString", [&] {
    std::string text;
    if (!(AsBase32 ? helper_.ToBase32String(Buffer, text) : helper_.ToBase64String(Buffer, text))) {
      return FailAs(
          helper_.ErrorObject(), helper_.ErrorObject().ErrorMsg(),
          AsBase32 ? "GetZelSingatureString.[ToBase32String]" : "GetZelSingatureString.[ToBase64String]");
    }
    Result = Grouped(std::move(text), GroupLen, GroupSep);
    return true;
  });
}

bool clsZelBaseCoding::GetZelSignature2(const ByteArray& Buffer, std::int32_t& Start, std::string& Result,
                                        std::int32_t GroupLen, std::string_view GroupSep, bool AsBase32) {
  return Code("GetZelSignature2", Start, [&] {
    ByteArray signature;
    auto refusal = internal::ReadBinary(Buffer, Start, signature, kSignature, ZelTags::Signature);
    if (!refusal) {
      const std::span<const std::uint8_t> bytes(signature.data(), signature.size());
      Result = Grouped(AsBase32 ? internal::EncodeBase32(bytes, false) : internal::EncodeBase64(bytes),
                       GroupLen, GroupSep);
    }
    return refusal;
  });
}

bool clsZelBaseCoding::GetXmlTag(std::string_view DataXML, ZelXmlTags XmlTag, std::string& Result,
                                 std::string* Profile) {
  return Code("GetXmlTag", [&] {
    std::string_view content;
    std::string_view profile;
    auto refusal = internal::FindElement(DataXML, XmlTag, content, profile);
    // The document may be the caller's own `Result`.
    std::string found(content);
    std::string foundProfile(profile);
    Result = std::move(found);
    if (Profile != nullptr) {
      *Profile = std::move(foundProfile);
    }
    return refusal;
  });
}

}  // namespace VnZEL10cmn
