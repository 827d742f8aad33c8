#include "VnZEL10cmn/errors/VnObject.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"
#include "tests/support/Stamp.h"

using test::ExpectError;
using test::ExpectNoError;
using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsVnLogFile;
using VnZEL10cmn::ZELErrorCodes;

namespace {

bool IsGuid(std::string_view text) {
  if (text.size() != 36) {
    return false;
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
    const std::string_view allowed = dash ? "-" : "0123456789ABCDEF";
    if (allowed.find(text[i]) == std::string_view::npos) {
      return false;
    }
  }
  return true;
}

/// Any operation that fails: the helper's decoding of a text of the wrong length.
bool FailingCall(clsHelper01& helper) {
  ByteArray result;
  return helper.FromBase64String("QQ", result);
}

constexpr std::string_view failureText = "Die Länge der Base64-Zeichenfolge ist ungültig!";

TEST(VnObject, StampsItsErrorObjectWithSourceAndInstance) {
  clsHelper01 helper;
  EXPECT_EQ(helper.ErrorObject().ErrorSource(), "VnZEL10cmn.clsHelper01");
  EXPECT_TRUE(IsGuid(helper.ErrorObject().ErrorInstanceID())) << helper.ErrorObject().ErrorInstanceID();
  EXPECT_FALSE(helper.HasError());
  EXPECT_EQ(helper.ErrorObject().ErrorTime(), VnZEL10cmn::NoTime);
}

TEST(VnObject, SourceAndInstanceStayForLife) {
  clsHelper01 helper;
  clsVnError& error = helper.ErrorObject();
  const std::string instance = error.ErrorInstanceID();
  EXPECT_FALSE(FailingCall(helper));
  EXPECT_EQ(&helper.ErrorObject(), &error);
  EXPECT_EQ(error.ErrorInstanceID(), instance);
  EXPECT_EQ(error.ErrorSource(), "VnZEL10cmn.clsHelper01");
  ByteArray result;
  EXPECT_TRUE(helper.FromBase64String("QQ==", result));
  EXPECT_EQ(&helper.ErrorObject(), &error);
  EXPECT_EQ(error.ErrorInstanceID(), instance);
  EXPECT_EQ(error.ErrorSource(), "VnZEL10cmn.clsHelper01");
}

TEST(VnObject, TheErrorObjectIsTheSameWhetherSeenBeforeOrAfterAFailure) {
  clsHelper01 helper;
  EXPECT_FALSE(FailingCall(helper));
  ExpectError(helper.ErrorObject(), ZELErrorCodes::Err_Hlp_CnvLength, true, "FromBase64String", failureText);
  EXPECT_EQ(helper.ErrorObject().ErrorSource(), "VnZEL10cmn.clsHelper01");
  EXPECT_TRUE(IsGuid(helper.ErrorObject().ErrorInstanceID()));
}

TEST(VnObject, EveryObjectHasAnInstanceOfItsOwn) {
  clsHelper01 first;
  clsHelper01 second;
  EXPECT_NE(first.ErrorObject().ErrorInstanceID(), second.ErrorObject().ErrorInstanceID());
  EXPECT_FALSE(FailingCall(first));
  EXPECT_TRUE(first.HasError());
  EXPECT_FALSE(second.HasError());
}

TEST(VnObject, AFailureStampsTheTime) {
  clsHelper01 helper;
  const test::Moment moment;
  EXPECT_FALSE(FailingCall(helper));
  EXPECT_TRUE(moment.Matches(helper.ErrorObject().ErrorTime()));
}

TEST(VnObject, TheNextOperationClearsTheErrorButNotTheMark) {
  clsHelper01 helper;
  EXPECT_FALSE(FailingCall(helper));
  ByteArray result;
  EXPECT_TRUE(helper.FromBase64String("QQ==", result));
  ExpectNoError(helper);
  EXPECT_EQ(helper.ErrorObject().ErrorTime(), VnZEL10cmn::NoTime);
  EXPECT_TRUE(helper.ErrorObject().IsUserDef());
}

TEST(VnObject, AskingForAnErrorLeavesIt) {
  clsHelper01 helper;
  EXPECT_FALSE(FailingCall(helper));
  EXPECT_TRUE(helper.HasError());
  EXPECT_TRUE(helper.HasError());
  EXPECT_EQ(helper.ErrorObject().ErrorNr(), 9104);
  helper.LogHandler(nullptr);
  EXPECT_EQ(helper.LogHandler(), nullptr);
  EXPECT_TRUE(helper.HasError());
}

TEST(VnObject, HasErrorFollowsTheErrorObject) {
  clsHelper01 helper;
  helper.ErrorObject().SetError(0, "only a text");
  EXPECT_TRUE(helper.HasError());
  helper.ErrorObject().ClearErr();
  EXPECT_FALSE(helper.HasError());
}

TEST(VnObject, HasNoLogHandlerAtFirst) {
  clsHelper01 helper;
  EXPECT_EQ(helper.LogHandler(), nullptr);
  const auto log = std::make_shared<clsVnLogFile>();
  helper.LogHandler(log);
  EXPECT_EQ(helper.LogHandler(), log);
  helper.LogHandler(nullptr);
  EXPECT_EQ(helper.LogHandler(), nullptr);
}

TEST(VnObject, WritesItsFailuresToTheLogFile) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  EXPECT_FALSE(FailingCall(helper));
  const std::string instance = helper.ErrorObject().ErrorInstanceID();
  ASSERT_GT(log.Text().size(), 19U);
  EXPECT_EQ(log.Text().substr(19),
            "  ->  FEHLER:\r\n"
            "                         -------\r\n"
            "                         Nummer .............: 9104 - Hex: 0000 2390\r\n"
            "                         Benutzerdef. .......: Ja\r\n"
            "                         Quelle .............: VnZEL10cmn.clsHelper01\r\n"
            "                         Funktion ...........: FromBase64String\r\n"
            "                         Instanz ............: " +
                instance +
                "\r\n"
                "                         Meldung ............: Die L\xE4nge der Base64-Zeichenfolge ist "
                "ung\xFCltig!\r\n"
                "\r\n"
                "\r\n"
                "\r\n");
}

