// The run-time numbers and their texts, wherever a caller meets them.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::ByteArray;
using test::clsVnError;
using test::clsZelItemCash;
using test::clsZelItemList;
using test::clsZelReport;
using test::clsZelTransAct;
using test::clsZelTransActData;
using test::clsZelVatItem;
using test::clsZelVatList;
using test::Currency;
using test::Date;
using test::ExpectRunTimeError;
using test::FromHex;
using test::FromHexAt;
using test::Scripted;
using test::ZELSerialType;
using VnZEL10cmn::clsHelper01;
using VnZEL10cmn::clsZelBaseCoding;
using VnZEL10cmn::clsZelContainer;
using VnZEL10cmn::ZELVatClasses;

constexpr std::int32_t kLast = std::numeric_limits<std::int32_t>::max();
const Currency kMost = Currency::FromScaled(std::numeric_limits<std::int64_t>::max());
const Currency kLeast = Currency::FromScaled(std::numeric_limits<std::int64_t>::min());

/// A list whose only item does something when it is written.
void ExpectOfAThrow(const std::function<void()>& doing, std::int32_t number) {
  clsZelItemList list;
  const auto item = Scripted("A");
  ASSERT_TRUE(list.AddItem(item));
  item->onWrite = doing;
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataGet(data, start));
  ExpectRunTimeError(list.ErrorObject(), number, "BinaryDataGet");
}

TEST(RunTimeNumber5, IsWhatAHostThrowsThatSaysNothingElse) {
  ExpectOfAThrow([] { throw std::runtime_error("scale is jammed"); }, 5);
  ExpectOfAThrow([] { throw std::logic_error("scale is jammed"); }, 5);
  ExpectOfAThrow([] { throw 42; }, 5);
  ExpectOfAThrow([] { throw "text"; }, 5);
  struct Own {};
  ExpectOfAThrow([] { throw Own(); }, 5);
}

TEST(RunTimeNumbers, OfAHostsExceptionsGoByTheirClassNotByTheirText) {
  ExpectOfAThrow([] { throw std::overflow_error("too heavy"); }, 6);
  ExpectOfAThrow([] { throw std::bad_alloc(); }, 7);
  ExpectOfAThrow([] { throw std::out_of_range("no such scale"); }, 9);
  ExpectOfAThrow([] { throw std::invalid_argument("no scale"); }, 13);
}

TEST(RunTimeNumbers, OfAHostsExceptionsShowInTheBookingThatAsks) {
  clsZelTransAct booking;
  test::Prepare(booking);
  const auto item = Scripted("A");
  ASSERT_TRUE(booking.AddItem(item));
  ByteArray request;
  item->onPrices = [] { throw std::runtime_error("scale is jammed"); };
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
  ExpectRunTimeError(booking.ErrorObject(), 5, "BinaryDataGet");
  item->onPrices = [] { throw std::bad_alloc(); };
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
  ExpectRunTimeError(booking.ErrorObject(), 7, "BinaryDataGet");
}

TEST(RunTimeNumbers, OfAnEnginesExceptionsShowInWhatIsRendered) {
  const auto engine = std::make_shared<test::ScriptedEngine>();
  engine->item = [](const auto&, clsVnError*) -> std::string { throw std::runtime_error("no paper"); };
  engine->booking = [](const auto&, clsVnError*) -> std::string { throw std::out_of_range("no paper"); };
  engine->record = [](const auto&, clsVnError*) -> std::string { throw 1; };
  clsZelItemCash item;
  item.PrintEngine(engine);
  EXPECT_EQ(item.ToString(), "");
  ExpectRunTimeError(item.ErrorObject(), 5, "ToString");
  clsZelTransAct booking;
  booking.PrintEngine(engine);
  EXPECT_EQ(booking.ToString(), "");
  ExpectRunTimeError(booking.ErrorObject(), 9, "ToString");
  clsZelTransActData record;
  record.PrintEngine(engine);
  EXPECT_EQ(record.ToString(), "");
  ExpectRunTimeError(record.ErrorObject(), 5, "ToString");
  clsZelReport report;
  const auto reportEngine = std::make_shared<test::ScriptedReportEngine>();
  reportEngine->report = [](const auto&, clsVnError*) -> std::string { throw std::bad_alloc(); };
  report.PrintEngine(reportEngine);
  EXPECT_EQ(report.ToString(), "");
  ExpectRunTimeError(report.ErrorObject(), 7, "ToString");
  clsZelItemList list;
  ASSERT_TRUE(list.AddItem(Scripted("A")));
  list.PrintEngine(engine);
  EXPECT_EQ(list.ToString(), "");
  ExpectRunTimeError(list.ErrorObject(), 5, "ToString");
}

