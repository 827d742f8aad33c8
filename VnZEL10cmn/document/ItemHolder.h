#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "VnZEL10cmn/document/DeviceDocument.h"
#include "VnZEL10cmn/items/ZELHashFmt.h"
#include "VnZEL10cmn/items/clsZelItemList.h"
#include "VnZEL10cmn/types/Export.h"

namespace VnZEL10cmn {

/// What bookings and reports have in common: an item list with its hash beside request and response.
/// Not for hosts.
class VNZEL10CMN_API ItemHolder : public DeviceDocument {
 public:
  using VnObject::LogHandler;
  /// Attaches a log file, or none, also to the object's coder, helper and item list.
  void LogHandler(std::shared_ptr<clsVnLogFile> Value) override;

  /// The device profile of the item list.
  const std::string& ZelProfile() const noexcept;
  /// Sets the device profile of the item list.
  void ZelProfile(std::string_view Value);

  /// Sets the factory of decoded items; none brings back the default one.
  void ItemFactory(std::shared_ptr<clsZelListItemFact> Value);

  /// Whether items are hashed with SHA-256 (True) or SHA-1.
  bool UseSHA256() const noexcept;
  /// Selects the item hash.
  void UseSHA256(bool Value) noexcept;

  /// Items in list order; the list may change meanwhile, see `ListIterator`.
  ListIterator<IVnZelItem> begin() const { return itemList_.begin(); }
  /// The end of every list.
  ListIterator<IVnZelItem> end() const noexcept { return {}; }

  /// Number of items.
  std::int32_t ItemCount() const noexcept;

  /// The item at a position counted from 1, or none.
  std::shared_ptr<IVnZelItem> ItemI(std::int32_t Index) const;

  /// The item with this instance ID, or none.
  std::shared_ptr<IVnZelItem> ItemK(std::string_view InstanceID) const;

  /// Appends an item. Fails with number and text of the list: 9306 when it is in the list already, 91 without an item.
  bool AddItem(std::shared_ptr<IVnZelItem> Item);

  /// Removes one item, see `clsZelItemList::RemoveItem`.
  bool RemoveItem(const std::shared_ptr<IVnZelItem>& Item = nullptr, std::string_view ID = {},
                  std::int32_t Index = -1);

  /// Removes all items; the arguments have no influence.
  bool ClearItems(const std::shared_ptr<IVnZelItem>& Item = nullptr, std::string_view ID = {},
                  std::int32_t Index = -1);

  /// The item hash as text: of the last request or import (`FromMem`), or of the present items. Base64 and
  /// Base32 texts are cut into groups of `GroupLen` characters with "-", Base16 as by `GetBinStrOfBytes`.
  /// Empty when there is nothing to hash; "##FEHLER##" after a failure (9000), whose reason is in the log.
  std::string GetItemHash(ZELHashFmt HashFmt, bool FromMem = false, std::int32_t GroupLen = 0);

 protected:
  /// `className` is a literal: the class's published name.
  ItemHolder(const char* className, bool useSha256);
  ~ItemHolder() override;

  /// The items' bytes; failures are filed.
  bool EncodeItems(ByteArray& data);
  /// Keeps the hash of the items' bytes, if all there is to hash are these: a host's own items are asked anew.
  bool HashBytes(std::span<const std::uint8_t> bytes, ByteArray& hash);
  /// The stored response's bytes; failures are filed.
  bool EncodeResp(ByteArray& data);
  /// The item hash, stored or made anew; none when there is nothing to hash.
  bool GenItemHash(bool fromMem, ByteArray& data);
  /// Reads the items anew; failures are filed.
  bool DecodeItems(const ByteArray& data);
  /// The bytes that `BinaryDataSet` is to read: the form must be one of items, request and response.
  bool TakeIn(ZELSerialType type, const ByteArray& data, std::int32_t start, std::int32_t dataLen,
              std::string_view header, ByteArray& bytes);

  clsZelItemList itemList_;   ///< the items
  std::string itemHash_;      ///< item hash of the last request or import, Base64
  std::string itemListText_;  ///< the items' binary form, Base64

 private:
  bool FailAsItemList(std::string_view operation);
  bool RefreshItemHash(std::string_view function, std::string_view header);

  bool useSha256_;
};

}  // namespace VnZEL10cmn
