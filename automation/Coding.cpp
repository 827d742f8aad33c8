#include "automation/Object.h"

// Device records.

namespace automation {

using VnZEL10cmn::ZelTags;

namespace {

ZelTags TagOf(unsigned char tag) { return static_cast<VnZEL10cmn::ZelTags>(tag); }

class ZelBaseCoding final : public Object<VnZEL10cmn::clsZelBaseCoding, _clsZelBaseCoding> {
 public:
  using Object::Object;

  AUTOMATION_FRAME
  HRESULT STDMETHODCALLTYPE DataReadBaseCheck(SAFEARRAY** Buffer, LONG Start, BSTR* Message,
                                              ZELErrorCodes* VnErrNr, LONG MinLen, LONG MaxLen,
                                              unsigned char Tag, VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& message, auto& number) {
          return It().DataReadBaseCheck(Bytes(Buffer), Start, message, number, MinLen, MaxLen, TagOf(Tag));
        },
        Message, VnErrNr);
  }
  HRESULT STDMETHODCALLTYPE DataWriteBaseCheck(SAFEARRAY** Buffer, LONG Start, LONG Length, BSTR* Message,
                                               ZELErrorCodes* VnErrNr, VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& message, auto& number) {
          return It().DataWriteBaseCheck(Bytes(Buffer), Start, Length, message, number);
        },
        Message, VnErrNr);
  }

  // A reader: the result, and what else it takes.
#define AUTOMATION_READER(name, type)                                                                       \
  HRESULT STDMETHODCALLTYPE name(SAFEARRAY** Buffer, LONG* Start, type* Result, VARIANT_BOOL* Success)      \
      override {                                                                                            \
    return Call(                                                                                            \
        Success, [&](auto& start, auto& result) { return It().name(Bytes(Buffer), start, result); }, Start, \
        Result);                                                                                            \
  }
#define AUTOMATION_LIMITED_READER(name, type)                                                               \
  HRESULT STDMETHODCALLTYPE name(SAFEARRAY** Buffer, LONG* Start, type* Result, LONG MinLen, LONG MaxLen,   \
                                 VARIANT_BOOL* Success) override {                                          \
    return Call(                                                                                            \
        Success,                                                                                            \
        [&](auto& start, auto& result) { return It().name(Bytes(Buffer), start, result, MinLen, MaxLen); }, \
        Start, Result);                                                                                     \
  }
#define AUTOMATION_TAGGED_READER(name, type)                                                            \
  HRESULT STDMETHODCALLTYPE name(SAFEARRAY** Buffer, LONG* Start, unsigned char Tag, type* Result,      \
                                 VARIANT_BOOL* Success) override {                                      \
    return Call(                                                                                        \
        Success,                                                                                        \
        [&](auto& start, auto& result) { return It().name(Bytes(Buffer), start, TagOf(Tag), result); }, \
        Start, Result);                                                                                 \
  }
  // A writer: the value, with or without a tag.
#define AUTOMATION_WRITER(name, type)                                                                 \
  HRESULT STDMETHODCALLTYPE name(SAFEARRAY** Buffer, LONG* Start, type Value, VARIANT_BOOL* Success)  \
      override {                                                                                      \
    return Call(                                                                                      \
        Success, [&](auto& buffer, auto& start) { return It().name(buffer, start, FromCom(Value)); }, \
        Buffer, Start);                                                                               \
  }
#define AUTOMATION_TAGGED_WRITER(name, type)                                                             \
  HRESULT STDMETHODCALLTYPE name(SAFEARRAY** Buffer, LONG* Start, unsigned char Tag, type Value,         \
                                 VARIANT_BOOL* Success) override {                                       \
    return Call(                                                                                         \
        Success,                                                                                         \
        [&](auto& buffer, auto& start) { return It().name(buffer, start, TagOf(Tag), FromCom(Value)); }, \
        Buffer, Start);                                                                                  \
  }
  // A writer of a value that callers hand in by reference.
