#include "tools/Verify.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "softdevice/Verify.h"
#include "tools/Document.h"
#include "tools/ExitStatus.h"
#include "tools/Records.h"
#include "tools/Signer.h"
#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::ZELSerialType;

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

void ReadRequest(const ByteArray& data, clsZelTransAct& booking) {
  CheckReadable(data, RunKind::Request);
  if (!booking.BinaryDataSet(ZELSerialType::Request, data, 0)) Fail(Describe(booking.ErrorObject()));
}

/// A hash of 20 bytes, 28 characters of Base64, is one of SHA-1.
bool IsSha256(const clsZelTransAct& booking) {
  constexpr std::size_t kSha1TextLength = 28;
  return booking.ItemHash().size() != kSha1TextLength;
}

void CheckItemHash(const clsZelTransAct& booking, clsZelItemList& items) {
  std::string hash;
  if (!items.GetItemHash(IsSha256(booking), false, false, hash)) Fail(Describe(items.ErrorObject()));
  if (hash != booking.ItemHash()) {
    Fail("the request holds " + booking.ItemHash() + ", the items have " + hash);
  }
}

/// Builds the request anew from the items and from what the request says about the booking as a whole.
void CheckRequest(const Document& document, const clsZelTransAct& booking) {
  if (booking.TransactionDate() <= VnZEL10cmn::clsZelVatItem::EarliestDate()) Fail("the booking isn't dated");
  clsZelTransAct rebuilt;
  rebuilt.VatList(std::make_shared<VnZEL10cmn::clsZelVatList>());
  rebuilt.TransactionDate(booking.TransactionDate());
  rebuilt.Operator(booking.Operator());
  rebuilt.CurrencyCode(booking.CurrencyCode());
  rebuilt.IsTaxExcl(booking.IsTaxExcl());
  rebuilt.IsTraining(booking.IsTraining());
  rebuilt.IsDeliveryNote(booking.IsDeliveryNote());
  rebuilt.UseSHA256(IsSha256(booking));
  if (!rebuilt.BinaryDataSet(ZELSerialType::ItemList, document.items, 0))
    Fail(Describe(rebuilt.ErrorObject()));
  ByteArray request;
  if (!rebuilt.BinaryDataGet(ZELSerialType::Request, request, 0)) Fail(Describe(rebuilt.ErrorObject()));
  if (request != document.request) {
    const Run found = ReadRun(document.request, RunKind::Request);
    const Run expected = ReadRun(request, RunKind::Request);
    Fail(FirstDifference(found.nodes, expected.nodes));
  }
}

void CheckResponse(const ByteArray& data, clsZelTransAct& booking, Verification& result) {
  CheckReadable(data, RunKind::Response);
  if (!booking.BinaryDataSet(ZELSerialType::Response, data, 0)) Fail(Describe(booking.ErrorObject()));
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

void CheckSignature(const Document& document, std::string_view publicKeyPem) {
  const softdevice::Verdict verdict =
      softdevice::VerifyBooking(View(document.request), View(document.response), publicKeyPem);
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
    case Check::Response: return "response";
    case Check::Signature: return "signature";
  }
  return {};
}

Verification VerifyDocument(std::string_view xml, std::string_view publicKeyPem) {
  Verification result;
  Document document;
  clsZelItemList items;
  clsZelTransAct booking;
  static_cast<void>(
      Passes(result, Check::Document, [&] { document = SplitDocument(xml); }) &&
      Passes(result, Check::Items, [&] { CheckItems(document.items, items); }) &&
      Holds(result, Check::Request, [&] { ReadRequest(document.request, booking); }) &&
      Passes(result, Check::ItemHash, [&] { CheckItemHash(booking, items); }) &&
      Passes(result, Check::Request, [&] { CheckRequest(document, booking); }) &&
      Passes(result, Check::Response, [&] { CheckResponse(document.response, booking, result); }) &&
      Passes(result, Check::Signature, [&] { CheckSignature(document, publicKeyPem); }));
  return result;
}

std::string VerificationToJson(const Verification& verification, std::string_view file) {
  using Json = nlohmann::ordered_json;
  Json root = {{"file", file}, {"ok", verification.IsRight()}};
  Json& passed = root["passed"] = Json::array();
  for (const Check check : verification.passed)
    passed.push_back(CheckName(check));
  root["failed"] = verification.failed ? Json(CheckName(*verification.failed)) : Json();
  root["reason"] = verification.failed ? Json(verification.reason) : Json();
  if (!verification.sequenceNumber.empty()) {
    root["taxpayerId"] = verification.taxpayerId;
    root["runningNumber"] = std::stoull(verification.runningNumber);
    root["sequenceNumber"] = std::stoull(verification.sequenceNumber);
  }
  return root.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace zel
