#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "tests/booking/Support.h"
#include "tests/support/Error.h"
#include "tests/support/Hex.h"
#include "tests/support/LogFile.h"

namespace test {

using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsVnLogFile;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::clsZelVatItem;
using VnZEL10cmn::clsZelVatList;
using VnZEL10cmn::IVnZelItem;
using VnZEL10cmn::ZELHashFmt;

/// The records of an item: quantity 1, name "x".
inline constexpr std::string_view kAnyItem = "A0 01 31 A2 01 78";

// The texts of the run-time numbers.
inline constexpr std::string_view kInvalidCall = "Ungültiger Prozeduraufruf oder ungültiges Argument";
inline constexpr std::string_view kOverflow = "Überlauf";
inline constexpr std::string_view kOutOfMemory = "Nicht genügend Speicher";
inline constexpr std::string_view kOutOfRange = "Index außerhalb des gültigen Bereichs";
inline constexpr std::string_view kTypeMismatch = "Typen unverträglich";
inline constexpr std::string_view kNoObject = "Objektvariable oder With-Blockvariable nicht festgelegt";

/// The text of a run-time number; empty for any other.
inline std::string_view RunTimeText(std::int32_t number) {
  switch (number) {
    case 5: return kInvalidCall;
    case 6: return kOverflow;
    case 7: return kOutOfMemory;
    case 9: return kOutOfRange;
    case 13: return kTypeMismatch;
    case 91: return kNoObject;
    default: return {};
  }
}

/// A fault with the whole text of its number.
inline void ExpectRunTimeError(const clsVnError& error, std::int32_t number, std::string_view function,
                               const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  ExpectError(error, number, false, function, RunTimeText(number), file, line);
}

/// A failure as the library files any: a number of its own, or one of the run-time system with its text.
inline void ExpectDocumented(const clsVnError& error, const char* file = __builtin_FILE(),
                             int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected a documented failure");
  EXPECT_TRUE(error.HasError());
  EXPECT_FALSE(error.ErrorFunction().empty());
  const std::int32_t number = error.ErrorNr();
  if (error.IsUserDef()) {
    EXPECT_TRUE((number >= 9000 && number <= 9001) || (number >= 9101 && number <= 9106) ||
                (number >= 9202 && number <= 9211) || (number >= 9301 && number <= 9307))
        << number;
    EXPECT_FALSE(error.ErrorMsg().empty());
  } else {
    EXPECT_FALSE(RunTimeText(number).empty()) << number;
    EXPECT_EQ(error.ErrorMsg(), RunTimeText(number));
  }
}

/// The outcome of an operation whose failure, if it fails, is a documented one.
template <class Object>
void ExpectOutcome(Object& object, bool succeeded, const char* file = __builtin_FILE(),
                   int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "expected outcome");
  if (succeeded) {
    ExpectNoError(object, file, line);
  } else {
    ExpectDocumented(object.ErrorObject(), file, line);
  }
}

/// An item of a host's own. It behaves unless a test says what it does instead; what is to be done on the way is
/// called before the answer.
class ScriptedItem : public IVnZelItem {
 public:
  explicit ScriptedItem(std::string id, std::string_view hex = kAnyItem)
      : id(std::move(id)), bytes(FromHex(hex)) {}