#define AUTOMATION_PRIMITIVE_WRITER(name, type)                                                            \
  HRESULT STDMETHODCALLTYPE name(SAFEARRAY** Buffer, LONG* Start, unsigned char Tag, type* Data,           \
                                 VARIANT_BOOL* Success) override {                                         \
    return Call(                                                                                           \
        Success,                                                                                           \
        [&](auto& buffer, auto& start, auto& data) { return It().name(buffer, start, TagOf(Tag), data); }, \
        Buffer, Start, Data);                                                                              \
  }

  AUTOMATION_LIMITED_READER(GetDataBinary, SAFEARRAY*)
  AUTOMATION_LIMITED_READER(GetDataAscii, BSTR)
  AUTOMATION_PRIMITIVE_WRITER(SetDataBinary, SAFEARRAY*)
  AUTOMATION_PRIMITIVE_WRITER(SetDataAscii, BSTR)
  AUTOMATION_PRIMITIVE_WRITER(SetDataBool, VARIANT_BOOL)
  AUTOMATION_LIMITED_READER(GetDataBcd, BSTR)
  AUTOMATION_LIMITED_READER(GetDataBcdSgnd, BSTR)
  HRESULT STDMETHODCALLTYPE SetDataBcd(SAFEARRAY** Buffer, LONG* Start, unsigned char Tag, BSTR* Data,
                                       VARIANT_BOOL LeadZeroOk, VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& buffer, auto& start, auto& data) {
          return It().SetDataBcd(buffer, start, TagOf(Tag), data, FromCom(LeadZeroOk));
        },
        Buffer, Start, Data);
  }
  AUTOMATION_PRIMITIVE_WRITER(SetDataBcdSgnd, BSTR)
  AUTOMATION_READER(GetZelSignature, SAFEARRAY*)
  AUTOMATION_READER(GetZelLifeCycle, ZelLifeCycle)
  HRESULT STDMETHODCALLTYPE GetZelSerialNr(SAFEARRAY** Buffer, LONG* Start, BSTR* Result, BSTR* ResultAsc,
                                           VARIANT_BOOL Asc126Plus, VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& start, auto& result, auto* ascii) {
          return It().GetZelSerialNr(Bytes(Buffer), start, result, ascii, FromCom(Asc126Plus));
        },
        Start, Result, Optional(ResultAsc));
  }
  AUTOMATION_READER(GetZelVersion, BSTR)
  AUTOMATION_READER(GetZelTranspPin, BSTR)
  AUTOMATION_WRITER(SetZelTranspPin, BSTR)
  AUTOMATION_READER(GetZelTpID, BSTR)
  AUTOMATION_READER(GetZelTpIDNr, CY)
  AUTOMATION_READER(GetZelOperator, BSTR)
  AUTOMATION_WRITER(SetZelOperator, BSTR)
  HRESULT STDMETHODCALLTYPE GetZelHash(SAFEARRAY** Buffer, LONG* Start, VARIANT_BOOL IsTrans, BSTR* Result,
                                       VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& start, auto& result) {
          return It().GetZelHash(Bytes(Buffer), start, FromCom(IsTrans), result);
        },
        Start, Result);
  }
  HRESULT STDMETHODCALLTYPE SetZelHash(SAFEARRAY** Buffer, LONG* Start, VARIANT_BOOL IsTrans,
                                       SAFEARRAY** HASH, VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& buffer, auto& start) {
          return It().SetZelHash(buffer, start, FromCom(IsTrans), Bytes(HASH));
        },
        Buffer, Start);
  }
  HRESULT STDMETHODCALLTYPE SetZelHash2(SAFEARRAY** Buffer, LONG* Start, VARIANT_BOOL IsTrans, BSTR HASH,
                                        VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& buffer, auto& start) {
          return It().SetZelHash2(buffer, start, FromCom(IsTrans), FromCom(HASH));
        },
        Buffer, Start);
  }
  AUTOMATION_READER(GetZelCurrencyCode, LONG)
  AUTOMATION_WRITER(SetZelCurrencyCode, LONG)
  AUTOMATION_READER(GetZelCountryCode, LONG)
  AUTOMATION_TAGGED_READER(GetZelCounter, CY)
  AUTOMATION_TAGGED_WRITER(SetZelCounter, CY)

  // The same with a further argument behind, and with tags of a kind.
#define AUTOMATION_READER_WITH(name, tagType, toTag, type, moreType, more, given)                           \
  HRESULT STDMETHODCALLTYPE name(SAFEARRAY** Buffer, LONG* Start, tagType Tag, type* Result, moreType more, \
                                 VARIANT_BOOL* Success) override {                                          \
    return Call(                                                                                            \
        Success,                                                                                            \
        [&](auto& start, auto& result) {                                                                    \
          return It().name(Bytes(Buffer), start, toTag(Tag), result, given);                                \
        },                                                                                                  \
        Start, Result);                                                                                     \
  }
