#include "VnZEL10cmn/items/clsZelItemList.h"

#include <limits>
#include <span>
#include <utility>

#include "VnZEL10cmn/codec/internal/Sha.h"
#include "VnZEL10cmn/codec/internal/TextCodecs.h"
#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "VnZEL10cmn/device/internal/Records.h"
#include "VnZEL10cmn/errors/clsVnLogFile.h"
#include "VnZEL10cmn/errors/clsVnLogItem.h"
#include "VnZEL10cmn/items/clsZelItemCash.h"
#include "VnZEL10cmn/items/internal/DefaultPrintEngine.h"
#include "VnZEL10cmn/items/internal/ItemStore.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;

namespace {

constexpr std::int64_t kReservePerItem = 128;
constexpr std::int32_t kHashGroup = 5;

constexpr std::string_view kBinaryDataGet = "BinaryDataGet";
constexpr std::string_view kInstanceLine = "\r\n    Instanz-ID ..........: ";
constexpr std::string_view kItemNotAdded = "Ein Buchungsposten konnte nicht übernommen werden";

}  // namespace

clsZelItemList::clsZelItemList()
    : SharedObject("clsZelItemList"), items_(std::make_shared<internal::ItemStore>()) {}

clsZelItemList::~clsZelItemList() {
  // An iterator that is still there comes to its end.
  items_->Clear();
}

ListIterator<IVnZelItem> clsZelItemList::begin() const { return items_->begin(); }

const std::string& clsZelItemList::ZelProfile() const noexcept { return profile_; }

void clsZelItemList::ZelProfile(std::string_view Value) { profile_ = internal::Trim(Value); }

std::int32_t clsZelItemList::ItemCount() const noexcept { return static_cast<std::int32_t>(items_->Count()); }

std::shared_ptr<IVnZelItem> clsZelItemList::ItemI(std::int32_t Index) const {
  return Index >= 1 && Index <= ItemCount() ? items_->At(static_cast<std::size_t>(Index - 1)) : nullptr;
}

std::shared_ptr<IVnZelItem> clsZelItemList::ItemK(std::string_view InstanceID) const {
  return items_->Find(InstanceID);
}

void clsZelItemList::PrintEngine(std::shared_ptr<clsZelItemPrint> Value) {
  usesDefaultEngine_ = false;
  printEngine_ = std::move(Value);
}

void clsZelItemList::ItemFactory(std::shared_ptr<clsZelListItemFact> Value) {
  itemFactory_ = std::move(Value);
}

bool clsZelItemList::GetItemHash(bool Bit256, bool AsBase32, bool ZelGrp, std::string& HASH,
                                 std::string_view GrpSep) {
  constexpr std::string_view operation = "GetItemHash";
  return Run(operation, [&] {
    ByteArray data;
    std::int32_t length = 0;
    if (!BinaryDataGet(data, length)) {
      return false;
    }
    const std::span<const std::uint8_t> bytes(data.data(), static_cast<std::size_t>(length));
    const ByteArray digest =
        Bit256 ? ByteArray(internal::Sha256OfCodePageBytes(bytes)) : ByteArray(internal::Sha1(bytes));
    if (!AsBase32 && !ZelGrp) {
      internal::EncodeBase64({digest.data(), digest.size()}, HASH);
      return true;
    }
    clsZelBaseCoding coder;
    return coder.GetZelSingatureString(digest, HASH, ZelGrp ? kHashGroup : 0, GrpSep, AsBase32) ||
           FailAs(coder.ErrorObject(), coder.ErrorObject().ErrorMsg(), "GetItemHash.[GetZelSingatureString]");
  });
}

bool clsZelItemList::AddItem(std::shared_ptr<IVnZelItem> Item) {
  constexpr std::string_view operation = "AddItem";
  return Run(operation, [&] {
    if (!Item) {
      internal::ThrowObjectNotSet();
    }
    return Append(Item) || Fail(ZELErrorCodes::Err_Ser_ItemNotAdded,
                                Compose(kItemNotAdded, kInstanceLine, Item->InstanceID()), operation);
  });
}

bool clsZelItemList::Append(const std::shared_ptr<IVnZelItem>& item) {
  item->LogHandler(LogHandler());
  return items_->Append(item);
}

bool clsZelItemList::RemoveItem(const std::shared_ptr<IVnZelItem>& Item, std::string_view ID,
                                std::int32_t Index) {
  return Run("RemoveItem", [&] {
    const bool isSelected = Item || !ID.empty() || Index >= 1;
    if (ItemCount() == 0 || !isSelected) {
      return true;
    }
    if (Item) {
      items_->Remove(Item);
    } else if (!ID.empty()) {
      items_->Remove(ID);
    } else if (Index > ItemCount()) {
      internal::ThrowOutOfRange();
    } else {
      items_->RemoveAt(static_cast<std::size_t>(Index - 1));
    }
    return true;
  });
}

bool clsZelItemList::BinaryDataGet(ByteArray& Data, std::int32_t& Start) {
  return Run(
      kBinaryDataGet, [&] { return Serialise(Data, Start); }, Logging::Nothing);
}

bool clsZelItemList::Serialise(ByteArray& data, std::int32_t& start) {
  if (ItemCount() == 0) {
    LogEmptyNotice();
    return true;
  }
  const std::int64_t reserved = start + kReservePerItem * ItemCount() - 1;
  if (reserved > std::numeric_limits<std::int32_t>::max()) {
    internal::ThrowOverflow();
  }
  if (reserved > data.UBound()) {
    data.RedimPreserve(static_cast<std::int32_t>(reserved));
  }
  if (!items_->HasCashItemsOnly()) {
    return SerialiseHostItems(data, start);
  }
  std::size_t number = 0;
  for (const std::shared_ptr<IVnZelItem>& item : items_->Slots()) {
    if (item) {
      ++number;
      if (!item->BinaryDataGet(data, start)) {
        return FailItem(*item, number, start);
      }
    }
  }
  return true;
}

