#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "VnZEL10cmn/codec/clsHelper01.h"
#include "VnZEL10cmn/device/clsZelBaseCoding.h"
#include "VnZEL10cmn/errors/internal/Refusal.h"
#include "VnZEL10cmn/items/ZELHashFmt.h"
#include "VnZEL10cmn/items/ZELSerialType.h"
#include "VnZEL10cmn/types/ByteArray.h"

/// How a document's bytes go in and out, and how its hash is shown.
namespace VnZEL10cmn::internal {

/// A serialisation type that an operation does not know; the header may be empty.
Refusal UnsupportedType(std::string_view header, ZELSerialType type);

/// Copies bytes into the caller's array from `start` on; an array that ends before is refused.
MaybeRefusal CopyOut(const ByteArray& bytes, ByteArray& data, std::int32_t start, std::string_view header);

/// Copies `dataLen` bytes (below 1: all) from `start` on out of the caller's array.
MaybeRefusal CopyIn(const ByteArray& data, std::int32_t start, std::int32_t dataLen, std::string_view header,
                    ByteArray& bytes);

/// A hash as text; empty for no hash.
bool HashText(clsHelper01& helper, clsZelBaseCoding& coder, const ByteArray& hash, ZELHashFmt format,
              std::int32_t groupLen, std::string& text);

}  // namespace VnZEL10cmn::internal
