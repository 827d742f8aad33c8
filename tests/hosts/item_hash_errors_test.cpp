// What is said when the items of a list can't be hashed.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::clsZelItemList;
using test::Entry;
using test::LogEntry;
using test::Scripted;
using test::ZELErrorCodes;

/// A list of two items of which the second writes its records and then fails.
struct FailingList {
  FailingList() {
    second->write = [this](test::ByteArray& data, std::int32_t& start) {
      second->Write(data, start);
      second->error.SetError(4711, "Waage klemmt", true, "Wiegen");
      return false;
    };
    list.LogHandler(log.Handler());
    EXPECT_TRUE(list.AddItem(first));
    EXPECT_TRUE(list.AddItem(second));
  }

  test::TestLog log;
  clsZelItemList list;
  std::shared_ptr<test::ScriptedItem> first = Scripted("FIRST");
  std::shared_ptr<test::ScriptedItem> second = Scripted("SECOND");
};

constexpr std::string_view kMessage =
    "Das Serialisieren von Daten ist fehlgeschlagen.\r\n"
    "    Posten-Index ........: 2 (1-basisiert)\r\n"
    "    Startpos ............: 12\r\n"
    "    Instanz-ID ..........: SECOND";

TEST(ItemHash, OfAFailingItemKeepsTheErrorThatWritingFiled) {
  FailingList failing;
  std::string hash = "unverändert";
  EXPECT_FALSE(failing.list.GetItemHash(true, false, false, hash));
  test::ExpectError(failing.list.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "BinaryDataGet",
                    kMessage);
  EXPECT_EQ(hash, "unverändert");
  EXPECT_EQ(failing.second->error.ErrorNr(), 4711) << "the item's own error stays in its error object";
}

TEST(ItemHash, OfAFailingItemIsTheSameErrorInEveryForm) {
  FailingList failing;
  for (int form = 0; form < 8; ++form) {
    std::string hash;
    EXPECT_FALSE(failing.list.GetItemHash((form & 1) != 0, (form & 2) != 0, (form & 4) != 0, hash, "-"));
    test::ExpectError(failing.list.ErrorObject(), ZELErrorCodes::Err_Ser_Failed, true, "BinaryDataGet",
                      kMessage);
  }
}

TEST(ItemHash, OfAFailingItemIsLoggedOnceUnderTheNameOfWriting) {
  FailingList failing;
  std::string hash;
  EXPECT_FALSE(failing.list.GetItemHash(false, false, false, hash));
  EXPECT_EQ(test::LogEntries(failing.log),
            (std::vector<LogEntry>{Entry("clsZelItemList", "BinaryDataGet", 9301, kMessage)}));
}

TEST(ItemHash, ThatSucceedsAfterwardsClearsTheError) {
  FailingList failing;
  std::string hash;
  EXPECT_FALSE(failing.list.GetItemHash(false, false, false, hash));
  failing.second->write = nullptr;
  EXPECT_TRUE(failing.list.GetItemHash(false, false, false, hash));
  test::ExpectNoError(failing.list);
  EXPECT_EQ(hash, test::Sha1Text("A0 01 31 A2 01 78 A0 01 31 A2 01 78"));
}

}  // namespace
