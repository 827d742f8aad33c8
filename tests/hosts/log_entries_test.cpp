// What a log file holds after a failure: every failure that was filed on the way, from the inside out.

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/hosts/Support.h"

namespace {

using test::Base64;
using test::ByteArray;
using test::clsVnLogFile;
using test::clsZelReport;
using test::clsZelTransAct;
using test::clsZelTransActData;
using test::Entry;
using test::FromHex;
using test::LogEntries;
using test::LogEntry;
using test::LogNames;
using test::Scripted;
using test::ZELHashFmt;
using test::ZELSerialType;
using Entries = std::vector<LogEntry>;
using Names = std::vector<std::string>;

constexpr std::string_view kItems = "A0 01 31 A2 01 78";
// Date, time, operator "A", the SHA-1 hash 00 to 13.
constexpr std::string_view kRequest =
    "CD 04 20 24 03 15 CE 02 14 37 C6 01 41 "
    "C7 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 ";

std::string Element(std::string_view name, std::string_view hex) {
  return "<" + std::string(name) + ">" + Base64(hex) + "</" + std::string(name) + ">";
}

std::string BookingDocument(std::string_view items, std::string_view request, std::string_view response) {
  return "<transactionEncoded>" + Element("itemListEncoded", items) + Element("transactionRequest", request) +
         Element("transactionResponse", response) + "</transactionEncoded>";
}

std::string ReportDocument(std::string_view items, std::string_view request, std::string_view response) {
  return "<reportEncoded>" + Element("itemListEncoded", items) + Element("reportRequest", request) +
         Element("reportResponse", response) + "</reportEncoded>";
}

std::string DataDocument(std::string_view request, std::string_view response) {
  return "<transactionEncoded>" + Element("transactionRequest", request) +
         Element("transactionResponse", response) + "</transactionEncoded>";
}

/// The log after a document was refused; `prepare` is given the object before.
template <class Document, class Prepare>
Entries EntriesOfImport(std::string document, Prepare&& prepare) {
  test::TestLog log;
  Document object;
  prepare(object);
  object.LogHandler(log.Handler());
  EXPECT_FALSE(object.XmlHandler(document, false)) << document;
  const Entries entries = LogEntries(log);
  // The last entry is what the caller sees.
  EXPECT_FALSE(entries.empty());
  if (!entries.empty()) {
    EXPECT_EQ(entries.back().function, object.ErrorObject().ErrorFunction());
    EXPECT_EQ(entries.back().message, test::Latin1(object.ErrorObject().ErrorMsg()));
  }
  return entries;
}

template <class Document>
Entries EntriesOfImport(std::string document) {
  return EntriesOfImport<Document>(std::move(document), [](Document&) {});
}

constexpr std::string_view kBookingRequestFailed = "Dekodieren der Anfragedaten fehlgeschlagen!";
constexpr std::string_view kResponseFailed = "Dekodieren der Antwortdaten fehlgeschlagen!";

LogEntry BookingRequestFailed() {
  return Entry("clsZelTransAct", "DecodeXML.[DecodeRqst]", 9301, kBookingRequestFailed);
}

/// The coder's words for another tag than the expected one, as a detail of the entries below.
std::string OtherTag(int start, std::string_view expected, std::string_view found) {
  return "Es wurde nicht das erwartete Tag gefunden\r\n    Startposition ...: " + std::to_string(start) +
         "\r\n    Tag erwartet ....: " + std::string(expected) +
         "\r\n    Tag gefunden ....: " + std::string(found);
}

// Bookings

TEST(LogOfAnImportedBooking, NamesTheReasonAndThePositionOfAMissingOperator) {
  EXPECT_EQ(
      EntriesOfImport<clsZelTransAct>(
          BookingDocument(kItems, "CD 04 20 24 03 15 CE 02 14 37 C8 02 03 D2", test::kSaleResponse)),
      (Entries{Entry("clsZelBaseCoding", "GetZelOperator", 9207, OtherTag(10, "0xC6 // 198", "0xC8 // 200")),
               Entry("clsZelTransAct", "DecodeRqst.[GetZelOperator]", 9301,
                     "Der Bediener konnte nicht gelesen werden!\r\n    Position ........: 10"),
               BookingRequestFailed()}));
}

TEST(LogOfAnImportedBooking, NamesTheReasonAndThePositionOfAMissingDate) {
  EXPECT_EQ(EntriesOfImport<clsZelTransAct>(BookingDocument(kItems, "CE 02 14 37", test::kSaleResponse)),
            (Entries{Entry("clsZelBaseCoding", "GetZelDates", 9207,
                           "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
                           "    Startposition ...: 0\r\n    Tag .............: 0xCE\r\n"
                           "    Länge ...........: 2\r\n    Mindestlänge ....: 4"),
                     Entry("clsZelTransAct", "DecodeRqst.[GetZelDates]", 9301,
                           "Das Buchungsdatum konnte nicht gelesen werden!\r\n    Position ........: 0"),
                     BookingRequestFailed()}));
}

TEST(LogOfAnImportedBooking, NamesTheReasonAndThePositionOfAMissingTime) {
  EXPECT_EQ(
      EntriesOfImport<clsZelTransAct>(
          BookingDocument(kItems, "CD 04 20 24 03 15 C6 01 41", test::kSaleResponse)),
      (Entries{Entry("clsZelBaseCoding", "GetZelTimes", 9207, OtherTag(6, "0xCE // 206", "0xC6 // 198")),
               Entry("clsZelTransAct", "DecodeRqst.[GetZelTimes]", 9301,
                     "Die Buchungszeit konnte nicht gelesen werden!\r\n    Position ........: 6"),
               BookingRequestFailed()}));
}

TEST(LogOfAnImportedBooking, NamesTheReasonAndThePositionOfAMissingHash) {
  EXPECT_EQ(EntriesOfImport<clsZelTransAct>(BookingDocument(
                kItems, "CD 04 20 24 03 15 CE 02 14 37 C6 01 41 C7 01 00", test::kSaleResponse)),
            (Entries{Entry("clsZelBaseCoding", "GetZelHash", 9207,
                           "Die Mindestlänge für dieses TAG wurde unterschritten\r\n"
                           "    Startposition ...: 13\r\n    Tag .............: 0xC7\r\n"
                           "    Länge ...........: 1\r\n    Mindestlänge ....: 20"),
                     Entry("clsZelTransAct", "DecodeRqst.[GetZelHash]", 9301,
                           "Der Posten-Hash konnte nicht gelesen werden!\r\n    Position ........: 13"),
                     BookingRequestFailed()}));
}

TEST(LogOfAnImportedBooking, NamesTheReasonAndThePositionOfADamagedCurrency) {
  const Entries entries = EntriesOfImport<clsZelTransAct>(
      BookingDocument(kItems, std::string(kRequest) + "C8 00", test::kSaleResponse));
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_EQ(entries[0],
            Entry("clsZelBaseCoding", "GetZelCurrencyCode", 9, "Index außerhalb des gültigen Bereichs"));
  EXPECT_EQ(entries[1], Entry("clsZelTransAct", "DecodeRqst.[GetZelCurrencyCode]", 9301,
                              "Der Währungskode konnte nicht gelesen werden!\r\n"
                              "    Position ........: 35\r\n    Tag .............: C8"));
  EXPECT_EQ(entries[2], BookingRequestFailed());
}

TEST(LogOfAnImportedBooking, NamesTheDamagedContainer) {
  EXPECT_EQ(EntriesOfImport<clsZelTransAct>(
                BookingDocument(kItems, std::string(kRequest) + "E3 02 C6 00", test::kSaleResponse)),
            (Entries{Entry("clsZelTransAct", "DecodeRqst.[clsZelContainer.BinaryDataSet]", 9301,
                           "Ein Umsatzcontainer konnte nicht gelesen werden!\r\n"
                           "    Position ........: 35\r\n    Tag .............: E3\r\n"
                           "    Containernr. ....: 3"),
                     BookingRequestFailed()}));
}

TEST(LogOfAnImportedBooking, NamesTheUnexpectedTag) {
  EXPECT_EQ(EntriesOfImport<clsZelTransAct>(
                BookingDocument(kItems, std::string(kRequest) + "D4 00", test::kSaleResponse)),
            (Entries{Entry("clsZelTransAct", "DecodeRqst", 9305,
                           "Unerwartetes TAG\r\nDas gefundenen TAG (s.u.) darf in\r\n"
                           "ZEL-Umsatz-Containern nicht vorkommen!\r\n    Tag gefunden ....: D4"),
                     BookingRequestFailed()}));
}

TEST(LogOfAnImportedBooking, NamesTheFlagThatCarriesAValue) {
  EXPECT_EQ(EntriesOfImport<clsZelTransAct>(
                BookingDocument(kItems, std::string(kRequest) + "CA 01 00", test::kSaleResponse)),
            (Entries{Entry("clsZelTransAct", "DecodeRqst", 9207,
                           "Die Maximallänge für dieses TAG wurde überschritten\r\n"
                           "    Startposition ...: 35\r\n    Tag .............: 0xCA\r\n"
                           "    Länge ...........: 1\r\n    Maximallänge ....: 0"),
                     BookingRequestFailed()}));
}

TEST(LogOfAnImportedBooking, NamesTheReasonAndThePositionInTheResponse) {
  const LogEntry outer = Entry("clsZelTransAct", "DecodeXML.DecodeResp", 9301, kResponseFailed);
  const std::string request(kRequest);
  EXPECT_EQ(EntriesOfImport<clsZelTransAct>(BookingDocument(kItems, request, "C5 01 02")),
            (Entries{Entry("clsZelBaseCoding", "GetZelTpID", 9207, OtherTag(0, "0xC4 // 196", "0xC5 // 197")),
                     Entry("clsZelTransAct", "DecodeResp.[GetZelTpID]", 9301,
                           "Die Steuerpfl.-ID konnte nicht gelesen werden!\r\n    Position ........: 0"),
                     outer}));
  EXPECT_EQ(
      EntriesOfImport<clsZelTransAct>(BookingDocument(kItems, request, "C4 01 41 CB 01 02")),
      (Entries{Entry("clsZelBaseCoding", "GetZelTpIDNr", 9207, OtherTag(3, "0xC5 // 197", "0xCB // 203")),
               Entry("clsZelTransAct", "DecodeResp.[GetZelTpIDNr]", 9301,
                     "Die laufende ZEL-Nr konnte nicht gelesen werden!\r\n    Position ........: 3"),
               outer}));
  EXPECT_EQ(
      EntriesOfImport<clsZelTransAct>(BookingDocument(kItems, request, "C4 01 41 C5 01 02 9E 01 00")),
      (Entries{Entry("clsZelBaseCoding", "GetZelCounter", 9207, OtherTag(6, "0xCB // 203", "0x9E // 158")),
               Entry("clsZelTransAct", "DecodeResp.[GetZelCounter]", 9301,
                     "Die Sequenznummer konnte nicht gelesen werden!\r\n    Position ........: 6"),
               outer}));
  const Entries signature = EntriesOfImport<clsZelTransAct>(
      BookingDocument(kItems, request, "C4 01 41 C5 01 02 CB 01 03 9E 01 00"));
  ASSERT_EQ(signature.size(), 3U);
  EXPECT_EQ(signature[0].source, "clsZelBaseCoding");
  EXPECT_EQ(signature[0].function, "GetZelSignature2") << "the accessor hands on its primitive's failure";
  EXPECT_EQ(signature[1], Entry("clsZelTransAct", "DecodeResp.[GetZelSignature2]", 9301,
                                "Die Signatur der Buchung konnte nicht gelesen werden!\r\n"
                                "    Position ........: 9"));
  EXPECT_EQ(signature[2], outer);
}

TEST(LogOfAnImportedBooking, NamesTheDamagedItemAtEveryLevel) {
  EXPECT_EQ(EntriesOfImport<clsZelTransAct>(
                BookingDocument("A0 01 31 A2 01 78 A0 01 32 C7 00", kRequest, test::kSaleResponse)),
            (Entries{Entry("clsZelItemCash", "BinaryDataSet", 9305,
                           "Unerwartetes TAG\r\nDas gefundenen TAG (s.u.) darf in\r\n"
                           "ZEL-Umsatz-Containern nicht vorkommen!\r\n    Tag gefunden ....: C7"),
                     Entry("clsZelItemList", "BinaryDataSet", 9307,
                           "Ein Buchungsposten konnte nicht dekodiert werden\r\n"
                           "    Start ...........: 0\r\n    Tag .............: 01\r\n"
                           "    lfd. Postennr. ..: 2"),
                     Entry("clsZelTransAct", "DecodeItems.[mObjItemList.BinaryDataSet]", 9301,
                           "Buchung: Dekodieren der Postenliste nicht möglich!\r\n"
                           "Das Listenobjekt meldete einen Fehler"),
                     Entry("clsZelTransAct", "DecodeXML.[BinaryDataSet]", 9301,
                           "Schreiben der Postendaten fehlgeschlagen!")}));
}

/// A factory of items that can be read but not written.
std::shared_ptr<test::ScriptedFactory> ItemsThatCannotBeWritten() {
  return std::make_shared<test::ScriptedFactory>([] {
    auto item = Scripted("HOST");
    item->write = [](ByteArray&, std::int32_t&) { return false; };
    return item;
  });
}

constexpr std::string_view kItemNotWritten =
    "Das Serialisieren von Daten ist fehlgeschlagen.\r\n"
    "    Posten-Index ........: 1 (1-basisiert)\r\n    Startpos ............: 0\r\n"
    "    Instanz-ID ..........: HOST";

TEST(LogOfAnImportedBooking, NamesTheItemThatCannotBeHashed) {
  EXPECT_EQ(EntriesOfImport<clsZelTransAct>(
                BookingDocument(kItems, kRequest, test::kSaleResponse),
                [](clsZelTransAct& booking) { booking.ItemFactory(ItemsThatCannotBeWritten()); }),
            (Entries{Entry("clsZelItemList", "BinaryDataGet", 9301, kItemNotWritten),
                     Entry("clsZelTransAct", "DecodeItems.[mObjItemList.GetItemHash]", 9301,
                           "Der Hashcode der Buchungsposten konnte nicht in\r\n"
                           "das Base64-Format überführt werden."),
                     Entry("clsZelTransAct", "DecodeXML.[BinaryDataSet]", 9301,
                           "Schreiben der Postendaten fehlgeschlagen!")}));
}

TEST(LogOfAnImportedBooking, HoldsOneEntryWhereOnlyTheImportFilesAFailure) {
  EXPECT_EQ(
      EntriesOfImport<clsZelTransAct>("<transactionEncoded></itemListEncoded>oAEx</transactionEncoded>"),
      (Entries{Entry("clsZelBaseCoding", "GetXmlTag", 9211,
                     "Das angeforderte XML-Tag ist nicht vollständig!\r\n"
                     "    XML-Tag ..........: <itemListEncoded"),
               Entry("clsZelTransAct", "DecodeXML", 9301, "Das Ermitteln der Postenliste schlug fehl!")}));
  EXPECT_EQ(EntriesOfImport<clsZelTransAct>(
                "<transactionEncoded><itemListEncoded>oAE</itemListEncoded></transactionEncoded>"),
            (Entries{Entry("clsHelper01", "FromBase64String", 9104,
                           "Die Länge der Base64-Zeichenfolge ist ungültig!"),
                     Entry("clsZelTransAct", "DecodeXML.[FromBase64String]", 9301,
                           "Base64-Konvertierung der Postendaten fehlgeschlagen!")}));
}

TEST(LogOfABooking, HoldsTwoEntriesWhereTheBytesAreHandedInAlone) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  EXPECT_FALSE(test::HandIn(booking, ZELSerialType::Response, "C5 01 02"));
  EXPECT_EQ(LogNames(log), (Names{"clsZelBaseCoding GetZelTpID", "clsZelTransAct DecodeResp.[GetZelTpID]"}));
}

