#pragma once

#include <memory>
#include <string>

#include "VnZEL10cmn/errors/clsVnError.h"

namespace VnZEL10cmn {

class clsZelReport;
class clsZelRprtPrint;

namespace internal {

// A report owns a print engine that stands above it and reaches it through these functions, which are defined
// beside the engine.

/// A new standard engine.
std::shared_ptr<clsZelRprtPrint> CreateDefaultReportEngine();

/// The engine's text of a report.
std::string RenderReport(clsZelRprtPrint& engine, const std::shared_ptr<clsZelReport>& report,
                         clsVnError* errors);

}  // namespace internal
}  // namespace VnZEL10cmn
