// Writes the first inputs of every corpus, made with the library itself: fuzz_seeds FOLDER
// Each stands in the folder of its target under a name that says what it is.

#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VnZEL10cmn/VnZEL10cmn.h"

namespace {

using namespace VnZEL10cmn;

using Bytes = std::vector<std::uint8_t>;

/// An input under construction, in the order in which its target takes it apart.
class Seed {
 public:
  Seed() = default;
  Seed(std::initializer_list<int> bytes) {
    for (const int byte : bytes) {
      Add(byte);
    }
  }

  Seed& Add(int byte) {
    bytes_.push_back(static_cast<std::uint8_t>(byte));
    return *this;
  }

  Seed& Add(std::span<const std::uint8_t> bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
  }

  Seed& Add(std::string_view text) { return Add(AsBytes(text)); }

  /// Led by its length.
  Seed& Piece(std::span<const std::uint8_t> bytes) {
    Check(bytes.size() < 256, "a piece is too long");
    return Add(static_cast<int>(bytes.size())).Add(bytes);
  }

  Seed& Piece(std::string_view text) { return Piece(AsBytes(text)); }

  /// Little endian, so many bytes.
  Seed& Number(std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
      Add(static_cast<int>(value >> (8 * i) & 0xFF));
    }
    return *this;
  }

  Seed& Number(double value) { return Number(std::bit_cast<std::uint64_t>(value), 8); }

  const Bytes& Value() const { return bytes_; }

  static void Check(bool condition, const char* what) {
    if (!condition) {
      throw std::logic_error(what);
    }
  }

 private:
  static std::span<const std::uint8_t> AsBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
  }

  Bytes bytes_;
};

class Folder {
 public:
  explicit Folder(std::filesystem::path path) : path_(std::move(path)) {}

  void Write(const std::string& target, const std::string& name, const Seed& seed) {
    const std::filesystem::path folder = path_ / target;
    std::filesystem::create_directories(folder);
    std::ofstream file(folder / name, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(seed.Value().data()),
               static_cast<std::streamsize>(seed.Value().size()));
    file.close();
    Seed::Check(file.good(), "a seed can't be written");
  }

 private:
  std::filesystem::path path_;
};

Bytes BytesOf(const ByteArray& array) { return {array.begin(), array.end()}; }

Bytes Joined(std::initializer_list<Bytes> parts) {
  Bytes joined;
  for (const Bytes& part : parts) {
    joined.insert(joined.end(), part.begin(), part.end());
  }
  return joined;
}

Bytes Record(ZelTags tag, const Bytes& value) {
  return Joined({{static_cast<std::uint8_t>(tag), static_cast<std::uint8_t>(value.size())}, value});
}

Bytes Text(ZelTags tag, std::string_view text) { return Record(tag, {text.begin(), text.end()}); }

const Date kDate = Date::FromCivil(2026, 12, 31, 8, 5);

std::shared_ptr<clsZelItemCash> Bread() {
  auto item = std::make_shared<clsZelItemCash>();
  item->SetItemData(2, "Brot", "Stk.", Currency::FromScaled(119'000), Currency::FromScaled(-25'000), 3, true,
                    true, true, Currency::FromScaled(10'000), Currency::FromScaled(20'000),
                    Currency::FromScaled(30'000));
  return item;
}

std::shared_ptr<clsZelItemCash> Coffee() {
  auto item = std::make_shared<clsZelItemCash>();
  item->SetItemData(Currency::FromScaled(25'000), "Kaffee", "", Currency::FromScaled(19'900));
  return item;
}

/// A booking with items, whose request has been made.
std::unique_ptr<clsZelTransAct> Booking(int flags, bool useSha256 = true) {
  auto booking = std::make_unique<clsZelTransAct>();
  booking->VatList(std::make_shared<clsZelVatList>());
  booking->TransactionDate(kDate);
  booking->Operator("Kasse 1");
  booking->UseSHA256(useSha256);
  booking->IsTaxExcl((flags & 1) != 0);
  booking->IsTraining((flags & 2) != 0);
  booking->IsDeliveryNote((flags & 4) != 0);
  booking->AddItem(Bread());
  booking->AddItem(Coffee());
  ByteArray request;
  Seed::Check(booking->BinaryDataGet(ZELSerialType::Request, request, 0), "no request of a booking");
  return booking;
}

Bytes Request(clsZelTransAct& booking) {
  ByteArray request;
  Seed::Check(booking.BinaryDataGet(ZELSerialType::Request, request, 0), "no request of a booking");
  return BytesOf(request);
}

Bytes Items(clsZelItemList& list) {
  ByteArray items;
  std::int32_t length = 0;
  Seed::Check(list.BinaryDataGet(items, length), "no items");
  items.RedimPreserve(length - 1);
  return BytesOf(items);
}

Bytes TwoItems() {
  clsZelItemList list;
  list.AddItem(Bread());
  list.AddItem(Coffee());
  return Items(list);
}

Bytes OneItem() {
  clsZelItemList list;
  list.AddItem(Bread());
  return Items(list);
}

Bytes Signature(std::size_t length = 64) {
  Bytes value(length);
  for (std::size_t i = 0; i < length; ++i) {
    value[i] = static_cast<std::uint8_t>(i * 7 + 1);
  }
  return Record(ZelTags::Signature, value);
}

const Bytes kTaxpayer = Text(ZelTags::Tp_ID, "DE123456789");
const Bytes kDevice = Record(ZelTags::Tp_ID_No, {7});
const Bytes kSequence = Record(ZelTags::Seq_Nr_Trans, {0x01, 0x02});

Bytes BookingResponse() { return Joined({kTaxpayer, kDevice, kSequence, Signature()}); }

Bytes Container(ZelTags tag) {
  return Record(
      tag, Joined({Record(ZelTags::Trnvr, {0x01, 0x23, 0x4C}), Record(ZelTags::Trnvr_neg, {0x05, 0x0C}),
                   Record(ZelTags::Trnvr_Vat, {0x01, 0x9C}), Record(ZelTags::Trnvr_Vat_Rate, {0x19, 0x00}),
                   Record(ZelTags::Trnvr_Thirdparty, {0x01, 0x0D})}));
}

/// The form of a response, with long amounts and flags.
Bytes LongContainer(ZelTags tag) {
  return Record(tag,
                Joined({Record(ZelTags::Trnvr, {0x12, 0x34, 0x56, 0x78, 0x90, 0x12, 0x34, 0x5C}),
                        Record(ZelTags::Trnvr_Overflow, {}), Record(ZelTags::Trnvr_Vat_Changed, {}),
                        Record(ZelTags::Trnvr_Counter, {}), Record(ZelTags::Trnvr_Vat_Rate, {0x07, 0x00})}));
}

Bytes ReportResponse() {
  Bytes response =
      Joined({Record(ZelTags::Lifecycle, {3}), kTaxpayer, kDevice, Record(ZelTags::Seq_Nr_Reprt, {9}),
              Record(ZelTags::Seq_No_Trans_First, {1}), Record(ZelTags::Seq_No_Trans_Last, {0x12, 0x34})});
  for (int tag = 225; tag <= 233; ++tag) {
    const Bytes container =
        tag % 2 == 0 ? LongContainer(static_cast<ZelTags>(tag)) : Container(static_cast<ZelTags>(tag));
    response.insert(response.end(), container.begin(), container.end());
  }
  return Joined({response, Signature()});
}

/// One that fits into a piece.
Bytes ShortReportResponse() {
  return Joined({Record(ZelTags::Lifecycle, {4}), kTaxpayer, kDevice, LongContainer(ZelTags::Container_Vat_1),
                 Signature()});
}

Bytes ReportRequest(ZelReportType type, bool withItems = false) {
  clsZelReport report;
  report.ReportDate(kDate);
  report.SpanMonthFrom(Date::FromCivil(2026, 1, 1));
  report.SpanMonthUpTo(Date::FromCivil(2026, 12, 31));
  report.TransportPIN("123456");
  if (withItems) {
    report.AddItem(Coffee());
  }
  ByteArray request;
  Seed::Check(report.BinaryDataGet(ZELSerialType::Request, request, 0, type), "no request of a report");
  return BytesOf(request);
}

Bytes DataRequest(ZELDataSignTypes type) {
  clsZelTransActData record;
  record.TransactionDate(kDate);
  record.DataSignType(type);
  Seed::Check(record.BinaryDataSet(ZELSerialType::BinaryData, ByteArray{1, 2, 3}, 0), "no data");
  ByteArray request = ByteArray::WithBounds(0, 99);
  std::int32_t length = 0;
  Seed::Check(record.BinaryDataGet(ZELSerialType::Request, request, 0, &length), "no request of data");
  request.RedimPreserve(length - 1);
  return BytesOf(request);
}

/// A run of records with another record in the place of one of them.
Bytes WithRecord(const Bytes& records, std::size_t index, const Bytes& other) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < index; ++i) {
    at += 2 + records.at(at + 1);
  }
  const auto begin = records.begin() + static_cast<std::ptrdiff_t>(at);
  return Joined({Bytes(records.begin(), begin), other, Bytes(begin + 2 + records.at(at + 1), records.end())});
}

