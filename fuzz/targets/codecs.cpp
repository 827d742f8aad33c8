// Text codecs, hashes, and the byte and text helpers.

#include <openssl/evp.h>
#include <openssl/sha.h>

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/codec/internal/Sha.h"
#include "VnZEL10cmn/codec/internal/TextCodecs.h"
#include "fuzz/Records.h"
#include "fuzz/Targets.h"

namespace fuzz {

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsHelper01;

std::string WithoutBreaks(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c != '\r' && c != '\n') {
      result.push_back(c);
    }
  }
  return result;
}

/// Replacement characters that can't be told from what else stands in a Base64 text.
bool IsAmbiguous(const std::string& replacement) {
  return replacement.find_first_of("=\r\n") != std::string::npos || !IsUtf8(replacement);
}

/// The bytes that a range of an array means, or a refusal.
struct Range {
  std::int32_t refusal = 0;
  std::vector<std::uint8_t> bytes;
};

Range RangeOf(const ByteArray& array, std::int32_t start, std::int32_t count) {
  Range range;
  const std::int64_t upper = array.UBound();
  const std::int64_t first = start < 1 ? 0 : start;
  if (array.size() == 0) {
    return range;
  }
  if (array.LBound() < 0) {
    range.refusal = 9102;
  } else if (start >= 1 && start > upper) {
    range.refusal = 9103;
  } else if (first < array.LBound()) {
    range.refusal = 9;  // an index outside the array
  } else {
    const std::int64_t last = count >= 1 && first + count - 1 < upper ? first + count - 1 : upper;
    range.bytes.assign(array.begin() + (first - array.LBound()), array.begin() + (last - array.LBound() + 1));
  }
  return range;
}

/// No line is broken before `lineLength` characters, only the last one is longer, by one, and no line is broken for
/// the sake of one character.
void CheckLines(const std::string& text, std::size_t lineLength) {
  std::size_t at = 0;
  for (std::size_t end = text.find("\r\n"); end != std::string::npos; end = text.find("\r\n", at)) {
    FUZZ_CHECK(end - at == lineLength);
    at = end + 2;
  }
  FUZZ_CHECK(text.size() - at <= lineLength + 1);
  FUZZ_CHECK(at == 0 || text.size() - at >= 2);
}

void EncodeBase64(Input& input) {
  clsHelper01 helper;
  const std::string plus = input.Text();
  const std::string slash = input.Text();
  const auto start = input.Number<std::int8_t>();
  const auto count = input.Number<std::int8_t>();
  const std::int32_t lineLength = input.Byte();
  const ByteArray data = TakePlace(input).buffer;
  std::string text = "before";
  const bool done = helper.ToBase64String(data, text, start, count, lineLength, plus, slash);
  CheckOutcome(helper, done, "ToBase64String");
  if (!done && helper.ErrorObject().ErrorNr() == 9101) {
    FUZZ_CHECK(text == "before");
    return;
  }
  const Range range = RangeOf(data, start, count);
  FUZZ_CHECK(done == (range.refusal == 0));
  if (!done) {
    FUZZ_CHECK(text == "before" && helper.ErrorObject().ErrorNr() == range.refusal);
    return;
  }
  FUZZ_CHECK(IsUtf8(text));
  if (IsAmbiguous(plus + slash)) {
    return;
  }
  FUZZ_CHECK(text.empty() == range.bytes.empty());
  if (lineLength >= 12 && plus == "+" && slash == "/") {
    CheckLines(text, static_cast<std::size_t>(lineLength));
  }
  ByteArray again;
  if (!text.empty()) {
    FUZZ_CHECK(helper.FromBase64String(text, again, plus, slash));
  }
  FUZZ_CHECK(Content(again) == range.bytes);
}

void DecodeBase64(Input& input) {
  clsHelper01 helper;
  const std::string plus = input.Text();
  const std::string slash = input.Text();
  const std::string text = Input::TextOf(input.Rest());
  ByteArray bytes = {1, 2, 3};
  const bool done = helper.FromBase64String(text, bytes, plus, slash);
  CheckOutcome(helper, done, "FromBase64String");
  if (done) {
    // One text of these bytes is read as these bytes again.
    std::string again;
    ByteArray bytesAgain;
    FUZZ_CHECK(bytes.LBound() == 0 && bytes.size() <= text.size() / 4 * 3);
    FUZZ_CHECK(helper.ToBase64String(bytes, again, 0, 0, 0, plus, slash));
    if (!again.empty() && !IsAmbiguous(plus + slash)) {
      FUZZ_CHECK(helper.FromBase64String(again, bytesAgain, plus, slash));
      FUZZ_CHECK(bytesAgain == bytes);
    }
  }
}