TEST(RunTimeNumber6, IsASumBeyondCurrency) {
  clsZelTransAct booking;
  test::Prepare(booking);
  for (const char* const id : {"A", "B"}) {
    const auto item = Scripted(id);
    item->prices = {kMost};
    ASSERT_TRUE(booking.AddItem(item));
  }
  ByteArray request;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
  ExpectRunTimeError(booking.ErrorObject(), 6, "BinaryDataGet");
  EXPECT_EQ(booking.ToString(), "");
  ExpectRunTimeError(booking.ErrorObject(), 6, "ToStringBI");
}

TEST(RunTimeNumber6, IsAVatBeyondCurrency) {
  clsZelVatItem rates;
  Currency vat;
  EXPECT_FALSE(rates.CalcVat(kMost, 1, vat, nullptr, nullptr, true));
  ExpectRunTimeError(rates.ErrorObject(), 6, "CalcVat");
}

TEST(RunTimeNumber6, IsADateThatTheCalendarDoesNotHave) {
  clsZelVatItem rates;
  EXPECT_FALSE(rates.SetDates(Date::FromCivil(2020, 1, 1), Date(1e12)));
  ExpectRunTimeError(rates.ErrorObject(), 6, "SetDates");
}

TEST(RunTimeNumber6, IsRoundingBeyondCurrency) {
  clsHelper01 helper;
  EXPECT_EQ(helper.RoundCmrc(kMost), Currency());
  ExpectRunTimeError(helper.ErrorObject(), 6, "RoundCmrc");
  EXPECT_EQ(helper.RoundCmrc2(1e30), Currency());
  ExpectRunTimeError(helper.ErrorObject(), 6, "RoundCmrc2");
}

TEST(RunTimeNumber6, IsABase64GroupThatBeginsWithAPad) {
  clsHelper01 helper;
  ByteArray bytes;
  EXPECT_FALSE(helper.FromBase64String("=AAA", bytes));
  ExpectRunTimeError(helper.ErrorObject(), 6, "FromBase64String");
}

TEST(RunTimeNumber6, IsACounterThatNo32BitsHold) {
  clsZelBaseCoding coder;
  ByteArray buffer = ByteArray::WithBounds(0, 99);
  std::int32_t start = 0;
  EXPECT_FALSE(coder.SetZelCounter(buffer, start, VnZEL10cmn::ZelTags::Seq_Nr_Trans, 8589934592));
  ExpectRunTimeError(coder.ErrorObject(), 6, "SetZelCounter");
}

TEST(RunTimeNumber6, IsARoomThatNoArrayHas) {
  clsZelItemList list;
  ASSERT_TRUE(list.AddItem(Scripted("A")));
  ByteArray data;
  std::int32_t start = kLast;
  EXPECT_FALSE(list.BinaryDataGet(data, start));
  ExpectRunTimeError(list.ErrorObject(), 6, "BinaryDataGet");
}

TEST(RunTimeNumber6, IsAnItemsQuantityBeyondCurrency) {
  clsZelItemCash item;
  std::int32_t start = 0;
  // 16 nines.
  EXPECT_FALSE(
      item.BinaryDataSet(FromHex("A0 10 39 39 39 39 39 39 39 39 39 39 39 39 39 39 39 39 A2 01 78"), start));
  ExpectRunTimeError(item.ErrorObject(), 6, "BinaryDataSet");
}

