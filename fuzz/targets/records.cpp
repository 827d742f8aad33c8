// Readers of records: primitive and typed, at any start of an array with any bounds.

#include "fuzz/Records.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

#include "fuzz/Targets.h"

namespace fuzz {

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZelTags;

/// One call of a reader: what it is given, and the checks that all readers share.
struct Call {
  VnZEL10cmn::clsZelBaseCoding coder;
  Place place;
  std::int32_t min = -1;
  std::int32_t max = -1;
  std::uint8_t tag = 0;
  bool flag = false;

  /// Whether the reader took the record; everything that holds for any reader is checked.
  template <class Reader>
  bool Read(std::string_view name, std::int32_t least, std::int32_t most, std::uint8_t wanted,
            Reader&& reader) {
    const ByteArray& buffer = place.buffer;
    const std::int32_t refusal = ReadRefusal(buffer, place.start, least, most, wanted);
    std::int32_t start = place.start;
    const bool done = reader(buffer, start);
    CheckOutcome(coder, done, name);
    if (refusal != 0) {
      FUZZ_CHECK(!done && coder.ErrorObject().ErrorNr() == refusal && coder.ErrorObject().IsUserDef());
    }
    // An index outside the array is met nowhere, but where a number has no bytes.
    FUZZ_CHECK(done || coder.ErrorObject().ErrorNr() != 9 || Length() == 0);
    if (done) {
      FUZZ_CHECK(start == place.start + 2 + Length());
    } else {
      FUZZ_CHECK(start == place.start);
    }
    return done;
  }

  /// The same for a reader that takes every record that is framed well: only the last position that there is
  /// can get into its way.
  template <class Reader>
  bool ReadAll(std::string_view name, std::int32_t least, std::int32_t most, std::uint8_t wanted,
               Reader&& reader) {
    const bool done = Read(name, least, most, wanted, reader);
    FUZZ_CHECK(done == (ReadRefusal(place.buffer, place.start, least, most, wanted) == 0) ||
               EndsWithLastIndex(place.buffer, place.start));
    return done;
  }

  std::int32_t Length() const { return place.buffer[place.start + 1]; }

  ZelTags Found() const { return static_cast<ZelTags>(place.buffer[place.start]); }