/// One record for each reader, and what keeps it from being read.
void WriteRecords(Folder& folder) {
  struct Reader {
    int number;
    const char* name;
    Bytes record;
    bool flag = false;
  };
  const Bytes digest(32, 0xAB);
  const std::vector<Reader> readers = {
      {1, "binary", Record(ZelTags::Serial_No, {1, 2, 3})},
      {2, "ascii", Text(ZelTags::Item_Name, "brot")},
      {3, "bcd", Record(ZelTags::Trnvr_Counter, {0x00, 0x12, 0x34})},
      {4, "signed-bcd", Record(ZelTags::Trnvr, {0x12, 0x34, 0x5D})},
      {4, "signed-bcd-minus-zero", Record(ZelTags::Trnvr, {0x0D})},
      {5, "signature", Signature()},
      {6, "signature-text", Signature(48)},
      {6, "signature-base32", Signature(), true},
      {7, "life-cycle", Record(ZelTags::Lifecycle, {3})},
      {7, "life-cycle-unknown", Record(ZelTags::Lifecycle, {1, 2, 3, 4, 5})},
      {8, "serial-number", Record(ZelTags::Serial_No, {0x41, 0x7F, 0xE4, 0x91, 0x00}), true},
      {9, "version", Text(ZelTags::Version, "1.00.007")},
      {10, "taxpayer", kTaxpayer},
      {11, "pin", Text(ZelTags::Transport_Pin, "123456")},
      {12, "operator", Text(ZelTags::Operator, "Kasse 1")},
      {13, "hash", Record(ZelTags::Hash_Trans_Items, digest), true},
      {13, "report-hash", Record(ZelTags::Hash_Reprt_Items, Bytes(20, 0xCD))},
      {13, "hash-length", Record(ZelTags::Hash_Reprt_Items, Bytes(25, 0xCD))},
      {14, "currency", Record(ZelTags::Currency, {0x03, 0xD2})},
      {15, "country", Record(ZelTags::Country_Code, {0x01, 0x14})},
      {16, "counter", Record(ZelTags::Seq_Nr_Trans, {0xFF, 0xFF, 0xFF, 0xFF})},
      {16, "counter-selected", Record(ZelTags::Seq_Nr_Reprt, {0x01}), true},
      {17, "device-number", kDevice},
      {18, "amount", Record(ZelTags::Trnvr, {0x01, 0x23, 0x4C})},
      {18, "long-amount", Record(ZelTags::Trnvr, {0x12, 0x34, 0x56, 0x78, 0x90, 0x12, 0x34, 0x5C}), true},
      {19, "price", Record(ZelTags::Item_Price1, {0x05, 0x0D})},
      {20, "date", Record(ZelTags::tDate, {0x20, 0x26, 0x12, 0x31})},
      {20, "month-start", Record(ZelTags::Month_Start, {0x20, 0x01, 0x02}), true},
      {20, "month-end", Record(ZelTags::Month_End, {0x20, 0x00, 0x02}), true},
      {20, "no-date", Record(ZelTags::tDate, {0x20, 0x26, 0x02, 0x30})},
      {21, "time", Record(ZelTags::tTime, {0x23, 0x59})},
      {21, "short-time", Record(ZelTags::tTime, {0x05})},
      {21, "no-time", Record(ZelTags::tTime, {0x24, 0x00})},
      {22, "positive", Record(ZelTags::Trnvr_Counter, {0x12, 0x34, 0x56, 0x78, 0x90, 0x12})},
      {23, "vat-rate", Record(ZelTags::Trnvr_Vat_Rate, {0x19, 0x00})},
  };
  for (const Reader& reader : readers) {
    // Reader, least and greatest length (0: none), tag, flag, bounds, start.
    folder.Write("records", std::string("seed-") + reader.name,
                 Seed{reader.number, 0, 0, reader.record[0], reader.flag ? 1 : 0, 0, 0}.Add(reader.record));
  }
  const Bytes name = Text(ZelTags::Operator, "Kasse 1");
  folder.Write("records", "seed-check", Seed{0, 2, 20, 198, 0, 0, 0}.Add(name));
  folder.Write("records", "seed-check-other-tag", Seed{0, 0, 0, 193, 0, 0, 0}.Add(name));
  folder.Write("records", "seed-too-short", Seed{1, 10, 0, 0, 0, 0, 0}.Add(name));
  folder.Write("records", "seed-too-long", Seed{2, 0, 3, 0, 0, 0, 0}.Add(name));
  folder.Write("records", "seed-127", Seed{1, 0, 0, 0, 0, 0, 0}.Add(198).Add(127).Add(Bytes(127, 0x41)));
  folder.Write("records", "seed-128", Seed{1, 0, 0, 0, 0, 0, 0}.Add(198).Add(128).Add(Bytes(128, 0x41)));
  folder.Write("records", "seed-beyond-127",
               Seed{1, 0, 0, 0, 0, 0, 0}.Add(198).Add(200).Add(Bytes(220, 0x41)));
  folder.Write("records", "seed-cut-off", Seed{1, 0, 0, 0, 0, 0, 0}.Add(198).Add(9).Add("Kasse"));
  folder.Write("records", "seed-start-on-last", Seed{1, 0, 0, 0, 0, 0, 250}.Add(name));
  folder.Write("records", "seed-start-outside", Seed{1, 0, 0, 0, 0, 0, 251}.Add(name));
  folder.Write("records", "seed-bounds-from-17", Seed{1, 0, 0, 0, 0, 2, 0}.Add(name));
  folder.Write("records", "seed-bounds-to-last-index", Seed{1, 0, 0, 0, 0, 4, 0}.Add(name));
  folder.Write("records", "seed-bounds-negative", Seed{2, 0, 0, 0, 0, 6, 0}.Add(name));
  folder.Write("records", "seed-invalid-character",
               Seed{2, 0, 0, 0, 0, 0, 0}.Add(Record(ZelTags::Operator, {65, 31})));
  folder.Write("records", "seed-invalid-digit",
               Seed{3, 0, 0, 0, 0, 0, 0}.Add(Record(ZelTags::Trnvr, {0x1A})));
}

