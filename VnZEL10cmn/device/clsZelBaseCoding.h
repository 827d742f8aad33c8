#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/device/ZelLifeCycle.h"
#include "VnZEL10cmn/device/ZelTags.h"
#include "VnZEL10cmn/device/ZelXmlTags.h"
#include "VnZEL10cmn/errors/VnObject.h"
#include "VnZEL10cmn/types/ByteArray.h"
#include "VnZEL10cmn/types/Currency.h"
#include "VnZEL10cmn/types/Date.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// Reads and writes device records: a tag byte, a length byte (0 to 127) and the value, which is binary,
/// ASCII text, packed BCD or signed packed BCD.
///
/// `Buffer` is addressed by absolute index and its lower bound must not be negative; writers never grow it.
/// `Start` points at the record's tag byte and moves behind the record on success; after a failure it is
/// unchanged. Results by reference keep their values after a failure unless the operation says otherwise. A
/// failed writer leaves the buffer as it was, but for texts with characters that cannot be written. An
/// argument may be the operation's own result.
///
/// Failures that every reader shares: 9202 negative lower bound, 9203 `Start` outside the buffer, 9205
/// `Start` on the last byte, 9204 record beyond the end, 9207 length byte above 127, length outside the
/// field's limits, or (typed readers) another tag than the field's. Writers share 9202, 9203, 9205, 9204, and
/// 9207 for values above 127 bytes; they look at the value before the room, unless they say otherwise. A
/// record that ends with the index 2147483647, behind which there is none, is a run-time fault (6) of both;
/// the result or the buffer may hold the value then.
class VNZEL10CMN_API clsZelBaseCoding : public VnObject {
 public:
  /// A coder without a log file.
  clsZelBaseCoding();
  ~clsZelBaseCoding() override;

  using VnObject::LogHandler;
  /// Attaches a log file, or none, also to the coder's helper.
  void LogHandler(std::shared_ptr<clsVnLogFile> Value) override;

  /// Whether a complete record can be read at `Start`: its value between `MinLen` and `MaxLen` bytes (below
  /// 0: no limit), its tag `Tag` (none: any). A failure shows in `Message` and `VnErrNr` only, not in the
  /// error object; `VnErrNr` keeps its value on success, `Message` is then empty. Memory that runs out is 7.
  bool DataReadBaseCheck(const ByteArray& Buffer, std::int32_t Start, std::string& Message,
                         ZELErrorCodes& VnErrNr, std::int32_t MinLen = -1, std::int32_t MaxLen = -1,
                         ZelTags Tag = ZelTags{});

  /// Whether a record with a value of `Length` bytes can be written at `Start`. Reports as
  /// `DataReadBaseCheck`; a negative `Length` is 9001, before all others.
  bool DataWriteBaseCheck(const ByteArray& Buffer, std::int32_t Start, std::int32_t Length,
                          std::string& Message, ZELErrorCodes& VnErrNr);

  /// Reads the value of any record; `Result` is zero-based.
  bool GetDataBinary(const ByteArray& Buffer, std::int32_t& Start, ByteArray& Result,
                     std::int32_t MinLen = -1, std::int32_t MaxLen = -1);

  /// Reads the value of any record as text of the characters 32 to 127; another byte fails with 9206 and
  /// leaves in `Result` the characters before it, filled up with blanks.
  bool GetDataAscii(const ByteArray& Buffer, std::int32_t& Start, std::string& Result,
                    std::int32_t MinLen = -1, std::int32_t MaxLen = -1);

  /// Writes the bytes from index 0 to the upper bound of `Data`. A negative lower bound of `Data` fails with
  /// 9202, before the room is looked at; a positive one is a run-time fault (9), after it.
  bool SetDataBinary(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, const ByteArray& Data);

  /// Writes a text of the characters 32 to 127. An empty text fails with 9207, before the room is looked at;
  /// so do other characters after it: tag, length and the characters before have then been written.
  bool SetDataAscii(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, std::string_view Data);