/// Base32 told bit by bit.
std::string Base32Of(const std::vector<std::uint8_t>& bytes, bool hexAlphabet) {
  const std::string digits =
      hexAlphabet ? "0123456789ABCDEFGHIJKLMNOPQRSTUV" : "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567";
  std::string text;
  for (std::size_t bit = 0; bit < bytes.size() * 8; bit += 5) {
    unsigned digit = 0;
    for (std::size_t i = bit; i < bit + 5; ++i) {
      digit = digit * 2 + (i / 8 < bytes.size() ? (bytes[i / 8] >> (7 - i % 8)) & 1U : 0U);
    }
    text.push_back(digits[digit]);
  }
  text.append((8 - text.size() % 8) % 8, '=');
  return text;
}

void EncodeBase32(Input& input) {
  clsHelper01 helper;
  const bool hexAlphabet = input.Flag();
  const auto start = input.Number<std::int8_t>();
  const auto count = input.Number<std::int8_t>();
  const std::int32_t lineLength = input.Byte();
  const ByteArray data = TakePlace(input).buffer;
  std::string text = "before";
  const bool done = helper.ToBase32String(data, text, start, count, lineLength, hexAlphabet);
  CheckOutcome(helper, done, "ToBase32String");
  const Range range = RangeOf(data, start, count);
  FUZZ_CHECK(done == (range.refusal == 0));
  if (!done) {
    FUZZ_CHECK(text == "before" && helper.ErrorObject().ErrorNr() == range.refusal);
    return;
  }
  FUZZ_CHECK(WithoutBreaks(text) == Base32Of(range.bytes, hexAlphabet));
  CheckLines(text, lineLength >= 16 ? static_cast<std::size_t>(lineLength) : text.size() + 1);
}

void DecodeHex(Input& input) {
  clsHelper01 helper;
  const std::string text = Input::TextOf(input.Rest());
  ByteArray bytes = {1, 2, 3};
  const bool done = helper.GetBytesOfBinStr(text, bytes);
  CheckOutcome(helper, done, "GetBytesOfBinStr");
  if (done) {
    std::string again;
    ByteArray bytesAgain;
    FUZZ_CHECK(helper.GetBinStrOfBytes(bytes, again));
    FUZZ_CHECK(again.size() == bytes.size() * 2 && bytes.size() <= text.size() / 2);
    FUZZ_CHECK(again.empty() || (helper.GetBytesOfBinStr(again, bytesAgain) && bytesAgain == bytes));
  }
}

void EncodeHex(Input& input) {
  clsHelper01 helper;
  const std::string separator = input.Text();
  const auto group = input.Number<std::int8_t>();
  const ByteArray data = TakePlace(input).buffer;
  std::string text = "before";
  const bool done = helper.GetBinStrOfBytes(data, text, separator, group);
  CheckOutcome(helper, done, "GetBinStrOfBytes");
  FUZZ_CHECK(done == (data.LBound() >= 0));
  if (!done) {
    FUZZ_CHECK(text == "before" && helper.ErrorObject().ErrorNr() == 9102);
    return;
  }
  FUZZ_CHECK(IsUtf8(text));
  ByteArray again;
  if (group < 1 && (separator.empty() || separator == "-") && data.size() > 0) {
    FUZZ_CHECK(helper.GetBytesOfBinStr(text, again) && Content(again) == Content(data));
  }
}

/// The bytes 80 to 9F of code page 1252, each as the low byte of its character.
constexpr std::array<std::uint8_t, 32> kLowBytes = {
    0xAC, 0x81, 0x1A, 0x92, 0x1E, 0x26, 0x20, 0x21, 0xC6, 0x30, 0x60, 0x39, 0x52, 0x8D, 0x7D, 0x8F,
    0x90, 0x18, 0x19, 0x1C, 0x1D, 0x22, 0x13, 0x14, 0xDC, 0x22, 0x61, 0x3A, 0x53, 0x9D, 0x7E, 0x78};

/// Hashes of bytes against those of another library.
void HashBytes(Input& input) {
  clsHelper01 helper;
  const ByteArray data = TakePlace(input).buffer;
  ByteArray sha1 = {1};
  ByteArray sha256 = {2};
  const bool done = helper.GetSHA1Hash1(data, sha1);
  CheckOutcome(helper, done, "GetSHA1Hash1");
  FUZZ_CHECK(helper.GetSHA256Hash1(data, sha256) == done);
  CheckOutcome(helper, done, "GetSHA256Hash1");
  FUZZ_CHECK(done == (data.LBound() == 0));
  if (!done) {
    FUZZ_CHECK(sha1 == ByteArray{1} && sha256 == ByteArray{2});
    return;
  }
  std::vector<std::uint8_t> bytes = Content(data);
  std::vector<std::uint8_t> expected(SHA_DIGEST_LENGTH);
  SHA1(bytes.data(), bytes.size(), expected.data());
  FUZZ_CHECK(Content(sha1) == expected);
  for (std::uint8_t& byte : bytes) {
    byte = byte >= 0x80 && byte <= 0x9F ? kLowBytes[byte - 0x80U] : byte;
  }
  expected.resize(SHA256_DIGEST_LENGTH);
  SHA256(bytes.data(), bytes.size(), expected.data());
  FUZZ_CHECK(Content(sha256) == expected);
}

