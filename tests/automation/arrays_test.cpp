// Arrays as Visual Basic makes them: of a fixed size on the stack, in modules and structures, and locked ones. Where their
// bounds would have to change they are refused, unchanged; where the bounds stay they get their elements in place.

#include <cstddef>
#include <functional>

#include "Client.h"

namespace {

using namespace client;

constexpr LONG kFull = 40;

/// An array of its own on the stack: descriptor and elements are nobody's to free.
class StackArray {
 public:
  StackArray(VARTYPE type, ULONG elementSize, LONG lower, ULONG count, USHORT features) {
    // The type stands in front of the descriptor.
    whole_.type = type;
    whole_.array.cDims = 1;
    whole_.array.fFeatures = static_cast<USHORT>(features | FADF_HAVEVARTYPE);
    whole_.array.cbElements = elementSize;
    whole_.array.pvData = elements_;
    whole_.array.rgsabound[0] = {count, lower};
    std::memset(elements_, 0x55, sizeof elements_);
    before_ = whole_;
  }
  StackArray(LONG lower, ULONG count, USHORT features) : StackArray(VT_UI1, 1, lower, count, features) {}
  StackArray(const StackArray&) = delete;
  StackArray& operator=(const StackArray&) = delete;

  SAFEARRAY* Get() { return &whole_.array; }
  bool IsSameArray(SAFEARRAY* now) {
    return now == Get() && std::memcmp(&whole_, &before_, sizeof whole_) == 0;
  }
  std::uint8_t* Elements() { return elements_; }
  bool IsUntouched() const {
    return std::all_of(std::begin(elements_), std::end(elements_), [](std::uint8_t e) { return e == 0x55; });
  }

 private:
  struct Whole {
    std::uint64_t reserved = 0;
    DWORD more = 0;
    DWORD type = 0;
    SAFEARRAY array{};
  };
  static_assert(offsetof(Whole, array) == offsetof(Whole, type) + sizeof(DWORD));

  Whole whole_;
  Whole before_;
  alignas(8) std::uint8_t elements_[256];
};

const USHORT kKinds[] = {FADF_AUTO | FADF_FIXEDSIZE,
                         FADF_STATIC | FADF_FIXEDSIZE,
                         FADF_EMBEDDED | FADF_FIXEDSIZE,
                         FADF_AUTO,
                         FADF_STATIC,
                         FADF_EMBEDDED,
                         FADF_FIXEDSIZE};

const wchar_t* const kFixedText = L"Dieses Datenfeld hat eine feste Größe oder ist zurzeit gesperrt.";

VARIANT ByReference(VARTYPE type, SAFEARRAY** array) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BYREF | VT_ARRAY | type;
  value.pparray = array;
  return value;
}
void TextsBecomeBytes() {
  Ptr<_clsHelper01> helper;
  Create(CLSID_clsHelper01, helper);
  for (const USHORT kind : kKinds) {
    for (const bool isLate : {false, true}) {
      const auto decode = [&](SAFEARRAY** array, bool& success) {
        VARIANT_BOOL result = VARIANT_FALSE;
        HRESULT outcome = S_OK;
        if (isLate) {
          Late late(helper.Get());
          Var text(L"QUJD");
          Var value;
          outcome = late.Call(L"FromBase64String", {text.Value(), ByReference(VT_UI1, array)}, value.Get());
          if (outcome == DISP_E_EXCEPTION) {
            outcome = late.number;
            EXPECT(late.description == kFixedText);
          }
          result = value->boolVal;
        } else {
          outcome = helper->FromBase64String(Text(L"QUJD"), array, Text(L"+"), Text(L"/"), &result);
          if (FAILED(outcome)) EXPECT(Description() == kFixedText);
        }
        success = SUCCEEDED(outcome) && result == VARIANT_TRUE;
        return outcome;
      };
      bool success = false;
      StackArray large(0, 10, kind);
      SAFEARRAY* place = large.Get();
      EXPECT(decode(&place, success) == Raised(10));
      EXPECT(large.IsSameArray(place) && large.IsUntouched());
      // The same number of elements isn't enough.
      StackArray shifted(1, 3, kind);
      place = shifted.Get();
      EXPECT(decode(&place, success) == Raised(10));
      EXPECT(shifted.IsSameArray(place) && shifted.IsUntouched());
      StackArray right(0, 3, kind);
      place = right.Get();
      EXPECT(SUCCEEDED(decode(&place, success)) && success);
      EXPECT(right.IsSameArray(place) && std::memcmp(right.Elements(), "ABC\x55", 4) == 0);
    }
  }
}

