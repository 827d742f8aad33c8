// Public operations whose arguments are texts and arrays of the same object, of its error object, or their own result.
// Two equal sets of objects do the same, one of them with copies of all arguments: they must stay equal.

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "fuzz/Check.h"
#include "fuzz/Targets.h"

namespace fuzz {

namespace {

using VnZEL10cmn::ByteArray;
using VnZEL10cmn::clsVnError;
using VnZEL10cmn::clsZelItemCash;
using VnZEL10cmn::Currency;
using VnZEL10cmn::IVnZelItem;
using VnZEL10cmn::ZELSerialType;
using VnZEL10cmn::ZelTags;

constexpr int kMostSteps = 60;
constexpr std::size_t kMostBytes = 4096;
constexpr std::size_t kGuid = 36;

/// Where a text names an object's identity, or nowhere. No two objects have the same.
std::size_t FindIdentity(std::string_view text) {
  for (std::size_t at = 0; at + kGuid <= text.size(); ++at) {
    bool isGuid = true;
    for (std::size_t i = 0; isGuid && i < kGuid; ++i) {
      const char c = text[at + i];
      const bool isDash = i == 8 || i == 13 || i == 18 || i == 23;
      isGuid = isDash ? c == '-' : (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
    }
    if (isGuid) {
      return at;
    }
  }
  return std::string_view::npos;
}

/// A text with every identity blotted out.
std::string Masked(std::string text) {
  for (std::size_t at = FindIdentity(text); at != std::string_view::npos; at = FindIdentity(text)) {
    text.replace(at, kGuid, "ID");
  }
  return text;
}

/// A text as an operation's argument: where its owner keeps it, or a copy.
class Lent {
 public:
  explicit Lent(std::string_view text) : text_(text) {}
  explicit Lent(const char* text) : text_(text) {}
  explicit Lent(const std::string& text) : text_(text) {}
  explicit Lent(std::string&& text) { Own(std::move(text)); }

  Lent Copied() const { return Lent(std::string(text_)); }

  /// Cut to the part that the input wants.
  void Cut(Input& input) {
    if (input.Flag()) {
      text_ = text_.substr(std::min<std::size_t>(input.Byte(), text_.size()));
      text_ = text_.substr(0, input.Byte());
    }
  }

  operator std::string_view() const noexcept { return text_; }  // NOLINT(google-explicit-constructor)

 private:
  void Own(std::string&& text) {
    own_ = std::make_unique<std::string>(std::move(text));
    text_ = *own_;
  }

  std::unique_ptr<std::string> own_;
  std::string_view text_;
};

/// An error text as the library hands it out; a copy where it hands out references, which end with the error.
template <class Text>
Lent ErrorText(Text&& text) {
  if constexpr (std::is_lvalue_reference_v<Text>) {
    return Lent(std::string(text));
  } else {
    return Lent(std::forward<Text>(text));
  }
}

/// The objects, and the variables of their caller.
struct World {
  VnZEL10cmn::clsHelper01 helper;
  VnZEL10cmn::clsZelBaseCoding coder;
  clsVnError error;
  VnZEL10cmn::clsVnLogItem message;
  std::array<std::shared_ptr<clsZelItemCash>, 3> items;
  VnZEL10cmn::clsZelItemList list;
  VnZEL10cmn::clsZelTransAct booking;
  VnZEL10cmn::clsZelReport report;
  VnZEL10cmn::clsZelTransActData record;
  VnZEL10cmn::clsZelContainer container;
  VnZEL10cmn::clsZelVatItem rates;
  std::shared_ptr<VnZEL10cmn::clsZelVatList> vatList = std::make_shared<VnZEL10cmn::clsZelVatList>();
  VnZEL10cmn::clsZelItemPrint print;
  VnZEL10cmn::clsZelRprtPrint reportPrint;

  std::array<std::string, 3> texts;
  std::array<ByteArray, 2> arrays;
  std::vector<std::string> lines;
  std::int32_t start = 0;
  Currency value;

  World() {
    for (auto& item : items) {
      item = std::make_shared<clsZelItemCash>();
      item->SetItemData(2, "Brot aus dem Holzofen", "Laib", 3);
    }
    booking.VatList(vatList);
    SetDates();
  }

  /// The present time is another one for each of the two.
  void SetDates() {
    const VnZEL10cmn::Date date = VnZEL10cmn::Date::FromCivil(2026, 12, 31, 8, 5);
    booking.TransactionDate(date);
    report.ReportDate(date);
    record.TransactionDate(date);
  }
};

/// What an operation told, and what it left behind.
class Told {
 public:
  void Add(std::string_view text) { all_.append(Masked(std::string(text))).push_back('\n'); }
  void Add(const char* text) { Add(std::string_view(text)); }
  void Add(bool done) { Add(done ? "True" : "False"); }
  void Add(std::int64_t number) { Add(std::to_string(number)); }
  void Add(Currency value) { Add(value.Scaled()); }
  void Add(const ByteArray& array) {
    Add(std::int64_t{array.LBound()});
    Add(std::string_view(reinterpret_cast<const char*>(array.data()), array.size()));
  }
  void Add(const clsVnError& error) {
    Add(std::int64_t{error.ErrorNr()});
    Add(error.IsUserDef());
    Add(error.ErrorMsg());
    Add(error.ErrorFunction());
    Add(error.ErrorSource());
  }
  void Add(const clsZelItemCash& item) {
    Add(item.Quantity());
    Add(item.Name());
    Add(item.Unit());
    Add(item.Price(1));
  }
  template <class... Parts>
  void AddAll(const Parts&... parts) {
    (Add(parts), ...);
  }

  const std::string& All() const noexcept { return all_; }

 private:
  std::string all_;
};

/// Does the steps of an input with one set of objects.
class Player {
 public:
  explicit Player(bool copies) : copies_(copies) {}

  std::string Step(Input& input) {
    input_ = &input;
    told_ = {};
    switch (input.Between(0, 13)) {
      case 0: Fill(); break;
      case 1: Errors(); break;
      case 2:
      case 3: Helper(); break;
      case 4: Readers(); break;
      case 5: Writers(); break;
      case 6: CoderTexts(); break;
      case 7: Item(); break;
      case 8: List(); break;
      case 9: Booking(); break;
      case 10: Report(); break;
      case 11: Record(); break;
      case 12: Rates(); break;
      default: Print(); break;
    }
    Keep();
    return told_.All();
  }

 private:
  // What the input draws.

  bool Flag() { return input_->Flag(); }
  std::int32_t Small() { return input_->Number<std::int8_t>(); }
  ZELSerialType Type() { return static_cast<ZELSerialType>(input_->Between(-1, 7)); }
  ZelTags Tag() { return static_cast<ZelTags>(input_->Byte()); }

  std::string& Result() { return world_.texts[input_->Byte() % world_.texts.size()]; }
  ByteArray& ArrayResult() { return world_.arrays[input_->Byte() % world_.arrays.size()]; }

  /// An array of the caller as an argument.
  struct LentArray {
    std::unique_ptr<ByteArray> own;
    const ByteArray* array;
    operator const ByteArray&() const noexcept { return *array; }  // NOLINT(google-explicit-constructor)
  };

  LentArray Array() {
    const ByteArray& array = ArrayResult();
    if (!copies_) {
      return {nullptr, &array};
    }
    auto own = std::make_unique<ByteArray>(array);
    const ByteArray* const copy = own.get();
    return {std::move(own), copy};
  }

  /// A text of the caller or of an object as an argument.
  Lent Text() {
    Lent text = AnyText();
    if (FindIdentity(text) != std::string_view::npos) {
      return Lent("");
    }
    text.Cut(*input_);
    return copies_ ? text.Copied() : std::move(text);
  }

  Lent AnyText() {
    switch (input_->Between(0, 24)) {
      case 0:
      case 1:
      case 2: return Lent(Result());
      case 3:
      case 4:
      case 5: {
        const ByteArray& array = ArrayResult();
        return Lent(std::string_view(reinterpret_cast<const char*>(array.data()), array.size()));
      }
      case 6:
        return world_.lines.empty() ? Lent("") : Lent(world_.lines[input_->Byte() % world_.lines.size()]);
      case 7: return TextOf(world_.helper.ErrorObject());
      case 8: return TextOf(world_.coder.ErrorObject());
      case 9: return TextOf(world_.error);
      case 10: return TextOf(world_.list.ErrorObject());
      case 11: return TextOf(world_.booking.ErrorObject());
      case 12: return TextOf(world_.report.ErrorObject());
      case 13: return TextOf(AnyItem()->ErrorObject());
      case 14: return ErrorText(world_.message.Message());
      case 15: return Flag() ? ErrorText(world_.message.Source()) : ErrorText(world_.message.InstanceID());
      case 16: return Lent(AnyItem()->Name());
      case 17: return Lent(AnyItem()->Unit());
      case 18: return Lent(world_.list.ZelProfile());
      case 19: return Flag() ? Lent(world_.booking.Operator()) : Lent(world_.booking.ZelProfile());
      case 20: return Flag() ? Lent(world_.booking.ZelRqstData()) : Lent(world_.booking.ItemHash());
      case 21: return Flag() ? Lent(world_.booking.ZelRespTpID()) : Lent(world_.booking.ZelRespSignature());
      case 22: return Flag() ? Lent(world_.report.TransportPIN()) : Lent(world_.report.Signature());
      case 23: return Flag() ? Lent(world_.record.DataHash()) : Lent(world_.record.DataToSign());
      default: return Lent(std::string(Input::TextOf(input_->Piece())));
    }
  }

  Lent TextOf(const clsVnError& error) {
    switch (input_->Between(0, 3)) {
      case 0: return ErrorText(error.ErrorMsg());
      case 1: return ErrorText(error.ErrorFunction());
      case 2: return ErrorText(error.ErrorSource());
      default: return ErrorText(error.ErrorInstanceID());
    }
  }

  std::shared_ptr<clsZelItemCash>& AnyItem() { return world_.items[input_->Byte() % world_.items.size()]; }

  /// Hands an item to a call: one of the caller's, none, or the place in a list where one stands.
  template <class Holder, class Call>
  bool WithItem(Holder& holder, Call call) {
    const std::uint8_t which = input_->Byte();
    if (which < 64) {
      return call(which < 32 ? std::shared_ptr<IVnZelItem>() : world_.items[which % world_.items.size()]);
    }
    auto at = holder.begin();
    for (int steps = which % 4; steps > 0 && at != holder.end(); --steps) {
      ++at;
    }
    if (at == holder.end()) {
      return call(std::shared_ptr<IVnZelItem>());
    }
    if (copies_) {
      const std::shared_ptr<IVnZelItem> copy = *at;
      return call(copy);
    }
    return call(*at);
  }

  // What is told of an operation.

  template <class Object, class Outcome>
  void Tell(Object& object, const Outcome& outcome) {
    told_.Add(outcome);
    told_.Add(object.HasError());
    told_.Add(object.ErrorObject());
  }

  void Keep() {
    for (std::string& text : world_.texts) {
      told_.Add(text);
      if (text.size() > kMostBytes) text.clear();
    }
    for (ByteArray& array : world_.arrays) {
      told_.Add(array);
      if (array.size() > kMostBytes) array = {};
    }
    std::size_t length = 0;
    for (const std::string& line : world_.lines) {
      told_.Add(line);
      length += line.size() + 1;
    }
    if (length > kMostBytes) world_.lines.clear();
    told_.Add(std::int64_t{world_.start});
    told_.Add(world_.value);
  }

  // The operations. Whatever the input draws is drawn before the call, in the order of its arguments.

  /// New contents of the caller's variables.
  void Fill() {
    switch (input_->Between(0, 4)) {
      case 0: Result() = Input::TextOf(input_->Piece()); break;
      case 1:
      case 2: {
        ByteArray& array = ArrayResult();
        const std::uint8_t lower = input_->Byte();
        const Bytes bytes = input_->Piece();
        array = ArrayFrom(LowerBound(lower, bytes.size()), bytes);
        world_.start = StartAt(input_->Byte(), array);
        break;
      }
      case 3: world_.start = Small(); break;
      default: world_.value = Currency::FromScaled(input_->Number<std::int64_t>()); break;
    }
  }

  void Errors() {
    const std::int32_t operation = input_->Between(0, 9);
    const Lent first = Text();
    switch (operation) {
      case 0:
      case 1: {
        const Lent second = Text();
        const Lent third = Text();
        const Lent fourth = Text();
        const std::int32_t number = Small();
        world_.error.SetError(number, first, Flag(), second, third, fourth);
        break;
      }
      case 2: world_.error.ErrorMsg(first); break;
      case 3: world_.error.ErrorFunction(first); break;
      case 4: world_.error.ErrorSource(first); break;
      case 5: world_.error.ErrorInstanceID(first); break;
      case 6: {
        const Lent second = Text();
        const Lent third = Text();
        const Lent fourth = Text();
        world_.message.SetMessage(first, second, third, fourth);
        break;
      }
      case 7: world_.message.Message(first); break;
      case 8: world_.message.Source(first); break;
      default: world_.message.InstanceID(first); break;
    }
    told_.Add(world_.error);
    told_.Add(world_.error.ErrorInstanceID());
    told_.Add(world_.message.Message());
    told_.Add(world_.message.Source());
    told_.Add(world_.message.InstanceID());
  }

  void Helper() {
    VnZEL10cmn::clsHelper01& helper = world_.helper;
    switch (input_->Between(0, 16)) {
      case 0: {
        const Lent text = Text();
        Tell(helper, helper.GetLinesOfString(text, world_.lines));
        break;
      }
      case 1: {
        const Lent text = Text();
        told_.Add(helper.ZEL_CharReplace(text, Small()));
        told_.Add(VnZEL10cmn::clsSHA256().SHA256(text));
        break;
      }
      case 2: {
        const Lent text = Text();
        Tell(helper, helper.RoundCmrc2(text, Small()));
        break;
      }
      case 3:
      case 4: {
        const LentArray array = Array();
        std::string& result = Result();
        const std::int32_t start = Small();
        const std::int32_t count = Small();
        const std::int32_t lineLength = Small();
        const Lent plus = Text();
        const Lent slash = Text();
        Tell(helper, helper.ToBase64String(array, result, start, count, lineLength, plus, slash));
        break;
      }
      case 5:
      case 6: {
        const Lent text = Text();
        Tell(helper, helper.FromBase64String(text, ArrayResult()));
        break;
      }
      case 7: {
        const Lent text = Text();
        ByteArray& result = ArrayResult();
        const Lent plus = Text();
        const Lent slash = Text();
        Tell(helper, helper.FromBase64String(text, result, plus, slash));
        break;
      }
      case 8: {
        const LentArray array = Array();
        std::string& result = Result();
        const std::int32_t start = Small();
        Tell(helper, helper.ToBase32String(array, result, start, 0, 0, Flag()));
        break;
      }
      case 9:
      case 10: {
        const Lent text = Text();
        Tell(helper, helper.GetBytesOfBinStr(text, ArrayResult()));
        break;
      }
      case 11: {
        const LentArray array = Array();
        std::string& result = Result();
        const Lent separator = Text();
        Tell(helper, helper.GetBinStrOfBytes(array, result, separator, Small()));
        break;
      }
      case 12: {
        const Lent text = Text();
        ByteArray& result = ArrayResult();
        Tell(helper, Flag() ? helper.GetSHA1Hash(text, result) : helper.GetSHA256Hash(text, result));
        break;
      }
      case 13: {
        const LentArray array = Array();
        ByteArray& result = ArrayResult();
        Tell(helper, Flag() ? helper.GetSHA1Hash1(array, result) : helper.GetSHA256Hash1(array, result));
        break;
      }
      case 14: {
        const Lent text = Text();
        std::string& result = Result();
        Tell(helper, Flag() ? helper.GetSHA1Hash2(text, result) : helper.GetSHA256Hash2(text, result));
        break;
      }
      case 15: {
        const LentArray array = Array();
        world_.lines.assign(1, Shown(array));
        break;
      }
      default: Result() = std::string(Text()); break;
    }
  }

  /// What the helper makes of an array, or that it raised a fault.
  std::string Shown(const ByteArray& array) {
    try {
      const std::int32_t start = Small();
      return world_.helper.BytesToPString(array, start, -1, true) +
             std::to_string(world_.helper.BytesToLong(array, start));
    } catch (const std::out_of_range&) {
      return "out of range";
    }
  }

  void Readers() {
    VnZEL10cmn::clsZelBaseCoding& coder = world_.coder;
    std::int32_t& start = world_.start;
    const std::int32_t reader = input_->Between(0, 13);
    const LentArray buffer = Array();
    switch (reader) {
      case 0:
      case 1: {
        ByteArray& result = ArrayResult();
        const std::int32_t least = Small();
        Tell(coder, coder.GetDataBinary(buffer, start, result, least, Small()));
        break;
      }
      case 2:
      case 3: Tell(coder, coder.GetZelSignature(buffer, start, ArrayResult())); break;
      case 4: Tell(coder, coder.GetDataAscii(buffer, start, Result())); break;
      case 5: Tell(coder, coder.GetDataBcd(buffer, start, Result())); break;
      case 6: Tell(coder, coder.GetDataBcdSgnd(buffer, start, Result())); break;
      case 7: {
        std::string& result = Result();
        std::string* const printable = Flag() ? &Result() : nullptr;
        Tell(coder, coder.GetZelSerialNr(buffer, start, result, printable, Flag()));
        break;
      }
      case 8: {
        const bool isBooking = Flag();
        Tell(coder, coder.GetZelHash(buffer, start, isBooking, Result()));
        break;
      }
      case 9: Tell(coder, coder.GetZelCounter(buffer, start, Tag(), world_.value)); break;
      case 10: {
        const ZelTags tag = Tag();
        Tell(coder, coder.GetZelAmounts(buffer, start, tag, world_.value, Flag()));
        break;
      }
      case 11: Tell(coder, coder.GetZelCurrencyCode(buffer, start, start)); break;
      case 12: {
        auto number = VnZEL10cmn::ZELErrorCodes::No_Error;
        told_.Add(coder.DataReadBaseCheck(buffer, start, Result(), number));
        told_.Add(static_cast<std::int64_t>(number));
        break;
      }
      default: {
        std::string& result = Result();
        const std::int32_t length = Small();
        const Lent separator = Text();
        Tell(coder, coder.GetZelSignature2(buffer, start, result, length, separator, Flag()));
        break;
      }
    }
  }

  void Writers() {
    VnZEL10cmn::clsZelBaseCoding& coder = world_.coder;
    std::int32_t& start = world_.start;
    const std::int32_t writer = input_->Between(0, 10);
    ByteArray& buffer = ArrayResult();
    const ZelTags tag = Tag();
    switch (writer) {
      case 0: {
        const LentArray data = Array();
        Tell(coder, coder.SetDataBinary(buffer, start, tag, data));
        break;
      }
      case 1: {
        const LentArray hash = Array();
        Tell(coder, coder.SetZelHash(buffer, start, Flag(), hash));
        break;
      }
      case 2: Tell(coder, coder.SetZelValsPos(buffer, start, tag, world_.value)); break;
      case 3: Tell(coder, coder.SetZelAmounts(buffer, start, tag, world_.value, Flag())); break;
      default: {
        const Lent text = Text();
        switch (writer) {
          case 4:
          case 5: Tell(coder, coder.SetDataAscii(buffer, start, tag, text)); break;
          case 6: Tell(coder, coder.SetDataBcd(buffer, start, tag, text, Flag())); break;
          case 7: Tell(coder, coder.SetDataBcdSgnd(buffer, start, tag, text)); break;
          case 8: Tell(coder, coder.SetZelTranspPin(buffer, start, text)); break;
          case 9: Tell(coder, coder.SetZelOperator(buffer, start, text)); break;
          default: Tell(coder, coder.SetZelHash2(buffer, start, Flag(), text)); break;
        }
      }
    }
  }

  void CoderTexts() {
    VnZEL10cmn::clsZelBaseCoding& coder = world_.coder;
    if (Flag()) {
      const LentArray buffer = Array();
      std::string& result = Result();
      const std::int32_t length = Small();
      const Lent separator = Text();
      Tell(coder, coder.GetZelSingatureString(buffer, result, length, separator, Flag()));
    } else {
      const Lent document = Text();
      const auto tag = static_cast<VnZEL10cmn::ZelXmlTags>(input_->Between(0, 8));
      std::string& result = Result();
      std::string* const profile = Flag() ? &Result() : nullptr;
      Tell(coder, coder.GetXmlTag(document, tag, result, profile));
    }
  }

  void Item() {
    clsZelItemCash& item = *AnyItem();
    switch (input_->Between(0, 5)) {
      case 0:
      case 1: {
        const Lent name = Text();
        const Lent unit = Text();
        Tell(item, item.SetItemData(Small(), name, unit, world_.value));
        break;
      }
      case 2: item.Name(Text()); break;
      case 3: item.Unit(Text()); break;
      case 4: {
        ByteArray& data = ArrayResult();
        const Lent text = Text();
        Tell(item, item.BinaryDataGet(data, world_.start, Type(), text, world_.start));
        break;
      }
      default: {
        const LentArray data = Array();
        Tell(item, item.BinaryDataSet(data, world_.start));
        break;
      }
    }
    told_.Add(item);
  }

  /// What lists, bookings and reports do with items.
  template <class Holder>
  void Items(Holder& holder) {
    switch (input_->Between(0, 3)) {
      case 0:
        // Without an item this is a fault of its own.
        Tell(holder, WithItem(holder, [&](const std::shared_ptr<IVnZelItem>& item) {
               return item != nullptr && holder.AddItem(item);
             }));
        break;
      case 1:
        Tell(holder, WithItem(holder, [&](const std::shared_ptr<IVnZelItem>& item) {
               const Lent id = Text();
               return holder.RemoveItem(item, id, Small());
             }));
        break;
      case 2: {
        const Lent id = Text();
        told_.Add(holder.ItemK(id) != nullptr);
        break;
      }
      default: holder.ZelProfile(Text()); break;
    }
    told_.Add(holder.ZelProfile());
    told_.Add(std::int64_t{holder.ItemCount()});
    for (const std::shared_ptr<IVnZelItem>& item : holder) {
      told_.Add(static_cast<const clsZelItemCash&>(*item));
    }
  }

  /// Neither too many items nor more than an array of a request holds.
  template <class Holder>
  void Bound(Holder& holder) {
    while (holder.ItemCount() > 8) {
      holder.RemoveItem(nullptr, {}, 1);
    }
  }

  void List() {
    VnZEL10cmn::clsZelItemList& list = world_.list;
    switch (input_->Between(0, 5)) {
      case 0: {
        const std::uint8_t options = input_->Byte();
        std::string& hash = Result();
        const Lent separator = Text();
        Tell(list,
             list.GetItemHash((options & 1) != 0, (options & 2) != 0, (options & 4) != 0, hash, separator));
        break;
      }
      case 1:
        world_.start = std::min(world_.start, 500);
        Tell(list, list.BinaryDataGet(ArrayResult(), world_.start));
        break;
      case 2: {
        const LentArray data = Array();
        Tell(list, list.BinaryDataSet(data, world_.start, Small()));
        Bound(list);
        break;
      }
      default: Items(list); break;
    }
  }

  /// Documents and bytes of bookings, reports and data records.
  template <class Document, class Get>
  void Exchange(Document& document, Get get) {
    world_.SetDates();
    switch (input_->Between(0, 2)) {
      case 0: {
        std::string& text = Result();
        const bool isExport = Flag();
        Tell(document, document.XmlHandler(text, isExport, input_->Between(-1, 4)));
        break;
      }
      case 1: {
        const ZELSerialType type = Type();
        Tell(document, get(type, ArrayResult()));
        break;
      }
      default: {
        const ZELSerialType type = Type();
        const LentArray data = Array();
        Tell(document, document.BinaryDataSet(type, data, world_.start, Small()));
        break;
      }
    }
    world_.SetDates();
  }

  void Booking() {
    VnZEL10cmn::clsZelTransAct& booking = world_.booking;
    switch (input_->Between(0, 5)) {
      case 0: booking.Operator(Text()); break;
      case 1: {
        Currency rate;
        Tell(booking, booking.GetContainerValues(Small(), world_.value, world_.value, rate));
        break;
      }
      case 2:
      case 3:
        Exchange(booking, [&](ZELSerialType type, ByteArray& data) {
          return booking.BinaryDataGet(type, data, world_.start, &world_.start);
        });
        Bound(booking);
        break;
      default: Items(booking); break;
    }
    told_.AddAll(booking.Operator(), booking.ZelRqstData(), booking.ItemHash(), booking.ZelRespData(),
                 booking.ZelRespTpID(), booking.ZelRespSignature());
  }

  void Report() {
    VnZEL10cmn::clsZelReport& report = world_.report;
    switch (input_->Between(0, 4)) {
      case 0: report.TransportPIN(Text()); break;
      case 1:
      case 2:
        Exchange(report, [&](ZELSerialType type, ByteArray& data) {
          const auto kind = static_cast<VnZEL10cmn::ZelReportType>(input_->Between(0, 5));
          return report.BinaryDataGet(type, data, world_.start, kind, &world_.start);
        });
        Bound(report);
        break;
      default: Items(report); break;
    }
    told_.AddAll(report.TransportPIN(), report.TpID(), report.Signature());
  }

  void Record() {
    VnZEL10cmn::clsZelTransActData& record = world_.record;
    Exchange(record, [&](ZELSerialType type, ByteArray& data) {
      return record.BinaryDataGet(type, data, world_.start, &world_.start);
    });
    told_.AddAll(record.ZelRqstData(), record.ZelRespData(), record.DataToSign(), record.DataHash(),
                 record.ZelRespTpID(), record.ZelRespSignature());
  }

  void Rates() {
    switch (input_->Between(0, 3)) {
      case 0: {
        Currency& value = world_.value;
        Currency* const net = Flag() ? &value : nullptr;
        Currency* const gross = Flag() ? &value : nullptr;
        const std::int32_t number = Small();
        Tell(world_.rates, world_.rates.CalcVat(value, number, value, net, gross, Flag()));
        break;
      }
      case 1: Tell(*world_.vatList, world_.vatList->AddItem(*world_.vatList->begin())); break;
      case 2: {
        const LentArray data = Array();
        Tell(world_.container, world_.container.BinaryDataSet(data, world_.start));
        break;
      }
      default: Tell(world_.container, world_.container.BinaryDataGet(ArrayResult(), world_.start)); break;
    }
  }

  /// A failure goes to the error object of what is rendered, or of the engine itself.
  void Print() {
    VnZEL10cmn::clsZelItemPrint& print = world_.print;
    const bool isOwn = Flag();
    clsVnError separate;
    const auto given = [&](clsVnError& error) {
      return copies_ ? &separate : isOwn ? &print.ErrorObject() : &error;
    };
    clsVnError* handed = nullptr;
    std::string text;
    switch (input_->Between(0, 3)) {
      case 0: {
        clsZelItemCash& item = *AnyItem();
        text = print.ToStringCI(item, handed = given(item.ErrorObject()));
        break;
      }
      case 1: text = print.ToStringBI(world_.booking, handed = given(world_.booking.ErrorObject())); break;
      case 2: text = print.ToStringTRdata(world_.record, handed = given(world_.record.ErrorObject())); break;
      default: {
        VnZEL10cmn::clsZelRprtPrint& reportPrint = world_.reportPrint;
        text = reportPrint.ToStringRprt(world_.report, handed = copies_ ? &separate
                                                                : isOwn ? &reportPrint.ErrorObject()
                                                                        : &world_.report.ErrorObject());
        told_.Add(reportPrint.HasError());
        break;
      }
    }
    told_.Add(text);
    told_.Add(print.HasError());
    if (print.HasError()) {
      told_.Add(std::int64_t{handed->ErrorNr()});
      told_.Add(handed->ErrorMsg());
      told_.Add(handed->ErrorFunction());
    }
    // What the two sets have handed over differs.
    for (clsVnError* error :
         {&world_.booking.ErrorObject(), &world_.record.ErrorObject(), &world_.report.ErrorObject(),
          &print.ErrorObject(), &world_.reportPrint.ErrorObject()}) {
      error->ClearErr();
    }
    for (const auto& item : world_.items) {
      item->ErrorObject().ClearErr();
    }
  }

  World world_;
  Told told_;
  Input* input_ = nullptr;
  bool copies_;
};

}  // namespace

void Aliases(Bytes data) {
  Input input(data);
  Player lending(false);
  Player copying(true);
  for (int step = 0; step < kMostSteps && !input.AtEnd(); ++step) {
    Input again = input;
    const std::string told = lending.Step(input);
    FUZZ_CHECK(told == copying.Step(again));
  }
}

}  // namespace fuzz