  std::string InstanceID() override {
    ++idsAsked;
    Call(onId);
    return id;
  }
  clsVnError& ErrorObject() override { return error; }
  std::shared_ptr<clsVnLogFile> LogHandler() override { return log; }
  void LogHandler(std::shared_ptr<clsVnLogFile> Value) override {
    Call(onLog);
    log = std::move(Value);
  }
  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start) override {
    ++writes;
    Call(onWrite);
    return write ? write(Data, Start) : Write(Data, Start);
  }
  bool BinaryDataSet(const ByteArray& Data, std::int32_t& Start) override {
    Call(onRead);
    return read ? read(Data, Start) : Read(Data, Start);
  }
  bool Clear() override { return true; }
  bool HasError() override { return error.HasError(); }
  bool GetPrices(CurrencyArray& Prices, bool& IsThrdPrt) override {
    Call(onPrices);
    if (givePrices) {
      return givePrices(Prices, IsThrdPrt);
    }
    for (std::int32_t i = 0; i < 6; ++i) {
      Prices[i] = prices[static_cast<std::size_t>(i)];
    }
    IsThrdPrt = thirdParty;
    return true;
  }
  std::string ToString() override {
    Call(onShow);
    return text;
  }

  /// Copies the item's records to `start`.
  bool Write(ByteArray& data, std::int32_t& start) const {
    for (const std::uint8_t byte : bytes) {
      data[start++] = byte;
    }
    return true;
  }

  /// Takes everything up to the next quantity record or the end.
  bool Read(const ByteArray& data, std::int32_t& start) {
    const std::int32_t first = start;
    while (start <= data.UBound() && (start == first || data[start] != 0xA0)) {
      ++start;
    }
    bytes = ByteArray(std::span<const std::uint8_t>(&data[first], static_cast<std::size_t>(start - first)));
    return true;
  }

  std::string id;
  ByteArray bytes;
  std::array<Currency, 6> prices{};
  bool thirdParty = false;
  std::string text = "scripted";
  clsVnError error;
  std::shared_ptr<clsVnLogFile> log;
  int idsAsked = 0;
  int writes = 0;

  std::function<void()> onId;
  std::function<void()> onLog;
  std::function<void()> onWrite;
  std::function<void()> onRead;
  std::function<void()> onPrices;
  std::function<void()> onShow;
  std::function<bool(ByteArray&, std::int32_t&)> write;
  std::function<bool(const ByteArray&, std::int32_t&)> read;
  std::function<bool(CurrencyArray&, bool&)> givePrices;

 private:
  /// What is called may set another function in its own place.
  static void Call(const std::function<void()>& function) {
    const std::function<void()> kept = function;
    if (kept) {
      kept();
    }
  }
};

inline std::shared_ptr<ScriptedItem> Scripted(std::string id, std::string_view hex = kAnyItem) {
  return std::make_shared<ScriptedItem>(std::move(id), hex);
}

/// A factory of a host's own.
class ScriptedFactory : public VnZEL10cmn::clsZelListItemFact {
 public:
  using Make = std::function<std::shared_ptr<IVnZelItem>()>;
  explicit ScriptedFactory(Make make) : make_(std::move(make)) {}
  std::shared_ptr<IVnZelItem> CreateNewItem(clsVnError*) override { return make_(); }

 private:
  Make make_;
};

/// A print engine of a host's own: what it is given to show goes to the functions.
class ScriptedEngine : public VnZEL10cmn::clsZelItemPrint {
 public:
  using clsZelItemPrint::ToStringBI;
  using clsZelItemPrint::ToStringCI;
  using clsZelItemPrint::ToStringTRdata;
  std::string ToStringCI(std::shared_ptr<IVnZelItem> Item, clsVnError* ErrObj) override {
    return item ? item(std::move(Item), ErrObj) : clsZelItemPrint::ToStringCI(std::move(Item), ErrObj);
  }
  std::string ToStringBI(std::shared_ptr<clsZelTransAct> BookItem, clsVnError* ErrObj) override {
    return booking ? booking(std::move(BookItem), ErrObj)
                   : clsZelItemPrint::ToStringBI(std::move(BookItem), ErrObj);
  }
  std::string ToStringTRdata(std::shared_ptr<clsZelTransActData> BookItem, clsVnError* ErrObj) override {
    return record ? record(std::move(BookItem), ErrObj)
                  : clsZelItemPrint::ToStringTRdata(std::move(BookItem), ErrObj);
  }

  std::function<std::string(std::shared_ptr<IVnZelItem>, clsVnError*)> item;
  std::function<std::string(std::shared_ptr<clsZelTransAct>, clsVnError*)> booking;
  std::function<std::string(std::shared_ptr<clsZelTransActData>, clsVnError*)> record;
};