  /// Writes True as a record without value, False as nothing at all.
  bool SetDataBool(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, bool Data);

  /// Reads packed BCD as digits without leading zeros; an empty value is an empty text. A nibble above 9
  /// fails with 9208; `Result` then holds the hexadecimal text of the value.
  bool GetDataBcd(const ByteArray& Buffer, std::int32_t& Start, std::string& Result, std::int32_t MinLen = -1,
                  std::int32_t MaxLen = -1);

  /// Reads signed packed BCD as digits without leading zeros, led by "-" when the last nibble is D; any other
  /// one is a plus. Fails with 9208 for another nibble above 9, `Result` then holds the hexadecimal text of
  /// the value; with 9209 for a negative zero, `Result` is then "0"; with 9207 for an empty value.
  bool GetDataBcdSgnd(const ByteArray& Buffer, std::int32_t& Start, std::string& Result,
                      std::int32_t MinLen = -1, std::int32_t MaxLen = -1);

  /// Writes digits as packed BCD, an odd count led by 0; blanks around them do not count. Leading zeros are
  /// dropped, but for the last digit, unless `LeadZeroOk` keeps them. Fails with 9207 for an empty text, 9208
  /// for a character that is no digit.
  bool SetDataBcd(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, std::string_view Data,
                  bool LeadZeroOk = false);

  /// Writes digits followed by the sign letter "C" or "D" as signed packed BCD, an odd count led by 0.
  /// Letters may be small, also stand among the digits, and blanks around the text do not count. Leading
  /// zeros are dropped, all of them: 0 cannot be written. Fails with 9207 for an empty text and when no digit
  /// is left, 9208 without a sign letter at the end and for other characters.
  bool SetDataBcdSgnd(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, std::string_view Data);

  /// Reads the signature, 48 to 64 bytes.
  bool GetZelSignature(const ByteArray& Buffer, std::int32_t& Start, ByteArray& ResultBin);

  /// Reads the lifecycle state: the value as a big-endian integer, also one that has no name. Of more than
  /// four bytes the first four count; an empty value is a run-time fault (9).
  bool GetZelLifeCycle(const ByteArray& Buffer, std::int32_t& Start, ZelLifeCycle& Result);

  /// Reads the serial number as Base64 text and, if wanted, as printable text (see `BytesToPString`).
  bool GetZelSerialNr(const ByteArray& Buffer, std::int32_t& Start, std::string& Result,
                      std::string* ResultAsc = nullptr, bool Asc126Plus = false);

  /// Reads the device version, 7 to 10 characters. This and the other readers of text fail as `GetDataAscii`
  /// does, and leave the same in `Result`.
  bool GetZelVersion(const ByteArray& Buffer, std::int32_t& Start, std::string& Result);

  /// Reads the transport PIN, 6 characters.
  bool GetZelTranspPin(const ByteArray& Buffer, std::int32_t& Start, std::string& Result);

  /// Writes the transport PIN; 9207 unless it has 6 characters, 9206 unless all are digits.
  bool SetZelTranspPin(ByteArray& Buffer, std::int32_t& Start, std::string_view Pin);

  /// Reads the taxpayer ID, 1 to 32 characters.
  bool GetZelTpID(const ByteArray& Buffer, std::int32_t& Start, std::string& Result);

  /// Reads the device's running number for the taxpayer, a counter of 1 to 4 bytes, 0 to 4294967295.
  bool GetZelTpIDNr(const ByteArray& Buffer, std::int32_t& Start, Currency& Result);

  /// Reads the operator, 1 to 16 characters.
  bool GetZelOperator(const ByteArray& Buffer, std::int32_t& Start, std::string& Result);

  /// Writes the operator, 1 to 16 of the characters 32 to 127. A longer text fails with 9207, before the room
  /// is looked at; an empty one and other characters after it, as in `SetDataAscii`.
  bool SetZelOperator(ByteArray& Buffer, std::int32_t& Start, std::string_view Operator);