TEST(RunTimeNumber9, IsAPositionBeyondTheList) {
  clsZelItemList list;
  ASSERT_TRUE(list.AddItem(Scripted("A")));
  EXPECT_FALSE(list.RemoveItem(nullptr, {}, 2));
  ExpectRunTimeError(list.ErrorObject(), 9, "RemoveItem");
  clsZelTransAct booking;
  ASSERT_TRUE(booking.AddItem(Scripted("A")));
  EXPECT_FALSE(booking.RemoveItem(nullptr, {}, 2));
  ExpectRunTimeError(booking.ErrorObject(), 9, "RemoveItem.[RemoveItem]");
  clsZelReport report;
  ASSERT_TRUE(report.AddItem(Scripted("A")));
  EXPECT_FALSE(report.RemoveItem(nullptr, {}, 2));
  ExpectRunTimeError(report.ErrorObject(), 9, "RemoveItem.[RemoveItem]");
}

TEST(RunTimeNumber9, IsAStartOutsideTheArray) {
  clsZelContainer container;
  clsZelItemCash item;
  for (const std::int32_t outside : {-1, 3, kLast, std::numeric_limits<std::int32_t>::min()}) {
    std::int32_t start = outside;
    EXPECT_FALSE(container.BinaryDataSet(FromHex("E1 01 00"), start));
    ExpectRunTimeError(container.ErrorObject(), 9, "BinaryDataSet");
    EXPECT_FALSE(item.BinaryDataSet(FromHex("A0 01 31"), start));
    ExpectRunTimeError(item.ErrorObject(), 9, "BinaryDataSet");
    EXPECT_EQ(start, outside);
  }
}

TEST(RunTimeNumber9, IsAStartBelowTheArrayThatBytesAreCopiedTo) {
  clsZelTransAct booking;
  ASSERT_TRUE(test::HandIn(booking, ZELSerialType::Response, test::kSaleResponse));
  ByteArray data = ByteArray::WithBounds(0, 999);
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Response, data, -1));
  ExpectRunTimeError(booking.ErrorObject(), 9, "BinaryDataGet");
}

TEST(RunTimeNumber9, IsIndex0OfAnArrayThatBeginsHigher) {
  clsHelper01 helper;
  const ByteArray high = FromHexAt(5, "01 02 03");
  std::string text;
  ByteArray digest;
  EXPECT_FALSE(helper.ToBase64String(high, text));
  ExpectRunTimeError(helper.ErrorObject(), 9, "ToBase64String");
  EXPECT_FALSE(helper.ToBase32String(high, text));
  ExpectRunTimeError(helper.ErrorObject(), 9, "ToBase32String");
  EXPECT_FALSE(helper.GetSHA1Hash1(high, digest));
  ExpectRunTimeError(helper.ErrorObject(), 9, "GetSHA1Hash1");
  EXPECT_FALSE(helper.GetSHA256Hash1(high, digest));
  ExpectRunTimeError(helper.ErrorObject(), 9, "GetSHA256Hash1");
  clsZelBaseCoding coder;
  ByteArray buffer = ByteArray::WithBounds(0, 99);
  std::int32_t start = 0;
  EXPECT_FALSE(coder.SetDataBinary(buffer, start, VnZEL10cmn::ZelTags::Signature, high));
  ExpectRunTimeError(coder.ErrorObject(), 9, "SetDataBinary");
}

TEST(RunTimeNumber9, IsACounterWithoutAByte) {
  clsZelBaseCoding coder;
  std::int32_t start = 0;
  Currency value;
  EXPECT_FALSE(coder.GetZelCounter(FromHex("CB 00"), start, VnZEL10cmn::ZelTags::Seq_Nr_Trans, value));
  ExpectRunTimeError(coder.ErrorObject(), 9, "GetZelCounter");
}

