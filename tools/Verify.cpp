#include "tools/Verify.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tools/Document.h"
#include "tools/ExitStatus.h"
#include "tools/Items.h"
#include "tools/Records.h"
#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::ZelReportType;
using VnZEL10cmn::ZELSerialType;
using VnZEL10cmn::ZelTags;

namespace {

/// No item is written longer.
constexpr std::int32_t kMostPerItem = 128;

[[noreturn]] void Fail(const std::string& reason) { throw Failure(ExitStatus::NotRight, reason); }

void CheckReadable(const ByteArray& data, RunKind kind) {
  MemoryBytes bytes(data);
  if (const std::optional<Fault> fault = FindFault(bytes, kind)) Fail(ToText(*fault));
}

/// Another way to write the same items would have another hash than the library computes.
void CheckItems(const ByteArray& data) {
  CheckReadable(data, RunKind::ItemList);
  ItemReader reader(data);
  ByteArray written = ByteArray::WithBounds(0, kMostPerItem - 1);
  while (reader.Next()) {
    const std::string item = "Item " + std::to_string(reader.Number()) + ": ";
    std::int32_t length = 0;
    if (!reader.Item().BinaryDataGet(written, length)) Fail(item + Describe(reader.Item().ErrorObject()));
    const std::span<const std::uint8_t> expected = View(written).first(static_cast<std::size_t>(length));
    if (!std::ranges::equal(reader.Bytes(), expected)) {
      MemoryBytes found(reader.Bytes());
      MemoryBytes other(expected);
      Fail("the list is not as a till writes it: " + item + FirstDifference(found, other, RunKind::ItemList));
    }
  }
}

/// Reads a request or response into an object, as a run of that kind.
template <typename Object>
void Take(const ByteArray& data, RunKind kind, ZELSerialType type, Object& object) {
  CheckReadable(data, kind);
  if (!object.BinaryDataSet(type, data, 0)) Fail(Describe(object.ErrorObject()));
}

/// A hash of 20 bytes, 28 characters of Base64, is one of SHA-1.
bool IsSha256(const std::string& hash) {
  constexpr std::size_t kSha1TextLength = 28;
  return hash.size() != kSha1TextLength;
}

/// The hash of items that are as a till writes them is that of their bytes.
void CheckItemHash(const std::string& found, const ByteArray& items) {
  VnZEL10cmn::clsHelper01 helper;
  ByteArray digest;
  std::string hash;
  const bool isMade =
      (IsSha256(found) ? helper.GetSHA256Hash1(items, digest) : helper.GetSHA1Hash1(items, digest)) &&
      helper.ToBase64String(digest, hash);
  if (!isMade) Fail(Describe(helper.ErrorObject()));
  if (hash != found) Fail("the request holds " + found + ", the items have " + hash);
}

void ExpectRequest(const ByteArray& found, const ByteArray& expected, RunKind kind) {
  if (found == expected) return;
  MemoryBytes one(found);
  MemoryBytes other(expected);
  Fail(FirstDifference(one, other, kind));
}

void ExpectDated(VnZEL10cmn::Date date, const std::string& what) {
  if (date <= VnZEL10cmn::clsZelVatItem::EarliestDate()) Fail(what + " isn't dated");
}

/// Puts the hash that is known to be right into a request that was built of other items.
void SetHash(ByteArray& request, RunKind kind, ZelTags tag, const std::string& hash) {
  VnZEL10cmn::clsHelper01 helper;
  ByteArray digest;
  MemoryBytes bytes(request);
  const std::optional<Record> record = FindRecord(bytes, kind, tag);
  if (record && helper.FromBase64String(hash, digest) &&
      digest.size() == static_cast<std::size_t>(record->length)) {
    std::copy(digest.begin(), digest.end(), request.begin() + record->position + 2);
  }
}

/// Builds the request anew from the items and from what the request says about the booking as a whole.
void CheckRequest(const Document& document, const clsZelTransAct& booking) {
  ExpectDated(booking.TransactionDate(), "the booking");
  clsZelTransAct rebuilt;
  rebuilt.VatList(std::make_shared<VnZEL10cmn::clsZelVatList>());
  rebuilt.TransactionDate(booking.TransactionDate());
  rebuilt.Operator(booking.Operator());
  rebuilt.CurrencyCode(booking.CurrencyCode());
  rebuilt.IsTaxExcl(booking.IsTaxExcl());
  rebuilt.IsTraining(booking.IsTraining());
  rebuilt.IsDeliveryNote(booking.IsDeliveryNote());
  rebuilt.UseSHA256(IsSha256(booking.ItemHash()));
  for (const std::shared_ptr<SumItem>& sum : SumItems(*document.items)) {
    if (!rebuilt.AddItem(sum)) Fail(Describe(rebuilt.ErrorObject()));
  }
  ByteArray request;
  if (!rebuilt.BinaryDataGet(ZELSerialType::Request, request, 0)) Fail(Describe(rebuilt.ErrorObject()));
  SetHash(request, RunKind::Request, ZelTags::Hash_Trans_Items, booking.ItemHash());
  ExpectRequest(document.request, request, RunKind::Request);
}

void CheckResponse(const ByteArray& data, clsZelTransAct& booking, Verification& result) {
  Take(data, RunKind::Response, ZELSerialType::Response, booking);
  constexpr int kRecords = 4;
  MemoryBytes bytes(data);
  RunReader reader(bytes, RunKind::Response);
  Record record;
  for (int count = 0; reader.Next(record); ++count) {
    if (count == kRecords) {
      Fail("byte " + std::to_string(record.position) + ": " + std::string(record.name) +
           " doesn't belong behind the signature");
    }
  }
  if (booking.ZelRespSeqNr() <= VnZEL10cmn::Currency()) Fail("the sequence number is 0");
  result.taxpayerId = booking.ZelRespTpID();
  result.runningNumber = FormatDecimal(booking.ZelRespTpIDNr(), 0);
  result.sequenceNumber = FormatDecimal(booking.ZelRespSeqNr(), 0);
}

/// The readers of reports and data records take records in any order, and twice. Of each tag there is one record then.
std::vector<Record> ReadEachOnce(const ByteArray& data, RunKind kind) {
  MemoryBytes bytes(data);
  RunReader reader(bytes, kind);
  std::vector<Record> records;
  Record record;
  while (reader.Next(record)) {
    for (const Record& before : records) {
      if (before.tag == record.tag) {
        Fail("byte " + std::to_string(record.position) + ": " + std::string(record.name) + " occurs twice");
      }
    }
    records.push_back(record);
  }
  return records;
}

bool Has(const std::vector<Record>& records, ZelTags tag) {
  return std::any_of(records.begin(), records.end(),
                     [tag](const Record& record) { return record.tag == tag; });
}

/// What the report's request holds of its items' hash, as Base64; empty when it holds none.
std::string HashIn(const ByteArray& request) {
  MemoryBytes bytes(request);
  const std::optional<Record> hash = FindRecord(bytes, RunKind::ReportRequest, ZelTags::Hash_Reprt_Items);
  return hash ? hash->value : std::string();
}

void CheckReportItemHash(const Document& document) {
  const std::string hash = HashIn(document.request);
  if (!document.items) {
    if (!hash.empty()) Fail("the request holds " + hash + ", but the document has no items");
    return;
  }
  if (hash.empty()) Fail("the document has items, but the request holds no hash of them");
  CheckItemHash(hash, *document.items);
}

/// Builds the request anew from what it says. A deactivation and an unsigned report look like a closing without
/// items.
void CheckReportRequest(const Document& document, const clsZelReport& report) {
  ExpectDated(report.ReportDate(), "the report");
  MemoryBytes bytes(document.request);
  const auto has = [&bytes](ZelTags tag) {
    return FindRecord(bytes, RunKind::ReportRequest, tag).has_value();
  };
  const ZelReportType type = has(ZelTags::Transport_Pin) ? ZelReportType::ActivateZEL
                             : has(ZelTags::Month_Start) ? ZelReportType::Span
                                                         : ZelReportType::Signed;
  clsZelReport rebuilt;
  rebuilt.ReportDate(report.ReportDate());
  rebuilt.SpanMonthFrom(report.SpanMonthFrom());
  rebuilt.SpanMonthUpTo(report.SpanMonthUpTo());
  rebuilt.TransportPIN(report.TransportPIN());
  rebuilt.UseSHA256(IsSha256(HashIn(document.request)));
  // Of the items the request holds the hash alone.
  if (document.items && !rebuilt.AddItem(std::make_shared<SumItem>())) Fail(Describe(rebuilt.ErrorObject()));
  ByteArray request;
  if (!rebuilt.BinaryDataGet(ZELSerialType::Request, request, 0, type)) Fail(Describe(rebuilt.ErrorObject()));
  if (document.items) {
    SetHash(request, RunKind::ReportRequest, ZelTags::Hash_Reprt_Items, HashIn(document.request));
  }
  ExpectRequest(document.request, request, RunKind::ReportRequest);
}

void CheckReportResponse(const ByteArray& data, clsZelReport& report, Verification& result) {
  Take(data, RunKind::ReportResponse, ZELSerialType::Response, report);
  static_cast<void>(ReadEachOnce(data, RunKind::ReportResponse));
  result.taxpayerId = report.TpID();
  result.runningNumber = FormatDecimal(report.TpIdNbr(), 0);
  result.sequenceNumber = FormatDecimal(report.SequenceNbr(), 0);
}

/// The hash stands behind date and time, where there are any.
void CheckDataRequest(const ByteArray& data, const clsZelTransActData& record) {
  const std::vector<Record> records = ReadEachOnce(data, RunKind::DataRequest);
  const bool isTimed = Has(records, ZelTags::tDate);
  const std::vector<ZelTags> expected =
      isTimed ? std::vector{ZelTags::tDate, ZelTags::tTime, ZelTags::Hash_Trans_Items}
              : std::vector{ZelTags::Hash_Trans_Items};
  for (std::size_t i = 0; i < std::max(records.size(), expected.size()); ++i) {
    if (i >= expected.size()) {
      Fail("byte " + std::to_string(records[i].position) + ": " + std::string(records[i].name) +
           " doesn't belong there");
    }
    if (i >= records.size() || records[i].tag != expected[i]) Fail(NameOf(expected[i]) + " is missing");
  }
  if (isTimed) ExpectDated(record.TransactionDate(), "the data record");
}

void CheckData(const std::string& data, const clsZelTransActData& record) {
  clsZelTransActData rebuilt;
  rebuilt.UseSHA256(IsSha256(record.DataHash()));
  if (!rebuilt.BinaryDataSet(ZELSerialType::BinaryData, ByteArray(BytesOf(data)), 0)) {
    Fail(Describe(rebuilt.ErrorObject()));
  }
  if (rebuilt.DataHash() != record.DataHash()) {
    Fail("the request holds " + record.DataHash() + ", the data has " + rebuilt.DataHash());
  }
}

void CheckDataResponse(const ByteArray& data, clsZelTransActData& record, Verification& result) {
  Take(data, RunKind::DataResponse, ZELSerialType::Response, record);
  const std::vector<Record> records = ReadEachOnce(data, RunKind::DataResponse);
  for (const ZelTags tag : {ZelTags::Seq_Nr_Trans, ZelTags::Signature}) {
    if (!Has(records, tag)) Fail(NameOf(tag) + " is missing");
  }
  if (record.ZelRespSeqNr() <= VnZEL10cmn::Currency()) Fail("the sequence number is 0");
  if (!record.ZelRespTpID().empty()) {
    result.taxpayerId = record.ZelRespTpID();
    result.runningNumber = FormatDecimal(record.ZelRespTpIDNr(), 0);
  }
  result.sequenceNumber = FormatDecimal(record.ZelRespSeqNr(), 0);
}

void CheckSignature(const Document& document, const softdevice::PublicKey& publicKey) {
  const auto verify = document.kind == DocumentKind::Report ? softdevice::VerifyReport
                      : document.kind == DocumentKind::Data ? softdevice::VerifyData
                                                            : softdevice::VerifyBooking;
  const softdevice::Verdict verdict = verify(View(document.request), View(document.response), publicKey);
  if (!verdict.ok) Fail(OneLine(verdict.reason));
}

/// Runs a check, or a part of one. False when it failed.
template <typename Body>
bool Holds(Verification& result, Check check, Body&& body) {
  try {
    body();
  } catch (const Failure& failure) {
    result.failed = check;
    result.reason = failure.what();
    return false;
  }
  return true;
}

/// Runs a check to its end.
template <typename Body>
bool Passes(Verification& result, Check check, Body&& body) {
  if (!Holds(result, check, std::forward<Body>(body))) return false;
  result.passed.push_back(check);
  return true;
}

}  // namespace