  std::vector<std::uint8_t> Value() const {
    const auto* const value = place.buffer.data() + (place.start - place.buffer.LBound()) + 2;
    return {value, value + Length()};
  }
};

std::uint8_t Tag(ZelTags tag) { return static_cast<std::uint8_t>(tag); }

void BaseCheck(Call& c) {
  std::string message = "untouched";
  auto number = VnZEL10cmn::ZELErrorCodes::No_Error;
  const bool done = c.coder.DataReadBaseCheck(c.place.buffer, c.place.start, message, number, c.min, c.max,
                                              static_cast<ZelTags>(c.tag));
  const std::int32_t refusal = ReadRefusal(c.place.buffer, c.place.start, c.min, c.max, c.tag);
  FUZZ_CHECK(done == (refusal == 0));
  FUZZ_CHECK(static_cast<std::int32_t>(number) == refusal);
  FUZZ_CHECK(message.empty() == done);
  FUZZ_CHECK(IsUtf8(message));
  FUZZ_CHECK(!c.coder.HasError());
}

void Binary(Call& c) {
  ByteArray value = {1, 2, 3};
  if (c.ReadAll("GetDataBinary", c.min, c.max, 0, [&](const ByteArray& buffer, std::int32_t& start) {
        return c.coder.GetDataBinary(buffer, start, value, c.min, c.max);
      })) {
    FUZZ_CHECK(value.LBound() == 0 && Content(value) == c.Value());
    CheckRewritten(
        [&](ByteArray& buffer, std::int32_t& start) {
          return c.coder.SetDataBinary(buffer, start, c.Found(), value);
        },
        [&](const ByteArray& buffer, std::int32_t& start) {
          ByteArray again;
          return c.coder.GetDataBinary(buffer, start, again) && again == value && buffer[3] == Tag(c.Found());
        });
  }
}

void Ascii(Call& c) {
  std::string text = "before";
  const bool done =
      c.Read("GetDataAscii", c.min, c.max, 0, [&](const ByteArray& buffer, std::int32_t& start) {
        return c.coder.GetDataAscii(buffer, start, text, c.min, c.max);
      });
  if (done && !text.empty()) {
    FUZZ_CHECK(std::vector<std::uint8_t>(text.begin(), text.end()) == c.Value());
    CheckRewritten([&](ByteArray& buffer,
                       std::int32_t& start) { return c.coder.SetDataAscii(buffer, start, c.Found(), text); },
                   [&](const ByteArray& buffer, std::int32_t& start) {
                     std::string again;
                     return c.coder.GetDataAscii(buffer, start, again) && again == text;
                   });
  }
}

void Bcd(Call& c) {
  std::string digits;
  if (c.Read("GetDataBcd", c.min, c.max, 0,
             [&](const ByteArray& buffer, std::int32_t& start) {
               return c.coder.GetDataBcd(buffer, start, digits, c.min, c.max);
             }) &&
      !digits.empty()) {
    FUZZ_CHECK(digits.find_first_not_of("0123456789") == std::string::npos);
    FUZZ_CHECK(digits.size() == 1 || digits.front() != '0');
    CheckRewritten(
        [&](ByteArray& buffer, std::int32_t& start) {
          return c.coder.SetDataBcd(buffer, start, c.Found(), digits, c.flag);
        },
        [&](const ByteArray& buffer, std::int32_t& start) {
          std::string again;
          return c.coder.GetDataBcd(buffer, start, again) && again == digits;
        });
  }
}

void SignedBcd(Call& c) {
  std::string digits;
  if (c.Read("GetDataBcdSgnd", c.min, c.max, 0, [&](const ByteArray& buffer, std::int32_t& start) {
        return c.coder.GetDataBcdSgnd(buffer, start, digits, c.min, c.max);
      })) {
    const bool negative = digits.front() == '-';
    const std::string number = digits.substr(negative ? 1 : 0);
    FUZZ_CHECK(!number.empty() && number.find_first_not_of("0123456789") == std::string::npos);
    FUZZ_CHECK(number.size() == 1 || number.front() != '0');
    FUZZ_CHECK(!negative || number != "0");
    if (number == "0") {  // it can be read, not written
      return;
    }
    CheckRewritten(
        [&](ByteArray& buffer, std::int32_t& start) {
          return c.coder.SetDataBcdSgnd(buffer, start, c.Found(), number + (negative ? "D" : "C"));
        },
        [&](const ByteArray& buffer, std::int32_t& start) {
          std::string again;
          return c.coder.GetDataBcdSgnd(buffer, start, again) && again == digits;
        });
  }
}

void Signature(Call& c) {
  ByteArray value;
  c.ReadAll("GetZelSignature", 48, 64, Tag(ZelTags::Signature),
            [&](const ByteArray& buffer, std::int32_t& start) {
              return c.coder.GetZelSignature(buffer, start, value) && Content(value) == c.Value();
            });
}

void Signature2(Call& c) {
  std::string text;
  const std::string separator = c.tag == 0 ? "" : std::string(1, static_cast<char>(c.tag % 128));
  if (c.ReadAll("GetZelSignature2", 48, 64, Tag(ZelTags::Signature),
                [&](const ByteArray& buffer, std::int32_t& start) {
                  return c.coder.GetZelSignature2(buffer, start, text, c.max, separator, c.flag);
                })) {
    std::string whole;
    std::string grouped;
    const std::vector<std::uint8_t> value = c.Value();
    FUZZ_CHECK(c.coder.GetZelSingatureString(ByteArray(value), grouped, c.max, separator, c.flag));
    FUZZ_CHECK(c.coder.GetZelSingatureString(ByteArray(value), whole, 0, separator, c.flag));
    FUZZ_CHECK(text == grouped);
    const std::size_t group = c.max < 1 ? whole.size() : static_cast<std::size_t>(c.max);
    FUZZ_CHECK(text.size() == whole.size() + (whole.size() - 1) / group);
  }
}

void LifeCycle(Call& c) {
  auto state = VnZEL10cmn::ZelLifeCycle::Undefined;
  const bool done = c.Read("GetZelLifeCycle", -1, -1, Tag(ZelTags::Lifecycle),
                           [&](const ByteArray& buffer, std::int32_t& start) {
                             return c.coder.GetZelLifeCycle(buffer, start, state);
                           });
  FUZZ_CHECK(!done || c.Length() > 0);
  FUZZ_CHECK(!c.coder.ToStringZelState(state).empty());
}

void SerialNr(Call& c) {
  std::string base64;
  std::string ascii;
  if (c.ReadAll("GetZelSerialNr", -1, -1, Tag(ZelTags::Serial_No),
                [&](const ByteArray& buffer, std::int32_t& start) {
                  return c.coder.GetZelSerialNr(buffer, start, base64, c.tag == 0 ? nullptr : &ascii, c.flag);
                })) {
    ByteArray value;
    FUZZ_CHECK(base64.empty() == (c.Length() == 0));
    if (!base64.empty()) {
      FUZZ_CHECK(VnZEL10cmn::clsHelper01().FromBase64String(base64, value));
    }
    FUZZ_CHECK(Content(value) == c.Value());
    FUZZ_CHECK(IsUtf8(ascii));
  }
}

/// A text field that is written as any text is.
template <class Reader>
void Text(Call& c, std::string_view name, std::int32_t least, std::int32_t most, ZelTags tag,
          Reader&& reader) {
  std::string text;
  if (c.Read(name, least, most, Tag(tag), [&](const ByteArray& buffer, std::int32_t& start) {
        return (c.coder.*reader)(buffer, start, text);
      })) {
    CheckRewritten([&](ByteArray& buffer,
                       std::int32_t& start) { return c.coder.SetDataAscii(buffer, start, tag, text); },
                   [&](const ByteArray& buffer, std::int32_t& start) {
                     std::string again;
                     return (c.coder.*reader)(buffer, start, again) && again == text;
                   });
  }
}

void Pin(Call& c) {
  std::string pin;
  if (c.Read("GetZelTranspPin", 6, 6, Tag(ZelTags::Transport_Pin),
             [&](const ByteArray& buffer, std::int32_t& start) {
               return c.coder.GetZelTranspPin(buffer, start, pin);
             }) &&
      pin.find_first_not_of("0123456789") == std::string::npos) {
    CheckRewritten(
        [&](ByteArray& buffer, std::int32_t& start) { return c.coder.SetZelTranspPin(buffer, start, pin); },
        [&](const ByteArray& buffer, std::int32_t& start) {
          std::string again;
          return c.coder.GetZelTranspPin(buffer, start, again) && again == pin;
        });
  }
}

void Operator(Call& c) {
  std::string name;
  if (c.Read("GetZelOperator", 1, 16, Tag(ZelTags::Operator),
             [&](const ByteArray& buffer, std::int32_t& start) {
               return c.coder.GetZelOperator(buffer, start, name);
             })) {
    CheckRewritten(
        [&](ByteArray& buffer, std::int32_t& start) { return c.coder.SetZelOperator(buffer, start, name); },
        [&](const ByteArray& buffer, std::int32_t& start) {
          std::string again;
          return c.coder.GetZelOperator(buffer, start, again) && again == name;
        });
  }
}

void Hash(Call& c) {
  std::string hash;
  const auto tag = Tag(c.flag ? ZelTags::Hash_Trans_Items : ZelTags::Hash_Reprt_Items);
  if (c.Read("GetZelHash", 20, 32, tag, [&](const ByteArray& buffer, std::int32_t& start) {
        return c.coder.GetZelHash(buffer, start, c.flag, hash);
      })) {
    FUZZ_CHECK(c.Length() == 20 || c.Length() == 32);
    CheckRewritten([&](ByteArray& buffer,
                       std::int32_t& start) { return c.coder.SetZelHash2(buffer, start, c.flag, hash); },
                   [&](const ByteArray& buffer, std::int32_t& start) {
                     std::string again;
                     return c.coder.GetZelHash(buffer, start, c.flag, again) && again == hash;
                   });
  }
}

void CurrencyCode(Call& c) {
  std::int32_t code = 0;
  if (c.Read("GetZelCurrencyCode", -1, -1, Tag(ZelTags::Currency),
             [&](const ByteArray& buffer, std::int32_t& start) {
               return c.coder.GetZelCurrencyCode(buffer, start, code);
             })) {
    CheckRewritten([&](ByteArray& buffer,
                       std::int32_t& start) { return c.coder.SetZelCurrencyCode(buffer, start, code); },
                   [&](const ByteArray& buffer, std::int32_t& start) {
                     std::int32_t again = 0;
                     return c.coder.GetZelCurrencyCode(buffer, start, again) && again == code;
                   });
  }
}

void CountryCode(Call& c) {
  std::int32_t code = 0;
  c.Read("GetZelCountryCode", -1, -1, Tag(ZelTags::Country_Code),
         [&](const ByteArray& buffer, std::int32_t& start) {
           return c.coder.GetZelCountryCode(buffer, start, code);
         });
}

void Counter(Call& c) {
  constexpr std::int64_t kMost = 4'294'967'295;
  const auto tag = static_cast<ZelTags>(c.tag);
  const auto counter = static_cast<VnZEL10cmn::ZelRqstCounter>(c.tag);
  Currency value;
  const bool done =
      c.flag ? c.Read("GetZelCounterSpc01", -1, -1, c.tag,
                      [&](const ByteArray& buffer, std::int32_t& start) {
                        return c.coder.GetZelCounterSpc01(buffer, start, counter, value);
                      })
             : c.Read("GetZelCounter", -1, -1, c.tag, [&](const ByteArray& buffer, std::int32_t& start) {
                 return c.coder.GetZelCounter(buffer, start, tag, value);
               });
  if (done) {
    FUZZ_CHECK(value >= Currency() && value <= Currency(kMost));
    CheckRewritten([&](ByteArray& buffer,
                       std::int32_t& start) { return c.coder.SetZelCounter(buffer, start, tag, value); },
                   [&](const ByteArray& buffer, std::int32_t& start) {
                     Currency again;
                     return c.coder.GetZelCounter(buffer, start, tag, again) && again == value;
                   });
  }
}

void TpIDNr(Call& c) {
  Currency number;
  c.Read("GetZelTpIDNr", 1, 4, Tag(ZelTags::Tp_ID_No), [&](const ByteArray& buffer, std::int32_t& start) {
    return c.coder.GetZelTpIDNr(buffer, start, number);
  });
}

void Amounts(Call& c, bool isSelected) {
  constexpr std::int64_t kMostScaled = 92'233'720'368'547'700;  // 9,223,372,036,854.77
  const auto tag = static_cast<ZelTags>(c.tag);
  const auto amount = static_cast<VnZEL10cmn::ZelRqstAmounts>(c.tag);
  const std::int32_t most = c.flag ? 8 : 6;
  Currency value;
  const bool done =
      isSelected ? c.Read("GetZelAmountsSpc01", 1, most, c.tag,
                          [&](const ByteArray& buffer, std::int32_t& start) {
                            return c.coder.GetZelAmountsSpc01(buffer, start, amount, value, c.flag);
                          })
                 : c.Read("GetZelAmounts", 1, most, c.tag, [&](const ByteArray& buffer, std::int32_t& start) {
                     return c.coder.GetZelAmounts(buffer, start, tag, value, c.flag);
                   });
  if (done) {
    FUZZ_CHECK(value.Scaled() % 100 == 0);
    if (value == Currency() || std::abs(value.Scaled()) > kMostScaled) {  // these can be read, not written
      return;
    }
    CheckRewritten(
        [&](ByteArray& buffer, std::int32_t& start) {
          return isSelected ? c.coder.SetZelAmountsSpc01(buffer, start, amount, value, c.flag)
                            : c.coder.SetZelAmounts(buffer, start, tag, value, c.flag);
        },
        [&](const ByteArray& buffer, std::int32_t& start) {
          Currency again;
          return c.coder.GetZelAmounts(buffer, start, tag, again, c.flag) && again == value;
        });
  }
}

bool IsLastSecondOfMonth(const Date::Civil& parts) {
  Date::Civil nextDay = parts;
  ++nextDay.day;
  return !Date::Exists(nextDay) && parts.hour == 23 && parts.minute == 59 && parts.second == 59;
}

void Dates(Call& c, bool isSelected) {
  const auto tag = static_cast<ZelTags>(c.tag);
  const auto date = static_cast<VnZEL10cmn::ZelRqstDates>(c.tag);
  const bool isMonth = tag == ZelTags::Month_Start || tag == ZelTags::Month_End;
  const std::int32_t least = c.min < 1 ? (isMonth ? 3 : 4) : c.min;
  Date value;
  const bool done =
      isSelected ? c.Read("GetZelDatesSpc01", least, -1, c.tag,
                          [&](const ByteArray& buffer, std::int32_t& start) {
                            return c.coder.GetZelDatesSpc01(buffer, start, date, value, c.min);
                          })
                 : c.Read("GetZelDates", least, -1, c.tag, [&](const ByteArray& buffer, std::int32_t& start) {
                     return c.coder.GetZelDates(buffer, start, tag, value, c.min);
                   });
  if (done) {
    const bool isEnd = tag == ZelTags::Month_End;
    FUZZ_CHECK(tag != ZelTags::Month_Start || value.ToCivil().day == 1);
    FUZZ_CHECK(isEnd ? IsLastSecondOfMonth(value.ToCivil()) : value.Value() == std::floor(value.Value()));
    CheckRewritten(
        [&](ByteArray& buffer, std::int32_t& start) {
          return isSelected ? c.coder.SetZelDatesSpc01(buffer, start, date, value)
                            : c.coder.SetZelDates(buffer, start, tag, value);
        },
        [&](const ByteArray& buffer, std::int32_t& start) {
          Date again;
          return c.coder.GetZelDates(buffer, start, tag, again) && again == value;
        });
  }
}

void Times(Call& c) {
  const auto tag = static_cast<ZelTags>(c.tag);
  Date value;
  if (c.Read("GetZelTimes", -1, 2, c.tag, [&](const ByteArray& buffer, std::int32_t& start) {
        return c.coder.GetZelTimes(buffer, start, tag, value);
      })) {
    FUZZ_CHECK(value >= Date(0.0) && value < Date(1.0));
    CheckRewritten([&](ByteArray& buffer,
                       std::int32_t& start) { return c.coder.SetZelTimes(buffer, start, tag, value); },
                   [&](const ByteArray& buffer, std::int32_t& start) {
                     Date again;
                     return c.coder.GetZelTimes(buffer, start, tag, again) && again == value;
                   });
  }
}

void ValsPos(Call& c) {
  constexpr std::int64_t kMost = 99'999'999'999;
  const auto tag = static_cast<ZelTags>(c.tag);
  Currency value;
  if (c.Read("GetZelValsPos", 1, 6, c.tag,
             [&](const ByteArray& buffer, std::int32_t& start) {
               return c.coder.GetZelValsPos(buffer, start, tag, value);
             }) &&
      value <= Currency(kMost)) {
    CheckRewritten([&](ByteArray& buffer,
                       std::int32_t& start) { return c.coder.SetZelValsPos(buffer, start, tag, value); },
                   [&](const ByteArray& buffer, std::int32_t& start) {
                     Currency again;
                     return c.coder.GetZelValsPos(buffer, start, tag, again) && again == value;
                   });
  }
}

void VatRate(Call& c) {
  Currency rate;
  if (c.Read("GetZelVatRate", 1, 6, Tag(ZelTags::Trnvr_Vat_Rate),
             [&](const ByteArray& buffer, std::int32_t& start) {
               return c.coder.GetZelVatRate(buffer, start, rate);
             }) &&
      rate <= Currency::FromScaled(999'900)) {
    CheckRewritten(
        [&](ByteArray& buffer, std::int32_t& start) { return c.coder.SetZelVatRate(buffer, start, rate); },
        [&](const ByteArray& buffer, std::int32_t& start) {
          Currency again;
          return c.coder.GetZelVatRate(buffer, start, again) && again == rate;
        });
  }
}

/// A limit of a value's length: none, a possible one, or an absurd one.
std::int32_t Limit(std::uint8_t selector) {
  switch (selector) {
    case 255: return std::numeric_limits<std::int32_t>::max();
    case 254: return std::numeric_limits<std::int32_t>::min();
    default: return std::int32_t{selector} - 1;
  }
}

}  // namespace

void Records(Bytes data) {
  using Coder = VnZEL10cmn::clsZelBaseCoding;
  Input input(data);
  Call c;
  const std::int32_t reader = input.Between(0, 23);
  c.min = Limit(input.Byte());
  c.max = Limit(input.Byte());
  c.tag = input.Byte();
  c.flag = input.Flag();
  c.place = TakePlace(input);
  switch (reader) {
    case 0: BaseCheck(c); break;
    case 1: Binary(c); break;
    case 2: Ascii(c); break;
    case 3: Bcd(c); break;
    case 4: SignedBcd(c); break;
    case 5: Signature(c); break;
    case 6: Signature2(c); break;
    case 7: LifeCycle(c); break;
    case 8: SerialNr(c); break;
    case 9: Text(c, "GetZelVersion", 7, 10, ZelTags::Version, &Coder::GetZelVersion); break;
    case 10: Text(c, "GetZelTpID", 1, 32, ZelTags::Tp_ID, &Coder::GetZelTpID); break;
    case 11: Pin(c); break;
    case 12: Operator(c); break;
    case 13: Hash(c); break;
    case 14: CurrencyCode(c); break;
    case 15: CountryCode(c); break;
    case 16: Counter(c); break;
    case 17: TpIDNr(c); break;
    case 18:
    case 19: Amounts(c, reader == 19); break;
    case 20: Dates(c, c.flag); break;
    case 21: Times(c); break;
    case 22: ValsPos(c); break;
    default: VatRate(c); break;
  }
}

}  // namespace fuzz
