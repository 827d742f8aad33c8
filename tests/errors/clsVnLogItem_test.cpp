#include "VnZEL10cmn/errors/clsVnLogItem.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/Stamp.h"

using VnZEL10cmn::clsVnLogItem;
using VnZEL10cmn::Date;
using VnZEL10cmn::IVnLogItem;
using VnZEL10cmn::NoTime;

namespace {

TEST(clsVnLogItem, AFreshObjectHasNoEntryAndNoTime) {
  clsVnLogItem item;
  EXPECT_EQ(item.GetLogEntry(), "");
  EXPECT_EQ(item.MessageTime(), NoTime);
  EXPECT_EQ(item.MessageTime(), Date::FromCivil(1900, 1, 1));
  EXPECT_EQ(item.Message(), "");
  EXPECT_EQ(item.Source(), "");
  EXPECT_EQ(item.InstanceID(), "");
}

TEST(clsVnLogItem, TextsAreTrimmedOfOuterBlanksOnly) {
  clsVnLogItem item;
  item.Message("  a b \r\n ");
  item.Source(" source ");
  item.InstanceID("  instance");
  EXPECT_EQ(item.Message(), "a b \r\n");
  EXPECT_EQ(item.Source(), "source");
  EXPECT_EQ(item.InstanceID(), "instance");
}

TEST(clsVnLogItem, AMessageStampsTheTimeAndAnEmptyOneResetsIt) {
  clsVnLogItem item;
  const test::Moment moment;
  item.Message("x");
  EXPECT_TRUE(moment.Matches(item.MessageTime()));
  item.Message("  ");
  EXPECT_EQ(item.MessageTime(), NoTime);
}

TEST(clsVnLogItem, SetMessageTakesEverythingThatIsGiven) {
  clsVnLogItem item;
  const test::Moment moment;
  EXPECT_TRUE(item.SetMessage(" Tagesabschluss ", " Abschluss ", " Kasse.Tag ", " Kasse 1 "));
  EXPECT_EQ(item.Message(), "Tagesabschluss");
  EXPECT_EQ(item.Source(), "Kasse.Tag");
  EXPECT_EQ(item.InstanceID(), "Kasse 1");
  const std::string entry = item.GetLogEntry();
  ASSERT_GT(entry.size(), 19U);
  EXPECT_TRUE(moment.Matches(entry.substr(0, 19))) << entry.substr(0, 19);
  EXPECT_EQ(entry.substr(19),
            "  ->  Allg. Meldung:\r\n"
            "                         --------------\r\n"
            "                         Quelle .............: Kasse.Tag\r\n"
            "                         Funktion ...........: Abschluss\r\n"
            "                         Instanz ............: Kasse 1\r\n"
            "                         Meldung ............: Tagesabschluss\r\n"
            "\r\n"
            "\r\n");
}

TEST(clsVnLogItem, SetMessageWithoutSourceKeepsTheSourceSetBefore) {
  clsVnLogItem item;
  item.Source("Kasse.Tag");
  item.InstanceID("Kasse 1");
  EXPECT_TRUE(item.SetMessage("erste\r\nzweite\ndritte", "Abschluss", "  ", ""));
  EXPECT_EQ(item.Source(), "Kasse.Tag");
  EXPECT_EQ(item.InstanceID(), "Kasse 1");
  EXPECT_EQ(item.GetLogEntry().substr(19),
            "  ->  Allg. Meldung:\r\n"
            "                         --------------\r\n"
            "                         Quelle .............: Kasse.Tag\r\n"
            "                         Funktion ...........: Abschluss\r\n"
            "                         Instanz ............: Kasse 1\r\n"
            "                         Meldung ............: erste\r\n"
            "                                               zweite\r\n"
            "                                               dritte\r\n"
            "\r\n"
            "\r\n");
}

TEST(clsVnLogItem, SetMessageAlwaysTakesTheFunctionName) {
  clsVnLogItem item;
  item.SetMessage("a", "Function");
  item.SetMessage("b");
  EXPECT_NE(item.GetLogEntry().find("Funktion ...........: ./.\r\n"), std::string::npos);
}

TEST(clsVnLogItem, WithoutATextThereIsNoEntry) {
  clsVnLogItem item;
  EXPECT_TRUE(item.SetMessage("   ", "Function", "Source", "Instance"));
  EXPECT_EQ(item.GetLogEntry(), "");
  EXPECT_EQ(item.MessageTime(), NoTime);
}

TEST(clsVnLogItem, ClearMsgKeepsSourceAndInstance) {
  clsVnLogItem item;
  item.SetMessage("a", "Function", "Source", "Instance");
  item.ClearMsg();
  EXPECT_EQ(item.Message(), "");
  EXPECT_EQ(item.MessageTime(), NoTime);
  EXPECT_EQ(item.Source(), "Source");
  EXPECT_EQ(item.InstanceID(), "Instance");
  item.Message("b");
  EXPECT_NE(item.GetLogEntry().find("Funktion ...........: ./.\r\n"), std::string::npos);
}

TEST(clsVnLogItem, ClearEmptiesEverything) {
  clsVnLogItem item;
  item.SetMessage("a", "Function", "Source", "Instance");
  item.Clear();
  EXPECT_EQ(item.Message(), "");
  EXPECT_EQ(item.MessageTime(), NoTime);
  EXPECT_EQ(item.Source(), "");
  EXPECT_EQ(item.InstanceID(), "");
  item.Message("b");
  EXPECT_NE(item.GetLogEntry().find("Funktion ...........: ./.\r\n"), std::string::npos);
}

TEST(clsVnLogItem, GetSourceIsAlwaysTheSameText) {
  clsVnLogItem item;
  EXPECT_EQ(item.GetSource(), "##FEHLER##");
  item.SetMessage("a", "Function", "Source");
  EXPECT_EQ(item.GetSource(), "##FEHLER##");
}

TEST(clsVnLogItem, ALogFileSeesTheSameEntry) {
  clsVnLogItem item;
  IVnLogItem& logItem = item;
  EXPECT_EQ(logItem.GetLogEntry(), "");
  item.SetMessage("a");
  EXPECT_EQ(logItem.GetLogEntry(), item.GetLogEntry());
  EXPECT_NE(logItem.GetLogEntry(), "");
}

}  // namespace