#define AUTOMATION_AMOUNT_WRITER(name, tagType, toTag)                                    \
  HRESULT STDMETHODCALLTYPE name(SAFEARRAY** Buffer, LONG* Start, tagType Tag, CY Amount, \
                                 VARIANT_BOOL LongVal, VARIANT_BOOL* Success) override {  \
    return Call(                                                                          \
        Success,                                                                          \
        [&](auto& buffer, auto& start) {                                                  \
          return It().name(buffer, start, toTag(Tag), FromCom(Amount), FromCom(LongVal)); \
        },                                                                                \
        Buffer, Start);                                                                   \
  }

  AUTOMATION_READER_WITH(GetZelAmounts, unsigned char, TagOf, CY, VARIANT_BOOL, LongVal, FromCom(LongVal))
  AUTOMATION_AMOUNT_WRITER(SetZelAmounts, unsigned char, TagOf)
  AUTOMATION_READER_WITH(GetZelDates, unsigned char, TagOf, DATE, LONG, MinLen, MinLen)
  AUTOMATION_TAGGED_WRITER(SetZelDates, DATE)
  AUTOMATION_TAGGED_READER(GetZelTimes, DATE)
  AUTOMATION_TAGGED_WRITER(SetZelTimes, DATE)
  AUTOMATION_TAGGED_READER(GetZelValsPos, CY)
  AUTOMATION_TAGGED_WRITER(SetZelValsPos, CY)
  AUTOMATION_READER(GetZelVatRate, CY)
  AUTOMATION_WRITER(SetZelVatRate, CY)
  HRESULT STDMETHODCALLTYPE GetZelCounterSpc01(SAFEARRAY** Buffer, LONG* Start, ZelRqstCounter Tag,
                                               CY* Result, VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& start, auto& result) {
          return It().GetZelCounterSpc01(Bytes(Buffer), start, FromCom(Tag), result);
        },
        Start, Result);
  }
  AUTOMATION_READER_WITH(GetZelAmountsSpc01, ZelRqstAmounts, FromCom, CY, VARIANT_BOOL, LongVal,
                         FromCom(LongVal))
  AUTOMATION_AMOUNT_WRITER(SetZelAmountsSpc01, ZelRqstAmounts, FromCom)
  AUTOMATION_READER_WITH(GetZelDatesSpc01, ZelRqstDates, FromCom, DATE, LONG, MinLen, MinLen)
  HRESULT STDMETHODCALLTYPE SetZelDatesSpc01(SAFEARRAY** Buffer, LONG* Start, ZelRqstDates Tag, DATE xDate,
                                             VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& buffer, auto& start) {
          return It().SetZelDatesSpc01(buffer, start, FromCom(Tag), FromCom(xDate));
        },
        Buffer, Start);
  }

#undef AUTOMATION_READER
#undef AUTOMATION_LIMITED_READER
#undef AUTOMATION_TAGGED_READER
#undef AUTOMATION_WRITER
#undef AUTOMATION_TAGGED_WRITER
#undef AUTOMATION_PRIMITIVE_WRITER
#undef AUTOMATION_READER_WITH
#undef AUTOMATION_AMOUNT_WRITER

  HRESULT STDMETHODCALLTYPE ToStringZelState(ZelLifeCycle State, BSTR* Result) override {
    return Give(Result, [&] { return It().ToStringZelState(FromCom(State)); });
  }
  HRESULT STDMETHODCALLTYPE GetZelSingatureString(SAFEARRAY** Buffer, BSTR* Result, LONG GroupLen,
                                                  BSTR GroupSep, VARIANT_BOOL AsBase32,
                                                  VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& result) {
          return It().GetZelSingatureString(Bytes(Buffer), result, GroupLen, FromCom(GroupSep),
                                            FromCom(AsBase32));
        },
        Result);
  }
  HRESULT STDMETHODCALLTYPE GetZelSignature2(SAFEARRAY** Buffer, LONG* Start, BSTR* Result, LONG GroupLen,
                                             BSTR GroupSep, VARIANT_BOOL AsBase32,
                                             VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& start, auto& result) {
          return It().GetZelSignature2(Bytes(Buffer), start, result, GroupLen, FromCom(GroupSep),
                                       FromCom(AsBase32));
        },
        Start, Result);
  }
  HRESULT STDMETHODCALLTYPE GetXmlTag(BSTR DataXML, ZelXmlTags XmlTag, BSTR* Result, BSTR* Profile,
                                      VARIANT_BOOL* Success) override {
    return Call(
        Success,
        [&](auto& result, auto* profile) {
          return It().GetXmlTag(FromCom(DataXML), FromCom(XmlTag), result, profile);
        },
        Result, Optional(Profile));
  }
};

}  // namespace

AUTOMATION_MAKE(VnZEL10cmn::clsZelBaseCoding, ZelBaseCoding)

}  // namespace automation
