// A log file that is attached through any base class reaches what an object owns.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "VnZEL10cmn/errors/VnObject.h"
#include "tests/hosts/Support.h"

namespace {

using test::ByteArray;
using test::clsVnLogFile;
using test::clsZelItemCash;
using test::clsZelItemList;
using test::clsZelReport;
using test::clsZelTransAct;
using test::clsZelTransActData;
using test::FromHex;
using test::LogNames;
using test::ZELSerialType;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::clsZelBaseCoding;
using VnZEL10cmn::clsZelContainer;
using VnZEL10cmn::VnObject;
using Names = std::vector<std::string>;

/// As a host attaches one log file to whatever it has.
void Attach(VnObject& object, std::shared_ptr<clsVnLogFile> log) { object.LogHandler(std::move(log)); }

std::shared_ptr<clsVnLogFile> AttachedTo(const VnObject& object) { return object.LogHandler(); }

/// What a failing operation leaves in the log that was attached through the base class.
template <class Object, class Operation>
Names NamesAfter(Operation&& operation) {
  test::TestLog log;
  Object object;
  Attach(object, log.Handler());
  EXPECT_EQ(AttachedTo(object), log.Handler());
  EXPECT_EQ(object.LogHandler(), log.Handler());
  operation(object);
  return LogNames(log);
}

TEST(LogAttachedThroughTheBaseClass, ReachesABookingsCoder) {
  EXPECT_EQ(NamesAfter<clsZelTransAct>([](clsZelTransAct& booking) {
              EXPECT_FALSE(test::HandIn(booking, ZELSerialType::Response, "C5 01 02"));
            }),
            (Names{"clsZelBaseCoding GetZelTpID", "clsZelTransAct DecodeResp.[GetZelTpID]"}));
}

TEST(LogAttachedThroughTheBaseClass, ReachesABookingsHelper) {
  EXPECT_EQ(NamesAfter<clsZelTransAct>([](clsZelTransAct& booking) {
              std::string document =
                  "<transactionEncoded><itemListEncoded>oAE</itemListEncoded></transactionEncoded>";
              EXPECT_FALSE(booking.XmlHandler(document, false));
            }),
            (Names{"clsHelper01 FromBase64String", "clsZelTransAct DecodeXML.[FromBase64String]"}));
}

TEST(LogAttachedThroughTheBaseClass, ReachesABookingsListAndItsItems) {
  EXPECT_EQ(NamesAfter<clsZelTransAct>([](clsZelTransAct& booking) {
              EXPECT_FALSE(test::HandIn(booking, ZELSerialType::ItemList, "A0 01 31 C7 00"));
            }),
            (Names{"clsZelItemCash BinaryDataSet", "clsZelItemList BinaryDataSet",
                   "clsZelTransAct DecodeItems.[mObjItemList.BinaryDataSet]"}));
  test::TestLog log;
  clsZelTransAct booking;
  Attach(booking, log.Handler());
  const auto item = test::CashItem("Brot", 2);
  ASSERT_TRUE(booking.AddItem(item));
  EXPECT_EQ(item->LogHandler(), log.Handler());
}

TEST(LogAttachedThroughTheBaseClass, ReachesAReportsCoderHelperAndList) {
  EXPECT_EQ(NamesAfter<clsZelReport>([](clsZelReport& report) {
              EXPECT_FALSE(report.BinaryDataSet(ZELSerialType::Response, FromHex("C4 00"), 0));
              EXPECT_FALSE(report.BinaryDataSet(ZELSerialType::ItemList, FromHex("A0 01 31 C7 00"), 0));
              std::string document = "<reportEncoded><itemListEncoded>oAE</itemListEncoded></reportEncoded>";
              EXPECT_FALSE(report.XmlHandler(document, false));
            }),
            (Names{"clsZelBaseCoding GetZelTpID", "clsZelReport DecodeResp.[GetZelTpID]",
                   "clsZelItemCash BinaryDataSet", "clsZelItemList BinaryDataSet",
                   "clsZelReport DecodeItems.[mObjItemList.BinaryDataSet]", "clsHelper01 FromBase64String",
                   "clsZelReport DecodeXML.[FromBase64String]"}));
}

TEST(LogAttachedThroughTheBaseClass, ReachesADataRecordAsWhenItIsAttachedDirectly) {
  const auto fail = [](clsZelTransActData& record) {
    EXPECT_FALSE(record.BinaryDataSet(ZELSerialType::Response, FromHex("C4 00"), 0));
    std::string document =
        "<transactionEncoded><transactionRequest>oAE</transactionRequest></transactionEncoded>";
    EXPECT_FALSE(record.XmlHandler(document, false));
  };
  test::TestLog log;
  clsZelTransActData record;
  record.LogHandler(log.Handler());
  fail(record);
  const Names names = NamesAfter<clsZelTransActData>(fail);
  EXPECT_EQ(names, LogNames(log));
  ASSERT_GE(names.size(), 3U);
  EXPECT_EQ((Names{names.end() - 3, names.end()}),
            (Names{"clsZelTransActData DecodeResp.[GetZelTpID]", "clsHelper01 FromBase64String",
                   "clsZelTransActData DecodeXML.[FromBase64String]"}));
}

TEST(LogAttachedThroughTheBaseClass, ReachesACodersHelper) {
  EXPECT_EQ(NamesAfter<clsZelBaseCoding>([](clsZelBaseCoding& coder) {
              ByteArray buffer = ByteArray::WithBounds(0, 99);
              std::int32_t start = 0;
              EXPECT_FALSE(coder.SetZelHash2(buffer, start, true, "AA"));
            }),
            (Names{"clsHelper01 FromBase64String", "clsZelBaseCoding SetZelHash2"}));
}

TEST(LogAttachedThroughTheBaseClass, ReachesAListsItems) {
  test::TestLog log;
  clsZelItemList list;
  Attach(list, log.Handler());
  const auto cash = test::CashItem("Brot", 2);
  const auto host = test::Scripted("A");
  ASSERT_TRUE(list.AddItem(cash));
  ASSERT_TRUE(list.AddItem(host));
  EXPECT_EQ(cash->LogHandler(), log.Handler());
  EXPECT_EQ(host->log, log.Handler());
}

TEST(LogAttachedThroughTheBaseClass, ReachesACashItem) {
  EXPECT_EQ(NamesAfter<clsZelItemCash>([](clsZelItemCash& item) { EXPECT_FALSE(item.SetItemData(1, "")); }),
            (Names{"clsZelItemCash SetItemData"}));
}

TEST(LogAttachedThroughTheBaseClass, ReachesEveryOtherClass) {
  EXPECT_EQ(NamesAfter<clsHelper01>([](clsHelper01& helper) {
              ByteArray bytes;
              EXPECT_FALSE(helper.FromBase64String("A", bytes));
            }),
            (Names{"clsHelper01 FromBase64String"}));
  EXPECT_EQ(NamesAfter<clsZelContainer>([](clsZelContainer& container) {
              std::int32_t start = 0;
              EXPECT_FALSE(container.BinaryDataSet(FromHex("E1 01 00"), start));
            }),
            (Names{"clsZelContainer BinaryDataSet"}));
  EXPECT_EQ(NamesAfter<test::clsZelVatList>([](test::clsZelVatList& list) {
              EXPECT_FALSE(list.AddItem(std::make_shared<test::clsZelVatItem>()));
            }),
            (Names{"clsZelVatList AddItem"}));
  EXPECT_EQ(NamesAfter<VnZEL10cmn::clsZelItemPrint>(
                [](VnZEL10cmn::clsZelItemPrint& engine) { EXPECT_EQ(engine.ToStringCI(nullptr), ""); }),
            (Names{"clsZelItemPrint ToStringCI"}));
}

TEST(LogAttachedThroughTheBaseClass, IsTakenAwayThroughItToo) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  Attach(booking, nullptr);
  EXPECT_EQ(booking.LogHandler(), nullptr);
  EXPECT_FALSE(test::HandIn(booking, ZELSerialType::Response, "C5 01 02"));
  EXPECT_FALSE(test::HandIn(booking, ZELSerialType::ItemList, "A0 01 31 C7 00"));
  const auto item = test::CashItem("Brot", 2);
  item->LogHandler(log.Handler());
  ASSERT_TRUE(booking.AddItem(item));
  EXPECT_EQ(item->LogHandler(), nullptr) << "the list has none to hand on";
  EXPECT_EQ(log.Count(), 0U);
}

TEST(LogAttachedThroughAnInterface, IsTheItemsOwn) {
  test::TestLog log;
  const auto item = std::make_shared<clsZelItemCash>();
  VnZEL10cmn::IVnZelItem& seen = *item;
  seen.LogHandler(log.Handler());
  EXPECT_EQ(AttachedTo(*item), log.Handler());
}

}  // namespace
