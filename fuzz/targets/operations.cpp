// Any sequence of public operations on a set of objects that know each other, hosts' own objects among them.

#include <array>
#include <bit>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "fuzz/Objects.h"
#include "fuzz/Targets.h"

namespace fuzz {

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsVnLogFile;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::clsZelItemList;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::IVnZelItem;
using VnZEL10cmn::ZELHashFmt;
using VnZEL10cmn::ZELSerialType;

/// What a host's object does when the library asks it.
enum class Mood : std::uint8_t { Good, Refuses, Throws, ThrowsAnything, Wanders, Meddles };
constexpr std::int32_t kMoods = 6;

/// An item of a host's own: a cash item that may misbehave in every way that its interface allows.
class HostItem : public clsZelItemCash {
 public:
  HostItem(Mood mood, clsZelItemList* list) : mood_(mood), list_(list) {}

  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start) override {
    const bool done = Misbehave() && clsZelItemCash::BinaryDataGet(Data, Start);
    Start = mood_ != Mood::Wanders ? Start : list_ == nullptr ? -7 : 2'000'000'000;
    return done;
  }
  using clsZelItemCash::BinaryDataGet;

  bool BinaryDataSet(const ByteArray& Data, std::int32_t& Start) override {
    const bool done = Misbehave() && clsZelItemCash::BinaryDataSet(Data, Start);
    Start = mood_ == Mood::Wanders ? 2'000'000'000 : Start;
    return done;
  }

  bool GetPrices(VnZEL10cmn::CurrencyArray& Prices, bool& IsThrdPrt) override {
    if (mood_ == Mood::Wanders) {
      Prices.Redim(3, 4);
      return true;
    }
    return Misbehave() && clsZelItemCash::GetPrices(Prices, IsThrdPrt);
  }

  std::string ToString() override { return Misbehave() ? clsZelItemCash::ToString() : std::string(); }

 private:
  bool Misbehave() {
    switch (mood_) {
      case Mood::Throws: throw std::runtime_error("a host's item");
      case Mood::ThrowsAnything: throw 42;
      case Mood::Meddles:
        if (list_ != nullptr) {
          list_->Clear();
        }
        return true;
      default: return mood_ != Mood::Refuses;
    }
  }

  Mood mood_;
  clsZelItemList* list_;
};

/// An item of a host's own that is no cash item, and behaves.
class ForeignItem : public IVnZelItem {
 public:
  std::string InstanceID() override { return item_.InstanceID(); }
  clsVnError& ErrorObject() override { return item_.ErrorObject(); }
  std::shared_ptr<clsVnLogFile> LogHandler() override { return item_.LogHandler(); }
  void LogHandler(std::shared_ptr<clsVnLogFile> Value) override { item_.LogHandler(std::move(Value)); }
  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start) override {
    return item_.BinaryDataGet(Data, Start);
  }
  bool BinaryDataSet(const ByteArray& Data, std::int32_t& Start) override {
    return item_.BinaryDataSet(Data, Start);
  }
  bool Clear() override { return item_.Clear(); }
  bool HasError() override { return item_.HasError(); }
  bool GetPrices(VnZEL10cmn::CurrencyArray& Prices, bool& IsThrdPrt) override {
    return item_.GetPrices(Prices, IsThrdPrt);
  }
  std::string ToString() override { return "foreign"; }

 private:
  clsZelItemCash item_;
};

class HostFactory : public VnZEL10cmn::clsZelListItemFact {
 public:
  explicit HostFactory(Mood mood) : mood_(mood) {}
  std::shared_ptr<IVnZelItem> CreateNewItem(clsVnError* /*ErrObj*/) override {
    if (mood_ == Mood::Meddles) {
      return std::make_shared<ForeignItem>();
    }
    return mood_ == Mood::Refuses ? nullptr : std::make_shared<HostItem>(mood_, nullptr);
  }

 private:
  Mood mood_;
};

