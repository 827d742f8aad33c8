#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "VnZEL10cmn/VnZEL10cmn.h"

namespace zel {

/// The three parts of a booking's XML document.
struct Document {
  VnZEL10cmn::ByteArray items;
  VnZEL10cmn::ByteArray request;
  VnZEL10cmn::ByteArray response;
};

/// Splits a document by the library's own means. Throws `Failure` (NotRight) that names the element at fault;
/// an element that occurs twice is at fault as well, since another reader might take the other one.
Document SplitDocument(std::string_view xml);

/// Reads the document into an empty booking. Throws `Failure` (NotRight).
void ImportDocument(const std::string& xml, VnZEL10cmn::clsZelTransAct& booking);

}  // namespace zel
