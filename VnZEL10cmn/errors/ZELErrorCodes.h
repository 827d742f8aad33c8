#pragma once

#include <cstdint>

namespace VnZEL10cmn {

/// The numbers under which the library files its failures. Unforeseen faults carry run-time numbers instead:
/// 5 invalid call, 6 overflow, 7 out of memory, 9 index out of range, 13 type mismatch.
enum class ZELErrorCodes : std::int32_t {
  No_Error = 0,                    ///< no error
  Err_Cmn_NotSpec = 9000,          ///< unspecified failure
  Err_Cmn_InvalidParam = 9001,     ///< a parameter has an invalid value
  Err_Hlp_B64ReplEqual = 9101,     ///< Base64: both replacement characters are equal
  Err_Hlp_CnvLBound = 9102,        ///< helper: the array's lower bound is not allowed
  Err_Hlp_CnvRange = 9103,         ///< helper: start or count out of range
  Err_Hlp_CnvLength = 9104,        ///< helper: invalid length
  Err_Hlp_CnvNoData = 9105,        ///< helper: no data
  Err_Hlp_CnvInvalidChar = 9106,   ///< helper: invalid character
  Err_Zel_CnvLBound = 9202,        ///< device coding: a byte array's lower bound is negative
  Err_Zel_CnvRange = 9203,         ///< device coding: start position or value out of range
  Err_Zel_CnvDataSize = 9204,      ///< device coding: the buffer is too small for the record
  Err_Zel_CnvInvalidStart = 9205,  ///< device coding: no length byte can follow the start position
  Err_Zel_CnvInvalidChar = 9206,   ///< device coding: a byte outside the printable range, or an invalid PIN
  Err_Zel_CnvInvalidLen =
      9207,  ///< device coding: invalid length, unexpected tag, text that can't be written
  Err_Zel_CnvInvalidBCD = 9208,     ///< device coding: not a decimal digit
  Err_Zel_CnvInvalidDtaFmt = 9209,  ///< device coding: signed BCD zero with minus sign
  Err_Zel_CnvInvalidTag = 9210,     ///< reserved
  Err_Zel_CnvXmlTagMiss = 9211,     ///< XML element not found, incomplete or out of order
  Err_Zel_CnvXmlTagIncmpl = 9212,   ///< reserved
  Err_Ser_Failed = 9301,            ///< serialisation failed
  Err_Ser_DataMissing = 9302,       ///< data needed for serialisation is missing
  Err_Ser_SerTypeNotSprt = 9303,    ///< the serialisation type is not supported
  Err_Ser_DataMismatch = 9304,      ///< data does not match
  Err_Ser_TagUnexpected = 9305,     ///< an unexpected tag was met while decoding
  Err_Ser_ItemNotAdded = 9306,      ///< an item could not be added to the list
  Err_Ser_CodingError = 9307,       ///< coding error in item list or transaction
  Err_Log_FileOpen = 10001,         ///< the log file could not be opened
  Err_Log_NoFileName = 10002,       ///< no log file name given
  Err_Log_FileNotOpen = 10010,      ///< the log file is not open
  Err_Log_NoObject = 10011,         ///< no item passed to the log file
  Err_Log_NoObjData = 10012,        ///< the item passed has no entry text
  Err_Crd_NoRescConn = 10100,       ///< reserved
};

}  // namespace VnZEL10cmn
