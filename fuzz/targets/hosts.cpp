// A graph of objects that share items, logs, engines and factories with a host's own ones, which do anything while the
// library asks them: they call the library again, let go of what is running, move bounds and positions, and throw.

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "fuzz/Check.h"
#include "fuzz/Objects.h"
#include "fuzz/Targets.h"

namespace fuzz {

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsVnLogFile;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::clsZelItemPrint;
using VnZEL10cmn::clsZelListItemFact;
using VnZEL10cmn::clsZelReport;
using VnZEL10cmn::clsZelRprtPrint;
using VnZEL10cmn::clsZelTransAct;
using VnZEL10cmn::clsZelTransActData;
using VnZEL10cmn::clsZelVatItem;
using VnZEL10cmn::clsZelVatList;
using VnZEL10cmn::Currency;
using VnZEL10cmn::CurrencyArray;
using VnZEL10cmn::Date;
using VnZEL10cmn::IVnZelItem;
using VnZEL10cmn::ZELHashFmt;
using VnZEL10cmn::ZELSerialType;

constexpr int kMostSteps = 50;    ///< of the program itself
constexpr int kMostActions = 80;  ///< of hosts' objects, all in all
constexpr int kDeepest = 4;       ///< hosts' objects that were called by hosts' objects
constexpr std::int32_t kOwnNumber = 4711;

/// The text of every run-time number, those of a host's exceptions included.
std::string_view RunTimeText(std::int32_t number) {
  switch (number) {
    case 5: return "Ungültiger Prozeduraufruf oder ungültiges Argument";
    case 6: return "Überlauf";
    case 7: return "Nicht genügend Speicher";
    case 9: return "Index außerhalb des gültigen Bereichs";
    case 13: return "Typen unverträglich";
    case 91: return "Objektvariable oder With-Blockvariable nicht festgelegt";
    default: return {};
  }
}

/// What an error object may hold here after any operation.
void CheckFiled(clsVnError& error) {
  FUZZ_CHECK(error.GetLogEntry().empty() == !error.HasError());
  if (!error.HasError() || error.ErrorNr() == kOwnNumber) {
    return;
  }
  if (!error.IsUserDef() && !RunTimeText(error.ErrorNr()).empty()) {
    FUZZ_CHECK(error.ErrorMsg() == RunTimeText(error.ErrorNr()));
    FUZZ_CHECK(!error.ErrorFunction().empty());
    return;
  }
  CheckError(error, false, "");
}

class Play;

/// What hosts' objects have in common: they know the program that they belong to.
class Meddler {
 public:
  explicit Meddler(Play& play) : play_(play) {}

 protected:
  /// Does something, or nothing.
  void Meddle() const;
  /// A choice of the input's, 0 where all is to go well.
  [[nodiscard]] std::int32_t Choose(std::int32_t most) const;
  /// The same for what may throw.
  void MaybeThrow() const;

  Play& play_;
};

/// An item of a host's own class.
class HostItem : public IVnZelItem, private Meddler {
 public:
  HostItem(Play& play, std::string id) : Meddler(play), id_(std::move(id)) {}
  ~HostItem() override;

  std::string InstanceID() override;
  clsVnError& ErrorObject() override { return error_; }
  std::shared_ptr<clsVnLogFile> LogHandler() override { return log_; }
  void LogHandler(std::shared_ptr<clsVnLogFile> Value) override {
    Meddle();
    MaybeThrow();
    log_ = std::move(Value);
  }
  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start) override;
  bool BinaryDataSet(const ByteArray& Data, std::int32_t& Start) override;
  bool Clear() override { return true; }
  bool HasError() override { return error_.HasError(); }
  bool GetPrices(CurrencyArray& Prices, bool& IsThrdPrt) override;
  std::string ToString() override;

 private:
  std::string id_;
  std::vector<std::uint8_t> bytes_ = {0xA0, 1, 0x31, 0xA2, 1, 0x78};
  Currency price_ = 1;
  clsVnError error_;
  std::shared_ptr<clsVnLogFile> log_;
};

/// A cash item of a host's own.
class HostCash : public clsZelItemCash, private Meddler {
 public:
  explicit HostCash(Play& play) : Meddler(play) { SetItemData(1, "host", "", 2); }

  using clsZelItemCash::BinaryDataGet;
  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start) override;
  bool GetPrices(CurrencyArray& Prices, bool& IsThrdPrt) override {
    Meddle();
    return clsZelItemCash::GetPrices(Prices, IsThrdPrt);
  }
  std::string ToString() override {
    Meddle();
    return clsZelItemCash::ToString();
  }
};

class HostFactory : public clsZelListItemFact, private Meddler {
 public:
  explicit HostFactory(Play& play) : Meddler(play) {}
  std::shared_ptr<IVnZelItem> CreateNewItem(clsVnError* ErrObj) override;

 private:
  std::vector<std::shared_ptr<clsZelItemCash>> made_;
};