TEST(LogOfABooking, NamesWhyThereIsNoItemHash) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  const auto item = Scripted("HOST");
  item->write = [](ByteArray&, std::int32_t&) { return false; };
  ASSERT_TRUE(booking.AddItem(item));
  EXPECT_EQ(booking.GetItemHash(ZELHashFmt::Base16), "##FEHLER##");
  EXPECT_EQ(LogEntries(log),
            (Entries{Entry("clsZelItemList", "BinaryDataGet", 9301, kItemNotWritten),
                     Entry("clsZelTransAct", "GenItemHash", 9000,
                           "Posten-Hash-Erzeugung nicht möglich!\r\n"
                           "Der Hashwert konnte nicht aus den\r\nEinzelposten ermittelt werden."),
                     Entry("clsZelTransAct", "GetItemHash", 9000,
                           "Hashausgabe nicht möglich!\r\n"
                           "Eine interne Funktion meldete einen Fehler")}));
}

TEST(LogOfABooking, HoldsTheHashFailureOnceWhereItIsHandedOutAsBytes) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  const auto item = Scripted("HOST");
  item->write = [](ByteArray&, std::int32_t&) { return false; };
  ASSERT_TRUE(booking.AddItem(item));
  ByteArray data = ByteArray::WithBounds(0, 99);
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::ItemHash, data, 0));
  EXPECT_EQ(LogNames(log), (Names{"clsZelItemList BinaryDataGet", "clsZelTransAct GenItemHash"}));
}

