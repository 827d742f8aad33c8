#include "automation/Object.h"

// Booking items, their list and their factory.

namespace automation {

using VnZEL10cmn::ByteArray;

namespace {

class ZelItemCash;

/// The item as lists, bookings and print engines see it.
class ItemFacet final : public Facet<::IVnZelItem> {
 public:
  explicit ItemFacet(ZelItemCash& whole);

  HRESULT STDMETHODCALLTYPE get_InstanceID(BSTR* Value) override;
  HRESULT STDMETHODCALLTYPE get_ErrorObject(_clsVnError** Value) override;
  HRESULT STDMETHODCALLTYPE get_LogHandler(_clsVnLogFile** Value) override;
  HRESULT STDMETHODCALLTYPE putref_LogHandler(_clsVnLogFile* Value) override;
  HRESULT STDMETHODCALLTYPE BinaryDataGet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Result) override;
  HRESULT STDMETHODCALLTYPE BinaryDataSet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Result) override;
  HRESULT STDMETHODCALLTYPE Clear() override;
  HRESULT STDMETHODCALLTYPE HasError(VARIANT_BOOL* Result) override;
  HRESULT STDMETHODCALLTYPE GetPrices(SAFEARRAY** Prices, VARIANT_BOOL* IsThrdPrt,
                                      VARIANT_BOOL* Result) override;
  HRESULT STDMETHODCALLTYPE ToString(BSTR* Result) override;

 private:
  ZelItemCash& whole_;
};

class ZelItemCash final : public Object<VnZEL10cmn::clsZelItemCash, _clsZelItemCash> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  AUTOMATION_READ(VARIANT_BOOL, CanEdit)
  AUTOMATION_PROPERTY(CY, Quantity)
  AUTOMATION_PROPERTY(BSTR, Unit)
  AUTOMATION_PROPERTY(BSTR, Name)
  AUTOMATION_PROPERTY(VARIANT_BOOL, DiscSurc)
  AUTOMATION_PROPERTY(VARIANT_BOOL, Voucher)
  AUTOMATION_PROPERTY(VARIANT_BOOL, ThirdParty)
  HRESULT STDMETHODCALLTYPE get_Price(LONG Index, CY* Value) override {
    return Give(Value, [&] { return It().Price(Index); });
  }
  HRESULT STDMETHODCALLTYPE put_Price(LONG Index, CY Value) override {
    return Guard([&] { It().Price(Index, FromCom(Value)); });
  }
  HRESULT STDMETHODCALLTYPE get_Price2(ZELVatClasses VatClass, CY* Value) override {
    return Give(Value, [&] { return It().Price2(FromCom(VatClass)); });
  }
  HRESULT STDMETHODCALLTYPE put_Price2(ZELVatClasses VatClass, CY Value) override {
    return Guard([&] { It().Price2(FromCom(VatClass), FromCom(Value)); });
  }
  AUTOMATION_OBJECT_WRITE(_clsZelItemPrint, PrintEngine)
  HRESULT STDMETHODCALLTYPE SetItemData(CY Quantity, BSTR Name, BSTR Unit, CY Price1, CY Price2, CY Price4,
                                        VARIANT_BOOL DiscSurch, VARIANT_BOOL Voucher, VARIANT_BOOL ThirdParty,
                                        CY Price5, CY Price6, CY Price3, VARIANT_BOOL* Success) override {
    return Give(Success, [&] {
      return It().SetItemData(FromCom(Quantity), FromCom(Name), FromCom(Unit), FromCom(Price1),
                              FromCom(Price2), FromCom(Price4), FromCom(DiscSurch), FromCom(Voucher),
                              FromCom(ThirdParty), FromCom(Price5), FromCom(Price6), FromCom(Price3));
    });
  }
  HRESULT STDMETHODCALLTYPE BinaryDataGet(SAFEARRAY** Data, LONG* Start, ZELSerialType SerialType,
                                          BSTR DataStr, LONG DataLen, VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& data, auto& start) {
          return It().BinaryDataGet(data, start, FromCom(SerialType), FromCom(DataStr), DataLen);
        },
        Data, Start);
  }
  HRESULT STDMETHODCALLTYPE BinaryDataSet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& start) { return It().BinaryDataSet(Bytes(Data), start); }, Start);
  }
  AUTOMATION_SUCCESS(Clear)
  AUTOMATION_TEXT(ToString)

  // What only the item interface has.

  HRESULT InstanceID(BSTR* result) {
    return Give(result, [&] { return It().InstanceID(); });
  }
  HRESULT GetPrices(SAFEARRAY** prices, VARIANT_BOOL* isThirdParty, VARIANT_BOOL* success) {
    if (prices == nullptr || isThirdParty == nullptr) return Missing();
    return Give(success, [&] {
      ArrayReference<VnZEL10cmn::CurrencyArray> values(prices);
      Reference<VARIANT_BOOL> flag(isThirdParty);
      const bool succeeded = It().GetPrices(values.Value(), flag.Value());
      values.Prepare();
      values.Store();
      flag.Store();
      return succeeded;
    });
  }

 private:
  IUnknown* FindMore(REFIID id) override { return id == IID_IVnZelItem ? &item_ : nullptr; }

  ItemFacet item_{*this};
};

