#include "softdevice/Verify.h"

#include <array>
#include <optional>

#include "softdevice/Key.h"
#include "softdevice/Records.h"
#include "softdevice/Request.h"

namespace softdevice {

namespace {

constexpr std::array kWithTaxpayer = {Field{tag::kTaxpayerId, true}, Field{tag::kDeviceNumber, true},
                                      Field{tag::kSequenceNumber, true}, Field{tag::kSignature, true}};
constexpr std::array kDataOnly = {Field{tag::kSequenceNumber, true}, Field{tag::kSignature, true}};
constexpr std::array kActivation = {Field{tag::kLifeCycle, true}, Field{tag::kTaxpayerId, true},
                                    Field{tag::kDeviceNumber, true}, Field{tag::kReportNumber, true},
                                    Field{tag::kSignature, true}};
constexpr std::array kClosing = {
    Field{tag::kLifeCycle, true},           Field{tag::kTaxpayerId, true},
    Field{tag::kDeviceNumber, true},        Field{tag::kReportNumber, true},
    Field{tag::kFirstTransaction, true},    Field{tag::kLastTransaction, true},
    Field{tag::kContainerVat1, true},       Field{tag::kContainerVat1 + 1, true},
    Field{tag::kContainerVat1 + 2, true},   Field{tag::kContainerVat1 + 3, true},
    Field{tag::kContainerVat1 + 4, true},   Field{tag::kContainerVat6, true},
    Field{tag::kContainerThirdParty, true}, Field{tag::kContainerDeliveryNote, true},
    Field{tag::kContainerTraining, true},   Field{tag::kSignature, true}};
constexpr std::array kContainer = {Field{tag::kTurnover, false},   Field{tag::kTurnoverNegative, false},
                                   Field{tag::kVat, false},        Field{tag::kVatRate, false},
                                   Field{tag::kThirdParty, false}, Field{tag::kOverflow, false},
                                   Field{tag::kVatChanged, false}};

void CheckContainer(const Record& container) {
  constexpr std::size_t kHeaderLength = 2;
  RecordReader reader(container.value, DescribeTag(container.tag), container.position + kHeaderLength);
  ReadInOrder(reader, kContainer, [](const Record& record) {
    switch (record.tag) {
      case tag::kVatRate: ReadVatRate(record); break;
      case tag::kOverflow:
      case tag::kVatChanged: CheckFlag(record); break;
      default: ReadAmount(record, kLongAmount);
    }
  });
}

/// Checks the response's records and returns that of the signature.
Record ReadResponse(ByteView response, std::span<const Field> fields) {
  Record signature{};
  RecordReader reader(response, "the response");
  ReadInOrder(reader, fields, [&signature](const Record& record) {
    switch (record.tag) {
      case tag::kTaxpayerId: ReadText(record, kMaxTaxpayerIdLength); break;
      case tag::kLifeCycle:
      case tag::kDeviceNumber:
      case tag::kSequenceNumber:
      case tag::kReportNumber:
      case tag::kFirstTransaction:
      case tag::kLastTransaction: ReadCounter(record); break;
      case tag::kSignature:
        ReadSignature(record);
        signature = record;
        break;
      default: CheckContainer(record);
    }
  });
  return signature;
}

/// Whether a request of this kind, which the device would have accepted, got this response. `kind` names it in
/// reasons.
Verdict Verify(Command command, std::span<const Field> fields, ByteView request, ByteView response,
               const PublicKey& publicKey, const std::string& kind) {
  try {
    ReadRequest(command, request);
  } catch (const Refusal& refusal) {
    return {.reason = "the request is no " + kind + ": " + refusal.reason};
  }
  try {
    const Record signature = ReadResponse(response, fields);
    Bytes message(request.begin(), request.end());
    const ByteView signedPart = response.first(signature.position);
    message.insert(message.end(), signedPart.begin(), signedPart.end());
    if (!publicKey.Value().Verify(message, ReadSignature(signature))) {
      return {.reason = "the signature doesn't belong to this request, response and public key"};
    }
    return {true, {}};
  } catch (const Refusal& refusal) {
    return {.reason = "the response is no answer to a " + kind + ": " + refusal.reason};
  } catch (const KeyError& error) {
    return {.reason = error.what()};
  }
}

/// Whether a record with this tag stands among the records as far as they are whole.
bool Has(ByteView records, std::uint8_t tag) {
  RecordReader reader(records, {});
  try {
    while (!reader.AtEnd()) {
      if (reader.Next().tag == tag) {
        return true;
      }
    }
  } catch (const Refusal&) {
    // What comes next says what is wrong with them.
  }
  return false;
}

/// What every verification with this key finds when the key is bad.
std::optional<Verdict> CheckKey(const PublicKey& publicKey) {
  if (publicKey.Error().empty()) return std::nullopt;
  return Verdict{false, "the public key can't be used: " + publicKey.Error(), true};
}

}  // namespace

PublicKey::PublicKey(std::string_view pem) {
  try {
    key_ = std::make_shared<const Key>(Key::FromPublicPem(pem));
  } catch (const KeyError& error) {
    error_ = error.what();
  }
}

const Key& PublicKey::Value() const {
  if (!key_) throw KeyError(error_);
  return *key_;
}

Verdict VerifyBooking(std::span<const std::uint8_t> request, std::span<const std::uint8_t> response,
                      const PublicKey& publicKey) {
  if (const auto bad = CheckKey(publicKey)) return *bad;
  return Verify(Command::SignBooking, kWithTaxpayer, request, response, publicKey, "booking");
}

Verdict VerifyData(std::span<const std::uint8_t> request, std::span<const std::uint8_t> response,
                   const PublicKey& publicKey) {
  if (const auto bad = CheckKey(publicKey)) return *bad;
  const std::string kind = "data record";
  if (Has(request, tag::kDate)) {
    return Verify(Command::SignDataAndTime, kWithTaxpayer, request, response, publicKey, kind);
  }
  if (Has(response, tag::kTaxpayerId)) {
    return Verify(Command::SignDataAndTpId, kWithTaxpayer, request, response, publicKey, kind);
  }
  return Verify(Command::SignDataOnly, kDataOnly, request, response, publicKey, kind);
}

Verdict VerifyReport(std::span<const std::uint8_t> request, std::span<const std::uint8_t> response,
                     const PublicKey& publicKey) {
  if (const auto bad = CheckKey(publicKey)) return *bad;
  const std::string kind = "signed report";
  if (Has(request, tag::kFirstMonth)) {
    return {.reason = "a report over months is not signed"};
  }
  if (Has(response, tag::kLifeCycle) && !Has(response, tag::kReportNumber) &&
      !Has(response, tag::kSignature)) {
    return {.reason = "an unsigned report is not signed"};
  }
  if (Has(request, tag::kTransportPin)) {
    return Verify(Command::ReportActivate, kActivation, request, response, publicKey, kind);
  }
  // A deactivation has the same records, but for a report hash.
  return Verify(Command::ReportSigned, kClosing, request, response, publicKey, kind);
}

}  // namespace softdevice
