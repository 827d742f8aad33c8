#include "VnZEL10cmn/document/ItemHolder.h"

#include <span>
#include <utility>

#include "VnZEL10cmn/codec/internal/Sha.h"
#include "VnZEL10cmn/codec/internal/TextCodecs.h"
#include "VnZEL10cmn/document/internal/DocumentBytes.h"
#include "VnZEL10cmn/document/internal/DocumentTexts.h"
#include "VnZEL10cmn/items/internal/ItemForm.h"
#include "VnZEL10cmn/items/internal/ItemListAccess.h"
#include "VnZEL10cmn/types/internal/Text.h"

namespace VnZEL10cmn {

using internal::Compose;
using internal::kCrLf;
using internal::Via;

namespace {

constexpr std::string_view kEncodeItemsHeader = "Buchung: Kodieren der Postenliste nicht möglich!\r\n";

}  // namespace

ItemHolder::ItemHolder(const char* className, bool useSha256)
    : DeviceDocument(className), useSha256_(useSha256) {}

ItemHolder::~ItemHolder() = default;

void ItemHolder::LogHandler(std::shared_ptr<clsVnLogFile> Value) {
  coder_.LogHandler(Value);
  itemList_.LogHandler(Value);
  DeviceDocument::LogHandler(std::move(Value));
}

const std::string& ItemHolder::ZelProfile() const noexcept { return itemList_.ZelProfile(); }

void ItemHolder::ZelProfile(std::string_view Value) { itemList_.ZelProfile(Value); }

void ItemHolder::ItemFactory(std::shared_ptr<clsZelListItemFact> Value) {
  itemList_.ItemFactory(std::move(Value));
}

bool ItemHolder::UseSHA256() const noexcept { return useSha256_; }

void ItemHolder::UseSHA256(bool Value) noexcept { useSha256_ = Value; }

std::int32_t ItemHolder::ItemCount() const noexcept { return itemList_.ItemCount(); }

std::shared_ptr<IVnZelItem> ItemHolder::ItemI(std::int32_t Index) const { return itemList_.ItemI(Index); }

std::shared_ptr<IVnZelItem> ItemHolder::ItemK(std::string_view InstanceID) const {
  return itemList_.ItemK(InstanceID);
}

bool ItemHolder::FailAsItemList(std::string_view operation) {
  clsVnError& inner = itemList_.ErrorObject();
  return FailAs(inner, inner.ErrorMsg(), Via(operation, operation));
}

bool ItemHolder::AddItem(std::shared_ptr<IVnZelItem> Item) {
  constexpr std::string_view operation = "AddItem";
  return Run(operation, [&] { return itemList_.AddItem(std::move(Item)) || FailAsItemList(operation); });
}

bool ItemHolder::RemoveItem(const std::shared_ptr<IVnZelItem>& Item, std::string_view ID,
                            std::int32_t Index) {
  constexpr std::string_view operation = "RemoveItem";
  return Run(operation, [&] { return itemList_.RemoveItem(Item, ID, Index) || FailAsItemList(operation); });
}

bool ItemHolder::ClearItems(const std::shared_ptr<IVnZelItem>&, std::string_view, std::int32_t) {
  return Run("ClearItems", [&] { return itemList_.Clear(); });
}

std::string ItemHolder::GetItemHash(ZELHashFmt HashFmt, bool FromMem, std::int32_t GroupLen) {
  constexpr std::string_view operation = "GetItemHash";
  return RunFor<std::string>(operation, [&] {
    ByteArray hash;
    std::string text;
    if (!GenItemHash(FromMem, hash) || !internal::HashText(helper_, coder_, hash, HashFmt, GroupLen, text)) {
      Fail(internal::HashOutputFailed(), operation);
      text = internal::kHashFailed;
    }
    return text;
  });
}

bool ItemHolder::GenItemHash(bool fromMem, ByteArray& data) {
  constexpr std::string_view function = "GenItemHash";
  const auto fail = [&](std::string_view reason) { return Fail(internal::HashNotMade(reason), function); };
  data = {};
  if (fromMem) {
    return itemHash_.empty() || helper_.FromBase64String(itemHash_, data) ||
           fail(internal::kStoredHashUnreadable);
  }
  if (ItemCount() == 0) {
    return true;
  }
  std::string hash;
  if (!itemList_.GetItemHash(useSha256_, false, false, hash)) {
    return fail("Der Hashwert konnte nicht aus den\r\nEinzelposten ermittelt werden.");
  }
  return helper_.FromBase64String(hash, data) ||
         fail("Die erzeugten Daten konnten nicht in das\r\nbinäre Datenfeld geschrieben werden.");
}

bool ItemHolder::EncodeItems(ByteArray& data) {
  constexpr std::string_view function = "EncodeItems";
  const auto fail = [&](std::string_view reason, std::string_view where) {
    return Fail(ZELErrorCodes::Err_Ser_Failed, Compose(kEncodeItemsHeader, reason), where);
  };
  if (ItemCount() == 0) {
    return fail(
        "Es sind keine Posteneinträge vorhanden, Buchungen.\r\nohne Posten sind jedoch nicht zulässig!",
        function);
  }
  std::int32_t length = 0;
  if (!itemList_.BinaryDataGet(data, length)) {
    return fail("Die Daten konnten nicht aus dem Listenobjekt gelesen werden.",
                Via(function, "BinaryDataSet"));
  }
  data.RedimPreserve(length - 1);  // the rest is reserve
  if (!helper_.ToBase64String(data, itemListText_)) {
    return fail("Die Daten konnten nicht in das Base64-Format\r\nüberführt werden.",
                Via(function, "ToBase64String"));
  }
  ByteArray hash;
  return HashBytes({data.data(), data.size()}, hash) || RefreshItemHash(function, kEncodeItemsHeader);
}

bool ItemHolder::HashBytes(std::span<const std::uint8_t> bytes, ByteArray& hash) {
  if (!ItemListAccess::IsConstant(itemList_)) {
    return false;
  }
  hash = useSha256_ ? ByteArray(internal::Sha256OfCodePageBytes(bytes)) : ByteArray(internal::Sha1(bytes));
  internal::EncodeBase64({hash.data(), hash.size()}, itemHash_);
  return true;
}

bool ItemHolder::RefreshItemHash(std::string_view function, std::string_view header) {
  return itemList_.GetItemHash(useSha256_, false, false, itemHash_) ||
         Fail(ZELErrorCodes::Err_Ser_Failed,
              Compose(header, "Der Hashcode der Buchungsposten konnte nicht in", kCrLf,
                      "das Base64-Format überführt werden."),
              Via(function, "mObjItemList.GetItemHash"));
}

bool ItemHolder::EncodeResp(ByteArray& data) {
  return DeviceDocument::EncodeResp("Buchung: Kodieren der ZEL-Antwort nicht möglich!\r\n", data);
}

bool ItemHolder::TakeIn(ZELSerialType type, const ByteArray& data, std::int32_t start, std::int32_t dataLen,
                        std::string_view header, ByteArray& bytes) {
  constexpr std::string_view operation = "BinaryDataSet";
  if (type != ZELSerialType::ItemList && type != ZELSerialType::Request && type != ZELSerialType::Response) {
    return Fail(internal::UnsupportedType({}, type), operation);
  }
  const auto refusal = internal::CopyIn(data, start, dataLen, header, bytes);
  return refusal ? Fail(*refusal, operation) : true;
}

bool ItemHolder::DecodeItems(const ByteArray& data) {
  constexpr std::string_view function = "DecodeItems";
  const auto fail = [&](std::string_view message, std::string_view callee) {
    return Fail(ZELErrorCodes::Err_Ser_Failed, message, Via(function, callee));
  };
  const bool isMadeByHost = ItemListAccess::HasHostFactory(itemList_);
  itemList_.Clear();
  std::int32_t start = 0;
  if (!itemList_.BinaryDataSet(data, start)) {
    return fail("Buchung: Dekodieren der Postenliste nicht möglich!\r\nDas Listenobjekt meldete einen Fehler",
                "mObjItemList.BinaryDataSet");
  }
  if (!helper_.ToBase64String(data, itemListText_)) {
    return fail("Das Wandeln der Daten in Base64 schlug fehl", "ToBase64String");
  }
  // The hash is that of what was understood. Mostly that is what was read; otherwise the items are written again. A
  // host's factory may change the items that it made before.
  const std::span<const std::uint8_t> bytes(data.data(), data.size());
  ByteArray hash;
  return (!isMadeByHost && internal::AreAsWritten(bytes) && HashBytes(bytes, hash)) ||
         RefreshItemHash(function, {});
}

}  // namespace VnZEL10cmn