void LockedArrays() {
  Ptr<_clsHelper01> helper;
  Create(CLSID_clsHelper01, helper);
  VARIANT_BOOL success = VARIANT_FALSE;
  SAFEARRAY* array = Bytes(0, {1, 2, 3, 4});
  SAFEARRAY* const place = array;
  SafeArrayLock(array);
  EXPECT(helper->FromBase64String(Text(L"QUJD"), &array, Text(L"+"), Text(L"/"), &success) == Raised(10));
  EXPECT(Description() == kFixedText);
  EXPECT(array == place && std::memcmp(array->pvData, "\1\2\3\4", 4) == 0 && array->cLocks == 1);
  EXPECT(SUCCEEDED(helper->FromBase64String(Text(L"QUJDRA=="), &array, Text(L"+"), Text(L"/"), &success)));
  EXPECT(success == VARIANT_TRUE && array == place && std::memcmp(array->pvData, "ABCD", 4) == 0 &&
         array->cLocks == 1);
  Late late(helper.Get());
  Var text(L"QUJD");
  EXPECT(late.Call(L"FromBase64String", {text.Value(), ByReference(VT_UI1, &array)}) == DISP_E_EXCEPTION);
  EXPECT(late.number == Raised(10) && array == place && array->cLocks == 1);
  SafeArrayUnlock(array);
  EXPECT(SUCCEEDED(helper->FromBase64String(Text(L"QUJD"), &array, Text(L"+"), Text(L"/"), &success)));
  EXPECT(array != nullptr && array->rgsabound[0].cElements == 3);
  SafeArrayDestroy(array);
}