std::string_view CheckName(Check check) {
  switch (check) {
    case Check::Document: return "document";
    case Check::Items: return "items";
    case Check::ItemHash: return "item hash";
    case Check::Request: return "request";
    case Check::Data: return "data";
    case Check::Response: return "response";
    case Check::Signature: return "signature";
  }
  return {};
}

namespace {

void VerifyBooking(const Document& document, const softdevice::PublicKey& publicKey, Verification& result) {
  clsZelTransAct booking;
  static_cast<void>(
      Passes(result, Check::Items, [&] { CheckItems(*document.items); }) &&
      Holds(result, Check::Request,
            [&] { Take(document.request, RunKind::Request, ZELSerialType::Request, booking); }) &&
      Passes(result, Check::ItemHash, [&] { CheckItemHash(booking.ItemHash(), *document.items); }) &&
      Passes(result, Check::Request, [&] { CheckRequest(document, booking); }) &&
      Passes(result, Check::Response, [&] { CheckResponse(document.response, booking, result); }) &&
      Passes(result, Check::Signature, [&] { CheckSignature(document, publicKey); }));
}

void VerifyReport(const Document& document, const softdevice::PublicKey& publicKey, Verification& result) {
  clsZelReport report;
  static_cast<void>(
      (!document.items || Passes(result, Check::Items, [&] { CheckItems(*document.items); })) &&
      Holds(result, Check::Request,
            [&] { Take(document.request, RunKind::ReportRequest, ZELSerialType::Request, report); }) &&
      Passes(result, Check::ItemHash, [&] { CheckReportItemHash(document); }) &&
      Passes(result, Check::Request, [&] { CheckReportRequest(document, report); }) &&
      Passes(result, Check::Response, [&] { CheckReportResponse(document.response, report, result); }) &&
      Passes(result, Check::Signature, [&] { CheckSignature(document, publicKey); }));
}

void VerifyData(const Document& document, const softdevice::PublicKey& publicKey,
                const std::optional<std::string>& data, Verification& result) {
  clsZelTransActData record;
  static_cast<void>(
      Passes(result, Check::Request,
             [&] {
               Take(document.request, RunKind::DataRequest, ZELSerialType::Request, record);
               CheckDataRequest(document.request, record);
             }) &&
      (!data || Passes(result, Check::Data, [&] { CheckData(*data, record); })) &&
      Passes(result, Check::Response, [&] { CheckDataResponse(document.response, record, result); }) &&
      Passes(result, Check::Signature, [&] { CheckSignature(document, publicKey); }));
}

}  // namespace

