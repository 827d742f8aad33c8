// What a report holds: its defaults, its bounds, its containers and items.

#include "VnZEL10cmn/report/clsZelReport.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "VnZEL10cmn/render/clsZelRprtPrint.h"
#include "tests/report/Support.h"

namespace VnZEL10cmn {
namespace {

using test::AddLoaves;
using test::BuildRequest;
using test::SetDate;
using test::ToHex;

TEST(Report, StartsEmpty) {
  clsZelReport report;
  test::ExpectNoError(report);
  EXPECT_EQ(report.ErrorObject().ErrorSource(), "VnZEL10cmn.clsZelReport");
  EXPECT_EQ(report.ErrorObject().ErrorInstanceID().size(), 36U);
  EXPECT_EQ(report.LogHandler(), nullptr);
  EXPECT_EQ(report.ReportDate(), Date::FromCivil(2000, 1, 1));
  EXPECT_EQ(report.SpanMonthFrom(), Date::FromCivil(2000, 1, 1));
  EXPECT_EQ(report.SpanMonthUpTo(), Date::FromCivil(2099, 12, 31, 23, 59, 59));
  EXPECT_EQ(report.ReportType(), ZelReportType::Undefined);
  EXPECT_EQ(report.TransportPIN(), "");
  EXPECT_FALSE(report.UseSHA256());
  EXPECT_EQ(report.ZelProfile(), "kasse");
  EXPECT_EQ(report.ItemCount(), 0);
  EXPECT_EQ(report.ItemI(1), nullptr);
  EXPECT_EQ(report.ZelStatus(), ZelLifeCycle::Undefined);
  EXPECT_EQ(report.TpID(), "");
  EXPECT_EQ(report.TpIdNbr(), Currency(0));
  EXPECT_EQ(report.SequenceNbr(), Currency(0));
  EXPECT_EQ(report.TransSeqNrFirst(), Currency(0));
  EXPECT_EQ(report.TransSeqNrLast(), Currency(0));
  EXPECT_EQ(report.Signature(), "");
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64), "");
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64, true), "");
}

TEST(Report, KindsHaveTheirNumbers) {
  EXPECT_EQ(static_cast<int>(ZelReportType::Undefined), 0);
  EXPECT_EQ(static_cast<int>(ZelReportType::Signed), 1);
  EXPECT_EQ(static_cast<int>(ZelReportType::Unsigned), 2);
  EXPECT_EQ(static_cast<int>(ZelReportType::Span), 3);
  EXPECT_EQ(static_cast<int>(ZelReportType::ActivateZEL), 4);
  EXPECT_EQ(static_cast<int>(ZelReportType::DeactivateZEL), 5);
}

TEST(Report, DatesAreKeptWithinTheirBounds) {
  const Date lowest = Date::FromCivil(2000, 1, 1);
  const Date highest{73050.99998842593};
  clsZelReport report;
  const auto keeps = [&report](Date value, Date expected) {
    report.ReportDate(value);
    EXPECT_EQ(report.ReportDate().Value(), expected.Value());
    report.SpanMonthFrom(value);
    EXPECT_EQ(report.SpanMonthFrom().Value(), expected.Value());
    report.SpanMonthUpTo(value);
    EXPECT_EQ(report.SpanMonthUpTo().Value(), expected.Value());
  };
  keeps(Date::FromCivil(1999, 5, 1), lowest);
  keeps(Date::FromCivil(1999, 12, 31, 23, 59, 59), lowest);
  keeps(lowest, lowest);
  keeps(Date::FromCivil(2000, 1, 1, 0, 0, 1), Date::FromCivil(2000, 1, 1, 0, 0, 1));
  keeps(Date::FromCivil(2024, 2, 29, 8, 5, 3), Date::FromCivil(2024, 2, 29, 8, 5, 3));
  keeps(Date::FromCivil(2099, 12, 31, 23, 59, 58), Date::FromCivil(2099, 12, 31, 23, 59, 58));
  keeps(highest, highest);
  keeps(Date::FromCivil(2100, 1, 1), highest);
  keeps(Date(1e9), highest);
  keeps(Date(-1e9), lowest);
}

