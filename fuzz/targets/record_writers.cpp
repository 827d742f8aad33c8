// Writers of records: any value, at any start of an array with any bounds.

#include "fuzz/Records.h"

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>

#include "fuzz/Targets.h"

namespace fuzz {

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZelTags;

/// One call of a writer: where it writes to, and the checks that all writers share.
struct Call {
  VnZEL10cmn::clsZelBaseCoding coder;
  ByteArray buffer;
  std::int32_t start = 0;
  ZelTags tag{};
  bool flag = false;

  /// Runs a writer. Whatever comes of it, nothing stands where no record of that start can be, and what was
  /// written can be read as a record of this tag.
  template <class Writer>
  bool Write(std::string_view name, ZelTags wanted, Writer&& writer) {
    constexpr std::int64_t kLongestRecord = 2 + 127;
    const std::int32_t lower = buffer.LBound();
    const std::int32_t upper = buffer.UBound();
    std::int32_t end = start;
    const bool done = writer(end);
    CheckOutcome(coder, done, name);
    FUZZ_CHECK(buffer.LBound() == lower && buffer.UBound() == upper);
    if (!done) {
      // An index outside the array is met nowhere, but in a value that doesn't begin at index 0.
      FUZZ_CHECK(coder.ErrorObject().ErrorNr() != 9 || name == "SetDataBinary");
      FUZZ_CHECK(end == start);
      FUZZ_CHECK(IsIntactOutside(buffer, start, start + kLongestRecord));
      return false;
    }
    FUZZ_CHECK(IsIntactOutside(buffer, start, end));
    if (end != start) {
      FUZZ_CHECK(ReadRefusal(buffer, start, -1, -1, static_cast<std::uint8_t>(wanted)) == 0);
      FUZZ_CHECK(end == start + 2 + buffer[start + 1]);
    }
    return end != start;
  }

