#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/booking/ZELHashFmt.h"
#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "VnZEL10cmn/errors/internal/Refusal.h"
#include "VnZEL10cmn/items/ZELSerialType.h"
#include "VnZEL10cmn/types/ByteArray.h"
#include "VnZEL10cmn/types/Date.h"

/// What bookings, reports and data records have in common: how bytes go in and out, how the XML document is
/// built and taken apart, how a hash is shown, how dates are kept.
namespace VnZEL10cmn::internal {

inline constexpr std::string_view kPositionLine = "\r\n    Position ........: ";
inline constexpr std::string_view kHashTypeLine = "\r\n    Hash-Typ ........: ";
inline constexpr std::string_view kHashFailed = "##FEHLER##";

/// A function name with the callee that failed: "EncodeRqst.[SetZelDates]".
std::string Via(std::string_view function, std::string_view callee);

/// The name of a hash algorithm in messages.
std::string_view HashType(bool useSha256);

/// A date kept within 1 January 2000 and 31 December 2099, 23:59:59.
Date WithinRange(Date date);

/// Whether a date is one of these bounds: such a request takes the present time.
bool IsUndated(Date date);

/// The day of one date and the time of day of another.
Date Combine(Date day, Date time);

/// A serialisation type that an operation does not know; the header may be empty.
Refusal UnsupportedType(std::string_view header, ZELSerialType type);

/// Copies bytes into the caller's array from `start` on; an array that ends before is refused.
MaybeRefusal CopyOut(const ByteArray& bytes, ByteArray& data, std::int32_t start, std::string_view header);

/// Copies `dataLen` bytes (below 1: all) from `start` on out of the caller's array.
MaybeRefusal CopyIn(const ByteArray& data, std::int32_t start, std::int32_t dataLen, std::string_view header,
                    ByteArray& bytes);

/// A hash as text; empty for no hash.
bool HashText(clsHelper01& helper, clsZelBaseCoding& coder, const ByteArray& hash, ZELHashFmt format,
              std::int32_t groupLen, std::string& text);

/// Why a hash could not be shown.
Refusal HashOutputFailed();

/// Why there is no hash to show.
Refusal HashNotMade(std::string_view reason);
inline constexpr std::string_view kStoredHashUnreadable =
    "Die gespeicherten Daten konnten nicht in das\r\nbinäre Datenfeld geschrieben werden.";

/// An element with text content.
std::string Element(std::string_view name, std::string_view content, std::string_view attribute = {});

/// A document: elements, one per line, in an outer one. `intent` blanks stand before the outer element, twice
/// as many before the inner ones; below 0 everything stands on one line.
std::string Document(std::string_view name, const std::vector<std::string>& elements, std::int32_t intent);

/// A document that can't be written yet; the lines tell what there is.
Refusal NotEnoughData(std::string_view lines);

/// The lines of request and response.
std::string RequestAndResponseLengths(std::size_t request, std::size_t response);

// Reading documents.
inline constexpr std::string_view kTransactionNotFound = "Das Ermitteln der Transaktion schlug fehl!";
inline constexpr std::string_view kNoTransaction = "Es konnte kein Transaktionsdatensatz gefunden werden";
inline constexpr std::string_view kItemsNotFound = "Das Ermitteln der Postenliste schlug fehl!";
inline constexpr std::string_view kNoItems = "Es konnten keine Postendaten gefunden werden!";
inline constexpr std::string_view kRequestNotFound = "Das Ermitteln der ZEL-Anfrage (Buchung) schlug fehl!";
inline constexpr std::string_view kNoRequest = "Es konnten keine Anfragedaten gefunden werden!";
inline constexpr std::string_view kRequestNotBase64 = "Base64-Konvertierung der Anfragedaten fehlgeschlagen!";
inline constexpr std::string_view kRequestNotDecoded = "Dekodieren der Anfragedaten fehlgeschlagen!";
inline constexpr std::string_view kResponseNotFound = "Das Ermitteln der ZEL-Antwort (Buchung) schlug fehl!";
inline constexpr std::string_view kNoResponse = "Es konnten keine Antwortdaten gefunden werden!";
inline constexpr std::string_view kResponseNotBase64 =
    "Base64-Konvertierung der Antwortdaten fehlgeschlagen!";
inline constexpr std::string_view kResponseNotDecoded = "Dekodieren der Antwortdaten fehlgeschlagen!";

// Writing and reading requests and responses.
inline constexpr std::string_view kDateNotWritten = "Das Buchungsdatum konnte nicht geschrieben werden!";
inline constexpr std::string_view kTimeNotWritten = "Die Buchungszeit konnte nicht geschrieben werden!";
inline constexpr std::string_view kHashNotWritten = "Der Posten-Hash konnte nicht geschrieben werden!";
inline constexpr std::string_view kHashNotDecoded =
    "Der Hashkode über die Buchungspositionen konnte nicht\r\n"
    "aus dem Base64- in das Binärformat überführt werden!";
inline constexpr std::string_view kRequestNotEncoded =
    "Die Binärdaten der Anfrage konnten nicht in\r\nin das Base64-Format überführt werden";
inline constexpr std::string_view kTimeNotRead = "Die Buchungszeit konnte nicht gelesen werden!";
inline constexpr std::string_view kTaxpayerNotRead = "Die Steuerpfl.-ID konnte nicht gelesen werden!";
inline constexpr std::string_view kDeviceNotRead = "Die laufende ZEL-Nr konnte nicht gelesen werden!";
inline constexpr std::string_view kSequenceNotRead = "Die Sequenznummer konnte nicht gelesen werden!";
inline constexpr std::string_view kSignatureNotRead = "Die Signatur der Buchung konnte nicht gelesen werden!";
inline constexpr std::string_view kRequestNotStored =
    "Die ZEL-Anfrage der Buchung konnte nicht\r\nin das Base64-Format überführt werden!";
inline constexpr std::string_view kResponseNotStored =
    "Die ZEL-Antwort der Buchung konnte nicht\r\nin das Base64-Format überführt werden!";
inline constexpr std::string_view kContainerUnreadable = "Ein Umsatzcontainer konnte nicht gelesen werden!";
inline constexpr std::string_view kContainerNumberLine = "\r\n    Containernr. ....: ";

}  // namespace VnZEL10cmn::internal
