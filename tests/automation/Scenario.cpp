#include "Scenario.h"

#include <array>
#include <cstdint>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#ifdef _WIN32
#include "ComApi.h"
namespace api = com;
#else
#include "VnZEL10cmn/VnZEL10cmn.h"
namespace api = VnZEL10cmn;
#endif

namespace scenario {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELDataSignTypes;
using VnZEL10cmn::ZELHashFmt;
using VnZEL10cmn::ZelReportType;
using VnZEL10cmn::ZELSerialType;

namespace {

/// The same numbers everywhere.
class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  std::int64_t Between(std::int64_t least, std::int64_t most) {
    return least + static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(most - least + 1));
  }
  bool OneIn(int count) { return Between(1, count) == 1; }
  bool Coin() { return OneIn(2); }

  template <class Choices>
  auto& Of(Choices& choices) {
    return choices[static_cast<std::size_t>(Between(0, static_cast<std::int64_t>(std::size(choices)) - 1))];
  }

 private:
  std::mt19937_64 engine_;
};

const std::vector<std::string> kTexts = {
    "kaffee",
    "Brötchen",
    "Äpfel, süß (größe 2)",
    "",
    "   käse   ",
    "x",
    "a very long name of an article that no display has room for, and more",
    "tab\there",
    "euro € und €",
    "日本"};
const std::vector<std::string> kUnits = {"", "stk", "kg", "Flasche", "m²", "eine sehr lange Einheit"};

Currency Amount(Random& random) {
  if (random.OneIn(12)) return Currency::FromScaled(random.Between(-99999999999999999, 99999999999999999));
  if (random.OneIn(6)) return Currency::FromScaled(random.Between(-99999999, 99999999));
  return Currency::FromScaled(random.Between(-9999, 99999) * 100);
}

/// Inside the limits: outside them the present time may take its place, which is another one each time.
Date Moment(Random& random) {
  return Date::FromCivil(
      static_cast<std::int32_t>(random.Between(2000, 2099)), static_cast<std::int32_t>(random.Between(1, 12)),
      static_cast<std::int32_t>(random.Between(1, 28)), static_cast<std::int32_t>(random.Between(0, 23)),
      static_cast<std::int32_t>(random.Between(0, 59)));
}

/// The text with the instance IDs in it, which differ each time, left out.
std::string WithoutInstances(std::string text) {
  static constexpr std::string_view kLabel = "Instanz-ID ..........: ";
  constexpr std::size_t kLength = 36;
  for (std::size_t at = text.find(kLabel); at != std::string::npos; at = text.find(kLabel, at + 1)) {
    text.erase(at + kLabel.size(), kLength);
  }
  return text;
}

/// Writes down what is seen.
class Record {
 public:
  explicit Record(std::ostream& out) : out_(out) {}

  void Line(const std::string& what, const std::string& value) { out_ << what << ": " << value << "\n"; }
  void Line(const std::string& what, const char* value) { Line(what, std::string(value)); }
  void Line(const std::string& what, bool value) { Line(what, std::string(value ? "True" : "False")); }
  void Line(const std::string& what, std::int64_t value) { Line(what, std::to_string(value)); }
  void Line(const std::string& what, std::int32_t value) { Line(what, std::to_string(value)); }
  void Line(const std::string& what, Currency value) { Line(what, std::to_string(value.Scaled())); }
  void Line(const std::string& what, Date value) {
    const Date::Civil c = value.ToCivil();
    std::string text;
    for (const std::int32_t part : {c.year, c.month, c.day, c.hour, c.minute, c.second}) {
      text += std::to_string(part) + " ";
    }
    Line(what, text);
  }
  void Line(const std::string& what, const ByteArray& value) {
    std::string text = std::to_string(value.LBound()) + ".." + std::to_string(value.UBound());
    constexpr const char* kDigits = "0123456789ABCDEF";
    for (const std::uint8_t byte : value) {
      text += std::string(" ") + kDigits[byte >> 4] + kDigits[byte & 15];
    }
    Line(what, text);
  }
  template <class Object>
  void Error(Object& object) {
    Line("HasError", object.HasError());
    auto& error = object.ErrorObject();
    Line("  ErrorNr", error.ErrorNr());
    Line("  ErrorMsg", WithoutInstances(error.ErrorMsg()));
    Line("  ErrorFunction", std::string(error.ErrorFunction()));
    Line("  ErrorSource", std::string(error.ErrorSource()));
    Line("  IsUserDef", error.IsUserDef());
  }