TEST(VnObject, WritesNothingForASuccess) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  ByteArray result;
  EXPECT_TRUE(helper.FromBase64String("QQ==", result));
  EXPECT_EQ(log.Text(), "");
}

TEST(VnObject, ObjectsShareALogFileInTheOrderOfTheCalls) {
  const test::TestLog log;
  clsHelper01 first;
  clsHelper01 second;
  first.LogHandler(log.Handler());
  second.LogHandler(log.Handler());
  std::string text;
  ByteArray bytes;
  EXPECT_FALSE(first.ToBase64String(ByteArray{1}, text, 1));
  EXPECT_FALSE(second.GetBytesOfBinStr("0", bytes));
  EXPECT_FALSE(first.FromBase64String("", bytes));
  EXPECT_EQ(log.Functions(),
            (std::vector<std::string>{"ToBase64String", "GetBytesOfBinStr", "FromBase64String"}));
  EXPECT_EQ(log.Numbers(), (std::vector<std::string>{"9103", "9104", "9105"}));
}

TEST(VnObject, TheLogFilesSwitchDecidesWhetherFailuresAreWritten) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  log.Handler()->WriteErrors(false);
  EXPECT_FALSE(FailingCall(helper));
  EXPECT_TRUE(helper.HasError());
  EXPECT_EQ(log.Count(), 0U);
  log.Handler()->WriteErrors(true);
  EXPECT_FALSE(FailingCall(helper));
  EXPECT_EQ(log.Count(), 1U);
  helper.LogHandler(nullptr);
  EXPECT_FALSE(FailingCall(helper));
  EXPECT_EQ(log.Count(), 1U);
}

TEST(VnObject, KeepsTheLogFileAlive) {
  const test::TempDir dir;
  clsHelper01 helper;
  {
    auto log = std::make_shared<clsVnLogFile>();
    ASSERT_TRUE(log->FileOpen(dir.File("a.log")));
    helper.LogHandler(std::move(log));
  }
  EXPECT_FALSE(FailingCall(helper));
  EXPECT_NE(test::ReadFile(dir.File("a.log")).find("FromBase64String"), std::string::npos);
}

TEST(VnObject, FaultsThatWereNotForeseenAreFiledAndLogged) {
  const test::TestLog log;
  clsHelper01 helper;
  helper.LogHandler(log.Handler());
  std::string text = "before";
  EXPECT_FALSE(helper.ToBase64String(test::FromHexAt(5, "01 02"), text));
  test::ExpectFault(helper.ErrorObject(), 9, "ToBase64String");
  EXPECT_EQ(text, "before");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"ToBase64String"});
  EXPECT_EQ(log.Numbers(), std::vector<std::string>{"9"});
}

}  // namespace