class HostPrint : public VnZEL10cmn::clsZelItemPrint {
 public:
  explicit HostPrint(Mood mood) : mood_(mood) {}
  using clsZelItemPrint::ToStringCI;
  std::string ToStringCI(std::shared_ptr<IVnZelItem> Item, clsVnError* ErrObj) override {
    if (mood_ == Mood::Throws) {
      throw std::runtime_error("a host's print engine");
    }
    return mood_ == Mood::Refuses ? std::string() : clsZelItemPrint::ToStringCI(std::move(Item), ErrObj);
  }

 private:
  Mood mood_;
};

/// Faults of a host's own, thrown through the library, have number 5; these are what may come of anything here.
void CheckErrorOfHost(clsVnError& error, bool succeeded) {
  if (error.ErrorNr() == 5) {
    FUZZ_CHECK(!succeeded && error.HasError() && !error.IsUserDef());
  } else {
    CheckError(error, succeeded, "");
  }
  FUZZ_CHECK(error.GetLogEntry().empty() == !error.HasError());
}

/// The outcome of an operation that returns a Boolean.
template <class Object>
void Outcome(Object& object, bool succeeded) {
  FUZZ_CHECK(object.HasError() == !succeeded);
  CheckErrorOfHost(object.ErrorObject(), succeeded);
}

/// The outcome of an operation that returns something else.
template <class Object>
void Outcome(Object& object) {
  CheckErrorOfHost(object.ErrorObject(), !object.HasError());
}

/// One log file for all inputs, in a folder of its own. Each input begins it anew.
class Log {
 public:
  Log() {
    std::string name = (std::filesystem::temp_directory_path() / "fuzz-log.").string();
    folder_ =
        name + std::to_string(reinterpret_cast<std::uintptr_t>(this) ^
                              static_cast<std::uintptr_t>(
                                  std::filesystem::file_time_type::clock::now().time_since_epoch().count()));
    std::filesystem::create_directory(folder_);
  }
  ~Log() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Log(const Log&) = delete;
  Log& operator=(const Log&) = delete;

  [[nodiscard]] std::string Path() const { return (folder_ / "fuzz.log").string(); }

 private:
  std::filesystem::path folder_;
};

/// The objects and what can be done with them.
class Play {
 public:
  explicit Play(Bytes data) : input_(data) {
    for (auto& item : items_) {
      item = std::make_shared<clsZelItemCash>();
    }
  }

  void Run() {
    constexpr int kMostOperations = 100;
    for (int count = 0; count < kMostOperations && !input_.AtEnd(); ++count) {
      Step();
    }
  }

 private:
  void Step() {
    switch (input_.Between(0, 13)) {
      case 0:
      case 1: StepItem(); break;
      case 2: StepList(); break;
      case 3:
      case 4: StepHolder(booking_); break;
      case 5: StepHolder(report_); break;
      case 6:
      case 7: StepBooking(); break;
      case 8: StepReport(); break;
      case 9: StepData(); break;
      case 10: StepVat(); break;
      case 11: StepErrors(); break;
      case 12: StepLog(); break;
      default: StepPrint(); break;
    }
  }