 private:
  std::ostream& out_;
};

template <class Document>
void AddItems(Document& document, Random& random, Record& record) {
  for (std::int64_t count = random.Between(0, 6); count > 0; --count) {
    const auto item = std::make_shared<api::clsZelItemCash>();
    std::array<Currency, 6> prices;
    for (Currency& price : prices) {
      if (random.OneIn(3)) price = Amount(random);
    }
    if (random.OneIn(3)) prices = {Amount(random)};
    const Currency quantity = Currency::FromScaled(random.Between(-30000, 1000000));
    const std::string name = random.Of(kTexts);
    const std::string unit = random.Of(kUnits);
    const bool discount = random.OneIn(8);
    const bool voucher = random.OneIn(8);
    const bool thirdParty = random.OneIn(8);
    record.Line("SetItemData",
                item->SetItemData(quantity, name, unit, prices[0], prices[1], prices[3], discount, voucher,
                                  thirdParty, prices[4], prices[5], prices[2]));
    record.Error(*item);
    if (random.OneIn(10)) item->Price(static_cast<std::int32_t>(random.Between(-1, 8)), Amount(random));
    record.Line("Item", item->ToString());
    record.Line("AddItem", document.AddItem(item));
    if (random.OneIn(12)) {
      record.Line("AddItem again", document.AddItem(item));
      record.Error(document);
    }
  }
  if (random.OneIn(8)) {
    record.Line("RemoveItem",
                document.RemoveItem(nullptr, {}, static_cast<std::int32_t>(random.Between(-1, 7))));
    record.Error(document);
  }
  record.Line("ItemCount", document.ItemCount());
  for (const ZELHashFmt format :
       {ZELHashFmt::Base64, ZELHashFmt::Base32, ZELHashFmt::Base32H, ZELHashFmt::Base16}) {
    record.Line("GetItemHash",
                document.GetItemHash(format, random.Coin(), static_cast<std::int32_t>(random.Between(0, 6))));
    record.Error(document);
  }
}

/// The device's answer, sometimes damaged on the way.
ByteArray Transmit(const ByteArray& request, int command, Answers& answers, Random& random) {
  ByteArray response = answers.Next(request, command);
  if (response.size() > 0 && random.OneIn(4)) {
    std::uint8_t& byte = response[static_cast<std::int32_t>(random.Between(0, response.UBound()))];
    byte ^= static_cast<std::uint8_t>(1 << random.Between(0, 7));
  }
  if (response.size() > 0 && random.OneIn(8)) {
    response.RedimPreserve(static_cast<std::int32_t>(random.Between(0, response.UBound() - 1)));
  }
  return response;
}

/// Reads what stands in an array at a position, sometimes a wrong one.
template <class Document>
void Take(Document& document, ZELSerialType type, const ByteArray& data, Random& random, Record& record) {
  const auto start = random.OneIn(10) ? static_cast<std::int32_t>(random.Between(-2, 300)) : data.LBound();
  const auto length = random.OneIn(10) ? static_cast<std::int32_t>(random.Between(-2, 300)) : 0;
  record.Line("BinaryDataSet", document.BinaryDataSet(type, data, start, length));
  record.Error(document);
}

/// Whether `copy` was read; else it still has the time at which it was made.
template <class Document>
bool Exchange(Document& document, Document& copy, Random& random, Record& record) {
  std::string xml;
  record.Line("XmlHandler out",
              document.XmlHandler(xml, true, static_cast<std::int32_t>(random.Between(0, 8))));
  record.Error(document);
  record.Line("Xml", xml);
  if (!xml.empty() && random.OneIn(4)) {
    xml.erase(static_cast<std::size_t>(random.Between(0, static_cast<std::int64_t>(xml.size()) - 1)),
              static_cast<std::size_t>(random.Between(1, 20)));
  }
  const bool isRead = copy.XmlHandler(xml, false);
  record.Line("XmlHandler in", isRead);
  record.Error(copy);
  return isRead;
}

