#pragma once

#include "automation/Com.h"

/// Arrays as late-bound callers have them.
namespace automation {

/// The bounds of an array with one dimension; throws `ComFailure` for others.
struct Bounds {
  explicit Bounds(SAFEARRAY* array);
  [[nodiscard]] ULONG Count() const { return static_cast<ULONG>(upper - lower + 1); }

  LONG lower = 0;
  LONG upper = -1;
};

SafeArray MakeArray(VARTYPE elementType, LONG lower, ULONG count);

/// Copies the elements where `target` has the same bounds.
void CopyElements(SAFEARRAY* source, SAFEARRAY* target);

/// A new array of variants out of one of that element type.
SafeArray ToVariants(SAFEARRAY* array, VARTYPE elementType);

/// Where a variant has its array.
SAFEARRAY** ArrayPlace(VARIANT& value);

/// A new array of that element type out of what a variant holds: such an array, an array of variants, or a list object,
/// as some languages have them for arrays, whose length and elements are members. Null for nothing. Throws `ComFailure`
/// where there is no such array or an element doesn't fit.
SAFEARRAY* CopyArray(VARIANT& argument, VARTYPE elementType, LCID locale);

}  // namespace automation
