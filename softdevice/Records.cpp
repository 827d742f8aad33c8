#include "softdevice/Records.h"

#include <algorithm>
#include <utility>

namespace softdevice {

namespace {

constexpr std::uint8_t kMaxValueLength = 127;

const char* NameOfTag(std::uint8_t tag) {
  switch (tag) {
    case tag::kSignature: return "signature";
    case tag::kLifeCycle: return "state";
    case tag::kTransportPin: return "transport PIN";
    case tag::kTaxpayerId: return "taxpayer ID";
    case tag::kDeviceNumber: return "running device number";
    case tag::kOperator: return "operator";
    case tag::kItemHash: return "item hash";
    case tag::kCurrency: return "currency";
    case tag::kTaxExclusive: return "tax-exclusive";
    case tag::kTraining: return "training";
    case tag::kSequenceNumber: return "sequence number";
    case tag::kReportNumber: return "report number";
    case tag::kDate: return "date";
    case tag::kTime: return "time";
    case tag::kFirstMonth: return "first month";
    case tag::kLastMonth: return "last month";
    case tag::kFirstTransaction: return "first transaction";
    case tag::kLastTransaction: return "last transaction";
    case tag::kReportHash: return "report item hash";
    case tag::kThirdParty: return "third-party turnover";
    case tag::kDeliveryNote: return "delivery note";
    case tag::kTurnover: return "turnover";
    case tag::kTurnoverNegative: return "negative turnover";
    case tag::kVat: return "VAT";
    case tag::kVatRate: return "VAT rate";
    case tag::kOverflow: return "overflow";
    case tag::kVatChanged: return "VAT rate changed";
    case tag::kContainerVat1: return "container 1";
    case tag::kContainerVat1 + 1: return "container 2";
    case tag::kContainerVat1 + 2: return "container 3";
    case tag::kContainerVat1 + 3: return "container 4";
    case tag::kContainerVat1 + 4: return "container 5";
    case tag::kContainerVat6: return "container 6";
    case tag::kContainerThirdParty: return "third-party container";
    case tag::kContainerDeliveryNote: return "delivery note container";
    case tag::kContainerTraining: return "training container";
    default: return "unknown";
  }
}

std::string Hex(std::uint8_t byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[byte >> 4], kDigits[byte & 0x0F]};
}

std::string Hex(ByteView bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += text.empty() ? "" : " ";
    text += Hex(byte);
  }
  return text;
}

[[noreturn]] void Refuse(RefusalCode code, const Record& record, const std::string& why) {
  throw Refusal{code,
                "position " + std::to_string(record.position) + ", " + DescribeTag(record.tag) + ": " + why};
}

[[noreturn]] void RefuseCoding(const Record& record, const std::string& why) {
  RefuseValue(record, "value " + Hex(record.value) + " " + why);
}

[[noreturn]] void RefuseLength(const Record& record, const std::string& expected) {
  Refuse(RefusalCode::Length, record,
         "length " + std::to_string(record.value.size()) + ", expected " + expected);
}

void CheckLength(const Record& record, std::size_t length) {
  if (record.value.size() != length) {
    RefuseLength(record, std::to_string(length));
  }
}

void CheckLength(const Record& record, std::size_t min, std::size_t max) {
  if (record.value.size() < min || record.value.size() > max) {
    RefuseLength(record, std::to_string(min) + " to " + std::to_string(max));
  }
}

/// Refuses all characters but those with the codes `first` to `last`.
void CheckCharacters(const Record& record, std::uint8_t first, std::uint8_t last) {
  for (std::size_t i = 0; i < record.value.size(); ++i) {
    if (record.value[i] < first || record.value[i] > last) {
      RefuseValue(record, "character " + std::to_string(i + 1) + " is 0x" + Hex(record.value[i]) +
                              ", expected 0x" + Hex(first) + " to 0x" + Hex(last));
    }
  }
}

/// The places from `next` to the first mandatory one, which are all that may come next.
std::string ListExpected(const RecordReader& reader, std::span<const Field> fields, std::size_t next) {
  std::string list;
  for (; next < fields.size(); ++next) {
    if (fields[next].mandatory) {
      return list + (list.empty() ? "" : " or ") + DescribeTag(fields[next].tag);
    }
    list += (list.empty() ? "" : ", ") + DescribeTag(fields[next].tag);
  }
  return list + (list.empty() ? "" : " or ") + "the end of " + reader.Whole();
}

