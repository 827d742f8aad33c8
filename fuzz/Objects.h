#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/Check.h"
#include "fuzz/Input.h"
#include "fuzz/Records.h"

namespace fuzz {

/// Room for the records of any one item.
inline constexpr std::int32_t kItemRoom = 256;

/// Whether two items hold the same but for name and unit, of which the device's form keeps only a part.
inline bool HaveSameValues(const VnZEL10cmn::clsZelItemCash& left, const VnZEL10cmn::clsZelItemCash& right) {
  bool same = left.Quantity() == right.Quantity() && left.DiscSurc() == right.DiscSurc() &&
              left.Voucher() == right.Voucher() && left.ThirdParty() == right.ThirdParty();
  for (std::int32_t number = 1; number <= 6; ++number) {
    same = same && left.Price(number) == right.Price(number);
  }
  return same;
}

/// Whether two containers hold the same turnover.
inline bool HaveSameTurnover(const VnZEL10cmn::clsZelContainer& left,
                             const VnZEL10cmn::clsZelContainer& right) {
  return left.Turnover() == right.Turnover() && left.TurnoverNeg() == right.TurnoverNeg() &&
         left.TurnoverThrd() == right.TurnoverThrd() && left.VAT() == right.VAT() &&
         left.VATrate() == right.VATrate();
}

/// The forms of a document that hand out bytes into an array of the caller: what is handed out equals `expected`
/// and stands at `start`; an array that is one byte too short is refused and stays as it is.
template <class Get>
void CheckHandOut(const std::vector<std::uint8_t>& expected, Get&& get) {
  constexpr std::int32_t kStart = 5;
  const auto length = static_cast<std::int32_t>(expected.size());
  VnZEL10cmn::ByteArray buffer = Canary(0, kStart + length + 5);
  std::int32_t handedOut = -1;
  FUZZ_CHECK(get(buffer, kStart, &handedOut));
  FUZZ_CHECK(handedOut == length);
  FUZZ_CHECK(IsIntactOutside(buffer, kStart, kStart + length));
  for (std::int32_t i = 0; i < length; ++i) {
    FUZZ_CHECK(buffer[kStart + i] == expected[static_cast<std::size_t>(i)]);
  }
  if (length > 0) {
    VnZEL10cmn::ByteArray tooShort = Canary(0, kStart + length - 2);
    FUZZ_CHECK(!get(tooShort, kStart, &handedOut));
    FUZZ_CHECK(IsIntactOutside(tooShort, 0, 0));
  }
}

/// The bytes of a Base64 text that the library made.
inline std::vector<std::uint8_t> FromBase64(const std::string& text) {
  VnZEL10cmn::ByteArray bytes;
  FUZZ_CHECK(text.empty() || VnZEL10cmn::clsHelper01().FromBase64String(text, bytes));
  return Content(bytes);
}

/// What a document's `BinaryDataSet` is given: a form, an array, a start, a length.
struct Delivery {
  VnZEL10cmn::ZELSerialType type{};
  Place place;
  std::int32_t length = 0;

  /// Three bytes of options, the rest is the array.
  static Delivery Take(Input& input, VnZEL10cmn::ZELSerialType type) {
    Delivery delivery;
    delivery.type = type;
    const std::uint8_t length = input.Byte();
    delivery.length = length == 255   ? std::numeric_limits<std::int32_t>::max()
                      : length == 254 ? std::numeric_limits<std::int32_t>::min()
                                      : length;
    delivery.place = TakePlace(input);
    return delivery;
  }

  /// Number of the refusal that the array, the start and the length bring about, whatever the bytes are; or 0.
  [[nodiscard]] std::int32_t Refusal() const {
    const std::int64_t upper = place.buffer.UBound();
    if (place.start < place.buffer.LBound() || place.start > upper) {
      return 9103;
    }
    return length >= 1 && std::int64_t{place.start} + length - 1 > upper ? 9204 : 0;
  }

  /// The bytes that are meant.
  [[nodiscard]] std::vector<std::uint8_t> Meant() const {
    const auto first = place.buffer.begin() + (std::int64_t{place.start} - place.buffer.LBound());
    return {first, length < 1 ? place.buffer.end() : first + length};
  }
};

/// Hands a delivery to a document and checks what holds for all documents.
template <class Document>
bool Deliver(Document& document, const Delivery& delivery) {
  const bool done =
      document.BinaryDataSet(delivery.type, delivery.place.buffer, delivery.place.start, delivery.length);
  const std::int32_t refusal = delivery.Refusal();
  // Functions further down have their own names.
  CheckOutcome(document, done, refusal != 0 ? "BinaryDataSet" : "");
  FUZZ_CHECK(refusal == 0 || (!done && document.ErrorObject().ErrorNr() == refusal));
  if (!done) {
    FUZZ_CHECK(!document.ErrorObject().ErrorFunction().empty());
  }
  return done;
}

/// A document in whose lines Base64 texts stand: the parts of an input, each led by its length byte, between
/// `opening` and `closing`. The first byte of each part says whether the part stands there as it is instead.
inline std::string XmlElement(Input& input, std::string_view name, std::string_view attribute = {}) {
  const Bytes part = input.Piece();
  const std::uint8_t damage = input.Byte();
  std::string text;
  if (damage == 1) {
    text = Input::TextOf(part);
  } else {
    VnZEL10cmn::clsHelper01().ToBase64String(VnZEL10cmn::ByteArray(part), text, 0, 0, damage == 2 ? 12 : 0);
  }
  std::string element;
  if (damage != 3) {
    element.append("<").append(name).append(attribute).append(">");
  }
  element.append(damage == 4 ? " \r\n" : "").append(text).append(damage == 4 ? "\t " : "");
  if (damage != 5) {
    element.append("</").append(name).append(">");
  }
  return damage == 6 ? std::string() : element;
}

/// Exports a document as often as there are ways to lay it out, and imports each into a document of its own:
/// that one must then hold the same, and export the same. `same(left, right)` compares.
template <class Document, class Same>
void CheckExport(Document& document, Same&& same) {
  for (const std::int32_t intent : {-1, 0, 3}) {
    std::string xml;
    FUZZ_CHECK(document.XmlHandler(xml, true, intent));
    CheckOutcome(document, true, "XmlHandler");
    Document again;
    std::string copy = xml;
    FUZZ_CHECK(again.XmlHandler(copy, false));
    FUZZ_CHECK(copy == xml);
    FUZZ_CHECK(same(document, again));
    FUZZ_CHECK(again.XmlHandler(copy, true, intent));
    FUZZ_CHECK(copy == xml);
  }
}

/// A text that an object makes of itself: there is one, or an error.
template <class Object>
void CheckText(Object& object) {
  const std::string text = object.ToString();
  if (object.HasError()) {
    CheckError(object.ErrorObject(), false, "");
  } else {
    FUZZ_CHECK(IsUtf8(text));
  }
}

}  // namespace fuzz
