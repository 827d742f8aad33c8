#pragma once

#include <memory>
#include <string>

#include "VnZEL10cmn/errors/clsVnError.h"

namespace VnZEL10cmn {

class clsZelItemPrint;
class clsZelTransActData;

namespace internal {

/// The engine's text of a data record. The engine stands above data records: this is defined beside it.
std::string RenderDataRecord(clsZelItemPrint& engine, const std::shared_ptr<clsZelTransActData>& record,
                             clsVnError* errors);

}  // namespace internal
}  // namespace VnZEL10cmn
