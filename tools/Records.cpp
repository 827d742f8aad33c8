#include "tools/Records.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "tools/Text.h"

namespace zel {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsZelBaseCoding;
using VnZEL10cmn::Currency;
using VnZEL10cmn::Date;
using VnZEL10cmn::ZELErrorCodes;
using VnZEL10cmn::ZelTags;

namespace {

struct TagEntry {
  ZelTags tag;
  std::string_view name;
};

constexpr std::array kTags = std::to_array<TagEntry>({
    {ZelTags::Signature, "Signature"},
    {ZelTags::Item_Quantity, "Item_Quantity"},
    {ZelTags::Item_Unit, "Item_Unit"},
    {ZelTags::Item_Name, "Item_Name"},
    {ZelTags::Item_DiscSurch, "Item_DiscSurch"},
    {ZelTags::Item_Voucher, "Item_Voucher"},
    {ZelTags::Item_Thirdparty, "Item_Thirdparty"},
    {ZelTags::Item_Price1, "Item_Price1"},
    {ZelTags::Item_Price2, "Item_Price2"},
    {ZelTags::Item_Price3, "Item_Price3"},
    {ZelTags::Item_Price4, "Item_Price4"},
    {ZelTags::Item_Price5, "Item_Price5"},
    {ZelTags::Item_Price6, "Item_Price6"},
    {ZelTags::Lifecycle, "Lifecycle"},
    {ZelTags::Serial_No, "Serial_No"},
    {ZelTags::Version, "Version"},
    {ZelTags::Transport_Pin, "Transport_Pin"},
    {ZelTags::Tp_ID, "Tp_ID"},
    {ZelTags::Tp_ID_No, "Tp_ID_No"},
    {ZelTags::Operator, "Operator"},
    {ZelTags::Hash_Trans_Items, "Hash_Trans_Items"},
    {ZelTags::Currency, "Currency"},
    {ZelTags::Vat_AddOn, "Vat_AddOn"},
    {ZelTags::Training, "Training"},
    {ZelTags::Seq_Nr_Trans, "Seq_Nr_Trans"},
    {ZelTags::Seq_Nr_Reprt, "Seq_Nr_Reprt"},
    {ZelTags::tDate, "tDate"},
    {ZelTags::tTime, "tTime"},
    {ZelTags::tMonth, "tMonth"},
    {ZelTags::Month_Start, "Month_Start"},
    {ZelTags::Month_End, "Month_End"},
    {ZelTags::Seq_No_Trans_First, "Seq_No_Trans_First"},
    {ZelTags::Seq_No_Trans_Last, "Seq_No_Trans_Last"},
    {ZelTags::Hash_Reprt_Items, "Hash_Reprt_Items"},
    {ZelTags::Country_Code, "Country_Code"},
    {ZelTags::Trnvr_Thirdparty, "Trnvr_Thirdparty"},
    {ZelTags::Deliverynote, "Deliverynote"},
    {ZelTags::Trnvr, "Trnvr"},
    {ZelTags::Trnvr_neg, "Trnvr_neg"},
    {ZelTags::Trnvr_Vat, "Trnvr_Vat"},
    {ZelTags::Trnvr_Vat_Rate, "Trnvr_Vat_Rate"},
    {ZelTags::Trnvr_Counter, "Trnvr_Counter"},
    {ZelTags::Trnvr_Overflow, "Trnvr_Overflow"},
    {ZelTags::Trnvr_Vat_Changed, "Trnvr_Vat_Changed"},
    {ZelTags::Container_Vat_1, "Container_Vat_1"},
    {ZelTags::Container_Vat_2, "Container_Vat_2"},
    {ZelTags::Container_Vat_3, "Container_Vat_3"},
    {ZelTags::Container_Vat_4, "Container_Vat_4"},
    {ZelTags::Container_Vat_5, "Container_Vat_5"},
    {ZelTags::Container_Vat_6, "Container_Vat_6"},
    {ZelTags::Container_ThrdP, "Container_ThrdP"},
    {ZelTags::Container_DlvNote, "Container_DlvNote"},
    {ZelTags::Container_Training, "Container_Training"},
});

bool IsContainer(ZelTags tag) {
  return tag >= ZelTags::Container_Vat_1 && tag <= ZelTags::Container_Training;
}

bool IsOneOf(ZelTags tag, std::initializer_list<ZelTags> tags) {
  return std::find(tags.begin(), tags.end(), tag) != tags.end();
}

bool IsItemTag(ZelTags tag) { return tag >= ZelTags::Item_Quantity && tag <= ZelTags::Item_Price6; }

bool MayStandIn(RunKind kind, ZelTags tag) {
  switch (kind) {
    case RunKind::ItemList: return IsItemTag(tag);
    case RunKind::Request:
      return IsOneOf(tag,
                     {ZelTags::tDate, ZelTags::tTime, ZelTags::Operator, ZelTags::Hash_Trans_Items,
                      ZelTags::Currency, ZelTags::Vat_AddOn, ZelTags::Training, ZelTags::Deliverynote}) ||
             (tag >= ZelTags::Container_Vat_1 && tag <= ZelTags::Container_Vat_6);
    case RunKind::Response:
    case RunKind::DataResponse:
      return IsOneOf(tag, {ZelTags::Tp_ID, ZelTags::Tp_ID_No, ZelTags::Seq_Nr_Trans, ZelTags::Signature});
    case RunKind::ReportRequest:
      return IsOneOf(tag, {ZelTags::tDate, ZelTags::tTime, ZelTags::Hash_Reprt_Items, ZelTags::Month_Start,
                           ZelTags::Month_End, ZelTags::Transport_Pin});
    case RunKind::ReportResponse:
      return IsOneOf(tag, {ZelTags::Lifecycle, ZelTags::Tp_ID, ZelTags::Tp_ID_No, ZelTags::Seq_Nr_Reprt,
                           ZelTags::Seq_No_Trans_First, ZelTags::Seq_No_Trans_Last, ZelTags::Signature}) ||
             IsContainer(tag);
    case RunKind::DataRequest:
      return IsOneOf(tag, {ZelTags::tDate, ZelTags::tTime, ZelTags::Hash_Trans_Items});
    case RunKind::Any: return true;
  }
  return true;
}

bool MayStandInContainer(ZelTags tag) {
  return tag == ZelTags::Trnvr_Thirdparty || (tag >= ZelTags::Trnvr && tag <= ZelTags::Trnvr_Vat_Changed);
}

std::string_view RunName(RunKind kind) {
  switch (kind) {
    case RunKind::ItemList: return "an item list";
    case RunKind::Request: return "a booking request";
    case RunKind::Response: return "the response to a booking";
    case RunKind::ReportRequest: return "a report request";
    case RunKind::ReportResponse: return "the response to a report";
    case RunKind::DataRequest: return "a data request";
    case RunKind::DataResponse: return "the response to a data record";
    case RunKind::Any: break;
  }
  return "a device record";
}

std::string TagText(ZelTags tag) {
  const auto byte = static_cast<std::uint8_t>(tag);
  return "0x" + Hex({&byte, 1});
}

/// The library's error as a fault without a position.
std::optional<Fault> FaultOf(const VnZEL10cmn::clsVnError& error) {
  Fault fault;
  fault.number = error.ErrorNr();
  fault.reason = LibraryMessage(error.ErrorMsg());
  return fault;
}

/// The first `count` records of a run of any kind.
struct Beginning {
  std::vector<Record> records;
  bool hasFault = false;