TEST(LogOfABooking, HoldsARequestThatFailedAtAnItemOnceSinceWritingLogsNothing) {
  test::TestLog log;
  clsZelTransAct booking;
  test::Prepare(booking);
  booking.LogHandler(log.Handler());
  ASSERT_TRUE(booking.AddItem(std::make_shared<test::clsZelItemCash>()));
  ByteArray request;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
  EXPECT_EQ(LogEntries(log),
            (Entries{Entry("clsZelTransAct", "EncodeRqst", 9301,
                           "Buchung: Das Erstellen der Anfrage ist nicht möglich!\r\n"
                           "Die Daten der Buchungsposten konnten nicht\r\ngelesen werden.")}));
}

TEST(LogOfABooking, HoldsARequestThatFailedAtTheHashFromTheListUp) {
  test::TestLog log;
  clsZelTransAct booking;
  test::Prepare(booking);
  booking.LogHandler(log.Handler());
  const auto item = Scripted("HOST");
  item->write = [&item = *item](ByteArray& data, std::int32_t& start) {
    return item.writes < 2 && item.Write(data, start);
  };
  ASSERT_TRUE(booking.AddItem(item));
  ByteArray request;
  EXPECT_FALSE(booking.BinaryDataGet(ZELSerialType::Request, request, 0));
  EXPECT_EQ(LogEntries(log),
            (Entries{Entry("clsZelItemList", "BinaryDataGet", 9301, kItemNotWritten),
                     Entry("clsZelTransAct", "EncodeRqst.[GetZelOperator]", 9301,
                           "Buchung: Das Erstellen der Anfrage ist nicht möglich!\r\n"
                           "Der Hashkode über die Buchungspositionen konnte nicht erstellt werden!\r\n"
                           "    Hash-Typ ........: SHA256\r\n    Position ........: 0")}));
}

