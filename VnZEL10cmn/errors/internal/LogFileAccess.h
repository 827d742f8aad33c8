#pragma once

#include "VnZEL10cmn/errors/clsVnLogFile.h"

namespace VnZEL10cmn {

/// The log file keeps its error object to itself; the library's own tests look at it through here.
struct LogFileAccess {
  static clsVnError& ErrorObject(clsVnLogFile& file) { return file.ErrorObject(); }
  static VnObject& Object(clsVnLogFile& file) { return file; }
};

}  // namespace VnZEL10cmn