/// Every operation that gives bytes back, on an array with bounds that aren't those of its result.
void Operations() {
  Ptr<_clsHelper01> helper;
  Create(CLSID_clsHelper01, helper);
  Ptr<_clsZelBaseCoding> coder;
  Create(CLSID_clsZelBaseCoding, coder);
  Ptr<_clsZelItemCash> item;
  Create(CLSID_clsZelItemCash, item);
  VARIANT_BOOL ignored = VARIANT_FALSE;
  item->SetItemData(Money(10000), Text(L"kaffee"), nullptr, Money(28000), {}, {}, 0, 0, 0, {}, {}, {},
                    &ignored);
  Ptr<IVnZelItem> asItem;
  item->QueryInterface(__uuidof(IVnZelItem), asItem.PlaceVoid());
  Ptr<_clsZelItemList> list;
  Create(CLSID_clsZelItemList, list);
  list->AddItem(asItem.Get(), &ignored);
  Ptr<_clsZelVatList> rates;
  Create(CLSID_clsZelVatList, rates);
  Ptr<_clsZelTransAct> booking;
  Create(CLSID_clsZelTransAct, booking);
  booking->putref_VatList(rates.Get());
  booking->put_Operator(Text(L"meier"));
  booking->AddItem(asItem.Get(), &ignored);
  Ptr<_clsZelReport> report;
  Create(CLSID_clsZelReport, report);
  Ptr<_clsZelTransActData> data;
  Create(CLSID_clsZelTransActData, data);
  SAFEARRAY* five = Bytes(0, {'H', 'a', 'l', 'l', 'o'});
  LONG zero = 0;
  VARIANT length;
  VariantInit(&length);
  length.vt = VT_I4;
  length.lVal = 0;
  data->BinaryDataSet(ZELSerialType_BinaryData, &five, &zero, length, &ignored);
  std::vector<std::uint8_t> signature(50, 0x77);
  signature[0] = 0x9E;
  signature[1] = 48;
  SAFEARRAY* record = Bytes(0, signature);

  using Operation = std::function<HRESULT(SAFEARRAY**, LONG*, VARIANT_BOOL*)>;
  struct Case {
    const char* name;
    Operation run;
  };
  const Case cases[] = {
      {"GetBytesOfBinStr",
       [&](auto** a, auto*, auto* v) { return helper->GetBytesOfBinStr(Text(L"4142"), a, v); }},
      {"GetSHA1Hash", [&](auto** a, auto*, auto* v) { return helper->GetSHA1Hash(Text(L"x"), a, v); }},
      {"GetSHA1Hash1", [&](auto** a, auto*, auto* v) { return helper->GetSHA1Hash1(&five, a, v); }},
      {"GetSHA256Hash", [&](auto** a, auto*, auto* v) { return helper->GetSHA256Hash(Text(L"x"), a, v); }},
      {"GetSHA256Hash1", [&](auto** a, auto*, auto* v) { return helper->GetSHA256Hash1(&five, a, v); }},
      {"GetDataBinary",
       [&](auto** a, auto* start, auto* v) { return coder->GetDataBinary(&record, start, a, -1, -1, v); }},
      {"GetZelSignature",
       [&](auto** a, auto* start, auto* v) { return coder->GetZelSignature(&record, start, a, v); }},
      {"list's BinaryDataGet",
       [&](auto** a, auto* start, auto* v) { return list->BinaryDataGet(a, start, v); }},
      {"booking's Request",
       [&](auto** a, auto* start, auto* v) {
         return booking->BinaryDataGet(ZELSerialType_Request, a, start, nullptr, v);
       }},
      {"report's Request",
       [&](auto** a, auto* start, auto* v) {
         return report->BinaryDataGet(ZELSerialType_Request, a, start, ZelReportType_Signed, nullptr, v);
       }},
  };
  for (const auto& [name, run] : cases) {
    // What a dynamic array gets says whether a fixed one would have to change.
    SAFEARRAY* dynamic = Bytes(0, std::vector<std::uint8_t>(kFull, 0x55));
    LONG start = 0;
    VARIANT_BOOL success = VARIANT_FALSE;
    EXPECT(SUCCEEDED(run(&dynamic, &start, &success)) && success == VARIANT_TRUE);
    const ULONG wanted = dynamic->rgsabound[0].cElements;
    Expect(wanted != kFull, name, __LINE__);
    StackArray fixed(0, kFull, FADF_AUTO | FADF_FIXEDSIZE);
    SAFEARRAY* place = fixed.Get();
    start = 0;
    success = VARIANT_FALSE;
    Expect(run(&place, &start, &success) == Raised(10), name, __LINE__);
    Expect(Description() == kFixedText, name, __LINE__);
    // Nothing else is stored either.
    Expect(fixed.IsSameArray(place) && fixed.IsUntouched() && start == 0 && success == VARIANT_FALSE, name,
           __LINE__);
    StackArray right(0, wanted, FADF_STATIC | FADF_FIXEDSIZE);
    place = right.Get();
    if (wanted > 256) continue;
    // A buffer is enlarged by what may be needed, so that a fixed one never is large enough for the list.
    start = 0;
    const HRESULT outcome = run(&place, &start, &success);
    Expect(right.IsSameArray(place), name, __LINE__);
    if (std::string_view(name) != "list's BinaryDataGet") {
      Expect(SUCCEEDED(outcome) && success == VARIANT_TRUE, name, __LINE__);
      Expect(std::memcmp(right.Elements(), dynamic->pvData, wanted) == 0, name, __LINE__);
    }
    SafeArrayDestroy(dynamic);
  }
  SafeArrayDestroy(five);
  SafeArrayDestroy(record);

  // What fits into the caller's buffer is written there.
  StackArray buffer(0, 10, FADF_AUTO | FADF_FIXEDSIZE);
  SAFEARRAY* place = buffer.Get();
  LONG start = 1;
  EXPECT(Succeeds([&](auto* v) { return coder->SetZelOperator(&place, &start, Text(L"meier"), v); }));
  EXPECT(buffer.IsSameArray(place) && start == 8 &&
         std::memcmp(buffer.Elements(), "\x55\xC6\x05meier\x55\x55", 10) == 0);
  // An item's buffer likewise.
  StackArray itemBuffer(0, 100, FADF_AUTO | FADF_FIXEDSIZE);
  place = itemBuffer.Get();
  start = 0;
  EXPECT(Succeeds([&](auto* v) { return asItem->BinaryDataGet(&place, &start, v); }));
  EXPECT(itemBuffer.IsSameArray(place) && start == 15 &&
         std::memcmp(itemBuffer.Elements(), "\xA0\x01\x31\xA2\x06kaffee\xB1\x02\x28\x0C\x55", 16) == 0);
}