TEST(LogOfABooking, HoldsTheRefusalOfItsListBeforeItsOwn) {
  test::TestLog log;
  clsZelTransAct booking;
  booking.LogHandler(log.Handler());
  EXPECT_FALSE(booking.RemoveItem(nullptr, {}, 1) && booking.AddItem(nullptr));
  EXPECT_EQ(LogNames(log), (Names{"clsZelItemList AddItem", "clsZelTransAct AddItem.[AddItem]"}));
}

// Reports

TEST(LogOfAnImportedReport, NamesTheReasonAndThePositionInTheRequest) {
  const LogEntry outer = Entry("clsZelReport", "DecodeXML.[DecodeRqst]", 9301, kBookingRequestFailed);
  const std::string response = "C0 01 03";
  const auto entries = [&](std::string_view request) {
    return EntriesOfImport<clsZelReport>(ReportDocument(kItems, request, response));
  };
  const auto inner = [](std::string_view callee, std::string_view reason, int position,
                        std::string_view tag) {
    return Entry("clsZelReport", "DecodeRqst.[" + std::string(callee) + "]", 9301,
                 "Report: Dekodieren der Anfrage nicht möglich!\r\n" + std::string(reason) +
                     "\r\n    Position .......: " + std::to_string(position) +
                     "\r\n    Tag ............: " + std::string(tag));
  };
  struct Case {
    std::string request;
    std::string_view coder;
    LogEntry inner;
  };
  const std::string date = "CD 04 20 24 03 15 ";
  const std::string time = "CE 02 14 37 ";
  for (const Case& c :
       {Case{"CE 02 14 37", "GetZelDates", inner("GetZelDates", "Fehler beim Lesen des Datums", 0, "CE")},
        Case{date + "C6 01 41", "GetZelTimes",
             inner("GetZelTimes", "Fehler beim Lesen der Zeitangabe", 6, "C6")},
        Case{date + time + "D4 01 00", "GetZelHash",
             inner("GetZelHash", "Fehler beim Lesen des Postenhashcodes", 10, "D4")},
        Case{date + time + "D0 03 20 24 13", "GetZelDatesSpc01",
             inner("GetZelDatesSpc01", "Fehler beim Lesen des Zeitraumbeginns", 10, "D0")},
        Case{date + time + "D0 03 20 24 01 D1 03 20 24 13", "GetZelDatesSpc01",
             inner("GetZelDatesSpc01", "Fehler beim Lesen des Zeitraumendes", 15, "D1")},
        Case{date + time + "C3 01 31", "GetZelTranspPin",
             inner("GetZelTranspPin", "Fehler beim Lesen der Transport-PIN", 10, "C3")}}) {
    const Entries got = entries(c.request);
    ASSERT_EQ(got.size(), 3U) << c.request;
    EXPECT_EQ(got[0].source, "clsZelBaseCoding");
    EXPECT_EQ(got[0].function, c.coder);
    EXPECT_EQ(got[1], c.inner);
    EXPECT_EQ(got[2], outer);
  }
  EXPECT_EQ(entries(date + time + "C6 01 41"),
            (Entries{Entry("clsZelReport", "DecodeRqst", 9305,
                           "Unerwartetes TAG\r\nDas gefundenen TAG (s.u.) darf in\r\n"
                           "ZEL-Umsatz-Containern nicht vorkommen!\r\n    Tag gefunden ....: C6"),
                     outer}));
}