void Show(api::clsZelTransAct& booking, Record& record) {
  record.Line("TransactionDate", booking.TransactionDate());
  record.Line("Operator", std::string(booking.Operator()));
  record.Line("CurrencyCode", booking.CurrencyCode());
  record.Line("IsTaxExcl", booking.IsTaxExcl());
  record.Line("IsTraining", booking.IsTraining());
  record.Line("IsDeliveryNote", booking.IsDeliveryNote());
  record.Line("ZelRqstData", std::string(booking.ZelRqstData()));
  record.Line("ItemHash", std::string(booking.ItemHash()));
  record.Line("ZelRespData", std::string(booking.ZelRespData()));
  record.Line("ZelRespTpID", std::string(booking.ZelRespTpID()));
  record.Line("ZelRespTpIDNr", booking.ZelRespTpIDNr());
  record.Line("ZelRespSeqNr", booking.ZelRespSeqNr());
  record.Line("ZelRespSignature", std::string(booking.ZelRespSignature()));
  for (std::int32_t i = 0; i <= 7; ++i) {
    Currency turnover;
    Currency vat;
    Currency rate;
    booking.GetContainerValues(i, turnover, vat, rate);
    record.Line("Turnover", turnover);
    record.Line("Vat", vat);
    record.Line("Rate", rate);
  }
  record.Line("ToString", booking.ToString());
  record.Error(booking);
}

void Booking(Random& random, Answers& answers, Record& record) {
  api::clsZelTransAct booking;
  if (!random.OneIn(15)) booking.VatList(std::make_shared<api::clsZelVatList>());
  if (random.OneIn(4)) booking.ZelProfile(random.Of(kTexts));
  booking.TransactionDate(Moment(random));
  booking.Operator(random.Of(kTexts));
  if (random.OneIn(6)) booking.CurrencyCode(static_cast<std::int32_t>(random.Between(-5, 70000)));
  booking.IsTaxExcl(random.OneIn(4));
  booking.IsTraining(random.OneIn(6));
  booking.IsDeliveryNote(random.OneIn(6));
  booking.UseSHA256(!random.OneIn(3));
  AddItems(booking, random, record);
  ByteArray request;
  std::int32_t length = -1;
  record.Line("BinaryDataGet", booking.BinaryDataGet(ZELSerialType::Request, request, 0, &length));
  record.Error(booking);
  record.Line("Request", request);
  record.Line("DataLen", length);
  if (request.size() > 0) {
    Take(booking, ZELSerialType::Response, Transmit(request, kSignBooking, answers, random), random, record);
  }
  Show(booking, record);
  api::clsZelTransAct copy;
  if (Exchange(booking, copy, random, record)) Show(copy, record);
  const auto type = static_cast<ZELSerialType>(random.Between(0, 6));
  ByteArray buffer = ByteArray::WithBounds(0, static_cast<std::int32_t>(random.Between(0, 200)));
  record.Line(
      "BinaryDataGet of a type",
      booking.BinaryDataGet(type, buffer, static_cast<std::int32_t>(random.Between(-1, 100)), &length));
  record.Error(booking);
  record.Line("Buffer", buffer);
  record.Line("Clear", booking.Clear());
  record.Line("ItemCount", booking.ItemCount());
  record.Line("ZelRqstData", std::string(booking.ZelRqstData()));
  record.Line("Operator", std::string(booking.Operator()));
  record.Error(booking);
}

void Show(api::clsZelReport& report, Record& record) {
  record.Line("ReportDate", report.ReportDate());
  record.Line("SpanMonthFrom", report.SpanMonthFrom());
  record.Line("SpanMonthUpTo", report.SpanMonthUpTo());
  record.Line("ReportType", static_cast<std::int32_t>(report.ReportType()));
  record.Line("TransportPIN", std::string(report.TransportPIN()));
  record.Line("ZelStatus", static_cast<std::int32_t>(report.ZelStatus()));
  record.Line("TpID", std::string(report.TpID()));
  record.Line("TpIdNbr", report.TpIdNbr());
  record.Line("SequenceNbr", report.SequenceNbr());
  record.Line("TransSeqNrFirst", report.TransSeqNrFirst());
  record.Line("TransSeqNrLast", report.TransSeqNrLast());
  record.Line("Signature", std::string(report.Signature()));
  for (std::int32_t i = 0; i <= 10; ++i) {
    const auto container = report.Container(i);
    record.Line("Turnover", container->Turnover());
    record.Line("TurnoverNeg", container->TurnoverNeg());
    record.Line("TurnoverThrd", container->TurnoverThrd());
    record.Line("VAT", container->VAT());
    record.Line("VATrate", container->VATrate());
    record.Line("OverflowTO", container->OverflowTO());
    record.Line("VATchange", container->VATchange());
  }
  record.Line("ToString", report.ToString());
  record.Error(report);
}