void Prices() {
  Ptr<_clsZelItemCash> item;
  Create(CLSID_clsZelItemCash, item);
  item->put_Price(2, Money(25000));
  Ptr<IVnZelItem> asItem;
  item->QueryInterface(__uuidof(IVnZelItem), asItem.PlaceVoid());
  for (const bool isLate : {false, true}) {
    const auto prices = [&](SAFEARRAY** array) {
      VARIANT_BOOL isThirdParty = VARIANT_FALSE;
      if (!isLate) {
        VARIANT_BOOL success = VARIANT_FALSE;
        return asItem->GetPrices(array, &isThirdParty, &success);
      }
      Late late(asItem.Get());
      VARIANT flag;
      VariantInit(&flag);
      flag.vt = VT_BYREF | VT_BOOL;
      flag.pboolVal = &isThirdParty;
      const HRESULT outcome = late.Call(L"GetPrices", {ByReference(VT_CY, array), flag});
      return outcome == DISP_E_EXCEPTION ? late.number : outcome;
    };
    StackArray right(VT_CY, sizeof(CY), 0, 6, FADF_AUTO | FADF_FIXEDSIZE);
    SAFEARRAY* place = right.Get();
    EXPECT(prices(&place) == S_OK && right.IsSameArray(place));
    std::int64_t found[6];
    std::memcpy(found, right.Elements(), sizeof found);
    EXPECT(found[0] == 0 && found[1] == 25000 && found[5] == 0);
    StackArray small(VT_CY, sizeof(CY), 0, 3, FADF_AUTO | FADF_FIXEDSIZE);
    place = small.Get();
    // The operation refuses other bounds itself.
    EXPECT(prices(&place) == S_OK && small.IsSameArray(place) && small.IsUntouched());
  }
}

/// `Dim a(2) As Variant`, as variable of its own and inside another variant.
void ArraysOfVariants() {
  Ptr<_clsHelper01> helper;
  Create(CLSID_clsHelper01, helper);
  Late late(helper.Get());
  Var text(L"QUJD");
  for (const bool isInside : {false, true}) {
    const auto decode = [&](SAFEARRAY*& array) {
      if (!isInside) return late.Call(L"FromBase64String", {text.Value(), ByReference(VT_VARIANT, &array)});
      VARIANT inner;
      VariantInit(&inner);
      inner.vt = VT_ARRAY | VT_VARIANT;
      inner.parray = array;
      VARIANT outer;
      VariantInit(&outer);
      outer.vt = VT_BYREF | VT_VARIANT;
      outer.pvarVal = &inner;
      const HRESULT outcome = late.Call(L"FromBase64String", {text.Value(), outer});
      EXPECT(inner.vt == (VT_ARRAY | VT_VARIANT));
      array = inner.parray;
      return outcome;
    };
    SAFEARRAYBOUND bound{3, 0};
    SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, 1, &bound);
    array->fFeatures |= FADF_FIXEDSIZE;
    auto* elements = static_cast<VARIANT*>(array->pvData);
    SAFEARRAY* const place = array;
    EXPECT(SUCCEEDED(decode(array)) && array == place && array->pvData == elements);
    EXPECT(elements[0].vt == VT_UI1 && elements[0].bVal == 'A');
    EXPECT(elements[2].vt == VT_UI1 && elements[2].bVal == 'C');
    SafeArrayDestroy(array);

    bound.cElements = 4;
    array = SafeArrayCreate(VT_VARIANT, 1, &bound);
    array->fFeatures |= FADF_FIXEDSIZE;
    elements = static_cast<VARIANT*>(array->pvData);
    elements[0].vt = VT_I2;
    elements[0].iVal = 7;
    SAFEARRAY* const second = array;
    EXPECT(decode(array) == DISP_E_EXCEPTION && late.number == Raised(10));
    EXPECT(array == second && elements[0].vt == VT_I2 && elements[0].iVal == 7 && elements[3].vt == VT_EMPTY);
    SafeArrayDestroy(array);

    // One that may change gets the new bounds.
    array = SafeArrayCreate(VT_VARIANT, 1, &bound);
    EXPECT(SUCCEEDED(decode(array)) && array->rgsabound[0].cElements == 3);
    EXPECT(static_cast<VARIANT*>(array->pvData)[1].bVal == 'B');
    SafeArrayDestroy(array);
  }
}

}  // namespace

int main() {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  try {
    test::Require(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
    TextsBecomeBytes();
    LockedArrays();
    Operations();
    Prices();
    ArraysOfVariants();
    CoUninitialize();
  } catch (const std::exception& failure) {
    std::printf("%s\n", failure.what());
    return 1;
  }
  return Summary();
}