/// The same for reports.
class ScriptedReportEngine : public VnZEL10cmn::clsZelRprtPrint {
 public:
  using clsZelRprtPrint::ToStringRprt;
  std::string ToStringRprt(std::shared_ptr<clsZelReport> RprtItem, clsVnError* ErrObj) override {
    return report ? report(std::move(RprtItem), ErrObj)
                  : clsZelRprtPrint::ToStringRprt(std::move(RprtItem), ErrObj);
  }

  std::function<std::string(std::shared_ptr<clsZelReport>, clsVnError*)> report;
};

/// A booking that lacks nothing but items.
inline void Prepare(clsZelTransAct& booking) {
  booking.VatList(std::make_shared<clsZelVatList>());
  booking.TransactionDate(Date::FromCivil(2024, 3, 15, 14, 37, 25));
  booking.Operator("Anna");
}

/// What a log file holds of one failure.
struct LogEntry {
  std::string source;  ///< the class
  std::string function;
  std::string number;
  std::string message;  ///< its lines separated by CR LF, code page 1252

  friend bool operator==(const LogEntry&, const LogEntry&) = default;
  friend void PrintTo(const LogEntry& entry, std::ostream* out) {
    *out << entry.source << ", " << entry.function << ", " << entry.number << ": " << entry.message;
  }
};

/// A text of these tests in the log's code page: what is no ASCII in them is Latin-1.
inline std::string Latin1(std::string_view utf8) {
  std::string text;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    if (byte < 0x80) {
      text.push_back(utf8[i]);
    } else {
      const auto next = static_cast<unsigned char>(utf8[++i]);
      text.push_back(static_cast<char>((byte & 0x1FU) << 6U | (next & 0x3FU)));
    }
  }
  return text;
}

/// An entry as a test expects it, its message in UTF-8.
inline LogEntry Entry(std::string_view source, std::string_view function, int number,
                      std::string_view message) {
  return {std::string(source), std::string(function), std::to_string(number), Latin1(message)};
}

inline std::vector<LogEntry> LogEntries(const TestLog& log) {
  static constexpr std::string_view messageLabel = "Meldung ............: ";
  static constexpr std::string_view continued = "                                               ";
  const std::vector<std::string> functions = log.Functions();
  const std::vector<std::string> numbers = log.Numbers();
  const std::vector<std::string> sources = LogSources(log);
  const std::vector<std::string> texts = log.Entries();
  std::vector<LogEntry> entries;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    std::string message = texts[i].substr(texts[i].find(messageLabel) + messageLabel.size());
    const std::string lineEnd = std::string("\r\n") + std::string(continued);
    for (std::size_t at = message.find(lineEnd); at != std::string::npos;
         at = message.find(lineEnd, at + 2)) {
      message.erase(at + 2, continued.size());
    }
    entries.push_back({sources[i], functions[i], numbers[i], message});
  }
  return entries;
}

/// Source and function of every entry, where the texts are tested elsewhere.
inline std::vector<std::string> LogNames(const TestLog& log) {
  std::vector<std::string> names;
  for (const LogEntry& entry : LogEntries(log)) {
    names.push_back(entry.source + " " + entry.function);
  }
  return names;
}

/// The bytes that a list writes; a failure fails the test.
inline ByteArray BytesOf(clsZelItemList& list, const char* file = __builtin_FILE(),
                         int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "bytes of a list");
  ByteArray data;
  std::int32_t length = 0;
  EXPECT_TRUE(list.BinaryDataGet(data, length)) << list.ErrorObject().ErrorMsg();
  data.RedimPreserve(length - 1);
  return data;
}

/// The items by identity, as `ItemI` has them.
template <class List>
std::vector<std::shared_ptr<IVnZelItem>> ItemsOf(List& list) {
  std::vector<std::shared_ptr<IVnZelItem>> items;
  for (std::int32_t i = 1; i <= list.ItemCount(); ++i) {
    items.push_back(list.ItemI(i));
  }
  return items;
}

/// What the hash of these records is in a booking (SHA-256) or a report (SHA-1), as Base64 text.
inline std::string Sha256Text(std::string_view hex) { return Base64(ItemSha256(FromHex(hex))); }
inline std::string Sha1Text(std::string_view hex) { return Base64(ItemSha1(FromHex(hex))); }

}  // namespace test