void HashText(Input& input) {
  clsHelper01 helper;
  const std::string text = Input::TextOf(input.Rest());
  ByteArray bytes;
  ByteArray decoded;
  std::string digits;
  FUZZ_CHECK(helper.GetSHA1Hash(text, bytes) && helper.GetSHA1Hash2(text, digits));
  FUZZ_CHECK(digits.size() == 40 && helper.GetBytesOfBinStr(digits, decoded) && decoded == bytes);
  FUZZ_CHECK(helper.GetSHA256Hash(text, bytes) && helper.GetSHA256Hash2(text, digits));
  FUZZ_CHECK(digits.size() == 64 && helper.GetBytesOfBinStr(digits, decoded) && decoded == bytes);
  FUZZ_CHECK(VnZEL10cmn::clsSHA256().SHA256(text) == digits);
}

void Texts(Input& input) {
  clsHelper01 helper;
  const auto length = input.Number<std::int8_t>();
  const std::string text = Input::TextOf(input.Rest());
  const std::string name = helper.ZEL_CharReplace(text, length);
  FUZZ_CHECK(name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789#") == std::string::npos);
  FUZZ_CHECK(name.size() <= static_cast<std::size_t>(length < 0 ? 0 : length));
  FUZZ_CHECK(helper.ZEL_CharReplace(name, length) == name);
  std::vector<std::string> lines = {"before"};
  FUZZ_CHECK(helper.GetLinesOfString(text, lines) && !lines.empty());
  for (const std::string& line : lines) {
    FUZZ_CHECK(line.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos);
  }
}

void Numbers(Input& input) {
  clsHelper01 helper;
  const auto value = input.Number<std::int32_t>();
  const bool bigEndian = input.Flag();
  FUZZ_CHECK(helper.BytesToLong(helper.LongToBytes(value, bigEndian), 0, 4, bigEndian) == value);
  const ByteArray shortened = helper.LongToBytes(value, true, true);
  FUZZ_CHECK(helper.BytesToLong(shortened, 0, static_cast<std::int32_t>(shortened.size()), true) == value);
  FUZZ_CHECK(helper.CurrencyToLong(helper.LongToCurrency(value)) == value);
  const auto byte = static_cast<std::uint8_t>(value);
  FUZZ_CHECK(helper.ByteMirror(helper.ByteMirror(byte)) == byte);
  const auto currency = VnZEL10cmn::Currency::FromScaled(input.Number<std::int64_t>());
  try {
    const std::int32_t whole = helper.CurrencyToLong(currency);
    const auto off = helper.LongToCurrency(whole) - currency;
    const bool isUnsigned =
        currency >= VnZEL10cmn::Currency() && currency <= VnZEL10cmn::Currency(4'294'967'295);
    FUZZ_CHECK(!isUnsigned || (off.Scaled() >= -5'000 && off.Scaled() <= 5'000));
  } catch (const std::overflow_error&) {
    // What lies above 2147483647 has 4294967296 subtracted before it is rounded.
    const std::int64_t scaled = currency.Scaled();
    const std::int64_t subtracted = scaled > 21'474'836'470'000 ? scaled - 42'949'672'960'000 : scaled;
    FUZZ_CHECK(subtracted < -21'474'836'485'000 || subtracted >= 21'474'836'475'000);
  }
  const auto count = input.Number<std::int8_t>();
  const bool withLatin = input.Flag();
  const Place place = TakePlace(input);
  const std::int64_t inside = std::int64_t{place.buffer.UBound()} - place.start + 1;
  const bool starts = place.start >= place.buffer.LBound();
  try {
    const std::string text = helper.BytesToPString(place.buffer, place.start, count, withLatin);
    FUZZ_CHECK(IsUtf8(text));
    FUZZ_CHECK(inside <= 0 ? text.empty() && count <= 0 : starts && count <= inside);
  } catch (const std::out_of_range&) {
    FUZZ_CHECK(!starts || count > inside);
  }
  try {
    helper.BytesToLong(place.buffer, place.start, count, bigEndian);
    FUZZ_CHECK(starts && (count < 1 || count > 4 ? 4 : count) <= inside);
  } catch (const std::out_of_range&) {
    FUZZ_CHECK(!starts || (count < 1 || count > 4 ? 4 : count) > inside);
  }
}

/// Runs a check of the inner loops in every form that this processor has, the portable one among them.
template <class Check>
void OnEveryPath(Check&& check) {
  using VnZEL10cmn::platform::Permitted;
  using VnZEL10cmn::platform::ProcessorInstructions;
  for (const std::string_view names : {"", "ssse3", "ssse3,avx2", "sha"}) {
    check(Permitted(ProcessorInstructions(), names));
  }
}

/// Bytes whose memory ends with the last of them.
void PathsFromBytes(Input& input) {
  const Bytes rest = input.Rest();
  const std::vector<std::uint8_t> bytes(rest.begin(), rest.end());
  std::vector<std::uint8_t> sha1(SHA_DIGEST_LENGTH);
  SHA1(bytes.data(), bytes.size(), sha1.data());
  std::vector<std::uint8_t> sha256(SHA256_DIGEST_LENGTH);
  SHA256(bytes.data(), bytes.size(), sha256.data());
  std::string base64((bytes.size() + 2) / 3 * 4 + 1, '\0');
  EVP_EncodeBlock(reinterpret_cast<unsigned char*>(base64.data()), bytes.data(),
                  static_cast<int>(bytes.size()));
  base64.pop_back();
  std::string hex;
  for (const std::uint8_t byte : bytes) {
    hex.push_back("0123456789ABCDEF"[byte / 16]);
    hex.push_back("0123456789ABCDEF"[byte % 16]);
  }
  OnEveryPath([&](VnZEL10cmn::platform::Instructions path) {
    std::string text = "before";
    FUZZ_CHECK(std::ranges::equal(VnZEL10cmn::internal::Sha1(bytes, path), sha1));
    FUZZ_CHECK(std::ranges::equal(VnZEL10cmn::internal::Sha256(bytes, path), sha256));
    VnZEL10cmn::internal::EncodeBase64(bytes, text, path);
    FUZZ_CHECK(text == base64);
    VnZEL10cmn::internal::EncodeUpperHex(bytes, text, path);
    FUZZ_CHECK(text == hex);
  });
}

/// The bytes of digits of so many bits each, up to the first group of `group` digits that holds anything else.
std::vector<std::uint8_t> DigitBytes(std::string_view text, std::string_view digits, std::size_t bits,
                                     std::size_t group) {
  std::vector<std::uint8_t> bytes;
  for (; text.size() >= group; text.remove_prefix(group)) {
    std::uint32_t value = 0;
    for (const char digit : text.substr(0, group)) {
      const std::size_t found = digits.find(digit);
      if (found == std::string_view::npos) {
        return bytes;
      }
      value = value << bits | static_cast<std::uint32_t>(found % (std::size_t{1} << bits));
    }
    for (std::size_t left = bits * group; left > 0; left -= 8) {
      bytes.push_back(static_cast<std::uint8_t>(value >> (left - 8)));
    }
  }
  return bytes;
}

/// A text whose memory ends with its last character, decoded into as much room as it may take. Characters are sought
/// above any ASCII character but the last, above which there is none.
void PathsFromText(Input& input) {
  const auto low = static_cast<char>(input.Byte() % 127);
  const Bytes rest = input.Rest();
  const std::vector<char> characters(rest.begin(), rest.end());
  const std::string_view text(characters.data(), characters.size());
  const std::vector<std::uint8_t> base64 =
      DigitBytes(text, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/", 6, 4);
  const std::vector<std::uint8_t> hex = DigitBytes(text, "0123456789ABCDEF0123456789abcdef", 4, 2);
  const bool above = std::ranges::all_of(text, [low](char c) { return c > low; });
  OnEveryPath([&](VnZEL10cmn::platform::Instructions path) {
    std::vector<std::uint8_t> out(text.size() / 4 * 3);
    FUZZ_CHECK(VnZEL10cmn::internal::DecodeBase64Digits(text, out, path) == base64.size() / 3 * 4);
    FUZZ_CHECK(std::equal(base64.begin(), base64.end(), out.begin()));
    out = std::vector<std::uint8_t>(text.size() / 2);
    FUZZ_CHECK(VnZEL10cmn::internal::DecodeHexDigits(text, out, path) == hex.size() * 2);
    FUZZ_CHECK(std::equal(hex.begin(), hex.end(), out.begin()));
    FUZZ_CHECK(VnZEL10cmn::internal::AllAbove(text, low, path) == above);
  });
}

}  // namespace

void Codecs(Bytes data) {
  Input input(data);
  switch (input.Between(0, 10)) {
    case 0: EncodeBase64(input); break;
    case 1: DecodeBase64(input); break;
    case 2: EncodeBase32(input); break;
    case 3: DecodeHex(input); break;
    case 4: EncodeHex(input); break;
    case 5: HashBytes(input); break;
    case 6: HashText(input); break;
    case 7: Texts(input); break;
    case 8: Numbers(input); break;
    case 9: PathsFromBytes(input); break;
    default: PathsFromText(input); break;
  }
}

}  // namespace fuzz
