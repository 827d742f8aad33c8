// The coder of device records while memory runs out: every reader and writer, also where it refuses.

#include <optional>

#include "Path.h"
#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "tests/support/Hex.h"

namespace {

using test::FromHex;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsZelBaseCoding;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::VnObject;
using VnZEL10cmn::ZELErrorCodes;
using VnZEL10cmn::ZelLifeCycle;
using VnZEL10cmn::ZelRqstAmounts;
using VnZEL10cmn::ZelRqstCounter;
using VnZEL10cmn::ZelRqstDates;
using VnZEL10cmn::ZelTags;
using VnZEL10cmn::ZelXmlTags;

struct World {
  std::optional<clsZelBaseCoding> coder;
  ByteArray buffer;
  std::int32_t start = 0;
  ByteArray bytes;
  std::string text;
  std::string second;
  Currency value;
  Date date;
  std::int32_t number = 0;
  ZelLifeCycle state = ZelLifeCycle::Undefined;
  clsVnError check;
};

using Step = test::Step<World>;
using Path = test::Path<World>;
using Run = std::function<bool(World&)>;

VnObject* Coder(World& world) { return &*world.coder; }
std::string ShownStart(World& world) { return std::to_string(world.start); }

std::string ShownResults(World& world) {
  return std::to_string(world.start) + " " + ToHex(world.buffer) + "\n" + ToHex(world.bytes) + "\n" +
         world.text + "\n" + world.second + "\n" + std::to_string(world.value.Scaled()) + " " +
         std::to_string(world.date.Value()) + " " + std::to_string(world.number) + " " +
         std::to_string(static_cast<int>(world.state));
}

void Prepare(World& world, const ByteArray& buffer) {
  world.buffer = buffer;
  world.start = 0;
  world.bytes = FromHex("AA");
  world.text = "what was there before";
  world.second = "and what was there beside it";
  world.value = -1;
  world.date = Date(2);
  world.number = -1;
  world.state = ZelLifeCycle::Undefined;
}

Step On(std::string_view operation, const ByteArray& buffer, Run run,
        std::vector<std::int32_t> numbers = {}) {
  return {.operation = operation,
          .run = std::move(run),
          .object = Coder,
          .prepare = [=](World& world) { Prepare(world, buffer); },
          .result = ShownResults,
          .kept = ShownStart,
          .numbers = std::move(numbers)};
}

/// A reader of a whole record, of one that is cut off, of another field's, and of one with a wrong value.
Path Reader(std::string_view operation, std::string_view hex, const Run& run) {
  const ByteArray whole = FromHex(hex);
  ByteArray cut = whole;
  cut.RedimPreserve(whole.UBound() - 1);
  ByteArray other = whole;
  other[0] = 1;
  ByteArray damaged = whole;
  damaged[2] = 0xFF;
  return {On(operation, whole, run), On(operation, cut, run), On(operation, other, run),
          On(operation, damaged, run), On(operation, {}, run)};
}

/// A writer with room for its record, and without.
Path Writer(std::string_view operation, const Run& run, const std::vector<std::int32_t>& numbers = {}) {
  return {On(operation, ByteArray::WithBounds(0, 79), run, numbers),
          On(operation, ByteArray::WithBounds(0, 1), run, numbers)};
}

Path MakeCoder() {
  return {Step{.operation = "clsZelBaseCoding",
               .run =
                   [](World& world) {
                     world.coder.emplace();
                     return true;
                   }},
          Step{.operation = "ErrorObject",
               .run = [](World& world) { return !world.coder->ErrorObject().HasError(); }}};
}

Path Readers() {
  const std::string text20 = " 14 41 42 43 44 45 46 47 48 49 4A 41 42 43 44 45 46 47 48 49 4A";
  const std::string bytes48 =
      " 30 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 "
      "19 1A 1B 1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30";
  return test::Joined({
      Reader("GetDataBinary", "C1" + text20,
             [](World& w) { return w.coder->GetDataBinary(w.buffer, w.start, w.bytes); }),
      Reader("GetDataAscii", "C4" + text20,
             [](World& w) { return w.coder->GetDataAscii(w.buffer, w.start, w.text); }),
      Reader("GetDataBcd", "DB 0A 12 34 56 78 90 12 34 56 78 90",
             [](World& w) { return w.coder->GetDataBcd(w.buffer, w.start, w.text); }),
      Reader("GetDataBcdSgnd", "D8 0A 12 34 56 78 90 12 34 56 78 9D",
             [](World& w) { return w.coder->GetDataBcdSgnd(w.buffer, w.start, w.text); }),
      Reader("GetDataBcdSgnd", "D8 01 0D",
             [](World& w) { return w.coder->GetDataBcdSgnd(w.buffer, w.start, w.text); }),
      Reader("GetZelSignature", "9E" + bytes48,
             [](World& w) { return w.coder->GetZelSignature(w.buffer, w.start, w.bytes); }),
      Reader("GetZelLifeCycle", "C0 01 03",
             [](World& w) { return w.coder->GetZelLifeCycle(w.buffer, w.start, w.state); }),
      Reader("GetZelSerialNr", "C1" + text20,
             [](World& w) { return w.coder->GetZelSerialNr(w.buffer, w.start, w.text, &w.second, true); }),
      Reader("GetZelVersion", "C2 0A 31 2E 30 2E 30 2E 31 32 33 34",
             [](World& w) { return w.coder->GetZelVersion(w.buffer, w.start, w.text); }),
      Reader("GetZelTranspPin", "C3 06 31 32 33 34 35 36",
             [](World& w) { return w.coder->GetZelTranspPin(w.buffer, w.start, w.text); }),
      Reader("GetZelTpID", "C4" + text20,
             [](World& w) { return w.coder->GetZelTpID(w.buffer, w.start, w.text); }),
      Reader("GetZelTpIDNr", "C5 01 02",
             [](World& w) { return w.coder->GetZelTpIDNr(w.buffer, w.start, w.value); }),
      Reader("GetZelOperator", "C6 10 41 42 43 44 45 46 47 48 49 4A 41 42 43 44 45 46",
             [](World& w) { return w.coder->GetZelOperator(w.buffer, w.start, w.text); }),
      Reader("GetZelHash", "C7" + text20,
             [](World& w) { return w.coder->GetZelHash(w.buffer, w.start, true, w.text); }),
      Reader("GetZelHash", "D4 15" + text20.substr(3) + " 4B",
             [](World& w) { return w.coder->GetZelHash(w.buffer, w.start, false, w.text); }),
      Reader("GetZelCurrencyCode", "C8 02 03 D2",
             [](World& w) { return w.coder->GetZelCurrencyCode(w.buffer, w.start, w.number); }),
      Reader("GetZelCountryCode", "D5 02 01 14",
             [](World& w) { return w.coder->GetZelCountryCode(w.buffer, w.start, w.number); }),
      Reader(
          "GetZelCounter", "CB 02 01 2C",
          [](World& w) { return w.coder->GetZelCounter(w.buffer, w.start, ZelTags::Seq_Nr_Trans, w.value); }),
      Reader("GetZelCounter", "CC 02 01 2C",
             [](World& w) {
               return w.coder->GetZelCounterSpc01(w.buffer, w.start, ZelRqstCounter::Seq_Nr_Reprt, w.value);
             }),
      Reader(
          "GetZelAmounts", "D8 08 01 23 45 67 89 01 23 4D",
          [](World& w) { return w.coder->GetZelAmounts(w.buffer, w.start, ZelTags::Trnvr, w.value, true); }),
      Reader("GetZelAmounts", "DA 03 12 34 5C",
             [](World& w) {
               return w.coder->GetZelAmountsSpc01(w.buffer, w.start, ZelRqstAmounts::Trnvr_Vat, w.value);
             }),
      Reader("GetZelDates", "CD 04 20 24 03 15",
             [](World& w) { return w.coder->GetZelDates(w.buffer, w.start, ZelTags::tDate, w.date); }),
      Reader("GetZelDates", "CD 04 20 24 02 30",
             [](World& w) { return w.coder->GetZelDates(w.buffer, w.start, ZelTags::tDate, w.date); }),
      Reader("GetZelDates", "D1 03 20 24 02",
             [](World& w) {
               return w.coder->GetZelDatesSpc01(w.buffer, w.start, ZelRqstDates::Month_End, w.date);
             }),
      Reader("GetZelTimes", "CE 02 14 37",
             [](World& w) { return w.coder->GetZelTimes(w.buffer, w.start, ZelTags::tTime, w.date); }),
      Reader("GetZelTimes", "CE 02 24 60",
             [](World& w) { return w.coder->GetZelTimes(w.buffer, w.start, ZelTags::tTime, w.date); }),
      Reader("GetZelValsPos", "DC 06 01 23 45 67 89 01",
             [](World& w) {
               return w.coder->GetZelValsPos(w.buffer, w.start, ZelTags::Trnvr_Counter, w.value);
             }),
      Reader("GetZelVatRate", "DB 02 19 00",
             [](World& w) { return w.coder->GetZelVatRate(w.buffer, w.start, w.value); }),
      Reader("GetZelSignature2", "9E" + bytes48,
             [](World& w) { return w.coder->GetZelSignature2(w.buffer, w.start, w.text, 5, "-", true); }),
  });
}

/// Every writer with a value that it takes, and with one that it refuses.
Path Writers() {
  static const ByteArray hash = FromHex("01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14");
  static const ByteArray cutHash = FromHex("01 02 03");
  static constexpr std::string_view hashText = "AQIDBAUGBwgJCgsMDQ4PEBESExQ=";
  const Date date = Date::FromCivil(2024, 3, 15, 14, 37);
  const Currency tooLarge = Currency::FromScaled(9'223'372'036'854'775'807);
  const auto text = [](std::string_view value) {
    return Writer("SetDataAscii",
                  [=](World& w) { return w.coder->SetDataAscii(w.buffer, w.start, ZelTags::Tp_ID, value); });
  };
  const auto bcd = [](std::string_view value) {
    return Writer("SetDataBcd", [=](World& w) {
      return w.coder->SetDataBcd(w.buffer, w.start, ZelTags::Trnvr_Vat_Rate, value);
    });
  };
  const auto signedBcd = [](std::string_view value) {
    return Writer("SetDataBcdSgnd", [=](World& w) {
      return w.coder->SetDataBcdSgnd(w.buffer, w.start, ZelTags::Trnvr, value);
    });
  };
  const auto pin = [](std::string_view value) {
    return Writer("SetZelTranspPin",
                  [=](World& w) { return w.coder->SetZelTranspPin(w.buffer, w.start, value); });
  };
  const auto cashier = [](std::string_view value) {
    return Writer("SetZelOperator",
                  [=](World& w) { return w.coder->SetZelOperator(w.buffer, w.start, value); });
  };
  const auto hashed = [](std::string_view value) {
    return Writer("SetZelHash2",
                  [=](World& w) { return w.coder->SetZelHash2(w.buffer, w.start, true, value); }, {9000});
  };
  const auto counter = [](Currency value) {
    return Writer("SetZelCounter", [=](World& w) {
      return w.coder->SetZelCounter(w.buffer, w.start, ZelTags::Seq_Nr_Trans, value);
    });
  };
  const auto amount = [](Currency value) {
    return Writer("SetZelAmounts",
                  [=](World& w) { return w.coder->SetZelAmounts(w.buffer, w.start, ZelTags::Trnvr, value); });
  };
  const auto whole = [](Currency value) {
    return Writer("SetZelValsPos", [=](World& w) {
      return w.coder->SetZelValsPos(w.buffer, w.start, ZelTags::Trnvr_Counter, value);
    });
  };
  const auto rate = [](Currency value) {
    return Writer("SetZelVatRate",
                  [=](World& w) { return w.coder->SetZelVatRate(w.buffer, w.start, value); });
  };
  return test::Joined({
      Writer("SetDataBinary",
             [](World& w) { return w.coder->SetDataBinary(w.buffer, w.start, ZelTags::Serial_No, hash); }),
      text("a taxpayer's own number"),
      text("a taxpayer's Straße"),
      text(""),
      Writer("SetDataBool",
             [](World& w) { return w.coder->SetDataBool(w.buffer, w.start, ZelTags::Training, true); }),
      bcd("12345678901234567890"),
      bcd("1234567890x234567890"),
      bcd(""),
      signedBcd("12345678901234567890D"),
      signedBcd("12345678901234567890"),
      signedBcd("1234567890xx34567890C"),
      signedBcd("CC"),
      pin("123456"),
      pin("12345x"),
      pin("123"),
      cashier("Anna Lena Meier"),
      cashier("Anna Lena Meier-Schulze"),
      Writer("SetZelHash", [](World& w) { return w.coder->SetZelHash(w.buffer, w.start, true, hash); }),
      Writer("SetZelHash", [](World& w) { return w.coder->SetZelHash(w.buffer, w.start, true, cutHash); }),
      hashed(hashText),
      hashed("no Base64"),
      Writer("SetZelCurrencyCode",
             [](World& w) { return w.coder->SetZelCurrencyCode(w.buffer, w.start, 978); }),
      counter(300),
      counter(tooLarge),
      amount(Currency::FromScaled(1190000)),
      amount(tooLarge),
      amount(Currency::FromScaled(12'345'678'901'234'500)),
      Writer("SetZelAmounts",
             [](World& w) {
               return w.coder->SetZelAmountsSpc01(w.buffer, w.start, ZelRqstAmounts::Trnvr_neg, 7, true);
             }),
      Writer("SetZelDates",
             [=](World& w) { return w.coder->SetZelDates(w.buffer, w.start, ZelTags::tDate, date); }),
      Writer("SetZelDates",
             [=](World& w) {
               return w.coder->SetZelDatesSpc01(w.buffer, w.start, ZelRqstDates::Month_Start, date);
             }),
      Writer("SetZelTimes",
             [=](World& w) { return w.coder->SetZelTimes(w.buffer, w.start, ZelTags::tTime, date); }),
      whole(1234567),
      whole(tooLarge),
      rate(19),
      rate(100),
  });
}

/// A check that only tests tells its failure in a text and a number.
Step Check(std::string_view hex, std::function<bool(World&, std::string&, ZELErrorCodes&)> run) {
  return {.operation = "DataBaseCheck",
          .run =
              [run](World& world) {
                auto number = ZELErrorCodes::No_Error;
                const bool done = run(world, world.text, number);
                world.number = static_cast<std::int32_t>(number);
                return done;
              },
          .errors =
              [](World& world) {
                world.check.SetError(world.number, world.text, world.number >= 9000);
                return &world.check;
              },
          .prepare = [buffer = FromHex(hex)](World& world) { Prepare(world, buffer); },
          .result = ShownResults,
          .kept = ShownStart};
}

Path Checks() {
  const auto read = [](World& w, std::string& message, ZELErrorCodes& number) {
    return w.coder->DataReadBaseCheck(w.buffer, w.start, message, number, 1, 2, ZelTags::Tp_ID_No);
  };
  const auto write = [](World& w, std::string& message, ZELErrorCodes& number) {
    return w.coder->DataWriteBaseCheck(w.buffer, w.start, 3, message, number);
  };
  return {Check("C5 01 02", read),        Check("C5 03 02 02 02", read), Check("C5 02 02", read),
          Check("C4 01 02", read),        Check("C5 00", read),          Check("", read),
          Check("00 00 00 00 00", write), Check("00 00 00", write),      Check("00", write)};
}

Path Texts() {
  static const ByteArray signature =
      FromHex("01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15");
  static constexpr std::string_view document =
      "<transactionEncoded><itemListEncoded profile=\"die Kasse im Erdgeschoss\">AQIDBAUGBwgJCgsMDQ4PEBES"
      "</itemListEncoded><transactionRequest>AQIDBAUGBwgJCgsMDQ4PEBES</transactionEncoded>";
  const auto element = [](ZelXmlTags tag) {
    return On("GetXmlTag", {},
              [=](World& w) { return w.coder->GetXmlTag(document, tag, w.text, &w.second); });
  };
  return {On("ToStringZelState", {},
             [](World& w) {
               w.text = w.coder->ToStringZelState(ZelLifeCycle::Personalized);
               return !w.text.empty();
             }),
          On("ToStringZelState", {},
             [](World& w) {
               w.text = w.coder->ToStringZelState(static_cast<ZelLifeCycle>(1'234'567));
               return !w.text.empty();
             }),
          On("GetZelSingatureString", {},
             [](World& w) { return w.coder->GetZelSingatureString(signature, w.text, 4, " / "); }),
          On("GetZelSingatureString", {},
             [](World& w) { return w.coder->GetZelSingatureString(signature, w.text, 5, "", true); }),
          element(ZelXmlTags::ItemList),
          element(ZelXmlTags::Transaction),
          element(ZelXmlTags::TransRequest),
          element(ZelXmlTags::TransResponse)};
}

TEST(CoderWithoutMemory, FailsWithItsNumberAndGoesOnAfterwards) {
  test::FailEachAllocation(test::Joined({MakeCoder(), Readers(), Writers(), Checks(), Texts()}));
}

}  // namespace
