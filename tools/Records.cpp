#include "tools/Records.h"

#include <algorithm>
#include <array>

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

std::string TagText(std::uint8_t tag) { return "0x" + Hex({&tag, 1}); }

/// Reads one run, or the records inside a container.
class Reader {
 public:
  Reader(const ByteArray& data, RunKind kind, bool inContainer)
      : data_(data), kind_(kind), inContainer_(inContainer) {}

  void ReadAll(std::vector<Node>& nodes, std::optional<Fault>& fault) {
    std::int32_t position = data_.LBound();
    while (position <= data_.UBound() && !fault) {
      Node node;
      const bool complete = ReadRecord(position, node, fault);
      if (!complete && node.inner.empty()) return;
      std::vector<Node>& place = ItemFor(node, nodes);
      position = node.position + 2 + node.length;
      place.push_back(std::move(node));
      if (&place != &nodes) nodes.back().length = position - nodes.back().position;
    }
  }

 private:
  /// The records of an item list stand inside their items; an item begins at its quantity.
  std::vector<Node>& ItemFor(const Node& record, std::vector<Node>& nodes) {
    if (kind_ != RunKind::ItemList) return nodes;
    if (nodes.empty() || record.tag == static_cast<std::uint8_t>(ZelTags::Item_Quantity)) {
      Node item;
      item.name = "Item " + std::to_string(nodes.size() + 1);
      item.position = record.position;
      nodes.push_back(std::move(item));
    }
    return nodes.back().inner;
  }

  /// False when the record is at fault; a container then keeps the records before the fault.
  bool ReadRecord(std::int32_t position, Node& node, std::optional<Fault>& fault) {
    const std::uint8_t byte = data_[position];
    const ZelTags tag{byte};
    const std::optional<std::string_view> name = TagName(byte);
    if (!name) {
      return SetFault(fault, position, ZELErrorCodes::Err_Ser_TagUnexpected, TagText(byte) + " is no tag");
    }
    std::string message;
    ZELErrorCodes number{};
    if (!coder_.DataReadBaseCheck(data_, position, message, number)) {
      return SetFault(fault, position, number, LibraryMessage(message));
    }
    if (inContainer_ ? !MayStandInContainer(tag) : !MayStandIn(kind_, tag)) {
      return SetFault(fault, position, ZELErrorCodes::Err_Ser_TagUnexpected,
                      "tag " + TagText(byte) + " (" + std::string(*name) + ") can't stand in " +
                          std::string(inContainer_ ? "a container" : RunName(kind_)));
    }
    node.tag = byte;
    node.name = *name;
    node.position = position;
    node.length = data_[position + 1];
    node.hex = Hex({data_.data() + (position + 2 - data_.LBound()), static_cast<std::size_t>(node.length)});
    if (IsContainer(tag)) {
      return ReadContainer(node, fault);
    }
    if (!ReadValue(tag, position, node)) {
      const VnZEL10cmn::clsVnError& error = coder_.ErrorObject();
      return SetFault(fault, node.position, ZELErrorCodes{error.ErrorNr()}, LibraryMessage(error.ErrorMsg()));
    }
    return true;
  }

  static bool SetFault(std::optional<Fault>& fault, std::int32_t position, ZELErrorCodes number,
                       const std::string& reason) {
    fault.emplace();
    fault->position = position;
    fault->number = static_cast<std::int32_t>(number);
    fault->reason = reason;
    return false;
  }

  /// The inner records keep their positions in the whole run, and can't reach beyond the container.
  bool ReadContainer(Node& container, std::optional<Fault>& fault) {
    if (container.length == 0) return true;
    const std::int32_t first = container.position + 2;
    ByteArray content = ByteArray::WithBounds(first, first + container.length - 1);
    for (std::int32_t i = content.LBound(); i <= content.UBound(); ++i)
      content[i] = data_[i];
    Reader(content, kind_, true).ReadAll(container.inner, fault);
    return !fault;
  }