  /// Reads with a reader that must succeed and end where the writer ended.
  template <class Reader>
  void Reread(Reader&& reader) {
    std::int32_t at = start;
    FUZZ_CHECK(reader(at));
    FUZZ_CHECK(at == start + 2 + buffer[start + 1]);
  }
};

/// Whether a text that was read is the one that was written: characters outside the code page are question
/// marks in it.
bool IsAsWritten(const std::string& read, const std::string& written) {
  const bool isAscii = std::all_of(written.begin(), written.end(), [](char c) { return c >= 0; });
  return isAscii ? read == written : !read.empty() && read.size() <= written.size();
}

void BaseCheck(Call& c, std::int32_t length) {
  std::string message = "untouched";
  auto number = VnZEL10cmn::ZELErrorCodes::No_Error;
  const bool done = c.coder.DataWriteBaseCheck(c.buffer, c.start, length, message, number);
  const std::int64_t lower = c.buffer.LBound();
  const std::int64_t upper = c.buffer.UBound();
  const std::int32_t refusal = length < 0                                   ? 9001
                               : lower < 0                                  ? 9202
                               : c.start < lower || c.start > upper         ? 9203
                               : c.start == upper                           ? 9205
                               : std::int64_t{c.start} + length + 1 > upper ? 9204
                               : length > 127                               ? 9207
                                                                            : 0;
  FUZZ_CHECK(done == (refusal == 0));
  FUZZ_CHECK(static_cast<std::int32_t>(number) == refusal);
  FUZZ_CHECK(message.empty() == done);
  FUZZ_CHECK(!c.coder.HasError());
  FUZZ_CHECK(IsIntactOutside(c.buffer, 0, 0));
}

void Binary(Call& c, const ByteArray& value) {
  if (c.Write("SetDataBinary", c.tag,
              [&](std::int32_t& end) { return c.coder.SetDataBinary(c.buffer, end, c.tag, value); })) {
    c.Reread([&](std::int32_t& at) {
      ByteArray again;
      return c.coder.GetDataBinary(c.buffer, at, again) &&
             (value.LBound() != 0 || Content(again) == Content(value));
    });
  }
}

void Ascii(Call& c, const std::string& text) {
  if (c.Write("SetDataAscii", c.tag,
              [&](std::int32_t& end) { return c.coder.SetDataAscii(c.buffer, end, c.tag, text); })) {
    c.Reread([&](std::int32_t& at) {
      std::string again;
      return c.coder.GetDataAscii(c.buffer, at, again) && IsAsWritten(again, text);
    });
  }
}

void Bool(Call& c) {
  const bool wrote = c.Write("SetDataBool", c.tag, [&](std::int32_t& end) {
    return c.coder.SetDataBool(c.buffer, end, c.tag, c.flag);
  });
  FUZZ_CHECK(!wrote || (c.flag && c.buffer[c.start + 1] == 0));
  FUZZ_CHECK(c.flag || !c.coder.HasError());
}

void Bcd(Call& c, const std::string& digits) {
  if (c.Write("SetDataBcd", c.tag,
              [&](std::int32_t& end) { return c.coder.SetDataBcd(c.buffer, end, c.tag, digits, c.flag); })) {
    c.Reread([&](std::int32_t& at) {
      std::string again;
      return c.coder.GetDataBcd(c.buffer, at, again) && digits.find(again) != std::string::npos;
    });
  }
}

void SignedBcd(Call& c, const std::string& digits) {
  if (c.Write("SetDataBcdSgnd", c.tag,
              [&](std::int32_t& end) { return c.coder.SetDataBcdSgnd(c.buffer, end, c.tag, digits); }) &&
      digits.find_first_of("CDcd") == digits.find_last_of("CDcd")) {
    c.Reread([&](std::int32_t& at) {
      std::string again;
      return c.coder.GetDataBcdSgnd(c.buffer, at, again) &&
             digits.find(again.substr(again.front() == '-' ? 1 : 0)) != std::string::npos;
    });
  }
}

void Pin(Call& c, const std::string& pin) {
  if (c.Write("SetZelTranspPin", ZelTags::Transport_Pin,
              [&](std::int32_t& end) { return c.coder.SetZelTranspPin(c.buffer, end, pin); })) {
    c.Reread([&](std::int32_t& at) {
      std::string again;
      return c.coder.GetZelTranspPin(c.buffer, at, again) && again == pin;
    });
  }
}

void Operator(Call& c, const std::string& name) {
  if (c.Write("SetZelOperator", ZelTags::Operator,
              [&](std::int32_t& end) { return c.coder.SetZelOperator(c.buffer, end, name); })) {
    c.Reread([&](std::int32_t& at) {
      std::string again;
      return c.coder.GetZelOperator(c.buffer, at, again) && IsAsWritten(again, name);
    });
  }
}

ZelTags HashTag(const Call& c) { return c.flag ? ZelTags::Hash_Trans_Items : ZelTags::Hash_Reprt_Items; }

void Hash(Call& c, const ByteArray& hash) {
  const bool isHash = hash.size() == 20 || hash.size() == 32;
  const bool wrote = c.Write("SetZelHash", HashTag(c), [&](std::int32_t& end) {
    return c.coder.SetZelHash(c.buffer, end, c.flag, hash);
  });
  FUZZ_CHECK(!wrote || isHash);
}

void Hash2(Call& c, const std::string& text) {
  if (c.Write("SetZelHash2", HashTag(c),
              [&](std::int32_t& end) { return c.coder.SetZelHash2(c.buffer, end, c.flag, text); })) {
    c.Reread([&](std::int32_t& at) {
      std::string again;
      return c.coder.GetZelHash(c.buffer, at, c.flag, again);
    });
  }
}

void CurrencyCode(Call& c, std::int32_t code) {
  if (c.Write("SetZelCurrencyCode", ZelTags::Currency,
              [&](std::int32_t& end) { return c.coder.SetZelCurrencyCode(c.buffer, end, code); })) {
    c.Reread([&](std::int32_t& at) {
      std::int32_t again = 0;
      return c.coder.GetZelCurrencyCode(c.buffer, at, again) && again == code;
    });
  }
}

void Counter(Call& c, Currency value) {
  constexpr std::int64_t kMost = 4'294'967'295;  // what lies above is written without its 33rd bit
  if (c.Write("SetZelCounter", c.tag,
              [&](std::int32_t& end) { return c.coder.SetZelCounter(c.buffer, end, c.tag, value); })) {
    c.Reread([&](std::int32_t& at) {
      Currency again;
      const bool isCounter = value >= Currency() && value <= Currency(kMost) && value.Scaled() % 10'000 == 0;
      return c.coder.GetZelCounter(c.buffer, at, c.tag, again) && (!isCounter || again == value);
    });
  }
}

void Amounts(Call& c, Currency value, bool isSelected) {
  const auto amount = static_cast<VnZEL10cmn::ZelRqstAmounts>(c.tag);
  if (c.Write(isSelected ? "SetZelAmountsSpc01" : "SetZelAmounts", c.tag, [&](std::int32_t& end) {
        return isSelected ? c.coder.SetZelAmountsSpc01(c.buffer, end, amount, value, c.flag)
                          : c.coder.SetZelAmounts(c.buffer, end, c.tag, value, c.flag);
      })) {
    c.Reread([&](std::int32_t& at) {
      Currency again;
      const bool done = c.coder.GetZelAmounts(c.buffer, at, c.tag, again, c.flag);
      const Currency off = again - value;
      return done && off >= Currency::FromScaled(-50) && off <= Currency::FromScaled(50);
    });
  }
}

void Dates(Call& c, Date date, bool isSelected) {
  const auto selected = static_cast<VnZEL10cmn::ZelRqstDates>(c.tag);
  if (c.Write(isSelected ? "SetZelDatesSpc01" : "SetZelDates", c.tag,
              [&](std::int32_t& end) {
                return isSelected ? c.coder.SetZelDatesSpc01(c.buffer, end, selected, date)
                                  : c.coder.SetZelDates(c.buffer, end, c.tag, date);
              }) &&
      date >= Date::FromCivil(1000, 1, 1)) {  // earlier years lose their leading zero
    const Date::Civil wanted = date.ToCivil();
    c.Reread([&](std::int32_t& at) {
      Date again;
      return c.coder.GetZelDates(c.buffer, at, c.tag, again) && again.ToCivil().year == wanted.year &&
             again.ToCivil().month == wanted.month;
    });
  }
}

void Times(Call& c, Date time) {
  if (c.Write("SetZelTimes", c.tag,
              [&](std::int32_t& end) { return c.coder.SetZelTimes(c.buffer, end, c.tag, time); })) {
    const Date::Civil wanted = time.ToCivil();
    c.Reread([&](std::int32_t& at) {
      Date again;
      return c.coder.GetZelTimes(c.buffer, at, c.tag, again) && again.ToCivil().hour == wanted.hour &&
             again.ToCivil().minute == wanted.minute;
    });
  }
}

void ValsPos(Call& c, Currency value) {
  if (c.Write("SetZelValsPos", c.tag,
              [&](std::int32_t& end) { return c.coder.SetZelValsPos(c.buffer, end, c.tag, value); })) {
    FUZZ_CHECK(value > Currency(-1));
    c.Reread([&](std::int32_t& at) {
      Currency again;
      return c.coder.GetZelValsPos(c.buffer, at, c.tag, again) &&
             again - value <= Currency::FromScaled(5'000) && value - again <= Currency::FromScaled(5'000);
    });
  }
}

void VatRate(Call& c, Currency rate) {
  if (c.Write("SetZelVatRate", ZelTags::Trnvr_Vat_Rate,
              [&](std::int32_t& end) { return c.coder.SetZelVatRate(c.buffer, end, rate); })) {
    FUZZ_CHECK(rate >= Currency() && rate <= Currency::FromScaled(999'900));
    c.Reread([&](std::int32_t& at) {
      Currency again;
      return c.coder.GetZelVatRate(c.buffer, at, again) && again - rate <= Currency::FromScaled(50) &&
             rate - again <= Currency::FromScaled(50);
    });
  }
}

}  // namespace

void RecordWriters(Bytes data) {
  Input input(data);
  Call c;
  const std::int32_t writer = input.Between(0, 18);
  c.tag = static_cast<ZelTags>(input.Byte());
  c.flag = input.Flag();
  const std::size_t room = input.Byte();
  const std::uint8_t bounds = input.Byte();
  if (room > 0) {
    const std::int32_t lower = LowerBound(bounds, room);
    c.buffer = Canary(lower, static_cast<std::int32_t>(lower + static_cast<std::int64_t>(room) - 1));
  }
  c.start = StartAt(input.Byte(), c.buffer);
  switch (writer) {
    case 0: BaseCheck(c, input.Number<std::int32_t>()); break;
    case 1: {
      const std::uint8_t lower = input.Byte();
      const Bytes value = input.Rest();
      Binary(c, ArrayFrom(LowerBound(lower, value.size()), value));
      break;
    }
    case 2: Ascii(c, Input::TextOf(input.Rest())); break;
    case 3: Bool(c); break;
    case 4: Bcd(c, Input::TextOf(input.Rest())); break;
    case 5: SignedBcd(c, Input::TextOf(input.Rest())); break;
    case 6: Pin(c, Input::TextOf(input.Rest())); break;
    case 7: Operator(c, Input::TextOf(input.Rest())); break;
    case 8: Hash(c, ByteArray(input.Rest())); break;
    case 9: Hash2(c, Input::TextOf(input.Rest())); break;
    case 10: CurrencyCode(c, input.Number<std::int32_t>()); break;
    case 11: Counter(c, Currency::FromScaled(input.Number<std::int64_t>())); break;
    case 12:
    case 13: Amounts(c, Currency::FromScaled(input.Number<std::int64_t>()), writer == 13); break;
    case 14:
    case 15: Dates(c, Date(std::bit_cast<double>(input.Number<std::uint64_t>())), writer == 15); break;
    case 16: Times(c, Date(std::bit_cast<double>(input.Number<std::uint64_t>()))); break;
    case 17: ValsPos(c, Currency::FromScaled(input.Number<std::int64_t>())); break;
    default: VatRate(c, Currency::FromScaled(input.Number<std::int64_t>())); break;
  }
}

}  // namespace fuzz