  /// Reads the item hash of a transaction or of a report, 20 to 32 bytes, as Base64 text; lengths between 20
  /// and 32 fail with 9207.
  bool GetZelHash(const ByteArray& Buffer, std::int32_t& Start, bool IsTrans, std::string& Result);

  /// Writes the item hash, 20 or 32 bytes from index 0 on; another length fails with 9207. A negative lower
  /// bound of `HASH` fails with 9202, a positive one with 9204 or as a run-time fault (9), each after the
  /// room for its bytes is looked at.
  bool SetZelHash(ByteArray& Buffer, std::int32_t& Start, bool IsTrans, const ByteArray& HASH);

  /// Writes the item hash given as Base64 text; 9000 when that can't be decoded, 9207 unless it gives 20 or
  /// 32 bytes.
  bool SetZelHash2(ByteArray& Buffer, std::int32_t& Start, bool IsTrans, std::string_view HASH);

  /// Reads the numeric currency code, big endian; of more than four bytes the first four count. An empty
  /// value is a run-time fault (9).
  bool GetZelCurrencyCode(const ByteArray& Buffer, std::int32_t& Start, std::int32_t& Result);

  /// Writes the numeric currency code, big endian without leading zero bytes (978 is 03 D2); a negative one
  /// as its two's complement, four bytes.
  bool SetZelCurrencyCode(ByteArray& Buffer, std::int32_t& Start, std::int32_t CrncyCode);

  /// Reads the numeric country code, as the currency code is read.
  bool GetZelCountryCode(const ByteArray& Buffer, std::int32_t& Start, std::int32_t& Result);

  /// Reads a counter, 0 to 4294967295, big endian; of more than four bytes the first four count. An empty
  /// value is a run-time fault (9).
  bool GetZelCounter(const ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Currency& Result);

  /// Writes a counter, 0 to 4294967295, big endian without leading zero bytes, as `CurrencyToLong` makes 32
  /// bits of it: fractions are rounded half to even, -1 to -2147483648 are written as their two's complement,
  /// 4294967296 to 6442450943 less 4294967296. What lies outside is a run-time fault (6).
  bool SetZelCounter(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Currency Data);

  /// Reads an amount in cents of 1 to 6 bytes of signed BCD, `LongVal` 1 to 8. Fails with 9208 and 9209 as
  /// `GetDataBcdSgnd` does.
  bool GetZelAmounts(const ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Currency& Result,
                     bool LongVal = false);

  /// Writes an amount, rounded half away from zero to cents, with at most 11 digits; with `LongVal` up to
  /// 9,223,372,036,854.77 in either direction. Fails with 9207 for larger amounts, and for those that round
  /// to 0 cents, these after the room is looked at.
  bool SetZelAmounts(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Currency Amount,
                     bool LongVal = false);

  /// Reads a date: 4 bytes of BCD, year, month and day, as the day's first moment. `Month_Start` is a month
  /// of 3 or 4 bytes, the fourth of which has no influence, as its first moment, `Month_End` as its last
  /// second; `MinLen` 3 reads other tags like `Month_Start`. Another `MinLen` above 0 is the least number of
  /// bytes instead, and the greatest if it is above 4. A date that does not exist or has too few bytes fails
  /// with 9203, a nibble above 9 with 9208. Years below 1000 are not understood.
  bool GetZelDates(const ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Date& Result,
                   std::int32_t MinLen = 0);

  /// Writes year, month and day of a date rounded to seconds, year and month for `Month_Start` and
  /// `Month_End`. A date outside the years 100 to 9999 is a run-time fault (6).
  bool SetZelDates(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Date xDate);

  /// Reads hour and minute (2 bytes of BCD, or 1 with the minute alone) as a time of day without a date. A
  /// time that does not exist fails with 9203, a nibble above 9 with 9208.
  bool GetZelTimes(const ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Date& Result);

  /// Writes hour and minute of a date rounded to seconds, which are dropped. A date outside the years 100 to
  /// 9999 is a run-time fault (6).
  bool SetZelTimes(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Date xDate);