TEST(RunTimeNumber13, IsATextThatIsNoNumber) {
  clsHelper01 helper;
  EXPECT_EQ(helper.RoundCmrc2("Brot"), Currency());
  ExpectRunTimeError(helper.ErrorObject(), 13, "RoundCmrc2");
  clsZelItemCash item;
  std::int32_t start = 0;
  EXPECT_FALSE(item.BinaryDataSet(FromHex("A0 01 78 A2 01 78"), start));
  ExpectRunTimeError(item.ErrorObject(), 13, "BinaryDataSet");
}

TEST(RunTimeNumber91, IsAnItemThatIsNotThere) {
  clsZelItemList list;
  EXPECT_FALSE(list.AddItem(nullptr));
  ExpectRunTimeError(list.ErrorObject(), 91, "AddItem");
  EXPECT_EQ(list.ItemCount(), 0);
  clsZelTransAct booking;
  EXPECT_FALSE(booking.AddItem(nullptr));
  ExpectRunTimeError(booking.ErrorObject(), 91, "AddItem.[AddItem]");
  clsZelReport report;
  EXPECT_FALSE(report.AddItem(nullptr));
  ExpectRunTimeError(report.ErrorObject(), 91, "AddItem.[AddItem]");
}

TEST(RunTimeNumber91, IsARateSetThatIsNotThere) {
  clsZelVatList list;
  EXPECT_FALSE(list.AddItem(nullptr));
  ExpectRunTimeError(list.ErrorObject(), 91, "AddItem");
  EXPECT_EQ(list.Count(), 2);
}

TEST(RunTimeNumber91, IsAnObjectToRenderThatIsNotThere) {
  VnZEL10cmn::clsZelItemPrint engine;
  VnZEL10cmn::clsZelRprtPrint reportEngine;
  clsVnError error;
  EXPECT_EQ(engine.ToStringCI(nullptr, &error), "");
  ExpectRunTimeError(error, 91, "ToStringCI");
  ExpectRunTimeError(engine.ErrorObject(), 91, "ToStringCI");
  EXPECT_EQ(engine.ToStringBI(nullptr, &error), "");
  ExpectRunTimeError(error, 91, "ToStringBI");
  EXPECT_EQ(engine.ToStringTRdata(nullptr, &error), "");
  ExpectRunTimeError(error, 91, "ToStringTRdata");
  EXPECT_EQ(reportEngine.ToStringRprt(nullptr, &error), "");
  ExpectRunTimeError(error, 91, "ToStringRprt");
  EXPECT_EQ(reportEngine.ToStringItmRpt(nullptr, &error), "Wird hier nicht unterstützt!");
  EXPECT_FALSE(error.HasError());
}

TEST(RunTimeNumber91, IsAFactoryThatReturnsNone) {
  clsZelItemList list;
  list.ItemFactory(std::make_shared<test::ScriptedFactory>([] { return nullptr; }));
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataSet(FromHex(test::kAnyItem), start));
  ExpectRunTimeError(list.ErrorObject(), 91, "BinaryDataSet");
  EXPECT_EQ(list.ItemCount(), 0);
}

// What is thrown at the caller