TEST(LogOfAnImportedReport, NamesTheReasonAndThePositionInTheResponse) {
  const LogEntry outer = Entry("clsZelReport", "DecodeXML.DecodeResp", 9301, kResponseFailed);
  const std::string request = "CD 04 20 24 03 15 CE 02 14 37";
  const auto entries = [&](std::string_view response) {
    return EntriesOfImport<clsZelReport>(ReportDocument(kItems, request, response));
  };
  const auto inner = [](std::string_view callee, std::string_view reason, std::string_view tag) {
    return Entry("clsZelReport", "DecodeResp.[" + std::string(callee) + "]", 9301,
                 "Report: Dekodieren der Antwort nicht möglich!\r\n" + std::string(reason) +
                     "\r\n    Position .......: 3\r\n    Tag ............: " + std::string(tag));
  };
  struct Case {
    std::string_view record;
    std::string_view coder;
    LogEntry inner;
  };
  for (const Case& c :
       {Case{"C4 00", "GetZelTpID", inner("GetZelTpID", "Fehler beim Lesen der Steuerpflichtigen-ID", "C4")},
        Case{"C5 00", "GetZelTpIDNr", inner("GetZelTpIDNr", "Fehler beim Lesen der laufenden ZEL-Nr", "C5")},
        Case{"C0 02", "GetZelLifeCycle", inner("GetZelLifeCycle", "Fehler beim Lesen des ZEL-Status", "C0")},
        Case{"CC 02", "GetZelCounterSpc01",
             inner("GetZelCounterSpc01", "Fehler beim Lesen der Report-Sequenznummer", "CC")},
        Case{"D2 02", "GetZelCounterSpc01",
             inner("GetZelCounterSpc01", "Fehler beim Lesen der Buchungnummer (Start)", "D2")},
        Case{"D3 02", "GetZelCounterSpc01",
             inner("GetZelCounterSpc01", "Fehler beim Lesen der Buchungnummer (Ende)", "D3")},
        Case{"9E 00", "GetZelSignature2",
             inner("GetZelSignature2", "Fehler beim Lesen der Signatur", "9E")}}) {
    const Entries got = entries("C0 01 03 " + std::string(c.record));
    ASSERT_EQ(got.size(), 3U) << c.record;
    EXPECT_EQ(got[0].source, "clsZelBaseCoding");
    EXPECT_EQ(got[0].function, c.coder);
    EXPECT_EQ(got[1], c.inner);
    EXPECT_EQ(got[2], outer);
  }
  EXPECT_EQ(entries("C0 01 03 E9 02 C6 00"),
            (Entries{Entry("clsZelReport", "DecodeResp.[BinaryDataSet]", 9301,
                           "Report: Dekodieren der Antwort nicht möglich!\r\n"
                           "Ein Umsatzcontainer konnte nicht gelesen werden!\r\n"
                           "    Position ........: 3\r\n    Tag .............: E9\r\n"
                           "    Containernr. ....: 8"),
                     outer}));
  EXPECT_EQ(entries("C0 01 03 C6 01 41"),
            (Entries{Entry("clsZelReport", "DecodeResp", 9305,
                           "Unerwartetes TAG\r\nDas gefundenen TAG (s.u.) darf in\r\n"
                           "ZEL-Umsatz-Containern nicht vorkommen!\r\n    Tag gefunden ....: C6"),
                     outer}));
}