  std::shared_ptr<IVnZelItem>& AnyItem() { return items_[input_.Byte() % items_.size()]; }
  Mood AnyMood() { return static_cast<Mood>(input_.Between(0, kMoods - 1)); }
  Currency AnyCurrency() {
    return input_.Flag() ? Currency::FromScaled(input_.Number<std::int64_t>())
                         : Currency(input_.Number<std::int16_t>());
  }
  Date AnyDate() {
    return input_.Flag() ? Date(std::bit_cast<double>(input_.Number<std::uint64_t>()))
                         : Date(36'526.0 + input_.Number<std::uint16_t>() / 1.7);
  }
  ZELSerialType AnyType() { return static_cast<ZELSerialType>(input_.Between(-1, 7)); }
  std::int32_t AnySmall() { return input_.Number<std::int8_t>(); }

  void StepItem() {
    std::shared_ptr<IVnZelItem>& slot = AnyItem();
    const auto cash = std::dynamic_pointer_cast<clsZelItemCash>(slot);
    const std::int32_t operation = input_.Between(0, 11);
    if (operation == 10 || !cash) {
      slot = std::make_shared<clsZelItemCash>();
      return;
    }
    clsZelItemCash& item = *cash;
    switch (operation) {
      case 0: {
        const Mood mood = AnyMood();
        clsZelItemList* const list = input_.Flag() ? &list_ : nullptr;
        slot = std::make_shared<HostItem>(mood, list);
        break;
      }
      case 1: slot = std::make_shared<ForeignItem>(); break;
      case 2:
      case 3: {
        const Currency quantity = AnyCurrency();
        const std::string name = input_.Text();
        const std::string unit = input_.Text();
        const Currency price = AnyCurrency();
        const std::uint8_t flags = input_.Byte();
        Outcome(item, item.SetItemData(quantity, name, unit, price, price, 0, (flags & 1) != 0,
                                       (flags & 2) != 0, (flags & 4) != 0));
        break;
      }
      case 4: {
        item.Quantity(AnyCurrency());
        item.Unit(input_.Text());
        item.Name(input_.Text());
        FUZZ_CHECK(item.CanEdit() && item.Quantity() != Currency());
        break;
      }
      case 5: {
        const std::int32_t number = AnySmall();
        const Currency price = AnyCurrency();
        item.Price(number, price);
        FUZZ_CHECK(item.Price(number) == (number >= 1 && number <= 6 ? price : Currency()));
        item.DiscSurc(input_.Flag());
        item.Voucher(input_.Flag());
        item.ThirdParty(input_.Flag());
        break;
      }
      case 6: {
        const auto vatClass = static_cast<VnZEL10cmn::ZELVatClasses>(AnySmall());
        try {
          item.Price2(vatClass, AnyCurrency());
          FUZZ_CHECK(item.Price2(vatClass) == item.Price(static_cast<std::int32_t>(vatClass) + 1));
        } catch (const std::out_of_range&) {
          FUZZ_CHECK(static_cast<std::int32_t>(vatClass) < 0 || static_cast<std::int32_t>(vatClass) > 5);
        }
        break;
      }
      case 7:
        FUZZ_CHECK(item.Clear());
        Outcome(item, true);
        break;
      case 8: item.PrintEngine(input_.Flag() ? std::make_shared<HostPrint>(AnyMood()) : nullptr); break;
      case 9: {
        ByteArray data = Room();
        std::int32_t start = AnySmall();
        const ZELSerialType type = AnyType();
        if (!std::dynamic_pointer_cast<HostItem>(cash)) {  // which would throw at us
          Outcome(item, item.BinaryDataGet(data, start, type, "ignored", 7));
        }
        break;
      }
      default: item.clsZelItemCash::ToString(); Outcome(item);
    }
  }

  void StepList() {
    switch (input_.Between(0, 8)) {
      case 0:
      case 1: Outcome(list_, list_.AddItem(AnyItem())); break;
      case 8: Outcome(list_, list_.AddItem(nullptr)); break;
      case 2: {
        const std::shared_ptr<IVnZelItem> item = input_.Flag() ? AnyItem() : nullptr;
        const std::string id = input_.Flag() ? AnyItem()->InstanceID() : input_.Text();
        Outcome(list_, list_.RemoveItem(item, id, AnySmall()));
        break;
      }
      case 3: {
        const std::int32_t room = input_.Byte();
        const std::int32_t lower = AnySmall();
        ByteArray data = room == 0 ? ByteArray() : ByteArray::WithBounds(lower, lower + room - 1);
        std::int32_t start = AnySmall();
        Outcome(list_, list_.BinaryDataGet(data, start));
        break;
      }
      case 4: {
        ByteArray data;
        std::int32_t length = 0;
        if (list_.BinaryDataGet(data, length)) {
          std::int32_t start = 0;
          Outcome(list_, list_.BinaryDataSet(data, start, length));
        }
        break;
      }
      case 5: {
        std::string hash;
        const std::uint8_t options = input_.Byte();
        Outcome(list_, list_.GetItemHash((options & 1) != 0, (options & 2) != 0, (options & 4) != 0, hash,
                                         input_.Text()));
        break;
      }
      case 6:
        list_.PrintEngine(input_.Flag() ? std::make_shared<HostPrint>(AnyMood()) : nullptr);
        list_.ItemFactory(input_.Flag() ? std::make_shared<HostFactory>(AnyMood()) : nullptr);
        list_.ZelProfile(input_.Text());
        break;
      default: list_.ToString(); Outcome(list_);
    }
    FUZZ_CHECK(list_.ItemCount() >= 0 && !list_.ItemI(list_.ItemCount() + 1));
  }

  /// What bookings and reports have in common.
  template <class Holder>
  void StepHolder(Holder& holder) {
    switch (input_.Between(0, 8)) {
      case 0:
      case 1: Outcome(holder, holder.AddItem(AnyItem())); break;
      case 2: {
        const std::shared_ptr<IVnZelItem> item = input_.Flag() ? AnyItem() : nullptr;
        Outcome(holder, holder.RemoveItem(item, {}, AnySmall()));
        break;
      }
      case 3: Outcome(holder, holder.ClearItems()); break;
      case 4: {
        const auto format = static_cast<ZELHashFmt>(input_.Between(-1, 4));
        const bool stored = input_.Flag();
        const std::string text = holder.GetItemHash(format, stored, AnySmall());
        FUZZ_CHECK((text == "##FEHLER##") == holder.HasError() || holder.ErrorObject().ErrorNr() == 5);
        Outcome(holder);
        break;
      }
      case 5:
        holder.ItemFactory(input_.Flag() ? std::make_shared<HostFactory>(AnyMood()) : nullptr);
        holder.ZelProfile(input_.Text());
        holder.UseSHA256(input_.Flag());
        break;
      case 6: {
        std::string xml = input_.Flag() ? xml_ : input_.Text();
        const std::string before = xml;
        const bool isExport = input_.Flag();
        const bool done = holder.XmlHandler(xml, isExport, AnySmall());
        Outcome(holder, done);
        FUZZ_CHECK((done && isExport) || xml == before);
        xml_ = done && isExport ? xml : xml_;
        break;
      }
      case 7: {
        const ZELSerialType type = AnyType();
        const Bytes bytes = input_.Flag() ? input_.Piece() : Bytes(bytes_.data(), bytes_.size());
        const ByteArray data = ArrayFrom(LowerBound(input_.Byte(), bytes.size()), bytes);
        const std::int32_t start = StartAt(input_.Byte(), data);
        Outcome(holder, holder.BinaryDataSet(type, data, start, AnySmall()));
        break;
      }
      default:
        FUZZ_CHECK(!holder.ItemI(0) && !holder.ItemI(holder.ItemCount() + 1) && !holder.ItemK("none"));
        holder.ToString();
        Outcome(holder);
    }
  }

  void StepBooking() {
    switch (input_.Between(0, 5)) {
      case 0: booking_.VatList(input_.Flag() ? vatList_ : nullptr); break;
      case 1: {
        booking_.Operator(input_.Text());
        booking_.TransactionDate(AnyDate());
        booking_.CurrencyCode(input_.Number<std::int32_t>());
        const std::uint8_t flags = input_.Byte();
        booking_.IsTaxExcl((flags & 1) != 0);
        booking_.IsTraining((flags & 2) != 0);
        booking_.IsDeliveryNote((flags & 4) != 0);
        break;
      }
      case 2: {
        Currency turnover;
        Currency vat;
        Currency rate;
        Outcome(booking_, booking_.GetContainerValues(AnySmall(), turnover, vat, rate));
        break;
      }
      case 3: Outcome(booking_, booking_.Clear()); break;
      case 4: booking_.PrintEngine(input_.Flag() ? std::make_shared<HostPrint>(AnyMood()) : nullptr); break;
      default: {
        std::int32_t length = 0;
        std::int32_t* const asked = input_.Flag() ? &length : nullptr;
        const ZELSerialType type = AnyType();
        const std::int32_t start = AnySmall();
        ByteArray data = Room();
        const bool done = booking_.BinaryDataGet(type, data, start, asked);
        Outcome(booking_, done);
        Keep(data, done);
      }
    }
  }

  void StepReport() {
    switch (input_.Between(0, 3)) {
      case 0:
        report_.ReportDate(AnyDate());
        report_.SpanMonthFrom(AnyDate());
        report_.SpanMonthUpTo(AnyDate());
        report_.TransportPIN(input_.Text());
        break;
      case 1: {
        FUZZ_CHECK(report_.Container(AnySmall()) != nullptr);
        FUZZ_CHECK(report_.Container(12) == report_.ContainerTraining());
        FUZZ_CHECK(report_.Container(7) == report_.ContainerThrdParty());
        FUZZ_CHECK(report_.Container(8) == report_.ContainerDelivery());
        VnZEL10cmn::clsZelContainer& container = *report_.Container2(VnZEL10cmn::ZELVatClasses::Reduced1);
        container.VAT(AnyCurrency());
        container.VATrate(AnyCurrency());
        container.TurnoverNeg(AnyCurrency());
        container.TurnoverThrd(AnyCurrency());
        ByteArray data = Room();
        std::int32_t start = AnySmall();
        Outcome(container, container.BinaryDataGet(data, start));
        break;
      }
      case 2: report_.PrintEngine(std::make_shared<VnZEL10cmn::clsZelRprtPrint>()); break;
      default: {
        const auto kind = static_cast<VnZEL10cmn::ZelReportType>(input_.Between(-1, 6));
        std::int32_t length = 0;
        std::int32_t* const asked = input_.Flag() ? &length : nullptr;
        const ZELSerialType type = AnyType();
        const std::int32_t start = AnySmall();
        ByteArray data = Room();
        const bool done = report_.BinaryDataGet(type, data, start, kind, asked);
        Outcome(report_, done);
        Keep(data, done);
      }
    }
  }

  void StepData() {
    switch (input_.Between(0, 6)) {
      case 0:
        data_.TransactionDate(AnyDate());
        data_.DataSignType(static_cast<VnZEL10cmn::ZELDataSignTypes>(input_.Between(0, 4)));
        data_.UseSHA256(input_.Flag());
        break;
      case 1: {
        const auto format = static_cast<ZELHashFmt>(input_.Between(-1, 4));
        const bool stored = input_.Flag();
        data_.GetDataHash(format, stored, AnySmall());
        Outcome(data_);
        break;
      }
      case 2: {
        std::string xml = input_.Flag() ? xml_ : input_.Text();
        const bool isExport = input_.Flag();
        const bool done = data_.XmlHandler(xml, isExport, AnySmall());
        Outcome(data_, done);
        xml_ = done && isExport ? xml : xml_;
        break;
      }
      case 3: {
        const ZELSerialType type = AnyType();
        const ByteArray data(input_.Piece());
        const std::int32_t start = AnySmall();
        Outcome(data_, data_.BinaryDataSet(type, data, start, AnySmall()));
        break;
      }
      case 4: Outcome(data_, data_.Clear()); break;
      case 5:
        data_.PrintEngine(input_.Flag() ? std::make_shared<HostPrint>(AnyMood()) : nullptr);
        data_.ToString();
        Outcome(data_);
        break;
      default: {
        std::int32_t length = 0;
        std::int32_t* const asked = input_.Flag() ? &length : nullptr;
        const ZELSerialType type = AnyType();
        const std::int32_t start = AnySmall();
        ByteArray data = Room();
        const bool done = data_.BinaryDataGet(type, data, start, asked);
        Outcome(data_, done);
        Keep(data, done);
      }
    }
  }

  void StepVat() {
    switch (input_.Between(0, 5)) {
      case 0: {
        const auto rates = std::make_shared<VnZEL10cmn::clsZelVatItem>();
        const Date from = AnyDate();
        const Date upTo = AnyDate();
        const bool done = input_.Flag() ? rates->SetDates(from, upTo) : rates->SetDates(from);
        Outcome(*rates, done);
        const std::int32_t number = AnySmall();
        rates->VATrate(number, AnyCurrency());
        Outcome(*vatList_, vatList_->AddItem(rates));
        break;
      }
      case 1: {
        const auto rates = vatList_->GetItemOfDate(AnyDate());
        Outcome(*vatList_);
        if (rates) {
          FUZZ_CHECK(rates->ValidFrom() < rates->ValidUpTo());
        }
        break;
      }
      case 2: {
        const std::int32_t number = AnySmall();
        try {
          FUZZ_CHECK((vatList_->VatItem(number) != nullptr) == (number > 0 && number <= vatList_->Count()));
        } catch (const std::out_of_range&) {
          FUZZ_CHECK(number == 0);
        }
        break;
      }
      case 3: vatList_->Clear(); break;
      case 4:
        Outcome(*vatList_, vatList_->AddItem(nullptr));
        vatList_ = std::make_shared<VnZEL10cmn::clsZelVatList>();
        FUZZ_CHECK(vatList_->Count() == 2);
        break;
      default: {
        VnZEL10cmn::clsZelVatItem rates;
        const auto vatClass = static_cast<VnZEL10cmn::ZELVatClasses>(AnySmall());
        try {
          rates.VatRate2(vatClass, AnyCurrency());
          FUZZ_CHECK(rates.VatRate2(vatClass) >= Currency());
        } catch (const std::out_of_range&) {
          FUZZ_CHECK(static_cast<std::int32_t>(vatClass) < 0 || static_cast<std::int32_t>(vatClass) > 5);
        }
        Currency vat;
        const Currency price = AnyCurrency();
        const std::int32_t number = AnySmall();
        Outcome(rates, rates.CalcVat(price, number, vat, nullptr, nullptr, input_.Flag()));
      }
    }
  }

  void StepErrors() {
    clsVnError error;
    const auto number = input_.Number<std::int32_t>();
    const std::string message = input_.Text();
    const std::string function = input_.Text();
    FUZZ_CHECK(error.GetLogEntry().empty() && error.ShowMsgBox() == 5);
    const std::string source = input_.Text();
    const std::string instance = input_.Text();
    FUZZ_CHECK(error.SetError(number, message, input_.Flag(), function, source, instance));
    FUZZ_CHECK(error.HasError() == (number != 0 || !error.ErrorMsg().empty()));
    FUZZ_CHECK(error.HasError() == !error.GetLogEntry().empty());
    std::string shown;
    error.MsgBox([&shown](std::string_view text, std::int32_t buttons, std::string_view title) {
      shown.append(title).append(text);
      return buttons;
    });
    FUZZ_CHECK(error.ShowMsgBox(number) == (error.HasError() ? number : 5));
    FUZZ_CHECK(error.HasError() == !shown.empty());
    FUZZ_CHECK(error.GetSource() == "##FEHLER##");
    error.ClearErr();
    FUZZ_CHECK(!error.HasError() && error.ErrorTime() == VnZEL10cmn::NoTime);
    error.Clear();
    FUZZ_CHECK(error.ErrorSource().empty() && error.ErrorInstanceID().empty());
    VnZEL10cmn::clsVnLogItem notice;
    FUZZ_CHECK(notice.SetMessage(message, function, message, function));
    FUZZ_CHECK(notice.Message().empty() == notice.GetLogEntry().empty());
    if (log_) {
      FUZZ_CHECK(log_->FileWriteEntry(notice) ==
                 (!log_->WriteEntries() || (log_->FileIsOpen() && !notice.Message().empty())));
    }
    notice.ClearMsg();
    notice.Clear();
    FUZZ_CHECK(notice.Source().empty() && notice.GetSource() == "##FEHLER##");
  }

  void StepLog() {
    static const Log kLog;
    switch (input_.Between(0, 5)) {
      case 0:
        log_ = std::make_shared<clsVnLogFile>();
        FUZZ_CHECK(log_->FileOpen(kLog.Path(), true) && log_->FileIsOpen());
        break;
      case 1: log_ = nullptr; break;
      case 2:
        if (log_) {
          log_->WriteErrors(input_.Flag());
          log_->WriteEntries(input_.Flag());
        }
        break;
      case 3:
        if (log_) {
          FUZZ_CHECK(log_->FileClose() && !log_->FileIsOpen());
          FUZZ_CHECK(!log_->FileOpen() || log_->FileIsOpen() ||
                     !(log_->WriteErrors() || log_->WriteEntries()));
        }
        break;
      case 4:
        if (log_) {
          FUZZ_CHECK(!clsVnLogFile().FileOpen() && !clsVnLogFile().FileOpen(kLog.Path() + "/none"));
          FUZZ_CHECK(!log_->FileIsOpen() || !log_->FileOpen(kLog.Path()) || !log_->WriteErrors());
          static_cast<void>(log_->FileWriteEntry(std::shared_ptr<VnZEL10cmn::IVnLogItem>()));
          static_cast<void>(log_->FileWriteEntry(booking_.ErrorObject()));
        }
        break;
      default: break;
    }
    list_.LogHandler(log_);
    booking_.LogHandler(log_);
    report_.LogHandler(log_);
    data_.LogHandler(log_);
    items_[0]->LogHandler(log_);
    FUZZ_CHECK(booking_.LogHandler() == log_);
  }

  /// Print engines with an error object of the caller's.
  void StepPrint() {
    VnZEL10cmn::clsZelItemPrint print;
    VnZEL10cmn::clsZelRprtPrint reportPrint;
    clsVnError error("VnZEL10cmn.clsVnError", VnZEL10cmn::clsHelper01().CreateGUID());
    const std::int32_t what = input_.Between(0, 7);
    std::string text;
    switch (what) {
      case 0: text = print.ToStringCI(*AnyItem(), &error); break;
      case 1: text = print.ToStringCI(AnyItem(), &error); break;
      case 2: text = print.ToStringBI(booking_, &error); break;
      case 3: text = print.ToStringTRdata(data_, &error); break;
      case 4: text = reportPrint.ToStringRprt(report_, &error); break;
      case 5: text = reportPrint.ToStringItmRpt(AnyItem(), &error); break;
      case 6: text = print.ToStringCI(nullptr, &error) + print.ToStringTRdata(nullptr, &error); break;
      default: text = print.ToStringBI(nullptr, &error) + reportPrint.ToStringRprt(nullptr, &error); break;
    }
    CheckErrorOfHost(error, !error.HasError());
    FUZZ_CHECK(what < 6 || (error.ErrorNr() == 91 && text.empty()));
  }

  ByteArray Room() {
    const std::int32_t room = input_.Byte();
    return room == 0 ? ByteArray() : Canary(0, room * 4);
  }

  void Keep(const ByteArray& data, bool done) {
    if (done) {
      bytes_ = Content(data);
    }
  }

  Input input_;
  std::array<std::shared_ptr<IVnZelItem>, 4> items_;
  clsZelItemList list_;
  VnZEL10cmn::clsZelTransAct booking_;
  VnZEL10cmn::clsZelReport report_;
  VnZEL10cmn::clsZelTransActData data_;
  std::shared_ptr<VnZEL10cmn::clsZelVatList> vatList_ = std::make_shared<VnZEL10cmn::clsZelVatList>();
  std::shared_ptr<clsVnLogFile> log_;
  std::string xml_;
  std::vector<std::uint8_t> bytes_;
};

}  // namespace

void Operations(Bytes data) { Play(data).Run(); }

}  // namespace fuzz