/// What the exception says that a call throws; its class must be the one that is named.
template <class Exception, class Call>
std::string TextOf(Call&& call) {
  try {
    call();
  } catch (const Exception& exception) {
    return exception.what();
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}

TEST(ThrownIndex, OfAVatClassSpeaksGerman) {
  clsZelItemCash item;
  clsZelVatItem rates;
  clsZelReport report;
  for (const auto outside : {static_cast<ZELVatClasses>(6), static_cast<ZELVatClasses>(-1)}) {
    EXPECT_EQ(TextOf<std::out_of_range>([&] { (void)item.Price2(outside); }), test::kOutOfRange);
    EXPECT_EQ(TextOf<std::out_of_range>([&] { item.Price2(outside, 1); }), test::kOutOfRange);
    EXPECT_EQ(TextOf<std::out_of_range>([&] { (void)rates.VatRate2(outside); }), test::kOutOfRange);
    EXPECT_EQ(TextOf<std::out_of_range>([&] { rates.VatRate2(outside, 1); }), test::kOutOfRange);
  }
  EXPECT_EQ(TextOf<std::out_of_range>([&] { rates.VatRate2(static_cast<ZELVatClasses>(6), -1); }),
            test::kOutOfRange);
  for (const auto outside : {static_cast<ZELVatClasses>(9), static_cast<ZELVatClasses>(-1)}) {
    EXPECT_EQ(TextOf<std::out_of_range>([&] { (void)report.Container2(outside); }), test::kOutOfRange);
  }
}

TEST(ThrownIndex, OfARateSetSpeaksGerman) {
  clsZelVatList list;
  EXPECT_EQ(TextOf<std::out_of_range>([&] { (void)list.VatItem(0); }), test::kOutOfRange);
  list.Clear();
  EXPECT_EQ(TextOf<std::out_of_range>([&] { (void)list.VatItem(0); }), test::kOutOfRange);
}

TEST(ThrownIndex, OfABytesArraySpeaksGerman) {
  clsHelper01 helper;
  const ByteArray bytes = FromHex("01 02");
  EXPECT_EQ(TextOf<std::out_of_range>([&] { helper.BytesToLong(bytes, 0); }), test::kOutOfRange);
  EXPECT_EQ(TextOf<std::out_of_range>([&] { helper.BytesToLong(bytes, -1, 1, true); }), test::kOutOfRange);
  EXPECT_EQ(TextOf<std::out_of_range>([&] { helper.BytesToPString(bytes, 0, 3); }), test::kOutOfRange);
  ByteArray array = bytes;
  EXPECT_EQ(TextOf<std::out_of_range>([&] { array[2] = 1; }), test::kOutOfRange);
  EXPECT_EQ(TextOf<std::out_of_range>([&] { (void)bytes[-1]; }), test::kOutOfRange);
  EXPECT_EQ(TextOf<std::out_of_range>([] { (void)ByteArray::WithBounds(5, 3); }), test::kOutOfRange);
  EXPECT_EQ(TextOf<std::out_of_range>([&] { array.Redim(0, -2); }), test::kOutOfRange);
  EXPECT_EQ(TextOf<std::out_of_range>([&] { array.RedimPreserve(-2); }), test::kOutOfRange);
}

TEST(ThrownOverflow, OfCurrencySpeaksGerman) {
  EXPECT_EQ(TextOf<std::overflow_error>([] { (void)(kMost + Currency(1)); }), test::kOverflow);
  EXPECT_EQ(TextOf<std::overflow_error>([] { (void)(kLeast - Currency(1)); }), test::kOverflow);
  EXPECT_EQ(TextOf<std::overflow_error>([] { (void)-kLeast; }), test::kOverflow);
  EXPECT_EQ(TextOf<std::overflow_error>([] { (void)Currency(std::numeric_limits<std::int64_t>::max()); }),
            test::kOverflow);
  EXPECT_EQ(TextOf<std::overflow_error>([] { (void)Currency(1e300); }), test::kOverflow);
  EXPECT_EQ(TextOf<std::overflow_error>([] { (void)Currency(std::numeric_limits<double>::quiet_NaN()); }),
            test::kOverflow);
}

TEST(ThrownOverflow, OfAnIntegerSpeaksGerman) {
  clsHelper01 helper;
  EXPECT_EQ(TextOf<std::overflow_error>([&] { helper.CurrencyToLong(kMost); }), test::kOverflow);
}

TEST(ThrownDate, ThatDoesNotExistSpeaksGerman) {
  EXPECT_EQ(TextOf<std::invalid_argument>([] { (void)Date::FromCivil(2026, 13, 1); }), test::kTypeMismatch);
  EXPECT_EQ(TextOf<std::invalid_argument>([] { (void)Date::FromCivil(2026, 2, 29); }), test::kTypeMismatch);
  EXPECT_EQ(TextOf<std::overflow_error>([] { (void)Date(1e12).ToCivil(); }), test::kOverflow);
}

}  // namespace