TEST(LogOfAnImportedReport, NamesTheDamagedItemAtEveryLevel) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  std::string document = ReportDocument("A0 01 31 C7 00", "CD 04 20 24 03 15 CE 02 14 37", "C0 01 03");
  EXPECT_FALSE(report.XmlHandler(document, false));
  EXPECT_EQ(LogNames(log), (Names{"clsZelItemCash BinaryDataSet", "clsZelItemList BinaryDataSet",
                                  "clsZelReport DecodeItems.[mObjItemList.BinaryDataSet]",
                                  "clsZelReport DecodeXML.[BinaryDataSet]"}));
}

TEST(LogOfAReport, NamesWhyThereIsNoItemHash) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  const auto item = Scripted("HOST");
  item->write = [](ByteArray&, std::int32_t&) { return false; };
  ASSERT_TRUE(report.AddItem(item));
  EXPECT_EQ(report.GetItemHash(ZELHashFmt::Base32), "##FEHLER##");
  EXPECT_EQ(LogNames(log),
            (Names{"clsZelItemList BinaryDataGet", "clsZelReport GenItemHash", "clsZelReport GetItemHash"}));
}

TEST(LogOfAReport, HoldsARequestThatFailedAtTheHashFromTheListUp) {
  test::TestLog log;
  clsZelReport report;
  report.LogHandler(log.Handler());
  const auto item = Scripted("HOST");
  item->write = [](ByteArray&, std::int32_t&) { return false; };
  ASSERT_TRUE(report.AddItem(item));
  ByteArray request;
  EXPECT_FALSE(report.BinaryDataGet(ZELSerialType::Request, request, 0));
  EXPECT_EQ(LogNames(log), (Names{"clsZelItemList BinaryDataGet", "clsZelReport EncodeRqst.[GetItemHash]"}));
}

