// The helper while memory runs out: texts, codecs, hashes, rounding, also where it refuses.

#include <optional>
#include <vector>

#include "Path.h"
#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/codec/clsSHA256.h"
#include "tests/support/Hex.h"

namespace {

using test::FromHex;
using test::ToHex;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::clsSHA256;
using VnZEL10cmn::Currency;
using VnZEL10cmn::VnObject;

struct World {
  std::optional<clsHelper01> helper;
  ByteArray bytes;
  std::string text;
  std::vector<std::string> lines;
  Currency value;
};

using Step = test::Step<World>;
using Path = test::Path<World>;
using Run = std::function<bool(World&)>;

std::string ShownResults(World& world) {
  std::string text = ToHex(world.bytes) + "\n" + world.text + "\n" + std::to_string(world.value.Scaled());
  for (const std::string& line : world.lines) {
    text += "\n" + line;
  }
  return text;
}

void Prepare(World& world) {
  world.bytes = FromHex("AA BB");
  world.text = "what was there before";
  world.lines = {"what was there before"};
  world.value = 1;
}

/// A call that leaves the reason of a failure in the error object, and its results as they were.
Step Tells(std::string_view operation, Run run) {
  return {.operation = operation,
          .run = std::move(run),
          .object = [](World& world) -> VnObject* { return &*world.helper; },
          .prepare = Prepare,
          .result = ShownResults,
          .kept = ShownResults};
}

/// The same when it leaves in them what it came to.
Step TellsAndLeaves(std::string_view operation, Run run) {
  Step step = Tells(operation, std::move(run));
  step.kept = nullptr;
  return step;
}

/// A call that leaves the reason of a failure in the error object, and gives 0.
Step Gives(std::string_view operation, std::function<Currency(World&)> run) {
  return TellsAndLeaves(operation, [run = std::move(run)](World& world) {
    world.value = run(world);
    return !world.helper->HasError();
  });
}

/// A call that just returns its value.
Step Raises(std::string_view operation, std::function<void(World&)> run) {
  return {.operation = operation,
          .run =
              [run = std::move(run)](World& world) {
                run(world);
                return true;
              },
          .prepare = Prepare,
          .result = ShownResults,
          .kept = ShownResults};
}

const ByteArray kData = FromHex("00 10 83 10 51 87 20 92 8B 30 D3 8F 41 14 93 51 55 97 61 96 9B 71 D7 9F 82");
const ByteArray kNegative = test::FromHexAt(-1, "00 01 02");
constexpr std::string_view kText = "Zwei Stück Frühstücksgebäck für 3,50 € – „geröstet“";

Path WholePath() {
  return {
      Raises("clsHelper01", [](World& w) { w.helper.emplace(); }),
      Raises("CreateGUID", [](World& w) { w.text = w.helper->CreateGUID(); }),
      Raises("ZEL_CharReplace", [](World& w) { w.text = w.helper->ZEL_CharReplace(kText, 99); }),
      Raises("LongToBytes", [](World& w) { w.bytes = w.helper->LongToBytes(0x123456, true); }),
      Raises("BytesToPString", [](World& w) { w.text = w.helper->BytesToPString(kData, 0, -1, true); }),
      Raises("SHA256", [](World& w) { w.text = clsSHA256().SHA256(kText); }),
      Tells("GetLinesOfString",
            [](World& w) {
              return w.helper->GetLinesOfString("a line of some length\r\nand another line of some length",
                                                w.lines);
            }),
      Gives("RoundCmrc",
            [](World& w) { return w.helper->RoundCmrc(Currency::FromScaled(9'000'000'000'000'000'000), 3); }),
      Gives("RoundCmrc2", [](World& w) { return w.helper->RoundCmrc2("a word that is no number at all"); }),
      Gives("RoundCmrc2", [](World& w) { return w.helper->RoundCmrc2("  1.234.567,8949999999999999999"); }),
      Tells("ToBase64String", [](World& w) { return w.helper->ToBase64String(kData, w.text); }),
      Tells("ToBase64String",
            [](World& w) { return w.helper->ToBase64String(kData, w.text, 1, 20, 12, "ä", "€"); }),
      Tells("ToBase64String",
            [](World& w) { return w.helper->ToBase64String(kData, w.text, 1, 20, 12, "€", "€"); }),
      Tells("ToBase64String", [](World& w) { return w.helper->ToBase64String(kData, w.text, 99); }),
      Tells("ToBase64String", [](World& w) { return w.helper->ToBase64String(kNegative, w.text); }),
      Tells("FromBase64String",
            [](World& w) { return w.helper->FromBase64String("AQIDBAUGBwgJCgsMDQ4PEBES", w.bytes); }),
      Tells("FromBase64String",
            [](World& w) { return w.helper->FromBase64String("AQIDBAUGBwgJ\r\nCgsMDQ4PEBES", w.bytes); }),
      Tells(
          "FromBase64String",
          [](World& w) { return w.helper->FromBase64String("AQIDBAUGBwgJCgsMDQ4Pää€€", w.bytes, "ä", "€"); }),
      Tells("FromBase64String", [](World& w) { return w.helper->FromBase64String("AQI", w.bytes); }),
      Tells("FromBase64String", [](World& w) { return w.helper->FromBase64String("", w.bytes); }),
      TellsAndLeaves(
          "FromBase64String",
          [](World& w) { return w.helper->FromBase64String("AQIDBAUGBwgJCgsMDQ4P.BES", w.bytes); }),
      Tells("ToBase32String", [](World& w) { return w.helper->ToBase32String(kData, w.text); }),
      Tells("ToBase32String",
            [](World& w) { return w.helper->ToBase32String(kData, w.text, 1, 20, 16, true); }),
      Tells("ToBase32String", [](World& w) { return w.helper->ToBase32String(kData, w.text, 99); }),
      Tells("GetBytesOfBinStr",
            [](World& w) { return w.helper->GetBytesOfBinStr("01-02-03-04 05 06 07 08 09 aA", w.bytes); }),
      Tells("GetBytesOfBinStr", [](World& w) { return w.helper->GetBytesOfBinStr("", w.bytes); }),
      Tells("GetBytesOfBinStr", [](World& w) { return w.helper->GetBytesOfBinStr("012", w.bytes); }),
      TellsAndLeaves("GetBytesOfBinStr",
                     [](World& w) { return w.helper->GetBytesOfBinStr("01020304050607080910x1ü", w.bytes); }),
      Tells("GetBinStrOfBytes", [](World& w) { return w.helper->GetBinStrOfBytes(kData, w.text, " "); }),
      Tells("GetBinStrOfBytes", [](World& w) { return w.helper->GetBinStrOfBytes(kData, w.text, "€", 8); }),
      Tells("GetBinStrOfBytes", [](World& w) { return w.helper->GetBinStrOfBytes(kNegative, w.text); }),
      Tells("GetSHA1Hash", [](World& w) { return w.helper->GetSHA1Hash(kText, w.bytes); }),
      Tells("GetSHA1Hash1", [](World& w) { return w.helper->GetSHA1Hash1(kData, w.bytes); }),
      Tells("GetSHA1Hash1", [](World& w) { return w.helper->GetSHA1Hash1(kNegative, w.bytes); }),
      Tells("GetSHA1Hash2", [](World& w) { return w.helper->GetSHA1Hash2(kText, w.text); }),
      Tells("GetSHA256Hash", [](World& w) { return w.helper->GetSHA256Hash(kText, w.bytes); }),
      Tells("GetSHA256Hash1", [](World& w) { return w.helper->GetSHA256Hash1(kData, w.bytes); }),
      Tells("GetSHA256Hash1", [](World& w) { return w.helper->GetSHA256Hash1(kNegative, w.bytes); }),
      Tells("GetSHA256Hash2", [](World& w) { return w.helper->GetSHA256Hash2(kText, w.text); }),
  };
}

TEST(HelperWithoutMemory, FailsWithItsNumberAndGoesOnAfterwards) { test::FailEachAllocation(WholePath()); }

}  // namespace
