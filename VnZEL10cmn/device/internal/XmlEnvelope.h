#pragma once

#include <string_view>

#include "VnZEL10cmn/device/ZelXmlTags.h"
#include "VnZEL10cmn/errors/internal/Refusal.h"

namespace VnZEL10cmn::internal {

/// The name of an element.
std::string_view ElementName(ZelXmlTags tag);

/// Finds an element of a document by its text: its content, Base64 content without what surrounds it, and the
/// profile of an item list. Both are parts of `document`, and keep their values after a refusal.
MaybeRefusal FindElement(std::string_view document, ZelXmlTags tag, std::string_view& content,
                         std::string_view& profile);

/// Whether a document holds the opening or the closing text of an element at all.
bool HasElement(std::string_view document, ZelXmlTags tag);

}  // namespace VnZEL10cmn::internal