// Data records

/// What the record itself has filed, without its coder.
Entries EntriesOfRecord(std::string_view request, std::string_view response) {
  Entries entries = EntriesOfImport<clsZelTransActData>(DataDocument(request, response));
  std::erase_if(entries, [](const LogEntry& entry) { return entry.source == "clsZelBaseCoding"; });
  return entries;
}

TEST(LogOfAnImportedDataRecord, NamesTheReasonAndThePositionInTheRequest) {
  const LogEntry outer = Entry("clsZelTransActData", "DecodeXML.[DecodeRqst]", 9301, kBookingRequestFailed);
  const auto entries = [](std::string_view request) { return EntriesOfRecord(request, "CB 01 02"); };
  EXPECT_EQ(entries("CD 04 20 24 03 15 C7 01 00"),
            (Entries{Entry("clsZelTransActData", "DecodeRqst.[GetZelDates]", 9301,
                           "Der Hashwert der Daten konnte nicht gelesen werden!\r\n"
                           "    Position ........: 6"),
                     outer}));
  EXPECT_EQ(entries("CD 01 20"),
            (Entries{Entry("clsZelTransActData", "DecodeRqst.[GetZelDates]", 9301,
                           "Die Buchungszeit konnte nicht gelesen werden!\r\n    Position ........: 0"),
                     outer}));
  EXPECT_EQ(entries("CD 04 20 24 03 15 CE 00"),
            (Entries{Entry("clsZelTransActData", "DecodeRqst.[GetZelTimes]", 9301,
                           "Die Buchungszeit konnte nicht gelesen werden!\r\n    Position ........: 6"),
                     outer}));
  EXPECT_EQ(entries("C6 01 41"),
            (Entries{Entry("clsZelTransActData", "DecodeRqst", 9305,
                           "Unerwartetes TAG\r\nDas gefundenen TAG (s.u.) darf in\r\n"
                           "ZEL-Umsatz-Containern nicht vorkommen!\r\n    Tag gefunden ....: C6"),
                     outer}));
}