class HostEngine : public clsZelItemPrint, private Meddler {
 public:
  explicit HostEngine(Play& play) : Meddler(play) {}
  using clsZelItemPrint::ToStringBI;
  using clsZelItemPrint::ToStringCI;
  using clsZelItemPrint::ToStringTRdata;
  std::string ToStringCI(std::shared_ptr<IVnZelItem> Item, clsVnError* ErrObj) override {
    return Render(Item, ErrObj, [&] { return clsZelItemPrint::ToStringCI(Item, ErrObj); });
  }
  std::string ToStringBI(std::shared_ptr<clsZelTransAct> BookItem, clsVnError* ErrObj) override {
    return Render(BookItem, ErrObj, [&] { return clsZelItemPrint::ToStringBI(BookItem, ErrObj); });
  }
  std::string ToStringTRdata(std::shared_ptr<clsZelTransActData> BookItem, clsVnError* ErrObj) override {
    return Render(BookItem, ErrObj, [&] { return clsZelItemPrint::ToStringTRdata(BookItem, ErrObj); });
  }

 private:
  template <class Object, class Standard>
  std::string Render(const std::shared_ptr<Object>& object, clsVnError* errors, Standard&& standard);
};

class HostReportEngine : public clsZelRprtPrint, private Meddler {
 public:
  explicit HostReportEngine(Play& play) : Meddler(play) {}
  using clsZelRprtPrint::ToStringRprt;
  std::string ToStringRprt(std::shared_ptr<clsZelReport> RprtItem, clsVnError* ErrObj) override {
    Meddle();
    MaybeThrow();
    return clsZelRprtPrint::ToStringRprt(std::move(RprtItem), ErrObj);
  }
};

/// A rate set that meddles when it ends.
class HostRates : public clsZelVatItem, private Meddler {
 public:
  explicit HostRates(Play& play) : Meddler(play) {}
  ~HostRates() override;
};

class HostEntry : public VnZEL10cmn::IVnLogItem, private Meddler {
 public:
  explicit HostEntry(Play& play) : Meddler(play) {}
  std::string GetLogEntry() override {
    Meddle();
    MaybeThrow();
    return Choose(3) == 1 ? std::string() : "ein Eintrag";
  }
};

/// One log file for all inputs, in a folder of its own.
class LogFolder {
 public:
  LogFolder() {
    const auto now = std::filesystem::file_time_type::clock::now().time_since_epoch().count();
    folder_ = (std::filesystem::temp_directory_path() / "fuzz-hosts.").string() +
              std::to_string(reinterpret_cast<std::uintptr_t>(this) ^ static_cast<std::uintptr_t>(now));
    std::filesystem::create_directory(folder_);
  }
  ~LogFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  LogFolder(const LogFolder&) = delete;
  LogFolder& operator=(const LogFolder&) = delete;

  [[nodiscard]] std::string Path() const { return (folder_ / "fuzz.log").string(); }

 private:
  std::filesystem::path folder_;
};

/// The objects, and what the program and its objects do with them.
class Play {
 public:
  explicit Play(Bytes data) : input_(data) {
    for (auto& item : items_) {
      item = NewCash();
    }
    FillAll(lists_);
    FillAll(bookings_);
    for (const auto& booking : bookings_) {
      Prepare(*booking);
    }
    FillAll(reports_);
    FillAll(records_);
    FillAll(vatLists_);
  }
  ~Play() { isQuiet_ = true; }
  Play(const Play&) = delete;
  Play& operator=(const Play&) = delete;

  void Run() {
    for (int count = 0; count < kMostSteps && !input_.AtEnd(); ++count) {
      Step();
      CheckLists();
    }
    isQuiet_ = true;
    CheckHashes();
    CheckKept();
  }

  /// A host's object is called: it does what the input says, within bounds.
  void Meddle() {
    if (isQuiet_ || depth_ >= kDeepest) {
      return;
    }
    ++depth_;
    for (std::int32_t count = Choose(2); count > 0 && actions_ < kMostActions; --count) {
      ++actions_;
      Step();
    }
    --depth_;
  }

  std::int32_t Choose(std::int32_t most) { return isQuiet_ || input_.AtEnd() ? 0 : input_.Between(0, most); }

  void MaybeThrow() {
    switch (Choose(24)) {
      case 20: throw std::runtime_error("a host's own");
      case 21: throw 42;
      case 22: throw std::bad_alloc();
      case 23: throw std::out_of_range("a host's own");
      case 24: throw std::invalid_argument("a host's own");
      default: break;
    }
  }

  /// The same for an item that is being written; what it does then may show in a hash or not.
  void MeddleWhileWriting() {
    const int before = actions_;
    Meddle();
    oddWrites_ += before != actions_ ? 1 : 0;
  }

  /// Says that an item wrote something else than it did before.
  void WroteOddly() { ++oddWrites_; }

  std::int32_t AnyPosition() {
    constexpr std::array positions = {-1,
                                      0,
                                      3,
                                      6,
                                      50,
                                      127,
                                      128,
                                      99'999,
                                      100'000,
                                      100'020,
                                      100'050,
                                      100'051,
                                      std::numeric_limits<std::int32_t>::min(),
                                      std::numeric_limits<std::int32_t>::max()};
    return positions[static_cast<std::size_t>(Choose(positions.size() - 1))];
  }

