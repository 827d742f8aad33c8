#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "VnZEL10cmn/errors/VnObject.h"
#include "VnZEL10cmn/types/ByteArray.h"
#include "VnZEL10cmn/types/Currency.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// Conversions that everything else needs: identifiers, device-safe text, bytes and numbers, commercial
/// rounding, Base64, Base32 and hexadecimal text, SHA-1 and SHA-256.
///
/// Operations that return a Boolean leave the reason of a failure in `ErrorObject`, and their `Result` as it
/// was unless they say otherwise. An argument may be the operation's own result. Characters are counted in
/// UTF-16 code units, positions from 1.
class VNZEL10CMN_API clsHelper01 : public VnObject {
 public:
  /// A helper without a log file.
  clsHelper01();
  ~clsHelper01();

  /// A new GUID: 36 upper-case characters without braces; empty when the system has nothing to make one from
  /// (no network address, no random numbers).
  std::string CreateGUID();

  /// Text in the device's restricted character set (a to z, 0 to 9, "#"): blanks removed, cut to `Length`
  /// characters, lower case, every other character a "#". Empty for an empty text or a `Length` below 1.
  std::string ZEL_CharReplace(std::string_view Data, std::int32_t Length);

  /// Splits a text at CR LF, CR, LF and NUL; trailing NULs are dropped first. `LineList` is replaced and
  /// holds at least one line. Always True while there is memory.
  bool GetLinesOfString(std::string_view Data, std::vector<std::string>& LineList);

  /// The byte with its bits in the opposite order.
  std::uint8_t ByteMirror(std::uint8_t Value);

  /// Reads `Count` (1 to 4, anything else counts as 4) bytes from index `Start` as a 32-bit integer. Big
  /// endian: the value of those bytes. Little endian: the bytes fill the integer from its most significant
  /// end, so that fewer than four bytes give a left-aligned value. Throws std::out_of_range for an index
  /// outside the array.
  std::int32_t BytesToLong(const ByteArray& Value, std::int32_t Start, std::int32_t Count = 0,
                           bool BigEndian = false);

  /// The four bytes of an integer, zero-based. `NoZeroBytes` drops up to three zero bytes at the front of
  /// the array.
  ByteArray LongToBytes(std::int32_t Value, bool BigEndian = false, bool NoZeroBytes = false);

  /// Bytes as printable text, one character each: 32 to 126 as they are; 145, 146 and 161 to 255 as their
  /// code page 1252 character when `Asc126Plus` is True; "?" for the others. From `Start` to the end, nothing
  /// when `Start` lies behind it, or `Count` bytes when that is above 0. Throws std::out_of_range for an
  /// index outside the array.
  std::string BytesToPString(const ByteArray& Value, std::int32_t Start, std::int32_t Count = -1,
                             bool Asc126Plus = false);

  /// The integer taken as unsigned: 0 to 4294967295.
  Currency LongToCurrency(std::int32_t Value);

  /// The inverse, half to even. What lies above 2147483647 has 4294967296 subtracted before it is rounded.
  /// Throws std::overflow_error when the result lies outside the 32-bit range, as that of 2147483647.4 does.
  std::int32_t CurrencyToLong(Currency Value);

  /// Rounds half away from zero to `Digits` decimals (0 to 3; others count as 2), in currency arithmetic. An
  /// overflow on the way is filed (6, user-defined False) and gives 0: the amount times 10 to the
  /// power of `Digits`, and one half more, has to be a currency.
  Currency RoundCmrc(Currency Value, std::int32_t Digits = 2);

  /// The same in decimal arithmetic of 28 digits, converted to currency at the end. An overflow (6) or a
  /// text that is not a number in the regional form (13) is filed, user-defined False, and gives 0.
  Currency RoundCmrc2(Currency Value, std::int32_t Digits = 2);
  /// The same for a double, of which 15 significant digits are taken. Infinities and what is not a number are
  /// an overflow.
  Currency RoundCmrc2(double Value, std::int32_t Digits = 2);
  /// The same for a single, of which 7 significant digits are taken: 1.005f gives 1.01, 16777216.0f gives
  /// 16777220.
  Currency RoundCmrc2(float Value, std::int32_t Digits = 2);
  /// The same for an integer.
  Currency RoundCmrc2(std::int64_t Value, std::int32_t Digits = 2);
  /// The same for an integer.
  Currency RoundCmrc2(std::uint64_t Value, std::int32_t Digits = 2);
  /// The same for an integer.
  Currency RoundCmrc2(int Value, std::int32_t Digits = 2) {
    return RoundCmrc2(static_cast<std::int64_t>(Value), Digits);
  }
  /// The same for any other integer. A character is its code, not the digit that it shows; true is 1.
  template <std::integral Integer>
  requires(sizeof(Integer) <= sizeof(std::int64_t)) Currency
      RoundCmrc2(Integer Value, std::int32_t Digits = 2) {
    using Widest = std::conditional_t<std::is_signed_v<Integer>, std::int64_t, std::uint64_t>;
    return RoundCmrc2(static_cast<Widest>(Value), Digits);
  }
  /// The same for a numeric text.
  Currency RoundCmrc2(std::string_view Value, std::int32_t Digits = 2);
  /// The same for a numeric text.
  Currency RoundCmrc2(const char* Value, std::int32_t Digits = 2) {
    return RoundCmrc2(std::string_view(Value), Digits);
  }