  bool ReadValue(ZelTags tag, std::int32_t start, Node& node) {
    switch (tag) {
      case ZelTags::Signature: return coder_.GetZelSignature2(data_, start, node.value);
      case ZelTags::Lifecycle: return ReadLifeCycle(start, node.value);
      case ZelTags::Serial_No: return coder_.GetZelSerialNr(data_, start, node.value);
      case ZelTags::Version: return Text(node, coder_.GetZelVersion(data_, start, node.value));
      case ZelTags::Transport_Pin: return Text(node, coder_.GetZelTranspPin(data_, start, node.value));
      case ZelTags::Tp_ID: return Text(node, coder_.GetZelTpID(data_, start, node.value));
      case ZelTags::Operator: return Text(node, coder_.GetZelOperator(data_, start, node.value));
      case ZelTags::Hash_Trans_Items: return coder_.GetZelHash(data_, start, true, node.value);
      case ZelTags::Hash_Reprt_Items: return coder_.GetZelHash(data_, start, false, node.value);
      case ZelTags::Currency:
      case ZelTags::Country_Code: return ReadCode(tag, start, node.value);
      case ZelTags::Tp_ID_No:
      case ZelTags::Seq_Nr_Trans:
      case ZelTags::Seq_Nr_Reprt:
      case ZelTags::Seq_No_Trans_First:
      case ZelTags::Seq_No_Trans_Last: return ReadCounter(tag, start, node.value);
      case ZelTags::tDate:
      case ZelTags::tMonth:
      case ZelTags::Month_Start:
      case ZelTags::Month_End: return ReadDate(tag, start, node.value);
      case ZelTags::tTime: return ReadTime(start, node.value);
      case ZelTags::Trnvr_Thirdparty:
      case ZelTags::Trnvr:
      case ZelTags::Trnvr_neg:
      case ZelTags::Trnvr_Vat:
        // Requests hold the short form, everything else may hold the long one.
        return ReadAmount(tag, start, kind_ != RunKind::Request, node.value);
      case ZelTags::Item_Price1:
      case ZelTags::Item_Price2:
      case ZelTags::Item_Price3:
      case ZelTags::Item_Price4:
      case ZelTags::Item_Price5:
      case ZelTags::Item_Price6: return ReadAmount(tag, start, false, node.value);
      case ZelTags::Trnvr_Vat_Rate: return ReadRate(start, node.value);
      case ZelTags::Item_Quantity:
      case ZelTags::Item_Unit:
      case ZelTags::Item_Name: return Text(node, coder_.GetDataAscii(data_, start, node.value));
      default: return ReadFlag(start, node.value);
    }
  }

  static bool Text(Node& node, bool done) {
    node.isText = true;
    return done;
  }

  bool ReadLifeCycle(std::int32_t start, std::string& value) {
    VnZEL10cmn::ZelLifeCycle state{};
    if (!coder_.GetZelLifeCycle(data_, start, state)) return false;
    value = std::to_string(static_cast<std::int32_t>(state)) + " " + coder_.ToStringZelState(state);
    return true;
  }

  bool ReadCode(ZelTags tag, std::int32_t start, std::string& value) {
    std::int32_t code = 0;
    const bool done = tag == ZelTags::Currency ? coder_.GetZelCurrencyCode(data_, start, code)
                                               : coder_.GetZelCountryCode(data_, start, code);
    value = std::to_string(code);
    return done;
  }

  bool ReadCounter(ZelTags tag, std::int32_t start, std::string& value) {
    Currency counter;
    const bool done = tag == ZelTags::Tp_ID_No ? coder_.GetZelTpIDNr(data_, start, counter)
                                               : coder_.GetZelCounter(data_, start, tag, counter);
    value = FormatDecimal(counter, 0);
    return done;
  }

  bool ReadDate(ZelTags tag, std::int32_t start, std::string& value) {
    constexpr std::int32_t kMonthLength = 3;
    constexpr std::size_t kYearAndMonth = 7;
    const bool isMonth = tag != ZelTags::tDate;
    Date date;
    if (!coder_.GetZelDates(data_, start, tag, date, isMonth ? kMonthLength : 0)) return false;
    value = isMonth ? FormatDate(date).substr(0, kYearAndMonth) : FormatDate(date);
    return true;
  }

  bool ReadTime(std::int32_t start, std::string& value) {
    constexpr std::size_t kTimeStart = 11;
    Date time;
    if (!coder_.GetZelTimes(data_, start, ZelTags::tTime, time)) return false;
    value = FormatDateTime(time).substr(kTimeStart);
    return true;
  }

  bool ReadAmount(ZelTags tag, std::int32_t start, bool longForm, std::string& value) {
    Currency amount;
    const bool done = coder_.GetZelAmounts(data_, start, tag, amount, longForm);
    value = FormatDecimal(amount, 2);
    return done;
  }

  bool ReadRate(std::int32_t start, std::string& value) {
    Currency rate;
    const bool done = coder_.GetZelVatRate(data_, start, rate);
    value = FormatDecimal(rate, 2) + " %";
    return done;
  }

  /// A flag has no value: that the record is there says it all.
  bool ReadFlag(std::int32_t start, std::string& value) {
    ByteArray none;
    value = "yes";
    return coder_.GetDataBinary(data_, start, none, 0, 0);
  }

  const ByteArray& data_;
  RunKind kind_;
  bool inContainer_;
  clsZelBaseCoding coder_;
};