bool IsDigitPair(std::uint8_t byte) { return (byte >> 4) <= 9 && (byte & 0x0F) <= 9; }

/// The number that a pair of BCD digits stands for, 100 or above if it isn't one.
unsigned DigitPair(std::uint8_t byte) {
  return IsDigitPair(byte) ? (byte >> 4) * 10U + (byte & 0x0FU) : 100U + byte;
}

unsigned DaysOfMonth(unsigned year, unsigned month) {
  constexpr std::uint8_t kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leapYear = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return kDays[month - 1] + (month == 2 && leapYear ? 1U : 0U);
}

}  // namespace

std::string DescribeTag(std::uint8_t tag) { return "tag 0x" + Hex(tag) + " (" + NameOfTag(tag) + ")"; }

void RefuseValue(const Record& record, const std::string& why) { Refuse(RefusalCode::Value, record, why); }

RecordReader::RecordReader(ByteView data, std::string whole, std::size_t position)
    : data_(data), whole_(std::move(whole)), position_(position) {}

Record RecordReader::Next() {
  Record record{position_, data_[0], {}};
  if (data_.size() < 2) {
    Refuse(RefusalCode::Framing, record, whole_ + " ends here, a length byte must follow");
  }
  const std::size_t length = data_[1];
  if (length > kMaxValueLength) {
    Refuse(RefusalCode::Framing, record, "length " + std::to_string(length) + ", expected 0 to 127");
  }
  if (length > data_.size() - 2) {
    Refuse(RefusalCode::Framing, record,
           "length " + std::to_string(length) + ", but " + whole_ + " ends after " +
               std::to_string(data_.size() - 2) + " bytes of the value");
  }
  record.value = data_.subspan(2, length);
  data_ = data_.subspan(2 + length);
  position_ += 2 + length;
  return record;
}

std::size_t NextInOrder(RecordReader& reader, std::span<const Field> fields, std::size_t& next,
                        Record& record) {
  const bool atEnd = reader.AtEnd();
  if (!atEnd) {
    record = reader.Next();
  }
  for (std::size_t place = next; place < fields.size(); ++place) {
    if (!atEnd && fields[place].tag == record.tag) {
      next = place + 1;
      return place;
    }
    if (fields[place].mandatory) {
      if (atEnd) {
        throw Refusal{RefusalCode::MissingRecord, "position " + std::to_string(reader.Position()) + ": " +
                                                      reader.Whole() + " ends here, expected " +
                                                      ListExpected(reader, fields, next)};
      }
      break;
    }
  }
  if (!atEnd) {
    Refuse(RefusalCode::UnexpectedRecord, record,
           "not expected here, expected " + ListExpected(reader, fields, next));
  }
  return fields.size();
}

void CheckFlag(const Record& record) { CheckLength(record, 0); }

void CheckHash(const Record& record) {
  if (record.value.size() != 20 && record.value.size() != 32) {
    RefuseLength(record, "20 or 32");
  }
}

std::int32_t ReadTime(const Record& record) {
  CheckLength(record, 2);
  const unsigned hour = DigitPair(record.value[0]);
  const unsigned minute = DigitPair(record.value[1]);
  if (hour > 23 || minute > 59) {
    RefuseCoding(record, "is no time of day, expected BCD from 00 00 to 23 59");
  }
  return static_cast<std::int32_t>(hour * 100 + minute);
}

std::int32_t ReadDate(const Record& record) {
  CheckLength(record, 4);
  const unsigned year = DigitPair(record.value[0]) * 100 + DigitPair(record.value[1]);
  const unsigned month = DigitPair(record.value[2]);
  const unsigned day = DigitPair(record.value[3]);
  const bool digits = IsDigitPair(record.value[0]) && IsDigitPair(record.value[1]);
  if (!digits || year < 1 || month < 1 || month > 12 || day < 1 || day > DaysOfMonth(year, month)) {
    RefuseCoding(record, "is no date, expected BCD of year (2 bytes), month and day");
  }
  return static_cast<std::int32_t>(year * 10000 + month * 100 + day);
}

std::int32_t ReadMonth(const Record& record) {
  CheckLength(record, 3);
  const unsigned year = DigitPair(record.value[0]) * 100 + DigitPair(record.value[1]);
  const unsigned month = DigitPair(record.value[2]);
  const bool digits = IsDigitPair(record.value[0]) && IsDigitPair(record.value[1]);
  if (!digits || year < 1 || month < 1 || month > 12) {
    RefuseCoding(record, "is no month, expected BCD of year (2 bytes) and month");
  }
  return static_cast<std::int32_t>(year * 100 + month);
}

