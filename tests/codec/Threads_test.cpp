#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/codec/clsSHA256.h"
#include "VnZEL10cmn/errors/clsVnLogFile.h"
#include "VnZEL10cmn/errors/clsVnLogItem.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::clsSHA256;
using VnZEL10cmn::clsVnLogItem;

namespace {

/// One round of everything, with objects of its own; the number of wrong answers.
int WrongAnswers(test::TestLog& log) {
  int wrong = 0;
  const auto expect = [&wrong](bool right) { wrong += right ? 0 : 1; };
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  ByteArray bytes;
  std::string text;
  expect(helper.CreateGUID().size() == 36);
  expect(helper.ZEL_CharReplace("Müller GmbH & Co.", 8) == "m#llergm");
  expect(helper.GetSHA1Hash2("abc", text) && text == "A9993E364706816ABA3E25717850C26C9CD0D89D");
  expect(helper.GetSHA256Hash2("abc", text) &&
         text == "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  expect(clsSHA256().SHA256("") == "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  expect(helper.ToBase64String(ByteArray{1, 2}, text) && text == "AQI=");
  expect(helper.FromBase64String("AQI=", bytes) && test::ToHex(bytes) == "01 02");
  expect(helper.ToBase32String(ByteArray{0x66}, text) && text == "MY======");
  expect(helper.GetBytesOfBinStr("0a-ff", bytes) && test::ToHex(bytes) == "0A FF");
  expect(helper.RoundCmrc2("1.234,565").Scaled() == 12345700);
  expect(!helper.FromBase64String("QQ=#", bytes) && helper.ErrorObject().ErrorNr() == 9106);
  expect(!helper.ErrorObject().GetLogEntry().empty());
  clsVnLogItem message;
  message.SetMessage("Meldung");
  expect(log.Handler()->FileWriteEntry(message));
  return wrong;
}

TEST(Threads, MayUseDifferentObjectsAtTheSameTime) {
  constexpr int threads = 4;
  constexpr int rounds = 50;
  std::vector<std::unique_ptr<test::TestLog>> logs;
  std::atomic<int> wrong = 0;
  for (int i = 0; i < threads; ++i) {
    logs.push_back(std::make_unique<test::TestLog>());
    logs.back()->Handler()->WriteEntries(true);
  }
  std::vector<std::thread> running;
  for (const auto& log : logs) {
    running.emplace_back([&log, &wrong] {
      for (int round = 0; round < rounds; ++round) {
        wrong += WrongAnswers(*log);
      }
    });
  }
  for (std::thread& thread : running) {
    thread.join();
  }
  EXPECT_EQ(wrong, 0);
  for (const auto& log : logs) {
    EXPECT_EQ(log->Count(), 2U * rounds);
  }
}

}  // namespace