/// Records can all be sound and yet not be what the library reads: in another order, or with one missing.
void CheckWhole(const ByteArray& data, Run& run) {
  using VnZEL10cmn::ZELSerialType;
  VnZEL10cmn::clsZelTransAct booking;
  VnZEL10cmn::clsZelItemList items;
  VnZEL10cmn::clsZelReport report;
  VnZEL10cmn::clsZelTransActData record;
  std::int32_t start = 0;
  const VnZEL10cmn::clsVnError* error = nullptr;
  switch (run.kind) {
    case RunKind::ItemList:
      if (!items.BinaryDataSet(data, start)) error = &items.ErrorObject();
      break;
    case RunKind::Request:
      if (!booking.BinaryDataSet(ZELSerialType::Request, data, 0)) error = &booking.ErrorObject();
      break;
    case RunKind::Response:
      if (!booking.BinaryDataSet(ZELSerialType::Response, data, 0)) error = &booking.ErrorObject();
      break;
    case RunKind::ReportRequest:
      if (!report.BinaryDataSet(ZELSerialType::Request, data, 0)) error = &report.ErrorObject();
      break;
    case RunKind::ReportResponse:
      if (!report.BinaryDataSet(ZELSerialType::Response, data, 0)) error = &report.ErrorObject();
      break;
    case RunKind::DataRequest:
      if (!record.BinaryDataSet(ZELSerialType::Request, data, 0)) error = &record.ErrorObject();
      break;
    case RunKind::DataResponse:
      if (!record.BinaryDataSet(ZELSerialType::Response, data, 0)) error = &record.ErrorObject();
      break;
    case RunKind::Any: break;
  }
  if (error != nullptr) {
    run.fault.emplace();
    run.fault->number = error->ErrorNr();
    run.fault->reason = LibraryMessage(error->ErrorMsg());
  }
}

/// Whether the record at that place has that tag.
bool StandsAt(const Run& run, std::size_t place, ZelTags tag) {
  return place < run.nodes.size() && run.nodes[place].tag == static_cast<std::uint8_t>(tag);
}

/// Requests begin alike: a booking has an operator, a data record goes straight to its hash, and a report to
/// what only a report has, or to its end. Of a damaged one the sound beginning counts.
RunKind GuessRequest(const ByteArray& data) {
  const Run run = ReadRun(data, RunKind::Any);
  constexpr std::size_t kDateAndTime = 2;
  if (!StandsAt(run, 1, ZelTags::tTime)) return RunKind::Request;
  if (run.nodes.size() == kDateAndTime) return run.fault ? RunKind::Request : RunKind::ReportRequest;
  if (StandsAt(run, kDateAndTime, ZelTags::Hash_Trans_Items)) return RunKind::DataRequest;
  const bool isReport = MayStandIn(RunKind::ReportRequest, ZelTags{*run.nodes[kDateAndTime].tag});
  return isReport ? RunKind::ReportRequest : RunKind::Request;
}

/// A device tells its state elsewhere, too.
RunKind GuessStateHolder(const ByteArray& data) {
  const Run run = ReadRun(data, RunKind::Any);
  return StandsAt(run, 1, ZelTags::Tp_ID) ? RunKind::ReportResponse : RunKind::Any;
}

std::string Describe(const Node& node) {
  return node.tag ? node.name + " (" + TagText(*node.tag) + ")" : node.name;
}

std::string Value(const Node& node) {
  if (node.isText) return "\"" + OneLine(node.value) + "\"";
  return node.value.empty() ? "0x" + node.hex : OneLine(node.value);
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

RunKind GuessKind(const ByteArray& data) {
  if (data.size() == 0) return RunKind::Any;
  switch (ZelTags{data.data()[0]}) {
    case ZelTags::Item_Quantity: return RunKind::ItemList;
    case ZelTags::tDate: return GuessRequest(data);
    case ZelTags::Hash_Trans_Items: return RunKind::DataRequest;
    case ZelTags::Tp_ID: return RunKind::Response;
    case ZelTags::Seq_Nr_Trans: return RunKind::DataResponse;
    case ZelTags::Lifecycle: return GuessStateHolder(data);
    default: return RunKind::Any;
  }
}

Run ReadRun(const ByteArray& data, RunKind kind) {
  Run run;
  run.kind = kind;
  run.size = data.size();
  if (data.size() == 0) {
    run.fault.emplace();
    run.fault->position = 0;
    run.fault->reason = "there is no record";
    return run;
  }
  Reader(data, kind, false).ReadAll(run.nodes, run.fault);
  if (!run.fault) CheckWhole(data, run);
  return run;
}

const Node* FindRecord(const std::vector<Node>& nodes, ZelTags tag) {
  const auto found = std::find_if(nodes.begin(), nodes.end(), [tag](const Node& node) {
    return node.tag == static_cast<std::uint8_t>(tag);
  });
  return found == nodes.end() ? nullptr : &*found;
}

std::string FirstDifference(const std::vector<Node>& found, const std::vector<Node>& expected) {
  for (std::size_t i = 0; i < std::max(found.size(), expected.size()); ++i) {
    if (i >= found.size()) return Describe(expected[i]) + " is missing";
    if (i >= expected.size()) return Describe(found[i]) + " doesn't belong there";
    if (found[i].tag != expected[i].tag) {
      return Describe(found[i]) + " stands where " + Describe(expected[i]) + " belongs";
    }
    if (!found[i].inner.empty() && !expected[i].inner.empty()) {
      if (const std::string inner = FirstDifference(found[i].inner, expected[i].inner); !inner.empty()) {
        return Describe(found[i]) + ": " + inner;
      }
    } else if (found[i].hex != expected[i].hex) {
      const bool sameValue = Value(found[i]) == Value(expected[i]);
      return Describe(found[i]) + " is " + (sameValue ? "0x" + found[i].hex : Value(found[i])) +
             ", expected " + (sameValue ? "0x" + expected[i].hex : Value(expected[i]));
    }
  }
  return {};
}

}  // namespace zel
