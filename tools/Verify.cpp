#include "tools/Verify.h"

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tools/Document.h"
#include "tools/ExitStatus.h"
#include "tools/Records.h"
#include "tools/Signer.h"
#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::ZelReportType;
using VnZEL10cmn::ZELSerialType;
using VnZEL10cmn::ZelTags;

namespace {

[[noreturn]] void Fail(const std::string& reason) { throw Failure(ExitStatus::NotRight, reason); }

void CheckReadable(const ByteArray& data, RunKind kind) {
  if (const Run run = ReadRun(data, kind); run.fault) Fail(ToText(*run.fault));
}

/// Another way to write the same items would have another hash than the library computes.
void CheckItems(const ByteArray& data, clsZelItemList& items) {
  CheckReadable(data, RunKind::ItemList);
  std::int32_t start = 0;
  if (!items.BinaryDataSet(data, start)) Fail(Describe(items.ErrorObject()));
  ByteArray written;
  std::int32_t length = 0;
  if (!items.BinaryDataGet(written, length)) Fail(Describe(items.ErrorObject()));
  written.RedimPreserve(length - 1);
  if (written != data) {
    const Run found = ReadRun(data, RunKind::ItemList);
    const Run expected = ReadRun(written, RunKind::ItemList);
    Fail("the list is not as a till writes it: " + FirstDifference(found.nodes, expected.nodes));
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

void CheckItemHash(const std::string& found, clsZelItemList& items) {
  std::string hash;
  if (!items.GetItemHash(IsSha256(found), false, false, hash)) Fail(Describe(items.ErrorObject()));
  if (hash != found) Fail("the request holds " + found + ", the items have " + hash);
}

void ExpectRequest(const ByteArray& found, const ByteArray& expected, RunKind kind) {
  if (found != expected) {
    Fail(FirstDifference(ReadRun(found, kind).nodes, ReadRun(expected, kind).nodes));
  }
}

void ExpectDated(VnZEL10cmn::Date date, const std::string& what) {
  if (date <= VnZEL10cmn::clsZelVatItem::EarliestDate()) Fail(what + " isn't dated");
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
  if (!rebuilt.BinaryDataSet(ZELSerialType::ItemList, *document.items, 0))
    Fail(Describe(rebuilt.ErrorObject()));
  ByteArray request;
  if (!rebuilt.BinaryDataGet(ZELSerialType::Request, request, 0)) Fail(Describe(rebuilt.ErrorObject()));
  ExpectRequest(document.request, request, RunKind::Request);
}

void CheckResponse(const ByteArray& data, clsZelTransAct& booking, Verification& result) {
  Take(data, RunKind::Response, ZELSerialType::Response, booking);
  constexpr std::size_t kRecords = 4;
  if (const std::vector<Node> nodes = ReadRun(data, RunKind::Response).nodes; nodes.size() != kRecords) {
    Fail("byte " + std::to_string(nodes[kRecords].position) + ": " + nodes[kRecords].name +
         " doesn't belong behind the signature");
  }
  if (booking.ZelRespSeqNr() <= VnZEL10cmn::Currency()) Fail("the sequence number is 0");
  result.taxpayerId = booking.ZelRespTpID();
  result.runningNumber = FormatDecimal(booking.ZelRespTpIDNr(), 0);
  result.sequenceNumber = FormatDecimal(booking.ZelRespSeqNr(), 0);
}

/// The readers of reports and data records take records in any order, and twice.
std::vector<Node> ReadEachOnce(const ByteArray& data, RunKind kind) {
  std::vector<Node> nodes = ReadRun(data, kind).nodes;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    for (std::size_t before = 0; before < i; ++before) {
      if (nodes[before].tag == nodes[i].tag) {
        Fail("byte " + std::to_string(nodes[i].position) + ": " + nodes[i].name + " occurs twice");
      }
    }
  }
  return nodes;
}

/// What the report's request holds of its items' hash, as Base64; empty when it holds none.
std::string HashIn(const ByteArray& request) {
  const std::vector<Node> nodes = ReadRun(request, RunKind::ReportRequest).nodes;
  const Node* const hash = FindRecord(nodes, ZelTags::Hash_Reprt_Items);
  return hash == nullptr ? std::string() : hash->value;
}

void CheckReportItemHash(const Document& document, clsZelItemList& items) {
  const std::string hash = HashIn(document.request);
  if (!document.items) {
    if (!hash.empty()) Fail("the request holds " + hash + ", but the document has no items");
    return;
  }
  if (hash.empty()) Fail("the document has items, but the request holds no hash of them");
  CheckItemHash(hash, items);
}

/// Builds the request anew from what it says. A deactivation and an unsigned report look like a closing without
/// items.
void CheckReportRequest(const Document& document, const clsZelReport& report) {
  ExpectDated(report.ReportDate(), "the report");
  const std::vector<Node> nodes = ReadRun(document.request, RunKind::ReportRequest).nodes;
  const auto has = [&nodes](ZelTags tag) { return FindRecord(nodes, tag) != nullptr; };
  const ZelReportType type = has(ZelTags::Transport_Pin) ? ZelReportType::ActivateZEL
                             : has(ZelTags::Month_Start) ? ZelReportType::Span
                                                         : ZelReportType::Signed;
  clsZelReport rebuilt;
  rebuilt.ReportDate(report.ReportDate());
  rebuilt.SpanMonthFrom(report.SpanMonthFrom());
  rebuilt.SpanMonthUpTo(report.SpanMonthUpTo());
  rebuilt.TransportPIN(report.TransportPIN());
  rebuilt.UseSHA256(IsSha256(HashIn(document.request)));
  if (document.items && !rebuilt.BinaryDataSet(ZELSerialType::ItemList, *document.items, 0)) {
    Fail(Describe(rebuilt.ErrorObject()));
  }
  ByteArray request;
  if (!rebuilt.BinaryDataGet(ZELSerialType::Request, request, 0, type)) Fail(Describe(rebuilt.ErrorObject()));
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
  const std::vector<Node> nodes = ReadEachOnce(data, RunKind::DataRequest);
  const bool isTimed = FindRecord(nodes, ZelTags::tDate) != nullptr;
  const std::vector<ZelTags> expected =
      isTimed ? std::vector{ZelTags::tDate, ZelTags::tTime, ZelTags::Hash_Trans_Items}
              : std::vector{ZelTags::Hash_Trans_Items};
  for (std::size_t i = 0; i < std::max(nodes.size(), expected.size()); ++i) {
    if (i >= expected.size()) {
      Fail("byte " + std::to_string(nodes[i].position) + ": " + nodes[i].name + " doesn't belong there");
    }
    const auto tag = static_cast<std::uint8_t>(expected[i]);
    if (i >= nodes.size() || nodes[i].tag != tag) Fail(std::string(*TagName(tag)) + " is missing");
  }
  if (isTimed) ExpectDated(record.TransactionDate(), "the data record");
}

void CheckData(const std::string& data, const clsZelTransActData& record) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(data.data());
  clsZelTransActData rebuilt;
  rebuilt.UseSHA256(IsSha256(record.DataHash()));
  if (!rebuilt.BinaryDataSet(ZELSerialType::BinaryData, ByteArray(std::span(bytes, data.size())), 0)) {
    Fail(Describe(rebuilt.ErrorObject()));
  }
  if (rebuilt.DataHash() != record.DataHash()) {
    Fail("the request holds " + record.DataHash() + ", the data has " + rebuilt.DataHash());
  }
}

void CheckDataResponse(const ByteArray& data, clsZelTransActData& record, Verification& result) {
  Take(data, RunKind::DataResponse, ZELSerialType::Response, record);
  const std::vector<Node> nodes = ReadEachOnce(data, RunKind::DataResponse);
  for (const ZelTags tag : {ZelTags::Seq_Nr_Trans, ZelTags::Signature}) {
    if (FindRecord(nodes, tag) == nullptr) {
      Fail(std::string(*TagName(static_cast<std::uint8_t>(tag))) + " is missing");
    }
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
  clsZelItemList items;
  clsZelTransAct booking;
  static_cast<void>(
      Passes(result, Check::Items, [&] { CheckItems(*document.items, items); }) &&
      Holds(result, Check::Request,
            [&] { Take(document.request, RunKind::Request, ZELSerialType::Request, booking); }) &&
      Passes(result, Check::ItemHash, [&] { CheckItemHash(booking.ItemHash(), items); }) &&
      Passes(result, Check::Request, [&] { CheckRequest(document, booking); }) &&
      Passes(result, Check::Response, [&] { CheckResponse(document.response, booking, result); }) &&
      Passes(result, Check::Signature, [&] { CheckSignature(document, publicKey); }));
}

void VerifyReport(const Document& document, const softdevice::PublicKey& publicKey, Verification& result) {
  clsZelItemList items;
  clsZelReport report;
  static_cast<void>(
      (!document.items || Passes(result, Check::Items, [&] { CheckItems(*document.items, items); })) &&
      Holds(result, Check::Request,
            [&] { Take(document.request, RunKind::ReportRequest, ZELSerialType::Request, report); }) &&
      Passes(result, Check::ItemHash, [&] { CheckReportItemHash(document, items); }) &&
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

nlohmann::ordered_json VerificationToJson(const Verification& verification) {
  using Json = nlohmann::ordered_json;
  Json root = {{"ok", verification.IsRight()}};
  Json& passed = root["passed"] = Json::array();
  for (const Check check : verification.passed)
    passed.push_back(CheckName(check));
  root["failed"] = verification.failed ? Json(CheckName(*verification.failed)) : Json();
  root["reason"] = verification.failed ? Json(verification.reason) : Json();
  if (!verification.sequenceNumber.empty()) {
    if (!verification.taxpayerId.empty()) {
      root["taxpayerId"] = verification.taxpayerId;
      root["runningNumber"] = std::stoull(verification.runningNumber);
    }
    const bool isReport = verification.kind == DocumentKind::Report;
    root[isReport ? "reportNumber" : "sequenceNumber"] = std::stoull(verification.sequenceNumber);
  }
  return root;
}

}  // namespace zel