TEST(Report, TransportPinIsTrimmed) {
  clsZelReport report;
  report.TransportPIN(" 123456 ");
  EXPECT_EQ(report.TransportPIN(), "123456");
  report.TransportPIN("   12 34  ");
  EXPECT_EQ(report.TransportPIN(), "12 34");
  report.TransportPIN("\t123456");
  EXPECT_EQ(report.TransportPIN(), "\t123456");
  report.TransportPIN("  ");
  EXPECT_EQ(report.TransportPIN(), "");
}

TEST(Report, NineContainersOfResponses) {
  clsZelReport report;
  for (std::int32_t number = 1; number <= 9; ++number) {
    const auto container = report.Container(number);
    ASSERT_NE(container, nullptr);
    EXPECT_EQ(static_cast<int>(container->Tag()), 224 + number);
    EXPECT_TRUE(container->IsZelResponse());
    EXPECT_EQ(container->Turnover(), Currency(0));
    EXPECT_EQ(report.Container2(ZELVatClasses{number - 1}), container);
  }
  test::ExpectNoError(report);
}

TEST(Report, ContainerNumbersOutsideAreTheNearest) {
  clsZelReport report;
  EXPECT_EQ(report.Container(0), report.Container(1));
  EXPECT_EQ(report.Container(-1), report.Container(1));
  EXPECT_EQ(report.Container(std::numeric_limits<std::int32_t>::min()), report.Container(1));
  EXPECT_EQ(report.Container(10), report.Container(9));
  EXPECT_EQ(report.Container(12), report.ContainerTraining());
  EXPECT_EQ(report.Container(std::numeric_limits<std::int32_t>::max()), report.Container(9));
  EXPECT_NE(report.Container(8), report.Container(9));
  test::ExpectNoError(report);
}

TEST(Report, ContainersByVatClass) {
  clsZelReport report;
  EXPECT_EQ(report.Container2(ZELVatClasses::Standard), report.Container(1));
  EXPECT_EQ(report.Container2(ZELVatClasses::Reduced1), report.Container(2));
  EXPECT_EQ(report.Container2(ZELVatClasses::Reduced2), report.Container(3));
  EXPECT_EQ(report.Container2(ZELVatClasses::NoVat), report.Container(4));
  EXPECT_EQ(report.Container2(ZELVatClasses::Special1), report.Container(5));
  EXPECT_EQ(report.Container2(ZELVatClasses::Special2), report.Container(6));
  EXPECT_EQ(report.Container2(ZELVatClasses{8}), report.Container(9));
  EXPECT_THROW((void)report.Container2(ZELVatClasses{-1}), std::out_of_range);
  EXPECT_THROW((void)report.Container2(ZELVatClasses{9}), std::out_of_range);
}

TEST(Report, ContainersWithNames) {
  clsZelReport report;
  EXPECT_EQ(static_cast<int>(report.ContainerThrdParty()->Tag()), 231);
  EXPECT_EQ(report.ContainerThrdParty(), report.Container(7));
  EXPECT_EQ(static_cast<int>(report.ContainerDelivery()->Tag()), 232);
  EXPECT_EQ(report.ContainerDelivery(), report.Container(8));
  EXPECT_EQ(static_cast<int>(report.ContainerTraining()->Tag()), 233);
  EXPECT_EQ(report.ContainerTraining(), report.Container(9));
}

TEST(Report, ContainersMayOutliveTheReport) {
  std::shared_ptr<clsZelContainer> container;
  {
    clsZelReport report;
    ASSERT_TRUE(test::HandIn(report, ZELSerialType::Response, test::kStandard));
    container = report.Container(1);
  }
  EXPECT_EQ(container->VATrate(), Currency(19));
}

