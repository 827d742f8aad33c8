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

  /// The first item with exactly this instance ID, or none. A host's items are asked for the ID that they have now, and
  /// what one of them throws is thrown to the caller.
  std::shared_ptr<IVnZelItem> ItemK(std::string_view InstanceID) const;

  /// Sets the print engine behind `ToString`; with none, each item is asked for its own text.
  void PrintEngine(std::shared_ptr<clsZelItemPrint> Value);

  /// Sets the factory of decoded items; none brings back the default one.
  void ItemFactory(std::shared_ptr<clsZelListItemFact> Value);

  /// The hash of the list's binary form, SHA-256 or SHA-1, as Base64 or Base32 text; `ZelGrp` cuts it into
  /// groups of 5 characters separated by `GrpSep` (empty: a blank). Fails as `BinaryDataGet` does, whose name the error
  /// then has. `HASH` keeps its content on failure.
  bool GetItemHash(bool Bit256, bool AsBase32, bool ZelGrp, std::string& HASH, std::string_view GrpSep = {});

  /// Appends an item and hands it the list's log file. Fails with 9306 when an item was added with its instance ID
  /// already (a host's item may have another one by now), 91 without an item.
  bool AddItem(std::shared_ptr<IVnZelItem> Item);

  /// Removes one item: `Item` itself, else the first with the instance ID (see `ItemK`), else the one at the position.
  /// What is not found is no error; a position beyond the list is a run-time fault (9), if there are items at all.
  bool RemoveItem(const std::shared_ptr<IVnZelItem>& Item = nullptr, std::string_view ID = {},
                  std::int32_t Index = -1);

  /// Appends all items' records at `Start`, enlarging `Data` by 128 bytes per item, and moves `Start` behind
  /// them; `Start` is the length to use, what follows in `Data` is reserve. An empty list writes nothing, is
  /// a success and leaves a message in the log. Fails with 9301 when an item fails, which its own error object explains, or
  /// when a host's item moves or leaves the array or changes the list; `Start` is then where the item left it. 6 when the array
  /// would end beyond the largest index. Failures are not logged.
  bool BinaryDataGet(ByteArray& Data, std::int32_t& Start);

  /// Replaces the items by those read from `Start` on, `DataLen` bytes (below 1: to the end), and moves
  /// `Start`. Fails with 9207 when that reaches beyond the end (items unchanged), 9307 when an item can't be
  /// decoded (`Start` is where that item began), 9306 when it can't be added (`Start` is behind it), 91 when the factory
  /// makes none, 9 for a `Start` below the array; items before it then stay in the list.
  bool BinaryDataSet(const ByteArray& Data, std::int32_t& Start, std::int32_t DataLen = 0);

  /// Removes all items. Always True.
  bool Clear();

  /// The items' texts, one under the other; empty for an item that fails. The first failure of the print engine shows
  /// in the list's error object; without an engine each item's failure is in its own.
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