TEST(LogOfAnImportedDataRecord, NamesTheReasonAndThePositionInTheResponse) {
  const LogEntry outer = Entry("clsZelTransActData", "DecodeXML.DecodeResp", 9301, kResponseFailed);
  const auto entries = [](std::string_view response) {
    return EntriesOfRecord("C7 14 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13", response);
  };
  struct Case {
    std::string_view record;
    std::string_view accessor;
    std::string_view reason;
  };
  for (const Case& c :
       {Case{"CB 02", "GetZelCounter", "Die Sequenznummer konnte nicht gelesen werden!"},
        Case{"C4 00", "GetZelTpID", "Die Steuerpfl.-ID konnte nicht gelesen werden!"},
        Case{"C5 00", "GetZelTpIDNr", "Die laufende ZEL-Nr konnte nicht gelesen werden!"},
        Case{"9E 00", "GetZelSignature2", "Die Signatur der Buchung konnte nicht gelesen werden!"}}) {
    EXPECT_EQ(entries("CB 01 02 " + std::string(c.record)),
              (Entries{Entry("clsZelTransActData", "DecodeResp.[" + std::string(c.accessor) + "]", 9301,
                             std::string(c.reason) + "\r\n    Position ........: 3"),
                       outer}));
  }
  EXPECT_EQ(entries("C6 01 41"),
            (Entries{Entry("clsZelTransActData", "DecodeResp.[GetZelSignature2]", 9301,
                           "Unerwartetes ZEL-Tag!\r\n    Tag .............: 0xC6 // 198\r\n"
                           "    Position ........: 0"),
                     outer}));
}

// Accessors and their primitives, and what writes no entry of its own

TEST(LogOfACoder, HoldsOneEntryWhereAnAccessorHandsOnItsPrimitivesFailure) {
  test::TestLog log;
  VnZEL10cmn::clsZelBaseCoding coder;
  coder.LogHandler(log.Handler());
  std::int32_t start = 0;
  std::string text;
  EXPECT_FALSE(coder.GetZelOperator(FromHex("C6 01 1F"), start, text));
  VnZEL10cmn::Currency value;
  EXPECT_FALSE(coder.GetZelVatRate(FromHex("DB 01 1A"), start, value));
  EXPECT_FALSE(
      coder.GetZelAmountsSpc01(FromHex("D8 01 0D"), start, VnZEL10cmn::ZelRqstAmounts::Trnvr, value));
  EXPECT_FALSE(coder.GetZelSignature2(FromHex("9E 01 00"), start, text));
  EXPECT_EQ(LogNames(log),
            (Names{"clsZelBaseCoding GetZelOperator", "clsZelBaseCoding GetZelVatRate",
                   "clsZelBaseCoding GetZelAmountsSpc01", "clsZelBaseCoding GetZelSignature2"}));
}

TEST(LogOfACoder, HoldsTheHelpersEntryBeforeItsOwn) {
  test::TestLog log;
  VnZEL10cmn::clsZelBaseCoding coder;
  coder.LogHandler(log.Handler());
  ByteArray buffer = ByteArray::WithBounds(0, 99);
  std::int32_t start = 0;
  EXPECT_FALSE(coder.SetZelHash2(buffer, start, true, "AA"));
  EXPECT_EQ(LogNames(log), (Names{"clsHelper01 FromBase64String", "clsZelBaseCoding SetZelHash2"}));
}

TEST(LogOfItemsAndLists, HoldsNothingOfWritingThatFails) {
  test::TestLog log;
  test::clsZelItemList list;
  list.LogHandler(log.Handler());
  const auto item = std::make_shared<test::clsZelItemCash>();
  ASSERT_TRUE(list.AddItem(item));
  ByteArray data;
  std::int32_t start = 0;
  EXPECT_FALSE(list.BinaryDataGet(data, start));
  EXPECT_FALSE(item->BinaryDataGet(data, start));
  EXPECT_TRUE(list.HasError());
  EXPECT_TRUE(item->HasError());
  EXPECT_EQ(log.Count(), 0U);
}

TEST(LogOfEveryEntry, GoesToTheLogThatIsAttachedWhenItIsWritten) {
  // Nothing is attached: a failed import leaves no trace, and does no harm.
  clsZelTransAct booking;
  std::string document = BookingDocument(kItems, "CE 02 14 37", test::kSaleResponse);
  EXPECT_FALSE(booking.XmlHandler(document, false));
  test::ExpectError(booking.ErrorObject(), 9301, true, "DecodeXML.[DecodeRqst]", kBookingRequestFailed);
  // A log that is switched off stays empty.
  test::TestLog log;
  log.Handler()->WriteErrors(false);
  booking.LogHandler(log.Handler());
  EXPECT_FALSE(booking.XmlHandler(document, false));
  EXPECT_EQ(log.Count(), 0U);
}

}  // namespace