  /// Reads a whole number of 1 to 6 bytes of BCD; a nibble above 9 fails with 9208.
  bool GetZelValsPos(const ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Currency& Result);

  /// Writes a number, rounded half away from zero to a whole one, of at most 11 digits; longer ones fail with
  /// 9204. A negative number, whose sign counts as a digit, fails with 9208, after the room is looked at.
  bool SetZelValsPos(ByteArray& Buffer, std::int32_t& Start, ZelTags Tag, Currency Value);

  /// Reads a VAT rate in percent: 1 to 6 bytes of BCD, in hundredths. A nibble above 9 fails with 9208.
  bool GetZelVatRate(const ByteArray& Buffer, std::int32_t& Start, Currency& Result);

  /// Writes a VAT rate in percent, rounded half away from zero to hundredths; 9203 unless it lies in 0 to
  /// 99.99.
  bool SetZelVatRate(ByteArray& Buffer, std::int32_t& Start, Currency VATrate);

  /// `GetZelCounter` for the tags that hold counters.
  bool GetZelCounterSpc01(const ByteArray& Buffer, std::int32_t& Start, ZelRqstCounter Tag, Currency& Result);

  /// `GetZelAmounts` for the tags that hold amounts.
  bool GetZelAmountsSpc01(const ByteArray& Buffer, std::int32_t& Start, ZelRqstAmounts Tag, Currency& Result,
                          bool LongVal = false);

  /// `SetZelAmounts` for the tags that hold amounts.
  bool SetZelAmountsSpc01(ByteArray& Buffer, std::int32_t& Start, ZelRqstAmounts Tag, Currency Amount,
                          bool LongVal = false);

  /// `GetZelDates` for the tags that hold dates.
  bool GetZelDatesSpc01(const ByteArray& Buffer, std::int32_t& Start, ZelRqstDates Tag, Date& Result,
                        std::int32_t MinLen = 0);

  /// `SetZelDates` for the tags that hold dates.
  bool SetZelDatesSpc01(ByteArray& Buffer, std::int32_t& Start, ZelRqstDates Tag, Date xDate);

  /// The German name of a lifecycle state; "Unbekannt" for one that has none.
  std::string ToStringZelState(ZelLifeCycle State);

  /// The whole buffer as Base64 text, or Base32 text, in groups of `GroupLen` characters (below 1: one group)
  /// separated by `GroupSep` (empty: one blank); that of an empty buffer is empty. A negative lower bound
  /// fails with 9102, a positive one is a run-time fault (9), both of them the helper's.
  bool GetZelSingatureString(const ByteArray& Buffer, std::string& Result, std::int32_t GroupLen = 0,
                             std::string_view GroupSep = " ", bool AsBase32 = false);

  /// Reads the signature, 48 to 64 bytes, and renders it as `GetZelSingatureString` does.
  bool GetZelSignature2(const ByteArray& Buffer, std::int32_t& Start, std::string& Result,
                        std::int32_t GroupLen = 0, std::string_view GroupSep = " ", bool AsBase32 = false);

  /// Finds an element in an XML document and returns its content, Base64 content without what surrounds it,
  /// and for the item list the profile: the first quoted value of its attributes if "profile" stands among
  /// them. Element names are found in either case. Fails with 9211 when the element is missing, incomplete or
  /// out of order, and for a selector that names none; `Result` and `Profile` are then empty.
  bool GetXmlTag(std::string_view DataXML, ZelXmlTags XmlTag, std::string& Result,
                 std::string* Profile = nullptr);

 private:
  /// Runs an operation on the record at `start`: its refusal is filed under its name and puts `start` back.
  template <class Body>
  bool Code(std::string_view operation, std::int32_t& start, Body&& body);
  /// The same for an operation without a record.
  template <class Body>
  bool Code(std::string_view operation, Body&& body);
  /// Runs a check that only tests, whose outcome `message` and `number` receive.
  template <class Check>
  bool Test(Check&& check, std::string& message, ZELErrorCodes& number);

  clsHelper01 helper_;
};

}  // namespace VnZEL10cmn