std::string ReadText(const Record& record, std::size_t maxLength) {
  CheckLength(record, 1, maxLength);
  CheckCharacters(record, 0x20, 0x7F);
  return {record.value.begin(), record.value.end()};
}

std::string ReadTransportPin(const Record& record) {
  CheckLength(record, 6);
  CheckCharacters(record, '0', '9');
  return {record.value.begin(), record.value.end()};
}

std::uint32_t ReadCounter(const Record& record) {
  CheckLength(record, 1, 4);
  std::uint32_t number = 0;
  for (const std::uint8_t byte : record.value) {
    number = number << 8 | byte;
  }
  return number;
}

std::int64_t ReadAmount(const Record& record, std::size_t maxLength) {
  CheckLength(record, 1, maxLength);
  std::int64_t amount = 0;
  for (const std::uint8_t byte : record.value.first(record.value.size() - 1)) {
    if (!IsDigitPair(byte)) {
      RefuseCoding(record, "is no signed BCD, byte " + Hex(byte) + " is no pair of digits");
    }
    amount = amount * 100 + DigitPair(byte);
  }
  const std::uint8_t last = record.value.back();
  const int sign = last & 0x0F;
  if ((last >> 4) > 9 || (sign != 0x0C && sign != 0x0D)) {
    RefuseCoding(record, "is no signed BCD, last byte " + Hex(last) + " is no digit with sign C or D");
  }
  amount = amount * 10 + (last >> 4);
  if (sign == 0x0C) {
    return amount;
  }
  if (amount == 0) {
    RefuseCoding(record, "is zero with a negative sign");
  }
  return -amount;
}

std::int32_t ReadVatRate(const Record& record) {
  CheckLength(record, 1, 6);
  std::int64_t rate = 0;
  for (const std::uint8_t byte : record.value) {
    if (!IsDigitPair(byte)) {
      RefuseCoding(record, "is no BCD, byte " + Hex(byte) + " is no pair of digits");
    }
    rate = rate * 100 + DigitPair(byte);
  }
  if (rate > 9999) {
    RefuseCoding(record, "is above 99.99 %");
  }
  return static_cast<std::int32_t>(rate);
}

std::span<const std::uint8_t, 64> ReadSignature(const Record& record) {
  CheckLength(record, 64);
  return record.value.first<64>();
}

void AppendRecord(Bytes& out, std::uint8_t tag, ByteView value) {
  out.push_back(tag);
  out.push_back(static_cast<std::uint8_t>(value.size()));
  out.insert(out.end(), value.begin(), value.end());
}

void AppendText(Bytes& out, std::uint8_t tag, std::string_view text) {
  AppendRecord(out, tag, Bytes(text.begin(), text.end()));
}

void AppendCounter(Bytes& out, std::uint8_t tag, std::uint32_t number) {
  Bytes value;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const auto byte = static_cast<std::uint8_t>(number >> shift);
    if (byte != 0 || !value.empty() || shift == 0) {
      value.push_back(byte);
    }
  }
  AppendRecord(out, tag, value);
}

void AppendAmount(Bytes& out, std::uint8_t tag, std::int64_t amount) {
  constexpr std::uint8_t kPlus = 0x0C;
  constexpr std::uint8_t kMinus = 0x0D;
  std::uint64_t rest =
      amount < 0 ? 0 - static_cast<std::uint64_t>(amount) : static_cast<std::uint64_t>(amount);
  Bytes value = {static_cast<std::uint8_t>(rest % 10 << 4 | (amount < 0 ? kMinus : kPlus))};
  for (rest /= 10; rest > 0; rest /= 100) {
    value.push_back(static_cast<std::uint8_t>(rest / 10 % 10 << 4 | rest % 10));
  }
  std::reverse(value.begin(), value.end());
  AppendRecord(out, tag, value);
}

void AppendBcd(Bytes& out, std::uint8_t tag, std::uint32_t number, std::size_t minLength) {
  Bytes value;
  for (; number > 0 || value.size() < minLength; number /= 100) {
    value.push_back(static_cast<std::uint8_t>(number / 10 % 10 << 4 | number % 10));
  }
  std::reverse(value.begin(), value.end());
  AppendRecord(out, tag, value);
}

}  // namespace softdevice
