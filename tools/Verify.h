#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Whether the parts of a signed booking's document belong together.
namespace zel {

/// The checks, in their order.
enum class Check : std::uint8_t { Document, Items, ItemHash, Request, Response, Signature };

/// "item hash" and so on.
std::string_view CheckName(Check check);

struct Verification {
  std::vector<Check> passed;
  std::optional<Check> failed;  ///< none when the document is right
  std::string reason;           ///< why it failed, one line

  // What the response says, where it could be read.
  std::string taxpayerId;
  std::string runningNumber;
  std::string sequenceNumber;

  [[nodiscard]] bool IsRight() const noexcept { return !failed; }
};

/// Checks a document against the public key of the device that signed it, and stops at the first thing that
/// is not right:
/// - Document: the elements are there, once each, and hold Base64 text;
/// - Items: the item list can be read, and is written as a till writes it;
/// - ItemHash: the hash in the request, which must be readable for that, is that of the item list;
/// - Request: it is, byte by byte, what a till makes of these items, date, operator, currency and flags, with
///   the VAT rates of that date;
/// - Response: the response can be read and holds nothing else;
/// - Signature: the device signed this request and this response.
Verification VerifyDocument(std::string_view xml, std::string_view publicKeyPem);

std::string VerificationToJson(const Verification& verification, std::string_view file);

}  // namespace zel
