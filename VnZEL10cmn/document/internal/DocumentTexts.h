#pragma once

#include <string>
#include <string_view>

#include "VnZEL10cmn/errors/internal/Refusal.h"

/// The words that more than one kind of document uses.
namespace VnZEL10cmn::internal {

inline constexpr std::string_view kPositionLine = "\r\n    Position ........: ";
inline constexpr std::string_view kHashTypeLine = "\r\n    Hash-Typ ........: ";
inline constexpr std::string_view kHashFailed = "##FEHLER##";

/// A function name with the callee that failed: "EncodeRqst.[SetZelDates]".
std::string Via(std::string_view function, std::string_view callee);

/// The name of a hash algorithm in messages.
std::string_view HashType(bool useSha256);

/// Why a hash could not be shown.
Refusal HashOutputFailed();

/// Why there is no hash to show.
Refusal HashNotMade(std::string_view reason);
inline constexpr std::string_view kStoredHashUnreadable =
    "Die gespeicherten Daten konnten nicht in das\r\nbinäre Datenfeld geschrieben werden.";

// Reading documents.
inline constexpr std::string_view kTransactionNotFound = "Das Ermitteln der Transaktion schlug fehl!";
inline constexpr std::string_view kNoTransaction = "Es konnte kein Transaktionsdatensatz gefunden werden";
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