ItemFacet::ItemFacet(ZelItemCash& whole) : Facet(*static_cast<_clsZelItemCash*>(&whole)), whole_(whole) {}

HRESULT ItemFacet::get_InstanceID(BSTR* Value) { return whole_.InstanceID(Value); }
HRESULT ItemFacet::get_ErrorObject(_clsVnError** Value) { return whole_.get_ErrorObject(Value); }
HRESULT ItemFacet::get_LogHandler(_clsVnLogFile** Value) { return whole_.get_LogHandler(Value); }
HRESULT ItemFacet::putref_LogHandler(_clsVnLogFile* Value) { return whole_.putref_LogHandler(Value); }
HRESULT ItemFacet::BinaryDataGet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Result) {
  return whole_.BinaryDataGet(Data, Start, ZELSerialType_ObjectData, nullptr, 0, Result);
}
HRESULT ItemFacet::BinaryDataSet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Result) {
  return whole_.BinaryDataSet(Data, Start, Result);
}
HRESULT ItemFacet::Clear() {
  VARIANT_BOOL ignored = VARIANT_FALSE;
  return whole_.Clear(&ignored);
}
HRESULT ItemFacet::HasError(VARIANT_BOOL* Result) { return whole_.HasError(Result); }
HRESULT ItemFacet::GetPrices(SAFEARRAY** Prices, VARIANT_BOOL* IsThrdPrt, VARIANT_BOOL* Result) {
  return whole_.GetPrices(Prices, IsThrdPrt, Result);
}
HRESULT ItemFacet::ToString(BSTR* Result) { return whole_.ToString(Result); }

class ZelItemList final : public Object<VnZEL10cmn::clsZelItemList, _clsZelItemList> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  AUTOMATION_ITEMS
  AUTOMATION_PROPERTY(BSTR, ZelProfile)
  AUTOMATION_OBJECT_WRITE(_clsZelItemPrint, PrintEngine)
  AUTOMATION_OBJECT_WRITE(_clsZelListItemFact, ItemFactory)
  HRESULT STDMETHODCALLTYPE GetItemHash(VARIANT_BOOL Bit256, VARIANT_BOOL AsBase32, VARIANT_BOOL ZelGrp,
                                        BSTR* HASH, BSTR GrpSep, VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& hash) {
          return It().GetItemHash(FromCom(Bit256), FromCom(AsBase32), FromCom(ZelGrp), hash, FromCom(GrpSep));
        },
        HASH);
  }
  HRESULT STDMETHODCALLTYPE BinaryDataGet(SAFEARRAY** Data, LONG* Start, VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& data, auto& start) { return It().BinaryDataGet(data, start); }, Data, Start);
  }
  HRESULT STDMETHODCALLTYPE BinaryDataSet(SAFEARRAY** Data, LONG* Start, LONG DataLen,
                                          VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& start) { return It().BinaryDataSet(Bytes(Data), start, DataLen); }, Start);
  }
  AUTOMATION_SUCCESS(Clear)
  AUTOMATION_TEXT(ToString)
};

class ZelListItemFact final : public Object<VnZEL10cmn::clsZelListItemFact, _clsZelListItemFact> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  HRESULT STDMETHODCALLTYPE CreateNewItem(_clsVnError** ErrObj, ::IVnZelItem** Result) override {
    return Give(Result, [&] { return It().CreateNewItem(FromCom(ErrorIn(ErrObj)).get()); });
  }
};

}  // namespace

AUTOMATION_MAKE(VnZEL10cmn::clsZelItemCash, ZelItemCash)
AUTOMATION_MAKE(VnZEL10cmn::clsZelItemList, ZelItemList)
AUTOMATION_MAKE(VnZEL10cmn::clsZelListItemFact, ZelListItemFact)

}  // namespace automation