void WriteRecordWriters(Folder& folder) {
  const auto write = [&folder](const char* name, int writer, int tag, int flag, const Seed& value,
                               int room = 60, int bounds = 0, int start = 3) {
    folder.Write("record_writers", std::string("seed-") + name,
                 Seed{writer, tag, flag, room, bounds, start}.Add(value.Value()));
  };
  const auto currency = [](std::int64_t scaled) {
    return Seed().Number(static_cast<std::uint64_t>(scaled), 8);
  };
  write("check", 0, 0, 0, Seed().Number(20, 4));
  write("check-negative", 0, 0, 0, Seed().Number(0xFFFFFFFF, 4));
  write("check-too-long", 0, 0, 0, Seed().Number(130, 4), 200);
  write("check-up-to-the-end", 0, 0, 0, Seed().Number(55, 4));
  write("check-beyond-the-end", 0, 0, 0, Seed().Number(56, 4));
  write("check-127", 0, 0, 0, Seed().Number(127, 4), 200);
  write("check-128", 0, 0, 0, Seed().Number(128, 4), 200);
  write("binary", 1, 193, 0, Seed{0, 1, 2, 3});
  write("binary-negative-bound", 1, 193, 0, Seed{5, 1, 2, 3});
  write("ascii", 2, 162, 0, Seed().Add("brot"));
  write("ascii-umlaut", 2, 162, 0, Seed().Add("Müller"));
  write("ascii-other-script", 2, 162, 0, Seed().Add("漢字"));
  write("ascii-empty", 2, 162, 0, Seed());
  write("bool", 3, 201, 1, Seed());
  write("bool-no-room", 3, 201, 1, Seed(), 4);
  write("bool-false", 3, 201, 0, Seed());
  write("bcd", 4, 220, 0, Seed().Add("00042"));
  write("bcd-leading-zeros", 4, 220, 1, Seed().Add("00042"));
  write("bcd-invalid", 4, 220, 0, Seed().Add("12x4"));
  write("bcd-empty", 4, 220, 0, Seed().Add("  "));
  write("signed-bcd", 5, 216, 0, Seed().Add("123D"));
  write("signed-bcd-letters", 5, 216, 0, Seed().Add("12d3c"));
  write("signed-bcd-no-sign", 5, 216, 0, Seed().Add("123"));
  write("signed-bcd-invalid", 5, 216, 0, Seed().Add("1ö3C"));
  write("signed-bcd-zero", 5, 216, 0, Seed().Add("000C"));
  write("pin", 6, 0, 0, Seed().Add("123456"));
  write("pin-short", 6, 0, 0, Seed().Add("12345"));
  write("pin-long", 6, 0, 0, Seed().Add("1234567"));
  write("pin-letter", 6, 0, 0, Seed().Add("12345a"));
  write("operator", 7, 0, 0, Seed().Add("Kasse 1"));
  write("operator-long", 7, 0, 0, Seed().Add("Kasse in der Halle 1"));
  write("hash", 8, 0, 1, Seed().Add(Bytes(32, 0xAB)));
  write("hash-length", 8, 0, 0, Seed().Add(Bytes(21, 0xAB)));
  write("hash-text", 9, 0, 0, Seed().Add("AAECAwQFBgcICQoLDA0ODxAREhM="));
  write("hash-text-invalid", 9, 0, 0, Seed().Add("#"));
  write("currency-code", 10, 0, 0, Seed().Number(978, 4));
  write("counter", 11, 203, 0, currency(42'949'672'950'000));
  write("counter-overflow", 11, 203, 0, currency(922'337'203'685'477'580));
  write("amount", 12, 216, 0, currency(123'400));
  write("amount-negative", 12, 216, 0, currency(-5'000));
  write("amount-too-long", 12, 216, 0, currency(10'000'000'000'000));
  write("amount-long", 13, 216, 1, currency(10'000'000'000'000));
  write("amount-beyond", 12, 216, 1, currency(922'337'203'685'477'580));
  write("date", 14, 205, 0, Seed().Number(kDate.Value()));
  write("month", 15, 208, 0, Seed().Number(kDate.Value()));
  write("no-date", 14, 205, 0, Seed().Number(1e300));
  write("time", 16, 206, 0, Seed().Number(kDate.Value()));
  write("positive", 17, 220, 0, currency(1'900'000));
  write("positive-too-long", 17, 220, 0, currency(9'000'000'000'000'000));
  write("vat-rate", 18, 0, 0, currency(190'000));
  write("vat-rate-beyond", 18, 0, 0, currency(1'000'000));
  write("bounds-negative", 2, 162, 0, Seed().Add("brot"), 60, 6);
  write("bounds-to-last-index", 2, 162, 0, Seed().Add("brot"), 9, 4);
  write("start-outside", 2, 162, 0, Seed().Add("brot"), 60, 0, 251);
}

void WriteItems(Folder& folder) {
  folder.Write("item", "seed-item", Seed{3, 0, 0}.Add(OneItem()));
  folder.Write("item", "seed-two-items", Seed{2, 2, 0}.Add(TwoItems()));
  folder.Write("item", "seed-unexpected-tag",
               Seed{0, 0, 0}.Add(Text(ZelTags::Item_Quantity, "1")).Add(199).Add(0));
  folder.Write("item", "seed-cut-off", Seed{0, 0, 0}.Add(160).Add(5).Add("1"));
  folder.Write("item", "seed-invalid-quantity", Seed{0, 0, 0}.Add(Text(ZelTags::Item_Quantity, "x")));
  folder.Write(
      "item", "seed-long-quantity",
      Seed{0, 0, 0}.Add(Text(ZelTags::Item_Quantity, "12345678.1234")).Add(Text(ZelTags::Item_Name, "a")));
  folder.Write("item", "seed-blank-name", Seed{0, 0, 0}.Add(Text(ZelTags::Item_Name, "  ")));
  folder.Write("item", "seed-invalid-price", Seed{0, 0, 0}.Add(Record(ZelTags::Item_Price1, {0xAA})));
  folder.Write("item", "seed-invalid-name", Seed{0, 0, 0}.Add(Record(ZelTags::Item_Name, {0x80})));
  folder.Write("item_list", "seed-two-items", Seed{7, 0, 0, 0}.Add(TwoItems()));
  folder.Write("item_list", "seed-sha1", Seed{2, 0, 0, 0}.Add(TwoItems()));
  folder.Write("item_list", "seed-too-long", Seed{0, 255, 0, 0}.Add(OneItem()));
  folder.Write("item_list", "seed-damaged",
               Seed{0, 0, 0, 0}.Add(OneItem()).Add(Text(ZelTags::Item_Quantity, "1")).Add(1).Add(0));
  folder.Write(
      "item_list", "seed-no-name",
      Seed{0, 0, 0, 0}.Add(Text(ZelTags::Item_Quantity, "1")).Add(Record(ZelTags::Item_Voucher, {})));
  // Items come, go by position, by ID and as objects, and come back, until the gaps they leave are closed.
  Seed shelf{8};
  shelf.Add(0).Number(63, 2);
  for (int count = 0; count < 16; ++count) {
    shelf.Add(1).Number(static_cast<std::uint64_t>(count), 2);
    for (int way = 6; way <= 8; ++way) {
      shelf.Add(way).Number(static_cast<std::uint64_t>(7 * count + 11 * way), 2);
    }
    shelf.Add(2 + count % 4).Number(static_cast<std::uint64_t>(5 * count), 2);
  }
  folder.Write("item_list", "seed-come-and-go", shelf);
}

void WriteContainers(Folder& folder) {
  const auto tag = ZelTags::Container_Vat_1;
  folder.Write("container", "seed-request", Seed{225, 0, 0, 0}.Add(Container(tag)));
  folder.Write("container", "seed-response", Seed{0, 1, 2, 0}.Add(LongContainer(tag)));
  folder.Write("container", "seed-other-tag", Seed{226, 0, 0, 0}.Add(Container(tag)));
  folder.Write("container", "seed-without-turnover",
               Seed{0, 0, 0, 0}.Add(Record(tag, Record(ZelTags::Trnvr_Vat_Rate, {0x19}))));
  folder.Write("container", "seed-unexpected",
               Seed{0, 0, 0, 0}.Add(Record(tag, Record(ZelTags::Operator, {65}))));
  folder.Write("container", "seed-damaged-amount",
               Seed{0, 0, 0, 0}.Add(Record(tag, Record(ZelTags::Trnvr, {0xFF}))));
  folder.Write("container", "seed-damaged-rate",
               Seed{0, 0, 0, 0}.Add(Record(tag, Record(ZelTags::Trnvr_Vat_Rate, {0xFF}))));
  folder.Write(
      "container", "seed-high-rate",
      Seed{0, 0, 0, 0}.Add(Record(tag, Joined({Record(ZelTags::Trnvr, {0x1C}),
                                               Record(ZelTags::Trnvr_Vat_Rate, {0x01, 0x00, 0x00})}))));
  folder.Write("container", "seed-no-tag",
               Seed{0, 0, 0, 0}.Add(Record(ZelTags{}, Record(ZelTags::Trnvr, {0x1C}))));
  folder.Write("container", "seed-cut-off", Seed{0, 0, 0, 0}.Add(225).Add(60).Add(216).Add(1).Add(0x1C));
  folder.Write("container", "seed-overlap",
               Seed{0, 0, 0, 0}.Add(Record(tag, {216, 3, 0x01})).Add(0x23).Add(0x4C));
}

void WriteBookings(Folder& folder) {
  const auto plain = Booking(0);
  const auto flags = Booking(7, false);
  const Bytes request = Request(*plain);
  const Bytes response = BookingResponse();
  folder.Write("booking_request", "seed-plain", Seed{3, 0, 0, 0}.Add(request));
  folder.Write("booking_request", "seed-flags", Seed{3, 0, 2, 0}.Add(Request(*flags)));
  folder.Write("booking_request", "seed-other-bounds",
               Seed{0, static_cast<int>(request.size()), 1, 0}.Add(request).Add(0));
  folder.Write("booking_request", "seed-start-outside", Seed{0, 0, 0, 248}.Add(request));
  folder.Write("booking_request", "seed-start-behind", Seed{0, 0, 0, 251}.Add(request));
  folder.Write("booking_request", "seed-too-long", Seed{0, 255, 0, 0}.Add(request));
  folder.Write("booking_request", "seed-unexpected", Seed{0, 0, 0, 0}.Add(request).Add(158).Add(0));
  folder.Write("booking_request", "seed-flag-with-value",
               Seed{0, 0, 0, 0}.Add(request).Add(201).Add(1).Add(1));
  folder.Write("booking_request", "seed-damaged-currency", Seed{0, 0, 0, 0}.Add(request).Add(200).Add(0));
  folder.Write("booking_request", "seed-damaged-container",
               Seed{0, 0, 0, 0}.Add(request).Add(Record(ZelTags::Container_Vat_2, {1, 0})));
  for (std::size_t record = 0, at = 0; record < 5; ++record) {
    Bytes damaged = request;
    damaged[at] = 1;
    folder.Write("booking_request", "seed-damaged-" + std::to_string(record), Seed{0, 0, 0, 0}.Add(damaged));
    at += 2 + request[at + 1];
  }
  folder.Write("booking_response", "seed-plain", Seed{3, 0, 0, 0}.Add(response));
  folder.Write("booking_response", "seed-more", Seed{1, 0, 2, 0}.Add(response).Add(1).Add(0));
  for (std::size_t record = 0, at = 0; record < 4; ++record) {
    Bytes damaged = response;
    damaged[at] = 1;
    folder.Write("booking_response", "seed-damaged-" + std::to_string(record), Seed{0, 0, 0, 0}.Add(damaged));
    at += 2 + response[at + 1];
  }
}

void WriteReports(Folder& folder) {
  const auto kinds = {ZelReportType::Signed, ZelReportType::Unsigned, ZelReportType::Span,
                      ZelReportType::ActivateZEL};
  for (const ZelReportType kind : kinds) {
    const std::string number = std::to_string(static_cast<int>(kind));
    const Bytes request = ReportRequest(kind, true);
    folder.Write("report_request", "seed-kind-" + number, Seed{1, 0, 0, 0}.Add(request));
    folder.Write("report_request", "seed-more-" + number, Seed{0, 0, 2, 0}.Add(request).Add(158).Add(0));
    Bytes damaged = request;
    damaged.back() = 0xFF;
    folder.Write("report_request", "seed-damaged-" + number, Seed{0, 0, 0, 0}.Add(damaged));
    damaged.pop_back();
    folder.Write("report_request", "seed-cut-off-" + number, Seed{0, 0, 0, 0}.Add(damaged));
  }
  folder.Write("report_request", "seed-no-date", Seed{0, 0, 0, 0}.Add(kTaxpayer));
  folder.Write("report_request", "seed-no-time",
               Seed{0, 0, 0, 0}.Add(Record(ZelTags::tDate, {0x20, 0x26, 0x12, 0x31})));
  folder.Write("report_request", "seed-no-end",
               Seed{0, 0, 0, 0}
                   .Add(Bytes(ReportRequest(ZelReportType::Unsigned)))
                   .Add(Record(ZelTags::Month_Start, {0x20, 0x26, 0x01})));
  folder.Write("report_response", "seed-plain", Seed{3, 0, 0, 0}.Add(ReportResponse()));
  folder.Write("report_response", "seed-state-only", Seed{1, 0, 2, 0}.Add(Record(ZelTags::Lifecycle, {4})));
  folder.Write("report_response", "seed-unexpected", Seed{0, 0, 0, 0}.Add(Record(ZelTags::Operator, {65})));
  for (const ZelTags tag : {ZelTags::Lifecycle, ZelTags::Tp_ID, ZelTags::Tp_ID_No, ZelTags::Seq_Nr_Reprt,
                            ZelTags::Seq_No_Trans_First, ZelTags::Seq_No_Trans_Last, ZelTags::Signature,
                            ZelTags::Container_Training}) {
    folder.Write("report_response", "seed-damaged-" + std::to_string(static_cast<int>(tag)),
                 Seed{0, 0, 0, 0}.Add(static_cast<int>(tag)).Add(9).Add(0));
  }
}

void WriteDataRecords(Folder& folder) {
  const Bytes time = DataRequest(ZELDataSignTypes::DataAndTime);
  const Bytes plain = DataRequest(ZELDataSignTypes::DataOnly);
  const Bytes response = Joined({kSequence, kTaxpayer, kDevice, Signature()});
  folder.Write("data_record", "seed-data", Seed{128 + 64 + 2, 0, 0, 0}.Add("any data"));  // 194 % 3 == 2
  folder.Write("data_record", "seed-binary", Seed{192, 0, 0, 0}.Add("any data"));
  folder.Write("data_record", "seed-binary-sha1", Seed{129, 0, 2, 0}.Add("any data"));
  folder.Write("data_record", "seed-request", Seed{130, 0, 0, 0}.Add(plain));
  folder.Write("data_record", "seed-request-time", Seed{130, 0, 0, 0}.Add(time));
  folder.Write("data_record", "seed-request-damaged",
               Seed{1, 0, 0, 0}.Add(Record(ZelTags::tTime, {0x25, 0x00})));
  folder.Write("data_record", "seed-request-damaged-date",
               Seed{1, 0, 0, 0}.Add(Record(ZelTags::tDate, {0x25, 0x00})));
  folder.Write("data_record", "seed-request-damaged-hash",
               Seed{1, 0, 0, 0}.Add(Record(ZelTags::Hash_Trans_Items, {0x25})));
  folder.Write("data_record", "seed-request-unexpected", Seed{1, 0, 0, 0}.Add(kTaxpayer));
  folder.Write("data_record", "seed-response", Seed{131, 0, 0, 0}.Add(response));
  folder.Write("data_record", "seed-response-plain", Seed{2, 0, 0, 0}.Add(response));
  for (const ZelTags tag :
       {ZelTags::Seq_Nr_Trans, ZelTags::Tp_ID, ZelTags::Tp_ID_No, ZelTags::Signature, ZelTags::Operator}) {
    folder.Write("data_record", "seed-response-damaged-" + std::to_string(static_cast<int>(tag)),
                 Seed{2, 0, 0, 0}.Add(static_cast<int>(tag)).Add(9).Add(0));
  }
  folder.Write("data_record", "seed-start-outside", Seed{0, 0, 0, 251}.Add("any data"));
}

void WriteDocuments(Folder& folder) {
  const auto booking = Booking(1);
  const Bytes request = Request(*booking);
  const Bytes response = BookingResponse();
  Seed::Check(booking->BinaryDataSet(ZELSerialType::Response, ByteArray(response), 0), "no response");
  std::string xml;
  Seed::Check(booking->XmlHandler(xml, true), "no document");
  folder.Write("booking_xml", "seed-document", Seed{5}.Add(xml));
  folder.Write("booking_xml", "seed-empty", Seed{1});
  for (int damage = 0; damage <= 6; ++damage) {
    for (int part = 0; part < 3; ++part) {
      folder.Write("booking_xml", "seed-damage-" + std::to_string(damage) + "-" + std::to_string(part),
                   Seed{4}
                       .Piece(OneItem())
                       .Add(part == 0 ? damage : 0)
                       .Piece(request)
                       .Add(part == 1 ? damage : 0)
                       .Piece(response)
                       .Add(part == 2 ? damage : 0));
      folder.Write("report_xml", "seed-damage-" + std::to_string(damage) + "-" + std::to_string(part),
                   Seed{4}
                       .Piece(" profile=\"laden\"")
                       .Piece(OneItem())
                       .Add(part == 0 ? damage : 0)
                       .Piece(ReportRequest(ZelReportType::Unsigned))
                       .Add(part == 1 ? damage : 0)
                       .Piece(ShortReportResponse())
                       .Add(part == 2 ? damage : 0));
    }
    for (int part = 0; part < 2; ++part) {
      folder.Write("data_record_xml", "seed-damage-" + std::to_string(damage) + "-" + std::to_string(part),
                   Seed{4}
                       .Piece(DataRequest(ZELDataSignTypes::DataAndTime))
                       .Add(part == 0 ? damage : 0)
                       .Piece(response)
                       .Add(part == 1 ? damage : 0));
    }
  }
  const Bytes damaged = {1, 2, 3};
  folder.Write("booking_xml", "seed-bad-items",
               Seed{0}.Piece(damaged).Add(0).Piece(request).Add(0).Piece(response).Add(0));
  folder.Write("booking_xml", "seed-bad-request",
               Seed{0}.Piece(OneItem()).Add(0).Piece(damaged).Add(0).Piece(response).Add(0));
  folder.Write("booking_xml", "seed-bad-response",
               Seed{0}.Piece(OneItem()).Add(0).Piece(request).Add(0).Piece(damaged).Add(0));
  folder.Write("booking_xml", "seed-empty-element", Seed{1}.Add("<transactionEncoded></transactionEncoded>"));
  folder.Write("report_xml", "seed-bad-items", Seed{0}.Piece("").Piece(damaged).Add(0));
  folder.Write("report_xml", "seed-bad-request",
               Seed{0}.Piece(" Profile='A1'").Piece(OneItem()).Add(0).Piece(damaged).Add(0));
  folder.Write("report_xml", "seed-bad-response",
               Seed{0}
                   .Piece("")
                   .Piece(OneItem())
                   .Add(0)
                   .Piece(ReportRequest(ZelReportType::Signed))
                   .Add(0)
                   .Piece(damaged)
                   .Add(0));
  folder.Write("report_xml", "seed-blank-profile",
               Seed{0}
                   .Piece(" profile=' '")
                   .Piece(OneItem())
                   .Add(0)
                   .Piece(ReportRequest(ZelReportType::Span))
                   .Add(0)
                   .Piece(ShortReportResponse())
                   .Add(0));
  folder.Write("report_xml", "seed-activation",
               Seed{0}
                   .Piece("")
                   .Piece(OneItem())
                   .Add(0)
                   .Piece(ReportRequest(ZelReportType::ActivateZEL))
                   .Add(0)
                   .Piece(ShortReportResponse())
                   .Add(0));
  folder.Write("data_record_xml", "seed-bad-request", Seed{0}.Piece(damaged).Add(0));
  folder.Write("data_record_xml", "seed-bad-response",
               Seed{0}.Piece(DataRequest(ZELDataSignTypes::DataOnly)).Add(0).Piece(damaged).Add(0));

  for (int tag = 0; tag <= 8; ++tag) {
    folder.Write("xml_tag", "seed-booking-" + std::to_string(tag), Seed{tag}.Add(xml));
  }
  folder.Write("xml_tag", "seed-attribute",
               Seed{3}.Add("<ITEMLISTENCODED id=\"7\" profile='A1'>\r\n QQ== \r\n</itemListEncoded>"));
  folder.Write("xml_tag", "seed-report",
               Seed{7}.Add("<reportEncoded><reportResponse>  -_AA </reportResponse></reportEncoded>"));
  folder.Write("xml_tag", "seed-wrong-order", Seed{4}.Add("ü</transactionRequest><transactionRequest>"));
  folder.Write("xml_tag", "seed-incomplete", Seed{4}.Add("<transactionRequest>QQ=="));
  folder.Write("xml_tag", "seed-no-bracket", Seed{3}.Add("</itemListEncoded><itemListEncoded profile='A1'"));
}

void WriteCodecs(Folder& folder) {
  folder.Write("codecs", "seed-to-base64",
               Seed{0}.Piece("-").Piece("_").Add(0).Add(0).Add(12).Add(0).Add(0).Add(
                   "any data of some length, longer than a line"));
  folder.Write("codecs", "seed-to-base64-part",
               Seed{0}.Piece("").Piece("").Add(2).Add(3).Add(0).Add(0).Add(0).Add("any data"));
  folder.Write("codecs", "seed-to-base64-equal", Seed{0}.Piece("x").Piece("x"));
  folder.Write("codecs", "seed-to-base64-umlauts",
               Seed{0}.Piece("ä").Piece("ß").Add(0).Add(0).Add(0).Add(0).Add(0).Add(Bytes(9, 0xFB)));
  folder.Write("codecs", "seed-to-base64-start",
               Seed{0}.Piece("").Piece("").Add(100).Add(0).Add(0).Add(0).Add(0).Add("any"));
  folder.Write("codecs", "seed-to-base64-negative",
               Seed{0}.Piece("").Piece("").Add(0).Add(0).Add(0).Add(5).Add(0).Add("any"));
  folder.Write("codecs", "seed-from-base64", Seed{1}.Piece("").Piece("").Add(" QUJD\r\nREU= "));
  folder.Write("codecs", "seed-from-base64-umlauts", Seed{1}.Piece("ä").Piece("ß").Add("äßAAQQ=="));
  folder.Write("codecs", "seed-from-base64-inner-pad", Seed{1}.Piece("").Piece("").Add("QQ==QUJD"));
  folder.Write("codecs", "seed-from-base64-first-pad", Seed{1}.Piece("").Piece("").Add("=AAA"));
  folder.Write("codecs", "seed-from-base64-invalid", Seed{1}.Piece("").Piece("").Add("QQ=#"));
  folder.Write("codecs", "seed-from-base64-length", Seed{1}.Piece("").Piece("").Add("QQ"));
  folder.Write("codecs", "seed-from-base64-empty", Seed{1});
  folder.Write("codecs", "seed-to-base32",
               Seed{2, 0, 0, 0, 16, 0, 0}.Add("any data of some length, longer than a line"));
  for (const int lineLength : {22, 23, 24}) {  // 24 characters
    const std::string length = std::to_string(lineLength);
    folder.Write("codecs", "seed-to-base32-lines-" + length,
                 Seed{2, 0, 0, 0, lineLength, 0, 0}.Add(Bytes(15, 1)));
    folder.Write("codecs", "seed-to-base64-lines-" + length,
                 Seed{0}.Piece("+").Piece("/").Add(0).Add(0).Add(lineLength).Add(0).Add(0).Add(Bytes(18, 1)));
  }
  folder.Write("codecs", "seed-to-base32-hex", Seed{2, 1, 0, 0, 0, 0, 0}.Add("any"));
  folder.Write("codecs", "seed-to-base32-start", Seed{2, 1, 100, 0, 0, 0, 0}.Add("any"));
  folder.Write("codecs", "seed-from-hex", Seed{3}.Add("0a-ff 10\r\n"));
  folder.Write("codecs", "seed-from-hex-odd", Seed{3}.Add("0AF"));
  folder.Write("codecs", "seed-from-hex-invalid", Seed{3}.Add("0G"));
  folder.Write("codecs", "seed-from-hex-umlaut", Seed{3}.Add("0ä"));
  folder.Write("codecs", "seed-from-hex-empty", Seed{3});
  folder.Write("codecs", "seed-to-hex", Seed{4}.Piece("-").Add(0).Add(0).Add(0).Add("any"));
  folder.Write("codecs", "seed-to-hex-digit", Seed{4}.Piece("A").Add(0).Add(0).Add(0).Add("any"));
  folder.Write("codecs", "seed-to-hex-groups", Seed{4}.Piece("").Add(3).Add(0).Add(0).Add("any data"));
  folder.Write("codecs", "seed-to-hex-negative", Seed{4}.Piece("").Add(3).Add(5).Add(0).Add("any data"));
  folder.Write("codecs", "seed-hash", Seed{5, 0, 0}.Add(Bytes(130, 0x80)));
  folder.Write("codecs", "seed-hash-empty", Seed{5, 0, 0});
  folder.Write("codecs", "seed-hash-bounds", Seed{5, 5, 0}.Add("any"));
  folder.Write("codecs", "seed-hash-text", Seed{6}.Add("abc ä € 漢 😀 \xFF"));
  folder.Write("codecs", "seed-text", Seed{7, 8}.Add("Müller GmbH & Co. 😀"));
  folder.Write("codecs", "seed-lines", Seed{7, 20}.Add(std::string_view("a\r\nb\rc\nd\0e\0\0", 12)));
  folder.Write("codecs", "seed-only-nul", Seed{7, 20}.Add(std::string_view("\0\0", 2)));
  folder.Write("codecs", "seed-numbers",
               Seed{8}
                   .Number(0x12340000, 4)
                   .Add(1)
                   .Number(25'000, 8)
                   .Add(2)
                   .Add(1)
                   .Add(0)
                   .Add(0)
                   .Add(Bytes{0x41, 0xE4, 0x91, 0x00, 0x80}));
  folder.Write(
      "codecs", "seed-numbers-outside",
      Seed{8}.Number(0, 4).Add(0).Number(~std::uint64_t{0} / 2, 8).Add(9).Add(0).Add(0).Add(0).Add("a"));
  folder.Write("codecs", "seed-paths-bytes", Seed{9}.Add(Bytes(200, 0xA7)));
  folder.Write("codecs", "seed-paths-digits", Seed{10, 32}.Add(Bytes(200, 'b')));
  folder.Write("codecs", "seed-paths-other-character", Seed{10, 32}.Add(Bytes(100, 'F')).Add(" ").Add("AF"));
}

void WriteRoundings(Folder& folder) {
  const std::vector<std::string_view> texts = {"1,005",
                                               "-2,345",
                                               "1.234.567,895",
                                               " 12 ",
                                               "1,5E3",
                                               "2e-2",
                                               "12x",
                                               "",
                                               "0,00005",
                                               "999999999999999999999999999999",
                                               "922337203685477,5807",
                                               "1E400",
                                               "1e-400",
                                               "+7,5",
                                               "0,0000000000000000000000000000005"};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    folder.Write("rounding", "seed-text-" + std::to_string(i), Seed{0, 2}.Add(texts[i]));
  }
  for (int host = 0; host < 4; ++host) {
    folder.Write("rounding", "seed-text-host-" + std::to_string(host), Seed{3, host, 2}.Add("1234.565"));
  }
  folder.Write("rounding", "seed-text-3-digits", Seed{0, 3}.Add("1,00049"));
  folder.Write("rounding", "seed-text-7-digits", Seed{0, 7}.Add("1,0045"));
  folder.Write("rounding", "seed-double", Seed{4, 2}.Number(1.005));
  folder.Write("rounding", "seed-double-large", Seed{4, 2}.Number(1e300));
  folder.Write("rounding", "seed-currency", Seed{5, 2}.Number(10'050, 8));
  folder.Write("rounding", "seed-currency-largest", Seed{5, 2}.Number(~std::uint64_t{0} / 2, 8));
  folder.Write("rounding", "seed-currency-smallest", Seed{5, 2}.Number(std::uint64_t{1} << 63, 8));
  folder.Write("rounding", "seed-integer", Seed{6, 2}.Number(119, 8));
  folder.Write("rounding", "seed-vat-gross", Seed{7, 1}.Number(190'000, 8).Add(0).Number(1'190'000, 8));
  folder.Write("rounding", "seed-vat-rounded-up", Seed{7, 1}.Number(190'000, 8).Add(0).Number(1'190'500, 8));
  folder.Write("rounding", "seed-vat-half-cent", Seed{7, 1}.Number(250'000, 8).Add(0).Number(1'125, 8));
  folder.Write("rounding", "seed-vat-net", Seed{7, 1}.Number(190'000, 8).Add(1).Number(1'000'000, 8));
  folder.Write("rounding", "seed-vat-overflow",
               Seed{7, 1}.Number(190'000, 8).Add(1).Number(~std::uint64_t{0} / 2, 8));
}

/// Whole courses: from the items to the documents.
void WriteOperations(Folder& folder) {
  constexpr int kItem = 0;
  constexpr int kList = 2;
  constexpr int kBookingHolder = 3;
  constexpr int kReportHolder = 5;
  constexpr int kBooking = 6;
  constexpr int kReport = 8;
  constexpr int kData = 9;
  constexpr int kVat = 10;
  constexpr int kErrors = 11;
  constexpr int kLog = 12;
  constexpr int kPrint = 13;
  // Number of an item's slot, the operation, a whole quantity, name, unit, a whole price, flags.
  const auto item = [](int slot, std::string_view name) {
    return Seed{kItem, slot, 2, 0}.Number(3, 2).Piece(name).Piece("kg").Add(0).Number(7, 2).Add(3).Value();
  };
  const auto type = [](ZELSerialType of) { return static_cast<int>(of) + 1; };
  const Bytes log = Seed{kLog, 0, kLog, 2, 1, 1}.Value();
  Seed course;
  course.Add(log).Add(item(0, "Brot")).Add(item(1, "Kaffee"));
  course.Add(kBookingHolder).Add(0).Add(0).Add(kBookingHolder).Add(0).Add(1);  // two items
  course.Add(kBooking).Add(0).Add(1);                                          // VAT list
  course.Add(kBooking).Add(1).Piece("Kasse 1").Add(0).Number(10'000, 2).Number(978, 4).Add(
      7);                                                                              // its properties
  course.Add(kBooking).Add(5).Add(1).Add(type(ZELSerialType::Request)).Add(0).Add(0);  // request
  for (const bool stored : {false, true}) {
    for (int format = 0; format <= 5; ++format) {
      course.Add(kBookingHolder).Add(4).Add(format).Add(stored ? 1 : 0).Add(4);  // hash as text
    }
  }
  course.Add(kBookingHolder)
      .Add(7)
      .Add(type(ZELSerialType::Response))
      .Add(1)
      .Piece(BookingResponse())
      .Add(0)
      .Add(0)
      .Add(0);
  course.Add(kBooking).Add(5).Add(1).Add(type(ZELSerialType::Response)).Add(5).Add(60);
  course.Add(kBooking).Add(5).Add(1).Add(type(ZELSerialType::ItemList)).Add(5).Add(60);
  course.Add(kBooking).Add(5).Add(1).Add(type(ZELSerialType::ItemHash)).Add(5).Add(60);
  course.Add(kBookingHolder).Add(6).Add(0).Piece("").Add(1).Add(4);  // export
  course.Add(kBookingHolder).Add(6).Add(1).Add(0).Add(4);            // import
  course.Add(kBookingHolder).Add(8).Add(kBooking).Add(2).Add(1).Add(kBooking).Add(3);
  for (int what = 0; what < 8; ++what) {
    course.Add(kPrint).Add(what);
    course.Add(what == 0 || what == 1 || what == 5 ? Bytes{0} : Bytes{});
  }
  folder.Write("operations", "seed-booking", course);

  Seed report;
  report.Add(log).Add(item(0, "Brot")).Add(kReportHolder).Add(0).Add(0);
  report.Add(kReport).Add(0).Add(0).Number(10'000, 2).Add(0).Number(9'000, 2).Add(0).Number(8'000, 2).Piece(
      "123456");
  for (int kind = 0; kind <= 6; ++kind) {
    report.Add(kReport).Add(3).Add(kind).Add(1).Add(type(ZELSerialType::Request)).Add(0).Add(0);
  }
  report.Add(kReportHolder)
      .Add(7)
      .Add(type(ZELSerialType::Response))
      .Add(1)
      .Piece(ShortReportResponse())
      .Add(0)
      .Add(0)
      .Add(0);
  report.Add(kReportHolder).Add(6).Add(0).Piece("").Add(1).Add(0);
  report.Add(kReportHolder).Add(6).Add(1).Add(0).Add(4).Add(kReportHolder).Add(8).Add(kReport).Add(1).Add(1);
  for (int value = 0; value < 4; ++value) {
    report.Add(0).Number(1, 2);
  }
  report.Add(50).Add(2).Add(kReport).Add(2);
  report.Add(kReport).Add(3).Add(0).Add(0).Add(type(ZELSerialType::Response)).Add(0).Add(99);
  report.Add(kReport).Add(3).Add(0).Add(0).Add(type(ZELSerialType::ItemList)).Add(0).Add(99);
  report.Add(kReport).Add(3).Add(0).Add(0).Add(type(ZELSerialType::ItemHash)).Add(0).Add(99);
  report.Add(kReport).Add(3).Add(0).Add(0).Add(type(ZELSerialType::BinaryData)).Add(0).Add(99);
  report.Add(kPrint).Add(4);
  folder.Write("operations", "seed-report", report);

  Seed data;
  data.Add(log).Add(kData).Add(3).Add(type(ZELSerialType::BinaryData)).Piece("any data").Add(0).Add(0);
  data.Add(kData).Add(0).Add(0).Number(10'000, 2).Add(3).Add(1);
  data.Add(kData).Add(1).Add(1).Add(0).Add(0).Add(kData).Add(1).Add(4).Add(1).Add(3);
  data.Add(kData).Add(6).Add(1).Add(type(ZELSerialType::Request)).Add(0).Add(50);
  data.Add(kData).Add(6).Add(1).Add(type(ZELSerialType::Response)).Add(0).Add(50);
  data.Add(kData).Add(3).Add(type(ZELSerialType::Response)).Piece(BookingResponse()).Add(0).Add(0);
  data.Add(kData).Add(6).Add(1).Add(type(ZELSerialType::BinaryData)).Add(0).Add(50);
  data.Add(kData).Add(6).Add(1).Add(type(ZELSerialType::ItemList)).Add(0).Add(50);
  data.Add(kData).Add(2).Add(0).Piece("").Add(1).Add(4).Add(kData).Add(2).Add(1).Add(0).Add(4);
  data.Add(kData).Add(5).Add(0).Add(kData).Add(5).Add(1).Add(0).Add(kData).Add(4).Add(kData).Add(5).Add(0);
  data.Add(kPrint).Add(3);
  folder.Write("operations", "seed-data", data);

  Seed vat;
  vat.Add(log).Add(kVat).Add(3);
  for (const int from : {0, 1'000, 500}) {
    vat.Add(kVat)
        .Add(0)
        .Add(0)
        .Number(static_cast<std::uint64_t>(from), 2)
        .Add(0)
        .Number(static_cast<std::uint64_t>(from) + 600, 2)
        .Add(1)
        .Add(2)
        .Add(0)
        .Number(7, 2);
  }
  for (const int from : {60'000, 0}) {
    vat.Add(kVat)
        .Add(0)
        .Add(0)
        .Number(static_cast<std::uint64_t>(from), 2)
        .Add(0)
        .Number(60'100, 2)
        .Add(1)
        .Add(2)
        .Add(0)
        .Number(7, 2);
  }
  vat.Add(kVat)
      .Add(1)
      .Add(0)
      .Number(100, 2)
      .Add(kVat)
      .Add(1)
      .Add(0)
      .Number(50'000, 2)
      .Add(kVat)
      .Add(2)
      .Add(1)
      .Add(kVat)
      .Add(2)
      .Add(0);
  vat.Add(kVat)
      .Add(5)
      .Add(4)
      .Add(0)
      .Number(3, 2)
      .Add(0)
      .Number(100, 2)
      .Add(5)
      .Add(0)
      .Add(kVat)
      .Add(5)
      .Add(9)
      .Add(kVat)
      .Add(4);
  vat.Add(item(0, "Brot"))
      .Add(kBookingHolder)
      .Add(0)
      .Add(0)
      .Add(kBooking)
      .Add(5)
      .Add(0)
      .Add(type(ZELSerialType::Request))
      .Add(0)
      .Add(0);
  vat.Add(kVat)
      .Add(3)
      .Add(kBooking)
      .Add(0)
      .Add(1)
      .Add(kBooking)
      .Add(5)
      .Add(0)
      .Add(type(ZELSerialType::Request))
      .Add(0)
      .Add(0);
  vat.Add(kVat).Add(0).Add(0).Number(1, 2).Add(0).Number(2, 2).Add(1).Add(2).Add(0).Number(7, 2);
  vat.Add(kBooking).Add(5).Add(0).Add(type(ZELSerialType::Request)).Add(0).Add(0);
  folder.Write("operations", "seed-vat", vat);

  Seed errors;
  errors.Add(log);
  errors.Add(kErrors)
      .Number(9204, 4)
      .Piece("first line\r\nsecond line")
      .Piece("Function")
      .Piece("Source")
      .Piece("Instance")
      .Add(1);
  errors.Add(kErrors).Number(0, 4).Piece("  ").Piece("").Piece("").Piece("").Add(0);
  errors.Add(kErrors).Number(0xFFFFFFFF, 4).Piece("a message").Piece("").Piece("").Piece("").Add(0);
  errors.Add(kLog)
      .Add(4)
      .Add(kLog)
      .Add(3)
      .Add(kLog)
      .Add(4)
      .Add(kLog)
      .Add(2)
      .Add(0)
      .Add(0)
      .Add(kLog)
      .Add(3)
      .Add(kLog)
      .Add(1);
  folder.Write("operations", "seed-errors", errors);

  Seed foreign;
  foreign.Add(log).Add(kItem).Add(0).Add(1).Add(kPrint).Add(0).Add(0).Add(kPrint).Add(1).Add(0);
  foreign.Add(kList)
      .Add(0)
      .Add(0)
      .Add(kList)
      .Add(7)
      .Add(kList)
      .Add(8)
      .Add(kList)
      .Add(4)
      .Add(kList)
      .Add(6)
      .Add(0)
      .Add(0)
      .Piece("")
      .Add(kList)
      .Add(7);
  foreign.Add(kItem)
      .Add(0)
      .Add(10)
      .Add(kItem)
      .Add(0)
      .Add(4)
      .Add(0)
      .Number(7, 2)
      .Piece(" kg ")
      .Piece(" Name ")
      .Add(kItem)
      .Add(0)
      .Add(9)
      .Add(50)
      .Add(0)
      .Add(0);
  foreign.Add(kItem)
      .Add(0)
      .Add(9)
      .Add(1)
      .Add(0)
      .Add(0)
      .Add(kItem)
      .Add(0)
      .Add(9)
      .Add(2)
      .Add(0)
      .Add(0)
      .Add(kItem)
      .Add(0)
      .Add(9)
      .Add(3)
      .Add(0)
      .Add(0);
  folder.Write("operations", "seed-foreign", foreign);

  for (int mood = 0; mood < 6; ++mood) {
    for (const bool meddles : {false, true}) {
      Seed host;
      host.Add(log)
          .Add(kItem)
          .Add(0)
          .Add(0)
          .Add(mood)
          .Add(meddles ? 1 : 0)
          .Add(0)
          .Add(item(0, "Brot"))
          .Add(item(1, "Kaffee"));
      host.Add(kItem)
          .Add(0)
          .Add(5)
          .Add(1)
          .Add(0)
          .Number(5, 2)
          .Add(1)
          .Add(1)
          .Add(1)
          .Add(kItem)
          .Add(0)
          .Add(6)
          .Add(2)
          .Add(0)
          .Number(5, 2)
          .Add(kItem)
          .Add(0)
          .Add(6)
          .Add(9)
          .Add(0)
          .Number(5, 2);
      host.Add(kItem)
          .Add(1)
          .Add(8)
          .Add(1)
          .Add(mood)
          .Add(kItem)
          .Add(1)
          .Add(9)
          .Add(kItem)
          .Add(1)
          .Add(8)
          .Add(0)
          .Add(kItem)
          .Add(1)
          .Add(9);
      host.Add(kList).Add(6).Add(1).Add(mood).Add(1).Add(mood).Piece(" laden ");
      for (int slot = 0; slot < 2; ++slot) {
        host.Add(kList)
            .Add(0)
            .Add(slot)
            .Add(kList)
            .Add(7)
            .Add(kBookingHolder)
            .Add(0)
            .Add(slot)
            .Add(kReportHolder)
            .Add(0)
            .Add(slot);
      }
      host.Add(kList)
          .Add(0)
          .Add(1)
          .Add(kList)
          .Add(4)
          .Add(kList)
          .Add(5)
          .Add(7)
          .Piece("-")
          .Add(kList)
          .Add(3)
          .Add(200)
          .Add(0)
          .Add(0);
      host.Add(kBooking)
          .Add(0)
          .Add(1)
          .Add(kBooking)
          .Add(5)
          .Add(0)
          .Add(type(ZELSerialType::Request))
          .Add(0)
          .Add(0);
      host.Add(kBookingHolder)
          .Add(4)
          .Add(1)
          .Add(0)
          .Add(0)
          .Add(kBookingHolder)
          .Add(8)
          .Add(kReport)
          .Add(3)
          .Add(2)
          .Add(0)
          .Add(type(ZELSerialType::Request))
          .Add(0)
          .Add(0);
      host.Add(kBookingHolder)
          .Add(2)
          .Add(1)
          .Add(1)
          .Add(0)
          .Add(kBookingHolder)
          .Add(2)
          .Add(0)
          .Add(2)
          .Add(kBookingHolder)
          .Add(2)
          .Add(0)
          .Add(9)
          .Add(kBookingHolder)
          .Add(3);
      host.Add(kList)
          .Add(2)
          .Add(1)
          .Add(0)
          .Add(0)
          .Piece("")
          .Add(0)
          .Add(kList)
          .Add(2)
          .Add(0)
          .Add(1)
          .Add(1)
          .Add(0)
          .Add(kItem)
          .Add(1)
          .Add(7);
      folder.Write("operations", "seed-host-" + std::to_string(mood) + (meddles ? "-list" : ""), host);
    }
  }
}

/// Operations whose arguments are their own results, or texts of the objects.
void WriteAliases(Folder& folder) {
  constexpr int kFill = 0;
  constexpr int kErrors = 1;
  constexpr int kHelper = 2;
  constexpr int kReader = 4;
  constexpr int kWriter = 5;
  constexpr int kCoder = 6;
  constexpr int kItem = 7;
  constexpr int kList = 8;
  constexpr int kBooking = 9;
  constexpr int kReport = 10;
  constexpr int kRecord = 11;
  constexpr int kRates = 12;
  constexpr int kPrint = 13;
  const auto seed = [](std::initializer_list<Bytes> steps) { return Seed{}.Add(Joined(steps)); };
  const auto text = [](int number, std::string_view content) {
    return Seed{kFill, 0, number}.Piece(content).Value();
  };
  const auto array = [](const Bytes& bytes, int start = 0) {
    return Seed{kFill, 1, 0, 0}.Piece(bytes).Add(start).Value();
  };
  const auto ascii = [&array](std::string_view content, int start = 0) {
    return array({content.begin(), content.end()}, start);
  };
  const auto type = [](ZELSerialType value) {
    return static_cast<std::uint8_t>(static_cast<int>(value) + 1);
  };
  // Which text: that of a variable, the characters of an array from an offset on, one of an error object.
  const Bytes own = {0, 0, 0};
  const Bytes standing = {3, 0, 0};
  const Bytes standingPart = {3, 0, 1, 1, 6};
  const Bytes message = {7, 0, 0};
  const Bytes function = {7, 1, 0};
  const Bytes failure = {kHelper, 5, 21, 0};  // an empty text is no Base64

  folder.Write("aliases", "seed-read-binary",
               seed({array(Record(ZelTags::Operator, {1, 2, 3})), {kReader, 0, 0, 0, 0, 127}}));
  folder.Write("aliases", "seed-read-empty",
               seed({array(Record(ZelTags::Vat_AddOn, {})), {kReader, 0, 0, 0, 0, 127}}));
  folder.Write("aliases", "seed-read-signature", seed({array(Signature()), {kReader, 2, 0, 0}}));
  folder.Write("aliases", "seed-read-signature-text",
               seed({text(0, "-"), array(Signature()), {kReader, 13, 0, 0, 5}, own, {0}}));
  folder.Write("aliases", "seed-read-serial",
               seed({array(Record(ZelTags::Serial_No, {0x41, 0xE4})), {kReader, 7, 0, 0, 1, 0, 1}}));
  folder.Write("aliases", "seed-read-currency",
               seed({array(Record(ZelTags::Currency, {0x03, 0xD2})), {kReader, 11, 0}}));
  folder.Write("aliases", "seed-check", seed({array(Record(ZelTags::Currency, {3})), {kReader, 12, 0, 0}}));
  folder.Write("aliases", "seed-write-itself", seed({array({1, 2, 3}), {kWriter, 0, 0, 198, 0}}));
  for (const int writer : {4, 6, 8, 9}) {
    for (const int start : {0, 1, 3}) {
      const auto step = static_cast<std::uint8_t>(writer);
      folder.Write("aliases", "seed-write-" + std::to_string(writer) + "-" + std::to_string(start),
                   seed({ascii("0123456789", start), {kWriter, step, 0, 198}, standingPart, {1}}));
    }
  }
  folder.Write("aliases", "seed-write-signed",
               seed({ascii("123456D000", 1), {kWriter, 7, 0, 216}, {3, 0, 1, 0, 7}}));
  folder.Write("aliases", "seed-write-umlaut",
               seed({ascii("aüb.......", 0), {kWriter, 4, 0, 198}, {3, 0, 1, 0, 4}}));
  folder.Write("aliases", "seed-write-hash",
               seed({ascii("AAECAwQFBgcICQoLDA0ODxAREhM="), {kWriter, 10, 0, 199}, standing, {1}}));
  folder.Write("aliases", "seed-base64", seed({ascii("QUJDREVGR0g="), {kHelper, 5}, standing, {0}}));
  folder.Write("aliases", "seed-base64-damaged", seed({ascii("QUJDREV#"), {kHelper, 5}, standing, {0}}));
  folder.Write("aliases", "seed-base64-replaced",
               seed({ascii("-_8="), {kHelper, 7}, standing, {0}, {3, 0, 1, 0, 1}, {3, 0, 1, 1, 1}}));
  folder.Write("aliases", "seed-base64-out",
               seed({text(0, "-"), array({0xFB, 0xFF}), {kHelper, 3, 0, 0, 0, 0, 0}, own, {24, 1, 95, 0}}));
  folder.Write("aliases", "seed-hexadecimal", seed({ascii("0aFF-1022"), {kHelper, 9}, standing, {0}}));
  folder.Write("aliases", "seed-hexadecimal-out",
               seed({text(0, ":"), array({1, 2, 3}), {kHelper, 11, 0, 0}, own, {2}}));
  folder.Write("aliases", "seed-hashes",
               seed({ascii("abc"),
                     {kHelper, 13, 0, 0, 1},
                     {kHelper, 12},
                     standing,
                     {0, 0},
                     text(0, "abc"),
                     {kHelper, 14},
                     own,
                     {0, 1}}));
  folder.Write(
      "aliases", "seed-lines",
      seed({text(0, "a\r\nb"), {kHelper, 0}, own, {kHelper, 0, 6, 1, 0}, failure, {kHelper, 0}, message}));
  folder.Write("aliases", "seed-error-texts",
               seed({failure,
                     {kHelper, 14},
                     function,
                     {0, 0},
                     failure,
                     {kErrors, 0},
                     message,
                     message,
                     function,
                     function,
                     {5, 1},
                     {kErrors, 0},
                     {9, 0, 0},
                     {9, 1, 0},
                     {9, 2, 0},
                     {9, 0, 0},
                     {7, 0}}));
  folder.Write("aliases", "seed-messages",
               seed({failure,
                     {kErrors, 6},
                     message,
                     function,
                     message,
                     function,
                     {kErrors, 6},
                     {14, 0},
                     {15, 1, 0},
                     {14, 0},
                     {15, 0, 0}}));
  folder.Write(
      "aliases", "seed-element",
      seed({text(0, "<transactionRequest> AQI= </transactionRequest>"), {kCoder, 0}, own, {4, 0, 0}}));
  folder.Write("aliases", "seed-separator",
               seed({text(0, "-"), array({1, 2, 3, 4}), {kCoder, 1, 0, 0, 2}, own, {0}}));
  folder.Write("aliases", "seed-item",
               seed({{kItem, 0, 0}, {17, 0, 0}, {16, 0, 0}, {2}, {kItem, 2, 0, 16, 0, 1, 5, 9}}));
  folder.Write("aliases", "seed-list",
               seed({{kList, 3, 0, 33},
                     {kList, 3, 0, 34},
                     {kList, 3, 0, 64},
                     {kList, 3, 1, 65},
                     {18, 0},
                     {0},
                     text(0, "-"),
                     {kList, 0, 7, 0},
                     own}));
  folder.Write("aliases", "seed-list-items",
               seed({array(OneItem()), {kList, 2, 0, 0}, {kFill, 3, 0}, {kList, 1, 0}}));
  folder.Write("aliases", "seed-booking",
               seed({{kBooking, 4, 0, 33},
                     {kBooking, 0, 16, 0, 0},
                     {kFill, 3, 0},
                     {kBooking, 2, 1, type(ZELSerialType::Request), 0},
                     array(BookingResponse()),
                     {kBooking, 2, 2, type(ZELSerialType::Response), 0, 0},
                     {kBooking, 2, 0, 0, 1, 5},
                     {kBooking, 2, 0, 0, 0, 5},
                     {kBooking, 1, 1},
                     {kBooking, 4, 1, 64},
                     own,
                     {0}}));
  folder.Write("aliases", "seed-report",
               seed({{kReport, 3, 0, 33},
                     {kReport, 0, 19, 1, 0},
                     {kFill, 3, 0},
                     {kReport, 1, 1, type(ZELSerialType::Request), 0, 1},
                     array(ShortReportResponse()),
                     {kReport, 1, 2, type(ZELSerialType::Response), 0, 0},
                     {kReport, 1, 0, 0, 1, 5},
                     {kReport, 1, 0, 0, 0, 5}}));
  folder.Write("aliases", "seed-record",
               seed({array({1, 2, 3}),
                     {kRecord, 2, type(ZELSerialType::BinaryData), 0, 0},
                     array(Bytes(100, 0)),
                     {kRecord, 1, type(ZELSerialType::Request), 0},
                     array(BookingResponse()),
                     {kRecord, 2, type(ZELSerialType::Response), 0, 0},
                     {kRecord, 0, 0, 1, 5},
                     {kRecord, 0, 0, 0, 5}}));
  folder.Write("aliases", "seed-rates",
               seed({Seed{kFill, 4}.Number(1'190'000, 8).Value(),
                     {kRates, 0, 1, 0, 1, 0},
                     {kRates, 1},
                     array(Container(ZelTags::Container_Vat_1)),
                     {kRates, 2, 0},
                     {kFill, 3, 0},
                     {kRates, 3, 0}}));
  folder.Write("aliases", "seed-print",
               seed({{kPrint, 0, 0, 0},
                     {kPrint, 1, 0, 1},
                     {kPrint, 0, 1},
                     {kPrint, 1, 2},
                     {kPrint, 0, 3},
                     {kPrint, 1, 3}}));
}

/// Each step begins with what is done, then the object; an object of the host that is asked takes its answers from what
/// follows, and behaves at the end of the input.
void WriteHosts(Folder& folder) {
  constexpr std::uint8_t kItem = 1;
  constexpr std::uint8_t kListItems = 2;
  constexpr std::uint8_t kList = 3;
  constexpr std::uint8_t kBookingItems = 4;
  constexpr std::uint8_t kBooking = 5;
  constexpr std::uint8_t kReportItems = 7;
  constexpr std::uint8_t kReport = 8;
  constexpr std::uint8_t kRecord = 9;
  constexpr std::uint8_t kAttach = 10;
  constexpr std::uint8_t kLetGo = 11;
  constexpr std::uint8_t kIterate = 12;
  constexpr std::uint8_t kBox = 13;
  constexpr std::uint8_t kLog = 14;
  constexpr std::uint8_t kPrint = 15;
  const Bytes hostItem = {kItem, 0, 1, 7};
  const Bytes hostCash = {kItem, 1, 2};
  // The host's item is given a log and asked for its ID.
  const auto addHostItem = [](std::uint8_t holder) { return Bytes{holder, 0, 0, 0, 0, 0, 0, 0, 0}; };
  const auto add = [](std::uint8_t holder, std::uint8_t item) { return Bytes{holder, 0, 0, item}; };
  const auto write = [&folder](const std::string& name, std::initializer_list<Bytes> steps) {
    folder.Write("hosts", "seed-" + name, Seed{}.Add(Joined(steps)));
  };
  for (std::uint8_t answer = 0; answer <= 15; ++answer) {
    const std::string number = std::to_string(answer);
    write("list-" + number,
          {hostItem, add(kListItems, 2), addHostItem(kListItems), {kList, 0, 1, 1, answer}});
    write("request-" + number,
          {hostItem, add(kBookingItems, 2), addHostItem(kBookingItems), {kBooking, 0, 0, answer}});
    write("report-" + number, {hostItem, addHostItem(kReportItems), {kReport, 0, 0, 1, answer}});
    // A factory that makes three items.
    write("factory-" + number, {{kAttach, 1, 0, 1, 0}, {kBooking, 0, 1, 3, 0, 0, 0, answer, 0, 0, answer}});
  }
  write("host-cash", {hostCash, add(kBookingItems, 1), {kBooking, 0, 0, 1, kBookingItems, 0, 6}});
  for (std::uint8_t kind = 0; kind <= 9; ++kind) {
    const std::string number = std::to_string(kind);
    write("engine-" + number,
          {add(kBookingItems, 2), {kAttach, 4, 0, 0, 0}, {kBooking, 0, 3, 1, kLetGo, kind}});
    write("print-" + number, {{kPrint, 0, static_cast<std::uint8_t>(kind % 4), 0, 1, kLetGo, kind}});
    write("box-" + number, {{kBox, 1, 0, 1, kLetGo, kind}});
    write(
        "loop-" + number,
        {add(kListItems, 2), add(kListItems, 3), {kIterate, 0, 0, 2, 1, kLetGo, kind}, {kIterate, 0, 0, 1}});
    write("record-" + number,
          {{kRecord, 0, 0, 3, 1, 2, 3}, {kAttach, 5, 0, 0, 0}, {kRecord, 0, 3, 1, kLetGo, kind}});
  }
  write("log", {{kLog, 0, 1, kLetGo, 9}});
}

void WriteDevices(Folder& folder) {
  constexpr int kActive = 0;
  constexpr int kNew = 1;
  const Bytes booking = Request(*Booking(0));
  const Bytes note = Request(*Booking(7));
  const Bytes data = DataRequest(ZELDataSignTypes::DataOnly);
  const Bytes time = DataRequest(ZELDataSignTypes::DataAndTime);
  folder.Write("device", "seed-booking", Seed{kActive, 1}.Piece(booking).Add(1).Piece(note));
  folder.Write("device", "seed-booking-closing",
               Seed{kActive, 1}
                   .Piece(booking)
                   .Add(6)
                   .Piece(ReportRequest(ZelReportType::Unsigned))
                   .Add(5)
                   .Piece(ReportRequest(ZelReportType::Signed, true)));
  folder.Write("device", "seed-data", Seed{kActive, 2}.Piece(data).Add(3).Piece(data).Add(4).Piece(time));
  folder.Write("device", "seed-span",
               Seed{kActive, 1}.Piece(booking).Add(7).Piece(ReportRequest(ZelReportType::Span)));
  folder.Write("device", "seed-activation",
               Seed{kNew, 1}
                   .Piece(booking)
                   .Add(8)
                   .Piece(ReportRequest(ZelReportType::ActivateZEL))
                   .Add(1)
                   .Piece(booking));
  folder.Write("device", "seed-deactivation",
               Seed{kActive, 9}.Piece(ReportRequest(ZelReportType::DeactivateZEL)).Add(1).Piece(booking));
  Bytes wrongPin = ReportRequest(ZelReportType::ActivateZEL);
  wrongPin.back() = '0';
  folder.Write(
      "device", "seed-wrong-pins",
      Seed{kNew, 8}.Piece(wrongPin).Add(8).Piece(wrongPin).Add(8).Piece(wrongPin).Add(8).Piece(wrongPin));
  const std::vector<std::pair<std::size_t, Bytes>> damages = {
      {0, Record(ZelTags::tDate, {0x20, 0x26, 0x02, 0x30})},
      {0, Record(ZelTags::tDate, {0x26, 0x12, 0x31})},
      {1, Record(ZelTags::tTime, {0x24, 0x00})},
      {1, Record(ZelTags::tTime, {0x05})},
      {2, Record(ZelTags::Operator, {})},
      {2, Text(ZelTags::Operator, "Kasse in der Halle")},
      {2, Record(ZelTags::Operator, {0x41, 0x1F})},
      {3, Record(ZelTags::Hash_Trans_Items, Bytes(21, 0xAB))},
      {3, Record(ZelTags::Hash_Reprt_Items, Bytes(20, 0))},
      {4, Record(ZelTags::Currency, {})},
      {4, Record(ZelTags::Currency, {1, 2, 3, 4, 5})},
      {5, Record(ZelTags::Container_Vat_1, {})},
      {5, Container(ZelTags::Container_Training)},
      {5, Record(ZelTags::Vat_AddOn, {1})},
      {5, LongContainer(ZelTags::Container_Vat_1)}};
  for (std::size_t i = 0; i < damages.size(); ++i) {
    folder.Write("device", "seed-damaged-" + std::to_string(i),
                 Seed{kActive, 1}.Piece(WithRecord(booking, damages[i].first, damages[i].second)));
  }
  folder.Write("device", "seed-unknown-command", Seed{kActive, 99}.Piece(booking).Add(1).Piece(Bytes{}));
}

/// Each kind of damage, and an unfinished request.
void WriteDeviceFiles(Folder& folder) {
  enum {
    kByte,
    kPageHeader,
    kZeros,
    kCut,
    kMovePage,
    kOlderPage,
    kOlder,
    kJournal,
    kJournalByte,
    kJournalCut,
    kLog
  };
  constexpr std::uint64_t kLastVersion = 44;
  const auto seed = [](int kind) { return Seed{kind}; };
  folder.Write("device_file", "seed-nothing", Seed());
  for (const std::uint64_t position : {16, 24, 28, 36, 96, 4096, 9000, 20000}) {
    folder.Write("device_file", "seed-byte-" + std::to_string(position),
                 seed(kByte).Number(position, 4).Add(1));
  }
  for (int page = 0; page < 8; ++page) {
    const std::string number = std::to_string(page);
    folder.Write("device_file", "seed-header-" + number, seed(kPageHeader).Add(page).Add(6).Add(8));
    folder.Write("device_file", "seed-move-" + number, seed(kMovePage).Add(page).Add((page + 1) % 8));
    folder.Write("device_file", "seed-older-page-" + number,
                 seed(kOlderPage).Number(kLastVersion - 1, 4).Add(page));
  }
  folder.Write("device_file", "seed-zeros", seed(kZeros).Number(8192, 4).Number(512, 2));
  folder.Write("device_file", "seed-cut", seed(kCut).Number(10000, 4));
  folder.Write("device_file", "seed-older", seed(kOlder).Number(3, 4));
  folder.Write("device_file", "seed-unfinished", seed(kJournal).Number(kLastVersion, 4));
  folder.Write("device_file", "seed-old-journal", seed(kJournal).Number(3, 4));
  folder.Write("device_file", "seed-torn-journal",
               seed(kJournal).Number(kLastVersion, 4).Add(kJournalCut).Number(5000, 4));
  folder.Write("device_file", "seed-damaged-journal",
               seed(kJournal).Number(kLastVersion, 4).Add(kJournalByte).Number(600, 4).Add(1));
  folder.Write("device_file", "seed-log", seed(kLog).Piece("a log"));
}

int Run(int argc, char** argv) {
  Seed::Check(argc == 2, "usage: fuzz_seeds FOLDER");
  Folder folder(argv[1]);
  WriteRecords(folder);
  WriteRecordWriters(folder);
  WriteItems(folder);
  WriteContainers(folder);
  WriteBookings(folder);
  WriteReports(folder);
  WriteDataRecords(folder);
  WriteDocuments(folder);
  WriteCodecs(folder);
  WriteRoundings(folder);
  WriteOperations(folder);
  WriteAliases(folder);
  WriteHosts(folder);
  WriteDevices(folder);
  WriteDeviceFiles(folder);
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "fuzz_seeds: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
