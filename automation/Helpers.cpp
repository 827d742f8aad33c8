#include "automation/Object.h"

// Byte, number, text and hash helpers.

namespace automation {

using VnZEL10cmn::Currency;

namespace {

class VnStringList final : public Object<StringList, _clsVnStringList> {
 public:
  using Object::Object;

  HRESULT STDMETHODCALLTYPE get_Item(LONG Index, BSTR* Value) override {
    // Counted from 1, like everything that callers count.
    return Give(Value, [&] { return It().texts.at(static_cast<std::size_t>(Index) - 1); });
  }
  HRESULT STDMETHODCALLTYPE get_Count(LONG* Value) override {
    return Give(Value, [&] { return static_cast<std::int32_t>(It().texts.size()); });
  }
  HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown** Value) override {
    return GiveEnumerator(Value, [](const std::string& text, VARIANT& variant) {
      ToCom(text, &variant.bstrVal);
      variant.vt = VT_BSTR;
    });
  }
};

class Helper01 final : public Object<VnZEL10cmn::clsHelper01, _clsHelper01> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  AUTOMATION_TEXT(CreateGUID)
  HRESULT STDMETHODCALLTYPE ZEL_CharReplace(BSTR Data, LONG Length, BSTR* Result) override {
    return Give(Result, [&] { return It().ZEL_CharReplace(FromCom(Data), Length); });
  }
  HRESULT STDMETHODCALLTYPE GetLinesOfString(BSTR Data, _clsVnStringList** LineList,
                                             VARIANT_BOOL* Result) override {
    if (LineList == nullptr) return Missing();
    return Give(Result, [&] {
      // A new list each time: whoever has the old one keeps its lines.
      const auto list = std::make_shared<StringList>();
      const bool succeeded = It().GetLinesOfString(FromCom(Data), list->texts);
      auto face = Wrap(list);
      const auto old = ComPtr<_clsVnStringList>::Adopt(std::exchange(*LineList, face.Detach()));
      return succeeded;
    });
  }
  HRESULT STDMETHODCALLTYPE ByteMirror(unsigned char Value, unsigned char* Result) override {
    return Give(Result, [&] { return It().ByteMirror(Value); });
  }
  HRESULT STDMETHODCALLTYPE BytesToLong(SAFEARRAY** Value, LONG Start, LONG Count, VARIANT_BOOL BigEndian,
                                        LONG* Result) override {
    return Give(Result, [&] { return It().BytesToLong(Bytes(Value), Start, Count, FromCom(BigEndian)); });
  }
  HRESULT STDMETHODCALLTYPE LongToBytes(LONG Value, VARIANT_BOOL BigEndian, VARIANT_BOOL NoZeroBytes,
                                        SAFEARRAY** Result) override {
    return Give(Result, [&] { return It().LongToBytes(Value, FromCom(BigEndian), FromCom(NoZeroBytes)); });
  }
  HRESULT STDMETHODCALLTYPE BytesToPString(SAFEARRAY** Value, LONG Start, LONG Count, VARIANT_BOOL Asc126Plus,
                                           BSTR* Result) override {
    return Give(Result, [&] { return It().BytesToPString(Bytes(Value), Start, Count, FromCom(Asc126Plus)); });
  }
  HRESULT STDMETHODCALLTYPE LongToCurrency(LONG Value, CY* Result) override {
    return Give(Result, [&] { return It().LongToCurrency(Value); });
  }
  HRESULT STDMETHODCALLTYPE CurrencyToLong(CY Value, LONG* Result) override {
    return Give(Result, [&] { return It().CurrencyToLong(FromCom(Value)); });
  }
  HRESULT STDMETHODCALLTYPE RoundCmrc(CY Value, LONG Digits, CY* Result) override {
    return Give(Result, [&] { return It().RoundCmrc(FromCom(Value), Digits); });
  }
  HRESULT STDMETHODCALLTYPE RoundCmrc2(VARIANT Value, LONG Digits, CY* Result) override {
    return Give(Result, [&] { return Round(Value, Digits); });
  }
  HRESULT STDMETHODCALLTYPE ToBase64String(SAFEARRAY** Data, BSTR* Result, LONG Start, LONG Count,
                                           LONG LineLen, BSTR ReplPlus, BSTR ReplSlsh,
                                           VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& result) {
          return It().ToBase64String(Bytes(Data), result, Start, Count, LineLen, FromCom(ReplPlus),
                                     FromCom(ReplSlsh));
        },
        Result);
  }
  HRESULT STDMETHODCALLTYPE FromBase64String(BSTR Data, SAFEARRAY** Result, BSTR ReplPlus, BSTR ReplSlsh,
                                             VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& result) {
          return It().FromBase64String(FromCom(Data), result, FromCom(ReplPlus), FromCom(ReplSlsh));
        },
        Result);
  }
  HRESULT STDMETHODCALLTYPE ToBase32String(SAFEARRAY** Data, BSTR* Result, LONG Start, LONG Count,
                                           LONG LineLen, VARIANT_BOOL HexEnc,
                                           VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& result) {
          return It().ToBase32String(Bytes(Data), result, Start, Count, LineLen, FromCom(HexEnc));
        },
        Result);
  }
  HRESULT STDMETHODCALLTYPE GetBytesOfBinStr(BSTR Data, SAFEARRAY** Result, VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& result) { return It().GetBytesOfBinStr(FromCom(Data), result); }, Result);
  }
  HRESULT STDMETHODCALLTYPE GetBinStrOfBytes(SAFEARRAY** Data, BSTR* Result, BSTR SepStr, LONG GroupLen,
                                             VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& result) { return It().GetBinStrOfBytes(Bytes(Data), result, FromCom(SepStr), GroupLen); },
        Result);
  }
  HRESULT STDMETHODCALLTYPE GetSHA1Hash(BSTR Data, SAFEARRAY** Result, VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& result) { return It().GetSHA1Hash(FromCom(Data), result); }, Result);
  }
  HRESULT STDMETHODCALLTYPE GetSHA1Hash1(SAFEARRAY** Data, SAFEARRAY** Result,
                                         VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& result) { return It().GetSHA1Hash1(Bytes(Data), result); }, Result);
  }
  HRESULT STDMETHODCALLTYPE GetSHA1Hash2(BSTR Data, BSTR* Result, VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& result) { return It().GetSHA1Hash2(FromCom(Data), result); }, Result);
  }
  HRESULT STDMETHODCALLTYPE GetSHA256Hash(BSTR Data, SAFEARRAY** Result, VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& result) { return It().GetSHA256Hash(FromCom(Data), result); }, Result);
  }
  HRESULT STDMETHODCALLTYPE GetSHA256Hash1(SAFEARRAY** Data, SAFEARRAY** Result,
                                           VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& result) { return It().GetSHA256Hash1(Bytes(Data), result); }, Result);
  }
  HRESULT STDMETHODCALLTYPE GetSHA256Hash2(BSTR Data, BSTR* Result, VARIANT_BOOL* Success) override {
    return Call(
        Success, [&](auto& result) { return It().GetSHA256Hash2(FromCom(Data), result); }, Result);
  }

 private:
  /// The number or text that the variant holds, by its own type: each becomes a decimal number in its own way.
  Currency Round(const VARIANT& given, LONG digits) {
    Variant value;
    if (FAILED(VariantCopyInd(value.Get(), const_cast<VARIANT*>(&given)))) return RoundWhatIsNoNumber(digits);
    switch (value->vt) {
      case VT_CY: return It().RoundCmrc2(FromCom(value->cyVal), digits);
      case VT_R4: return It().RoundCmrc2(value->fltVal, digits);
      case VT_R8:
      case VT_DATE: return It().RoundCmrc2(value->dblVal, digits);
      case VT_UI8: return It().RoundCmrc2(static_cast<std::uint64_t>(value->ullVal), digits);
      case VT_EMPTY:
      case VT_BOOL:
      case VT_I1:
      case VT_UI1:
      case VT_I2:
      case VT_UI2:
      case VT_I4:
      case VT_UI4:
      case VT_INT:
      case VT_UINT:
      case VT_I8:
        Require(VariantChangeType(value.Get(), value.Get(), 0, VT_I8));
        return It().RoundCmrc2(static_cast<std::int64_t>(value->llVal), digits);
      default:
        // As text no digit of a decimal number gets lost. An object is what its default member is.
        if (value->vt == VT_NULL || FAILED(VariantChangeType(value.Get(), value.Get(), 0, VT_BSTR))) {
          return RoundWhatIsNoNumber(digits);
        }
        return It().RoundCmrc2(FromCom(value->bstrVal), digits);
    }
  }

  /// Files that it is none, as for a text.
  Currency RoundWhatIsNoNumber(LONG digits) { return It().RoundCmrc2(std::string_view(), digits); }
};

class Sha256 final : public Object<VnZEL10cmn::clsSHA256, _clsSHA256> {
 public:
  using Object::Object;

  HRESULT STDMETHODCALLTYPE SHA256(BSTR Message, BSTR* Result) override {
    return Give(Result, [&] { return It().SHA256(FromCom(Message)); });
  }
};

}  // namespace

AUTOMATION_MAKE(StringList, VnStringList)
AUTOMATION_MAKE(VnZEL10cmn::clsHelper01, Helper01)
AUTOMATION_MAKE(VnZEL10cmn::clsSHA256, Sha256)

}  // namespace automation
