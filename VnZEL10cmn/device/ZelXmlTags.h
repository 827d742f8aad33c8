#pragma once

#include <cstdint>

namespace VnZEL10cmn {

/// The elements of the XML documents that `GetXmlTag` finds.
enum class ZelXmlTags : std::int32_t {
  NotSet = 0,         ///< none, which is never found
  Transaction = 1,    ///< transactionEncoded: a whole booking
  Report = 2,         ///< reportEncoded: a whole report
  ItemList = 3,       ///< itemListEncoded: an item list, with the profile as attribute
  TransRequest = 4,   ///< transactionRequest
  TransResponse = 5,  ///< transactionResponse
  ReportRequest = 6,  ///< reportRequest
  ReportRespone = 7,  ///< reportResponse
};

}  // namespace VnZEL10cmn