TEST(Report, ItemsAreThoseOfItsList) {
  clsZelReport report;
  const auto first = test::CashItem("a", 1);
  const auto second = test::CashItem("b", 2);
  EXPECT_TRUE(report.AddItem(first));
  EXPECT_TRUE(report.AddItem(second));
  EXPECT_EQ(report.ItemCount(), 2);
  EXPECT_EQ(report.ItemI(1), first);
  EXPECT_EQ(report.ItemI(2), second);
  EXPECT_EQ(report.ItemI(0), nullptr);
  EXPECT_EQ(report.ItemI(3), nullptr);
  EXPECT_EQ(report.ItemK(second->InstanceID()), second);
  EXPECT_EQ(report.ItemK("x"), nullptr);
  std::vector<std::shared_ptr<IVnZelItem>> items;
  for (const auto& item : report) {
    items.push_back(item);
  }
  EXPECT_EQ(items, (std::vector<std::shared_ptr<IVnZelItem>>{first, second}));
  EXPECT_TRUE(report.RemoveItem(first));
  EXPECT_EQ(report.ItemI(1), second);
  EXPECT_TRUE(report.RemoveItem(nullptr, "x", 1));
  EXPECT_EQ(report.ItemCount(), 1);
  EXPECT_TRUE(report.RemoveItem(nullptr, second->InstanceID()));
  EXPECT_EQ(report.ItemCount(), 0);
  EXPECT_TRUE(report.AddItem(first));
  EXPECT_TRUE(report.RemoveItem(nullptr, {}, 1));
  EXPECT_EQ(report.ItemCount(), 0);
  EXPECT_TRUE(report.AddItem(first));
  EXPECT_TRUE(report.AddItem(second));
  EXPECT_TRUE(report.ClearItems(first, "x", 2));
  EXPECT_EQ(report.ItemCount(), 0);
  test::ExpectNoError(report);
}

TEST(Report, ItemsAreInTheListOnce) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  const auto item = test::CashItem("a", 1);
  EXPECT_TRUE(report.AddItem(item));
  EXPECT_EQ(item->LogHandler(), log.Handler());
  EXPECT_FALSE(report.AddItem(item));
  EXPECT_EQ(report.ErrorObject().ErrorNr(), 9306);
  EXPECT_EQ(report.ErrorObject().ErrorFunction(), "AddItem.[AddItem]");
  EXPECT_TRUE(report.ErrorObject().IsUserDef());
  EXPECT_EQ(report.ItemCount(), 1);
}

TEST(Report, ProfileIsThatOfItsList) {
  clsZelReport report;
  report.ZelProfile("  ABC ");
  EXPECT_EQ(report.ZelProfile(), "ABC");
  report.ZelProfile("");
  EXPECT_EQ(report.ZelProfile(), "");
}

TEST(Report, ItemsComeFromItsFactory) {
  clsZelReport report;
  int made = 0;
  report.ItemFactory(std::make_shared<test::FakeFactory>([&made] {
    ++made;
    return std::make_shared<test::FakeItem>();
  }));
  EXPECT_TRUE(test::HandIn(report, ZELSerialType::ItemList, test::kSaleItems));
  EXPECT_EQ(made, 1);
  ASSERT_EQ(report.ItemCount(), 1);
  EXPECT_EQ(report.ItemI(1)->InstanceID(), "FAKE-1");
}

TEST(Report, LogFileReachesCoderAndHelper) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  EXPECT_EQ(report.LogHandler(), log.Handler());
  EXPECT_FALSE(test::HandIn(report, ZELSerialType::Response, "C0 05 01"));
  EXPECT_EQ(test::LogSources(log), (std::vector<std::string>{"clsZelBaseCoding", "clsZelReport"}));
  std::string document = "<reportEncoded><itemListEncoded>AA</itemListEncoded></reportEncoded>";
  EXPECT_FALSE(report.XmlHandler(document, false));
  EXPECT_EQ(test::LogSources(log),
            (std::vector<std::string>{"clsZelBaseCoding", "clsZelReport", "clsHelper01", "clsZelReport"}));
  report.LogHandler(nullptr);
  EXPECT_FALSE(test::HandIn(report, ZELSerialType::Response, "C0 05 01"));
  EXPECT_EQ(log.Count(), 4U);
}