  Beginning(ByteSource& bytes, std::size_t count) {
    RunReader reader(bytes, RunKind::Any);
    Record record;
    while (records.size() < count && reader.Next(record)) {
      records.push_back(record);
    }
    hasFault = reader.FoundFault().has_value();
  }

  /// Whether the record at that place has that tag.
  [[nodiscard]] bool Has(std::size_t place, ZelTags tag) const {
    return place < records.size() && records[place].tag == tag;
  }
};

/// Requests begin alike: a booking has an operator, a data record goes straight to its hash, and a report to
/// what only a report has, or to its end. Of a damaged one the sound beginning counts.
RunKind GuessRequest(ByteSource& bytes) {
  constexpr std::size_t kDateAndTime = 2;
  const Beginning run(bytes, kDateAndTime + 1);
  if (!run.Has(1, ZelTags::tTime)) return RunKind::Request;
  if (run.records.size() == kDateAndTime) return run.hasFault ? RunKind::Request : RunKind::ReportRequest;
  if (run.Has(kDateAndTime, ZelTags::Hash_Trans_Items)) return RunKind::DataRequest;
  const bool isReport = MayStandIn(RunKind::ReportRequest, run.records[kDateAndTime].tag);
  return isReport ? RunKind::ReportRequest : RunKind::Request;
}

/// A device tells its state elsewhere, too.
RunKind GuessStateHolder(ByteSource& bytes) {
  return Beginning(bytes, 2).Has(1, ZelTags::Tp_ID) ? RunKind::ReportResponse : RunKind::Any;
}

std::string Value(const Record& record) {
  if (record.isText) return "\"" + OneLine(record.value) + "\"";
  return record.value.empty() ? "0x" + record.hex : OneLine(record.value);
}

/// What is said of two records that stand at the same place; empty when they are the same.
std::string Difference(const Record* found, const Record* expected) {
  if (found == nullptr) return Describe(*expected) + " is missing";
  if (expected == nullptr) return Describe(*found) + " doesn't belong there";
  if (found->tag != expected->tag) {
    return Describe(*found) + " stands where " + Describe(*expected) + " belongs";
  }
  if (!found->inner.empty() && !expected->inner.empty()) {
    const std::string inner = FirstDifference(found->inner, expected->inner);
    return inner.empty() ? inner : Describe(*found) + ": " + inner;
  }
  if (found->hex == expected->hex) return {};
  const bool sameValue = Value(*found) == Value(*expected);
  return Describe(*found) + " is " + (sameValue ? "0x" + found->hex : Value(*found)) + ", expected " +
         (sameValue ? "0x" + expected->hex : Value(*expected));
}

}  // namespace

std::string ToText(const Fault& fault) {
  std::string text = fault.part;
  if (fault.position) {
    text += (text.empty() ? "" : ", ") + fault.unit + " " + std::to_string(*fault.position);
  }
  return text + (text.empty() ? "" : ": ") + fault.reason +
         (fault.number == 0 ? "" : " [" + std::to_string(fault.number) + "]");
}

std::optional<std::string_view> TagName(std::uint8_t tag) {
  const auto found = std::find_if(kTags.begin(), kTags.end(),
                                  [tag](const TagEntry& entry) { return entry.tag == ZelTags{tag}; });
  return found == kTags.end() ? std::nullopt : std::optional(found->name);
}

std::string NameOf(ZelTags tag) { return std::string(*TagName(static_cast<std::uint8_t>(tag))); }

bool RunReader::Next(Record& record) {
  if (fault_ || position_ >= bytes_.Size()) return false;
  FillWindow();
  record.inner.clear();
  if (!ReadRecord(window_, position_, false, record) && record.inner.empty()) return false;
  last_ = position_;
  position_ += 2 + record.length;
  return true;
}

std::span<const std::uint8_t> RunReader::Bytes() const noexcept {
  return View(window_).subspan(static_cast<std::size_t>(last_ - window_.LBound()),
                               static_cast<std::size_t>(position_ - last_));
}

/// The window holds more than any record can claim, or ends where the bytes end: so the library says the same of a
/// record that is cut off as with all bytes before it.
void RunReader::FillWindow() {
  constexpr std::int32_t kWindow = 16384;
  constexpr std::int32_t kMostClaimed = 2 + 255;
  const std::int32_t behind = bytes_.Size();
  const bool holdsAny = window_.size() > 0 && position_ >= window_.LBound();
  if (holdsAny && (window_.UBound() + 1 == behind || position_ + kMostClaimed <= window_.UBound() + 1))
    return;
  window_.Redim(position_, std::min(behind - position_, kWindow) + position_ - 1);
  bytes_.Read(position_, {window_.data(), window_.size()});
}

/// False when the record is at fault; a container then keeps the records before the fault.
bool RunReader::ReadRecord(const ByteArray& data, std::int32_t position, bool inContainer, Record& record) {
  const std::uint8_t byte = data[position];
  const ZelTags tag{byte};
  const std::optional<std::string_view> name = TagName(byte);
  constexpr auto kUnexpected = static_cast<std::int32_t>(ZELErrorCodes::Err_Ser_TagUnexpected);
  if (!name) return SetFault(position, kUnexpected, TagText(tag) + " is no tag");
  std::string message;
  ZELErrorCodes number{};
  if (!coder_.DataReadBaseCheck(data, position, message, number)) {
    return SetFault(position, static_cast<std::int32_t>(number), LibraryMessage(message));
  }
  if (inContainer ? !MayStandInContainer(tag) : !MayStandIn(kind_, tag)) {
    return SetFault(position, kUnexpected,
                    "tag " + TagText(tag) + " (" + std::string(*name) + ") can't stand in " +
                        std::string(inContainer ? "a container" : RunName(kind_)));
  }
  record.tag = tag;
  record.name = *name;
  record.position = position;
  record.length = data[position + 1];
  record.hex = Hex({data.data() + (position + 2 - data.LBound()), static_cast<std::size_t>(record.length)});
  record.value.clear();
  record.isText = false;
  if (IsContainer(tag)) return ReadContainer(data, record);
  if (ReadValue(data, position, record)) return true;
  const VnZEL10cmn::clsVnError& error = coder_.ErrorObject();
  return SetFault(position, error.ErrorNr(), LibraryMessage(error.ErrorMsg()));
}

bool RunReader::SetFault(std::int32_t position, std::int32_t number, std::string reason) {
  fault_.emplace();
  fault_->position = position;
  fault_->number = number;
  fault_->reason = std::move(reason);
  return false;
}

/// The inner records keep their positions in the whole run, and can't reach beyond the container.
bool RunReader::ReadContainer(const ByteArray& data, Record& container) {
  if (container.length == 0) return true;
  const std::int32_t first = container.position + 2;
  const std::int32_t behind = first + container.length;
  contents_.Redim(first, behind - 1);
  std::ranges::copy(View(data).subspan(static_cast<std::size_t>(first - data.LBound()), contents_.size()),
                    contents_.begin());
  for (std::int32_t position = first; position < behind;) {
    Record record;
    // A container among them is no tag that may stand here.
    if (!ReadRecord(contents_, position, true, record)) return false;
    position += 2 + record.length;
    container.inner.push_back(std::move(record));
  }
  return true;
}

bool RunReader::ReadValue(const ByteArray& data, std::int32_t start, Record& record) {
  std::string& value = record.value;
  switch (record.tag) {
    case ZelTags::Signature: return coder_.GetZelSignature2(data, start, value);
    case ZelTags::Lifecycle: return ReadLifeCycle(data, start, value);
    case ZelTags::Serial_No: return coder_.GetZelSerialNr(data, start, value);
    case ZelTags::Version: return ReadText(coder_.GetZelVersion(data, start, value), record);
    case ZelTags::Transport_Pin: return ReadText(coder_.GetZelTranspPin(data, start, value), record);
    case ZelTags::Tp_ID: return ReadText(coder_.GetZelTpID(data, start, value), record);
    case ZelTags::Operator: return ReadText(coder_.GetZelOperator(data, start, value), record);
    case ZelTags::Hash_Trans_Items: return coder_.GetZelHash(data, start, true, value);
    case ZelTags::Hash_Reprt_Items: return coder_.GetZelHash(data, start, false, value);
    case ZelTags::Currency:
    case ZelTags::Country_Code: return ReadCode(data, start, record);
    case ZelTags::Tp_ID_No:
    case ZelTags::Seq_Nr_Trans:
    case ZelTags::Seq_Nr_Reprt:
    case ZelTags::Seq_No_Trans_First:
    case ZelTags::Seq_No_Trans_Last: return ReadCounter(data, start, record);
    case ZelTags::tDate:
    case ZelTags::tMonth:
    case ZelTags::Month_Start:
    case ZelTags::Month_End: return ReadDate(data, start, record);
    case ZelTags::tTime: return ReadTime(data, start, value);
    case ZelTags::Trnvr_Thirdparty:
    case ZelTags::Trnvr:
    case ZelTags::Trnvr_neg:
    case ZelTags::Trnvr_Vat:
      // Requests hold the short form, everything else may hold the long one.
      return ReadAmount(data, start, kind_ != RunKind::Request, record);
    case ZelTags::Item_Price1:
    case ZelTags::Item_Price2:
    case ZelTags::Item_Price3:
    case ZelTags::Item_Price4:
    case ZelTags::Item_Price5:
    case ZelTags::Item_Price6: return ReadAmount(data, start, false, record);
    case ZelTags::Trnvr_Vat_Rate: return ReadRate(data, start, value);
    case ZelTags::Item_Quantity:
    case ZelTags::Item_Unit:
    case ZelTags::Item_Name: return ReadText(coder_.GetDataAscii(data, start, value), record);
    default: return ReadFlag(data, start, value);
  }
}

bool RunReader::ReadText(bool isRead, Record& record) {
  record.isText = true;
  return isRead;
}

bool RunReader::ReadLifeCycle(const ByteArray& data, std::int32_t start, std::string& value) {
  VnZEL10cmn::ZelLifeCycle state{};
  if (!coder_.GetZelLifeCycle(data, start, state)) return false;
  value = std::to_string(static_cast<std::int32_t>(state)) + " " + coder_.ToStringZelState(state);
  return true;
}

bool RunReader::ReadCode(const ByteArray& data, std::int32_t start, Record& record) {
  std::int32_t code = 0;
  const bool done = record.tag == ZelTags::Currency ? coder_.GetZelCurrencyCode(data, start, code)
                                                    : coder_.GetZelCountryCode(data, start, code);
  record.value = std::to_string(code);
  return done;
}

bool RunReader::ReadCounter(const ByteArray& data, std::int32_t start, Record& record) {
  Currency counter;
  const bool done = record.tag == ZelTags::Tp_ID_No ? coder_.GetZelTpIDNr(data, start, counter)
                                                    : coder_.GetZelCounter(data, start, record.tag, counter);
  record.value = FormatDecimal(counter, 0);
  return done;
}

bool RunReader::ReadDate(const ByteArray& data, std::int32_t start, Record& record) {
  constexpr std::int32_t kMonthLength = 3;
  constexpr std::size_t kYearAndMonth = 7;
  const bool isMonth = record.tag != ZelTags::tDate;
  Date date;
  if (!coder_.GetZelDates(data, start, record.tag, date, isMonth ? kMonthLength : 0)) return false;
  record.value = isMonth ? FormatDate(date).substr(0, kYearAndMonth) : FormatDate(date);
  return true;
}

bool RunReader::ReadTime(const ByteArray& data, std::int32_t start, std::string& value) {
  constexpr std::size_t kTimeStart = 11;
  Date time;
  if (!coder_.GetZelTimes(data, start, ZelTags::tTime, time)) return false;
  value = FormatDateTime(time).substr(kTimeStart);
  return true;
}

bool RunReader::ReadAmount(const ByteArray& data, std::int32_t start, bool longForm, Record& record) {
  Currency amount;
  const bool done = coder_.GetZelAmounts(data, start, record.tag, amount, longForm);
  record.value = FormatDecimal(amount, 2);
  return done;
}

bool RunReader::ReadRate(const ByteArray& data, std::int32_t start, std::string& value) {
  Currency rate;
  const bool done = coder_.GetZelVatRate(data, start, rate);
  value = FormatDecimal(rate, 2) + " %";
  return done;
}

/// A flag has no value: that the record is there says it all.
bool RunReader::ReadFlag(const ByteArray& data, std::int32_t start, std::string& value) {
  ByteArray none;
  value = "yes";
  return coder_.GetDataBinary(data, start, none, 0, 0);
}

void RunCheck::Take(const Record& record, std::span<const std::uint8_t> bytes) {
  if (kind_ == RunKind::ItemList) {
    TakeItemRecord(record, bytes);
    return;
  }
  // The library wants the first records of some runs in an order. Of those behind them it takes any number in any
  // order, one like the other, so that one of each tag says as much as all of them.
  constexpr std::size_t kInOrder = 5;
  constexpr std::size_t kMostKept = 4096;
  const auto tag = static_cast<std::uint8_t>(record.tag);
  if (count_ < kInOrder || kept_.size() + bytes.size() <= kMostKept || !isKept_[tag]) {
    kept_.insert(kept_.end(), bytes.begin(), bytes.end());
    isKept_[tag] = isKept_[tag] || count_ >= kInOrder;
  }
  ++count_;
}

/// Of an item whose records are sound only the quantity can be wrong, which may be no number.
void RunCheck::TakeItemRecord(const Record& record, std::span<const std::uint8_t> bytes) {
  const bool isQuantity = record.tag == ZelTags::Item_Quantity;
  if (items_ == 0 || (isQuantity && hasQuantity_)) {
    ++items_;
    hasQuantity_ = false;
    second_ = bytes[1];
  }
  if (!isQuantity || fault_) return;
  hasQuantity_ = true;
  std::int32_t start = 0;
  if (!item_.BinaryDataSet(ByteArray(bytes), start)) fault_ = UndecodableItem(items_, second_);
}

std::optional<Fault> RunCheck::Finish() {
  using VnZEL10cmn::ZELSerialType;
  const ByteArray data{std::span<const std::uint8_t>(kept_)};
  const auto ask = [&data](auto&& object, ZELSerialType type) {
    return object.BinaryDataSet(type, data, 0) ? std::nullopt : FaultOf(object.ErrorObject());
  };
  switch (kind_) {
    case RunKind::Request: return ask(VnZEL10cmn::clsZelTransAct(), ZELSerialType::Request);
    case RunKind::Response: return ask(VnZEL10cmn::clsZelTransAct(), ZELSerialType::Response);
    case RunKind::ReportRequest: return ask(VnZEL10cmn::clsZelReport(), ZELSerialType::Request);
    case RunKind::ReportResponse: return ask(VnZEL10cmn::clsZelReport(), ZELSerialType::Response);
    case RunKind::DataRequest: return ask(VnZEL10cmn::clsZelTransActData(), ZELSerialType::Request);
    case RunKind::DataResponse: return ask(VnZEL10cmn::clsZelTransActData(), ZELSerialType::Response);
    case RunKind::ItemList:
    case RunKind::Any: break;
  }
  return fault_;
}

RunKind GuessKind(ByteSource& bytes) {
  if (bytes.Size() == 0) return RunKind::Any;
  std::uint8_t first = 0;
  bytes.Read(0, {&first, 1});
  switch (ZelTags{first}) {
    case ZelTags::Item_Quantity: return RunKind::ItemList;
    case ZelTags::tDate: return GuessRequest(bytes);
    case ZelTags::Hash_Trans_Items: return RunKind::DataRequest;
    case ZelTags::Tp_ID: return RunKind::Response;
    case ZelTags::Seq_Nr_Trans: return RunKind::DataResponse;
    case ZelTags::Lifecycle: return GuessStateHolder(bytes);
    default: return RunKind::Any;
  }
}

std::optional<Fault> FindFault(ByteSource& bytes, RunKind kind) {
  if (bytes.Size() == 0) {
    Fault fault;
    fault.position = 0;
    fault.reason = "there is no record";
    return fault;
  }
  RunReader reader(bytes, kind);
  RunCheck check(kind);
  Record record;
  while (reader.Next(record)) {
    check.Take(record, reader.Bytes());
  }
  return reader.FoundFault() ? reader.FoundFault() : check.Finish();
}

std::optional<Record> FindRecord(ByteSource& bytes, RunKind kind, ZelTags tag) {
  RunReader reader(bytes, kind);
  Record record;
  while (reader.Next(record)) {
    if (record.tag == tag) return record;
  }
  return std::nullopt;
}

Fault UndecodableItem(std::size_t number, std::uint8_t second) {
  // An item that is none, and the first of its list.
  const ByteArray data{0, second};
  VnZEL10cmn::clsZelItemList list;
  std::int32_t start = 0;
  static_cast<void>(list.BinaryDataSet(data, start));
  Fault fault = *FaultOf(list.ErrorObject());
  if (const std::size_t last = fault.reason.rfind('1'); last != std::string::npos) {
    fault.reason.replace(last, 1, std::to_string(number));
  }
  return fault;
}

std::string Describe(const Record& record) {
  return std::string(record.name) + " (" + TagText(record.tag) + ")";
}

std::string FirstDifference(ByteSource& found, ByteSource& expected, RunKind kind) {
  RunReader foundReader(found, kind);
  RunReader expectedReader(expected, kind);
  Record foundRecord;
  Record expectedRecord;
  for (;;) {
    const Record* const one = foundReader.Next(foundRecord) ? &foundRecord : nullptr;
    const Record* const other = expectedReader.Next(expectedRecord) ? &expectedRecord : nullptr;
    if (one == nullptr && other == nullptr) return {};
    if (std::string difference = Difference(one, other); !difference.empty()) return difference;
  }
}

std::string FirstDifference(const std::vector<Record>& found, const std::vector<Record>& expected) {
  for (std::size_t i = 0; i < std::max(found.size(), expected.size()); ++i) {
    std::string difference =
        Difference(i < found.size() ? &found[i] : nullptr, i < expected.size() ? &expected[i] : nullptr);
    if (!difference.empty()) return difference;
  }
  return {};
}

}  // namespace zel
