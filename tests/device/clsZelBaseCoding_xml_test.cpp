// The elements of XML documents.

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "tests/device/DeviceTesting.h"

namespace VnZEL10cmn {
namespace {

using test::ExpectError;
using test::ExpectNoError;

// The content found, and the profile in `profile` when that is wanted.
std::string Found(std::string_view document, ZelXmlTags tag, std::string* profile = nullptr) {
  clsZelBaseCoding coding;
  std::string result = "vorher";
  EXPECT_TRUE(coding.GetXmlTag(document, tag, result, profile)) << coding.ErrorObject().ErrorMsg();
  ExpectNoError(coding);
  return result;
}

std::string ProfileOf(std::string_view document) {
  std::string profile = "vorher";
  Found(document, ZelXmlTags::ItemList, &profile);
  return profile;
}

void ExpectMissing(std::string_view document, ZelXmlTags tag, std::string_view message,
                   int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(__FILE__, line, std::string(document));
  clsZelBaseCoding coding;
  test::TestLog log;
  coding.LogHandler(log.Handler());
  std::string result = "vorher";
  std::string profile = "vorher";
  EXPECT_FALSE(coding.GetXmlTag(document, tag, result, &profile));
  ExpectError(coding.ErrorObject(), ZELErrorCodes::Err_Zel_CnvXmlTagMiss, true, "GetXmlTag", message);
  EXPECT_EQ(result, "");
  EXPECT_EQ(profile, "");
  EXPECT_EQ(log.Functions(), std::vector<std::string>{"GetXmlTag"});
}

struct Element {
  const char* test;
  ZelXmlTags tag;
  const char* searched;  // opening text, as messages show it
  const char* opening;
  const char* closing;
};

class EveryElement : public testing::TestWithParam<Element> {
 protected:
  std::string opening_ = GetParam().opening;
  std::string closing_ = GetParam().closing;
};

TEST_P(EveryElement, IsFound) {
  EXPECT_EQ(Found(opening_ + "QUJD" + closing_, GetParam().tag), "QUJD");
  EXPECT_EQ(Found("<a>" + opening_ + "QUJD" + closing_ + "</a>", GetParam().tag), "QUJD");
}

TEST_P(EveryElement, MissingIsReported) {
  const std::string message = std::string(
                                  "Das angeforderte XML-Tag konnte nicht gefunden werden!\r\n"
                                  "    XML-Tag ..........: ") +
                              GetParam().searched;
  ExpectMissing("", GetParam().tag, message);
  ExpectMissing("<other>QUJD</other>", GetParam().tag, message);
}

TEST_P(EveryElement, IncompleteIsReported) {
  const std::string message = std::string(
                                  "Das angeforderte XML-Tag ist nicht vollständig!\r\n"
                                  "    XML-Tag ..........: ") +
                              GetParam().searched;
  ExpectMissing(opening_ + "QUJD", GetParam().tag, message);
  ExpectMissing("QUJD" + closing_, GetParam().tag, message);
}

INSTANTIATE_TEST_SUITE_P(
    Xml, EveryElement,
    testing::Values(Element{"Transaction", ZelXmlTags::Transaction, "<transactionEncoded>",
                            "<transactionEncoded>", "</transactionEncoded>"},
                    Element{"Report", ZelXmlTags::Report, "<reportEncoded>", "<reportEncoded>",
                            "</reportEncoded>"},
                    Element{"ItemList", ZelXmlTags::ItemList, "<itemListEncoded", "<itemListEncoded>",
                            "</itemListEncoded>"},
                    Element{"ItemListWithProfile", ZelXmlTags::ItemList, "<itemListEncoded",
                            "<itemListEncoded profile='kasse'>", "</itemListEncoded>"},
                    Element{"TransRequest", ZelXmlTags::TransRequest, "<transactionRequest>",
                            "<transactionRequest>", "</transactionRequest>"},
                    Element{"TransResponse", ZelXmlTags::TransResponse, "<transactionResponse>",
                            "<transactionResponse>", "</transactionResponse>"},
                    Element{"ReportRequest", ZelXmlTags::ReportRequest, "<reportRequest>", "<reportRequest>",
                            "</reportRequest>"},
                    Element{"ReportRespone", ZelXmlTags::ReportRespone, "<reportResponse>",
                            "<reportResponse>", "</reportResponse>"}),
    [](const auto& tested) { return std::string(tested.param.test); });

// Order and positions

TEST(GetXmlTag, WrongOrderIsReportedWithBothPositions) {
  ExpectMissing("</transactionRequest>abc<transactionRequest>", ZelXmlTags::TransRequest,
                "Die XML-Tags sind nicht in der richtigen Reihenfolge\r\n"
                "oder anderweitig korrupt!\r\n"
                "    XML-Tag ..........: <transactionRequest>\r\n"
                "    Startpos. Tag ....: 45\r\n"
                "    Endpos. Tag ......: 1\r\n");
}

TEST(GetXmlTag, AnEmptyElementIsReportedAsOutOfOrder) {
  ExpectMissing("<transactionRequest></transactionRequest>", ZelXmlTags::TransRequest,
                "Die XML-Tags sind nicht in der richtigen Reihenfolge\r\n"
                "oder anderweitig korrupt!\r\n"
                "    XML-Tag ..........: <transactionRequest>\r\n"
                "    Startpos. Tag ....: 21\r\n"
                "    Endpos. Tag ......: 21\r\n");
  ExpectMissing("<itemListEncoded profile=\"A1\"></itemListEncoded>", ZelXmlTags::ItemList,
                "Die XML-Tags sind nicht in der richtigen Reihenfolge\r\n"
                "oder anderweitig korrupt!\r\n"
                "    XML-Tag ..........: <itemListEncoded\r\n"
                "    Startpos. Tag ....: 31\r\n"
                "    Endpos. Tag ......: 31\r\n");
}

TEST(GetXmlTag, OneCharacterIsEnough) {
  EXPECT_EQ(Found("<transactionRequest>Q</transactionRequest>", ZelXmlTags::TransRequest), "Q");
}

TEST(GetXmlTag, PositionsCountUtf16Units) {
  // "äöü€" counts four, "😀" two: the element begins at position 7.
  ExpectMissing("äöü€😀<transactionRequest></transactionRequest>", ZelXmlTags::TransRequest,
                "Die XML-Tags sind nicht in der richtigen Reihenfolge\r\n"
                "oder anderweitig korrupt!\r\n"
                "    XML-Tag ..........: <transactionRequest>\r\n"
                "    Startpos. Tag ....: 27\r\n"
                "    Endpos. Tag ......: 27\r\n");
  ExpectMissing("ß</transactionRequest>😀<transactionRequest>", ZelXmlTags::TransRequest,
                "Die XML-Tags sind nicht in der richtigen Reihenfolge\r\n"
                "oder anderweitig korrupt!\r\n"
                "    XML-Tag ..........: <transactionRequest>\r\n"
                "    Startpos. Tag ....: 45\r\n"
                "    Endpos. Tag ......: 2\r\n");
}

TEST(GetXmlTag, AnItemListThatIsNeverClosedByABracketIsOutOfOrder) {
  // The first ">" behind the opening text is that of the closing element.
  ExpectMissing("<itemListEncoded</itemListEncoded>", ZelXmlTags::ItemList,
                "Die XML-Tags sind nicht in der richtigen Reihenfolge\r\n"
                "oder anderweitig korrupt!\r\n"
                "    XML-Tag ..........: <itemListEncoded\r\n"
                "    Startpos. Tag ....: 35\r\n"
                "    Endpos. Tag ......: 17\r\n");
}

TEST(GetXmlTag, AnItemListWithoutAnyBracketBehindItIsOutOfOrder) {
  // It begins behind the last of the 34 characters.
  ExpectMissing("</itemListEncoded><itemListEncoded", ZelXmlTags::ItemList,
                "Die XML-Tags sind nicht in der richtigen Reihenfolge\r\n"
                "oder anderweitig korrupt!\r\n"
                "    XML-Tag ..........: <itemListEncoded\r\n"
                "    Startpos. Tag ....: 35\r\n"
                "    Endpos. Tag ......: 1\r\n");
}

TEST(GetXmlTag, TheFirstOfSeveralElementsCounts) {
  EXPECT_EQ(Found("<reportRequest>QUJD</reportRequest><reportRequest>REVG</reportRequest>",
                  ZelXmlTags::ReportRequest),
            "QUJD");
}

TEST(GetXmlTag, AttributesHideOtherElementsThanTheItemList) {
  ExpectMissing("<transactionRequest id='1'>QUJD</transactionRequest>", ZelXmlTags::TransRequest,
                "Das angeforderte XML-Tag ist nicht vollständig!\r\n"
                "    XML-Tag ..........: <transactionRequest>");
}

// Case

TEST(GetXmlTag, NamesAreFoundInEitherCase) {
  EXPECT_EQ(Found("<TRANSACTIONREQUEST>QUJD</TRANSACTIONREQUEST>", ZelXmlTags::TransRequest), "QUJD");
  EXPECT_EQ(Found("<transactionrequest>QUJD</TransactionRequest>", ZelXmlTags::TransRequest), "QUJD");
  std::string profile;
  EXPECT_EQ(Found("<ITEMLISTENCODED PROFILE='A1'>QUJD</ITEMLISTENCODED>", ZelXmlTags::ItemList, &profile),
            "QUJD");
  EXPECT_EQ(profile, "A1");
}

TEST(GetXmlTag, ContentKeepsItsCase) {
  EXPECT_EQ(Found("<TRANSACTIONENCODED>aBcÄö</TRANSACTIONENCODED>", ZelXmlTags::Transaction), "aBcÄö");
}

TEST(GetXmlTag, TextInFrontThatGrowsInUpperCaseMovesNothing) {
  // Letters whose upper-case forms are longer or shorter than they are, in bytes or in characters.
  EXPECT_EQ(Found("ßßﬁŉıſǰΐᾳ<transactionRequest>QUJD</transactionRequest>ß", ZelXmlTags::TransRequest),
            "QUJD");
  EXPECT_EQ(Found("ﬁ<transactionEncoded> ß<a/> </transactionEncoded>", ZelXmlTags::Transaction), " ß<a/> ");
}

TEST(GetXmlTag, IllFormedTextDoesNoHarm) {
  EXPECT_EQ(Found("\xC3\xFF<transactionRequest>QUJD</transactionRequest>\xE2\x82", ZelXmlTags::TransRequest),
            "QUJD");
}

// Cleaning

TEST(GetXmlTag, RequestsAndResponsesLoseWhatSurroundsTheBase64Text) {
  EXPECT_EQ(Found("<transactionRequest>\r\n  QUJD \t\r\n</transactionRequest>", ZelXmlTags::TransRequest),
            "QUJD");
  EXPECT_EQ(Found("<transactionResponse>\n QUJD\n</transactionResponse>", ZelXmlTags::TransResponse), "QUJD");
  EXPECT_EQ(Found("<reportRequest> QUJD </reportRequest>", ZelXmlTags::ReportRequest), "QUJD");
  EXPECT_EQ(Found("<reportResponse> QUJD </reportResponse>", ZelXmlTags::ReportRespone), "QUJD");
  EXPECT_EQ(Found("<itemListEncoded> QUJD </itemListEncoded>", ZelXmlTags::ItemList), "QUJD");
}

TEST(GetXmlTag, CharactersInsideAreLeftAlone) {
  EXPECT_EQ(Found("<transactionRequest> QU\r\n  JD !ä REVG </transactionRequest>", ZelXmlTags::TransRequest),
            "QU\r\n  JD !ä REVG");
}

TEST(GetXmlTag, TheWholeAlphabetStands) {
  EXPECT_EQ(Found("<transactionRequest>.+Q/.=-.</transactionRequest>", ZelXmlTags::TransRequest), "+Q/.=-");
  EXPECT_EQ(Found("<transactionRequest>(_Q9z0aAZ=)</transactionRequest>", ZelXmlTags::TransRequest),
            "_Q9z0aAZ=");
}

TEST(GetXmlTag, NonAsciiTextAroundTheContentIsRemoved) {
  EXPECT_EQ(Found("<transactionRequest>ä€😀QUJD😀€ä</transactionRequest>", ZelXmlTags::TransRequest), "QUJD");
}

TEST(GetXmlTag, ContentWithoutBase64CharactersBecomesEmpty) {
  EXPECT_EQ(Found("<transactionRequest> \r\n ä </transactionRequest>", ZelXmlTags::TransRequest), "");
}

TEST(GetXmlTag, TransactionAndReportKeepTheirContent) {
  EXPECT_EQ(Found("<transactionEncoded>\r\n    <a> ä </a>\r\n</transactionEncoded>", ZelXmlTags::Transaction),
            "\r\n    <a> ä </a>\r\n");
  EXPECT_EQ(Found("<reportEncoded>  <a/>  </reportEncoded>", ZelXmlTags::Report), "  <a/>  ");
  EXPECT_EQ(Found("<reportEncoded> </reportEncoded>", ZelXmlTags::Report), " ");
}

// Profile

TEST(GetXmlTag, GivesTheProfileOfAnItemList) {
  EXPECT_EQ(ProfileOf("<itemListEncoded profile='A1'>QUJD</itemListEncoded>"), "A1");
  EXPECT_EQ(ProfileOf("<itemListEncoded profile=\"kasse\">QUJD</itemListEncoded>"), "kasse");
  EXPECT_EQ(ProfileOf("<itemListEncoded\r\n  Profile = ' A 1 ' >QUJD</itemListEncoded>"), " A 1 ");
  EXPECT_EQ(ProfileOf("<itemListEncoded profile='Käse€'>QUJD</itemListEncoded>"), "Käse€");
}

TEST(GetXmlTag, QuotesOfEitherKindCloseEachOther) {
  EXPECT_EQ(ProfileOf("<itemListEncoded profile='A1\">QUJD</itemListEncoded>"), "A1");
}

TEST(GetXmlTag, AnItemListWithoutProfileHasNone) {
  EXPECT_EQ(ProfileOf("<itemListEncoded>QUJD</itemListEncoded>"), "");
  EXPECT_EQ(ProfileOf("<itemListEncoded number='12345'>QUJD</itemListEncoded>"), "");
  EXPECT_EQ(ProfileOf("<itemListEncoded profile=''>QUJD</itemListEncoded>"), "");
  EXPECT_EQ(ProfileOf("<itemListEncoded profile='A1>QUJD</itemListEncoded>"), "");
  EXPECT_EQ(ProfileOf("<itemListEncoded profile=A1>QUJD</itemListEncoded>"), "");
  EXPECT_EQ(ProfileOf("<itemListEncoded profile>QUJD</itemListEncoded>"), "");
}

TEST(GetXmlTag, TheFirstQuotedValueIsTakenWhicheverAttributeItBelongsTo) {
  EXPECT_EQ(ProfileOf("<itemListEncoded id='7' profile='A1'>QUJD</itemListEncoded>"), "7");
}

TEST(GetXmlTag, ABracketInAnAttributeEndsTheOpeningElement) {
  std::string profile = "vorher";
  EXPECT_EQ(Found("<itemListEncoded profile='A>1'>QUJD</itemListEncoded>", ZelXmlTags::ItemList, &profile),
            "1'>QUJD");
  EXPECT_EQ(profile, "");
}

TEST(GetXmlTag, OtherElementsHaveNoProfile) {
  std::string profile = "vorher";
  EXPECT_EQ(Found("<reportRequest>QUJD</reportRequest> profile='A1'", ZelXmlTags::ReportRequest, &profile),
            "QUJD");
  EXPECT_EQ(profile, "");
}

// Selectors that select nothing

TEST(GetXmlTag, NotSetFindsNothing) {
  for (const ZelXmlTags tag : {ZelXmlTags::NotSet, ZelXmlTags{8}, ZelXmlTags{-1}}) {
    // The blank behind the colon is trimmed with the message.
    ExpectMissing("<transactionEncoded>QUJD</transactionEncoded>", tag,
                  "Das angeforderte XML-Tag konnte nicht gefunden werden!\r\n"
                  "    XML-Tag ..........:");
  }
}

TEST(GetXmlTag, ALongDocumentIsSearchedInLinearTime) {
  const std::string filler(2000000, '<');
  EXPECT_EQ(Found(filler + "<transactionRequest>" + std::string(2000000, ' ') + "QUJD" +
                      std::string(2000000, ' ') + "</transactionRequest>",
                  ZelXmlTags::TransRequest),
            "QUJD");
}

}  // namespace
}  // namespace VnZEL10cmn
