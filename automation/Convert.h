#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "VnZEL10cmn/VnZEL10cmn.h"
#include "automation/Com.h"
#include "automation/Failure.h"

namespace automation {

/// The enumeration of the library behind one of the interface.
template <class Enumeration>
struct NativeEnum;
template <>
struct NativeEnum<ZELErrorCodes> {
  using Type = VnZEL10cmn::ZELErrorCodes;
};
template <>
struct NativeEnum<ZelTags> {
  using Type = VnZEL10cmn::ZelTags;
};
template <>
struct NativeEnum<ZelRqstCounter> {
  using Type = VnZEL10cmn::ZelRqstCounter;
};
template <>
struct NativeEnum<ZelRqstAmounts> {
  using Type = VnZEL10cmn::ZelRqstAmounts;
};
template <>
struct NativeEnum<ZelRqstDates> {
  using Type = VnZEL10cmn::ZelRqstDates;
};
template <>
struct NativeEnum<ZelLifeCycle> {
  using Type = VnZEL10cmn::ZelLifeCycle;
};
template <>
struct NativeEnum<ZelXmlTags> {
  using Type = VnZEL10cmn::ZelXmlTags;
};
template <>
struct NativeEnum<ZELVatClasses> {
  using Type = VnZEL10cmn::ZELVatClasses;
};
template <>
struct NativeEnum<ZELSerialType> {
  using Type = VnZEL10cmn::ZELSerialType;
};
template <>
struct NativeEnum<ZELHashFmt> {
  using Type = VnZEL10cmn::ZELHashFmt;
};
template <>
struct NativeEnum<ZelReportType> {
  using Type = VnZEL10cmn::ZelReportType;
};
template <>
struct NativeEnum<ZELDataSignTypes> {
  using Type = VnZEL10cmn::ZELDataSignTypes;
};

// What comes in: a missing text or array is an empty one.

inline std::int32_t FromCom(LONG value) { return value; }
inline std::uint8_t FromCom(unsigned char value) { return value; }
inline bool FromCom(VARIANT_BOOL value) { return value != VARIANT_FALSE; }
inline VnZEL10cmn::Currency FromCom(CY value) { return VnZEL10cmn::Currency::FromScaled(value.int64); }
inline VnZEL10cmn::Date FromCom(DATE value) { return VnZEL10cmn::Date(value); }
std::string FromCom(BSTR value);

template <class Enumeration>
requires std::is_enum_v<Enumeration>
typename NativeEnum<Enumeration>::Type FromCom(Enumeration value) {
  return static_cast<typename NativeEnum<Enumeration>::Type>(value);
}

/// The array by its bounds. Throws `ComFailure` (TypeMismatch) for other arrays than those of the element type
/// with one dimension.
VnZEL10cmn::ByteArray Bytes(SAFEARRAY** array);
VnZEL10cmn::CurrencyArray Currencies(SAFEARRAY** array);

// What goes out, into `result`, which holds nothing that must be freed.

inline void ToCom(std::int32_t value, LONG* result) { *result = value; }
inline void ToCom(std::uint8_t value, unsigned char* result) { *result = value; }
inline void ToCom(VnZEL10cmn::ZelTags value, unsigned char* result) {
  *result = static_cast<unsigned char>(value);
}
inline void ToCom(bool value, VARIANT_BOOL* result) { *result = value ? VARIANT_TRUE : VARIANT_FALSE; }
inline void ToCom(VnZEL10cmn::Currency value, CY* result) { result->int64 = value.Scaled(); }
inline void ToCom(VnZEL10cmn::Date value, DATE* result) { *result = value.Value(); }
void ToCom(std::string_view value, BSTR* result);
void ToCom(const VnZEL10cmn::ByteArray& value, SAFEARRAY** result);
void ToCom(const VnZEL10cmn::CurrencyArray& value, SAFEARRAY** result);

template <class Enumeration>
requires std::is_enum_v<Enumeration>
void ToCom(typename NativeEnum<Enumeration>::Type value, Enumeration* result) {
  *result = static_cast<Enumeration>(value);
}

/// Whether the array has these bounds, so that other elements can be written where the old ones are.
bool HasBounds(SAFEARRAY* array, LONG lower, LONG upper);

/// Throws `ComFailure` (FixedArray) where the array can't be given up for another one: its caller locked it, or it has
/// a fixed size, as those that Visual Basic keeps on the stack, in a module or in a structure. No array is none of these.
void RequireReplaceable(const SAFEARRAY* array);

/// An argument by reference: its value for the library, which is stored again where the library changed it. `Prepare`
/// does what can fail.
template <class Com>
class Reference {
 public:
  explicit Reference(Com* place) : place_(place), value_(FromCom(*place)) {}

  auto& Value() { return value_; }
  void Prepare() {}
  void Store() { ToCom(value_, place_); }

 private:
  Com* place_;
  decltype(FromCom(std::declval<Com>())) value_;
};

template <>
class Reference<BSTR> {
 public:
  explicit Reference(BSTR* place) : place_(place), value_(FromCom(*place)), old_(value_) {}

  std::string& Value() { return value_; }
  void Prepare();
  void Store();

 private:
  BSTR* place_;
  std::string value_;
  std::string old_;
  Bstr changed_;
};

/// Arrays keep their place and memory where their bounds stay; where they change an array of a fixed size is refused.
template <class Array>
class ArrayReference {
 public:
  explicit ArrayReference(SAFEARRAY** place);

  Array& Value() { return value_; }
  void Prepare();
  void Store();

 private:
  SAFEARRAY** place_;
  Array value_;
  Array old_;
  SafeArray changed_;
};

template <>
class Reference<SAFEARRAY*> : public ArrayReference<VnZEL10cmn::ByteArray> {
 public:
  using ArrayReference::ArrayReference;
};

/// An argument by reference that may be missing.
template <class Com>
struct Optional {
  Com* place;
};
template <class Com>
Optional(Com*) -> Optional<Com>;

template <class Com>
class OptionalReference {
 public:
  explicit OptionalReference(Com* place) {
    if (place != nullptr) reference_.emplace(place);
  }

  auto* Value() { return reference_ ? &reference_->Value() : nullptr; }
  void Prepare() {
    if (reference_) reference_->Prepare();
  }
  void Store() {
    if (reference_) reference_->Store();
  }

 private:
  std::optional<Reference<Com>> reference_;
};

}  // namespace automation