bool clsZelItemList::SerialiseHostItems(ByteArray& data, std::int32_t& start) {
  const std::uint64_t changes = items_->Changes();
  const std::int32_t lower = data.LBound();
  std::size_t number = 0;
  for (const std::shared_ptr<IVnZelItem>& item : *this) {
    ++number;
    const std::int32_t itemStart = start;
    const bool isWritten = item->BinaryDataGet(data, start);
    // An item that moves or leaves the array, takes back what others wrote, or changes the list has failed whatever it
    // says: the bytes would not be those of the list.
    const bool isWithin =
        data.LBound() == lower && start >= itemStart && start <= std::int64_t{data.UBound()} + 1;
    if (!isWritten || !isWithin || items_->Changes() != changes) {
      return FailItem(*item, number, start);
    }
  }
  return true;
}

bool clsZelItemList::FailItem(IVnZelItem& item, std::size_t number, std::int32_t start) {
  return Fail(
      ZELErrorCodes::Err_Ser_Failed,
      Compose("Das Serialisieren von Daten ist fehlgeschlagen.", "\r\n    Posten-Index ........: ", number,
              " (1-basisiert)", "\r\n    Startpos ............: ", start, kInstanceLine, item.InstanceID()),
      kBinaryDataGet);
}

void clsZelItemList::LogEmptyNotice() noexcept {
  const std::shared_ptr<clsVnLogFile> log = LogHandler();
  if (!log) {
    return;
  }
  try {
    clsVnLogItem notice;
    notice.SetMessage("Keine Daten zur Ausgabe vorhanden", "BinaryDataGet", ErrorObject().ErrorSource(),
                      ErrorObject().ErrorInstanceID());
    log->FileWriteEntry(notice);
  } catch (...) {
    // A log that can't be written never disturbs the operation that wanted to log.
  }
}

bool clsZelItemList::BinaryDataSet(const ByteArray& Data, std::int32_t& Start, std::int32_t DataLen) {
  return Run("BinaryDataSet", [&] { return Deserialise(Data, Start, DataLen); });
}

bool clsZelItemList::Deserialise(const ByteArray& data, std::int32_t& start, std::int32_t dataLen) {
  constexpr std::string_view operation = "BinaryDataSet";
  constexpr std::string_view startLine = "\r\n    Start ...........: ";
  const std::int32_t callStart = start;
  const std::int64_t end = dataLen >= 1 ? std::int64_t{start} + dataLen - 1 : data.UBound();
  if (end > data.UBound()) {
    return Fail(ZELErrorCodes::Err_Zel_CnvInvalidLen,
                Compose("Die Anzahl der zu lesenden Daten", kCrLf, "Überschreitet die Pufferlänge", startLine,
                        start, internal::kLengthLine, dataLen, "\r\n    Endindex ........: ", end,
                        "\r\n    Max. Index Daten : ", data.UBound()),
                operation);
  }
  Clear();
  // The factory that is set now makes all items, whatever becomes of it meanwhile.
  const std::shared_ptr<clsZelListItemFact> factory = itemFactory_;
  for (std::int32_t number = 1; start < end; ++number) {
    const std::int32_t itemStart = start;
    const auto fail = [&](ZELErrorCodes code, std::string_view message) {
      // The byte shown is the one behind the item's first tag.
      return Fail(code,
                  Compose(message, startLine, callStart, internal::kTagLine,
                          internal::HexDigits(data[itemStart + 1]), "\r\n    lfd. Postennr. ..: ", number),
                  operation);
    };
    const bool hadError = factory && factory->HasError();
    const std::shared_ptr<IVnZelItem> item =
        factory ? factory->CreateNewItem() : std::make_shared<clsZelItemCash>();
    if (!item && !hadError && factory->HasError()) {
      clsVnError& inner = factory->ErrorObject();
      return FailAs(inner, inner.ErrorMsg(), "BinaryDataSet.[CreateNewItem]");
    }
    if (!item) {
      internal::ThrowObjectNotSet();
    }
    if (const auto log = LogHandler(); log || factory) {
      item->LogHandler(log);
    }
    // An item class that reads nothing would be asked for ever.
    if (!item->BinaryDataSet(data, start) || start <= itemStart || start > std::int64_t{data.UBound()} + 1) {
      return fail(ZELErrorCodes::Err_Ser_CodingError, "Ein Buchungsposten konnte nicht dekodiert werden");
    }
    if (!Append(item)) {
      return fail(ZELErrorCodes::Err_Ser_ItemNotAdded, kItemNotAdded);
    }
  }
  return true;
}

bool clsZelItemList::Clear() {
  return Run("Clear", [&] {
    items_->Clear();
    return true;
  });
}

std::string clsZelItemList::ToString() {
  return RunFor<std::string>("ToString", [&] {
    if (usesDefaultEngine_ && !printEngine_) {
      printEngine_ = internal::CreateDefaultPrintEngine();
    }
    const std::shared_ptr<clsZelItemPrint> engine = printEngine_;
    std::string text;
    clsVnError later;
    for (const std::shared_ptr<IVnZelItem>& item : *this) {
      // The first failure stays; an engine clears the error object that it is given.
      clsVnError& errors = HasError() ? later : ErrorObject();
      text.append(engine ? internal::RenderItem(*engine, item, &errors) : item->ToString()).append(kCrLf);
    }
    if (text.ends_with(kCrLf)) {
      text.resize(text.size() - kCrLf.size());
    }
    return text;
  });
}

}  // namespace VnZEL10cmn
