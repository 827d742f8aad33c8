#include "VnZEL10cmn/errors/clsVnError.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <locale>
#include <string>
#include <string_view>

#include "tests/support/Regional.h"
#include "tests/support/Stamp.h"

using VnZEL10cmn::clsVnError;
using VnZEL10cmn::Date;
using VnZEL10cmn::IVnLogItem;
using VnZEL10cmn::NoTime;

namespace {

const std::string blanks25(25, ' ');
const std::string blanks47(47, ' ');

/// What follows the time stamp ("dd.mm.yyyy hh:mm:ss") of an entry.
std::string AfterStamp(const std::string& entry) { return entry.size() < 19 ? entry : entry.substr(19); }

TEST(clsVnError, AFreshObjectHoldsNoError) {
  clsVnError error;
  EXPECT_FALSE(error.HasError());
  EXPECT_EQ(error.ErrorNr(), 0);
  EXPECT_EQ(error.ErrorMsg(), "");
  EXPECT_EQ(error.ErrorSource(), "");
  EXPECT_EQ(error.ErrorFunction(), "");
  EXPECT_EQ(error.ErrorInstanceID(), "");
  EXPECT_FALSE(error.IsUserDef());
  EXPECT_EQ(error.ErrorTime(), NoTime);
  EXPECT_EQ(error.ErrorTime(), Date::FromCivil(1900, 1, 1));
  EXPECT_EQ(error.GetLogEntry(), "");
}

TEST(clsVnError, ALibraryObjectsErrorHoldsSourceAndInstance) {
  const clsVnError error("VnZEL10cmn.clsSomething", "00000000-0000-0000-0000-00000000000A");
  EXPECT_EQ(error.ErrorSource(), "VnZEL10cmn.clsSomething");
  EXPECT_EQ(error.ErrorInstanceID(), "00000000-0000-0000-0000-00000000000A");
  EXPECT_FALSE(error.HasError());
  EXPECT_EQ(error.ErrorTime(), NoTime);
}

TEST(clsVnError, TextsAreTrimmedOfOuterBlanks) {
  clsVnError error;
  error.ErrorMsg("  a  b  ");
  error.ErrorSource("  source ");
  error.ErrorFunction("   function  ");
  error.ErrorInstanceID(" instance ");
  EXPECT_EQ(error.ErrorMsg(), "a  b");
  EXPECT_EQ(error.ErrorSource(), "source");
  EXPECT_EQ(error.ErrorFunction(), "function");
  EXPECT_EQ(error.ErrorInstanceID(), "instance");
}

TEST(clsVnError, OnlyBlanksAreTrimmed) {
  clsVnError error;
  error.ErrorMsg(" \ta\r\n ");
  EXPECT_EQ(error.ErrorMsg(), "\ta\r\n");
  error.ErrorMsg("\u00A0x\u00A0");
  EXPECT_EQ(error.ErrorMsg(), "\u00A0x\u00A0");
  error.ErrorMsg("    ");
  EXPECT_EQ(error.ErrorMsg(), "");
}

TEST(clsVnError, ANumberStampsTheTimeAndZeroResetsIt) {
  clsVnError error;
  const test::Moment moment;
  error.ErrorNr(5);
  EXPECT_TRUE(moment.Matches(error.ErrorTime()));
  error.ErrorNr(0);
  EXPECT_EQ(error.ErrorTime(), NoTime);
  error.ErrorNr(-1);
  EXPECT_TRUE(moment.Matches(error.ErrorTime()));
}

TEST(clsVnError, AMessageStampsTheTimeAndAnEmptyOneResetsIt) {
  clsVnError error;
  const test::Moment moment;
  error.ErrorMsg("x");
  EXPECT_TRUE(moment.Matches(error.ErrorTime()));
  error.ErrorMsg("   ");
  EXPECT_EQ(error.ErrorTime(), NoTime);
}

TEST(clsVnError, AnEmptyMessageResetsTheTimeOfANumber) {
  clsVnError error;
  EXPECT_TRUE(error.SetError(9204, ""));
  EXPECT_EQ(error.ErrorTime(), NoTime);
  EXPECT_EQ(error.ErrorNr(), 9204);
  EXPECT_TRUE(error.HasError());
}

TEST(clsVnError, AMessageOrANumberMakesAnError) {
  clsVnError error;
  error.ErrorMsg("x");
  EXPECT_TRUE(error.HasError());
  error.ErrorMsg("");
  EXPECT_FALSE(error.HasError());
  error.ErrorNr(-1);
  EXPECT_TRUE(error.HasError());
  error.ErrorNr(0);
  EXPECT_FALSE(error.HasError());
}

TEST(clsVnError, NumberZeroLeavesAMessageAnError) {
  clsVnError error;
  error.SetError(9204, "x");
  error.ErrorNr(0);
  EXPECT_TRUE(error.HasError());
  EXPECT_EQ(error.ErrorMsg(), "x");
  EXPECT_EQ(error.ErrorTime(), NoTime);
}

TEST(clsVnError, SetErrorTrimsTheMessageAndKeepsSourceAndInstance) {
  clsVnError error("VnZEL10cmn.clsHelper01", "ID");
  error.ErrorFunction("Before");
  error.IsUserDef(true);
  const test::Moment moment;
  EXPECT_TRUE(error.SetError(9204, "  x  "));
  EXPECT_EQ(error.ErrorNr(), 9204);
  EXPECT_EQ(error.ErrorMsg(), "x");
  EXPECT_EQ(error.ErrorSource(), "VnZEL10cmn.clsHelper01");
  EXPECT_EQ(error.ErrorInstanceID(), "ID");
  EXPECT_EQ(error.ErrorFunction(), "");
  EXPECT_FALSE(error.IsUserDef());
  EXPECT_TRUE(moment.Matches(error.ErrorTime()));
}

TEST(clsVnError, SetErrorTakesEverythingThatIsGiven) {
  clsVnError error("old source", "old instance");
  EXPECT_TRUE(error.SetError(9301, "text", true, " Fct ", " Src ", " Inst "));
  EXPECT_TRUE(error.IsUserDef());
  EXPECT_EQ(error.ErrorFunction(), "Fct");
  EXPECT_EQ(error.ErrorSource(), "Src");
  EXPECT_EQ(error.ErrorInstanceID(), "Inst");
}

TEST(clsVnError, SetErrorKeepsSourceAndInstanceForBlanks) {
  clsVnError error("source", "instance");
  EXPECT_TRUE(error.SetError(1, "text", true, "", "   ", "  "));
  EXPECT_EQ(error.ErrorSource(), "source");
  EXPECT_EQ(error.ErrorInstanceID(), "instance");
}

TEST(clsVnError, SetErrorTakesItsOwnMessage) {
  clsVnError error;
  error.SetError(1, "a message that is long enough to live on the heap", true, "Function");
  EXPECT_TRUE(error.SetError(2, error.ErrorMsg(), true, error.ErrorFunction()));
  EXPECT_EQ(error.ErrorMsg(), "a message that is long enough to live on the heap");
  EXPECT_EQ(error.ErrorFunction(), "Function");
}

TEST(clsVnError, ClearErrKeepsWhatIdentifiesTheOwner) {
  clsVnError error;
  error.SetError(9204, "x", true, "Fct", "Src", "Inst");
  error.ClearErr();
  EXPECT_FALSE(error.HasError());
  EXPECT_EQ(error.ErrorNr(), 0);
  EXPECT_EQ(error.ErrorMsg(), "");
  EXPECT_EQ(error.ErrorFunction(), "");
  EXPECT_EQ(error.ErrorTime(), NoTime);
  EXPECT_EQ(error.ErrorSource(), "Src");
  EXPECT_EQ(error.ErrorInstanceID(), "Inst");
  EXPECT_TRUE(error.IsUserDef());
}

TEST(clsVnError, ClearEmptiesEverything) {
  clsVnError error;
  error.SetError(9204, "x", true, "Fct", "Src", "Inst");
  error.Clear();
  EXPECT_FALSE(error.HasError());
  EXPECT_EQ(error.ErrorNr(), 0);
  EXPECT_EQ(error.ErrorMsg(), "");
  EXPECT_EQ(error.ErrorFunction(), "");
  EXPECT_EQ(error.ErrorSource(), "");
  EXPECT_EQ(error.ErrorInstanceID(), "");
  EXPECT_FALSE(error.IsUserDef());
  EXPECT_EQ(error.ErrorTime(), NoTime);
}

TEST(clsVnError, GetSourceIsAlwaysTheSameText) {
  clsVnError error;
  EXPECT_EQ(error.GetSource(), "##FEHLER##");
  error.ErrorSource("Source");
  EXPECT_EQ(error.GetSource(), "##FEHLER##");
  error.ErrorFunction("Function");
  EXPECT_EQ(error.GetSource(), "##FEHLER##");
  error.ErrorSource("Source.");
  EXPECT_EQ(error.GetSource(), "##FEHLER##");
  error.ErrorSource("");
  EXPECT_EQ(error.GetSource(), "##FEHLER##");
}

TEST(clsVnError, TheLogEntryHoldsEveryField) {
  clsVnError error;
  const test::Moment moment;
  error.SetError(9204, "Der Puffer ist zu klein!", true, "SetDataBinary", "VnZEL10cmn.clsZelBaseCoding",
                 "0F0E0D0C-0B0A-0908-0706-050403020100");
  const std::string entry = error.GetLogEntry();
  ASSERT_GT(entry.size(), 19U);
  EXPECT_TRUE(moment.Matches(entry.substr(0, 19))) << entry.substr(0, 19);
  EXPECT_EQ(AfterStamp(entry),
            "  ->  FEHLER:\r\n"
            "                         -------\r\n"
            "                         Nummer .............: 9204 - Hex: 0000 23F4\r\n"
            "                         Benutzerdef. .......: Ja\r\n"
            "                         Quelle .............: VnZEL10cmn.clsZelBaseCoding\r\n"
            "                         Funktion ...........: SetDataBinary\r\n"
            "                         Instanz ............: 0F0E0D0C-0B0A-0908-0706-050403020100\r\n"
            "                         Meldung ............: Der Puffer ist zu klein!\r\n"
            "\r\n"
            "\r\n");
}

TEST(clsVnError, TheLogEntryOfBareErrorsHasItsPlaceholders) {
  clsVnError error;
  error.SetError(1, "");
  EXPECT_EQ(error.GetLogEntry(),
            "01.01.1900 00:00:00  ->  FEHLER:\r\n"
            "                         -------\r\n"
            "                         Nummer .............: 1 - Hex: 0000 0001\r\n"
            "                         Benutzerdef. .......: Nein\r\n"
            "                         Quelle .............: \r\n"
            "                         Funktion ...........: ./.\r\n"
            "                         Instanz ............: \r\n"
            "                         Meldung ............: \r\n"
            "\r\n"
            "\r\n");
}

TEST(clsVnError, TheSecondLineOfAMessageStandsUnderTheFirst) {
  clsVnError error;
  error.ErrorMsg("erste\r\nzweite");
  error.ErrorNr(0);
  EXPECT_EQ(error.GetLogEntry(),
            "01.01.1900 00:00:00  ->  FEHLER:\r\n" + blanks25 + "-------\r\n" + blanks25 +
                "Nummer .............: 0 - Hex: 0000 0000\r\n" + blanks25 + "Benutzerdef. .......: Nein\r\n" +
                blanks25 + "Quelle .............: \r\n" + blanks25 + "Funktion ...........: ./.\r\n" +
                blanks25 + "Instanz ............: \r\n" + blanks25 + "Meldung ............: erste\r\n" +
                blanks47 +
                "zweite\r\n"
                "\r\n"
                "\r\n");
}

TEST(clsVnError, AMessageIsSplitAtEveryKindOfLineEnd) {
  clsVnError error;
  const auto lines = [&error](std::string_view message) {
    error.ErrorMsg(message);
    const std::string entry = error.GetLogEntry();
    const std::string label = blanks25 + "Meldung ............: ";
    return entry.substr(entry.find(label) + label.size());
  };
  EXPECT_EQ(lines("a\rb\nc"), "a\r\n" + blanks47 + "b\r\n" + blanks47 + "c\r\n\r\n\r\n");
  EXPECT_EQ(lines("a\r\n"), "a\r\n" + blanks47 + "\r\n\r\n\r\n");
  EXPECT_EQ(lines("a\r\n\r\n    Tag .............: 0xC5"),
            "a\r\n" + blanks47 + "\r\n" + blanks47 + "    Tag .............: 0xC5\r\n\r\n\r\n");
  EXPECT_EQ(lines(std::string_view("a\0b\0", 4)), "a\r\n" + blanks47 + "b\r\n\r\n\r\n");
}

TEST(clsVnError, TheNumberIsShownInTwoHexadecimalGroups) {
  clsVnError error;
  const auto line = [&error](std::int32_t number) {
    error.ErrorNr(number);
    const std::string entry = error.GetLogEntry();
    const std::string label = "Nummer .............: ";
    const std::size_t start = entry.find(label) + label.size();
    return entry.substr(start, entry.find("\r\n", start) - start);
  };
  EXPECT_EQ(line(-1), "-1 - Hex: FFFF FFFF");
  EXPECT_EQ(line(10001), "10001 - Hex: 0000 2711");
  EXPECT_EQ(line(305419896), "305419896 - Hex: 1234 5678");
  EXPECT_EQ(line(std::numeric_limits<std::int32_t>::max()), "2147483647 - Hex: 7FFF FFFF");
  EXPECT_EQ(line(std::numeric_limits<std::int32_t>::min()), "-2147483648 - Hex: 8000 0000");
}

TEST(clsVnError, TheLogEntryLeavesTheErrorAlone) {
  clsVnError error;
  error.SetError(9204, "a\r\nb", true, "Fct", "Src", "Inst");
  const Date time = error.ErrorTime();
  EXPECT_EQ(error.GetLogEntry(), error.GetLogEntry());
  EXPECT_EQ(error.ErrorNr(), 9204);
  EXPECT_EQ(error.ErrorMsg(), "a\r\nb");
  EXPECT_EQ(error.ErrorFunction(), "Fct");
  EXPECT_EQ(error.ErrorTime(), time);
}

TEST(clsVnError, ALogFileSeesTheSameEntry) {
  clsVnError error;
  IVnLogItem& item = error;
  EXPECT_EQ(item.GetLogEntry(), "");
  error.SetError(7, "x");
  EXPECT_EQ(item.GetLogEntry(), error.GetLogEntry());
  EXPECT_NE(item.GetLogEntry(), "");
}

TEST(clsVnError, TheTimeStampHasTheHostsSeparators) {
  clsVnError error;
  error.SetError(1, "");
  {
    const test::GlobalLocale host(std::locale(std::locale::classic(), new test::DateCharacters('-', ';')));
    EXPECT_EQ(error.GetLogEntry().substr(0, 32), "01-01-1900 00;00;00  ->  FEHLER:");
  }
  EXPECT_EQ(error.GetLogEntry().substr(0, 32), "01.01.1900 00:00:00  ->  FEHLER:");
}

// The classic date is written 12/31/26, its time 08:05:00; a host that set its own number characters only has
// asked for these.
TEST(clsVnError, AHostWithALocaleOfItsOwnGetsItsDates) {
  clsVnError error;
  error.SetError(1, "");
  const test::GlobalLocale host(std::locale(std::locale::classic(), new test::NumberCharacters('.', ',')));
  EXPECT_EQ(error.GetLogEntry().substr(0, 32), "01/01/1900 00:00:00  ->  FEHLER:");
}

TEST(clsVnError, NumbersInEntriesAreNotGroupedByTheHostsLocale) {
  clsVnError error;
  error.SetError(12345678, "");
  const test::GlobalLocale host(std::locale(std::locale::classic(), new test::NumberCharacters('.', ',')));
  EXPECT_NE(error.GetLogEntry().find("Nummer .............: 12345678 - Hex: 00BC 614E\r\n"),
            std::string::npos);
}

}  // namespace
