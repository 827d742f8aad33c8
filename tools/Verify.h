#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "softdevice/Verify.h"
#include "tools/Document.h"
#include "tools/JsonWriter.h"

/// Whether the parts of a signed booking's, report's or data record's document belong together.
namespace zel {

/// The checks, in their order.
enum class Check : std::uint8_t { Document, Items, ItemHash, Request, Data, Response, Signature };

/// "item hash" and so on.
std::string_view CheckName(Check check);

struct Verification {
  std::vector<Check> passed;
  std::optional<Check> failed;  ///< none when the document is right
  std::string reason;           ///< why it failed, one line

  DocumentKind kind = DocumentKind::Booking;

  // What the response says, where it could be read. A report's number is its sequence number here; data that is
  // signed as such names no taxpayer and no device.
  std::string taxpayerId;
  std::string runningNumber;
  std::string sequenceNumber;

  [[nodiscard]] bool IsRight() const noexcept { return !failed; }
};

/// Checks a document against the public key of the device that signed it, and stops at the first thing that
/// is not right:
/// - Document: the elements are there, once each, and hold Base64 text; none of another kind of document is;
/// - Items: the item list can be read, and is written as a till writes it; of a report only where it has one;
/// - ItemHash: the hash in the request, which must be readable for that, is that of the item list;
/// - Request: it is, byte by byte, what a till makes of these items, date, operator, currency and flags, with
///   the VAT rates of that date; a report's what a till makes of its date and what belongs to its kind; a data
///   record's has its records in a till's order;
/// - Data: the hash in the request is that of `data`, where given; a booking or report has no data;
/// - Response: the response can be read and holds nothing else;
/// - Signature: the device signed this request and this response. Unsigned reports and those over months fail
///   here.
Verification VerifyDocument(std::string_view xml, const softdevice::PublicKey& publicKey,
                            const std::optional<std::string>& data = std::nullopt);

/// "booking 1 of taxpayer X, device 1": what a document that is right holds.
std::string DescribeSigned(const Verification& verification);

/// The members of an object for programs.
void WriteVerification(const Verification& verification, JsonWriter& json);

}  // namespace zel