  /// Base64 text of the bytes from index `Start` (below 1: from 0), `Count` of them (below 1, or too many:
  /// to the end); that of an empty array is empty. `LineLen` of 12 or more breaks the text with CR LF after
  /// so many characters; the last line may hold one more.
  ///
  /// The first characters of `ReplPlus` and `ReplSlsh` other than blanks stand for "+" and "/"; without one
  /// it is these themselves, and a letter or digit counts as "+" in both.
  ///
  /// Fails with 9101 equal replacement characters, 9102 negative lower bound, 9103 `Start` above the upper
  /// bound. A `Start` below a positive lower bound, 0 among them, is a run-time fault (9).
  bool ToBase64String(const ByteArray& Data, std::string& Result, std::int32_t Start = 0,
                      std::int32_t Count = 0, std::int32_t LineLen = 0, std::string_view ReplPlus = "+",
                      std::string_view ReplSlsh = "/");

  /// Bytes of a Base64 text, zero-based; CR, LF and outer blanks are passed over. Replacement characters as
  /// for `ToBase64String`. A group of four characters with "=" in it gives fewer bytes; if others follow, as
  /// many zeros stand at the end of `Result`.
  ///
  /// Fails with 9101 equal replacement characters, 9105 empty text, 9104 length not a multiple of 4, 9106
  /// invalid character. Run-time faults are a group that begins with "=", such as "====" (6), and an ending
  /// that gives more bytes than its "=" leave room for, which only a replacement character "=" can do (9).
  /// After 9106, 6 and 9 `Result` has its length and holds what was decoded before, the rest zero.
  bool FromBase64String(std::string_view Data, ByteArray& Result, std::string_view ReplPlus = "+",
                        std::string_view ReplSlsh = "/");

  /// Base32 text, padded with "="; `HexEnc` selects the base32hex alphabet. `Start`, `Count` and their
  /// failures (9102, 9103, 9) as for Base64; `LineLen` counts from 16.
  bool ToBase32String(const ByteArray& Data, std::string& Result, std::int32_t Start = 0,
                      std::int32_t Count = 0, std::int32_t LineLen = 0, bool HexEnc = false);

  /// Bytes of a hexadecimal text in either case, zero-based; "-", blanks, CR and LF are passed over, and a
  /// text of nothing else has none. Fails with 9105 empty text, 9104 odd length, 9106 invalid character.
  /// After 9106 `Result` has its length and holds what was decoded before, the rest zero.
  bool GetBytesOfBinStr(std::string_view Data, ByteArray& Result);

  /// Upper-case hexadecimal text of all bytes. The first character of `SepStr`, unless it is one of the
  /// digits 0 to 9 and A to F (small letters are taken), separates bytes, or groups of `GroupLen` digits when
  /// that is 1 or more ("-" when there is none then); grouped text ends with the last group that at least one
  /// more digit follows. Fails with 9102 negative lower bound.
  bool GetBinStrOfBytes(const ByteArray& Data, std::string& Result, std::string_view SepStr = {},
                        std::int32_t GroupLen = 0);

  /// SHA-1 of a text in code page 1252, 20 bytes.
  bool GetSHA1Hash(std::string_view Data, ByteArray& Result);
  /// SHA-1 of the bytes from index 0 to the upper bound, 20 bytes. Fails with 9102 negative lower bound; a
  /// positive one is a run-time fault (9).
  bool GetSHA1Hash1(const ByteArray& Data, ByteArray& Result);
  /// SHA-1 of a text in code page 1252, 40 upper-case hexadecimal digits.
  bool GetSHA1Hash2(std::string_view Data, std::string& Result);

  /// SHA-256 of the low bytes of a text's UTF-16 code units, 32 bytes.
  bool GetSHA256Hash(std::string_view Data, ByteArray& Result);
  /// SHA-256 of the bytes from index 0 to the upper bound, 32 bytes. Each byte passes through its code page
  /// 1252 character and that character's low byte: 80 hashes as AC, 99 as 22. Fails with 9102 negative lower
  /// bound; a positive one is a run-time fault (9).
  bool GetSHA256Hash1(const ByteArray& Data, ByteArray& Result);
  /// SHA-256 of the low bytes of a text's UTF-16 code units, 64 lower-case hexadecimal digits.
  bool GetSHA256Hash2(std::string_view Data, std::string& Result);

 private:
  template <class Value>
  Currency RoundDecimal(Value value, std::int32_t digits);
};

}  // namespace VnZEL10cmn