// Item hash as text

TEST(ReportItemHash, OfThePresentItems) {
  clsZelReport report;
  AddLoaves(report);
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64), "1GZUHSrdJ6VfdAc6/W6svhajN/o=");
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base32H), "1GZUHSrdJ6VfdAc6/W6svhajN/o=");
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base32), "2RTFIHJK3UT2KX3UA45P23VMXYLKGN72");
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base16), "D466541D2ADD27A55F74073AFD6EACBE16A337FA");
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base32, false, 8), "2RTFIHJK-3UT2KX3U-A45P23VM-XYLKGN72");
  // The stored hash is that of the last request.
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64, true), "");
  test::ExpectNoError(report);
  report.UseSHA256(true);
  EXPECT_TRUE(report.UseSHA256());
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base64), "24MxW8IFQIxTbRinViG1aCxx1OrNLoNOfNV2Y1N4Pm0=");
}

TEST(ReportItemHash, FromMemoryIsThatOfTheLastSignedRequest) {
  clsZelReport report;
  SetDate(report);
  AddLoaves(report);
  (void)BuildRequest(report, ZelReportType::Unsigned);
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base16, true), "");
  (void)BuildRequest(report, ZelReportType::Signed);
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base16, true), "D466541D2ADD27A55F74073AFD6EACBE16A337FA");
  ASSERT_TRUE(report.AddItem(test::CashItem("x", 1)));
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base16, true), "D466541D2ADD27A55F74073AFD6EACBE16A337FA");
  EXPECT_NE(report.GetItemHash(ZELHashFmt::Base16), "D466541D2ADD27A55F74073AFD6EACBE16A337FA");
}

TEST(ReportItemHash, FailureOfAnItem) {
  test::TestLog log;
  clsZelReport report;
  const auto item = std::make_shared<test::FakeItem>();
  item->failAtWrite = 1;
  ASSERT_TRUE(report.AddItem(item));
  report.LogHandler(log.Handler());
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base16), "##FEHLER##");
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Cmn_NotSpec, true, "GetItemHash",
                    "Hashausgabe nicht möglich!\r\nEine interne Funktion meldete einen Fehler");
  EXPECT_EQ(log.Functions().back(), "GetItemHash");
  EXPECT_EQ(log.Numbers().back(), "9000");
  ByteArray data = ByteArray::WithBounds(0, 99);
  item->writes = 0;
  EXPECT_FALSE(report.BinaryDataGet(ZELSerialType::ItemHash, data, 0));
  test::ExpectError(report.ErrorObject(), ZELErrorCodes::Err_Cmn_NotSpec, true, "GenItemHash",
                    "Posten-Hash-Erzeugung nicht möglich!\r\n"
                    "Der Hashwert konnte nicht aus den\r\n"
                    "Einzelposten ermittelt werden.");
}

// Text

class OwnPrint : public clsZelRprtPrint {
 public:
  using clsZelRprtPrint::ToStringRprt;
  std::string ToStringRprt(std::shared_ptr<clsZelReport> RprtItem, clsVnError* ErrObj) override {
    report = RprtItem.get();
    errorObject = ErrObj;
    return "own text";
  }
  clsZelReport* report = nullptr;
  clsVnError* errorObject = nullptr;
};

TEST(ReportText, ComesFromItsPrintEngine) {
  clsZelReport report;
  const auto print = std::make_shared<OwnPrint>();
  report.PrintEngine(print);
  EXPECT_EQ(report.ToString(), "own text");
  EXPECT_EQ(print->report, &report);
  EXPECT_EQ(print->errorObject, &report.ErrorObject());
  report.PrintEngine(nullptr);
  EXPECT_EQ(report.ToString().substr(0, 20), "      TAGESABSCHLUSS");
  test::ExpectNoError(report);
}

}  // namespace
}  // namespace VnZEL10cmn