void Report(Random& random, Answers& answers, Record& record) {
  api::clsZelReport report;
  report.ReportDate(Moment(random));
  report.SpanMonthFrom(Moment(random));
  report.SpanMonthUpTo(Moment(random));
  report.UseSHA256(random.Coin());
  if (random.OneIn(3)) report.TransportPIN(random.Coin() ? "123456" : random.Of(kTexts));
  if (random.OneIn(3)) AddItems(report, random, record);
  const auto type = static_cast<ZelReportType>(random.Between(0, 5));
  ByteArray request;
  std::int32_t length = -1;
  record.Line("BinaryDataGet", report.BinaryDataGet(ZELSerialType::Request, request, 0, type, &length));
  record.Error(report);
  record.Line("Request", request);
  if (request.size() > 0) {
    const int command = type == ZelReportType::Unsigned ? kReportUnsigned
                        : type == ZelReportType::Span   ? kReportSpan
                                                        : kReportSigned;
    Take(report, ZELSerialType::Response, Transmit(request, command, answers, random), random, record);
  }
  Show(report, record);
  api::clsZelReport copy;
  if (Exchange(report, copy, random, record)) Show(copy, record);
}

void Show(api::clsZelTransActData& data, Record& record) {
  // Other records have the time at which they were made.
  if (data.DataSignType() == ZELDataSignTypes::DataAndTime) {
    record.Line("TransactionDate", data.TransactionDate());
  }
  record.Line("DataSignType", static_cast<std::int32_t>(data.DataSignType()));
  record.Line("ZelRqstData", std::string(data.ZelRqstData()));
  record.Line("DataToSign", std::string(data.DataToSign()));
  record.Line("ZelRespData", std::string(data.ZelRespData()));
  record.Line("ZelRespTpID", std::string(data.ZelRespTpID()));
  record.Line("ZelRespTpIDNr", data.ZelRespTpIDNr());
  record.Line("ZelRespSeqNr", data.ZelRespSeqNr());
  record.Line("ZelRespSignature", std::string(data.ZelRespSignature()));
  record.Line("DataHash", std::string(data.DataHash()));
  for (const ZELHashFmt format :
       {ZELHashFmt::Base64, ZELHashFmt::Base32, ZELHashFmt::Base32H, ZELHashFmt::Base16}) {
    for (const bool fromMemory : {false, true}) {
      record.Line("GetDataHash", data.GetDataHash(format, fromMemory, 5));
      record.Error(data);
    }
  }
  record.Line("ToString", data.ToString());
  record.Error(data);
}

void DataRecord(Random& random, Answers& answers, Record& record) {
  api::clsZelTransActData data;
  data.TransactionDate(Moment(random));
  data.UseSHA256(random.Coin());
  const auto signType = static_cast<ZELDataSignTypes>(random.Between(1, 3));
  data.DataSignType(signType);
  if (!random.OneIn(10)) {
    const auto lower = static_cast<std::int32_t>(random.OneIn(5) ? random.Between(-3, 4) : 0);
    ByteArray bytes = ByteArray::WithBounds(lower, lower + static_cast<std::int32_t>(random.Between(0, 300)));
    for (std::uint8_t& byte : bytes) {
      byte = static_cast<std::uint8_t>(random.Between(0, 255));
    }
    Take(data, ZELSerialType::BinaryData, bytes, random, record);
  }
  ByteArray request = ByteArray::WithBounds(0, static_cast<std::int32_t>(random.Between(20, 300)));
  std::int32_t length = -1;
  const bool hasRequest = data.BinaryDataGet(ZELSerialType::Request, request, 0, &length);
  record.Line("BinaryDataGet", hasRequest);
  record.Error(data);
  record.Line("Request", request);
  record.Line("DataLen", length);
  if (hasRequest) {
    request.RedimPreserve(length - 1);
    const int command = signType == ZELDataSignTypes::DataOnly      ? kSignDataOnly
                        : signType == ZELDataSignTypes::DataAndTpID ? kSignDataAndTpId
                                                                    : kSignDataAndTime;
    Take(data, ZELSerialType::Response, Transmit(request, command, answers, random), random, record);
  }
  Show(data, record);
  api::clsZelTransActData copy;
  if (Exchange(data, copy, random, record)) Show(copy, record);
}

