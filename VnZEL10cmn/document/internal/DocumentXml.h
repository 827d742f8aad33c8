#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "VnZEL10cmn/device/ZelXmlTags.h"
#include "VnZEL10cmn/errors/internal/Refusal.h"

/// How XML documents are written.
namespace VnZEL10cmn::internal {

/// An element with text content.
std::string Element(ZelXmlTags tag, std::string_view content, std::string_view attribute = {});

/// A document: elements, one per line, in an outer one. `intent` blanks are put before the outer element, twice as many
/// before the inner ones; below 0 everything is on one line.
std::string Document(ZelXmlTags tag, const std::vector<std::string>& elements, std::int32_t intent);

/// A document that can't be written yet; the lines tell what there is.
Refusal NotEnoughData(std::string_view lines);

/// The lines of request and response.
std::string RequestAndResponseLengths(std::size_t request, std::size_t response);

}  // namespace VnZEL10cmn::internal
