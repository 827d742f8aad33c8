#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/errors/SharedObject.h"
#include "VnZEL10cmn/items/IVnZelItem.h"
#include "VnZEL10cmn/items/clsZelListItemFact.h"
#include "VnZEL10cmn/types/Export.h"
#include "VnZEL10cmn/types/ListIterator.h"

namespace VnZEL10cmn {

class clsZelItemPrint;

namespace internal {
class ItemStore;
}

/// The ordered items of a booking or report, by position (from 1) and by instance ID, which is unique in a
/// list. Items are shared: one added to two lists is the same object in both.
class VNZEL10CMN_API clsZelItemList : public SharedObject<clsZelItemList> {
 public:
  /// An empty list with the profile "kasse".
  clsZelItemList();
  ~clsZelItemList() override;

  /// Items in list order; the list may change meanwhile, see `ListIterator`.
  ListIterator<IVnZelItem> begin() const;
  /// The end of every list.
  ListIterator<IVnZelItem> end() const noexcept { return {}; }

  /// The device profile.
  const std::string& ZelProfile() const noexcept;
  /// Sets the device profile, trimmed.
  void ZelProfile(std::string_view Value);

  /// Number of items.
  std::int32_t ItemCount() const noexcept;

  /// The item at a position counted from 1; none for a position that does not exist.
  std::shared_ptr<IVnZelItem> ItemI(std::int32_t Index) const;

  /// The item with exactly this instance ID, or none.
  std::shared_ptr<IVnZelItem> ItemK(std::string_view InstanceID) const;

  /// Sets the print engine behind `ToString`; with none, each item is asked for its own text.
  void PrintEngine(std::shared_ptr<clsZelItemPrint> Value);

  /// Sets the factory of decoded items; none brings back the default one.
  void ItemFactory(std::shared_ptr<clsZelListItemFact> Value);

  /// The hash of the list's binary form, SHA-256 or SHA-1, as Base64 or Base32 text; `ZelGrp` cuts it into
  /// groups of 5 characters separated by `GrpSep` (empty: a blank). `HASH` keeps its content on failure.
  bool GetItemHash(bool Bit256, bool AsBase32, bool ZelGrp, std::string& HASH, std::string_view GrpSep = {});

  /// Appends an item and hands it the list's log file. Fails with 9306 when an item with its instance ID is
  /// in the list already.
  bool AddItem(std::shared_ptr<IVnZelItem> Item);

  /// Removes one item: `Item` itself, else the one with the instance ID, else the one at the position. What
  /// is not found is no error; a position beyond the list is a run-time fault (9).
  bool RemoveItem(const std::shared_ptr<IVnZelItem>& Item = nullptr, std::string_view ID = {},
                  std::int32_t Index = -1);

  /// Appends all items' records at `Start`, enlarging `Data` by 128 bytes per item, and moves `Start` behind
  /// them; `Start` is the length to use, what follows in `Data` is reserve. An empty list writes nothing, is
  /// a success and leaves a message in the log. Fails with 9301 when an item fails; the item's own error
  /// object tells why, `Start` stands where it stopped.
  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start);

  /// Replaces the items by those read from `Start` on, `DataLen` bytes (below 1: to the end), and moves
  /// `Start`. Fails with 9207 when that reaches beyond the end (items unchanged), 9307 when an item can't be
  /// decoded (`Start` stands at it), 9306 when it can't be added (`Start` stands behind it); items before it
  /// then stay in the list.
  bool BinaryDataSet(const ByteArray& Data, std::int32_t& Start, std::int32_t DataLen = 0);

  /// Removes all items. Always True.
  bool Clear();

  /// The items' texts, one under the other; empty for an item that fails, which shows in the error object.
  std::string ToString();

 private:
  friend struct ItemListAccess;

  bool Serialise(ByteArray& data, std::int32_t& start);
  bool SerialiseHostItems(ByteArray& data, std::int32_t& start);
  bool FailItem(IVnZelItem& item, std::size_t number, std::int32_t start);
  bool Deserialise(const ByteArray& data, std::int32_t& start, std::int32_t dataLen);
  bool Append(const std::shared_ptr<IVnZelItem>& item);
  void LogEmptyNotice() noexcept;

  std::shared_ptr<internal::ItemStore> items_;
  std::string profile_ = "kasse";
  bool usesDefaultEngine_ = true;
  std::shared_ptr<clsZelItemPrint> printEngine_;
  std::shared_ptr<clsZelListItemFact> itemFactory_;
};

}  // namespace VnZEL10cmn
