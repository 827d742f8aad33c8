#pragma once

#include "automation/Com.h"

namespace automation {

/// An object of a language that implements no interface of a type library, but whose objects have members of any name
/// (JScript's objects, VBScript's classes), as one of the interfaces that hosts may implement: IVnZelItem, IVnLogItem,
/// _clsZelListItemFact, _clsZelItemPrint and _clsZelRprtPrint. Empty for another interface, and where the object lacks
/// the members that matter. The result has the identity of the object.
///
/// A language that hands nothing back by reference returns it: `BinaryDataGet` the bytes of the item's records, in the
/// place of True, `BinaryDataSet` the index behind them, `GetPrices` the prices; `IsThrdPrt` is then a member of the
/// item.
ComPtr<IUnknown> AsHostObject(IUnknown* object, REFIID id);

}  // namespace automation