  std::string AnyId() {
    const std::int32_t choice = Choose(3);
    if (choice < 2) {
      return "HOST-" + std::to_string(Choose(5));
    }
    const auto cash = std::dynamic_pointer_cast<clsZelItemCash>(AnyItem());
    return cash ? cash->InstanceID() : std::string();
  }

  std::shared_ptr<IVnZelItem>& AnyItem() { return items_[static_cast<std::size_t>(Choose(kItems - 1))]; }

  std::shared_ptr<IVnZelItem> NewHostItem() {
    const std::int32_t number = Choose(7);
    return std::make_shared<HostItem>(*this, "HOST-" + std::to_string(number < 5 ? number : ++lastId_));
  }

  std::shared_ptr<clsZelItemCash> NewCash() {
    auto item = std::make_shared<clsZelItemCash>();
    FUZZ_CHECK(item->SetItemData(1, "x", "", 1));
    return item;
  }

  std::shared_ptr<HostCash> NewHostCash() { return std::make_shared<HostCash>(*this); }

  /// Keeps an object for later, as an engine may.
  void Keep(std::shared_ptr<const void> object) { kept_.push_back(std::move(object)); }
  void KeepItem(std::shared_ptr<IVnZelItem> item) { keptItems_.push_back(std::move(item)); }

 private:
  static constexpr std::int32_t kItems = 5;

  template <class Slots>
  static void FillAll(Slots& slots) {
    for (auto& slot : slots) {
      slot = std::make_shared<typename std::decay_t<decltype(slot)>::element_type>();
    }
  }

  template <class Slots>
  auto& Any(Slots& slots) {
    return slots[static_cast<std::size_t>(Choose(static_cast<std::int32_t>(slots.size()) - 1))];
  }

  void Prepare(clsZelTransAct& booking) {
    booking.VatList(vatLists_[0] ? vatLists_[0] : std::make_shared<clsZelVatList>());
    booking.TransactionDate(Date::FromCivil(2026, 12, 31, 8, 5));
    booking.Operator("Kasse 1");
  }

  /// Calls an operation of an object that its slot alone may own, and that may be gone afterwards. Where no host's
  /// object did anything meanwhile, the outcome shows in the error object as it must.
  template <class Object, class Operation>
  bool Call(const std::shared_ptr<Object>& slot, Operation&& operation) {
    const std::weak_ptr<Object> watched = slot;
    const int before = actions_;
    const bool done = operation(*slot);
    if (const auto object = watched.lock()) {
      FUZZ_CHECK(actions_ != before || object->HasError() == !done);
      CheckFiled(object->ErrorObject());
    }
    return done;
  }

  /// The same for an operation that returns a text.
  template <class Object, class Operation>
  void CallText(const std::shared_ptr<Object>& slot, Operation&& operation) {
    const std::weak_ptr<Object> watched = slot;
    const std::string text = operation(*slot);
    FUZZ_CHECK(IsUtf8(text));
    if (const auto object = watched.lock()) {
      CheckFiled(object->ErrorObject());
    }
  }

  void Step() {
    switch (Choose(15)) {
      case 0: break;
      case 1: StepItem(); break;
      case 2: StepHolder(Any(lists_)); break;
      case 3: StepList(); break;
      case 4: StepHolder(Any(bookings_)); break;
      case 5:
      case 6: StepBooking(); break;
      case 7: StepHolder(Any(reports_)); break;
      case 8: StepReport(); break;
      case 9: StepRecord(); break;
      case 10: StepAttach(); break;
      case 11: StepLetGo(); break;
      case 12: StepIterate(); break;
      case 13: StepBox(); break;
      case 14: StepLog(); break;
      default: StepPrint(); break;
    }
  }