/// Arrays by reference, with bounds of their own, and everything that is counted in them.
void Records(Random& random, Record& record) {
  api::clsZelBaseCoding coder;
  const auto lower = static_cast<std::int32_t>(random.OneIn(4) ? random.Between(-2, 5) : 0);
  ByteArray buffer = ByteArray::WithBounds(lower, lower + static_cast<std::int32_t>(random.Between(0, 60)));
  auto start = static_cast<std::int32_t>(random.Between(lower - 1, lower + 30));
  const std::int32_t first = start;
  record.Line("SetZelAmounts", coder.SetZelAmounts(buffer, start, VnZEL10cmn::ZelTags::Item_Price1,
                                                   Amount(random), random.Coin()));
  record.Error(coder);
  record.Line("SetZelOperator", coder.SetZelOperator(buffer, start, random.Of(kTexts)));
  record.Error(coder);
  record.Line("Buffer", buffer);
  record.Line("Start", start);
  std::int32_t position = first;
  Currency amount = 7;
  record.Line("GetZelAmounts",
              coder.GetZelAmounts(buffer, position, VnZEL10cmn::ZelTags::Item_Price1, amount, random.Coin()));
  record.Error(coder);
  record.Line("Amount", amount);
  std::string name = "before";
  record.Line("GetZelOperator", coder.GetZelOperator(buffer, position, name));
  record.Error(coder);
  record.Line("Name", name);
  record.Line("Position", position);

  api::clsHelper01 helper;
  std::string text = "before";
  record.Line("ToBase64String",
              helper.ToBase64String(buffer, text, static_cast<std::int32_t>(random.Between(-1, 70)),
                                    static_cast<std::int32_t>(random.Between(-1, 70)),
                                    static_cast<std::int32_t>(random.Between(0, 20))));
  record.Error(helper);
  record.Line("Text", text);
  ByteArray bytes{1, 2, 3};
  record.Line("FromBase64String", helper.FromBase64String(random.OneIn(3) ? random.Of(kTexts) : text, bytes));
  record.Error(helper);
  record.Line("Bytes", bytes);
  record.Line("RoundCmrc2",
              helper.RoundCmrc2(Amount(random), static_cast<std::int32_t>(random.Between(-2, 6))));
  record.Line("ZEL_CharReplace",
              helper.ZEL_CharReplace(random.Of(kTexts), static_cast<std::int32_t>(random.Between(-1, 20))));
  std::vector<std::string> lines;
  record.Line("GetLinesOfString", helper.GetLinesOfString("a\r\nb\nc\rö\r\n" + random.Of(kTexts), lines));
  for (const std::string& line : lines) {
    record.Line("Line", line);
  }
}

}  // namespace

void Run(std::ostream& out, Answers& answers) {
  Record record(out);
  constexpr int kBookings = 600;
  constexpr int kOthers = 150;
  const auto repeat = [&](const char* what, int count, std::uint64_t seed, auto&& one) {
    for (int i = 0; i < count; ++i) {
      record.Line(what, static_cast<std::int32_t>(i));
      Random random(seed + static_cast<std::uint64_t>(i));
      one(random);
    }
  };
  repeat("BOOKING", kBookings, 1000, [&](Random& random) { Booking(random, answers, record); });
  repeat("REPORT", kOthers, 2000, [&](Random& random) { Report(random, answers, record); });
  repeat("DATA RECORD", kOthers, 3000, [&](Random& random) { DataRecord(random, answers, record); });
  repeat("RECORDS", kBookings, 4000, [&](Random& random) { Records(random, record); });
}

}  // namespace scenario