Verification VerifyDocument(std::string_view xml, const softdevice::PublicKey& publicKey,
                            const std::optional<std::string>& data) {
  Verification result;
  Document document;
  if (!Passes(result, Check::Document, [&] { document = SplitDocument(xml); })) return result;
  result.kind = document.kind;
  if (document.kind == DocumentKind::Data) {
    VerifyData(document, publicKey, data, result);
    return result;
  }
  const bool isReport = document.kind == DocumentKind::Report;
  if (data && !Passes(result, Check::Data, [isReport] {
        Fail(std::string("the document is that of a ") + (isReport ? "report" : "booking") +
             ", which has no data");
      })) {
    return result;
  }
  (isReport ? VerifyReport : VerifyBooking)(document, publicKey, result);
  return result;
}

std::string DescribeSigned(const Verification& verification) {
  const bool isReport = verification.kind == DocumentKind::Report;
  const std::string what = isReport                                  ? "report "
                           : verification.kind == DocumentKind::Data ? "data record "
                                                                     : "booking ";
  if (verification.taxpayerId.empty()) return what + verification.sequenceNumber;
  return what + verification.sequenceNumber + " of taxpayer " + OneLine(verification.taxpayerId) +
         ", device " + verification.runningNumber;
}

void WriteVerification(const Verification& verification, JsonWriter& json) {
  json.Member("ok", verification.IsRight());
  json.Key("passed");
  json.BeginArray();
  for (const Check check : verification.passed) {
    json.String(CheckName(check));
  }
  json.EndArray();
  if (verification.failed) {
    json.Member("failed", CheckName(*verification.failed));
    json.Member("reason", verification.reason);
  } else {
    json.Key("failed");
    json.Null();
    json.Key("reason");
    json.Null();
  }
  if (verification.sequenceNumber.empty()) return;
  if (!verification.taxpayerId.empty()) {
    json.Member("taxpayerId", verification.taxpayerId);
    json.Key("runningNumber");
    json.Digits(verification.runningNumber);
  }
  const bool isReport = verification.kind == DocumentKind::Report;
  json.Key(isReport ? "reportNumber" : "sequenceNumber");
  json.Digits(verification.sequenceNumber);
}

}  // namespace zel