  void StepItem() {
    std::shared_ptr<IVnZelItem>& slot = AnyItem();
    switch (Choose(6)) {
      case 0: slot = NewCash(); break;
      case 1: slot = NewHostItem(); break;
      case 2: slot = NewHostCash(); break;
      case 3:
      case 4:
        if (const auto cash = std::dynamic_pointer_cast<clsZelItemCash>(slot)) {
          cash->Name(std::string(1, static_cast<char>('a' + Choose(25))));
          cash->Price(1 + Choose(5), Choose(200) - 100);
          cash->ThirdParty(Choose(1) == 1);
        }
        break;
      case 5:
        // An item of the library's is held by its slot alone, which may let it go meanwhile.
        if (IVnZelItem& item = *slot; typeid(item) == typeid(clsZelItemCash)) {
          FUZZ_CHECK(IsUtf8(item.ToString()));
        }
        break;
      default: Move(Choose(1) * 100'000); start_ = AnyPosition();
    }
  }

  /// Gives the shared array other bounds.
  void Move(std::int32_t lower) { array_.Redim(lower, lower + Choose(200) - 1); }

  /// What lists, bookings and reports have in common.
  template <class Holder>
  void StepHolder(const std::shared_ptr<Holder>& slot) {
    switch (Choose(7)) {
      case 0:
      case 1:
      case 2: Call(slot, [&](Holder& holder) { return holder.AddItem(AnyItem()); }); break;
      case 3: Call(slot, [&](Holder& holder) { return holder.RemoveItem(AnyItem()); }); break;
      case 4: {
        const std::string id = AnyId();
        Call(slot, [&](Holder& holder) { return holder.RemoveItem(nullptr, id); });
        break;
      }
      case 5: {
        const std::int32_t index = Choose(9);
        Call(slot, [&](Holder& holder) { return holder.RemoveItem(nullptr, {}, index); });
        break;
      }
      case 6: {
        ++clears_;
        Call(slot, [&](Holder& holder) { return Empty(holder); });
        break;
      }
      default:
        try {
          const std::string id = AnyId();
          Holder& holder = *slot;
          static_cast<void>(holder.ItemK(id));
          FUZZ_CHECK(!slot->ItemI(0) && slot->ItemCount() >= 0);
        } catch (...) {
          // A host's item throws when it is asked for its ID.
        }
    }
  }

  static bool Empty(clsZelItemList& list) { return list.Clear(); }
  template <class Holder>
  static bool Empty(Holder& holder) {
    return holder.ClearItems();
  }

  void StepList() {
    const std::shared_ptr<clsZelItemList>& slot = Any(lists_);
    switch (Choose(3)) {
      case 0: Call(slot, [&](clsZelItemList& list) { return list.BinaryDataGet(array_, start_); }); break;
      case 1: {
        std::string hash = "before";
        const bool isSha256 = Choose(1) == 1;
        const bool done =
            Call(slot, [&](clsZelItemList& list) { return list.GetItemHash(isSha256, false, false, hash); });
        FUZZ_CHECK(done || hash == "before");
        break;
      }
      case 2:
        TakeRecords();
        Call(slot, [&](clsZelItemList& list) { return list.BinaryDataSet(array_, start_, Choose(3)); });
        break;
      default: CallText(slot, [](clsZelItemList& list) { return list.ToString(); });
    }
  }

  /// Records of some items in the array that the program shares with its objects.
  void TakeRecords() {
    const std::int32_t count = Choose(4);
    std::vector<std::uint8_t> records;
    for (std::int32_t i = 0; i < count; ++i) {
      const std::array<std::uint8_t, 9> item = {0xA0, 1, 0x31, 0xA2, 1, static_cast<std::uint8_t>('a' + i),
                                                0xB1, 1, 0x1C};
      records.insert(records.end(), item.begin(), item.end());
    }
    const Bytes more = Choose(5) == 1 ? input_.Piece() : Bytes();
    records.insert(records.end(), more.begin(), more.end());
    array_ = ByteArray(records);
    start_ = 0;
  }

  void StepBooking() {
    const std::shared_ptr<clsZelTransAct>& slot = Any(bookings_);
    switch (Choose(8)) {
      case 0: {
        ByteArray request;
        if (Call(slot, [&](clsZelTransAct& booking) {
              return booking.BinaryDataGet(ZELSerialType::Request, request, 0);
            })) {
          clsZelTransAct reader;
          FUZZ_CHECK(reader.BinaryDataSet(ZELSerialType::Request, request, 0));
        }
        break;
      }
      case 1: Decode(slot); break;
      case 2: {
        ByteArray bytes = ByteArray::WithBounds(0, 999);
        const auto type = static_cast<ZELSerialType>(Choose(5));
        Call(slot, [&](clsZelTransAct& booking) { return booking.BinaryDataGet(type, bytes, Choose(20)); });
        break;
      }
      case 3: CallText(slot, [](clsZelTransAct& booking) { return booking.ToString(); }); break;
      case 4: {
        const auto format = static_cast<ZELHashFmt>(Choose(3));
        const bool stored = Choose(1) == 1;
        CallText(slot, [&](clsZelTransAct& booking) { return booking.GetItemHash(format, stored); });
        break;
      }
      case 5: {
        const bool isExport = Choose(1) == 1;
        Call(slot, [&](clsZelTransAct& booking) { return booking.XmlHandler(xml_, isExport); });
        break;
      }
      case 6: {
        const ByteArray response = Response();
        Call(slot, [&](clsZelTransAct& booking) {
          return booking.BinaryDataSet(ZELSerialType::Response, response, 0);
        });
        break;
      }
      case 7:
        Prepare(*slot);
        slot->VatList(Choose(3) == 3 ? nullptr : Any(vatLists_));
        slot->UseSHA256(Choose(1) == 1);
        break;
      default: Call(slot, [](clsZelTransAct& booking) { return booking.Clear(); });
    }
  }

  /// Hands in an item list. Whatever factories did, the hash that is kept is that of the items as they are.
  template <class Holder>
  void Decode(const std::shared_ptr<Holder>& slot) {
    TakeRecords();
    const ByteArray records = array_;
    const std::weak_ptr<Holder> watched = slot;
    const int before = oddWrites_;
    const bool done =
        Call(slot, [&](Holder& holder) { return holder.BinaryDataSet(ZELSerialType::ItemList, records, 0); });
    const auto holder = watched.lock();
    if (done && holder && before == oddWrites_ && depth_ == 0 && holder->ItemCount() > 0) {
      const bool wasQuiet = std::exchange(isQuiet_, true);
      FUZZ_CHECK(holder->GetItemHash(ZELHashFmt::Base16, true) == holder->GetItemHash(ZELHashFmt::Base16));
      FUZZ_CHECK(!holder->HasError());
      isQuiet_ = wasQuiet;
    }
  }

  static ByteArray Response() {
    ByteArray response = ByteArray::WithBounds(0, 61);
    const std::array<std::uint8_t, 14> head = {0xC4, 3, 'D', 'E', '1', 0xC5, 1, 2, 0xCB, 2, 1, 44, 0x9E, 48};
    std::copy(head.begin(), head.end(), response.begin());
    return response;
  }

  void StepReport() {
    const std::shared_ptr<clsZelReport>& slot = Any(reports_);
    switch (Choose(4)) {
      case 0: {
        ByteArray request;
        const auto kind = static_cast<VnZEL10cmn::ZelReportType>(Choose(3));
        Call(slot, [&](clsZelReport& report) {
          return report.BinaryDataGet(ZELSerialType::Request, request, 0, kind);
        });
        break;
      }
      case 1: Decode(slot); break;
      case 2: CallText(slot, [](clsZelReport& report) { return report.ToString(); }); break;
      case 3:
        CallText(slot, [](clsZelReport& report) { return report.GetItemHash(ZELHashFmt::Base32); });
        break;
      default: {
        const bool isExport = Choose(1) == 1;
        Call(slot, [&](clsZelReport& report) { return report.XmlHandler(xml_, isExport); });
      }
    }
  }

  void StepRecord() {
    const std::shared_ptr<clsZelTransActData>& slot = Any(records_);
    switch (Choose(3)) {
      case 0: {
        const ByteArray data(input_.Piece());
        Call(slot, [&](clsZelTransActData& record) {
          return record.BinaryDataSet(ZELSerialType::BinaryData, data, 0);
        });
        break;
      }
      case 1: {
        ByteArray request = ByteArray::WithBounds(0, 99);
        Call(slot, [&](clsZelTransActData& record) {
          return record.BinaryDataGet(ZELSerialType::Request, request, 0);
        });
        break;
      }
      case 2: {
        const bool isExport = Choose(1) == 1;
        Call(slot, [&](clsZelTransActData& record) { return record.XmlHandler(xml_, isExport); });
        break;
      }
      default: CallText(slot, [](clsZelTransActData& record) { return record.ToString(); });
    }
  }

  /// Hosts' engines, factories and logs go to any of the objects, which share them.
  void StepAttach() {
    switch (Choose(9)) {
      case 0: Any(lists_)->ItemFactory(AnyFactory()); break;
      case 1: Any(bookings_)->ItemFactory(AnyFactory()); break;
      case 2: Any(reports_)->ItemFactory(AnyFactory()); break;
      case 3: Any(lists_)->PrintEngine(AnyEngine()); break;
      case 4: Any(bookings_)->PrintEngine(AnyEngine()); break;
      case 5: Any(records_)->PrintEngine(AnyEngine()); break;
      case 6: Any(reports_)->PrintEngine(Choose(2) == 1 ? nullptr : reportEngine_); break;
      case 7:
        if (const auto cash = std::dynamic_pointer_cast<clsZelItemCash>(AnyItem())) {
          cash->PrintEngine(AnyEngine());
        }
        break;
      case 8: Attach(Choose(1) == 1 ? log_ : nullptr); break;
      default: Call(Any(vatLists_), [&](clsZelVatList& list) { return list.AddItem(AnyRates()); });
    }
  }

  void Attach(const std::shared_ptr<clsVnLogFile>& log) {
    const auto attach = [&log](VnZEL10cmn::VnObject& object) { object.LogHandler(log); };
    attach(*Any(lists_));
    attach(*Any(bookings_));
    attach(*Any(reports_));
    attach(*Any(records_));
  }

  std::shared_ptr<clsZelListItemFact> AnyFactory() {
    const std::int32_t choice = Choose(3);
    return choice == 3 ? nullptr : choice == 2 ? std::make_shared<clsZelListItemFact>() : Any(factories_);
  }

  std::shared_ptr<clsZelItemPrint> AnyEngine() {
    const std::int32_t choice = Choose(3);
    return choice == 3 ? nullptr : choice == 2 ? std::make_shared<clsZelItemPrint>() : Any(engines_);
  }

  std::shared_ptr<clsZelItemPrint> NewEngine() {
    if (Choose(2) == 1) {
      return std::make_shared<clsZelItemPrint>();
    }
    return std::make_shared<HostEngine>(*this);
  }

  std::shared_ptr<clsZelVatItem> AnyRates() {
    const Date day(36'526.0 + Choose(250));
    auto rates = std::make_shared<HostRates>(*this);
    FUZZ_CHECK(rates->SetDates(day, day));
    return rates;
  }

  /// The program lets go of an object, which may be running, and takes a new one.
  void StepLetGo() {
    ++clears_;
    switch (Choose(9)) {
      case 0: AnyItem() = NewCash(); break;
      case 1: Any(lists_) = std::make_shared<clsZelItemList>(); break;
      case 2: {
        auto booking = std::make_shared<clsZelTransAct>();
        Prepare(*booking);
        Any(bookings_) = std::move(booking);
        break;
      }
      case 3: Any(reports_) = std::make_shared<clsZelReport>(); break;
      case 4: Any(records_) = std::make_shared<clsZelTransActData>(); break;
      case 5:
        if (Choose(1) == 1) {
          clsZelVatList& list = *Any(vatLists_);
          list.Clear();
        } else {
          Any(vatLists_) = std::make_shared<clsZelVatList>();
        }
        break;
      case 6: Any(engines_) = NewEngine(); break;
      case 7: Any(factories_) = std::make_shared<HostFactory>(*this); break;
      case 8: reportEngine_ = std::make_shared<HostReportEngine>(*this); break;
      default: log_ = NewLog();
    }
  }

  std::shared_ptr<clsVnLogFile> NewLog() const {
    static const LogFolder kFolder;
    auto log = std::make_shared<clsVnLogFile>();
    FUZZ_CHECK(log->FileOpen(kFolder.Path(), true));
    return log;
  }

  /// Goes through a list while things are done to it.
  void StepIterate() {
    switch (Choose(3)) {
      case 0: Iterate(Any(lists_)); break;
      case 1: Iterate(Any(bookings_)); break;
      case 2: Iterate(Any(reports_)); break;
      default: IterateRates(Any(vatLists_));
    }
  }

  template <class Holder>
  void Iterate(const std::shared_ptr<Holder>& slot) {
    const std::vector<std::shared_ptr<IVnZelItem>> before = ItemsOf(*slot);
    const int clears = clears_;
    const int actions = actions_;
    std::vector<std::shared_ptr<IVnZelItem>> visited;
    Holder& holder = *slot;
    for (auto& item : holder) {
      FUZZ_CHECK(item && visited.size() < 1000);
      visited.push_back(item);
      switch (Choose(4)) {
        case 0: break;
        case 1:
          if (slot.get() == &holder) {  // otherwise it is gone
            ++clears_;
            Call(slot, [&](Holder& running) { return running.RemoveItem(item); });
            FUZZ_CHECK(item == visited.back());
          }
          break;
        default: Meddle();
      }
    }
    // Where nothing was removed and nobody let go, all were visited.
    FUZZ_CHECK(clears != clears_ || actions != actions_ || visited == before);
  }

  void IterateRates(const std::shared_ptr<clsZelVatList>& slot) {
    int count = 0;
    for (const auto& rates : *slot) {
      FUZZ_CHECK(rates && ++count < 1000);
      Meddle();
    }
  }

  /// A message box that does something while it is shown.
  void StepBox() {
    const auto own = std::make_shared<std::int32_t>(6);
    const auto show = [&](clsVnError& error) {
      error.SetError(kOwnNumber, "a host's own", true, "StepBox");
      error.MsgBox([this, own](std::string_view text, std::int32_t, std::string_view title) {
        const std::string before(text);
        Meddle();
        FUZZ_CHECK(text == before && title.starts_with("Verarbeitungsfehler ["));
        return *own;
      });
      FUZZ_CHECK(error.ShowMsgBox() == 6);
    };
    switch (Choose(3)) {
      case 0: show(box_); break;
      case 1: show(Any(lists_)->ErrorObject()); break;
      case 2: show(Any(bookings_)->ErrorObject()); break;
      default: show(box_); box_.MsgBox({});
    }
  }

  void StepLog() {
    HostEntry entry(*this);
    clsVnLogFile& log = *log_;
    switch (Choose(3)) {
      case 0: static_cast<void>(log.FileWriteEntry(entry)); break;
      case 1: static_cast<void>(log.FileClose()); break;
      case 2: static_cast<void>(log.FileOpen()); break;
      default: {
        static_cast<void>(log.FileWriteEntry(std::make_shared<HostEntry>(*this)));
      }
    }
  }

  /// Engines that the program calls itself. It holds its own ones, the library's are held by their slots alone.
  void StepPrint() {
    clsVnError error("VnZEL10cmn.clsVnError", VnZEL10cmn::clsHelper01().CreateGUID());
    std::string text;
    try {
      clsZelItemPrint& engine = *Any(engines_);
      const auto reportEngine = reportEngine_;
      std::shared_ptr<clsZelItemPrint> held;
      for (const auto& slot : engines_) {
        held = slot.get() == &engine ? std::dynamic_pointer_cast<HostEngine>(slot) : held;
      }
      switch (Choose(3)) {
        case 0: text = engine.ToStringCI(AnyItem(), &error); break;
        case 1: text = engine.ToStringBI(Any(bookings_), &error); break;
        case 2: text = engine.ToStringTRdata(Any(records_), &error); break;
        default: text = reportEngine->ToStringRprt(Any(reports_), &error); break;
      }
    } catch (...) {
      // A host's engine throws at the host that calls it.
    }
    FUZZ_CHECK(IsUtf8(text));
    CheckFiled(error);
  }

  template <class Holder>
  static std::vector<std::shared_ptr<IVnZelItem>> ItemsOf(const Holder& holder) {
    std::vector<std::shared_ptr<IVnZelItem>> items;
    for (std::int32_t i = 1; i <= holder.ItemCount(); ++i) {
      items.push_back(holder.ItemI(i));
    }
    return items;
  }

  /// Positions and iteration agree, whatever was done.
  template <class Holder>
  static void CheckList(const Holder& holder) {
    const std::vector<std::shared_ptr<IVnZelItem>> items = ItemsOf(holder);
    FUZZ_CHECK(std::find(items.begin(), items.end(), nullptr) == items.end());
    FUZZ_CHECK(std::vector(holder.begin(), holder.end()) == items);
    FUZZ_CHECK(!holder.ItemI(holder.ItemCount() + 1));
  }

  /// An item is found by its ID, unless another one has it as well and comes before.
  template <class Holder>
  static void CheckIds(const Holder& holder) {
    std::vector<std::string> ids;
    for (const auto& item : holder) {
      const std::string id = item->InstanceID();
      if (std::find(ids.begin(), ids.end(), id) == ids.end()) {
        FUZZ_CHECK(holder.ItemK(id) == item);
      }
      ids.push_back(id);
    }
  }

  template <class Check>
  void ForAllLists(Check&& check) {
    for (const auto& list : lists_) {
      check(*list);
    }
    for (const auto& booking : bookings_) {
      check(*booking);
    }
    for (const auto& report : reports_) {
      check(*report);
    }
  }

  void CheckLists() {
    ForAllLists([](const auto& holder) { CheckList(holder); });
  }

  /// Once all hosts behave: the hash is that of the bytes that are written.
  void CheckHashes() {
    ForAllLists([](const auto& holder) {
      CheckList(holder);
      CheckIds(holder);
    });
    for (const auto& list : lists_) {
      ByteArray bytes;
      std::int32_t length = 0;
      std::string hash;
      const bool isWritten = list->BinaryDataGet(bytes, length);
      CheckOutcome(*list, isWritten, "BinaryDataGet");
      FUZZ_CHECK(list->GetItemHash(false, false, false, hash) == isWritten);
      if (isWritten) {
        bytes.RedimPreserve(length - 1);
        VnZEL10cmn::clsHelper01 helper;
        ByteArray digest;
        std::string expected;
        FUZZ_CHECK(helper.GetSHA1Hash1(bytes, digest) && helper.ToBase64String(digest, expected));
        FUZZ_CHECK(hash == expected);
      }
    }
  }

  /// What engines kept is still there.
  void CheckKept() const {
    for (const auto& item : keptItems_) {
      FUZZ_CHECK(item && IsUtf8(item->InstanceID()));
    }
  }

  Input input_;
  bool isQuiet_ = false;
  int depth_ = 0;
  int actions_ = 0;
  int oddWrites_ = 0;
  int clears_ = 0;
  int lastId_ = 5;

  std::array<std::shared_ptr<IVnZelItem>, kItems> items_;
  std::array<std::shared_ptr<clsZelItemList>, 2> lists_;
  std::array<std::shared_ptr<clsZelTransAct>, 2> bookings_;
  std::array<std::shared_ptr<clsZelReport>, 1> reports_;
  std::array<std::shared_ptr<clsZelTransActData>, 1> records_;
  std::array<std::shared_ptr<clsZelVatList>, 2> vatLists_;
  std::array<std::shared_ptr<clsZelItemPrint>, 2> engines_ = {std::make_shared<HostEngine>(*this),
                                                              std::make_shared<HostEngine>(*this)};
  std::array<std::shared_ptr<clsZelListItemFact>, 2> factories_ = {std::make_shared<HostFactory>(*this),
                                                                   std::make_shared<HostFactory>(*this)};
  std::shared_ptr<clsZelRprtPrint> reportEngine_ = std::make_shared<HostReportEngine>(*this);
  std::shared_ptr<clsVnLogFile> log_ = NewLog();
  clsVnError box_;
  std::vector<std::shared_ptr<const void>> kept_;
  std::vector<std::shared_ptr<IVnZelItem>> keptItems_;

  // What the program shares with the operations that it calls.
  ByteArray array_;
  std::int32_t start_ = 0;
  std::string xml_;
};

void Meddler::Meddle() const { play_.Meddle(); }
std::int32_t Meddler::Choose(std::int32_t most) const { return play_.Choose(most); }
void Meddler::MaybeThrow() const { play_.MaybeThrow(); }

bool HostCash::BinaryDataGet(ByteArray& Data, std::int32_t& Start) {
  play_.MeddleWhileWriting();
  MaybeThrow();
  return clsZelItemCash::BinaryDataGet(Data, Start);
}

HostItem::~HostItem() {
  try {
    Meddle();
  } catch (...) {
    // Nothing leaves a destructor.
  }
}

HostRates::~HostRates() {
  try {
    Meddle();
  } catch (...) {
    // Nothing leaves a destructor.
  }
}

std::string HostItem::InstanceID() {
  Meddle();
  MaybeThrow();
  if (Choose(20) == 7) {
    id_ = play_.AnyId();
  }
  return id_;
}

bool HostItem::BinaryDataGet(ByteArray& Data, std::int32_t& Start) {
  const std::int32_t choice = Choose(15);
  if (choice > 0) {
    play_.WroteOddly();
  }
  play_.MeddleWhileWriting();
  MaybeThrow();
  switch (choice) {
    case 1:
      Data.Redim(100'000, 100'049);
      Start = play_.AnyPosition();
      return true;
    case 2:
      Data.Redim(0, -1);
      Start = Choose(1) == 1 ? Start : 0;
      return true;
    case 3: Data.RedimPreserve(Data.UBound() < 4 ? Data.UBound() : 3); return true;
    case 4: Start = play_.AnyPosition(); return true;
    case 5:
      Data.Redim(-50, 300);
      Start = Choose(60);
      return true;
    case 6: error_.SetError(kOwnNumber, "Waage klemmt", true, "BinaryDataGet"); return false;
    case 7: bytes_ = {0xA0, 1, 0x32, 0xA2, 1, 0x79}; break;
    case 8: return true;
    default: break;
  }
  const std::int64_t end = Start + static_cast<std::int64_t>(bytes_.size()) - 1;
  if (Start < Data.LBound() || end > std::numeric_limits<std::int32_t>::max()) {
    return false;
  }
  if (end > Data.UBound()) {
    Data.RedimPreserve(static_cast<std::int32_t>(end));
  }
  for (const std::uint8_t byte : bytes_) {
    Data[Start++] = byte;
  }
  return true;
}

bool HostItem::BinaryDataSet(const ByteArray& Data, std::int32_t& Start) {
  Meddle();
  MaybeThrow();
  switch (Choose(9)) {
    case 1: Start = play_.AnyPosition(); return true;
    case 2: return true;
    case 3: error_.SetError(kOwnNumber, "Waage klemmt", true, "BinaryDataSet"); return false;
    default: break;
  }
  if (Start < Data.LBound()) {
    return false;
  }
  std::vector<std::uint8_t> read;
  while (Start <= Data.UBound() && (read.empty() || Data[Start] != 0xA0)) {
    read.push_back(Data[Start++]);
  }
  bytes_ = std::move(read);
  return true;
}

bool HostItem::GetPrices(CurrencyArray& Prices, bool& IsThrdPrt) {
  Meddle();
  MaybeThrow();
  switch (Choose(11)) {
    case 1: return true;
    case 2: Prices.Redim(3, 4); return true;
    case 3: Prices.Redim(0, 9); return true;
    case 4: Prices.Redim(0, -1); return true;
    case 5: Prices.Redim(100'000, 100'005); return true;
    case 6: return false;
    case 7: Prices[Choose(5)] = Currency::FromScaled(std::numeric_limits<std::int64_t>::min()); return true;
    case 8: Prices[Choose(5)] = Currency(900'000'000'000'000); break;
    default: Prices[0] = price_; break;
  }
  IsThrdPrt = Choose(1) == 1;
  return true;
}

std::string HostItem::ToString() {
  Meddle();
  MaybeThrow();
  switch (Choose(5)) {
    case 1: return {};
    case 2: error_.SetError(kOwnNumber, "Waage klemmt", true, "ToString"); return {};
    default: return "a host's item";
  }
}

std::shared_ptr<IVnZelItem> HostFactory::CreateNewItem(clsVnError*) {
  Meddle();
  MaybeThrow();
  const std::int32_t choice = Choose(12);
  switch (choice) {
    case 1: return play_.NewHostItem();
    case 2: return play_.NewHostCash();
    case 3: return nullptr;
    case 4: ErrorObject().SetError(kOwnNumber, "Keine Posten mehr", true, "CreateNewItem"); return nullptr;
    case 5: return play_.AnyItem();
    case 6:
      if (!made_.empty()) return made_.back();
      break;
    case 7:
    case 8:
      for (const auto& item : made_) {
        item->Name("renamed");
        item->Price(2, 7);
      }
      break;
    case 9: made_.clear(); break;
    default: break;
  }
  made_.push_back(std::make_shared<clsZelItemCash>());
  return made_.back();
}

template <class Object, class Standard>
std::string HostEngine::Render(const std::shared_ptr<Object>& object, clsVnError* errors,
                               Standard&& standard) {
  Meddle();
  MaybeThrow();
  switch (Choose(6)) {
    case 1:
      if constexpr (std::is_same_v<Object, IVnZelItem>) {
        play_.KeepItem(object);
      } else {
        play_.Keep(object);
      }
      break;
    case 2: return {};
    case 3:
      if (errors != nullptr) errors->SetError(kOwnNumber, "Kein Papier", true, "Render");
      return {};
    case 4: return "a host's text";
    default: break;
  }
  return standard();
}

}  // namespace

void Hosts(Bytes data) { Play(data).Run(); }

}  // namespace fuzz
